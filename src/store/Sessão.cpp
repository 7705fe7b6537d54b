#include "store/Sessão.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sqlite3.h>
#include <unistd.h>

#include "failure/Trata_Erro.h"
#include "store/Comando_Banco.h"
#include "store/Comparação.h"
#include "store/Descarga_Paralela.h"
#include "store/Linha_Empacotada.h"
#include "store/Sessão_Servidor.h"

namespace {
QHash<QString, std::weak_ptr<Sessão>>& Registro() {
    static QHash<QString, std::weak_ptr<Sessão>> registro;
    return registro;
}

QString Chave(const QString& caminho) {
    return QFileInfo(caminho).absoluteFilePath();
}

// The part of the WAL index file mapped for the data mark: its header lies in the first page.
constexpr long Tamanho_Índice_Wal = 4096;

const QString Texto_Transação_Desfeita =
    "O banco de dados desfez a transação depois de uma falha: nada dela foi gravado";

// A wait for another copy's write lock; past it the write is refused as "in use".
constexpr int Espera_Escrita_ms = 8000;

void Configura(sqlite3* banco, const QString& caminho) {
    sqlite3_busy_timeout(banco, Espera_Escrita_ms);
    sqlite3_extended_result_codes(banco, 1);
    Registra_Comparação(banco);
    sqlite3_exec(banco, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    // The scratch database is rebuilt by every export; the others must survive a power cut.
    const bool rascunho = QFileInfo(caminho).fileName().compare("Temp.Mdb", Qt::CaseInsensitive) == 0;
    sqlite3_exec(banco, rascunho ? "PRAGMA synchronous=NORMAL" : "PRAGMA synchronous=FULL", nullptr, nullptr,
                 nullptr);
}
}  // namespace

// The embedded engine: one SQLite file.
class Sessão_SQLite final : public Sessão {
  public:
    explicit Sessão_SQLite(QString caminho) : Sessão(std::move(caminho)) {}
    ~Sessão_SQLite() override;
    bool Prepara_Escrita(Falha_Banco& falha) override;
    bool Confirma(Falha_Banco& falha) override;
    bool Desfaz(Falha_Banco& falha) override;
    Comando_Banco* Prepara(const QString& sql, Falha_Banco& falha) override;
    bool Executa(const QString& sql, Falha_Banco& falha) override;
    void Falha_Da_Última(Falha_Banco& falha, int código) const override;
    qint64 Último_Id() const override { return sqlite3_last_insert_rowid(Banco); }
    bool Contagem_Memorizada(const QString& sql, qint64& contagem) override;
    void Memoriza_Contagem(const QString& sql, qint64 contagem) override;
    void Esquece_Estruturas() override;
    QStringList Tabelas() override;
    bool Trava_Linha(const QString& tabela, qint64 linha) override;
    bool Possui_Trava(const QString& tabela, qint64 linha) const override;
    void Libera_Trava(const QString& tabela, qint64 linha) override;
    void Libera_Travas() override;
    bool Carimbo(Carimbo_Dados& carimbo) override;

  protected:
    std::shared_ptr<Estrutura_Tabela> Lê_Estrutura(const QString& tabela, Falha_Banco& falha) override;

