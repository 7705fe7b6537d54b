#include "sala/frmTela_Hall.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "game/frmHall.h"

// Places, names and points in three columns; the first three places in gold, silver and bronze.
class Quadro_Classificação : public QWidget {
  public:
    struct Linha {
        QString Colocação, Jogador, Pontuação;
    };
    Quadro_Classificação(QWidget* pai, const QString& nome) : QWidget(pai) {
        setObjectName(nome);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    void Define(const QList<Linha>& linhas) {
        Linhas = linhas;
        QStringList texto;
        for (const Linha& l : linhas)
            if (!l.Jogador.isEmpty() || !l.Pontuação.isEmpty())
                texto << l.Colocação + " " + l.Jogador + " " + l.Pontuação;
        setAccessibleName(texto.join("; "));
        update();
    }
    QList<Linha> Linhas;

  protected:
    void paintEvent(QPaintEvent*) override {
        if (Linhas.isEmpty()) return;
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const int altura = std::min(84, height() / static_cast<int>(Linhas.size()));
        QFont fonte("Liberation Sans");
        fonte.setBold(true);
        fonte.setPixelSize(altura * 52 / 100);
        p.setFont(fonte);
        const QFontMetrics medida(fonte);
        const int coluna_colocação = medida.horizontalAdvance("10º.") + 28;
        const int coluna_pontos = medida.horizontalAdvance("999.999.999 pts") + 24;
        for (int i = 0; i < Linhas.size(); ++i) {
            const Linha& l = Linhas[i];
            const QRect linha(0, i * altura + 3, width(), altura - 6);
            QColor fundo = Cores_Sala::Painel;
            QColor texto = Cores_Sala::Texto;
            if (l.Colocação == "1º.") fundo = QColor(0xff, 0xc8, 0x2e);
            if (l.Colocação == "2º.") fundo = QColor(0xc9, 0xd1, 0xdc);
            if (l.Colocação == "3º.") fundo = QColor(0xd9, 0x8c, 0x4a);
            if (fundo != Cores_Sala::Painel) texto = Cores_Sala::Fundo;
            if (l.Jogador.isEmpty() && l.Pontuação.isEmpty()) fundo = Cores_Sala::Apagado;
            p.setPen(Qt::NoPen);
            p.setBrush(fundo);
            p.drawRoundedRect(linha, 12, 12);
            p.setPen(texto);
            p.drawText(QRect(linha.left() + 8, linha.top(), coluna_colocação - 16, linha.height()),
                       Qt::AlignRight | Qt::AlignVCenter, l.Colocação);
            const QRect nome(linha.left() + coluna_colocação, linha.top(),
                             linha.width() - coluna_colocação - coluna_pontos, linha.height());
            p.drawText(nome, Qt::AlignLeft | Qt::AlignVCenter,
                       medida.elidedText(l.Jogador, Qt::ElideRight, nome.width()));
            p.drawText(QRect(linha.right() - coluna_pontos, linha.top(), coluna_pontos - 16, linha.height()),
                       Qt::AlignRight | Qt::AlignVCenter, l.Pontuação);
        }
    }
};

namespace {
template <std::size_t N>
QList<Quadro_Classificação::Linha> Lê_Linhas(const std::array<QLabel*, N>& colocação,
                                             const std::array<QLabel*, N>& jogador,
                                             const std::array<QLabel*, N>& pontuação) {
    QList<Quadro_Classificação::Linha> linhas;
    for (std::size_t i = 0; i < N; ++i)
        linhas.append({colocação[i]->text(), jogador[i]->text(), pontuação[i]->text().trimmed()});
    return linhas;
}

QStringList Textos(const Quadro_Classificação& quadro) {
    QStringList linhas;
    for (const Quadro_Classificação::Linha& l : quadro.Linhas)
        linhas << l.Colocação + " | " + l.Jogador + " | " + l.Pontuação;
    return linhas;
}
}  // namespace

frmTela_Hall::frmTela_Hall(frmHall& hall) : Tela_Sala("frmTela_Hall", &hall), Janela_Hall(hall) {
    lblTítulo = new Rótulo_Sala(this, "lblTítulo", 72);
    lblTítulo->Define_Cores(QColor(), Cores_Sala::Destaque);
    lblTítulo->setFixedHeight(96);
    lblHall = new Rótulo_Sala(this, "lblHall", 34, Qt::AlignLeft | Qt::AlignVCenter);
    lblHall->Define_Cores(QColor(), QColor(0xc8, 0xd0, 0xf0));
    lblHall->setFixedHeight(50);
    Hall = new Quadro_Classificação(this, "Hall");
    lblJogo = new Rótulo_Sala(this, "lblJogo", 34, Qt::AlignLeft | Qt::AlignVCenter);
    lblJogo->Define_Cores(QColor(), QColor(0xc8, 0xd0, 0xf0));
    lblJogo->setFixedHeight(50);
    Classificação_Jogo = new Quadro_Classificação(this, "Classificação_Jogo");
    lblComentário = new Rótulo_Sala(this, "lblComentário", 56);
    lblComentário->setFixedHeight(110);
    cmdSair = new Botão_Sala(this, "cmdSair", Cores_Sala::Painel, 36);
    cmdSair->Define(Sem_Marca_Atalho(hall.cmdSair->text()));
    cmdSair->setFixedSize(260, 110);
    // The hall's own way out: the window tidies the game and closes, and this screen goes with it.
    QObject::connect(cmdSair, &QAbstractButton::clicked, this, [this] { Janela_Hall.cmdSair->click(); });

    auto* esquerda = new QVBoxLayout;
    esquerda->addWidget(lblHall);
    esquerda->addWidget(Hall, 1);
    auto* direita = new QVBoxLayout;
    direita->addWidget(lblJogo);
    direita->addWidget(Classificação_Jogo, 1);
    direita->addStretch(0);
    auto* meio = new QHBoxLayout;
    meio->setSpacing(40);
    meio->addLayout(esquerda, 11);
    meio->addLayout(direita, 9);
    auto* rodapé = new QHBoxLayout;
    rodapé->setSpacing(24);
    rodapé->addWidget(lblComentário, 1);
    rodapé->addWidget(cmdSair);
    auto* raiz = new QVBoxLayout(this);
    raiz->setContentsMargins(40, 24, 40, 28);
    raiz->setSpacing(18);
    raiz->addWidget(lblTítulo);
    raiz->addLayout(meio, 1);
    raiz->addLayout(rodapé);
}

void frmTela_Hall::Atualiza() {
    setWindowTitle(Janela_Hall.windowTitle());
    lblTítulo->Define(Janela_Hall.windowTitle());
    lblHall->Define(Janela_Hall.fraHall->title());
    Hall->Define(Lê_Linhas(Janela_Hall.lblColocação, Janela_Hall.lblJogador, Janela_Hall.lblPontuação));
    // The game's ranking only when the hall comes at the end of a game, as in the window.
    QList<Quadro_Classificação::Linha> jogo;
    for (const Quadro_Classificação::Linha& l :
         Lê_Linhas(Janela_Hall.lblColocação_Jogo, Janela_Hall.lblJogador_Jogo, Janela_Hall.lblPontuação_Jogo))
        if (!l.Colocação.isEmpty()) jogo << l;
    Classificação_Jogo->Define(jogo);
    lblJogo->Define(jogo.isEmpty() ? QString() : Janela_Hall.fraPontuação->title());
    lblJogo->setVisible(!jogo.isEmpty());
    Classificação_Jogo->setVisible(!jogo.isEmpty());
    Classificação_Jogo->setFixedHeight(std::max<int>(1, jogo.size()) * 84);
    QStringList comentário;
    for (const QLabel* l : {Janela_Hall.lblResposta_1, Janela_Hall.lblResposta_2})
        if (!l->text().isEmpty()) comentário << l->text();
    lblComentário->Define(comentário.join(" "));
    lblComentário->Define_Cores(comentário.isEmpty() ? QColor() : Cores_Sala::Acerto, Cores_Sala::Texto);
    update();
}

QStringList frmTela_Hall::Linhas_Hall() const {
    return Textos(*Hall);
}

QStringList frmTela_Hall::Linhas_Jogo() const {
    return Textos(*Classificação_Jogo);
}
