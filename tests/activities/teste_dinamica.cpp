// The activity register over a real installation: what it stores of what the user typed, the sheet of
// one activity and the listing of all as the report files hold them, the export into the scratch
// database, and both reports of the seed activities against the files kept beside these tests.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <utility>

#include "activities/frmDinâmica.h"
#include "activities/frmImpressão_Dinâmica.h"
#include "common/Cp1252.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "reports/Relatório_Rtf.h"
#include "reports/frmImpressão.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}

namespace {
const QString Esperados = QStringLiteral(QUIZORA_FONTES) + "/tests/activities/esperado/";

// A line of the listing, its 137 columns.
QString Linha(const QString& texto) {
    return texto.leftJustified(137) + "\\par";
}

class Dinamica : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QString Ficha() const { return Pasta.Caminho() + "/Relatórios/Impressão de Dinâmica.Rtf"; }
    QString Listagem() const { return Pasta.Caminho() + "/Relatórios/Impressão das Dinâmicas.Rtf"; }

    void SetUp() override { Instala(); }

    void Instala() {
        Instala_Programa_Para_Janelas();
        Conexão.Execute("Update tblConfigur Set Razão_Social = 'Norvane Informática Ltda.'");
        Plataforma.Caixas.clear();
    }

    // Written as SQL, so that a row may hold what the window itself would not write.
    static void Cadastra(const QString& nome, const QString& tipo, const QString& materiais,
                         const QString& instruções, const QString& data = QString()) {
        Conexão.Execute(
            "Insert Into tblDinâmica (Dinâmica, Materiais, Instruções, Tipo_Dinâmica, "
            "Data_Última_Realização) "
            "Values (" +
            Valor_Texto_SQL(nome) + ", " + Valor_Texto_SQL(materiais) + ", " + Valor_Texto_SQL(instruções) +
            ", " + Valor_Texto_SQL(tipo) + ", " + (data.isNull() ? QString("Null") : Valor_Texto_SQL(data)) +
            ")");
        Limpa_Cache_Lastrec();
    }

    // The print dialog that the next command opens, answered.
    static void Responde_Impressão(bool confirma) {
        QTimer::singleShot(0, [confirma] {
            auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget());
            ASSERT_NE(diálogo, nullptr);
            confirma ? diálogo->cmdOk_Click() : diálogo->cmdSair_Click();
        });
    }

    static QByteArray Lê(const QString& arquivo) {
        QFile f(arquivo);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // The lines of a report after its head, in the program's text.
    static QStringList Corpo(const QString& arquivo) {
        const QString texto = De_Cp1252(Lê(arquivo));
        const int fim_cabeça = texto.indexOf("\r\n", texto.indexOf("\\margb"));
        return fim_cabeça < 0 ? QStringList() : texto.mid(fim_cabeça + 2).split("\r\n");
    }

    static QString Campo(const char* nome) {
        return Tabela.Fields(QString::fromUtf8(nome)).Value().toString();
    }
};
}  // namespace

TEST_F(Dinamica, AnInclusionKeepsTheLongTextsAsTypedAndTheDateAsItsShortText) {
    frmDinâmica janela;
    EXPECT_TRUE(janela.windowTitle().contains("Dinâmica")) << janela.windowTitle().toStdString();
    janela.cmdInclusão_Click();
    EXPECT_EQ(janela.windowTitle(), "Inclusão de Dinâmicas");
    EXPECT_FALSE(janela.cmdImpressão->isEnabled());
    janela.txtDinâmica->setText("trilha da confiança");
    janela.txtMateriais->setPlainText("Vendas  de tecido\n   cones e garrafas  ");
    janela.txtInstruções->setPlainText("Primeiro  passo.\n\n   Segundo passo.\n");
    janela.optTipo_Dinâmica[1]->setChecked(true);
    janela.dbData_Última_Realização->setText("14/03/2019");
    Habilitar_Botão_OK(&janela);
    janela.cmdOk_Click();

    EXPECT_EQ(Campo("Dinâmica"), "Trilha da Confiança");
    EXPECT_EQ(Campo("Materiais"), "Vendas  de tecido\r\n   cones e garrafas  ");
    EXPECT_EQ(Campo("Instruções"), "Primeiro  passo.\r\n\r\n   Segundo passo.\r\n");
    EXPECT_EQ(Campo("Tipo_Dinâmica"), "Salão");
    EXPECT_EQ(Campo("Data_Última_Realização"), "14/03/2019");
    EXPECT_EQ(janela.windowTitle(), "Consulta da Dinâmica 1");
    EXPECT_TRUE(janela.cmdImpressão->isEnabled());
    // Shown again trimmed, with the boxes' own line ends; the date box takes the text back as a date.
    EXPECT_EQ(janela.txtInstruções->toPlainText(), "Primeiro  passo.\n\n   Segundo passo.");
    EXPECT_EQ(janela.dbData_Última_Realização->Text(), "14/03/2019");

    // An emptied date box leaves the field null; the type is the first option chosen of the first three.
    janela.cmdAlteração_Click();
    janela.dbData_Última_Realização->clear();
    janela.optTipo_Dinâmica[2]->setChecked(true);
    Habilitar_Botão_OK(&janela);
    janela.cmdOk_Click();
    EXPECT_TRUE(Tabela.Fields("Data_Última_Realização").Value().isNull());
    EXPECT_EQ(Campo("Tipo_Dinâmica"), "J.A.");
}

