// A copy of the program killed at random moments while it writes: everything it reported as committed is
// in Dados.Mdb with its audit row in Manutenção.Mdb and its game turn in Estatísticas.Mdb, no transaction
// is there by halves, the three files pass SQLite's own check, and the program opens them again and goes
// on writing.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QThread>
#include <csignal>
#include <random>
#include <sqlite3.h>

#include "common/Globais.h"
#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "store/Plano_Queda.h"
#include "statistics/Estatísticas.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Rodadas = 80;

// What one killed copy printed before it died.
struct Relato_Rodada {
    int Iniciada = 0;  // the last transaction it started
    int Gravada = 0;   // the last transaction Finaliza_Transação returned from
};

Relato_Rodada Lê_Relato(const QByteArray& saída) {
    Relato_Rodada relato;
    for (const QByteArray& linha : saída.split('\n')) {
        if (linha.startsWith("INICIA ")) relato.Iniciada = linha.mid(7).toInt();
        if (linha.startsWith("GRAVOU ")) relato.Gravada = linha.mid(7).toInt();
    }
    return relato;
}

QString Auxiliar() {
    const QString do_ambiente = qEnvironmentVariable("QUIZORA_AUXILIAR_QUEDA");
    return do_ambiente.isEmpty() ? QCoreApplication::applicationDirPath() + "/auxiliar_queda" : do_ambiente;
}

// Files under `pasta` that this process holds open (the databases, their WAL, shared memory and locks).
QStringList Abertos_Em(const QString& pasta) {
    QStringList abertos;
    const QDir descritores("/proc/self/fd");
    for (const QString& nome :
         descritores.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        const QString alvo = QFile::symLinkTarget(descritores.filePath(nome));
        if (alvo.startsWith(pasta)) abertos << alvo;
    }
    return abertos;
}

// A database file as SQLite alone finds it: read-only, with no help from the program's store. Opening it
// replays whatever WAL the killed copy left behind.
class Banco_Cru {
  public:
    explicit Banco_Cru(const QString& caminho) {
        if (sqlite3_open_v2(caminho.toUtf8().constData(), &Banco, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
            ADD_FAILURE() << "não abriu " << caminho.toStdString() << ": " << sqlite3_errmsg(Banco);
        // The text columns are declared with the program's collation; the check of their indexes needs it.
        Registra_Comparação(Banco);
    }
    ~Banco_Cru() { sqlite3_close_v2(Banco); }
    Banco_Cru(const Banco_Cru&) = delete;
    Banco_Cru& operator=(const Banco_Cru&) = delete;

    // Every row, each column as text.
    QList<QStringList> Linhas(const char* sql) {
        QList<QStringList> linhas;
        sqlite3_stmt* comando = nullptr;
        if (sqlite3_prepare_v2(Banco, sql, -1, &comando, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << sqlite3_errmsg(Banco);
            return linhas;
        }
        int r;
        while ((r = sqlite3_step(comando)) == SQLITE_ROW) {
            QStringList linha;
            for (int i = 0; i < sqlite3_column_count(comando); ++i)
                linha << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, i)));
            linhas << linha;
        }
        if (r != SQLITE_DONE) ADD_FAILURE() << sql << ": " << sqlite3_errmsg(Banco);
        sqlite3_finalize(comando);
        return linhas;
    }

    std::string Integridade() {
        QStringList textos;
        for (const QStringList& linha : Linhas("PRAGMA integrity_check")) textos << linha.join(' ');
        return textos.join('\n').toStdString();
    }

  private:
    sqlite3* Banco = nullptr;
};

// What differs between the rows of a run and the state it should be in, for the failure message.
QString Diferença(const QMap<QString, double>& achadas, const QMap<QString, double>& esperadas) {
    QStringList partes;
    for (auto it = esperadas.cbegin(); it != esperadas.cend(); ++it) {
        if (!achadas.contains(it.key()))
            partes << "falta " + it.key();
        else if (achadas.value(it.key()) != it.value())
            partes << QString("%1 com %2 em vez de %3")
                          .arg(it.key())
                          .arg(achadas.value(it.key()))
                          .arg(it.value());
    }
    for (auto it = achadas.cbegin(); it != achadas.cend(); ++it)
        if (!esperadas.contains(it.key())) partes << "sobra " + it.key();
    return partes.join("; ");
}

class Queda_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
};
}  // namespace

