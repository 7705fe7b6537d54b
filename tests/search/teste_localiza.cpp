// The locate dialog on real tables: the statement of each field class, the pages of 14, the single hit,
// the stored criterion, and the look-up of a typed code or name.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QMap>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Localiza_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
        Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
        Usuário_Atual = "Supervisor";
        Plataforma.Caixas.clear();
    }

    // The register's side of the protocol: its table in Tabela, the dialog's view in Tabela_Pesquisa.
    static void Abre_Para_Localizar(const QString& tabela) {
        Tabela.Reinicia();
        Abre_Tabela(tabela);
        Abre_Tabela_Pesquisa(tabela);
    }

    static void Escolhe_Campo(frmLocaliza_Informação& j, const QString& campo) {
        const int i = j.cboCampo_de_Pesquisa->findText(campo);
        ASSERT_GE(i, 0) << campo.toStdString();
        j.cboCampo_de_Pesquisa->setCurrentIndex(i);
    }

    static QStringList Coluna(const frmLocaliza_Informação& j, int coluna) {
        QStringList valores;
        for (int linha = 1; linha <= 14; ++linha) valores << j.flxLocaliza->TextMatrix(linha, coluna);
        while (!valores.isEmpty() && valores.last().isEmpty()) valores.removeLast();
        return valores;
    }

    static int Inclui_Pergunta(const QString& pergunta, bool comparada = false) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblPergunta");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Pergunta").Set_Value(pergunta);
        for (const char* campo :
             {"Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2", "Resposta_Incorreta_3"})
            Tabela_Quaternária.Fields(QString::fromUtf8(campo)).Set_Value("Resposta");
        Tabela_Quaternária.Fields("Tipo").Set_Value("G");
        Tabela_Quaternária.Fields("Já_Comparada").Set_Value(comparada);
        Tabela_Quaternária.Fields("Já_Verificada").Set_Value(false);
        Tabela_Quaternária.Update();
        return Tabela_Quaternária.Fields("Código_Pergunta").Value().toInt();
    }
};
}  // namespace

TEST_F(Localiza_Teste, TheFieldListsPutTheFirstFieldFirstAndTheOperatorStartsAtGreaterOrEqual) {
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    EXPECT_EQ(janela.windowTitle(), "Localizar...");
    EXPECT_EQ(Nome_Janela, "frmLocaliza_Informação");
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->count(), 10);
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentText(), "Pergunta");
    EXPECT_EQ(janela.Campo_Mostrado_1, "Código_Pergunta");
    EXPECT_EQ(janela.Campo_Mostrado_2, "Já_Comparada");
    EXPECT_EQ(janela.Operador, ">=");
    EXPECT_TRUE(janela.optOpção[3]->isChecked());
    EXPECT_FALSE(janela.cmdPróximos_14->isEnabled());
    EXPECT_FALSE(janela.cmdÚltimos_14->isEnabled());
    EXPECT_TRUE(janela.txtConteúdo->isVisibleTo(&janela));
    EXPECT_FALSE(janela.nbConteúdo->isVisibleTo(&janela));
    EXPECT_EQ(janela.flxLocaliza->TextMatrix(0, 0), "Informação localizada no banco de dados...      ");

    // The maker's account starts on "anywhere in the text".
    Usuário_Atual = "Ornelio Varga";
    frmLocaliza_Informação do_autor;
    EXPECT_EQ(do_autor.Operador, "Like");
}

