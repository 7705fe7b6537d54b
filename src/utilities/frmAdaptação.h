#pragma once
// The register of the changes that users ask of the software: what is asked, when, and for which
// system. Besides typing, the table is exported whole to the scratch database, and requests are
// imported from an ARJ archive of the old memo system's Dbase tables, from another scratch database,
// or from an occurrence log.
#include <QString>

#include "forms/Cadastro.h"

class Caixa_Data;
class Caixa_Texto_Multilinha;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;

// The archiver run to unpack the ARJ archives: a name looked up in PATH, or a full path.
inline QString Programa_Arj = "arj";

class frmAdaptação : public Formulário_Cadastro {
  public:
    explicit frmAdaptação(QWidget* pai = nullptr);

    QGroupBox* fraAdaptação;
    QLabel* Label1;
    Caixa_Texto_Multilinha* txtAdaptação;
    QLabel* Label2;
    Caixa_Data* dbData_Solicitação;
    QLabel* Label3;
    QLineEdit* txtCódigo_Sistema;
    QLabel* lblSistema;
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdImportação;
    QPushButton* cmdExportação;

    // True from cmdImportação_Click until the import has run.
    bool Importando = false;

    void Abre_Tabelas() override;
    void cmdExportação_Click();
    void cmdImportação_Click();
    // The second step of the import: the file dialog, then the import the chosen file calls for.
    void dbData_Solicitação_LostFocus();
    // How many requests the last import added, and how many of its rows the store refused.
    int Importadas = 0;
    int Recusadas = 0;

  private:
    bool Avisou = false;  // the last import has told the user why it stopped

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;
    QWidget* Primeiro_Campo() override;
    void Padrões_Inclusão() override;
    void Transforma_Campos() override;
    void Habilita_Botões_Próprios(bool habilitados) override;

  private:
    bool Instalação_Comum() const;
    void Mostra_Sistema_Da_Pasta();
    void Importa_Arj(const QString& arquivo);
    void Importa_Banco(const QString& arquivo);
    void Importa_Log(const QString& arquivo);
    void Encerra_Importação();
    void Sai();
    void Avisa(const QString& texto);
    // A request added to tblAdaptação inside the caller's transaction; false when the write was refused.
    bool Inclui_Adaptação(const QString& texto, const QVariant& data, int código_sistema,
                          const QString& nome_sistema);
    // Conexão_Temporária back on the main database, as it stands outside exports and imports.
    void Restaura_Conexão_Temporária();
};
