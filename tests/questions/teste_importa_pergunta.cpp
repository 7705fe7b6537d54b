// Questions in and out as files: the three readers on fixture files, the verdicts of the checks, the window
// that previews and imports in one transaction, the exports and the round trip.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "forms/Controles.h"
#include "questions/Importação_Perguntas.h"
#include "questions/Leitura_Perguntas.h"
#include "questions/frmImporta_Pergunta.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}

namespace {
QByteArray Fixture(const QString& nome) {
    QFile arquivo(QString(QUIZORA_ARQUIVOS_TESTE) + "/" + nome);
    EXPECT_TRUE(arquivo.open(QIODevice::ReadOnly)) << nome.toStdString();
    return arquivo.readAll();
}

// Line of the file -> verdict ("" when ready), for a whole reading.
QMap<int, QString> Veredictos(const QVector<Pergunta_Lida>& perguntas) {
    QMap<int, QString> v;
    for (const Pergunta_Lida& p : perguntas) v[p.Linha] = p.Recusa;
    return v;
}

const Pergunta_Lida* Da_Linha(const QVector<Pergunta_Lida>& perguntas, int linha) {
    for (const Pergunta_Lida& p : perguntas)
        if (p.Linha == linha) return &p;
    return nullptr;
}

}  // namespace

