#include "questions/frmPergunta.h"

#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStorageInfo>
#include <QVBoxLayout>
#include <unistd.h>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "statistics/Estatísticas.h"

frmPergunta::frmPergunta(QWidget* pai) : Janela_Pergunta("frmPergunta", pai) {
    Tópico_Ajuda = "Pergunta";
    Campo_Código = "Código_Pergunta";
    Frase_Registro = " da Pergunta ";
    Frase_Inclusão = " de Perguntas";
    Palavra_Registro = "Pergunta";
    Palavra_Masculina = false;
    Verifica_Direitos = false;
    Oculta_Após_Excluir_Único = true;

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraPergunta = new QGroupBox(Área_Campos);
    fraPergunta->setObjectName("fraPergunta");
    coluna->addWidget(fraPergunta);
    auto* grade = Monta_Campos_Pergunta(fraPergunta);

    fraTipo_Pergunta = new QGroupBox("Tipo da Pergunta:", fraPergunta);
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
    grade->addWidget(fraTipo_Pergunta, 8, 0, 1, 2);
    lblEstatística = new QLabel(fraPergunta);
    lblEstatística->setObjectName("lblEstatística");
    lblEstatística->setAccessibleName("Estatística da pergunta");
    grade->addWidget(lblEstatística, 9, 0, 1, 2);

    pgbBarra_De_Progresso = new QProgressBar(Área_Campos);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    pgbBarra_De_Progresso->hide();  // shown only while a long job runs
    coluna->addWidget(pgbBarra_De_Progresso);

    Campo_Obrigatório(txtPergunta, false);
    Campo_Obrigatório(txtResposta_Correta, false);
    Campo_Obrigatório(txtResposta_Incorreta_1, false);
    Campo_Obrigatório(txtResposta_Incorreta_2, false);
    Campo_Obrigatório(txtResposta_Incorreta_3, true);
    setTabOrder(txtPergunta, txtResposta_Correta);
    setTabOrder(txtResposta_Correta, txtResposta_Incorreta_1);
    setTabOrder(txtResposta_Incorreta_1, txtResposta_Incorreta_2);
    setTabOrder(txtResposta_Incorreta_2, txtResposta_Incorreta_3);
    setTabOrder(txtResposta_Incorreta_3, optTipo[0]);
    setTabOrder(optTipo[0], cmdOk);

    cmdExportação = Botão("cmdExportação", "E&xporta");
    cmdExportação->setMinimumHeight(34);
    cmdExportação->setIcon(QIcon(Caminho_Ícone("Processamento.Ico")));
    // The command row is the last line of the window; the export stands after the walk.
    if (auto* linha = qobject_cast<QBoxLayout*>(layout()->itemAt(layout()->count() - 1)->layout()))
        linha->insertWidget(linha->indexOf(cmdMovimenta_Registro[2]) + 1, cmdExportação);
    QObject::connect(cmdExportação, &QPushButton::clicked, this, [this] { cmdExportação_Click(); });

    Passos_Comuns_Form_Load();
    if (Lastrec(Tabela_Secundária.Source, Conexão_Secundária) != 0) Tabela_Secundária.MoveFirst();
}

void frmPergunta::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Tabela_Secundária.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Abre_Tabela_Secundária("tblConfigur");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmPergunta::Mostra_Registro() {
    Mostra_Campos_Pergunta();
    const bool geral = Tabela.Fields("Tipo").Value().toString() == "G";
    optTipo[geral ? 0 : 1]->setChecked(true);
    lblEstatística->setText(Estatísticas::Resumo_Pergunta(Tabela.Fields("Código_Pergunta").Value().toInt()));
}

void frmPergunta::Padrões_Inclusão() {
    lblEstatística->clear();
}

void frmPergunta::Grava_Campos() {
    Grava_Campos_Pergunta();
    // The export keeps here the wording of its last run; a row that has none gets a blank.
    if (Tabela.Fields("Pergunta_Original").Value().isNull())
        Tabela.Fields("Pergunta_Original").Set_Value(" ");
    Tabela.Fields("Tipo").Set_Value(optTipo[0]->isChecked() ? "G" : "B");
    if (Operação == "Inclusão") {
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Fields("Já_Verificada").Set_Value(false);
    }
}

void frmPergunta::Habilita_Botões_Próprios(bool habilitados) {
    cmdExportação->setEnabled(habilitados);
}

