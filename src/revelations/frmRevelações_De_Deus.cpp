#include "revelations/frmRevelações_De_Deus.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "reports/Texto_Relatório.h"
#include "revelations/Revelações.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "users/Permissões.h"

namespace {
constexpr int Linhas_Grade_Inicial = 26;
constexpr int Largura_Título = 108;
const QString Título_Base = "<Revelação de Deus";
const QColor Azul(0, 0, 255);
}  // namespace

frmRevelações_De_Deus::frmRevelações_De_Deus(QWidget* pai) : Formulário("frmRevelações_De_Deus", pai) {
    Tópico_Ajuda = "Revelações de Deus";
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);

    fraRevelações_De_Deus =
        new QGroupBox("Selecione o tipo de pesquisa a ser feita entre as Revelações de Deus:", this);
    fraRevelações_De_Deus->setObjectName("fraRevelações_De_Deus");
    optPesquisa[0] = new QRadioButton("Pesquisa por um &assunto específico", fraRevelações_De_Deus);
    optPesquisa[1] = new QRadioButton("Pesquisa por um &texto específico", fraRevelações_De_Deus);
    auto* opções = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        optPesquisa[i]->setObjectName(QString("optPesquisa_%1").arg(i));
        optPesquisa[i]->setAccessibleName(optPesquisa[i]->text().remove('&'));
        // Both stand in the same frame, so choosing one sets the other off.
        opções->addWidget(optPesquisa[i]);
    }
    opções->addStretch();
    optPesquisa[0]->setChecked(true);
    txtPesquisa = new QLineEdit(fraRevelações_De_Deus);
    txtPesquisa->setObjectName("txtPesquisa");
    txtPesquisa->setAccessibleName("Texto a pesquisar");
    txtPesquisa->setMaxLength(50);
    txtPesquisa->setFont(fixa);
    txtPesquisa->setMinimumWidth(QFontMetrics(fixa).horizontalAdvance(QString(52, 'M')));
    cmdOk = Botão("cmdOk", "&OK");
    cmdOk->setAccessibleName("OK");
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setAccessibleName("Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(110);
    auto* busca = new QHBoxLayout;
    busca->addWidget(txtPesquisa, 1);
    busca->addWidget(cmdOk);
    busca->addWidget(cmdSair);
    auto* quadro = new QVBoxLayout(fraRevelações_De_Deus);
    quadro->addLayout(opções);
    quadro->addLayout(busca);

    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setAccessibleName("Progresso da pesquisa");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    pgbBarra_De_Progresso->setValue(0);

    flxRevelações_de_Deus = new Grade_Flex(this);
    flxRevelações_de_Deus->setObjectName("flxRevelações_de_Deus");
    flxRevelações_de_Deus->setAccessibleName("Revelações de Deus encontradas");
    flxRevelações_de_Deus->setFont(fixa);
    flxRevelações_de_Deus->setWordWrap(false);
    flxRevelações_de_Deus->Set_Cols(2);
    flxRevelações_de_Deus->Set_Rows(Linhas_Grade_Inicial);
    // The beginnings take the grid's whole width; the code beside them stays hidden.
    flxRevelações_de_Deus->horizontalHeader()->setStretchLastSection(true);
    flxRevelações_de_Deus->Ao_Clicar = [this] { flxRevelações_De_Deus_SelChange(); };

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraRevelações_De_Deus);
    layout->addWidget(pgbBarra_De_Progresso);
    layout->addWidget(flxRevelações_de_Deus, 1);
    resize(QFontMetrics(fixa).horizontalAdvance(QString(Largura_Título + 4, 'M')) + 40, 620);

    Instala_Validate(txtPesquisa, [this](bool& Cancel) { txtPesquisa_Validate(Cancel); });
    Define_CausesValidation(cmdSair, false);
    // Picking a citation found is no new search: the text box's check is not run for it.
    Define_CausesValidation(flxRevelações_de_Deus, false);
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The close box leaves as Sair does, and stops a running search on the way.
    Form_QueryUnload = [this] {
        Em_Cadastro = false;
        Interrompe_Pesquisa = true;
        return true;
    };
    Form_Load();
}

void frmRevelações_De_Deus::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle(" ");
    Em_Cadastro = true;
    Comando_SQL.clear();
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Abre_Tabelas();

    Tabela.Reinicia();
    Abre_Tabela("Select * From tblRevelação Where Quantidade_Linhas < 30");
    const int pequenas = Lastrec(Tabela.Source, Conexão);
    const int todas = Lastrec(Tabela_Secundária.Source, Conexão_Secundária);
    flxRevelações_de_Deus->Clear();
    QString título = Título_Base;
    // The maker's own account also sees how many citations are short.
    if (Usuário_Atual == Usuário_Autor) {
        const double parte = todas == 0 ? 0.0 : 100.0 * pequenas / todas;
        título += QString(34, ' ') +
                  "Quantidade de Citações com Texto Pequeno: " + Formata_Expressão(pequenas, 4, 0, false) +
                  " (" + Formata_Expressão(parte, 6, 2, false) + "%)";
    }
    flxRevelações_de_Deus->Set_FormatString(título.leftJustified(Largura_Título));
    flxRevelações_de_Deus->setColumnHidden(1, true);
    Monta_Flex_Grid(flxRevelações_de_Deus);
    Revelação_Mostrada.assign(Revelação_Mostrada.size(), false);
}

QString frmRevelações_De_Deus::Título_Grade() const {
    return Título_Base.leftJustified(Largura_Título);
}

