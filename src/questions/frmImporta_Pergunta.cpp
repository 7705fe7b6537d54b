#include "questions/frmImporta_Pergunta.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSaveFile>
#include <QVBoxLayout>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "questions/Importação_Perguntas.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "users/Permissões.h"

namespace {
const QString Legenda = "Importação e Exportação de Perguntas";
// Grid columns after the heading row.
// The verdict stands beside the line number, where it is read without scrolling.
enum Coluna {
    Col_Linha,
    Col_Situação,
    Col_Pergunta,
    Col_Certa,
    Col_Errada_1,
    Col_Errada_2,
    Col_Errada_3,
    Col_Tipo
};
// Rows filled between two passes of the window's events while the preview is built.
constexpr int Linhas_Por_Passo = 200;
const QColor Cor_Recusada(255, 220, 220);

// A right missing: message 4, and the button stops.
bool Tem_Direito(bool pode) {
    if (!pode) Exibe_Mensagem(4);
    return pode;
}

QString Nome_Tipo(const QString& tipo) {
    return tipo == "G" ? "Geral" : tipo == "B" ? "Bíblico" : QString();
}
}  // namespace

frmImporta_Pergunta::frmImporta_Pergunta(QWidget* pai) : Formulário("frmImporta_Pergunta", pai) {
    Tópico_Ajuda = "Importação de Perguntas";
    Label1 = Rótulo("Label1", "Arquivo:");
    txtArquivo = new QLineEdit(this);
    txtArquivo->setObjectName("txtArquivo");
    txtArquivo->setAccessibleName("Arquivo");
    txtArquivo->setReadOnly(true);
    cmdArquivo = Botão("cmdArquivo", "&Abrir Arquivo...");
    cmdArquivo->setAccessibleName("Abrir Arquivo");

    fraTipo_Pergunta = new QGroupBox("Tipo das perguntas que o arquivo não informa:", this);
    fraTipo_Pergunta->setObjectName("fraTipo_Pergunta");
    auto* tipos = new QHBoxLayout(fraTipo_Pergunta);
    optTipo[0] = new QRadioButton("Conhecimento Geral", fraTipo_Pergunta);
    optTipo[1] = new QRadioButton("Conhecimento Bíblico", fraTipo_Pergunta);
    for (int i = 0; i < 2; ++i) {
        optTipo[i]->setObjectName(QString("optTipo_%1").arg(i));
        tipos->addWidget(optTipo[i]);
    }
    tipos->addStretch();
    optTipo[0]->setChecked(true);

    flxPerguntas = new Grade_Flex(this);
    flxPerguntas->setObjectName("flxPerguntas");
    flxPerguntas->setAccessibleName("Perguntas do arquivo");
    flxPerguntas->Set_Cols(8);
    flxPerguntas->Set_Rows(1);
    flxPerguntas->Set_FormatString(
        ">Linha|<Situação|<Pergunta|<Resposta Correta|<Resposta Incorreta 1|<Resposta Incorreta 2|"
        "<Resposta Incorreta 3|<Tipo");
    flxPerguntas->setColumnWidth(Col_Situação, 330);
    flxPerguntas->setColumnWidth(Col_Pergunta, 320);
    for (int c = Col_Certa; c <= Col_Errada_3; ++c) flxPerguntas->setColumnWidth(c, 150);
    flxPerguntas->setColumnWidth(Col_Tipo, 70);
    flxPerguntas->setMinimumSize(900, 320);

    lblResumo = Rótulo("lblResumo", "Escolha um arquivo CSV, Aiken ou GIFT com as perguntas a importar.");
    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);

    cmdImporta = Botão("cmdImporta", "&Importa");
    cmdImporta->setAccessibleName("Importa");
    cmdCancelar = Botão("cmdCancelar", "&Cancelar");
    cmdCancelar->setAccessibleName("Cancelar");
    cmdSalva_Resumo = Botão("cmdSalva_Resumo", "Salva o &Resumo");
    cmdSalva_Resumo->setAccessibleName("Salva o Resumo");

    fraExportação = new QGroupBox("Exportação do banco de perguntas:", this);
    fraExportação->setObjectName("fraExportação");
    cboTipo_Exportação = new QComboBox(fraExportação);
    cboTipo_Exportação->setObjectName("cboTipo_Exportação");
    cboTipo_Exportação->setAccessibleName("Perguntas a exportar");
    cboTipo_Exportação->addItems({"Todas as Perguntas", "Conhecimento Geral", "Conhecimento Bíblico"});
    cmdExporta_CSV = Botão("cmdExporta_CSV", "Exporta C&SV...");
    cmdExporta_CSV->setAccessibleName("Exporta CSV");
    cmdExporta_GIFT = Botão("cmdExporta_GIFT", "Exporta &GIFT...");
    cmdExporta_GIFT->setAccessibleName("Exporta GIFT");
    auto* exportação = new QHBoxLayout(fraExportação);
    exportação->addWidget(cboTipo_Exportação);
    exportação->addWidget(cmdExporta_CSV);
    exportação->addWidget(cmdExporta_GIFT);
    exportação->addStretch();
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setAccessibleName("Sair");

    auto* arquivo = new QHBoxLayout;
    arquivo->addWidget(Label1);
    arquivo->addWidget(txtArquivo, 1);
    arquivo->addWidget(cmdArquivo);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 12, 16, 12);
    layout->addLayout(arquivo);
    layout->addWidget(fraTipo_Pergunta);
    layout->addWidget(flxPerguntas, 1);
    layout->addWidget(lblResumo);
    layout->addWidget(pgbBarra_De_Progresso);
    layout->addWidget(fraExportação);
    layout->addLayout(Linha_Botões({cmdImporta, cmdCancelar, cmdSalva_Resumo, cmdSair}));

    QObject::connect(cmdArquivo, &QPushButton::clicked, this, [this] { cmdArquivo_Click(); });
    QObject::connect(cmdImporta, &QPushButton::clicked, this, [this] { cmdImporta_Click(); });
    QObject::connect(cmdCancelar, &QPushButton::clicked, this, [this] { cmdCancelar_Click(); });
    QObject::connect(cmdSalva_Resumo, &QPushButton::clicked, this, [this] { cmdSalva_Resumo_Click(); });
    QObject::connect(cmdExporta_CSV, &QPushButton::clicked, this,
                     [this] { cmdExporta_Click(Formato_Perguntas::CSV); });
    QObject::connect(cmdExporta_GIFT, &QPushButton::clicked, this,
                     [this] { cmdExporta_Click(Formato_Perguntas::GIFT); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The kind chosen for the file goes to the rows that name none: the verdicts are given again.
    QObject::connect(optTipo[0], &QRadioButton::toggled, this, [this] {
        if (!Trabalhando && !Leitura.Perguntas.isEmpty()) Monta_Prévia();
    });
    // Closing while an import runs would leave its transaction behind: the window waits for it.
    Form_QueryUnload = [this] { return !Trabalhando; };
    resize(1100, 640);
    Form_Load();
}

void frmImporta_Pergunta::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowTitle(Legenda);
    Em_Cadastro = false;
    Comando_SQL.clear();
    Habilita(false);
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) return;
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Carregada = true;
}

