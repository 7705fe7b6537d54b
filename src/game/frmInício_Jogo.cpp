#include "game/frmInício_Jogo.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "game/frmJogo.h"
#include "platform/Plataforma.h"

frmInício_Jogo::frmInício_Jogo(QWidget* pai) : Formulário("frmInício_Jogo", pai) {
    Tópico_Ajuda = "Novo Jogo";
    QFont fonte = font();
    fonte.setPointSize(11);
    setFont(fonte);

    Frame2 = new QGroupBox("Deseja receber apenas:", this);
    Frame2->setObjectName("Frame2");
    const char* textos[] = {"Perguntas específicas sobre Conhecimento Geral",
                            "&Perguntas específicas sobre Conhecimento Bíblico", "Ambas"};
    auto* opções = new QVBoxLayout(Frame2);
    for (int i = 0; i < 3; ++i) {
        optTipo_Pergunta[i] = new QRadioButton(QString::fromUtf8(textos[i]), Frame2);
        optTipo_Pergunta[i]->setObjectName(QString("optTipo_Pergunta_%1").arg(i));
        opções->addWidget(optTipo_Pergunta[i]);
    }
    cmdOk = Botão("cmdOk", "&OK");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(100);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(Frame2);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setMinimumWidth(460);

    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_Load();
}

void frmInício_Jogo::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Início do Jogo");
    Em_Cadastro = false;
    Comando_SQL.clear();
    cmdOk->setEnabled(true);
}

void frmInício_Jogo::Define_Tipo_Pergunta() {
    if (optTipo_Pergunta[0]->isChecked())
        Tipo_Pergunta = "G";
    else if (optTipo_Pergunta[1]->isChecked())
        Tipo_Pergunta = "B";
    else
        Tipo_Pergunta = "A";
}

void frmInício_Jogo::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    Define_Tipo_Pergunta();
    {
        frmJogo jogo(this);
        Plataforma_Atual().Mostra_Modal(&jogo);
    }
    Nome_Janela = objectName();
    accept();
}

void frmInício_Jogo::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    reject();
}
