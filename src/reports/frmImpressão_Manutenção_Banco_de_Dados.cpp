#include "reports/frmImpressão_Manutenção_Banco_de_Dados.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Cadastro.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "reports/frmImpressão.h"
#include "store/Funções_Banco.h"
#include "store/Leitura_Sequencial.h"
#include "users/Permissões.h"

namespace {
const QString Índice_Manutenção = "idxUsuário_Data_Manutenção_Hora_Manutenção";
const QString Título_Manutenções = "Impressão das Manutenções Efetuadas no Banco de Dados";
}  // namespace

frmImpressão_Manutenção_Banco_de_Dados::frmImpressão_Manutenção_Banco_de_Dados(QWidget* pai)
    : Formulário("frmImpressão_Manutenção_Banco_de_Dados", pai) {
    Tópico_Ajuda = Título_Manutenções;
    QFont courier("Courier New");
    courier.setStyleHint(QFont::Monospace);

    fraImpressão_Manutenção_Banco_de_Dados = new QGroupBox(this);
    fraImpressão_Manutenção_Banco_de_Dados->setObjectName("fraImpressão_Manutenção_Banco_de_Dados");
    fraImpressão_Manutenção_Banco_de_Dados->setAccessibleName("Usuário e período do relatório");
    Label1 = Rótulo("Label1", "Usuário:");
    Label1->setAccessibleName("Usuário");
    cboUsuário = new QComboBox(fraImpressão_Manutenção_Banco_de_Dados);
    cboUsuário->setObjectName("cboUsuário");
    cboUsuário->setAccessibleName("Usuário");
    cboUsuário->setEditable(false);
    cboUsuário->setFont(courier);
    cboUsuário->setMinimumWidth(cboUsuário->fontMetrics().horizontalAdvance(QString(22, 'M')));
    Label1->setBuddy(cboUsuário);
    Label2 = Rótulo("Label2", "Informe o período de abrangência a ser considerado pelo relatório:");
    Label2->setAccessibleName("Período de abrangência do relatório");
    dbData_Inicial = new Caixa_Data(fraImpressão_Manutenção_Banco_de_Dados);
    dbData_Inicial->setObjectName("dbData_Inicial");
    dbData_Inicial->setAccessibleName("Data inicial");
    Label3 = Rótulo("Label3", "a");
    Label3->setAccessibleName("a");
    dbData_Final = new Caixa_Data(fraImpressão_Manutenção_Banco_de_Dados);
    dbData_Final->setObjectName("dbData_Final");
    dbData_Final->setAccessibleName("Data final");
    for (Caixa_Data* data : {dbData_Inicial, dbData_Final}) {
        data->setFont(courier);
        data->setMaximumWidth(data->fontMetrics().horizontalAdvance("00/00/00000") + 16);
    }
    Label2->setBuddy(dbData_Inicial);
    lblCampo_de_Consulta = Rótulo("lblCampo_de_Consulta");
    lblCampo_de_Consulta->setAccessibleName("Campo do período");
    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setAccessibleName("Progresso do relatório");
    pgbBarra_De_Progresso->setValue(0);
    cmdOk = Botão("cmdOk", "&OK");
    cmdOk->setAccessibleName("OK");
    cmdSair = Botão("cmdSair", "&Sair");
    cmdSair->setAccessibleName("Sair");
    for (QPushButton* b : {cmdOk, cmdSair}) b->setMinimumWidth(110);

    auto* grade = new QGridLayout(fraImpressão_Manutenção_Banco_de_Dados);
    grade->addWidget(Label1, 0, 0);
    grade->addWidget(cboUsuário, 0, 1, 1, 4);
    grade->addWidget(Label2, 1, 0, 1, 5);
    grade->addWidget(dbData_Inicial, 2, 0);
    grade->addWidget(Label3, 2, 1);
    grade->addWidget(dbData_Final, 2, 2);
    grade->addWidget(lblCampo_de_Consulta, 2, 3);
    grade->setColumnStretch(4, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(fraImpressão_Manutenção_Banco_de_Dados);
    layout->addWidget(pgbBarra_De_Progresso);
    layout->addLayout(Linha_Botões({cmdOk, cmdSair}));
    setMinimumWidth(560);
    setTabOrder(cboUsuário, dbData_Inicial);
    setTabOrder(dbData_Inicial, dbData_Final);
    setTabOrder(dbData_Final, cmdOk);
    setTabOrder(cmdOk, cmdSair);

    Instala_Validate(cboUsuário, [this](bool& Cancel) { cboUsuário_Validate(Cancel); });
    Instala_Validate(dbData_Inicial, [this](bool& Cancel) { dbData_Inicial_Validate(Cancel); });
    Instala_Validate(dbData_Final, [this](bool& Cancel) { dbData_Final_Validate(Cancel); });
    // Leaving asks for nothing, whatever the fields hold.
    Define_CausesValidation(cmdSair, false);
    // From the last field Tab goes to Sair while OK is still off, and Sair asks nothing: so OK also comes
    // on as soon as what the user typed or picked makes a complete, valid request.
    auto reavalia = [this] {
        const bool datas_válidas = dbData_Inicial->Value().isValid() && dbData_Final->Value().isValid();
        if (datas_válidas && !cboUsuário->currentText().isEmpty() && Conexão_Na_Auditoria && !Imprimindo)
            Habilitar_Botão_OK(this);
    };
    QObject::connect(cboUsuário, &QComboBox::activated, this, reavalia);
    QObject::connect(dbData_Inicial, &QLineEdit::textEdited, this, reavalia);
    QObject::connect(dbData_Final, &QLineEdit::textEdited, this, reavalia);
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    // The close box leaves as Sair does; during the walk it stops the walk, which then closes the window.
    Form_QueryUnload = [this] {
        Rotina r(this, "Form_QueryUnload");
        if (Imprimindo) {
            Interrompido = true;
            return false;
        }
        Em_Cadastro = false;
        Volta_Conexão_Principal();
        return true;
    };
    Form_Load();
}

frmImpressão_Manutenção_Banco_de_Dados::~frmImpressão_Manutenção_Banco_de_Dados() {
    Rotina r(this, "Form_Unload");
    Volta_Conexão_Principal();
}

void frmImpressão_Manutenção_Banco_de_Dados::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    setWindowIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    setWindowTitle("Relatório de Manutenção_Banco_de_Dados");
    // Off until the final date is accepted; also when the load stops below for want of rights.
    cmdOk->setEnabled(false);
    Em_Cadastro = true;
    Comando_SQL.clear();
    Operação = "Impressão";
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) return;
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Abre_Tabelas();
    lblCampo_de_Consulta->setText(" Data_Manutenção");
    const QDate hoje = Plataforma_Atual().Agora().date();
    dbData_Inicial->Set_Value(hoje);
    dbData_Final->Set_Value(hoje);
}

