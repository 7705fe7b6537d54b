#include "common/Globais.h"

#include <cmath>

#include "platform/Plataforma.h"

QString Texto_Versão() {
    return QString("versão %1.%2.%3")
        .arg(Versão_Maior_Programa)
        .arg(Versão_Menor_Programa)
        .arg(Versão_Revisão_Programa);
}

QString Título_Maiúsculo() {
    return Título_Programa.trimmed().toUpper();
}

void Semeia_Gerador() {
    Plataforma& p = Plataforma_Atual();
    float semente = p.Segundos_Desde_Meia_Noite();
    for (int i = 0; i < 3; ++i) semente *= p.Segundos_Desde_Meia_Noite();
    p.Semeia(semente);
}

int Sorteia(int n) {
    return static_cast<int>(std::floor(Plataforma_Atual().Aleatório() * n));
}

#include "common/Cp1252.h"

int Hash_Senha(const QString& texto) {
    const QByteArray bytes = Para_Cp1252(texto);
    qint64 soma = 0;
    for (int i = 0; i < bytes.size(); ++i) soma += static_cast<unsigned char>(bytes[i]) * (12 + i + 1);
    return static_cast<int>(soma);
}
