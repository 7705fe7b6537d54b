#include "forms/Formatação.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QWidget>
#include <cmath>

#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

QString Texto_Transformado(const QString& texto) {
    // A word starts after a blank.
    QString saída = texto.toLower();
    bool início = true;
    for (QChar& c : saída) {
        if (início && c.isLetter()) c = c.toUpper();
        início = c == ' ';
    }
    static const QString procurados[] = {" E ", " Da ", " De ", " Do ", " Das ", " Dos "};
    for (const QString& procurado : procurados) {
        const QString troca = procurado.toLower();
        for (int onde = saída.indexOf(procurado, 0, Qt::CaseInsensitive); onde >= 0;
             onde = saída.indexOf(procurado, onde + 1, Qt::CaseInsensitive))
            saída.replace(onde, troca.size(), troca);
    }
    return saída;
}

void Transformar_Campos(QWidget* Formulário, const QList<QWidget*>& Mantidos) {
    Rotina r(Formulário, "Transformar_Campos");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    // A box is written only when its text changes: setting a long text lays the whole box out again.
    for (QWidget* controle : Formulário->findChildren<QWidget*>()) {
        if (Mantidos.contains(controle)) continue;
        if (auto* caixa = qobject_cast<QLineEdit*>(controle)) {
            if (caixa->text().isEmpty() || caixa->echoMode() != QLineEdit::Normal) continue;
            const QString novo = Texto_Transformado(caixa->text());
            if (novo != caixa->text()) caixa->setText(novo);
        } else if (auto* longa = qobject_cast<QPlainTextEdit*>(controle)) {
            if (longa->isReadOnly()) continue;
            const QString texto = longa->toPlainText();
            if (texto.isEmpty()) continue;
            const QString novo = Texto_Transformado(texto);
            if (novo != texto) longa->setPlainText(novo);
        } else if (auto* combo = qobject_cast<QComboBox*>(controle)) {
            if (!combo->isEditable() || combo->currentText().isEmpty()) continue;
            const QString novo = Texto_Transformado(combo->currentText());
            if (novo != combo->currentText()) combo->setEditText(novo);
        } else if (auto* rótulo = qobject_cast<QLabel*>(controle)) {
            if (rótulo->frameShape() == QFrame::NoFrame || rótulo->text().isEmpty()) continue;
            const QString novo = Texto_Transformado(rótulo->text());
            if (novo != rótulo->text()) rótulo->setText(novo);
        }
    }
}

QString Texto_Progresso(double Máximo, double Atual, const QDateTime& início, const QDateTime& agora) {
    static const QLocale local(QLocale::Portuguese, QLocale::Brazil);
    const double decorrido = início.msecsTo(agora) / 86400000.0;
    const double por_linha = Atual > 0 ? decorrido / Atual : 0;
    const double restante = 1 + (Máximo - Atual) * por_linha;
    // Whole days: the date part of the remaining time counted from 31/12/1899, so under a day gives 0.
    const long dias = std::max(0L, static_cast<long>(std::floor(restante)) - 1);
    const qint64 segundos = std::llround((restante - std::floor(restante)) * 86400.0);
    const QTime hora = QTime(0, 0).addSecs(segundos % 86400);
    const double percentual = Máximo != 0 ? 100.0 * Atual / Máximo : 0;
    return "Terminará em " + local.toString(static_cast<qlonglong>(dias)) + " dias e " +
           hora.toString("hh:mm:ss") + " hs    Processando " +
           local.toString(static_cast<qlonglong>(std::llround(Atual))) + " de " +
           local.toString(static_cast<qlonglong>(std::llround(Máximo))) + "    (" +
           local.toString(percentual, 'f', 2) + "%)";
}

void Barra_de_Progresso(int Mínimo, double Máximo, double Atual, QWidget* Formulário) {
    // Called at every row of a walk: the routine's name is made once, not at each call.
    Rotina r(Formulário, QStringLiteral("Barra_de_Progresso"));
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    // A walk calls this at every row: the window's bar is found once for the walk, and the caption's
    // estimate, which nobody reads faster, is written at most every 40 ms of real time, and always at the
    // walk's first and last rows. The bar itself always shows the row reached.
    static QPointer<QWidget> último_formulário;
    static QPointer<QProgressBar> última_barra;
    static int último_mínimo = 0;
    static double último_máximo = 0;
    static QElapsedTimer desde_a_legenda;
    const bool mesma_caminhada = último_formulário == Formulário && último_mínimo == Mínimo &&
                                 último_máximo == Máximo && desde_a_legenda.isValid();
    QProgressBar* barra = mesma_caminhada ? última_barra.data() : nullptr;
    if (barra == nullptr) barra = Formulário->findChild<QProgressBar*>("pgbBarra_De_Progresso");
    if (barra != nullptr) {
        barra->setMinimum(Mínimo);
        const int máximo = (Máximo > 0 && Máximo != Mínimo) ? static_cast<int>(Máximo) : Mínimo + 1;
        barra->setMaximum(máximo);
        barra->setValue(Atual > máximo ? máximo : static_cast<int>(Atual));
    }
    const bool ponta = Atual <= Mínimo || Atual >= Máximo;
    if (!mesma_caminhada || ponta || desde_a_legenda.elapsed() >= 40) {
        Formulário->setWindowTitle(
            Texto_Progresso(Máximo, Atual, Início_Progresso, Plataforma_Atual().Agora()));
        desde_a_legenda.start();
    }
    último_formulário = Formulário;
    última_barra = barra;
    último_mínimo = Mínimo;
    último_máximo = Máximo;
}

bool Calendário(const QString& Texto, bool Aceita_Vazio, QWidget* Formulário) {
    Rotina r(Formulário, "Calendário");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    auto* cancelar = Formulário->findChild<QAbstractButton*>("cmdCancelar");
    if (cancelar != nullptr && cancelar->isDown()) return true;
    if (Aceita_Vazio && Texto.trimmed().isEmpty()) return true;
    for (const char* formato : {"dd/MM/yyyy", "d/M/yyyy"})
        if (QDate::fromString(Texto.trimmed(), formato).isValid()) return true;
    Exibe_Mensagem(18);
    return false;
}

int Lennum(double Número) {
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    return static_cast<int>(QString::number(Número, 'g', 15).size());
}
