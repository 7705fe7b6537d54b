#include <QApplication>

#include "platform/Pasta_Usuário.h"
#include "platform/Plataforma_Qt.h"
#include "shell/frmPrincipal.h"

int main(int argc, char** argv) {
    QApplication aplicação(argc, argv);
    QApplication::setApplicationName("Quizora");
    // The menu entry of the installed copy: the desktop shows its icon for the program's windows.
    QGuiApplication::setDesktopFileName("br.com.norvane.Quizora");
    Escolhe_Pasta_Programa(QApplication::applicationDirPath());
    Plataforma_Qt plataforma(QApplication::arguments());
    Define_Plataforma(&plataforma);
    frmPrincipal principal;
    principal.show();
    return QApplication::exec();
}
