#include "users/frmUsuário.h"

#include <QCheckBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Plataforma.h"
#include "search/frmLocaliza_Informação.h"
#include "shell/frmAutentica_Senha.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "users/Permissões.h"
#include "utilities/Fundo_Tela.h"

namespace {
const char* const Direitos[] = {"Permissão_De_Inclusão", "Permissão_De_Alteração", "Permissão_De_Exclusão",
                                "Permissão_De_Consulta"};
const QString Formato_Grade =
    "<Permissões de Acesso                           |<Inclusão|<Alteração|<Exclusão|<Consulta|";

QString Pasta_Ícones() {
    return Caminho_Programa() + "/Ícones";
}
}  // namespace

frmUsuário::frmUsuário(QWidget* pai) : Formulário_Cadastro("frmUsuário", pai) {
    Tópico_Ajuda = "Usuário";
    Campo_Código = "Código_Usuário";
    Frase_Registro = " do Usuário ";
    Frase_Inclusão = " de Usuários";
    Palavra_Registro = "Usuário";
    Palavra_Masculina = true;
    Chave_Digitada = true;

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraUsuário = new QGroupBox(Área_Campos);
    fraUsuário->setObjectName("fraUsuário");
    fraUsuário->setAccessibleName("Usuário");
    coluna->addWidget(fraUsuário);
    auto* grade = new QGridLayout(fraUsuário);

    Label1 = Rótulo("Label1", "Usuário:");
    txtUsuário = new QLineEdit(fraUsuário);
    txtUsuário->setObjectName("txtUsuário");
    txtUsuário->setMaxLength(50);
    Label2 = Rótulo("Label2", "Senha:");
    txtSenha = Caixa_Senha(fraUsuário);
    Label3 = Rótulo("Label3", "Confirme a senha:");
    txtSenha_Confirmação = Caixa_Senha(fraUsuário);
    txtSenha_Confirmação->setObjectName("txtSenha_Confirmação");
    chkMuda_Fundo_de_Tela = new QCheckBox("Atualizar Fundo de Tela do Windows?", fraUsuário);
    chkMuda_Fundo_de_Tela->setObjectName("chkMuda_Fundo_de_Tela");
    Label4 = Rótulo("Label4", "Selecione a pasta onde estão gravadas as imagens de sua preferência:");
    drvImagens = new Lista_Unidades(fraUsuário);
    drvImagens->setObjectName("drvImagens");
    drvImagens->setAccessibleName("Local das imagens");
    DirImagens = new Lista_Pastas(fraUsuário);
    DirImagens->setObjectName("DirImagens");
    DirImagens->setAccessibleName("Pasta das imagens");
    DirImagens->setMinimumHeight(130);
    for (QLabel* l : {Label1, Label2, Label3, Label4}) l->setParent(fraUsuário);
    Label1->setBuddy(txtUsuário);
    Label2->setBuddy(txtSenha);
    Label3->setBuddy(txtSenha_Confirmação);
    Label4->setBuddy(drvImagens);
    txtUsuário->setAccessibleName("Usuário");
    txtSenha->setAccessibleName("Senha");
    txtSenha_Confirmação->setAccessibleName("Confirme a senha");

    grade->addWidget(Label1, 0, 0);
    grade->addWidget(txtUsuário, 0, 1, 1, 3);
    grade->addWidget(Label2, 1, 0);
    grade->addWidget(txtSenha, 1, 1);
    grade->addWidget(Label3, 1, 2);
    grade->addWidget(txtSenha_Confirmação, 1, 3);
    grade->addWidget(chkMuda_Fundo_de_Tela, 2, 0, 1, 4);
    grade->addWidget(Label4, 3, 0, 1, 4);
    grade->addWidget(drvImagens, 4, 0, 1, 4);
    grade->addWidget(DirImagens, 5, 0, 1, 4);

    fraPermissão = new QGroupBox(Área_Campos);
    fraPermissão->setObjectName("fraPermissão");
    fraPermissão->setAccessibleName("Permissões de Acesso");
    coluna->addWidget(fraPermissão, 1);
    auto* permissões = new QVBoxLayout(fraPermissão);
    flxPermissão_de_Acesso = new Grade_Flex(fraPermissão);
    flxPermissão_de_Acesso->setObjectName("flxPermissão_de_Acesso");
    flxPermissão_de_Acesso->setAccessibleName("Permissões de Acesso");
    // A cell, not a whole row, is toggled: the cursor shows which one.
    flxPermissão_de_Acesso->setSelectionBehavior(QAbstractItemView::SelectItems);
    flxPermissão_de_Acesso->setMinimumHeight(170);
    permissões->addWidget(flxPermissão_de_Acesso);
    flxPermissão_de_Acesso->Ao_Clicar = [this] {
        if (flxPermissão_de_Acesso->currentColumn() >= 0)
            flxPermissão_de_Acesso->Set_Col(flxPermissão_de_Acesso->currentColumn());
        flxPermissão_De_Acesso_Click();
    };
    Limpa_Grade();

    Instala_Validate(txtUsuário, [this](bool& Cancel) { txtUsuário_Validate(Cancel); });
    Campo_Obrigatório(txtSenha, false);
    Campo_Obrigatório(txtSenha_Confirmação, false);
    Instala_Validate(DirImagens, [this](bool& Cancel) { DirImagens_Validate(Cancel); });
    drvImagens->Ao_Mudar = [this] { DirImagens->Set_Path(drvImagens->Drive()); };
    DirImagens->Ao_Mudar = [this] { drvImagens->Set_Drive(DirImagens->Path()); };
    // The folder list is the last stop before OK: reaching it makes OK reachable by Tab, since the
    // disabled OK would be passed over for Cancelar, which runs no check.
    DirImagens->Ao_Receber_Foco = [this] { Habilitar_Botão_OK(this); };
    setTabOrder(txtUsuário, txtSenha);
    setTabOrder(txtSenha, txtSenha_Confirmação);
    setTabOrder(txtSenha_Confirmação, chkMuda_Fundo_de_Tela);
    setTabOrder(chkMuda_Fundo_de_Tela, drvImagens);
    setTabOrder(drvImagens, DirImagens);
    setTabOrder(DirImagens, cmdOk);

    resize(720, 640);
    Passos_Comuns_Form_Load();
    fraPermissão->setEnabled(false);
}

