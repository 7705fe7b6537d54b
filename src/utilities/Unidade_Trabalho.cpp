#include "utilities/Unidade_Trabalho.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "platform/Sistema_de_Arquivos.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"

QString Unidade_Trabalho_De(const QString& pasta_programa, const QString& montagens) {
    const QString alvo = QDir::cleanPath(QFileInfo(pasta_programa).absoluteFilePath());
    const QString melhor_ponto = Montagem_Do_Caminho(alvo, montagens).Ponto;
    if (melhor_ponto.isEmpty()) return QString();
    const QString raiz = melhor_ponto.endsWith('/') ? melhor_ponto : melhor_ponto + "/";
    const QString resto = alvo.startsWith(raiz) ? alvo.mid(raiz.size()) : QString();
    return resto.compare("norvane", Qt::CaseInsensitive) == 0 ? melhor_ponto : QString();
}

QString Procura_Unidade_Trabalho() {
    const QString montagens = Tabela_De_Montagens();
    if (montagens.isEmpty()) return QString();
    const QString unidade = Unidade_Trabalho_De(Caminho_Programa(), montagens);
    // A folder that only happens to bear the name, without the list of systems, is an ordinary installation.
    if (unidade.isEmpty() || !Catálogo::Existe_Tabela(Conexão, "tblSistema")) return QString();
    return unidade;
}

QString Nome_Pasta_Programa() {
    return QFileInfo(QDir::cleanPath(Caminho_Programa())).fileName();
}
