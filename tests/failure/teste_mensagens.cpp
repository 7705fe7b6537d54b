// The numbered warnings: their texts as the user reads them and the way they are shown.
#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

static void PrintTo(const QString& texto, std::ostream* saída) {
    *saída << '"' << texto.toStdString() << '"';
}

namespace {
// Remembers how many beeps had sounded when each box came up.
class Plataforma_Com_Ordem : public Plataforma_Roteirizada {
  public:
    QList<int> Bipes_Antes_Da_Caixa;
    Resposta_Caixa Caixa_Mensagem(const QString& texto, const QString& título, Ícone_Caixa ícone,
                                  Botões_Caixa botões) override {
        Bipes_Antes_Da_Caixa << Bipes;
        return Plataforma_Roteirizada::Caixa_Mensagem(texto, título, ícone, botões);
    }
};

class Mensagens_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Com_Ordem Plataforma;

    // Shows the message and returns the text of the one box it opened.
    QString Exibida(int número) {
        Plataforma.Caixas.clear();
        Exibe_Mensagem(número);
        if (Plataforma.Caixas.size() != 1) {
            ADD_FAILURE() << "message " << número << " opened " << Plataforma.Caixas.size() << " boxes";
            return QString();
        }
        return Plataforma.Caixas.front().Texto;
    }
};

// The texts made only of constants, as the user reads them in the box.
const std::vector<std::pair<int, QString>> Catálogo_Constante = {
    {1, "Senha inválida!!!"},
    {2, "Esta rotina só pode ser executada pelo pessoal da NORVANE INFORMÁTICA!!!"},
    {3, "Usuário não cadastrado!!!"},
    {5, "As senhas informadas não conferem!!!"},
    {7, "Este usuário não pode ser excluído!!!"},
    {8, "Você não pode alterar as informações de outro usuário!!!"},
    {9, "Não é possível navegar pelas informações pois não há nenhuma informação cadastrada!!!"},
    {10, "Campo com preenchimento obrigatório!!!"},
    {11, "Não há mais nenhuma informação cadastrada ANTES desta!!!"},
    {12, "Não há mais nenhuma informação cadastrada APÓS esta!!!"},
    {15, "Já existe um relatório gerado com este nome!!!"},
    {16, "CPF informado não existe!!!"},
    {17, "CNPJ informado não existe!!!"},
    {18, "Informe uma data válida!!!"},
    {19,
     "Não é possível excluir esta informação pois caso contrário o banco de dados perderia sua "
     "integridade referencial!!!"},
    {20,
     "A sua atual resolução de vídeo está definida como 640 x 480.\r\rPara usufruir ao máximo dos "
     "recursos oferecidos pelo Quizora, sugerimos que a resolução de vídeo de seu computador seja "
     "alterada para 800 x 600!!!"},
    {21,
     "Para mudar o fundo de tela com as imagens de sua preferência, no menu CADASTROS acesse a opção "
     "USUÁRIOS, localize seu cadastro e informe a pasta onde está localizada sua coleção preferida "
     "de imagens!!!"},
    {22, "Não é possível alterar uma informação que ainda não foi cadastrada!!!"},
    {23, "Não é possível excluir uma informação que ainda não foi cadastrada!!!"},
    {24, "Todos os números compreendidos dentro da faixa para Sorteio já foram contemplados!!!"},
    {26,
     "Não é possível navegar pelas informações pois não há nenhuma informação cadastrada com o "
     "critério de pesquisa que você informou.\r\rRetornando à pesquisa anterior!!!"},
    {27, "Não há nenhuma Adaptação cadastrada!!!"},
    {28,
     "Sistema desfez a última transação realizada por você, comum quando o usuário clica em "
     "CANCELAR.\r\rPorém, caso essa mensagem lhe foi mostrada SEM que você tenha clicado em algum "
     "botão CANCELAR, comunique imediatamente este fato à Norvane Informática para que assim "
     "possamos averiguar esta disfunção!!!"},
    {29,
     "Sua Biblioteca de Imagens não foi encontrada.\r\rNo menu CADASTROS acesse a opção USUÁRIOS, "
     "localize seu cadastro e informe a pasta onde está localizada sua coleção preferida de "
     "imagens!!!"},
    {31, "Não é possível alterar os Critérios de Consulta de outros usuários!!!"},
    {32, "Não é possível excluir os Critérios de Consulta de outros usuários!!!"},
    {33,
     "Não é possível alterar esta informação pois caso contrário o banco de dados perderia sua "
     "integridade referencial!!!"},
    {38, "Não é possível mudar o nome do Usuário SUPERVISOR!!!"},
    {102,
     "Não existe nenhuma Pergunta cadastrada no sistema. \r\rVisite nosso site a Internet para "
     "baixar o cadastro de Perguntas, pois semanalmente novas Perguntas são liberadas!!!"},
    {104, "A palavra informada não consta na Pergunta original!!!"},
};
}  // namespace

