// The record-form protocol driven through the question register, offscreen, on a real database.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <sqlite3.h>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "questions/frmPergunta.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "support/Disco_Simulado.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Cadastro_Pergunta_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Plataforma.Caixas.clear();
    }

    // One letter per command button, in the window's order, or "-" while it is disabled:
    // Inclusão, Alteração, Exclusão, Localiza, Anterior, Próximo, OK, Cancelar, Sair.
    static QString Botões(const frmPergunta& j) {
        const QPushButton* botões[] = {j.cmdInclusão,
                                       j.cmdAlteração,
                                       j.cmdExclusão,
                                       j.cmdLocaliza,
                                       j.cmdMovimenta_Registro[1],
                                       j.cmdMovimenta_Registro[2],
                                       j.cmdOk,
                                       j.cmdCancelar,
                                       j.cmdSair};
        QString s;
        for (int i = 0; i < 9; ++i) s += botões[i]->isEnabled() ? QString("IAEL<>OCS")[i] : QChar('-');
        return s;
    }

    static void Preenche(frmPergunta& j, const QString& pergunta, const QStringList& respostas) {
        j.txtPergunta->Set_Text(pergunta);
        j.txtResposta_Correta->setText(respostas[0]);
        j.txtResposta_Incorreta_1->setText(respostas[1]);
        j.txtResposta_Incorreta_2->setText(respostas[2]);
        j.txtResposta_Incorreta_3->setText(respostas[3]);
    }

    // The stored row of a question, read apart from the window's slot.
    static QVariant Campo(int código, const QString& campo) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPergunta Where Código_Pergunta = " +
                                QString::number(código));
        return Tabela_Quaternária.Eof() ? QVariant() : Tabela_Quaternária.Fields(campo).Value();
    }
    static int Linhas() {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPergunta");
        return Tabela_Quaternária.RecordCount();
    }

    static void Ativa(frmPergunta& j) {
        j.show();
        QApplication::setActiveWindow(&j);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&j));
    }
};
}  // namespace

constexpr const char* Consulta = "IAEL<>--S";
constexpr const char* Incluindo = "-------C-";
constexpr const char* Alterando = "------OC-";

TEST_F(Cadastro_Pergunta_Teste, AnEmptyTableLeavesTheWindowBlankAndRefusesAlterationExclusionAndWalks) {
    frmPergunta janela;
    EXPECT_EQ(janela.windowTitle(),
              "Dúvidas como cadastrar nova Pergunta no sistema? Tecle F1 para ler o manual on-line...");
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Nome_Janela, "frmPergunta");
    EXPECT_TRUE(Em_Cadastro);
    EXPECT_TRUE(janela.txtPergunta->Text().isEmpty());

    janela.cmdAlteração_Click();
    janela.cmdExclusão_Click();
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(22), Aviso(23), Aviso(9)}));
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_FALSE(Transação_Aberta());

    janela.cmdSair_Click();
    EXPECT_FALSE(Em_Cadastro);
}

TEST_F(Cadastro_Pergunta_Teste, AnInclusionKeepsTheQuestionAsTypedAndCapitalisesTheAnswers) {
    frmPergunta janela;
    janela.optTipo[1]->setChecked(true);
    janela.cmdInclusão_Click();
    EXPECT_EQ(Operação, "Inclusão");
    EXPECT_EQ(janela.windowTitle(), "Inclusão de Perguntas");
    EXPECT_EQ(Botões(janela), Incluindo);
    EXPECT_TRUE(Transação_Aberta());
    EXPECT_TRUE(janela.optTipo[1]->isChecked());  // the kind shown last stands as default

    Preenche(janela, "Quem escreveu o livro de Atos dos Apóstolos?",
             {"lucas e marcos", "PEDRO E JOÃO", "paulo de tarso", "tiago do zebedeu"});
    janela.cmdOk->setEnabled(true);
    janela.cmdOk_Click();
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "Confirma INCLUSÃO?");
    EXPECT_EQ(Plataforma.Caixas.last().Título, "Quizora");
    EXPECT_EQ(Plataforma.Caixas.last().Ícone, Ícone_Caixa::Pergunta);

    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    EXPECT_EQ(Campo(1, "Pergunta").toString(), "Quem escreveu o livro de Atos dos Apóstolos?");
    EXPECT_EQ(Campo(1, "Resposta_Correta").toString(), "Lucas e Marcos");
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_1").toString(), "Pedro e João");
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_2").toString(), "Paulo de Tarso");
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_3").toString(), "Tiago do Zebedeu");
    EXPECT_EQ(Campo(1, "Tipo").toString(), "B");
    EXPECT_FALSE(Campo(1, "Já_Comparada").toBool());
    EXPECT_FALSE(Campo(1, "Já_Verificada").toBool());
    EXPECT_EQ(Campo(1, "Pergunta_Original").toString(), " ");

    // The first row of an empty table can be altered at once.
    Plataforma.Caixas.clear();
    janela.cmdAlteração_Click();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Operação, "Alteração");
    janela.cmdCancelar_Click();
}

