// Windows on the screen: the main window's screen fit, dialogs centred on the window that opened them and
// whole on the screen, accessible names for every control, and Escape where a window has no way back.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "forms/Formulário.h"
#include "game/frmJogo.h"
#include "game/frmSorteio.h"
#include "questions/frmPergunta.h"
#include "shell/frmLogin.h"
#include "shell/frmPrincipal.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Janela.h"

namespace {
class Janelas_Na_Tela_Teste : public Teste_Janela {
  protected:
    static QStringList Sem_Nome(QWidget* janela) {
        QStringList faltam;
        for (QWidget* c : janela->findChildren<QWidget*>()) {
            const bool controle = c->focusPolicy() != Qt::NoFocus || qobject_cast<QLineEdit*>(c) != nullptr;
            if (controle && !c->objectName().isEmpty() && !c->objectName().startsWith("qt_") &&
                c->accessibleName().isEmpty() && c->parentWidget()->focusProxy() != c)
                faltam << c->objectName();
        }
        return faltam;
    }
};
}  // namespace

TEST_F(Janelas_Na_Tela_Teste, TheScreenFitTakesDesignsAbove800By600To807By570) {
    QWidget janela;
    janela.resize(800, 600);
    Encaixa_Na_Tela(&janela);
    EXPECT_EQ(janela.size(), QSize(800, 600));
    for (QSize desenho : {QSize(801, 600), QSize(800, 601), QSize(1024, 720)}) {
        janela.resize(desenho);
        Encaixa_Na_Tela(&janela);
        EXPECT_EQ(janela.size(), QSize(807, 570));
    }

    // The main window fits a 1280 by 720 screen with a panel, its status bar in view.
    frmPrincipal principal;
    EXPECT_EQ(principal.size(), QSize(807, 570));
    EXPECT_LE(principal.minimumSizeHint().height(), 570);
    EXPECT_FALSE(principal.statusBar()->isHidden());
    EXPECT_FALSE(principal.windowIcon().isNull());
}

TEST_F(Janelas_Na_Tela_Teste, ADialogOpensCentredOnItsParentAndWholeOnTheScreen) {
    const QRect livre = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget pai;
    pai.setGeometry(livre.left() + 40, livre.top() + 30, 500, 400);
    pai.show();
    Formulário pequeno("frmPequeno", &pai);
    pequeno.resize(200, 100);
    pequeno.show();
    EXPECT_LE((pequeno.frameGeometry().center() - pai.frameGeometry().center()).manhattanLength(), 4);
    pequeno.hide();

    // Larger than the screen: made to fit and kept on it, never off its top-left.
    Formulário grande("frmGrande", &pai);
    grande.resize(livre.width() + 300, livre.height() + 200);
    grande.show();
    EXPECT_LE(grande.width(), livre.width());
    EXPECT_LE(grande.height(), livre.height());
    EXPECT_TRUE(livre.contains(grande.pos()));
    grande.hide();
    pai.hide();
}

TEST_F(Janelas_Na_Tela_Teste, EveryControlCarriesAnAccessibleNameFromItsCaptionOrItsLabel) {
    Cadastra_Perguntas(3);
    frmJogo jogo;
    jogo.show();
    EXPECT_EQ(jogo.txtJogador[1]->accessibleName(), "Jogador 1");
    EXPECT_EQ(jogo.txtJogador[5]->accessibleName(), "Jogador 5");
    EXPECT_EQ(jogo.cmdSair->accessibleName(), "Sair");
    EXPECT_EQ(Sem_Nome(&jogo), QStringList());
    jogo.hide();

    frmPergunta pergunta;
    pergunta.show();
    EXPECT_EQ(Sem_Nome(&pergunta), QStringList());
    for (const QProgressBar* barra : pergunta.findChildren<QProgressBar*>())
        EXPECT_FALSE(barra->accessibleName().isEmpty()) << barra->objectName().toStdString();
    pergunta.hide();

    frmLogin login;
    login.show();
    EXPECT_EQ(Sem_Nome(&login), QStringList());
    login.hide();

    frmSorteio sorteio;
    sorteio.show();
    EXPECT_EQ(Sem_Nome(&sorteio), QStringList());
    EXPECT_EQ(sorteio.cmdSorteia->accessibleName(), "Novo Sorteio");
    sorteio.hide();
}

// A window with neither Cancelar nor Sair keeps on at Escape: the start-up window is never cut short.
TEST_F(Janelas_Na_Tela_Teste, EscapeClosesNothingWhereThereIsNoWayBack) {
    frmAtualiza_Versão atualiza;
    atualiza.tmrTempo->stop();
    atualiza.show();
    QApplication::setActiveWindow(&atualiza);
    QTest::keyClick(&atualiza, Qt::Key_Escape);
    EXPECT_TRUE(atualiza.isVisible());
    atualiza.hide();

    Formulário sem_volta("frmSem_Volta");
    auto* ok = new QPushButton("OK", &sem_volta);
    ok->setObjectName("cmdOk");
    sem_volta.show();
    QApplication::setActiveWindow(&sem_volta);
    QTest::keyClick(&sem_volta, Qt::Key_Escape);
    EXPECT_TRUE(sem_volta.isVisible());
    sem_volta.hide();
}
