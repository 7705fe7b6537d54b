#pragma once
// The rules of the game and of the raffle, with no window and no database: the windows only drive them.
//
// Choices made where the game's own description leaves the way open:
//
// - A bank with no question that can be drawn (none of the chosen kind, or all of them in a history of no
//   more than 500 rows) ends the game. After 10 x (n + 1) random draws without a question, every code
//   from 0 to n is looked at once, in order, with the same kind filter and the same trimming of the
//   history, and one of the questions that pass is taken at random; when none passes, `Nova_Rodada`
//   answers `Sem_Pergunta_Disponível`, adds nothing to the history and marks the game as ended. The
//   window then tells `Texto_Sem_Pergunta` and ends the game as usual: every competitor goes to the hall
//   of fame with the points won so far. An empty bank ends it the same way (`Banco_Vazio`).
// - Every other "draw until it fits" (placing the answers, taking a help away, the die, blanking wrong
//   answers) gives up after 1,000 draws and takes the first fitting value in order, so that a generator
//   that keeps repeating itself cannot hold the program. Blanking stops as soon as no wrong answer is
//   left to blank; it reports how many it blanked.
// - A competitor's level is kept here, in `Nível`, not in a label.
// - One help a turn, and no answer or help outside a turn: the rules refuse them, so a click that
//   reaches the window while the die rolls changes nothing.
// - `Tipo_Pergunta` starts as "A", as when no option of the starting window is chosen.
// - A row of the hall of fame reads the game's date "dd/MM/yyyy", a blank and the name, cut to the
//   50 characters of the field: a name keeps its first 39 characters there.
// - The hall of fame ranks by score, descending; among equal scores the row written later stands
//   higher, and the cut to ten rows drops the older of equal lowest scores. Scores are doubles
//   everywhere, also the highest score of the game's ranking, so scores above 2,147,483,647 rank right.
// - Raffle: message 24 comes when every number from 1 to the final value has been drawn. So a final
//   value lowered below the numbers already drawn ends cleanly, and a lowered value that still has free
//   numbers goes on drawing those. A final value below 1 is an empty range and gets message 24 too.
// - Raffle: at most 1,000 numbers in one opening of the window; a further press is refused with
//   `Texto_Limite_Sorteio`. When the random draws keep finding numbers already drawn (1,000 rounds), a
//   free number of the range is chosen at random among the free ones.
// - Raffle: the lower box takes no part; the range always starts at 1.
//
// Inside a window routine of the same name, call the free functions here with `::`, as in
// `::Próximo_Competidor(Jogo)`.

#include <QDate>
#include <QList>
#include <QString>
#include <array>
#include <functional>
#include <optional>

// The source of chance. By default it is the program's own generator, seeded by `Semeia_Gerador` before
// each series of draws; a test gives a function of its own that returns numbers in [0, 1).
class Acaso {
  public:
    Acaso() = default;
    explicit Acaso(std::function<double()> uniforme);

    // Seeds the program's generator; a given function is left as it is.
    void Semeia() const;
    // A uniform number times the bound, rounded down: 0 to limite - 1.
    int Sorteia(int limite) const;

  private:
    std::function<double()> Uniforme;
};

inline constexpr int Máximo_Jogadores = 5;
inline constexpr int Quantidade_Ajudas = 6;
inline constexpr int Ajuda_Pular_1 = 0;
inline constexpr int Ajuda_Pular_2 = 1;
inline constexpr int Ajuda_Pular_3 = 2;
inline constexpr int Ajuda_Dado = 3;
inline constexpr int Ajuda_Apóstolos = 4;
inline constexpr int Ajuda_Deus = 5;
inline constexpr double Valor_Inicial = 10;
inline constexpr int Limite_Histórico = 500;  // above this, the oldest row of the history goes
inline constexpr int Linhas_Hall = 10;
inline constexpr int Tamanho_Jogador_Hall = 50;
inline constexpr int Limite_Sorteados = 1000;
inline constexpr int Contemplados_Visíveis = 14;

inline const QString Texto_Sem_Pergunta =
    "Não há mais Perguntas disponíveis para o tipo escolhido. O jogo será encerrado e a pontuação de "
    "cada jogador será registrada.";
inline const QString Texto_Limite_Sorteio = "Já foram sorteados 1.000 números, o máximo de um mesmo sorteio.";

