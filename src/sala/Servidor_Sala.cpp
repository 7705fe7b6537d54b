#include "sala/Servidor_Sala.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHttpServer>
#include <QHttpServerRequest>
#include <QHttpServerResponse>
#include <QNetworkInterface>
#include <QPointer>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QWebSocket>
#include <unistd.h>

#include <utility>
#include <vector>

namespace {
constexpr int Rajada_Pedidos = 20;            // requests a phone may send at once
constexpr double Pedidos_Por_Segundo = 10;    // and then per second
constexpr int Excessos_Tolerados = 100;       // requests over the rate before the phone is cut off
constexpr int Códigos_Errados_Tolerados = 5;  // wrong room codes before the phone is cut off
constexpr int Prazo_Para_Entrar_ms = 60000;   // a connection that never joins is closed after this
// Page loads and WebSockets together: the phones, plus room for pages being fetched.
constexpr int Máximo_Conexões_Tcp = Máximo_Celulares + 60;

// A TCP server that refuses connections beyond a bound, so that no sender can exhaust the program.
class Servidor_Tcp_Limitado : public QTcpServer {
  public:
    using QTcpServer::QTcpServer;
    int Abertas = 0;

  protected:
    void incomingConnection(qintptr descritor) override {
        if (Abertas >= Máximo_Conexões_Tcp) {
            ::close(static_cast<int>(descritor));
            return;
        }
        auto* socket = new QTcpSocket(this);
        if (!socket->setSocketDescriptor(descritor)) {
            delete socket;
            return;
        }
        // Small messages that must arrive now: no waiting to fill a packet.
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        ++Abertas;
        QPointer<Servidor_Tcp_Limitado> eu(this);
        QObject::connect(socket, &QObject::destroyed, [eu] {
            if (eu) --eu->Abertas;
        });
        addPendingConnection(socket);
    }
};

QByteArray Recurso(const QString& nome) {
    QFile arquivo(":/sala/" + nome);
    if (!arquivo.open(QIODevice::ReadOnly)) return {};
    return arquivo.readAll();
}

QString Novo_Token() {
    std::array<quint32, 4> bits;
    QRandomGenerator::system()->fillRange(bits.data(), bits.size());
    QString token;
    for (quint32 b : bits) token += QString("%1").arg(b, 8, 16, QChar('0'));
    return token;
}

bool Endereço_Privado(const QHostAddress& a) {
    return a.isInSubnet(QHostAddress("10.0.0.0"), 8) || a.isInSubnet(QHostAddress("172.16.0.0"), 12) ||
           a.isInSubnet(QHostAddress("192.168.0.0"), 16);
}
}  // namespace

struct Servidor_Sala::Dados {
    struct Conexão {
        QWebSocket* Socket = nullptr;
        bool Admitido = false;
        int Assento = 0;
        int Códigos_Errados = 0;
        double Fichas = Rajada_Pedidos;
        qint64 Última_Ficha = 0;
        int Excessos = 0;
    };

    QObject Contexto;  // every connection of ours goes through it, and dies with it
    std::unique_ptr<QHttpServer> Http;
    QPointer<Servidor_Tcp_Limitado> Tcp;
    QHostAddress Endereço_Escuta;
    quint16 Porta = 0;
    QByteArray Página, Roteiro, Estilo;
    std::vector<std::unique_ptr<Conexão>> Conexões;
    std::array<QString, Máximo_Jogadores + 1> Tokens;
    std::array<Conexão*, Máximo_Jogadores + 1> Donos{};
    QString Estado_Atual;   // the last "estado" message, sent to every phone that joins
    QStringList Pendentes;  // "estado" messages not yet handed to the phones, in order
    bool Envio_Marcado = false;
    QElapsedTimer Relógio;

    Conexão* Procura(QWebSocket* socket) {
        for (auto& c : Conexões)
            if (c->Socket == socket) return c.get();
        return nullptr;
    }
    std::array<bool, Máximo_Jogadores + 1> Ocupados() const {
        std::array<bool, Máximo_Jogadores + 1> o{};
        for (int i = 1; i <= Máximo_Jogadores; ++i) o[i] = !Tokens[i].isEmpty();
        return o;
    }
};

