#include "sala/Peças_Sala.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "sala/Código_QR.h"

namespace {
constexpr int Raio = 18;  // the corners of panels and tiles

QFont Fonte_Sala(int pixels, bool negrito = true) {
    QFont f("Liberation Sans");
    f.setStyleHint(QFont::SansSerif);
    f.setBold(negrito);
    f.setPixelSize(std::max(1, pixels));
    return f;
}

void Escreve(QPainter& p, const QRect& área, const QString& texto, int máximo, int mínimo,
             Qt::Alignment alinhamento, const QColor& cor) {
    p.setFont(Fonte_Que_Cabe(Fonte_Sala(máximo), texto, área.size(), máximo, mínimo));
    p.setPen(cor);
    p.drawText(área, static_cast<int>(alinhamento) | Qt::TextWordWrap, texto);
}
}  // namespace

QFont Fonte_Que_Cabe(QFont base, const QString& texto, const QSize& área, int máximo, int mínimo) {
    mínimo = std::max(1, mínimo);
    for (int px = std::max(máximo, mínimo); px > mínimo; px -= std::max(1, px / 16)) {
        base.setPixelSize(px);
        const QRect preciso =
            QFontMetrics(base).boundingRect(QRect(QPoint(0, 0), área), Qt::TextWordWrap, texto);
        if (preciso.width() <= área.width() && preciso.height() <= área.height()) return base;
    }
    base.setPixelSize(mínimo);
    return base;
}

QString Sem_Marca_Atalho(const QString& texto) {
    QString limpo;
    for (int i = 0; i < texto.size(); ++i) {
        if (texto[i] == '&' && i + 1 < texto.size()) ++i;  // "&&" is one "&"; "&o" is "o"
        limpo += texto[i];
    }
    return limpo;
}

// ---------------------------------------------------------------------------------------------------

Rótulo_Sala::Rótulo_Sala(QWidget* pai, const QString& nome, int máximo_pixels, Qt::Alignment alinhamento)
    : QWidget(pai), Máximo(máximo_pixels), Alinhamento(alinhamento) {
    setObjectName(nome);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Rótulo_Sala::Define(const QString& texto) {
    if (texto == Conteúdo) return;
    Conteúdo = texto;
    setAccessibleName(texto);
    update();
}

void Rótulo_Sala::Define_Cores(const QColor& fundo, const QColor& texto) {
    if (fundo == Cor_Fundo && texto == Cor_Texto) return;
    Cor_Fundo = fundo;
    Cor_Texto = texto;
    update();
}

int Rótulo_Sala::Pixels() const {
    const int margem = Cor_Fundo.isValid() ? 2 * 20 : 0;
    return Fonte_Que_Cabe(Fonte_Sala(Máximo), Conteúdo, size() - QSize(margem, margem / 2), Máximo, 12)
        .pixelSize();
}

void Rótulo_Sala::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QRect área = rect();
    if (Cor_Fundo.isValid()) {
        p.setPen(Qt::NoPen);
        p.setBrush(Cor_Fundo);
        p.drawRoundedRect(área, Raio, Raio);
        área.adjust(20, 10, -20, -10);
    }
    Escreve(p, área, Conteúdo, Máximo, 12, Alinhamento, Cor_Texto);
}

// ---------------------------------------------------------------------------------------------------

Botão_Sala::Botão_Sala(QWidget* pai, const QString& nome, const QColor& cor, int máximo_pixels)
    : QAbstractButton(pai), Cor(cor), Máximo(máximo_pixels) {
    setObjectName(nome);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    // The room screen is worked by the pointer (or a finger on a touch screen); the keyboard goes to the
    // form, and no focus frame shows on the projector.
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
}

void Botão_Sala::Define(const QString& texto) {
    if (texto == text()) return;
    setText(texto);
    setAccessibleName(Letra.isEmpty() ? texto : Letra + ": " + texto);
    update();
}

