#include "utilities/Fundo_Tela.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QStandardPaths>

#include "platform/Sistema_de_Arquivos.h"
#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"
#include "users/Permissões.h"
#include "utilities/Ajuda.h"

namespace {
QList<Montagem> Montagens_de_Rede() {
    QList<Montagem> de_rede;
    for (const Montagem& montagem : Montagens_Da_Tabela(Montagens_Atuais()))
        if (Sistema_de_Arquivos_de_Rede(montagem.Tipo)) de_rede.append(montagem);
    return de_rede;
}
}  // namespace

QString Montagens_Atuais() {
    return Lê_Montagens ? Lê_Montagens() : Tabela_De_Montagens();
}

QString Forma_de_Rede(const QString& caminho) {
    const QString alvo = QDir::cleanPath(QFileInfo(caminho).absoluteFilePath());
    const QString fonte = Fonte_de_Rede(alvo, Montagens_Atuais());
    if (fonte.isEmpty()) return QString();
    Montagem melhor;
    for (const Montagem& m : Montagens_de_Rede())
        if ((alvo == m.Ponto || alvo.startsWith(m.Ponto + "/")) && m.Ponto.size() >= melhor.Ponto.size())
            melhor = m;
    QString fonte_limpa = melhor.Fonte.isEmpty() ? fonte : melhor.Fonte;
    while (fonte_limpa.endsWith('/') && fonte_limpa.size() > 1) fonte_limpa.chop(1);
    return fonte_limpa + alvo.mid(melhor.Ponto.size());
}

QString Caminho_da_Biblioteca(const QString& campo) {
    const QString texto = campo.trimmed();
    if (texto.isEmpty() || (texto.startsWith('/') && !texto.startsWith("//"))) return texto;
    for (const Montagem& m : Montagens_de_Rede()) {
        QString fonte = m.Fonte;
        while (fonte.endsWith('/') && fonte.size() > 1) fonte.chop(1);
        if (texto == fonte || texto.startsWith(fonte + "/")) return m.Ponto + texto.mid(fonte.size());
    }
    return texto;
}

QString Arquivo_Papel_de_Parede() {
    QString dados = qEnvironmentVariable("XDG_DATA_HOME");
    if (dados.isEmpty()) dados = QDir::homePath() + "/.local/share";
    return dados + "/Quizora/Wallpaper.bmp";
}

void Muda_Fundo_Tela(Lista_Arquivos* filImagens, QLabel* imgFundo) {
    Rotina r(Fonte_Funções_Públicas, "Muda_Fundo_Tela");
    Ponteiro_Ocupado cursor("Relógio.Ico");
    Tabela.Reinicia();
    Abre_Tabela("tblUsuário");
    Tabela.Set_Index("idxUsuário");
    // Before the login the Supervisor's settings apply.
    const QString usuário = Usuário_Atual.isEmpty() ? Usuário_Supervisor : Usuário_Atual;
    Tabela.Seek(usuário);
    if (Tabela.Eof() || Tabela.Bof()) return;

    const QString local = Caminho_da_Biblioteca(Tabela.Fields("Biblioteca_Imagens_Local").Value().toString());
    const QString rede = Caminho_da_Biblioteca(Tabela.Fields("Biblioteca_Imagens_Rede").Value().toString());
    filImagens->Pattern = Padrão_Imagens;
    if (Pasta_Legível(local)) {
        filImagens->Set_Path(local);
    } else if (Pasta_Legível(rede)) {
        filImagens->Set_Path(rede);
    } else {
        const QString ícones = Caminho_Programa() + "/Ícones";
        filImagens->Set_Path(ícones);
        // Reported once the user can see it; during start-up nothing is written or shown.
        if (Janela_Principal_Ativa) {
            Inicia_Transação();
            Trava(Tabela, Conexão, false);
            if (Travou) {
                const bool programa_local = Forma_de_Rede(Caminho_Programa()).isEmpty();
                Tabela.Fields(programa_local ? "Biblioteca_Imagens_Local" : "Biblioteca_Imagens_Rede")
                    .Set_Value(ícones.left(150));
                Grava(Tabela, false);
            }
            Finaliza_Transação();
            Exibe_Mensagem(29);
        }
    }

    const bool muda_desktop = Tabela.Fields("Muda_Fundo_de_Tela").Value().toBool();
    // Only files that the draw can show are in the list; a damaged one leaves it and the draw repeats,
    // so the loop ends with a picture or with none left.
    QStringList candidatos;
    for (int i = 0; i < filImagens->ListCount(); ++i) candidatos << filImagens->List(i);
    if (filImagens->Path().isEmpty() || candidatos.isEmpty()) return;
    Semeia_Gerador();
    while (!candidatos.isEmpty()) {
        const int sorteado = Sorteia(static_cast<int>(candidatos.size()));
        const QString arquivo = QDir(filImagens->Path()).filePath(candidatos[sorteado]);
        // Every picture has the same chance, whatever its size: a library of small pictures is stretched
        // over the window as a large one is. Only a file that is no picture is passed over.
        const QImage imagem(arquivo);
        if (imagem.isNull()) {
            candidatos.removeAt(sorteado);
            Plataforma_Atual().Processa_Eventos();
            continue;
        }
        imgFundo->setPixmap(QPixmap::fromImage(imagem));
        if (muda_desktop) {
            const QString bitmap = Arquivo_Papel_de_Parede();
            QDir().mkpath(QFileInfo(bitmap).absolutePath());
            if (imagem.convertToFormat(QImage::Format_RGB32).save(bitmap, "BMP"))
                Plataforma_Atual().Muda_Papel_de_Parede(bitmap);
        }
        break;
    }
}
