// The adaptation register on real databases: typing a request, the export to the scratch database, and
// the three imports from files the tests make as the real ones are made (Dbase tables by shapelib packed
// by arj, a scratch database by the export, an occurrence log by the error handler).
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "support/Dbf_Teste.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "utilities/Unidade_Trabalho.h"
#include "utilities/frmAdaptação.h"

namespace {
struct Linha_Adaptação {
    QString Texto;
    QVariant Data;
    int Código_Sistema;
    QString Nome_Sistema;
};

class Adaptação_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QString Pasta_Fixtures;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Unidade_Trabalho.clear();
        Programa_Arj = "arj";
        Pasta_Fixtures = Pasta.Caminho() + "/Arquivos recebidos";
        QDir().mkpath(Pasta_Fixtures);
        Plataforma.Caixas.clear();
    }
    void TearDown() override {
        Unidade_Trabalho.clear();
        Programa_Arj = "arj";
    }

    static QList<Linha_Adaptação> Linhas() {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblAdaptação Order By Código_Adaptação");
        QList<Linha_Adaptação> linhas;
        for (; Tabela_Quaternária.Aberto() && !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext())
            linhas.append({Tabela_Quaternária.Fields("Adaptação").Value().toString(),
                           Tabela_Quaternária.Fields("Data_Solicitação").Value(),
                           Tabela_Quaternária.Fields("Código_Sistema").Value().toInt(),
                           Tabela_Quaternária.Fields("Nome_Sistema").Value().toString()});
        return linhas;
    }

    static void Cadastra(const QString& texto, const QDate& data, int código_sistema, const QString& nome) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblAdaptação");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Adaptação").Set_Value(texto);
        Tabela_Quaternária.Fields("Data_Solicitação").Set_Value(data);
        Tabela_Quaternária.Fields("Código_Sistema").Set_Value(código_sistema);
        Tabela_Quaternária.Fields("Nome_Sistema").Set_Value(nome);
        Tabela_Quaternária.Update();
        Limpa_Cache_Lastrec();
    }

    // The two steps of an import: the button, then leaving the date with the file chosen in the dialog.
    void Importa(frmAdaptação& j, const QString& arquivo) {
        Plataforma.Arquivos_Escolhidos.push_back(arquivo);
        j.cmdImportação_Click();
        EXPECT_TRUE(j.Importando);
        j.dbData_Solicitação_LostFocus();
        EXPECT_FALSE(j.Importando);
    }

    QString Nome_Pasta() const { return QFileInfo(Pasta.Caminho()).fileName(); }

    // The old memo system's archive: two clients with memos, one of them without pieces.
    QString Arquivo_Arj_Memorandos(const char* página = "LDID/2") {
        const QString pasta = Pasta_Fixtures + "/tabelas";
        QDir().mkpath(pasta);
        EXPECT_TRUE(
            Escreve_Tabelas_Memorandos(pasta, página,
                                       {{"Igreja Central", "10", "20190310"},
                                        {"", "11", "20190311"},
                                        {"Escola B\x82ria", "12", "20190312"}},
                                       {{"10", "Trocar a cor"}, {"11", "sem cliente"}, {"10", "do fundo"}}));
        const QString arj = Pasta_Fixtures + "/norvane2.arj";
        EXPECT_TRUE(Compacta_Arj(arj, pasta, {"NORVANE.dbf", "MEMORAND.dbf"}));
        return arj;
    }

    // Entries of the occurrence log, each written by the error handler as a failure ends the program.
    static void Registra_Falhas(const QStringList& descrições) {
        for (const QString& d : descrições) {
            try {
                Trata_Erro(9999, d, 7, "frmJogo", "Nova_Rodada");
            } catch (const Programa_Encerrado&) {
            }
        }
    }

    static void Escreve_Log(const QString& caminho, const QString& texto) {
        QFile log(caminho);
        ASSERT_TRUE(log.open(QIODevice::WriteOnly));
        log.write(Para_Cp1252(texto));
    }
};
}  // namespace

