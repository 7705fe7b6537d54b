#pragma once
// A recordset in a table slot. Opened on a table or on "Select * From <table> ...", it is a keyset read
// through the current index in pages: it holds a few pages of rows around the current row and fetches the
// next page as the rows after the last key it holds. A row that becomes current is taken from its page
// while nothing was written since, and read again otherwise, so rows that others delete read as gone.
// The keyset is taken at the slot's first use; rows that others add later stay out of it until Requery
// or Set_Index, as in a captured keyset. Any other statement (a count) gives a static result.

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>
#include <memory>
#include <optional>
#include <source_location>

#include "store/Sessão.h"

class Comando_Banco;

// A value of a walk's order as a statement read it, kept as the store gave it so that it binds back
// unchanged as the start of the next page.
QVariant Valor_Chave(Comando_Banco* comando, int coluna);
void Liga_Chave(Comando_Banco* comando, int posição, const QVariant& valor);
class Ligação;
class Registros;

enum class Opção_Abertura { Texto = 1, Tabela = 2, Tabela_Direta = 512 };
enum class Tipo_Busca { Primeiro_Igual = 1, Depois_ou_Igual = 4, Depois = 8, Antes = 32 };

class Campo {
  public:
    Campo(Registros* registros, int posição) : R(registros), Posição(posição) {}
    QVariant Value(std::source_location onde = std::source_location::current()) const;
    void Set_Value(const QVariant& valor, std::source_location onde = std::source_location::current());
    QString Name() const;
    int Type() const;
    int DefinedSize() const;

  private:
    QVariant Valor_Pedido(std::source_location onde) const;
    Registros* R;
    int Posição;
};

class Registros;
// Holds a page of a slot open for the life of a block (Registros::Começa_Página).
class Página_Lida {
  public:
    Página_Lida(Registros& registros, int linhas);
    ~Página_Lida();
    Página_Lida(const Página_Lida&) = delete;
    Página_Lida& operator=(const Página_Lida&) = delete;

  private:
    Registros& R;
};

class Registros {
  public:
    Registros() = default;
    Registros(const Registros&) = delete;
    Registros& operator=(const Registros&) = delete;

    void Open(const QString& fonte, Ligação& conexão, Opção_Abertura opção,
              std::source_location onde = std::source_location::current());
    // Opens on its own connection from a connection string (the dynaset of the locate dialog).
    void Open(const QString& fonte, const QString& texto_conexão,
              std::source_location onde = std::source_location::current());
    void Close();
    void Reinicia();  // the slot set to nothing
    bool Aberto() const { return Aberto_; }

    QString Source;  // as given; may be cleared after Close

    bool Eof() const;
    bool Bof() const;
    void MoveFirst(std::source_location onde = std::source_location::current());
    void MoveLast(std::source_location onde = std::source_location::current());
    void MoveNext(std::source_location onde = std::source_location::current());
    void MovePrevious(std::source_location onde = std::source_location::current());
    void Requery(std::source_location onde = std::source_location::current());
    int RecordCount() const;

    QString Index() const { return Índice_Atual; }
    void Set_Index(const QString& índice, std::source_location onde = std::source_location::current());
    void Seek(const QVariantList& chave, Tipo_Busca tipo = Tipo_Busca::Primeiro_Igual,
              std::source_location onde = std::source_location::current());
    void Seek(const QVariant& chave, Tipo_Busca tipo = Tipo_Busca::Primeiro_Igual,
              std::source_location onde = std::source_location::current()) {
        Seek(QVariantList{chave}, tipo, onde);
    }

    Campo Fields(const QString& nome, std::source_location onde = std::source_location::current());
    Campo Fields(int posição) { return Campo(this, posição); }
    int Fields_Count() const;

    void AddNew(std::source_location onde = std::source_location::current());
    void Update(std::source_location onde = std::source_location::current());
    void CancelUpdate();
    // Starts an edit of the current row: takes its lock, as writing a field does.
    void Edita(std::source_location onde = std::source_location::current());
    void Delete(std::source_location onde = std::source_location::current());
    bool Em_Edição() const { return Modo != Modo_Edição::Nenhum; }
    // Whether the last Update was refused for its values (an empty text without Zero, a required field
    // left Null): such a write never passes, however often it is tried.
    bool Recusa_Do_Valor() const { return Recusa_Do_Valor_; }

