#include "sala/frmTela_Sala.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "game/frmJogo.h"

// The competitors, one line each: the one on turn stands out, one who has dropped out fades.
class Placar_Sala : public QWidget {
  public:
    struct Linha {
        QString Nome, Pontos, Nível;
        bool Na_Vez = false, Ativo = true;
    };
    explicit Placar_Sala(QWidget* pai) : QWidget(pai) {
        setObjectName("Placar");
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setFixedHeight(Máximo_Jogadores * Altura_Linha);
    }
    void Define(const QList<Linha>& linhas) {
        Linhas = linhas;
        QStringList texto;
        for (const Linha& l : linhas) texto << l.Nome + ", " + l.Pontos + ", nível " + l.Nível;
        setAccessibleName(texto.join("; "));
        update();
    }
    QList<Linha> Linhas;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        for (int i = 0; i < Linhas.size(); ++i) {
            const Linha& l = Linhas[i];
            const QRect linha(0, i * Altura_Linha + 3, width(), Altura_Linha - 6);
            p.setPen(Qt::NoPen);
            p.setBrush(l.Na_Vez ? Cores_Sala::Destaque : Cores_Sala::Painel);
            p.drawRoundedRect(linha, 12, 12);
            QColor cor = l.Na_Vez ? Cores_Sala::Fundo : Cores_Sala::Texto;
            if (!l.Ativo) cor.setAlpha(110);
            p.setPen(cor);
            const int coluna_nível = 96, coluna_pontos = 190;
            const QRect nome = linha.adjusted(16, 0, -(coluna_pontos + coluna_nível + 24), 0);
            p.setFont(Fonte_Que_Cabe(Fonte(30), l.Nome, QSize(nome.width(), nome.height() / 2 + 8), 30, 14));
            p.drawText(nome, Qt::AlignLeft | Qt::AlignVCenter,
                       QFontMetrics(p.font()).elidedText(l.Nome, Qt::ElideRight, nome.width()));
            p.setFont(Fonte(30));
            p.drawText(QRect(linha.right() - coluna_pontos - coluna_nível - 8, linha.top(), coluna_pontos,
                             linha.height()),
                       Qt::AlignRight | Qt::AlignVCenter, l.Pontos);
            p.setFont(Fonte(24));
            p.drawText(QRect(linha.right() - coluna_nível - 4, linha.top(), coluna_nível, linha.height()),
                       Qt::AlignCenter, "Nível " + l.Nível);
        }
    }

  private:
    static constexpr int Altura_Linha = 64;
    static QFont Fonte(int pixels) {
        QFont f("Liberation Sans");
        f.setBold(true);
        f.setPixelSize(pixels);
        return f;
    }
};

namespace {
const char* const Letras[4] = {"A", "B", "C", "D"};
QColor Cor_Ajuda(int ajuda) {
    // The skips in one colour, the three helps that take answers away in another.
    return ajuda < Ajuda_Dado ? QColor(0x5b, 0x3f, 0xb8) : QColor(0x0d, 0x7f, 0x8c);
}
}  // namespace