void frmImporta_Pergunta::Habilita(bool trabalhando) {
    Trabalhando = trabalhando;
    int prontas = 0;
    for (const Pergunta_Lida& p : Perguntas_) prontas += p.Pronta() ? 1 : 0;
    cmdArquivo->setEnabled(!trabalhando);
    fraTipo_Pergunta->setEnabled(!trabalhando);
    cmdImporta->setEnabled(!trabalhando && prontas > 0 && Resumo.isEmpty());
    cmdCancelar->setEnabled(trabalhando);
    cmdSalva_Resumo->setEnabled(!trabalhando && !Resumo.isEmpty());
    fraExportação->setEnabled(!trabalhando);
    cmdSair->setEnabled(!trabalhando);
}

void frmImporta_Pergunta::Aviso(const QString& texto, bool erro) {
    Plataforma_Atual().Caixa_Mensagem(
        texto, Título_Programa, erro ? Ícone_Caixa::Exclamação : Ícone_Caixa::Informação, Botões_Caixa::Ok);
}

void frmImporta_Pergunta::cmdArquivo_Click() {
    Rotina r(this, "cmdArquivo_Click");
    if (Trabalhando || !Tem_Direito(Pode_Incluir)) return;
    const QString pasta = Arquivo.isEmpty() ? QDir::homePath() : QFileInfo(Arquivo).absolutePath();
    const QString caminho = Plataforma_Atual().Escolhe_Arquivo(
        "Importar Perguntas",
        "Perguntas (*.csv *.txt *.gift);;Planilhas CSV (*.csv);;Aiken ou GIFT (*.txt *.gift);;"
        "Todos os arquivos (*)",
        pasta, false);
    if (caminho.isEmpty()) return;
    Carrega_Arquivo(caminho);
}

