// The listing of 10,000 activities through its window, with the print dialog answered, against raw SQLite
// reading the same rows in name order and writing the same lines after the same dialog. The program runs on
// the real platform (events let through at every row, cursors, clock); only boxes and the viewer are kept off
// the screen.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QLineEdit>
#include <QTimer>
#include <cstdio>
#include <cstring>
#include <string>

#include "Banco_Puro.h"
#include "Plataforma_Medida.h"
#include "Relator_Razão.h"
#include "activities/frmImpressão_Dinâmica.h"
#include "common/Globais.h"
#include "platform/Plataforma_Qt.h"
#include "reports/frmImpressão.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/Permissões.h"

namespace {
constexpr int Linhas = 10000;
const char* const Códigos[5] = {"Ar Livre", "Salão", "J.A.", "Meditação", "Teatro"};
const char* const Palavras[8] = {"Árvore",    "Balões", "Círculo",  "Dança",
                                 "Esperança", "Fé",     "Gratidão", "Ímpeto"};

void Prepara_Dinâmicas(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* inclui =
        Prepara_Puro(banco,
                     "INSERT INTO tblDinâmica (Dinâmica, Materiais, Instruções, Tipo_Dinâmica, "
                     "Data_Última_Realização) VALUES (?, ?, ?, ?, ?)");
    char nome[80], materiais[200], data[16];
    for (int i = 0; i < Linhas; ++i) {
        const unsigned m = (static_cast<unsigned>(i) * 2654435761u) >> 7;
        std::snprintf(nome, sizeof nome, "%s %s %05d", Palavras[m % 8], Palavras[(m >> 3) % 8], i);
        std::snprintf(materiais, sizeof materiais,
                      "Bíblias, cartolinas, canetas coloridas (%d), fita adesiva e uma caixa de papelão",
                      i % 97);
        std::snprintf(data, sizeof data, "%02d/%02d/20%02d", 1 + m % 28, 1 + (m >> 5) % 12, 10 + m % 15);
        sqlite3_bind_text(inclui, 1, nome, -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(inclui, 2, materiais, -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(inclui, 3, "Reunir o grupo.\r\nExplicar a dinâmica.\r\n\r\nOrar.", -1,
                          SQLITE_STATIC);
        sqlite3_bind_text(inclui, 4, Códigos[m % 5], -1, SQLITE_STATIC);
        if (i % 3 == 0)
            sqlite3_bind_null(inclui, 5);
        else
            sqlite3_bind_text(inclui, 5, data, -1, SQLITE_TRANSIENT);
        sqlite3_step(inclui);
        sqlite3_reset(inclui);
    }
    sqlite3_finalize(inclui);
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
        Abre_Conexões_Programa();
        Nome_Janela = "frmImpressão_Dinâmica";
        Verifica_Permissão_De_Acesso();
        Reinicia_Estado_Global();
        Prepara_Banco_Principal(Prepara_Dinâmicas);
        QDir().mkpath(Pasta.Caminho() + "/Relatórios");
        Plataforma.Caixas.clear();
        // The fonts' database is loaded by the first text measured in the process, which in the program is
        // its main window's at the start: here it would fall in the first listing, which is not its work.
        QFontMetrics(QApplication::font()).height();
        // So is the first showing of a dialog (its style, its pictures), which would fall on whichever side
        // runs first.
        {
            Plataforma_Medida medida;
            frmImpressão impressão;
            QTimer::singleShot(0, [&impressão] { impressão.cmdSair_Click(); });
            medida.Mostra_Modal(&impressão);
        }
    }
};

Instalação& Instalação_Da_Execução() {
    static Instalação instalação;
    return instalação;
}

QString Caminho_Puro() {
    return Caminho_Programa() + "/Relatórios/Puro.Rtf";
}

// The two files line by line, but for the page header, which carries the time of its printing.
bool Mesmo_Relatório(const QString& um, const QString& outro) {
    QFile a(um), b(outro);
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly)) return false;
    QList<QByteArray> linhas_a = a.readAll().split('\n'), linhas_b = b.readAll().split('\n');
    if (linhas_a.size() != linhas_b.size() || linhas_a.size() < Linhas) return false;
    linhas_a.removeAt(2);
    linhas_b.removeAt(2);
    return linhas_a == linhas_b;
}

