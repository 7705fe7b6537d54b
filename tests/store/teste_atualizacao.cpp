// Every start passes through the version upgrade: a fresh folder, an older release, seed files good and bad.
#include <gtest/gtest.h>
#include <zip.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/schema/Esquema.h"
#include "store/schema/frmAtualiza_Versão.h"
#include "support/Pasta_Teste.h"
#include "support/Servidor_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
class Atualização_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    // One start of the program: true when it ended after installing a new version.
    bool Inicia_Programa(long última_etapa = 0) {
        Reinicia_Estado_Global();
        frmAtualiza_Versão janela;
        janela.tmrTempo->stop();
        janela.Última_Etapa = última_etapa;
        try {
            janela.tmrTempo_Timer();
        } catch (const Programa_Encerrado& fim) {
            // A failure that ended the program leaves its entry in the log: show it with the test. The end
            // after a new version is not a failure.
            QFile log(Caminho_Log_Ocorrências());
            if (fim.Código != 0 && log.open(QIODevice::ReadOnly))
                ADD_FAILURE_AT("log", 0) << log.readAll().toStdString();
            return true;
        }
        return false;
    }

    int Linhas(const QString& tabela) { return Lastrec(tabela, Conexão); }

    void Define_Versão(int maior, int menor, int revisão) {
        Abre_Tabela("tblConfigur");
        Inicia_Transação();
        Trava(Tabela, Conexão, true);
        Tabela.Fields("Versão_Maior").Set_Value(maior);
        Tabela.Fields("Versão_Menor").Set_Value(menor);
        Tabela.Fields("Versão_Revisão").Set_Value(revisão);
        Grava(Tabela, false);
        Finaliza_Transação();
        Tabela.Reinicia();
    }

    QString Versão_Gravada() {
        Abre_Tabela("tblConfigur");
        const QString v = QString("%1.%2.%3")
                              .arg(Tabela.Fields("Versão_Maior").Value().toInt())
                              .arg(Tabela.Fields("Versão_Menor").Value().toInt())
                              .arg(Tabela.Fields("Versão_Revisão").Value().toInt());
        Tabela.Reinicia();
        return v;
    }

    void Confere_Esquema() {
        for (const Definição_Tabela& d : Esquema_Principal()) {
            SCOPED_TRACE(d.Nome.toStdString());
            const Estrutura_Tabela e = Catálogo::Estrutura(Conexão, d.Nome);
            ASSERT_EQ(e.Campos.size(), d.Campos.size());
            for (int i = 0; i < d.Campos.size(); ++i) {
                EXPECT_EQ(e.Campos[i].Nome, d.Campos[i].Nome);
                EXPECT_EQ(e.Campos[i].Tipo, d.Campos[i].Tipo) << d.Campos[i].Nome.toStdString();
                EXPECT_EQ(e.Campos[i].Largura, d.Campos[i].Largura) << d.Campos[i].Nome.toStdString();
                EXPECT_EQ(e.Campos[i].Auto, d.Campos[i].Auto) << d.Campos[i].Nome.toStdString();
                EXPECT_EQ(e.Campos[i].Zero, d.Campos[i].Zero) << d.Campos[i].Nome.toStdString();
            }
            ASSERT_EQ(e.Índices.size(), d.Índices.size());
            for (const Índice_Info& esperado : d.Índices) {
                const Índice_Info* achado = e.Índice(esperado.Nome);
                ASSERT_NE(achado, nullptr) << esperado.Nome.toStdString();
                EXPECT_EQ(achado->Tipo, esperado.Tipo) << esperado.Nome.toStdString();
                EXPECT_EQ(achado->Campos, esperado.Campos) << esperado.Nome.toStdString();
            }
        }
        const QStringList tabelas = Catálogo::Lista_Tabelas(Conexão);
        EXPECT_FALSE(tabelas.contains("tblManutenção_Banco_de_Dados"));
        const Definição_Tabela m = Definição_Manutenção();
        const Estrutura_Tabela e = Catálogo::Estrutura(Conexão_Manutenção, m.Nome);
        ASSERT_EQ(e.Campos.size(), m.Campos.size());
        for (int i = 0; i < m.Campos.size(); ++i) EXPECT_EQ(e.Campos[i].Nome, m.Campos[i].Nome);
        EXPECT_EQ(e.Índices.size(), m.Índices.size());
    }

    // A seed database: a Temp.Mdb with the given tables and rows, built through the store.
    void Cria_Semente(const QString& caminho, const QStringList& tabelas) {
        Catálogo::Cria_Banco(Conexão_Criação(caminho));
        Ligação banco;
        banco.Open(Texto_Conexão(caminho));
        for (const QString& t : tabelas) {
            const Definição_Tabela d = Definição(t);
            Catálogo::Cria_Tabela(banco, d.Nome, d.Campos);
        }
        Registros r;
        if (tabelas.contains("tblRevelação")) {
            r.Open("tblRevelação", banco, Opção_Abertura::Tabela_Direta);
            for (int i = 1; i <= 3; ++i) {
                r.AddNew();
                r.Fields("Palavra_Chave").Set_Value("fé, esperança");
                r.Fields("Código_Revelação_de_Deus").Set_Value(i);
                r.Fields("Quantidade_Linhas").Set_Value(10 + i);
                r.Update();
            }
        }
        if (tabelas.contains("tblPergunta")) {
            r.Open("tblPergunta", banco, Opção_Abertura::Tabela_Direta);
            for (const QString& p : {QString("Qual é o maior planeta?"), QString("Quem construiu a arca?")}) {
                r.AddNew();
                r.Fields("Pergunta").Set_Value(p);
                r.Fields("Resposta_Correta").Set_Value("Resposta");
                r.Fields("Tipo").Set_Value("G");
                r.Fields("Já_Comparada").Set_Value(false);
                r.Fields("Já_Verificada").Set_Value(false);
                r.Fields("Pergunta_Original").Set_Value(p);
                r.Update();
            }
        }
        if (tabelas.contains("tblDinâmica")) {
            r.Open("tblDinâmica", banco, Opção_Abertura::Tabela_Direta);
            r.AddNew();
            r.Fields("Dinâmica").Set_Value("Teia da Amizade");
            r.Fields("Materiais").Set_Value("Um rolo de barbante");
            r.Fields("Instruções").Set_Value("Formem uma roda.");
            r.Fields("Tipo_Dinâmica").Set_Value("Salão");
            r.Update();
        }
        r.Reinicia();
        banco.Close();
    }

    void Compacta(const QString& mdb, const QString& zip) {
        int erro = 0;
        zip_t* arquivo = zip_open(QFile::encodeName(zip).constData(), ZIP_CREATE | ZIP_TRUNCATE, &erro);
        ASSERT_NE(arquivo, nullptr);
        zip_source_t* fonte = zip_source_file(arquivo, QFile::encodeName(mdb).constData(), 0, -1);
        ASSERT_GE(zip_file_add(arquivo, "Temp.Mdb", fonte, ZIP_FL_OVERWRITE), 0);
        ASSERT_EQ(zip_close(arquivo), 0);
        QFile::remove(mdb);
    }

    void Inclui_Pergunta(const QString& texto, const QString& tipo, const QVariant& original = {}) {
        Abre_Tabela("tblPergunta");
        Inicia_Transação();
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(texto);
        Tabela.Fields("Resposta_Correta").Set_Value("Certa");
        Tabela.Fields("Tipo").Set_Value(tipo);
        if (original.isValid()) Tabela.Fields("Pergunta_Original").Set_Value(original);
        Grava(Tabela, false);
        Finaliza_Transação();
        Tabela.Reinicia();
    }
};
}  // namespace

