#pragma once
// What the question register and the question verification share: the question's text and its four
// answers, laid out in a frame, shown from the current row of Tabela and written back to it.
#include "forms/Cadastro.h"

class Caixa_Texto_Multilinha;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

class Janela_Pergunta : public Formulário_Cadastro {
  public:
    Janela_Pergunta(const QString& nome, QWidget* pai) : Formulário_Cadastro(nome, pai) {}

    QLabel* Label1;
    Caixa_Texto_Multilinha* txtPergunta;
    QLabel* Label2;
    QLineEdit* txtResposta_Correta;
    QLabel* Label7;
    QLabel* Label3;
    QLabel* Label4;
    QLabel* Label5;
    QLineEdit* txtResposta_Incorreta_1;
    QLineEdit* txtResposta_Incorreta_2;
    QLineEdit* txtResposta_Incorreta_3;

  protected:
    // Puts the text and the answers in the frame, rows 0 to 7 of the grid it returns.
    QGridLayout* Monta_Campos_Pergunta(QGroupBox* moldura);
    void Mostra_Campos_Pergunta();
    // Mostra_Campos_Pergunta fills the text and the four answers of every row.
    QList<QWidget*> Campos_Sempre_Mostrados() override;
    void Grava_Campos_Pergunta();
    QWidget* Primeiro_Campo() override;
    // The question keeps its typed form; only the answers take the stored capitalisation.
    void Transforma_Campos() override;
};
