#pragma once
// Questions in and out as files: a CSV, Aiken or GIFT file read into a preview grid with each question's
// verdict, the ready ones included in one transaction, and the bank written to CSV or GIFT.
#include <QSet>
#include <QString>
#include <array>

#include "forms/Formulário.h"
#include "questions/Leitura_Perguntas.h"
#include "store/Sessão.h"

class Grade_Flex;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

class frmImporta_Pergunta : public Formulário {
  public:
    explicit frmImporta_Pergunta(QWidget* pai = nullptr);

    QLabel* Label1;
    QLineEdit* txtArquivo;
    QPushButton* cmdArquivo;
    QGroupBox* fraTipo_Pergunta;
    std::array<QRadioButton*, 2> optTipo{};  // 0 general knowledge, 1 biblical: for rows that name no kind
    Grade_Flex* flxPerguntas;
    QLabel* lblResumo;
    QProgressBar* pgbBarra_De_Progresso;
    QPushButton* cmdImporta;
    QPushButton* cmdCancelar;
    QPushButton* cmdSalva_Resumo;
    QGroupBox* fraExportação;
    QComboBox* cboTipo_Exportação;
    QPushButton* cmdExporta_CSV;
    QPushButton* cmdExporta_GIFT;
    QPushButton* cmdSair;

    void cmdArquivo_Click();
    void cmdImporta_Click();
    void cmdCancelar_Click();
    void cmdSalva_Resumo_Click();
    void cmdExporta_Click(Formato_Perguntas formato);
    void cmdSair_Click();

    // The questions of the file shown, with their verdicts.
    const QVector<Pergunta_Lida>& Perguntas() const { return Perguntas_; }
    // Where the summary of the last import is written beside its source.
    QString Caminho_Resumo() const;

  private:
    void Form_Load();
    void Carrega_Arquivo(const QString& caminho);
    void Monta_Prévia();
    void Mostra_Situação();
    void Habilita(bool trabalhando);
    void Aviso(const QString& texto, bool erro);

    bool Carregada = false;
    bool Trabalhando = false;
    bool Cancelado = false;
    QString Arquivo;
    Leitura_Perguntas Leitura;
    QVector<Pergunta_Lida> Perguntas_;
    QSet<QString> Formas_Banco;
    // The bank's mark taken before its forms were read, and the kind that the preview's checks gave.
    Carimbo_Dados Marca_Formas;
    bool Formas_Marcadas = false;
    QString Tipo_Verificado;
    QString Resumo;                    // the summary of the last import; empty before one
    bool Resumo_Sem_Inclusão = false;  // the summary is that of a file with no question ready
};
