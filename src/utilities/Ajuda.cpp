#include "utilities/Ajuda.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

#include "platform/Sistema_de_Arquivos.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

QStringList Tópicos_do_Manual() {
    return {"Index",
            "Faq",
            "Novidades",
            "Backup",
            "Impressão",
            "Estatísticas dos Jogos",
            "Revelações de Deus",
            "Login de Acesso",
            "Novo Jogo",
            "Jogar pelos Celulares",
            "Hall da Fama",
            "Sorteio de Contemplados",
            "Pergunta",
            "Verifica Pergunta",
            "Importação de Perguntas",
            "Consulta",
            "Critério de Consulta",
            "Usuário",
            "Dinâmica",
            "Impressão das Dinâmicas",
            "Adaptação",
            "Manutenção do Banco de Dados",
            "Impressão das Manutenções Efetuadas no Banco de Dados",
            "Impressão do Log de Ocorrências",
            "Configuração do Sistema",
            "Várias Estações"};
}

QString Página_do_Manual(const QString& Tópico) {
    return Caminho_Programa() + "/Ajuda/" + Tópico + ".Html";
}

void Ajuda(QWidget* Janela, const QString& Tópico) {
    Rotina r(Fonte_Funções_Públicas, "Ajuda");
    Plataforma& plataforma = Plataforma_Atual();
    plataforma.Cursor_Ocupado("Relógio.Ico");
    Janela->setWindowTitle("Carregando o manual on-line do sistema que irá tirar suas dúvidas; aguarde...");
    plataforma.Processa_Eventos();
    plataforma.Abre_Com_Aplicativo(Página_do_Manual(Tópico));
    Janela->setWindowTitle(" ");
    plataforma.Processa_Eventos();
    plataforma.Cursor_Normal();
}

void Auxílio_Novo_Cadastro(QWidget* Janela, const QString& Palavra, bool Masculino) {
    Rotina r(Fonte_Funções_Públicas, "Auxílio_Novo_Cadastro");
    Janela->setWindowTitle(QString("Dúvidas como cadastrar nov") + (Masculino ? "o " : "a ") + Palavra +
                           " no sistema? Tecle F1 para ler o manual on-line...");
    Plataforma_Atual().Processa_Eventos();
}

QString Fonte_de_Rede(const QString& caminho, const QString& montagens) {
    const Montagem montagem = Montagem_Do_Caminho(QFileInfo(caminho).absoluteFilePath(), montagens);
    return Sistema_de_Arquivos_de_Rede(montagem.Tipo) ? montagem.Fonte : QString();
}

QString Obter_Formato_UNC(QString& Caminho) {
    Rotina r(Fonte_Funções_Públicas, "Obter_Formato_UNC");
    Plataforma_Atual().Cursor_Ocupado("Processamento.Ico");
    QString fonte;
    if (Caminho.size() >= 2) fonte = Fonte_de_Rede(Caminho, Tabela_De_Montagens());
    Plataforma_Atual().Cursor_Normal();
    return fonte;
}
