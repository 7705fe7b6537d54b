// The data folder on a network share: how its file system is found, and the one warning of each start.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QTimer>

#include "common/Globais.h"
#include "platform/Plataforma.h"
#include "platform/Sistema_de_Arquivos.h"
#include "shell/Aviso_Rede.h"
#include "shell/frmPrincipal.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
// A machine with a local disk, shares of each kind, a bind mount of a share and a local folder bound inside a
// share; the optional fields vary from none to two.
const QString Montagens =
    "27 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw,discard\n"
    "40 27 0:45 / /mnt/igreja rw,relatime shared:20 - nfs servidor:/srv/quizora rw,vers=3,addr=10.0.0.2\n"
    "41 27 0:46 / /srv/nfs4 rw shared:21 master:3 - nfs4 servidor:/ rw,vers=4.2\n"
    "42 27 0:47 / /mnt/escola rw,relatime shared:22 - cifs //servidor/dados rw,vers=3.1.1\n"
    "43 27 0:48 / /home/ana/remoto rw,nosuid,nodev,relatime shared:23 - fuse.sshfs ana@servidor:/home/ana "
    "rw,user_id=1000\n"
    "44 27 0:45 /Quizora /opt/Quizora rw,relatime shared:20 - nfs servidor:/srv/quizora rw,vers=3\n"
    "45 40 254:0 /var/lib/quizora /mnt/igreja/local rw - ext4 /dev/vda rw\n"
    "46 27 0:49 / /mnt/rede\\040da\\040Par\xC3\xB3quia rw,relatime shared:24 - smb3 "
    "//servidor/rede\\040da\\040"
    "Par\xC3\xB3quia rw\n"
    "47 27 0:50 / /media/dados rw shared:25 - nfs4 servidor:/antigo rw\n"
    "48 47 8:17 / /media/dados rw shared:26 - ext4 /dev/sdb1 rw\n";

QString Tipo(const char* caminho) {
    return Sistema_de_Arquivos_Em(QString::fromUtf8(caminho), Montagens);
}

int Avisos(const Plataforma_Roteirizada& plataforma) {
    int n = 0;
    for (const Caixa_Mostrada& caixa : plataforma.Caixas) n += caixa.Texto.contains("\"Várias Estações\"");
    return n;
}
}  // namespace

TEST(Sistema_de_Arquivos, TheLongestMountPointThatHoldsThePathGivesItsType) {
    EXPECT_EQ(Tipo("/home/ana/Quizora/Dados"), "ext4");
    EXPECT_EQ(Tipo("/mnt/igreja/Quizora/Dados"), "nfs");
    EXPECT_EQ(Tipo("/mnt/igreja"), "nfs");
    EXPECT_EQ(Tipo("/srv/nfs4/Quizora/Dados"), "nfs4");
    EXPECT_EQ(Tipo("/mnt/escola/Quizora/Dados/"), "cifs");
    EXPECT_EQ(Tipo("/home/ana/remoto/Quizora/Dados"), "fuse.sshfs");
    EXPECT_EQ(Tipo("/mnt/escolar/Dados"), "ext4");  // a sibling whose name begins alike is not on the share
    EXPECT_EQ(Tipo("/home/ana/remoto/../Quizora/Dados"), "ext4");

    // A share bound onto a local path is still the share; a local folder bound inside a share is local.
    EXPECT_EQ(Tipo("/opt/Quizora/Dados"), "nfs");
    EXPECT_EQ(Tipo("/mnt/igreja/local/Dados"), "ext4");
    EXPECT_EQ(Tipo("/mnt/igreja/locais/Dados"), "nfs");

    // Blanks in a mount point come escaped as \040; accented letters stand as they are.
    EXPECT_EQ(Tipo("/mnt/rede da Paróquia/Quizora/Dados"), "smb3");
    EXPECT_EQ(Tipo("/mnt/rede/Dados"), "ext4");

    // A disk mounted over a share hides it.
    EXPECT_EQ(Tipo("/media/dados/Quizora/Dados"), "ext4");

    EXPECT_EQ(Sistema_de_Arquivos_Em("/home/ana", ""), "");
    EXPECT_EQ(Sistema_de_Arquivos_Em("/home/ana", "lixo sem forma\n27 1 254:0 / / rw -\n"), "");
}

TEST(Sistema_de_Arquivos, NetworkTypesAreToldFromLocalOnes) {
    for (const char* tipo : {"nfs", "nfs4", "cifs", "smb3", "smbfs", "fuse.sshfs", "sshfs", "9p", "ceph",
                             "fuse.glusterfs", "afs", "davfs"})
        EXPECT_TRUE(Sistema_de_Arquivos_de_Rede(tipo)) << tipo;
    for (const char* tipo :
         {"ext4", "btrfs", "xfs", "tmpfs", "overlay", "vfat", "fuse", "fuseblk", "proc", ""})
        EXPECT_FALSE(Sistema_de_Arquivos_de_Rede(tipo)) << tipo;
}

