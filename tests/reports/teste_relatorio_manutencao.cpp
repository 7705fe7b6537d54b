// The maintenance report over a real audit database: the whole file it writes, where its walk stops,
// and the audit connection given back by every way out, a stop in the middle of the walk included.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "reports/Relatório_Rtf.h"
#include "reports/frmImpressão.h"
#include "reports/frmImpressão_Manutenção_Banco_de_Dados.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"
#include "users/Permissões.h"

namespace {
using Janela = frmImpressão_Manutenção_Banco_de_Dados;

// The head as the scripted clock and the organisation below make it, in portrait with the blue highlight.
const QString Cabeça = R"({\rtf1\ansi\ansicpg1252\deff0\deflang1046{\fonttbl{\f0\fnil\fcharset0 Courier New;}}
{\colortbl ;\red0\green0\blue255;}
\viewkind4\uc1\pard\f0\fs14\i0\b0 {\info}{\header\fs14{Norvane Informática Ltda.%1Impresso em 14/03/2019, às 14:30:00 hs%2Página:  }{\chpgn}\par
\par
\fs32\b   Impressão das Manutenções Efetuadas no Banco de Dados\b0\par
\fs14 %3\par
\par}
\paperh17010\paperw12242\margl437\margr437\margt102\margb663
\fs14\b\i0)";
const QString Longo = "Alterando Pergunta onde Pergunta = " + QString(85, 'x');  // 120 characters

// A line of the report's 137 columns.
QString Linha(const QString& texto) {
    return texto.leftJustified(137).replace("\\", "\\\\") + "\\par";
}

QByteArray Esperado(const QString& período, const QString& usuário, const QStringList& linhas) {
    QStringList todas = {Cabeça.arg(QString(20, ' '), QString(39, ' '), QString(135, '_')),
                         Linha("PERÍODO: " + período) + "\n\\par",
                         Linha("USUÁRIO: " + usuário) + "\n\\fs14\\b0\\i0\n\\par",
                         Linha("DATA E HORA DA MANUTENÇÃO:   MANUTENÇÃO EFETUADA NO BANCO DE DADOS " +
                               QString(65, '.') + ":")};
    for (int i = 0; i < linhas.size(); ++i) todas << (i % 2 ? "\\cf1\\b1" : "\\cf0\\b0") << linhas[i];
    todas << "\\cf0\\b0\n\\par\n\\fs14\\b\\i0"
          << Linha("QUANTIDADE DE MANUTENÇÕES : " + QString::number(linhas.size()).rightJustified(6))
          << "\\fs14\\b0\\i0\n}\n";
    return Para_Cp1252(todas.join("\n").replace("\n", "\r\n"));
}

class Relatorio_Manutencao : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    const QString Arquivo =
        Pasta.Caminho() + "/Relatórios/Impressão das Manutenções Efetuadas no Banco de Dados.Rtf";

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Conexão.Execute("Update tblConfigur Set Razão_Social = 'Norvane Informática Ltda.'");
        for (const QString usuário : {"Bruno", "Ana", "João D'Ávila"})
            Conexão.Execute("Insert Into tblUsuário (Usuário, Senha) Values (" + Valor_Texto_SQL(usuário) +
                            ", 1)");
        // The window's permission row made now, so that its audit row is not among those of the tests.
        Nome_Janela = "frmImpressão_Manutenção_Banco_de_Dados";
        Verifica_Permissão_De_Acesso();
        Conexão_Manutenção.Execute("Delete From tblManutenção_Banco_de_Dados");
        Plataforma.Caixas.clear();
    }

    // Written as SQL: the program itself would refuse a text over the field's 100 characters.
    static void Registra(const QString& usuário, const QString& data, const QString& hora,
                         const QString& texto) {
        Conexão_Manutenção.Execute(
            "Insert Into tblManutenção_Banco_de_Dados (Manutenção, Usuário, Data_Manutenção, "
            "Hora_Manutenção) Values (" +
            Valor_Texto_SQL(texto) + ", " + Valor_Texto_SQL(usuário) + ", " +
            (data.isEmpty() ? QString("Null") : "CDate('" + data + "')") + ", " + Valor_Texto_SQL(hora) +
            ")");
    }

    // The user and the period chosen, the final date left, and OK with the print dialog answered.
    static void Gera(Janela& j, const QString& usuário, const QString& início, const QString& fim,
                     bool confirma = true) {
        j.cboUsuário->setCurrentIndex(j.cboUsuário->findText(usuário));
        j.dbData_Inicial->setText(início);
        j.dbData_Final->setText(fim);
        bool Cancel = false;
        j.dbData_Final_Validate(Cancel);
        QTimer::singleShot(0, [confirma] {
            auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget());
            ASSERT_NE(diálogo, nullptr);
            confirma ? diálogo->cmdOk_Click() : diálogo->cmdSair_Click();
        });
        j.cmdOk_Click();
    }

    static void Espera_Conexão_Principal() {
        EXPECT_EQ(Conexão_Secundária.ConnectionString, Conexão_Principal());
        EXPECT_EQ(Conexão_Secundária.Sessão_Física(), Conexão.Sessão_Física());
    }

    QByteArray Lê() const {
        QFile f(Arquivo);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};
}  // namespace

