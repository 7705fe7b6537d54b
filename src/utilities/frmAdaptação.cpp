#include "utilities/frmAdaptação.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Catálogo.h"
#include "store/Dbase.h"
#include "store/Funções_Banco.h"
#include "utilities/Unidade_Trabalho.h"

namespace {
// Runs a routine when a control gains or loses the focus inside its window.
class Observa_Foco : public QObject {
  public:
    Observa_Foco(QWidget* controle, QEvent::Type tipo, std::function<void()> ação)
        : QObject(controle), Tipo(tipo), Ação(std::move(ação)) {
        controle->installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override {
        // Another window taking or giving back the focus is no move between the window's controls.
        if (evento->type() == Tipo) {
            const Qt::FocusReason razão = static_cast<QFocusEvent*>(evento)->reason();
            if (razão != Qt::ActiveWindowFocusReason && razão != Qt::PopupFocusReason) Ação();
        }
        return QObject::eventFilter(objeto, evento);
    }

  private:
    QEvent::Type Tipo;
    std::function<void()> Ação;
};

QVariant Texto_Ou_Nulo(const QString& texto) {
    return texto.isEmpty() ? QVariant() : QVariant(texto);
}

QString Arquivo_Sem_Caso(const QStringList& arquivos, const QString& nome) {
    for (const QString& a : arquivos)
        if (QFileInfo(a).fileName().compare(nome, Qt::CaseInsensitive) == 0) return a;
    return QString();
}

// The first of the fields that a table lacks, or empty.
QString Campo_Ausente(const Tabela_Dbase& tabela, const QStringList& campos) {
    for (const QString& nome : campos) {
        const bool tem = std::any_of(tabela.Campos.begin(), tabela.Campos.end(), [&](const Campo_Info& c) {
            return c.Nome.compare(nome, Qt::CaseInsensitive) == 0;
        });
        if (!tem) return nome;
    }
    return QString();
}

QString Executável_Arj() {
    const QFileInfo informado(Programa_Arj);
    if (informado.isAbsolute()) return informado.isExecutable() ? informado.filePath() : QString();
    return QStandardPaths::findExecutable(Programa_Arj);
}
}  // namespace

frmAdaptação::frmAdaptação(QWidget* pai) : Formulário_Cadastro("frmAdaptação", pai) {
    Tópico_Ajuda = "Adaptação";
    Campo_Código = "Código_Adaptação";
    Frase_Registro = " da Adaptação ";
    Frase_Inclusão = " de Adaptações";
    Palavra_Registro = "Adaptação";
    Palavra_Masculina = false;

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraAdaptação = new QGroupBox(Área_Campos);
    fraAdaptação->setObjectName("fraAdaptação");
    fraAdaptação->setAccessibleName("Adaptação");
    coluna->addWidget(fraAdaptação);
    auto* grade = new QGridLayout(fraAdaptação);

    Label1 = Rótulo("Label1", "Adaptação:");
    txtAdaptação = new Caixa_Texto_Multilinha(fraAdaptação);
    txtAdaptação->setObjectName("txtAdaptação");
    txtAdaptação->setAccessibleName("Adaptação");
    txtAdaptação->setMinimumSize(560, 180);
    Label2 = Rótulo("Label2", "Data da Solicitação:");
    dbData_Solicitação = new Caixa_Data(fraAdaptação);
    dbData_Solicitação->setObjectName("dbData_Solicitação");
    dbData_Solicitação->setAccessibleName("Data da Solicitação");
    dbData_Solicitação->setMaximumWidth(120);
    Label3 = Rótulo("Label3", "Sistema:");
    txtCódigo_Sistema = new QLineEdit(fraAdaptação);
    txtCódigo_Sistema->setObjectName("txtCódigo_Sistema");
    txtCódigo_Sistema->setAccessibleName("Sistema");
    txtCódigo_Sistema->setMaximumWidth(120);
    lblSistema = Rótulo("lblSistema");
    lblSistema->setFrameShape(QFrame::StyledPanel);
    lblSistema->setAccessibleName("Nome do Sistema");
    lblSistema->setMinimumWidth(300);
    for (QLabel* l : {Label1, Label2, Label3, lblSistema}) l->setParent(fraAdaptação);
    Label1->setBuddy(txtAdaptação);
    Label2->setBuddy(dbData_Solicitação);
    Label3->setBuddy(txtCódigo_Sistema);

    grade->addWidget(Label1, 0, 0, 1, 3);
    grade->addWidget(txtAdaptação, 1, 0, 1, 3);
    grade->addWidget(Label2, 2, 0);
    grade->addWidget(dbData_Solicitação, 2, 1, 1, 2, Qt::AlignLeft);
    grade->addWidget(Label3, 3, 0);
    grade->addWidget(txtCódigo_Sistema, 3, 1);
    grade->addWidget(lblSistema, 3, 2);
    grade->setColumnStretch(2, 1);

    pgbBarra_De_Progresso = new QProgressBar(Área_Campos);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    coluna->addWidget(pgbBarra_De_Progresso);

    cmdImportação = Botão("cmdImportação", "I&mporta");
    cmdExportação = Botão("cmdExportação", "E&xporta");
    for (QPushButton* b : {cmdImportação, cmdExportação}) b->setMinimumHeight(34);
    auto* linha = new QHBoxLayout;
    linha->addStretch();
    linha->addWidget(cmdImportação);
    linha->addWidget(cmdExportação);
    coluna->addLayout(linha);
    QObject::connect(cmdImportação, &QPushButton::clicked, this, [this] { cmdImportação_Click(); });
    QObject::connect(cmdExportação, &QPushButton::clicked, this, [this] { cmdExportação_Click(); });
    // Leaving puts the scratch connection back where the import may have left it.
    QObject::disconnect(cmdSair, &QPushButton::clicked, this, nullptr);
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { Sai(); });
    Form_QueryUnload = [this, anterior = Form_QueryUnload] {
        if (anterior && !anterior()) return false;
        Restaura_Conexão_Temporária();
        return true;
    };

