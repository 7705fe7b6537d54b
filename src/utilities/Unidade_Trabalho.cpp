#include "utilities/Unidade_Trabalho.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"

QString Unidade_Trabalho_De(const QString& pasta_programa, const QString& montagens) {
    const QString alvo = QDir::cleanPath(QFileInfo(pasta_programa).absoluteFilePath());
    QString melhor_ponto;
    for (const QString& linha : montagens.split('\n', Qt::SkipEmptyParts)) {
        const QStringList partes = linha.split(' ');
        if (partes.size() < 5) continue;
        QString ponto = partes[4];
        ponto.replace("\\040", " ");
        const bool contém = alvo == ponto || ponto == "/" || alvo.startsWith(ponto + "/");
        // The longest mount point that holds the folder is the one it lies on.
        if (contém && ponto.size() >= melhor_ponto.size()) melhor_ponto = ponto;
    }
    if (melhor_ponto.isEmpty()) return QString();
    const QString raiz = melhor_ponto.endsWith('/') ? melhor_ponto : melhor_ponto + "/";
    const QString resto = alvo.startsWith(raiz) ? alvo.mid(raiz.size()) : QString();
    return resto.compare("norvane", Qt::CaseInsensitive) == 0 ? melhor_ponto : QString();
}

QString Procura_Unidade_Trabalho() {
    QFile montagens("/proc/self/mountinfo");
    if (!montagens.open(QIODevice::ReadOnly)) return QString();
    const QString unidade = Unidade_Trabalho_De(Caminho_Programa(), QString::fromUtf8(montagens.readAll()));
    // A folder that only happens to bear the name, without the list of systems, is an ordinary installation.
    if (unidade.isEmpty() || !Catálogo::Existe_Tabela(Conexão, "tblSistema")) return QString();
    return unidade;
}

QString Nome_Pasta_Programa() {
    return QFileInfo(QDir::cleanPath(Caminho_Programa())).fileName();
}