TEST_F(Adaptação_Teste, AtAnOrdinaryInstallationARequestTakesSystem0AndTheFoldersName) {
    frmAdaptação j;
    EXPECT_TRUE(j.txtCódigo_Sistema->isHidden());
    EXPECT_EQ(j.lblSistema->text(), Nome_Pasta());
    j.show();
    QApplication::setActiveWindow(&j);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&j));

    j.cmdInclusão_Click();
    EXPECT_EQ(j.windowTitle(), "Inclusão de Adaptações");
    j.txtAdaptação->Set_Text("relatório de sorteios por mês");
    j.dbData_Solicitação->setFocus();  // leaving the text enables OK: there is no system to name
    EXPECT_TRUE(j.cmdOk->isEnabled());
    j.dbData_Solicitação->Set_Value(QDate(2019, 3, 1));
    j.cmdOk->setFocus();
    j.cmdOk_Click();

    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 1);
    EXPECT_EQ(linhas[0].Texto, "relatório de sorteios por mês");  // kept as typed
    EXPECT_EQ(linhas[0].Data.toDate(), QDate(2019, 3, 1));
    EXPECT_EQ(linhas[0].Código_Sistema, 0);
    EXPECT_EQ(linhas[0].Nome_Sistema, Nome_Pasta());
    EXPECT_EQ(j.windowTitle(), "Consulta da Adaptação 1");
}

TEST_F(Adaptação_Teste, AnEmptyRequestIsRefusedAndAnEmptyDateTakesToday) {
    frmAdaptação j;
    j.show();
    QApplication::setActiveWindow(&j);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&j));
    j.cmdInclusão_Click();
    j.dbData_Solicitação->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), j.txtAdaptação);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(10)});
    EXPECT_FALSE(j.cmdOk->isEnabled());

    j.txtAdaptação->Set_Text("x");
    j.dbData_Solicitação->setFocus();
    j.cmdOk->setFocus();
    EXPECT_EQ(j.dbData_Solicitação->Value().toDate(), QDate(2019, 3, 14));
    j.cmdCancelar_Click();
    EXPECT_TRUE(Linhas().isEmpty());
}

TEST_F(Adaptação_Teste, ExportOfAnEmptyTableShowsMessage27AndWritesNothing) {
    frmAdaptação j;
    j.cmdExportação_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(27)});
    if (QFile::exists(Caminho_Banco_Temporário())) {
        Reaponta_Conexão(Conexão_Quaternária, Conexão_Rascunho());
        EXPECT_FALSE(Catálogo::Existe_Tabela(Conexão_Quaternária, "tblAdaptação"));
        Reaponta_Conexão(Conexão_Quaternária, Conexão_Principal());
    }
    EXPECT_TRUE(j.cmdExportação->isEnabled());
}

TEST_F(Adaptação_Teste, TheExportedScratchDatabaseImportsBackEveryRequest) {
    Cadastra("Primeiro pedido", QDate(2019, 1, 2), 0, "Quizora");
    Cadastra("Segundo pedido", QDate(2019, 2, 3), 5, "Outro Sistema");
    {
        frmAdaptação j;
        j.cmdExportação_Click();
        EXPECT_EQ(Plataforma.Textos_Caixas(),
                  QStringList{"Exportação concluída: 2 adaptações gravadas em Dados/Temp.Mdb."});
        EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
        EXPECT_TRUE(j.cmdExportação->isEnabled());
        EXPECT_TRUE(j.cmdInclusão->isEnabled());
        EXPECT_FALSE(j.cmdOk->isEnabled());
    }
    Reaponta_Conexão(Conexão_Quaternária, Conexão_Rascunho());
    const Estrutura_Tabela exportada = Catálogo::Estrutura(Conexão_Quaternária, "tblAdaptação");
    QStringList campos;
    for (const Campo_Info& c : exportada.Campos) campos << c.Nome;
    EXPECT_EQ(campos, QStringList({"Data_Solicitação", "Código_Adaptação", "Adaptação", "Código_Sistema",
                                   "Nome_Sistema"}));
    Reaponta_Conexão(Conexão_Quaternária, Conexão_Principal());

    Plataforma.Caixas.clear();
    frmAdaptação j;
    Importa(j, Caminho_Banco_Temporário());
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{"Importação concluída: 2 adaptações incluídas."});
    EXPECT_EQ(j.result(), QDialog::Accepted);  // the import ends by closing the window
    EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 4);
    EXPECT_EQ(linhas[3].Texto, "Segundo pedido");
    EXPECT_EQ(linhas[3].Data.toDate(), QDate(2019, 2, 3));
    EXPECT_EQ(linhas[3].Código_Sistema, 5);
    EXPECT_EQ(linhas[3].Nome_Sistema, "Outro Sistema");
}

