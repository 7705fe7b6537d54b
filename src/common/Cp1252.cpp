#include "common/Cp1252.h"

#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {
// Unicode of 0x80..0x9F; 0 where the code page leaves the byte undefined.
constexpr char16_t Faixa_80_9F[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
}  // namespace

namespace {
char Byte_Cp1252(char16_t u) {
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return static_cast<char>(u);
    for (int i = 0; i < 32; ++i)
        if (Faixa_80_9F[i] != 0 && Faixa_80_9F[i] == u) return static_cast<char>(0x80 + i);
    return '?';
}

char* Escreve_Cp1252(char* destino, QStringView texto) {
    // Four characters at a time while they are plain ASCII, as most of a report line is.
    const char16_t* origem = texto.utf16();
    const qsizetype tamanho = texto.size();
    qsizetype i = 0;
#if defined(__SSE2__)
    // Eight at a time where the processor packs them in one instruction.
    const __m128i acima_de_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
    for (; i + 8 <= tamanho; i += 8) {
        const __m128i oito = _mm_loadu_si128(reinterpret_cast<const __m128i*>(origem + i));
        const __m128i altos = _mm_cmpeq_epi16(_mm_and_si128(oito, acima_de_ascii), _mm_setzero_si128());
        if (_mm_movemask_epi8(altos) != 0xFFFF) {
            for (int k = 0; k < 8; ++k) *destino++ = Byte_Cp1252(origem[i + k]);
            continue;
        }
        _mm_storel_epi64(reinterpret_cast<__m128i*>(destino), _mm_packus_epi16(oito, oito));
        destino += 8;
    }
#endif
    for (; i + 4 <= tamanho; i += 4) {
        quint64 bloco;
        std::memcpy(&bloco, origem + i, sizeof bloco);
        if ((bloco & 0xFF80FF80FF80FF80ULL) != 0) {
            for (int k = 0; k < 4; ++k) *destino++ = Byte_Cp1252(origem[i + k]);
            continue;
        }
        for (int k = 0; k < 4; ++k) *destino++ = static_cast<char>(origem[i + k]);
    }
    for (; i < tamanho; ++i) *destino++ = Byte_Cp1252(origem[i]);
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
