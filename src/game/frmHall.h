#pragma once
#include <array>

#include "forms/Formulário.h"
#include "game/Regras_Jogo.h"

class QGroupBox;
class QLabel;
class QPushButton;
class frmTela_Hall;

// The ten best scores ever kept; at the end of a game also the ranking of that game.
class frmHall : public Formulário {
  public:
    // `jogo` is the game just ended, or none when the window is opened from the menu.
    explicit frmHall(QWidget* pai = nullptr, const Estado_Jogo* jogo = nullptr);

    QGroupBox* fraHall;
    std::array<QLabel*, Linhas_Hall> lblColocação{};
    std::array<QLabel*, Linhas_Hall> lblJogador{};
    std::array<QLabel*, Linhas_Hall> lblPontuação{};
    QGroupBox* fraPontuação;
    std::array<QLabel*, Máximo_Jogadores> lblColocação_Jogo{};
    std::array<QLabel*, Máximo_Jogadores> lblJogador_Jogo{};
    std::array<QLabel*, Máximo_Jogadores> lblPontuação_Jogo{};
    QLabel* lblResposta_1;
    QLabel* lblResposta_2;
    QPushButton* cmdSair;
    // F11: the hall on a screen made for the room; it opens there by itself when the game was on one.
    frmTela_Hall* Tela_Da_Sala;

    void cmdSair_Click();

  protected:
    // Escape only leaves full screen: the hall closes by Sair alone.
    void keyPressEvent(QKeyEvent* evento) override;
    void Form_Activate() override;

  private:
    void Form_Load();
    void Classifica_Jogo();
    void Abre_Tabelas();

    const Estado_Jogo* Jogo;
    bool Chamado_Pelo_Jogo;
};

// A score as the window shows it: the grouped number and " pts".
QString Texto_Pontuação(double pontos);
