#include "platform/Plataforma.h"

#include <QCoreApplication>
#include <QDir>

namespace {
Plataforma* Plataforma_Instalada = nullptr;
}

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
    const QString forçado = qEnvironmentVariable("QUIZORA_PASTA");
    if (!forçado.isEmpty()) return QDir(forçado).absolutePath();
    if (QCoreApplication::instance() != nullptr) return QCoreApplication::applicationDirPath();
    return QDir::currentPath();
}

QString Caminho_Dados() {
    return Caminho_Programa() + "/Dados";
}
