// The game window of a real program folder with its room of phones open on loopback, for the test that
// drives a real browser: prints the room's address and code, then the outcome of the first answer that a
// phone gives, and keeps serving until its standard input closes (at most two minutes).
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>

#include "game/frmJogo.h"
#include "sala/Servidor_Sala.h"
#include "sala/janelas/Painel_Sala.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

int main(int argc, char** argv) {
    QApplication aplicação(argc, argv);
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Cadastra_Perguntas(20);
    Painel_Sala::Endereço_Forçado = QHostAddress(QHostAddress::LocalHost);

    frmJogo janela;
    janela.show();
    janela.cmdCelulares->click();
    if (!janela.Sala_Ativa()) {
        std::printf("{\"erro\":\"a sala não abriu\"}\n");
        return 1;
    }
    for (int i = 1; i <= 3; ++i) {
        janela.txtJogador[i]->setText(i == 1 ? "Ana" : i == 2 ? "Bruno" : "");
        janela.txtJogador_GotFocus(i);
        janela.txtJogador_Validate(i);
        janela.txtJogador_LostFocus(i);
    }
    std::printf("{\"endereco\":\"%s\",\"codigo\":\"%s\"}\n", qPrintable(janela.Sala_Ativa()->Endereço()),
                qPrintable(janela.Sala_Ativa()->Código()));
    std::fflush(stdout);

    // The first answer of Ana's phone passes the turn to Bruno.
    bool contado = false;
    janela.Ao_Mudar.push_back([&] {
        if (contado || janela.Jogo.Jogador_Atual != 2) return;
        contado = true;
        std::printf("{\"respondida\":true,\"pontos\":%g,\"certa\":%s}\n", janela.Jogo.Pontos[1],
                    janela.Jogo.Pontos[1] > 0 ? "true" : "false");
        std::fflush(stdout);
    });
    QSocketNotifier entrada(0, QSocketNotifier::Read);
    QObject::connect(&entrada, &QSocketNotifier::activated, [&] {
        char c;
        if (std::fread(&c, 1, 1, stdin) != 1) aplicação.quit();
    });
    QTimer::singleShot(120000, &aplicação, &QApplication::quit);
    aplicação.exec();
    return contado ? 0 : 2;
}
