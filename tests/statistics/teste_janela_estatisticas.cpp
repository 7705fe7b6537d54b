// The statistics as the windows make and show them: a scripted game writes exactly its turns, a broken
// statistics file leaves the game playing, the statistics window shows the figures of a known set of
// turns, opens a question on a double click, exports and prints; the question register shows its line.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBarSet>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QChartView>
#include <QFile>
#include <QHorizontalBarSeries>
#include <QLabel>
#include <QLineSeries>
#include <QLogValueAxis>
#include <QValueAxis>
#include <QPieSeries>
#include <QTableWidget>
#include <QTimer>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "game/frmJogo.h"
#include "questions/frmPergunta.h"
#include "reports/frmImpressão.h"
#include "statistics/Estatísticas.h"
#include "statistics/frmEstatísticas_Jogos.h"
#include "store/Comando_Banco.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Jogo.h"

using namespace Estatísticas;

namespace {
// A row of tblJogada as the test compares it.
struct Linha_Jogada {
    QString Jogador;
    int Posição;
    int Pergunta;
    QString Desfecho;
    int Número_Resposta;  // -1 for null
    QString Ajuda;
    int Dado;
    double Valor;
    double Segundos;
    bool operator==(const Linha_Jogada&) const = default;
};

std::ostream& operator<<(std::ostream& s, const Linha_Jogada& l) {
    return s << l.Jogador.toStdString() << "/" << l.Posição << " p" << l.Pergunta << " "
             << l.Desfecho.toStdString() << " r" << l.Número_Resposta << " " << l.Ajuda.toStdString()
             << l.Dado << " v" << l.Valor << " " << l.Segundos << "s";
}

QList<Linha_Jogada> Linhas_Gravadas() {
    QList<Linha_Jogada> linhas;
    Falha_Banco falha;
    auto sessão = Sessão::Abre(Caminho_Banco_Estatísticas(), falha);
    if (!sessão) return linhas;
    Comando_Banco* c = sessão->Prepara(
        "SELECT Jogador, Posição, Código_Pergunta, Desfecho, Número_Resposta, Ajuda, Número_Dado, Valor, "
        "Segundos FROM tblJogada ORDER BY Código_Jogada",
        falha);
    while (c != nullptr && c->Passo() == Linha_Pronta)
        linhas << Linha_Jogada{c->Texto(0),
                               static_cast<int>(c->Inteiro(1)),
                               static_cast<int>(c->Inteiro(2)),
                               c->Texto(3),
                               c->Tipo(4) == Tipo_Valor::Nulo ? -1 : static_cast<int>(c->Inteiro(4)),
                               c->Texto(5),
                               static_cast<int>(c->Inteiro(6)),
                               c->Real(7),
                               c->Real(8)};
    if (c != nullptr) c->Reinicia();
    return linhas;
}

int Entradas_Do_Log() {
    QFile log(Caminho_Log_Ocorrências());
    if (!log.open(QIODevice::ReadOnly)) return 0;
    return static_cast<int>(De_Cp1252(log.readAll()).count("Descrição do Erro:"));
}

class Janela_Estatísticas_Teste : public Teste_Jogo {
  protected:
    static int Em_Branco(const frmJogo& j) {
        int n = 0;
        for (const QString& r : j.Jogo.Respostas_Exibidas) n += r.isEmpty();
        return n;
    }
    static void Ajuda(frmJogo& j, int ajuda) {
        j.chkAjuda[ajuda]->setChecked(true);
        j.chkAjuda_Click(ajuda);
    }
};
}  // namespace

