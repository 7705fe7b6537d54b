#include "support/Disco_Simulado.h"

#include <cerrno>
#include <cstring>
#include <sqlite3.h>

namespace {
bool Cheio = false;
bool Somente_Leitura = false;
int Último_Erro = 0;
sqlite3_vfs* Real = nullptr;

// Each open file: the real one follows this header in the same block.
struct Arquivo {
    sqlite3_file Base;
    sqlite3_file* Dentro() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
sqlite3_file* Dentro(sqlite3_file* f) {
    return reinterpret_cast<Arquivo*>(f)->Dentro();
}

int Fecha(sqlite3_file* f) {
    return Dentro(f)->pMethods->xClose(Dentro(f));
}
int Lê(sqlite3_file* f, void* dados, int n, sqlite3_int64 onde) {
    return Dentro(f)->pMethods->xRead(Dentro(f), dados, n, onde);
}
int Escreve(sqlite3_file* f, const void* dados, int n, sqlite3_int64 onde) {
    if (Cheio) {
        sqlite3_int64 tamanho = 0;
        Dentro(f)->pMethods->xFileSize(Dentro(f), &tamanho);
        if (onde + n > tamanho) {
            Último_Erro = ENOSPC;
            return SQLITE_FULL;
        }
    }
    return Dentro(f)->pMethods->xWrite(Dentro(f), dados, n, onde);
}
int Corta(sqlite3_file* f, sqlite3_int64 tamanho) {
    return Dentro(f)->pMethods->xTruncate(Dentro(f), tamanho);
}
int Sincroniza(sqlite3_file* f, int opções) {
    return Dentro(f)->pMethods->xSync(Dentro(f), opções);
}
int Tamanho(sqlite3_file* f, sqlite3_int64* tamanho) {
    return Dentro(f)->pMethods->xFileSize(Dentro(f), tamanho);
}
int Trava(sqlite3_file* f, int nível) {
    return Dentro(f)->pMethods->xLock(Dentro(f), nível);
}
int Destrava(sqlite3_file* f, int nível) {
    return Dentro(f)->pMethods->xUnlock(Dentro(f), nível);
}
int Reservado(sqlite3_file* f, int* reservado) {
    return Dentro(f)->pMethods->xCheckReservedLock(Dentro(f), reservado);
}
int Controle(sqlite3_file* f, int operação, void* argumento) {
    return Dentro(f)->pMethods->xFileControl(Dentro(f), operação, argumento);
}
int Setor(sqlite3_file* f) {
    return Dentro(f)->pMethods->xSectorSize(Dentro(f));
}
int Características(sqlite3_file* f) {
    return Dentro(f)->pMethods->xDeviceCharacteristics(Dentro(f));
}
int Mapa_Shm(sqlite3_file* f, int região, int tamanho, int estende, void volatile** mapa) {
    return Dentro(f)->pMethods->xShmMap(Dentro(f), região, tamanho, estende, mapa);
}
int Trava_Shm(sqlite3_file* f, int início, int n, int opções) {
    return Dentro(f)->pMethods->xShmLock(Dentro(f), início, n, opções);
}
void Barreira_Shm(sqlite3_file* f) {
    Dentro(f)->pMethods->xShmBarrier(Dentro(f));
}
int Desfaz_Shm(sqlite3_file* f, int apaga) {
    return Dentro(f)->pMethods->xShmUnmap(Dentro(f), apaga);
}
int Busca(sqlite3_file* f, sqlite3_int64 onde, int n, void** p) {
    return Dentro(f)->pMethods->xFetch(Dentro(f), onde, n, p);
}
int Solta(sqlite3_file* f, sqlite3_int64 onde, void* p) {
    return Dentro(f)->pMethods->xUnfetch(Dentro(f), onde, p);
}

const sqlite3_io_methods Métodos = {
    3,         Fecha,        Lê,         Escreve,  Corta, Sincroniza,      Tamanho,
    Trava,     Destrava,     Reservado,  Controle, Setor, Características, Mapa_Shm,
    Trava_Shm, Barreira_Shm, Desfaz_Shm, Busca,    Solta};

int Abre(sqlite3_vfs*, sqlite3_filename nome, sqlite3_file* f, int opções, int* saída) {
    auto* arquivo = reinterpret_cast<Arquivo*>(f);
    arquivo->Base.pMethods = nullptr;
    // A database opened read-only by the system: as when the kernel refuses O_RDWR on a read-only mount.
    if (Somente_Leitura && (opções & SQLITE_OPEN_MAIN_DB) != 0)
        opções = (opções & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
    const int r = Real->xOpen(Real, nome, arquivo->Dentro(), opções, saída);
    if (r == SQLITE_OK && arquivo->Dentro()->pMethods != nullptr) arquivo->Base.pMethods = &Métodos;
    return r;
}
int Exclui(sqlite3_vfs*, const char* nome, int sincroniza) {
    return Real->xDelete(Real, nome, sincroniza);
}
int Acesso(sqlite3_vfs*, const char* nome, int opções, int* resultado) {
    return Real->xAccess(Real, nome, opções, resultado);
}
int Nome_Completo(sqlite3_vfs*, const char* nome, int n, char* saída) {
    return Real->xFullPathname(Real, nome, n, saída);
}
int Aleatório(sqlite3_vfs*, int n, char* saída) {
    return Real->xRandomness(Real, n, saída);
}
int Dorme(sqlite3_vfs*, int micro) {
    return Real->xSleep(Real, micro);
}
int Agora(sqlite3_vfs*, double* agora) {
    return Real->xCurrentTime(Real, agora);
}
int Último_Erro_Sistema(sqlite3_vfs*, int n, char* texto) {
    if (Último_Erro != 0) {
        if (n > 0 && texto != nullptr) std::strncpy(texto, std::strerror(Último_Erro), size_t(n));
        return Último_Erro;
    }
    return Real->xGetLastError(Real, n, texto);
}
int Agora_64(sqlite3_vfs*, sqlite3_int64* agora) {
    return Real->xCurrentTimeInt64(Real, agora);
}

sqlite3_vfs Simulado{};
}  // namespace

void Disco_Simulado::Instala() {
    if (Real == nullptr) {
        Real = sqlite3_vfs_find("unix");
        Simulado.iVersion = 2;
        Simulado.szOsFile = int(sizeof(Arquivo)) + Real->szOsFile;
        Simulado.mxPathname = Real->mxPathname;
        Simulado.zName = "quizora-disco-simulado";
        Simulado.xOpen = Abre;
        Simulado.xDelete = Exclui;
        Simulado.xAccess = Acesso;
        Simulado.xFullPathname = Nome_Completo;
        Simulado.xRandomness = Aleatório;
        Simulado.xSleep = Dorme;
        Simulado.xCurrentTime = Agora;
        Simulado.xGetLastError = Último_Erro_Sistema;
        Simulado.xCurrentTimeInt64 = Agora_64;
    }
    Cheio = false;
    Somente_Leitura = false;
    Último_Erro = 0;
    sqlite3_vfs_register(&Simulado, 1);
}

void Disco_Simulado::Desinstala() {
    Cheio = false;
    Somente_Leitura = false;
    Último_Erro = 0;
    if (Real != nullptr) sqlite3_vfs_register(Real, 1);
}

void Disco_Simulado::Enche(bool cheio) {
    Cheio = cheio;
    if (!cheio) Último_Erro = 0;
}

void Disco_Simulado::Só_Leitura(bool ativo) {
    Somente_Leitura = ativo;
    if (!ativo) Último_Erro = 0;
}
