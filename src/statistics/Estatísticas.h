#pragma once
// What the games teach: every turn of a game is kept in Dados/Estatísticas.Mdb (a schema of its own on a
// server), apart from the main and the audit databases, and the figures of the statistics window are
// read from it.
//
// tblJogada has one row per turn, as it happened. tblResumo_Mensal keeps, for each month and question,
// how often it was answered, answered right, each wrong answer picked, skipped and helped;
// tblResumo_Jogador keeps, for each game and competitor, the points and answers. A turn writes only its
// row; the summaries are brought up to date from the turns after the code kept in tblResumo_Marca, in one
// transaction with the new mark, when a game ends, when the program starts and when the window opens.
// The window reads only the summaries: its cost follows the bank and the months, not the turns.
//
// Choices of this subsystem:
// - The period of the window is a range of months, the grain of the summaries.
// - The kind filter applies to what depends on the question (per question, by kind, helps, answers per
//   month); games per month and the competitors' points are of whole games, whatever their questions.
// - A skip is a turn with no answer: it counts as a help ("Pulo"), not as an answer.
// - A turn's row is committed at once, before the next turn is greeted, without waiting for the disk's
//   flush (the journal keeps it if the program is killed; a power cut may lose the last turns).
// - A failure to record is written to the occurrence log once per game, with no box; the game goes on,
//   and the next turns try again.
#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>
#include <array>
#include <memory>

#include "game/Regras_Jogo.h"
#include "store/Sessão.h"

class Ligação;

namespace Estatísticas {

inline const QString Arquivo_Estatísticas = "Estatísticas.Mdb";
QString Caminho_Banco_Estatísticas();

// Outcomes of a turn (field Desfecho) and helps (field Ajuda), as stored.
inline const QString Desfecho_Certa = "Certa";
inline const QString Desfecho_Errada = "Errada";        // wrong, a help taken away
inline const QString Desfecho_Eliminado = "Eliminado";  // wrong with no help left: out of the game
inline const QString Desfecho_Pulada = "Pulada";
inline const QString Ajuda_Nenhuma = "Nenhuma";
inline const QString Ajuda_Pulo = "Pulo";
inline const QString Ajuda_Dado_Texto = "Dado";
inline const QString Ajuda_Apóstolos_Texto = "Apóstolos";
inline const QString Ajuda_Deus_Texto = "Deus";

// The upgrade's step: makes the file and its tables when missing; the other databases are not touched.
// False (with the reason logged) when it cannot; the program goes on without statistics.
bool Garante_Banco_Estatísticas();

// Recording may be switched off (the turn's benchmark measures the difference).
inline bool Gravação_Ligada = true;

// One row of tblJogada.
struct Jogada {
    QDateTime Data_Jogada;
    QDateTime Início_Jogo;
    int Código_Pergunta = 0;
    QString Tipo;
    QString Jogador;
    int Posição = 0;
    QString Desfecho;
    QString Resposta_Escolhida;
    int Número_Resposta = -1;  // 0 the right answer, 1 to 3 Resposta_Incorreta_n, -1 none (a skip)
    QString Ajuda = Ajuda_Nenhuma;
    int Número_Dado = 0;  // 1 to 3 with the die, else 0
    double Valor = 0;
    double Segundos = 0;
};

// Writes one turn; false with the failure when it could not.
bool Grava_Jogada(const Jogada& jogada, Falha_Banco& falha);
// Adds the turns recorded since the last time to the summaries; false with the failure when it could not
// (the turns stay, and the next time adds them).
bool Atualiza_Resumos(Falha_Banco& falha);
// Lets go of the file (tests replace it; the next write opens it again).
void Fecha_Banco_Estatísticas();

// The recorder of one game window: told when a question is on screen, when a help is used and when the
// turn ends, it writes the turn's row. It never stops the game.
class Gravador_Jogadas {
  public:
    // The game's end: its turns join the summaries.
    ~Gravador_Jogadas();
    void Pergunta_Exibida(const Estado_Jogo& jogo);
    // After Responde: the answer picked and what came of it.
    void Resposta(const Estado_Jogo& jogo, int jogador, int índice, const Desfecho_Resposta& desfecho);
    // After Usa_Ajuda: a skip ends the turn (one row); the other helps are kept for the answer's row.
    void Ajuda(const Estado_Jogo& jogo, int jogador, int índice, const Desfecho_Ajuda& desfecho);

