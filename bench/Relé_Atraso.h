#pragma once
// A loopback relay that holds every chunk for a while before passing it on, in each direction: a server
// reached over a slow link (2 ms each way is a Wi-Fi link between two rooms). It listens on 127.0.0.1 and
// passes each connection on to the server's unix socket. It also counts the round trips: a chunk from a
// client after the server last answered it (or the first of a connection) is one more.
// It runs in a thread of its own, stops when destroyed, and by itself after `limite_segundos`.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <atomic>
#include <chrono>
#include <cstring>
#include <deque>
#include <thread>
#include <vector>

class Relé_Atraso {
  public:
    using Relógio = std::chrono::steady_clock;

    // `soquete_servidor`: the path of the server's unix socket ("<pasta>/.s.PGSQL.<porta>").
    Relé_Atraso(const QString& soquete_servidor, std::chrono::microseconds atraso, int limite_segundos = 1800)
        : Destino(soquete_servidor.toLocal8Bit()), Atraso(atraso) {
        Escuta = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in endereço{};
        endereço.sin_family = AF_INET;
        endereço.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t tamanho = sizeof endereço;
        if (::bind(Escuta, reinterpret_cast<sockaddr*>(&endereço), sizeof endereço) != 0 ||
            ::listen(Escuta, 64) != 0 ||
            ::getsockname(Escuta, reinterpret_cast<sockaddr*>(&endereço), &tamanho) != 0) {
            ::close(Escuta);
            Escuta = -1;
            return;
        }
        Porta_ = ntohs(endereço.sin_port);
        const auto fim = Relógio::now() + std::chrono::seconds(limite_segundos);
        Laço = std::thread([this, fim] { Roda(fim); });
    }
    ~Relé_Atraso() {
        Parar = true;
        if (Laço.joinable()) Laço.join();
        if (Escuta >= 0) ::close(Escuta);
    }
    Relé_Atraso(const Relé_Atraso&) = delete;
    Relé_Atraso& operator=(const Relé_Atraso&) = delete;

    // The port on 127.0.0.1; 0 when the relay could not listen.
    int Porta() const { return Porta_; }
    // Round trips seen so far, over every connection.
    long Idas_E_Voltas() const { return Idas_Voltas.load(); }

    // A libpq connection string ("host=... port=... ...") with the host and port of this relay.
    QString Conexão_Pelo_Relé(const QString& conexão) const {
        QStringList partes;
        for (const QString& parte : conexão.split(' ', Qt::SkipEmptyParts))
            if (!parte.startsWith("host=") && !parte.startsWith("port=")) partes << parte;
        return "host=127.0.0.1 port=" + QString::number(Porta_) + " " + partes.join(' ');
    }

  private:
    struct Pedaço {
        Relógio::time_point Quando;
        QByteArray Dados;  // empty: the other side closed
    };
    struct Par {
        int Cliente = -1;
        int Servidor = -1;
        std::deque<Pedaço> Para_Servidor, Para_Cliente;
        bool Servidor_Respondeu = true;
        bool Fechando = false;
    };

    static void Envia(int soquete, const QByteArray& dados) {
        qsizetype enviados = 0;
        while (enviados < dados.size()) {
            const ssize_t n =
                ::send(soquete, dados.constData() + enviados, dados.size() - enviados, MSG_NOSIGNAL);
            if (n <= 0) return;
            enviados += n;
        }
    }

    void Aceita() {
        const int cliente = ::accept4(Escuta, nullptr, nullptr, SOCK_CLOEXEC);
        if (cliente < 0) return;
        const int sim = 1;
        ::setsockopt(cliente, IPPROTO_TCP, TCP_NODELAY, &sim, sizeof sim);
        const int servidor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un endereço{};
        endereço.sun_family = AF_UNIX;
        std::strncpy(endereço.sun_path, Destino.constData(), sizeof endereço.sun_path - 1);
        if (::connect(servidor, reinterpret_cast<sockaddr*>(&endereço), sizeof endereço) != 0) {
            ::close(servidor);
            ::close(cliente);
            return;
        }
        Par par;
        par.Cliente = cliente;
        par.Servidor = servidor;
        Pares.push_back(std::move(par));
    }

