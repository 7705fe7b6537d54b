// The game windows driven offscreen with the scripted platform, on a real database.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QTest>
#include <QTimer>

#include "common/Globais.h"
#include "game/frmInício_Jogo.h"
#include "game/frmJogo.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Jogo.h"

namespace {
class Janela_Jogo_Teste : public Teste_Jogo {
  protected:
    // A radio button or a check box takes the click on its mark and its text, at the left.
    static void Clica(QAbstractButton* botão) {
        QTest::mouseClick(botão, Qt::LeftButton, {}, QPoint(8, botão->height() / 2));
    }

    // Ten earlier scores, "<data> Antigo i" with i times passo points.
    static void Preenche_Hall(const QString& data, double passo) {
        Tabela_Terciária.Reinicia();
        Abre_Tabela_Terciária("tblPontuação");
        for (int i = 1; i <= 10; ++i) {
            Tabela_Terciária.AddNew();
            Tabela_Terciária.Fields("Jogador").Set_Value(QString("%1 Antigo %2").arg(data).arg(i));
            Tabela_Terciária.Fields("Pontuação").Set_Value(i * passo);
            Tabela_Terciária.Update();
        }
        Tabela_Terciária.Reinicia();
    }

    static int Linhas(const QString& comando) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária(comando);
        const int n = Tabela_Quaternária.RecordCount();
        return n;
    }
};
}  // namespace

TEST_F(Janela_Jogo_Teste, AnEmptyBankShowsMessage102AndLeavesOnlyTheExitButton) {
    frmJogo janela;
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_FALSE(janela.fraJogadores->isEnabled());
    EXPECT_FALSE(janela.fraResposta->isEnabled());
    EXPECT_FALSE(janela.fraAjuda->isEnabled());
    EXPECT_TRUE(janela.cmdSair->isEnabled());
    EXPECT_EQ(janela.windowTitle(), "Existem atualmente 0 perguntas cadastradas...");
}

TEST_F(Janela_Jogo_Teste, TheStartingWindowChoosesTheKindOfQuestions) {
    frmInício_Jogo início;
    EXPECT_EQ(início.windowTitle(), "Início do Jogo");
    início.Define_Tipo_Pergunta();
    EXPECT_EQ(Tipo_Pergunta, "A");
    início.optTipo_Pergunta[1]->setChecked(true);
    início.Define_Tipo_Pergunta();
    EXPECT_EQ(Tipo_Pergunta, "B");
    início.optTipo_Pergunta[0]->setChecked(true);
    início.Define_Tipo_Pergunta();
    EXPECT_EQ(Tipo_Pergunta, "G");
}

