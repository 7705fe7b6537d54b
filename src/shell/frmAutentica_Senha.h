#pragma once
#include "forms/Formulário.h"

class QLabel;
class QLineEdit;
class QPushButton;

// The result of the last confirmation of the password.
inline bool Senha_Autenticada = false;

// Asks the logged-in user to type the password once more.
class frmAutentica_Senha : public Formulário {
  public:
    explicit frmAutentica_Senha(QWidget* pai = nullptr);

    QLabel* Label1;
    QLabel* Label2;
    QLineEdit* txtSenha;
    QPushButton* cmdOk;
    QPushButton* cmdSair;
    QLabel* Image1;

    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
    void Abre_Tabelas();
};

// Shows the confirmation modally; the caller reads Senha_Autenticada.
void Autentica_Senha(QWidget* pai = nullptr);