TEST_F(Localiza_Teste, AWordAnywhereInTheTextFillsPagesOf14AndThe15thStandsAloneOnTheNext) {
    Cadastra_Perguntas(15);
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    janela.optOpção_Click(6);
    janela.txtConteúdo->setText("número");
    EXPECT_EQ(janela.lblPesquisa->text(), " Pergunta Sobrenome = número");
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblPergunta Where Pergunta Like '%número%'");
    EXPECT_EQ(Linhas_Localizadas, 14);
    const QStringList primeira_página = Coluna(janela, 0);
    const QStringList códigos = Coluna(janela, 3);
    EXPECT_EQ(primeira_página.size(), 14);
    EXPECT_EQ(janela.flxLocaliza->TextMatrix(0, 0), QString("Pergunta").leftJustified(48));
    EXPECT_EQ(janela.flxLocaliza->TextMatrix(2, 2), "Falso");
    EXPECT_TRUE(janela.cmdPróximos_14->isEnabled());
    EXPECT_TRUE(janela.cmdÚltimos_14->isEnabled());

    janela.cmdPróximos_14_Click();
    const QStringList segunda_página = Coluna(janela, 0);
    ASSERT_EQ(segunda_página.size(), 1);
    EXPECT_FALSE(primeira_página.contains(segunda_página[0]));
    EXPECT_TRUE(segunda_página[0].startsWith("Pergunta número "));
    EXPECT_EQ(Linhas_Localizadas, 1);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_FALSE(janela.cmdPróximos_14->isEnabled());
    EXPECT_TRUE(janela.cmdÚltimos_14->isEnabled());

    // Back: the page before is drawn again, from the bottom of the grid up, and it is the first.
    Plataforma.Caixas.clear();
    janela.cmdPróximos_14_LostFocus();
    janela.cmdÚltimos_14_Click();
    EXPECT_EQ(Coluna(janela, 0), primeira_página);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(11)});
    EXPECT_FALSE(janela.cmdÚltimos_14->isEnabled());
    EXPECT_TRUE(janela.cmdPróximos_14->isEnabled());

    // A choice on the page leaves the record in the locate result.
    janela.flxLocaliza->Set_Row(14);
    janela.flxLocaliza_Click();
    EXPECT_EQ(Código_Localizado, códigos[13].toInt());
    EXPECT_EQ(Tabela_Dynaset.Fields("Código_Pergunta").Value().toInt(), códigos[13].toInt());
}

TEST_F(Localiza_Teste, ANumberSearchWithExactly14HitsFindsNothingNewOnTheNextPage) {
    Cadastra_Perguntas(20);
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    Escolhe_Campo(janela, "Código_Pergunta");
    EXPECT_TRUE(janela.nbConteúdo->isVisibleTo(&janela));
    EXPECT_FALSE(janela.txtConteúdo->isVisibleTo(&janela));
    janela.optOpção_Click(5);
    janela.nbConteúdo->Set_Value(14);
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblPergunta Where Código_Pergunta <= 14");
    EXPECT_EQ(janela.lblPesquisa->text(), " Código_Pergunta <= 14");
    EXPECT_EQ(Linhas_Localizadas, 14);
    EXPECT_TRUE(janela.cmdPróximos_14->isEnabled());
    EXPECT_TRUE(janela.cmdÚltimos_14->isEnabled());

    janela.cmdPróximos_14_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_FALSE(janela.cmdPróximos_14->isEnabled());
    EXPECT_EQ(janela.flxLocaliza->TextMatrix(1, 0), "1");
    EXPECT_EQ(Coluna(janela, 0).size(), 14);

    // A click on an empty row of a shorter result does nothing.
    janela.nbConteúdo->Set_Value(2);
    janela.cmdOk_Click();
    EXPECT_EQ(Linhas_Localizadas, 2);
    EXPECT_FALSE(janela.cmdPróximos_14->isEnabled());
    janela.show();
    janela.flxLocaliza->Set_Row(5);
    janela.flxLocaliza_Click();
    EXPECT_EQ(Código_Escolhido, 0);
    EXPECT_TRUE(janela.isVisible());

    // Nothing found: the grid says so and both page buttons are off.
    janela.optOpção_Click(2);
    janela.nbConteúdo->Set_Value(500);
    janela.cmdOk_Click();
    EXPECT_EQ(janela.flxLocaliza->TextMatrix(1, 0), "Nenhuma informação encontrada no banco de dados...");
    EXPECT_FALSE(janela.cmdPróximos_14->isEnabled());
    EXPECT_FALSE(janela.cmdÚltimos_14->isEnabled());
}

