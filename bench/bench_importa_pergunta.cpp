// 10,000 questions imported from a CSV file through frmImporta_Pergunta (the file read, the preview grid
// filled, the checks against the bank, every row written by Grava with its audit row, in one transaction),
// against raw SQLite doing the same visible work: the file read, the same grid filled, the same rows and
// audit rows written in one transaction each.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QDateTime>
#include <QSet>
#include <QTableWidgetItem>
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

// By hand, the same visible work: the file read and split into its fields, the bank's questions read for
// the repetitions, the preview grid filled (the line, the five texts, the kind, the verdict), the audit
// rows written in one transaction of the audit file and the questions in one of the bank's, and the
// verdicts turned into "Incluída".
void BM_Importa_CSV_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    const QString caminho = Arquivo_CSV();
    Grade_Flex grade;
    grade.Set_Cols(8);
    for (auto _ : estado) {
        estado.PauseTiming();
        Esvazia_Banco();
        estado.ResumeTiming();
        QFile f(caminho);
        f.open(QIODevice::ReadOnly);
        const QVector<Pergunta_Lida> linhas = Lê_CSV(f.readAll()).Perguntas;
        sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
        sqlite3* manutenção = Abre_Banco_Puro(Caminho_Banco_Manutenção());
        QSet<QString> no_banco;
        sqlite3_stmt* existentes = Prepara_Puro(banco, "SELECT Pergunta FROM tblPergunta");
        while (sqlite3_step(existentes) == SQLITE_ROW)
            no_banco.insert(
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(existentes, 0))));
        sqlite3_finalize(existentes);
        grade.setRowCount(1);
        grade.setRowCount(static_cast<int>(linhas.size()) + 1);
        for (int i = 0; i < linhas.size(); ++i) {
            const Pergunta_Lida& p = linhas[i];
            const QString textos[8] = {QString::number(p.Linha),
                                       p.Pergunta,
                                       p.Resposta_Correta,
                                       p.Resposta_Incorreta[0],
                                       p.Resposta_Incorreta[1],
                                       p.Resposta_Incorreta[2],
                                       p.Tipo == "G" ? "Geral" : "Bíblica",
                                       no_banco.contains(p.Pergunta) ? "Recusada" : "Pronta"};
            for (int c = 0; c < 8; ++c) grade.setItem(i + 1, c, new QTableWidgetItem(textos[c]));
        }
        const QDateTime agora = QDateTime::currentDateTime();
        const QByteArray data = QDateTime(agora.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
        const QByteArray hora = agora.toString("HH:mm:ss").toUtf8();
        Executa_Puro(manutenção, "BEGIN IMMEDIATE");
        Executa_Puro(banco, "BEGIN IMMEDIATE");
        sqlite3_stmt* p =
            Prepara_Puro(banco,
                         "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
                         "Resposta_Incorreta_2, "
                         "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
                         "VALUES (?1, ?2, ?3, ?4, ?5, ?6, 0, 0, ?1)");
        sqlite3_stmt* auditoria =
            Prepara_Puro(manutenção,
                         "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, Data_Manutenção, "
                         "Hora_Manutenção) VALUES (?, 'Supervisor', ?, ?)");
        for (const Pergunta_Lida& linha : linhas) {
            const QByteArray campos[6] = {linha.Pergunta.toUtf8(),
                                          linha.Resposta_Correta.toUtf8(),
                                          linha.Resposta_Incorreta[0].toUtf8(),
                                          linha.Resposta_Incorreta[1].toUtf8(),
                                          linha.Resposta_Incorreta[2].toUtf8(),
                                          linha.Tipo.toUtf8()};
            for (int k = 0; k < 6; ++k)
                sqlite3_bind_text(p, k + 1, campos[k].constData(), static_cast<int>(campos[k].size()),
                                  SQLITE_STATIC);
            sqlite3_step(p);
            sqlite3_reset(p);
            const QByteArray texto =
                ("Incluindo Pergunta onde Pergunta = " + linha.Pergunta).left(100).toUtf8();
            sqlite3_bind_text(auditoria, 1, texto.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(auditoria, 2, data.constData(), -1, SQLITE_STATIC);
            sqlite3_bind_text(auditoria, 3, hora.constData(), -1, SQLITE_STATIC);
            sqlite3_step(auditoria);
            sqlite3_reset(auditoria);
        }
        sqlite3_finalize(p);
        sqlite3_finalize(auditoria);
        Executa_Puro(manutenção, "COMMIT");
        Executa_Puro(banco, "COMMIT");
        for (int i = 0; i < linhas.size(); ++i) grade.item(i + 1, 7)->setText("Incluída");
        sqlite3_close(manutenção);
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
