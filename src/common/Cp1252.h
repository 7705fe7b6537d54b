#pragma once
// The 8-bit code page of the program's text files. Qt 6 has no codec for it, and it differs
// from Latin-1 in 0x80-0x9F.
#include <QByteArray>
#include <QString>

QByteArray Para_Cp1252(const QString& texto);  // characters outside the page become '?'
// The same bytes added at the end of `saída`, which keeps its room between calls: for text written a
// line at a time.
void Acrescenta_Cp1252(QByteArray& saída, QStringView texto);
QString De_Cp1252(const QByteArray& bytes);
