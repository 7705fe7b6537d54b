// The games' statistics in their own database: made by the start-up on new and existing installations
// without touching the other two, the summaries brought up to the turns once each, also when two
// workstations record at once on a server, the figures of a known set of turns, the CSV, and a recorder
// that keeps quiet about a broken file but for one log entry.
// Runs on the embedded store and, with QUIZORA_TESTE_SERVIDOR=1, on the server.
#include <gtest/gtest.h>

#include <libpq-fe.h>

#include <QDir>
#include <QFile>
#include <chrono>
#include <thread>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "statistics/Estatísticas.h"
#include "store/Catálogo.h"
#include "store/Comando_Banco.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "support/Servidor_Teste.h"

using namespace Estatísticas;

namespace {
// Every table of a database with its fields and indexes, as text to compare.
QString Retrato_Esquema(const QString& texto_conexão) {
    Ligação conexão;
    conexão.Open(texto_conexão);
    QStringList partes;
    for (const QString& tabela : Catálogo::Lista_Tabelas(conexão)) {
        const Estrutura_Tabela e = Catálogo::Estrutura(conexão, tabela);
        QStringList campos;
        for (const Campo_Info& c : e.Campos)
            campos
                << QString("%1:%2:%3:%4:%5").arg(c.Nome).arg(c.Tipo).arg(c.Largura).arg(c.Auto).arg(c.Zero);
        QStringList índices;
        for (const Índice_Info& i : e.Índices)
            índices << i.Nome + "(" + i.Campos.join(',') + ")" + QString::number(static_cast<int>(i.Tipo));
        partes << tabela + " [" + campos.join(' ') + "] {" + índices.join(' ') + "}";
    }
    conexão.Close();
    return partes.join('\n');
}

qint64 Conta(const QString& sql) {
    Falha_Banco falha;
    auto sessão = Sessão::Abre(Caminho_Banco_Estatísticas(), falha);
    if (!sessão) return -1;
    Comando_Banco* c = sessão->Prepara(sql, falha);
    if (c == nullptr) return -1;
    const qint64 n = c->Passo() == Linha_Pronta ? c->Inteiro(0) : -1;
    c->Reinicia();
    return n;
}

int Entradas_Do_Log() {
    QFile log(Caminho_Log_Ocorrências());
    if (!log.open(QIODevice::ReadOnly)) return 0;
    return static_cast<int>(De_Cp1252(log.readAll()).count("Descrição do Erro:"));
}

class Estatísticas_Banco_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa();
        Cadastra_Perguntas(5);
        Plataforma.Caixas.clear();
    }

    // One turn of the fixture.
    static void Vez(const QDateTime& início, int minutos, int posição, const QString& jogador, int pergunta,
                    const QString& tipo, const QString& desfecho, int número_resposta, double valor,
                    const QString& ajuda = Ajuda_Nenhuma, int dado = 0) {
        Jogada j;
        j.Início_Jogo = início;
        j.Data_Jogada = início.addSecs(60 * minutos);
        j.Posição = posição;
        j.Jogador = jogador;
        j.Código_Pergunta = pergunta;
        j.Tipo = tipo;
        j.Desfecho = desfecho;
        j.Número_Resposta = número_resposta;
        j.Resposta_Escolhida = número_resposta < 0 ? QString() : QString("Resposta %1").arg(número_resposta);
        j.Valor = valor;
        j.Ajuda = ajuda;
        j.Número_Dado = dado;
        j.Segundos = 5;
        Falha_Banco falha;
        ASSERT_TRUE(Grava_Jogada(j, falha)) << falha.Descrição.toStdString();
    }

    // Two games, March and April 2019: the figures below were counted by hand from these eleven turns.
    static void Grava_Conjunto_Conhecido() {
        const QDateTime a(QDate(2019, 3, 10), QTime(10, 0));
        Vez(a, 1, 1, "Ana", 1, "G", Desfecho_Certa, 0, 10);
        Vez(a, 2, 2, "Beto", 2, "G", Desfecho_Errada, 1, 10, Ajuda_Dado_Texto, 2);
        Vez(a, 3, 1, "Ana", 3, "B", Desfecho_Certa, 0, 20, Ajuda_Apóstolos_Texto);
        Vez(a, 4, 2, "Beto", 1, "G", Desfecho_Pulada, -1, 5, Ajuda_Pulo);
        Vez(a, 5, 1, "Ana", 2, "G", Desfecho_Errada, 2, 40);
        Vez(a, 6, 2, "Beto", 1, "G", Desfecho_Certa, 0, 8);
        const QDateTime b(QDate(2019, 4, 2), QTime(20, 0));
        Vez(b, 1, 1, "Ana", 2, "G", Desfecho_Errada, 1, 10);
        Vez(b, 2, 1, "Ana", 1, "G", Desfecho_Errada, 3, 5, Ajuda_Dado_Texto, 1);
        Vez(b, 3, 1, "Ana", 2, "G", Desfecho_Errada, 3, 2);
        Vez(b, 4, 1, "Ana", 3, "B", Desfecho_Certa, 0, 1, Ajuda_Deus_Texto);
        Vez(b, 5, 1, "Ana", 2, "G", Desfecho_Eliminado, 1, 2);
    }
};
}  // namespace

