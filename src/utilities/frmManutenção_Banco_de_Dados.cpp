#include "utilities/frmManutenção_Banco_de_Dados.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"

namespace {
const QString Legenda_Data = "           Data:";
const QString Aviso_Exclusão = "Informe o usuário e o período de abrangência da manutenção a ser excluída:";
}  // namespace

frmManutenção_Banco_de_Dados::frmManutenção_Banco_de_Dados(QWidget* pai)
    : Formulário_Cadastro("frmManutenção_Banco_de_Dados", pai) {
    Tópico_Ajuda = "Manutenção do Banco de Dados";
    Campo_Código = "Código_Manutenção_Banco_de_Dados";
    Frase_Registro = " de Manutenção do Banco de Dados ";
    Palavra_Registro = "Manutenção do Banco de Dados";
    Palavra_Masculina = false;

    auto caixa = [](QWidget* pai_caixa, const char* nome, const QString& legenda, int largura) {
        auto* c = new QLineEdit(pai_caixa);
        c->setObjectName(QString::fromUtf8(nome));
        c->setAccessibleName(legenda);
        c->setMaxLength(largura);
        c->setReadOnly(true);
        return c;
    };
    auto rótulo = [this](const char* nome, const QString& texto) {
        QLabel* l = Rótulo(QString::fromUtf8(nome), texto);
        l->setAccessibleName(texto.trimmed());
        return l;
    };

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraManutenção_Banco_de_Dados = new QGroupBox(Área_Campos);
    fraManutenção_Banco_de_Dados->setObjectName("fraManutenção_Banco_de_Dados");
    fraManutenção_Banco_de_Dados->setAccessibleName("Manutenção do Banco de Dados");
    coluna->addWidget(fraManutenção_Banco_de_Dados);
    auto* grade = new QGridLayout(fraManutenção_Banco_de_Dados);

    Label1 = rótulo("Label1", "Manutenção:");
    txtManutenção = caixa(fraManutenção_Banco_de_Dados, "txtManutenção", "Manutenção", 100);
    txtManutenção->setMinimumWidth(txtManutenção->fontMetrics().horizontalAdvance(QString(80, 'n')));
    Label10 = rótulo("Label10", "Usuário:");
    txtUsuário = caixa(fraManutenção_Banco_de_Dados, "txtUsuário", "Usuário", 20);
    Label17 = rótulo("Label17", Legenda_Data);
    dbData_Manutenção = new Caixa_Data(fraManutenção_Banco_de_Dados);
    dbData_Manutenção->setObjectName("dbData_Manutenção");
    dbData_Manutenção->setAccessibleName("Data");
    dbData_Manutenção->setReadOnly(true);
    Label31 = rótulo("Label31", "às");
    txtHora_Manutenção = caixa(fraManutenção_Banco_de_Dados, "txtHora_Manutenção", "Hora", 8);
    const int largura_hora = txtHora_Manutenção->fontMetrics().horizontalAdvance("00:00:00");
    txtHora_Manutenção->setMaximumWidth(largura_hora + 24);
    Label30 = rótulo("Label30", "hs");
    Label2 = rótulo("Label2", "Data Final:");
    dbData_Manutenção_Final = new Caixa_Data(fraManutenção_Banco_de_Dados);
    dbData_Manutenção_Final->setObjectName("dbData_Manutenção_Final");
    dbData_Manutenção_Final->setAccessibleName("Data Final");
    nbQuantidade_Manutenções = new Caixa_Número(fraManutenção_Banco_de_Dados);
    nbQuantidade_Manutenções->setObjectName("nbQuantidade_Manutenções");
    nbQuantidade_Manutenções->setAccessibleName("Quantidade de manutenções");
    nbQuantidade_Manutenções->setReadOnly(true);
    const int largura_número = nbQuantidade_Manutenções->fontMetrics().horizontalAdvance("000.000.000");
    nbQuantidade_Manutenções->setMaximumWidth(largura_número + 16);
    Label13 = rótulo("Label13", "manutenções efetuadas pelos usuários no Banco de Dados do sistema");
    Label1->setBuddy(txtManutenção);
    Label10->setBuddy(txtUsuário);
    Label17->setBuddy(dbData_Manutenção);
    Label2->setBuddy(dbData_Manutenção_Final);

    grade->addWidget(Label1, 0, 0);
    grade->addWidget(txtManutenção, 0, 1, 1, 5);
    grade->addWidget(Label10, 1, 0);
    grade->addWidget(txtUsuário, 1, 1, 1, 2);
    grade->addWidget(Label17, 2, 0);
    grade->addWidget(dbData_Manutenção, 2, 1);
    grade->addWidget(Label31, 2, 2);
    grade->addWidget(txtHora_Manutenção, 2, 3);
    grade->addWidget(Label30, 2, 4);
    grade->addWidget(Label2, 3, 0);
    grade->addWidget(dbData_Manutenção_Final, 3, 1);
    grade->addWidget(nbQuantidade_Manutenções, 4, 0);
    grade->addWidget(Label13, 4, 1, 1, 5);
    grade->setColumnStretch(5, 1);

    // The trail is never included in or altered by hand.
    for (QPushButton* b : {cmdInclusão, cmdAlteração, cmdCancelar}) b->hide();
    for (QPushButton* b :
         {cmdExclusão, cmdLocaliza, cmdMovimenta_Registro[1], cmdMovimenta_Registro[2], cmdOk, cmdSair})
        b->setAccessibleName(b->text().remove('&'));
    // Leaving asks for no valid date.
    Define_CausesValidation(cmdSair, false);
    Form_QueryUnload = [this] {
        Rotina r(this, "Form_QueryUnload");
        Volta_Conexão_Principal();
        return true;
    };

    for (Caixa_Data* data : {dbData_Manutenção, dbData_Manutenção_Final})
        Instala_Validate(data, [this, data](bool& Cancel) {
            Rotina r(this, data->objectName() + "_Validate");
            // Only the period of a deletion is typed; a blank window may be left as it is.
            if (Operação != "Exclusão") return;
            if (!Calendário(data->Text(), false, this)) Cancel = true;
        });
    setTabOrder(txtUsuário, dbData_Manutenção);
    setTabOrder(dbData_Manutenção, dbData_Manutenção_Final);
    setTabOrder(dbData_Manutenção_Final, cmdOk);

    Mostra_Modo_Exclusão(false);
    Passos_Comuns_Form_Load();
}