frmTela_Sala::frmTela_Sala(frmJogo& jogo) : Tela_Sala("frmTela_Sala", &jogo), Jogo(jogo) {
    lblJogador_Atual = new Rótulo_Sala(this, "lblJogador_Atual", 52, Qt::AlignLeft | Qt::AlignVCenter);
    lblValor = new Rótulo_Sala(this, "lblValor", 52, Qt::AlignRight | Qt::AlignVCenter);
    lblValor->Define_Cores(QColor(), Cores_Sala::Destaque);
    lblPergunta = new Rótulo_Sala(this, "lblPergunta", 60);
    lblPergunta->Define_Cores(Cores_Sala::Painel, Cores_Sala::Texto);

    Respostas = new QWidget(this);
    Respostas->setObjectName("Respostas");
    auto* grade = new QGridLayout(Respostas);
    grade->setContentsMargins(0, 0, 0, 0);
    grade->setSpacing(14);
    for (int k = 0; k < 4; ++k) {
        cmdResposta[k] =
            new Botão_Sala(Respostas, QString("cmdResposta_%1").arg(k), Cores_Sala::Resposta[k], 46);
        cmdResposta[k]->Define_Letra(Letras[k]);
        grade->addWidget(cmdResposta[k], k / 2, k % 2);
        // The same click as on the window's answer: the window decides what it means.
        QObject::connect(cmdResposta[k], &QAbstractButton::clicked, this, [this, k] {
            if (!cmdResposta[k]->Vazio()) Jogo.optResposta[k]->click();
        });
    }
    imgDado_Rolando = new Desenho_Dado(Respostas, "imgDado_Rolando");
    imgDado_Rolando->hide();

    imgDado = new Desenho_Dado(this, "imgDado");
    imgDado->setFixedSize(96, 96);
    lblComentário = new Rótulo_Sala(this, "lblComentário", 50);

    lblPlacar = new Rótulo_Sala(this, "lblPlacar", 34, Qt::AlignLeft | Qt::AlignVCenter);
    lblPlacar->Define(Jogo.fraJogadores->title());
    lblPlacar->Define_Cores(QColor(), QColor(0xc8, 0xd0, 0xf0));
    Placar = new Placar_Sala(this);
    Painel = new Painel_QR(this);
    Painel->hide();
    cmdCelulares = new Botão_Sala(this, "cmdCelulares", QColor(0xe0, 0x6c, 0x1f), 38);
    cmdCelulares->Define("Jogar pelos celulares");
    QObject::connect(cmdCelulares, &QAbstractButton::clicked, this, [this] {
        if (Ao_Pedir_Celulares) Ao_Pedir_Celulares();
    });

    auto* ajudas = new QHBoxLayout;
    ajudas->setSpacing(14);
    for (int i = 0; i < Quantidade_Ajudas; ++i) {
        cmdAjuda[i] = new Botão_Sala(this, QString("cmdAjuda_%1").arg(i), Cor_Ajuda(i), 34);
        cmdAjuda[i]->Define(Sem_Marca_Atalho(Jogo.chkAjuda[i]->text()));
        // A help that is gone leaves its place, so the others do not move under the pointer.
        QSizePolicy política = cmdAjuda[i]->sizePolicy();
        política.setRetainSizeWhenHidden(true);
        cmdAjuda[i]->setSizePolicy(política);
        ajudas->addWidget(cmdAjuda[i]);
        QObject::connect(cmdAjuda[i], &QAbstractButton::clicked, this,
                         [this, i] { Jogo.chkAjuda[i]->click(); });
    }

    auto* topo = new QHBoxLayout;
    topo->addWidget(lblJogador_Atual, 3);
    topo->addWidget(lblValor, 2);
    auto* comentário = new QHBoxLayout;
    comentário->setSpacing(16);
    comentário->addWidget(imgDado);
    comentário->addWidget(lblComentário, 1);
    QSizePolicy política = imgDado->sizePolicy();
    política.setRetainSizeWhenHidden(false);
    imgDado->setSizePolicy(política);

    auto* esquerda = new QVBoxLayout;
    esquerda->setSpacing(18);
    esquerda->addLayout(topo);
    esquerda->addWidget(lblPergunta);
    esquerda->addWidget(Respostas);
    esquerda->addLayout(comentário);
    lblJogador_Atual->setFixedHeight(80);
    lblValor->setFixedHeight(80);
    lblPergunta->setMinimumHeight(150);
    lblComentário->setFixedHeight(100);
    esquerda->setStretch(1, 5);
    esquerda->setStretch(2, 9);

    auto* direita = new QVBoxLayout;
    direita->setSpacing(14);
    lblPlacar->setFixedHeight(56);
    direita->addWidget(lblPlacar);
    direita->addWidget(Placar);
    direita->addWidget(Painel, 10);
    direita->addStretch(1);
    direita->addWidget(cmdCelulares);
    cmdCelulares->setFixedHeight(110);

    auto* raiz = new QGridLayout(this);
    raiz->setContentsMargins(28, 22, 28, 22);
    raiz->setHorizontalSpacing(28);
    raiz->setVerticalSpacing(20);
    raiz->addLayout(esquerda, 0, 0);
    raiz->addLayout(direita, 0, 1);
    raiz->addLayout(ajudas, 1, 0, 1, 2);
    raiz->setColumnStretch(0, 7);
    raiz->setColumnStretch(1, 3);
    raiz->setRowStretch(0, 1);
    for (Botão_Sala* b : cmdAjuda) b->setFixedHeight(110);

    Jogo.Ao_Mudar.push_back([this] {
        if (isVisible()) Atualiza();
    });
}

void frmTela_Sala::Mostra_Sala(const QString& endereço, const QString& código) {
    Painel->Mostra(endereço, código);
    Painel->show();
    Atualiza();
}

void frmTela_Sala::Esconde_Sala() {
    Painel->hide();
    Atualiza();
}

