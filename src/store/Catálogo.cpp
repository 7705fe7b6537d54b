#include "store/Catálogo.h"

#include "failure/Rotina.h"
#include "store/Ligação.h"
#include "store/Sessão_Servidor.h"

namespace Catálogo {

QString Tipo_Declarado(const Campo_Info& campo) {
    const QString zero = campo.Zero ? " ZERO" : "";
    switch (campo.Tipo) {
        case Tipo_Texto:
            return "TEXT" + zero + "(" + QString::number(campo.Largura) + ") COLLATE JET";
        case Tipo_Memo:
            return "MEMO TEXT" + zero + " COLLATE JET";
        case Tipo_Double:
            return "DOUBLE";
        case Tipo_Data:
            return "DATETIME";
        case Tipo_Boolean:
            return "BOOLEAN";
        default:
            return campo.Auto ? "INTEGER PRIMARY KEY AUTOINCREMENT" : "LONG";
    }
}

namespace {
std::shared_ptr<Sessão> Sessão_De(Ligação& conexão) {
    auto sessão = conexão.Sessão_Física();
    if (!sessão) Falha(3704, "A operação não é permitida quando o objeto está fechado.");
    return sessão;
}

// A schema operation of the server, reported as the embedded ones are.
bool No_Servidor(bool feito, const Falha_Banco& falha) {
    if (!feito) Falha(falha.Número, falha.Descrição);
    return feito;
}

bool Executa(Sessão& sessão, const QString& sql) {
    Falha_Banco falha;
    const bool ok = sessão.Executa(sql, falha);
    sessão.Esquece_Estruturas();
    if (!ok) Falha(falha.Número, falha.Descrição);
    return ok;
}

QString Criação_Índice(const QString& tabela, const Índice_Info& índice) {
    QString campos;
    for (const QString& c : índice.Campos) campos += (campos.isEmpty() ? "" : ", ") + Citação(c);
    return QString("CREATE ") + (índice.Tipo == Tipo_Índice::Simples ? "" : "UNIQUE ") + "INDEX " +
           Citação(Nome_Índice_Físico(tabela, índice.Nome)) + " ON " + Citação(tabela) + " (" + campos + ")" +
           (índice.Tipo == Tipo_Índice::Primário ? " /* PRIMARY */" : "");
}

QString Criação_Tabela(const QString& tabela, const QVector<Campo_Info>& campos) {
    QString colunas;
    for (const Campo_Info& c : campos)
        colunas += (colunas.isEmpty() ? "" : ", ") + Citação(c.Nome) + " " + Tipo_Declarado(c);
    return "CREATE TABLE " + Citação(tabela) + " (" + colunas + ")";
}

// SQLite cannot change a column in place: the table is built anew with the same rows and indexes.
void Reconstrói(Sessão& sessão, const Estrutura_Tabela& atual, const QVector<Campo_Info>& novos_campos) {
    const QString provisória = atual.Nome + "_reconstrução";
    QString nomes;
    for (const Campo_Info& c : novos_campos) nomes += (nomes.isEmpty() ? "" : ", ") + Citação(c.Nome);
    const bool em_transação = sessão.Transação_SQL;
    if (!em_transação && !Executa(sessão, "BEGIN IMMEDIATE")) return;
    bool ok = Executa(sessão, "DROP TABLE IF EXISTS " + Citação(provisória)) &&
              Executa(sessão, Criação_Tabela(provisória, novos_campos)) &&
              Executa(sessão, "INSERT INTO " + Citação(provisória) + " (rowid, " + nomes +
                                  ") SELECT rowid, " + nomes + " FROM " + Citação(atual.Nome)) &&
              Executa(sessão, "DROP TABLE " + Citação(atual.Nome)) &&
              Executa(sessão, "ALTER TABLE " + Citação(provisória) + " RENAME TO " + Citação(atual.Nome));
    for (const Índice_Info& índice : atual.Índices)
        ok = ok && Executa(sessão, Criação_Índice(atual.Nome, índice));
    if (!em_transação) Executa(sessão, ok ? "COMMIT" : "ROLLBACK");
}
}  // namespace

void Cria_Banco(const QString& texto_conexão) {
    Falha_Banco falha;
    if (!Sessão::Cria_Arquivo(Arquivo_Da_Conexão(texto_conexão), falha)) Falha(falha.Número, falha.Descrição);
}

void Cria_Tabela(Ligação& conexão, const QString& tabela, const QVector<Campo_Info>& campos) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    Falha_Banco falha;
    if (sessão->Servidor())
        No_Servidor(Catálogo_Servidor::Cria_Tabela(*sessão, tabela, campos, falha), falha);
    else
        Executa(*sessão, Criação_Tabela(tabela, campos));
}

void Cria_Tabela_Da_Estrutura(Ligação& conexão, const Estrutura_Tabela& estrutura) {
    Cria_Tabela(conexão, estrutura.Nome, estrutura.Campos);
    for (const Índice_Info& índice : estrutura.Índices) Adiciona_Índice(conexão, estrutura.Nome, índice);
}