void frmRevelações_De_Deus::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("tblRevelação");
    Tabela_Secundária.Set_Index("idxCódigo_Revelação");
    if (Lastrec(Tabela_Secundária.Source, Conexão_Secundária) != 0) Tabela_Secundária.MoveFirst();
}

void frmRevelações_De_Deus::txtPesquisa_Validate(bool& Cancel) {
    Rotina r(this, "txtPesquisa_Validate");
    if (cmdSair->isDown()) return;
    if (txtPesquisa->text().trimmed().isEmpty()) {
        Exibe_Mensagem(10);
        Cancel = true;
        return;
    }
    if (!Pesquisando) flxRevelações_de_Deus->Set_TextMatrix(1, 0, "Efetuando pesquisa no banco de dados...");
}

void frmRevelações_De_Deus::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    const QString procurado = txtPesquisa->text().trimmed();
    // OK reached without leaving the text box (its access key) finds the empty text here.
    if (procurado.isEmpty()) {
        Exibe_Mensagem(10);
        txtPesquisa->setFocus();
        return;
    }
    Plataforma& plataforma = Plataforma_Atual();
    Grade_Flex* grade = flxRevelações_de_Deus;
    Interrompe_Pesquisa = false;
    if (Linha_Grade > Linhas_Grade_Inicial) grade->Set_Rows(Linhas_Grade_Inicial);
    Linha_Grade = 0;
    grade->Clear();
    grade->Set_FormatString(Título_Grade());
    grade->setColumnHidden(1, true);
    Início_Progresso = plataforma.Agora();
    const QString legenda = windowTitle();
    // One search at a time; the window is otherwise left to the user, Sair included.
    cmdOk->setEnabled(false);
    Pesquisando = true;

    int lidas = 0;
    if (optPesquisa[0]->isChecked()) {
        Comando_SQL = "Select * From tblRevelação Where Palavra_Chave Like " + Valor_Like_SQL(procurado);
        Tabela.Reinicia();
        Abre_Tabela(Comando_SQL);
        const int total = Lastrec(Tabela.Source, Conexão);
        if (total != 0) Tabela.MoveFirst();
        while (!Tabela.Eof()) {
            Barra_de_Progresso(1, total, ++lidas, this);
            const int número = Tabela.Fields("Código_Revelação_de_Deus").Value().toInt();
            const bool mostrada = número >= 0 && número < static_cast<int>(Revelação_Mostrada.size()) &&
                                  Revelação_Mostrada[número];
            if (Palavra_Chave_Confere(Tabela.Fields("Palavra_Chave").Value().toString(), procurado) &&
                !mostrada)
                Mostra_Citação(Tabela.Fields("Código_Revelação").Value(), número);
            Tabela.MoveNext();
            plataforma.Processa_Eventos_Da_Caminhada();
            if (Interrompe_Pesquisa) break;
        }
    } else {
        const int total = Lastrec(Tabela_Secundária.Source, Conexão_Secundária);
        if (total != 0) Tabela_Secundária.MoveFirst();
        while (!Tabela_Secundária.Eof()) {
            Barra_de_Progresso(1, total, ++lidas, this);
            const int número = Tabela_Secundária.Fields("Código_Revelação_de_Deus").Value().toInt();
            if (Citação_Contém(Caminho_Citação(número), procurado))
                Mostra_Citação(Tabela_Secundária.Fields("Código_Revelação").Value(), número);
            Tabela_Secundária.MoveNext();
            plataforma.Processa_Eventos_Da_Caminhada();
            if (Interrompe_Pesquisa) break;
        }
    }
    Pesquisando = false;
    // Closed in the middle of the search: the window is on its way out.
    if (Interrompe_Pesquisa) return;
    setWindowTitle(legenda);
    cmdOk->setEnabled(true);

    if (Linha_Grade == 0)
        grade->Set_TextMatrix(1, 0,
                              "Expressão \"" +
                                  QLocale(QLocale::Portuguese, QLocale::Brazil).toUpper(procurado) +
                                  "\" não encontrada entre as Revelações de Deus...");
    Monta_Flex_Grid(grade);
}

void frmRevelações_De_Deus::Mostra_Citação(const QVariant& código, int número) {
    Grade_Flex* grade = flxRevelações_de_Deus;
    ++Linha_Grade;
    if (Linha_Grade == grade->Rows() - 1) grade->Set_Rows(grade->Rows() + 1);
    grade->Set_TextMatrix(Linha_Grade, 0, Início_Citação(Caminho_Citação(número)));
    grade->Set_TextMatrix(Linha_Grade, 1, código.toString());
}

void frmRevelações_De_Deus::flxRevelações_De_Deus_SelChange() {
    Rotina r(this, "flxRevelações_De_Deus_SelChange");
    Grade_Flex* grade = flxRevelações_de_Deus;
    // During a search the table is being walked: a citation is opened once the search ends.
    if (Pesquisando || Linha_Grade == 0 || grade->Row() > Linha_Grade) return;
    Tabela_Secundária.Seek(grade->TextMatrix(grade->Row(), 1).toInt(), Tipo_Busca::Primeiro_Igual);
    if (Tabela_Secundária.Eof()) return;
    const int número = Tabela_Secundária.Fields("Código_Revelação_de_Deus").Value().toInt();
    Plataforma_Atual().Abre_Com_Aplicativo(Caminho_Citação(número));
    grade->Set_Col(0);
    grade->Set_CellForeColor(Azul);
    // Without the selection's highlight the blue of the opened citation shows at once.
    grade->clearSelection();
    if (número >= 0 && número < static_cast<int>(Revelação_Mostrada.size()))
        Revelação_Mostrada[número] = true;
}

void frmRevelações_De_Deus::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    Interrompe_Pesquisa = true;
    accept();
}