TEST_F(Adaptação_Teste, ScratchDatabasesWithoutTheTableOrThatAreNoDatabaseLeaveTheRegisterAsItWas) {
    Cadastra("Já cadastrado", QDate(2019, 1, 2), 0, "Quizora");
    const QString sem_tabela = Pasta_Fixtures + "/Outro Temp.Mdb";
    Catálogo::Cria_Banco(Conexão_Criação(sem_tabela));
    const QString falso = Pasta_Fixtures + "/falso temp.mdb";
    Escreve_Log(falso, "não sou um banco de dados");

    {
        frmAdaptação j;
        Importa(j, sem_tabela);
    }
    {
        frmAdaptação j;
        Importa(j, falso);
    }
    EXPECT_EQ(
        Plataforma.Textos_Caixas(),
        QStringList({"O banco de dados Outro Temp.Mdb não contém a tabela de adaptações.\r\rNenhuma "
                     "adaptação foi importada.",
                     "O arquivo falso temp.mdb não é um banco de dados deste sistema.\r\rNenhuma adaptação "
                     "foi importada."}));
    ASSERT_EQ(Linhas().size(), 1);
    EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
}

TEST_F(Adaptação_Teste, TheLogImportTakesEachTerminatedEntryOfTheErrorHandlersLog) {
    Registra_Falhas({"Primeira falha", "Segunda falha"});
    Plataforma.Caixas.clear();
    frmAdaptação j;
    Importa(j, Caminho_Programa() + "/Log de Ocorrências.Log");
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{"Importação concluída: 2 adaptações incluídas."});
    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 2);
    EXPECT_TRUE(linhas[0].Texto.startsWith("Descrição do Erro: Primeira falha.\r\n\r\nCódigo-Fonte: frmJogo"))
        << linhas[0].Texto.toStdString();
    EXPECT_TRUE(linhas[0].Texto.contains("Usuário: Supervisor"));
    EXPECT_FALSE(linhas[0].Texto.contains("____"));
    EXPECT_TRUE(linhas[1].Texto.startsWith("Descrição do Erro: Segunda falha."));
    EXPECT_EQ(linhas[1].Data.toDate(), QDate(2019, 3, 14));
    EXPECT_EQ(linhas[1].Código_Sistema, 0);
    EXPECT_EQ(linhas[1].Nome_Sistema, Nome_Pasta());
}

TEST_F(Adaptação_Teste, ALogWithoutMarkerImportsNothingAndAnUnterminatedLastEntryIsLeftOut) {
    const QString sem_marca = Pasta_Fixtures + "/sem marca.log";
    Escreve_Log(sem_marca, "Uma linha qualquer\r\n" + QString(135, '_') + "\r\n\r\n");
    const QString sem_fim = Pasta_Fixtures + "/sem fim.log";
    const QString longa(10000, QChar(u'ç'));
    Escreve_Log(sem_fim, "Descrição do Erro: " + longa + ".\r\nCódigo-Fonte: x\r\n" + QString(16, '_') +
                             "\r\n\r\nDescrição do Erro: cortada.\r\nCódigo-Fonte: y\r\n");
    {
        frmAdaptação j;
        Importa(j, sem_marca);
    }
    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList{"Nenhuma adaptação foi encontrada no arquivo sem marca.log."});
    EXPECT_TRUE(Linhas().isEmpty());
    {
        frmAdaptação j;
        Importa(j, sem_fim);
    }
    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 1);
    EXPECT_EQ(linhas[0].Texto, "Descrição do Erro: " + longa + ".\r\n\r\nCódigo-Fonte: x\r\n\r\n");
}

TEST_F(Adaptação_Teste, TheArjImportJoinsTheMemoPiecesOfEachClientAndLeavesNoTablesBehind) {
    const QString arj = Arquivo_Arj_Memorandos();
    frmAdaptação j;
    Importa(j, arj);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{"Importação concluída: 3 adaptações incluídas."});
    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 3);
    EXPECT_EQ(linhas[0].Texto, "Trocar a cor do fundo");
    EXPECT_EQ(linhas[0].Data.toDate(), QDate(2019, 3, 10));
    EXPECT_EQ(linhas[0].Nome_Sistema, "Igreja Central");
    EXPECT_EQ(linhas[0].Código_Sistema, 0);
    // A row without a client is a request as well, without a system's name.
    EXPECT_EQ(linhas[1].Texto, "sem cliente");
    EXPECT_EQ(linhas[1].Data.toDate(), QDate(2019, 3, 11));
    EXPECT_EQ(linhas[1].Nome_Sistema, "");
    EXPECT_EQ(linhas[1].Código_Sistema, 0);
    // A memo with no pieces becomes a request with an empty text; the DOS page is read as such.
    EXPECT_EQ(linhas[2].Texto, "");
    EXPECT_EQ(linhas[2].Nome_Sistema, "Escola Béria");
    EXPECT_FALSE(QDir(Pasta_Dbase()).exists());
    EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
}

