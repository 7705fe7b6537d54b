// The duplicate and coherence walks of the question verification, offscreen, on a real database.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "questions/frmVerifica_Pergunta.h"
#include "shell/frmPrincipal.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// Keeps the text of every input box, so that a test sees which question was asked about.
class Plataforma_Com_Entradas : public Plataforma_Roteirizada {
  public:
    QStringList Textos_Entradas;
    QString Caixa_Entrada(const QString& texto, const QString& título, const QString& padrão) override {
        Textos_Entradas << texto;
        return Plataforma_Roteirizada::Caixa_Entrada(texto, título, padrão);
    }
};

class Verifica_Pergunta_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Com_Entradas Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Plataforma.Caixas.clear();
    }

    static void Insere(const QString& pergunta, const QString& resposta, bool comparada = false,
                       bool verificada = false) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblPergunta");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Pergunta").Set_Value(pergunta);
        Tabela_Quaternária.Fields("Resposta_Correta").Set_Value(resposta);
        Tabela_Quaternária.Fields("Resposta_Incorreta_1").Set_Value("Errada Um");
        Tabela_Quaternária.Fields("Resposta_Incorreta_2").Set_Value("Errada Dois");
        Tabela_Quaternária.Fields("Resposta_Incorreta_3").Set_Value("Errada Três");
        Tabela_Quaternária.Fields("Tipo").Set_Value("B");
        Tabela_Quaternária.Fields("Já_Comparada").Set_Value(comparada);
        Tabela_Quaternária.Fields("Já_Verificada").Set_Value(verificada);
        Tabela_Quaternária.Fields("Pergunta_Original").Set_Value("Como foi enviada");
        Tabela_Quaternária.Update();
        Tabela_Quaternária.Reinicia();
        Limpa_Cache_Lastrec();
    }

    // The stored row of a question, read apart from the window's slot; Null when it is gone.
    static QVariant Campo(int código, const QString& campo) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPergunta Where Código_Pergunta = " +
                                QString::number(código));
        return Tabela_Quaternária.Eof() ? QVariant() : Tabela_Quaternária.Fields(campo).Value();
    }
    // One letter per question code 1..n: C compared, V verified, B both, "." neither, "x" gone.
    static QString Marcas(int n) {
        QString s;
        for (int c = 1; c <= n; ++c) {
            const QVariant comparada = Campo(c, "Já_Comparada");
            if (comparada.isNull()) {
                s += 'x';
                continue;
            }
            const bool v = Campo(c, "Já_Verificada").toBool();
            s += comparada.toBool() ? (v ? 'B' : 'C') : (v ? 'V' : '.');
        }
        return s;
    }
    static QString Par(const QString& atual, const QString& outra) {
        return atual + "\r\ré diferente de\r\r" + outra;
    }
    static QString Pedido(const QString& pergunta) {
        return "Informe a palavra a ser pesquisada para a pergunta: \r\r" + pergunta;
    }
    // Sair, the two walks, Alteração, Exclusão, OK, Cancelar: their letters, or "-" while disabled.
    static QString Botões(const frmVerifica_Pergunta& j) {
        const QPushButton* botões[] = {j.cmdSair,
                                       j.cmdVerifica_Duplicidade,
                                       j.cmdVerifica_Coerência,
                                       j.cmdAlteração,
                                       j.cmdExclusão,
                                       j.cmdOk,
                                       j.cmdCancelar};
        QString s;
        for (int i = 0; i < 7; ++i) s += botões[i]->isEnabled() ? QString("SDVAEOC")[i] : QChar('-');
        return s;
    }
    static bool Fechou(const frmVerifica_Pergunta& j) {
        return j.result() == QDialog::Accepted && !Em_Cadastro;
    }
};
}  // namespace

TEST_F(Verifica_Pergunta_Teste, OpeningShowsNoQuestionAndLeavingChangesNothing) {
    Insere("Quem construiu a arca?", "Noé");
    Insere("Quem foi o construtor da arca?", "Noé", true, true);
    frmVerifica_Pergunta janela;
    EXPECT_EQ(janela.windowTitle(), " ");
    EXPECT_TRUE(janela.txtPergunta->Text().isEmpty());
    EXPECT_TRUE(janela.txtResposta_Correta->text().isEmpty());
    EXPECT_EQ(Botões(janela), "SDV----");
    EXPECT_FALSE(janela.cmdInclusão->isVisibleTo(&janela));
    EXPECT_FALSE(janela.cmdLocaliza->isVisibleTo(&janela));
    EXPECT_EQ(Nome_Janela, "frmVerifica_Pergunta");
    EXPECT_TRUE(Em_Cadastro);
    janela.cmdSair_Click();
    EXPECT_FALSE(Em_Cadastro);
    EXPECT_EQ(Marcas(2), ".B");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Verifica_Pergunta_Teste, AUserWithNoRightsHereIsToldAndFindsNothingToDo) {
    Insere("Quem construiu a arca?", "Noé");
    Usuário_Atual = "Maria";
    frmVerifica_Pergunta janela;
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(4)}));
    EXPECT_EQ(Botões(janela), "S------");
    EXPECT_TRUE(janela.txtPergunta->Text().isEmpty());
}

