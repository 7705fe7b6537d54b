// The error handler: which failures are excused, retried, logged, shown or fatal, the occurrence log
// as the log report reads it back, and the trap that brings a failure to the handler.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QObject>
#include <ostream>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}
static void PrintTo(const QByteArray& bytes, std::ostream* saída) {
    *saída << '"' << bytes.toPercentEncoding(" :.,-_()/'\"").toStdString() << '"';
}

namespace {
const QString Duplicado_Português =
    "As alterações solicitadas para a tabela não foram bem-sucedidas porque criariam valores duplicados no "
    "índice";
const QString Duplicado_Inglês =
    "The changes you requested to the table were not successful because they would create duplicate values "
    "in the index, primary key, or relationship.";
const QString Falha_Várias_Etapas =
    "Multiple-step OLE DB operation generated errors. Check each OLE DB status value, if available. No work "
    "was done.";
const QString Texto_Bloqueio =
    "Ou informação foi excluída do banco de dados, ou não foi possível executar a instrução SQL, ou a "
    "informação encontra-se atualmente bloqueada para sofrer atualização";
const QByteArray Traço(135, '_');

class Trata_Erro_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    QString Arquivo_Log() const { return Pasta.Caminho() + "/Log de Ocorrências.Log"; }
    bool Há_Log() const { return QFile::exists(Arquivo_Log()); }
    QByteArray Log() const {
        QFile arquivo(Arquivo_Log());
        if (!arquivo.open(QIODevice::ReadOnly)) return {};
        return arquivo.readAll();
    }
    int Entradas_No_Log() const { return static_cast<int>(Log().count("\r\n" + Traço + "\r\n\r\n")); }

    // A failure that must end the program.
    void Trata_Fatal(long número, const QString& descrição, long linha, const QString& fonte,
                     const QString& rotina) {
        EXPECT_THROW(Trata_Erro(número, descrição, linha, fonte, rotina), Programa_Encerrado)
            << "failure " << número << " in " << rotina.toStdString() << " should end the program";
    }

    void Espera_Caixa_Erro(const Caixa_Mostrada& caixa, long número, const QString& mensagem) {
        EXPECT_TRUE(caixa.Texto.startsWith("Ocorrência de erro...\r\r(Código " + QString::number(número) +
                                           ") -> " + mensagem + ".\r\r"))
            << caixa.Texto.toStdString();
        EXPECT_EQ(caixa.Título, QString("Quizora"));
        EXPECT_EQ(caixa.Ícone, Ícone_Caixa::Crítico);
        EXPECT_EQ(caixa.Botões, Botões_Caixa::Ok);
    }

    void Espera_Nada_Além_Da_Caixa(const QString& texto, Ícone_Caixa ícone) {
        ASSERT_EQ(Plataforma.Caixas.size(), 1);
        EXPECT_EQ(Plataforma.Caixas[0].Texto, texto);
        EXPECT_EQ(Plataforma.Caixas[0].Título, QString("Quizora"));
        EXPECT_EQ(Plataforma.Caixas[0].Ícone, ícone);
        EXPECT_EQ(Plataforma.Caixas[0].Botões, Botões_Caixa::Ok);
        EXPECT_FALSE(Há_Log());
        EXPECT_EQ(Plataforma.Encerramentos, 0);
        EXPECT_FALSE(Encerra_Sistema);
        EXPECT_FALSE(Registra_Erro);
    }
};
}  // namespace

// --- Duplicate values: the write is refused, once, without a log entry ---

TEST_F(Trata_Erro_Teste, DuplicateFromARegisterWindowShowsOneWarningAndStopsTheWrite) {
    Em_Cadastro = true;
    Repetições_Erro = 7;

    Trata_Erro(Erro_Índice_Duplicado, Duplicado_Português, 4, "frmUsuário", "Grava");

    Espera_Nada_Além_Da_Caixa("Informação já cadastrada no banco de dados.", Ícone_Caixa::Exclamação);
    EXPECT_EQ(Mensagem_Erro, QString("Informação já cadastrada no banco de dados"));
    EXPECT_TRUE(Sai_da_Gravação);
    EXPECT_TRUE(Registro_Duplicado);
    EXPECT_EQ(Repetições_Erro, 0);
}

