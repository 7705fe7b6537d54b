// The room's QR code read back by a real reader (zbarimg), from the picture alone and from the room
// screen as the room sees it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "game/frmJogo.h"
#include "sala/Código_QR.h"
#include "sala/frmTela_Sala.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// The offscreen screen is smaller than a projector's: the room screen is laid out as on 1920 by 1080.
void Em_Projetor(Tela_Sala& tela) {
    tela.setWindowState(Qt::WindowNoState);
    tela.resize(1920, 1080);
    QApplication::processEvents();
}
// What zbarimg reads in the picture; empty when it reads nothing.
QString Lê_Código(const QImage& imagem, const QString& arquivo) {
    if (!imagem.save(arquivo)) return "(não gravou)";
    QProcess leitor;
    leitor.start("zbarimg", {"--quiet", "--raw", "-Sdisable", "-Sqrcode.enable", arquivo});
    if (!leitor.waitForFinished(30000)) return "(zbarimg não terminou)";
    return QString::fromUtf8(leitor.readAllStandardOutput()).trimmed();
}

bool Tem_Leitor() {
    return !QStandardPaths::findExecutable("zbarimg").isEmpty();
}
}  // namespace

TEST(Código_QR, TheCodeIsSquareWithItsQuietZoneAndRefusesWhatCannotBeEncoded) {
    const QString endereço = "http://192.168.0.10:8080/";
    const int módulos = Módulos_Código_QR(endereço);
    EXPECT_GE(módulos, 21 + 8);
    const QImage imagem = Imagem_Código_QR(endereço, 3);
    ASSERT_FALSE(imagem.isNull());
    EXPECT_EQ(imagem.width(), módulos * 3);
    EXPECT_EQ(imagem.height(), imagem.width());
    // The quiet zone is white; the finder pattern's corner, just inside it, is black.
    EXPECT_EQ(imagem.pixel(4 * 3 - 1, 4 * 3 - 1), qRgb(255, 255, 255));
    EXPECT_EQ(imagem.pixel(4 * 3, 4 * 3), qRgb(0, 0, 0));
    EXPECT_TRUE(Imagem_Código_QR("").isNull());
    EXPECT_TRUE(Imagem_Código_QR(QString(8000, 'x')).isNull());
    EXPECT_EQ(Módulos_Código_QR(QString(8000, 'x')), 0);
    EXPECT_TRUE(Imagem_Código_QR(endereço, 0).isNull());
}

TEST(Código_QR, ARealReaderDecodesTheCodeBackToItsText) {
    if (!Tem_Leitor()) GTEST_SKIP() << "zbarimg (Debian zbar-tools) não está instalado";
    QTemporaryDir pasta;
    ASSERT_TRUE(pasta.isValid());
    const QStringList textos{"http://192.168.0.10:8080/", "http://[fe80::1]:49152/sala?c=123456",
                             "http://10.1.2.3:65535/" + QString(300, 'a')};
    int n = 0;
    for (const QString& texto : textos)
        EXPECT_EQ(Lê_Código(Imagem_Código_QR(texto, 4), pasta.filePath(QString("qr%1.png").arg(n++))), texto);
}

TEST(Código_QR, TheRoomScreenShowsACodeThatAPhoneReadsBackToTheAddress) {
    if (!Tem_Leitor()) GTEST_SKIP() << "zbarimg (Debian zbar-tools) não está instalado";
    Pasta_Teste pasta_programa;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Cadastra_Perguntas(5);
    frmJogo janela;
    janela.show();
    frmTela_Sala& tela = *janela.Tela_Da_Sala;
    tela.Mostra();
    Em_Projetor(tela);
    tela.Mostra_Sala("http://192.168.0.10:8080/", "482913");
    QApplication::processEvents();
    EXPECT_EQ(tela.Painel->Código(), "482913");
    QTemporaryDir pasta;
    const QImage tela_inteira = tela.grab().toImage();
    EXPECT_EQ(tela_inteira.size(), QSize(1920, 1080));
    // Where the pictures of the room screen are kept for a person to look at.
    const QString capturas = qEnvironmentVariable("QUIZORA_CAPTURAS");
    if (!capturas.isEmpty()) tela_inteira.save(QDir(capturas).filePath("sala_qr.png"));
    EXPECT_EQ(Lê_Código(tela_inteira, pasta.filePath("sala.png")), "http://192.168.0.10:8080/");
}