TEST_F(Dinamica, AnUnknownTypeShowsAsMeditationIsRewrittenOnSaveAndTheDeletionSaysDd) {
    Cadastra("Roda de Conversa", "Teatro", "", "Conversar.");
    frmDinâmica janela;
    EXPECT_TRUE(janela.optTipo_Dinâmica[3]->isChecked());
    EXPECT_EQ(janela.optTipo_Dinâmica[3]->text(), "Como meditação");
    janela.cmdAlteração_Click();
    Habilitar_Botão_OK(&janela);
    janela.cmdOk_Click();
    EXPECT_EQ(Campo("Tipo_Dinâmica"), "Meditação");

    // The caption while the deletion's confirmation plays its explosion.
    QString legenda;
    Plataforma.Ao_Esperar = [&] {
        if (legenda.isEmpty()) legenda = janela.windowTitle();
    };
    janela.cmdExclusão_Click();
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(legenda, "Exclusão dd Dinâmica 1");
    EXPECT_EQ(Lastrec("tblDinâmica", Conexão), 0);
}

TEST_F(Dinamica, RequiredNameAndInstructionsAndADateCheckedByTheCalendar) {
    frmDinâmica janela;
    janela.cmdInclusão_Click();
    bool Cancel = false;
    janela.dbData_Última_Realização->setText("31/02/2019");
    janela.dbData_Última_Realização_Validate(Cancel);
    EXPECT_TRUE(Cancel);
    Cancel = false;
    janela.dbData_Última_Realização->clear();
    janela.dbData_Última_Realização_Validate(Cancel);
    EXPECT_FALSE(Cancel);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(18)});

    // Leaving empty instructions for OK is refused; filled ones make OK available.
    janela.txtDinâmica->setText("Roda");
    janela.show();
    janela.txtInstruções->setFocus();
    QApplication::processEvents();
    janela.txtInstruções->setPlainText("   \n ");
    janela.optTipo_Dinâmica[0]->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(Plataforma.Textos_Caixas().last(), Aviso(10));
    EXPECT_TRUE(janela.txtInstruções->hasFocus());
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    janela.txtInstruções->setPlainText("Fazer.");
    janela.optTipo_Dinâmica[0]->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(janela.cmdOk->isEnabled());
}

