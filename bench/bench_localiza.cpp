// The question register over a bank of 100,000 questions: the locate dialog's search for a word anywhere
// in the question and a walk of 1,000 records with "Próximo", each against the raw SQLite work it needs.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QLineEdit>
#include <QVector>

#include "common/Globais.h"
#include "questions/frmPergunta.h"
#include "search/frmLocaliza_Informação.h"
#include "statistics/Estatísticas.h"
#include "store/Comparação.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "Medidas_Programa.h"
#include "Relator_Razão.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Perguntas = 100000;
constexpr int Intervalo_Palavra = 50;  // one question in 50 holds the word sought
constexpr int Achadas = Perguntas / Intervalo_Palavra;
constexpr int Linhas_Página = 14;
constexpr int Passos = 1000;
const char* const Palavra = "girassol";

// Texts that vary from row to row, so that the search compares real text and not one repeated string.
QString Texto_Pergunta(int i) {
    static const char* const assuntos[] = {"rio",    "monte",   "rei",      "profeta", "livro",  "animal",
                                           "cidade", "oceano",  "apóstolo", "mineral", "idioma", "deserto",
                                           "ilha",   "cântico", "planeta",  "povo",    "lago"};
    static const char* const ligações[] = {"fica ao norte de", "foi citado em",   "nasceu perto de",
                                           "é vizinho de",     "aparece junto a", "foi achado em",
                                           "leva o nome de"};
    static const char* const lugares[] = {"Belém",  "Nínive", "Lisboa", "Manaus", "Jericó",
                                          "Recife", "Atenas", "Roma",   "Quito",  "Éfeso",
                                          "Cuiabá", "Sião",   "Tiro",   "Sidom",  "Natal"};
    const QString lugar = QString::fromUtf8(lugares[(i / 119) % 15]);
    const QString assunto = QString::fromUtf8(assuntos[i % 17]);
    const QString ligação = QString::fromUtf8(ligações[(i / 17) % 7]);
    if (i % Intervalo_Palavra == 0)
        return QString("Em que campo de %1 o %2 %3 %4 (nº %5)?").arg(Palavra, assunto, ligação, lugar).arg(i);
    return QString("Qual %1 %2 %3, segundo a questão nº %4?").arg(assunto, ligação, lugar).arg(i);
}

