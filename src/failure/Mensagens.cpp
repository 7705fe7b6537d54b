#include "failure/Mensagens.h"

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"

QString Texto_Mensagem(int Número) {
    const QString título = Título_Programa;
    const QString TÍTULO = Título_Maiúsculo();
    switch (Número) {
        case 1:
            return "Senha inválida";
        case 2:
            return "Esta rotina só pode ser executada pelo pessoal da NORVANE INFORMÁTICA";
        case 3:
            return "Usuário não cadastrado";
        case 4:
            return "Você não possui permissão para acessar esta rotina!!!\r\rSolicite ao Supervisor do "
                   "sistema a "
                   "devida autorização para acessá-la";
        case 5:
            return "As senhas informadas não conferem";
        case 7:
            return "Este usuário não pode ser excluído";
        case 8:
            return "Você não pode alterar as informações de outro usuário";
        case 9:
            return "Não é possível navegar pelas informações pois não há nenhuma informação cadastrada";
        case 10:
            return "Campo com preenchimento obrigatório";
        case 11:
            return "Não há mais nenhuma informação cadastrada ANTES desta";
        case 12:
            return "Não há mais nenhuma informação cadastrada APÓS esta";
        case 15:
            return "Já existe um relatório gerado com este nome";
        case 16:
            return "CPF informado não existe";
        case 17:
            return "CNPJ informado não existe";
        case 18:
            return "Informe uma data válida";
        case 19:
            return "Não é possível excluir esta informação pois caso contrário o banco de dados perderia sua "
                   "integridade referencial";
        case 20:
            return "A sua atual resolução de vídeo está definida como 640 x 480.\r\rPara usufruir ao máximo "
                   "dos "
                   "recursos oferecidos pelo " +
                   título +
                   ", sugerimos que a resolução de vídeo de seu computador seja alterada para 800 x 600";
        case 21:
            return "Para mudar o fundo de tela com as imagens de sua preferência, no menu CADASTROS acesse a "
                   "opção "
                   "USUÁRIOS, localize seu cadastro e informe a pasta onde está localizada sua coleção "
                   "preferida de "
                   "imagens";
        case 22:
            return "Não é possível alterar uma informação que ainda não foi cadastrada";
        case 23:
            return "Não é possível excluir uma informação que ainda não foi cadastrada";
        case 24:
            return "Todos os números compreendidos dentro da faixa para Sorteio já foram contemplados";
        case 25:
            return "Uma nova versão do sistema " + título +
                   " foi instalada com sucesso!!! \r\rNeste momento o sistema será fechado para que as "
                   "alterações "
                   "efetuadas tenham efeito.\r\rBasta reexecutar novamente o sistema " +
                   título + " para acessá-lo normalmente";
        case 26:
            return "Não é possível navegar pelas informações pois não há nenhuma informação cadastrada com o "
                   "critério de pesquisa que você informou.\r\rRetornando à pesquisa anterior";
        case 27:
            return "Não há nenhuma Adaptação cadastrada";
        case 28:
            return "Sistema desfez a última transação realizada por você, comum quando o usuário clica em "
                   "CANCELAR.\r\rPorém, caso essa mensagem lhe foi mostrada SEM que você tenha clicado em "
                   "algum "
                   "botão CANCELAR, comunique imediatamente este fato à Norvane Informática para que assim "
                   "possamos "
                   "averiguar esta disfunção";
        case 29:
            return "Sua Biblioteca de Imagens não foi encontrada.\r\rNo menu CADASTROS acesse a opção "
                   "USUÁRIOS, "
                   "localize seu cadastro e informe a pasta onde está localizada sua coleção preferida de "
                   "imagens";
        case 31:
            return "Não é possível alterar os Critérios de Consulta de outros usuários";
        case 32:
            return "Não é possível excluir os Critérios de Consulta de outros usuários";
        case 33:
            return "Não é possível alterar esta informação pois caso contrário o banco de dados perderia sua "
                   "integridade referencial";
        case 34:
            return "Essa opção de saída do sistema pela qual você acabou de adotar (CLICANDO-SE NO \"X\" DA "
                   "JANELA) "
                   "pode vir a CORROMPER AS INFORMAÇÕES GRAVADAS no banco de dados, se esse recurso for "
                   "utilizado "
                   "com freqüência.\r\rPrefira clicar no botão SAIR (topo esquerdo da tela) criado "
                   "especificamente "
                   "para essa finalidade, com o objetivo de proteger as informações contidas no banco de "
                   "dados";
        case 37:
            return "O arquivo CONFIGURA_PAGE_TIME_OUT.REG necessário para a correta execução do sistema " +
                   TÍTULO +
                   " foi excluído por algum usuário!!!\r\rA ausência desse arquivo em questão PODERÁ "
                   "CORROMPER as "
                   "informações contidas no banco de dados.\r\rReinstale novamente o software " +
                   TÍTULO +
                   " para que esse arquivo seja novamente recriado.\r\rIMPORTANTE: o processo de "
                   "reinstalação do "
                   "sistema " +
                   TÍTULO +
                   " NÃO EXCLUI as informações que por ventura já estejam cadastradas no banco de dados";
        case 38:
            return "Não é possível mudar o nome do Usuário SUPERVISOR";
        default:
            return QString();
    }
}

QString Texto_Mensagem_Complementar(int Número) {
    switch (Número) {
        case 101:
            return "Foi gerado o arquivo TEMP.MDB na pasta " + Caminho_Dados() +
                   " contendo as Perguntas que foram exportadas.\r\rFavor compactar esse arquivo para o "
                   "formato "
                   ".ZIP e enviar-nos para o endereço de e-mail " +
                   Endereço_Suporte;
        case 102:
            return "Não existe nenhuma Pergunta cadastrada no sistema. \r\rVisite nosso site a Internet para "
                   "baixar "
                   "o cadastro de Perguntas, pois semanalmente novas Perguntas são liberadas";
        case 104:
            return "A palavra informada não consta na Pergunta original";
        default:
            return QString();
    }
}

void Exibe_Mensagem(int Número) {
    Rotina r(Fonte_Funções_Públicas, "Exibe_Mensagem");
    Plataforma& plataforma = Plataforma_Atual();
    const QString texto = Número < 100 ? Texto_Mensagem(Número) : Texto_Mensagem_Complementar(Número);
    for (int i = 0; i < 25; ++i) plataforma.Bipe();
    plataforma.Caixa_Mensagem(texto + "!!!", "Atenção!!!", Ícone_Caixa::Exclamação, Botões_Caixa::Ok);
}
