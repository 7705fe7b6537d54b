#include "game/frmJogo.h"

#include <QCheckBox>
#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "reports/Texto_Relatório.h"
#include "sala/janelas/Painel_Sala.h"
#include "sala/Servidor_Sala.h"
#include "sala/frmTela_Sala.h"
#include "store/Funções_Banco.h"

namespace {
const char* const Textos_Ajuda[Quantidade_Ajudas] = {"Pular pela &1ª vez",         "Pular pela &2ª vez",
                                                     "Pular pela &3ª vez",         "Pedir Ajuda ao Dad&o",
                                                     "Pedir Ajuda aos &Apóstolos", "Pedir Ajuda A &Deus"};
constexpr int Tamanho_Resposta = 11;
constexpr int Tamanho_Resposta_Correta = 13;

QString Sem_Atalho(const QString& texto) {
    QString t = texto;
    return t.replace("&", "&&");
}
// A score as the game shows it: grouped digits right-aligned in nine characters, then " pts".
QString Pontuação_Exibida(double pontos) {
    return Formata_Expressão(pontos, 9, 0, false) + " pts";
}
}  // namespace

frmJogo::frmJogo(QWidget* pai) : Formulário("frmJogo", pai) {
    Tópico_Ajuda = "Novo Jogo";
    QFont base = font();
    base.setPointSize(10);
    setFont(base);
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    fixa.setPointSize(10);
    QFont destaque = base;
    destaque.setBold(true);
    destaque.setPointSize(11);

    // The question.
    fraPergunta = new QGroupBox("Descrição da Pergunta", this);
    fraPergunta->setObjectName("fraPergunta");
    lblPergunta = new QLabel(fraPergunta);
    lblPergunta->setObjectName("lblPergunta");
    lblPergunta->setWordWrap(true);
    lblPergunta->setTextFormat(Qt::PlainText);
    lblPergunta->setMinimumHeight(64);
    QFont fontePergunta = base;
    fontePergunta.setPointSize(13);
    fontePergunta.setBold(true);
    lblPergunta->setFont(fontePergunta);
    (new QVBoxLayout(fraPergunta))->addWidget(lblPergunta);

    // The answers.
    fraResposta = new QGroupBox("Escolha uma das respostas:", this);
    fraResposta->setObjectName("fraResposta");
    auto* respostas = new QVBoxLayout(fraResposta);
    for (int i = 0; i < 4; ++i) {
        optResposta[i] = new QRadioButton(fraResposta);
        optResposta[i]->setObjectName(QString("optResposta_%1").arg(i));
        QFont f = base;
        f.setPointSize(Tamanho_Resposta);
        optResposta[i]->setFont(f);
        optResposta[i]->setMinimumHeight(30);
        respostas->addWidget(optResposta[i]);
        QObject::connect(optResposta[i], &QRadioButton::clicked, this, [this, i] { optResposta_Click(i); });
    }
    respostas->addStretch();

    // The helps and the die.
    fraAjuda = new QGroupBox("Ajudas Ainda Disponíveis", this);
    fraAjuda->setObjectName("fraAjuda");
    auto* ajudas = new QGridLayout(fraAjuda);
    for (int i = 0; i < Quantidade_Ajudas; ++i) {
        chkAjuda[i] = new QCheckBox(QString::fromUtf8(Textos_Ajuda[i]), fraAjuda);
        chkAjuda[i]->setObjectName(QString("chkAjuda_%1").arg(i));
        ajudas->addWidget(chkAjuda[i], i, 0);
        QObject::connect(chkAjuda[i], &QCheckBox::toggled, this, [this, i](bool marcada) {
            if (marcada) chkAjuda_Click(i);
        });
    }
    imgDado = new QLabel(fraAjuda);
    imgDado->setObjectName("imgDado");
    imgDado->setFixedSize(72, 72);
    imgDado->setAlignment(Qt::AlignCenter);
    ajudas->addWidget(imgDado, 0, 1, Quantidade_Ajudas, 1, Qt::AlignCenter);

    // The competitors.
    fraJogadores = new QGroupBox("Pontuação e Nível dos Jogadores:", this);
    fraJogadores->setObjectName("fraJogadores");
    auto* jogadores = new QGridLayout(fraJogadores);
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        auto* rótulo = new QLabel(QString("Jogador %1").arg(i), fraJogadores);
        txtJogador[i] = new QLineEdit(fraJogadores);
        txtJogador[i]->setObjectName(QString("txtJogador_%1").arg(i));
        txtJogador[i]->setMaxLength(50);
        txtJogador[i]->setMinimumWidth(220);
        txtJogador[i]->installEventFilter(this);
        lblPontuação[i] = new QLabel(fraJogadores);
        lblPontuação[i]->setObjectName(QString("lblPontuação_Jogador_%1").arg(i));
        lblPontuação[i]->setFont(fixa);
        lblPontuação[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        lblPontuação[i]->setMinimumWidth(130);
        auto* nível = new QLabel("Nível", fraJogadores);
        lblNível[i] = new QLabel(fraJogadores);
        lblNível[i]->setObjectName(QString("lblNível_%1").arg(i));
        lblNível[i]->setFont(destaque);
        lblNível[i]->setMinimumWidth(30);
        jogadores->addWidget(rótulo, i - 1, 0);
        jogadores->addWidget(txtJogador[i], i - 1, 1);
        jogadores->addWidget(lblPontuação[i], i - 1, 2);
        jogadores->addWidget(nível, i - 1, 3);
        jogadores->addWidget(lblNível[i], i - 1, 4);
    }
    jogadores->setColumnStretch(1, 1);

    // The competitor on turn.
    fraJogador = new QGroupBox("Jogador Atual", this);
    fraJogador->setObjectName("fraJogador");
    auto* atual = new QGridLayout(fraJogador);
    lblJogador_Atual = new QLabel(fraJogador);
    lblJogador_Atual->setObjectName("lblJogador_Atual");
    lblJogador_Atual->setFont(destaque);
    lblPontuação_Atual = new QLabel(fraJogador);
    lblPontuação_Atual->setObjectName("lblPontuação_Atual");
    lblPontuação_Atual->setFont(fixa);
    lblNível_Atual = new QLabel(fraJogador);
    lblNível_Atual->setObjectName("lblNível_Atual");
    lblNível_Atual->setFont(destaque);
    atual->addWidget(lblJogador_Atual, 0, 0, 1, 2);
    atual->addWidget(new QLabel("Pontuação:", fraJogador), 1, 0);
    atual->addWidget(lblPontuação_Atual, 1, 1);
    atual->addWidget(new QLabel("Nível:", fraJogador), 2, 0);
    atual->addWidget(lblNível_Atual, 2, 1);
    atual->setColumnStretch(1, 1);

    // The remark to the competitor and the value in play.
    auto* observação = new QVBoxLayout;
    for (int i = 0; i < 4; ++i) {
        lblResposta_Usuário[i] = new QLabel(this);
        lblResposta_Usuário[i]->setObjectName(QString("lblResposta_Usuário_%1").arg(i + 1));
        lblResposta_Usuário[i]->setFont(destaque);
        lblResposta_Usuário[i]->setAlignment(Qt::AlignCenter);
        observação->addWidget(lblResposta_Usuário[i]);
    }
    auto* valor = new QVBoxLayout;
    lblPontuação_1 = new QLabel(this);
    lblPontuação_2 = new QLabel(this);
    lblPontuação_3 = new QLabel(this);
    lblPontuação_1->setObjectName("lblPontuação_1");
    lblPontuação_2->setObjectName("lblPontuação_2");
    lblPontuação_3->setObjectName("lblPontuação_3");
    QFont fonteValor = fixa;
    fonteValor.setPointSize(12);
    fonteValor.setBold(true);
    lblPontuação_2->setFont(fonteValor);
    for (QLabel* l : {lblPontuação_1, lblPontuação_2, lblPontuação_3}) {
        l->setAlignment(Qt::AlignCenter);
        valor->addWidget(l);
    }

    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setMinimumWidth(110);
    cmdCelulares = Botão("cmdCelulares", "Jogar pelos celulares");
    fraCelulares = new Painel_Sala(*this);

    auto* meio = new QHBoxLayout;
    meio->addWidget(fraResposta, 3);
    meio->addWidget(fraAjuda, 2);
    auto* lado = new QVBoxLayout;
    lado->addWidget(fraJogador);
    auto* avisos = new QHBoxLayout;
    avisos->addLayout(observação, 1);
    avisos->addLayout(valor, 1);
    lado->addLayout(avisos);
    lado->addStretch();
    auto* botão = new QHBoxLayout;
    botão->addWidget(cmdCelulares);
    botão->addStretch();
    botão->addWidget(cmdSair);
    lado->addLayout(botão);
    auto* baixo = new QHBoxLayout;
    baixo->addWidget(fraJogadores, 3);
    baixo->addLayout(lado, 2);
    auto* raiz = new QVBoxLayout(this);
    raiz->setContentsMargins(16, 12, 16, 12);
    raiz->addWidget(fraPergunta);
    raiz->addLayout(meio, 1);
    raiz->addLayout(baixo);
    raiz->addWidget(fraCelulares);
    setMinimumSize(900, 640);
    // The texts that change every turn take the room they are given and never push their column, so the
    // window does not jump between a short name and a long one; the name on turn has two lines for itself.
    lblJogador_Atual->setWordWrap(true);
    lblJogador_Atual->setMinimumHeight(2 * QFontMetrics(destaque).lineSpacing());
    for (QLabel* l :
         {lblJogador_Atual, lblPontuação_1, lblPontuação_2, lblPontuação_3, lblResposta_Usuário[0],
          lblResposta_Usuário[1], lblResposta_Usuário[2], lblResposta_Usuário[3]})
        l->setSizePolicy(QSizePolicy::Ignored, l->sizePolicy().verticalPolicy());
    Tela_Da_Sala = new frmTela_Sala(*this);
    Liga_F11(this, Tela_Da_Sala);

    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    QObject::connect(cmdCelulares, &QPushButton::clicked, this, [this] { cmdCelulares_Click(); });
    Tela_Da_Sala->Ao_Pedir_Celulares = [this] { cmdCelulares_Click(); };
    Ao_Terminar = [this] {
        if (Ao_Terminar_Padrão) Ao_Terminar_Padrão(*this);
    };
    Form_Load();
}

