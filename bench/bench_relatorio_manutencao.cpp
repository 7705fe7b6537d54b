// An audit trail of 1,000,000 rows over four years, each of ten users owning one row in ten: (a) the
// maintenance report of one user for one year, through the real window with its print dialog answered,
// against raw SQLite reading the same rows in the same order and writing the same lines; (b) the opening
// of the audit register on that trail against raw SQLite reading its count and first row. The program
// runs on the real platform (events, cursors with their icons, clock); only boxes and the viewer are
// kept off the screen.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QString>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "Banco_Puro.h"
#include "Plataforma_Medida.h"
#include "Relator_Razão.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "platform/Plataforma_Qt.h"
#include "reports/frmImpressão.h"
#include "reports/frmImpressão_Manutenção_Banco_de_Dados.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/Permissões.h"
#include "utilities/frmManutenção_Banco_de_Dados.h"

namespace {
constexpr int Linhas = 1000000;
const char* const Usuários[10] = {"Ana Paula", "Bruno", "Carla", "Davi",    "Elisa",
                                  "Fábio",     "Gilda", "Hélio", "Iracema", "Supervisor"};
// The reported user and year: the walk passes this user's rows of 2018 and stops at the first of 2019.
const char* const Usuário_Relatório = "Carla";
const char* const Data_Inicial = "01/01/2018";
const char* const Data_Final = "31/12/2018";
const char* const Chave_Inicial = "2018-01-01 00:00:00";
const char* const Chave_Final = "2018-12-31";

// ---------- the trail ----------

unsigned Mistura(unsigned i) {
    return (i * 2654435761u) ^ (i >> 7);
}

// As Grava writes them: "Verbo Tabela onde Campo = Chave", with the tables and keys of the system.
std::string Texto_Manutenção(int i) {
    static const char* const verbos[] = {"Incluindo", "Alterando", "Excluindo", "Atualizando"};
    static const char* const tabelas[][2] = {
        {"Pergunta", "Código_Pergunta"},  {"Pergunta_Já_Mostrada", "Código_Pergunta"},
        {"Pontuação", "Jogador"},         {"Dinâmica", "Código_Dinâmica"},
        {"Usuário", "Usuário"},           {"Permissão", "Rotina"},
        {"Revelação", "Código_Revelação"}};
    const unsigned m = Mistura(static_cast<unsigned>(i));
    const auto& tabela = tabelas[m % 7];
    char texto[160];
    if (m % 7 == 2 || m % 7 == 4)
        std::snprintf(texto, sizeof texto, "%s %s onde %s = %s", verbos[(m >> 3) % 4], tabela[0], tabela[1],
                      Usuários[(m >> 5) % 10]);
    else if (m % 7 == 5)
        std::snprintf(texto, sizeof texto, "%s %s onde %s = frmImpressão_Manutenção_Banco_de_Dados",
                      verbos[(m >> 3) % 4], tabela[0], tabela[1]);
    else
        std::snprintf(texto, sizeof texto, "%s %s onde %s = %u", verbos[(m >> 3) % 4], tabela[0], tabela[1],
                      (m >> 9) % 20000);
    return texto;
}

// The trail in the order it grows: from 01/01/2016, about every two minutes, to the end of 2019.
void Prepara_Trilha(sqlite3* banco) {
    using namespace std::chrono;
    Executa_Puro(banco, "BEGIN");
    Executa_Puro(banco, "DELETE FROM tblManutenção_Banco_de_Dados");
    sqlite3_stmt* inclui = Prepara_Puro(banco,
                                        "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, "
                                        "Data_Manutenção, Hora_Manutenção) VALUES (?, ?, ?, ?)");
    const sys_days início = sys_days{year{2016} / 1 / 1};
    char data[24];
    char hora[12];
    for (int i = 0; i < Linhas; ++i) {
        const long long segundo = static_cast<long long>(i) * 126 + Mistura(static_cast<unsigned>(i)) % 120;
        const year_month_day dia{início + days{segundo / 86400}};
        const int no_dia = static_cast<int>(segundo % 86400);
        std::snprintf(data, sizeof data, "%04d-%02u-%02u 00:00:00", static_cast<int>(dia.year()),
                      static_cast<unsigned>(dia.month()), static_cast<unsigned>(dia.day()));
        std::snprintf(hora, sizeof hora, "%02d:%02d:%02d", no_dia / 3600, no_dia / 60 % 60, no_dia % 60);
        const std::string texto = Texto_Manutenção(i);
        sqlite3_bind_text(inclui, 1, texto.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(inclui, 2, Usuários[(Mistura(static_cast<unsigned>(i)) >> 11) % 10], -1,
                          SQLITE_STATIC);
        sqlite3_bind_text(inclui, 3, data, -1, SQLITE_STATIC);
        sqlite3_bind_text(inclui, 4, hora, -1, SQLITE_STATIC);
        sqlite3_step(inclui);
        sqlite3_reset(inclui);
    }
    sqlite3_finalize(inclui);
    Executa_Puro(banco, "COMMIT");
}

void Prepara_Usuários(sqlite3* banco) {
    sqlite3_stmt* inclui = Prepara_Puro(banco, "INSERT INTO tblUsuário (Usuário, Senha) VALUES (?, 1)");
    for (const char* usuário : Usuários) {
        if (std::strcmp(usuário, "Supervisor") == 0) continue;
        sqlite3_bind_text(inclui, 1, usuário, -1, SQLITE_STATIC);
        sqlite3_step(inclui);
        sqlite3_reset(inclui);
    }
    sqlite3_finalize(inclui);
}

// The program's folder with its icons, the users, both windows' permission rows (whose writing is audited
// before the trail is laid) and the trail. Built once per run: every benchmark here only reads it.
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
        Prepara_Banco_Principal(Prepara_Usuários);
        Abre_Conexões_Programa();
        for (const char* janela :
             {"frmImpressão_Manutenção_Banco_de_Dados", "frmManutenção_Banco_de_Dados"}) {
            Nome_Janela = QString::fromUtf8(janela);
            Verifica_Permissão_De_Acesso();
        }
        Reinicia_Estado_Global();
        sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Manutenção());
        Prepara_Trilha(banco);
        sqlite3_close(banco);
        QDir().mkpath(Pasta.Caminho() + "/Relatórios");
        Plataforma.Caixas.clear();
    }
};

