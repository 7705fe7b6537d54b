#pragma once
// The four rights of the current user in the window loaded last (Nome_Janela), read from tblPermissão
// into Pode_Incluir, Pode_Alterar, Pode_Excluir and Pode_Consultar. A pair of window and user that has
// no row yet gets one, with rights that depend on who the user is.
#include <QString>

inline const QString Usuário_Supervisor = "Supervisor";
inline const QString Usuário_Autor = "Ornelio Varga";

void Verifica_Permissão_De_Acesso();
// After Verifica_Permissão_De_Acesso: with none of the four rights in the window, message 4 and true.
bool Sem_Direito_Algum();
