#pragma once
// The question bank and the history of shown questions on a server, for the drawing of a turn: what the
// draw asks of them is asked in as few exchanges with the server as the draw allows. The counts of the bank
// and of the history and the oldest row of the history go together; the drawn question's row goes with
// its lookup in the history; the history's trim and its new row, with their audit rows, are kept by the
// store and go with the commit of the turn's transaction.
// Only inside the program's transaction on a server session; a call it cannot serve answers false, and the
// window then does the same work through its table slots.
#include <QHash>
#include <QList>
#include <QSet>
#include <memory>
#include <optional>

#include "game/Regras_Jogo.h"

class Comando_Banco;
class Sessão;

class Sorteio_No_Servidor {
  public:
    // Whether the turn can be served here now: a server session inside the program's transaction. What
    // was read of an earlier transaction is forgotten.
    bool Disponível(const std::shared_ptr<Sessão>& sessão);

    std::optional<int> Quantidade_Perguntas();
    // Empty when the question could not be read here; `achada` tells whether the code has a question.
    bool Busca_Pergunta(int código, std::optional<Registro_Pergunta>& achada);
    std::optional<int> Quantidade_Mostradas();
    bool Exclui_Mostrada_Mais_Antiga();
    std::optional<bool> Já_Mostrada(int código);
    bool Registra_Mostrada(int código, const QDate& data);

  private:
    bool Lê_Contagens();
    bool Lê_Mais_Antiga();
    bool Toma_Mais_Antiga(Comando_Banco* antiga);
    bool Lê_Histórico_Do_Código(int código);
    void Esquece();

    std::shared_ptr<Sessão> S;
    int Transação = -1;
    std::optional<int> Perguntas;
    std::optional<int> Mostradas;
    // The oldest row of the history (row id and code), read with the counts; none when the history is empty.
    bool Antiga_Lida = false;
    std::optional<std::pair<qint64, int>> Mais_Antiga;
    // The history's rows of each code looked up in this turn, and those this turn trimmed.
    QHash<int, QList<qint64>> Linhas_Do_Código;
    QSet<qint64> Excluídas;
};
