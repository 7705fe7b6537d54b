// The text search of the revelations browser over 2,000 citation files, through its window, against
// reading the table's numbers with raw SQLite, reading and searching the same files directly and filling
// the same kind of grid with what was found. The program runs on the real platform (events, cursors,
// clock).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableWidgetItem>
#include <cstdio>
#include <cstring>
#include <string>

#include "Banco_Puro.h"
#include "Plataforma_Medida.h"
#include "Relator_Razão.h"
#include "common/Cp1252.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "platform/Plataforma_Qt.h"
#include "revelations/Revelações.h"
#include "revelations/frmRevelações_De_Deus.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
constexpr int Citações = 2000;
const char* const Procurado = "Vigiai";  // in one citation of 40, at different places and cases

void Prepara_Citações(sqlite3* banco) {
    Executa_Puro(banco, "BEGIN");
    sqlite3_stmt* inclui = Prepara_Puro(banco,
                                        "INSERT INTO tblRevelação (Código_Revelação_de_Deus, Palavra_Chave, "
                                        "Quantidade_Linhas) VALUES (?, 'fé, esperança, amor', 12)");
    for (int n = 1; n <= Citações; ++n) {
        sqlite3_bind_int(inclui, 1, n);
        sqlite3_step(inclui);
        sqlite3_reset(inclui);
    }
    sqlite3_finalize(inclui);
    Executa_Puro(banco, "COMMIT");
}

// About 1,200 characters in twelve lines, as the citations of the collection are.
QString Texto_Citação(int n) {
    QString texto = QString("Mateus %1:%2").arg(n % 28 + 1).arg(n % 40 + 1) + "\r\n\r\n";
    for (int l = 0; l < 10; ++l) {
        texto += "Jesus ensinou os discípulos a orar e a confiar no Pai, que vê em secreto e recompensa; ";
        if (n % 40 == 0 && l == n % 10) texto += (n % 80 == 0 ? "VIGIAI" : "vigiai") + QString(" e orai. ");
        texto += "a fé, a esperança e o amor permanecem.\r\n";
    }
    return texto;
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
        Prepara_Banco_Principal([](sqlite3* banco) {
            Executa_Puro(banco, "DELETE FROM tblRevelação");
            Prepara_Citações(banco);
        });
        QDir().mkpath(Pasta.Caminho() + "/Ajuda");
        for (int n = 1; n <= Citações; ++n) {
            QFile f(Caminho_Citação(n));
            if (f.open(QIODevice::WriteOnly)) f.write(Para_Cp1252(Texto_Citação(n)));
        }
        Plataforma.Caixas.clear();
    }
};

Instalação& Instalação_Da_Execução() {
    static Instalação instalação;
    return instalação;
}

constexpr int Achadas_Esperadas = Citações / 40;

void BM_Pesquisa_Texto_Revelações_Pelo_Programa(benchmark::State& estado) {
    Instalação_Da_Execução();
    Abre_Conexões_Programa();
    Plataforma_Medida plataforma;
    frmRevelações_De_Deus janela;
    janela.optPesquisa[1]->setChecked(true);
    janela.txtPesquisa->setText(Procurado);
    for (auto _ : estado) {
        janela.cmdOk_Click();
        if (janela.Linha_Grade != Achadas_Esperadas) {
            estado.SkipWithError("a pesquisa deveria achar uma citação em quarenta");
            break;
        }
    }
    if (!plataforma.Caixas.isEmpty()) estado.SkipWithError(plataforma.Caixas.first().toUtf8().constData());
    janela.cmdSair_Click();
    Reinicia_Estado_Global();
}

// Lower case of code page 1252: A-Z and the accented capitals but the multiplication sign.
unsigned char Minúscula(unsigned char c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7))
        return static_cast<unsigned char>(c + 32);
    return c;
}

// The file's lines joined by blanks, in lower case; false when it cannot be read.
bool Lê_Citação(const std::string& caminho, std::string& texto, std::string& bruto) {
    FILE* f = std::fopen(caminho.c_str(), "rb");
    if (f == nullptr) return false;
    bruto.clear();
    char bloco[4096];
    for (size_t lidos; (lidos = std::fread(bloco, 1, sizeof bloco, f)) > 0;) bruto.append(bloco, lidos);
    std::fclose(f);
    texto.clear();
    for (size_t i = 0; i < bruto.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(bruto[i]);
        if (c == '\r') continue;
        texto += c == '\n' ? ' ' : static_cast<char>(Minúscula(c));
    }
    return true;
}

void BM_Pesquisa_Texto_Revelações_SQLite_Puro(benchmark::State& estado) {
    Instalação_Da_Execução();
    Reinicia_Estado_Global();
    sqlite3* banco = Abre_Banco_Puro(Caminho_Banco_Principal());
    sqlite3_stmt* linhas = Prepara_Puro(
        banco,
        "SELECT Código_Revelação, Código_Revelação_de_Deus FROM tblRevelação ORDER BY Código_Revelação");
    const std::string pasta = (Caminho_Programa() + "/Ajuda/").toStdString();
    std::string procurado = Procurado;
    for (char& c : procurado) c = static_cast<char>(Minúscula(static_cast<unsigned char>(c)));
    std::string texto, bruto;
    std::vector<std::pair<int, std::string>> achadas;
    // The grid where the window shows what it found: the beginning of each citation and its code.
    Grade_Flex grade;
    grade.Set_Cols(2);
    for (auto _ : estado) {
        achadas.clear();
        grade.setRowCount(1);
        while (sqlite3_step(linhas) == SQLITE_ROW) {
            char nome[32];
            std::snprintf(nome, sizeof nome, "cit_%04d.txt", sqlite3_column_int(linhas, 1));
            if (!Lê_Citação(pasta + nome, texto, bruto) || texto.find(procurado) == std::string::npos)
                continue;
            // The beginning shown in the grid: whole lines until 110 characters or more.
            std::string início;
            size_t de = 0;
            while (início.size() < 110 && de < bruto.size()) {
                size_t fim = bruto.find("\r\n", de);
                if (fim == std::string::npos) fim = bruto.size();
                início += bruto.substr(de, fim - de) + ' ';
                de = fim + 2;
            }
            achadas.emplace_back(sqlite3_column_int(linhas, 0),
                                 De_Cp1252(QByteArray::fromStdString(início)).toStdString());
            const int linha = static_cast<int>(achadas.size());
            grade.setRowCount(linha + 1);
            grade.setItem(linha, 0, new QTableWidgetItem(QString::fromStdString(achadas.back().second)));
            grade.setItem(linha, 1, new QTableWidgetItem(QString::number(achadas.back().first)));
        }
        sqlite3_reset(linhas);
        grade.resizeColumnsToContents();
        if (static_cast<int>(achadas.size()) != Achadas_Esperadas) {
            estado.SkipWithError("a pesquisa deveria achar uma citação em quarenta");
            break;
        }
    }
    sqlite3_finalize(linhas);
    sqlite3_close(banco);
}
}  // namespace

BENCHMARK(BM_Pesquisa_Texto_Revelações_SQLite_Puro)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Pesquisa_Texto_Revelações_Pelo_Programa)->Unit(benchmark::kMillisecond)->Iterations(5);

int main(int argc, char** argv) {
    return Roda_Comparação(argc, argv);
}
