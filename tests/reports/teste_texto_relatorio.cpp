// The paragraph justifier of the reports and the citation panel, and the right-aligned numbers.
#include <gtest/gtest.h>

#include <QStringList>

#include "common/Cp1252.h"
#include "reports/Texto_Relatório.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class EditaParagrafo : public ::testing::Test {
protected:
    Plataforma_Roteirizada Plataforma;

    void TearDown() override {
        Saída_Imprime = nullptr;
        Saída_Direta = nullptr;
    }

    // Runs the justifier in the mode of the citation panel and returns the counted lines.
    static QStringList Linhas(QString texto, int largura) {
        Edita_Parágrafo(texto, largura, false, false);
        QStringList linhas;
        for (int i = 1; i <= Quantidade_Linhas_Parágrafo; ++i) linhas << Linhas_Parágrafo[i];
        return linhas;
    }
};

TEST_F(EditaParagrafo, ShortTextIsOneRaggedLineAndTheTextComesBackTrimmedAndCollapsed) {
    QString texto = "   O  Senhor   é o meu pastor   ";
    Edita_Parágrafo(texto, 40, false, false);
    EXPECT_EQ(texto, "O Senhor é o meu pastor");
    EXPECT_EQ(Quantidade_Linhas_Parágrafo, 1);
    EXPECT_EQ(Linhas_Parágrafo[1], "O Senhor é o meu pastor");
    EXPECT_FALSE(Fim_Parágrafo[1]);
}

TEST_F(EditaParagrafo, GapsWidenFromRightToLeftUntilTheWidthAndTheLastLineStaysRagged) {
    QString texto = "  um dois   tres quatro cinco seis sete oito  ";
    Edita_Parágrafo(texto, 15, false, false);
    EXPECT_EQ(texto, "um dois tres quatro cinco seis sete oito");
    ASSERT_EQ(Quantidade_Linhas_Parágrafo, 3);
    EXPECT_EQ(Linhas_Parágrafo[1], "um  dois   tres");
    EXPECT_EQ(Linhas_Parágrafo[2], "quatro    cinco");
    EXPECT_EQ(Linhas_Parágrafo[3], "seis sete oito");
}

TEST_F(EditaParagrafo, FirstLineSeesOnlyTheWidthLaterLinesSeeTheBlankJustPastIt) {
    // A text of exactly the width is not kept whole: the first window does not look past it.
    EXPECT_EQ(Linhas("aaaa bbbbb", 10), QStringList({"aaaa", "bbbbb"}));
    // A later line ending exactly at the width keeps its last word, seeing the blank behind it.
    EXPECT_EQ(Linhas("aaaaaaaaa bbb cccccc dd", 10), QStringList({"aaaaaaaaa", "bbb cccccc", "dd"}));
}

TEST_F(EditaParagrafo, PointsAreBreakPlacesAndTheSeparatorsBehindABreakAreSwallowed) {
    EXPECT_EQ(Linhas("ab J.A.B. cd", 6), QStringList({"ab  J.", "A.B.", "cd"}));
    EXPECT_EQ(Linhas("Fim... Sim", 4), QStringList({"Fim.", "Sim"}));
}

TEST_F(EditaParagrafo, HardBreakEndsARaggedLineAndBlankLinesBehindItVanish) {
    QString texto = "Primeira linha\r\n\r\nSegunda parte do texto aqui";
    Edita_Parágrafo(texto, 20, false, false);
    ASSERT_EQ(Quantidade_Linhas_Parágrafo, 3);
    EXPECT_EQ(Linhas_Parágrafo[1], "Primeira linha");
    EXPECT_TRUE(Fim_Parágrafo[1]);
    EXPECT_EQ(Linhas_Parágrafo[2], "Segunda   parte   do");
    EXPECT_FALSE(Fim_Parágrafo[2]);
    EXPECT_EQ(Linhas_Parágrafo[3], "texto aqui");
    EXPECT_FALSE(Fim_Parágrafo[3]);
}

TEST_F(EditaParagrafo, WordLongerThanTheWidthIsCutAtTheWidthWithoutLosingText) {
    EXPECT_EQ(Linhas("ab abcdefghijkl cd", 5), QStringList({"ab", "abcde", "fghij", "kl", "cd"}));
    EXPECT_EQ(Linhas("abcdefghij", 4), QStringList({"abcd", "efgh", "ij"}));
}

TEST_F(EditaParagrafo, EmptyTextLeavesNoLinesNotEvenThoseOfTheCallBefore) {
    Linhas("um dois tres quatro cinco seis", 8);
    ASSERT_GT(Quantidade_Linhas_Parágrafo, 1);

    QString branco = "     ";
    Edita_Parágrafo(branco, 8, false, false);
    EXPECT_EQ(branco, "");
    EXPECT_EQ(Quantidade_Linhas_Parágrafo, 0);
    EXPECT_EQ(Linhas_Parágrafo[1], "");
    EXPECT_EQ(Linhas_Parágrafo[2], "");

    QString vazio;
    Edita_Parágrafo(vazio, 8, false, false);
    EXPECT_EQ(Quantidade_Linhas_Parágrafo, 0);
}

TEST_F(EditaParagrafo, AccentedLettersCountAsOneColumnEach) {
    const QStringList linhas = Linhas("ação é  já útil", 12);
    ASSERT_EQ(linhas.size(), 2);
    EXPECT_EQ(linhas[0], "ação  é   já");
    EXPECT_EQ(Para_Cp1252(linhas[0]).size(), 12);
    EXPECT_EQ(linhas[1], "útil");
}

