#include "store/Registros.h"

#include <QDateTime>
#include <QRegularExpression>
#include <cmath>
#include <sqlite3.h>

#include "failure/Rotina.h"
#include "store/Ligação.h"
#include "store/Tradutor_SQL.h"

namespace {
constexpr long Erro_Sem_Registro = 3021;
const QString Texto_Sem_Registro = "Não há nenhum registro corrente.";
const QString Texto_Várias_Etapas =
    "Operação de várias etapas gerou erros. Verifique cada valor de status. Nenhum trabalho foi realizado.";
const QString Texto_Bloqueado =
    "Não foi possível atualizar; a informação está bloqueada no momento por outro usuário.";

void Liga_Valor(sqlite3_stmt* comando, int posição, const QVariant& valor) {
    if (!valor.isValid()) {
        sqlite3_bind_null(comando, posição);
        return;
    }
    switch (valor.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::Bool:
        case QMetaType::UInt:
        case QMetaType::ULongLong:
            sqlite3_bind_int64(comando, posição, valor.toLongLong());
            break;
        case QMetaType::Double:
        case QMetaType::Float:
            sqlite3_bind_double(comando, posição, valor.toDouble());
            break;
        default: {
            const QByteArray texto = valor.toString().toUtf8();
            sqlite3_bind_text(comando, posição, texto.constData(), static_cast<int>(texto.size()),
                              SQLITE_TRANSIENT);
        }
    }
}

QString Sem_Ordenação(const QString& resto) {
    static const QRegularExpression ordem("\\border\\s+by\\b", QRegularExpression::CaseInsensitiveOption);
    const auto m = ordem.match(resto);
    return m.hasMatch() ? resto.left(m.capturedStart()) : resto;
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

QVariant Campo::Value(std::source_location onde) const {
    if (!R->Aberto_) {
        Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
        return {};
    }
    if (Posição < 0 || Posição >= R->Fields_Count()) {
        Falha(3265, "O item não pôde ser encontrado na coleção correspondente ao nome ou ordinal solicitado.",
              onde);
        return {};
    }
    if (R->Modo == Registros::Modo_Edição::Inclusão) return R->Pendentes.value(Posição);
    if (!R->Tem_Linha_Atual()) {
        Falha(Erro_Sem_Registro, Texto_Sem_Registro, onde);
        return {};
    }
    if (auto it = R->Pendentes.find(Posição); it != R->Pendentes.end()) return *it;
    if (R->Estático) return R->Linhas_Estáticas[R->Posição][Posição];
    if (!R->Linha_Lida) {
        Falha(-2147217885, "Uma linha excluída foi referenciada.", onde);
        return {};
    }
    return R->Linha[Posição];
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
    R->Pendentes.insert(Posição, convertido);
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
    Aberto_ = false;
    Chaves.clear();
    Excluída.clear();
    Posição_Da_Chave.clear();
    Posição = -1;
    Linha_Lida = false;
    Linha.clear();
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
        Resto_Consulta = Traduz_SQL(consulta.Resto);
        Aberto_ = true;
        Captura_Chaves(onde);
        if (!Aberto_) return;
        Vai_Para(0, 1);
        return;
    }

    Carrega_Estático(onde);
}

void Registros::Carrega_Estático(std::source_location onde) {
    Falha_Banco falha;
    Estático = true;
    Nomes_Estáticos.clear();
    Linhas_Estáticas.clear();
    sqlite3_stmt* comando = Sessão_->Prepara(Traduz_SQL(Source), falha);
    if (comando == nullptr) {
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    const int colunas = sqlite3_column_count(comando);
    for (int i = 0; i < colunas; ++i) Nomes_Estáticos << QString::fromUtf8(sqlite3_column_name(comando, i));
    Tipos_Estáticos.fill(Tipo_Texto, colunas);
    int r;
    while ((r = sqlite3_step(comando)) == SQLITE_ROW) {
        QVector<QVariant> linha(colunas);
        for (int i = 0; i < colunas; ++i) {
            switch (sqlite3_column_type(comando, i)) {
                case SQLITE_INTEGER: {
                    const qint64 v = sqlite3_column_int64(comando, i);
                    linha[i] =
                        (v >= INT32_MIN && v <= INT32_MAX) ? QVariant(static_cast<int>(v)) : QVariant(v);
                    Tipos_Estáticos[i] = Tipo_Long;
                    break;
                }
                case SQLITE_FLOAT:
                    linha[i] = sqlite3_column_double(comando, i);
                    Tipos_Estáticos[i] = Tipo_Double;
                    break;
                case SQLITE_NULL:
                    break;
                default:
                    linha[i] =
                        QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, i)));
            }
        }
        Linhas_Estáticas.append(linha);
    }
    sqlite3_reset(comando);
    if (r != SQLITE_DONE) {
        Sessão_->Falha_Da_Última(falha, r);
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    Aberto_ = true;
    Posição = Linhas_Estáticas.isEmpty() ? -1 : 0;
}

