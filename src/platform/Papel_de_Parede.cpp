#include "platform/Papel_de_Parede.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QProcess>
#include <QUrl>
#include <QVariantMap>

namespace {
const QString Esquema_Gnome = "org.gnome.desktop.background";

bool Por_Gsettings(const QString& endereço, Meios_Papel_de_Parede& meios) {
    QString chaves;
    // A system without GNOME's schema has no such settings to write.
    if (meios.Executa("gsettings", {"list-keys", Esquema_Gnome}, &chaves) != 0) return false;
    if (meios.Executa("gsettings", {"set", Esquema_Gnome, "picture-uri", endereço}, nullptr) != 0)
        return false;
    if (chaves.split('\n').contains("picture-uri-dark"))
        meios.Executa("gsettings", {"set", Esquema_Gnome, "picture-uri-dark", endereço}, nullptr);
    return true;
}

// XFCE keeps one picture per monitor and workspace: each of them takes the file.
bool Por_Xfconf(const QString& arquivo, Meios_Papel_de_Parede& meios) {
    QString propriedades;
    if (meios.Executa("xfconf-query", {"-c", "xfce4-desktop", "-l"}, &propriedades) != 0) return false;
    bool alguma = false;
    for (const QString& propriedade : propriedades.split('\n', Qt::SkipEmptyParts))
        if (propriedade.trimmed().endsWith("/last-image") &&
            meios.Executa("xfconf-query", {"-c", "xfce4-desktop", "-p", propriedade.trimmed(), "-s", arquivo},
                          nullptr) == 0)
            alguma = true;
    return alguma;
}
}  // namespace

QString Aplica_Papel_de_Parede(const QString& arquivo_bitmap, Meios_Papel_de_Parede& meios) {
    const QString endereço = QUrl::fromLocalFile(arquivo_bitmap).toString(QUrl::FullyEncoded);
    if (meios.Portal(endereço)) return "portal";
    if (Por_Gsettings(endereço, meios)) return "gsettings";
    if (Por_Xfconf(arquivo_bitmap, meios)) return "xfconf-query";
    return QString();
}

bool Meios_Sessão::Portal(const QString& endereço) {
    QDBusConnection sessão = QDBusConnection::sessionBus();
    if (!sessão.isConnected() || sessão.interface() == nullptr) return false;
    const QString serviço = "org.freedesktop.portal.Desktop";
    const bool registrado = sessão.interface()->isServiceRegistered(serviço).value();
    const bool ativável = sessão.interface()->activatableServiceNames().value().contains(serviço);
    if (!registrado && !ativável) return false;
    QDBusMessage chamada = QDBusMessage::createMethodCall(
        serviço, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Wallpaper", "SetWallpaperURI");
    const QVariantMap opções = {{"show-preview", false}, {"set-on", QString("background")}};
    chamada << QString() << endereço << opções;
    // The portal answers at once with a request; a desktop without the wallpaper part answers an error.
    const QDBusMessage resposta = sessão.call(chamada, QDBus::Block, 5000);
    return resposta.type() == QDBusMessage::ReplyMessage;
}

int Meios_Sessão::Executa(const QString& programa, const QStringList& argumentos, QString* saída) {
    QProcess processo;
    processo.start(programa, argumentos);
    if (!processo.waitForStarted(3000)) return -1;
    if (!processo.waitForFinished(10000)) {
        processo.kill();
        processo.waitForFinished(1000);
        return -1;
    }
    if (saída != nullptr) *saída = QString::fromUtf8(processo.readAllStandardOutput());
    return processo.exitStatus() == QProcess::NormalExit ? processo.exitCode() : -1;
}
