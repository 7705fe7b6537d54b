// A bank of 100,000 questions: 10,000 first-equal Seeks on idxPergunta, and a slot opened on a Like
// '%word%' select and walked to the end, each against the raw SQLite work with the same collation and like.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QString>
#include <QVector>

#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Banco_Puro.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Perguntas = 100000;
constexpr int Buscas = 10000;
constexpr int Passo_Busca = 9973;      // prime to the bank's size: 10,000 different questions, scattered
constexpr int Intervalo_Palavra = 50;  // one question in 50 holds the word sought
constexpr int Achadas = Perguntas / Intervalo_Palavra;
const char* const Palavra = "girassol";

// Texts with accents and varying words, so that the collation and the like work on real text.
QString Texto_Pergunta(int i) {
    static const char* const assuntos[] = {"o rio",      "o monte", "o rei",     "a cidade",  "o oceano",
                                           "o apóstolo", "a ilha",  "o cântico", "o planeta", "o lago",
                                           "o idioma",   "o povo",  "a árvore"};
    static const char* const lugares[] = {"Belém",  "Nínive", "Lisboa", "Manaus", "Jericó", "Recife",
                                          "Atenas", "Éfeso",  "Cuiabá", "Sião",   "Natal"};
    const QString assunto = QString::fromUtf8(assuntos[i % 13]);
    const QString lugar = QString::fromUtf8(lugares[(i / 13) % 11]);
    if (i % Intervalo_Palavra == 0)
        return QString("Onde %1 encontra o %2 perto de %3 (nº %4)?").arg(assunto, Palavra, lugar).arg(i);
    return QString("Qual é %1 que fica perto de %2, questão nº %3?").arg(assunto, lugar).arg(i);
}

// The question of the k-th Seek; its code is its number, as the bank is written in order.
int Número_Da_Busca(int k) {
    return 1 + static_cast<int>((static_cast<long long>(k) * Passo_Busca) % Perguntas);
}

void Prepara_Banco(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* p = Prepara_Puro(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, ?, ?, ?, ?, ?, 0, 0, '')");
    for (int i = 1; i <= Perguntas; ++i) {
        const QByteArray texto = Texto_Pergunta(i).toUtf8();
        sqlite3_bind_text(p, 1, texto.constData(), -1, SQLITE_TRANSIENT);
        static const char* const rótulos[] = {"Certa", "Errada A", "Errada B", "Errada C"};
        for (int k = 0; k < 4; ++k) {
            const QByteArray resposta = QString("%1 %2").arg(rótulos[k]).arg((i * (k + 3)) % 9973).toUtf8();
            sqlite3_bind_text(p, 2 + k, resposta.constData(), -1, SQLITE_TRANSIENT);
        }
        sqlite3_bind_text(p, 6, i % 2 ? "G" : "B", -1, SQLITE_STATIC);
        sqlite3_step(p);
        sqlite3_reset(p);
    }
    sqlite3_finalize(p);
    Executa_Puro(banco, "COMMIT");
}

// The bank is built once per run: every benchmark here only reads it.
Instalação_Preparada& Instalação_Da_Execução() {
    static Instalação_Preparada instalação(Prepara_Banco);
    return instalação;
}

// Every column of the current row as text, as the slot reads them into its row.
void Lê_Colunas(sqlite3_stmt* comando) {
    for (int c = 0; c < sqlite3_column_count(comando); ++c) {
        const unsigned char* texto = sqlite3_column_text(comando, c);
        benchmark::DoNotOptimize(texto);
    }
}

void BM_Seek_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    Abre_Conexões_Programa();
    QVector<QString> chaves;
    for (int k = 0; k < Buscas; ++k) chaves.append(Texto_Pergunta(Número_Da_Busca(k)));
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxPergunta");
    for (auto _ : estado) {
        bool achou_todas = true;
        for (int k = 0; k < Buscas; ++k) {
            Tabela.Seek(QVariant(chaves[k]), Tipo_Busca::Primeiro_Igual);
            achou_todas = achou_todas && !Tabela.Eof() &&
                          Tabela.Fields("Código_Pergunta").Value().toInt() == Número_Da_Busca(k);
        }
        if (!achou_todas) {
            estado.SkipWithError("alguma busca não achou a sua pergunta");
            break;
        }
    }
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
    Reinicia_Estado_Global();
}

// By hand: the first row equal to the key in the index's order (the column's JET collation), read whole.
void BM_Seek_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    QVector<QByteArray> chaves;
    for (int k = 0; k < Buscas; ++k) chaves.append(Texto_Pergunta(Número_Da_Busca(k)).toUtf8());
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* busca =
        Prepara_Puro(banco, "SELECT * FROM tblPergunta WHERE Pergunta = ? ORDER BY Pergunta, rowid LIMIT 1");
    const int coluna_código = 1;  // Código_Pergunta, second field of the table
    for (auto _ : estado) {
        bool achou_todas = true;
        for (int k = 0; k < Buscas; ++k) {
            sqlite3_bind_text(busca, 1, chaves[k].constData(), static_cast<int>(chaves[k].size()),
                              SQLITE_STATIC);
            const bool achou = sqlite3_step(busca) == SQLITE_ROW;
            if (achou) Lê_Colunas(busca);
            achou_todas =
                achou_todas && achou && sqlite3_column_int(busca, coluna_código) == Número_Da_Busca(k);
            sqlite3_reset(busca);
        }
        if (!achou_todas) {
            estado.SkipWithError("alguma busca não achou a sua pergunta");
            break;
        }
    }
    sqlite3_finalize(busca);
    sqlite3_close(banco);
}

const QString Fonte_Like = QString("Select * From tblPergunta Where Pergunta Like '%%1%'").arg(Palavra);

void BM_Like_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    Abre_Conexões_Programa();
    for (auto _ : estado) {
        Abre_Tabela(Fonte_Like);
        int lidas = 0;
        for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext()) {
            const QString pergunta = Tabela.Fields("Pergunta").Value().toString();
            benchmark::DoNotOptimize(pergunta.constData());
            ++lidas;
        }
        if (lidas != Achadas) {
            estado.SkipWithError("a seleção não trouxe as perguntas da palavra");
            break;
        }
    }
    if (!instalação.Plataforma.Caixas.isEmpty())
        estado.SkipWithError(instalação.Plataforma.Caixas.first().Texto.toUtf8().constData());
    Reinicia_Estado_Global();
}

// By hand: the same statement through the same like function, every row stepped and its question read.
void BM_Like_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    const QByteArray sql = Fonte_Like.toUtf8();
    sqlite3_stmt* seleção = Prepara_Puro(banco, sql.constData());
    const int coluna_pergunta = 0;
    for (auto _ : estado) {
        int lidas = 0;
        while (sqlite3_step(seleção) == SQLITE_ROW) {
            const unsigned char* pergunta = sqlite3_column_text(seleção, coluna_pergunta);
            benchmark::DoNotOptimize(pergunta);
            ++lidas;
        }
        sqlite3_reset(seleção);
        if (lidas != Achadas) {
            estado.SkipWithError("a seleção não trouxe as perguntas da palavra");
            break;
        }
    }
    sqlite3_finalize(seleção);
    sqlite3_close(banco);
}

}  // namespace

BENCHMARK(BM_Seek_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Seek_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Like_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_Like_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(20);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
