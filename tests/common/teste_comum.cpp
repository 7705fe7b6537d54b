// The code page of the text files and the random generator that the game and the raffle share.
#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}
static void PrintTo(const QByteArray& bytes, std::ostream* saída) {
    *saída << "hex " << bytes.toHex(' ').toStdString();
}

namespace {
QByteArray Bytes(std::initializer_list<unsigned char> valores) {
    QByteArray saída;
    for (const unsigned char v : valores) saída.append(static_cast<char>(v));
    return saída;
}

// The characters that code page 1252 puts in 0x80-0x9F, where it differs from Latin-1.
const std::vector<std::pair<unsigned char, char16_t>> Faixa_Windows = {
    {0x80, u'\u20AC'}, {0x82, u'\u201A'}, {0x83, u'\u0192'}, {0x84, u'\u201E'}, {0x85, u'\u2026'},
    {0x86, u'\u2020'}, {0x87, u'\u2021'}, {0x88, u'\u02C6'}, {0x89, u'\u2030'}, {0x8A, u'\u0160'},
    {0x8B, u'\u2039'}, {0x8C, u'\u0152'}, {0x8E, u'\u017D'}, {0x91, u'\u2018'}, {0x92, u'\u2019'},
    {0x93, u'\u201C'}, {0x94, u'\u201D'}, {0x95, u'\u2022'}, {0x96, u'\u2013'}, {0x97, u'\u2014'},
    {0x98, u'\u02DC'}, {0x99, u'\u2122'}, {0x9A, u'\u0161'}, {0x9B, u'\u203A'}, {0x9C, u'\u0153'},
    {0x9E, u'\u017E'}, {0x9F, u'\u0178'}};

class Gerador_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
};
}  // namespace

TEST(Cp1252_Teste, PortugueseLettersAreOneByteEachAndComeBackUnchanged) {
    const QString texto = "Ação, reação e exceção: ÁÂÃÀÇÉÊÍÓÔÕÚÜ áâãàçéêíóôõúü Nº 1ª ordem §2 45°";
    const QByteArray bytes = Para_Cp1252(texto);
    ASSERT_EQ(bytes.size(), texto.size());
    EXPECT_EQ(bytes, texto.toLatin1());  // in 0xA0-0xFF the page agrees with Latin-1
    EXPECT_EQ(De_Cp1252(bytes), texto);

    EXPECT_EQ(Para_Cp1252("Descrição"), QByteArray("Descri") + Bytes({0xE7, 0xE3}) + "o");
    EXPECT_EQ(Para_Cp1252("Nº."), QByteArray("N") + Bytes({0xBA}) + ".");
    EXPECT_EQ(De_Cp1252(QByteArray("Opera") + Bytes({0xE7, 0xE3}) + "o"), QString("Operação"));
}

TEST(Cp1252_Teste, TypographicCharactersUseTheWindowsBytesNotTheLatin1Controls) {
    EXPECT_EQ(Para_Cp1252("€"), Bytes({0x80}));
    EXPECT_EQ(Para_Cp1252("“aspas”"), Bytes({0x93}) + "aspas" + Bytes({0x94}));
    EXPECT_EQ(Para_Cp1252("a — b"), QByteArray("a ") + Bytes({0x97}) + " b");
    EXPECT_EQ(De_Cp1252(Bytes({0x80, 0x93, 0x97})), QString("€“—"));

    for (const auto& [byte, caractere] : Faixa_Windows) {
        SCOPED_TRACE(testing::Message() << "byte 0x" << std::hex << int(byte));
        const QString texto(QChar{caractere});
        EXPECT_EQ(Para_Cp1252(texto), Bytes({byte}));
        EXPECT_EQ(De_Cp1252(Bytes({byte})), texto);
    }
}

TEST(Cp1252_Teste, CharacterOutsideThePageBecomesAQuestionMark) {
    EXPECT_EQ(Para_Cp1252("Ω"), QByteArray("?"));
    EXPECT_EQ(Para_Cp1252("a→b"), QByteArray("a?b"));
    EXPECT_EQ(Para_Cp1252("中文 ção"), QByteArray("?? ") + Bytes({0xE7, 0xE3}) + "o");
    // The C1 controls that Latin-1 has in 0x80-0x9F are not characters of this page.
    EXPECT_EQ(Para_Cp1252(QString(QChar(0x0093))), QByteArray("?"));
}