TEST_F(Relatorio_Manutencao, TheUsersRowsOfThePeriodInIndexOrderAndTheWalkEndsAtTheFirstLaterDate) {
    Registra("Ana", "10/03/2019", "10:00:00", "Alterando Pergunta onde Pergunta = Onde?");
    Registra("Bruno", "11/03/2019", "08:00:00", "Incluindo Usuário onde Usuário = Bia");
    Registra("Ana", "09/03/2019", "23:00:00", "Antes do período");
    Registra("Ana", "10/03/2019", "09:15:00", "Incluindo Pergunta onde Pergunta = C:\\Quem?");
    // A server holds a text to its field's 100 characters; the embedded file keeps a longer one written as
    // SQL.
    const QString longo = Testa_No_Servidor() ? Longo.left(100) : Longo;
    Registra("Ana", "12/03/2019", "23:59:59", longo);
    Registra("Ana", "13/03/2019", "08:00:00", "Depois do período");
    Registra("João D'Ávila", "10/03/2019", "11:00:00", "De outro usuário");
    Janela janela;
    EXPECT_EQ(Conexão_Secundária.Sessão_Física(), Conexão_Manutenção.Sessão_Física());
    EXPECT_EQ(janela.cboUsuário->currentIndex(), -1);
    EXPECT_EQ(janela.dbData_Inicial->Text() + janela.dbData_Final->Text(), "14/03/201914/03/2019");
    janela.show();

    Gera(janela, "Ana", "10/03/2019", "12/03/2019");
    EXPECT_EQ(Lê(),
              Esperado("10/03/2019 a 12/03/2019", "Ana",
                       {Linha("10/03/2019, às 09:15:00 hs   Incluindo Pergunta onde Pergunta = C:\\Quem?"),
                        Linha("10/03/2019, às 10:00:00 hs   Alterando Pergunta onde Pergunta = Onde?"),
                        Linha("12/03/2019, às 23:59:59 hs   " + longo.left(104))}));
    // Seven rows; the walk read Ana's four from the period on and stopped at the one of 13/03.
    EXPECT_EQ(janela.pgbBarra_De_Progresso->maximum(), 7);
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 4);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Arquivo});
    EXPECT_FALSE(janela.isVisible());
    EXPECT_FALSE(Em_Cadastro);
    Espera_Conexão_Principal();
}

TEST_F(Relatorio_Manutencao, OtherUsersRowsAreSkippedToTheEndUnlessOneIsLaterThanThePeriod) {
    Registra("Ana", "10/03/2019", "09:00:00", "Da Ana");
    Registra("Bruno", "11/03/2019", "09:00:00", "Do Bruno");
    Registra("Davi", "", "09:00:00", "Sem data");
    Registra("João D'Ávila", "15/03/2019", "09:00:00", "Do João");
    {
        Janela janela;
        Gera(janela, "Bruno", "10/03/2019", "20/03/2019");
        EXPECT_EQ(Lê(), Esperado("10/03/2019 a 20/03/2019", "Bruno",
                                 {Linha("11/03/2019, às 09:00:00 hs   Do Bruno")}));
        EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 3);
    }
    Janela janela;
    Gera(janela, "Ana", "10/03/2019", "10/03/2019");  // the old report is replaced
    EXPECT_EQ(Lê(),
              Esperado("10/03/2019 a 10/03/2019", "Ana", {Linha("10/03/2019, às 09:00:00 hs   Da Ana")}));
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 2);
}

