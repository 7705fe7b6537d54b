#pragma once
// Prints the whole occurrence log with a summary of its period and backups, then deletes the log: the
// report is how the log gets emptied.
#include <QDate>

#include "forms/Formulário.h"

class QLabel;
class QProgressBar;
class QPushButton;

// What the log's lines told while they were printed.
struct Resumo_Log {
    QDate Data_Inicial;  // invalid while no dated entry was read
    QDate Data_Final;
    double Backups = 0;
    double Restaurações = 0;
    double Backups_Externos = 0;
};
// Adds what one line of the log tells to the summary; the program's folder decides what is external.
void Analisa_Linha_Log(const QString& linha, const QString& pasta_programa, Resumo_Log& resumo);
// A date of the summary as the report prints it: the empty date reads "00:00:00".
QString Texto_Data_Resumo(const QDate& data);

class frmImpressão_Log_De_Ocorrências : public Formulário {
  public:
    explicit frmImpressão_Log_De_Ocorrências(QWidget* pai = nullptr);

    QLabel* Label1;
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdOk;
    QPushButton* cmdSair;

    void cmdOk_Click();
    void cmdSair_Click();

  private:
    void Form_Load();
    void Abre_Tabelas();
    // Prints the log's lines; false when the user left with Sair halfway.
    bool Imprime_Log(Resumo_Log& resumo);

    bool Imprimindo = false;
    bool Interrompido = false;
};
