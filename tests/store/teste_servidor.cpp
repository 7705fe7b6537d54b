// The store on a PostgreSQL server: the translation of the store's statements, the choice of the engine,
// and what both engines must do alike inside one transaction.
#include <gtest/gtest.h>
#include <libpq-fe.h>

#include <QDir>
#include <QFile>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "store/Catálogo.h"
#include "store/Comando_Banco.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
const QHash<QString, QString> Nomes = {{"tblpergunta", "tblPergunta"},
                                       {"código_pergunta", "Código_Pergunta"},
                                       {"pergunta", "Pergunta"},
                                       {"tipo", "Tipo"}};

QString Traduz(const QString& sql, int* valores = nullptr) {
    int n = 0;
    const QString traduzido = Traduz_Para_Servidor(sql, Nomes, n);
    if (valores) *valores = n;
    return traduzido;
}
}  // namespace

TEST(Tradução_Servidor, NamesAreQuotedAsCreatedAndValuesNumberedWhileLiteralsStayAsTyped) {
    int valores = 0;
    EXPECT_EQ(Traduz("SELECT rowid, Código_Pergunta FROM TBLPERGUNTA WHERE (pergunta = 'tipo ? tblPergunta') "
                     "AND +rowid <= ? ORDER BY Pergunta DESC, rowid LIMIT ?",
                     &valores),
              "SELECT rowid, \"Código_Pergunta\" FROM \"tblPergunta\" WHERE (\"Pergunta\" = 'tipo ? "
              "tblPergunta') AND rowid <= $1 ORDER BY \"Pergunta\" DESC NULLS LAST, rowid LIMIT $2");
    EXPECT_EQ(valores, 2);
    // Words that are not names of the schema, and the statement's keywords, are left alone.
    EXPECT_EQ(Traduz("Select Count (*) From tblPergunta Where Trim(Tipo) = 'G' And Outro is null"),
              "Select Count (*) From \"tblPergunta\" Where Trim(\"Tipo\") = 'G' And Outro is null");
}

TEST(Tradução_Servidor, LikeIgnoresCaseAndReadsJetsBracketsWhateverTheUserTyped) {
    EXPECT_EQ(
        Traduz("Select * From tblPergunta Where Pergunta Like '%AÇÃO 50[%] a[_]b[[]c\\d%'").toStdString(),
        "Select * From \"tblPergunta\" Where lower(\"Pergunta\"::text COLLATE \"und-x-icu\") Like "
        "'%ação 50\\% a\\_b\\[c\\\\d%'");
    // A quote typed inside the pattern stays inside it: the criterion cannot grow another condition.
    EXPECT_EQ(Traduz("Select * From tblPergunta Where Pergunta Like '%x'' Or Tipo Like ''%'").toStdString(),
              "Select * From \"tblPergunta\" Where lower(\"Pergunta\"::text COLLATE \"und-x-icu\") Like "
              "'%x'' or tipo like ''%'");
}

// Both engines: a duplicate refused inside a transaction leaves what the transaction wrote before it.
TEST(Motor_Banco, ARefusedDuplicateInsideATransactionKeepsTheTransactionsOtherWrites) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Cria_Bancos_De_Teste();
    Abre_Tabela("tblUsuário");
    Operação = "Inclusão";
    Em_Cadastro = true;
    Inicia_Transação();
    for (const char* nome : {"Ana", "ANA", "Bia"}) {
        Tabela.AddNew();
        Tabela.Fields("Usuário").Set_Value(nome);
        Tabela.Fields("Senha").Set_Value(1);
        Grava(Tabela, false);
        if (QString(nome) == "ANA") {
            EXPECT_TRUE(Registro_Duplicado);
            Tabela.CancelUpdate();
        }
    }
    Finaliza_Transação();
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    ASSERT_EQ(plataforma.Caixas.size(), 1);
    EXPECT_EQ(plataforma.Caixas[0].Texto, "Informação já cadastrada no banco de dados.");
    Abre_Tabela("Select * From tblUsuário Order By Usuário");
    QStringList nomes;
    for (; !Tabela.Eof(); Tabela.MoveNext()) nomes << Tabela.Fields("Usuário").Value().toString();
    EXPECT_EQ(nomes, (QStringList{"Ana", "Bia"}));
}

// Both engines: an installation that names a server which does not answer is told so at start.
TEST(Motor_Banco, ANamedServerThatDoesNotAnswerIsToldAtStartAndNothingIsCreated) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QFile servidor(pasta.Dados() + "/" + Arquivo_Servidor);
    ASSERT_TRUE(servidor.open(QIODevice::WriteOnly));
    servidor.write(("# o servidor da igreja\nhost=" + pasta.Caminho() + " port=1 dbname=quizora\n").toUtf8());
    servidor.close();
    EXPECT_TRUE(Inicia_Programa());
    ASSERT_EQ(plataforma.Caixas.size(), 1);
    EXPECT_TRUE(plataforma.Caixas[0].Texto.startsWith("O servidor de banco de dados local (" +
                                                      pasta.Caminho() + "):1 não respondeu."))
        << plataforma.Caixas[0].Texto.toStdString();
    EXPECT_EQ(plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Principal()));
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Manutenção()));
}

