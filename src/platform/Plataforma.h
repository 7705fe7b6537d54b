#pragma once
// Everything that blocks on a person or touches the desktop passes through here, so that
// tests can answer the boxes and fix the clock and the draws.

#include <QDateTime>
#include <QString>
#include <QStringList>

class QDialog;

enum class Ícone_Caixa { Nenhum, Informação, Exclamação, Pergunta, Crítico };
// Tentar_Sair: "Tentar de novo" answers Ok, "Sair" answers Cancelar.
enum class Botões_Caixa { Ok, Ok_Cancelar, Sim_Não, Sim_Não_Cancelar, Tentar_Sair };
enum class Resposta_Caixa { Ok, Cancelar, Sim, Não };

class Plataforma {
  public:
    virtual ~Plataforma() = default;

    // Texts may carry CR (character 13) as line ends.
    virtual Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString& título, Ícone_Caixa ícone,
                                          Botões_Caixa botões) = 0;
    // Returns the typed text; the empty text when cancelled.
    virtual QString Caixa_Entrada(const QString& texto, const QString& título, const QString& padrão) = 0;
    // Shows a window modally and returns its result code.
    virtual int Mostra_Modal(QDialog* janela) = 0;

    // The file the user picks in the file dialog (the main window's dlgComum): one to read, or where to write
    // one. The filter is Qt's ("Perguntas (*.csv *.txt)"); the empty text when cancelled.
    virtual QString Escolhe_Arquivo(const QString& título, const QString& filtro, const QString& sugestão,
                                    bool para_gravar) {
        (void)título, (void)filtro, (void)sugestão, (void)para_gravar;
        return {};
    }

    virtual void Bipe() = 0;
    virtual void Toca_Som(const QString& arquivo) = 0;
    virtual void Abre_Com_Aplicativo(const QString& caminho_ou_endereço) = 0;
    virtual void Dorme(int milissegundos) = 0;
    virtual void Processa_Eventos() = 0;
    // Called at every row of a long walk: the desktop lets the events through a few hundred times a
    // second at most, which a user cannot tell from every row.
    virtual void Processa_Eventos_Da_Caminhada() { Processa_Eventos(); }
    // A busy cursor with a picture of the program's "Ícones" folder, named by its file ("Impressão.Ico").
    virtual void Cursor_Ocupado(const QString& ícone) = 0;
    virtual void Cursor_Normal() = 0;

    virtual QDateTime Agora() = 0;
    virtual float Segundos_Desde_Meia_Noite() = 0;
    virtual void Semeia(float semente) = 0;
    virtual double Aleatório() = 0;  // uniform in [0, 1)

    virtual bool Linha_Comando_Vazia() = 0;
    // Ends the process at once: nothing is closed, no window unloaded.
    [[noreturn]] virtual void Encerra_Agora(int código) = 0;

    // Makes a bitmap the desktop's background and keeps it so; false where the desktop offers no way.
    virtual bool Muda_Papel_de_Parede(const QString& arquivo_bitmap) {
        (void)arquivo_bitmap;
        return false;
    }

    // The type of the file system that holds a folder ("ext4", "nfs4", "fuse.sshfs"); empty when unknown.
    virtual QString Sistema_de_Arquivos(const QString& pasta) {
        (void)pasta;
        return {};
    }
};

Plataforma& Plataforma_Atual();
// The caller keeps ownership; the previous platform is returned so that a test can restore it.
Plataforma* Define_Plataforma(Plataforma* nova);

// The program's folder: QUIZORA_PASTA when set, else the folder chosen at start (Define_Pasta_Programa),
// else the executable's folder.
QString Caminho_Programa();
void Define_Pasta_Programa(const QString& pasta);
// A file can really be made in the folder (made first if missing); root and read-only mounts included.
bool Pode_Gravar_Pasta(const QString& pasta);
QString Caminho_Dados();  // Caminho_Programa() + "/Dados"
