// Several workstations on one server through a real evening: a fresh workstation joining a bank in use,
// a server that restarts under a walk, a save and an import, and connections that the server refuses.
#include <gtest/gtest.h>
#include <libpq-fe.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "questions/frmImporta_Pergunta.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "store/schema/Esquema.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

namespace {
#define SO_NO_SERVIDOR() \
    if (!Testa_No_Servidor() || !Servidor_Teste::Ativo()) GTEST_SKIP() << "Só no servidor"

QString Conexão_Da_Pasta() {
    return Conexão_Do_Servidor(Caminho_Banco_Principal());
}

void Nomeia_Servidor(const QString& conexão) {
    QFile arquivo(Caminho_Dados() + "/" + Arquivo_Servidor);
    ASSERT_TRUE(arquivo.open(QIODevice::WriteOnly | QIODevice::Truncate));
    arquivo.write(conexão.toUtf8() + "\n");
}

// Everything a workstation could change on the server: the schemas, and a digest of every row of every
// table of the main and audit databases.
QString Retrato(const QString& conexão) {
    PGconn* c = PQconnectdb(conexão.toUtf8().constData());
    QStringList partes;
    PGresult* r = PQexec(c,
                         "SELECT n.nspname, c.relname FROM pg_namespace n LEFT JOIN pg_class c ON "
                         "c.relnamespace = n.oid AND c.relkind = 'r' WHERE n.nspname NOT LIKE 'pg\\_%' AND "
                         "n.nspname <> 'information_schema' ORDER BY 1, 2");
    for (int i = 0; i < PQntuples(r); ++i) {
        const QString esquema = QString::fromUtf8(PQgetvalue(r, i, 0));
        const QString tabela = QString::fromUtf8(PQgetvalue(r, i, 1));
        QString linha = esquema + "." + tabela;
        if (!tabela.isEmpty()) {
            const QString nome = "\"" + esquema + "\".\"" + tabela + "\"";
            PGresult* d = PQexec(c, ("SELECT count(*), md5(coalesce(string_agg(t::text, '|' ORDER BY rowid), "
                                     "'')) FROM " +
                                     nome + " t")
                                        .toUtf8()
                                        .constData());
            linha +=
                " " + QString::fromUtf8(PQgetvalue(d, 0, 0)) + " " + QString::fromUtf8(PQgetvalue(d, 0, 1));
            PQclear(d);
        }
        partes << linha;
    }
    PQclear(r);
    PQfinish(c);
    return partes.join('\n');
}

// The seed files that a fresh installation brings: the citations and an archive of questions.
void Deixa_Sementes() {
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Temporário()));
    {
        Ligação semente;
        semente.Open(Texto_Conexão(Caminho_Banco_Temporário()));
        const Definição_Tabela d = Definição("tblRevelação");
        Catálogo::Cria_Tabela(semente, d.Nome, d.Campos);
        semente.Close();
    }
    QFile zip(Caminho_Dados() + "/Temp.Zip");
    ASSERT_TRUE(zip.open(QIODevice::WriteOnly));
    zip.write("PK\x05\x06" + QByteArray(18, '\0'));  // an empty archive
}

int Caixas_Da_Perda(const Plataforma_Roteirizada& p) {
    int n = 0;
    for (const Caixa_Mostrada& c : p.Caixas) n += c.Texto.startsWith("A conexão com o servidor ") ? 1 : 0;
    return n;
}
}  // namespace

