#pragma once
// What the crash test's writer commits in each transaction, shared by the writer and the test so that
// the test can rebuild the table a run must have left.
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

// Transaction n of a run adds two rows, the player and its pair; every third one also raises the
// score of the previous player and deletes the pair of the one before it. A half-done transaction
// shows up as a player without its pair, a pair deleted with the score not raised, or the reverse.
struct Passo_Queda {
    QStringList Inclusões;
    QString Alterado;
    double Pontos = 0;
    QString Excluído;
};

// Every row of a run starts with this, so that the runs' rows never mix.
inline QString Prefixo_Queda(int rodada) {
    return QString("Queda %1-").arg(rodada);
}

inline QString Jogador_Queda(int rodada, int n) {
    return Prefixo_Queda(rodada) + QString::number(n);
}

inline QString Par_Queda(int rodada, int n) {
    return Jogador_Queda(rodada, n) + " par";
}

// Each run is one game in the statistics, started at its own moment; transaction n is its turn n.
inline QDateTime Início_Jogo_Queda(int rodada) {
    return QDateTime(QDate(2026, 11, 23), QTime(8, 0)).addSecs(60 * rodada);
}

inline Passo_Queda Passo_Da_Transação(int rodada, int n) {
    Passo_Queda passo;
    passo.Inclusões = {Jogador_Queda(rodada, n), Par_Queda(rodada, n)};
    if (n % 3 == 0) {
        passo.Alterado = Jogador_Queda(rodada, n - 1);
        passo.Pontos = n;
        passo.Excluído = Par_Queda(rodada, n - 2);
    }
    return passo;
}

// The run's rows, player to score, once its first `transações` transactions are committed.
inline QMap<QString, double> Estado_Após(int rodada, int transações) {
    QMap<QString, double> linhas;
    for (int n = 1; n <= transações; ++n) {
        const Passo_Queda passo = Passo_Da_Transação(rodada, n);
        for (const QString& jogador : passo.Inclusões) linhas.insert(jogador, 0);
        if (!passo.Alterado.isEmpty()) linhas.insert(passo.Alterado, passo.Pontos);
        if (!passo.Excluído.isEmpty()) linhas.remove(passo.Excluído);
    }
    return linhas;
}
