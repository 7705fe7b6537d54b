#pragma once
// The writer of every report: an RTF file under "Relatórios" in the program's folder, composed line by
// line in code page 1252 with CR LF ends, then handed to the desktop's viewer. Pagination, the running
// header and the page number are left to the viewer. One report at a time: its state is program-wide.
//
// A report sets Título_Relatório, shows frmImpressão (whose OK calls Abre_Arquivo_Rtf), stops if
// Impressão_Confirmada is false, writes its body with the routines below and ends with
// Fecha_Arquivo_Rtf(this).

#include <QString>
#include <functional>

class QObject;

// The width of the text columns of every report.
inline constexpr int Largura_Relatório = 135;
inline constexpr int Tamanho_Linha_Relatório = 137;

// Empty means a file without a page header. Cleared by Fecha_Arquivo_Rtf.
inline QString Título_Relatório;
// Full path of the report file, set when it is opened.
inline QString Caminho_Relatório;
// Portrait or landscape; back to portrait after every report.
inline bool Modo_Retrato = true;
// The body font size in RTF half-points; 0 until a report opens (14 portrait, 18 landscape).
inline double Tamanho_Fonte = 0;
// The line buffer of tabular reports: 137 blanks when clean. A report overwrites ranges of it (column 1
// is the first character) and passes it to Imprime, which cleans it again.
inline QString Linha_Relatório = QString(Tamanho_Linha_Relatório, ' ');
// True only once frmImpressão has opened the file.
inline bool Impressão_Confirmada = false;
// 0 no highlight, 1 to 10 the colour of the file's colour table (Azul ... Rosa).
inline int Cor_Destaque = 1;
// Where Destaca_Impressão stands in its alternation.
inline bool Destaque_Ligado = true;

// The colour table line of a highlight choice 1 to 10; empty for 0 or out of range.
QString Linha_Tabela_Cores(int Cor);

// The opening of the report, as OK of frmImpressão does it. Nome_Digitado is the file name without
// extension; empty gives a random name of 8 digits and capitals. When the file exists, message 15 is
// shown and Confirma_Exclusão asked; on No nothing is opened. A name a file cannot carry is refused with
// a box. A report that cannot be deleted is left alone and the new one goes to a random name. Returns
// true with the file open, its head written and Impressão_Confirmada set.
bool Abre_Arquivo_Rtf(const QString& Nome_Digitado, const std::function<bool()>& Confirma_Exclusão);

// Writes Texto over Linha_Relatório from Coluna (1 is the first character), at most Tamanho characters of
// it: a shorter text leaves the rest of the range as it was, a longer one is cut. The line keeps its length.
void Preenche_Linha_Relatório(int Coluna, int Tamanho, const QString& Texto);
// The same with the text in UTF-8, as a walk reads it from the store, made characters straight into the line.
void Preenche_Linha_Relatório_Utf8(int Coluna, int Tamanho, QByteArrayView Texto_Utf8);

// One body line: Coluna - 1 blanks, the text with its backslashes doubled, "\par" (or "\par \page").
// Cleans Linha_Relatório afterwards.
void Imprime(const QString& Texto, int Coluna, bool Quebra_Página);
// One line centred on the 135 columns; a title goes in the big bold font.
void Centraliza_Relatório(const QString& Texto, bool Título);
// Character formatting for the lines that follow: the big font or the body size, bold, italic.
void Configura_Impressora(bool Fonte_Grande, bool Negrito, bool Itálico);
// Call with false before each row of a table, so that rows alternate plain and highlighted, and with true
// after the last row. Writes nothing when Cor_Destaque is 0.
void Destaca_Impressão(bool Encerra);
// Ends the file and opens it in the desktop's viewer, with a waiting caption on Janela meanwhile. Janela
// is the report's window (its "windowTitle" property is used, so the writer needs no widgets) or null.
void Fecha_Arquivo_Rtf(QObject* Janela);
// Gives up a report left halfway: the file is closed and removed, no viewer is opened, and the report
// state goes back to where Fecha_Arquivo_Rtf leaves it, with Impressão_Confirmada false.
void Descarta_Arquivo_Rtf();