    // A page that a window shows at once (a grid of rows): while it is open, a step onto a row reads it
    // together with the rows that follow in that direction, up to `linhas`, in one statement, and those
    // rows are then taken as read, as the page shows them; the page's first reading comes with the rows.
    // Otherwise a walk on a server reads each row again as it becomes current (the server gives no cheap
    // sign of other workstations' writes): one exchange per row where a page needs one. Closing the
    // slot ends the page.
    void Começa_Página(int linhas);
    void Termina_Página();

    // The table behind a keyset, empty for a static result.
    QString Tabela() const { return Estrutura ? Estrutura->Nome : QString(); }
    qint64 Id_Linha_Atual() const;
    std::shared_ptr<Sessão> Sessão_Física() const { return Sessão_; }

    // What a forward reading from the current row (Leitura_Sequencial) takes of the slot: its source and
    // order as its own pages read them, its keyset's limit, and the current row's place in that order.
    struct Caminhada {
        std::shared_ptr<Sessão> Sessão_;
        std::shared_ptr<const Estrutura_Tabela> Estrutura;
        QString Origem;  // "FROM <table> WHERE (<criterion>) AND +rowid <= ?"
        QStringList Termos;
        QVector<bool> Descendentes;
        bool Ordem_Servida = true;
        qint64 Limite_Id = 0;
        bool Na_Linha = false;  // there is a current row: the reading starts there
        qint64 Id = 0;
        QVariantList Chave;            // the current row's order values, as the store gave them
        bool Chave_Conhecida = false;  // false for a row just added here: its values are read by id
    };
    Caminhada Caminhada_Atual() const;

  private:
    friend class Campo;
    enum class Modo_Edição { Nenhum, Inclusão, Alteração };
    enum class Lugar { Antes, Na_Linha, Depois };  // BOF, a row current, EOF

    // One term of the walk's order: a column (or expression) and its direction. The row id ends every order.
    struct Termo_Ordem {
        QString Expressão;
        bool Descendente = false;
    };
    // A row of the keyset as the walk holds it: its id and the values of its order, as read.
    struct Entrada {
        qint64 Id = 0;
        QVariantList Chave;
        bool Excluída = false;      // deleted through this slot
        bool Chave_Adiada = false;  // a row just added: its order values are read when a step needs them
        QVector<QVariant> Valores;  // the row as its page read it, good while the file's mark is unchanged
        // Or the same row packed as the store gave it, made values when current: the block of its page,
        // which holds the row from Início on.
        QByteArray Bruto;
        qsizetype Início = 0;
        bool Chave_No_Bruto = false;  // Chave is packed after the fields of the row in Bruto
        bool Lida() const { return !Valores.isEmpty() || !Bruto.isEmpty(); }
        Carimbo_Dados Carimbo;
        quint32 Página = 0;  // read for the open page of that number (Página_Aberta), or 0
    };

    void Prepara_Ordem();
    bool Lê_Limite(std::source_location onde);
    QVector<Entrada> Busca_Página(const Entrada* de, bool adiante, int máximo, std::source_location onde);
    bool Entrada_Da_Linha(qint64 id, bool filtrada, Entrada& entrada, std::source_location onde);
    bool Passo(bool adiante, std::source_location onde);
    void Anda(bool adiante, std::source_location onde);
    void Começa(bool do_início, std::source_location onde);
    void Começa_Se_Pendente() const;
    void Começa_Com_Limite(bool do_início, std::source_location onde);
    void Carrega_Estático(std::source_location onde);
    bool Lê_Linha(qint64 id);
    bool Linha_Da_Página(const Entrada& entrada);
    bool Lê_Linhas_Da_Página(bool adiante);
    bool Tem_Linha_Atual() const;
    // A row read and current, not being edited: a field of it is read as it stands.
    bool Leitura_Direta(int posição) const {
        return Onde == Lugar::Na_Linha && Linha_Lida && !Linha_Adiada && Aberto_ && !Estático &&
               !Começo_Pendente && Modo == Modo_Edição::Nenhum && Pendentes.isEmpty() && posição >= 0 &&
               posição < Linha.size();
    }
    qint64 Id_Atual() const { return Janela[Atual].Id; }
    bool Converte_Para_Gravar(int posição, const QVariant& valor, QVariant& saída, Falha_Banco& falha) const;
    void Descarta_Edição();

