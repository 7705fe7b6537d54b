// The rights per window and user: their seed rows, the repair of the user register's rights for its
// special users, and the refusal at the buttons of a register that checks them.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "forms/Cadastro.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Janela.h"
#include "users/Permissões.h"

namespace {
// A register over the question bank that, unlike the question register, checks the user's rights.
class Cadastro_Com_Direitos : public Formulário_Cadastro {
  public:
    Cadastro_Com_Direitos() : Formulário_Cadastro("frmDinâmica", nullptr) {
        Campo_Código = "Código_Pergunta";
        Frase_Registro = " da Pergunta ";
        Frase_Inclusão = " de Perguntas";
        Palavra_Registro = "Pergunta";
        txtPergunta = new QLineEdit(Área_Campos);
        (new QVBoxLayout(Área_Campos))->addWidget(txtPergunta);
        Passos_Comuns_Form_Load();
    }
    void Abre_Tabelas() override {
        Tabela.Reinicia();
        Abre_Tabela("tblPergunta");
        Tabela.Set_Index("idxCódigo_Pergunta");
        if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
    }
    QLineEdit* txtPergunta;

  protected:
    void Mostra_Registro() override { txtPergunta->setText(Tabela.Fields("Pergunta").Value().toString()); }
    void Grava_Campos() override { Tabela.Fields("Pergunta").Set_Value(txtPergunta->text()); }
    QWidget* Primeiro_Campo() override { return txtPergunta; }
};

class Permissões_Teste : public Teste_Janela {
  protected:
    // The four rights as "IAEC" with "-" for a right missing, after the check for a window and user.
    static QString Direitos(const QString& janela, const QString& usuário) {
        Nome_Janela = janela;
        Usuário_Atual = usuário;
        Verifica_Permissão_De_Acesso();
        QString s;
        s += Pode_Incluir ? 'I' : '-';
        s += Pode_Alterar ? 'A' : '-';
        s += Pode_Excluir ? 'E' : '-';
        s += Pode_Consultar ? 'C' : '-';
        return s;
    }

    static int Linhas(const QString& condição = QString()) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPermissão" + condição);
        return Tabela_Quaternária.RecordCount();
    }

    static void Muda_Direito(const QString& janela, const QString& usuário, const QString& direito,
                             bool valor, const QString& rotina_gravada = QString()) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPermissão Where Rotina = '" + janela + "' And Usuário = '" +
                                usuário + "'");
        ASSERT_FALSE(Tabela_Quaternária.Eof());
        Tabela_Quaternária.Fields(direito).Set_Value(valor);
        if (!rotina_gravada.isEmpty()) Tabela_Quaternária.Fields("Rotina").Set_Value(rotina_gravada);
        Tabela_Quaternária.Update();
    }
};
}  // namespace

TEST_F(Permissões_Teste, TheSeedRowsDependOnTheUserAndOnTheUserRegister) {
    ASSERT_EQ(Linhas(), 0);
    EXPECT_EQ(Direitos("frmDinâmica", "Supervisor"), "IAEC");
    EXPECT_EQ(Linhas(), 1);
    EXPECT_EQ(Direitos("frmDinâmica", "Ornelio Varga"), "IAEC");
    EXPECT_EQ(Direitos("frmDinâmica", "Maria"), "----");
    EXPECT_EQ(Direitos("frmUsuário", "Supervisor"), "IAEC");
    EXPECT_EQ(Direitos("frmUsuário", "Ornelio Varga"), "-A-C");
    EXPECT_EQ(Direitos("frmUsuário", "Maria"), "-A-C");
    EXPECT_EQ(Linhas(), 6);

    // A second check finds the rows and adds none.
    EXPECT_EQ(Direitos("frmDinâmica", "Maria"), "----");
    EXPECT_EQ(Direitos("frmUsuário", "Supervisor"), "IAEC");
    EXPECT_EQ(Linhas(), 6);
}

TEST_F(Permissões_Teste, ARightTakenFromTheSupervisorComesBackOnlyInTheUserRegister) {
    Direitos("frmUsuário", "Supervisor");
    Direitos("frmDinâmica", "Supervisor");
    Direitos("frmUsuário", "Ornelio Varga");
    Muda_Direito("frmUsuário", "Supervisor", "Permissão_De_Exclusão", false);
    Muda_Direito("frmDinâmica", "Supervisor", "Permissão_De_Exclusão", false);

    EXPECT_EQ(Direitos("frmUsuário", "Supervisor"), "IAEC");
    EXPECT_EQ(Direitos("frmDinâmica", "Supervisor"), "IA-C");
    // The maker's account is repaired there too, to all four rights.
    EXPECT_EQ(Direitos("frmUsuário", "Ornelio Varga"), "IAEC");
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Permissões_Teste, ARowWhoseWindowNameCarriesTrailingBlanksStillMatches) {
    Direitos("frmDinâmica", "Maria");
    Muda_Direito("frmDinâmica", "Maria", "Permissão_De_Consulta", true, "frmDinâmica   ");
    EXPECT_EQ(Direitos("frmDinâmica", "Maria"), "---C");
    EXPECT_EQ(Linhas(), 1);
}

TEST_F(Permissões_Teste, ARefusedButtonShowsMessage4AndLeavesTheWindowAsItWas) {
    Cadastra_Perguntas(2);
    Usuário_Atual = "Maria";
    Cadastro_Com_Direitos janela;
    EXPECT_EQ(Linhas(" Where Rotina = 'frmDinâmica' And Usuário = 'Maria'"), 1);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");

    janela.cmdInclusão_Click();
    janela.cmdAlteração_Click();
    janela.cmdExclusão_Click();
    janela.cmdLocaliza_Click();
    janela.cmdMovimenta_Registro_Click(2);
    const QString recusa = Aviso(4);
    ASSERT_EQ(Plataforma.Caixas.size(), 5);
    for (const Caixa_Mostrada& caixa : Plataforma.Caixas) EXPECT_EQ(caixa.Texto, recusa);
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    EXPECT_TRUE(janela.cmdInclusão->isEnabled());  // a missing right never disables a button

    // Granted by the Supervisor, the same buttons work.
    Muda_Direito("frmDinâmica", "Maria", "Permissão_De_Consulta", true);
    Plataforma.Caixas.clear();
    Cadastro_Com_Direitos outra;
    outra.cmdMovimenta_Registro_Click(2);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(outra.windowTitle(), "Consulta da Pergunta 2");
}
