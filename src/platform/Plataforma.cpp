#include "platform/Plataforma.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdlib>
#include <utility>

namespace {
Plataforma* Plataforma_Instalada = nullptr;
QString Pasta_Escolhida;
}  // namespace

Plataforma& Plataforma_Atual() {
    Q_ASSERT(Plataforma_Instalada != nullptr);
    return *Plataforma_Instalada;
}

Plataforma* Define_Plataforma(Plataforma* nova) {
    Plataforma* anterior = Plataforma_Instalada;
    Plataforma_Instalada = nova;
    return anterior;
}

QString Caminho_Programa() {
    // Asked at every busy cursor and path: the forced folder's absolute form is kept while the variable
    // holds the same text.
    static QByteArray forçado_lido;
    static QString forçado_absoluto;
    if (const char* forçado = std::getenv("QUIZORA_PASTA"); forçado != nullptr && *forçado != 0) {
        if (forçado_absoluto.isEmpty() || forçado_lido != forçado) {
            forçado_lido = forçado;
            forçado_absoluto = QDir(QFile::decodeName(forçado_lido)).absolutePath();
            // A relative folder follows the current one, which may change.
            if (forçado[0] != '/') {
                forçado_lido.clear();
                return std::exchange(forçado_absoluto, QString());
            }
        }
        return forçado_absoluto;
    }
    if (!Pasta_Escolhida.isEmpty()) return Pasta_Escolhida;
    if (QCoreApplication::instance() != nullptr) return QCoreApplication::applicationDirPath();
    return QDir::currentPath();
}

QString Caminho_Dados() {
    return Caminho_Programa() + "/Dados";
}

void Define_Pasta_Programa(const QString& pasta) {
    Pasta_Escolhida = pasta.isEmpty() ? QString() : QDir(pasta).absolutePath();
}

bool Pode_Gravar_Pasta(const QString& pasta) {
    if (!QDir().mkpath(pasta)) return false;
    // The permission bits do not tell of a read-only mount, nor of root: a file is really made.
    QFile prova(pasta + "/.quizora-prova-" + QString::number(QCoreApplication::applicationPid()));
    if (!prova.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return false;
    const bool escreveu = prova.write("0", 1) == 1;
    prova.close();
    prova.remove();
    return escreveu;
}
