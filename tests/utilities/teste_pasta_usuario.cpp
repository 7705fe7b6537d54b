// An installed copy works in the user's own folder: made from the installed one at the first start and
// reused from then on, without touching what the user has there; a folder that can be written is used as is.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "platform/Pasta_Usuário.h"
#include "platform/Plataforma.h"

namespace {
void Escreve(const QString& caminho, const QByteArray& conteúdo) {
    QDir().mkpath(QFileInfo(caminho).path());
    QFile f(caminho);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)) << caminho.toStdString();
    f.write(conteúdo);
}

QByteArray Lê(const QString& caminho) {
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(falta)");
}

void Envelhece(const QString& caminho, int segundos) {
    QFile f(caminho);
    ASSERT_TRUE(f.open(QIODevice::ReadWrite));
    f.setFileTime(QDateTime::currentDateTime().addSecs(-segundos), QFileDevice::FileModificationTime);
}

class Pasta_Usuário_Teste : public ::testing::Test {
  protected:
    QTemporaryDir Raiz;
    QString Instalada, Usuário;
    QByteArray Pasta_Anterior = qgetenv("QUIZORA_PASTA");
    QByteArray Xdg_Anterior = qgetenv("XDG_DATA_HOME");

    void SetUp() override {
        Instalada = Raiz.path() + "/instalada";
        Usuário = Raiz.path() + "/dados do usuário/Quizora";
        Escreve(Instalada + "/Dados/Temp.Mdb", "semente mdb");
        Escreve(Instalada + "/Dados/Temp.Zip", "semente zip");
        Escreve(Instalada + "/Ajuda/Index.Html", "manual 1");
        Escreve(Instalada + "/Ajuda/cit_0001.txt", "citação");
        Escreve(Instalada + "/Ícones/Quizora.Ico", "ícone");
        Escreve(Instalada + "/Sons/acerto.wav", "som");
        QDir().mkpath(Instalada + "/Relatórios");
        qunsetenv("QUIZORA_PASTA");
    }
    void TearDown() override {
        Define_Pasta_Programa(QString());
        if (Pasta_Anterior.isEmpty())
            qunsetenv("QUIZORA_PASTA");
        else
            qputenv("QUIZORA_PASTA", Pasta_Anterior);
        if (Xdg_Anterior.isEmpty())
            qunsetenv("XDG_DATA_HOME");
        else
            qputenv("XDG_DATA_HOME", Xdg_Anterior);
    }
};
}  // namespace

