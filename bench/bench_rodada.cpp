// One turn's store work, Nova_Rodada, with banks of 10,000, 100,000 and 1,000,000 questions and a full
// history of 501 rows:
// the question draw, the history trim and the write, with their audit rows, against the raw SQLite
// statements that the same draws need. The clock moves from turn to turn, as in a game, so each turn
// draws anew instead of walking deeper into the questions already shown.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QDateTime>
#include <QVector>
#include <map>
#include <optional>

#include "common/Globais.h"
#include "game/Regras_Jogo.h"
#include "game/frmJogo.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Banco_Puro.h"
#include "Medidas_Programa.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
int Perguntas = 10000;  // the bank being measured
constexpr int Histórico = 501;
constexpr int Segundos_Por_Rodada = 40;  // a question read and answered
constexpr int Tentativas_Por_Código = 10;
const QDateTime Início_Do_Jogo(QDate(2026, 11, 23), QTime(14, 30, 0));

void Prepara_Banco(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, 'Certa', 'Errada 1', 'Errada 2', 'Errada 3', ?, 0, 0, '')");
    for (int i = 1; i <= Perguntas; ++i) {
        const QByteArray texto = QString("Pergunta %1?").arg(i).toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, i % 2 ? "G" : "B", -1, SQLITE_STATIC);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    // Games of earlier days: every row of the history is older than the turns measured.
    p = Prepara_Puro(banco, "INSERT INTO tblPergunta_Já_Mostrada VALUES (?, ?)");
    for (int i = 1; i <= Histórico; ++i) {
        const QDate dia = Início_Do_Jogo.date().addDays(i - Histórico - 1);
        const QByteArray data = QDateTime(dia, QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        sqlite3_bind_int(p, 1, i * 7);
        sqlite3_bind_text(p, 2, data.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Sorteio_Real Plataforma;
    Instalação() {
        Instala_Programa();
        Reinicia_Estado_Global();
        Plataforma.Relógio = Início_Do_Jogo;
        Prepara_Banco_Principal(Prepara_Banco);
        Abre_Conexões_Programa();
        Plataforma.Caixas.clear();
    }
    void Passa_Rodada() { Plataforma.Relógio = Plataforma.Relógio.addSecs(Segundos_Por_Rodada); }
};

// The window's store, counting the questions looked at: both sides report it, and it must match.
class Fonte_Contada : public Fonte_Perguntas {
  public:
    explicit Fonte_Contada(Fonte_Perguntas& fonte) : Fonte(fonte) {}
    long Exames = 0;
    int Quantidade_Perguntas() override { return Fonte.Quantidade_Perguntas(); }
    std::optional<Registro_Pergunta> Busca_Pergunta(int código) override {
        ++Exames;
        return Fonte.Busca_Pergunta(código);
    }
    int Quantidade_Mostradas() override { return Fonte.Quantidade_Mostradas(); }
    void Exclui_Mostrada_Mais_Antiga() override { Fonte.Exclui_Mostrada_Mais_Antiga(); }
    bool Já_Mostrada(int código) override { return Fonte.Já_Mostrada(código); }
    void Registra_Mostrada(int código, const QDate& data) override { Fonte.Registra_Mostrada(código, data); }

  private:
    Fonte_Perguntas& Fonte;
};

// The history's codes in the order written, read after the timed loop.
QVector<int> Histórico_Final() {
    QVector<int> códigos;
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* c =
        Prepara_Puro(banco, "SELECT Código_Pergunta FROM tblPergunta_Já_Mostrada ORDER BY rowid");
    while (sqlite3_step(c) == SQLITE_ROW) códigos.append(sqlite3_column_int(c, 0));
    sqlite3_finalize(c);
    sqlite3_close(banco);
    return códigos;
}

// The side that runs second checks that it drew the same questions as the first.
void Confere_Com_Outro_Lado(benchmark::State& estado, long exames) {
    // By the size of the bank: each size's two sides are compared with each other.
    static std::map<int, QVector<int>> históricos;
    static std::map<int, long> exames_por_tamanho;
    std::optional<QVector<int>> histórico_outro_lado;
    if (históricos.count(Perguntas)) histórico_outro_lado = históricos[Perguntas];
    const long exames_outro_lado = exames_por_tamanho[Perguntas];
    estado.counters["Exames_Por_Rodada"] =
        benchmark::Counter(static_cast<double>(exames), benchmark::Counter::kAvgIterations);
    const QVector<int> histórico = Histórico_Final();
    if (histórico_outro_lado && (*histórico_outro_lado != histórico || exames_outro_lado != exames))
        estado.SkipWithError("os dois lados não sortearam as mesmas perguntas");
    históricos[Perguntas] = histórico;
    exames_por_tamanho[Perguntas] = exames;
}

void BM_Nova_Rodada_Pelo_Programa(benchmark::State& estado, int perguntas) {
    Perguntas = perguntas;
    Instalação instalação;
    long exames = 0;
    {
        frmJogo janela;
        Registra_Jogador(janela.Jogo, 1, "Ana");
        Fonte_Contada fonte(janela);
        for (auto _ : estado) {
            instalação.Passa_Rodada();
            Inicia_Transação();
            const Resultado_Rodada r =
                ::Nova_Rodada(janela.Jogo, fonte, instalação.Plataforma.Relógio.date());
            Finaliza_Transação();
            if (r != Resultado_Rodada::Pergunta_Sorteada) {
                estado.SkipWithError("nenhuma pergunta sorteada");
                break;
            }
            janela.Jogo.Vez_Em_Andamento = false;
        }
        exames = fonte.Exames;
    }
    Reinicia_Estado_Global();
    Confere_Com_Outro_Lado(estado, exames);
}

// The same turn by hand, with the program's draws: count the bank, seed from the clock, and for each code
// drawn read its row, trim the history when it is over its limit, look the code up in the history; the
// first code not shown goes into the history. Each write adds its audit row, as Grava does, and the
// writes share one transaction.
void BM_Nova_Rodada_SQLite_Puro(benchmark::State& estado, int perguntas) {
    Perguntas = perguntas;
    Instalação instalação;
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3* auditoria = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    sqlite3_stmt* conta = Prepara_Puro(banco, "SELECT count(*) FROM tblPergunta");
    sqlite3_stmt* lê = Prepara_Puro(banco, "SELECT * FROM tblPergunta WHERE Código_Pergunta = ?");
    sqlite3_stmt* conta_h = Prepara_Puro(banco, "SELECT count(*) FROM tblPergunta_Já_Mostrada");
    sqlite3_stmt* mais_antiga = Prepara_Puro(
        banco,
        "SELECT rowid, Código_Pergunta FROM tblPergunta_Já_Mostrada ORDER BY Data_Jogo, rowid LIMIT 1");
    sqlite3_stmt* apaga = Prepara_Puro(banco, "DELETE FROM tblPergunta_Já_Mostrada WHERE rowid = ?");
    sqlite3_stmt* mostrada =
        Prepara_Puro(banco, "SELECT count(*) FROM tblPergunta_Já_Mostrada WHERE Código_Pergunta = ?");
    sqlite3_stmt* insere = Prepara_Puro(banco, "INSERT INTO tblPergunta_Já_Mostrada VALUES (?, ?)");
    sqlite3_stmt* audita = Prepara_Puro(auditoria,
                                        "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, "
                                        "Data_Manutenção, Hora_Manutenção) VALUES (?, 'Supervisor', ?, ?)");
    // Grava's texts for the two writes: the trim's slot is open on a select, the new row's on the table.
    const QString texto_exclusão =
        "Atualizando" +
        QString("Select * From tblPergunta_Já_Mostrada Order By Data_Jogo").left(50).trimmed() +
        " onde Código_Pergunta = ";
    const QString texto_inclusão = "Atualizando Pergunta_Já_Mostrada onde Código_Pergunta = ";
    long exames = 0;
    bool ok = true;
    for (auto _ : estado) {
        instalação.Passa_Rodada();
        const QDateTime agora = instalação.Plataforma.Relógio;
        const QByteArray dia = QDateTime(agora.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        const QByteArray hora = agora.toString("HH:mm:ss").toUtf8();
        const auto audita_linha = [&](const QString& texto, int código) {
            const QByteArray manutenção = (texto + QString::number(código)).left(100).toUtf8();
            sqlite3_bind_text(audita, 1, manutenção.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(audita, 2, dia.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(audita, 3, hora.constData(), -1, SQLITE_STATIC);
            ok = sqlite3_step(audita) == SQLITE_DONE && ok;
            sqlite3_reset(audita);
        };
        bool escrevendo = false;
        const auto começa_escrita = [&]() {
            if (!escrevendo) ok = Executa_Puro(banco, "BEGIN IMMEDIATE") && ok;
            escrevendo = true;
        };

        sqlite3_step(conta);
        const int n = sqlite3_column_int(conta, 0);
        sqlite3_reset(conta);
        Semeia_Gerador();
        bool sorteada = false;
        for (int tentativa = 0; !sorteada && tentativa < Tentativas_Por_Código * (n + 1); ++tentativa) {
            const int código = Sorteia(n + 1);
            ++exames;
            sqlite3_bind_int(lê, 1, código);
            const bool existe = sqlite3_step(lê) == SQLITE_ROW;
            if (existe)
                for (int c = 0; c < sqlite3_column_count(lê); ++c)
                    benchmark::DoNotOptimize(sqlite3_column_text(lê, c));
            sqlite3_reset(lê);
            if (!existe) continue;
            sqlite3_step(conta_h);
            const int no_histórico = sqlite3_column_int(conta_h, 0);
            sqlite3_reset(conta_h);
            if (no_histórico > Limite_Histórico) {
                sqlite3_step(mais_antiga);
                const sqlite3_int64 antiga = sqlite3_column_int64(mais_antiga, 0);
                const int código_antigo = sqlite3_column_int(mais_antiga, 1);
                sqlite3_reset(mais_antiga);
                começa_escrita();
                sqlite3_bind_int64(apaga, 1, antiga);
                ok = sqlite3_step(apaga) == SQLITE_DONE && ok;
                sqlite3_reset(apaga);
                audita_linha(texto_exclusão, código_antigo);
            }
            sqlite3_bind_int(mostrada, 1, código);
            sqlite3_step(mostrada);
            const bool já_mostrada = sqlite3_column_int(mostrada, 0) > 0;
            sqlite3_reset(mostrada);
            if (já_mostrada) continue;
            começa_escrita();
            sqlite3_bind_int(insere, 1, código);
            sqlite3_bind_text(insere, 2, dia.constData(), -1, SQLITE_STATIC);
            ok = sqlite3_step(insere) == SQLITE_DONE && ok;
            sqlite3_reset(insere);
            audita_linha(texto_inclusão, código);
            sorteada = true;
        }
        if (escrevendo) ok = Executa_Puro(banco, "COMMIT") && ok;
        if (!sorteada || !ok) {
            estado.SkipWithError(ok ? "nenhuma pergunta sorteada" : "uma gravação falhou");
            break;
        }
    }
    for (sqlite3_stmt* c : {conta, lê, conta_h, mais_antiga, apaga, mostrada, insere, audita})
        sqlite3_finalize(c);
    sqlite3_close(banco);
    sqlite3_close(auditoria);
    Confere_Com_Outro_Lado(estado, exames);
}

}  // namespace

int main(int argc, char** argv) {
    // Each pair under a name of its own per size, so that a ratio is printed for each size.
    for (const int perguntas : {10000, 100000, 1000000}) {
        const std::string base = "BM_Nova_Rodada_" + std::to_string(perguntas);
        benchmark::RegisterBenchmark((base + "_SQLite_Puro").c_str(), BM_Nova_Rodada_SQLite_Puro, perguntas)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(200);
        benchmark::RegisterBenchmark((base + "_Pelo_Programa").c_str(), BM_Nova_Rodada_Pelo_Programa,
                                     perguntas)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(200);
    }
    return Roda_Comparação(argc, argv);
}
