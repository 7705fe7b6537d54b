#pragma once
#include "forms/Formulário.h"

class QLabel;
class QPushButton;

// Identifies the program: title, version, the data layer's version and the maker's contacts.
class frmSobre : public Formulário {
  public:
    explicit frmSobre(QWidget* pai = nullptr);

    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label6;
    QLabel* lblVersão_ADO;
    QLabel* Label3;
    QLabel* Label5;
    QLabel* lblSite;
    QLabel* Label4;
    QLabel* lblEmail;
    QLabel* Image1;
    QPushButton* cmdSair;

    void cmdSair_Click();

  private:
    void Form_Load();
};