  private:
    // A full disk or a read-only file may make the engine undo the whole transaction by itself; the
    // refusal is kept to be told for the commit that finds nothing left.
    bool Desfeita_Pelo_Motor() const { return Transação_SQL && sqlite3_get_autocommit(Banco) != 0; }
    mutable Falha_Banco Última_Recusa;
    static qint64 Posição_Trava(const QString& tabela, qint64 linha);
    QHash<QString, Comando_Banco*> Comandos;
    qint64 Versão_Dados = -1;  // the file's data_version when the counts were taken
    // A long write (an export stamps every row) holds many locks at once: looked up by value, not walked.
    QSet<qint64> Travas;
    int Descritor_Travas = -1;
    const unsigned char* Índice_Wal = nullptr;  // the WAL index file's first page, mapped read-only
    bool Sem_Índice_Wal = false;
};

namespace {
// The kind of a value as the engine tells it.
Tipo_Valor Tipo_Do_Engenho(int tipo) {
    switch (tipo) {
        case SQLITE_NULL:
            return Tipo_Valor::Nulo;
        case SQLITE_INTEGER:
            return Tipo_Valor::Inteiro;
        case SQLITE_FLOAT:
            return Tipo_Valor::Real;
        default:
            return Tipo_Valor::Texto;
    }
}
}  // namespace

// A prepared SQLite statement.
class Comando_SQLite final : public Comando_Banco {
  public:
    explicit Comando_SQLite(sqlite3_stmt* comando) : C(comando) {}
    ~Comando_SQLite() override { sqlite3_finalize(C); }
    void Liga_Nulo(int p) override { sqlite3_bind_null(C, p); }
    void Liga_Inteiro(int p, qint64 v) override { sqlite3_bind_int64(C, p, v); }
    void Liga_Real(int p, double v) override { sqlite3_bind_double(C, p, v); }
    void Liga_Texto(int p, const QByteArray& t) override {
        sqlite3_bind_text(C, p, t.constData(), static_cast<int>(t.size()), SQLITE_TRANSIENT);
    }
    int Passo() override { return sqlite3_step(C); }
    void Reinicia() override { sqlite3_reset(C); }
    void Limpa_Valores() override { sqlite3_clear_bindings(C); }
    int Colunas() const override { return sqlite3_column_count(C); }
    QString Nome_Coluna(int i) const override { return QString::fromUtf8(sqlite3_column_name(C, i)); }
    Tipo_Valor Tipo(int i) const override { return Tipo_Do_Engenho(sqlite3_column_type(C, i)); }
    qint64 Inteiro(int i) const override { return sqlite3_column_int64(C, i); }
    double Real(int i) const override { return sqlite3_column_double(C, i); }
    QByteArray Bytes(int i) const override {
        return QByteArray(reinterpret_cast<const char*>(sqlite3_column_text(C, i)),
                          sqlite3_column_bytes(C, i));
    }
    QString Texto(int i) const override {
        return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(C, i)),
                                 sqlite3_column_bytes(C, i));
    }
    QByteArrayView Vista_Bytes(int i, QByteArray&) const override {
        const char* texto = reinterpret_cast<const char*>(sqlite3_column_text(C, i));
        return QByteArrayView(texto, sqlite3_column_bytes(C, i));
    }
    // A page's rows are packed as they come: each column is taken once from the row and read through its
    // own value, without the look-up that every sqlite3_column_ call repeats (the connection is used by
    // one thread only, so the value needs no guard).
    qsizetype Empacota(const Coluna_Empacotada* plano, int colunas, QByteArray& bloco,
                       qsizetype início) const override {
        struct Leitor {
            sqlite3_stmt* C;
            sqlite3_value* Valor(int coluna) const { return sqlite3_column_value(C, coluna); }
            static Tipo_Valor Tipo(sqlite3_value* v) { return Tipo_Do_Engenho(sqlite3_value_type(v)); }
            static qint64 Inteiro(sqlite3_value* v) { return sqlite3_value_int64(v); }
            static double Real(sqlite3_value* v) { return sqlite3_value_double(v); }
            static QByteArrayView Texto(sqlite3_value* v) {
                const char* texto = reinterpret_cast<const char*>(sqlite3_value_text(v));
                return QByteArrayView(texto, sqlite3_value_bytes(v));
            }
        };
        return Empacota_Linha(Leitor{C}, plano, colunas, bloco, início);
    }

  private:
    sqlite3_stmt* C;
};

namespace {
QString Pasta_Do_Arquivo(const QString& caminho) {
    return QDir::toNativeSeparators(QFileInfo(caminho).absolutePath());
}
}  // namespace

QString Texto_Disco_Cheio(const QString& caminho) {
    return "Não há espaço em disco para gravar na pasta " + Pasta_Do_Arquivo(caminho) +
           ": a gravação foi recusada. Libere espaço nesse disco e tente de novo";
}

QString Texto_Somente_Leitura(const QString& caminho) {
    return "O sistema abriu o banco de dados " + QDir::toNativeSeparators(caminho) +
           " somente para leitura: a gravação foi recusada. Verifique se o disco da pasta " +
           Pasta_Do_Arquivo(caminho) + " não passou a ser somente leitura e se há permissão de gravação nela";
}

