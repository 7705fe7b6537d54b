#pragma once
// A row of a statement kept packed in one block, as the store gave it: a walk's page holds its rows so and
// makes values only of the row a step makes current. Each column is a mark, then an integer or a real in
// 8 bytes, or a text as its length (4 bytes) and its bytes.
#include <QByteArray>
#include <QByteArrayView>
#include <cstring>

#include "store/Comando_Banco.h"

enum Marca_Bruto : char { Bruto_Nulo, Bruto_Inteiro, Bruto_Real, Bruto_Texto };

// What a column is asked of the store as: what a field's type says (the store converts), or what the store
// holds (a value of an order, bound back unchanged).
enum class Pedido_Coluna : unsigned char { Inteiro, Real, Texto, Como_Veio };

struct Coluna_Empacotada {
    int Coluna = 0;
    Pedido_Coluna Pedido = Pedido_Coluna::Como_Veio;
};

// Packs the columns of `plano` of the current row, in that order, into `bloco` from `início` on, and gives
// where the row ends; the block grows, by doubling, when it must. `Leitor` reads a column of the engine's
// row: Valor(coluna) gives a handle, and Tipo, Inteiro, Real and Texto read it.
template <class Leitor>
qsizetype Empacota_Linha(const Leitor& leitor, const Coluna_Empacotada* plano, int colunas, QByteArray& bloco,
                         qsizetype início) {
    // The most a column takes besides a text's bytes: a mark and 8 bytes.
    constexpr qsizetype Cabe = 1 + 8;
    if (bloco.size() < início + colunas * Cabe) bloco.resize(2 * (início + colunas * Cabe) + 256);
    char* p = bloco.data();
    qsizetype usado = início;
    for (int i = 0; i < colunas; ++i) {
        const auto valor = leitor.Valor(plano[i].Coluna);
        const Tipo_Valor tipo = leitor.Tipo(valor);
        if (tipo == Tipo_Valor::Nulo) {
            p[usado++] = Bruto_Nulo;
            continue;
        }
        Pedido_Coluna pedido = plano[i].Pedido;
        if (pedido == Pedido_Coluna::Como_Veio)
            pedido = tipo == Tipo_Valor::Inteiro ? Pedido_Coluna::Inteiro
                     : tipo == Tipo_Valor::Real  ? Pedido_Coluna::Real
                                                 : Pedido_Coluna::Texto;
        if (pedido == Pedido_Coluna::Inteiro) {
            const qint64 número = leitor.Inteiro(valor);
            p[usado] = Bruto_Inteiro;
            std::memcpy(p + usado + 1, &número, sizeof número);
            usado += Cabe;
        } else if (pedido == Pedido_Coluna::Real) {
            const double número = leitor.Real(valor);
            p[usado] = Bruto_Real;
            std::memcpy(p + usado + 1, &número, sizeof número);
            usado += Cabe;
        } else {
            const QByteArrayView texto = leitor.Texto(valor);
            const auto tamanho = static_cast<quint32>(texto.size());
            // Room for this text and for a mark and 8 bytes for each column after it, whatever it is.
            const qsizetype preciso = usado + 1 + sizeof tamanho + tamanho + (colunas - i - 1) * Cabe;
            if (preciso > bloco.size()) {
                bloco.resize(2 * preciso);
                p = bloco.data();
            }
            p[usado] = Bruto_Texto;
            std::memcpy(p + usado + 1, &tamanho, sizeof tamanho);
            if (tamanho > 0) std::memcpy(p + usado + 1 + sizeof tamanho, texto.data(), tamanho);
            usado += 1 + sizeof tamanho + tamanho;
        }
    }
    return usado;
}

// Reads the columns of any engine through its statement.
struct Leitor_Comando {
    const Comando_Banco& C;
    mutable QByteArray Apoio;
    int Valor(int coluna) const { return coluna; }
    Tipo_Valor Tipo(int coluna) const { return C.Tipo(coluna); }
    qint64 Inteiro(int coluna) const { return C.Inteiro(coluna); }
    double Real(int coluna) const { return C.Real(coluna); }
    QByteArrayView Texto(int coluna) const { return C.Vista_Bytes(coluna, Apoio); }
};
