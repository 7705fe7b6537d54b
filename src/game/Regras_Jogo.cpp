#include "game/Regras_Jogo.h"

#include <QSet>
#include <algorithm>
#include <cmath>
#include <utility>

#include "common/Globais.h"

namespace {

// Draws before a "draw until it fits" gives up and tries the values in order.
constexpr int Tentativas_Sorteio = 1000;
// Random draws of a question code, per code that can be drawn, before the codes are looked at in order.
constexpr int Tentativas_Por_Código = 10;

// Draws with bound `limite` until `aceita` takes the value. Gives -1 when no value fits.
int Sorteia_Até(const Acaso& acaso, int limite, const std::function<bool(int)>& aceita) {
    for (int tentativa = 0; tentativa < Tentativas_Sorteio; ++tentativa) {
        const int valor = acaso.Sorteia(limite);
        if (aceita(valor)) return valor;
    }
    for (int valor = 0; valor < limite; ++valor) {
        if (aceita(valor)) return valor;
    }
    return -1;
}

int Competidores(const Estado_Jogo& jogo) {
    return std::clamp(jogo.Quantidade_Jogadores, 0, Máximo_Jogadores);
}

bool Jogador_Válido(int jogador) {
    return jogador >= 1 && jogador <= Máximo_Jogadores;
}

// One pass of the drawing loop over a code: the row, the kind filter, the trimming of the history and
// the history itself.
std::optional<Registro_Pergunta> Examina_Código(Fonte_Perguntas& fonte, int código,
                                                const QString& tipo_pergunta) {
    std::optional<Registro_Pergunta> pergunta = fonte.Busca_Pergunta(código);
    if (!pergunta) return std::nullopt;
    if (!Passa_Filtro_Tipo(tipo_pergunta, pergunta->Tipo)) return std::nullopt;
    if (fonte.Quantidade_Mostradas() > Limite_Histórico) fonte.Exclui_Mostrada_Mais_Antiga();
    if (fonte.Já_Mostrada(código)) return std::nullopt;
    return pergunta;
}

}  // namespace

// ---------------------------------------------------------------------------------------------------
// Chance

Acaso::Acaso(std::function<double()> uniforme) : Uniforme(std::move(uniforme)) {}

void Acaso::Semeia() const {
    if (!Uniforme) Semeia_Gerador();
}

int Acaso::Sorteia(int limite) const {
    if (limite <= 0) return 0;
    const int valor = Uniforme ? static_cast<int>(std::floor(Uniforme() * limite)) : ::Sorteia(limite);
    return std::clamp(valor, 0, limite - 1);
}

// ---------------------------------------------------------------------------------------------------
// The question bank in memory

int Perguntas_Em_Memória::Quantidade_Perguntas() {
    return static_cast<int>(Perguntas.size());
}

std::optional<Registro_Pergunta> Perguntas_Em_Memória::Busca_Pergunta(int código) {
    for (const Registro_Pergunta& pergunta : Perguntas) {
        if (pergunta.Código_Pergunta == código) return pergunta;
    }
    return std::nullopt;
}

int Perguntas_Em_Memória::Quantidade_Mostradas() {
    return static_cast<int>(Mostradas.size());
}

void Perguntas_Em_Memória::Exclui_Mostrada_Mais_Antiga() {
    if (Mostradas.isEmpty()) return;
    const auto mais_antiga = std::min_element(
        Mostradas.begin(), Mostradas.end(),
        [](const Registro_Mostrada& a, const Registro_Mostrada& b) { return a.Data_Jogo < b.Data_Jogo; });
    Mostradas.erase(mais_antiga);
}

bool Perguntas_Em_Memória::Já_Mostrada(int código) {
    return std::any_of(Mostradas.begin(), Mostradas.end(),
                       [código](const Registro_Mostrada& linha) { return linha.Código_Pergunta == código; });
}

void Perguntas_Em_Memória::Registra_Mostrada(int código, const QDate& data) {
    Mostradas.append({código, data});
}

// ---------------------------------------------------------------------------------------------------
// The state of the game and the value of a question

Estado_Jogo::Estado_Jogo() {
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        Nível[i] = 1;
        Valor_Jogador[i] = Valor_Inicial;
        Ativo[i] = true;
        Ajuda_Disponível[i].fill(true);
    }
}

double Valor_Após_Acerto(double valor) {
    return valor * 2;
}

double Valor_Após_Erro(double valor) {
    return std::max(1.0, std::floor(valor / 2));
}

double Valor_Após_Pulo(double valor) {
    return std::max(1.0, std::floor(valor / 1.25));
}

