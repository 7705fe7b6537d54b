#pragma once
// The hall of fame on a projector or a television: the ten best scores and the ranking of the game just
// ended in large type, and the closing remark as a banner. It shows what the hall window shows.
#include "sala/Peças_Sala.h"

class frmHall;
class Quadro_Classificação;

class frmTela_Hall : public Tela_Sala {
  public:
    explicit frmTela_Hall(frmHall& hall);
    void Atualiza() override;

    Rótulo_Sala* lblTítulo;
    Rótulo_Sala* lblHall;
    Quadro_Classificação* Hall;
    Rótulo_Sala* lblJogo;
    Quadro_Classificação* Classificação_Jogo;
    Rótulo_Sala* lblComentário;
    Botão_Sala* cmdSair;

    // The lines as they read now: place, name and points; the empty lines of the list included.
    QStringList Linhas_Hall() const;
    QStringList Linhas_Jogo() const;

  private:
    frmHall& Janela_Hall;
};
