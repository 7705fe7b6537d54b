#include "forms/Formulário.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTextEdit>
#include <algorithm>

#include "store/Funções_Banco.h"
#include "utilities/Ajuda.h"

QPixmap Figura_Programa(int lado) {
    const QPixmap figura(Caminho_Ícone("Quizora.png"));
    return figura.isNull() ? figura
                           : figura.scaled(lado, lado, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

void Encaixa_Na_Tela(QWidget* janela) {
    if (janela->height() > 600 || janela->width() > 800) janela->resize(807, 570);
}

void Centra_Sobre(QWidget* janela, const QWidget* pai) {
    const QScreen* tela = pai != nullptr ? pai->screen() : janela->screen();
    if (tela == nullptr) return;
    const QRect livre = tela->availableGeometry();
    // The frame is not known before the first showing: the title bar is counted as the platform's own.
    const int moldura = janela->isVisible() ? janela->frameGeometry().height() - janela->height() : 0;
    QSize tamanho = janela->size().boundedTo(livre.size() - QSize(0, moldura));
    if (tamanho != janela->size()) janela->resize(tamanho);
    const QRect base = pai != nullptr ? pai->window()->frameGeometry() : livre;
    QRect lugar(QPoint(), tamanho);
    lugar.moveCenter(base.center());
    lugar.moveLeft(
        std::clamp(lugar.left(), livre.left(), std::max(livre.left(), livre.right() + 1 - tamanho.width())));
    lugar.moveTop(std::clamp(lugar.top(), livre.top(),
                             std::max(livre.top(), livre.bottom() + 1 - moldura - tamanho.height())));
    janela->move(lugar.topLeft());
}

namespace {
QString Sem_Marcas(QString texto) {
    texto.remove(QRegularExpression("&(?!&)"));
    texto.replace("&&", "&");
    texto = texto.simplified();
    while (texto.endsWith(':') || texto.endsWith('.')) texto.chop(1);
    return texto.trimmed();
}

// The label whose text stands just left of the control on its line, else just above it.
QString Rótulo_Ao_Lado(QWidget* janela, QWidget* controle, const QList<QLabel*>& rótulos) {
    const QRect c(controle->mapTo(janela, QPoint()), controle->size());
    QLabel* melhor = nullptr;
    int distância = 0;
    for (QLabel* r : rótulos) {
        if (!r->isVisibleTo(janela) || Sem_Marcas(r->text()).isEmpty() || r->buddy() != nullptr) continue;
        const QRect l(r->mapTo(janela, QPoint()), r->size());
        int d = -1;
        if (l.right() <= c.left() + 4 && std::abs(l.center().y() - c.center().y()) <= c.height() / 2 + 4)
            d = c.left() - l.right();
        else if (l.bottom() <= c.top() + 4 && l.left() <= c.left() + 24 && l.right() >= c.left() - 24)
            d = 2 * (c.top() - l.bottom()) + 40;
        if (d >= 0 && d < 200 && (melhor == nullptr || d < distância)) {
            melhor = r;
            distância = d;
        }
    }
    return melhor != nullptr ? Sem_Marcas(melhor->text()) : QString();
}
}  // namespace

void Dá_Nomes_Acessíveis(QWidget* janela) {
    const QList<QLabel*> rótulos = janela->findChildren<QLabel*>();
    for (QWidget* c : janela->findChildren<QWidget*>()) {
        if (!c->accessibleName().isEmpty() || qobject_cast<QLabel*>(c) != nullptr) continue;
        // The inner parts of a composed control (a spin box's edit, a table's bars) are named by it.
        if (c->parentWidget() != janela && c->parentWidget()->focusProxy() == c) continue;
        const bool controle = c->focusPolicy() != Qt::NoFocus || qobject_cast<QLineEdit*>(c) != nullptr ||
                              qobject_cast<QAbstractSpinBox*>(c) != nullptr ||
                              qobject_cast<QProgressBar*>(c) != nullptr;
        if (!controle || c->objectName().isEmpty() || c->objectName().startsWith("qt_")) continue;
        QString nome;
        if (auto* botão = qobject_cast<QAbstractButton*>(c)) nome = Sem_Marcas(botão->text());
        if (nome.isEmpty()) nome = Rótulo_Ao_Lado(janela, c, rótulos);
        if (nome.isEmpty()) nome = Sem_Marcas(c->toolTip());
        if (nome.isEmpty()) {
            // "txtJogador_1" reads "Jogador 1".
            nome = c->objectName();
            const int início = static_cast<int>(
                std::find_if(nome.begin(), nome.end(), [](QChar ch) { return ch.isUpper(); }) - nome.begin());
            nome = nome.mid(início < nome.size() ? início : 0).replace('_', ' ').trimmed();
        }
        c->setAccessibleName(nome);
    }
}

Formulário::Formulário(const QString& nome, QWidget* pai) : QDialog(pai) {
    setObjectName(nome);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

QLabel* Formulário::Rótulo(const QString& nome, const QString& texto) {
    auto* rótulo = new QLabel(texto, this);
    rótulo->setObjectName(nome);
    return rótulo;
}

QPushButton* Formulário::Botão(const QString& nome, const QString& texto) {
    auto* botão = new QPushButton(texto, this);
    botão->setObjectName(nome);
    botão->setAutoDefault(false);
    return botão;
}

QHBoxLayout* Formulário::Linha_Botões(std::initializer_list<QPushButton*> botões) {
    auto* linha = new QHBoxLayout;
    linha->addStretch();
    for (QPushButton* botão : botões) linha->addWidget(botão);
    return linha;
}

bool Formulário::event(QEvent* evento) {
    if (evento->type() == QEvent::ShortcutOverride || evento->type() == QEvent::KeyPress) {
        auto* tecla = static_cast<QKeyEvent*>(evento);
        if (evento->type() == QEvent::KeyPress) {
            if (tecla->key() == Qt::Key_F1 && !Tópico_Ajuda.isEmpty()) {
                Ajuda(this, Tópico_Ajuda);
                return true;
            }
            if (tecla->key() == Qt::Key_F10 && Revelação_Com_F10 && Ao_Teclar_F10) {
                Ao_Teclar_F10();
                return true;
            }
        }
    }
    return QDialog::event(evento);
}

void Formulário::showEvent(QShowEvent* evento) {
    QDialog::showEvent(evento);
    if (!Ativada) {
        // Every window opens centred on the window that opened it, never off the screen.
        if (!isFullScreen()) Centra_Sobre(this, parentWidget());
        Dá_Nomes_Acessíveis(this);
        Ativada = true;
        QMetaObject::invokeMethod(
            this, [this] { Form_Activate(); }, Qt::QueuedConnection);
    }
}

void Formulário::keyPressEvent(QKeyEvent* evento) {
    // Enter moves to the next control and changes nothing on the way: an option button or a check box
    // is not chosen by it (in the game that would spend a help). A command button takes it as a click,
    // so that OK can be reached and pressed by the keyboard alone.
    if (evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter) {
        QWidget* atual = focusWidget();
        if (auto* botão = qobject_cast<QPushButton*>(atual)) {
            botão->click();
        } else {
            focusNextChild();
        }
        return;
    }
    // Escape does what the window's own way back does: Cancelar during an edit, else Sair; nothing in a
    // window that has neither enabled (it is never a bare close that would skip their steps).
    if (evento->key() == Qt::Key_Escape) {
        for (const char* nome : {"cmdCancelar", "cmdSair"}) {
            auto* botão = findChild<QPushButton*>(nome);
            if (botão != nullptr && botão->isEnabled() && botão->isVisibleTo(this)) {
                botão->click();
                return;
            }
        }
        return;
    }
    QDialog::keyPressEvent(evento);
}

void Formulário::closeEvent(QCloseEvent* evento) {
    if (Form_QueryUnload && !Form_QueryUnload()) {
        evento->ignore();
        return;
    }
    QDialog::closeEvent(evento);
}
