#pragma once
// The tables, fields and indexes of the databases as the upgrade steps leave them, and their seed rows.
#include <QString>
#include <QVector>

#include "store/Sessão.h"

struct Definição_Tabela {
    QString Nome;
    QVector<Campo_Info> Campos;
    QVector<Índice_Info> Índices;
};

Campo_Info Texto(const QString& nome, int largura, bool zero = false);
Campo_Info Memo(const QString& nome, bool zero = false);
Campo_Info Longo(const QString& nome);
Campo_Info Automático(const QString& nome);
Campo_Info Duplo(const QString& nome);
Campo_Info Data(const QString& nome);
Campo_Info Booleano(const QString& nome);
Índice_Info Simples(const QString& nome, const QStringList& campos);
Índice_Info Primário(const QString& nome, const QStringList& campos);
Índice_Info Único(const QString& nome, const QStringList& campos);

// The end state of Dados.Mdb, table by table.
QVector<Definição_Tabela> Esquema_Principal();
Definição_Tabela Definição_Manutenção();
Definição_Tabela Definição(const QString& tabela);  // one table of the main database or the audit one

struct Estado_Semente {
    QString Iniciais;
    QString Nome;
};
QVector<Estado_Semente> Estados_Semente();
inline const QString Razão_Social_Semente = "Colocar aqui a razão social da empresa!!!!!!";

// Versions as one comparable number written in decimal: 4.11.106 gives "4011106".
QString Versão_Comparável(int maior, int menor, int revisão);