TEST_F(Estatísticas_Banco_Teste, TheStartMakesTheFileOnNewAndExistingInstallationsAndLeavesTheOthersAlone) {
    // A new installation: the two starts of Instala_Programa made it with its four tables.
    ASSERT_TRUE(Existe_Banco(Caminho_Banco_Estatísticas()));
    {
        Ligação estatísticas;
        estatísticas.Open(Texto_Conexão(Caminho_Banco_Estatísticas()));
        EXPECT_EQ(Catálogo::Lista_Tabelas(estatísticas).size(), 4);
        for (const QString t : {"tblJogada", "tblResumo_Mensal", "tblResumo_Jogador", "tblResumo_Marca"})
            EXPECT_TRUE(Catálogo::Existe_Tabela(estatísticas, t)) << t.toStdString();
        estatísticas.Close();
    }
    Grava_Conjunto_Conhecido();

    // An installation of before, which has no statistics yet: the next start makes them, and the main and
    // the audit databases keep their schemas and their audit rows.
    Reinicia_Estado_Global();
    ASSERT_TRUE(Exclui_Arquivo_Banco(Caminho_Banco_Estatísticas()));
    ASSERT_FALSE(Existe_Banco(Caminho_Banco_Estatísticas()));
    const QString principal = Retrato_Esquema(Conexão_Principal());
    const QString auditoria = Retrato_Esquema(Conexão_Auditoria());
    ASSERT_FALSE(principal.isEmpty());
    Inicia_Programa();
    const int auditadas = Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção);
    EXPECT_TRUE(Existe_Banco(Caminho_Banco_Estatísticas()));
    EXPECT_EQ(Conta("SELECT COUNT(*) FROM tblJogada"), 0);
    EXPECT_EQ(Retrato_Esquema(Conexão_Principal()), principal);
    EXPECT_EQ(Retrato_Esquema(Conexão_Auditoria()), auditoria);

    // A start with the file in place keeps its turns, and again touches nothing else. A file of before
    // kept indexes on the turns, which it loses, and its summaries up to date turn by turn with no mark:
    // the start takes them as holding every turn, and adds none of them again.
    Grava_Conjunto_Conhecido();
    Falha_Banco falha;
    ASSERT_TRUE(Atualiza_Resumos(falha)) << falha.Descrição.toStdString();
    Fecha_Banco_Estatísticas();
    const QStringList índices_de_antes = {"idxCódigo_Jogada", "idxDia", "idxCódigo_Pergunta"};
    {
        Ligação estatísticas;
        estatísticas.Open(Texto_Conexão(Caminho_Banco_Estatísticas()));
        for (const QString& índice : índices_de_antes)
            Catálogo::Adiciona_Índice(estatísticas, "tblJogada", {índice, Tipo_Índice::Simples, {"Dia"}});
        Catálogo::Exclui_Tabela(estatísticas, "tblResumo_Marca");
        estatísticas.Close();
    }
    Inicia_Programa();
    EXPECT_EQ(Conta("SELECT COUNT(*) FROM tblJogada"), 11);
    EXPECT_EQ(Conta("SELECT SUM(Respostas) + SUM(Pulos) FROM tblResumo_Mensal"), 11);
    {
        Ligação estatísticas;
        estatísticas.Open(Texto_Conexão(Caminho_Banco_Estatísticas()));
        for (const QString& índice : índices_de_antes)
            EXPECT_EQ(Catálogo::Estrutura(estatísticas, "tblJogada").Índice(índice), nullptr)
                << índice.toStdString();
        estatísticas.Close();
    }
    // Turns of a game killed before its end join the summaries at the next start.
    Vez(QDateTime(QDate(2019, 5, 1), QTime(9, 0)), 1, 1, "Ana", 4, "G", Desfecho_Certa, 0, 10);
    Inicia_Programa();
    EXPECT_EQ(Conta("SELECT SUM(Respostas) + SUM(Pulos) FROM tblResumo_Mensal"), 12);
    EXPECT_EQ(Retrato_Esquema(Conexão_Principal()), principal);
    EXPECT_EQ(Retrato_Esquema(Conexão_Auditoria()), auditoria);
    EXPECT_EQ(Lastrec("tblManutenção_Banco_de_Dados", Conexão_Manutenção), auditadas);
    EXPECT_TRUE(Plataforma.Caixas.isEmpty()) << Plataforma.Textos_Caixas().join(" | ").toStdString();
}

