// The game on the room screen: it shows what the game window shows at every step of a scripted game of two
// competitors, its tiles and help buttons are the window's own clicks, the die rolls large, and F11 and
// Escape only go back to the window.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "common/Globais.h"
#include "game/frmHall.h"
#include "game/frmJogo.h"
#include "sala/frmTela_Hall.h"
#include "sala/frmTela_Sala.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Jogo.h"

namespace {
// The offscreen screen is smaller than a projector's: the room screen is laid out as on 1920 by 1080.
void Em_Projetor(Tela_Sala& tela) {
    tela.setWindowState(Qt::WindowNoState);
    tela.resize(1920, 1080);
    QApplication::processEvents();
}
const QSize Tela_Projetor(1920, 1080);

// What the room screen shows at one moment, as a test reads it.
struct Quadro {
    QString Comentário;
    QString Jogador;
    int Certa_Marcada = -1;   // the tile marked as the right answer, -1 for none
    int Errada_Marcada = -1;  // the wrong tile picked, crossed out
    int Dado = 0;             // the large die's face, 0 when it does not show
    bool Respostas_Livres = false;
};

class Tela_Sala_Teste : public Teste_Jogo {
  protected:
    static void Clica(QWidget* w) { QTest::mouseClick(w, Qt::LeftButton, {}, w->rect().center()); }

    static Quadro Lê(const frmTela_Sala& t) {
        Quadro q;
        q.Comentário = t.lblComentário->Texto();
        q.Jogador = t.lblJogador_Atual->Texto();
        for (int k = 0; k < 4; ++k)
            if (t.cmdResposta[k]->Certa_Mostrada()) q.Certa_Marcada = k;
        for (int k = 0; k < 4; ++k)
            if (t.cmdResposta[k]->Errada_Escolhida()) q.Errada_Marcada = k;
        q.Dado = t.imgDado_Rolando->isVisible() ? t.imgDado_Rolando->Face() : 0;
        for (const Botão_Sala* b : t.cmdResposta) q.Respostas_Livres = q.Respostas_Livres || b->isEnabled();
        return q;
    }

    // Everything on the room screen against the window, read from the window's own controls.
    static void Confere(const frmJogo& j, const frmTela_Sala& t) {
        SCOPED_TRACE("turno de " + j.lblJogador_Atual->text().toStdString());
        EXPECT_EQ(t.lblPergunta->Texto(), j.lblPergunta->text());
        const QString nome = j.lblJogador_Atual->text();
        EXPECT_EQ(t.lblJogador_Atual->Texto(), nome.isEmpty() ? QString() : "Jogador Atual: " + nome);
        EXPECT_EQ(t.lblValor->Texto(), j.lblPontuação_2->text().trimmed().isEmpty()
                                           ? QString()
                                           : "Valendo " + j.lblPontuação_2->text().trimmed() + " pontos...");
        for (int k = 0; k < 4; ++k) {
            EXPECT_EQ(t.cmdResposta[k]->text(), j.Jogo.Respostas_Exibidas[k]) << k;
            EXPECT_EQ(t.cmdResposta[k]->Vazio(), j.optResposta[k]->text().isEmpty()) << k;
            EXPECT_EQ(t.cmdResposta[k]->isEnabled(),
                      j.optResposta[k]->isEnabled() && !t.cmdResposta[k]->Vazio())
                << k;
        }
        for (int i = 0; i < Quantidade_Ajudas; ++i) {
            EXPECT_EQ(t.cmdAjuda[i]->isHidden(), j.chkAjuda[i]->isHidden()) << i;
            EXPECT_EQ(t.cmdAjuda[i]->isEnabled(), j.chkAjuda[i]->isEnabled()) << i;
        }
        QStringList comentário;
        for (const QLabel* l : j.lblResposta_Usuário)
            if (!l->text().isEmpty()) comentário << l->text();
        EXPECT_EQ(t.lblComentário->Texto(), comentário.join(" "));
        QStringList placar;
        for (int i = 1; i <= j.Jogo.Quantidade_Jogadores; ++i)
            placar << j.txtJogador[i]->text() + " | " + j.lblPontuação[i]->text().trimmed() + " | " +
                          j.lblNível[i]->text() +
                          (i == j.Jogo.Jogador_Atual && !nome.isEmpty() ? " | vez" : "");
        EXPECT_EQ(t.Linhas_Placar(), placar);
    }
};
}  // namespace