Instalação& Instalação_Da_Execução() {
    static Instalação instalação;
    return instalação;
}

QString Caminho_Relatório_Puro() {
    return Caminho_Programa() + "/Relatórios/Puro.Rtf";
}

// The two report files line by line, but for the header line, which carries the time of its printing.
bool Mesmo_Relatório(const QString& um, const QString& outro) {
    QFile a(um), b(outro);
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly)) return false;
    QList<QByteArray> linhas_a = a.readAll().split('\n'), linhas_b = b.readAll().split('\n');
    if (linhas_a.size() < 20 || linhas_b.size() < 20) return false;
    linhas_a.removeAt(2);
    linhas_b.removeAt(2);
    // The first line that differs is told, so that a wrong comparison can be mended.
    for (qsizetype i = 0; i < std::min(linhas_a.size(), linhas_b.size()); ++i)
        if (linhas_a[i] != linhas_b[i]) {
            std::fprintf(stderr, "Linha %lld difere:\n  programa: %s\n  à mão:    %s\n",
                         static_cast<long long>(i + (i >= 2 ? 2 : 1)), linhas_a[i].constData(),
                         linhas_b[i].constData());
            return false;
        }
    return linhas_a.size() == linhas_b.size();
}

// ---------- (a) the report ----------

void BM_Relatório_Manutenção_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Plataforma_Medida plataforma;
    int vez = 0;
    for (auto _ : estado) {
        const QString nome = QString("Manutenções %1").arg(++vez);
        frmImpressão_Manutenção_Banco_de_Dados janela;
        janela.cboUsuário->setCurrentIndex(janela.cboUsuário->findText(Usuário_Relatório));
        janela.dbData_Inicial->setText(Data_Inicial);
        janela.dbData_Final->setText(Data_Final);
        bool Cancel = false;
        janela.dbData_Final_Validate(Cancel);
        QTimer::singleShot(0, [nome] {
            if (auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget())) {
                diálogo->txtCaminho->setText(nome);
                diálogo->cmdOk_Click();
            }
        });
        janela.cmdOk_Click();
        if (plataforma.Abertos.size() != vez) {
            estado.SkipWithError("o relatório não chegou ao visualizador");
            break;
        }
    }
    if (!plataforma.Caixas.isEmpty())
        estado.SkipWithError(plataforma.Caixas.first().toUtf8().constData());
    else if (!plataforma.Abertos.isEmpty() &&
             !Mesmo_Relatório(plataforma.Abertos.last(), Caminho_Relatório_Puro()))
        estado.SkipWithError("o relatório do programa difere do escrito à mão");
    for (const QString& arquivo : plataforma.Abertos) QFile::remove(arquivo);
    Reinicia_Estado_Global();
}

