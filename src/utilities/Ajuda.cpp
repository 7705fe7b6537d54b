#include "utilities/Ajuda.h"

#include <QWidget>

#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

QStringList Tópicos_do_Manual() {
    return {"Index",
            "Faq",
            "Novidades",
            "Backup",
            "Impressão",
            "Revelações de Deus",
            "Login de Acesso",
            "Novo Jogo",
            "Hall da Fama",
            "Sorteio de Contemplados",
            "Pergunta",
            "Verifica Pergunta",
            "Consulta",
            "Critério de Consulta",
            "Usuário",
            "Dinâmica",
            "Impressão das Dinâmicas",
            "Adaptação",
            "Manutenção do Banco de Dados",
            "Impressão das Manutenções Efetuadas no Banco de Dados",
            "Impressão do Log de Ocorrências",
            "Configuração do Sistema"};
}

QString Página_do_Manual(const QString& Tópico) {
    return Caminho_Programa() + "/Ajuda/" + Tópico + ".Html";
}

void Ajuda(QWidget* Janela, const QString& Tópico) {
    Rotina r(Fonte_Funções_Públicas, "Ajuda");
    Plataforma& plataforma = Plataforma_Atual();
    plataforma.Cursor_Ocupado(Caminho_Ícone("Relógio.Ico"));
    Janela->setWindowTitle("Carregando o manual on-line do sistema que irá tirar suas dúvidas; aguarde...");
    plataforma.Processa_Eventos();
    plataforma.Abre_Com_Aplicativo(Página_do_Manual(Tópico));
    Janela->setWindowTitle(" ");
    plataforma.Processa_Eventos();
    plataforma.Cursor_Normal();
}
