#pragma once
// The one search window of the system. It reads the fields of the table open in Tabela_Pesquisa, lets
// the user pick a field, an operator and a value, builds a Select, shows the rows 14 at a time and
// leaves the chosen record in Tabela_Dynaset and Código_Localizado.
#include <QString>
#include <QVariant>
#include <array>

#include "forms/Formulário.h"

class Caixa_Data;
class Caixa_Número;
class Grade_Flex;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

inline int Código_Escolhido = 0;
// The rows that Encontrou_Informação prepares for the dialog; a code 0 is an unused entry.
inline std::array<QString, 15> Lista_Texto;
inline std::array<int, 15> Lista_Código{};
inline bool Em_Lista_Encontrou = false;
inline bool Em_Encontrou = false;

// Paints every second data row of a grid, leaving column 0 as it is.
void Monta_Flex_Grid(Grade_Flex* Grade);

// Turns what was typed in a code box into a record of a small table: a code is sought as it is, a
// beginning of a name lists the names that start so, and otherwise any name that holds it; several
// matches are offered in the dialog. The label shows the name found, or that nothing was found.
bool Encontrou_Informação(QString& Informação, QLineEdit* Caixa, const QString& Nome_Tabela,
                          const QString& Índice, const QString& Nome_Campo, QLabel* Rótulo, bool Falso);
// On entering a code box during an inclusion: an empty box and a hint in its label.
void Facilita_Preenchimento(QWidget* Formulário, QLineEdit* Caixa, QLabel* Rótulo);

class frmLocaliza_Informação : public Formulário {
  public:
    explicit frmLocaliza_Informação(QWidget* pai = nullptr);

    QGroupBox* fraLocaliza_Informação;
    QGroupBox* Frame2;
    QComboBox* cboCampo_a_Ser_Mostrado;
    QComboBox* cboCampo_a_Ser_Mostrado_2;
    QGroupBox* Frame1;
    QComboBox* cboCampo_de_Pesquisa;
    QGroupBox* fraCondição;
    std::array<QPushButton*, 7> optOpção{};
    QGroupBox* fraGrupo;
    QLineEdit* txtConteúdo;
    Caixa_Número* nbConteúdo;
    Caixa_Data* dbConteúdo;
    std::array<QRadioButton*, 2> optConteúdo{};
    QLabel* Label2;
    QLabel* lblPesquisa;
    QPushButton* cmdOk;
    QPushButton* cmdPróximos_14;
    QPushButton* cmdÚltimos_14;
    QPushButton* cmdSair;
    Grade_Flex* flxLocaliza;

    void cboCampo_de_Pesquisa_Click();
    void optOpção_Click(int Index);
    void cmdOk_Click();
    void cmdPróximos_14_Click();
    void cmdÚltimos_14_Click();
    void cmdPróximos_14_LostFocus();
    void cmdÚltimos_14_LostFocus();
    void flxLocaliza_Click();
    void cmdSair_Click();

    QString Campo_Pesquisa;
    QString Campo_Mostrado_1;
    QString Campo_Mostrado_2;
    QString Operador;
    QVariant Conteúdo;
    QString Navegação;

  protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override;

  private:
    void Form_Load();
    void Títulos_Iniciais();
    void Desenha_Pesquisa();
    void Preenche_Linha(int linha);
    void Esvazia_Linhas(int colunas);
    int Classe_Campo(const QString& nome) const;
    int Linhas_na_Tela() const;
    bool Carregando = false;
};
