#include "forms/Cadastro.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "users/Permissões.h"
#include "utilities/Ajuda.h"

namespace {
void Inverte(QWidget* Formulário, const QString& nome) {
    if (auto* botão = Formulário->findChild<QAbstractButton*>(nome)) botão->setEnabled(!botão->isEnabled());
}

QString Maiúsculas(const QString& texto) {
    return QLocale(QLocale::Portuguese, QLocale::Brazil).toUpper(texto);
}
}  // namespace

bool Confirma(QWidget* Formulário) {
    Rotina r(Fonte_Funções_Públicas, "Confirma");
    Plataforma& plataforma = Plataforma_Atual();
    const Resposta_Caixa resposta =
        plataforma.Caixa_Mensagem("Confirma " + Maiúsculas(Operação) + "?", Título_Programa,
                                  Ícone_Caixa::Pergunta, Botões_Caixa::Sim_Não);
    if (resposta != Resposta_Caixa::Sim) return false;
    if (Operação == "Exclusão") {
        auto* botão = Formulário->findChild<QAbstractButton*>("cmdExclusão");
        for (int quadro = 1; botão != nullptr && quadro <= 8; ++quadro) {
            botão->setIcon(QIcon(Caminho_Ícone(QString("Explosão %1.ico").arg(quadro))));
            plataforma.Dorme(70);
            plataforma.Processa_Eventos();
        }
        if (botão != nullptr) botão->setIcon(QIcon(Caminho_Ícone("Exclusão.ico")));
    }
    return true;
}

void Habilitar_Comandos(QWidget* Formulário) {
    Rotina r(Fonte_Funções_Públicas, "Habilitar_Comandos");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    for (const char* nome : {"cmdInclusão", "cmdAlteração", "cmdExclusão", "cmdLocaliza",
                             "cmdMovimenta_Registro_1", "cmdMovimenta_Registro_2"})
        Inverte(Formulário, QString::fromUtf8(nome));
    if (Operação == "Inclusão") {
        if (auto* ok = Formulário->findChild<QAbstractButton*>("cmdOk")) ok->setEnabled(false);
    } else {
        Inverte(Formulário, "cmdOk");
    }
    Inverte(Formulário, "cmdCancelar");
    Inverte(Formulário, "cmdSair");
}

void Limpar_Campos(QWidget* Formulário) {
    Limpar_Campos(Formulário, {});
}

void Limpar_Campos(QWidget* Formulário, const QList<QWidget*>& exceto) {
    Rotina r(Fonte_Funções_Públicas, "Limpar_Campos");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    for (QWidget* controle : Formulário->findChildren<QWidget*>()) {
        if (exceto.contains(controle)) continue;
        if (auto* data = dynamic_cast<Caixa_Data*>(controle)) {
            data->Set_Value(QVariant());
        } else if (auto* número = dynamic_cast<Caixa_Número*>(controle)) {
            // A box whose limits refuse 0 takes the smallest value that it accepts of these.
            número->Set_Value(0);
            if (número->Value() != 0) número->Set_Value(0.01);
            if (número->Value() > 1) número->Set_Value(1);
        } else if (auto* caixa = qobject_cast<QLineEdit*>(controle)) {
            // A combo box's own line belongs to the combo box.
            if (qobject_cast<QComboBox*>(caixa->parentWidget()) == nullptr) caixa->clear();
        } else if (auto* longa = qobject_cast<QPlainTextEdit*>(controle)) {
            if (!longa->isReadOnly()) longa->clear();
        } else if (auto* combo = qobject_cast<QComboBox*>(controle)) {
            if (combo->isEditable())
                combo->setEditText(QString());
            else
                combo->setCurrentIndex(-1);
        } else if (auto* rótulo = qobject_cast<QLabel*>(controle)) {
            if (rótulo->frameShape() != QFrame::NoFrame) rótulo->clear();
        } else if (auto* marca = qobject_cast<QCheckBox*>(controle)) {
            marca->setChecked(false);
        }
    }
}

void Habilitar_Botão_OK(QWidget* Formulário) {
    Rotina r(Fonte_Funções_Públicas, "Habilitar_Botão_OK");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    if (Operação == "Consulta") return;
    if (auto* ok = Formulário->findChild<QAbstractButton*>("cmdOk")) ok->setEnabled(true);
}

