#include "store/Leitura_Sequencial.h"

#include <QDateTime>
#include <QHash>
#include <cstring>
#include <limits>

#include "failure/Rotina.h"
#include "store/Comando_Banco.h"
#include "store/Continuação_Chave.h"
#include "store/Tradutor_SQL.h"

int Leitura_Sequencial::Linhas_Por_Página(bool servidor, bool ordem_servida) {
    // An order no index serves sorts the rest of the source for every page: fewer, larger pages.
    if (!ordem_servida) return 4096;
    return servidor ? 2000 : 512;
}

Leitura_Sequencial::Leitura_Sequencial(Registros& registros, const QStringList& campos, int linhas_por_página,
                                       std::source_location onde)
    : C(registros.Caminhada_Atual()), Onde(onde) {
    if (!C.Sessão_ || !C.Estrutura) return;
    for (const QString& nome : campos) {
        const int posição = C.Estrutura->Posição_Campo(nome);
        if (posição < 0) {
            Falha(
                3265,
                "O item '" + nome + "' não pôde ser encontrado na coleção correspondente ao nome solicitado.",
                onde);
            return;
        }
        Tipos << C.Estrutura->Campos[posição].Tipo;
        Expressões_Campos << Citação(C.Estrutura->Campos[posição].Nome);
        Colunas += ", " + Expressões_Campos.last();
    }
    Quantos_Campos = static_cast<int>(campos.size());
    Texto_Relê = "SELECT rowid" + Colunas + " FROM " + Citação(C.Estrutura->Nome) + " WHERE rowid IN (";
    Por_Página =
        linhas_por_página > 0 ? linhas_por_página : Linhas_Por_Página(C.Sessão_->Servidor(), C.Ordem_Servida);
    Lidos.reserve(Por_Página * Quantos_Campos);
    Ids.reserve(Por_Página);
    Valores_Atuais.resize(Quantos_Campos);
    Feitos.fill(0, Quantos_Campos);
    if (!C.Na_Linha) return;
    // A row just added here has its place in the order read now.
    if (!C.Chave_Conhecida) {
        QString termos;
        for (const QString& termo : C.Termos) termos += ", " + termo;
        Falha_Banco falha;
        Comando_Banco* comando = C.Sessão_->Prepara(
            "SELECT rowid" + termos + " FROM " + Citação(C.Estrutura->Nome) + " WHERE rowid = ?", falha);
        if (comando == nullptr) {
            Falhou(falha);
            return;
        }
        comando->Liga_Inteiro(1, C.Id);
        const int r = comando->Passo();
        C.Chave.clear();
        if (r == Linha_Pronta)
            for (int i = 0; i < C.Termos.size(); ++i) C.Chave << Valor_Chave(comando, i + 1);
        comando->Reinicia();
        if (r != Linha_Pronta) return;
    }
    // The current row itself comes first: the rows after "its id less one" with its order values.
    De_Id = C.Id - 1;
    De_Chave = C.Chave;
    Terminou = false;
    Última_Página = false;
}

void Leitura_Sequencial::Falhou(const Falha_Banco& falha) {
    Terminou = true;
    Ids.clear();
    Lidos.clear();
    Falha(falha.Número, falha.Descrição, Onde);
}

void Leitura_Sequencial::Guarda(Comando_Banco* comando, int coluna, int campo, Lido& lido) {
    if (comando->Tipo(coluna) == Tipo_Valor::Nulo) {
        lido.Tamanho = -1;
        return;
    }
    lido.Tamanho = 0;
    switch (Tipos[campo]) {
        case Tipo_Long:
        case Tipo_Boolean:
            lido.Inteiro = comando->Inteiro(coluna);
            return;
        case Tipo_Double:
            lido.Real = comando->Real(coluna);
            return;
        default: {
            QByteArray apoio;
            const QByteArrayView bytes = comando->Vista_Bytes(coluna, apoio);
            lido.Início = Bytes_Página.size();
            lido.Tamanho = bytes.size();
            // Grown by hand: the page keeps its room from one page to the next.
            Bytes_Página.resize(lido.Início + lido.Tamanho);
            if (lido.Tamanho > 0) std::memcpy(Bytes_Página.data() + lido.Início, bytes.data(), lido.Tamanho);
        }
    }
}

const QVariant& Leitura_Sequencial::Valor(int campo) const {
    QVariant& valor = Valores_Atuais[campo];
    if (Feitos[campo]) return valor;
    Feitos[campo] = 1;
    const Lido& lido = Lidos[Atual * Quantos_Campos + campo];
    if (lido.Tamanho < 0) {
        valor = QVariant();
        return valor;
    }
    switch (Tipos[campo]) {
        case Tipo_Long:
            valor = static_cast<int>(lido.Inteiro);
            break;
        case Tipo_Double:
            valor = lido.Real;
            break;
        case Tipo_Boolean:
            valor = lido.Inteiro != 0;
            break;
        case Tipo_Data:
            valor = Data_Do_Banco(QString::fromUtf8(Texto_Utf8(campo)));
            break;
        default:
            valor = QString::fromUtf8(Texto_Utf8(campo));
    }
    return valor;
}

