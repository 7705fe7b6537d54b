#include "store/Funções_Banco.h"

#include <QDateTime>
#include <QHash>
#include <utility>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "platform/Plataforma.h"
#include "store/Comando_Banco.h"
#include "store/Tradutor_SQL.h"

namespace {
QString Cache_Fonte;
int Cache_Contagem = 0;
int Contador_Consultas = 0;
Registros Tabela_Contagem;

void Abre(Registros& slot, const QString& fonte, Ligação& conexão, Opção_Abertura opção, const char* rotina) {
    Rotina r(Fonte_Funções_Públicas, rotina);
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    Cache_Fonte.clear();
    slot.Reinicia();
    slot.Open(fonte, conexão, opção);
}

Ligação* const Conexões_Transacionais[] = {
    &Conexão,    &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária,
    &Conexão_Dbf};
}  // namespace

QString Caminho_Banco_Principal() {
    return Caminho_Dados() + "/Dados.Mdb";
}
QString Caminho_Banco_Manutenção() {
    return Caminho_Dados() + "/Manutenção.Mdb";
}
QString Caminho_Banco_Temporário() {
    return Caminho_Dados() + "/Temp.Mdb";
}
QString Caminho_Cópia_Banco() {
    return Caminho_Dados() + "/Cópia do Banco de Dados.Mdb";
}
QString Pasta_Dbase() {
    return Caminho_Dados() + "/Dbase";
}
QString Caminho_Ícone(const QString& arquivo) {
    return Caminho_Programa() + "/Ícones/" + arquivo;
}

QString Conexão_Principal() {
    return Texto_Conexão(Caminho_Banco_Principal());
}
QString Conexão_Auditoria() {
    return Texto_Conexão(Caminho_Banco_Manutenção());
}
QString Conexão_Rascunho() {
    return Texto_Conexão(Caminho_Banco_Temporário());
}
QString Conexão_Cópia() {
    return Texto_Conexão(Caminho_Cópia_Banco());
}
QString Conexão_Dbase() {
    return "Provider=Dbase;Data Source=" + Pasta_Dbase() + ";Extended Properties=Dbase IV;";
}
QString Conexão_Criação(const QString& caminho_arquivo) {
    return "Provider=SQLite;Data Source=" + caminho_arquivo + ";Password=" + Senha_Banco;
}

void Abre_Tabela(const QString& Fonte) {
    Abre(Tabela, Fonte, Conexão, Opção_Abertura::Tabela_Direta, "Abre_Tabela");
}
void Abre_Tabela_Secundária(const QString& Fonte) {
    Abre(Tabela_Secundária, Fonte, Conexão_Secundária, Opção_Abertura::Tabela_Direta,
         "Abre_Tabela_Secundária");
}
void Abre_Tabela_Terciária(const QString& Fonte) {
    Abre(Tabela_Terciária, Fonte, Conexão_Terciária, Opção_Abertura::Tabela_Direta, "Abre_Tabela_Terciária");
}
void Abre_Tabela_Quaternária(const QString& Fonte) {
    Abre(Tabela_Quaternária, Fonte, Conexão_Quaternária, Opção_Abertura::Tabela_Direta,
         "Abre_Tabela_Quaternária");
}
void Abre_Tabela_Temporária(const QString& Fonte) {
    Abre(Tabela_Temporária, Fonte, Conexão_Temporária, Opção_Abertura::Tabela_Direta,
         "Abre_Tabela_Temporária");
}
void Abre_Tabela_Pesquisa(const QString& Fonte) {
    Abre(Tabela_Pesquisa, Fonte, Conexão, Opção_Abertura::Tabela_Direta, "Abre_Tabela_Pesquisa");
}
void Abre_Tabela_Critério_de_Consulta(const QString& Fonte) {
    Abre(Tabela_Critério_de_Consulta, Fonte, Conexão, Opção_Abertura::Tabela_Direta,
         "Abre_Tabela_Critério_de_Consulta");
}
void Abre_Tabela_Manutenção(const QString& Fonte) {
    Abre(Tabela_Manutenção, Fonte, Conexão_Manutenção, Opção_Abertura::Tabela_Direta,
         "Abre_Tabela_Manutenção");
}
void Abre_Tabela_Dbf(const QString& Fonte) {
    Abre(Tabela_Dbf, Fonte, Conexão_Dbf, Opção_Abertura::Tabela, "Abre_Tabela_Dbf");
}

