// The store on a PostgreSQL server (a throwaway cluster of the run's own): one game turn (Nova_Rodada) on a
// bank of 10,000 questions with a full history; 10,000 questions written each in its own transaction
// through Grava, with the audit on; the register's "Próximo" 1,000 times from the first question; the locate
// dialog's search for a word anywhere in 100,000 questions. Each against raw libpq
// doing the same work on the same server in the same run.
// Each pair runs twice: straight on the server's socket, and through a loopback relay that holds every
// packet 2 ms each way (a Wi-Fi link between two rooms); the relayed runs print the round trips that one
// operation costs (the counter "idas_e_voltas", taken over the last measured repetition).
#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include <QDateTime>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSet>
#include <QVector>
#include <cstdlib>
#include <memory>
#include <vector>

#include "common/Globais.h"
#include "game/Regras_Jogo.h"
#include "game/frmJogo.h"
#include "questions/frmPergunta.h"
#include "search/frmLocaliza_Informação.h"
#include "statistics/Estatísticas.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "Medidas_Programa.h"
#include "Relator_Razão.h"
#include "Relé_Atraso.h"

namespace {
constexpr int Inclusões = 10000;
constexpr int Perguntas = 100000;
constexpr int Intervalo_Palavra = 50;  // one question in 50 holds the word sought
constexpr int Achadas = Perguntas / Intervalo_Palavra;
constexpr int Linhas_Página = 14;
constexpr int Passos = 1000;
const char* const Palavra = "girassol";
// Through the relay every round trip costs 4 ms or more: fewer repetitions give the same figures.
constexpr int Inclusões_Relé = 500;
constexpr int Passos_Relé = 200;

// ---------- the slow link ----------

// The relay of this run, made at the first relayed benchmark, for the throwaway cluster's socket.
std::unique_ptr<Relé_Atraso> Relé;
// The installation's server as the benchmark found it, before any repointing.
QString Conexão_Direta;

QString Valor_Da_Opção(const QString& conexão, const QString& chave) {
    for (const QString& parte : conexão.split(' ', Qt::SkipEmptyParts))
        if (parte.startsWith(chave + "=")) return parte.mid(chave.size() + 1);
    return QString();
}

// Points the installation (its Dados/Servidor.txt) straight at the server or at the relay; every
// connection opened from then on, the program's and the raw side's, goes that way.
void Aponta_Servidor(bool pelo_relé) {
    const QString arquivo = Caminho_Dados() + "/" + Arquivo_Servidor;
    QFile texto(arquivo);
    if (texto.open(QIODevice::ReadOnly)) {
        const QString atual = QString::fromUtf8(texto.readAll()).trimmed();
        // The relay's string holds 127.0.0.1; the installation's own names the cluster's socket folder.
        if (!atual.contains("host=127.0.0.1")) Conexão_Direta = atual;
        texto.close();
    }
    if (pelo_relé && !Relé)
        Relé = std::make_unique<Relé_Atraso>(
            Valor_Da_Opção(Conexão_Direta, "host") + "/.s.PGSQL." + Valor_Da_Opção(Conexão_Direta, "port"),
            std::chrono::milliseconds(2));
    const QString nova = pelo_relé ? Relé->Conexão_Pelo_Relé(Conexão_Direta) : Conexão_Direta;
    if (texto.open(QIODevice::WriteOnly | QIODevice::Truncate)) texto.write(nova.toUtf8() + "\n");
}

// Counts the round trips of each repetition of a benchmark run through the relay; at the end, those of
// the last repetition divided by the operations it made.
class Contador_Idas {
  public:
    explicit Contador_Idas(bool pelo_relé) : Ativo(pelo_relé && Relé) {}
    void Repetição() {
        if (Ativo) Início = Relé->Idas_E_Voltas();
    }
    void Relata(benchmark::State& estado, int operações_por_repetição) const {
        if (Ativo)
            estado.counters["idas_e_voltas"] =
                static_cast<double>(Relé->Idas_E_Voltas() - Início) / operações_por_repetição;
    }

