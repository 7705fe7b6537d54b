#pragma once
#include <QString>
#include <QStringList>

class QWidget;

// The topics of the manual that the windows open with F1 or from the menu; each has its page
// Ajuda/<topic>.Html.
QStringList Tópicos_do_Manual();
QString Página_do_Manual(const QString& Tópico);

// Opens a page of the manual with the desktop's browser, telling the user in the window's caption.
void Ajuda(QWidget* Janela, const QString& Tópico);