void Botão_Sala::Define_Correção(bool mostrada, bool certa, bool escolhida) {
    if (mostrada == Correção && certa == Certa && escolhida == Escolhida) return;
    Correção = mostrada;
    Certa = certa;
    Escolhida = escolhida;
    update();
}

QRect Botão_Sala::Área_Texto() const {
    QRect área = rect().adjusted(24, 12, -24, -12);
    if (!Letra.isEmpty()) área.setLeft(área.left() + std::min(height() - 24, 110) + 20);
    return área;
}

int Botão_Sala::Pixels() const {
    return Fonte_Que_Cabe(Fonte_Sala(Máximo), text(), Área_Texto().size(), Máximo, 12).pixelSize();
}

void Botão_Sala::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF caixa = QRectF(rect()).adjusted(3, 3, -3, -3);
    if (Vazio()) {
        // A blanked answer: its place stays, empty.
        p.setPen(Qt::NoPen);
        p.setBrush(Cores_Sala::Apagado);
        p.drawRoundedRect(caixa, Raio, Raio);
        return;
    }
    QColor cor = Cor;
    if (!isEnabled() && Letra.isEmpty()) cor = Cores_Sala::Apagado;
    if (Apagado()) cor = cor.darker(Errada_Escolhida() ? 170 : 260);
    if (underMouse() && isEnabled() && !Correção) cor = cor.lighter(115);
    if (isDown()) cor = cor.darker(120);
    p.setPen(Certa_Mostrada()     ? QPen(Cores_Sala::Destaque, 10)
             : Errada_Escolhida() ? QPen(Cores_Sala::Erro, 10)
                                  : Qt::NoPen);
    p.setBrush(cor);
    p.drawRoundedRect(caixa.adjusted(4, 4, -4, -4), Raio, Raio);
    const QColor cor_texto = Apagado() ? QColor(255, 255, 255, 130) : Cores_Sala::Texto;
    if (!Letra.isEmpty()) {
        // The letter in a white disc, so that the tile is named without its colour.
        const int lado = std::min(height() - 24, 110);
        const QRectF disco(24, (height() - lado) / 2.0, lado, lado);
        p.setPen(Qt::NoPen);
        p.setBrush(Apagado() ? QColor(255, 255, 255, 110) : Cores_Sala::Texto);
        p.drawEllipse(disco);
        p.setFont(Fonte_Sala(lado * 6 / 10));
        p.setPen(Apagado() ? cor : Cor.darker(110));
        p.drawText(disco, Qt::AlignCenter, Letra);
    }
    Escreve(p, Área_Texto(), text(), Máximo, 12,
            Letra.isEmpty() ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter, cor_texto);
    if (Errada_Escolhida()) {
        // The answer picked, crossed out.
        const double l = std::min(height() * 0.45, 80.0);
        const QPointF c(width() - 24 - l / 2, height() / 2.0);
        p.setPen(Qt::NoPen);
        p.setBrush(Cores_Sala::Erro);
        p.drawEllipse(c, l / 2, l / 2);
        p.setPen(QPen(Cores_Sala::Texto, l * 0.12, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(c + QPointF(-l * 0.2, -l * 0.2), c + QPointF(l * 0.2, l * 0.2));
        p.drawLine(c + QPointF(-l * 0.2, l * 0.2), c + QPointF(l * 0.2, -l * 0.2));
    }
    if (Certa_Mostrada()) {
        // A tick at the right end: the right answer, seen also by who cannot tell the colours apart.
        const double l = std::min(height() * 0.45, 80.0);
        const QPointF c(width() - 24 - l / 2, height() / 2.0);
        p.setPen(Qt::NoPen);
        p.setBrush(Cores_Sala::Destaque);
        p.drawEllipse(c, l / 2, l / 2);
        QPainterPath visto;
        visto.moveTo(c + QPointF(-l * 0.24, 0));
        visto.lineTo(c + QPointF(-l * 0.06, l * 0.2));
        visto.lineTo(c + QPointF(l * 0.26, -l * 0.2));
        p.setPen(QPen(Cores_Sala::Fundo, l * 0.12, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(visto);
    }
}

// ---------------------------------------------------------------------------------------------------

Desenho_Dado::Desenho_Dado(QWidget* pai, const QString& nome) : QWidget(pai) {
    setObjectName(nome);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Desenho_Dado::Define(int face) {
    if (face < 0 || face > 6) face = 0;
    if (face == Valor) return;
    Valor = face;
    setAccessibleName(face == 0 ? QString() : QString("Dado: %1").arg(face));
    update();
}

void Desenho_Dado::paintEvent(QPaintEvent*) {
    if (Valor == 0) return;
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const double lado = std::min(width(), height()) * 0.92;
    const QRectF face((width() - lado) / 2, (height() - lado) / 2, lado, lado);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 90));
    p.drawRoundedRect(face.translated(lado * 0.03, lado * 0.04), lado * 0.16, lado * 0.16);
    p.setBrush(Qt::white);
    p.setPen(QPen(QColor(0x33, 0x33, 0x33), std::max(2.0, lado * 0.015)));
    p.drawRoundedRect(face, lado * 0.16, lado * 0.16);
    // The pips on a 3 by 3 grid, as a die has them.
    static const char* const Pontos[7] = {"", "4", "26", "246", "0268", "02468", "023568"};
    p.setPen(Qt::NoPen);
    p.setBrush(Valor == 1 ? QColor(0xc6, 0x28, 0x28) : QColor(0x1a, 0x1a, 0x1a));
    const double passo = lado / 4, raio = lado * (Valor == 1 ? 0.11 : 0.085);
    for (const char* c = Pontos[Valor]; *c != 0; ++c) {
        const int posição = *c - '0';
        const QPointF centro(face.left() + passo * (1 + posição % 3), face.top() + passo * (1 + posição / 3));
        p.drawEllipse(centro, raio, raio);
    }
}

// ---------------------------------------------------------------------------------------------------

Painel_QR::Painel_QR(QWidget* pai) : QWidget(pai) {
    setObjectName("Painel_QR");
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Painel_QR::Mostra(const QString& endereço, const QString& código) {
    Texto_Endereço = endereço;
    Texto_Código = código;
    Imagem = Imagem_Código_QR(endereço, 1);
    setAccessibleName("Endereço: " + endereço + ". Código da sala: " + código);
    update();
}

QRect Painel_QR::Área_Código() const {
    // The code takes the upper part, the address and the room code the lower.
    const int lado = std::max(0, std::min(width() - 40, height() * 64 / 100));
    return QRect((width() - lado) / 2, 20, lado, lado);
}

void Painel_QR::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(Cores_Sala::Painel);
    p.drawRoundedRect(rect(), Raio, Raio);
    const QRect área = Área_Código();
    p.setBrush(Qt::white);
    p.drawRoundedRect(área.adjusted(-8, -8, 8, 8), 8, 8);
    if (!Imagem.isNull()) {
        // Whole pixels a module, no smoothing: a camera reads sharp squares best.
        const int módulo = std::max(1, área.width() / Imagem.width());
        const int lado = módulo * Imagem.width();
        const QRect alvo(área.center().x() - lado / 2, área.center().y() - lado / 2, lado, lado);
        p.setRenderHint(QPainter::SmoothPixmapTransform, false);
        p.drawImage(alvo, Imagem);
    }
    int y = área.bottom() + 18;
    const int resto = height() - y - 12;
    const QRect endereço(16, y, width() - 32, resto * 30 / 100);
    Escreve(p, endereço, Texto_Endereço, 40, 14, Qt::AlignCenter, Cores_Sala::Texto);
    y = endereço.bottom();
    const QRect rótulo(16, y, width() - 32, resto * 22 / 100);
    Escreve(p, rótulo, "Código da sala:", 30, 12, Qt::AlignCenter, QColor(0xc8, 0xd0, 0xf0));
    QFont grande = Fonte_Sala(10);
    grande.setLetterSpacing(QFont::PercentageSpacing, 115);
    const QRect código(16, rótulo.bottom(), width() - 32, height() - rótulo.bottom() - 10);
    p.setFont(Fonte_Que_Cabe(grande, Texto_Código, código.size(), 90, 16));
    p.setPen(Cores_Sala::Destaque);
    p.drawText(código, Qt::AlignCenter, Texto_Código);
}

// ---------------------------------------------------------------------------------------------------

Tela_Sala::Tela_Sala(const QString& nome, QDialog* janela) : Formulário(nome, janela), Janela(janela) {
    // A window of its own over the form: the form's modal state does not block it, and it goes with it.
    setWindowFlag(Qt::Window, true);
    setWindowTitle(janela->windowTitle());
    setAutoFillBackground(false);
    // F1 and F10 work here as in the form.
    if (auto* formulário = dynamic_cast<Formulário*>(janela)) Tópico_Ajuda = formulário->Tópico_Ajuda;
    janela->installEventFilter(this);
}

bool Tela_Sala::eventFilter(QObject* objeto, QEvent* evento) {
    if (objeto == Janela && evento->type() == QEvent::Hide) hide();
    // The form under this screen got the keyboard back (a window over it closed, the hall of fame): the
    // keyboard goes where the room looks. A form on another screen keeps it.
    if (objeto == Janela && evento->type() == QEvent::WindowActivate && isVisible() &&
        Janela->screen() == screen())
        QTimer::singleShot(0, this, [this] {
            if (isVisible()) activateWindow();
        });
    return Formulário::eventFilter(objeto, evento);
}

bool Tela_Sala::Alguma_Visível() {
    for (QWidget* janela : QApplication::topLevelWidgets())
        if (dynamic_cast<Tela_Sala*>(janela) != nullptr && janela->isVisible()) return true;
    return false;
}

QScreen* Tela_Sala::Tela_Destino(const QWidget* janela) {
    QScreen* própria = janela != nullptr ? janela->screen() : QGuiApplication::primaryScreen();
    QScreen* escolhida = própria;
    qint64 maior = -1;
    for (QScreen* tela : QGuiApplication::screens()) {
        if (tela == própria) continue;
        const qint64 área = qint64(tela->geometry().width()) * tela->geometry().height();
        if (área > maior) {
            maior = área;
            escolhida = tela;
        }
    }
    return escolhida;
}

void Tela_Sala::Mostra() {
    Atualiza();
    if (QScreen* tela = Tela_Destino(Janela)) {
        setScreen(tela);
        setGeometry(tela->geometry());
    }
    showFullScreen();
    raise();
    activateWindow();
}

void Tela_Sala::Volta() {
    hide();
    Janela->raise();
    Janela->activateWindow();
}

void Tela_Sala::showEvent(QShowEvent* evento) {
    Formulário::showEvent(evento);
    Atualiza();
}

void Tela_Sala::keyPressEvent(QKeyEvent* evento) {
    // Escape only leaves the room screen: it never reaches the form, where it would end the game.
    if (evento->key() == Qt::Key_F11 || evento->key() == Qt::Key_Escape) {
        Volta();
        return;
    }
    Formulário::keyPressEvent(evento);
}

void Tela_Sala::closeEvent(QCloseEvent* evento) {
    evento->ignore();
    Volta();
}

void Tela_Sala::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Cores_Sala::Fundo);
}

void Liga_F11(QDialog* janela, Tela_Sala* tela) {
    auto* f11 = new QShortcut(QKeySequence(Qt::Key_F11), janela);
    QObject::connect(f11, &QShortcut::activated, janela, [tela] {
        if (tela->isVisible())
            tela->Volta();
        else
            tela->Mostra();
    });
}