    std::shared_ptr<Sessão> Sessão_;
    std::shared_ptr<const Estrutura_Tabela> Estrutura;
    QString Resto_Consulta;
    QString Campos_Da_Tabela;  // the table's fields in their order, named: a server's row id stays out
    QString Índice_Atual;
    bool Aberto_ = false;
    bool Começo_Pendente = false;  // opened, not yet placed at its first row

    // keyset, read in pages
    QString Origem;             // "FROM <table> WHERE (<criterion>) AND +rowid <= ?": the rows of the source
    QString Origem_Sem_Limite;  // "FROM <table> WHERE (<criterion>)", or "WHERE true"
    QVector<Termo_Ordem> Ordem;
    bool Ordem_Servida = true;      // an index serves the order's first term
    bool Sem_Critério = true;       // the source is the whole table
    QString Colunas_Chave;          // ", <term>, ..." as selected with each row id
    qint64 Limite_Id = 0;           // the greatest row id when the keyset was taken
    bool Limite_Na_Página = false;  // the next first page reads Limite_Id
    QVector<Entrada> Janela;
    int Atual = -1;
    Lugar Onde = Lugar::Antes;
    bool Vazio = true;
    mutable int Contagem = -1;  // RecordCount, counted when first asked
    int Excluídas_Antes_Da_Contagem = 0;
    bool Linha_Lida = false;
    // The row just written is read back when first asked for, not at once: a slot written row after row
    // (an import, the audit trail) reads nothing back.
    bool Linha_Adiada = false;
    bool Garante_Linha();
    // The statements of the writes, by kind and fields written: built once for the slot's table.
    QHash<quint64, QString> Textos_Gravação;
    bool Recusa_Do_Valor_ = false;
    QVector<QVariant> Linha;
    // The file's mark when Linha was read, if it was read with one: an edit need not read it again while
    // it stays intact.
    std::optional<Carimbo_Dados> Carimbo_Linha;

    // the page a window shows at once: how many rows it takes, and its number, or 0 when none is open
    int Linhas_Página = 0;
    quint32 Página_Aberta = 0;
    quint32 Páginas_Abertas = 0;

    // static result
    bool Estático = false;
    int Posição = -1;
    QStringList Nomes_Estáticos;
    QVector<int> Tipos_Estáticos;
    QVector<QVector<QVariant>> Linhas_Estáticas;

    Modo_Edição Modo = Modo_Edição::Nenhum;
    // The values set since AddNew or since the edit began, by field position, in the order of the positions:
    // a few fields, set and written row after row, so a short list that keeps its room between rows.
    struct Valores_Pendentes {
        QVector<std::pair<int, QVariant>> Itens;
        const QVariant* Procura(int posição) const {
            for (const auto& [p, valor] : Itens)
                if (p == posição) return &valor;
            return nullptr;
        }
        QVariant Valor(int posição) const {
            const QVariant* valor = Procura(posição);
            return valor ? *valor : QVariant();
        }
        void Põe(int posição, const QVariant& valor) {
            auto it = Itens.begin();
            while (it != Itens.end() && it->first < posição) ++it;
            if (it != Itens.end() && it->first == posição)
                it->second = valor;
            else
                Itens.insert(it, {posição, valor});
        }
        bool isEmpty() const { return Itens.isEmpty(); }
        void clear() { Itens.clear(); }
    };
    Valores_Pendentes Pendentes;
    bool Trava_Sem_Transação = false;
};

// What every step of a walk asks, answered where it is asked.
inline QVariant Campo::Value(std::source_location onde) const {
    if (R->Leitura_Direta(Posição)) return R->Linha.at(Posição);
    return Valor_Pedido(onde);
}
