#include "support/Servidor_Teste.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>

#include "store/Comando_Banco.h"
#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include <arpa/inet.h>
#include <cstdlib>
#include <libpq-fe.h>
#include <sqlite3.h>
#include <memory>
#include <netinet/in.h>
#include <pwd.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
const QString Programas = "/usr/lib/postgresql/15/bin/";

// A port that nothing listens on now.
int Porta_Livre() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in endereço{};
    endereço.sin_family = AF_INET;
    endereço.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    endereço.sin_port = 0;
    socklen_t tamanho = sizeof endereço;
    int porta = 0;
    if (::bind(s, reinterpret_cast<sockaddr*>(&endereço), sizeof endereço) == 0 &&
        ::getsockname(s, reinterpret_cast<sockaddr*>(&endereço), &tamanho) == 0)
        porta = ntohs(endereço.sin_port);
    ::close(s);
    return porta;
}

// The server refuses to run as root: as root, its programs run as the postgres user.
int Roda(const QString& programa, const QStringList& argumentos) {
    QProcess processo;
    processo.setProcessChannelMode(QProcess::MergedChannels);
    if (::geteuid() == 0)
        processo.start("runuser", QStringList{"-u", "postgres", "--", Programas + programa} + argumentos);
    else
        processo.start(Programas + programa, argumentos);
    if (!processo.waitForFinished(120000)) return -1;
    if (processo.exitCode() != 0) fprintf(stderr, "%s\n", processo.readAll().constData());
    return processo.exitCode();
}

std::unique_ptr<Servidor_Teste>& Único() {
    static std::unique_ptr<Servidor_Teste> servidor;
    return servidor;
}
}  // namespace

bool Testa_No_Servidor() {
    return !qEnvironmentVariableIsEmpty("QUIZORA_TESTE_SERVIDOR");
}

Servidor_Teste* Servidor_Teste::Ativo() {
    static bool tentou = false;
    if (!tentou) {
        tentou = true;
        std::unique_ptr<Servidor_Teste> novo(new Servidor_Teste);
        if (novo->Inicia()) Único() = std::move(novo);
    }
    return Único().get();
}

// Clusters left by test processes that were killed before they could stop theirs.
static void Para_Abandonados() {
    for (const QFileInfo& pasta : QDir(QDir::tempPath()).entryInfoList({"quizora-pg-*"}, QDir::Dirs)) {
        QFile dono(pasta.filePath() + "/dono.pid");
        if (!dono.open(QIODevice::ReadOnly)) continue;
        const pid_t pid = static_cast<pid_t>(dono.readAll().trimmed().toLong());
        dono.close();
        if (pid <= 0 || ::kill(pid, 0) == 0) continue;
        Roda("pg_ctl", {"stop", "-m", "immediate", "-D", pasta.filePath() + "/cluster"});
        QDir(pasta.filePath()).removeRecursively();
    }
}

bool Servidor_Teste::Inicia() {
    Para_Abandonados();
    QByteArray modelo = QDir::tempPath().toUtf8() + "/quizora-pg-XXXXXX";
    if (::mkdtemp(modelo.data()) == nullptr) return false;
    Pasta = QString::fromUtf8(modelo);
    QFile dono(Pasta + "/dono.pid");
    if (dono.open(QIODevice::WriteOnly)) dono.write(QByteArray::number(::getpid()));
    dono.close();
    if (::geteuid() == 0) {
        if (const passwd* usuário = ::getpwnam("postgres"))
            if (::chown(modelo.constData(), usuário->pw_uid, usuário->pw_gid) != 0) return false;
    }
    Porta = Porta_Livre();
    if (Roda("initdb", {"-D", Pasta + "/cluster", "-A", "trust", "-U", "postgres", "-E", "UTF8",
                        "--locale=C.UTF-8", "--no-sync"}) != 0)
        return false;
    return Liga();
}

bool Servidor_Teste::Liga() {
    // Only a unix socket in the folder; durability is not what the tests look at.
    const QString opções = "-k " + Pasta + " -p " + QString::number(Porta) +
                           " -c listen_addresses='' -c fsync=off -c full_page_writes=off";
    Ligado = Roda("pg_ctl", {"start", "-w", "-D", Pasta + "/cluster", "-l", Pasta + "/registro.log", "-o",
                             opções}) == 0;
    return Ligado;
}

bool Servidor_Teste::Reinicia() {
    if (Roda("pg_ctl", {"stop", "-m", "immediate", "-D", Pasta + "/cluster"}) != 0) return false;
    Ligado = false;
    return Liga();
}

