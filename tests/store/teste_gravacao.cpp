// Transactions, the write loop and the audit trail.
#include <gtest/gtest.h>

#include <QFile>
#include <sqlite3.h>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "store/Funções_Banco.h"
#include "support/Disco_Simulado.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Gravação_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    void SetUp() override {
        Cria_Bancos_De_Teste();
        Abre_Tabela("tblUsuário");
    }

    void Inclui_Usuário(const QString& nome) {
        Operação = "Inclusão";
        Inicia_Transação();
        Tabela.AddNew();
        Tabela.Fields("Usuário").Set_Value(nome);
        Tabela.Fields("Senha").Set_Value(123);
        Grava(Tabela, false);
        Finaliza_Transação();
    }

    QStringList Auditoria() {
        QStringList textos;
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        for (Tabela_Manutenção.MoveFirst(); !Tabela_Manutenção.Eof(); Tabela_Manutenção.MoveNext())
            textos << Tabela_Manutenção.Fields("Manutenção").Value().toString();
        return textos;
    }
};
}  // namespace

TEST_F(Gravação_Teste, TransactionStateMovesOnlyFromAnOpenTransaction) {
    EXPECT_EQ(Estado_Transação, "");
    Finaliza_Transação();
    EXPECT_EQ(Estado_Transação, "");
    Desfaz_Transação();
    EXPECT_EQ(Estado_Transação, "");

    Inicia_Transação();
    EXPECT_EQ(Estado_Transação, "Iniciou Transação");
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("Perdido");
    Tabela.Update();
    // A new transaction never nests: it undoes what was left behind, with no message.
    Inicia_Transação();
    EXPECT_EQ(Estado_Transação, "Iniciou Transação");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    Finaliza_Transação();
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 0);

    Inclui_Usuário("Mantido");
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("Cancelado");
    Tabela.Update();
    Desfaz_Transação();
    EXPECT_EQ(Estado_Transação, "Desfez Transação");
    Abre_Tabela("tblUsuário");
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 1);
    EXPECT_EQ(Tabela.Fields("Usuário").Value().toString(), "Mantido");
}

TEST_F(Gravação_Teste, WriteLeavesAnAuditRowThatSurvivesRollback) {
    Inclui_Usuário("Maria");
    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    Tabela.Fields("Senha").Set_Value(456);
    Grava(Tabela, false);
    Desfaz_Transação();

    const QStringList textos = Auditoria();
    ASSERT_EQ(textos.size(), 2);
    EXPECT_EQ(textos[0], "Incluindo Usuário onde Usuário = Maria");
    EXPECT_EQ(textos[1], "Alterando Usuário onde Usuário = Maria");
    Tabela_Manutenção.MoveFirst();
    EXPECT_EQ(Tabela_Manutenção.Fields("Usuário").Value().toString(), "Supervisor");
    EXPECT_EQ(Tabela_Manutenção.Fields("Data_Manutenção").Value().toDateTime(),
              QDateTime(QDate(2019, 3, 14), QTime(0, 0)));
    EXPECT_EQ(Tabela_Manutenção.Fields("Hora_Manutenção").Value().toString(), "14:30:00");
    Abre_Tabela("tblUsuário");
    EXPECT_EQ(Tabela.Fields("Senha").Value().toInt(), 123);  // the change itself was rolled back
}

TEST_F(Gravação_Teste, DuplicateFromARegisterShowsOneMessageAndWritesNoAudit) {
    Inclui_Usuário("Maria");
    Em_Cadastro = true;
    Inclui_Usuário("MARIA");
    EXPECT_TRUE(Registro_Duplicado);
    EXPECT_TRUE(Sai_da_Gravação);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto, "Informação já cadastrada no banco de dados.");
    EXPECT_EQ(Plataforma.Sonos.size(), 2);  // the round's two updates, then the loop ends
    EXPECT_EQ(Auditoria().size(), 1);
    EXPECT_FALSE(QFile::exists(Caminho_Log_Ocorrências()));
    Abre_Tabela("tblUsuário");
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 1);
}