namespace {
// The room an export takes per question: the scratch row with its indexes, the stamp of the main
// row and the audit row, each passing through its journal first.
constexpr qint64 Espaço_Por_Pergunta = 2048;
constexpr qint64 Espaço_Mínimo = 1024 * 1024;

void Avisa_Exportação(const QString& texto) {
    Plataforma_Atual().Caixa_Mensagem(texto, Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
}

bool É_Banco_SQLite(const QString& arquivo) {
    // An open file is the store's own; reading it here would drop the store's locks on it.
    if (Sessão::Procura(arquivo)) return true;
    QFile f(arquivo);
    if (!f.open(QIODevice::ReadOnly)) return false;
    if (f.size() == 0) return true;  // an empty file is an empty database
    return f.read(16) == QByteArray("SQLite format 3\0", 16);
}
}  // namespace

bool frmPergunta::Rascunho_Utilizável() {
    const QString arquivo = Caminho_Banco_Temporário();
    const QString pasta = Caminho_Dados();
    const QString onde = "O arquivo TEMP.MDB da pasta " + pasta;
    const bool existe = QFile::exists(arquivo);
    if (existe && !É_Banco_SQLite(arquivo)) {
        Avisa_Exportação(onde +
                         " não é um banco de dados do sistema, e as Perguntas não podem ser exportadas para "
                         "ele.\r\rRenomeie ou remova esse arquivo e exporte novamente.");
        return false;
    }
    // access() also tells of a read-only disk, where the permission bits say nothing.
    const QByteArray nome_arquivo = QFile::encodeName(arquivo);
    const QByteArray nome_pasta = QFile::encodeName(pasta);
    if ((existe && ::access(nome_arquivo.constData(), W_OK) != 0) ||
        ::access(nome_pasta.constData(), W_OK) != 0) {
        Avisa_Exportação(onde +
                         " não pode ser gravado: o arquivo ou a pasta estão protegidos contra gravação.\r\r"
                         "Libere a gravação e exporte novamente.");
        return false;
    }
    const qint64 necessário = Espaço_Mínimo + Espaço_Por_Pergunta * Lastrec(Tabela.Source, Conexão);
    const QStorageInfo disco(pasta);
    if (disco.isValid() && disco.bytesAvailable() < necessário) {
        Avisa_Exportação(
            QString("Não há espaço livre suficiente no disco da pasta %1 para exportar as Perguntas: "
                    "são necessários cerca de %2 MB.\r\rLibere espaço no disco e exporte novamente.")
                .arg(pasta)
                .arg((necessário + 1024 * 1024 - 1) / (1024 * 1024)));
        return false;
    }
    return true;
}

void frmPergunta::cmdExportação_Click() {
    Rotina r(this, "cmdExportação_Click");
    if (Exportando || !cmdExportação->isEnabled() || !Rascunho_Utilizável()) return;
    Exportando = true;
    Habilitar_Comandos(this);
    // OK and Cancelar have nothing to do during an export: a click on them must not reach it.
    cmdOk->setEnabled(false);
    cmdCancelar->setEnabled(false);
    cmdExportação->setEnabled(false);

    const QString arquivo = Caminho_Banco_Temporário();
    if (!QFile::exists(arquivo)) Catálogo::Cria_Banco(Conexão_Criação(arquivo));
    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    // Only this table is made anew: other exports keep theirs in the same file.
    if (Catálogo::Existe_Tabela(Conexão_Temporária, "tblPergunta"))
        Catálogo::Exclui_Tabela(Conexão_Temporária, "tblPergunta");
    Catálogo::Cria_Tabela(Conexão_Temporária, "tblPergunta",
                          {{"Pergunta", Tipo_Texto, 124},
                           {"Código_Pergunta", Tipo_Long, 0, true},
                           {"Resposta_Correta", Tipo_Texto, 50},
                           {"Resposta_Incorreta_1", Tipo_Texto, 50},
                           {"Resposta_Incorreta_2", Tipo_Texto, 50},
                           {"Resposta_Incorreta_3", Tipo_Texto, 50},
                           {"Tipo", Tipo_Texto, 1},
                           {"Já_Comparada", Tipo_Boolean},
                           {"Já_Verificada", Tipo_Boolean},
                           {"Pergunta_Original", Tipo_Texto, 124, false, true}});
    Catálogo::Adiciona_Índice(Conexão_Temporária, "tblPergunta",
                              {"idxCódigo_Pergunta", Tipo_Índice::Simples, {"Código_Pergunta"}});
    Catálogo::Adiciona_Índice(Conexão_Temporária, "tblPergunta",
                              {"idxPergunta", Tipo_Índice::Simples, {"Pergunta"}});
    Catálogo::Adiciona_Índice(Conexão_Temporária, "tblPergunta",
                              {"idxPergunta_Original", Tipo_Índice::Simples, {"Pergunta_Original"}});
    Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());

    // The scratch rows, the stamps of the main table and their audit rows belong to one transaction.
    Inicia_Transação();
    Abre_Tabela_Temporária("tblPergunta");
    // The walk leaves Tabela at its end; the row on screen is sought again afterwards, so that the
    // commands go on acting on the question shown.
    const QVariant código_mostrado =
        (Tabela.Eof() || Tabela.Bof()) ? QVariant() : Tabela.Fields("Código_Pergunta").Value();
    const int total = Lastrec(Tabela.Source, Conexão);
    if (total != 0) Tabela.MoveFirst();
    int contador = 0;
    Início_Progresso = Plataforma_Atual().Agora();
    pgbBarra_De_Progresso->show();
    while (!Tabela.Eof()) {
        ++contador;
        Barra_de_Progresso(1, total, contador, this);
        const QString pergunta = Tabela.Fields("Pergunta").Value().toString();
        Tabela_Temporária.AddNew();
        for (const char* campo :
             {"Pergunta", "Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2",
              "Resposta_Incorreta_3", "Tipo", "Já_Comparada", "Já_Verificada"}) {
            const QString nome = QString::fromUtf8(campo);
            Tabela_Temporária.Fields(nome).Set_Value(Tabela.Fields(nome).Value());
        }
        Tabela_Temporária.Fields("Pergunta_Original").Set_Value(pergunta);
        Grava(Tabela_Temporária, false);
        // The stamp lets a later version recognise the question by the wording that was sent.
        Tabela.Fields("Pergunta_Original").Set_Value(pergunta);
        Tabela.Update();
        Tabela.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Finaliza_Transação();
    if (código_mostrado.isValid()) Tabela.Seek(código_mostrado, Tipo_Busca::Primeiro_Igual);
    pgbBarra_De_Progresso->hide();
    Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());

    Habilitar_Comandos(this);
    cmdOk->setEnabled(false);
    cmdCancelar->setEnabled(false);
    cmdExportação->setEnabled(true);
    Exportando = false;
    Exibe_Mensagem(101);
}
