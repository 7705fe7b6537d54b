#pragma once
#include "forms/Formulário.h"

class QLabel;
class QPushButton;

// The regular way out of the program.
class frmSair : public Formulário {
  public:
    explicit frmSair(QWidget* pai = nullptr);

    QLabel* Label6;
    QPushButton* cmdSair;
    QPushButton* cmdCancelar;
    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label3;
    QLabel* Label5;
    QLabel* lblSite;
    QLabel* Label4;
    QLabel* lblEmail;
    QLabel* Image1;

    void cmdSair_Click();
    void cmdCancelar_Click();

  private:
    void Form_Load();
};
