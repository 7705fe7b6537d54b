#include "questions/frmPergunta.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "store/Funções_Banco.h"

frmPergunta::frmPergunta(QWidget* pai) : Formulário_Cadastro("frmPergunta", pai) {
    Tópico_Ajuda = "Pergunta";
    Campo_Código = "Código_Pergunta";
    Frase_Registro = " da Pergunta ";
    Frase_Inclusão = " de Perguntas";
    Palavra_Registro = "Pergunta";
    Palavra_Masculina = false;
    Verifica_Direitos = false;
    Oculta_Após_Excluir_Único = true;

    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    fixa.setPointSize(11);
    auto resposta = [this, &fixa](const char* nome) {
        auto* caixa = new QLineEdit(fraPergunta);
        caixa->setObjectName(QString::fromUtf8(nome));
        caixa->setMaxLength(50);
        caixa->setFont(fixa);
        caixa->setMinimumWidth(QFontMetrics(fixa).horizontalAdvance(QString(50, 'M')) * 3 / 4);
        return caixa;
    };

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraPergunta = new QGroupBox(Área_Campos);
    fraPergunta->setObjectName("fraPergunta");
    coluna->addWidget(fraPergunta);
    auto* grade = new QGridLayout(fraPergunta);

    Label1 = Rótulo("Label1", "Descrição da Pergunta:");
    txtPergunta = new Caixa_Texto_Multilinha(fraPergunta);
    txtPergunta->setObjectName("txtPergunta");
    txtPergunta->MaxLength = 124;
    txtPergunta->setFont(fixa);
    txtPergunta->setFixedHeight(QFontMetrics(fixa).height() * 3 + 14);
    Label2 = Rótulo("Label2", "Resposta Correta:");
    txtResposta_Correta = resposta("txtResposta_Correta");
    Label7 = Rótulo("Label7", "Opções de Respostas Incorretas:");
    Label3 = Rótulo("Label3", "1ª Resposta:");
    Label4 = Rótulo("Label4", "2ª Resposta:");
    Label5 = Rótulo("Label5", "3ª Resposta:");
    txtResposta_Incorreta_1 = resposta("txtResposta_Incorreta_1");
    txtResposta_Incorreta_2 = resposta("txtResposta_Incorreta_2");
    txtResposta_Incorreta_3 = resposta("txtResposta_Incorreta_3");
    QFont negrito = Label7->font();
    negrito.setBold(true);
    for (QLabel* l : {Label1, Label2, Label7}) l->setFont(negrito);

    grade->addWidget(Label1, 0, 0, 1, 2);
    grade->addWidget(txtPergunta, 1, 0, 1, 2);
    grade->addWidget(Label2, 2, 0, 1, 2);
    grade->addWidget(txtResposta_Correta, 3, 0, 1, 2);
    grade->addWidget(Label7, 4, 0, 1, 2);
    grade->addWidget(Label3, 5, 0);
    grade->addWidget(txtResposta_Incorreta_1, 5, 1);
    grade->addWidget(Label4, 6, 0);
    grade->addWidget(txtResposta_Incorreta_2, 6, 1);
    grade->addWidget(Label5, 7, 0);
    grade->addWidget(txtResposta_Incorreta_3, 7, 1);

    fraTipo_Pergunta = new QGroupBox("Tipo da Pergunta:", fraPergunta);
    fraTipo_Pergunta->setObjectName("fraTipo_Pergunta");
    auto* tipos = new QHBoxLayout(fraTipo_Pergunta);
    optTipo[0] = new QRadioButton("Conhecimento Geral", fraTipo_Pergunta);
    optTipo[1] = new QRadioButton("Conhecimento Bíblico", fraTipo_Pergunta);
    for (int i = 0; i < 2; ++i) {
        optTipo[i]->setObjectName(QString("optTipo_%1").arg(i));
        tipos->addWidget(optTipo[i]);
    }
    tipos->addStretch();
    optTipo[0]->setChecked(true);
    grade->addWidget(fraTipo_Pergunta, 8, 0, 1, 2);

    pgbBarra_De_Progresso = new QProgressBar(Área_Campos);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    pgbBarra_De_Progresso->hide();  // shown only while a long job runs
    coluna->addWidget(pgbBarra_De_Progresso);

    Campo_Obrigatório(txtPergunta, false);
    Campo_Obrigatório(txtResposta_Correta, false);
    Campo_Obrigatório(txtResposta_Incorreta_1, false);
    Campo_Obrigatório(txtResposta_Incorreta_2, false);
    Campo_Obrigatório(txtResposta_Incorreta_3, true);
    setTabOrder(txtPergunta, txtResposta_Correta);
    setTabOrder(txtResposta_Correta, txtResposta_Incorreta_1);
    setTabOrder(txtResposta_Incorreta_1, txtResposta_Incorreta_2);
    setTabOrder(txtResposta_Incorreta_2, txtResposta_Incorreta_3);
    setTabOrder(txtResposta_Incorreta_3, optTipo[0]);
    setTabOrder(optTipo[0], cmdOk);

    Passos_Comuns_Form_Load();
    if (Lastrec(Tabela_Secundária.Source, Conexão_Secundária) != 0) Tabela_Secundária.MoveFirst();
}

void frmPergunta::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Tabela_Secundária.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Abre_Tabela_Secundária("tblConfigur");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmPergunta::Mostra_Registro() {
    txtPergunta->Set_Text(Tabela.Fields("Pergunta").Value().toString().trimmed());
    txtResposta_Correta->setText(Tabela.Fields("Resposta_Correta").Value().toString().trimmed());
    txtResposta_Incorreta_1->setText(Tabela.Fields("Resposta_Incorreta_1").Value().toString().trimmed());
    txtResposta_Incorreta_2->setText(Tabela.Fields("Resposta_Incorreta_2").Value().toString().trimmed());
    txtResposta_Incorreta_3->setText(Tabela.Fields("Resposta_Incorreta_3").Value().toString().trimmed());
    const bool geral = Tabela.Fields("Tipo").Value().toString() == "G";
    optTipo[geral ? 0 : 1]->setChecked(true);
}

// The question keeps its typed form; only the answers take the stored capitalisation.
void frmPergunta::Transforma_Campos() {
    const QString pergunta = txtPergunta->Text();
    Transformar_Campos(this);
    txtPergunta->Set_Text(pergunta);
}

void frmPergunta::Grava_Campos() {
    Tabela.Fields("Pergunta").Set_Value(txtPergunta->Text());
    Tabela.Fields("Resposta_Correta").Set_Value(txtResposta_Correta->text());
    Tabela.Fields("Resposta_Incorreta_1").Set_Value(txtResposta_Incorreta_1->text());
    Tabela.Fields("Resposta_Incorreta_2").Set_Value(txtResposta_Incorreta_2->text());
    Tabela.Fields("Resposta_Incorreta_3").Set_Value(txtResposta_Incorreta_3->text());
    // The export keeps here the wording of its last run; a row that has none gets a blank.
    if (Tabela.Fields("Pergunta_Original").Value().isNull())
        Tabela.Fields("Pergunta_Original").Set_Value(" ");
    Tabela.Fields("Tipo").Set_Value(optTipo[0]->isChecked() ? "G" : "B");
    if (Operação == "Inclusão") {
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Fields("Já_Verificada").Set_Value(false);
    }
}

QWidget* frmPergunta::Primeiro_Campo() {
    return txtPergunta;
}
