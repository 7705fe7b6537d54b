#include "store/Tradutor_SQL.h"

#include <QDateTime>
#include <QRegularExpression>

QString Valor_Texto_SQL(const QString& texto) {
    QString s = texto;
    s.replace('\'', "''");
    return '\'' + s + '\'';
}

QString Data_Para_Banco(const QDateTime& data) {
    return data.toString("yyyy-MM-dd HH:mm:ss");
}

QDateTime Data_Do_Banco(const QString& texto) {
    // The stored form is read by hand: it is read for every row of every walk.
    if (texto.size() == 19 && texto[4] == '-' && texto[7] == '-' && texto[10] == ' ') {
        const QDateTime d(
            QDate(texto.left(4).toInt(), texto.mid(5, 2).toInt(), texto.mid(8, 2).toInt()),
            QTime(texto.mid(11, 2).toInt(), texto.mid(14, 2).toInt(), texto.mid(17, 2).toInt()));
        if (d.isValid()) return d;
    }
    QDateTime d = QDateTime::fromString(texto, "yyyy-MM-dd HH:mm:ss");
    if (!d.isValid()) d = QDateTime::fromString(texto, Qt::ISODate);
    return d;
}

namespace {
QString Data_Literal(int ano, int mês, int dia) {
    const QDate data(ano, mês, dia);
    if (!data.isValid()) return "NULL";
    return '\'' + Data_Para_Banco(QDateTime(data, QTime(0, 0))) + '\'';
}

// True when every quoted value closes before a blank, a comma, a parenthesis or the end: the statement's
// quotes already pair up, as in "Where Rotina = 'a' And Usuário = 'b'".
bool Aspas_Pareadas(const QString& sql) {
    for (int i = 0; i < sql.size(); ++i) {
        if (sql[i] != '\'') continue;
        int fim = i + 1;
        for (;; ++fim) {
            if (fim >= sql.size()) return false;
            if (sql[fim] != '\'') continue;
            if (fim + 1 < sql.size() && sql[fim + 1] == '\'') {
                ++fim;
                continue;
            }
            break;
        }
        if (fim + 1 < sql.size() && !QString(" ),;").contains(sql[fim + 1])) return false;
        i = fim;
    }
    return true;
}

// A criterion on one field carries one typed value between its first and last quote. Quotes inside it
// that are not already doubled are doubled.
QString Conserta_Aspas(const QString& sql) {
    if (!sql.contains('\'') || Aspas_Pareadas(sql)) return sql;
    static const QRegularExpression where("\\bwhere\\b", QRegularExpression::CaseInsensitiveOption);
    const int onde = sql.indexOf(where);
    if (onde < 0 || sql.contains("CDate(", Qt::CaseInsensitive)) return sql;
    const int primeira = sql.indexOf('\'', onde);
    const int última = sql.lastIndexOf('\'');
    if (primeira < 0 || última <= primeira) return sql;
    const QString dentro = sql.mid(primeira + 1, última - primeira - 1);
    bool só_pares = true;
    for (int i = 0; i < dentro.size(); ++i) {
        if (dentro[i] != '\'') continue;
        if (i + 1 < dentro.size() && dentro[i + 1] == '\'')
            ++i;
        else
            só_pares = false;
    }
    if (só_pares) return sql;
    QString consertado = dentro;
    consertado.replace('\'', "''");
    return sql.left(primeira + 1) + consertado + sql.mid(última);
}
}  // namespace

QString Traduz_SQL(const QString& jet) {
    QString sql = Conserta_Aspas(jet);
    if (!sql.contains('#') && !sql.contains("CDate", Qt::CaseInsensitive)) return sql;
    static const QRegularExpression data_jet("#(\\d{1,2})/(\\d{1,2})/(\\d{4})#");
    static const QRegularExpression cdate("CDate\\s*\\(\\s*'(\\d{1,2})/(\\d{1,2})/(\\d{4})'\\s*\\)",
                                          QRegularExpression::CaseInsensitiveOption);
    for (auto m = data_jet.match(sql); m.hasMatch(); m = data_jet.match(sql))
        sql.replace(m.capturedStart(), m.capturedLength(),
                    Data_Literal(m.captured(3).toInt(), m.captured(1).toInt(), m.captured(2).toInt()));
    for (auto m = cdate.match(sql); m.hasMatch(); m = cdate.match(sql))
        sql.replace(m.capturedStart(), m.capturedLength(),
                    Data_Literal(m.captured(3).toInt(), m.captured(2).toInt(), m.captured(1).toInt()));
    return sql;
}

Consulta_Tabela Analisa_Fonte(const QString& fonte) {
    Consulta_Tabela c;
    const QString f = fonte.trimmed();
    if (!f.isEmpty() && !f.contains(' ')) {
        c.Válida = true;
        c.Tabela = f;
        return c;
    }
    static const QRegularExpression selecao(
        "^select\\s+\\*\\s+from\\s+([^\\s;]+)(.*)$",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    const auto m = selecao.match(f);
    if (!m.hasMatch()) return c;
    c.Válida = true;
    c.Tabela = m.captured(1);
    c.Resto = m.captured(2);
    return c;
}