void Abre_Tabela_Dynaset(const QString& Fonte, const QString& Conexão_Texto) {
    Rotina r(Fonte_Funções_Públicas, "Abre_Tabela_Dynaset");
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    Cache_Fonte.clear();
    Tabela_Dynaset.Reinicia();
    Tabela_Dynaset.Open(Fonte, Conexão_Texto);
}

void Encerra_Resultado_Localizado() {
    if (Tabela_Dynaset.Source.isEmpty()) return;
    Tabela_Dynaset.Close();
    Tabela_Dynaset.Source.clear();
}

void Limpa_Cache_Lastrec() {
    Cache_Fonte.clear();
}
void Reduz_Cache_Lastrec() {
    if (Cache_Contagem > 0) --Cache_Contagem;
}
int Consultas_Lastrec() {
    return Contador_Consultas;
}

int Lastrec(const QString& Fonte, Ligação& Conexão_Contagem) {
    if (Fonte == Cache_Fonte) return Cache_Contagem;  // an empty source meets the dropped cache
    Rotina r(Fonte_Funções_Públicas, "Lastrec", [&](long número, const QString& descrição, long linha) {
        Trata_Erro(número, descrição, linha,
                   Fonte_Funções_Públicas + "\r\rInstrução SQL que apresentou problema: " + Fonte, "Lastrec");
    });
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    const QString minúsculo = Fonte.toLower();
    QString comando;
    if (minúsculo.contains("select * from")) {
        QString tabela = Fonte.mid(14, 200);
        if (const int branco = tabela.indexOf(' '); branco >= 0) tabela = tabela.left(branco);
        comando = "Select Count (*) From " + tabela;
        if (const int onde = minúsculo.indexOf("where"); onde >= 0) {
            comando += " " + Fonte.mid(onde, 200);
            if (const int ordem = comando.toLower().indexOf("order by"); ordem >= 0)
                comando = comando.left(std::max(0, ordem - 1));
        }
    } else if (Navegando && Linhas_Localizadas != 0 && minúsculo.contains("select count (*) from")) {
        comando = "Select Count (*) From " + Fonte.mid(21, 200);
    } else {
        comando = "Select Count (*) From " + Fonte;
    }
    int contagem = 0;
    Tabela_Contagem.Reinicia();
    ++Contador_Consultas;
    Tabela_Contagem.Open(comando, Conexão_Contagem, Opção_Abertura::Tabela_Direta);
    if (Tabela_Contagem.Aberto() && !Tabela_Contagem.Eof())
        contagem = Tabela_Contagem.Fields(0).Value().toInt();
    Cache_Contagem = contagem;
    Tabela_Contagem.Reinicia();
    Cache_Fonte = Fonte;
    return contagem;
}

