#pragma once
// The text routines of the reports: the paragraph justifier, whose lines the citation panel and the
// reports read, and the right-aligned numbers of the report columns, the game and the hall of fame.

#include <QString>
#include <array>
#include <functional>

// The lines of the last Edita_Parágrafo, indexes 1 to Máximo_Linhas_Parágrafo (index 0 is not used).
inline constexpr int Máximo_Linhas_Parágrafo = 200;
inline std::array<QString, Máximo_Linhas_Parágrafo + 1> Linhas_Parágrafo;
// True for a line that ends at a hard line break (character 13).
inline std::array<bool, Máximo_Linhas_Parágrafo + 1> Fim_Parágrafo{};
inline int Quantidade_Linhas_Parágrafo = 0;

// Where Edita_Parágrafo sends its lines when it is asked to write them. The report writer sets these
// when it opens a report file: a body line through Imprime, and a line written to the open file as it
// is, with no "\par". While unset, such lines are only kept in Linhas_Parágrafo.
inline std::function<void(const QString& Texto, int Coluna, bool Quebra_Página)> Saída_Imprime;
inline std::function<void(const QString& Linha)> Saída_Direta;

// Trims Texto, collapses its runs of blanks (Texto keeps that form) and cuts it into lines of Largura
// characters, breaking after a blank or a point and at character 13; every line but the last and those
// before a hard break is justified with blanks. With Pelo_Imprime the lines go to Saída_Imprime, else
// with Direto to Saída_Direta, else nowhere.
// A word longer than the line is cut at the width; text beyond Máximo_Linhas_Parágrafo lines is dropped.
void Edita_Parágrafo(QString& Texto, int Largura, bool Pelo_Imprime, bool Direto);

// Valor with digit grouping and Decimais decimals in the Brazilian form, right-aligned in Tamanho
// characters; a zero with no decimals is blanks and "0"; a longer number comes back whole.
// Moeda is accepted for the callers' sake and changes nothing.
QString Formata_Expressão(double Valor, int Tamanho, int Decimais, bool Moeda);
