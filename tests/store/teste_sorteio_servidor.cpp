// A game turn's store work on either engine: the question drawn, the history trimmed and written, the audit
// rows; on a server, a write the server refuses when the turn commits.
#include <gtest/gtest.h>
#include <libpq-fe.h>

#include <deque>

#include "common/Globais.h"
#include "game/Regras_Jogo.h"
#include "game/frmJogo.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "store/Tradutor_SQL.h"
#include "failure/Trata_Erro.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
const QDate Hoje(2019, 3, 14);

// Rows of a statement, each as its columns joined by "|".
QStringList Linhas(const QString& sql, Ligação& conexão) {
    Registros r;
    r.Open(sql, conexão, Opção_Abertura::Tabela_Direta);
    QStringList linhas;
    for (; r.Aberto() && !r.Eof(); r.MoveNext()) {
        QStringList campos;
        for (int i = 0; i < r.Fields_Count(); ++i) {
            const QVariant v = r.Fields(i).Value();
            QString texto = v.toString();
            // A date as its day: the store keeps it at midnight.
            if (v.typeId() == QMetaType::QDateTime)
                texto = v.toDateTime().toString("yyyy-MM-dd");
            else if (texto.size() == 19 && texto[4] == '-' && texto.endsWith("00:00:00"))
                texto = texto.left(10);
            campos << texto;
        }
        linhas << campos.join('|');
    }
    return linhas;
}

class Sorteio_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    // Five questions; a full history of 501 rows whose oldest shows question 3, and question 2 shown since.
    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Cadastra_Perguntas(5);
        Inicia_Transação();
        for (int i = 0; i < 501; ++i) {
            const int código = i == 0 ? 3 : i == 7 ? 2 : 1000 + i;
            // Days away from the changes of daylight saving time, whose midnight a clock may skip.
            const QDate dia = i == 0 ? Hoje.addDays(-700) : Hoje.addDays(-1 - i % 50);
            Conexão_Secundária.Execute(
                "Insert Into tblPergunta_Já_Mostrada (Código_Pergunta, Data_Jogo) Values (" +
                QString::number(código) + ", '" + Data_Para_Banco(QDateTime(dia, QTime(0, 0))) + "')");
        }
        Finaliza_Transação();
        Auditoria_Antes = static_cast<int>(Auditoria().size());
        Operação = "";
        Plataforma.Caixas.clear();
    }

    // One turn with scripted draws: code 0 (no question), code 2 (the history is trimmed of its oldest row,
    // and 2 was shown), code 3 (shown once, but that row was just trimmed): question 3 is drawn.
    Resultado_Rodada Rodada(frmJogo& janela) {
        std::deque<double> sorteios = {0.0, 2.5 / 6, 3.5 / 6, 0.1, 0.3, 0.6, 0.9};
        const Acaso acaso([&sorteios] {
            const double u = sorteios.empty() ? 0.5 : sorteios.front();
            if (!sorteios.empty()) sorteios.pop_front();
            return u;
        });
        Registra_Jogador(janela.Jogo, 1, "Ana");
        Inicia_Transação();
        const Resultado_Rodada r = ::Nova_Rodada(janela.Jogo, janela, Hoje, acaso);
        Finaliza_Transação();
        return r;
    }

    QStringList Histórico() {
        return Linhas(
            "Select Código_Pergunta, Data_Jogo From tblPergunta_Já_Mostrada Order By Data_Jogo, "
            "Código_Pergunta",
            Conexão_Secundária);
    }
    static QStringList Auditoria() {
        return Linhas(
            "Select Manutenção, Data_Manutenção, Hora_Manutenção From tblManutenção_Banco_de_Dados Order By "
            "Código_Manutenção_Banco_de_Dados",
            Conexão_Manutenção);
    }
    // The audit rows written since SetUp.
    QStringList Auditoria_Nova() { return Auditoria().mid(Auditoria_Antes); }
    int Auditoria_Antes = 0;
};

}  // namespace

