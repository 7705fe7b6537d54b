// The recordsets and the catalogue behave as the windows expect of the store.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "store/Catálogo.h"
#include "store/Comparação.h"
#include "failure/Trata_Erro.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// Collects the failures that reach the innermost trap instead of ending the program.
struct Captura {
    QList<QPair<long, QString>> Falhas;
    Rotina Trap{"Teste", "Captura", [this](long n, const QString& d, long) { Falhas.append({n, d}); }};
};

class Registros_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    void SetUp() override { Cria_Bancos_De_Teste(); }

    void Inclui_Pergunta(const QString& pergunta, const QString& resposta, const QString& tipo = "G") {
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(pergunta);
        Tabela.Fields("Resposta_Correta").Set_Value(resposta);
        Tabela.Fields("Tipo").Set_Value(tipo);
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Update();
    }
};
}  // namespace

TEST_F(Registros_Teste, TextComparisonIgnoresCaseOfEveryPortugueseLetterButNotAccents) {
    Abre_Tabela("tblPergunta");
    Inclui_Pergunta("AÇÃO E REAÇÃO", "Newton");
    Inclui_Pergunta("água", "H2o");
    Inclui_Pergunta("agua sem acento", "Nada");
    Inclui_Pergunta("Érica", "Nome");

    Tabela.Set_Index("idxPergunta");
    Tabela.Seek("ação e reação");
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Newton");
    Tabela.Seek("ÁGUA");
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "água");
    Tabela.Seek("érica");
    EXPECT_FALSE(Tabela.Eof());
    Tabela.Seek("ERICA");  // é and e are different letters
    EXPECT_TRUE(Tabela.Eof());

    // Accented letters sort next to their base letter, not after z.
    Tabela.MoveFirst();
    QStringList ordem;
    while (!Tabela.Eof()) {
        ordem << Tabela.Fields(0).Value().toString();
        Tabela.MoveNext();
    }
    EXPECT_EQ(ordem, (QStringList{"AÇÃO E REAÇÃO", "água", "agua sem acento", "Érica"}));

    Abre_Tabela("Select * From tblPergunta Where Pergunta Like '%çÃo%'");
    EXPECT_EQ(Tabela.RecordCount(), 1);
    Abre_Tabela("Select * From tblPergunta Where Pergunta = 'ÉRICA'");
    EXPECT_EQ(Tabela.RecordCount(), 1);
}

TEST_F(Registros_Teste, StoreRefusesDuplicatesWidthsAndEmptyTextAsJetDid) {
    Abre_Tabela("tblUsuário");
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("Supervisor");
    Tabela.Update();
    EXPECT_EQ(Tabela.Fields("Código_Usuário").Value().toInt(), 1);
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("Outro");
    Tabela.Update();
    EXPECT_EQ(Tabela.Fields("Código_Usuário").Value().toInt(), 2);

    Captura captura;
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("SUPERVISOR");  // the primary index folds case
    Tabela.Update();
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, -2147217887);
    EXPECT_TRUE(captura.Falhas[0].second.startsWith("As alterações solicitadas"));

    captura.Falhas.clear();
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value(QString(21, 'x'));  // Text(20)
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, -2147217887);
    EXPECT_FALSE(captura.Falhas[0].second.startsWith("As alterações"));

    captura.Falhas.clear();
    Tabela.Fields("Usuário").Set_Value("");  // a field without Zero
    Tabela.Update();
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, -2147467259);

    captura.Falhas.clear();
    Tabela.Fields("Usuário").Set_Value("Terceiro");
    Tabela.Fields("Biblioteca_Imagens_Local").Set_Value("");  // a field with Zero takes the empty text
    Tabela.Update();
    EXPECT_TRUE(captura.Falhas.isEmpty());
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 3);
}

