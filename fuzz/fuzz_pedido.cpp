// The reader of the phones' requests fed any bytes: it must never crash, hang or break memory; what it
// takes keeps to the ranges of its kind, and the same request written plainly reads the same.
#include <QJsonDocument>
#include <QJsonObject>
#include <cstddef>
#include <cstdint>

#include "sala/Mensagens_Sala.h"

namespace {
[[noreturn]] void Falhou(const char* motivo) {
    __builtin_printf("Invariante quebrada: %s\n", motivo);
    __builtin_trap();
}

QByteArray Escreve(const Pedido_Celular& p) {
    QJsonObject o;
    switch (p.Tipo) {
        case Tipo_Pedido::Entra:
            o = {{"tipo", "entra"}, {"codigo", p.Código}};
            break;
        case Tipo_Pedido::Retoma:
            o = {{"tipo", "retoma"}, {"codigo", p.Código}, {"token", p.Token}};
            break;
        case Tipo_Pedido::Senta:
            o = {{"tipo", "senta"}, {"assento", p.Assento}};
            break;
        case Tipo_Pedido::Levanta:
            o = {{"tipo", "levanta"}};
            break;
        case Tipo_Pedido::Responde:
            o = {{"tipo", "responde"}, {"resposta", p.Índice}, {"vez", static_cast<double>(p.Vez)}};
            break;
        case Tipo_Pedido::Ajuda:
            o = {{"tipo", "ajuda"}, {"ajuda", p.Índice}, {"vez", static_cast<double>(p.Vez)}};
            break;
    }
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dados, size_t tamanho) {
    const QByteArray bytes(reinterpret_cast<const char*>(dados), static_cast<qsizetype>(tamanho));
    const std::optional<Pedido_Celular> p = Lê_Pedido(bytes);
    if (!p) return 0;
    if (bytes.size() > Tamanho_Máximo_Pedido) Falhou("pedido acima de 1 KB aceito");
    switch (p->Tipo) {
        case Tipo_Pedido::Entra:
        case Tipo_Pedido::Retoma:
            if (p->Código.size() != Tamanho_Código_Sala) Falhou("código fora da forma");
            if (p->Tipo == Tipo_Pedido::Retoma && p->Token.size() != Tamanho_Token)
                Falhou("token fora da forma");
            break;
        case Tipo_Pedido::Senta:
            if (p->Assento < 1 || p->Assento > Máximo_Jogadores) Falhou("assento fora dos limites");
            break;
        case Tipo_Pedido::Levanta:
            break;
        case Tipo_Pedido::Responde:
        case Tipo_Pedido::Ajuda:
            if (p->Índice < 0 || p->Índice > (p->Tipo == Tipo_Pedido::Ajuda ? Quantidade_Ajudas - 1 : 3))
                Falhou("índice fora dos limites");
            if (p->Vez < 1) Falhou("vez fora dos limites");
            break;
    }
    const std::optional<Pedido_Celular> relido = Lê_Pedido(Escreve(*p));
    if (!relido || relido->Tipo != p->Tipo || relido->Código != p->Código || relido->Token != p->Token ||
        relido->Assento != p->Assento || relido->Índice != p->Índice || relido->Vez != p->Vez)
        Falhou("o pedido escrito de novo não se lê igual");
    return 0;
}
