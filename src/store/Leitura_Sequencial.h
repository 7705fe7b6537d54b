#pragma once
// A forward reading of a slot's rows, from its current row to its end, in the slot's own order (its index
// or its source's Order By, equal keys by row id) and with its source's criterion, taking only the fields
// asked for. A report that walks a table reads through it a large page of rows per statement, where a
// slot's step reads every field of every row and keeps a window of them for steps back.
//
// It sees what a walk of the slot sees: the rows of the slot's keyset (rows others add meanwhile stay
// out), and on an embedded file a row written by anyone after its page was read is read again when it is
// reached, and skipped when gone. A server gives no cheap sign of others' writes: there the rows are
// given as their page read them.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>
#include <source_location>

#include "store/Registros.h"
#include "store/Sessão.h"

class Leitura_Sequencial {
  public:
    // The reading starts at the slot's current row; a slot at its end (or empty) gives no rows. An
    // unknown field name fails as the slot's Fields does, and the reading then gives no rows. The rows
    // of a page are the engine's own number unless `linhas_por_página` gives one.
    Leitura_Sequencial(Registros& registros, const QStringList& campos, int linhas_por_página = 0,
                       std::source_location onde = std::source_location::current());
    Leitura_Sequencial(const Leitura_Sequencial&) = delete;
    Leitura_Sequencial& operator=(const Leitura_Sequencial&) = delete;

    // To the next row (the first at the first call): false at the end, or after a failure of the store,
    // which goes to the routine's trap as a slot's failure does.
    bool Próxima();
    // The field asked for in position `campo` of the current row, as the slot's Value gives it.
    const QVariant& Valor(int campo) const;
    // A text field of the current row as the store keeps it, in UTF-8, without making a value of it: good
    // until the next row. Empty for Null.
    QByteArrayView Texto_Utf8(int campo) const {
        const Lido& lido = Lidos[Atual * Quantos_Campos + campo];
        return lido.Tamanho < 0 ? QByteArrayView()
                                : QByteArrayView(Bytes_Página.constData() + lido.Início, lido.Tamanho);
    }
    bool Nulo(int campo) const { return Lidos[Atual * Quantos_Campos + campo].Tamanho < 0; }

    // Rows in a page: more on a server, where each page is a round trip.
    static int Linhas_Por_Página(bool servidor, bool ordem_servida);

  private:
    // A field of the page as the statement gave it: its number, or where its bytes are in Bytes_Página.
    // A page keeps its rows so, and makes values only of the current row's fields asked for.
    struct Lido {
        qint64 Inteiro = 0;
        double Real = 0;
        qsizetype Início = 0;
        qsizetype Tamanho = -1;  // -1: Null
    };
    bool Lê_Página();
    bool Relê_Resto();
    void Guarda(Comando_Banco* comando, int coluna, int campo, Lido& lido);
    void Falhou(const Falha_Banco& falha);

    Registros::Caminhada C;
    std::source_location Onde;
    QVector<int> Tipos;             // the fields' types, in the order asked
    QString Colunas;                // ", <field>, ..." as selected
    QStringList Expressões_Campos;  // each field as it is selected
    QString Texto_Relê;             // "SELECT rowid, <fields> FROM <table> WHERE rowid IN ("
    int Quantos_Campos = 0;
    int Por_Página = 0;
    bool Terminou = true;
    bool Última_Página = false;  // the page read holds the source's last rows
    // The row after which the next page starts: its id and its order values.
    qint64 De_Id = 0;
    QVariantList De_Chave;
    // The page read: ids, the fields row after row, and rows found gone when read again.
    QVector<qint64> Ids;
    QVector<Lido> Lidos;
    QByteArray Bytes_Página;
    QVector<bool> Sumidas;
    int Atual = -1;
    // The values made of the current row's fields, and which of them are made.
    mutable QVector<QVariant> Valores_Atuais;
    mutable QVector<char> Feitos;
    bool Com_Carimbo = false;
    Carimbo_Dados Carimbo;  // the file's mark when the page's values were read
};
