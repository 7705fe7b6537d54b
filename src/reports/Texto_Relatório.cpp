#include "reports/Texto_Relatório.h"

#include <QLocale>
#include <QStringList>

#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

namespace {
// Positions count from 1, as columns do; beyond the text there is no character.
QChar Caractere(const QString& texto, int posição) {
    if (posição < 1 || posição > texto.size()) return QChar();
    return texto.at(posição - 1);
}

// The characters from posição início through posição fim, both included.
QString Trecho(const QString& texto, int início, int fim) {
    if (fim < início) return QString();
    return texto.mid(início - 1, fim - início + 1);
}

// Only blanks are taken off: line-break characters stay.
QString Apara(const QString& texto) {
    int primeiro = 0;
    int último = static_cast<int>(texto.size()) - 1;
    while (primeiro <= último && texto.at(primeiro) == ' ') ++primeiro;
    while (último >= primeiro && texto.at(último) == ' ') --último;
    return texto.mid(primeiro, último - primeiro + 1);
}

QString Um_Blank_Por_Vez(const QString& texto) {
    QString saída;
    saída.reserve(texto.size());
    for (const QChar c : texto) {
        if (c == ' ' && saída.endsWith(' ')) continue;
        saída += c;
    }
    return saída;
}

bool Separador(QChar c) {
    return c == ' ' || c == '.' || c == QChar(10) || c == QChar(13);
}

// Widens the gaps from right to left, round and round, until the line is Largura long.
QString Justifica(const QString& linha, int Largura) {
    QStringList palavras = linha.split(' ');
    const int quantidade = static_cast<int>(palavras.size());
    if (quantidade < 2) return linha;
    for (int i = 0; i < quantidade - 1; ++i) palavras[i] += ' ';
    int tamanho = static_cast<int>(linha.size());
    int contador = quantidade;
    while (tamanho < Largura) {
        --contador;
        if (contador == 0) contador = quantidade - 1;
        palavras[contador - 1] += ' ';
        ++tamanho;
    }
    return palavras.join(QString());
}
}  // namespace

void Edita_Parágrafo(QString& Texto, int Largura, bool Pelo_Imprime, bool Direto) {
    Rotina r(Fonte_Funções_Públicas, "Edita_Parágrafo");
    Ponteiro_Ocupado cursor(Ícone_Processamento);

    Linhas_Parágrafo.fill(QString());
    Fim_Parágrafo.fill(false);
    Quantidade_Linhas_Parágrafo = 0;

    Texto = Um_Blank_Por_Vez(Apara(Texto));
    if (Largura < 1) return;

    const int comprimento = static_cast<int>(Texto.size());
    int linhas = 0;
    int início = 1;
    int fim = Largura;
    while (início <= comprimento && linhas < Máximo_Linhas_Parágrafo) {
        int corte = 0;
        bool quebra = false;
        for (int i = início; i <= fim && i <= comprimento; ++i) {
            const QChar c = Caractere(Texto, i);
            if (c == ' ') corte = i - 1;
            if (c == '.') corte = i;
            if (c == QChar(13)) {
                corte = i - 1;
                quebra = true;
                break;
            }
        }

        ++linhas;
        if (quebra) {
            Linhas_Parágrafo[linhas] = Apara(Trecho(Texto, início, corte));
            Fim_Parágrafo[linhas] = true;
        } else if (Trecho(Texto, início, fim).size() < Largura) {
            Linhas_Parágrafo[linhas] = Apara(Trecho(Texto, início, fim));
            break;
        } else {
            // A word that fills the whole window has no place to break: it is cut at the width.
            if (corte < início) corte = início + Largura - 1;
            Linhas_Parágrafo[linhas] = Apara(Trecho(Texto, início, corte));
        }

        // The blanks, points and line breaks behind the cut belong to no line.
        do {
            ++corte;
        } while (Separador(Caractere(Texto, corte)));
        if (Apara(Texto.mid(corte - 1)).isEmpty() && linhas == 1) break;

        início = corte;
        fim = início + Largura;
    }

    for (int i = 1; i < linhas; ++i) {
        if (Fim_Parágrafo[i]) continue;
        Linhas_Parágrafo[i] = Justifica(Linhas_Parágrafo[i], Largura);
    }

    for (int i = 1; i <= Máximo_Linhas_Parágrafo; ++i)
        if (!Linhas_Parágrafo[i].isEmpty()) ++Quantidade_Linhas_Parágrafo;

    for (int i = 1; i <= Quantidade_Linhas_Parágrafo; ++i) {
        if (Pelo_Imprime) {
            if (Saída_Imprime) Saída_Imprime(Linhas_Parágrafo[i], 0, false);
        } else if (Direto) {
            if (Saída_Direta) Saída_Direta(Linhas_Parágrafo[i]);
        }
    }
}

QString Formata_Expressão(double Valor, int Tamanho, int Decimais, bool Moeda) {
    Rotina r(Fonte_Funções_Públicas, "Formata_Expressão");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Q_UNUSED(Moeda);

    const QLocale local(QLocale::Portuguese, QLocale::Brazil);
    const int casas = Decimais > 0 ? Decimais : 0;
    // Grouped digits; with decimals a value under 1 keeps its "0" before the comma.
    QString número = local.toString(Valor, 'f', casas);
    // A value that rounds to zero carries no sign.
    bool só_zeros = true;
    for (const QChar c : número)
        if (c.isDigit() && c != '0') só_zeros = false;
    if (só_zeros && número.startsWith('-')) número.remove(0, 1);

    if (casas == 0 && só_zeros) {
        // "#,#" leaves nothing of a zero.
        const int blanks = Tamanho - 1 > 0 ? Tamanho - 1 : 0;
        return QString(blanks, ' ') + "0";
    }
    if (número.size() >= Tamanho) return número;
    return QString(Tamanho - número.size(), ' ') + número;
}
