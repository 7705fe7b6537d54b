#pragma once
// The messages between the program and the phones of the room: what a phone may ask (read here with every
// check a hostile sender calls for) and what the program tells every phone (the room's picture of the game).
//
// A phone's request is a JSON object of at most 1,024 bytes with a "tipo" and only the fields that kind
// takes, each of its own type and range; anything else is dropped whole.
//
//   {"tipo":"entra","codigo":"123456"}                 joins the room as a spectator
//   {"tipo":"retoma","codigo":"123456","token":"<32 hex>"}  a phone back from sleep or a reload
//   {"tipo":"senta","assento":2}                        takes competitor seat 2
//   {"tipo":"levanta"}                                  gives the seat up
//   {"tipo":"responde","resposta":0..3,"vez":17}       answers the question of turn 17
//   {"tipo":"ajuda","ajuda":0..5,"vez":17}             asks a help in turn 17
//
// The program sends "estado" (the same for every phone), "sessao" (the phone's own seat and token) and
// "erro" (why a request was refused). Before a turn's answer is given, nothing in them marks which answer
// is right: the answers go as the plain texts the host shows, in the host's order.
#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <array>
#include <optional>

#include "game/Regras_Jogo.h"

inline constexpr int Tamanho_Máximo_Pedido = 1024;
inline constexpr int Tamanho_Código_Sala = 6;
inline constexpr int Tamanho_Token = 32;

enum class Tipo_Pedido { Entra, Retoma, Senta, Levanta, Responde, Ajuda };

struct Pedido_Celular {
    Tipo_Pedido Tipo = Tipo_Pedido::Entra;
    QString Código;   // Entra, Retoma: six digits
    QString Token;    // Retoma: 32 small hexadecimal digits
    int Assento = 0;  // Senta: 1 to 5
    int Índice = -1;  // Responde: 0 to 3; Ajuda: 0 to 5
    qint64 Vez = 0;   // Responde, Ajuda: the turn the phone saw
};

// The request in a message, or none when the message is not exactly one of the kinds above.
std::optional<Pedido_Celular> Lê_Pedido(QByteArrayView mensagem);

// Where the game stands, as the room sees it.
enum class Fase_Sala {
    Nomes,      // the host is typing the names
    Vez,        // a competitor's turn: the question and the answers are on screen
    Dado,       // the die rolls: no answer and no help now
    Resultado,  // an answer or a skip has been given; the host's box stands before the next turn
    Fim         // the game has ended: the ranking
};

struct Jogador_Sala {
    QString Nome;
    double Pontos = 0;
    int Nível = 1;
    bool Ativo = true;
};

struct Retrato_Sala {
    Fase_Sala Fase = Fase_Sala::Nomes;
    qint64 Vez = 0;   // numbers the turns, so that a late tap cannot answer the next question
    int Jogador = 0;  // the competitor on turn, or the one who has just answered
    double Valor = 0;
    QString Pergunta;
    std::array<QString, 4> Respostas;              // as the host shows them; a blanked answer is empty
    std::array<bool, Quantidade_Ajudas> Ajudas{};  // the helps the competitor on turn may ask now
    int Face_Dado = 0;                             // 0: no die on screen
    std::array<QString, 4> Aviso;                  // the host's remark, line by line
    QString Correta;                               // only once the turn is over
    QList<Jogador_Sala> Jogadores;                 // seats 1 to n
    QList<int> Classificação;                      // at the end: the seats, best first
};

// What the room may know of a game. `nomes_abertos` while the host types the names; `rolando` and `face`
// while the die rolls; `aviso` the host's remark. `vez` keeps the turn count between calls: a new turn
// is counted when a question comes on screen after none was in play.
struct Contagem_Vez {
    qint64 Vez = 0;
    bool Em_Vez = false;
    // The answers as they stood when the die began to roll: the host shows those until it stops.
    std::array<QString, 4> Respostas;
};
Retrato_Sala Retrata_Jogo(const Estado_Jogo& jogo, bool nomes_abertos, bool rolando, int face,
                          const std::array<QString, 4>& aviso, Contagem_Vez& vez);

// The messages of the program. `celulares` marks the seats (1 to 5) that a phone holds.
QByteArray Escreve_Estado(const Retrato_Sala& retrato,
                          const std::array<bool, Máximo_Jogadores + 1>& celulares);
QByteArray Escreve_Sessão(int assento, const QString& token, const QString& código);
QByteArray Escreve_Erro(const QString& texto);