void frmUsuário::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Tabela_Secundária.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxCódigo_Usuário");
    Abre_Tabela_Secundária("tblPermissão");
    Tabela_Secundária.Set_Index("idxCódigo_Permissão");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

bool frmUsuário::Usuário_Mostrado_É_O_Atual() const {
    return txtUsuário->text().trimmed() == Usuário_Atual;
}

void frmUsuário::Aponta_Pasta(const QString& caminho) {
    // A folder that has vanished or cannot be read gives way to the program's pictures.
    if (!DirImagens->Set_Path(caminho) && !DirImagens->Set_Path(Pasta_Ícones()))
        DirImagens->Set_Path(QDir::homePath());
    drvImagens->Set_Drive(DirImagens->Path());
}

void frmUsuário::Limpa_Grade() {
    flxPermissão_de_Acesso->Set_Rows(1);
    flxPermissão_de_Acesso->Set_Cols(6);
    flxPermissão_de_Acesso->Clear();
    flxPermissão_de_Acesso->Set_FormatString(Formato_Grade);
    flxPermissão_de_Acesso->setColumnHidden(5, true);
    flxPermissão_de_Acesso->resizeColumnsToContents();
}

void frmUsuário::Mostra_Registro() {
    txtUsuário->setText(Tabela.Fields("Usuário").Value().toString().trimmed());
    chkMuda_Fundo_de_Tela->setChecked(Tabela.Fields("Muda_Fundo_de_Tela").Value().toBool());
    // Another user's password and folder are never shown, not even to the Supervisor.
    if (Usuário_Mostrado_É_O_Atual()) {
        txtSenha->setText(QString::number(Tabela.Fields("Senha").Value().toInt()).trimmed());
        const QString local =
            Caminho_da_Biblioteca(Tabela.Fields("Biblioteca_Imagens_Local").Value().toString());
        const QString rede =
            Caminho_da_Biblioteca(Tabela.Fields("Biblioteca_Imagens_Rede").Value().toString());
        Aponta_Pasta(Pasta_Legível(local) ? local : Pasta_Legível(rede) ? rede : Pasta_Ícones());
    } else {
        Aponta_Pasta(Pasta_Ícones());
    }
    Preenche_Grade();
    fraUsuário->setEnabled(true);
    fraPermissão->setEnabled(false);
}

