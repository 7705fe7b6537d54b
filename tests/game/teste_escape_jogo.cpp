// Escape in the game, the hall of fame and the raffle: it takes the room's screen away and does nothing
// else; only Sair ends them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

#include "common/Globais.h"
#include "game/frmHall.h"
#include "game/frmJogo.h"
#include "game/frmSorteio.h"
#include "sala/frmTela_Hall.h"
#include "sala/frmTela_Sala.h"
#include "sala/frmTela_Sorteio.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Jogo.h"

namespace {
class Escape_Jogo_Teste : public Teste_Jogo {
  protected:
    // Escape on the focused control, as the keyboard sends it; then the window's state.
    static void Escape(QWidget& janela) {
        QWidget* foco = QApplication::focusWidget();
        QTest::keyClick(foco != nullptr ? foco : &janela, Qt::Key_Escape);
    }
};
}  // namespace

TEST_F(Escape_Jogo_Teste, EscapeMidGameKeepsTheTurnAndOnlyLeavesTheRoomScreen) {
    Cadastra_Perguntas(30);
    frmJogo janela;
    Ativa(janela);
    for (int i : {1, 2, 3}) {
        if (i < 3) janela.txtJogador[i]->setText(i == 1 ? "Ana" : "Bruno");
        janela.txtJogador_GotFocus(i);
        janela.txtJogador_Validate(i);
        janela.txtJogador_LostFocus(i);
    }
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    const QString pergunta = janela.lblPergunta->text();
    const int jogador = janela.Jogo.Jogador_Atual;
    janela.optResposta[0]->setFocus();

    Escape(janela);
    EXPECT_TRUE(janela.isVisible());
    EXPECT_EQ(janela.result(), 0);
    EXPECT_TRUE(janela.fraResposta->isEnabled());
    EXPECT_EQ(janela.lblPergunta->text(), pergunta);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, jogador);

    // On the room's screen Escape brings the window back, and the game goes on.
    QTest::keyClick(&janela, Qt::Key_F11);
    ASSERT_TRUE(janela.Tela_Da_Sala->isVisible());
    Escape(*janela.Tela_Da_Sala);
    EXPECT_FALSE(janela.Tela_Da_Sala->isVisible());
    EXPECT_TRUE(janela.isVisible());
    EXPECT_EQ(janela.lblPergunta->text(), pergunta);
    Escape(janela);
    EXPECT_TRUE(janela.isVisible());

    // Sair still ends it.
    janela.cmdSair->click();
    EXPECT_FALSE(janela.isVisible());
    EXPECT_EQ(janela.result(), QDialog::Rejected);
}

TEST_F(Escape_Jogo_Teste, EscapeLeavesTheHallAndTheRaffleOpenAndOnlyLeavesTheRoomScreen) {
    frmHall hall;
    Ativa(hall);
    Escape(hall);
    EXPECT_TRUE(hall.isVisible());
    QTest::keyClick(&hall, Qt::Key_F11);
    ASSERT_TRUE(hall.Tela_Da_Sala->isVisible());
    Escape(*hall.Tela_Da_Sala);
    EXPECT_FALSE(hall.Tela_Da_Sala->isVisible());
    EXPECT_TRUE(hall.isVisible());
    hall.cmdSair->click();
    EXPECT_FALSE(hall.isVisible());

    frmSorteio sorteio;
    Ativa(sorteio);
    sorteio.nbNúmero_Final->setValue(50);
    sorteio.cmdSorteia_Click();
    const QString sorteado = sorteio.nbNúmero_Sorteado->text();
    ASSERT_FALSE(sorteado.isEmpty());
    Escape(sorteio);
    EXPECT_TRUE(sorteio.isVisible());
    QTest::keyClick(&sorteio, Qt::Key_F11);
    ASSERT_TRUE(sorteio.Tela_Da_Sala->isVisible());
    Escape(*sorteio.Tela_Da_Sala);
    EXPECT_FALSE(sorteio.Tela_Da_Sala->isVisible());
    EXPECT_TRUE(sorteio.isVisible());
    EXPECT_EQ(sorteio.nbNúmero_Sorteado->text(), sorteado);
    EXPECT_EQ(sorteio.Sorteio.Números_Sorteados.size(), 1);
    sorteio.cmdSair->click();
    EXPECT_FALSE(sorteio.isVisible());
}
