// The games' statistics, timed.
//
// A turn of a game through the window (the answer, the pass of the turn, the next question with its
// history row), with its recording in Estatísticas.Mdb and without: the goal is a ratio of 1.1 at most.
// "Fim_Jogo_ms" is what the game's end then takes to add the game's turns to the summaries.
//
// The statistics window opened over 10,000, 100,000 and 1,000,000 recorded turns of 2,000 questions, 30
// competitors and 36 months, against raw SQLite reading the same summaries and computing the same figures
// in the same run; and the figures alone (no widgets) against the same raw work. The window's goal is a
// ratio of 1.5 at most and under 300 ms; "Memória_KB" is what the window's opening adds to the process,
// which should not grow with the turns.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QLineEdit>
#include <QMap>
#include <chrono>
#include <map>

#include "Banco_Puro.h"
#include "Medidas_Programa.h"
#include "Relator_Razão.h"
#include "common/Globais.h"
#include "game/frmJogo.h"
#include "statistics/Estatísticas.h"
#include "statistics/frmEstatísticas_Jogos.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"

namespace {
constexpr int Perguntas_Banco = 2000;
constexpr int Vezes_Por_Jogo = 120;  // four competitors, thirty turns each
const QDateTime Relógio_Final(QDate(2025, 12, 20), QTime(18, 0));

long Memória_Residente_KB() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& linha : status.readAll().split('\n'))
        if (linha.startsWith("VmRSS:")) return linha.mid(6).trimmed().split(' ').value(0).toLong();
    return 0;
}

void Perguntas_Puras(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, 'Certa', 'Errada 1', 'Errada 2', 'Errada 3', ?, 0, 0, '')");
    for (int i = 1; i <= Perguntas_Banco * 5; ++i) {
        const QByteArray texto = QString("Pergunta %1?").arg(i).toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, i % 2 ? "G" : "B", -1, SQLITE_STATIC);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

// ---------- a turn with and without recording ----------

// One game whose turns alternate, recording on and off, each timed on its own: both sides meet the disk
// in the same moods, which two runs one after the other do not (a turn spends most of its time waiting
// for the main database's sync).
void BM_Vez_Com_E_Sem_Gravação(benchmark::State& estado) {
    Pasta_Teste pasta;
    Plataforma_Sorteio_Real plataforma;
    Instala_Programa();
    Reinicia_Estado_Global();
    Prepara_Banco_Principal(Perguntas_Puras);
    Abre_Conexões_Programa();
    plataforma.Relógio = QDateTime(QDate(2025, 6, 1), QTime(9, 0));
    double segundos[2] = {0, 0};
    {
        frmJogo janela;
        janela.txtJogador[1]->setText("Ana");
        for (int i : {1, 2}) {
            janela.txtJogador_GotFocus(i);
            janela.txtJogador_Validate(i);
            janela.txtJogador_LostFocus(i);
        }
        for (auto _ : estado) {
            for (const bool gravando : {false, true}) {
                Estatísticas::Gravação_Ligada = gravando;
                plataforma.Relógio = plataforma.Relógio.addSecs(40);
                plataforma.Caixas.clear();
                // The value stays small: a competitor who never errs would double it past any number.
                janela.Jogo.Valor_Jogador[1] = 10;
                int certa = 0;
                while (certa < 4 &&
                       janela.Jogo.Respostas_Exibidas[certa] != janela.Jogo.Pergunta_Atual.Resposta_Correta)
                    ++certa;
                const auto início = std::chrono::steady_clock::now();
                janela.optResposta_Click(certa);
                segundos[gravando] +=
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - início).count();
            }
            if (janela.Jogo.Terminado) {
                estado.SkipWithError("o jogo terminou");
                break;
            }
        }
        // The game's end adds its turns to the summaries once; the window's close does it the same way.
        const auto início = std::chrono::steady_clock::now();
        Falha_Banco falha;
        if (!Estatísticas::Atualiza_Resumos(falha)) estado.SkipWithError(qPrintable(falha.Descrição));
        estado.counters["Fim_Jogo_ms"] =
            1000 * std::chrono::duration<double>(std::chrono::steady_clock::now() - início).count();
    }
    const double vezes = std::max<double>(1, static_cast<double>(estado.iterations()));
    estado.counters["Sem_ms"] = 1000 * segundos[0] / vezes;
    estado.counters["Com_ms"] = 1000 * segundos[1] / vezes;
    Estatísticas::Gravação_Ligada = true;
    Reinicia_Estado_Global();
}

