#pragma once
// What the benchmarks on either engine measure of the program itself, so that the embedded and the server
// runs do exactly the same work on the program's side.
#include <benchmark/benchmark.h>

#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRadioButton>
#include <QString>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>

#include "common/Globais.h"
#include "forms/Controles.h"
#include "questions/frmPergunta.h"
#include "search/frmLocaliza_Informação.h"
#include "store/Funções_Banco.h"
#include "support/Plataforma_Roteirizada.h"

// The desktop seeds its generator with the bits of the seed. The scripted platform keeps the seed's
// integer part, and past 03:50 of any day the float holds no low bits there: every turn would get the
// same draws. Seeded as on the desktop, each reading of the moving clock gives draws of its own.
class Plataforma_Sorteio_Real : public Plataforma_Roteirizada {
  public:
    void Semeia(float semente) override {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &semente, sizeof bits);
        Gerador.seed(bits);
    }
    double Aleatório() override {
        const double x = std::generate_canonical<double, 53>(Gerador);
        return x < 1.0 ? x : 0.0;
    }

  private:
    std::mt19937 Gerador;
};

// What the Localiza button of the question register does, with "Em qualquer posição..." and the word typed
// in; each search must bring a full first page of `linhas_página` and find `achadas` questions in all.
// `a_cada_vez`, when given, runs at the start of each measured search.
inline void Localiza_No_Cadastro(benchmark::State& estado, const Plataforma_Roteirizada& plataforma,
                                 const QString& palavra, int linhas_página, int achadas,
                                 const std::function<void()>& a_cada_vez = {}) {
    frmPergunta cadastro;
    for (auto _ : estado) {
        if (a_cada_vez) a_cada_vez();
        Abre_Tabela_Pesquisa("tblPergunta");
        frmLocaliza_Informação localiza(&cadastro);
        localiza.optOpção_Click(6);
        localiza.txtConteúdo->setText(palavra);
        localiza.cmdOk_Click();
        if (Linhas_Localizadas != linhas_página || Tabela_Dynaset.RecordCount() != achadas) {
            estado.SkipWithError("a primeira página não veio cheia");
            break;
        }
        if (!plataforma.Caixas.isEmpty()) {
            estado.SkipWithError(plataforma.Caixas.first().Texto.toUtf8().constData());
            break;
        }
    }
}

// The register's "Próximo", `passos` times from the first question; each measured walk must end at the
// question numbered after its steps.
// `a_cada_vez`, when given, runs at the start of each measured walk.
inline void Próximo_No_Cadastro(benchmark::State& estado, const Plataforma_Roteirizada& plataforma,
                                int passos, const std::function<void()>& a_cada_vez = {}) {
    frmPergunta cadastro;
    for (auto _ : estado) {
        estado.PauseTiming();
        Tabela.MoveFirst();
        cadastro.Exibir_Campos();
        if (a_cada_vez) a_cada_vez();
        estado.ResumeTiming();
        for (int i = 0; i < passos; ++i) cadastro.cmdMovimenta_Registro_Click(2);
        if (Tabela.Fields("Código_Pergunta").Value().toInt() != passos + 1) {
            estado.SkipWithError("o cadastro não chegou à pergunta esperada");
            break;
        }
        if (!plataforma.Caixas.isEmpty()) {
            estado.SkipWithError(plataforma.Caixas.first().Texto.toUtf8().constData());
            break;
        }
    }
}

// The question and its four answers, trimmed, put by hand into a question window's boxes, with its caption.
// The texts come in UTF-8, as both engines give them.
inline void Mostra_Campos_Pergunta_À_Mão(Janela_Pergunta& tela, const char* const textos[5],
                                         const QString& legenda) {
    tela.txtPergunta->setPlainText(QString::fromUtf8(textos[0]).trimmed());
    QLineEdit* const respostas[] = {tela.txtResposta_Correta, tela.txtResposta_Incorreta_1,
                                    tela.txtResposta_Incorreta_2, tela.txtResposta_Incorreta_3};
    for (int i = 0; i < 4; ++i) respostas[i]->setText(QString::fromUtf8(textos[i + 1]).trimmed());
    tela.setWindowTitle(legenda);
}

// What a step of the register shows, put by hand into the same widgets: the question and its answers,
// the kind, and the caption with the code, so that the raw sides of "Próximo" do the visible work that
// the window does.
inline void Mostra_Pergunta_À_Mão(frmPergunta& tela, int código, const char* const textos[5],
                                  const char* tipo) {
    static const QLocale brasil(QLocale::Portuguese, QLocale::Brazil);
    Mostra_Campos_Pergunta_À_Mão(tela, textos, "Consulta da Pergunta " + brasil.toString(código));
    tela.optTipo[qstrcmp(tipo, "G") == 0 ? 0 : 1]->setChecked(true);
}

// The question's line of statistics as the register shows it: its answers in the monthly summaries and
// in the turns of games not yet summed, in the words of each engine (`?1` embedded, `$1` on a server).
inline const char* Resumo_Pergunta_SQL(bool servidor) {
    return servidor
               ? "SELECT SUM(\"Respostas\"), SUM(\"Acertos\") FROM (SELECT \"Respostas\", \"Acertos\" FROM "
                 "\"tblResumo_Mensal\" WHERE \"Código_Pergunta\" = $1 UNION ALL SELECT CASE WHEN "
                 "\"Desfecho\" = 'Pulada' THEN 0 ELSE 1 END, CASE WHEN \"Desfecho\" = 'Certa' THEN 1 ELSE 0 "
                 "END FROM \"tblJogada\" WHERE \"Código_Pergunta\" = $1 AND \"Código_Jogada\" > (SELECT "
                 "\"Última_Jogada\" FROM \"tblResumo_Marca\")) AS t"
               : "SELECT SUM(Respostas), SUM(Acertos) FROM (SELECT Respostas, Acertos FROM "
                 "tblResumo_Mensal WHERE Código_Pergunta = ?1 UNION ALL SELECT CASE WHEN Desfecho = "
                 "'Pulada' THEN 0 ELSE 1 END, CASE WHEN Desfecho = 'Certa' THEN 1 ELSE 0 END FROM "
                 "tblJogada WHERE Código_Pergunta = ?1 AND Código_Jogada > (SELECT Última_Jogada FROM "
                 "tblResumo_Marca)) AS t";
}

// That line's text from its two sums, put by hand into the window's label.
inline void Mostra_Estatística_À_Mão(frmPergunta& tela, long long respostas, long long acertos) {
    tela.lblEstatística->setText(respostas <= 0 ? QString("Ainda não respondida")
                                                : QString("Respondida %1 %2, %3% de acertos")
                                                      .arg(respostas)
                                                      .arg(respostas == 1 ? "vez" : "vezes")
                                                      .arg(qRound(100.0 * acertos / respostas)));
}
