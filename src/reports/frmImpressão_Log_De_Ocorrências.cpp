#include "reports/frmImpressão_Log_De_Ocorrências.h"

#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "reports/frmImpressão.h"
#include "store/Funções_Banco.h"

namespace {
const QString Separador = "______";
const QString Peça_Data = "Data: ";
const QString Peça_Backup = "Backup de Segurança realizado em";
const QString Peça_Destino = "Destino do Backup";
const QString Peça_Restauração = "Restauração do Backup de Segurança foi efetuado em";

// The 10 characters behind `depois` in the line, read as a date; invalid when they are not one.
QDate Data_Depois(const QString& linha, int depois) {
    if (depois < 0 || depois > linha.size()) return QDate();
    return QDate::fromString(linha.mid(depois, 10), "dd/MM/yyyy");
}

void Considera_Data(const QDate& data, Resumo_Log& resumo) {
    // A piece whose date cannot be read still counts, but does not widen the period.
    if (!data.isValid()) return;
    if (!resumo.Data_Inicial.isValid() || data < resumo.Data_Inicial) resumo.Data_Inicial = data;
    if (!resumo.Data_Final.isValid() || data > resumo.Data_Final) resumo.Data_Final = data;
}

// The date of a backup or restore line: behind the line's first "em ".
QDate Data_Depois_De_Em(const QString& linha) {
    const int em = linha.indexOf("em ");
    return em < 0 ? QDate() : Data_Depois(linha, em + 3);
}
}  // namespace

void Analisa_Linha_Log(const QString& linha, const QString& pasta_programa, Resumo_Log& resumo) {
    if (const int onde = linha.indexOf(Peça_Data); onde >= 0)
        Considera_Data(Data_Depois(linha, onde + Peça_Data.size()), resumo);
    if (linha.contains(Peça_Backup)) {
        ++resumo.Backups;
        Considera_Data(Data_Depois_De_Em(linha), resumo);
    }
    if (const int onde = linha.indexOf(Peça_Destino); onde >= 0) {
        const QString destino = linha.mid(onde + 19, 1);
        if (destino.compare(pasta_programa.left(1), Qt::CaseInsensitive) != 0) ++resumo.Backups_Externos;
    }
    if (linha.contains(Peça_Restauração)) {
        ++resumo.Restaurações;
        Considera_Data(Data_Depois_De_Em(linha), resumo);
    }
}

QString Texto_Data_Resumo(const QDate& data) {
    return data.isValid() ? data.toString("dd/MM/yyyy") : QString("00:00:00");
}

frmImpressão_Log_De_Ocorrências::frmImpressão_Log_De_Ocorrências(QWidget* pai)
    : Formulário("frmImpressão_Log_De_Ocorrências", pai) {
    Tópico_Ajuda = "Impressão do Log de Ocorrências";
    Label1 = Rótulo("Label1",
                    "Este relatório imprime todo o Log de Ocorrências do sistema e, em seguida, o apaga.");
    Label1->setWordWrap(true);
    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setAccessibleName("Progresso do relatório");
    pgbBarra_De_Progresso->setValue(0);
    cmdOk = Botão("cmdOk", "&OK");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(110);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(Label1);
    layout->addWidget(pgbBarra_De_Progresso);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setMinimumWidth(520);

    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The close box during the printing stops it as Sair does.
    Form_QueryUnload = [this] {
        if (!Imprimindo) return true;
        Interrompido = true;
        return false;
    };
    Form_Load();
}

void frmImpressão_Log_De_Ocorrências::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    setWindowTitle("Impressão do Log de Ocorrências");
    Em_Cadastro = true;
    Comando_SQL.clear();
    Operação = "Impressão";
    Finaliza_Transação();
    Abre_Tabelas();
}

void frmImpressão_Log_De_Ocorrências::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblConfigur");
}

bool frmImpressão_Log_De_Ocorrências::Imprime_Log(Resumo_Log& resumo) {
    QFile log(Caminho_Log_Ocorrências());
    if (!log.exists()) return true;
    // Read through once only to count the lines, so that the progress knows its end.
    int total = 0;
    if (log.open(QIODevice::ReadOnly)) {
        while (!log.atEnd() && !Interrompido) {
            log.readLine();
            ++total;
            if (total % 256 == 0) Plataforma_Atual().Processa_Eventos();
        }
        log.close();
    }
    if (Interrompido || !log.open(QIODevice::ReadOnly)) return !Interrompido;
    Início_Progresso = Plataforma_Atual().Agora();
    Destaca_Impressão(false);
    const QString pasta = Caminho_Programa();
    int contador = 0;
    while (!log.atEnd()) {
        ++contador;
        Barra_de_Progresso(1, total, contador, this);
        QByteArray bytes = log.readLine();
        while (bytes.endsWith('\n') || bytes.endsWith('\r')) bytes.chop(1);
        const QString linha = De_Cp1252(bytes);
        if (linha.contains(Separador)) Destaca_Impressão(false);
        Imprime(linha, 0, false);
        Analisa_Linha_Log(linha, pasta, resumo);
        Plataforma_Atual().Processa_Eventos_Da_Caminhada();
        if (Interrompido) break;
    }
    log.close();
    return !Interrompido;
}

void frmImpressão_Log_De_Ocorrências::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    cmdOk->setEnabled(false);
    Título_Relatório = "Impressão do Log de Ocorrências";
    {
        frmImpressão impressão(this);
        Plataforma_Atual().Mostra_Modal(&impressão);
    }
    if (!Impressão_Confirmada) return;

    const QString legenda = windowTitle();
    Imprimindo = true;
    Interrompido = false;
    Resumo_Log resumo;
    const bool completo = Imprime_Log(resumo);
    Imprimindo = false;
    if (!completo) {
        // Left halfway: the half report goes and the log stays as it was, nothing lost.
        Descarta_Arquivo_Rtf();
        setWindowTitle(legenda);
        cmdSair_Click();
        return;
    }

    Destaca_Impressão(true);
    Imprime("", 0, false);
    Configura_Impressora(false, true, false);
    Centraliza_Relatório("Resumo do Log de Ocorrências do Período de " +
                             Texto_Data_Resumo(resumo.Data_Inicial) + " a " +
                             Texto_Data_Resumo(resumo.Data_Final) + ":",
                         false);
    Imprime("", 0, false);
    const std::pair<const char*, double> linhas[] = {
        {"QUANTIDADE DE BACKUP´S REALIZADOS .........:", resumo.Backups},
        {"QUANTIDADE DE BACKUP´S RESTAURADOS ........:", resumo.Restaurações},
        {"QUANTIDADE DE BACKUP´S EXTERNOS REALIZADOS :", resumo.Backups_Externos}};
    for (int i = 0; i < 3; ++i) {
        if (i > 0) Imprime("", 0, false);
        const QString texto =
            QString::fromUtf8(linhas[i].first) + Formata_Expressão(linhas[i].second, 7, 0, false);
        Linha_Relatório.replace(0, 133, texto.leftJustified(133, ' ', true));
        Imprime(Linha_Relatório, 0, false);
    }
    // The report's file already holds the log: it goes whether or not the viewer opens.
    if (QFile::exists(Caminho_Log_Ocorrências())) QFile::remove(Caminho_Log_Ocorrências());
    Destaca_Impressão(true);
    setWindowTitle(legenda);
    Fecha_Arquivo_Rtf(this);
    cmdSair_Click();
}

void frmImpressão_Log_De_Ocorrências::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Imprimindo) {
        Interrompido = true;  // the printing loop stops at its next line and closes the window
        return;
    }
    Em_Cadastro = false;
    reject();
}
