// 10,000 questions imported from a CSV file through frmImporta_Pergunta (the file read, the preview grid
// filled, the checks against the bank, every row written by Grava with its audit row, in one transaction),
// against raw SQLite inserting the same rows in one transaction.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QVector>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "questions/Leitura_Perguntas.h"
#include "questions/frmImporta_Pergunta.h"
#include "store/Funções_Banco.h"
#include "Banco_Puro.h"
#include "Relator_Razão.h"

namespace {
constexpr int Perguntas = 10000;

void Banco_Vazio(sqlite3*) {}

Instalação_Preparada& Instalação_Da_Execução() {
    static Instalação_Preparada instalação(Banco_Vazio);
    return instalação;
}

// The file as a spreadsheet saves it: accents, a quoted field now and then, both kinds.
QString Arquivo_CSV() {
    const QString caminho = Instalação_Da_Execução().Pasta.Caminho() + "/dez_mil.csv";
    if (QFile::exists(caminho)) return caminho;
    QByteArray csv =
        "\xEF\xBB\xBFPergunta;Resposta Correta;Resposta Incorreta 1;Resposta Incorreta 2;"
        "Resposta Incorreta 3;Tipo\r\n";
    for (int i = 1; i <= Perguntas; ++i) {
        const QString pergunta = i % 10 == 0
                                     ? QString("\"Qual é o rio nº %1; o \"\"maior\"\"?\"").arg(i)
                                     : QString("Qual é a cidade número %1 da região de Belém?").arg(i);
        csv += QString("%1;são josé %2;água branca %2;três rios %2;vila do conde %2;%3\r\n")
                   .arg(pergunta)
                   .arg(i)
                   .arg(i % 2 ? "G" : "B")
                   .toUtf8();
    }
    QFile arquivo(caminho);
    arquivo.open(QIODevice::WriteOnly);
    arquivo.write(csv);
    return caminho;
}

void Esvazia_Banco() {
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    Executa_Puro(banco, "DELETE FROM tblPergunta");
    sqlite3_close(banco);
    Limpa_Cache_Lastrec();
}

int Perguntas_No_Banco() {
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* c = Prepara_Puro(banco, "SELECT COUNT(*) FROM tblPergunta");
    sqlite3_step(c);
    const int n = sqlite3_column_int(c, 0);
    sqlite3_finalize(c);
    sqlite3_close(banco);
    return n;
}

void BM_Importa_CSV_Pelo_Programa(benchmark::State& estado) {
    Instalação_Preparada& instalação = Instalação_Da_Execução();
    const QString arquivo = Arquivo_CSV();
    Abre_Conexões_Programa();
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    for (auto _ : estado) {
        estado.PauseTiming();
        Esvazia_Banco();
        instalação.Plataforma.Caixas.clear();
        estado.ResumeTiming();
        frmImporta_Pergunta janela;
        instalação.Plataforma.Arquivos_Escolhidos.push_back(arquivo);
        janela.cmdArquivo_Click();
        instalação.Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
        janela.cmdImporta_Click();
        estado.PauseTiming();
        if (Perguntas_No_Banco() != Perguntas) {
            estado.SkipWithError(instalação.Plataforma.Caixas.isEmpty()
                                     ? "a importação não gravou as 10.000 perguntas"
                                     : instalação.Plataforma.Caixas.last().Texto.toUtf8().constData());
            break;
        }
        estado.ResumeTiming();
    }
    Reinicia_Estado_Global();
}

// By hand: the rows already in memory, in their stored form, inserted in one transaction.
void BM_Importa_CSV_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    QFile f(Arquivo_CSV());
    f.open(QIODevice::ReadOnly);
    const QVector<Pergunta_Lida> linhas = Lê_CSV(f.readAll()).Perguntas;
    QVector<std::array<QByteArray, 6>> campos;
    for (const Pergunta_Lida& p : linhas)
        campos.append({p.Pergunta.toUtf8(), p.Resposta_Correta.toUtf8(), p.Resposta_Incorreta[0].toUtf8(),
                       p.Resposta_Incorreta[1].toUtf8(), p.Resposta_Incorreta[2].toUtf8(), p.Tipo.toUtf8()});
    for (auto _ : estado) {
        estado.PauseTiming();
        Esvazia_Banco();
        estado.ResumeTiming();
        sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
        Executa_Puro(banco, "BEGIN IMMEDIATE");
        sqlite3_stmt* p =
            Prepara_Puro(banco,
                         "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
                         "Resposta_Incorreta_2, "
                         "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
                         "VALUES (?1, ?2, ?3, ?4, ?5, ?6, 0, 0, ?1)");
        for (const auto& linha : campos) {
            for (int k = 0; k < 6; ++k)
                sqlite3_bind_text(p, k + 1, linha[k].constData(), static_cast<int>(linha[k].size()),
                                  SQLITE_STATIC);
            sqlite3_step(p);
            sqlite3_reset(p);
        }
        sqlite3_finalize(p);
        Executa_Puro(banco, "COMMIT");
        sqlite3_close(banco);
        estado.PauseTiming();
        if (Perguntas_No_Banco() != Perguntas) {
            estado.SkipWithError("o SQLite puro não gravou as 10.000 perguntas");
            break;
        }
        estado.ResumeTiming();
    }
}
}  // namespace

BENCHMARK(BM_Importa_CSV_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Importa_CSV_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(3);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
