#include "store/Dbase.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <shapefil.h>
#include <sqlite3.h>
#include <vector>

#include "common/Cp1252.h"
#include "store/Catálogo.h"
#include "store/Ligação.h"
#include "store/Tradutor_SQL.h"

namespace {
// The upper half of code page 850, the DOS page of the Dbase tables of Brazilian programs.
constexpr char16_t Cp850_Alta[128] = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF, 0x00EE,
    0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9, 0x00FF, 0x00D6,
    0x00DC, 0x00F8, 0x00A3, 0x00D8, 0x00D7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA,
    0x00BA, 0x00BF, 0x00AE, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB, 0x2591, 0x2592, 0x2593, 0x2502,
    0x2524, 0x00C1, 0x00C2, 0x00C0, 0x00A9, 0x2563, 0x2551, 0x2557, 0x255D, 0x00A2, 0x00A5, 0x2510, 0x2514,
    0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x00E3, 0x00C3, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
    0x256C, 0x00A4, 0x00F0, 0x00D0, 0x00CA, 0x00CB, 0x00C8, 0x0131, 0x00CD, 0x00CE, 0x00CF, 0x2518, 0x250C,
    0x2588, 0x2584, 0x00A6, 0x00CC, 0x2580, 0x00D3, 0x00DF, 0x00D4, 0x00D2, 0x00F5, 0x00D5, 0x00B5, 0x00FE,
    0x00DE, 0x00DA, 0x00DB, 0x00D9, 0x00FD, 0x00DD, 0x00AF, 0x00B4, 0x00AD, 0x00B1, 0x2017, 0x00BE, 0x00B6,
    0x00A7, 0x00F7, 0x00B8, 0x00B0, 0x00A8, 0x00B7, 0x00B9, 0x00B3, 0x00B2, 0x25A0, 0x00A0};

QString De_Cp850(const QByteArray& bytes) {
    QString texto;
    texto.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        texto += b < 0x80 ? QChar(b) : QChar(Cp850_Alta[b - 0x80]);
    }
    return texto;
}

bool Página_Windows(const QString& página_código) {
    const QString p = página_código.trimmed().toUpper();
    // Language driver ids 0x03 and 0x57 to 0x59 are the Windows ANSI page; a .cpg file names it.
    return p == "LDID/3" || p == "LDID/87" || p == "LDID/88" || p == "LDID/89" || p.contains("1252") ||
           p == "ANSI";
}

// Files of the sessions made from Dbase folders, removed once the session is gone.
struct Arquivo_Provisório {
    std::weak_ptr<Sessão> Dona;
    QString Caminho;
};
std::vector<Arquivo_Provisório> Provisórios;

QString Pasta_Provisória() {
    static QTemporaryDir pasta(QDir::tempPath() + "/quizora-dbase-XXXXXX");
    return pasta.path();
}

void Remove_Provisórios_Sem_Dona() {
    std::erase_if(Provisórios, [](const Arquivo_Provisório& a) {
        if (!a.Dona.expired()) return false;
        Exclui_Arquivo_Banco(a.Caminho);
        return true;
    });
}

void Associa(sqlite3_stmt* comando, int posição, const QVariant& valor) {
    if (!valor.isValid() || valor.isNull()) {
        sqlite3_bind_null(comando, posição);
        return;
    }
    switch (valor.typeId()) {
        case QMetaType::Int:
        case QMetaType::Bool:
            sqlite3_bind_int64(comando, posição, valor.toLongLong());
            break;
        case QMetaType::Double:
            sqlite3_bind_double(comando, posição, valor.toDouble());
            break;
        case QMetaType::QDate: {
            const QByteArray texto = Data_Para_Banco(QDateTime(valor.toDate(), QTime(0, 0))).toUtf8();
            sqlite3_bind_text(comando, posição, texto.constData(), static_cast<int>(texto.size()),
                              SQLITE_TRANSIENT);
            break;
        }
        default: {
            const QByteArray texto = valor.toString().toUtf8();
            sqlite3_bind_text(comando, posição, texto.constData(), static_cast<int>(texto.size()),
                              SQLITE_TRANSIENT);
        }
    }
}

