#include "store/schema/Esquema.h"

Campo_Info Texto(const QString& nome, int largura, bool zero) {
    return {nome, Tipo_Texto, largura, false, zero};
}
Campo_Info Memo(const QString& nome, bool zero) {
    return {nome, Tipo_Memo, 0, false, zero};
}
Campo_Info Longo(const QString& nome) {
    return {nome, Tipo_Long};
}
Campo_Info Automático(const QString& nome) {
    return {nome, Tipo_Long, 0, true};
}
Campo_Info Duplo(const QString& nome) {
    return {nome, Tipo_Double};
}
Campo_Info Data(const QString& nome) {
    return {nome, Tipo_Data};
}
Campo_Info Booleano(const QString& nome) {
    return {nome, Tipo_Boolean};
}
Índice_Info Simples(const QString& nome, const QStringList& campos) {
    return {nome, Tipo_Índice::Simples, campos};
}
Índice_Info Primário(const QString& nome, const QStringList& campos) {
    return {nome, Tipo_Índice::Primário, campos};
}
Índice_Info Único(const QString& nome, const QStringList& campos) {
    return {nome, Tipo_Índice::Único, campos};
}

QVector<Definição_Tabela> Esquema_Principal() {
    return {
        {"tblConfigur",
         {Texto("Razão_Social", 50), Longo("Versão_Maior"), Longo("Versão_Menor"), Longo("Versão_Revisão"),
          Booleano("Monitora_Log_das_Atividades"), Longo("Versão_Revelações_de_Deus")},
         {}},
        {"tblUsuário",
         {Texto("Usuário", 20), Automático("Código_Usuário"), Longo("Senha"),
          Texto("Biblioteca_Imagens_Local", 150, true), Texto("Biblioteca_Imagens_Rede", 150, true),
          Booleano("Muda_Fundo_de_Tela"), Longo("Quantidade_Execuções")},
         {Simples("idxCódigo_Usuário", {"Código_Usuário"}), Primário("idxUsuário", {"Usuário"})}},
        {"tblPermissão",
         {Texto("Rotina", 100), Automático("Código_Permissão"), Texto("Usuário", 50),
          Booleano("Permissão_De_Inclusão"), Booleano("Permissão_De_Alteração"),
          Booleano("Permissão_De_Exclusão"), Booleano("Permissão_De_Consulta")},
         {Simples("idxCódigo_Permissão", {"Código_Permissão"})}},
        {"tblEstado",
         {Texto("Estado", 20), Automático("Código_Estado"), Texto("Iniciais_Estado", 2)},
         {Simples("idxCódigo_Estado", {"Código_Estado"}), Único("idxInciiais_Estado", {"Iniciais_Estado"})}},
        {"tblPergunta",
         {Texto("Pergunta", 124), Automático("Código_Pergunta"), Texto("Resposta_Correta", 50),
          Texto("Resposta_Incorreta_1", 50), Texto("Resposta_Incorreta_2", 50),
          Texto("Resposta_Incorreta_3", 50), Texto("Tipo", 1), Booleano("Já_Comparada"),
          Booleano("Já_Verificada"), Texto("Pergunta_Original", 124, true)},
         {Simples("idxCódigo_Pergunta", {"Código_Pergunta"}), Simples("idxPergunta", {"Pergunta"}),
          Simples("idxPergunta_Original", {"Pergunta_Original"}),
          Simples("idxJá_Comparada", {"Já_Comparada"}), Simples("idxJá_Verificada", {"Já_Verificada"})}},
        {"tblPergunta_Já_Mostrada", {Longo("Código_Pergunta"), Data("Data_Jogo")}, {}},
        {"tblPontuação",
         {Texto("Jogador", 50), Duplo("Pontuação")},
         {Simples("idxPontuação", {"Pontuação"})}},
        {"tblCritério_de_Consulta",
         {Texto("Tabela", 50), Automático("Código_Critério_de_Consulta"), Texto("Usuário", 20),
          Longo("Campo_de_Pesquisa"), Longo("Primeiro_Campo_de_Consulta"),
          Longo("Segundo_Campo_de_Consulta")},
         {Simples("idxCódigo_Critério_de_Consulta", {"Código_Critério_de_Consulta"}),
          Primário("idxTabela_Usuário", {"Tabela", "Usuário"})}},
        {"tblDinâmica",
         {Texto("Dinâmica", 50), Automático("Código_Dinâmica"), Memo("Materiais", true), Memo("Instruções"),
          Memo("Data_Última_Realização", true), Texto("Tipo_Dinâmica", 9)},
         {Simples("idxCódigo_Dinâmica", {"Código_Dinâmica"}), Primário("idxDinâmica", {"Dinâmica"})}},
        {"tblAdaptação",
         {Data("Data_Solicitação"), Automático("Código_Adaptação"), Memo("Adaptação"),
          Longo("Código_Sistema"), Texto("Nome_Sistema", 50)},
         {Simples("idxCódigo_Adaptação", {"Código_Adaptação"})}},
        {"tblRevelação",
         {Memo("Palavra_Chave"), Automático("Código_Revelação"), Longo("Código_Revelação_de_Deus"),
          Longo("Quantidade_Linhas")},
         {Simples("idxCódigo_Revelação", {"Código_Revelação"})}},
    };
}

Definição_Tabela Definição_Manutenção() {
    return {"tblManutenção_Banco_de_Dados",
            {Texto("Manutenção", 100), Automático("Código_Manutenção_Banco_de_Dados"), Texto("Usuário", 20),
             Data("Data_Manutenção"), Texto("Hora_Manutenção", 8)},
            {Simples("idxCódigo_Manutenção_Banco_de_Dados", {"Código_Manutenção_Banco_de_Dados"}),
             Simples("idxUsuário_Data_Manutenção_Hora_Manutenção",
                     {"Usuário", "Data_Manutenção", "Hora_Manutenção"})}};
}

Definição_Tabela Definição(const QString& tabela) {
    for (const auto& d : Esquema_Principal())
        if (d.Nome == tabela) return d;
    return Definição_Manutenção();
}

QVector<Estado_Semente> Estados_Semente() {
    return {{"Ac", "Acre"},
            {"Al", "Alagoas"},
            {"Am", "Amazonas"},
            {"Ap", "Amapá"},
            {"Ba", "Bahia"},
            {"Ce", "Ceará"},
            {"Df", "Distrito Federal"},
            {"Es", "Espírito Santo"},
            {"Go", "Goiás"},
            {"Ma", "Maranhão"},
            {"Mg", "Minas Gerais"},
            {"Ms", "Mato Grosso do Sul"},
            {"Mt", "Mato Grosso"},
            {"Pa", "Pará"},
            {"Pb", "Paraíba"},
            {"Pe", "Pernambuco"},
            {"Pi", "Piauí"},
            {"Pr", "Paraná"},
            {"Rj", "Rio de Janeiro"},
            {"Rn", "Rio Grande do Norte"},
            {"Rs", "Rio Grande do Sul"},
            {"Ro", "Rondônia"},
            {"Rr", "Roraima"},
            {"Sc", "Santa Catarina"},
            {"Se", "Sergipe"},
            {"Sp", "São Paulo"},
            {"To", "Tocantins"},
            {"Ex", "Exterior"}};
}

QString Versão_Comparável(int maior, int menor, int revisão) {
    const QString junto = QString("%1%2%3")
                              .arg(maior, 3, 10, QChar('0'))
                              .arg(menor, 3, 10, QChar('0'))
                              .arg(revisão, 3, 10, QChar('0'));
    return QString::number(junto.toLongLong());
}
