#pragma once
// The game window's part of the room of phones: it starts and stops the room's server, tells the phones
// every change of the game, passes the request of the phone on turn to the very routines that the
// window's clicks call, and shows the host the address, the room code and which seats a phone holds,
// with a button to free each seat.
#include <QGroupBox>
#include <QHostAddress>
#include <array>
#include <memory>

#include "game/Regras_Jogo.h"
#include "sala/Mensagens_Sala.h"

class QLabel;
class QPushButton;
class frmJogo;
class Servidor_Sala;
struct Ação_Celular;

class Painel_Sala : public QGroupBox {
  public:
    explicit Painel_Sala(frmJogo& jogo);
    ~Painel_Sala() override;

    // The address the room listens on; null takes the computer's address on the local network. Tests
    // set loopback here.
    static inline QHostAddress Endereço_Forçado;

    // "Jogar pelos celulares": on when off, off when on. False when the room could not start.
    bool Alterna();
    void Liga();
    void Desliga();
    Servidor_Sala* Servidor_Ativo() const;

    // Tells the phones the game as it stands.
    void Publica();
    void cmdLiberar_Click(int assento);

    QLabel* lblEndereço;
    QLabel* lblCódigo;
    QLabel* lblCelulares;
    std::array<QLabel*, Máximo_Jogadores + 1> lblAssento{};       // 1 to 5
    std::array<QPushButton*, Máximo_Jogadores + 1> cmdLiberar{};  // 1 to 5

  private:
    void Age(const Ação_Celular& ação);
    void Mostra_Assentos();

    frmJogo& Jogo;
    std::unique_ptr<Servidor_Sala> Servidor;
    Contagem_Vez Vez;
};
