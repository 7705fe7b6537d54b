// The room of phones: whole games played through WebSocket clients on loopback, the seat rules, hostile
// senders, and the reader of the phones' requests.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTest>
#include <QWebSocket>
#include <functional>
#include <memory>

#include "common/Globais.h"
#include "game/frmJogo.h"
#include "sala/Mensagens_Sala.h"
#include "sala/Servidor_Sala.h"
#include "sala/janelas/Painel_Sala.h"
#include "store/Funções_Banco.h"
#include "sala/Peças_Sala.h"
#include "sala/frmTela_Sala.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

namespace {
// Waits, a bounded while, for a condition that the network brings about.
bool Espera(const std::function<bool()>& condição, int limite_ms = 5000) {
    for (int passado = 0; passado < limite_ms; passado += 5) {
        if (condição()) return true;
        QTest::qWait(5);
    }
    return condição();
}

// A phone: a WebSocket client that keeps every message it gets.
class Celular {
  public:
    explicit Celular(const QString& endereço_http) {
        QObject::connect(&Socket, &QWebSocket::textMessageReceived, [this](const QString& texto) {
            Textos << texto;
            Mensagens << QJsonDocument::fromJson(texto.toUtf8()).object();
        });
        QObject::connect(&Socket, &QWebSocket::disconnected, [this] { Fechado = true; });
        QString ws = endereço_http;
        ws.replace("http://", "ws://");
        Socket.open(QUrl(ws + "sala"));
        Espera([this] { return Socket.state() == QAbstractSocket::ConnectedState || Fechado; });
    }
    void Envia(const QJsonObject& o) {
        Socket.sendTextMessage(QJsonDocument(o).toJson(QJsonDocument::Compact));
    }
    void Envia_Texto(const QString& t) { Socket.sendTextMessage(t); }
    // The messages of a kind that came after the n-th message.
    QList<QJsonObject> Desde(int n, const QString& tipo) const {
        QList<QJsonObject> r;
        for (int i = n; i < Mensagens.size(); ++i)
            if (Mensagens[i]["tipo"].toString() == tipo) r << Mensagens[i];
        return r;
    }
    QJsonObject Último(const QString& tipo) const {
        for (int i = Mensagens.size() - 1; i >= 0; --i)
            if (Mensagens[i]["tipo"].toString() == tipo) return Mensagens[i];
        return {};
    }
    // Waits for a message of this kind after the n-th that passes the test.
    QJsonObject Espera_Mensagem(int n, const QString& tipo,
                                const std::function<bool(const QJsonObject&)>& teste = nullptr) {
        QJsonObject achada;
        Espera([&] {
            for (const QJsonObject& m : Desde(n, tipo))
                if (!teste || teste(m)) {
                    achada = m;
                    return true;
                }
            return false;
        });
        return achada;
    }
    int Quantas() const { return Mensagens.size(); }

