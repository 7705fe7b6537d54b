#pragma once
// What the bank accepts of the questions read from a file, and the questions it gives to the exports.
// No widgets: the window frmImporta_Pergunta calls these and shows the verdicts.
#include <QSet>
#include <QString>
#include <QVector>

#include "questions/Leitura_Perguntas.h"
#include "store/Sessão.h"

inline constexpr int Largura_Pergunta = 124;
inline constexpr int Largura_Resposta = 50;

// The questions of tblPergunta in the form they are compared (Forma_Comparação).
QSet<QString> Formas_Do_Banco();
// The bank's present mark, which any copy's write changes; false where the store gives none (a server),
// and then nothing can be told from it.
bool Marca_Do_Banco(Carimbo_Dados& marca);

// Gives each question its verdict: the answers take the register's capitalisation, a question without a
// kind takes tipo_padrão ("G" or "B"), and a question is refused for an empty field, a text too long, a
// right answer repeated among the wrong ones, wrong answers repeated, or a question already in the bank
// or earlier in the file. Questions that the reader refused keep their reason.
void Verifica_Perguntas(QVector<Pergunta_Lida>& perguntas, const QSet<QString>& formas_do_banco,
                        const QString& tipo_padrão);

// The bank in the order of its codes; tipo "G" or "B" keeps one kind, empty keeps all.
QVector<Pergunta_Exportada> Perguntas_Do_Banco(const QString& tipo);

// A count as the user reads it: "10.000".
QString Número_Texto(qsizetype número);
// "312 perguntas incluídas, 14 recusadas"
QString Texto_Resumo(int incluídas, int recusadas);