// A fresh folder whose Servidor.txt names a bank already in use changes nothing there, keeps its seed
// files in Dados/Arquivo and goes on; a workstation of a newer version brings the bank up once, and the
// next one finds nothing to do.
TEST(Estações_Servidor, AFreshWorkstationJoiningABankInUseChangesNoRowAndAddsNoSchema) {
    SO_NO_SERVIDOR();
    Plataforma_Roteirizada plataforma;
    QString servidor;
    {
        Pasta_Teste primeira;
        Instala_Programa();
        Cadastra_Perguntas(3);
        servidor = Conexão_Da_Pasta();
        Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
        Usuário_Atual = "Supervisor";
        Monitora_Log = true;
        Abre_Tabela("tblPergunta");
        Operação = "Alteração";
        Inicia_Transação();
        Trava(Tabela, Conexão, false);
        Tabela.Fields("Resposta_Correta").Set_Value("Certa, e alterada");
        Grava(Tabela, false);
        Finaliza_Transação();
    }
    ASSERT_FALSE(servidor.isEmpty());
    const QString antes = Retrato(servidor);
    ASSERT_TRUE(antes.contains("manutencao.tblManutenção_Banco_de_Dados "));
    ASSERT_TRUE(antes.contains("dados.tblPergunta 3"));
    {
        Pasta_Teste nova;
        Nomeia_Servidor(servidor);
        Deixa_Sementes();
        plataforma.Caixas.clear();
        EXPECT_FALSE(Inicia_Programa());
        EXPECT_TRUE(plataforma.Caixas.isEmpty()) << plataforma.Textos_Caixas().join("\n").toStdString();
        EXPECT_EQ(Retrato(servidor), antes);
        EXPECT_FALSE(QFile::exists(Caminho_Banco_Temporário()));
        EXPECT_FALSE(QFile::exists(Caminho_Dados() + "/Temp.Zip"));
        EXPECT_TRUE(QFile::exists(Caminho_Dados() + "/Arquivo/Temp 2019-03-14 14-30-00.Mdb"));
        EXPECT_TRUE(QFile::exists(Caminho_Dados() + "/Arquivo/Temp 2019-03-14 14-30-00.Zip"));
        // Its next start is an ordinary one.
        EXPECT_FALSE(Inicia_Programa());
        EXPECT_EQ(Retrato(servidor), antes);
    }

    // The bank left at an older version: the first workstation of this version brings it up, once.
    {
        Pasta_Teste atualiza;
        Nomeia_Servidor(servidor);
        ASSERT_TRUE(Executa_Como_Outra_Estação({"UPDATE tblConfigur SET Versão_Revisão = 9"}));
        plataforma.Caixas.clear();
        EXPECT_TRUE(Inicia_Programa());
        ASSERT_FALSE(plataforma.Caixas.isEmpty());
        EXPECT_EQ(plataforma.Caixas.last().Texto, Aviso(25));
    }
    const QString atualizado = Retrato(servidor);
    EXPECT_TRUE(atualizado.contains("dados.tblPergunta 3"));
    {
        Pasta_Teste outra;
        Nomeia_Servidor(servidor);
        Deixa_Sementes();
        plataforma.Caixas.clear();
        EXPECT_FALSE(Inicia_Programa());
        EXPECT_TRUE(plataforma.Caixas.isEmpty()) << plataforma.Textos_Caixas().join("\n").toStdString();
        EXPECT_EQ(Retrato(servidor), atualizado);
    }
}

// The server restarted between two statements of a walk: one box that names the server, the walk goes on
// over a new connection, and the program keeps running.
TEST(Estações_Servidor, AServerRestartedBetweenTwoStatementsIsToldOnceAndTheWalkGoesOn) {
    SO_NO_SERVIDOR();
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Cadastra_Perguntas(5);
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Pergunta número 1?");
    const int perdas = Perdas_De_Conexão();
    const int fins = plataforma.Encerramentos;  // the installation's first start ended after its upgrade

    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Pergunta número 2?");
    ASSERT_EQ(plataforma.Caixas.size(), 1);
    const Caixa_Mostrada& caixa = plataforma.Caixas[0];
    EXPECT_TRUE(caixa.Texto.startsWith("A conexão com o servidor local (")) << caixa.Texto.toStdString();
    EXPECT_TRUE(caixa.Texto.contains(" foi perdida."));
    EXPECT_TRUE(caixa.Texto.contains("\r\rDetalhe: "));  // libpq's words only after the sentence
    EXPECT_EQ(caixa.Botões, Botões_Caixa::Tentar_Sair);
    EXPECT_EQ(Perdas_De_Conexão(), perdas + 1);
    EXPECT_EQ(plataforma.Encerramentos, fins);
    // The rest of the walk, a count, and the audit session (lost too, and made again with the other).
    Tabela.MoveNext();
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Pergunta número 3?");
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 5);
    EXPECT_GE(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), 0);
    EXPECT_EQ(plataforma.Caixas.size(), 1);
    // The loss is in the occurrence log, once.
    QFile log(Caminho_Log_Ocorrências());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count(Para_Cp1252("Código: 3151")), 1);

    // Sair ends the program.
    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    plataforma.Respostas.push_back(Resposta_Caixa::Cancelar);
    EXPECT_THROW(Lastrec("Select * From tblPergunta Where Tipo = 'G'", Conexão), Programa_Encerrado);
    EXPECT_EQ(Caixas_Da_Perda(plataforma), 2);
}

