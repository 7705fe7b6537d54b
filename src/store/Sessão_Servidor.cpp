#include "store/Sessão_Servidor.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QVector>
#include <libpq-fe.h>
#include <optional>

#include "store/Comando_Banco.h"
#include "store/Tradutor_SQL.h"

namespace {
// Types of the server (pg_type oids) that are read as numbers.
constexpr Oid Oid_Booleano = 16, Oid_Int8 = 20, Oid_Int2 = 21, Oid_Int4 = 23, Oid_Float4 = 700,
              Oid_Float8 = 701, Oid_Numeric = 1700;

// Text columns compare as Jet did: case ignored, accents kept (ICU's secondary strength); Like works on
// the lower-cased text under a deterministic ICU collation, since the server refuses Like on the other.
const char* const Criação_Colação =
    "CREATE COLLATION IF NOT EXISTS jet (provider = icu, locale = 'und-u-ks-level2', deterministic = false)";

// A failure of the server's own, kept for Falha_Da_Última.
struct Falha_Servidor {
    QString Estado;  // SQLSTATE
    QString Mensagem;
};

Falha_Servidor Falha_Do_Resultado(PGconn* conexão, const PGresult* resultado) {
    Falha_Servidor f;
    if (resultado != nullptr) {
        f.Estado = QString::fromLatin1(PQresultErrorField(resultado, PG_DIAG_SQLSTATE));
        f.Mensagem = QString::fromUtf8(PQresultErrorField(resultado, PG_DIAG_MESSAGE_PRIMARY));
    }
    if (f.Mensagem.isEmpty()) f.Mensagem = QString::fromUtf8(PQerrorMessage(conexão)).trimmed();
    if (f.Estado.isEmpty() && PQstatus(conexão) != CONNECTION_OK) f.Estado = "08006";
    return f;
}

Falha_Banco Falha_Traduzida(const Falha_Servidor& f) {
    const QString& e = f.Estado;
    if (e == "23505") return {-2147217887, Texto_Índice_Duplicado};
    if (e == "23502" || e == "23514" || e == "22001" || e.startsWith("22"))
        return {-2147467259, "Restrição violada: " + f.Mensagem, true};
    if (e == "55P03" || e == "40P01" || e == "40001")
        return {-2147467259,
                "Não foi possível atualizar; o banco de dados está bloqueado no momento por outro usuário."};
    if (e == "42P01")
        return {-2147217865,
                "O mecanismo de banco de dados não pôde encontrar o objeto (" + f.Mensagem + ")."};
    if (e == "42703")
        return {-2147217904,
                "Nenhum valor foi fornecido para um ou mais parâmetros necessários (" + f.Mensagem + ")."};
    if (e.startsWith("42")) return {-2147217900, "Erro de sintaxe na instrução SQL: " + f.Mensagem + "."};
    if (e.startsWith("08") || e.startsWith("57P"))
        return {-2147467259, "A conexão com o servidor de banco de dados foi perdida: " + f.Mensagem + "."};
    return {-2147467259, "Falha do banco de dados: " + f.Mensagem + "."};
}

void Sem_Avisos(void*, const char*) {}

PGconn* Conecta(const QString& conexão, Falha_Banco& falha) {
    PGconn* c = PQconnectdb(conexão.toUtf8().constData());
    if (PQstatus(c) != CONNECTION_OK) {
        falha = {-2147467259, "Não foi possível conectar ao servidor de banco de dados indicado em Dados/" +
                                  Arquivo_Servidor + " (" + QString::fromUtf8(PQerrorMessage(c)).trimmed() +
                                  ")."};
        PQfinish(c);
        return nullptr;
    }
    PQsetNoticeProcessor(c, Sem_Avisos, nullptr);
    PQclear(
        PQexec(c, "SET client_encoding TO 'UTF8'; SET DateStyle TO ISO, YMD; SET extra_float_digits TO 3"));
    return c;
}

// Runs statements with no values; false with the failure when the server refuses.
bool Executa_Simples(PGconn* c, const QString& sql, Falha_Servidor* falha = nullptr) {
    PGresult* r = PQexec(c, sql.toUtf8().constData());
    const ExecStatusType estado = PQresultStatus(r);
    const bool ok = estado == PGRES_COMMAND_OK || estado == PGRES_TUPLES_OK;
    if (!ok && falha != nullptr) *falha = Falha_Do_Resultado(c, r);
    PQclear(r);
    return ok;
}

bool É_Escrita(const QString& sql) {
    const QString início = sql.trimmed().left(7).toLower();
    return início.startsWith("insert") || início.startsWith("update") || início.startsWith("delete");
}
}  // namespace

// ---------- where the databases live ----------

QString Esquema_Do_Servidor(const QString& caminho_banco) {
    const QString nome = QFileInfo(caminho_banco).fileName();
    if (nome.compare("Dados.Mdb", Qt::CaseInsensitive) == 0) return "dados";
    if (nome.compare("Manutenção.Mdb", Qt::CaseInsensitive) == 0) return "manutencao";
    if (nome.compare("Cópia do Banco de Dados.Mdb", Qt::CaseInsensitive) == 0) return "copia";
    if (nome.compare("Estatísticas.Mdb", Qt::CaseInsensitive) == 0) return "estatisticas";
    return QString();
}

QString Conexão_Do_Servidor(const QString& caminho_banco) {
    if (Esquema_Do_Servidor(caminho_banco).isEmpty()) return QString();
    QFile arquivo(QFileInfo(caminho_banco).absolutePath() + "/" + Arquivo_Servidor);
    if (!arquivo.open(QIODevice::ReadOnly | QIODevice::Text)) return QString();
    // The first line that is neither blank nor a comment.
    for (const QString& linha : QString::fromUtf8(arquivo.readAll()).split('\n')) {
        const QString texto = linha.trimmed();
        if (!texto.isEmpty() && !texto.startsWith('#')) return texto;
    }
    return QString();
}

