// The rules of the game and of the raffle, played without windows against a bank in memory.
#include <gtest/gtest.h>

#include <QSet>
#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "game/Regras_Jogo.h"
#include "support/Plataforma_Roteirizada.h"

namespace {

// Gives the listed numbers in turn, again from the first after the last.
Acaso Sequência(std::vector<double> valores) {
    auto posição = std::make_shared<size_t>(0);
    return Acaso([valores, posição] { return valores[(*posição)++ % valores.size()]; });
}

// The number in [0, 1) that a draw with bound `limite` turns into `valor`.
double Dá(int valor, int limite) {
    return (valor + 0.5) / limite;
}

Acaso Gerador_Fixo() {
    auto gerador = std::make_shared<std::minstd_rand>(7);
    return Acaso([gerador] { return std::uniform_real_distribution<double>(0, 1)(*gerador); });
}

Registro_Pergunta Pergunta(int código, const QString& tipo = "G") {
    return {código, tipo, "Pergunta?", "Certa", "Errada 1", "Errada 2", "Errada 3"};
}

const QDate Hoje(2019, 3, 14);

class Jogo_Teste : public ::testing::Test {
  protected:
    void SetUp() override {
        for (int código = 1; código <= 40; ++código) Banco.Perguntas.append(Pergunta(código));
    }
    void Começa(const QStringList& nomes) {
        for (int i = 0; i < nomes.size(); ++i) Registra_Jogador(Jogo, i + 1, nomes[i]);
        Registra_Jogador(Jogo, nomes.size() + 1, "");
        ASSERT_EQ(Nova_Rodada(Jogo, Banco, Hoje, Gerador), Resultado_Rodada::Pergunta_Sorteada);
    }
    void Próxima_Vez() {
        ASSERT_TRUE(Próximo_Competidor(Jogo));
        ASSERT_EQ(Nova_Rodada(Jogo, Banco, Hoje, Gerador), Resultado_Rodada::Pergunta_Sorteada);
    }
    int Índice(const QString& resposta) const {
        const auto& respostas = Jogo.Respostas_Exibidas;
        return static_cast<int>(std::find(respostas.begin(), respostas.end(), resposta) - respostas.begin());
    }
    QStringList Restantes() const {
        QStringList restantes(Jogo.Respostas_Exibidas.begin(), Jogo.Respostas_Exibidas.end());
        restantes.removeAll("");
        return restantes;
    }

    Perguntas_Em_Memória Banco;
    Estado_Jogo Jogo;
    Acaso Gerador = Gerador_Fixo();
};

std::vector<double> Série(double (*passo)(double), int vezes) {
    std::vector<double> série{Valor_Inicial};
    while (vezes-- > 0) série.push_back(passo(série.back()));
    return série;
}

}  // namespace

TEST(Valor_Pergunta_Teste, RightWrongAndSkipMoveTheValueAsTheTableSays) {
    EXPECT_EQ(Série(Valor_Após_Acerto, 5), (std::vector<double>{10, 20, 40, 80, 160, 320}));
    EXPECT_EQ(Série(Valor_Após_Erro, 4), (std::vector<double>{10, 5, 2, 1, 1}));
    EXPECT_EQ(Série(Valor_Após_Pulo, 7), (std::vector<double>{10, 8, 6, 4, 3, 2, 1, 1}));
    EXPECT_EQ(Valor_Após_Erro(10737418241.0), 5368709120.0);  // beyond 32 bits, still exact
}

TEST(Nomes_Teste, NamesTakeOneCapitalAndTheListClosesOnAnEmptyBoxOrTheFifthName) {
    EXPECT_EQ(Nome_Formatado("mARIA DA SILVA"), "Maria da silva");
    Estado_Jogo jogo;
    for (int i = 1; i <= 4; ++i) EXPECT_FALSE(Registra_Jogador(jogo, i, "Nome"));
    EXPECT_TRUE(Registra_Jogador(jogo, 5, "Quinto"));
    EXPECT_EQ(jogo.Quantidade_Jogadores, 5);
    EXPECT_TRUE(Registra_Jogador(jogo, 1, ""));
}

