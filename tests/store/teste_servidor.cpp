// The store on a PostgreSQL server: the translation of the store's statements, the choice of the engine,
// and what both engines must do alike inside one transaction.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "common/Globais.h"
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