TEST_F(Adaptação_Teste, AtTheWorkingInstallationTheClientIsSoughtAmongTheSystems) {
    Catálogo::Cria_Tabela(
        Conexão, "tblSistema",
        {{"Sistema", Tipo_Texto, 50, false, false}, {"Código_Sistema", Tipo_Long, 0, true, false}});
    Catálogo::Adiciona_Índice(Conexão, "tblSistema", {"idxSistema", Tipo_Índice::Único, {"Sistema"}});
    Catálogo::Adiciona_Índice(Conexão, "tblSistema",
                              {"idxCódigo_Sistema", Tipo_Índice::Primário, {"Código_Sistema"}});
    Tabela_Quaternária.Reinicia();
    Abre_Tabela_Quaternária("tblSistema");
    for (const char* sistema : {"Escola Béria", "Igreja Central"}) {
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Sistema").Set_Value(QString::fromUtf8(sistema));
        Tabela_Quaternária.Update();
    }
    const QString arj = Arquivo_Arj_Memorandos();
    Unidade_Trabalho = "/media/trabalho";
    frmAdaptação j;
    EXPECT_FALSE(j.txtCódigo_Sistema->isHidden());
    Importa(j, arj);
    const auto linhas = Linhas();
    ASSERT_EQ(linhas.size(), 3);
    EXPECT_EQ(linhas[0].Código_Sistema, 2);
    EXPECT_EQ(linhas[1].Código_Sistema, 0);  // no client to seek
    EXPECT_EQ(linhas[2].Código_Sistema, 1);
}

TEST_F(Adaptação_Teste, BadArchivesEndInAMessageAndLeaveTheRegisterAsItWas) {
    Cadastra("Já cadastrado", QDate(2019, 1, 2), 0, "Quizora");
    const QString bom = Arquivo_Arj_Memorandos();
    QStringList mensagens;
    auto tenta = [&](const QString& arquivo) {
        Plataforma.Caixas.clear();
        frmAdaptação j;
        Importa(j, arquivo);
        mensagens << Plataforma.Textos_Caixas().join("|");
        EXPECT_EQ(Linhas().size(), 1);
        EXPECT_FALSE(QDir(Pasta_Dbase()).exists());
    };

    // Damaged: bytes of the middle of the archive changed, then cut short.
    QFile original(bom);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    QByteArray bytes = original.readAll();
    original.close();
    QDir().mkpath(Pasta_Fixtures + "/danificado");
    for (int i = bytes.size() / 3; i < bytes.size() / 3 + 40; ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ 0x5A);
    Escreve_Log(Pasta_Fixtures + "/danificado/norvane2.arj", QString());
    QFile danificado(Pasta_Fixtures + "/danificado/norvane2.arj");
    ASSERT_TRUE(danificado.open(QIODevice::WriteOnly));
    danificado.write(bytes);
    danificado.close();
    tenta(danificado.fileName());

    // Other tables in the archive.
    QDir().mkpath(Pasta_Fixtures + "/outras");
    ASSERT_TRUE(
        Escreve_Dbf(Pasta_Fixtures + "/outras/CLIENTES.DBF", "LDID/87", {{"NOME", FTString, 20}}, {{"Ana"}}));
    ASSERT_TRUE(
        Compacta_Arj(Pasta_Fixtures + "/outras/norvane2.arj", Pasta_Fixtures + "/outras", {"CLIENTES.dbf"}));
    tenta(Pasta_Fixtures + "/outras/norvane2.arj");

    // The memo table without its text field.
    QDir().mkpath(Pasta_Fixtures + "/sem campo");
    ASSERT_TRUE(
        Escreve_Tabelas_Memorandos(Pasta_Fixtures + "/sem campo", "LDID/87", {{"A", "1", "20190101"}}, {}));
    ASSERT_TRUE(Escreve_Dbf(Pasta_Fixtures + "/sem campo/MEMORAND.DBF", "LDID/87",
                            {{"CD_ME_MEMO", FTInteger, 6}}, {{"1"}}));
    ASSERT_TRUE(Compacta_Arj(Pasta_Fixtures + "/sem campo/norvane2.arj", Pasta_Fixtures + "/sem campo",
                             {"NORVANE.dbf", "MEMORAND.dbf"}));
    tenta(Pasta_Fixtures + "/sem campo/norvane2.arj");

    // No archiver on this computer.
    Programa_Arj = Pasta.Caminho() + "/não existe/arj";
    tenta(bom);

    ASSERT_EQ(mensagens.size(), 4);
    EXPECT_TRUE(mensagens[0].startsWith("Não foi possível descompactar o arquivo norvane2.arj"))
        << mensagens[0].toStdString();
    EXPECT_EQ(mensagens[1],
              "O arquivo norvane2.arj não contém as tabelas Norvane.Dbf e Memorand.Dbf do sistema de "
              "memorandos.\r\rNenhuma adaptação foi importada.");
    EXPECT_EQ(mensagens[2],
              "A tabela MEMORAND.dbf não tem o campo Memor_Memo.\r\rNenhuma adaptação foi importada.");
    EXPECT_EQ(
        mensagens[3],
        "O programa arj, que descompacta os arquivos .ARJ, não está instalado neste computador.\r\rInstale-o "
        "(pacote arj) e repita a importação.");
}