TEST_F(Trata_Erro_Teste, DuplicateOutsideARegisterWindowIsSilentButStillSetsTheFlags) {
    Em_Cadastro = false;

    Trata_Erro(Erro_Índice_Duplicado, Duplicado_Português, 4, Fonte_Funções_Públicas, "Grava");

    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Há_Log());
    EXPECT_EQ(Plataforma.Encerramentos, 0);
    EXPECT_TRUE(Sai_da_Gravação);
    EXPECT_TRUE(Registro_Duplicado);
    EXPECT_EQ(Mensagem_Erro, QString("Informação já cadastrada no banco de dados"));
}

TEST_F(Trata_Erro_Teste, DuplicateAlreadyReportedIsNotShownAgain) {
    Em_Cadastro = true;
    Registro_Duplicado = true;

    Trata_Erro(Erro_Índice_Duplicado, Duplicado_Português, 4, "frmUsuário", "Grava");

    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Há_Log());
    EXPECT_EQ(Plataforma.Encerramentos, 0);
    EXPECT_TRUE(Sai_da_Gravação);
    EXPECT_TRUE(Registro_Duplicado);
}

TEST_F(Trata_Erro_Teste, DuplicateIsRecognisedByTheFirstWordsInEitherLanguage) {
    Em_Cadastro = true;
    Trata_Erro(Erro_Índice_Duplicado, Duplicado_Inglês, 4, "frmDinâmica", "Grava");
    Espera_Nada_Além_Da_Caixa("Informação já cadastrada no banco de dados.", Ícone_Caixa::Exclamação);
    EXPECT_TRUE(Registro_Duplicado);

    // The bare 25 characters are enough.
    Registro_Duplicado = false;
    Plataforma.Caixas.clear();
    Trata_Erro(Erro_Índice_Duplicado, "As alterações solicitadas", 4, "frmDinâmica", "Grava");
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Mensagem_Erro, Texto_Duplicado);

    // Anything else in those 25 characters is a foreign failure: retried, not a duplicate.
    Registro_Duplicado = false;
    Sai_da_Gravação = false;
    Plataforma.Caixas.clear();
    Trata_Erro(Erro_Índice_Duplicado, " " + Duplicado_Português, 4, "frmDinâmica", "Grava");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Mensagem_Erro, " " + Duplicado_Português);
    EXPECT_FALSE(Registro_Duplicado);
    EXPECT_FALSE(Sai_da_Gravação);
    EXPECT_EQ(Repetições_Erro, 1);
}

// --- Excused failures: a critical box and the program goes on ---

TEST_F(Trata_Erro_Teste, DuplicateKeyOfTheEngineShowsACriticalBoxAndGoesOn) {
    Trata_Erro(Erro_Duplicado_Jet, "The changes you requested...", 9, "frmCritério_de_Consulta",
               "cmdOk_Click");

    Espera_Nada_Além_Da_Caixa("Esta informação já está cadastrada no Banco de Dados.", Ícone_Caixa::Crítico);
    EXPECT_FALSE(Sai_da_Gravação);
    EXPECT_FALSE(Registro_Duplicado);
}

TEST_F(Trata_Erro_Teste, RefusedOrLockedRowShowsACriticalBoxAndGoesOn) {
    Trata_Erro(Erro_Bloqueado, "Could not update; currently locked.", 6, "frmPergunta", "cmdOk_Click");

    Espera_Nada_Além_Da_Caixa(Texto_Bloqueio + ".", Ícone_Caixa::Crítico);
}

TEST_F(Trata_Erro_Teste, RefusedRowWhileOpeningATableAdvisesReinstallingTheDrivers) {
    const QString com_drivers =
        Texto_Bloqueio + ".\r\rÉ necessário reinstalar os softwares MDAC 2.8 e JET 4 neste computador.";
    for (const char* rotina : {"Abre_Tabela", "Abre_Tabela_Secundária", "Abre_Tabelas"}) {
        SCOPED_TRACE(rotina);
        Plataforma.Caixas.clear();
        Trata_Erro(Erro_Bloqueado, "Unspecified error", 2, Fonte_Funções_Públicas, rotina);
        Espera_Nada_Além_Da_Caixa(com_drivers, Ícone_Caixa::Crítico);
    }
    for (const char* rotina : {"Abre_Tabel", "Grava", "Reabre_Tabela"}) {
        SCOPED_TRACE(rotina);
        Plataforma.Caixas.clear();
        Trata_Erro(Erro_Bloqueado, "Unspecified error", 2, Fonte_Funções_Públicas, rotina);
        Espera_Nada_Além_Da_Caixa(Texto_Bloqueio + ".", Ícone_Caixa::Crítico);
    }
}

// --- Failures of the duplicate number with a foreign text: retried in silence, then fatal ---

