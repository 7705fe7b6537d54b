#pragma once
// The test double of the platform: answers boxes from a queue, records what was shown, keeps its own
// clock and draws, and turns "end the program now" into an exception that a test can catch.

#include <QDateTime>
#include <QList>
#include <QStringList>
#include <deque>
#include <functional>

#include "platform/Plataforma.h"

struct Caixa_Mostrada {
    QString Texto;
    QString Título;
    Ícone_Caixa Ícone;
    Botões_Caixa Botões;
};

// A numbered warning as its box shows it.
QString Aviso(int número);

struct Programa_Encerrado {
    int Código;
};

class Plataforma_Roteirizada : public Plataforma {
  public:
    Plataforma_Roteirizada();
    ~Plataforma_Roteirizada() override;

    // Queued answers; an empty queue answers Ok (or Sim for yes/no boxes).
    std::deque<Resposta_Caixa> Respostas;
    std::deque<QString> Entradas;
    // Files the user picks in the file dialog, in order; an empty queue cancels. The titles asked are kept.
    std::deque<QString> Arquivos_Escolhidos;
    QStringList Escolhas_De_Arquivo;
    QList<Caixa_Mostrada> Caixas;
    QStringList Textos_Caixas() const;
    int Bipes = 0;
    QStringList Sons;
    QStringList Abertos;
    QList<int> Sonos;
    int Eventos_Processados = 0;
    QStringList Cursores;
    QDateTime Relógio = QDateTime(QDate(2019, 3, 14), QTime(14, 30, 0));  // neither today nor this year
    std::deque<float> Leituras_Segundos;  // seconds since midnight; empty: from Relógio
    std::deque<double> Sorteios;          // queued draws; empty: a fixed generator
    float Última_Semente = 0;
    bool Linha_Vazia = true;
    int Encerramentos = 0;
    // Runs at each sleep and each event pass: lets a test act while the code waits.
    std::function<void()> Ao_Esperar;

    Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString& título, Ícone_Caixa ícone,
                                  Botões_Caixa botões) override;
    QString Caixa_Entrada(const QString& texto, const QString& título, const QString& padrão) override;
    int Mostra_Modal(QDialog* janela) override;
    QString Escolhe_Arquivo(const QString& título, const QString& filtro, const QString& sugestão,
                            bool para_gravar) override;
    void Bipe() override { ++Bipes; }
    void Toca_Som(const QString& arquivo) override { Sons << arquivo; }
    void Abre_Com_Aplicativo(const QString& alvo) override { Abertos << alvo; }
    void Dorme(int ms) override;
    void Processa_Eventos() override;
    void Cursor_Ocupado(const QString& ícone) override { Cursores << ícone; }
    void Cursor_Normal() override {}
    QDateTime Agora() override { return Relógio; }
    float Segundos_Desde_Meia_Noite() override;
    void Semeia(float semente) override;
    double Aleatório() override;
    bool Linha_Comando_Vazia() override { return Linha_Vazia; }
    [[noreturn]] void Encerra_Agora(int código) override;
    // The bitmaps made the desktop's background, in order; Papel_Aceito is what the desktop answers.
    QStringList Papéis_de_Parede;
    bool Papel_Aceito = true;
    bool Muda_Papel_de_Parede(const QString& arquivo) override {
        Papéis_de_Parede << arquivo;
        return Papel_Aceito;
    }

    // The file system that every folder asked about lies on ("nfs4", "ext4"); the folders asked, in order.
    QString Sistema_Arquivos;
    QStringList Pastas_Sistema_Arquivos;
    QString Sistema_de_Arquivos(const QString& pasta) override {
        Pastas_Sistema_Arquivos << pasta;
        return Sistema_Arquivos;
    }

  private:
    Plataforma* Anterior;
    unsigned Estado_Gerador = 12345;
};
