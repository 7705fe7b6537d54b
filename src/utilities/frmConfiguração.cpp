#include "utilities/frmConfiguração.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Cadastro.h"
#include "forms/Formatação.h"
#include "store/Funções_Banco.h"
#include "users/Permissões.h"

QString Monta_Versão_Sistema(const QString& Razão_Social) {
    return QString("%1.%2.%3 - %4")
        .arg(Versão_Maior_Programa)
        .arg(Versão_Menor_Programa)
        .arg(Versão_Revisão_Programa)
        .arg(Razão_Social);
}

std::function<void()> Atualiza_Título_Principal = [] {
    for (QWidget* janela : QApplication::topLevelWidgets())
        if (janela->objectName() == "frmPrincipal") janela->setWindowTitle(Título_Versão + Versão_Sistema);
};

frmConfiguração::frmConfiguração(QWidget* pai) : Formulário("frmConfiguração", pai) {
    Tópico_Ajuda = "Configuração do Sistema";
    fraConfiguração = new QGroupBox("Configuração do Sistema:", this);
    fraConfiguração->setObjectName("fraConfiguração");
    fraConfiguração->setAccessibleName("Configuração do Sistema");
    chkMonitora_Log_das_Atividades = new QCheckBox("Monitora Log das Atividades?", fraConfiguração);
    chkMonitora_Log_das_Atividades->setObjectName("chkMonitora_Log_das_Atividades");
    chkMonitora_Log_das_Atividades->setAccessibleName("Monitora Log das Atividades?");
    Label1 = Rótulo("Label1", "Razão Social:");
    Label1->setAccessibleName("Razão Social");
    txtRazão_Social = new QLineEdit(fraConfiguração);
    txtRazão_Social->setObjectName("txtRazão_Social");
    txtRazão_Social->setAccessibleName("Razão Social");
    txtRazão_Social->setMaxLength(50);  // the width of the field
    txtRazão_Social->setMinimumWidth(txtRazão_Social->fontMetrics().horizontalAdvance(QString(40, 'M')));
    Label1->setBuddy(txtRazão_Social);
    Label3 = Rótulo("Label3", "Nº. da versão do sistema:");
    Label3->setAccessibleName("Nº. da versão do sistema");
    lblVersão = Rótulo("lblVersão");
    lblVersão->setAccessibleName("Versão do banco de dados");
    cmdOk = Botão("cmdOk", "&OK");
    cmdOk->setAccessibleName("OK");
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setAccessibleName("Sair");

    auto* grade = new QGridLayout(fraConfiguração);
    grade->addWidget(chkMonitora_Log_das_Atividades, 0, 0, 1, 2);
    grade->addWidget(Label1, 1, 0);
    grade->addWidget(txtRazão_Social, 1, 1);
    grade->addWidget(Label3, 2, 0);
    grade->addWidget(lblVersão, 2, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(fraConfiguração);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setTabOrder(chkMonitora_Log_das_Atividades, txtRazão_Social);
    setTabOrder(txtRazão_Social, cmdOk);
    setTabOrder(cmdOk, cmdSair);

    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The close box frees the row as Sair does.
    Form_QueryUnload = [this] {
        Rotina r(this, "Form_QueryUnload");
        Em_Cadastro = false;
        Finaliza_Transação();
        return true;
    };
    Form_Load();
}

void frmConfiguração::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblConfigur");
}

void frmConfiguração::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    Operação = "Alteração";
    setWindowTitle(Operação + " da Configuração do " + Título_Programa);
    cmdOk->setEnabled(false);
    Em_Cadastro = false;
    Comando_SQL.clear();
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) return;
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Abre_Tabelas();
    // The lock is held for the window's whole life: the transaction ends only at Sair.
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    if (!Travou) return;
    if (Lastrec(Tabela.Source, Conexão) == 0) {
        Exibe_Mensagem(22);
        return;
    }
    Tabela.MoveFirst();
    cmdOk->setEnabled(true);
    txtRazão_Social->setText(Tabela.Fields("Razão_Social").Value().toString().trimmed());
    chkMonitora_Log_das_Atividades->setChecked(Tabela.Fields("Monitora_Log_das_Atividades").Value().toBool());
    lblVersão->setText(QString("%1.%2.%3")
                           .arg(Tabela.Fields("Versão_Maior").Value().toInt())
                           .arg(Tabela.Fields("Versão_Menor").Value().toInt())
                           .arg(Tabela.Fields("Versão_Revisão").Value().toInt()));
}

void frmConfiguração::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    // An organisation's name keeps the capitals it is written with ("IBAP", "Silva & Cia"), so it is
    // taken before the fields are transformed.
    const QString razão_social = txtRazão_Social->text().trimmed();
    Transformar_Campos(this);
    txtRazão_Social->setText(razão_social);
    if (razão_social.isEmpty()) {
        Exibe_Mensagem(10);
        txtRazão_Social->setFocus();
        return;
    }
    if (!Confirma(this)) return;
    Tabela.Fields("Razão_Social").Set_Value(razão_social);
    Tabela.Fields("Monitora_Log_das_Atividades").Set_Value(chkMonitora_Log_das_Atividades->isChecked());
    Grava(Tabela, false);
    // Only now: the audit row of this very save follows the setting that stood before it.
    Monitora_Log = Tabela.Fields("Monitora_Log_das_Atividades").Value().toBool();
    Versão_Sistema = Monta_Versão_Sistema(Tabela.Fields("Razão_Social").Value().toString().trimmed());
    if (Atualiza_Título_Principal) Atualiza_Título_Principal();
    cmdSair_Click();
}

void frmConfiguração::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    // Commits the save of cmdOk, or the unchanged row, and frees it.
    Finaliza_Transação();
    accept();
}