TEST_F(Cadastro_Pergunta_Teste, LeavingTheLastMandatoryFieldEmptyKeepsOkDisabledAndFillingItEnablesOk) {
    Cadastra_Perguntas(1);
    frmPergunta janela;
    Ativa(janela);
    janela.cmdInclusão_Click();
    EXPECT_EQ(QApplication::focusWidget(), janela.txtPergunta);
    Preenche(janela, "Qual?", {"a", "b", "c", ""});

    janela.txtResposta_Incorreta_3->setFocus();
    janela.optTipo[0]->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), janela.txtResposta_Incorreta_3);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(10)});
    EXPECT_FALSE(janela.cmdOk->isEnabled());

    janela.txtResposta_Incorreta_3->setText("d");
    janela.optTipo[0]->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), janela.optTipo[0]);
    EXPECT_TRUE(janela.cmdOk->isEnabled());

    // From then on, an earlier field emptied is caught by its own check.
    Plataforma.Caixas.clear();
    janela.txtResposta_Correta->setFocus();
    janela.txtResposta_Correta->clear();
    janela.txtResposta_Incorreta_1->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), janela.txtResposta_Correta);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(10)});

    // Cancel does not cause validation: it leaves the empty field without a word.
    Plataforma.Caixas.clear();
    QTest::mouseClick(janela.cmdCancelar, Qt::LeftButton);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_EQ(Linhas(), 1);
}

TEST_F(Cadastro_Pergunta_Teste, CancellingAnInclusionLeavesTheTypedTextAndEndsTheTransaction) {
    Cadastra_Perguntas(2);
    frmPergunta janela;
    janela.cmdInclusão_Click();
    Preenche(janela, "Texto digitado", {"um", "dois", "três", "quatro"});
    janela.cmdCancelar_Click();
    EXPECT_EQ(janela.txtPergunta->Text(), "Texto digitado");
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Linhas(), 2);
}

TEST_F(Cadastro_Pergunta_Teste, AnAlterationKeepsTheMarksAndNoDiscardsTheTypedValues) {
    Cadastra_Perguntas(2);
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.MoveFirst();
    Tabela.Fields("Já_Comparada").Set_Value(true);
    Tabela.Fields("Já_Verificada").Set_Value(true);
    Tabela.Fields("Pergunta_Original").Set_Value("Texto da exportação");
    Tabela.Update();

    frmPergunta janela;
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    janela.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.windowTitle(), "Alteração da Pergunta 1");
    EXPECT_EQ(Botões(janela), Alterando);
    EXPECT_TRUE(Transação_Aberta());

    // No: the typed value is gone and the transaction ends.
    janela.txtResposta_Correta->setText("outra coisa");
    Plataforma.Respostas.push_back(Resposta_Caixa::Não);
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "Confirma ALTERAÇÃO?");
    EXPECT_EQ(janela.txtResposta_Correta->text(), "Certa 1");
    EXPECT_EQ(Campo(1, "Resposta_Correta").toString(), "Certa 1");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Botões(janela), Consulta);

    // Yes: the answer changes, the marks and the exported wording stay.
    janela.cmdAlteração_Click();
    janela.txtResposta_Correta->setText("resposta nova");
    janela.cmdOk_Click();
    EXPECT_EQ(Campo(1, "Resposta_Correta").toString(), "Resposta Nova");
    EXPECT_TRUE(Campo(1, "Já_Comparada").toBool());
    EXPECT_TRUE(Campo(1, "Já_Verificada").toBool());
    EXPECT_EQ(Campo(1, "Pergunta_Original").toString(), "Texto da exportação");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Botões(janela), Consulta);

    // Cancel redraws the row as stored.
    janela.cmdAlteração_Click();
    janela.txtResposta_Correta->setText("descartada");
    janela.cmdCancelar_Click();
    EXPECT_EQ(janela.txtResposta_Correta->text(), "Resposta Nova");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Botões(janela), Consulta);
}