TEST_F(Janela_Estatísticas_Teste, AScriptedGameWritesExactlyTheRowsOfItsTurns) {
    Cadastra_Perguntas(40);
    int fim = 0;
    frmJogo::Ao_Terminar_Padrão = [&fim](frmJogo&) { ++fim; };
    auto janela = std::make_unique<frmJogo>();
    frmJogo& j = *janela;
    Informa_Nomes(j, {"Ana", "Beto"});
    QList<Linha_Jogada> esperadas;
    // The competitor on turn thinks for `segundos`, then does `ação`; the row it must leave is noted.
    auto vez = [&](int segundos, const std::function<void()>& ação, const QString& desfecho, bool certa,
                   const QString& ajuda, int dado) {
        const int jogador = j.Jogo.Jogador_Atual;
        const int pergunta = j.Jogo.Pergunta_Atual.Código_Pergunta;
        const double valor = j.Jogo.Valor_Pergunta;
        // The question came up at this moment; the die's pauses add to the time the competitor takes.
        const QDateTime exibida = Plataforma.Relógio;
        Plataforma.Relógio = Plataforma.Relógio.addSecs(segundos);
        ação();
        const double tempo = exibida.msecsTo(Plataforma.Relógio) / 1000.0;
        EXPECT_GE(tempo, segundos);
        esperadas << Linha_Jogada{j.Jogo.Nome_Jogador[jogador],
                                  jogador,
                                  pergunta,
                                  desfecho,
                                  desfecho == Desfecho_Pulada ? -1 : (certa ? 0 : -2),
                                  ajuda,
                                  dado,
                                  valor,
                                  tempo};
    };
    auto responde = [&](bool certa) { return [&j, certa] { j.optResposta_Click(Índice_Da(j, certa)); }; };

    vez(7, responde(true), Desfecho_Certa, true, Ajuda_Nenhuma, 0);  // Ana right
    int dado = 0;
    vez(
        12,
        [&] {
            Ajuda(j, Ajuda_Dado);
            dado = Em_Branco(j);
            j.optResposta_Click(Índice_Da(j, false) < 0 ? Índice_Da(j, true) : Índice_Da(j, false));
        },
        Desfecho_Errada, false, Ajuda_Dado_Texto, 0);  // Beto: the die, then wrong (if a wrong one stands)
    esperadas.last().Dado = dado;
    if (dado == 3) {
        esperadas.last().Desfecho = Desfecho_Certa;
        esperadas.last().Número_Resposta = 0;
    }
    vez(
        3,
        [&] {
            Ajuda(j, Ajuda_Apóstolos);
            j.optResposta_Click(Índice_Da(j, true));
        },
        Desfecho_Certa, true, Ajuda_Apóstolos_Texto, 0);  // Ana: the apostles, then right
    vez(
        2, [&] { Ajuda(j, Ajuda_Pular_2); }, Desfecho_Pulada, false, Ajuda_Pulo, 0);  // Beto skips
    vez(
        4,
        [&] {
            Ajuda(j, Ajuda_Deus);
            j.optResposta_Click(Índice_Da(j, true));
        },
        Desfecho_Certa, true, Ajuda_Deus_Texto, 0);  // Ana: God, then right
    // Then both err until they drop out: Beto first, then Ana alone.
    int voltas = 0;
    while (fim == 0 && ++voltas < 40) {
        const int helps_left = [&] {
            int n = 0;
            for (bool b : j.Jogo.Ajuda_Disponível[j.Jogo.Jogador_Atual]) n += b;
            return n;
        }();
        vez(1, responde(false), helps_left == 0 ? Desfecho_Eliminado : Desfecho_Errada, false, Ajuda_Nenhuma,
            0);
    }
    ASSERT_EQ(fim, 1);

    QList<Linha_Jogada> gravadas = Linhas_Gravadas();
    ASSERT_EQ(gravadas.size(), esperadas.size());
    // A wrong answer is one of the three stored wrong ones; which one depends on the shuffle.
    for (int i = 0; i < gravadas.size(); ++i) {
        if (esperadas[i].Número_Resposta == -2) {
            EXPECT_GE(gravadas[i].Número_Resposta, 1) << i;
            EXPECT_LE(gravadas[i].Número_Resposta, 3) << i;
            esperadas[i].Número_Resposta = gravadas[i].Número_Resposta;
        }
        EXPECT_EQ(gravadas[i], esperadas[i]) << "vez " << i;
    }
    // Each outcome and each help came up.
    QSet<QString> desfechos, ajudas;
    for (const Linha_Jogada& l : gravadas) {
        desfechos << l.Desfecho;
        ajudas << l.Ajuda;
    }
    EXPECT_EQ(desfechos,
              (QSet<QString>{Desfecho_Certa, Desfecho_Errada, Desfecho_Eliminado, Desfecho_Pulada}));
    EXPECT_EQ(ajudas, (QSet<QString>{Ajuda_Nenhuma, Ajuda_Dado_Texto, Ajuda_Apóstolos_Texto, Ajuda_Deus_Texto,
                                     Ajuda_Pulo}));

    // The game's window closes: its turns join the summaries, each once.
    const auto soma = [](const QString& sql) {
        return Consulta_Como_Outra_Estação(Caminho_Banco_Estatísticas(), sql).value(0).value(0).toInt();
    };
    const int respondidas = static_cast<int>(gravadas.size()) - 1;  // Beto's skip is no answer
    EXPECT_EQ(soma("SELECT SUM(Respostas) FROM tblResumo_Jogador"), 0);
    janela.reset();
    EXPECT_EQ(soma("SELECT SUM(Respostas) FROM tblResumo_Jogador"), respondidas);
    EXPECT_EQ(soma("SELECT SUM(Respostas) + SUM(Pulos) FROM tblResumo_Mensal"), gravadas.size());
    EXPECT_EQ(Entradas_Do_Log(), 0);
}

