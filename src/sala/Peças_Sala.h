#pragma once
// The pieces that the room screens are drawn with: texts that take the largest type their place allows,
// large buttons and answer tiles, the die, the QR panel, and the window that turns a form into a screen
// for a projector or a television (F11 or Escape go back to the form).
#include <QAbstractButton>
#include <QColor>
#include <QImage>
#include <QString>
#include <functional>

#include "forms/Formulário.h"

class QLabel;
class QScreen;

namespace Cores_Sala {
inline const QColor Fundo{0x0f, 0x17, 0x3a};
inline const QColor Painel{0x1d, 0x2a, 0x5e};
inline const QColor Texto{0xff, 0xff, 0xff};
inline const QColor Apagado{0x2a, 0x33, 0x58};
inline const QColor Destaque{0xff, 0xc8, 0x2e};
inline const QColor Acerto{0x1f, 0x9d, 0x4c};
inline const QColor Erro{0xd3, 0x2f, 0x3c};
// The four answers: A red, B blue, C amber, D green; each tile also carries its letter.
inline const QColor Resposta[4] = {
    {0xd6, 0x3a, 0x46}, {0x1f, 0x6f, 0xd1}, {0xc9, 0x84, 0x00}, {0x26, 0x8f, 0x3f}};
}  // namespace Cores_Sala

// The largest font from `máximo` down to `mínimo` pixels with which `texto`, wrapped at word ends, fits
// `área`.
QFont Fonte_Que_Cabe(QFont base, const QString& texto, const QSize& área, int máximo, int mínimo);
// A text without the & that marks a window's keyboard shortcut ("Pedir Ajuda ao Dad&o"); && stays one &.
QString Sem_Marca_Atalho(const QString& texto);

// A text in the largest type that fits, on a panel of its own colour (or on the screen's background).
class Rótulo_Sala : public QWidget {
  public:
    Rótulo_Sala(QWidget* pai, const QString& nome, int máximo_pixels,
                Qt::Alignment alinhamento = Qt::AlignCenter);
    void Define(const QString& texto);
    void Define_Cores(const QColor& fundo, const QColor& texto);
    QString Texto() const { return Conteúdo; }
    // The type size the text has now, in pixels (for the tests: what a room reads from afar).
    int Pixels() const;

  protected:
    void paintEvent(QPaintEvent*) override;

  private:
    QString Conteúdo;
    QColor Cor_Fundo, Cor_Texto = Cores_Sala::Texto;
    int Máximo;
    Qt::Alignment Alinhamento;
};

// A large button, or an answer tile when it has a letter. A tile with no text is a blanked answer: an
// empty place that takes no click.
class Botão_Sala : public QAbstractButton {
  public:
    Botão_Sala(QWidget* pai, const QString& nome, const QColor& cor, int máximo_pixels);
    void Define(const QString& texto);
    void Define_Letra(const QString& letra) { Letra = letra; }
    // After an answer the window shows the right one: that tile stands out, the others fade, and the one
    // picked, when wrong, is crossed out.
    void Define_Correção(bool mostrada, bool certa, bool escolhida = false);
    bool Vazio() const { return text().isEmpty(); }
    bool Certa_Mostrada() const { return Correção && Certa; }
    bool Apagado() const { return Correção && !Certa; }
    bool Errada_Escolhida() const { return Correção && !Certa && Escolhida; }
    int Pixels() const;

  protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override { update(); }
    void leaveEvent(QEvent*) override { update(); }

  private:
    QRect Área_Texto() const;
    QColor Cor;
    QString Letra;
    int Máximo;
    bool Correção = false, Certa = false, Escolhida = false;
};

// The die, one to six pips; no face draws nothing.
class Desenho_Dado : public QWidget {
  public:
    explicit Desenho_Dado(QWidget* pai, const QString& nome);
    void Define(int face);
    int Face() const { return Valor; }

  protected:
    void paintEvent(QPaintEvent*) override;

  private:
    int Valor = 0;
};

// The QR code of the room's address, the address and the room code, in type that reaches the back rows.
class Painel_QR : public QWidget {
  public:
    explicit Painel_QR(QWidget* pai);
    void Mostra(const QString& endereço, const QString& código);
    QString Endereço() const { return Texto_Endereço; }
    QString Código() const { return Texto_Código; }
    // The square where the code is drawn, in this panel's coordinates.
    QRect Área_Código() const;

  protected:
    void paintEvent(QPaintEvent*) override;

  private:
    QImage Imagem;
    QString Texto_Endereço, Texto_Código;
};

// A form's screen for the room: full screen on the screen it chooses, F11 or Escape hide it and give the
// keyboard back to the form. Closing it by the window manager does the same; it never closes the form.
class Tela_Sala : public Formulário {
  public:
    Tela_Sala(const QString& nome, QDialog* janela);

    // Full screen, showing the form's state as it is now.
    void Mostra();
    // Back to the form.
    void Volta();
    // Reads the form's state again and draws it.
    virtual void Atualiza() = 0;

    // Whether a room screen of any form is on display: a form opened meanwhile opens on its screen too.
    static bool Alguma_Visível();
    // The screen for the room: with more than one screen, the largest that does not hold the form (the
    // projector beside a laptop), else the form's own.
    static QScreen* Tela_Destino(const QWidget* janela);

  protected:
    void keyPressEvent(QKeyEvent* evento) override;
    void closeEvent(QCloseEvent* evento) override;
    void showEvent(QShowEvent* evento) override;
    void paintEvent(QPaintEvent*) override;
    // The form that hides (its game or draw is over) takes its room screen with it.
    bool eventFilter(QObject* objeto, QEvent* evento) override;

    QDialog* Janela;
};

// F11 on the form shows its room screen.
void Liga_F11(QDialog* janela, Tela_Sala* tela);