    QWebSocket Socket;
    QStringList Textos;
    QList<QJsonObject> Mensagens;
    bool Fechado = false;
};

QJsonObject Pedido(const QString& tipo, std::initializer_list<std::pair<QString, QJsonValue>> campos = {}) {
    QJsonObject o{{"tipo", tipo}};
    for (const auto& [k, v] : campos) o[k] = v;
    return o;
}

// The right answer of "Pergunta número N?" is "Certa N".
QString Certa_De(const QString& pergunta) {
    const auto m = QRegularExpression("número (\\d+)\\?").match(pergunta);
    return m.hasMatch() ? "Certa " + m.captured(1) : QString();
}

class Sala_Celulares_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Tipo_Pergunta = "A";
        frmJogo::Ao_Terminar_Padrão = nullptr;
        Painel_Sala::Endereço_Forçado = QHostAddress(QHostAddress::LocalHost);
    }
    void TearDown() override {
        frmJogo::Ao_Terminar_Padrão = nullptr;
        Painel_Sala::Endereço_Forçado = QHostAddress();
    }

    static void Informa_Nomes(frmJogo& janela, const QStringList& nomes) {
        for (int i = 0; i <= nomes.size() && i < Máximo_Jogadores; ++i) {
            janela.txtJogador[i + 1]->setText(i < nomes.size() ? nomes[i] : QString());
            janela.txtJogador_GotFocus(i + 1);
            janela.txtJogador_Validate(i + 1);
            janela.txtJogador_LostFocus(i + 1);
        }
    }
    static int Índice_Na(const QJsonObject& estado, const std::function<bool(const QString&)>& teste) {
        const QJsonArray r = estado["respostas"].toArray();
        for (int k = 0; k < r.size(); ++k)
            if (!r[k].toString().isEmpty() && teste(r[k].toString())) return k;
        return -1;
    }
    static int Certa(const QJsonObject& e) {
        const QString c = Certa_De(e["pergunta"].toString());
        return Índice_Na(e, [&c](const QString& t) { return t == c; });
    }
    static int Errada(const QJsonObject& e) {
        const QString c = Certa_De(e["pergunta"].toString());
        return Índice_Na(e, [&c](const QString& t) { return t != c; });
    }
    static bool Em_Vez_De(const QJsonObject& e, int jogador) {
        return e["fase"].toString() == "vez" && e["jogador"].toInt() == jogador;
    }

    // Nothing a phone receives while a question can still be answered tells which answer is right.
    static void Nada_Revela_A_Certa(const Celular& c) {
        for (const QJsonObject& m : c.Mensagens) {
            const QString fase = m["fase"].toString();
            if (m["tipo"].toString() == "estado" && (fase == "resultado" || fase == "fim")) continue;
            EXPECT_FALSE(m.contains("correta")) << QJsonDocument(m).toJson().constData();
            QJsonObject sem_respostas = m;
            sem_respostas.remove("respostas");
            const QByteArray texto = QJsonDocument(sem_respostas).toJson(QJsonDocument::Compact);
            EXPECT_FALSE(texto.contains("Certa")) << texto.constData();
            for (const QJsonValue& r : m["respostas"].toArray()) EXPECT_TRUE(r.isString());
        }
    }
};
}  // namespace

