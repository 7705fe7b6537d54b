#include "shell/frmAutentica_Senha.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "forms/Formulário.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

frmAutentica_Senha::frmAutentica_Senha(QWidget* pai) : Formulário("frmAutentica_Senha", pai) {
    Revelação_Com_F10 = false;
    Label1 = new QLabel("Esta rotina necessita da autenticação do usuário. ", this);
    Label1->setObjectName("Label1");
    Label2 = new QLabel("Informe sua senha pessoal para obter autorização:", this);
    Label2->setObjectName("Label2");
    txtSenha = Caixa_Senha(this);
    cmdOk = Botão("cmdOk", "&OK");
    cmdSair = Botão("cmdSair", "&Sair");
    Image1 = new QLabel(this);
    Image1->setObjectName("Image1");
    Image1->setPixmap(Figura_Programa(56));

    auto* textos = new QVBoxLayout;
    textos->addWidget(Label1);
    textos->addWidget(Label2);
    textos->addWidget(txtSenha);
    auto* topo = new QHBoxLayout;
    topo->addWidget(Image1, 0, Qt::AlignTop);
    topo->addLayout(textos, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addLayout(topo);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));

    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_Load();
}

void frmAutentica_Senha::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Autenticação do Usuário");
    Em_Cadastro = false;
    Comando_SQL.clear();
    Abre_Tabelas();
}

void frmAutentica_Senha::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxUsuário");
}

void frmAutentica_Senha::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    txtSenha->setText(txtSenha->text().toLower());
    Tabela.Seek(Usuário_Atual);
    // The comparison is always with the logged-in user, whatever row the caller was showing.
    if (Tabela.Eof() || Hash_Senha(txtSenha->text()) != Tabela.Fields("Senha").Value().toInt()) {
        Exibe_Mensagem(1);
        txtSenha->clear();
        txtSenha->setFocus();
        return;
    }
    Senha_Autenticada = true;
    cmdSair_Click();
}

void frmAutentica_Senha::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Tabela.Seek(Usuário_Atual);
    Em_Cadastro = false;
    done(Senha_Autenticada ? QDialog::Accepted : QDialog::Rejected);
}

void Autentica_Senha(QWidget* pai) {
    Rotina r(Fonte_Funções_Públicas, "Autentica_Senha");
    Senha_Autenticada = false;
    frmAutentica_Senha janela(pai);
    Plataforma_Atual().Mostra_Modal(&janela);
}
