#include <QApplication>

#include "platform/Plataforma_Qt.h"
#include "shell/frmPrincipal.h"

int main(int argc, char** argv) {
    QApplication aplicação(argc, argv);
    QApplication::setApplicationName("Quizora");
    Plataforma_Qt plataforma(QApplication::arguments());
    Define_Plataforma(&plataforma);
    frmPrincipal principal;
    principal.show();
    return QApplication::exec();
}
