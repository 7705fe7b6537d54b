// Moving an installation that kept its data in the embedded files to the server its Dados/Servidor.txt
// names. It needs a server, and so runs only in the run of the store's tests on the throwaway cluster.
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include "common/Globais.h"
#include "store/Funções_Banco.h"
#include "store/Migração_Servidor.h"
#include "store/Sessão_Servidor.h"
#include "statistics/Estatísticas.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
QByteArray Resumo(const QString& caminho) {
    QFile arquivo(caminho);
    if (!arquivo.open(QIODevice::ReadOnly)) return "ausente";
    return QCryptographicHash::hash(arquivo.readAll(), QCryptographicHash::Sha1).toHex();
}

// The database files and their journals, which the migration reads and must leave as they were.
QStringList Resumos(const QString& pasta_dados) {
    QStringList resumos;
    for (const char* nome : {"Dados.Mdb", "Dados.Mdb-wal", "Dados.Mdb-shm", "Manutenção.Mdb",
                             "Manutenção.Mdb-wal", "Manutenção.Mdb-shm"})
        resumos << QString(nome) + " " + Resumo(pasta_dados + "/" + nome);
    return resumos;
}

int Conta(const QString& tabela, Ligação& conexão) {
    Registros r;
    r.Open("Select Count (*) From " + tabela, conexão, Opção_Abertura::Texto);
    return r.Fields(0).Value().toInt();
}

class Migração_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QString Servidor;  // what the test folder's Servidor.txt names
    QStringList Passos;

    void SetUp() override {
        if (!Testa_No_Servidor()) GTEST_SKIP() << "A migração precisa de um servidor";
        // The installation starts embedded: the file that names the server comes in only to migrate.
        QFile arquivo(Pasta.Dados() + "/" + Arquivo_Servidor);
        ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
        Servidor = QString::fromUtf8(arquivo.readAll());
        arquivo.close();
        ASSERT_TRUE(arquivo.remove());
    }

    void Nomeia_Servidor() {
        QFile arquivo(Pasta.Dados() + "/" + Arquivo_Servidor);
        ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly));
        arquivo.write(Servidor.toUtf8());
    }

    bool Migra(QString& erro) {
        return Migra_Para_Servidor(
            Pasta.Dados(), [this](const QString& passo) { Passos << passo; }, erro);
    }
};
}  // namespace

TEST_F(Migração_Teste, EveryTableComesWithItsRowsAndNumberingAndTheFilesStayAsTheyWere) {
    Cria_Bancos_De_Teste();
    ASSERT_FALSE(Conexão.Sessão_Física()->Servidor());
    Conexão.Execute("INSERT INTO tblUsuário (Usuário, Senha) VALUES ('Ana', 7)");
    for (int i = 1; i <= 40; ++i)
        Conexão.Execute(
            "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) VALUES "
            "('Ação nº " +
            QString::number(i) + "?', 'Sim', " + (i % 4 ? "'G'" : "NULL") + ", " + QString::number(i % 2) +
            ")");
    Conexão.Execute("DELETE FROM tblPergunta WHERE Código_Pergunta = 40");  // the numbering is past the rows
    for (int i = 0; i < 300; ++i)
        Conexão_Manutenção.Execute(
            "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, Data_Manutenção, "
            "Hora_Manutenção) VALUES ('Linha " +
            QString::number(i) + "', 'Ana', '2019-03-14 00:00:00', '10:00:00')");
    const int usuários = Conta("tblUsuário", Conexão);
    Reinicia_Estado_Global();
    const QStringList antes = Resumos(Pasta.Dados());

    Nomeia_Servidor();
    QString erro;
    ASSERT_TRUE(Migra(erro)) << erro.toStdString();
    EXPECT_EQ(Resumos(Pasta.Dados()), antes);
    EXPECT_TRUE(Passos.contains("  tblPergunta: 39 linhas"));
    EXPECT_TRUE(Passos.contains("  tblManutenção_Banco_de_Dados: 300 linhas"));

    // The program now reads the server: the same rows, texts, Nulls and booleans.
    for (Ligação* c : {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária})
        c->Open(Conexão_Principal());
    Conexão_Manutenção.Open(Conexão_Auditoria());
    ASSERT_TRUE(Conexão.Sessão_Física()->Servidor());
    EXPECT_EQ(Conta("tblPergunta", Conexão), 39);
    EXPECT_EQ(Conta("tblUsuário", Conexão), usuários);
    EXPECT_EQ(Conta("tblManutenção_Banco_de_Dados", Conexão_Manutenção), 300);
    Abre_Tabela("Select * From tblPergunta Where Pergunta Like 'AÇÃO Nº 8?'");
    ASSERT_FALSE(Tabela.Eof());
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 8);
    EXPECT_FALSE(Tabela.Fields("Tipo").Value().isValid());
    EXPECT_FALSE(Tabela.Fields("Já_Comparada").Value().toBool());

    // A new question is numbered after the greatest number the file had given, deleted rows included.
    Abre_Tabela("tblPergunta");
    Tabela.AddNew();
    Tabela.Fields("Pergunta").Set_Value("Nova");
    Tabela.Fields("Resposta_Correta").Set_Value("x");
    Tabela.Update();
    EXPECT_EQ(Tabela.Fields("Código_Pergunta").Value().toInt(), 40);
}