TEST_F(Janela_Estatísticas_Teste, ABrokenStatisticsFileLeavesTheGamePlayingAndLogsOnce) {
    Cadastra_Perguntas(40);
    Fecha_Banco_Estatísticas();
    ASSERT_TRUE(Exclui_Arquivo_Banco(Caminho_Banco_Estatísticas()));
    {
        QFile lixo(Caminho_Banco_Estatísticas());
        ASSERT_TRUE(lixo.open(QIODevice::WriteOnly));
        lixo.write(QByteArray(4096, 'x'));
    }
    QFile::remove(Caminho_Log_Ocorrências());
    int fim = 0;
    frmJogo::Ao_Terminar_Padrão = [&fim](frmJogo&) { ++fim; };
    frmJogo j;
    Informa_Nomes(j, {"Ana"});
    int vezes = 0;
    while (fim == 0 && ++vezes < 20) j.optResposta_Click(Índice_Da(j, vezes <= 3));
    EXPECT_EQ(fim, 1);
    EXPECT_EQ(vezes, 3 + 7);  // three right, six wrong with a help taken, the seventh out
    EXPECT_EQ(j.Jogo.Pontos[1], 70);
    EXPECT_EQ(Entradas_Do_Log(), 1);
    // Only the game's own boxes: the greetings and the drop-out.
    for (const Caixa_Mostrada& c : Plataforma.Caixas)
        EXPECT_NE(c.Ícone, Ícone_Caixa::Crítico) << c.Texto.toStdString();
}