Servidor_Sala::Servidor_Sala(const QString& código) : D(std::make_unique<Dados>()), Código_Sala(código) {
    D->Relógio.start();
}

Servidor_Sala::~Servidor_Sala() {
    Ao_Mudar_Celulares = nullptr;
    Ao_Agir = nullptr;
    Para();
}

QString Servidor_Sala::Sorteia_Código() {
    return QString("%1").arg(Acaso().Sorteia(1000000), Tamanho_Código_Sala, 10, QChar('0'));
}

QHostAddress Servidor_Sala::Endereço_Rede_Local() {
    QHostAddress melhor, outro;
    int nota_melhor = -1;
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        const auto sinais = interface.flags();
        if (!sinais.testFlag(QNetworkInterface::IsUp) || !sinais.testFlag(QNetworkInterface::IsRunning) ||
            sinais.testFlag(QNetworkInterface::IsLoopBack))
            continue;
        for (const QNetworkAddressEntry& entrada : interface.addressEntries()) {
            const QHostAddress a = entrada.ip();
            if (a.protocol() != QHostAddress::IPv4Protocol || a.isLoopback() ||
                a.isInSubnet(QHostAddress("169.254.0.0"), 16))
                continue;
            if (!Endereço_Privado(a)) {
                if (outro.isNull()) outro = a;
                continue;
            }
            // A Wi-Fi or a cable before a virtual bridge of containers or machines.
            int nota = 1;
            if (interface.type() == QNetworkInterface::Wifi) nota = 3;
            if (interface.type() == QNetworkInterface::Ethernet) nota = 2;
            if (interface.type() == QNetworkInterface::Virtual) nota = 0;
            if (nota > nota_melhor) {
                nota_melhor = nota;
                melhor = a;
            }
        }
    }
    return melhor.isNull() ? outro : melhor;
}

