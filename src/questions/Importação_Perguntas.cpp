#include "questions/Importação_Perguntas.h"

#include <QHash>
#include <QLocale>

#include "failure/Rotina.h"
#include "forms/Formatação.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"

QSet<QString> Formas_Do_Banco() {
    Rotina r(Fonte_Funções_Públicas, "Formas_Do_Banco");
    QSet<QString> formas;
    Tabela_Pesquisa.Reinicia();
    Abre_Tabela_Pesquisa("Select Pergunta From tblPergunta");
    for (; Tabela_Pesquisa.Aberto() && !Tabela_Pesquisa.Eof(); Tabela_Pesquisa.MoveNext())
        formas.insert(Forma_Comparação(Tabela_Pesquisa.Fields(0).Value().toString()));
    Tabela_Pesquisa.Reinicia();
    return formas;
}

bool Marca_Do_Banco(Carimbo_Dados& marca) {
    const std::shared_ptr<Sessão> sessão = Conexão.Sessão_Física();
    return sessão && sessão->Carimbo(marca);
}

namespace {
// An answer made only of signs ("{", "(") is compared as it is written.
QString Forma_Resposta(const QString& resposta) {
    const QString forma = Forma_Comparação(resposta);
    return forma.isEmpty() ? resposta.trimmed().toLower() : forma;
}
}  // namespace

void Verifica_Perguntas(QVector<Pergunta_Lida>& perguntas, const QSet<QString>& formas_do_banco,
                        const QString& tipo_padrão) {
    // The first ready question of each form, by its line, for the repetitions within the file.
    QHash<QString, int> no_arquivo;
    static const char* const ordinais[] = {"1ª", "2ª", "3ª"};
    for (Pergunta_Lida& p : perguntas) {
        if (p.Tipo.isEmpty()) p.Tipo = tipo_padrão;
        p.Resposta_Correta = Texto_Transformado(p.Resposta_Correta);
        for (QString& errada : p.Resposta_Incorreta) errada = Texto_Transformado(errada);
        if (!p.Pronta()) continue;

        const QString forma = Forma_Comparação(p.Pergunta);
        const QString forma_certa = Forma_Resposta(p.Resposta_Correta);
        // Each wrong answer's form is taken once, for all the comparisons below.
        QString formas_erradas[3];
        for (int k = 0; k < 3; ++k) formas_erradas[k] = Forma_Resposta(p.Resposta_Incorreta[k]);
        if (p.Pergunta.isEmpty()) {
            p.Recusa = "Pergunta vazia";
        } else if (p.Resposta_Correta.isEmpty()) {
            p.Recusa = "Resposta correta vazia";
        } else if (p.Pergunta.size() > Largura_Pergunta) {
            p.Recusa = QString("A pergunta tem %1 caracteres; o máximo é %2")
                           .arg(p.Pergunta.size())
                           .arg(Largura_Pergunta);
        } else if (p.Resposta_Correta.size() > Largura_Resposta) {
            p.Recusa = QString("A resposta correta tem %1 caracteres; o máximo é %2")
                           .arg(p.Resposta_Correta.size())
                           .arg(Largura_Resposta);
        }
        for (int k = 0; k < 3 && p.Pronta(); ++k) {
            const QString& errada = p.Resposta_Incorreta[k];
            if (errada.isEmpty())
                p.Recusa = QString("%1 resposta incorreta vazia").arg(ordinais[k]);
            else if (errada.size() > Largura_Resposta)
                p.Recusa = QString("A %1 resposta incorreta tem %2 caracteres; o máximo é %3")
                               .arg(ordinais[k])
                               .arg(errada.size())
                               .arg(Largura_Resposta);
            else if (formas_erradas[k] == forma_certa)
                p.Recusa =
                    QString("A resposta correta se repete como %1 resposta incorreta").arg(ordinais[k]);
            for (int j = 0; j < k && p.Pronta(); ++j)
                if (formas_erradas[k] == formas_erradas[j])
                    p.Recusa =
                        QString("A %1 e a %2 respostas incorretas são iguais").arg(ordinais[j], ordinais[k]);
        }
        if (!p.Pronta()) continue;
        if (formas_do_banco.contains(forma)) {
            p.Recusa = "A pergunta já está cadastrada no banco";
        } else if (const auto achada = no_arquivo.constFind(forma); achada != no_arquivo.cend()) {
            p.Recusa = QString("A pergunta se repete no arquivo (igual à da linha %1)").arg(achada.value());
        } else {
            no_arquivo.insert(forma, p.Linha);
        }
    }
}

QVector<Pergunta_Exportada> Perguntas_Do_Banco(const QString& tipo) {
    Rotina r(Fonte_Funções_Públicas, "Perguntas_Do_Banco");
    QVector<Pergunta_Exportada> perguntas;
    Tabela_Pesquisa.Reinicia();
    QString comando =
        "Select Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, "
        "Tipo From tblPergunta";
    // The register reads any kind but "G" as biblical.
    if (tipo == "G")
        comando += " Where Tipo = " + Valor_Texto_SQL("G");
    else if (!tipo.isEmpty())
        comando += " Where Tipo Is Null Or Tipo <> " + Valor_Texto_SQL("G");
    Abre_Tabela_Pesquisa(comando + " Order By Código_Pergunta");
    for (; Tabela_Pesquisa.Aberto() && !Tabela_Pesquisa.Eof(); Tabela_Pesquisa.MoveNext()) {
        Pergunta_Exportada p;
        p.Pergunta = Tabela_Pesquisa.Fields(0).Value().toString().trimmed();
        p.Resposta_Correta = Tabela_Pesquisa.Fields(1).Value().toString().trimmed();
        for (int k = 0; k < 3; ++k)
            p.Resposta_Incorreta[k] = Tabela_Pesquisa.Fields(2 + k).Value().toString().trimmed();
        p.Tipo = Tabela_Pesquisa.Fields(5).Value().toString().trimmed() == "G" ? "G" : "B";
        perguntas << p;
    }
    Tabela_Pesquisa.Reinicia();
    return perguntas;
}

QString Número_Texto(qsizetype número) {
    return QLocale(QLocale::Portuguese, QLocale::Brazil).toString(static_cast<qlonglong>(número));
}

QString Texto_Resumo(int incluídas, int recusadas) {
    return QString("%1 %2, %3 %4")
        .arg(Número_Texto(incluídas))
        .arg(incluídas == 1 ? "pergunta incluída" : "perguntas incluídas")
        .arg(Número_Texto(recusadas))
        .arg(recusadas == 1 ? "recusada" : "recusadas");
}