// Only the shown user's rows are read, so showing a user costs the same however many users there are.
void frmUsuário::Preenche_Grade() {
    Rotina r(this, "Preenche_Grade");
    Limpa_Grade();
    const QString nome = txtUsuário->text().trimmed();
    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("Select * From tblPermissão Where Trim(Usuário) = " + Valor_Texto_SQL(nome) +
                          " Order By Código_Permissão");
    int linhas = 0;
    while (Tabela_Terciária.Aberto() && !Tabela_Terciária.Eof()) {
        const QString usuário = Tabela_Terciária.Fields("Usuário").Value().toString().trimmed();
        if (usuário != nome) {  // the store compares without regard to case; the rights do not
            Tabela_Terciária.MoveNext();
            continue;
        }
        // Rows of a user literally named "Usuário" are removed as they are shown; while an edit holds its
        // transaction (the row shown again once locked) they wait for the next showing.
        if (usuário == "Usuário") {
            if (!Transação_Aberta()) {
                Inicia_Transação();
                Exclui_Direito(Tabela_Terciária.Fields("Código_Permissão").Value().toInt());
                Finaliza_Transação();
            }
            Tabela_Terciária.MoveNext();
            continue;
        }
        ++linhas;
        flxPermissão_de_Acesso->Set_Rows(linhas + 1);
        flxPermissão_de_Acesso->Set_TextMatrix(
            linhas, 0, Tabela_Terciária.Fields("Rotina").Value().toString().trimmed());
        for (int i = 0; i < 4; ++i)
            flxPermissão_de_Acesso->Set_TextMatrix(
                linhas, i + 1,
                Tabela_Terciária.Fields(QString::fromUtf8(Direitos[i])).Value().toBool() ? Sim : Não);
        flxPermissão_de_Acesso->Set_TextMatrix(
            linhas, 5, Tabela_Terciária.Fields("Código_Permissão").Value().toString());
        Tabela_Terciária.MoveNext();
    }
    flxPermissão_de_Acesso->resizeColumnsToContents();
    update();
    Monta_Flex_Grid(flxPermissão_de_Acesso);
}

QString frmUsuário::Usuário_Gravado() {
    if (Tabela.Eof() || Tabela.Bof()) return QString();
    return Tabela.Fields("Usuário").Value().toString().trimmed();
}

bool frmUsuário::Volta_Ao_Registro(const QString& índice, int código) {
    Tabela.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxCódigo_Usuário");
    bool achou = false;
    if (código == 0) {
        if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
    } else {
        Tabela.Seek(código, Tipo_Busca::Primeiro_Igual);
        achou = !Tabela.Eof() && !Tabela.Bof();
    }
    // The row found stays current in the other order.
    if (achou && !índice.isEmpty() && índice != Tabela.Index()) Tabela.Set_Index(índice);
    return achou;
}

void frmUsuário::cmdInclusão_Click() {
    Rotina r(this, "cmdInclusão_Click");
    if (Recusa_Sem_Direito(Pode_Incluir)) return;
    const int código = Tabela.Eof() || Tabela.Bof() ? 0 : Tabela.Fields("Código_Usuário").Value().toInt();
    const QString índice = Tabela.Index();
    Autentica_Senha(this);
    Volta_Ao_Registro(índice, código);
    if (!Senha_Autenticada) return;
    Inicia_Transação();
    fraPermissão->setEnabled(false);
    Operação = "Inclusão";
    setWindowTitle(Operação + Frase_Inclusão);
    Limpar_Campos(this);
    Limpa_Grade();
    Habilitar_Comandos(this);
    Aponta_Pasta(Pasta_Ícones());
    txtUsuário->setFocus();
}

