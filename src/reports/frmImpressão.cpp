#include "reports/frmImpressão.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Cadastro.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "store/Funções_Banco.h"

namespace {
const char* const Nomes_Destaque[] = {"Sem destaque", "Azul",  "Vermelho", "Verde", "Oliva", "Magenta",
                                      "Cyano",        "Cinza", "Piscina",  "Roxo",  "Rosa"};
// The colours of the report's colour table, index for index; "Sem destaque" keeps the window's text colour.
const QColor Cores_Destaque[] = {QColor(),
                                 QColor(0, 0, 255),
                                 QColor(255, 0, 0),
                                 QColor(0, 128, 0),
                                 QColor(128, 128, 0),
                                 QColor(255, 0, 255),
                                 QColor(0, 128, 128),
                                 QColor(128, 128, 128),
                                 QColor(0, 255, 255),
                                 QColor(128, 0, 128),
                                 QColor(255, 128, 255)};

QString Pasta_Relatórios_Mostrada() {
    return Caminho_Programa() + "/Relatórios/";
}
}  // namespace

frmImpressão::frmImpressão(QWidget* pai) : Formulário("frmImpressão", pai) {
    Tópico_Ajuda = "Impressão";
    QFont courier("Courier New");
    courier.setStyleHint(QFont::Monospace);

    fraImpressão = new QGroupBox(this);
    fraImpressão->setObjectName("fraImpressão");

    fraDados = new QGroupBox("Selecione a orientação do relatório:", fraImpressão);
    fraDados->setObjectName("fraDados");
    auto* orientação = new QHBoxLayout(fraDados);
    for (int i : {1, 0}) {
        optOrientação_Relatório[i] = new QRadioButton(i == 1 ? "&Retrato" : "&Paisagem", fraDados);
        optOrientação_Relatório[i]->setObjectName(QString("optOrientação_Relatório_%1").arg(i));
        orientação->addWidget(optOrientação_Relatório[i]);
    }
    orientação->addStretch();

    fraDestaca_Impressão = new QGroupBox("Destaca informações impressas no relatório?", fraImpressão);
    fraDestaca_Impressão->setObjectName("fraDestaca_Impressão");
    auto* destaques = new QGridLayout(fraDestaca_Impressão);
    for (int i = 0; i < static_cast<int>(optDestaca_Impressão.size()); ++i) {
        auto* opção = new QRadioButton(QString::fromUtf8(Nomes_Destaque[i]), fraDestaca_Impressão);
        opção->setObjectName(QString("optDestaca_Impressão_%1").arg(i));
        if (Cores_Destaque[i].isValid()) {
            QPalette paleta = opção->palette();
            paleta.setColor(QPalette::WindowText, Cores_Destaque[i]);
            paleta.setColor(QPalette::ButtonText, Cores_Destaque[i]);
            opção->setPalette(paleta);
        }
        optDestaca_Impressão[i] = opção;
        // "Sem destaque" on a row of its own, the ten colours in two columns below it.
        if (i == 0)
            destaques->addWidget(opção, 0, 0, 1, 2);
        else
            destaques->addWidget(opção, 1 + (i - 1) / 2, (i - 1) % 2);
    }

    Label1 = Rótulo("Label1", "Nome do arquivo:");
    txtCaminho = new QLineEdit(this);
    txtCaminho->setObjectName("txtCaminho");
    txtCaminho->setFont(courier);
    Label11 = Rótulo("Label11", "Local onde será gerado o relatório:");
    lblCaminho = Rótulo("lblCaminho");
    lblCaminho->setFont(courier);
    lblCaminho->setWordWrap(true);
    Image1 = Rótulo("Image1");
    Image1->setPixmap(Figura_Programa(64));
    Image1->setAlignment(Qt::AlignTop);
    cmdOk = Botão("cmdOk", "&OK");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(100);

    auto* dentro = new QVBoxLayout(fraImpressão);
    dentro->addWidget(fraDados);
    dentro->addWidget(fraDestaca_Impressão);
    for (QWidget* w : {static_cast<QWidget*>(Label1), static_cast<QWidget*>(txtCaminho),
                       static_cast<QWidget*>(Label11), static_cast<QWidget*>(lblCaminho)})
        dentro->addWidget(w);
    auto* topo = new QHBoxLayout;
    topo->addWidget(Image1);
    topo->addSpacing(10);
    topo->addWidget(fraImpressão, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->addLayout(topo);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setMinimumWidth(560);

    for (int i = 0; i < static_cast<int>(optOrientação_Relatório.size()); ++i)
        QObject::connect(optOrientação_Relatório[i], &QRadioButton::toggled, this, [this, i](bool ligado) {
            if (ligado) optOrientação_Relatório_Click(i);
        });
    for (int i = 0; i < static_cast<int>(optDestaca_Impressão.size()); ++i)
        QObject::connect(optDestaca_Impressão[i], &QRadioButton::toggled, this, [this, i](bool ligado) {
            if (ligado) optDestaca_Impressão_Click(i);
        });
    QObject::connect(txtCaminho, &QLineEdit::textChanged, this, [this] { txtCaminho_Change(); });
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_Load();
}

void frmImpressão::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    setWindowTitle("Configuração da impressão dos relatórios");
    // This dialog stands over a register window, not in its place.
    Em_Cadastro = false;
    Comando_SQL.clear();
    optOrientação_Relatório[Modo_Retrato ? 1 : 0]->setChecked(true);
    Impressão_Confirmada = false;
    lblCaminho->setText(Pasta_Relatórios_Mostrada());
    txtCaminho->setText(Título_Relatório.trimmed().isEmpty() ? QString("Nome do Relatório")
                                                             : Título_Relatório);
    // The colour of an earlier report is not remembered.
    Cor_Destaque = 1;
    Destaque_Ligado = true;
    optDestaca_Impressão[1]->setChecked(true);
}

void frmImpressão::optOrientação_Relatório_Click(int Index) {
    Modo_Retrato = Index == 1;
}

void frmImpressão::optDestaca_Impressão_Click(int Index) {
    Cor_Destaque = Index;
    Destaque_Ligado = Index != 0;
}

void frmImpressão::txtCaminho_Change() {
    lblCaminho->setText(Pasta_Relatórios_Mostrada() + txtCaminho->text());
}

void frmImpressão::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    const auto confirma_exclusão = [this] {
        const QString operação = Operação;
        Operação = "exclusão do relatório para a geração de um novo";
        const bool sim = Confirma(this);
        Operação = operação;
        return sim;
    };
    if (Abre_Arquivo_Rtf(txtCaminho->text(), confirma_exclusão)) {
        cmdSair_Click();
    } else {
        txtCaminho->setFocus();
        txtCaminho->selectAll();
    }
}

void frmImpressão::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    reject();
}
