#include "activities/frmDinâmica.h"

#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "reports/Relatório_Rtf.h"
#include "reports/Texto_Relatório.h"
#include "reports/frmImpressão.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/schema/Esquema.h"

namespace {
// Long texts are stored with the CR LF of the system's text files; the boxes work with LF alone.
QString Para_Caixa(const QString& texto) {
    return QString(texto).replace("\r\n", "\n").replace('\r', '\n');
}
QString Para_Banco(const QString& texto) {
    return QString(texto).replace("\n", "\r\n");
}

QString Texto_Tipo_Ficha(const QString& código) {
    switch (Índice_Tipo_Dinâmica(código)) {
        case 0:
            return "Realizar APENAS ao ar livre";
        case 1:
            return "Realizar APENAS em salão fechado";
        case 2:
            return "Realizar APENAS em programas J.A.";
        default:
            return "Realizar APENAS como tema para meditação";
    }
}

// One paragraph of the sheet, justified on the report's width.
void Imprime_Parágrafo(QString texto) {
    Edita_Parágrafo(texto, Largura_Relatório, true, false);
}
}  // namespace

int Índice_Tipo_Dinâmica(const QString& código) {
    const QString c = código.trimmed();
    for (int i = 0; i < 3; ++i)
        if (c == Códigos_Tipo_Dinâmica[i]) return i;
    return 3;
}

frmDinâmica::frmDinâmica(QWidget* pai) : Formulário_Cadastro("frmDinâmica", pai) {
    Tópico_Ajuda = "Dinâmica";
    Campo_Código = "Código_Dinâmica";
    Frase_Registro = " da Dinâmica ";
    Frase_Exclusão = " dd Dinâmica ";
    Frase_Inclusão = " de Dinâmicas";
    Palavra_Registro = "Dinâmica";
    Palavra_Masculina = false;
    Localiza_Verifica_Direito = false;
    Chave_Digitada = true;
    Oculta_Após_Excluir_Único = true;

    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    fixa.setPointSize(10);
    const int largura_letra = QFontMetrics(fixa).horizontalAdvance('M');

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraDados = new QGroupBox(Área_Campos);
    fraDados->setObjectName("fraDados");
    coluna->addWidget(fraDados, 1);
    auto* grade = new QGridLayout(fraDados);

    auto longo = [this, &fixa](const char* nome, int linhas) {
        auto* caixa = new QPlainTextEdit(fraDados);
        caixa->setObjectName(QString::fromUtf8(nome));
        caixa->setFont(fixa);
        // Tab leaves the box; Enter breaks the line, as the texts need their paragraphs.
        caixa->setTabChangesFocus(true);
        caixa->setLineWrapMode(QPlainTextEdit::WidgetWidth);
        caixa->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        caixa->setMinimumHeight(QFontMetrics(fixa).height() * linhas + 12);
        return caixa;
    };
    Label1 = Rótulo("Label1", "Dinâmica:");
    txtDinâmica = new QLineEdit(fraDados);
    txtDinâmica->setObjectName("txtDinâmica");
    txtDinâmica->setMaxLength(50);
    txtDinâmica->setFont(fixa);
    txtDinâmica->setMinimumWidth(largura_letra * 52);
    Label2 = Rótulo("Label2", "Materiais necessários:");
    txtMateriais = longo("txtMateriais", 3);
    Label3 = Rótulo("Label3", "Instruções:");
    txtInstruções = longo("txtInstruções", 10);
    Label4 = Rótulo("Label4", "Realizada em:");
    dbData_Última_Realização = new Caixa_Data(fraDados);
    dbData_Última_Realização->setObjectName("dbData_Última_Realização");
    dbData_Última_Realização->setFont(fixa);
    dbData_Última_Realização->setMaximumWidth(largura_letra * 12 + 16);
    Label1->setBuddy(txtDinâmica);
    Label2->setBuddy(txtMateriais);
    Label3->setBuddy(txtInstruções);
    Label4->setBuddy(dbData_Última_Realização);

    fraDinâmica = new QGroupBox("Dinâmica APENAS pode ser realizada:", fraDados);
    fraDinâmica->setObjectName("fraDinâmica");
    auto* tipos = new QHBoxLayout(fraDinâmica);
    const char* legendas[] = {"Ao ar livre", "Em salão fechado", "Em programa J.A.", "Como meditação"};
    for (int i = 0; i < 4; ++i) {
        optTipo_Dinâmica[i] = new QRadioButton(legendas[i], fraDinâmica);
        optTipo_Dinâmica[i]->setObjectName(QString("optTipo_Dinâmica_%1").arg(i));
        tipos->addWidget(optTipo_Dinâmica[i]);
    }
    tipos->addStretch();
    optTipo_Dinâmica[0]->setChecked(true);

    grade->addWidget(Label1, 0, 0, 1, 2);
    grade->addWidget(txtDinâmica, 1, 0);
    auto* data = new QHBoxLayout;
    data->addStretch();
    data->addWidget(Label4);
    data->addWidget(dbData_Última_Realização);
    grade->addLayout(data, 1, 1);
    grade->addWidget(Label2, 2, 0, 1, 2);
    grade->addWidget(txtMateriais, 3, 0, 1, 2);
    grade->addWidget(Label3, 4, 0, 1, 2);
    grade->addWidget(txtInstruções, 5, 0, 1, 2);
    grade->addWidget(fraDinâmica, 6, 0, 1, 2);
    grade->setRowStretch(5, 1);

    pgbBarra_De_Progresso = new QProgressBar(Área_Campos);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    pgbBarra_De_Progresso->setValue(0);
    coluna->addWidget(pgbBarra_De_Progresso);

    cmdImpressão = Botão("cmdImpressão", "I&mprime");
    cmdExportação = Botão("cmdExportação", "E&xporta");
    auto* próprios = new QHBoxLayout;
    próprios->addStretch();
    for (QPushButton* b : {cmdImpressão, cmdExportação}) {
        b->setMinimumHeight(34);
        b->setMinimumWidth(110);
        próprios->addWidget(b);
    }
    cmdImpressão->setIcon(QIcon(Caminho_Ícone("Impressão.Ico")));
    coluna->addLayout(próprios);
    QObject::connect(cmdImpressão, &QPushButton::clicked, this, [this] { cmdImpressão_Click(); });
    QObject::connect(cmdExportação, &QPushButton::clicked, this, [this] { cmdExportação_Click(); });

    Campo_Obrigatório(txtDinâmica, false);
    Campo_Obrigatório(txtInstruções, true);
    Instala_Validate(dbData_Última_Realização,
                     [this](bool& Cancel) { dbData_Última_Realização_Validate(Cancel); });
    setTabOrder(txtDinâmica, dbData_Última_Realização);
    setTabOrder(dbData_Última_Realização, txtMateriais);
    setTabOrder(txtMateriais, txtInstruções);
    setTabOrder(txtInstruções, optTipo_Dinâmica[0]);
    setTabOrder(optTipo_Dinâmica[0], cmdOk);

    Passos_Comuns_Form_Load();
}

