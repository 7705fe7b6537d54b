// A bank of 100,000 questions. The export to Temp.Mdb through the register's button, and one step of the
// coherence walk (OK on a question, the next unverified one brought up) with the first 99,000 verified,
// each against raw SQLite doing the same reads and writes: the scratch rows, the stamps, the audit rows,
// the counts and the seek of the next question.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>

#include "Banco_Puro.h"
#include "Medidas_Programa.h"
#include "Relator_Razão.h"
#include "common/Globais.h"
#include "questions/frmPergunta.h"
#include "questions/frmVerifica_Pergunta.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"

namespace {
constexpr int Perguntas = 100000;
constexpr int Verificadas = 99000;
constexpr int Passos = 400;  // steps of the coherence walk timed, of the 1,000 questions left

QByteArray Texto_Pergunta(int i) {
    static const char* const lugares[] = {"Belém", "Nínive", "Lisboa", "Manaus", "Jericó", "Éfeso", "Cuiabá"};
    return QString("Qual é o rio que passa perto de %1, questão nº %2?")
        .arg(QString::fromUtf8(lugares[i % 7]))
        .arg(i)
        .toUtf8();
}

void Prepara_Banco(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, ?, 'Errada A', 'Errada B', 'Errada C', 'G', 0, ?, ' ')");
    for (int i = 1; i <= Perguntas; ++i) {
        const QByteArray texto = Texto_Pergunta(i);
        const QByteArray resposta = QString("Certa %1").arg(i % 9973).toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, resposta.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(p, 3, i <= Verificadas ? 1 : 0);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

Instalação_Preparada& Instalação_Da_Execução() {
    static Instalação_Preparada instalação(Prepara_Banco);
    return instalação;
}

// The audit row that the program's Grava adds for every write, outside the transaction.
struct Auditoria_Pura {
    sqlite3* Banco = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    sqlite3_stmt* Insere = Prepara_Puro(Banco,
                                        "INSERT INTO \"tblManutenção_Banco_de_Dados\" (Manutenção, Usuário, "
                                        "Data_Manutenção, Hora_Manutenção) VALUES (?, 'Supervisor', ?, ?)");
    const QByteArray Data = Data_Para_Banco(QDateTime(QDate(2019, 3, 14), QTime(0, 0))).toUtf8();
    void Grava(const QByteArray& texto) {
        sqlite3_bind_text(Insere, 1, texto.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(Insere, 2, Data.constData(), -1, SQLITE_STATIC);
        sqlite3_bind_text(Insere, 3, "14:30:00", -1, SQLITE_STATIC);
        sqlite3_step(Insere);
        sqlite3_reset(Insere);
    }
    ~Auditoria_Pura() {
        sqlite3_finalize(Insere);
        sqlite3_close(Banco);
    }
};

void BM_Exportação_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Usuário_Atual = "Supervisor";
    frmPergunta janela;
    for (auto _ : estado) {
        const int eventos = instalação.Plataforma.Eventos_Processados;
        janela.cmdExportação_Click();
        if (instalação.Plataforma.Eventos_Processados - eventos < Perguntas) {
            estado.SkipWithError("a exportação não deixou passar os eventos a cada linha");
            break;
        }
    }
    if (instalação.Plataforma.Textos_Caixas() !=
        QStringList(static_cast<int>(estado.iterations()), Aviso(101)))
        estado.SkipWithError(instalação.Plataforma.Textos_Caixas().join(" | ").toUtf8().constData());
    instalação.Plataforma.Caixas.clear();
    Reinicia_Estado_Global();
}

void BM_Exportação_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* principal = Abre_Banco_Puro(Caminho_Banco_Principal());
    if (!QFile::exists(Caminho_Banco_Temporário()))
        Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    sqlite3* rascunho = Abre_Banco_Puro(Caminho_Banco_Temporário());
    Executa_Puro(rascunho, "PRAGMA synchronous=NORMAL");
    Auditoria_Pura auditoria;
    for (auto _ : estado) {
        Executa_Puro(rascunho, "DROP TABLE IF EXISTS tblPergunta");
        Executa_Puro(
            rascunho,
            "CREATE TABLE tblPergunta (Pergunta TEXT(124) COLLATE JET, Código_Pergunta INTEGER PRIMARY "
            "KEY AUTOINCREMENT, Resposta_Correta TEXT(50) COLLATE JET, Resposta_Incorreta_1 TEXT(50) "
            "COLLATE JET, Resposta_Incorreta_2 TEXT(50) COLLATE JET, Resposta_Incorreta_3 TEXT(50) "
            "COLLATE JET, Tipo TEXT(1) COLLATE JET, Já_Comparada BOOLEAN, Já_Verificada BOOLEAN, "
            "Pergunta_Original TEXT ZERO(124) COLLATE JET)");
        Executa_Puro(rascunho,
                     "CREATE INDEX \"tblPergunta.idxCódigo_Pergunta\" ON tblPergunta (Código_Pergunta)");
        Executa_Puro(rascunho, "CREATE INDEX \"tblPergunta.idxPergunta\" ON tblPergunta (Pergunta)");
        Executa_Puro(rascunho,
                     "CREATE INDEX \"tblPergunta.idxPergunta_Original\" ON tblPergunta (Pergunta_Original)");
        Executa_Puro(principal, "BEGIN IMMEDIATE");
        Executa_Puro(rascunho, "BEGIN IMMEDIATE");
        sqlite3_stmt* lê = Prepara_Puro(principal, "SELECT * FROM tblPergunta ORDER BY Código_Pergunta");
        sqlite3_stmt* insere =
            Prepara_Puro(rascunho,
                         "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
                         "Resposta_Incorreta_2, "
                         "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
                         "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
        sqlite3_stmt* carimba =
            Prepara_Puro(principal, "UPDATE tblPergunta SET Pergunta_Original = ? WHERE Código_Pergunta = ?");
        int linhas = 0;
        while (sqlite3_step(lê) == SQLITE_ROW) {
            const QByteArray pergunta(reinterpret_cast<const char*>(sqlite3_column_text(lê, 0)));
            const int colunas[] = {0, 2, 3, 4, 5, 6, 7, 8};
            for (int k = 0; k < 8; ++k)
                sqlite3_bind_value(insere, k + 1, sqlite3_column_value(lê, colunas[k]));
            sqlite3_bind_text(insere, 9, pergunta.constData(), -1, SQLITE_STATIC);
            sqlite3_step(insere);
            sqlite3_reset(insere);
            auditoria.Grava("Atualizando Pergunta onde Pergunta = " + pergunta.left(60));
            sqlite3_bind_text(carimba, 1, pergunta.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_int(carimba, 2, sqlite3_column_int(lê, 1));
            sqlite3_step(carimba);
            sqlite3_reset(carimba);
            ++linhas;
        }
        sqlite3_finalize(lê);
        sqlite3_finalize(insere);
        sqlite3_finalize(carimba);
        Executa_Puro(principal, "COMMIT");
        Executa_Puro(rascunho, "COMMIT");
        if (linhas != Perguntas) {
            estado.SkipWithError("a leitura não trouxe todas as perguntas");
            break;
        }
    }
    sqlite3_close(rascunho);
    sqlite3_close(principal);
}

// The last 1,000 questions unverified again, so that every run walks the same rows.
void Desmarca_Finais() {
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    Executa_Puro(banco, "UPDATE tblPergunta SET Já_Verificada = 0 WHERE Código_Pergunta > 99000");
    sqlite3_close(banco);
}

void BM_Passo_Coerência_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    Reinicia_Estado_Global();
    Desmarca_Finais();
    Abre_Conexões_Programa();
    Usuário_Atual = "Supervisor";
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Coerência_Click();
    int esperado = Verificadas + 1;
    for (auto _ : estado) {
        if (Tabela.Fields("Código_Pergunta").Value().toInt() != esperado) {
            estado.SkipWithError("a caminhada não parou na próxima pergunta por verificar");
            break;
        }
        janela.cmdOk_Click();
        ++esperado;
    }
    instalação.Plataforma.Caixas.clear();
    janela.cmdCancelar_Click();
    Reinicia_Estado_Global();
}

// By hand: write the question back marked, with its audit row, commit; then count the table, seek the
// first unverified question in the index's order and read it, and show it in the same boxes the window
// shows it in (a verification window used only for its widgets).
void BM_Passo_Coerência_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    Desmarca_Finais();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    Auditoria_Pura auditoria;
    sqlite3_stmt* grava = Prepara_Puro(
        banco,
        "UPDATE tblPergunta SET Pergunta = Pergunta, Resposta_Correta = Resposta_Correta, "
        "Resposta_Incorreta_1 = "
        "Resposta_Incorreta_1, Resposta_Incorreta_2 = Resposta_Incorreta_2, Resposta_Incorreta_3 = "
        "Resposta_Incorreta_3, Já_Verificada = 1 WHERE rowid = ?");
    sqlite3_stmt* conta = Prepara_Puro(banco, "SELECT Count(*) FROM tblPergunta");
    sqlite3_stmt* busca = Prepara_Puro(
        banco,
        "SELECT rowid, Código_Pergunta, Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
        "Resposta_Incorreta_2, Resposta_Incorreta_3, * FROM tblPergunta WHERE Já_Verificada = 0 ORDER BY "
        "Já_Verificada, rowid LIMIT 1");
    // The window opens its slot on the table; the raw side needs only its widgets, so the slot is let go.
    Abre_Conexões_Programa();
    Usuário_Atual = "Supervisor";
    frmVerifica_Pergunta tela;
    Tabela.Reinicia();
    const QLocale brasil(QLocale::Portuguese, QLocale::Brazil);
    auto próxima = [&] {
        sqlite3_step(conta);
        benchmark::DoNotOptimize(sqlite3_column_int(conta, 0));
        sqlite3_reset(conta);
        sqlite3_int64 id = 0;
        if (sqlite3_step(busca) == SQLITE_ROW) {
            id = sqlite3_column_int64(busca, 0);
            for (int c = 0; c < sqlite3_column_count(busca); ++c)
                benchmark::DoNotOptimize(sqlite3_column_text(busca, c));
            const char* textos[5];
            for (int c = 0; c < 5; ++c)
                textos[c] = reinterpret_cast<const char*>(sqlite3_column_text(busca, 2 + c));
            Mostra_Campos_Pergunta_À_Mão(
                tela, textos, "Alteração da Pergunta " + brasil.toString(sqlite3_column_int(busca, 1)));
        }
        sqlite3_reset(busca);
        return id;
    };
    sqlite3_int64 atual = próxima();
    for (auto _ : estado) {
        if (atual == 0) {
            estado.SkipWithError("acabaram as perguntas por verificar");
            break;
        }
        Executa_Puro(banco, "BEGIN IMMEDIATE");
        sqlite3_bind_int64(grava, 1, atual);
        sqlite3_step(grava);
        sqlite3_reset(grava);
        Executa_Puro(banco, "COMMIT");
        auditoria.Grava("Atualizando Pergunta onde Pergunta = " +
                        Texto_Pergunta(static_cast<int>(atual)).left(60));
        atual = próxima();
    }
    sqlite3_finalize(grava);
    sqlite3_finalize(conta);
    sqlite3_finalize(busca);
    sqlite3_close(banco);
}
}  // namespace

BENCHMARK(BM_Passo_Coerência_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(Passos);
BENCHMARK(BM_Passo_Coerência_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(Passos);

int main(int argc, char** argv) {
    // The export waits on the disk for most of its time (a commit of the audit file for each question).
    Registra_Em_Rodadas("BM_Exportação", BM_Exportação_SQLite_Puro, BM_Exportação_Pelo_Programa, 2, 1);
    return Roda_Comparação(argc, argv);
}
