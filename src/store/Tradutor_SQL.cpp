#include "store/Tradutor_SQL.h"

#include <QDateTime>
#include <QRegularExpression>

QString Valor_Texto_SQL(const QString& texto) {
    QString s = texto;
    s.replace('\'', "''");
    return '\'' + s + '\'';
}

QString Valor_Like_SQL(const QString& texto) {
    // The pattern's own signs, typed by the user, stand for themselves: each goes in a bracket.
    QString s;
    s.reserve(texto.size() + 8);
    for (const QChar c : texto) {
        if (c == '[' || c == '%' || c == '_')
            s += QString('[') + c + ']';
        else if (c == '\'')
            s += "''";
        else
            s += c;
    }
    return "'%" + s + "%'";
}

QString Data_Para_Banco(const QDateTime& data) {
    // Written by hand: every recorded turn and audit row writes dates, and the formatter's parsing of its
    // pattern costs more than the date.
    const QDate dia = data.date();
    if (!data.isValid() || dia.year() < 0 || dia.year() > 9999) return data.toString("yyyy-MM-dd HH:mm:ss");
    const QTime hora = data.time();
    const int partes[6] = {dia.year(), dia.month(), dia.day(), hora.hour(), hora.minute(), hora.second()};
    QString texto(19, Qt::Uninitialized);
    QChar* c = texto.data();
    auto dígitos = [&c](int valor, int quantos) {
        for (int i = quantos - 1; i >= 0; --i, valor /= 10) c[i] = QChar(u'0' + valor % 10);
        c += quantos;
    };
    dígitos(partes[0], 4);
    for (int i = 1; i < 6; ++i) {
        *c++ = QChar(i == 3 ? u' ' : i < 3 ? u'-' : u':');
        dígitos(partes[i], 2);
    }
    return texto;
}

namespace {
// The number in texto's digits from `início`, `quantos` of them; -1 where one is not a digit.
int Dígitos(const QString& texto, int início, int quantos) {
    int valor = 0;
    for (int i = início; i < início + quantos; ++i) {
        const char16_t c = texto[i].unicode();
        if (c < '0' || c > '9') return -1;
        valor = valor * 10 + (c - '0');
    }
    return valor;
}
}  // namespace

QDateTime Data_Do_Banco(const QString& texto) {
    // The stored form is read by hand: it is read for every row of every walk. A walk in date order
    // reads the same day row after row, and the local time of a day is worked out once for them.
    thread_local QString último_texto;
    thread_local QDateTime última_data;
    if (texto.size() == 19 && texto == último_texto) return última_data;
    if (texto.size() == 19 && texto[4] == '-' && texto[7] == '-' && texto[10] == ' ' &&
        Dígitos(texto, 0, 4) >= 0) {
        const QDate dia(Dígitos(texto, 0, 4), Dígitos(texto, 5, 2), Dígitos(texto, 8, 2));
        const QTime hora(Dígitos(texto, 11, 2), Dígitos(texto, 14, 2), Dígitos(texto, 17, 2));
        const QDateTime d(dia, hora);
        if (d.isValid()) {
            último_texto = texto;
            última_data = d;
            return d;
        }
        // An hour that the local clock skipped (the midnight when summer time began, as in Brazil up to
        // 2018) is read as the first hour that exists after it, so that the day itself is not lost.
        if (dia.isValid() && hora.isValid())
            for (int passo = 1; passo <= 4; ++passo)
                if (const QDateTime adiante(dia, hora.addSecs(passo * 1800)); adiante.isValid())
                    return adiante;
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

}  // namespace

QString Traduz_SQL(const QString& jet) {
    QString sql = jet;
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
