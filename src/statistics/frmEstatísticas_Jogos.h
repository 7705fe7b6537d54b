#pragma once
// The games' statistics: a period and a kind to filter by, the charts a group leader reads (the hardest
// and the easiest questions, right answers by kind, helps, games and answers per month, the competitors'
// points game by game), every question's share of right answers, and the questions that look wrong. A
// double click on a question opens it in the question register; the numbers go out as CSV or as a
// printed report.
#include <QVector>

#include "forms/Formulário.h"
#include "statistics/Estatísticas.h"

class QChartView;
class QComboBox;
class QDateEdit;
class QLabel;
class QPushButton;
class QTableWidget;
class QTabWidget;

class frmEstatísticas_Jogos : public Formulário {
  public:
    explicit frmEstatísticas_Jogos(QWidget* pai = nullptr);

    QDateEdit* dbMês_Inicial;
    QDateEdit* dbMês_Final;
    QComboBox* cboTipo;
    QPushButton* cmdAtualiza;
    QLabel* lblTotais;
    QTabWidget* tabGráficos;
    QChartView* chtMais_Difíceis;
    QChartView* chtMais_Fáceis;
    QChartView* chtPor_Tipo;
    QChartView* chtAjudas;
    QChartView* chtPor_Mês;
    QChartView* chtCompetidores;
    QTableWidget* flxPerguntas;
    QTableWidget* flxNunca_Acertadas;
    QTableWidget* flxIncorreta_Preferida;
    QPushButton* cmdExporta;
    QPushButton* cmdImprime;
    QPushButton* cmdSair;

    // The figures shown, as last read.
    Estatísticas::Números_Estatísticas Números;
    Estatísticas::Filtro_Estatísticas Filtro_Atual() const;

    void cmdAtualiza_Click();
    void cmdExporta_Click();
    void cmdImprime_Click();
    void cmdSair_Click();
    // Opens the question in the question register.
    void Abre_Pergunta(int código_pergunta);

  private:
    void Form_Load();
    void Desenha_Gráficos();
    void Desenha_Aba(int índice);
    QVector<bool> Desenhadas;  // the tabs drawn since the figures were read
    void Preenche_Grade(QTableWidget* grade, const QVector<Estatísticas::Números_Pergunta>& perguntas);
    QTableWidget* Nova_Grade(const QString& nome);
    bool Sem_Direito = false;
};