// On a server the main and audit databases are schemas there; the scratch database stays a local file.
TEST(Motor_Banco, OnAServerTheMainAndAuditDatabasesLiveThereAndTheScratchOneStaysAFile) {
    if (!Testa_No_Servidor()) GTEST_SKIP() << "Só no servidor";
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa();
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Principal()));
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Manutenção()));
    EXPECT_TRUE(Existe_Banco(Caminho_Banco_Principal()));
    EXPECT_TRUE(Existe_Banco(Caminho_Banco_Manutenção()));
    ASSERT_TRUE(Conexão.Sessão_Física());
    EXPECT_TRUE(Conexão.Sessão_Física()->Servidor());
    EXPECT_TRUE(Conexão_Manutenção.Sessão_Física()->Servidor());
    EXPECT_NE(Conexão.Sessão_Física(), Conexão_Manutenção.Sessão_Física());
    EXPECT_EQ(Lastrec("tblEstado", Conexão), 28);

    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    EXPECT_TRUE(QFile::exists(Caminho_Banco_Temporário()));
    Ligação rascunho;
    rascunho.Open(Conexão_Rascunho());
    ASSERT_TRUE(rascunho.Sessão_Física());
    EXPECT_FALSE(rascunho.Sessão_Física()->Servidor());
}

namespace {
// One answer of the server to a statement on the installation's main database, as text.
QString Do_Servidor(const QString& sql) {
    PGconn* c = PQconnectdb(Conexão_Do_Servidor(Caminho_Banco_Principal()).toUtf8().constData());
    PQclear(PQexec(c, ("SET search_path TO " + Esquema_Do_Servidor(Caminho_Banco_Principal())).toUtf8()));
    PGresult* r = PQexec(c, sql.toUtf8().constData());
    QStringList linhas;
    for (int i = 0; i < PQntuples(r); ++i) linhas << QString::fromUtf8(PQgetvalue(r, i, 0));
    const QString erro = PQresultStatus(r) == PGRES_TUPLES_OK || PQresultStatus(r) == PGRES_COMMAND_OK
                             ? QString()
                             : "erro: " + QString::fromUtf8(PQerrorMessage(c));
    PQclear(r);
    PQfinish(c);
    return erro.isEmpty() ? linhas.join('\n') : erro;
}

int Achadas_Pelo_Localizador() {
    Abre_Tabela_Dynaset("Select * From tblPergunta Where Pergunta Like '%GIRASSOL%'",
                        Conexão.ConnectionString);
    return Tabela_Dynaset.RecordCount();
}
}  // namespace

// A word sought in any position of a question's texts: at the start the server gets an index of their
// three-letter pieces, which the translated search can use; where the server cannot give one, the start
// and the search go on as before, without a word to the user.
TEST(Motor_Banco, AWordSoughtAnywhereHasATrigramIndexWhereTheServerGivesOneAndIsFoundWithout) {
    if (!Testa_No_Servidor() || !Servidor_Teste::Ativo()) GTEST_SKIP() << "Só no servidor";
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa();
    plataforma.Caixas.clear();
    const QString índices_de_texto =
        "SELECT count(*) FROM pg_indexes WHERE schemaname = current_schema() AND tablename = 'tblPergunta' "
        "AND indexdef LIKE '%gin_trgm_ops%'";
    EXPECT_EQ(Do_Servidor(índices_de_texto), "1");
    QStringList inclusões;
    for (int i = 1; i <= 60; ++i)
        inclusões << QString(
                         "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) VALUES "
                         "('%1', 'x', 'G', false)")
                         .arg(i % 3 ? QString("Pergunta %1?").arg(i) : QString("Onde o Girassol %1?").arg(i));
    ASSERT_TRUE(Executa_Como_Outra_Estação(inclusões));
    EXPECT_EQ(Achadas_Pelo_Localizador(), 20);
    // On a table of some size, the search as the store sends it reads through the index.
    ASSERT_EQ(Do_Servidor(
                  "INSERT INTO \"tblPergunta\" (\"Pergunta\", \"Resposta_Correta\", \"Tipo\", "
                  "\"Já_Comparada\") SELECT 'Outra ' || i, 'x', 'G', false FROM generate_series(1, 5000) i"),
              "");
    // New rows wait in the index's pending list until the server's vacuum takes them in.
    ASSERT_EQ(Do_Servidor("VACUUM ANALYZE \"tblPergunta\""), "");
    const QString plano = Do_Servidor(
        "EXPLAIN SELECT count(*) FROM \"tblPergunta\" WHERE "
        "lower(\"Pergunta\"::text COLLATE \"und-x-icu\") LIKE '%girassol%'");
    EXPECT_TRUE(plano.contains("Bitmap Index Scan on t_")) << plano.toStdString();

    // A server whose extension cannot be added: dropped, and no schema "public" to add it to.
    ASSERT_EQ(Do_Servidor("DROP EXTENSION pg_trgm CASCADE; ALTER SCHEMA public RENAME TO guardado"), "");
    {
        QList<long> falhas;
        Rotina trap("Teste", "Captura", [&](long n, const QString&, long) { falhas << n; });
        Catálogo::Garante_Índices_de_Texto(Conexão, "tblPergunta", {"Pergunta", "Resposta_Correta"});
        EXPECT_TRUE(falhas.isEmpty());
        EXPECT_EQ(Achadas_Pelo_Localizador(), 20);
        EXPECT_TRUE(falhas.isEmpty());
    }
    EXPECT_TRUE(plataforma.Caixas.isEmpty());
    EXPECT_EQ(Do_Servidor(índices_de_texto), "0");
    ASSERT_EQ(Do_Servidor("ALTER SCHEMA guardado RENAME TO public"), "");
    // Given back, the next start makes the indexes again.
    Catálogo::Garante_Índices_de_Texto(Conexão, "tblPergunta", {"Pergunta"});
    EXPECT_EQ(Do_Servidor(índices_de_texto), "1");
    EXPECT_EQ(Achadas_Pelo_Localizador(), 20);
}