void BM_Listagem_Dinâmicas_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Plataforma_Medida plataforma;
    int vez = 0;
    for (auto _ : estado) {
        const QString nome = QString("Dinâmicas %1").arg(++vez);
        frmImpressão_Dinâmica janela;
        QTimer::singleShot(0, [nome] {
            if (auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget())) {
                diálogo->txtCaminho->setText(nome);
                diálogo->cmdOk_Click();
            }
        });
        janela.cmdOk_Click();
        if (plataforma.Abertos.size() != vez) {
            estado.SkipWithError("a listagem não chegou ao visualizador");
            break;
        }
    }
    if (!plataforma.Caixas.isEmpty())
        estado.SkipWithError(plataforma.Caixas.first().toUtf8().constData());
    else if (!plataforma.Abertos.isEmpty() && !Mesmo_Relatório(plataforma.Abertos.last(), Caminho_Puro()))
        estado.SkipWithError("a listagem do programa difere da escrita à mão");
    for (const QString& arquivo : plataforma.Abertos) QFile::remove(arquivo);
    Reinicia_Estado_Global();
}

// Code page 1252 from SQLite's UTF-8, as the report file takes its text.
void Para_1252(const unsigned char* utf8, std::string& saída) {
    saída.clear();
    for (const unsigned char* p = utf8; p != nullptr && *p != 0;) {
        unsigned u = *p++;
        if (u >= 0xE0) {
            u = ((u & 0x0F) << 12) | ((p[0] & 0x3F) << 6) | (p[1] & 0x3F);
            p += 2;
        } else if (u >= 0xC0) {
            u = ((u & 0x1F) << 6) | (p[0] & 0x3F);
            p += 1;
        }
        saída += (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) ? static_cast<char>(u) : '?';
    }
}

struct Arquivo_Puro {
    FILE* f;
    std::string apoio;
    char colunas[138];
    void Linha(const char* texto) {
        std::fputs(texto, f);
        std::fputs("\r\n", f);
    }
    void Linha_Utf8(const char* texto) {
        Para_1252(reinterpret_cast<const unsigned char*>(texto), apoio);
        Linha(apoio.c_str());
    }
    void Limpa() {
        std::memset(colunas, ' ', 137);
        colunas[137] = 0;
    }
    // Text in UTF-8 over the columns from `coluna`, at most `tamanho` characters of it.
    void Põe(int coluna, int tamanho, const unsigned char* utf8) {
        Para_1252(utf8, apoio);
        for (int i = 0; i < tamanho && coluna - 1 + i < 137 && i < static_cast<int>(apoio.size()); ++i)
            colunas[coluna - 1 + i] = apoio[static_cast<size_t>(i)];
    }
    void Põe(int coluna, int tamanho, const char* utf8) {
        Põe(coluna, tamanho, reinterpret_cast<const unsigned char*>(utf8));
    }
    void Escreve_Colunas() {
        std::fputs(colunas, f);
        Linha("\\par");
    }
};

int Forma(const char* código) {
    for (int i = 0; i < 3; ++i)
        if (std::strcmp(código, Códigos[i]) == 0) return i;
    return 3;
}

