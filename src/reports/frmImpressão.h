#pragma once
// The options every report asks before it is written: orientation, highlight colour and file name. Its
// OK opens the report file; the report learns the outcome only through Impressão_Confirmada.
#include <array>

#include "forms/Formulário.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

class frmImpressão : public Formulário {
  public:
    explicit frmImpressão(QWidget* pai = nullptr);

    QGroupBox* fraImpressão;
    QGroupBox* fraDados;
    std::array<QRadioButton*, 2> optOrientação_Relatório{};  // 1 "&Retrato", 0 "&Paisagem"
    QGroupBox* fraDestaca_Impressão;
    std::array<QRadioButton*, 11> optDestaca_Impressão{};  // the index is Cor_Destaque
    QLabel* Label1;
    QLineEdit* txtCaminho;
    QLabel* Label11;
    QLabel* lblCaminho;
    QLabel* Image1;
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    void optOrientação_Relatório_Click(int Index);
    void optDestaca_Impressão_Click(int Index);
    void txtCaminho_Change();
    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
};
