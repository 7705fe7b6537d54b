// Loads a seed archive of 10,000 questions and a citation table of 2,000 rows through the real upgrade
// path, and the same work (unpacking, reading, look-ups, writes and their audit rows) through raw SQLite.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <zip.h>

#include <QApplication>
#include <QDir>
#include <QDateTime>
#include <QFile>
#include <QSaveFile>
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
#include "Banco_Puro.h"
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

// The program's statements of the seed tables, read from the installed files before the timed part.
struct Esquema_Semente {
    QStringList Recria;  // drops and creates tblAdaptação and tblRevelação with their indexes
};

Esquema_Semente Lê_Esquema(sqlite3* banco) {
    Esquema_Semente esquema;
    for (const char* tabela : {"tblAdaptação", "tblRevelação"}) {
        esquema.Recria << QString("DROP TABLE IF EXISTS \"%1\"").arg(tabela);
        sqlite3_stmt* comando = Prepara_Puro(
            banco, "SELECT sql FROM sqlite_master WHERE tbl_name = ? AND sql IS NOT NULL ORDER BY type DESC");
        sqlite3_bind_text(comando, 1, tabela, -1, SQLITE_STATIC);
        while (sqlite3_step(comando) == SQLITE_ROW)
            esquema.Recria << QString::fromUtf8(
                reinterpret_cast<const char*>(sqlite3_column_text(comando, 0)));
        sqlite3_finalize(comando);
    }
    return esquema;
}

