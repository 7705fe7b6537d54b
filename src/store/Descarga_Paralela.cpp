#include "store/Descarga_Paralela.h"

#include <sqlite3.h>

Descarga_Paralela::Descarga_Paralela(sqlite3* banco, const QString& caminho, int páginas)
    : Banco(banco), Caminho(caminho.toUtf8()), Páginas(páginas) {
    // Replaces the automatic checkpoint, which is the same hook.
    sqlite3_wal_hook(Banco, &Descarga_Paralela::Gancho, this);
    Linha = std::thread([this] { Trabalha(); });
}

Descarga_Paralela::~Descarga_Paralela() {
    sqlite3_wal_autocheckpoint(Banco, 1000);
    {
        std::lock_guard<std::mutex> guarda(Trava);
        Fim = true;
    }
    Aviso.notify_all();
    Linha.join();
}

int Descarga_Paralela::Gancho(void* eu, sqlite3*, const char*, int páginas) {
    auto* descarga = static_cast<Descarga_Paralela*>(eu);
    if (páginas >= descarga->Páginas) descarga->Pede();
    return SQLITE_OK;
}

void Descarga_Paralela::Pede() {
    {
        std::lock_guard<std::mutex> guarda(Trava);
        if (Pedida) return;
        Pedida = true;
    }
    Aviso.notify_all();
}

void Descarga_Paralela::Descarrega_E_Espera() {
    Pede();
    std::unique_lock<std::mutex> guarda(Trava);
    Aviso.wait(guarda, [this] { return (!Pedida && !Ocupada) || Fim; });
}

int Descarga_Paralela::Descargas() const {
    std::lock_guard<std::mutex> guarda(Trava);
    return Feitas;
}

void Descarga_Paralela::Trabalha() {
    sqlite3* própria = nullptr;
    std::unique_lock<std::mutex> guarda(Trava);
    for (;;) {
        Aviso.wait(guarda, [this] { return Pedida || Fim; });
        if (Fim) break;
        Pedida = false;
        Ocupada = true;
        guarda.unlock();
        if (própria == nullptr) {
            if (sqlite3_open_v2(Caminho.constData(), &própria, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                                nullptr) == SQLITE_OK)
                // A connection learns that its file is in WAL mode from its first read; until then it
                // copies nothing.
                sqlite3_exec(própria, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
            else {
                sqlite3_close_v2(própria);
                própria = nullptr;
            }
        }
        // A passive copy takes no lock that the writer waits for; what a reader still needs is left for
        // the next one. A failure here is the next commit's to meet: the pages stay safe in the WAL.
        const bool feita =
            própria != nullptr && sqlite3_wal_checkpoint_v2(própria, nullptr, SQLITE_CHECKPOINT_PASSIVE,
                                                            nullptr, nullptr) == SQLITE_OK;
        guarda.lock();
        Ocupada = false;
        if (feita) ++Feitas;
        Aviso.notify_all();
    }
    guarda.unlock();
    sqlite3_close_v2(própria);
}
