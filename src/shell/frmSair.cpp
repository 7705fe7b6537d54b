#include "shell/frmSair.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "forms/Formulário.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"
#include "utilities/Links.h"

frmSair::frmSair(QWidget* pai) : Formulário("frmSair", pai) {
    Revelação_Com_F10 = false;
    Label6 = Rótulo("Label6", "Deseja realmente sair do sistema?");
    QFont negrito = font();
    negrito.setBold(true);
    negrito.setPointSize(negrito.pointSize() + 2);
    Label6->setFont(negrito);
    Label1 = Rótulo("Label1");
    QFont título = font();
    título.setBold(true);
    título.setPointSize(título.pointSize() * 2);
    Label1->setFont(título);
    Label2 = Rótulo("Label2");
    Label3 = Rótulo("Label3");
    Label5 = Rótulo("Label5", "Clique no endereço abaixo para visitar nosso site:");
    lblSite = Rótulo("lblSite");
    Label4 = Rótulo("Label4", "Clique no e-mail abaixo para contactar-nos (e-mail / MSN):");
    lblEmail = Rótulo("lblEmail");
    Image1 = Rótulo("Image1");
    Image1->setPixmap(Figura_Programa(80));
    cmdSair = Botão("cmdSair", "&Sair");
    cmdCancelar = Botão("cmdCancelar", "&Cancelar");

    auto* identificação = new QVBoxLayout;
    for (QLabel* l : {Label1, Label2, Label3}) identificação->addWidget(l);
    auto* topo = new QHBoxLayout;
    topo->addWidget(Image1);
    topo->addLayout(identificação, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(Label6);
    layout->addSpacing(8);
    layout->addLayout(topo);
    layout->addSpacing(8);
    for (QLabel* l : {Label5, lblSite, Label4, lblEmail}) layout->addWidget(l);
    layout->addSpacing(8);
    layout->addLayout(Linha_Botões({cmdSair, cmdCancelar}));

    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    QObject::connect(cmdCancelar, &QPushButton::clicked, this, [this] { cmdCancelar_Click(); });
    Liga_Contatos(this, lblSite, lblEmail);
    Form_Load();
}

void frmSair::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Sair do sistema...");
    Label1->setText(Título_Programa);
    Label2->setText(Texto_Versão());
    Em_Cadastro = false;
    Comando_SQL.clear();
    Label3->setText(Texto_Créditos());
}

void frmSair::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Plataforma_Atual().Encerra_Agora(0);
}

void frmSair::cmdCancelar_Click() {
    Rotina r(this, "cmdCancelar_Click");
    Em_Cadastro = false;
    Finaliza_Transação();
    reject();
    Operação = "Consulta";
}
