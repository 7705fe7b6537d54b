#pragma once
// The control kinds that the register windows need beyond Qt's own: the check that runs when the focus
// is about to leave a control (Validate, skipped when the control taking the focus does not cause
// validation), the date box, the number box, the multi-line text box with a maximum length, and the
// flex grid with its fixed heading row.
#include <QColor>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QVariant>
#include <functional>

// Cancel set to true keeps the focus in the control.
using Tratador_Validate = std::function<void(bool& Cancel)>;
void Instala_Validate(QWidget* controle, Tratador_Validate tratador);
// A control that takes the focus without running the Validate of the one that loses it (cmdCancelar).
void Define_CausesValidation(QWidget* controle, bool causa);
bool CausesValidation(const QWidget* controle);

// The password box: eight characters at most, shown as dots, in a fixed-width font.
QLineEdit* Caixa_Senha(QWidget* pai);

// Empty while no date is given; Value is then a null QVariant, otherwise a QDate.
class Caixa_Data : public QLineEdit {
  public:
    explicit Caixa_Data(QWidget* pai = nullptr);
    QVariant Value() const;
    void Set_Value(const QVariant& valor);
    QString Text() const;  // as shown, "dd/mm/aaaa"; empty while nothing is typed
    bool Vazia() const;
};

// A number between two limits; a value outside them is refused and the box keeps what it had.
class Caixa_Número : public QLineEdit {
  public:
    explicit Caixa_Número(QWidget* pai = nullptr);
    double Value() const;
    void Set_Value(double valor);
    double Mínimo = -1e15;
    double Máximo = 1e15;
    int Casas_Decimais = 0;
};

// A text box of several lines whose text never passes MaxLength; Enter goes to the window, which moves to
// the next control.
class Caixa_Texto_Multilinha : public QPlainTextEdit {
  public:
    explicit Caixa_Texto_Multilinha(QWidget* pai = nullptr);
    int MaxLength = 0;  // 0: no limit
    QString Text() const { return toPlainText(); }
    void Set_Text(const QString& texto);

  protected:
    void keyPressEvent(QKeyEvent* evento) override;
};

// Row 0 is the heading row; the others hold data. Row and Col are the current cell, which the cell
// routines work on.
class Grade_Flex : public QTableWidget {
  public:
    explicit Grade_Flex(QWidget* pai = nullptr);
    int Rows() const { return rowCount(); }
    void Set_Rows(int linhas);
    int Cols() const { return columnCount(); }
    void Set_Cols(int colunas);
    int Row() const { return Linha_Atual; }
    void Set_Row(int linha) { Linha_Atual = linha; }
    int Col() const { return Coluna_Atual; }
    void Set_Col(int coluna) { Coluna_Atual = coluna; }
    int RowSel() const { return Linha_Selecionada; }
    void Set_RowSel(int linha) { Linha_Selecionada = linha; }
    int ColSel() const { return Coluna_Selecionada; }
    void Set_ColSel(int coluna) { Coluna_Selecionada = coluna; }
    QString TextMatrix(int linha, int coluna) const;
    void Set_TextMatrix(int linha, int coluna, const QString& texto);
    // "<Título 1|<Título 2": the heading texts; a leading "<" aligns the column left.
    void Set_FormatString(const QString& formato);
    QColor CellBackColor() const;
    void Set_CellBackColor(const QColor& cor);
    // The colour of the current cell's text.
    QColor CellForeColor() const;
    void Set_CellForeColor(const QColor& cor);
    // Empties the text of every cell, headings included, and the colours.
    void Clear();

    // A click on a data row, and Enter on the grid, with Row set to that row.
    std::function<void()> Ao_Clicar;

  protected:
    void keyPressEvent(QKeyEvent* evento) override;

  private:
    QTableWidgetItem* Célula(int linha, int coluna);
    int Linha_Atual = 1;
    int Coluna_Atual = 0;
    int Linha_Selecionada = 1;
    int Coluna_Selecionada = 0;
};
