#pragma once
// Prints each benchmark's result and, at the end, the program's time as a multiple of raw SQLite's,
// one line for each pair of benchmarks whose names differ only in "Pelo_Programa" and "SQLite_Puro".
// A pair run in several rounds (Registra_Em_Rodadas) adds up the times of its rounds.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "platform/Plataforma_Qt.h"

#include <array>
#include <cstdio>
#include <map>
#include <string>

class Relator_Razão : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& execuções) override {
        ConsoleReporter::ReportRuns(execuções);
        // The function's name, without the arguments, so that a pair may run different iteration counts.
        // The raw side is SQLite's, or libpq's for the benchmarks of the store on a server.
        static const std::string marcas[] = {"_Pelo_Programa", "_SQLite_Puro", "_Libpq_Puro"};
        for (const Run& r : execuções) {
            if (r.run_type != Run::RT_Iteration) continue;
            std::string nome = r.run_name.function_name;
            for (int marca = 0; marca < 3; ++marca)
                if (const auto onde = nome.find(marcas[marca]); onde != std::string::npos) {
                    nome.erase(onde, marcas[marca].size());
                    Tempos[nome][marca == 0 ? 0 : 1] += r.GetAdjustedRealTime();
                    Tempos_CPU[nome][marca == 0 ? 0 : 1] += r.GetAdjustedCPUTime();
                    if (marca == 2) Servidor[nome] = true;
                }
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto& [nome, tempos] : Tempos) {
            const auto [programa, puro] = tempos;
            // The processor time too: on a shared machine the wall time also counts the waits for a core.
            const auto [programa_cpu, puro_cpu] = Tempos_CPU[nome];
            if (programa > 0 && puro > 0)
                std::printf("Razão programa / %s puro (%s): %.2f (tempo de processador: %.2f)\n",
                            Servidor.count(nome) ? "libpq" : "SQLite", nome.c_str(), programa / puro,
                            puro_cpu > 0 ? programa_cpu / puro_cpu : 0.0);
        }
    }

  private:
    // By the name without its marker: the program's time, then raw SQLite's.
    std::map<std::string, std::array<double, 2>> Tempos;
    std::map<std::string, std::array<double, 2>> Tempos_CPU;
    std::map<std::string, bool> Servidor;
};

// A pair that waits mostly on the disk, run in rounds: each round runs the raw side, then the program's.
// A shared machine's disk is slower in some minutes than in others; in turns, both sides meet the same.
inline void Registra_Em_Rodadas(const std::string& nome, void (*puro)(benchmark::State&),
                                void (*programa)(benchmark::State&), int rodadas, int iterações) {
    for (int rodada = 0; rodada < rodadas; ++rodada) {
        benchmark::RegisterBenchmark((nome + "_SQLite_Puro").c_str(), puro)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(iterações);
        benchmark::RegisterBenchmark((nome + "_Pelo_Programa").c_str(), programa)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(iterações);
    }
}

// The main of every benchmark program here: offscreen windows, the registered benchmarks, the ratio.
inline int Roda_Comparação(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Plataforma_Qt::Fixa_Fuso_Horário();  // as the program's own start does
    QApplication aplicação(argc, argv);
    benchmark::Initialize(&argc, argv);
    Relator_Razão relator;
    benchmark::RunSpecifiedBenchmarks(&relator);
    benchmark::Shutdown();
    return 0;
}
