#include "support/Instalação_Teste.h"

#include <QTimer>

#include "store/schema/frmAtualiza_Versão.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

bool Inicia_Programa(long última_etapa) {
    Reinicia_Estado_Global();
    frmAtualiza_Versão janela;
    janela.tmrTempo->stop();
    janela.Última_Etapa = última_etapa;
    try {
        janela.tmrTempo_Timer();
    } catch (const Programa_Encerrado&) {
        return true;
    }
    return false;
}

void Instala_Programa() {
    Inicia_Programa();
    Inicia_Programa();
}
