#include "game/frmSorteio.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "sala/frmTela_Sorteio.h"
#include "store/Funções_Banco.h"

namespace {
QFont Fonte_Fixa(int tamanho, bool negrito) {
    QFont fixa("Courier New", tamanho);
    fixa.setStyleHint(QFont::Monospace);
    fixa.setBold(negrito);
    return fixa;
}

QSpinBox* Nova_Faixa(QWidget* pai, const QString& nome) {
    auto* caixa = new QSpinBox(pai);
    caixa->setObjectName(nome);
    caixa->setFont(Fonte_Fixa(12, false));
    caixa->setRange(1, 999999);
    caixa->setValue(1);
    caixa->setAlignment(Qt::AlignRight);
    caixa->setMinimumWidth(120);
    return caixa;
}

QLineEdit* Novo_Mostrador(QWidget* pai, const QString& nome, const QFont& fonte) {
    auto* caixa = new QLineEdit(pai);
    caixa->setObjectName(nome);
    caixa->setFont(fonte);
    caixa->setReadOnly(true);
    caixa->setFocusPolicy(Qt::NoFocus);
    caixa->setAlignment(Qt::AlignRight);
    return caixa;
}
}  // namespace

frmSorteio::frmSorteio(QWidget* pai) : Formulário("frmSorteio", pai) {
    Tópico_Ajuda = "Sorteio de Contemplados";
    QFont rótulos = font();
    rótulos.setPointSize(11);
    setFont(rótulos);

    Label1 = new QLabel("Informe a faixa de abrangência a ser considerado pelo sorteio:", this);
    Label1->setObjectName("Label1");
    Label5 = new QLabel("de", this);
    Label5->setObjectName("Label5");
    nbNúmero_Inicial = Nova_Faixa(this, "nbNúmero_Inicial");
    // The range always starts at 1: the lower box only shows that.
    nbNúmero_Inicial->setEnabled(false);
    Label3 = new QLabel("a", this);
    Label3->setObjectName("Label3");
    nbNúmero_Final = Nova_Faixa(this, "nbNúmero_Final");
    cmdSorteia = Botão("cmdSorteia", "Novo Sorteio");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdSorteia, cmdSair}) b->setMinimumWidth(120);
    nbNúmero_Sorteado = Novo_Mostrador(this, "nbNúmero_Sorteado", Fonte_Fixa(28, true));
    nbNúmero_Sorteado->setAlignment(Qt::AlignCenter);
    nbNúmero_Sorteado->setMinimumWidth(260);
    nbNúmero_Sorteado->setText("999999");

    fraSorteio = new QGroupBox("Números Já Contemplados:", this);
    fraSorteio->setObjectName("fraSorteio");
    auto* grade = new QGridLayout(fraSorteio);
    grade->setSpacing(8);
    const int colunas = Contemplados_Visíveis / 2;
    for (int i = 0; i < Contemplados_Visíveis; ++i) {
        nbNúmero_Contemplado[i] =
            Novo_Mostrador(fraSorteio, QString("nbNúmero_Contemplado(%1)").arg(i), Fonte_Fixa(12, true));
        nbNúmero_Contemplado[i]->setMinimumWidth(90);
        grade->addWidget(nbNúmero_Contemplado[i], i / colunas, i % colunas);
    }

    auto* faixa = new QHBoxLayout;
    faixa->addWidget(Label5);
    faixa->addWidget(nbNúmero_Inicial);
    faixa->addSpacing(12);
    faixa->addWidget(Label3);
    faixa->addWidget(nbNúmero_Final);
    faixa->addStretch();
    auto* sorteio = new QHBoxLayout;
    sorteio->addStretch();
    sorteio->addWidget(nbNúmero_Sorteado);
    sorteio->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(Label1);
    layout->addLayout(faixa);
    layout->addLayout(sorteio);
    layout->addWidget(fraSorteio);
    layout->addLayout(Linha_Botões({cmdSorteia, cmdSair}));
    // The list keeps its room while it is hidden during a spin, so the window does not jump.
    QSizePolicy política = fraSorteio->sizePolicy();
    política.setRetainSizeWhenHidden(true);
    fraSorteio->setSizePolicy(política);

    QObject::connect(cmdSorteia, &QPushButton::clicked, this, [this] { cmdSorteia_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_QueryUnload = [this] { return !Em_Sorteio; };
    Tela_Da_Sala = new frmTela_Sorteio(*this);
    Liga_F11(this, Tela_Da_Sala);
    Form_Load();
}

void frmSorteio::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle("Sorteio de Contemplados");
    Em_Cadastro = false;
    Comando_SQL.clear();
    Finaliza_Transação();
    if (!Tabela_Dynaset.Source.isEmpty()) Tabela_Dynaset.Reinicia();
}

void frmSorteio::cmdSorteia_Click() {
    Rotina r(this, "cmdSorteia_Click");
    if (Em_Sorteio) return;  // the repaint of a spin let a second press through
    Em_Sorteio = true;
    struct Fim_Sorteio {
        bool& Marca;
        ~Fim_Sorteio() { Marca = false; }
    } fim{Em_Sorteio};
    const Desfecho_Sorteio desfecho = ::Novo_Sorteio(Sorteio, nbNúmero_Final->value());
    if (desfecho.Efeito == Efeito_Sorteio::Todos_Sorteados) {
        Exibe_Mensagem(24);
        return;
    }
    Plataforma& plataforma = Plataforma_Atual();
    if (desfecho.Efeito == Efeito_Sorteio::Limite_Atingido) {
        plataforma.Caixa_Mensagem(Texto_Limite_Sorteio, "Atenção!!!", Ícone_Caixa::Exclamação,
                                  Botões_Caixa::Ok);
        return;
    }
    plataforma.Cursor_Ocupado("Processamento.Ico");
    fraSorteio->hide();
    for (int número : desfecho.Exibidos) {
        nbNúmero_Sorteado->setText(QString::number(número));
        nbNúmero_Sorteado->repaint();
        plataforma.Processa_Eventos();
    }
    nbNúmero_Sorteado->setText(QString::number(desfecho.Número));
    const QList<int> exibidos = ::Contemplados_Exibidos(Sorteio);
    for (int i = 0; i < Contemplados_Visíveis; ++i)
        nbNúmero_Contemplado[i]->setText(i < exibidos.size() ? QString::number(exibidos[i]) : QString());
    fraSorteio->show();
    plataforma.Cursor_Normal();
}

void frmSorteio::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Em_Sorteio) return;  // the draw finishes first; closing mid-spin would leave it half done
    Em_Cadastro = false;
    accept();
}

void frmSorteio::keyPressEvent(QKeyEvent* evento) {
    if (evento->key() != Qt::Key_Escape) return Formulário::keyPressEvent(evento);
    if (Tela_Da_Sala->isVisible()) Tela_Da_Sala->Volta();
}