TEST_F(Atualização_Teste, FreshFolderBecomesACompleteDatabaseAndTheSecondStartGoesOn) {
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_TRUE(
        Plataforma.Caixas.last().Texto.startsWith("Uma nova versão do sistema Quizora foi instalada"));
    EXPECT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_FALSE(QFile::exists(Caminho_Log_Ocorrências()));

    EXPECT_FALSE(Inicia_Programa());
    Confere_Esquema();
    EXPECT_EQ(Versão_Gravada(), "4.14.10");

    Abre_Tabela("tblConfigur");
    EXPECT_EQ(Tabela.Fields("Razão_Social").Value().toString(),
              "Colocar aqui a razão social da empresa!!!!!!");
    EXPECT_TRUE(Tabela.Fields("Monitora_Log_das_Atividades").Value().toBool());
    EXPECT_EQ(Tabela.Fields("Versão_Revelações_de_Deus").Value().toInt(), 0);
    Abre_Tabela("tblUsuário");
    ASSERT_EQ(Linhas("tblUsuário"), 2);
    EXPECT_EQ(Tabela.Fields("Usuário").Value().toString(), "Ornelio Varga");
    EXPECT_EQ(Tabela.Fields("Senha").Value().toInt(), Hash_Senha("tamaris"));
    EXPECT_EQ(Tabela.Fields("Biblioteca_Imagens_Local").Value().toString(), Pasta.Caminho() + "/Ícones");
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Usuário").Value().toString(), "Supervisor");
    EXPECT_EQ(Tabela.Fields("Senha").Value().toInt(), Hash_Senha("lumen"));
    EXPECT_EQ(Tabela.Fields("Quantidade_Execuções").Value().toInt(), 0);
    EXPECT_FALSE(Tabela.Fields("Muda_Fundo_de_Tela").Value().toBool());
    EXPECT_EQ(Linhas("tblEstado"), 28);
    Abre_Tabela("Select * From tblEstado Where Iniciais_Estado = 'SP'");
    EXPECT_EQ(Tabela.Fields("Estado").Value().toString(), "São Paulo");
}

