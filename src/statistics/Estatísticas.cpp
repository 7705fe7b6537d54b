#include "statistics/Estatísticas.h"

#include <QtMath>
#include <algorithm>

#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Comando_Banco.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "store/Tradutor_SQL.h"
#include "store/schema/Esquema.h"

namespace Estatísticas {

namespace {
const QString Fonte_Estatísticas = "Estatísticas";

QVector<Definição_Tabela> Tabelas_Estatísticas() {
    return {
        {"tblJogada",
         {Automático("Código_Jogada"), Data("Data_Jogada"), Longo("Dia"), Data("Início_Jogo"),
          Longo("Código_Pergunta"), Texto("Tipo", 1), Texto("Jogador", 60), Longo("Posição"),
          Texto("Desfecho", 10), Texto("Resposta_Escolhida", 50, true), Longo("Número_Resposta"),
          Texto("Ajuda", 10), Longo("Número_Dado"), Duplo("Valor"), Duplo("Segundos")},
         {}},
        {"tblResumo_Mensal",
         {Longo("Mês"), Longo("Código_Pergunta"), Texto("Tipo", 1), Longo("Respostas"), Longo("Acertos"),
          Longo("Escolha_1"), Longo("Escolha_2"), Longo("Escolha_3"), Longo("Pulos"), Longo("Dado"),
          Longo("Dado_1"), Longo("Dado_2"), Longo("Dado_3"), Longo("Apóstolos"), Longo("Deus")},
         {Único("idxMês_Pergunta", {"Mês", "Código_Pergunta"}),
          Simples("idxCódigo_Pergunta", {"Código_Pergunta"})}},
        {"tblResumo_Jogador",
         {Data("Início_Jogo"), Longo("Mês"), Longo("Posição"), Texto("Jogador", 60), Duplo("Pontos"),
          Longo("Respostas"), Longo("Acertos")},
         {Único("idxJogo_Posição", {"Início_Jogo", "Posição"}), Simples("idxMês", {"Mês"})}},
        {"tblResumo_Marca", {Longo("Última_Jogada")}, {}},
    };
}

const QString Insere_Jogada =
    "INSERT INTO tblJogada (Data_Jogada, Dia, Início_Jogo, Código_Pergunta, Tipo, Jogador, Posição, "
    "Desfecho, Resposta_Escolhida, Número_Resposta, Ajuda, Número_Dado, Valor, Segundos) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

const QString Soma_Mensal =
    "INSERT INTO tblResumo_Mensal (Mês, Código_Pergunta, Tipo, Respostas, Acertos, Escolha_1, Escolha_2, "
    "Escolha_3, Pulos, Dado, Dado_1, Dado_2, Dado_3, Apóstolos, Deus) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT (Mês, Código_Pergunta) DO UPDATE SET "
    "Respostas = tblResumo_Mensal.Respostas + excluded.Respostas, Acertos = tblResumo_Mensal.Acertos + "
    "excluded.Acertos, "
    "Escolha_1 = tblResumo_Mensal.Escolha_1 + excluded.Escolha_1, Escolha_2 = tblResumo_Mensal.Escolha_2 + "
    "excluded.Escolha_2, "
    "Escolha_3 = tblResumo_Mensal.Escolha_3 + excluded.Escolha_3, Pulos = tblResumo_Mensal.Pulos + "
    "excluded.Pulos, "
    "Dado = tblResumo_Mensal.Dado + excluded.Dado, Dado_1 = tblResumo_Mensal.Dado_1 + excluded.Dado_1, "
    "Dado_2 = tblResumo_Mensal.Dado_2 + excluded.Dado_2, "
    "Dado_3 = tblResumo_Mensal.Dado_3 + excluded.Dado_3, Apóstolos = tblResumo_Mensal.Apóstolos + "
    "excluded.Apóstolos, "
    "Deus = tblResumo_Mensal.Deus + excluded.Deus";

const QString Soma_Jogador =
    "INSERT INTO tblResumo_Jogador (Início_Jogo, Mês, Posição, Jogador, Pontos, Respostas, Acertos) "
    "VALUES (?, ?, ?, ?, ?, ?, ?) ON CONFLICT (Início_Jogo, Posição) DO UPDATE SET "
    "Pontos = tblResumo_Jogador.Pontos + excluded.Pontos, Respostas = tblResumo_Jogador.Respostas + "
    "excluded.Respostas, "
    "Acertos = tblResumo_Jogador.Acertos + excluded.Acertos";

// The session that records; held with a logical connection of its own, so that others closing theirs do
// not take the file away from under it.
std::shared_ptr<Sessão>& Sessão_Guardada() {
    static std::shared_ptr<Sessão> sessão;
    return sessão;
}

std::shared_ptr<Sessão> Sessão_Estatísticas(Falha_Banco& falha) {
    auto& guardada = Sessão_Guardada();
    // The one held, while it is still the file of this folder (tests and relocated installs change it).
    if (guardada && Sessão::Procura(Caminho_Banco_Estatísticas()) == guardada) return guardada;
    Fecha_Banco_Estatísticas();
    auto sessão = Sessão::Abre(Caminho_Banco_Estatísticas(), falha);
    if (!sessão) return nullptr;
    ++sessão->Conexões_Lógicas;
    // A killed program keeps every committed turn in the journal; the flush to the disk is left to the
    // checkpoints, so a turn does not wait for it, and the checkpoints to a thread of their own, so that
    // no turn waits for them either.
    if (!sessão->Servidor()) {
        Falha_Banco ignorada;
        sessão->Executa("PRAGMA synchronous=NORMAL", ignorada);
        sessão->Descarga_Em_Segundo_Plano();
    }
    guardada = sessão;
    return sessão;
}

void Liga(Comando_Banco* c, int posição, const QString& texto) {
    c->Liga_Texto(posição, texto.toUtf8());
}

bool Passo_Até_O_Fim(Sessão& sessão, Comando_Banco* comando, Falha_Banco& falha) {
    const int r = comando->Passo();
    if (r == Fim_Comando || r == Linha_Pronta) {
        comando->Reinicia();
        return true;
    }
    sessão.Falha_Da_Última(falha, r);
    comando->Reinicia();
    return false;
}

int Mês_De(const QDate& dia) {
    return dia.year() * 100 + dia.month();
}

const QString Texto_Falha_Resumos = "Não foi possível atualizar os resumos das estatísticas dos jogos";

void Registra_No_Log(
    const Falha_Banco& falha, const QString& rotina,
    const QString& texto = "Não foi possível registrar a jogada nas estatísticas dos jogos") {
    const QString anterior = Mensagem_Erro;
    Mensagem_Erro = texto + " (" + falha.Descrição + ")";
    Registra_Ocorrência(falha.Número, Fonte_Estatísticas, rotina, 0);
    Mensagem_Erro = anterior;
}
}  // namespace

QString Caminho_Banco_Estatísticas() {
    return Caminho_Dados() + "/" + Arquivo_Estatísticas;
}

bool Garante_Banco_Estatísticas() {
    const QString caminho = Caminho_Banco_Estatísticas();
    // A file that is not a database any more (a disk that failed, a copy cut short) is set aside under a
    // dated name, and the statistics start again: the program never stops for them.
    if (Existe_Banco(caminho)) {
        Falha_Banco falha;
        if (!Sessão::Procura(caminho) && !Sessão::Abre(caminho, falha) &&
            !Conexão_Do_Servidor(caminho).isEmpty())
            return false;  // a server that does not answer: nothing to set aside
        if (falha.Houve()) {
            Registra_No_Log(falha, "Garante_Banco_Estatísticas",
                            "O banco de dados das estatísticas dos jogos não pôde ser aberto e foi refeito");
            const QString destino =
                Guarda_Arquivo_Banco(caminho, Caminho_Dados() + "/Arquivo", Plataforma_Atual().Agora());
            if (destino.isEmpty()) Exclui_Arquivo_Banco(caminho);
        }
    }
    if (!Existe_Banco(caminho)) {
        Falha_Banco falha;
        if (!Sessão::Cria_Arquivo(caminho, falha)) {
            Registra_No_Log(falha, "Garante_Banco_Estatísticas",
                            "Não foi possível criar o banco de dados das estatísticas dos jogos");
            return false;
        }
    }
    Ligação conexão;
    conexão.Open(Texto_Conexão(caminho));
    if (!conexão.Aberta()) return false;
    for (const Definição_Tabela& d : Tabelas_Estatísticas()) {
        if (!Catálogo::Existe_Tabela(conexão, d.Nome)) Catálogo::Cria_Tabela(conexão, d.Nome, d.Campos);
        const Estrutura_Tabela atual = Catálogo::Estrutura(conexão, d.Nome);
        for (const Índice_Info& índice : d.Índices)
            if (atual.Índice(índice.Nome) == nullptr) Catálogo::Adiciona_Índice(conexão, d.Nome, índice);
        // The turns are read only whole, in the order they were played: the indexes that files of before
        // kept on them served no reader and cost every recorded turn a page each.
        if (d.Nome == "tblJogada")
            for (const QString índice : {"idxCódigo_Jogada", "idxDia", "idxCódigo_Pergunta"})
                if (atual.Índice(índice) != nullptr) Catálogo::Exclui_Índice(conexão, d.Nome, índice);
    }
    conexão.Close();
    // Turns of a game that was not allowed to end (a program killed, a power cut) join the summaries here.
    Falha_Banco falha;
    if (!Atualiza_Resumos(falha)) Registra_No_Log(falha, "Garante_Banco_Estatísticas", Texto_Falha_Resumos);
    return true;
}

void Fecha_Banco_Estatísticas() {
    auto& guardada = Sessão_Guardada();
    if (!guardada) return;
    if (--guardada->Conexões_Lógicas <= 0) guardada->Retira_do_Registro();
    guardada.reset();
}

bool Grava_Jogada(const Jogada& j, Falha_Banco& falha) {
    auto sessão = Sessão_Estatísticas(falha);
    if (!sessão) return false;
    Falha_Banco ignorada;
    sessão->Inicia();
    if (!sessão->Prepara_Escrita(falha)) {
        sessão->Desfaz(ignorada);
        return false;
    }
    Comando_Banco* c = sessão->Prepara(Insere_Jogada, falha);
    bool ok = c != nullptr;
    if (ok) {
        Liga(c, 1, Data_Para_Banco(j.Data_Jogada));
        c->Liga_Inteiro(2, Mês_De(j.Data_Jogada.date()) * 100 + j.Data_Jogada.date().day());
        Liga(c, 3, Data_Para_Banco(j.Início_Jogo));
        c->Liga_Inteiro(4, j.Código_Pergunta);
        Liga(c, 5, j.Tipo.left(1));
        Liga(c, 6, j.Jogador.left(60));
        c->Liga_Inteiro(7, j.Posição);
        Liga(c, 8, j.Desfecho);
        Liga(c, 9, j.Resposta_Escolhida.left(50));
        if (j.Número_Resposta < 0)
            c->Liga_Nulo(10);
        else
            c->Liga_Inteiro(10, j.Número_Resposta);
        Liga(c, 11, j.Ajuda);
        c->Liga_Inteiro(12, j.Número_Dado);
        c->Liga_Real(13, j.Valor);
        c->Liga_Real(14, j.Segundos);
        ok = Passo_Até_O_Fim(*sessão, c, falha);
    }
    if (!ok) {
        sessão->Desfaz(ignorada);
        return false;
    }
    return sessão->Confirma(falha);
}

namespace {
// What the turns since the last bringing up to date add to one row of each summary.
struct Soma_Mensal_Pendente {
    QString Tipo;
    // Respostas, Acertos, Escolha_1 to _3, Pulos, Dado, Dado_1 to _3, Apóstolos, Deus: as in Soma_Mensal.
    std::array<qint64, 12> Contagens{};
};
struct Soma_Jogador_Pendente {
    QString Jogador;
    double Pontos = 0;
    qint64 Respostas = 0;
    qint64 Acertos = 0;
};

bool Lê_Marca(Sessão& sessão, qint64& última, bool& existe, Falha_Banco& falha) {
    Comando_Banco* c = sessão.Prepara("SELECT Última_Jogada FROM tblResumo_Marca", falha);
    if (c == nullptr) return false;
    const int r = c->Passo();
    existe = r == Linha_Pronta;
    if (existe) última = c->Inteiro(0);
    c->Reinicia();
    if (r != Linha_Pronta && r != Fim_Comando) {
        sessão.Falha_Da_Última(falha, r);
        return false;
    }
    return true;
}

bool Soma_Pendentes(Sessão& sessão, qint64 depois_de, qint64& última,
                    QMap<QPair<int, int>, Soma_Mensal_Pendente>& meses,
                    QMap<QPair<QString, int>, Soma_Jogador_Pendente>& jogadores, Falha_Banco& falha) {
    Comando_Banco* c = sessão.Prepara(
        "SELECT Código_Jogada, Dia, Início_Jogo, Código_Pergunta, Tipo, Jogador, Posição, Desfecho, "
        "Número_Resposta, Ajuda, Número_Dado, Valor FROM tblJogada WHERE Código_Jogada > ? ORDER BY "
        "Código_Jogada",
        falha);
    if (c == nullptr) return false;
    c->Liga_Inteiro(1, depois_de);
    int r;
    while ((r = c->Passo()) == Linha_Pronta) {
        última = c->Inteiro(0);
        const bool pulo = c->Texto(7) == Desfecho_Pulada;
        const bool certa = c->Texto(7) == Desfecho_Certa;
        const qint64 número = c->Tipo(8) == Tipo_Valor::Nulo ? -1 : c->Inteiro(8);
        const QString ajuda = c->Texto(9);
        const bool dado = ajuda == Ajuda_Dado_Texto;
        const qint64 face = c->Inteiro(10);
        Soma_Mensal_Pendente& m =
            meses[{static_cast<int>(c->Inteiro(1) / 100), static_cast<int>(c->Inteiro(3))}];
        if (m.Tipo.isEmpty()) m.Tipo = c->Texto(4);
        const std::array<bool, 12> conta = {!pulo,
                                            certa,
                                            número == 1,
                                            número == 2,
                                            número == 3,
                                            pulo,
                                            dado,
                                            dado && face == 1,
                                            dado && face == 2,
                                            dado && face == 3,
                                            ajuda == Ajuda_Apóstolos_Texto,
                                            ajuda == Ajuda_Deus_Texto};
        for (int k = 0; k < 12; ++k) m.Contagens[k] += conta[k];
        // The game's start as the recorder wrote it, so that the summary's key is the same text again.
        const QString início = Data_Para_Banco(Data_Do_Banco(c->Texto(2)));
        Soma_Jogador_Pendente& j = jogadores[{início, static_cast<int>(c->Inteiro(6))}];
        if (j.Jogador.isEmpty()) j.Jogador = c->Texto(5);
        if (certa) j.Pontos += c->Real(11);
        j.Respostas += !pulo;
        j.Acertos += certa;
    }
    c->Reinicia();
    if (r != Fim_Comando) {
        sessão.Falha_Da_Última(falha, r);
        return false;
    }
    return true;
}

bool Escreve_Somas(Sessão& sessão, const QMap<QPair<int, int>, Soma_Mensal_Pendente>& meses,
                   const QMap<QPair<QString, int>, Soma_Jogador_Pendente>& jogadores, Falha_Banco& falha) {
    Comando_Banco* c = sessão.Prepara(Soma_Mensal, falha);
    if (c == nullptr) return false;
    for (auto it = meses.cbegin(); it != meses.cend(); ++it) {
        c->Liga_Inteiro(1, it.key().first);
        c->Liga_Inteiro(2, it.key().second);
        Liga(c, 3, it.value().Tipo);
        for (int k = 0; k < 12; ++k) c->Liga_Inteiro(4 + k, it.value().Contagens[k]);
        if (!Passo_Até_O_Fim(sessão, c, falha)) return false;
    }
    c = sessão.Prepara(Soma_Jogador, falha);
    if (c == nullptr) return false;
    for (auto it = jogadores.cbegin(); it != jogadores.cend(); ++it) {
        Liga(c, 1, it.key().first);
        c->Liga_Inteiro(2, Mês_De(Data_Do_Banco(it.key().first).date()));
        c->Liga_Inteiro(3, it.key().second);
        Liga(c, 4, it.value().Jogador);
        c->Liga_Real(5, it.value().Pontos);
        c->Liga_Inteiro(6, it.value().Respostas);
        c->Liga_Inteiro(7, it.value().Acertos);
        if (!Passo_Até_O_Fim(sessão, c, falha)) return false;
    }
    return true;
}
}  // namespace

bool Atualiza_Resumos(Falha_Banco& falha) {
    auto sessão = Sessão_Estatísticas(falha);
    if (!sessão) return false;
    Falha_Banco ignorada;
    const auto desiste = [&] {
        sessão->Desfaz(ignorada);
        return false;
    };
    sessão->Inicia();
    if (!sessão->Prepara_Escrita(falha)) return desiste();
    // On a server, another workstation's turn may get its code before one already committed and commit
    // after it: the lock waits for the turns on their way, and holds new ones back until the mark moves.
    if (sessão->Servidor() && !sessão->Executa("LOCK TABLE tblJogada IN EXCLUSIVE MODE", falha))
        return desiste();
    qint64 marca = 0;
    bool existe = false;
    if (!Lê_Marca(*sessão, marca, existe, falha)) return desiste();
    if (!existe) {
        // A file of before kept its summaries up to date turn by turn: they already hold all its turns.
        if (!sessão->Executa(
                "INSERT INTO tblResumo_Marca (Última_Jogada) SELECT COALESCE(MAX(Código_Jogada), "
                "0) FROM tblJogada",
                falha))
            return desiste();
        return sessão->Confirma(falha);
    }
    QMap<QPair<int, int>, Soma_Mensal_Pendente> meses;
    QMap<QPair<QString, int>, Soma_Jogador_Pendente> jogadores;
    qint64 última = marca;
    if (!Soma_Pendentes(*sessão, marca, última, meses, jogadores, falha)) return desiste();
    if (última == marca) {
        sessão->Desfaz(ignorada);
        return true;
    }
    if (!Escreve_Somas(*sessão, meses, jogadores, falha)) return desiste();
    Comando_Banco* c = sessão->Prepara("UPDATE tblResumo_Marca SET Última_Jogada = ?", falha);
    if (c == nullptr) return desiste();
    c->Liga_Inteiro(1, última);
    if (!Passo_Até_O_Fim(*sessão, c, falha)) return desiste();
    return sessão->Confirma(falha);
}

// ---------- the recorder ----------

Gravador_Jogadas::~Gravador_Jogadas() {
    if (!Gravou) return;
    Falha_Banco falha;
    if (!Atualiza_Resumos(falha)) Registra_No_Log(falha, "Atualiza_Resumos", Texto_Falha_Resumos);
}

void Gravador_Jogadas::Pergunta_Exibida(const Estado_Jogo& jogo) {
    Q_UNUSED(jogo);
    const QDateTime agora = Plataforma_Atual().Agora();
    if (!Início_Jogo.isValid()) Início_Jogo = agora;
    Exibida_Em = agora;
    Ajuda_Da_Vez = Ajuda_Nenhuma;
    Dado_Da_Vez = 0;
}

void Gravador_Jogadas::Resposta(const Estado_Jogo& jogo, int jogador, int índice,
                                const Desfecho_Resposta& desfecho) {
    if (desfecho.Efeito == Efeito_Resposta::Ignorada || índice < 0 || índice > 3) return;
    Jogada jogada;
    jogada.Desfecho = desfecho.Efeito == Efeito_Resposta::Certa    ? Desfecho_Certa
                      : desfecho.Efeito == Efeito_Resposta::Errada ? Desfecho_Errada
                                                                   : Desfecho_Eliminado;
    const Registro_Pergunta& p = jogo.Pergunta_Atual;
    jogada.Resposta_Escolhida = jogo.Respostas_Exibidas[índice];
    // Which stored answer it was; a wrong answer stored with the right one's text counts as right.
    const std::array<QString, 4> guardadas = {p.Resposta_Correta, p.Resposta_Incorreta_1,
                                              p.Resposta_Incorreta_2, p.Resposta_Incorreta_3};
    for (int k = 0; k < 4; ++k)
        if (guardadas[k] == jogada.Resposta_Escolhida) {
            jogada.Número_Resposta = k;
            break;
        }
    jogada.Ajuda = Ajuda_Da_Vez;
    jogada.Número_Dado = Dado_Da_Vez;
    Grava(jogada, jogo, jogador);
}

void Gravador_Jogadas::Ajuda(const Estado_Jogo& jogo, int jogador, int índice,
                             const Desfecho_Ajuda& desfecho) {
    if (desfecho.Efeito == Efeito_Ajuda::Recusada) return;
    if (desfecho.Efeito == Efeito_Ajuda::Pulo) {
        Jogada jogada;
        jogada.Desfecho = Desfecho_Pulada;
        jogada.Ajuda = Ajuda_Pulo;
        Grava(jogada, jogo, jogador);
        return;
    }
    if (índice == Ajuda_Dado) {
        Ajuda_Da_Vez = Ajuda_Dado_Texto;
        Dado_Da_Vez = desfecho.Quantidade_Eliminar;
    } else if (índice == Ajuda_Apóstolos) {
        Ajuda_Da_Vez = Ajuda_Apóstolos_Texto;
    } else if (índice == Ajuda_Deus) {
        Ajuda_Da_Vez = Ajuda_Deus_Texto;
    }
}

void Gravador_Jogadas::Grava(Jogada& jogada, const Estado_Jogo& jogo, int jogador) {
    if (!Gravação_Ligada || jogador < 1 || jogador > Máximo_Jogadores) return;
    const QDateTime agora = Plataforma_Atual().Agora();
    if (!Início_Jogo.isValid()) Início_Jogo = agora;
    jogada.Data_Jogada = agora;
    jogada.Início_Jogo = Início_Jogo;
    jogada.Código_Pergunta = jogo.Pergunta_Atual.Código_Pergunta;
    jogada.Tipo = jogo.Pergunta_Atual.Tipo;
    jogada.Jogador = jogo.Nome_Jogador[jogador];
    jogada.Posição = jogador;
    jogada.Valor = jogo.Valor_Pergunta;
    jogada.Segundos = Exibida_Em.isValid() ? std::max<qint64>(0, Exibida_Em.msecsTo(agora)) / 1000.0 : 0;
    Falha_Banco falha;
    if (Grava_Jogada(jogada, falha)) {
        Gravou = true;
    } else if (!Registrou_Falha) {
        Registrou_Falha = true;
        Registra_No_Log(falha, "Grava_Jogada");
    }
}

// ---------- the figures ----------

namespace {
std::shared_ptr<Sessão> Sessão_Leitura(Falha_Banco& falha) {
    if (!Existe_Banco(Caminho_Banco_Estatísticas())) {
        falha = {-2147467259, "Não foi possível encontrar o arquivo '" + Caminho_Banco_Estatísticas() + "'."};
        return nullptr;
    }
    return Sessão_Estatísticas(falha);
}

// The texts of the questions, from the main database; a question deleted since stays without one.
void Textos_Das_Perguntas(QVector<Números_Pergunta>& perguntas) {
    Falha_Banco falha;
    auto principal = Sessão::Abre(Caminho_Banco_Principal(), falha);
    if (!principal) return;
    Comando_Banco* c =
        principal->Prepara("SELECT Pergunta FROM tblPergunta WHERE Código_Pergunta = ?", falha);
    if (c == nullptr) return;
    for (Números_Pergunta& p : perguntas) {
        c->Reinicia();
        c->Limpa_Valores();
        c->Liga_Inteiro(1, p.Código_Pergunta);
        if (c->Passo() == Linha_Pronta) p.Pergunta = c->Texto(0).trimmed();
    }
    c->Reinicia();
}

bool Mais_Difícil(const Números_Pergunta& a, const Números_Pergunta& b) {
    if (a.Acertos * qint64(b.Respostas) != b.Acertos * qint64(a.Respostas))
        return a.Acertos * qint64(b.Respostas) < b.Acertos * qint64(a.Respostas);
    if (a.Respostas != b.Respostas) return a.Respostas > b.Respostas;
    return a.Código_Pergunta < b.Código_Pergunta;
}

bool Mais_Fácil(const Números_Pergunta& a, const Números_Pergunta& b) {
    if (a.Acertos * qint64(b.Respostas) != b.Acertos * qint64(a.Respostas))
        return a.Acertos * qint64(b.Respostas) > b.Acertos * qint64(a.Respostas);
    if (a.Respostas != b.Respostas) return a.Respostas > b.Respostas;
    return a.Código_Pergunta < b.Código_Pergunta;
}
}  // namespace

bool Calcula(const Filtro_Estatísticas& filtro, Números_Estatísticas& n, Falha_Banco& falha) {
    n = Números_Estatísticas();
    auto sessão = Sessão_Leitura(falha);
    if (!sessão) return false;
    Falha_Banco não_atualizou;
    if (!Atualiza_Resumos(não_atualizou)) Registra_No_Log(não_atualizou, "Calcula", Texto_Falha_Resumos);
    const bool por_tipo = filtro.Tipo == "B" || filtro.Tipo == "G";

    // The months of the period, question by question.
    Comando_Banco* c = sessão->Prepara(
        "SELECT Código_Pergunta, Tipo, Respostas, Acertos, Escolha_1, Escolha_2, Escolha_3, Pulos, Dado, "
        "Dado_1, Dado_2, Dado_3, Apóstolos, Deus, Mês FROM tblResumo_Mensal WHERE Mês >= ? AND Mês <= ?" +
            QString(por_tipo ? " AND Tipo = ?" : ""),
        falha);
    if (c == nullptr) return false;
    c->Liga_Inteiro(1, filtro.Mês_Inicial);
    c->Liga_Inteiro(2, filtro.Mês_Final);
    if (por_tipo) Liga(c, 3, filtro.Tipo);
    QHash<int, Números_Pergunta> perguntas;
    QMap<int, Números_Mês> meses;
    int r;
    while ((r = c->Passo()) == Linha_Pronta) {
        const int código = static_cast<int>(c->Inteiro(0));
        Números_Pergunta& p = perguntas[código];
        p.Código_Pergunta = código;
        if (p.Tipo.isEmpty()) p.Tipo = c->Texto(1);
        const int respostas = static_cast<int>(c->Inteiro(2));
        const int acertos = static_cast<int>(c->Inteiro(3));
        p.Respostas += respostas;
        p.Acertos += acertos;
        for (int k = 0; k < 3; ++k) p.Escolhas_Incorretas[k] += static_cast<int>(c->Inteiro(4 + k));
        const int pulos = static_cast<int>(c->Inteiro(7));
        p.Pulos += pulos;
        auto& tipo = n.Por_Tipo[c->Texto(1)];
        tipo.first += respostas;
        tipo.second += acertos;
        n.Ajudas[Ajuda_Pulo] += pulos;
        n.Ajudas[Ajuda_Dado_Texto] += static_cast<int>(c->Inteiro(8));
        for (int face = 1; face <= 3; ++face) n.Faces_Dado[face] += static_cast<int>(c->Inteiro(8 + face));
        n.Ajudas[Ajuda_Apóstolos_Texto] += static_cast<int>(c->Inteiro(12));
        n.Ajudas[Ajuda_Deus_Texto] += static_cast<int>(c->Inteiro(13));
        const int mês = static_cast<int>(c->Inteiro(14));
        meses[mês].Mês = mês;
        meses[mês].Respostas += respostas;
        n.Respostas += respostas;
        n.Acertos += acertos;
        n.Pulos += pulos;
    }
    c->Reinicia();
    if (r != Fim_Comando) {
        sessão->Falha_Da_Última(falha, r);
        return false;
    }

    // Games, by the month they started in.
    c = sessão->Prepara(
        "SELECT Mês, COUNT(DISTINCT Início_Jogo) FROM tblResumo_Jogador WHERE Mês >= ? AND Mês <= ? "
        "GROUP BY Mês",
        falha);
    if (c == nullptr) return false;
    c->Liga_Inteiro(1, filtro.Mês_Inicial);
    c->Liga_Inteiro(2, filtro.Mês_Final);
    while ((r = c->Passo()) == Linha_Pronta) {
        const int mês = static_cast<int>(c->Inteiro(0));
        meses[mês].Mês = mês;
        meses[mês].Jogos = static_cast<int>(c->Inteiro(1));
        n.Jogos += meses[mês].Jogos;
    }
    c->Reinicia();
    if (r != Fim_Comando) {
        sessão->Falha_Da_Última(falha, r);
        return false;
    }
    n.Por_Mês = meses.values().toVector();

    // The competitors' games in order; only the last games of each are kept.
    c = sessão->Prepara(
        "SELECT Jogador, Início_Jogo, Pontos FROM tblResumo_Jogador WHERE Mês >= ? AND Mês <= ? "
        "ORDER BY Jogador, Início_Jogo",
        falha);
    if (c == nullptr) return false;
    c->Liga_Inteiro(1, filtro.Mês_Inicial);
    c->Liga_Inteiro(2, filtro.Mês_Final);
    QVector<Números_Competidor> competidores;
    while ((r = c->Passo()) == Linha_Pronta) {
        const QString jogador = c->Texto(0);
        if (competidores.isEmpty() || competidores.last().Jogador.compare(jogador, Qt::CaseInsensitive) != 0)
            competidores.append({jogador, 0, 0, {}});
        Números_Competidor& atual = competidores.last();
        const double pontos = c->Real(2);
        ++atual.Jogos;
        atual.Pontos += pontos;
        atual.Pontos_Por_Jogo.append({Data_Do_Banco(c->Texto(1)), pontos});
        if (atual.Pontos_Por_Jogo.size() > Jogos_Por_Competidor) atual.Pontos_Por_Jogo.removeFirst();
    }
    c->Reinicia();
    if (r != Fim_Comando) {
        sessão->Falha_Da_Última(falha, r);
        return false;
    }
    std::stable_sort(
        competidores.begin(), competidores.end(),
        [](const Números_Competidor& a, const Números_Competidor& b) { return a.Jogos > b.Jogos; });
    if (competidores.size() > Competidores_No_Gráfico) competidores.resize(Competidores_No_Gráfico);
    n.Competidores = competidores;

    n.Perguntas = perguntas.values().toVector();
    std::sort(n.Perguntas.begin(), n.Perguntas.end(),
              [](const Números_Pergunta& a, const Números_Pergunta& b) {
                  return a.Código_Pergunta < b.Código_Pergunta;
              });
    Textos_Das_Perguntas(n.Perguntas);
    QVector<Números_Pergunta> respondidas;
    for (const Números_Pergunta& p : n.Perguntas) {
        if (p.Respostas >= Mínimo_Respostas_Extremos) respondidas.append(p);
        if (p.Respostas >= Mínimo_Respostas_Sem_Acerto && p.Acertos == 0) n.Nunca_Acertadas.append(p);
        const int maior_incorreta =
            *std::max_element(p.Escolhas_Incorretas.begin(), p.Escolhas_Incorretas.end());
        if (maior_incorreta > p.Acertos) n.Incorreta_Preferida.append(p);
    }
    n.Mais_Difíceis = respondidas;
    std::sort(n.Mais_Difíceis.begin(), n.Mais_Difíceis.end(), Mais_Difícil);
    if (n.Mais_Difíceis.size() > Quantidade_Extremos) n.Mais_Difíceis.resize(Quantidade_Extremos);
    n.Mais_Fáceis = respondidas;
    std::sort(n.Mais_Fáceis.begin(), n.Mais_Fáceis.end(), Mais_Fácil);
    if (n.Mais_Fáceis.size() > Quantidade_Extremos) n.Mais_Fáceis.resize(Quantidade_Extremos);
    return true;
}

int Primeiro_Mês() {
    Falha_Banco falha;
    if (!Existe_Banco(Caminho_Banco_Estatísticas())) return 0;
    auto sessão = Sessão_Estatísticas(falha);
    if (!sessão) return 0;
    if (!Atualiza_Resumos(falha)) Registra_No_Log(falha, "Primeiro_Mês", Texto_Falha_Resumos);
    Comando_Banco* c = sessão->Prepara("SELECT MIN(Mês) FROM tblResumo_Mensal", falha);
    if (c == nullptr) return 0;
    const int mês = c->Passo() == Linha_Pronta ? static_cast<int>(c->Inteiro(0)) : 0;
    c->Reinicia();
    return mês;
}

QString Resumo_Pergunta(int código_pergunta) {
    Falha_Banco falha;
    if (!Existe_Banco(Caminho_Banco_Estatísticas())) return "Ainda não respondida";
    auto sessão = Sessão_Estatísticas(falha);
    if (!sessão) return QString();
    // The summaries, and the turns of a game still being played (here or at another workstation).
    Comando_Banco* c = sessão->Prepara(
        "SELECT SUM(Respostas), SUM(Acertos) FROM (SELECT Respostas, Acertos FROM tblResumo_Mensal WHERE "
        "Código_Pergunta = ? UNION ALL SELECT CASE WHEN Desfecho = 'Pulada' THEN 0 ELSE 1 END, CASE WHEN "
        "Desfecho = 'Certa' THEN 1 ELSE 0 END FROM tblJogada WHERE Código_Pergunta = ? AND Código_Jogada > "
        "(SELECT Última_Jogada FROM tblResumo_Marca)) AS t",
        falha);
    if (c == nullptr) return QString();
    c->Liga_Inteiro(1, código_pergunta);
    c->Liga_Inteiro(2, código_pergunta);
    qint64 respostas = 0, acertos = 0;
    if (c->Passo() == Linha_Pronta) {
        respostas = c->Inteiro(0);
        acertos = c->Inteiro(1);
    }
    c->Reinicia();
    if (respostas <= 0) return "Ainda não respondida";
    return QString("Respondida %1 %2, %3 de acertos")
        .arg(respostas)
        .arg(respostas == 1 ? "vez" : "vezes")
        .arg(Texto_Percentual(100.0 * acertos / respostas));
}

QString Texto_Mês(int mês) {
    return QString("%1/%2").arg(mês % 100, 2, 10, QChar('0')).arg(mês / 100);
}

QString Texto_Percentual(double percentual) {
    return QString::number(qRound(percentual)) + "%";
}

// ---------- CSV ----------

namespace {
QString Campo_CSV(const QString& texto) {
    if (!texto.contains(';') && !texto.contains('"') && !texto.contains('\n') && !texto.contains('\r'))
        return texto;
    QString s = texto;
    s.replace('"', "\"\"");
    return '"' + s + '"';
}

QString Número_CSV(double valor, int decimais) {
    return QString::number(valor, 'f', decimais).replace('.', ',');
}

QString Linha(const QStringList& campos) {
    QStringList saída;
    for (const QString& c : campos) saída << Campo_CSV(c);
    return saída.join(';') + "\r\n";
}

QString Tabela_Perguntas(const QString& título, const QVector<Números_Pergunta>& perguntas) {
    QString s = Linha({título}) + Linha({"Código", "Pergunta", "Tipo", "Respostas", "Acertos",
                                         "Percentual de acertos", "1ª incorreta escolhida",
                                         "2ª incorreta escolhida", "3ª incorreta escolhida", "Pulos"});
    for (const Números_Pergunta& p : perguntas)
        s += Linha({QString::number(p.Código_Pergunta), p.Pergunta, p.Tipo, QString::number(p.Respostas),
                    QString::number(p.Acertos), Número_CSV(p.Percentual(), 1),
                    QString::number(p.Escolhas_Incorretas[0]), QString::number(p.Escolhas_Incorretas[1]),
                    QString::number(p.Escolhas_Incorretas[2]), QString::number(p.Pulos)});
    return s + "\r\n";
}

QString Nome_Tipo(const QString& tipo) {
    return tipo == "B" ? "Conhecimento Bíblico" : tipo == "G" ? "Conhecimento Geral" : "Ambos";
}
}  // namespace

QByteArray Texto_CSV(const Números_Estatísticas& n, const Filtro_Estatísticas& filtro) {
    QString s = Linha({"Estatísticas dos Jogos",
                       "Período: " + (filtro.Mês_Inicial > 0 ? Texto_Mês(filtro.Mês_Inicial) : "início") +
                           " a " + (filtro.Mês_Final < 999999 ? Texto_Mês(filtro.Mês_Final) : "hoje"),
                       "Tipo: " + Nome_Tipo(filtro.Tipo)}) +
                "\r\n";
    s += Tabela_Perguntas("Acertos por pergunta", n.Perguntas);
    s += Tabela_Perguntas("As 20 perguntas mais difíceis", n.Mais_Difíceis);
    s += Tabela_Perguntas("As 20 perguntas mais fáceis", n.Mais_Fáceis);
    s += Linha({"Acertos por tipo"}) + Linha({"Tipo", "Respostas", "Acertos", "Percentual de acertos"});
    for (auto it = n.Por_Tipo.cbegin(); it != n.Por_Tipo.cend(); ++it)
        s +=
            Linha({Nome_Tipo(it.key()), QString::number(it.value().first), QString::number(it.value().second),
                   Número_CSV(it.value().first ? 100.0 * it.value().second / it.value().first : 0, 1)});
    s += "\r\n" + Linha({"Ajudas usadas"}) + Linha({"Ajuda", "Vezes"});
    for (const QString& ajuda : {Ajuda_Pulo, Ajuda_Dado_Texto, Ajuda_Apóstolos_Texto, Ajuda_Deus_Texto})
        s += Linha({ajuda, QString::number(n.Ajudas.value(ajuda))});
    s += "\r\n" + Linha({"Faces do dado"}) + Linha({"Respostas eliminadas", "Vezes"});
    for (int face = 1; face <= 3; ++face)
        s += Linha({QString::number(face), QString::number(n.Faces_Dado[face])});
    s += "\r\n" + Linha({"Jogos e respostas por mês"}) + Linha({"Mês", "Jogos", "Respostas"});
    for (const Números_Mês& m : n.Por_Mês)
        s += Linha({Texto_Mês(m.Mês), QString::number(m.Jogos), QString::number(m.Respostas)});
    s += "\r\n" + Linha({"Pontos dos competidores por jogo"}) +
         Linha({"Competidor", "Início do jogo", "Pontos"});
    for (const Números_Competidor& c : n.Competidores)
        for (const auto& [início, pontos] : c.Pontos_Por_Jogo)
            s += Linha({c.Jogador, início.toString("dd/MM/yyyy HH:mm:ss"), Número_CSV(pontos, 0)});
    s += "\r\n";
    s += Tabela_Perguntas("Nunca acertadas em 5 respostas ou mais", n.Nunca_Acertadas);
    s += Tabela_Perguntas("Resposta incorreta escolhida mais que a correta", n.Incorreta_Preferida);
    return QByteArray("\xEF\xBB\xBF") + s.toUtf8();
}

QMap<QString, QList<QStringList>> Lê_CSV(const QByteArray& bytes) {
    QString texto = QString::fromUtf8(bytes);
    if (texto.startsWith(QChar(0xFEFF))) texto.remove(0, 1);
    // Fields of each line, with quoted fields that may hold the separator, quotes and line ends.
    QList<QStringList> linhas;
    QStringList campos;
    QString campo;
    bool aspas = false;
    for (int i = 0; i < texto.size(); ++i) {
        const QChar ch = texto[i];
        if (aspas) {
            if (ch == '"' && i + 1 < texto.size() && texto[i + 1] == '"') {
                campo += '"';
                ++i;
            } else if (ch == '"') {
                aspas = false;
            } else {
                campo += ch;
            }
        } else if (ch == '"') {
            aspas = true;
        } else if (ch == ';') {
            campos << campo;
            campo.clear();
        } else if (ch == '\r') {
            continue;
        } else if (ch == '\n') {
            campos << campo;
            linhas << campos;
            campos.clear();
            campo.clear();
        } else {
            campo += ch;
        }
    }
    if (!campo.isEmpty() || !campos.isEmpty()) linhas << (campos << campo);
    // A section is a title line, then its rows, up to an empty line.
    QMap<QString, QList<QStringList>> seções;
    QString título;
    for (const QStringList& l : linhas) {
        if (l.size() == 1 && l[0].isEmpty()) {
            título.clear();
        } else if (título.isEmpty()) {
            título = l[0];
            seções[título];
        } else {
            seções[título] << l;
        }
    }
    return seções;
}

}  // namespace Estatísticas