// The server restarted in the middle of a save: one box, nothing written, the typed values still in the
// slot to be saved again, which then works.
TEST(Estações_Servidor, AServerRestartedInTheMiddleOfASaveUndoesItAndTheValuesCanBeSavedAgain) {
    SO_NO_SERVIDOR();
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Cadastra_Perguntas(3);
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    Em_Cadastro = true;
    const int auditoria = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.MoveFirst();
    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    Tabela.Fields("Pergunta").Set_Value("Qual é o rio mais longo do Brasil?");

    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    Grava(Tabela, false);
    EXPECT_TRUE(Registro_Duplicado);
    ASSERT_EQ(plataforma.Caixas.size(), 1) << plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_TRUE(
        plataforma.Caixas[0].Texto.contains("foi perdida: o que estava sendo gravado foi desfeito, e as "
                                            "informações digitadas continuam na tela"));
    EXPECT_TRUE(Tabela.Em_Edição());
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Qual é o rio mais longo do Brasil?");
    Finaliza_Transação();
    EXPECT_EQ(
        Lastrec("Select * From tblPergunta Where Pergunta = 'Qual é o rio mais longo do Brasil?'", Conexão),
        0);
    EXPECT_EQ(Lastrec("Select * From tblPergunta Where Pergunta = 'Pergunta número 1?'", Conexão), 1);
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditoria);

    // Saved again, as the window does after the box: the lock again, the same values, OK.
    Tabela.CancelUpdate();
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    ASSERT_TRUE(Travou);
    Tabela.Fields("Pergunta").Set_Value("Qual é o rio mais longo do Brasil?");
    Grava(Tabela, false);
    Finaliza_Transação();
    EXPECT_FALSE(Registro_Duplicado);
    EXPECT_EQ(
        Lastrec("Select * From tblPergunta Where Pergunta = 'Qual é o rio mais longo do Brasil?'", Conexão),
        1);
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditoria + 1);
    EXPECT_EQ(plataforma.Caixas.size(), 1);

    // A lock asked for over a lost connection is not "another user": the one box, then the lock is had.
    Tabela.MoveNext();
    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    Inicia_Transação();
    Trava(Tabela, Conexão, true);
    EXPECT_TRUE(Travou);
    Desfaz_Transação();
    EXPECT_EQ(Caixas_Da_Perda(plataforma), 2);
    EXPECT_EQ(plataforma.Caixas.size(), 2);
}

// The server restarted in the middle of an import of questions: one box for the whole file, the import
// stops and leaves nothing of the file in the bank, and the same file then imports whole.
TEST(Estações_Servidor, AServerRestartedInTheMiddleOfAnImportStopsItWithOneBoxAndNothingHalfWritten) {
    SO_NO_SERVIDOR();
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    Pode_Incluir = true;
    const QString arquivo = pasta.Caminho() + "/perguntas.txt";
    {
        QFile f(arquivo);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        for (int i = 1; i <= 40; ++i)
            f.write(QString("Quanto é %1 mais um?\nA) %2\nB) %3\nC) %4\nD) %5\nANSWER: A\n\n")
                        .arg(i)
                        .arg(i + 1)
                        .arg(i + 2)
                        .arg(i + 3)
                        .arg(i + 4)
                        .toUtf8());
    }
    frmImporta_Pergunta janela;
    plataforma.Arquivos_Escolhidos.push_back(arquivo);
    janela.cmdArquivo_Click();
    ASSERT_TRUE(janela.cmdImporta->isEnabled());
    plataforma.Caixas.clear();
    const int fins = plataforma.Encerramentos;

    int passos = 0;
    plataforma.Ao_Esperar = [&] {
        if (++passos == 10) {
            ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
        }
    };
    plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    plataforma.Ao_Esperar = nullptr;
    // The confirmation, then the one box of the loss.
    ASSERT_EQ(plataforma.Caixas.size(), 2) << plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_EQ(Caixas_Da_Perda(plataforma), 1);
    EXPECT_TRUE(
        janela.lblResumo->text().startsWith("A conexão com o servidor foi perdida durante a importação"));
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 0);
    EXPECT_FALSE(Transação_Aberta());
    EXPECT_EQ(plataforma.Encerramentos, fins);

    plataforma.Respostas.push_back(Resposta_Caixa::Sim);
    janela.cmdImporta_Click();
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 40);
    EXPECT_EQ(Caixas_Da_Perda(plataforma), 1);
}