    bool Falha_Registrada() const { return Registrou_Falha; }

  private:
    void Grava(Jogada& jogada, const Estado_Jogo& jogo, int jogador);
    QDateTime Início_Jogo;
    QDateTime Exibida_Em;
    QString Ajuda_Da_Vez = Ajuda_Nenhuma;
    int Dado_Da_Vez = 0;
    bool Registrou_Falha = false;
    bool Gravou = false;
};

// ---------- the figures ----------

struct Filtro_Estatísticas {
    int Mês_Inicial = 0;     // yyyymm; 0 from the first
    int Mês_Final = 999999;  // yyyymm
    QString Tipo = "A";      // "A" both kinds, "B" biblical, "G" general knowledge
};

struct Números_Pergunta {
    int Código_Pergunta = 0;
    QString Tipo;
    QString Pergunta;  // the text in tblPergunta; empty when the question was deleted
    int Respostas = 0;
    int Acertos = 0;
    std::array<int, 3> Escolhas_Incorretas{};  // how often Resposta_Incorreta_1 to _3 was picked
    int Pulos = 0;
    double Percentual() const { return Respostas == 0 ? 0 : 100.0 * Acertos / Respostas; }
};

struct Números_Mês {
    int Mês = 0;  // yyyymm
    int Jogos = 0;
    int Respostas = 0;
};

struct Números_Competidor {
    QString Jogador;
    int Jogos = 0;
    double Pontos = 0;
    // The points of the last games, oldest first (at most Jogos_Por_Competidor).
    QVector<QPair<QDateTime, double>> Pontos_Por_Jogo;
};

inline constexpr int Quantidade_Extremos = 20;  // the hardest and the easiest questions
inline constexpr int Mínimo_Respostas_Extremos = 3;
inline constexpr int Mínimo_Respostas_Sem_Acerto = 5;
inline constexpr int Competidores_No_Gráfico = 10;
inline constexpr int Jogos_Por_Competidor = 50;

struct Números_Estatísticas {
    int Respostas = 0;
    int Acertos = 0;
    int Pulos = 0;
    int Jogos = 0;
    QVector<Números_Pergunta> Perguntas;      // every question answered or skipped in the period, by code
    QVector<Números_Pergunta> Mais_Difíceis;  // lowest share first, among those of 3 answers or more
    QVector<Números_Pergunta> Mais_Fáceis;    // highest share first
    QMap<QString, QPair<int, int>> Por_Tipo;  // "B"/"G": answers and right answers
    QMap<QString, int> Ajudas;                // "Pulo", "Dado", "Apóstolos", "Deus"
    std::array<int, 4> Faces_Dado{};          // 1 to 3: how often the die gave each
    QVector<Números_Mês> Por_Mês;
    QVector<Números_Competidor> Competidores;  // most games first, at most Competidores_No_Gráfico
    // Candidates for the verification: never right in 5 answers or more, and a wrong answer picked more
    // often than the right one.
    QVector<Números_Pergunta> Nunca_Acertadas;
    QVector<Números_Pergunta> Incorreta_Preferida;
};

// Reads the figures of the period and kind. False with the failure when the file cannot be read.
bool Calcula(const Filtro_Estatísticas& filtro, Números_Estatísticas& números, Falha_Banco& falha);

// The first month (yyyymm) with a recorded turn; 0 when none.
int Primeiro_Mês();

// "Respondida 12 vezes, 58% de acertos" or "Ainda não respondida", for the question register.
QString Resumo_Pergunta(int código_pergunta);

// The numbers behind the charts as one CSV text: UTF-8 with its mark, ";" between fields, CR LF.
QByteArray Texto_CSV(const Números_Estatísticas& números, const Filtro_Estatísticas& filtro);
// Reads a CSV written by Texto_CSV back into sections: each section's title and its rows of fields.
QMap<QString, QList<QStringList>> Lê_CSV(const QByteArray& texto);

QString Texto_Mês(int mês);                   // "11/2026"
QString Texto_Percentual(double percentual);  // "58%"

}  // namespace Estatísticas
