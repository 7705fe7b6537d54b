#pragma once
// The warning of each start when the data folder lies on a network share and no database server is named:
// files of the embedded engine shared that way are not safe for several workstations.
#include <QString>

// The manual's page on sharing one bank among several workstations.
inline const QString Tópico_Várias_Estações = "Várias Estações";

// The network file system that holds Dados/ while the embedded engine is in use ("nfs4", "fuse.sshfs"), or
// empty: a local folder, or an installation that names its server in Dados/Servidor.txt.
QString Rede_Dos_Dados();

// Shows the warning when Rede_Dos_Dados() is not empty and, if the user wants, opens the manual's page. The
// start goes on in every case.
void Avisa_Dados_Na_Rede();