// The same file by hand: the head, the heading, the rows in the order of the name index with the
// highlight alternating as the blue choice makes it, and the totals.
void BM_Listagem_Dinâmicas_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* conta = Prepara_Puro(banco, "SELECT COUNT(*) FROM tblDinâmica");
    sqlite3_stmt* linhas = Prepara_Puro(banco,
                                        "SELECT Dinâmica, Tipo_Dinâmica, Data_Última_Realização, Materiais "
                                        "FROM tblDinâmica ORDER BY Dinâmica COLLATE JET, rowid");
    Plataforma_Medida plataforma;  // the dialog shown as the program's side shows it
    // A new file at every listing, as the program's are (each is named anew in its dialog): writing over
    // the file just written would make the file system flush it at its closing, a wait of this side only.
    int vez = 0;
    static const char* const formas[4] = {"   Ao ar livre", "Em salão fechado", "Em programa J.A.",
                                          " Como meditação"};
    static const char* const rótulos[5] = {
        "QUANTIDADE TOTAL DE DINÂMICAS .........:", "QUANTIDADE DE DINÂMICAS \"AO AR LIVRE\" .:",
        "QUANTDADE DE DINÂMICAS \"SALÃO FECHADO\" :", "QUANTIDADE DE DINÂMICAS \"PROGRAMA J.A.\":",
        "QUANTIDADE DE \"MEDITAÇÕES\" ............:"};
    for (auto _ : estado) {
        // The person's part of a listing, which the program's side has too: the print dialog, shown and
        // answered. It leaves this side's file to be opened by hand below.
        {
            frmImpressão impressão;
            QTimer::singleShot(0, [&impressão] { impressão.cmdSair_Click(); });
            Plataforma_Atual().Mostra_Modal(&impressão);
        }
        const std::string caminho = (Caminho_Puro() + "." + QString::number(++vez)).toStdString();
        Arquivo_Puro arquivo{std::fopen(caminho.c_str(), "wb"), {}, {}};
        arquivo.Linha(
            "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1046{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}}");
        arquivo.Linha("{\\colortbl ;\\red0\\green0\\blue255;}");
        arquivo.Linha("(cabeçalho da página)");
        arquivo.Linha("\\par");
        arquivo.Linha_Utf8("\\fs32\\b                  Impressão das Dinâmicas\\b0\\par");
        arquivo.Linha(("\\fs14 " + std::string(135, '_') + "\\par").c_str());
        arquivo.Linha("\\par}");
        arquivo.Linha("\\paperh17010\\paperw12242\\margl437\\margr437\\margt102\\margb663");
        arquivo.Limpa();
        arquivo.Põe(1, 50, ("DINÂMICA " + std::string(40, '.') + ":").c_str());
        arquivo.Põe(53, 20, "FORMA DE REALIZÁ-LA:");
        arquivo.Põe(75, 10, "REALIZADA:");
        arquivo.Põe(87, 47, "MATERIAIS NECESSÁRIOS ........................:");
        arquivo.Escreve_Colunas();
        int quantidades[5] = {};
        const int total = sqlite3_step(conta) == SQLITE_ROW ? sqlite3_column_int(conta, 0) : 0;
        sqlite3_reset(conta);
        bool destaque = true;
        if (total > 0) {
            while (sqlite3_step(linhas) == SQLITE_ROW) {
                destaque = !destaque;
                arquivo.Linha(destaque ? "\\cf1\\b1" : "\\cf0\\b0");
                const char* código = reinterpret_cast<const char*>(sqlite3_column_text(linhas, 1));
                const int forma = Forma(código != nullptr ? código : "");
                arquivo.Limpa();
                arquivo.Põe(1, 50, sqlite3_column_text(linhas, 0));
                arquivo.Põe(54, 20, formas[forma]);
                if (sqlite3_column_type(linhas, 2) != SQLITE_NULL)
                    arquivo.Põe(75, 10, sqlite3_column_text(linhas, 2));
                arquivo.Põe(87, 47, sqlite3_column_text(linhas, 3));
                arquivo.Escreve_Colunas();
                ++quantidades[0];
                ++quantidades[forma + 1];
            }
            sqlite3_reset(linhas);
        }
        arquivo.Linha("\\cf0\\b0");
        arquivo.Linha("\\par");
        arquivo.Linha("\\fs14\\b\\i0");
        for (int i = 0; i < 5; ++i) {
            char número[16];
            std::snprintf(número, sizeof número, "%d.%03d", quantidades[i] / 1000, quantidades[i] % 1000);
            const std::string agrupado = quantidades[i] >= 1000 ? número : std::to_string(quantidades[i]);
            arquivo.Limpa();
            arquivo.Põe(1, 133,
                        (std::string(rótulos[i]) + std::string(6 - agrupado.size(), ' ') + agrupado).c_str());
            arquivo.Escreve_Colunas();
            if (i < 4) arquivo.Linha("\\par");
        }
        arquivo.Linha("\\fs14\\b0\\i0");
        arquivo.Linha("}");
        std::fclose(arquivo.f);
        if (quantidades[0] != Linhas) {
            estado.SkipWithError("a tabela deveria ter 10.000 dinâmicas");
            break;
        }
    }
    // The last file is the one the program's is compared with.
    QFile::remove(Caminho_Puro());
    for (int i = 1; i <= vez; ++i) {
        const QString arquivo = Caminho_Puro() + "." + QString::number(i);
        if (i == vez)
            QFile::rename(arquivo, Caminho_Puro());
        else
            QFile::remove(arquivo);
    }
    for (sqlite3_stmt* comando : {conta, linhas}) sqlite3_finalize(comando);
    sqlite3_close(banco);
}
}  // namespace

// The raw side first, so that the program's last file is compared with it.
BENCHMARK(BM_Listagem_Dinâmicas_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_Listagem_Dinâmicas_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(10);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
