// The report file, compared byte for byte, and the ways its opening can go.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "common/Cp1252.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
const QString Cabeça =
    R"({\rtf1\ansi\ansicpg1252\deff0\deflang1046{\fonttbl{\f0\fnil\fcharset0 Courier New;}})";
const QString Papel_Retrato = R"(\paperh17010\paperw12242\margl437\margr437\margt102\margb663)";
const QString Papel_Paisagem = R"(\landscape\paperh12242\paperw17010\margl232\margr731\margt936\margb731)";
const QString Azul = R"({\colortbl ;\red0\green0\blue255;})";
// 25 + 38 + 8 characters: nineteen rounds of blanks, then one more for the left and the middle.
const QString Cabeçalho = "Norvane Informática Ltda." + QString(20, ' ') +
                          "Impresso em 14/03/2019, às 14:30:00 hs" + QString(39, ' ') + "Página: ";

QByteArray Arquivo(QStringList linhas) {
    linhas.removeAll("");
    return Para_Cp1252(linhas.join("\r\n") + "\r\n");
}

QByteArray Lê(const QString& caminho) {
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class Relatorio_Rtf : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    int Confirmações = 0;
    bool Resposta_Confirma = true;
    const QString Pasta_Relatórios = Pasta.Caminho() + "/Relatórios/";

    void SetUp() override {
        Cria_Bancos_De_Teste();
        Catálogo::Cria_Tabela(Conexão, "tblConfigur", {{"Razão_Social", Tipo_Texto, 50}});
        Abre_Tabela("tblConfigur");
        Tabela.AddNew();
        Tabela.Fields("Razão_Social").Set_Value("  Norvane Informática Ltda.  ");
        Tabela.Update();
        Tabela.Reinicia();
        Título_Relatório.clear();
        Modo_Retrato = true;
        Tamanho_Fonte = 0;
        Cor_Destaque = 1;
        Destaque_Ligado = true;
        Impressão_Confirmada = false;
    }

    bool Abre(const QString& nome) {
        return Abre_Arquivo_Rtf(nome, [this] {
            ++Confirmações;
            return Resposta_Confirma;
        });
    }

    // The body lines that `escreve` puts in a portrait report with no title and no highlight.
    QStringList Corpo(const std::function<void()>& escreve) {
        Cor_Destaque = 0;
        EXPECT_TRUE(Abre("corpo"));
        escreve();
        Fecha_Arquivo_Rtf(nullptr);
        const QByteArray bytes = Lê(Pasta_Relatórios + "corpo.Rtf");
        const QByteArray cabeça = Arquivo({Cabeça, R"(\viewkind4\uc1\pard\f0\fs14)", Papel_Retrato});
        EXPECT_TRUE(bytes.startsWith(cabeça) && bytes.endsWith("\r\n}\r\n"));
        return De_Cp1252(bytes.mid(cabeça.size(), bytes.size() - cabeça.size() - 5)).split("\r\n");
    }

    void Sorteia_Nome(const QString& códigos) {
        for (const QChar c : códigos) Plataforma.Sorteios.push_back((c.unicode() + 0.5) / 90.0);
    }
};
}  // namespace

TEST_F(Relatorio_Rtf, TitledReportInBothOrientationsIsWrittenWholeAndHandedToTheViewer) {
    // A title of odd length: the indent is rounded down (29 - 12.5 and 37 - 12.5).
    for (const bool retrato : {true, false}) {
        Título_Relatório = "Relatório das Manutenções";
        Modo_Retrato = retrato;
        Tamanho_Fonte = 12;  // a preset size holds in portrait only
        const QString fs = retrato ? "12" : "18";
        ASSERT_TRUE(Abre(retrato ? "Relatório das Manutenções" : "paisagem"));
        EXPECT_TRUE(Impressão_Confirmada);
        const QString caminho = Caminho_Relatório;
        Imprime("Primeira linha", 0, false);
        Imprime("", 1, false);
        Imprime("Fim", 3, true);
        Fecha_Arquivo_Rtf(nullptr);

        EXPECT_EQ(Lê(caminho), Arquivo({Cabeça, Azul,
                                        R"(\viewkind4\uc1\pard\f0\fs)" + fs + R"(\i0\b0 {\info}{\header\fs)" +
                                            fs + "{" + Cabeçalho + R"( }{\chpgn}\par)",
                                        R"(\par)",
                                        R"(\fs32\b )" + QString(retrato ? 16 : 24, ' ') +
                                            R"(Relatório das Manutenções\b0\par)",
                                        R"(\fs)" + fs + " " + QString(135, '_') + R"(\par)", R"(\par})",
                                        retrato ? Papel_Retrato : Papel_Paisagem, R"(Primeira linha\par)",
                                        R"(\par)", R"(  Fim\par \page)", "}"}));
        EXPECT_EQ(Plataforma.Abertos.last(), caminho);
        EXPECT_TRUE(Título_Relatório.isEmpty());
        EXPECT_EQ(Tamanho_Fonte, 0);
        EXPECT_TRUE(Modo_Retrato);
    }
    EXPECT_EQ(Plataforma.Abertos.first(), Pasta_Relatórios + "Relatório das Manutenções.Rtf");
}

