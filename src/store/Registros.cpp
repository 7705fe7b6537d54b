#include "store/Registros.h"

#include "store/Continuação_Chave.h"

#include <QDateTime>
#include <QRegularExpression>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "store/Comando_Banco.h"
#include "store/Linha_Empacotada.h"
#include "store/Ligação.h"
#include "store/Tradutor_SQL.h"

namespace {
constexpr long Erro_Sem_Registro = 3021;
const QString Texto_Sem_Registro = "Não há nenhum registro corrente.";
const QString Texto_Várias_Etapas =
    "Operação de várias etapas gerou erros. Verifique cada valor de status. Nenhum trabalho foi realizado.";
const QString Texto_Bloqueado =
    "Não foi possível atualizar; a informação está bloqueada no momento por outro usuário.";

void Liga_Valor(Comando_Banco* comando, int posição, const QVariant& valor) {
    if (!valor.isValid()) {
        comando->Liga_Nulo(posição);
        return;
    }
    switch (valor.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::Bool:
        case QMetaType::UInt:
        case QMetaType::ULongLong:
            comando->Liga_Inteiro(posição, valor.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            comando->Liga_Real(posição, valor.toDouble());
            break;
        default: {
            const QByteArray texto = valor.toString().toUtf8();
            comando->Liga_Texto(posição, texto);
        }
    }
}

QDateTime Data_Digitada(const QString& texto) {
    for (const char* formato : {"dd/MM/yyyy HH:mm:ss", "dd/MM/yyyy", "yyyy-MM-dd HH:mm:ss", "yyyy-MM-dd"}) {
        QDateTime d = QDateTime::fromString(texto.trimmed(), formato);
        if (d.isValid()) return d;
    }
    const QDate dia = QDate::fromString(texto.trimmed(), "d/M/yyyy");
    return dia.isValid() ? QDateTime(dia, QTime(0, 0)) : QDateTime();
}
}  // namespace

// ---------- Campo ----------

QVariant Campo::Valor_Pedido(std::source_location onde) const {
    if (!R->Aberto_) {
        Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
        return {};
    }
    if (Posição < 0 || Posição >= R->Fields_Count()) {
        Falha(3265, "O item não pôde ser encontrado na coleção correspondente ao nome ou ordinal solicitado.",
              onde);
        return {};
    }
    if (R->Modo == Registros::Modo_Edição::Inclusão) return R->Pendentes.Valor(Posição);
    if (!R->Tem_Linha_Atual()) {
        Falha(Erro_Sem_Registro, Texto_Sem_Registro, onde);
        return {};
    }
    if (const QVariant* pendente = R->Pendentes.Procura(Posição)) return *pendente;
    if (R->Estático) return R->Linhas_Estáticas.at(R->Posição).at(Posição);
    if (!R->Garante_Linha()) {
        Falha(-2147217885, "Uma linha excluída foi referenciada.", onde);
        return {};
    }
    return R->Linha.at(Posição);
}

void Campo::Set_Value(const QVariant& valor, std::source_location onde) {
    if (!R->Aberto_) {
        Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
        return;
    }
    if (Posição < 0 || Posição >= R->Fields_Count()) {
        Falha(3265, "O item não pôde ser encontrado na coleção correspondente ao nome ou ordinal solicitado.",
              onde);
        return;
    }
    if (R->Estático) {
        Falha(3027, "Não é possível atualizar. O banco de dados ou objeto é somente leitura.", onde);
        return;
    }
    if (R->Estrutura->Campos[Posição].Auto) {
        Falha(-2147217887, Texto_Várias_Etapas + " O campo de numeração automática não pode ser alterado.",
              onde);
        return;
    }
    if (R->Modo == Registros::Modo_Edição::Nenhum) {
        R->Edita(onde);
        if (R->Modo == Registros::Modo_Edição::Nenhum) return;
    }
    QVariant convertido;
    Falha_Banco falha;
    if (!R->Converte_Para_Gravar(Posição, valor, convertido, falha)) {
        Falha(falha.Número, falha.Descrição, onde);
        return;
    }
    R->Pendentes.Põe(Posição, convertido);
}

QString Campo::Name() const {
    if (R->Estático) return R->Nomes_Estáticos.value(Posição);
    return R->Estrutura && Posição >= 0 && Posição < R->Estrutura->Campos.size()
               ? R->Estrutura->Campos[Posição].Nome
               : QString();
}

int Campo::Type() const {
    if (R->Estático) return R->Tipos_Estáticos.value(Posição);
    return R->Estrutura && Posição >= 0 && Posição < R->Estrutura->Campos.size()
               ? R->Estrutura->Campos[Posição].Tipo
               : 0;
}

int Campo::DefinedSize() const {
    if (R->Estático || !R->Estrutura || Posição < 0 || Posição >= R->Estrutura->Campos.size()) return 0;
    return R->Estrutura->Campos[Posição].Largura;
}

// ---------- Registros ----------

namespace {
// A walk holds a few pages of row ids around the current row; a page is one look-up in the index.
constexpr int Linhas_Por_Página = 128;
constexpr int Páginas_Na_Janela = 3;
constexpr int Linhas_Primeira_Página = 4;
constexpr int Linhas_Página_Curta = 16;

// The table's fields as a statement read them, the first one in column `primeira`.
QVector<QVariant> Campos_Lidos(const Estrutura_Tabela& estrutura, Comando_Banco* comando, int primeira) {
    QVector<QVariant> campos(estrutura.Campos.size());
    for (int i = 0; i < campos.size(); ++i) {
        const int coluna = primeira + i;
        if (comando->Tipo(coluna) == Tipo_Valor::Nulo) continue;
        switch (estrutura.Campos[i].Tipo) {
            case Tipo_Long:
                campos[i] = static_cast<int>(comando->Inteiro(coluna));
                break;
            case Tipo_Double:
                campos[i] = comando->Real(coluna);
                break;
            case Tipo_Boolean:
                campos[i] = comando->Inteiro(coluna) != 0;
                break;
            case Tipo_Data:
                campos[i] = Data_Do_Banco(comando->Texto(coluna));
                break;
            default:
                campos[i] = comando->Texto(coluna);
        }
    }
    return campos;
}

// A row of a page is kept packed (Linha_Empacotada.h), as the store gave it, and becomes values only when a
// step makes it current: a page then costs one block for its rows, not a value per field, and a page left
// behind frees its block. A row's fields come first, each asked for as its type says, as Campos_Lidos
// does; after them the `chaves` values of the order, from column 1, as the store gave them, so that
// Chave_Do_Bruto gives them back as Valor_Chave reads them. The plan is made once for a page.
QVector<Coluna_Empacotada> Plano_Bruto(const Estrutura_Tabela& estrutura, int primeira, int chaves) {
    QVector<Coluna_Empacotada> plano;
    plano.reserve(estrutura.Campos.size() + chaves);
    for (int i = 0; i < estrutura.Campos.size(); ++i) {
        Pedido_Coluna pedido = Pedido_Coluna::Texto;
        switch (estrutura.Campos[i].Tipo) {
            case Tipo_Long:
            case Tipo_Boolean:
                pedido = Pedido_Coluna::Inteiro;
                break;
            case Tipo_Double:
                pedido = Pedido_Coluna::Real;
                break;
        }
        plano.append({primeira + i, pedido});
    }
    for (int i = 0; i < chaves; ++i) plano.append({1 + i, Pedido_Coluna::Como_Veio});
    return plano;
}

// The values of a packed row, the same that Campos_Lidos gives of the statement that read it, made in
// `valores` in place: a walk's row reuses the room of the row before it, and a text moves into its value.
void Campos_Do_Bruto(const Estrutura_Tabela& estrutura, const char* p, QVector<QVariant>& valores) {
    const int campos = static_cast<int>(estrutura.Campos.size());
    if (valores.size() != campos) valores.resize(campos);
    QVariant* valor = valores.data();
    for (int i = 0; i < campos; ++i, ++valor) {
        const char marca = *p++;
        const int tipo = estrutura.Campos[i].Tipo;
        if (marca == Bruto_Nulo) {
            if (valor->isValid()) *valor = QVariant();
        } else if (marca == Bruto_Texto) {
            quint32 tamanho = 0;
            std::memcpy(&tamanho, p, sizeof tamanho);
            p += sizeof tamanho;
            QString texto = QString::fromUtf8(p, static_cast<qsizetype>(tamanho));
            p += tamanho;
            if (tipo == Tipo_Data)
                *valor = Data_Do_Banco(texto);
            else
                valor->setValue(std::move(texto));
        } else if (marca == Bruto_Real) {
            double número = 0;
            std::memcpy(&número, p, sizeof número);
            p += sizeof número;
            valor->setValue(número);
        } else {
            qint64 número = 0;
            std::memcpy(&número, p, sizeof número);
            p += sizeof número;
            if (tipo == Tipo_Boolean)
                valor->setValue(número != 0);
            else
                valor->setValue(static_cast<int>(número));
        }
    }
}

// The values of the order packed after the fields of a row, as Valor_Chave gives them.
QVariantList Chave_Do_Bruto(const Estrutura_Tabela& estrutura, const char* p, int chaves) {
    QVariantList chave;
    chave.reserve(chaves);
    for (int i = 0; i < estrutura.Campos.size() + chaves; ++i) {
        const char marca = *p++;
        QVariant valor;
        if (marca == Bruto_Texto) {
            quint32 tamanho = 0;
            std::memcpy(&tamanho, p, sizeof tamanho);
            p += sizeof tamanho;
            if (i >= estrutura.Campos.size()) valor = QByteArray(p, static_cast<qsizetype>(tamanho));
            p += tamanho;
        } else if (marca == Bruto_Inteiro || marca == Bruto_Real) {
            if (i >= estrutura.Campos.size()) {
                if (marca == Bruto_Inteiro) {
                    qint64 número = 0;
                    std::memcpy(&número, p, sizeof número);
                    valor = número;
                } else {
                    double número = 0;
                    std::memcpy(&número, p, sizeof número);
                    valor = número;
                }
            }
            p += 8;
        }
        if (i >= estrutura.Campos.size()) chave << valor;
    }
    return chave;
}

}  // namespace

QVariant Valor_Chave(Comando_Banco* comando, int coluna) {
    switch (comando->Tipo(coluna)) {
        case Tipo_Valor::Nulo:
            return {};
        case Tipo_Valor::Inteiro:
            return QVariant(static_cast<qint64>(comando->Inteiro(coluna)));
        case Tipo_Valor::Real:
            return comando->Real(coluna);
        default:
            return comando->Bytes(coluna);
    }
}

void Liga_Chave(Comando_Banco* comando, int posição, const QVariant& valor) {
    if (valor.typeId() == QMetaType::QByteArray) {
        const QByteArray texto = valor.toByteArray();
        comando->Liga_Texto(posição, texto);
    } else {
        Liga_Valor(comando, posição, valor);
    }
}

namespace {

// The end of a walk's source: the rows there when its keyset was taken.
const QString Até_O_Limite = "+rowid <= ?";

// "Where <criterion> Order By <terms>" split in its two parts, without their keywords.
void Separa_Resto(const QString& resto, QString& critério, QString& ordenação) {
    static const QRegularExpression ordem("\\border\\s+by\\b", QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression onde("^\\s*where\\b", QRegularExpression::CaseInsensitiveOption);
    const auto m = ordem.match(resto);
    QString antes = m.hasMatch() ? resto.left(m.capturedStart()) : resto;
    ordenação = m.hasMatch() ? resto.mid(m.capturedEnd()).trimmed() : QString();
    if (const auto w = onde.match(antes); w.hasMatch()) antes = antes.mid(w.capturedEnd());
    critério = antes.trimmed();
}
}  // namespace

void Registros::Reinicia() {
    Close();
    Source.clear();
    Índice_Atual.clear();
}

void Registros::Close() {
    Descarta_Edição();
    Sessão_.reset();
    Estrutura.reset();
    Resto_Consulta.clear();
    Campos_Da_Tabela.clear();
    Aberto_ = false;
    Começo_Pendente = false;
    Origem.clear();
    Origem_Sem_Limite.clear();
    Ordem.clear();
    Colunas_Chave.clear();
    Limite_Id = 0;
    Limite_Na_Página = false;
    Janela.clear();
    Atual = -1;
    Onde = Lugar::Antes;
    Vazio = true;
    Contagem = -1;
    Excluídas_Antes_Da_Contagem = 0;
    Posição = -1;
    Linha_Lida = false;
    Linha_Adiada = false;
    Linha.clear();
    Carimbo_Linha.reset();
    Termina_Página();
    Textos_Gravação.clear();
    Estático = false;
    Nomes_Estáticos.clear();
    Tipos_Estáticos.clear();
    Linhas_Estáticas.clear();
}

void Registros::Open(const QString& fonte, const QString& texto_conexão, std::source_location onde) {
    Ligação própria;
    própria.Open(texto_conexão, onde);
    if (!própria.Aberta()) {
        Reinicia();
        Source = fonte;
        return;
    }
    Open(fonte, própria, Opção_Abertura::Texto, onde);
    // The recordset keeps the file's session alive after its own connection object goes.
}

void Registros::Open(const QString& fonte, Ligação& conexão, Opção_Abertura, std::source_location onde) {
    Reinicia();
    Source = fonte;
    if (!conexão.Aberta() || conexão.É_Dbase() || !conexão.Sessão_Física()) {
        Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
        return;
    }
    Sessão_ = conexão.Sessão_Física();
    const Consulta_Tabela consulta = Analisa_Fonte(fonte);
    Falha_Banco falha;
    if (consulta.Válida) {
        Estrutura = Sessão_->Estrutura(consulta.Tabela, falha);
        if (!Estrutura) {
            Falha(falha.Número, falha.Descrição, onde);
            Sessão_.reset();
            return;
        }
        Campos_Da_Tabela.clear();
        for (const Campo_Info& campo : Estrutura->Campos)
            Campos_Da_Tabela += (Campos_Da_Tabela.isEmpty() ? "" : ", ") + Citação(campo.Nome);
        Resto_Consulta = Traduz_SQL(consulta.Resto);
        Aberto_ = true;
        Prepara_Ordem();
        Começo_Pendente = true;
        return;
    }

    Carrega_Estático(onde);
}

void Registros::Carrega_Estático(std::source_location onde) {
    Falha_Banco falha;
    Estático = true;
    Nomes_Estáticos.clear();
    Linhas_Estáticas.clear();
    // A count whose tables nothing has written since it was last asked is answered from memory.
    const QString sql = Traduz_SQL(Source);
    if (qint64 memorizada = 0; Sessão_->Contagem_Memorizada(sql, memorizada)) {
        Nomes_Estáticos = {"Expr1000"};
        Tipos_Estáticos = {Tipo_Long};
        Linhas_Estáticas = {{QVariant(static_cast<int>(memorizada))}};
        Aberto_ = true;
        Posição = 0;
        return;
    }
    Comando_Banco* comando = Sessão_->Prepara(sql, falha);
    if (comando == nullptr) {
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    const int colunas = comando->Colunas();
    for (int i = 0; i < colunas; ++i) Nomes_Estáticos << comando->Nome_Coluna(i);
    Tipos_Estáticos.fill(Tipo_Texto, colunas);
    int r;
    while ((r = comando->Passo()) == Linha_Pronta) {
        QVector<QVariant> linha(colunas);
        for (int i = 0; i < colunas; ++i) {
            switch (comando->Tipo(i)) {
                case Tipo_Valor::Inteiro: {
                    const qint64 v = comando->Inteiro(i);
                    linha[i] =
                        (v >= INT32_MIN && v <= INT32_MAX) ? QVariant(static_cast<int>(v)) : QVariant(v);
                    Tipos_Estáticos[i] = Tipo_Long;
                    break;
                }
                case Tipo_Valor::Real:
                    linha[i] = comando->Real(i);
                    Tipos_Estáticos[i] = Tipo_Double;
                    break;
                case Tipo_Valor::Nulo:
                    break;
                default:
                    linha[i] = comando->Texto(i);
            }
        }
        Linhas_Estáticas.append(linha);
    }
    comando->Reinicia();
    if (r != Fim_Comando) {
        Sessão_->Falha_Da_Última(falha, r);
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    if (colunas == 1 && Linhas_Estáticas.size() == 1)
        Sessão_->Memoriza_Contagem(sql, Linhas_Estáticas[0][0].toLongLong());
    Aberto_ = true;
    Posição = Linhas_Estáticas.isEmpty() ? -1 : 0;
}

// The order of the walk: the current index's fields, else the source's own Order By, else the row id;
// the row id ends every order, so that each row has a place of its own.
void Registros::Prepara_Ordem() {
    QString critério, ordenação;
    if (!Resto_Consulta.trimmed().isEmpty()) Separa_Resto(Resto_Consulta, critério, ordenação);
    Ordem.clear();
    if (const Índice_Info* índice = Índice_Atual.isEmpty() ? nullptr : Estrutura->Índice(Índice_Atual)) {
        for (const QString& campo : índice->Campos) Ordem.append({Citação(campo), false});
    } else if (!ordenação.isEmpty()) {
        static const QRegularExpression direção("\\s+(asc|desc)$", QRegularExpression::CaseInsensitiveOption);
        for (QString termo : ordenação.split(',')) {
            termo = termo.trimmed();
            bool descendente = false;
            if (const auto m = direção.match(termo); m.hasMatch()) {
                descendente = m.captured(1).compare("desc", Qt::CaseInsensitive) == 0;
                termo = termo.left(m.capturedStart()).trimmed();
            }
            if (!termo.isEmpty()) Ordem.append({termo, descendente});
        }
    }
    Colunas_Chave.clear();
    for (const Termo_Ordem& termo : Ordem) Colunas_Chave += ", " + termo.Expressão;
    Ordem_Servida = Ordem.isEmpty();
    for (const Índice_Info& índice : Estrutura->Índices)
        if (!Ordem.isEmpty() && !índice.Campos.isEmpty() &&
            (Citação(índice.Campos[0]) == Ordem[0].Expressão ||
             índice.Campos[0].compare(Ordem[0].Expressão, Qt::CaseInsensitive) == 0))
            Ordem_Servida = true;
    // The criterion stands in brackets: an Or in it must not swallow the conditions of the walk.
    Sem_Critério = critério.isEmpty();
    Origem = "FROM " + Citação(Estrutura->Nome) + " WHERE " +
             (critério.isEmpty() ? QString() : "(" + critério + ") AND ") + Até_O_Limite;
    Origem_Sem_Limite =
        "FROM " + Citação(Estrutura->Nome) + " WHERE " + (critério.isEmpty() ? "true" : "(" + critério + ")");
}

// The keyset is the rows there now: rows added later by others have greater ids and stay out.
bool Registros::Lê_Limite(std::source_location onde) {
    Falha_Banco falha;
    Comando_Banco* comando = Sessão_->Prepara("SELECT max(rowid) FROM " + Citação(Estrutura->Nome), falha);
    int r = 1;  // a failure until the statement runs
    if (comando != nullptr) {
        r = comando->Passo();
        Limite_Id = r == Linha_Pronta ? comando->Inteiro(0) : 0;
        comando->Reinicia();
        if (r != Linha_Pronta) Sessão_->Falha_Da_Última(falha, r);
    }
    Contagem = -1;
    Excluídas_Antes_Da_Contagem = 0;
    if (r == Linha_Pronta) return true;
    Falha(falha.Número, falha.Descrição, onde);
    Close();
    return false;
}

// Up to `máximo` rows that follow `de` in the walk's direction (from the end when there is no `de`),
// in that direction. Each query starts in the index at the given key, so the cost does not depend on
// where in the table the walk stands: first the rows that share every term with `de` and come after it
// by row id, then those that share one term less, and so on up to the first term.
QVector<Registros::Entrada> Registros::Busca_Página(const Entrada* de, bool adiante, int máximo,
                                                    std::source_location onde) {
    QVector<Entrada> página;
    QString ordem;
    for (const Termo_Ordem& termo : Ordem)
        ordem += termo.Expressão + (termo.Descendente == adiante ? " DESC, " : ", ");
    ordem += adiante ? "rowid" : "rowid DESC";
    // The rows of a page come whole with their ids: a step to one of them reads nothing while the file's
    // mark says that nothing was written since. A walk that takes all its ids at once takes only the ids.
    // A walk taken anew reads the table's greatest row id, its limit, in the statement of its first page.
    const bool com_limite = de == nullptr && Limite_Na_Página;
    const QString colunas_lidas =
        "SELECT rowid" + Colunas_Chave + (Ordem_Servida ? ", " + Campos_Da_Tabela + " " : " ") +
        (com_limite ? ", (SELECT max(rowid) FROM " + Citação(Estrutura->Nome) + ") " : "");
    // The embedded engine checks the keyset's limit here, on the row ids that the page reads anyway: the
    // statement reads on past it, and in the rare page that meets a row added since the keyset was taken,
    // those of its rows are read again with the limit in the statement. A server keeps it there.
    const bool limite_aqui = !com_limite && !Sessão_->Servidor();
    Carimbo_Dados carimbo;
    const bool com_carimbo = Ordem_Servida && Sessão_->Carimbo(carimbo);
    const bool com_valores = com_carimbo || (Ordem_Servida && Página_Aberta != 0);
    const int colunas = Estrutura->Campos.size();
    const int primeira = 1 + static_cast<int>(Ordem.size());
    bool falhou = false;
    página.reserve(std::min(máximo, Linhas_Por_Página));
    const QVector<Coluna_Empacotada> plano =
        com_valores ? Plano_Bruto(*Estrutura, primeira, static_cast<int>(Ordem.size()))
                    : QVector<Coluna_Empacotada>();
    // The page's rows are packed one after another in one block, which they then share.
    QByteArray bloco;
    qsizetype usado = 0;
    // Reads the rows of one condition; false when a row beyond the keyset's limit came (`filtra` only).
    const auto lê = [&](const QString& início, bool filtra, const QString& condição,
                        const QVariantList& valores) {
        Falha_Banco falha;
        Comando_Banco* comando =
            Sessão_->Prepara(início + condição + " ORDER BY " + ordem + " LIMIT ?", falha);
        if (comando == nullptr) {
            falhou = true;
            Falha(falha.Número, falha.Descrição, onde);
            return true;
        }
        int n = 1;
        if (!filtra) comando->Liga_Inteiro(n++, com_limite ? std::numeric_limits<qint64>::max() : Limite_Id);
        for (const QVariant& valor : valores) Liga_Chave(comando, n++, valor);
        comando->Liga_Inteiro(n, máximo - static_cast<int>(página.size()));
        int r;
        while ((r = comando->Passo()) == Linha_Pronta) {
            Entrada entrada;
            entrada.Id = comando->Inteiro(0);
            if (filtra && entrada.Id > Limite_Id) {
                comando->Reinicia();
                return false;
            }
            // A row read whole keeps its values of the order in its block, read back only for the row
            // that a next page starts from.
            if (!com_valores) {
                entrada.Chave.reserve(Ordem.size());
                for (int i = 0; i < Ordem.size(); ++i) entrada.Chave << Valor_Chave(comando, i + 1);
            }
            if (com_limite) {
                Limite_Id = comando->Inteiro(primeira + (Ordem_Servida ? colunas : 0));
                Limite_Na_Página = false;
            }
            if (com_valores) {
                entrada.Início = usado;
                usado = comando->Empacota(plano.constData(), static_cast<int>(plano.size()), bloco, usado);
                // The first row tells about how much room the page's rows take: the block is made that
                // large at once, not doubled again and again, copying the rows each time.
                if (entrada.Início == 0) {
                    const qsizetype linhas = std::min<qsizetype>(máximo, 2 * Linhas_Por_Página);
                    if (bloco.size() < usado * linhas * 5 / 4) bloco.resize(usado * linhas * 5 / 4);
                }
                entrada.Chave_No_Bruto = true;
                if (com_carimbo) entrada.Carimbo = carimbo;
                entrada.Página = Página_Aberta;
            }
            página.append(std::move(entrada));
        }
        comando->Reinicia();
        if (r != Fim_Comando) {
            falhou = true;
            Sessão_->Falha_Da_Última(falha, r);
            Falha(falha.Número, falha.Descrição, onde);
        }
        return true;
    };
    const auto roda = [&](const QString& condição, const QVariantList& valores) {
        if (falhou || página.size() >= máximo) return;
        const qsizetype linhas_antes = página.size();
        const qsizetype usado_antes = usado;
        if (lê(colunas_lidas + (limite_aqui ? Origem_Sem_Limite : Origem), limite_aqui, condição, valores))
            return;
        página.resize(linhas_antes);
        usado = usado_antes;
        lê(colunas_lidas + Origem, false, condição, valores);
    };
    if (de == nullptr) {
        roda(QString(), {});
    } else {
        QStringList termos;
        QVector<bool> para_maiores;
        for (const Termo_Ordem& termo : Ordem) {
            termos << termo.Expressão;
            para_maiores << (termo.Descendente != adiante);
        }
        Continua_Depois_Da_Chave(termos, para_maiores, de->Chave, de->Id, adiante, roda);
    }
    if (falhou) {
        Close();
        return {};
    }
    if (com_valores) {
        bloco.truncate(usado);
        for (Entrada& entrada : página) entrada.Bruto = bloco;
    }
    return página;
}

// The place of one row in the current order; `filtrada` asks that it also be a row of the source.
bool Registros::Entrada_Da_Linha(qint64 id, bool filtrada, Entrada& entrada, std::source_location onde) {
    Falha_Banco falha;
    const QString sql = "SELECT rowid" + Colunas_Chave + " " +
                        (filtrada ? Origem : "FROM " + Citação(Estrutura->Nome) + " WHERE true") +
                        " AND rowid = ?";
    Comando_Banco* comando = Sessão_->Prepara(sql, falha);
    if (comando == nullptr) {
        Falha(falha.Número, falha.Descrição, onde);
        return false;
    }
    int n = 1;
    if (filtrada) comando->Liga_Inteiro(n++, Limite_Id);
    comando->Liga_Inteiro(n, id);
    const bool achou = comando->Passo() == Linha_Pronta;
    if (achou) {
        entrada = Entrada{id, {}, false};
        for (int i = 0; i < Ordem.size(); ++i) entrada.Chave << Valor_Chave(comando, i + 1);
    }
    comando->Reinicia();
    return achou;
}

// One step in the window of row ids, fetching the next page when the window ends there.
bool Registros::Passo(bool adiante, std::source_location onde) {
    // An order that no index serves (a source's own Order By on a plain field) would sort the whole
    // source again for every page: such a walk takes all its row ids at once, as a captured keyset.
    const bool servida = Ordem_Servida;
    // A window of one row (placed by a seek, or a row just added) goes on with a short page: the next step
    // after a seek is often the only one (the coherence walk seeks again after each question), and a long
    // walk reads full pages from its second page on.
    const int página_cheia = !servida             ? std::numeric_limits<int>::max()
                             : Janela.size() <= 1 ? std::max(Linhas_Página_Curta, Linhas_Página)
                                                  : std::max(Linhas_Por_Página, Linhas_Página);
    const int máximo_janela =
        servida ? Linhas_Por_Página * Páginas_Na_Janela : std::numeric_limits<int>::max();
    if (Janela.isEmpty()) {
        // Opening reads mostly one row: the first page is short, the next ones full; a page that a
        // window shows at once is read whole.
        QVector<Entrada> página =
            Busca_Página(nullptr, adiante, std::max(Linhas_Primeira_Página, Linhas_Página), onde);
        if (página.isEmpty()) return false;
        if (!adiante) std::reverse(página.begin(), página.end());
        Janela = std::move(página);
        Atual = adiante ? -1 : static_cast<int>(Janela.size());
    }
    int próxima = Atual + (adiante ? 1 : -1);
    if (próxima < 0 || próxima >= Janela.size()) {
        Entrada de = adiante ? Janela.last() : Janela.first();
        if (de.Chave_Adiada) Entrada_Da_Linha(de.Id, false, de, onde);
        if (de.Chave_No_Bruto)
            de.Chave =
                Chave_Do_Bruto(*Estrutura, de.Bruto.constData() + de.Início, static_cast<int>(Ordem.size()));
        QVector<Entrada> página = Busca_Página(&de, adiante, página_cheia, onde);
        if (página.isEmpty()) return false;
        // Forward, a page's rows join the window's end in place, in room kept for twice the window's rows,
        // and the window is trimmed to its size only when that room is full: the rows it keeps are then
        // moved once every few pages, not at every page. Back, the window is made anew in one block of the
        // size it needs: growing it at its front in place would move the whole window for each row.
        const qsizetype janela = static_cast<qsizetype>(máximo_janela);
        const qsizetype total = Janela.size() + página.size();
        if (adiante && servida && total <= 2 * janela) {
            if (Janela.capacity() < 2 * janela) Janela.reserve(2 * janela);
            for (Entrada& entrada : página) Janela.append(std::move(entrada));
        } else {
            const qsizetype sobra = std::max<qsizetype>(0, total - janela);
            QVector<Entrada> nova;
            nova.reserve(servida && adiante ? 2 * janela : total - sobra);
            if (adiante) {
                for (qsizetype i = sobra; i < Janela.size(); ++i) nova.append(std::move(Janela[i]));
                for (Entrada& entrada : página) nova.append(std::move(entrada));
                próxima -= static_cast<int>(sobra);
            } else {
                for (qsizetype i = página.size() - 1; i >= 0; --i) nova.append(std::move(página[i]));
                for (qsizetype i = 0; i < Janela.size() - sobra; ++i) nova.append(std::move(Janela[i]));
                próxima += static_cast<int>(página.size());
            }
            Janela = std::move(nova);
        }
    }
    Atual = próxima;
    return true;
}

// Moves to the next row that can still be read; rows deleted here or by another user are stepped over.
void Registros::Anda(bool adiante, std::source_location onde) {
    Descarta_Edição();
    Linha_Lida = false;
    Linha_Adiada = false;
    while (Passo(adiante, onde)) {
        if (!Janela[Atual].Excluída &&
            (Linha_Da_Página(Janela[Atual]) ||
             (Lê_Linhas_Da_Página(adiante) && Linha_Da_Página(Janela[Atual])) || Lê_Linha(Id_Atual()))) {
            Onde = Lugar::Na_Linha;
            Linha_Lida = true;
            return;
        }
    }
    if (!Aberto_) return;
    Onde = adiante ? Lugar::Depois : Lugar::Antes;
    Atual = adiante ? static_cast<int>(Janela.size()) : -1;
}

// Takes the keyset anew and starts at one end; its first page brings the keyset's limit with it.
void Registros::Começa_Com_Limite(bool do_início, std::source_location onde) {
    Contagem = -1;
    Excluídas_Antes_Da_Contagem = 0;
    Limite_Na_Página = true;
    Começa(do_início, onde);
    // An empty source says nothing of the table's greatest row id: it is read on its own.
    if (std::exchange(Limite_Na_Página, false) && Aberto_) Lê_Limite(onde);
}

void Registros::Começa(bool do_início, std::source_location onde) {
    Descarta_Edição();
    Janela.clear();
    Onde = do_início ? Lugar::Antes : Lugar::Depois;
    Anda(do_início, onde);
    Vazio = Janela.isEmpty();
}

bool Registros::Linha_Da_Página(const Entrada& entrada) {
    if (!entrada.Lida()) return false;
    Carimbo_Dados agora;
    const bool da_página_aberta = Página_Aberta != 0 && entrada.Página == Página_Aberta;
    if (!da_página_aberta && (!Sessão_->Carimbo(agora) ||
                              !Sessão_->Linha_Intacta(entrada.Carimbo, agora, Estrutura->Nome, entrada.Id)))
        return false;
    Carimbo_Linha = da_página_aberta ? std::nullopt : std::optional(agora);
    if (entrada.Valores.isEmpty())
        Campos_Do_Bruto(*Estrutura, entrada.Bruto.constData() + entrada.Início, Linha);
    else
        Linha = entrada.Valores;
    return true;
}

// With a page open: the current row and those after it in the window, in the step's direction, up to
// the page's rows, in one statement. A row that another workstation deleted does not come, and is then
// looked for on its own, and found gone.
bool Registros::Lê_Linhas_Da_Página(bool adiante) {
    if (Página_Aberta == 0) return false;
    QHash<qint64, int> posições;
    QVector<qint64> ids;
    QString marcas;
    for (int i = Atual; i >= 0 && i < Janela.size() && ids.size() < Linhas_Página; i += adiante ? 1 : -1) {
        const Entrada& entrada = Janela[i];
        if (entrada.Excluída || (entrada.Lida() && entrada.Página == Página_Aberta)) continue;
        posições.insert(entrada.Id, i);
        ids << entrada.Id;
        marcas += marcas.isEmpty() ? "?" : ", ?";
    }
    if (ids.isEmpty()) return false;
    Falha_Banco falha;
    Comando_Banco* comando =
        Sessão_->Prepara("SELECT rowid, " + Campos_Da_Tabela + " FROM " + Citação(Estrutura->Nome) +
                             " WHERE rowid IN (" + marcas + ")",
                         falha);
    if (comando == nullptr) return false;
    for (int n = 0; n < ids.size(); ++n) comando->Liga_Inteiro(n + 1, ids[n]);
    while (comando->Passo() == Linha_Pronta) {
        Entrada& entrada = Janela[posições.value(comando->Inteiro(0))];
        entrada.Valores =
            Campos_Lidos(*Estrutura, comando, 1);  // taken before the block, which may hold its order
        entrada.Página = Página_Aberta;
    }
    comando->Reinicia();
    return true;
}

void Registros::Começa_Página(int linhas) {
    Linhas_Página = std::max(linhas, 1);
    Página_Aberta = ++Páginas_Abertas;
}

void Registros::Termina_Página() {
    Linhas_Página = 0;
    Página_Aberta = 0;
}

Página_Lida::Página_Lida(Registros& registros, int linhas) : R(registros) {
    R.Começa_Página(linhas);
}

Página_Lida::~Página_Lida() {
    R.Termina_Página();
}

bool Registros::Lê_Linha(qint64 id) {
    Falha_Banco falha;
    Comando_Banco* comando = Sessão_->Prepara(
        "SELECT " + Campos_Da_Tabela + " FROM " + Citação(Estrutura->Nome) + " WHERE rowid = ?", falha);
    Carimbo_Linha.reset();
    if (comando == nullptr) return false;
    // The mark before the read: a commit between the two makes the row look older than it is, never newer.
    Carimbo_Dados carimbo;
    const bool com_carimbo = Sessão_->Carimbo(carimbo);
    comando->Liga_Inteiro(1, id);
    const bool achou = comando->Passo() == Linha_Pronta;
    if (achou) {
        Linha = Campos_Lidos(*Estrutura, comando, 0);
        if (com_carimbo) Carimbo_Linha = carimbo;
    }
    comando->Reinicia();
    return achou;
}

void Registros::Descarta_Edição() {
    if (Modo == Modo_Edição::Alteração && Trava_Sem_Transação && Sessão_ && Tem_Linha_Atual())
        Sessão_->Libera_Trava(Estrutura->Nome, Id_Atual());
    Modo = Modo_Edição::Nenhum;
    Pendentes.clear();
    Trava_Sem_Transação = false;
}

void Registros::CancelUpdate() {
    Descarta_Edição();
}

void Registros::Edita(std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    if (Modo != Modo_Edição::Nenhum) return;
    if (!Tem_Linha_Atual() || !Linha_Lida) return Falha(Erro_Sem_Registro, Texto_Sem_Registro, onde);
    // The edit takes the row's lock and reads the row again, so that it starts from what was committed.
    const qint64 id = Id_Atual();
    if (!Sessão_->Possui_Trava(Estrutura->Nome, id)) {
        if (!Sessão_->Trava_Linha(Estrutura->Nome, id)) {
            // A server's lost connection is not another user holding the row.
            Falha_Banco perda;
            if (Sessão_->Servidor()) Sessão_->Falha_Da_Última(perda, 1);
            if (perda.Número == Erro_Conexão_Perdida) return Falha(perda.Número, perda.Descrição, onde);
            return Falha(-2147467259, Texto_Bloqueado, onde);
        }
        Trava_Sem_Transação = !Sessão_->Transação_Lógica;
    }
    // A row read since any copy's last commit, that this connection has not written since, is the row the
    // file holds: it is not read again.
    Carimbo_Dados agora;
    const bool intacta = !std::exchange(Linha_Adiada, false) && Carimbo_Linha && Sessão_->Carimbo(agora) &&
                         Sessão_->Linha_Intacta(*Carimbo_Linha, agora, Estrutura->Nome, id);
    if (!intacta) Linha_Lida = Lê_Linha(id);
    if (!Linha_Lida) {
        if (Trava_Sem_Transação) Sessão_->Libera_Trava(Estrutura->Nome, id);
        Trava_Sem_Transação = false;
        return Falha(-2147467259, "A informação foi excluída por outro usuário.", onde);
    }
    Modo = Modo_Edição::Alteração;
}

// A slot opened on a table takes its place at the first row when it is first used, not at once: a window
// that opens a table, sets its index and moves to the first row reads the table once, not three times.
void Registros::Começa_Se_Pendente() const {
    if (!Começo_Pendente) return;
    auto* registros = const_cast<Registros*>(this);
    registros->Começo_Pendente = false;
    registros->Começa_Com_Limite(true, std::source_location::current());
}

bool Registros::Tem_Linha_Atual() const {
    Começa_Se_Pendente();
    if (Estático) return Aberto_ && Posição >= 0 && Posição < Linhas_Estáticas.size();
    return Aberto_ && Onde == Lugar::Na_Linha;
}

bool Registros::Eof() const {
    Começa_Se_Pendente();
    if (Estático) return !Aberto_ || Linhas_Estáticas.isEmpty() || Posição >= Linhas_Estáticas.size();
    return !Aberto_ || Vazio || Onde == Lugar::Depois;
}

bool Registros::Bof() const {
    Começa_Se_Pendente();
    if (Estático) return !Aberto_ || Linhas_Estáticas.isEmpty() || Posição < 0;
    return !Aberto_ || Vazio || Onde == Lugar::Antes;
}

qint64 Registros::Id_Linha_Atual() const {
    return !Estático && Tem_Linha_Atual() ? Id_Atual() : -1;
}

int Registros::RecordCount() const {
    if (!Aberto_) return 0;
    if (Estático) return static_cast<int>(Linhas_Estáticas.size());
    Começa_Se_Pendente();
    if (Contagem < 0) {
        // Counted once, when asked: the rows of the keyset, those deleted through this slot included.
        // A whole table is counted by its own count, which reads no row, less the rows added since.
        Falha_Banco falha;
        const QString tabela = Citação(Estrutura->Nome);
        // A criterion's rows are counted with the keyset's limit as a filter of the count, not of the
        // rows: a server plans a statement once for any limit, and would otherwise read the whole row id
        // index to meet a criterion that its own index answers in a few rows.
        Comando_Banco* comando =
            Sessão_->Prepara(Sem_Critério ? "SELECT (SELECT count(*) FROM " + tabela +
                                                ") - (SELECT count(*) FROM " + tabela + " WHERE rowid > ?)"
                                          : "SELECT count(*) FILTER (WHERE +rowid <= ?) " +
                                                Origem.chopped(QString(" AND ").size() + Até_O_Limite.size()),
                             falha);
        if (comando == nullptr) return 0;
        comando->Liga_Inteiro(1, Limite_Id);
        const int r = comando->Passo();
        const int contadas = r == Linha_Pronta ? static_cast<int>(comando->Inteiro(0)) : 0;
        comando->Reinicia();
        if (r != Linha_Pronta) return 0;
        Contagem = contadas + Excluídas_Antes_Da_Contagem;
    }
    return Contagem;
}

void Registros::MoveFirst(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    if (Estático) {
        Posição = 0;
        return;
    }
    if (std::exchange(Começo_Pendente, false)) return Começa_Com_Limite(true, onde);
    Começa(true, onde);
}

void Registros::MoveLast(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    if (Estático) {
        Posição = static_cast<int>(Linhas_Estáticas.size()) - 1;
        return;
    }
    if (std::exchange(Começo_Pendente, false)) return Começa_Com_Limite(false, onde);
    Começa(false, onde);
}

void Registros::MoveNext(std::source_location onde) {
    if (Eof())
        return Falha(Erro_Sem_Registro, "BOF ou EOF é verdadeiro, ou o registro atual foi excluído.", onde);
    if (Estático) {
        ++Posição;
        return;
    }
    Anda(true, onde);
}

void Registros::MovePrevious(std::source_location onde) {
    if (Bof())
        return Falha(Erro_Sem_Registro, "BOF ou EOF é verdadeiro, ou o registro atual foi excluído.", onde);
    if (Estático) {
        --Posição;
        return;
    }
    Anda(false, onde);
}

void Registros::Requery(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    if (Estático) return Carrega_Estático(onde);
    Descarta_Edição();
    Começo_Pendente = false;
    Começa_Com_Limite(true, onde);
}

void Registros::Set_Index(const QString& índice, std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    if (!índice.isEmpty() && Estrutura->Índice(índice) == nullptr)
        return Falha(3015, "'" + índice + "' não é um índice nesta tabela.", onde);
    // A slot not yet placed stays so: its first use starts it in the new order.
    const qint64 atual = Começo_Pendente ? -1 : Id_Linha_Atual();
    Descarta_Edição();
    Índice_Atual = índice;
    Prepara_Ordem();
    if (Começo_Pendente) return;
    if (!Lê_Limite(onde)) return;
    // The current row stays current, now in its place in the new order; without one, the first row.
    Entrada entrada;
    if (atual >= 0 && Entrada_Da_Linha(atual, true, entrada, onde)) {
        Janela = {entrada};
        Atual = -1;
        Onde = Lugar::Antes;
        Vazio = false;
        Anda(true, onde);
        return;
    }
    if (Aberto_) Começa(true, onde);
}

void Registros::Seek(const QVariantList& chave, Tipo_Busca tipo, std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    const Índice_Info* índice = Índice_Atual.isEmpty() ? nullptr : Estrutura->Índice(Índice_Atual);
    if (índice == nullptr)
        return Falha(
            3019, "É necessário que haja um índice ativo para que esta operação possa ser realizada.", onde);
    Começa_Se_Pendente();
    Descarta_Edição();
    const int partes = std::min<int>(chave.size(), índice->Campos.size());
    QVariantList valores;
    for (int i = 0; i < partes; ++i) {
        QVariant convertido;
        Falha_Banco ignorada;
        if (!Converte_Para_Gravar(Estrutura->Posição_Campo(índice->Campos[i]), chave[i], convertido,
                                  ignorada))
            convertido = chave[i].toString();
        valores << convertido;
    }
    // One look-up in the index, which also reads the row found: the first row of the source at the key,
    // in the order of the seek. Like a table read directly, a seek sees the rows there now, those that
    // others added after the keyset was taken included. The statement's text is made once for each
    // source, index and kind.
    static QHash<QString, QString> textos;
    const QString chave_texto = Origem + Colunas_Chave + '\n' + Campos_Da_Tabela + '\n' +
                                QString::number(static_cast<int>(tipo)) + '\n' + QString::number(partes);
    auto texto = textos.constFind(chave_texto);
    if (texto == textos.constEnd()) {
        QString campos, marcas, igualdades;
        for (int i = 0; i < partes; ++i) {
            const QString nome = Citação(índice->Campos[i]);
            campos += (i ? ", " : "") + nome;
            marcas += (i ? ", ?" : "?");
            igualdades += (i ? " AND " : "") + nome + " = ?";
        }
        QString ordem;
        for (const QString& campo : índice->Campos)
            ordem += Citação(campo) + (tipo == Tipo_Busca::Antes ? " DESC, " : ", ");
        ordem += tipo == Tipo_Busca::Antes ? "rowid DESC" : "rowid";
        QString condição;
        switch (tipo) {
            case Tipo_Busca::Primeiro_Igual:
                condição = igualdades;
                break;
            case Tipo_Busca::Depois_ou_Igual:
                condição = "(" + campos + ") >= (" + marcas + ")";
                break;
            case Tipo_Busca::Depois:
                condição = "(" + campos + ") > (" + marcas + ")";
                break;
            case Tipo_Busca::Antes:
                condição = "(" + campos + ") < (" + marcas + ")";
                break;
        }
        if (textos.size() > 256) textos.clear();
        texto =
            textos.insert(chave_texto, "SELECT rowid" + Colunas_Chave + ", " + Campos_Da_Tabela + " " +
                                           Origem + " AND " + condição + " ORDER BY " + ordem + " LIMIT 1");
    }
    Falha_Banco falha;
    Comando_Banco* comando = Sessão_->Prepara(*texto, falha);
    if (comando == nullptr) return Falha(falha.Número, falha.Descrição, onde);
    Carimbo_Dados carimbo;
    const bool com_carimbo = Sessão_->Carimbo(carimbo);
    comando->Liga_Inteiro(1, std::numeric_limits<qint64>::max());
    for (int i = 0; i < valores.size(); ++i) Liga_Valor(comando, i + 2, valores[i]);
    Entrada achada;
    const bool achou = comando->Passo() == Linha_Pronta;
    if (achou) {
        achada.Id = comando->Inteiro(0);
        for (int i = 0; i < Ordem.size(); ++i) achada.Chave << Valor_Chave(comando, i + 1);
        Linha = Campos_Lidos(*Estrutura, comando, 1 + static_cast<int>(Ordem.size()));
        Carimbo_Linha = com_carimbo ? std::optional(carimbo) : std::nullopt;
    }
    comando->Reinicia();
    // A row added by another workstation since the keyset was taken: the keyset takes in the rows up to
    // it, so that the walk goes on from there, and a count already given grows by those of the source.
    if (achou && achada.Id > Limite_Id) {
        if (Contagem >= 0) {
            Comando_Banco* conta = Sessão_->Prepara("SELECT count(*) " + Origem + " AND rowid > ?", falha);
            if (conta == nullptr) return Falha(falha.Número, falha.Descrição, onde);
            conta->Liga_Inteiro(1, achada.Id);
            conta->Liga_Inteiro(2, Limite_Id);
            const int r = conta->Passo();
            if (r == Linha_Pronta) Contagem += static_cast<int>(conta->Inteiro(0));
            conta->Reinicia();
            if (r != Linha_Pronta) {
                Sessão_->Falha_Da_Última(falha, r);
                return Falha(falha.Número, falha.Descrição, onde);
            }
        }
        Limite_Id = achada.Id;
    }
    if (achou) {
        if (com_carimbo) {
            achada.Valores = Linha;
            achada.Carimbo = carimbo;
        }
        Janela = {achada};
        Atual = 0;
        Onde = Lugar::Na_Linha;
        Linha_Lida = true;
        Linha_Adiada = false;
    } else {
        // Nothing found: EOF, no current row; a step back from here starts at the last row.
        Linha_Lida = false;
        Linha_Adiada = false;
        Janela.clear();
        Atual = -1;
        Onde = Lugar::Depois;
    }
}

Campo Registros::Fields(const QString& nome, std::source_location onde) {
    int posição = -1;
    if (Estático) {
        for (int i = 0; i < Nomes_Estáticos.size(); ++i)
            if (Nomes_Estáticos[i].compare(nome, Qt::CaseInsensitive) == 0) posição = i;
    } else if (Estrutura) {
        posição = Estrutura->Posição_Campo(nome);
    }
    if (posição < 0)
        Falha(3265,
              "O item '" + nome + "' não pôde ser encontrado na coleção correspondente ao nome solicitado.",
              onde);
    return Campo(this, posição);
}

int Registros::Fields_Count() const {
    if (Estático) return Nomes_Estáticos.size();
    return Estrutura ? Estrutura->Campos.size() : 0;
}

bool Registros::Converte_Para_Gravar(int posição, const QVariant& valor, QVariant& saída,
                                     Falha_Banco& falha) const {
    if (posição < 0 || !Estrutura) return false;
    const Campo_Info& campo = Estrutura->Campos[posição];
    if (!valor.isValid()) {
        saída = QVariant();
        return true;
    }
    bool ok = true;
    switch (campo.Tipo) {
        case Tipo_Texto: {
            const QString texto = valor.toString();
            if (texto.size() > campo.Largura) {
                falha = {-2147217887, Texto_Várias_Etapas + " O campo '" + campo.Nome +
                                          "' aceita no máximo " + QString::number(campo.Largura) +
                                          " caracteres."};
                return false;
            }
            saída = texto;
            return true;
        }
        case Tipo_Memo:
            saída = valor.toString();
            return true;
        case Tipo_Long: {
            const double número = valor.typeId() == QMetaType::QString
                                      ? valor.toString().trimmed().toDouble(&ok)
                                      : valor.toDouble(&ok);
            if (ok && (número < INT32_MIN || número > INT32_MAX)) ok = false;
            if (ok) saída = static_cast<qint64>(std::llround(número));
            break;
        }
        case Tipo_Double: {
            const double número = valor.typeId() == QMetaType::QString
                                      ? valor.toString().trimmed().toDouble(&ok)
                                      : valor.toDouble(&ok);
            if (ok) saída = número;
            break;
        }
        case Tipo_Data: {
            QDateTime data;
            if (valor.typeId() == QMetaType::QDateTime)
                data = valor.toDateTime();
            else if (valor.typeId() == QMetaType::QDate)
                data = QDateTime(valor.toDate(), QTime(0, 0));
            else
                data = Data_Digitada(valor.toString());
            ok = data.isValid();
            if (ok) saída = Data_Para_Banco(data);
            break;
        }
        case Tipo_Boolean:
            saída = valor.toBool() ? 1 : 0;
            break;
    }
    if (!ok)
        falha = {-2147217887, Texto_Várias_Etapas + " Valor inválido para o campo '" + campo.Nome + "'."};
    return ok;
}

void Registros::AddNew(std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    Descarta_Edição();
    Modo = Modo_Edição::Inclusão;
}

void Registros::Update(std::source_location onde) {
    if (Modo == Modo_Edição::Nenhum) return;
    Recusa_Do_Valor_ = false;
    // A text field without Zero refuses the empty text.
    for (const auto& [posição, valor] : Pendentes.Itens) {
        const Campo_Info& campo = Estrutura->Campos[posição];
        if ((campo.Tipo == Tipo_Texto || campo.Tipo == Tipo_Memo) && !campo.Zero && valor.isValid() &&
            valor.toString().isEmpty()) {
            Recusa_Do_Valor_ = true;
            return Falha(-2147467259,
                         "O campo '" + Estrutura->Nome + "." + campo.Nome +
                             "' não pode ser uma seqüência de caracteres de comprimento zero.",
                         onde);
        }
    }
    // The primary key takes no Null, as Jet had it; SQLite's unique index would let it in.
    for (const Índice_Info& índice : Estrutura->Índices) {
        if (índice.Tipo != Tipo_Índice::Primário) continue;
        for (const QString& nome : índice.Campos) {
            const int p = Estrutura->Posição_Campo(nome);
            if (p < 0 || Estrutura->Campos[p].Auto) continue;
            const QVariant* pendente = Pendentes.Procura(p);
            const QVariant valor = pendente                                       ? *pendente
                                   : Modo == Modo_Edição::Alteração && Linha_Lida ? Linha.value(p)
                                                                                  : QVariant();
            if (!valor.isValid()) {
                Recusa_Do_Valor_ = true;
                return Falha(3058, "Índice ou chave primária não pode conter um valor Null.", onde);
            }
        }
    }
    Falha_Banco falha;
    if (!Sessão_->Prepara_Escrita(falha)) {
        Recusa_Do_Valor_ = falha.Recusa_Valor;
        return Falha(falha.Número, falha.Descrição, onde);
    }

    const auto& pendentes = Pendentes.Itens;  // in the order of the positions
    const bool inclusão = Modo == Modo_Edição::Inclusão;
    if (!inclusão && pendentes.isEmpty()) {
        Descarta_Edição();  // nothing changed: nothing to write
        return;
    }
    // The kind of write and the fields written, one bit each: the key of the statement's text, built once
    // for the slot's table.
    quint64 marca = inclusão ? 1 : 0;
    bool guardável = true;
    for (const auto& [p, valor] : pendentes) {
        if (p < 63)
            marca |= quint64{2} << p;
        else
            guardável = false;
    }
    QString sql = guardável ? Textos_Gravação.value(marca) : QString();
    if (sql.isEmpty()) {
        QString nomes, marcas;
        for (const auto& [p, valor] : pendentes) {
            const QString nome = Citação(Estrutura->Campos[p].Nome);
            nomes += (nomes.isEmpty() ? "" : ", ") + nome + (inclusão ? "" : " = ?");
            marcas += marcas.isEmpty() ? "?" : ", ?";
        }
        if (!inclusão)
            sql = "UPDATE " + Citação(Estrutura->Nome) + " SET " + nomes + " WHERE rowid = ?";
        else if (pendentes.isEmpty())
            sql = "INSERT INTO " + Citação(Estrutura->Nome) + " DEFAULT VALUES";
        else
            sql = "INSERT INTO " + Citação(Estrutura->Nome) + " (" + nomes + ") VALUES (" + marcas + ")";
        if (guardável) Textos_Gravação.insert(marca, sql);
    }
    // On a server the new row comes back with the insert, its place in the order and its fields: the
    // slot needs no reads of it afterwards, each a round trip over the network.
    const bool devolve = inclusão && Sessão_->Servidor() && !Campos_Da_Tabela.isEmpty();
    if (devolve) sql += " RETURNING rowid" + Colunas_Chave + ", " + Campos_Da_Tabela;
    Comando_Banco* comando = Sessão_->Prepara(sql, falha);
    if (comando == nullptr) return Falha(falha.Número, falha.Descrição, onde);
    int n = 1;
    for (const auto& [p, valor] : pendentes) Liga_Valor(comando, n++, valor);
    if (Modo == Modo_Edição::Alteração) comando->Liga_Inteiro(n, Id_Atual());
    int r = comando->Passo();
    Entrada devolvida{0, {}, false};
    QVector<QVariant> campos_devolvidos;
    if (devolve && r == Linha_Pronta) {
        devolvida.Id = comando->Inteiro(0);
        for (int i = 0; i < Ordem.size(); ++i) devolvida.Chave << Valor_Chave(comando, i + 1);
        campos_devolvidos = Campos_Lidos(*Estrutura, comando, 1 + static_cast<int>(Ordem.size()));
        r = Fim_Comando;
    }
    comando->Reinicia();
    if (r != Fim_Comando) {
        Sessão_->Falha_Da_Última(falha, r);
        Recusa_Do_Valor_ = falha.Recusa_Valor;
        return Falha(falha.Número, falha.Descrição, onde);
    }
    Sessão_->Marca_Escrita(Estrutura->Nome, inclusão ? Sessão_->Último_Id() : Id_Atual());
    Carimbo_Linha.reset();
    if (inclusão) {
        // The new row becomes current, in its place in the order; the keyset grows to hold it.
        Entrada nova{Sessão_->Último_Id(), {}, false};
        nova.Chave_Adiada = true;
        Limite_Id = std::max(Limite_Id, nova.Id);
        // On a server the insert brought its order values back; here they are read when a step needs
        // them.
        if (!campos_devolvidos.isEmpty()) nova = devolvida;
        Janela = {nova};
        Atual = 0;
        Onde = Lugar::Na_Linha;
        Vazio = false;
        Começo_Pendente = false;
        if (Contagem >= 0) ++Contagem;
    }
    const bool soltar = Modo == Modo_Edição::Alteração && Trava_Sem_Transação;
    Modo = Modo_Edição::Nenhum;
    Pendentes.clear();
    Trava_Sem_Transação = false;
    if (soltar) Sessão_->Libera_Trava(Estrutura->Nome, Id_Atual());
    if (!campos_devolvidos.isEmpty()) {
        Linha = std::move(campos_devolvidos);
        Linha_Lida = true;
        Linha_Adiada = false;
    } else {
        // The row is read back only when something asks for it.
        Linha_Lida = true;
        Linha_Adiada = true;
    }
}

bool Registros::Garante_Linha() {
    if (Linha_Adiada && Tem_Linha_Atual()) Linha_Lida = Lê_Linha(Id_Atual());
    Linha_Adiada = false;
    return Linha_Lida;
}

void Registros::Delete(std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    if (!Tem_Linha_Atual() || !Linha_Lida) return Falha(Erro_Sem_Registro, Texto_Sem_Registro, onde);
    const qint64 id = Id_Atual();
    const bool já_travada = Sessão_->Possui_Trava(Estrutura->Nome, id);
    if (!já_travada && !Sessão_->Trava_Linha(Estrutura->Nome, id))
        return Falha(-2147467259, Texto_Bloqueado, onde);
    Modo = Modo_Edição::Nenhum;
    Pendentes.clear();
    Falha_Banco falha;
    Comando_Banco* comando = nullptr;
    if (Sessão_->Prepara_Escrita(falha))
        comando = Sessão_->Prepara("DELETE FROM " + Citação(Estrutura->Nome) + " WHERE rowid = ?", falha);
    int r = 1;  // a failure until the statement runs
    if (comando != nullptr) {
        comando->Liga_Inteiro(1, id);
        r = comando->Passo();
        comando->Reinicia();
        if (r != Fim_Comando) Sessão_->Falha_Da_Última(falha, r);
        Sessão_->Marca_Escrita(Estrutura->Nome, r == Fim_Comando ? id : 0);
    }
    if (!Sessão_->Transação_Lógica) Sessão_->Libera_Trava(Estrutura->Nome, id);
    if (r != Fim_Comando) return Falha(falha.Número, falha.Descrição, onde);
    Janela[Atual].Excluída = true;
    if (Contagem < 0) ++Excluídas_Antes_Da_Contagem;
    Linha_Lida = false;
    Linha_Adiada = false;
}

// ---------- the walk as a forward reading takes it ----------

Registros::Caminhada Registros::Caminhada_Atual() const {
    Caminhada caminhada;
    if (!Aberto_ || Estático || !Estrutura) return caminhada;
    caminhada.Na_Linha = Tem_Linha_Atual();  // places a slot not yet started at its first row
    caminhada.Sessão_ = Sessão_;
    caminhada.Estrutura = Estrutura;
    caminhada.Origem = Origem;
    for (const Termo_Ordem& termo : Ordem) {
        caminhada.Termos << termo.Expressão;
        caminhada.Descendentes << termo.Descendente;
    }
    caminhada.Ordem_Servida = Ordem_Servida;
    caminhada.Limite_Id = Limite_Id;
    if (caminhada.Na_Linha) {
        const Entrada& atual = Janela[Atual];
        caminhada.Id = atual.Id;
        // A row taken from its page keeps its values of the order packed in its block.
        caminhada.Chave = atual.Chave_No_Bruto
                              ? Chave_Do_Bruto(*Estrutura, atual.Bruto.constData() + atual.Início,
                                               static_cast<int>(Ordem.size()))
                              : atual.Chave;
        caminhada.Chave_Conhecida = !atual.Chave_Adiada;
    }
    return caminhada;
}

void Continua_Depois_Da_Chave(const QStringList& termos, const QVector<bool>& para_maiores,
                              const QVariantList& chave, qint64 id, bool adiante,
                              const std::function<void(const QString&, const QVariantList&)>& roda) {
    const int quantos = static_cast<int>(termos.size());
    for (int k = quantos; k >= 0; --k) {
        QString prefixo;
        QVariantList valores;
        for (int i = 0; i < k; ++i) {
            if (chave[i].isValid()) {
                prefixo += " AND " + termos[i] + " = ?";
                valores << chave[i];
            } else {
                prefixo += " AND " + termos[i] + " IS NULL";
            }
        }
        if (k == quantos) {
            roda(prefixo + (adiante ? " AND rowid > ?" : " AND rowid < ?"), valores + QVariantList{id});
            continue;
        }
        const QString& termo = termos[k];
        const QVariant& valor = chave[k];
        if (para_maiores[k]) {
            if (valor.isValid())
                roda(prefixo + " AND " + termo + " > ?", valores + QVariantList{valor});
            else
                roda(prefixo + " AND " + termo + " IS NOT NULL", valores);
        } else if (valor.isValid()) {
            roda(prefixo + " AND " + termo + " < ?", valores + QVariantList{valor});
            roda(prefixo + " AND " + termo + " IS NULL", valores);
        }
    }
}
