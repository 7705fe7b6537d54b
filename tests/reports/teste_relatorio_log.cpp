// The occurrence-log report run from its window offscreen: the log's lines with the entries alternating,
// the summary of period and backups, the log deleted; a missing, odd or huge log; Sair halfway.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "reports/Relatório_Rtf.h"
#include "reports/frmImpressão.h"
#include "reports/frmImpressão_Log_De_Ocorrências.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
const QString Separador = QString(135, '_');

QString Resumo(const QString& texto, int blancos) {
    return QString(blancos, ' ') + texto + "\\par";
}
QString Contador(const QString& rótulo, int n) {
    return (rótulo + QString::number(n).rightJustified(7, ' ')).leftJustified(137, ' ') + "\\par";
}

class Relatorio_Log : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override { Instala_Programa_Para_Janelas(); }

    static void Escreve_Log(const QStringList& linhas) {
        QFile log(Caminho_Log_Ocorrências());
        ASSERT_TRUE(log.open(QIODevice::WriteOnly));
        log.write(Para_Cp1252(linhas.join("\r\n") + "\r\n"));
    }

    // Runs the report with the dialog answered: file "Log", highlight Azul.
    static void Executa(frmImpressão_Log_De_Ocorrências& janela) {
        QTimer::singleShot(0, [] {
            auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget());
            ASSERT_NE(diálogo, nullptr);
            diálogo->txtCaminho->setText("Log");
            diálogo->cmdOk_Click();
        });
        janela.cmdOk_Click();
    }

    // The body of the report: the lines after the paper line, without the closing brace.
    QStringList Corpo() const {
        QFile f(Pasta.Caminho() + "/Relatórios/Log.Rtf");
        if (!f.open(QIODevice::ReadOnly)) return {"sem relatório"};
        QStringList linhas = De_Cp1252(f.readAll()).split("\r\n");
        while (!linhas.isEmpty() && !linhas.first().startsWith("\\paperh")) linhas.removeFirst();
        if (linhas.size() < 3) return {"sem corpo"};
        return linhas.mid(1, linhas.size() - 3);  // after the paper line, before "}" and the last CR LF
    }
};
}  // namespace

TEST_F(Relatorio_Log, EntriesAlternateTheSummaryCountsThePeriodAndBackupsAndTheLogGoes) {
    Escreve_Log(
        {"Descrição do Erro: Falha na gravação.",
         "Operação: Consulta   Código: 91   Usuário: Supervisor   Data: 05/03/2019   Hora: 09:07:03 hs",
         Separador, "", "Backup de Segurança realizado em 10/01/2017 às 10:00 hs",
         "Destino do Backup: D:\\Cópias {mensais}",
         "Restauração do Backup de Segurança foi efetuado em 20/12/2019 às 08:00 hs", Separador, ""});
    frmImpressão_Log_De_Ocorrências janela;
    EXPECT_EQ(janela.windowTitle(), "Impressão do Log de Ocorrências");
    EXPECT_EQ(Operação, "Impressão");
    Executa(janela);

    const QString rótulos[] = {
        "QUANTIDADE DE BACKUP´S REALIZADOS .........:", "QUANTIDADE DE BACKUP´S RESTAURADOS ........:",
        "QUANTIDADE DE BACKUP´S EXTERNOS REALIZADOS :"};
    EXPECT_EQ(Corpo(),
              QStringList({"\\cf0\\b0",
                           "Descrição do Erro: Falha na gravação.\\par",
                           "Operação: Consulta   Código: 91   Usuário: Supervisor   Data: 05/03/2019   Hora: "
                           "09:07:03 hs\\par",
                           "\\cf1\\b1",
                           Separador + "\\par",
                           "\\par",
                           "Backup de Segurança realizado em 10/01/2017 às 10:00 hs\\par",
                           "Destino do Backup: D:\\\\Cópias {mensais}\\par",
                           "Restauração do Backup de Segurança foi efetuado em 20/12/2019 às 08:00 hs\\par",
                           "\\cf0\\b0",
                           Separador + "\\par",
                           "\\par",
                           "\\cf0\\b0",
                           "\\par",
                           "\\fs14\\b\\i0",
                           Resumo("Resumo do Log de Ocorrências do Período de 10/01/2017 a 20/12/2019:", 31),
                           "\\par",
                           Contador(rótulos[0], 1),
                           "\\par",
                           Contador(rótulos[1], 1),
                           "\\par",
                           Contador(rótulos[2], 1),
                           "\\cf0\\b0"}));
    EXPECT_FALSE(QFile::exists(Caminho_Log_Ocorrências()));
    ASSERT_FALSE(Plataforma.Abertos.isEmpty());
    EXPECT_TRUE(Plataforma.Abertos.last().endsWith("/Relatórios/Log.Rtf"));
    EXPECT_EQ(janela.pgbBarra_De_Progresso->maximum(), 9);
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 9);
    EXPECT_EQ(janela.result(), QDialog::Rejected);  // the window closed itself
}

