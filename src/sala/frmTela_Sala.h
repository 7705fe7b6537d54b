#pragma once
// The game on a projector or a television: the question in large type, the four answers as coloured tiles
// with their letters, the helps of the competitor on turn as large buttons, the die while it rolls, the
// scoreboard and the remark as a banner. It shows what the game window shows and works through the
// window's own controls, so that a tile or a help pressed here is that same click on the window.
#include <QString>
#include <array>
#include <functional>

#include "game/Regras_Jogo.h"
#include "sala/Peças_Sala.h"

class frmJogo;
class Placar_Sala;

class frmTela_Sala : public Tela_Sala {
  public:
    explicit frmTela_Sala(frmJogo& jogo);

    // "Jogar pelos celulares": what the button asks for; without it the button does not show.
    std::function<void()> Ao_Pedir_Celulares;
    // The room's address and its code beside their QR code, for the phones to join; and away again.
    void Mostra_Sala(const QString& endereço, const QString& código);
    void Esconde_Sala();

    void Atualiza() override;

    Rótulo_Sala* lblJogador_Atual;
    Rótulo_Sala* lblValor;
    Rótulo_Sala* lblPergunta;
    std::array<Botão_Sala*, 4> cmdResposta{};
    std::array<Botão_Sala*, Quantidade_Ajudas> cmdAjuda{};
    Desenho_Dado* imgDado_Rolando;  // large, over the tiles, while the die rolls
    Desenho_Dado* imgDado;          // small, beside the remark, once it has stopped
    Rótulo_Sala* lblComentário;
    Rótulo_Sala* lblPlacar;
    Placar_Sala* Placar;
    Painel_QR* Painel;
    Botão_Sala* cmdCelulares;

    // The scoreboard as it reads now, one line a competitor: name, points, level.
    QStringList Linhas_Placar() const;

  protected:
    void resizeEvent(QResizeEvent* evento) override;

  private:
    void Posiciona_Dado();

    frmJogo& Jogo;
    QWidget* Respostas;
};
