#pragma once
// One open SQLite database file. Logical connections that point at the same file share one
// session, so the process's one logical transaction sees its own writes through every slot.

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>
#include <array>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

struct Falha_Banco {
    long Número = 0;
    QString Descrição;
    bool Recusa_Valor = false;  // the values themselves were refused: writing them again cannot pass
    bool Houve() const { return Número != 0; }
};

// The refusal of a duplicate in a unique index, as Jet worded it; Trata_Erro recognises it.
inline const QString Texto_Índice_Duplicado =
    "As alterações solicitadas à tabela não foram bem-sucedidas, pois criariam valores duplicados no índice, "
    "chave primária ou relacionamento. Altere os dados no campo ou nos campos que contêm os dados "
    "duplicados, "
    "remova o índice ou redefina o índice para permitir entradas duplicadas e tente novamente.";

// The store's words for the refusals that waiting does not mend, naming the file's folder or the file.
QString Texto_Disco_Cheio(const QString& caminho);
QString Texto_Somente_Leitura(const QString& caminho);
QString Texto_Banco_Danificado(const QString& caminho);

// ADO type numbers of the fields the system creates.
inline constexpr int Tipo_Texto = 202;
inline constexpr int Tipo_Memo = 203;
inline constexpr int Tipo_Long = 3;
inline constexpr int Tipo_Double = 5;
inline constexpr int Tipo_Data = 7;
inline constexpr int Tipo_Boolean = 11;

struct Campo_Info {
    QString Nome;
    int Tipo = Tipo_Texto;
    int Largura = 0;  // characters, for text
    bool Auto = false;
    bool Zero = false;
};

// What rows read earlier can be checked against without reading them again: the file's WAL index header,
// which every commit of any copy rewrites, and this connection's own row changes, committed or not.
struct Carimbo_Dados {
    std::array<unsigned char, 48> Cabeçalho{};
    qint64 Mudanças = -1;
    bool operator==(const Carimbo_Dados&) const = default;
};

enum class Tipo_Índice { Simples, Primário, Único };

struct Índice_Info {
    QString Nome;
    Tipo_Índice Tipo = Tipo_Índice::Simples;
    QStringList Campos;
};

struct Estrutura_Tabela {
    QString Nome;
    QVector<Campo_Info> Campos;
    QVector<Índice_Info> Índices;
    int Posição_Campo(const QString& nome) const;  // -1 when absent; names compare without case
    const Índice_Info* Índice(const QString& nome) const;
};

class Comando_Banco;
class Descarga_Paralela;

// One open database: an embedded SQLite file, or a schema of a PostgreSQL server when the installation
// names one. Logical connections that point at the same database share one session, so the process's
// one logical transaction sees its own writes through every slot.
class Sessão {
  public:
    virtual ~Sessão();
    // Opens an existing database; never creates one.
    static std::shared_ptr<Sessão> Abre(const QString& caminho, Falha_Banco& falha);
    // Creates an empty database.
    static bool Cria_Arquivo(const QString& caminho, Falha_Banco& falha);
    // The session of a database that is open in this process, if any.
    static std::shared_ptr<Sessão> Procura(const QString& caminho);
    // Forgets the session for new opens (the database is being replaced); holders keep it.
    void Retira_do_Registro();

    const QString Caminho;
    sqlite3* Banco = nullptr;  // the embedded engine's handle; null on a server
    int Conexões_Lógicas = 0;
    virtual bool Servidor() const { return false; }
    // The WAL's copies into the file made from now on by a thread of their own (an embedded file; a
    // server makes its own).
    void Descarga_Em_Segundo_Plano();

    // The logical transaction opened by Inicia_Transação; the engine's own transaction starts only at the
    // first write or lock, so that a user editing a row does not stop other copies from writing others.
    bool Transação_Lógica = false;
    bool Transação_SQL = false;
    // The server's connection was lost while the engine's transaction was open: the server undid it, and
    // the writes that would follow it are refused until the logical transaction ends.
    bool Transação_Perdida = false;
    void Inicia() {
        Transação_Lógica = true;
        Transação_Perdida = false;
    }
    virtual bool Prepara_Escrita(Falha_Banco& falha) = 0;
    virtual bool Confirma(Falha_Banco& falha) = 0;
    virtual bool Desfaz(Falha_Banco& falha) = 0;

