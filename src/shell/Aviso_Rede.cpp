#include "shell/Aviso_Rede.h"

#include <QFileInfo>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "platform/Sistema_de_Arquivos.h"
#include "utilities/Ajuda.h"

QString Rede_Dos_Dados() {
    // With a server named, only Temp.Mdb stays in Dados/, and it is this workstation's own.
    if (QFileInfo::exists(Caminho_Dados() + "/Servidor.txt")) return QString();
    const QString tipo = Plataforma_Atual().Sistema_de_Arquivos(Caminho_Dados());
    return Sistema_de_Arquivos_de_Rede(tipo) ? tipo : QString();
}

void Avisa_Dados_Na_Rede() {
    Rotina r(Fonte_Funções_Públicas, "Avisa_Dados_Na_Rede");
    const QString tipo = Rede_Dos_Dados();
    if (tipo.isEmpty()) return;
    const QString texto =
        "A pasta de dados do " + Título_Programa + " está numa pasta compartilhada pela rede (" + tipo +
        "):\r\r" + Caminho_Dados() +
        "\r\rOs arquivos de banco de dados desta pasta não podem ser usados por várias estações ao mesmo "
        "tempo: numa pasta de rede as informações podem se corromper ou se perder.\r\rPara que várias "
        "estações usem o mesmo banco de dados é preciso instalar um servidor de banco de dados (PostgreSQL). "
        "O passo a passo está na página \"" +
        Tópico_Várias_Estações +
        "\" do manual (menu Ajuda, Abre o Manual On-Line).\r\rSe só este computador usa esta pasta de dados, "
        "pode continuar normalmente.\r\rDeseja abrir agora essa página do manual?";
    if (Plataforma_Atual().Caixa_Mensagem(texto, "Atenção!!!", Ícone_Caixa::Exclamação,
                                          Botões_Caixa::Sim_Não) == Resposta_Caixa::Sim)
        Plataforma_Atual().Abre_Com_Aplicativo(Página_do_Manual(Tópico_Várias_Estações));
}
