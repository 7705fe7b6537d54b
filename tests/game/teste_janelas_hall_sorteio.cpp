// The hall of fame and the raffle windows driven offscreen with the scripted platform.
#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSpinBox>
#include <QTimer>

#include "common/Globais.h"
#include "game/frmHall.h"
#include "game/frmSorteio.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
const QString Texto_Mensagem_24 =
    "Todos os números compreendidos dentro da faixa para Sorteio já foram contemplados!!!";

class Janelas_Hall_Sorteio_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa();
        Plataforma.Caixas.clear();
    }

    void Inclui_Pontuação(const QString& jogador, double pontos) {
        Operação = "Inclusão";
        Tabela_Terciária.Reinicia();
        Abre_Tabela_Terciária("tblPontuação");
        Inicia_Transação();
        Tabela_Terciária.AddNew();
        Tabela_Terciária.Fields("Jogador").Set_Value(jogador);
        Tabela_Terciária.Fields("Pontuação").Set_Value(pontos);
        Grava(Tabela_Terciária, false);
        Finaliza_Transação();
        Tabela_Terciária.Reinicia();
    }

    static QList<int> Contemplados(const frmSorteio& janela) {
        QList<int> números;
        for (QLineEdit* caixa : janela.nbNúmero_Contemplado) {
            if (!caixa->text().isEmpty()) números << caixa->text().toInt();
        }
        return números;
    }
};
}  // namespace

TEST_F(Janelas_Hall_Sorteio_Teste, HallListsStoredRowsBestFirstFromTheBottomLine) {
    Inclui_Pontuação("01/02/2026 Ana", 40);
    Inclui_Pontuação("02/02/2026 Bruno", 3000000000.0);
    Inclui_Pontuação("03/02/2026 Carla", 7);
    ASSERT_TRUE(Plataforma.Caixas.isEmpty());

    frmHall janela;
    EXPECT_EQ(janela.windowTitle(), "Hall da Fama");
    EXPECT_EQ(janela.Tópico_Ajuda, "Hall da Fama");
    for (int linha = 0; linha < 7; ++linha) {
        EXPECT_EQ(janela.lblColocação[linha]->text(), "") << linha;
        EXPECT_EQ(janela.lblJogador[linha]->text(), "") << linha;
    }
    EXPECT_EQ(janela.lblColocação[7]->text(), "8º.");
    EXPECT_EQ(janela.lblJogador[7]->text(), "02/02/2026 Bruno");
    EXPECT_EQ(janela.lblPontuação[7]->text(), "3.000.000.000 pts");
    EXPECT_EQ(janela.lblColocação[8]->text(), "9º.");
    EXPECT_EQ(janela.lblJogador[8]->text(), "01/02/2026 Ana");
    EXPECT_EQ(janela.lblPontuação[8]->text(), "       40 pts");
    EXPECT_EQ(janela.lblColocação[9]->text(), "10º.");
    EXPECT_EQ(janela.lblJogador[9]->text(), "03/02/2026 Carla");
    EXPECT_EQ(janela.lblPontuação[9]->text(), "        7 pts");
    // Opened from the menu: no game ranking and no closing remark.
    EXPECT_EQ(janela.lblJogador_Jogo[0]->text(), "");
    EXPECT_EQ(janela.lblResposta_1->text(), "");
    EXPECT_EQ(janela.lblResposta_2->text(), "");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
}

TEST_F(Janelas_Hall_Sorteio_Teste, HallWithTenRowsPutsTheBestOnTopAndRanksTheGameJustEnded) {
    for (int i = 1; i <= 10; ++i)
        Inclui_Pontuação(QString("0%1/03/2026 Jogador %2").arg(i % 10).arg(i), i * 10);
    Estado_Jogo jogo;
    jogo.Quantidade_Jogadores = 3;
    jogo.Nome_Jogador[1] = "Davi";
    jogo.Nome_Jogador[2] = "Eva";
    jogo.Nome_Jogador[3] = "Flora";
    jogo.Pontos[1] = 0;
    jogo.Pontos[2] = 0;
    jogo.Pontos[3] = 55;

    frmHall janela(nullptr, &jogo);
    EXPECT_EQ(janela.lblColocação[0]->text(), "1º.");
    EXPECT_EQ(janela.lblJogador[0]->text(), "00/03/2026 Jogador 10");
    EXPECT_EQ(janela.lblPontuação[0]->text(), "      100 pts");
    EXPECT_EQ(janela.lblColocação[9]->text(), "10º.");
    EXPECT_EQ(janela.lblJogador[9]->text(), "01/03/2026 Jogador 1");

    EXPECT_EQ(janela.lblColocação_Jogo[0]->text(), "1º.");
    EXPECT_EQ(janela.lblJogador_Jogo[0]->text(), "Flora");
    EXPECT_EQ(janela.lblPontuação_Jogo[0]->text(), "       55 pts");
    // Equal points: the higher number first, each with a place of its own.
    EXPECT_EQ(janela.lblColocação_Jogo[1]->text(), "2º.");
    EXPECT_EQ(janela.lblJogador_Jogo[1]->text(), "Eva");
    EXPECT_EQ(janela.lblPontuação_Jogo[1]->text(), "        0 pts");
    EXPECT_EQ(janela.lblColocação_Jogo[2]->text(), "3º.");
    EXPECT_EQ(janela.lblJogador_Jogo[2]->text(), "Davi");
    EXPECT_EQ(janela.lblJogador_Jogo[3]->text(), "");
    EXPECT_EQ(janela.lblResposta_1->text(), "Término do jogo!!!");
    EXPECT_EQ(janela.lblResposta_2->text(), "Confira a classificação...");

    janela.cmdSair_Click();
    EXPECT_EQ(janela.result(), QDialog::Accepted);
    EXPECT_FALSE(Em_Cadastro);
}