TEST_F(Atualização_Teste, SeedFilesAreLoadedOnceAndAThirdStartChangesNothing) {
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    // Already in the bank by its original text: the archive skips it.
    Inclui_Pergunta("Qual é o maior planeta do Sistema Solar?", "G", "Qual é o maior planeta?");
    Cria_Semente(Caminho_Banco_Temporário(), {"tblRevelação"});
    Cria_Semente(Pasta.Dados() + "/Arquivo.Mdb", {"tblPergunta", "tblDinâmica"});
    QFile::rename(Pasta.Dados() + "/Arquivo.Mdb", Pasta.Dados() + "/zip.Mdb");
    QDir().mkpath(Pasta.Dados() + "/z");
    QFile::rename(Pasta.Dados() + "/zip.Mdb", Pasta.Dados() + "/z/Temp.Mdb");
    Compacta(Pasta.Dados() + "/z/Temp.Mdb", Pasta.Dados() + "/Temp.Zip");

    EXPECT_FALSE(Inicia_Programa());
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
    EXPECT_FALSE(QFile::exists(Pasta.Dados() + "/Temp.Zip"));
    EXPECT_EQ(Linhas("tblRevelação"), 3);
    EXPECT_EQ(Linhas("tblPergunta"), 2);
    EXPECT_EQ(Linhas("tblDinâmica"), 1);
    Abre_Tabela("Select * From tblPergunta Where Pergunta_Original = 'Quem construiu a arca?'");
    EXPECT_EQ(Tabela.RecordCount(), 1);
    Abre_Tabela("tblDinâmica");
    EXPECT_EQ(Tabela.Fields("Data_Última_Realização").Value().toString(), "");
    const int auditoria = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    EXPECT_GT(auditoria, 0);

    const int caixas = Plataforma.Caixas.size();
    EXPECT_FALSE(Inicia_Programa());
    EXPECT_EQ(Plataforma.Caixas.size(), caixas);
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditoria);
    EXPECT_EQ(Linhas("tblPergunta"), 2);
    EXPECT_EQ(Linhas("tblRevelação"), 3);
}

