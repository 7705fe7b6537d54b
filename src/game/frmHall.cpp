#include "game/frmHall.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "reports/Texto_Relatório.h"
#include "sala/frmTela_Hall.h"
#include "store/Funções_Banco.h"

QString Texto_Pontuação(double pontos) {
    return Formata_Expressão(pontos, 9, 0, false) + " pts";
}

namespace {
QString Texto_Colocação(int colocação) {
    return QString::number(colocação) + "º.";
}

QLabel* Novo_Rótulo(QWidget* pai, const QString& nome, const QFont& fonte, Qt::Alignment alinhamento) {
    auto* rótulo = new QLabel(pai);
    rótulo->setObjectName(nome);
    rótulo->setFont(fonte);
    rótulo->setAlignment(alinhamento | Qt::AlignVCenter);
    return rótulo;
}

// Places, names and scores in three columns: place and score right-aligned, in a fixed-width face.
template <std::size_t N>
void Monta_Grade(QGroupBox* quadro, const QString& sufixo, std::array<QLabel*, N>& colocação,
                 std::array<QLabel*, N>& jogador, std::array<QLabel*, N>& pontuação) {
    QFont normal = quadro->font();
    normal.setPointSize(11);
    QFont fixa("Courier New", 11);
    fixa.setStyleHint(QFont::Monospace);
    fixa.setBold(true);
    auto* grade = new QGridLayout(quadro);
    grade->setHorizontalSpacing(16);
    grade->setVerticalSpacing(4);
    for (std::size_t i = 0; i < N; ++i) {
        const QString índice = QString("(%1)").arg(i);
        colocação[i] = Novo_Rótulo(quadro, "lblColocação" + sufixo + índice, fixa, Qt::AlignRight);
        jogador[i] = Novo_Rótulo(quadro, "lblJogador" + sufixo + índice, normal, Qt::AlignLeft);
        pontuação[i] = Novo_Rótulo(quadro, "lblPontuação" + sufixo + índice, fixa, Qt::AlignRight);
        colocação[i]->setMinimumWidth(48);
        jogador[i]->setMinimumWidth(380);
        pontuação[i]->setMinimumWidth(170);
        grade->addWidget(colocação[i], static_cast<int>(i), 0);
        grade->addWidget(jogador[i], static_cast<int>(i), 1);
        grade->addWidget(pontuação[i], static_cast<int>(i), 2);
    }
    grade->setColumnStretch(1, 1);
}
}  // namespace

frmHall::frmHall(QWidget* pai, const Estado_Jogo* jogo)
    : Formulário("frmHall", pai), Jogo(jogo), Chamado_Pelo_Jogo(jogo != nullptr) {
    Tópico_Ajuda = "Hall da Fama";
    fraHall = new QGroupBox("Hall da Fama:", this);
    fraHall->setObjectName("fraHall");
    Monta_Grade(fraHall, "", lblColocação, lblJogador, lblPontuação);
    fraPontuação = new QGroupBox("Pontuação dos Jogadores na Última Rodada:", this);
    fraPontuação->setObjectName("fraPontuação");
    Monta_Grade(fraPontuação, "_Jogo", lblColocação_Jogo, lblJogador_Jogo, lblPontuação_Jogo);

    QFont destaque = font();
    destaque.setPointSize(13);
    destaque.setBold(true);
    lblResposta_1 = new QLabel(this);
    lblResposta_1->setObjectName("lblResposta_1");
    lblResposta_1->setFont(destaque);
    lblResposta_2 = new QLabel(this);
    lblResposta_2->setObjectName("lblResposta_2");
    lblResposta_2->setFont(destaque);
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setMinimumWidth(100);

    auto* observação = new QVBoxLayout;
    observação->addWidget(lblResposta_1);
    observação->addWidget(lblResposta_2);
    auto* rodapé = new QHBoxLayout;
    rodapé->addLayout(observação, 1);
    rodapé->addWidget(cmdSair, 0, Qt::AlignBottom);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(fraHall);
    layout->addWidget(fraPontuação);
    layout->addLayout(rodapé);

    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Tela_Da_Sala = new frmTela_Hall(*this);
    Liga_F11(this, Tela_Da_Sala);
    Form_Load();
}

void frmHall::Form_Activate() {
    if (Tela_Sala::Alguma_Visível()) Tela_Da_Sala->Mostra();
}

void frmHall::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Hall da Fama");
    Em_Cadastro = false;
    Comando_SQL.clear();
    if (Chamado_Pelo_Jogo) Classifica_Jogo();
    Finaliza_Transação();
    if (!Tabela_Dynaset.Source.isEmpty()) Tabela_Dynaset.Reinicia();
    Abre_Tabelas();
}

void frmHall::Classifica_Jogo() {
    Rotina r(this, "Classifica_Jogo");
    // Scores are compared as doubles, so a score above the 32-bit range ranks where it belongs.
    const QList<int> ordem = ::Classificação_Jogo(*Jogo);
    for (int k = 0; k < ordem.size() && k < Máximo_Jogadores; ++k) {
        const int j = ordem[k];
        lblColocação_Jogo[k]->setText(Texto_Colocação(k + 1));
        lblJogador_Jogo[k]->setText(Jogo->Nome_Jogador[j]);
        lblPontuação_Jogo[k]->setText(Texto_Pontuação(Jogo->Pontos[j]));
    }
}

void frmHall::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("tblPontuação");
    Tabela_Terciária.Set_Index("idxPontuação");
    if (Lastrec(Tabela_Terciária.Source, Conexão_Terciária) == 0) return;
    QList<Linha_Hall> linhas;
    for (Tabela_Terciária.MoveFirst(); !Tabela_Terciária.Eof(); Tabela_Terciária.MoveNext())
        linhas.append({Tabela_Terciária.Fields("Jogador").Value().toString(),
                       Tabela_Terciária.Fields("Pontuação").Value().toDouble()});
    // Best first and at most ten; a shorter list fills from the bottom line, numbered as it stands.
    const QList<Linha_Hall> melhores = ::Classifica_Hall(linhas);
    const int primeira = Linhas_Hall - static_cast<int>(melhores.size());
    for (int k = 0; k < melhores.size(); ++k) {
        const int linha = primeira + k;
        lblColocação[linha]->setText(Texto_Colocação(linha + 1));
        lblJogador[linha]->setText(melhores[k].Jogador);
        lblPontuação[linha]->setText(Texto_Pontuação(melhores[k].Pontuação));
    }
    if (Chamado_Pelo_Jogo) {
        lblResposta_1->setText("Término do jogo!!!");
        lblResposta_2->setText("Confira a classificação...");
    }
}

void frmHall::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    // The game window tidies its own frames and labels once this modal window returns.
    Em_Cadastro = false;
    Chamado_Pelo_Jogo = false;
    accept();
}

void frmHall::keyPressEvent(QKeyEvent* evento) {
    if (evento->key() != Qt::Key_Escape) return Formulário::keyPressEvent(evento);
    if (Tela_Da_Sala->isVisible()) Tela_Da_Sala->Volta();
}
