#include "shell/frmPrincipal.h"

#include <QCloseEvent>
#include <QIcon>
#include <QLabel>
#include <QStatusBar>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"

frmPrincipal::frmPrincipal() {
    setObjectName("frmPrincipal");
    Form_Load();
}

void frmPrincipal::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    Sai_da_Gravação = false;
    {
        frmAtualiza_Versão atualiza(this);
        Plataforma_Atual().Mostra_Modal(&atualiza);
    }
    Título_Versão = Título_Programa;
    Versão_Sistema = QString("versão %1.%2.%3")
                         .arg(Versão_Maior_Programa)
                         .arg(Versão_Menor_Programa)
                         .arg(Versão_Revisão_Programa);
    setWindowTitle(Título_Versão + " - " + Versão_Sistema);
    setWindowIcon(QIcon(Caminho_Ícone("Quizora.Ico")));
    lblFundo = new QLabel(this);
    lblFundo->setObjectName("lblFundo");
    lblFundo->setAlignment(Qt::AlignCenter);
    lblFundo->setText("<h1>" + Título_Programa + "</h1>");
    setCentralWidget(lblFundo);
    statusBar()->showMessage(Versão_Sistema);
    resize(1024, 700);
}

void frmPrincipal::closeEvent(QCloseEvent* evento) {
    // Leaving by the title-bar button: warn, then end at once.
    Exibe_Mensagem(34);
    evento->accept();
    Plataforma_Atual().Encerra_Agora(0);
}