// The audit row that each write of the program leaves, in its own file, committed on its own.
void Audita(sqlite3_stmt* auditoria, const QString& texto) {
    const QDateTime agora = QDateTime::currentDateTime();
    const QByteArray manutenção = texto.left(100).trimmed().toUtf8();
    const QByteArray data = QDateTime(agora.date(), QTime(0, 0)).toString("yyyy-MM-dd HH:mm:ss").toUtf8();
    const QByteArray hora = agora.toString("HH:mm:ss").toUtf8();
    sqlite3_bind_text(auditoria, 1, manutenção.constData(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(auditoria, 2, data.constData(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(auditoria, 3, hora.constData(), -1, SQLITE_TRANSIENT);
    sqlite3_step(auditoria);
    sqlite3_reset(auditoria);
}

// The same work straight into SQLite, on the same installed files: the loose seed's citations read and
// written in one transaction, the archive unpacked, each of its questions looked up by its original text
// and written in a transaction of its own, every write followed by its audit row, the seed files removed.
void BM_Carga_Sementes_SQLite_Puro(benchmark::State& estado) {
    for (auto _ : estado) {
        estado.PauseTiming();
        Pasta_Teste pasta;
        Plataforma_Roteirizada plataforma;
        Inicia_Programa();
        Reinicia_Estado_Global();
        Cria_Sementes(pasta.Dados());
        Esquema_Semente esquema;
        {
            sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
            esquema = Lê_Esquema(banco);
            sqlite3_close(banco);
        }
        estado.ResumeTiming();
        sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
        sqlite3* manutenção = Abre_Banco_Puro(Caminho_Banco_Manutenção());
        sqlite3_stmt* auditoria =
            Prepara_Puro(manutenção,
                         "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, Data_Manutenção, "
                         "Hora_Manutenção) VALUES (?, NULL, ?, ?)");

        // The citations of the loose seed.
        sqlite3* semente = Abre_Banco_Puro(Caminho_Banco_Temporário());
        sqlite3_exec(semente, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
        for (const QString& sql : esquema.Recria) Executa_Puro(banco, sql.toUtf8().constData());
        Executa_Puro(banco, "BEGIN");
        sqlite3_stmt* lê_citação = Prepara_Puro(
            semente, "SELECT Palavra_Chave, Código_Revelação_de_Deus, Quantidade_Linhas FROM tblRevelação");
        sqlite3_stmt* cita =
            Prepara_Puro(banco,
                         "INSERT INTO tblRevelação (Palavra_Chave, Código_Revelação_de_Deus, "
                         "Quantidade_Linhas) VALUES (?, ?, ?)");
        while (sqlite3_step(lê_citação) == SQLITE_ROW) {
            const QString chave =
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(lê_citação, 0)));
            const QByteArray chave_utf8 = chave.toUtf8();
            sqlite3_bind_text(cita, 1, chave_utf8.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_int(cita, 2, sqlite3_column_int(lê_citação, 1));
            sqlite3_bind_int(cita, 3, sqlite3_column_int(lê_citação, 2));
            sqlite3_step(cita);
            sqlite3_reset(cita);
            Audita(auditoria, "Atualizando Revelação onde Palavra_Chave = " + chave);
        }
        Executa_Puro(banco, "COMMIT");
        sqlite3_finalize(lê_citação);
        sqlite3_finalize(cita);
        sqlite3_close(semente);
        Exclui_Arquivo_Banco(Caminho_Banco_Temporário());

        // The questions of the archive.
        {
            int erro = 0;
            zip_t* arquivo =
                zip_open(QFile::encodeName(pasta.Dados() + "/Temp.Zip").constData(), ZIP_RDONLY, &erro);
            zip_file_t* entrada = zip_fopen_index(arquivo, 0, 0);
            QSaveFile saída(Caminho_Banco_Temporário());
            saída.open(QIODevice::WriteOnly);
            char bloco[65536];
            zip_int64_t lidos = 0;
            while ((lidos = zip_fread(entrada, bloco, sizeof bloco)) > 0) saída.write(bloco, lidos);
            zip_fclose(entrada);
            saída.commit();
            zip_close(arquivo);
            QFile::remove(pasta.Dados() + "/Temp.Zip");
        }
        semente = Abre_Banco_Puro(Caminho_Banco_Temporário());
        sqlite3_exec(semente, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
        sqlite3_stmt* lê = Prepara_Puro(semente,
                                        "SELECT Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
                                        "Resposta_Incorreta_2, Resposta_Incorreta_3, Tipo, Já_Comparada, "
                                        "Já_Verificada, Pergunta_Original FROM tblPergunta");
        sqlite3_stmt* busca =
            Prepara_Puro(banco, "SELECT rowid FROM tblPergunta WHERE Pergunta_Original = ? LIMIT 1");
        sqlite3_stmt* insere =
            Prepara_Puro(banco,
                         "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, "
                         "Resposta_Incorreta_2, Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, "
                         "Pergunta_Original) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
        int gravadas = 0;
        while (sqlite3_step(lê) == SQLITE_ROW) {
            // The texts pass through the program's strings, as they pass on its side.
            QString textos[9];
            for (int c : {0, 1, 2, 3, 4, 5, 8})
                textos[c] = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(lê, c)));
            const QByteArray original = textos[8].toUtf8();
            sqlite3_bind_text(busca, 1, original.constData(), -1, SQLITE_TRANSIENT);
            const bool existe = sqlite3_step(busca) == SQLITE_ROW;
            sqlite3_reset(busca);
            if (existe) continue;
            Executa_Puro(banco, "BEGIN");
            for (int c : {0, 1, 2, 3, 4, 5, 8}) {
                const QByteArray texto = textos[c].toUtf8();
                sqlite3_bind_text(insere, c + 1, texto.constData(), -1, SQLITE_TRANSIENT);
            }
            sqlite3_bind_int(insere, 7, sqlite3_column_int(lê, 6));
            sqlite3_bind_int(insere, 8, sqlite3_column_int(lê, 7));
            sqlite3_step(insere);
            sqlite3_reset(insere);
            Executa_Puro(banco, "COMMIT");
            Audita(auditoria, "Atualizando Pergunta onde Pergunta = " + textos[0]);
            ++gravadas;
        }
        for (sqlite3_stmt* comando : {lê, busca, insere, auditoria}) sqlite3_finalize(comando);
        sqlite3_close(semente);
        Exclui_Arquivo_Banco(Caminho_Banco_Temporário());
        sqlite3_close(manutenção);
        sqlite3_close(banco);
        estado.PauseTiming();
        if (gravadas != Perguntas) estado.SkipWithError("perguntas não carregadas");
        Reinicia_Estado_Global();
        estado.ResumeTiming();
    }
}
}  // namespace

int main(int argc, char** argv) {
    // The load commits its pieces one by one and waits on the disk for each commit.
    Registra_Em_Rodadas("BM_Carga_Sementes", BM_Carga_Sementes_SQLite_Puro, BM_Carga_Sementes_Pelo_Programa,
                        2, 1);
    return Roda_Comparação(argc, argv);
}
