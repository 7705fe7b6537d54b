#pragma once
// A logical connection: a name for a database file, opened by a connection string.
#include <QString>
#include <memory>
#include <source_location>

#include "store/Sessão.h"

class Ligação {
  public:
    QString ConnectionString;  // empty until first opened

    void Open(const QString& texto_conexão, std::source_location onde = std::source_location::current());
    void Close();
    bool Aberta() const { return Aberta_; }
    // A Dbase store with no table behind it: nothing can be opened on it.
    bool É_Dbase() const { return Dbase && !Sessão_; }

    void BeginTrans();
    void CommitTrans(std::source_location onde = std::source_location::current());
    void RollbackTrans(std::source_location onde = std::source_location::current());
    void Execute(const QString& sql, std::source_location onde = std::source_location::current());

    // The physical session, or null when closed or not a SQLite store.
    std::shared_ptr<Sessão> Sessão_Física() const { return Sessão_; }

  private:
    std::shared_ptr<Sessão> Sessão_;
    bool Aberta_ = false;
    bool Dbase = false;
};

// Builds the connection string of a database file in the program's folder.
QString Texto_Conexão(const QString& caminho_arquivo);
// The file named by a connection string.
QString Arquivo_Da_Conexão(const QString& texto_conexão);
// Whether the database exists: the file, or its schema on the installation's server.
bool Existe_Banco(const QString& caminho);
// Whether the server that the installation names (if any) answers; the reason in `mensagem` when not.
bool Servidor_Disponível(QString& mensagem);
// Deletes a database file with its journal and lock companions.
bool Exclui_Arquivo_Banco(const QString& caminho);
// Whether files can be made in the folder (made if missing) and every file in it can be written.
bool Pasta_Gravável(const QString& pasta);
// Moves a database file, with its journal, into `pasta_arquivo` under a dated name; the new path, or
// empty when it could not be moved.
QString Guarda_Arquivo_Banco(const QString& caminho, const QString& pasta_arquivo,
                             const class QDateTime& quando);
