#include "common/Cp1252.h"

namespace {
// Unicode of 0x80..0x9F; 0 where the code page leaves the byte undefined.
constexpr char16_t Faixa_80_9F[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
}  // namespace

namespace {
char* Escreve_Cp1252(char* destino, QStringView texto) {
    for (const QChar c : texto) {
        const char16_t u = c.unicode();
        if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) {
            *destino++ = static_cast<char>(u);
            continue;
        }
        char byte = '?';
        for (int i = 0; i < 32; ++i)
            if (Faixa_80_9F[i] != 0 && Faixa_80_9F[i] == u) byte = static_cast<char>(0x80 + i);
        *destino++ = byte;
    }
    return destino;
}
}  // namespace

QByteArray Para_Cp1252(const QString& texto) {
    // One byte for each character, written in place: every line of a report passes here.
    QByteArray saída(texto.size(), Qt::Uninitialized);
    Escreve_Cp1252(saída.data(), texto);
    return saída;
}

void Acrescenta_Cp1252(QByteArray& saída, QStringView texto) {
    const qsizetype antes = saída.size();
    saída.resize(antes + texto.size());
    Escreve_Cp1252(saída.data() + antes, texto);
}

QString De_Cp1252(const QByteArray& bytes) {
    // One character for each byte, written in place: every citation searched passes here.
    QString saída(bytes.size(), Qt::Uninitialized);
    QChar* destino = saída.data();
    for (const char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        const bool faixa = b >= 0x80 && b <= 0x9F && Faixa_80_9F[b - 0x80] != 0;
        *destino++ = QChar(faixa ? Faixa_80_9F[b - 0x80] : char16_t(b));
    }
    return saída;
}
