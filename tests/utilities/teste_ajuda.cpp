// Manual pages, the new-record hint and the network name of a folder.
#include <gtest/gtest.h>

#include <QDialog>

#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "utilities/Ajuda.h"

TEST(Ajuda, CaptionIsBlankAfterOpeningThePageWhateverItHeld) {
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QDialog janela;
    janela.setWindowTitle("Perguntas");
    Ajuda(&janela, "Pergunta");
    EXPECT_EQ(janela.windowTitle(), " ");
    ASSERT_EQ(plataforma.Abertos.size(), 1);
    EXPECT_EQ(plataforma.Abertos[0], pasta.Caminho() + "/Ajuda/Pergunta.Html");

    Auxílio_Novo_Cadastro(&janela, "Dinâmica", false);
    EXPECT_EQ(janela.windowTitle(),
              "Dúvidas como cadastrar nova Dinâmica no sistema? Tecle F1 para ler o manual on-line...");
}

TEST(Ajuda, NetworkNameComesFromTheMountThatHoldsThePath) {
    const QString montagens =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "40 22 0:45 / /mnt/escola rw,relatime shared:20 - cifs //servidor/dados rw,vers=3.0\n"
        "41 22 0:46 / /mnt/nfs\\040igreja rw shared:21 - nfs4 servidor:/exportado rw\n";
    EXPECT_EQ(Fonte_de_Rede("/mnt/escola/Imagens", montagens), "//servidor/dados");
    EXPECT_EQ(Fonte_de_Rede("/mnt/escola", montagens), "//servidor/dados");
    EXPECT_EQ(Fonte_de_Rede("/mnt/nfs igreja/fotos", montagens), "servidor:/exportado");
    EXPECT_EQ(Fonte_de_Rede("/mnt/escolar", montagens), "");  // a sibling folder is not on the share
    EXPECT_EQ(Fonte_de_Rede("/home/ana/Imagens", montagens), "");
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    QString curto = "/";
    EXPECT_EQ(Obter_Formato_UNC(curto), "");
    EXPECT_EQ(curto, "/");
}