    Instala_Validate(txtAdaptação, [this](bool& Cancel) {
        Rotina r(this, "txtAdaptação_Validate");
        if (cmdCancelar->isDown() || (Operação != "Inclusão" && Operação != "Alteração")) return;
        if (txtAdaptação->Text().trimmed().isEmpty()) {
            Exibe_Mensagem(10);
            Cancel = true;
            return;
        }
        if (txtCódigo_Sistema->isHidden()) Habilitar_Botão_OK(this);
    });
    Instala_Validate(dbData_Solicitação, [this](bool& Cancel) {
        Rotina r(this, "dbData_Solicitação_Validate");
        if (cmdCancelar->isDown() || (Operação != "Inclusão" && Operação != "Alteração" && !Importando))
            return;
        if (dbData_Solicitação->Vazia()) dbData_Solicitação->Set_Value(Plataforma_Atual().Agora().date());
        if (!Calendário(dbData_Solicitação->Text(), false, this)) {
            Cancel = true;
            return;
        }
        if (Instalação_Comum()) Mostra_Sistema_Da_Pasta();
    });
    Instala_Validate(txtCódigo_Sistema, [this](bool& Cancel) {
        Rotina r(this, "txtCódigo_Sistema_Validate");
        if (cmdCancelar->isDown() || (Operação != "Inclusão" && Operação != "Alteração" && !Importando))
            return;
        QString informação = txtCódigo_Sistema->text();
        if (!Encontrou_Informação(informação, txtCódigo_Sistema, "tblSistema", "idxCódigo_Sistema", "Sistema",
                                  lblSistema, false)) {
            Cancel = true;
            return;
        }
        Habilitar_Botão_OK(this);
        // An import goes on from the date, whose leaving opens the file dialog.
        if (Importando) QTimer::singleShot(0, dbData_Solicitação, [this] { dbData_Solicitação->setFocus(); });
    });
    new Observa_Foco(txtCódigo_Sistema, QEvent::FocusIn, [this] {
        if (Em_Encontrou || (Operação != "Inclusão" && !Importando)) return;
        Facilita_Preenchimento(this, txtCódigo_Sistema, lblSistema);
    });
    // The file dialog opens once the focus has really left the date.
    new Observa_Foco(dbData_Solicitação, QEvent::FocusOut, [this] {
        if (!Importando) return;
        QTimer::singleShot(0, this, [this] {
            if (Importando && !cmdCancelar->isDown() && !dbData_Solicitação->hasFocus())
                dbData_Solicitação_LostFocus();
        });
    });
    setTabOrder(txtAdaptação, dbData_Solicitação);
    setTabOrder(dbData_Solicitação, txtCódigo_Sistema);
    setTabOrder(txtCódigo_Sistema, cmdOk);