void frmDinâmica::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblDinâmica");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmDinâmica::Mostra_Registro() {
    txtDinâmica->setText(Tabela.Fields("Dinâmica").Value().toString().trimmed());
    txtMateriais->setPlainText(Para_Caixa(Tabela.Fields("Materiais").Value().toString().trimmed()));
    txtInstruções->setPlainText(Para_Caixa(Tabela.Fields("Instruções").Value().toString().trimmed()));
    optTipo_Dinâmica[Índice_Tipo_Dinâmica(Tabela.Fields("Tipo_Dinâmica").Value().toString())]->setChecked(
        true);
    // The date is held as text in the short form.
    const QString data = Tabela.Fields("Data_Última_Realização").Value().toString().trimmed();
    const QDate dia = QDate::fromString(data, "dd/MM/yyyy");
    dbData_Última_Realização->Set_Value(dia.isValid() ? QVariant(dia) : QVariant());
}

// The materials and the instructions keep their line breaks and blanks exactly as typed.
void frmDinâmica::Transforma_Campos() {
    const QString materiais = txtMateriais->toPlainText();
    const QString instruções = txtInstruções->toPlainText();
    Transformar_Campos(this);
    txtMateriais->setPlainText(materiais);
    txtInstruções->setPlainText(instruções);
}

void frmDinâmica::Grava_Campos() {
    Tabela.Fields("Dinâmica").Set_Value(txtDinâmica->text());
    Tabela.Fields("Materiais").Set_Value(Para_Banco(txtMateriais->toPlainText()));
    Tabela.Fields("Instruções").Set_Value(Para_Banco(txtInstruções->toPlainText()));
    QString tipo = Códigos_Tipo_Dinâmica[3];
    for (int i = 0; i < 3; ++i)
        if (optTipo_Dinâmica[i]->isChecked()) {
            tipo = Códigos_Tipo_Dinâmica[i];
            break;
        }
    Tabela.Fields("Tipo_Dinâmica").Set_Value(tipo);
    const QVariant data = dbData_Última_Realização->Value();
    Tabela.Fields("Data_Última_Realização")
        .Set_Value(data.isNull() ? QVariant() : QVariant(data.toDate().toString("dd/MM/yyyy")));
}

QWidget* frmDinâmica::Primeiro_Campo() {
    return txtDinâmica;
}

void frmDinâmica::Habilita_Botões_Próprios(bool habilitados) {
    cmdImpressão->setEnabled(habilitados);
    cmdExportação->setEnabled(habilitados);
}