TEST_F(Atualização_Teste, ANewerVersionWithACitationFileEndsFirstAndLoadsOnTheNextStart) {
    Cria_Semente(Caminho_Banco_Temporário(), {"tblRevelação"});
    ASSERT_TRUE(Inicia_Programa());
    EXPECT_TRUE(QFile::exists(Caminho_Banco_Temporário()));
    EXPECT_FALSE(Inicia_Programa());
    EXPECT_EQ(Linhas("tblRevelação"), 3);
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
}

TEST_F(Atualização_Teste, AnOlderReleaseIsBroughtUpWithItsRowsKeptAndConverted) {
    // A database as release 1.0.3 left it: questions without marks, scores as whole numbers.
    ASSERT_FALSE(Inicia_Programa(1000003));
    Define_Versão(1, 0, 3);
    Inclui_Pergunta("Quem descobriu o Brasil?", "B");
    Inclui_Pergunta("Qual é a capital do Peru?", "X");
    Abre_Tabela("tblPontuação");
    for (const auto& [jogador, pontos] : {std::pair{"Ana", 1500}, std::pair{"Rui", 320}}) {
        Tabela.AddNew();
        Tabela.Fields("Jogador").Set_Value(jogador);
        Tabela.Fields("Pontuação").Set_Value(pontos);
        Tabela.Update();
    }
    Tabela.Reinicia();
    ASSERT_EQ(Catálogo::Estrutura(Conexão, "tblPontuação").Campos[1].Tipo, Tipo_Long);

    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Confere_Esquema();
    Abre_Tabela("tblPergunta");
    ASSERT_EQ(Linhas("tblPergunta"), 2);
    for (; !Tabela.Eof(); Tabela.MoveNext()) {
        EXPECT_EQ(Tabela.Fields("Tipo").Value().toString(), "G");
        EXPECT_FALSE(Tabela.Fields("Já_Comparada").Value().toBool());
        EXPECT_FALSE(Tabela.Fields("Já_Verificada").Value().toBool());
        EXPECT_EQ(Tabela.Fields("Pergunta_Original").Value().toString(), "");
    }
    Abre_Tabela("tblPontuação");
    Tabela.Set_Index("idxPontuação");
    Tabela.MoveLast();
    EXPECT_EQ(Tabela.Fields("Jogador").Value().toString(), "Ana");
    EXPECT_EQ(Tabela.Fields("Pontuação").Value().typeId(), QMetaType::Double);
    EXPECT_DOUBLE_EQ(Tabela.Fields("Pontuação").Value().toDouble(), 1500.0);
    EXPECT_FALSE(QFile::exists(Caminho_Cópia_Banco()));
    // The upgrade's own writes are updates in the audit trail, not a user's inclusions or deletions.
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    int linhas = 0;
    for (Tabela_Manutenção.MoveFirst(); !Tabela_Manutenção.Eof(); Tabela_Manutenção.MoveNext(), ++linhas)
        EXPECT_TRUE(Tabela_Manutenção.Fields("Manutenção").Value().toString().startsWith("Atualizando"))
            << Tabela_Manutenção.Fields("Manutenção").Value().toString().toStdString();
    EXPECT_GT(linhas, 0);
}

TEST_F(Atualização_Teste, HistoryRowsGetDistinctDatesTheFirstTheMostRecent) {
    ASSERT_FALSE(Inicia_Programa(2001117));
    Define_Versão(2, 1, 117);
    Abre_Tabela("tblPergunta_Já_Mostrada");
    for (int código : {7, 3, 9}) {
        Tabela.AddNew();
        Tabela.Fields("Código_Pergunta").Set_Value(código);
        Tabela.Update();
    }
    Tabela.Reinicia();
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Abre_Tabela("tblPergunta_Já_Mostrada");
    const QDate hoje = Plataforma.Relógio.date();
    for (int i = 1; !Tabela.Eof(); Tabela.MoveNext(), ++i)
        EXPECT_EQ(Tabela.Fields("Data_Jogo").Value().toDateTime().date(), hoje.addDays(-i));
}

