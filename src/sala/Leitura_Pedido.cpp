#include "sala/Mensagens_Sala.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <cmath>

// The reader of the phones' requests stands apart from the rest of the messages, so that the fuzzer
// takes it alone.
namespace {
// A whole number within the limits, given as a JSON number (never a text or a fraction).
std::optional<qint64> Inteiro(const QJsonValue& valor, qint64 mínimo, qint64 máximo) {
    if (!valor.isDouble()) return std::nullopt;
    const double d = valor.toDouble();
    if (!std::isfinite(d) || d != std::floor(d) || d < static_cast<double>(mínimo) ||
        d > static_cast<double>(máximo))
        return std::nullopt;
    return static_cast<qint64>(d);
}

bool Só_Algarismos(const QString& texto, int tamanho) {
    if (texto.size() != tamanho) return false;
    for (QChar c : texto)
        if (c < u'0' || c > u'9') return false;
    return true;
}

bool Token_Válido(const QString& texto) {
    if (texto.size() != Tamanho_Token) return false;
    for (QChar c : texto)
        if (!((c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'))) return false;
    return true;
}

// The object has exactly these keys besides "tipo".
bool Só_Campos(const QJsonObject& objeto, std::initializer_list<const char*> campos) {
    if (objeto.size() != static_cast<qsizetype>(campos.size()) + 1) return false;
    for (const char* campo : campos)
        if (!objeto.contains(QLatin1String(campo))) return false;
    return true;
}

constexpr qint64 Maior_Vez = qint64(1) << 52;

}  // namespace

std::optional<Pedido_Celular> Lê_Pedido(QByteArrayView mensagem) {
    if (mensagem.isEmpty() || mensagem.size() > Tamanho_Máximo_Pedido) return std::nullopt;
    QJsonParseError erro;
    const QJsonDocument documento = QJsonDocument::fromJson(mensagem.toByteArray(), &erro);
    if (erro.error != QJsonParseError::NoError || !documento.isObject()) return std::nullopt;
    const QJsonObject objeto = documento.object();
    const QJsonValue tipo = objeto.value("tipo");
    if (!tipo.isString()) return std::nullopt;
    const QString nome = tipo.toString();

    Pedido_Celular pedido;
    if (nome == "entra" || nome == "retoma") {
        const bool retoma = nome == "retoma";
        if (retoma ? !Só_Campos(objeto, {"codigo", "token"}) : !Só_Campos(objeto, {"codigo"}))
            return std::nullopt;
        const QJsonValue código = objeto.value("codigo");
        if (!código.isString() || !Só_Algarismos(código.toString(), Tamanho_Código_Sala)) return std::nullopt;
        pedido.Tipo = retoma ? Tipo_Pedido::Retoma : Tipo_Pedido::Entra;
        pedido.Código = código.toString();
        if (retoma) {
            const QJsonValue token = objeto.value("token");
            if (!token.isString() || !Token_Válido(token.toString())) return std::nullopt;
            pedido.Token = token.toString();
        }
        return pedido;
    }
    if (nome == "senta") {
        if (!Só_Campos(objeto, {"assento"})) return std::nullopt;
        const auto assento = Inteiro(objeto.value("assento"), 1, Máximo_Jogadores);
        if (!assento) return std::nullopt;
        pedido.Tipo = Tipo_Pedido::Senta;
        pedido.Assento = static_cast<int>(*assento);
        return pedido;
    }
    if (nome == "levanta") {
        if (!Só_Campos(objeto, {})) return std::nullopt;
        pedido.Tipo = Tipo_Pedido::Levanta;
        return pedido;
    }
    if (nome == "responde" || nome == "ajuda") {
        const bool ajuda = nome == "ajuda";
        const char* campo = ajuda ? "ajuda" : "resposta";
        if (!Só_Campos(objeto, {campo, "vez"})) return std::nullopt;
        const auto índice = Inteiro(objeto.value(QLatin1String(campo)), 0, ajuda ? Quantidade_Ajudas - 1 : 3);
        const auto vez = Inteiro(objeto.value("vez"), 1, Maior_Vez);
        if (!índice || !vez) return std::nullopt;
        pedido.Tipo = ajuda ? Tipo_Pedido::Ajuda : Tipo_Pedido::Responde;
        pedido.Índice = static_cast<int>(*índice);
        pedido.Vez = *vez;
        return pedido;
    }
    return std::nullopt;
}
