// A report's forward reading gives the rows that a walk of its slot gives, in the same order and with the
// same values, from the slot's current row: through indexes with Nulls and long runs of ties cut by the
// pages, a source's criterion and its own descending order, after a seek, and while another workstation
// writes to the table.
#include <gtest/gtest.h>

#include <QSet>

#include "failure/Rotina.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Leitura_Sequencial.h"
#include "store/Tradutor_SQL.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
constexpr int Linhas = 300;
// Small pages, so that the reading crosses many of them and many cut a run of equal keys.
constexpr int Página = 7;

// A row as "code/type/question", "-" for a Null type.
QString Marca(const QVariant& código, const QVariant& tipo, const QVariant& pergunta) {
    return código.toString() + "/" + (tipo.isValid() ? tipo.toString() : "-") + "/" + pergunta.toString();
}

const QStringList Campos = {"Código_Pergunta", "Tipo", "Pergunta"};

// The slot's own walk from its current row to its end.
std::vector<std::string> Pela_Tabela() {
    std::vector<std::string> vistas;
    while (!Tabela.Eof()) {
        vistas.push_back(Marca(Tabela.Fields("Código_Pergunta").Value(), Tabela.Fields("Tipo").Value(),
                               Tabela.Fields("Pergunta").Value())
                             .toStdString());
        Tabela.MoveNext();
    }
    return vistas;
}

std::vector<std::string> Pela_Leitura(int página = Página) {
    Leitura_Sequencial leitura(Tabela, Campos, página);
    std::vector<std::string> vistas;
    while (leitura.Próxima())
        vistas.push_back(Marca(leitura.Valor(0), leitura.Valor(1), leitura.Valor(2)).toStdString());
    return vistas;
}

class Leitura_Sequencial_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Cria_Bancos_De_Teste();
        Indexa_Perguntas_Por_Tipo();
        // Three types and Nulls, so that most keys tie (and two of them differ only by case and accent);
        // the texts repeat every 40 rows and sort against the codes.
        QStringList inclusões{"BEGIN"};
        for (int código = 1; código <= Linhas; ++código) {
            const QString tipo = código % 7 == 0   ? QString("NULL")
                                 : código % 3 == 0 ? QString("'Á'")
                                 : código % 3 == 1 ? QString("'a'")
                                                   : QString("'B'");
            inclusões << QString(
                             "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
                             "VALUES ('Pergunta nº %1', 'x', %2, false)")
                             .arg(40 - código % 40, 2, 10, QChar('0'))
                             .arg(tipo);
        }
        inclusões << "COMMIT";
        ASSERT_TRUE(Executa_Como_Outra_Estação(inclusões));
        Abre_Tabela("tblPergunta");
    }

    // Both ways from the slot's current row: the reading first, then the slot's walk from the same row.
    void Compara_Do_Início(const QString& índice) {
        SCOPED_TRACE(índice.toStdString());
        Tabela.Set_Index(índice);
        Tabela.MoveFirst();
        const std::vector<std::string> lidas = Pela_Leitura();
        Tabela.MoveFirst();
        const std::vector<std::string> andadas = Pela_Tabela();
        EXPECT_EQ(lidas.size(), static_cast<size_t>(Linhas));
        EXPECT_EQ(lidas, andadas);
    }
};
}  // namespace

TEST_F(Leitura_Sequencial_Teste, GivesTheSlotsRowsInItsOrderThroughNullsTiesAndEveryIndex) {
    Compara_Do_Início("idxTipo");
    Compara_Do_Início("idxTipo_Pergunta");
    Compara_Do_Início("idxPergunta");
    Compara_Do_Início("");
    // The engine's own pages, larger than the table, give the same rows.
    Tabela.Set_Index("idxTipo");
    Tabela.MoveFirst();
    const std::vector<std::string> numa_página = Pela_Leitura(0);
    Tabela.MoveFirst();
    EXPECT_EQ(numa_página, Pela_Tabela());
}

TEST_F(Leitura_Sequencial_Teste, StartsAtTheCurrentRowAfterASeekOrASlotNotYetPlacedAndGivesNothingAtTheEnd) {
    Tabela.Set_Index("idxTipo_Pergunta");
    Tabela.Seek({"B", "Pergunta nº 20"}, Tipo_Busca::Depois_ou_Igual);
    ASSERT_FALSE(Tabela.Eof());
    const std::vector<std::string> lidas = Pela_Leitura();
    ASSERT_FALSE(lidas.empty());
    EXPECT_EQ(QString::fromStdString(lidas.front()).section('/', 1), "B/Pergunta nº 20");
    Tabela.Seek({"B", "Pergunta nº 20"}, Tipo_Busca::Depois_ou_Igual);
    EXPECT_EQ(lidas, Pela_Tabela());

    // At the end: no rows, and the slot stays where it was.
    EXPECT_TRUE(Tabela.Eof());
    EXPECT_TRUE(Pela_Leitura().empty());

    // A slot just opened starts at its first row.
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxTipo");
    const std::vector<std::string> do_início = Pela_Leitura();
    Tabela.MoveFirst();
    EXPECT_EQ(do_início, Pela_Tabela());
}