QString Texto_Banco_Danificado(const QString& caminho) {
    return "O arquivo " + QDir::toNativeSeparators(caminho) + " está danificado e não pode ser lido";
}

QString Citação(const QString& identificador) {
    QString s = identificador;
    s.replace('"', "\"\"");
    return '"' + s + '"';
}

QString Nome_Índice_Físico(const QString& tabela, const QString& índice) {
    return tabela + "." + índice;
}

QString Nome_Índice_de_Consulta(const QString& tabela, const QString& campo) {
    return "Consulta " + tabela + " " + campo;
}

int Estrutura_Tabela::Posição_Campo(const QString& nome) const {
    // Names are nearly always written as created: the exact comparison first, which is much cheaper.
    for (int i = 0; i < Campos.size(); ++i)
        if (Campos[i].Nome == nome) return i;
    for (int i = 0; i < Campos.size(); ++i)
        if (Campos[i].Nome.compare(nome, Qt::CaseInsensitive) == 0) return i;
    return -1;
}

const Índice_Info* Estrutura_Tabela::Índice(const QString& nome) const {
    for (const auto& índice : Índices)
        if (índice.Nome.compare(nome, Qt::CaseInsensitive) == 0) return &índice;
    return nullptr;
}

Sessão::Sessão(QString caminho) : Caminho(std::move(caminho)) {}

Sessão::~Sessão() = default;

Sessão_SQLite::~Sessão_SQLite() {
    Descarga_Própria.reset();  // before the connection it hooks goes
    qDeleteAll(Comandos);
    if (Banco != nullptr) sqlite3_close_v2(Banco);
    if (Descritor_Travas >= 0) ::close(Descritor_Travas);
    if (Índice_Wal != nullptr) ::munmap(const_cast<unsigned char*>(Índice_Wal), Tamanho_Índice_Wal);
}

bool Sessão_SQLite::Carimbo(Carimbo_Dados& carimbo) {
    if (Índice_Wal == nullptr && !Sem_Índice_Wal) {
        // The header is mapped once the file is known to be in WAL mode; this connection keeps the index
        // file open from then on, so it is neither removed nor cut short under the mapping.
        Falha_Banco falha;
        bool wal = false;
        if (Comando_Banco* comando = Prepara("PRAGMA journal_mode", falha)) {
            wal = comando->Passo() == Linha_Pronta && comando->Texto(0) == "wal";
            comando->Reinicia();
        }
        const QByteArray nome = QFile::encodeName(Caminho + "-shm");
        const int descritor = wal ? ::open(nome.constData(), O_RDONLY | O_CLOEXEC) : -1;
        struct stat estado {};
        if (descritor >= 0 && ::fstat(descritor, &estado) == 0 && estado.st_size >= Tamanho_Índice_Wal) {
            void* mapa = ::mmap(nullptr, Tamanho_Índice_Wal, PROT_READ, MAP_SHARED, descritor, 0);
            if (mapa != MAP_FAILED) Índice_Wal = static_cast<const unsigned char*>(mapa);
        }
        if (descritor >= 0) ::close(descritor);
        Sem_Índice_Wal = Índice_Wal == nullptr;
    }
    if (Índice_Wal == nullptr) return false;
    // The first copy of the header is the one that writers finish last.
    std::memcpy(carimbo.Cabeçalho.data(), Índice_Wal, carimbo.Cabeçalho.size());
    carimbo.Mudanças = Mudanças_Da_Conexão();
    return true;
}

std::shared_ptr<Sessão> Sessão::Procura(const QString& caminho) {
    return Registro().value(Chave(caminho)).lock();
}

void Sessão::Descarga_Em_Segundo_Plano() {
    if (Banco != nullptr && !Descarga_Própria)
        Descarga_Própria = std::make_unique<Descarga_Paralela>(Banco, Caminho);
}

void Sessão::Retira_do_Registro() {
    auto& registro = Registro();
    auto it = registro.find(Chave(Caminho));
    if (it != registro.end() && it->lock().get() == this) registro.erase(it);
}

