#pragma once
// The raffle on a projector or a television: the number being drawn in giant type while it spins, the
// numbers already drawn, and "Novo Sorteio" as a large button that presses the window's own.
#include <array>

#include "game/Regras_Jogo.h"
#include "sala/Peças_Sala.h"

class frmSorteio;

class frmTela_Sorteio : public Tela_Sala {
  public:
    explicit frmTela_Sorteio(frmSorteio& sorteio);
    void Atualiza() override;

    Rótulo_Sala* lblTítulo;
    Rótulo_Sala* lblFaixa;
    Rótulo_Sala* lblNúmero_Sorteado;
    Rótulo_Sala* lblContemplados;
    std::array<Rótulo_Sala*, Contemplados_Visíveis> lblNúmero_Contemplado{};
    Botão_Sala* cmdSorteia;

  protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override;

  private:
    frmSorteio& Janela_Sorteio;
};