TEST_F(Trata_Erro_Teste, ForeignFailureOfTheDuplicateNumberIsSilentAHundredTimesAndFatalTheNext) {
    for (int vez = 1; vez <= 100; ++vez) {
        Trata_Erro(Erro_Índice_Duplicado, Falha_Várias_Etapas, 12, Fonte_Funções_Públicas, "Grava");
        ASSERT_EQ(Repetições_Erro, vez);
        ASSERT_TRUE(Plataforma.Caixas.isEmpty()) << "box at try " << vez;
        ASSERT_FALSE(Há_Log()) << "log entry at try " << vez;
        ASSERT_EQ(Plataforma.Encerramentos, 0) << "ended at try " << vez;
    }
    EXPECT_EQ(Mensagem_Erro, Falha_Várias_Etapas);
    EXPECT_FALSE(Sai_da_Gravação);
    EXPECT_FALSE(Registro_Duplicado);

    Trata_Fatal(Erro_Índice_Duplicado, Falha_Várias_Etapas, 12, Fonte_Funções_Públicas, "Grava");

    EXPECT_EQ(Repetições_Erro, 101);
    EXPECT_EQ(Plataforma.Encerramentos, 1);
    EXPECT_EQ(Entradas_No_Log(), 1);
    EXPECT_TRUE(
        Log().contains("   C\xF3"
                       "digo: -2147217887   "));
    EXPECT_TRUE(Log().startsWith("Descri\xE7\xE3o do Erro: " + Falha_Várias_Etapas.toLatin1() + ".\r\n"));
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    Espera_Caixa_Erro(Plataforma.Caixas[0], Erro_Índice_Duplicado, Falha_Várias_Etapas);
}

TEST_F(Trata_Erro_Teste, AnyOtherFailureBreaksTheRunOfRetries) {
    for (int vez = 1; vez <= 60; ++vez)
        Trata_Erro(Erro_Índice_Duplicado, Falha_Várias_Etapas, 12, Fonte_Funções_Públicas, "Grava");
    Trata_Erro(Erro_Duplicado_Jet, "Duplicate", 12, Fonte_Funções_Públicas, "Grava");
    EXPECT_EQ(Repetições_Erro, 0);
    Plataforma.Caixas.clear();

    for (int vez = 1; vez <= 100; ++vez)
        Trata_Erro(Erro_Índice_Duplicado, Falha_Várias_Etapas, 12, Fonte_Funções_Públicas, "Grava");
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Há_Log());
    EXPECT_EQ(Plataforma.Encerramentos, 0);
}

TEST_F(Trata_Erro_Teste, ForeignFailureOfTheDuplicateNumberWhileShowingFieldsIsFatalAtOnce) {
    Trata_Fatal(Erro_Índice_Duplicado, Falha_Várias_Etapas, 3, "frmPergunta", "Exibir_Campos");

    EXPECT_EQ(Repetições_Erro, 1);
    EXPECT_EQ(Entradas_No_Log(), 1);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    Espera_Caixa_Erro(Plataforma.Caixas[0], Erro_Índice_Duplicado, Falha_Várias_Etapas);
}

// --- The general case: logged, shown and fatal ---

TEST_F(Trata_Erro_Teste, AnyOtherFailureIsLoggedShownAndEndsTheProgram) {
    Trata_Fatal(91, "Object variable or With block variable not set", 17, "frmJogo", "Nova_Rodada");

    EXPECT_TRUE(Encerra_Sistema);
    EXPECT_TRUE(Registra_Erro);
    EXPECT_EQ(Plataforma.Encerramentos, 1);
    EXPECT_EQ(Entradas_No_Log(), 1);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    Espera_Caixa_Erro(Plataforma.Caixas[0], 91, "O objeto ou variável não foi inicializada");
}

TEST_F(Trata_Erro_Teste, FailureAfterARefusedWriteIsNotFatal) {
    // A duplicate stops the write; the failures that follow it in the same write are excused.
    Trata_Erro(Erro_Índice_Duplicado, Duplicado_Português, 4, Fonte_Funções_Públicas, "Grava");
    ASSERT_TRUE(Sai_da_Gravação);

    Trata_Erro(3021, "Either BOF or EOF is True", 5, Fonte_Funções_Públicas, "Grava");
    Trata_Erro(91, "Object variable not set", 8, "frmUsuário", "cmdOk_Click");

    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Há_Log());
    EXPECT_EQ(Plataforma.Encerramentos, 0);
    EXPECT_FALSE(Encerra_Sistema);
    EXPECT_FALSE(Registra_Erro);
    EXPECT_EQ(Mensagem_Erro, QString("O objeto ou variável não foi inicializada"));
}

