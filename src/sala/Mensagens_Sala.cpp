#include "sala/Mensagens_Sala.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace {
const char* Nome_Fase(Fase_Sala fase) {
    switch (fase) {
        case Fase_Sala::Nomes:
            return "nomes";
        case Fase_Sala::Vez:
            return "vez";
        case Fase_Sala::Dado:
            return "dado";
        case Fase_Sala::Resultado:
            return "resultado";
        case Fase_Sala::Fim:
            return "fim";
    }
    return "nomes";
}

QJsonArray Textos(const std::array<QString, 4>& textos) {
    QJsonArray lista;
    for (const QString& t : textos) lista.append(t);
    return lista;
}
}  // namespace

Retrato_Sala Retrata_Jogo(const Estado_Jogo& jogo, bool nomes_abertos, bool rolando, int face,
                          const std::array<QString, 4>& aviso, Contagem_Vez& vez) {
    Retrato_Sala r;
    const bool em_vez = jogo.Vez_Em_Andamento && !jogo.Terminado && !nomes_abertos;
    if (em_vez && !vez.Em_Vez) ++vez.Vez;
    vez.Em_Vez = em_vez;
    r.Vez = vez.Vez;

    if (nomes_abertos)
        r.Fase = Fase_Sala::Nomes;
    else if (jogo.Terminado)
        r.Fase = Fase_Sala::Fim;
    else if (em_vez)
        r.Fase = rolando ? Fase_Sala::Dado : Fase_Sala::Vez;
    else
        r.Fase = Fase_Sala::Resultado;

    const int competidores = std::clamp(jogo.Quantidade_Jogadores, 0, Máximo_Jogadores);
    for (int i = 1; i <= competidores; ++i)
        r.Jogadores.append({jogo.Nome_Jogador[i], jogo.Pontos[i], jogo.Nível[i], jogo.Ativo[i]});
    r.Aviso = aviso;
    if (r.Fase == Fase_Sala::Nomes) return r;

    r.Jogador = jogo.Jogador_Atual;
    r.Valor = jogo.Valor_Pergunta;
    r.Pergunta = jogo.Pergunta_Atual.Pergunta;
    // The rules blank the answers as the die is asked; the host shows them blanked once it stops.
    r.Respostas = r.Fase == Fase_Sala::Dado ? vez.Respostas : jogo.Respostas_Exibidas;
    vez.Respostas = r.Respostas;
    if (r.Fase == Fase_Sala::Vez && !jogo.Ajuda_Usada_Na_Vez && jogo.Jogador_Atual >= 1 &&
        jogo.Jogador_Atual <= Máximo_Jogadores)
        r.Ajudas = jogo.Ajuda_Disponível[jogo.Jogador_Atual];
    if (r.Fase == Fase_Sala::Vez || r.Fase == Fase_Sala::Dado) r.Face_Dado = std::clamp(face, 0, 6);
    // The right answer only once nobody can answer this question any more.
    if (r.Fase == Fase_Sala::Resultado || r.Fase == Fase_Sala::Fim)
        r.Correta = jogo.Pergunta_Atual.Resposta_Correta;
    if (r.Fase == Fase_Sala::Fim) r.Classificação = Classificação_Jogo(jogo);
    return r;
}

QByteArray Escreve_Estado(const Retrato_Sala& r, const std::array<bool, Máximo_Jogadores + 1>& celulares) {
    QJsonObject o;
    o["tipo"] = "estado";
    o["fase"] = Nome_Fase(r.Fase);
    o["vez"] = static_cast<double>(r.Vez);
    o["jogador"] = r.Jogador;
    o["valor"] = r.Valor;
    o["pergunta"] = r.Pergunta;
    o["respostas"] = Textos(r.Respostas);
    QJsonArray ajudas;
    for (bool a : r.Ajudas) ajudas.append(a);
    o["ajudas"] = ajudas;
    o["dado"] = r.Face_Dado;
    o["aviso"] = Textos(r.Aviso);
    if (!r.Correta.isEmpty()) o["correta"] = r.Correta;
    QJsonArray jogadores;
    for (int i = 0; i < r.Jogadores.size(); ++i) {
        const Jogador_Sala& j = r.Jogadores[i];
        QJsonObject linha;
        linha["nome"] = j.Nome;
        linha["pontos"] = j.Pontos;
        linha["nivel"] = j.Nível;
        linha["ativo"] = j.Ativo;
        linha["celular"] = i + 1 <= Máximo_Jogadores && celulares[i + 1];
        jogadores.append(linha);
    }
    o["jogadores"] = jogadores;
    QJsonArray classificação;
    for (int assento : r.Classificação) classificação.append(assento);
    o["classificacao"] = classificação;
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

QByteArray Escreve_Sessão(int assento, const QString& token, const QString& código) {
    QJsonObject o;
    o["tipo"] = "sessao";
    o["assento"] = assento;
    o["token"] = token;
    o["codigo"] = código;
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

QByteArray Escreve_Erro(const QString& texto) {
    QJsonObject o;
    o["tipo"] = "erro";
    o["texto"] = texto;
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}
