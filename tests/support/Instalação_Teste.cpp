#include "support/Instalação_Teste.h"

#include <QTimer>

#include "store/Funções_Banco.h"
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

void Instala_Programa_Para_Janelas() {
    Instala_Programa();
    Tabela_Manutenção.Reinicia();
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    if (auto* roteirizada = dynamic_cast<Plataforma_Roteirizada*>(&Plataforma_Atual()))
        roteirizada->Caixas.clear();
}

void Cadastra_Perguntas(int quantidade, const QString& tipo) {
    Tabela.Reinicia();
    Abre_Tabela("tblPergunta");
    for (int i = 1; i <= quantidade; ++i) {
        Tabela.AddNew();
        Tabela.Fields("Pergunta").Set_Value(QString("Pergunta número %1?").arg(i));
        Tabela.Fields("Resposta_Correta").Set_Value(QString("Certa %1").arg(i));
        Tabela.Fields("Resposta_Incorreta_1").Set_Value(QString("Errada A%1").arg(i));
        Tabela.Fields("Resposta_Incorreta_2").Set_Value(QString("Errada B%1").arg(i));
        Tabela.Fields("Resposta_Incorreta_3").Set_Value(QString("Errada C%1").arg(i));
        Tabela.Fields("Tipo").Set_Value(tipo);
        Tabela.Fields("Já_Comparada").Set_Value(false);
        Tabela.Fields("Já_Verificada").Set_Value(false);
        Tabela.Update();
    }
    Tabela.Reinicia();
    Limpa_Cache_Lastrec();
}
