// The export of the question bank to Temp.Mdb, driven through the question register offscreen.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <sqlite3.h>

#include "common/Globais.h"
#include "questions/frmPergunta.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// The scratch database read by SQLite itself, apart from the program's store.
QStringList Consulta_Rascunho(const QString& sql) {
    QStringList linhas;
    sqlite3* banco = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(Caminho_Banco_Temporário()).constData(), &banco,
                        SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(banco);
        return {"(não abriu)"};
    }
    sqlite3_stmt* comando = nullptr;
    if (sqlite3_prepare_v2(banco, sql.toUtf8().constData(), -1, &comando, nullptr) == SQLITE_OK) {
        while (sqlite3_step(comando) == SQLITE_ROW) {
            QStringList colunas;
            for (int i = 0; i < sqlite3_column_count(comando); ++i)
                colunas << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, i)));
            linhas << colunas.join('|');
        }
    } else {
        linhas << QString("(erro: %1)").arg(sqlite3_errmsg(banco));
    }
    sqlite3_finalize(comando);
    sqlite3_close(banco);
    return linhas;
}

class Exportação_Pergunta_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Plataforma.Caixas.clear();
        // The installation's seed has been imported; each test starts without a scratch database.
        Exclui_Arquivo_Banco(Caminho_Banco_Temporário());
    }

    static void Insere(const QString& pergunta, bool comparada, bool verificada) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblPergunta");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Pergunta").Set_Value(pergunta);
        Tabela_Quaternária.Fields("Resposta_Correta").Set_Value("Certa");
        Tabela_Quaternária.Fields("Resposta_Incorreta_1").Set_Value("Errada Um");
        Tabela_Quaternária.Fields("Resposta_Incorreta_2").Set_Value("Errada Dois");
        Tabela_Quaternária.Fields("Resposta_Incorreta_3").Set_Value("Errada Três");
        Tabela_Quaternária.Fields("Tipo").Set_Value(comparada ? "G" : "B");
        Tabela_Quaternária.Fields("Já_Comparada").Set_Value(comparada);
        Tabela_Quaternária.Fields("Já_Verificada").Set_Value(verificada);
        Tabela_Quaternária.Fields("Pergunta_Original").Set_Value(" ");
        Tabela_Quaternária.Update();
        Tabela_Quaternária.Reinicia();
        Limpa_Cache_Lastrec();
    }
    // Pergunta and Pergunta_Original of the main table, in code order.
    static QStringList Principal() {
        QStringList linhas;
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPergunta Order By Código_Pergunta");
        for (; !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext())
            linhas << Tabela_Quaternária.Fields("Pergunta").Value().toString() + "|" +
                          Tabela_Quaternária.Fields("Pergunta_Original").Value().toString();
        return linhas;
    }
    static void Exclui_Primeira() {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblPergunta");
        Tabela_Quaternária.Delete();
        Tabela_Quaternária.Reinicia();
        Limpa_Cache_Lastrec();
    }
    // Inclusão … Sair and Exporta: their letters, or "-" while disabled.
    static QString Botões(const frmPergunta& j) {
        const QPushButton* botões[] = {j.cmdInclusão, j.cmdAlteração, j.cmdExclusão, j.cmdLocaliza,
                                       j.cmdOk,       j.cmdCancelar,  j.cmdSair,     j.cmdExportação};
        QString s;
        for (int i = 0; i < 8; ++i) s += botões[i]->isEnabled() ? QString("IAELOCSX")[i] : QChar('-');
        return s;
    }
};

const QString Colunas_Rascunho =
    "Pergunta|Código_Pergunta|Resposta_Correta|Resposta_Incorreta_1|"
    "Resposta_Incorreta_2|Resposta_Incorreta_3|Tipo|Já_Comparada|Já_Verificada|"
    "Pergunta_Original";
}  // namespace