TEST_F(Dinamica, TheSheetPrintsEachParagraphOnceWithOneEmptyLineForARunOfBreaksAndClosesTheRegister) {
    Cadastra("Caminhada", "J.A.", "", "Primeiro parágrafo.\r\n\r\nSegundo   parágrafo.\r\r\n\nTerceiro.");
    Cadastra("Vigília", "Meditação", "Bíblias", "Orar.\r\n");
    {
        frmDinâmica janela;
        janela.show();
        Responde_Impressão(true);
        janela.cmdImpressão_Click();
        EXPECT_FALSE(janela.isVisible());
        EXPECT_EQ(Plataforma.Abertos, QStringList{Ficha()});
        const QStringList esperado = {"DINÂMICA ............: Caminhada\\par",
                                      "\\par",
                                      "MATERIAIS NECESSÁRIOS:\\par",
                                      "\\par",
                                      "TIPO DA DINÂMICA ....: Realizar APENAS em programas J.A.\\par",
                                      "\\par",
                                      QString(59, ' ') + "INSTRUÇÕES:\\par",
                                      "Primeiro parágrafo.\\par",
                                      "\\par",
                                      "Segundo parágrafo.\\par",
                                      "\\par",
                                      "Terceiro.\\par",
                                      "}",
                                      ""};
        EXPECT_EQ(Corpo(Ficha()), esperado) << Corpo(Ficha()).join("\n").toStdString();
    }
    // A text that ends in a break leaves no paragraph behind it, and no further empty line.
    frmDinâmica janela;
    janela.cmdMovimenta_Registro_Click(2);
    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);  // the old report is replaced
    Responde_Impressão(true);
    janela.cmdImpressão_Click();
    const QStringList corpo = Corpo(Ficha());
    ASSERT_GE(corpo.size(), 4);
    EXPECT_EQ(corpo.mid(corpo.size() - 4), (QStringList{"Orar.\\par", "\\par", "}", ""}));
    EXPECT_EQ(corpo[2], "MATERIAIS NECESSÁRIOS: Bíblias\\par");
    EXPECT_EQ(corpo[4], "TIPO DA DINÂMICA ....: Realizar APENAS como tema para meditação\\par");
}

TEST_F(Dinamica, ASheetCancelledWritesNothingAndLongInstructionsStopAtTheWriterBounds) {
    QStringList linhas;
    for (int i = 1; i <= 300; ++i) linhas << QString("Linha %1.").arg(i);
    const QString palavra(200, 'x');
    Cadastra("Longa", "Salão", palavra, linhas.join("\r\n") + "\r\n" + palavra);
    frmDinâmica janela;
    janela.show();
    Responde_Impressão(false);
    janela.cmdImpressão_Click();
    EXPECT_FALSE(QFile::exists(Ficha()));
    EXPECT_TRUE(janela.isVisible());
    EXPECT_TRUE(janela.cmdImpressão->isEnabled());
    EXPECT_TRUE(janela.cmdInclusão->isEnabled());

    Responde_Impressão(true);
    janela.cmdImpressão_Click();
    const QStringList corpo = Corpo(Ficha());
    // Three hundred paragraphs and their empty lines; the long word cut into lines of the report's width.
    EXPECT_EQ(corpo.count("\\par"), 3 + 300);
    EXPECT_TRUE(corpo.contains("Linha 300.\\par"));
    EXPECT_TRUE(corpo.contains(QString(135, 'x') + "\\par"));
    for (const QString& l : corpo) EXPECT_LE(l.size(), 135 + 4) << l.toStdString();
}