TEST_F(Cadastro_Pergunta_Teste, AnExclusionPlaysTheExplosionAndShowsTheNextRowOrThePreviousAtTheEnd) {
    Cadastra_Perguntas(3);
    frmPergunta janela;
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 2");

    Plataforma.Respostas.push_back(Resposta_Caixa::Não);
    janela.cmdExclusão_Click();
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "Confirma EXCLUSÃO?");
    EXPECT_EQ(Linhas(), 3);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_TRUE(Plataforma.Sonos.isEmpty());
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 2");
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Botões(janela), Consulta);

    janela.cmdExclusão_Click();
    EXPECT_EQ(Plataforma.Sonos, QList<int>(8, 70));
    EXPECT_EQ(Linhas(), 2);
    EXPECT_FALSE(Campo(2, "Pergunta").isValid());
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 3");
    EXPECT_EQ(Botões(janela), Consulta);

    janela.cmdExclusão_Click();
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    janela.cmdExclusão_Click();
    EXPECT_EQ(Linhas(), 0);
    EXPECT_TRUE(janela.windowTitle().startsWith("Dúvidas como cadastrar nova Pergunta"));
}

TEST_F(Cadastro_Pergunta_Teste, WalkingPastEitherEndWarnsAndStaysOnTheLastOrFirstRecord) {
    Cadastra_Perguntas(3);
    frmPergunta janela;
    janela.cmdMovimenta_Registro_Click(2);
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(janela.txtPergunta->Text(), "Pergunta número 3?");
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_EQ(janela.txtPergunta->Text(), "Pergunta número 3?");

    Plataforma.Caixas.clear();
    janela.cmdMovimenta_Registro_Click(1);
    janela.cmdMovimenta_Registro_Click(1);
    janela.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(11)});
    EXPECT_EQ(janela.txtPergunta->Text(), "Pergunta número 1?");
    EXPECT_EQ(janela.txtResposta_Incorreta_2->text(), "Errada B1");
    EXPECT_TRUE(janela.optTipo[0]->isChecked());
}

TEST_F(Cadastro_Pergunta_Teste, ALocateResultLimitsTheWalkUntilAWriteEndsIt) {
    Cadastra_Perguntas(3, "G");
    Cadastra_Perguntas(2, "B");
    frmPergunta janela;
    Abre_Tabela_Dynaset("Select * From tblPergunta Where Tipo = 'B'", Conexão.ConnectionString);
    Código_Localizado = 4;
    janela.Exibir_Campos();
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 4 | Mostrando apenas Tipo = 'B'");

    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Código_Localizado, 5);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 5 | Mostrando apenas Tipo = 'B'");
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(12)});
    EXPECT_EQ(Código_Localizado, 5);

    // A confirmed write ends the filter: the walk covers the whole table again.
    janela.cmdAlteração_Click();
    janela.cmdOk_Click();
    EXPECT_TRUE(Tabela_Dynaset.Source.isEmpty());
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 5");
    janela.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 4");
    janela.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 3");
}

TEST_F(Cadastro_Pergunta_Teste, TheCaptionShowsAtMostFiftyCharactersOfTheCriterion) {
    Cadastra_Perguntas(2);
    frmPergunta janela;
    Abre_Tabela_Dynaset(
        "Select * From tblPergunta Where Código_Pergunta >= 1 And Código_Pergunta <= 2 And Tipo <> 'Z'",
        Conexão.ConnectionString);
    Código_Localizado = 2;
    janela.Exibir_Campos();
    EXPECT_EQ(janela.windowTitle(),
              "Consulta da Pergunta 2 | Mostrando apenas Código_Pergunta >= 1 And Código_Pergunta <= 2 And ");

    // A result emptied behind the window's back: the walk warns and ends the filter.
    Tabela_Dynaset.Close();
    Abre_Tabela_Dynaset("Select * From tblPergunta Where Tipo = 'Z'", Conexão.ConnectionString);
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(26)});
    EXPECT_TRUE(Tabela_Dynaset.Source.isEmpty());
}

