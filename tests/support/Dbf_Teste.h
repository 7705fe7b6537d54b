#pragma once
// Dbase tables and ARJ archives made for the tests with the same tools that made the real ones:
// shapelib writes the .dbf files and the arj program packs them.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <shapefil.h>
#include <vector>

struct Campo_Dbf {
    const char* Nome;
    DBFFieldType Tipo;
    int Largura;
    int Decimais = 0;
};

// Writes a table whose values are given as the bytes of each field (texts already in the table's code
// page, dates as "yyyymmdd"); a row whose first value is "*apagada*" is written and marked deleted.
// The code page is shapelib's "LDID/n" text: 87 for Windows 1252, 2 for DOS 850.
inline bool Escreve_Dbf(const QString& caminho, const char* página, const std::vector<Campo_Dbf>& campos,
                        const std::vector<std::vector<QByteArray>>& linhas) {
    QFile::remove(caminho);
    DBFHandle dbf = DBFCreateEx(QFile::encodeName(caminho).constData(), página);
    if (dbf == nullptr) return false;
    for (const Campo_Dbf& c : campos)
        if (DBFAddField(dbf, c.Nome, c.Tipo, c.Largura, c.Decimais) < 0) return false;
    for (int r = 0; r < static_cast<int>(linhas.size()); ++r) {
        const bool apagada = !linhas[r].empty() && linhas[r][0] == "*apagada*";
        for (int i = 0; i < static_cast<int>(campos.size()); ++i) {
            QByteArray valor = apagada ? QByteArray() : linhas[r].at(i);
            // Numbers stand at the right of their field, as Dbase writes them.
            valor = campos[i].Tipo == FTString ? valor.leftJustified(campos[i].Largura, ' ', true)
                                               : valor.rightJustified(campos[i].Largura, ' ', true);
            DBFWriteAttributeDirectly(dbf, r, i, valor.data());
        }
        if (apagada) DBFMarkRecordDeleted(dbf, r, 1);
    }
    DBFClose(dbf);
    return true;
}

// The old memo system's two tables: clients with their memo codes, and the pieces of each memo.
struct Memo_Dbf {
    QByteArray Cliente;
    QByteArray Código;
    QByteArray Data;  // yyyymmdd
};
struct Peça_Dbf {
    QByteArray Código;
    QByteArray Texto;
};
inline bool Escreve_Tabelas_Memorandos(const QString& pasta, const char* página,
                                       const std::vector<Memo_Dbf>& memos, const std::vector<Peça_Dbf>& peças,
                                       const QString& nome_norvane = "NORVANE.dbf",
                                       const QString& nome_memorand = "MEMORAND.dbf") {
    std::vector<std::vector<QByteArray>> linhas_norvane, linhas_memorand;
    for (const Memo_Dbf& m : memos) linhas_norvane.push_back({m.Cliente, m.Código, m.Data});
    for (const Peça_Dbf& p : peças) linhas_memorand.push_back({p.Código, p.Texto});
    return Escreve_Dbf(
               pasta + "/" + nome_norvane, página,
               {{"CLIEN_NORV", FTString, 40}, {"CD_ME_NORV", FTInteger, 6}, {"SO_DA_NORV", FTDate, 8}},
               linhas_norvane) &&
           Escreve_Dbf(pasta + "/" + nome_memorand, página,
                       {{"CD_ME_MEMO", FTInteger, 6}, {"MEMOR_MEMO", FTString, 60}}, linhas_memorand);
}

// Packs files with the arj program; true when it ran well.
inline bool Compacta_Arj(const QString& arquivo_arj, const QString& pasta, const QStringList& arquivos) {
    QFile::remove(arquivo_arj);
    QProcess arj;
    arj.setWorkingDirectory(pasta);
    arj.setStandardInputFile(QProcess::nullDevice());
    arj.start("arj", QStringList{"a", "-y", QDir(pasta).absoluteFilePath(arquivo_arj)} + arquivos);
    return arj.waitForFinished(60000) && arj.exitStatus() == QProcess::NormalExit && arj.exitCode() == 0;
}
