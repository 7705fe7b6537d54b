#pragma once
// The QR code that a phone's camera reads to open the room's address. No widgets: any window or file can
// take the picture.
#include <QImage>
#include <QString>

// The code of `texto` (UTF-8, byte mode, error correction M), black modules on white with the quiet zone
// of four modules around it, each module `pixels_por_módulo` pixels wide. A null image when the text is
// empty or too long for a QR code.
QImage Imagem_Código_QR(const QString& texto, int pixels_por_módulo = 1);
// How many modules wide the code of `texto` is, quiet zone included; 0 when it cannot be made.
int Módulos_Código_QR(const QString& texto);
