#include "shell/frmPrincipal.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Formulário.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Plataforma.h"
#include "revelations/Revelações.h"
#include "activities/frmDinâmica.h"
#include "activities/frmImpressão_Dinâmica.h"
#include "statistics/frmEstatísticas_Jogos.h"
#include "revelations/frmRevelações_De_Deus.h"
#include "game/frmHall.h"
#include "game/frmInício_Jogo.h"
#include "game/frmJogo.h"
#include "game/frmSorteio.h"
#include "questions/frmImporta_Pergunta.h"
#include "questions/frmPergunta.h"
#include "questions/frmVerifica_Pergunta.h"
#include "shell/Aviso_Rede.h"
#include "shell/frmLogin.h"
#include "shell/frmSair.h"
#include "shell/frmSobre.h"
#include "store/Funções_Banco.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "reports/frmImpressão_Log_De_Ocorrências.h"
#include "reports/frmImpressão_Manutenção_Banco_de_Dados.h"
#include "reports/Relatório_Rtf.h"
#include "search/frmCritério_de_Consulta.h"
#include "users/frmUsuário.h"
#include "utilities/Fundo_Tela.h"
#include "utilities/Ajuda.h"
#include "utilities/Unidade_Trabalho.h"
#include "utilities/frmAdaptação.h"
#include "utilities/frmConfiguração.h"
#include "utilities/frmManutenção_Banco_de_Dados.h"

frmPrincipal::frmPrincipal() {
    setObjectName("frmPrincipal");
    auto* fundo = new QWidget(this);
    setCentralWidget(fundo);
    auto* grade = new QGridLayout(fundo);
    grade->setContentsMargins(0, 0, 0, 0);
    imgFundo = new QLabel(fundo);
    imgFundo->setObjectName("imgFundo");
    imgFundo->setScaledContents(true);
    imgFundo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    grade->addWidget(imgFundo, 0, 0, 3, 3);
    filImagens = new Lista_Arquivos(fundo);
    filImagens->setObjectName("filImagens");
    filImagens->hide();

    cmdSair = new QPushButton("&Sair", fundo);
    cmdSair->setObjectName("cmdSair");
    cmdSair->setMinimumSize(90, 32);
    grade->addWidget(cmdSair, 0, 0, Qt::AlignLeft | Qt::AlignTop);

    txtRevelações_de_Deus = new QPlainTextEdit(fundo);
    txtRevelações_de_Deus->setObjectName("txtRevelações_de_Deus");
    txtRevelações_de_Deus->setReadOnly(true);
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    fixa.setPointSize(9);
    txtRevelações_de_Deus->setFont(fixa);
    txtRevelações_de_Deus->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtRevelações_de_Deus->setFixedHeight(230);
    txtRevelações_de_Deus->setStyleSheet(
        "QPlainTextEdit { background: rgba(255, 255, 255, 215); border: 1px solid #7a8ca3; }");
    grade->addWidget(txtRevelações_de_Deus, 2, 0, 1, 3, Qt::AlignBottom);
    grade->setRowStretch(1, 1);
    Painel_Revelações = txtRevelações_de_Deus;

    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    auto* f1 = new QShortcut(QKeySequence(Qt::Key_F1), this);
    QObject::connect(f1, &QShortcut::activated, this, [this] { Ajuda(this, "Index"); });
    auto* f10 = new QShortcut(QKeySequence(Qt::Key_F10), this);
    QObject::connect(f10, &QShortcut::activated, this, [] { Revelações_de_Deus(true); });
    Monta_Menu();
    Monta_Barra_de_Status();
    resize(1024, 720);
    Form_Load();
    Dá_Nomes_Acessíveis(this);
}

namespace {
// A menu entry that opens its window modally; the handler is named after the entry.
template <class Janela>
void Abre_Com(QWidget* principal, QAction* ação) {
    const QString rotina = ação->objectName() + "_Click";
    QObject::connect(ação, &QAction::triggered, principal, [principal, rotina] {
        Rotina r(principal, rotina);
        Janela janela(principal);
        Plataforma_Atual().Mostra_Modal(&janela);
    });
}
}  // namespace

QAction* frmPrincipal::Entrada(QMenu* menu, const char* nome, const QString& título) {
    QAction* ação = menu->addAction(título);
    ação->setObjectName(nome);
    return ação;
}

