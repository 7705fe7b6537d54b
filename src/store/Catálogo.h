#pragma once
// The schema operations that the upgrade steps use: create a database file, create and drop tables,
// add and drop fields and indexes, list tables.
#include <QString>
#include <QStringList>
#include <QVector>

#include "store/Sessão.h"

class Ligação;

namespace Catálogo {
// Creates an empty database file from a creation connection string.
void Cria_Banco(const QString& texto_conexão);
void Cria_Tabela(Ligação& conexão, const QString& tabela, const QVector<Campo_Info>& campos);
void Exclui_Tabela(Ligação& conexão, const QString& tabela);
// A table with the fields and indexes of a structure read from another database, on either engine.
void Cria_Tabela_Da_Estrutura(Ligação& conexão, const Estrutura_Tabela& estrutura);
void Adiciona_Campo(Ligação& conexão, const QString& tabela, const Campo_Info& campo);
void Exclui_Campo(Ligação& conexão, const QString& tabela, const QString& campo);
// Changes a field's type or width, keeping its position and data.
void Altera_Campo(Ligação& conexão, const QString& tabela, const Campo_Info& campo);
void Adiciona_Índice(Ligação& conexão, const QString& tabela, const Índice_Info& índice);
void Exclui_Índice(Ligação& conexão, const QString& tabela, const QString& índice);
// An index of the store's own for a statement that the windows build on a field without one: the
// catalogue does not list it. A rebuild of the table drops it; the next start makes it again.
void Garante_Índice_de_Consulta(Ligação& conexão, const QString& tabela, const QString& campo);
// On a server, an index of the text's three-letter pieces for each field, so that a search for a word in
// any position ("Like '%palavra%'") reads only the rows that may hold it. Where the server cannot give
// one (its trigram extension missing or not allowed to this user) nothing is made and nothing is
// reported: the search works as before, reading the whole table. The embedded engine needs none.
void Garante_Índices_de_Texto(Ligação& conexão, const QString& tabela, const QStringList& campos);
QStringList Lista_Tabelas(Ligação& conexão);
bool Existe_Tabela(Ligação& conexão, const QString& tabela);
// The structure as the store holds it now; empty name when the table does not exist.
Estrutura_Tabela Estrutura(Ligação& conexão, const QString& tabela);

QString Tipo_Declarado(const Campo_Info& campo);
// A consistent copy of the whole database file, with what is still in its journal.
void Copia_Banco(Ligação& conexão, const QString& destino);
}  // namespace Catálogo
