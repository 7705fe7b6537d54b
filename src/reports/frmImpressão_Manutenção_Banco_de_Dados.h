#pragma once
// The report of the audit trail: for one user and a period, one line for each maintenance done in the
// database, with its date and time, and the total. While the window is open Conexão_Secundária stands on
// the audit database; every way out (Sair, the close box, a refused print dialog, the window's end) puts
// it back on the main database, which the other windows expect on it.
#include "forms/Formulário.h"

class Caixa_Data;
class QComboBox;
class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

class frmImpressão_Manutenção_Banco_de_Dados : public Formulário {
  public:
    explicit frmImpressão_Manutenção_Banco_de_Dados(QWidget* pai = nullptr);
    ~frmImpressão_Manutenção_Banco_de_Dados() override;

    QGroupBox* fraImpressão_Manutenção_Banco_de_Dados;
    QLabel* Label1;
    QComboBox* cboUsuário;
    QLabel* Label2;
    Caixa_Data* dbData_Inicial;
    QLabel* Label3;
    Caixa_Data* dbData_Final;
    QLabel* lblCampo_de_Consulta;
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    void Abre_Tabelas();
    void cboUsuário_Validate(bool& Cancel);
    void dbData_Inicial_Validate(bool& Cancel);
    void dbData_Final_Validate(bool& Cancel);
    void cmdOk_Click();
    // During the walk it only asks the walk to stop: the walk then discards the half-written report and
    // leaves through here again.
    void cmdSair_Click();

  private:
    void Form_Load();
    // Writes one line per maintenance of the user in the period and returns how many; false when the
    // user left halfway.
    bool Imprime_Manutenções(int& Quantidade);
    void Volta_Conexão_Principal();

    bool Conexão_Na_Auditoria = false;
    bool Imprimindo = false;
    bool Interrompido = false;
};