bool frmJogo::eventFilter(QObject* objeto, QEvent* evento) {
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        if (objeto != txtJogador[i]) continue;
        if (evento->type() == QEvent::FocusIn) {
            txtJogador_GotFocus(i);
        } else if (evento->type() == QEvent::FocusOut) {
            // Leaving the window for a box or another program is not leaving the name.
            const Qt::FocusReason motivo = static_cast<QFocusEvent*>(evento)->reason();
            if (motivo != Qt::ActiveWindowFocusReason && motivo != Qt::PopupFocusReason) {
                txtJogador_Validate(i);
                txtJogador_LostFocus(i);
            }
        }
        break;
    }
    return Formulário::eventFilter(objeto, evento);
}

void frmJogo::keyPressEvent(QKeyEvent* evento) {
    if (evento->key() != Qt::Key_Escape) return Formulário::keyPressEvent(evento);
    if (Tela_Da_Sala->isVisible()) Tela_Da_Sala->Volta();
}

void frmJogo::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    Em_Cadastro = false;
    Comando_SQL.clear();
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Abre_Tabelas();
    const int quantidade = Quantidade_Perguntas();
    // An empty bank reads "0", not a gap where the number belongs.
    setWindowTitle("Existem atualmente " +
                   QLocale(QLocale::Portuguese, QLocale::Brazil).toString(quantidade) +
                   " perguntas cadastradas...");
    fraResposta->setEnabled(false);
    fraAjuda->setEnabled(false);
    fraJogadores->setEnabled(false);
    if (quantidade == 0) {
        Exibe_Mensagem(102);
        return;
    }
    Jogo = Estado_Jogo();
    Jogo.Tipo_Pergunta = Tipo_Pergunta;
    for (int i = 1; i <= Máximo_Jogadores; ++i) {
        txtJogador[i]->setEnabled(true);
        txtJogador[i]->clear();
        Mostra_Jogador(i);
    }
    Lista_Fechada = false;
    lblJogador_Atual->clear();
    lblPontuação_Atual->clear();
    lblNível_Atual->clear();
    fraJogadores->setEnabled(true);
    txtJogador[1]->setFocus();
    Avisa_Mudança();
}

