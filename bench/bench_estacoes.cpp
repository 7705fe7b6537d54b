// Twenty workstations on one server through an evening: a soak run, not a test. The run starts a throwaway
// cluster of its own (a unix socket in a temporary folder), installs the bank there, and starts 20
// processes, each a workstation with its own program folder that joins the bank as a fresh installation
// does and then, through the program's own store, plays game turns, alters a few questions that all of
// them fight over (Trava, then Grava) and adds questions of its own, with the audit trail on. Twice in the
// middle the server is stopped at once (as "pg_ctl stop -m immediate") and started again.
//
// At the end it checks and reports: every question that a workstation saw committed is in the bank (lost
// rows), every increment of a fought-over counter is there once (lost updates), no lock waits and no
// workstation stuck (deadlocks), every workstation committed again after each restart, and the p50/p99 of
// a turn and of a save. The same turn and save by raw libpq, alone on the same server in the same run,
// give the ratios.
//
//   bench_estacoes [--minutos 10] [--estacoes 20]
#include <libpq-fe.h>

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <random>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "store/Tradutor_SQL.h"
#include "game/Regras_Jogo.h"
#include "game/frmJogo.h"
#include "platform/Plataforma_Qt.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"
#include "Medidas_Programa.h"

namespace {
constexpr int Perguntas_Banco = 3000;
constexpr int Disputadas = 10;  // questions that every workstation alters, whose wrong answer 3 counts
const QString Marca_Disputada = "Pergunta disputada nº ";

// A workstation left alone at night: boxes are answered (Tentar de novo for a lost connection), sleeps
// are real, the clock is the machine's.
class Plataforma_Estação : public Plataforma_Sorteio_Real {
  public:
    void Dorme(int ms) override { QThread::msleep(static_cast<unsigned long>(ms)); }
    void Processa_Eventos() override {}
    QDateTime Agora() override { return QDateTime::currentDateTime(); }
    float Segundos_Desde_Meia_Noite() override {
        const QTime t = QTime::currentTime();
        return static_cast<float>(t.msecsSinceStartOfDay()) / 1000.0f;
    }
};

qint64 Agora_Ms() {
    return QDateTime::currentMSecsSinceEpoch();
}

PGconn* Abre_Libpq(const QString& conexão, const char* esquema) {
    PGconn* c = PQconnectdb(conexão.toUtf8().constData());
    PQclear(PQexec(c, (QByteArray("SET search_path TO ") + esquema).constData()));
    return c;
}

bool Executa(PGconn* c, const QByteArray& sql) {
    PGresult* r = PQexec(c, sql.constData());
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK || PQresultStatus(r) == PGRES_TUPLES_OK;
    if (!ok) std::fprintf(stderr, "Falhou \"%s\": %s\n", sql.constData(), PQerrorMessage(c));
    PQclear(r);
    return ok;
}

QString Valor(PGconn* c, const QByteArray& sql) {
    PGresult* r = PQexec(c, sql.constData());
    const QString v = PQresultStatus(r) == PGRES_TUPLES_OK && PQntuples(r) > 0
                          ? QString::fromUtf8(PQgetvalue(r, 0, 0))
                          : QString();
    PQclear(r);
    return v;
}

double Percentil(QVector<double> v, double p) {
    if (v.isEmpty()) return 0;
    std::sort(v.begin(), v.end());
    const int i = std::clamp(static_cast<int>(p * (v.size() - 1) + 0.5), 0, static_cast<int>(v.size()) - 1);
    return v[i];
}

// ---------- one workstation ----------

// Its journal: one line per committed change, turn or save time, and lost connection, flushed at once, so
// that what a workstation saw committed survives it.
class Diário {
  public:
    explicit Diário(const QString& caminho) : Arquivo(caminho) { Arquivo.open(QIODevice::Append); }
    void Escreve(const QString& linha) {
        Arquivo.write(linha.toUtf8() + "\n");
        Arquivo.flush();
    }