TEST_F(Mensagens_Teste, MandatoryFieldBeepsTwentyFiveTimesThenShowsOneWarningBox) {
    Exibe_Mensagem(10);

    EXPECT_EQ(Plataforma.Bipes, 25);
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_EQ(Plataforma.Bipes_Antes_Da_Caixa, QList<int>{25});
    const Caixa_Mostrada& caixa = Plataforma.Caixas.front();
    EXPECT_EQ(caixa.Texto, QString("Campo com preenchimento obrigatório!!!"));
    EXPECT_EQ(caixa.Título, QString("Atenção!!!"));
    EXPECT_EQ(caixa.Ícone, Ícone_Caixa::Exclamação);
    EXPECT_EQ(caixa.Botões, Botões_Caixa::Ok);
}

TEST_F(Mensagens_Teste, EveryMessageIsShownTheSameWay) {
    for (const int número : {1, 4, 25, 37, 38, 99, 100, 101, 104}) {
        SCOPED_TRACE(número);
        Plataforma.Caixas.clear();
        Plataforma.Bipes = 0;
        Plataforma.Bipes_Antes_Da_Caixa.clear();
        Exibe_Mensagem(número);
        EXPECT_EQ(Plataforma.Bipes, 25);
        EXPECT_EQ(Plataforma.Bipes_Antes_Da_Caixa, QList<int>{25});
        ASSERT_EQ(Plataforma.Caixas.size(), 1);
        EXPECT_EQ(Plataforma.Caixas.front().Título, QString("Atenção!!!"));
        EXPECT_EQ(Plataforma.Caixas.front().Ícone, Ícone_Caixa::Exclamação);
        EXPECT_EQ(Plataforma.Caixas.front().Botões, Botões_Caixa::Ok);
        EXPECT_TRUE(Plataforma.Caixas.front().Texto.endsWith("!!!"));
    }
}

TEST_F(Mensagens_Teste, NumbersOutsideTheCatalogueShowOnlyTheExclamationMarks) {
    EXPECT_EQ(Exibida(99), QString("!!!"));
    EXPECT_EQ(Exibida(100), QString("!!!"));
    for (const int livre : {6, 13, 14, 30, 35, 36, 39, 40, 103, 105, 0, -1}) {
        SCOPED_TRACE(livre);
        EXPECT_EQ(Exibida(livre), QString("!!!"));
    }
}

TEST_F(Mensagens_Teste, DeniedRightKeepsItsInnerExclamationsAndGetsThreeMoreAtTheEnd) {
    EXPECT_EQ(
        Exibida(4),
        QString(
            "Você não possui permissão para acessar esta rotina!!!\r\rSolicite ao Supervisor do sistema a "
            "devida autorização para acessá-la!!!"));
}

TEST_F(Mensagens_Teste, TitleAndLineEndsArePutIntoTheTextAtDisplay) {
    EXPECT_EQ(
        Exibida(25),
        QString(
            "Uma nova versão do sistema Quizora foi instalada com sucesso!!! \r\rNeste momento o sistema "
            "será fechado para que as alterações efetuadas tenham efeito.\r\rBasta reexecutar novamente o "
            "sistema Quizora para acessá-lo normalmente!!!"));
    EXPECT_EQ(
        Exibida(34),
        QString("Essa opção de saída do sistema pela qual você acabou de adotar (CLICANDO-SE NO \"X\" DA "
                "JANELA) pode vir a CORROMPER AS INFORMAÇÕES GRAVADAS no banco de dados, se esse recurso for "
                "utilizado com freqüência.\r\rPrefira clicar no botão SAIR (topo esquerdo da tela) criado "
                "especificamente para essa finalidade, com o objetivo de proteger as informações contidas no "
                "banco de dados!!!"));
    // The missing engine setting names the program in capitals.
    EXPECT_EQ(
        Exibida(37),
        QString(
            "O arquivo CONFIGURA_PAGE_TIME_OUT.REG necessário para a correta execução do sistema QUIZORA "
            "foi excluído por algum usuário!!!\r\rA ausência desse arquivo em questão PODERÁ CORROMPER as "
            "informações contidas no banco de dados.\r\rReinstale novamente o software QUIZORA para que "
            "esse arquivo seja novamente recriado.\r\rIMPORTANTE: o processo de reinstalação do sistema "
            "QUIZORA NÃO EXCLUI as informações que por ventura já estejam cadastradas no banco de dados!!!"));
}

TEST_F(Mensagens_Teste, ExportMessageNamesTheDataFolderAndTheSupportAddress) {
    EXPECT_EQ(Exibida(101), "Foi gerado o arquivo TEMP.MDB na pasta " + Pasta.Dados() +
                                " contendo as Perguntas que foram exportadas.\r\rFavor compactar esse "
                                "arquivo para o formato .ZIP e enviar-nos para o endereço de e-mail " +
                                Endereço_Suporte + "!!!");
}

TEST_F(Mensagens_Teste, ConstantTextsReadAsInTheCatalogue) {
    for (const auto& [número, texto] : Catálogo_Constante) {
        SCOPED_TRACE(número);
        EXPECT_EQ(Exibida(número), texto);
    }
}

TEST_F(Mensagens_Teste, StoredTextsLackTheClosingExclamationsThatDisplayAdds) {
    EXPECT_EQ(Texto_Mensagem(10), QString("Campo com preenchimento obrigatório"));
    EXPECT_TRUE(Texto_Mensagem(4).endsWith("para acessá-la"));
    EXPECT_EQ(Texto_Mensagem_Complementar(104),
              QString("A palavra informada não consta na Pergunta original"));
}
