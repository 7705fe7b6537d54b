#pragma once
// The listing of every activity in name order, with its setting, the date it was last run and the start
// of its materials, and the totals by setting. Sair during the walk stops it and the half-written
// listing is discarded.
#include <array>

#include "forms/Formulário.h"

class QLabel;
class QProgressBar;
class QPushButton;

class frmImpressão_Dinâmica : public Formulário {
  public:
    explicit frmImpressão_Dinâmica(QWidget* pai = nullptr);

    QLabel* Label1;
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    void Abre_Tabelas();
    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
    // One line per activity; false when the user left halfway.
    bool Imprime_Dinâmicas(std::array<int, 5>& Quantidades);

    bool Imprimindo = false;
    bool Interrompido = false;
};
