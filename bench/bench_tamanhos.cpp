// The slots at 10,000, 100,000 and 1,000,000 rows against raw SQLite doing the same work in the same
// run: a window's table opened and its first row read, the audit trail opened as a start and a login open
// it, 1,000 steps of "Próximo" from the middle of the table, and 10,000 seeks. Besides the time, each side
// reports how much its peak memory grew while it worked (Pico_KB): both should stay flat with the size.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QFile>
#include <QString>
#include <QVariant>
#include <cstdio>
#include <memory>

#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Banco_Puro.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Tamanhos[] = {10000, 100000, 1000000};
constexpr int Passos = 1000;
constexpr int Buscas = 10000;
int Linhas = 0;  // the size being measured

// The question's text: scattered against the code, so that the text order is not the order of writing.
QByteArray Texto_Pergunta(int código) {
    return QString("Pergunta %1?")
        .arg((static_cast<unsigned>(código) * 2654435761u) % 10000019u, 8, 10, QChar('0'))
        .toUtf8();
}

void Prepara_Banco(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, 'Certa', 'Errada 1', 'Errada 2', 'Errada 3', ?, 0, 0, '')");
    for (int i = 1; i <= Linhas; ++i) {
        const QByteArray texto = Texto_Pergunta(i);
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, i % 2 ? "G" : "B", -1, SQLITE_STATIC);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

// Years of audit rows, a few users taking turns.
void Prepara_Auditoria() {
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(banco,
                                   "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, "
                                   "Data_Manutenção, Hora_Manutenção) VALUES (?, ?, ?, ?)");
    static const char* const usuários[] = {"Supervisor", "Ana", "Bruno", "Carla", "Davi"};
    const QDateTime início(QDate(2010, 1, 1), QTime(8, 0));
    for (int i = 1; i <= Linhas; ++i) {
        const QDateTime quando = início.addSecs(static_cast<qint64>(i) * 300);
        const QByteArray texto = ("Alterando Pergunta onde Pergunta = " + Texto_Pergunta(i));
        const QByteArray dia = QDateTime(quando.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        const QByteArray hora = quando.toString("HH:mm:ss").toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 2, usuários[i % 5], -1, SQLITE_STATIC);
        sqlite3_bind_text(p, 3, dia.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(p, 4, hora.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
    sqlite3_close(banco);
}

// One installation per size, filled once and read by both sides (nothing here writes).
std::unique_ptr<Instalação_Preparada> Instalação_Atual;
int Tamanho_Instalado = 0;

void Instala(int linhas) {
    if (Tamanho_Instalado == linhas) return;
    Instalação_Atual.reset();
    Linhas = linhas;
    Instalação_Atual = std::make_unique<Instalação_Preparada>(Prepara_Banco);
    Prepara_Auditoria();
    Tamanho_Instalado = linhas;
}

// The process's peak memory, which the kernel lets a process set back to what it holds now.
long Pico_KB() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& linha : status.readAll().split('\n'))
        if (linha.startsWith("VmHWM:")) return linha.mid(6).trimmed().split(' ').value(0).toLong();
    return 0;
}
long Zera_Pico() {
    QFile limpa("/proc/self/clear_refs");
    if (limpa.open(QIODevice::WriteOnly)) limpa.write("5");
    return Pico_KB();
}

// Every column of the current row of a raw statement, copied out as the value a field of the program gives:
// a caller must copy a text before the next step, which frees it.
void Lê_Colunas(sqlite3_stmt* comando) {
    for (int c = 0; c < sqlite3_column_count(comando); ++c) {
        QVariant valor;
        switch (sqlite3_column_type(comando, c)) {
            case SQLITE_INTEGER:
                valor = static_cast<qint64>(sqlite3_column_int64(comando, c));
                break;
            case SQLITE_FLOAT:
                valor = sqlite3_column_double(comando, c);
                break;
            case SQLITE_NULL:
                break;
            default:
                valor = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, c)),
                                          sqlite3_column_bytes(comando, c));
        }
        benchmark::DoNotOptimize(valor);
    }
}
void Lê_Campos(Registros& r) {
    for (int c = 0; c < r.Fields_Count(); ++c) benchmark::DoNotOptimize(r.Fields(c).Value());
}

struct Medição {
    benchmark::State& Estado;
    long Antes;
    explicit Medição(benchmark::State& estado, int linhas) : Estado(estado) {
        Instala(linhas);
        Abre_Conexões_Programa();
        Antes = Zera_Pico();
    }
    ~Medição() {
        Estado.counters["Pico_KB"] = static_cast<double>(Pico_KB() - Antes);
        Estado.counters["Linhas"] = Linhas;
    }
};

// A window's Abre_Tabelas: the slot opened, its index set, the first row read.
void Abertura_Pelo_Programa(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    for (auto _ : estado) {
        Tabela.Reinicia();
        Abre_Tabela("tblPergunta");
        Tabela.Set_Index("idxPergunta");
        Tabela.MoveFirst();
        Lê_Campos(Tabela);
    }
}
void Abertura_SQLite_Puro(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    for (auto _ : estado) {
        sqlite3_stmt* c = Prepara_Puro(banco, "SELECT * FROM tblPergunta ORDER BY Pergunta, rowid");
        if (sqlite3_step(c) == SQLITE_ROW) Lê_Colunas(c);
        sqlite3_finalize(c);
    }
    sqlite3_close(banco);
}

