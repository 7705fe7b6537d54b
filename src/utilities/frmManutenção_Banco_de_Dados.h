#pragma once
// The audit trail that Grava leaves: who changed what and when. It is only read, apart from the deletion
// of a period of the trail, for one user or for all. While the window is open Conexão stands on the audit
// database; every way out (Sair, the close box, the window's end) puts it back on the main database.
#include "forms/Cadastro.h"

class Caixa_Data;
class Caixa_Número;
class QGroupBox;
class QLabel;
class QLineEdit;

class frmManutenção_Banco_de_Dados : public Formulário_Cadastro {
  public:
    explicit frmManutenção_Banco_de_Dados(QWidget* pai = nullptr);
    ~frmManutenção_Banco_de_Dados() override;

    QGroupBox* fraManutenção_Banco_de_Dados;
    QLabel* Label1;
    QLineEdit* txtManutenção;
    QLabel* Label10;
    QLineEdit* txtUsuário;
    QLabel* Label17;
    Caixa_Data* dbData_Manutenção;
    QLabel* Label31;
    QLineEdit* txtHora_Manutenção;
    QLabel* Label30;
    QLabel* Label2;
    Caixa_Data* dbData_Manutenção_Final;
    Caixa_Número* nbQuantidade_Manutenções;
    QLabel* Label13;

    void Abre_Tabelas() override;
    // These stand in for the protocol's buttons of the same names: the exclusion here is of a period, and
    // OK carries it out.
    void cmdExclusão_Click() override;
    void cmdOk_Click() override;
    void cmdSair_Click() override;

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override {}  // nothing is included or altered here
    QWidget* Primeiro_Campo() override;

  private:
    // The deletion mode asks for the user and the period; the consultation mode shows one audit row.
    void Mostra_Modo_Exclusão(bool exclusão);
    void Volta_Conexão_Principal();
    bool Conexão_Na_Auditoria = false;
};
