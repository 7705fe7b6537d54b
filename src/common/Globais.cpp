#include "common/Globais.h"

#include <cmath>

#include "platform/Plataforma.h"

QString Título_Maiúsculo() { return Título_Programa.trimmed().toUpper(); }

void Semeia_Gerador() {
    Plataforma& p = Plataforma_Atual();
    float semente = p.Segundos_Desde_Meia_Noite();
    for (int i = 0; i < 3; ++i) semente *= p.Segundos_Desde_Meia_Noite();
    p.Semeia(semente);
}

int Sorteia(int n) { return static_cast<int>(std::floor(Plataforma_Atual().Aleatório() * n)); }
