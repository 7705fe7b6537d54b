#include "support/Pasta_Teste.h"

#include <QDir>

#include "common/Globais.h"
#include "statistics/Estatísticas.h"
#include "failure/Trata_Erro.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "support/Servidor_Teste.h"

#include <QFile>

void Reinicia_Estado_Global() {
    for (Registros* r :
         {&Tabela, &Tabela_Secundária, &Tabela_Terciária, &Tabela_Quaternária, &Tabela_Temporária,
          &Tabela_Dbf, &Tabela_Pesquisa, &Tabela_Dynaset, &Tabela_Critério_de_Consulta, &Tabela_Manutenção})
        r->Reinicia();
    for (Ligação* c : {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária,
                       &Conexão_Temporária, &Conexão_Dbf, &Conexão_Manutenção}) {
        c->Close();
        c->ConnectionString.clear();
    }
    Estatísticas::Fecha_Banco_Estatísticas();
    Estado_Transação.clear();
    Limpa_Cache_Lastrec();
    Mensagem_Erro.clear();
    Repetições_Erro = 0;
    Sai_da_Gravação = false;
    Registro_Duplicado = false;
    Gravação_Recusada = false;
    Gravação_Impedida_Avisada = false;
    Em_Cadastro = false;
    Operação.clear();
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    Navegando = false;
    Linhas_Localizadas = 0;
    Travou = false;
}

Pasta_Teste::Pasta_Teste() {
    qputenv("QUIZORA_PASTA", Pasta.path().toUtf8());
    QDir().mkpath(Pasta.path() + "/Dados");
    // On a server run, the installation names a fresh database of the throwaway cluster.
    if (Testa_No_Servidor()) {
        if (Servidor_Teste* servidor = Servidor_Teste::Ativo()) {
            QFile arquivo(Pasta.path() + "/Dados/" + Arquivo_Servidor);
            if (arquivo.open(QIODevice::WriteOnly)) arquivo.write(servidor->Cria_Banco().toUtf8() + "\n");
        }
    }
    Reinicia_Estado_Global();
}

Pasta_Teste::~Pasta_Teste() {
    Reinicia_Estado_Global();
    qunsetenv("QUIZORA_PASTA");
}

void Indexa_Perguntas_Por_Tipo() {
    Catálogo::Adiciona_Índice(Conexão, "tblPergunta", {"idxTipo", Tipo_Índice::Simples, {"Tipo"}});
    Catálogo::Adiciona_Índice(Conexão, "tblPergunta",
                              {"idxTipo_Pergunta", Tipo_Índice::Simples, {"Tipo", "Pergunta"}});
}

void Cria_Bancos_De_Teste() {
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Principal()));
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Manutenção()));
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Conexão_Dbf.Open(Conexão_Dbase());
    Conexão_Manutenção.Open(Conexão_Auditoria());

    Catálogo::Cria_Tabela(Conexão, "tblUsuário",
                          {{"Usuário", Tipo_Texto, 20},
                           {"Código_Usuário", Tipo_Long, 0, true},
                           {"Senha", Tipo_Long},
                           {"Biblioteca_Imagens_Local", Tipo_Texto, 150, false, true}});
    Catálogo::Adiciona_Índice(Conexão, "tblUsuário",
                              {"idxCódigo_Usuário", Tipo_Índice::Simples, {"Código_Usuário"}});
    Catálogo::Adiciona_Índice(Conexão, "tblUsuário", {"idxUsuário", Tipo_Índice::Primário, {"Usuário"}});
    Catálogo::Cria_Tabela(Conexão, "tblPergunta",
                          {{"Pergunta", Tipo_Texto, 124},
                           {"Código_Pergunta", Tipo_Long, 0, true},
                           {"Resposta_Correta", Tipo_Texto, 50},
                           {"Tipo", Tipo_Texto, 1},
                           {"Já_Comparada", Tipo_Boolean}});
    Catálogo::Adiciona_Índice(Conexão, "tblPergunta",
                              {"idxCódigo_Pergunta", Tipo_Índice::Simples, {"Código_Pergunta"}});
    Catálogo::Adiciona_Índice(Conexão, "tblPergunta", {"idxPergunta", Tipo_Índice::Simples, {"Pergunta"}});
    Catálogo::Cria_Tabela(Conexão, "tblPergunta_Já_Mostrada",
                          {{"Código_Pergunta", Tipo_Long}, {"Data_Jogo", Tipo_Data}});
    Catálogo::Cria_Tabela(Conexão_Manutenção, "tblManutenção_Banco_de_Dados",
                          {{"Manutenção", Tipo_Texto, 100},
                           {"Código_Manutenção_Banco_de_Dados", Tipo_Long, 0, true},
                           {"Usuário", Tipo_Texto, 20},
                           {"Data_Manutenção", Tipo_Data},
                           {"Hora_Manutenção", Tipo_Texto, 8}});
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
}
