// The stored capitalisation, the progress estimate, the date check and the width of numbers.
#include <gtest/gtest.h>

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QTimer>
#include <QApplication>
#include <QProgressBar>
#include <QPushButton>

#include "forms/Formatação.h"
#include "platform/Plataforma_Qt.h"
#include "store/Funções_Banco.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

TEST(Formatacao, ConnectivesStaySmallOnlyBetweenBlanks) {
    EXPECT_EQ(Texto_Transformado("joão e maria da silva"), "João e Maria da Silva");
    EXPECT_EQ(Texto_Transformado("E DOS OUTROS"), "E dos Outros");
    EXPECT_EQ(Texto_Transformado("pedro e paulo e tiago"), "Pedro e Paulo e Tiago");
    EXPECT_EQ(Texto_Transformado("rio grande do norte"), "Rio Grande do Norte");
    EXPECT_EQ(Texto_Transformado("filhos das trevas, dos"), "Filhos das Trevas, Dos");
    EXPECT_EQ(Texto_Transformado("CPF do titular"), "Cpf do Titular");
    EXPECT_EQ(Texto_Transformado("beija-flor ÁGUA"), "Beija-flor Água");
    EXPECT_EQ(Texto_Transformado(""), "");
}

TEST(Formatacao, TransformingAWindowTouchesTextBoxesButNotEmptyOrMaskedOnes) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QDialog janela;
    auto* nome = new QLineEdit("MARIA DAS DORES", &janela);
    auto* vazio = new QLineEdit(&janela);
    auto* senha = new QLineEdit("SeGrEdO", &janela);
    senha->setEchoMode(QLineEdit::Password);
    Transformar_Campos(&janela);
    EXPECT_EQ(nome->text(), "Maria das Dores");
    EXPECT_EQ(vazio->text(), "");
    EXPECT_EQ(senha->text(), "SeGrEdO");
}

TEST(Formatacao, ProgressBarCopesWithZeroAndOverflowAndWritesTheEstimate) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QDialog janela;
    auto* barra = new QProgressBar(&janela);
    barra->setObjectName("pgbBarra_De_Progresso");

    Início_Progresso = plataforma.Relógio;
    Barra_de_Progresso(1, 0, 1, &janela);
    EXPECT_EQ(barra->minimum(), 1);
    EXPECT_EQ(barra->maximum(), 2);
    Barra_de_Progresso(1, 10, 25, &janela);
    EXPECT_EQ(barra->value(), barra->maximum());

    // 1,200 rows in 166.667 s leave 1,800 rows for 250 s.
    Início_Progresso = plataforma.Relógio.addMSecs(-166667);
    Barra_de_Progresso(1, 3000, 1200, &janela);
    EXPECT_EQ(barra->value(), 1200);
    EXPECT_EQ(janela.windowTitle(),
              "Terminará em 0 dias e 00:04:10 hs    Processando 1.200 de 3.000    (40,00%)");
    EXPECT_EQ(Texto_Progresso(3, 1, plataforma.Relógio.addDays(-1), plataforma.Relógio).left(25),
              "Terminará em 2 dias e 00:");
}

TEST(Formatacao, AWalkShowsEveryRowOnTheBarAndItsFirstAndLastRowsInTheCaption) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QDialog janela;
    auto* barra = new QProgressBar(&janela);
    barra->setObjectName("pgbBarra_De_Progresso");
    Início_Progresso = plataforma.Relógio;
    // Two walks of the same length on the same window: the second starts with its own caption.
    for (int vez = 0; vez < 2; ++vez) {
        bool todas = true;
        for (int linha = 1; linha <= 3000; ++linha) {
            Barra_de_Progresso(1, 3000, linha, &janela);
            todas = todas && barra->value() == linha;
            if (linha == 1) {
                EXPECT_EQ(janela.windowTitle(),
                          Texto_Progresso(3000, 1, Início_Progresso, plataforma.Relógio));
            }
        }
        EXPECT_TRUE(todas);
        EXPECT_EQ(janela.windowTitle(), Texto_Progresso(3000, 3000, Início_Progresso, plataforma.Relógio));
    }
    // Another window's walk finds its own bar.
    QDialog outra;
    auto* sua = new QProgressBar(&outra);
    sua->setObjectName("pgbBarra_De_Progresso");
    Barra_de_Progresso(1, 3000, 2, &outra);
    EXPECT_EQ(sua->value(), 2);
    EXPECT_EQ(barra->value(), 3000);
}