void frmImpressão_Manutenção_Banco_de_Dados::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxUsuário");
    if (cboUsuário->count() == 0) {
        for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext())
            cboUsuário->addItem(Tabela.Fields("Usuário").Value().toString());
        cboUsuário->setCurrentIndex(-1);
    }
    Conexão_Na_Auditoria = true;
    Reaponta_Conexão(Conexão_Secundária, Conexão_Auditoria());
    Tabela_Secundária.Reinicia();
    Abre_Tabela_Secundária("tblManutenção_Banco_de_Dados");
    Tabela_Secundária.Set_Index(Índice_Manutenção);
    if (Lastrec(Tabela_Secundária.Source, Conexão_Secundária) != 0) Tabela_Secundária.MoveFirst();
}

void frmImpressão_Manutenção_Banco_de_Dados::cboUsuário_Validate(bool& Cancel) {
    Rotina r(this, "cboUsuário_Validate");
    if (cboUsuário->currentText().isEmpty()) {
        Exibe_Mensagem(3);
        Cancel = true;
    }
}

void frmImpressão_Manutenção_Banco_de_Dados::dbData_Inicial_Validate(bool& Cancel) {
    Rotina r(this, "dbData_Inicial_Validate");
    if (!Calendário(dbData_Inicial->Text(), false, this)) Cancel = true;
}

void frmImpressão_Manutenção_Banco_de_Dados::dbData_Final_Validate(bool& Cancel) {
    Rotina r(this, "dbData_Final_Validate");
    if (!Calendário(dbData_Final->Text(), false, this)) {
        Cancel = true;
        return;
    }
    // Once the connection went back (refused print dialog, no rights) only Sair is left; and no second
    // report starts while one is being written.
    if (Conexão_Na_Auditoria && !Imprimindo) Habilitar_Botão_OK(this);
}