// Code page 1252 from SQLite's UTF-8, as the report file takes its text.
void Para_1252(const unsigned char* utf8, std::string& saída) {
    static const char16_t faixa_80_9f[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                             0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
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
        char byte = '?';
        if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) byte = static_cast<char>(u);
        for (int i = 0; i < 32 && byte == '?'; ++i)
            if (faixa_80_9f[i] != 0 && faixa_80_9f[i] == u) byte = static_cast<char>(0x80 + i);
        saída += byte;
    }
}

// A report file written with stdio: whole lines, each ended by CR LF.
struct Arquivo_Puro {
    FILE* f;
    std::string linha_1252;
    void Linha(const char* texto) {
        std::fputs(texto, f);
        std::fputs("\r\n", f);
    }
    void Linha_Utf8(const char* texto) {
        Para_1252(reinterpret_cast<const unsigned char*>(texto), linha_1252);
        Linha(linha_1252.c_str());
    }
    // The 137 columns with their backslashes doubled, then "\par".
    void Colunas(const char* colunas) {
        for (int i = 0; i < 137; ++i) {
            if (colunas[i] == '\\') std::fputc('\\', f);
            std::fputc(colunas[i], f);
        }
        Linha("\\par");
    }
};

// Writes text already in code page 1252 over the 137 columns, from column `coluna`, at most `tamanho`.
void Põe(char* colunas, int coluna, int tamanho, const char* texto_1252) {
    for (int i = 0; i < tamanho && coluna - 1 + i < 137 && texto_1252[i] != 0; ++i)
        colunas[coluna - 1 + i] = texto_1252[i];
}

void Põe_Utf8(char* colunas, int coluna, int tamanho, const char* utf8, std::string& apoio) {
    Para_1252(reinterpret_cast<const unsigned char*>(utf8), apoio);
    Põe(colunas, coluna, tamanho, apoio.c_str());
}

std::string Agrupado(int n) {
    std::string dígitos = std::to_string(n), saída;
    for (size_t i = 0; i < dígitos.size(); ++i) {
        if (i > 0 && (dígitos.size() - i) % 3 == 0) saída += '.';
        saída += dígitos[i];
    }
    return saída.size() < 6 ? std::string(6 - saída.size(), ' ') + saída : saída;
}

