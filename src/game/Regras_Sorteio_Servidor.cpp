#include "game/Regras_Sorteio_Servidor.h"

#include <QDateTime>

#include "store/Comando_Banco.h"
#include "store/Funções_Banco.h"
#include "store/Sessão.h"
#include "store/Tradutor_SQL.h"

namespace {
const QString Conta_Perguntas = "Select Count (*) From tblPergunta";
const QString Conta_Mostradas = "Select Count (*) From tblPergunta_Já_Mostrada";
// The first row of "Select * From tblPergunta_Já_Mostrada Order By Data_Jogo", the one a trim deletes.
const QString Lê_Mais_Antiga_Sql =
    "Select rowid, Código_Pergunta From tblPergunta_Já_Mostrada Order By Data_Jogo, rowid Limit 1";
const QString Lê_Pergunta =
    "Select Código_Pergunta, Tipo, Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
    "Resposta_Incorreta_3 From tblPergunta Where Código_Pergunta = ?";
const QString Lê_Mostradas_Do_Código = "Select rowid From tblPergunta_Já_Mostrada Where Código_Pergunta = ?";
const QString Exclui_Mostrada = "Delete From tblPergunta_Já_Mostrada Where rowid = ?";
const QString Inclui_Mostrada =
    "Insert Into tblPergunta_Já_Mostrada (Código_Pergunta, Data_Jogo) Values (?, ?)";
// The sources through which the window writes the history: its audit rows name them.
const QString Fonte_Trim = "Select * From tblPergunta_Já_Mostrada Order By Data_Jogo";
const QString Fonte_Histórico = "tblPergunta_Já_Mostrada";

bool Deu_Certo(int passo) {
    return passo == Linha_Pronta || passo == Fim_Comando;
}

// Statements used together. The session may let go of the statements it keeps when it prepares a new one:
// once all are prepared, asking again finds each kept, and no handle given out is let go meanwhile.
bool Prepara_Juntos(Sessão& sessão,
                    std::initializer_list<std::pair<const QString*, Comando_Banco**>> pedidos) {
    Falha_Banco falha;
    for (int volta = 0; volta < 2; ++volta)
        for (const auto& [sql, comando] : pedidos)
            if ((*comando = sessão.Prepara(*sql, falha)) == nullptr) return false;
    return true;
}
}  // namespace

bool Sorteio_No_Servidor::Disponível(const std::shared_ptr<Sessão>& sessão) {
    if (!sessão || !sessão->Servidor() || !sessão->Transação_Lógica || sessão->Transação_Perdida)
        return false;
    if (sessão != S || Transações_Iniciadas() != Transação) {
        Esquece();
        S = sessão;
        Transação = Transações_Iniciadas();
    }
    return true;
}

void Sorteio_No_Servidor::Esquece() {
    Perguntas.reset();
    Mostradas.reset();
    Antiga_Lida = false;
    Mais_Antiga.reset();
    Linhas_Do_Código.clear();
    Excluídas.clear();
}

// The two counts and the oldest row of the history, in one exchange.
bool Sorteio_No_Servidor::Lê_Contagens() {
    Comando_Banco *perguntas = nullptr, *mostradas = nullptr, *antiga = nullptr;
    if (!Prepara_Juntos(
            *S,
            {{&Conta_Perguntas, &perguntas}, {&Conta_Mostradas, &mostradas}, {&Lê_Mais_Antiga_Sql, &antiga}}))
        return false;
    perguntas->Envia();
    mostradas->Envia();
    antiga->Envia();
    if (perguntas->Passo() != Linha_Pronta) return false;
    const int n = static_cast<int>(perguntas->Inteiro(0));
    if (mostradas->Passo() != Linha_Pronta) return false;
    const int m = static_cast<int>(mostradas->Inteiro(0));
    if (!Toma_Mais_Antiga(antiga)) return false;
    Perguntas = n;
    Mostradas = m;
    return true;
}

bool Sorteio_No_Servidor::Lê_Mais_Antiga() {
    Falha_Banco falha;
    Comando_Banco* antiga = S->Prepara(Lê_Mais_Antiga_Sql, falha);
    return antiga != nullptr && Toma_Mais_Antiga(antiga);
}

// The history's oldest row as its statement answers, none when the history is empty.
bool Sorteio_No_Servidor::Toma_Mais_Antiga(Comando_Banco* antiga) {
    const int passo = antiga->Passo();
    if (!Deu_Certo(passo)) return false;
    Antiga_Lida = true;
    if (passo == Linha_Pronta)
        Mais_Antiga = std::pair{antiga->Inteiro(0), static_cast<int>(antiga->Inteiro(1))};
    else
        Mais_Antiga.reset();
    return true;
}

