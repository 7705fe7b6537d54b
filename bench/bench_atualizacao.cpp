// Loads a seed archive of 10,000 questions and a citation table of 2,000 rows through the real upgrade
// path, and the same inserts through raw SQLite, so that the ratio between the two can be read.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <zip.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <map>

#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/schema/Esquema.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Perguntas = 10000;
constexpr int Citações = 2000;

QString Pergunta(int i) {
    return QString("Pergunta número %1 do banco de ensaio?").arg(i);
}

void Cria_Sementes(const QString& dados) {
    auto cria = [](const QString& caminho, const QStringList& tabelas) {
        Catálogo::Cria_Banco(Conexão_Criação(caminho));
        Ligação banco;
        banco.Open(Texto_Conexão(caminho));
        for (const QString& t : tabelas) {
            const Definição_Tabela d = Definição(t);
            Catálogo::Cria_Tabela(banco, d.Nome, d.Campos);
        }
        return banco;
    };
    {
        Ligação banco = cria(dados + "/Temp.Mdb", {"tblRevelação"});
        Registros r;
        r.Open("tblRevelação", banco, Opção_Abertura::Tabela_Direta);
        banco.BeginTrans();
        for (int i = 1; i <= Citações; ++i) {
            r.AddNew();
            r.Fields("Palavra_Chave").Set_Value("fé, esperança, perdão");
            r.Fields("Código_Revelação_de_Deus").Set_Value(i);
            r.Fields("Quantidade_Linhas").Set_Value(20);
            r.Update();
        }
        banco.CommitTrans();
        r.Reinicia();
        banco.Close();
    }
    QDir().mkpath(dados + "/z");
    {
        Ligação banco = cria(dados + "/z/Temp.Mdb", {"tblPergunta"});
        Registros r;
        r.Open("tblPergunta", banco, Opção_Abertura::Tabela_Direta);
        banco.BeginTrans();
        for (int i = 1; i <= Perguntas; ++i) {
            r.AddNew();
            r.Fields("Pergunta").Set_Value(Pergunta(i));
            for (const char* c :
                 {"Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2", "Resposta_Incorreta_3"})
                r.Fields(c).Set_Value(QString("Resposta %1").arg(c));
            r.Fields("Tipo").Set_Value(i % 2 ? "G" : "B");
            r.Fields("Já_Comparada").Set_Value(false);
            r.Fields("Já_Verificada").Set_Value(false);
            r.Fields("Pergunta_Original").Set_Value(Pergunta(i));
            r.Update();
        }
        banco.CommitTrans();
        r.Reinicia();
        banco.Close();
    }
    int erro = 0;
    zip_t* arquivo =
        zip_open(QFile::encodeName(dados + "/Temp.Zip").constData(), ZIP_CREATE | ZIP_TRUNCATE, &erro);
    zip_file_add(arquivo, "Temp.Mdb",
                 zip_source_file(arquivo, QFile::encodeName(dados + "/z/Temp.Mdb").constData(), 0, -1), 0);
    zip_close(arquivo);
    QDir(dados + "/z").removeRecursively();
}

void BM_Carga_Sementes_Pelo_Programa(benchmark::State& estado) {
    for (auto _ : estado) {
        estado.PauseTiming();
        Pasta_Teste pasta;
        Plataforma_Roteirizada plataforma;
        Inicia_Programa();  // creates the database at this version
        Reinicia_Estado_Global();
        Cria_Sementes(pasta.Dados());
        estado.ResumeTiming();
        Inicia_Programa();
        estado.PauseTiming();
        if (Lastrec("tblPergunta", Conexão) != Perguntas) estado.SkipWithError("perguntas não carregadas");
        Reinicia_Estado_Global();
        estado.ResumeTiming();
    }
}

// The same rows straight into SQLite: one transaction per question, as the program commits them, and a
// look-up of each question's original text first; the citations in one transaction.
void BM_Carga_Sementes_SQLite_Puro(benchmark::State& estado) {
    for (auto _ : estado) {
        estado.PauseTiming();
        QTemporaryDir pasta;
        const QByteArray caminho = (pasta.path() + "/puro.db").toUtf8();
        sqlite3* banco = nullptr;
        sqlite3_open(caminho.constData(), &banco);
        sqlite3_exec(
            banco,
            "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
            "CREATE TABLE p(Pergunta TEXT, Código INTEGER PRIMARY KEY AUTOINCREMENT, R1 TEXT, R2 TEXT, R3 "
            "TEXT, "
            "R4 TEXT, Tipo TEXT, C INT, V INT, Original TEXT);"
            "CREATE INDEX po ON p(Original); CREATE TABLE r(Palavra TEXT, Código INTEGER PRIMARY KEY "
            "AUTOINCREMENT, N INT, L INT);",
            nullptr, nullptr, nullptr);
        estado.ResumeTiming();
        sqlite3_stmt *busca, *insere, *cita;
        sqlite3_prepare_v2(banco, "SELECT rowid FROM p WHERE Original = ?", -1, &busca, nullptr);
        sqlite3_prepare_v2(banco, "INSERT INTO p VALUES (?, NULL, 'a', 'b', 'c', 'd', 'G', 0, 0, ?)", -1,
                           &insere, nullptr);
        sqlite3_prepare_v2(banco, "INSERT INTO r VALUES ('fé, esperança, perdão', NULL, ?, 20)", -1, &cita,
                           nullptr);
        sqlite3_exec(banco, "BEGIN", nullptr, nullptr, nullptr);
        for (int i = 1; i <= Citações; ++i) {
            sqlite3_bind_int(cita, 1, i);
            sqlite3_step(cita);
            sqlite3_reset(cita);
        }
        sqlite3_exec(banco, "COMMIT", nullptr, nullptr, nullptr);
        for (int i = 1; i <= Perguntas; ++i) {
            const QByteArray texto = Pergunta(i).toUtf8();
            sqlite3_bind_text(busca, 1, texto.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_step(busca);
            sqlite3_reset(busca);
            sqlite3_exec(banco, "BEGIN", nullptr, nullptr, nullptr);
            sqlite3_bind_text(insere, 1, texto.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(insere, 2, texto.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_step(insere);
            sqlite3_reset(insere);
            sqlite3_exec(banco, "COMMIT", nullptr, nullptr, nullptr);
        }
        sqlite3_finalize(busca);
        sqlite3_finalize(insere);
        sqlite3_finalize(cita);
        estado.PauseTiming();
        sqlite3_close(banco);
        estado.ResumeTiming();
    }
}
}  // namespace

BENCHMARK(BM_Carga_Sementes_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_Carga_Sementes_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(2);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