TEST_F(Atualização_Teste, AStartKilledHalfwayIsRepeatedToTheSameEndState) {
    ASSERT_FALSE(Inicia_Programa(2000074));  // steps broken off after 2.0.74, version still 0
    Inclui_Pergunta("Pergunta de antes", "G");
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Confere_Esquema();
    EXPECT_EQ(Linhas("tblPergunta"), 1);
    EXPECT_EQ(Linhas("tblUsuário"), 2);
    EXPECT_EQ(Linhas("tblEstado"), 28);

    // A score conversion broken after the field was replaced still finds its rows in the copy.
    Abre_Tabela("tblPontuação");
    Tabela.AddNew();
    Tabela.Fields("Jogador").Set_Value("Ana");
    Tabela.Fields("Pontuação").Set_Value(700.5);
    Tabela.Update();
    Tabela.Reinicia();
    Reinicia_Estado_Global();
    Conexão.Open(Conexão_Principal());
    Catálogo::Copia_Banco(Conexão, Caminho_Cópia_Banco());
    ASSERT_TRUE(Existe_Banco(Caminho_Cópia_Banco()));
    Conexão.Execute("DELETE FROM tblPontuação");
    Conexão.Close();
    Reinicia_Estado_Global();
    // Version 4.11.87: only the conversion remains.
    Conexão.Open(Conexão_Principal());
    Conexão.Execute("UPDATE tblConfigur SET Versão_Maior = 4, Versão_Menor = 11, Versão_Revisão = 87");
    Conexão.Close();
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    EXPECT_EQ(Linhas("tblPontuação"), 1);
    EXPECT_FALSE(QFile::exists(Caminho_Cópia_Banco()));
}

TEST_F(Atualização_Teste, BadSeedFilesCostNoDataAndTheNextStartGoesOn) {
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Inclui_Pergunta("Pergunta guardada", "G");

    QFile zip(Pasta.Dados() + "/Temp.Zip");
    ASSERT_TRUE(zip.open(QIODevice::WriteOnly));
    zip.write("PK\x03\x04 isto não é um arquivo compactado de verdade");
    zip.close();
    EXPECT_FALSE(Inicia_Programa());
    ASSERT_FALSE(Plataforma.Caixas.isEmpty());
    EXPECT_EQ(Plataforma.Caixas.last().Ícone, Ícone_Caixa::Crítico);
    EXPECT_TRUE(Plataforma.Caixas.last().Texto.contains("Temp.Zip"));
    EXPECT_TRUE(QFile::exists(Caminho_Log_Ocorrências()));
    EXPECT_FALSE(QFile::exists(Pasta.Dados() + "/Temp.Zip"));

    QFile mdb(Caminho_Banco_Temporário());
    ASSERT_TRUE(mdb.open(QIODevice::WriteOnly));
    mdb.write(QByteArray(8192, 'x'));
    mdb.close();
    EXPECT_FALSE(Inicia_Programa());
    EXPECT_TRUE(Plataforma.Caixas.last().Texto.contains("Temp.Mdb"));
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));

    // An archive that brings only activities adds no questions.
    QDir().mkpath(Pasta.Dados() + "/z");
    Cria_Semente(Pasta.Dados() + "/z/Temp.Mdb", {"tblDinâmica"});
    Compacta(Pasta.Dados() + "/z/Temp.Mdb", Pasta.Dados() + "/Temp.Zip");
    const int caixas = Plataforma.Caixas.size();
    EXPECT_FALSE(Inicia_Programa());
    EXPECT_EQ(Plataforma.Caixas.size(), caixas);
    EXPECT_EQ(Linhas("tblDinâmica"), 1);
    EXPECT_EQ(Linhas("tblPergunta"), 1);

    EXPECT_FALSE(Inicia_Programa());
    Abre_Tabela("tblPergunta");
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Pergunta guardada");
}

