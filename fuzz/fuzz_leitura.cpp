// One question reader fed any bytes: it must never crash, hang or break memory, a file is either refused
// whole or read into questions, and what the CSV reader reads, written back as CSV, reads the same.
#include <cstddef>
#include <cstdint>

#include "questions/Leitura_Perguntas.h"

namespace {
[[noreturn]] void Falhou(const char* motivo) {
    __builtin_printf("Invariante quebrada: %s\n", motivo);
    __builtin_trap();
}

Leitura_Perguntas Lê(const QByteArray& bytes) {
#if defined(LEITOR_CSV)
    return Lê_CSV(bytes);
#elif defined(LEITOR_AIKEN)
    return Lê_Aiken(bytes);
#else
    return Lê_GIFT(bytes);
#endif
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dados, size_t tamanho) {
    const QByteArray bytes(reinterpret_cast<const char*>(dados), static_cast<qsizetype>(tamanho));
    const Leitura_Perguntas leitura = Lê(bytes);
    if (leitura.Erro.isEmpty() == leitura.Perguntas.isEmpty()) Falhou("nem erro nem perguntas, ou os dois");
    for (const Pergunta_Lida& p : leitura.Perguntas)
        if (p.Linha < 1 || p.Pergunta != p.Pergunta.simplified()) Falhou("linha ou texto fora da forma");

#if defined(LEITOR_CSV)
    QVector<Pergunta_Exportada> escritas;
    for (const Pergunta_Lida& p : leitura.Perguntas)
        if (!p.Pergunta.isEmpty())
            escritas << Pergunta_Exportada{p.Pergunta, p.Resposta_Correta, p.Resposta_Incorreta, "G"};
    if (escritas.isEmpty()) return 0;
    const Leitura_Perguntas relida = Lê_CSV(Texto_CSV(escritas));
    if (relida.Perguntas.size() != escritas.size()) Falhou("a releitura do CSV perdeu ou ganhou linhas");
    for (qsizetype i = 0; i < escritas.size(); ++i) {
        const Pergunta_Lida& r = relida.Perguntas[i];
        if (r.Pergunta != escritas[i].Pergunta || r.Resposta_Correta != escritas[i].Resposta_Correta ||
            r.Resposta_Incorreta != escritas[i].Resposta_Incorreta || !r.Pronta() || r.Tipo != "G")
            Falhou("a releitura do CSV mudou uma pergunta");
    }
#endif
    return 0;
}