TEST_F(EditaParagrafo, CitationPanelJustifiesTo110ColumnsAndWritesNothing) {
    int escritas = 0;
    Saída_Imprime = [&](const QString&, int, bool) { ++escritas; };
    Saída_Direta = [&](const QString&) { ++escritas; };

    // The panel gathers the lines of a paragraph, each followed by one blank.
    const QStringList arquivo = {
        "Bem-aventurado o homem que não anda segundo o conselho dos ímpios, nem se detém no caminho dos "
        "pecadores,",
        "nem se assenta na roda dos escarnecedores.  Antes tem o seu prazer na lei do Senhor,",
        "e na sua lei medita de dia e de noite. Pois será como a árvore plantada junto a ribeiros de águas,",
        "a qual dá o seu fruto no seu tempo; as suas folhas não cairão, e tudo quanto fizer prosperará."};
    QString acumulado;
    for (const QString& linha : arquivo) acumulado += linha + " ";

    Edita_Parágrafo(acumulado, 110, false, false);
    EXPECT_EQ(escritas, 0);
    ASSERT_EQ(Quantidade_Linhas_Parágrafo, 4);
    EXPECT_EQ(
        Linhas_Parágrafo[1],
        "Bem-aventurado o homem que não anda segundo o conselho dos ímpios, nem se detém no caminho dos "
        "pecadores,  nem");
    EXPECT_TRUE(Linhas_Parágrafo[2].endsWith("medita de  dia  e"));
    EXPECT_TRUE(Linhas_Parágrafo[3].endsWith("seu  tempo;  as"));
    EXPECT_EQ(Linhas_Parágrafo[4], "suas folhas não cairão, e tudo quanto fizer prosperará.");

    QStringList palavras;
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(Linhas_Parágrafo[i].size(), 110) << i;
        palavras << Linhas_Parágrafo[i].simplified();
    }
    palavras << Linhas_Parágrafo[4];
    EXPECT_EQ(palavras.join(' '), acumulado);
}

TEST_F(EditaParagrafo, ReportModesSendEveryLineToTheirOutput) {
    QStringList impressas, diretas;
    Saída_Imprime = [&](const QString& texto, int coluna, bool quebra) {
        EXPECT_EQ(coluna, 0);
        EXPECT_FALSE(quebra);
        impressas << texto;
    };
    Saída_Direta = [&](const QString& linha) { diretas << linha; };
    const QStringList esperadas = {"um  dois   tres", "quatro    cinco", "seis sete oito"};

    QString texto = "um dois tres quatro cinco seis sete oito";
    Edita_Parágrafo(texto, 15, true, false);
    EXPECT_EQ(impressas, esperadas);
    EXPECT_TRUE(diretas.isEmpty());

    impressas.clear();
    Edita_Parágrafo(texto, 15, false, true);
    EXPECT_TRUE(impressas.isEmpty());
    EXPECT_EQ(diretas, esperadas);

    // Through Imprime wins when both are asked.
    diretas.clear();
    Edita_Parágrafo(texto, 15, true, true);
    EXPECT_EQ(impressas, esperadas);
    EXPECT_TRUE(diretas.isEmpty());

    // With no report open the lines stay in Linhas_Parágrafo.
    Saída_Imprime = nullptr;
    Edita_Parágrafo(texto, 15, true, false);
    EXPECT_EQ(Quantidade_Linhas_Parágrafo, 3);
}

TEST_F(EditaParagrafo, TextBeyondTwoHundredLinesIsDropped) {
    QStringList palavras;
    for (int i = 0; i < 300; ++i) palavras << "ab";
    const QStringList linhas = Linhas(palavras.join(' '), 2);
    ASSERT_EQ(linhas.size(), 200);
    EXPECT_EQ(linhas.last(), "ab");
}

TEST(FormataExpressao, GroupsDigitsAndRightAlignsInTheField) {
    Plataforma_Roteirizada plataforma;
    EXPECT_EQ(Formata_Expressão(1500, 9, 0, false), "    1.500");
    EXPECT_EQ(Formata_Expressão(1234567, 9, 0, false), "1.234.567");
    EXPECT_EQ(Formata_Expressão(-1234, 7, 0, false), " -1.234");
    EXPECT_EQ(Formata_Expressão(999.6, 6, 0, false), " 1.000");
    // A number longer than the field comes back whole.
    EXPECT_EQ(Formata_Expressão(123456789012.0, 9, 0, false), "123.456.789.012");
}

TEST(FormataExpressao, ZeroWithoutDecimalsIsBlanksAndAZero) {
    Plataforma_Roteirizada plataforma;
    EXPECT_EQ(Formata_Expressão(0, 6, 0, false), "     0");
    EXPECT_EQ(Formata_Expressão(0, 9, 0, false), "        0");
    EXPECT_EQ(Formata_Expressão(0.4, 6, 0, false), "     0");
    EXPECT_EQ(Formata_Expressão(-0.4, 6, 0, false), "     0");
}

TEST(FormataExpressao, DecimalsUseTheCommaAndKeepTheZeroBeforeIt) {
    Plataforma_Roteirizada plataforma;
    EXPECT_EQ(Formata_Expressão(12.5, 6, 2, false), " 12,50");
    EXPECT_EQ(Formata_Expressão(0.5, 6, 2, false), "  0,50");
    EXPECT_EQ(Formata_Expressão(0, 6, 2, false), "  0,00");
    EXPECT_EQ(Formata_Expressão(1234.5, 4, 2, false), "1.234,50");
}
}  // namespace