TEST_F(Estatísticas_Banco_Teste, TheFiguresOfAKnownSetOfTurnsAreThoseCountedByHand) {
    Grava_Conjunto_Conhecido();
    Números_Estatísticas n;
    Falha_Banco falha;
    ASSERT_TRUE(Calcula(Filtro_Estatísticas(), n, falha)) << falha.Descrição.toStdString();
    // The window brought the summaries up to the turns; doing it again adds nothing.
    ASSERT_TRUE(Atualiza_Resumos(falha)) << falha.Descrição.toStdString();
    EXPECT_EQ(Conta("SELECT COUNT(*) FROM tblJogada"), 11);
    EXPECT_EQ(Conta("SELECT SUM(Respostas) + SUM(Pulos) FROM tblResumo_Mensal"), 11);
    EXPECT_EQ(Conta("SELECT SUM(Respostas) FROM tblResumo_Jogador"), 10);

    EXPECT_EQ(n.Respostas, 10);
    EXPECT_EQ(n.Acertos, 4);
    EXPECT_EQ(n.Pulos, 1);
    EXPECT_EQ(n.Jogos, 2);
    ASSERT_EQ(n.Perguntas.size(), 3);
    const Números_Pergunta& p1 = n.Perguntas[0];
    EXPECT_EQ(p1.Código_Pergunta, 1);
    EXPECT_EQ(p1.Pergunta, "Pergunta número 1?");
    EXPECT_EQ(p1.Respostas, 3);
    EXPECT_EQ(p1.Acertos, 2);
    EXPECT_EQ(p1.Pulos, 1);
    EXPECT_EQ(p1.Escolhas_Incorretas, (std::array<int, 3>{0, 0, 1}));
    const Números_Pergunta& p2 = n.Perguntas[1];
    EXPECT_EQ(p2.Respostas, 5);
    EXPECT_EQ(p2.Acertos, 0);
    EXPECT_EQ(p2.Escolhas_Incorretas, (std::array<int, 3>{3, 1, 1}));
    EXPECT_EQ(n.Perguntas[2].Respostas, 2);
    EXPECT_EQ(n.Perguntas[2].Acertos, 2);

    // Only questions of three answers or more rank: 2 (0%) and 1 (67%); question 3 has two.
    ASSERT_EQ(n.Mais_Difíceis.size(), 2);
    EXPECT_EQ(n.Mais_Difíceis[0].Código_Pergunta, 2);
    EXPECT_EQ(n.Mais_Difíceis[1].Código_Pergunta, 1);
    ASSERT_EQ(n.Mais_Fáceis.size(), 2);
    EXPECT_EQ(n.Mais_Fáceis[0].Código_Pergunta, 1);
    EXPECT_NEAR(n.Mais_Fáceis[0].Percentual(), 200.0 / 3, 1e-9);

    EXPECT_EQ(n.Por_Tipo.value("G"), qMakePair(8, 2));
    EXPECT_EQ(n.Por_Tipo.value("B"), qMakePair(2, 2));
    EXPECT_EQ(n.Ajudas.value(Ajuda_Pulo), 1);
    EXPECT_EQ(n.Ajudas.value(Ajuda_Dado_Texto), 2);
    EXPECT_EQ(n.Ajudas.value(Ajuda_Apóstolos_Texto), 1);
    EXPECT_EQ(n.Ajudas.value(Ajuda_Deus_Texto), 1);
    EXPECT_EQ(n.Faces_Dado, (std::array<int, 4>{0, 1, 1, 0}));

    ASSERT_EQ(n.Por_Mês.size(), 2);
    EXPECT_EQ(n.Por_Mês[0].Mês, 201903);
    EXPECT_EQ(n.Por_Mês[0].Jogos, 1);
    EXPECT_EQ(n.Por_Mês[0].Respostas, 5);
    EXPECT_EQ(n.Por_Mês[1].Mês, 201904);
    EXPECT_EQ(n.Por_Mês[1].Respostas, 5);

    ASSERT_EQ(n.Competidores.size(), 2);
    EXPECT_EQ(n.Competidores[0].Jogador, "Ana");
    EXPECT_EQ(n.Competidores[0].Jogos, 2);
    EXPECT_EQ(n.Competidores[0].Pontos, 31);
    ASSERT_EQ(n.Competidores[0].Pontos_Por_Jogo.size(), 2);
    EXPECT_EQ(n.Competidores[0].Pontos_Por_Jogo[0].first, QDateTime(QDate(2019, 3, 10), QTime(10, 0)));
    EXPECT_EQ(n.Competidores[0].Pontos_Por_Jogo[0].second, 30);
    EXPECT_EQ(n.Competidores[0].Pontos_Por_Jogo[1].second, 1);
    EXPECT_EQ(n.Competidores[1].Jogador, "Beto");
    EXPECT_EQ(n.Competidores[1].Pontos, 8);

    // Never right in five answers; a wrong answer preferred to the right one.
    ASSERT_EQ(n.Nunca_Acertadas.size(), 1);
    EXPECT_EQ(n.Nunca_Acertadas[0].Código_Pergunta, 2);
    ASSERT_EQ(n.Incorreta_Preferida.size(), 1);
    EXPECT_EQ(n.Incorreta_Preferida[0].Código_Pergunta, 2);

    // The period and the kind filter.
    Filtro_Estatísticas abril;
    abril.Mês_Inicial = abril.Mês_Final = 201904;
    ASSERT_TRUE(Calcula(abril, n, falha));
    EXPECT_EQ(n.Respostas, 5);
    EXPECT_EQ(n.Acertos, 1);
    EXPECT_EQ(n.Jogos, 1);
    ASSERT_EQ(n.Competidores.size(), 1);
    EXPECT_EQ(n.Competidores[0].Pontos, 1);
    Filtro_Estatísticas bíblicas;
    bíblicas.Tipo = "B";
    ASSERT_TRUE(Calcula(bíblicas, n, falha));
    EXPECT_EQ(n.Respostas, 2);
    EXPECT_EQ(n.Acertos, 2);
    ASSERT_EQ(n.Perguntas.size(), 1);
    EXPECT_EQ(n.Perguntas[0].Código_Pergunta, 3);
    EXPECT_EQ(n.Ajudas.value(Ajuda_Dado_Texto), 0);
    EXPECT_EQ(n.Ajudas.value(Ajuda_Deus_Texto), 1);
}