bool Servidor_Sala::Inicia(const QHostAddress& endereço, quint16 porta) {
    Para();
    D->Página = Recurso("index.html");
    D->Roteiro = Recurso("sala.js");
    D->Estilo = Recurso("sala.css");
    D->Http = std::make_unique<QHttpServer>();
    QHttpServer& http = *D->Http;

    const auto arquivo = [](const QByteArray& tipo, const QByteArray& conteúdo) {
        QHttpServerResponse resposta(tipo, conteúdo);
        resposta.addHeader("Cache-Control", "no-store");
        resposta.addHeader("X-Content-Type-Options", "nosniff");
        resposta.addHeader("Content-Security-Policy",
                           "default-src 'self'; connect-src 'self' ws:; img-src 'self' data:; "
                           "frame-ancestors 'none'");
        resposta.addHeader("Connection", "close");
        return resposta;
    };
    Dados* d = D.get();
    http.route("/", QHttpServerRequest::Method::Get,
               [d, arquivo] { return arquivo("text/html; charset=utf-8", d->Página); });
    http.route("/sala.js", QHttpServerRequest::Method::Get,
               [d, arquivo] { return arquivo("text/javascript; charset=utf-8", d->Roteiro); });
    http.route("/sala.css", QHttpServerRequest::Method::Get,
               [d, arquivo] { return arquivo("text/css; charset=utf-8", d->Estilo); });
    // The room's socket. Qt hands a WebSocket over only after a route has taken the request without writing
    // anything; any other request of this path is not found.
    http.route("/sala", [](const QHttpServerRequest& pedido, QHttpServerResponder&& responder) {
        if (pedido.value("upgrade").compare("websocket", Qt::CaseInsensitive) != 0)
            responder.write("Página não encontrada.", "text/plain; charset=utf-8",
                            QHttpServerResponder::StatusCode::NotFound);
    });
    http.setMissingHandler([](const QHttpServerRequest&, QHttpServerResponder&& responder) {
        responder.write("Página não encontrada.", "text/plain; charset=utf-8",
                        QHttpServerResponder::StatusCode::NotFound);
    });

    auto* tcp = new Servidor_Tcp_Limitado;
    bool escutando = false;
    for (int tentativa = 0; tentativa < 10 && !escutando && porta != 0; ++tentativa)
        escutando = tcp->listen(endereço, static_cast<quint16>(porta + tentativa));
    if (!escutando) escutando = tcp->listen(endereço, 0);
    if (!escutando) {
        delete tcp;
        D->Http.reset();
        return false;
    }
    http.bind(tcp);  // the HTTP server takes the TCP server as its child
    D->Tcp = tcp;
    D->Endereço_Escuta = endereço;
    D->Porta = tcp->serverPort();

    QObject::connect(&http, &QAbstractHttpServer::newWebSocketConnection, &D->Contexto, [this] {
        while (D->Http && D->Http->hasPendingWebSocketConnections()) {
            std::unique_ptr<QWebSocket> socket = D->Http->nextPendingWebSocketConnection();
            if (!socket) continue;
            // Only our own page opens the room's socket; a page of another site is turned away.
            const QString origem = socket->origin();
            const QString nossa = Endereço().chopped(1);
            if (static_cast<int>(D->Conexões.size()) >= Máximo_Celulares ||
                (!origem.isEmpty() && origem != nossa)) {
                socket->close(QWebSocketProtocol::CloseCodePolicyViolated, "Sala cheia.");
                socket.release()->deleteLater();
                continue;
            }
            socket->setMaxAllowedIncomingFrameSize(Tamanho_Máximo_Pedido);
            socket->setMaxAllowedIncomingMessageSize(Tamanho_Máximo_Pedido);
            auto conexão = std::make_unique<Dados::Conexão>();
            conexão->Socket = socket.release();
            conexão->Última_Ficha = D->Relógio.elapsed();
            QWebSocket* s = conexão->Socket;
            D->Conexões.push_back(std::move(conexão));
            QObject::connect(s, &QWebSocket::textMessageReceived, &D->Contexto,
                             [this, s](const QString& texto) { Recebe(s, texto.toUtf8()); });
            // A phone's page speaks only text: anything else is hostile.
            QObject::connect(s, &QWebSocket::binaryMessageReceived, &D->Contexto,
                             [this, s](const QByteArray&) { Desliga(s, true); });
            QObject::connect(s, &QWebSocket::disconnected, &D->Contexto, [this, s] { Desliga(s, false); });
            QTimer::singleShot(Prazo_Para_Entrar_ms, &D->Contexto, [this, s] {
                Dados::Conexão* c = D->Procura(s);
                if (c && !c->Admitido) Desliga(s, true);
            });
        }
    });
    return true;
}

void Servidor_Sala::Para() {
    if (!D->Http) return;
    // Phones first, then the servers that carry them.
    for (auto& c : D->Conexões) {
        QObject::disconnect(c->Socket, nullptr, &D->Contexto, nullptr);
        c->Socket->abort();
        delete c->Socket;
    }
    D->Conexões.clear();
    D->Donos = {};
    D->Pendentes.clear();
    D->Http.reset();
    D->Porta = 0;
}

bool Servidor_Sala::Ativo() const {
    return D->Http != nullptr;
}

quint16 Servidor_Sala::Porta() const {
    return D->Porta;
}

QString Servidor_Sala::Endereço() const {
    if (!Ativo()) return {};
    QHostAddress a = D->Endereço_Escuta;
    const QString máquina =
        a.protocol() == QHostAddress::IPv6Protocol ? "[" + a.toString() + "]" : a.toString();
    return QString("http://%1:%2/").arg(máquina).arg(D->Porta);
}

