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

// The hint for a new record in the window's caption: "Dúvidas como cadastrar novo Pergunta no sistema?...".
void Auxílio_Novo_Cadastro(QWidget* Janela, const QString& Palavra, bool Masculino);

// The network name of the share that holds a path (cifs "//server/share", nfs "server:/path"); empty for
// a local disk. Linux paths have no drive letter, so the path itself is looked up and kept as it is.
QString Obter_Formato_UNC(QString& Caminho);
// The same look-up over a given text of /proc/self/mountinfo.
QString Fonte_de_Rede(const QString& caminho, const QString& montagens);
