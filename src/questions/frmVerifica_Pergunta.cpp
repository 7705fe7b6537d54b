#include "questions/frmVerifica_Pergunta.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"
#include "users/Permissões.h"

frmVerifica_Pergunta::frmVerifica_Pergunta(QWidget* pai) : Janela_Pergunta("frmVerifica_Pergunta", pai) {
    Tópico_Ajuda = "Verifica Pergunta";
    Campo_Código = "Código_Pergunta";
    Frase_Registro = " da Pergunta ";
    Frase_Inclusão = " de Perguntas";
    Palavra_Registro = "Pergunta";
    Palavra_Masculina = false;
    Verifica_Direitos = false;  // the rights are read once, at the load
    Oculta_Após_Excluir_Único = true;

    // Questions are not added or looked up here: the walks bring them.
    for (QPushButton* b : {cmdInclusão, cmdLocaliza, cmdMovimenta_Registro[1], cmdMovimenta_Registro[2]})
        b->hide();

    auto* coluna = new QVBoxLayout(Área_Campos);
    coluna->setContentsMargins(0, 0, 0, 0);
    fraVerifica_Pergunta = new QGroupBox(Área_Campos);
    fraVerifica_Pergunta->setObjectName("fraVerifica_Pergunta");
    coluna->addWidget(fraVerifica_Pergunta);
    Monta_Campos_Pergunta(fraVerifica_Pergunta);

    cmdVerifica_Duplicidade =
        Botão("cmdVerifica_Duplicidade", "Verifica &Duplicidade das Perguntas Cadastradas");
    cmdVerifica_Coerência = Botão("cmdVerifica_Coerência", "&Verifica Coerência das Perguntas Cadastradas");
    for (QPushButton* b : {cmdVerifica_Duplicidade, cmdVerifica_Coerência}) {
        b->setMinimumHeight(34);
        b->setIcon(QIcon(Caminho_Ícone("Processamento.Ico")));
    }
    auto* verificações = new QHBoxLayout;
    verificações->addWidget(cmdVerifica_Duplicidade);
    verificações->addWidget(cmdVerifica_Coerência);
    coluna->addLayout(verificações);
    QObject::connect(cmdVerifica_Duplicidade, &QPushButton::clicked, this,
                     [this] { cmdVerifica_Duplicidade_Click(); });
    QObject::connect(cmdVerifica_Coerência, &QPushButton::clicked, this,
                     [this] { cmdVerifica_Coerência_Click(); });

    pgbBarra_De_Progresso = new QProgressBar(Área_Campos);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    pgbBarra_De_Progresso->setTextVisible(false);
    pgbBarra_De_Progresso->setMaximumHeight(10);
    coluna->addWidget(pgbBarra_De_Progresso);

    Campo_Obrigatório(txtPergunta, false);
    Campo_Obrigatório(txtResposta_Correta, false);
    Campo_Obrigatório(txtResposta_Incorreta_1, false);
    Campo_Obrigatório(txtResposta_Incorreta_2, true);
    Campo_Obrigatório(txtResposta_Incorreta_3, false);
    setTabOrder(txtPergunta, txtResposta_Correta);
    setTabOrder(txtResposta_Correta, txtResposta_Incorreta_1);
    setTabOrder(txtResposta_Incorreta_1, txtResposta_Incorreta_2);
    setTabOrder(txtResposta_Incorreta_2, txtResposta_Incorreta_3);
    setTabOrder(txtResposta_Incorreta_3, cmdOk);

    Form_Load();
}

void frmVerifica_Pergunta::Form_Load() {
    Rotina r(this, "Form_Load");
    setWindowIcon(QIcon());
    setWindowTitle(" ");
    for (QPushButton* b :
         {cmdOk, cmdCancelar, cmdAlteração, cmdExclusão, cmdVerifica_Duplicidade, cmdVerifica_Coerência})
        b->setEnabled(false);
    Nome_Janela = objectName();
    Define_CausesValidation(cmdCancelar, false);
    Comando_SQL.clear();
    Em_Cadastro = true;
    Verifica_Permissão_De_Acesso();
    if (Sem_Direito_Algum()) return;
    Finaliza_Transação();
    Encerra_Resultado_Localizado();
    Exibição_Liberada = true;
    Abre_Tabelas();
    // No question is shown until a walk starts.
    cmdVerifica_Duplicidade->setEnabled(true);
    cmdVerifica_Coerência->setEnabled(true);
}

