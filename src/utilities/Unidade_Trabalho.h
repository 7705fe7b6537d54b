#pragma once
// The working installation: the program's folder is the folder "Norvane" at the root of a file system,
// and its database holds the list of systems, tblSistema. Unidade_Trabalho holds that file system's mount
// point there ("/media/trabalho", or "/" for the root), and is empty at any other installation.
#include <QString>

inline QString Unidade_Trabalho;

// The mount point of the working installation over a given text of /proc/self/mountinfo, or empty.
QString Unidade_Trabalho_De(const QString& pasta_programa, const QString& montagens);
// The same for this process's program folder and mounts, once the main database is open.
QString Procura_Unidade_Trabalho();
// What the register shows as the system at an ordinary installation: the name of the program's folder.
QString Nome_Pasta_Programa();
