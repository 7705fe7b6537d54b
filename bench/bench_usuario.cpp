// 1,000 users with 30 windows' rights each, 30,000 rows of tblPermissão, the rows of a user spread over
// the table as users open windows in turn: showing one user in the user register (the record and the
// walk that fills its rights grid) against raw SQLite reading that user's rights rows. The program runs on
// the real platform (events, cursors with their icons); only boxes are kept off the screen.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QCheckBox>
#include <QTableWidgetItem>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QString>
#include <cstdio>
#include <string>

#include "Banco_Puro.h"
#include "Plataforma_Medida.h"
#include "Relator_Razão.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Plataforma_Qt.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/frmUsuário.h"

namespace {
constexpr int Usuários = 1000;
constexpr int Janelas = 30;
constexpr int Usuário_Mostrado = 500;  // "Usuário 0500"

std::string Nome_Usuário(int i) {
    char nome[32];
    std::snprintf(nome, sizeof nome, "Usuário %04d", i);
    return nome;
}

void Prepara_Usuários_e_Direitos(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* usuário = Prepara_Puro(banco,
                                         "INSERT INTO tblUsuário (Usuário, Senha, Muda_Fundo_de_Tela, "
                                         "Quantidade_Execuções) VALUES (?, 1, 0, 0)");
    for (int i = 1; i <= Usuários; ++i) {
        const std::string nome = Nome_Usuário(i);
        sqlite3_bind_text(usuário, 1, nome.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_step(usuário);
        sqlite3_reset(usuário);
    }
    sqlite3_finalize(usuário);
    sqlite3_stmt* direito =
        Prepara_Puro(banco,
                     "INSERT INTO tblPermissão (Rotina, Usuário, Permissão_De_Inclusão, "
                     "Permissão_De_Alteração, Permissão_De_Exclusão, Permissão_De_Consulta) "
                     "VALUES (?, ?, ?, 1, ?, 1)");
    for (int j = 0; j < Janelas; ++j)
        for (int i = 1; i <= Usuários; ++i) {
            const std::string rotina = j == 0 ? "frmUsuário" : "frmJanela_" + std::to_string(j);
            const std::string nome = Nome_Usuário(i);
            sqlite3_bind_text(direito, 1, rotina.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(direito, 2, nome.c_str(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_int(direito, 3, (i + j) % 2);
            sqlite3_bind_int(direito, 4, (i + j) % 3 == 0);
            sqlite3_step(direito);
            sqlite3_reset(direito);
        }
    sqlite3_finalize(direito);
    // The Supervisor's own row of the register, so that opening it writes nothing.
    Executa_Puro(
        banco,
        "INSERT INTO tblPermissão (Rotina, Usuário, Permissão_De_Inclusão, Permissão_De_Alteração, "
        "Permissão_De_Exclusão, Permissão_De_Consulta) VALUES ('frmUsuário', 'Supervisor', 1, 1, 1, 1)");
    Executa_Puro(banco, "COMMIT");
}

struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    Instalação() {
        Instala_Programa();
        const QString ícones = QString(QUIZORA_FONTES) + "/resources/Ícones";
        QDir().mkpath(Pasta.Caminho() + "/Ícones");
        for (const QString& arquivo : QDir(ícones).entryList(QDir::Files))
            QFile::copy(ícones + "/" + arquivo, Pasta.Caminho() + "/Ícones/" + arquivo);
        Reinicia_Estado_Global();
        Prepara_Banco_Principal(Prepara_Usuários_e_Direitos);
        Plataforma.Caixas.clear();
    }
};

Instalação& Instalação_Da_Execução() {
    static Instalação instalação;
    return instalação;
}

void BM_Mostra_Usuário_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Usuário_Atual = "Supervisor";
    Plataforma_Medida plataforma;
    frmUsuário janela;
    const QString nome = QString::fromStdString(Nome_Usuário(Usuário_Mostrado));
    for (auto _ : estado) {
        estado.PauseTiming();
        Tabela.MoveFirst();
        estado.ResumeTiming();
        // The record's code is its position after the two seeded users.
        Tabela.Seek(Usuário_Mostrado + 2, Tipo_Busca::Primeiro_Igual);
        janela.Exibir_Campos();
        if (janela.txtUsuário->text() != nome || janela.flxPermissão_de_Acesso->Rows() != Janelas + 1) {
            estado.SkipWithError("a janela não mostrou o usuário com seus direitos");
            break;
        }
    }
    janela.cmdSair_Click();
    if (!plataforma.Caixas.isEmpty()) estado.SkipWithError(plataforma.Caixas.first().toUtf8().constData());
    Reinicia_Estado_Global();
}

// What the window shows, by hand, into widgets of the same kinds as the register's: the user's row and
// the user's rights rows in code order read with raw SQLite, the name and the box, the pictures' folder
// listed, the rights grid filled row by row and its columns fitted, the caption.
void BM_Mostra_Usuário_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* usuário = Prepara_Puro(banco, "SELECT * FROM tblUsuário WHERE Código_Usuário = ?");
    sqlite3_stmt* direitos = Prepara_Puro(
        banco, "SELECT * FROM tblPermissão WHERE trim(Usuário) = ? ORDER BY Código_Permissão, rowid");
    QWidget tela;
    auto* txtUsuário = new QLineEdit(&tela);
    auto* chkMuda_Fundo = new QCheckBox(&tela);
    auto* pastas = new Lista_Pastas(&tela);
    auto* grade = new Grade_Flex(&tela);
    grade->Set_Cols(6);
    grade->Set_Rows(1);
    grade->Set_FormatString(
        "<Permissões de Acesso                           |<Inclusão|<Alteração|<Exclusão|<Consulta|");
    grade->setColumnHidden(5, true);
    const QString pasta_ícones = Caminho_Programa() + "/Ícones";
    for (auto _ : estado) {
        sqlite3_bind_int(usuário, 1, Usuário_Mostrado + 2);
        std::string nome;
        bool muda_fundo = false;
        if (sqlite3_step(usuário) == SQLITE_ROW) {
            nome = reinterpret_cast<const char*>(sqlite3_column_text(usuário, 0));
            muda_fundo = sqlite3_column_int(usuário, 5) != 0;
        }
        sqlite3_reset(usuário);
        txtUsuário->setText(QString::fromStdString(nome).trimmed());
        chkMuda_Fundo->setChecked(muda_fundo);
        pastas->Set_Path(pasta_ícones);
        grade->setRowCount(1);
        sqlite3_bind_text(direitos, 1, nome.c_str(), -1, SQLITE_TRANSIENT);
        int linhas = 0;
        while (sqlite3_step(direitos) == SQLITE_ROW) {
            ++linhas;
            grade->setRowCount(linhas + 1);
            grade->setItem(linhas, 0,
                           new QTableWidgetItem(QString::fromUtf8(reinterpret_cast<const char*>(
                                                                      sqlite3_column_text(direitos, 0)))
                                                    .trimmed()));
            for (int c = 0; c < 4; ++c)
                grade->setItem(linhas, c + 1,
                               new QTableWidgetItem(sqlite3_column_int(direitos, c + 3) ? "Sim" : "Não"));
            grade->setItem(linhas, 5, new QTableWidgetItem(QString::number(sqlite3_column_int(direitos, 1))));
        }
        sqlite3_reset(direitos);
        grade->resizeColumnsToContents();
        tela.setWindowTitle("Consulta do Usuário " + QString::number(Usuário_Mostrado + 2));
        if (nome != Nome_Usuário(Usuário_Mostrado) || linhas != Janelas) {
            estado.SkipWithError("a leitura não deu o usuário com seus direitos");
            break;
        }
    }
    sqlite3_finalize(usuário);
    sqlite3_finalize(direitos);
    sqlite3_close(banco);
}
}  // namespace

BENCHMARK(BM_Mostra_Usuário_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(BM_Mostra_Usuário_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(50);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