// The audit trail's slot as the start and the login open it: on the table, at its first row.
void Auditoria_Pelo_Programa(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    for (auto _ : estado) {
        Tabela_Manutenção.Reinicia();
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        benchmark::DoNotOptimize(Tabela_Manutenção.Eof());
    }
}
void Auditoria_SQLite_Puro(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    for (auto _ : estado) {
        sqlite3_stmt* c = Prepara_Puro(banco, "SELECT * FROM tblManutenção_Banco_de_Dados ORDER BY rowid");
        benchmark::DoNotOptimize(sqlite3_step(c));
        sqlite3_finalize(c);
    }
    sqlite3_close(banco);
}

// 1,000 steps of a register's "Próximo" in the text order, from the middle of the table, each row read.
// The texts' numbers are spread evenly below 10,000,019, so about half the rows follow this one.
constexpr const char* Meio_Do_Texto = "Pergunta 05000000?";
void Próximo_Pelo_Programa(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxPergunta");
    long lidas = 0;
    for (auto _ : estado) {
        Tabela.Seek(QString::fromUtf8(Meio_Do_Texto), Tipo_Busca::Depois_ou_Igual);
        for (int i = 0; i < Passos && !Tabela.Eof(); ++i) {
            Tabela.MoveNext();
            if (!Tabela.Eof()) {
                Lê_Campos(Tabela);
                ++lidas;
            }
        }
    }
    if (lidas != static_cast<long>(Passos) * estado.iterations()) estado.SkipWithError("caminhada curta");
}
void Próximo_SQLite_Puro(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* c =
        Prepara_Puro(banco, "SELECT * FROM tblPergunta WHERE Pergunta >= ? ORDER BY Pergunta, rowid");
    long lidas = 0;
    for (auto _ : estado) {
        sqlite3_bind_text(c, 1, Meio_Do_Texto, -1, SQLITE_STATIC);
        sqlite3_step(c);
        for (int i = 0; i < Passos && sqlite3_step(c) == SQLITE_ROW; ++i) {
            Lê_Colunas(c);
            ++lidas;
        }
        sqlite3_reset(c);
    }
    if (lidas != static_cast<long>(Passos) * estado.iterations()) estado.SkipWithError("caminhada curta");
    sqlite3_finalize(c);
    sqlite3_close(banco);
}

// 10,000 seeks of a question by its code, scattered over the table, each row read.
int Código_Da_Busca(int i, int linhas) {
    return static_cast<int>((static_cast<long long>(i) * 7919) % linhas) + 1;
}
void Seek_Pelo_Programa(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    long achadas = 0;
    for (auto _ : estado)
        for (int i = 0; i < Buscas; ++i) {
            Tabela.Seek(Código_Da_Busca(i, linhas));
            if (!Tabela.Eof()) {
                Lê_Campos(Tabela);
                ++achadas;
            }
        }
    if (achadas != static_cast<long>(Buscas) * estado.iterations())
        estado.SkipWithError("busca sem resultado");
}
void Seek_SQLite_Puro(benchmark::State& estado, int linhas) {
    Medição m(estado, linhas);
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* c = Prepara_Puro(
        banco, "SELECT * FROM tblPergunta WHERE Código_Pergunta = ? ORDER BY Código_Pergunta, rowid");
    for (auto _ : estado)
        for (int i = 0; i < Buscas; ++i) {
            sqlite3_bind_int(c, 1, Código_Da_Busca(i, linhas));
            if (sqlite3_step(c) == SQLITE_ROW) Lê_Colunas(c);
            sqlite3_reset(c);
        }
    sqlite3_finalize(c);
    sqlite3_close(banco);
}

// Each pair under one name per size, so that the ratio is printed for each size.
void Registra() {
    using Função = void (*)(benchmark::State&, int);
    const struct {
        const char* Nome;
        Função Puro;
        Função Programa;
        int Iterações;
    } pares[] = {{"Abertura", Abertura_SQLite_Puro, Abertura_Pelo_Programa, 300},
                 {"Auditoria", Auditoria_SQLite_Puro, Auditoria_Pelo_Programa, 300},
                 {"Proximo_1000", Próximo_SQLite_Puro, Próximo_Pelo_Programa, 100},
                 {"Seek_10000", Seek_SQLite_Puro, Seek_Pelo_Programa, 5}};
    for (const int linhas : Tamanhos)
        for (const auto& par : pares) {
            const std::string base = "BM_" + std::string(par.Nome) + "_" + std::to_string(linhas);
            benchmark::RegisterBenchmark((base + "_SQLite_Puro").c_str(), par.Puro, linhas)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(par.Iterações);
            benchmark::RegisterBenchmark((base + "_Pelo_Programa").c_str(), par.Programa, linhas)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(par.Iterações);
        }
}
}  // namespace

int main(int argc, char** argv) {
    Registra();
    const int r = Roda_Comparação(argc, argv);
    Instalação_Atual.reset();
    return r;
}
