#pragma once
#include <QString>

// Status of the last extraction; nobody reads it.
inline short Resultado_Zip = 0;

// Extracts the files of an archive that match the mask ("*.*" takes all) into a folder, overwriting.
// Without Restaura_Estrutura every file goes straight into the folder. Returns false on a damaged archive.
bool Descompacta_Arquivo(const QString& Arquivo_Zip, const QString& Máscara, const QString& Destino,
                         bool Restaura_Estrutura);