TEST(Leitura_Perguntas, ACsvFromASpreadsheetGivesEachRowItsVerdict) {
    QVector<Pergunta_Lida> perguntas = Lê_CSV(Fixture("perguntas.csv")).Perguntas;
    Verifica_Perguntas(perguntas, {Forma_Comparação("Quantos são os evangelhos")}, "G");
    const QMap<int, QString> v = Veredictos(perguntas);
    EXPECT_EQ(v.keys(), QList<int>({2, 3, 4, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    for (int pronta : {2, 3, 4, 15}) EXPECT_EQ(v[pronta], "") << pronta;
    EXPECT_EQ(v[6], "A pergunta se repete no arquivo (igual à da linha 3)");
    EXPECT_EQ(v[7], "A resposta correta se repete como 2ª resposta incorreta");
    EXPECT_EQ(v[8], "Pergunta vazia");
    EXPECT_EQ(v[9], "3ª resposta incorreta vazia");
    EXPECT_EQ(v[10], "A pergunta tem 127 caracteres; o máximo é 124");
    EXPECT_EQ(v[11], "A resposta correta tem 54 caracteres; o máximo é 50");
    EXPECT_TRUE(v[12].startsWith("Tipo \"X\" desconhecido")) << v[12].toStdString();
    EXPECT_EQ(v[13], "A linha tem 4 campos e o cabeçalho tem 6");
    EXPECT_EQ(v[14], "A pergunta já está cadastrada no banco");

    // Columns in any order and case, answers in the register's capitalisation, quotes and line breaks inside.
    const Pergunta_Lida* arca = Da_Linha(perguntas, 2);
    EXPECT_EQ(arca->Pergunta, "Quem construiu a arca?");
    EXPECT_EQ(arca->Resposta_Correta, "Noé");
    EXPECT_EQ(arca->Resposta_Incorreta[1], "Moisés");
    EXPECT_EQ(arca->Tipo, "B");
    EXPECT_EQ(Da_Linha(perguntas, 4)->Pergunta, "Uma pergunta com \"aspas\" e quebra de linha?");
    EXPECT_EQ(Da_Linha(perguntas, 4)->Tipo, "G");  // no kind in the row: the window's choice
    EXPECT_EQ(Da_Linha(perguntas, 15)->Resposta_Correta, "Júpiter da Silva e Souza");
}

TEST(Leitura_Perguntas, ACsvInCodePage1252WithCommasAndMixedLineEndsKeepsItsAccents) {
    QVector<Pergunta_Lida> perguntas = Lê_CSV(Fixture("perguntas_1252.csv")).Perguntas;
    Verifica_Perguntas(perguntas, {}, "B");
    ASSERT_EQ(perguntas.size(), 3);
    EXPECT_EQ(perguntas[0].Pergunta, "Qual é o nome da moeda europeia, o “€”?");
    EXPECT_EQ(perguntas[0].Tipo, "B");
    EXPECT_EQ(perguntas[1].Pergunta, "Onde fica a Estação da Luz?");
    EXPECT_EQ(perguntas[1].Resposta_Correta, "São Paulo");
    EXPECT_EQ(perguntas[1].Linha, 3);
    EXPECT_EQ(perguntas[2].Linha, 4);
    EXPECT_EQ(perguntas[2].Recusa, "Aspas abertas nesta linha e nunca fechadas");
}

TEST(Leitura_Perguntas, AikenTakesBothOptionStylesAndRefusesWhatIsNotOneRightAndThreeWrong) {
    QVector<Pergunta_Lida> perguntas = Lê_Aiken(Fixture("perguntas_aiken.txt")).Perguntas;
    Verifica_Perguntas(perguntas, {}, "G");
    const QMap<int, QString> v = Veredictos(perguntas);
    EXPECT_EQ(v.keys(), QList<int>({1, 8, 14, 21, 27, 33}));
    EXPECT_EQ(v[1], "");
    EXPECT_EQ(v[8], "A pergunta tem 3 opções; são precisas exatamente quatro (uma certa e três erradas)");
    EXPECT_EQ(v[14], "ANSWER indica \"E\", que não é a letra de uma das opções");
    EXPECT_EQ(v[21], "Falta a linha ANSWER com a letra da resposta certa");
    EXPECT_EQ(v[27], "A resposta correta se repete como 1ª resposta incorreta");
    EXPECT_EQ(v[33], "");
    const Pergunta_Lida* oceano = Da_Linha(perguntas, 1);
    EXPECT_EQ(oceano->Resposta_Correta, "Pacífico");
    EXPECT_EQ(oceano->Resposta_Incorreta, (std::array<QString, 3>{"Atlântico", "Índico", "Ártico"}));
    EXPECT_EQ(Da_Linha(perguntas, 33)->Resposta_Correta, "Leonardo da Vinci");
}

TEST(Leitura_Perguntas, GiftReadsMultipleChoiceWithTitlesCommentsAndEscapesAndRefusesOtherKinds) {
    QVector<Pergunta_Lida> perguntas = Lê_GIFT(Fixture("perguntas.gift")).Perguntas;
    Verifica_Perguntas(perguntas, {}, "G");
    ASSERT_EQ(perguntas.size(), 10);
    QStringList recusas;
    for (const Pergunta_Lida& p : perguntas) recusas << p.Recusa.section(':', 0, 0);
    EXPECT_EQ(recusas, QStringList({"", "Pergunta de verdadeiro ou falso", "Pergunta numérica",
                                    "Pergunta dissertativa (sem respostas)", "", "", "Pergunta de associação",
                                    "A pergunta tem 2 respostas certas; é precisa exatamente uma",
                                    "Chave { sem a chave } que a fecha", ""}));
    EXPECT_EQ(perguntas[0].Pergunta, "Quem foi lançado na cova dos leões?");
    EXPECT_EQ(perguntas[0].Resposta_Correta, "Daniel");  // the feedback after # is left out
    EXPECT_EQ(perguntas[0].Tipo, "B");                   // from the category
    EXPECT_EQ(perguntas[4].Pergunta, "Complete: o primeiro livro da Bíblia é _____ .");
    EXPECT_EQ(perguntas[5].Pergunta, "Qual símbolo {chave} abre um bloco em C?");
    EXPECT_EQ(perguntas[5].Resposta_Correta, "{");
    EXPECT_EQ(perguntas[5].Tipo, "G");
    EXPECT_EQ(perguntas[9].Resposta_Incorreta[2], "Madri");
}

TEST(Leitura_Perguntas, AikenAsMoodleWritesItTakesOptionsWithoutABlankAndCountsOneOption) {
    // The layout of Moodle's own file of Aiken errors: options glued to their letter, an option and an
    // ANSWER with no question, a question left without its ANSWER.
    QVector<Pergunta_Lida> perguntas = Lê_Aiken(Fixture("moodle_aiken.txt")).Perguntas;
    Verifica_Perguntas(perguntas, {}, "G");
    const QMap<int, QString> v = Veredictos(perguntas);
    EXPECT_EQ(v.keys(), QList<int>({1, 5, 7, 9, 16, 20, 27}));
    EXPECT_EQ(v[1], "A pergunta tem 1 opção; são precisas exatamente quatro (uma certa e três erradas)");
    EXPECT_EQ(v[5], "Falta a linha ANSWER com a letra da resposta certa");
    EXPECT_EQ(v[7], "Linha ANSWER sem uma pergunta antes dela");
    EXPECT_EQ(v[9], "");
    EXPECT_EQ(v[16], "Falta a linha ANSWER com a letra da resposta certa");
    EXPECT_EQ(v[20], "");
    EXPECT_EQ(v[27], "");
    const Pergunta_Lida* continentes = Da_Linha(perguntas, 20);
    EXPECT_EQ(continentes->Pergunta, "Quantos são os continentes habitados?");
    EXPECT_EQ(continentes->Resposta_Correta, "Seis");
    EXPECT_EQ(continentes->Resposta_Incorreta, (std::array<QString, 3>{"Três", "Quatro", "Oito"}));
    // Glued to its point, a letter out of the list's order is a line of the question, not an option.
    const Pergunta_Lida* livro = Da_Linha(perguntas, 27);
    EXPECT_EQ(livro->Pergunta,
              "Quem escreveu Dom Casmurro? E.T. não é opção: esta linha continua a pergunta");
    EXPECT_EQ(livro->Resposta_Correta, "Machado de Assis");
}

TEST(Leitura_Perguntas, GiftFormatMarksAreTakenOffAndHtmlGivesItsVisibleText) {
    QVector<Pergunta_Lida> perguntas = Lê_GIFT(Fixture("moodle_html.gift")).Perguntas;
    ASSERT_EQ(perguntas.size(), 6);
    // Answers without a mark are in the question's format; a mark of their own overrides it.
    EXPECT_EQ(perguntas[0].Pergunta, "Qual é a capital do Brasil?");
    EXPECT_EQ(perguntas[0].Resposta_Correta, "Brasília");
    EXPECT_EQ(perguntas[0].Resposta_Incorreta,
              (std::array<QString, 3>{"Salvador", "Rio de Janeiro", "Recife & Olinda"}));
    EXPECT_EQ(perguntas[1].Pergunta, "Quantas patas tem uma aranha?");
    EXPECT_EQ(perguntas[1].Resposta_Correta, "oito");
    EXPECT_EQ(perguntas[1].Resposta_Incorreta, (std::array<QString, 3>{"seis", "quatro", "dez"}));
    EXPECT_EQ(perguntas[2].Pergunta, "Qual destes é um \"símbolo\" químico & de qual elemento?");
    EXPECT_EQ(perguntas[2].Resposta_Correta, "Fe \u2013 ferro");
    EXPECT_EQ(perguntas[2].Resposta_Incorreta[0], "Fr \u2013 frério");
    EXPECT_EQ(perguntas[5].Pergunta, "Qual é o **maior** planeta?");

    // The length is that of the visible text, not of the markup.
    Verifica_Perguntas(perguntas, {}, "G");
    for (int i : {0, 1, 2, 3, 5}) EXPECT_EQ(perguntas[i].Recusa, "") << i;
    EXPECT_TRUE(perguntas[3].Pergunta.startsWith("Uma pergunta em HTML de marcação longa"));
    EXPECT_EQ(perguntas[4].Recusa, "A pergunta tem 142 caracteres; o máximo é 124");
}

TEST(Leitura_Perguntas, TheVisibleTextOfHtmlKeepsWhatABrowserShows) {
    EXPECT_EQ(Texto_Visível_HTML("a<br/>b<p>c</p>d<b>e</b>f"), "a b c def");
    EXPECT_EQ(Texto_Visível_HTML("<!-- nota -->x<script>alert(1)</script><style>p{}</style>y"), "xy");
    EXPECT_EQ(Texto_Visível_HTML("<a title=\"a>b\" href='c>d'>link</a>"), "link");
    // What does not make a tag or a reference is text.
    EXPECT_EQ(Texto_Visível_HTML("3 < 5 & 7 > 2 &naoexiste; &#; <b"), "3 < 5 & 7 > 2 &naoexiste; &#; <b");
    EXPECT_EQ(Texto_Visível_HTML("&#0;&#xD800;&#1114112;"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Texto_Visível_HTML("ca&shy;sa &Ccedil;&atilde;o &yuml;&euro;"), "casa Ção ÿ€");
}

TEST(Leitura_Perguntas, BadFilesGiveAClearMessageAndNoQuestion) {
    Pasta_Teste pasta;
    auto grava = [&](const QString& nome, const QByteArray& bytes) {
        QFile f(pasta.Caminho() + "/" + nome);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        return f.fileName();
    };
    auto erro = [](const QString& caminho) {
        const Leitura_Perguntas l = Lê_Arquivo_Perguntas(caminho);
        EXPECT_TRUE(l.Perguntas.isEmpty());
        return l.Erro;
    };
    EXPECT_EQ(erro(grava("vazio.csv", "")), "O arquivo está vazio.");
    EXPECT_EQ(erro(grava("brancos.gift", " \r\n\r\n ")), "O arquivo está vazio.");
    QByteArray binário;
    for (int i = 0; i < 4096; ++i) binário += static_cast<char>((i * 7919) % 256);
    EXPECT_TRUE(erro(grava("figura.csv", binário)).contains("arquivo binário"));
    const QString grande = grava("grande.csv", QByteArray(Tamanho_Máximo_Arquivo + 1, 'a'));
    EXPECT_EQ(erro(grande),
              "O arquivo tem 10,0 MB e passa do limite de 10 MB de uma importação. Divida-o em "
              "arquivos menores.");
    EXPECT_EQ(
        erro(grava("sem_coluna.csv", "Pergunta;Resposta Correta;Resposta Incorreta 1;Tipo\r\nA;B;C;G\r\n")),
        "A primeira linha do arquivo deve nomear as colunas Pergunta, Resposta Correta, Resposta Incorreta "
        "1, "
        "Resposta Incorreta 2, Resposta Incorreta 3 e, se quiser, Tipo. Faltam as colunas \"Resposta "
        "Incorreta 2\", \"Resposta Incorreta 3\".");
    EXPECT_EQ(erro(grava("so_cabecalho.csv",
                         "Pergunta,Resposta Correta,Resposta Incorreta 1,Resposta Incorreta 2,"
                         "Resposta Incorreta 3\n")),
              "Nenhuma pergunta foi encontrada no arquivo.");
    EXPECT_TRUE(erro(pasta.Caminho() + "/não existe.csv").contains("não foi encontrado"));
    // A text file with none of the formats' marks is read as CSV and told what its header lacks.
    EXPECT_TRUE(erro(grava("notas.txt", "lista de compras\nleite\n")).startsWith("A primeira linha"));
}

TEST(Leitura_Perguntas, ComparisonFoldsCaseAccentsPunctuationAndBlanks) {
    EXPECT_EQ(Forma_Comparação("Qual é a capital do Brasil?"),
              Forma_Comparação("  qual e a  capital do brasil"));
    EXPECT_NE(Forma_Comparação("Qual é a capital do Brasil?"),
              Forma_Comparação("Qual é a capital da Bahia?"));
    EXPECT_EQ(Tipo_Do_Texto("conhecimento BÍBLICO"), "B");
    EXPECT_EQ(Tipo_Do_Texto("g"), "G");
    EXPECT_EQ(Tipo_Do_Texto("História"), "");
}

namespace {
class Importa_Pergunta_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Usuário_Atual = "Supervisor";
        Monitora_Log = true;
        Plataforma.Caixas.clear();
    }

    QString Copia_Fixture(const QString& nome) {
        const QString destino = Pasta.Caminho() + "/" + nome;
        QFile::copy(QString(QUIZORA_ARQUIVOS_TESTE) + "/" + nome, destino);
        return destino;
    }
    static int Perguntas_No_Banco() {
        return Conta_Como_Outra_Estação(Caminho_Banco_Principal(), "Select Count(*) From tblPergunta");
    }
    static QStringList Situações(const frmImporta_Pergunta& j) {
        QStringList s;
        for (int l = 1; l < j.flxPerguntas->Rows(); ++l) s << j.flxPerguntas->TextMatrix(l, 1);
        return s;
    }
    // Imports a file through the window, answering Yes to the confirmation.
    void Importa(frmImporta_Pergunta& janela, const QString& caminho) {
        Plataforma.Arquivos_Escolhidos.push_back(caminho);
        janela.cmdArquivo_Click();
        Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
        janela.cmdImporta_Click();
    }
};
}  // namespace

TEST_F(Importa_Pergunta_Teste, ThePreviewShowsEveryVerdictAndTheImportWritesTheReadyRowsWithTheirAuditTrail) {
    Cadastra_Perguntas(1);
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.MoveFirst();
    Tabela.Fields("Pergunta").Set_Value("Quantos são os evangelhos");
    Tabela.Update();
    Tabela.Reinicia();
    frmImporta_Pergunta janela;
    const int auditoria_antes = Conta_Como_Outra_Estação(Caminho_Banco_Manutenção(),
                                                         "Select Count(*) From tblManutenção_Banco_de_Dados");
    EXPECT_FALSE(janela.cmdImporta->isEnabled());
    Plataforma.Arquivos_Escolhidos.push_back(Copia_Fixture("perguntas.csv"));
    janela.cmdArquivo_Click();
    const QStringList situações = Situações(janela);
    ASSERT_EQ(situações.size(), 13);
    EXPECT_EQ(situações.filter("Pronta").size(), 4);
    EXPECT_EQ(situações[12 - 1], "Recusada: A pergunta já está cadastrada no banco");
    EXPECT_EQ(janela.lblResumo->text(),
              "13 perguntas lidas no arquivo: 4 prontas para inclusão, 9 recusadas.");
    EXPECT_TRUE(janela.cmdImporta->isEnabled());
    EXPECT_EQ(Perguntas_No_Banco(), 1);  // the preview writes nothing

    // The kind chosen for the file reaches the row that names none.
    janela.optTipo[1]->setChecked(true);
    EXPECT_EQ(janela.flxPerguntas->TextMatrix(3, 7), "Bíblico");

    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "4 perguntas incluídas, 9 recusadas.");
    EXPECT_EQ(janela.lblResumo->text(), "4 perguntas incluídas, 9 recusadas.");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_FALSE(janela.cmdImporta->isEnabled());
    EXPECT_EQ(Perguntas_No_Banco(), 5);
    EXPECT_EQ(Conta_Como_Outra_Estação(
                  Caminho_Banco_Principal(),
                  "Select Count(*) From tblPergunta Where Pergunta = 'Quem construiu a arca?' And "
                  "Resposta_Correta = 'Noé' And Resposta_Incorreta_3 = 'Davi' And Tipo = 'B' And "
                  "Pergunta_Original = Pergunta And Já_Comparada = False And Já_Verificada = False"),
              1);
    EXPECT_EQ(Conta_Como_Outra_Estação(
                  Caminho_Banco_Principal(),
                  "Select Count(*) From tblPergunta Where Pergunta Like 'Uma pergunta com%' And Tipo = 'B'"),
              1);
    EXPECT_EQ(Conta_Como_Outra_Estação(Caminho_Banco_Manutenção(),
                                       "Select Count(*) From tblManutenção_Banco_de_Dados"),
              auditoria_antes + 4);
    EXPECT_EQ(
        Conta_Como_Outra_Estação(
            Caminho_Banco_Manutenção(),
            "Select Count(*) From tblManutenção_Banco_de_Dados Where Manutenção = "
            "'Incluindo Pergunta onde Pergunta = Qual é a capital do Brasil?' And Usuário = 'Supervisor'"),
        1);

    // The summary goes beside the source, in the program's code page.
    janela.cmdSalva_Resumo_Click();
    QFile resumo(Pasta.Caminho() + "/perguntas - Resumo da Importação.txt");
    ASSERT_TRUE(resumo.open(QIODevice::ReadOnly));
    const QString texto = De_Cp1252(resumo.readAll());
    EXPECT_TRUE(texto.contains("4 perguntas incluídas, 9 recusadas\r\n"));
    EXPECT_TRUE(texto.contains("Data: 14/03/2019 14:30"));
    EXPECT_TRUE(texto.contains("Linha 13: Linha curta? - A linha tem 4 campos e o cabeçalho tem 6\r\n"));
}

TEST_F(Importa_Pergunta_Teste, AnImportCancelledOrRefusedHalfwayWritesNothing) {
    frmImporta_Pergunta janela;
    Plataforma.Arquivos_Escolhidos.push_back(Copia_Fixture("perguntas_aiken.txt"));
    janela.cmdArquivo_Click();
    ASSERT_TRUE(janela.cmdImporta->isEnabled());

    // Cancelar pressed after the first question was written.
    int passos = 0;
    Plataforma.Ao_Esperar = [&] {
        if (++passos == 1) janela.cmdCancelar->click();
    };
    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "Importação cancelada: nenhuma pergunta foi incluída.");
    EXPECT_EQ(Perguntas_No_Banco(), 0);
    // The audit trail keeps, once, the inclusion that was undone, as after any roll-back.
    EXPECT_EQ(
        Conta_Como_Outra_Estação(Caminho_Banco_Manutenção(),
                                 "Select Count(*) From tblManutenção_Banco_de_Dados Where Manutenção "
                                 "= 'Incluindo Pergunta onde Pergunta = Qual é o maior oceano da Terra?'"),
        1);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_TRUE(janela.cmdImporta->isEnabled());

    // Another workstation includes one of the file's questions after the preview: the whole import stops.
    ASSERT_TRUE(Executa_Como_Outra_Estação(
        {"INSERT INTO tblPergunta (Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
         "Resposta_Incorreta_3, Tipo, Já_Comparada, Já_Verificada, Pergunta_Original) VALUES ('QUEM PINTOU A "
         "MONA LISA', 'a', 'b', 'c', 'd', 'G', False, False, ' ')"}));
    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    EXPECT_TRUE(Plataforma.Caixas.last().Texto.startsWith("Outra estação cadastrou perguntas deste arquivo"));
    EXPECT_EQ(Perguntas_No_Banco(), 1);
    EXPECT_EQ(Situações(janela).filter("Pronta").size(), 1);

    // A write that the store refuses in the middle of the file undoes the rows before it. The refusal
    // comes from a trigger in the embedded engine's own language.
    if (Testa_No_Servidor()) return;
    ASSERT_TRUE(
        Executa_Como_Outra_Estação({"CREATE TRIGGER recusa_gênesis BEFORE INSERT ON tblPergunta WHEN "
                                    "NEW.Pergunta Like 'Complete%' BEGIN "
                                    "SELECT RAISE(ABORT, 'recusada'); END"}));
    Plataforma.Arquivos_Escolhidos.push_back(Copia_Fixture("perguntas.gift"));
    janela.cmdArquivo_Click();
    ASSERT_EQ(Situações(janela).filter("Pronta").size(), 4);
    Plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    EXPECT_EQ(Plataforma.Caixas.last().Texto,
              "A pergunta da linha 18 não pôde ser gravada. A importação foi desfeita: nenhuma pergunta foi "
              "incluída.");
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(Perguntas_No_Banco(), 1);
}

