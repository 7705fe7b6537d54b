#pragma once
// The register of query criteria: for each table and user, the field that the locate dialog searches
// first and the two fields it shows beside it. A user alters and excludes only the own criteria.
#include "forms/Cadastro.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;

class frmCritério_de_Consulta : public Formulário_Cadastro {
  public:
    explicit frmCritério_de_Consulta(QWidget* pai = nullptr);

    QGroupBox* fraCritério_de_Consulta;
    QLabel* Label3;
    QComboBox* cboTabela;
    QLabel* Label1;
    QComboBox* cboCampo_de_Pesquisa;
    QLabel* Label2;
    QComboBox* cboPrimeiro_Campo_de_Consulta;
    QLabel* Label4;
    QComboBox* cboSegundo_Campo_de_Consulta;
    QLabel* Label5;
    QLineEdit* txtUsuário;

    QString Tabela_Anterior;  // Tabela of the shown record

    void Abre_Tabelas() override;
    void cboTabela_Validate(bool& Cancel);
    void Campo_Validate(QComboBox* lista, bool& Cancel);

    // "Nome" padded to 60 characters and the position; the first field one blank to the left.
    static QString Item_Campo(const QString& nome, int posição);
    static int Posição_do_Item(const QString& item);

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;
    QWidget* Primeiro_Campo() override;
    bool Guarda_Alteração() override;
    bool Guarda_Exclusão() override;

  private:
    void Preenche_Listas_Campos(const QString& tabela);
    bool Critério_de_Outro_Usuário() const;
};
