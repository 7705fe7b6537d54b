#pragma once
// Each test runs in a program folder of its own, pointed at by QUIZORA_PASTA, with fresh globals.
#include <QString>
#include <QTemporaryDir>

class Pasta_Teste {
  public:
    Pasta_Teste();
    ~Pasta_Teste();
    QString Caminho() const { return Pasta.path(); }
    QString Dados() const { return Pasta.path() + "/Dados"; }

  private:
    QTemporaryDir Pasta;
};

// Closes every global slot and connection and clears the shared state.
void Reinicia_Estado_Global();
// Creates Dados.Mdb and Manutenção.Mdb with a few tables and opens the seven connections.
void Cria_Bancos_De_Teste();
// Indexes tblPergunta by Tipo and by Tipo and Pergunta, where keys tie with many others.
void Indexa_Perguntas_Por_Tipo();
