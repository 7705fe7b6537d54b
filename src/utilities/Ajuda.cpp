#include "utilities/Ajuda.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
    plataforma.Cursor_Ocupado(Caminho_Ícone("Relógio.Ico"));
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
    static const QStringList de_rede = {"cifs", "smb3", "smbfs", "nfs", "nfs4", "sshfs", "fuse.sshfs", "9p"};
    const QString alvo = QDir::cleanPath(QFileInfo(caminho).absoluteFilePath());
    QString melhor_ponto, melhor_fonte, melhor_tipo;
    for (const QString& linha : montagens.split('\n', Qt::SkipEmptyParts)) {
        const QStringList partes = linha.split(' ');
        const int traço = partes.indexOf("-");
        if (partes.size() < 5 || traço < 0 || traço + 2 >= partes.size()) continue;
        QString ponto = partes[4];
        ponto.replace("\\040", " ");
        const bool contém = alvo == ponto || ponto == "/" || alvo.startsWith(ponto + "/");
        // The longest mount point that holds the path is the one it lies on.
        if (contém && ponto.size() >= melhor_ponto.size()) {
            melhor_ponto = ponto;
            melhor_tipo = partes[traço + 1];
            melhor_fonte = partes[traço + 2];
        }
    }
    return de_rede.contains(melhor_tipo) ? melhor_fonte.replace("\\040", " ") : QString();
}

QString Obter_Formato_UNC(QString& Caminho) {
    Rotina r(Fonte_Funções_Públicas, "Obter_Formato_UNC");
    Plataforma_Atual().Cursor_Ocupado(Caminho_Ícone("Processamento.Ico"));
    QString fonte;
    if (Caminho.size() >= 2) {
        QFile montagens("/proc/self/mountinfo");
        if (montagens.open(QIODevice::ReadOnly))
            fonte = Fonte_de_Rede(Caminho, QString::fromUtf8(montagens.readAll()));
    }
    Plataforma_Atual().Cursor_Normal();
    return fonte;
}