TEST_F(Registros_Teste, FieldsAnswerNamesPositionsAndAdoTypes) {
    Abre_Tabela("tblPergunta");
    Inclui_Pergunta("Quanto é 2 + 2?", "Quatro");
    EXPECT_EQ(Tabela.Fields_Count(), 5);
    EXPECT_EQ(Tabela.Fields(0).Name(), "Pergunta");
    EXPECT_EQ(Tabela.Fields(0).Type(), 202);
    EXPECT_EQ(Tabela.Fields(0).DefinedSize(), 124);
    EXPECT_EQ(Tabela.Fields(1).Type(), 3);
    EXPECT_EQ(Tabela.Fields(4).Type(), 11);
    EXPECT_EQ(Tabela.Fields(4).Value().toBool(), false);
    EXPECT_EQ(Tabela.Fields("pergunta").Value().toString(), "Quanto é 2 + 2?");

    Captura captura;
    Tabela.Fields("Não_Existe");
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, 3265);

    Abre_Tabela("tblPergunta_Já_Mostrada");
    EXPECT_EQ(Tabela.Fields(1).Type(), 7);
}

TEST_F(Registros_Teste, SeekFindsByEachKindAndOnSeveralFields) {
    Catálogo::Adiciona_Índice(Conexão, "tblPergunta",
                              {"idxTipo_Pergunta", Tipo_Índice::Simples, {"Tipo", "Pergunta"}});
    Abre_Tabela("tblPergunta");
    for (const char* p : {"b", "d", "f"}) Inclui_Pergunta(p, "x", "G");
    Inclui_Pergunta("a", "x", "B");
    Tabela.Set_Index("idxPergunta");

    Tabela.Seek("d", Tipo_Busca::Primeiro_Igual);
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "d");
    Tabela.Seek("c", Tipo_Busca::Depois_ou_Igual);
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "d");
    Tabela.Seek("d", Tipo_Busca::Depois_ou_Igual);
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "d");
    Tabela.Seek("d", Tipo_Busca::Depois);
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "f");
    Tabela.Seek("d", Tipo_Busca::Antes);
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "b");
    // The walk goes on from where the seek landed.
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "d");

    Tabela.Seek("zzz", Tipo_Busca::Depois);
    EXPECT_TRUE(Tabela.Eof());
    Tabela.Seek("c");
    EXPECT_TRUE(Tabela.Eof());
    Captura captura;
    Tabela.Fields(0).Value();
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, 3021);

    Tabela.Set_Index("idxTipo_Pergunta");
    Tabela.Seek(QVariantList{"G", "f"});
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "f");
    Tabela.Seek(QVariantList{"B", "f"});
    EXPECT_TRUE(Tabela.Eof());
    Tabela.Seek(QVariantList{"B", "a"});
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "a");
}

TEST_F(Registros_Teste, KeysetStepsOverRowsDeletedByOthersAndWalksBothEnds) {
    Abre_Tabela("tblPergunta");
    for (const char* p : {"um", "dois", "três"}) Inclui_Pergunta(p, "x");
    Abre_Tabela("tblPergunta");
    ASSERT_FALSE(Tabela.Bof());
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "um");

    // Another copy of the program deletes the second row behind this keyset.
    ASSERT_TRUE(Executa_Como_Outra_Estação({"DELETE FROM tblPergunta WHERE rowid = 2"}));

    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "três");
    Tabela.MoveNext();
    EXPECT_TRUE(Tabela.Eof());
    Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields(0).Value().toString(), "três");
    Tabela.MovePrevious();
    Tabela.MovePrevious();
    EXPECT_TRUE(Tabela.Bof());
    Captura captura;
    Tabela.MovePrevious();  // past the start is a failure, as it was with ADO
    EXPECT_EQ(captura.Falhas.size(), 1);

    Abre_Tabela("tblPergunta_Já_Mostrada");
    EXPECT_TRUE(Tabela.Eof());
    EXPECT_TRUE(Tabela.Bof());
}

