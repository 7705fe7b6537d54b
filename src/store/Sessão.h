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

class Sessão {
  public:
    ~Sessão();
    // Opens an existing file; never creates one.
    static std::shared_ptr<Sessão> Abre(const QString& caminho, Falha_Banco& falha);
    // Creates an empty database file.
    static bool Cria_Arquivo(const QString& caminho, Falha_Banco& falha);
    // The session of a file that is open in this process, if any.
    static std::shared_ptr<Sessão> Procura(const QString& caminho);
    // Forgets the session for new opens (the file is being replaced); holders keep it.
    void Retira_do_Registro();

    const QString Caminho;
    sqlite3* Banco = nullptr;
    int Conexões_Lógicas = 0;

    // The logical transaction opened by Inicia_Transação; SQLite's write lock is taken only at the first
    // write, so that a user editing a row does not stop other copies from writing other rows.
    bool Transação_Lógica = false;
    bool Transação_SQL = false;
    void Inicia();
    bool Prepara_Escrita(Falha_Banco& falha);
    bool Confirma(Falha_Banco& falha);
    bool Desfaz(Falha_Banco& falha);

    // A prepared statement, kept for reuse; reset before it is handed out.
    sqlite3_stmt* Prepara(const QString& sql, Falha_Banco& falha);
    bool Executa(const QString& sql, Falha_Banco& falha);
    void Falha_Da_Última(Falha_Banco& falha, int código) const;

    // Counts ("Select Count (*) From <table> ...") kept while neither this process nor another has
    // written to that table since: asking first refreshes what the file says of other processes' writes.
    bool Contagem_Memorizada(const QString& sql, qint64& contagem);
    void Memoriza_Contagem(const QString& sql, qint64 contagem);
    void Marca_Escrita(const QString& tabela);  // a row written here to this table
    void Esquece_Contagens();

    // The file's present mark; false when the file gives none (not in WAL mode): then rows are read again.
    bool Carimbo(Carimbo_Dados& carimbo);

    std::shared_ptr<const Estrutura_Tabela> Estrutura(const QString& tabela, Falha_Banco& falha);
    void Esquece_Estruturas();
    QStringList Tabelas();

    // Row locks between running copies: one byte of a side file per row, held by this process.
    bool Trava_Linha(const QString& tabela, qint64 linha);
    bool Possui_Trava(const QString& tabela, qint64 linha) const;
    void Libera_Trava(const QString& tabela, qint64 linha);
    void Libera_Travas();

  private:
    explicit Sessão(QString caminho);
    static qint64 Posição_Trava(const QString& tabela, qint64 linha);
    QHash<QString, sqlite3_stmt*> Comandos;
    struct Contagem_Guardada {
        QString Tabela;
        qint64 Valor = 0;
        qint64 Escritas = 0;  // this process's writes to the table when it was counted
    };
    QHash<QString, Contagem_Guardada> Contagens;
    QHash<QString, qint64> Escritas_Por_Tabela;  // by table name in lower case
    qint64 Versão_Dados = -1;                    // the file's data_version when the counts were taken
    QHash<QString, std::shared_ptr<Estrutura_Tabela>> Estruturas;
    QVector<qint64> Travas;
    int Descritor_Travas = -1;
    const unsigned char* Índice_Wal = nullptr;  // the WAL index file's first page, mapped read-only
    bool Sem_Índice_Wal = false;
};

// SQLite index names are per database; Jet's are per table.
QString Nome_Índice_Físico(const QString& tabela, const QString& índice);
// The store's own indexes carry no "table.index" name, and so stay out of the catalogue.
QString Nome_Índice_de_Consulta(const QString& tabela, const QString& campo);
QString Citação(const QString& identificador);  // "name" with inner quotes doubled
