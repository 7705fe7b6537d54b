#include "failure/Trata_Erro.h"

#include <QFile>

#include "common/Cp1252.h"
#include "common/Globais.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"

QString Traduz_Erro(long número, const QString& descrição, const QString& sub_rotina) {
    switch (número) {
        case Erro_Índice_Duplicado: {
            const QString início = descrição.left(25);
            if (início == "As alterações solicitadas" || início == "The changes you requested")
                return Texto_Duplicado;
            return descrição;
        }
        case Erro_Índice_Excesso:
            return "Propriedade INDEX da tabela foi definida em excesso. \r\rÉ necessário rearranjar a ordem "
                   "de "
                   "disposição das tabelas e dos índices.\r\r" +
                   descrição;
        case Erro_Bloqueado: {
            QString texto =
                "Ou informação foi excluída do banco de dados, ou não foi possível executar a instrução SQL, "
                "ou a "
                "informação encontra-se atualmente bloqueada para sofrer atualização";
            if (sub_rotina.left(11) == "Abre_Tabela")
                texto += ".\r\rÉ necessário reinstalar os softwares MDAC 2.8 e JET 4 neste computador";
            return texto;
        }
        case Erro_Drivers:
            return "O sistema " + Título_Programa +
                   " requer que os driver´s de acesso a banco de dados da Microsoft estejam instalados no "
                   "computador.\r\rPara instalá-los, basta novamente executar o programa de instalação do "
                   "sistema " +
                   Título_Programa +
                   " e, na tela \"ATENÇÃO!!!\" que lhe for mostrada, clicar nos link´s correspondentes à sua "
                   "versão "
                   "do Windows para iniciar o download dos driver´s e instalá-los";
        default: {
            const QString fixa = Tradução_Erro_Fixa(número);
            return fixa.isEmpty() ? descrição : fixa;
        }
    }
}

QString Caminho_Log_Ocorrências() {
    return Caminho_Programa() + "/Log de Ocorrências.Log";
}

bool Registra_Ocorrência(long número, const QString& código_fonte, const QString& sub_rotina, long linha) {
    const QDateTime agora = Plataforma_Atual().Agora();
    const QString entrada =
        "Descrição do Erro: " + Mensagem_Erro + ".\r\n" + "Código-Fonte: " + código_fonte +
        "   Sub-Rotina: " + sub_rotina + "()   Nº. da Linha: " + QString::number(linha) + "\r\n" +
        "Operação: " + Operação + "   Código: " + QString::number(número) + "   Usuário: " + Usuário_Atual +
        "   Data: " + agora.toString("dd/MM/yyyy") + "   Hora: " + agora.toString("HH:mm:ss") + " hs\r\n" +
        QString(135, '_') + "\r\n\r\n";
    QFile arquivo(Caminho_Log_Ocorrências());
    if (!arquivo.open(QIODevice::Append)) return false;
    const QByteArray bytes = Para_Cp1252(entrada);
    const bool ok = arquivo.write(bytes) == bytes.size();
    arquivo.close();
    return ok;
}

namespace {
QString Texto_Caixa_Erro(long número, const QString& código_fonte, const QString& sub_rotina, long linha) {
    return "Ocorrência de erro...\r\r(Código " + QString::number(número) + ") -> " + Mensagem_Erro +
           ".\r\rCódigo-Fonte: " + código_fonte + "\r\rSub-Rotina ..: " + sub_rotina +
           "()\r\rNº. da Linha .: " + QString::number(linha) + "\r\rSistema ......: " + Título_Programa +
           "\r\rEstas mensagens de erro podem ser resolvidas consultando o artigo RESPOSTAS ÀS PERGUNTAS "
           "MAIS "
           "COMUNS que acompanha esse software.\r\rAs mesmas podem ser acessadas através do atalho MENU "
           "INICIAR, "
           "PROGRAMAS, " +
           Título_Programa.toUpper() +
           ", RESPOSTAS ÀS PERGUNTAS MAIS COMUNS.\r\rCaso o problema persista após ter consultado o artigo, "
           "relate-nos este problema através do endereço de e-mail " +
           Endereço_Suporte;
}

int Profundidade_Trata_Erro = 0;

// A full disk, a database the system opened read-only, a damaged file: the store's words name the folder
// or the file and say what to do, and they are told as they are, never as a row deleted or locked.
// Nothing was written, so the log gets its entry when it can be written (it may lie on the same full
// disk), and a full disk or a read-only database is told once for the whole write; the program goes on
// and the window keeps what the user typed. A damaged file ends the program, which leaves it as it is.
void Trata_Recusa_do_Armazenamento(long número, const QString& descrição, long linha,
                                   const QString& código_fonte, const QString& sub_rotina) {
    Plataforma& plataforma = Plataforma_Atual();
    if (!descrição.isEmpty()) Mensagem_Erro = descrição;
    Repetições_Erro = 0;
    Registra_Ocorrência(número, código_fonte, sub_rotina, linha);
    if (número == Erro_Banco_Danificado) {
        plataforma.Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Crítico,
                                  Botões_Caixa::Ok);
        plataforma.Encerra_Agora(1);
        return;
    }
    Sai_da_Gravação = true;  // Grava's loop ends: another round would be refused alike
    if (Gravação_Impedida_Avisada) return;
    Gravação_Impedida_Avisada = true;
    plataforma.Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Crítico, Botões_Caixa::Ok);
}
}  // namespace