// The same file by hand: the organisation read, the head, the count, the seek on the index's columns, the
// walk with the report's rules and the end, with the highlight alternating as the blue choice makes it.
void BM_Relatório_Manutenção_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* trilha = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    sqlite3* principal = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* razão = Prepara_Puro(principal, "SELECT Razão_Social FROM tblConfigur");
    sqlite3_stmt* conta = Prepara_Puro(trilha, "SELECT COUNT(*) FROM tblManutenção_Banco_de_Dados");
    sqlite3_stmt* linhas = Prepara_Puro(
        trilha,
        "SELECT Usuário, Data_Manutenção, Hora_Manutenção, Manutenção FROM tblManutenção_Banco_de_Dados "
        "WHERE (Usuário, Data_Manutenção, Hora_Manutenção) >= (?, ?, ?) "
        "ORDER BY Usuário, Data_Manutenção, Hora_Manutenção, rowid");
    // A new file at every report, as the program's are (each is named anew in its dialog): writing over
    // the file just written would make the file system flush it at its closing, a wait of this side only.
    int vez = 0;
    std::string apoio;
    for (auto _ : estado) {
        const std::string caminho = (Caminho_Relatório_Puro() + "." + QString::number(++vez)).toStdString();
        Arquivo_Puro arquivo{std::fopen(caminho.c_str(), "wb"), {}};
        std::string organização;
        if (sqlite3_step(razão) == SQLITE_ROW)
            organização = reinterpret_cast<const char*>(sqlite3_column_text(razão, 0));
        sqlite3_reset(razão);
        while (!organização.empty() && organização.back() == ' ') organização.pop_back();
        while (!organização.empty() && organização.front() == ' ') organização.erase(0, 1);
        const std::time_t agora = std::time(nullptr);
        char meio[64];
        std::strftime(meio, sizeof meio, "Impresso em %d/%m/%Y, às %H:%M:%S hs", std::localtime(&agora));
        Para_1252(reinterpret_cast<const unsigned char*>(organização.c_str()), apoio);
        std::string esquerda = apoio, direita = "Página: ", centro;
        Para_1252(reinterpret_cast<const unsigned char*>(meio), centro);
        Para_1252(reinterpret_cast<const unsigned char*>("Página: "), direita);
        for (int vez = 0; esquerda.size() + centro.size() + direita.size() < 130; vez = (vez + 1) % 3) {
            if (vez == 0) esquerda += ' ';
            if (vez == 1) centro += ' ';
            if (vez == 2) direita.insert(0, " ");
        }
        arquivo.Linha(
            "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1046{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}}");
        arquivo.Linha("{\\colortbl ;\\red0\\green0\\blue255;}");
        arquivo.Linha(("\\viewkind4\\uc1\\pard\\f0\\fs14\\i0\\b0 {\\info}{\\header\\fs14{" + esquerda +
                       centro + direita + " }{\\chpgn}\\par")
                          .c_str());
        arquivo.Linha("\\par");
        arquivo.Linha_Utf8("\\fs32\\b   Impressão das Manutenções Efetuadas no Banco de Dados\\b0\\par");
        arquivo.Linha(("\\fs14 " + std::string(135, '_') + "\\par").c_str());
        arquivo.Linha("\\par}");
        arquivo.Linha("\\paperh17010\\paperw12242\\margl437\\margr437\\margt102\\margb663");
        arquivo.Linha("\\fs14\\b\\i0");
        char colunas[138];
        auto limpa = [&colunas] {
            std::memset(colunas, ' ', 137);
            colunas[137] = 0;
        };
        limpa();
        Põe_Utf8(colunas, 1, 8, "PERÍODO:", apoio);
        Põe(colunas, 10, 10, Data_Inicial);
        Põe(colunas, 21, 1, "a");
        Põe(colunas, 23, 10, Data_Final);
        arquivo.Colunas(colunas);
        arquivo.Linha("\\par");
        limpa();
        Põe_Utf8(colunas, 1, 59, (std::string("USUÁRIO: ") + Usuário_Relatório).c_str(), apoio);
        arquivo.Colunas(colunas);
        arquivo.Linha("\\fs14\\b0\\i0");
        arquivo.Linha("\\par");
        limpa();
        Põe_Utf8(colunas, 1, 26, "DATA E HORA DA MANUTENÇÃO:", apoio);
        Põe_Utf8(colunas, 30, 104,
                 ("MANUTENÇÃO EFETUADA NO BANCO DE DADOS " + std::string(65, '.') + ":").c_str(), apoio);
        arquivo.Colunas(colunas);

        const int total = sqlite3_step(conta) == SQLITE_ROW ? sqlite3_column_int(conta, 0) : 0;
        sqlite3_reset(conta);
        int quantidade = 0;
        bool destaque = true;
        if (total > 0) {
            sqlite3_bind_text(linhas, 1, Usuário_Relatório, -1, SQLITE_STATIC);
            sqlite3_bind_text(linhas, 2, Chave_Inicial, -1, SQLITE_STATIC);
            sqlite3_bind_text(linhas, 3, "00:00:00", -1, SQLITE_STATIC);
            while (sqlite3_step(linhas) == SQLITE_ROW) {
                const char* data = reinterpret_cast<const char*>(sqlite3_column_text(linhas, 1));
                if (data == nullptr || data[0] == 0) continue;
                if (std::strncmp(data, Chave_Final, 10) > 0) break;
                std::string usuário = reinterpret_cast<const char*>(sqlite3_column_text(linhas, 0));
                while (!usuário.empty() && usuário.back() == ' ') usuário.pop_back();
                while (!usuário.empty() && usuário.front() == ' ') usuário.erase(0, 1);
                if (usuário != Usuário_Relatório) continue;
                destaque = !destaque;
                arquivo.Linha(destaque ? "\\cf1\\b1" : "\\cf0\\b0");
                const char* hora = reinterpret_cast<const char*>(sqlite3_column_text(linhas, 2));
                char quando[40];
                std::snprintf(quando, sizeof quando, "%.2s/%.2s/%.4s, às %s hs", data + 8, data + 5, data,
                              hora != nullptr ? hora : "");
                limpa();
                Põe_Utf8(colunas, 1, 26, quando, apoio);
                Para_1252(sqlite3_column_text(linhas, 3), apoio);
                Põe(colunas, 30, 104, apoio.c_str());
                arquivo.Colunas(colunas);
                ++quantidade;
            }
            sqlite3_reset(linhas);
        }
        arquivo.Linha("\\cf0\\b0");
        arquivo.Linha("\\par");
        arquivo.Linha("\\fs14\\b\\i0");
        limpa();
        Põe_Utf8(colunas, 1, 133, ("QUANTIDADE DE MANUTENÇÕES : " + Agrupado(quantidade)).c_str(), apoio);
        arquivo.Colunas(colunas);
        arquivo.Linha("\\fs14\\b0\\i0");
        arquivo.Linha("}");
        std::fclose(arquivo.f);
        if (quantidade < 20000) {
            estado.SkipWithError("o ano do usuário deveria ter umas 25.000 manutenções");
            break;
        }
    }
    // The last file is the one the program's is compared with.
    QFile::remove(Caminho_Relatório_Puro());
    for (int i = 1; i <= vez; ++i) {
        const QString arquivo = Caminho_Relatório_Puro() + "." + QString::number(i);
        if (i == vez)
            QFile::rename(arquivo, Caminho_Relatório_Puro());
        else
            QFile::remove(arquivo);
    }
    for (sqlite3_stmt* comando : {razão, conta, linhas}) sqlite3_finalize(comando);
    sqlite3_close(principal);
    sqlite3_close(trilha);
}