void Servidor_Sala::Publica(const Retrato_Sala& retrato) {
    Último = retrato;
    D->Estado_Atual = QString::fromUtf8(Escreve_Estado(Último, D->Ocupados()));
    // The phones get every picture in order, from the event loop: the host's screen never waits on them.
    D->Pendentes << D->Estado_Atual;
    if (D->Envio_Marcado) return;
    D->Envio_Marcado = true;
    QTimer::singleShot(0, &D->Contexto, [this] {
        D->Envio_Marcado = false;
        const QStringList mensagens = std::exchange(D->Pendentes, {});
        for (const QString& m : mensagens)
            for (auto& c : D->Conexões)
                if (c->Admitido) c->Socket->sendTextMessage(m);
    });
}

bool Servidor_Sala::Assento_Com_Celular(int assento) const {
    return assento >= 1 && assento <= Máximo_Jogadores && !D->Tokens[assento].isEmpty();
}

int Servidor_Sala::Celulares_Conectados() const {
    int n = 0;
    for (auto& c : D->Conexões) n += c->Admitido ? 1 : 0;
    return n;
}

void Servidor_Sala::Libera_Assento(int assento) {
    if (assento < 1 || assento > Máximo_Jogadores) return;
    Dados::Conexão* dono = D->Donos[assento];
    D->Tokens[assento].clear();
    D->Donos[assento] = nullptr;
    if (dono) {
        dono->Assento = 0;
        dono->Socket->sendTextMessage(QString::fromUtf8(Escreve_Sessão(0, {}, Código_Sala)));
        dono->Socket->sendTextMessage(
            QString::fromUtf8(Escreve_Erro("O anfitrião liberou o seu lugar. Você agora assiste ao jogo.")));
    }
    Publica(Último);
    if (Ao_Mudar_Celulares) Ao_Mudar_Celulares();
}

void Servidor_Sala::Solta_Assento(int assento) {
    if (assento < 1 || assento > Máximo_Jogadores) return;
    if (D->Donos[assento]) D->Donos[assento]->Assento = 0;
    D->Donos[assento] = nullptr;
    D->Tokens[assento].clear();
}

void Servidor_Sala::Desliga(QWebSocket* socket, bool cortar) {
    auto posição = std::find_if(D->Conexões.begin(), D->Conexões.end(),
                                [socket](const auto& c) { return c->Socket == socket; });
    if (posição == D->Conexões.end()) return;
    // A phone that goes away keeps its seat: its token brings it back.
    const int assento = (*posição)->Assento;
    if (assento >= 1 && D->Donos[assento] == posição->get()) D->Donos[assento] = nullptr;
    D->Conexões.erase(posição);
    QObject::disconnect(socket, nullptr, &D->Contexto, nullptr);
    if (cortar) socket->abort();
    socket->deleteLater();
    if (Ao_Mudar_Celulares) Ao_Mudar_Celulares();
}