void Trata_Erro(long Número, const QString& Descrição, long Linha, const QString& Código_Fonte,
                const QString& Sub_Rotina) {
    // A failure inside the handler reports once more under its own name, and no deeper.
    if (Profundidade_Trata_Erro > 1) return;
    ++Profundidade_Trata_Erro;
    struct Saída {
        ~Saída() { --Profundidade_Trata_Erro; }
    } saída;
    Rotina r(Fonte_Funções_Públicas, "Trata_Erro");
    Plataforma& plataforma = Plataforma_Atual();

    Mensagem_Erro = Traduz_Erro(Número, Descrição, Sub_Rotina);
    Encerra_Sistema = false;
    Registra_Erro = false;

    // A lost connection to the server: the store has already told the user in its one box, logged it and
    // connected again. The statement that met it did nothing; a write stops here as a refused one, so
    // that the window keeps the typed values to be saved again.
    if (Número == Erro_Conexão_Perdida) {
        Sai_da_Gravação = true;
        Registro_Duplicado = true;
        Repetições_Erro = 0;
        return;
    }
    if (Número == Erro_Disco_Cheio || Número == Erro_Somente_Leitura || Número == Erro_Banco_Danificado) {
        Trata_Recusa_do_Armazenamento(Número, Descrição, Linha, Código_Fonte, Sub_Rotina);
        return;
    }

    if (Número == Erro_Índice_Duplicado) {
        if (Mensagem_Erro == Texto_Duplicado) {
            if (Em_Cadastro && !Registro_Duplicado)
                plataforma.Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Exclamação,
                                          Botões_Caixa::Ok);
            Sai_da_Gravação = true;
            Registro_Duplicado = true;
            Repetições_Erro = 0;
        } else {
            ++Repetições_Erro;
        }
    } else {
        Repetições_Erro = 0;
    }

    if (!Sai_da_Gravação) {
        Encerra_Sistema = true;
        Registra_Erro = true;
    }

    if (Número == Erro_Duplicado_Jet || Número == Erro_Bloqueado) {
        Encerra_Sistema = false;
        Registra_Erro = false;
        plataforma.Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Crítico,
                                  Botões_Caixa::Ok);
    }

    if (Repetições_Erro > 100) {
        Encerra_Sistema = true;
        Registra_Erro = true;
    } else if (Número == Erro_Índice_Duplicado && Sub_Rotina != "Exibir_Campos") {
        Encerra_Sistema = false;
        Registra_Erro = false;
    }

    if (Registra_Erro) {
        if (!Registra_Ocorrência(Número, Código_Fonte, Sub_Rotina, Linha))
            Falha(75, "Não foi possível gravar " + Caminho_Log_Ocorrências());
        if (plataforma.Linha_Comando_Vazia())
            plataforma.Caixa_Mensagem(Texto_Caixa_Erro(Número, Código_Fonte, Sub_Rotina, Linha),
                                      Título_Programa, Ícone_Caixa::Crítico, Botões_Caixa::Ok);
    }

    if (Encerra_Sistema) plataforma.Encerra_Agora(1);
}
