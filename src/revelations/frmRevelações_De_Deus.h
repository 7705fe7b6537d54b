#pragma once
// The browser of the citations: a search by subject over their keywords or by text over their files,
// the beginning of each citation found in a grid, and the one selected opened by the desktop and painted
// blue. Citations opened since the window loaded stay out of later subject searches.
#include <array>
#include <vector>

#include "forms/Formulário.h"

class Grade_Flex;
class QGroupBox;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

class frmRevelações_De_Deus : public Formulário {
  public:
    explicit frmRevelações_De_Deus(QWidget* pai = nullptr);

    QGroupBox* fraRevelações_De_Deus;
    std::array<QRadioButton*, 2> optPesquisa{};  // 0 by subject, 1 by text
    QLineEdit* txtPesquisa;
    QPushButton* cmdOk;
    QPushButton* cmdSair;
    QProgressBar* pgbBarra_De_Progresso;
    Grade_Flex* flxRevelações_de_Deus;

    // The number of the last grid row filled; 0 when nothing was found.
    int Linha_Grade = 0;
    // By the citation's number: opened since the window loaded.
    std::vector<bool> Revelação_Mostrada = std::vector<bool>(10000, false);

    void Abre_Tabelas();
    void cmdOk_Click();
    void cmdSair_Click();
    void txtPesquisa_Validate(bool& Cancel);
    void flxRevelações_De_Deus_SelChange();

  private:
    void Form_Load();
    QString Título_Grade() const;
    // Adds the citation of the current row of Tabela_Secundária to the grid.
    void Mostra_Citação(const QVariant& código, int número);

    bool Pesquisando = false;
};