TEST_F(Sala_Celulares_Teste, TwoCompetitorsPlayAWholeGameFromTheirPhones) {
    Cadastra_Perguntas(60);
    int halls = 0;
    frmJogo::Ao_Terminar_Padrão = [&halls](frmJogo&) { ++halls; };
    frmJogo janela;
    janela.show();
    ASSERT_EQ(janela.Sala_Ativa(), nullptr);
    EXPECT_EQ(janela.cmdCelulares->text(), "Jogar pelos celulares");
    janela.cmdCelulares->click();
    Servidor_Sala* sala = janela.Sala_Ativa();
    ASSERT_NE(sala, nullptr);
    EXPECT_TRUE(sala->Endereço().startsWith("http://127.0.0.1:")) << sala->Endereço().toStdString();
    EXPECT_TRUE(QRegularExpression("^\\d{6}$").match(sala->Código()).hasMatch());
    EXPECT_TRUE(janela.fraCelulares->lblCódigo->text().contains(sala->Código()));
    const QString código = sala->Código();

    // A wrong code gets an error and nothing of the game; five of them close the connection.
    Celular intruso(sala->Endereço());
    const QString errado = código == "000000" ? "111111" : "000000";
    intruso.Envia(Pedido("entra", {{"codigo", errado}}));
    EXPECT_FALSE(intruso.Espera_Mensagem(0, "erro").isEmpty());
    intruso.Envia(Pedido("senta", {{"assento", 1}}));
    for (int i = 0; i < 4; ++i) intruso.Envia(Pedido("entra", {{"codigo", errado}}));
    EXPECT_TRUE(Espera([&] { return intruso.Fechado; }));
    EXPECT_TRUE(intruso.Desde(0, "estado").isEmpty());
    EXPECT_TRUE(intruso.Desde(0, "sessao").isEmpty());

    // The phones join before the names are typed, and see the seats appear.
    Celular ana(sala->Endereço()), bruno(sala->Endereço()), plateia(sala->Endereço());
    for (Celular* c : {&ana, &bruno, &plateia}) c->Envia(Pedido("entra", {{"codigo", código}}));
    EXPECT_EQ(ana.Espera_Mensagem(0, "sessao")["assento"].toInt(), 0);
    EXPECT_EQ(ana.Espera_Mensagem(0, "estado")["fase"].toString(), "nomes");
    Informa_Nomes(janela, {"Ana", "Bruno"});
    QJsonObject e = plateia.Espera_Mensagem(0, "estado", [](auto& m) { return Em_Vez_De(m, 1); });
    ASSERT_FALSE(e.isEmpty());
    EXPECT_EQ(e["jogadores"].toArray().size(), 2);
    EXPECT_EQ(e["jogadores"].toArray().at(1).toObject()["nome"].toString(), "Bruno");

    // Seats: one phone a seat.
    int n = ana.Quantas();
    ana.Envia(Pedido("senta", {{"assento", 1}}));
    const QJsonObject sessão_ana = ana.Espera_Mensagem(n, "sessao");
    EXPECT_EQ(sessão_ana["assento"].toInt(), 1);
    const QString token_ana = sessão_ana["token"].toString();
    EXPECT_TRUE(QRegularExpression("^[0-9a-f]{32}$").match(token_ana).hasMatch());
    n = bruno.Quantas();
    bruno.Envia(Pedido("senta", {{"assento", 1}}));
    EXPECT_TRUE(bruno.Espera_Mensagem(n, "erro")["texto"].toString().contains("outro celular"));
    bruno.Envia(Pedido("senta", {{"assento", 3}}));  // no third competitor
    EXPECT_TRUE(
        bruno.Espera_Mensagem(n, "erro", [](auto& m) { return m["texto"].toString().contains("não existe"); })
            .contains("texto"));
    bruno.Envia(Pedido("senta", {{"assento", 2}}));
    const QString token_bruno = bruno.Espera_Mensagem(n, "sessao")["token"].toString();
    ASSERT_FALSE(token_bruno.isEmpty());
    EXPECT_NE(token_bruno, token_ana);
    EXPECT_TRUE(Espera([&] { return sala->Assento_Com_Celular(1) && sala->Assento_Com_Celular(2); }));
    EXPECT_TRUE(plateia
                    .Espera_Mensagem(
                        0, "estado",
                        [](auto& m) { return m["jogadores"].toArray().at(1).toObject()["celular"].toBool(); })
                    .contains("fase"));

    // Out of turn, from the audience, or for a turn that is gone: refused, and nothing changes.
    e = ana.Espera_Mensagem(0, "estado", [](auto& m) { return Em_Vez_De(m, 1); });
    ASSERT_TRUE(Em_Vez_De(e, 1));
    const qint64 vez = e["vez"].toInteger();
    n = bruno.Quantas();
    bruno.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", vez}}));
    EXPECT_TRUE(bruno.Espera_Mensagem(n, "erro")["texto"].toString().contains("não é a sua vez"));
    plateia.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", vez}}));
    plateia.Envia(Pedido("ajuda", {{"ajuda", 5}, {"vez", vez}}));
    ana.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", vez + 1}}));
    EXPECT_FALSE(plateia.Espera_Mensagem(0, "erro").isEmpty());
    QTest::qWait(50);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, 1);
    EXPECT_EQ(janela.Jogo.Pontos[1], 0);
    EXPECT_TRUE(janela.Jogo.Ajuda_Disponível[1][5]);
    EXPECT_TRUE(janela.Jogo.Vez_Em_Andamento);

    // Ana answers right from her phone: the host's own routine scores it, with its sound.
    n = plateia.Quantas();
    ana.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", vez}}));
    ASSERT_TRUE(Espera([&] { return janela.Jogo.Jogador_Atual == 2; }));
    EXPECT_EQ(janela.Jogo.Pontos[1], 10);
    EXPECT_EQ(janela.lblNível[1]->text(), "2");
    EXPECT_EQ(Plataforma.Sons.last(), Caminho_Programa() + "/Sons/acerto.wav");
    const QJsonObject resultado =
        plateia.Espera_Mensagem(n, "estado", [](auto& m) { return m["fase"].toString() == "resultado"; });
    EXPECT_EQ(resultado["aviso"].toArray().at(1).toString(), "PARABÉNS!!!");
    EXPECT_EQ(resultado["correta"].toString(), Certa_De(e["pergunta"].toString()));
    e = bruno.Espera_Mensagem(n, "estado", [](auto& m) { return Em_Vez_De(m, 2); });
    ASSERT_FALSE(e.isEmpty());
    EXPECT_GT(e["vez"].toInteger(), vez);

    // Bruno rolls the die; an answer sent while it rolls is refused.
    bool enviou_durante = false;
    Fase_Sala fase_durante = Fase_Sala::Vez;
    Plataforma.Ao_Esperar = [&] {
        if (!enviou_durante) {
            enviou_durante = true;
            fase_durante = sala->Retrato().Fase;
            bruno.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", e["vez"]}}));
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    };
    n = bruno.Quantas();
    const int n_plateia = plateia.Quantas();
    Plataforma.Sorteios = {0.2};  // the die stops on 1: two wrong answers stay
    bruno.Envia(Pedido("ajuda", {{"ajuda", Ajuda_Dado}, {"vez", e["vez"]}}));
    ASSERT_TRUE(Espera([&] { return !janela.Jogo.Ajuda_Disponível[2][Ajuda_Dado]; }));
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(fase_durante, Fase_Sala::Dado);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, 2);
    EXPECT_EQ(janela.Jogo.Pontos[2], 0);
    EXPECT_TRUE(bruno.Espera_Mensagem(n, "erro")["texto"].toString().contains("dado"));
    const QJsonObject rolando = plateia.Espera_Mensagem(n_plateia, "estado", [](auto& m) {
        return m["fase"].toString() == "dado" && m["dado"].toInt() >= 1;
    });
    EXPECT_FALSE(rolando.isEmpty());
    // While it rolls the phones show the four answers that the host still shows.
    for (const QJsonValue& r : rolando["respostas"].toArray()) EXPECT_FALSE(r.toString().isEmpty());
    e = bruno.Espera_Mensagem(n, "estado", [](auto& m) {
        return Em_Vez_De(m, 2) && m["aviso"].toArray().at(0).toString() == "Respostas";
    });
    ASSERT_FALSE(e.isEmpty());
    int vazias = 0;
    for (const QJsonValue& r : e["respostas"].toArray()) vazias += r.toString().isEmpty() ? 1 : 0;
    EXPECT_EQ(vazias, e["aviso"].toArray().at(3).toString().toInt());
    EXPECT_EQ(vazias, 1);
    EXPECT_FALSE(e["ajudas"].toArray().at(4).toBool());  // one help a turn

    // Bruno answers wrong: a help is taken away.
    n = plateia.Quantas();
    bruno.Envia(Pedido("responde", {{"resposta", Errada(e)}, {"vez", e["vez"]}}));
    ASSERT_TRUE(Espera([&] { return janela.Jogo.Jogador_Atual == 1; }))
        << bruno.Textos.join("\n").toStdString();
    int ajudas_bruno = 0;
    for (bool a : janela.Jogo.Ajuda_Disponível[2]) ajudas_bruno += a ? 1 : 0;
    EXPECT_EQ(ajudas_bruno, 4);
    EXPECT_EQ(plateia
                  .Espera_Mensagem(n, "estado",
                                   [](auto& m) { return m["fase"].toString() == "resultado"; })["aviso"]
                  .toArray()
                  .at(1)
                  .toString(),
              "ERRADO!!!");

    // Ana skips from her phone.
    e = ana.Espera_Mensagem(n, "estado", [](auto& m) { return Em_Vez_De(m, 1); });
    ASSERT_FALSE(e.isEmpty());
    ana.Envia(Pedido("ajuda", {{"ajuda", 1}, {"vez", e["vez"]}}));
    ASSERT_TRUE(Espera([&] { return janela.Jogo.Jogador_Atual == 2; }));
    EXPECT_FALSE(janela.Jogo.Ajuda_Disponível[1][0]);  // the lowest skip goes, whichever was asked
    EXPECT_EQ(janela.Jogo.Valor_Jogador[1], 16);
    EXPECT_EQ(janela.Jogo.Pontos[1], 10);

    // Bruno's phone drops in the middle of his turn and comes back with its token.
    bruno.Socket.abort();
    Celular bruno_de_volta(sala->Endereço());
    bruno_de_volta.Envia(Pedido("retoma", {{"codigo", código}, {"token", token_bruno}}));
    EXPECT_EQ(bruno_de_volta.Espera_Mensagem(0, "sessao")["assento"].toInt(), 2);
    e = bruno_de_volta.Espera_Mensagem(0, "estado");
    ASSERT_TRUE(Em_Vez_De(e, 2));
    EXPECT_TRUE(sala->Assento_Com_Celular(2));
    bruno_de_volta.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", e["vez"]}}));
    ASSERT_TRUE(Espera([&] { return janela.Jogo.Jogador_Atual == 1; }));
    EXPECT_EQ(janela.Jogo.Pontos[2], 5);  // worth half of 10 after the wrong answer

    // A second connection with Ana's token takes the seat over; the first one only watches.
    Celular ana_outra(sala->Endereço());
    n = ana.Quantas();
    ana_outra.Envia(Pedido("retoma", {{"codigo", código}, {"token", token_ana}}));
    EXPECT_EQ(ana_outra.Espera_Mensagem(0, "sessao")["assento"].toInt(), 1);
    EXPECT_EQ(ana.Espera_Mensagem(n, "sessao")["assento"].toInt(), 0);
    e = ana_outra.Espera_Mensagem(0, "estado");
    ana.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", e["vez"]}}));
    QTest::qWait(50);
    EXPECT_EQ(janela.Jogo.Jogador_Atual, 1);

    // The host frees Ana's seat: her token no longer brings it back; she sits again with a new one.
    n = ana_outra.Quantas();
    janela.fraCelulares->cmdLiberar[1]->click();
    EXPECT_FALSE(sala->Assento_Com_Celular(1));
    EXPECT_EQ(ana_outra.Espera_Mensagem(n, "sessao")["assento"].toInt(), 0);
    Celular ana_nova(sala->Endereço());
    ana_nova.Envia(Pedido("retoma", {{"codigo", código}, {"token", token_ana}}));
    EXPECT_EQ(ana_nova.Espera_Mensagem(0, "sessao")["assento"].toInt(), 0);
    EXPECT_TRUE(ana_nova.Espera_Mensagem(0, "erro")["texto"].toString().contains("liberado"));
    ana_nova.Envia(Pedido("senta", {{"assento", 1}}));
    EXPECT_EQ(
        ana_nova.Espera_Mensagem(0, "sessao", [](auto& m) { return m["assento"].toInt() == 1; })["token"]
            .toString()
            .size(),
        32);

    // The host still answers for anyone: Ana's turn, taken at the mouse.
    e = ana_nova.Último("estado");
    ASSERT_TRUE(Em_Vez_De(e, 1));
    janela.optResposta[Errada(e)]->click();
    ASSERT_EQ(janela.Jogo.Jogador_Atual, 2);
    n = ana_nova.Quantas();
    const qint64 vez_host = e["vez"].toInteger();
    // A late tap on the question the host already answered changes nothing.
    ana_nova.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", vez_host}}));

    // Then both err from their phones until neither is left: the hall of fame.
    std::map<int, Celular*> celular{{1, &ana_nova}, {2, &bruno_de_volta}};
    for (int volta = 0; volta < 30 && !janela.Jogo.Terminado; ++volta) {
        const int jogador = janela.Jogo.Jogador_Atual;
        Celular* c = celular[jogador];
        e = c->Espera_Mensagem(0, "estado", [&](auto& m) {
            return Em_Vez_De(m, jogador) && m["vez"].toInteger() == sala->Retrato().Vez;
        });
        ASSERT_FALSE(e.isEmpty());
        const qint64 vez_antes = sala->Retrato().Vez;
        c->Envia(Pedido("responde", {{"resposta", Errada(e)}, {"vez", e["vez"]}}));
        ASSERT_TRUE(Espera([&] { return sala->Retrato().Vez != vez_antes || janela.Jogo.Terminado; }));
    }
    ASSERT_TRUE(janela.Jogo.Terminado);
    EXPECT_EQ(halls, 1);
    const QJsonObject fim = plateia.Espera_Mensagem(0, "estado", [](auto& m) { return m["fase"] == "fim"; });
    ASSERT_FALSE(fim.isEmpty());
    const QJsonArray ordem = fim["classificacao"].toArray();
    ASSERT_EQ(ordem.size(), 2);
    EXPECT_EQ(ordem[0].toInt(), 1);  // Ana 10 points, Bruno 5
    EXPECT_EQ(fim["jogadores"].toArray().at(0).toObject()["pontos"].toDouble(), 10);
    EXPECT_EQ(Plataforma.Textos_Caixas().filter("você errou e já utilizou todas").size(), 2);

    for (const Celular* c : {&ana, &bruno, &plateia, &bruno_de_volta, &ana_outra, &ana_nova, &intruso})
        Nada_Revela_A_Certa(*c);
}

