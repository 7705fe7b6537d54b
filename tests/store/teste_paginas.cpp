// The slots read their rows through the index in pages: walks, seeks and changes of index that cross
// page boundaries, rows that another running copy deletes or adds in the middle of a walk, and the
// counts that the store keeps while nothing writes to their table.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <QRegularExpression>
#include <QSet>

#include "failure/Rotina.h"
#include "store/Catálogo.h"
#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// Several times the rows that a walk holds at once, so that every walk crosses many pages.
constexpr int Linhas = 500;

struct Pergunta_Modelo {
    int Código;
    QString Pergunta;
    QVariant Tipo;  // Null for every fifth question
};

// Another running copy of the program: a process of its own runs the statements and ends.
void Outro_Processo(const QStringList& comandos) {
    std::fflush(nullptr);
    const pid_t filho = fork();
    if (filho == 0) {
        _exit(Executa_Como_Outra_Estação(comandos) ? 0 : 1);
    }
    int estado = -1;
    ASSERT_EQ(waitpid(filho, &estado, 0), filho);
    ASSERT_TRUE(WIFEXITED(estado));
    EXPECT_EQ(WEXITSTATUS(estado), 0);
}

// A question's code and its type, as "12/A" ("12/-" when the type is Null).
QString Marca(int código, const QVariant& tipo) {
    return QString::number(código) + "/" + (tipo.isValid() ? tipo.toString() : "-");
}
QString Marca_Atual() {
    return Marca(Tabela.Fields("Código_Pergunta").Value().toInt(), Tabela.Fields("Tipo").Value());
}

// From the current row to the end of the walk in one direction.
QStringList Caminha(bool adiante) {
    QStringList vistas;
    while (adiante ? !Tabela.Eof() : !Tabela.Bof()) {
        vistas << Marca_Atual();
        adiante ? Tabela.MoveNext() : Tabela.MovePrevious();
    }
    return vistas;
}

class Páginas_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QVector<Pergunta_Modelo> Modelo;

    void SetUp() override {
        Cria_Bancos_De_Teste();
        Indexa_Perguntas_Por_Tipo();
        // The texts sort against the codes; the types repeat, so that most keys tie with many others.
        QStringList inclusões{"BEGIN"};
        for (int código = 1; código <= Linhas; ++código) {
            const Pergunta_Modelo p{código, QString("P%1").arg(Linhas + 1 - código, 4, 10, QChar('0')),
                                    código % 5 == 0 ? QVariant() : QVariant(código % 2 ? "A" : "B")};
            Modelo.append(p);
            inclusões << "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
                         "VALUES ('" +
                             p.Pergunta + "', 'x', " +
                             (p.Tipo.isValid() ? "'" + p.Tipo.toString() + "'" : QString("NULL")) +
                             ", false)";
        }
        inclusões << "COMMIT";
        ASSERT_TRUE(Executa_Como_Outra_Estação(inclusões));
        Abre_Tabela("tblPergunta");
    }

    // The model's rows in the order of a key; equal keys in the order of the codes (the row ids).
    template <typename Chave>
    QStringList Na_Ordem(Chave chave) const {
        QVector<Pergunta_Modelo> linhas = Modelo;
        std::stable_sort(
            linhas.begin(), linhas.end(),
            [&](const Pergunta_Modelo& a, const Pergunta_Modelo& b) { return chave(a) < chave(b); });
        QStringList marcas;
        for (const Pergunta_Modelo& p : linhas) marcas << Marca(p.Código, p.Tipo);
        return marcas;
    }
    static QString Tipo_Ordenável(const Pergunta_Modelo& p) {
        return p.Tipo.isValid() ? "1" + p.Tipo.toString() : "0";  // Nulls sort first
    }
};

// Lists compared as standard strings, which gtest prints when they differ.
std::vector<std::string> Padrão(const QStringList& l) {
    std::vector<std::string> v;
    for (const QString& s : l) v.push_back(s.toStdString());
    return v;
}

QStringList Invertida(QStringList l) {
    std::reverse(l.begin(), l.end());
    return l;
}
}  // namespace