TEST(Sistema_de_Arquivos, ThisMachinesFolderIsJudgedWhereItsLinkLeadsAndBeforeItIsMade) {
    Pasta_Teste pasta;
    const QString local = Sistema_de_Arquivos_Da_Pasta(pasta.Caminho());
    EXPECT_FALSE(local.isEmpty());
    EXPECT_EQ(Sistema_de_Arquivos_Da_Pasta(pasta.Caminho() + "/ainda/por fazer"), local);
    // /proc is a file system of its own kind: a folder that links there lies on it.
    const QString ligação = pasta.Caminho() + "/Dados em outro lugar";
    ASSERT_TRUE(QFile::link("/proc", ligação));
    EXPECT_EQ(Sistema_de_Arquivos_Da_Pasta(ligação), "proc");
    EXPECT_EQ(Sistema_de_Arquivos_Da_Pasta(ligação + "/nada"), "proc");
}

namespace {
class Aviso_Rede_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        SO_NO_EMBUTIDO("o aviso é sobre os arquivos do banco numa pasta compartilhada");
        Instala_Programa();
        Plataforma.Caixas.clear();
        Plataforma.Pastas_Sistema_Arquivos.clear();
    }
};
}  // namespace

TEST_F(Aviso_Rede_Teste, ADataFolderOnAShareWarnsOnceBeforeTheLoginAndTheStartGoesOn) {
    Plataforma.Sistema_Arquivos = "nfs4";
    Plataforma.Respostas.push_back(Resposta_Caixa::Não);
    frmPrincipal principal;
    ASSERT_EQ(Avisos(Plataforma), 1);
    EXPECT_EQ(Plataforma.Pastas_Sistema_Arquivos, QStringList{Caminho_Dados()});
    const Caixa_Mostrada aviso = Plataforma.Caixas.first();
    EXPECT_TRUE(aviso.Texto.contains("(nfs4)")) << aviso.Texto.toStdString();
    EXPECT_TRUE(aviso.Texto.contains(Caminho_Dados()));
    EXPECT_TRUE(aviso.Texto.contains("várias estações"));
    EXPECT_EQ(aviso.Ícone, Ícone_Caixa::Exclamação);
    EXPECT_EQ(aviso.Botões, Botões_Caixa::Sim_Não);
    EXPECT_TRUE(Plataforma.Abertos.isEmpty());
    EXPECT_TRUE(principal.windowTitle().startsWith("Quizora v. 4.14.10 - "));  // the start went on

    // The login comes after it, and neither the login nor a later activation brings it back.
    int avisos_no_login = -1;
    QTimer::singleShot(0, [&] {
        avisos_no_login = Avisos(Plataforma);
        if (auto* login = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
            login->QDialog::done(QDialog::Rejected);
    });
    principal.Form_Activate();
    principal.Form_Activate();
    EXPECT_EQ(avisos_no_login, 1);
    EXPECT_EQ(Avisos(Plataforma), 1);
}

TEST_F(Aviso_Rede_Teste, AnsweringYesOpensTheManualsPageEachStartWarnsAgain) {
    Plataforma.Sistema_Arquivos = "fuse.sshfs";
    { frmPrincipal principal; }
    ASSERT_EQ(Avisos(Plataforma), 1);
    EXPECT_EQ(Plataforma.Abertos, QStringList{Pasta.Caminho() + "/Ajuda/Várias Estações.Html"});
    Plataforma.Respostas.push_back(Resposta_Caixa::Não);
    { frmPrincipal principal; }
    EXPECT_EQ(Avisos(Plataforma), 2);
    EXPECT_EQ(Plataforma.Abertos.size(), 1);
}

TEST_F(Aviso_Rede_Teste, ALocalFolderOrANamedServerStartsWithoutWarning) {
    for (const char* tipo : {"ext4", "btrfs", "fuse", ""}) {
        Plataforma.Sistema_Arquivos = tipo;
        frmPrincipal principal;
        EXPECT_EQ(Plataforma.Caixas.size(), 0) << tipo;
    }
    Plataforma.Sistema_Arquivos = "cifs";
    EXPECT_EQ(Rede_Dos_Dados(), "cifs");
    QFile servidor(Caminho_Dados() + "/Servidor.txt");
    ASSERT_TRUE(servidor.open(QIODevice::WriteOnly));
    servidor.write("host=servidor.local dbname=quizora user=lider\n");
    servidor.close();
    Plataforma.Pastas_Sistema_Arquivos.clear();
    EXPECT_EQ(Rede_Dos_Dados(), "");
    Avisa_Dados_Na_Rede();
    EXPECT_EQ(Plataforma.Caixas.size(), 0);
    EXPECT_TRUE(Plataforma.Pastas_Sistema_Arquivos.isEmpty());
    servidor.remove();
}
