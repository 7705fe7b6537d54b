#include "statistics/frmEstatísticas_Jogos.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHorizontalBarSeries>
#include <QIcon>
#include <QLabel>
#include <QLineSeries>
#include <QLogValueAxis>
#include <QPieSeries>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QValueAxis>
#include <algorithm>
#include <cmath>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "questions/frmPergunta.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "reports/frmImpressão.h"
#include "store/Funções_Banco.h"
#include "users/Permissões.h"

using namespace Estatísticas;

namespace {
const QStringList Nomes_Tipos = {"Ambos", "Conhecimento Bíblico", "Conhecimento Geral"};
const QStringList Letras_Tipos = {"A", "B", "G"};

QString Nome_Tipo(const QString& letra) {
    const int i = static_cast<int>(Letras_Tipos.indexOf(letra));
    return i < 0 ? letra : Nomes_Tipos[i];
}

QChartView* Nova_Vista(QWidget* pai, const QString& nome, const QString& nome_acessível) {
    auto* vista = new QChartView(pai);
    vista->setObjectName(nome);
    vista->setAccessibleName(nome_acessível);
    vista->setRenderHint(QPainter::Antialiasing);
    vista->setMinimumSize(640, 380);
    return vista;
}

QChart* Novo_Gráfico(const QString& título) {
    auto* gráfico = new QChart();
    gráfico->setTitle(título);
    gráfico->setAnimationOptions(QChart::NoAnimation);
    gráfico->legend()->setAlignment(Qt::AlignBottom);
    return gráfico;
}

int Mês_Da_Data(const QDate& d) {
    return d.year() * 100 + d.month();
}

// How many times the largest score may be the smallest one above zero before the points go on a
// logarithmic scale.
constexpr double Razão_Escala_Logarítmica = 100;

QString Resumida(const QString& texto, int tamanho) {
    return texto.size() <= tamanho ? texto : texto.left(tamanho - 3) + "...";
}
}  // namespace

