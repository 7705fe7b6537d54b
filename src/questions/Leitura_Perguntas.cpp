#include "questions/Leitura_Perguntas.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QSet>
#include <QStringDecoder>
#include <QStringList>
#include <algorithm>
#include <cstring>
#include <iterator>

#include "common/Cp1252.h"

namespace {
const QString Erro_Binário =
    "O arquivo não é um texto de perguntas (CSV, Aiken ou GIFT): parece ser um arquivo binário.";
const QString Erro_Vazio = "O arquivo está vazio.";
const QString Erro_Nenhuma = "Nenhuma pergunta foi encontrada no arquivo.";

// A field as the bank keeps it: one line, no blanks around or doubled, no control characters.
QString Limpa(const QString& texto) {
    QString limpo = texto;
    limpo.removeIf([](QChar c) { return c.category() == QChar::Other_Control && !c.isSpace(); });
    return limpo.simplified();
}

// Bytes below 32 other than tab, line ends and form feed: a text file has almost none.
bool Parece_Binário(const QByteArray& bytes) {
    if (bytes.contains('\0')) return true;
    qsizetype controles = 0;
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 32 && b != '\t' && b != '\n' && b != '\r' && b != '\f') ++controles;
    }
    return controles * 100 > bytes.size();
}

// Text checks common to the three readers; true when the reading may go on.
bool Texto_Legível(const QByteArray& bytes, QString& texto, Leitura_Perguntas& leitura) {
    bool binário = false;
    texto = Decodifica_Texto(bytes, &binário);
    if (binário) {
        leitura.Erro = Erro_Binário;
        return false;
    }
    if (texto.trimmed().isEmpty()) {
        leitura.Erro = Erro_Vazio;
        return false;
    }
    return true;
}

// The column names of the header, folded as they are compared.
QString Nome_Coluna(const QString& texto) {
    return Forma_Comparação(texto).remove(' ');
}

struct Registro_CSV {
    int Linha = 0;
    QStringList Campos;
    bool Aspas_Abertas = false;
};

// The separator of the first record: ";" when it has any outside quotes, else ",", else a tab.
QChar Separador_CSV(const QString& texto) {
    int ponto_e_vírgula = 0, vírgula = 0, tabulação = 0;
    bool aspas = false;
    for (const QChar c : texto) {
        if (c == '"')
            aspas = !aspas;
        else if (!aspas && c == '\n')
            break;
        else if (!aspas && c == ';')
            ++ponto_e_vírgula;
        else if (!aspas && c == ',')
            ++vírgula;
        else if (!aspas && c == '\t')
            ++tabulação;
    }
    if (ponto_e_vírgula > 0 && ponto_e_vírgula >= vírgula) return ';';
    if (vírgula > 0) return ',';
    if (tabulação > 0) return '\t';
    return ';';
}

QVector<Registro_CSV> Registros_CSV(const QString& texto, QChar separador) {
    QVector<Registro_CSV> registros;
    Registro_CSV atual;
    atual.Linha = 1;
    QString campo;
    bool aspas = false;
    bool campo_iniciado =
        false;  // something was read into the field (a quote starts a quoted field only at its start)
    int linha = 1;
    auto fecha_campo = [&] {
        atual.Campos << campo;
        campo.clear();
        campo_iniciado = false;
    };
    for (qsizetype i = 0; i < texto.size(); ++i) {
        const QChar c = texto[i];
        if (aspas) {
            if (c == '"') {
                if (i + 1 < texto.size() && texto[i + 1] == '"') {
                    campo += '"';
                    ++i;
                } else {
                    aspas = false;
                }
            } else {
                if (c == '\n') ++linha;
                campo += c;
            }
            continue;
        }
        if (c == '"' && !campo_iniciado) {
            aspas = true;
            campo_iniciado = true;
        } else if (c == separador) {
            fecha_campo();
        } else if (c == '\n') {
            fecha_campo();
            registros << atual;
            atual = Registro_CSV();
            ++linha;
            atual.Linha = linha;
        } else {
            campo += c;
            campo_iniciado = true;
        }
    }
    if (campo_iniciado || !atual.Campos.isEmpty() || aspas) {
        fecha_campo();
        atual.Aspas_Abertas = aspas;
        registros << atual;
    }
    return registros;
}