// ---------------------------------------------------------------------------------------------------
// The names

QString Nome_Formatado(const QString& nome) {
    return nome.left(1).toUpper() + nome.mid(1, 50).toLower();
}

bool Registra_Jogador(Estado_Jogo& jogo, int índice, const QString& nome) {
    if (!Jogador_Válido(índice)) return false;
    jogo.Nome_Jogador[índice] = nome;
    if (!nome.isEmpty()) {
        ++jogo.Quantidade_Jogadores;
        jogo.Pontos[índice] = 0;
    }
    return nome.isEmpty() || jogo.Quantidade_Jogadores >= Máximo_Jogadores;
}

// ---------------------------------------------------------------------------------------------------
// The question of a turn

bool Passa_Filtro_Tipo(const QString& tipo_pergunta, const QString& tipo) {
    if (tipo_pergunta == "A") return true;
    if (tipo_pergunta == "B") return tipo == "B";
    if (tipo_pergunta == "G") return tipo == "G";
    return false;
}

std::optional<Registro_Pergunta> Sorteia_Pergunta(Fonte_Perguntas& fonte, const QString& tipo_pergunta,
                                                  const Acaso& acaso) {
    const int n = fonte.Quantidade_Perguntas();
    if (n <= 0) return std::nullopt;

    // The draw counts rows, not the highest code: codes from 0 to n, a gap only costs another round.
    acaso.Semeia();
    const int tentativas = Tentativas_Por_Código * (n + 1);
    for (int tentativa = 0; tentativa < tentativas; ++tentativa) {
        std::optional<Registro_Pergunta> pergunta =
            Examina_Código(fonte, acaso.Sorteia(n + 1), tipo_pergunta);
        if (pergunta) return pergunta;
    }

    // So many misses: look at every code that can be drawn once, and take one of those that pass.
    QList<Registro_Pergunta> livres;
    for (int código = 0; código <= n; ++código) {
        std::optional<Registro_Pergunta> pergunta = Examina_Código(fonte, código, tipo_pergunta);
        if (pergunta) livres.append(*pergunta);
    }
    if (livres.isEmpty()) return std::nullopt;
    return livres[acaso.Sorteia(static_cast<int>(livres.size()))];
}

std::array<QString, 4> Embaralha_Respostas(const Registro_Pergunta& pergunta, const Acaso& acaso) {
    const std::array<QString, 4> respostas = {pergunta.Resposta_Correta, pergunta.Resposta_Incorreta_1,
                                              pergunta.Resposta_Incorreta_2, pergunta.Resposta_Incorreta_3};
    std::array<QString, 4> lugares;
    acaso.Semeia();
    for (int contador = 0; contador < 4; ++contador) {
        // There is always an empty place left, so a place is always found.
        const int k = Sorteia_Até(acaso, 4, [&lugares](int i) { return lugares[i].isEmpty(); });
        lugares[k] = respostas[contador];
    }
    return lugares;
}

Resultado_Rodada Nova_Rodada(Estado_Jogo& jogo, Fonte_Perguntas& fonte, const QDate& hoje,
                             const Acaso& acaso) {
    jogo.Vez_Em_Andamento = false;
    jogo.Ajuda_Usada_Na_Vez = false;
    jogo.Pergunta_Atual = Registro_Pergunta();
    jogo.Respostas_Exibidas = {};
    if (Jogador_Válido(jogo.Jogador_Atual)) jogo.Valor_Pergunta = jogo.Valor_Jogador[jogo.Jogador_Atual];

    if (fonte.Quantidade_Perguntas() <= 0) {
        jogo.Terminado = true;
        return Resultado_Rodada::Banco_Vazio;
    }
    const std::optional<Registro_Pergunta> pergunta = Sorteia_Pergunta(fonte, jogo.Tipo_Pergunta, acaso);
    if (!pergunta) {
        jogo.Terminado = true;
        return Resultado_Rodada::Sem_Pergunta_Disponível;
    }

    jogo.Pergunta_Atual = *pergunta;
    jogo.Respostas_Exibidas = Embaralha_Respostas(*pergunta, acaso);
    fonte.Registra_Mostrada(pergunta->Código_Pergunta, hoje);
    jogo.Vez_Em_Andamento = true;
    return Resultado_Rodada::Pergunta_Sorteada;
}

// ---------------------------------------------------------------------------------------------------
// Answers and helps

