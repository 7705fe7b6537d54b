#pragma once
// The three lists through which a user chooses a folder of pictures: the places where pictures are kept
// (the root, the home folder, mounted removable and network file systems), the folders of the chosen
// place, and the files of a folder.
#include <QComboBox>
#include <QElapsedTimer>
#include <QListWidget>
#include <QStringList>
#include <functional>

// The places of the drive list, from a text of /proc/self/mountinfo and the home folder: the root first,
// then the home folder, then removable media (under /media, /run/media, /mnt) and network file systems.
QStringList Locais_de_Imagens(const QString& montagens, const QString& pasta_pessoal);

class Lista_Unidades : public QComboBox {
  public:
    explicit Lista_Unidades(QWidget* pai = nullptr);
    // The place that holds the path: the longest place that is a prefix of it.
    QString Drive() const;
    void Set_Drive(const QString& caminho);
    // Reads the places again from the system.
    void Atualiza();

    std::function<void()> Ao_Mudar;  // Change

  private:
    bool Mudando = false;
};

class Lista_Pastas : public QListWidget {
  public:
    explicit Lista_Pastas(QWidget* pai = nullptr);
    QString Path() const { return Caminho; }
    // False, with nothing changed, for a folder that does not exist or cannot be read.
    bool Set_Path(const QString& caminho);

    std::function<void()> Ao_Mudar;  // Change
    std::function<void()> Ao_Receber_Foco;

  protected:
    void keyPressEvent(QKeyEvent* evento) override;
    void focusInEvent(QFocusEvent* evento) override;

  private:
    void Entra(QListWidgetItem* item);
    QString Caminho;
    QString Busca;  // the letters typed in a row
    QElapsedTimer Relógio_Busca;
};

// Not shown to the user: the files of a folder that match the pattern.
class Lista_Arquivos : public QListWidget {
  public:
    explicit Lista_Arquivos(QWidget* pai = nullptr);
    QString Path() const { return Caminho; }
    void Set_Path(const QString& caminho);
    // "*.gif;*.jpg": names compared without regard to case; empty takes every file.
    QString Pattern;
    QString List(int índice) const;
    int ListCount() const { return count(); }

  private:
    QString Caminho;
};

// A folder that exists and whose list of files can be read.
bool Pasta_Legível(const QString& caminho);