void frmImporta_Pergunta::Carrega_Arquivo(const QString& caminho) {
    Rotina r(this, "Carrega_Arquivo");
    Arquivo = caminho;
    txtArquivo->setText(QDir::toNativeSeparators(caminho));
    Resumo.clear();
    Perguntas_.clear();
    flxPerguntas->Set_Rows(1);
    {
        Ponteiro_Ocupado cursor(Ícone_Processamento);
        Leitura = Lê_Arquivo_Perguntas(caminho);
        pgbBarra_De_Progresso->reset();
    }
    if (!Leitura.Erro.isEmpty()) {
        lblResumo->setText(Leitura.Erro);
        Habilita(false);
        Aviso(Leitura.Erro, true);
        return;
    }
    Formas_Marcadas = Marca_Do_Banco(Marca_Formas);
    Formas_Banco = Formas_Do_Banco();
    Monta_Prévia();
}

void frmImporta_Pergunta::Monta_Prévia() {
    Rotina r(this, "Monta_Prévia");
    if (Resumo_Sem_Inclusão) Resumo.clear();
    Resumo_Sem_Inclusão = false;
    Perguntas_ = Leitura.Perguntas;
    Tipo_Verificado = optTipo[0]->isChecked() ? "G" : "B";
    Verifica_Perguntas(Perguntas_, Formas_Banco, Tipo_Verificado);
    Cancelado = false;
    Habilita(true);
    const int total = Perguntas_.size();
    flxPerguntas->Set_Rows(1);
    flxPerguntas->Set_Rows(total + 1);
    Início_Progresso = Plataforma_Atual().Agora();
    lblResumo->setText(QString("Mostrando as perguntas lidas do arquivo..."));
    int recusadas = 0;
    // Long files are shown in steps, letting the window's events through between them (Cancelar).
    for (int i = 0; i < total && !Cancelado; ++i) {
        const Pergunta_Lida& p = Perguntas_[i];
        const int linha = i + 1;
        flxPerguntas->Set_TextMatrix(linha, Col_Linha, QString::number(p.Linha));
        flxPerguntas->Set_TextMatrix(linha, Col_Pergunta, p.Pergunta);
        flxPerguntas->Set_TextMatrix(linha, Col_Certa, p.Resposta_Correta);
        for (int k = 0; k < 3; ++k)
            flxPerguntas->Set_TextMatrix(linha, Col_Errada_1 + k, p.Resposta_Incorreta[k]);
        flxPerguntas->Set_TextMatrix(linha, Col_Tipo, Nome_Tipo(p.Tipo));
        flxPerguntas->Set_TextMatrix(linha, Col_Situação, p.Pronta() ? "Pronta" : "Recusada: " + p.Recusa);
        if (!p.Pronta()) {
            ++recusadas;
            // The whole reason, where the column cuts it.
            flxPerguntas->item(linha, Col_Situação)->setToolTip(p.Recusa);
            flxPerguntas->Set_Row(linha);
            for (int c = 0; c < flxPerguntas->Cols(); ++c) {
                flxPerguntas->Set_Col(c);
                flxPerguntas->Set_CellBackColor(Cor_Recusada);
            }
        }
        if (linha % Linhas_Por_Passo == 0 || linha == total) {
            Barra_de_Progresso(1, total, linha, this);
            Plataforma_Atual().Processa_Eventos();
        }
    }
    setWindowTitle(Legenda);
    if (Cancelado) {
        // A preview left halfway cannot be imported: what it did not show was not seen.
        Perguntas_.clear();
        flxPerguntas->Set_Rows(1);
        lblResumo->setText("Leitura do arquivo interrompida.");
    } else {
        // A file with nothing to include still has its refusals to be kept and mended: the summary can
        // be saved at once.
        if (total > 0 && recusadas == total && Resumo.isEmpty()) {
            Resumo = Texto_Resumo(0, recusadas);
            Resumo_Sem_Inclusão = true;
        }
        lblResumo->setText(QString("%1 %2 no arquivo: %3 %4 para inclusão, %5 %6.")
                               .arg(Número_Texto(total))
                               .arg(total == 1 ? "pergunta lida" : "perguntas lidas")
                               .arg(Número_Texto(total - recusadas))
                               .arg(total - recusadas == 1 ? "pronta" : "prontas")
                               .arg(Número_Texto(recusadas))
                               .arg(recusadas == 1 ? "recusada" : "recusadas"));
    }
    Habilita(false);
}

