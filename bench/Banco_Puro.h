#pragma once
// The raw SQLite side of the comparisons: a connection set up as the program sets up its own sessions
// (open flags, busy wait, journal, syncs, the JET collation and the like function), so that the two sides
// read and write the same file under the same rules.
#include <sqlite3.h>

#include <QString>
#include <cstdio>

#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

inline sqlite3* Abre_Banco_Puro(const QString& caminho) {
    sqlite3* banco = nullptr;
    if (sqlite3_open_v2(caminho.toUtf8().constData(), &banco, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                        nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "Não abriu %s: %s\n", caminho.toUtf8().constData(), sqlite3_errmsg(banco));
        sqlite3_close(banco);
        return nullptr;
    }
    sqlite3_busy_timeout(banco, 8000);
    sqlite3_extended_result_codes(banco, 1);
    Registra_Comparação(banco);
    sqlite3_exec(banco, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    sqlite3_exec(banco, "PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
    return banco;
}

// A statement the benchmark cannot do without: a typing error is told at once, not read as a fast run.
inline sqlite3_stmt* Prepara_Puro(sqlite3* banco, const char* sql) {
    sqlite3_stmt* comando = nullptr;
    if (sqlite3_prepare_v2(banco, sql, -1, &comando, nullptr) != SQLITE_OK)
        std::fprintf(stderr, "Não preparou \"%s\": %s\n", sql, sqlite3_errmsg(banco));
    return comando;
}

// Runs a statement with no result, telling any failure.
inline bool Executa_Puro(sqlite3* banco, const char* sql) {
    char* erro = nullptr;
    if (sqlite3_exec(banco, sql, nullptr, nullptr, &erro) == SQLITE_OK) return true;
    std::fprintf(stderr, "Falhou \"%s\": %s\n", sql, erro ? erro : "?");
    sqlite3_free(erro);
    return false;
}

// Fills the installed main database with raw SQLite, before anything of the program reads it.
inline void Prepara_Banco_Principal(void (*prepara)(sqlite3*)) {
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    prepara(banco);
    sqlite3_close(banco);
}

// The program's connections as the windows find them after the login, the audit table open.
inline void Abre_Conexões_Programa() {
    Reinicia_Estado_Global();
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Conexão_Manutenção.Open(Conexão_Auditoria());
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
}

// An installed program whose main database the benchmark filled once, before anything of it was read.
struct Instalação_Preparada {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    explicit Instalação_Preparada(void (*prepara)(sqlite3*)) {
        Instala_Programa();
        Reinicia_Estado_Global();
        Prepara_Banco_Principal(prepara);
        Plataforma.Caixas.clear();
    }
};