TEST_F(Importa_Pergunta_Teste, ARoundTripThroughCsvAndGiftGivesBackTheSameQuestions) {
    Cadastra_Perguntas(3, "G");
    Cadastra_Perguntas(2, "B");  // their texts are changed below
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    Tabela.MoveLast();
    Tabela.Fields("Pergunta").Set_Value("Quem disse \"Faça-se a luz\"; e onde?");
    Tabela.Fields("Resposta_Correta").Set_Value("Deus, No Gênesis");
    Tabela.Update();
    Tabela.MovePrevious();
    Tabela.Fields("Pergunta").Set_Value("[Sl 23] Um {símbolo} = ~ # : e \\ barra?");
    Tabela.Update();
    Tabela.Reinicia();
    const QString consulta =
        "Select Pergunta, Resposta_Correta, Resposta_Incorreta_1, Resposta_Incorreta_2, "
        "Resposta_Incorreta_3, Tipo From tblPergunta Order By Pergunta, Tipo";
    auto conteúdo = [&] {
        QStringList linhas;
        for (const QStringList& linha : Consulta_Como_Outra_Estação(Caminho_Banco_Principal(), consulta))
            linhas << linha.join('|');
        return linhas.join('#');
    };
    const QString original = conteúdo();
    ASSERT_TRUE(original.contains("Deus, No Gênesis|Errada A2|Errada B2|Errada C2|B"));

    for (const auto formato : {Formato_Perguntas::CSV, Formato_Perguntas::GIFT}) {
        const QString destino =
            Pasta.Caminho() + (formato == Formato_Perguntas::CSV ? "/banco.csv" : "/banco.gift");
        {
            frmImporta_Pergunta janela;
            Plataforma.Arquivos_Escolhidos.push_back(destino);
            janela.cmdExporta_Click(formato);
            EXPECT_EQ(Plataforma.Caixas.last().Texto,
                      QString("5 perguntas exportadas para \"%1\".").arg(destino));
        }
        if (formato == Formato_Perguntas::CSV) {
            QFile f(destino);
            ASSERT_TRUE(f.open(QIODevice::ReadOnly));
            const QByteArray bytes = f.readAll();
            EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBFPergunta;Resposta Correta;"));
            EXPECT_TRUE(bytes.contains("\"Quem disse \"\"Faça-se a luz\"\"; e onde?\";Deus, No Gênesis;"));
        }
        ASSERT_TRUE(Executa_Como_Outra_Estação({"DELETE FROM tblPergunta"}));
        Limpa_Cache_Lastrec();
        frmImporta_Pergunta janela;
        Importa(janela, destino);
        EXPECT_EQ(Plataforma.Caixas.last().Texto, "5 perguntas incluídas, 0 recusadas.");
        EXPECT_EQ(conteúdo().toStdString(), original.toStdString())
            << (formato == Formato_Perguntas::CSV ? "CSV" : "GIFT");
    }

    // One kind only.
    frmImporta_Pergunta janela;
    janela.cboTipo_Exportação->setCurrentIndex(2);
    Plataforma.Arquivos_Escolhidos.push_back(Pasta.Caminho() + "/biblicas");
    janela.cmdExporta_Click(Formato_Perguntas::CSV);
    EXPECT_EQ(Plataforma.Caixas.last().Texto,
              QString("2 perguntas exportadas para \"%1/biblicas.csv\".").arg(Pasta.Caminho()));
}

