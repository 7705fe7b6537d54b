#pragma once
// The real platform for the benchmarks that drive windows: a box is only noted (answered OK, or Sim
// where it asks) and the desktop's viewer is not started.
#include "platform/Plataforma_Qt.h"

#include <QStringList>

class Plataforma_Medida : public Plataforma_Qt {
  public:
    Plataforma_Medida() : Plataforma_Qt(QStringList{}), Anterior(Define_Plataforma(this)) {}
    ~Plataforma_Medida() override { Define_Plataforma(Anterior); }
    QStringList Caixas;
    QStringList Abertos;
    Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString&, Ícone_Caixa,
                                  Botões_Caixa botões) override {
        Caixas << texto;
        return botões == Botões_Caixa::Ok ? Resposta_Caixa::Ok : Resposta_Caixa::Sim;
    }
    void Abre_Com_Aplicativo(const QString& alvo) override { Abertos << alvo; }

  private:
    Plataforma* Anterior;
};
