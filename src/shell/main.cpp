#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include "platform/Pasta_Usuário.h"
#include "platform/Plataforma_Qt.h"
#include "shell/frmPrincipal.h"

int main(int argc, char** argv) {
    QApplication aplicação(argc, argv);
    QApplication::setApplicationName("Quizora");
    // Qt's own dialogs (file choice, input box) in Portuguese, when the desktop has the translation.
    QTranslator tradução_qt;
    if (tradução_qt.load(QLocale(QLocale::Portuguese, QLocale::Brazil), "qtbase", "_",
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&tradução_qt);
    // The menu entry of the installed copy: the desktop shows its icon for the program's windows.
    QGuiApplication::setDesktopFileName("br.com.norvane.Quizora");
    Escolhe_Pasta_Programa(QApplication::applicationDirPath());
    Plataforma_Qt plataforma(QApplication::arguments());
    Define_Plataforma(&plataforma);
    frmPrincipal principal;
    principal.show();
    return QApplication::exec();
}