void Registros::Captura_Chaves(std::source_location onde) {
    QString sql = "SELECT rowid FROM " + Citação(Estrutura->Nome) + " ";
    if (const Índice_Info* índice = Índice_Atual.isEmpty() ? nullptr : Estrutura->Índice(Índice_Atual)) {
        sql += Sem_Ordenação(Resto_Consulta) + " ORDER BY ";
        for (const QString& campo : índice->Campos) sql += Citação(campo) + ", ";
        sql += "rowid";
    } else {
        sql += Resto_Consulta;
    }
    Falha_Banco falha;
    sqlite3_stmt* comando = Sessão_->Prepara(sql, falha);
    Chaves.clear();
    Excluída.clear();
    Posição_Da_Chave.clear();
    if (comando == nullptr) {
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    int r;
    while ((r = sqlite3_step(comando)) == SQLITE_ROW) Chaves.append(sqlite3_column_int64(comando, 0));
    sqlite3_reset(comando);
    if (r != SQLITE_DONE) {
        Sessão_->Falha_Da_Última(falha, r);
        Falha(falha.Número, falha.Descrição, onde);
        Close();
        return;
    }
    Excluída.fill(false, Chaves.size());
    Posição = -1;
    Linha_Lida = false;
}

bool Registros::Lê_Linha(int posição) {
    Falha_Banco falha;
    sqlite3_stmt* comando =
        Sessão_->Prepara("SELECT * FROM " + Citação(Estrutura->Nome) + " WHERE rowid = ?", falha);
    if (comando == nullptr) return false;
    sqlite3_bind_int64(comando, 1, Chaves[posição]);
    const bool achou = sqlite3_step(comando) == SQLITE_ROW;
    if (achou) {
        const int colunas = Estrutura->Campos.size();
        Linha.resize(colunas);
        for (int i = 0; i < colunas; ++i) Linha[i] = Valor_Lido(i, comando);
    }
    sqlite3_reset(comando);
    return achou;
}

QVariant Registros::Valor_Lido(int coluna, sqlite3_stmt* comando) const {
    if (sqlite3_column_type(comando, coluna) == SQLITE_NULL) return {};
    switch (Estrutura->Campos[coluna].Tipo) {
        case Tipo_Long:
            return static_cast<int>(sqlite3_column_int64(comando, coluna));
        case Tipo_Double:
            return sqlite3_column_double(comando, coluna);
        case Tipo_Boolean:
            return sqlite3_column_int(comando, coluna) != 0;
        case Tipo_Data:
            return Data_Do_Banco(
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, coluna))));
        default:
            return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(comando, coluna)));
    }
}

void Registros::Descarta_Edição() {
    if (Modo == Modo_Edição::Alteração && Trava_Sem_Transação && Sessão_ && Tem_Linha_Atual())
        Sessão_->Libera_Trava(Estrutura->Nome, Chaves[Posição]);
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
    const qint64 id = Chaves[Posição];
    if (!Sessão_->Possui_Trava(Estrutura->Nome, id)) {
        if (!Sessão_->Trava_Linha(Estrutura->Nome, id)) return Falha(-2147467259, Texto_Bloqueado, onde);
        Trava_Sem_Transação = !Sessão_->Transação_Lógica;
    }
    Linha_Lida = Lê_Linha(Posição);
    if (!Linha_Lida) {
        if (Trava_Sem_Transação) Sessão_->Libera_Trava(Estrutura->Nome, id);
        Trava_Sem_Transação = false;
        return Falha(-2147467259, "A informação foi excluída por outro usuário.", onde);
    }
    Modo = Modo_Edição::Alteração;
}

void Registros::Vai_Para(int posição, int passo) {
    Descarta_Edição();
    Linha_Lida = false;
    const int total = Estático ? Linhas_Estáticas.size() : Chaves.size();
    while (posição >= 0 && posição < total) {
        if (Estático) {
            Posição = posição;
            return;
        }
        // Rows deleted here or by another user are stepped over.
        if (!Excluída[posição] && Lê_Linha(posição)) {
            Posição = posição;
            Linha_Lida = true;
            return;
        }
        posição += passo;
    }
    Posição = posição < 0 ? -1 : total;
}

