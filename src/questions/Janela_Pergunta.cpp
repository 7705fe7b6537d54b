#include "questions/Janela_Pergunta.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "store/Funções_Banco.h"

QGridLayout* Janela_Pergunta::Monta_Campos_Pergunta(QGroupBox* moldura) {
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    fixa.setPointSize(11);
    auto resposta = [moldura, &fixa](const char* nome) {
        auto* caixa = new QLineEdit(moldura);
        caixa->setObjectName(QString::fromUtf8(nome));
        caixa->setMaxLength(50);
        caixa->setFont(fixa);
        caixa->setMinimumWidth(QFontMetrics(fixa).horizontalAdvance(QString(50, 'M')) * 3 / 4);
        return caixa;
    };
    auto* grade = new QGridLayout(moldura);

    Label1 = Rótulo("Label1", "Descrição da Pergunta:");
    txtPergunta = new Caixa_Texto_Multilinha(moldura);
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
    return grade;
}

void Janela_Pergunta::Mostra_Campos_Pergunta() {
    txtPergunta->Set_Text(Tabela.Fields("Pergunta").Value().toString().trimmed());
    txtResposta_Correta->setText(Tabela.Fields("Resposta_Correta").Value().toString().trimmed());
    txtResposta_Incorreta_1->setText(Tabela.Fields("Resposta_Incorreta_1").Value().toString().trimmed());
    txtResposta_Incorreta_2->setText(Tabela.Fields("Resposta_Incorreta_2").Value().toString().trimmed());
    txtResposta_Incorreta_3->setText(Tabela.Fields("Resposta_Incorreta_3").Value().toString().trimmed());
}

QList<QWidget*> Janela_Pergunta::Campos_Sempre_Mostrados() {
    return {txtPergunta, txtResposta_Correta, txtResposta_Incorreta_1, txtResposta_Incorreta_2,
            txtResposta_Incorreta_3};
}

void Janela_Pergunta::Grava_Campos_Pergunta() {
    Tabela.Fields("Pergunta").Set_Value(txtPergunta->Text());
    Tabela.Fields("Resposta_Correta").Set_Value(txtResposta_Correta->text());
    Tabela.Fields("Resposta_Incorreta_1").Set_Value(txtResposta_Incorreta_1->text());
    Tabela.Fields("Resposta_Incorreta_2").Set_Value(txtResposta_Incorreta_2->text());
    Tabela.Fields("Resposta_Incorreta_3").Set_Value(txtResposta_Incorreta_3->text());
}

QWidget* Janela_Pergunta::Primeiro_Campo() {
    return txtPergunta;
}

void Janela_Pergunta::Transforma_Campos() {
    Transformar_Campos(this, {txtPergunta});
}