bool Registro_Vazio(const Registro_CSV& registro) {
    if (registro.Aspas_Abertas) return false;
    for (const QString& campo : registro.Campos)
        if (!campo.trimmed().isEmpty()) return false;
    return true;
}

// Positions of a GIFT text that a backslash does not escape.
bool Escapado(const QString& texto, qsizetype posição) {
    qsizetype barras = 0;
    for (qsizetype i = posição - 1; i >= 0 && texto[i] == '\\'; --i) ++barras;
    return barras % 2 == 1;
}

qsizetype Procura_Livre(const QString& texto, QChar alvo, qsizetype de = 0) {
    for (qsizetype i = de; i < texto.size(); ++i)
        if (texto[i] == alvo && !Escapado(texto, i)) return i;
    return -1;
}

qsizetype Procura_Livre(const QString& texto, const QString& alvo, qsizetype de = 0) {
    for (qsizetype i = texto.indexOf(alvo, de); i >= 0; i = texto.indexOf(alvo, i + 1))
        if (!Escapado(texto, i)) return i;
    return -1;
}

// \~ \= \# \{ \} \: \\ stand for themselves; \n is a line break, which the bank keeps as a blank. An
// [html] text is read for what a browser shows of it.
QString Sem_Escapes(const QString& texto, bool html = false) {
    QString saída;
    saída.reserve(texto.size());
    for (qsizetype i = 0; i < texto.size(); ++i) {
        if (texto[i] == '\\' && i + 1 < texto.size()) {
            ++i;
            saída += texto[i] == 'n' ? QChar(' ') : texto[i];
        } else {
            saída += texto[i];
        }
    }
    return Limpa(html ? Texto_Visível_HTML(saída) : saída);
}

// The text format that may open a GIFT text: [html], [moodle], [plain] or [markdown]. The mark is taken
// off; html tells whether the text is HTML, and stays as it was when the text has no mark (an answer
// takes the format of its question).
void Tira_Marca_Formato(QString& texto, bool& html) {
    for (const char* formato : {"[html]", "[moodle]", "[plain]", "[markdown]"})
        if (texto.startsWith(QLatin1String(formato), Qt::CaseInsensitive)) {
            texto = texto.mid(qsizetype(strlen(formato))).trimmed();
            html = formato[1] == 'h';
            return;
        }
}

QString Com_Escapes_GIFT(const QString& texto) {
    QString saída;
    for (const QChar c : texto) {
        if (QString("~=#{}:\\").contains(c)) saída += '\\';
        saída += c;
    }
    return saída;
}