TEST_F(Dinamica, TheListingRunsInNameOrderCutsMaterialsAt47LeavesANullDateBlankAndCountsEachSetting) {
    const QString longo = "Bola\r\n" + QString(60, 'm');
    Cadastra("Zebra", "Ar Livre", longo, "Correr.", "01/02/2019");
    Cadastra("Abraço", "Salão", "", "Abraçar.");
    Cadastra("Meio", "Teatro", "Cartolina", "Encenar.", "14/03/2019");
    Cadastra("Jovens", "J.A.", "Violão", "Cantar.");
    frmImpressão_Dinâmica janela;
    EXPECT_EQ(janela.windowTitle(), "Relatório de Dinâmicas");
    janela.show();
    Responde_Impressão(true);
    janela.cmdOk_Click();
    EXPECT_FALSE(janela.isVisible());
    EXPECT_EQ(Plataforma.Abertos, QStringList{Listagem()});
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 4);

    auto linha = [](const QString& nome, const QString& forma, const QString& data,
                    const QString& materiais) {
        QString l = QString(137, ' ');
        l.replace(0, nome.size(), nome);
        l.replace(53, forma.size(), forma);
        l.replace(74, data.size(), data);
        l.replace(86, materiais.size(), materiais);
        return l + "\\par";
    };
    auto total = [](const QString& rótulo, int n) {
        return Linha(rótulo + QString::number(n).rightJustified(6));
    };
    const QStringList esperado = {Linha("DINÂMICA " + QString(40, '.') +
                                        ":  FORMA DE REALIZÁ-LA:  REALIZADA:  "
                                        "MATERIAIS NECESSÁRIOS ........................:"),
                                  "\\cf0\\b0",
                                  linha("Abraço", "Em salão fechado", "", ""),
                                  "\\cf1\\b1",
                                  linha("Jovens", "Em programa J.A.", "", "Violão"),
                                  "\\cf0\\b0",
                                  linha("Meio", " Como meditação", "14/03/2019", "Cartolina"),
                                  "\\cf1\\b1",
                                  linha("Zebra", "   Ao ar livre", "01/02/2019", longo.left(47)),
                                  "\\cf0\\b0",
                                  "\\par",
                                  "\\fs14\\b\\i0",
                                  total("QUANTIDADE TOTAL DE DINÂMICAS .........:", 4),
                                  "\\par",
                                  total("QUANTIDADE DE DINÂMICAS \"AO AR LIVRE\" .:", 1),
                                  "\\par",
                                  total("QUANTDADE DE DINÂMICAS \"SALÃO FECHADO\" :", 1),
                                  "\\par",
                                  total("QUANTIDADE DE DINÂMICAS \"PROGRAMA J.A.\":", 1),
                                  "\\par",
                                  total("QUANTIDADE DE \"MEDITAÇÕES\" ............:", 1),
                                  "\\fs14\\b0\\i0",
                                  "}",
                                  ""};
    // The break inside the materials goes into the line as it is, so the file splits it there.
    EXPECT_EQ(Corpo(Listagem()).join("\r\n"), esperado.join("\r\n"));
}

TEST_F(Dinamica, AnEmptyTableListsZerosACancelledListingKeepsOkOffAndSairStopsTheWalk) {
    {
        frmImpressão_Dinâmica janela;
        Responde_Impressão(false);
        janela.cmdOk_Click();
        EXPECT_FALSE(janela.cmdOk->isEnabled());
        EXPECT_FALSE(QFile::exists(Listagem()));
        Responde_Impressão(true);
        janela.cmdOk->setEnabled(true);
        janela.cmdOk_Click();
        const QStringList corpo = Corpo(Listagem());
        ASSERT_GT(corpo.size(), 5);
        EXPECT_EQ(corpo[4], Linha("QUANTIDADE TOTAL DE DINÂMICAS .........:     0"));
    }
    for (int i = 0; i < 5; ++i) Cadastra(QString("Dinâmica %1").arg(i), "Salão", "", "Fazer.");
    frmImpressão_Dinâmica janela;
    janela.show();
    int passos = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++passos == 2) janela.cmdSair_Click();
    };
    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    Responde_Impressão(true);
    janela.cmdOk_Click();
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_FALSE(janela.isVisible());
    EXPECT_FALSE(QFile::exists(Listagem()));
    EXPECT_EQ(janela.pgbBarra_De_Progresso->value(), 2);
    EXPECT_FALSE(Impressão_Confirmada);
}

TEST_F(Dinamica, AUserWithoutRightsGetsMessage4AndNoListing) {
    Conexão.Execute("Insert Into tblUsuário (Usuário, Senha) Values ('Bruno', 1)");
    Usuário_Atual = "Bruno";
    frmImpressão_Dinâmica janela;
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(4)});
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    EXPECT_FALSE(Tabela.Aberto());
}

