#include "store/Ligação.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Dbase.h"
#include "store/Sessão_Servidor.h"
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

bool Existe_Banco(const QString& caminho) {
    // A session open on a server's schema found it, and this program closes the session before it drops
    // one: neither the server nor the installation's file that names it is asked again (the register asks
    // about the statistics at every step).
    if (auto sessão = Sessão::Procura(caminho); sessão && sessão->Servidor()) return true;
    const QString servidor = Conexão_Do_Servidor(caminho);
    if (servidor.isEmpty()) return QFile::exists(caminho);
    Falha_Banco ignorada;
    return Existe_Esquema_Servidor(servidor, Esquema_Do_Servidor(caminho), ignorada);
}

bool Servidor_Disponível(QString& mensagem) {
    const QString caminho = Caminho_Dados() + "/Dados.Mdb";
    const QString servidor = Conexão_Do_Servidor(caminho);
    if (servidor.isEmpty()) return true;
    mensagem = Motivo_Sem_Conexão(servidor);
    return mensagem.isEmpty();
}

bool Exclui_Arquivo_Banco(const QString& caminho) {
    if (auto sessão = Sessão::Procura(caminho)) sessão->Retira_do_Registro();
    if (const QString servidor = Conexão_Do_Servidor(caminho); !servidor.isEmpty()) {
        Falha_Banco ignorada;
        return Exclui_Esquema_Servidor(servidor, Esquema_Do_Servidor(caminho), ignorada);
    }
    QFile::remove(caminho + "-wal");
    QFile::remove(caminho + "-shm");
    QFile::remove(caminho + "-travas");
    return !QFile::exists(caminho) || QFile::remove(caminho);
}

bool Pasta_Gravável(const QString& pasta) {
    if (!QDir().mkpath(pasta)) return false;
    // A file is really made and removed: permission bits do not tell of a read-only mount.
    QFile prova(pasta + "/.quizora-prova-" + QString::number(QCoreApplication::applicationPid()));
    if (!prova.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return false;
    const bool escreveu = prova.write("0", 1) == 1;
    prova.close();
    prova.remove();
    if (!escreveu) return false;
    const QFileInfoList arquivos = QDir(pasta).entryInfoList(QDir::Files | QDir::Hidden);
    return std::all_of(arquivos.begin(), arquivos.end(), [](const QFileInfo& a) { return a.isWritable(); });
}

QString Guarda_Arquivo_Banco(const QString& caminho, const QString& pasta_arquivo, const QDateTime& quando) {
    // On a server the schema stays there under a dated name.
    if (const QString servidor = Conexão_Do_Servidor(caminho); !servidor.isEmpty()) {
        if (auto sessão = Sessão::Procura(caminho)) sessão->Retira_do_Registro();
        const QString esquema = Esquema_Do_Servidor(caminho);
        const QString novo = esquema + " " + quando.toString("yyyy-MM-dd HH-mm-ss");
        Falha_Banco falha;
        return Renomeia_Esquema_Servidor(servidor, esquema, novo, falha) ? novo : QString();
    }
    if (!QFile::exists(caminho) || !QDir().mkpath(pasta_arquivo)) return QString();
    if (auto sessão = Sessão::Procura(caminho)) sessão->Retira_do_Registro();
    const QFileInfo info(caminho);
    const QString base =
        pasta_arquivo + "/" + info.completeBaseName() + " " + quando.toString("yyyy-MM-dd HH-mm-ss");
    QString destino = base + "." + info.suffix();
    for (int n = 2; QFile::exists(destino); ++n) destino = base + QString(" (%1).").arg(n) + info.suffix();
    if (!QFile::rename(caminho, destino)) return QString();
    // Rows not yet copied into the file itself live in its journal, which goes along under the new name.
    if (QFile::exists(caminho + "-wal")) QFile::rename(caminho + "-wal", destino + "-wal");
    QFile::remove(caminho + "-shm");
    QFile::remove(caminho + "-travas");
    return destino;
}

void Ligação::Open(const QString& texto_conexão, std::source_location onde) {
    if (Aberta_) Close();
    ConnectionString = texto_conexão;
    if (Valor_Da_Chave(texto_conexão, "Extended Properties").contains("Dbase", Qt::CaseInsensitive)) {
        Dbase = true;
        Falha_Banco falha;
        Sessão_ = Abre_Sessão_Dbase(Arquivo_Da_Conexão(texto_conexão), falha);
        if (falha.Houve()) {
            Falha(falha.Número, falha.Descrição, onde);
            return;
        }
        if (Sessão_) ++Sessão_->Conexões_Lógicas;
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
