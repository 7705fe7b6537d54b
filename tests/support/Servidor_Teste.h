#pragma once
// A throwaway PostgreSQL cluster for the tests that run the store on a server: made by initdb in a
// temporary folder (under the postgres system user when the tests run as root), listening only on a
// unix socket in that folder, on a free port; stopped and removed when the process ends.
#include <QString>
#include <QStringList>
#include <QVector>

// Whether this run puts the store on a server (the variable QUIZORA_TESTE_SERVIDOR is set).
bool Testa_No_Servidor();

class Servidor_Teste {
  public:
    // The process's cluster, started at the first call; null when it could not be started.
    static Servidor_Teste* Ativo();
    ~Servidor_Teste();
    // A new empty database of the cluster; its libpq connection string.
    QString Cria_Banco();
    QString Conexão(const QString& banco) const;
    // Stops the cluster at once, as a crash or "pg_ctl stop -m immediate" does, and starts it again:
    // every open connection is lost.
    bool Reinicia();
    // A role that must give its password over the socket; the connection string of the database that
    // `conexão_banco` names, as that role, without the password.
    QString Usuário_Com_Senha(const QString& conexão_banco, const QString& usuário, const QString& senha);

  private:
    Servidor_Teste() = default;
    bool Inicia();
    bool Liga();
    QString Pasta;
    int Porta = 0;
    int Bancos = 0;
    bool Ligado = false;
};

// Skips the running test when the store is on a server: it tests what only the embedded files have.
#define SO_NO_EMBUTIDO(motivo) \
    if (Testa_No_Servidor()) GTEST_SKIP() << "Só no banco embutido: " << motivo

// Runs statements (the embedded engine's dialect) on Dados.Mdb as another workstation: a connection of its
// own, on whichever engine the installation uses. False at the first refusal.
bool Executa_Como_Outra_Estação(const QStringList& comandos);
// The same from another running copy of the program: a process of its own runs them and ends.
bool Executa_Em_Outro_Processo(const QStringList& comandos);

// The rows of a query (the embedded engine's dialect) on one of the installation's databases, read as
// another workstation would: a connection of its own, on whichever engine the installation uses. Each
// value as text, empty for a null; `ok` false when the query fails.
QVector<QStringList> Consulta_Como_Outra_Estação(const QString& caminho, const QString& sql,
                                                 bool* ok = nullptr);
// The first value of such a query as a number ("Select Count(*) ..."); -1 when it fails.
int Conta_Como_Outra_Estação(const QString& caminho, const QString& sql);
