#pragma once
// The statements that the windows build are Jet's; these routines turn them into SQLite's.
#include <QString>

// Date literals #m/d/yyyy# and CDate('dd/mm/yyyy') become the stored form. The statement is otherwise
// run as written: a typed or stored text enters it only through Valor_Texto_SQL or Valor_Like_SQL.
QString Traduz_SQL(const QString& jet);
// A text as a quoted SQL literal, inner quotes doubled.
QString Valor_Texto_SQL(const QString& texto);
// The pattern of a Like that finds the text anywhere: '%text%', where %, _ and [ typed in the text
// find themselves.
QString Valor_Like_SQL(const QString& texto);
// The stored form of a date and time, which sorts as text.
QString Data_Para_Banco(const class QDateTime& data);
QDateTime Data_Do_Banco(const QString& texto);

struct Consulta_Tabela {
    bool Válida = false;
    QString Tabela;
    QString Resto;  // what follows the table name: Where and Order By
};
// Recognises "Select * From <table> ..." or a bare table name.
Consulta_Tabela Analisa_Fonte(const QString& fonte);
