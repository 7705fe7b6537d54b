#include "revelations/Revelações.h"

#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Formulário.h"
#include "platform/Plataforma.h"
#include "reports/Texto_Relatório.h"
#include "store/Funções_Banco.h"

namespace {
// F10 in every window opens a citation.
const bool Instalado = [] {
    Formulário::Ao_Teclar_F10 = [] { Revelações_de_Deus(true); };
    return true;
}();

QString Linhas_Justificadas(QString acumulado) {
    Edita_Parágrafo(acumulado, 110, false, false);
    QString saída;
    for (int i = 1; i <= Quantidade_Linhas_Parágrafo; ++i) saída += Linhas_Parágrafo[i] + "\r\n";
    return saída;
}
}  // namespace

bool Palavra_Chave_Confere(const QString& Palavra_Chave, const QString& Procurado) {
    const int p = Palavra_Chave.indexOf(Procurado, 0, Qt::CaseInsensitive);
    if (p < 0 || Procurado.isEmpty()) return false;
    const int depois = p + static_cast<int>(Procurado.size());
    const bool fim = depois >= Palavra_Chave.size() || Palavra_Chave[depois] == ',';
    if (p == 0) return fim;
    return Palavra_Chave[p - 1] == ' ' && fim;
}

namespace {
// The file's bytes, read with the system's own calls: a search opens thousands of citations, and QFile
// asks the system for each one's details two or three times over.
bool Lê_Bytes_Citação(const QString& arquivo, QByteArray& bytes) {
    const int descritor = ::open(QFile::encodeName(arquivo).constData(), O_RDONLY | O_CLOEXEC);
    if (descritor < 0) return false;
    bytes.clear();
    char bloco[8192];
    ssize_t lidos;
    while ((lidos = ::read(descritor, bloco, sizeof bloco)) != 0) {
        if (lidos > 0)
            bytes.append(bloco, lidos);
        else if (errno != EINTR)
            break;  // a folder, or a disk that fails
    }
    ::close(descritor);
    return lidos == 0;
}

// The citation's text in the program's code page; false when the file cannot be read.
bool Lê_Texto_Citação(const QString& arquivo, QString& texto) {
    QByteArray bytes;
    if (!Lê_Bytes_Citação(arquivo, bytes)) return false;
    texto = De_Cp1252(bytes);
    return true;
}
}  // namespace

bool Lê_Linhas_Citação(const QString& arquivo, QStringList& linhas) {
    linhas.clear();
    QString texto;
    if (!Lê_Texto_Citação(arquivo, texto)) return false;
    texto.replace("\r\n", "\n").replace('\r', '\n');
    linhas = texto.split('\n');
    // The line end of the last line opens no further line.
    if (!linhas.isEmpty() && linhas.last().isEmpty()) linhas.removeLast();
    return true;
}

QString Início_Citação(const QString& arquivo) {
    QStringList linhas;
    Lê_Linhas_Citação(arquivo, linhas);
    QString início;
    for (const QString& linha : linhas) {
        if (início.size() >= 110) break;
        início += linha + " ";
    }
    return início;
}

namespace {
// Each byte of the code page as a search without regard to case sees it: the first byte whose character
// folds to the same one. Searching folded bytes finds exactly what searching the decoded text finds.
const std::array<char, 256>& Bytes_Dobrados() {
    static const std::array<char, 256> tabela = [] {
        std::array<char16_t, 256> dobrado{};
        std::array<char, 256> t{};
        for (int b = 0; b < 256; ++b) {
            const QString c = De_Cp1252(QByteArray(1, static_cast<char>(b)));
            dobrado[b] = c.size() == 1 ? c[0].toCaseFolded().unicode() : char16_t(0xFFFF);
            t[b] = static_cast<char>(b);
            for (int a = 0; a < b; ++a)
                if (dobrado[a] == dobrado[b]) {
                    t[b] = static_cast<char>(a);
                    break;
                }
        }
        return t;
    }();
    return tabela;
}

// The lines joined by blanks, as the search reads them: each line end (CR LF, CR or LF) becomes one blank,
// in one pass, but the last one, which opens no further line. Every character goes through `Troca`.
template <typename Texto, typename Função>
void Junta_Linhas(Texto& texto, Função Troca) {
    if (texto.endsWith("\r\n"))
        texto.chop(2);
    else if (texto.endsWith('\n') || texto.endsWith('\r'))
        texto.chop(1);
    auto* escrito = texto.data();
    const auto* lido = escrito;
    const auto* const fim = lido + texto.size();
    qsizetype tamanho = 0;
    for (; lido < fim; ++lido) {
        const auto c = *lido;  // read before the write, which may land on it
        if (c == '\r' && lido + 1 < fim && lido[1] == '\n') ++lido;
        escrito[tamanho++] = c == '\r' || c == '\n' ? decltype(c)(' ') : Troca(c);
    }
    texto.truncate(tamanho);
}
}  // namespace

