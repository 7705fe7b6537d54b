#pragma once
// Where the program works. An installed copy cannot write its own folder, so it works in a folder of the
// user's, made and seeded from the installed one at the first start and kept from then on.
#include <QString>

// $XDG_DATA_HOME/Quizora, or ~/.local/share/Quizora when the variable is unset or not an absolute path.
QString Pasta_Usuário_Padrão();

// Makes the user's folder from the installed one: Dados/ with the seed files while it holds no database,
// Relatórios/, and the manual, icons and sounds (a file missing there, or older than the installed one, is
// copied; nothing the user has made is touched). Returns false when the folder could not be made.
bool Monta_Pasta_Usuário(const QString& instalada, const QString& usuário);

// Chooses the program's folder at start: QUIZORA_PASTA when set; the executable's folder when it can be
// written (a build, a shared folder) and is not a package's folder under /usr; else the user's folder, made
// or brought up to date. Returns the folder.
QString Escolhe_Pasta_Programa(const QString& instalada, const QString& usuário = Pasta_Usuário_Padrão());