TEST_F(Pasta_Usuário_Teste, TheUserFolderIsMadeOnceAndReusedWithoutTouchingTheUsersFiles) {
    ASSERT_TRUE(Monta_Pasta_Usuário(Instalada, Usuário));
    EXPECT_EQ(Lê(Usuário + "/Dados/Temp.Mdb"), "semente mdb");
    EXPECT_EQ(Lê(Usuário + "/Dados/Temp.Zip"), "semente zip");
    EXPECT_TRUE(QDir(Usuário + "/Relatórios").exists());
    EXPECT_EQ(Lê(Usuário + "/Ajuda/Index.Html"), "manual 1");
    EXPECT_EQ(Lê(Usuário + "/Ajuda/cit_0001.txt"), "citação");
    EXPECT_EQ(Lê(Usuário + "/Ícones/Quizora.Ico"), "ícone");
    EXPECT_EQ(Lê(Usuário + "/Sons/acerto.wav"), "som");
    // The copies are the user's to write, even when the installed files are read-only.
    EXPECT_TRUE(QFile::permissions(Usuário + "/Dados/Temp.Mdb") & QFile::WriteOwner);

    // The first start imports the seeds into the database and consumes them; the user writes a report.
    QFile::remove(Usuário + "/Dados/Temp.Mdb");
    QFile::remove(Usuário + "/Dados/Temp.Zip");
    Escreve(Usuário + "/Dados/Dados.Mdb", "banco do usuário");
    Escreve(Usuário + "/Relatórios/Relatório.Rtf", "relatório");
    Escreve(Usuário + "/Log de Ocorrências.Log", "log");
    // A newer release installs a new manual page and changes one; the user's copy of the icon is newer.
    Escreve(Instalada + "/Ajuda/Novidades.Html", "novidades");
    Envelhece(Usuário + "/Ajuda/Index.Html", 3600);
    Escreve(Instalada + "/Ajuda/Index.Html", "manual 2");
    Escreve(Usuário + "/Ícones/Quizora.Ico", "ícone do usuário");

    ASSERT_TRUE(Monta_Pasta_Usuário(Instalada, Usuário));
    EXPECT_FALSE(QFile::exists(Usuário + "/Dados/Temp.Mdb")) << "a database never gets the seeds again";
    EXPECT_FALSE(QFile::exists(Usuário + "/Dados/Temp.Zip"));
    EXPECT_EQ(Lê(Usuário + "/Dados/Dados.Mdb"), "banco do usuário");
    EXPECT_EQ(Lê(Usuário + "/Relatórios/Relatório.Rtf"), "relatório");
    EXPECT_EQ(Lê(Usuário + "/Log de Ocorrências.Log"), "log");
    EXPECT_EQ(Lê(Usuário + "/Ajuda/Novidades.Html"), "novidades");
    EXPECT_EQ(Lê(Usuário + "/Ajuda/Index.Html"), "manual 2");
    EXPECT_EQ(Lê(Usuário + "/Ícones/Quizora.Ico"), "ícone do usuário");
}

TEST_F(Pasta_Usuário_Teste, AFolderThatCannotBeWrittenOrBelongsToThePackageSendsTheProgramToTheUsersFolder) {
    const QString xdg = Raiz.path() + "/xdg";
    qputenv("XDG_DATA_HOME", xdg.toUtf8());
    EXPECT_EQ(Pasta_Usuário_Padrão(), xdg + "/Quizora");
    // Nobody, not even the administrator, makes files under /proc.
    EXPECT_EQ(Escolhe_Pasta_Programa("/proc/self/fdinfo"), xdg + "/Quizora");
    EXPECT_EQ(Caminho_Programa(), xdg + "/Quizora");
    EXPECT_EQ(Caminho_Dados(), xdg + "/Quizora/Dados");
    EXPECT_TRUE(QDir(xdg + "/Quizora/Dados").exists());
    EXPECT_TRUE(QDir(xdg + "/Quizora/Relatórios").exists());
    // The package's own folder is never written, not even by root.
    EXPECT_EQ(Escolhe_Pasta_Programa("/usr/lib/quizora-inexistente"), xdg + "/Quizora");
    EXPECT_FALSE(QDir("/usr/lib/quizora-inexistente").exists());
    // A relative XDG_DATA_HOME is ignored, as the standard says.
    qputenv("XDG_DATA_HOME", "relativa");
    EXPECT_EQ(Pasta_Usuário_Padrão(), QDir::homePath() + "/.local/share/Quizora");
}

TEST_F(Pasta_Usuário_Teste, AWritableFolderIsUsedAsItIsAndQuizoraPastaStillOverrides) {
    EXPECT_EQ(Escolhe_Pasta_Programa(Instalada, Usuário), Instalada);
    EXPECT_EQ(Caminho_Programa(), Instalada);
    EXPECT_FALSE(QDir(Usuário).exists());
    EXPECT_EQ(Lê(Instalada + "/Dados/Temp.Mdb"), "semente mdb");

    const QString outra = Raiz.path() + "/outra";
    qputenv("QUIZORA_PASTA", outra.toUtf8());
    EXPECT_EQ(Escolhe_Pasta_Programa("/proc/self/fdinfo", Usuário), outra);
    EXPECT_EQ(Caminho_Programa(), outra);
    EXPECT_FALSE(QDir(Usuário).exists());
}
