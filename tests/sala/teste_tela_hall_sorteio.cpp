// The hall of fame and the raffle on their room screens: what the window shows, in large type; the raffle's
// spin number by number; F11 and Escape go back to the window, which stays open.
#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

#include "common/Globais.h"
#include "game/frmHall.h"
#include "game/frmSorteio.h"
#include "sala/frmTela_Hall.h"
#include "sala/frmTela_Sorteio.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Teste_Janela.h"

namespace {
// The offscreen screen is smaller than a projector's: the room screen is laid out as on 1920 by 1080.
void Em_Projetor(Tela_Sala& tela) {
    tela.setWindowState(Qt::WindowNoState);
    tela.resize(1920, 1080);
    QApplication::processEvents();
}
class Tela_Hall_Sorteio_Teste : public Teste_Janela {
  protected:
    static void Inclui_Pontuação(const QString& jogador, double pontos) {
        Tabela_Terciária.Reinicia();
        Abre_Tabela_Terciária("tblPontuação");
        Tabela_Terciária.AddNew();
        Tabela_Terciária.Fields("Jogador").Set_Value(jogador);
        Tabela_Terciária.Fields("Pontuação").Set_Value(pontos);
        Tabela_Terciária.Update();
        Tabela_Terciária.Reinicia();
    }
    static QStringList Contemplados(const frmTela_Sorteio& t) {
        QStringList n;
        for (const Rótulo_Sala* r : t.lblNúmero_Contemplado) n << r->Texto();
        return n;
    }
    static QStringList Contemplados(const frmSorteio& j) {
        QStringList n;
        for (const QLineEdit* c : j.nbNúmero_Contemplado) n << c->text();
        return n;
    }
};
}  // namespace

TEST_F(Tela_Hall_Sorteio_Teste, TheHallFromTheMenuShowsItsListOnTheRoomScreenAndEscapeLeavesTheWindowOpen) {
    Inclui_Pontuação("01/02/2026 Ana", 40);
    Inclui_Pontuação("02/02/2026 Bruno", 1250);
    Inclui_Pontuação("03/02/2026 Caio", 7);
    frmHall hall;
    hall.show();
    QApplication::processEvents();
    EXPECT_FALSE(hall.Tela_Da_Sala->isVisible());  // no room screen is up: the hall opens as a window

    QApplication::setActiveWindow(&hall);
    QTest::keyClick(&hall, Qt::Key_F11);
    frmTela_Hall& tela = *hall.Tela_Da_Sala;
    ASSERT_TRUE(tela.isVisible());
    Em_Projetor(tela);
    EXPECT_EQ(tela.lblTítulo->Texto(), "Hall da Fama");
    const QStringList linhas = tela.Linhas_Hall();
    ASSERT_EQ(linhas.size(), 10);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(linhas[i], " |  | ") << i;  // the list fills from the bottom
    EXPECT_EQ(linhas[7], "8º. | 02/02/2026 Bruno | 1.250 pts");
    EXPECT_EQ(linhas[8], "9º. | 01/02/2026 Ana | 40 pts");
    EXPECT_EQ(linhas[9], "10º. | 03/02/2026 Caio | 7 pts");
    EXPECT_TRUE(tela.Linhas_Jogo().isEmpty());  // from the menu: no game ranking, no remark
    EXPECT_FALSE(tela.lblJogo->isVisible());
    EXPECT_TRUE(tela.lblComentário->Texto().isEmpty());
    EXPECT_GE(tela.lblTítulo->Pixels(), 60);

    QTest::keyClick(&tela, Qt::Key_Escape);
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(hall.isVisible());
    QApplication::setActiveWindow(&hall);  // the desktop gives the window the keyboard back
    QTest::keyClick(&hall, Qt::Key_F11);
    EXPECT_TRUE(tela.isVisible());
    QTest::keyClick(&tela, Qt::Key_F11);
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(hall.isVisible());
    hall.hide();
}

TEST_F(Tela_Hall_Sorteio_Teste, TheRaffleSpinsOnTheRoomScreenNumberByNumberAndItsButtonIsTheWindows) {
    frmSorteio sorteio;
    sorteio.show();
    sorteio.nbNúmero_Final->setValue(2);
    frmTela_Sorteio& tela = *sorteio.Tela_Da_Sala;
    tela.Mostra();
    Em_Projetor(tela);
    EXPECT_EQ(tela.lblFaixa->Texto(), "de 1 a 2");
    EXPECT_EQ(tela.lblNúmero_Sorteado->Texto(), "999999");
    EXPECT_GE(tela.lblNúmero_Sorteado->Pixels(), 200);

    QSignalSpy clique(sorteio.cmdSorteia, &QAbstractButton::clicked);
    int vistos = 0;
    Plataforma.Ao_Esperar = [&] {
        ++vistos;
        EXPECT_EQ(tela.lblNúmero_Sorteado->Texto(), sorteio.nbNúmero_Sorteado->text());
        EXPECT_TRUE(tela.lblContemplados->Texto().isEmpty());  // the list hides while the number spins
    };
    QTest::mouseClick(tela.cmdSorteia, Qt::LeftButton);
    EXPECT_EQ(clique.count(), 1);
    EXPECT_GT(vistos, 50);
    EXPECT_EQ(tela.lblNúmero_Sorteado->Texto(), sorteio.nbNúmero_Sorteado->text());
    EXPECT_EQ(tela.lblContemplados->Texto(), "Números Já Contemplados:");
    EXPECT_EQ(Contemplados(tela), Contemplados(sorteio));
    EXPECT_EQ(Contemplados(tela)[0], sorteio.nbNúmero_Sorteado->text());

    QTest::mouseClick(tela.cmdSorteia, Qt::LeftButton);
    Plataforma.Ao_Esperar = nullptr;
    const QString último = sorteio.nbNúmero_Sorteado->text();
    EXPECT_EQ(Contemplados(tela), Contemplados(sorteio));
    // All numbers drawn: message 24, and the room screen keeps the result and the list.
    QTest::mouseClick(tela.cmdSorteia, Qt::LeftButton);
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Plataforma.Caixas.last().Texto,
              "Todos os números compreendidos dentro da faixa para Sorteio já foram contemplados!!!");
    EXPECT_EQ(tela.lblNúmero_Sorteado->Texto(), último);
    EXPECT_EQ(Contemplados(tela), Contemplados(sorteio));
    // The range follows the window's box.
    sorteio.nbNúmero_Final->setValue(30);
    EXPECT_EQ(tela.lblFaixa->Texto(), "de 1 a 30");

    QTest::keyClick(&tela, Qt::Key_Escape);
    EXPECT_FALSE(tela.isVisible());
    EXPECT_TRUE(sorteio.isVisible());
    sorteio.hide();
}