TEST_F(Trata_Erro_Teste, NonEmptyCommandLineHidesTheErrorBoxButStillLogsAndEnds) {
    Plataforma.Linha_Vazia = false;

    Trata_Fatal(53, "File not found", 21, "frmRevelações", "Form_Load");

    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Entradas_No_Log(), 1);
    EXPECT_EQ(Plataforma.Encerramentos, 1);
}

TEST_F(Trata_Erro_Teste, UnknownNumberIsLoggedWithItsOwnDescription) {
    Trata_Fatal(3001, "Invalid argument", 2, Fonte_Funções_Públicas, "Abre_Tabela");
    Trata_Fatal(-2147024891, "Falha não catalogada do provedor", 3, "frmSair", "cmdSair_Click");

    EXPECT_EQ(Entradas_No_Log(), 2);
    const QByteArray log = Log();
    EXPECT_TRUE(log.startsWith("Descri\xE7\xE3o do Erro: Invalid argument.\r\n"));
    EXPECT_TRUE(log.contains("\r\n\r\nDescri\xE7\xE3o do Erro: Falha n\xE3o catalogada do provedor.\r\n"));
    ASSERT_EQ(Plataforma.Caixas.size(), 2);
    Espera_Caixa_Erro(Plataforma.Caixas[0], 3001, "Invalid argument");
    Espera_Caixa_Erro(Plataforma.Caixas[1], -2147024891, "Falha não catalogada do provedor");
}

// --- Translation ---

TEST_F(Trata_Erro_Teste, FixedRowsReplaceTheDescription) {
    EXPECT_EQ(
        Traduz_Erro(3021, "Either BOF or EOF is True, or the current record has been deleted.", "Grava"),
        QString("Não há nenhum registro corrente"));
    EXPECT_EQ(Traduz_Erro(3, "Return without GoSub", "x"),
              QString("Comando RETURN não possui comando GOSUB correspondente"));
    EXPECT_EQ(Traduz_Erro(31037, "Error loading from file", "x"),
              QString("Ocorreu um erro durante processo de leitura do arquivo"));
    // The table's own spelling stays.
    EXPECT_EQ(
        Traduz_Erro(3109, "", "x"),
        QString("As imformações não puderam ser eliminadas do Banco de Dados porque o usuário não possui "
                "permissão para eliminar dados"));
    EXPECT_EQ(Traduz_Erro(339, "Component not correctly registered", "x"),
              "As DLL´s do sistema não foram instaladas. Baixe-as através do link " + Endereço_Download);

    Trata_Fatal(3021, "Either BOF or EOF is True", 30, "frmAtividade", "cmdProximo_Click");
    EXPECT_EQ(Mensagem_Erro, QString("Não há nenhum registro corrente"));
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    Espera_Caixa_Erro(Plataforma.Caixas[0], 3021, "Não há nenhum registro corrente");
}

TEST_F(Trata_Erro_Teste, IndexOverflowTextCarriesTheDescriptionAfterTwoBlankLines) {
    const QString descrição = "Too many indexes on table 'tblPergunta'.";
    EXPECT_EQ(Traduz_Erro(Erro_Índice_Excesso, descrição, "Abre_Tabela"),
              "Propriedade INDEX da tabela foi definida em excesso. \r\rÉ necessário rearranjar a ordem de "
              "disposição das tabelas e dos índices.\r\r" +
                  descrição);

    // It is not excused.
    Trata_Fatal(Erro_Índice_Excesso, descrição, 1, Fonte_Funções_Públicas, "Abre_Tabela");
    EXPECT_EQ(Entradas_No_Log(), 1);
}

TEST_F(Trata_Erro_Teste, MissingDriversTextNamesTheProgram) {
    EXPECT_EQ(
        Traduz_Erro(Erro_Drivers, "Can't create object", "Form_Load"),
        QString("O sistema Quizora requer que os driver´s de acesso a banco de dados da Microsoft estejam "
                "instalados no computador.\r\rPara instalá-los, basta novamente executar o programa de "
                "instalação do sistema Quizora e, na tela \"ATENÇÃO!!!\" que lhe for mostrada, clicar nos "
                "link´s correspondentes à sua versão do Windows para iniciar o download dos driver´s e "
                "instalá-los"));
}

// --- What the user and the log report read ---