// One GIFT question: the text between blank lines, comments taken out.
void Lê_Questão_GIFT(const QString& bloco, int linha, const QString& tipo, Leitura_Perguntas& leitura) {
    Pergunta_Lida p;
    p.Linha = linha;
    p.Tipo = tipo;
    QString texto = bloco.trimmed();
    if (texto.startsWith("::")) {
        const qsizetype fim_título = Procura_Livre(texto, QString("::"), 2);
        if (fim_título < 0) {
            p.Recusa = "Título sem o \"::\" que o fecha";
            p.Pergunta = Limpa(texto);
            leitura.Perguntas << p;
            return;
        }
        texto = texto.mid(fim_título + 2).trimmed();
    }
    bool html = false;
    Tira_Marca_Formato(texto, html);
    const qsizetype abre = Procura_Livre(texto, QChar('{'));
    if (abre < 0) {
        p.Pergunta = Sem_Escapes(texto, html);
        p.Recusa = "Texto sem o bloco { } das respostas (descrição): não é uma pergunta";
        leitura.Perguntas << p;
        return;
    }
    const qsizetype fecha = Procura_Livre(texto, QChar('}'), abre + 1);
    const QString antes = texto.left(abre);
    if (fecha < 0) {
        p.Pergunta = Sem_Escapes(antes, html);
        p.Recusa = "Chave { sem a chave } que a fecha";
        leitura.Perguntas << p;
        return;
    }
    const QString depois = texto.mid(fecha + 1).trimmed();
    const QString respostas = texto.mid(abre + 1, fecha - abre - 1).trimmed();
    // A question with its answers in the middle of the text: the gap is shown as a line.
    p.Pergunta = depois.isEmpty() ? Sem_Escapes(antes, html) : Sem_Escapes(antes + " _____ " + depois, html);
    if (Procura_Livre(depois, QChar('{')) >= 0) {
        p.Recusa = "Mais de um bloco { } de respostas na mesma pergunta";
    } else if (respostas.isEmpty()) {
        p.Recusa = "Pergunta dissertativa (sem respostas): só se importam perguntas de múltipla escolha";
    } else if (respostas.startsWith('#')) {
        p.Recusa = "Pergunta numérica: só se importam perguntas de múltipla escolha";
    } else if (QStringList{"T", "F", "TRUE", "FALSE", "V", "VERDADEIRO", "FALSO"}.contains(
                   respostas.section('#', 0, 0).trimmed().toUpper())) {
        p.Recusa = "Pergunta de verdadeiro ou falso: só se importam perguntas de múltipla escolha";
    } else if (Procura_Livre(respostas, QString("->")) >= 0) {
        p.Recusa = "Pergunta de associação: só se importam perguntas de múltipla escolha";
    }
    if (!p.Recusa.isEmpty()) {
        leitura.Perguntas << p;
        return;
    }

    // The answers: each starts at a free "=" (right) or "~" (wrong).
    QStringList certas, erradas;
    bool pesos = false;
    const qsizetype primeira = [&] {
        for (qsizetype i = 0; i < respostas.size(); ++i)
            if ((respostas[i] == '=' || respostas[i] == '~') && !Escapado(respostas, i)) return i;
        return qsizetype(-1);
    }();
    if (primeira != 0) {
        p.Recusa = "Respostas sem \"=\" ou \"~\" à frente: formato não reconhecido";
        leitura.Perguntas << p;
        return;
    }
    for (qsizetype i = 0; i < respostas.size();) {
        const QChar marca = respostas[i];
        qsizetype fim = i + 1;
        while (fim < respostas.size() &&
               !((respostas[fim] == '=' || respostas[fim] == '~') && !Escapado(respostas, fim)))
            ++fim;
        QString resposta = respostas.mid(i + 1, fim - i - 1);
        const qsizetype comentário = Procura_Livre(resposta, QChar('#'));
        if (comentário >= 0) resposta.truncate(comentário);
        resposta = resposta.trimmed();
        if (resposta.startsWith('%')) {
            const qsizetype fim_peso = resposta.indexOf('%', 1);
            if (fim_peso > 0) {
                bool número = false;
                const double peso = resposta.mid(1, fim_peso - 1).toDouble(&número);
                if (número && ((marca == '~' && peso > 0) || (marca == '=' && peso != 100))) pesos = true;
                resposta = resposta.mid(fim_peso + 1);
            }
        }
        bool html_resposta = html;
        Tira_Marca_Formato(resposta, html_resposta);
        (marca == '=' ? certas : erradas) << Sem_Escapes(resposta, html_resposta);
        i = fim;
    }
    if (pesos) {
        p.Recusa = "Respostas com pesos parciais (%): só se importam perguntas com uma resposta certa";
    } else if (erradas.isEmpty()) {
        p.Recusa =
            "Pergunta de resposta curta (sem respostas erradas): só se importam perguntas de múltipla "
            "escolha";
    } else if (certas.size() != 1) {
        p.Recusa = QString("A pergunta tem %1 respostas certas; é precisa exatamente uma").arg(certas.size());
    } else if (erradas.size() != 3) {
        p.Recusa = QString("A pergunta tem %1 %2; são precisas exatamente três")
                       .arg(erradas.size())
                       .arg(erradas.size() == 1 ? "resposta errada" : "respostas erradas");
    }
    if (!certas.isEmpty()) p.Resposta_Correta = certas[0];
    for (int k = 0; k < 3 && k < erradas.size(); ++k) p.Resposta_Incorreta[k] = erradas[k];
    leitura.Perguntas << p;
}

QString Campo_CSV(const QString& texto) {
    if (texto.contains(';') || texto.contains('"') || texto.contains('\n') || texto.contains('\r') ||
        texto != texto.trimmed()) {
        QString dentro = texto;
        return '"' + dentro.replace("\"", "\"\"") + '"';
    }
    return texto;
}

QString Nome_Tipo(const QString& tipo) {
    return tipo == "B" ? "Conhecimento Bíblico" : "Conhecimento Geral";
}
}  // namespace