TEST_F(Exportação_Pergunta_Teste, AnEmptyBankGivesAnEmptyTableWithItsColumnsAndIndexesAndTheMessage) {
    frmPergunta janela;
    EXPECT_EQ(janela.cmdExportação->text(), "E&xporta");
    janela.cmdExportação->click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(101)}));
    EXPECT_TRUE(Aviso(101).contains("TEMP.MDB"));
    EXPECT_EQ(Consulta_Rascunho("Select group_concat(name, '|') From pragma_table_info('tblPergunta')"),
              QStringList({Colunas_Rascunho}));
    EXPECT_EQ(Consulta_Rascunho("Select Count(*) From tblPergunta"), QStringList({"0"}));

    Ligação rascunho;
    rascunho.Open(Conexão_Rascunho());
    const Estrutura_Tabela estrutura = Catálogo::Estrutura(rascunho, "tblPergunta");
    ASSERT_EQ(estrutura.Campos.size(), 10);
    EXPECT_EQ(estrutura.Campos[0].Largura, 124);
    EXPECT_TRUE(estrutura.Campos[1].Auto);
    EXPECT_EQ(estrutura.Campos[2].Largura, 50);
    EXPECT_EQ(estrutura.Campos[6].Largura, 1);
    EXPECT_EQ(estrutura.Campos[7].Tipo, Tipo_Boolean);
    EXPECT_FALSE(estrutura.Campos[0].Zero);
    EXPECT_TRUE(estrutura.Campos[9].Zero);
    QStringList índices;
    for (const Índice_Info& í : estrutura.Índices)
        índices << í.Nome + "(" + í.Campos.join(',') +
                       (í.Tipo == Tipo_Índice::Simples ? ")" : ") não simples");
    índices.sort();
    EXPECT_EQ(índices, QStringList({"idxCódigo_Pergunta(Código_Pergunta)", "idxPergunta(Pergunta)",
                                    "idxPergunta_Original(Pergunta_Original)"}));
    rascunho.Close();

    // The main connection of the scratch slot is back on the main database.
    EXPECT_EQ(Conexão_Temporária.ConnectionString, Conexão_Principal());
    EXPECT_EQ(Botões(janela), "IAEL--SX");
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Exportação_Pergunta_Teste, EveryQuestionTravelsWithItsMarksAndIsStampedInBothTables) {
    Insere("Quem construiu a arca?", true, false);
    Insere("Quem foi o construtor da arca?", false, true);
    Insere("Qual o nome do hotel D'Ávila?", false, false);
    frmPergunta janela;
    QStringList legendas;
    bool barra_visível = true;
    Plataforma.Ao_Esperar = [&] {
        legendas << janela.windowTitle();
        barra_visível = barra_visível && janela.pgbBarra_De_Progresso->isVisible();
        // OK and Cancelar stay out of reach while the export runs.
        EXPECT_EQ(Botões(janela), "--------");
        janela.cmdOk->click();
        janela.cmdCancelar->click();
        janela.cmdExportação_Click();
    };
    janela.show();
    janela.cmdExportação->click();
    Plataforma.Ao_Esperar = nullptr;

    EXPECT_EQ(legendas.size(), 3);  // events let through once per row
    EXPECT_TRUE(barra_visível);
    EXPECT_FALSE(janela.pgbBarra_De_Progresso->isVisible());
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(101)}));
    EXPECT_EQ(
        Consulta_Rascunho("Select Código_Pergunta, Pergunta, Resposta_Correta, Resposta_Incorreta_3, Tipo, "
                          "Já_Comparada, Já_Verificada, Pergunta_Original From tblPergunta Order By 1"),
        QStringList(
            {"1|Quem construiu a arca?|Certa|Errada Três|G|1|0|Quem construiu a arca?",
             "2|Quem foi o construtor da arca?|Certa|Errada Três|B|0|1|Quem foi o construtor da arca?",
             "3|Qual o nome do hotel D'Ávila?|Certa|Errada Três|B|0|0|Qual o nome do hotel D'Ávila?"}));
    EXPECT_EQ(Principal(), QStringList({"Quem construiu a arca?|Quem construiu a arca?",
                                        "Quem foi o construtor da arca?|Quem foi o construtor da arca?",
                                        "Qual o nome do hotel D'Ávila?|Qual o nome do hotel D'Ávila?"}));
    // The caption keeps the progress until the next record is shown.
    EXPECT_EQ(janela.windowTitle(), legendas.last());
    EXPECT_EQ(Botões(janela), "IAEL--SX");
    EXPECT_FALSE(Transação_Aberta());

    // The commands still act on the question shown before the export.
    janela.cmdMovimenta_Registro_Click(2);
    janela.cmdAlteração_Click();
    EXPECT_EQ(janela.windowTitle(), "Alteração da Pergunta 2");
    janela.cmdCancelar_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(101)}));
}

TEST_F(Exportação_Pergunta_Teste, ASecondExportRenumbersFromOneAndKeepsTheTablesOfOtherExports) {
    Insere("Primeira?", false, false);
    Insere("Segunda?", false, false);
    Insere("Terceira?", false, false);
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    {
        Ligação rascunho;
        rascunho.Open(Conexão_Rascunho());
        rascunho.Execute("Create Table tblDinâmica (Dinâmica Text, Materiais Text)");
        rascunho.Execute("Insert Into tblDinâmica Values ('Roda de conversa', 'Cadeiras')");
        rascunho.Close();
    }
    {
        frmPergunta janela;
        janela.cmdExportação->click();
    }
    Exclui_Primeira();
    frmPergunta janela;
    janela.cmdExportação->click();
    EXPECT_EQ(Consulta_Rascunho("Select Código_Pergunta, Pergunta From tblPergunta Order By 1"),
              QStringList({"1|Segunda?", "2|Terceira?"}));
    EXPECT_EQ(Consulta_Rascunho("Select * From tblDinâmica"), QStringList({"Roda de conversa|Cadeiras"}));
}

