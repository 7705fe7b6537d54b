// The query criteria register driven offscreen on a real database, and the locate dialog reading it.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "search/frmCritério_de_Consulta.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Criterio_Consulta_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Plataforma.Caixas.clear();
    }

    static void Escolhe(QComboBox* lista, const QString& texto) {
        const int i = lista->findText(texto);
        ASSERT_GE(i, 0) << texto.toStdString();
        lista->setCurrentIndex(i);
    }

    static void Escolhe_Tabela(frmCritério_de_Consulta& j, const QString& tabela) {
        Escolhe(j.cboTabela, tabela);
        bool Cancel = false;
        j.cboTabela_Validate(Cancel);
        EXPECT_FALSE(Cancel);
    }

    static void Escolhe_Campos(frmCritério_de_Consulta& j, const QString& pesquisa, const QString& primeiro,
                               const QString& segundo) {
        Escolhe(j.cboCampo_de_Pesquisa, pesquisa);
        Escolhe(j.cboPrimeiro_Campo_de_Consulta, primeiro);
        Escolhe(j.cboSegundo_Campo_de_Consulta, segundo);
        bool Cancel = false;
        j.Campo_Validate(j.cboPrimeiro_Campo_de_Consulta, Cancel);
        EXPECT_FALSE(Cancel);
    }

    static void Inclui(frmCritério_de_Consulta& j, const QString& tabela, const QString& pesquisa,
                       const QString& primeiro, const QString& segundo) {
        j.cmdInclusão_Click();
        Escolhe_Tabela(j, tabela);
        Escolhe_Campos(j, pesquisa, primeiro, segundo);
        ASSERT_TRUE(j.cmdOk->isEnabled());
        j.cmdOk_Click();
    }

    // Written apart from the window, as another user's workstation would.
    static void Guarda(const QString& tabela, const QString& usuário, int pesquisa, int primeiro,
                       int segundo) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblCritério_de_Consulta");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Tabela").Set_Value(tabela);
        Tabela_Quaternária.Fields("Usuário").Set_Value(usuário);
        Tabela_Quaternária.Fields("Campo_de_Pesquisa").Set_Value(pesquisa);
        Tabela_Quaternária.Fields("Primeiro_Campo_de_Consulta").Set_Value(primeiro);
        Tabela_Quaternária.Fields("Segundo_Campo_de_Consulta").Set_Value(segundo);
        Tabela_Quaternária.Update();
    }

    static QStringList Linhas() {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblCritério_de_Consulta Order By Código_Critério_de_Consulta");
        QStringList linhas;
        for (; !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext()) {
            QStringList campos;
            for (const char* campo : {"Tabela", "Usuário", "Campo_de_Pesquisa", "Primeiro_Campo_de_Consulta",
                                      "Segundo_Campo_de_Consulta"})
                campos << Tabela_Quaternária.Fields(QString::fromUtf8(campo)).Value().toString().trimmed();
            linhas << campos.join('|');
        }
        return linhas;
    }

    static QStringList Itens(const QComboBox* lista) {
        QStringList itens;
        for (int i = 0; i < lista->count(); ++i) itens << lista->itemText(i);
        return itens;
    }
};
}  // namespace

TEST_F(Criterio_Consulta_Teste, TheFieldListsFollowTheTableChosenAndTheInclusionStoresPositions) {
    frmCritério_de_Consulta janela;
    EXPECT_EQ(janela.cboTabela->objectName(), "cboTabela");
    EXPECT_EQ(janela.cboTabela->accessibleName(), "Tabela");
    const QStringList tabelas = Itens(janela.cboTabela);
    EXPECT_TRUE(tabelas.contains("Pergunta"));
    EXPECT_TRUE(tabelas.contains("Critério_de_Consulta"));
    for (const QString& t : tabelas)
        EXPECT_FALSE(t.startsWith("tbl", Qt::CaseInsensitive)) << t.toStdString();

    janela.cmdInclusão_Click();
    EXPECT_EQ(janela.windowTitle(), "Inclusão do Critério de Consultas");
    Escolhe_Tabela(janela, "Pergunta");
    const QStringList perguntas = Itens(janela.cboCampo_de_Pesquisa);
    EXPECT_EQ(perguntas.size(), 10);
    EXPECT_EQ(perguntas.first(), "Pergunta");  // position 0 sorts first
    EXPECT_EQ(Itens(janela.cboSegundo_Campo_de_Consulta), perguntas);
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentIndex(), -1);
    EXPECT_EQ(frmCritério_de_Consulta::Posição_do_Item(janela.cboCampo_de_Pesquisa->itemData(0).toString()),
              0);

    // Another table refills all three lists.
    Escolhe_Tabela(janela, "Critério_de_Consulta");
    EXPECT_EQ(Itens(janela.cboPrimeiro_Campo_de_Consulta).size(), 6);
    EXPECT_FALSE(Itens(janela.cboPrimeiro_Campo_de_Consulta).contains("Resposta_Correta"));

    Escolhe_Tabela(janela, "Pergunta");
    Escolhe_Campos(janela, "Resposta_Correta", "Tipo", "Código_Pergunta");
    janela.cmdOk_Click();
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Supervisor|2|6|1"}));
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(janela.txtUsuário->text(), "Supervisor");
    EXPECT_TRUE(janela.windowTitle().startsWith("Consulta do Critério de Consulta "));
}