TEST_F(Tela_Sala_Teste, TheRoomScreenShowsTheWindowThroughAWholeGameOfTwo) {
    Cadastra_Perguntas(40);
    frmJogo janela;
    janela.show();
    frmTela_Sala& tela = *janela.Tela_Da_Sala;
    QList<Quadro> quadros;
    janela.Ao_Mudar.push_back([&] { quadros << Lê(tela); });

    // F11 in the window opens the room screen, full screen, over the window that stays open.
    QApplication::setActiveWindow(&janela);
    QTest::keyClick(&janela, Qt::Key_F11);
    ASSERT_TRUE(tela.isVisible());
    EXPECT_TRUE(tela.isFullScreen());
    Em_Projetor(tela);
    EXPECT_TRUE(janela.isVisible());
    janela.txtJogador_GotFocus(1);
    EXPECT_EQ(tela.lblComentário->Texto(), "Informe o nome dos jogadores...");
    for (const Botão_Sala* b : tela.cmdAjuda)
        EXPECT_TRUE(b->isHidden());  // no helps before the first question

    Informa_Nomes(janela, {"ana", "bruno"});
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    Confere(janela, tela);
    EXPECT_EQ(tela.lblJogador_Atual->Texto(), "Jogador Atual: Ana");
    EXPECT_EQ(tela.lblValor->Texto(), "Valendo 10 pontos...");
    EXPECT_EQ(tela.Linhas_Placar(), QStringList({"Ana | 0 pts | 1 | vez", "Bruno | 0 pts | 1"}));

    // Ana's tile of the right answer is the window's answer: while Bruno's greeting waits, the room sees the
    // banner and the right tile marked.
    int k = Certa(janela);
    ASSERT_GE(k, 0);
    QSignalSpy clique(janela.optResposta[k], &QAbstractButton::clicked);
    quadros.clear();
    Clica(tela.cmdResposta[k]);
    EXPECT_EQ(clique.count(), 1);
    EXPECT_EQ(Plataforma.Sons.last(), Caminho_Programa() + "/Sons/acerto.wav");
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "BRUNO, agora é a sua vez de jogar. Boa Sorte!!!");
    bool viu_acerto = false;
    for (const Quadro& q : quadros)
        viu_acerto =
            viu_acerto || (q.Comentário == "PARABÉNS!!! Resposta correta..." && q.Certa_Marcada == k);
    EXPECT_TRUE(viu_acerto);
    Confere(janela, tela);
    EXPECT_EQ(tela.Linhas_Placar(), QStringList({"Ana | 10 pts | 2", "Bruno | 0 pts | 1 | vez"}));
    EXPECT_EQ(tela.cmdResposta[0]->Certa_Mostrada() + tela.cmdResposta[1]->Certa_Mostrada() +
                  tela.cmdResposta[2]->Certa_Mostrada() + tela.cmdResposta[3]->Certa_Mostrada(),
              0);  // a new question: nothing marked

    // Bruno asks the apostles from the room: two tiles empty, the help gone, the others closed for the turn.
    QSignalSpy ajuda(janela.chkAjuda[Ajuda_Apóstolos], &QAbstractButton::toggled);
    Clica(tela.cmdAjuda[Ajuda_Apóstolos]);
    EXPECT_EQ(ajuda.count(), 1);
    EXPECT_FALSE(janela.Jogo.Ajuda_Disponível[2][Ajuda_Apóstolos]);
    Confere(janela, tela);
    EXPECT_TRUE(tela.cmdAjuda[Ajuda_Apóstolos]->isHidden());
    EXPECT_FALSE(tela.cmdAjuda[Ajuda_Deus]->isEnabled());
    EXPECT_EQ(tela.lblComentário->Texto(), "Sugestões de respostas que podem estar corretas:");
    int vazias = 0;
    for (int i = 0; i < 4; ++i) {
        if (!tela.cmdResposta[i]->Vazio()) continue;
        ++vazias;
        EXPECT_FALSE(tela.cmdResposta[i]->isEnabled());
        // A blanked tile takes no click: nothing is said, scored or passed on.
        const int sons = Plataforma.Sons.size();
        Clica(tela.cmdResposta[i]);
        EXPECT_EQ(Plataforma.Sons.size(), sons);
        EXPECT_EQ(janela.Jogo.Jogador_Atual, 2);
    }
    EXPECT_EQ(vazias, 2);
    // Pressing the used help's place again changes nothing either.
    Clica(tela.cmdAjuda[Ajuda_Deus]);
    EXPECT_TRUE(janela.Jogo.Ajuda_Disponível[2][Ajuda_Deus]);

    // Bruno errs: the red banner while Ana's greeting waits, and one more of his helps gone.
    quadros.clear();
    const int errada_bruno = Errada(janela);
    Clica(tela.cmdResposta[errada_bruno]);
    EXPECT_EQ(Plataforma.Sons.last(), Caminho_Programa() + "/Sons/erro.wav");
    bool viu_erro = false;
    for (const Quadro& q : quadros)
        viu_erro = viu_erro || (q.Comentário == "ERRADO!!! Eliminada uma das Ajudas!!!" &&
                                q.Errada_Marcada == errada_bruno && q.Certa_Marcada >= 0);
    EXPECT_TRUE(viu_erro);
    int ajudas_bruno = 0;
    for (bool a : janela.Jogo.Ajuda_Disponível[2]) ajudas_bruno += a ? 1 : 0;
    EXPECT_EQ(ajudas_bruno, 4);
    Confere(janela, tela);

    // Ana rolls the die from the room: it shows large while it rolls, no tile takes a click meanwhile, and it
    // stays small beside the remark once it stops.
    int faces = 0;
    Plataforma.Ao_Esperar = [&] {
        if (!janela.Dado_Rolando()) return;
        ++faces;
        EXPECT_TRUE(tela.imgDado_Rolando->isVisible());
        EXPECT_EQ(tela.imgDado_Rolando->Face(), janela.Face_Dado());
        EXPECT_GE(tela.imgDado_Rolando->width(), 300);
        for (const Botão_Sala* b : tela.cmdResposta) EXPECT_FALSE(b->isEnabled());
        Clica(tela.cmdResposta[Certa(janela)]);
        EXPECT_EQ(janela.Jogo.Jogador_Atual, 1);
    };
    Clica(tela.cmdAjuda[Ajuda_Dado]);
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_GT(faces, 0);
    EXPECT_FALSE(tela.imgDado_Rolando->isVisible());
    EXPECT_TRUE(tela.imgDado->isVisible());
    EXPECT_EQ(tela.imgDado->Face(), janela.Face_Dado());
    EXPECT_GE(janela.Face_Dado(), 1);
    EXPECT_LE(janela.Face_Dado(), 3);
    Confere(janela, tela);
    EXPECT_EQ(tela.lblComentário->Texto(),
              "Respostas incorretas eliminadas: " + QString::number(janela.Face_Dado()));

    // Escape on the room screen goes back to the window and never ends the game; F11 brings the room back.
    QTest::keyClick(&tela, Qt::Key_Escape);
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(janela.isVisible());
    EXPECT_EQ(janela.result(), 0);
    EXPECT_TRUE(janela.fraResposta->isEnabled());
    QApplication::setActiveWindow(&janela);  // the desktop gives the window the keyboard back
    QTest::keyClick(&janela, Qt::Key_F11);
    ASSERT_TRUE(tela.isVisible());
    Confere(janela, tela);
    tela.close();  // the window manager's close does the same
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(janela.isVisible());
    EXPECT_TRUE(janela.fraResposta->isEnabled());
    QApplication::setActiveWindow(&janela);
    QTest::keyClick(&janela, Qt::Key_F11);
    ASSERT_TRUE(tela.isVisible());
    QTest::keyClick(&tela, Qt::Key_F11);
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(janela.isVisible());
    tela.Mostra();
    Em_Projetor(tela);

    // The rest of the game from the room: wrong answers until both drop out, then the hall opens on its
    // room screen by itself.
    bool hall_visto = false;
    frmJogo::Ao_Terminar_Padrão = [&](frmJogo& j) {
        frmHall hall(&j, &j.Jogo);
        hall.show();
        QApplication::processEvents();
        ASSERT_TRUE(hall.Tela_Da_Sala->isVisible());
        hall_visto = true;
        const QStringList linhas = hall.Tela_Da_Sala->Linhas_Jogo();
        ASSERT_EQ(linhas.size(), 2);
        EXPECT_EQ(linhas[0], "1º. | Ana | " + hall.lblPontuação_Jogo[0]->text().trimmed());
        EXPECT_TRUE(linhas[1].startsWith("2º. | Bruno | "));
        EXPECT_EQ(hall.Tela_Da_Sala->lblComentário->Texto(), "Término do jogo!!! Confira a classificação...");
        Clica(hall.Tela_Da_Sala->cmdSair);  // the hall's own Sair: the window closes and its screen with it
        EXPECT_FALSE(hall.isVisible());
        EXPECT_FALSE(hall.Tela_Da_Sala->isVisible());
    };
    for (int vez = 0; vez < 40 && !janela.Jogo.Terminado; ++vez) {
        // After the die on 3 only the right answer stands.
        const int errada = Errada(janela) >= 0 ? Errada(janela) : Certa(janela);
        ASSERT_GE(errada, 0);
        Clica(tela.cmdResposta[errada]);
        if (!janela.Jogo.Terminado) Confere(janela, tela);
    }
    EXPECT_TRUE(janela.Jogo.Terminado);
    EXPECT_TRUE(hall_visto);
    // The game's room screen stays with the final scores and no help to press.
    EXPECT_TRUE(tela.isVisible());
    for (const Botão_Sala* b : tela.cmdAjuda) EXPECT_TRUE(b->isHidden());
    EXPECT_EQ(tela.Linhas_Placar().size(), 2);
    EXPECT_TRUE(Plataforma.Textos_Caixas().contains(
        "BRUNO, você errou e já utilizou todas as ajudas disponíveis!!! O jogo continuará para os demais "
        "competidores..."));
}

