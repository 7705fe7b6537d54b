#pragma once
// The room's own small web server: it serves the phones' page from the program's resources and talks to the
// phones over WebSockets on the same port. It knows the room code, who holds each competitor seat and the
// last picture of the game; it never touches the bank or a file.
//
// What a phone may do: join with the room code (five wrong codes close its connection), watch, take a free
// competitor seat (one phone a seat, kept by a random token that the page stores, so that a reload or a
// phone back from sleep gets its seat again), and only for its own seat, on its turn, answer or ask a
// help. Such a request reaches the game through `Ao_Agir`, from the event loop, never from inside the
// network's own handlers. Every request is at most 1 KB; a phone sends at most 20 in a burst and 10 a
// second after that, and one that keeps flooding is cut off; at most 205 phones stay connected (200
// spectators and the five competitors).
#include <QHostAddress>
#include <QString>
#include <array>
#include <functional>
#include <memory>

#include "sala/Mensagens_Sala.h"

class QWebSocket;

// Two hundred phones that watch, and one more for each competitor seat.
inline constexpr int Máximo_Celulares = 200 + Máximo_Jogadores;

// What a phone asks of the game: an answer (0 to 3) or a help (0 to 5) for `Assento` in turn `Vez`.
struct Ação_Celular {
    bool Ajuda = false;
    int Índice = 0;
    int Assento = 0;
    qint64 Vez = 0;
};

class Servidor_Sala {
  public:
    explicit Servidor_Sala(const QString& código);
    ~Servidor_Sala();
    Servidor_Sala(const Servidor_Sala&) = delete;
    Servidor_Sala& operator=(const Servidor_Sala&) = delete;

    // Listens on this address, at the first free port from `porta` on (ten tries), else at any free port.
    bool Inicia(const QHostAddress& endereço, quint16 porta = 8080);
    void Para();
    bool Ativo() const;

    QString Endereço() const;  // "http://192.168.0.10:8080/"
    QString Código() const { return Código_Sala; }
    quint16 Porta() const;

    // The game as it stands now: told to every phone that has joined.
    void Publica(const Retrato_Sala& retrato);
    const Retrato_Sala& Retrato() const { return Último; }

    // The host frees a seat: its token is forgotten and its phone becomes a spectator.
    void Libera_Assento(int assento);
    bool Assento_Com_Celular(int assento) const;
    int Celulares_Conectados() const;

    // A request of the competitor on turn that passed every check here. The game checks again.
    std::function<void(const Ação_Celular&)> Ao_Agir;
    // The seats or the count of phones changed: for the host's panel.
    std::function<void()> Ao_Mudar_Celulares;

    // A new room code: six digits from the platform's draws.
    static QString Sorteia_Código();
    // The address on the local network that phones reach: a private IPv4 address of an interface that is
    // up, else any IPv4 address that is not loopback; null when the computer has no network.
    static QHostAddress Endereço_Rede_Local();

  private:
    void Recebe(QWebSocket* socket, const QByteArray& texto);
    void Desliga(QWebSocket* socket, bool cortar);
    void Solta_Assento(int assento);

    struct Dados;
    std::unique_ptr<Dados> D;
    QString Código_Sala;
    Retrato_Sala Último;
};