TEST_F(Registros_Teste, StatementSubsetRunsWithDatesBooleansAndQuotes) {
    Abre_Tabela("tblPergunta_Já_Mostrada");
    const QList<QDateTime> datas = {QDateTime(QDate(2026, 1, 5), QTime(10, 0)),
                                    QDateTime(QDate(2025, 12, 31), QTime(0, 0)),
                                    QDateTime(QDate(2026, 3, 1), QTime(8, 30))};
    for (int i = 0; i < datas.size(); ++i) {
        Tabela.AddNew();
        Tabela.Fields("Código_Pergunta").Set_Value(i + 1);
        Tabela.Fields("Data_Jogo").Set_Value(datas[i]);
        Tabela.Update();
    }
    Abre_Tabela("Select * From tblPergunta_Já_Mostrada Order By Data_Jogo");
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 2);
    EXPECT_EQ(Tabela.Fields("Data_Jogo").Value().toDateTime(), datas[1]);
    Abre_Tabela("Select * From tblPergunta_Já_Mostrada Where Data_Jogo > #1/5/2026#");
    EXPECT_EQ(Tabela.RecordCount(), 2);
    Abre_Tabela(
        "Select * From tblPergunta_Já_Mostrada Where Data_Jogo Between CDate('01/01/2026') And "
        "CDate('02/03/2026')");
    EXPECT_EQ(Tabela.RecordCount(), 2);
    Abre_Tabela("Select * From tblPergunta_Já_Mostrada where Código_Pergunta = 3");
    EXPECT_EQ(Tabela.RecordCount(), 1);

    Abre_Tabela("tblPergunta");
    Inclui_Pergunta("Qual é a cor do pingo d'água?", "Transparente");
    Tabela.Fields("Já_Comparada").Set_Value(true);
    Tabela.Update();
    Abre_Tabela("Select * From tblPergunta Where Já_Comparada = true");
    EXPECT_EQ(Tabela.RecordCount(), 1);
    // A typed value enters the statement only through the quoting helpers; the store runs it as written.
    Abre_Tabela("Select * From tblPergunta Where Pergunta Like " + Valor_Like_SQL("d'água"));
    EXPECT_EQ(Tabela.RecordCount(), 1);
    Abre_Tabela("Select * From tblPergunta Where Pergunta = " +
                Valor_Texto_SQL("Qual é a cor do pingo d'água?"));
    EXPECT_EQ(Tabela.RecordCount(), 1);
    EXPECT_EQ(Lastrec("Select * From tblPergunta Where Pergunta Like " + Valor_Like_SQL("d'água"), Conexão),
              1);
    Abre_Tabela(
        "Select * From tblPergunta Where Resposta_Correta = 'Transparente' And Pergunta Like '%d''água%'");
    EXPECT_EQ(Tabela.RecordCount(), 1);
    Abre_Tabela("Select * From tblPergunta Where Pergunta is null");
    EXPECT_EQ(Tabela.RecordCount(), 0);
}

TEST_F(Registros_Teste, LastrecCachesReadsSelectsAndIsDroppedByOpenersAndDeletes) {
    Abre_Tabela("tblPergunta");
    for (const char* p : {"a", "b", "c"}) Inclui_Pergunta(p, "x", *p == 'a' ? "B" : "G");
    EXPECT_EQ(Lastrec("tblPergunta_Já_Mostrada", Conexão), 0);
    const int antes = Consultas_Lastrec();
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 3);
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 3);
    EXPECT_EQ(Consultas_Lastrec(), antes + 1);

    EXPECT_EQ(Lastrec("Select * From tblPergunta Where Tipo = 'G' Order By Pergunta", Conexão), 2);
    EXPECT_EQ(Lastrec("select * from tblPergunta where Tipo = 'G'", Conexão), 2);

    Abre_Tabela("tblPergunta");  // an opener drops the cache
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 3);
    EXPECT_EQ(Consultas_Lastrec(), antes + 4);

    Operação = "Exclusão";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    Grava(Tabela, true);
    Finaliza_Transação();
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 2);
    EXPECT_EQ(Consultas_Lastrec(), antes + 5);

    // An empty source meets the dropped cache: the last count comes back and nothing is asked.
    Limpa_Cache_Lastrec();
    EXPECT_EQ(Lastrec("", Conexão), 2);
    EXPECT_EQ(Consultas_Lastrec(), antes + 5);
    EXPECT_EQ(Plataforma.Encerramentos, 0);
}

