#include "sala/frmTela_Sorteio.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "game/frmSorteio.h"

frmTela_Sorteio::frmTela_Sorteio(frmSorteio& sorteio)
    : Tela_Sala("frmTela_Sorteio", &sorteio), Janela_Sorteio(sorteio) {
    lblTítulo = new Rótulo_Sala(this, "lblTítulo", 64);
    lblTítulo->Define_Cores(QColor(), Cores_Sala::Destaque);
    lblTítulo->setFixedHeight(90);
    lblFaixa = new Rótulo_Sala(this, "lblFaixa", 40);
    lblFaixa->Define_Cores(QColor(), QColor(0xc8, 0xd0, 0xf0));
    lblFaixa->setFixedHeight(60);
    lblNúmero_Sorteado = new Rótulo_Sala(this, "lblNúmero_Sorteado", 400);
    lblNúmero_Sorteado->Define_Cores(Cores_Sala::Painel, Cores_Sala::Texto);
    lblContemplados = new Rótulo_Sala(this, "lblContemplados", 34, Qt::AlignLeft | Qt::AlignVCenter);
    lblContemplados->Define_Cores(QColor(), QColor(0xc8, 0xd0, 0xf0));
    lblContemplados->setFixedHeight(50);
    auto* grade = new QGridLayout;
    grade->setSpacing(14);
    const int colunas = Contemplados_Visíveis / 2;
    for (int i = 0; i < Contemplados_Visíveis; ++i) {
        lblNúmero_Contemplado[i] = new Rótulo_Sala(this, QString("lblNúmero_Contemplado_%1").arg(i), 54);
        lblNúmero_Contemplado[i]->setFixedHeight(96);
        grade->addWidget(lblNúmero_Contemplado[i], i / colunas, i % colunas);
    }
    cmdSorteia = new Botão_Sala(this, "cmdSorteia", QColor(0xe0, 0x6c, 0x1f), 44);
    cmdSorteia->Define(Janela_Sorteio.cmdSorteia->text());
    cmdSorteia->setFixedHeight(120);
    QObject::connect(cmdSorteia, &QAbstractButton::clicked, this,
                     [this] { Janela_Sorteio.cmdSorteia->click(); });

    auto* raiz = new QVBoxLayout(this);
    raiz->setContentsMargins(48, 24, 48, 28);
    raiz->setSpacing(16);
    raiz->addWidget(lblTítulo);
    raiz->addWidget(lblFaixa);
    raiz->addWidget(lblNúmero_Sorteado, 1);
    raiz->addWidget(lblContemplados);
    raiz->addLayout(grade);
    raiz->addWidget(cmdSorteia);

    // Every number the window shows, the spin included, shows here at once: the window repaints between
    // numbers and this screen with it.
    QObject::connect(Janela_Sorteio.nbNúmero_Sorteado, &QLineEdit::textChanged, this, [this] {
        if (!isVisible()) return;
        lblNúmero_Sorteado->Define(Janela_Sorteio.nbNúmero_Sorteado->text());
        lblNúmero_Sorteado->repaint();
    });
    for (QLineEdit* caixa : Janela_Sorteio.nbNúmero_Contemplado)
        QObject::connect(caixa, &QLineEdit::textChanged, this, [this] {
            if (isVisible()) Atualiza();
        });
    QObject::connect(Janela_Sorteio.nbNúmero_Final, &QSpinBox::valueChanged, this, [this] {
        if (isVisible()) Atualiza();
    });
    Janela_Sorteio.fraSorteio->installEventFilter(this);
}

bool frmTela_Sorteio::eventFilter(QObject* objeto, QEvent* evento) {
    // The list hides while a number spins, and comes back with the new one.
    if (objeto == Janela_Sorteio.fraSorteio &&
        (evento->type() == QEvent::Show || evento->type() == QEvent::Hide) && isVisible())
        Atualiza();
    return Tela_Sala::eventFilter(objeto, evento);
}

void frmTela_Sorteio::Atualiza() {
    setWindowTitle(Janela_Sorteio.windowTitle());
    lblTítulo->Define(Janela_Sorteio.windowTitle());
    lblFaixa->Define(Janela_Sorteio.Label5->text() + " " + Janela_Sorteio.nbNúmero_Inicial->text() + " " +
                     Janela_Sorteio.Label3->text() + " " + Janela_Sorteio.nbNúmero_Final->text());
    lblNúmero_Sorteado->Define(Janela_Sorteio.nbNúmero_Sorteado->text());
    const bool lista = !Janela_Sorteio.fraSorteio->isHidden();
    lblContemplados->Define(lista ? Janela_Sorteio.fraSorteio->title() : QString());
    for (int i = 0; i < Contemplados_Visíveis; ++i) {
        const QString número = lista ? Janela_Sorteio.nbNúmero_Contemplado[i]->text() : QString();
        lblNúmero_Contemplado[i]->Define(número);
        // The newest number stands out; an empty place shows as a dim box.
        lblNúmero_Contemplado[i]->Define_Cores(
            número.isEmpty() ? Cores_Sala::Apagado : (i == 0 ? Cores_Sala::Destaque : Cores_Sala::Painel),
            i == 0 ? Cores_Sala::Fundo : Cores_Sala::Texto);
    }
    update();
}