TEST_F(Sala_Celulares_Teste, HostileSendersAreDroppedAndTheGameGoesOn) {
    Cadastra_Perguntas(20);
    frmJogo janela;
    janela.show();
    janela.cmdCelulares->click();
    Servidor_Sala* sala = janela.Sala_Ativa();
    ASSERT_NE(sala, nullptr);
    Informa_Nomes(janela, {"Ana"});
    Celular ana(sala->Endereço());
    ana.Envia(Pedido("entra", {{"codigo", sala->Código()}}));
    ana.Envia(Pedido("senta", {{"assento", 1}}));
    ASSERT_EQ(ana.Espera_Mensagem(0, "sessao", [](auto& m) { return m["assento"].toInt() == 1; })["assento"],
              1);

    // Malformed, mistyped and unknown requests are dropped without an answer.
    Celular lixo(sala->Endereço());
    lixo.Envia(Pedido("entra", {{"codigo", sala->Código()}}));
    lixo.Espera_Mensagem(0, "estado");
    const int antes = lixo.Quantas();
    for (const QString& t :
         {QString("{"), QString("[]"), QString("null"), QString("{\"tipo\":\"senta\",\"assento\":\"1\"}"),
          QString("{\"tipo\":\"senta\",\"assento\":1.5}"),
          QString("{\"tipo\":\"senta\",\"assento\":1,\"x\":0}"), QString("{\"tipo\":\"desliga\"}"),
          QString("{\"tipo\":\"responde\",\"resposta\":9,\"vez\":1}"), QString(QChar(0)) + "{}"})
        lixo.Envia_Texto(t);
    QTest::qWait(100);
    EXPECT_EQ(lixo.Quantas(), antes);
    EXPECT_FALSE(lixo.Fechado);

    // Too big, or binary: the connection is closed.
    Celular grande(sala->Endereço());
    grande.Envia_Texto("{\"tipo\":\"entra\",\"codigo\":\"" + QString(2000, '1') + "\"}");
    EXPECT_TRUE(Espera([&] { return grande.Fechado; }));
    Celular binário(sala->Endereço());
    binário.Socket.sendBinaryMessage(QByteArray(10, '\1'));
    EXPECT_TRUE(Espera([&] { return binário.Fechado; }));

    // A flood is cut off; what got through before the limit changed nothing.
    Celular enxurrada(sala->Endereço());
    enxurrada.Envia(Pedido("entra", {{"codigo", sala->Código()}}));
    const QJsonObject e = ana.Espera_Mensagem(0, "estado", [](auto& m) { return Em_Vez_De(m, 1); });
    for (int i = 0; i < 400 && !enxurrada.Fechado; ++i)
        enxurrada.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", e["vez"]}}));
    EXPECT_TRUE(Espera([&] { return enxurrada.Fechado; }));
    EXPECT_EQ(janela.Jogo.Pontos[1], 0);
    EXPECT_TRUE(janela.Jogo.Vez_Em_Andamento);

    // No more than 205 phones (200 watching, 5 playing): the next ones are turned away.
    std::vector<std::unique_ptr<Celular>> muitos;
    while (static_cast<int>(muitos.size()) < Máximo_Celulares + 2) {
        muitos.push_back(std::make_unique<Celular>(sala->Endereço()));
    }
    EXPECT_TRUE(Espera([&] {
        int fechados = 0;
        for (auto& c : muitos) fechados += c->Fechado ? 1 : 0;
        return fechados >= 4;  // the limit less those already in (ana, lixo)
    }));
    muitos.clear();

    // The game goes on: Ana answers right from her phone.
    ana.Envia(Pedido("responde", {{"resposta", Certa(e)}, {"vez", e["vez"]}}));
    EXPECT_TRUE(Espera([&] { return janela.Jogo.Pontos[1] == 10; }));
    Nada_Revela_A_Certa(ana);
}

