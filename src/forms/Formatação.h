#pragma once
// Small shared routines of the register windows and long jobs: the stored capitalisation of texts,
// the progress bar with its estimate, the date check and the width of a number.
#include <QDateTime>
#include <QList>
#include <QString>

class QWidget;

inline QDateTime Início_Progresso;

// Proper case with the connectives e, da, de, do, das, dos in small letters between blanks.
QString Texto_Transformado(const QString& texto);
// `Mantidos`: boxes that keep their text as typed.
void Transformar_Campos(QWidget* Formulário, const QList<QWidget*>& Mantidos = {});
// Drives the window's pgbBarra_De_Progresso and writes the estimate in its caption.
void Barra_de_Progresso(int Mínimo, double Máximo, double Atual, QWidget* Formulário);
QString Texto_Progresso(double Máximo, double Atual, const QDateTime& início, const QDateTime& agora);
bool Calendário(const QString& Texto, bool Aceita_Vazio, QWidget* Formulário);
int Lennum(double Número);