    // Reads what a side sent; false when it closed.
    bool Lê(int soquete, std::deque<Pedaço>& fila) {
        char área[65536];
        const ssize_t n = ::recv(soquete, área, sizeof área, 0);
        if (n <= 0) {
            fila.push_back({Relógio::now() + Atraso, QByteArray()});
            return false;
        }
        fila.push_back({Relógio::now() + Atraso, QByteArray(área, n)});
        return true;
    }

    // Passes on what is due; true when the pair is to be closed.
    static bool Entrega(std::deque<Pedaço>& fila, int destino, Relógio::time_point agora) {
        while (!fila.empty() && fila.front().Quando <= agora) {
            if (fila.front().Dados.isEmpty()) return true;
            Envia(destino, fila.front().Dados);
            fila.pop_front();
        }
        return false;
    }

    void Roda(Relógio::time_point fim) {
        // The kernel may otherwise wake the relay up to 50 µs late at every chunk.
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        while (!Parar && Relógio::now() < fim) {
            std::vector<pollfd> soquetes{{Escuta, POLLIN, 0}};
            for (const Par& p : Pares) {
                soquetes.push_back({p.Cliente, static_cast<short>(p.Fechando ? 0 : POLLIN), 0});
                soquetes.push_back({p.Servidor, static_cast<short>(p.Fechando ? 0 : POLLIN), 0});
            }
            // Wakes for the first chunk due, and at least every 50 ms to see whether to stop.
            auto espera = std::chrono::microseconds(50000);
            const auto agora = Relógio::now();
            for (const Par& p : Pares)
                for (const auto* fila : {&p.Para_Servidor, &p.Para_Cliente})
                    if (!fila->empty())
                        espera =
                            std::min(espera, std::max(std::chrono::microseconds(0),
                                                      std::chrono::duration_cast<std::chrono::microseconds>(
                                                          fila->front().Quando - agora)));
            const timespec limite{0, static_cast<long>(espera.count()) * 1000};
            if (::ppoll(soquetes.data(), soquetes.size(), &limite, nullptr) < 0) continue;
            if (soquetes[0].revents & POLLIN) Aceita();
            for (std::size_t i = 0; i < Pares.size() && 1 + 2 * i + 1 < soquetes.size(); ++i) {
                Par& p = Pares[i];
                if (p.Fechando) continue;
                if (soquetes[1 + 2 * i].revents & (POLLIN | POLLHUP | POLLERR)) {
                    if (!Lê(p.Cliente, p.Para_Servidor)) {
                        p.Fechando = true;
                    } else if (p.Servidor_Respondeu) {
                        ++Idas_Voltas;
                        p.Servidor_Respondeu = false;
                    }
                }
                if (soquetes[2 + 2 * i].revents & (POLLIN | POLLHUP | POLLERR)) {
                    p.Servidor_Respondeu = true;
                    if (!Lê(p.Servidor, p.Para_Cliente)) p.Fechando = true;
                }
            }
            const auto depois = Relógio::now();
            for (std::size_t i = 0; i < Pares.size();) {
                Par& p = Pares[i];
                const bool fecha =
                    Entrega(p.Para_Servidor, p.Servidor, depois) | Entrega(p.Para_Cliente, p.Cliente, depois);
                if (fecha) {
                    ::close(p.Cliente);
                    ::close(p.Servidor);
                    Pares.erase(Pares.begin() + static_cast<std::ptrdiff_t>(i));
                } else {
                    ++i;
                }
            }
        }
        for (const Par& p : Pares) {
            ::close(p.Cliente);
            ::close(p.Servidor);
        }
        Pares.clear();
    }

    QByteArray Destino;
    std::chrono::microseconds Atraso;
    int Escuta = -1;
    int Porta_ = 0;
    std::atomic<bool> Parar{false};
    std::atomic<long> Idas_Voltas{0};
    std::vector<Par> Pares;
    std::thread Laço;
};
