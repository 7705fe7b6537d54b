// The report options dialog driven offscreen, and the caption that stands while the viewer opens.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>

#include "common/Globais.h"
#include "reports/Relatório_Rtf.h"
#include "reports/frmImpressão.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "utilities/Ajuda.h"

namespace {
// Notes the caption of the report's window at the moment the viewer is asked for.
class Plataforma_Visualização : public Plataforma_Roteirizada {
  public:
    QWidget* Janela = nullptr;
    QStringList Títulos_Na_Abertura;
    void Abre_Com_Aplicativo(const QString& alvo) override {
        Plataforma_Roteirizada::Abre_Com_Aplicativo(alvo);
        if (Janela != nullptr) Títulos_Na_Abertura << Janela->windowTitle();
    }
};

class Janela_Impressao : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Visualização Plataforma;
    const QString Pasta_Relatórios = Pasta.Caminho() + "/Relatórios/";

    void SetUp() override {
        Título_Relatório = "Relatório das Manutenções";
        Modo_Retrato = true;
        Tamanho_Fonte = 0;
        Impressão_Confirmada = false;
    }

    static void Ativa(frmImpressão& j) {
        j.show();
        QApplication::setActiveWindow(&j);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&j));
    }
};
}  // namespace

TEST_F(Janela_Impressao, LoadStartsAtBlueWithTheTitleAsNameWhateverTheLastReportLeft) {
    Modo_Retrato = false;
    Cor_Destaque = 4;
    Destaque_Ligado = false;
    Impressão_Confirmada = true;
    Em_Cadastro = true;
    frmImpressão janela;
    EXPECT_EQ(Nome_Janela, "frmImpressão");
    EXPECT_FALSE(Em_Cadastro);
    EXPECT_FALSE(Impressão_Confirmada);
    EXPECT_TRUE(janela.findChild<QRadioButton*>("optOrientação_Relatório_0")->isChecked());
    EXPECT_FALSE(Modo_Retrato);
    EXPECT_EQ(Cor_Destaque, 1);
    EXPECT_TRUE(Destaque_Ligado);
    EXPECT_TRUE(janela.findChild<QRadioButton*>("optDestaca_Impressão_1")->isChecked());
    EXPECT_EQ(janela.findChild<QLineEdit*>("txtCaminho")->text(), "Relatório das Manutenções");
    EXPECT_EQ(janela.lblCaminho->text(), Pasta_Relatórios + "Relatório das Manutenções");

    // Each colour option is drawn in the colour the report's colour table gives it.
    const QRegularExpression rgb(R"(\\red(\d+)\\green(\d+)\\blue(\d+);)");
    for (int i = 1; i <= 10; ++i) {
        const auto m = rgb.match(Linha_Tabela_Cores(i));
        ASSERT_TRUE(m.hasMatch());
        EXPECT_EQ(janela.findChild<QRadioButton*>(QString("optDestaca_Impressão_%1").arg(i))
                      ->palette()
                      .color(QPalette::WindowText),
                  QColor(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt()))
            << i;
    }

    Ativa(janela);
    QTest::keyClick(&janela, Qt::Key_F1);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Página_do_Manual("Impressão")});
    janela.hide();

    Título_Relatório = "   ";
    frmImpressão sem_título;
    EXPECT_EQ(sem_título.txtCaminho->text(), "Nome do Relatório");
}

TEST_F(Janela_Impressao, OptionsSetOrientationAndHighlightAndTheNameShowsInThePath) {
    frmImpressão janela;
    janela.optOrientação_Relatório[0]->click();
    EXPECT_FALSE(Modo_Retrato);
    janela.optOrientação_Relatório[1]->click();
    EXPECT_TRUE(Modo_Retrato);
    janela.optDestaca_Impressão[0]->click();
    EXPECT_EQ(Cor_Destaque, 0);
    EXPECT_FALSE(Destaque_Ligado);
    janela.optDestaca_Impressão[8]->click();
    EXPECT_EQ(Cor_Destaque, 8);
    EXPECT_TRUE(Destaque_Ligado);
    janela.txtCaminho->setText("Março");
    EXPECT_EQ(janela.lblCaminho->text(), Pasta_Relatórios + "Março");
}

TEST_F(Janela_Impressao, RefusedReplacementOrBadNameKeepsTheDialogOnTheNameAndOkOpensTheFile) {
    QDir().mkpath(Pasta_Relatórios);
    QFile antigo(Pasta_Relatórios + "Relatório das Manutenções.Rtf");
    ASSERT_TRUE(antigo.open(QIODevice::WriteOnly));
    antigo.close();
    Operação = "Consulta";
    frmImpressão janela;
    Ativa(janela);
    Plataforma.Respostas = {Resposta_Caixa::Ok, Resposta_Caixa::Não};
    janela.cmdOk->setFocus();
    janela.cmdOk->click();
    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList({Aviso(15), "Confirma EXCLUSÃO DO RELATÓRIO PARA A GERAÇÃO DE UM NOVO?"}));
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_TRUE(janela.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), janela.txtCaminho);

    Plataforma.Caixas.clear();
    janela.txtCaminho->setText("Abril/Maio");
    janela.cmdOk->setFocus();
    janela.cmdOk->click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("Nome de arquivo inválido!!!"));
    EXPECT_TRUE(janela.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), janela.txtCaminho);
    EXPECT_FALSE(Impressão_Confirmada);

    janela.txtCaminho->setText("Abril");
    janela.cmdOk->click();
    EXPECT_FALSE(janela.isVisible());
    EXPECT_TRUE(Impressão_Confirmada);
    EXPECT_TRUE(QFileInfo::exists(Pasta_Relatórios + "Abril.Rtf"));
}

TEST_F(Janela_Impressao, SairOpensNothingAndTheViewerGetsTheFileWhileTheWindowSaysItIsLoading) {
    {
        frmImpressão janela;
        janela.cmdSair->click();
        EXPECT_FALSE(Impressão_Confirmada);
        janela.cmdOk->setEnabled(false);
        janela.cmdOk_Click();
        EXPECT_FALSE(Impressão_Confirmada);
        janela.cmdOk->setEnabled(true);
        janela.cmdOk_Click();
    }
    ASSERT_TRUE(Impressão_Confirmada);
    QWidget relatório;
    relatório.setWindowTitle("Impressão das Manutenções");
    Plataforma.Janela = &relatório;
    Fecha_Arquivo_Rtf(&relatório);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Pasta_Relatórios + "Relatório das Manutenções.Rtf"});
    EXPECT_EQ(Plataforma.Títulos_Na_Abertura,
              QStringList{"Relatório GERADO!!!   Aguarde enquanto a VISUALIZAÇÃO do mesmo é carregada..."});
    EXPECT_EQ(relatório.windowTitle(), "Impressão das Manutenções");
}