namespace {
// The named character references that question texts use: Latin-1 from 160 up, in order, and a few more.
const char* const Entidades_Latin1[] = {
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",    "copy",
    "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn", "sup2",   "sup3",
    "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",   "raquo",  "frac14", "frac12",
    "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil",
    "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave", "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde",
    "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",
    "Uuml",   "Yacute", "THORN",  "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",
    "aelig",  "ccedil", "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",
    "eth",    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};
static_assert(std::size(Entidades_Latin1) == 96);

const QHash<QString, char32_t>& Entidades() {
    static const QHash<QString, char32_t> entidades = [] {
        QHash<QString, char32_t> e = {
            {"amp", U'&'},         {"lt", U'<'},          {"gt", U'>'},         {"quot", U'"'},
            {"apos", U'\''},       {"ndash", U'\u2013'},  {"mdash", U'\u2014'}, {"lsquo", U'\u2018'},
            {"rsquo", U'\u2019'},  {"sbquo", U'\u201A'},  {"ldquo", U'\u201C'}, {"rdquo", U'\u201D'},
            {"bdquo", U'\u201E'},  {"hellip", U'\u2026'}, {"bull", U'\u2022'},  {"euro", U'\u20AC'},
            {"trade", U'\u2122'},  {"OElig", U'\u0152'},  {"oelig", U'\u0153'}, {"Scaron", U'\u0160'},
            {"scaron", U'\u0161'}, {"Yuml", U'\u0178'},   {"ensp", U'\u2002'},  {"emsp", U'\u2003'},
            {"thinsp", U'\u2009'}};
        for (char32_t c = 0; c < std::size(Entidades_Latin1); ++c) e.insert(Entidades_Latin1[c], 160 + c);
        return e;
    }();
    return entidades;
}

// Tags after which a browser starts a new line or cell: they part the words around them.
bool Etiqueta_De_Bloco(const QString& nome) {
    static const QSet<QString> blocos = {
        "br", "p",  "div", "li", "ul", "ol", "dl", "dt",         "dd",  "tr",  "td",      "th",     "table",
        "h1", "h2", "h3",  "h4", "h5", "h6", "hr", "blockquote", "pre", "img", "section", "article"};
    return blocos.contains(nome);
}

// The longest tag read as one: a "<" with no end within it is text, and a long text full of "<" is read in
// a time that grows with its length, not with its square.
constexpr qsizetype Etiqueta_Máxima = 2048;

// The end of the tag that opens at `início` ("<"), past quoted attribute values; -1 when it never ends.
qsizetype Fim_Etiqueta(const QString& html, qsizetype início) {
    QChar aspas;
    const qsizetype limite = std::min(html.size(), início + Etiqueta_Máxima);
    for (qsizetype i = início + 1; i < limite; ++i) {
        const QChar c = html[i];
        if (!aspas.isNull()) {
            if (c == aspas) aspas = QChar();
        } else if (c == '"' || c == '\'') {
            aspas = c;
        } else if (c == '>') {
            return i;
        }
    }
    return -1;
}

// A character reference at `início` ("&"): its character, and where the text goes on; false when the
// "&" is only itself.
bool Referência(const QString& html, qsizetype início, QString& caractere, qsizetype& seguinte) {
    qsizetype fim = início + 1;
    while (fim < html.size() && fim - início <= 12 && html[fim] != ';') ++fim;
    if (fim >= html.size() || html[fim] != ';') return false;
    const QString nome = html.mid(início + 1, fim - início - 1);
    char32_t código = 0;
    if (nome.startsWith('#')) {
        bool ok = false;
        const bool hexa = nome.size() > 1 && (nome[1] == 'x' || nome[1] == 'X');
        const uint valor = nome.mid(hexa ? 2 : 1).toUInt(&ok, hexa ? 16 : 10);
        if (!ok) return false;
        // What the character cannot be takes the replacement character, as a browser shows it.
        código = valor == 0 || valor > 0x10FFFF || (valor >= 0xD800 && valor <= 0xDFFF) ? U'\uFFFD' : valor;
    } else {
        const auto achada = Entidades().constFind(nome);
        if (achada == Entidades().cend()) return false;
        código = *achada;
    }
    caractere =
        código == U'\u00AD' ? QString() : QString::fromUcs4(&código, 1);  // a soft hyphen shows nothing
    seguinte = fim + 1;
    return true;
}
}  // namespace