void frmImporta_Pergunta::cmdImporta_Click() {
    Rotina r(this, "cmdImporta_Click");
    if (Trabalhando || !cmdImporta->isEnabled() || !Tem_Direito(Pode_Incluir)) return;
    int prontas = 0;
    for (const Pergunta_Lida& p : Perguntas_) prontas += p.Pronta() ? 1 : 0;
    const int recusadas = Perguntas_.size() - prontas;
    if (prontas == 0) return;
    if (Plataforma_Atual().Caixa_Mensagem(
            QString("Incluir no banco %1 %2?%3")
                .arg(Número_Texto(prontas))
                .arg(prontas == 1 ? "pergunta" : "perguntas")
                .arg(recusadas > 0 ? QString(" As %1 recusadas ficam de fora.").arg(Número_Texto(recusadas))
                                   : QString()),
            Título_Programa, Ícone_Caixa::Pergunta, Botões_Caixa::Sim_Não) != Resposta_Caixa::Sim)
        return;

    Cancelado = false;
    Habilita(true);
    Operação = "Inclusão";
    Inicia_Transação();
    // Another workstation may have added some of these questions since the preview was made; when the
    // bank's mark says that nobody wrote to it since its forms were read, the preview's checks stand.
    const QString tipo = optTipo[0]->isChecked() ? "G" : "B";
    Carimbo_Dados marca;
    const bool sem_escritas = Formas_Marcadas && Marca_Do_Banco(marca) && marca == Marca_Formas;
    int prontas_agora = prontas;
    if (!sem_escritas || tipo != Tipo_Verificado) {
        Formas_Marcadas = Marca_Do_Banco(Marca_Formas);
        Formas_Banco = Formas_Do_Banco();
        QVector<Pergunta_Lida> agora = Leitura.Perguntas;
        Verifica_Perguntas(agora, Formas_Banco, tipo);
        prontas_agora = 0;
        for (const Pergunta_Lida& p : agora) prontas_agora += p.Pronta() ? 1 : 0;
    }
    if (prontas_agora != prontas) {
        Desfaz_Transação();
        Operação = "Consulta";
        Habilita(false);
        Monta_Prévia();
        Aviso(
            "Outra estação cadastrou perguntas deste arquivo depois que a prévia foi feita. A prévia foi "
            "refeita: "
            "confira-a e importe de novo. Nenhuma pergunta foi incluída.",
            true);
        return;
    }

    // The audit rows of the import are written together: one sync of the audit file instead of one per
    // question. They are committed before the questions, so that the trail never misses an inclusion.
    Conexão_Manutenção.BeginTrans();
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Início_Progresso = Plataforma_Atual().Agora();
    int gravadas = 0;
    int linha_recusada = 0;
    const int perdas = Perdas_De_Conexão();
    for (const Pergunta_Lida& p : Perguntas_) {
        if (!p.Pronta()) continue;
        Barra_de_Progresso(1, prontas, gravadas + 1, this);
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(p.Pergunta);
        Tabela.Fields("Resposta_Correta").Set_Value(p.Resposta_Correta);
        Tabela.Fields("Resposta_Incorreta_1").Set_Value(p.Resposta_Incorreta[0]);
        Tabela.Fields("Resposta_Incorreta_2").Set_Value(p.Resposta_Incorreta[1]);
        Tabela.Fields("Resposta_Incorreta_3").Set_Value(p.Resposta_Incorreta[2]);
        Tabela.Fields("Tipo").Set_Value(p.Tipo);
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Fields("Já_Verificada").Set_Value(false);
        // As the export stamps every question: the wording by which a later version finds it.
        Tabela.Fields("Pergunta_Original").Set_Value(p.Pergunta);
        Grava(Tabela, false);
        if (Registro_Duplicado || Tabela.Em_Edição()) {
            linha_recusada = p.Linha;
            Tabela.CancelUpdate();
            break;
        }
        ++gravadas;
        Plataforma_Atual().Processa_Eventos_Da_Caminhada();
        if (Cancelado) break;
    }
    setWindowTitle(Legenda);
    Operação = "Consulta";
    if (linha_recusada != 0 || Cancelado) {
        // All or nothing: a file is never left half in the bank. The audit rows stay, as after any
        // roll-back: the undo writes them again outside the transaction.
        Conexão_Manutenção.RollbackTrans();
        Desfaz_Transação();
        Habilita(false);
        // A lost server connection was told in its own box, which said that the work was undone.
        if (Perdas_De_Conexão() != perdas) {
            lblResumo->setText(
                "A conexão com o servidor foi perdida durante a importação: nenhuma pergunta "
                "foi incluída. Importe o arquivo de novo.");
            return;
        }
        Aviso(linha_recusada != 0
                  ? QString("A pergunta da linha %1 não pôde ser gravada. A importação foi desfeita: nenhuma "
                            "pergunta foi incluída.")
                        .arg(linha_recusada)
                  : QString("Importação cancelada: nenhuma pergunta foi incluída."),
              true);
        return;
    }
    Conexão_Manutenção.CommitTrans();
    Finaliza_Transação();
    Tabela.Reinicia();
    Resumo = Texto_Resumo(gravadas, recusadas);
    for (int i = 0; i < Perguntas_.size(); ++i)
        if (Perguntas_[i].Pronta()) flxPerguntas->Set_TextMatrix(i + 1, Col_Situação, "Incluída");
    lblResumo->setText(Resumo + ".");
    Habilita(false);
    Aviso(Resumo + ".", false);
}

