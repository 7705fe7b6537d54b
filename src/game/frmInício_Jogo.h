#pragma once
// The start of a game: which kind of questions, then the game window.
#include <array>

#include "forms/Formulário.h"

class QGroupBox;
class QPushButton;
class QRadioButton;

class frmInício_Jogo : public Formulário {
  public:
    explicit frmInício_Jogo(QWidget* pai = nullptr);

    QGroupBox* Frame2;
    std::array<QRadioButton*, 3> optTipo_Pergunta{};
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    // Sets Tipo_Pergunta from the options; "A" when none is on.
    void Define_Tipo_Pergunta();
    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
};