TEST_F(Dinamica, TheExportRebuildsOnlyItsTableInTheScratchDatabaseNumberedAnewWithColumnsAndIndexes) {
    // Another export's table already in the scratch database.
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    {
        Ligação rascunho;
        rascunho.Open(Conexão_Rascunho());
        Catálogo::Cria_Tabela(rascunho, "tblAdaptação", {{"Adaptação", Tipo_Memo}});
        rascunho.Close();
    }
    Cadastra("Zebra", "Ar Livre", "Bola", "Correr.\r\nParar.", "01/02/2019");
    Cadastra("Abraço", "Salão", "", "Abraçar.");
    Conexão.Execute("Delete From tblDinâmica Where Dinâmica = 'Zebra'");
    Cadastra("Zebra", "Ar Livre", "Bola", "Correr.\r\nParar.", "01/02/2019");
    frmDinâmica janela;
    janela.cmdMovimenta_Registro_Click(2);
    const QString mostrada = janela.txtDinâmica->text();
    for (int vez = 0; vez < 2; ++vez) janela.cmdExportação_Click();

    EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
    EXPECT_TRUE(janela.cmdInclusão->isEnabled());
    EXPECT_TRUE(janela.cmdExportação->isEnabled());
    EXPECT_TRUE(janela.cmdImpressão->isEnabled());
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    EXPECT_EQ(Campo("Dinâmica"), mostrada);

    Ligação rascunho;
    rascunho.Open(Conexão_Rascunho());
    EXPECT_TRUE(Catálogo::Existe_Tabela(rascunho, "tblAdaptação"));
    const Estrutura_Tabela exportada = Catálogo::Estrutura(rascunho, "tblDinâmica");
    const Estrutura_Tabela principal = Catálogo::Estrutura(Conexão, "tblDinâmica");
    ASSERT_EQ(exportada.Campos.size(), 6);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(exportada.Campos[i].Nome, principal.Campos[i].Nome);
        EXPECT_EQ(exportada.Campos[i].Tipo, principal.Campos[i].Tipo);
        EXPECT_EQ(exportada.Campos[i].Largura, principal.Campos[i].Largura);
        EXPECT_EQ(exportada.Campos[i].Auto, principal.Campos[i].Auto);
        EXPECT_EQ(exportada.Campos[i].Zero, principal.Campos[i].Zero);
    }
    ASSERT_NE(exportada.Índice("idxCódigo_Dinâmica"), nullptr);
    ASSERT_NE(exportada.Índice("idxDinâmica"), nullptr);
    EXPECT_EQ(exportada.Índice("idxDinâmica")->Tipo, Tipo_Índice::Primário);
    EXPECT_EQ(exportada.Índice("idxCódigo_Dinâmica")->Campos, QStringList{"Código_Dinâmica"});

    // The rows of the main table in its order, numbered from 1 again by the second export.
    Registros cópia;
    cópia.Open("Select * From tblDinâmica Order By Código_Dinâmica", rascunho, Opção_Abertura::Tabela);
    QStringList linhas;
    for (cópia.MoveFirst(); !cópia.Eof(); cópia.MoveNext())
        linhas << cópia.Fields("Código_Dinâmica").Value().toString() + "|" +
                      cópia.Fields("Dinâmica").Value().toString() + "|" +
                      cópia.Fields("Materiais").Value().toString() + "|" +
                      cópia.Fields("Instruções").Value().toString() + "|" +
                      cópia.Fields("Data_Última_Realização").Value().toString() + "|" +
                      cópia.Fields("Tipo_Dinâmica").Value().toString();
    EXPECT_EQ(linhas, (QStringList{"1|Abraço||Abraçar.||Salão",
                                   "2|Zebra|Bola|Correr.\r\nParar.|01/02/2019|Ar Livre"}));
    cópia.Close();
    rascunho.Close();
}

TEST_F(Dinamica, TheSheetAndTheListingOfTheSeedActivitiesMatchTheirExpectedFiles) {
    // A new installation that brings the seed activities.
    Reinicia_Estado_Global();
    QDir(Pasta.Dados()).removeRecursively();
    QDir().mkpath(Pasta.Dados());
    ASSERT_TRUE(QFile::copy(QStringLiteral(QUIZORA_SEMENTES) + "/Temp.Zip", Pasta.Dados() + "/Temp.Zip"));
    Instala();
    ASSERT_EQ(Lastrec("tblDinâmica", Conexão), 48);

    const bool grava = qEnvironmentVariableIsSet("QUIZORA_GRAVA_ESPERADOS");
    auto confere = [grava](const QString& feito, const QString& nome) {
        const QByteArray conteúdo = Lê(feito);
        ASSERT_FALSE(conteúdo.isEmpty()) << feito.toStdString();
        if (grava) {
            QFile f(Esperados + nome);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(conteúdo);
        }
        EXPECT_TRUE(conteúdo == Lê(Esperados + nome)) << nome.toStdString();
    };
    {
        frmDinâmica janela;
        ASSERT_EQ(janela.txtDinâmica->text(), "Trilha da Confiança");
        Responde_Impressão(true);
        janela.cmdImpressão_Click();
    }
    confere(Ficha(), "Impressão de Dinâmica.Rtf");
    frmImpressão_Dinâmica listagem;
    Responde_Impressão(true);
    listagem.cmdOk_Click();
    confere(Listagem(), "Impressão das Dinâmicas.Rtf");
}

