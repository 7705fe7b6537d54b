#pragma once
// A workstation whose server went away (a restart, a Wi-Fi link that dropped): the user is told once, in
// one box that names the server, and chooses to try again or to leave. The store calls this at the first
// statement that finds the connection gone; the failure that the statement then reports is
// Erro_Conexão_Perdida, which Trata_Erro takes in silence, since the user has already been told.
#include <QString>
#include <functional>

// Shows the box and, at each "Tentar de novo", tries `reconecta` for a while (it gives the reason when it
// cannot). Returns when connected again; "Sair" ends the program. `gravação_desfeita`: a transaction was
// in flight, and the server has undone it.
void Avisa_Conexão_Perdida(const QString& servidor, const QString& detalhe, bool gravação_desfeita,
                           const std::function<bool(QString& motivo)>& reconecta);

// The box's own text, for the first telling.
QString Texto_Conexão_Perdida(const QString& servidor, const QString& detalhe, bool gravação_desfeita);