frmEstatísticas_Jogos::frmEstatísticas_Jogos(QWidget* pai) : Formulário("frmEstatísticas_Jogos", pai) {
    Tópico_Ajuda = "Estatísticas dos Jogos";
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 10);

    auto* filtros = new QHBoxLayout();
    filtros->addWidget(Rótulo("Label1", "Período de:"));
    dbMês_Inicial = new QDateEdit(this);
    dbMês_Inicial->setObjectName("dbMês_Inicial");
    dbMês_Inicial->setAccessibleName("Primeiro mês");
    dbMês_Final = new QDateEdit(this);
    dbMês_Final->setObjectName("dbMês_Final");
    dbMês_Final->setAccessibleName("Último mês");
    for (QDateEdit* d : {dbMês_Inicial, dbMês_Final}) {
        d->setDisplayFormat("MM/yyyy");
        d->setCalendarPopup(false);
    }
    filtros->addWidget(dbMês_Inicial);
    filtros->addWidget(Rótulo("Label2", "até:"));
    filtros->addWidget(dbMês_Final);
    filtros->addSpacing(16);
    filtros->addWidget(Rótulo("Label3", "Tipo das perguntas:"));
    cboTipo = new QComboBox(this);
    cboTipo->setObjectName("cboTipo");
    cboTipo->setAccessibleName("Tipo das perguntas");
    cboTipo->addItems(Nomes_Tipos);
    filtros->addWidget(cboTipo);
    cmdAtualiza = Botão("cmdAtualiza", "&Atualizar");
    filtros->addWidget(cmdAtualiza);
    filtros->addStretch();
    layout->addLayout(filtros);
    lblTotais = Rótulo("lblTotais");
    layout->addWidget(lblTotais);

    tabGráficos = new QTabWidget(this);
    tabGráficos->setObjectName("tabGráficos");
    chtMais_Difíceis = Nova_Vista(tabGráficos, "chtMais_Difíceis", "As 20 perguntas mais difíceis");
    chtMais_Fáceis = Nova_Vista(tabGráficos, "chtMais_Fáceis", "As 20 perguntas mais fáceis");
    chtPor_Tipo = Nova_Vista(tabGráficos, "chtPor_Tipo", "Acertos por tipo");
    chtAjudas = Nova_Vista(tabGráficos, "chtAjudas", "Ajudas usadas");
    chtPor_Mês = Nova_Vista(tabGráficos, "chtPor_Mês", "Jogos e respostas por mês");
    chtCompetidores = Nova_Vista(tabGráficos, "chtCompetidores", "Pontos dos competidores");
    flxPerguntas = Nova_Grade("flxPerguntas");
    auto* suspeitas = new QWidget(tabGráficos);
    auto* coluna = new QVBoxLayout(suspeitas);
    flxNunca_Acertadas = Nova_Grade("flxNunca_Acertadas");
    flxIncorreta_Preferida = Nova_Grade("flxIncorreta_Preferida");
    coluna->addWidget(Rótulo("Label4", "Nunca acertadas em 5 respostas ou mais:"));
    coluna->addWidget(flxNunca_Acertadas);
    coluna->addWidget(Rótulo("Label5", "Uma resposta incorreta escolhida mais vezes que a correta:"));
    coluna->addWidget(flxIncorreta_Preferida);
    tabGráficos->addTab(chtMais_Difíceis, "Mais difíceis");
    tabGráficos->addTab(chtMais_Fáceis, "Mais fáceis");
    tabGráficos->addTab(flxPerguntas, "Acertos por pergunta");
    tabGráficos->addTab(chtPor_Tipo, "Acertos por tipo");
    tabGráficos->addTab(chtAjudas, "Ajudas");
    tabGráficos->addTab(chtPor_Mês, "Jogos por mês");
    tabGráficos->addTab(chtCompetidores, "Pontos dos competidores");
    tabGráficos->addTab(suspeitas, "Perguntas suspeitas");
    layout->addWidget(tabGráficos, 1);

    cmdExporta = Botão("cmdExporta", "E&xportar CSV");
    cmdImprime = Botão("cmdImprime", "&Imprimir");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdExporta, cmdImprime, cmdSair}) b->setMinimumWidth(120);
    layout->addLayout(Linha_Botões({cmdExporta, cmdImprime, cmdSair}));

    QObject::connect(tabGráficos, &QTabWidget::currentChanged, this, [this](int aba) { Desenha_Aba(aba); });
    QObject::connect(cmdAtualiza, &QPushButton::clicked, this, [this] { cmdAtualiza_Click(); });
    QObject::connect(cmdExporta, &QPushButton::clicked, this, [this] { cmdExporta_Click(); });
    QObject::connect(cmdImprime, &QPushButton::clicked, this, [this] { cmdImprime_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    Form_QueryUnload = [] {
        Em_Cadastro = false;
        return true;
    };
    resize(1000, 680);
    Form_Load();
}

QTableWidget* frmEstatísticas_Jogos::Nova_Grade(const QString& nome) {
    auto* grade = new QTableWidget(this);
    grade->setObjectName(nome);
    grade->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grade->setSelectionBehavior(QAbstractItemView::SelectRows);
    grade->setSelectionMode(QAbstractItemView::SingleSelection);
    grade->verticalHeader()->hide();
    grade->setColumnCount(6);
    grade->setHorizontalHeaderLabels({"Código", "Pergunta", "Respostas", "Acertos", "% de acertos", "Pulos"});
    grade->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    QObject::connect(grade, &QTableWidget::cellDoubleClicked, this, [this, grade](int linha, int) {
        if (QTableWidgetItem* item = grade->item(linha, 0)) Abre_Pergunta(item->text().toInt());
    });
    return grade;
}

void frmEstatísticas_Jogos::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    setWindowTitle("Estatísticas dos Jogos");
    Em_Cadastro = true;
    Comando_SQL.clear();
    Operação = "Impressão";
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) {
        Sem_Direito = true;
        for (QWidget* w : std::initializer_list<QWidget*>{cmdAtualiza, cmdExporta, cmdImprime, tabGráficos})
            w->setEnabled(false);
        return;
    }
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    // The whole record by default: from its first month to this one.
    const QDate hoje = Plataforma_Atual().Agora().date();
    const int primeiro = Primeiro_Mês();
    dbMês_Inicial->setDate(primeiro > 0 ? QDate(primeiro / 100, primeiro % 100, 1)
                                        : QDate(hoje.year(), hoje.month(), 1));
    dbMês_Final->setDate(QDate(hoje.year(), hoje.month(), 1));
    cmdAtualiza_Click();
}

