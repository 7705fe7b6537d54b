// The audit trail register on real databases: Conexão on the audit file while it is open and back on the
// main one by every way out, the walk and the locate over the trail, and the deletion of a period.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/Permissões.h"
#include "utilities/frmManutenção_Banco_de_Dados.h"

namespace {
class Manutenção_Banco_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QList<int> Códigos;  // of the rows below, in their order

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");  // as the login leaves it
        Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
        Nome_Janela = "frmManutenção_Banco_de_Dados";
        Verifica_Permissão_De_Acesso();
        Conexão_Manutenção.Execute("Delete From tblManutenção_Banco_de_Dados");
        Registra("Incluindo Pergunta onde Pergunta = Quem?", "Ana", 10, "09:15:00");
        Registra("Alterando Pergunta onde Pergunta = Onde?", "João D'Ávila", 10, "10:20:00");
        Registra("Excluindo Pergunta onde Pergunta = Quando?", "Ana", 11, "11:30:00");
        Registra("Incluindo Usuário onde Usuário = Bia", "João D'Ávila", 12, "15:45:00");
        Registra("Alterando Configur onde Razão_Social = Paz", "Ana", 13, "16:00:00");
        Plataforma.Caixas.clear();
    }

    void Registra(const QString& texto, const QString& usuário, int dia_de_março, const QString& hora) {
        Registros trilha;
        trilha.Open("tblManutenção_Banco_de_Dados", Conexão_Manutenção, Opção_Abertura::Tabela_Direta);
        trilha.AddNew();
        trilha.Fields("Manutenção").Set_Value(texto);
        trilha.Fields("Usuário").Set_Value(usuário);
        trilha.Fields("Data_Manutenção").Set_Value(QDate(2019, 3, dia_de_março));
        trilha.Fields("Hora_Manutenção").Set_Value(hora);
        trilha.Update();
        Códigos << trilha.Fields("Código_Manutenção_Banco_de_Dados").Value().toInt();
    }

    // The indexes (into Códigos) of the rows still stored.
    QList<int> Restantes() const {
        Registros trilha;
        trilha.Open("tblManutenção_Banco_de_Dados", Conexão_Manutenção, Opção_Abertura::Tabela_Direta);
        QList<int> restantes;
        for (; !trilha.Eof(); trilha.MoveNext())
            restantes << Códigos.indexOf(trilha.Fields("Código_Manutenção_Banco_de_Dados").Value().toInt());
        return restantes;
    }

    QString Legenda(int linha) const {
        return "Consulta de Manutenção do Banco de Dados " +
               QLocale(QLocale::Portuguese, QLocale::Brazil).toString(Códigos[linha]);
    }

    static void Exclui_Período(frmManutenção_Banco_de_Dados& j, const QString& usuário, const QString& início,
                               const QString& fim) {
        j.cmdExclusão_Click();
        j.txtUsuário->setText(usuário);
        j.dbData_Manutenção->setText(início);
        j.dbData_Manutenção_Final->setText(fim);
        j.cmdOk_Click();
    }

    static void Espera_Conexão_Principal() {
        EXPECT_EQ(Conexão.ConnectionString, Conexão_Principal());
        EXPECT_EQ(Conexão.Sessão_Física(), Conexão_Secundária.Sessão_Física());
        EXPECT_EQ(Tabela_Critério_de_Consulta.Sessão_Física(), Conexão_Secundária.Sessão_Física());
        EXPECT_EQ(Tabela_Critério_de_Consulta.Index(), "idxTabela_Usuário");
        EXPECT_FALSE(Em_Cadastro);
    }
};
}  // namespace

TEST_F(Manutenção_Banco_Teste, ConexãoStandsOnTheAuditFileWhileOpenAndEveryWayOutPutsItBack) {
    {
        frmManutenção_Banco_de_Dados janela;
        EXPECT_EQ(Conexão.Sessão_Física(), Conexão_Manutenção.Sessão_Física());
        EXPECT_EQ(janela.windowTitle(), Legenda(0));
        janela.cmdSair_Click();
        Espera_Conexão_Principal();
    }
    Conexão_Manutenção.Execute("Delete From tblManutenção_Banco_de_Dados");
    {
        frmManutenção_Banco_de_Dados janela;
        EXPECT_TRUE(
            janela.windowTitle().startsWith("Dúvidas como cadastrar nova Manutenção do Banco de Dados"));
        janela.show();
        EXPECT_TRUE(janela.close());
        Espera_Conexão_Principal();
    }
    { frmManutenção_Banco_de_Dados sem_saída; }
    Espera_Conexão_Principal();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
}

