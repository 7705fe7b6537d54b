// One turn's store work, Nova_Rodada, with a bank of 10,000 questions and a full history of 501 rows:
// the question draw, the history trim and the write, against the raw SQLite statements it needs.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <map>

#include "game/frmJogo.h"
#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Perguntas = 10000;
constexpr int Histórico = 501;

void Prepara_Banco(sqlite3* banco) {
    sqlite3_exec(banco, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* p = nullptr;
    sqlite3_prepare_v2(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, 'Certa', 'Errada 1', 'Errada 2', 'Errada 3', ?, 0, 0, '')",
        -1, &p, nullptr);
    for (int i = 1; i <= Perguntas; ++i) {
        const QByteArray texto = QString("Pergunta %1?").arg(i).toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, i % 2 ? "G" : "B", -1, SQLITE_STATIC);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    sqlite3_prepare_v2(banco, "INSERT INTO tblPergunta_Já_Mostrada VALUES (?, ?)", -1, &p, nullptr);
    for (int i = 1; i <= Histórico; ++i) {
        const QByteArray data =
            QDateTime(QDate(2026, 1, 1).addDays(i), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        sqlite3_bind_int(p, 1, i * 7);
        sqlite3_bind_text(p, 2, data.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    sqlite3_exec(banco, "COMMIT", nullptr, nullptr, nullptr);
}

struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    Instalação() {
        Instala_Programa();
        Reinicia_Estado_Global();
        sqlite3* banco = nullptr;
        sqlite3_open(Caminho_Banco_Principal().toUtf8().constData(), &banco);
        Registra_Comparação(banco);
        Prepara_Banco(banco);
        sqlite3_close(banco);
        for (Ligação* c :
             {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
            c->Open(Conexão_Principal());
        Conexão_Manutenção.Open(Conexão_Auditoria());
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    }
};

void BM_Nova_Rodada_Pelo_Programa(benchmark::State& estado) {
    Instalação instalação;
    frmJogo janela;
    Registra_Jogador(janela.Jogo, 1, "Ana");
    const QDate hoje(2026, 11, 23);
    for (auto _ : estado) {
        Inicia_Transação();
        const Resultado_Rodada r = ::Nova_Rodada(janela.Jogo, janela, hoje);
        Finaliza_Transação();
        if (r != Resultado_Rodada::Pergunta_Sorteada) estado.SkipWithError("nenhuma pergunta sorteada");
        janela.Jogo.Vez_Em_Andamento = false;
    }
    Reinicia_Estado_Global();
}

// The same work by hand: count the bank, read a drawn question, look it up in the history, count the
// history, delete its oldest row, add the new row; one transaction.
void BM_Nova_Rodada_SQLite_Puro(benchmark::State& estado) {
    Instalação instalação;
    Reinicia_Estado_Global();
    sqlite3* banco = nullptr;
    sqlite3_open(Caminho_Banco_Principal().toUtf8().constData(), &banco);
    Registra_Comparação(banco);
    sqlite3_exec(banco, "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
    sqlite3_stmt *conta, *lê, *mostrada, *conta_h, *mais_antiga, *apaga, *insere;
    sqlite3_prepare_v2(banco, "SELECT count(*) FROM tblPergunta", -1, &conta, nullptr);
    sqlite3_prepare_v2(banco, "SELECT * FROM tblPergunta WHERE Código_Pergunta = ?", -1, &lê, nullptr);
    sqlite3_prepare_v2(banco, "SELECT count(*) FROM tblPergunta_Já_Mostrada WHERE Código_Pergunta = ?", -1,
                       &mostrada, nullptr);
    sqlite3_prepare_v2(banco, "SELECT count(*) FROM tblPergunta_Já_Mostrada", -1, &conta_h, nullptr);
    sqlite3_prepare_v2(banco, "SELECT rowid FROM tblPergunta_Já_Mostrada ORDER BY Data_Jogo LIMIT 1", -1,
                       &mais_antiga, nullptr);
    sqlite3_prepare_v2(banco, "DELETE FROM tblPergunta_Já_Mostrada WHERE rowid = ?", -1, &apaga, nullptr);
    sqlite3_prepare_v2(banco, "INSERT INTO tblPergunta_Já_Mostrada VALUES (?, '2026-11-23 00:00:00')", -1,
                       &insere, nullptr);
    int código = 1;
    for (auto _ : estado) {
        sqlite3_exec(banco, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        sqlite3_step(conta);
        sqlite3_reset(conta);
        código = código * 7 % Perguntas + 1;
        sqlite3_bind_int(lê, 1, código);
        sqlite3_step(lê);
        sqlite3_reset(lê);
        sqlite3_bind_int(mostrada, 1, código);
        sqlite3_step(mostrada);
        sqlite3_reset(mostrada);
        sqlite3_step(conta_h);
        sqlite3_reset(conta_h);
        sqlite3_step(mais_antiga);
        const sqlite3_int64 antiga = sqlite3_column_int64(mais_antiga, 0);
        sqlite3_reset(mais_antiga);
        sqlite3_bind_int64(apaga, 1, antiga);
        sqlite3_step(apaga);
        sqlite3_reset(apaga);
        sqlite3_bind_int(insere, 1, código);
        sqlite3_step(insere);
        sqlite3_reset(insere);
        sqlite3_exec(banco, "COMMIT", nullptr, nullptr, nullptr);
    }
    for (sqlite3_stmt* c : {conta, lê, mostrada, conta_h, mais_antiga, apaga, insere}) sqlite3_finalize(c);
    sqlite3_close(banco);
}

}  // namespace

BENCHMARK(BM_Nova_Rodada_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(200);
BENCHMARK(BM_Nova_Rodada_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(200);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
