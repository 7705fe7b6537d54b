// A seek finds the rows that another running copy added after the slot took its keyset, as a table read
// directly does, on the embedded engine and on the server alike; the walk then goes on from there.
#include <gtest/gtest.h>

#include "store/Funções_Banco.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
QString Inclusão(const QString& pergunta, const QString& tipo) {
    return "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) VALUES ('" + pergunta +
           "', 'x', '" + tipo + "', false)";
}

QStringList Caminha_Adiante() {
    QStringList vistas;
    for (; !Tabela.Eof(); Tabela.MoveNext()) vistas << Tabela.Fields("Pergunta").Value().toString();
    return vistas;
}

class Busca_Linhas_Novas_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    void SetUp() override {
        Cria_Bancos_De_Teste();
        ASSERT_TRUE(
            Executa_Em_Outro_Processo({Inclusão("P1", "A"), Inclusão("P2", "B"), Inclusão("P3", "A")}));
    }
};
}  // namespace

TEST_F(Busca_Linhas_Novas_Teste, ASeekFindsARowAddedByAnotherCopyAndTheWalkGoesOnFromIt) {
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    ASSERT_EQ(Tabela.RecordCount(), 3);
    ASSERT_TRUE(Executa_Em_Outro_Processo({Inclusão("P4", "B"), Inclusão("P5", "A")}));

    // The walk keeps the keyset as it was taken...
    Tabela.MoveLast();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 3);
    // ...but a seek finds what is in the table now, and the rows up to it join the walk.
    Tabela.Seek(4);
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "P4");
    EXPECT_EQ(Tabela.RecordCount(), 4);
    Tabela.MovePrevious();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 3);
    Tabela.MoveNext();
    Tabela.MoveNext();
    EXPECT_TRUE(Tabela.Eof());
    Tabela.Seek(5);
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "P5");
    EXPECT_EQ(Tabela.RecordCount(), 5);
    Tabela.MoveFirst();
    EXPECT_EQ(Caminha_Adiante(), (QStringList{"P1", "P2", "P3", "P4", "P5"}));

    // A key that no row holds still finds nothing.
    Tabela.Seek(6);
    EXPECT_TRUE(Tabela.Eof());
}

// On a slot opened on a selection, the new row is found only if it belongs to the selection.
TEST_F(Busca_Linhas_Novas_Teste, ASeekOnASelectionFindsOnlyNewRowsThatBelongToIt) {
    Abre_Tabela("Select * From tblPergunta Where Tipo = 'B'");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    ASSERT_EQ(Tabela.RecordCount(), 1);
    ASSERT_TRUE(Executa_Em_Outro_Processo({Inclusão("P4", "A"), Inclusão("P5", "B")}));
    Tabela.Seek(4);
    EXPECT_TRUE(Tabela.Eof());
    Tabela.Seek(5);
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "P5");
    EXPECT_EQ(Tabela.RecordCount(), 2);
    Tabela.MoveFirst();
    EXPECT_EQ(Caminha_Adiante(), (QStringList{"P2", "P5"}));
}