bool Citação_Contém(const QString& arquivo, const QString& Procurado) {
    // The search runs over the file's own bytes when every character sought has one in the code page: a
    // search sees thousands of files, and decoding each would be most of its time.
    QByteArray procurado = Para_Cp1252(Procurado);
    if (De_Cp1252(procurado) != Procurado) {
        QString texto;
        if (!Lê_Texto_Citação(arquivo, texto)) return false;
        Junta_Linhas(texto, [](QChar c) { return c; });
        return texto.contains(Procurado, Qt::CaseInsensitive);
    }
    QByteArray texto;
    if (!Lê_Bytes_Citação(arquivo, texto)) return false;
    const std::array<char, 256>& dobrado = Bytes_Dobrados();
    const auto Dobra = [&dobrado](char c) { return dobrado[static_cast<unsigned char>(c)]; };
    for (char& c : procurado) c = Dobra(c);
    Junta_Linhas(texto, Dobra);
    return std::string_view(texto.constData(), texto.size())
               .find(procurado.constData(), 0, procurado.size()) != std::string_view::npos;
}

bool Painel_Revelações_Vazio() {
    return Painel_Revelações == nullptr || Painel_Revelações->toPlainText().isEmpty();
}

QString Caminho_Citação(int número) {
    return Caminho_Programa() + QString("/Ajuda/cit_%1.txt").arg(número, 4, 10, QChar('0'));
}

QString Texto_Painel_Citação(const QString& arquivo) {
    QFile f(arquivo);
    if (!f.open(QIODevice::ReadOnly)) {
        Falha(53, "O arquivo " + arquivo + " não existe.");
        return QString();
    }
    QString painel, acumulado;
    const QStringList linhas = De_Cp1252(f.readAll()).split("\r\n");
    const int total = linhas.size() - (linhas.last().isEmpty() ? 1 : 0);
    for (int i = 0; i < total; ++i) {
        if (!linhas[i].isEmpty()) {
            acumulado += linhas[i] + " ";
        } else {
            painel += Linhas_Justificadas(acumulado) + "\r\n";
            acumulado.clear();
        }
        Plataforma_Atual().Processa_Eventos();
    }
    painel += Linhas_Justificadas(acumulado);
    return painel;
}

void Revelações_de_Deus(bool Abrir) {
    Rotina r(Fonte_Funções_Públicas, "Revelações_de_Deus");
    Plataforma& plataforma = Plataforma_Atual();
    plataforma.Cursor_Ocupado("Relógio.Ico");
    const int n = QDir(Caminho_Programa() + "/Ajuda").entryList({"Cit_*.Txt"}, QDir::Files).size();
    Semeia_Gerador();
    if (Número_Revelação == 0) Número_Revelação = Sorteia(n) + 1;
    const QString arquivo = Caminho_Citação(static_cast<int>(Número_Revelação));
    if (Abrir) {
        Número_Revelação = 0;
        QFile::setPermissions(arquivo, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        plataforma.Abre_Com_Aplicativo(arquivo);
        plataforma.Cursor_Normal();
        return;
    }
    // Citation 1 is the introduction: never shown in the panel.
    if (Número_Revelação == 1) {
        plataforma.Cursor_Normal();
        return;
    }
    const QString texto = Texto_Painel_Citação(arquivo);
    if (Painel_Revelações != nullptr) Painel_Revelações->setPlainText(QString(texto).replace("\r\n", "\n"));

    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("tblConfigur");
    Tabela_Secundária.MoveFirst();
    if (Tabela_Secundária.Fields("Versão_Revelações_de_Deus").Value().toInt() != n) {
        Inicia_Transação();
        Trava(Tabela_Secundária, Conexão_Secundária, false);
        if (Travou) {
            Tabela_Secundária.Fields("Versão_Revelações_de_Deus").Set_Value(n);
            Grava(Tabela_Secundária, false);
            Finaliza_Transação();
        }
    }
    plataforma.Cursor_Normal();
}
