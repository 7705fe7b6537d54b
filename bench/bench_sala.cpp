// The room of phones under load: 5 competitors and 200 spectators on loopback, their WebSockets in a thread
// of their own as phones are devices of their own. Two figures:
// - from the host's new turn (the question on the host's screen) to the question on every phone: p50
//   and p99 over all phones and turns (goal: p99 under 50 ms);
// - the host's turn (an answer clicked, up to the next question on screen) with the 205 phones connected,
//   against the same turn with the room off (goal: a ratio of at most 1.2). The turn with the room off is
//   the baseline here: the store work in both is the same game's, measured against raw SQLite by
//   bench_rodada.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QThread>
#include <QWebSocket>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <mutex>
#include <vector>

#include "game/frmJogo.h"
#include "platform/Plataforma_Qt.h"
#include "sala/Servidor_Sala.h"
#include "sala/janelas/Painel_Sala.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
using Relógio = std::chrono::steady_clock;
constexpr int Competidores = 5;
constexpr int Espectadores = 200;
constexpr int Celulares = Competidores + Espectadores;

bool Espera(const std::function<bool()>& condição, int limite_ms = 20000) {
    const auto fim = Relógio::now() + std::chrono::milliseconds(limite_ms);
    while (!condição()) {
        if (Relógio::now() > fim) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

// The phones, in a thread of their own: each keeps the moment the question of each turn reached it.
class Plateia {
  public:
    explicit Plateia(const QString& endereço, const QString& código) {
        Linha.start();
        Dono.moveToThread(&Linha);
        QMetaObject::invokeMethod(&Dono, [this, endereço, código] {
            QString ws = endereço;
            ws.replace("http://", "ws://");
            for (int i = 0; i < Celulares; ++i) {
                auto* s = new QWebSocket(QString(), QWebSocketProtocol::VersionLatest, &Dono);
                QObject::connect(s, &QWebSocket::connected, s, [s, código, i] {
                    s->sendTextMessage(QJsonDocument(QJsonObject{{"tipo", "entra"}, {"codigo", código}})
                                           .toJson(QJsonDocument::Compact));
                    if (i < Competidores)
                        s->sendTextMessage(QJsonDocument(QJsonObject{{"tipo", "senta"}, {"assento", i + 1}})
                                               .toJson(QJsonDocument::Compact));
                });
                QObject::connect(s, &QWebSocket::textMessageReceived, s, [this](const QString& texto) {
                    const auto agora = Relógio::now();
                    if (texto.contains("\"tipo\":\"sessao\"")) ++Sessões;
                    if (!texto.contains("\"fase\":\"vez\"")) return;
                    // The turn's number, without parsing the whole message (a phone does that at its
                    // leisure).
                    const qsizetype onde = texto.lastIndexOf("\"vez\":") + 6;
                    qsizetype fim = onde;
                    while (fim < texto.size() && texto[fim].isDigit()) ++fim;
                    const qint64 vez = texto.mid(onde, fim - onde).toLongLong();
                    std::lock_guard trava(Guarda);
                    auto& chegada = Chegadas[vez];
                    chegada.push_back(agora);
                    ++Recebidas;
                });
                s->open(QUrl(ws + "sala"));
            }
        });
    }
    ~Plateia() {
        QMetaObject::invokeMethod(
            &Dono,
            [this] {
                qDeleteAll(Dono.children());
                Dono.moveToThread(QCoreApplication::instance()->thread());
            },
            Qt::BlockingQueuedConnection);
        Linha.quit();
        Linha.wait();
    }
    std::atomic<int> Sessões{0};
    std::atomic<long> Recebidas{0};
    std::mutex Guarda;
    std::map<qint64, std::vector<Relógio::time_point>> Chegadas;  // the first of each phone comes first

  private:
    QThread Linha;
    QObject Dono;
};

struct Jogo_Medido {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    std::unique_ptr<frmJogo> Janela;
    std::map<qint64, Relógio::time_point> Início_Vez;
    Contagem_Vez Vez_Vista;

    explicit Jogo_Medido(bool sala) {
        Instala_Programa_Para_Janelas();
        Cadastra_Perguntas(3000);
        Painel_Sala::Endereço_Forçado = QHostAddress(QHostAddress::LocalHost);
        Janela = std::make_unique<frmJogo>();
        Janela->show();
        // The moment each new question is on the host's screen, before anything is told to the phones.
        Janela->Ao_Mudar.insert(Janela->Ao_Mudar.begin(), [this] {
            // Counted as the room counts the turns.
            const bool em_vez = Janela->Jogo.Vez_Em_Andamento && !Janela->Jogo.Terminado;
            if (em_vez && !Vez_Vista.Em_Vez) Início_Vez[++Vez_Vista.Vez] = Relógio::now();
            Vez_Vista.Em_Vez = em_vez;
        });
        if (sala) Janela->cmdCelulares->click();
        for (int i = 1; i <= Competidores; ++i) {
            Janela->txtJogador[i]->setText(QString("Jogador %1").arg(QChar('A' + i - 1)));
            Janela->txtJogador_GotFocus(i);
            Janela->txtJogador_Validate(i);
            Janela->txtJogador_LostFocus(i);
        }
    }
    // The host clicks the right answer: the next competitor's question comes on screen.
    void Responde() {
        const Estado_Jogo& j = Janela->Jogo;
        for (int k = 0; k < 4; ++k)
            if (j.Respostas_Exibidas[k] == j.Pergunta_Atual.Resposta_Correta) {
                Janela->optResposta[k]->click();
                return;
            }
    }
};

double Percentil(std::vector<double> v, double p) {
    if (v.empty()) return 0;
    std::sort(v.begin(), v.end());
    return v[std::min(v.size() - 1, static_cast<size_t>(p * static_cast<double>(v.size())))];
}

void BM_Vez_Do_Anfitrião_Sala_Desligada(benchmark::State& estado) {
    Jogo_Medido jogo(false);
    for (auto _ : estado) {
        const auto início = Relógio::now();
        jogo.Responde();
        estado.SetIterationTime(std::chrono::duration<double>(Relógio::now() - início).count());
        QCoreApplication::processEvents();
    }
}

void BM_Vez_Do_Anfitrião_Sala_Ligada(benchmark::State& estado) {
    Jogo_Medido jogo(true);
    Servidor_Sala* sala = jogo.Janela->Sala_Ativa();
    if (!sala) {
        estado.SkipWithError("a sala não abriu");
        return;
    }
    Plateia plateia(sala->Endereço(), sala->Código());
    if (!Espera([&] {
            return plateia.Sessões >= Celulares + Competidores && sala->Celulares_Conectados() == Celulares;
        })) {
        estado.SkipWithError("os celulares não entraram todos");
        return;
    }
    const qint64 primeira = jogo.Vez_Vista.Vez + 1;
    for (auto _ : estado) {
        const long esperadas = plateia.Recebidas + Celulares;
        const auto início = Relógio::now();
        jogo.Responde();
        estado.SetIterationTime(std::chrono::duration<double>(Relógio::now() - início).count());
        // Untimed: every phone has the new question before the next turn.
        if (!Espera([&] { return plateia.Recebidas >= esperadas; })) {
            estado.SkipWithError("um celular não recebeu a pergunta");
            return;
        }
    }
    std::vector<double> atrasos;
    {
        std::lock_guard trava(plateia.Guarda);
        for (const auto& [vez, chegadas] : plateia.Chegadas) {
            if (vez < primeira || !jogo.Início_Vez.count(vez)) continue;
            for (const auto& c : chegadas)
                atrasos.push_back(
                    std::chrono::duration<double, std::milli>(c - jogo.Início_Vez[vez]).count());
        }
    }
    estado.counters["p50_ms"] = Percentil(atrasos, 0.50);
    estado.counters["p99_ms"] = Percentil(atrasos, 0.99);
    estado.counters["entregas"] = static_cast<double>(atrasos.size());
}
}  // namespace

BENCHMARK(BM_Vez_Do_Anfitrião_Sala_Desligada)
    ->UseManualTime()
    ->Iterations(100)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Vez_Do_Anfitrião_Sala_Ligada)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);

namespace {
class Relator_Sala : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& execuções) override {
        ConsoleReporter::ReportRuns(execuções);
        for (const Run& r : execuções) {
            if (r.run_name.function_name.find("Sala_Ligada") != std::string::npos)
                Ligada = r.GetAdjustedRealTime();
            if (r.run_name.function_name.find("Sala_Desligada") != std::string::npos)
                Desligada = r.GetAdjustedRealTime();
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        if (Ligada > 0 && Desligada > 0)
            std::printf("Razão vez do anfitrião com 205 celulares / sala desligada: %.2f\n",
                        Ligada / Desligada);
    }
    double Ligada = 0, Desligada = 0;
};
}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Plataforma_Qt::Fixa_Fuso_Horário();
    QApplication aplicação(argc, argv);
    benchmark::Initialize(&argc, argv);
    Relator_Sala relator;
    benchmark::RunSpecifiedBenchmarks(&relator);
    benchmark::Shutdown();
    return 0;
}
