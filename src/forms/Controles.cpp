#include "forms/Controles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDate>
#include <QFontDatabase>
#include <QHash>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QPointer>
#include <QRegularExpressionValidator>

namespace {
// Watches every change of focus in the program. When the control that loses the focus has a Validate
// and the one that takes it causes validation, the check runs; a refusal puts the focus back and
// swallows the mouse click that caused the move, so a refused button is not pressed.
class Vigia_Validate : public QObject {
  public:
    Vigia_Validate() {
        QObject::connect(qApp, &QApplication::focusChanged, this,
                         [this](QWidget* antigo, QWidget* novo) { Mudou_Foco(antigo, novo); });
        qApp->installEventFilter(this);
    }
    QHash<const QWidget*, Tratador_Validate> Tratadores;

  protected:
    bool eventFilter(QObject* objeto, QEvent* evento) override {
        if (Recusado && objeto == Recusado.data()) {
            const auto tipo = evento->type();
            if (tipo == QEvent::MouseButtonPress || tipo == QEvent::MouseButtonDblClick) return true;
            if (tipo == QEvent::MouseButtonRelease) {
                Recusado = nullptr;
                return true;
            }
        }
        return false;
    }

  private:
    void Mudou_Foco(QWidget* antigo, QWidget* novo) {
        if (Validando || antigo == nullptr || novo == nullptr) return;
        // A message box shown by the check itself takes the focus to another window: not a leave.
        if (antigo->window() != novo->window()) return;
        const auto achado = Tratadores.constFind(antigo);
        if (achado == Tratadores.constEnd() || !CausesValidation(novo)) return;
        Validando = true;
        bool Cancel = false;
        QPointer<QWidget> guarda(antigo);
        achado.value()(Cancel);
        if (Cancel && guarda) {
            Recusado = novo;
            guarda->setFocus(Qt::OtherFocusReason);
        }
        Validando = false;
    }

    bool Validando = false;
    QPointer<QWidget> Recusado;
};

Vigia_Validate& Vigia() {
    static auto* vigia = new Vigia_Validate;
    return *vigia;
}

const QLocale Local_Brasil(QLocale::Portuguese, QLocale::Brazil);
}  // namespace

void Instala_Validate(QWidget* controle, Tratador_Validate tratador) {
    Vigia().Tratadores.insert(controle, std::move(tratador));
    QObject::connect(controle, &QObject::destroyed, [controle] { Vigia().Tratadores.remove(controle); });
}

void Define_CausesValidation(QWidget* controle, bool causa) {
    controle->setProperty("CausesValidation", causa);
}

bool CausesValidation(const QWidget* controle) {
    const QVariant valor = controle->property("CausesValidation");
    return !valor.isValid() || valor.toBool();
}

QLineEdit* Caixa_Senha(QWidget* pai) {
    auto* caixa = new QLineEdit(pai);
    caixa->setObjectName("txtSenha");
    QFont fixa("Courier New");
    fixa.setStyleHint(QFont::Monospace);
    caixa->setFont(fixa);
    caixa->setMaxLength(8);
    caixa->setEchoMode(QLineEdit::Password);
    return caixa;
}

Caixa_Data::Caixa_Data(QWidget* pai) : QLineEdit(pai) {
    setInputMask("99/99/9999;_");
    setMaximumWidth(fontMetrics().horizontalAdvance("00/00/00000") + 16);
}

QString Caixa_Data::Text() const {
    return Vazia() ? QString() : text();
}

bool Caixa_Data::Vazia() const {
    QString dígitos = text();
    dígitos.remove('/').remove('_').remove(' ');
    return dígitos.isEmpty();
}

QVariant Caixa_Data::Value() const {
    if (Vazia()) return {};
    const QDate data = QDate::fromString(text(), "dd/MM/yyyy");
    return data.isValid() ? QVariant(data) : QVariant();
}

void Caixa_Data::Set_Value(const QVariant& valor) {
    if (!valor.isValid() || valor.isNull() || valor.toString().isEmpty()) {
        clear();
        return;
    }
    setText(valor.toDate().toString("dd/MM/yyyy"));
}

Caixa_Número::Caixa_Número(QWidget* pai) : QLineEdit(pai) {
    setAlignment(Qt::AlignRight);
    setValidator(new QRegularExpressionValidator(QRegularExpression("-?[0-9.]*,?[0-9]*"), this));
    setText("0");
}

double Caixa_Número::Value() const {
    bool ok = false;
    const double valor = Local_Brasil.toDouble(text().trimmed(), &ok);
    return ok ? valor : 0.0;
}

void Caixa_Número::Set_Value(double valor) {
    if (valor < Mínimo || valor > Máximo) return;
    setText(Local_Brasil.toString(valor, 'f', Casas_Decimais));
}

Caixa_Texto_Multilinha::Caixa_Texto_Multilinha(QWidget* pai) : QPlainTextEdit(pai) {
    setTabChangesFocus(true);
    QObject::connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (MaxLength <= 0 || toPlainText().size() <= MaxLength) return;
        const QString cortado = toPlainText().left(MaxLength);
        const QSignalBlocker bloqueio(this);
        setPlainText(cortado);
        moveCursor(QTextCursor::End);
    });
}