// The page after De_Id/De_Chave. As a slot's page does, each statement starts in the index at the key:
// first the rows that share every term with it and come after it by row id, then those that share one
// term less, and so on up to the first term.
bool Leitura_Sequencial::Lê_Página() {
    Ids.clear();
    Lidos.resize(0);
    Bytes_Página.resize(0);
    Sumidas.clear();
    Atual = -1;
    QString ordem;
    for (int i = 0; i < C.Termos.size(); ++i) ordem += C.Termos[i] + (C.Descendentes[i] ? " DESC, " : ", ");
    ordem += "rowid";
    const QString início = "SELECT rowid" + Colunas;
    // A term of the order that is a field asked for is read from that field's column; the others are
    // selected after the fields.
    QString termos;
    QVector<int> colunas_termos;
    int próxima_coluna = 1 + Quantos_Campos;
    for (const QString& termo : C.Termos) {
        const int campo = static_cast<int>(Expressões_Campos.indexOf(termo));
        if (campo >= 0) {
            colunas_termos << 1 + campo;
        } else {
            termos += ", " + termo;
            colunas_termos << próxima_coluna++;
        }
    }
    Com_Carimbo = C.Sessão_->Carimbo(Carimbo);
    bool falhou = false;
    QVariantList última_chave;
    const auto roda = [&](const QString& condição, const QVariantList& valores) {
        if (falhou || Ids.size() >= Por_Página) return;
        Falha_Banco falha;
        // The order's values are read only for the row that fills the page, where the next page starts.
        Comando_Banco* comando = C.Sessão_->Prepara(
            início + termos + " " + C.Origem + condição + " ORDER BY " + ordem + " LIMIT ?", falha);
        if (comando == nullptr) {
            falhou = true;
            return Falhou(falha);
        }
        int n = 1;
        comando->Liga_Inteiro(n++, C.Limite_Id);
        for (const QVariant& valor : valores) Liga_Chave(comando, n++, valor);
        comando->Liga_Inteiro(n, Por_Página - Ids.size());
        int r;
        while ((r = comando->Passo()) == Linha_Pronta) {
            Ids << comando->Inteiro(0);
            Lidos.resize(Lidos.size() + Quantos_Campos);
            Lido* linha = Lidos.data() + Lidos.size() - Quantos_Campos;
            for (int i = 0; i < Quantos_Campos; ++i) Guarda(comando, i + 1, i, linha[i]);
            if (Ids.size() == Por_Página) {
                última_chave.clear();
                for (int i = 0; i < C.Termos.size(); ++i)
                    última_chave << Valor_Chave(comando, colunas_termos[i]);
            }
        }
        comando->Reinicia();
        if (r != Fim_Comando) {
            falhou = true;
            C.Sessão_->Falha_Da_Última(falha, r);
            Falhou(falha);
        }
    };
    QVector<bool> para_maiores;
    for (const bool descendente : C.Descendentes) para_maiores << !descendente;
    Continua_Depois_Da_Chave(C.Termos, para_maiores, De_Chave, De_Id, true, roda);
    if (falhou) return false;
    Sumidas.fill(false, Ids.size());
    // A page that came short holds the source's last rows.
    Última_Página = Ids.size() < Por_Página;
    if (!Última_Página) {
        De_Id = Ids.last();
        De_Chave = última_chave;
    }
    return !Ids.isEmpty();
}

// Another write since the page was read: the rows not yet given are read again by id, in one statement,
// as a slot reads a row again when it becomes current; those gone are skipped.
bool Leitura_Sequencial::Relê_Resto() {
    QHash<qint64, int> posições;
    QString marcas;
    for (int i = Atual; i < Ids.size(); ++i) {
        if (Sumidas[i]) continue;
        posições.insert(Ids[i], i);
        marcas += marcas.isEmpty() ? "?" : ", ?";
    }
    Com_Carimbo = C.Sessão_->Carimbo(Carimbo);
    if (posições.isEmpty()) return true;
    Falha_Banco falha;
    Comando_Banco* comando = C.Sessão_->Prepara(Texto_Relê + marcas + ")", falha);
    if (comando == nullptr) {
        Falhou(falha);
        return false;
    }
    int n = 1;
    for (int i = Atual; i < Ids.size(); ++i)
        if (!Sumidas[i]) comando->Liga_Inteiro(n++, Ids[i]);
    QHash<qint64, int> achadas;
    int r;
    while ((r = comando->Passo()) == Linha_Pronta) {
        const int i = posições.value(comando->Inteiro(0), -1);
        if (i < 0) continue;
        achadas.insert(Ids[i], i);
        for (int c = 0; c < Quantos_Campos; ++c) Guarda(comando, c + 1, c, Lidos[i * Quantos_Campos + c]);
    }
    comando->Reinicia();
    if (r != Fim_Comando) {
        C.Sessão_->Falha_Da_Última(falha, r);
        Falhou(falha);
        return false;
    }
    for (auto it = posições.cbegin(); it != posições.cend(); ++it)
        if (!achadas.contains(it.key())) Sumidas[it.value()] = true;
    return true;
}

bool Leitura_Sequencial::Próxima() {
    while (!Terminou) {
        ++Atual;
        if (Atual >= Ids.size()) {
            if (Última_Página || !Lê_Página()) {
                Terminou = true;
                break;
            }
            Atual = 0;
        }
        if (Com_Carimbo) {
            Carimbo_Dados agora;
            if (C.Sessão_->Carimbo(agora) && !(agora == Carimbo) && !Relê_Resto()) break;
        }
        if (!Sumidas[Atual]) {
            Feitos.fill(0);
            return true;
        }
    }
    Ids.clear();
    Lidos.clear();
    return false;
}