TEST_F(Atualização_Teste, AnOlderProgramOnANewerDatabaseWritesNothing) {
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Define_Versão(5, 0, 0);
    const int auditoria = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    EXPECT_FALSE(Inicia_Programa());
    EXPECT_EQ(Versão_Gravada(), "5.0.0");
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditoria);
}

// A start that consumes a scratch database and renews the audit trail keeps both under dated names.
TEST_F(Atualização_Teste, AnExportNotYetSentAndTheOldAuditTrailAreKeptInTheArchiveFolder) {
    SO_NO_EMBUTIDO("no servidor a trilha antiga fica num esquema com a data no nome, não num arquivo");
    ASSERT_TRUE(Inicia_Programa());
    ASSERT_FALSE(Inicia_Programa());
    Inclui_Pergunta("Pergunta guardada", "G");
    const int auditoria = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    ASSERT_GT(auditoria, 0);
    Cria_Semente(Caminho_Banco_Temporário(), {"tblPergunta"});  // what the question export writes

    EXPECT_FALSE(Inicia_Programa());
    EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
    const QString arquivo = Pasta.Dados() + "/Arquivo";
    const QString temp = arquivo + "/Temp 2019-03-14 14-30-00.Mdb";
    const QString manutenção = arquivo + "/Manutenção 2019-03-14 14-30-00.Mdb";
    ASSERT_TRUE(QFile::exists(temp));
    ASSERT_TRUE(QFile::exists(manutenção));
    {
        Ligação guardado;
        guardado.Open(Texto_Conexão(temp));
        EXPECT_EQ(Lastrec("tblPergunta", guardado), 2);
        guardado.Open(Texto_Conexão(manutenção));
        EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", guardado), auditoria);
        guardado.Close();
    }
    QFile log(Caminho_Log_Ocorrências());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QByteArray texto = log.readAll();
    EXPECT_TRUE(texto.contains("Temp.Mdb foi guardado como"));
    EXPECT_TRUE(texto.contains(QFile::encodeName(QFileInfo(temp).fileName()).constData()));
}

// A data folder that cannot be written is told at once, in one box that names it, logged, and the end.
TEST_F(Atualização_Teste, ADataFolderThatCannotBeWrittenIsToldAtStartAndTheProgramEnds) {
    ASSERT_TRUE(QDir(Pasta.Dados()).removeRecursively() || !QDir(Pasta.Dados()).exists());
    // Nobody, not even the administrator, makes files here: it stands for a folder without write access.
    ASSERT_TRUE(QFile::link("/proc/self/fdinfo", Pasta.Dados()));
    Reinicia_Estado_Global();
    frmAtualiza_Versão janela;
    janela.tmrTempo->stop();
    EXPECT_THROW(janela.tmrTempo_Timer(), Programa_Encerrado);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains(Pasta.Dados()));
    EXPECT_TRUE(QFile::exists(Caminho_Log_Ocorrências()));
    EXPECT_FALSE(Conexão.Aberta());
}

// A program folder named by QUIZORA_PASTA that cannot be written is told with its name and where it came
// from.
TEST_F(Atualização_Teste, AProgramFolderFromQuizoraPastaThatCannotBeWrittenIsToldWithItsOrigin) {
    const QString pasta = "/proc/self/fdinfo/Quizora";
    qputenv("QUIZORA_PASTA", pasta.toUtf8());
    Reinicia_Estado_Global();
    frmAtualiza_Versão janela;
    janela.tmrTempo->stop();
    EXPECT_THROW(janela.tmrTempo_Timer(), Programa_Encerrado);
    qputenv("QUIZORA_PASTA", Pasta.Caminho().toUtf8());
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
    EXPECT_TRUE(
        Plataforma.Caixas[0].Texto.startsWith("Não é possível gravar na pasta do sistema:\r\r" + pasta))
        << Plataforma.Caixas[0].Texto.toStdString();
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains("variável de ambiente QUIZORA_PASTA"));
    EXPECT_FALSE(Conexão.Aberta());
}

