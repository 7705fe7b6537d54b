#pragma once
#include <QPlainTextEdit>
#include <QPointer>
#include <QString>

// The number of the current citation; 0 means none chosen yet.
inline double Número_Revelação = 0;
// The citation panel of the main window, where the daily citation is shown; null once that window is gone.
inline QPointer<QPlainTextEdit> Painel_Revelações;

bool Painel_Revelações_Vazio();
QString Caminho_Citação(int número);
// Draws a citation (or keeps the current one) and shows it in the panel, or opens it in the viewer.
void Revelações_de_Deus(bool Abrir);
// The panel's text for a citation file: paragraphs justified to 110 columns, an empty line between them.
QString Texto_Painel_Citação(const QString& arquivo);
