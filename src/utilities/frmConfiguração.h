#pragma once
// The system's configuration: the one row of tblConfigur, where the audit trail is switched on or off and
// the organisation's name is kept. The row stays locked, in an open transaction, from the window's
// opening until it closes, so that two workstations never save it over each other.
#include <QString>
#include <functional>

#include "forms/Formulário.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Versão_Sistema as the captions show it: the program's own numbers, a dash and the organisation's name.
QString Monta_Versão_Sistema(const QString& Razão_Social);

// Gives the main window the caption Título_Versão + Versão_Sistema once the configuration is saved. By
// default the top-level window named "frmPrincipal" takes it; the main window may put its own routine here.
extern std::function<void()> Atualiza_Título_Principal;

class frmConfiguração : public Formulário {
  public:
    explicit frmConfiguração(QWidget* pai = nullptr);

    QGroupBox* fraConfiguração;
    QCheckBox* chkMonitora_Log_das_Atividades;
    QLabel* Label1;
    QLineEdit* txtRazão_Social;
    QLabel* Label3;
    QLabel* lblVersão;
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    void Abre_Tabelas();
    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
};