void Prepara_Banco(sqlite3* banco) {
    sqlite3_exec(banco, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* p = nullptr;
    sqlite3_prepare_v2(
        banco,
        "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) "
        "VALUES (?, ?, ?, ?, ?, ?, 0, 0, '')",
        -1, &p, nullptr);
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
    sqlite3_exec(banco, "COMMIT", nullptr, nullptr, nullptr);
}

sqlite3* Abre_Banco_Puro() {
    sqlite3* banco = nullptr;
    sqlite3_open(Caminho_Banco_Principal().toUtf8().constData(), &banco);
    Registra_Comparação(banco);
    return banco;
}

struct Instalação {
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    Instalação() {
        Instala_Programa();
        Reinicia_Estado_Global();
        sqlite3* banco = Abre_Banco_Puro();
        Prepara_Banco(banco);
        sqlite3_close(banco);
        for (Ligação* c :
             {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
            c->Open(Conexão_Principal());
        Conexão_Manutenção.Open(Conexão_Auditoria());
        Tabela_Manutenção.Reinicia();
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        // The installation's own boxes; from here on any box is a failure of the work measured.
        Plataforma.Caixas.clear();
    }
};

// Every column of the current row as text, as the windows read them.
void Lê_Colunas(sqlite3_stmt* comando) {
    for (int c = 0; c < sqlite3_column_count(comando); ++c) {
        const unsigned char* texto = sqlite3_column_text(comando, c);
        benchmark::DoNotOptimize(texto);
    }
}

// What the Localiza button of the register does, with "Em qualquer posição..." and the word typed in.
void BM_Localiza_Pelo_Programa(benchmark::State& estado) {
    Instalação instalação;
    Localiza_No_Cadastro(estado, instalação.Plataforma, Palavra, Linhas_Página, Achadas);
    Reinicia_Estado_Global();
}

// By hand: every hit's rowid, as the dialog's keyset holds them, then the first page's rows by rowid.
void BM_Localiza_SQLite_Puro(benchmark::State& estado) {
    Instalação instalação;
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro();
    sqlite3_stmt *busca, *lê;
    sqlite3_prepare_v2(banco, "SELECT rowid, * FROM tblPergunta WHERE Pergunta LIKE '%girassol%'", -1, &busca,
                       nullptr);
    sqlite3_prepare_v2(banco, "SELECT * FROM tblPergunta WHERE rowid = ?", -1, &lê, nullptr);
    QVector<sqlite3_int64> chaves;
    for (auto _ : estado) {
        chaves.clear();
        while (sqlite3_step(busca) == SQLITE_ROW) chaves.append(sqlite3_column_int64(busca, 0));
        sqlite3_reset(busca);
        for (int i = 0; i < Linhas_Página && i < chaves.size(); ++i) {
            sqlite3_bind_int64(lê, 1, chaves[i]);
            if (sqlite3_step(lê) == SQLITE_ROW) Lê_Colunas(lê);
            sqlite3_reset(lê);
        }
        if (chaves.size() != Achadas) {
            estado.SkipWithError("a busca não achou o esperado");
            break;
        }
    }
    sqlite3_finalize(busca);
    sqlite3_finalize(lê);
    sqlite3_close(banco);
}

// The register's "Próximo", 1,000 times from the first question, with no locate filter on.
void BM_Próximo_Pelo_Programa(benchmark::State& estado) {
    Instalação instalação;
    if (!Tabela_Dynaset.Source.isEmpty()) estado.SkipWithError("o cadastro abriu com um filtro");
    Próximo_No_Cadastro(estado, instalação.Plataforma, Passos);
    Reinicia_Estado_Global();
}

// By hand: the next row in code order, carrying the last rowid, every column read as text, and what the
// register shows of it put into the same widgets (a register window used only for its widgets), the
// question's line of statistics included: its answers summed in the statistics' database.
void BM_Próximo_SQLite_Puro(benchmark::State& estado) {
    Instalação instalação;
    frmPergunta tela;
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro();
    sqlite3_stmt* próxima;
    sqlite3_prepare_v2(banco, "SELECT rowid, * FROM tblPergunta WHERE rowid > ? ORDER BY rowid LIMIT 1", -1,
                       &próxima, nullptr);
    // Without a statistics' database the line says so without asking anything, as the window's does.
    sqlite3* estatísticas = nullptr;
    sqlite3_stmt* resumo = nullptr;
    if (sqlite3_open_v2(Estatísticas::Caminho_Banco_Estatísticas().toUtf8().constData(), &estatísticas,
                        SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
        Registra_Comparação(estatísticas);  // its texts compare as the program's do
        if (sqlite3_prepare_v2(estatísticas, Resumo_Pergunta_SQL(false), -1, &resumo, nullptr) != SQLITE_OK)
            estado.SkipWithError("o resumo das estatísticas não pôde ser lido");
    }
    for (auto _ : estado) {
        sqlite3_int64 última = 1;
        for (int i = 0; i < Passos; ++i) {
            sqlite3_bind_int64(próxima, 1, última);
            if (sqlite3_step(próxima) == SQLITE_ROW) {
                última = sqlite3_column_int64(próxima, 0);
                Lê_Colunas(próxima);
                const char* textos[5];
                for (int c = 0; c < 5; ++c)
                    textos[c] =
                        reinterpret_cast<const char*>(sqlite3_column_text(próxima, c == 0 ? 1 : c + 2));
                Mostra_Pergunta_À_Mão(tela, sqlite3_column_int(próxima, 2), textos,
                                      reinterpret_cast<const char*>(sqlite3_column_text(próxima, 7)));
                bool somou = false;
                if (resumo != nullptr) {
                    sqlite3_bind_int(resumo, 1, sqlite3_column_int(próxima, 2));
                    somou = sqlite3_step(resumo) == SQLITE_ROW;
                }
                Mostra_Estatística_À_Mão(tela, somou ? sqlite3_column_int64(resumo, 0) : 0,
                                         somou ? sqlite3_column_int64(resumo, 1) : 0);
                if (resumo != nullptr) sqlite3_reset(resumo);
            }
            sqlite3_reset(próxima);
        }
        if (última != Passos + 1) {
            estado.SkipWithError("a caminhada não chegou à linha esperada");
            break;
        }
    }
    sqlite3_finalize(próxima);
    sqlite3_close(banco);
    sqlite3_finalize(resumo);
    sqlite3_close(estatísticas);
}

}  // namespace

BENCHMARK(BM_Localiza_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_Localiza_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_Próximo_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Próximo_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(10);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