Filtro_Estatísticas frmEstatísticas_Jogos::Filtro_Atual() const {
    Filtro_Estatísticas filtro;
    filtro.Mês_Inicial = Mês_Da_Data(dbMês_Inicial->date());
    filtro.Mês_Final = Mês_Da_Data(dbMês_Final->date());
    filtro.Tipo = Letras_Tipos.value(cboTipo->currentIndex(), "A");
    return filtro;
}

void frmEstatísticas_Jogos::cmdAtualiza_Click() {
    Rotina r(this, "cmdAtualiza_Click");
    if (Sem_Direito) return;
    const Filtro_Estatísticas filtro = Filtro_Atual();
    if (filtro.Mês_Inicial > filtro.Mês_Final) {
        Plataforma_Atual().Caixa_Mensagem("O primeiro mês do período deve vir antes do último.",
                                          Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
        dbMês_Inicial->setFocus();
        return;
    }
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Falha_Banco falha;
    if (!Calcula(filtro, Números, falha)) {
        Números = Números_Estatísticas();
        Plataforma_Atual().Caixa_Mensagem(
            "Não foi possível ler as estatísticas dos jogos.\r\r" + falha.Descrição, Título_Programa,
            Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
    }
    Desenha_Gráficos();
}

void frmEstatísticas_Jogos::Preenche_Grade(QTableWidget* grade, const QVector<Números_Pergunta>& perguntas) {
    grade->setRowCount(static_cast<int>(perguntas.size()));
    for (int i = 0; i < perguntas.size(); ++i) {
        const Números_Pergunta& p = perguntas[i];
        const QStringList textos = {QString::number(p.Código_Pergunta),
                                    p.Pergunta.isEmpty() ? "(excluída do cadastro)" : p.Pergunta,
                                    QString::number(p.Respostas),
                                    QString::number(p.Acertos),
                                    p.Respostas ? Texto_Percentual(p.Percentual()) : "-",
                                    QString::number(p.Pulos)};
        for (int c = 0; c < textos.size(); ++c) {
            auto* item = new QTableWidgetItem(textos[c]);
            if (c != 1) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grade->setItem(i, c, item);
        }
    }
    grade->resizeColumnToContents(0);
}

namespace {
// The 20 questions as horizontal bars of their share of right answers; a double click on a bar opens it.
QChart* Gráfico_Extremos(const QString& título, const QVector<Números_Pergunta>& perguntas,
                         frmEstatísticas_Jogos* janela) {
    QChart* gráfico = Novo_Gráfico(título);
    auto* série = new QHorizontalBarSeries();
    auto* conjunto = new QBarSet("% de acertos");
    QStringList categorias;
    QVector<int> códigos;
    // The first of the list stands at the top.
    for (auto it = perguntas.crbegin(); it != perguntas.crend(); ++it) {
        *conjunto << it->Percentual();
        categorias << QString("%1 de %2 · nº %3 %4")
                          .arg(Texto_Percentual(it->Percentual()))
                          .arg(it->Respostas)
                          .arg(it->Código_Pergunta)
                          .arg(Resumida(it->Pergunta, 26));
        códigos << it->Código_Pergunta;
    }
    série->append(conjunto);
    série->setLabelsVisible(true);
    série->setLabelsFormat("@value%");
    gráfico->addSeries(série);
    auto* eixo_y = new QBarCategoryAxis();
    eixo_y->append(categorias);
    eixo_y->setTruncateLabels(false);  // the question's number and share must stay readable
    gráfico->addAxis(eixo_y, Qt::AlignLeft);
    série->attachAxis(eixo_y);
    auto* eixo_x = new QValueAxis();
    eixo_x->setRange(0, 100);
    eixo_x->setLabelFormat("%d%%");
    gráfico->addAxis(eixo_x, Qt::AlignBottom);
    série->attachAxis(eixo_x);
    gráfico->legend()->hide();
    QObject::connect(conjunto, &QBarSet::doubleClicked, janela, [janela, códigos](int índice) {
        if (índice >= 0 && índice < códigos.size()) janela->Abre_Pergunta(códigos[índice]);
    });
    return gráfico;
}
}  // namespace

void frmEstatísticas_Jogos::Desenha_Gráficos() {
    const Números_Estatísticas& n = Números;
    lblTotais->setText(QString("%1 jogos, %2 respostas (%3 de acertos) e %4 pulos no período.")
                           .arg(n.Jogos)
                           .arg(n.Respostas)
                           .arg(n.Respostas ? Texto_Percentual(100.0 * n.Acertos / n.Respostas) : "0%")
                           .arg(n.Pulos));
    // Only the tab in sight is drawn now; the others when they are first shown.
    Desenhadas = QVector<bool>(tabGráficos->count(), false);
    Desenha_Aba(tabGráficos->currentIndex());
}

void frmEstatísticas_Jogos::Desenha_Aba(int índice) {
    if (índice < 0 || índice >= Desenhadas.size() || Desenhadas[índice]) return;
    Desenhadas[índice] = true;
    const QWidget* aba = tabGráficos->widget(índice);
    const Números_Estatísticas& n = Números;
    auto troca = [](QChartView* vista, QChart* novo) {
        QChart* antigo = vista->chart();
        vista->setChart(novo);
        delete antigo;
    };
    if (aba == chtMais_Difíceis)
        troca(chtMais_Difíceis,
              Gráfico_Extremos("As 20 perguntas mais difíceis (respondidas 3 vezes ou mais)", n.Mais_Difíceis,
                               this));
    if (aba == chtMais_Fáceis)
        troca(chtMais_Fáceis, Gráfico_Extremos("As 20 perguntas mais fáceis (respondidas 3 vezes ou mais)",
                                               n.Mais_Fáceis, this));

    if (aba == chtPor_Tipo) {
        QChart* gráfico = Novo_Gráfico("Acertos por tipo de pergunta");
        auto* série = new QBarSeries();
        auto* respostas = new QBarSet("Respostas");
        auto* acertos = new QBarSet("Acertos");
        QStringList categorias;
        for (auto it = n.Por_Tipo.cbegin(); it != n.Por_Tipo.cend(); ++it) {
            categorias << QString("%1 (%2)").arg(
                Nome_Tipo(it.key()),
                it.value().first ? Texto_Percentual(100.0 * it.value().second / it.value().first) : "0%");
            *respostas << it.value().first;
            *acertos << it.value().second;
        }
        série->append(respostas);
        série->append(acertos);
        série->setLabelsVisible(true);
        gráfico->addSeries(série);
        auto* eixo_x = new QBarCategoryAxis();
        eixo_x->append(categorias);
        gráfico->addAxis(eixo_x, Qt::AlignBottom);
        série->attachAxis(eixo_x);
        auto* eixo_y = new QValueAxis();
        eixo_y->setLabelFormat("%.0f");
        gráfico->addAxis(eixo_y, Qt::AlignLeft);
        série->attachAxis(eixo_y);
        troca(chtPor_Tipo, gráfico);
    }
    if (aba == chtAjudas) {
        QChart* gráfico = Novo_Gráfico("Ajudas usadas");
        auto* série = new QPieSeries();
        for (const QString& ajuda : {Ajuda_Pulo, Ajuda_Dado_Texto, Ajuda_Apóstolos_Texto, Ajuda_Deus_Texto}) {
            const int vezes = n.Ajudas.value(ajuda);
            if (vezes == 0) continue;
            QString rótulo = QString("%1: %2").arg(ajuda == Ajuda_Pulo ? "Pulos" : ajuda).arg(vezes);
            if (ajuda == Ajuda_Dado_Texto)
                rótulo += QString(" (eliminou 1: %1, 2: %2, 3: %3)")
                              .arg(n.Faces_Dado[1])
                              .arg(n.Faces_Dado[2])
                              .arg(n.Faces_Dado[3]);
            série->append(rótulo, vezes);
        }
        série->setLabelsVisible(true);
        gráfico->addSeries(série);
        troca(chtAjudas, gráfico);
    }
    if (aba == chtPor_Mês) {
        // Games as bars on the left scale, answers as a line on the right one: their sizes differ a lot.
        QChart* gráfico = Novo_Gráfico("Jogos e respostas por mês");
        auto* série = new QBarSeries();
        auto* jogos = new QBarSet("Jogos");
        auto* respostas = new QLineSeries();
        respostas->setName("Respostas");
        respostas->setPointsVisible(true);
        respostas->setPointLabelsVisible(n.Por_Mês.size() <= 12);
        respostas->setPointLabelsFormat("@yPoint");
        QStringList categorias;
        double mais_jogos = 1, mais_respostas = 1;
        for (int i = 0; i < n.Por_Mês.size(); ++i) {
            const Números_Mês& m = n.Por_Mês[i];
            categorias << Texto_Mês(m.Mês);
            *jogos << m.Jogos;
            respostas->append(i, m.Respostas);
            mais_jogos = std::max<double>(mais_jogos, m.Jogos);
            mais_respostas = std::max<double>(mais_respostas, m.Respostas);
        }
        série->append(jogos);
        série->setLabelsVisible(n.Por_Mês.size() <= 12);
        gráfico->addSeries(série);
        gráfico->addSeries(respostas);
        auto* eixo_x = new QBarCategoryAxis();
        eixo_x->append(categorias);
        gráfico->addAxis(eixo_x, Qt::AlignBottom);
        série->attachAxis(eixo_x);
        respostas->attachAxis(eixo_x);
        auto* eixo_jogos = new QValueAxis();
        eixo_jogos->setLabelFormat("%.0f");
        eixo_jogos->setTitleText("Jogos");
        eixo_jogos->setRange(0, mais_jogos * 1.15);
        gráfico->addAxis(eixo_jogos, Qt::AlignLeft);
        série->attachAxis(eixo_jogos);
        auto* eixo_respostas = new QValueAxis();
        eixo_respostas->setLabelFormat("%.0f");
        eixo_respostas->setTitleText("Respostas");
        eixo_respostas->setRange(0, mais_respostas * 1.15);
        gráfico->addAxis(eixo_respostas, Qt::AlignRight);
        respostas->attachAxis(eixo_respostas);
        troca(chtPor_Mês, gráfico);
    }
    if (aba == chtCompetidores) {
        QChart* gráfico = Novo_Gráfico(QString("Pontos dos competidores, jogo a jogo (os %1 de mais jogos, "
                                               "seus últimos %2 jogos)")
                                           .arg(Competidores_No_Gráfico)
                                           .arg(Jogos_Por_Competidor));
        auto* eixo_x = new QValueAxis();
        eixo_x->setLabelFormat("%.0f");
        eixo_x->setTitleText("Jogo");
        // The value doubles at each right answer, so one long game can score a thousand times an ordinary
        // one; past a hundred times the scale goes by powers of ten, and a game without points sits on its
        // floor.
        double maior_pontos = 10, menor_positivo = 0;
        for (const Números_Competidor& c : n.Competidores)
            for (const auto& jogo : c.Pontos_Por_Jogo) {
                maior_pontos = std::max(maior_pontos, jogo.second);
                if (jogo.second > 0 && (menor_positivo == 0 || jogo.second < menor_positivo))
                    menor_positivo = jogo.second;
            }
        const bool logarítmica =
            menor_positivo > 0 && maior_pontos / menor_positivo > Razão_Escala_Logarítmica;
        const double piso = logarítmica ? std::pow(10.0, std::floor(std::log10(menor_positivo))) : 0;
        QAbstractAxis* eixo_y;
        if (logarítmica) {
            auto* log = new QLogValueAxis();
            log->setBase(10);
            log->setLabelFormat("%.0f");
            log->setTitleText("Pontos (escala logarítmica)");
            gráfico->setTitle(gráfico->title() + "; um jogo sem pontos fica no pé do eixo");
            log->setRange(piso, maior_pontos * 2);
            eixo_y = log;
        } else {
            auto* linear = new QValueAxis();
            linear->setLabelFormat("%.0f");
            linear->setTitleText("Pontos");
            linear->setRange(0, maior_pontos * 1.1);
            eixo_y = linear;
        }
        gráfico->addAxis(eixo_x, Qt::AlignBottom);
        gráfico->addAxis(eixo_y, Qt::AlignLeft);
        int maior_jogos = 1;
        for (const Números_Competidor& c : n.Competidores) {
            auto* série = new QLineSeries();
            série->setName(QString("%1 (%2 jogos)").arg(c.Jogador).arg(c.Jogos));
            série->setPointsVisible(true);
            for (int i = 0; i < c.Pontos_Por_Jogo.size(); ++i)
                série->append(i + 1, std::max(piso, c.Pontos_Por_Jogo[i].second));
            maior_jogos = std::max(maior_jogos, static_cast<int>(c.Pontos_Por_Jogo.size()));
            gráfico->addSeries(série);
            série->attachAxis(eixo_x);
            série->attachAxis(eixo_y);
        }
        // Ticks on whole games only: at most about ten of them, counted from the first game.
        eixo_x->setRange(1, std::max(2, maior_jogos));
        eixo_x->setTickType(QValueAxis::TicksDynamic);
        eixo_x->setTickAnchor(1);
        eixo_x->setTickInterval(std::max(1, (maior_jogos + 8) / 10));
        troca(chtCompetidores, gráfico);
    }
    if (aba == flxPerguntas) Preenche_Grade(flxPerguntas, n.Perguntas);
    if (aba == flxNunca_Acertadas->parentWidget()) {
        Preenche_Grade(flxNunca_Acertadas, n.Nunca_Acertadas);
        Preenche_Grade(flxIncorreta_Preferida, n.Incorreta_Preferida);
    }
}

void frmEstatísticas_Jogos::Abre_Pergunta(int código_pergunta) {
    Rotina r(this, "Abre_Pergunta");
    const QString janela_anterior = Nome_Janela;
    {
        frmPergunta cadastro(this);
        Tabela.Seek(código_pergunta);
        if (Tabela.Eof()) {
            Plataforma_Atual().Caixa_Mensagem(
                QString("A pergunta nº %1 não está mais no cadastro de perguntas.").arg(código_pergunta),
                Título_Programa, Ícone_Caixa::Informação, Botões_Caixa::Ok);
            Nome_Janela = janela_anterior;
            Em_Cadastro = true;
            return;
        }
        cadastro.Exibir_Campos();
        Plataforma_Atual().Mostra_Modal(&cadastro);
    }
    Nome_Janela = janela_anterior;
    Em_Cadastro = true;
}

void frmEstatísticas_Jogos::cmdExporta_Click() {
    Rotina r(this, "cmdExporta_Click");
    if (Sem_Direito) return;
    const QString sugestão = Caminho_Programa() + "/Relatórios/Estatísticas dos Jogos.csv";
    const QString arquivo = Plataforma_Atual().Escolhe_Arquivo("Exportar as estatísticas dos jogos",
                                                               "Planilhas CSV (*.csv)", sugestão, true);
    if (arquivo.isEmpty()) return;
    QDir().mkpath(QFileInfo(arquivo).absolutePath());
    const QByteArray texto = Texto_CSV(Números, Filtro_Atual());
    // Written aside and moved over the old file, so that a full disk leaves the old one whole.
    const QString provisório = arquivo + ".gravando";
    QFile novo(provisório);
    bool ok = novo.open(QIODevice::WriteOnly | QIODevice::Truncate) && novo.write(texto) == texto.size();
    ok = novo.flush() && ok;
    novo.close();
    if (ok) {
        QFile::remove(arquivo);
        ok = QFile::rename(provisório, arquivo);
    }
    if (!ok) {
        QFile::remove(provisório);
        Plataforma_Atual().Caixa_Mensagem(
            "Não foi possível gravar o arquivo " + QDir::toNativeSeparators(arquivo) +
                ".\r\rVerifique se há espaço no disco e permissão de gravação na pasta.",
            Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
        return;
    }
    Plataforma_Atual().Caixa_Mensagem(
        "As estatísticas foram exportadas para " + QDir::toNativeSeparators(arquivo) + ".", Título_Programa,
        Ícone_Caixa::Informação, Botões_Caixa::Ok);
}

namespace {
void Imprime_Perguntas(const QString& título, const QVector<Números_Pergunta>& perguntas) {
    Imprime("", 0, false);
    Configura_Impressora(false, true, false);
    Imprime(título, 0, false);
    Preenche_Linha_Relatório(1, 8, "CÓDIGO:");
    Preenche_Linha_Relatório(10, 90, "PERGUNTA:");
    Preenche_Linha_Relatório(102, 10, "RESPOSTAS:");
    Preenche_Linha_Relatório(114, 8, "ACERTOS:");
    Preenche_Linha_Relatório(124, 11, "% ACERTOS:");
    Imprime(Linha_Relatório, 0, false);
    Configura_Impressora(false, false, false);
    if (perguntas.isEmpty()) Imprime("Nenhuma pergunta.", 0, false);
    for (const Números_Pergunta& p : perguntas) {
        Destaca_Impressão(false);
        Preenche_Linha_Relatório(1, 8, Formata_Expressão(p.Código_Pergunta, 7, 0, false));
        Preenche_Linha_Relatório(10, 90, p.Pergunta.isEmpty() ? "(excluída do cadastro)" : p.Pergunta);
        Preenche_Linha_Relatório(102, 10, Formata_Expressão(p.Respostas, 9, 0, false));
        Preenche_Linha_Relatório(114, 8, Formata_Expressão(p.Acertos, 7, 0, false));
        Preenche_Linha_Relatório(124, 11, QString("%1").arg(Texto_Percentual(p.Percentual()), 9));
        Imprime(Linha_Relatório, 0, false);
    }
    Destaca_Impressão(true);
}

void Imprime_Pares(const QString& título, const QString& coluna_1, const QString& coluna_2,
                   const QString& coluna_3, const QList<QStringList>& linhas) {
    Imprime("", 0, false);
    Configura_Impressora(false, true, false);
    Imprime(título, 0, false);
    Preenche_Linha_Relatório(1, 40, coluna_1);
    Preenche_Linha_Relatório(44, 20, coluna_2);
    Preenche_Linha_Relatório(66, 20, coluna_3);
    Imprime(Linha_Relatório, 0, false);
    Configura_Impressora(false, false, false);
    for (const QStringList& l : linhas) {
        Destaca_Impressão(false);
        Preenche_Linha_Relatório(1, 40, l.value(0));
        Preenche_Linha_Relatório(44, 20, QString("%1").arg(l.value(1), 12));
        Preenche_Linha_Relatório(66, 20, QString("%1").arg(l.value(2), 12));
        Imprime(Linha_Relatório, 0, false);
    }
    Destaca_Impressão(true);
}
}  // namespace

void frmEstatísticas_Jogos::cmdImprime_Click() {
    Rotina r(this, "cmdImprime_Click");
    if (Sem_Direito || !cmdImprime->isEnabled()) return;
    Título_Relatório = "Estatísticas dos Jogos";
    {
        frmImpressão impressão(this);
        Plataforma_Atual().Mostra_Modal(&impressão);
    }
    Nome_Janela = objectName();
    if (!Impressão_Confirmada) return;
    cmdImprime->setEnabled(false);
    const Números_Estatísticas& n = Números;
    const Filtro_Estatísticas filtro = Filtro_Atual();
    Imprime(QString("Período: %1 a %2     Tipo das perguntas: %3")
                .arg(Texto_Mês(filtro.Mês_Inicial), Texto_Mês(filtro.Mês_Final), Nome_Tipo(filtro.Tipo)),
            0, false);
    Imprime(QString("%1 jogos, %2 respostas, %3 acertos (%4) e %5 pulos no período.")
                .arg(n.Jogos)
                .arg(n.Respostas)
                .arg(n.Acertos)
                .arg(n.Respostas ? Texto_Percentual(100.0 * n.Acertos / n.Respostas) : "0%")
                .arg(n.Pulos),
            0, false);
    Imprime_Perguntas("AS 20 PERGUNTAS MAIS DIFÍCEIS (RESPONDIDAS 3 VEZES OU MAIS)", n.Mais_Difíceis);
    Imprime_Perguntas("AS 20 PERGUNTAS MAIS FÁCEIS (RESPONDIDAS 3 VEZES OU MAIS)", n.Mais_Fáceis);
    QList<QStringList> tipos;
    for (auto it = n.Por_Tipo.cbegin(); it != n.Por_Tipo.cend(); ++it)
        tipos << QStringList{Nome_Tipo(it.key()), QString::number(it.value().first),
                             QString::number(it.value().second)};
    Imprime_Pares("ACERTOS POR TIPO", "TIPO:", "RESPOSTAS:", "ACERTOS:", tipos);
    QList<QStringList> ajudas;
    for (const QString& ajuda : {Ajuda_Pulo, Ajuda_Dado_Texto, Ajuda_Apóstolos_Texto, Ajuda_Deus_Texto})
        ajudas << QStringList{ajuda, QString::number(n.Ajudas.value(ajuda)), QString()};
    Imprime_Pares("AJUDAS USADAS", "AJUDA:", "VEZES:", "", ajudas);
    QList<QStringList> meses;
    for (const Números_Mês& m : n.Por_Mês)
        meses << QStringList{Texto_Mês(m.Mês), QString::number(m.Jogos), QString::number(m.Respostas)};
    Imprime_Pares("JOGOS E RESPOSTAS POR MÊS", "MÊS:", "JOGOS:", "RESPOSTAS:", meses);
    QList<QStringList> competidores;
    for (const Números_Competidor& c : n.Competidores)
        competidores << QStringList{c.Jogador, QString::number(c.Jogos),
                                    Formata_Expressão(c.Pontos, 12, 0, false)};
    Imprime_Pares("COMPETIDORES DE MAIS JOGOS", "COMPETIDOR:", "JOGOS:", "PONTOS:", competidores);
    Imprime_Perguntas("NUNCA ACERTADAS EM 5 RESPOSTAS OU MAIS", n.Nunca_Acertadas);
    Imprime_Perguntas("UMA RESPOSTA INCORRETA ESCOLHIDA MAIS VEZES QUE A CORRETA", n.Incorreta_Preferida);
    Fecha_Arquivo_Rtf(this);
    cmdImprime->setEnabled(true);
}

void frmEstatísticas_Jogos::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    accept();
}