TEST_F(Sorteio_Teste, ATurnDrawsTheSameQuestionAndWritesTheSameHistoryAndAuditOnEitherEngine) {
    const QStringList antes = Histórico();
    ASSERT_EQ(antes.size(), 501);
    ASSERT_EQ(antes.first(), "3|" + Hoje.addDays(-700).toString("yyyy-MM-dd"));
    frmJogo janela;
    ASSERT_EQ(Rodada(janela), Resultado_Rodada::Pergunta_Sorteada);
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Código_Pergunta, 3);
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Pergunta, "Pergunta número 3?");
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Resposta_Correta, "Certa 3");
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Tipo, "G");
    QStringList respostas(janela.Jogo.Respostas_Exibidas.begin(), janela.Jogo.Respostas_Exibidas.end());
    respostas.sort();
    EXPECT_EQ(respostas, (QStringList{"Certa 3", "Errada A3", "Errada B3", "Errada C3"}));

    // The oldest row went, the drawn question came in with today's date; nothing else changed.
    const QStringList depois = Histórico();
    EXPECT_EQ(depois.mid(0, 500), antes.mid(1));
    EXPECT_EQ(depois.value(500), "3|" + Hoje.toString("yyyy-MM-dd"));
    EXPECT_EQ(depois.size(), 501);

    // One audit row for the trim and one for the new row, worded as the window's writes word them.
    const QString dia = Hoje.toString("yyyy-MM-dd");
    const QString hora = Plataforma.Relógio.toString("HH:mm:ss");
    QStringList auditoria = Auditoria_Nova();
    auditoria.sort();
    EXPECT_EQ(auditoria,
              (QStringList{"Atualizando Pergunta_Já_Mostrada onde Código_Pergunta = 3|" + dia + "|" + hora,
                           "AtualizandoSelect * From tblPergunta_Já_Mostrada Order By Dat onde "
                           "Código_Pergunta = 3|" +
                               dia + "|" + hora}));
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Gravação_Recusada);

    // The next turn sees what this one wrote: the history is at its limit, question 3 is shown now.
    std::deque<double> sorteios = {3.5 / 6, 1.5 / 6, 0.1, 0.3, 0.6, 0.9};
    const Acaso acaso([&sorteios] {
        const double u = sorteios.empty() ? 0.5 : sorteios.front();
        if (!sorteios.empty()) sorteios.pop_front();
        return u;
    });
    Inicia_Transação();
    ASSERT_EQ(::Nova_Rodada(janela.Jogo, janela, Hoje, acaso), Resultado_Rodada::Pergunta_Sorteada);
    Finaliza_Transação();
    EXPECT_EQ(janela.Jogo.Pergunta_Atual.Código_Pergunta, 1);
    const QStringList terceiro = Histórico();
    EXPECT_EQ(terceiro.size(), 501);
    EXPECT_EQ(terceiro.mid(0, 499), depois.mid(1, 499));
    EXPECT_EQ(terceiro.mid(499), (QStringList{"1|" + dia, "3|" + dia}));
}

// On a server the turn's writes travel with its commit: one the server refuses there is told, and the
// whole turn is undone, its audit rows with it.
TEST_F(Sorteio_Teste, AWriteTheServerRefusesAtTheCommitIsToldAndTheWholeTurnIsUndone) {
    if (!Testa_No_Servidor() || !Servidor_Teste::Ativo()) GTEST_SKIP() << "Só no servidor";
    PGconn* c = PQconnectdb(Conexão_Do_Servidor(Caminho_Banco_Principal()).toUtf8().constData());
    ASSERT_EQ(PQstatus(c), CONNECTION_OK);
    const QByteArray esquema = Esquema_Do_Servidor(Caminho_Banco_Principal()).toUtf8();
    PGresult* r = PQexec(
        c, "CREATE FUNCTION " + esquema +
               ".recusa() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE EXCEPTION 'o disco do servidor "
               "encheu' USING ERRCODE = '53100'; END $$; CREATE TRIGGER recusa BEFORE INSERT ON " +
               esquema + ".\"tblPergunta_Já_Mostrada\" FOR EACH ROW EXECUTE FUNCTION " + esquema +
               ".recusa()");
    ASSERT_EQ(PQresultStatus(r), PGRES_COMMAND_OK) << PQerrorMessage(c);
    PQclear(r);
    PQfinish(c);

    const QStringList antes = Histórico();
    frmJogo janela;
    Rodada(janela);
    // The words of a write the server refuses, as the window's own writes tell them.
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, Traduz_Erro(Erro_Bloqueado, "", "Grava") + ".");
    EXPECT_TRUE(Gravação_Recusada);
    EXPECT_EQ(Histórico(), antes);
    EXPECT_TRUE(Auditoria_Nova().isEmpty()) << Auditoria_Nova().join('\n').toStdString();
}