TEST_F(Gravação_Teste, AuditTextFollowsTheSourceAndIsCutAtOneHundred) {
    Monitora_Log = false;
    Inclui_Usuário("Sem auditoria");
    EXPECT_TRUE(Auditoria().isEmpty());
    Monitora_Log = true;

    // A slot opened on a statement joins the verb to the statement's first 50 characters.
    Abre_Tabela("Select * From tblUsuário Where Usuário = 'Sem auditoria'");
    Operação = "Consulta";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    Tabela.Fields("Senha").Set_Value(1);
    Grava(Tabela, false);
    Finaliza_Transação();
    QStringList textos = Auditoria();
    ASSERT_EQ(textos.size(), 1);
    EXPECT_EQ(textos[0],
              "AtualizandoSelect * From tblUsuário Where Usuário = 'Sem audi onde Usuário = Sem auditoria");

    Abre_Tabela("tblUsuário");
    Inclui_Usuário(QString(20, 'z'));
    Operação = "Exclusão";
    Tabela.MoveLast();
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    Grava(Tabela, true);
    Finaliza_Transação();
    textos = Auditoria();
    ASSERT_EQ(textos.size(), 3);
    EXPECT_EQ(textos[2], "Excluindo Usuário onde Usuário = " + QString(20, 'z'));

    // A key of blanks leaves the text ending in " = ", trimmed to "=".
    Abre_Tabela("tblPergunta");
    Operação = "Inclusão";
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value(QString(124, 'p'));
    Grava(Tabela, false);
    Tabela.AddNew();
    Tabela.Fields("Resposta_Correta").Set_Value("Sem pergunta");
    Grava(Tabela, false);
    Finaliza_Transação();
    textos = Auditoria();
    ASSERT_EQ(textos.size(), 5);
    EXPECT_EQ(textos[3].size(), 100);
    EXPECT_TRUE(textos[3].startsWith("Incluindo Pergunta onde Pergunta = ppp"));
    EXPECT_EQ(textos[4], "Incluindo Pergunta onde Pergunta =");
}

TEST_F(Gravação_Teste, LockOnAnEmptyTableSucceedsWithoutTouchingTheStore) {
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    EXPECT_TRUE(Travou);
    EXPECT_EQ(Estado_Transação, "Iniciou Transação");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
}

TEST_F(Gravação_Teste, ClosingAConnectionWithAnOpenTransactionTellsAndRollsBack) {
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Usuário").Set_Value("Desfeito");
    Tabela.Update();
    Fechar_Conexão(Conexão_Temporária);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("Sistema desfez a última transação"));
    EXPECT_EQ(Plataforma.Bipes, 25);
    EXPECT_EQ(Estado_Transação, "Desfez Transação");
    EXPECT_FALSE(Conexão_Temporária.Aberta());
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 0);
    Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());
    EXPECT_TRUE(Conexão_Temporária.Aberta());
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
}

TEST_F(Gravação_Teste, AFailedCommitEndsTheProgramThroughTheHandler) {
    // A write on a slot whose table has vanished is not excused: logged, shown, the end.
    Abre_Tabela("tblPergunta");
    Conexão.Execute("DROP TABLE tblPergunta");
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("Órfã");
    EXPECT_THROW(Grava(Tabela, false), Programa_Encerrado);
    EXPECT_TRUE(QFile::exists(Caminho_Log_Ocorrências()));
}

// A write that the store can never accept is told once and logged once, with no waiting and no audit row.
TEST_F(Gravação_Teste, AValueRefusedForGoodIsToldOnceLoggedOnceAndLeavesNoAuditRow) {
    Em_Cadastro = true;
    Inclui_Usuário("");  // an empty key, and the field takes no empty text
    EXPECT_TRUE(Registro_Duplicado);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.endsWith("A informação não foi gravada."));
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_TRUE(Plataforma.Sonos.isEmpty());
    EXPECT_TRUE(Auditoria().isEmpty());
    QFile log(Caminho_Log_Ocorrências());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count("Sub-Rotina: Grava()"), 1);
    log.close();

    // A key left Null: the same single report, and the next good write goes through with its audit row.
    Plataforma.Caixas.clear();
    Operação = "Inclusão";
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Senha").Set_Value(7);
    Grava(Tabela, false);
    Finaliza_Transação();
    EXPECT_TRUE(Registro_Duplicado);
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Auditoria().isEmpty());
    Inclui_Usuário("Ana");
    EXPECT_FALSE(Registro_Duplicado);
    EXPECT_EQ(Auditoria(), QStringList{"Incluindo Usuário onde Usuário = Ana"});
    Abre_Tabela("tblUsuário");
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 1);
}