namespace {
// The row that a waiting Trava wanted was deleted by another workstation: waiting cannot bring it back.
bool Linha_Excluída = false;

void Tenta_Travar(Registros& slot, Ligação& conexão, bool Aguarda) {
    bool falhou = false;
    long número = 0;
    QString descrição;
    long linha = 0;
    Rotina r(Fonte_Funções_Públicas, "Tenta_Travar", [&](long n, const QString& d, long l) {
        falhou = true;
        número = n;
        descrição = d;
        linha = l;
    });
    Travou = true;
    if (Lastrec(slot.Source, conexão) == 0) return;
    slot.Edita();
    if (!falhou) return;
    if (slot.Eof() || slot.Bof()) {
        Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Tenta_Travar");
        return;
    }
    // The server's connection was lost and made again: the user was told in its own box, and the
    // transaction is gone; a waiting caller simply tries again.
    if (número == Erro_Conexão_Perdida) {
        Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Tenta_Travar");
        Desfaz_Transação();
        Travou = false;
        return;
    }
    // A row deleted meanwhile by another workstation is given up at once, not waited for.
    Linha_Excluída = número == Erro_Bloqueado && descrição.contains("excluída por outro usuário");
    // Any other failure means that another user holds the row.
    if (Linha_Excluída) {
        Desfaz_Transação();
        Travou = false;
        return;
    }
    if (!Aguarda)
        Plataforma_Atual().Caixa_Mensagem(
            "Não foi possível concluir este processamento, pois neste exato momento há outros usuários "
            "utilizando "
            "esta mesma informação!!!\r\rTente refazer novamente este processamento dentro de alguns "
            "instantes...",
            Título_Programa, Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
    else
        Plataforma_Atual().Dorme(1000);
    Desfaz_Transação();
    Travou = false;
}
}  // namespace

void Trava(Registros& Tabela_Travar, Ligação& Conexão_Travar, bool Aguarda) {
    Rotina r(Fonte_Funções_Públicas, "Trava");
    Travou = false;
    Linha_Excluída = false;
    Tenta_Travar(Tabela_Travar, Conexão_Travar, Aguarda);
    // Each failed attempt has rolled the transaction back; a waiting caller gets it opened again.
    while (Aguarda && !Travou && !Desiste_Da_Espera && !Linha_Excluída) {
        Plataforma_Atual().Processa_Eventos();
        Inicia_Transação();
        Tenta_Travar(Tabela_Travar, Conexão_Travar, Aguarda);
    }
}

void Fechar_Conexão(Ligação& Conexão_Fechar) {
    Rotina r(Fonte_Funções_Públicas, "Fechar_Conexão");
    if (Transação_Aberta()) {
        Plataforma_Atual().Cursor_Ocupado("Recuperar Backup.Ico");
        Exibe_Mensagem(28);
        Desfaz_Transação();
        Plataforma_Atual().Cursor_Normal();
    }
    Conexão_Fechar.Close();
}

void Reaponta_Conexão(Ligação& conexão, const QString& texto_conexão) {
    if (!conexão.ConnectionString.isEmpty()) Fechar_Conexão(conexão);
    conexão.Open(texto_conexão);
}

namespace {
// Audit rows written while the audit database shares a transaction with the row they tell of (the
// audit register points Conexão at it): a roll-back would take them away, so they are written again.
QList<QVariantList> Auditoria_Na_Transação;

void Adiciona_Auditoria(const QVariantList& valores) {
    Tabela_Manutenção.AddNew();
    Tabela_Manutenção.Fields("Manutenção").Set_Value(valores[0]);
    Tabela_Manutenção.Fields("Usuário").Set_Value(valores[1]);
    Tabela_Manutenção.Fields("Data_Manutenção").Set_Value(valores[2]);
    Tabela_Manutenção.Fields("Hora_Manutenção").Set_Value(valores[3]);
    Tabela_Manutenção.Update();
    Tabela_Manutenção.Update();
}

bool Auditoria_Dentro_Da_Transação() {
    const auto sessão = Conexão_Manutenção.Sessão_Física();
    return sessão && sessão->Transação_Lógica;
}

// A write given up for good: the user is told once, the occurrence log gets one entry, and the
// caller sees a refused write.
void Abandona_Gravação(Registros& Tabela_Gravar, long número, const QString& descrição, long linha) {
    Tabela_Gravar.CancelUpdate();
    Registro_Duplicado = true;
    Mensagem_Erro = Traduz_Erro(número, descrição, "Grava");
    Plataforma_Atual().Caixa_Mensagem(Mensagem_Erro + ".\r\rA informação não foi gravada.", Título_Programa,
                                      Ícone_Caixa::Crítico, Botões_Caixa::Ok);
    Registra_Ocorrência(número, Fonte_Funções_Públicas, "Grava", linha);
}

void Reescreve_Auditoria_Desfeita() {
    const QList<QVariantList> linhas = std::exchange(Auditoria_Na_Transação, {});
    for (const QVariantList& valores : linhas) Adiciona_Auditoria(valores);
}

// The audit row of a write through a slot opened on `fonte` whose first field `campo` holds the key in
// Chave_Registro; Texto_Manutenção gets its text.
QVariantList Linha_Auditoria(const QString& fonte, const QString& campo) {
    QString verbo = "Atualizando";
    if (Operação == "Inclusão")
        verbo = "Incluindo";
    else if (Operação == "Alteração")
        verbo = "Alterando";
    else if (Operação == "Exclusão")
        verbo = "Excluindo";
    if (fonte.left(3).toLower() == "tbl")
        Texto_Manutenção = verbo + " " + fonte.mid(3, 50).trimmed();
    else
        Texto_Manutenção = verbo + fonte.left(50).trimmed();
    Texto_Manutenção += " onde " + campo.trimmed() + " = " + Chave_Registro.toString();
    const QDateTime agora = Plataforma_Atual().Agora();
    // Before the login there is no user: the row keeps an empty user rather than being refused.
    return {Texto_Manutenção.left(100).trimmed(),
            Usuário_Atual.isEmpty() ? QVariant() : QVariant(Usuário_Atual),
            QDateTime(agora.date(), QTime(0, 0)), agora.time().toString(Qt::ISODate)};  // "HH:mm:ss"
}

// Tells the refusal of audit rows the store sent later, as Grava tells that of one it writes.
void Relata_Auditoria_Adiada() {
    const auto sessão = Conexão_Manutenção.Sessão_Física();
    Falha_Banco falha;
    if (sessão && sessão->Falha_Adiada(falha))
        Trata_Erro(falha.Número, falha.Descrição, 0, Fonte_Funções_Públicas, "Grava");
}
}  // namespace

void Audita_Escrita(const QString& fonte, const QString& campo, const QVariant& chave) {
    Chave_Registro = chave.toString().trimmed();
    Texto_Manutenção.clear();
    Cache_Fonte.clear();
    if (fonte.isEmpty() || !Monitora_Log) return;
    const QVariantList valores = Linha_Auditoria(fonte, campo);
    const auto sessão = Conexão_Manutenção.Sessão_Física();
    if (sessão && sessão->Servidor() && !Auditoria_Dentro_Da_Transação()) {
        Falha_Banco falha;
        Comando_Banco* comando = sessão->Prepara(
            "INSERT INTO tblManutenção_Banco_de_Dados (Manutenção, Usuário, Data_Manutenção, "
            "Hora_Manutenção) "
            "VALUES (?, ?, ?, ?)",
            falha);
        if (comando != nullptr) {
            comando->Liga_Texto(1, valores[0].toString().toUtf8());
            if (valores[1].isValid())
                comando->Liga_Texto(2, valores[1].toString().toUtf8());
            else
                comando->Liga_Nulo(2);
            comando->Liga_Texto(3, Data_Para_Banco(valores[2].toDateTime()).toUtf8());
            comando->Liga_Texto(4, valores[3].toString().toUtf8());
            if (sessão->Escreve_Depois(comando, falha)) {
                sessão->Marca_Escrita("tblManutenção_Banco_de_Dados");
                return;
            }
        }
        Trata_Erro(falha.Número, falha.Descrição, 0, Fonte_Funções_Públicas, "Grava");
        return;
    }
    // Written now, through the audit slot, as Grava writes it.
    Rotina r(Fonte_Funções_Públicas, "Grava", [](long número, const QString& descrição, long linha) {
        Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Grava");
        Tabela_Manutenção.CancelUpdate();
    });
    Adiciona_Auditoria(valores);
    if (Auditoria_Dentro_Da_Transação()) Auditoria_Na_Transação.append(valores);
}

bool Transação_Aberta() {
    return Estado_Transação == "Iniciou Transação";
}

namespace {
int Contador_Transações = 0;
}

int Transações_Iniciadas() {
    return Contador_Transações;
}

void Inicia_Transação() {
    Rotina r(Fonte_Funções_Públicas, "Inicia_Transação");
    ++Contador_Transações;
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    if (Transação_Aberta()) Desfaz_Transação();
    Gravação_Recusada = false;
    Gravação_Impedida_Avisada = false;
    for (Ligação* c : Conexões_Transacionais) c->BeginTrans();
    Estado_Transação = "Iniciou Transação";
}

void Finaliza_Transação() {
    // A commit refused is a transaction lost: the caller learns it from Gravação_Recusada.
    Rotina r(Fonte_Funções_Públicas, "Finaliza_Transação",
             [](long número, const QString& descrição, long linha) {
                 Gravação_Recusada = true;
                 Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Finaliza_Transação");
             });
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    if (!Transação_Aberta()) return;
    for (Ligação* c : Conexões_Transacionais) c->CommitTrans();
    Estado_Transação = "Finalizou Transação";
    Auditoria_Na_Transação.clear();
    Relata_Auditoria_Adiada();
}

void Desfaz_Transação() {
    Rotina r(Fonte_Funções_Públicas, "Desfaz_Transação");
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    if (!Transação_Aberta()) return;
    for (Ligação* c : Conexões_Transacionais) c->RollbackTrans();
    Estado_Transação = "Desfez Transação";
    Reescreve_Auditoria_Desfeita();
    Relata_Auditoria_Adiada();
}

void Grava(Registros& Tabela_Gravar, bool Excluir) {
    // The refusal that waiting cannot cure, kept for the one report after the loop.
    struct {
        bool Houve = false;
        long Número = 0;
        QString Descrição;
        long Linha = 0;
    } definitiva;
    long última_linha = 0;
    bool na_auditoria = false;
    Rotina r(Fonte_Funções_Públicas, "Grava", [&](long número, const QString& descrição, long linha) {
        if (número == Erro_Disco_Cheio || número == Erro_Somente_Leitura) {
            // No wait mends it: told once, and the row is given up. A refused audit row does not make the
            // row itself refused; the commit that follows tells whether it was kept.
            Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Grava");
            if (na_auditoria) {
                Tabela_Manutenção.CancelUpdate();
                return;
            }
            Tabela_Gravar.CancelUpdate();
            Registro_Duplicado = true;
            Gravação_Recusada = true;
            return;
        }
        if (!Excluir && Tabela_Gravar.Recusa_Do_Valor()) {
            if (!definitiva.Houve) definitiva = {true, número, descrição, linha};
            Sai_da_Gravação = true;
            return;
        }
        última_linha = linha;
        Trata_Erro(número, descrição, linha, Fonte_Funções_Públicas, "Grava");
        if (número == Erro_Conexão_Perdida) return;  // nothing to wait for: the write has stopped
        Plataforma_Atual().Dorme(1000);
        Plataforma_Atual().Processa_Eventos();
    });
    Ponteiro_Ocupado cursor(Ícone_Alteração);
    Sai_da_Gravação = false;
    Chave_Registro = Tabela_Gravar.Fields(0).Value().toString().trimmed();
    Texto_Manutenção.clear();
    Registro_Duplicado = false;

    if (Excluir) {
        Tabela_Gravar.Delete();
    } else {
        // A refused Update comes back through the trap, which fills Mensagem_Erro, and the loop runs again
        // while another workstation holds the file; it gives up after about half a minute of refusals.
        constexpr int Limite_Voltas = 30;
        Mensagem_Erro = "Apenas para controle de saída do Loop abaixo...";
        for (int volta = 0; !Mensagem_Erro.isEmpty() && !Sai_da_Gravação; ++volta) {
            if (volta == Limite_Voltas) {
                Abandona_Gravação(Tabela_Gravar, -2147467259, Mensagem_Erro, última_linha);
                break;
            }
            Mensagem_Erro.clear();
            Tabela_Gravar.Update();
            Tabela_Gravar.Update();
        }
        if (definitiva.Houve)
            Abandona_Gravação(Tabela_Gravar, definitiva.Número, definitiva.Descrição, definitiva.Linha);
    }

    if (!Registro_Duplicado && !Tabela_Gravar.Source.isEmpty() && Monitora_Log) {
        const QVariantList valores = Linha_Auditoria(Tabela_Gravar.Source, Tabela_Gravar.Fields(0).Name());
        na_auditoria = true;
        Adiciona_Auditoria(valores);
        na_auditoria = false;
        if (Auditoria_Dentro_Da_Transação()) Auditoria_Na_Transação.append(valores);
    }

    // Any write changes the count behind the table; an inclusion into an empty table must not go on
    // reading 0 from the cache.
    Cache_Fonte.clear();
}

Ponteiro_Ocupado::Ponteiro_Ocupado(const QString& ícone) {
    Plataforma_Atual().Cursor_Ocupado(ícone);
}
Ponteiro_Ocupado::~Ponteiro_Ocupado() {
    Plataforma_Atual().Cursor_Normal();
}
