#pragma once
// The register of the question bank: one multiple-choice question per record, with its right answer,
// three wrong ones and its kind. Whoever reaches the window may do everything in it.
#include <array>

#include "questions/Janela_Pergunta.h"

class Caixa_Texto_Multilinha;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

class frmPergunta : public Janela_Pergunta {
  public:
    explicit frmPergunta(QWidget* pai = nullptr);

    QGroupBox* fraPergunta;
    QGroupBox* fraTipo_Pergunta;
    std::array<QRadioButton*, 2> optTipo{};  // 0 general knowledge, 1 biblical
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdExportação;
    // Read-only: how the question shown has fared in the games.
    QLabel* lblEstatística;

    void Abre_Tabelas() override;
    // The whole bank into tblPergunta of the scratch database, for the maker; each question keeps the
    // wording it was sent with in Pergunta_Original.
    void cmdExportação_Click();

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;
    void Habilita_Botões_Próprios(bool habilitados) override;
    void Padrões_Inclusão() override;

  private:
    // Whether Temp.Mdb can take the export; otherwise the user is told why, and nothing has changed.
    bool Rascunho_Utilizável();
    bool Exportando = false;
};
