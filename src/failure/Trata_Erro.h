#pragma once
#include <QString>

// State shared by the error handler and the record writer.
inline QString Mensagem_Erro;
inline int Repetições_Erro = 0;
inline bool Encerra_Sistema = false;
inline bool Registra_Erro = false;
inline bool Sai_da_Gravação = false;
inline bool Registro_Duplicado = false;

inline constexpr long Erro_Índice_Duplicado = -2147217887;  // also "multiple-step operation" failures
inline constexpr long Erro_Índice_Excesso = -2147217883;
inline constexpr long Erro_Bloqueado = -2147467259;  // refused, deleted or locked row
inline constexpr long Erro_Drivers = 430;
inline constexpr long Erro_Duplicado_Jet = 3022;
// The connection to the server was lost (Jet's "ODBC--connection failed"): the store has told the user
// and connected again; a write in flight was undone.
inline constexpr long Erro_Conexão_Perdida = 3151;

// Refusals of the store that no retry mends until the user acts: the disk of the database is full, the
// system opened the database read-only, the file is damaged. Their descriptions name the folder or file.
inline constexpr long Erro_Disco_Cheio = 3026;       // Jet: not enough space on disk
inline constexpr long Erro_Somente_Leitura = 3051;   // Jet: no permission to write the file
inline constexpr long Erro_Banco_Danificado = 3049;  // Jet: the file may be corrupt
// A full disk or read-only database has been told since the current transaction began: the row, its audit
// row and the commit that fail one after the other make one message. Inicia_Transação clears it.
inline bool Gravação_Impedida_Avisada = false;

inline const QString Texto_Duplicado = "Informação já cadastrada no banco de dados";

void Trata_Erro(long Número, const QString& Descrição, long Linha, const QString& Código_Fonte,
                const QString& Sub_Rotina);

// The translated text for a failure number, as step 1 of Trata_Erro sets it.
QString Traduz_Erro(long número, const QString& descrição, const QString& sub_rotina);
QString Tradução_Erro_Fixa(long número);  // the fixed rows of the table; empty when unknown

QString Caminho_Log_Ocorrências();
// Appends one five-line entry (code page 1252, CR LF); false when the file cannot be written.
bool Registra_Ocorrência(long número, const QString& código_fonte, const QString& sub_rotina, long linha);