void frmUsuário::cmdAlteração_Click() {
    Rotina r(this, "cmdAlteração_Click");
    if (Recusa_Sem_Direito(Pode_Alterar)) return;
    // Whose row it is, as stored: the fields may still hold the text of a cancelled inclusion.
    if (Usuário_Atual != Usuário_Supervisor && Usuário_Gravado() != Usuário_Atual) {
        Exibe_Mensagem(8);
        return;
    }
    const int código = Tabela.Eof() || Tabela.Bof() ? 0 : Tabela.Fields("Código_Usuário").Value().toInt();
    const QString índice = Tabela.Index();
    Autentica_Senha(this);
    const bool achou = Volta_Ao_Registro(índice, código);
    if (!Senha_Autenticada) return;
    if (Lastrec(Tabela.Source, Conexão) != 0 && !achou) {  // another workstation removed it meanwhile
        Exibir_Campos();
        if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
        return;
    }
    if (!Trava_Registro_Mostrado(22)) return;
    // The Supervisor changes only the rights of others, and a user only the own data.
    if (Usuário_Atual != Usuário_Supervisor) {
        fraPermissão->setEnabled(false);
    } else {
        fraPermissão->setEnabled(true);
        if (!Usuário_Mostrado_É_O_Atual()) fraUsuário->setEnabled(false);
    }
    Operação = "Alteração";
    setWindowTitle(Legenda_Registro());
    Habilitar_Comandos(this);
    if (fraUsuário->isEnabled())
        txtUsuário->setFocus();
    else
        flxPermissão_de_Acesso->setFocus();
}

// Through the slot opened on the table itself, so that the audit trail names the table as for any row.
void frmUsuário::Exclui_Direito(int código) {
    Tabela_Secundária.Seek(código, Tipo_Busca::Primeiro_Igual);
    if (Tabela_Secundária.Eof() || Tabela_Secundária.Bof()) return;
    Trava(Tabela_Secundária, Conexão_Secundária, true);
    Grava(Tabela_Secundária, true);
}

