// The control kinds of the register windows: the check on leaving a control, the date and number boxes,
// the flex grid, and the clearing of a window's fields.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

#include "forms/Cadastro.h"
#include "forms/Controles.h"
#include "search/frmLocaliza_Informação.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

TEST(Controles, ARefusedValidateKeepsTheFocusAndSwallowsTheClickButACancelButtonPassesFreely) {
    Plataforma_Roteirizada plataforma;
    QWidget janela;
    auto* layout = new QVBoxLayout(&janela);
    auto* campo = new QLineEdit(&janela);
    auto* outro = new QLineEdit(&janela);
    auto* gravar = new QPushButton("Gravar", &janela);
    auto* cancelar = new QPushButton("Cancelar", &janela);
    for (QWidget* w : {static_cast<QWidget*>(campo), static_cast<QWidget*>(outro),
                       static_cast<QWidget*>(gravar), static_cast<QWidget*>(cancelar)})
        layout->addWidget(w);
    Define_CausesValidation(cancelar, false);
    int verificações = 0;
    Instala_Validate(campo, [&](bool& Cancel) {
        ++verificações;
        Cancel = campo->text().isEmpty();
    });
    int gravações = 0, cancelamentos = 0;
    QObject::connect(gravar, &QPushButton::clicked, [&] { ++gravações; });
    QObject::connect(cancelar, &QPushButton::clicked, [&] { ++cancelamentos; });
    janela.show();
    QApplication::setActiveWindow(&janela);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&janela));

    campo->setFocus();
    QTest::mouseClick(gravar, Qt::LeftButton);
    EXPECT_EQ(verificações, 1);
    EXPECT_EQ(gravações, 0);
    EXPECT_EQ(QApplication::focusWidget(), campo);

    QTest::mouseClick(cancelar, Qt::LeftButton);
    EXPECT_EQ(verificações, 1);
    EXPECT_EQ(cancelamentos, 1);

    campo->setFocus();
    campo->setText("preenchido");
    QTest::keyClick(campo, Qt::Key_Tab);
    EXPECT_EQ(verificações, 2);
    EXPECT_EQ(QApplication::focusWidget(), outro);
    QTest::mouseClick(gravar, Qt::LeftButton);
    EXPECT_EQ(gravações, 1);
}

TEST(Controles, DateAndNumberBoxesReadEmptyDatesAndKeepTheirLimits) {
    Caixa_Data data;
    EXPECT_TRUE(data.Vazia());
    EXPECT_FALSE(data.Value().isValid());
    EXPECT_EQ(data.Text(), "");
    data.Set_Value(QDate(2026, 11, 23));
    EXPECT_EQ(data.Text(), "23/11/2026");
    EXPECT_EQ(data.Value().toDate(), QDate(2026, 11, 23));
    data.setText("31/02/2026");
    EXPECT_FALSE(data.Vazia());
    EXPECT_FALSE(data.Value().isValid());

    Caixa_Número número;
    número.Mínimo = 1;
    número.Máximo = 5;
    número.Set_Value(3);
    número.Set_Value(9);
    EXPECT_EQ(número.Value(), 3);
    número.Casas_Decimais = 2;
    número.Set_Value(2.5);
    EXPECT_EQ(número.text(), "2,50");
    EXPECT_EQ(número.Value(), 2.5);
    número.clear();
    QTest::keyClicks(&número, "1a,5");
    EXPECT_EQ(número.text(), "1,5");
}

TEST(Controles, ClearingAWindowEmptiesItsFieldsByKindAndLeavesOptionButtons) {
    Plataforma_Roteirizada plataforma;
    Pasta_Teste pasta;
    QWidget janela;
    auto* texto = new QLineEdit("texto", &janela);
    auto* lista = new QComboBox(&janela);
    lista->addItems({"a", "b"});
    lista->setCurrentIndex(1);
    auto* editável = new QComboBox(&janela);
    editável->setEditable(true);
    editável->setEditText("livre");
    auto* dado = new QLabel("dado", &janela);
    dado->setFrameShape(QFrame::Panel);
    auto* legenda = new QLabel("Legenda:", &janela);
    auto* marca = new QCheckBox(&janela);
    marca->setChecked(true);
    auto* opção = new QRadioButton(&janela);
    opção->setChecked(true);
    auto* data = new Caixa_Data(&janela);
    data->Set_Value(QDate(2026, 1, 2));
    // Number boxes take 0, or the smallest of 0.01 and 1 that their limits accept.
    auto* livre = new Caixa_Número(&janela);
    livre->Set_Value(7);
    auto* centésimos = new Caixa_Número(&janela);
    centésimos->Mínimo = 0.01;
    centésimos->Casas_Decimais = 2;
    centésimos->Set_Value(3);
    auto* inteiros = new Caixa_Número(&janela);
    inteiros->Mínimo = 1;
    inteiros->Set_Value(3);

    Limpar_Campos(&janela);
    EXPECT_EQ(texto->text(), "");
    EXPECT_EQ(lista->currentIndex(), -1);
    EXPECT_EQ(editável->currentText(), "");
    EXPECT_EQ(dado->text(), "");
    EXPECT_EQ(legenda->text(), "Legenda:");
    EXPECT_FALSE(marca->isChecked());
    EXPECT_TRUE(opção->isChecked());
    EXPECT_TRUE(data->Vazia());
    EXPECT_EQ(livre->Value(), 0);
    EXPECT_EQ(centésimos->Value(), 0.01);
    EXPECT_EQ(inteiros->Value(), 1);
}

TEST(Controles, TheGridTakesItsHeadingsFromTheFormatTextAndEveryEvenRowIsPaintedBesideColumn0) {
    Plataforma_Roteirizada plataforma;
    Pasta_Teste pasta;
    Grade_Flex grade;
    grade.Set_Rows(5);
    grade.Set_Cols(3);
    grade.Set_FormatString("<Nome|<Cidade|<Código");
    EXPECT_EQ(grade.TextMatrix(0, 1), "Cidade");
    grade.Set_TextMatrix(2, 1, "Recife");
    grade.Set_TextMatrix(9, 1, "fora da grade");  // ignored
    EXPECT_EQ(grade.TextMatrix(2, 1), "Recife");

    grade.Set_RowSel(0);
    grade.Set_ColSel(0);
    Monta_Flex_Grid(&grade);
    EXPECT_EQ(grade.RowSel(), 1);
    EXPECT_EQ(grade.ColSel(), 1);
    const QColor pintada(0xC0, 0xFF, 0xFF);
    for (int linha = 1; linha < 5; ++linha)
        for (int coluna = 0; coluna < 3; ++coluna) {
            grade.Set_Row(linha);
            grade.Set_Col(coluna);
            EXPECT_EQ(grade.CellBackColor() == pintada, linha % 2 == 0 && coluna > 0)
                << linha << "," << coluna;
        }

    grade.Clear();
    EXPECT_EQ(grade.TextMatrix(0, 1), "");
    EXPECT_EQ(grade.TextMatrix(2, 1), "");
}