    Passos_Comuns_Form_Load();
    if (Instalação_Comum()) {
        txtCódigo_Sistema->hide();
        Mostra_Sistema_Da_Pasta();
    }
}

bool frmAdaptação::Instalação_Comum() const {
    return Unidade_Trabalho.isEmpty();
}

void frmAdaptação::Mostra_Sistema_Da_Pasta() {
    lblSistema->setText(Nome_Pasta_Programa());
}

void frmAdaptação::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblAdaptação");
    Tabela.Set_Index("idxCódigo_Adaptação");
    if (!Instalação_Comum()) {
        Tabela_Secundária.Reinicia();
        Abre_Tabela_Secundária("tblSistema");
        Tabela_Secundária.Set_Index("idxSistema");
    }
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmAdaptação::Mostra_Registro() {
    txtAdaptação->Set_Text(Tabela.Fields("Adaptação").Value().toString().trimmed());
    dbData_Solicitação->Set_Value(Tabela.Fields("Data_Solicitação").Value());
    txtCódigo_Sistema->setText(Tabela.Fields("Código_Sistema").Value().toString().trimmed());
    if (Instalação_Comum()) {
        Mostra_Sistema_Da_Pasta();
        return;
    }
    QString informação = txtCódigo_Sistema->text();
    Encontrou_Informação(informação, txtCódigo_Sistema, "tblSistema", "idxCódigo_Sistema", "Sistema",
                         lblSistema, false);
}

void frmAdaptação::Padrões_Inclusão() {
    txtCódigo_Sistema->setText("0");
    if (Instalação_Comum()) Mostra_Sistema_Da_Pasta();
}

// The request keeps the words as typed, and the system its name as found.
void frmAdaptação::Transforma_Campos() {
    const QString texto = txtAdaptação->Text();
    const QString sistema = lblSistema->text();
    Transformar_Campos(this);
    txtAdaptação->Set_Text(texto);
    lblSistema->setText(sistema);
}

void frmAdaptação::Grava_Campos() {
    Tabela.Fields("Adaptação").Set_Value(Texto_Ou_Nulo(txtAdaptação->Text()));
    Tabela.Fields("Data_Solicitação").Set_Value(dbData_Solicitação->Value());
    Tabela.Fields("Código_Sistema").Set_Value(txtCódigo_Sistema->text().trimmed().toInt());
    Tabela.Fields("Nome_Sistema").Set_Value(Texto_Ou_Nulo(lblSistema->text().left(50).trimmed()));
}

QWidget* frmAdaptação::Primeiro_Campo() {
    return txtAdaptação;
}

void frmAdaptação::Habilita_Botões_Próprios(bool habilitados) {
    cmdImportação->setEnabled(habilitados);
    cmdExportação->setEnabled(habilitados);
    txtAdaptação->setEnabled(true);
    if (habilitados) Importando = false;
}

void frmAdaptação::Avisa(const QString& texto) {
    Avisou = true;
    Plataforma_Atual().Caixa_Mensagem(texto, Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
}

void frmAdaptação::Restaura_Conexão_Temporária() {
    if (Conexão_Temporária.ConnectionString != Conexão_Principal())
        Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());
}

void frmAdaptação::Sai() {
    Rotina r(this, "cmdSair_Click");
    Restaura_Conexão_Temporária();
    cmdSair_Click();
}

