#pragma once
// The Dbase IV store: a folder of .dbf files read through shapelib. A connection opened on the folder
// reads its tables into a private database of its own, so that the slots walk, seek and count them as
// they do any other table. The store is read-only: nothing is ever written back to the .dbf files.
#include <QString>
#include <QVariant>
#include <QVector>
#include <memory>

#include "store/Sessão.h"

struct Tabela_Dbase {
    QString Nome;  // the file's name without ".dbf", as it stands on disk
    QVector<Campo_Info> Campos;
    QVector<QVector<QVariant>> Linhas;  // deleted rows left out
};

// Reads one .dbf file. False, with the reason in words a user understands, when it cannot be read.
bool Lê_Tabela_Dbase(const QString& arquivo, Tabela_Dbase& tabela, QString& motivo);

// The text of a character field in the code page the table declares: 1252 for a Windows table, 850
// (the DOS page) for one that declares a DOS page or none.
QString Texto_Dbase(const QByteArray& bytes, const QString& página_código);

// The .dbf files of a folder, found without regard to case.
QStringList Arquivos_Dbase(const QString& pasta);

// A session holding every table of the folder; null, without failure, when the folder has no table.
std::shared_ptr<Sessão> Abre_Sessão_Dbase(const QString& pasta, Falha_Banco& falha);