namespace {
void Vez(const QDateTime& início, int minutos, int posição, const QString& jogador, int pergunta,
         const QString& desfecho, int resposta, double valor, const QString& ajuda = Ajuda_Nenhuma,
         int dado = 0) {
    Jogada j;
    j.Início_Jogo = início;
    j.Data_Jogada = início.addSecs(60 * minutos);
    j.Posição = posição;
    j.Jogador = jogador;
    j.Código_Pergunta = pergunta;
    j.Tipo = pergunta == 3 ? "B" : "G";
    j.Desfecho = desfecho;
    j.Número_Resposta = resposta;
    j.Valor = valor;
    j.Ajuda = ajuda;
    j.Número_Dado = dado;
    Falha_Banco falha;
    ASSERT_TRUE(Grava_Jogada(j, falha)) << falha.Descrição.toStdString();
}

// The same eleven turns of two games that the store's test counts by hand.
void Conjunto_Conhecido() {
    const QDateTime a(QDate(2019, 3, 10), QTime(10, 0));
    Vez(a, 1, 1, "Ana", 1, Desfecho_Certa, 0, 10);
    Vez(a, 2, 2, "Beto", 2, Desfecho_Errada, 1, 10, Ajuda_Dado_Texto, 2);
    Vez(a, 3, 1, "Ana", 3, Desfecho_Certa, 0, 20, Ajuda_Apóstolos_Texto);
    Vez(a, 4, 2, "Beto", 1, Desfecho_Pulada, -1, 5, Ajuda_Pulo);
    Vez(a, 5, 1, "Ana", 2, Desfecho_Errada, 2, 40);
    Vez(a, 6, 2, "Beto", 1, Desfecho_Certa, 0, 8);
    const QDateTime b(QDate(2019, 4, 2), QTime(20, 0));
    Vez(b, 1, 1, "Ana", 2, Desfecho_Errada, 1, 10);
    Vez(b, 2, 1, "Ana", 1, Desfecho_Errada, 3, 5, Ajuda_Dado_Texto, 1);
    Vez(b, 3, 1, "Ana", 2, Desfecho_Errada, 3, 2);
    Vez(b, 4, 1, "Ana", 3, Desfecho_Certa, 0, 1, Ajuda_Deus_Texto);
    Vez(b, 5, 1, "Ana", 2, Desfecho_Eliminado, 1, 2);
}

QList<qreal> Valores(QChartView* vista) {
    QList<qreal> valores;
    for (QAbstractSeries* s : vista->chart()->series())
        if (auto* barras = qobject_cast<QAbstractBarSeries*>(s))
            for (QBarSet* conjunto : barras->barSets())
                for (int i = 0; i < conjunto->count(); ++i) valores << conjunto->at(i);
    return valores;
}
}  // namespace

TEST_F(Janela_Estatísticas_Teste, TheWindowShowsTheFiguresOfAKnownSetOfTurns) {
    Cadastra_Perguntas(5);
    Conjunto_Conhecido();
    frmEstatísticas_Jogos janela;
    EXPECT_EQ(janela.windowTitle(), "Estatísticas dos Jogos");
    EXPECT_EQ(janela.dbMês_Inicial->date(), QDate(2019, 3, 1));
    EXPECT_EQ(janela.dbMês_Final->date(), QDate(2019, 3, 1));  // the scripted clock's month
    // The default period ends in the clock's month: April is outside it until the user widens it.
    janela.dbMês_Final->setDate(QDate(2019, 12, 1));
    janela.cmdAtualiza_Click();
    EXPECT_EQ(janela.lblTotais->text(), "2 jogos, 10 respostas (40% de acertos) e 1 pulos no período.");
    // Each tab is drawn when it comes into sight. The hardest first, at the top: bars are listed from the
    // bottom.
    auto mostra = [&janela](QWidget* aba) { janela.tabGráficos->setCurrentWidget(aba); };
    mostra(janela.chtMais_Difíceis);
    EXPECT_EQ(Valores(janela.chtMais_Difíceis), (QList<qreal>{200.0 / 3, 0}));
    mostra(janela.chtMais_Fáceis);
    EXPECT_EQ(Valores(janela.chtMais_Fáceis), (QList<qreal>{0, 200.0 / 3}));
    mostra(janela.chtPor_Tipo);
    EXPECT_EQ(Valores(janela.chtPor_Tipo), (QList<qreal>{2, 8, 2, 2}));  // answers B, G; then right B, G
    mostra(janela.chtPor_Mês);
    EXPECT_EQ(Valores(janela.chtPor_Mês), (QList<qreal>{1, 1}));  // games; the answers are a line
    auto* linha = qobject_cast<QLineSeries*>(janela.chtPor_Mês->chart()->series().value(1));
    ASSERT_NE(linha, nullptr);
    EXPECT_EQ(linha->points(), (QList<QPointF>{{0, 5}, {1, 5}}));
    mostra(janela.chtAjudas);
    auto* pizza = qobject_cast<QPieSeries*>(janela.chtAjudas->chart()->series().value(0));
    ASSERT_NE(pizza, nullptr);
    QStringList fatias;
    for (QPieSlice* f : pizza->slices()) fatias << f->label();
    EXPECT_EQ(fatias,
              (QStringList{"Pulos: 1", "Dado: 2 (eliminou 1: 1, 2: 1, 3: 0)", "Apóstolos: 1", "Deus: 1"}));
    mostra(janela.chtCompetidores);
    EXPECT_EQ(janela.chtCompetidores->chart()->series().size(), 2);
    // Scores 30 times apart stay on a linear scale from zero.
    auto* pontos = qobject_cast<QValueAxis*>(janela.chtCompetidores->chart()->axes(Qt::Vertical).value(0));
    ASSERT_NE(pontos, nullptr);
    EXPECT_EQ(pontos->min(), 0);
    mostra(janela.flxPerguntas);
    ASSERT_EQ(janela.flxPerguntas->rowCount(), 3);
    EXPECT_EQ(janela.flxPerguntas->item(0, 1)->text(), "Pergunta número 1?");
    EXPECT_EQ(janela.flxPerguntas->item(0, 4)->text(), "67%");
    mostra(janela.flxNunca_Acertadas->parentWidget());
    ASSERT_EQ(janela.flxNunca_Acertadas->rowCount(), 1);
    EXPECT_EQ(janela.flxNunca_Acertadas->item(0, 0)->text(), "2");
    EXPECT_EQ(janela.flxIncorreta_Preferida->rowCount(), 1);
    mostra(janela.flxPerguntas);

    // The kind filter.
    janela.cboTipo->setCurrentIndex(1);
    janela.cmdAtualiza_Click();
    EXPECT_EQ(janela.lblTotais->text(), "2 jogos, 2 respostas (100% de acertos) e 0 pulos no período.");
    EXPECT_EQ(janela.flxPerguntas->rowCount(), 1);
    // A period upside down is refused with a message and changes nothing.
    janela.dbMês_Inicial->setDate(QDate(2020, 1, 1));
    janela.cmdAtualiza_Click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, "O primeiro mês do período deve vir antes do último.");
    EXPECT_EQ(janela.flxPerguntas->rowCount(), 1);
}

