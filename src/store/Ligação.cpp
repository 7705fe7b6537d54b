#include "store/Ligação.h"

#include <QFile>
#include <QRegularExpression>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "store/Catálogo.h"
#include "store/Tradutor_SQL.h"

QString Texto_Conexão(const QString& caminho_arquivo) {
    return "Provider=SQLite; Data Source=" + caminho_arquivo + ";Password=" + Senha_Banco;
}

namespace {
QString Valor_Da_Chave(const QString& texto, const QString& chave) {
    for (const QString& parte : texto.split(';')) {
        const int igual = parte.indexOf('=');
        if (igual > 0 && parte.left(igual).trimmed().compare(chave, Qt::CaseInsensitive) == 0)
            return parte.mid(igual + 1).trimmed();
    }
    return QString();
}
}  // namespace

QString Arquivo_Da_Conexão(const QString& texto_conexão) {
    return Valor_Da_Chave(texto_conexão, "Data Source");
}

bool Exclui_Arquivo_Banco(const QString& caminho) {
    if (auto sessão = Sessão::Procura(caminho)) sessão->Retira_do_Registro();
    QFile::remove(caminho + "-wal");
    QFile::remove(caminho + "-shm");
    QFile::remove(caminho + "-travas");
    return !QFile::exists(caminho) || QFile::remove(caminho);
}

void Ligação::Open(const QString& texto_conexão, std::source_location onde) {
    if (Aberta_) Close();
    ConnectionString = texto_conexão;
    if (Valor_Da_Chave(texto_conexão, "Extended Properties").contains("Dbase", Qt::CaseInsensitive)) {
        Dbase = true;
        Aberta_ = true;
        return;
    }
    Dbase = false;
    const QString senha = Valor_Da_Chave(texto_conexão, "Password");
    if (senha != Senha_Banco) {
        Falha(-2147217843, "Não é uma senha válida.", onde);
        return;
    }
    Falha_Banco falha;
    Sessão_ = Sessão::Abre(Arquivo_Da_Conexão(texto_conexão), falha);
    if (!Sessão_) {
        Falha(falha.Número, falha.Descrição, onde);
        return;
    }
    ++Sessão_->Conexões_Lógicas;
    Aberta_ = true;
}

void Ligação::Close() {
    if (Sessão_) {
        // The last logical connection of a file lets it be replaced on disk.
        if (--Sessão_->Conexões_Lógicas == 0) {
            Falha_Banco ignorada;
            Sessão_->Desfaz(ignorada);
            Sessão_->Retira_do_Registro();
        }
        Sessão_.reset();
    }
    Aberta_ = false;
    Dbase = false;
}

void Ligação::BeginTrans() {
    if (Sessão_) Sessão_->Inicia();
}

void Ligação::CommitTrans(std::source_location onde) {
    if (!Sessão_ || !Sessão_->Transação_Lógica) return;
    Falha_Banco falha;
    if (!Sessão_->Confirma(falha)) Falha(falha.Número, falha.Descrição, onde);
}

void Ligação::RollbackTrans(std::source_location onde) {
    if (!Sessão_ || !Sessão_->Transação_Lógica) return;
    Falha_Banco falha;
    if (!Sessão_->Desfaz(falha)) Falha(falha.Número, falha.Descrição, onde);
}

void Ligação::Execute(const QString& sql, std::source_location onde) {
    if (!Sessão_) {
        Falha(3704, "A operação não é permitida quando o objeto está fechado.", onde);
        return;
    }
    // "Alter Table t Alter Column c text (n)" changes a field's width.
    static const QRegularExpression alterar(
        "^\\s*alter\\s+table\\s+(\\S+)\\s+alter\\s+column\\s+(\\S+)\\s+text\\s*\\(\\s*(\\d+)\\s*\\)\\s*$",
        QRegularExpression::CaseInsensitiveOption);
    if (const auto m = alterar.match(sql); m.hasMatch()) {
        Campo_Info campo{m.captured(2), Tipo_Texto, m.captured(3).toInt(), false, false};
        Catálogo::Altera_Campo(*this, m.captured(1), campo);
        return;
    }
    Falha_Banco falha;
    if (!Sessão_->Prepara_Escrita(falha) || !Sessão_->Executa(Traduz_SQL(sql), falha))
        Falha(falha.Número, falha.Descrição, onde);
}
