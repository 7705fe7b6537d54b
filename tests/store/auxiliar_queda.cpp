// A copy of the program that writes until it is killed, for the crash test. Usage:
//   auxiliar_queda <folder> <run number>
// Prints "PRONTO" once the store is open, then for each transaction n = 1, 2, ... prints "INICIA n"
// before it starts and "GRAVOU n" after Finaliza_Transação returns and the turn n of its game is in
// Estatísticas.Mdb. What transaction n writes is
// given by Plano_Queda.h, which the test replays to know what must be in the database.
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

#include "common/Globais.h"
#include "store/Funções_Banco.h"
#include "store/Plano_Queda.h"
#include "statistics/Estatísticas.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
Plataforma_Roteirizada* Plataforma_Cópia = nullptr;

// Any box means that a write was refused: the copy stops, and the test sees it end by itself.
void Confere_Sem_Caixas(const char* onde) {
    if (Plataforma_Cópia->Caixas.isEmpty() && Estado_Transação != "Desfez Transação") return;
    std::fprintf(stderr, "%s: %s\n", onde,
                 Plataforma_Cópia->Caixas.isEmpty() ? "transação desfeita"
                                                    : qPrintable(Plataforma_Cópia->Caixas.first().Texto));
    std::exit(5);
}

void Inclui(const QString& jogador) {
    Operação = "Inclusão";
    Tabela.AddNew();
    Tabela.Fields("Jogador").Set_Value(jogador);
    Tabela.Fields("Pontuação").Set_Value(0.0);
    Grava(Tabela, false);
}

// Finds the one row of a player in the second slot, as the windows do before an edit.
void Posiciona(const QString& jogador) {
    Abre_Tabela_Secundária("Select * From tblPontuação Where Jogador = '" + jogador + "'");
    if (Tabela_Secundária.Eof()) {
        std::fprintf(stderr, "sem a linha %s\n", qPrintable(jogador));
        std::exit(6);
    }
}

void Altera(const QString& jogador, double pontos) {
    Posiciona(jogador);
    Operação = "Alteração";
    Trava(Tabela_Secundária, Conexão_Secundária, false);
    Confere_Sem_Caixas("Trava");
    Tabela_Secundária.Fields("Pontuação").Set_Value(pontos);
    Grava(Tabela_Secundária, false);
}

void Exclui(const QString& jogador) {
    Posiciona(jogador);
    Operação = "Exclusão";
    Trava(Tabela_Secundária, Conexão_Secundária, false);
    Confere_Sem_Caixas("Trava");
    Grava(Tabela_Secundária, true);
}
}  // namespace

int main(int argc, char** argv) {
    QCoreApplication aplicação(argc, argv);
    if (argc < 3) return 2;
    qputenv("QUIZORA_PASTA", argv[1]);
    const int rodada = QString(argv[2]).toInt();
    Plataforma_Roteirizada plataforma;
    Plataforma_Cópia = &plataforma;
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Conexão_Manutenção.Open(Conexão_Auditoria());
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    Abre_Tabela("tblPontuação");
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    Confere_Sem_Caixas("Abertura");
    std::printf("PRONTO\n");
    std::fflush(stdout);

    for (int n = 1; n <= 1000000; ++n) {
        std::printf("INICIA %d\n", n);
        std::fflush(stdout);
        const Passo_Queda passo = Passo_Da_Transação(rodada, n);
        Inicia_Transação();
        for (const QString& jogador : passo.Inclusões) Inclui(jogador);
        if (!passo.Alterado.isEmpty()) Altera(passo.Alterado, passo.Pontos);
        if (!passo.Excluído.isEmpty()) Exclui(passo.Excluído);
        Confere_Sem_Caixas("Gravação");
        Finaliza_Transação();
        Confere_Sem_Caixas("Finaliza_Transação");
        if (Estado_Transação != "Finalizou Transação") return 7;
        // The turn of a game that the transaction stands for, in the games' statistics.
        Estatísticas::Jogada jogada;
        jogada.Data_Jogada = QDateTime::currentDateTime();
        jogada.Início_Jogo = Início_Jogo_Queda(rodada);
        jogada.Jogador = Jogador_Queda(rodada, n);
        jogada.Posição = 1;
        jogada.Código_Pergunta = n;
        jogada.Tipo = "G";
        jogada.Desfecho = n % 2 ? Estatísticas::Desfecho_Certa : Estatísticas::Desfecho_Errada;
        jogada.Número_Resposta = n % 2 ? 0 : 1;
        jogada.Valor = n;
        Falha_Banco falha;
        if (!Estatísticas::Grava_Jogada(jogada, falha)) {
            std::fprintf(stderr, "estatísticas: %s\n", qPrintable(falha.Descrição));
            return 8;
        }
        std::printf("GRAVOU %d\n", n);
        std::fflush(stdout);
        // Every few turns a game ends and its turns join the summaries.
        if (n % 3 == 0 && !Estatísticas::Atualiza_Resumos(falha)) {
            std::fprintf(stderr, "resumos: %s\n", qPrintable(falha.Descrição));
            return 9;
        }
    }
    return 0;
}
