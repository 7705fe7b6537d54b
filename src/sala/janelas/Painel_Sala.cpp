#include "sala/janelas/Painel_Sala.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "game/frmJogo.h"
#include "platform/Plataforma.h"
#include "sala/Servidor_Sala.h"

Painel_Sala::Painel_Sala(frmJogo& jogo) : QGroupBox("Celulares na sala", &jogo), Jogo(jogo) {
    setObjectName("fraCelulares");
    // One strip across the window: the address and the code at the left, the seats at the right.
    auto* faixa = new QHBoxLayout(this);
    auto* entrada = new QVBoxLayout;
    lblEndereço = new QLabel(this);
    lblEndereço->setObjectName("lblEndereço");
    lblEndereço->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblEndereço->setAccessibleName("Endereço da sala para os celulares");
    lblCódigo = new QLabel(this);
    lblCódigo->setObjectName("lblCódigo");
    lblCódigo->setAccessibleName("Código da sala");
    QFont grande = lblCódigo->font();
    grande.setBold(true);
    grande.setPointSize(grande.pointSize() + 4);
    lblCódigo->setFont(grande);
    lblCelulares = new QLabel(this);
    lblCelulares->setObjectName("lblCelulares");
    entrada->addWidget(lblEndereço);
    entrada->addWidget(lblCódigo);
    entrada->addWidget(lblCelulares);
    faixa->addLayout(entrada, 2);
    auto* grade = new QGridLayout;
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        lblAssento[i] = new QLabel(this);
        lblAssento[i]->setObjectName(QString("lblAssento_%1").arg(i));
        cmdLiberar[i] = new QPushButton("Liberar", this);
        cmdLiberar[i]->setObjectName(QString("cmdLiberar_%1").arg(i));
        cmdLiberar[i]->setToolTip("Libera este lugar para outro celular");
        cmdLiberar[i]->setAccessibleName(QString("Liberar o lugar do jogador %1").arg(i));
        const int linha = (i - 1) % 3, coluna = (i - 1) / 3 * 2;
        grade->addWidget(lblAssento[i], linha, coluna);
        grade->addWidget(cmdLiberar[i], linha, coluna + 1);
        QObject::connect(cmdLiberar[i], &QPushButton::clicked, this, [this, i] { cmdLiberar_Click(i); });
    }
    faixa->addLayout(grade, 3);
    setVisible(false);
    // Every visible change of the game reaches the phones; closing the game window ends the room.
    Jogo.Ao_Mudar.push_back([this] { Publica(); });
    // Closing the window by any way (Sair, Escape, the window's X) finishes the dialog. Hiding it, as a
    // room screen may do while it stands in front, does not.
    QObject::connect(&Jogo, &QDialog::finished, this, [this] { Desliga(); });
}

Painel_Sala::~Painel_Sala() = default;

Servidor_Sala* Painel_Sala::Servidor_Ativo() const {
    return Servidor && Servidor->Ativo() ? Servidor.get() : nullptr;
}

bool Painel_Sala::Alterna() {
    if (Servidor_Ativo()) {
        Desliga();
        return true;
    }
    Liga();
    return Servidor_Ativo() != nullptr;
}

void Painel_Sala::Liga() {
    Rotina r(&Jogo, "Liga_Celulares");
    const QHostAddress endereço =
        Endereço_Forçado.isNull() ? Servidor_Sala::Endereço_Rede_Local() : Endereço_Forçado;
    if (endereço.isNull()) {
        Plataforma_Atual().Caixa_Mensagem(
            "Este computador não está ligado a uma rede. Ligue-o à rede Wi-Fi da sala, ou ao roteador "
            "de um celular, e tente de novo.",
            Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
        return;
    }
    // One room code for the whole game: a host who stops and starts again keeps the phones' seats.
    if (!Servidor) {
        Servidor = std::make_unique<Servidor_Sala>(Servidor_Sala::Sorteia_Código());
        Servidor->Ao_Agir = [this](const Ação_Celular& ação) { Age(ação); };
        Servidor->Ao_Mudar_Celulares = [this] { Mostra_Assentos(); };
    }
    if (!Servidor->Inicia(endereço)) {
        Plataforma_Atual().Caixa_Mensagem("Não foi possível abrir a sala para os celulares no endereço " +
                                              endereço.toString() +
                                              ". Feche outros programas que usem a rede "
                                              "e tente de novo.",
                                          Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
        return;
    }
    lblEndereço->setText("Nos celulares, abra: " + Servidor->Endereço());
    lblCódigo->setText("Código da sala: " + Servidor->Código());
    setVisible(true);
    // The window grows to take the strip, unless the screen is all it has.
    if (!Jogo.isMaximized() && !Jogo.isFullScreen() && Jogo.height() < Jogo.sizeHint().height())
        Jogo.resize(Jogo.width(), Jogo.sizeHint().height());
    Publica();
    Mostra_Assentos();
}

void Painel_Sala::Desliga() {
    if (Servidor) Servidor->Para();
    setVisible(false);
}

void Painel_Sala::Publica() {
    if (!Servidor_Ativo()) return;
    std::array<QString, 4> aviso;
    for (int i = 0; i < 4; ++i) aviso[i] = Jogo.lblResposta_Usuário[i]->text();
    Servidor->Publica(Retrata_Jogo(Jogo.Jogo, Jogo.fraJogadores->isEnabled(), Jogo.Dado_Rolando(),
                                   Jogo.Face_Dado(), aviso, Vez));
    Mostra_Assentos();
}

void Painel_Sala::cmdLiberar_Click(int assento) {
    if (Servidor) Servidor->Libera_Assento(assento);
}

void Painel_Sala::Mostra_Assentos() {
    if (!Servidor) return;
    const int competidores = std::clamp(Jogo.Jogo.Quantidade_Jogadores, 0, Máximo_Jogadores);
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        const bool existe = i <= competidores;
        const bool ocupado = Servidor->Assento_Com_Celular(i);
        const QString nome =
            Jogo.Jogo.Nome_Jogador[i].isEmpty() ? QString("Jogador %1").arg(i) : Jogo.Jogo.Nome_Jogador[i];
        lblAssento[i]->setText(nome + (ocupado ? ": com um celular" : ": sem celular"));
        lblAssento[i]->setVisible(existe);
        cmdLiberar[i]->setVisible(existe);
        cmdLiberar[i]->setEnabled(ocupado);
    }
    const int n = Servidor->Celulares_Conectados();
    lblCelulares->setText(n == 1 ? "1 celular conectado" : QString("%1 celulares conectados").arg(n));
}

void Painel_Sala::Age(const Ação_Celular& ação) {
    // The game may have moved on since the phone asked: the request must still fit the turn on screen.
    const Estado_Jogo& jogo = Jogo.Jogo;
    if (!Servidor_Ativo() || ação.Vez != Vez.Vez || !Vez.Em_Vez || jogo.Jogador_Atual != ação.Assento ||
        !jogo.Vez_Em_Andamento || Jogo.Dado_Rolando())
        return;
    // A box on the host is the host's to answer; the phone waits for the next turn.
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != &Jogo && (qobject_cast<QMessageBox*>(modal) || !Jogo.isAncestorOf(modal))) return;
    if (ação.Ajuda) {
        if (ação.Índice < 0 || ação.Índice >= Quantidade_Ajudas || Jogo.chkAjuda[ação.Índice]->isHidden())
            return;
        Jogo.chkAjuda[ação.Índice]->click();
    } else {
        if (ação.Índice < 0 || ação.Índice > 3) return;
        Jogo.optResposta[ação.Índice]->click();
    }
}