frmManutenção_Banco_de_Dados::~frmManutenção_Banco_de_Dados() {
    Rotina r(this, "Form_Unload");
    Volta_Conexão_Principal();
}

void frmManutenção_Banco_de_Dados::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Conexão_Na_Auditoria = true;
    Reaponta_Conexão(Conexão, Conexão_Auditoria());
    Tabela.Reinicia();
    Abre_Tabela("tblManutenção_Banco_de_Dados");
    Tabela.Set_Index("idxCódigo_Manutenção_Banco_de_Dados");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmManutenção_Banco_de_Dados::Mostra_Registro() {
    txtManutenção->setText(Tabela.Fields("Manutenção").Value().toString().trimmed());
    txtUsuário->setText(Tabela.Fields("Usuário").Value().toString().trimmed());
    dbData_Manutenção->Set_Value(Tabela.Fields("Data_Manutenção").Value());
    txtHora_Manutenção->setText(Tabela.Fields("Hora_Manutenção").Value().toString());
    nbQuantidade_Manutenções->Set_Value(Lastrec("Select * From tblManutenção_Banco_de_Dados", Conexão));
}

QWidget* frmManutenção_Banco_de_Dados::Primeiro_Campo() {
    return txtUsuário;
}

void frmManutenção_Banco_de_Dados::Mostra_Modo_Exclusão(bool exclusão) {
    for (QWidget* controle : {static_cast<QWidget*>(Label1), static_cast<QWidget*>(Label30),
                              static_cast<QWidget*>(Label31), static_cast<QWidget*>(txtHora_Manutenção)})
        controle->setVisible(!exclusão);
    Label17->setText(exclusão ? "Data Inicial:" : Legenda_Data);
    Label17->setAccessibleName(Label17->text().trimmed());
    Label2->setVisible(exclusão);
    dbData_Manutenção_Final->setVisible(exclusão);
    QPalette cores = txtManutenção->palette();
    cores.setColor(QPalette::Text, exclusão ? QColor(255, 0, 0) : QColor(0, 0, 0));
    txtManutenção->setPalette(cores);
    QFont fonte = txtManutenção->font();
    fonte.setBold(exclusão);
    txtManutenção->setFont(fonte);
    txtUsuário->setReadOnly(!exclusão);
    dbData_Manutenção->setReadOnly(!exclusão);
    cmdOk->setEnabled(exclusão);
    // While the period is asked for, the window stays on it: only OK or Sair leave the mode.
    for (QPushButton* b : {cmdExclusão, cmdLocaliza, cmdMovimenta_Registro[1], cmdMovimenta_Registro[2]})
        b->setEnabled(!exclusão);
}

void frmManutenção_Banco_de_Dados::cmdExclusão_Click() {
    Rotina r(this, "cmdExclusão_Click");
    if (Recusa_Sem_Direito(Pode_Excluir)) return;
    Operação = "Exclusão";
    setWindowTitle(Operação + " da Manutenção do Banco de Dados");
    Mostra_Modo_Exclusão(true);
    txtManutenção->setText(Aviso_Exclusão);
    dbData_Manutenção_Final->Set_Value(dbData_Manutenção->Value());
    txtUsuário->setFocus();
}

void frmManutenção_Banco_de_Dados::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    // A date may reach here without having been left, as when OK is pressed by its access key.
    for (Caixa_Data* data : {dbData_Manutenção, dbData_Manutenção_Final}) {
        if (!Calendário(data->Text(), false, this)) {
            data->setFocus();
            return;
        }
    }
    if (Confirma(this)) {
        Comando_SQL = "Delete From tblManutenção_Banco_de_Dados Where ";
        const QString usuário = txtUsuário->text().trimmed();
        if (!usuário.isEmpty()) Comando_SQL += "Usuário = " + Valor_Texto_SQL(usuário) + " And ";
        Comando_SQL += "Data_Manutenção Between CDate(" + Valor_Texto_SQL(dbData_Manutenção->Text()) +
                       ") And CDate(" + Valor_Texto_SQL(dbData_Manutenção_Final->Text()) + ")";
        // No transaction is open here: the deletion stands at once, and writes no audit row of its own.
        Conexão.Execute(Comando_SQL);
        // The slot and the count forget the rows just deleted.
        Limpa_Cache_Lastrec();
        Tabela.Requery();
    }
    Mostra_Modo_Exclusão(false);
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
    Encerra_Resultado_Localizado();
    Exibir_Campos();
}

void frmManutenção_Banco_de_Dados::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Volta_Conexão_Principal();
    accept();
}

void frmManutenção_Banco_de_Dados::Volta_Conexão_Principal() {
    Em_Cadastro = false;
    if (!Conexão_Na_Auditoria) return;
    Conexão_Na_Auditoria = false;
    Encerra_Resultado_Localizado();
    Reaponta_Conexão(Conexão, Conexão_Principal());
    // The criteria were opened on Conexão as it stood on the main database: the locate dialog reads them.
    Tabela_Critério_de_Consulta.Reinicia();
    Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
    Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
}
