// The revelations browser over citations written for each test: the whole-keyword rule of the subject
// search, the memory of opened citations, the text search over the files, the grid that grows and is cut
// back, and Sair in the middle of a search.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QPushButton>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "revelations/Revelações.h"
#include "revelations/frmRevelações_De_Deus.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/Permissões.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}

namespace {
const QString Não_Encontrada = "\" não encontrada entre as Revelações de Deus...";

class Revelacoes : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Conexão.Execute("Delete From tblRevelação");
        QDir().mkpath(Pasta.Caminho() + "/Ajuda");
        Plataforma.Caixas.clear();
    }

    // A row of tblRevelação and, unless the text is null, its file in the program's code page.
    static void Cita(int número, const QString& palavras, const QString& texto, int linhas = 10) {
        Conexão.Execute(
            "Insert Into tblRevelação (Código_Revelação_de_Deus, Palavra_Chave, Quantidade_Linhas) "
            "Values (" +
            QString::number(número) + ", " + Valor_Texto_SQL(palavras) + ", " + QString::number(linhas) +
            ")");
        if (!texto.isNull()) Escreve(número, texto);
        Limpa_Cache_Lastrec();
    }
    static void Escreve(int número, const QString& texto) {
        QFile f(Caminho_Citação(número));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(Para_Cp1252(texto));
    }

    static void Pesquisa(frmRevelações_De_Deus& j, int opção, const QString& texto) {
        j.optPesquisa[opção]->click();
        j.txtPesquisa->setText(texto);
        bool Cancel = false;
        j.txtPesquisa_Validate(Cancel);
        j.cmdOk_Click();
    }

    // The beginnings shown, row by row down to the last one filled.
    static QStringList Achadas(const frmRevelações_De_Deus& j) {
        QStringList achadas;
        for (int l = 1; l <= j.Linha_Grade; ++l) achadas << j.flxRevelações_de_Deus->TextMatrix(l, 0);
        return achadas;
    }

    static void Seleciona(frmRevelações_De_Deus& j, int linha) {
        emit j.flxRevelações_de_Deus->cellClicked(linha, 0);
    }
};
}  // namespace

TEST(Palavra_Chave, AWholeKeywordBeginsTheListOrFollowsABlankAndEndsItOrStandsBeforeAComma) {
    EXPECT_TRUE(Palavra_Chave_Confere("fé, confiança", "fé"));
    EXPECT_TRUE(Palavra_Chave_Confere("fé", "fé"));
    EXPECT_TRUE(Palavra_Chave_Confere("amor, fé", "fé"));
    EXPECT_TRUE(Palavra_Chave_Confere("amor, fé, paz", "FÉ"));
    EXPECT_TRUE(Palavra_Chave_Confere("Fé Viva, paz", "fé viva"));
    // Inside a longer word, or glued to the comma before it.
    EXPECT_FALSE(Palavra_Chave_Confere("amor, férias", "fé"));
    EXPECT_FALSE(Palavra_Chave_Confere("amor,fé", "fé"));
    EXPECT_FALSE(Palavra_Chave_Confere("fé viva, paz", "fé"));
    // Only the first occurrence is looked at: the whole word later in the list does not count.
    EXPECT_FALSE(Palavra_Chave_Confere("café, fé", "fé"));
    EXPECT_FALSE(Palavra_Chave_Confere("paz", "fé"));
    EXPECT_FALSE(Palavra_Chave_Confere("paz", ""));
}

// The text search reads a citation as its lines joined by single blanks, whatever the line ends, in the
// program's code page, without regard to case; the last line end adds no blank.
TEST_F(Revelacoes, TheTextSearchReadsLinesJoinedByBlanksWhateverTheLineEnds) {
    const QString arquivo = Caminho_Citação(7);
    auto grava = [&](const QByteArray& bytes) {
        QFile f(arquivo);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    };
    grava("Bem-aventurados os\r\nmansos, porque\rherdar\xe3o\na terra\r\n\r\n");
    EXPECT_TRUE(Citação_Contém(arquivo, "os mansos"));
    EXPECT_TRUE(Citação_Contém(arquivo, "PORQUE HERDARÃO A"));
    EXPECT_TRUE(Citação_Contém(arquivo, "terra "));  // the empty last line is a line of its own
    EXPECT_FALSE(Citação_Contém(arquivo, "terra  "));
    EXPECT_FALSE(Citação_Contém(arquivo, "os\nmansos"));
    grava("\x93Paz\x94 a v\xf3s\n");
    EXPECT_TRUE(Citação_Contém(arquivo, QString::fromUtf8("“paz” a vós")));
    EXPECT_FALSE(Citação_Contém(arquivo, QString::fromUtf8("vós ")));
    EXPECT_FALSE(Citação_Contém(Caminho_Citação(8), "paz"));  // no file
}