void frmJogo::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("tblPergunta_Já_Mostrada");
}

// ---------------------------------------------------------------------------------------------------
// The store behind the drawing of questions

int frmJogo::Quantidade_Perguntas() {
    if (Servidor.Disponível(Conexão.Sessão_Física()))
        if (const std::optional<int> n = Servidor.Quantidade_Perguntas()) return *n;
    return Lastrec(Tabela.Source, Conexão);
}

std::optional<Registro_Pergunta> frmJogo::Busca_Pergunta(int código) {
    if (std::optional<Registro_Pergunta> achada;
        Servidor.Disponível(Conexão.Sessão_Física()) && Servidor.Busca_Pergunta(código, achada))
        return achada;
    Tabela.Seek(código);
    if (Tabela.Eof()) return std::nullopt;
    Registro_Pergunta p;
    p.Código_Pergunta = Tabela.Fields("Código_Pergunta").Value().toInt();
    p.Tipo = Tabela.Fields("Tipo").Value().toString().trimmed();
    p.Pergunta = Tabela.Fields("Pergunta").Value().toString();
    p.Resposta_Correta = Tabela.Fields("Resposta_Correta").Value().toString();
    p.Resposta_Incorreta_1 = Tabela.Fields("Resposta_Incorreta_1").Value().toString();
    p.Resposta_Incorreta_2 = Tabela.Fields("Resposta_Incorreta_2").Value().toString();
    p.Resposta_Incorreta_3 = Tabela.Fields("Resposta_Incorreta_3").Value().toString();
    return p;
}

