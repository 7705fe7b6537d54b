#include "store/Sessão_Servidor.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QVector>
#include <libpq-fe.h>
#include <optional>
#include <vector>

#include "common/Globais.h"
#include "failure/Conexão_Perdida.h"
#include "failure/Trata_Erro.h"
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

// The state under which a session keeps a lost connection, already told to the user.
const QString Estado_Conexão_Perdida = "QZ151";

Falha_Banco Falha_Traduzida(const Falha_Servidor& f) {
    const QString& e = f.Estado;
    if (e == Estado_Conexão_Perdida) return {Erro_Conexão_Perdida, f.Mensagem};
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

// A connection with bounds of the program's own: a host that does not answer is given up after some
// seconds, and a server that vanishes while a statement waits is found by the keepalives. Whatever the
// installation's connection string says wins over these.
PGconn* Abre_PG(const QString& conexão) {
    const QByteArray texto = conexão.toUtf8();
    const char* const chaves[] = {"connect_timeout",  "keepalives_idle", "keepalives_interval",
                                  "keepalives_count", "dbname",          nullptr};
    const char* const valores[] = {"10", "20", "5", "3", texto.constData(), nullptr};
    return PQconnectdbParams(chaves, valores, 1);
}

QString Valor_Da_Conexão(const QString& conexão, const char* chave) {
    QString valor;
    PQconninfoOption* opções = PQconninfoParse(conexão.toUtf8().constData(), nullptr);
    for (PQconninfoOption* o = opções; o != nullptr && o->keyword != nullptr; ++o)
        if (qstrcmp(o->keyword, chave) == 0 && o->val != nullptr) valor = QString::fromUtf8(o->val);
    PQconninfoFree(opções);
    return valor;
}

// The server as a user knows it: its name or address, and the port when it is not the usual one.
QString Nome_Servidor(PGconn* c, const QString& conexão) {
    QString nome = c != nullptr ? QString::fromUtf8(PQhost(c)) : QString();
    QString porta = c != nullptr ? QString::fromUtf8(PQport(c)) : QString();
    if (nome.isEmpty()) nome = Valor_Da_Conexão(conexão, "host");
    if (nome.isEmpty()) nome = Valor_Da_Conexão(conexão, "hostaddr");
    if (nome.isEmpty() && !Valor_Da_Conexão(conexão, "service").isEmpty())
        nome = "do serviço " + Valor_Da_Conexão(conexão, "service");
    if (porta.isEmpty()) porta = Valor_Da_Conexão(conexão, "port");
    if (nome.isEmpty() || nome.startsWith('/')) nome = "local" + (nome.isEmpty() ? "" : " (" + nome + ")");
    return porta.isEmpty() || porta == "5432" ? nome : nome + ":" + porta;
}

// Why a connection could not be made, in one Portuguese sentence with its advice; libpq's own words
// follow it as the detail.
QString Motivo_Em_Português(PGconn* c, const QString& conexão) {
    const QString servidor = Nome_Servidor(c, conexão);
    const QString detalhe = QString::fromUtf8(PQerrorMessage(c)).simplified();
    const QString minúsculo = detalhe.toLower();
    QString usuário = QString::fromUtf8(PQuser(c));
    if (usuário.isEmpty()) usuário = Valor_Da_Conexão(conexão, "user");
    QString frase;
    if (PQconnectionNeedsPassword(c) ||
        (PQconnectionUsedPassword(c) && (minúsculo.contains("password") || minúsculo.contains("senha"))))
        frase = "O servidor de banco de dados " + servidor + " recusou o usuário " + usuário +
                " e a senha. A senha desta estação fica no arquivo ~/.pgpass do usuário que abre o " +
                Título_Programa +
                ": confira nele a linha servidor:porta:banco:usuário:senha deste servidor, e que o "
                "arquivo tenha a permissão 0600 (chmod 0600 ~/.pgpass).";
    else if (minúsculo.contains("pg_hba.conf"))
        frase = "O servidor de banco de dados " + servidor +
                " não autorizou esta estação: falta no arquivo pg_hba.conf do servidor a linha que deixa "
                "este computador entrar.";
    else if (minúsculo.contains("does not exist") || minúsculo.contains("não existe"))
        frase = "O servidor de banco de dados " + servidor +
                " respondeu, mas não tem o banco de dados ou o usuário indicado no arquivo Dados/" +
                Arquivo_Servidor + ".";
    else
        frase = "O servidor de banco de dados " + servidor +
                " não respondeu. Verifique se ele está ligado e acessível pela rede, e se o arquivo Dados/" +
                Arquivo_Servidor + " o indica corretamente.";
    return detalhe.isEmpty() ? frase : frase + "\r\rDetalhe: " + detalhe;
}

void Prepara_Conexão(PGconn* c) {
    PQsetNoticeProcessor(c, Sem_Avisos, nullptr);
    PQclear(
        PQexec(c, "SET client_encoding TO 'UTF8'; SET DateStyle TO ISO, YMD; SET extra_float_digits TO 3"));
}

PGconn* Conecta(const QString& conexão, Falha_Banco& falha) {
    PGconn* c = Abre_PG(conexão);
    if (PQstatus(c) != CONNECTION_OK) {
        falha = {-2147467259, Motivo_Em_Português(c, conexão)};
        PQfinish(c);
        return nullptr;
    }
    Prepara_Conexão(c);
    return c;
}

// Losses of the connection met by this process, and whether the box about one is up now.
int Perdas = 0;
bool Em_Recuperação = false;

// Runs statements with no values; false with the failure when the server refuses.
bool Executa_Simples(PGconn* c, const QString& sql, Falha_Servidor* falha = nullptr) {
    PGresult* r = PQexec(c, sql.toUtf8().constData());
    const ExecStatusType estado = PQresultStatus(r);
    const bool ok = estado == PGRES_COMMAND_OK || estado == PGRES_TUPLES_OK;
    if (!ok && falha != nullptr) *falha = Falha_Do_Resultado(c, r);
    PQclear(r);
    return ok;
}

// One statement of an exchange: a text without values, a text with values, a prepared statement run,
// prepared, or described.
struct Pedido {
    enum Tipo { Texto, Com_Valores, Executa, Prepara, Descreve } Tipo;
    const char* Nome_Ou_Texto;
    const char* Texto_Preparo = nullptr;  // Prepara: the statement
    int Quantos = 0;                      // Executa, Com_Valores: the values
    const char* const* Valores = nullptr;
};

// Statements sent to the server whose answers are still to be read.
struct Envio {
    PGconn* C = nullptr;
    std::size_t Enviados = 0;
    bool Sincronizado = false;
};

// Sends statements in one exchange with the server (a pipeline): each goes without waiting for the answer
// to the one before, and the answers are read by Recebe_Respostas, so that the exchanges of several
// connections can be under way at once. `cada_um`: each statement stands apart, a refusal does not make the
// server skip the ones after it (outside a transaction, each is then its own).
Envio Envia_Pedidos(PGconn* c, const std::vector<Pedido>& pedidos, bool cada_um = false) {
    Envio envio{c};
    if (PQenterPipelineMode(c) != 1) return envio;
    for (const Pedido& p : pedidos) {
        int ok = 0;
        switch (p.Tipo) {
            case Pedido::Texto:
                ok = PQsendQueryParams(c, p.Nome_Ou_Texto, 0, nullptr, nullptr, nullptr, nullptr, 0);
                break;
            case Pedido::Com_Valores:
                ok =
                    PQsendQueryParams(c, p.Nome_Ou_Texto, p.Quantos, nullptr, p.Valores, nullptr, nullptr, 0);
                break;
            case Pedido::Executa:
                ok = PQsendQueryPrepared(c, p.Nome_Ou_Texto, p.Quantos, p.Valores, nullptr, nullptr, 0);
                break;
            case Pedido::Prepara:
                ok = PQsendPrepare(c, p.Nome_Ou_Texto, p.Texto_Preparo, 0, nullptr);
                break;
            case Pedido::Descreve:
                ok = PQsendDescribePrepared(c, p.Nome_Ou_Texto);
                break;
        }
        if (ok != 1 || (cada_um && PQpipelineSync(c) != 1)) break;
        ++envio.Enviados;
    }
    // The sync sends what the pipeline holds: from here the server is at work.
    envio.Sincronizado = cada_um ? envio.Enviados == pedidos.size() : PQpipelineSync(c) == 1;
    return envio;
}

// The answers of an exchange: one result per statement, in order (the caller clears them): its own,
// PGRES_PIPELINE_ABORTED for those the server skipped after a refusal, or null when nothing came back
// (the connection was lost).
std::vector<PGresult*> Recebe_Respostas(const Envio& envio, std::size_t quantos) {
    PGconn* c = envio.C;
    std::vector<PGresult*> respostas(quantos, nullptr);
    if (envio.Sincronizado) {
        for (std::size_t i = 0; i < envio.Enviados; ++i)
            while (PGresult* r = PQgetResult(c)) {
                if (respostas[i] == nullptr && PQresultStatus(r) != PGRES_PIPELINE_SYNC)
                    respostas[i] = r;
                else
                    PQclear(r);
            }
    }
    // The rest of the answers, up to the end of the exchange; on a connection gone, nothing more comes.
    for (int vazios = 0; PQexitPipelineMode(c) != 1 && vazios < 3;) {
        if (PGresult* r = PQgetResult(c))
            PQclear(r);
        else
            ++vazios;
    }
    return respostas;
}

std::vector<PGresult*> Numa_Ida(PGconn* c, std::initializer_list<Pedido> pedidos) {
    return Recebe_Respostas(Envia_Pedidos(c, pedidos), pedidos.size());
}

bool Deu_Certo(const PGresult* r) {
    const ExecStatusType estado = PQresultStatus(r);
    return estado == PGRES_COMMAND_OK || estado == PGRES_TUPLES_OK;
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
    PGconn* c = Abre_PG(conexão);
    const QString motivo = PQstatus(c) == CONNECTION_OK ? QString() : Motivo_Em_Português(c, conexão);
    PQfinish(c);
    return motivo;
}

int Perdas_De_Conexão() {
    return Perdas;
}

Vez_Da_Atualização::Vez_Da_Atualização(const QString& conexão) {
    Falha_Banco ignorada;
    C = Conecta(conexão, ignorada);
    // A number of the program's own: the lock is one per server database.
    if (C != nullptr) PQclear(PQexec(C, "SELECT pg_advisory_lock(4141410)"));
}

Vez_Da_Atualização::~Vez_Da_Atualização() {
    if (C != nullptr) PQfinish(C);
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
    Comando_Servidor(Sessão_Servidor* sessão, QByteArray nome, QByteArray texto, int valores, bool escrita,
                     bool inclusão, bool devolve, int geração)
        : S(sessão),
          Nome(std::move(nome)),
          Texto_SQL(std::move(texto)),
          Valores(valores),
          Escrita(escrita),
          Inclusão(inclusão),
          Devolve(devolve),
          Geração_Preparo(geração) {}
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
    void Envia() override;
    void Reinicia() override;
    // The values as bound, one per position (null for Null).
    QVector<std::optional<QByteArray>> Valores_Ligados() {
        Ligados.resize(Valores);
        return Ligados;
    }
    const QByteArray& Nome_Preparado() const { return Nome; }
    const QByteArray& Texto() const { return Texto_SQL; }
    // The table an insert names, as the server's words name it ("INSERT INTO <table> (..."); empty for
    // another statement.
    QByteArray Tabela_Da_Inclusão() const {
        if (!Inclusão) return {};
        const QByteArray resto = Texto_SQL.trimmed().mid(6).trimmed();  // past "insert"
        if (!resto.toLower().startsWith("into")) return {};
        QByteArray tabela = resto.mid(4).trimmed();
        const int fim = tabela.indexOf(tabela.startsWith('"') ? '"' : ' ', 1);
        return fim < 0 ? QByteArray() : tabela.left(fim + (tabela.startsWith('"') ? 1 : 0)).trimmed();
    }
    bool Preparado_Nesta_Conexão() const;
    // The answer of a read sent ahead, taken in its exchange.
    void Toma_Resultado(PGresult* r) {
        if (R != nullptr) PQclear(R);
        R = r;
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
    // Prepares the statement again on a connection made anew since it was prepared.
    bool Preparado(Falha_Servidor& f);
    Sessão_Servidor* S;
    QByteArray Nome;
    QByteArray Texto_SQL;  // in the server's words
    int Valores;
    bool Escrita;
    bool Inclusão;
    bool Devolve;  // an insert whose result is the row it made, row id first
    int Geração_Preparo;
    QVector<std::optional<QByteArray>> Ligados;
    PGresult* R = nullptr;
    PGresult* Descrição = nullptr;
    int Linha = -1;
};

class Sessão_Servidor final : public Sessão {
  public:
    Sessão_Servidor(QString chave, PGconn* conexão, QString texto_conexão, QString esquema)
        : Sessão(std::move(chave)),
          C(conexão),
          Texto_Conexão(std::move(texto_conexão)),
          Esquema(std::move(esquema)) {
        Abertas().append(this);
    }
    ~Sessão_Servidor() override {
        // What was kept outside a transaction (the audit rows) is written before the connection closes.
        if (!Adiadas_Em_Transação) Descarrega();
        Abertas().removeOne(this);
        Lote.clear();
        qDeleteAll(Comandos);
        PQfinish(C);
    }
    bool Servidor() const override { return true; }

    bool Prepara_Escrita(Falha_Banco& falha) override {
        if (Transação_Perdida) return Recusa_Pela_Perda(falha);
        if (!Transação_Lógica || Transação_SQL || Começo_Pendente) return true;
        return Começa_Transação(falha);
    }
    bool Confirma(Falha_Banco& falha) override {
        if (!Adiadas.isEmpty() && !Adiadas_Em_Transação) Descarrega();
        bool ok = true;
        if (Falha_Na_Transação) {
            // A write kept for later was refused on its way: nothing of the transaction stays.
            if (Transação_SQL) Executa_Simples(C, "ROLLBACK");
            Adiadas.clear();
            Guarda(*Falha_Na_Transação, falha);
            ok = false;
            Descarrega_Outras();
        } else if (!Adiadas.isEmpty() || (Transação_SQL && Outras_Adiadas())) {
            ok = Confirma_Numa_Ida(falha);
        } else if (Transação_SQL) {
            Falha_Servidor f;
            if (!Executa_Simples(C, "COMMIT", &f)) {
                if (Perdeu(f)) {
                    Guarda_Perda(Recupera(f.Mensagem), falha);
                } else {
                    Guarda(f, falha);
                    Executa_Simples(C, "ROLLBACK");
                }
                ok = false;
            }
        } else {
            Descarrega_Outras();
        }
        Fim_Da_Transação();
        return ok;
    }
    // Whether another session keeps writes outside a transaction, to be sent alongside this commit.
    bool Outras_Adiadas() const {
        for (const Sessão_Servidor* s : Abertas())
            if (s != this && !s->Adiadas.isEmpty() && !s->Adiadas_Em_Transação && !s->Descarregando)
                return true;
        return false;
    }
    // The commit with the writes kept for it, BEGIN first when still owed, in one exchange; the writes kept
    // by the other sessions outside a transaction (the audit rows) go on their own connections meanwhile.
    bool Confirma_Numa_Ida(Falha_Banco& falha) {
        const QVector<Escrita_Adiada> escritas = std::exchange(Adiadas, {});
        const bool começo = !Transação_SQL;
        std::vector<Pedido> pedidos;
        std::vector<std::vector<const char*>> ponteiros;
        if (começo) pedidos.push_back({Pedido::Texto, "BEGIN"});
        Pedidos_Das_Escritas(escritas, pedidos, ponteiros);
        pedidos.push_back({Pedido::Texto, "COMMIT"});
        const Envio envio = Envia_Pedidos(C, pedidos);
        auto outras = Envia_Outras();
        std::vector<PGresult*> respostas = Recebe_Respostas(envio, pedidos.size());
        const bool refeita = Recebe_Outras(outras);
        // The first answer that is not a success tells why; those the server skipped after it say nothing.
        bool ok = true;
        Falha_Servidor f;
        for (PGresult* r : respostas) {
            if (ok && (r == nullptr || !Deu_Certo(r))) {
                ok = false;
                f = Falha_Do_Resultado(C, r);
            }
            PQclear(r);
        }
        if (!ok) {
            // The audit rows sent alongside tell of writes that are now undone: they go too.
            for (const Envio_Outra& o : outras) o.S->Desfaz_Inclusões(o.Inclusões);
            if (Perdeu(f)) {
                // The writes were in flight: the transaction is undone, and the user is told so, once: the
                // audit connection's loss may have told it and made this connection anew already.
                Transação_SQL = true;
                const bool já_refeita = refeita && Conectada();
                Guarda_Perda(já_refeita || Recupera(f.Mensagem), falha);
                if (já_refeita) Transação_SQL = false;
            } else {
                Guarda(f, falha);
                Executa_Simples(C, "ROLLBACK");
            }
        }
        return ok;
    }
    bool Desfaz(Falha_Banco& falha) override {
        bool ok = true;
        Esquece_Contagens();
        if (Adiadas_Em_Transação) Adiadas.clear();
        Falha_Na_Transação.reset();
        Descarrega_Outras();
        if (Transação_SQL) {
            Falha_Servidor f;
            // A lost connection has undone the transaction already: the undo is done, once the user knows.
            if (!Executa_Simples(C, "ROLLBACK", &f)) {
                if (Perdeu(f)) {
                    Recupera(f.Mensagem);
                } else {
                    Guarda(f, falha);
                    ok = false;
                }
            }
        }
        Fim_Da_Transação();
        return ok;
    }

    // ---- the connection lost and made again ----

    // Never destroyed: sessions held by the program's global connections end after the statics of this
    // file, at the process's exit.
    static QList<Sessão_Servidor*>& Abertas() {
        static auto* abertas = new QList<Sessão_Servidor*>;
        return *abertas;
    }
    // After a failed exchange: whether the connection itself went away (the server stopped or restarted,
    // the network dropped).
    // Every refusal of the server carries its SQLSTATE; a failure without one is libpq's own, on the link
    // ("server closed the connection unexpectedly"), even before libpq marks the connection bad.
    bool Perdeu(const Falha_Servidor& f) const {
        return PQstatus(C) == CONNECTION_BAD || f.Estado.isEmpty() || f.Estado.startsWith("08") ||
               f.Estado.startsWith("57P");
    }
    bool Conectada() const { return PQstatus(C) == CONNECTION_OK; }
    // The loss is told to the user, who chooses to try again or to leave; on return every session of this
    // server is connected again, with no transaction. True when this session's transaction was in flight,
    // and so undone by the server. A statement run while the box is up (by an event) only fails.
    bool Recupera(const QString& detalhe) {
        const bool desfeita = Transação_SQL;
        ++Perdas;
        if (Em_Recuperação) return desfeita;
        bool gravação = false;
        for (const Sessão_Servidor* s : Abertas())
            if (s->Texto_Conexão == Texto_Conexão && s->Transação_SQL) gravação = true;
        Em_Recuperação = true;
        struct Fim {
            ~Fim() { Em_Recuperação = false; }
        } fim;
        const QString texto = Texto_Conexão;
        Avisa_Conexão_Perdida(Nome_Servidor(C, texto), detalhe, gravação, [texto](QString& motivo) {
            for (Sessão_Servidor* s : Abertas())
                if (s->Texto_Conexão == texto && !s->Refaz_Conexão(motivo)) return false;
            return true;
        });
        return desfeita;
    }
    bool Refaz_Conexão(QString& motivo) {
        PGconn* nova = Abre_PG(Texto_Conexão);
        if (PQstatus(nova) != CONNECTION_OK) {
            motivo = QString::fromUtf8(PQerrorMessage(nova)).simplified();
            PQfinish(nova);
            return false;
        }
        Prepara_Conexão(nova);
        Executa_Simples(nova, "SET search_path TO " + Citação(Esquema));
        PQfinish(C);
        C = nova;
        ++Geração;
        Transação_Perdida = Transação_Perdida || (Transação_SQL && Transação_Lógica);
        // Writes kept for the commit of a transaction the server undid go with it; kept ones of a
        // transaction with nothing sent yet were never in flight, and go over the new connection.
        if (Transação_Perdida && Adiadas_Em_Transação) Adiadas.clear();
        Lote.clear();
        Transação_SQL = false;
        Transação_Da_Trava = false;
        Algo_Na_Transação = false;
        // A BEGIN still owed stays owed for the program's transaction, and goes over the new connection.
        if (!Transação_Lógica) Começo_Pendente = false;
        Travas.clear();
        Nomes.clear();
        Sessão::Esquece_Estruturas();
        return true;
    }
    void Guarda_Perda(bool desfeita, Falha_Banco& falha) {
        Última = {Estado_Conexão_Perdida, "A conexão com o servidor " + Nome_Servidor(C, Texto_Conexão) +
                                              " foi perdida" +
                                              (desfeita ? "; a gravação em andamento foi desfeita" : "")};
        falha = Falha_Traduzida(Última);
    }
    bool Recusa_Pela_Perda(Falha_Banco& falha) {
        Guarda_Perda(true, falha);
        return false;
    }
    int Geração = 0;  // how many times the connection was made anew

    // ---- writes kept for a later exchange, reads sent ahead ----

    struct Escrita_Adiada {
        QByteArray Texto;
        QVector<std::optional<QByteArray>> Valores;
        QByteArray Tabela;  // of an insert, whose row id comes back; empty for another write
    };
    QVector<Escrita_Adiada> Adiadas;
    bool Adiadas_Em_Transação = false;
    // A write kept for the commit was refused when sent earlier: the commit fails with it.
    std::optional<Falha_Servidor> Falha_Na_Transação;
    // A write kept outside a transaction was refused: told once by Falha_Adiada.
    std::optional<Falha_Servidor> Falha_Fora_Da_Transação;
    bool Descarregando = false;
    // The reads sent ahead (Envia), asked together at the first Passo of any of them.
    QVector<Comando_Servidor*> Lote;

    bool Escreve_Depois(Comando_Banco* comando, Falha_Banco& falha) override {
        auto* c = static_cast<Comando_Servidor*>(comando);
        if (Transação_Lógica && Transação_Perdida) return Recusa_Pela_Perda(falha);
        if (!Adiadas.isEmpty() && Adiadas_Em_Transação != Transação_Lógica) Descarrega();
        Adiadas_Em_Transação = Transação_Lógica;
        Adiadas.append({c->Texto(), c->Valores_Ligados(), c->Tabela_Da_Inclusão()});
        Esquece_Contagens();
        return true;
    }
    bool Falha_Adiada(Falha_Banco& falha) override {
        if (!Falha_Fora_Da_Transação) return false;
        falha = Falha_Traduzida(*std::exchange(Falha_Fora_Da_Transação, std::nullopt));
        return true;
    }
    void Pedidos_Das_Escritas(const QVector<Escrita_Adiada>& escritas, std::vector<Pedido>& pedidos,
                              std::vector<std::vector<const char*>>& ponteiros) {
        ponteiros.reserve(escritas.size());
        for (const Escrita_Adiada& e : escritas) {
            std::vector<const char*>& v = ponteiros.emplace_back();
            for (const auto& valor : e.Valores) v.push_back(valor ? valor->constData() : nullptr);
            pedidos.push_back(
                {Pedido::Com_Valores, e.Texto.constData(), nullptr, static_cast<int>(v.size()), v.data()});
        }
    }
    // Sends now the writes kept, before a statement that must see them. Inside a transaction they go in a
    // savepoint of their own: a refusal undoes them only, and fails the commit later.
    void Descarrega() {
        if (Adiadas.isEmpty() || Descarregando) return;
        Descarregando = true;
        struct Fim {
            bool& D;
            ~Fim() { D = false; }
        } fim{Descarregando};
        const QVector<Escrita_Adiada> escritas = std::exchange(Adiadas, {});
        if (!Adiadas_Em_Transação) {
            std::vector<Envio_Outra> envio{Envia_Fora_Da_Transação(escritas)};
            Recebe_Outras(envio);
            return;
        }
        if (Transação_Perdida) return;
        const bool começo = !Transação_SQL;
        std::vector<Pedido> pedidos;
        std::vector<std::vector<const char*>> ponteiros;
        if (começo) pedidos.push_back({Pedido::Texto, "BEGIN"});
        pedidos.push_back({Pedido::Texto, "SAVEPOINT adiadas"});
        Pedidos_Das_Escritas(escritas, pedidos, ponteiros);
        pedidos.push_back({Pedido::Texto, "RELEASE SAVEPOINT adiadas"});
        std::vector<PGresult*> respostas = Recebe_Respostas(Envia_Pedidos(C, pedidos), pedidos.size());
        std::optional<Falha_Servidor> f;
        for (PGresult* r : respostas) {
            if (!f && (r == nullptr || !Deu_Certo(r))) f = Falha_Do_Resultado(C, r);
            PQclear(r);
        }
        if (começo && (!f || !Perdeu(*f))) {
            Transação_SQL = true;
            Começo_Pendente = false;
        }
        Algo_Na_Transação = true;
        if (!f) return;
        if (Perdeu(*f)) {
            Transação_SQL = true;
            Recupera(f->Mensagem);
            Falha_Na_Transação = Falha_Servidor{Estado_Conexão_Perdida, f->Mensagem};
            return;
        }
        Falha_Na_Transação = f;
        Executa_Simples(C, "ROLLBACK TO SAVEPOINT adiadas; RELEASE SAVEPOINT adiadas");
    }
    // Writes kept outside a transaction, each on its own, sent without waiting for the answers.
    struct Envio_Outra {
        Sessão_Servidor* S;
        Envio E;
        QVector<Escrita_Adiada> Escritas;
        // The rows the inserts made, by table, once answered.
        QHash<QByteArray, QList<qint64>> Inclusões = {};
    };
    Envio_Outra Envia_Fora_Da_Transação(const QVector<Escrita_Adiada>& escritas) {
        std::vector<Pedido> pedidos;
        std::vector<std::vector<const char*>> ponteiros;
        Pedidos_Das_Escritas(escritas, pedidos, ponteiros);
        return {this, Envia_Pedidos(C, pedidos, true), escritas};
    }
    // Deletes rows that inserts sent outside a transaction made (audit rows of writes then undone).
    void Desfaz_Inclusões(const QHash<QByteArray, QList<qint64>>& inclusões) {
        for (auto it = inclusões.begin(); it != inclusões.end(); ++it) {
            if (it.value().isEmpty()) continue;
            QStringList ids;
            for (const qint64 id : it.value()) ids << QString::number(id);
            Executa_Simples(
                C, "DELETE FROM " + QString::fromUtf8(it.key()) + " WHERE rowid IN (" + ids.join(", ") + ")");
        }
    }
    // The other sessions' writes kept outside a transaction, sent at once over their own connections.
    std::vector<Envio_Outra> Envia_Outras() {
        std::vector<Envio_Outra> envios;
        for (Sessão_Servidor* s : Abertas())
            if (s != this && !s->Adiadas.isEmpty() && !s->Adiadas_Em_Transação && !s->Descarregando)
                envios.push_back(s->Envia_Fora_Da_Transação(std::exchange(s->Adiadas, {})));
        return envios;
    }
    // True when a lost connection was told, and every connection to the server made anew.
    static bool Recebe_Outras(std::vector<Envio_Outra>& envios) {
        // Every answer is read before any box about a lost connection, which makes the connections anew.
        std::vector<std::optional<Falha_Servidor>> falhas;
        for (Envio_Outra& e : envios) {
            std::optional<Falha_Servidor> f;
            const std::vector<PGresult*> respostas = Recebe_Respostas(e.E, e.Escritas.size());
            for (std::size_t i = 0; i < respostas.size(); ++i) {
                PGresult* r = respostas[i];
                if (!f && (r == nullptr || !Deu_Certo(r))) f = Falha_Do_Resultado(e.S->C, r);
                const QByteArray& tabela = e.Escritas[static_cast<int>(i)].Tabela;
                if (r != nullptr && !tabela.isEmpty() && PQresultStatus(r) == PGRES_TUPLES_OK &&
                    PQntuples(r) == 1)
                    e.Inclusões[tabela].append(std::strtoll(PQgetvalue(r, 0, 0), nullptr, 10));
                PQclear(r);
            }
            falhas.push_back(f);
        }
        bool refeitas = false;
        for (std::size_t i = 0; i < envios.size(); ++i) {
            if (!falhas[i]) continue;
            Sessão_Servidor* s = envios[i].S;
            if (s->Perdeu(*falhas[i])) {
                if (!refeitas) s->Recupera(falhas[i]->Mensagem);
                refeitas = true;
                falhas[i] = Falha_Servidor{Estado_Conexão_Perdida, falhas[i]->Mensagem};
            }
            if (!s->Falha_Fora_Da_Transação) s->Falha_Fora_Da_Transação = falhas[i];
        }
        return refeitas;
    }
    void Descarrega_Outras() {
        auto envios = Envia_Outras();
        Recebe_Outras(envios);
    }

    void Envia_No_Lote(Comando_Servidor* comando) {
        if (!Lote.contains(comando)) Lote.append(comando);
    }
    void Retira_Do_Lote(Comando_Servidor* comando) { Lote.removeOne(comando); }
    bool No_Lote(Comando_Servidor* comando) const { return Lote.contains(comando); }
    // The reads sent ahead, in one exchange: one refused or lost, and those the server skipped after it,
    // are simply run again by their Passo, which tells what it meets as it always did.
    void Pede_Lote() {
        Descarrega();
        const QVector<Comando_Servidor*> lote = std::exchange(Lote, {});
        if (Transação_SQL) return;  // a refused read would spoil the transaction: each goes on its own
        std::vector<Pedido> pedidos;
        std::vector<QVector<std::optional<QByteArray>>> valores;
        std::vector<std::vector<const char*>> ponteiros;
        valores.reserve(lote.size());
        ponteiros.reserve(lote.size());
        for (Comando_Servidor* c : lote) {
            const auto& v = valores.emplace_back(c->Valores_Ligados());
            std::vector<const char*>& p = ponteiros.emplace_back();
            for (const auto& valor : v) p.push_back(valor ? valor->constData() : nullptr);
            pedidos.push_back({Pedido::Executa, c->Nome_Preparado().constData(), nullptr,
                               static_cast<int>(p.size()), p.data()});
        }
        std::vector<PGresult*> respostas = Recebe_Respostas(Envia_Pedidos(C, pedidos), pedidos.size());
        for (std::size_t i = 0; i < respostas.size(); ++i) {
            if (respostas[i] != nullptr && PQresultStatus(respostas[i]) == PGRES_TUPLES_OK)
                lote[static_cast<int>(i)]->Toma_Resultado(respostas[i]);
            else
                PQclear(respostas[i]);
        }
    }

    Comando_Banco* Prepara(const QString& sql, Falha_Banco& falha) override {
        if (auto it = Comandos.find(sql); it != Comandos.end()) {
            (*it)->Reinicia();
            (*it)->Limpa_Valores();
            return *it;
        }
        // Preparing reads no row: the writes kept for later can wait.
        if (Nomes.isEmpty()) Lê_Nomes();
        int valores = 0;
        QString texto = Traduz_Para_Servidor(sql, Nomes, valores);
        const bool escrita = É_Escrita(sql);
        const bool inclusão = sql.trimmed().startsWith("insert", Qt::CaseInsensitive);
        // An insert that asks for its row back (the slots' own) keeps it as its result.
        const bool devolve = inclusão && sql.contains(" RETURNING rowid");
        if (inclusão && !devolve) texto += " RETURNING rowid";
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
        const QByteArray texto_servidor = texto.toUtf8();
        // Prepared and described in one exchange, inside its savepoint when it needs one.
        PGresult* r = nullptr;
        PGresult* descrição = nullptr;
        if (protegida) {
            auto respostas = Numa_Ida(C, {{Pedido::Texto, "SAVEPOINT preparo"},
                                          {Pedido::Prepara, nome.constData(), texto_servidor.constData()},
                                          {Pedido::Descreve, nome.constData()},
                                          {Pedido::Texto, "RELEASE SAVEPOINT preparo"}});
            r = respostas[1];
            descrição = respostas[2];
            PQclear(respostas[0]);
            PQclear(respostas[3]);
        } else {
            auto respostas = Numa_Ida(C, {{Pedido::Prepara, nome.constData(), texto_servidor.constData()},
                                          {Pedido::Descreve, nome.constData()}});
            r = respostas[0];
            descrição = respostas[1];
        }
        bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
        Falha_Servidor f;
        if (!ok) {
            f = Falha_Do_Resultado(C, r);
            PQclear(descrição);
            descrição = nullptr;
        }
        PQclear(r);
        if (!ok && Perdeu(f)) {
            // A read is prepared again over the new connection; what a lost transaction held is gone.
            const bool desfeita = Recupera(f.Mensagem);
            if (!desfeita && Conectada() && !Nomes_Relidos) {
                Nomes_Relidos = true;
                Comando_Banco* de_novo = Prepara(sql, falha);
                Nomes_Relidos = false;
                return de_novo;
            }
            Guarda_Perda(desfeita, falha);
            return nullptr;
        }
        if (protegida && !ok)
            Executa_Simples(C, "ROLLBACK TO SAVEPOINT preparo; RELEASE SAVEPOINT preparo");
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
        auto* comando =
            new Comando_Servidor(this, nome, texto_servidor, valores, escrita, inclusão, devolve, Geração);
        comando->Descreve(descrição);
        Comandos.insert(sql, comando);
        return comando;
    }

    bool Executa(const QString& sql, Falha_Banco& falha) override {
        Esquece_Contagens();
        Descarrega();
        if (Transação_Perdida) return Recusa_Pela_Perda(falha);
        if (!Envia_Começo(falha)) return false;
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
        if (!ok && Perdeu(f))
            Guarda_Perda(Recupera(f.Mensagem), falha);
        else if (!ok)
            Guarda(f, falha);
        return ok;
    }

    // Runs a statement of the catalogue, already in the server's words.
    bool Executa_Direto(const QString& sql, Falha_Banco& falha) {
        Descarrega();
        if (!Envia_Começo(falha)) return false;
        Falha_Servidor f;
        const bool ok = Executa_Simples(C, sql, &f);
        if (!ok && Perdeu(f))
            Guarda_Perda(Recupera(f.Mensagem), falha);
        else if (!ok)
            Guarda(f, falha);
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
        PGresult* r =
            Lê("SELECT c.relname FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
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
        Descarrega();
        Falha_Banco ignorada;
        if (Transação_Perdida) return Recusa_Pela_Perda(ignorada);
        if (!Transação_SQL && !Começo_Pendente) {
            if (!Começa_Transação(ignorada)) return false;
            Transação_Da_Trava = !Transação_Lógica;
        }
        const QString sql = "SAVEPOINT trava; SELECT 1 FROM " + Citação(Nome_Criado(tabela)) +
                            " WHERE rowid = " + QString::number(linha) +
                            " FOR UPDATE NOWAIT; RELEASE SAVEPOINT trava";
        Falha_Servidor f;
        // The transaction's BEGIN, when still owed, goes in the same exchange as the lock.
        bool ok = Executa_Simples(C, (Começo_Pendente ? "BEGIN; " : "") + sql, &f);
        // Lost with nothing of the transaction sent before: asked again over the new connection, as a
        // BEGIN lost on its own was.
        if (!ok && Começo_Pendente && Perdeu(f)) {
            const bool da_trava = Transação_Da_Trava;
            Recupera(f.Mensagem);
            Transação_Da_Trava = da_trava;
            ok = Conectada() && Executa_Simples(C, "BEGIN; " + sql, &f);
            if (!ok && Perdeu(f)) {
                if (Transação_Da_Trava) Termina_Transação_Da_Trava();
                Guarda_Perda(false, ignorada);
                return false;
            }
        }
        if (Começo_Pendente) {
            Transação_SQL = true;  // begun, even when the lock was refused
            Começo_Pendente = false;
        }
        if (!ok) {
            if (Perdeu(f)) {
                Guarda_Perda(Recupera(f.Mensagem), ignorada);
                return false;
            }
            Última = f;
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
    // After a refusal with nothing done in the transaction: it is undone, and begun again with the next
    // statement.
    void Recomeça_Transação() {
        Executa_Simples(C, "ROLLBACK");
        Transação_SQL = false;
        Começo_Pendente = true;
    }
    // A transaction begun by the store whose BEGIN is sent with its first statement, saving a round trip:
    // until then nothing of it is on the server.
    bool Começo_Pendente = false;
    // Sends the BEGIN still owed on its own, before a statement that cannot carry it.
    bool Envia_Começo(Falha_Banco& falha) {
        if (!Começo_Pendente) return true;
        Falha_Servidor f;
        bool ok = Executa_Simples(C, "BEGIN", &f);
        // Nothing was in flight: over a connection made anew the transaction simply begins.
        if (!ok && Perdeu(f)) {
            Recupera(f.Mensagem);
            ok = Conectada() && Executa_Simples(C, "BEGIN", &f);
            if (!ok) {
                Guarda_Perda(false, falha);
                return false;
            }
        }
        if (!ok) {
            Guarda(f, falha);
            return false;
        }
        Começo_Pendente = false;
        Transação_SQL = true;
        return true;
    }
    void Guarda(const Falha_Servidor& f, Falha_Banco& falha) {
        Última = f;
        falha = Falha_Traduzida(f);
    }
    void Guarda_Falha(const Falha_Servidor& f) { Última = f; }
    void Anota_Id(qint64 id) { Id_Inserido = id; }

  protected:
    std::shared_ptr<Estrutura_Tabela> Lê_Estrutura(const QString& tabela, Falha_Banco& falha) override;

  private:
    // The BEGIN waits for the transaction's first statement (Começo_Pendente).
    bool Começa_Transação(Falha_Banco&) {
        Começo_Pendente = true;
        Algo_Na_Transação = false;
        return true;
    }
    void Termina_Transação_Da_Trava() {
        if (Transação_SQL) Executa_Simples(C, "COMMIT");
        Transação_SQL = false;
        Começo_Pendente = false;
        Transação_Da_Trava = false;
    }
    void Fim_Da_Transação() {
        Falha_Na_Transação.reset();
        Transação_SQL = false;
        Começo_Pendente = false;
        Transação_Lógica = false;
        Transação_Perdida = false;
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
        PGresult* r =
            Lê("SELECT c.relname, a.attname FROM pg_class c "
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

    // A statement that reads the catalogue, asked again once over a connection made anew.
    PGresult* Lê(const QByteArray& sql) {
        Descarrega();
        PGresult* r = PQexec(C, sql.constData());
        if (PQresultStatus(r) == PGRES_TUPLES_OK) return r;
        const Falha_Servidor f = Falha_Do_Resultado(C, r);
        if (!Perdeu(f)) return r;
        PQclear(r);
        Recupera(f.Mensagem);
        return PQexec(C, sql.constData());
    }

    PGconn* C;
    const QString Texto_Conexão;
    const QString Esquema;
    QHash<QString, Comando_Banco*> Comandos;
    QHash<QString, QString> Nomes;
    bool Nomes_Relidos = false;
    int Série = 0;
    Falha_Servidor Última;
    qint64 Id_Inserido = 0;
    QSet<QPair<QString, qint64>> Travas;
    bool Transação_Da_Trava = false;
};

bool Comando_Servidor::Preparado_Nesta_Conexão() const {
    return Geração_Preparo == S->Geração;
}

void Comando_Servidor::Envia() {
    // A write waits for its Passo; a statement to prepare again goes on its own.
    if (!Escrita && R == nullptr && Preparado_Nesta_Conexão()) S->Envia_No_Lote(this);
}

void Comando_Servidor::Reinicia() {
    S->Retira_Do_Lote(this);
    if (R != nullptr) PQclear(R);
    R = nullptr;
    Linha = -1;
}

bool Comando_Servidor::Preparado(Falha_Servidor& f) {
    if (Geração_Preparo == S->Geração) return true;
    PGresult* r = PQprepare(S->Conexão(), Nome.constData(), Texto_SQL.constData(), 0, nullptr);
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
    if (ok)
        Geração_Preparo = S->Geração;
    else
        f = Falha_Do_Resultado(S->Conexão(), r);
    PQclear(r);
    return ok;
}

int Comando_Servidor::Passo() {
    if (R == nullptr && S->No_Lote(this)) S->Pede_Lote();
    if (R == nullptr) {
        S->Descarrega();
        // The writes that would follow a transaction the server undid are refused until it ends.
        if (Escrita && S->Transação_Perdida) {
            Falha_Banco ignorada;
            S->Guarda_Perda(true, ignorada);
            return 1;
        }
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
        for (int vez = 0;; ++vez) {
            PGconn* c = S->Conexão();
            // A write refused inside a transaction must not spoil what the transaction did before it: it
            // runs inside a savepoint. With nothing done yet, the transaction is simply begun again on a
            // refusal. The transaction's BEGIN, when owed, and the savepoint go in the same exchange as the
            // write: one round trip.
            const bool começo = Escrita && S->Começo_Pendente;
            const bool em_transação = Escrita && (S->Transação_SQL || começo);
            const bool protegida = em_transação && S->Algo_Na_Transação;
            Falha_Servidor f;
            bool ok = Preparado(f);
            if (ok && !começo && !protegida) {
                R = PQexecPrepared(c, Nome.constData(), Valores, ponteiros.data(), nullptr, nullptr, 0);
                ok = Deu_Certo(R);
                if (!ok) f = Falha_Do_Resultado(c, R);
            } else if (ok) {
                const Pedido execução{Pedido::Executa, Nome.constData(), nullptr, Valores, ponteiros.data()};
                auto respostas = começo ? Numa_Ida(c, {{Pedido::Texto, "BEGIN"}, execução})
                                        : Numa_Ida(c, {{Pedido::Texto, "SAVEPOINT escrita"},
                                                       execução,
                                                       {Pedido::Texto, "RELEASE SAVEPOINT escrita"}});
                R = respostas[1];
                ok = Deu_Certo(R);
                if (!ok) f = Falha_Do_Resultado(c, R ? R : respostas[0]);
                const bool começou = começo && Deu_Certo(respostas[0]);
                for (PGresult* r : respostas)
                    if (r != R) PQclear(r);
                if (R == nullptr) R = PQmakeEmptyPGresult(c, PGRES_FATAL_ERROR);
                if (começou && (ok || !S->Perdeu(f))) {
                    // Begun, even when the write was refused.
                    S->Transação_SQL = true;
                    S->Começo_Pendente = false;
                }
                if (protegida && !ok && !S->Perdeu(f))
                    Executa_Simples(c, "ROLLBACK TO SAVEPOINT escrita; RELEASE SAVEPOINT escrita");
            }
            if (ok) {
                if (em_transação) S->Algo_Na_Transação = true;
                break;
            }
            Reinicia();
            if (S->Perdeu(f)) {
                // Told once; a read outside a transaction is simply asked again over the new connection,
                // and so is a write that carried its transaction's BEGIN: nothing was in flight.
                const bool desfeita = S->Recupera(f.Mensagem);
                if (vez == 0 && (!Escrita || começo) && !desfeita && S->Conectada()) continue;
                Falha_Banco ignorada;
                S->Guarda_Perda(desfeita, ignorada);
                return 1;
            }
            S->Guarda_Falha(f);
            if (em_transação && !protegida) S->Recomeça_Transação();
            return 1;
        }
        if (Inclusão) {
            if (PQntuples(R) == 1) S->Anota_Id(std::strtoll(PQgetvalue(R, 0, 0), nullptr, 10));
        }
        if (Inclusão && !Devolve) {
            Reinicia();
            R = PQmakeEmptyPGresult(S->Conexão(), PGRES_COMMAND_OK);
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
    PGresult* r = Lê(("SELECT a.attname, format_type(a.atttypid, a.atttypmod), "
                      "coalesce(col_description(a.attrelid, a.attnum), ''), a.attidentity <> '' "
                      "FROM pg_attribute a WHERE a.attrelid = " +
                      oid +
                      " AND a.attnum > 0 AND NOT a.attisdropped AND a.attname <> 'rowid' "
                      "ORDER BY a.attnum")
                         .toUtf8());
    for (int i = 0; PQresultStatus(r) == PGRES_TUPLES_OK && i < PQntuples(r); ++i)
        estrutura->Campos.append(Campo_Do_Tipo_Servidor(
            QString::fromUtf8(PQgetvalue(r, i, 0)), QString::fromUtf8(PQgetvalue(r, i, 1)),
            QString::fromUtf8(PQgetvalue(r, i, 2)), PQgetvalue(r, i, 3)[0] == 't'));
    PQclear(r);
    // The indexes of the catalogue carry their name in a comment; the store's own have none.
    r = Lê(("SELECT obj_description(i.indexrelid, 'pg_class'), i.indisunique, "
            "(SELECT string_agg(a.attname, E'\\n' ORDER BY k.n) FROM unnest(i.indkey) "
            "WITH ORDINALITY k(num, n) JOIN pg_attribute a ON a.attrelid = i.indrelid AND a.attnum = "
            "k.num) FROM pg_index i WHERE i.indrelid = " +
            oid + " ORDER BY i.indexrelid")
               .toUtf8());
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
    return std::make_shared<Sessão_Servidor>(chave, c, conexão, esquema);
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

bool Garante_Índices_de_Texto(Sessão& sessão, const QString& tabela, const QStringList& campos,
                              Falha_Banco& falha) {
    const QString nome = Nome_Da_Tabela(sessão, tabela);
    // The extension goes to "public", which no step of the program drops (a bank's own schema may be
    // dropped or renamed); one already there, in any schema, is used where it is. Any refusal (the
    // extension not installed, a user without the right to add it, a second workstation making the same
    // index at the same moment) leaves things as they were, and the search reads the whole table.
    // New rows wait in a short list of the index until the server takes them in: kept to 1 MB (4 MB by
    // default), a table just filled is still searched through the index, and the list's taking in is
    // still shared among many writes.
    QString índices;
    for (const QString& campo : campos)
        índices += "  EXECUTE format(" +
                   Valor_Texto_SQL("CREATE INDEX IF NOT EXISTS " + Citação(Nome_Físico("t_", nome, campo)) +
                                   " ON " + Citação(nome) + " USING gin (lower(" + Citação(campo) +
                                   "::text COLLATE \"und-x-icu\") %I.gin_trgm_ops) "
                                   "WITH (gin_pending_list_limit = 1024)") +
                   ", esquema);\n";
    return Do_Servidor(sessão).Executa_Direto(
        "DO $quizora$\nDECLARE esquema text;\nBEGIN\n"
        "  BEGIN\n    CREATE EXTENSION IF NOT EXISTS pg_trgm SCHEMA public;\n"
        "  EXCEPTION WHEN OTHERS THEN NULL;\n  END;\n"
        "  SELECT n.nspname INTO esquema FROM pg_extension e JOIN pg_namespace n ON n.oid = e.extnamespace "
        "WHERE e.extname = 'pg_trgm';\n"
        "  IF esquema IS NULL THEN RETURN; END IF;\n" +
            índices + "EXCEPTION WHEN OTHERS THEN NULL;\nEND $quizora$",
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
