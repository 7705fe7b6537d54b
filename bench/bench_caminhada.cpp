// A hall of fame of 1,000,000 rows: the slot opened on idxPontuação and walked to the end reading each
// row's player and points, and the uncached Lastrec of the table, each against the raw SQLite work.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QString>
#include <cstdio>

#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Banco_Puro.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Linhas = 1000000;

// Points in no particular order against the rowid, with repeats, so that the index order is its own.
double Pontos_Da_Linha(int i) {
    return static_cast<double>((static_cast<unsigned>(i) * 2654435761u) % 250007u) * 10.0;
}

void Prepara_Banco(sqlite3* banco) {
    static const char* const nomes[] = {"Ana",   "Bruno",   "Carla", "Davi",  "Elisa", "Fábio", "Gilda",
                                        "Hélio", "Iracema", "João",  "Lúcia", "Mário", "Núbia", "Otávio"};
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(banco, "INSERT INTO tblPontuação (Jogador, Pontuação) VALUES (?, ?)");
    char jogador[64];
    for (int i = 1; i <= Linhas; ++i) {
        std::snprintf(jogador, sizeof jogador, "%02d/%02d/%04d %s %d", 1 + i % 28, 1 + (i / 28) % 12,
                      2000 + i % 27, nomes[i % 14], i);
        sqlite3_bind_text(p, 1, jogador, -1, SQLITE_TRANSIENT);
        sqlite3_bind_double(p, 2, Pontos_Da_Linha(i));
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

// The table is built once per run: every benchmark here only reads it.
Instalação_Preparada& Instalação_Da_Execução() {
    static Instalação_Preparada instalação(Prepara_Banco);
    return instalação;
}

// As the hall reads its table: opened, put on idxPontuação, walked reading player and points.
void BM_Caminhada_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    Abre_Conexões_Programa();
    for (auto _ : estado) {
        Abre_Tabela("tblPontuação");
        Tabela.Set_Index("idxPontuação");
        int lidas = 0;
        double última = -1;
        bool em_ordem = true;
        for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext()) {
            const QString jogador = Tabela.Fields("Jogador").Value().toString();
            const double pontos = Tabela.Fields("Pontuação").Value().toDouble();
            benchmark::DoNotOptimize(jogador.constData());
            em_ordem = em_ordem && pontos >= última;
            última = pontos;
            ++lidas;
        }
        if (lidas != Linhas || !em_ordem) {
            estado.SkipWithError("a caminhada não leu a tabela inteira em ordem");
            break;
        }
    }
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
    Reinicia_Estado_Global();
}

// By hand: the same order (idxPontuação, then the rowid), the same two fields of every row.
void BM_Caminhada_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* todas =
        Prepara_Puro(banco, "SELECT Jogador, Pontuação FROM tblPontuação ORDER BY Pontuação, rowid");
    for (auto _ : estado) {
        int lidas = 0;
        double última = -1;
        bool em_ordem = true;
        while (sqlite3_step(todas) == SQLITE_ROW) {
            const unsigned char* jogador = sqlite3_column_text(todas, 0);
            const double pontos = sqlite3_column_double(todas, 1);
            benchmark::DoNotOptimize(jogador);
            em_ordem = em_ordem && pontos >= última;
            última = pontos;
            ++lidas;
        }
        sqlite3_reset(todas);
        if (lidas != Linhas || !em_ordem) {
            estado.SkipWithError("a caminhada não leu a tabela inteira em ordem");
            break;
        }
    }
    sqlite3_finalize(todas);
    sqlite3_close(banco);
}

// The count with its cache dropped before each call, so that every call asks the store.
void BM_Lastrec_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    const int consultas_antes = Consultas_Lastrec();
    for (auto _ : estado) {
        Limpa_Cache_Lastrec();
        if (Lastrec("tblPontuação", Conexão) != Linhas) {
            estado.SkipWithError("a contagem não deu o número de linhas");
            break;
        }
    }
    if (Consultas_Lastrec() - consultas_antes != static_cast<int>(estado.iterations()))
        estado.SkipWithError("alguma contagem veio do cache");
    Reinicia_Estado_Global();
}

void BM_Lastrec_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* conta = Prepara_Puro(banco, "SELECT COUNT(*) FROM tblPontuação");
    for (auto _ : estado) {
        const int contagem = sqlite3_step(conta) == SQLITE_ROW ? sqlite3_column_int(conta, 0) : -1;
        sqlite3_reset(conta);
        if (contagem != Linhas) {
            estado.SkipWithError("a contagem não deu o número de linhas");
            break;
        }
    }
    sqlite3_finalize(conta);
    sqlite3_close(banco);
}

}  // namespace

BENCHMARK(BM_Caminhada_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Caminhada_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Lastrec_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(30);
BENCHMARK(BM_Lastrec_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(30);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