Desfecho_Resposta Responde(Estado_Jogo& jogo, int índice, const Acaso& acaso) {
    Desfecho_Resposta desfecho;
    const int j = jogo.Jogador_Atual;
    if (!jogo.Vez_Em_Andamento || !Jogador_Válido(j) || índice < 0 || índice > 3) return desfecho;
    const QString& resposta = jogo.Respostas_Exibidas[índice];
    if (resposta.isEmpty()) return desfecho;

    jogo.Vez_Em_Andamento = false;
    if (resposta == jogo.Pergunta_Atual.Resposta_Correta) {
        jogo.Pontos[j] += jogo.Valor_Pergunta;
        ++jogo.Nível[j];
        jogo.Valor_Jogador[j] = Valor_Após_Acerto(jogo.Valor_Jogador[j]);
        desfecho.Efeito = Efeito_Resposta::Certa;
        return desfecho;
    }

    jogo.Valor_Jogador[j] = Valor_Após_Erro(jogo.Valor_Jogador[j]);
    std::array<bool, Quantidade_Ajudas>& ajudas = jogo.Ajuda_Disponível[j];
    const int restantes = static_cast<int>(std::count(ajudas.begin(), ajudas.end(), true));
    if (restantes == 0) {
        jogo.Ativo[j] = false;
        desfecho.Efeito = Efeito_Resposta::Fora_Do_Jogo;
        return desfecho;
    }
    acaso.Semeia();
    const int r = Sorteia_Até(acaso, Quantidade_Ajudas, [&ajudas](int ajuda) { return ajudas[ajuda]; });
    ajudas[r] = false;
    desfecho.Efeito = Efeito_Resposta::Errada;
    desfecho.Ajuda_Retirada = r;
    return desfecho;
}

int Rola_Dado(const Acaso& acaso, QList<int>* faces) {
    acaso.Semeia();
    return Sorteia_Até(acaso, 7, [faces](int face) {
        if (faces) faces->append(face);
        return face >= 1 && face <= 3;
    });
}

int Elimina_Respostas(std::array<QString, 4>& respostas, const QString& resposta_correta, int quantidade,
                      const Acaso& acaso) {
    const auto pode_sair = [&](int k) { return !respostas[k].isEmpty() && respostas[k] != resposta_correta; };
    int eliminadas = 0;
    acaso.Semeia();
    while (quantidade > 0) {
        const int k = Sorteia_Até(acaso, 4, pode_sair);
        if (k < 0) break;
        respostas[k].clear();
        --quantidade;
        ++eliminadas;
    }
    return eliminadas;
}

Desfecho_Ajuda Usa_Ajuda(Estado_Jogo& jogo, int índice, const Acaso& acaso) {
    Desfecho_Ajuda desfecho;
    const int j = jogo.Jogador_Atual;
    if (!jogo.Vez_Em_Andamento || jogo.Ajuda_Usada_Na_Vez || !Jogador_Válido(j)) return desfecho;
    if (índice < 0 || índice >= Quantidade_Ajudas || !jogo.Ajuda_Disponível[j][índice]) return desfecho;
    jogo.Ajuda_Usada_Na_Vez = true;

    if (índice <= Ajuda_Pular_3) {
        int pulo = Ajuda_Pular_1;
        while (!jogo.Ajuda_Disponível[j][pulo]) ++pulo;  // stops at `índice` at the latest
        jogo.Ajuda_Disponível[j][pulo] = false;
        jogo.Valor_Jogador[j] = Valor_Após_Pulo(jogo.Valor_Jogador[j]);
        jogo.Vez_Em_Andamento = false;
        desfecho.Efeito = Efeito_Ajuda::Pulo;
        desfecho.Ajuda_Gasta = pulo;
        return desfecho;
    }

    jogo.Ajuda_Disponível[j][índice] = false;
    desfecho.Ajuda_Gasta = índice;
    if (índice == Ajuda_Dado) desfecho.Quantidade_Eliminar = Rola_Dado(acaso, &desfecho.Faces_Dado);
    if (índice == Ajuda_Apóstolos) desfecho.Quantidade_Eliminar = 2;
    if (índice == Ajuda_Deus) desfecho.Quantidade_Eliminar = 3;
    desfecho.Eliminadas = Elimina_Respostas(jogo.Respostas_Exibidas, jogo.Pergunta_Atual.Resposta_Correta,
                                            desfecho.Quantidade_Eliminar, acaso);
    desfecho.Efeito = Efeito_Ajuda::Respostas_Eliminadas;
    return desfecho;
}

// ---------------------------------------------------------------------------------------------------
// The turn and the end of the game

