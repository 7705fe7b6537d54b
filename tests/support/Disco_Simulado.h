#pragma once
// A disk that fills up or turns read-only on command, under SQLite: the store's refusals of a full disk and
// of a database the system opened read-only, without root and without a mount of their own. Databases opened
// while it is installed go through it; with neither state set it only passes everything on.
namespace Disco_Simulado {
// Becomes SQLite's default file system for the databases opened from now on.
void Instala();
// The ordinary file system again for new opens; databases opened through this one keep passing through it.
void Desinstala();
// Writes that would make a file grow are refused as the kernel refuses them on a full disk (ENOSPC);
// writes inside a file's present size pass, as they do on a real full disk.
void Enche(bool cheio);
// Databases opened from now on are opened read-only, as the system opens them on a read-only mount or
// without write permission (the engine then refuses every write as read-only).
void Só_Leitura(bool ativo);
}  // namespace Disco_Simulado