  private:
    bool Ativo;
    long Início = 0;
};

// A raw connection to one database of the installation, on its schema.
PGconn* Abre_Libpq(const QString& caminho_banco) {
    PGconn* c = PQconnectdb(Conexão_Do_Servidor(caminho_banco).toUtf8().constData());
    if (PQstatus(c) != CONNECTION_OK) std::fprintf(stderr, "Não conectou: %s\n", PQerrorMessage(c));
    PQclear(PQexec(c, ("SET search_path TO " + Esquema_Do_Servidor(caminho_banco)).toUtf8().constData()));
    return c;
}

bool Executa_Libpq(PGconn* c, const char* sql) {
    PGresult* r = PQexec(c, sql);
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK || PQresultStatus(r) == PGRES_TUPLES_OK;
    if (!ok) std::fprintf(stderr, "Falhou \"%s\": %s\n", sql, PQerrorMessage(c));
    PQclear(r);
    return ok;
}

bool Prepara_Libpq(PGconn* c, const char* nome, const char* sql) {
    PGresult* r = PQprepare(c, nome, sql, 0, nullptr);
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
    if (!ok) std::fprintf(stderr, "Não preparou \"%s\": %s\n", sql, PQerrorMessage(c));
    PQclear(r);
    return ok;
}

int Conta_Libpq(const QString& caminho_banco, const char* tabela) {
    PGconn* c = Abre_Libpq(caminho_banco);
    PGresult* r = PQexec(c, (QByteArray("SELECT count(*) FROM \"") + tabela + "\"").constData());
    const int n = PQresultStatus(r) == PGRES_TUPLES_OK ? std::atoi(PQgetvalue(r, 0, 0)) : -1;
    PQclear(r);
    PQfinish(c);
    return n;
}

// Texts that vary from row to row, so that the search compares real text and not one repeated string.
QString Texto_Pergunta(int i) {
    static const char* const assuntos[] = {"rio", "monte", "rei", "profeta", "livro", "animal", "cidade"};
    static const char* const lugares[] = {"Belém", "Nínive", "Lisboa", "Manaus", "Jericó", "Éfeso", "Sião"};
    const QString assunto = QString::fromUtf8(assuntos[i % 7]);
    const QString lugar = QString::fromUtf8(lugares[(i / 7) % 7]);
    if (i % Intervalo_Palavra == 0)
        return QString("Em que campo de %1 o %2 fica perto de %3 (nº %4)?")
            .arg(Palavra, assunto, lugar)
            .arg(i);
    return QString("Qual %1 fica perto de %2, segundo a questão nº %3?").arg(assunto, lugar).arg(i);
}

// An installed program on the server; `perguntas` questions written by raw libpq before anything reads them.
struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    explicit Instalação(bool pelo_relé, int perguntas = 0) {
        Instala_Programa();
        Reinicia_Estado_Global();
        if (perguntas > 0) {
            PGconn* c = Abre_Libpq(Caminho_Banco_Principal());
            Executa_Libpq(c, "BEGIN");
            Prepara_Libpq(
                c, "p",
                "INSERT INTO \"tblPergunta\" (\"Pergunta\", \"Resposta_Correta\", \"Resposta_Incorreta_1\", "
                "\"Resposta_Incorreta_2\", \"Resposta_Incorreta_3\", \"Tipo\", \"Já_Comparada\", "
                "\"Já_Verificada\", \"Pergunta_Original\") VALUES ($1, $2, $3, $4, $5, $6, false, false, "
                "'')");
            for (int i = 1; i <= perguntas; ++i) {
                QByteArray v[6];
                v[0] = Texto_Pergunta(i).toUtf8();
                for (int k = 0; k < 4; ++k)
                    v[1 + k] = QString("Resposta %1 %2").arg(k).arg(i % 9973).toUtf8();
                v[5] = i % 2 ? "G" : "B";
                const char* valores[6];
                for (int k = 0; k < 6; ++k) valores[k] = v[k].constData();
                PQclear(PQexecPrepared(c, "p", 6, valores, nullptr, nullptr, 0));
            }
            Executa_Libpq(c, "COMMIT");
            Executa_Libpq(c, "ANALYZE");
            PQfinish(c);
        }
        Abre(pelo_relé);
    }
    // The program's connections, straight to the server or through the relay.
    void Abre(bool pelo_relé) {
        Reinicia_Estado_Global();
        Aponta_Servidor(pelo_relé);
        for (Ligação* c :
             {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
            c->Open(Conexão_Principal());
        Conexão_Manutenção.Open(Conexão_Auditoria());
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        Plataforma.Caixas.clear();
        Relé_Agora = pelo_relé;
    }
    bool Relé_Agora = false;
};

// ---------- one game turn ----------

constexpr int Perguntas_Rodada = 10000;
constexpr int Histórico = 501;
const QDateTime Início_Do_Jogo(QDate(2026, 11, 23), QTime(14, 30, 0));

struct Instalação_Jogo {
    Pasta_Teste Pasta;
    Plataforma_Sorteio_Real Plataforma;
    explicit Instalação_Jogo(bool pelo_relé) {
        Instala_Programa();
        Reinicia_Estado_Global();
        Plataforma.Relógio = Início_Do_Jogo;
        PGconn* c = Abre_Libpq(Caminho_Banco_Principal());
        Executa_Libpq(c, "BEGIN");
        Prepara_Libpq(
            c, "p",
            "INSERT INTO \"tblPergunta\" (\"Pergunta\", \"Resposta_Correta\", \"Resposta_Incorreta_1\", "
            "\"Resposta_Incorreta_2\", \"Resposta_Incorreta_3\", \"Tipo\", \"Já_Comparada\", "
            "\"Já_Verificada\", \"Pergunta_Original\") VALUES ($1, 'Certa', 'Errada 1', 'Errada 2', "
            "'Errada 3', $2, false, false, '')");
        for (int i = 1; i <= Perguntas_Rodada; ++i) {
            const QByteArray texto = QString("Pergunta %1?").arg(i).toUtf8();
            const char* v[] = {texto.constData(), i % 2 ? "G" : "B"};
            PQclear(PQexecPrepared(c, "p", 2, v, nullptr, nullptr, 0));
        }
        // Games of earlier days: every row of the history is older than the turns measured.
        Prepara_Libpq(
            c, "h",
            "INSERT INTO \"tblPergunta_Já_Mostrada\" (\"Código_Pergunta\", \"Data_Jogo\") VALUES ($1, $2)");
        for (int i = 1; i <= Histórico; ++i) {
            const QByteArray código = QByteArray::number(i * 7);
            const QByteArray data = QDateTime(Início_Do_Jogo.date().addDays(i - Histórico - 1), QTime(0, 0))
                                        .toString("yyyy-MM-dd HH:mm:ss")
                                        .toUtf8();
            const char* v[] = {código.constData(), data.constData()};
            PQclear(PQexecPrepared(c, "h", 2, v, nullptr, nullptr, 0));
        }
        Executa_Libpq(c, "COMMIT");
        Executa_Libpq(c, "ANALYZE");
        PQfinish(c);
        Aponta_Servidor(pelo_relé);
        for (Ligação* l :
             {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
            l->Open(Conexão_Principal());
        Conexão_Manutenção.Open(Conexão_Auditoria());
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        Plataforma.Caixas.clear();
    }
    void Passa_Rodada() { Plataforma.Relógio = Plataforma.Relógio.addSecs(40); }
};

void BM_Rodada_Pelo_Programa(benchmark::State& estado, bool pelo_relé) {
    Instalação_Jogo instalação(pelo_relé);
    Contador_Idas idas(pelo_relé);
    {
        frmJogo janela;
        Registra_Jogador(janela.Jogo, 1, "Ana");
        // One turn before the measure, as the raw side prepares its statements before its own: the first
        // preparing of the turn's statements is not the time of a turn.
        instalação.Passa_Rodada();
        Inicia_Transação();
        ::Nova_Rodada(janela.Jogo, janela, instalação.Plataforma.Relógio.date());
        Finaliza_Transação();
        janela.Jogo.Vez_Em_Andamento = false;
        for (auto _ : estado) {
            idas.Repetição();
            instalação.Passa_Rodada();
            Inicia_Transação();
            const Resultado_Rodada r =
                ::Nova_Rodada(janela.Jogo, janela, instalação.Plataforma.Relógio.date());
            Finaliza_Transação();
            if (r != Resultado_Rodada::Pergunta_Sorteada) {
                estado.SkipWithError("nenhuma pergunta sorteada");
                break;
            }
            janela.Jogo.Vez_Em_Andamento = false;
        }
    }
    idas.Relata(estado, 1);
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
    Reinicia_Estado_Global();
}

// Statements of one exchange by hand (a libpq pipeline): sent without waiting, the answers read later, so
// that two connections can be at work at once. `cada_um`: each stands apart (outside a transaction, each is
// its own).
struct Ida_Libpq {
    PGconn* C;
    std::vector<QVector<QByteArray>> Valores;
    std::size_t Quantos = 0;
};

Ida_Libpq Envia_Libpq(PGconn* c, const std::vector<std::pair<const char*, QVector<QByteArray>>>& pedidos,
                      bool cada_um) {
    Ida_Libpq ida{c};
    PQenterPipelineMode(c);
    for (const auto& [nome, valores] : pedidos) {
        QVector<const char*> v;
        for (const QByteArray& x : valores) v << x.constData();
        if (QByteArray(nome).startsWith("BEGIN") || QByteArray(nome).startsWith("COMMIT"))
            PQsendQueryParams(c, nome, 0, nullptr, nullptr, nullptr, nullptr, 0);
        else
            PQsendQueryPrepared(c, nome, v.size(), v.data(), nullptr, nullptr, 0);
        if (cada_um) PQpipelineSync(c);
        ++ida.Quantos;
    }
    if (!cada_um) PQpipelineSync(c);
    return ida;
}

// One result per statement, in order; the caller clears them.
std::vector<PGresult*> Recebe_Libpq(const Ida_Libpq& ida) {
    std::vector<PGresult*> respostas(ida.Quantos, nullptr);
    for (std::size_t i = 0; i < ida.Quantos; ++i)
        while (PGresult* r = PQgetResult(ida.C)) {
            if (respostas[i] == nullptr && PQresultStatus(r) != PGRES_PIPELINE_SYNC)
                respostas[i] = r;
            else
                PQclear(r);
        }
    while (PQexitPipelineMode(ida.C) != 1)
        if (PGresult* r = PQgetResult(ida.C)) PQclear(r);
    return respostas;
}

// The same turn by hand with the program's draws, as a careful programmer sends it: the bank's count, the
// history's count and its oldest row in one exchange; seed from the clock, and for each code drawn its row
// and its rows in the history in one exchange; the trim of the oldest row when the history is over its
// limit, and the first code not shown goes into the history: these writes, each with its audit row, go
// with the COMMIT in one exchange, the audit rows on the audit connection alongside it.
void BM_Rodada_Libpq_Puro(benchmark::State& estado, bool pelo_relé) {
    Instalação_Jogo instalação(pelo_relé);
    Contador_Idas idas(pelo_relé);
    Reinicia_Estado_Global();
    PGconn* banco = Abre_Libpq(Caminho_Banco_Principal());
    PGconn* auditoria = Abre_Libpq(Caminho_Banco_Manutenção());
    Prepara_Libpq(banco, "conta", "SELECT count(*) FROM \"tblPergunta\"");
    Prepara_Libpq(banco, "conta_h", "SELECT count(*) FROM \"tblPergunta_Já_Mostrada\"");
    Prepara_Libpq(banco, "antiga",
                  "SELECT rowid, \"Código_Pergunta\" FROM \"tblPergunta_Já_Mostrada\" ORDER BY \"Data_Jogo\" "
                  "NULLS FIRST, rowid LIMIT 1");
    Prepara_Libpq(banco, "le", "SELECT * FROM \"tblPergunta\" WHERE \"Código_Pergunta\" = $1");
    Prepara_Libpq(banco, "mostradas",
                  "SELECT rowid FROM \"tblPergunta_Já_Mostrada\" WHERE \"Código_Pergunta\" = $1");
    Prepara_Libpq(banco, "apaga", "DELETE FROM \"tblPergunta_Já_Mostrada\" WHERE rowid = $1");
    Prepara_Libpq(
        banco, "insere",
        "INSERT INTO \"tblPergunta_Já_Mostrada\" (\"Código_Pergunta\", \"Data_Jogo\") VALUES ($1, $2)");
    Prepara_Libpq(auditoria, "audita",
                  "INSERT INTO \"tblManutenção_Banco_de_Dados\" (\"Manutenção\", \"Usuário\", "
                  "\"Data_Manutenção\", \"Hora_Manutenção\") VALUES ($1, 'Supervisor', $2, $3)");
    const auto um = [&](const char* nome, std::initializer_list<QByteArray> valores) {
        QVector<QByteArray> guardados(valores);
        QVector<const char*> v;
        for (const QByteArray& x : guardados) v << x.constData();
        return PQexecPrepared(banco, nome, v.size(), v.data(), nullptr, nullptr, 0);
    };
    bool ok = true;
    for (auto _ : estado) {
        idas.Repetição();
        instalação.Passa_Rodada();
        const QDateTime agora = instalação.Plataforma.Relógio;
        const QByteArray dia = QDateTime(agora.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        const QByteArray hora = agora.toString("HH:mm:ss").toUtf8();
        std::vector<std::pair<const char*, QVector<QByteArray>>> escritas, auditorias;
        const auto audita = [&](const QString& texto) {
            auditorias.push_back({"audita", {texto.left(100).toUtf8(), dia, hora}});
        };
        std::vector<PGresult*> r =
            Recebe_Libpq(Envia_Libpq(banco, {{"conta", {}}, {"conta_h", {}}, {"antiga", {}}}, false));
        const int n = std::atoi(PQgetvalue(r[0], 0, 0));
        int no_histórico = std::atoi(PQgetvalue(r[1], 0, 0));
        bool antiga_lida = true;
        QByteArray antiga, código_antigo;
        if (PQntuples(r[2]) == 1) {
            antiga = PQgetvalue(r[2], 0, 0);
            código_antigo = PQgetvalue(r[2], 0, 1);
        }
        for (PGresult* x : r) PQclear(x);
        QSet<QByteArray> apagadas;
        bool começou = false;
        Semeia_Gerador();
        bool sorteada = false;
        for (int tentativa = 0; !sorteada && tentativa < 10 * (n + 1); ++tentativa) {
            const QByteArray código = QByteArray::number(Sorteia(n + 1));
            r = Recebe_Libpq(Envia_Libpq(banco, {{"le", {código}}, {"mostradas", {código}}}, false));
            const bool existe = PQntuples(r[0]) == 1;
            QList<QByteArray> linhas;
            for (int i = 0; i < PQntuples(r[1]); ++i) linhas << PQgetvalue(r[1], i, 0);
            for (PGresult* x : r) PQclear(x);
            if (!existe) continue;
            if (no_histórico > Limite_Histórico) {
                if (!antiga_lida) {
                    // A second trim in one turn: the first goes to the server before the next oldest is read.
                    if (!começou) escritas.insert(escritas.begin(), {"BEGIN", {}});
                    for (PGresult* x : Recebe_Libpq(Envia_Libpq(banco, escritas, false))) PQclear(x);
                    escritas.clear();
                    começou = true;
                    PGresult* a = um("antiga", {});
                    antiga = PQntuples(a) == 1 ? PQgetvalue(a, 0, 0) : "";
                    código_antigo = PQntuples(a) == 1 ? PQgetvalue(a, 0, 1) : "";
                    PQclear(a);
                }
                if (!antiga.isEmpty()) {
                    escritas.push_back({"apaga", {antiga}});
                    apagadas.insert(antiga);
                    audita(
                        "AtualizandoSelect * From tblPergunta_Já_Mostrada Order By Data_Jogo onde "
                        "Código_Pergunta = " +
                        QString::fromUtf8(código_antigo));
                    --no_histórico;
                    antiga_lida = false;
                }
            }
            bool já_mostrada = false;
            for (const QByteArray& linha : linhas) já_mostrada = já_mostrada || !apagadas.contains(linha);
            if (já_mostrada) continue;
            escritas.push_back({"insere", {código, dia}});
            audita("Atualizando Pergunta_Já_Mostrada onde Código_Pergunta = " + QString::fromUtf8(código));
            sorteada = true;
        }
        if (!escritas.empty() && !começou) escritas.insert(escritas.begin(), {"BEGIN", {}});
        if (!escritas.empty() || começou) escritas.push_back({"COMMIT", {}});
        const Ida_Libpq ida_banco = Envia_Libpq(banco, escritas, false);
        const Ida_Libpq ida_auditoria = Envia_Libpq(auditoria, auditorias, true);
        for (const Ida_Libpq* ida : {&ida_banco, &ida_auditoria})
            for (PGresult* x : Recebe_Libpq(*ida)) {
                ok = ok && (PQresultStatus(x) == PGRES_COMMAND_OK || PQresultStatus(x) == PGRES_TUPLES_OK);
                PQclear(x);
            }
        if (!sorteada || !ok) {
            estado.SkipWithError(ok ? "nenhuma pergunta sorteada" : "uma gravação falhou");
            break;
        }
    }
    idas.Relata(estado, 1);
    PQfinish(banco);
    PQfinish(auditoria);
}

// ---------- 10,000 writes, each in its own transaction, with the audit ----------

void BM_Gravação_Pelo_Programa(benchmark::State& estado, bool pelo_relé) {
    Instalação instalação(pelo_relé);
    Contador_Idas idas(pelo_relé);
    const int inclusões = pelo_relé ? Inclusões_Relé : Inclusões;
    const int auditoria_antes = Conta_Libpq(Caminho_Banco_Manutenção(), "tblManutenção_Banco_de_Dados");
    Abre_Tabela("tblPergunta");
    Monitora_Log = true;
    Operação = "Inclusão";
    int próxima = 0;
    for (auto _ : estado) {
        idas.Repetição();
        for (int i = 0; i < inclusões; ++i) {
            const QString texto = Texto_Pergunta(++próxima);
            Inicia_Transação();
            Tabela.AddNew();
            Tabela.Fields("Pergunta").Set_Value(texto);
            Tabela.Fields("Resposta_Correta").Set_Value("Certa");
            Tabela.Fields("Resposta_Incorreta_1").Set_Value("Errada A");
            Tabela.Fields("Resposta_Incorreta_2").Set_Value("Errada B");
            Tabela.Fields("Resposta_Incorreta_3").Set_Value("Errada C");
            Tabela.Fields("Tipo").Set_Value("G");
            Tabela.Fields("Já_Comparada").Set_Value(false);
            Tabela.Fields("Já_Verificada").Set_Value(false);
            Tabela.Fields("Pergunta_Original").Set_Value(QString(""));
            Grava(Tabela, false);
            Finaliza_Transação();
        }
    }
    idas.Relata(estado, inclusões);
    Reinicia_Estado_Global();
    const int esperadas = static_cast<int>(estado.iterations()) * inclusões;
    if (Conta_Libpq(Caminho_Banco_Principal(), "tblPergunta") != esperadas ||
        Conta_Libpq(Caminho_Banco_Manutenção(), "tblManutenção_Banco_de_Dados") - auditoria_antes !=
            esperadas)
        estado.SkipWithError("faltam linhas gravadas");
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
}

// By hand: BEGIN, the question, the audit row on the audit connection outside the transaction, COMMIT.
void BM_Gravação_Libpq_Puro(benchmark::State& estado, bool pelo_relé) {
    Instalação instalação(pelo_relé);
    Contador_Idas idas(pelo_relé);
    const int inclusões = pelo_relé ? Inclusões_Relé : Inclusões;
    Reinicia_Estado_Global();
    PGconn* banco = Abre_Libpq(Caminho_Banco_Principal());
    PGconn* auditoria = Abre_Libpq(Caminho_Banco_Manutenção());
    Prepara_Libpq(
        banco, "insere",
        "INSERT INTO \"tblPergunta\" (\"Pergunta\", \"Resposta_Correta\", \"Resposta_Incorreta_1\", "
        "\"Resposta_Incorreta_2\", \"Resposta_Incorreta_3\", \"Tipo\", \"Já_Comparada\", "
        "\"Já_Verificada\", \"Pergunta_Original\") VALUES ($1, 'Certa', 'Errada A', 'Errada B', "
        "'Errada C', 'G', false, false, '')");
    Prepara_Libpq(auditoria, "audita",
                  "INSERT INTO \"tblManutenção_Banco_de_Dados\" (\"Manutenção\", \"Usuário\", "
                  "\"Data_Manutenção\", \"Hora_Manutenção\") VALUES ($1, 'Supervisor', $2, $3)");
    const QByteArray data =
        QDateTime(instalação.Plataforma.Relógio.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
    const QByteArray hora = instalação.Plataforma.Relógio.toString("HH:mm:ss").toUtf8();
    int próxima = 0;
    for (auto _ : estado) {
        idas.Repetição();
        for (int i = 0; i < inclusões; ++i) {
            const QString texto = Texto_Pergunta(++próxima);
            const QByteArray pergunta = texto.toUtf8();
            const QByteArray manutenção = ("Incluindo Pergunta onde Pergunta = " + texto).left(100).toUtf8();
            bool ok = Executa_Libpq(banco, "BEGIN");
            const char* v1[] = {pergunta.constData()};
            PGresult* r = PQexecPrepared(banco, "insere", 1, v1, nullptr, nullptr, 0);
            ok = ok && PQresultStatus(r) == PGRES_COMMAND_OK;
            PQclear(r);
            const char* v2[] = {manutenção.constData(), data.constData(), hora.constData()};
            r = PQexecPrepared(auditoria, "audita", 3, v2, nullptr, nullptr, 0);
            ok = ok && PQresultStatus(r) == PGRES_COMMAND_OK;
            PQclear(r);
            ok = Executa_Libpq(banco, "COMMIT") && ok;
            if (!ok) {
                estado.SkipWithError("uma gravação falhou");
                break;
            }
        }
    }
    idas.Relata(estado, inclusões);
    PQfinish(banco);
    PQfinish(auditoria);
}

// ---------- the register's "Próximo", 1,000 times ----------

// One bank for the walks and the searches, made once, pointed straight at the server or through the relay.
Instalação& Banco_Grande(bool pelo_relé) {
    static Instalação instalação(pelo_relé, Perguntas);
    if (instalação.Relé_Agora != pelo_relé) instalação.Abre(pelo_relé);
    return instalação;
}

void BM_Próximo_Pelo_Programa(benchmark::State& estado, bool pelo_relé) {
    Instalação& instalação = Banco_Grande(pelo_relé);
    const int passos = pelo_relé ? Passos_Relé : Passos;
    Contador_Idas idas(pelo_relé);
    Próximo_No_Cadastro(estado, instalação.Plataforma, passos, [&] { idas.Repetição(); });
    idas.Relata(estado, passos);
}

// By hand: the next row in code order, carrying the last code, every column read, and what the register
// shows of it put into the same widgets (a register window used only for its widgets), the question's
// line of statistics included: its answers summed in the statistics' database with those of a game not yet
// added to the summaries, as the window shows them.
void BM_Próximo_Libpq_Puro(benchmark::State& estado, bool pelo_relé) {
    Banco_Grande(pelo_relé);
    const int passos = pelo_relé ? Passos_Relé : Passos;
    Contador_Idas idas(pelo_relé);
    frmPergunta tela;
    PGconn* banco = Abre_Libpq(Caminho_Banco_Principal());
    Prepara_Libpq(banco, "proxima",
                  "SELECT * FROM \"tblPergunta\" WHERE \"Código_Pergunta\" > $1 ORDER BY \"Código_Pergunta\" "
                  "NULLS FIRST, rowid LIMIT 1");
    PGconn* estatísticas = Abre_Libpq(Estatísticas::Caminho_Banco_Estatísticas());
    Prepara_Libpq(estatísticas, "resumo", Resumo_Pergunta_SQL(true));
    for (auto _ : estado) {
        idas.Repetição();
        QByteArray última = "1";
        for (int i = 0; i < passos; ++i) {
            const char* v[] = {última.constData()};
            PGresult* r = PQexecPrepared(banco, "proxima", 1, v, nullptr, nullptr, 0);
            if (PQntuples(r) == 1) {
                última = PQgetvalue(r, 0, 1);
                for (int c = 0; c < PQnfields(r); ++c) benchmark::DoNotOptimize(PQgetvalue(r, 0, c));
                const char* textos[5];
                for (int c = 0; c < 5; ++c) textos[c] = PQgetvalue(r, 0, c == 0 ? 0 : c + 1);
                Mostra_Pergunta_À_Mão(tela, std::atoi(PQgetvalue(r, 0, 1)), textos, PQgetvalue(r, 0, 6));
                const char* código[] = {PQgetvalue(r, 0, 1)};
                PGresult* resumo = PQexecPrepared(estatísticas, "resumo", 1, código, nullptr, nullptr, 0);
                const long long respostas = PQntuples(resumo) == 1 ? std::atoll(PQgetvalue(resumo, 0, 0)) : 0;
                const long long acertos = PQntuples(resumo) == 1 ? std::atoll(PQgetvalue(resumo, 0, 1)) : 0;
                Mostra_Estatística_À_Mão(tela, respostas, acertos);
                PQclear(resumo);
            }
            PQclear(r);
        }
        if (última.toInt() != passos + 1) {
            estado.SkipWithError("a caminhada não chegou à linha esperada");
            break;
        }
    }
    idas.Relata(estado, passos);
    PQfinish(banco);
    PQfinish(estatísticas);
}

// ---------- the locate dialog's search over 100,000 questions ----------

void BM_Localiza_Pelo_Programa(benchmark::State& estado, bool pelo_relé) {
    Instalação& instalação = Banco_Grande(pelo_relé);
    Contador_Idas idas(pelo_relé);
    // One search before the measure, as the raw side prepares its statements before its own: the process's
    // first dialog and the statements' first preparing are not the time of a search.
    {
        frmPergunta cadastro;
        Abre_Tabela_Pesquisa("tblPergunta");
        frmLocaliza_Informação localiza(&cadastro);
        localiza.optOpção_Click(6);
        localiza.txtConteúdo->setText(Palavra);
        localiza.cmdOk_Click();
    }
    Localiza_No_Cadastro(estado, instalação.Plataforma, Palavra, Linhas_Página, Achadas,
                         [&] { idas.Repetição(); });
    idas.Relata(estado, 1);
    Encerra_Resultado_Localizado();
}

// By hand: every hit's row id, then the first page's rows in one statement by their row ids, as a careful
// programmer reads a page that is shown at once.
void BM_Localiza_Libpq_Puro(benchmark::State& estado, bool pelo_relé) {
    Banco_Grande(pelo_relé);
    Contador_Idas idas(pelo_relé);
    PGconn* banco = Abre_Libpq(Caminho_Banco_Principal());
    Prepara_Libpq(banco, "busca",
                  "SELECT rowid FROM \"tblPergunta\" WHERE lower(\"Pergunta\"::text COLLATE \"und-x-icu\") "
                  "LIKE '%girassol%' ORDER BY rowid");
    Prepara_Libpq(banco, "le",
                  "SELECT * FROM \"tblPergunta\" WHERE rowid = ANY($1::bigint[]) ORDER BY rowid");
    for (auto _ : estado) {
        idas.Repetição();
        PGresult* busca = PQexecPrepared(banco, "busca", 0, nullptr, nullptr, nullptr, 0);
        const int achadas = PQntuples(busca);
        QByteArray ids = "{";
        for (int i = 0; i < Linhas_Página && i < achadas; ++i)
            ids += (i == 0 ? "" : ",") + QByteArray(PQgetvalue(busca, i, 0));
        ids += "}";
        const char* v[] = {ids.constData()};
        PGresult* r = PQexecPrepared(banco, "le", 1, v, nullptr, nullptr, 0);
        for (int i = 0; i < PQntuples(r); ++i)
            for (int c = 0; c < PQnfields(r); ++c) benchmark::DoNotOptimize(PQgetvalue(r, i, c));
        const int lidas = PQntuples(r);
        PQclear(r);
        PQclear(busca);
        if (achadas != Achadas || lidas != Linhas_Página) {
            estado.SkipWithError("a busca não achou o esperado");
            break;
        }
    }
    idas.Relata(estado, 1);
    PQfinish(banco);
}

// ---------- a lock: an edit begun and given up ----------

constexpr int Edições = 200;
constexpr int Edições_Relé = 50;

// What an edit of the register does to the row: the lock, the row read again as committed, and, given up,
// the lock's transaction ended.
void BM_Trava_Pelo_Programa(benchmark::State& estado, bool pelo_relé) {
    Instalação& instalação = Banco_Grande(pelo_relé);
    const int edições = pelo_relé ? Edições_Relé : Edições;
    Contador_Idas idas(pelo_relé);
    Abre_Tabela("tblPergunta");
    Tabela.MoveFirst();
    for (auto _ : estado) {
        idas.Repetição();
        for (int i = 0; i < edições; ++i) {
            Tabela.Edita();
            Tabela.CancelUpdate();
        }
    }
    idas.Relata(estado, edições);
    if (Tabela.Fields("Código_Pergunta").Value().toInt() != 1) estado.SkipWithError("a linha mudou");
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
    Tabela.Close();
}

// By hand: the lock with its transaction's BEGIN, the row read, the end of the transaction.
void BM_Trava_Libpq_Puro(benchmark::State& estado, bool pelo_relé) {
    Banco_Grande(pelo_relé);
    const int edições = pelo_relé ? Edições_Relé : Edições;
    Contador_Idas idas(pelo_relé);
    PGconn* banco = Abre_Libpq(Caminho_Banco_Principal());
    Prepara_Libpq(banco, "le", "SELECT * FROM \"tblPergunta\" WHERE rowid = $1");
    bool ok = true;
    for (auto _ : estado) {
        idas.Repetição();
        for (int i = 0; i < edições; ++i) {
            ok = Executa_Libpq(banco,
                               "BEGIN; SELECT 1 FROM \"tblPergunta\" WHERE rowid = 1 FOR UPDATE NOWAIT") &&
                 ok;
            const char* v[] = {"1"};
            PGresult* r = PQexecPrepared(banco, "le", 1, v, nullptr, nullptr, 0);
            ok = PQntuples(r) == 1 && ok;
            for (int c = 0; c < PQnfields(r); ++c) benchmark::DoNotOptimize(PQgetvalue(r, 0, c));
            PQclear(r);
            ok = Executa_Libpq(banco, "COMMIT") && ok;
        }
    }
    idas.Relata(estado, edições);
    if (!ok) estado.SkipWithError("uma trava falhou");
    PQfinish(banco);
}

// Each pair straight on the server, then through the relay. The pairs that make an installation of their
// own come first: the one big bank, once made, stays the installation of the process to its end.
void Registra_Comparações() {
    using Medida = void (*)(benchmark::State&, bool);
    struct Par {
        const char* Nome;
        Medida Puro, Programa;
        int Repetições, Repetições_Relé;
    };
    const Par próprias[] = {
        {"Rodada", BM_Rodada_Libpq_Puro, BM_Rodada_Pelo_Programa, 200, 50},
        {"Gravação", BM_Gravação_Libpq_Puro, BM_Gravação_Pelo_Programa, 1, 1},
    };
    const Par no_banco_grande[] = {
        {"Próximo", BM_Próximo_Libpq_Puro, BM_Próximo_Pelo_Programa, 5, 2},
        {"Localiza", BM_Localiza_Libpq_Puro, BM_Localiza_Pelo_Programa, 10, 5},
        {"Trava", BM_Trava_Libpq_Puro, BM_Trava_Pelo_Programa, 5, 1},
    };
    const auto registra = [](const Par& p, bool pelo_relé) {
        const std::string nome = std::string("BM_") + p.Nome + (pelo_relé ? "_Relé_2ms" : "");
        const int vezes = pelo_relé ? p.Repetições_Relé : p.Repetições;
        for (const auto& [marca, medida] : {std::pair{"_Libpq_Puro", p.Puro}, {"_Pelo_Programa", p.Programa}})
            benchmark::RegisterBenchmark(
                (nome + marca).c_str(),
                [medida, pelo_relé](benchmark::State& estado) { medida(estado, pelo_relé); })
                ->Unit(benchmark::kMillisecond)
                ->Iterations(vezes);
    };
    for (const bool pelo_relé : {false, true})
        for (const Par& p : próprias) registra(p, pelo_relé);
    for (const bool pelo_relé : {false, true})
        for (const Par& p : no_banco_grande) registra(p, pelo_relé);
}
}  // namespace

int main(int argc, char** argv) {
    // Every installation of this run names a database of the throwaway cluster.
    qputenv("QUIZORA_TESTE_SERVIDOR", "1");
    Registra_Comparações();
    return Roda_Comparação(argc, argv);
}