TEST_F(Sala_Celulares_Teste, ThePageIsServedAndTheRoomStopsWithTheWindow) {
    Cadastra_Perguntas(5);
    auto janela = std::make_unique<frmJogo>();
    janela->show();
    janela->cmdCelulares->click();
    ASSERT_NE(janela->Sala_Ativa(), nullptr);
    EXPECT_EQ(janela->cmdCelulares->text(), "Encerrar os celulares");
    const QString endereço = janela->Sala_Ativa()->Endereço();
    const QString código = janela->Sala_Ativa()->Código();
    const quint16 porta = janela->Sala_Ativa()->Porta();
    // The room's screen shows the same address and code beside its QR code.
    EXPECT_TRUE(janela->Tela_Da_Sala->Painel->isVisibleTo(janela->Tela_Da_Sala));
    EXPECT_EQ(janela->Tela_Da_Sala->Painel->Endereço(), endereço);
    EXPECT_EQ(janela->Tela_Da_Sala->Painel->Código(), código);

    QNetworkAccessManager rede;
    const auto busca = [&rede](const QString& url, QByteArray* corpo = nullptr) {
        QNetworkReply* r = rede.get(QNetworkRequest(QUrl(url)));
        Espera([r] { return r->isFinished(); });
        if (corpo) *corpo = r->readAll();
        const int estado = r->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        r->deleteLater();
        return estado;
    };
    QByteArray página;
    EXPECT_EQ(busca(endereço, &página), 200);
    EXPECT_TRUE(página.contains("Código da sala"));
    EXPECT_FALSE(página.contains("http://") || página.contains("https://"));  // nothing from the internet
    QByteArray roteiro;
    EXPECT_EQ(busca(endereço + "sala.js", &roteiro), 200);
    EXPECT_FALSE(roteiro.contains("innerHTML"));  // texts of the game never become markup
    EXPECT_EQ(busca(endereço + "sala.css"), 200);
    EXPECT_EQ(busca(endereço + "Dados/Dados.Mdb"), 404);
    EXPECT_EQ(busca(endereço + "..%2F..%2Fetc%2Fpasswd"), 404);

    // Stopping and starting again keeps the code and the seats of the game.
    Celular ana(endereço);
    ana.Envia(Pedido("entra", {{"codigo", código}}));
    Informa_Nomes(*janela, {"Ana"});
    ana.Envia(Pedido("senta", {{"assento", 1}}));
    const QString token =
        ana.Espera_Mensagem(0, "sessao", [](auto& m) { return m["assento"] == 1; })["token"].toString();
    janela->cmdCelulares->click();
    EXPECT_EQ(janela->Sala_Ativa(), nullptr);
    EXPECT_TRUE(Espera([&] { return ana.Fechado; }));
    EXPECT_FALSE(janela->Tela_Da_Sala->Painel->isVisibleTo(janela->Tela_Da_Sala));
    // The room's screen's own button starts the room again, as the window's does.
    ASSERT_TRUE(janela->Tela_Da_Sala->Ao_Pedir_Celulares);
    janela->Tela_Da_Sala->Ao_Pedir_Celulares();
    ASSERT_NE(janela->Sala_Ativa(), nullptr);
    EXPECT_EQ(janela->cmdCelulares->text(), "Encerrar os celulares");
    EXPECT_EQ(janela->Tela_Da_Sala->Painel->Código(), código);
    EXPECT_EQ(janela->Sala_Ativa()->Código(), código);
    Celular de_volta(janela->Sala_Ativa()->Endereço());
    de_volta.Envia(Pedido("retoma", {{"codigo", código}, {"token", token}}));
    EXPECT_EQ(de_volta.Espera_Mensagem(0, "sessao")["assento"].toInt(), 1);

    // Closing the game window closes the room: nothing listens any more.
    janela->cmdSair->click();
    EXPECT_EQ(janela->Sala_Ativa(), nullptr);
    EXPECT_TRUE(Espera([&] { return de_volta.Fechado; }));
    QTcpSocket sonda;
    sonda.connectToHost(QHostAddress::LocalHost, porta);
    EXPECT_FALSE(sonda.waitForConnected(1000));
    janela.reset();
}