TEST_F(Verifica_Pergunta_Teste, DuplicateWalkMarksUniqueAnswersSilentlyAndAsksOnlyForPairsThatHoldTheWord) {
    Insere("Qual é a capital do Brasil?", "Brasília");
    Insere("Quem libertou a cidade de Orléans?", "Joana d'Arc");
    Insere("Qual heroína francesa libertou Orléans?", "JOANA D'ARC");  // a quote, and other capitals
    Plataforma.Entradas = {"CIDADE", "orléans"};
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Duplicidade_Click();

    // The unique answer asks nothing; "cidade" is found only in the question itself; "orléans" finds
    // the other question with the same answer, which the user says is different.
    EXPECT_EQ(Plataforma.Textos_Entradas, QStringList({Pedido("Quem libertou a cidade de Orléans?"),
                                                       Pedido("Qual heroína francesa libertou Orléans?")}));
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto,
              Par("Qual heroína francesa libertou Orléans?", "Quem libertou a cidade de Orléans?"));
    EXPECT_EQ(Plataforma.Caixas[0].Título, "Quizora");
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Pergunta);
    EXPECT_EQ(Plataforma.Caixas[0].Botões, Botões_Caixa::Sim_Não_Cancelar);
    EXPECT_EQ(Marcas(3), "CCC");
    EXPECT_TRUE(Fechou(janela));
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Verifica_Pergunta_Teste,
       AWordNotInTheQuestionAsksAgainAndAnEmptyWordShowsEveryPairAndNoRemovesTheCurrent) {
    Insere("Quem construiu a arca?", "Noé");
    Insere("Quem foi o construtor da arca?", "Noé");
    Insere("Qual patriarca sobreviveu ao dilúvio?", "Noé");
    Plataforma.Entradas = {"jonas", "", "", "dilúvio"};
    Plataforma.Respostas = {Resposta_Caixa::Ok, Resposta_Caixa::Sim, Resposta_Caixa::Sim, Resposta_Caixa::Sim,
                            Resposta_Caixa::Não};
    QStringList depois_de_cada_linha;
    Plataforma.Ao_Esperar = [&] { depois_de_cada_linha << Marcas(3); };
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Duplicidade_Click();

    EXPECT_EQ(Plataforma.Textos_Caixas(),
              QStringList({Aviso(104), Par("Quem construiu a arca?", "Quem foi o construtor da arca?"),
                           Par("Quem construiu a arca?", "Qual patriarca sobreviveu ao dilúvio?"),
                           Par("Quem foi o construtor da arca?", "Quem construiu a arca?"),
                           Par("Quem foi o construtor da arca?", "Qual patriarca sobreviveu ao dilúvio?")}));
    // The word that is not in the question wrote nothing; "No" took the current question away and left
    // the other of the pair unmarked, to be compared in its turn.
    EXPECT_EQ(depois_de_cada_linha, QStringList({"...", "C..", "Cx.", "CxC"}));
    EXPECT_TRUE(Fechou(janela));
}

TEST_F(Verifica_Pergunta_Teste, CancelAtAPairEndsTheWalkAndTheQuestionComesFirstInTheNextWindow) {
    Insere("Qual é a capital do Brasil?", "Brasília");
    Insere("Quem foi o construtor da arca?", "Noé");
    Insere("Quem construiu a arca?", "Noé");
    Plataforma.Entradas = {"arca"};
    Plataforma.Respostas = {Resposta_Caixa::Cancelar};
    {
        frmVerifica_Pergunta janela;
        janela.cmdVerifica_Duplicidade_Click();
        EXPECT_TRUE(Fechou(janela));
    }
    EXPECT_EQ(Marcas(3), "C..");
    EXPECT_FALSE(Transação_Aberta());

    Plataforma.Textos_Entradas.clear();
    Plataforma.Entradas = {"construtor", "construiu"};
    frmVerifica_Pergunta outra;
    outra.cmdVerifica_Duplicidade_Click();
    EXPECT_EQ(Plataforma.Textos_Entradas,
              QStringList({Pedido("Quem foi o construtor da arca?"), Pedido("Quem construiu a arca?")}));
    EXPECT_EQ(Marcas(3), "CCC");
}