// A row of tblPergunta.
struct Registro_Pergunta {
    int Código_Pergunta = 0;
    QString Tipo;
    QString Pergunta;
    QString Resposta_Correta;
    QString Resposta_Incorreta_1;
    QString Resposta_Incorreta_2;
    QString Resposta_Incorreta_3;
};

// What the drawing of a question needs of the question bank and of the history of shown questions.
class Fonte_Perguntas {
  public:
    virtual ~Fonte_Perguntas() = default;
    virtual int Quantidade_Perguntas() = 0;
    virtual std::optional<Registro_Pergunta> Busca_Pergunta(int código) = 0;
    virtual int Quantidade_Mostradas() = 0;
    // Deletes the first row of the history ordered by Data_Jogo.
    virtual void Exclui_Mostrada_Mais_Antiga() = 0;
    virtual bool Já_Mostrada(int código) = 0;
    virtual void Registra_Mostrada(int código, const QDate& data) = 0;
};

// A row of tblPergunta_Já_Mostrada.
struct Registro_Mostrada {
    int Código_Pergunta = 0;
    QDate Data_Jogo;
};

// The bank and the history in memory; the history keeps the order of its writing.
class Perguntas_Em_Memória : public Fonte_Perguntas {
  public:
    QList<Registro_Pergunta> Perguntas;
    QList<Registro_Mostrada> Mostradas;

    int Quantidade_Perguntas() override;
    std::optional<Registro_Pergunta> Busca_Pergunta(int código) override;
    int Quantidade_Mostradas() override;
    void Exclui_Mostrada_Mais_Antiga() override;  // of equal dates, the one written first
    bool Já_Mostrada(int código) override;
    void Registra_Mostrada(int código, const QDate& data) override;
};

// The state of one game. Competitors are numbered 1 to 5; index 0 is never a competitor.
struct Estado_Jogo {
    Estado_Jogo();

    int Quantidade_Jogadores = 0;
    QString Tipo_Pergunta = "A";  // "A" both kinds, "B" biblical knowledge, "G" general knowledge
    std::array<QString, Máximo_Jogadores + 1> Nome_Jogador;
    std::array<double, Máximo_Jogadores + 1> Pontos{};
    std::array<int, Máximo_Jogadores + 1> Nível{};
    std::array<double, Máximo_Jogadores + 1> Valor_Jogador{};
    std::array<std::array<bool, Quantidade_Ajudas>, Máximo_Jogadores + 1> Ajuda_Disponível{};
    std::array<bool, Máximo_Jogadores + 1> Ativo{};
    int Jogador_Atual = 1;

    // The turn in play.
    double Valor_Pergunta = 0;
    Registro_Pergunta Pergunta_Atual;
    std::array<QString, 4> Respostas_Exibidas;  // the captions of optResposta(0) to (3); empty when blanked
    bool Vez_Em_Andamento = false;
    bool Ajuda_Usada_Na_Vez = false;

    bool Terminado = false;
};

// The value of the next question.
double Valor_Após_Acerto(double valor);
double Valor_Após_Erro(double valor);  // half, rounded down, at least 1
double Valor_Após_Pulo(double valor);  // divided by 1.25, rounded down, at least 1

// A typed name: its first character in capitals, the next 50 in small letters.
QString Nome_Formatado(const QString& nome);
// The name box `índice` was left with this text. True when the list of names closes and the first turn
// starts: the box was empty, or the fifth name was given.
bool Registra_Jogador(Estado_Jogo& jogo, int índice, const QString& nome);

// Whether a row of kind `tipo` may be drawn when the game asked for `tipo_pergunta`.
bool Passa_Filtro_Tipo(const QString& tipo_pergunta, const QString& tipo);
// A question of the kind asked that is not in the history; the history loses its oldest row on the way
// while it has more than 500. None when no question can be drawn.
std::optional<Registro_Pergunta> Sorteia_Pergunta(Fonte_Perguntas& fonte, const QString& tipo_pergunta,
                                                  const Acaso& acaso = Acaso());
// The four answers in a random order; index 0 of the question's answers is the right one.
std::array<QString, 4> Embaralha_Respostas(const Registro_Pergunta& pergunta, const Acaso& acaso = Acaso());

