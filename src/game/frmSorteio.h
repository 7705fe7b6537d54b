#pragma once
#include <array>

#include "forms/Formulário.h"
#include "game/Regras_Jogo.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class frmTela_Sorteio;

// The raffle: numbers from 1 to the final value, none twice while the window is open.
class frmSorteio : public Formulário {
  public:
    explicit frmSorteio(QWidget* pai = nullptr);

    QLabel* Label1;
    QLabel* Label5;
    QSpinBox* nbNúmero_Inicial;
    QLabel* Label3;
    QSpinBox* nbNúmero_Final;
    QPushButton* cmdSorteia;
    QPushButton* cmdSair;
    // F11: the raffle on a screen made for the room.
    frmTela_Sorteio* Tela_Da_Sala;
    QLineEdit* nbNúmero_Sorteado;
    QGroupBox* fraSorteio;
    std::array<QLineEdit*, Contemplados_Visíveis> nbNúmero_Contemplado{};

    // What has been drawn since the window opened.
    Estado_Sorteio Sorteio;
    // True while a press is spinning the display; a press that comes meanwhile is ignored.
    bool Sorteando() const { return Em_Sorteio; }

    void cmdSorteia_Click();
    void cmdSair_Click();

  protected:
    // Escape only leaves full screen: the raffle closes by Sair alone.
    void keyPressEvent(QKeyEvent* evento) override;

  private:
    void Form_Load();

    bool Em_Sorteio = false;
};