  private:
    QFile Arquivo;
};

int Roda_Estação(int número, qint64 até) {
    Plataforma_Estação plataforma;
    Diário diário(Caminho_Programa() + "/diario.txt");
    // The start of a fresh installation whose Servidor.txt names the bank.
    {
        frmAtualiza_Versão janela;
        janela.tmrTempo->stop();
        try {
            janela.tmrTempo_Timer();
        } catch (const Programa_Encerrado&) {
            diário.Escreve("ERRO a abertura terminou o programa");
            return 1;
        }
    }
    Rotina rotina("bench_estacoes", "Roda_Estação");
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    Usuário_Atual = QString("Estação %1").arg(número);
    Monitora_Log = true;
    diário.Escreve(QString("INICIO %1").arg(Agora_Ms()));

    std::mt19937 acaso(static_cast<unsigned>(número * 7919 + Agora_Ms()));
    frmJogo jogo;
    Registra_Jogador(jogo.Jogo, 1, Usuário_Atual);
    int incluídas = 0;
    int perdas_vistas = Perdas_De_Conexão();
    // A failure that ends the program ends this workstation: its journal says so.
    try {
        while (Agora_Ms() < até) {
            const int sorteio = static_cast<int>(acaso() % 10);
            const int perdas = Perdas_De_Conexão();
            QElapsedTimer relógio;
            relógio.start();
            if (sorteio < 5) {
                // A game turn: the draw, the history trimmed and written with its audit row, in one
                // transaction.
                Inicia_Transação();
                const Resultado_Rodada r = ::Nova_Rodada(jogo.Jogo, jogo, QDate::currentDate());
                Finaliza_Transação();
                jogo.Jogo.Vez_Em_Andamento = false;
                if (r != Resultado_Rodada::Pergunta_Sorteada && Perdas_De_Conexão() == perdas)
                    diário.Escreve("ERRO rodada sem pergunta");
                if (Perdas_De_Conexão() == perdas)
                    diário.Escreve(QString("R %1 %2").arg(relógio.nsecsElapsed() / 1e6).arg(Agora_Ms()));
            } else if (sorteio < 8) {
                // A question that the others alter too: its lock, what is stored now plus one, the save. The game
            // keeps its own slots; these changes go through the fourth, as a report's window would.
                const int qual = 1 + static_cast<int>(acaso() % Disputadas);
                Abre_Tabela_Quaternária("Select * From tblPergunta Where Pergunta = " +
                            Valor_Texto_SQL(Marca_Disputada + QString::number(qual)));
                if (Tabela_Quaternária.Eof()) {
                    diário.Escreve("ERRO disputada não achada");
                    continue;
                }
                const qint64 código = Tabela_Quaternária.Fields("Código_Pergunta").Value().toLongLong();
                Operação = "Alteração";
                Inicia_Transação();
                Trava(Tabela_Quaternária, Conexão_Quaternária, false);
                if (!Travou) {
                    diário.Escreve("OCUPADA");
                    continue;
                }
                const int novo = Tabela_Quaternária.Fields("Resposta_Incorreta_3").Value().toInt() + 1;
                Tabela_Quaternária.Fields("Resposta_Incorreta_3").Set_Value(QString::number(novo));
                Grava(Tabela_Quaternária, false);
                const bool gravou = !Registro_Duplicado;
                Finaliza_Transação();
                Tabela_Quaternária.CancelUpdate();
                if (gravou && Perdas_De_Conexão() == perdas)
                    diário.Escreve(QString("A %1 %2 %3 %4")
                                       .arg(código)
                                       .arg(novo)
                                       .arg(relógio.nsecsElapsed() / 1e6)
                                       .arg(Agora_Ms()));
            } else {
                // A question of its own, with its audit row.
                const QString texto = QString("Estação %1, pergunta nº %2?").arg(número).arg(++incluídas);
                Abre_Tabela_Quaternária("tblPergunta");
                Operação = "Inclusão";
                Inicia_Transação();
                Tabela_Quaternária.AddNew();
                Tabela_Quaternária.Fields("Pergunta").Set_Value(texto);
                Tabela_Quaternária.Fields("Resposta_Correta").Set_Value("Certa");
                Tabela_Quaternária.Fields("Resposta_Incorreta_1").Set_Value("Errada 1");
                Tabela_Quaternária.Fields("Resposta_Incorreta_2").Set_Value("Errada 2");
                Tabela_Quaternária.Fields("Resposta_Incorreta_3").Set_Value("Errada 3");
                Tabela_Quaternária.Fields("Tipo").Set_Value(número % 2 ? "G" : "B");
                Tabela_Quaternária.Fields("Já_Comparada").Set_Value(false);
                Tabela_Quaternária.Fields("Já_Verificada").Set_Value(false);
                Tabela_Quaternária.Fields("Pergunta_Original").Set_Value(texto);
                Grava(Tabela_Quaternária, false);
                const bool gravou = !Registro_Duplicado;
                Finaliza_Transação();
                Tabela_Quaternária.CancelUpdate();
                if (gravou && Perdas_De_Conexão() == perdas)
                    diário.Escreve(
                        QString("I %1 %2 %3").arg(relógio.nsecsElapsed() / 1e6).arg(Agora_Ms()).arg(texto));
            }
            if (Perdas_De_Conexão() != perdas_vistas) {
                perdas_vistas = Perdas_De_Conexão();
                diário.Escreve(QString("PERDA %1").arg(Agora_Ms()));
            }
            Operação = "Consulta";
        }
    } catch (const Programa_Encerrado&) {
        diário.Escreve("ERRO o programa terminou: " + QString(Mensagem_Erro).replace('\r', ' '));
    }
    int caixas_perda = 0, outras = 0;
    for (const Caixa_Mostrada& c : plataforma.Caixas) {
        if (c.Texto.startsWith("A conexão com o servidor "))
            ++caixas_perda;
        else if (!c.Texto.startsWith("Não foi possível concluir este processamento"))
            ++outras;
    }
    diário.Escreve(QString("CAIXAS %1 %2").arg(caixas_perda).arg(outras));
    for (const Caixa_Mostrada& c : plataforma.Caixas)
        if (!c.Texto.startsWith("A conexão com o servidor ") &&
            !c.Texto.startsWith("Não foi possível concluir este processamento"))
            diário.Escreve("CAIXA " + QString(c.Texto).replace('\r', ' ').replace('\n', ' '));
    diário.Escreve(QString("FIM %1").arg(Agora_Ms()));
    return 0;
}

// ---------- raw libpq alone: the same turn and save ----------

struct Tempos_Puros {
    QVector<double> Rodada, Gravação;
};

Tempos_Puros Mede_Libpq_Puro(const QString& conexão, int vezes) {
    Tempos_Puros t;
    PGconn* banco = Abre_Libpq(conexão, "dados");
    PGconn* auditoria = Abre_Libpq(conexão, "manutencao");
    std::mt19937 acaso(7);
    const QString total = Valor(banco, "SELECT max(\"Código_Pergunta\") FROM \"tblPergunta\"");
    for (int i = 0; i < vezes; ++i) {
        QElapsedTimer relógio;
        relógio.start();
        // The turn: the count, a drawn question, its history look-up, the history row and its audit row.
        const QByteArray código = QByteArray::number(1 + static_cast<int>(acaso() % total.toUInt()));
        Executa(banco, "BEGIN");
        Valor(banco, "SELECT count(*) FROM \"tblPergunta\"");
        Valor(banco, "SELECT * FROM \"tblPergunta\" WHERE \"Código_Pergunta\" = " + código);
        Valor(banco, "SELECT rowid FROM \"tblPergunta_Já_Mostrada\" WHERE \"Código_Pergunta\" = " + código);
        Executa(banco,
                "INSERT INTO \"tblPergunta_Já_Mostrada\" (\"Código_Pergunta\", \"Data_Jogo\") VALUES (" +
                    código + ", now())");
        Executa(
            auditoria,
            "INSERT INTO \"tblManutenção_Banco_de_Dados\" (\"Manutenção\", \"Usuário\", \"Data_Manutenção\", "
            "\"Hora_Manutenção\") VALUES ('Incluindo Pergunta_Já_Mostrada onde Código_Pergunta = " +
                código + "', 'Puro', current_date, '12:00:00')");
        Executa(banco, "COMMIT");
        t.Rodada << relógio.nsecsElapsed() / 1e6;

        // The save: the row's lock, the change, the commit, the audit row.
        relógio.restart();
        const QByteArray disputada =
            ("'" + Marca_Disputada + QString::number(1 + static_cast<int>(acaso() % Disputadas)) + "'")
                .toUtf8();
        Executa(banco, "BEGIN");
        Valor(banco, "SELECT rowid, \"Resposta_Incorreta_3\" FROM \"tblPergunta\" WHERE \"Pergunta\" = " +
                         disputada + " FOR UPDATE NOWAIT");
        Executa(banco,
                "UPDATE \"tblPergunta\" SET \"Resposta_Incorreta_2\" = 'Errada 2' WHERE \"Pergunta\" = " +
                    disputada);
        Executa(banco, "COMMIT");
        Executa(
            auditoria,
            "INSERT INTO \"tblManutenção_Banco_de_Dados\" (\"Manutenção\", \"Usuário\", \"Data_Manutenção\", "
            "\"Hora_Manutenção\") VALUES ('Alterando Pergunta', 'Puro', current_date, '12:00:00')");
        t.Gravação << relógio.nsecsElapsed() / 1e6;
    }
    PQfinish(banco);
    PQfinish(auditoria);
    return t;
}

// ---------- the evening ----------

int Roda_Noite(double minutos, int estações, const QString& programa) {
    qputenv("QUIZORA_TESTE_SERVIDOR", "1");
    Servidor_Teste* servidor = Servidor_Teste::Ativo();
    if (servidor == nullptr) {
        std::fprintf(stderr, "O servidor de teste não pôde ser iniciado.\n");
        return 2;
    }
    QString conexão;
    {
        Pasta_Teste pasta;
        Plataforma_Roteirizada plataforma;
        Instala_Programa();
        Reinicia_Estado_Global();
        conexão = Conexão_Do_Servidor(Caminho_Banco_Principal());
        PGconn* c = Abre_Libpq(conexão, "dados");
        Executa(c, "BEGIN");
        for (int i = 1; i <= Perguntas_Banco; ++i) {
            const QByteArray texto = (i <= Disputadas ? Marca_Disputada + QString::number(i)
                                                      : QString("Pergunta do banco nº %1?").arg(i))
                                         .toUtf8();
            Executa(
                c,
                "INSERT INTO \"tblPergunta\" (\"Pergunta\", \"Resposta_Correta\", \"Resposta_Incorreta_1\", "
                "\"Resposta_Incorreta_2\", \"Resposta_Incorreta_3\", \"Tipo\", \"Já_Comparada\", "
                "\"Já_Verificada\", \"Pergunta_Original\") VALUES ('" +
                    texto + "', 'Certa', 'Errada 1', 'Errada 2', '" + (i <= Disputadas ? "0" : "Errada 3") +
                    "', '" + (i % 2 ? "G" : "B") + "', false, false, '" + texto + "')");
        }
        Executa(c, "COMMIT");
        Executa(c, "ANALYZE");
        PQfinish(c);
        // The installation's folder goes; its bank stays on the server.
    }
    std::printf("Banco instalado no servidor de teste com %d perguntas (%d disputadas).\n", Perguntas_Banco,
                Disputadas);

    const Tempos_Puros puro = Mede_Libpq_Puro(conexão, 300);
    // The raw saves counted nothing: the counters start again from what is stored.
    QTemporaryDir base;
    // QUIZORA_GUARDA_ESTACOES=1 keeps the workstations' folders (journals, occurrence logs) after the run.
    base.setAutoRemove(qEnvironmentVariableIsEmpty("QUIZORA_GUARDA_ESTACOES"));
    QVector<QProcess*> processos;
    const qint64 início = Agora_Ms();
    const qint64 até = início + static_cast<qint64>(minutos * 60000);
    for (int i = 1; i <= estações; ++i) {
        const QString pasta = base.path() + QString("/estacao_%1").arg(i);
        QDir().mkpath(pasta + "/Dados");
        QFile arquivo(pasta + "/Dados/" + Arquivo_Servidor);
        arquivo.open(QIODevice::WriteOnly);
        arquivo.write(conexão.toUtf8() + "\n");
        arquivo.close();
        auto* p = new QProcess;
        QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
        ambiente.insert("QUIZORA_PASTA", pasta);
        ambiente.insert("QT_QPA_PLATFORM", "offscreen");
        ambiente.remove("QUIZORA_TESTE_SERVIDOR");
        p->setProcessEnvironment(ambiente);
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->start(programa, {"--estacao", QString::number(i), "--ate", QString::number(até)});
        processos << p;
    }
    std::printf("%d estações trabalhando por %.1f minutos.\n", estações, minutos);
    std::fflush(stdout);

    // Two restarts, at a third and at two thirds of the evening.
    QVector<QPair<qint64, qint64>> reinícios;  // (stopped, back)
    for (int k = 1; k <= 2; ++k) {
        const qint64 quando = início + static_cast<qint64>(minutos * 60000 * k / 3);
        while (Agora_Ms() < quando) QThread::msleep(200);
        const qint64 parou = Agora_Ms();
        const bool ok = servidor->Reinicia();
        reinícios << qMakePair(parou, Agora_Ms());
        std::printf("Reinício %d do servidor: %s em %.1f s.\n", k, ok ? "feito" : "FALHOU",
                    (Agora_Ms() - parou) / 1000.0);
        std::fflush(stdout);
    }

    // Every workstation ends by itself shortly after the evening; one that does not is stuck.
    int presas = 0;
    for (QProcess* p : processos) {
        const qint64 resta = std::max<qint64>(1000, até + 120000 - Agora_Ms());
        if (!p->waitForFinished(static_cast<int>(resta))) {
            ++presas;
            p->kill();
            p->waitForFinished(5000);
        }
    }

    // What the workstations saw committed, against the bank.
    PGconn* c = Abre_Libpq(conexão, "dados");
    QVector<double> rodadas, gravações;
    QStringList incluídas;
    QHash<qint64, QVector<int>> incrementos;
    QVector<qint64> últimos_commits;
    int perdas = 0, caixas_perda = 0, outras_caixas = 0, ocupadas = 0, erros = 0, terminaram = 0;
    QVector<QVector<qint64>> commits_por_estação(estações);
    QStringList textos_outras;
    for (int i = 1; i <= estações; ++i) {
        QFile diário(base.path() + QString("/estacao_%1/diario.txt").arg(i));
        if (!diário.open(QIODevice::ReadOnly)) continue;
        for (const QByteArray& bruta : diário.readAll().split('\n')) {
            const QString linha = QString::fromUtf8(bruta);
            const QStringList p = linha.split(' ');
            if (p[0] == "R") {
                rodadas << p[1].toDouble();
                commits_por_estação[i - 1] << p[2].toLongLong();
            } else if (p[0] == "A") {
                incrementos[p[1].toLongLong()] << p[2].toInt();
                gravações << p[3].toDouble();
                commits_por_estação[i - 1] << p[4].toLongLong();
            } else if (p[0] == "I") {
                gravações << p[1].toDouble();
                commits_por_estação[i - 1] << p[2].toLongLong();
                incluídas << linha.section(' ', 3);
            } else if (p[0] == "PERDA") {
                ++perdas;
            } else if (p[0] == "OCUPADA") {
                ++ocupadas;
            } else if (p[0] == "CAIXAS") {
                caixas_perda += p[1].toInt();
                outras_caixas += p[2].toInt();
            } else if (p[0] == "CAIXA") {
                if (textos_outras.size() < 5) textos_outras << linha;
            } else if (p[0] == "ERRO") {
                ++erros;
                std::printf("Estação %d: %s\n", i, qPrintable(linha));
            } else if (p[0] == "FIM") {
                ++terminaram;
            }
        }
    }
    // Lost rows: every question a workstation saw committed.
    QSet<QString> no_banco;
    {
        PGresult* r =
            PQexec(c, "SELECT \"Pergunta\" FROM \"tblPergunta\" WHERE \"Pergunta\"::text COLLATE \"C\" LIKE 'Estação %'");
        for (int i = 0; i < PQntuples(r); ++i) no_banco.insert(QString::fromUtf8(PQgetvalue(r, i, 0)));
        PQclear(r);
    }
    int perdidas = 0;
    for (const QString& t : incluídas) perdidas += no_banco.contains(t) ? 0 : 1;
    const int a_mais = no_banco.size() - (incluídas.size() - perdidas);
    // The audit trail of those questions.
    PGconn* a = Abre_Libpq(conexão, "manutencao");
    const int auditadas =
        Valor(a,
              "SELECT count(DISTINCT \"Manutenção\") FROM \"tblManutenção_Banco_de_Dados\" WHERE "
              "\"Manutenção\"::text COLLATE \"C\" LIKE 'Incluindo Pergunta onde Pergunta = Estação %'")
            .toInt();
    PQfinish(a);
    // Lost updates: each counter's committed increments are 1, 2, 3... once each, and the stored value is
    // the last of them.
    int atualizações_perdidas = 0, incertas = 0, total_incrementos = 0;
    for (auto it = incrementos.begin(); it != incrementos.end(); ++it) {
        QVector<int> v = it.value();
        std::sort(v.begin(), v.end());
        total_incrementos += v.size();
        for (int k = 1; k < v.size(); ++k) atualizações_perdidas += v[k] == v[k - 1] ? 1 : 0;
        const int guardado =
            Valor(c, "SELECT \"Resposta_Incorreta_3\" FROM \"tblPergunta\" WHERE \"Código_Pergunta\" = " +
                         QByteArray::number(it.key()))
                .toInt();
        if (guardado < v.last()) atualizações_perdidas += v.last() - guardado;
        // A value stored but not in a journal: a commit whose answer the lost connection swallowed.
        incertas += guardado - static_cast<int>(QSet<int>(v.begin(), v.end()).size());
    }
    // Locks left waiting, and deadlocks the server saw since its last start.
    const int esperando = Valor(c, "SELECT count(*) FROM pg_locks WHERE NOT granted").toInt();
    const QString deadlocks =
        Valor(c, "SELECT deadlocks FROM pg_stat_database WHERE datname = current_database()");
    PQfinish(c);
    // Every workstation back at work after each restart.
    QVector<int> de_volta(reinícios.size(), 0);
    for (int r = 0; r < reinícios.size(); ++r)
        for (const QVector<qint64>& commits : commits_por_estação)
            if (std::any_of(commits.begin(), commits.end(),
                            [&](qint64 t) { return t > reinícios[r].second; }))
                ++de_volta[r];

    std::printf("\n== Resultado (%d estações, %.1f minutos, 2 reinícios) ==\n", estações, minutos);
    std::printf("estações que terminaram sozinhas: %d de %d; presas (mortas no fim): %d\n", terminaram,
                estações, presas);
    for (int r = 0; r < reinícios.size(); ++r)
        std::printf("reinício %d: servidor fora por %.1f s; estações que gravaram depois dele: %d de %d\n",
                    r + 1, (reinícios[r].second - reinícios[r].first) / 1000.0, de_volta[r], estações);
    std::printf(
        "conexões perdidas vistas pelas estações: %d; caixas de conexão perdida: %d; outras caixas: %d\n",
        perdas, caixas_perda, outras_caixas);
    for (const QString& t : textos_outras) std::printf("  %s\n", qPrintable(t));
    std::printf(
        "perguntas incluídas e confirmadas: %d; ausentes do banco (perdidas): %d; no banco sem "
        "registro no diário: %d; com linha de auditoria: %d\n",
        static_cast<int>(incluídas.size()), perdidas, a_mais, auditadas);
    std::printf(
        "incrementos confirmados nas %d perguntas disputadas: %d; atualizações perdidas: %d; "
        "gravações cuja resposta se perdeu com a conexão: %d; travas recusadas (outra estação): %d\n",
        Disputadas, total_incrementos, atualizações_perdidas, incertas, ocupadas);
    std::printf("travas esperando no fim: %d; deadlocks no servidor desde o último início: %s; erros: %d\n",
                esperando, qPrintable(deadlocks), erros);
    const double r50 = Percentil(rodadas, 0.5), r99 = Percentil(rodadas, 0.99);
    const double g50 = Percentil(gravações, 0.5), g99 = Percentil(gravações, 0.99);
    const double pr50 = Percentil(puro.Rodada, 0.5), pr99 = Percentil(puro.Rodada, 0.99);
    const double pg50 = Percentil(puro.Gravação, 0.5), pg99 = Percentil(puro.Gravação, 0.99);
    std::printf(
        "rodada (%d): p50 %.2f ms, p99 %.2f ms | libpq puro, sozinho (%d): p50 %.2f ms, p99 %.2f ms | "
        "razão p50 %.2f, p99 %.2f\n",
        static_cast<int>(rodadas.size()), r50, r99, static_cast<int>(puro.Rodada.size()), pr50, pr99,
        r50 / pr50, r99 / pr99);
    std::printf(
        "gravação (%d): p50 %.2f ms, p99 %.2f ms | libpq puro, sozinho (%d): p50 %.2f ms, p99 %.2f ms | "
        "razão p50 %.2f, p99 %.2f\n",
        static_cast<int>(gravações.size()), g50, g99, static_cast<int>(puro.Gravação.size()), pg50, pg99,
        g50 / pg50, g99 / pg99);
    qDeleteAll(processos);
    const bool bom = presas == 0 && perdidas == 0 && atualizações_perdidas == 0 && esperando == 0 &&
                     erros == 0 &&
                     std::all_of(de_volta.begin(), de_volta.end(), [&](int n) { return n == estações; });
    std::printf("%s\n", bom ? "TUDO CERTO" : "HÁ PROBLEMAS (veja acima)");
    return bom ? 0 : 1;
}
}  // namespace

int main(int argc, char** argv) {
    QApplication aplicação(argc, argv);
    const QStringList args = aplicação.arguments();
    auto argumento = [&](const QString& nome, const QString& padrão) {
        const int i = args.indexOf(nome);
        return i >= 0 && i + 1 < args.size() ? args[i + 1] : padrão;
    };
    Plataforma_Qt::Fixa_Fuso_Horário();
    if (args.contains("--estacao"))
        return Roda_Estação(argumento("--estacao", "0").toInt(), argumento("--ate", "0").toLongLong());
    return Roda_Noite(argumento("--minutos", "10").toDouble(), argumento("--estacoes", "20").toInt(),
                      aplicação.applicationFilePath());
}
