#pragma once
// Making a bitmap the desktop's background, as each kind of desktop takes it: the desktop portal, else
// GNOME's settings, else XFCE's. A desktop with none of them keeps its background.
#include <QString>
#include <QStringList>

// What the desktop offers; the program's own reaches the real session, tests give their own.
class Meios_Papel_de_Parede {
  public:
    virtual ~Meios_Papel_de_Parede() = default;
    // org.freedesktop.portal.Wallpaper.SetWallpaperURI; false where no portal answers.
    virtual bool Portal(const QString& endereço) = 0;
    // Runs a program and waits for it; the exit code, or -1 where it could not be run.
    virtual int Executa(const QString& programa, const QStringList& argumentos, QString* saída) = 0;
};

// The way that took the picture ("portal", "gsettings", "xfconf-query"), or empty where none did.
QString Aplica_Papel_de_Parede(const QString& arquivo_bitmap, Meios_Papel_de_Parede& meios);

// The session's own means: Qt D-Bus and outside programs with a time limit.
class Meios_Sessão : public Meios_Papel_de_Parede {
  public:
    bool Portal(const QString& endereço) override;
    int Executa(const QString& programa, const QStringList& argumentos, QString* saída) override;
};
