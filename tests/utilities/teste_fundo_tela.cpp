// The background drawn from the user's picture library, with the scripted platform in place of the
// desktop, and the ways each kind of desktop takes the bitmap.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>

#include "common/Globais.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Papel_de_Parede.h"
#include "shell/frmPrincipal.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "utilities/Fundo_Tela.h"

namespace {
// A desktop whose answers the test sets, and which keeps every call.
class Meios_Roteirizados : public Meios_Papel_de_Parede {
  public:
    bool Tem_Portal = false;
    bool Tem_Gnome = false;
    bool Tem_Xfce = false;
    QStringList Chamadas;

    bool Portal(const QString& endereço) override {
        Chamadas << "portal " + endereço;
        return Tem_Portal;
    }
    int Executa(const QString& programa, const QStringList& argumentos, QString* saída) override {
        Chamadas << programa + " " + argumentos.join(' ');
        if (programa == "gsettings") {
            if (!Tem_Gnome) return -1;
            if (saída) *saída = "picture-options\npicture-uri\npicture-uri-dark\nprimary-color\n";
            return 0;
        }
        if (programa == "xfconf-query" && Tem_Xfce) {
            if (saída)
                *saída =
                    "/backdrop/screen0/monitor0/workspace0/last-image\n"
                    "/backdrop/screen0/monitor0/workspace0/image-style\n"
                    "/backdrop/screen0/monitorHDMI-1/workspace0/last-image\n";
            return 0;
        }
        return -1;
    }
};

TEST(Papel_de_Parede, ThePortalThenGnomeThenXfceAndADesktopWithNoneKeepsItsBackground) {
    Meios_Roteirizados portal;
    portal.Tem_Portal = portal.Tem_Gnome = true;
    EXPECT_EQ(Aplica_Papel_de_Parede("/home/ana/.local/share/Quizora/Wallpaper.bmp", portal), "portal");
    EXPECT_EQ(portal.Chamadas, QStringList{"portal file:///home/ana/.local/share/Quizora/Wallpaper.bmp"});

    Meios_Roteirizados gnome;
    gnome.Tem_Gnome = gnome.Tem_Xfce = true;
    EXPECT_EQ(Aplica_Papel_de_Parede("/tmp/a b/Wallpaper.bmp", gnome), "gsettings");
    EXPECT_TRUE(gnome.Chamadas.contains(
        "gsettings set org.gnome.desktop.background picture-uri file:///tmp/a%20b/Wallpaper.bmp"));
    EXPECT_TRUE(gnome.Chamadas.contains(
        "gsettings set org.gnome.desktop.background picture-uri-dark file:///tmp/a%20b/Wallpaper.bmp"));
    EXPECT_FALSE(gnome.Chamadas.join('\n').contains("xfconf-query"));

    Meios_Roteirizados xfce;
    xfce.Tem_Xfce = true;
    EXPECT_EQ(Aplica_Papel_de_Parede("/tmp/W.bmp", xfce), "xfconf-query");
    EXPECT_TRUE(xfce.Chamadas.contains(
        "xfconf-query -c xfce4-desktop -p /backdrop/screen0/monitor0/workspace0/last-image -s /tmp/W.bmp"));
    EXPECT_TRUE(
        xfce.Chamadas.contains("xfconf-query -c xfce4-desktop -p "
                               "/backdrop/screen0/monitorHDMI-1/workspace0/last-image -s /tmp/W.bmp"));
    EXPECT_FALSE(xfce.Chamadas.join('\n').contains("image-style -s"));

    Meios_Roteirizados nenhum;
    EXPECT_EQ(Aplica_Papel_de_Parede("/tmp/W.bmp", nenhum), "");
    EXPECT_FALSE(nenhum.Chamadas.join('\n').contains(" set "));
}

class Fundo_Tela_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    QTemporaryDir Dados_Usuário;
    QByteArray XDG_Anterior = qgetenv("XDG_DATA_HOME");
    Lista_Arquivos filImagens;
    QLabel imgFundo;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        qputenv("XDG_DATA_HOME", Dados_Usuário.path().toUtf8());
        Usuário_Atual.clear();
        Janela_Principal_Ativa = false;
        Lê_Montagens = nullptr;
    }
    void TearDown() override {
        qputenv("XDG_DATA_HOME", XDG_Anterior);
        Janela_Principal_Ativa = false;
        Lê_Montagens = nullptr;
    }

    QString Bitmap() const { return Dados_Usuário.path() + "/Quizora/Wallpaper.bmp"; }

    // A folder with pictures of the given widths (beyond 400 pixels), as name=width; 0 is a damaged file.
    QString Biblioteca(const QString& nome, const QList<QPair<QString, int>>& figuras) {
        const QString pasta = Pasta.Caminho() + "/" + nome;
        EXPECT_TRUE(QDir().mkpath(pasta));
        for (const auto& [arquivo, largura] : figuras) {
            if (largura == 0) {  // damaged: a name of a picture over bytes that are none
                QFile f(pasta + "/" + arquivo);
                EXPECT_TRUE(f.open(QIODevice::WriteOnly));
                f.write("isto não é uma figura");
                continue;
            }
            // Widths are told beyond the smallest background; a negative one makes an icon.
            QImage figura(largura < 0 ? 128 : 400 + largura, largura < 0 ? 128 : 300, QImage::Format_RGB32);
            figura.fill(Qt::darkCyan);
            EXPECT_TRUE(figura.save(pasta + "/" + arquivo)) << arquivo.toStdString();
        }
        return pasta;
    }

    static void Ajusta(const QString& usuário, const QString& local, const QString& rede, bool muda) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblUsuário");
        Tabela_Quaternária.Set_Index("idxUsuário");
        Tabela_Quaternária.Seek(usuário);
        if (Tabela_Quaternária.Eof()) {
            Tabela_Quaternária.AddNew();
            Tabela_Quaternária.Fields("Usuário").Set_Value(usuário);
            Tabela_Quaternária.Fields("Senha").Set_Value(1);
        }
        Tabela_Quaternária.Fields("Biblioteca_Imagens_Local").Set_Value(local);
        Tabela_Quaternária.Fields("Biblioteca_Imagens_Rede").Set_Value(rede);
        Tabela_Quaternária.Fields("Muda_Fundo_de_Tela").Set_Value(muda);
        Tabela_Quaternária.Update();
    }

    static QPair<QString, QString> Campos(const QString& usuário) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblUsuário");
        Tabela_Quaternária.Set_Index("idxUsuário");
        Tabela_Quaternária.Seek(usuário);
        return {Tabela_Quaternária.Fields("Biblioteca_Imagens_Local").Value().toString(),
                Tabela_Quaternária.Fields("Biblioteca_Imagens_Rede").Value().toString()};
    }

    int Largura_Fundo() const { return imgFundo.pixmap().isNull() ? 0 : imgFundo.pixmap().width() - 400; }
};

