#pragma once
#include <QDialog>
#include <functional>

class QKeyEvent;
class QLabel;
class QProgressBar;
class QTimer;
struct Campo_Info;
struct Definição_Tabela;

// The gate of every start: creates the databases, brings an older one up to this version and loads the
// seed files left in Dados.
class frmAtualiza_Versão : public QDialog {
  public:
    explicit frmAtualiza_Versão(QWidget* pai = nullptr);

    // The whole work of the window; the timer runs it once when the window is on the screen.
    void tmrTempo_Timer();
    void Cria_Banco_de_Dados_Manutenção();

    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label3;
    QLabel* Label5;
    QLabel* Image1;
    QLabel* lblStatus;
    QProgressBar* pgbBarra_De_Progresso;
    QTimer* tmrTempo;

    // Stops the schema steps after the last one whose gate is at or below this number (tests build
    // databases as older releases left them this way). Zero runs them all.
    long Última_Etapa = 0;

  protected:
    // Escape closes nothing here: the window has no way back, and a start cut short leaves no database.
    void keyPressEvent(QKeyEvent* evento) override;

  private:
    void Form_Load();
    void Caminho_de_Atualização(const QString& versão_banco);
    void Etapas_do_Esquema(long versão);
    void Etapa_Citações();
    void Etapa_Arquivo_Compactado();
    void Importa_Tabela_Semente(const QString& tabela, const QString& índice, const QString& chave,
                                const QStringList& campos);
    void Converte_Pontuação();
    void Atualiza_Cada_Linha(const QString& tabela, const std::function<void(int contador)>& atribui);
    void Garante_Tabela(const Definição_Tabela& definição, const QStringList& só_estes_campos = {});
    void Garante_Campo(const QString& tabela, const Campo_Info& campo);
    void Retira_Campo(const QString& tabela, const QString& campo);
    void Garante_Índice(const QString& tabela, const QString& índice);
    void Semente_Danificada(const QString& arquivo, const QString& motivo);
    void Guarda_No_Arquivo(const QString& arquivo);
    // True, after telling the user and ending the program, when the database file cannot be read.
    bool Banco_Danificado(const QString& caminho);
    int Quantidade_Auditoria();
    bool Auditoria_Anterior = false;  // the audit database was there before this start
    // Points Conexão_Temporária at the scratch database; a file that cannot be opened is set aside.
    bool Abre_Rascunho();
};

// Records this program's version in tblConfigur and tells the user that it was installed.
void Finaliza_Instalação_da_Nova_Versão();