// The audit register points Conexão at the audit database: a roll-back must not take the audit row away.
TEST_F(Gravação_Teste, TheAuditRowSurvivesARollBackWhenTheTransactionIsOnTheAuditDatabase) {
    Conexão.Open(Conexão_Auditoria());
    Abre_Tabela("tblManutenção_Banco_de_Dados");
    Operação = "Inclusão";
    Inicia_Transação();
    Tabela.AddNew();
    Tabela.Fields("Manutenção").Set_Value("Desfeita");
    Grava(Tabela, false);
    Desfaz_Transação();
    EXPECT_EQ(Auditoria(), QStringList{"Incluindo Manutenção_Banco_de_Dados onde Manutenção = Desfeita"});
    Finaliza_Transação();
    EXPECT_EQ(Auditoria().size(), 1);
}

// Another workstation holds the file: the write waits and passes once it is free, with one audit row.
TEST_F(Gravação_Teste, AWriteRefusedWhileAnotherWorkstationHoldsTheFilePassesOnceItIsFree) {
    SO_NO_EMBUTIDO("o servidor não trava o banco inteiro para escrever");
    sqlite3* outro = nullptr;
    ASSERT_EQ(sqlite3_open(Caminho_Banco_Principal().toUtf8().constData(), &outro), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(outro, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    Plataforma.Ao_Esperar = [&outro] {
        if (outro == nullptr) return;
        sqlite3_exec(outro, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(outro);
        outro = nullptr;
    };
    Inclui_Usuário("Bruno");
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(outro, nullptr);
    EXPECT_FALSE(Registro_Duplicado);
    ASSERT_GE(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_EQ(Auditoria(), QStringList{"Incluindo Usuário onde Usuário = Bruno"});
    Abre_Tabela("tblUsuário");
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 1);
}

namespace {
// The databases on a disk that fills up or turns read-only on command.
class Disco_Teste : public Gravação_Teste {
  protected:
    void SetUp() override {
        Disco_Simulado::Instala();
        Gravação_Teste::SetUp();
    }
    void TearDown() override { Disco_Simulado::Desinstala(); }

    // The journals emptied into the files, so that the next commit has to make its journal grow.
    static void Esvazia_Diários() {
        for (Ligação* c : {&Conexão, &Conexão_Manutenção})
            ASSERT_EQ(sqlite3_wal_checkpoint_v2(c->Sessão_Física()->Banco, nullptr,
                                                SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr),
                      SQLITE_OK);
    }
    int Usuários() {
        Abre_Tabela("tblUsuário");
        return Lastrec("tblUsuário", Conexão);
    }
    QString Log() {
        QFile log(Caminho_Log_Ocorrências());
        return log.open(QIODevice::ReadOnly) ? De_Cp1252(log.readAll()) : QString();
    }
    // The connections opened again: databases opened read-only, or writable again, by the system.
    static void Reabre_Bancos() {
        Reinicia_Estado_Global();
        for (Ligação* c :
             {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
            c->Open(Conexão_Principal());
        Conexão_Manutenção.Open(Conexão_Auditoria());
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        Abre_Tabela("tblUsuário");
    }
};
}  // namespace

// A full disk refuses the audit row and the commit: one message that says so and names the folder, an entry
// in the log, no wait, nothing kept; once there is room the same write passes.
TEST_F(Disco_Teste, AFullDiskIsToldOnceWithItsFolderKeepsNothingAndTheSameWritePassesOnceThereIsRoom) {
    SO_NO_EMBUTIDO("o disco simulado é o do banco embutido");
    Em_Cadastro = true;
    Inclui_Usuário("Ana");
    Esvazia_Diários();
    Disco_Simulado::Enche(true);
    Inclui_Usuário("Bia");
    ASSERT_EQ(Plataforma.Caixas.size(), 1) << Plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_EQ(Plataforma.Caixas[0].Texto,
              "Não há espaço em disco para gravar na pasta " + Pasta.Dados() +
                  ": a gravação foi recusada. Libere espaço nesse disco e tente de "
                  "novo.");
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_TRUE(Gravação_Recusada);
    EXPECT_TRUE(Plataforma.Sonos.isEmpty());
    EXPECT_TRUE(Log().contains("Descrição do Erro: Não há espaço em disco para gravar na pasta"));
    EXPECT_TRUE(Log().contains("Código: 3026"));

    Disco_Simulado::Enche(false);
    EXPECT_EQ(Usuários(), 1);
    Inclui_Usuário("Bia");
    EXPECT_FALSE(Gravação_Recusada);
    EXPECT_EQ(Usuários(), 2);
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Auditoria().count("Incluindo Usuário onde Usuário = Bia"), 1);
}

// The row itself refused when the file cannot grow: the loop gives up at once and the caller sees a
// refused write. The engine undoes the whole transaction for such a failure: nothing of it is written, and
// no later write of the same transaction slips in on its own.
TEST_F(Disco_Teste, ARowThatFindsNoRoomIsGivenUpAtOnceAndToldOnce) {
    SO_NO_EMBUTIDO("o disco simulado é o do banco embutido");
    sqlite3* banco = Conexão.Sessão_Física()->Banco;
    ASSERT_EQ(sqlite3_exec(banco, "PRAGMA max_page_count = 1", nullptr, nullptr, nullptr), SQLITE_OK);
    Abre_Tabela("tblPergunta");
    Operação = "Inclusão";
    Inicia_Transação();
    int gravadas = 0;
    for (; gravadas < 200; ++gravadas) {
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(QString("%1 ").arg(gravadas) + QString(110, 'x'));
        Grava(Tabela, false);
        if (Gravação_Recusada) break;
    }
    EXPECT_GT(gravadas, 0);
    EXPECT_LT(gravadas, 200);
    EXPECT_TRUE(Registro_Duplicado);
    EXPECT_FALSE(Tabela.Em_Edição());
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("Depois da recusa");
    Grava(Tabela, false);
    Finaliza_Transação();
    EXPECT_TRUE(Gravação_Recusada);
    ASSERT_EQ(Plataforma.Caixas.size(), 1) << Plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("Não há espaço em disco para gravar na pasta"));
    EXPECT_TRUE(Plataforma.Sonos.isEmpty());
    EXPECT_TRUE(Log().contains("Sub-Rotina: Grava()"));
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 0);
}

// A database that the system opened read-only: the write told once as such, nothing kept.
TEST_F(Disco_Teste, ADatabaseTheSystemMadeReadOnlyIsToldOnceAndKeepsNothing) {
    SO_NO_EMBUTIDO("o disco simulado é o do banco embutido");
    Inclui_Usuário("Ana");
    Disco_Simulado::Só_Leitura(true);
    Reabre_Bancos();
    Inclui_Usuário("Bia");
    ASSERT_EQ(Plataforma.Caixas.size(), 1) << Plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("O sistema abriu o banco de dados " + Pasta.Dados()));
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains("somente para leitura: a gravação foi recusada"));
    EXPECT_TRUE(Gravação_Recusada);
    EXPECT_TRUE(Log().contains("Código: 3051"));
    Disco_Simulado::Só_Leitura(false);
    Reabre_Bancos();
    EXPECT_EQ(Usuários(), 1);
    Inclui_Usuário("Bia");
    EXPECT_FALSE(Gravação_Recusada);
    EXPECT_EQ(Usuários(), 2);
}