bool Próximo_Competidor(Estado_Jogo& jogo) {
    const int quantidade = Competidores(jogo);
    jogo.Vez_Em_Andamento = false;

    int ativos = 0;
    for (int i = 1; i <= quantidade; ++i) {
        if (jogo.Ativo[i]) ++ativos;
    }
    if (ativos == 0) {
        jogo.Terminado = true;
        return false;
    }

    int próximo = jogo.Jogador_Atual;
    do {
        ++próximo;
        if (próximo > quantidade) próximo = 1;
    } while (!jogo.Ativo[próximo]);
    jogo.Jogador_Atual = próximo;
    return true;
}

QString Texto_Jogador_Hall(const QDate& data, const QString& nome) {
    return (data.toString("dd/MM/yyyy") + " " + nome).left(Tamanho_Jogador_Hall);
}

QList<Linha_Hall> Classifica_Hall(const QList<Linha_Hall>& linhas) {
    // Ascending as on idxPontuação, equal scores in the order of writing; read from the top end.
    QList<Linha_Hall> ordem = linhas;
    std::stable_sort(ordem.begin(), ordem.end(),
                     [](const Linha_Hall& a, const Linha_Hall& b) { return a.Pontuação < b.Pontuação; });
    std::reverse(ordem.begin(), ordem.end());
    if (ordem.size() > Linhas_Hall) ordem.resize(Linhas_Hall);
    return ordem;
}

QList<int> Classificação_Jogo(const Estado_Jogo& jogo) {
    const int quantidade = Competidores(jogo);
    std::array<bool, Máximo_Jogadores + 1> já_classificado{};
    QList<int> classificação;
    for (int vez = 0; vez < quantidade; ++vez) {
        int melhor = 0;
        for (int j = 1; j <= quantidade; ++j) {
            // An equal score lets the later competitor through.
            if (!já_classificado[j] && (melhor == 0 || jogo.Pontos[j] >= jogo.Pontos[melhor])) melhor = j;
        }
        já_classificado[melhor] = true;
        classificação.append(melhor);
    }
    return classificação;
}

// ---------------------------------------------------------------------------------------------------
// The raffle

Desfecho_Sorteio Novo_Sorteio(Estado_Sorteio& sorteio, int número_final, const Acaso& acaso) {
    Desfecho_Sorteio desfecho;
    const QList<int>& sorteados = sorteio.Números_Sorteados;
    const auto na_faixa = std::count_if(sorteados.begin(), sorteados.end(),
                                        [número_final](int n) { return n >= 1 && n <= número_final; });
    if (na_faixa >= número_final) {
        desfecho.Efeito = Efeito_Sorteio::Todos_Sorteados;
        return desfecho;
    }
    if (sorteados.size() >= Limite_Sorteados) {
        desfecho.Efeito = Efeito_Sorteio::Limite_Atingido;
        return desfecho;
    }

    acaso.Semeia();
    // The spin: large numbers first, shrinking stage by stage to about the width of the range.
    static const std::array<int, 7> faixas = {0, 9, 99, 999, 9999, 99999, 999999};
    for (int estágio = 6; estágio >= 1; --estágio) {
        for (int vez = 0; vez < 50; ++vez)
            desfecho.Exibidos.append(acaso.Sorteia(estágio * faixas[estágio]) + 1);
        if (faixas[estágio] < número_final) break;
    }

    // The draw: five numbers shown, the last one counts, again while it came up before.
    int número = 0;
    bool repetido = true;
    for (int rodada = 0; rodada < Tentativas_Sorteio && repetido; ++rodada) {
        for (int vez = 0; vez < 5; ++vez) {
            número = acaso.Sorteia(número_final) + 1;
            desfecho.Exibidos.append(número);
        }
        repetido = sorteados.contains(número);
    }
    if (repetido) {
        const QSet<int> já_saíram(sorteados.begin(), sorteados.end());
        QList<int> livres;
        for (int n = 1; n <= número_final; ++n) {
            if (!já_saíram.contains(n)) livres.append(n);
        }
        número = livres[acaso.Sorteia(static_cast<int>(livres.size()))];
        desfecho.Exibidos.append(número);
    }

    sorteio.Números_Sorteados.append(número);
    desfecho.Efeito = Efeito_Sorteio::Sorteado;
    desfecho.Número = número;
    return desfecho;
}

QList<int> Contemplados_Exibidos(const Estado_Sorteio& sorteio) {
    QList<int> exibidos;
    const QList<int>& sorteados = sorteio.Números_Sorteados;
    for (qsizetype i = sorteados.size() - 1; i >= 0 && exibidos.size() < Contemplados_Visíveis; --i) {
        exibidos.append(sorteados[i]);
    }
    return exibidos;
}
