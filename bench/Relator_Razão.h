#pragma once
// Prints each benchmark's result and, at the end, the program's time as a multiple of raw SQLite's,
// pairing the benchmark whose name holds "Pelo_Programa" with the one whose name holds "SQLite_Puro".
#include <benchmark/benchmark.h>

#include <QApplication>

#include <cstdio>
#include <map>
#include <string>

class Relator_Razão : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& execuções) override {
        ConsoleReporter::ReportRuns(execuções);
        for (const Run& r : execuções) Tempos[r.benchmark_name()] = r.GetAdjustedRealTime();
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        double programa = 0, puro = 0;
        for (const auto& [nome, tempo] : Tempos) {
            if (nome.find("Pelo_Programa") != std::string::npos) programa = tempo;
            if (nome.find("SQLite_Puro") != std::string::npos) puro = tempo;
        }
        if (programa > 0 && puro > 0) std::printf("Razão programa / SQLite puro: %.2f\n", programa / puro);
    }

  private:
    std::map<std::string, double> Tempos;
};

// The main of every benchmark program here: offscreen windows, the registered benchmarks, the ratio.
inline int Roda_Comparação(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicação(argc, argv);
    benchmark::Initialize(&argc, argv);
    Relator_Razão relator;
    benchmark::RunSpecifiedBenchmarks(&relator);
    benchmark::Shutdown();
    return 0;
}