void frmImporta_Pergunta::cmdCancelar_Click() {
    if (Trabalhando) Cancelado = true;
}

QString frmImporta_Pergunta::Caminho_Resumo() const {
    const QFileInfo origem(Arquivo);
    return origem.absolutePath() + "/" + origem.completeBaseName() + " - Resumo da Importação.txt";
}

void frmImporta_Pergunta::cmdSalva_Resumo_Click() {
    Rotina r(this, "cmdSalva_Resumo_Click");
    if (Resumo.isEmpty() || Trabalhando) return;
    QStringList linhas = {"Importação de Perguntas - " + Título_Programa,
                          "Arquivo: " + QDir::toNativeSeparators(Arquivo),
                          "Data: " + Plataforma_Atual().Agora().toString("dd/MM/yyyy hh:mm"),
                          "Usuário: " + Usuário_Atual,
                          Resumo,
                          QString()};
    bool cabeçalho = false;
    for (const Pergunta_Lida& p : Perguntas_) {
        if (p.Pronta()) continue;
        if (!cabeçalho) linhas << "Perguntas recusadas:";
        cabeçalho = true;
        const QString pergunta = p.Pergunta.size() > 60 ? p.Pergunta.left(57) + "..." : p.Pergunta;
        linhas << QString("Linha %1: %2 - %3").arg(p.Linha).arg(pergunta, p.Recusa);
    }
    // The program's text files: code page 1252 with CR LF.
    QSaveFile arquivo(Caminho_Resumo());
    const bool gravou = arquivo.open(QIODevice::WriteOnly) &&
                        arquivo.write(Para_Cp1252(linhas.join("\r\n") + "\r\n")) >= 0 && arquivo.commit();
    if (!gravou) {
        Aviso(QString("Não foi possível gravar o resumo em \"%1\": %2.")
                  .arg(QDir::toNativeSeparators(Caminho_Resumo()), arquivo.errorString()),
              true);
        return;
    }
    Aviso(QString("O resumo foi gravado em \"%1\".").arg(QDir::toNativeSeparators(Caminho_Resumo())), false);
}