void frmPrincipal::Monta_Menu() {
    QMenu* cadastros = menuBar()->addMenu("&Cadastros Gerais");
    cadastros->setObjectName("mnuCadastros");
    QObject::connect(Entrada(cadastros, "mnuVerifica_Pergunta", "&Verifica Perguntas"), &QAction::triggered,
                     this, [this] {
                         Rotina r(this, "mnuVerifica_Pergunta_Click");
                         {
                             frmVerifica_Pergunta janela(this);
                             Plataforma_Atual().Mostra_Modal(&janela);
                         }
                         // Other windows expect the main database on the second connection.
                         Reaponta_Conexão(Conexão_Secundária, Conexão_Principal());
                     });
    QMenu* cadastro_cadastro = cadastros->addMenu("&Cadastros");
    cadastro_cadastro->setObjectName("mnuCadastro_Cadastro");
    Abre_Com<frmDinâmica>(this, Entrada(cadastro_cadastro, "mnuDinâmica", "&Dinâmicas"));
    Abre_Com<frmPergunta>(this, Entrada(cadastro_cadastro, "mnuPerguntas", "&Perguntas"));
    QMenu* relatório_cadastro = cadastros->addMenu("&Relatórios");
    relatório_cadastro->setObjectName("mnuRelatório_Cadastro");
    Abre_Com<frmImpressão_Dinâmica>(this, Entrada(relatório_cadastro, "mnuImpressão_Dinâmica", "&Dinâmicas"));
    Abre_Com<frmEstatísticas_Jogos>(
        this, Entrada(relatório_cadastro, "mnuEstatísticas_Jogos", "&Estatísticas dos Jogos"));
    Abre_Com<frmImporta_Pergunta>(this, Entrada(cadastros, "mnuImporta_Pergunta", "&Importar Perguntas..."));
    QAction* novo_jogo = menuBar()->addAction("&Novo Jogo");
    novo_jogo->setObjectName("mnuNovo_Jogo");
    Abre_Com<frmInício_Jogo>(this, novo_jogo);
    // A game that ends shows the hall of fame with its ranking.
    frmJogo::Ao_Terminar_Padrão = [](frmJogo& jogo) {
        frmHall hall(&jogo, &jogo.Jogo);
        Plataforma_Atual().Mostra_Modal(&hall);
    };
    QAction* hall = menuBar()->addAction("&Hall da Fama");
    hall->setObjectName("mnuHall");
    Abre_Com<frmHall>(this, hall);
    QAction* sorteio = menuBar()->addAction("Sor&teio");
    sorteio->setObjectName("mnuSorteio");
    Abre_Com<frmSorteio>(this, sorteio);
    QMenu* utilitários = menuBar()->addMenu("&Utilitários");
    utilitários->setObjectName("mnuUtilitários");
    QObject::connect(Entrada(utilitários, "mnuBackup", "&Backup de Segurança"), &QAction::triggered, this,
                     [this] { Ajuda(this, "Backup"); });
    Abre_Com<frmConfiguração>(this, Entrada(utilitários, "mnuConfiguração", "Configuração do &Sistema"));
    QObject::connect(Entrada(utilitários, "mnuFundo_Tela", "&Mudar Fundo de Tela"), &QAction::triggered, this,
                     [this] { mnuFundo_Tela_Click(); });
    QMenu* cadastro_utilitário = utilitários->addMenu("&Cadastros");
    cadastro_utilitário->setObjectName("mnuCadastro_Utilitário");
    Abre_Com<frmAdaptação>(
        this, Entrada(cadastro_utilitário, "mnuAdaptação", "&Adaptações a Serem Feitas no Sistema"));
    Abre_Com<frmCritério_de_Consulta>(
        this, Entrada(cadastro_utilitário, "mnuCritério_de_Consulta", "&Critérios de Consulta"));
    Abre_Com<frmManutenção_Banco_de_Dados>(this, Entrada(cadastro_utilitário, "mnuManutenção_Banco_de_Dados",
                                                         "&Manutenções Efetuadas no Banco de Dados"));
    Abre_Com<frmUsuário>(this, Entrada(cadastro_utilitário, "mnuUsuário", "&Usuários"));
    QMenu* relatório_utilitário = utilitários->addMenu("&Relatórios");
    relatório_utilitário->setObjectName("mnuRelatório_Utilitário");
    Abre_Com<frmImpressão_Log_De_Ocorrências>(
        this, Entrada(relatório_utilitário, "mnuImpressão_Log_De_Ocorrências", "&Log de Ocorrências"));
    Abre_Com<frmImpressão_Manutenção_Banco_de_Dados>(
        this, Entrada(relatório_utilitário, "mnuImpressão_Manutenção_Banco_de_Dados",
                      "&Manutenções Efetuadas no Banco de Dados"));
    QAction* revelação = menuBar()->addAction("Revelações de &Deus");
    revelação->setObjectName("mnuRevelação_De_Deus");
    Abre_Com<frmRevelações_De_Deus>(this, revelação);
    QMenu* ajuda = menuBar()->addMenu("&Ajuda");
    ajuda->setObjectName("mnuAjuda");
    QObject::connect(
        Entrada(ajuda, "mnuManual", "&Abre o Manual On-Line (também acessível através da tecla F1)"),
        &QAction::triggered, this, [this] { Ajuda(this, "Index"); });
    QObject::connect(Entrada(ajuda, "mnuSolução", "Solução de &Problemas"), &QAction::triggered, this,
                     [this] { Ajuda(this, "Faq"); });
    QObject::connect(Entrada(ajuda, "mnuNovidades", "&Novidades"), &QAction::triggered, this,
                     [this] { Ajuda(this, "Novidades"); });
    QObject::connect(Entrada(ajuda, "mnuRevelações_De_Deus",
                             "&Revelações de Deus (também acessível através da tecla F10)"),
                     &QAction::triggered, this, [] { Revelações_de_Deus(true); });
    QObject::connect(Entrada(ajuda, "mnuSobre", "&Sobre"), &QAction::triggered, this, [this] {
        Rotina r(this, "mnuSobre_Click");
        frmSobre sobre(this);
        Plataforma_Atual().Mostra_Modal(&sobre);
    });
}