TEST_F(Trata_Erro_Teste, LogEntryHasTheFiveLineLayoutByteForByte) {
    Operação = "Alteração";
    Usuário_Atual = "Supervisor";
    Plataforma.Relógio = QDateTime(QDate(2026, 3, 5), QTime(9, 7, 3));

    Trata_Fatal(91, "Object variable not set", 42, "frmUsuário", "cmdOk_Click");

    const QByteArray esperado =
        QString(
            "Descrição do Erro: O objeto ou variável não foi inicializada.\r\n"
            "Código-Fonte: frmUsuário   Sub-Rotina: cmdOk_Click()   Nº. da Linha: 42\r\n"
            "Operação: Alteração   Código: 91   Usuário: Supervisor   Data: 05/03/2026"
            "   Hora: 09:07:03 hs\r\n")
            .toLatin1() +
        Traço + "\r\n\r\n";
    const QByteArray log = Log();
    EXPECT_EQ(log, esperado);

    // Code page 1252, one byte a letter, CR LF: what the log report parses.
    EXPECT_TRUE(log.startsWith("Descri\xE7\xE3o do Erro: "));
    EXPECT_TRUE(
        log.contains("\r\nC\xF3"
                     "digo-Fonte: frmUsu\xE1rio   Sub-Rotina: cmdOk_Click()   N\xBA. da Linha: 42\r\n"));
    EXPECT_TRUE(
        log.contains("\r\nOpera\xE7\xE3o: Altera\xE7\xE3o   C\xF3"
                     "digo: 91   Usu\xE1rio: Supervisor   "));
    EXPECT_FALSE(log.contains('\xC3'));  // no UTF-8 lead byte
    const QList<QByteArray> linhas = log.split('\n');
    ASSERT_EQ(linhas.size(), 6);  // five lines and nothing after the last line end
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(linhas[i].endsWith('\r')) << "line " << i + 1;
    EXPECT_EQ(linhas[3], Traço + "\r");
    EXPECT_EQ(linhas[4], QByteArray("\r"));
    EXPECT_TRUE(linhas[5].isEmpty());
}

TEST_F(Trata_Erro_Teste, EntriesAreAppendedAfterWhatTheLogAlreadyHolds) {
    {
        QFile arquivo(Arquivo_Log());
        ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly));
        arquivo.write("entrada antiga\r\n");
    }
    Operação = "Inclusão";
    Usuário_Atual = "Maria";
    Plataforma.Relógio = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 58));
    Trata_Fatal(61, "Disk full", 7, "frmRelatório", "Imprime");
    Operação = "Consulta";
    Plataforma.Relógio = QDateTime(QDate(2027, 1, 1), QTime(0, 0, 1));
    Trata_Fatal(3265, "Item not found in this collection.", 8, Fonte_Funções_Públicas, "Lastrec");

    const QByteArray esperado =
        "entrada antiga\r\n" +
        QString(
            "Descrição do Erro: O disco está cheio.\r\n"
            "Código-Fonte: frmRelatório   Sub-Rotina: Imprime()   Nº. da Linha: 7\r\n"
            "Operação: Inclusão   Código: 61   Usuário: Maria   Data: 31/12/2026   Hora: 23:59:58 hs\r\n")
            .toLatin1() +
        Traço + "\r\n\r\n" +
        QString(
            "Descrição do Erro: Campo informado não existe na tabela.\r\n"
            "Código-Fonte: Funções Públicas   Sub-Rotina: Lastrec()   Nº. da Linha: 8\r\n"
            "Operação: Consulta   Código: 3265   Usuário: Maria   Data: 01/01/2027   Hora: 00:00:01 hs\r\n")
            .toLatin1() +
        Traço + "\r\n\r\n";
    EXPECT_EQ(Log(), esperado);
    EXPECT_EQ(Caminho_Log_Ocorrências(), Arquivo_Log());
}

TEST_F(Trata_Erro_Teste, ErrorBoxTextIsExact) {
    Trata_Fatal(91, "Object variable not set", 42, "frmUsuário", "cmdOk_Click");

    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(
        Plataforma.Caixas[0].Texto,
        "Ocorrência de erro...\r\r(Código 91) -> O objeto ou variável não foi inicializada.\r\r"
        "Código-Fonte: frmUsuário\r\rSub-Rotina ..: cmdOk_Click()\r\rNº. da Linha .: 42\r\r"
        "Sistema ......: Quizora\r\rEstas mensagens de erro podem ser resolvidas consultando o artigo "
        "RESPOSTAS ÀS PERGUNTAS MAIS COMUNS que acompanha esse software.\r\rAs mesmas podem ser acessadas "
        "através do atalho MENU INICIAR, PROGRAMAS, QUIZORA, RESPOSTAS ÀS PERGUNTAS MAIS COMUNS.\r\rCaso o "
        "problema persista após ter consultado o artigo, relate-nos este problema através do endereço de "
        "e-mail " +
            Endereço_Suporte);
    EXPECT_EQ(Plataforma.Caixas[0].Título, QString("Quizora"));
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_EQ(Plataforma.Caixas[0].Botões, Botões_Caixa::Ok);
}