TEST_F(Relatorio_Manutencao, APeriodWithoutRowsOfTheUserPrintsTheHeadingAndALoneZeroAsAnEmptyTrailDoes) {
    Registra("Ana", "10/03/2019", "09:00:00", "Da Ana");
    for (int vez = 0; vez < 2; ++vez) {
        if (vez == 1) Conexão_Manutenção.Execute("Delete From tblManutenção_Banco_de_Dados");
        Janela janela;
        Gera(janela, "Bruno", "01/03/2019", "14/03/2019");
        EXPECT_EQ(Lê(), Esperado("01/03/2019 a 14/03/2019", "Bruno", {})) << vez;
    }
}

TEST_F(Relatorio_Manutencao, ARefusedDialogGivesTheConnectionBackAndLeavesOnlySairAsDoNoRights) {
    {
        Janela janela;
        janela.show();
        Gera(janela, "Ana", "10/03/2019", "12/03/2019", false);
        Espera_Conexão_Principal();
        EXPECT_TRUE(janela.isVisible());
        bool Cancel = false;
        janela.dbData_Final_Validate(Cancel);
        EXPECT_FALSE(janela.cmdOk->isEnabled());
        janela.cmdSair_Click();
        EXPECT_FALSE(janela.isVisible());
        EXPECT_FALSE(QFile::exists(Arquivo));
    }
    Usuário_Atual = "Bruno";
    Janela janela;
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(4)});
    EXPECT_EQ(janela.cboUsuário->count(), 0);
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    Espera_Conexão_Principal();
}

TEST_F(Relatorio_Manutencao, SairOrTheCloseBoxDuringTheWalkStopsItAndDiscardsTheHalfReport) {
    for (int i = 1; i <= 5; ++i) Registra("Ana", "10/03/2019", QString("09:0%1:00").arg(i), "Linha");
    for (const bool pela_caixa : {false, true}) {
        Janela janela;
        janela.show();
        int passagens = 0;
        Plataforma.Ao_Esperar = [&] {
            if (++passagens != 2) return;
            EXPECT_FALSE(janela.cboUsuário->isEnabled());
            EXPECT_FALSE(janela.cmdOk->isEnabled());
            if (pela_caixa)
                EXPECT_FALSE(janela.close());
            else
                janela.cmdSair->click();
        };
        Gera(janela, "Ana", "10/03/2019", "10/03/2019");
        Plataforma.Ao_Esperar = nullptr;
        EXPECT_EQ(passagens, 2) << pela_caixa;
        EXPECT_FALSE(QFile::exists(Arquivo));
        EXPECT_TRUE(Plataforma.Abertos.isEmpty());
        EXPECT_FALSE(janela.isVisible());
        EXPECT_FALSE(Impressão_Confirmada);
        Espera_Conexão_Principal();
    }
}

// By the keyboard alone: Tab from the last date goes to Sair, which asks nothing, so OK must already be on
// once the user and a valid period are typed; a date that is not one leaves it off.
TEST_F(Relatorio_Manutencao, OkComesOnByTheKeyboardOnceTheUserAndAValidPeriodAreTyped) {
    Janela janela;
    janela.show();
    QApplication::setActiveWindow(&janela);
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    janela.cboUsuário->setCurrentIndex(janela.cboUsuário->findText("Ana"));
    janela.dbData_Final->setFocus();
    janela.dbData_Final->selectAll();
    QTest::keyClicks(janela.dbData_Final, "31022019");
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    janela.dbData_Final->selectAll();
    QTest::keyClicks(janela.dbData_Final, "31032019");
    EXPECT_TRUE(janela.cmdOk->isEnabled());
    janela.cmdSair_Click();
}