namespace {
// One statement on a connection of its own, closed with it; the server's refusal translated, its SQLSTATE
// in `estado`.
bool Executa_Avulso(const QString& conexão, const QString& sql, Falha_Banco& falha,
                    QString* estado = nullptr) {
    PGconn* c = Conecta(conexão, falha);
    if (c == nullptr) return false;
    Falha_Servidor f;
    const bool ok = Executa_Simples(c, sql, &f);
    if (!ok) {
        falha = Falha_Traduzida(f);
        if (estado != nullptr) *estado = f.Estado;
    }
    PQfinish(c);
    return ok;
}
}  // namespace

bool Cria_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha) {
    QString estado;
    const bool ok = Executa_Avulso(conexão,
                                   "CREATE SCHEMA " + Citação(esquema) + "; SET search_path TO " +
                                       Citação(esquema) + "; " + Criação_Colação,
                                   falha, &estado);
    if (!ok && estado == "42P06") falha = {3367, "O banco de dados '" + esquema + "' já existe."};
    return ok;
}

bool Exclui_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha) {
    return Executa_Avulso(conexão, "DROP SCHEMA IF EXISTS " + Citação(esquema) + " CASCADE", falha);
}

bool Renomeia_Esquema_Servidor(const QString& conexão, const QString& esquema, const QString& novo,
                               Falha_Banco& falha) {
    return Executa_Avulso(conexão,
                          "ALTER SCHEMA " + Citação(esquema) + " RENAME TO " + Citação(novo.left(60)), falha);
}

QString Motivo_Sem_Conexão(const QString& conexão) {
    PGconn* c = PQconnectdb(conexão.toUtf8().constData());
    const QString motivo =
        PQstatus(c) == CONNECTION_OK ? QString() : QString::fromUtf8(PQerrorMessage(c)).simplified();
    PQfinish(c);
    return motivo;
}

bool Existe_Esquema_Servidor(const QString& conexão, const QString& esquema, Falha_Banco& falha) {
    PGconn* c = Conecta(conexão, falha);
    if (c == nullptr) return false;
    PGresult* r = PQexec(
        c, ("SELECT 1 FROM pg_namespace WHERE nspname = " + Valor_Texto_SQL(esquema)).toUtf8().constData());
    const bool existe = PQresultStatus(r) == PGRES_TUPLES_OK && PQntuples(r) == 1;
    PQclear(r);
    PQfinish(c);
    return existe;
}

int Tabelas_No_Servidor(const QString& conexão, Falha_Banco& falha) {
    PGconn* c = Conecta(conexão, falha);
    if (c == nullptr) return -1;
    // Tables and views anywhere, and schemas of any name: a new database holds only the empty "public".
    PGresult* r =
        PQexec(c,
               "SELECT (SELECT count(*) FROM pg_class k JOIN pg_namespace n ON n.oid = k.relnamespace "
               "WHERE k.relkind IN ('r', 'p', 'v', 'm', 'f') AND n.nspname NOT IN ('pg_catalog', "
               "'information_schema') AND n.nspname NOT LIKE 'pg\\_%'), (SELECT count(*) FROM "
               "pg_namespace WHERE nspname NOT IN ('public', 'information_schema') AND nspname NOT "
               "LIKE 'pg\\_%')");
    int tabelas = -1;
    if (PQresultStatus(r) == PGRES_TUPLES_OK && PQntuples(r) == 1) {
        tabelas = QByteArray(PQgetvalue(r, 0, 0)).toInt();
        // A schema with no table still belongs to someone.
        if (tabelas == 0 && QByteArray(PQgetvalue(r, 0, 1)).toInt() > 0) tabelas = 1;
    } else {
        falha = {-2147467259,
                 "O servidor recusou a consulta: " + QString::fromUtf8(PQerrorMessage(c)).trimmed()};
    }
    PQclear(r);
    PQfinish(c);
    return tabelas;
}

// ---------- translation ----------

namespace {
bool Letra_de_Nome(QChar c) {
    return c.isLetterOrNumber() || c == '_';
}

// A Like pattern of Jet (brackets for a literal sign) as the server's, lower-cased: "\" escapes.
QString Padrão_Like(const QString& jet) {
    QString saída;
    for (int i = 0; i < jet.size(); ++i) {
        const QChar c = jet[i];
        if (c == '[' && i + 2 < jet.size() && jet[i + 2] == ']') {
            saída += '\\';
            saída += jet[i + 1];
            i += 2;
        } else if (c == '\\') {
            saída += "\\\\";
        } else {
            saída += c;
        }
    }
    return saída.toLower();
}

struct Pedaço {
    enum Tipo { Nome, Texto, Outro } Tipo;
    QString Texto_;
};
}  // namespace