void frmImporta_Pergunta::cmdExporta_Click(Formato_Perguntas formato) {
    Rotina r(this, "cmdExporta_Click");
    if (Trabalhando || !Tem_Direito(Pode_Consultar)) return;
    const int escolha = cboTipo_Exportação->currentIndex();
    const QString tipo = escolha == 1 ? "G" : escolha == 2 ? "B" : QString();
    QVector<Pergunta_Exportada> perguntas;
    {
        Ponteiro_Ocupado cursor(Ícone_Processamento);
        perguntas = Perguntas_Do_Banco(tipo);
    }
    if (perguntas.isEmpty()) {
        Aviso(tipo.isEmpty() ? QString("Não há perguntas no banco para exportar.")
                             : QString("Não há perguntas de %1 no banco para exportar.")
                                   .arg(cboTipo_Exportação->currentText()),
              true);
        return;
    }
    const bool csv = formato == Formato_Perguntas::CSV;
    const QString sufixo = csv ? "csv" : "gift";
    const QString pasta = Arquivo.isEmpty() ? QDir::homePath() : QFileInfo(Arquivo).absolutePath();
    QString caminho = Plataforma_Atual().Escolhe_Arquivo(
        "Exportar Perguntas", csv ? "Planilhas CSV (*.csv)" : "GIFT (*.gift *.txt)",
        pasta + "/Perguntas." + sufixo, true);
    if (caminho.isEmpty()) return;
    if (QFileInfo(caminho).suffix().isEmpty()) caminho += "." + sufixo;
    QSaveFile arquivo(caminho);
    const QByteArray conteúdo = csv ? Texto_CSV(perguntas) : Texto_GIFT(perguntas);
    if (!arquivo.open(QIODevice::WriteOnly) || arquivo.write(conteúdo) < 0 || !arquivo.commit()) {
        Aviso(QString("Não foi possível gravar \"%1\": %2.")
                  .arg(QDir::toNativeSeparators(caminho), arquivo.errorString()),
              true);
        return;
    }
    Aviso(QString("%1 %2 para \"%3\".")
              .arg(Número_Texto(perguntas.size()))
              .arg(perguntas.size() == 1 ? "pergunta exportada" : "perguntas exportadas")
              .arg(QDir::toNativeSeparators(caminho)),
          false);
}

void frmImporta_Pergunta::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Trabalhando) return;
    accept();
}