// ---------- (b) the audit register ----------

// Opened as from the menu and closed by Sair; the window shows the trail's first row by code and the count.
void BM_Abertura_Cadastro_Manutenção_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Plataforma_Medida plataforma;
    for (auto _ : estado) {
        frmManutenção_Banco_de_Dados janela;
        const bool certo = janela.txtManutenção->text() == QString::fromStdString(Texto_Manutenção(0)) &&
                           janela.nbQuantidade_Manutenções->Value() == Linhas;
        estado.PauseTiming();
        janela.cmdSair_Click();
        estado.ResumeTiming();
        if (!certo) {
            estado.SkipWithError("a janela não mostrou a primeira manutenção e a contagem");
            break;
        }
    }
    if (!plataforma.Caixas.isEmpty()) estado.SkipWithError(plataforma.Caixas.first().toUtf8().constData());
    Reinicia_Estado_Global();
}

// What the window shows, by hand: the count and the first row in code order.
void BM_Abertura_Cadastro_Manutenção_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* trilha = Abre_Banco_Puro(Caminho_Banco_Manutenção());
    sqlite3_stmt* conta = Prepara_Puro(trilha, "SELECT COUNT(*) FROM tblManutenção_Banco_de_Dados");
    sqlite3_stmt* primeira = Prepara_Puro(trilha,
                                          "SELECT * FROM tblManutenção_Banco_de_Dados "
                                          "ORDER BY Código_Manutenção_Banco_de_Dados, rowid LIMIT 1");
    const std::string esperado = Texto_Manutenção(0);
    for (auto _ : estado) {
        const int total = sqlite3_step(conta) == SQLITE_ROW ? sqlite3_column_int(conta, 0) : 0;
        sqlite3_reset(conta);
        std::string texto, usuário, data, hora;
        if (sqlite3_step(primeira) == SQLITE_ROW) {
            texto = reinterpret_cast<const char*>(sqlite3_column_text(primeira, 0));
            usuário = reinterpret_cast<const char*>(sqlite3_column_text(primeira, 2));
            data = reinterpret_cast<const char*>(sqlite3_column_text(primeira, 3));
            hora = reinterpret_cast<const char*>(sqlite3_column_text(primeira, 4));
        }
        sqlite3_reset(primeira);
        benchmark::DoNotOptimize(usuário.data());
        if (total != Linhas || texto != esperado) {
            estado.SkipWithError("a leitura não deu a primeira manutenção e a contagem");
            break;
        }
    }
    sqlite3_finalize(conta);
    sqlite3_finalize(primeira);
    sqlite3_close(trilha);
}
}  // namespace

BENCHMARK(BM_Relatório_Manutenção_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Relatório_Manutenção_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Abertura_Cadastro_Manutenção_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_Abertura_Cadastro_Manutenção_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