// Before the login the Supervisor's settings apply; the bitmap goes to the user's data folder and to the
// desktop only with the option on.
TEST_F(Fundo_Tela_Teste, TheSupervisorsLibraryBeforeTheLoginAndTheDesktopOnlyWithTheOption) {
    const QString fotos = Biblioteca("Fotos", {{"praia.PNG", 31}});
    Ajusta("Supervisor", fotos, "", true);
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Largura_Fundo(), 31);
    EXPECT_EQ(Plataforma.Papéis_de_Parede, QStringList{Bitmap()});
    EXPECT_EQ(QImage(Bitmap()).width(), 431);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());

    // Ana's option off: the window's background changes, the desktop and the file are untouched.
    QFile::remove(Bitmap());
    Usuário_Atual = "Ana Lima";
    Ajusta("Ana Lima", Biblioteca("Ana", {{"gato.jpeg", 17}}), "", false);
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Largura_Fundo(), 17);
    EXPECT_EQ(Plataforma.Papéis_de_Parede.size(), 1);
    EXPECT_FALSE(QFile::exists(Bitmap()));
}

// Local, else network, else the program's pictures: written back, and told, only once the main window
// is active; the field written is the local one for a program on a local disk, else the network one.
TEST_F(Fundo_Tela_Teste, TheThreeLibrariesInTurnAndTheFallbackWrittenOnceTheWindowIsActive) {
    const QString ícones = Biblioteca("Ícones", {{"Fundo 1.jpg", 40}});
    const QString rede = Biblioteca("Rede", {{"a.bmp", 23}});
    Ajusta("Supervisor", Pasta.Caminho() + "/Sumiu", rede, false);
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Largura_Fundo(), 23);
    EXPECT_EQ(filImagens.Path(), rede);

    Ajusta("Supervisor", Pasta.Caminho() + "/Sumiu", Pasta.Caminho() + "/Também", false);
    Muda_Fundo_Tela(&filImagens, &imgFundo);  // during start-up: nothing written, nothing shown
    EXPECT_EQ(Largura_Fundo(), 40);
    EXPECT_EQ(filImagens.Path(), ícones);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Campos("Supervisor").first, Pasta.Caminho() + "/Sumiu");

    Janela_Principal_Ativa = true;
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(29)});
    EXPECT_EQ(Campos("Supervisor"), qMakePair(ícones, Pasta.Caminho() + "/Também"));

    // The program's folder on a network share: the network field takes it.
    Lê_Montagens = [this] {
        return QString("22 1 8:1 / / rw - ext4 /dev/sda1 rw\n90 22 0:50 / %1 rw - cifs //srv/q rw\n")
            .arg(Pasta.Caminho());
    };
    Ajusta("Supervisor", "", "", false);
    Plataforma.Caixas.clear();
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList{Aviso(29)});
    EXPECT_EQ(Campos("Supervisor"), qMakePair(QString(), ícones));
}