TEST_F(Verifica_Pergunta_Teste,
       CancelarBreaksTheDuplicateWalkKeepingTheMarksAndTheNextWalkGoesOnWhereItStopped) {
    for (int i = 1; i <= 4; ++i) Insere(QString("Pergunta %1?").arg(i), QString("Resposta %1").arg(i));
    frmVerifica_Pergunta janela;
    int passagens = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++passagens == 2) janela.cmdCancelar->click();
    };
    janela.cmdVerifica_Duplicidade_Click();
    EXPECT_EQ(Marcas(4), "CC..");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_FALSE(Fechou(janela));
    EXPECT_EQ(Botões(janela), "SDVAE--");
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_TRUE(Tabela_Dynaset.Source.isEmpty());

    passagens = 10;
    janela.cmdVerifica_Duplicidade_Click();
    EXPECT_EQ(passagens, 12);  // only the two rows left were walked
    EXPECT_EQ(Marcas(4), "CCCC");
    EXPECT_TRUE(Fechou(janela));
}

TEST_F(Verifica_Pergunta_Teste, CoherenceWalkStopsAtEachUnverifiedQuestionAndClosesAfterTheLast) {
    Insere("Quem construiu a arca?", "Noé", true, true);
    Insere("Quem foi o construtor da arca?", "Noé", true);
    Insere("Quem escreveu Atos?", "Lucas");
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Coerência_Click();
    EXPECT_EQ(janela.txtPergunta->Text(), "Quem foi o construtor da arca?");
    EXPECT_EQ(janela.txtResposta_Correta->text(), "Noé");
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(janela.windowTitle(), "Alteração da Pergunta 2");
    EXPECT_EQ(Botões(janela), "-----OC");
    EXPECT_TRUE(Transação_Aberta());

    // A No at the confirmation brings the same question back, unmarked.
    Plataforma.Respostas = {Resposta_Caixa::Não};
    janela.cmdOk->click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({"Confirma COERÊNCIA?"}));
    EXPECT_EQ(janela.txtPergunta->Text(), "Quem foi o construtor da arca?");
    EXPECT_EQ(Marcas(3), "BC.");

    // OK with the text unchanged marks the row all the same: the reading is what counts.
    janela.cmdOk->click();
    EXPECT_EQ(Marcas(3), "BB.");
    EXPECT_EQ(janela.txtPergunta->Text(), "Quem escreveu Atos?");
    EXPECT_EQ(janela.windowTitle(), "Alteração da Pergunta 3");

    // A correction is written with the answers capitalised; kind, comparison and export wording stay.
    janela.txtPergunta->Set_Text("Quem escreveu o livro de Atos?");
    janela.txtResposta_Correta->setText("lucas e marcos");
    janela.cmdOk->click();
    EXPECT_EQ(Campo(3, "Pergunta").toString(), "Quem escreveu o livro de Atos?");
    EXPECT_EQ(Campo(3, "Resposta_Correta").toString(), "Lucas e Marcos");
    EXPECT_EQ(Campo(3, "Tipo").toString(), "B");
    EXPECT_EQ(Campo(3, "Pergunta_Original").toString(), "Como foi enviada");
    EXPECT_EQ(Marcas(3), "BBV");
    EXPECT_TRUE(Fechou(janela));
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Verifica_Pergunta_Teste, CancelarBreaksTheCoherenceWalkAndANewWindowResumesAtTheSameQuestion) {
    Insere("Primeira?", "Um");
    Insere("Segunda?", "Dois");
    Insere("Terceira?", "Três");
    {
        frmVerifica_Pergunta janela;
        janela.cmdVerifica_Coerência_Click();
        janela.cmdOk->click();
        EXPECT_EQ(janela.txtPergunta->Text(), "Segunda?");
        janela.txtPergunta->Set_Text("Texto que não chegou a ser confirmado");
        janela.cmdCancelar->click();
        EXPECT_EQ(Botões(janela), "SDVAE--");
        EXPECT_EQ(janela.txtPergunta->Text(), "Segunda?");
        EXPECT_FALSE(Transação_Aberta());
        EXPECT_FALSE(Fechou(janela));
        janela.cmdSair->click();
    }
    EXPECT_EQ(Marcas(3), "V..");
    EXPECT_EQ(Campo(2, "Pergunta").toString(), "Segunda?");

    frmVerifica_Pergunta outra;
    outra.cmdVerifica_Coerência_Click();
    EXPECT_EQ(outra.txtPergunta->Text(), "Segunda?");
    EXPECT_EQ(outra.pgbBarra_De_Progresso->value(), 1);
    outra.cmdCancelar->click();

    // At rest the question shown can be deleted, as in the register.
    Plataforma.Caixas.clear();
    outra.cmdExclusão->click();
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({"Confirma EXCLUSÃO?"}));
    EXPECT_EQ(Marcas(3), "Vx.");
    EXPECT_FALSE(outra.txtPergunta->Text().isEmpty());
    EXPECT_FALSE(Transação_Aberta());
}