void frmPrincipal::Monta_Barra_de_Status() {
    auto painel = [this](const QString& texto, const QString& dica, int estica) {
        auto* l = new QLabel(texto, this);
        l->setToolTip(dica);
        l->setFrameShape(QFrame::StyledPanel);
        statusBar()->addWidget(l, estica);
        return l;
    };
    painel("!! Tecle F10 para ler o texto integral acima !!", "Revelações de Deus", 3);
    painel("Dúvidas no sistema? Tecle F1", "Mostra o Manual On-Line do sistema", 2);
    StatusBar1_Data = painel("", "Data atual do sistema", 1);
    StatusBar1_Hora = painel("", "Hora atual do sistema", 1);
    auto atualiza = [this] {
        const QDateTime agora = Plataforma_Atual().Agora();
        StatusBar1_Data->setText(agora.toString("dd/MM/yyyy"));
        StatusBar1_Hora->setText(agora.toString("HH:mm"));
    };
    atualiza();
    auto* relógio = new QTimer(this);
    QObject::connect(relógio, &QTimer::timeout, this, atualiza);
    relógio->start(1000);
}

void frmPrincipal::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Norvane Informática.Ico")));
    Encaixa_Na_Tela(this);
    Estado_Transação.clear();
    Título_Versão = Título_Programa + " v. ";
    Em_Cadastro = false;
    Sai_da_Gravação = false;
    Comando_SQL.clear();
    // Before any database file is opened or made in Dados/.
    Avisa_Dados_Na_Rede();
    {
        frmAtualiza_Versão atualiza(this);
        Plataforma_Atual().Mostra_Modal(&atualiza);
    }
    Unidade_Trabalho = Procura_Unidade_Trabalho();
    Finaliza_Transação();
    if (!Tabela_Dynaset.Source.isEmpty()) Tabela_Dynaset.Reinicia();
    Abre_Tabelas();
    const QString razão = Tabela.Aberto() && !Tabela.Eof()
                              ? Tabela.Fields("Razão_Social").Value().toString().trimmed()
                              : QString();
    Versão_Sistema = Monta_Versão_Sistema(razão);
    setWindowTitle(Título_Versão + Versão_Sistema);
    filImagens->Set_Path(Caminho_Programa());
    Janela_Principal_Ativa = false;
    Muda_Fundo_Tela(filImagens, imgFundo);
    Login_Solicitado = false;
}

void frmPrincipal::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblConfigur");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

bool frmPrincipal::event(QEvent* evento) {
    const bool r = QMainWindow::event(evento);
    // The first activation asks for the login; without a window manager the first showing counts.
    if ((evento->type() == QEvent::WindowActivate || evento->type() == QEvent::Show) && !Login_Solicitado)
        QTimer::singleShot(0, this, [this] { Form_Activate(); });
    return r;
}

void frmPrincipal::Form_Activate() {
    Rotina r(this, "Form_Activate");
    if (Login_Solicitado) return;
    Login_Solicitado = true;
    Janela_Principal_Ativa = true;
    frmLogin login(this);
    Plataforma_Atual().Mostra_Modal(&login);
}

void frmPrincipal::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    frmSair sair(this);
    Plataforma_Atual().Mostra_Modal(&sair);
}

void frmPrincipal::mnuFundo_Tela_Click() {
    Rotina r(this, "mnuFundo_Tela_Click");
    Muda_Fundo_Tela(filImagens, imgFundo);
    if (imgFundo->pixmap().isNull()) Exibe_Mensagem(21);
}

void frmPrincipal::closeEvent(QCloseEvent* evento) {
    evento->accept();
    Form_QueryUnload();
}

void frmPrincipal::Form_QueryUnload() {
    Rotina r(this, "Form_QueryUnload");
    // Leaving by the title-bar button: warn, then end at once, whatever the user was doing.
    Exibe_Mensagem(34);
    Plataforma_Atual().Encerra_Agora(0);
}
