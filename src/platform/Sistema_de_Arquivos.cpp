#include "platform/Sistema_de_Arquivos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>

namespace {
// The kernel writes a blank, a tab, a line end and a backslash in a mount point as \040, \011, \012 and \134;
// every other byte, accented letters included, stands as it is in UTF-8.
QString Sem_Escapes(const QString& campo) {
    const QByteArray bytes = campo.toUtf8();
    QByteArray limpo;
    limpo.reserve(bytes.size());
    for (int i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\\' && i + 3 < bytes.size() && bytes[i + 1] >= '0' && bytes[i + 1] <= '3' &&
            bytes[i + 2] >= '0' && bytes[i + 2] <= '7' && bytes[i + 3] >= '0' && bytes[i + 3] <= '7') {
            limpo.append(static_cast<char>((bytes[i + 1] - '0') * 64 + (bytes[i + 2] - '0') * 8 +
                                           (bytes[i + 3] - '0')));
            i += 3;
        } else {
            limpo.append(bytes[i]);
        }
    }
    return QString::fromUtf8(limpo);
}

bool Contém(const QString& ponto, const QString& caminho) {
    return caminho == ponto || ponto == "/" || caminho.startsWith(ponto + "/");
}
}  // namespace

QList<Montagem> Montagens_Da_Tabela(const QString& montagens) {
    QList<Montagem> lista;
    for (const QString& linha : montagens.split('\n', Qt::SkipEmptyParts)) {
        // "36 35 98:0 /raiz /ponto opções [campos opcionais...] - tipo origem superopções"
        const QStringList partes = linha.split(' ');
        const int traço = partes.indexOf("-");
        if (traço < 6 || traço + 1 >= partes.size()) continue;
        lista.append({Sem_Escapes(partes[4]), partes[traço + 1],
                      traço + 2 < partes.size() ? Sem_Escapes(partes[traço + 2]) : QString()});
    }
    return lista;
}

Montagem Montagem_Do_Caminho(const QString& caminho, const QString& montagens) {
    const QString alvo = QDir::cleanPath(caminho);
    Montagem melhor;
    // Later lines were mounted later: on the same point the last one hides the ones before it.
    for (const Montagem& m : Montagens_Da_Tabela(montagens))
        if (Contém(m.Ponto, alvo) && m.Ponto.size() >= melhor.Ponto.size()) melhor = m;
    return melhor;
}

QString Tabela_De_Montagens() {
    QFile arquivo("/proc/self/mountinfo");
    return arquivo.open(QIODevice::ReadOnly) ? QString::fromUtf8(arquivo.readAll()) : QString();
}

QString Sistema_de_Arquivos_Em(const QString& caminho, const QString& montagens) {
    return Montagem_Do_Caminho(caminho, montagens).Tipo;
}

bool Sistema_de_Arquivos_de_Rede(const QString& tipo) {
    static const QSet<QString> de_rede = {"nfs",
                                          "nfs4",
                                          "cifs",
                                          "smb3",
                                          "smbfs",
                                          "ncpfs",
                                          "9p",
                                          "afs",
                                          "coda",
                                          "ceph",
                                          "fuse.ceph",
                                          "glusterfs",
                                          "fuse.glusterfs",
                                          "lustre",
                                          "beegfs",
                                          "orangefs",
                                          "gfs2",
                                          "ocfs2",
                                          "davfs",
                                          "fuse.davfs2",
                                          "sshfs",
                                          "fuse.sshfs",
                                          "fuse.rclone",
                                          "fuse.s3fs",
                                          "fuse.smbnetfs",
                                          "fuse.curlftpfs"};
    return de_rede.contains(tipo.trimmed().toLower());
}

QString Sistema_de_Arquivos_Da_Pasta(const QString& pasta) {
    const QString montagens = Tabela_De_Montagens();
    if (montagens.isEmpty()) return QString();
    // A link (a "Dados" pointing at a share) is judged where it leads; a folder still to be made, by the
    // folder it will be made in.
    QString existente = QDir::cleanPath(QFileInfo(pasta).absoluteFilePath());
    QString resto;
    while (!QFileInfo::exists(existente) && existente != "/") {
        resto = "/" + QFileInfo(existente).fileName() + resto;
        existente = QFileInfo(existente).absolutePath();
    }
    const QString real = QFileInfo(existente).canonicalFilePath();
    return Sistema_de_Arquivos_Em((real.isEmpty() ? existente : real) + resto, montagens);
}