QString Texto_Visível_HTML(const QString& html) {
    QString saída;
    saída.reserve(html.size());
    for (qsizetype i = 0; i < html.size();) {
        const QChar c = html[i];
        if (c == '<' && html.mid(i, 4) == "<!--") {
            const qsizetype fim = html.indexOf("-->", i + 4);
            i = fim < 0 ? html.size() : fim + 3;
            continue;
        }
        const bool etiqueta =
            c == '<' && i + 1 < html.size() &&
            (html[i + 1].isLetter() || html[i + 1] == '/' || html[i + 1] == '!' || html[i + 1] == '?');
        if (etiqueta) {
            const qsizetype fim = Fim_Etiqueta(html, i);
            if (fim < 0) {  // a "<" that opens nothing is text
                saída += c;
                ++i;
                continue;
            }
            QString nome;
            for (qsizetype k = i + 1;
                 k < fim && (html[k].isLetterOrNumber() || (k == i + 1 && html[k] == '/')); ++k)
                if (html[k] != '/') nome += html[k].toLower();
            const bool fecha = html[i + 1] == '/';
            i = fim + 1;
            if (!fecha && (nome == "script" || nome == "style")) {
                // Their content is not shown.
                const qsizetype fim_conteúdo = html.indexOf("</" + nome, i, Qt::CaseInsensitive);
                const qsizetype fim_fecho = fim_conteúdo < 0 ? -1 : Fim_Etiqueta(html, fim_conteúdo);
                i = fim_fecho < 0 ? html.size() : fim_fecho + 1;
                continue;
            }
            if (Etiqueta_De_Bloco(nome)) saída += ' ';
            continue;
        }
        QString caractere;
        qsizetype seguinte = 0;
        if (c == '&' && Referência(html, i, caractere, seguinte)) {
            saída += caractere;
            i = seguinte;
            continue;
        }
        saída += c;
        ++i;
    }
    return saída;
}

QString Decodifica_Texto(const QByteArray& bytes, bool* binário) {
    if (binário) *binário = false;
    QString texto;
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        // Spreadsheets' "Unicode text" is UTF-16 with its mark.
        QStringDecoder utf16(bytes.startsWith("\xFF\xFE") ? QStringDecoder::Utf16LE
                                                          : QStringDecoder::Utf16BE);
        texto = utf16(bytes.mid(2));
        if (utf16.hasError() || texto.contains(QChar(0))) {
            if (binário) *binário = true;
            return {};
        }
    } else if (Parece_Binário(bytes)) {
        if (binário) *binário = true;
        return {};
    } else {
        const QByteArray corpo = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        texto = utf8(corpo);
        // Bytes that are not UTF-8 come from the 8-bit code page of Windows spreadsheets.
        if (utf8.hasError()) texto = De_Cp1252(corpo);
    }
    texto.replace("\r\n", "\n");
    texto.replace('\r', '\n');
    return texto;
}

QString Forma_Comparação(const QString& texto) {
    // Plain ASCII has no accents to take apart: the decomposition would give the same text.
    bool só_ascii = true;
    for (const QChar c : texto)
        if (c.unicode() >= 0x80) {
            só_ascii = false;
            break;
        }
    const QString decomposto = só_ascii ? texto : texto.normalized(QString::NormalizationForm_D);
    QString saída;
    saída.reserve(decomposto.size());
    bool separa = false;
    for (const QChar c : decomposto) {
        if (c.isLetterOrNumber()) {
            if (separa && !saída.isEmpty()) saída += ' ';
            separa = false;
            saída += c.toLower();
        } else if (c.isSpace()) {
            separa = true;
        }
        // Accents (combining marks) and punctuation are left out.
    }
    return saída;
}

QString Tipo_Do_Texto(const QString& texto) {
    const QString forma = Forma_Comparação(texto);
    if (forma == "g" || forma == "geral" || forma == "conhecimento geral") return "G";
    if (forma == "b" || forma == "biblico" || forma == "conhecimento biblico" || forma == "biblia")
        return "B";
    return {};
}

