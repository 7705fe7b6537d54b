#include "sala/Código_QR.h"

#include <qrencode.h>

#include <memory>

namespace {
constexpr int Zona_Livre = 4;  // modules of white around the code, as the readers expect

struct Libera_Código {
    void operator()(QRcode* código) const { QRcode_free(código); }
};
using Código = std::unique_ptr<QRcode, Libera_Código>;

Código Codifica(const QString& texto) {
    if (texto.isEmpty()) return nullptr;
    const QByteArray bytes = texto.toUtf8();
    return Código(QRcode_encodeString8bit(bytes.constData(), 0, QR_ECLEVEL_M));
}
}  // namespace

int Módulos_Código_QR(const QString& texto) {
    const Código código = Codifica(texto);
    return código ? código->width + 2 * Zona_Livre : 0;
}

QImage Imagem_Código_QR(const QString& texto, int pixels_por_módulo) {
    const Código código = Codifica(texto);
    if (!código || pixels_por_módulo < 1) return QImage();
    const int módulos = código->width + 2 * Zona_Livre;
    QImage imagem(módulos * pixels_por_módulo, módulos * pixels_por_módulo, QImage::Format_RGB32);
    imagem.fill(Qt::white);
    const QRgb preto = qRgb(0, 0, 0);
    for (int y = 0; y < código->width; ++y) {
        for (int x = 0; x < código->width; ++x) {
            // The lowest bit of each byte is the module's colour: 1 is black.
            if ((código->data[y * código->width + x] & 1) == 0) continue;
            for (int dy = 0; dy < pixels_por_módulo; ++dy) {
                QRgb* linha =
                    reinterpret_cast<QRgb*>(imagem.scanLine((y + Zona_Livre) * pixels_por_módulo + dy));
                for (int dx = 0; dx < pixels_por_módulo; ++dx)
                    linha[(x + Zona_Livre) * pixels_por_módulo + dx] = preto;
            }
        }
    }
    return imagem;
}