int frmJogo::Quantidade_Mostradas() {
    if (Servidor.Disponível(Conexão_Secundária.Sessão_Física()))
        if (const std::optional<int> n = Servidor.Quantidade_Mostradas()) return *n;
    // A count asked of the store: no need to walk the history for it.
    return Lastrec("tblPergunta_Já_Mostrada", Conexão_Secundária);
}

void frmJogo::Exclui_Mostrada_Mais_Antiga() {
    if (Servidor.Disponível(Conexão_Secundária.Sessão_Física()) && Servidor.Exclui_Mostrada_Mais_Antiga())
        return;
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("Select * From tblPergunta_Já_Mostrada Order By Data_Jogo");
    if (Tabela_Secundária.RecordCount() == 0) return;
    Tabela_Secundária.MoveFirst();
    Trava(Tabela_Secundária, Conexão_Secundária, true);
    // Another workstation trimmed the same oldest row first.
    if (!Travou) return;
    Grava(Tabela_Secundária, true);
}

bool frmJogo::Já_Mostrada(int código) {
    if (Servidor.Disponível(Conexão_Secundária.Sessão_Física()))
        if (const std::optional<bool> já = Servidor.Já_Mostrada(código)) return *já;
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("Select * From tblPergunta_Já_Mostrada where Código_Pergunta = " +
                           QString::number(código));
    return Tabela_Secundária.RecordCount() > 0;
}

void frmJogo::Registra_Mostrada(int código, const QDate& data) {
    if (Servidor.Disponível(Conexão_Secundária.Sessão_Física()) && Servidor.Registra_Mostrada(código, data))
        return;
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("tblPergunta_Já_Mostrada");
    Tabela_Secundária.AddNew();
    Tabela_Secundária.Fields("Código_Pergunta").Set_Value(código);
    Tabela_Secundária.Fields("Data_Jogo").Set_Value(QDateTime(data, QTime(0, 0)));
    Grava(Tabela_Secundária, false);
}

// ---------------------------------------------------------------------------------------------------
// The names

void frmJogo::txtJogador_GotFocus(int Index) {
    Rotina r(this, "txtJogador_GotFocus");
    Q_UNUSED(Index);
    Comentário("", "Informe o nome", "dos jogadores...", "");
    Avisa_Mudança();
}

void frmJogo::txtJogador_Validate(int Index) {
    Rotina r(this, "txtJogador_Validate");
    if (Index < 1 || Index > Máximo_Jogadores) return;
    if (!txtJogador[Index]->text().isEmpty())
        txtJogador[Index]->setText(Nome_Formatado(txtJogador[Index]->text()));
}

