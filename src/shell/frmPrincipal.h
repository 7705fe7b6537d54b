#pragma once
#include <QMainWindow>

class QLabel;
class QCloseEvent;
class QPlainTextEdit;
class QPushButton;
class QMenu;
class Lista_Arquivos;

// The main window: the only top-level window; every other window is shown modally from it.
class frmPrincipal : public QMainWindow {
  public:
    frmPrincipal();

    QLabel* imgFundo = nullptr;
    Lista_Arquivos* filImagens = nullptr;  // not shown: the files of the picture library
    QPlainTextEdit* txtRevelações_de_Deus = nullptr;
    QPushButton* cmdSair = nullptr;
    QLabel* StatusBar1_Data = nullptr;
    QLabel* StatusBar1_Hora = nullptr;
    bool Login_Solicitado = false;

    void Form_Activate();
    void cmdSair_Click();
    void mnuFundo_Tela_Click();
    // The close box: message 34, then the end of the program.
    void Form_QueryUnload();

  protected:
    void closeEvent(QCloseEvent* evento) override;
    bool event(QEvent* evento) override;

  private:
    void Form_Load();
    void Abre_Tabelas();
    void Monta_Menu();
    void Monta_Barra_de_Status();
    QAction* Entrada(QMenu* menu, const char* nome, const QString& título);
};
