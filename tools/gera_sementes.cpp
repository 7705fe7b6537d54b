// Build tool: turns the text sources of resources/conteudo into the seed files that a first start imports
// (Temp.Mdb with tblRevelação; Temp.Zip holding a Temp.Mdb with tblPergunta and tblDinâmica) and writes
// the citations in the program's code page.
//   gera_sementes <conteudo folder> <output folder for seeds> <output folder for Ajuda>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>
#include <zip.h>

#include "common/Cp1252.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Ligação.h"
#include "store/Registros.h"
#include "store/schema/Esquema.h"

namespace {
// Any failure of the store stops the build with its text.
class Plataforma_Ferramenta : public Plataforma {
  public:
    Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString&, Ícone_Caixa, Botões_Caixa) override {
        std::fprintf(stderr, "%s\n", qPrintable(texto));
        return Resposta_Caixa::Ok;
    }
    QString Caixa_Entrada(const QString&, const QString&, const QString&) override { return {}; }
    int Mostra_Modal(QDialog*) override { return 0; }
    void Bipe() override {}
    void Toca_Som(const QString&) override {}
    void Abre_Com_Aplicativo(const QString&) override {}
    void Dorme(int) override {}
    void Processa_Eventos() override {}
    void Cursor_Ocupado(const QString&) override {}
    void Cursor_Normal() override {}
    QDateTime Agora() override { return QDateTime::currentDateTime(); }
    float Segundos_Desde_Meia_Noite() override { return 0; }
    void Semeia(float) override {}
    double Aleatório() override { return 0; }
    bool Linha_Comando_Vazia() override { return false; }
    [[noreturn]] void Encerra_Agora(int código) override { std::exit(código == 0 ? 1 : código); }
};

[[noreturn]] void Erro(const QString& texto) {
    std::fprintf(stderr, "gera_sementes: %s\n", qPrintable(texto));
    std::exit(1);
}

QStringList Linhas(const QString& arquivo) {
    QFile f(arquivo);
    if (!f.open(QIODevice::ReadOnly)) Erro("não foi possível ler " + arquivo);
    return QString::fromUtf8(f.readAll()).split('\n');
}

void Cria(Ligação& banco, const QString& tabela) {
    const Definição_Tabela d = Definição(tabela);
    Catálogo::Cria_Tabela(banco, d.Nome, d.Campos);
    for (const Índice_Info& i : d.Índices)
        if (i.Tipo == Tipo_Índice::Simples || tabela != "tblPergunta")
            Catálogo::Adiciona_Índice(banco, d.Nome, i);
}

Ligação Novo_Banco(const QString& caminho) {
    Exclui_Arquivo_Banco(caminho);
    Catálogo::Cria_Banco("Provider=SQLite;Data Source=" + caminho + ";Password=lumen");
    Ligação banco;
    banco.Open(Texto_Conexão(caminho));
    if (!banco.Aberta()) Erro("não foi possível criar " + caminho);
    return banco;
}

void Perguntas(Ligação& banco, const QString& arquivo, const QString& tipo, int& total) {
    Registros r;
    r.Open("tblPergunta", banco, Opção_Abertura::Tabela_Direta);
    banco.BeginTrans();
    for (const QString& linha : Linhas(arquivo)) {
        if (linha.trimmed().isEmpty() || linha.startsWith('#')) continue;
        const QStringList c = linha.split('\t');
        if (c.size() != 5) Erro("linha com colunas erradas em " + arquivo + ": " + linha);
        r.AddNew();
        r.Fields("Pergunta").Set_Value(c[0]);
        r.Fields("Resposta_Correta").Set_Value(c[1]);
        r.Fields("Resposta_Incorreta_1").Set_Value(c[2]);
        r.Fields("Resposta_Incorreta_2").Set_Value(c[3]);
        r.Fields("Resposta_Incorreta_3").Set_Value(c[4]);
        r.Fields("Tipo").Set_Value(tipo);
        r.Fields("Já_Comparada").Set_Value(false);
        r.Fields("Já_Verificada").Set_Value(false);
        r.Fields("Pergunta_Original").Set_Value(c[0]);
        r.Update();
        ++total;
    }
    banco.CommitTrans();
}