void frmJogo::txtJogador_LostFocus(int Index) {
    Rotina r(this, "txtJogador_LostFocus");
    if (Index < 1 || Index > Máximo_Jogadores) return;
    if (Lista_Fechada || !fraJogadores->isEnabled()) return;
    if (Registra_Jogador(Jogo, Index, txtJogador[Index]->text())) {
        Lista_Fechada = true;
        fraJogadores->setEnabled(false);
        Nova_Rodada();
        return;
    }
    Avisa_Mudança();
}

// ---------------------------------------------------------------------------------------------------
// The turns

void frmJogo::Nova_Rodada() {
    Rotina r(this, "Nova_Rodada");
    Inicia_Transação();
    fraAjuda->setEnabled(true);
    const int jogador = Jogo.Jogador_Atual;
    for (int i = 0; i < Quantidade_Ajudas; ++i) {
        const bool disponível = Jogo.Ajuda_Disponível[jogador][i];
        chkAjuda[i]->setVisible(disponível);
        if (disponível) {
            const QSignalBlocker bloqueio(chkAjuda[i]);
            chkAjuda[i]->setChecked(false);
        }
    }
    imgDado->clear();
    Face_Dado_Atual = 0;
    // The room sees the outcome of the last answer and the new competitor's helps while the greeting waits.
    Avisa_Mudança();
    Plataforma_Atual().Caixa_Mensagem(
        Jogo.Nome_Jogador[jogador].toUpper() + ", agora é a sua vez de jogar. Boa Sorte!!!", Título_Programa,
        Ícone_Caixa::Informação, Botões_Caixa::Ok);
    for (QRadioButton* opção : optResposta) {
        QFont f = opção->font();
        f.setBold(false);
        f.setPointSize(Tamanho_Resposta);
        opção->setFont(f);
        opção->setText(QString());
        opção->setAutoExclusive(false);
        opção->setChecked(false);
        opção->setAutoExclusive(true);
    }
    lblJogador_Atual->setText(Jogo.Nome_Jogador[jogador]);
    Mostra_Jogador(jogador);
    fraResposta->setEnabled(true);
    fraAjuda->setEnabled(true);
    Comentário("Selecione uma", "das respostas,", "ou peça alguma", "das ajudas...");

    const Resultado_Rodada resultado = ::Nova_Rodada(Jogo, *this, Plataforma_Atual().Agora().date());
    if (resultado != Resultado_Rodada::Pergunta_Sorteada) {
        Finaliza_Transação();
        fraResposta->setEnabled(false);
        fraAjuda->setEnabled(false);
        Avisa_Mudança();
        Plataforma_Atual().Caixa_Mensagem(Texto_Sem_Pergunta, Título_Programa, Ícone_Caixa::Informação,
                                          Botões_Caixa::Ok);
        Fim_Do_Jogo();
        return;
    }
    // The row of the question stays current in Tabela for the whole turn.
    Tabela.Seek(Jogo.Pergunta_Atual.Código_Pergunta);
    lblPontuação_1->setText("Valendo");
    lblPontuação_2->setText(Formata_Expressão(Jogo.Valor_Pergunta, 9, 0, false));
    lblPontuação_3->setText("pontos...");
    lblPergunta->setText(Jogo.Pergunta_Atual.Pergunta);
    Mostra_Respostas();
    Finaliza_Transação();
    Gravador.Pergunta_Exibida(Jogo);
    Avisa_Mudança();
}

void frmJogo::Próximo_Competidor() {
    Rotina r(this, "Próximo_Competidor");
    if (!::Próximo_Competidor(Jogo)) {
        Fim_Do_Jogo();
        return;
    }
    Nova_Rodada();
}