// The search over the file's bytes agrees with a search over its decoded text for every character of the
// code page and its capital and small forms. The file holds the capitals but not the small letters, and
// some ranges not at all.
TEST_F(Revelacoes, TheTextSearchFindsWhatTheDecodedTextWouldForEveryCharacterOfThePage) {
    QByteArray bytes = "linha\r\n";
    for (int b = 0x20; b < 0x100; ++b)
        if (b < 0x60 || (b >= 0x80 && b < 0xA0) || (b >= 0xC0 && b < 0xE0)) bytes += static_cast<char>(b);
    bytes += "\rfim\n";
    const QString arquivo = Caminho_Citação(9);
    {
        QFile f(arquivo);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }
    QString lido = De_Cp1252(bytes);
    lido.chop(1);
    lido.replace("\r\n", " ").replace('\r', ' ');
    int achados = 0, vistos = 0;
    for (int b = 0x20; b < 0x100; ++b) {
        const QString c = De_Cp1252(QByteArray(1, static_cast<char>(b)));
        for (const QString& procurado : {c, c.toUpper(), c.toLower(), "a " + c, c + " f"}) {
            const bool esperado = lido.contains(procurado, Qt::CaseInsensitive);
            EXPECT_EQ(Citação_Contém(arquivo, procurado), esperado)
                << "byte " << b << ": " << procurado.toStdString();
            achados += esperado;
            ++vistos;
        }
    }
    EXPECT_GT(achados, 300);  // both outcomes were compared
    EXPECT_LT(achados, vistos - 200);
    EXPECT_TRUE(Citação_Contém(arquivo, QString::fromUtf8("LINHA ")));
    // Characters outside the page are still compared by their folded forms.
    EXPECT_FALSE(Citação_Contém(arquivo, QString::fromUtf8("ω")));
}

TEST_F(Revelacoes, AnOpenedCitationLeavesLaterSubjectSearchesButNotTextSearchesAndIsPaintedBlue) {
    Cita(2, "fé, confiança", "A fé move\r\nmontanhas.\r\n");
    Cita(3, "esperança, fé", "Esperai no Senhor.\r\n");
    Cita(4, "café, fé", "Não entra: só a primeira ocorrência conta.\r\n");
    Cita(5, "paz", "Paz e FÉ.\r\n");
    Cita(6, "fé", QString());  // listed, but its file is missing
    frmRevelações_De_Deus janela;
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(0, 0),
              QString("Revelação de Deus").leftJustified(107));

    Pesquisa(janela, 0, "  FÉ ");
    EXPECT_EQ(Achadas(janela), (QStringList{"A fé move montanhas. ", "Esperai no Senhor. ", ""}));
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(janela.windowTitle(), " ");

    Seleciona(janela, 1);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Caminho_Citação(2)});
    janela.flxRevelações_de_Deus->Set_Row(1);
    janela.flxRevelações_de_Deus->Set_Col(0);
    EXPECT_EQ(janela.flxRevelações_de_Deus->CellForeColor(), QColor(0, 0, 255));
    EXPECT_TRUE(janela.Revelação_Mostrada[2]);

    Pesquisa(janela, 0, "fé");
    EXPECT_EQ(Achadas(janela), (QStringList{"Esperai no Senhor. ", ""}));
    janela.flxRevelações_de_Deus->Set_Row(1);
    EXPECT_NE(janela.flxRevelações_de_Deus->CellForeColor(), QColor(0, 0, 255));
    // The text search reads every file; the missing one is passed over without a word.
    Pesquisa(janela, 1, "fé");
    EXPECT_EQ(Achadas(janela), (QStringList{"A fé move montanhas. ", "Paz e FÉ. "}));
    EXPECT_TRUE(janela.optPesquisa[1]->isChecked());
    EXPECT_FALSE(janela.optPesquisa[0]->isChecked());
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());

    // A new window forgets what was opened.
    frmRevelações_De_Deus outra;
    Pesquisa(outra, 0, "fé");
    EXPECT_EQ(outra.Linha_Grade, 3);
}

TEST_F(Revelacoes, PickingACitationFromTheTextBoxIsNoNewSearchAndLeavesItsRowAsFound) {
    Cita(2, "fé", "A fé move montanhas.\r\n");
    frmRevelações_De_Deus janela;
    janela.show();
    Pesquisa(janela, 0, "fé");
    janela.txtPesquisa->setFocus();
    QApplication::processEvents();
    janela.flxRevelações_de_Deus->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(1, 0), "A fé move montanhas. ");
    Seleciona(janela, 1);
    EXPECT_TRUE(janela.flxRevelações_de_Deus->selectedItems().isEmpty());
    // Leaving the text box for OK does announce the search.
    janela.txtPesquisa->setFocus();
    QApplication::processEvents();
    janela.cmdOk->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(1, 0), "Efetuando pesquisa no banco de dados...");
}

TEST_F(Revelacoes, NothingFoundSaysTheTrimmedTextInCapitalsAndItsRowOpensNothing) {
    Cita(2, "fé", "Texto.\r\n");
    frmRevelações_De_Deus janela;
    Pesquisa(janela, 0, "  esperança ");
    EXPECT_EQ(janela.Linha_Grade, 0);
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(1, 0), "Expressão \"ESPERANÇA" + Não_Encontrada);
    Seleciona(janela, 1);
    EXPECT_TRUE(Plataforma.Abertos.isEmpty());

    // An empty text is refused before any search.
    janela.txtPesquisa->setText("   ");
    bool Cancel = false;
    janela.txtPesquisa_Validate(Cancel);
    EXPECT_TRUE(Cancel);
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), (QStringList{Aviso(10), Aviso(10)}));
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(1, 0), "Expressão \"ESPERANÇA" + Não_Encontrada);
}

