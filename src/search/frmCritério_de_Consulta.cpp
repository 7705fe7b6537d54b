#include "search/frmCritério_de_Consulta.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"

namespace {
// The lists are sorted as the locate dialog sorts its own, so field 0 with its extra blank comes first.
void Preenche_Ordenada(QComboBox* lista, QStringList itens, bool dado_é_item) {
    std::sort(itens.begin(), itens.end(),
              [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    for (const QString& item : itens) lista->addItem(dado_é_item ? item.left(60).trimmed() : item, item);
    lista->setCurrentIndex(-1);
}

QString Item_Selecionado(const QComboBox* lista) {
    return lista->currentIndex() < 0 ? QString() : lista->currentData().toString();
}

void Seleciona_Posição(QComboBox* lista, int posição) {
    lista->setCurrentIndex(-1);
    for (int i = 0; i < lista->count(); ++i)
        if (frmCritério_de_Consulta::Posição_do_Item(lista->itemData(i).toString()) == posição) {
            lista->setCurrentIndex(i);
            return;
        }
}
}  // namespace

QString frmCritério_de_Consulta::Item_Campo(const QString& nome, int posição) {
    return (posição == 0 ? " " : "") + nome.trimmed().leftJustified(60, ' ', true) + QString::number(posição);
}

int frmCritério_de_Consulta::Posição_do_Item(const QString& item) {
    return item.mid(60, 10).trimmed().toInt();
}

frmCritério_de_Consulta::frmCritério_de_Consulta(QWidget* pai)
    : Formulário_Cadastro("frmCritério_de_Consulta", pai) {
    Tópico_Ajuda = "Critério de Consulta";
    Campo_Código = "Código_Critério_de_Consulta";
    Frase_Registro = " do Critério de Consulta ";
    Frase_Inclusão = " do Critério de Consultas";
    Palavra_Registro = "Critério de Consulta";
    Palavra_Masculina = true;
    Chave_Digitada = true;  // table and user form the primary key: a duplicate reopens the table

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraCritério_de_Consulta = new QGroupBox(Área_Campos);
    fraCritério_de_Consulta->setObjectName("fraCritério_de_Consulta");
    fraCritério_de_Consulta->setAccessibleName("Critério de Consulta");
    coluna->addWidget(fraCritério_de_Consulta);
    auto* grade = new QGridLayout(fraCritério_de_Consulta);

    auto lista = [this](const char* nome, const QString& acessível) {
        auto* combo = new QComboBox(fraCritério_de_Consulta);
        combo->setObjectName(QString::fromUtf8(nome));
        combo->setAccessibleName(acessível);
        combo->setEditable(false);
        combo->setMinimumContentsLength(40);
        return combo;
    };
    Label3 = Rótulo("Label3", "Tabela:");
    cboTabela = lista("cboTabela", "Tabela");
    Label1 = Rótulo("Label1", "Campo de Pesquisa:");
    cboCampo_de_Pesquisa = lista("cboCampo_de_Pesquisa", "Campo de Pesquisa");
    Label2 = Rótulo("Label2", "Primeiro Campo de Consulta:");
    cboPrimeiro_Campo_de_Consulta = lista("cboPrimeiro_Campo_de_Consulta", "Primeiro Campo de Consulta");
    Label4 = Rótulo("Label4", "Segundo Campo de Consulta:");
    cboSegundo_Campo_de_Consulta = lista("cboSegundo_Campo_de_Consulta", "Segundo Campo de Consulta");
    Label5 = Rótulo("Label5", "Usuário:");
    txtUsuário = new QLineEdit(fraCritério_de_Consulta);
    txtUsuário->setObjectName("txtUsuário");
    txtUsuário->setAccessibleName("Usuário");
    txtUsuário->setReadOnly(true);
    txtUsuário->setFocusPolicy(Qt::NoFocus);
    for (QLabel* l : {Label3, Label1, Label2, Label4, Label5}) {
        l->setParent(fraCritério_de_Consulta);
        l->setAccessibleName(l->text().chopped(1));
    }
    Label3->setBuddy(cboTabela);
    Label1->setBuddy(cboCampo_de_Pesquisa);
    Label2->setBuddy(cboPrimeiro_Campo_de_Consulta);
    Label4->setBuddy(cboSegundo_Campo_de_Consulta);

    grade->addWidget(Label3, 0, 0);
    grade->addWidget(cboTabela, 0, 1);
    grade->addWidget(Label1, 1, 0);
    grade->addWidget(cboCampo_de_Pesquisa, 1, 1);
    grade->addWidget(Label2, 2, 0);
    grade->addWidget(cboPrimeiro_Campo_de_Consulta, 2, 1);
    grade->addWidget(Label4, 3, 0);
    grade->addWidget(cboSegundo_Campo_de_Consulta, 3, 1);
    grade->addWidget(Label5, 4, 0);
    grade->addWidget(txtUsuário, 4, 1);

    Instala_Validate(cboTabela, [this](bool& Cancel) { cboTabela_Validate(Cancel); });
    for (QComboBox* campo :
         {cboCampo_de_Pesquisa, cboPrimeiro_Campo_de_Consulta, cboSegundo_Campo_de_Consulta})
        Instala_Validate(campo, [this, campo](bool& Cancel) { Campo_Validate(campo, Cancel); });
    setTabOrder(cboTabela, cboCampo_de_Pesquisa);
    setTabOrder(cboCampo_de_Pesquisa, cboPrimeiro_Campo_de_Consulta);
    setTabOrder(cboPrimeiro_Campo_de_Consulta, cboSegundo_Campo_de_Consulta);
    setTabOrder(cboSegundo_Campo_de_Consulta, cmdOk);

    Passos_Comuns_Form_Load();
}

void frmCritério_de_Consulta::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblCritério_de_Consulta");
    Tabela.Set_Index("idxCódigo_Critério_de_Consulta");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
    if (cboTabela->count() == 0) {
        QStringList tabelas;
        for (const QString& nome : Catálogo::Lista_Tabelas(Conexão))
            if (nome.startsWith("tbl", Qt::CaseInsensitive)) tabelas << nome.mid(3, 50).trimmed();
        Preenche_Ordenada(cboTabela, tabelas, false);
    }
}

void frmCritério_de_Consulta::Preenche_Listas_Campos(const QString& tabela) {
    Rotina r(this, "Preenche_Listas_Campos");
    const QList<QComboBox*> listas = {cboCampo_de_Pesquisa, cboPrimeiro_Campo_de_Consulta,
                                      cboSegundo_Campo_de_Consulta};
    for (QComboBox* lista : listas) lista->clear();
    Abre_Tabela_Pesquisa("tbl" + tabela.trimmed());
    QStringList itens;
    for (int posição = 0; posição < Tabela_Pesquisa.Fields_Count(); ++posição)
        itens << Item_Campo(Tabela_Pesquisa.Fields(posição).Name(), posição);
    for (QComboBox* lista : listas) Preenche_Ordenada(lista, itens, true);
}

void frmCritério_de_Consulta::Mostra_Registro() {
    const QString tabela = Tabela.Fields("Tabela").Value().toString();
    const QString procurada = tabela.left(50).trimmed().toLower();
    cboTabela->setCurrentIndex(-1);
    for (int i = 0; i < cboTabela->count(); ++i)
        if (cboTabela->itemText(i).left(50).trimmed().toLower() == procurada) {
            cboTabela->setCurrentIndex(i);
            break;
        }
    Preenche_Listas_Campos(tabela);
    Seleciona_Posição(cboCampo_de_Pesquisa, Tabela.Fields("Campo_de_Pesquisa").Value().toInt());
    Seleciona_Posição(cboPrimeiro_Campo_de_Consulta,
                      Tabela.Fields("Primeiro_Campo_de_Consulta").Value().toInt());
    Seleciona_Posição(cboSegundo_Campo_de_Consulta,
                      Tabela.Fields("Segundo_Campo_de_Consulta").Value().toInt());
    txtUsuário->setText(Tabela.Fields("Usuário").Value().toString().trimmed());
    Tabela_Anterior = tabela;
}

void frmCritério_de_Consulta::cboTabela_Validate(bool& Cancel) {
    Rotina r(this, "cboTabela_Validate");
    if (cmdCancelar->isDown()) {
        Cancel = true;
        return;
    }
    if (cboTabela->currentIndex() == -1) {
        Exibe_Mensagem(10);
        Cancel = true;
        return;
    }
    // An unchanged table in an alteration keeps the three selections.
    const QString escolhida = cboTabela->currentText().trimmed();
    if (Operação == "Inclusão" || (Operação == "Alteração" && escolhida != Tabela_Anterior.trimmed()))
        Preenche_Listas_Campos(escolhida);
}

void frmCritério_de_Consulta::Campo_Validate(QComboBox* lista, bool& Cancel) {
    Rotina r(this, lista->objectName() + "_Validate");
    if (cmdCancelar->isDown()) {
        Cancel = true;
        return;
    }
    if (lista->currentIndex() == -1) {
        Exibe_Mensagem(10);
        Cancel = true;
        return;
    }
    if (lista == cboPrimeiro_Campo_de_Consulta) Habilitar_Botão_OK(this);
}

bool frmCritério_de_Consulta::Critério_de_Outro_Usuário() const {
    if (Tabela.Eof() || Tabela.Bof()) return false;  // the empty table has its own message
    return Tabela.Fields("Usuário").Value().toString().trimmed().toLower() !=
           Usuário_Atual.trimmed().toLower();
}

bool frmCritério_de_Consulta::Guarda_Alteração() {
    if (!Critério_de_Outro_Usuário()) return true;
    Exibe_Mensagem(31);
    return false;
}

bool frmCritério_de_Consulta::Guarda_Exclusão() {
    if (!Critério_de_Outro_Usuário()) return true;
    Exibe_Mensagem(32);
    return false;
}

void frmCritério_de_Consulta::Grava_Campos() {
    Tabela.Fields("Tabela").Set_Value(cboTabela->currentText().left(50));
    Tabela.Fields("Usuário").Set_Value(Usuário_Atual);
    Tabela.Fields("Campo_de_Pesquisa").Set_Value(Posição_do_Item(Item_Selecionado(cboCampo_de_Pesquisa)));
    Tabela.Fields("Primeiro_Campo_de_Consulta")
        .Set_Value(Posição_do_Item(Item_Selecionado(cboPrimeiro_Campo_de_Consulta)));
    Tabela.Fields("Segundo_Campo_de_Consulta")
        .Set_Value(Posição_do_Item(Item_Selecionado(cboSegundo_Campo_de_Consulta)));
}

QWidget* frmCritério_de_Consulta::Primeiro_Campo() {
    return cboTabela;
}