void frmJogo::Fim_Do_Jogo() {
    Rotina r(this, "Fim_Do_Jogo");
    fraResposta->setEnabled(false);
    fraAjuda->setEnabled(false);
    const QDate hoje = Plataforma_Atual().Agora().date();

    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("tblPontuação");
    Tabela_Terciária.Set_Index("idxPontuação");

    // Every competitor of the game is written, each in a transaction of its own.
    const int competidores = std::min(Jogo.Quantidade_Jogadores, Máximo_Jogadores);
    for (int i = 1; i <= competidores; ++i) {
        Inicia_Transação();
        Tabela_Terciária.AddNew();
        Tabela_Terciária.Fields("Jogador").Set_Value(Texto_Jogador_Hall(hoje, Jogo.Nome_Jogador[i]));
        Tabela_Terciária.Fields("Pontuação").Set_Value(Jogo.Pontos[i]);
        Grava(Tabela_Terciária, false);
        Finaliza_Transação();
    }

    // Then the lowest row of the points index goes, one at a time, until ten remain. Each pass reads
    // the table again, so rows that another workstation wrote meanwhile take their place by their
    // points and nothing is decided on texts read before the writes.
    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("tblPontuação");
    const int excedentes = Tabela_Terciária.RecordCount() - Linhas_Hall;
    for (int vez = 0; vez < excedentes; ++vez) {
        Tabela_Terciária.Reinicia();
        Abre_Tabela_Terciária("tblPontuação");
        Tabela_Terciária.Set_Index("idxPontuação");
        if (Tabela_Terciária.RecordCount() == 0) break;
        Tabela_Terciária.MoveFirst();
        Inicia_Transação();
        Trava(Tabela_Terciária, Conexão_Terciária, true);
        Grava(Tabela_Terciária, true);
        Finaliza_Transação();
    }

    Avisa_Mudança();
    if (Ao_Terminar) Ao_Terminar();
    Encerra_Tela();
    Avisa_Mudança();
}

void frmJogo::Encerra_Tela() {
    fraResposta->setEnabled(false);
    fraAjuda->setEnabled(false);
    fraJogadores->setEnabled(false);
    lblJogador_Atual->clear();
    lblPontuação_Atual->clear();
    lblNível_Atual->clear();
    lblPontuação_1->clear();
    lblPontuação_2->clear();
    lblPontuação_3->clear();
    Comentário("", "", "", "");
}

// ---------------------------------------------------------------------------------------------------
// Answers and helps

void frmJogo::optResposta_Click(int Index) {
    Rotina r(this, "optResposta_Click");
    if (Rolando || Index < 0 || Index > 3) return;
    if (Jogo.Respostas_Exibidas[Index].isEmpty()) return;
    const int jogador = Jogo.Jogador_Atual;
    const Desfecho_Resposta desfecho = Responde(Jogo, Index);
    if (desfecho.Efeito == Efeito_Resposta::Ignorada) return;
    Gravador.Resposta(Jogo, jogador, Index, desfecho);
    Mostra_Resposta_Correta();
    Mostra_Jogador(jogador);
    if (desfecho.Efeito == Efeito_Resposta::Certa) {
        Plataforma_Atual().Toca_Som(Caminho_Programa() + "/Sons/acerto.wav");
        Comentário("", "PARABÉNS!!!", "Resposta", "correta...");
        lblPontuação_Atual->setText(Pontuação_Exibida(Jogo.Pontos[jogador]));
        lblNível_Atual->setText(QString::number(Jogo.Nível[jogador]));
    } else {
        Plataforma_Atual().Toca_Som(Caminho_Programa() + "/Sons/erro.wav");
        Comentário("", "ERRADO!!!", "Eliminada uma", "das Ajudas!!!");
        if (desfecho.Ajuda_Retirada >= 0 && desfecho.Ajuda_Retirada < Quantidade_Ajudas)
            chkAjuda[desfecho.Ajuda_Retirada]->setVisible(false);
    }
    Avisa_Mudança();
    if (desfecho.Efeito == Efeito_Resposta::Fora_Do_Jogo)
        Plataforma_Atual().Caixa_Mensagem(Jogo.Nome_Jogador[jogador].toUpper() +
                                              ", você errou e já utilizou todas as ajudas disponíveis!!! "
                                              "O jogo continuará para os demais "
                                              "competidores...",
                                          Título_Programa, Ícone_Caixa::Informação, Botões_Caixa::Ok);
    Próximo_Competidor();
}