Leitura_Perguntas Lê_CSV(const QByteArray& bytes) {
    Leitura_Perguntas leitura;
    QString texto;
    if (!Texto_Legível(bytes, texto, leitura)) return leitura;
    const QVector<Registro_CSV> registros = Registros_CSV(texto, Separador_CSV(texto));

    qsizetype primeiro = 0;
    while (primeiro < registros.size() && Registro_Vazio(registros[primeiro])) ++primeiro;
    if (primeiro == registros.size()) {
        leitura.Erro = Erro_Vazio;
        return leitura;
    }
    // The header names the columns; their order is free and other columns are passed over.
    const QStringList nomes = {"Pergunta",
                               "Resposta Correta",
                               "Resposta Incorreta 1",
                               "Resposta Incorreta 2",
                               "Resposta Incorreta 3",
                               "Tipo"};
    std::array<int, 6> coluna;
    coluna.fill(-1);
    const Registro_CSV& cabeçalho = registros[primeiro];
    for (int c = 0; c < cabeçalho.Campos.size(); ++c)
        for (int n = 0; n < nomes.size(); ++n)
            if (coluna[n] < 0 && Nome_Coluna(cabeçalho.Campos[c]) == Nome_Coluna(nomes[n])) coluna[n] = c;
    QStringList faltam;
    for (int n = 0; n < 5; ++n)
        if (coluna[n] < 0) faltam << "\"" + nomes[n] + "\"";
    if (!faltam.isEmpty()) {
        leitura.Erro =
            QString(
                "A primeira linha do arquivo deve nomear as colunas Pergunta, Resposta Correta, "
                "Resposta Incorreta 1, Resposta Incorreta 2, Resposta Incorreta 3 e, se quiser, "
                "Tipo. %1 %2.")
                .arg(faltam.size() == 1 ? "Falta a coluna" : "Faltam as colunas", faltam.join(", "));
        return leitura;
    }
    const int largura = cabeçalho.Campos.size();

    for (qsizetype r = primeiro + 1; r < registros.size(); ++r) {
        const Registro_CSV& registro = registros[r];
        if (Registro_Vazio(registro)) continue;
        Pergunta_Lida p;
        p.Linha = registro.Linha;
        auto campo = [&](int n) {
            return coluna[n] >= 0 && coluna[n] < registro.Campos.size() ? Limpa(registro.Campos[coluna[n]])
                                                                        : QString();
        };
        p.Pergunta = campo(0);
        p.Resposta_Correta = campo(1);
        for (int k = 0; k < 3; ++k) p.Resposta_Incorreta[k] = campo(2 + k);
        const QString tipo = campo(5);
        bool sobra_preenchida = false;
        for (int c = largura; c < registro.Campos.size(); ++c)
            if (!registro.Campos[c].trimmed().isEmpty()) sobra_preenchida = true;
        if (registro.Aspas_Abertas) {
            p.Recusa = "Aspas abertas nesta linha e nunca fechadas";
        } else if (registro.Campos.size() < largura || sobra_preenchida) {
            p.Recusa = QString("A linha tem %1 campos e o cabeçalho tem %2")
                           .arg(registro.Campos.size())
                           .arg(largura);
        } else if (!tipo.isEmpty()) {
            p.Tipo = Tipo_Do_Texto(tipo);
            if (p.Tipo.isEmpty())
                p.Recusa =
                    QString(
                        "Tipo \"%1\" desconhecido: use G (Conhecimento Geral) ou B (Conhecimento Bíblico)")
                        .arg(tipo.left(30));
        }
        leitura.Perguntas << p;
    }
    if (leitura.Perguntas.isEmpty()) leitura.Erro = Erro_Nenhuma;
    return leitura;
}