void Servidor_Sala::Recebe(QWebSocket* socket, const QByteArray& texto) {
    Dados::Conexão* c = D->Procura(socket);
    if (!c) return;
    // A bounded rate per phone: a burst, then a steady pace; one that keeps flooding is cut off.
    const qint64 agora = D->Relógio.elapsed();
    c->Fichas = std::min<double>(Rajada_Pedidos, c->Fichas + static_cast<double>(agora - c->Última_Ficha) *
                                                                 Pedidos_Por_Segundo / 1000);
    c->Última_Ficha = agora;
    if (c->Fichas < 1) {
        if (++c->Excessos > Excessos_Tolerados) Desliga(socket, true);
        return;
    }
    c->Fichas -= 1;

    const std::optional<Pedido_Celular> pedido = Lê_Pedido(texto);
    if (!pedido) return;
    const auto envia = [socket](const QByteArray& mensagem) {
        socket->sendTextMessage(QString::fromUtf8(mensagem));
    };
    const auto erro = [&envia](const QString& texto) { envia(Escreve_Erro(texto)); };

    if (pedido->Tipo == Tipo_Pedido::Entra || pedido->Tipo == Tipo_Pedido::Retoma) {
        if (pedido->Código != Código_Sala) {
            erro("Código da sala incorreto. Confira os 6 números mostrados na tela da sala.");
            if (++c->Códigos_Errados >= Códigos_Errados_Tolerados) Desliga(socket, true);
            return;
        }
        c->Admitido = true;
        if (pedido->Tipo == Tipo_Pedido::Retoma) {
            int assento = 0;
            for (int i = 1; i <= Máximo_Jogadores; ++i)
                if (!D->Tokens[i].isEmpty() && D->Tokens[i] == pedido->Token) assento = i;
            if (assento == 0) {
                erro("O seu lugar foi liberado. Escolha um lugar ou assista ao jogo.");
            } else if (c->Assento != assento) {
                // The same phone on a new connection: the old one, if still open, only watches now.
                Dados::Conexão* antigo = D->Donos[assento];
                if (antigo && antigo != c) {
                    antigo->Assento = 0;
                    antigo->Socket->sendTextMessage(QString::fromUtf8(Escreve_Sessão(0, {}, Código_Sala)));
                }
                if (c->Assento != 0) Solta_Assento(c->Assento);
                D->Donos[assento] = c;
                c->Assento = assento;
            }
        }
        envia(Escreve_Sessão(c->Assento, c->Assento ? D->Tokens[c->Assento] : QString(), Código_Sala));
        if (D->Estado_Atual.isEmpty())
            D->Estado_Atual = QString::fromUtf8(Escreve_Estado(Último, D->Ocupados()));
        socket->sendTextMessage(D->Estado_Atual);
        if (Ao_Mudar_Celulares) Ao_Mudar_Celulares();
        return;
    }
    if (!c->Admitido) return;

    switch (pedido->Tipo) {
        case Tipo_Pedido::Senta: {
            const int assento = pedido->Assento;
            if (assento > Último.Jogadores.size()) {
                erro("Este lugar não existe neste jogo.");
                return;
            }
            if (!D->Tokens[assento].isEmpty()) {
                if (D->Donos[assento] == c)
                    envia(Escreve_Sessão(assento, D->Tokens[assento], Código_Sala));
                else
                    erro(
                        "Este lugar já está com outro celular. Se for o seu, peça ao anfitrião para "
                        "liberá-lo.");
                return;
            }
            if (c->Assento != 0) Solta_Assento(c->Assento);
            D->Tokens[assento] = Novo_Token();
            D->Donos[assento] = c;
            c->Assento = assento;
            envia(Escreve_Sessão(assento, D->Tokens[assento], Código_Sala));
            Publica(Último);
            if (Ao_Mudar_Celulares) Ao_Mudar_Celulares();
            return;
        }
        case Tipo_Pedido::Levanta:
            if (c->Assento == 0) return;
            Solta_Assento(c->Assento);
            envia(Escreve_Sessão(0, {}, Código_Sala));
            Publica(Último);
            if (Ao_Mudar_Celulares) Ao_Mudar_Celulares();
            return;
        case Tipo_Pedido::Responde:
        case Tipo_Pedido::Ajuda: {
            if (c->Assento == 0) {
                erro("Escolha o seu lugar para jogar; agora você só assiste.");
                return;
            }
            if (c->Assento != Último.Jogador ||
                (Último.Fase != Fase_Sala::Vez && Último.Fase != Fase_Sala::Dado)) {
                erro("Agora não é a sua vez.");
                return;
            }
            if (Último.Fase == Fase_Sala::Dado) {
                erro("Aguarde: o dado está rolando.");
                return;
            }
            if (pedido->Vez != Último.Vez) return;  // a tap on a question that is gone
            const bool ajuda = pedido->Tipo == Tipo_Pedido::Ajuda;
            if (ajuda ? !Último.Ajudas[pedido->Índice] : Último.Respostas[pedido->Índice].isEmpty()) {
                erro(ajuda ? "Esta ajuda não está disponível agora." : "Esta resposta foi eliminada.");
                return;
            }
            const Ação_Celular ação{ajuda, pedido->Índice, c->Assento, pedido->Vez};
            // The game runs from the event loop, not inside the socket's own handler.
            QTimer::singleShot(0, &D->Contexto, [this, ação] {
                if (Ao_Agir) Ao_Agir(ação);
            });
            return;
        }
        default:
            return;
    }
}