TEST_F(Páginas_Teste, WalksCrossPageBoundariesBothWaysInEachOrderWithNullsAndTies) {
    const QStringList por_código = Na_Ordem([](const Pergunta_Modelo& p) { return p.Código; });
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_código));  // no index: the order of writing
    EXPECT_TRUE(Tabela.Eof());
    EXPECT_FALSE(Tabela.Bof());

    Tabela.Set_Index("idxPergunta");
    const QStringList por_texto = Na_Ordem([](const Pergunta_Modelo& p) { return p.Pergunta; });
    Tabela.MoveFirst();
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_texto));
    Tabela.MovePrevious();  // from EOF, back to the last row
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(por_texto)));
    EXPECT_TRUE(Tabela.Bof());
    EXPECT_FALSE(Tabela.Eof());

    Tabela.Set_Index("idxTipo");
    const QStringList por_tipo = Na_Ordem(Tipo_Ordenável);
    Tabela.MoveFirst();
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_tipo));
    Tabela.MoveLast();
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(por_tipo)));

    // Back and forth over the boundaries of what the walk holds: the rows follow one another all the same.
    Tabela.MoveFirst();
    for (int i = 0; i < 300; ++i) Tabela.MoveNext();
    EXPECT_EQ(Marca_Atual().toStdString(), (por_tipo[300]).toStdString());
    for (int i = 0; i < 250; ++i) Tabela.MovePrevious();
    EXPECT_EQ(Marca_Atual().toStdString(), (por_tipo[50]).toStdString());
    for (int i = 0; i < 400; ++i) Tabela.MoveNext();
    EXPECT_EQ(Marca_Atual().toStdString(), (por_tipo[450]).toStdString());
    Tabela.MoveLast();
    for (int i = 0; i < 130; ++i) Tabela.MovePrevious();
    EXPECT_EQ(Marca_Atual().toStdString(), (por_tipo[Linhas - 131]).toStdString());
    EXPECT_EQ(Tabela.RecordCount(), Linhas);
}

TEST_F(Páginas_Teste, ASourcesOwnOrderIsWalkedBothWaysWhetherAnIndexServesItOrNot) {
    // Served by idxPergunta, walked down it.
    Abre_Tabela("Select * From tblPergunta Where Tipo = 'A' Order By Pergunta Desc");
    QStringList do_tipo_a;
    for (const Pergunta_Modelo& p : Modelo)
        if (p.Tipo == QVariant("A")) do_tipo_a << Marca(p.Código, p.Tipo);  // the codes run against the texts
    EXPECT_EQ(Tabela.RecordCount(), do_tipo_a.size());
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(do_tipo_a));
    Tabela.MovePrevious();
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(do_tipo_a)));

    // No index starts with the answer: every row ties on it, then the type decides, Nulls first.
    Abre_Tabela("Select * From tblPergunta Order By Resposta_Correta Desc, Tipo");
    const QStringList por_tipo = Na_Ordem(Tipo_Ordenável);
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_tipo));
    Tabela.MoveLast();
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(por_tipo)));
}

TEST_F(Páginas_Teste, RowsThatAnotherCopyDeletesReadAsGoneAndRowsItAddsWaitForRequery) {
    Tabela.Set_Index("idxCódigo_Pergunta");
    for (int i = 1; i < 100; ++i) Tabela.MoveNext();
    ASSERT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 100);

    // Behind the walk, just ahead of it, and pages ahead; and a row that sorts inside the walk's way.
    Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta IN (99, 101, 300)",
                    "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
                    "VALUES ('Nova', 'x', 'A', false)"});
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 102);
    QStringList esperadas;
    for (int código = 102; código <= Linhas; ++código)
        if (código != 300) esperadas << Marca(código, Modelo[código - 1].Tipo);
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(esperadas));
    Tabela.MovePrevious();
    const QStringList de_volta = Caminha(false);
    EXPECT_EQ(de_volta.size(), Linhas - 3);
    EXPECT_FALSE(de_volta.contains(Marca(99, Modelo[98].Tipo)));
    EXPECT_FALSE(de_volta.contains(Marca(101, Modelo[100].Tipo)));

    // The row under the cursor goes too: it can no longer be edited, and the walk steps over it.
    Tabela.Seek(200);
    Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta = 200"});
    {
        QList<long> falhas;
        Rotina trap("Teste", "Captura", [&](long n, const QString&, long) { falhas << n; });
        Tabela.Edita();
        EXPECT_EQ(falhas, QList<long>{-2147467259});
    }
    Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 199);
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 201);

    // The row added by the other copy comes in with Requery, at the end of the code order.
    Tabela.Requery();
    EXPECT_EQ(Tabela.RecordCount(), Linhas - 4 + 1);
    Tabela.MoveLast();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "Nova");
}