Leitura_Perguntas Lê_Aiken(const QByteArray& bytes) {
    Leitura_Perguntas leitura;
    QString texto;
    if (!Texto_Legível(bytes, texto, leitura)) return leitura;

    struct Bloco {
        int Linha = 0;
        QStringList Pergunta;
        QVector<QPair<QChar, QString>> Opções;
    } bloco;
    auto em_curso = [&] { return !bloco.Pergunta.isEmpty(); };
    auto termina = [&](const QString* resposta) {
        Pergunta_Lida p;
        p.Linha = bloco.Linha;
        p.Pergunta = Limpa(bloco.Pergunta.join(' '));
        int certa = -1;
        if (resposta) {
            const QString letra = resposta->trimmed().toUpper();
            for (int k = 0; k < bloco.Opções.size(); ++k)
                if (letra.size() == 1 && bloco.Opções[k].first == letra[0]) certa = k;
        }
        if (!resposta) {
            p.Recusa = "Falta a linha ANSWER com a letra da resposta certa";
        } else if (bloco.Opções.size() != 4) {
            p.Recusa =
                QString("A pergunta tem %1 %2; são precisas exatamente quatro (uma certa e três erradas)")
                    .arg(bloco.Opções.size())
                    .arg(bloco.Opções.size() == 1 ? "opção" : "opções");
        } else if (certa < 0) {
            p.Recusa = QString("ANSWER indica \"%1\", que não é a letra de uma das opções")
                           .arg(resposta->trimmed().left(10));
        }
        int errada = 0;
        for (int k = 0; k < bloco.Opções.size(); ++k) {
            if (k == certa)
                p.Resposta_Correta = bloco.Opções[k].second;
            else if (errada < 3)
                p.Resposta_Incorreta[errada++] = bloco.Opções[k].second;
        }
        leitura.Perguntas << p;
        bloco = Bloco();
    };

    const QStringList linhas = texto.split('\n');
    for (int n = 0; n < linhas.size(); ++n) {
        const QString linha = linhas[n].trimmed();
        if (linha.isEmpty()) {
            if (em_curso()) termina(nullptr);
            continue;
        }
        if (linha.startsWith("ANSWER", Qt::CaseInsensitive) && linha.mid(6).trimmed().startsWith(':')) {
            const QString resposta = linha.mid(6).trimmed().mid(1);
            if (em_curso()) {
                termina(&resposta);
            } else {
                Pergunta_Lida p;
                p.Linha = n + 1;
                p.Recusa = "Linha ANSWER sem uma pergunta antes dela";
                leitura.Perguntas << p;
            }
            continue;
        }
        // "A) texto" or "A. texto": an option, once the question has begun. Written without the blank
        // ("A)texto", "B.texto") it is an option only under the next letter of the list, so that a line of
        // the question such as "E.T. volta para casa" stays in the question.
        const bool marca_opção = linha.size() >= 2 && linha[0].isLetter() && linha[0].unicode() < 128 &&
                                 (linha[1] == ')' || linha[1] == '.');
        const bool com_branco = linha.size() == 2 || (linha.size() > 2 && linha[2].isSpace());
        const QChar próxima_letra(char16_t(u'A' + bloco.Opções.size()));
        const bool opção = em_curso() && marca_opção && (com_branco || linha[0].toUpper() == próxima_letra);
        if (opção) {
            bloco.Opções << qMakePair(linha[0].toUpper(), Limpa(linha.mid(2)));
        } else {
            // Text after the options without an ANSWER line: the next question has begun.
            if (!bloco.Opções.isEmpty()) termina(nullptr);
            if (!em_curso()) bloco.Linha = n + 1;
            bloco.Pergunta << linha;
        }
    }
    if (em_curso()) termina(nullptr);
    if (leitura.Perguntas.isEmpty()) leitura.Erro = Erro_Nenhuma;
    return leitura;
}

Leitura_Perguntas Lê_GIFT(const QByteArray& bytes) {
    Leitura_Perguntas leitura;
    QString texto;
    if (!Texto_Legível(bytes, texto, leitura)) return leitura;

    QString tipo;
    QString bloco;
    int linha_bloco = 0;
    auto termina = [&] {
        if (!bloco.trimmed().isEmpty()) Lê_Questão_GIFT(bloco, linha_bloco, tipo, leitura);
        bloco.clear();
    };
    const QStringList linhas = texto.split('\n');
    for (int n = 0; n < linhas.size(); ++n) {
        const QString linha = linhas[n].trimmed();
        if (linha.startsWith("//")) continue;
        if (linha.isEmpty()) {
            termina();
            continue;
        }
        if (linha.startsWith("$CATEGORY:", Qt::CaseInsensitive)) {
            termina();
            // The kind follows the category's name when it tells one.
            const QString categoria = Forma_Comparação(linha.mid(10));
            tipo = categoria.contains("biblic") ? "B" : categoria.contains("geral") ? "G" : QString();
            continue;
        }
        if (bloco.isEmpty()) linha_bloco = n + 1;
        bloco += linhas[n] + '\n';
    }
    termina();
    if (leitura.Perguntas.isEmpty()) leitura.Erro = Erro_Nenhuma;
    return leitura;
}

