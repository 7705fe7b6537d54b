#include "store/Migração_Servidor.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>
#include <memory>
#include <sqlite3.h>

#include "store/Comando_Banco.h"
#include "store/Sessão.h"
#include "store/Sessão_Servidor.h"

namespace {
// The games' statistics go along when the installation has them; the other two must be there.
const QString Bancos[] = {"Dados.Mdb", "Manutenção.Mdb", "Estatísticas.Mdb"};
constexpr int Bancos_Obrigatórios = 2;
constexpr int Linhas_Por_Relato = 5000;

QString Número(qint64 n) {
    return QLocale(QLocale::Portuguese, QLocale::Brazil).toString(n);
}

// A consistent copy of an embedded database, taken with the file opened for reading only: what is still
// in its journal comes with it, and the file itself is not touched. A file without a journal was closed
// whole, and is read as it stands, so that no journal is made beside it.
bool Copia_Para_Leitura(const QString& origem, const QString& destino, QString& erro) {
    sqlite3* de = nullptr;
    sqlite3* para = nullptr;
    const bool fechado = !QFile::exists(origem + "-wal");
    const QByteArray uri =
        "file:" + QFile::encodeName(origem).toPercentEncoding("/") + (fechado ? "?immutable=1" : "?mode=ro");
    int r = sqlite3_open_v2(uri.constData(), &de, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    if (r == SQLITE_OK)
        r = sqlite3_open_v2(QFile::encodeName(destino).constData(), &para,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (r == SQLITE_OK) {
        sqlite3_backup* cópia = sqlite3_backup_init(para, "main", de, "main");
        r = cópia ? sqlite3_backup_step(cópia, -1) : sqlite3_errcode(para);
        if (cópia) sqlite3_backup_finish(cópia);
        if (r == SQLITE_DONE) r = SQLITE_OK;
    }
    if (r != SQLITE_OK)
        erro =
            "Não foi possível ler o arquivo '" + origem + "': " + QString::fromUtf8(sqlite3_errstr(r)) + ".";
    sqlite3_close_v2(de);
    sqlite3_close_v2(para);
    return r == SQLITE_OK;
}

qint64 Conta(Sessão& sessão, const QString& tabela, Falha_Banco& falha) {
    Comando_Banco* c = sessão.Prepara("SELECT count(*) FROM " + Citação(tabela), falha);
    if (c == nullptr) return -1;
    const qint64 n = c->Passo() == Linha_Pronta ? c->Inteiro(0) : -1;
    c->Reinicia();
    return n;
}

// One table: its structure, its rows in the order they were written, then its numbering.
bool Copia_Tabela(Sessão& origem, Sessão& destino, const QString& tabela,
                  const std::function<void(const QString&)>& relata, QString& erro) {
    Falha_Banco falha;
    const auto estrutura = origem.Estrutura(tabela, falha);
    if (!estrutura) {
        erro = falha.Descrição;
        return false;
    }
    if (!Catálogo_Servidor::Cria_Tabela(destino, tabela, estrutura->Campos, falha)) {
        erro = falha.Descrição;
        return false;
    }
    for (const Índice_Info& índice : estrutura->Índices)
        if (!Catálogo_Servidor::Adiciona_Índice(destino, tabela, índice, falha)) {
            erro = falha.Descrição;
            return false;
        }

    QString nomes, marcas;
    for (const Campo_Info& campo : estrutura->Campos) {
        nomes += (nomes.isEmpty() ? "" : ", ") + Citação(campo.Nome);
        marcas += marcas.isEmpty() ? "?" : ", ?";
    }
    Comando_Banco* lê =
        origem.Prepara("SELECT " + nomes + " FROM " + Citação(tabela) + " ORDER BY rowid", falha);
    Comando_Banco* grava =
        lê ? destino.Prepara("INSERT INTO " + Citação(tabela) + " (" + nomes + ") VALUES (" + marcas + ")",
                             falha)
           : nullptr;
    if (grava == nullptr) {
        erro = falha.Descrição;
        return false;
    }
    const int colunas = estrutura->Campos.size();
    qint64 linhas = 0;
    int r;
    while ((r = lê->Passo()) == Linha_Pronta) {
        for (int i = 0; i < colunas; ++i) {
            switch (lê->Tipo(i)) {
                case Tipo_Valor::Nulo:
                    grava->Liga_Nulo(i + 1);
                    break;
                case Tipo_Valor::Inteiro:
                    grava->Liga_Inteiro(i + 1, lê->Inteiro(i));
                    break;
                case Tipo_Valor::Real:
                    grava->Liga_Real(i + 1, lê->Real(i));
                    break;
                case Tipo_Valor::Texto:
                    grava->Liga_Texto(i + 1, lê->Bytes(i));
                    break;
            }
        }
        const int g = grava->Passo();
        grava->Reinicia();
        grava->Limpa_Valores();
        if (g != Fim_Comando) {
            destino.Falha_Da_Última(falha, g);
            erro = "A linha " + Número(linhas + 1) + " da tabela " + tabela +
                   " foi recusada: " + falha.Descrição;
            lê->Reinicia();
            return false;
        }
        if (++linhas % Linhas_Por_Relato == 0) relata("  " + tabela + ": " + Número(linhas) + " linhas...");
    }
    lê->Reinicia();
    if (r != Fim_Comando) {
        origem.Falha_Da_Última(falha, r);
        erro = "Não foi possível ler a tabela " + tabela + ": " + falha.Descrição;
        return false;
    }
    relata("  " + tabela + ": " + Número(linhas) + (linhas == 1 ? " linha" : " linhas"));
    return true;
}

}  // namespace

bool Migra_Para_Servidor(const QString& pasta_dados, const std::function<void(const QString&)>& relata,
                         QString& erro) {
    const QString servidor = Conexão_Do_Servidor(pasta_dados + "/" + Bancos[0]);
    if (servidor.isEmpty()) {
        erro = "O arquivo " + pasta_dados + "/" + Arquivo_Servidor +
               " não existe ou não indica um servidor. Escreva nele a conexão com o servidor (por exemplo "
               "\"host=servidor dbname=quizora user=lider\") e rode a migração de novo.";
        return false;
    }
    for (int i = 0; i < Bancos_Obrigatórios; ++i)
        if (const QString banco = Bancos[i]; !QFileInfo(pasta_dados + "/" + banco).isFile()) {
            erro =
                "O arquivo " + pasta_dados + "/" + banco + " não existe: não há o que levar para o servidor.";
            return false;
        }

    // Only an empty server database is filled: the data of another installation is never mixed in.
    Falha_Banco falha_servidor;
    const int ocupadas = Tabelas_No_Servidor(servidor, falha_servidor);
    if (ocupadas != 0) {
        erro = ocupadas < 0 ? falha_servidor.Descrição
                            : "O banco do servidor não está vazio (" + QString::number(ocupadas) +
                                  " tabelas). A migração só copia para um banco vazio; nada foi alterado.";
        return false;
    }

    QTemporaryDir cópias;
    bool criou[3] = {false, false, false};
    // What was made on the server goes, so that the migration can simply be run again.
    const auto desfaz = [&] {
        for (int i = 0; i < 3; ++i)
            if (criou[i]) {
                Falha_Banco ignorada;
                const QString caminho = pasta_dados + "/" + Bancos[i];
                if (auto sessão = Sessão::Procura(caminho)) sessão->Retira_do_Registro();
                Exclui_Esquema_Servidor(servidor, Esquema_Do_Servidor(caminho), ignorada);
            }
        return false;
    };
    for (int i = 0; i < 3; ++i) {
        const QString caminho = pasta_dados + "/" + Bancos[i];
        if (i >= Bancos_Obrigatórios && !QFileInfo(caminho).isFile()) continue;
        const QString cópia = cópias.path() + "/" + Bancos[i];
        relata("Lendo " + caminho + "...");
        if (!Copia_Para_Leitura(caminho, cópia, erro)) return desfaz();
        Falha_Banco falha;
        auto origem = Sessão::Abre(cópia, falha);
        criou[i] = origem && Sessão::Cria_Arquivo(caminho, falha);
        auto destino = criou[i] ? Sessão::Abre(caminho, falha) : nullptr;
        if (!destino) {
            erro = falha.Descrição;
            return desfaz();
        }
        relata("Copiando " + Bancos[i] + " para o servidor:");
        destino->Inicia();
        const QStringList tabelas = origem->Tabelas();
        bool copiou = destino->Prepara_Escrita(falha);
        if (!copiou) erro = falha.Descrição;
        for (const QString& tabela : tabelas)
            if (copiou) copiou = Copia_Tabela(*origem, *destino, tabela, relata, erro);
        if (!copiou) {
            Falha_Banco ignorada;
            destino->Desfaz(ignorada);
            return desfaz();
        }
        if (!destino->Confirma(falha)) {
            erro = falha.Descrição;
            return desfaz();
        }
        // The counts are taken again from both sides once everything is written.
        for (const QString& tabela : tabelas) {
            const auto estrutura = origem->Estrutura(tabela, falha);
            const qint64 lá = Conta(*origem, tabela, falha);
            const qint64 cá = Conta(*destino, tabela, falha);
            if (!estrutura || lá < 0 || lá != cá) {
                erro = "A tabela " + tabela + " tem " + Número(lá) + " linhas no arquivo e " + Número(cá) +
                       " no servidor: a cópia foi desfeita.";
                return desfaz();
            }
            if (!Catálogo_Servidor::Acerta_Numeração(*destino, *estrutura, falha)) {
                erro = "Não foi possível acertar a numeração de " + tabela + ": " + falha.Descrição;
                return desfaz();
            }
        }
        relata("  conferido: " + QString::number(tabelas.size()) +
               (tabelas.size() == 1 ? " tabela" : " tabelas") + " com o mesmo número de linhas.");
        origem->Retira_do_Registro();
        destino->Retira_do_Registro();
    }
    return true;
}