TEST_F(Janela_Jogo_Teste, TwoCompetitorsPlayUntilBothDropOutAndGoToTheHallOfFame) {
    Cadastra_Perguntas(30);
    int halls = 0;
    frmJogo::Ao_Terminar_Padrão = [&halls](frmJogo& j) {
        ++halls;
        EXPECT_FALSE(j.fraResposta->isEnabled());
    };
    frmJogo janela;
    janela.show();
    EXPECT_EQ(janela.windowTitle(), "Existem atualmente 30 perguntas cadastradas...");
    EXPECT_TRUE(janela.fraJogadores->isEnabled());
    EXPECT_FALSE(janela.fraResposta->isEnabled());
    EXPECT_EQ(janela.lblPontuação[1]->text(), "        0 pts");
    EXPECT_EQ(janela.lblNível[1]->text(), "1");

    Informa_Nomes(janela, {"ANA MARIA", "bruno"});
    EXPECT_EQ(janela.txtJogador[1]->text(), "Ana maria");
    EXPECT_EQ(janela.txtJogador[2]->text(), "Bruno");
    EXPECT_FALSE(janela.fraJogadores->isEnabled());
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "ANA MARIA, agora é a sua vez de jogar. Boa Sorte!!!");
    EXPECT_EQ(janela.lblJogador_Atual->text(), "Ana maria");
    EXPECT_EQ(janela.lblPontuação_1->text(), "Valendo");
    EXPECT_EQ(janela.lblPontuação_2->text().trimmed(), "10");
    EXPECT_FALSE(janela.lblPergunta->text().isEmpty());
    // A screen reader hears each answer, as a player reads it.
    for (QRadioButton* opção : janela.optResposta) {
        if (opção->isEnabled()) {
            EXPECT_EQ(opção->accessibleName(), opção->text().replace("&&", "&"));
        }
    }
    int turnos = 1;

    // Ana answers right: 10 points, level 2, the next question worth 20.
    int k = Certa(janela);
    ASSERT_GE(k, 0);
    Clica(janela.optResposta[k]);
    EXPECT_EQ(janela.lblPontuação[1]->text(), "       10 pts");
    EXPECT_EQ(janela.lblNível[1]->text(), "2");
    EXPECT_EQ(janela.lblResposta_Usuário[0]->text(), "Selecione uma");  // Bruno's turn has begun
    EXPECT_EQ(Plataforma.Sons.last(), Caminho_Programa() + "/Sons/acerto.wav");
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "BRUNO, agora é a sua vez de jogar. Boa Sorte!!!");
    ++turnos;

    // Bruno asks the die; no answer gets through while it rolls.
    ASSERT_EQ(janela.Jogo.Jogador_Atual, 2);
    int tentativas_durante = 0;
    Plataforma.Ao_Esperar = [&] {
        ++tentativas_durante;
        EXPECT_TRUE(janela.Dado_Rolando());
        EXPECT_FALSE(janela.fraResposta->isEnabled());
        janela.optResposta_Click(Certa(janela));
        janela.chkAjuda_Click(4);
    };
    const int sonos_antes = Plataforma.Sonos.size();
    Clica(janela.chkAjuda[3]);
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_GT(tentativas_durante, 0);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, 2);
    EXPECT_EQ(janela.Jogo.Pontos[2], 0);
    EXPECT_TRUE(janela.fraResposta->isEnabled());
    EXPECT_FALSE(janela.fraAjuda->isEnabled());
    EXPECT_TRUE(janela.chkAjuda[3]->isHidden());
    EXPECT_TRUE(janela.Jogo.Ajuda_Disponível[2][4]);  // the apostles were refused during the roll
    EXPECT_GT(Plataforma.Sonos.size(), sonos_antes);  // the die paused between faces
    for (int s = sonos_antes; s < Plataforma.Sonos.size(); ++s) EXPECT_EQ(Plataforma.Sonos[s], 250);
    EXPECT_EQ(janela.lblResposta_Usuário[0]->text(), "Respostas");
    const int eliminar = janela.lblResposta_Usuário[3]->text().toInt();
    EXPECT_GE(eliminar, 1);
    EXPECT_LE(eliminar, 3);
    int vazias = 0;
    for (int i = 0; i < 4; ++i) vazias += janela.optResposta[i]->text().isEmpty() ? 1 : 0;
    EXPECT_EQ(vazias, eliminar);
    // A blanked answer does nothing.
    for (int i = 0; i < 4; ++i)
        if (janela.Jogo.Respostas_Exibidas[i].isEmpty()) janela.optResposta_Click(i);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, 2);
    // Bruno answers right after the die.
    Clica(janela.optResposta[Certa(janela)]);
    EXPECT_EQ(janela.Jogo.Pontos[2], 10);
    ++turnos;

    // Ana skips: no points, the value goes from 20 to 16.
    ASSERT_EQ(janela.Jogo.Jogador_Atual, 1);
    Clica(janela.chkAjuda[1]);
    EXPECT_FALSE(janela.Jogo.Ajuda_Disponível[1][0]);
    EXPECT_EQ(janela.Jogo.Valor_Jogador[1], 16);
    EXPECT_EQ(janela.Jogo.Pontos[1], 10);
    ++turnos;

    // From now on both err until they drop out.
    int saídas = 0;
    for (int volta = 0; volta < 40 && janela.fraResposta->isEnabled(); ++volta) {
        const int jogador = janela.Jogo.Jogador_Atual;
        const int visíveis_antes = [&] {
            int n = 0;
            for (QCheckBox* c : janela.chkAjuda) n += c->isHidden() ? 0 : 1;
            return n;
        }();
        k = Errada(janela);
        ASSERT_GE(k, 0);
        Clica(janela.optResposta[k]);
        EXPECT_EQ(Plataforma.Sons.last(), Caminho_Programa() + "/Sons/erro.wav");
        if (visíveis_antes == 0) {
            ++saídas;
            EXPECT_FALSE(janela.Jogo.Ativo[jogador]);
            bool avisado = false;
            for (const Caixa_Mostrada& c : Plataforma.Caixas)
                avisado =
                    avisado || c.Texto == janela.Jogo.Nome_Jogador[jogador].toUpper() +
                                              ", você errou e já utilizou todas as ajudas disponíveis!!! O "
                                              "jogo continuará para os demais competidores...";
            EXPECT_TRUE(avisado);
        }
        if (janela.fraResposta->isEnabled()) ++turnos;
    }
    EXPECT_EQ(saídas, 2);
    // The last answer stays on screen, the right one highlighted.
    EXPECT_TRUE(janela.optResposta[Certa(janela)]->font().bold());
    EXPECT_TRUE(janela.Jogo.Terminado);
    EXPECT_EQ(halls, 1);
    EXPECT_FALSE(janela.fraResposta->isEnabled());
    EXPECT_FALSE(janela.fraAjuda->isEnabled());
    EXPECT_FALSE(janela.fraJogadores->isEnabled());
    EXPECT_EQ(janela.Jogo.Pontos[1], 10);
    EXPECT_EQ(janela.Jogo.Pontos[2], 10);
    // The remark of the last answer goes with the hall.
    for (QLabel* l : janela.lblResposta_Usuário) EXPECT_EQ(l->text(), "");

    // Every turn left a row in the history, dated today, and no question came twice.
    EXPECT_EQ(Linhas("Select * From tblPergunta_Já_Mostrada Order By Data_Jogo"), turnos);
    QSet<int> códigos;
    for (Tabela_Quaternária.MoveFirst(); !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext()) {
        códigos.insert(Tabela_Quaternária.Fields("Código_Pergunta").Value().toInt());
        EXPECT_EQ(Tabela_Quaternária.Fields("Data_Jogo").Value().toDateTime().date(), QDate(2019, 3, 14));
    }
    EXPECT_EQ(códigos.size(), turnos);

    // Both competitors stand in the hall of fame.
    ASSERT_EQ(Linhas("Select * From tblPontuação"), 2);
    QStringList jogadores;
    for (Tabela_Quaternária.MoveFirst(); !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext()) {
        jogadores << Tabela_Quaternária.Fields("Jogador").Value().toString().trimmed();
        EXPECT_EQ(Tabela_Quaternária.Fields("Pontuação").Value().toDouble(), 10);
    }
    jogadores.sort();
    EXPECT_EQ(jogadores, QStringList({"14/03/2019 Ana maria", "14/03/2019 Bruno"}));
    Tabela_Quaternária.Reinicia();
}