TEST_F(Localiza_Teste, ASingleHitIsTakenAtOnceAsAFilterOnItsCodeEvenWithAQuoteInTheText) {
    Cadastra_Perguntas(3);
    const int código = Inclui_Pergunta("Qual é o rio d'Oeste da cidade?");
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    janela.show();
    janela.optOpção_Click(6);
    janela.txtConteúdo->setText("rio d'Oeste");
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblPergunta Where Pergunta Like '%rio d''Oeste%'");
    EXPECT_TRUE(Plataforma.Textos_Caixas().isEmpty());
    EXPECT_EQ(Linhas_Localizadas, 1);
    EXPECT_EQ(Tabela_Dynaset.Source,
              "Select * From tblPergunta Where Código_Pergunta = " + QString::number(código));
    EXPECT_EQ(Código_Localizado, código);
    EXPECT_FALSE(janela.isVisible());
    EXPECT_EQ(janela.result(), QDialog::Accepted);
}

TEST_F(Localiza_Teste, ABooleanFieldShowsTrueOrFalseInWordsAndAnEqualTextSearchQuotesTheValue) {
    Inclui_Pergunta("Primeira comparada?", true);
    Inclui_Pergunta("Segunda comparada?", true);
    Inclui_Pergunta("Não comparada?", false);
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    Escolhe_Campo(janela, "Já_Comparada");
    EXPECT_TRUE(janela.optConteúdo[0]->isVisibleTo(&janela));
    EXPECT_TRUE(janela.optConteúdo[1]->isVisibleTo(&janela));
    janela.optOpção_Click(0);
    janela.optConteúdo[0]->click();
    EXPECT_EQ(janela.lblPesquisa->text(), " Já_Comparada = Verdadeiro");
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblPergunta Where Já_Comparada = True");
    EXPECT_EQ(Coluna(janela, 0), QStringList({"Verdadeiro", "Verdadeiro"}));

    Escolhe_Campo(janela, "Pergunta");
    janela.txtConteúdo->setText("Não comparada?");
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblPergunta Where Pergunta = 'Não comparada?'");
    EXPECT_EQ(Código_Localizado, 3);
}

TEST_F(Localiza_Teste, ADateSearchWritesTheDateMonthFirstAndAnEmptyDateFindsTheRowsWithoutOne) {
    Tabela_Quaternária.Reinicia();
    Abre_Tabela_Quaternária("tblAdaptação");
    for (const QVariant& data : {QVariant(QDateTime(QDate(2026, 11, 23), QTime(0, 0))), QVariant(),
                                 QVariant(QDateTime(QDate(2025, 1, 5), QTime(0, 0)))}) {
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Data_Solicitação").Set_Value(data);
        Tabela_Quaternária.Fields("Adaptação").Set_Value("Pedido");
        Tabela_Quaternária.Update();
    }
    Abre_Para_Localizar("tblAdaptação");
    frmLocaliza_Informação janela;
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentText(), "Data_Solicitação");
    EXPECT_TRUE(janela.dbConteúdo->isVisibleTo(&janela));

    janela.dbConteúdo->Set_Value(QDate(2026, 11, 23));
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblAdaptação Where Data_Solicitação >=#11/23/2026#");
    EXPECT_EQ(janela.lblPesquisa->text(), " Data_Solicitação >= #23/11/2026#");
    EXPECT_EQ(Código_Localizado, 1);

    // A date that does not exist is refused instead of searching for rows without a date.
    Comando_SQL.clear();
    janela.dbConteúdo->setText("31/02/2026");
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(18)});
    EXPECT_TRUE(Comando_SQL.isEmpty());

    janela.dbConteúdo->Set_Value(QVariant());
    janela.optOpção_Click(4);
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL, "Select * From tblAdaptação Where Data_Solicitação is null");
    EXPECT_EQ(Código_Localizado, 2);
}