void Movimenta_Registro(Registros& Tabela_Movimentar, int Índice) {
    Rotina r(Fonte_Funções_Públicas, "Movimenta_Registro");
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    const bool filtro = !Tabela_Dynaset.Source.isEmpty();
    if (filtro && (Tabela_Dynaset.Eof() || Tabela_Dynaset.Bof())) {
        Exibe_Mensagem(26);
        Tabela_Dynaset.Close();
        Tabela_Dynaset.Source.clear();
        return;
    }
    if (Lastrec(Tabela_Movimentar.Source, Conexão) == 0) {
        Exibe_Mensagem(9);
        return;
    }
    Navegando = true;
    Registros& alvo = filtro ? Tabela_Dynaset : Tabela;
    // A deletion can leave the slot past its end (a located row gone, a blank window): the walk then
    // starts again from the row at that end instead of moving off it.
    if (Índice == 1 && alvo.Bof()) {
        alvo.MoveFirst();
        Exibe_Mensagem(11);
    } else if (Índice != 1 && alvo.Eof()) {
        alvo.MoveLast();
        Exibe_Mensagem(12);
    } else if (Índice == 1) {
        alvo.MovePrevious();
        if (alvo.Bof()) {
            alvo.MoveFirst();
            Exibe_Mensagem(11);
        }
    } else {
        alvo.MoveNext();
        if (alvo.Eof()) {
            Exibe_Mensagem(12);
            alvo.MovePrevious();
        }
    }
    if (filtro) Código_Localizado = Tabela_Dynaset.Fields(1).Value().toInt();
    Navegando = false;
}

void Localiza_Registro_Dynaset() {
    Rotina r(Fonte_Funções_Públicas, "Localiza_Registro_Dynaset");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    const QString índice = "idxCódigo_" + Tabela.Source.mid(3);
    if (índice != Tabela.Index()) Tabela.Set_Index(índice);
    // Code 0 finds nothing and leaves Tabela at its end, so the window shows empty.
    const bool tem_linha = !Tabela_Dynaset.Bof() && !Tabela_Dynaset.Eof();
    Tabela.Seek(tem_linha ? Código_Localizado : 0, Tipo_Busca::Primeiro_Igual);
}

Formulário_Cadastro::Formulário_Cadastro(const QString& nome, QWidget* pai) : Formulário(nome, pai) {
    auto* coluna = new QVBoxLayout(this);
    Área_Campos = new QWidget(this);
    coluna->addWidget(Área_Campos, 1);

    auto botão = [this](const QString& nome_botão, const QString& texto, const QString& ícone) {
        QPushButton* b = Botão(nome_botão, texto);
        b->setMinimumHeight(34);
        if (!ícone.isEmpty()) b->setIcon(QIcon(Caminho_Ícone(ícone)));
        return b;
    };
    cmdInclusão = botão("cmdInclusão", "&Inclusão", "Quizora.Ico");
    cmdAlteração = botão("cmdAlteração", "&Alteração", "Alteração.Ico");
    cmdExclusão = botão("cmdExclusão", "&Exclusão", "Exclusão.ico");
    cmdLocaliza = botão("cmdLocaliza", "&Localiza", "Processamento.Ico");
    cmdMovimenta_Registro[1] = botão("cmdMovimenta_Registro_1", "A&nterior", QString());
    cmdMovimenta_Registro[2] = botão("cmdMovimenta_Registro_2", "&Próximo", QString());
    cmdOk = botão("cmdOk", "&OK", QString());
    cmdCancelar = botão("cmdCancelar", "&Cancelar", QString());
    cmdSair = botão("cmdSair", "&Sair", QString());
    cmdMovimenta_Registro[1]->setIcon(style()->standardIcon(QStyle::SP_ArrowBack));
    cmdMovimenta_Registro[2]->setIcon(style()->standardIcon(QStyle::SP_ArrowForward));
    cmdOk->setIcon(style()->standardIcon(QStyle::SP_DialogApplyButton));
    cmdCancelar->setIcon(style()->standardIcon(QStyle::SP_DialogCancelButton));
    cmdSair->setIcon(style()->standardIcon(QStyle::SP_DialogCloseButton));

    auto* linha = new QHBoxLayout;
    for (QPushButton* b : {cmdInclusão, cmdAlteração, cmdExclusão, cmdLocaliza, cmdMovimenta_Registro[1],
                           cmdMovimenta_Registro[2]})
        linha->addWidget(b);
    linha->addSpacing(24);
    for (QPushButton* b : {cmdOk, cmdCancelar, cmdSair}) linha->addWidget(b);
    coluna->addLayout(linha);

    QObject::connect(cmdInclusão, &QPushButton::clicked, this, [this] { cmdInclusão_Click(); });
    QObject::connect(cmdAlteração, &QPushButton::clicked, this, [this] { cmdAlteração_Click(); });
    QObject::connect(cmdExclusão, &QPushButton::clicked, this, [this] { cmdExclusão_Click(); });
    QObject::connect(cmdLocaliza, &QPushButton::clicked, this, [this] { cmdLocaliza_Click(); });
    QObject::connect(cmdMovimenta_Registro[1], &QPushButton::clicked, this,
                     [this] { cmdMovimenta_Registro_Click(1); });
    QObject::connect(cmdMovimenta_Registro[2], &QPushButton::clicked, this,
                     [this] { cmdMovimenta_Registro_Click(2); });
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdCancelar, &QPushButton::clicked, this, [this] { cmdCancelar_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });

    // The title bar's close box leaves as cmdSair does, and not in the middle of an edit.
    Form_QueryUnload = [this] {
        if (!cmdSair->isEnabled()) return false;
        Em_Cadastro = false;
        return true;
    };
}