TEST_F(Jogo_Teste, EachWrongAnswerTakesADifferentHelpUntilTheSeventhDropsTheCompetitorOut) {
    Começa({"Ana"});
    EXPECT_EQ(Responde(Jogo, Índice("Certa"), Gerador).Efeito, Efeito_Resposta::Certa);
    EXPECT_EQ(Jogo.Nível[1], 2);
    QSet<int> retiradas;
    for (int vez = 0; vez < Quantidade_Ajudas; ++vez) {
        Próxima_Vez();
        const Desfecho_Resposta desfecho = Responde(Jogo, Índice("Errada 2"), Gerador);
        EXPECT_EQ(desfecho.Efeito, Efeito_Resposta::Errada);
        retiradas.insert(desfecho.Ajuda_Retirada);
    }
    EXPECT_EQ(retiradas, (QSet<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(Jogo.Valor_Jogador[1], 1);  // 20 after the right answer, then 10, 5, 2, 1, 1, 1
    EXPECT_EQ(Jogo.Nível[1], 2);
    EXPECT_EQ(Banco.Mostradas.size(), 7);

    Próxima_Vez();
    EXPECT_EQ(Responde(Jogo, Índice("Errada 1"), Gerador).Efeito, Efeito_Resposta::Fora_Do_Jogo);
    EXPECT_EQ(Jogo.Pontos[1], 10);
    EXPECT_FALSE(Próximo_Competidor(Jogo));
    EXPECT_TRUE(Jogo.Terminado);
}

TEST_F(Jogo_Teste, ASkipSpendsTheLowestSkipLowersTheValueAndEndsTheTurn) {
    Começa({"Ana", "Bia"});
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Pular_3, Gerador).Ajuda_Gasta, Ajuda_Pular_1);
    EXPECT_EQ(Jogo.Valor_Jogador[1], 8);
    EXPECT_EQ(Jogo.Nível[1], 1);
    EXPECT_EQ(Responde(Jogo, Índice("Certa"), Gerador).Efeito, Efeito_Resposta::Ignorada);
    Próxima_Vez();
    Próxima_Vez();
    EXPECT_EQ(Jogo.Valor_Pergunta, 8);
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Pular_1, Gerador).Efeito, Efeito_Ajuda::Recusada);
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Pular_3, Gerador).Ajuda_Gasta, Ajuda_Pular_2);
}

TEST_F(Jogo_Teste, ApostlesGodAndTheDieBlankWrongAnswersOnlyAndAllowOneHelpATurn) {
    Começa({"Ana", "Bia", "Caio"});
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Apóstolos, Gerador).Eliminadas, 2);
    EXPECT_EQ(Restantes().size(), 2);
    EXPECT_TRUE(Restantes().contains("Certa"));
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Deus, Gerador).Efeito, Efeito_Ajuda::Recusada);
    EXPECT_EQ(Responde(Jogo, Índice(""), Gerador).Efeito, Efeito_Resposta::Ignorada);
    EXPECT_EQ(Responde(Jogo, Índice("Certa"), Gerador).Efeito, Efeito_Resposta::Certa);

    Próxima_Vez();
    Usa_Ajuda(Jogo, Ajuda_Deus, Gerador);
    EXPECT_EQ(Restantes(), QStringList{"Certa"});

    Próxima_Vez();
    const Desfecho_Ajuda dado =
        Usa_Ajuda(Jogo, Ajuda_Dado, Sequência({Dá(0, 7), Dá(6, 7), Dá(4, 7), Dá(2, 7)}));
    EXPECT_EQ(dado.Faces_Dado, (QList<int>{0, 6, 4, 2}));
    EXPECT_EQ(Restantes().size(), 2);
    EXPECT_TRUE(Restantes().contains("Certa"));
}

TEST_F(Jogo_Teste, AWrongAnswerEqualToTheRightOneIsNeverBlankedAndScores) {
    Banco.Perguntas = {{1, "G", "Quanto é 2 + 2?", "4", "5", "4", "6"}};
    Começa({"Ana"});
    EXPECT_EQ(Usa_Ajuda(Jogo, Ajuda_Deus, Gerador).Eliminadas, 2);
    EXPECT_EQ(Restantes(), (QStringList{"4", "4"}));
}