// A damaged main database is told once, naming it and its last copy or a backup, and the program ends
// without writing a byte of it: cut in half with a copy in the archive folder, and random bytes without one.
TEST_F(Atualização_Teste, ADamagedMainDatabaseIsToldOnceWithItsLastCopyAndLeftAsItIs) {
    SO_NO_EMBUTIDO("o arquivo danificado é o do banco embutido");
    ASSERT_TRUE(Inicia_Programa());
    Reinicia_Estado_Global();  // the files closed, as after the end of the program
    const QString banco = Caminho_Banco_Principal();
    QFile arquivo(banco);
    ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
    const QByteArray inteiro = arquivo.readAll();
    arquivo.close();
    ASSERT_GT(inteiro.size(), 8192);
    ASSERT_FALSE(QFile::exists(banco + "-wal"));  // every row is in the file itself
    ASSERT_TRUE(QDir().mkpath(Pasta.Dados() + "/Arquivo"));
    const QString cópia = Pasta.Dados() + "/Arquivo/Dados 2026-11-20 18-00-00.Mdb";
    QFile::copy(banco, cópia);
    QFile::copy(banco, Pasta.Dados() + "/Arquivo/Dados 2026-11-01 08-00-00.Mdb");
    QFile::copy(banco, Pasta.Dados() + "/Arquivo/Manutenção 2026-11-22 08-00-00.Mdb");
    QFile antiga(Pasta.Dados() + "/Arquivo/Dados 2026-11-01 08-00-00.Mdb");
    ASSERT_TRUE(antiga.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        antiga.setFileTime(QDateTime::currentDateTime().addDays(-30), QFileDevice::FileModificationTime));
    antiga.close();

    QByteArray aleatório(int(inteiro.size()), '\0');
    for (int i = 0; i < aleatório.size(); ++i) aleatório[i] = char((i * 7919 + 13) % 251);
    const struct {
        QByteArray Conteúdo;
        bool Com_Cópia;
    } casos[] = {{inteiro.left(inteiro.size() / 2), true}, {aleatório, false}};
    for (const auto& caso : casos) {
        if (!caso.Com_Cópia) QDir(Pasta.Dados() + "/Arquivo").removeRecursively();
        QFile::remove(Caminho_Log_Ocorrências());
        ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly | QIODevice::Truncate));
        arquivo.write(caso.Conteúdo);
        arquivo.close();
        Plataforma.Caixas.clear();
        Reinicia_Estado_Global();
        {
            frmAtualiza_Versão janela;
            janela.tmrTempo->stop();
            EXPECT_THROW(janela.tmrTempo_Timer(), Programa_Encerrado);
        }
        ASSERT_EQ(Plataforma.Caixas.size(), 1);
        const QString texto = Plataforma.Caixas[0].Texto;
        EXPECT_EQ(Plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
        EXPECT_TRUE(texto.startsWith("O arquivo " + banco + " está danificado e não pode ser lido."))
            << texto.toStdString();
        if (caso.Com_Cópia)
            EXPECT_TRUE(texto.contains("A última cópia dele é \"Dados 2026-11-20 18-00-00.Mdb\""))
                << texto.toStdString();
        else
            EXPECT_TRUE(texto.contains("Não há cópia dele na pasta " + Pasta.Dados() + "/Arquivo") &&
                        texto.contains("backup de segurança"))
                << texto.toStdString();
        EXPECT_FALSE(texto.contains("Ou informação foi excluída"));
        // The file, as it was, and nothing beside it.
        ASSERT_TRUE(arquivo.open(QIODevice::ReadOnly));
        EXPECT_EQ(arquivo.readAll(), caso.Conteúdo);
        arquivo.close();
        EXPECT_FALSE(QFile::exists(banco + "-wal"));
        EXPECT_FALSE(QFile::exists(banco + "-shm"));
        QFile log(Caminho_Log_Ocorrências());
        ASSERT_TRUE(log.open(QIODevice::ReadOnly));
        EXPECT_TRUE(De_Cp1252(log.readAll()).contains("Código: 3049"));
    }
}
