// F11 in the game, hall of fame and raffle: every text grows to the screen, the question stands above 40
// pixels on 1920 by 1080, the layout holds between a short name and a long one, and F11 brings all back.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFontInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include "common/Globais.h"
#include "game/frmHall.h"
#include "game/frmJogo.h"
#include "game/frmSorteio.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
const QSize Tela_Sala(1920, 1080);

int Pixels(const QWidget* controle) {
    return QFontInfo(controle->font()).pixelSize();
}

class Tela_Cheia_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Plataforma.Caixas.clear();
        Tipo_Pergunta = "A";
        frmJogo::Ao_Terminar_Padrão = nullptr;
    }

    // Shows the window as full screen does on a 1920 by 1080 screen.
    static void Em_Tela_Cheia(QDialog& janela, Tela_Cheia& tela) {
        tela.Aplica(Tela_Sala);
        janela.resize(Tela_Sala);
        janela.layout()->activate();
    }

    static QList<QRect> Quadros(const frmJogo& j) {
        QList<QRect> r;
        for (const QWidget* w : std::initializer_list<const QWidget*>{
                 j.fraPergunta, j.fraResposta, j.fraAjuda, j.fraJogadores, j.fraJogador, j.cmdSair,
                 j.lblJogador_Atual, j.lblResposta_Usuário[0], j.lblPontuação_2})
            r << w->geometry();
        return r;
    }
};
}  // namespace

TEST_F(Tela_Cheia_Teste,
       TheGameOnA1920By1080ScreenShowsTheQuestionAbove40PixelsAndHoldsItsLayoutBetweenTurns) {
    Cadastra_Perguntas(30);
    frmJogo janela;
    janela.show();
    const int pergunta = Pixels(janela.lblPergunta), ajuda = Pixels(janela.chkAjuda[0]),
              pontos = Pixels(janela.lblPontuação[1]);
    const QString longo = "Maximiliano Bartolomeu de Albuquerque Vasconcelos";
    ASSERT_EQ(longo.size() + 1, 50);
    janela.txtJogador[1]->setText("Ana");
    janela.txtJogador_GotFocus(1);
    janela.txtJogador_Validate(1);
    janela.txtJogador_LostFocus(1);
    janela.txtJogador[2]->setText(longo + "s");
    for (int i : {2, 3}) {
        janela.txtJogador_GotFocus(i);
        janela.txtJogador_Validate(i);
        janela.txtJogador_LostFocus(i);
    }
    ASSERT_TRUE(janela.fraResposta->isEnabled());

    Em_Tela_Cheia(janela, *janela.Tela);
    EXPECT_TRUE(janela.Tela->Ativa());
    EXPECT_GE(Pixels(janela.lblPergunta), 40);
    for (const QRadioButton* r : janela.optResposta) EXPECT_GE(Pixels(r), 40 * 11 / 13);
    EXPECT_GT(Pixels(janela.chkAjuda[0]), ajuda);
    EXPECT_GT(Pixels(janela.lblPontuação[1]), pontos);
    const QSize preciso = janela.layout()->totalMinimumSize();
    EXPECT_LE(preciso.width(), Tela_Sala.width());
    EXPECT_LE(preciso.height(), Tela_Sala.height());

    // The short name's turn, then the long name's: nothing moves, and the answers keep their size.
    const QList<QRect> antes = Quadros(janela);
    const int resposta = Pixels(janela.optResposta[0]);
    for (int k = 0; k < 4; ++k)
        if (janela.Jogo.Respostas_Exibidas[k] == janela.Jogo.Pergunta_Atual.Resposta_Correta)
            QTest::mouseClick(janela.optResposta[k], Qt::LeftButton, {},
                              QPoint(8, janela.optResposta[k]->height() / 2));
    ASSERT_EQ(janela.Jogo.Jogador_Atual, 2);
    EXPECT_TRUE(janela.lblJogador_Atual->text().startsWith("Maximiliano"));
    janela.layout()->activate();
    EXPECT_EQ(Quadros(janela), antes);
    EXPECT_EQ(Pixels(janela.optResposta[0]), resposta);

    // Back to the window: the design's texts.
    janela.Tela->Aplica(QSize());
    EXPECT_FALSE(janela.Tela->Ativa());
    EXPECT_EQ(Pixels(janela.lblPergunta), pergunta);
    EXPECT_EQ(Pixels(janela.chkAjuda[0]), ajuda);
    EXPECT_EQ(Pixels(janela.lblPontuação[1]), pontos);
    EXPECT_EQ(janela.Tela->Fator(janela.optResposta[0]), 1.0);
}

TEST_F(Tela_Cheia_Teste, TheHallAndTheRaffleGrowWithTheScreenAndF11TogglesFullScreen) {
    frmHall hall;
    hall.show();
    const int nome = Pixels(hall.lblJogador[0]), colocação = Pixels(hall.lblColocação[0]);
    Em_Tela_Cheia(hall, *hall.Tela);
    EXPECT_GE(Pixels(hall.lblJogador[0]), nome * 3 / 2);
    EXPECT_GE(Pixels(hall.lblColocação[0]), colocação * 3 / 2);
    EXPECT_LE(hall.layout()->totalMinimumSize().height(), Tela_Sala.height());
    hall.Tela->Aplica(QSize());
    EXPECT_EQ(Pixels(hall.lblJogador[0]), nome);

    frmSorteio sorteio;
    sorteio.show();
    Em_Tela_Cheia(sorteio, *sorteio.Tela);
    // The number drawn, 28 points in the window, in proportion to a question of 40 pixels.
    EXPECT_GE(Pixels(sorteio.nbNúmero_Sorteado), 40 * 28 / 13);
    EXPECT_LE(sorteio.layout()->totalMinimumSize().height(), Tela_Sala.height());
    sorteio.Tela->Aplica(QSize());

    QApplication::setActiveWindow(&sorteio);
    QTest::keyClick(&sorteio, Qt::Key_F11);
    EXPECT_TRUE(sorteio.isFullScreen());
    EXPECT_TRUE(sorteio.Tela->Ativa());
    QTest::keyClick(&sorteio, Qt::Key_F11);
    EXPECT_FALSE(sorteio.isFullScreen());
    EXPECT_FALSE(sorteio.Tela->Ativa());
    sorteio.hide();
    hall.hide();
}