TEST_F(Localiza_Teste, AStoredCriterionOfTheUserWinsAndAnotherUsersServesWhenTheUserHasNone) {
    auto guarda = [](const QString& usuário, int pesquisa, int primeiro, int segundo) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblCritério_de_Consulta");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Tabela").Set_Value("Pergunta");
        Tabela_Quaternária.Fields("Usuário").Set_Value(usuário);
        Tabela_Quaternária.Fields("Campo_de_Pesquisa").Set_Value(pesquisa);
        Tabela_Quaternária.Fields("Primeiro_Campo_de_Consulta").Set_Value(primeiro);
        Tabela_Quaternária.Fields("Segundo_Campo_de_Consulta").Set_Value(segundo);
        Tabela_Quaternária.Update();
    };
    guarda("Maria", 2, 3, 4);
    Abre_Para_Localizar("tblPergunta");
    Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
    Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
    {
        frmLocaliza_Informação janela;
        EXPECT_EQ(janela.Campo_Pesquisa, "Resposta_Correta");
        EXPECT_EQ(janela.Campo_Mostrado_1, "Resposta_Incorreta_1");
        EXPECT_EQ(janela.Campo_Mostrado_2, "Resposta_Incorreta_2");
    }
    guarda("Supervisor", 6, 0, 1);
    Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
    Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
    frmLocaliza_Informação janela;
    EXPECT_EQ(janela.Campo_Pesquisa, "Tipo");
    EXPECT_EQ(janela.Campo_Mostrado_1, "Pergunta");
    EXPECT_EQ(janela.Campo_Mostrado_2, "Código_Pergunta");
}

TEST_F(Localiza_Teste, ATableOfTwoFieldsShowsTheSameSecondFieldTwice) {
    Abre_Para_Localizar("tblPontuação");
    frmLocaliza_Informação janela;
    EXPECT_EQ(janela.Campo_Pesquisa, "Jogador");
    EXPECT_EQ(janela.Campo_Mostrado_1, "Pontuação");
    EXPECT_EQ(janela.Campo_Mostrado_2, "Pontuação");
}

TEST_F(Localiza_Teste, ATypedCodeOrNameFindsItsRecordAndSeveralNamesAreOfferedInTheDialog) {
    Tabela.Reinicia();
    Abre_Tabela("tblEstado");
    QLineEdit caixa;
    QLabel rótulo;
    Operação = "Consulta";

    QString informação = "2";
    EXPECT_TRUE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(rótulo.text(), "Alagoas");

    informação = "bah";
    EXPECT_TRUE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(informação, "5");
    EXPECT_EQ(caixa.text(), "Bahia");

    informação = "gip";  // not a beginning: found anywhere in the name
    EXPECT_TRUE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(rótulo.text(), "Sergipe");

    informação = "Xingu";
    EXPECT_FALSE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(rótulo.text(), "Código não encontrado no sistema! Tente novamente");

    // Three of the seeded states begin with "S": during an inclusion the dialog lists them and the user picks
    // one.
    Operação = "Inclusão";
    QStringList listados;
    QTimer::singleShot(0, [&listados] {
        auto* lista = dynamic_cast<frmLocaliza_Informação*>(QApplication::activeModalWidget());
        ASSERT_NE(lista, nullptr);
        for (int linha = 1; linha <= 3; ++linha) listados << lista->flxLocaliza->TextMatrix(linha, 0);
        lista->flxLocaliza->Set_Row(2);
        lista->flxLocaliza_Click();
    });
    informação = "s";
    EXPECT_TRUE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(listados, QStringList({"Santa Catarina", "São Paulo", "Sergipe"}));
    EXPECT_EQ(caixa.text(), listados.value(1));
    EXPECT_FALSE(Em_Encontrou);
    EXPECT_FALSE(Em_Lista_Encontrou);
}