void frmVerifica_Pergunta::Abre_Tabelas() {
    Rotina r(this, "Abre_Tabelas");
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.MoveFirst();
}

void frmVerifica_Pergunta::Mostra_Registro() {
    Mostra_Campos_Pergunta();
}

// The kind, the comparison mark and the wording of the last export stay as they are.
void frmVerifica_Pergunta::Grava_Campos() {
    Grava_Campos_Pergunta();
    Tabela.Fields("Já_Verificada").Set_Value(true);
}

void frmVerifica_Pergunta::Habilita_Repouso(bool repouso) {
    for (QPushButton* b :
         {cmdAlteração, cmdExclusão, cmdSair, cmdVerifica_Duplicidade, cmdVerifica_Coerência})
        b->setEnabled(repouso);
    cmdCancelar->setEnabled(!repouso);
}

void frmVerifica_Pergunta::cmdVerifica_Duplicidade_Click() {
    Rotina r(this, "cmdVerifica_Duplicidade_Click");
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxJá_Comparada");
    Verificação_Interrompida = false;
    Habilita_Repouso(false);
    // The whole walk is one transaction: a break commits the rows done so far.
    Inicia_Transação();
    Continua_Comparação = true;
    Em_Comparação = true;
    while (Continua_Comparação) {
        // The marked rows sort last: the first row of the index is the first not yet compared.
        if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.Seek(0, Tipo_Busca::Primeiro_Igual);
        if (Tabela.Eof()) break;
        Compara_Questão_Atual();
        Plataforma_Atual().Processa_Eventos_Da_Caminhada();
        if (Verificação_Interrompida) break;  // cmdCancelar_Click has ended the transaction
    }
    Em_Comparação = false;
    Desiste_Da_Espera = false;
    if (Verificação_Interrompida) return;
    Encerra_Resultado_Localizado();
    Finaliza_Transação();
    cmdSair_Click();
}

void frmVerifica_Pergunta::Compara_Questão_Atual() {
    // A row held by another workstation is waited for; the window answers meanwhile, and Cancelar
    // gives the wait up.
    Trava(Tabela, Conexão, true);
    if (Verificação_Interrompida || !Travou) {
        Finaliza_Transação();
        return;
    }
    const QString resposta = Tabela.Fields("Resposta_Correta").Value().toString();
    const QString onde = " Where Resposta_Correta = " + Valor_Texto_SQL(resposta);
    Comando_SQL = "Select * From tblPergunta" + onde;
    Abre_Tabela_Dynaset(Comando_SQL, Conexão.ConnectionString);
    Quantidade_Mesma_Resposta = Lastrec("tblPergunta" + onde, Conexão);
    if (Quantidade_Mesma_Resposta <= 1) {
        Trava(Tabela, Conexão, true);
        Tabela.Fields("Já_Comparada").Set_Value(true);
        Grava(Tabela, false);
        return;
    }

    Tabela_Dynaset.MoveFirst();
    const QString pergunta = Tabela.Fields("Pergunta").Value().toString();
    const QString palavra =
        Plataforma_Atual()
            .Caixa_Entrada("Informe a palavra a ser pesquisada para a pergunta: \r\r" + pergunta,
                           Título_Programa, QString())
            .toLower();
    if (!pergunta.toLower().contains(palavra)) {
        Exibe_Mensagem(104);  // nothing written: the same question comes up again
        return;
    }

    const int código = Tabela.Fields("Código_Pergunta").Value().toInt();
    bool resolvida = false;
    while (!Tabela_Dynaset.Eof() && !resolvida) {
        const QString outra = Tabela_Dynaset.Fields("Pergunta").Value().toString();
        if (Tabela_Dynaset.Fields("Código_Pergunta").Value().toInt() != código &&
            outra.toLower().contains(palavra)) {
            const Resposta_Caixa decisão = Plataforma_Atual().Caixa_Mensagem(
                pergunta + "\r\ré diferente de\r\r" + outra, Título_Programa, Ícone_Caixa::Pergunta,
                Botões_Caixa::Sim_Não_Cancelar);
            if (decisão == Resposta_Caixa::Não) {
                // The same question twice: the one being checked goes, never the one it was compared with.
                Grava(Tabela, true);
                resolvida = true;
            } else if (decisão == Resposta_Caixa::Cancelar) {
                resolvida = true;
                Continua_Comparação = false;
            }
        }
        if (!resolvida) Tabela_Dynaset.MoveNext();
    }
    if (!resolvida) {
        Tabela.Fields("Já_Comparada").Set_Value(true);
        Grava(Tabela, false);
    }
}

