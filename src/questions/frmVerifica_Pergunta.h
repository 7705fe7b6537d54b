#pragma once
// The quality check of the question bank. Two walks over tblPergunta, each with its own mark on every
// row (Já_Comparada, Já_Verificada), so that either can be broken off at any row and taken up later:
// the duplicate walk shows every other question with the same right answer that holds a key word, pair
// by pair; the coherence walk brings each question not yet verified into the fields to be read and
// corrected.
#include "questions/Janela_Pergunta.h"

class Caixa_Texto_Multilinha;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;

inline bool Verificação_Interrompida = false;  // set by cmdCancelar, tested by both walks after each row
inline bool Continua_Comparação = false;
inline int Quantidade_Mesma_Resposta = 0;

class frmVerifica_Pergunta : public Janela_Pergunta {
  public:
    explicit frmVerifica_Pergunta(QWidget* pai = nullptr);

    QGroupBox* fraVerifica_Pergunta;
    QPushButton* cmdVerifica_Duplicidade;
    QPushButton* cmdVerifica_Coerência;
    QProgressBar* pgbBarra_De_Progresso;

    void Abre_Tabelas() override;
    void cmdVerifica_Duplicidade_Click();
    void cmdVerifica_Coerência_Click();
    // These three differ from the register's: the coherence walk runs through them.
    void cmdAlteração_Click() override;
    void cmdOk_Click() override;
    void cmdCancelar_Click() override;

  protected:
    void Mostra_Registro() override;
    void Grava_Campos() override;

  private:
    void Form_Load();
    // The buttons of a window at rest: the way in to a walk, the row's own commands and Sair.
    void Habilita_Repouso(bool repouso);
    // The duplicate walk's part for the row found: true when the walk goes on.
    void Compara_Questão_Atual();

    int Contador_Verificação = 0;
    bool Em_Comparação = false;  // the duplicate walk is running, perhaps waiting on a held row
};
