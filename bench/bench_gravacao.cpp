// 10,000 questions added one at a time, each in a transaction of its own, with the audit on: every write
// also adds its row to Manutenção.Mdb. Against raw SQLite doing the same writes under the same journal
// and syncs: BEGIN IMMEDIATE, the row, the audit row, COMMIT.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

#include "common/Globais.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Banco_Puro.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Inclusões = 10000;

struct Pergunta_Nova {
    QString Pergunta;
    QString Respostas[4];
    QString Tipo;
};

Pergunta_Nova Pergunta_Da_Vez(int i) {
    Pergunta_Nova p;
    p.Pergunta = QString("Qual é a questão de número %1 do cadastro de ensaio?").arg(i);
    p.Respostas[0] = QString("Certa %1").arg(i);
    p.Respostas[1] = QString("Errada A%1").arg(i);
    p.Respostas[2] = QString("Errada B%1").arg(i);
    p.Respostas[3] = QString("Errada C%1").arg(i);
    p.Tipo = i % 2 ? "G" : "B";
    return p;
}

struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    Instalação() {
        Instala_Programa();
        Reinicia_Estado_Global();
        Abre_Conexões_Programa();
        Plataforma.Caixas.clear();
    }
};

int Conta_Linhas(const QString& caminho, const char* tabela) {
    sqlite3* banco = Abre_Banco_Puro(caminho);
    const QByteArray sql = QByteArray("SELECT COUNT(*) FROM ") + tabela;
    sqlite3_stmt* conta = Prepara_Puro(banco, sql.constData());
    const int contagem = sqlite3_step(conta) == SQLITE_ROW ? sqlite3_column_int(conta, 0) : -1;
    sqlite3_finalize(conta);
    sqlite3_close(banco);
    return contagem;
}

// Checks, after the timed loop, that every question and every audit row reached its file.
void Confere_Gravações(benchmark::State& estado, int auditoria_antes) {
    const int esperadas = static_cast<int>(estado.iterations()) * Inclusões;
    if (Conta_Linhas(Caminho_Banco_Principal(), "tblPergunta") != esperadas)
        estado.SkipWithError("faltam perguntas gravadas");
    else if (Conta_Linhas(Caminho_Banco_Manutenção(), "tblManutenção_Banco_de_Dados") - auditoria_antes !=
             esperadas)
        estado.SkipWithError("faltam linhas de auditoria");
}

// As the question register includes: the transaction, the new row, its fields, Grava (which writes the
// audit row), the end of the transaction.
void BM_Inclusão_Auditada_Pelo_Programa(benchmark::State& estado) {
    Instalação instalação;
    const int auditoria_antes = Conta_Linhas(Caminho_Banco_Manutenção(), "tblManutenção_Banco_de_Dados");
    QVector<Pergunta_Nova> perguntas;
    for (int i = 1; i <= estado.max_iterations * Inclusões; ++i) perguntas.append(Pergunta_Da_Vez(i));
    Abre_Tabela("tblPergunta");
    Monitora_Log = true;
    Operação = "Inclusão";
    int próxima = 0;
    for (auto _ : estado) {
        for (int i = 0; i < Inclusões; ++i) {
            const Pergunta_Nova& p = perguntas[próxima++];
            Inicia_Transação();
            Tabela.AddNew();
            Tabela.Fields("Pergunta").Set_Value(p.Pergunta);
            Tabela.Fields("Resposta_Correta").Set_Value(p.Respostas[0]);
            Tabela.Fields("Resposta_Incorreta_1").Set_Value(p.Respostas[1]);
            Tabela.Fields("Resposta_Incorreta_2").Set_Value(p.Respostas[2]);
            Tabela.Fields("Resposta_Incorreta_3").Set_Value(p.Respostas[3]);
            Tabela.Fields("Tipo").Set_Value(p.Tipo);
            Tabela.Fields("Já_Comparada").Set_Value(false);
            Tabela.Fields("Já_Verificada").Set_Value(false);
            Tabela.Fields("Pergunta_Original").Set_Value(QString(""));
            Grava(Tabela, false);
            Finaliza_Transação();
        }
    }
    Reinicia_Estado_Global();
    Confere_Gravações(estado, auditoria_antes);
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
}

// By hand, the same rows in the same order of writes: the question inside BEGIN IMMEDIATE, the audit row
// in its own file outside any transaction (as the audit connection takes no part in the program's), then
// COMMIT. The texts are made before the loop: only the store's work is timed here.
void BM_Inclusão_Auditada_SQLite_Puro(benchmark::State& estado) {
    Instalação instalação;
    const int auditoria_antes = Conta_Linhas(Caminho_Banco_Manutenção(), "tblManutenção_Banco_de_Dados");
    Reinicia_Estado_Global();
    struct Linha_Pura {
        QByteArray Pergunta, Respostas[4], Tipo, Manutenção;
    };
    // As Grava writes them: the day at midnight, and the time as text.
    const QByteArray data =
        QDateTime(instalação.Plataforma.Relógio.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
    const QByteArray hora = instalação.Plataforma.Relógio.toString("HH:mm:ss").toUtf8();
    QVector<Linha_Pura> linhas;
    for (int i = 1; i <= estado.max_iterations * Inclusões; ++i) {
        const Pergunta_Nova p = Pergunta_Da_Vez(i);
        Linha_Pura l;
        l.Pergunta = p.Pergunta.toUtf8();
        for (int k = 0; k < 4; ++k) l.Respostas[k] = p.Respostas[k].toUtf8();
        l.Tipo = p.Tipo.toUtf8();
        l.Manutenção = ("Incluindo Pergunta onde Pergunta = " + p.Pergunta).left(100).trimmed().toUtf8();
        linhas.append(l);
    }
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3* auditoria = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    sqlite3_stmt* insere = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, ?, ?, ?, ?, ?, 0, 0, '')");
    sqlite3_stmt* audita = Prepara_Puro(auditoria,
                                        "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, "
                                        "Data_Manutenção, Hora_Manutenção) VALUES (?, 'Supervisor', ?, ?)");
    int próxima = 0;
    for (auto _ : estado) {
        for (int i = 0; i < Inclusões; ++i) {
            const Linha_Pura& l = linhas[próxima++];
            bool ok = Executa_Puro(banco, "BEGIN IMMEDIATE");
            sqlite3_bind_text(insere, 1, l.Pergunta.constData(), -1, SQLITE_STATIC);
            for (int k = 0; k < 4; ++k)
                sqlite3_bind_text(insere, 2 + k, l.Respostas[k].constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(insere, 6, l.Tipo.constData(), -1, SQLITE_STATIC);
            ok = ok && sqlite3_step(insere) == SQLITE_DONE;
            sqlite3_reset(insere);
            sqlite3_bind_text(audita, 1, l.Manutenção.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(audita, 2, data.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(audita, 3, hora.constData(), -1, SQLITE_STATIC);
            ok = ok && sqlite3_step(audita) == SQLITE_DONE;
            sqlite3_reset(audita);
            ok = Executa_Puro(banco, "COMMIT") && ok;
            if (!ok) {
                estado.SkipWithError("uma gravação falhou");
                break;
            }
        }
    }
    sqlite3_finalize(insere);
    sqlite3_finalize(audita);
    sqlite3_close(banco);
    sqlite3_close(auditoria);
    Confere_Gravações(estado, auditoria_antes);
}

}  // namespace

// Each side writes 10,000 rows with two synced commits apiece: one iteration is enough time.
BENCHMARK(BM_Inclusão_Auditada_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_Inclusão_Auditada_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