void frmTela_Sala::Atualiza() {
    setWindowTitle(Jogo.windowTitle());
    const Estado_Jogo& estado = Jogo.Jogo;
    const QString nome = Jogo.lblJogador_Atual->text();
    lblJogador_Atual->Define(nome.isEmpty() ? QString() : Jogo.fraJogador->title() + ": " + nome);
    QStringList valor;
    for (const QLabel* l : {Jogo.lblPontuação_1, Jogo.lblPontuação_2, Jogo.lblPontuação_3})
        if (!l->text().trimmed().isEmpty()) valor << l->text().trimmed();
    lblValor->Define(valor.join(" "));
    lblPergunta->Define(Jogo.lblPergunta->text());

    // The answers as the window shows them: the texts, the blanked ones, and the right one once it is shown.
    bool correção = false;
    for (const QRadioButton* r : Jogo.optResposta)
        correção = correção || (r->font().bold() && !r->text().isEmpty());
    for (int k = 0; k < 4; ++k) {
        const QRadioButton* r = Jogo.optResposta[k];
        cmdResposta[k]->Define(Sem_Marca_Atalho(r->text()));
        cmdResposta[k]->setEnabled(r->isEnabled() && !r->text().isEmpty());
        cmdResposta[k]->Define_Correção(correção, r->font().bold(), r->isChecked());
    }

    // The helps still available to the competitor on turn, pressable while the window takes them; none
    // before the first question or after the end.
    const bool em_jogo =
        !Jogo.fraJogadores->isEnabled() && !Jogo.lblPergunta->text().isEmpty() && !estado.Terminado;
    for (int i = 0; i < Quantidade_Ajudas; ++i) {
        const QCheckBox* c = Jogo.chkAjuda[i];
        cmdAjuda[i]->setVisible(!c->isHidden() && em_jogo);
        cmdAjuda[i]->setEnabled(c->isEnabled() && !Jogo.Dado_Rolando());
    }

    // The die: large over the tiles while it rolls, small beside the remark once it has stopped.
    const int face = Jogo.Face_Dado();
    imgDado_Rolando->Define(Jogo.Dado_Rolando() ? face : 0);
    imgDado_Rolando->setVisible(Jogo.Dado_Rolando() && face != 0);
    if (imgDado_Rolando->isVisible()) {
        Posiciona_Dado();
        imgDado_Rolando->raise();
        imgDado_Rolando->repaint();
    }
    imgDado->Define(Jogo.Dado_Rolando() ? 0 : face);
    imgDado->setVisible(!Jogo.Dado_Rolando() && face != 0);

    QStringList comentário;
    for (const QLabel* l : Jogo.lblResposta_Usuário)
        if (!l->text().isEmpty()) comentário << l->text();
    lblComentário->Define(comentário.join(" "));
    const QString principal = Jogo.lblResposta_Usuário[1]->text();
    if (principal == "PARABÉNS!!!")
        lblComentário->Define_Cores(Cores_Sala::Acerto, Cores_Sala::Texto);
    else if (principal == "ERRADO!!!")
        lblComentário->Define_Cores(Cores_Sala::Erro, Cores_Sala::Texto);
    else
        lblComentário->Define_Cores(comentário.isEmpty() ? QColor() : Cores_Sala::Painel, Cores_Sala::Texto);

    // The scoreboard: the competitors of the game, or the names typed so far while the list is open.
    // The line on turn is the competitor the window names as such: while the greeting of the next one
    // waits, the window still shows the last answer under the last name.
    int na_vez = 0;
    if (!nome.isEmpty() && !estado.Terminado) {
        const int atual = std::clamp(estado.Jogador_Atual, 1, Máximo_Jogadores);
        for (int i = 1; i <= Máximo_Jogadores && na_vez == 0; ++i)
            if (Jogo.txtJogador[i]->text() == nome) na_vez = i;
        if (Jogo.txtJogador[atual]->text() == nome) na_vez = atual;
    }
    QList<Placar_Sala::Linha> linhas;
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        const QString nome_i = Jogo.txtJogador[i]->text();
        if (i > estado.Quantidade_Jogadores && nome_i.isEmpty()) continue;
        Placar_Sala::Linha l;
        l.Nome = nome_i;
        l.Pontos = Jogo.lblPontuação[i]->text().trimmed();
        l.Nível = Jogo.lblNível[i]->text();
        l.Na_Vez = i == na_vez;
        l.Ativo = estado.Ativo[i];
        linhas << l;
    }
    Placar->Define(linhas);

    cmdCelulares->setVisible(static_cast<bool>(Ao_Pedir_Celulares) && Painel->isHidden());
    update();
}

QStringList frmTela_Sala::Linhas_Placar() const {
    QStringList linhas;
    for (const Placar_Sala::Linha& l : Placar->Linhas)
        linhas << l.Nome + " | " + l.Pontos + " | " + l.Nível + (l.Na_Vez ? " | vez" : "");
    return linhas;
}

void frmTela_Sala::Posiciona_Dado() {
    const int lado = std::min(Respostas->height(), Respostas->width()) * 9 / 10;
    imgDado_Rolando->setGeometry((Respostas->width() - lado) / 2, (Respostas->height() - lado) / 2, lado,
                                 lado);
}

void frmTela_Sala::resizeEvent(QResizeEvent* evento) {
    Tela_Sala::resizeEvent(evento);
    Posiciona_Dado();
}