// ---------- the window over many recorded turns ----------

// N turns of games spread over 36 months, written as the recorder writes them, and their summaries.
void Prepara_Jogadas(int turnos) {
    sqlite3* banco = Abre_Banco_Puro(Estatísticas::Caminho_Banco_Estatísticas());
    sqlite3_exec(banco, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    const int jogos = std::max(1, turnos / Vezes_Por_Jogo);
    const qint64 passo = (94608000LL / jogos);  // 36 months of seconds
    const QByteArray sql =
        QString(
            "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < %1), "
            "t AS (SELECT i, i / %2 AS g, 1672531200 + (i / %2) * %3 AS início, "
            "1 + (i * 7919) % %4 AS pergunta, (i * 31) % 10 AS r, (i * 13) % 11 AS a FROM n) "
            "INSERT INTO tblJogada (Data_Jogada, Dia, Início_Jogo, Código_Pergunta, Tipo, Jogador, Posição, "
            "Desfecho, Resposta_Escolhida, Número_Resposta, Ajuda, Número_Dado, Valor, Segundos) "
            "SELECT datetime(início + (i % %2) * 30, 'unixepoch'), "
            "CAST(strftime('%Y%m%d', início + (i % %2) * 30, 'unixepoch') AS INTEGER), "
            "datetime(início, 'unixepoch'), pergunta, CASE WHEN pergunta % 2 THEN 'G' ELSE 'B' END, "
            "'Jogador ' || ((g * 4 + i % 4) % 30), 1 + i % 4, "
            "CASE WHEN r < 6 THEN 'Certa' WHEN r < 8 THEN 'Errada' WHEN r = 8 THEN 'Pulada' ELSE 'Eliminado' "
            "END, "
            "'Resposta', CASE WHEN r < 6 THEN 0 WHEN r < 8 THEN 1 + i % 3 WHEN r = 8 THEN NULL ELSE 1 END, "
            "CASE WHEN r = 8 THEN 'Pulo' WHEN a = 0 THEN 'Dado' WHEN a = 1 THEN 'Apóstolos' WHEN a = 2 THEN "
            "'Deus' ELSE 'Nenhuma' END, CASE WHEN r <> 8 AND a = 0 THEN 1 + i % 3 ELSE 0 END, 10, 12.5 FROM "
            "t")
            .arg(turnos)
            .arg(Vezes_Por_Jogo)
            .arg(passo)
            .arg(Perguntas_Banco)
            .toUtf8();
    Executa_Puro(banco, "BEGIN");
    Executa_Puro(banco, sql.constData());
    Executa_Puro(
        banco,
        "INSERT INTO tblResumo_Mensal (Mês, Código_Pergunta, Tipo, Respostas, Acertos, Escolha_1, Escolha_2, "
        "Escolha_3, Pulos, Dado, Dado_1, Dado_2, Dado_3, Apóstolos, Deus) "
        "SELECT Dia / 100, Código_Pergunta, MIN(Tipo), SUM(Número_Resposta IS NOT NULL), "
        "SUM(Desfecho = 'Certa'), SUM(Número_Resposta = 1), SUM(Número_Resposta = 2), SUM(Número_Resposta = "
        "3), "
        "SUM(Desfecho = 'Pulada'), SUM(Ajuda = 'Dado'), SUM(Ajuda = 'Dado' AND Número_Dado = 1), "
        "SUM(Ajuda = 'Dado' AND Número_Dado = 2), SUM(Ajuda = 'Dado' AND Número_Dado = 3), "
        "SUM(Ajuda = 'Apóstolos'), SUM(Ajuda = 'Deus') FROM tblJogada GROUP BY Dia / 100, Código_Pergunta");
    Executa_Puro(
        banco,
        "INSERT INTO tblResumo_Jogador (Início_Jogo, Mês, Posição, Jogador, Pontos, Respostas, Acertos) "
        "SELECT Início_Jogo, CAST(strftime('%Y%m', Início_Jogo) AS INTEGER), Posição, MIN(Jogador), "
        "SUM(CASE WHEN Desfecho = 'Certa' THEN Valor ELSE 0 END), SUM(Número_Resposta IS NOT NULL), "
        "SUM(Desfecho = 'Certa') FROM tblJogada GROUP BY Início_Jogo, Posição");
    // The summaries hold every turn, as after the games' ends.
    Executa_Puro(banco,
                 "UPDATE tblResumo_Marca SET Última_Jogada = (SELECT MAX(Código_Jogada) FROM tblJogada)");
    Executa_Puro(banco, "COMMIT");
    Executa_Puro(banco, "PRAGMA wal_checkpoint(TRUNCATE)");
    sqlite3_close(banco);
}

struct Instalação_Estatísticas {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    explicit Instalação_Estatísticas(int turnos) {
        Instala_Programa();
        Reinicia_Estado_Global();
        Prepara_Banco_Principal(Perguntas_Puras);
        Prepara_Jogadas(turnos);
        Abre_Conexões_Programa();
        Plataforma.Relógio = Relógio_Final;
        Plataforma.Caixas.clear();
    }
};

// What both sides must find, to be sure they did the same work.
std::map<int, std::pair<int, int>> Conferência;

void Confere(benchmark::State& estado, int turnos, int respostas, int perguntas) {
    auto [it, nova] = Conferência.try_emplace(turnos, respostas, perguntas);
    if (!nova && it->second != std::make_pair(respostas, perguntas))
        estado.SkipWithError("os dois lados não chegaram aos mesmos números");
    estado.counters["Respostas"] = respostas;
    estado.counters["Perguntas"] = perguntas;
}

void BM_Janela_Pelo_Programa(benchmark::State& estado, int turnos) {
    Instalação_Estatísticas instalação(turnos);
    int respostas = 0, perguntas = 0;
    long memória = 0;
    // The process's first window loads fonts, styles and the charts' themes once and keeps them: neither
    // time nor memory that grows with the turns, so it is paid before the measure.
    { frmEstatísticas_Jogos primeira; }
    for (auto _ : estado) {
        const long antes = Memória_Residente_KB();
        frmEstatísticas_Jogos janela;
        memória = std::max(memória, Memória_Residente_KB() - antes);
        respostas = janela.Números.Respostas;
        perguntas = static_cast<int>(janela.Números.Perguntas.size());
        if (!instalação.Plataforma.Caixas.isEmpty()) {
            estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
            break;
        }
    }
    estado.counters["Memória_KB"] = static_cast<double>(memória);
    Confere(estado, turnos, respostas, perguntas);
    Reinicia_Estado_Global();
}

void BM_Figuras_Pelo_Programa(benchmark::State& estado, int turnos) {
    Instalação_Estatísticas instalação(turnos);
    Estatísticas::Filtro_Estatísticas filtro;
    filtro.Mês_Final = 202512;
    Estatísticas::Números_Estatísticas n;
    for (auto _ : estado) {
        Falha_Banco falha;
        if (!Estatísticas::Calcula(filtro, n, falha)) {
            estado.SkipWithError(falha.Descrição.toUtf8().constData());
            break;
        }
    }
    Confere(estado, turnos, n.Respostas, static_cast<int>(n.Perguntas.size()));
    Reinicia_Estado_Global();
}

// The same figures by hand: the same statements on the summaries, the same sums by question, month, kind
// and help, the same ranking of the questions, the competitors' last games, and the texts looked up.
struct Pergunta_Pura {
    int Código = 0;
    QString Tipo, Texto;
    int Respostas = 0, Acertos = 0, Pulos = 0;
    int Incorretas[3] = {0, 0, 0};
};

void BM_Janela_SQLite_Puro(benchmark::State& estado, int turnos) {
    Instalação_Estatísticas instalação(turnos);
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Estatísticas::Caminho_Banco_Estatísticas());
    sqlite3* principal = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* primeiro = Prepara_Puro(banco, "SELECT MIN(Mês) FROM tblResumo_Mensal");
    sqlite3_stmt* mensal = Prepara_Puro(
        banco,
        "SELECT Código_Pergunta, Tipo, Respostas, Acertos, Escolha_1, Escolha_2, Escolha_3, Pulos, Dado, "
        "Dado_1, "
        "Dado_2, Dado_3, Apóstolos, Deus, Mês FROM tblResumo_Mensal WHERE Mês >= ? AND Mês <= ?");
    sqlite3_stmt* jogos =
        Prepara_Puro(banco,
                     "SELECT Mês, COUNT(DISTINCT Início_Jogo) FROM tblResumo_Jogador WHERE Mês "
                     ">= ? AND Mês <= ? GROUP BY Mês");
    sqlite3_stmt* competidores =
        Prepara_Puro(banco,
                     "SELECT Jogador, Início_Jogo, Pontos FROM tblResumo_Jogador WHERE "
                     "Mês >= ? AND Mês <= ? ORDER BY Jogador, Início_Jogo");
    sqlite3_stmt* texto =
        Prepara_Puro(principal, "SELECT Pergunta FROM tblPergunta WHERE Código_Pergunta = ?");
    int respostas_total = 0, perguntas_total = 0;
    for (auto _ : estado) {
        sqlite3_step(primeiro);
        const int início = sqlite3_column_int(primeiro, 0);
        sqlite3_reset(primeiro);
        QHash<int, Pergunta_Pura> perguntas;
        QMap<int, std::pair<int, int>> meses;
        QMap<QString, std::pair<int, int>> tipos;
        int ajudas[4] = {0, 0, 0, 0}, faces[4] = {0, 0, 0, 0}, respostas = 0;
        for (sqlite3_stmt* c : {mensal, jogos, competidores}) {
            sqlite3_bind_int(c, 1, início);
            sqlite3_bind_int(c, 2, 202512);
        }
        while (sqlite3_step(mensal) == SQLITE_ROW) {
            const int código = sqlite3_column_int(mensal, 0);
            Pergunta_Pura& p = perguntas[código];
            p.Código = código;
            const QString tipo =
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(mensal, 1)));
            if (p.Tipo.isEmpty()) p.Tipo = tipo;
            const int r = sqlite3_column_int(mensal, 2), a = sqlite3_column_int(mensal, 3);
            p.Respostas += r;
            p.Acertos += a;
            for (int k = 0; k < 3; ++k) p.Incorretas[k] += sqlite3_column_int(mensal, 4 + k);
            p.Pulos += sqlite3_column_int(mensal, 7);
            tipos[tipo].first += r;
            tipos[tipo].second += a;
            ajudas[0] += sqlite3_column_int(mensal, 7);
            ajudas[1] += sqlite3_column_int(mensal, 8);
            for (int f = 1; f <= 3; ++f) faces[f] += sqlite3_column_int(mensal, 8 + f);
            ajudas[2] += sqlite3_column_int(mensal, 12);
            ajudas[3] += sqlite3_column_int(mensal, 13);
            meses[sqlite3_column_int(mensal, 14)].second += r;
            respostas += r;
        }
        sqlite3_reset(mensal);
        while (sqlite3_step(jogos) == SQLITE_ROW)
            meses[sqlite3_column_int(jogos, 0)].first = sqlite3_column_int(jogos, 1);
        sqlite3_reset(jogos);
        struct Competidor {
            QString Nome;
            int Jogos = 0;
            double Pontos = 0;
            QVector<QPair<QDateTime, double>> Últimos;
        };
        QVector<Competidor> lista;
        while (sqlite3_step(competidores) == SQLITE_ROW) {
            const QString nome =
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(competidores, 0)));
            if (lista.isEmpty() || lista.last().Nome.compare(nome, Qt::CaseInsensitive) != 0)
                lista.append({nome});
            Competidor& c = lista.last();
            const double pontos = sqlite3_column_double(competidores, 2);
            ++c.Jogos;
            c.Pontos += pontos;
            c.Últimos.append({Data_Do_Banco(QString::fromUtf8(
                                  reinterpret_cast<const char*>(sqlite3_column_text(competidores, 1)))),
                              pontos});
            if (c.Últimos.size() > Estatísticas::Jogos_Por_Competidor) c.Últimos.removeFirst();
        }
        sqlite3_reset(competidores);
        std::stable_sort(lista.begin(), lista.end(),
                         [](const Competidor& a, const Competidor& b) { return a.Jogos > b.Jogos; });
        if (lista.size() > Estatísticas::Competidores_No_Gráfico)
            lista.resize(Estatísticas::Competidores_No_Gráfico);
        QVector<Pergunta_Pura> ordenadas = perguntas.values().toVector();
        std::sort(ordenadas.begin(), ordenadas.end(),
                  [](const Pergunta_Pura& a, const Pergunta_Pura& b) { return a.Código < b.Código; });
        for (Pergunta_Pura& p : ordenadas) {
            sqlite3_bind_int(texto, 1, p.Código);
            if (sqlite3_step(texto) == SQLITE_ROW)
                p.Texto = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(texto, 0)));
            sqlite3_reset(texto);
        }
        QVector<Pergunta_Pura> respondidas, suspeitas;
        for (const Pergunta_Pura& p : ordenadas) {
            if (p.Respostas >= 3) respondidas.append(p);
            if ((p.Respostas >= 5 && p.Acertos == 0) ||
                std::max({p.Incorretas[0], p.Incorretas[1], p.Incorretas[2]}) > p.Acertos)
                suspeitas.append(p);
        }
        auto ordem = [](const Pergunta_Pura& a, const Pergunta_Pura& b) {
            return a.Acertos * qint64(b.Respostas) < b.Acertos * qint64(a.Respostas);
        };
        QVector<Pergunta_Pura> difíceis = respondidas, fáceis = respondidas;
        std::sort(difíceis.begin(), difíceis.end(), ordem);
        std::sort(fáceis.begin(), fáceis.end(), [&](const auto& a, const auto& b) { return ordem(b, a); });
        difíceis.resize(std::min<qsizetype>(difíceis.size(), 20));
        fáceis.resize(std::min<qsizetype>(fáceis.size(), 20));
        benchmark::DoNotOptimize(difíceis.data());
        benchmark::DoNotOptimize(fáceis.data());
        benchmark::DoNotOptimize(ajudas);
        benchmark::DoNotOptimize(faces);
        respostas_total = respostas;
        perguntas_total = static_cast<int>(ordenadas.size());
    }
    for (sqlite3_stmt* c : {primeiro, mensal, jogos, competidores, texto}) sqlite3_finalize(c);
    sqlite3_close(banco);
    sqlite3_close(principal);
    Confere(estado, turnos, respostas_total, perguntas_total);
}