// Rows that another copy adds amid the walk's way, between rows and among rows they tie with, stay out of
// the walk in both directions until the keyset is taken anew; the rows around them are all there, in order.
TEST_F(Páginas_Teste, RowsThatAnotherCopyAddsAmidTheWalksWayStayOutInBothDirections) {
    const auto inclusão = [](const QString& pergunta, const QString& tipo) {
        return "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) VALUES ('" +
               pergunta + "', 'x', " + tipo + ", false)";
    };
    Tabela.Set_Index("idxTipo");
    const QStringList por_tipo = Na_Ordem(Tipo_Ordenável);
    Tabela.MoveFirst();
    for (int i = 0; i < 10; ++i) Tabela.MoveNext();
    // Ties with the Nulls a page ahead, with the first rows of type A and with the last rows of type B.
    Outro_Processo({inclusão("P0250a", "NULL"), inclusão("P0100", "'A'"), inclusão("P0001", "'B'")});
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_tipo.mid(10)));
    Tabela.MovePrevious();
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(por_tipo)));

    // A new keyset takes them in; rows added after it, in the middle of the text order, stay out again.
    Modelo.append({Linhas + 1, "P0250a", QVariant()});
    Modelo.append({Linhas + 2, "P0100", "A"});
    Modelo.append({Linhas + 3, "P0001", "B"});
    Tabela.Set_Index("idxPergunta");
    const QStringList por_texto = Na_Ordem([](const Pergunta_Modelo& p) { return p.Pergunta; });
    ASSERT_EQ(por_texto.size(), Linhas + 3);
    Tabela.MoveLast();
    for (int i = 0; i < 5; ++i) Tabela.MovePrevious();
    Outro_Processo({inclusão("P0400", "'A'"), inclusão("P0003a", "'B'"), inclusão("P0499", "NULL")});
    EXPECT_EQ(Padrão(Caminha(false)), Padrão(Invertida(por_texto.mid(0, Linhas + 3 - 5))));
    Tabela.MoveNext();
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_texto));
    Tabela.Requery();
    EXPECT_EQ(Tabela.RecordCount(), Linhas + 6);
}

TEST_F(Páginas_Teste, SeekFindsTheFirstAndLastRowsAndFallsPastBothEnds) {
    Tabela.Set_Index("idxPergunta");
    Tabela.Seek("P0001");
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), Linhas);
    Tabela.MovePrevious();
    EXPECT_TRUE(Tabela.Bof());
    Tabela.Seek("p0500");  // the text order folds case
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 1);
    Tabela.MoveNext();
    EXPECT_TRUE(Tabela.Eof());

    Tabela.Seek("P0000", Tipo_Busca::Depois_ou_Igual);
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0001");
    Tabela.Seek("P9999", Tipo_Busca::Antes);
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0500");
    Tabela.Seek("P0500", Tipo_Busca::Depois);
    EXPECT_TRUE(Tabela.Eof());
    EXPECT_FALSE(Tabela.Bof());
    Tabela.MovePrevious();  // a step back from a seek that found nothing starts at the last row
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0500");
    Tabela.Seek("P0001", Tipo_Busca::Antes);
    EXPECT_TRUE(Tabela.Eof());

    // From a seek the walk goes on through the pages in both directions.
    Tabela.Seek("P0250", Tipo_Busca::Antes);
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0249");
    for (int i = 0; i < 200; ++i) Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0449");
    Tabela.Seek("P0250");
    for (int i = 0; i < 200; ++i) Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0050");

    // On two fields: the whole key, the first field alone, and past the ends of one type.
    Tabela.Set_Index("idxTipo_Pergunta");
    const QStringList por_tipo =
        Na_Ordem([](const Pergunta_Modelo& p) { return Tipo_Ordenável(p) + p.Pergunta; });
    Tabela.Seek(QVariantList{"A", "P0002"});
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), Linhas - 1);
    Tabela.Seek(QVariantList{"A"});
    EXPECT_EQ(Marca_Atual().toStdString(),
              (por_tipo[por_tipo.indexOf(QRegularExpression(".*/A"))]).toStdString());
    Tabela.Seek(QVariantList{"A", "P9999"}, Tipo_Busca::Antes);
    EXPECT_EQ(Marca_Atual().toStdString(),
              (por_tipo[por_tipo.indexOf(QRegularExpression(".*/B")) - 1]).toStdString());
    Tabela.MoveNext();
    EXPECT_EQ(Marca_Atual().toStdString(),
              (por_tipo[por_tipo.indexOf(QRegularExpression(".*/B"))]).toStdString());
    Tabela.Seek(QVariantList{"B", "P9999"}, Tipo_Busca::Depois_ou_Igual);
    EXPECT_TRUE(Tabela.Eof());
    Tabela.Seek(QVariantList{"C", "P0001"});
    EXPECT_TRUE(Tabela.Eof());
}