TEST_F(Importa_Pergunta_Teste, AFileWithNoQuestionReadyCanStillSaveItsRefusals) {
    frmImporta_Pergunta janela;
    const QString caminho = Pasta.Caminho() + "/recusadas.txt";
    QFile arquivo(caminho);
    ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly));
    arquivo.write(
        "Quantos dias tem a semana?\nA) sete\nANSWER: A\n\nQual a cor do mar?\nA) azul\nB) verde\n");
    arquivo.close();
    Plataforma.Arquivos_Escolhidos.push_back(caminho);
    janela.cmdArquivo_Click();
    EXPECT_EQ(Situações(janela).filter("Pronta").size(), 0);
    EXPECT_FALSE(janela.cmdImporta->isEnabled());
    ASSERT_TRUE(janela.cmdSalva_Resumo->isEnabled());
    janela.cmdSalva_Resumo_Click();
    QFile resumo(Pasta.Caminho() + "/recusadas - Resumo da Importação.txt");
    ASSERT_TRUE(resumo.open(QIODevice::ReadOnly));
    const QString texto = De_Cp1252(resumo.readAll());
    EXPECT_TRUE(texto.contains("0 perguntas incluídas, 2 recusadas\r\n")) << texto.toStdString();
    EXPECT_TRUE(texto.contains("Linha 1: Quantos dias tem a semana? - A pergunta tem 1 opção;"));
    EXPECT_TRUE(texto.contains("Linha 5: Qual a cor do mar? - Falta a linha ANSWER"));
    EXPECT_EQ(Perguntas_No_Banco(), 0);

    // A file with questions ready goes back to the ordinary way: the summary follows the import.
    Plataforma.Arquivos_Escolhidos.push_back(Copia_Fixture("perguntas_aiken.txt"));
    janela.cmdArquivo_Click();
    EXPECT_TRUE(janela.cmdImporta->isEnabled());
    EXPECT_FALSE(janela.cmdSalva_Resumo->isEnabled());
}