TEST_F(Tela_Sala_Teste,
       OnA1920By1080ScreenEverythingIsLargeAndNothingOverlapsWithFiveCompetitorsAndTheQrCode) {
    Cadastra_Perguntas(10);
    frmJogo janela;
    janela.show();
    frmTela_Sala& tela = *janela.Tela_Da_Sala;
    int pedidos = 0;
    tela.Ao_Pedir_Celulares = [&] { ++pedidos; };
    tela.Mostra();
    Em_Projetor(tela);
    Informa_Nomes(janela,
                  {"Maximiliano bartolomeu de albuquerque vasconcelos", "Bia", "Caio", "Davi", "Eva"});
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    QApplication::processEvents();

    EXPECT_GE(tela.lblPergunta->Pixels(), 40);
    for (const Botão_Sala* b : tela.cmdResposta) EXPECT_GE(b->Pixels(), 36);
    for (const Botão_Sala* b : tela.cmdAjuda) EXPECT_GE(b->Pixels(), 24);
    EXPECT_GE(tela.lblJogador_Atual->Pixels(), 30);  // a name of 50 letters
    EXPECT_EQ(tela.Linhas_Placar().size(), 5);

    // "Jogar pelos celulares" asks once per press, and gives its place to the QR panel.
    ASSERT_TRUE(tela.cmdCelulares->isVisible());
    Clica(tela.cmdCelulares);
    EXPECT_EQ(pedidos, 1);
    tela.Mostra_Sala("http://192.168.0.10:8080/", "482913");
    QApplication::processEvents();
    EXPECT_TRUE(tela.Painel->isVisible());
    EXPECT_FALSE(tela.cmdCelulares->isVisible());
    EXPECT_GE(tela.Painel->Área_Código().width(), 280);

    QList<QWidget*> peças{tela.lblJogador_Atual,
                          tela.lblValor,
                          tela.lblPergunta,
                          tela.lblComentário,
                          tela.findChild<QWidget*>("Placar"),
                          tela.Painel};
    for (QWidget* b : tela.cmdResposta) peças << b;
    for (QWidget* b : tela.cmdAjuda) peças << b;
    QList<QRect> áreas;
    for (QWidget* w : peças) {
        const QRect r(w->mapTo(&tela, QPoint(0, 0)), w->size());
        EXPECT_TRUE(QRect(QPoint(0, 0), Tela_Projetor).contains(r)) << w->objectName().toStdString();
        EXPECT_GT(r.height(), 40) << w->objectName().toStdString();
        for (int i = 0; i < áreas.size(); ++i)
            EXPECT_FALSE(áreas[i].intersects(r))
                << w->objectName().toStdString() << " / " << peças[i]->objectName().toStdString();
        áreas << r;
    }
    tela.Esconde_Sala();
    EXPECT_FALSE(tela.Painel->isVisible());
    EXPECT_TRUE(tela.cmdCelulares->isVisible());
    tela.Ao_Pedir_Celulares = nullptr;
    tela.Atualiza();
    EXPECT_FALSE(tela.cmdCelulares->isVisible());  // with nothing to start, no button
}
