#include "store/Linha_Empacotada.h"

qsizetype Comando_Banco::Empacota(const Coluna_Empacotada* plano, int colunas, QByteArray& bloco,
                                  qsizetype início) const {
    return Empacota_Linha(Leitor_Comando{*this, {}}, plano, colunas, bloco, início);
}
