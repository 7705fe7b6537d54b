#include "shell/frmLogin.h"

#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "forms/Formulário.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "revelations/Revelações.h"
#include "store/Funções_Banco.h"

frmLogin::frmLogin(QWidget* pai) : Formulário("frmLogin", pai) {
    Tópico_Ajuda = "Login de Acesso";
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    lblLogin = new QLabel(this);
    lblLogin->setObjectName("lblLogin");
    lblLogin->setFont(fixa);
    fraLogin = new QGroupBox(this);
    fraLogin->setObjectName("fraLogin");
    Label3 = new QLabel("Usuário:", fraLogin);
    Label3->setObjectName("Label3");
    cboUsuário = new QComboBox(fraLogin);
    cboUsuário->setObjectName("cboUsuário");
    cboUsuário->setFont(fixa);
    cboUsuário->setEditable(false);
    cboUsuário->setMinimumWidth(220);
    Label4 = new QLabel("Senha:", fraLogin);
    Label4->setObjectName("Label4");
    txtSenha = Caixa_Senha(fraLogin);
    cmdOk = Botão("cmdOk", "&OK");
    cmdSair = Botão("cmdSair", "&Sair");
    Image1 = new QLabel(this);
    Image1->setObjectName("Image1");
    Image1->setPixmap(Figura_Programa(72));

    auto* grade = new QGridLayout(fraLogin);
    grade->addWidget(Label3, 0, 0);
    grade->addWidget(cboUsuário, 0, 1);
    grade->addWidget(Label4, 1, 0);
    grade->addWidget(txtSenha, 1, 1);
    auto* topo = new QHBoxLayout;
    topo->addWidget(Image1);
    topo->addWidget(lblLogin, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addLayout(topo);
    layout->addWidget(fraLogin);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));

    QObject::connect(cboUsuário, &QComboBox::activated, this, [this](int) {
        bool Cancel = false;
        cboUsuário_Validate(Cancel);
    });
    // Leaving the list for any control but Sair asks for a name; Sair ends the program asking nothing.
    Instala_Validate(cboUsuário, [this](bool& Cancel) { cboUsuário_Validate(Cancel); });
    Define_CausesValidation(cmdSair, false);
    QObject::connect(txtSenha, &QLineEdit::editingFinished, this, [this] { txtSenha_Validate(); });
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_QueryUnload = [] { return false; };  // the login is left by OK or Sair only
    Form_Load();
}

void frmLogin::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    lblLogin->setText("               Usuário : SUPERVISOR\r               Senha   : LUMEN     ");
    lblLogin->setText(lblLogin->text().replace('\r', '\n'));
    setWindowTitle("Login do " + Título_Versão + Versão_Sistema);
    cmdOk->setEnabled(false);
    Em_Cadastro = false;
    Comando_SQL.clear();
    Número_Revelação = 0;
    Finaliza_Transação();
    if (!Tabela_Dynaset.Source.isEmpty()) Tabela_Dynaset.Reinicia();
    Repetições_Erro = 0;
    Exibição_Liberada = true;
    Destaque_Ligado = true;
    Cor_Destaque = 1;
    Abre_Tabelas();
    // The engine setting that the Windows release imported from Configura_Page_Time_Out.reg has no
    // counterpart here: the store waits for locks by itself, so its absence is not announced.
    if (Painel_Revelações_Vazio()) Revelações_de_Deus(false);
}

void frmLogin::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela_Critério_de_Consulta.Reinicia();
    Abre_Tabela_Critério_de_Consulta("tblCritério_de_Consulta");
    Tabela_Critério_de_Consulta.Set_Index("idxTabela_Usuário");
    Tabela_Manutenção.Reinicia();
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    Tabela.Reinicia();
    Abre_Tabela("tblConfigur");
    if (Lastrec(Tabela.Source, Conexão) != 0) {
        Tabela.MoveFirst();
        Monitora_Log = Tabela.Fields("Monitora_Log_das_Atividades").Value().toBool();
    }
    Tabela.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxUsuário");
    if (cboUsuário->count() == 0) {
        for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext())
            cboUsuário->addItem(Tabela.Fields("Usuário").Value().toString());
        cboUsuário->setCurrentIndex(-1);
    }
}

void frmLogin::cboUsuário_Validate(bool& Cancel) {
    Rotina r(this, "cboUsuário_Validate");
    if (cmdSair->isDown()) {
        Cancel = true;
        return;
    }
    if (cboUsuário->currentText().isEmpty()) {
        Exibe_Mensagem(3);
        Cancel = true;
        cboUsuário->setFocus();
        return;
    }
    cmdOk->setEnabled(true);
    txtSenha->clear();
    txtSenha->setFocus();
}

void frmLogin::txtSenha_Validate() {
    Rotina r(this, "txtSenha_Validate");
    txtSenha->setText(txtSenha->text().toLower());
}

void frmLogin::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    txtSenha_Validate();
    Tabela.Seek(cboUsuário->currentText());
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    if (!Travou) return;
    if (Hash_Senha(txtSenha->text()) != Tabela.Fields("Senha").Value().toInt()) {
        Desfaz_Transação();
        Exibe_Mensagem(1);
        txtSenha->clear();
        txtSenha->setFocus();
        return;
    }
    Código_Usuário_Atual = Tabela.Fields("Código_Usuário").Value().toInt();
    Usuário_Atual = Tabela.Fields("Usuário").Value().toString().trimmed();
    const int execuções = Tabela.Fields("Quantidade_Execuções").Value().toInt();
    if (execuções == 0) {
        const QString companheiro = Caminho_Programa() + "/Atualização Sistemas da Norvane Informática.Exe";
        if (QFileInfo::exists(companheiro)) QProcess::startDetached(companheiro, {});
        const QScreen* tela = QGuiApplication::primaryScreen();
        if (tela != nullptr && (tela->size().height() < 600 || tela->size().width() < 800))
            Exibe_Mensagem(20);
    }
    Tabela.Fields("Quantidade_Execuções").Set_Value(execuções > 15 ? 0 : execuções + 1);
    Grava(Tabela, false);
    Finaliza_Transação();
    Tabela.Reinicia();
    accept();
}

void frmLogin::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    Plataforma_Atual().Encerra_Agora(0);
}
