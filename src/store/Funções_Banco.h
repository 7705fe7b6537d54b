#pragma once
// The global connections and table slots through which every window reaches the data, and the
// routines that open, count, lock and write.

#include <QString>

#include "store/Ligação.h"
#include "store/Registros.h"

inline Ligação Conexão;
inline Ligação Conexão_Secundária;
inline Ligação Conexão_Terciária;
inline Ligação Conexão_Quaternária;
inline Ligação Conexão_Temporária;
inline Ligação Conexão_Dbf;
inline Ligação Conexão_Manutenção;

inline Registros Tabela;
inline Registros Tabela_Secundária;
inline Registros Tabela_Terciária;
inline Registros Tabela_Quaternária;
inline Registros Tabela_Temporária;
inline Registros Tabela_Dbf;
inline Registros Tabela_Pesquisa;
inline Registros Tabela_Dynaset;
inline Registros Tabela_Critério_de_Consulta;
inline Registros Tabela_Manutenção;

inline bool Travou = false;
// Set by a window whose walk the user broke off while a waiting Trava stood on a row held elsewhere:
// the wait ends with Travou false.
inline bool Desiste_Da_Espera = false;
// The store refused the row of the last Grava or the commit of the transaction for want of disk space or
// because the database is read-only: nothing of it was kept, and a window keeps what the user typed for a
// new try. Inicia_Transação clears it.
inline bool Gravação_Recusada = false;
inline QString Estado_Transação;  // "Iniciou Transação", "Finalizou Transação" or "Desfez Transação"
inline bool Monitora_Log = true;
inline QVariant Chave_Registro;
inline QString Texto_Manutenção;

// The files under the program's folder.
QString Caminho_Banco_Principal();
QString Caminho_Banco_Manutenção();
QString Caminho_Banco_Temporário();
QString Caminho_Cópia_Banco();
QString Caminho_Ícone(const QString& arquivo);  // under "Ícones"
// Where archives of Dbase tables are unpacked to be read; Conexão_Dbf reads this folder.
QString Pasta_Dbase();

inline const QString Ícone_Alteração = "Alteração.Ico";
inline const QString Ícone_Processamento = "Processamento.Ico";
// Sets the custom busy pointer with an icon of "Ícones" for the life of a routine.
class Ponteiro_Ocupado {
  public:
    explicit Ponteiro_Ocupado(const QString& ícone);
    ~Ponteiro_Ocupado();
    Ponteiro_Ocupado(const Ponteiro_Ocupado&) = delete;
    Ponteiro_Ocupado& operator=(const Ponteiro_Ocupado&) = delete;
};
// Connection strings; the creation form has no blank after the first semicolon.
QString Conexão_Principal();
QString Conexão_Auditoria();
QString Conexão_Rascunho();
QString Conexão_Cópia();
QString Conexão_Dbase();
QString Conexão_Criação(const QString& caminho_arquivo);

void Abre_Tabela(const QString& Fonte);
void Abre_Tabela_Secundária(const QString& Fonte);
void Abre_Tabela_Terciária(const QString& Fonte);
void Abre_Tabela_Quaternária(const QString& Fonte);
void Abre_Tabela_Temporária(const QString& Fonte);
void Abre_Tabela_Pesquisa(const QString& Fonte);
void Abre_Tabela_Critério_de_Consulta(const QString& Fonte);
void Abre_Tabela_Manutenção(const QString& Fonte);
void Abre_Tabela_Dbf(const QString& Fonte);
void Abre_Tabela_Dynaset(const QString& Fonte, const QString& Conexão_Texto);

int Lastrec(const QString& Fonte, Ligação& Conexão_Contagem);
void Limpa_Cache_Lastrec();
// Ends the filter of a locate result, as every window does when it loads: Tabela_Dynaset closed, no Source.
void Encerra_Resultado_Localizado();
void Reduz_Cache_Lastrec();  // a window's deletion lowers the cached count by one
// How many count statements Lastrec has sent to the store (for tests of the cache).
int Consultas_Lastrec();

void Trava(Registros& Tabela_Travar, Ligação& Conexão_Travar, bool Aguarda);
void Fechar_Conexão(Ligação& Conexão_Fechar);

void Inicia_Transação();
void Finaliza_Transação();
void Desfaz_Transação();
bool Transação_Aberta();
// How many transactions Inicia_Transação has opened in this process: what was read inside one is known
// to belong to it.
int Transações_Iniciadas();
void Grava(Registros& Tabela_Gravar, bool Excluir);
// The audit row of a write made without a slot, the same row Grava writes for a write through a slot
// opened on `fonte` whose first field `campo` holds `chave`. On a server it is kept and sent with the
// next commit, alongside it.
void Audita_Escrita(const QString& fonte, const QString& campo, const QVariant& chave);

// Re-points a connection: closes it if it was ever opened, then opens it on the new string.
void Reaponta_Conexão(Ligação& conexão, const QString& texto_conexão);