bool Grava_Tabela(sqlite3* banco, const Tabela_Dbase& tabela, QString& motivo) {
    QString colunas;
    QString marcas;
    for (const Campo_Info& c : tabela.Campos) {
        colunas += (colunas.isEmpty() ? "" : ", ") + Citação(c.Nome) + " " + Catálogo::Tipo_Declarado(c);
        marcas += marcas.isEmpty() ? "?" : ", ?";
    }
    const QByteArray criação = ("CREATE TABLE " + Citação(tabela.Nome) + " (" + colunas + ")").toUtf8();
    if (sqlite3_exec(banco, criação.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        motivo = QString::fromUtf8(sqlite3_errmsg(banco));
        return false;
    }
    const QByteArray inclusão = ("INSERT INTO " + Citação(tabela.Nome) + " VALUES (" + marcas + ")").toUtf8();
    sqlite3_stmt* comando = nullptr;
    if (sqlite3_prepare_v2(banco, inclusão.constData(), -1, &comando, nullptr) != SQLITE_OK) {
        motivo = QString::fromUtf8(sqlite3_errmsg(banco));
        return false;
    }
    bool ok = true;
    for (const auto& linha : tabela.Linhas) {
        sqlite3_reset(comando);
        for (int i = 0; i < linha.size(); ++i) Associa(comando, i + 1, linha[i]);
        if (sqlite3_step(comando) != SQLITE_DONE) {
            motivo = QString::fromUtf8(sqlite3_errmsg(banco));
            ok = false;
            break;
        }
    }
    sqlite3_finalize(comando);
    return ok;
}
}  // namespace

QString Texto_Dbase(const QByteArray& bytes, const QString& página_código) {
    if (página_código.trimmed().compare("UTF-8", Qt::CaseInsensitive) == 0) return QString::fromUtf8(bytes);
    if (Página_Windows(página_código)) return De_Cp1252(bytes);
    return De_Cp850(bytes);
}

QStringList Arquivos_Dbase(const QString& pasta) {
    QStringList arquivos;
    for (const QFileInfo& a : QDir(pasta).entryInfoList(QDir::Files, QDir::Name))
        if (a.suffix().compare("dbf", Qt::CaseInsensitive) == 0) arquivos << a.absoluteFilePath();
    return arquivos;
}