TEST(Vez_Teste, TheTurnPassesOverDroppedCompetitorsWrapsRoundAndEndsWithTheLastActive) {
    Estado_Jogo jogo;
    jogo.Quantidade_Jogadores = 4;
    jogo.Ativo[2] = jogo.Ativo[3] = false;
    std::vector<int> vezes;
    for (int i = 0; i < 3; ++i) {
        Próximo_Competidor(jogo);
        vezes.push_back(jogo.Jogador_Atual);
    }
    EXPECT_EQ(vezes, (std::vector<int>{4, 1, 4}));

    jogo.Ativo[1] = jogo.Ativo[4] = false;  // the last two drop out: the game ends at once
    EXPECT_FALSE(Próximo_Competidor(jogo));
    EXPECT_TRUE(jogo.Terminado);
    Estado_Jogo sem_nomes;
    EXPECT_FALSE(Próximo_Competidor(sem_nomes));
}

TEST(Sorteio_Pergunta_Teste, CodesAreDrawnUpToTheRowCountSoGapsAreRedrawnAndHighCodesUnreachable) {
    Perguntas_Em_Memória banco;
    banco.Perguntas = {Pergunta(2), Pergunta(5), Pergunta(9)};
    Estado_Jogo jogo;
    ASSERT_EQ(Nova_Rodada(jogo, banco, Hoje, Sequência({Dá(0, 4), Dá(3, 4), Dá(2, 4)})),
              Resultado_Rodada::Pergunta_Sorteada);
    EXPECT_EQ(jogo.Pergunta_Atual.Código_Pergunta, 2);
    EXPECT_EQ(banco.Mostradas.size(), 1);

    EXPECT_EQ(Nova_Rodada(jogo, banco, Hoje, Gerador_Fixo()), Resultado_Rodada::Sem_Pergunta_Disponível);
    EXPECT_TRUE(jogo.Terminado);
    EXPECT_EQ(banco.Mostradas.size(), 1);
}

TEST(Sorteio_Pergunta_Teste, AKindWithNoQuestionEndsCleanlyEvenWithAStuckSource) {
    Perguntas_Em_Memória banco;
    for (int código = 1; código <= 30; ++código) banco.Perguntas.append(Pergunta(código, "G"));
    EXPECT_FALSE(Sorteia_Pergunta(banco, "B", Gerador_Fixo()));
    EXPECT_TRUE(Sorteia_Pergunta(banco, "A", Gerador_Fixo()));

    banco.Perguntas[29].Tipo = "B";
    const auto pergunta = Sorteia_Pergunta(banco, "B", Sequência({Dá(7, 31)}));
    ASSERT_TRUE(pergunta);
    EXPECT_EQ(pergunta->Código_Pergunta, 30);
}

TEST(Sorteio_Pergunta_Teste, TheHistoryLosesItsOldestRowAbove500AndSettlesAt501) {
    Perguntas_Em_Memória banco;
    banco.Perguntas = {Pergunta(1)};
    for (int i = 0; i < 500; ++i) banco.Mostradas.append({1000 + i, Hoje.addDays(-400 + i)});
    banco.Mostradas[3].Data_Jogo = Hoje.addYears(-2);
    Estado_Jogo jogo;
    Nova_Rodada(jogo, banco, Hoje, Gerador_Fixo());
    EXPECT_EQ(banco.Mostradas.size(), 501);  // exactly 500 before: nothing deleted

    banco.Mostradas.last().Código_Pergunta = 2000;
    Nova_Rodada(jogo, banco, Hoje, Gerador_Fixo());
    EXPECT_EQ(banco.Mostradas.size(), 501);
    EXPECT_EQ(banco.Mostradas[3].Código_Pergunta, 1004);  // the oldest date went, not the first row

    banco.Mostradas.last().Data_Jogo = Hoje.addYears(-3);  // the question's own row, now the oldest
    EXPECT_EQ(Nova_Rodada(jogo, banco, Hoje, Gerador_Fixo()), Resultado_Rodada::Pergunta_Sorteada);
    banco.Mostradas.removeFirst();  // within 500 rows it stays shown
    EXPECT_EQ(Nova_Rodada(jogo, banco, Hoje, Gerador_Fixo()), Resultado_Rodada::Sem_Pergunta_Disponível);
}

TEST(Embaralha_Teste, EachAnswerGoesToAFreePlaceDrawnAgainWhenTaken) {
    const auto respostas = Embaralha_Respostas(
        Pergunta(1), Sequência({Dá(2, 4), Dá(2, 4), Dá(0, 4), Dá(3, 4), Dá(0, 4), Dá(1, 4)}));
    EXPECT_EQ(respostas, (std::array<QString, 4>{"Errada 1", "Errada 3", "Certa", "Errada 2"}));
}

