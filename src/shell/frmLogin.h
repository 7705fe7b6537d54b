#pragma once
#include "forms/Formulário.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QGroupBox;

// The login: nothing of the system can be reached before it closes.
class frmLogin : public Formulário {
  public:
    explicit frmLogin(QWidget* pai = nullptr);

    QLabel* lblLogin;
    QLabel* Label3;
    QComboBox* cboUsuário;
    QLabel* Label4;
    QLineEdit* txtSenha;
    QPushButton* cmdOk;
    QPushButton* cmdSair;
    QGroupBox* fraLogin;
    QLabel* Image1;

    void cboUsuário_Validate(bool& Cancel);
    void txtSenha_Validate();
    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
    void Abre_Tabelas();
};