void Formulário_Cadastro::Passos_Comuns_Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    Define_CausesValidation(cmdCancelar, false);
    setWindowIcon(QIcon());
    setWindowTitle(" ");
    cmdOk->setEnabled(false);
    cmdCancelar->setEnabled(false);
    Em_Cadastro = true;
    Comando_SQL.clear();
    if (Verifica_Direitos) Verifica_Permissão_De_Acesso();
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Exibição_Liberada = true;
    Abre_Tabelas();
    Exibir_Campos();
}

QString Formulário_Cadastro::Legenda_Registro() const {
    const int código = Tabela.Fields(Campo_Código).Value().toInt();
    static const QLocale brasil(QLocale::Portuguese, QLocale::Brazil);
    const QString número = código == 0 ? QString() : brasil.toString(código);
    const bool exclusão = Operação == "Exclusão" && !Frase_Exclusão.isEmpty();
    return Operação + (exclusão ? Frase_Exclusão : Frase_Registro) + número;
}

void Formulário_Cadastro::Exibir_Campos() {
    Rotina r(this, "Exibir_Campos");
    Finaliza_Transação();
    Operação = "Consulta";
    if (!Exibição_Liberada) return Limpar_Campos(this);
    if (!Tabela_Dynaset.Source.isEmpty()) Localiza_Registro_Dynaset();
    if (Tabela.Eof() || Tabela.Bof()) {
        Limpar_Campos(this);
        Auxílio_Novo_Cadastro(this, Palavra_Registro, Palavra_Masculina);
        return;
    }
    Limpar_Campos(this, Campos_Sempre_Mostrados());
    Mostra_Registro();
    Linha_Mostrada = Linha_Atual();
    QString legenda = Legenda_Registro();
    if (!Tabela_Dynaset.Source.isEmpty()) {
        const int onde = Tabela_Dynaset.Source.indexOf("Where");
        legenda += " | Mostrando apenas " + Tabela_Dynaset.Source.mid(std::max(0, onde + 6), 50);
    }
    setWindowTitle(legenda);
    update();
}

QVariantList Formulário_Cadastro::Linha_Atual() {
    QVariantList linha;
    for (int i = 0; i < Tabela.Fields_Count(); ++i) linha << Tabela.Fields(i).Value();
    return linha;
}

bool Formulário_Cadastro::Recusa_Sem_Direito(bool pode) {
    if (!Verifica_Direitos || pode) return false;
    Exibe_Mensagem(4);
    return true;
}

