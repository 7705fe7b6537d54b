// The login window driven offscreen with the scripted platform.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "revelations/Revelações.h"
#include "shell/frmLogin.h"
#include "shell/frmAutentica_Senha.h"
#include "shell/frmPrincipal.h"
#include "shell/frmSair.h"
#include "shell/frmSobre.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Login_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa();
        Plataforma.Caixas.clear();
        Usuário_Atual.clear();
        Número_Revelação = 0;
        // Two citations beside the manual, in the program's code page.
        QDir().mkpath(Pasta.Caminho() + "/Ajuda");
        for (int n : {1, 2}) {
            QFile f(Caminho_Citação(n));
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(
                Para_Cp1252(QString("Citação número %1, Salmo 23:1\r\n\r\nSegundo parágrafo.\r\n").arg(n)));
        }
    }

    bool Entra(frmLogin& janela, const QString& usuário, const QString& senha) {
        janela.cboUsuário->setCurrentIndex(janela.cboUsuário->findText(usuário));
        bool Cancel = false;
        janela.cboUsuário_Validate(Cancel);
        janela.txtSenha->setText(senha);
        janela.cmdOk_Click();
        return janela.result() == QDialog::Accepted;
    }

    int Execuções(const QString& usuário) {
        Abre_Tabela("Select * From tblUsuário Where Usuário = '" + usuário + "'");
        const int n = Tabela.Fields("Quantidade_Execuções").Value().toInt();
        Tabela.Reinicia();
        return n;
    }
};
}  // namespace

TEST_F(Login_Teste, WrongPasswordIsRefusedAndTheRightOneInCapitalsLetsIn) {
    frmLogin janela;
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    EXPECT_EQ(janela.cboUsuário->count(), 2);
    EXPECT_EQ(janela.cboUsuário->itemText(0), "Ornelio Varga");
    EXPECT_TRUE(janela.lblLogin->text().contains("Usuário : SUPERVISOR"));

    EXPECT_FALSE(Entra(janela, "Supervisor", "errada"));
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, "Senha inválida!!!");
    EXPECT_EQ(janela.txtSenha->text(), "");
    EXPECT_TRUE(Usuário_Atual.isEmpty());

    EXPECT_TRUE(Entra(janela, "Supervisor", "LUMEN"));
    EXPECT_EQ(Usuário_Atual, "Supervisor");
    EXPECT_EQ(Execuções("Supervisor"), 1);
    EXPECT_TRUE(Tabela_Manutenção.Aberto());
    EXPECT_TRUE(Tabela_Critério_de_Consulta.Aberto());
}

TEST_F(Login_Teste, TheLoginCounterRunsACycleOfSeventeen) {
    QList<int> contagens;
    for (int i = 0; i < 18; ++i) {
        frmLogin janela;
        ASSERT_TRUE(Entra(janela, "Ornelio Varga", "tamaris"));
        contagens << Execuções("Ornelio Varga");
    }
    EXPECT_EQ(contagens.first(), 1);
    EXPECT_EQ(contagens[15], 16);
    EXPECT_EQ(contagens[16], 0);  // the login that finds 16 writes 0
    EXPECT_EQ(contagens[17], 1);
    EXPECT_EQ(Execuções("Supervisor"), 0);
}

TEST_F(Login_Teste, F1OpensTheWindowsPageAndF10ACitation) {
    frmLogin janela;
    janela.setWindowTitle("Login");
    QTest::keyClick(&janela, Qt::Key_F1);
    ASSERT_EQ(Plataforma.Abertos.size(), 1);
    EXPECT_EQ(Plataforma.Abertos[0], Pasta.Caminho() + "/Ajuda/Login de Acesso.Html");
    EXPECT_EQ(janela.windowTitle(), " ");

    Plataforma.Sorteios.push_back(0.9);  // of two citations, the second
    QTest::keyClick(janela.txtSenha, Qt::Key_F10);
    ASSERT_EQ(Plataforma.Abertos.size(), 2);
    EXPECT_TRUE(Plataforma.Abertos[1].endsWith("/Ajuda/cit_0002.txt"));
    EXPECT_FALSE(QFile::permissions(Plataforma.Abertos[1]) & QFile::WriteOwner);  // opened read-only
}

