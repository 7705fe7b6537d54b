#include "support/Plataforma_Roteirizada.h"

#include <QDialog>

#include "failure/Mensagens.h"

Plataforma_Roteirizada::Plataforma_Roteirizada() : Anterior(Define_Plataforma(this)) {}

Plataforma_Roteirizada::~Plataforma_Roteirizada() {
    Define_Plataforma(Anterior);
}

Resposta_Caixa Plataforma_Roteirizada::Caixa_Mensagem(const QString& texto, const QString& título,
                                                      Ícone_Caixa ícone, Botões_Caixa botões) {
    Caixas.append({texto, título, ícone, botões});
    if (!Respostas.empty()) {
        const Resposta_Caixa r = Respostas.front();
        Respostas.pop_front();
        return r;
    }
    return (botões == Botões_Caixa::Sim_Não || botões == Botões_Caixa::Sim_Não_Cancelar) ? Resposta_Caixa::Sim
                                                                                         : Resposta_Caixa::Ok;
}

QString Plataforma_Roteirizada::Caixa_Entrada(const QString&, const QString&, const QString&) {
    if (Entradas.empty()) return QString();
    const QString r = Entradas.front();
    Entradas.pop_front();
    return r;
}

QString Plataforma_Roteirizada::Escolhe_Arquivo(const QString& título, const QString&, const QString&, bool) {
    Escolhas_De_Arquivo << título;
    if (Arquivos_Escolhidos.empty()) return QString();
    const QString r = Arquivos_Escolhidos.front();
    Arquivos_Escolhidos.pop_front();
    return r;
}

int Plataforma_Roteirizada::Mostra_Modal(QDialog* janela) {
    return janela->exec();
}

void Plataforma_Roteirizada::Dorme(int ms) {
    Sonos << ms;
    Relógio = Relógio.addMSecs(ms);
    if (Ao_Esperar) Ao_Esperar();
}

void Plataforma_Roteirizada::Processa_Eventos() {
    ++Eventos_Processados;
    if (Ao_Esperar) Ao_Esperar();
}

float Plataforma_Roteirizada::Segundos_Desde_Meia_Noite() {
    if (!Leituras_Segundos.empty()) {
        const float s = Leituras_Segundos.front();
        Leituras_Segundos.pop_front();
        return s;
    }
    return static_cast<float>(Relógio.time().msecsSinceStartOfDay()) / 1000.0f;
}

void Plataforma_Roteirizada::Semeia(float semente) {
    Última_Semente = semente;
    Estado_Gerador = static_cast<unsigned>(semente) ^ 0x5bd1e995u;
}

double Plataforma_Roteirizada::Aleatório() {
    if (!Sorteios.empty()) {
        const double d = Sorteios.front();
        Sorteios.pop_front();
        return d;
    }
    Estado_Gerador = Estado_Gerador * 1103515245u + 12345u;
    return static_cast<double>((Estado_Gerador >> 8) & 0xFFFFFF) / 16777216.0;
}

void Plataforma_Roteirizada::Encerra_Agora(int código) {
    ++Encerramentos;
    throw Programa_Encerrado{código};
}

QStringList Plataforma_Roteirizada::Textos_Caixas() const {
    QStringList textos;
    for (const Caixa_Mostrada& c : Caixas) textos << c.Texto;
    return textos;
}

QString Aviso(int número) {
    return (número < 100 ? Texto_Mensagem(número) : Texto_Mensagem_Complementar(número)) + "!!!";
}