int Dinâmicas(Ligação& banco, const QString& arquivo) {
    Registros r;
    r.Open("tblDinâmica", banco, Opção_Abertura::Tabela_Direta);
    QFile f(arquivo);
    if (!f.open(QIODevice::ReadOnly)) Erro("não foi possível ler " + arquivo);
    const QStringList blocos = QString::fromUtf8(f.readAll()).split(QRegularExpression("\\n%%\\s*\\n"));
    int total = 0;
    banco.BeginTrans();
    for (const QString& bloco : blocos) {
        if (bloco.trimmed().isEmpty()) continue;
        QString nome, tipo, materiais, instruções;
        const QStringList linhas = bloco.trimmed().split('\n');
        int i = 0;
        for (; i < linhas.size(); ++i) {
            const QString& l = linhas[i];
            if (l.startsWith("Dinâmica:"))
                nome = l.mid(9).trimmed();
            else if (l.startsWith("Tipo:"))
                tipo = l.mid(5).trimmed();
            else if (l.startsWith("Materiais:"))
                materiais = l.mid(10).trimmed();
            else if (l.startsWith("Instruções:"))
                break;
        }
        instruções = linhas.mid(i + 1).join("\r\n").trimmed();
        if (nome.isEmpty() || tipo.isEmpty() || instruções.isEmpty())
            Erro("dinâmica incompleta: " + bloco.left(60));
        r.AddNew();
        r.Fields("Dinâmica").Set_Value(nome);
        r.Fields("Materiais").Set_Value(materiais);
        r.Fields("Instruções").Set_Value(instruções);
        r.Fields("Tipo_Dinâmica").Set_Value(tipo);
        r.Update();
        ++total;
    }
    banco.CommitTrans();
    return total;
}

int Citações(Ligação& banco, const QString& conteudo, const QString& ajuda) {
    Registros r;
    r.Open("tblRevelação", banco, Opção_Abertura::Tabela_Direta);
    int total = 0;
    banco.BeginTrans();
    for (const QString& linha : Linhas(conteudo + "/revelacoes.tsv")) {
        if (linha.trimmed().isEmpty() || linha.startsWith('#')) continue;
        const QStringList c = linha.split('\t');
        if (c.size() != 3) Erro("linha com colunas erradas em revelacoes.tsv: " + linha);
        r.AddNew();
        r.Fields("Palavra_Chave").Set_Value(c[2]);
        r.Fields("Código_Revelação_de_Deus").Set_Value(c[0].toInt());
        r.Fields("Quantidade_Linhas").Set_Value(c[1].toInt());
        r.Update();
        ++total;
    }
    banco.CommitTrans();
    // The citation files in code page 1252 with CR LF.
    const QStringList arquivos =
        QDir(conteudo + "/citacoes").entryList({"cit_*.txt"}, QDir::Files, QDir::Name);
    for (const QString& nome : arquivos) {
        QFile origem(conteudo + "/citacoes/" + nome);
        if (!origem.open(QIODevice::ReadOnly)) Erro("não foi possível ler " + nome);
        QString texto = QString::fromUtf8(origem.readAll());
        texto.replace("\r\n", "\n").replace("\n", "\r\n");
        QFile destino(ajuda + "/" + nome);
        if (!destino.open(QIODevice::WriteOnly)) Erro("não foi possível gravar " + destino.fileName());
        destino.write(Para_Cp1252(texto));
    }
    return total;
}

void Compacta(const QString& mdb, const QString& zip) {
    QFile::remove(zip);
    int erro = 0;
    zip_t* arquivo = zip_open(QFile::encodeName(zip).constData(), ZIP_CREATE | ZIP_TRUNCATE, &erro);
    if (arquivo == nullptr) Erro("não foi possível criar " + zip);
    zip_source_t* fonte = zip_source_file(arquivo, QFile::encodeName(mdb).constData(), 0, -1);
    if (fonte == nullptr || zip_file_add(arquivo, "Temp.Mdb", fonte, ZIP_FL_OVERWRITE) < 0)
        Erro("falha ao compactar");
    if (zip_close(arquivo) != 0) Erro("falha ao fechar " + zip);
}
}  // namespace

int main(int argc, char** argv) {
    QCoreApplication aplicação(argc, argv);
    if (argc != 4) Erro("uso: gera_sementes <conteudo> <saída> <ajuda>");
    Plataforma_Ferramenta plataforma;
    Define_Plataforma(&plataforma);
    const QString conteudo = argv[1], saída = argv[2], ajuda = argv[3];
    QDir().mkpath(saída + "/zip");
    QDir().mkpath(ajuda);

    int citações = 0;
    {
        Ligação banco = Novo_Banco(saída + "/Temp.Mdb");
        Cria(banco, "tblRevelação");
        citações = Citações(banco, conteudo, ajuda);
        banco.Close();
    }
    int perguntas = 0, dinâmicas = 0;
    {
        Ligação banco = Novo_Banco(saída + "/zip/Temp.Mdb");
        Cria(banco, "tblPergunta");
        Cria(banco, "tblDinâmica");
        Perguntas(banco, conteudo + "/perguntas_gerais.tsv", "G", perguntas);
        Perguntas(banco, conteudo + "/perguntas_biblicas.tsv", "B", perguntas);
        dinâmicas = Dinâmicas(banco, conteudo + "/dinamicas.txt");
        banco.Close();
    }
    Compacta(saída + "/zip/Temp.Mdb", saída + "/Temp.Zip");
    std::printf("gera_sementes: %d perguntas, %d dinâmicas, %d citações\n", perguntas, dinâmicas, citações);
    return 0;
}
