#include "activities/frmImpressão_Dinâmica.h"

#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "activities/frmDinâmica.h"
#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "reports/frmImpressão.h"
#include "store/Funções_Banco.h"
#include "store/Leitura_Sequencial.h"
#include "users/Permissões.h"

namespace {
// The setting's text, centred under its heading by the leading blanks.
const std::array<QString, 4> Formas = {"   Ao ar livre", "Em salão fechado", "Em programa J.A.",
                                       " Como meditação"};
// The label of each total: all rows, then each setting.
const std::array<QString, 5> Rótulos_Totais = {
    "QUANTIDADE TOTAL DE DINÂMICAS .........:", "QUANTIDADE DE DINÂMICAS \"AO AR LIVRE\" .:",
    "QUANTDADE DE DINÂMICAS \"SALÃO FECHADO\" :", "QUANTIDADE DE DINÂMICAS \"PROGRAMA J.A.\":",
    "QUANTIDADE DE \"MEDITAÇÕES\" ............:"};
}  // namespace

frmImpressão_Dinâmica::frmImpressão_Dinâmica(QWidget* pai) : Formulário("frmImpressão_Dinâmica", pai) {
    Tópico_Ajuda = "Impressão das Dinâmicas";
    Label1 = Rótulo("Label1",
                    "Relação de todas as dinâmicas cadastradas, com os totais por forma de realizá-las.");
    Label1->setWordWrap(true);
    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setAccessibleName("Progresso do relatório");
    pgbBarra_De_Progresso->setValue(0);
    cmdOk = Botão("cmdOk", "&OK");
    cmdOk->setAccessibleName("OK");
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setAccessibleName("Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(110);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(Label1);
    layout->addWidget(pgbBarra_De_Progresso);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setMinimumWidth(460);
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The close box leaves as Sair does; during the walk it stops the walk, which then closes the window.
    Form_QueryUnload = [this] {
        if (Imprimindo) {
            Interrompido = true;
            return false;
        }
        Em_Cadastro = false;
        return true;
    };
    Form_Load();
}

void frmImpressão_Dinâmica::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    setWindowTitle("Relatório de Dinâmicas");
    Em_Cadastro = true;
    Comando_SQL.clear();
    Operação = "Impressão";
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) {
        cmdOk->setEnabled(false);
        return;
    }
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Abre_Tabelas();
}

void frmImpressão_Dinâmica::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblDinâmica");
    Tabela.Set_Index("idxDinâmica");
}

void frmImpressão_Dinâmica::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    cmdOk->setEnabled(false);
    Título_Relatório = "Impressão das Dinâmicas";
    {
        frmImpressão impressão(this);
        Plataforma_Atual().Mostra_Modal(&impressão);
    }
    if (!Impressão_Confirmada) return;

    Preenche_Linha_Relatório(1, 50, "DINÂMICA " + QString(40, '.') + ":");
    Preenche_Linha_Relatório(53, 20, "FORMA DE REALIZÁ-LA:");
    Preenche_Linha_Relatório(75, 10, "REALIZADA:");
    Preenche_Linha_Relatório(87, 47, "MATERIAIS NECESSÁRIOS ........................:");
    Imprime(Linha_Relatório, 0, false);

    const QString legenda = windowTitle();
    Imprimindo = true;
    Interrompido = false;
    std::array<int, 5> quantidades{};
    const bool completo = Imprime_Dinâmicas(quantidades);
    Imprimindo = false;
    setWindowTitle(legenda);
    if (!completo) {
        // Left halfway: totals of part of the table would mislead, so the file goes and no viewer opens.
        Descarta_Arquivo_Rtf();
        cmdSair_Click();
        return;
    }

    Destaca_Impressão(true);
    Imprime("", 0, false);
    Configura_Impressora(false, true, false);
    for (int i = 0; i < 5; ++i) {
        Preenche_Linha_Relatório(1, 133, Rótulos_Totais[i] + Formata_Expressão(quantidades[i], 6, 0, false));
        Imprime(Linha_Relatório, 0, false);
        if (i < 4) Imprime("", 0, false);
    }
    Configura_Impressora(false, false, false);
    Fecha_Arquivo_Rtf(this);
    cmdSair_Click();
}

bool frmImpressão_Dinâmica::Imprime_Dinâmicas(std::array<int, 5>& Quantidades) {
    Rotina r(this, "Imprime_Dinâmicas");
    Plataforma& plataforma = Plataforma_Atual();
    const int total = Lastrec(Tabela.Source, Conexão);
    if (total == 0) return true;
    Tabela.MoveFirst();
    Início_Progresso = plataforma.Agora();
    // The walk goes one way from the first row and prints four fields: it reads only those, a page at a
    // time, in the index's order.
    Leitura_Sequencial leitura(Tabela, {"Tipo_Dinâmica", "Dinâmica", "Data_Última_Realização", "Materiais"});
    // The few codes of the settings, each known once as its bytes come, with the setting they give.
    QList<QPair<QByteArray, int>> formas_conhecidas;
    const auto forma_do_código = [&formas_conhecidas](QByteArrayView código) {
        for (const auto& [bytes, forma] : formas_conhecidas)
            if (código == bytes) return forma;
        const int forma = Índice_Tipo_Dinâmica(QString::fromUtf8(código));
        if (formas_conhecidas.size() < 16) formas_conhecidas.append({código.toByteArray(), forma});
        return forma;
    };
    int lidas = 0;
    while (leitura.Próxima()) {
        Barra_de_Progresso(1, total, ++lidas, this);
        Destaca_Impressão(false);
        const int forma = forma_do_código(leitura.Texto_Utf8(0));
        Preenche_Linha_Relatório_Utf8(1, 50, leitura.Texto_Utf8(1));
        Preenche_Linha_Relatório(54, 20, Formas[forma]);
        if (!leitura.Nulo(2)) Preenche_Linha_Relatório(75, 10, leitura.Valor(2).toString());
        Preenche_Linha_Relatório_Utf8(87, 47, leitura.Texto_Utf8(3));
        Imprime(Linha_Relatório, 0, false);
        ++Quantidades[0];
        ++Quantidades[forma + 1];
        plataforma.Processa_Eventos_Da_Caminhada();
        if (Interrompido) return false;
    }
    return true;
}

void frmImpressão_Dinâmica::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Imprimindo) {
        Interrompido = true;
        return;
    }
    Em_Cadastro = false;
    accept();
}
