#pragma once
// The kernel's mount table (/proc/self/mountinfo): what is mounted where, and which file system holds a
// folder.
#include <QList>
#include <QString>

// One line of the table: the mount point, the file system type and what was mounted ("//servidor/dados").
struct Montagem {
    QString Ponto;
    QString Tipo;
    QString Fonte;
};

// The mounts of a text of /proc/self/mountinfo, in the order they were mounted, escapes read.
QList<Montagem> Montagens_Da_Tabela(const QString& montagens);
// The mount that holds a path (absolute, links already resolved): the one with the longest mount point, the
// last one mounted when several sit on the same point. Empty when no mount holds it.
Montagem Montagem_Do_Caminho(const QString& caminho, const QString& montagens);
// This process's table; empty when it cannot be read.
QString Tabela_De_Montagens();

// The type of the file system that holds a path ("ext4", "nfs4", "fuse.sshfs"), as Montagem_Do_Caminho finds
// it.
QString Sistema_de_Arquivos_Em(const QString& caminho, const QString& montagens);

// The file systems whose files other computers reach over the network: their locks cannot be trusted by a
// database engine that keeps its data in files.
bool Sistema_de_Arquivos_de_Rede(const QString& tipo);

// The same look-up for this process: links resolved, a folder not made yet judged by the nearest folder above
// it that exists. Empty when the mount table cannot be read.
QString Sistema_de_Arquivos_Da_Pasta(const QString& pasta);