TEST_F(Queda_Teste, KilledWriterLosesNoCommittedTransactionAndLeavesBothFilesSound) {
    SO_NO_EMBUTIDO("examina o diário WAL e os arquivos do SQLite; o servidor cuida da própria durabilidade");
    Instala_Programa();
    Plataforma.Caixas.clear();
    // Nothing of the folder may stay open here: each copy must recover from the files alone, as a
    // program started after a crash does.
    Reinicia_Estado_Global();
    const QStringList abertos = Abertos_Em(Pasta.Dados());
    ASSERT_TRUE(abertos.isEmpty()) << abertos.join(", ").toStdString();

    // A fixed seed, so that a failing sequence of kills can be run again.
    std::mt19937 sorteio(20261123);
    std::discrete_distribution<int> momento({15, 25, 60});
    std::uniform_int_distribution<int> espera_abrindo(0, 12);
    std::uniform_int_distribution<int> gravações_antes(1, 60);
    std::uniform_int_distribution<int> espera_gravando(20, 500);
    QVector<Relato_Rodada> relatos;
    for (int rodada = 0; rodada < Rodadas; ++rodada) {
        QProcess cópia;
        QByteArray saída;
        // Reads what the copy prints until `linha` has come.
        auto Espera_Linha = [&](const QByteArray& linha) {
            while (!saída.startsWith(linha) && !saída.contains("\n" + linha)) {
                if (!cópia.waitForReadyRead(20000)) return false;
                saída += cópia.readAllStandardOutput();
            }
            return true;
        };
        cópia.start(Auxiliar(), {Pasta.Caminho(), QString::number(rodada)});
        ASSERT_TRUE(cópia.waitForStarted(10000)) << Auxiliar().toStdString();
        // Some copies die while they open the files and recover after the previous one; some on the heels
        // of a commit they have just reported, where a store that answers before its data is safe would
        // lose it; the rest at any moment of their writing. A plain sleep, because waiting on the copy's
        // output would wake this process at each line and bunch the kills just after the reports.
        switch (momento(sorteio)) {
            case 0:
                QThread::msleep(static_cast<unsigned long>(espera_abrindo(sorteio)));
                break;
            case 1: {
                const QByteArray linha = "GRAVOU " + QByteArray::number(gravações_antes(sorteio)) + "\n";
                ASSERT_TRUE(Espera_Linha(linha)) << cópia.readAllStandardError().toStdString();
                break;
            }
            default:
                ASSERT_TRUE(Espera_Linha("PRONTO\n")) << cópia.readAllStandardError().toStdString();
                QThread::msleep(static_cast<unsigned long>(espera_gravando(sorteio)));
        }
        ::kill(static_cast<pid_t>(cópia.processId()), SIGKILL);
        ASSERT_TRUE(cópia.waitForFinished(10000));
        ASSERT_EQ(cópia.exitStatus(), QProcess::CrashExit)
            << "rodada " << rodada << " terminou sozinha: " << cópia.readAllStandardError().toStdString();
        EXPECT_EQ(cópia.exitCode(), SIGKILL);
        relatos << Lê_Relato(saída + cópia.readAllStandardOutput());
    }

    // The kills must have landed while the copies wrote, not only before or between their transactions.
    int gravadas = 0, com_gravação = 0, no_meio = 0, na_abertura = 0;
    for (const Relato_Rodada& relato : relatos) {
        gravadas += relato.Gravada;
        if (relato.Gravada > 0) ++com_gravação;
        if (relato.Iniciada > relato.Gravada) ++no_meio;
        if (relato.Iniciada == 0) ++na_abertura;
    }
    std::printf(
        "[ queda    ] %d transações confirmadas; %d cópias mortas no meio de uma transação, %d antes "
        "da primeira\n",
        gravadas, no_meio, na_abertura);
    EXPECT_GE(com_gravação, Rodadas / 2);
    EXPECT_GE(no_meio, Rodadas / 2);
    EXPECT_GE(gravadas, Rodadas);

    Banco_Cru dados(Caminho_Banco_Principal());
    Banco_Cru manutenção(Caminho_Banco_Manutenção());
    Banco_Cru estatísticas(Estatísticas::Caminho_Banco_Estatísticas());
    EXPECT_EQ(dados.Integridade(), "ok");
    EXPECT_EQ(manutenção.Integridade(), "ok");
    EXPECT_EQ(estatísticas.Integridade(), "ok");

    // Every turn reported played is in the statistics, with no gap, and the summaries add up to the turns.
    QMap<int, QList<int>> vezes_por_rodada;
    for (const QStringList& linha : estatísticas.Linhas("SELECT Jogador, Código_Pergunta FROM tblJogada"))
        vezes_por_rodada[linha[0].section(' ', 1).section('-', 0, 0).toInt()] << linha[1].toInt();
    for (int rodada = 0; rodada < Rodadas; ++rodada) {
        QList<int> vezes = vezes_por_rodada.value(rodada);
        std::sort(vezes.begin(), vezes.end());
        const int gravada = relatos[rodada].Gravada;
        const bool sem_falta = vezes.size() >= gravada && vezes.size() <= gravada + 1 &&
                               (vezes.isEmpty() || (vezes.first() == 1 && vezes.last() == vezes.size()));
        EXPECT_TRUE(sem_falta) << "rodada " << rodada << ": " << vezes.size() << " vezes gravadas, "
                               << gravada << " relatadas";
    }
    // The next start adds the turns that no game's end added; a copy killed while adding them left nothing
    // of it half done.
    Falha_Banco falha_resumos;
    ASSERT_TRUE(Estatísticas::Atualiza_Resumos(falha_resumos)) << falha_resumos.Descrição.toStdString();
    const QString total_jogadas = estatísticas.Linhas("SELECT COUNT(*) FROM tblJogada").value(0).value(0);
    EXPECT_EQ(estatísticas.Linhas("SELECT SUM(Respostas) FROM tblResumo_Mensal").value(0).value(0),
              total_jogadas);
    EXPECT_EQ(estatísticas.Linhas("SELECT SUM(Respostas) FROM tblResumo_Jogador").value(0).value(0),
              total_jogadas);
    EXPECT_EQ(estatísticas
                  .Linhas("SELECT COUNT(*) FROM tblResumo_Jogador WHERE Respostas <> (SELECT COUNT(*) "
                          "FROM tblJogada j WHERE j.Início_Jogo = tblResumo_Jogador.Início_Jogo)")
                  .value(0)
                  .value(0),
              "0");

    // Each run's rows are exactly those of its reported transactions, plus the next one whole if it was
    // started: a commit can land between Finaliza_Transação and the report of it.
    QMap<QString, double> da_tabela;
    for (const QStringList& linha : dados.Linhas("SELECT Jogador, Pontuação FROM tblPontuação")) {
        EXPECT_FALSE(da_tabela.contains(linha[0])) << "repetido: " << linha[0].toStdString();
        da_tabela.insert(linha[0], linha[1].toDouble());
    }
    int das_rodadas = 0;
    for (int rodada = 0; rodada < Rodadas; ++rodada) {
        QMap<QString, double> achadas;
        for (auto it = da_tabela.cbegin(); it != da_tabela.cend(); ++it)
            if (it.key().startsWith(Prefixo_Queda(rodada))) achadas.insert(it.key(), it.value());
        das_rodadas += achadas.size();
        const Relato_Rodada& relato = relatos[rodada];
        const QMap<QString, double> relatadas = Estado_Após(rodada, relato.Gravada);
        const bool certo = achadas == relatadas || (relato.Iniciada > relato.Gravada &&
                                                    achadas == Estado_Após(rodada, relato.Gravada + 1));
        EXPECT_TRUE(certo) << "rodada " << rodada << ", " << relato.Gravada
                           << " relatadas: " << Diferença(achadas, relatadas).toStdString();
    }
    int com_prefixo = 0;
    for (const QString& jogador : da_tabela.keys())
        if (jogador.startsWith("Queda ")) ++com_prefixo;
    EXPECT_EQ(com_prefixo, das_rodadas);

    // The audit row of a write is committed by Grava itself, in Manutenção.Mdb and outside the
    // transaction, before Grava returns: every write of a reported transaction has one.
    QSet<QString> auditadas;
    for (const QStringList& linha :
         manutenção.Linhas("SELECT Manutenção FROM tblManutenção_Banco_de_Dados")) {
        const int onde = linha[0].lastIndexOf(" onde Jogador = ");
        if (onde >= 0) auditadas.insert(linha[0].left(9) + " " + linha[0].mid(onde + 16));
    }
    QStringList sem_auditoria;
    for (int rodada = 0; rodada < Rodadas; ++rodada) {
        for (int n = 1; n <= relatos[rodada].Gravada; ++n) {
            const Passo_Queda passo = Passo_Da_Transação(rodada, n);
            QStringList esperadas;
            for (const QString& jogador : passo.Inclusões) esperadas << "Incluindo " + jogador;
            if (!passo.Alterado.isEmpty()) esperadas << "Alterando " + passo.Alterado;
            if (!passo.Excluído.isEmpty()) esperadas << "Excluindo " + passo.Excluído;
            for (const QString& esperada : esperadas)
                if (!auditadas.contains(esperada)) sem_auditoria << esperada;
        }
    }
    EXPECT_TRUE(sem_auditoria.isEmpty()) << sem_auditoria.size() << " sem auditoria, como "
                                         << sem_auditoria.mid(0, 5).join("; ").toStdString();

    // The program itself opens what the copies left and goes on writing.
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Conexão_Manutenção.Open(Conexão_Auditoria());
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    Abre_Tabela("tblPontuação");
    const int antes = Lastrec("tblPontuação", Conexão);
    EXPECT_EQ(antes, da_tabela.size());
    Operação = "Inclusão";
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Jogador").Set_Value("Depois da queda");
    Tabela.Fields("Pontuação").Set_Value(7.5);
    Grava(Tabela, false);
    Finaliza_Transação();
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty()) << Plataforma.Textos_Caixas().join(" | ").toStdString();
    EXPECT_EQ(Lastrec("tblPontuação", Conexão), antes + 1);
    Abre_Tabela("Select * From tblPontuação Where Jogador = 'Depois da queda'");
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Pontuação").Value().toDouble(), 7.5);
    Estatísticas::Jogada jogada;
    jogada.Data_Jogada = jogada.Início_Jogo = QDateTime(QDate(2026, 11, 24), QTime(9, 0));
    jogada.Jogador = "Depois da queda";
    jogada.Posição = 1;
    jogada.Desfecho = Estatísticas::Desfecho_Certa;
    jogada.Número_Resposta = 0;
    Falha_Banco falha;
    EXPECT_TRUE(Estatísticas::Grava_Jogada(jogada, falha)) << falha.Descrição.toStdString();
}