// A long run of right answers doubles the value each time: such a game would flatten every other one on a
// linear scale, so the points go by powers of ten and a game without points stays in sight on the floor.
TEST_F(Janela_Estatísticas_Teste, ScoresAThousandTimesApartGoOnALogarithmicScaleWithTheZerosOnItsFloor) {
    Cadastra_Perguntas(3);
    const QDateTime a(QDate(2019, 5, 4), QTime(15, 0));
    Vez(a, 1, 1, "Ana", 1, Desfecho_Certa, 0, 40);
    Vez(a.addDays(7), 1, 1, "Ana", 2, Desfecho_Errada, 1, 10);
    for (int i = 0; i < 11; ++i) Vez(a.addDays(14), i + 1, 1, "Ana", 1 + i % 3, Desfecho_Certa, 0, 10 << i);
    frmEstatísticas_Jogos janela;
    janela.dbMês_Final->setDate(QDate(2019, 5, 1));
    janela.cmdAtualiza_Click();
    janela.tabGráficos->setCurrentWidget(janela.chtCompetidores);
    QChart* gráfico = janela.chtCompetidores->chart();
    const QList<QAbstractAxis*> verticais = gráfico->axes(Qt::Vertical);
    ASSERT_EQ(verticais.size(), 1);
    auto* log = qobject_cast<QLogValueAxis*>(verticais[0]);
    ASSERT_NE(log, nullptr);
    EXPECT_EQ(log->min(), 10);  // the power of ten under the smallest score above zero
    auto* linha = qobject_cast<QLineSeries*>(gráfico->series().value(0));
    ASSERT_NE(linha, nullptr);
    EXPECT_EQ(linha->points(), (QList<QPointF>{{1, 40}, {2, 10}, {3, 20470}}));
}