TEST_F(Importa_Pergunta_Teste, BadFilesAreToldInABoxAndLeaveNothingToImport) {
    frmImporta_Pergunta janela;
    QFile vazio(Pasta.Caminho() + "/vazio.csv");
    ASSERT_TRUE(vazio.open(QIODevice::WriteOnly));
    vazio.close();
    Plataforma.Arquivos_Escolhidos.push_back(vazio.fileName());
    janela.cmdArquivo_Click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas.last().Texto, "O arquivo está vazio.");
    EXPECT_EQ(Plataforma.Caixas.last().Ícone, Ícone_Caixa::Exclamação);
    EXPECT_FALSE(janela.cmdImporta->isEnabled());
    EXPECT_EQ(janela.flxPerguntas->Rows(), 1);

    // Cancelling the file dialog changes nothing.
    janela.cmdArquivo_Click();
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Escolhas_De_Arquivo, QStringList({"Importar Perguntas", "Importar Perguntas"}));
}

TEST_F(Importa_Pergunta_Teste, TheRightsOfTheWindowGuardImportAndExport) {
    Usuário_Atual = "Visitante";  // a new user: no rights until the Supervisor grants them
    frmImporta_Pergunta janela;
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(4)}));
    Plataforma.Arquivos_Escolhidos.push_back(Copia_Fixture("perguntas.csv"));
    janela.cmdArquivo_Click();
    janela.cmdExporta_Click(Formato_Perguntas::CSV);
    EXPECT_EQ(Plataforma.Textos_Caixas(), QStringList({Aviso(4), Aviso(4), Aviso(4)}));
    EXPECT_TRUE(Plataforma.Escolhas_De_Arquivo.isEmpty());
    janela.cmdSair_Click();
}

