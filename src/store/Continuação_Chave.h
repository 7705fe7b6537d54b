#pragma once
// How a walk in a keyset order goes on from a row: one condition per statement, each reading on from
// the row in the index without depending on where in the table it stands.
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <functional>

// Calls `roda` with each condition (" AND ...", to follow a source's own criterion) and its values, in
// the order of the rows it finds: first the rows that share every term with the row (`chave`, `id`) and
// come after it by row id, then those that share one term less, and so on up to the first term.
// `para_maiores[k]`: the walk goes towards greater values of term k (Nulls stand first in an ascending
// order); `adiante`: towards greater row ids.
void Continua_Depois_Da_Chave(const QStringList& termos, const QVector<bool>& para_maiores,
                              const QVariantList& chave, qint64 id, bool adiante,
                              const std::function<void(const QString&, const QVariantList&)>& roda);
