#include "reports/Relatório_Rtf.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QVariant>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "reports/Texto_Relatório.h"
#include "store/Funções_Banco.h"

namespace {
const QString Ícone_Impressão = "Impressão.Ico";
const QString Texto_Aguarde_Visualização =
    "Relatório GERADO!!!   Aguarde enquanto a VISUALIZAÇÃO do mesmo é carregada...";
const QString Caracteres_Proibidos = "\\/:*?\"<>|";

// File number 1 of the system: one report open at a time.
QFile Arquivo_Relatório;

// The lines written and not yet handed to the file: it takes them in large pieces, not a line at a time.
// Each line is built at its end, where it waits.
QByteArray Em_Espera;
constexpr qsizetype Tamanho_Espera = 64 * 1024;

void Descarrega() {
    if (Em_Espera.isEmpty()) return;
    const bool gravou = Arquivo_Relatório.write(Em_Espera) == Em_Espera.size();
    Em_Espera.resize(0);
    if (!gravou) Falha(57, "Não foi possível gravar " + Arquivo_Relatório.fileName());
}

// Bytes added at the end, grown in place: Qt's append goes the way of an insert anywhere, a row's worth of
// work for the few bytes of a line's end.
void Junta(QByteArrayView bytes) {
    const qsizetype antes = Em_Espera.size();
    Em_Espera.resize(antes + bytes.size());
    std::memcpy(Em_Espera.data() + antes, bytes.data(), bytes.size());
}

// Ends with CR LF the line built in Em_Espera from `início`; with no report open it is dropped.
void Termina_Linha(qsizetype início) {
    if (!Arquivo_Relatório.isOpen()) {
        Em_Espera.truncate(início);
        Falha(52, "O nome de arquivo ou seu número é inválido");
        return;
    }
    Junta("\r\n");
    if (Em_Espera.size() >= Tamanho_Espera) Descarrega();
}

void Escreve_Linha(const QString& linha) {
    const qsizetype início = Em_Espera.size();
    Acrescenta_Cp1252(Em_Espera, linha);
    Termina_Linha(início);
}

// A line of ASCII control words, as it is: the highlight's, written at every row.
void Escreve_Linha_Ascii(QByteArrayView linha) {
    const qsizetype início = Em_Espera.size();
    Junta(linha);
    Termina_Linha(início);
}

// The UTF-16 units of the first characters of UTF-8 bytes, until `máximo` units are made (the last
// character may make one more): how many were made, or -1 at bytes that are not UTF-8.
qsizetype Unidades_Utf8(QByteArrayView utf8, char16_t* saída, qsizetype máximo) {
    // A byte order mark that opens the text is no character of it, as a string made of it shows.
    if (utf8.startsWith("\xEF\xBB\xBF")) utf8 = utf8.sliced(3);
    const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto* const fim = p + utf8.size();
    qsizetype n = 0;
    while (p < fim && n < máximo) {
        // Plain letters eight at a time, most of any Portuguese text.
        while (fim - p >= 8 && máximo - n >= 8) {
            std::uint64_t oito;
            std::memcpy(&oito, p, 8);
            if ((oito & 0x8080808080808080ull) != 0) break;
            for (int i = 0; i < 8; ++i) saída[n + i] = char16_t(p[i]);
            n += 8;
            p += 8;
        }
        if (p == fim || n >= máximo) break;
        const unsigned primeiro = *p;
        if (primeiro < 0x80) {
            saída[n++] = char16_t(primeiro);
            ++p;
            continue;
        }
        int seguintes;
        char32_t u;
        if (primeiro >= 0xC2 && primeiro <= 0xDF) {
            seguintes = 1;
            u = primeiro & 0x1F;
        } else if (primeiro >= 0xE0 && primeiro <= 0xEF) {
            seguintes = 2;
            u = primeiro & 0x0F;
        } else if (primeiro >= 0xF0 && primeiro <= 0xF4) {
            seguintes = 3;
            u = primeiro & 0x07;
        } else {
            return -1;
        }
        if (fim - p <= seguintes) return -1;
        for (int i = 1; i <= seguintes; ++i) {
            if ((p[i] & 0xC0) != 0x80) return -1;
            u = (u << 6) | (p[i] & 0x3F);
        }
        // Longer forms than needed, halves of pairs and what lies past the last plane are not UTF-8.
        if ((seguintes == 2 && (u < 0x800 || (u >= 0xD800 && u <= 0xDFFF))) ||
            (seguintes == 3 && (u < 0x10000 || u > 0x10FFFF)))
            return -1;
        p += seguintes + 1;
        if (u >= 0x10000) {
            saída[n++] = QChar::highSurrogate(u);
            saída[n++] = QChar::lowSurrogate(u);
        } else {
            saída[n++] = char16_t(u);
        }
    }
    return n;
}

int Tamanho_Fonte_Inteiro() {
    return static_cast<int>(std::lround(Tamanho_Fonte));
}

// Half a length taken from a column, rounded down as the columns of all reports are.
int Menos_Metade(int coluna, qsizetype comprimento) {
    return static_cast<int>(std::floor(coluna - static_cast<double>(comprimento) / 2.0));
}

QString Pasta_Relatórios() {
    return Caminho_Programa() + "/Relatórios";
}

QString Caminho_Do_Nome(const QString& nome) {
    return Pasta_Relatórios() + "/" + nome + ".Rtf";
}

// Digits and capitals drawn from codes below 90, so never a "Z".
QString Oito_Caracteres() {
    QString nome;
    while (nome.size() < 8) {
        const int código = Sorteia(90);
        if ((código >= 48 && código <= 57) || (código >= 65 && código <= 90)) nome += QChar(código);
    }
    return nome;
}

// A random name that no file holds yet: seeded once, so that a taken name is followed by a new draw.
QString Nome_Aleatório_Livre() {
    Semeia_Gerador();
    QString nome = Oito_Caracteres();
    while (QFileInfo::exists(Caminho_Do_Nome(nome))) nome = Oito_Caracteres();
    return nome;
}

// The characters no file name may carry on either system the program runs on, and names too long for
// the file system.
bool Nome_Aceito(const QString& nome) {
    for (const QChar c : nome)
        if (c.unicode() < 32 || Caracteres_Proibidos.contains(c)) return false;
    return (nome + ".Rtf").toUtf8().size() <= 255;
}

void Recusa_Nome() {
    Plataforma& plataforma = Plataforma_Atual();
    plataforma.Bipe();
    plataforma.Caixa_Mensagem(
        "Nome de arquivo inválido!!!\r\rO nome do relatório não pode conter os "
        "caracteres  \\ / : * ? \" < > |  nem ser longo demais para um nome de arquivo",
        "Atenção!!!", Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
}

// A read-only report is kept as the user protected it; so is one the system refuses to remove (still
// open in a viewer, a folder under that name, a folder that cannot be written).
bool Exclui_Relatório(const QString& caminho) {
    if (QFileInfo(caminho).isFile() && !(QFile::permissions(caminho) & QFileDevice::WriteOwner)) return false;
    return QFile::remove(caminho);
}

QString Razão_Social_Configurada() {
    if (!Conexão.Aberta()) return QString();
    Registros configuração;
    configuração.Open("tblConfigur", Conexão, Opção_Abertura::Tabela_Direta);
    QString razão;
    if (configuração.Aberto() && !configuração.Eof())
        razão = configuração.Fields("Razão_Social").Value().toString().trimmed();
    configuração.Reinicia();
    return razão;
}

// Organisation, print date and page label, widened in turn by one blank until they hold 130 together.
QString Cabeçalho_Página() {
    const QDateTime agora = Plataforma_Atual().Agora();
    QString esquerda = Razão_Social_Configurada();
    QString meio =
        "Impresso em " + agora.toString("dd/MM/yyyy") + ", às " + agora.toString("HH:mm:ss") + " hs";
    QString direita = "Página: ";
    int vez = 0;
    while (esquerda.size() + meio.size() + direita.size() < 130) {
        if (vez == 0) esquerda += ' ';
        if (vez == 1) meio += ' ';
        if (vez == 2) direita.prepend(' ');
        vez = (vez + 1) % 3;
    }
    return esquerda + meio + direita;
}

void Escreve_Início(const QString& cabeçalho) {
    const QString fs = QString::number(Tamanho_Fonte_Inteiro());
    Escreve_Linha(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1046{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}}");
    const QString cores = Linha_Tabela_Cores(Cor_Destaque);
    if (!cores.isEmpty()) Escreve_Linha(cores);
    if (Título_Relatório.isEmpty()) {
        Escreve_Linha("\\viewkind4\\uc1\\pard\\f0\\fs" + fs);
    } else {
        Escreve_Linha("\\viewkind4\\uc1\\pard\\f0\\fs" + fs + "\\i0\\b0 {\\info}{\\header\\fs" + fs + "{" +
                      cabeçalho + " }{\\chpgn}\\par");
        Escreve_Linha("\\par");
        const int recuo = Menos_Metade(Modo_Retrato ? 29 : 37, Título_Relatório.size());
        Escreve_Linha("\\fs32\\b " + QString(qMax(recuo, 0), ' ') + Título_Relatório + "\\b0\\par");
        Escreve_Linha("\\fs" + fs + " " + QString(Largura_Relatório, '_') + "\\par");
        Escreve_Linha("\\par}");
    }
    Escreve_Linha(Modo_Retrato
                      ? "\\paperh17010\\paperw12242\\margl437\\margr437\\margt102\\margb663"
                      : "\\landscape\\paperh12242\\paperw17010\\margl232\\margr731\\margt936\\margb731");
}
}  // namespace

QString Linha_Tabela_Cores(int Cor) {
    static const char* const Cores[] = {"",
                                        "\\red0\\green0\\blue255",
                                        "\\red255\\green0\\blue0",
                                        "\\red0\\green128\\blue0",
                                        "\\red128\\green128\\blue0",
                                        "\\red255\\green0\\blue255",
                                        "\\red0\\green128\\blue128",
                                        "\\red128\\green128\\blue128",
                                        "\\red0\\green255\\blue255",
                                        "\\red128\\green0\\blue128",
                                        "\\red255\\green128\\blue255"};
    if (Cor < 1 || Cor > 10) return QString();
    return QString("{\\colortbl ;") + Cores[Cor] + ";}";
}

bool Abre_Arquivo_Rtf(const QString& Nome_Digitado, const std::function<bool()>& Confirma_Exclusão) {
    Rotina r(Fonte_Funções_Públicas, "Abre_Arquivo_Rtf");
    // Blanks around a file name only hide it; a name of blanks alone counts as none.
    QString nome = Nome_Digitado.trimmed();
    if (!Nome_Aceito(nome)) {
        Recusa_Nome();
        return false;
    }
    const QString cabeçalho = Cabeçalho_Página();
    if (nome.isEmpty()) nome = Nome_Aleatório_Livre();

    QString caminho = Caminho_Do_Nome(nome);
    if (QFileInfo::exists(caminho)) {
        Exibe_Mensagem(15);
        if (!Confirma_Exclusão || !Confirma_Exclusão()) return false;
        // The old report stays where it cannot be removed (error 70): the new one takes another name.
        if (!Exclui_Relatório(caminho)) caminho = Caminho_Do_Nome(Nome_Aleatório_Livre());
    }

    // The folder comes with the installation, but a lost one is no reason to refuse the report.
    QDir().mkpath(Pasta_Relatórios());
    if (Arquivo_Relatório.isOpen()) {
        Descarrega();
        Arquivo_Relatório.close();
    }
    Em_Espera.resize(0);
    Arquivo_Relatório.setFileName(caminho);
    if (!Arquivo_Relatório.open(QIODevice::WriteOnly | QIODevice::Append)) {
        Falha(75, "Não foi possível criar o relatório " + caminho);
        return false;
    }
    Caminho_Relatório = caminho;
    // Set only now: a refused name must not leave the landscape size to a portrait retry.
    if (!Modo_Retrato)
        Tamanho_Fonte = 18;
    else if (Tamanho_Fonte == 0)
        Tamanho_Fonte = 14;
    Saída_Imprime = [](const QString& Texto, int Coluna, bool Quebra_Página) {
        Imprime(Texto, Coluna, Quebra_Página);
    };
    Saída_Direta = [](const QString& Linha) { Escreve_Linha(Linha); };

    Escreve_Início(cabeçalho);
    Linha_Relatório = QString(Tamanho_Linha_Relatório, ' ');
    Impressão_Confirmada = true;
    return true;
}

void Preenche_Linha_Relatório(int Coluna, int Tamanho, const QString& Texto) {
    const int início = Coluna - 1;
    if (início < 0 || início >= Linha_Relatório.size() || Tamanho <= 0) return;
    const qsizetype quantos = std::min<qsizetype>({Tamanho, Texto.size(), Linha_Relatório.size() - início});
    Linha_Relatório.replace(início, quantos, Texto.constData(), quantos);
}

void Preenche_Linha_Relatório_Utf8(int Coluna, int Tamanho, QByteArrayView Texto_Utf8) {
    const int início = Coluna - 1;
    if (início < 0 || início >= Linha_Relatório.size() || Tamanho <= 0) return;
    const qsizetype cabe = std::min<qsizetype>(Tamanho, Linha_Relatório.size() - início);
    // One unit past the room: the last character may take two. Left unset: only what is made is read.
    char16_t unidades[Tamanho_Linha_Relatório + 1];
    const qsizetype feitas = Unidades_Utf8(Texto_Utf8, unidades, cabe);
    // Bytes that are not UTF-8 are made characters as a string would make them.
    if (feitas < 0) return Preenche_Linha_Relatório(Coluna, Tamanho, QString::fromUtf8(Texto_Utf8));
    std::copy_n(unidades, std::min(cabe, feitas),
                reinterpret_cast<char16_t*>(Linha_Relatório.data()) + início);
}

void Imprime(const QString& Texto, int Coluna, bool Quebra_Página) {
    Rotina r(Fonte_Funções_Públicas, QStringLiteral("Imprime"));
    Ponteiro_Ocupado cursor(Ícone_Impressão);
    // Built as bytes where the lines wait: backslashes are doubled in the code page's text, which makes
    // none of its own.
    const qsizetype início = Em_Espera.size();
    if (Coluna > 1) Em_Espera.append(Coluna - 1, ' ');
    const qsizetype início_texto = Em_Espera.size();
    Acrescenta_Cp1252(Em_Espera, Texto);
    if (Em_Espera.indexOf('\\', início_texto) >= 0) {
        const QByteArray texto = Em_Espera.mid(início_texto).replace("\\", "\\\\");
        Em_Espera.truncate(início_texto);
        Em_Espera.append(texto);
    }
    Junta(Quebra_Página ? "\\par \\page" : "\\par");
    Termina_Linha(início);
    // Cleaned in place: the line keeps its room from row to row.
    static const QString Linha_Branca(Tamanho_Linha_Relatório, ' ');
    if (Linha_Relatório.size() == Tamanho_Linha_Relatório)
        std::memcpy(Linha_Relatório.data(), Linha_Branca.constData(),
                    sizeof(QChar) * Tamanho_Linha_Relatório);
    else
        Linha_Relatório = QString(Tamanho_Linha_Relatório, ' ');
}

void Centraliza_Relatório(const QString& Texto, bool Título) {
    Rotina r(Fonte_Funções_Públicas, "Centraliza_Relatório");
    const int meio = !Título ? 66 : (Modo_Retrato ? 30 : 38);
    const int coluna = Menos_Metade(meio, Texto.trimmed().size());
    if (Título) Configura_Impressora(true, true, false);
    Imprime(Texto, coluna, false);
    if (Título) Configura_Impressora(false, false, false);
}

void Configura_Impressora(bool Fonte_Grande, bool Negrito, bool Itálico) {
    Rotina r(Fonte_Funções_Públicas, "Configura_Impressora");
    const QString tamanho =
        Fonte_Grande ? QString("\\fs32") : "\\fs" + QString::number(Tamanho_Fonte_Inteiro());
    Escreve_Linha(tamanho + (Negrito ? "\\b" : "\\b0") + (Itálico ? "\\i" : "\\i0"));
}

void Destaca_Impressão(bool Encerra) {
    Rotina r(Fonte_Funções_Públicas, QStringLiteral("Destaca_Impressão"));
    if (Cor_Destaque == 0) return;
    Destaque_Ligado = !Destaque_Ligado;
    if (Encerra || !Destaque_Ligado) {
        Escreve_Linha_Ascii("\\cf0\\b0");
        if (Encerra) Destaque_Ligado = true;
    } else {
        Escreve_Linha_Ascii("\\cf1\\b1");
    }
}

void Fecha_Arquivo_Rtf(QObject* Janela) {
    Rotina r(Fonte_Funções_Públicas, "Fecha_Arquivo_Rtf");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Plataforma& plataforma = Plataforma_Atual();
    const QVariant título_janela = Janela != nullptr ? Janela->property("windowTitle") : QVariant();

    Escreve_Linha("}");
    Descarrega();
    Arquivo_Relatório.close();
    Saída_Imprime = nullptr;
    Saída_Direta = nullptr;

    if (Janela != nullptr) Janela->setProperty("windowTitle", Texto_Aguarde_Visualização);
    // The caption is painted before the viewer, which may take long to come up.
    plataforma.Processa_Eventos();
    plataforma.Abre_Com_Aplicativo(Caminho_Relatório);
    if (Janela != nullptr) Janela->setProperty("windowTitle", título_janela);

    Título_Relatório.clear();
    Tamanho_Fonte = 0;
    Modo_Retrato = true;
}

void Descarta_Arquivo_Rtf() {
    Rotina r(Fonte_Funções_Públicas, "Descarta_Arquivo_Rtf");
    Em_Espera.resize(0);
    if (Arquivo_Relatório.isOpen()) {
        Arquivo_Relatório.close();
        QFile::remove(Arquivo_Relatório.fileName());
    }
    Saída_Imprime = nullptr;
    Saída_Direta = nullptr;
    Linha_Relatório = QString(Tamanho_Linha_Relatório, ' ');
    Impressão_Confirmada = false;
    Título_Relatório.clear();
    Tamanho_Fonte = 0;
    Modo_Retrato = true;
}
