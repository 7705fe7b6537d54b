// A second running copy of the program for the lock tests. Usage:
//   auxiliar_trava <folder> <question code> <milliseconds to hold; 0 holds until killed>
// It locks the question's row, prints "TRAVADO" and holds it; then commits and prints "LIBERADO".
#include <QCoreApplication>
#include <QThread>
#include <cstdio>

#include "store/Funções_Banco.h"
#include "support/Plataforma_Roteirizada.h"

int main(int argc, char** argv) {
    QCoreApplication aplicação(argc, argv);
    if (argc < 4) return 2;
    qputenv("QUIZORA_PASTA", argv[1]);
    Plataforma_Roteirizada plataforma;
    for (Ligação* c :
         {&Conexão, &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária})
        c->Open(Conexão_Principal());
    Inicia_Transação();
    Abre_Tabela("tblPergunta");
    Tabela.Set_Index("idxCódigo_Pergunta");
    Tabela.Seek(QString(argv[2]).toInt());
    if (Tabela.Eof()) return 3;
    Trava(Tabela, Conexão, false);
    if (!Travou) return 4;
    std::printf("TRAVADO\n");
    std::fflush(stdout);
    const int espera = QString(argv[3]).toInt();
    if (espera == 0)
        for (;;) QThread::sleep(1);
    QThread::msleep(static_cast<unsigned long>(espera));
    Tabela.Fields("Resposta_Correta").Set_Value("Alterada pelo outro");
    Tabela.Update();
    Finaliza_Transação();
    std::printf("LIBERADO\n");
    std::fflush(stdout);
    return 0;
}