bool Formulário_Cadastro::Trava_Registro_Mostrado(int mensagem_tabela_vazia) {
    if (Lastrec(Tabela.Source, Conexão) == 0) {
        Exibe_Mensagem(mensagem_tabela_vazia);
        return false;
    }
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    if (!Travou) return false;
    // The lock reads the row again: the fields show it as stored before anything is done with it.
    Registro_Mudou = Mostra_Registro_Gravado();
    return true;
}

bool Formulário_Cadastro::Mostra_Registro_Gravado() {
    if (Tabela.Eof() || Tabela.Bof()) return false;
    const QVariantList agora = Linha_Atual();
    const bool mudou = agora != Linha_Mostrada;
    Limpar_Campos(this);
    Mostra_Registro();
    Linha_Mostrada = agora;
    return mudou;
}

void Formulário_Cadastro::cmdInclusão_Click() {
    Rotina r(this, "cmdInclusão_Click");
    if (Recusa_Sem_Direito(Pode_Incluir)) return;
    Inicia_Transação();
    Operação = "Inclusão";
    setWindowTitle(Operação + Frase_Inclusão);
    Limpar_Campos(this);
    Habilitar_Comandos(this);
    Habilita_Botões_Próprios(false);
    Padrões_Inclusão();
    Primeiro_Campo()->setFocus();
}

void Formulário_Cadastro::cmdAlteração_Click() {
    Rotina r(this, "cmdAlteração_Click");
    if (Recusa_Sem_Direito(Pode_Alterar)) return;
    if (!Guarda_Alteração() || !Trava_Registro_Mostrado(22)) return;
    // If another workstation saved the row since it was shown, the user edits what is stored now, and
    // is told so.
    if (Registro_Mudou)
        Plataforma_Atual().Caixa_Mensagem(Tradução_Erro_Fixa(3197), Título_Programa, Ícone_Caixa::Informação,
                                          Botões_Caixa::Ok);
    Operação = "Alteração";
    setWindowTitle(Legenda_Registro());
    Habilitar_Comandos(this);
    Habilita_Botões_Próprios(false);
    Primeiro_Campo()->setFocus();
}

void Formulário_Cadastro::cmdExclusão_Click() {
    Rotina r(this, "cmdExclusão_Click");
    if (Recusa_Sem_Direito(Pode_Excluir)) return;
    if (!Guarda_Exclusão() || !Trava_Registro_Mostrado(23)) return;
    Operação = "Exclusão";
    setWindowTitle(Legenda_Registro());
    if (!Confirma(this)) {
        // Stepping off the row and back drops its pending edit; Exibir_Campos ends the transaction.
        Tabela.MoveNext();
        Tabela.MovePrevious();
    } else {
        Grava(Tabela, true);
        Finaliza_Transação();
        Reduz_Cache_Lastrec();
        if (!Tabela_Dynaset.Source.isEmpty()) {
            Tabela_Dynaset.Requery();
            if (!(Tabela_Dynaset.Bof() && Tabela_Dynaset.Eof())) {
                Tabela_Dynaset.MoveNext();
                if (Tabela_Dynaset.Eof()) Tabela_Dynaset.MovePrevious();
                if (Oculta_Após_Excluir_Único && Linhas_Localizadas == 1) Exibição_Liberada = false;
            } else {
                Linhas_Localizadas = 0;
            }
        } else {
            Tabela.MoveNext();
            if (Tabela.Eof()) Tabela.MovePrevious();
        }
    }
    Exibir_Campos();
}

void Formulário_Cadastro::Transforma_Campos() {
    Transformar_Campos(this);
}

void Formulário_Cadastro::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    Transforma_Campos();
    if (Confirma(this)) {
        const int perdas = Perdas_De_Conexão();
        if (Operação == "Inclusão") Tabela.AddNew();
        Grava_Campos();
        Grava(Tabela, false);
        if (Perdas_De_Conexão() != perdas && Registro_Duplicado) {
            // The server's connection was lost during the save: the server undid it and the user was told.
            // There is nothing to commit; the window keeps what was typed, as after any refused write.
            Registro_Duplicado = false;
            Prepara_Nova_Tentativa();
            return;
        }
        Finaliza_Transação();
        if (Gravação_Recusada) {
            Prepara_Nova_Tentativa();
            return;
        }
        if (Chave_Digitada) {
            if (Registro_Duplicado) Abre_Tabelas();
            Registro_Duplicado = false;
        }
    }
    // A confirmed or refused write ends the locate filter.
    Encerra_Resultado_Localizado();
    Exibir_Campos();
    Habilitar_Comandos(this);
    Habilita_Botões_Próprios(true);
}

