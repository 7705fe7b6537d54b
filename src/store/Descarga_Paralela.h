#pragma once
// The copy of a WAL file's committed pages back into its database (a checkpoint), done on a thread of its
// own with a connection of its own. A writer whose commits must not wait, like the game's recorder between
// two turns, then never pays the copy nor its flush to the disk; what it commits is in the WAL already, so
// a program killed before the copy loses nothing.

#include <QString>
#include <condition_variable>
#include <mutex>
#include <thread>

struct sqlite3;

class Descarga_Paralela {
  public:
    // Takes over the checkpoints of `banco` (the file `caminho`): past `páginas` pages in the WAL, its
    // commits ask the thread for a copy instead of making one themselves.
    Descarga_Paralela(sqlite3* banco, const QString& caminho, int páginas = 1000);
    // Waits for a copy under way; the connection goes back to making its own.
    ~Descarga_Paralela();
    Descarga_Paralela(const Descarga_Paralela&) = delete;
    Descarga_Paralela& operator=(const Descarga_Paralela&) = delete;

    // Asks for a copy now and waits until no copy is asked for or under way.
    void Descarrega_E_Espera();
    int Descargas() const;  // copies made so far

  private:
    static int Gancho(void* eu, sqlite3* banco, const char* base, int páginas);
    void Pede();
    void Trabalha();

    sqlite3* const Banco;
    const QByteArray Caminho;
    const int Páginas;
    mutable std::mutex Trava;
    std::condition_variable Aviso;
    bool Pedida = false;
    bool Ocupada = false;
    bool Fim = false;
    int Feitas = 0;
    std::thread Linha;
};