TEST_F(Cadastro_Pergunta_Teste, TheFieldsRefuseTextBeyondTheirWidthAndTheCloseBoxWaitsForTheEdit) {
    Cadastra_Perguntas(1);
    frmPergunta janela;
    janela.cmdInclusão_Click();
    janela.txtPergunta->insertPlainText(QString(130, 'p'));
    EXPECT_EQ(janela.txtPergunta->Text().size(), 124);
    janela.txtResposta_Correta->insert(QString(60, 'r'));
    EXPECT_EQ(janela.txtResposta_Correta->text().size(), 50);
    EXPECT_FALSE(janela.Form_QueryUnload());
    janela.cmdCancelar_Click();
    EXPECT_TRUE(janela.Form_QueryUnload());
}

TEST_F(Cadastro_Pergunta_Teste, F1OpensTheQuestionPageAndEnterWalksTheFieldsInTabOrder) {
    Cadastra_Perguntas(1);
    frmPergunta janela;
    Ativa(janela);
    QTest::keyClick(janela.txtResposta_Correta, Qt::Key_F1);
    ASSERT_EQ(Plataforma.Abertos.size(), 1);
    EXPECT_EQ(Plataforma.Abertos[0], Pasta.Caminho() + "/Ajuda/Pergunta.Html");

    janela.cmdAlteração_Click();
    EXPECT_EQ(QApplication::focusWidget(), janela.txtPergunta);
    QTest::keyClick(janela.txtPergunta, Qt::Key_Return);
    EXPECT_EQ(janela.txtPergunta->Text(), "Pergunta número 1?");  // Enter adds no line to the question
    EXPECT_EQ(QApplication::focusWidget(), janela.txtResposta_Correta);
    QTest::keyClick(janela.txtResposta_Correta, Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), janela.txtResposta_Incorreta_1);
    janela.cmdCancelar_Click();
}

// The row of a single locate hit is deleted; walking on must never end the program.
TEST_F(Cadastro_Pergunta_Teste, WalkingAfterDeletingTheSingleLocatedRowGoesBackToTheWholeTable) {
    Cadastra_Perguntas(4);
    Tabela_Quaternária.Reinicia();
    Abre_Tabela_Quaternária("tblPergunta");
    Tabela_Quaternária.Set_Index("idxCódigo_Pergunta");
    Tabela_Quaternária.Seek(2);
    Tabela_Quaternária.Edita();
    Tabela_Quaternária.Fields("Pergunta").Set_Value("Qual é o monte mais alto da África, o Kilimanjaro?");
    Tabela_Quaternária.Update();
    Tabela_Quaternária.Reinicia();
    frmPergunta janela;
    Ativa(janela);

    QTimer::singleShot(0, [] {
        auto* localiza = dynamic_cast<frmLocaliza_Informação*>(QApplication::activeModalWidget());
        ASSERT_NE(localiza, nullptr);
        localiza->optOpção_Click(6);
        localiza->txtConteúdo->setText("Kilimanjaro");
        localiza->cmdOk_Click();  // a single hit closes the dialog
    });
    janela.cmdLocaliza_Click();
    ASSERT_EQ(Código_Localizado, 2);
    EXPECT_TRUE(janela.windowTitle().startsWith("Consulta da Pergunta 2 | Mostrando apenas"));

    const int encerramentos = Plataforma.Encerramentos;
    janela.cmdExclusão_Click();  // Sim
    EXPECT_FALSE(Campo(2, "Pergunta").isValid());
    Plataforma.Caixas.clear();
    EXPECT_NO_THROW(janela.cmdMovimenta_Registro_Click(2));
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(26)});
    EXPECT_TRUE(Tabela_Dynaset.Source.isEmpty());
    EXPECT_NO_THROW(janela.cmdMovimenta_Registro_Click(2));
    EXPECT_NO_THROW(janela.cmdMovimenta_Registro_Click(1));
    EXPECT_NO_THROW(janela.cmdMovimenta_Registro_Click(1));
    EXPECT_NO_THROW(janela.cmdMovimenta_Registro_Click(2));
    EXPECT_EQ(Plataforma.Encerramentos, encerramentos);
    EXPECT_TRUE(janela.windowTitle().startsWith("Consulta da Pergunta "));
    EXPECT_FALSE(janela.txtPergunta->Text().isEmpty());
    EXPECT_FALSE(janela.txtPergunta->Text().contains("Kilimanjaro"));
}

