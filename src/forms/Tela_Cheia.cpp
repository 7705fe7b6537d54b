#include "forms/Tela_Cheia.h"

#include <QDialog>
#include <QLayout>
#include <QScreen>
#include <QShortcut>
#include <QWidget>
#include <algorithm>

namespace {
QFont Fonte_Escalada(QFont fonte, double fator) {
    if (fonte.pointSizeF() > 0)
        fonte.setPointSizeF(fonte.pointSizeF() * fator);
    else
        fonte.setPixelSize(std::max(1, static_cast<int>(fonte.pixelSize() * fator + 0.5)));
    return fonte;
}

int Escala_Medida(int medida, double fator) {
    // QWIDGETSIZE_MAX and zero mean "no limit" and "none": they stay.
    if (medida <= 0 || medida >= QWIDGETSIZE_MAX) return medida;
    return std::min(QWIDGETSIZE_MAX, static_cast<int>(medida * fator + 0.5));
}
}  // namespace

Tela_Cheia::Tela_Cheia(QDialog* janela, std::initializer_list<QWidget*> leitura)
    : Janela(janela), Leitura(leitura) {
    auto* f11 = new QShortcut(QKeySequence(Qt::Key_F11), janela);
    QObject::connect(f11, &QShortcut::activated, janela, [this] { Alterna(); });
}

double Tela_Cheia::Escala_Leitura(int altura_tela) {
    return altura_tela / 432.0;
}

double Tela_Cheia::Fator(const QWidget* controle) const {
    if (!Escalada) return 1;
    return Leitura.contains(const_cast<QWidget*>(controle)) ? Leitura_Atual : Geral;
}

void Tela_Cheia::Alterna() {
    QLayout* layout = Janela->layout();
    if (Janela->isFullScreen()) {
        Janela->showNormal();
        Aplica(QSize());
        if (layout != nullptr) layout->setSizeConstraint(QLayout::SetDefaultConstraint);
        return;
    }
    // The grown texts must not change the window's size hints while the window manager turns it to full
    // screen: it then drops the request.
    if (layout != nullptr) layout->setSizeConstraint(QLayout::SetNoConstraint);
    Janela->showFullScreen();
    QScreen* tela = Janela->screen();
    Aplica(tela != nullptr ? tela->geometry().size() : QSize());
}

void Tela_Cheia::Aplica(QSize tela) {
    Restaura();
    if (tela.isEmpty()) return;
    Guarda_Originais();
    // The ordinary texts grow as the window's design fills the screen; the reading texts at least by their
    // own measure. A layout that would not fit any more is taken down a step at a time.
    const QSize desenho = Janela->sizeHint().expandedTo(Janela->minimumSize());
    // The height leads: a window wider than tall in its design still fills the screen's height.
    double geral = std::max(1.0, tela.height() / double(desenho.height()) * 0.9);
    double leitura = std::max(geral, Escala_Leitura(tela.height()));
    for (int passo = 0; passo < 20; ++passo) {
        Escala(geral, leitura);
        const QSize preciso = Janela->layout() != nullptr ? Janela->layout()->totalMinimumSize() : QSize();
        if (preciso.width() <= tela.width() && preciso.height() <= tela.height()) break;
        geral = std::max(1.0, geral * 0.92);
        leitura = std::max(geral, leitura * 0.96);
    }
}

void Tela_Cheia::Guarda_Originais() {
    Originais.clear();
    QList<QWidget*> controles = Janela->findChildren<QWidget*>();
    controles.prepend(Janela);
    for (QWidget* c : controles)
        Originais.push_back(
            {c, c->font(), c->testAttribute(Qt::WA_SetFont), c->minimumSize(), c->maximumSize()});
}

void Tela_Cheia::Escala(double geral, double leitura) {
    // Every control gets its own font, so nothing grows twice through its parent.
    for (const Original& o : Originais) {
        if (o.Controle.isNull()) continue;
        const double fator = Leitura.contains(o.Controle) ? leitura : geral;
        o.Controle->setFont(Fonte_Escalada(o.Fonte, fator));
        if (o.Controle == Janela) continue;
        o.Controle->setMinimumSize(Escala_Medida(o.Mínimo.width(), fator),
                                   Escala_Medida(o.Mínimo.height(), fator));
        o.Controle->setMaximumSize(Escala_Medida(o.Máximo.width(), fator),
                                   Escala_Medida(o.Máximo.height(), fator));
    }
    Escalada = true;
    Geral = geral;
    Leitura_Atual = leitura;
}

void Tela_Cheia::Restaura() {
    for (const Original& o : Originais) {
        if (o.Controle.isNull()) continue;
        o.Controle->setFont(o.Fonte_Própria ? o.Fonte : QFont());
        if (o.Controle == Janela) continue;
        o.Controle->setMinimumSize(o.Mínimo);
        o.Controle->setMaximumSize(o.Máximo);
    }
    Originais.clear();
    Escalada = false;
}