void frmUsuário::Exclui_Direitos(const QString& usuário) {
    Rotina r(this, "Exclui_Direitos");
    Tabela_Terciária.Reinicia();
    Abre_Tabela_Terciária("Select * From tblPermissão Where Trim(Usuário) = " + Valor_Texto_SQL(usuário) +
                          " Order By Código_Permissão");
    while (Tabela_Terciária.Aberto() && !Tabela_Terciária.Eof()) {
        if (Tabela_Terciária.Fields("Usuário").Value().toString().trimmed() == usuário)
            Exclui_Direito(Tabela_Terciária.Fields("Código_Permissão").Value().toInt());
        Tabela_Terciária.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
}

void frmUsuário::cmdExclusão_Click() {
    Rotina r(this, "cmdExclusão_Click");
    if (Recusa_Sem_Direito(Pode_Excluir)) return;
    const QString nome = Usuário_Gravado();
    if (nome == Usuário_Supervisor || nome == Usuário_Autor) {
        Exibe_Mensagem(7);
        return;
    }
    const int código = Tabela.Eof() || Tabela.Bof() ? 0 : Tabela.Fields("Código_Usuário").Value().toInt();
    Autentica_Senha(this);
    // From an exclusion on, the register walks by name until it is opened again.
    const bool achou = Volta_Ao_Registro("idxUsuário", código);
    if (!Senha_Autenticada) return;
    if (Lastrec(Tabela.Source, Conexão) != 0 && !achou) {
        Exibir_Campos();
        if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
        return;
    }
    if (!Trava_Registro_Mostrado(23)) return;
    Operação = "Exclusão";
    setWindowTitle(Legenda_Registro());
    if (!Confirma(this)) {
        Tabela.MoveNext();
        Tabela.MovePrevious();
    } else {
        // The rights go first: no row of tblPermissão is left without its user.
        Exclui_Direitos(Tabela.Fields("Usuário").Value().toString().trimmed());
        Grava(Tabela, true);
        Finaliza_Transação();
        Reduz_Cache_Lastrec();
        if (!Tabela_Dynaset.Source.isEmpty()) {
            Tabela_Dynaset.Requery();
            if (!(Tabela_Dynaset.Bof() && Tabela_Dynaset.Eof())) {
                Tabela_Dynaset.MoveNext();
                if (Tabela_Dynaset.Eof()) Tabela_Dynaset.MovePrevious();
            } else {
                Linhas_Localizadas = 0;
            }
        } else {
            Tabela.MoveNext();
            if (Tabela.Eof()) Tabela.MovePrevious();
        }
    }
    Exibir_Campos();
    if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
}

void frmUsuário::Grava_Campos() {
    Tabela.Fields("Usuário").Set_Value(txtUsuário->text().trimmed());
    Tabela.Fields("Senha").Set_Value(Hash_Senha(txtSenha->text().toLower()));
    Tabela.Fields("Muda_Fundo_de_Tela").Set_Value(chkMuda_Fundo_de_Tela->isChecked());
    Tabela.Fields("Quantidade_Execuções").Set_Value(0);
    // A folder on this computer's own disks is its local form; one on a network share goes in the form
    // that the network knows, so that other workstations find it too.
    const QString pasta = DirImagens->Path();
    const QString rede = Forma_de_Rede(pasta);
    const bool inclusão = Operação == "Inclusão";
    if (rede.isEmpty()) {
        const QString local = pasta.left(150).trimmed();
        Tabela.Fields("Biblioteca_Imagens_Local").Set_Value(local);
        if (inclusão) Tabela.Fields("Biblioteca_Imagens_Rede").Set_Value(local);
    } else {
        Tabela.Fields("Biblioteca_Imagens_Rede").Set_Value(rede.left(150));
        if (inclusão) Tabela.Fields("Biblioteca_Imagens_Local").Set_Value(rede.left(150));
    }
}

void frmUsuário::Grava_Direitos() {
    Rotina r(this, "Grava_Direitos");
    for (int linha = 1; linha < flxPermissão_de_Acesso->Rows(); ++linha) {
        const int código = flxPermissão_de_Acesso->TextMatrix(linha, 5).toInt();
        if (código == 0) continue;
        Tabela_Secundária.Seek(código, Tipo_Busca::Primeiro_Igual);
        if (Tabela_Secundária.Eof() || Tabela_Secundária.Bof()) continue;
        bool mudou = false;
        for (int i = 0; i < 4; ++i) {
            const bool direito = flxPermissão_de_Acesso->TextMatrix(linha, i + 1) == Sim;
            if (Tabela_Secundária.Fields(QString::fromUtf8(Direitos[i])).Value().toBool() != direito)
                mudou = true;
        }
        // An unchanged row is not written, so the audit trail holds only real changes.
        if (!mudou) continue;
        for (int i = 0; i < 4; ++i)
            Tabela_Secundária.Fields(QString::fromUtf8(Direitos[i]))
                .Set_Value(flxPermissão_de_Acesso->TextMatrix(linha, i + 1) == Sim);
        Grava(Tabela_Secundária, false);
    }
}

void frmUsuário::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    const bool permissões_abertas = fraPermissão->isEnabled();
    fraPermissão->setEnabled(false);
    if (!cmdOk->isEnabled()) return;
    // The Supervisor altering another user changes rights only: that user's password and folder, which
    // this window never shows, stay as they are.
    Grava_Usuário = fraUsuário->isEnabled();
    if (Grava_Usuário) {
        auto recusa = [&](QWidget* campo) {
            fraPermissão->setEnabled(permissões_abertas);
            campo->setFocus();
        };
        if (txtUsuário->text().trimmed().isEmpty() || txtSenha->text().isEmpty()) {
            Exibe_Mensagem(10);
            recusa(txtUsuário->text().trimmed().isEmpty() ? txtUsuário : txtSenha);
            return;
        }
        if (txtSenha->text() != txtSenha_Confirmação->text()) {
            Exibe_Mensagem(5);
            recusa(txtSenha_Confirmação);
            return;
        }
        if (Operação == "Alteração" && Usuário_Atual == Usuário_Supervisor &&
            Tabela.Fields("Usuário").Value().toString().trimmed() == Usuário_Supervisor &&
            txtUsuário->text().trimmed() != Usuário_Supervisor) {
            txtUsuário->setText(Usuário_Atual);
            Exibe_Mensagem(38);
            recusa(txtUsuário);
            return;
        }
        const int largura = Tabela.Fields("Usuário").DefinedSize();
        if (largura > 0 && txtUsuário->text().trimmed().size() > largura) {
            Plataforma_Atual().Caixa_Mensagem(
                QString("O nome do usuário pode ter no máximo %1 caracteres.\r\rInforme um nome mais curto.")
                    .arg(largura),
                Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
            recusa(txtUsuário);
            return;
        }
    }
    const QString senha = txtSenha->text();
    Transformar_Campos(this);
    txtSenha->setText(senha);
    if (Confirma(this) && Grava_Usuário) {
        if (Operação == "Inclusão") Tabela.AddNew();
        Grava_Campos();
        Grava(Tabela, false);
        if (Registro_Duplicado) {
            // The password dialog has left this window outside its register state, where the handler
            // keeps quiet about a duplicate: the name is told here.
            if (!Em_Cadastro)
                Plataforma_Atual().Caixa_Mensagem(
                    "Já existe um usuário cadastrado com o nome \"" + txtUsuário->text().trimmed() + "\".",
                    Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
            Abre_Tabelas();
        }
        Registro_Duplicado = false;
    }
    // The rights are written on No as well: the question was about the user's own fields.
    if (Usuário_Atual == Usuário_Supervisor) Grava_Direitos();
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Exibir_Campos();
    if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
    Habilitar_Comandos(this);
    fraUsuário->setEnabled(true);
}

void frmUsuário::cmdCancelar_Click() {
    Rotina r(this, "cmdCancelar_Click");
    fraPermissão->setEnabled(false);
    fraUsuário->setEnabled(true);
    const bool inclusão = Operação == "Inclusão";
    Formulário_Cadastro::cmdCancelar_Click();
    if (inclusão) Limpa_Grade();
}

void frmUsuário::cmdLocaliza_Click() {
    Formulário_Cadastro::cmdLocaliza_Click();
    if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
}

void frmUsuário::cmdMovimenta_Registro_Click(int Index) {
    Formulário_Cadastro::cmdMovimenta_Registro_Click(Index);
    if (Tabela.Eof() || Tabela.Bof()) Limpa_Grade();
}

void frmUsuário::flxPermissão_De_Acesso_Click() {
    Rotina r(this, "flxPermissão_De_Acesso_Click");
    if (!fraPermissão->isEnabled()) return;
    Grade_Flex* grade = flxPermissão_de_Acesso;
    const int coluna = grade->Col();
    if (coluna >= 1 && coluna <= 4 && grade->Row() >= 1 && grade->Row() < grade->Rows())
        grade->Set_TextMatrix(grade->Row(), coluna,
                              grade->TextMatrix(grade->Row(), coluna) == Sim ? Não : Sim);
    update();
    Habilitar_Botão_OK(this);
}

void frmUsuário::txtUsuário_Validate(bool& Cancel) {
    Rotina r(this, "txtUsuário_Validate");
    if (cmdCancelar->isDown()) {
        Cancel = true;
        return;
    }
    if (Operação != "Inclusão" && Operação != "Alteração") return;
    if (txtUsuário->text().trimmed().isEmpty()) {
        Exibe_Mensagem(10);
        Cancel = true;
        return;
    }
    if (Usuário_Atual == Usuário_Supervisor && txtUsuário->text().trimmed() != Usuário_Atual &&
        Operação == "Alteração") {
        txtUsuário->setText(Usuário_Atual);
        Exibe_Mensagem(38);
        Cancel = true;
    }
}

void frmUsuário::DirImagens_Validate(bool& Cancel) {
    (void)Cancel;
    Habilitar_Botão_OK(this);
}

QWidget* frmUsuário::Primeiro_Campo() {
    return txtUsuário;
}