// The desktop's own cursor under the real platform, as a report's walk takes it: the progress and the
// printing icons in turn at every row, events let through now and then.
TEST(Formatacao, AWalksBusyCursorsShowTheLastIconAskedAndLeaveTheDesktopsCursorAsItWas) {
    Pasta_Teste pasta;
    QDir().mkpath(pasta.Caminho() + "/Ícones");
    for (const QString ícone : {"Processamento.Ico", "Impressão.Ico"})
        ASSERT_TRUE(QFile::copy(QString(QUIZORA_FONTES) + "/resources/Ícones/" + ícone,
                                pasta.Caminho() + "/Ícones/" + ícone));
    Plataforma_Qt plataforma({});
    Plataforma* anterior = Define_Plataforma(&plataforma);
    const auto imagem_atual = [] {
        const QCursor* cursor = QGuiApplication::overrideCursor();
        return cursor != nullptr ? cursor->pixmap().toImage() : QImage();
    };
    const auto profundidade = [] {
        int n = 0;
        for (; QGuiApplication::overrideCursor() != nullptr; ++n) QGuiApplication::restoreOverrideCursor();
        return n;
    };
    const QImage impressão = QCursor(QPixmap(pasta.Caminho() + "/Ícones/Impressão.Ico")).pixmap().toImage();
    const QImage processamento =
        QCursor(QPixmap(pasta.Caminho() + "/Ícones/Processamento.Ico")).pixmap().toImage();
    ASSERT_FALSE(impressão.isNull());
    for (int linha = 0; linha < 50; ++linha) {
        Ponteiro_Ocupado progresso(Ícone_Processamento);
        {
            Ponteiro_Ocupado impressão_linha("Impressão.Ico");
            if (linha == 20) {
                // Events pass while the printing icon is asked: the desktop shows it.
                QCoreApplication::processEvents();
                EXPECT_EQ(imagem_atual(), impressão);
            }
        }
        if (linha % 7 == 0) plataforma.Processa_Eventos_Da_Caminhada();
    }
    QCoreApplication::processEvents();
    const bool normal = QGuiApplication::overrideCursor() == nullptr;
    EXPECT_TRUE(normal) << "cursores ainda empilhados: " << profundidade();
    // A busy cursor left to the events and taken again before they pass stays up, once.
    {
        { Ponteiro_Ocupado um(Ícone_Processamento); }
        Ponteiro_Ocupado outro("Impressão.Ico");
        QCoreApplication::processEvents();
        EXPECT_EQ(imagem_atual(), impressão);
        // A box asked while another icon waits for the events: the arrow over the box, the icon asked
        // after it.
        Ponteiro_Ocupado progresso(Ícone_Processamento);
        QImage na_caixa;
        QTimer::singleShot(0, [&] {
            na_caixa = imagem_atual();
            if (QWidget* caixa = QApplication::activeModalWidget()) caixa->close();
        });
        plataforma.Caixa_Mensagem("Teste", "Quizora", Ícone_Caixa::Informação, Botões_Caixa::Ok);
        EXPECT_TRUE(na_caixa.isNull()) << "a caixa sem a seta";
        QCoreApplication::processEvents();
        EXPECT_EQ(imagem_atual(), processamento);
        EXPECT_EQ(profundidade(), 1);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(profundidade(), 0);
    Define_Plataforma(anterior);
}

TEST(Formatacao, IconPathsFollowTheProgramFolder) {
    Pasta_Teste uma;
    const QString primeiro = Caminho_Ícone("Alteração.Ico");
    EXPECT_EQ(primeiro, uma.Caminho() + "/Ícones/Alteração.Ico");
    {
        Pasta_Teste outra;
        EXPECT_EQ(Caminho_Ícone("Alteração.Ico"), outra.Caminho() + "/Ícones/Alteração.Ico");
        EXPECT_EQ(Caminho_Ícone("Processamento.Ico"), outra.Caminho() + "/Ícones/Processamento.Ico");
    }
}

TEST(Formatacao, DateCheckAsksForAValidDateUnlessLeavingOrEmptyIsAllowed) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QDialog janela;
    auto* cancelar = new QPushButton(&janela);
    cancelar->setObjectName("cmdCancelar");

    EXPECT_TRUE(Calendário("23/11/2026", false, &janela));
    EXPECT_TRUE(Calendário("", true, &janela));
    EXPECT_TRUE(plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Calendário("", false, &janela));
    EXPECT_FALSE(Calendário("31/02/2026", false, &janela));
    ASSERT_EQ(plataforma.Caixas.size(), 2);
    EXPECT_EQ(plataforma.Caixas[0].Texto, "Informe uma data válida!!!");
    cancelar->setDown(true);
    EXPECT_TRUE(Calendário("não é data", false, &janela));
    EXPECT_EQ(plataforma.Caixas.size(), 2);
}

TEST(Formatacao, NumberWidthCountsSignAndPoint) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    EXPECT_EQ(Lennum(1234), 4);
    EXPECT_EQ(Lennum(-1.5), 4);
    EXPECT_EQ(Lennum(0), 1);
}