TEST_F(Janelas_Hall_Sorteio_Teste, EmptyHallShowsNothing) {
    frmHall janela;
    for (int linha = 0; linha < Linhas_Hall; ++linha) EXPECT_EQ(janela.lblJogador[linha]->text(), "");
    EXPECT_EQ(janela.lblResposta_1->text(), "");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
}

TEST_F(Janelas_Hall_Sorteio_Teste, RaffleFromOneToFiveDrawsFiveDistinctNumbersThenMessage24) {
    frmSorteio janela;
    EXPECT_EQ(janela.windowTitle(), "Sorteio de Contemplados");
    EXPECT_EQ(janela.Tópico_Ajuda, "Sorteio de Contemplados");
    EXPECT_EQ(janela.nbNúmero_Final->value(), 1);
    EXPECT_EQ(janela.nbNúmero_Sorteado->text(), "999999");
    janela.nbNúmero_Final->setValue(5);
    Plataforma.Cursores.clear();

    QList<int> sorteados;
    for (int vez = 0; vez < 5; ++vez) {
        const int eventos_antes = Plataforma.Eventos_Processados;
        janela.cmdSorteia_Click();
        ASSERT_TRUE(Plataforma.Caixas.isEmpty()) << vez;
        // The display spun through many numbers before settling.
        EXPECT_GT(Plataforma.Eventos_Processados - eventos_antes, 300) << vez;
        const int número = janela.nbNúmero_Sorteado->text().toInt();
        EXPECT_GE(número, 1);
        EXPECT_LE(número, 5);
        sorteados.prepend(número);
        EXPECT_EQ(Contemplados(janela), sorteados) << vez;
        EXPECT_TRUE(janela.fraSorteio->isVisibleTo(&janela));
    }
    const QSet<int> distintos(sorteados.begin(), sorteados.end());
    EXPECT_EQ(distintos, (QSet<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(Plataforma.Cursores.filter("Processamento.Ico").size(), 5);

    const QString último = janela.nbNúmero_Sorteado->text();
    janela.cmdSorteia_Click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, Texto_Mensagem_24);
    // The previous result and the list stay on screen; nothing more is drawn.
    EXPECT_EQ(janela.nbNúmero_Sorteado->text(), último);
    EXPECT_EQ(Contemplados(janela), sorteados);
    EXPECT_EQ(janela.Sorteio.Números_Sorteados.size(), 5);
    EXPECT_FALSE(janela.Sorteando());
}

TEST_F(Janelas_Hall_Sorteio_Teste, PressDuringASpinDoesNothing) {
    frmSorteio janela;
    janela.nbNúmero_Final->setValue(10);
    int segundas = 0;
    int sorteados_durante = -1;
    bool oculto_durante = false;
    Plataforma.Ao_Esperar = [&] {
        if (segundas > 0) return;
        ++segundas;
        EXPECT_TRUE(janela.Sorteando());
        oculto_durante = !janela.fraSorteio->isVisibleTo(&janela);
        janela.cmdSorteia->click();
        janela.cmdSair_Click();
        sorteados_durante = static_cast<int>(janela.Sorteio.Números_Sorteados.size());
    };
    janela.cmdSorteia_Click();
    Plataforma.Ao_Esperar = nullptr;

    EXPECT_EQ(segundas, 1);
    EXPECT_TRUE(oculto_durante);
    // The number in spin is already kept; the second press added none and the exit waited for the draw.
    EXPECT_EQ(sorteados_durante, 1);
    EXPECT_EQ(janela.Sorteio.Números_Sorteados.size(), 1);
    EXPECT_EQ(Contemplados(janela), QList<int>{janela.Sorteio.Números_Sorteados[0]});
    EXPECT_EQ(janela.result(), QDialog::Rejected);
    EXPECT_FALSE(janela.Sorteando());
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());

    // Once the spin is over a press draws again.
    janela.cmdSorteia->click();
    EXPECT_EQ(janela.Sorteio.Números_Sorteados.size(), 2);
    EXPECT_NE(janela.Sorteio.Números_Sorteados[0], janela.Sorteio.Números_Sorteados[1]);
}

TEST_F(Janelas_Hall_Sorteio_Teste, RaffleOfOneShowsOneThenMessage24) {
    frmSorteio janela;
    janela.cmdSorteia_Click();
    EXPECT_EQ(janela.nbNúmero_Sorteado->text(), "1");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    janela.cmdSorteia_Click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, Texto_Mensagem_24);
    EXPECT_EQ(janela.nbNúmero_Sorteado->text(), "1");
}
