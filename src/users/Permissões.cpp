#include "users/Permissões.h"

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "store/Funções_Banco.h"

namespace {
const char* const Direitos[] = {"Permissão_De_Inclusão", "Permissão_De_Alteração", "Permissão_De_Exclusão",
                                "Permissão_De_Consulta"};

bool Usuário_Especial() {
    return Usuário_Atual == Usuário_Supervisor || Usuário_Atual == Usuário_Autor;
}

// A new user may read and change nothing until the Supervisor grants it; only in the user register can
// everybody alter and consult, so as to change the own password.
void Cria_Linha_Semente() {
    const bool especial =
        Nome_Janela == "frmUsuário" ? Usuário_Atual == Usuário_Supervisor : Usuário_Especial();
    const bool altera_consulta = especial || Nome_Janela == "frmUsuário";
    Tabela_Secundária.AddNew();
    Tabela_Secundária.Fields("Rotina").Set_Value(Nome_Janela);
    Tabela_Secundária.Fields("Usuário").Set_Value(Usuário_Atual);
    Tabela_Secundária.Fields("Permissão_De_Inclusão").Set_Value(especial);
    Tabela_Secundária.Fields("Permissão_De_Alteração").Set_Value(altera_consulta);
    Tabela_Secundária.Fields("Permissão_De_Exclusão").Set_Value(especial);
    Tabela_Secundária.Fields("Permissão_De_Consulta").Set_Value(altera_consulta);
    Grava(Tabela_Secundária, false);
}
}  // namespace

void Verifica_Permissão_De_Acesso() {
    Rotina r(Fonte_Funções_Públicas, "Verifica_Permissão_De_Acesso");
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    Abre_Tabela_Secundária("tblPermissão");
    bool Achou = false;
    if (Lastrec(Tabela_Secundária.Source, Conexão_Secundária) == 0) {
        Cria_Linha_Semente();
    }
    if (!(Tabela_Secundária.Bof() && Tabela_Secundária.Eof())) Tabela_Secundária.MoveFirst();
    while (!Tabela_Secundária.Eof() && !Achou) {
        const bool mesma_janela =
            Tabela_Secundária.Fields("Rotina").Value().toString().trimmed() == Nome_Janela;
        const bool mesmo_usuário =
            Tabela_Secundária.Fields("Usuário").Value().toString().trimmed() == Usuário_Atual;
        if (mesma_janela && mesmo_usuário) {
            // The user register must stay open to its two special users: a right taken away comes back.
            bool falta_direito = false;
            for (const char* direito : Direitos)
                if (!Tabela_Secundária.Fields(QString::fromUtf8(direito)).Value().toBool())
                    falta_direito = true;
            if (Nome_Janela == "frmUsuário" && Usuário_Especial() && falta_direito) {
                Inicia_Transação();
                Trava(Tabela_Secundária, Conexão_Secundária, true);
                for (const char* direito : Direitos)
                    Tabela_Secundária.Fields(QString::fromUtf8(direito)).Set_Value(true);
                Grava(Tabela_Secundária, false);
                Finaliza_Transação();
            }
            Achou = true;
        } else {
            Tabela_Secundária.MoveNext();
        }
    }
    if (!Achou) Cria_Linha_Semente();
    Pode_Incluir = Tabela_Secundária.Fields("Permissão_De_Inclusão").Value().toBool();
    Pode_Alterar = Tabela_Secundária.Fields("Permissão_De_Alteração").Value().toBool();
    Pode_Excluir = Tabela_Secundária.Fields("Permissão_De_Exclusão").Value().toBool();
    Pode_Consultar = Tabela_Secundária.Fields("Permissão_De_Consulta").Value().toBool();
}

bool Sem_Direito_Algum() {
    if (Pode_Incluir || Pode_Alterar || Pode_Excluir || Pode_Consultar) return false;
    Exibe_Mensagem(4);
    return true;
}
