#pragma once
// The question files that spreadsheets and quiz tools write: CSV with a header row, Aiken and GIFT. The
// readers only take the file apart; what the bank accepts is checked afterwards (Importação_Perguntas).
// No widgets and no store here, so that the readers can be fed any bytes.
#include <QByteArray>
#include <QString>
#include <QVector>
#include <array>

enum class Formato_Perguntas { CSV, Aiken, GIFT };

struct Pergunta_Lida {
    int Linha = 0;  // the line of the file where the question begins
    QString Pergunta;
    QString Resposta_Correta;
    std::array<QString, 3> Resposta_Incorreta;
    QString Tipo;    // "G", "B", or empty when the file does not say
    QString Recusa;  // empty: ready to go in; else why it is refused
    bool Pronta() const { return Recusa.isEmpty(); }
};

struct Leitura_Perguntas {
    QVector<Pergunta_Lida> Perguntas;
    QString Erro;  // a file that cannot be read at all: the reason, and no questions
};

// Files above this size are refused before they are read.
inline constexpr qint64 Tamanho_Máximo_Arquivo = 10 * 1024 * 1024;

// The bytes as text: UTF-8 with or without its mark, else code page 1252. Line ends CR LF, CR and LF
// all become LF. Empty on a file that holds NUL bytes (a binary file), with binário set.
QString Decodifica_Texto(const QByteArray& bytes, bool* binário = nullptr);

// What a browser shows of an HTML text: tags taken out (a line break, paragraph or other block as a
// blank), comments, scripts and styles left out, character references decoded. Blanks are not folded.
QString Texto_Visível_HTML(const QString& html);

// The text compared for repetitions: no case, no accents, no punctuation, single blanks.
QString Forma_Comparação(const QString& texto);

// "G" or "B" for the kind as files write it ("G", "Geral", "Conhecimento Bíblico", ...); empty if unknown.
QString Tipo_Do_Texto(const QString& texto);

Leitura_Perguntas Lê_CSV(const QByteArray& bytes);
Leitura_Perguntas Lê_Aiken(const QByteArray& bytes);
Leitura_Perguntas Lê_GIFT(const QByteArray& bytes);

// The format told by the file's name (.csv, .gift), else guessed from its text.
Formato_Perguntas Formato_Do_Arquivo(const QString& caminho, const QByteArray& bytes);
// Reads a file from disk: size, emptiness and binary content are checked first.
Leitura_Perguntas Lê_Arquivo_Perguntas(const QString& caminho);

// A question as the exports write it.
struct Pergunta_Exportada {
    QString Pergunta;
    QString Resposta_Correta;
    std::array<QString, 3> Resposta_Incorreta;
    QString Tipo;  // "G" or "B"
};
// UTF-8 with its mark, ";" between fields, CR LF, the header the CSV reader expects.
QByteArray Texto_CSV(const QVector<Pergunta_Exportada>& perguntas);
// Multiple-choice GIFT, each kind under its $CATEGORY line.
QByteArray Texto_GIFT(const QVector<Pergunta_Exportada>& perguntas);