// Only files the draw can show are drawn: a damaged one is passed over, and a library without a good
// picture, however many files it holds, leaves the background as it is.
TEST_F(Fundo_Tela_Teste, DamagedAndForeignFilesAreNeverDrawnAndAnEmptyLibraryKeepsTheBackground) {
    const QString mista = Biblioteca("Mista", {{"ruim.jpg", 0}, {"ruim2.gif", 0}, {"boa.png", 12}});
    QFile(mista + "/notas.txt").open(QIODevice::WriteOnly);
    Ajusta("Supervisor", mista, "", true);
    for (int vez = 0; vez < 6; ++vez) {
        imgFundo.clear();
        Muda_Fundo_Tela(&filImagens, &imgFundo);
        EXPECT_EQ(Largura_Fundo(), 12);
    }

    const QString vazia = Biblioteca("Documentos", {{"estragada.png", 0}});
    for (int i = 0; i < 10000; ++i) QFile(vazia + QString("/texto %1.txt").arg(i)).open(QIODevice::WriteOnly);
    Ajusta("Supervisor", vazia, "", true);
    const int chamadas = Plataforma.Papéis_de_Parede.size();
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(Largura_Fundo(), 12);
    EXPECT_EQ(Plataforma.Papéis_de_Parede.size(), chamadas);
    EXPECT_EQ(filImagens.ListCount(), 1);  // the one damaged picture; the texts are not listed
}

// Small pictures are pictures too: a library of icons and thumbnails changes the background, and so do
// the program's own pictures when they are the fallback, whatever their size.
TEST_F(Fundo_Tela_Teste, ALibraryOfSmallPicturesChangesTheBackground) {
    const QString pequenas = Pasta.Caminho() + "/Pequenas";
    ASSERT_TRUE(QDir().mkpath(pequenas));
    QImage miniatura(64, 48, QImage::Format_RGB32);
    miniatura.fill(Qt::darkRed);
    ASSERT_TRUE(miniatura.save(pequenas + "/miniatura.bmp"));
    Ajusta("Supervisor", pequenas, "", true);
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(imgFundo.pixmap().size(), QSize(64, 48));
    EXPECT_EQ(Plataforma.Papéis_de_Parede, QStringList{Bitmap()});

    // The fallback: the program's pictures, here one icon-sized picture and nothing else.
    imgFundo.clear();
    const QString ícones = Pasta.Caminho() + "/Ícones";
    ASSERT_TRUE(QDir().mkpath(ícones));
    QImage ícone(128, 128, QImage::Format_RGB32);
    ícone.fill(Qt::darkBlue);
    ASSERT_TRUE(ícone.save(ícones + "/Quizora.png"));
    Ajusta("Supervisor", Pasta.Caminho() + "/Sumiu", "", false);
    Muda_Fundo_Tela(&filImagens, &imgFundo);
    EXPECT_EQ(filImagens.Path(), ícones);
    EXPECT_EQ(imgFundo.pixmap().size(), QSize(128, 128));
}

// The menu entry tells the user how to choose a library when no picture could be shown.
TEST_F(Fundo_Tela_Teste, TheMenuShowsMessage21WhenNoPictureCouldBeShown) {
    frmPrincipal principal;  // loads through the upgrade window; not shown, so no login comes up
    Usuário_Atual = "Supervisor";
    Janela_Principal_Ativa = true;
    Plataforma.Caixas.clear();
    principal.mnuFundo_Tela_Click();  // no library and no pictures among the program's
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(29), Aviso(21)}));

    Ajusta("Supervisor", Biblioteca("Fotos", {{"a.png", 9}}), "", false);
    Plataforma.Caixas.clear();
    principal.mnuFundo_Tela_Click();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(principal.imgFundo->pixmap().width(), 409);
}
}  // namespace