// A cancelled inclusion leaves its text on screen; an alteration starts from the stored activity.
TEST_F(Dinamica, AnAlterationAfterACancelledInclusionStartsFromTheStoredActivity) {
    Cadastra("Roda de Conversa", "Salão", "Cadeiras", "Conversar em roda.", "01/02/2019");
    frmDinâmica janela;
    janela.cmdInclusão_Click();
    janela.txtDinâmica->setText("Rascunho");
    janela.txtMateriais->setPlainText("Nada");
    janela.txtInstruções->setPlainText("Instruções do rascunho.");
    janela.optTipo_Dinâmica[0]->setChecked(true);
    janela.dbData_Última_Realização->setText("14/03/2019");
    janela.cmdCancelar_Click();
    ASSERT_EQ(janela.txtDinâmica->text(), "Rascunho");

    janela.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.txtDinâmica->text(), "Roda de Conversa");
    EXPECT_EQ(janela.txtMateriais->toPlainText(), "Cadeiras");
    EXPECT_EQ(janela.txtInstruções->toPlainText(), "Conversar em roda.");
    EXPECT_TRUE(janela.optTipo_Dinâmica[1]->isChecked());
    EXPECT_EQ(janela.dbData_Última_Realização->Text(), "01/02/2019");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    janela.cmdOk_Click();
    EXPECT_EQ(Campo("Dinâmica"), "Roda de Conversa");
    EXPECT_EQ(Campo("Instruções"), "Conversar em roda.");
    EXPECT_EQ(Campo("Tipo_Dinâmica"), "Salão");
    EXPECT_EQ(Campo("Data_Última_Realização"), "01/02/2019");
}

// OK and Cancelar are out of reach while the export walks the table, as in the question export: a click
// would write the fields on screen into the activity that the walk has reached.
TEST_F(Dinamica, OkAndCancelarAreOutOfReachWhileTheExportWalks) {
    Cadastra("Abraço", "Salão", "", "Abraçar.");
    Cadastra("Zebra", "Ar Livre", "Bola", "Correr.");
    frmDinâmica janela;
    janela.show();
    int passos = 0;
    bool outra_exportação = false;
    Plataforma.Ao_Esperar = [&] {
        ++passos;
        EXPECT_FALSE(janela.cmdOk->isEnabled());
        EXPECT_FALSE(janela.cmdCancelar->isEnabled());
        EXPECT_FALSE(janela.cmdSair->isEnabled());
        janela.txtDinâmica->setText("Escrita Durante a Exportação");
        janela.cmdOk->click();
        janela.cmdCancelar->click();
        if (!std::exchange(outra_exportação, true)) janela.cmdExportação_Click();  // once: no second walk
    };
    janela.cmdExportação->click();
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(passos, 2);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_FALSE(janela.cmdOk->isEnabled());
    EXPECT_FALSE(janela.cmdCancelar->isEnabled());
    EXPECT_TRUE(janela.cmdSair->isEnabled());
    EXPECT_TRUE(janela.cmdExportação->isEnabled());
    QStringList nomes;
    Registros lidas;
    lidas.Open("Select * From tblDinâmica Order By Código_Dinâmica", Conexão, Opção_Abertura::Texto);
    for (; !lidas.Eof(); lidas.MoveNext()) nomes << lidas.Fields("Dinâmica").Value().toString();
    EXPECT_EQ(nomes, (QStringList{"Abraço", "Zebra"}));
    // The export ran once, whatever was clicked: the scratch table holds each activity once.
    Ligação rascunho;
    rascunho.Open(Conexão_Rascunho());
    Registros cópia;
    cópia.Open("Select * From tblDinâmica", rascunho, Opção_Abertura::Tabela);
    EXPECT_EQ(cópia.RecordCount(), 2);
    cópia.Close();
    rascunho.Close();
    janela.hide();
}