TEST_F(Estatísticas_Banco_Teste, TheCsvExportReadsBackIntoTheSameNumbers) {
    Grava_Conjunto_Conhecido();
    Números_Estatísticas n;
    Falha_Banco falha;
    ASSERT_TRUE(Calcula(Filtro_Estatísticas(), n, falha));
    // A question text with the separator and quotes in it survives the trip.
    n.Perguntas[0].Pergunta = "Quem disse \"sim; não\"?";
    const QByteArray csv = Texto_CSV(n, Filtro_Estatísticas());
    ASSERT_TRUE(csv.startsWith("\xEF\xBB\xBF"));
    EXPECT_TRUE(csv.contains("Código;Pergunta;Tipo;Respostas;Acertos"));
    EXPECT_TRUE(csv.contains("\r\n"));
    const auto seções = Lê_CSV(csv);

    const QList<QStringList> perguntas = seções.value("Acertos por pergunta");
    ASSERT_EQ(perguntas.size(), 1 + n.Perguntas.size());
    for (int i = 0; i < n.Perguntas.size(); ++i) {
        const QStringList& l = perguntas[i + 1];
        const Números_Pergunta& p = n.Perguntas[i];
        ASSERT_EQ(l.size(), 10);
        EXPECT_EQ(l[0].toInt(), p.Código_Pergunta);
        EXPECT_EQ(l[1], p.Pergunta);
        EXPECT_EQ(l[3].toInt(), p.Respostas);
        EXPECT_EQ(l[4].toInt(), p.Acertos);
        EXPECT_NEAR(QString(l[5]).replace(',', '.').toDouble(), p.Percentual(), 0.05);
        for (int k = 0; k < 3; ++k) EXPECT_EQ(l[6 + k].toInt(), p.Escolhas_Incorretas[k]);
        EXPECT_EQ(l[9].toInt(), p.Pulos);
    }
    const QList<QStringList> meses = seções.value("Jogos e respostas por mês");
    ASSERT_EQ(meses.size(), 3);
    EXPECT_EQ(meses[1], (QStringList{"03/2019", "1", "5"}));
    EXPECT_EQ(meses[2], (QStringList{"04/2019", "1", "5"}));
    const QList<QStringList> ajudas = seções.value("Ajudas usadas");
    ASSERT_EQ(ajudas.size(), 5);
    EXPECT_EQ(ajudas[2], (QStringList{"Dado", "2"}));
    const QList<QStringList> pontos = seções.value("Pontos dos competidores por jogo");
    ASSERT_EQ(pontos.size(), 4);
    EXPECT_EQ(pontos[1], (QStringList{"Ana", "10/03/2019 10:00:00", "30"}));
    EXPECT_EQ(pontos[3], (QStringList{"Beto", "10/03/2019 10:00:00", "8"}));
    EXPECT_EQ(seções.value("Nunca acertadas em 5 respostas ou mais").size(), 2);
    EXPECT_EQ(seções.value("As 20 perguntas mais difíceis").value(1).value(0), "2");
}