TEST_F(Login_Teste, ExitDialogCancelFinishesAnOpenTransaction) {
    frmSair sair;
    EXPECT_TRUE(sair.Label3->text().endsWith("2019"));
    Inicia_Transação();
    sair.cmdCancelar_Click();
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_THROW(sair.cmdSair_Click(), Programa_Encerrado);
}

TEST_F(Login_Teste, AboutDialogNamesTheVersionsAndTheYear) {
    frmSobre sobre;
    EXPECT_EQ(sobre.windowTitle(), "Sobre o sistema Quizora");
    EXPECT_EQ(sobre.Label2->text(), "versão 4.14.10");
    EXPECT_TRUE(sobre.lblVersão_ADO->text().startsWith("ADO SQLite 3."));
    EXPECT_TRUE(sobre.Label3->text().endsWith("2019"));
    sobre.lblEmail->linkActivated("#");
    ASSERT_FALSE(Plataforma.Abertos.isEmpty());
    EXPECT_EQ(Plataforma.Abertos.last(), "mailto:" + Endereço_Suporte);
    EXPECT_EQ(sobre.lblEmail->text(), "Abrindo e-mail; aguarde...");
}

TEST_F(Login_Teste, PasswordConfirmationComparesWithTheLoggedInUser) {
    Usuário_Atual = "Supervisor";
    Abre_Tabela("tblUsuário");  // the caller stands on another row
    frmAutentica_Senha janela;
    janela.txtSenha->setText("tamaris");  // Ornelio Varga's password, not the logged-in user's
    janela.cmdOk_Click();
    EXPECT_FALSE(Senha_Autenticada);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, "Senha inválida!!!");
    EXPECT_EQ(janela.txtSenha->text(), "");
    janela.txtSenha->setText("LUMEN");
    janela.cmdOk_Click();
    EXPECT_TRUE(Senha_Autenticada);
    EXPECT_EQ(janela.result(), QDialog::Accepted);
    EXPECT_EQ(Tabela.Fields("Usuário").Value().toString(), "Supervisor");

    frmAutentica_Senha desistência;
    Senha_Autenticada = false;
    desistência.cmdSair_Click();
    EXPECT_FALSE(Senha_Autenticada);
}

TEST_F(Login_Teste, TheMainWindowsCloseBoxWarnsAndEnds) {
    frmPrincipal principal;  // loads through the upgrade window; not shown, so no login comes up
    EXPECT_TRUE(principal.windowTitle().startsWith("Quizora v. 4.14.10 - "));
    const int caixas = Plataforma.Caixas.size();
    EXPECT_THROW(principal.Form_QueryUnload(), Programa_Encerrado);
    ASSERT_EQ(Plataforma.Caixas.size(), caixas + 1);
    EXPECT_TRUE(Plataforma.Caixas.last().Texto.contains("(CLICANDO-SE NO \"X\" DA JANELA)"));
    EXPECT_EQ(Plataforma.Bipes % 25, 0);
}

// Leaving the user list empty asks for a name and keeps the focus there; Sair is not held back.
TEST_F(Login_Teste, LeavingTheUserListEmptyShowsMessage3AndKeepsTheFocus) {
    frmLogin janela;
    janela.show();
    QApplication::setActiveWindow(&janela);
    janela.cboUsuário->setCurrentIndex(-1);
    janela.cboUsuário->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), janela.cboUsuário);
    Plataforma.Caixas.clear();
    janela.txtSenha->setFocus();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, Aviso(3));
    EXPECT_EQ(QApplication::focusWidget(), janela.cboUsuário);
    EXPECT_FALSE(janela.cmdOk->isEnabled());

    janela.cmdSair->setFocus();  // on the way out nothing is asked
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(QApplication::focusWidget(), janela.cmdSair);

    janela.cboUsuário->setFocus();
    janela.cboUsuário->setCurrentIndex(janela.cboUsuário->findText("Supervisor"));
    janela.txtSenha->setFocus();
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(QApplication::focusWidget(), janela.txtSenha);
    EXPECT_TRUE(janela.cmdOk->isEnabled());
    janela.hide();
}

// Escape in the exit dialog is its Cancelar, never its Sair: the program goes on.
TEST_F(Login_Teste, EscapeInTheExitDialogCancels) {
    frmSair sair;
    sair.show();
    QApplication::setActiveWindow(&sair);
    Inicia_Transação();
    EXPECT_NO_THROW(QTest::keyClick(&sair, Qt::Key_Escape));
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_FALSE(sair.isVisible());
}
