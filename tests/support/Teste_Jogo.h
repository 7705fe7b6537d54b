#pragma once
// What the tests of the game's windows share: a program installed for windows, the scripted platform, and
// a player's moves: the names typed, the right or a wrong answer found among those shown.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStringList>
#include <QTest>

#include "common/Globais.h"
#include "game/frmJogo.h"
#include "support/Teste_Janela.h"

class Teste_Jogo : public Teste_Janela {
  protected:
    void SetUp() override {
        Teste_Janela::SetUp();
        Tipo_Pergunta = "A";
        frmJogo::Ao_Terminar_Padrão = nullptr;
    }
    void TearDown() override {
        frmJogo::Ao_Terminar_Padrão = nullptr;
        Teste_Janela::TearDown();
    }

    // Where the right answer (certa) or the first wrong one stands among those shown; -1 when none does.
    static int Índice_Da(const frmJogo& j, bool certa) {
        for (int k = 0; k < 4; ++k) {
            const QString& r = j.Jogo.Respostas_Exibidas[k];
            if (!r.isEmpty() && (r == j.Jogo.Pergunta_Atual.Resposta_Correta) == certa) return k;
        }
        return -1;
    }
    static int Certa(const frmJogo& j) { return Índice_Da(j, true); }
    static int Errada(const frmJogo& j) { return Índice_Da(j, false); }

    // The names typed box by box, then the blank box after them (when there is one), which starts the game.
    static void Informa_Nomes(frmJogo& j, const QStringList& nomes) {
        for (int i = 0; i <= nomes.size() && i < Máximo_Jogadores; ++i) {
            j.txtJogador[i + 1]->setText(nomes.value(i));
            j.txtJogador_GotFocus(i + 1);
            j.txtJogador_Validate(i + 1);
            j.txtJogador_LostFocus(i + 1);
        }
    }

    // Shown and made the active window, as a click on it would, so that keys reach it.
    static void Ativa(QWidget& janela) {
        janela.show();
        QApplication::setActiveWindow(&janela);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&janela));
    }
};