// A report's lines go one after another into one buffer: each is added after what is there, in the same
// bytes as a conversion of its own.
TEST(Cp1252_Teste, TextAddedToABufferKeepsWhatWasThereAndConvertsAsAlone) {
    QByteArray área("\\par", 4);
    for (const QString& texto : {QString("ação €"), QString(), QString("a→b"), QString(300, QChar(0x00E9))}) {
        const QByteArray antes = área;
        Acrescenta_Cp1252(área, texto);
        EXPECT_EQ(área, antes + Para_Cp1252(texto));
    }
    área.resize(0);
    Acrescenta_Cp1252(área, u"Ω\\x");
    EXPECT_EQ(área, QByteArray("?\\x"));
    // Plain letters are taken several at a time: the others land anywhere among them.
    for (int antes = 0; antes <= 19; ++antes) {
        SCOPED_TRACE(antes);
        const QString texto = QString(antes, 'a') + QString::fromUtf8("€é→x") + QString(antes % 5, 'z');
        EXPECT_EQ(Para_Cp1252(texto),
                  QByteArray(antes, 'a') + Bytes({0x80, 0xE9}) + "?x" + QByteArray(antes % 5, 'z'));
    }
}

TEST(Cp1252_Teste, LineEndsAndPlainTextPassThrough) {
    const QString texto = "Linha 1\r\nLinha 2\r\n\tfim";
    EXPECT_EQ(Para_Cp1252(texto), texto.toLatin1());
    EXPECT_EQ(De_Cp1252(texto.toLatin1()), texto);
    EXPECT_TRUE(Para_Cp1252(QString()).isEmpty());
}

TEST_F(Gerador_Teste, SeedIsTheSinglePrecisionProductOfFourClockReadings) {
    // Readings chosen so that multiplying in double and rounding once would give another seed.
    const float leituras[4] = {72371.69f, 72371.74f, 72371.79f, 72371.84f};
    Plataforma.Leituras_Segundos.assign(std::begin(leituras), std::end(leituras));
    Plataforma.Leituras_Segundos.push_back(1.0f);  // a fifth reading must not be taken

    Semeia_Gerador();

    volatile float esperado = leituras[0];
    esperado = esperado * leituras[1];
    esperado = esperado * leituras[2];
    esperado = esperado * leituras[3];
    EXPECT_EQ(Plataforma.Última_Semente, esperado);
    const double em_dupla = double(leituras[0]) * leituras[1] * leituras[2] * leituras[3];
    EXPECT_NE(Plataforma.Última_Semente, static_cast<float>(em_dupla));
    ASSERT_EQ(Plataforma.Leituras_Segundos.size(), 1u);
}

TEST_F(Gerador_Teste, SeedFollowsTheOrderAndValuesOfTheReadings) {
    Plataforma.Leituras_Segundos = {2.0f, 3.0f, 5.0f, 7.0f};
    Semeia_Gerador();
    EXPECT_EQ(Plataforma.Última_Semente, 210.0f);

    Plataforma.Leituras_Segundos = {0.5f, 4.0f, 10.0f, 0.25f};
    Semeia_Gerador();
    EXPECT_EQ(Plataforma.Última_Semente, 5.0f);

    // A reading at midnight makes the seed zero, as the clock gives it.
    Plataforma.Leituras_Segundos = {0.0f, 3.0f, 5.0f, 7.0f};
    Semeia_Gerador();
    EXPECT_EQ(Plataforma.Última_Semente, 0.0f);
}

TEST_F(Gerador_Teste, DrawIsRoundedDownAndNeverReachesTheBound) {
    Plataforma.Sorteios = {0.0, 0.999999, 0.5};
    EXPECT_EQ(Sorteia(10), 0);
    EXPECT_EQ(Sorteia(10), 9);
    EXPECT_EQ(Sorteia(10), 5);

    Plataforma.Sorteios = {0.5, 0.999999, 0.999999, 0.999999, 0.25};
    EXPECT_EQ(Sorteia(3), 1);  // 1.5 goes down, not to the nearest
    EXPECT_EQ(Sorteia(7), 6);
    EXPECT_EQ(Sorteia(1), 0);
    EXPECT_EQ(Sorteia(500), 499);
    EXPECT_EQ(Sorteia(4), 1);  // an exact product stays as it is
    EXPECT_TRUE(Plataforma.Sorteios.empty());
}