bool Registros::Tem_Linha_Atual() const {
    const int total = Estático ? Linhas_Estáticas.size() : Chaves.size();
    return Aberto_ && Posição >= 0 && Posição < total;
}

bool Registros::Eof() const {
    const int total = Estático ? Linhas_Estáticas.size() : Chaves.size();
    return !Aberto_ || total == 0 || Posição >= total;
}

bool Registros::Bof() const {
    const int total = Estático ? Linhas_Estáticas.size() : Chaves.size();
    return !Aberto_ || total == 0 || Posição < 0;
}

qint64 Registros::Id_Linha_Atual() const {
    return !Estático && Tem_Linha_Atual() ? Chaves[Posição] : -1;
}

void Registros::MoveFirst(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    Vai_Para(0, 1);
}

void Registros::MoveLast(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    Vai_Para((Estático ? Linhas_Estáticas.size() : Chaves.size()) - 1, -1);
}

void Registros::MoveNext(std::source_location onde) {
    if (Eof())
        return Falha(Erro_Sem_Registro, "BOF ou EOF é verdadeiro, ou o registro atual foi excluído.", onde);
    Vai_Para(Posição + 1, 1);
}

void Registros::MovePrevious(std::source_location onde) {
    if (Bof())
        return Falha(Erro_Sem_Registro, "BOF ou EOF é verdadeiro, ou o registro atual foi excluído.", onde);
    Vai_Para(Posição - 1, -1);
}

void Registros::Requery(std::source_location onde) {
    if (!Aberto_) return Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
    if (Estático) return Carrega_Estático(onde);
    Descarta_Edição();
    Captura_Chaves(onde);
    if (Aberto_) Vai_Para(0, 1);
}

void Registros::Set_Index(const QString& índice, std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    if (!índice.isEmpty() && Estrutura->Índice(índice) == nullptr)
        return Falha(3015, "'" + índice + "' não é um índice nesta tabela.", onde);
    const qint64 atual = Id_Linha_Atual();
    Índice_Atual = índice;
    Descarta_Edição();
    Captura_Chaves(onde);
    if (!Aberto_) return;
    const int posição = atual >= 0 ? static_cast<int>(Chaves.indexOf(atual)) : -1;
    Vai_Para(posição >= 0 ? posição : 0, 1);
}

