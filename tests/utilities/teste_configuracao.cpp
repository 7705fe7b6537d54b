// The configuration window on a real database: rights, the row held for the window's life against a
// second running copy, the audit switch and its own audit rows, and the organisation's name.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <cstdio>

#include "common/Globais.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/Permissões.h"
#include "utilities/frmConfiguração.h"

namespace {
class Configuração_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QProcess Outra_Cópia;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Título_Versão = "Quizora v. ";
        // The Supervisor's rights row in this window exists already, so that opening it writes nothing.
        Nome_Janela = "frmConfiguração";
        Verifica_Permissão_De_Acesso();
        Plataforma.Caixas.clear();
    }
    void TearDown() override {
        if (Outra_Cópia.state() == QProcess::NotRunning) return;
        Outra_Cópia.closeWriteChannel();
        if (!Outra_Cópia.waitForFinished(10000)) Outra_Cópia.kill();
    }

    // Starts this test program again as a second copy of the program (the disabled test at the end of
    // this file); true once that copy holds the configuration row.
    bool Outra_Cópia_Trava() {
        QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
        ambiente.insert("QUIZORA_OUTRA_COPIA", "1");
        ambiente.insert("QT_QPA_PLATFORM", "offscreen");
        Outra_Cópia.setProcessEnvironment(ambiente);
        Outra_Cópia.start(QCoreApplication::applicationFilePath(),
                          {"--gtest_also_run_disabled_tests", "--gtest_filter=Configura*Outra*.*"});
        if (!Outra_Cópia.waitForStarted(10000)) return false;
        while (Outra_Cópia.waitForReadyRead(20000) || Outra_Cópia.canReadLine())
            while (Outra_Cópia.canReadLine())
                if (Outra_Cópia.readLine().trimmed() == "TRAVADO") return true;
        return false;
    }

    static QVariant Configuração(const QString& campo) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblConfigur");
        return Tabela_Quaternária.Eof() ? QVariant() : Tabela_Quaternária.Fields(campo).Value();
    }
    // The texts of the audit trail, oldest first.
    static QStringList Auditoria() {
        Registros trilha;
        trilha.Open("tblManutenção_Banco_de_Dados", Conexão_Manutenção, Opção_Abertura::Tabela_Direta);
        QStringList textos;
        for (; !trilha.Eof(); trilha.MoveNext()) textos << trilha.Fields("Manutenção").Value().toString();
        return textos;
    }

    // Opens the window, ticks or clears the audit box and confirms.
    void Salva_Com_Auditoria(bool ligada) {
        frmConfiguração janela;
        ASSERT_TRUE(janela.cmdOk->isEnabled());
        janela.chkMonitora_Log_das_Atividades->setChecked(ligada);
        janela.cmdOk_Click();
        EXPECT_FALSE(Transação_Aberta());
    }
};
}  // namespace

TEST_F(Configuração_Teste, WithoutRightsNothingIsLockedAndARowHeldElsewhereLeavesOkDisabled) {
    Usuário_Atual = "Visitante";
    {
        frmConfiguração janela;
        EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(4)});
        EXPECT_FALSE(janela.cmdOk->isEnabled());
        EXPECT_TRUE(Outra_Cópia_Trava()) << "the row must stay free";
    }
    Usuário_Atual = "Supervisor";
    Plataforma.Caixas.clear();
    frmConfiguração janela;
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("Não foi possível concluir este processamento"));
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    EXPECT_FALSE(Transação_Aberta());
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
}

TEST_F(Configuração_Teste, TheRowIsHeldUntilSairOrTheCloseBoxCommitsItUnchanged) {
    const QStringList trilha = Auditoria();
    frmConfiguração janela;
    EXPECT_EQ(janela.txtRazão_Social->text(), "Colocar aqui a razão social da empresa!!!!!!");
    EXPECT_TRUE(janela.chkMonitora_Log_das_Atividades->isChecked());
    EXPECT_TRUE(Transação_Aberta());
    janela.txtRazão_Social->setText("Digitada e abandonada");
    janela.cmdSair_Click();
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_EQ(Configuração("Razão_Social").toString(), "Colocar aqui a razão social da empresa!!!!!!");
    EXPECT_EQ(Auditoria(), trilha);

    frmConfiguração pela_caixa;
    pela_caixa.show();
    EXPECT_TRUE(Transação_Aberta());
    EXPECT_TRUE(pela_caixa.close());
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_TRUE(Outra_Cópia_Trava());
}

TEST_F(Configuração_Teste, SwitchingTheAuditOffKeepsThisSavesRowAndSwitchingItOnWritesNone) {
    const int antes = Auditoria().size();
    Salva_Com_Auditoria(false);
    EXPECT_FALSE(Monitora_Log);
    ASSERT_EQ(Auditoria().size(), antes + 1);
    EXPECT_EQ(Auditoria().last(),
              "Alterando Configur onde Razão_Social = Colocar aqui a razão social da empresa!!!!!!");
    Salva_Com_Auditoria(false);
    EXPECT_EQ(Auditoria().size(), antes + 1);
    Salva_Com_Auditoria(true);
    EXPECT_TRUE(Monitora_Log);
    EXPECT_EQ(Auditoria().size(), antes + 1);
    Salva_Com_Auditoria(true);
    EXPECT_EQ(Auditoria().size(), antes + 2);
}

TEST_F(Configuração_Teste, TheNameIsSavedAsTypedAndTheMainCaptionFollows) {
    QWidget principal;
    principal.setObjectName("frmPrincipal");
    frmConfiguração janela;
    janela.txtRazão_Social->setText(QString(60, 'x'));
    EXPECT_EQ(janela.txtRazão_Social->text().size(), 50);
    janela.txtRazão_Social->setText("   ");
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(10)});  // before any question
    EXPECT_TRUE(Transação_Aberta());

    janela.txtRazão_Social->setText("  IBAP - igreja batista da paz  ");
    janela.cmdOk_Click();
    EXPECT_EQ(janela.result(), QDialog::Accepted);
    EXPECT_EQ(Configuração("Razão_Social").toString(), "IBAP - igreja batista da paz");
    const QString versão = QString("%1.%2.%3 - IBAP - igreja batista da paz")
                               .arg(Versão_Maior_Programa)
                               .arg(Versão_Menor_Programa)
                               .arg(Versão_Revisão_Programa);
    EXPECT_EQ(Versão_Sistema, versão);
    EXPECT_EQ(principal.windowTitle(), "Quizora v. " + versão);
}

// The second running copy that the tests above start: it holds the configuration row until its input
// closes. It runs only when started by them.
TEST(Configuração_Outra_Cópia, DISABLED_HoldsTheConfigurationRow) {
    if (qEnvironmentVariable("QUIZORA_OUTRA_COPIA") != "1") GTEST_SKIP();
    Plataforma_Roteirizada plataforma;
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Inicia_Transação();
    Abre_Tabela("tblConfigur");
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    std::printf("TRAVADO\n");
    std::fflush(stdout);
    char linha[64];
    while (std::fgets(linha, sizeof linha, stdin) != nullptr) {
    }
    Desfaz_Transação();
}