// A wrong password and a host that does not answer: each its own Portuguese sentence that names the
// server, with libpq's English only after it, as the detail.
TEST(Estações_Servidor, AWrongPasswordAndAHostThatDoesNotAnswerAreEachToldInTheirOwnSentence) {
    SO_NO_SERVIDOR();
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    const QString conexão = Servidor_Teste::Ativo()->Usuário_Com_Senha(Conexão_Da_Pasta(), "lider", "certa");
    Nomeia_Servidor(conexão + " password=errada");
    EXPECT_TRUE(Inicia_Programa());
    ASSERT_EQ(plataforma.Caixas.size(), 1);
    const QString senha = plataforma.Caixas[0].Texto;
    EXPECT_TRUE(senha.startsWith("O servidor de banco de dados local (")) << senha.toStdString();
    EXPECT_TRUE(senha.contains(" recusou o usuário lider e a senha. ")) << senha.toStdString();
    EXPECT_TRUE(senha.contains("~/.pgpass"));
    EXPECT_FALSE(senha.contains("não respondeu"));
    EXPECT_LT(senha.indexOf("Detalhe: "), 0 + senha.indexOf("password authentication failed"));
    EXPECT_GT(senha.indexOf("Detalhe: "), 0);

    // The right password lets it in.
    Nomeia_Servidor(conexão + " password=certa");
    plataforma.Caixas.clear();
    QString motivo;
    EXPECT_TRUE(Servidor_Disponível(motivo)) << motivo.toStdString();

    // A host with nothing listening: refused at once, told as a server that does not answer.
    Nomeia_Servidor("host=127.0.0.1 port=1 dbname=quizora user=lider connect_timeout=3");
    EXPECT_TRUE(Inicia_Programa());
    ASSERT_EQ(plataforma.Caixas.size(), 1);
    const QString host = plataforma.Caixas[0].Texto;
    EXPECT_TRUE(host.startsWith("O servidor de banco de dados 127.0.0.1:1 não respondeu."))
        << host.toStdString();
    EXPECT_FALSE(host.contains("senha"));
    EXPECT_GT(host.indexOf("Detalhe: "), 0);
    EXPECT_EQ(plataforma.Caixas[0].Ícone, Ícone_Caixa::Crítico);
}

// A transaction begun with nothing sent yet holds nothing on the server (its BEGIN goes with its first
// statement): a restart before that statement costs one box and the statement then goes through, for a
// save (the new row shown as the server numbered it, with its audit row) as for a lock.
TEST(Estações_Servidor, AServerRestartedBeforeATransactionsFirstStatementCostsOneBoxAndItGoesThrough) {
    SO_NO_SERVIDOR();
    Pasta_Teste pasta;
    Plataforma_Roteirizada plataforma;
    Instala_Programa_Para_Janelas();
    Usuário_Atual = "Supervisor";
    Monitora_Log = true;
    Em_Cadastro = true;
    const int auditoria = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    Abre_Tabela("tblPergunta");
    const auto inclui = [&](const QString& pergunta) {
        Operação = "Inclusão";
        Inicia_Transação();
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(pergunta);
        Tabela.Fields("Resposta_Correta").Set_Value("Certa");
        Tabela.Fields("Resposta_Incorreta_1").Set_Value("Errada A");
        Tabela.Fields("Resposta_Incorreta_2").Set_Value("Errada B");
        Tabela.Fields("Resposta_Incorreta_3").Set_Value("Errada C");
        Tabela.Fields("Tipo").Set_Value("G");
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Fields("Já_Verificada").Set_Value(false);
        Tabela.Fields("Pergunta_Original").Set_Value(QString(""));
        Grava(Tabela, false);
        Finaliza_Transação();
    };
    // The first save prepares the insert, so that the second one finds the loss in the exchange that
    // carries its transaction's BEGIN.
    inclui("Qual é o rio mais longo do Brasil?");
    ASSERT_TRUE(plataforma.Caixas.isEmpty()) << plataforma.Textos_Caixas().join("\n").toStdString();
    const int primeira = Tabela.Fields("Código_Pergunta").Value().toInt();

    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    inclui("Qual é o maior estado do Brasil?");
    EXPECT_FALSE(Registro_Duplicado);
    EXPECT_EQ(Estado_Transação, "Finalizou Transação");
    ASSERT_EQ(Caixas_Da_Perda(plataforma), 1) << plataforma.Textos_Caixas().join("\n").toStdString();
    EXPECT_EQ(plataforma.Caixas.size(), 1);
    // Numbered by the server (a restart may skip numbers of the sequence), read back with the insert.
    const int segunda = Tabela.Fields("Código_Pergunta").Value().toInt();
    EXPECT_GT(segunda, primeira);
    EXPECT_EQ(Tabela.Fields("Pergunta").Value().toString(), "Qual é o maior estado do Brasil?");
    EXPECT_EQ(Tabela.Fields("Resposta_Incorreta_3").Value().toString(), "Errada C");
    EXPECT_EQ(Lastrec("tblPergunta", Conexão), 2);
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditoria + 2);

    ASSERT_TRUE(Servidor_Teste::Ativo()->Reinicia());
    Operação = "Alteração";
    Inicia_Transação();
    Trava(Tabela, Conexão, false);
    EXPECT_TRUE(Travou);
    EXPECT_EQ(Caixas_Da_Perda(plataforma), 2);
    // Held by the server: another workstation cannot change the row while the edit lasts.
    const QString muda =
        "UPDATE tblPergunta SET Tipo = 'B' WHERE Código_Pergunta = " + QString::number(segunda);
    EXPECT_FALSE(Executa_Como_Outra_Estação({"SET lock_timeout = 1000", muda}));
    Tabela.CancelUpdate();
    Desfaz_Transação();
    EXPECT_TRUE(Executa_Como_Outra_Estação({"SET lock_timeout = 1000", muda}));
}