// Another workstation saves the row shown here: the alteration starts from what it stored, and says so.
TEST_F(Cadastro_Pergunta_Teste, AnAlterationStartsFromTheRowAsAnotherWorkstationSavedIt) {
    Cadastra_Perguntas(3);
    frmPergunta janela;
    EXPECT_EQ(janela.txtResposta_Incorreta_1->text(), "Errada A1");

    ASSERT_TRUE(
        Executa_Como_Outra_Estação({"UPDATE tblPergunta SET Resposta_Incorreta_1 = 'Mudada Pelo Outro' "
                                    "WHERE Código_Pergunta = 1"}));

    janela.cmdAlteração_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList{
                  "Esta informação foi alterada recentemente por outro usuário. Tente alterá-la novamente"});
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.txtResposta_Incorreta_1->text(), "Mudada Pelo Outro");
    janela.txtResposta_Incorreta_2->setText("Mudada Aqui");
    janela.cmdOk->setEnabled(true);
    janela.cmdOk_Click();
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_1").toString().trimmed(), "Mudada Pelo Outro");
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_2").toString().trimmed(), "Mudada Aqui");

    // With nothing changed elsewhere the alteration says nothing.
    Plataforma.Caixas.clear();
    janela.cmdAlteração_Click();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    janela.cmdCancelar_Click();
}

// Escape takes the window's own way back: Cancelar during an edit, Sair in "Consulta".
TEST_F(Cadastro_Pergunta_Teste, EscapeCancelsAnEditAndLeavesFromConsulta) {
    Cadastra_Perguntas(2);
    frmPergunta janela;
    Ativa(janela);
    janela.cmdAlteração_Click();
    ASSERT_EQ(Operação, "Alteração");
    QTest::keyClick(janela.txtResposta_Correta, Qt::Key_Escape);
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_TRUE(janela.isVisible());
    QTest::keyClick(janela.txtResposta_Correta, Qt::Key_Escape);
    EXPECT_FALSE(janela.isVisible());
    EXPECT_FALSE(Em_Cadastro);
}

// The text of a cancelled inclusion stays on screen, but an alteration or an exclusion shows the stored
// row again before anything is asked or written: the draft never becomes an edit of the question.
TEST_F(Cadastro_Pergunta_Teste, AfterACancelledInclusionAlterationAndExclusionStartFromTheStoredRow) {
    Cadastra_Perguntas(2);
    frmPergunta janela;
    auto rascunho = [&janela] {
        janela.cmdInclusão_Click();
        Preenche(janela, "Rascunho que não foi gravado", {"rascunho certa", "r1", "r2", "r3"});
        janela.optTipo[1]->setChecked(true);
        janela.cmdCancelar_Click();
        ASSERT_EQ(janela.txtPergunta->Text(), "Rascunho que não foi gravado");
    };
    rascunho();
    Plataforma.Caixas.clear();
    janela.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.windowTitle(), "Alteração da Pergunta 1");
    EXPECT_EQ(janela.txtPergunta->Text(), "Pergunta número 1?");
    EXPECT_EQ(janela.txtResposta_Correta->text(), "Certa 1");
    EXPECT_EQ(janela.txtResposta_Incorreta_3->text(), "Errada C1");
    EXPECT_TRUE(janela.optTipo[0]->isChecked());
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());  // nobody else changed the row: nothing to tell
    janela.txtResposta_Incorreta_1->setText("Errada Mudada");
    janela.cmdOk_Click();  // Sim
    EXPECT_EQ(Campo(1, "Pergunta").toString(), "Pergunta número 1?");
    EXPECT_EQ(Campo(1, "Resposta_Correta").toString(), "Certa 1");
    EXPECT_EQ(Campo(1, "Resposta_Incorreta_1").toString(), "Errada Mudada");
    EXPECT_EQ(Campo(1, "Tipo").toString(), "G");

    // The exclusion asks with the stored question on screen, and deletes that one.
    rascunho();
    QStringList na_tela;
    Plataforma.Ao_Esperar = [&] { na_tela << janela.txtPergunta->Text() + "|" + janela.windowTitle(); };
    janela.cmdExclusão_Click();  // Sim, and the explosion
    Plataforma.Ao_Esperar = nullptr;
    ASSERT_FALSE(na_tela.isEmpty());
    EXPECT_EQ(na_tela.first(), "Pergunta número 1?|Exclusão da Pergunta 1");
    EXPECT_FALSE(Campo(1, "Pergunta").isValid());
    EXPECT_EQ(Campo(2, "Pergunta").toString(), "Pergunta número 2?");
    EXPECT_EQ(Linhas(), 1);
    EXPECT_FALSE(Transação_Aberta());
}