TEST_F(Páginas_Teste, ChangingTheIndexInMidWalkKeepsTheCurrentRowAndWalksOnInTheNewOrder) {
    Tabela.Set_Index("idxCódigo_Pergunta");
    for (int i = 1; i < 137; ++i) Tabela.MoveNext();
    ASSERT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 137);

    Tabela.Set_Index("idxPergunta");
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 137);
    Tabela.MoveNext();  // the next text is that of the code before
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 136);
    for (int i = 0; i < 100; ++i) Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 236);

    Tabela.Set_Index("idxTipo");
    const QStringList por_tipo = Na_Ordem(Tipo_Ordenável);
    const int lugar = static_cast<int>(por_tipo.indexOf(Marca(236, Modelo[235].Tipo)));
    EXPECT_EQ(Marca_Atual().toStdString(), (por_tipo[lugar]).toStdString());
    EXPECT_EQ(Padrão(Caminha(true)), Padrão(por_tipo.mid(lugar)));

    // Without an index, the order of writing; a slot with no current row starts at the first.
    Tabela.Set_Index("");
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 1);
}

TEST_F(Páginas_Teste, AnOwnInsertionBecomesCurrentAndADeletionKeepsThePlaceInTheWalk) {
    Tabela.Set_Index("idxPergunta");
    Tabela.Seek("P0300");
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("P0300a");
    Tabela.Fields("Tipo").Set_Value("A");
    Tabela.Update();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0300a");
    EXPECT_EQ(Tabela.RecordCount(), Linhas + 1);
    Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0300");
    Tabela.MoveNext();
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0301");

    Tabela.Delete();
    EXPECT_EQ(Tabela.RecordCount(), Linhas + 1);  // as the keyset was taken: the deleted row still counts
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0302");
    Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "P0300a");
}

// A walk reads rows a page at a time; a row of a page it already holds shows what was written to it since,
// whether by another copy, by another slot of this copy or through this very slot.
TEST_F(Páginas_Teste, RowsOfAPageAlreadyReadShowWhatWasWrittenSince) {
    Tabela.Set_Index("idxCódigo_Pergunta");
    for (int i = 1; i < 10; ++i) Tabela.MoveNext();
    ASSERT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 10);

    Outro_Processo({"UPDATE tblPergunta SET Pergunta = 'Outra cópia' WHERE Código_Pergunta = 11",
                    "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
                    "VALUES ('Nova', 'x', 'A', false)",
                    "DELETE FROM tblPergunta WHERE Código_Pergunta = 13"});
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "Outra cópia");
    // The keyset was taken before the other copy wrote: its new row is not counted, its deletion is.
    EXPECT_EQ(Tabela.RecordCount(), Linhas - 1);

    Abre_Tabela_Secundária("tblPergunta");
    Tabela_Secundária.Set_Index("idxCódigo_Pergunta");
    Tabela_Secundária.Seek(12);
    Tabela_Secundária.Fields("Pergunta").Set_Value("Outra janela");
    Tabela_Secundária.Update();
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "Outra janela");
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 14);

    Tabela.Fields("Pergunta").Set_Value("Esta janela");
    Tabela.Update();
    Tabela.MovePrevious();
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "Esta janela");
}

// In a transaction, a walk that writes each row as it goes (an export stamping its questions) takes the rows
// ahead from the pages it holds; a row ahead that something else wrote meanwhile shows what was written:
// another copy before the transaction's first write, another slot of this copy, a statement of this copy,
// and a statement that wrote the current row while it was being edited.
TEST_F(Páginas_Teste, AWalkThatWritesEachRowInATransactionShowsWhatElseWroteAheadOfIt) {
    Tabela.Set_Index("idxCódigo_Pergunta");
    Abre_Tabela_Secundária("tblPergunta");
    Tabela_Secundária.Set_Index("idxCódigo_Pergunta");
    const auto altera = [](int código, const QString& campo, const QString& texto) {
        return "UPDATE tblPergunta SET " + campo + " = " + Valor_Texto_SQL(texto) +
               " WHERE Código_Pergunta = " + QString::number(código);
    };
    QMap<int, QString> escritas;  // what was written ahead of the walk, by code
    Inicia_Transação();
    Tabela.MoveFirst();
    Outro_Processo({altera(5, "Pergunta", "Outra cópia 5")});
    escritas[5] = "Outra cópia 5";
    constexpr int Andadas = 300;
    for (int código = 1; código <= Andadas; ++código) {
        ASSERT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), código);
        const QString pergunta = Tabela.Fields("Pergunta").Value().toString();
        EXPECT_EQ(pergunta.toStdString(), escritas.value(código, Modelo[código - 1].Pergunta).toStdString());
        if (código % 50 == 10) {
            Tabela_Secundária.Seek(código + 3);
            escritas[código + 3] = "Outra janela " + QString::number(código + 3);
            Tabela_Secundária.Fields("Pergunta").Set_Value(escritas[código + 3]);
            Tabela_Secundária.Update();
        }
        if (código % 50 == 20) {
            escritas[código + 2] = "Comando " + QString::number(código + 2);
            Conexão.Execute(altera(código + 2, "Pergunta", escritas[código + 2]));
        }
        if (código % 50 == 30) Conexão.Execute(altera(código, "Tipo", "Z"));
        Tabela.Fields("Resposta_Correta").Set_Value(pergunta);
        if (código % 50 == 30) {
            EXPECT_EQ(Tabela.Fields("Tipo").Value().toString().toStdString(), "Z");
        }
        Tabela.Update();
        Tabela.MoveNext();
    }
    Finaliza_Transação();

    Tabela.MoveFirst();
    for (int código = 1; código <= Andadas; ++código, Tabela.MoveNext()) {
        EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString().toStdString(),
                  escritas.value(código, Modelo[código - 1].Pergunta).toStdString())
            << código;
    }

    // An edit after a roll-back starts from the row as the file holds it again, not as the undone write
    // left it.
    Tabela.MoveFirst();
    Inicia_Transação();
    Tabela.Fields("Pergunta").Set_Value("Desfeita");
    Tabela.Update();
    ASSERT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "Desfeita");
    Desfaz_Transação();
    Tabela.Fields("Tipo").Set_Value("B");
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), Modelo[0].Pergunta.toStdString());
    Tabela.CancelUpdate();
}