TEST_F(Criterio_Consulta_Teste, AnAlterationKeepsTheSelectionsUnlessTheTableChanges) {
    frmCritério_de_Consulta janela;
    Inclui(janela, "Pergunta", "Resposta_Correta", "Tipo", "Código_Pergunta");

    janela.cmdAlteração_Click();
    ASSERT_EQ(Operação, "Alteração");
    bool Cancel = false;
    janela.cboTabela_Validate(Cancel);
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentText(), "Resposta_Correta");
    EXPECT_EQ(janela.cboPrimeiro_Campo_de_Consulta->currentText(), "Tipo");
    EXPECT_EQ(janela.cboSegundo_Campo_de_Consulta->currentText(), "Código_Pergunta");
    Escolhe(janela.cboSegundo_Campo_de_Consulta, "Pergunta");
    janela.Campo_Validate(janela.cboPrimeiro_Campo_de_Consulta, Cancel);
    janela.cmdOk_Click();
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Supervisor|2|6|0"}));

    // A new table empties the selections, and an empty list stops the user with message 10.
    janela.cmdAlteração_Click();
    Escolhe_Tabela(janela, "Critério_de_Consulta");
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentIndex(), -1);
    Plataforma.Caixas.clear();
    janela.Campo_Validate(janela.cboCampo_de_Pesquisa, Cancel);
    EXPECT_TRUE(Cancel);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(10)}));
    janela.cmdCancelar_Click();
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Supervisor|2|6|0"}));
}

TEST_F(Criterio_Consulta_Teste, AStoredPositionBeyondTheTableLeavesItsListWithoutSelection) {
    Guarda("Critério_de_Consulta", "Supervisor", 1, 9, 2);
    frmCritério_de_Consulta janela;
    EXPECT_EQ(janela.cboTabela->currentText(), "Critério_de_Consulta");
    EXPECT_EQ(janela.cboCampo_de_Pesquisa->currentText(), "Código_Critério_de_Consulta");
    EXPECT_EQ(janela.cboPrimeiro_Campo_de_Consulta->currentIndex(), -1);
    EXPECT_EQ(janela.cboSegundo_Campo_de_Consulta->currentText(), "Usuário");
}

TEST_F(Criterio_Consulta_Teste, ASecondCriterionOfTheSameUserForTheSameTableIsRefused) {
    frmCritério_de_Consulta janela;
    Inclui(janela, "Pergunta", "Resposta_Correta", "Tipo", "Código_Pergunta");
    Inclui(janela, "Pergunta", "Pergunta", "Tipo", "Resposta_Correta");
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Supervisor|2|6|1"}));
    EXPECT_FALSE(Registro_Duplicado);
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_TRUE(janela.cmdInclusão->isEnabled());
    EXPECT_EQ(janela.cboTabela->currentText(), "Pergunta");  // the table reopened on its first row

    // The same table for another user is another criterion.
    Usuário_Atual = "Maria";
    Inclui(janela, "Pergunta", "Pergunta", "Tipo", "Resposta_Correta");
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Supervisor|2|6|1", "Pergunta|Maria|0|6|2"}));
}

TEST_F(Criterio_Consulta_Teste, AnotherUsersCriterionIsSeenButNotAlteredNorExcludedIgnoringCase) {
    Guarda("Pergunta", "Maria", 2, 3, 4);
    Guarda("Usuário", "SUPERVISOR", 0, 1, 2);
    frmCritério_de_Consulta janela;
    EXPECT_EQ(janela.txtUsuário->text(), "Maria");

    janela.cmdAlteração_Click();
    janela.cmdExclusão_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(31), Aviso(32)}));
    EXPECT_TRUE(Aviso(31).startsWith("Não é possível alterar os Critérios de Consulta de outros usuários"));
    EXPECT_TRUE(Aviso(32).startsWith("Não é possível excluir os Critérios de Consulta de outros usuários"));
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_FALSE(Transação_Aberta());

    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(janela.cboTabela->currentText(), "Usuário");
    Plataforma.Caixas.clear();
    janela.cmdExclusão_Click();
    EXPECT_TRUE(Plataforma.Textos_Caixas().contains("Confirma EXCLUSÃO?"));
    EXPECT_EQ(Linhas(), QStringList({"Pergunta|Maria|2|3|4"}));
}

TEST_F(Criterio_Consulta_Teste, TheLocateDialogPrefersTheUsersOwnCriterion) {
    auto localiza = [] {
        Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
        Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
        Tabela.Reinicia();
        Abre_Tabela("tblPergunta");
        Abre_Tabela_Pesquisa("tblPergunta");
        frmLocaliza_Informação janela;
        return QStringList({janela.Campo_Pesquisa, janela.Campo_Mostrado_1, janela.Campo_Mostrado_2});
    };
    {
        frmCritério_de_Consulta janela;
        Usuário_Atual = "Maria";  // after the load, whose rights are the Supervisor's
        Inclui(janela, "Pergunta", "Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2");
    }
    Usuário_Atual = "Supervisor";
    EXPECT_EQ(localiza(), QStringList({"Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2"}));
    {
        frmCritério_de_Consulta janela;
        Inclui(janela, "Pergunta", "Tipo", "Pergunta", "Código_Pergunta");
    }
    EXPECT_EQ(localiza(), QStringList({"Tipo", "Pergunta", "Código_Pergunta"}));
}
