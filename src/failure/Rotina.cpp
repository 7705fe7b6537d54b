#include "failure/Rotina.h"

#include <QObject>

#include "failure/Trata_Erro.h"

namespace {
Rotina* Rotina_Atual = nullptr;
}

Rotina::Rotina(const QString& fonte, const QString& nome) : Fonte(fonte), Nome(nome), Anterior(Rotina_Atual) {
    Rotina_Atual = this;
}

Rotina::Rotina(const QObject* janela, const QString& nome)
    : Rotina(janela != nullptr ? janela->objectName() : Fonte_Funções_Públicas, nome) {}

Rotina::Rotina(const QString& fonte, const QString& nome, Tratador_Falha tratador) : Rotina(fonte, nome) {
    Tratador = std::move(tratador);
}

Rotina::~Rotina() {
    Rotina_Atual = Anterior;
}

void Falha_Na_Linha(long número, const QString& descrição, long linha) {
    Rotina* r = Rotina_Atual;
    // QUIZORA_DEPURA=1 prints every failure with its routine, as an aid while diagnosing.
    static const bool depura = qEnvironmentVariableIsSet("QUIZORA_DEPURA");
    if (depura)
        qWarning("Falha %ld em %s/%s linha %ld: %s", número, qPrintable(r ? r->Fonte : QString()),
                 qPrintable(r ? r->Nome : QString()), linha, qPrintable(descrição));
    if (r != nullptr && r->Tratador) {
        r->Tratador(número, descrição, linha);
        return;
    }
    const QString fonte = r != nullptr ? r->Fonte : Fonte_Funções_Públicas;
    const QString nome = r != nullptr ? r->Nome : QString("Desconhecida");
    Trata_Erro(número, descrição, linha, fonte, nome);
}

void Falha(long número, const QString& descrição, std::source_location onde) {
    Falha_Na_Linha(número, descrição, static_cast<long>(onde.line()));
}