void frmImpressão_Manutenção_Banco_de_Dados::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) {
        Volta_Conexão_Principal();
        return;
    }
    // A field may reach here without having been left, as when OK is pressed by its access key.
    if (cboUsuário->currentText().isEmpty()) {
        Exibe_Mensagem(3);
        cboUsuário->setFocus();
        return;
    }
    for (Caixa_Data* data : {dbData_Inicial, dbData_Final}) {
        if (!Calendário(data->Text(), false, this)) {
            data->setFocus();
            return;
        }
    }
    cmdOk->setEnabled(false);
    Título_Relatório = Título_Manutenções;
    {
        frmImpressão impressão(this);
        Plataforma_Atual().Mostra_Modal(&impressão);
    }
    if (!Impressão_Confirmada) {
        Volta_Conexão_Principal();
        return;
    }

    Configura_Impressora(false, true, false);
    Preenche_Linha_Relatório(1, 8, "PERÍODO:");
    Preenche_Linha_Relatório(10, 10, dbData_Inicial->Text());
    Preenche_Linha_Relatório(21, 1, "a");
    Preenche_Linha_Relatório(23, 10, dbData_Final->Text());
    Imprime(Linha_Relatório, 0, false);
    Imprime("", 0, false);
    Preenche_Linha_Relatório(1, 59, "USUÁRIO: " + cboUsuário->currentText());
    Imprime(Linha_Relatório, 0, false);
    Configura_Impressora(false, false, false);
    Imprime("", 0, false);
    Preenche_Linha_Relatório(1, 26, "DATA E HORA DA MANUTENÇÃO:");
    Preenche_Linha_Relatório(30, 104, "MANUTENÇÃO EFETUADA NO BANCO DE DADOS " + QString(65, '.') + ":");
    Imprime(Linha_Relatório, 0, false);

    // The fields stay as they are while the report is written: only Sair answers.
    const QString legenda = windowTitle();
    fraImpressão_Manutenção_Banco_de_Dados->setEnabled(false);
    Imprimindo = true;
    Interrompido = false;
    int quantidade = 0;
    const bool completo = Imprime_Manutenções(quantidade);
    Imprimindo = false;
    setWindowTitle(legenda);
    if (!completo) {
        // Left halfway: a report without its end would mislead, so it goes and no viewer opens.
        Descarta_Arquivo_Rtf();
        cmdSair_Click();
        return;
    }

    Destaca_Impressão(true);
    Imprime("", 0, false);
    Configura_Impressora(false, true, false);
    Preenche_Linha_Relatório(1, 133,
                             "QUANTIDADE DE MANUTENÇÕES : " + Formata_Expressão(quantidade, 6, 0, false));
    Imprime(Linha_Relatório, 0, false);
    Configura_Impressora(false, false, false);
    Fecha_Arquivo_Rtf(this);
    cmdSair_Click();
}

namespace {
// "dd/MM/yyyy" written digit by digit: the formatter's pattern costs more than the rest of the row.
QString Dia_Do_Relatório(const QDate& dia) {
    const int d = dia.day(), m = dia.month(), a = dia.year();
    if (a < 0 || a > 9999) return dia.toString("dd/MM/yyyy");
    const QChar texto[10] = {QChar('0' + d / 10), QChar('0' + d % 10), QChar('/'),
                             QChar('0' + m / 10), QChar('0' + m % 10), QChar('/'),
                             QChar('0' + a / 1000), QChar('0' + a / 100 % 10), QChar('0' + a / 10 % 10),
                             QChar('0' + a % 10)};
    return QString(texto, 10);
}
}  // namespace

bool frmImpressão_Manutenção_Banco_de_Dados::Imprime_Manutenções(int& Quantidade) {
    Rotina r(this, "Imprime_Manutenções");
    Plataforma& plataforma = Plataforma_Atual();
    const QString usuário = cboUsuário->currentText().trimmed();
    const QDate final = dbData_Final->Value().toDate();
    const int total = Lastrec(Tabela_Secundária.Source, Conexão_Secundária);
    Quantidade = 0;
    if (total == 0) return true;
    // The index orders by user, date and hour: the user's period starts at this key.
    Tabela_Secundária.Seek({usuário, dbData_Inicial->Value(), QString("00:00:00")},
                           Tipo_Busca::Depois_ou_Igual);
    Início_Progresso = plataforma.Agora();
    // From the key found the walk goes one way and prints three fields: it reads only those and the
    // user's, a page at a time, in the index's order.
    Leitura_Sequencial leitura(Tabela_Secundária,
                               {"Data_Manutenção", "Usuário", "Hora_Manutenção", "Manutenção"});
    int lidas = 0;
    while (leitura.Próxima()) {
        ++lidas;
        Barra_de_Progresso(1, total, lidas, this);
        const QDateTime data = leitura.Valor(0).toDateTime();
        if (data.isValid()) {
            // A later date ends the walk whoever the row's user is: past the user's rows the index holds
            // only later users, whose rows are all skipped.
            if (final.isValid() && data.date() > final) break;
            if (leitura.Valor(1).toString().trimmed() == usuário) {
                Destaca_Impressão(false);
                Preenche_Linha_Relatório(
                    1, 26, Dia_Do_Relatório(data.date()) + ", às " + leitura.Valor(2).toString() + " hs");
                Preenche_Linha_Relatório(30, 104, leitura.Valor(3).toString());
                Imprime(Linha_Relatório, 0, false);
                ++Quantidade;
            }
        }
        plataforma.Processa_Eventos_Da_Caminhada();
        if (Interrompido) return false;
    }
    return true;
}

void frmImpressão_Manutenção_Banco_de_Dados::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    if (Imprimindo) {
        Interrompido = true;
        return;
    }
    Volta_Conexão_Principal();
    Em_Cadastro = false;
    accept();
}

void frmImpressão_Manutenção_Banco_de_Dados::Volta_Conexão_Principal() {
    if (!Conexão_Na_Auditoria) return;
    Conexão_Na_Auditoria = false;
    Reaponta_Conexão(Conexão_Secundária, Conexão_Principal());
}