// A slot takes its rows when first used, so a window that opens a table, sets its index and moves to its
// first row reads the table once; a row another copy adds before that first use is in the keyset.
TEST_F(Páginas_Teste, ASlotTakesItsKeysetAtItsFirstUse) {
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Outro_Processo(
        {"INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
         "VALUES ('A0000', 'x', 'A', false)"});
    Tabela.Set_Index("idxPergunta");
    Tabela.MoveFirst();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString().toStdString(), "A0000");
    EXPECT_EQ(Tabela.RecordCount(), Linhas + 1);

    // An empty source still learns the table's limit: the rows there now are its keyset after Requery.
    Tabela.Reinicia();
    Abre_Tabela("Select * From tblPergunta Where Pergunta = 'nenhuma'");
    EXPECT_TRUE(Tabela.Eof());
    EXPECT_EQ(Tabela.RecordCount(), 0);
    Outro_Processo({"UPDATE tblPergunta SET Pergunta = 'nenhuma' WHERE Código_Pergunta = 5"});
    EXPECT_EQ(Tabela.RecordCount(), 0);
    Tabela.Requery();
    EXPECT_EQ(Tabela.RecordCount(), 1);
}

TEST_F(Páginas_Teste, CountsAreAnsweredFromMemoryUntilSomethingWritesToTheirTable) {
    SO_NO_EMBUTIDO("conta os comandos que o SQLite executa; no servidor cada contagem é feita de novo");
    int contagens = 0;
    sqlite3_trace_v2(
        Conexão.Sessão_Física()->Banco, SQLITE_TRACE_STMT,
        [](unsigned, void* contexto, void* comando, void*) {
            const char* sql = sqlite3_sql(static_cast<sqlite3_stmt*>(comando));
            if (sql != nullptr && QByteArray(sql).startsWith("Select Count")) ++*static_cast<int*>(contexto);
            return 0;
        },
        &contagens);
    const auto conta = [](const QString& fonte = "tblPergunta") {
        Limpa_Cache_Lastrec();  // as every opener does
        return Lastrec(fonte, Conexão);
    };
    EXPECT_EQ(conta(), Linhas);
    EXPECT_EQ(conta(), Linhas);
    EXPECT_EQ(contagens, 1);

    // A write to another table, and an edit, leave the count of this one standing.
    Abre_Tabela_Secundária("tblPergunta_Já_Mostrada");
    Tabela_Secundária.AddNew();
    Tabela_Secundária.Fields("Código_Pergunta").Set_Value(1);
    Tabela_Secundária.Update();
    EXPECT_EQ(conta(), Linhas);
    EXPECT_EQ(contagens, 1);
    EXPECT_EQ(conta("tblPergunta_Já_Mostrada"), 1);
    EXPECT_EQ(contagens, 2);

    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("Mais uma");
    Tabela.Update();
    EXPECT_EQ(conta(), Linhas + 1);
    EXPECT_EQ(contagens, 3);

    // A row written in a transaction that is undone is not counted afterwards.
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("Desfeita");
    Tabela.Update();
    EXPECT_EQ(conta(), Linhas + 2);
    Desfaz_Transação();
    EXPECT_EQ(conta(), Linhas + 1);

    // Another copy's writes are seen, and so are rows that a statement deletes.
    Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta <= 10"});
    EXPECT_EQ(conta(), Linhas - 9);
    EXPECT_EQ(conta("Select * From tblPergunta Where Tipo = 'A'"), 200 - 4);
    Conexão.Execute("Delete From tblPergunta Where Tipo = 'A'");
    EXPECT_EQ(conta("Select * From tblPergunta Where Tipo = 'A'"), 0);
    EXPECT_EQ(conta(), Linhas - 9 - 196);
    sqlite3_trace_v2(Conexão.Sessão_Física()->Banco, 0, nullptr, nullptr);
}