QString Traduz_Para_Servidor(const QString& sql, const QHash<QString, QString>& nomes, int& valores) {
    // Words that stay as they are, even where a field bears the same name.
    static const QSet<QString> reservadas = {
        "select", "from",    "where",     "and",    "or",   "not",     "is",      "null",
        "like",   "order",   "by",        "asc",    "desc", "limit",   "insert",  "into",
        "values", "update",  "set",       "delete", "true", "false",   "between", "in",
        "count",  "default", "returning", "rowid",  "as",   "distinct"};
    QVector<Pedaço> pedaços;
    valores = 0;
    const int n = static_cast<int>(sql.size());
    for (int i = 0; i < n;) {
        const QChar c = sql[i];
        if (c == '\'' || c == '"') {
            int j = i + 1;
            while (j < n) {
                if (sql[j] == c) {
                    if (j + 1 < n && sql[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            const QString parte = sql.mid(i, j + 1 - i);
            pedaços.append({c == '\'' ? Pedaço::Texto : Pedaço::Nome, parte});
            i = j + 1;
        } else if (c == '?') {
            pedaços.append({Pedaço::Outro, "$" + QString::number(++valores)});
            ++i;
        } else if (c == '+' && sql.mid(i + 1, 5).compare("rowid", Qt::CaseInsensitive) == 0) {
            ++i;  // SQLite's hint not to use the row id's index; the server plans for itself
        } else if (Letra_de_Nome(c) && !c.isDigit()) {
            int j = i;
            while (j < n && Letra_de_Nome(sql[j])) ++j;
            const QString palavra = sql.mid(i, j - i);
            const QString minúscula = palavra.toLower();
            const auto achado = nomes.constFind(minúscula);
            if (!reservadas.contains(minúscula) && achado != nomes.constEnd())
                pedaços.append({Pedaço::Nome, Citação(*achado)});
            else
                pedaços.append({Pedaço::Outro, palavra});
            i = j;
        } else {
            int j = i + 1;
            while (j < n && sql[j] != '\'' && sql[j] != '"' && sql[j] != '?' && sql[j] != '+' &&
                   !(Letra_de_Nome(sql[j]) && !sql[j].isDigit()))
                ++j;
            pedaços.append({Pedaço::Outro, sql.mid(i, j - i)});
            i = j;
        }
    }
    // "<field> Like '<pattern>'": the field lower-cased under a deterministic collation.
    for (int k = 0; k < pedaços.size(); ++k) {
        if (pedaços[k].Tipo != Pedaço::Outro || pedaços[k].Texto_.compare("like", Qt::CaseInsensitive) != 0)
            continue;
        int antes = k - 1;
        while (antes >= 0 && pedaços[antes].Tipo == Pedaço::Outro &&
               pedaços[antes].Texto_.trimmed().isEmpty())
            --antes;
        int depois = k + 1;
        while (depois < pedaços.size() && pedaços[depois].Tipo == Pedaço::Outro &&
               pedaços[depois].Texto_.trimmed().isEmpty())
            ++depois;
        if (antes < 0 || depois >= pedaços.size() || pedaços[antes].Tipo != Pedaço::Nome) continue;
        pedaços[antes].Texto_ = "lower(" + pedaços[antes].Texto_ + "::text COLLATE \"und-x-icu\")";
        if (pedaços[depois].Tipo == Pedaço::Texto) {
            QString padrão = pedaços[depois].Texto_.mid(1, pedaços[depois].Texto_.size() - 2);
            padrão.replace("''", "'");
            pedaços[depois].Texto_ = Valor_Texto_SQL(Padrão_Like(padrão));
        }
    }
    // Nulls stand first in an ascending order, as in the embedded engine (the server puts them last).
    int ordem = -1;
    for (int k = 0; k + 2 < pedaços.size(); ++k)
        if (pedaços[k].Tipo == Pedaço::Outro &&
            pedaços[k].Texto_.compare("order", Qt::CaseInsensitive) == 0 &&
            pedaços[k + 2].Texto_.compare("by", Qt::CaseInsensitive) == 0)
            ordem = k + 3;
    QString saída;
    saída.reserve(sql.size() + 32);
    const int fim_ordem = [&] {
        if (ordem < 0) return -1;
        for (int k = ordem; k < pedaços.size(); ++k)
            if (pedaços[k].Tipo == Pedaço::Outro &&
                pedaços[k].Texto_.compare("limit", Qt::CaseInsensitive) == 0)
                return k;
        return static_cast<int>(pedaços.size());
    }();
    for (int k = 0; k < pedaços.size(); ++k) {
        if (k != ordem) {
            saída += pedaços[k].Texto_;
            continue;
        }
        QString termos;
        for (; k < fim_ordem; ++k) termos += pedaços[k].Texto_;
        --k;
        QStringList com_nulos;
        for (QString termo : termos.split(',')) {
            termo = termo.trimmed();
            // The row id is never null: a nulls clause on it would keep the server from its index.
            if (termo.section(' ', 0, 0).compare("rowid", Qt::CaseInsensitive) == 0)
                com_nulos << termo;
            else
                com_nulos << termo + (termo.endsWith(" desc", Qt::CaseInsensitive) ? " NULLS LAST"
                                                                                   : " NULLS FIRST");
        }
        saída += " " + com_nulos.join(", ") + (fim_ordem < pedaços.size() ? " " : "");
    }
    return saída;
}

// ---------- the session ----------

namespace {
class Sessão_Servidor;

// A statement prepared on the server. Values go as text and the server infers their types.
class Comando_Servidor final : public Comando_Banco {
  public:
    Comando_Servidor(Sessão_Servidor* sessão, QByteArray nome, int valores, bool escrita, bool inclusão)
        : S(sessão), Nome(std::move(nome)), Valores(valores), Escrita(escrita), Inclusão(inclusão) {}
    ~Comando_Servidor() override {
        Reinicia();
        if (Descrição != nullptr) PQclear(Descrição);
    }
    // The columns are known once prepared, before the statement runs.
    void Descreve(PGresult* descrição) { Descrição = descrição; }
    void Liga_Nulo(int p) override { Valor(p).reset(); }
    void Liga_Inteiro(int p, qint64 v) override { Valor(p) = QByteArray::number(v); }
    void Liga_Real(int p, double v) override { Valor(p) = QByteArray::number(v, 'g', 17); }
    void Liga_Texto(int p, const QByteArray& t) override { Valor(p) = t; }
    int Passo() override;
    void Reinicia() override {
        if (R != nullptr) PQclear(R);
        R = nullptr;
        Linha = -1;
    }
    void Limpa_Valores() override { Ligados.clear(); }
    int Colunas() const override { return Descrição ? PQnfields(Descrição) : 0; }
    QString Nome_Coluna(int i) const override {
        return Descrição ? QString::fromUtf8(PQfname(Descrição, i)) : QString();
    }
    Tipo_Valor Tipo(int i) const override {
        if (PQgetisnull(R, Linha, i)) return Tipo_Valor::Nulo;
        switch (PQftype(R, i)) {
            case Oid_Booleano:
            case Oid_Int2:
            case Oid_Int4:
            case Oid_Int8:
                return Tipo_Valor::Inteiro;
            case Oid_Float4:
            case Oid_Float8:
            case Oid_Numeric:
                return Tipo_Valor::Real;
            default:
                return Tipo_Valor::Texto;
        }
    }
    qint64 Inteiro(int i) const override {
        const char* v = PQgetvalue(R, Linha, i);
        if (PQftype(R, i) == Oid_Booleano) return v[0] == 't' ? 1 : 0;
        return std::strtoll(v, nullptr, 10);
    }
    double Real(int i) const override { return std::strtod(PQgetvalue(R, Linha, i), nullptr); }
    QByteArray Bytes(int i) const override {
        if (PQftype(R, i) == Oid_Booleano) return QByteArray::number(Inteiro(i));
        return QByteArray(PQgetvalue(R, Linha, i), PQgetlength(R, Linha, i));
    }
    QString Texto(int i) const override {
        if (PQftype(R, i) == Oid_Booleano) return QString::number(Inteiro(i));
        return QString::fromUtf8(PQgetvalue(R, Linha, i), PQgetlength(R, Linha, i));
    }

  private:
    std::optional<QByteArray>& Valor(int p) {
        if (Ligados.size() < Valores) Ligados.resize(Valores);
        static std::optional<QByteArray> sobra;
        return p >= 1 && p <= Valores ? Ligados[p - 1] : sobra;
    }
    Sessão_Servidor* S;
    QByteArray Nome;
    int Valores;
    bool Escrita;
    bool Inclusão;
    QVector<std::optional<QByteArray>> Ligados;
    PGresult* R = nullptr;
    PGresult* Descrição = nullptr;
    int Linha = -1;
};

class Sessão_Servidor final : public Sessão {
  public:
    Sessão_Servidor(QString chave, PGconn* conexão) : Sessão(std::move(chave)), C(conexão) {}
    ~Sessão_Servidor() override {
        qDeleteAll(Comandos);
        PQfinish(C);
    }
    bool Servidor() const override { return true; }

    bool Prepara_Escrita(Falha_Banco& falha) override {
        if (!Transação_Lógica || Transação_SQL) return true;
        return Começa_Transação(falha);
    }
    bool Confirma(Falha_Banco& falha) override {
        bool ok = true;
        if (Transação_SQL) {
            Falha_Servidor f;
            if (!Executa_Simples(C, "COMMIT", &f)) {
                Guarda(f, falha);
                Executa_Simples(C, "ROLLBACK");
                ok = false;
            }
        }
        Fim_Da_Transação();
        return ok;
    }
    bool Desfaz(Falha_Banco& falha) override {
        bool ok = true;
        Esquece_Contagens();
        if (Transação_SQL) {
            Falha_Servidor f;
            if (!Executa_Simples(C, "ROLLBACK", &f)) {
                Guarda(f, falha);
                ok = false;
            }
        }
        Fim_Da_Transação();
        return ok;
    }

    Comando_Banco* Prepara(const QString& sql, Falha_Banco& falha) override {
        if (auto it = Comandos.find(sql); it != Comandos.end()) {
            (*it)->Reinicia();
            (*it)->Limpa_Valores();
            return *it;
        }
        if (Nomes.isEmpty()) Lê_Nomes();
        int valores = 0;
        QString texto = Traduz_Para_Servidor(sql, Nomes, valores);
        const bool escrita = É_Escrita(sql);
        const bool inclusão = sql.trimmed().startsWith("insert", Qt::CaseInsensitive);
        if (inclusão) texto += " RETURNING rowid";
        // Statements that carry their values in the text (a window's criterion) are many: the store keeps
        // a bounded number of them prepared, as the embedded session does.
        if (Comandos.size() > 200) {
            qDeleteAll(Comandos);
            Comandos.clear();
            PQclear(PQexec(C, "DEALLOCATE ALL"));
        }
        const QByteArray nome = "q" + QByteArray::number(++Série);
        // A statement refused as it is prepared must not spoil the transaction's earlier work either.
        const bool protegida = Transação_SQL && Algo_Na_Transação;
        if (protegida) Executa_Simples(C, "SAVEPOINT preparo");
        PGresult* r = PQprepare(C, nome.constData(), texto.toUtf8().constData(), 0, nullptr);
        bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
        Falha_Servidor f;
        if (!ok) f = Falha_Do_Resultado(C, r);
        PQclear(r);
        if (protegida)
            Executa_Simples(C, ok ? "RELEASE SAVEPOINT preparo"
                                  : "ROLLBACK TO SAVEPOINT preparo; RELEASE SAVEPOINT preparo");
        else if (!ok && Transação_SQL)
            Recomeça_Transação();
        // A table or field made by another workstation since the names were read: read them again once.
        if (!ok && (f.Estado == "42P01" || f.Estado == "42703") && !Nomes_Relidos) {
            Nomes_Relidos = true;
            Nomes.clear();
            Comando_Banco* de_novo = Prepara(sql, falha);
            Nomes_Relidos = false;
            return de_novo;
        }
        if (!ok) {
            Guarda(f, falha);
            return nullptr;
        }
        auto* comando = new Comando_Servidor(this, nome, valores, escrita, inclusão);
        comando->Descreve(PQdescribePrepared(C, nome.constData()));
        Comandos.insert(sql, comando);
        return comando;
    }

    bool Executa(const QString& sql, Falha_Banco& falha) override {
        Esquece_Contagens();
        if (Nomes.isEmpty()) Lê_Nomes();
        int valores = 0;
        const QString texto = Traduz_Para_Servidor(sql, Nomes, valores);
        Falha_Servidor f;
        bool ok;
        if (Transação_SQL) {
            // Inside a transaction a refused statement must not spoil what came before it.
            Algo_Na_Transação = true;
            Executa_Simples(C, "SAVEPOINT escrita");
            ok = Executa_Simples(C, texto, &f);
            Executa_Simples(C, ok ? "RELEASE SAVEPOINT escrita"
                                  : "ROLLBACK TO SAVEPOINT escrita; RELEASE SAVEPOINT escrita");
        } else {
            ok = Executa_Simples(C, texto, &f);
        }
        if (!ok) Guarda(f, falha);
        return ok;
    }

    // Runs a statement of the catalogue, already in the server's words.
    bool Executa_Direto(const QString& sql, Falha_Banco& falha) {
        Falha_Servidor f;
        const bool ok = Executa_Simples(C, sql, &f);
        if (!ok) Guarda(f, falha);
        Esquece_Estruturas();
        return ok;
    }

    void Falha_Da_Última(Falha_Banco& falha, int) const override { falha = Falha_Traduzida(Última); }
    qint64 Último_Id() const override { return Id_Inserido; }

    // The server has no cheap sign of another workstation's writes: every count is asked again.
    bool Contagem_Memorizada(const QString&, qint64&) override { return false; }
    void Memoriza_Contagem(const QString&, qint64) override {}

    void Esquece_Estruturas() override {
        Sessão::Esquece_Estruturas();
        qDeleteAll(Comandos);
        Comandos.clear();
        Nomes.clear();
        Executa_Simples(C, "DEALLOCATE ALL");
    }

    QStringList Tabelas() override {
        QStringList nomes;
        PGresult* r = PQexec(C,
                             "SELECT c.relname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                             "WHERE n.nspname = current_schema() AND c.relkind = 'r' ORDER BY c.relname");
        for (int i = 0; PQresultStatus(r) == PGRES_TUPLES_OK && i < PQntuples(r); ++i)
            nomes << QString::fromUtf8(PQgetvalue(r, i, 0));
        PQclear(r);
        return nomes;
    }

    // The server's own row lock, taken inside a savepoint so that a refusal leaves the transaction whole.
    // Without a logical transaction the lock opens one of its own, ended when the edit ends.
    bool Trava_Linha(const QString& tabela, qint64 linha) override {
        const auto chave = qMakePair(tabela.toLower(), linha);
        if (Travas.contains(chave)) return true;
        Falha_Banco ignorada;
        if (!Transação_SQL) {
            if (!Começa_Transação(ignorada)) return false;
            Transação_Da_Trava = !Transação_Lógica;
        }
        const QString sql = "SAVEPOINT trava; SELECT 1 FROM " + Citação(Nome_Criado(tabela)) +
                            " WHERE rowid = " + QString::number(linha) +
                            " FOR UPDATE NOWAIT; RELEASE SAVEPOINT trava";
        if (!Executa_Simples(C, sql)) {
            Executa_Simples(C, "ROLLBACK TO SAVEPOINT trava; RELEASE SAVEPOINT trava");
            if (Transação_Da_Trava && Travas.isEmpty()) Termina_Transação_Da_Trava();
            return false;
        }
        Travas.insert(chave);
        Algo_Na_Transação = true;
        return true;
    }
    bool Possui_Trava(const QString& tabela, qint64 linha) const override {
        return Travas.contains(qMakePair(tabela.toLower(), linha));
    }
    void Libera_Trava(const QString& tabela, qint64 linha) override {
        // A lock is the server's: it goes with the transaction. Only the edit's own transaction ends here.
        if (!Travas.remove(qMakePair(tabela.toLower(), linha))) return;
        if (Transação_Da_Trava && !Transação_Lógica && Travas.isEmpty()) Termina_Transação_Da_Trava();
    }
    void Libera_Travas() override { Travas.clear(); }
    // The server gives no cheap mark of other workstations' commits: rows are read again as they come.
    bool Carimbo(Carimbo_Dados&) override { return false; }

    PGconn* Conexão() const { return C; }
    bool Algo_Na_Transação = false;  // a write or a lock that a refusal must not undo
    void Recomeça_Transação() {
        Executa_Simples(C, "ROLLBACK");
        Executa_Simples(C, "BEGIN");
    }
    void Guarda(const Falha_Servidor& f, Falha_Banco& falha) {
        Última = f;
        falha = Falha_Traduzida(f);
    }
    void Guarda_Resultado(const PGresult* r) { Última = Falha_Do_Resultado(C, r); }
    void Anota_Id(qint64 id) { Id_Inserido = id; }

  protected:
    std::shared_ptr<Estrutura_Tabela> Lê_Estrutura(const QString& tabela, Falha_Banco& falha) override;

  private:
    bool Começa_Transação(Falha_Banco& falha) {
        Falha_Servidor f;
        if (!Executa_Simples(C, "BEGIN", &f)) {
            Guarda(f, falha);
            return false;
        }
        Transação_SQL = true;
        Algo_Na_Transação = false;
        return true;
    }
    void Termina_Transação_Da_Trava() {
        Executa_Simples(C, "COMMIT");
        Transação_SQL = false;
        Transação_Da_Trava = false;
    }
    void Fim_Da_Transação() {
        Transação_SQL = false;
        Transação_Lógica = false;
        Transação_Da_Trava = false;
        Travas.clear();
    }
    QString Nome_Criado(const QString& nome) {
        if (Nomes.isEmpty()) Lê_Nomes();
        return Nomes.value(nome.toLower(), nome);
    }
    // The names of the schema's tables and fields, as they were created.
    void Lê_Nomes() {
        Nomes.clear();
        PGresult* r = PQexec(C,
                             "SELECT c.relname, a.attname FROM pg_class c "
                             "JOIN pg_namespace n ON n.oid = c.relnamespace "
                             "LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT "
                             "a.attisdropped WHERE n.nspname = current_schema() AND c.relkind = 'r'");
        for (int i = 0; PQresultStatus(r) == PGRES_TUPLES_OK && i < PQntuples(r); ++i)
            for (int k = 0; k < 2; ++k)
                if (!PQgetisnull(r, i, k)) {
                    const QString nome = QString::fromUtf8(PQgetvalue(r, i, k));
                    Nomes.insert(nome.toLower(), nome);
                }
        PQclear(r);
        Nomes.remove("rowid");
        if (Nomes.isEmpty()) Nomes.insert(QString(), QString());  // read, and empty
    }

    PGconn* C;
    QHash<QString, Comando_Banco*> Comandos;
    QHash<QString, QString> Nomes;
    bool Nomes_Relidos = false;
    int Série = 0;
    Falha_Servidor Última;
    qint64 Id_Inserido = 0;
    QSet<QPair<QString, qint64>> Travas;
    bool Transação_Da_Trava = false;
};

int Comando_Servidor::Passo() {
    if (R == nullptr) {
        PGconn* c = S->Conexão();
        QVector<const char*> ponteiros(Valores);
        QVector<QByteArray> textos(Valores);
        Ligados.resize(Valores);
        for (int i = 0; i < Valores; ++i) {
            if (Ligados[i]) {
                textos[i] = *Ligados[i];
                ponteiros[i] = textos[i].constData();
            } else {
                ponteiros[i] = nullptr;
            }
        }
        // A write refused inside a transaction must not spoil what the transaction did before it: it runs
        // inside a savepoint. With nothing done yet, the transaction is simply begun again on a refusal.
        const bool em_transação = Escrita && S->Transação_SQL;
        const bool protegida = em_transação && S->Algo_Na_Transação;
        if (protegida) Executa_Simples(c, "SAVEPOINT escrita");
        R = PQexecPrepared(c, Nome.constData(), Valores, ponteiros.data(), nullptr, nullptr, 0);
        const ExecStatusType estado = PQresultStatus(R);
        const bool ok = estado == PGRES_TUPLES_OK || estado == PGRES_COMMAND_OK;
        if (protegida)
            Executa_Simples(c, ok ? "RELEASE SAVEPOINT escrita"
                                  : "ROLLBACK TO SAVEPOINT escrita; RELEASE SAVEPOINT escrita");
        if (!ok) {
            S->Guarda_Resultado(R);
            Reinicia();
            if (em_transação && !protegida) S->Recomeça_Transação();
            return 1;
        }
        if (em_transação) S->Algo_Na_Transação = true;
        if (Inclusão) {
            if (PQntuples(R) == 1) S->Anota_Id(std::strtoll(PQgetvalue(R, 0, 0), nullptr, 10));
            Reinicia();
            R = PQmakeEmptyPGresult(c, PGRES_COMMAND_OK);
            Linha = 0;
            return Fim_Comando;
        }
    }
    if (Linha + 1 < PQntuples(R)) {
        ++Linha;
        return Linha_Pronta;
    }
    Linha = PQntuples(R);
    return Fim_Comando;
}

Campo_Info Campo_Do_Tipo_Servidor(const QString& nome, const QString& tipo, const QString& comentário,
                                  bool identidade) {
    Campo_Info campo;
    campo.Nome = nome;
    campo.Zero = comentário.contains("ZERO");
    if (tipo.startsWith("character varying")) {
        campo.Tipo = Tipo_Texto;
        static const QRegularExpression largura("\\((\\d+)\\)");
        const auto m = largura.match(tipo);
        campo.Largura = m.hasMatch() ? m.captured(1).toInt() : 255;
    } else if (tipo == "text") {
        campo.Tipo = Tipo_Memo;
    } else if (tipo.startsWith("double")) {
        campo.Tipo = Tipo_Double;
    } else if (tipo.startsWith("timestamp")) {
        campo.Tipo = Tipo_Data;
    } else if (tipo == "boolean") {
        campo.Tipo = Tipo_Boolean;
    } else {
        campo.Tipo = Tipo_Long;
        campo.Auto = identidade;
    }
    return campo;
}

std::shared_ptr<Estrutura_Tabela> Sessão_Servidor::Lê_Estrutura(const QString& tabela, Falha_Banco& falha) {
    QString criado;
    for (const QString& nome : Tabelas())
        if (nome.compare(tabela, Qt::CaseInsensitive) == 0) criado = nome;
    if (criado.isEmpty()) {
        falha = {-2147217865, "O mecanismo de banco de dados não pôde encontrar o objeto '" + tabela + "'."};
        return nullptr;
    }
    auto estrutura = std::make_shared<Estrutura_Tabela>();
    estrutura->Nome = criado;
    const QString oid = "(" + Valor_Texto_SQL(Citação(criado)) + "::regclass)";
    PGresult* r = PQexec(C, ("SELECT a.attname, format_type(a.atttypid, a.atttypmod), "
                             "coalesce(col_description(a.attrelid, a.attnum), ''), a.attidentity <> '' "
                             "FROM pg_attribute a WHERE a.attrelid = " +
                             oid +
                             " AND a.attnum > 0 AND NOT a.attisdropped AND a.attname <> 'rowid' "
                             "ORDER BY a.attnum")
                                .toUtf8()
                                .constData());
    for (int i = 0; PQresultStatus(r) == PGRES_TUPLES_OK && i < PQntuples(r); ++i)
        estrutura->Campos.append(Campo_Do_Tipo_Servidor(
            QString::fromUtf8(PQgetvalue(r, i, 0)), QString::fromUtf8(PQgetvalue(r, i, 1)),
            QString::fromUtf8(PQgetvalue(r, i, 2)), PQgetvalue(r, i, 3)[0] == 't'));
    PQclear(r);
    // The indexes of the catalogue carry their name in a comment; the store's own have none.
    r = PQexec(C, ("SELECT obj_description(i.indexrelid, 'pg_class'), i.indisunique, "
                   "(SELECT string_agg(a.attname, E'\\n' ORDER BY k.n) FROM unnest(i.indkey) "
                   "WITH ORDINALITY k(num, n) JOIN pg_attribute a ON a.attrelid = i.indrelid AND a.attnum = "
                   "k.num) FROM pg_index i WHERE i.indrelid = " +
                   oid + " ORDER BY i.indexrelid")
                      .toUtf8()
                      .constData());
    for (int i = 0; PQresultStatus(r) == PGRES_TUPLES_OK && i < PQntuples(r); ++i) {
        if (PQgetisnull(r, i, 0)) continue;
        const QString comentário = QString::fromUtf8(PQgetvalue(r, i, 0));
        Índice_Info índice;
        índice.Nome = comentário.section(' ', 0, 0);
        índice.Tipo = comentário.contains("PRIMARY")  ? Tipo_Índice::Primário
                      : PQgetvalue(r, i, 1)[0] == 't' ? Tipo_Índice::Único
                                                      : Tipo_Índice::Simples;
        índice.Campos = QString::fromUtf8(PQgetvalue(r, i, 2)).split('\n');
        índice.Campos.removeAll("rowid");
        estrutura->Índices.append(índice);
    }
    PQclear(r);
    return estrutura;
}
}  // namespace

std::shared_ptr<Sessão> Abre_Sessão_Servidor(const QString& chave, const QString& conexão,
                                             const QString& esquema, Falha_Banco& falha) {
    PGconn* c = Conecta(conexão, falha);
    if (c == nullptr) return nullptr;
    PGresult* r = PQexec(
        c, ("SELECT 1 FROM pg_namespace WHERE nspname = " + Valor_Texto_SQL(esquema)).toUtf8().constData());
    const bool existe = PQresultStatus(r) == PGRES_TUPLES_OK && PQntuples(r) == 1;
    PQclear(r);
    if (!existe) {
        falha = {-2147467259, "Não foi possível encontrar o banco de dados '" + esquema + "' no servidor."};
        PQfinish(c);
        return nullptr;
    }
    Executa_Simples(c, "SET search_path TO " + Citação(esquema));
    return std::make_shared<Sessão_Servidor>(chave, c);
}

bool Executa_No_Servidor_Avulso(const QString& caminho_banco, const QStringList& comandos) {
    Falha_Banco falha;
    auto sessão = Abre_Sessão_Servidor(caminho_banco, Conexão_Do_Servidor(caminho_banco),
                                       Esquema_Do_Servidor(caminho_banco), falha);
    if (!sessão) return false;
    for (const QString& comando : comandos)
        if (!sessão->Executa(comando, falha)) return false;
    return true;
}

// ---------- catalogue ----------

namespace Catálogo_Servidor {
namespace {
Sessão_Servidor& Do_Servidor(Sessão& sessão) {
    return static_cast<Sessão_Servidor&>(sessão);
}

// Index names of the server are per schema and at most 63 bytes: a digest of "table.index" stands for
// the name, which the index carries in its comment.
QString Nome_Físico(const QString& prefixo, const QString& tabela, const QString& índice) {
    return prefixo + QString::fromLatin1(QCryptographicHash::hash((tabela + "." + índice).toLower().toUtf8(),
                                                                  QCryptographicHash::Md5)
                                             .toHex()
                                             .left(24));
}

QString Comentário_Campo(const QString& tabela, const Campo_Info& campo) {
    return "; COMMENT ON COLUMN " + Citação(tabela) + "." + Citação(campo.Nome) + " IS " +
           (campo.Zero ? "'ZERO'" : "NULL");
}

QString Nome_Da_Tabela(Sessão& sessão, const QString& tabela) {
    Falha_Banco ignorada;
    auto estrutura = sessão.Estrutura(tabela, ignorada);
    return estrutura ? estrutura->Nome : tabela;
}
}  // namespace

QString Tipo_Declarado(const Campo_Info& campo) {
    switch (campo.Tipo) {
        case Tipo_Texto:
            return "varchar(" + QString::number(campo.Largura) + ") COLLATE jet";
        case Tipo_Memo:
            return "text COLLATE jet";
        case Tipo_Double:
            return "double precision";
        case Tipo_Data:
            return "timestamp(0)";
        case Tipo_Boolean:
            return "boolean";
        default:
            return campo.Auto ? "integer GENERATED BY DEFAULT AS IDENTITY" : "integer";
    }
}

bool Cria_Tabela(Sessão& sessão, const QString& tabela, const QVector<Campo_Info>& campos,
                 Falha_Banco& falha) {
    // The row id stands last, out of the table's structure.
    QString sql = "CREATE TABLE " + Citação(tabela) + " (";
    for (const Campo_Info& c : campos) sql += Citação(c.Nome) + " " + Tipo_Declarado(c) + ", ";
    sql += "rowid bigserial PRIMARY KEY)";
    for (const Campo_Info& c : campos)
        if (c.Zero) sql += Comentário_Campo(tabela, c);
    return Do_Servidor(sessão).Executa_Direto(sql, falha);
}

bool Adiciona_Campo(Sessão& sessão, const QString& tabela, const Campo_Info& campo, Falha_Banco& falha) {
    const QString nome = Nome_Da_Tabela(sessão, tabela);
    return Do_Servidor(sessão).Executa_Direto("ALTER TABLE " + Citação(nome) + " ADD COLUMN " +
                                                  Citação(campo.Nome) + " " + Tipo_Declarado(campo) +
                                                  Comentário_Campo(nome, campo),
                                              falha);
}

bool Altera_Campo(Sessão& sessão, const QString& tabela, const Campo_Info& campo, Falha_Banco& falha) {
    const QString nome = Nome_Da_Tabela(sessão, tabela);
    Falha_Banco ignorada;
    auto estrutura = sessão.Estrutura(tabela, ignorada);
    const int posição = estrutura ? estrutura->Posição_Campo(campo.Nome) : -1;
    if (posição < 0) {
        falha = {3265, "O campo '" + campo.Nome + "' não existe na tabela '" + tabela + "'."};
        return false;
    }
    Campo_Info novo = campo;
    novo.Nome = estrutura->Campos[posição].Nome;
    QString tipo = Tipo_Declarado(novo);
    tipo.remove(" GENERATED BY DEFAULT AS IDENTITY");
    return Do_Servidor(sessão).Executa_Direto("ALTER TABLE " + Citação(nome) + " ALTER COLUMN " +
                                                  Citação(novo.Nome) + " TYPE " + tipo +
                                                  Comentário_Campo(nome, novo),
                                              falha);
}

bool Adiciona_Índice(Sessão& sessão, const QString& tabela, const Índice_Info& índice, Falha_Banco& falha) {
    const QString nome = Nome_Da_Tabela(sessão, tabela);
    const QString físico = Nome_Físico("i_", nome, índice.Nome);
    // The walk's order: nulls first, and equal keys by row id (a unique index has no equal keys).
    QString campos;
    for (const QString& c : índice.Campos)
        campos += (campos.isEmpty() ? "" : ", ") + Citação(c) + " NULLS FIRST";
    if (índice.Tipo == Tipo_Índice::Simples) campos += ", rowid";
    const QString comentário = índice.Nome + (índice.Tipo == Tipo_Índice::Primário ? " PRIMARY" : "");
    return Do_Servidor(sessão).Executa_Direto(
        QString("CREATE ") + (índice.Tipo == Tipo_Índice::Simples ? "" : "UNIQUE ") + "INDEX " +
            Citação(físico) + " ON " + Citação(nome) + " (" + campos + "); COMMENT ON INDEX " +
            Citação(físico) + " IS " + Valor_Texto_SQL(comentário),
        falha);
}

bool Exclui_Índice(Sessão& sessão, const QString& tabela, const QString& índice, Falha_Banco& falha) {
    return Do_Servidor(sessão).Executa_Direto(
        "DROP INDEX " + Citação(Nome_Físico("i_", Nome_Da_Tabela(sessão, tabela), índice)), falha);
}

bool Garante_Índice_de_Consulta(Sessão& sessão, const QString& tabela, const QString& campo,
                                Falha_Banco& falha) {
    const QString nome = Nome_Da_Tabela(sessão, tabela);
    return Do_Servidor(sessão).Executa_Direto(
        "CREATE INDEX IF NOT EXISTS " + Citação(Nome_Físico("c_", nome, campo)) + " ON " + Citação(nome) +
            " (" + Citação(campo) + " NULLS FIRST, rowid)",
        falha);
}

bool Acerta_Numeração(Sessão& sessão, const Estrutura_Tabela& estrutura, Falha_Banco& falha) {
    for (const Campo_Info& campo : estrutura.Campos) {
        if (!campo.Auto) continue;
        const QString tabela = Citação(Nome_Da_Tabela(sessão, estrutura.Nome));
        if (!Do_Servidor(sessão).Executa_Direto("SELECT setval(pg_get_serial_sequence(" +
                                                    Valor_Texto_SQL(tabela) + ", " +
                                                    Valor_Texto_SQL(campo.Nome) + "), coalesce(max(" +
                                                    Citação(campo.Nome) + "), 0) + 1, false) FROM " + tabela,
                                                falha))
            return false;
    }
    return true;
}

bool Copia_Banco(Sessão& sessão, const QString& destino, Falha_Banco& falha) {
    const QString esquema = Esquema_Do_Servidor(destino);
    if (esquema.isEmpty()) {
        falha = {-2147467259, "O banco de dados '" + destino + "' não pode ficar no servidor."};
        return false;
    }
    PGresult* r = PQexec(Do_Servidor(sessão).Conexão(), "SELECT current_schema()");
    const QString origem = QString::fromUtf8(PQgetvalue(r, 0, 0));
    PQclear(r);
    QString sql = "DROP SCHEMA IF EXISTS " + Citação(esquema) + " CASCADE; CREATE SCHEMA " + Citação(esquema);
    for (const QString& tabela : sessão.Tabelas()) {
        const QString de = Citação(origem) + "." + Citação(tabela);
        const QString para = Citação(esquema) + "." + Citação(tabela);
        sql += "; CREATE TABLE " + para + " (LIKE " + de + " INCLUDING ALL); INSERT INTO " + para +
               " SELECT * FROM " + de;
    }
    return Do_Servidor(sessão).Executa_Direto(sql, falha);
}
}  // namespace Catálogo_Servidor