TEST_F(Registros_Teste, CatalogueCreatesDropsAndChangesTablesFieldsAndIndexes) {
    Catálogo::Cria_Tabela(
        Conexão, "tblPermissão",
        {{"Rotina", Tipo_Texto, 50}, {"Código_Permissão", Tipo_Long, 0, true}, {"Usuário", Tipo_Texto, 50}});
    Catálogo::Adiciona_Índice(Conexão, "tblPermissão",
                              {"idxCódigo_Permissão", Tipo_Índice::Simples, {"Código_Permissão"}});
    Abre_Tabela("tblPermissão");
    Tabela.AddNew();
    Tabela.Fields("Rotina").Set_Value("frmPergunta");
    Tabela.Update();
    Tabela.Reinicia();

    Conexão.Execute("Alter Table tblPermissão Alter Column Rotina text (100)");
    Estrutura_Tabela e = Catálogo::Estrutura(Conexão, "tblPermissão");
    ASSERT_EQ(e.Campos.size(), 3);
    EXPECT_EQ(e.Campos[0].Nome, "Rotina");
    EXPECT_EQ(e.Campos[0].Largura, 100);
    EXPECT_TRUE(e.Campos[1].Auto);
    ASSERT_EQ(e.Índices.size(), 1);
    EXPECT_EQ(e.Índices[0].Nome, "idxCódigo_Permissão");

    Abre_Tabela("tblPermissão");
    EXPECT_EQ(Tabela.Fields("Rotina").Value().toString(), "frmPergunta");
    Tabela.AddNew();
    Tabela.Fields("Rotina").Set_Value(QString(100, 'r'));
    Tabela.Update();
    EXPECT_EQ(Tabela.Fields("Código_Permissão").Value().toInt(), 2);  // numbering goes on after the rebuild
    Tabela.Reinicia();

    Catálogo::Adiciona_Campo(Conexão, "tblPermissão", {"Permissão_De_Inclusão", Tipo_Boolean});
    Catálogo::Exclui_Campo(Conexão, "tblPermissão", "Usuário");
    Catálogo::Adiciona_Índice(Conexão, "tblPermissão", {"idxRotina", Tipo_Índice::Primário, {"Rotina"}});
    e = Catálogo::Estrutura(Conexão, "tblPermissão");
    EXPECT_EQ(e.Campos.last().Nome, "Permissão_De_Inclusão");
    EXPECT_EQ(e.Campos.last().Tipo, Tipo_Boolean);
    EXPECT_EQ(e.Posição_Campo("Usuário"), -1);
    ASSERT_NE(e.Índice("idxRotina"), nullptr);
    EXPECT_EQ(e.Índice("idxRotina")->Tipo, Tipo_Índice::Primário);
    Catálogo::Exclui_Índice(Conexão, "tblPermissão", "idxRotina");
    EXPECT_EQ(Catálogo::Estrutura(Conexão, "tblPermissão").Índice("idxRotina"), nullptr);

    EXPECT_TRUE(Catálogo::Lista_Tabelas(Conexão).contains("tblPermissão"));
    Catálogo::Exclui_Tabela(Conexão, "tblPermissão");
    EXPECT_FALSE(Catálogo::Existe_Tabela(Conexão, "tblPermissão"));
}

TEST_F(Registros_Teste, OpeningWhatIsNotThereFailsAndLeavesTheSlotClosed) {
    Captura captura;
    Tabela.Open("tblNão_Existe", Conexão, Opção_Abertura::Tabela_Direta);
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_FALSE(Tabela.Aberto());
    EXPECT_EQ(Tabela.Source, "tblNão_Existe");

    captura.Falhas.clear();
    QFile lixo(Pasta.Dados() + "/Temp.Mdb");
    ASSERT_TRUE(lixo.open(QIODevice::WriteOnly));
    lixo.write(QByteArray(4096, 'x'));
    lixo.close();
    Conexão_Temporária.Close();
    Conexão_Temporária.Open(Conexão_Rascunho());
    ASSERT_EQ(captura.Falhas.size(), 1);
    EXPECT_EQ(captura.Falhas[0].first, Erro_Banco_Danificado);  // a file that is not a database: damaged
    EXPECT_FALSE(Conexão_Temporária.Aberta());
}

// Jet's brackets in a Like: a set of letters, a range, a negation; a typed %, _ or [ finds itself.
// On the day summer time began in Brazil the local midnight did not exist: the stored date must still be
// read as that day (the runners set TZ=America/Sao_Paulo; elsewhere the midnight simply exists).
TEST(Datas_Teste, MidnightSkippedBySummerTimeIsReadOnItsOwnDay) {
    const QDateTime lida = Data_Do_Banco("2018-11-04 00:00:00");
    ASSERT_TRUE(lida.isValid());
    EXPECT_EQ(lida.date(), QDate(2018, 11, 4));
    EXPECT_EQ(Data_Do_Banco("2018-11-03 00:00:00").time(), QTime(0, 0));
    EXPECT_EQ(Data_Do_Banco("2018-11-05 13:45:10"), QDateTime(QDate(2018, 11, 5), QTime(13, 45, 10)));
}

