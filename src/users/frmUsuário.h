#pragma once
// The register of user accounts, and the place where the Supervisor hands out rights. Every change asks
// for the logged-in user's password first; a user sees only the own password and picture folder; the
// Supervisor toggles the shown user's rights in a grid, written by the same OK.
#include "forms/Cadastro.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class Grade_Flex;
class Lista_Pastas;
class Lista_Unidades;

class frmUsuário : public Formulário_Cadastro {
  public:
    explicit frmUsuário(QWidget* pai = nullptr);

    QGroupBox* fraUsuário;
    QLabel* Label1;
    QLineEdit* txtUsuário;
    QLabel* Label2;
    QLineEdit* txtSenha;
    QLabel* Label3;
    QLineEdit* txtSenha_Confirmação;
    QCheckBox* chkMuda_Fundo_de_Tela;
    QLabel* Label4;
    Lista_Unidades* drvImagens;
    Lista_Pastas* DirImagens;
    QGroupBox* fraPermissão;
    Grade_Flex* flxPermissão_de_Acesso;

    void Abre_Tabelas() override;
    // These take the place of the common buttons' steps: each change passes the password dialog, and the
    // frames follow who alters whom.
    void cmdInclusão_Click() override;
    void cmdAlteração_Click() override;
    void cmdExclusão_Click() override;
    void cmdOk_Click() override;
    void cmdCancelar_Click() override;
    void cmdLocaliza_Click() override;
    void cmdMovimenta_Registro_Click(int Index) override;
    void flxPermissão_De_Acesso_Click();
    void txtUsuário_Validate(bool& Cancel);
    void DirImagens_Validate(bool& Cancel);

    static inline const QString Sim = "  Sim";
    static inline const QString Não = "  NÃO";

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;
    QWidget* Primeiro_Campo() override;

  private:
    bool Usuário_Mostrado_É_O_Atual() const;
    // The name of the user in the current row of Tabela as stored, whatever the fields hold.
    static QString Usuário_Gravado();
    // Brings Tabela back to the shown row after the password dialog has used it, walking in the order of
    // `índice` from there; false if the row is gone.
    bool Volta_Ao_Registro(const QString& índice, int código);
    void Preenche_Grade();
    void Limpa_Grade();
    void Grava_Direitos();
    void Exclui_Direitos(const QString& usuário);
    void Exclui_Direito(int código);
    void Aponta_Pasta(const QString& caminho);
    bool Grava_Usuário = false;  // the shown user's own fields are written by this OK
};