// On a server a turn may take its code before another workstation's turn and commit after it: the
// summaries must still get it, once.
TEST_F(Estatísticas_Banco_Teste, OnAServerATurnCommittedAfterALaterOneStillJoinsTheSummaries) {
    if (!Testa_No_Servidor() || !Servidor_Teste::Ativo()) GTEST_SKIP() << "Só no servidor";
    PGconn* outra = PQconnectdb(Conexão_Do_Servidor(Caminho_Banco_Estatísticas()).toUtf8().constData());
    ASSERT_EQ(PQstatus(outra), CONNECTION_OK);
    const QByteArray esquema = Esquema_Do_Servidor(Caminho_Banco_Estatísticas()).toUtf8();
    PGresult* r =
        PQexec(outra, "BEGIN; INSERT INTO " + esquema +
                          ".\"tblJogada\" (\"Data_Jogada\", \"Dia\", \"Início_Jogo\", "
                          "\"Código_Pergunta\", \"Tipo\", \"Jogador\", \"Posição\", \"Desfecho\", "
                          "\"Número_Resposta\", \"Ajuda\", \"Número_Dado\", \"Valor\", \"Segundos\") "
                          "VALUES ('2019-03-10 10:01:00', 20190310, '2019-03-10 10:00:00', 2, 'G', "
                          "'Beto', 2, 'Certa', 0, 'Nenhuma', 0, 10, 5)");
    ASSERT_EQ(PQresultStatus(r), PGRES_COMMAND_OK) << PQerrorMessage(outra);
    PQclear(r);
    // This workstation's turn gets the next code and commits first; the other commits a moment later,
    // while the summaries are being brought up to date.
    Vez(QDateTime(QDate(2019, 3, 10), QTime(10, 0)), 2, 1, "Ana", 1, "G", Desfecho_Certa, 0, 10);
    std::thread confirma([outra] {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        PQclear(PQexec(outra, "COMMIT"));
    });
    Falha_Banco falha;
    const bool atualizou = Atualiza_Resumos(falha);
    confirma.join();
    PQfinish(outra);
    ASSERT_TRUE(atualizou) << falha.Descrição.toStdString();
    ASSERT_TRUE(Atualiza_Resumos(falha)) << falha.Descrição.toStdString();
    EXPECT_EQ(Conta("SELECT COUNT(*) FROM tblJogada"), 2);
    EXPECT_EQ(Conta("SELECT SUM(Respostas) FROM tblResumo_Mensal"), 2);
    EXPECT_EQ(Conta("SELECT SUM(Respostas) FROM tblResumo_Jogador"), 2);
    EXPECT_EQ(Resumo_Pergunta(2), "Respondida 1 vez, 100% de acertos");
}