// What a user types is a value, never part of the statement: quotes, %, _, [, * and -- in every field class.
TEST_F(Localiza_Teste, TypedSignsFindOnlyThemselvesInEveryFieldClass) {
    const QStringList sinais = {"d'Oeste", "100%", "a_b", "[x]", "5*3", "--fim"};
    QMap<QString, int> códigos;
    for (const QString& s : sinais) códigos[s] = Inclui_Pergunta("Texto " + s + " aqui");
    // Rows that a sign read as a pattern would find too.
    for (const char* isca : {"Texto 1000 aqui", "Texto axb aqui", "Texto x aqui", "Texto 5 vezes 3 aqui"})
        Inclui_Pergunta(isca);

    for (const QString& s : sinais) {
        SCOPED_TRACE(s.toStdString());
        for (int operador : {6, 0}) {  // "Em qualquer posição..." and "="
            Abre_Para_Localizar("tblPergunta");
            frmLocaliza_Informação janela;
            janela.optOpção_Click(operador);
            janela.txtConteúdo->setText(operador == 6 ? s : "Texto " + s + " aqui");
            janela.cmdOk_Click();
            EXPECT_EQ(Linhas_Localizadas, 1);
            EXPECT_EQ(Código_Localizado, códigos[s]);
        }
    }

    // Text that would close the quote and widen the search finds nothing.
    for (int operador : {6, 0, 3}) {
        Abre_Para_Localizar("tblPergunta");
        frmLocaliza_Informação janela;
        janela.optOpção_Click(operador);
        janela.txtConteúdo->setText("zzz' Or Pergunta Like '");
        janela.cmdOk_Click();
        EXPECT_EQ(Linhas_Localizadas, 0) << operador;
        EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    }

    // The number and date boxes take none of these signs; the Boolean field has no text at all.
    Abre_Para_Localizar("tblPergunta");
    frmLocaliza_Informação janela;
    janela.show();
    Escolhe_Campo(janela, "Código_Pergunta");
    janela.optOpção_Click(0);
    QTest::keyClicks(janela.nbConteúdo, "2' Or 1=1 --%_[*");
    janela.cmdOk_Click();
    EXPECT_TRUE(QRegularExpression("^Select \\* From tblPergunta Where Código_Pergunta = -?[0-9.]+$")
                    .match(Comando_SQL)
                    .hasMatch())
        << Comando_SQL.toStdString();
    Tabela_Quaternária.Reinicia();
    Abre_Tabela_Quaternária("tblAdaptação");
    Abre_Para_Localizar("tblAdaptação");
    frmLocaliza_Informação datas;
    datas.show();
    Escolhe_Campo(datas, "Data_Solicitação");
    QTest::keyClicks(datas.dbConteúdo, "'%_[*--");
    datas.cmdOk_Click();
    EXPECT_FALSE(Comando_SQL.contains('\''));
    EXPECT_FALSE(Comando_SQL.contains("--"));
}

// A typed code that is not found, during an inclusion, opens the dialog as a list to choose from.
TEST_F(Localiza_Teste, ACodeNotFoundDuringAnInclusionOpensTheList) {
    Tabela.Reinicia();
    Abre_Tabela("tblEstado");
    QLineEdit caixa;
    QLabel rótulo;
    Operação = "Inclusão";
    bool abriu = false;
    QTimer::singleShot(0, [&abriu] {
        auto* lista = dynamic_cast<frmLocaliza_Informação*>(QApplication::activeModalWidget());
        ASSERT_NE(lista, nullptr);
        abriu = Em_Lista_Encontrou;
        lista->cmdSair_Click();
    });
    QString informação = "9999";
    EXPECT_FALSE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_TRUE(abriu);
    EXPECT_EQ(rótulo.text(), "Código não encontrado no sistema! Tente novamente");

    // In "Consulta" the same code just says it was not found.
    Operação = "Consulta";
    informação = "9999";
    EXPECT_FALSE(
        Encontrou_Informação(informação, &caixa, "tblEstado", "idxCódigo_Estado", "Estado", &rótulo, false));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    Operação.clear();
}