void Registros::Seek(const QVariantList& chave, Tipo_Busca tipo, std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    const Índice_Info* índice = Índice_Atual.isEmpty() ? nullptr : Estrutura->Índice(Índice_Atual);
    if (índice == nullptr)
        return Falha(
            3019, "É necessário que haja um índice ativo para que esta operação possa ser realizada.", onde);
    Descarta_Edição();
    const int partes = std::min<int>(chave.size(), índice->Campos.size());
    QString campos, marcas, igualdades;
    QVariantList valores;
    for (int i = 0; i < partes; ++i) {
        const QString nome = Citação(índice->Campos[i]);
        campos += (i ? ", " : "") + nome;
        marcas += (i ? ", ?" : "?");
        igualdades += (i ? " AND " : "") + nome + " = ?";
        QVariant convertido;
        Falha_Banco ignorada;
        if (!Converte_Para_Gravar(Estrutura->Posição_Campo(índice->Campos[i]), chave[i], convertido,
                                  ignorada))
            convertido = chave[i].toString();
        valores << convertido;
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
    Falha_Banco falha;
    sqlite3_stmt* comando = Sessão_->Prepara(
        "SELECT rowid FROM " + Citação(Estrutura->Nome) + " WHERE " + condição + " ORDER BY " + ordem, falha);
    if (comando == nullptr) return Falha(falha.Número, falha.Descrição, onde);
    for (int i = 0; i < valores.size(); ++i) Liga_Valor(comando, i + 1, valores[i]);
    if (Posição_Da_Chave.isEmpty() && !Chaves.isEmpty()) {
        Posição_Da_Chave.reserve(Chaves.size());
        for (int i = 0; i < Chaves.size(); ++i) Posição_Da_Chave.insert(Chaves[i], i);
    }
    int achada = -1;
    while (achada < 0 && sqlite3_step(comando) == SQLITE_ROW) {
        const auto it = Posição_Da_Chave.constFind(sqlite3_column_int64(comando, 0));
        if (it != Posição_Da_Chave.constEnd() && !Excluída[*it]) achada = *it;
    }
    sqlite3_reset(comando);
    Linha_Lida = false;
    if (achada >= 0 && Lê_Linha(achada)) {
        Posição = achada;
        Linha_Lida = true;
    } else {
        Posição = Chaves.size();  // nothing found: EOF, no current row
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
    for (auto it = Pendentes.cbegin(); it != Pendentes.cend(); ++it) {
        const Campo_Info& campo = Estrutura->Campos[it.key()];
        if ((campo.Tipo == Tipo_Texto || campo.Tipo == Tipo_Memo) && !campo.Zero && it.value().isValid() &&
            it.value().toString().isEmpty()) {
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
            const QVariant valor = Pendentes.contains(p)                          ? Pendentes.value(p)
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

    QList<int> posições = Pendentes.keys();
    std::sort(posições.begin(), posições.end());
    QString sql;
    if (Modo == Modo_Edição::Inclusão) {
        if (posições.isEmpty()) {
            sql = "INSERT INTO " + Citação(Estrutura->Nome) + " DEFAULT VALUES";
        } else {
            QString nomes, marcas;
            for (int p : posições) {
                nomes += (nomes.isEmpty() ? "" : ", ") + Citação(Estrutura->Campos[p].Nome);
                marcas += marcas.isEmpty() ? "?" : ", ?";
            }
            sql = "INSERT INTO " + Citação(Estrutura->Nome) + " (" + nomes + ") VALUES (" + marcas + ")";
        }
    } else {
        if (posições.isEmpty()) {
            Descarta_Edição();
            return;
        }
        QString atribuições;
        for (int p : posições)
            atribuições += (atribuições.isEmpty() ? "" : ", ") + Citação(Estrutura->Campos[p].Nome) + " = ?";
        sql = "UPDATE " + Citação(Estrutura->Nome) + " SET " + atribuições + " WHERE rowid = ?";
    }
    sqlite3_stmt* comando = Sessão_->Prepara(sql, falha);
    if (comando == nullptr) return Falha(falha.Número, falha.Descrição, onde);
    int n = 1;
    for (int p : posições) Liga_Valor(comando, n++, Pendentes.value(p));
    if (Modo == Modo_Edição::Alteração) sqlite3_bind_int64(comando, n, Chaves[Posição]);
    const int r = sqlite3_step(comando);
    sqlite3_reset(comando);
    if (r != SQLITE_DONE) {
        Sessão_->Falha_Da_Última(falha, r);
        Recusa_Do_Valor_ = falha.Recusa_Valor;
        return Falha(falha.Número, falha.Descrição, onde);
    }
    if (Modo == Modo_Edição::Inclusão) {
        Chaves.append(sqlite3_last_insert_rowid(Sessão_->Banco));
        Excluída.append(false);
        if (!Posição_Da_Chave.isEmpty()) Posição_Da_Chave.insert(Chaves.last(), Chaves.size() - 1);
        Posição = Chaves.size() - 1;
    }
    const bool soltar = Modo == Modo_Edição::Alteração && Trava_Sem_Transação;
    Modo = Modo_Edição::Nenhum;
    Pendentes.clear();
    Trava_Sem_Transação = false;
    if (soltar) Sessão_->Libera_Trava(Estrutura->Nome, Chaves[Posição]);
    Linha_Lida = Lê_Linha(Posição);
}

void Registros::Delete(std::source_location onde) {
    if (!Aberto_ || Estático)
        return Falha(3251, "O objeto ou o provedor não é capaz de efetuar a operação solicitada.", onde);
    if (!Tem_Linha_Atual() || !Linha_Lida) return Falha(Erro_Sem_Registro, Texto_Sem_Registro, onde);
    const qint64 id = Chaves[Posição];
    const bool já_travada = Sessão_->Possui_Trava(Estrutura->Nome, id);
    if (!já_travada && !Sessão_->Trava_Linha(Estrutura->Nome, id))
        return Falha(-2147467259, Texto_Bloqueado, onde);
    Modo = Modo_Edição::Nenhum;
    Pendentes.clear();
    Falha_Banco falha;
    sqlite3_stmt* comando = nullptr;
    if (Sessão_->Prepara_Escrita(falha))
        comando = Sessão_->Prepara("DELETE FROM " + Citação(Estrutura->Nome) + " WHERE rowid = ?", falha);
    int r = SQLITE_ERROR;
    if (comando != nullptr) {
        sqlite3_bind_int64(comando, 1, id);
        r = sqlite3_step(comando);
        sqlite3_reset(comando);
        if (r != SQLITE_DONE) Sessão_->Falha_Da_Última(falha, r);
    }
    if (!Sessão_->Transação_Lógica) Sessão_->Libera_Trava(Estrutura->Nome, id);
    if (r != SQLITE_DONE) return Falha(falha.Número, falha.Descrição, onde);
    Excluída[Posição] = true;
    Linha_Lida = false;
}