Formato_Perguntas Formato_Do_Arquivo(const QString& caminho, const QByteArray& bytes) {
    const QString sufixo = QFileInfo(caminho).suffix().toLower();
    if (sufixo == "csv") return Formato_Perguntas::CSV;
    if (sufixo == "gift") return Formato_Perguntas::GIFT;
    const QString texto = Decodifica_Texto(bytes.left(1024 * 1024));
    for (const QString& linha : texto.split('\n'))
        if (linha.trimmed().startsWith("ANSWER", Qt::CaseInsensitive) && linha.contains(':'))
            return Formato_Perguntas::Aiken;
    if (texto.contains('{')) return Formato_Perguntas::GIFT;
    return Formato_Perguntas::CSV;
}

Leitura_Perguntas Lê_Arquivo_Perguntas(const QString& caminho) {
    Leitura_Perguntas leitura;
    const QFileInfo info(caminho);
    if (!info.exists() || !info.isFile()) {
        leitura.Erro = QString("O arquivo \"%1\" não foi encontrado.").arg(caminho);
        return leitura;
    }
    if (info.size() > Tamanho_Máximo_Arquivo) {
        const QLocale local(QLocale::Portuguese, QLocale::Brazil);
        leitura.Erro = QString(
                           "O arquivo tem %1 MB e passa do limite de %2 MB de uma importação. "
                           "Divida-o em arquivos menores.")
                           .arg(local.toString(info.size() / 1048576.0, 'f', 1))
                           .arg(Tamanho_Máximo_Arquivo / 1048576);
        return leitura;
    }
    QFile arquivo(caminho);
    if (!arquivo.open(QIODevice::ReadOnly)) {
        leitura.Erro =
            QString("Não foi possível abrir o arquivo \"%1\": %2.").arg(caminho, arquivo.errorString());
        return leitura;
    }
    const QByteArray bytes = arquivo.readAll();
    switch (Formato_Do_Arquivo(caminho, bytes)) {
        case Formato_Perguntas::CSV:
            return Lê_CSV(bytes);
        case Formato_Perguntas::Aiken:
            return Lê_Aiken(bytes);
        case Formato_Perguntas::GIFT:
            return Lê_GIFT(bytes);
    }
    return leitura;
}

QByteArray Texto_CSV(const QVector<Pergunta_Exportada>& perguntas) {
    QString texto =
        "Pergunta;Resposta Correta;Resposta Incorreta 1;Resposta Incorreta 2;Resposta Incorreta 3;Tipo\r\n";
    for (const Pergunta_Exportada& p : perguntas) {
        QStringList campos = {p.Pergunta,
                              p.Resposta_Correta,
                              p.Resposta_Incorreta[0],
                              p.Resposta_Incorreta[1],
                              p.Resposta_Incorreta[2],
                              Nome_Tipo(p.Tipo)};
        for (QString& campo : campos) campo = Campo_CSV(campo.trimmed());
        texto += campos.join(';') + "\r\n";
    }
    return "\xEF\xBB\xBF" + texto.toUtf8();
}

QByteArray Texto_GIFT(const QVector<Pergunta_Exportada>& perguntas) {
    QString texto = "// Perguntas do Quizora, múltipla escolha: a resposta certa com =, as erradas com ~\n";
    for (const QString& tipo : {QString("G"), QString("B")}) {
        bool cabeçalho = false;
        for (const Pergunta_Exportada& p : perguntas) {
            if ((p.Tipo == "B") != (tipo == "B")) continue;
            if (!cabeçalho) {
                texto += "\n$CATEGORY: " + Nome_Tipo(tipo) + "\n";
                cabeçalho = true;
            }
            // A text that would read as a comment, a category or a format mark goes behind [moodle].
            const QString pergunta = p.Pergunta.trimmed();
            const bool marca =
                pergunta.startsWith('/') || pergunta.startsWith('$') || pergunta.startsWith('[');
            texto += "\n" + QString(marca ? "[moodle]" : "") + Com_Escapes_GIFT(pergunta) + " {\n";
            texto += "\t=" + Com_Escapes_GIFT(p.Resposta_Correta.trimmed()) + "\n";
            for (const QString& errada : p.Resposta_Incorreta)
                texto += "\t~" + Com_Escapes_GIFT(errada.trimmed()) + "\n";
            texto += "}\n";
        }
    }
    return texto.toUtf8();
}
