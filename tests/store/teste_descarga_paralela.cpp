// The WAL's copies into the file taken off the writer: its commits never copy while the thread holds the
// task, the thread brings every committed row into the file itself, and given back, the connection copies
// by itself again.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QFile>
#include <QTemporaryDir>

#include "store/Descarga_Paralela.h"

namespace {
class Descarga_Paralela_Teste : public ::testing::Test {
  protected:
    void SetUp() override {
        Caminho = Pasta.path() + "/Jogadas.Mdb";
        ASSERT_EQ(sqlite3_open(Caminho.toUtf8().constData(), &Banco), SQLITE_OK);
        Executa("PRAGMA journal_mode=WAL");
        Executa("PRAGMA synchronous=NORMAL");
        Executa("CREATE TABLE t (x INTEGER, texto TEXT)");
        Executa("PRAGMA wal_checkpoint(TRUNCATE)");
    }
    void TearDown() override { sqlite3_close_v2(Banco); }

    void Executa(const char* sql) {
        ASSERT_EQ(sqlite3_exec(Banco, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    }

    // Each row in its own commit, as the recorder writes a turn.
    void Grava(int linhas) {
        for (int i = 0; i < linhas; ++i) Executa("INSERT INTO t VALUES (1, printf('%.500c', 'x'))");
    }

    // The rows that the database file holds by itself, read from a copy of it without its WAL.
    int Linhas_No_Arquivo() {
        const QString cópia = Pasta.path() + "/cópia.Mdb";
        QFile::remove(cópia);
        if (!QFile::copy(Caminho, cópia)) return -1;
        sqlite3* outro = nullptr;
        int n = -1;
        if (sqlite3_open_v2(cópia.toUtf8().constData(), &outro, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
            sqlite3_stmt* c = nullptr;
            if (sqlite3_prepare_v2(outro, "SELECT count(*) FROM t", -1, &c, nullptr) == SQLITE_OK &&
                sqlite3_step(c) == SQLITE_ROW)
                n = sqlite3_column_int(c, 0);
            sqlite3_finalize(c);
        }
        sqlite3_close_v2(outro);
        return n;
    }

    QTemporaryDir Pasta;
    QString Caminho;
    sqlite3* Banco = nullptr;
};
}  // namespace

TEST_F(Descarga_Paralela_Teste, TheWriterNeverCopiesAndTheThreadBringsEveryCommittedRowIntoTheFile) {
    {
        // Past what the engine would copy by itself (1,000 pages), with a limit never reached.
        Descarga_Paralela descarga(Banco, Caminho, 1000000);
        Grava(1500);
        EXPECT_EQ(Linhas_No_Arquivo(), 0) << "the writer's commit made a copy of its own";
        EXPECT_EQ(descarga.Descargas(), 0);

        descarga.Descarrega_E_Espera();
        EXPECT_EQ(descarga.Descargas(), 1);
        EXPECT_EQ(Linhas_No_Arquivo(), 1500);

        // A small limit: the writer's commits ask, the thread copies; after the last ask, all is in.
        Grava(300);
        descarga.Descarrega_E_Espera();
        EXPECT_EQ(Linhas_No_Arquivo(), 1800);
    }
    // Given back: the connection copies by itself again once its WAL is past the engine's limit.
    Executa("PRAGMA wal_checkpoint(TRUNCATE)");
    Grava(1500);
    EXPECT_GT(Linhas_No_Arquivo(), 1800);
}

TEST_F(Descarga_Paralela_Teste, CommitsPastTheLimitAskTheThreadWithoutWaitingForIt) {
    Descarga_Paralela descarga(Banco, Caminho, 20);
    Grava(400);
    // Every ask that found one pending or under way was folded into it; the last one is waited for here.
    descarga.Descarrega_E_Espera();
    EXPECT_GE(descarga.Descargas(), 1);
    EXPECT_EQ(Linhas_No_Arquivo(), 400);
    sqlite3_stmt* c = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(Banco, "PRAGMA integrity_check", -1, &c, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(c), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(c, 0)), "ok");
    sqlite3_finalize(c);
}