TEST_F(Manutenção_Banco_Teste, TheWalkAndTheLocateRunOverTheTrail) {
    frmManutenção_Banco_de_Dados janela;
    EXPECT_EQ(janela.txtUsuário->text(), "Ana");
    EXPECT_EQ(janela.dbData_Manutenção->Text(), "10/03/2019");
    EXPECT_EQ(janela.txtHora_Manutenção->text(), "09:15:00");
    EXPECT_EQ(janela.nbQuantidade_Manutenções->Value(), 5);
    for (int i = 0; i < 5; ++i) janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_EQ(janela.txtManutenção->text(), "Alterando Configur onde Razão_Social = Paz");
    for (int i = 0; i < 2; ++i) janela.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(janela.windowTitle(), Legenda(2));

    janela.show();
    QApplication::setActiveWindow(&janela);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&janela));
    QTimer::singleShot(0, [] {
        auto* localiza = dynamic_cast<frmLocaliza_Informação*>(QApplication::activeModalWidget());
        ASSERT_NE(localiza, nullptr);
        EXPECT_EQ(localiza->cboCampo_de_Pesquisa->currentText(), "Manutenção");
        localiza->optOpção_Click(6);
        localiza->txtConteúdo->setText("Bia");
        localiza->cmdOk_Click();  // a single hit closes the dialog
    });
    janela.cmdLocaliza_Click();
    EXPECT_TRUE(janela.windowTitle().startsWith(Legenda(3) + " | Mostrando apenas "));
    Plataforma.Caixas.clear();
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_EQ(janela.windowTitle().left(Legenda(3).size()), Legenda(3));
}

TEST_F(Manutenção_Banco_Teste, DeletingAPeriodOfOneUserTakesOnlyTheirRowsOfThoseDays) {
    frmManutenção_Banco_de_Dados janela;
    janela.cmdExclusão_Click();
    EXPECT_EQ(janela.Label17->text(), "Data Inicial:");
    EXPECT_TRUE(janela.dbData_Manutenção_Final->isVisibleTo(&janela));
    EXPECT_EQ(janela.dbData_Manutenção_Final->Text(), "10/03/2019");
    EXPECT_EQ(janela.txtManutenção->palette().color(QPalette::Text), QColor(255, 0, 0));
    Plataforma.Respostas.push_back(Resposta_Caixa::Não);
    janela.cmdOk_Click();
    EXPECT_EQ(Restantes(), QList<int>({0, 1, 2, 3, 4}));
    EXPECT_EQ(janela.Label17->text(), "           Data:");
    EXPECT_FALSE(janela.dbData_Manutenção_Final->isVisibleTo(&janela));
    EXPECT_FALSE(janela.txtManutenção->font().bold());
    EXPECT_FALSE(janela.cmdOk->isEnabled());

    Exclui_Período(janela, "  Ana ", "10/03/2019", "11/03/2019");
    EXPECT_EQ(Restantes(), QList<int>({1, 3, 4}));
    EXPECT_EQ(Tabela.RecordCount(), 3);  // the slot holds no deleted row
    EXPECT_EQ(janela.windowTitle(), Legenda(1));
    EXPECT_EQ(janela.nbQuantidade_Manutenções->Value(), 3);

    Exclui_Período(janela, "João D'Ávila", "12/03/2019", "12/03/2019");
    EXPECT_TRUE(Comando_SQL.contains("Usuário = 'João D''Ávila' And"));
    EXPECT_EQ(Restantes(), QList<int>({1, 4}));
}

TEST_F(Manutenção_Banco_Teste, DeletingAPeriodOfAllUsersStandsAfterTheWindowClosesAndIsNotAudited) {
    frmManutenção_Banco_de_Dados janela;
    Exclui_Período(janela, "", "10/03/2019", "31/02/2019");
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(18)});  // refused before any question
    EXPECT_EQ(Operação, "Exclusão");

    janela.dbData_Manutenção_Final->setText("12/03/2019");
    janela.cmdOk_Click();
    EXPECT_EQ(Comando_SQL,
              "Delete From tblManutenção_Banco_de_Dados Where Data_Manutenção Between "
              "CDate('10/03/2019') And CDate('12/03/2019')");
    EXPECT_EQ(Tabela.RecordCount(), 1);
    EXPECT_EQ(janela.windowTitle(), Legenda(4));
    janela.cmdSair_Click();
    EXPECT_TRUE(Monitora_Log);
    EXPECT_EQ(Restantes(), QList<int>{4});
}
