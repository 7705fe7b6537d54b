#include "utilities/Zip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <zip.h>

bool Descompacta_Arquivo(const QString& Arquivo_Zip, const QString& Máscara, const QString& Destino,
                         bool Restaura_Estrutura) {
    int erro = 0;
    const QByteArray nome = QFile::encodeName(Arquivo_Zip);
    zip_t* arquivo = zip_open(nome.constData(), ZIP_RDONLY | ZIP_CHECKCONS, &erro);
    if (arquivo == nullptr) {
        Resultado_Zip = static_cast<short>(erro);
        return false;
    }
    const QString padrão = Máscara == "*.*" ? QString("*") : Máscara;
    const QRegularExpression filtro(QRegularExpression::wildcardToRegularExpression(padrão),
                                    QRegularExpression::CaseInsensitiveOption);
    bool ok = true;
    const zip_int64_t total = zip_get_num_entries(arquivo, 0);
    for (zip_int64_t i = 0; i < total && ok; ++i) {
        const QString interno = QString::fromUtf8(zip_get_name(arquivo, static_cast<zip_uint64_t>(i), 0));
        if (interno.endsWith('/')) continue;
        const QString só_nome = QFileInfo(interno).fileName();
        if (!filtro.match(só_nome).hasMatch()) continue;
        // Names that would climb out of the folder are taken by their last part only.
        const QString relativo = Restaura_Estrutura && !interno.contains("..") ? interno : só_nome;
        const QString caminho = Destino + "/" + relativo;
        QDir().mkpath(QFileInfo(caminho).absolutePath());
        zip_file_t* entrada = zip_fopen_index(arquivo, static_cast<zip_uint64_t>(i), 0);
        if (entrada == nullptr) {
            ok = false;
            break;
        }
        QSaveFile saída(caminho);
        ok = saída.open(QIODevice::WriteOnly);
        char bloco[65536];
        zip_int64_t lidos = 0;
        while (ok && (lidos = zip_fread(entrada, bloco, sizeof bloco)) > 0)
            ok = saída.write(bloco, lidos) == lidos;
        if (lidos < 0) ok = false;
        zip_fclose(entrada);
        ok = ok && saída.commit();
        if (!ok) saída.cancelWriting();
    }
    zip_close(arquivo);
    Resultado_Zip = ok ? 0 : -1;
    return ok;
}