TEST_F(Janela_Estatísticas_Teste, ADoubleClickOpensTheQuestionInTheRegisterWithItsLine) {
    Cadastra_Perguntas(5);
    Conjunto_Conhecido();
    frmEstatísticas_Jogos janela;
    janela.dbMês_Final->setDate(QDate(2019, 12, 1));
    janela.tabGráficos->setCurrentWidget(janela.flxPerguntas);
    janela.cmdAtualiza_Click();
    QString pergunta, linha, título;
    QTimer::singleShot(0, [&] {
        auto* cadastro = dynamic_cast<frmPergunta*>(QApplication::activeModalWidget());
        ASSERT_NE(cadastro, nullptr);
        pergunta = cadastro->txtPergunta->toPlainText();
        linha = cadastro->lblEstatística->text();
        título = cadastro->windowTitle();
        cadastro->cmdSair_Click();
    });
    // Row 1 of the grid is question 2.
    emit janela.flxPerguntas->cellDoubleClicked(1, 2);
    EXPECT_EQ(pergunta, "Pergunta número 2?");
    EXPECT_EQ(linha, "Respondida 5 vezes, 0% de acertos");
    EXPECT_EQ(Nome_Janela, "frmEstatísticas_Jogos");
    // A question deleted since is told, not opened.
    janela.Abre_Pergunta(99);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, "A pergunta nº 99 não está mais no cadastro de perguntas.");

    // In the register, moving to a question never played shows so.
    frmPergunta cadastro;
    Tabela.Seek(4);
    cadastro.Exibir_Campos();
    EXPECT_EQ(cadastro.lblEstatística->text(), "Ainda não respondida");
    Tabela.Seek(1);
    cadastro.Exibir_Campos();
    EXPECT_EQ(cadastro.lblEstatística->text(), "Respondida 3 vezes, 67% de acertos");
}

TEST_F(Janela_Estatísticas_Teste, TheNumbersGoOutAsCsvAndAsAPrintedReport) {
    Cadastra_Perguntas(5);
    Conjunto_Conhecido();
    frmEstatísticas_Jogos janela;
    janela.dbMês_Final->setDate(QDate(2019, 12, 1));
    janela.cmdAtualiza_Click();
    const QString csv = Pasta.Caminho() + "/Relatórios/estatisticas.csv";
    Plataforma.Arquivos_Escolhidos.push_back(csv);
    janela.cmdExporta_Click();
    QFile arquivo(csv);
    ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
    const auto seções = Lê_CSV(arquivo.readAll());
    EXPECT_EQ(seções.value("Jogos e respostas por mês").value(2), (QStringList{"04/2019", "1", "5"}));
    EXPECT_EQ(seções.value("Acertos por pergunta").size(), 4);
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_TRUE(Plataforma.Caixas.last().Texto.startsWith("As estatísticas foram exportadas para "));
    // Cancelled: nothing written, nothing said.
    Plataforma.Caixas.clear();
    janela.cmdExporta_Click();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());

    QTimer::singleShot(0, [] {
        auto* diálogo = dynamic_cast<frmImpressão*>(QApplication::activeModalWidget());
        ASSERT_NE(diálogo, nullptr);
        diálogo->cmdOk_Click();
    });
    janela.cmdImprime_Click();
    ASSERT_EQ(Plataforma.Abertos.size(), 1);
    QFile rtf(Plataforma.Abertos[0]);
    ASSERT_TRUE(rtf.open(QIODevice::ReadOnly));
    const QString texto = De_Cp1252(rtf.readAll());
    EXPECT_TRUE(texto.startsWith("{\\rtf1"));
    EXPECT_TRUE(texto.contains("2 jogos, 10 respostas, 4 acertos (40%) e 1 pulos no período."));
    EXPECT_TRUE(texto.contains("AS 20 PERGUNTAS MAIS DIFÍCEIS"));
    EXPECT_TRUE(texto.contains("Pergunta número 2?"));
    EXPECT_TRUE(janela.cmdImprime->isEnabled());
}