TEST_F(Relatorio_Rtf, EachHighlightChoiceHasItsColourTableLineAndNoTitleMeansNoHeader) {
    const QStringList cores = {"",
                               R"({\colortbl ;\red0\green0\blue255;})",
                               R"({\colortbl ;\red255\green0\blue0;})",
                               R"({\colortbl ;\red0\green128\blue0;})",
                               R"({\colortbl ;\red128\green128\blue0;})",
                               R"({\colortbl ;\red255\green0\blue255;})",
                               R"({\colortbl ;\red0\green128\blue128;})",
                               R"({\colortbl ;\red128\green128\blue128;})",
                               R"({\colortbl ;\red0\green255\blue255;})",
                               R"({\colortbl ;\red128\green0\blue128;})",
                               R"({\colortbl ;\red255\green128\blue255;})"};
    for (int cor = 0; cor <= 10; ++cor) {
        Cor_Destaque = cor;
        ASSERT_TRUE(Abre(QString("cor %1").arg(cor)));
        Fecha_Arquivo_Rtf(nullptr);
        EXPECT_EQ(Lê(Pasta_Relatórios + QString("cor %1.Rtf").arg(cor)),
                  Arquivo({Cabeça, cores[cor], R"(\viewkind4\uc1\pard\f0\fs14)", Papel_Retrato, "}"}))
            << cor;
    }
}

TEST_F(Relatorio_Rtf, BodyRoutinesEscapeIndentCentreFormatAndAlternateTheHighlight) {
    const QStringList corpo = Corpo([] {
        Linha_Relatório.replace(0, 4, "C:\\x");
        Linha_Relatório.replace(10, 5, "{ok}é");
        Imprime(Linha_Relatório, 0, false);
        EXPECT_EQ(Linha_Relatório, QString(137, ' '));
        Imprime("\\{}", 4, false);
        Centraliza_Relatório("  Título  ", true);    // 30 - 3
        Centraliza_Relatório("Linha comum", false);  // 66 - 5.5
        Configura_Impressora(false, true, true);
        // The justifier's lines come through Imprime, or as they are.
        QString parágrafo = "um  dois";
        Edita_Parágrafo(parágrafo, 10, true, false);
        Edita_Parágrafo(parágrafo, 10, false, true);
        Cor_Destaque = 3;
        for (bool encerra : {false, false, false, true, false}) Destaca_Impressão(encerra);
        Cor_Destaque = 0;
        Destaca_Impressão(false);
        EXPECT_FALSE(Destaque_Ligado);
    });
    EXPECT_EQ(corpo,
              QStringList({"C:\\\\x      {ok}é" + QString(122, ' ') + "\\par", "   \\\\{}\\par",
                           R"(\fs32\b\i0)", QString(26, ' ') + "  Título  \\par", R"(\fs14\b0\i0)",
                           QString(59, ' ') + "Linha comum\\par", R"(\fs14\b\i)", "um dois\\par", "um dois",
                           R"(\cf0\b0)", R"(\cf1\b1)", R"(\cf0\b0)", R"(\cf0\b0)", R"(\cf0\b0)"}));
    Modo_Retrato = false;
    Cor_Destaque = 0;
    ASSERT_TRUE(Abre("título"));
    Centraliza_Relatório("Título", true);
    Fecha_Arquivo_Rtf(nullptr);
    EXPECT_TRUE(Lê(Caminho_Relatório).contains(Para_Cp1252(QString(34, ' ') + "Título\\par")));
}