namespace {
// The statements that a piece of work sends to a database file, as run, with their values.
struct Registro_Comandos {
    sqlite3* Banco;
    QStringList Comandos;
    explicit Registro_Comandos(sqlite3* banco) : Banco(banco) {
        sqlite3_trace_v2(
            banco, SQLITE_TRACE_STMT,
            [](unsigned, void* contexto, void* comando, void*) {
                char* sql = sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(comando));
                if (sql != nullptr && QByteArray(sql).startsWith("SELECT"))
                    static_cast<Registro_Comandos*>(contexto)->Comandos << QString::fromUtf8(sql);
                sqlite3_free(sql);
                return 0;
            },
            this);
    }
    ~Registro_Comandos() { sqlite3_trace_v2(Banco, 0, nullptr, nullptr); }

    // The plan of each statement; those that read a whole table or sort it in a scratch tree are told.
    QStringList Varreduras(QStringList& planos) const {
        QStringList varreduras;
        for (const QString& sql : QSet<QString>(Comandos.begin(), Comandos.end())) {
            sqlite3_stmt* plano = nullptr;
            sqlite3_prepare_v2(Banco, ("EXPLAIN QUERY PLAN " + sql).toUtf8().constData(), -1, &plano,
                               nullptr);
            QString texto;
            while (plano != nullptr && sqlite3_step(plano) == SQLITE_ROW)
                texto +=
                    " | " + QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(plano, 3)));
            sqlite3_finalize(plano);
            planos << sql + texto;
            // A scan in the table's own order that stops after a page is a look-up too.
            const bool limitada = sql.contains(QRegularExpression("ORDER BY rowid( DESC)? LIMIT"));
            if ((texto.contains("SCAN ") && !texto.contains("INDEX") && !limitada) ||
                texto.contains("TEMP B-TREE"))
                varreduras << sql + texto;
        }
        return varreduras;
    }
};
}  // namespace

TEST_F(Páginas_Teste, TheWindowsStatementsFindTheirRowsThroughAnIndex) {
    SO_NO_EMBUTIDO("lê os planos do SQLite");
    Catálogo::Cria_Tabela(Conexão, "tblPontuação", {{"Jogador", Tipo_Texto, 50}, {"Pontuação", Tipo_Double}});
    Catálogo::Adiciona_Índice(Conexão, "tblPontuação", {"idxPontuação", Tipo_Índice::Simples, {"Pontuação"}});
    Catálogo::Adiciona_Índice(Conexão_Manutenção, "tblManutenção_Banco_de_Dados",
                              {"idxUsuário_Data_Manutenção_Hora_Manutenção",
                               Tipo_Índice::Simples,
                               {"Usuário", "Data_Manutenção", "Hora_Manutenção"}});
    Catálogo::Garante_Índice_de_Consulta(Conexão, "tblPergunta", "Resposta_Correta");
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");  // with its new index
    // The store's own index stays out of the catalogue.
    EXPECT_EQ(Catálogo::Estrutura(Conexão, "tblPergunta").Índices.size(), 4);
    for (int i = 0; i < 300; ++i) {
        Abre_Tabela_Terciária("tblPontuação");
        Tabela_Terciária.AddNew();
        Tabela_Terciária.Fields("Jogador").Set_Value("J" + QString::number(i));
        Tabela_Terciária.Fields("Pontuação").Set_Value((i * 37) % 101);
        Tabela_Terciária.Update();
        Tabela_Manutenção.AddNew();
        Tabela_Manutenção.Fields("Manutenção").Set_Value("Linha " + QString::number(i));
        Tabela_Manutenção.Fields("Usuário").Set_Value(i % 2 ? "Ana" : "Bruno");
        Tabela_Manutenção.Fields("Data_Manutenção")
            .Set_Value(QDateTime(QDate(2019, 3, 1 + i % 28), QTime(0, 0)));
        Tabela_Manutenção.Fields("Hora_Manutenção").Set_Value("10:00:00");
        Tabela_Manutenção.Update();
    }
    QStringList planos;

    // The hall: the points index walked from the top down and from the bottom up.
    Registro_Comandos principal(Conexão.Sessão_Física()->Banco);
    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("tblPontuação");
    Tabela_Terciária.Set_Index("idxPontuação");
    Tabela_Terciária.MoveLast();
    for (int i = 0; i < 150 && !Tabela_Terciária.Bof(); ++i) Tabela_Terciária.MovePrevious();
    Tabela_Terciária.MoveFirst();
    for (int i = 0; i < 150 && !Tabela_Terciária.Eof(); ++i) Tabela_Terciária.MoveNext();
    // The verification's look-up of the questions with the same answer.
    Abre_Tabela_Dynaset("Select * From tblPergunta Where Resposta_Correta = 'x'", Conexão.ConnectionString);
    EXPECT_EQ(Tabela_Dynaset.RecordCount(), Linhas);
    EXPECT_EQ(Padrão(principal.Varreduras(planos)), Padrão({}));

    // The maintenance report: a seek on user, date and time, then the walk on from there.
    Registro_Comandos auditoria(Conexão_Manutenção.Sessão_Física()->Banco);
    Tabela_Manutenção.Set_Index("idxUsuário_Data_Manutenção_Hora_Manutenção");
    Tabela_Manutenção.Seek({"Ana", QDateTime(QDate(2019, 3, 10), QTime(0, 0)), QString("00:00:00")},
                           Tipo_Busca::Depois_ou_Igual);
    EXPECT_EQ(Tabela_Manutenção.Fields("Data_Manutenção").Value().toDate(), QDate(2019, 3, 10));
    for (int i = 0; i < 100 && !Tabela_Manutenção.Eof(); ++i) Tabela_Manutenção.MoveNext();
    EXPECT_EQ(Padrão(auditoria.Varreduras(planos)), Padrão({}));
    RecordProperty("Planos", planos.join(" // ").toStdString());
}