TEST(Leitura_Pedido, TakesOnlyTheKindsOfRequestsWithTheirOwnFields) {
    const auto lê = [](const char* t) { return Lê_Pedido(QByteArray(t)); };
    auto p = lê(R"({"tipo":"entra","codigo":"012345"})");
    ASSERT_TRUE(p);
    EXPECT_EQ(p->Tipo, Tipo_Pedido::Entra);
    EXPECT_EQ(p->Código, "012345");
    p = lê(R"({"tipo":"retoma","codigo":"012345","token":"0123456789abcdef0123456789abcdef"})");
    ASSERT_TRUE(p);
    EXPECT_EQ(p->Token, "0123456789abcdef0123456789abcdef");
    p = lê(R"({"vez":9007199254740,"tipo":"responde","resposta":3})");
    ASSERT_TRUE(p);
    EXPECT_EQ(p->Índice, 3);
    EXPECT_EQ(p->Vez, 9007199254740);
    p = lê(R"({"tipo":"ajuda","ajuda":5,"vez":1})");
    ASSERT_TRUE(p);
    EXPECT_EQ(p->Tipo, Tipo_Pedido::Ajuda);
    EXPECT_TRUE(lê(R"({"tipo":"levanta"})"));
    EXPECT_TRUE(lê(R"({"tipo":"senta","assento":5})"));

    for (const char* ruim :
         {R"({"tipo":"entra","codigo":"12345"})",         // five digits
          R"({"tipo":"entra","codigo":"12345a"})",        // a letter
          R"({"tipo":"entra","codigo":123456})",          // a number, not a text
          R"({"tipo":"entra","codigo":"１２３４５６"})",  // other digits
          R"({"tipo":"retoma","codigo":"123456","token":"0123456789ABCDEF0123456789ABCDEF"})",
          R"({"tipo":"retoma","codigo":"123456"})",
          R"({"tipo":"senta","assento":0})",
          R"({"tipo":"senta","assento":6})",
          R"({"tipo":"senta","assento":true})",
          R"({"tipo":"senta","assento":1e400})",
          R"({"tipo":"responde","resposta":4,"vez":1})",
          R"({"tipo":"responde","resposta":-1,"vez":1})",
          R"({"tipo":"responde","resposta":0,"vez":0})",
          R"({"tipo":"responde","resposta":0})",
          R"({"tipo":"ajuda","ajuda":6,"vez":1})",
          R"({"tipo":"ajuda","ajuda":0.5,"vez":1})",
          R"({"tipo":"levanta","assento":1})",
          R"({"tipo":"Entra","codigo":"123456"})",
          R"({"codigo":"123456"})",
          R"(["tipo","entra"])",
          R"("entra")",
          "",
          "{}",
          "{\"tipo\":\"entra\""}) {
        EXPECT_FALSE(lê(ruim)) << ruim;
    }
    // 1,024 bytes at most.
    QByteArray longo = R"({"tipo":"levanta")";
    longo += QByteArray(Tamanho_Máximo_Pedido - longo.size() - 1, ' ') + "}";
    EXPECT_TRUE(Lê_Pedido(longo));
    longo.insert(1, ' ');
    EXPECT_FALSE(Lê_Pedido(longo));
}