TEST_F(Importa_Pergunta_Teste, APreviewOfTenThousandRowsLetsTheWindowBreatheAndCanBeCancelled) {
    QByteArray csv =
        "Pergunta;Resposta Correta;Resposta Incorreta 1;Resposta Incorreta 2;Resposta Incorreta 3;Tipo\r\n";
    for (int i = 1; i <= 10000; ++i)
        csv += QString("Qual é o número %1 do catálogo?;certa %1;errada a%1;errada b%1;errada c%1;G\r\n")
                   .arg(i)
                   .toUtf8();
    QFile f(Pasta.Caminho() + "/dez_mil.csv");
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(csv);
    f.close();

    frmImporta_Pergunta janela;
    Plataforma.Eventos_Processados = 0;
    Plataforma.Arquivos_Escolhidos.push_back(f.fileName());
    janela.cmdArquivo_Click();
    EXPECT_EQ(janela.flxPerguntas->Rows(), 10001);
    EXPECT_EQ(janela.flxPerguntas->TextMatrix(10000, 3), "Certa 10000");
    EXPECT_GE(Plataforma.Eventos_Processados, 50);  // one pass of events every 200 rows
    EXPECT_EQ(janela.lblResumo->text(),
              "10.000 perguntas lidas no arquivo: 10.000 prontas para inclusão, 0 recusadas.");

    // While the grid fills, Sair waits and Cancelar stops the preview.
    Plataforma.Ao_Esperar = [&] {
        EXPECT_FALSE(janela.cmdSair->isEnabled());
        janela.cmdCancelar->click();
    };
    Plataforma.Arquivos_Escolhidos.push_back(f.fileName());
    janela.cmdArquivo_Click();
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(janela.flxPerguntas->Rows(), 1);
    EXPECT_FALSE(janela.cmdImporta->isEnabled());
    EXPECT_TRUE(janela.cmdSair->isEnabled());
}