// A page that a window shows at once, read in one go: the same rows in the same order as a walk row by row,
// in both directions, in an order an index serves and in one it does not; a row that another copy deleted
// before the page was read stays out of it; the page's count is the walk's.
TEST_F(Páginas_Teste, APageReadAtOnceShowsWhatTheWalkRowByRowShows) {
    const auto caminha_em_páginas = [](bool adiante) {
        QStringList vistas;
        while (adiante ? !Tabela.Eof() : !Tabela.Bof()) {
            Página_Lida página(Tabela, 15);
            for (int i = 0; i < 14 && (adiante ? !Tabela.Eof() : !Tabela.Bof()); ++i) {
                vistas << Marca_Atual();
                adiante ? Tabela.MoveNext() : Tabela.MovePrevious();
            }
        }
        return vistas;
    };
    for (const char* fonte : {"Select * From tblPergunta Where Tipo = 'A' Order By Pergunta Desc",
                              "Select * From tblPergunta Where Pergunta Like '%1%'",
                              "Select * From tblPergunta Order By Resposta_Correta Desc, Tipo"}) {
        SCOPED_TRACE(fonte);
        Abre_Tabela(fonte);
        const QStringList uma_a_uma = Caminha(true);
        ASSERT_GT(uma_a_uma.size(), 30);
        Abre_Tabela(fonte);
        EXPECT_EQ(Padrão(caminha_em_páginas(true)), Padrão(uma_a_uma));
        Tabela.MoveLast();
        EXPECT_EQ(Padrão(caminha_em_páginas(false)), Padrão(Invertida(uma_a_uma)));
        EXPECT_EQ(Tabela.RecordCount(), uma_a_uma.size());
    }

    // Rows deleted by another copy after the walk began, before the page that holds them was read.
    Abre_Tabela("Select * From tblPergunta Where Pergunta Like '%1%'");
    const QStringList antes = Caminha(true);
    Tabela.MoveFirst();
    Tabela.MoveNext();
    const QString segunda = Marca_Atual();
    Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta IN (" + antes[2].section('/', 0, 0) +
                    ", " + antes[20].section('/', 0, 0) + ")"});
    QStringList depois{Marca_Atual()};
    {
        Página_Lida página(Tabela, 15);
        for (int i = 0; i < 30 && !Tabela.Eof(); ++i) {
            Tabela.MoveNext();
            if (!Tabela.Eof()) depois << Marca_Atual();
        }
    }
    QStringList esperadas = antes.mid(1, 33);
    esperadas.removeAt(19);
    esperadas.removeAt(1);
    EXPECT_EQ(segunda.toStdString(), antes[1].toStdString());
    EXPECT_EQ(Padrão(depois.mid(0, esperadas.size())), Padrão(esperadas));
}

