#pragma once
// F11 turns a window of the game to full screen and back. In full screen every text grows with the screen,
// so that a room reads the game on a projector or a television; the texts that the room reads from afar (the
// question, the answers, the raffle's number) grow the most.
#include <QFont>
#include <QPointer>
#include <QSet>
#include <QSize>
#include <initializer_list>
#include <vector>

class QDialog;
class QWidget;

class Tela_Cheia {
  public:
    Tela_Cheia(QDialog* janela, std::initializer_list<QWidget*> leitura = {});

    void Alterna();
    bool Ativa() const { return Escalada; }
    // Sets every text for a screen of this size (or back to the design's with an empty size).
    void Aplica(QSize tela);

    // A reading text's growth on a screen of this height: 2.5 on 1080 lines, so that a 13-point question
    // stands above 40 pixels.
    static double Escala_Leitura(int altura_tela);
    // How much this control's texts grow now: 1 outside full screen. A window that sets a size of its own
    // during the game multiplies it by this.
    double Fator(const QWidget* controle) const;

  private:
    struct Original {
        QPointer<QWidget> Controle;
        QFont Fonte;
        bool Fonte_Própria;
        QSize Mínimo, Máximo;
    };
    void Guarda_Originais();
    void Escala(double geral, double leitura);
    void Restaura();

    QDialog* Janela;
    QSet<QWidget*> Leitura;
    std::vector<Original> Originais;
    bool Escalada = false;
    double Geral = 1, Leitura_Atual = 1;
};