TEST(Hall_Teste, TheBestTenStayTheLaterOfEqualScoresHigherAndTheGameRanksTheHigherNumberFirst) {
    QList<Linha_Hall> linhas;
    for (int i = 1; i <= 9; ++i) linhas.append({QString("Antigo %1").arg(i), i * 100.0});
    linhas.append({Texto_Jogador_Hall(Hoje, "Ana"), 5000000000.0});
    linhas.append({Texto_Jogador_Hall(Hoje, QString(45, 'b')), 200});
    linhas.append({Texto_Jogador_Hall(Hoje, "Caio"), 300});
    const QList<Linha_Hall> hall = Classifica_Hall(linhas);
    ASSERT_EQ(hall.size(), Linhas_Hall);
    EXPECT_EQ(hall[0].Jogador, "14/03/2019 Ana");
    EXPECT_EQ(hall[0].Pontuação, 5000000000.0);
    EXPECT_EQ(hall[7].Jogador, "14/03/2019 Caio");                 // 300, written after "Antigo 3"
    EXPECT_EQ(hall[9].Jogador, "14/03/2019 " + QString(39, 'b'));  // of the two 200s the older went

    Estado_Jogo jogo;
    jogo.Quantidade_Jogadores = 4;
    jogo.Pontos = {0, 30, 0, 30, 0};
    EXPECT_EQ(Classificação_Jogo(jogo), (QList<int>{3, 1, 4, 2}));
}

TEST(Sorteio_Teste, EveryNumberOfTheRangeComesOnceThenMessage24) {
    Estado_Sorteio um;
    EXPECT_EQ(Novo_Sorteio(um, 1, Gerador_Fixo()).Exibidos.size(), 6 * 50 + 5);  // six stages spin
    EXPECT_EQ(Novo_Sorteio(um, 1, Gerador_Fixo()).Efeito, Efeito_Sorteio::Todos_Sorteados);

    Estado_Sorteio cinco;
    for (int i = 0; i < 5; ++i) Novo_Sorteio(cinco, 5, Gerador_Fixo());
    EXPECT_EQ(QSet<int>(cinco.Números_Sorteados.begin(), cinco.Números_Sorteados.end()),
              (QSet<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(Novo_Sorteio(cinco, 5, Gerador_Fixo()).Efeito, Efeito_Sorteio::Todos_Sorteados);

    Estado_Sorteio mil;
    const Desfecho_Sorteio giro = Novo_Sorteio(mil, 1000, Sequência({Dá(499, 1000)}));
    EXPECT_EQ(giro.Exibidos.size(), 4 * 50 + 5);
    EXPECT_EQ(giro.Número, 500);
}

TEST(Sorteio_Teste, ALoweredFinalValueAStuckSourceAndTheLimitOf1000EndCleanly) {
    Estado_Sorteio sorteio;
    sorteio.Números_Sorteados = {8, 9, 1, 2, 3};
    EXPECT_EQ(Novo_Sorteio(sorteio, 3, Gerador_Fixo()).Efeito, Efeito_Sorteio::Todos_Sorteados);
    EXPECT_EQ(Novo_Sorteio(sorteio, 5, Sequência({Dá(0, 5)})).Número, 4);

    Estado_Sorteio cheio;
    for (int n = 1; n <= Limite_Sorteados; ++n) cheio.Números_Sorteados.append(n);
    EXPECT_EQ(Novo_Sorteio(cheio, 1000, Gerador_Fixo()).Efeito, Efeito_Sorteio::Todos_Sorteados);
    EXPECT_EQ(Novo_Sorteio(cheio, 5000, Gerador_Fixo()).Efeito, Efeito_Sorteio::Limite_Atingido);
    const QList<int> exibidos = Contemplados_Exibidos(cheio);
    ASSERT_EQ(exibidos.size(), Contemplados_Visíveis);
    EXPECT_EQ(exibidos.first(), 1000);
    EXPECT_EQ(exibidos.last(), 987);
}

TEST(Acaso_Teste, WithoutAFunctionTheProgramsSeededGeneratorDraws) {
    Plataforma_Roteirizada plataforma;
    plataforma.Leituras_Segundos = {2, 3, 4, 5};
    plataforma.Sorteios = {0.55};
    const Acaso acaso;
    acaso.Semeia();
    EXPECT_EQ(plataforma.Última_Semente, 120.0f);
    EXPECT_EQ(acaso.Sorteia(10), 5);
}
