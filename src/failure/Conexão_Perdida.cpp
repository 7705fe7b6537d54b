#include "failure/Conexão_Perdida.h"

#include <QElapsedTimer>

#include "common/Globais.h"
#include "failure/Trata_Erro.h"
#include "platform/Plataforma.h"

namespace {
// How long one "Tentar de novo" keeps trying before the user is asked again: a server that restarts is
// back within seconds.
constexpr int Tentativas = 15;
constexpr qint64 Limite_Ms = 30000;

QString Com_Detalhe(const QString& texto, const QString& detalhe) {
    return detalhe.trimmed().isEmpty() ? texto : texto + "\r\rDetalhe: " + detalhe.simplified();
}
}  // namespace

QString Texto_Conexão_Perdida(const QString& servidor, const QString& detalhe, bool gravação_desfeita) {
    const QString texto =
        "A conexão com o servidor " + servidor + " foi perdida" +
        (gravação_desfeita ? ": o que estava sendo gravado foi desfeito, e as informações digitadas "
                             "continuam na tela para serem gravadas de novo."
                           : ".") +
        "\r\rClique em Tentar de novo para reconectar, ou em Sair para fechar o sistema.";
    return Com_Detalhe(texto, detalhe);
}

void Avisa_Conexão_Perdida(const QString& servidor, const QString& detalhe, bool gravação_desfeita,
                           const std::function<bool(QString& motivo)>& reconecta) {
    Plataforma& plataforma = Plataforma_Atual();
    // One entry in the occurrence log for the loss; the box below is the only one the user sees for it.
    Mensagem_Erro = "A conexão com o servidor " + servidor + " foi perdida (" + detalhe.simplified() + ")";
    Registra_Ocorrência(Erro_Conexão_Perdida, "Funções Públicas", "Conexão_Perdida", 0);
    QString texto = Texto_Conexão_Perdida(servidor, detalhe, gravação_desfeita);
    for (;;) {
        if (plataforma.Caixa_Mensagem(texto, Título_Programa, Ícone_Caixa::Exclamação,
                                      Botões_Caixa::Tentar_Sair) == Resposta_Caixa::Cancelar)
            plataforma.Encerra_Agora(1);
        plataforma.Cursor_Ocupado("Processamento.Ico");
        QElapsedTimer relógio;
        relógio.start();
        QString motivo;
        for (int tentativa = 0; tentativa < Tentativas && relógio.elapsed() < Limite_Ms; ++tentativa) {
            if (reconecta(motivo)) {
                plataforma.Cursor_Normal();
                return;
            }
            plataforma.Processa_Eventos();
            plataforma.Dorme(1000);
        }
        plataforma.Cursor_Normal();
        // The user asked to try again and it did not work: the same box, saying so.
        texto = Com_Detalhe("A conexão com o servidor " + servidor +
                                " continua perdida: ele ainda não respondeu.\r\rClique em Tentar de novo "
                                "para continuar tentando, ou em Sair para fechar o sistema.",
                            motivo);
    }
}