void Formulário_Cadastro::Prepara_Nova_Tentativa() {
    Rotina r(this, "Prepara_Nova_Tentativa");
    // The store refused the write (a full disk, a read-only database, a lost server connection) and the user
    // has been told. What was typed stays on the screen in the same operation, so that OK tries again once
    // the disk has room or the server is back; nothing is shown as saved. The slot may stand on the new row
    // that the roll-back took away: the tables are opened again. An alteration takes its row's lock again, as
    // it did at its start.
    const QString operação = Operação;
    Tabela.CancelUpdate();
    if (operação == "Inclusão") Abre_Tabelas();
    Inicia_Transação();
    Operação = operação;
    if (operação != "Inclusão") {
        Trava(Tabela, Conexão, false);
        if (!Travou) {
            // Another user took the row meanwhile: the edit ends, showing the row as stored.
            Exibir_Campos();
            Habilitar_Comandos(this);
            Habilita_Botões_Próprios(true);
        }
    }
}

void Formulário_Cadastro::cmdCancelar_Click() {
    Rotina r(this, "cmdCancelar_Click");
    Define_CausesValidation(cmdCancelar, false);
    Habilitar_Comandos(this);
    if (Lastrec(Tabela.Source, Conexão) != 0 && Operação != "Inclusão") {
        if (!Tabela.Eof()) {
            Tabela.MoveNext();
            Tabela.MovePrevious();
        }
        Exibir_Campos();
    }
    Finaliza_Transação();
    Operação = "Consulta";
    Habilita_Botões_Próprios(true);
    cmdAlteração->setFocus();
}

void Formulário_Cadastro::cmdLocaliza_Click() {
    Rotina r(this, "cmdLocaliza_Click");
    if (Localiza_Verifica_Direito && Recusa_Sem_Direito(Pode_Consultar)) return;
    Abre_Tabela_Pesquisa(Tabela.Source);
    {
        frmLocaliza_Informação localiza(this);
        Plataforma_Atual().Mostra_Modal(&localiza);
    }
    Exibir_Campos();
}

void Formulário_Cadastro::cmdMovimenta_Registro_Click(int Index) {
    Rotina r(this, "cmdMovimenta_Registro_Click");
    if (Recusa_Sem_Direito(Pode_Consultar)) return;
    if (!Exibição_Liberada || Tabela_Dynaset.Source.isEmpty())
        Movimenta_Registro(Tabela, Index);
    else
        Movimenta_Registro(Tabela_Dynaset, Index);
    Exibir_Campos();
}

void Formulário_Cadastro::cmdSair_Click() {
    Rotina r(this, "cmdSair_Click");
    Em_Cadastro = false;
    accept();
}

void Formulário_Cadastro::Campo_Obrigatório(QWidget* campo, bool último) {
    Instala_Validate(campo, [this, campo, último](bool& Cancel) {
        Rotina r(this, campo->objectName() + "_Validate");
        if (cmdCancelar->isDown()) {
            Cancel = true;
            return;
        }
        // Nothing is written in "Consulta": leaving an empty field of a blank window needs no warning.
        if (Operação != "Inclusão" && Operação != "Alteração") return;
        QString texto;
        if (auto* caixa = qobject_cast<QLineEdit*>(campo))
            texto = caixa->text();
        else if (auto* longa = qobject_cast<QPlainTextEdit*>(campo))
            texto = longa->toPlainText();
        else if (auto* combo = qobject_cast<QComboBox*>(campo))
            texto = combo->currentText();
        if (texto.trimmed().isEmpty()) {
            Exibe_Mensagem(10);
            Cancel = true;
            return;
        }
        if (último) Habilitar_Botão_OK(this);
    });
}