std::shared_ptr<Sessão> Sessão::Abre(const QString& caminho, Falha_Banco& falha) {
    if (auto existente = Procura(caminho)) return existente;
    if (const QString servidor = Conexão_Do_Servidor(caminho); !servidor.isEmpty()) {
        auto sessão = Abre_Sessão_Servidor(Chave(caminho), servidor, Esquema_Do_Servidor(caminho), falha);
        if (sessão) Registro().insert(Chave(caminho), sessão);
        return sessão;
    }
    if (!QFileInfo::exists(caminho)) {
        falha = {-2147467259, "Não foi possível encontrar o arquivo '" + caminho + "'."};
        return nullptr;
    }
    sqlite3* banco = nullptr;
    const QByteArray nome = caminho.toUtf8();
    int r = sqlite3_open_v2(nome.constData(), &banco, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    // A file that is not a database is found out by the first read.
    if (r == SQLITE_OK)
        r = sqlite3_exec(banco, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
    if (r != SQLITE_OK) {
        const int código = sqlite3_extended_errcode(banco);
        if ((código & 0xFF) == SQLITE_NOTADB || (código & 0xFF) == SQLITE_CORRUPT)
            falha = {Erro_Banco_Danificado, Texto_Banco_Danificado(caminho)};
        else
            falha = {-2147467259, "Não foi possível abrir o banco de dados '" + caminho +
                                      "': " + QString::fromUtf8(sqlite3_errmsg(banco)) + "."};
        // Closing the only connection takes away the journal files that the attempt may have made; the
        // file itself is not written.
        sqlite3_close_v2(banco);
        return nullptr;
    }
    Configura(banco, caminho);
    std::shared_ptr<Sessão> sessão = std::make_shared<Sessão_SQLite>(Chave(caminho));
    sessão->Banco = banco;
    Registro().insert(Chave(caminho), sessão);
    return sessão;
}

bool Sessão::Cria_Arquivo(const QString& caminho, Falha_Banco& falha) {
    if (const QString servidor = Conexão_Do_Servidor(caminho); !servidor.isEmpty())
        return Cria_Esquema_Servidor(servidor, Esquema_Do_Servidor(caminho), falha);
    if (QFileInfo::exists(caminho)) {
        falha = {3367, "O banco de dados '" + caminho + "' já existe."};
        return false;
    }
    sqlite3* banco = nullptr;
    const QByteArray nome = caminho.toUtf8();
    int r = sqlite3_open_v2(nome.constData(), &banco, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (r == SQLITE_OK) r = sqlite3_exec(banco, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    if (r != SQLITE_OK) {
        falha = {-2147467259, "Não foi possível criar o banco de dados '" + caminho +
                                  "': " + QString::fromUtf8(sqlite3_errmsg(banco))};
        sqlite3_close_v2(banco);
        return false;
    }
    sqlite3_close_v2(banco);
    return true;
}

bool Sessão_SQLite::Prepara_Escrita(Falha_Banco& falha) {
    // Once the engine has undone the transaction, a write would be committed on its own: it is refused.
    if (Transação_Lógica && Desfeita_Pelo_Motor()) {
        falha = Última_Recusa.Houve() ? Última_Recusa : Falha_Banco{-2147467259, Texto_Transação_Desfeita};
        return false;
    }
    if (!Transação_Lógica || Transação_SQL) return true;
    const int r = sqlite3_exec(Banco, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (r != SQLITE_OK) {
        Falha_Da_Última(falha, r);
        return false;
    }
    Transação_SQL = true;
    Última_Recusa = {};
    return true;
}

bool Sessão_SQLite::Confirma(Falha_Banco& falha) {
    bool ok = true;
    if (Desfeita_Pelo_Motor()) {
        falha = Última_Recusa.Houve() ? Última_Recusa : Falha_Banco{-2147467259, Texto_Transação_Desfeita};
        Esquece_Contagens();
        ok = false;
    } else if (Transação_SQL) {
        const int r = sqlite3_exec(Banco, "COMMIT", nullptr, nullptr, nullptr);
        if (r != SQLITE_OK) {
            Falha_Da_Última(falha, r);
            sqlite3_exec(Banco, "ROLLBACK", nullptr, nullptr, nullptr);
            Esquece_Contagens();  // counts taken inside the transaction went with it
            ok = false;
        }
    }
    Transação_SQL = false;
    Transação_Lógica = false;
    Libera_Travas();
    return ok;
}

bool Sessão_SQLite::Desfaz(Falha_Banco& falha) {
    bool ok = true;
    Esquece_Contagens();  // counts taken inside the transaction are undone with it
    if (Transação_SQL && sqlite3_get_autocommit(Banco) == 0) {
        // The rows the transaction wrote go back to what they were, which no change count tells: a row read
        // before the roll-back is read again.
        ++Desfeitas;
        const int r = sqlite3_exec(Banco, "ROLLBACK", nullptr, nullptr, nullptr);
        if (r != SQLITE_OK) {
            Falha_Da_Última(falha, r);
            ok = false;
        }
    }
    Transação_SQL = false;
    Transação_Lógica = false;
    Libera_Travas();
    return ok;
}

void Sessão_SQLite::Falha_Da_Última(Falha_Banco& falha, int código) const {
    const QString mensagem = QString::fromUtf8(sqlite3_errmsg(Banco));
    switch (código & 0xFF) {
        case SQLITE_CONSTRAINT:
            if (código == SQLITE_CONSTRAINT_UNIQUE || código == SQLITE_CONSTRAINT_PRIMARYKEY) {
                falha = {-2147217887, Texto_Índice_Duplicado};
                return;
            }
            falha = {-2147467259, "Restrição violada: " + mensagem, true};
            return;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            falha = {-2147467259,
                     "Não foi possível atualizar; o banco de dados está bloqueado no momento por outro "
                     "usuário."};
            return;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            falha = {Erro_Banco_Danificado, Texto_Banco_Danificado(Caminho)};
            return;
        // Writes that no retry passes until the user acts: the disk is full, or the system lets the file
        // be read only (a read-only mount, a file without write permission).
        case SQLITE_FULL:
            falha = Última_Recusa = {Erro_Disco_Cheio, Texto_Disco_Cheio(Caminho)};
            return;
        case SQLITE_READONLY:
            falha = Última_Recusa = {Erro_Somente_Leitura, Texto_Somente_Leitura(Caminho)};
            return;
        case SQLITE_IOERR:
            if (const int erro = sqlite3_system_errno(Banco); erro == ENOSPC || erro == EDQUOT) {
                falha = Última_Recusa = {Erro_Disco_Cheio, Texto_Disco_Cheio(Caminho)};
                return;
            } else if (erro == EROFS) {
                falha = Última_Recusa = {Erro_Somente_Leitura, Texto_Somente_Leitura(Caminho)};
                return;
            }
            falha = {-2147467259, "Falha do banco de dados: " + mensagem + "."};
            return;
        case SQLITE_ERROR:
            if (mensagem.startsWith("no such table"))
                falha = {-2147217865, "O mecanismo de banco de dados não pôde encontrar o objeto '" +
                                          mensagem.section(':', 1).trimmed() + "'."};
            else if (mensagem.startsWith("no such column"))
                falha = {-2147217904, "Nenhum valor foi fornecido para um ou mais parâmetros necessários (" +
                                          mensagem.section(':', 1).trimmed() + ")."};
            else
                falha = {-2147217900, "Erro de sintaxe na instrução SQL: " + mensagem + "."};
            return;
        default:
            falha = {-2147467259, "Falha do banco de dados: " + mensagem + "."};
    }
}

Comando_Banco* Sessão_SQLite::Prepara(const QString& sql, Falha_Banco& falha) {
    auto it = Comandos.find(sql);
    if (it != Comandos.end()) {
        (*it)->Reinicia();
        (*it)->Limpa_Valores();
        return *it;
    }
    sqlite3_stmt* comando = nullptr;
    const QByteArray texto = sql.toUtf8();
    const int r = sqlite3_prepare_v3(Banco, texto.constData(), static_cast<int>(texto.size()),
                                     SQLITE_PREPARE_PERSISTENT, &comando, nullptr);
    if (r != SQLITE_OK) {
        Falha_Da_Última(falha, r);
        return nullptr;
    }
    if (Comandos.size() > 200) {
        qDeleteAll(Comandos);
        Comandos.clear();
    }
    auto* novo = new Comando_SQLite(comando);
    Comandos.insert(sql, novo);
    return novo;
}

bool Sessão_SQLite::Executa(const QString& sql, Falha_Banco& falha) {
    Esquece_Contagens();  // a statement of any kind may write to any table
    const QByteArray texto = sql.toUtf8();
    const int r = sqlite3_exec(Banco, texto.constData(), nullptr, nullptr, nullptr);
    if (r != SQLITE_OK) {
        Falha_Da_Última(falha, r);
        return false;
    }
    return true;
}

QString Tabela_Da_Contagem(const QString& sql) {
    static const QRegularExpression contagem(
        "^\\s*select\\s+count\\s*\\(\\s*\\*\\s*\\)\\s+from\\s+([^\\s;]+)",
        QRegularExpression::CaseInsensitiveOption);
    const auto m = contagem.match(sql);
    return m.hasMatch() ? m.captured(1).toLower() : QString();
}

bool Sessão_SQLite::Contagem_Memorizada(const QString& sql, qint64& contagem) {
    const QString tabela = Tabela_Da_Contagem(sql);
    if (tabela.isEmpty()) return false;
    // Another process's commit changes the file's data version: then nothing kept can be trusted.
    qint64 versão = -1;
    Falha_Banco falha;
    if (Comando_Banco* comando = Prepara("PRAGMA data_version", falha)) {
        if (comando->Passo() == Linha_Pronta) versão = comando->Inteiro(0);
        comando->Reinicia();
    }
    if (versão < 0 || versão != Versão_Dados) {
        Contagens.clear();
        Versão_Dados = versão;
        return false;
    }
    const auto it = Contagens.constFind(sql);
    if (it == Contagens.constEnd() || it->Escritas != Escritas_Por_Tabela.value(tabela)) return false;
    contagem = it->Valor;
    return true;
}

void Sessão_SQLite::Memoriza_Contagem(const QString& sql, qint64 contagem) {
    const QString tabela = Tabela_Da_Contagem(sql);
    if (tabela.isEmpty() || Versão_Dados < 0) return;
    if (Contagens.size() > 64) Contagens.clear();
    Contagens.insert(sql, {tabela, contagem, Escritas_Por_Tabela.value(tabela)});
}

bool Sessão::Escreve_Depois(Comando_Banco* comando, Falha_Banco& falha) {
    const int r = comando->Passo();
    if (r == Fim_Comando || r == Linha_Pronta) return true;
    Falha_Da_Última(falha, r);
    return false;
}

void Sessão::Marca_Escrita(const QString& tabela, qint64 linha) {
    // A table is written row after row: its name in lower case is made once for the run.
    if (tabela != Tabela_Escrita) {
        Tabela_Escrita = tabela;
        Chave_Tabela_Escrita = tabela.toLower();
    }
    ++Escritas_Por_Tabela[Chave_Tabela_Escrita];
    // Only an embedded file's marks count changes. A statement that changed other rows than this one is
    // not noted: the rows read before it are then read again.
    if (Banco == nullptr || linha == 0 || sqlite3_changes64(Banco) != 1) return;
    const qint64 mudança = Mudanças_Da_Conexão();
    if (!Escritas_Recentes.isEmpty() && Escritas_Recentes.last().Mudança >= mudança) return;
    // Enough for a page of rows stamped one by one; older writes leave older reads to be read again.
    constexpr int Guardadas = 256;
    if (Escritas_Recentes.size() >= 2 * Guardadas) Escritas_Recentes.remove(0, Guardadas);
    Escritas_Recentes.append({mudança, tabela, linha});
}

qint64 Sessão::Mudanças_Da_Conexão() const {
    return sqlite3_total_changes64(Banco) + Desfeitas;
}

bool Sessão::Linha_Intacta(const Carimbo_Dados& lido, const Carimbo_Dados& agora, const QString& tabela,
                           qint64 linha) const {
    if (lido.Cabeçalho != agora.Cabeçalho || lido.Mudanças > agora.Mudanças) return false;
    qint64 contadas = 0;
    for (auto it = Escritas_Recentes.crbegin();
         it != Escritas_Recentes.crend() && it->Mudança > lido.Mudanças; ++it) {
        if (it->Mudança > agora.Mudanças) continue;
        if (it->Linha == linha && it->Tabela.compare(tabela, Qt::CaseInsensitive) == 0) return false;
        ++contadas;
    }
    // A change that no noted write accounts for may have touched this row.
    return contadas == agora.Mudanças - lido.Mudanças;
}

void Sessão::Esquece_Contagens() {
    Contagens.clear();
}

void Sessão::Esquece_Estruturas() {
    Esquece_Contagens();
    Estruturas.clear();
}

void Sessão_SQLite::Esquece_Estruturas() {
    Sessão::Esquece_Estruturas();
    // Statements may refer to a schema that has changed.
    qDeleteAll(Comandos);
    Comandos.clear();
}

namespace {
QString Texto_Coluna(sqlite3_stmt* c, int i) {
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(c, i)));
}

Campo_Info Campo_Do_Tipo_Declarado(const QString& nome, const QString& declarado, bool chave) {
    Campo_Info campo;
    campo.Nome = nome;
    const QString tipo = declarado.toUpper();
    campo.Zero = tipo.contains("ZERO");
    if (tipo.startsWith("MEMO")) {
        campo.Tipo = Tipo_Memo;
    } else if (tipo.startsWith("TEXT")) {
        campo.Tipo = Tipo_Texto;
        static const QRegularExpression largura("\\((\\d+)\\)");
        const auto m = largura.match(tipo);
        campo.Largura = m.hasMatch() ? m.captured(1).toInt() : 255;
    } else if (tipo == "INTEGER" && chave) {
        campo.Tipo = Tipo_Long;
        campo.Auto = true;
    } else if (tipo.startsWith("DOUBLE")) {
        campo.Tipo = Tipo_Double;
    } else if (tipo.startsWith("DATETIME")) {
        campo.Tipo = Tipo_Data;
    } else if (tipo.startsWith("BOOLEAN")) {
        campo.Tipo = Tipo_Boolean;
    } else {
        campo.Tipo = Tipo_Long;
    }
    return campo;
}
}  // namespace

std::shared_ptr<const Estrutura_Tabela> Sessão::Estrutura(const QString& tabela, Falha_Banco& falha) {
    const QString chave = tabela.toLower();
    if (auto it = Estruturas.find(chave); it != Estruturas.end()) return *it;
    auto estrutura = Lê_Estrutura(tabela, falha);
    if (estrutura) Estruturas.insert(chave, estrutura);
    return estrutura;
}

std::shared_ptr<Estrutura_Tabela> Sessão_SQLite::Lê_Estrutura(const QString& tabela, Falha_Banco& falha) {
    auto estrutura = std::make_shared<Estrutura_Tabela>();
    sqlite3_stmt* c = nullptr;
    QByteArray sql =
        ("SELECT name FROM sqlite_schema WHERE type='table' AND name=" + Citação(tabela).replace('"', '\'') +
         " COLLATE NOCASE")
            .toUtf8();
    sqlite3_prepare_v2(Banco, sql.constData(), -1, &c, nullptr);
    if (c == nullptr || sqlite3_step(c) != SQLITE_ROW) {
        sqlite3_finalize(c);
        falha = {-2147217865, "O mecanismo de banco de dados não pôde encontrar o objeto '" + tabela + "'."};
        return nullptr;
    }
    estrutura->Nome = Texto_Coluna(c, 0);
    sqlite3_finalize(c);

    sql = ("PRAGMA table_info(" + Citação(estrutura->Nome) + ")").toUtf8();
    sqlite3_prepare_v2(Banco, sql.constData(), -1, &c, nullptr);
    while (c != nullptr && sqlite3_step(c) == SQLITE_ROW)
        estrutura->Campos.append(
            Campo_Do_Tipo_Declarado(Texto_Coluna(c, 1), Texto_Coluna(c, 2), sqlite3_column_int(c, 5) != 0));
    sqlite3_finalize(c);

    sql = ("SELECT name, sql FROM sqlite_schema WHERE type='index' AND tbl_name=" +
           Citação(estrutura->Nome).replace('"', '\'') + " AND sql IS NOT NULL ORDER BY rowid")
              .toUtf8();
    sqlite3_prepare_v2(Banco, sql.constData(), -1, &c, nullptr);
    while (c != nullptr && sqlite3_step(c) == SQLITE_ROW) {
        const QString físico = Texto_Coluna(c, 0);
        const QString criação = Texto_Coluna(c, 1);
        if (!físico.contains('.')) continue;  // one of the store's own
        Índice_Info índice;
        índice.Nome = físico.section('.', 1);
        índice.Tipo = criação.contains("/* PRIMARY */")                          ? Tipo_Índice::Primário
                      : criação.startsWith("CREATE UNIQUE", Qt::CaseInsensitive) ? Tipo_Índice::Único
                                                                                 : Tipo_Índice::Simples;
        sqlite3_stmt* colunas = nullptr;
        const QByteArray pragma = ("PRAGMA index_info(" + Citação(físico) + ")").toUtf8();
        sqlite3_prepare_v2(Banco, pragma.constData(), -1, &colunas, nullptr);
        while (colunas != nullptr && sqlite3_step(colunas) == SQLITE_ROW)
            índice.Campos << Texto_Coluna(colunas, 2);
        sqlite3_finalize(colunas);
        estrutura->Índices.append(índice);
    }
    sqlite3_finalize(c);
    return estrutura;
}

QStringList Sessão_SQLite::Tabelas() {
    QStringList nomes;
    sqlite3_stmt* c = nullptr;
    sqlite3_prepare_v2(
        Banco, "SELECT name FROM sqlite_schema WHERE type='table' AND name NOT LIKE 'sqlite_%' ORDER BY name",
        -1, &c, nullptr);
    while (c != nullptr && sqlite3_step(c) == SQLITE_ROW) nomes << Texto_Coluna(c, 0);
    sqlite3_finalize(c);
    return nomes;
}

qint64 Sessão_SQLite::Posição_Trava(const QString& tabela, qint64 linha) {
    // FNV-1a of the lower-cased name, kept to 22 bits so that the offset stays positive.
    quint32 h = 2166136261u;
    for (const QChar ch : tabela.toLower()) {
        h ^= ch.unicode();
        h *= 16777619u;
    }
    return (static_cast<qint64>(h & 0x3FFFFF) << 40) | (linha & ((qint64(1) << 40) - 1));
}

bool Sessão_SQLite::Trava_Linha(const QString& tabela, qint64 linha) {
    const qint64 posição = Posição_Trava(tabela, linha);
    if (Travas.contains(posição)) return true;
    if (Descritor_Travas < 0) {
        const QByteArray nome = QFile::encodeName(Caminho + "-travas");
        Descritor_Travas = ::open(nome.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (Descritor_Travas < 0) return false;
    }
    struct flock trava {};
    trava.l_type = F_WRLCK;
    trava.l_whence = SEEK_SET;
    trava.l_start = posição;
    trava.l_len = 1;
    if (::fcntl(Descritor_Travas, F_OFD_SETLK, &trava) != 0) return false;
    Travas.insert(posição);
    return true;
}

bool Sessão_SQLite::Possui_Trava(const QString& tabela, qint64 linha) const {
    return Travas.contains(Posição_Trava(tabela, linha));
}

void Sessão_SQLite::Libera_Trava(const QString& tabela, qint64 linha) {
    const qint64 posição = Posição_Trava(tabela, linha);
    if (!Travas.remove(posição) || Descritor_Travas < 0) return;
    struct flock trava {};
    trava.l_type = F_UNLCK;
    trava.l_whence = SEEK_SET;
    trava.l_start = posição;
    trava.l_len = 1;
    ::fcntl(Descritor_Travas, F_OFD_SETLK, &trava);
}

void Sessão_SQLite::Libera_Travas() {
    // Every lock on this descriptor is one of ours: one call lets go of them all.
    if (Descritor_Travas >= 0 && !Travas.isEmpty()) {
        struct flock trava {};
        trava.l_type = F_UNLCK;
        trava.l_whence = SEEK_SET;
        trava.l_start = 0;
        trava.l_len = 0;
        ::fcntl(Descritor_Travas, F_OFD_SETLK, &trava);
    }
    Travas.clear();
}