bool frmAdaptação::Inclui_Adaptação(const QString& texto, const QVariant& data, int código_sistema,
                                    const QString& nome_sistema) {
    Operação = "Inclusão";
    Tabela.AddNew();
    Tabela.Fields("Adaptação").Set_Value(Texto_Ou_Nulo(texto));
    Tabela.Fields("Data_Solicitação").Set_Value(data);
    Tabela.Fields("Código_Sistema").Set_Value(código_sistema);
    Tabela.Fields("Nome_Sistema").Set_Value(Texto_Ou_Nulo(nome_sistema.trimmed().left(50).trimmed()));
    Grava(Tabela, false);
    // A refused row has been told and logged by the write; the import goes on with the next one.
    if (Registro_Duplicado) {
        ++Recusadas;
        return false;
    }
    ++Importadas;
    return true;
}

// ---------- export ----------

void frmAdaptação::cmdExportação_Click() {
    Rotina r(this, "cmdExportação_Click");
    const int total = Lastrec(Tabela.Source, Conexão);
    if (total == 0) {
        Exibe_Mensagem(27);
        return;
    }
    Habilitar_Comandos(this);
    cmdOk->setEnabled(false);
    cmdExportação->setEnabled(false);
    cmdImportação->setEnabled(false);
    const QVariant mostrada =
        Tabela.Eof() || Tabela.Bof() ? QVariant() : Tabela.Fields("Código_Adaptação").Value();

    if (!QFile::exists(Caminho_Banco_Temporário()))
        Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    if (Catálogo::Existe_Tabela(Conexão_Temporária, "tblAdaptação"))
        Catálogo::Exclui_Tabela(Conexão_Temporária, "tblAdaptação");
    Catálogo::Cria_Tabela(Conexão_Temporária, "tblAdaptação",
                          {{"Data_Solicitação", Tipo_Data, 0, false, false},
                           {"Código_Adaptação", Tipo_Long, 0, true, false},
                           {"Adaptação", Tipo_Memo, 0, false, true},
                           {"Código_Sistema", Tipo_Long, 0, false, false},
                           {"Nome_Sistema", Tipo_Texto, 50, false, true}});
    Catálogo::Adiciona_Índice(Conexão_Temporária, "tblAdaptação",
                              {"idxCódigo_Adaptação", Tipo_Índice::Simples, {"Código_Adaptação"}});

    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    Inicia_Transação();
    Abre_Tabela_Temporária("tblAdaptação");
    Início_Progresso = Plataforma_Atual().Agora();
    int feitas = 0;
    Tabela.MoveFirst();
    while (!Tabela.Eof()) {
        Barra_de_Progresso(0, total, ++feitas, this);
        Tabela_Temporária.AddNew();
        for (const char* campo : {"Adaptação", "Data_Solicitação", "Código_Sistema", "Nome_Sistema"})
            Tabela_Temporária.Fields(QString::fromUtf8(campo))
                .Set_Value(Tabela.Fields(QString::fromUtf8(campo)).Value());
        Grava(Tabela_Temporária, false);
        Tabela.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Finaliza_Transação();
    Tabela_Temporária.Reinicia();
    Restaura_Conexão_Temporária();

    if (mostrada.isValid()) Tabela.Seek(mostrada);
    Habilitar_Comandos(this);
    Exibir_Campos();
    cmdOk->setEnabled(false);
    Habilita_Botões_Próprios(true);
    Plataforma_Atual().Caixa_Mensagem(
        QString("Exportação concluída: %1 adaptaç%2 gravada%3 em Dados/Temp.Mdb.")
            .arg(feitas)
            .arg(feitas == 1 ? "ão" : "ões")
            .arg(feitas == 1 ? "" : "s"),
        Título_Programa, Ícone_Caixa::Informação, Botões_Caixa::Ok);
}

// ---------- import ----------

void frmAdaptação::cmdImportação_Click() {
    Rotina r(this, "cmdImportação_Click");
    if (Recusa_Sem_Direito(Pode_Incluir)) return;
    Habilitar_Comandos(this);
    cmdOk->setEnabled(false);
    cmdExportação->setEnabled(false);
    cmdImportação->setEnabled(false);
    txtAdaptação->setEnabled(false);
    txtCódigo_Sistema->clear();
    dbData_Solicitação->Set_Value(Plataforma_Atual().Agora().date());
    Importando = true;
    // The file is chosen on leaving the date: the caption tells how to get there.
    if (Instalação_Comum()) {
        setWindowTitle("Importação de Adaptações: tecle Enter para escolher o arquivo");
        Mostra_Sistema_Da_Pasta();
        dbData_Solicitação->setFocus();
    } else {
        setWindowTitle("Importação de Adaptações: informe o sistema e tecle Enter duas vezes");
        txtCódigo_Sistema->setFocus();
    }
}

void frmAdaptação::dbData_Solicitação_LostFocus() {
    Rotina r(this, "dbData_Solicitação_LostFocus");
    if (!Importando) return;
    Importadas = 0;
    Recusadas = 0;
    Avisou = false;
    const QString arquivo =
        Plataforma_Atual()
            .Escolhe_Arquivo("Importação de Adaptações",
                             "Adaptações (*.arj *.ARJ *.Arj *.mdb *.Mdb *.MDB *.log *.Log *.LOG);;Todos os "
                             "arquivos (*)",
                             Caminho_Programa(), false)
            .trimmed();
    if (!arquivo.isEmpty()) {
        const QString nome = arquivo.toLower();
        if (nome.right(12) == "norvane2.arj")
            Importa_Arj(arquivo);
        else if (nome.right(8) == "temp.mdb")
            Importa_Banco(arquivo);
        else
            Importa_Log(arquivo);
        if (!Avisou) {
            QString texto =
                Importadas == 0 && Recusadas == 0
                    ? "Nenhuma adaptação foi encontrada no arquivo " + QFileInfo(arquivo).fileName() + "."
                    : QString("Importação concluída: %1 adaptaç%2 incluída%3")
                          .arg(Importadas)
                          .arg(Importadas == 1 ? "ão" : "ões")
                          .arg(Importadas == 1 ? "" : "s");
            if (Recusadas > 0)
                texto += QString(", %1 recusada%2").arg(Recusadas).arg(Recusadas == 1 ? "" : "s");
            if (Importadas != 0 || Recusadas != 0) texto += ".";
            Plataforma_Atual().Caixa_Mensagem(texto, Título_Programa, Ícone_Caixa::Informação,
                                              Botões_Caixa::Ok);
        }
    }
    Encerra_Importação();
}

void frmAdaptação::Encerra_Importação() {
    Importando = false;
    Habilitar_Comandos(this);
    Operação = "Consulta";
    cmdOk->setEnabled(false);
    Habilita_Botões_Próprios(true);
    Sai();
}

void frmAdaptação::Importa_Arj(const QString& arquivo) {
    Rotina r(this, "Importa_Arj");
    setWindowTitle("Aguarde; descompactando arquivo .ARJ...");
    const QString arj = Executável_Arj();
    if (arj.isEmpty()) {
        Avisa(
            "O programa arj, que descompacta os arquivos .ARJ, não está instalado neste computador.\r\r"
            "Instale-o (pacote arj) e repita a importação.");
        return;
    }
    // The tables are unpacked alone into a folder of their own, never over the program's databases.
    QDir(Pasta_Dbase()).removeRecursively();
    QDir().mkpath(Pasta_Dbase());
    QProcess processo;
    processo.setProgram(arj);
    processo.setArguments({"e", "-y", arquivo, QDir::toNativeSeparators(Pasta_Dbase()) + "/"});
    processo.setStandardInputFile(QProcess::nullDevice());
    processo.start();
    if (!processo.waitForStarted(10000)) {
        Avisa("Não foi possível executar o programa arj para descompactar o arquivo " +
              QFileInfo(arquivo).fileName() + ".");
        QDir(Pasta_Dbase()).removeRecursively();
        return;
    }
    // The import goes on only after the archiver has finished; the window keeps answering meanwhile.
    while (!processo.waitForFinished(100) && processo.state() != QProcess::NotRunning)
        Plataforma_Atual().Processa_Eventos();

    const QStringList arquivos = Arquivos_Dbase(Pasta_Dbase());
    const QString norvane = Arquivo_Sem_Caso(arquivos, "Norvane.Dbf");
    const QString memorand = Arquivo_Sem_Caso(arquivos, "Memorand.Dbf");
    auto desiste = [&](const QString& texto) {
        Avisa(texto + "\r\rNenhuma adaptação foi importada.");
        QDir(Pasta_Dbase()).removeRecursively();
    };
    if (processo.exitStatus() != QProcess::NormalExit || processo.exitCode() > 1) {
        desiste("Não foi possível descompactar o arquivo " + QFileInfo(arquivo).fileName() +
                ": o arquivo está danificado ou não é um arquivo .ARJ.");
        return;
    }
    if (norvane.isEmpty() || memorand.isEmpty()) {
        desiste("O arquivo " + QFileInfo(arquivo).fileName() +
                " não contém as tabelas Norvane.Dbf e Memorand.Dbf do sistema de memorandos.");
        return;
    }
    for (const auto& [caminho, campos] :
         {std::pair{norvane, QStringList{"Clien_Norv", "Cd_Me_Norv", "So_Da_Norv"}},
          std::pair{memorand, QStringList{"Cd_Me_Memo", "Memor_Memo"}}}) {
        Tabela_Dbase tabela;
        QString motivo;
        if (!Lê_Tabela_Dbase(caminho, tabela, motivo)) {
            desiste(motivo + ".");
            return;
        }
        if (const QString falta = Campo_Ausente(tabela, campos); !falta.isEmpty()) {
            desiste("A tabela " + QFileInfo(caminho).fileName() + " não tem o campo " + falta + ".");
            return;
        }
    }

    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
    Reaponta_Conexão(Conexão_Temporária, Conexão_Dbase());
    const QString tabela_norvane = QFileInfo(norvane).completeBaseName();
    const QString tabela_memorand = QFileInfo(memorand).completeBaseName();
    // Every row is imported, so every row counts for the progress.
    const int total = Lastrec(tabela_norvane, Conexão_Dbf);
    Abre_Tabela_Temporária(tabela_memorand);
    Abre_Tabela_Dbf(tabela_norvane);

    // The pieces of each memo, in the order of the memo table, gathered in one walk.
    QHash<QString, QString> memos;
    if (!(Tabela_Temporária.Bof() && Tabela_Temporária.Eof())) Tabela_Temporária.MoveFirst();
    while (!Tabela_Temporária.Eof()) {
        const QString código = Tabela_Temporária.Fields("Cd_Me_Memo").Value().toString().trimmed();
        memos[código] += Tabela_Temporária.Fields("Memor_Memo").Value().toString() + " ";
        Tabela_Temporária.MoveNext();
    }

    // Every row of the client table becomes a request, one without a client too; a row that the store
    // refuses is told by the write and the others come in.
    Inicia_Transação();
    Início_Progresso = Plataforma_Atual().Agora();
    int lidas = 0;
    if (!(Tabela_Dbf.Bof() && Tabela_Dbf.Eof())) Tabela_Dbf.MoveFirst();
    while (!Tabela_Dbf.Eof()) {
        const QString cliente = Tabela_Dbf.Fields("Clien_Norv").Value().toString().trimmed();
        Barra_de_Progresso(0, total, ++lidas, this);
        const QString texto =
            memos.value(Tabela_Dbf.Fields("Cd_Me_Norv").Value().toString().trimmed()).trimmed();
        int código_sistema = 0;
        if (!Instalação_Comum() && !cliente.isEmpty()) {
            Tabela_Secundária.Seek(cliente);
            if (!Tabela_Secundária.Eof())
                código_sistema = Tabela_Secundária.Fields("Código_Sistema").Value().toInt();
        }
        Inclui_Adaptação(texto, Tabela_Dbf.Fields("So_Da_Norv").Value(), código_sistema, cliente);
        Tabela_Dbf.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Finaliza_Transação();
    Tabela_Dbf.Reinicia();
    Tabela_Temporária.Reinicia();
    Restaura_Conexão_Temporária();
    QDir(Pasta_Dbase()).removeRecursively();
    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
}

void frmAdaptação::Importa_Banco(const QString& arquivo) {
    Rotina r(this, "Importa_Banco");
    const QString nome = QFileInfo(arquivo).fileName();
    bool falhou = false;
    {
        Rotina abertura(objectName(), "Importa_Banco", [&](long, const QString&, long) { falhou = true; });
        Reaponta_Conexão(Conexão_Temporária, Texto_Conexão(arquivo));
    }
    if (falhou || !Conexão_Temporária.Aberta()) {
        Restaura_Conexão_Temporária();
        Avisa("O arquivo " + nome +
              " não é um banco de dados deste sistema.\r\rNenhuma adaptação foi importada.");
        return;
    }
    const Estrutura_Tabela origem = Catálogo::Estrutura(Conexão_Temporária, "tblAdaptação");
    if (origem.Nome.isEmpty()) {
        Restaura_Conexão_Temporária();
        Avisa("O banco de dados " + nome +
              " não contém a tabela de adaptações.\r\rNenhuma adaptação foi importada.");
        return;
    }
    for (const char* campo : {"Adaptação", "Data_Solicitação", "Código_Sistema", "Nome_Sistema"})
        if (origem.Posição_Campo(QString::fromUtf8(campo)) < 0) {
            Restaura_Conexão_Temporária();
            Avisa("A tabela de adaptações do banco de dados " + nome + " não tem o campo " +
                  QString::fromUtf8(campo) + ".\r\rNenhuma adaptação foi importada.");
            return;
        }
    Abre_Tabela_Temporária("tblAdaptação");
    const int total = Lastrec(Tabela_Temporária.Source, Conexão_Temporária);
    Início_Progresso = Plataforma_Atual().Agora();
    int lidas = 0;
    if (total != 0) Tabela_Temporária.MoveFirst();
    while (!Tabela_Temporária.Eof()) {
        Barra_de_Progresso(0, total, ++lidas, this);
        // Each request is a transaction of its own: one that is refused leaves the others in place.
        Inicia_Transação();
        Inclui_Adaptação(Tabela_Temporária.Fields("Adaptação").Value().toString(),
                         Tabela_Temporária.Fields("Data_Solicitação").Value(),
                         Tabela_Temporária.Fields("Código_Sistema").Value().toInt(),
                         Tabela_Temporária.Fields("Nome_Sistema").Value().toString());
        Finaliza_Transação();
        Tabela_Temporária.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Tabela_Temporária.Reinicia();
    Restaura_Conexão_Temporária();
}

void frmAdaptação::Importa_Log(const QString& arquivo) {
    Rotina r(this, "Importa_Log");
    QFile log(arquivo);
    if (!log.open(QIODevice::ReadOnly)) {
        Avisa("Não foi possível ler o arquivo " + QFileInfo(arquivo).fileName() +
              ".\r\rNenhuma adaptação foi importada.");
        return;
    }
    QStringList linhas = De_Cp1252(log.readAll()).split('\n');
    log.close();
    for (QString& linha : linhas)
        if (linha.endsWith('\r')) linha.chop(1);

    const QString separador(16, '_');
    Inicia_Transação();
    Início_Progresso = Plataforma_Atual().Agora();
    bool No_Erro = false;
    QString texto;
    // An entry that the store refuses is told by the write; the following entries still come in.
    for (int i = 0; i < linhas.size(); ++i) {
        const QString& linha = linhas[i];
        Barra_de_Progresso(0, linhas.size(), i + 1, this);
        if (linha.contains(separador) && No_Erro) {
            Transforma_Campos();
            Inclui_Adaptação(texto, Plataforma_Atual().Agora().date(),
                             txtCódigo_Sistema->text().trimmed().toInt(), lblSistema->text());
            texto.clear();
            No_Erro = false;
        }
        if (linha.contains("Descrição do Erro:")) No_Erro = true;
        if (No_Erro) texto += linha.trimmed() + "\r\n\r\n";
        Plataforma_Atual().Processa_Eventos();
    }
    Finaliza_Transação();
}
