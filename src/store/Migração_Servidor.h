#pragma once
// Moves an installation that kept its data in the embedded files to the server that its Dados/Servidor.txt
// names: every table of Dados.Mdb and Manutenção.Mdb, with its fields, indexes, rows and numbering, into an
// empty server database. The files are only read; a copy that does not end with the same count of rows in
// every table is taken off the server again.
#include <QString>
#include <functional>

// `pasta_dados` is the installation's Dados folder; `relata` hears each step and the progress of long
// tables. False with the reason in `erro` when nothing was moved.
bool Migra_Para_Servidor(const QString& pasta_dados, const std::function<void(const QString&)>& relata,
                         QString& erro);