void frmJogo::chkAjuda_Click(int Index) {
    Rotina r(this, "chkAjuda_Click");
    if (Rolando || Index < 0 || Index >= Quantidade_Ajudas) return;
    if (!chkAjuda[Index]->isChecked()) return;
    fraAjuda->setEnabled(false);
    const Desfecho_Ajuda desfecho = Usa_Ajuda(Jogo, Index);
    if (desfecho.Efeito == Efeito_Ajuda::Recusada) return;
    Gravador.Ajuda(Jogo, Jogo.Jogador_Atual, Index, desfecho);
    if (desfecho.Efeito == Efeito_Ajuda::Pulo) {
        Mostra_Resposta_Correta();
        Avisa_Mudança();
        Próximo_Competidor();
        return;
    }
    chkAjuda[Index]->setVisible(false);
    if (Index == Ajuda_Dado) {
        // No answer and no help while the die rolls.
        Rolando = true;
        fraResposta->setEnabled(false);
        for (int face : desfecho.Faces_Dado) {
            if (face >= 1 && face <= 6) {
                imgDado->setPixmap(QIcon(Caminho_Ícone(QString("Dado %1.Ico").arg(face))).pixmap(64, 64));
                Face_Dado_Atual = face;
            }
            imgDado->repaint();
            Avisa_Mudança();
            Plataforma_Atual().Processa_Eventos();
            Plataforma_Atual().Dorme(250);
        }
        Rolando = false;
        fraResposta->setEnabled(true);
        Comentário("Respostas", "incorretas", "eliminadas:", QString::number(desfecho.Quantidade_Eliminar));
    } else if (Index == Ajuda_Apóstolos) {
        Comentário("Sugestões de", "respostas que", "podem estar", "corretas:");
    }
    Mostra_Respostas();
    Avisa_Mudança();
}

void frmJogo::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Rolando) return;
    Em_Cadastro = false;
    reject();
}

void frmJogo::cmdCelulares_Click() {
    Rotina r(this, "cmdCelulares_Click");
    fraCelulares->Alterna();
    cmdCelulares->setText(Sala_Ativa() ? "Encerrar os celulares" : "Jogar pelos celulares");
    // The room's screen shows the same address and code as the window, with its QR code.
    if (Servidor_Sala* sala = Sala_Ativa())
        Tela_Da_Sala->Mostra_Sala(sala->Endereço(), sala->Código());
    else
        Tela_Da_Sala->Esconde_Sala();
}

Servidor_Sala* frmJogo::Sala_Ativa() const {
    return fraCelulares->Servidor_Ativo();
}

// ---------------------------------------------------------------------------------------------------
// Display

void frmJogo::Mostra_Respostas() {
    for (int k = 0; k < 4; ++k) {
        const QString& texto = Jogo.Respostas_Exibidas[k];
        optResposta[k]->setText(Sem_Atalho(texto));
        optResposta[k]->setEnabled(!texto.isEmpty());
        // A screen reader reads the answer itself, not the button's place.
        optResposta[k]->setAccessibleName(texto.isEmpty() ? "Resposta " + QString::number(k + 1) : texto);
    }
}

void frmJogo::Mostra_Resposta_Correta() {
    for (int k = 0; k < 4; ++k) {
        if (Jogo.Respostas_Exibidas[k].isEmpty() ||
            Jogo.Respostas_Exibidas[k] != Jogo.Pergunta_Atual.Resposta_Correta)
            continue;
        QFont f = optResposta[k]->font();
        f.setBold(true);
        f.setPointSize(Tamanho_Resposta_Correta);
        optResposta[k]->setFont(f);
    }
}

void frmJogo::Mostra_Jogador(int jogador) {
    if (jogador < 1 || jogador > Máximo_Jogadores) return;
    lblPontuação[jogador]->setText(Pontuação_Exibida(Jogo.Pontos[jogador]));
    lblNível[jogador]->setText(QString::number(Jogo.Nível[jogador]));
    if (Lista_Fechada && jogador == Jogo.Jogador_Atual) {
        lblPontuação_Atual->setText(Pontuação_Exibida(Jogo.Pontos[jogador]));
        lblNível_Atual->setText(QString::number(Jogo.Nível[jogador]));
    }
}

void frmJogo::Comentário(const QString& a, const QString& b, const QString& c, const QString& d) {
    lblResposta_Usuário[0]->setText(a);
    lblResposta_Usuário[1]->setText(b);
    lblResposta_Usuário[2]->setText(c);
    lblResposta_Usuário[3]->setText(d);
}

void frmJogo::Avisa_Mudança() {
    // By index: an observer may add another while it runs.
    for (std::size_t i = 0; i < Ao_Mudar.size(); ++i)
        if (const std::function<void()> observador = Ao_Mudar[i]) observador();
}