bool Lê_Tabela_Dbase(const QString& arquivo, Tabela_Dbase& tabela, QString& motivo) {
    tabela = Tabela_Dbase{QFileInfo(arquivo).completeBaseName(), {}, {}};
    const QByteArray nome = QFile::encodeName(arquivo);
    DBFHandle dbf = DBFOpen(nome.constData(), "rb");
    if (dbf == nullptr) {
        motivo = "O arquivo " + QFileInfo(arquivo).fileName() + " não é uma tabela Dbase ou está danificado";
        return false;
    }
    const int campos = DBFGetFieldCount(dbf);
    const int linhas = DBFGetRecordCount(dbf);
    // A table cut short says more rows than the file holds: shapelib would read beyond its end.
    qint64 largura_linha = 1;
    for (int i = 0; i < campos; ++i) {
        char nome_campo[XBASE_FLDNAME_LEN_READ + 1] = {};
        int largura = 0;
        int decimais = 0;
        DBFGetFieldInfo(dbf, i, nome_campo, &largura, &decimais);
        const char nativo = DBFGetNativeFieldType(dbf, i);
        largura_linha += largura;
        Campo_Info campo{QString::fromLatin1(nome_campo).trimmed(), Tipo_Texto, largura, false, true};
        switch (nativo) {
            case 'N':
            case 'F':
                campo.Tipo = decimais == 0 && largura <= 9 ? Tipo_Long : Tipo_Double;
                break;
            case 'D':
                campo.Tipo = Tipo_Data;
                break;
            case 'L':
                campo.Tipo = Tipo_Boolean;
                break;
            case 'M':
                campo.Tipo = Tipo_Memo;
                break;
            default:
                campo.Largura = std::max(1, largura);
        }
        tabela.Campos << campo;
    }
    const qint64 cabeçalho = 32 + 32LL * campos + 1;
    if (campos == 0 || QFileInfo(arquivo).size() < cabeçalho + largura_linha * linhas) {
        DBFClose(dbf);
        motivo = "A tabela " + QFileInfo(arquivo).fileName() + " está danificada";
        return false;
    }
    const QString página = QString::fromLatin1(DBFGetCodePage(dbf) ? DBFGetCodePage(dbf) : "");
    tabela.Linhas.reserve(linhas);
    for (int r = 0; r < linhas; ++r) {
        if (DBFIsRecordDeleted(dbf, r)) continue;
        QVector<QVariant> linha(campos);
        for (int i = 0; i < campos; ++i) {
            const char* bruto = DBFReadStringAttribute(dbf, r, i);
            if (bruto == nullptr) {
                DBFClose(dbf);
                motivo = "A tabela " + QFileInfo(arquivo).fileName() + " está danificada";
                return false;
            }
            const QByteArray valor = QByteArray(bruto).trimmed();
            switch (tabela.Campos[i].Tipo) {
                case Tipo_Long:
                case Tipo_Double: {
                    bool ok = false;
                    const double número = valor.toDouble(&ok);
                    if (ok)
                        linha[i] = tabela.Campos[i].Tipo == Tipo_Long ? QVariant(static_cast<int>(número))
                                                                      : QVariant(número);
                    break;
                }
                case Tipo_Data: {
                    const QDate dia = QDate::fromString(QString::fromLatin1(valor), "yyyyMMdd");
                    if (dia.isValid()) linha[i] = dia;
                    break;
                }
                case Tipo_Boolean:
                    if (!valor.isEmpty() && valor != "?") linha[i] = QByteArray("TtYy").contains(valor[0]);
                    break;
                case Tipo_Memo:
                    break;  // the .dbt file of a memo field is not read
                default:
                    linha[i] = Texto_Dbase(valor, página);
            }
        }
        tabela.Linhas << linha;
    }
    DBFClose(dbf);
    return true;
}

std::shared_ptr<Sessão> Abre_Sessão_Dbase(const QString& pasta, Falha_Banco& falha) {
    Remove_Provisórios_Sem_Dona();
    const QStringList arquivos = Arquivos_Dbase(pasta);
    if (arquivos.isEmpty()) return nullptr;
    static int sequência = 0;
    const QString caminho = Pasta_Provisória() + QString("/dbase-%1.db").arg(++sequência);
    if (!Sessão::Cria_Arquivo(caminho, falha)) return nullptr;
    auto sessão = Sessão::Abre(caminho, falha);
    if (!sessão) return nullptr;
    // Every connection reads the folder as it is now: the session is not shared by path.
    sessão->Retira_do_Registro();
    Provisórios.push_back({sessão, caminho});
    sqlite3_exec(sessão->Banco, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    sqlite3_exec(sessão->Banco, "BEGIN", nullptr, nullptr, nullptr);
    for (const QString& arquivo : arquivos) {
        Tabela_Dbase tabela;
        QString motivo;
        if (!Lê_Tabela_Dbase(arquivo, tabela, motivo) || !Grava_Tabela(sessão->Banco, tabela, motivo)) {
            sqlite3_exec(sessão->Banco, "ROLLBACK", nullptr, nullptr, nullptr);
            falha = {-2147467259, motivo + "."};
            return nullptr;
        }
    }
    sqlite3_exec(sessão->Banco, "COMMIT", nullptr, nullptr, nullptr);
    return sessão;
}
