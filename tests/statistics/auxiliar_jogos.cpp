// Plays scripted games into an installation, so that the games' statistics can be looked at by hand:
//   auxiliar_jogos <program folder> <games>
// The folder gets its databases (made as a first start makes them) and 80 questions if it has none; the
// games fall one week apart from June 2026 on, with three or four of a few competitors, who pick right
// answers, wrong ones, skips and helps by chance.
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <cstdio>
#include <random>

#include "common/Globais.h"
#include "game/frmJogo.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Plataforma_Roteirizada.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicação(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "uso: auxiliar_jogos <pasta do programa> <jogos>\n");
        return 2;
    }
    qputenv("QUIZORA_PASTA", argv[1]);
    const int jogos = QString(argv[2]).toInt();
    Plataforma_Roteirizada plataforma;
    plataforma.Relógio = QDateTime(QDate(2026, 6, 6), QTime(19, 30));
    Instala_Programa_Para_Janelas();
    Abre_Tabela("tblPergunta");
    const bool vazio = Lastrec("tblPergunta", Conexão) == 0;
    Tabela.Reinicia();
    if (vazio) {
        Cadastra_Perguntas(50, "G");
        Cadastra_Perguntas(30, "B");
    }
    const QStringList nomes = {"Ana", "Beto", "Carla", "Davi", "Elisa"};
    std::mt19937 acaso(2026);
    int vezes = 0;
    for (int jogo = 0; jogo < jogos; ++jogo) {
        plataforma.Relógio = QDateTime(QDate(2026, 6, 6).addDays(7 * jogo), QTime(19, 30));
        bool terminou = false;
        frmJogo::Ao_Terminar_Padrão = [&terminou](frmJogo&) { terminou = true; };
        frmJogo janela;
        const int quantos = 3 + jogo % 2;
        for (int i = 1; i <= Máximo_Jogadores && i <= quantos + 1; ++i) {
            janela.txtJogador[i]->setText(i <= quantos ? nomes[(jogo + i) % nomes.size()] : QString());
            janela.txtJogador_GotFocus(i);
            janela.txtJogador_Validate(i);
            janela.txtJogador_LostFocus(i);
        }
        // Each competitor has a skill of its own: Ana knows most, Elisa least.
        while (!terminou && vezes < 100000) {
            ++vezes;
            plataforma.Relógio = plataforma.Relógio.addSecs(5 + static_cast<int>(acaso() % 40));
            plataforma.Caixas.clear();
            const int jogador = janela.Jogo.Jogador_Atual;
            const int habilidade =
                80 - 10 * static_cast<int>(nomes.indexOf(janela.Jogo.Nome_Jogador[jogador]));
            const int sorte = static_cast<int>(acaso() % 100);
            if (sorte < 8) {
                for (int ajuda :
                     {Ajuda_Pular_1, Ajuda_Pular_2, Ajuda_Pular_3, Ajuda_Dado, Ajuda_Apóstolos, Ajuda_Deus})
                    if (janela.Jogo.Ajuda_Disponível[jogador][ajuda] && acaso() % 2) {
                        janela.chkAjuda[ajuda]->setChecked(true);
                        janela.chkAjuda_Click(ajuda);
                        break;
                    }
                if (janela.Jogo.Jogador_Atual != jogador || terminou) continue;
            }
            const bool certa = static_cast<int>(acaso() % 100) < habilidade;
            int escolha = -1;
            for (int k = 0; k < 4; ++k) {
                const QString& r = janela.Jogo.Respostas_Exibidas[k];
                if (r.isEmpty()) continue;
                // The third wrong answer of every fifth question fools them more than the right one.
                const bool enganosa = janela.Jogo.Pergunta_Atual.Código_Pergunta % 5 == 0 &&
                                      r == janela.Jogo.Pergunta_Atual.Resposta_Incorreta_3;
                if ((r == janela.Jogo.Pergunta_Atual.Resposta_Correta) == certa || (enganosa && !certa)) {
                    escolha = k;
                    if (enganosa) break;
                }
            }
            if (escolha < 0)
                for (int k = 0; k < 4 && escolha < 0; ++k)
                    if (!janela.Jogo.Respostas_Exibidas[k].isEmpty()) escolha = k;
            janela.optResposta_Click(escolha);
        }
        std::printf("jogo %d: %s\n", jogo + 1, terminou ? "terminado" : "interrompido");
    }
    std::printf("%d vezes jogadas\n", vezes);
    return 0;
}
