#pragma once
#include <QPlainTextEdit>
#include <QPointer>
#include <QString>
#include <QStringList>

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

// Set by Sair of the revelations browser: a running search stops at its next row.
inline bool Interrompe_Pesquisa = false;

// The whole-keyword test of a subject search over a list "a, b, c": only the first occurrence of the
// searched text counts, ignoring case, and it must begin the list or follow a blank, and end the list or
// stand before a comma.
bool Palavra_Chave_Confere(const QString& Palavra_Chave, const QString& Procurado);
// The lines of a citation file (code page 1252); false when the file cannot be read.
bool Lê_Linhas_Citação(const QString& arquivo, QStringList& linhas);
// The beginning that the browser's grid shows: the lines, each followed by a blank, until 110 characters
// or more are gathered or the file ends. Empty for a file that cannot be read.
QString Início_Citação(const QString& arquivo);
// Whether the citation's text, its lines joined by one blank, holds Procurado, ignoring case.
bool Citação_Contém(const QString& arquivo, const QString& Procurado);