// A table copied by its structure from the embedded file to the server keeps fields, widths, Zero, Auto
// and indexes: what a move of an installation to the server needs.
TEST(Motor_Banco, ATableMadeFromAnotherDatabasesStructureKeepsFieldsAndIndexes) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Cria_Bancos_De_Teste();
    const Estrutura_Tabela origem = Catálogo::Estrutura(Conexão, "tblUsuário");
    ASSERT_FALSE(origem.Campos.isEmpty());
    // Another database of the same engine: the scratch one, or the copy's schema on a server.
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Cópia_Banco()));
    Ligação destino;
    destino.Open(Conexão_Cópia());
    Catálogo::Cria_Tabela_Da_Estrutura(destino, origem);
    const Estrutura_Tabela feita = Catálogo::Estrutura(destino, "tblUsuário");
    ASSERT_EQ(feita.Campos.size(), origem.Campos.size());
    for (int i = 0; i < feita.Campos.size(); ++i) {
        EXPECT_EQ(feita.Campos[i].Nome, origem.Campos[i].Nome);
        EXPECT_EQ(feita.Campos[i].Tipo, origem.Campos[i].Tipo);
        EXPECT_EQ(feita.Campos[i].Largura, origem.Campos[i].Largura);
        EXPECT_EQ(feita.Campos[i].Auto, origem.Campos[i].Auto);
        EXPECT_EQ(feita.Campos[i].Zero, origem.Campos[i].Zero);
    }
    ASSERT_EQ(feita.Índices.size(), origem.Índices.size());
    for (int i = 0; i < feita.Índices.size(); ++i) {
        EXPECT_EQ(feita.Índices[i].Nome, origem.Índices[i].Nome);
        EXPECT_EQ(feita.Índices[i].Tipo, origem.Índices[i].Tipo);
        EXPECT_EQ(feita.Índices[i].Campos, origem.Índices[i].Campos);
    }
    destino.Close();
    Exclui_Arquivo_Banco(Caminho_Cópia_Banco());
}

// Both engines: statements refused inside a transaction, as they are prepared or as they run, leave the
// transaction's earlier writes in place, and it goes on to commit.
TEST(Motor_Banco, StatementsRefusedInsideATransactionKeepsItsEarlierWrites) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Cria_Bancos_De_Teste();
    const auto sessão = Conexão.Sessão_Física();
    ASSERT_TRUE(sessão);
    Falha_Banco falha;
    sessão->Inicia();
    ASSERT_TRUE(sessão->Prepara_Escrita(falha));
    const auto inclui = [&](const char* nome) {
        Comando_Banco* c = sessão->Prepara("INSERT INTO tblUsuário (Usuário, Senha) VALUES (?, 1)", falha);
        if (c == nullptr) return -1;
        c->Liga_Texto(1, nome);
        const int r = c->Passo();
        c->Reinicia();
        return r;
    };
    EXPECT_EQ(inclui("Ana"), Fim_Comando);
    EXPECT_EQ(sessão->Prepara("SELECT * FROM tblUsuário WHERE Usuário >>> 1", falha), nullptr);
    EXPECT_EQ(falha.Número, -2147217900);
    Falha_Banco outra;
    EXPECT_FALSE(sessão->Executa("UPDATE tblUsuário SET Nenhum_Campo = 1", outra));
    EXPECT_TRUE(outra.Houve());
    EXPECT_NE(inclui("Ana"), Fim_Comando);  // the duplicate
    EXPECT_EQ(inclui("Bia"), Fim_Comando);
    Falha_Banco confirmação;
    EXPECT_TRUE(sessão->Confirma(confirmação));
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 2);
}