TEST_F(Exportação_Pergunta_Teste, TheButtonStandsDisabledDuringAnEdit) {
    Insere("Primeira?", false, false);
    frmPergunta janela;
    janela.cmdAlteração_Click();
    EXPECT_FALSE(janela.cmdExportação->isEnabled());
    janela.cmdExportação_Click();
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
    janela.cmdCancelar_Click();
    EXPECT_TRUE(janela.cmdExportação->isEnabled());
    janela.cmdInclusão_Click();
    EXPECT_FALSE(janela.cmdExportação->isEnabled());
    janela.cmdCancelar_Click();
    EXPECT_TRUE(janela.cmdExportação->isEnabled());
}

TEST_F(Exportação_Pergunta_Teste, AScratchFileThatIsNotADatabaseIsToldAndLeftAsItWas) {
    Insere("Primeira?", false, false);
    QFile lixo(Caminho_Banco_Temporário());
    ASSERT_TRUE(lixo.open(QIODevice::WriteOnly));
    lixo.write("Isto não é um banco de dados, é uma carta guardada com o nome errado.");
    lixo.close();
    frmPergunta janela;
    janela.cmdExportação->click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("O arquivo TEMP.MDB da pasta "));
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains("não é um banco de dados"));
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Exclamação);
    ASSERT_TRUE(lixo.open(QIODevice::ReadOnly));
    EXPECT_TRUE(lixo.readAll().startsWith("Isto não é"));
    EXPECT_EQ(Principal(), QStringList({"Primeira?| "}));
    EXPECT_EQ(Botões(janela), "IAEL--SX");
}

namespace {
// A folder mounted for one test; needs the right to mount, which not every machine gives.
class Montagem {
  public:
    bool Monta(const QStringList& argumentos, const QString& ponto) {
        Ponto = ponto;
        Montada = QProcess::execute("mount", argumentos + QStringList{ponto}) == 0;
        return Montada;
    }
    ~Montagem() {
        if (Montada) QProcess::execute("umount", {"-l", Ponto});
    }

  private:
    QString Ponto;
    bool Montada = false;
};
}  // namespace

TEST_F(Exportação_Pergunta_Teste, AReadOnlyScratchFileIsToldAndNothingChanges) {
    Insere("Primeira?", false, false);
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    Montagem somente_leitura;
    if (!somente_leitura.Monta({"--bind", "-o", "ro", Caminho_Banco_Temporário()},
                               Caminho_Banco_Temporário()))
        GTEST_SKIP() << "sem permissão para montar";
    frmPergunta janela;
    janela.cmdExportação->click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains("protegidos contra gravação"));
    EXPECT_EQ(Principal(), QStringList({"Primeira?| "}));
    EXPECT_EQ(Botões(janela), "IAEL--SX");
}

TEST_F(Exportação_Pergunta_Teste, AFullDiskIsToldBeforeAnythingIsWritten) {
    for (int i = 1; i <= 600; ++i) Insere(QString("Pergunta %1?").arg(i), false, false);
    // The data folder moves to a small disk of its own, with the databases already on it.
    const QString cópia = Pasta.Caminho() + "/Dados guardados";
    Reinicia_Estado_Global();
    ASSERT_TRUE(QDir().rename(Pasta.Dados(), cópia));
    ASSERT_TRUE(QDir().mkpath(Pasta.Dados()));
    Montagem disco;
    if (!disco.Monta({"-t", "tmpfs", "-o", "size=1200k", "tmpfs"}, Pasta.Dados()))
        GTEST_SKIP() << "sem permissão para montar";
    for (const QString& nome : QDir(cópia).entryList(QDir::Files))
        ASSERT_TRUE(QFile::copy(cópia + "/" + nome, Pasta.Dados() + "/" + nome)) << nome.toStdString();
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Conexão_Manutenção.Open(Conexão_Auditoria());
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    Plataforma.Caixas.clear();
    {
        frmPergunta janela;
        janela.cmdExportação->click();
        ASSERT_EQ(Plataforma.Caixas.size(), 1);
        EXPECT_TRUE(
            Plataforma.Caixas[0].Texto.startsWith("Não há espaço livre suficiente no disco da pasta "));
        EXPECT_EQ(Botões(janela), "IAEL--SX");
    }
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
    EXPECT_EQ(Principal().first(), "Pergunta 1?| ");
    Reinicia_Estado_Global();
}
