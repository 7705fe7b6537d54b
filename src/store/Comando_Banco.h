#pragma once
// One prepared statement of the store, whatever the engine behind it: bind the values, step through the
// rows, read the columns. Positions of values start at 1, columns at 0.
#include <QByteArray>
#include <QString>

// What Passo answers besides a failure code (the same numbers as SQLite's row and done).
inline constexpr int Linha_Pronta = 100;
inline constexpr int Fim_Comando = 101;

enum class Tipo_Valor { Nulo, Inteiro, Real, Texto };

struct Coluna_Empacotada;

class Comando_Banco {
  public:
    virtual ~Comando_Banco() = default;
    virtual void Liga_Nulo(int posição) = 0;
    virtual void Liga_Inteiro(int posição, qint64 valor) = 0;
    virtual void Liga_Real(int posição, double valor) = 0;
    virtual void Liga_Texto(int posição, const QByteArray& utf8) = 0;
    // The next row: Linha_Pronta, Fim_Comando, or a failure code that the session's Falha_Da_Última reads.
    virtual int Passo() = 0;
    // Sends the statement ahead of its first Passo, so that reads whose answers do not depend on each
    // other travel together: a server asks all the statements sent ahead on a connection in one exchange,
    // with the values bound by then, at the first Passo of any of them. The embedded engine has nothing to
    // send and runs the statement at its Passo. Reinicia takes it back.
    virtual void Envia() {}
    // Ready to run again with the same values.
    virtual void Reinicia() = 0;
    virtual void Limpa_Valores() = 0;

    virtual int Colunas() const = 0;
    virtual QString Nome_Coluna(int coluna) const = 0;
    virtual Tipo_Valor Tipo(int coluna) const = 0;
    virtual qint64 Inteiro(int coluna) const = 0;
    virtual double Real(int coluna) const = 0;
    virtual QByteArray Bytes(int coluna) const = 0;
    virtual QString Texto(int coluna) const = 0;
    // The column's bytes, as Bytes gives them, good until the next Passo; an engine that has to make them
    // keeps them in `apoio`, the embedded one points into its row.
    virtual QByteArrayView Vista_Bytes(int coluna, QByteArray& apoio) const {
        apoio = Bytes(coluna);
        return apoio;
    }
    // The columns of `plano` of the current row packed into `bloco` from `início` on (Linha_Empacotada.h), in
    // one call for the row; gives where the row ends.
    virtual qsizetype Empacota(const Coluna_Empacotada* plano, int colunas, QByteArray& bloco,
                               qsizetype início) const;
};