TEST_F(Trata_Erro_Teste, FailureToWriteTheLogIsReportedAsAFailureOfTheHandlerItself) {
    ASSERT_TRUE(QDir().mkpath(Arquivo_Log()));  // a folder where the file should be

    EXPECT_THROW(Trata_Erro(91, "Object variable not set", 42, "frmUsuário", "cmdOk_Click"),
                 Programa_Encerrado);

    EXPECT_EQ(Plataforma.Encerramentos, 1);
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains(
        "\r\rCódigo-Fonte: Funções Públicas\r\rSub-Rotina ..: Trata_Erro()\r\r"))
        << Plataforma.Caixas[0].Texto.toStdString();
}

// --- The trap ---

TEST_F(Trata_Erro_Teste, FailureInsideARoutineReachesTheHandlerWithThatRoutinesNames) {
    long linha = 0;
    auto cmdOk_Click = [&] {
        Rotina r("frmUsuário", "cmdOk_Click");
        linha = __LINE__ + 1;
        Falha(91, "Object variable not set");
    };
    EXPECT_THROW(cmdOk_Click(), Programa_Encerrado);

    ASSERT_GT(linha, 0);
    EXPECT_TRUE(
        Log().contains(QString("\r\nCódigo-Fonte: frmUsuário   Sub-Rotina: cmdOk_Click()   Nº. da Linha: " +
                               QString::number(linha) + "\r\n")
                           .toLatin1()))
        << Log().toStdString();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(
        Plataforma.Caixas[0].Texto.contains("Código-Fonte: frmUsuário\r\rSub-Rotina ..: cmdOk_Click()\r\r"
                                            "Nº. da Linha .: " +
                                            QString::number(linha) + "\r\r"));
}

TEST_F(Trata_Erro_Teste, RoutineOfAWindowIsNamedAfterTheWindow) {
    QObject janela;
    janela.setObjectName("frmCritério_de_Consulta");
    auto Form_Load = [&] {
        Rotina r(&janela, "Form_Load");
        Falha(3021, "Either BOF or EOF is True");
    };
    EXPECT_THROW(Form_Load(), Programa_Encerrado);

    EXPECT_TRUE(Log().contains(
        QString("\r\nCódigo-Fonte: frmCritério_de_Consulta   Sub-Rotina: Form_Load()   ").toLatin1()))
        << Log().toStdString();
}

TEST_F(Trata_Erro_Teste, InnerRoutineWithItsOwnTrapReceivesTheFailureInstead) {
    struct Recebida {
        long Número;
        QString Descrição;
        long Linha;
    };
    QList<Recebida> recebidas;
    Rotina externa("frmJogo", "Nova_Rodada");
    long linha = 0;
    {
        Rotina grava(Fonte_Funções_Públicas, "Grava", [&](long n, const QString& d, long l) {
            recebidas.append({n, d, l});
        });
        linha = __LINE__ + 1;
        Falha(Erro_Índice_Duplicado, Duplicado_Inglês);
    }

    ASSERT_EQ(recebidas.size(), 1);
    EXPECT_EQ(recebidas[0].Número, Erro_Índice_Duplicado);
    EXPECT_EQ(recebidas[0].Descrição, Duplicado_Inglês);
    EXPECT_EQ(recebidas[0].Linha, linha);
    // The handler was not called.
    EXPECT_TRUE(Mensagem_Erro.isEmpty());
    EXPECT_FALSE(Sai_da_Gravação);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty());
    EXPECT_FALSE(Há_Log());

    // Once the inner routine has returned, failures go to the outer one again.
    EXPECT_THROW(Falha(91, "Object variable not set"), Programa_Encerrado);
    EXPECT_EQ(recebidas.size(), 1);
    EXPECT_TRUE(
        Log().contains(QString("\r\nCódigo-Fonte: frmJogo   Sub-Rotina: Nova_Rodada()   ").toLatin1()))
        << Log().toStdString();
}
