#pragma once
// The life that every register window shares: one record of one table on screen, the walk, the locate
// dialog, and inclusion, alteration and exclusion through one pair of OK and Cancel buttons, with the
// mode in Operação ("Consulta", "Inclusão", "Alteração", "Exclusão").
//
// A register derives from Formulário_Cadastro, places its fields in Área_Campos and supplies what is
// its own: the tables, the fields shown and written, its defaults and guards. The buttons run the
// common steps in a fixed order and call those hooks at their places. The shared routines below find
// the buttons by name, so they also serve a window built another way.
#include <QString>
#include <QVariant>
#include <array>

#include "forms/Formulário.h"

class QPushButton;
class Registros;

// "Confirma INCLUSÃO?"; a Yes to an exclusion plays the explosion on cmdExclusão.
bool Confirma(QWidget* Formulário);
// Flips the command buttons; called once going into an edit and once coming out.
void Habilitar_Comandos(QWidget* Formulário);
// Empties text boxes, drop-down lists, data labels, date and number boxes and check boxes.
void Limpar_Campos(QWidget* Formulário);
// The same, leaving alone the fields in `exceto`: fields about to be filled again need no clearing first.
void Limpar_Campos(QWidget* Formulário, const QList<QWidget*>& exceto);
void Habilitar_Botão_OK(QWidget* Formulário);
// Índice 1 walks back, 2 forward; on the locate result while one is active.
void Movimenta_Registro(Registros& Tabela_Movimentar, int Índice);
// Brings Tabela to the row that the locate result points at.
void Localiza_Registro_Dynaset();

class Formulário_Cadastro : public Formulário {
  public:
    Formulário_Cadastro(const QString& nome, QWidget* pai);

    QPushButton* cmdInclusão;
    QPushButton* cmdAlteração;
    QPushButton* cmdExclusão;
    QPushButton* cmdLocaliza;
    std::array<QPushButton*, 3> cmdMovimenta_Registro{};  // 1 "Anterior", 2 "Próximo"
    QPushButton* cmdOk;
    QPushButton* cmdCancelar;
    QPushButton* cmdSair;

    virtual void Abre_Tabelas() = 0;
    void Exibir_Campos();

    // The buttons' steps; a window whose steps differ overrides them, and its buttons run its own.
    virtual void cmdInclusão_Click();
    virtual void cmdAlteração_Click();
    virtual void cmdExclusão_Click();
    virtual void cmdOk_Click();
    virtual void cmdCancelar_Click();
    virtual void cmdLocaliza_Click();
    virtual void cmdMovimenta_Registro_Click(int Index);
    virtual void cmdSair_Click();

  protected:
    // The fields from the current row of Tabela, texts trimmed.
    virtual void Mostra_Registro() = 0;
    // The fields that Mostra_Registro always fills, whatever the row: showing a row does not clear them
    // first, as clearing a text box costs as much as filling it and nobody sees the blank in between.
    virtual QList<QWidget*> Campos_Sempre_Mostrados() { return {}; }
    // The fields into the row of Tabela (AddNew already done for an inclusion), with the register's rules.
    virtual void Grava_Campos() = 0;
    virtual QWidget* Primeiro_Campo() = 0;
    virtual void Padrões_Inclusão() {}
    // Extra guards of the register; false stops the button.
    virtual bool Guarda_Alteração() { return true; }
    virtual bool Guarda_Exclusão() { return true; }
    // Transformar_Campos on the window; a register with a field kept as typed sets it aside around it.
    virtual void Transforma_Campos();
    // The register's own buttons, enabled while the window is in "Consulta".
    virtual void Habilita_Botões_Próprios(bool habilitados) { (void)habilitados; }

    // Steps 1 to 10 of every register's load; the register's own steps follow in its constructor.
    void Passos_Comuns_Form_Load();
    // The mandatory-field check: message 10 on an empty text; the last field enables cmdOk.
    void Campo_Obrigatório(QWidget* campo, bool último);
    // A right missing: message 4, and the button stops. A missing right never disables a button.
    bool Recusa_Sem_Direito(bool pode);
    // The shown row locked inside a new transaction and shown again as it is stored; false, after its
    // message, on an empty table or a row that another user holds.
    bool Trava_Registro_Mostrado(int mensagem_tabela_vazia);
    // Fills the fields anew from the current row of Tabela, so that an alteration or an exclusion never
    // starts from what the fields held (the text of a cancelled inclusion, an older version of the row).
    // True when the row differs from the one the window showed last: another workstation saved it.
    bool Mostra_Registro_Gravado();
    // "Consulta da Pergunta 1.234".
    QString Legenda_Registro() const;
    // The whole current row of Tabela, as it was read.
    static QVariantList Linha_Atual();

    QWidget* Área_Campos;
    QString Campo_Código;      // "Código_Pergunta"
    QString Frase_Registro;    // " da Pergunta "
    QString Frase_Exclusão;    // the caption's phrase during an exclusion, when it differs
    QString Frase_Inclusão;    // " de Perguntas"
    QString Palavra_Registro;  // "Pergunta", for the hint of an empty table
    bool Palavra_Masculina = false;
    bool Verifica_Direitos = true;           // false: no right is tested at the buttons
    bool Localiza_Verifica_Direito = true;   // false: the locate button is open to everyone
    bool Chave_Digitada = false;             // a key that users type: a duplicate reopens the tables
    bool Oculta_Após_Excluir_Único = false;  // a deleted single locate hit leaves the window blank

    // Whether the row locked by the last Trava_Registro_Mostrado differed from the one shown before.
    bool Registro_Mudou = false;

  private:
    // After a write that the store refused: the same operation again, with what was typed still on screen.
    void Prepara_Nova_Tentativa();
    // The row as it stood when the window showed it: an alteration compares it with the row as
    // committed once the lock is held, so that another workstation's save is not undone unseen.
    QVariantList Linha_Mostrada;
};
