#pragma once
// Which file system holds a folder, read from the kernel's mount table (/proc/self/mountinfo).
#include <QString>

// The type of the file system that holds a path ("ext4", "nfs4", "fuse.sshfs") over a given text of
// /proc/self/mountinfo: the mount with the longest mount point that holds the path, the last one mounted when
// several sit on the same point. The path is taken as written (absolute, links already resolved); empty when
// no mount holds it.
QString Sistema_de_Arquivos_Em(const QString& caminho, const QString& montagens);

// The file systems whose files other computers reach over the network: their locks cannot be trusted by a
// database engine that keeps its data in files.
bool Sistema_de_Arquivos_de_Rede(const QString& tipo);

// The same look-up for this process: links resolved, a folder not made yet judged by the nearest folder above
// it that exists. Empty when the mount table cannot be read.
QString Sistema_de_Arquivos_Da_Pasta(const QString& pasta);