TEST_F(Relatorio_Rtf, AnExistingReportIsReplacedOnConfirmationOrLeftForARandomNameWhenItResists) {
    // A folder under the report's name resists deletion even for root; so does a read-only report.
    QDir().mkpath(Pasta_Relatórios + "Aberto.Rtf/dentro");
    for (const QString nome : {"Mensal", "Protegido"}) {
        QFile f(Pasta_Relatórios + nome + ".Rtf");
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("antigo");
        f.close();
    }
    QFile::setPermissions(Pasta_Relatórios + "Protegido.Rtf", QFileDevice::ReadOwner);

    Resposta_Confirma = false;
    EXPECT_FALSE(Abre("Mensal"));
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(15)});
    EXPECT_EQ(Confirmações, 1);
    EXPECT_FALSE(Impressão_Confirmada);
    EXPECT_EQ(Lê(Pasta_Relatórios + "Mensal.Rtf"), "antigo");

    Resposta_Confirma = true;
    const QStringList nomes = {"Mensal", "Aberto", "Protegido"};
    const QStringList destinos = {"Mensal", "A1B2C3D4", "Q9W8E7R6"};
    Sorteia_Nome("A1B2C3D4Q9W8E7R6");
    for (int i = 0; i < 3; ++i) {
        Plataforma.Caixas.clear();
        ASSERT_TRUE(Abre(nomes[i]));
        Imprime("novo", 0, false);
        Fecha_Arquivo_Rtf(nullptr);
        EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(15)});
        EXPECT_EQ(Caminho_Relatório, Pasta_Relatórios + destinos[i] + ".Rtf");
        EXPECT_TRUE(Lê(Caminho_Relatório).endsWith("novo\\par\r\n}\r\n"));
    }
    EXPECT_EQ(Lê(Pasta_Relatórios + "Protegido.Rtf"), "antigo");
    EXPECT_TRUE(QFileInfo(Pasta_Relatórios + "Aberto.Rtf").isDir());
}

TEST_F(Relatorio_Rtf, AnEmptyNameIsDrawnAMissingFolderMadeAndNamesNoFileCanCarryRefused) {
    const QStringList recusados = {"a/b",  "a\\b", QString("a") + QChar(0) + "b",
                                   "a:b",  "a*b",  "a?b",
                                   "a\"b", "a<b",  "a>b",
                                   "a|b",  "a\tb", QString(260, 'x')};
    for (const QString& nome : recusados) {
        Plataforma.Caixas.clear();
        EXPECT_FALSE(Abre(nome));
        ASSERT_EQ(Plataforma.Caixas.size(), 1);
        EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("Nome de arquivo inválido!!!"));
        EXPECT_FALSE(Impressão_Confirmada);
    }
    ASSERT_FALSE(QFileInfo::exists(Pasta_Relatórios));

    Plataforma.Caixas.clear();
    Plataforma.Leituras_Segundos = {2.0f, 3.0f, 5.0f, 7.0f};
    // Codes outside the digits and the capitals are drawn again.
    Sorteia_Nome(QString(QChar(10)) + "09:@AY/H1BC");
    ASSERT_TRUE(Abre("   "));
    EXPECT_EQ(Plataforma.Última_Semente, 210.0f);
    EXPECT_EQ(Caminho_Relatório, Pasta_Relatórios + "09AYH1BC.Rtf");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    Fecha_Arquivo_Rtf(nullptr);
    EXPECT_TRUE(QFileInfo::exists(Caminho_Relatório));
}

// A walk fills the line from the store's UTF-8 as the same text made a string would: accents, letters of
// two units, a sequence the width cuts, broken bytes, Null, the line's end.
TEST(Relatorio_Rtf_Linha, TheLineFilledFromUtf8IsTheLineFilledFromTheSameText) {
    const QList<QByteArray> textos = {
        "",
        "Árvore Balões 00001",
        "Bíblias, cartolinas, canetas coloridas (12), fita adesiva e uma caixa de papelão",
        QByteArray("Meditação ") + QByteArray(60, 'x') + "çãõ",
        "\xF0\x9D\x84\x9E clave \xF0\x9F\x98\x80 e \xE2\x82\xAC",
        "quebrado \xC3 aqui \xFF\xFE fim \xE2\x82",
        "\xEF\xBB\xBF"
        "com marca de ordem",
        "\xEF\xBB\xBF\xEF\xBB\xBF" "com duas marcas",
        "longas \xC0\xAF \xE0\x80\xAF \xED\xA0\x80 \xF4\x90\x80\x80 fim",
        QByteArray(49, 'a') + "\xF0\x9F\x98\x80" + "b",
        QByteArray(600, 'a') + "é"};
    const struct {
        int Coluna, Tamanho;
    } faixas[] = {{1, 50}, {54, 20}, {87, 47}, {130, 20}, {1, 137}, {137, 5}, {0, 5}, {138, 5}, {10, 0}};
    for (const QByteArray& texto : textos)
        for (const auto& faixa : faixas) {
            Linha_Relatório = QString(Tamanho_Linha_Relatório, '.');
            Preenche_Linha_Relatório(faixa.Coluna, faixa.Tamanho, QString::fromUtf8(texto));
            const QString esperada = Linha_Relatório;
            Linha_Relatório = QString(Tamanho_Linha_Relatório, '.');
            Preenche_Linha_Relatório_Utf8(faixa.Coluna, faixa.Tamanho, texto);
            EXPECT_EQ(Linha_Relatório, esperada) << texto.left(30).constData() << " em " << faixa.Coluna;
        }
    Linha_Relatório = QString(Tamanho_Linha_Relatório, ' ');
}
