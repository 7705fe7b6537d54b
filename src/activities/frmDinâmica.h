#pragma once
// The register of group activities: name, materials, instructions, the one setting the activity may be
// run in and the date it was last run. Besides the record commands it prints the sheet of the activity
// on screen and exports the whole table to the scratch database, from where a new version takes it.
#include <array>

#include "forms/Cadastro.h"

class Caixa_Data;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QRadioButton;

// The stored codes of the settings, by the index of their option.
inline const std::array<QString, 4> Códigos_Tipo_Dinâmica = {"Ar Livre", "Salão", "J.A.", "Meditação"};
// The option of a stored code: the first three have their own, anything else is a meditation.
int Índice_Tipo_Dinâmica(const QString& código);

class frmDinâmica : public Formulário_Cadastro {
  public:
    explicit frmDinâmica(QWidget* pai = nullptr);

    QGroupBox* fraDados;
    QLabel* Label1;
    QLineEdit* txtDinâmica;
    QLabel* Label2;
    QPlainTextEdit* txtMateriais;
    QLabel* Label3;
    QPlainTextEdit* txtInstruções;
    QLabel* Label4;
    Caixa_Data* dbData_Última_Realização;
    QGroupBox* fraDinâmica;
    std::array<QRadioButton*, 4> optTipo_Dinâmica{};
    QPushButton* cmdImpressão;
    QPushButton* cmdExportação;
    QProgressBar* pgbBarra_De_Progresso;

    void Abre_Tabelas() override;
    void cmdImpressão_Click();
    void cmdExportação_Click();
    void dbData_Última_Realização_Validate(bool& Cancel);

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;
    QWidget* Primeiro_Campo() override;
    void Transforma_Campos() override;
    void Habilita_Botões_Próprios(bool habilitados) override;

  private:
    bool Exportando = false;
};