// A question that another copy adds after the register opened is shown when the locate dialog picks it.
TEST_F(Cadastro_Pergunta_Teste, AQuestionAnotherCopyAddedIsShownWhenLocated) {
    Cadastra_Perguntas(3);
    frmPergunta janela;
    Ativa(janela);
    ASSERT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    ASSERT_TRUE(Executa_Como_Outra_Estação(
        {"INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
         "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada) VALUES ('Onde fica o Kilimanjaro?', "
         "'Tanzânia', 'Quênia', 'Uganda', 'Etiópia', 'G', false, false)"}));

    QTimer::singleShot(0, [] {
        auto* localiza = dynamic_cast<frmLocaliza_Informação*>(QApplication::activeModalWidget());
        ASSERT_NE(localiza, nullptr);
        localiza->optOpção_Click(6);
        localiza->txtConteúdo->setText("Kilimanjaro");
        localiza->cmdOk_Click();  // a single hit closes the dialog
    });
    janela.cmdLocaliza_Click();
    ASSERT_EQ(Código_Localizado, 4);
    EXPECT_EQ(janela.txtPergunta->Text(), "Onde fica o Kilimanjaro?");
    EXPECT_EQ(janela.txtResposta_Correta->text(), "Tanzânia");
    EXPECT_TRUE(janela.windowTitle().startsWith("Consulta da Pergunta 4 | Mostrando apenas"))
        << janela.windowTitle().toStdString();

    // It can be altered like any other, and the walk over the whole table reaches it afterwards.
    janela.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.txtPergunta->Text(), "Onde fica o Kilimanjaro?");
    janela.cmdOk_Click();
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 4");
    janela.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 3");
    janela.cmdMovimenta_Registro_Click(2);
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 4");
}

// A full disk at OK: one message that says so, the typed question stays on the screen in "Inclusão" with
// nothing saved, and OK passes once there is room.
TEST_F(Cadastro_Pergunta_Teste, AFullDiskKeepsTheTypedQuestionOnScreenAndShowsNothingAsSaved) {
    SO_NO_EMBUTIDO("o disco simulado é o do banco embutido");
    Disco_Simulado::Instala();
    Instala_Programa_Para_Janelas();  // the databases opened again, on the simulated disk
    struct Fim {
        ~Fim() { Disco_Simulado::Desinstala(); }
    } fim;
    frmPergunta janela;
    janela.cmdInclusão_Click();
    Preenche(janela, "Qual é o maior planeta do sistema solar?", {"júpiter", "saturno", "marte", "vênus"});
    for (Ligação* c : {&Conexão, &Conexão_Manutenção})
        ASSERT_EQ(sqlite3_wal_checkpoint_v2(c->Sessão_Física()->Banco, nullptr, SQLITE_CHECKPOINT_TRUNCATE,
                                            nullptr, nullptr),
                  SQLITE_OK);
    Disco_Simulado::Enche(true);
    janela.cmdOk->setEnabled(true);
    janela.cmdOk_Click();
    ASSERT_EQ(
        Plataforma.Textos_Caixas(),
        QStringList({"Confirma INCLUSÃO?", "Não há espaço em disco para gravar na pasta " + Pasta.Dados() +
                                               ": a gravação foi recusada. Libere espaço nesse disco e "
                                               "tente de novo."}));
    EXPECT_EQ(Operação, "Inclusão");
    EXPECT_EQ(janela.windowTitle(), "Inclusão de Perguntas");
    EXPECT_EQ(janela.txtPergunta->Text(), "Qual é o maior planeta do sistema solar?");
    EXPECT_EQ(janela.txtResposta_Incorreta_3->text(), "Vênus");
    EXPECT_EQ(Botões(janela), "------OC-");
    EXPECT_TRUE(Transação_Aberta());
    Disco_Simulado::Enche(false);
    EXPECT_EQ(Linhas(), 0);

    Plataforma.Caixas.clear();
    janela.cmdOk_Click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({"Confirma INCLUSÃO?"}));
    EXPECT_EQ(janela.windowTitle(), "Consulta da Pergunta 1");
    EXPECT_EQ(Botões(janela), Consulta);
    EXPECT_EQ(Campo(1, "Pergunta").toString(), "Qual é o maior planeta do sistema solar?");
    EXPECT_EQ(Linhas(), 1);
}