    // A prepared statement, kept for reuse; reset, with no values, when it is handed out. The text is the
    // store's own dialect (SQLite's); a server session translates it.
    virtual Comando_Banco* Prepara(const QString& sql, Falha_Banco& falha) = 0;
    virtual bool Executa(const QString& sql, Falha_Banco& falha) = 0;
    virtual void Falha_Da_Última(Falha_Banco& falha, int código) const = 0;
    // A write whose answer nobody waits for (no row read back, no id). A server keeps it and sends it with
    // the exchange that must go anyway: inside the program's transaction, the commit, in the same round
    // trip; outside one (the audit rows), the next commit or statement of any session on that server,
    // sent alongside it. Elsewhere it runs now. Its values are taken as bound now. False with `falha` only
    // when it ran now and was refused; a refusal met at the commit fails the commit, which undoes it all.
    virtual bool Escreve_Depois(Comando_Banco* comando, Falha_Banco& falha);
    // The refusal of a write sent later outside any transaction, not yet told; given once.
    virtual bool Falha_Adiada(Falha_Banco&) { return false; }
    // The row id of the last row inserted through this session.
    virtual qint64 Último_Id() const = 0;

    // Counts ("Select Count (*) From <table> ...") kept while nothing has written to that table since.
    virtual bool Contagem_Memorizada(const QString& sql, qint64& contagem) = 0;
    virtual void Memoriza_Contagem(const QString& sql, qint64 contagem) = 0;
    // A row written here to this table; `linha` is its row id when the statement wrote that row alone.
    void Marca_Escrita(const QString& tabela, qint64 linha = 0);
    void Esquece_Contagens();

    // The file's present mark; false when the file gives none (not in WAL mode, or a server): then rows
    // are read again.
    virtual bool Carimbo(Carimbo_Dados& carimbo) = 0;
    // Whether the row `linha` of `tabela`, read at the mark `lido`, is still what the file holds at `agora`:
    // no copy has committed since, and each change this connection made since is a noted write of another
    // row. A walk that stamps row after row as it goes (an export) need not read each next row again.
    bool Linha_Intacta(const Carimbo_Dados& lido, const Carimbo_Dados& agora, const QString& tabela,
                       qint64 linha) const;

    std::shared_ptr<const Estrutura_Tabela> Estrutura(const QString& tabela, Falha_Banco& falha);
    virtual void Esquece_Estruturas();
    virtual QStringList Tabelas() = 0;

    // Row locks between running copies, held until the end of the transaction (or of the edit, without one).
    virtual bool Trava_Linha(const QString& tabela, qint64 linha) = 0;
    virtual bool Possui_Trava(const QString& tabela, qint64 linha) const = 0;
    virtual void Libera_Trava(const QString& tabela, qint64 linha) = 0;
    virtual void Libera_Travas() = 0;

  protected:
    explicit Sessão(QString caminho);
    std::unique_ptr<Descarga_Paralela> Descarga_Própria;
    virtual std::shared_ptr<Estrutura_Tabela> Lê_Estrutura(const QString& tabela, Falha_Banco& falha) = 0;
    struct Contagem_Guardada {
        QString Tabela;
        qint64 Valor = 0;
        qint64 Escritas = 0;  // this process's writes to the table when it was counted
    };
    QHash<QString, Contagem_Guardada> Contagens;
    QHash<QString, qint64> Escritas_Por_Tabela;    // by table name in lower case
    QString Tabela_Escrita, Chave_Tabela_Escrita;  // the last table written, and its name in lower case
    // The last rows written here alone by their statements, oldest first, with the connection's change
    // count after each.
    struct Escrita_Linha {
        qint64 Mudança = 0;
        QString Tabela;
        qint64 Linha = 0;
    };
    QVector<Escrita_Linha> Escritas_Recentes;
    // The embedded connection's changes, each roll-back counted as one that no noted write accounts for.
    qint64 Desfeitas = 0;
    qint64 Mudanças_Da_Conexão() const;
    QHash<QString, std::shared_ptr<Estrutura_Tabela>> Estruturas;
};

// The table counted by "Select Count (*) From <table> ...", in lower case; empty for another statement.
QString Tabela_Da_Contagem(const QString& sql);

// SQLite index names are per database; Jet's are per table.
QString Nome_Índice_Físico(const QString& tabela, const QString& índice);
// The store's own indexes carry no "table.index" name, and so stay out of the catalogue.
QString Nome_Índice_de_Consulta(const QString& tabela, const QString& campo);
QString Citação(const QString& identificador);  // "name" with inner quotes doubled