// A walk reads the same day row after row: read again, and after another, each text gives its own date;
// a form that is not the stored one is not read as some other day.
TEST(Datas_Teste, TheSameDayReadRowAfterRowAndBetweenOthersIsEachTimeItsOwn) {
    for (int vez = 0; vez < 3; ++vez) {
        EXPECT_EQ(Data_Do_Banco("2019-03-10 00:00:00"), QDateTime(QDate(2019, 3, 10), QTime(0, 0)));
        EXPECT_EQ(Data_Do_Banco("2019-03-10 00:00:00"), QDateTime(QDate(2019, 3, 10), QTime(0, 0)));
        EXPECT_EQ(Data_Do_Banco("2019-03-11 08:00:01"), QDateTime(QDate(2019, 3, 11), QTime(8, 0, 1)));
    }
    EXPECT_FALSE(Data_Do_Banco("abcd-03-10 00:00:00").isValid());
    EXPECT_FALSE(Data_Do_Banco("2019-13-10 00:00:00").isValid());
    EXPECT_EQ(Data_Do_Banco("2019-03-10T00:00:00"), QDateTime(QDate(2019, 3, 10), QTime(0, 0)));
}

TEST(Like_Teste, BracketsMatchOneLetterOfTheirSetAndTypedSignsFindThemselves) {
    auto like = [](const QString& padrão, const QString& texto) {
        const QByteArray p = padrão.toUtf8(), t = texto.toUtf8();
        return Combina_Like(p.constData(), p.size(), t.constData(), t.size());
    };
    EXPECT_TRUE(like("[abc]x", "Bx"));
    EXPECT_FALSE(like("[abc]x", "dx"));
    EXPECT_TRUE(like("[a-f]9", "e9"));
    EXPECT_FALSE(like("[!a-f]9", "e9"));
    EXPECT_TRUE(like("[!a-f]9", "z9"));
    EXPECT_TRUE(like("a[[]b", "a[b"));
    EXPECT_TRUE(like("ab[", "ab["));  // a bracket that never closes is a letter
    const auto literal = [](const QString& texto) {
        QString l = Valor_Like_SQL(texto);
        return l.mid(1, l.size() - 2).replace("''", "'");  // the pattern as the store receives it
    };
    EXPECT_TRUE(like(literal("100%"), "Rende 100% ao ano"));
    EXPECT_FALSE(like(literal("100%"), "Rende 1000 ao ano"));
    EXPECT_TRUE(like(literal("a_b"), "x a_b y"));
    EXPECT_FALSE(like(literal("a_b"), "x axb y"));
    EXPECT_TRUE(like(literal("[x]"), "o [x] marca"));
    EXPECT_FALSE(like(literal("[x]"), "o x marca"));
    EXPECT_TRUE(like(literal("d'Oeste"), "rio d'Oeste"));
}

// The stored form of a date and time, written by hand: every field two digits but the year's four, and
// read back to the same moment; an invalid one stays empty.
TEST(Data_Banco_Teste, DatesGoToTheStoreAsFixedDigitsAndComeBackTheSame) {
    const QDateTime primeiro(QDate(2019, 3, 4), QTime(5, 6, 7));
    EXPECT_EQ(Data_Para_Banco(primeiro), "2019-03-04 05:06:07");
    EXPECT_EQ(Data_Para_Banco(QDateTime(QDate(999, 12, 31), QTime(23, 59, 59))), "0999-12-31 23:59:59");
    EXPECT_EQ(Data_Para_Banco(QDateTime(QDate(2030, 10, 20), QTime(0, 0))), "2030-10-20 00:00:00");
    EXPECT_EQ(Data_Para_Banco(QDateTime()), "");
    for (const QDateTime& d : {primeiro, QDateTime(QDate(1899, 12, 30), QTime(12, 0)),
                               QDateTime(QDate(2026, 2, 28), QTime(18, 45, 30))})
        EXPECT_EQ(Data_Do_Banco(Data_Para_Banco(d)), d);
}