void Caixa_Texto_Multilinha::Set_Text(const QString& texto) {
    // A window shows its record again at several steps of one action: the same text is not laid out anew,
    // and, as a text set to what it holds, changes nothing (cursor, scroll and change signals stay).
    const QString novo = MaxLength > 0 ? texto.left(MaxLength) : texto;
    if (novo == toPlainText()) return;
    setPlainText(novo);
}

void Caixa_Texto_Multilinha::keyPressEvent(QKeyEvent* evento) {
    if (evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter) {
        evento->ignore();
        return;
    }
    QPlainTextEdit::keyPressEvent(evento);
}

Grade_Flex::Grade_Flex(QWidget* pai) : QTableWidget(pai) {
    horizontalHeader()->hide();
    verticalHeader()->hide();
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    horizontalHeader()->setStretchLastSection(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QObject::connect(this, &QTableWidget::cellClicked, this, [this](int linha, int coluna) {
        if (linha == 0) return;
        Linha_Atual = Linha_Selecionada = linha;
        Coluna_Atual = coluna;
        if (Ao_Clicar) Ao_Clicar();
    });
}

void Grade_Flex::Set_Rows(int linhas) {
    setRowCount(linhas);
}

void Grade_Flex::Set_Cols(int colunas) {
    setColumnCount(colunas);
}

QTableWidgetItem* Grade_Flex::Célula(int linha, int coluna) {
    QTableWidgetItem* célula = item(linha, coluna);
    if (célula == nullptr) {
        célula = new QTableWidgetItem;
        if (linha == 0) {
            QFont negrito = font();
            negrito.setBold(true);
            célula->setFont(negrito);
            célula->setBackground(palette().button());
            célula->setFlags(Qt::ItemIsEnabled);
        }
        setItem(linha, coluna, célula);
    }
    return célula;
}

QString Grade_Flex::TextMatrix(int linha, int coluna) const {
    const QTableWidgetItem* célula = item(linha, coluna);
    return célula ? célula->text() : QString();
}

void Grade_Flex::Set_TextMatrix(int linha, int coluna, const QString& texto) {
    if (linha < 0 || linha >= rowCount() || coluna < 0 || coluna >= columnCount()) return;
    Célula(linha, coluna)->setText(texto);
}

void Grade_Flex::Set_FormatString(const QString& formato) {
    const QStringList colunas = formato.split('|');
    for (int c = 0; c < colunas.size() && c < columnCount(); ++c) {
        QString título = colunas[c];
        const Qt::Alignment alinhamento = título.startsWith('>')   ? Qt::AlignRight | Qt::AlignVCenter
                                          : título.startsWith('^') ? Qt::AlignCenter
                                                                   : Qt::AlignLeft | Qt::AlignVCenter;
        if (título.startsWith('<') || título.startsWith('>') || título.startsWith('^')) título.remove(0, 1);
        Célula(0, c)->setText(título);
        Célula(0, c)->setTextAlignment(alinhamento);
        setColumnWidth(c, fontMetrics().horizontalAdvance(título) + 12);
    }
}

QColor Grade_Flex::CellBackColor() const {
    const QTableWidgetItem* célula = item(Linha_Atual, Coluna_Atual);
    return célula ? célula->background().color() : QColor(Qt::white);
}

void Grade_Flex::Set_CellBackColor(const QColor& cor) {
    if (Linha_Atual <= 0 || Linha_Atual >= rowCount() || Coluna_Atual < 0 || Coluna_Atual >= columnCount())
        return;
    Célula(Linha_Atual, Coluna_Atual)->setBackground(cor);
}

QColor Grade_Flex::CellForeColor() const {
    const QTableWidgetItem* célula = item(Linha_Atual, Coluna_Atual);
    return célula && célula->foreground().style() != Qt::NoBrush ? célula->foreground().color()
                                                                 : palette().text().color();
}

void Grade_Flex::Set_CellForeColor(const QColor& cor) {
    if (Linha_Atual <= 0 || Linha_Atual >= rowCount() || Coluna_Atual < 0 || Coluna_Atual >= columnCount())
        return;
    Célula(Linha_Atual, Coluna_Atual)->setForeground(cor);
}

void Grade_Flex::Clear() {
    for (int l = 0; l < rowCount(); ++l)
        for (int c = 0; c < columnCount(); ++c)
            if (QTableWidgetItem* célula = item(l, c)) {
                célula->setText(QString());
                if (l > 0) {
                    célula->setBackground(QBrush());
                    célula->setForeground(QBrush());
                }
            }
}

void Grade_Flex::keyPressEvent(QKeyEvent* evento) {
    if ((evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter) && currentRow() > 0) {
        Linha_Atual = Linha_Selecionada = currentRow();
        if (Ao_Clicar) Ao_Clicar();
        return;
    }
    QTableWidget::keyPressEvent(evento);
}
