#pragma once
#include <QMainWindow>

class QLabel;
class QCloseEvent;

// The main window: the only top-level window; every other window is shown modally from it.
class frmPrincipal : public QMainWindow {
public:
    frmPrincipal();

protected:
    void closeEvent(QCloseEvent* evento) override;

private:
    void Form_Load();
    QLabel* lblFundo = nullptr;
};