TEST_F(Migração_Teste, ItRefusesAServerThatHoldsDataAndAFolderThatNamesNoServer) {
    Cria_Bancos_De_Teste();
    Reinicia_Estado_Global();
    QString erro;
    EXPECT_FALSE(Migra(erro));
    EXPECT_TRUE(erro.contains("Servidor.txt")) << erro.toStdString();

    Nomeia_Servidor();
    ASSERT_TRUE(Migra(erro)) << erro.toStdString();
    Conexão.Open(Conexão_Principal());
    Conexão.Execute("INSERT INTO tblUsuário (Usuário, Senha) VALUES ('Bia', 3)");
    const int usuários = Conta("tblUsuário", Conexão);
    Reinicia_Estado_Global();

    // A second run finds the server in use and leaves it alone.
    Passos.clear();
    EXPECT_FALSE(Migra(erro));
    EXPECT_TRUE(erro.startsWith("O banco do servidor não está vazio")) << erro.toStdString();
    Conexão.Open(Conexão_Principal());
    EXPECT_EQ(Conta("tblUsuário", Conexão), usuários);
}

TEST_F(Migração_Teste, TheGamesStatisticsGoAlongAndKeepAddingUpOnTheServer) {
    Cria_Bancos_De_Teste();
    ASSERT_TRUE(Estatísticas::Garante_Banco_Estatísticas());
    Estatísticas::Jogada jogada;
    jogada.Data_Jogada = jogada.Início_Jogo = QDateTime(QDate(2019, 3, 14), QTime(10, 0));
    jogada.Jogador = "Ana";
    jogada.Posição = 1;
    jogada.Código_Pergunta = 7;
    jogada.Tipo = "G";
    jogada.Desfecho = Estatísticas::Desfecho_Certa;
    jogada.Número_Resposta = 0;
    jogada.Valor = 10;
    Falha_Banco falha;
    ASSERT_TRUE(Estatísticas::Grava_Jogada(jogada, falha)) << falha.Descrição.toStdString();
    Reinicia_Estado_Global();

    Nomeia_Servidor();
    QString erro;
    ASSERT_TRUE(Migra(erro)) << erro.toStdString();
    EXPECT_TRUE(Passos.contains("  tblJogada: 1 linha")) << Passos.join(" | ").toStdString();

    // On the server the same turn adds to the same summary row.
    jogada.Data_Jogada = jogada.Data_Jogada.addSecs(30);
    ASSERT_TRUE(Estatísticas::Grava_Jogada(jogada, falha)) << falha.Descrição.toStdString();
    EXPECT_EQ(Estatísticas::Resumo_Pergunta(7), "Respondida 2 vezes, 100% de acertos");
}
