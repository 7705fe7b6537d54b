// The content that a new installation receives: nothing in it may hurt a player or break a window.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include "common/Cp1252.h"
#include "forms/Formatação.h"
#include "utilities/Ajuda.h"

namespace {
const QString Conteúdo = QStringLiteral(QUIZORA_FONTES) + "/resources/conteudo";
const QString Manual = QStringLiteral(QUIZORA_FONTES) + "/resources/Ajuda";

QStringList Linhas_De(const QString& arquivo) {
    QFile f(arquivo);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << arquivo.toStdString();
    QStringList linhas;
    for (const QString& l : QString::fromUtf8(f.readAll()).split('\n'))
        if (!l.isEmpty() && !l.startsWith('#')) linhas << l;
    return linhas;
}

bool Cabe_Em_Cp1252(const QString& texto) {
    return De_Cp1252(Para_Cp1252(texto)) == texto;
}
}  // namespace

TEST(Conteudo, QuestionsAreWellFormedDistinctAndStoredCapitalised) {
    QSet<QString> vistas;
    for (const auto& [arquivo, mínimo] : {std::pair{QString("perguntas_gerais.tsv"), 300},
                                          std::pair{QString("perguntas_biblicas.tsv"), 300}}) {
        const QStringList linhas = Linhas_De(Conteúdo + "/" + arquivo);
        EXPECT_GE(linhas.size(), mínimo) << arquivo.toStdString();
        for (const QString& linha : linhas) {
            SCOPED_TRACE(linha.toStdString());
            const QStringList c = linha.split('\t');
            ASSERT_EQ(c.size(), 5);
            EXPECT_FALSE(c[0].trimmed().isEmpty());
            EXPECT_LE(c[0].size(), 124);
            EXPECT_TRUE(Cabe_Em_Cp1252(linha));
            const QString chave = c[0].trimmed().toLower();
            EXPECT_FALSE(vistas.contains(chave)) << "pergunta repetida";
            vistas.insert(chave);
            QSet<QString> respostas;
            for (int i = 1; i < 5; ++i) {
                EXPECT_FALSE(c[i].trimmed().isEmpty());
                EXPECT_LE(c[i].size(), 50);
                EXPECT_EQ(c[i], Texto_Transformado(c[i])) << "resposta fora da grafia gravada";
                respostas.insert(c[i].trimmed().toLower());
            }
            EXPECT_EQ(respostas.size(), 4) << "resposta repetida entre as alternativas";
        }
    }
}

TEST(Conteudo, CitationsMatchTheirIndexRowsAndAreNumberedWithoutGaps) {
    const QStringList índice = Linhas_De(Conteúdo + "/revelacoes.tsv");
    EXPECT_GE(índice.size(), 120);
    int curtas = 0;
    for (int i = 0; i < índice.size(); ++i) {
        SCOPED_TRACE(índice[i].toStdString());
        const QStringList c = índice[i].split('\t');
        ASSERT_EQ(c.size(), 3);
        EXPECT_EQ(c[0].toInt(), i + 1);
        EXPECT_FALSE(c[2].trimmed().isEmpty());
        QFile arquivo(Conteúdo + QString("/citacoes/cit_%1.txt").arg(i + 1, 4, 10, QChar('0')));
        ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
        const QString texto = QString::fromUtf8(arquivo.readAll());
        EXPECT_TRUE(Cabe_Em_Cp1252(texto));
        const int linhas = static_cast<int>(texto.count('\n'));
        EXPECT_EQ(linhas, c[1].toInt()) << "Quantidade_Linhas difere do arquivo";
        EXPECT_GE(linhas, 8);
        EXPECT_LE(linhas, 40);
        if (linhas < 30) ++curtas;
    }
    EXPECT_GE(curtas, índice.size() / 4);
    EXPECT_EQ(QDir(Conteúdo + "/citacoes").entryList({"cit_*.txt"}, QDir::Files).size(), índice.size());
}

TEST(Conteudo, ActivitiesHaveUniqueNamesAndEverySetting) {
    QFile arquivo(Conteúdo + "/dinamicas.txt");
    ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
    const QStringList blocos = QString::fromUtf8(arquivo.readAll()).split(QRegularExpression("\\n%%\\s*\\n"));
    QSet<QString> nomes;
    QMap<QString, int> por_tipo;
    for (const QString& bloco : blocos) {
        if (bloco.trimmed().isEmpty()) continue;
        const auto nome =
            QRegularExpression("^Dinâmica: *(.+)$", QRegularExpression::MultilineOption).match(bloco);
        const auto tipo =
            QRegularExpression("^Tipo: *(.+)$", QRegularExpression::MultilineOption).match(bloco);
        ASSERT_TRUE(nome.hasMatch() && tipo.hasMatch()) << bloco.left(80).toStdString();
        EXPECT_LE(nome.captured(1).trimmed().size(), 50);
        EXPECT_FALSE(nomes.contains(nome.captured(1).trimmed().toLower())) << nome.captured(1).toStdString();
        nomes.insert(nome.captured(1).trimmed().toLower());
        ++por_tipo[tipo.captured(1).trimmed()];
        EXPECT_TRUE(bloco.contains("\nInstruções:\n"));
    }
    EXPECT_GE(nomes.size(), 40);
    EXPECT_EQ(por_tipo.keys(), (QStringList{"Ar Livre", "J.A.", "Meditação", "Salão"}));
}

TEST(Conteudo, EveryTopicOfTheManualHasItsPage) {
    for (const QString& tópico : Tópicos_do_Manual()) {
        QFile página(Manual + "/" + tópico + ".Html");
        ASSERT_TRUE(página.open(QIODevice::ReadOnly)) << tópico.toStdString();
        const QString html = QString::fromUtf8(página.readAll());
        EXPECT_TRUE(html.contains("estilo.css")) << tópico.toStdString();
        EXPECT_TRUE(html.contains("Index.Html")) << tópico.toStdString();
    }
    EXPECT_TRUE(QFile::exists(Manual + "/estilo.css"));

    // Every topic that a window of the code names, by F1 or by a menu entry, has its page too.
    static const QRegularExpression tópico_nomeado("(?:Tópico_Ajuda = |Ajuda\\(\\w+, )\"([^\"]+)\"");
    int nomeados = 0;
    QDirIterator fontes(QStringLiteral(QUIZORA_FONTES) + "/src", {"*.cpp"}, QDir::Files,
                        QDirIterator::Subdirectories);
    while (fontes.hasNext()) {
        QFile fonte(fontes.next());
        ASSERT_TRUE(fonte.open(QIODevice::ReadOnly));
        const QString código = QString::fromUtf8(fonte.readAll());
        for (auto m = tópico_nomeado.globalMatch(código); m.hasNext();) {
            const QString tópico = m.next().captured(1);
            ++nomeados;
            EXPECT_TRUE(QFile::exists(Manual + "/" + tópico + ".Html"))
                << tópico.toStdString() << " em " << fonte.fileName().toStdString();
            EXPECT_TRUE(Tópicos_do_Manual().contains(tópico)) << tópico.toStdString();
        }
    }
    EXPECT_GE(nomeados, 5);
}