bool Sorteio_No_Servidor::Lê_Histórico_Do_Código(int código) {
    Falha_Banco falha;
    Comando_Banco* linhas = S->Prepara(Lê_Mostradas_Do_Código, falha);
    if (linhas == nullptr) return false;
    linhas->Liga_Inteiro(1, código);
    QList<qint64> ids;
    int passo;
    while ((passo = linhas->Passo()) == Linha_Pronta) ids.append(linhas->Inteiro(0));
    if (passo != Fim_Comando) return false;
    Linhas_Do_Código.insert(código, ids);
    return true;
}

std::optional<int> Sorteio_No_Servidor::Quantidade_Perguntas() {
    if (!Perguntas && !Lê_Contagens()) return std::nullopt;
    return Perguntas;
}

bool Sorteio_No_Servidor::Busca_Pergunta(int código, std::optional<Registro_Pergunta>& achada) {
    Comando_Banco *pergunta = nullptr, *histórico = nullptr;
    if (!Prepara_Juntos(*S, {{&Lê_Pergunta, &pergunta}, {&Lê_Mostradas_Do_Código, &histórico}})) return false;
    pergunta->Liga_Inteiro(1, código);
    // Whether the code was shown is the draw's next question: it goes in the same exchange.
    if (Linhas_Do_Código.contains(código)) {
        histórico = nullptr;
    } else {
        histórico->Liga_Inteiro(1, código);
        histórico->Envia();
    }
    pergunta->Envia();
    const int passo = pergunta->Passo();
    if (!Deu_Certo(passo)) return false;
    achada.reset();
    if (passo == Linha_Pronta) {
        Registro_Pergunta p;
        p.Código_Pergunta = static_cast<int>(pergunta->Inteiro(0));
        p.Tipo = pergunta->Texto(1).trimmed();
        p.Pergunta = pergunta->Texto(2);
        p.Resposta_Correta = pergunta->Texto(3);
        p.Resposta_Incorreta_1 = pergunta->Texto(4);
        p.Resposta_Incorreta_2 = pergunta->Texto(5);
        p.Resposta_Incorreta_3 = pergunta->Texto(6);
        achada = p;
    }
    if (histórico != nullptr) {
        QList<qint64> ids;
        int h;
        while ((h = histórico->Passo()) == Linha_Pronta) ids.append(histórico->Inteiro(0));
        if (h == Fim_Comando) Linhas_Do_Código.insert(código, ids);
    }
    return true;
}

std::optional<int> Sorteio_No_Servidor::Quantidade_Mostradas() {
    if (!Mostradas && !Lê_Contagens()) return std::nullopt;
    return Mostradas;
}

bool Sorteio_No_Servidor::Exclui_Mostrada_Mais_Antiga() {
    if (!Antiga_Lida && !Lê_Mais_Antiga()) return false;
    if (!Mais_Antiga) return true;
    Travou = true;
    Falha_Banco falha;
    Comando_Banco* exclui = S->Prepara(Exclui_Mostrada, falha);
    if (exclui == nullptr) return false;
    const auto [id, código] = *Mais_Antiga;
    exclui->Liga_Inteiro(1, id);
    // Another workstation that trimmed the same row first leaves nothing to delete: the delete waits for
    // its commit and then deletes no row, as the lock of the row gave up on it.
    if (!S->Escreve_Depois(exclui, falha)) return false;
    S->Marca_Escrita(Fonte_Histórico);
    Excluídas.insert(id);
    if (Mostradas) --*Mostradas;
    // The next oldest is read, when a second trim asks for it, once this one is on the server.
    Antiga_Lida = false;
    Mais_Antiga.reset();
    Audita_Escrita(Fonte_Trim, "Código_Pergunta", código);
    return true;
}

std::optional<bool> Sorteio_No_Servidor::Já_Mostrada(int código) {
    if (!Linhas_Do_Código.contains(código) && !Lê_Histórico_Do_Código(código)) return std::nullopt;
    for (const qint64 id : Linhas_Do_Código.value(código))
        if (!Excluídas.contains(id)) return true;
    return false;
}

bool Sorteio_No_Servidor::Registra_Mostrada(int código, const QDate& data) {
    Falha_Banco falha;
    Comando_Banco* inclui = S->Prepara(Inclui_Mostrada, falha);
    if (inclui == nullptr) return false;
    inclui->Liga_Inteiro(1, código);
    inclui->Liga_Texto(2, Data_Para_Banco(QDateTime(data, QTime(0, 0))).toUtf8());
    if (!S->Escreve_Depois(inclui, falha)) return false;
    S->Marca_Escrita(Fonte_Histórico);
    Esquece();
    Audita_Escrita(Fonte_Histórico, "Código_Pergunta", código);
    return true;
}