void frmDinâmica::dbData_Última_Realização_Validate(bool& Cancel) {
    Rotina r(this, "dbData_Última_Realização_Validate");
    if (!Calendário(dbData_Última_Realização->Text(), true, this)) Cancel = true;
}

void frmDinâmica::cmdImpressão_Click() {
    Rotina r(this, "cmdImpressão_Click");
    // Only an activity on screen has a sheet.
    if (Tabela.Eof() || Tabela.Bof() || !Exibição_Liberada) return;
    Título_Relatório = "Impressão de Dinâmica";
    {
        frmImpressão impressão(this);
        Plataforma_Atual().Mostra_Modal(&impressão);
    }
    if (!Impressão_Confirmada) return;
    cmdImpressão->setEnabled(false);

    Imprime("DINÂMICA ............: " + Tabela.Fields("Dinâmica").Value().toString(), 0, false);
    Imprime("", 0, false);
    Imprime_Parágrafo("MATERIAIS NECESSÁRIOS: " + Tabela.Fields("Materiais").Value().toString());
    Imprime("", 0, false);
    Imprime("TIPO DA DINÂMICA ....: " + Texto_Tipo_Ficha(Tabela.Fields("Tipo_Dinâmica").Value().toString()),
            0, false);
    Imprime("", 0, false);
    Centraliza_Relatório("INSTRUÇÕES:", false);

    // A run of CR and LF ends one paragraph, which an empty line follows.
    const QString instruções = Tabela.Fields("Instruções").Value().toString();
    auto quebra = [](QChar c) { return c == '\r' || c == '\n'; };
    int início = 0;
    bool em_quebra = false;
    for (int i = 0; i < instruções.size(); ++i) {
        if (quebra(instruções[i])) {
            if (!em_quebra) {
                Imprime_Parágrafo(instruções.mid(início, i - início));
                Imprime("", 0, false);
                em_quebra = true;
            }
        } else if (em_quebra) {
            início = i;
            em_quebra = false;
        }
    }
    if (!em_quebra) Imprime_Parágrafo(instruções.mid(início));

    Fecha_Arquivo_Rtf(this);
    cmdImpressão->setEnabled(true);
    cmdSair_Click();
}

void frmDinâmica::cmdExportação_Click() {
    Rotina r(this, "cmdExportação_Click");
    if (Exportando) return;
    Exportando = true;
    Habilitar_Comandos(this);
    Habilita_Botões_Próprios(false);
    // OK and Cancelar have nothing to do during an export: a click on them would write the fields on
    // screen into the activity that the walk has reached.
    cmdOk->setEnabled(false);
    cmdCancelar->setEnabled(false);
    if (!QFile::exists(Caminho_Banco_Temporário()))
        Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    // Only this table is replaced: the other exports leave theirs in the same file.
    const Definição_Tabela definição = Definição("tblDinâmica");
    for (const QString& tabela : Catálogo::Lista_Tabelas(Conexão_Temporária))
        if (tabela == definição.Nome) {
            Catálogo::Exclui_Tabela(Conexão_Temporária, tabela);
            break;
        }
    Catálogo::Cria_Tabela(Conexão_Temporária, definição.Nome, definição.Campos);
    for (const Índice_Info& índice : definição.Índices)
        Catálogo::Adiciona_Índice(Conexão_Temporária, definição.Nome, índice);

    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    Inicia_Transação();
    Tabela_Temporária.Reinicia();
    Abre_Tabela_Temporária(definição.Nome);
    const QVariant mostrada = Tabela.Eof() || Tabela.Bof() ? QVariant() : Tabela.Fields(Campo_Código).Value();
    const int total = Lastrec(Tabela.Source, Conexão);
    if (total != 0) Tabela.MoveFirst();
    Início_Progresso = Plataforma_Atual().Agora();
    int copiadas = 0;
    while (!Tabela.Eof()) {
        Barra_de_Progresso(1, total, ++copiadas, this);
        Tabela_Temporária.AddNew();
        for (const char* campo :
             {"Dinâmica", "Materiais", "Instruções", "Data_Última_Realização", "Tipo_Dinâmica"}) {
            const QString nome = QString::fromUtf8(campo);
            Tabela_Temporária.Fields(nome).Set_Value(Tabela.Fields(nome).Value());
        }
        Grava(Tabela_Temporária, false);
        Tabela.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Finaliza_Transação();
    Tabela_Temporária.Reinicia();
    Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());

    // Back on the activity that was on screen.
    if (mostrada.isValid()) {
        Tabela.Set_Index("idxCódigo_Dinâmica");
        Tabela.Seek(mostrada, Tipo_Busca::Primeiro_Igual);
    }
    Habilitar_Comandos(this);
    cmdOk->setEnabled(false);
    cmdCancelar->setEnabled(false);
    Habilita_Botões_Próprios(true);
    Exportando = false;
}
