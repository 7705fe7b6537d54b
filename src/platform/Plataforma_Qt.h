#pragma once
#include <QCursor>
#include <QElapsedTimer>
#include <QObject>
#include <QHash>
#include <random>

#include "platform/Plataforma.h"

// The production platform: Qt widgets, the desktop's default applications, the real clock.
class Plataforma_Qt : public Plataforma {
  public:
    // Names the local time zone's file for the whole process, so that conversions stop reading it again.
    static void Fixa_Fuso_Horário();
    explicit Plataforma_Qt(QStringList argumentos);

    Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString& título, Ícone_Caixa ícone,
                                  Botões_Caixa botões) override;
    QString Caixa_Entrada(const QString& texto, const QString& título, const QString& padrão) override;
    int Mostra_Modal(QDialog* janela) override;
    QString Escolhe_Arquivo(const QString& título, const QString& filtro, const QString& sugestão,
                            bool para_gravar) override;
    void Bipe() override;
    void Toca_Som(const QString& arquivo) override;
    void Abre_Com_Aplicativo(const QString& caminho_ou_endereço) override;
    void Dorme(int milissegundos) override;
    void Processa_Eventos() override;
    void Processa_Eventos_Da_Caminhada() override;
    void Cursor_Ocupado(const QString& arquivo_ícone) override;
    void Cursor_Normal() override;
    QDateTime Agora() override;
    float Segundos_Desde_Meia_Noite() override;
    void Semeia(float semente) override;
    double Aleatório() override;
    bool Linha_Comando_Vazia() override;
    [[noreturn]] void Encerra_Agora(int código) override;
    bool Muda_Papel_de_Parede(const QString& arquivo_bitmap) override;
    QString Sistema_de_Arquivos(const QString& pasta) override;

  private:
    QStringList Argumentos;
    std::mt19937 Gerador;
    bool Cursor_Trocado = false;
    // The normal cursor is put back when the events next pass, not at once: a walk that takes the busy
    // cursor for every row changes the desktop's cursor once, not twice a row.
    bool Cursor_A_Restaurar = false;
    bool Acerto_Pedido = false;  // a making of the cursor is already queued
    void Acerta_Cursor();
    void Pede_Acerto();
    QCursor Cursor_Do_Ícone(const QString& ícone);
    QObject Contexto_Cursor;  // the queued making dies with the platform
    QElapsedTimer Desde_Os_Eventos;
    // Long walks ask for the same busy cursors at every row: each picture is made into a cursor once.
    QHash<QString, QCursor> Cursores;
    QString Cursor_Atual;   // the icon the desktop shows
    QString Cursor_Pedido;  // the icon asked last
};

// A box text keeps CR as its line end; Qt wants LF.
QString Texto_Para_Tela(const QString& texto);