enum class Resultado_Rodada { Pergunta_Sorteada, Banco_Vazio, Sem_Pergunta_Disponível };
// The turn of `Jogador_Atual`: the value in play, a question, its answers shuffled, the history row.
// Without a question the game is marked as ended.
Resultado_Rodada Nova_Rodada(Estado_Jogo& jogo, Fonte_Perguntas& fonte, const QDate& hoje,
                             const Acaso& acaso = Acaso());

enum class Efeito_Resposta {
    Ignorada,     // a blanked answer, or no turn in play: nothing changes
    Certa,        // points, level and value rise
    Errada,       // value halved, one help taken away (`Ajuda_Retirada`)
    Fora_Do_Jogo  // wrong with no help left: the competitor drops out, keeping the points
};
struct Desfecho_Resposta {
    Efeito_Resposta Efeito = Efeito_Resposta::Ignorada;
    int Ajuda_Retirada = -1;
};
// The competitor on turn picks answer `índice` (0 to 3). The window then calls `Próximo_Competidor`
// unless the answer was ignored.
Desfecho_Resposta Responde(Estado_Jogo& jogo, int índice, const Acaso& acaso = Acaso());

enum class Efeito_Ajuda {
    Recusada,             // not available, a help already used this turn, or no turn in play
    Pulo,                 // the turn is over: the window shows the right answer, then `Próximo_Competidor`
    Respostas_Eliminadas  // the turn goes on with fewer answers
};
struct Desfecho_Ajuda {
    Efeito_Ajuda Efeito = Efeito_Ajuda::Recusada;
    int Ajuda_Gasta = -1;         // for a skip, the lowest skip still available, whichever box was clicked
    QList<int> Faces_Dado;        // the die's faces in the order rolled, the last one the result
    int Quantidade_Eliminar = 0;  // 1 to 3
    int Eliminadas = 0;           // how many answers were blanked
};
// The competitor on turn asks for help `índice` (0 to 5).
Desfecho_Ajuda Usa_Ajuda(Estado_Jogo& jogo, int índice, const Acaso& acaso = Acaso());

// Rolls faces 0 to 6 until one of 1, 2 or 3 comes up, and gives it; `faces` receives every face rolled.
int Rola_Dado(const Acaso& acaso = Acaso(), QList<int>* faces = nullptr);
// Blanks up to `quantidade` answers that are neither empty nor equal to the right one; gives how many.
int Elimina_Respostas(std::array<QString, 4>& respostas, const QString& resposta_correta, int quantidade,
                      const Acaso& acaso = Acaso());

// Passes the turn to the next active competitor, wrapping round and passing over those who dropped out.
// False when no active competitor is left: the game has ended (`Terminado`).
bool Próximo_Competidor(Estado_Jogo& jogo);

// A row of tblPontuação.
struct Linha_Hall {
    QString Jogador;
    double Pontuação = 0;
};
// The text of the field Jogador: the date, a blank and the name, at most 50 characters.
QString Texto_Jogador_Hall(const QDate& data, const QString& nome);
// The rows, given in the order of their writing (or of idxPontuação), best first, at most ten.
QList<Linha_Hall> Classifica_Hall(const QList<Linha_Hall>& linhas);
// The game's competitors, best first; of equal points the higher number comes first.
QList<int> Classificação_Jogo(const Estado_Jogo& jogo);

// The raffle of one opening of its window.
struct Estado_Sorteio {
    QList<int> Números_Sorteados;  // in the order drawn
};
enum class Efeito_Sorteio {
    Sorteado,
    Todos_Sorteados,  // message 24: every number from 1 to the final value has been drawn
    Limite_Atingido   // 1,000 numbers drawn: `Texto_Limite_Sorteio`
};
struct Desfecho_Sorteio {
    Efeito_Sorteio Efeito = Efeito_Sorteio::Todos_Sorteados;
    int Número = 0;
    // What nbNúmero_Sorteado shows in turn: the spin, then the draws; the last one is Número.
    QList<int> Exibidos;
};
// A press of "Novo Sorteio": a number from 1 to `número_final` not drawn before.
Desfecho_Sorteio Novo_Sorteio(Estado_Sorteio& sorteio, int número_final, const Acaso& acaso = Acaso());
// What nbNúmero_Contemplado(0) to (13) show: the last 14 numbers drawn, newest first.
QList<int> Contemplados_Exibidos(const Estado_Sorteio& sorteio);
