#pragma once
// The quiz itself: the names of the competitors, the turns, the answers and the helps. The rules live in
// Regras_Jogo; this window shows them and keeps the question bank and its history in the store.
#include <QString>
#include <array>
#include <functional>

#include <memory>
#include <vector>

#include "forms/Formulário.h"
#include "game/Regras_Jogo.h"
#include "game/Regras_Sorteio_Servidor.h"
#include "statistics/Estatísticas.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class Painel_Sala;
class Servidor_Sala;
class frmTela_Sala;

// The kind of questions asked for in frmInício_Jogo: "A" both, "B" biblical, "G" general knowledge.
inline QString Tipo_Pergunta = "A";

class frmJogo : public Formulário, public Fonte_Perguntas {
  public:
    explicit frmJogo(QWidget* pai = nullptr);

    // Runs at the end of a regular game, after tblPontuação has been written: shows the hall of fame.
    std::function<void()> Ao_Terminar;
    // What a new window puts in Ao_Terminar, so that the main window can set it once for every game.
    static inline std::function<void(frmJogo&)> Ao_Terminar_Padrão;

    Estado_Jogo Jogo;

    QGroupBox* fraPergunta;
    QLabel* lblPergunta;
    QGroupBox* fraResposta;
    std::array<QRadioButton*, 4> optResposta{};
    QGroupBox* fraAjuda;
    std::array<QCheckBox*, Quantidade_Ajudas> chkAjuda{};
    QLabel* imgDado;
    QGroupBox* fraJogador;
    QLabel* lblJogador_Atual;
    QLabel* lblPontuação_Atual;
    QLabel* lblNível_Atual;
    QGroupBox* fraJogadores;
    std::array<QLineEdit*, Máximo_Jogadores + 1> txtJogador{};  // 1 to 5
    std::array<QLabel*, Máximo_Jogadores + 1> lblPontuação{};   // 1 to 5
    std::array<QLabel*, Máximo_Jogadores + 1> lblNível{};       // 1 to 5
    std::array<QLabel*, 4> lblResposta_Usuário{};               // _1 to _4
    QLabel* lblPontuação_1;
    QLabel* lblPontuação_2;
    QLabel* lblPontuação_3;
    QPushButton* cmdSair;
    // "Jogar pelos celulares": the room's phones answer for their competitors.
    QPushButton* cmdCelulares;
    Painel_Sala* fraCelulares;
    // F11: the game on a screen made for the room (a projector or a television).
    frmTela_Sala* Tela_Da_Sala;

    bool Dado_Rolando() const { return Rolando; }
    int Face_Dado() const { return Face_Dado_Atual; }  // 0: no die on screen
    // The room's server while the phones play, else null.
    Servidor_Sala* Sala_Ativa() const;
    // Called after every visible change of the game: a new turn, an answer, a help, a face of the die,
    // the end.
    std::vector<std::function<void()>> Ao_Mudar;

    void txtJogador_GotFocus(int Index);
    void txtJogador_Validate(int Index);
    void txtJogador_LostFocus(int Index);
    void optResposta_Click(int Index);
    void chkAjuda_Click(int Index);
    void Nova_Rodada();
    void Próximo_Competidor();
    void cmdSair_Click();
    void cmdCelulares_Click();

    // The question bank (Tabela) and the history of shown questions (Tabela_Secundária).
    int Quantidade_Perguntas() override;
    std::optional<Registro_Pergunta> Busca_Pergunta(int código) override;
    int Quantidade_Mostradas() override;
    void Exclui_Mostrada_Mais_Antiga() override;
    bool Já_Mostrada(int código) override;
    void Registra_Mostrada(int código, const QDate& data) override;

  protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override;
    // Escape only leaves full screen: a game ends by Sair alone.
    void keyPressEvent(QKeyEvent* evento) override;

  private:
    void Form_Load();
    void Abre_Tabelas();
    void Fim_Do_Jogo();
    void Mostra_Resposta_Correta();
    void Mostra_Respostas();
    void Mostra_Jogador(int jogador);
    void Comentário(const QString& a, const QString& b, const QString& c, const QString& d);
    void Encerra_Tela();
    void Avisa_Mudança();

    // The same store work in fewer exchanges when the bank is on a server.
    Sorteio_No_Servidor Servidor;
    bool Lista_Fechada = false;
    bool Rolando = false;
    // Every turn goes to the games' statistics.
    Estatísticas::Gravador_Jogadas Gravador;
    int Face_Dado_Atual = 0;
};
