#include "platform/Pasta_Usuário.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "platform/Plataforma.h"

namespace {
// Copies what is missing in the destination, or older there than in the source.
void Copia_Novos(const QString& origem, const QString& destino) {
    if (!QFileInfo(origem).isDir()) return;
    QDirIterator it(origem, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo fonte(it.next());
        const QString alvo = destino + "/" + QDir(origem).relativeFilePath(fonte.filePath());
        const QFileInfo atual(alvo);
        if (atual.exists() && atual.lastModified() >= fonte.lastModified()) continue;
        QDir().mkpath(QFileInfo(alvo).path());
        QFile::remove(alvo);
        QFile::copy(fonte.filePath(), alvo);
        // An installed file is read-only; the user's copy is the user's.
        QFile::setPermissions(alvo, QFile::permissions(alvo) | QFile::WriteOwner);
    }
}
}  // namespace

QString Pasta_Usuário_Padrão() {
    QString base = qEnvironmentVariable("XDG_DATA_HOME");
    if (base.isEmpty() || QDir::isRelativePath(base)) base = QDir::homePath() + "/.local/share";
    return QDir(base).absolutePath() + "/Quizora";
}

bool Monta_Pasta_Usuário(const QString& instalada, const QString& usuário) {
    if (!QDir().mkpath(usuário + "/Dados") || !QDir().mkpath(usuário + "/Relatórios")) return false;
    // The seed files are imported and consumed by the first start: a folder with a database never gets
    // them again.
    if (!QFile::exists(usuário + "/Dados/Dados.Mdb")) {
        for (const char* semente : {"Temp.Mdb", "Temp.Zip"}) {
            const QString fonte = instalada + "/Dados/" + semente;
            const QString alvo = usuário + "/Dados/" + semente;
            if (QFile::exists(fonte) && !QFile::exists(alvo)) {
                QFile::copy(fonte, alvo);
                QFile::setPermissions(alvo, QFile::permissions(alvo) | QFile::WriteOwner);
            }
        }
    }
    for (const char* recurso : {"Ajuda", "Ícones", "Sons"})
        Copia_Novos(instalada + "/" + recurso, usuário + "/" + recurso);
    return true;
}

QString Escolhe_Pasta_Programa(const QString& instalada, const QString& usuário) {
    if (!qEnvironmentVariableIsEmpty("QUIZORA_PASTA")) return Caminho_Programa();
    // A copy under /usr belongs to the package even when root could write there: it stays untouched.
    const bool do_sistema = QDir::cleanPath(instalada).startsWith("/usr/");
    if (!do_sistema && Pode_Gravar_Pasta(instalada)) {
        Define_Pasta_Programa(instalada);
        return instalada;
    }
    // A folder that cannot be made is still chosen: the start-up then names it in its box.
    Monta_Pasta_Usuário(instalada, usuário);
    Define_Pasta_Programa(usuário);
    return usuário;
}