TEST_F(Verifica_Pergunta_Teste, EmptyBankAndSingleQuestion) {
    {
        frmVerifica_Pergunta janela;
        janela.cmdVerifica_Duplicidade_Click();
        EXPECT_TRUE(Fechou(janela));
    }
    {
        frmVerifica_Pergunta janela;
        janela.cmdVerifica_Coerência_Click();
        EXPECT_TRUE(Fechou(janela));
    }
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());

    Insere("Única?", "Sozinha");
    {
        frmVerifica_Pergunta janela;
        janela.cmdVerifica_Duplicidade_Click();
        EXPECT_TRUE(Fechou(janela));
    }
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_TRUE(Plataforma.Textos_Entradas.isEmpty());
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Coerência_Click();
    EXPECT_EQ(janela.txtPergunta->Text(), "Única?");
    janela.cmdOk->click();
    EXPECT_EQ(Marcas(1), "B");
    EXPECT_TRUE(Fechou(janela));
}

namespace {
// Another running copy holding question `código`: for `ms` milliseconds, or until killed with 0.
void Outro_Trava(QProcess& outro, const QString& pasta, int código, int ms) {
    outro.start(qEnvironmentVariable("QUIZORA_AUXILIAR"),
                {pasta, QString::number(código), QString::number(ms)});
    ASSERT_TRUE(outro.waitForStarted(10000));
    ASSERT_TRUE(outro.waitForReadyRead(20000)) << outro.readAllStandardError().toStdString();
    ASSERT_EQ(outro.readLine().trimmed(), "TRAVADO");
}
}  // namespace

TEST_F(Verifica_Pergunta_Teste, AQuestionHeldElsewhereIsWaitedForWithTheWindowAnswering) {
    Insere("Primeira?", "Um");
    Insere("Segunda?", "Dois");
    QProcess outro;
    Outro_Trava(outro, Pasta.Caminho(), 1, 1500);
    frmVerifica_Pergunta janela;
    janela.cmdVerifica_Duplicidade_Click();
    outro.waitForFinished(10000);
    // The walk waited, letting events through, until the other copy saved and let the row go.
    EXPECT_GT(Plataforma.Eventos_Processados, 2);
    EXPECT_TRUE(Plataforma.Sonos.contains(1000));
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Campo(1, "Resposta_Correta").toString(), "Alterada pelo outro");
    EXPECT_EQ(Marcas(2), "CC");
    EXPECT_TRUE(Fechou(janela));
}

TEST_F(Verifica_Pergunta_Teste, CancelarGivesUpTheWaitForAHeldQuestion) {
    Insere("Primeira?", "Um");
    QProcess outro;
    Outro_Trava(outro, Pasta.Caminho(), 1, 0);
    frmVerifica_Pergunta janela;
    int passagens = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++passagens == 3) janela.cmdCancelar->click();
    };
    janela.cmdVerifica_Duplicidade_Click();
    outro.kill();
    outro.waitForFinished(5000);
    EXPECT_EQ(Marcas(1), ".");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_FALSE(Desiste_Da_Espera);
    EXPECT_EQ(Botões(janela), "SDVAE--");
    EXPECT_FALSE(Fechou(janela));
}

TEST_F(Verifica_Pergunta_Teste, TheMenuEntryOpensTheWindowAndPutsTheSecondConnectionBackOnTheMainDatabase) {
    frmPrincipal principal;  // loads through the upgrade window; not shown, so no login comes up
    auto* cadastros = principal.findChild<QMenu*>("mnuCadastros");
    ASSERT_NE(cadastros, nullptr);
    QAction* entrada = nullptr;
    for (QAction* a : cadastros->actions())
        if (a->objectName() == "mnuVerifica_Pergunta") entrada = a;
    ASSERT_NE(entrada, nullptr);
    EXPECT_EQ(entrada->text(), "&Verifica Perguntas");

    QString aberta;
    QTimer::singleShot(0, [&] {
        QWidget* janela = QApplication::activeModalWidget();
        if (janela == nullptr) return;
        aberta = janela->objectName();
        // Whatever the window did with the second connection, the menu puts it back.
        Reaponta_Conexão(Conexão_Secundária, Conexão_Auditoria());
        if (auto* sair = janela->findChild<QPushButton*>("cmdSair")) sair->click();
    });
    entrada->trigger();
    EXPECT_EQ(aberta, "frmVerifica_Pergunta");
    EXPECT_EQ(Conexão_Secundária.ConnectionString, Conexão_Principal());
    EXPECT_FALSE(Transação_Aberta());
}