TEST_F(Janela_Jogo_Teste, TheHallOfFameKeepsTheBestTen) {
    Cadastra_Perguntas(5);
    Preenche_Hall("01/01/2025", 5);  // 5 to 50

    frmJogo janela;
    janela.show();
    Informa_Nomes(janela, {"carla"});
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    Clica(janela.optResposta[Certa(janela)]);  // 10 points
    for (int volta = 0; volta < 10 && janela.fraResposta->isEnabled(); ++volta)
        Clica(janela.optResposta[Errada(janela)]);
    ASSERT_TRUE(janela.Jogo.Terminado);

    ASSERT_EQ(Linhas("Select * From tblPontuação"), 10);
    QStringList jogadores;
    for (Tabela_Quaternária.MoveFirst(); !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext())
        jogadores << Tabela_Quaternária.Fields("Jogador").Value().toString().trimmed();
    EXPECT_TRUE(jogadores.contains("14/03/2019 Carla"));
    EXPECT_FALSE(jogadores.contains("01/01/2025 Antigo 1"));  // 5 points: the lowest goes
    EXPECT_TRUE(jogadores.contains("01/01/2025 Antigo 2"));   // 10 points, ties with Carla and stays
    Tabela_Quaternária.Reinicia();
}

// The cut keeps scores whatever the names: a trailing blank, an empty name of a surplus competitor.
TEST_F(Janela_Jogo_Teste, TheCutToTenDeletesTheLowestScoresOnly) {
    Cadastra_Perguntas(5);
    Preenche_Hall("01/01/2018", 10);  // 10 to 100

    frmJogo janela;
    janela.Jogo.Quantidade_Jogadores = 3;
    janela.Jogo.Nome_Jogador = {"", "Ana ", "", "Bia", "", ""};
    janela.Jogo.Pontos = {0, 1000, 900, 5, 0, 0};
    janela.Jogo.Ativo = {false, false, false, false, false, false};
    janela.Próximo_Competidor();  // nobody left on: the game ends

    ASSERT_EQ(Linhas("Select * From tblPontuação"), 10);
    QList<double> pontos;
    for (Tabela_Quaternária.MoveFirst(); !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext())
        pontos << Tabela_Quaternária.Fields("Pontuação").Value().toDouble();
    std::sort(pontos.begin(), pontos.end());
    EXPECT_EQ(pontos, (QList<double>{30, 40, 50, 60, 70, 80, 90, 100, 900, 1000}));
    Tabela_Quaternária.Reinicia();
}

// Enter walks the controls: it neither spends a focused help nor answers with a focused answer.
TEST_F(Janela_Jogo_Teste, EnterOnAHelpOrAnAnswerMovesOnAndChangesNothing) {
    Cadastra_Perguntas(5);
    frmJogo janela;
    janela.show();
    QApplication::setActiveWindow(&janela);
    Informa_Nomes(janela, {"ana"});
    ASSERT_TRUE(janela.fraResposta->isEnabled());
    const Estado_Jogo antes = janela.Jogo;

    janela.chkAjuda[0]->setFocus();
    QTest::keyClick(janela.chkAjuda[0], Qt::Key_Return);
    EXPECT_FALSE(janela.chkAjuda[0]->isChecked());
    EXPECT_TRUE(janela.Jogo.Ajuda_Disponível[1][0]);
    EXPECT_NE(QApplication::focusWidget(), janela.chkAjuda[0]);

    const int k = Certa(janela);
    janela.optResposta[k]->setFocus();
    QTest::keyClick(janela.optResposta[k], Qt::Key_Enter);
    EXPECT_FALSE(janela.optResposta[k]->isChecked());
    EXPECT_EQ(janela.Jogo.Pontos[1], antes.Pontos[1]);
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Código_Pergunta, antes.Pergunta_Atual.Código_Pergunta);
    EXPECT_NE(QApplication::focusWidget(), janela.optResposta[k]);

    // A command button still takes Enter as a click.
    janela.cmdSair->setFocus();
    QTest::keyClick(janela.cmdSair, Qt::Key_Return);
    EXPECT_FALSE(janela.isVisible());
}
