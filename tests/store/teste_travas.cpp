// Row locks between two running copies of the program on one Dados.Mdb.
#include <gtest/gtest.h>

#include <QProcess>
#include <QThread>
#include <csignal>

#include "common/Globais.h"
#include "store/Funções_Banco.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Travas_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QProcess Outro;

    void SetUp() override {
        Cria_Bancos_De_Teste();
        Abre_Tabela("tblPergunta");
        for (const char* p : {"primeira", "segunda"}) {
            Tabela.AddNew();
            Tabela.Fields("Pergunta").Set_Value(p);
            Tabela.Fields("Resposta_Correta").Set_Value("Original");
            Tabela.Update();
        }
    }
    void TearDown() override {
        if (Outro.state() != QProcess::NotRunning) {
            Outro.kill();
            Outro.waitForFinished(5000);
        }
    }

    // Starts the other copy holding question `código` for `ms` milliseconds (0: until killed).
    void Outro_Trava(int código, int ms) {
        Outro.start(qEnvironmentVariable("QUIZORA_AUXILIAR"),
                    {Pasta.Caminho(), QString::number(código), QString::number(ms)});
        ASSERT_TRUE(Outro.waitForStarted(10000));
        ASSERT_TRUE(Outro.waitForReadyRead(20000)) << Outro.readAllStandardError().toStdString();
        ASSERT_EQ(Outro.readLine().trimmed(), "TRAVADO");
    }

    void Posiciona(int código) {
        Abre_Tabela("tblPergunta");
        Tabela.Set_Index("idxCódigo_Pergunta");
        Tabela.Seek(código);
        ASSERT_FALSE(Tabela.Eof());
    }
};
}  // namespace

TEST_F(Travas_Teste, HeldRowRefusesTheSecondCopyOnceAndLeavesOtherRowsFree) {
    Outro_Trava(1, 0);

    Posiciona(1);
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    EXPECT_FALSE(Travou);
    EXPECT_EQ(Estado_Transação, "Desfez Transação");
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Texto,
              "Não foi possível concluir este processamento, pois neste exato momento há outros usuários "
              "utilizando "
              "esta mesma informação!!!\r\rTente refazer novamente este processamento dentro de alguns "
              "instantes...");
    EXPECT_EQ(Plataforma.Caixas[0].Título, "Quizora");
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Exclamação);

    // Another row is free, and the write commits while the other copy still holds its row.
    Posiciona(2);
    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    Tabela.Fields("Resposta_Correta").Set_Value("Mudada aqui");
    Grava(Tabela, false);
    Finaliza_Transação();
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    Posiciona(2);
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Mudada aqui");

    // A copy killed outright releases what it held: at once in the file, within moments on a server, which
    // ends the dead copy's session when it sees the connection gone.
    ::kill(static_cast<pid_t>(Outro.processId()), SIGKILL);
    ASSERT_TRUE(Outro.waitForFinished(10000));
    Plataforma.Ao_Esperar = [] { QThread::msleep(100); };
    Posiciona(1);
    Inicia_Transação();
    Trava(Tabela, Conexão, true);
    EXPECT_TRUE(Travou);
    EXPECT_LE(Plataforma.Sonos.size(), 50);
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    Desfaz_Transação();
}

TEST_F(Travas_Teste, WaitingLockTriesAboutOnceASecondUntilTheRowIsFree) {
    Outro_Trava(1, 1500);
    int tentativas = 0;
    Plataforma.Ao_Esperar = [&] {
        // The double's sleep is instant: let real time pass so that the other copy can finish.
        ++tentativas;
        QThread::msleep(200);
    };
    Posiciona(1);
    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, true);
    EXPECT_TRUE(Travou);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_GE(Plataforma.Sonos.size(), 1);
    for (int ms : Plataforma.Sonos) EXPECT_EQ(ms, 1000);
    EXPECT_GE(Plataforma.Eventos_Processados, Plataforma.Sonos.size());
    EXPECT_EQ(Estado_Transação, "Iniciou Transação");

    // The row now holds what the other copy committed, and this copy can write it.
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Alterada pelo outro");
    Tabela.Fields("Resposta_Correta").Set_Value("Depois da espera");
    Grava(Tabela, false);
    Finaliza_Transação();
    ASSERT_TRUE(Outro.waitForFinished(10000));
    EXPECT_EQ(Outro.exitCode(), 0);
}

// Two workstations alter the same question one after the other: the second starts from a stale read, and
// its lock reads the row again, so the first one's change stays.
TEST_F(Travas_Teste, TheSecondOfTwoWorkstationsAlteringOneQuestionKeepsTheFirstOnesChange) {
    Posiciona(1);
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Original");
    Outro_Trava(1, 1);
    ASSERT_TRUE(Outro.waitForFinished(10000));
    ASSERT_EQ(Outro.exitCode(), 0);

    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Alterada pelo outro");
    Tabela.Fields("Pergunta").Set_Value("primeira, revista");
    Grava(Tabela, false);
    Finaliza_Transação();

    Posiciona(1);
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "primeira, revista");
    EXPECT_EQ(Tabela.Fields("Resposta_Correta").Value().toString(), "Alterada pelo outro");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
}
