#pragma once
#include <QString>
// Starts of the program through its upgrade window, as a user's starts would run them.

// One start: true when it ended after installing a new version.
bool Inicia_Programa(long última_etapa = 0);
// The first two starts of a new installation: the database is then complete and the program goes on.
void Instala_Programa();
// An installed program as the windows find it after the login: the audit table open, no box shown yet.
void Instala_Programa_Para_Janelas();

// Adds questions "Pergunta número N?" with the answers "Certa N", "Errada AN", "Errada BN", "Errada CN".
void Cadastra_Perguntas(int quantidade, const QString& tipo = "G");