TEST_F(Adaptação_Teste, AFileDialogClosedWithoutAFileEndsTheImportWithNothingDone) {
    frmAdaptação j;
    j.cmdImportação_Click();
    EXPECT_FALSE(j.cmdOk->isEnabled());
    EXPECT_FALSE(j.cmdExportação->isEnabled());
    EXPECT_TRUE(j.cmdCancelar->isEnabled());
    j.dbData_Solicitação_LostFocus();
    EXPECT_EQ(Plataforma.Escolhas_De_Arquivo.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(j.result(), QDialog::Accepted);
    EXPECT_TRUE(Linhas().isEmpty());
}

// A row that the store refuses goes to the error handler, and the rows after it still come in.
TEST_F(Adaptação_Teste, ARefusedRowIsToldAndTheRestOfTheFileComesIn) {
    // A unique system name: the second entry of the log, which has the same name, is refused.
    Catálogo::Adiciona_Índice(Conexão, "tblAdaptação",
                              {"idxNome_Sistema", Tipo_Índice::Único, {"Nome_Sistema"}});
    Registra_Falhas({"Primeira falha", "Segunda falha"});
    Plataforma.Caixas.clear();
    {
        frmAdaptação j;
        Importa(j, Caminho_Programa() + "/Log de Ocorrências.Log");
    }
    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList({"Informação já cadastrada no banco de dados.",
                           "Importação concluída: 1 adaptação incluída, 1 recusada."}));
    ASSERT_EQ(Linhas().size(), 1);
    EXPECT_TRUE(Linhas()[0].Texto.startsWith("Descrição do Erro: Primeira falha."));
    EXPECT_FALSE(Transação_Aberta());

    // The archive: its second "Igreja Central" is refused; the client after it and the row without a
    // client come in.
    Conexão.Execute("Delete From tblAdaptação");
    Limpa_Cache_Lastrec();
    const QString pasta = Pasta_Fixtures + "/repetido";
    QDir().mkpath(pasta);
    ASSERT_TRUE(Escreve_Tabelas_Memorandos(pasta, "LDID/2",
                                           {{"Igreja Central", "10", "20190310"},
                                            {"Igreja Central", "11", "20190311"},
                                            {"", "12", "20190312"},
                                            {"Escola Nova", "13", "20190313"}},
                                           {{"10", "um"}, {"11", "dois"}, {"12", "tres"}, {"13", "quatro"}}));
    ASSERT_TRUE(Compacta_Arj(pasta + "/norvane2.arj", pasta, {"NORVANE.dbf", "MEMORAND.dbf"}));
    Plataforma.Caixas.clear();
    {
        frmAdaptação j;
        Importa(j, pasta + "/norvane2.arj");
    }
    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList({"Informação já cadastrada no banco de dados.",
                           "Importação concluída: 3 adaptações incluídas, 1 recusada."}));
    QStringList textos;
    for (const Linha_Adaptação& l : Linhas()) textos << l.Texto + "|" + l.Nome_Sistema;
    EXPECT_EQ(textos, (QStringList{"um|Igreja Central", "tres|", "quatro|Escola Nova"}));
    EXPECT_FALSE(Transação_Aberta());
}
