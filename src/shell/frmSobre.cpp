#include "shell/frmSobre.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>
#include <sqlite3.h>

#include "common/Globais.h"
#include "forms/Formulário.h"
#include "failure/Rotina.h"
#include "store/Funções_Banco.h"
#include "utilities/Links.h"

frmSobre::frmSobre(QWidget* pai) : Formulário("frmSobre", pai) {
    Revelação_Com_F10 = false;
    Label1 = Rótulo("Label1");
    QFont título = font();
    título.setBold(true);
    título.setPointSize(título.pointSize() * 2);
    Label1->setFont(título);
    Label2 = Rótulo("Label2");
    Label6 = Rótulo("Label6", "Versão do Banco de Dados:");
    lblVersão_ADO = Rótulo("lblVersão_ADO");
    Label3 = Rótulo("Label3");
    Label5 = Rótulo("Label5", "Clique no endereço abaixo para visitar nosso site:");
    lblSite = Rótulo("lblSite");
    Label4 = Rótulo("Label4", "Clique no e-mail abaixo para contactar-nos (e-mail / MSN):");
    lblEmail = Rótulo("lblEmail");
    Image1 = Rótulo("Image1");
    Image1->setPixmap(Figura_Programa(96));
    cmdSair = Botão("cmdSair", "&Sair");

    auto* identificação = new QVBoxLayout;
    for (QLabel* l : {Label1, Label2, Label6, lblVersão_ADO, Label3}) identificação->addWidget(l);
    auto* topo = new QHBoxLayout;
    topo->addWidget(Image1);
    topo->addSpacing(12);
    topo->addLayout(identificação, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addLayout(topo);
    layout->addSpacing(10);
    for (QLabel* l : {Label5, lblSite, Label4, lblEmail}) layout->addWidget(l);
    layout->addSpacing(8);
    layout->addLayout(Linha_Botões({cmdSair}));

    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Liga_Contatos(this, lblSite, lblEmail);
    Form_Load();
}

void frmSobre::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Sobre o sistema " + Título_Programa);
    Label1->setText(Título_Programa);
    Label2->setText(Texto_Versão());
    Em_Cadastro = false;
    Comando_SQL.clear();
    // The data layer here is SQLite; its library version stands where the Windows release showed ADO's.
    lblVersão_ADO->setText("ADO SQLite " + QString::fromLatin1(sqlite3_libversion()));
    Label3->setText(Texto_Créditos());
}

void frmSobre::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    accept();
}
