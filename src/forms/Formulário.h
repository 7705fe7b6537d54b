#pragma once
// What every window of the system has: the keyboard seen before the focused control (F1 opens the
// window's page of the manual, F10 a citation, Enter moves to the next control), and Form_Load,
// Form_Activate and Form_QueryUnload.
#include <QDialog>
#include <functional>
#include <initializer_list>

class QHBoxLayout;
class QLabel;
class QPixmap;
class QPushButton;
// The program's picture, as the windows show it beside their texts.
QPixmap Figura_Programa(int lado);
// The main window's screen fit: a design above 800 by 600 pixels (12000 by 9000 twips at 15 a pixel) takes
// 807 by 570 (12100 by 8550 twips); a smaller one keeps its size.
void Encaixa_Na_Tela(QWidget* janela);
// Gives every control of the window that has none an accessible name, so that a screen reader (and a test
// tool) finds it: a button or box by its caption, an edit by the label beside it or above it, else by its
// tool tip or its own name without the kind.
void Dá_Nomes_Acessíveis(QWidget* janela);
// Places a window centred on its parent's window, whole on the parent's screen (made smaller if it must).
void Centra_Sobre(QWidget* janela, const QWidget* pai);

class Formulário : public QDialog {
  public:
    Formulário(const QString& nome, QWidget* pai = nullptr);

    QString Tópico_Ajuda;  // empty: F1 does nothing in this window
    bool Revelação_Com_F10 = true;
    // Runs on F10; the citation routine installs itself here when it is linked in.
    static inline std::function<void()> Ao_Teclar_F10;
    // Asked before the window closes by any cause; false keeps it open.
    std::function<bool()> Form_QueryUnload;

  protected:
    // Controls under their names, as the window's routines and the tests find them.
    QLabel* Rótulo(const QString& nome, const QString& texto = QString());
    // Enter on a focused button clicks it (see keyPressEvent), so no button is the dialog's default.
    QPushButton* Botão(const QString& nome, const QString& texto);
    // The row of a window's command buttons, at its right.
    static QHBoxLayout* Linha_Botões(std::initializer_list<QPushButton*> botões);

    bool event(QEvent* evento) override;
    void closeEvent(QCloseEvent* evento) override;
    void showEvent(QShowEvent* evento) override;
    void keyPressEvent(QKeyEvent* evento) override;
    virtual void Form_Activate() {}

  private:
    bool Ativada = false;
};