void Exclui_Tabela(Ligação& conexão, const QString& tabela) {
    if (auto sessão = Sessão_De(conexão)) Executa(*sessão, "DROP TABLE " + Citação(tabela));
}

void Adiciona_Campo(Ligação& conexão, const QString& tabela, const Campo_Info& campo) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    if (sessão->Servidor()) {
        Falha_Banco falha;
        No_Servidor(Catálogo_Servidor::Adiciona_Campo(*sessão, tabela, campo, falha), falha);
        return;
    }
    if (campo.Auto) {
        Estrutura_Tabela atual = Estrutura(conexão, tabela);
        QVector<Campo_Info> campos = atual.Campos;
        campos.append(campo);
        Reconstrói(*sessão, atual, campos);
        return;
    }
    Executa(*sessão, "ALTER TABLE " + Citação(tabela) + " ADD COLUMN " + Citação(campo.Nome) + " " +
                         Tipo_Declarado(campo));
}

void Exclui_Campo(Ligação& conexão, const QString& tabela, const QString& campo) {
    if (auto sessão = Sessão_De(conexão))
        Executa(*sessão, "ALTER TABLE " + Citação(tabela) + " DROP COLUMN " + Citação(campo));
}

void Altera_Campo(Ligação& conexão, const QString& tabela, const Campo_Info& campo) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    if (sessão->Servidor()) {
        Falha_Banco falha;
        No_Servidor(Catálogo_Servidor::Altera_Campo(*sessão, tabela, campo, falha), falha);
        return;
    }
    Estrutura_Tabela atual = Estrutura(conexão, tabela);
    const int posição = atual.Posição_Campo(campo.Nome);
    if (posição < 0) {
        Falha(3265, "O campo '" + campo.Nome + "' não existe na tabela '" + tabela + "'.");
        return;
    }
    QVector<Campo_Info> campos = atual.Campos;
    campos[posição] = campo;
    campos[posição].Nome = atual.Campos[posição].Nome;
    Reconstrói(*sessão, atual, campos);
}

void Adiciona_Índice(Ligação& conexão, const QString& tabela, const Índice_Info& índice) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    Falha_Banco falha;
    if (sessão->Servidor())
        No_Servidor(Catálogo_Servidor::Adiciona_Índice(*sessão, tabela, índice, falha), falha);
    else
        Executa(*sessão, Criação_Índice(tabela, índice));
}

void Garante_Índice_de_Consulta(Ligação& conexão, const QString& tabela, const QString& campo) {
    auto sessão = Sessão_De(conexão);
    if (!sessão || !Existe_Tabela(conexão, tabela)) return;
    if (sessão->Servidor()) {
        Falha_Banco falha;
        No_Servidor(Catálogo_Servidor::Garante_Índice_de_Consulta(*sessão, tabela, campo, falha), falha);
        return;
    }
    Executa(*sessão, "CREATE INDEX IF NOT EXISTS " + Citação(Nome_Índice_de_Consulta(tabela, campo)) +
                         " ON " + Citação(tabela) + " (" + Citação(campo) + ")");
}

void Garante_Índices_de_Texto(Ligação& conexão, const QString& tabela, const QStringList& campos) {
    auto sessão = Sessão_De(conexão);
    if (!sessão || !sessão->Servidor() || !Existe_Tabela(conexão, tabela)) return;
    Falha_Banco ignorada;
    Catálogo_Servidor::Garante_Índices_de_Texto(*sessão, tabela, campos, ignorada);
}

void Exclui_Índice(Ligação& conexão, const QString& tabela, const QString& índice) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    Falha_Banco falha;
    if (sessão->Servidor())
        No_Servidor(Catálogo_Servidor::Exclui_Índice(*sessão, tabela, índice, falha), falha);
    else
        Executa(*sessão, "DROP INDEX " + Citação(Nome_Índice_Físico(tabela, índice)));
}

void Copia_Banco(Ligação& conexão, const QString& destino) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return;
    if (sessão->Servidor()) {
        Falha_Banco falha;
        No_Servidor(Catálogo_Servidor::Copia_Banco(*sessão, destino, falha), falha);
        return;
    }
    QString caminho = destino;
    caminho.replace('\'', "''");
    Falha_Banco falha;
    if (!sessão->Executa("VACUUM INTO '" + caminho + "'", falha)) Falha(falha.Número, falha.Descrição);
}

QStringList Lista_Tabelas(Ligação& conexão) {
    auto sessão = Sessão_De(conexão);
    return sessão ? sessão->Tabelas() : QStringList();
}

bool Existe_Tabela(Ligação& conexão, const QString& tabela) {
    for (const QString& nome : Lista_Tabelas(conexão))
        if (nome.compare(tabela, Qt::CaseInsensitive) == 0) return true;
    return false;
}

Estrutura_Tabela Estrutura(Ligação& conexão, const QString& tabela) {
    auto sessão = Sessão_De(conexão);
    if (!sessão) return {};
    Falha_Banco falha;
    auto estrutura = sessão->Estrutura(tabela, falha);
    return estrutura ? *estrutura : Estrutura_Tabela{};
}

}  // namespace Catálogo
