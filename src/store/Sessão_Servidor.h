#pragma once
// The store on a PostgreSQL server, for several workstations on one bank. An installation names its server
// in the file Dados/Servidor.txt: one libpq connection string ("host=... dbname=... user=..."; passwords
// stay in libpq's own ~/.pgpass or service file). The main database (Dados.Mdb) is then the schema "dados"
// of that server database, the audit database (Manutenção.Mdb) the schema "manutencao", and the transient
// copy of the upgrade the schema "copia", the games' statistics (Estatísticas.Mdb) the schema "estatisticas"; Temp.Mdb stays a local SQLite file.
#include <QHash>
#include <QString>
#include <memory>

#include "store/Sessão.h"

inline const QString Arquivo_Servidor = "Servidor.txt";

// The connection string of the server that holds this database, or empty when it is an embedded file.
QString Conexão_Do_Servidor(const QString& caminho_banco);
// The schema that stands for a database file on the server; empty for a file that stays local.
QString Esquema_Do_Servidor(const QString& caminho_banco);

std::shared_ptr<Sessão> Abre_Sessão_Servidor(const QString& chave, const QString& conexão,
                                             const QString& esquema, Falha_Banco& falha);
bool Cria_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha);
bool Exclui_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha);
bool Renomeia_Esquema_Servidor(const QString& conexão, const QString& esquema, const QString& novo,
                               Falha_Banco& falha);
// Why the server cannot be reached, in one Portuguese sentence (a host that does not answer, a user and
// password refused...) followed by libpq's own words as the detail; empty when it answers.
QString Motivo_Sem_Conexão(const QString& conexão);
// How many times this process found its connection to the server lost. A long walk or an import that
// sees it change stops: what the lost transaction held was undone.
int Perdas_De_Conexão();

// Held while a start brings the server's bank up to this version: a second workstation starting meanwhile
// waits, and then finds the work done. Released with its own connection, also when the process ends.
struct pg_conn;
class Vez_Da_Atualização {
  public:
    explicit Vez_Da_Atualização(const QString& conexão);
    ~Vez_Da_Atualização();
    Vez_Da_Atualização(const Vez_Da_Atualização&) = delete;
    Vez_Da_Atualização& operator=(const Vez_Da_Atualização&) = delete;

  private:
    pg_conn* C = nullptr;
};
// How many tables the server database holds (a schema without tables counts as one); -1 with `falha` set
// when the server cannot be reached.
int Tabelas_No_Servidor(const QString& conexão, Falha_Banco& falha);
// Whether the schema exists; false with `falha` set when the server cannot be reached.
bool Existe_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha);

// Runs statements of the store's dialect on a connection of their own, as another workstation would:
// outside this process's sessions and transaction. False at the first refusal.
bool Executa_No_Servidor_Avulso(const QString& caminho_banco, const QStringList& comandos);

// The store's statements (SQLite's dialect) in the server's: "?" become $1, $2...; names of the schema's
// tables and fields are quoted as they were created; "x Like '<pattern>'" ignores case as Jet did, with
// the pattern's brackets read as Jet's; "+rowid" loses its planner hint. `nomes` maps lower-cased names to
// their created form. `valores` receives the number of values to bind.
QString Traduz_Para_Servidor(const QString& sql, const QHash<QString, QString>& nomes, int& valores);

// The schema operations on a server.
namespace Catálogo_Servidor {
QString Tipo_Declarado(const Campo_Info& campo);
bool Cria_Tabela(Sessão& sessão, const QString& tabela, const QVector<Campo_Info>& campos,
                 Falha_Banco& falha);
bool Adiciona_Campo(Sessão& sessão, const QString& tabela, const Campo_Info& campo, Falha_Banco& falha);
bool Altera_Campo(Sessão& sessão, const QString& tabela, const Campo_Info& campo, Falha_Banco& falha);
bool Adiciona_Índice(Sessão& sessão, const QString& tabela, const Índice_Info& índice, Falha_Banco& falha);
bool Exclui_Índice(Sessão& sessão, const QString& tabela, const QString& índice, Falha_Banco& falha);
bool Garante_Índice_de_Consulta(Sessão& sessão, const QString& tabela, const QString& campo,
                                Falha_Banco& falha);
// A trigram index on each field's lower-cased text, as "Like" compares it. Where the server cannot make
// one, nothing changes and nothing is reported; false only when the server could not be asked.
bool Garante_Índices_de_Texto(Sessão& sessão, const QString& tabela, const QStringList& campos,
                              Falha_Banco& falha);
// Sets the numbering of each automatic field past the greatest number the table holds (after rows were
// copied in with their numbers).
bool Acerta_Numeração(Sessão& sessão, const Estrutura_Tabela& estrutura, Falha_Banco& falha);
// Copies every table of the session's schema into the schema that stands for `destino`, made anew.
bool Copia_Banco(Sessão& sessão, const QString& destino, Falha_Banco& falha);
}  // namespace Catálogo_Servidor
