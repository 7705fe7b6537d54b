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

QString Sistema_de_Arquivos_Em(const QString& caminho, const QString& montagens) {
    const QString alvo = QDir::cleanPath(caminho);
    QString melhor_ponto, melhor_tipo;
    for (const QString& linha : montagens.split('\n', Qt::SkipEmptyParts)) {
        // "36 35 98:0 /raiz /ponto opções [campos opcionais...] - tipo origem superopções"
        const QStringList partes = linha.split(' ');
        const int traço = partes.indexOf("-");
        if (traço < 6 || traço + 1 >= partes.size()) continue;
        const QString ponto = Sem_Escapes(partes[4]);
        // Later lines were mounted later: on the same point the last one hides the ones before it.
        if (Contém(ponto, alvo) && ponto.size() >= melhor_ponto.size()) {
            melhor_ponto = ponto;
            melhor_tipo = partes[traço + 1];
        }
    }
    return melhor_tipo;
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
    QFile arquivo("/proc/self/mountinfo");
    if (!arquivo.open(QIODevice::ReadOnly)) return QString();
    // A link (a "Dados" pointing at a share) is judged where it leads; a folder still to be made, by the
    // folder it will be made in.
    QString existente = QDir::cleanPath(QFileInfo(pasta).absoluteFilePath());
    QString resto;
    while (!QFileInfo::exists(existente) && existente != "/") {
        resto = "/" + QFileInfo(existente).fileName() + resto;
        existente = QFileInfo(existente).absolutePath();
    }
    const QString real = QFileInfo(existente).canonicalFilePath();
    return Sistema_de_Arquivos_Em((real.isEmpty() ? existente : real) + resto,
                                  QString::fromUtf8(arquivo.readAll()));
}