QString Servidor_Teste::Usuário_Com_Senha(const QString& conexão_banco, const QString& usuário,
                                          const QString& senha) {
    PGconn* c = PQconnectdb(Conexão("postgres").toUtf8().constData());
    PQclear(PQexec(
        c, ("DROP ROLE IF EXISTS " + usuário + "; CREATE ROLE " + usuário + " LOGIN PASSWORD '" + senha + "'")
               .toUtf8()
               .constData()));
    PQfinish(c);
    // Its line comes first in pg_hba.conf, before the cluster's "trust" for everyone.
    QFile hba(Pasta + "/cluster/pg_hba.conf");
    if (hba.open(QIODevice::ReadOnly)) {
        QByteArray texto = hba.readAll();
        hba.close();
        const QByteArray linha = "local all " + usuário.toUtf8() + " scram-sha-256\n";
        if (!texto.startsWith(linha) && hba.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            hba.write(linha + texto);
            hba.close();
            Roda("pg_ctl", {"reload", "-D", Pasta + "/cluster"});
        }
    }
    const QString texto = "host=" + Pasta + " port=" + QString::number(Porta) + " user=" + usuário +
                          " dbname=" + conexão_banco.section("dbname=", 1).section(' ', 0, 0);
    // The reload takes a moment: wait until a connection without the password is refused.
    for (int i = 0; i < 50; ++i) {
        PGconn* prova = PQconnectdb((texto + " password=errada").toUtf8().constData());
        const bool recusou = PQstatus(prova) != CONNECTION_OK;
        PQfinish(prova);
        if (recusou) break;
        ::usleep(100000);
    }
    return texto;
}

Servidor_Teste::~Servidor_Teste() {
    if (Ligado) Roda("pg_ctl", {"stop", "-m", "immediate", "-D", Pasta + "/cluster"});
    // The server's own log, kept where asked (a profile of the statements of a benchmark).
    if (const QString destino = qEnvironmentVariable("QUIZORA_REGISTRO_SERVIDOR"); !destino.isEmpty()) {
        QFile::remove(destino);
        QFile::copy(Pasta + "/registro.log", destino);
    }
    if (!Pasta.isEmpty()) QDir(Pasta).removeRecursively();
}

QString Servidor_Teste::Conexão(const QString& banco) const {
    return "host=" + Pasta + " port=" + QString::number(Porta) + " user=postgres dbname=" + banco;
}

QString Servidor_Teste::Cria_Banco() {
    const QString nome = "quizora_" + QString::number(::getpid()) + "_" + QString::number(++Bancos);
    PGconn* c = PQconnectdb(Conexão("postgres").toUtf8().constData());
    PQclear(PQexec(c, ("CREATE DATABASE " + nome).toUtf8().constData()));
    PQfinish(c);
    return Conexão(nome);
}

namespace {
// A connection of its own to an embedded file, as another workstation's, with the collation its indexes use.
sqlite3* Abre_Embutido_Apartado(const QString& caminho, int modo) {
    sqlite3* banco = nullptr;
    sqlite3_open_v2(caminho.toUtf8().constData(), &banco, modo, nullptr);
    sqlite3_busy_timeout(banco, 5000);
    Registra_Comparação(banco);
    return banco;
}
}  // namespace

bool Executa_Como_Outra_Estação(const QStringList& comandos) {
    if (!Conexão_Do_Servidor(Caminho_Banco_Principal()).isEmpty())
        return Executa_No_Servidor_Avulso(Caminho_Banco_Principal(), comandos);
    sqlite3* banco = Abre_Embutido_Apartado(Caminho_Banco_Principal(), SQLITE_OPEN_READWRITE);
    bool ok = true;
    for (const QString& c : comandos)
        ok = ok && sqlite3_exec(banco, c.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(banco);
    return ok;
}

bool Executa_Em_Outro_Processo(const QStringList& comandos) {
    std::fflush(nullptr);
    const pid_t filho = fork();
    if (filho == 0) _exit(Executa_Como_Outra_Estação(comandos) ? 0 : 1);
    int estado = -1;
    return waitpid(filho, &estado, 0) == filho && WIFEXITED(estado) && WEXITSTATUS(estado) == 0;
}

QVector<QStringList> Consulta_Como_Outra_Estação(const QString& caminho, const QString& sql, bool* ok) {
    QVector<QStringList> linhas;
    bool lida = false;
    if (const QString servidor = Conexão_Do_Servidor(caminho); !servidor.isEmpty()) {
        Falha_Banco falha;
        auto sessão = Abre_Sessão_Servidor(caminho, servidor, Esquema_Do_Servidor(caminho), falha);
        if (Comando_Banco* c = sessão ? sessão->Prepara(sql, falha) : nullptr) {
            int r;
            while ((r = c->Passo()) == Linha_Pronta) {
                QStringList linha;
                for (int i = 0; i < c->Colunas(); ++i) linha << c->Texto(i);
                linhas << linha;
            }
            lida = r == Fim_Comando;
            c->Reinicia();
        }
    } else {
        sqlite3* banco = Abre_Embutido_Apartado(caminho, SQLITE_OPEN_READONLY);
        sqlite3_stmt* c = nullptr;
        if (sqlite3_prepare_v2(banco, sql.toUtf8().constData(), -1, &c, nullptr) == SQLITE_OK) {
            int r;
            while ((r = sqlite3_step(c)) == SQLITE_ROW) {
                QStringList linha;
                for (int i = 0; i < sqlite3_column_count(c); ++i)
                    linha << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(c, i)));
                linhas << linha;
            }
            lida = r == SQLITE_DONE;
        }
        sqlite3_finalize(c);
        sqlite3_close(banco);
    }
    if (ok != nullptr) *ok = lida;
    return lida ? linhas : QVector<QStringList>();
}

int Conta_Como_Outra_Estação(const QString& caminho, const QString& sql) {
    bool ok = false;
    const QVector<QStringList> linhas = Consulta_Como_Outra_Estação(caminho, sql, &ok);
    return ok && !linhas.isEmpty() && !linhas[0].isEmpty() ? linhas[0][0].toInt() : -1;
}
