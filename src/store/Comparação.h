#pragma once
// Text comparison as the Jet engine did it: case is ignored for every letter (a = A, ç = Ç,
// é = É), accented letters sort next to their base letter, and accents still tell words apart.
#include <cstddef>

struct sqlite3;

int Compara_Textos(const char* a, std::size_t tamanho_a, const char* b, std::size_t tamanho_b);
// Like with %, _ and brackets ([abc], [a-z], [!a]), ignoring case.
bool Combina_Like(const char* padrão, std::size_t tamanho_padrão, const char* texto,
                  std::size_t tamanho_texto);
// Registers the collation JET and the like function on a connection.
void Registra_Comparação(sqlite3* banco);