void frmVerifica_Pergunta::cmdVerifica_Coerência_Click() {
    Rotina r(this, "cmdVerifica_Coerência_Click");
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxJá_Verificada");
    Verificação_Interrompida = false;
    Comando_SQL.clear();
    Operação = "Coerência";
    Habilita_Repouso(false);
    Contador_Verificação = 0;
    if (Lastrec(Tabela.Source, Conexão) != 0) Tabela.Seek(0, Tipo_Busca::Primeiro_Igual);
    Início_Progresso = Plataforma_Atual().Agora();
    while (!Tabela.Eof()) {
        ++Contador_Verificação;
        Barra_de_Progresso(1, Lastrec(Tabela.Source, Conexão), Contador_Verificação, this);
        if (!Tabela.Fields("Já_Verificada").Value().toBool()) {
            // The walk waits here for the reader; cmdOk_Click calls it again.
            Exibir_Campos();
            cmdAlteração->setEnabled(true);
            cmdExclusão->setEnabled(true);
            cmdAlteração_Click();
            return;
        }
        Tabela.MoveNext();
        Plataforma_Atual().Processa_Eventos_Da_Caminhada();
        if (Verificação_Interrompida) return;
    }
    cmdSair_Click();  // every question is verified
}

void frmVerifica_Pergunta::cmdAlteração_Click() {
    Rotina r(this, "cmdAlteração_Click");
    if (Lastrec(Tabela.Source, Conexão) == 0) {
        Exibe_Mensagem(22);
        return;
    }
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    if (!Travou) return;
    Mostra_Registro_Gravado();
    Operação = "Alteração";
    setWindowTitle(Legenda_Registro());
    for (QPushButton* b :
         {cmdAlteração, cmdExclusão, cmdSair, cmdVerifica_Duplicidade, cmdVerifica_Coerência})
        b->setEnabled(false);
    cmdCancelar->setEnabled(true);
    cmdOk->setEnabled(true);
    txtPergunta->setFocus();
}

void frmVerifica_Pergunta::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    if (!cmdOk->isEnabled()) return;
    cmdOk->setEnabled(false);
    Operação = "Coerência";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    if (!Travou) {
        // The row went to another workstation meanwhile: the user may try again or cancel.
        cmdOk->setEnabled(true);
        return;
    }
    if (Lastrec(Tabela.Source, Conexão) == 0) {
        Exibe_Mensagem(22);
        return;
    }
    Transforma_Campos();
    // It is the reading that counts: an unchanged question is marked all the same.
    if (Confirma(this)) {
        Grava_Campos();
        Grava(Tabela, false);
        Tabela.MoveNext();
        if (Tabela.Eof()) {
            Tabela.MovePrevious();
            Finaliza_Transação();
            cmdSair_Click();
            return;
        }
        ++Contador_Verificação;
        Barra_de_Progresso(1, Lastrec(Tabela.Source, Conexão), Contador_Verificação, this);
        Finaliza_Transação();
    }
    Encerra_Resultado_Localizado();
    Exibir_Campos();
    Habilita_Repouso(true);
    Operação.clear();
    cmdVerifica_Coerência_Click();  // a No brings the same question straight back
}

void frmVerifica_Pergunta::cmdCancelar_Click() {
    Rotina r(this, "cmdCancelar_Click");
    Verificação_Interrompida = true;
    if (Em_Comparação) Desiste_Da_Espera = true;
    Define_CausesValidation(cmdCancelar, false);
    Habilita_Repouso(true);
    cmdOk->setEnabled(false);
    // The duplicate walk's pairs are its own work, not a filter on the rows shown.
    Encerra_Resultado_Localizado();
    // A question that the duplicate walk has just removed is not shown: the neighbour is.
    if (!Tabela.Eof() && !Tabela.Bof()) {
        Tabela.MoveNext();
        Tabela.MovePrevious();
    }
    Exibir_Campos();
    Finaliza_Transação();
    Operação = "Consulta";
    cmdAlteração->setFocus();
}