// Rows that a step takes from the page that read them give the same values, of the same types, as the
// same rows read on their own: Nulls, texts with accents, empty and longer than a page's usual row,
// integers at both ends of their range, reals, booleans and dates; walking both ways across pages.
TEST_F(Páginas_Teste, RowsTakenFromTheirPageHoldTheValuesOfEveryKindOfFieldAsReadOnTheirOwn) {
    Catálogo::Cria_Tabela(Conexão, "tblTipos",
                          {{"Código", Tipo_Long, 0, true},
                           {"Nome", Tipo_Texto, 50, false, true},
                           {"Nota", Tipo_Memo, 0, false, true},
                           {"Valor", Tipo_Double},
                           {"Marca", Tipo_Boolean},
                           {"Dia", Tipo_Data},
                           {"Número", Tipo_Long}});
    Catálogo::Adiciona_Índice(Conexão, "tblTipos", {"idxCódigo", Tipo_Índice::Primário, {"Código"}});
    constexpr int Quantas = 300;
    Inicia_Transação();
    Abre_Tabela_Terciária("tblTipos");
    for (int i = 0; i < Quantas; ++i) {
        Tabela_Terciária.AddNew();
        // Each field is Null in a row of its own rhythm.
        if (i % 7 != 1)
            Tabela_Terciária.Fields("Nome").Set_Value(i % 11 == 0 ? "" : "Ação nº " + QString::number(i));
        if (i % 5 != 2) Tabela_Terciária.Fields("Nota").Set_Value(QString("Observação ç ").repeated(i % 40));
        if (i % 6 != 3) Tabela_Terciária.Fields("Valor").Set_Value(i * 1.25 - 100);
        if (i % 4 != 0) Tabela_Terciária.Fields("Marca").Set_Value(i % 3 == 0);
        if (i % 9 != 4)
            Tabela_Terciária.Fields("Dia").Set_Value(
                QDateTime(QDate(2021, 1 + i % 12, 1 + i % 28), QTime(i % 24, i % 60, (i * 7) % 60)));
        if (i % 8 != 5)
            Tabela_Terciária.Fields("Número").Set_Value(i % 2 ? qint64(INT32_MAX) - i
                                                              : qint64(INT32_MIN) + i);
        Tabela_Terciária.Update();
    }
    Finaliza_Transação();

    // Each row as the walk shows it, then the same row sought on its own in another slot.
    Abre_Tabela_Secundária("tblTipos");
    Tabela_Secundária.Set_Index("idxCódigo");
    const auto confere = [](const char* sentido) {
        SCOPED_TRACE(sentido);
        const int código = Tabela.Fields("Código").Value().toInt();
        Tabela_Secundária.Seek(código);
        ASSERT_FALSE(Tabela_Secundária.Eof());
        for (int c = 0; c < Tabela.Fields_Count(); ++c) {
            SCOPED_TRACE(Tabela.Fields(c).Name().toStdString() + " da linha " + std::to_string(código));
            const QVariant na_caminhada = Tabela.Fields(c).Value();
            const QVariant sozinha = Tabela_Secundária.Fields(c).Value();
            EXPECT_EQ(na_caminhada.typeId(), sozinha.typeId());
            EXPECT_EQ(na_caminhada.isNull(), sozinha.isNull());
            EXPECT_TRUE(na_caminhada == sozinha)
                << na_caminhada.toString().toStdString() << " / " << sozinha.toString().toStdString();
        }
    };
    Abre_Tabela("tblTipos");
    Tabela.Set_Index("idxCódigo");
    int vistas = 0;
    for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext(), ++vistas) confere("adiante");
    EXPECT_EQ(vistas, Quantas);
    vistas = 0;
    for (Tabela.MoveLast(); !Tabela.Bof(); Tabela.MovePrevious(), ++vistas) confere("para trás");
    EXPECT_EQ(vistas, Quantas);

    // A few values checked against what was written, so that both reads cannot be wrong alike.
    Tabela_Secundária.Seek(11);  // the 11th row written, i = 10
    EXPECT_EQ(Tabela_Secundária.Fields("Nome").Value().toString().toStdString(), "Ação nº 10");
    EXPECT_EQ(Tabela_Secundária.Fields("Nota").Value().toString(), QString("Observação ç ").repeated(10));
    EXPECT_DOUBLE_EQ(Tabela_Secundária.Fields("Valor").Value().toDouble(), -87.5);
    EXPECT_EQ(Tabela_Secundária.Fields("Marca").Value().typeId(), QMetaType::Bool);
    EXPECT_EQ(Tabela_Secundária.Fields("Dia").Value().toDateTime(),
              QDateTime(QDate(2021, 11, 11), QTime(10, 10, 10)));
    EXPECT_EQ(Tabela_Secundária.Fields("Número").Value().toLongLong(), qint64(INT32_MIN) + 10);
}