// Prints, besides the usual lines, the ratios this file is about.
class Relator_Estatísticas : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& execuções) override {
        ConsoleReporter::ReportRuns(execuções);
        for (const Run& r : execuções) {
            Tempos[r.run_name.function_name] = r.GetAdjustedRealTime();
            if (r.counters.count("Com_ms")) Vez = {r.counters.at("Com_ms"), r.counters.at("Sem_ms")};
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        auto razão = [this](const std::string& a, const std::string& b, const char* texto) {
            if (Tempos.count(a) && Tempos.count(b) && Tempos[b] > 0)
                std::printf("%s: %.2f\n", texto, Tempos[a] / Tempos[b]);
        };
        if (Vez.second > 0)
            std::printf("Razão vez com gravação / sem gravação: %.2f (%.3f ms / %.3f ms)\n",
                        Vez.first / Vez.second, Vez.first, Vez.second);
        for (const int n : {10000, 100000, 1000000}) {
            const std::string s = std::to_string(n);
            razão("BM_Janela_" + s + "_Pelo_Programa", "BM_Janela_" + s + "_SQLite_Puro",
                  ("Razão abertura da janela / SQLite puro (" + s + " vezes)").c_str());
            razão("BM_Figuras_" + s + "_Pelo_Programa", "BM_Janela_" + s + "_SQLite_Puro",
                  ("Razão números sem gráficos / SQLite puro (" + s + " vezes)").c_str());
        }
    }

  private:
    std::map<std::string, double> Tempos;
    std::pair<double, double> Vez = {0, 0};
};
}  // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("BM_Vez_Com_E_Sem_Gravação", BM_Vez_Com_E_Sem_Gravação)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(600);
    for (const int turnos : {10000, 100000, 1000000}) {
        const std::string s = std::to_string(turnos);
        benchmark::RegisterBenchmark(("BM_Janela_" + s + "_SQLite_Puro").c_str(), BM_Janela_SQLite_Puro,
                                     turnos)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(10);
        benchmark::RegisterBenchmark(("BM_Janela_" + s + "_Pelo_Programa").c_str(), BM_Janela_Pelo_Programa,
                                     turnos)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(10);
        benchmark::RegisterBenchmark(("BM_Figuras_" + s + "_Pelo_Programa").c_str(), BM_Figuras_Pelo_Programa,
                                     turnos)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(10);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Plataforma_Qt::Fixa_Fuso_Horário();
    QApplication aplicação(argc, argv);
    benchmark::Initialize(&argc, argv);
    Relator_Estatísticas relator;
    benchmark::RunSpecifiedBenchmarks(&relator);
    benchmark::Shutdown();
    return 0;
}
