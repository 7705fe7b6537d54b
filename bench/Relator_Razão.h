#pragma once
// Prints each benchmark's result and, at the end, the program's time as a multiple of raw SQLite's,
// one line for each pair of benchmarks whose names differ only in "Pelo_Programa" and "SQLite_Puro".
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
        static const std::string marcas[] = {"_Pelo_Programa", "_SQLite_Puro"};
        for (const Run& r : execuções) {
            std::string nome = r.run_name.function_name;
            for (int lado = 0; lado < 2; ++lado)
                if (const auto onde = nome.find(marcas[lado]); onde != std::string::npos) {
                    nome.erase(onde, marcas[lado].size());
                    Tempos[nome][lado] = r.GetAdjustedRealTime();
                }
        }
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto& [nome, tempos] : Tempos) {
            const auto [programa, puro] = tempos;
            if (programa > 0 && puro > 0)
                std::printf("Razão programa / SQLite puro (%s): %.2f\n", nome.c_str(), programa / puro);
        }
    }

  private:
    // By the name without its marker: the program's time, then raw SQLite's.
    std::map<std::string, std::array<double, 2>> Tempos;
};

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