TEST_F(Estatísticas_Banco_Teste, TheRegisterLineCountsAnswersAndRoundsTheShare) {
    const QDateTime início(QDate(2019, 3, 10), QTime(10, 0));
    for (int i = 0; i < 12; ++i)
        Vez(início, i, 1, "Ana", 5, "G", i < 7 ? Desfecho_Certa : Desfecho_Errada, i < 7 ? 0 : 1, 10);
    Vez(início, 13, 1, "Ana", 4, "G", Desfecho_Pulada, -1, 10, Ajuda_Pulo);
    Vez(início, 14, 1, "Ana", 3, "G", Desfecho_Certa, 0, 10);
    // While the game goes on, and after its end has added its turns to the summaries.
    for (int vez = 0; vez < 2; ++vez) {
        EXPECT_EQ(Resumo_Pergunta(5), "Respondida 12 vezes, 58% de acertos");
        EXPECT_EQ(Resumo_Pergunta(3), "Respondida 1 vez, 100% de acertos");
        // A skip is not an answer.
        EXPECT_EQ(Resumo_Pergunta(4), "Ainda não respondida");
        EXPECT_EQ(Resumo_Pergunta(1), "Ainda não respondida");
        Falha_Banco falha;
        ASSERT_TRUE(Atualiza_Resumos(falha)) << falha.Descrição.toStdString();
    }
}

TEST_F(Estatísticas_Banco_Teste, ARecorderThatCannotWriteLogsOnceAndShowsNothing) {
    // The file is lost under a running program.
    Fecha_Banco_Estatísticas();
    ASSERT_TRUE(Exclui_Arquivo_Banco(Caminho_Banco_Estatísticas()));
    if (!Testa_No_Servidor()) {
        QFile lixo(Caminho_Banco_Estatísticas());
        ASSERT_TRUE(lixo.open(QIODevice::WriteOnly));
        lixo.write(QByteArray(4096, 'x'));
    }
    QFile::remove(Caminho_Log_Ocorrências());
    Estado_Jogo jogo;
    Registra_Jogador(jogo, 1, "Ana");
    Registra_Jogador(jogo, 2, "");
    Perguntas_Em_Memória fonte;
    for (int i = 1; i <= 10; ++i)
        fonte.Perguntas.append({i, "G", QString("P%1").arg(i), "Certa", "A", "B", "C"});
    Gravador_Jogadas gravador;
    for (int vez = 0; vez < 4; ++vez) {
        ASSERT_EQ(Nova_Rodada(jogo, fonte, QDate(2019, 3, 14)), Resultado_Rodada::Pergunta_Sorteada);
        gravador.Pergunta_Exibida(jogo);
        const int jogador = jogo.Jogador_Atual;
        const Desfecho_Resposta d = Responde(jogo, 0);
        gravador.Resposta(jogo, jogador, 0, d);
        ASSERT_TRUE(Próximo_Competidor(jogo));
    }
    EXPECT_TRUE(gravador.Falha_Registrada());
    EXPECT_EQ(Entradas_Do_Log(), 1);
    QFile log(Caminho_Log_Ocorrências());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("Grava_Jogada"));
    EXPECT_TRUE(Plataforma.Caixas.isEmpty()) << Plataforma.Textos_Caixas().join(" | ").toStdString();

    // The next start sets the broken file aside, makes a sound one, and recording goes on.
    Inicia_Programa();
    EXPECT_TRUE(Plataforma.Caixas.isEmpty()) << Plataforma.Textos_Caixas().join(" | ").toStdString();
    if (!Testa_No_Servidor()) {
        EXPECT_EQ(QDir(Pasta.Dados() + "/Arquivo").entryList({"Estatísticas *.Mdb"}).size(), 1);
    }
    Gravador_Jogadas outro;
    ASSERT_EQ(Nova_Rodada(jogo, fonte, QDate(2019, 3, 14)), Resultado_Rodada::Pergunta_Sorteada);
    outro.Pergunta_Exibida(jogo);
    outro.Resposta(jogo, jogo.Jogador_Atual, 0, Responde(jogo, 0));
    EXPECT_FALSE(outro.Falha_Registrada());
    EXPECT_EQ(Conta("SELECT COUNT(*) FROM tblJogada"), 1);
}