TEST_F(Leitura_Sequencial_Teste, KeepsASourcesCriterionAndItsOwnDescendingOrder) {
    for (const char* fonte : {"Select * From tblPergunta Where Tipo = 'B' Or Tipo Is Null Order By "
                              "Pergunta Desc",
                              "Select * From tblPergunta Where Código_Pergunta > 100 Order By Tipo Desc, "
                              "Pergunta",
                              "Select * From tblPergunta Order By Resposta_Correta Desc, Tipo"}) {
        SCOPED_TRACE(fonte);
        Abre_Tabela(fonte);
        Tabela.MoveFirst();
        const std::vector<std::string> lidas = Pela_Leitura();
        Tabela.MoveFirst();
        const std::vector<std::string> andadas = Pela_Tabela();
        EXPECT_FALSE(lidas.empty());
        EXPECT_EQ(lidas, andadas);
    }
}

TEST_F(Leitura_Sequencial_Teste, RowsAnotherWorkstationDeletesOrChangesAheadAreSeenAndRowsItAddsStayOut) {
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    Leitura_Sequencial leitura(Tabela, Campos, Página);
    QStringList vistas;
    for (int i = 0; i < 10 && leitura.Próxima(); ++i) vistas << leitura.Valor(0).toString();
    // Pages ahead of the reading: a row deleted, one changed, one added (after every other row).
    ASSERT_TRUE(
        Executa_Em_Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta IN (50, 51)",
                                   "UPDATE tblPergunta SET Tipo = 'M' WHERE Código_Pergunta = 80",
                                   "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Tipo, Já_Comparada) "
                                   "VALUES ('Nova', 'x', 'A', false)"}));
    QString tipo_80;
    while (leitura.Próxima()) {
        vistas << leitura.Valor(0).toString();
        if (leitura.Valor(0).toInt() == 80) tipo_80 = leitura.Valor(1).toString();
    }
    EXPECT_EQ(vistas.size(), Linhas - 2);
    EXPECT_FALSE(vistas.contains("50"));
    EXPECT_FALSE(vistas.contains("51"));
    EXPECT_EQ(vistas.last(), QString::number(Linhas));
    EXPECT_EQ(tipo_80, "M");
}

TEST_F(Leitura_Sequencial_Teste, OnAFileRowsOfThePageAlreadyReadAreReadAgainAfterAnotherWrite) {
    SO_NO_EMBUTIDO("a server gives no sign of others' writes: its rows are taken as their page read them");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    Leitura_Sequencial leitura(Tabela, Campos, 50);
    ASSERT_TRUE(leitura.Próxima());
    ASSERT_TRUE(leitura.Próxima());
    // Rows of the page already read, not yet given: gone ones are skipped, changed ones come changed.
    ASSERT_TRUE(
        Executa_Em_Outro_Processo({"DELETE FROM tblPergunta WHERE Código_Pergunta IN (3, 5)",
                                   "UPDATE tblPergunta SET Pergunta = 'Outra' WHERE Código_Pergunta = 4"}));
    QStringList vistas;
    QByteArray bytes_4;
    while (leitura.Próxima()) {
        if (leitura.Valor(0).toInt() == 4) bytes_4 = leitura.Texto_Utf8(2).toByteArray();
        vistas << Marca(leitura.Valor(0), QVariant("x"), leitura.Valor(2));
    }
    ASSERT_GE(vistas.size(), 3);
    EXPECT_EQ(vistas[0], "4/x/Outra");
    EXPECT_EQ(bytes_4, "Outra");
    EXPECT_EQ(vistas[1].section('/', 0, 0), "6");
    EXPECT_EQ(vistas.size(), Linhas - 4);
}

TEST_F(Leitura_Sequencial_Teste, AnUnknownFieldFailsAsTheSlotsFieldsDoesAndReadsNothing) {
    Tabela.MoveFirst();
    QList<long> falhas;
    QString texto;
    Rotina trap("Teste", "Captura", [&](long n, const QString& t, long) {
        falhas << n;
        texto = t;
    });
    Leitura_Sequencial leitura(Tabela, {"Pergunta", "Inexistente"});
    EXPECT_FALSE(leitura.Próxima());
    ASSERT_EQ(falhas, QList<long>{3265});
    EXPECT_TRUE(texto.contains("'Inexistente'"));
}

// Texts of every length with accents, symbols and characters outside the basic plane anywhere in them.
TEST_F(Leitura_Sequencial_Teste, TextsComeBackAsWrittenWhereverTheirAccentsAndSymbolsStand) {
    QStringList textos{QString(), "é", "€", "😀", "Ação"};
    for (int antes = 0; antes <= 34; antes += 3)
        textos << QString(antes, 'a') + "é" + QString(antes % 7, 'b') + "“€”" + QString(20, 'c') + "ª😀";
    QStringList comandos{"BEGIN", "DELETE FROM tblPergunta"};
    for (const QString& texto : textos)
        comandos << "INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Já_Comparada) VALUES (" +
                        Valor_Texto_SQL(texto) + ", 'x', false)";
    comandos << "COMMIT";
    ASSERT_TRUE(Executa_Como_Outra_Estação(comandos));
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    Leitura_Sequencial leitura(Tabela, {"Pergunta"});
    QStringList lidos, andados, em_bytes;
    while (leitura.Próxima()) {
        // The bytes as kept first, the value after: neither may disturb the other.
        em_bytes << (leitura.Nulo(0) ? QString() : QString::fromUtf8(leitura.Texto_Utf8(0)));
        lidos << leitura.Valor(0).toString();
        EXPECT_EQ(leitura.Nulo(0), leitura.Valor(0).isNull());
    }
    EXPECT_EQ(em_bytes, textos);
    for (Tabela.MoveFirst(); !Tabela.Eof(); Tabela.MoveNext())
        andados << Tabela.Fields("Pergunta").Value().toString();
    EXPECT_EQ(lidos, textos);
    EXPECT_EQ(andados, textos);
}