TEST_F(Revelacoes, TheLongestTextWithQuotesPercentUnderscoreAndAccentsIsSoughtAsTyped) {
    const QString procurado = "Ação 100% \"fiel\" d'água_viva, São João, coração ãé";  // 50 characters
    ASSERT_EQ(procurado.size(), 50);
    QString curinga = procurado;
    curinga.replace('%', 'x').replace('_', 'y');
    Cita(2, "paz, " + procurado, "Lá está: " + procurado + " e mais.\r\n");
    Cita(3, "paz, " + curinga, "Só parecido: " + curinga + "\r\n");
    frmRevelações_De_Deus janela;
    janela.txtPesquisa->setText(procurado + "excesso");
    EXPECT_EQ(janela.txtPesquisa->text(), procurado);
    // The quote goes through the statement, and % and _ find only themselves.
    Pesquisa(janela, 0, procurado);
    ASSERT_EQ(janela.Linha_Grade, 1);
    EXPECT_TRUE(janela.flxRevelações_de_Deus->TextMatrix(1, 0).startsWith("Lá está: Ação 100%"));
    Pesquisa(janela, 0, "coração ãé");
    EXPECT_EQ(janela.Linha_Grade, 2);
    Pesquisa(janela, 1, procurado.toUpper());
    ASSERT_EQ(janela.Linha_Grade, 1);
    EXPECT_TRUE(janela.flxRevelações_de_Deus->TextMatrix(1, 0).startsWith("Lá está: Ação 100%"));
}

TEST_F(Revelacoes, TheGridGrowsARowAtATimeIsCutBackTo26AndTheBeginningStopsPast110Characters) {
    const QString linha = QString(40, 'a') + "\r\n";
    for (int n = 2; n <= 41; ++n) Cita(n, "amor", linha + linha + linha + linha);
    frmRevelações_De_Deus janela;
    EXPECT_EQ(janela.flxRevelações_de_Deus->Rows(), 26);
    Pesquisa(janela, 0, "amor");
    EXPECT_EQ(janela.Linha_Grade, 40);
    EXPECT_EQ(janela.flxRevelações_de_Deus->Rows(), 42);
    // Three lines of 40 with their blanks reach 123 characters; the fourth is not read.
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(40, 0).size(), 123);
    Pesquisa(janela, 0, "ódio");
    EXPECT_EQ(janela.flxRevelações_de_Deus->Rows(), 26);
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(2, 0), "");
}

TEST_F(Revelacoes, SairInTheMiddleOfASearchStopsItAtTheNextRow) {
    for (int n = 2; n <= 11; ++n) Cita(n, "amor", "Amor.\r\n");
    frmRevelações_De_Deus janela;
    janela.show();
    int linhas = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++linhas == 3) janela.cmdSair->click();
    };
    Pesquisa(janela, 1, "amor");
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(janela.Linha_Grade, 3);
    EXPECT_FALSE(janela.isVisible());
    EXPECT_TRUE(Interrompe_Pesquisa);
    EXPECT_FALSE(Em_Cadastro);
}

TEST_F(Revelacoes, TheMakersAccountSeesTheShareOfShortCitationsInTheHeading) {
    Cita(2, "a", "A.\r\n", 29);
    Cita(3, "b", "B.\r\n", 30);
    Cita(4, "c", "C.\r\n", 5);
    Usuário_Atual = Usuário_Autor;
    frmRevelações_De_Deus janela;
    const QString esperado =
        "Revelação de Deus" + QString(34, ' ') + "Quantidade de Citações com Texto Pequeno:    2 ( 66,67%)";
    EXPECT_EQ(janela.flxRevelações_de_Deus->TextMatrix(0, 0), esperado.leftJustified(107));
}

TEST_F(Revelacoes, TenThousandCitationsInTheTextSearch) {
    Conexão.Execute("Begin");
    for (int n = 1; n <= 10000; ++n)
        Conexão.Execute(
            "Insert Into tblRevelação (Código_Revelação_de_Deus, Palavra_Chave, Quantidade_Linhas) "
            "Values (" +
            QString::number(n) + ", 'paz', 3)");
    Conexão.Execute("Commit");
    Limpa_Cache_Lastrec();
    for (int n = 1; n <= 9999; ++n) Escreve(n, "Bem-aventurados os pacificadores.\r\n");
    Escreve(10000, "Vinde a mim.\r\n");  // the last number, one past what the memory of opened ones holds
    frmRevelações_De_Deus janela;
    Pesquisa(janela, 1, "vinde");
    ASSERT_EQ(janela.Linha_Grade, 1);
    Seleciona(janela, 1);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Caminho_Citação(10000)});
    Pesquisa(janela, 0, "paz");
    EXPECT_EQ(janela.Linha_Grade, 10000);
}