TEST_F(Relatorio_Log, WithoutALogOnlyTheSummaryPrintsWithTheEmptyDateAndZeros) {
    QFile::remove(Caminho_Log_Ocorrências());
    frmImpressão_Log_De_Ocorrências janela;
    Executa(janela);
    const QStringList corpo = Corpo();
    ASSERT_GE(corpo.size(), 4);
    EXPECT_EQ(corpo[3], Resumo("Resumo do Log de Ocorrências do Período de 00:00:00 a 00:00:00:", 33));
    EXPECT_EQ(corpo.last(), "\\cf0\\b0");
    EXPECT_EQ(corpo[corpo.size() - 2], Contador("QUANTIDADE DE BACKUP´S EXTERNOS REALIZADOS :", 0));
}

// Odd logs print whole and go: no separator, a date that is not one, lines of 10,000 characters, and an
// empty file; the refused dialog prints nothing and deletes nothing.
TEST_F(Relatorio_Log, OddLogsPrintWholeAndAreDeletedAndARefusedDialogKeepsTheLog) {
    const QString longa = QString(10000, 'x');
    Escreve_Log({"Sem separador nenhum, Data: 99/99/9999", longa, longa + "\\fim"});
    {
        frmImpressão_Log_De_Ocorrências janela;
        Executa(janela);
    }
    const QStringList corpo = Corpo();
    ASSERT_GE(corpo.size(), 5);
    EXPECT_EQ(corpo[0], "\\cf0\\b0");
    EXPECT_EQ(corpo[1], "Sem separador nenhum, Data: 99/99/9999\\par");
    EXPECT_EQ(corpo[2], longa + "\\par");
    EXPECT_EQ(corpo[3], longa + "\\\\fim\\par");
    EXPECT_TRUE(
        corpo.contains(Resumo("Resumo do Log de Ocorrências do Período de 00:00:00 a 00:00:00:", 33)));
    EXPECT_FALSE(QFile::exists(Caminho_Log_Ocorrências()));

    Escreve_Log({});
    QFile::resize(Caminho_Log_Ocorrências(), 0);
    frmImpressão_Log_De_Ocorrências vazio;
    QTimer::singleShot(0, [] {
        auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget());
        ASSERT_NE(diálogo, nullptr);
        diálogo->cmdSair_Click();
    });
    vazio.cmdOk_Click();
    EXPECT_TRUE(QFile::exists(Caminho_Log_Ocorrências()));
    EXPECT_FALSE(vazio.cmdOk->isEnabled());  // until the window is opened again
}

// A log of 100,000 entries prints with its progress and goes; Sair halfway keeps the log and drops the
// half report.
TEST_F(Relatorio_Log, AHugeLogPrintsWithProgressAndSairHalfwayKeepsIt) {
    QStringList linhas;
    for (int i = 0; i < 100000; ++i)
        linhas << QString("Descrição do Erro: ocorrência %1.   Data: %2")
                      .arg(i)
                      .arg(i % 2 ? "01/01/2018" : "31/12/2018")
               << Separador;
    Escreve_Log(linhas);
    const QByteArray original = [] {
        QFile f(Caminho_Log_Ocorrências());
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }();

    frmImpressão_Log_De_Ocorrências interrompida;
    int eventos = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++eventos == 5000) interrompida.cmdSair_Click();
    };
    Executa(interrompida);
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(interrompida.result(), QDialog::Rejected);
    EXPECT_FALSE(QFile::exists(Pasta.Caminho() + "/Relatórios/Log.Rtf"));
    QFile f(Caminho_Log_Ocorrências());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), original);
    f.close();

    frmImpressão_Log_De_Ocorrências janela;
    Executa(janela);
    EXPECT_EQ(janela.pgbBarra_De_Progresso->maximum(), 200000);
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 200000);
    const QStringList corpo = Corpo();
    EXPECT_EQ(corpo.count(Separador + "\\par"), 100000);
    EXPECT_TRUE(
        corpo.contains(Resumo("Resumo do Log de Ocorrências do Período de 01/01/2018 a 31/12/2018:", 31)));
    EXPECT_FALSE(QFile::exists(Caminho_Log_Ocorrências()));
}
