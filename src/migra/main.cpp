// quizora-migra <pasta do programa>: moves an installation's embedded databases to the server that its
// Dados/Servidor.txt names. The program's own command line takes no option, so this is a tool of its own.
#include <QCoreApplication>
#include <QDir>
#include <QStringList>
#include <cstdio>

#include "store/Migração_Servidor.h"

namespace {
void Escreve(std::FILE* saída, const QString& texto) {
    std::fputs((texto + '\n').toUtf8().constData(), saída);
    std::fflush(saída);
}
}  // namespace

int main(int argc, char** argv) {
    QCoreApplication aplicação(argc, argv);
    const QStringList argumentos = aplicação.arguments();
    if (argumentos.size() != 2 || argumentos[1].startsWith('-')) {
        Escreve(stderr,
                "Uso: quizora-migra <pasta do programa>\n\n"
                "Copia as tabelas de Dados/Dados.Mdb e Dados/Manutenção.Mdb para o banco vazio do servidor\n"
                "indicado em Dados/Servidor.txt e confere o número de linhas de cada tabela. Os arquivos\n"
                "não são alterados.");
        return 2;
    }
    const QString pasta_dados = QDir(argumentos[1]).absoluteFilePath("Dados");
    QString erro;
    if (!Migra_Para_Servidor(
            pasta_dados, [](const QString& passo) { Escreve(stdout, passo); }, erro)) {
        Escreve(stderr, "A migração não foi feita: " + erro);
        return 1;
    }
    Escreve(stdout, "Migração concluída. Abra o Quizora: ele passa a usar o servidor.");
    return 0;
}
