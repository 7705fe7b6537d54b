#include "platform/Plataforma_Qt.h"

#include <QApplication>
#include <QCursor>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QHash>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QPixmap>
#include <QSoundEffect>
#include <QThread>
#include <QUrl>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "platform/Papel_de_Parede.h"
#include "platform/Sistema_de_Arquivos.h"

QString Texto_Para_Tela(const QString& texto) {
    QString saída = texto;
    saída.replace("\r\n", "\n");
    saída.replace('\r', '\n');
    return saída;
}

Plataforma_Qt::Plataforma_Qt(QStringList argumentos) : Argumentos(std::move(argumentos)) {
    Fixa_Fuso_Horário();
}

void Plataforma_Qt::Fixa_Fuso_Horário() {
    // Without TZ the C library looks at /etc/localtime again at every local-time conversion, which is
    // three times a row when a report walks dated rows; naming the same file reads it once.
    if (qEnvironmentVariableIsEmpty("TZ")) {
        qputenv("TZ", ":/etc/localtime");
        tzset();
    }
}

Resposta_Caixa Plataforma_Qt::Caixa_Mensagem(const QString& texto, const QString& título, Ícone_Caixa ícone,
                                             Botões_Caixa botões) {
    QMessageBox caixa(QApplication::activeWindow());
    caixa.setWindowTitle(título);
    caixa.setText(Texto_Para_Tela(texto));
    switch (ícone) {
        case Ícone_Caixa::Informação:
            caixa.setIcon(QMessageBox::Information);
            break;
        case Ícone_Caixa::Exclamação:
            caixa.setIcon(QMessageBox::Warning);
            break;
        case Ícone_Caixa::Pergunta:
            caixa.setIcon(QMessageBox::Question);
            break;
        case Ícone_Caixa::Crítico:
            caixa.setIcon(QMessageBox::Critical);
            break;
        case Ícone_Caixa::Nenhum:
            break;
    }
    switch (botões) {
        case Botões_Caixa::Ok:
            caixa.setStandardButtons(QMessageBox::Ok);
            break;
        case Botões_Caixa::Ok_Cancelar:
            caixa.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
            break;
        case Botões_Caixa::Sim_Não:
            caixa.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            break;
        case Botões_Caixa::Sim_Não_Cancelar:
            caixa.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            break;
        case Botões_Caixa::Tentar_Sair:
            caixa.setStandardButtons(QMessageBox::Retry | QMessageBox::Close);
            // Escape keeps the program: leaving it is a click on Sair, never a key pressed by chance.
            caixa.setDefaultButton(QMessageBox::Retry);
            caixa.setEscapeButton(QMessageBox::Retry);
            break;
    }
    if (auto* b = caixa.button(QMessageBox::Ok)) b->setText("OK");
    if (auto* b = caixa.button(QMessageBox::Cancel)) b->setText("Cancelar");
    if (auto* b = caixa.button(QMessageBox::Yes)) b->setText("&Sim");
    if (auto* b = caixa.button(QMessageBox::No)) b->setText("&Não");
    if (auto* b = caixa.button(QMessageBox::Retry)) b->setText("&Tentar de novo");
    if (auto* b = caixa.button(QMessageBox::Close)) b->setText("&Sair");
    // The busy cursor as asked until now, made before the box puts the arrow over it: the events the box
    // lets through would otherwise make it on the arrow.
    Acerta_Cursor();
    const bool trocado = Cursor_Trocado;
    if (trocado) QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int r = caixa.exec();
    if (trocado) QApplication::restoreOverrideCursor();
    switch (r) {
        case QMessageBox::Cancel:
        case QMessageBox::Close:
            return Resposta_Caixa::Cancelar;
        case QMessageBox::Yes:
            return Resposta_Caixa::Sim;
        case QMessageBox::No:
            return Resposta_Caixa::Não;
        default:
            return Resposta_Caixa::Ok;
    }
}

QString Plataforma_Qt::Caixa_Entrada(const QString& texto, const QString& título, const QString& padrão) {
    bool ok = false;
    const QString r = QInputDialog::getText(QApplication::activeWindow(), título, Texto_Para_Tela(texto),
                                            QLineEdit::Normal, padrão, &ok);
    return ok ? r : QString();
}

QString Plataforma_Qt::Escolhe_Arquivo(const QString& título, const QString& filtro, const QString& sugestão,
                                       bool para_gravar) {
    // Qt's own dialog: the same on every desktop, and reachable by the accessibility tree.
    QFileDialog diálogo(QApplication::activeWindow(), título, sugestão, filtro);
    diálogo.setOption(QFileDialog::DontUseNativeDialog);
    diálogo.setAcceptMode(para_gravar ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    diálogo.setFileMode(para_gravar ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    diálogo.setLabelText(QFileDialog::LookIn, "Examinar:");
    diálogo.setLabelText(QFileDialog::FileName, "Nome do arquivo:");
    diálogo.setLabelText(QFileDialog::FileType, "Tipo do arquivo:");
    diálogo.setLabelText(QFileDialog::Accept, para_gravar ? "&Salvar" : "&Abrir");
    diálogo.setLabelText(QFileDialog::Reject, "&Cancelar");
    if (diálogo.exec() != QDialog::Accepted || diálogo.selectedFiles().isEmpty()) return QString();
    return diálogo.selectedFiles().constFirst();
}

int Plataforma_Qt::Mostra_Modal(QDialog* janela) {
    return janela->exec();
}

void Plataforma_Qt::Bipe() {
    QApplication::beep();
}

void Plataforma_Qt::Toca_Som(const QString& arquivo) {
    if (!QFileInfo::exists(arquivo)) return;
    // One effect per file, kept alive so the sound plays to its end.
    static QHash<QString, QSoundEffect*> efeitos;
    QSoundEffect*& efeito = efeitos[arquivo];
    if (efeito == nullptr) {
        efeito = new QSoundEffect(qApp);
        efeito->setSource(QUrl::fromLocalFile(arquivo));
    }
    efeito->play();
}

void Plataforma_Qt::Abre_Com_Aplicativo(const QString& caminho_ou_endereço) {
    const QUrl url = caminho_ou_endereço.contains(':') && !caminho_ou_endereço.startsWith('/')
                         ? QUrl(caminho_ou_endereço)
                         : QUrl::fromLocalFile(caminho_ou_endereço);
    QDesktopServices::openUrl(url);
}

void Plataforma_Qt::Dorme(int milissegundos) {
    QThread::msleep(static_cast<unsigned long>(milissegundos));
}

void Plataforma_Qt::Processa_Eventos() {
    Acerta_Cursor();
    QApplication::processEvents();
    Desde_Os_Eventos.start();
}

void Plataforma_Qt::Processa_Eventos_Da_Caminhada() {
    if (!Desde_Os_Eventos.isValid() || Desde_Os_Eventos.elapsed() >= 5) Processa_Eventos();
}

// The desktop's cursor made as the calls since the events last passed left it: normal again, or the
// icon asked last.
void Plataforma_Qt::Acerta_Cursor() {
    if (Cursor_A_Restaurar) {
        Cursor_A_Restaurar = false;
        QApplication::restoreOverrideCursor();
        Cursor_Trocado = false;
        return;
    }
    if (Cursor_Trocado && Cursor_Atual != Cursor_Pedido) {
        QApplication::changeOverrideCursor(Cursor_Do_Ícone(Cursor_Pedido));
        Cursor_Atual = Cursor_Pedido;
    }
}

void Plataforma_Qt::Pede_Acerto() {
    if (Acerto_Pedido) return;
    Acerto_Pedido = true;
    QMetaObject::invokeMethod(
        &Contexto_Cursor,
        [this] {
            Acerto_Pedido = false;
            Acerta_Cursor();
        },
        Qt::QueuedConnection);
}

QCursor Plataforma_Qt::Cursor_Do_Ícone(const QString& ícone) {
    const QString arquivo = Caminho_Programa() + "/Ícones/" + ícone;
    auto achado = Cursores.constFind(arquivo);
    if (achado == Cursores.constEnd()) {
        const QPixmap imagem(arquivo);
        achado = Cursores.insert(arquivo, imagem.isNull() ? QCursor(Qt::WaitCursor) : QCursor(imagem, 0, 0));
    }
    return *achado;
}

void Plataforma_Qt::Cursor_Ocupado(const QString& ícone) {
    Cursor_A_Restaurar = false;
    Cursor_Pedido = ícone;
    // A walk takes a busy cursor at every row, often two icons in turn (its progress, its printing): while
    // one is up, the other is put up when the events next pass, which is when the desktop would show it.
    if (Cursor_Trocado) {
        if (Cursor_Atual != ícone) Pede_Acerto();
        return;
    }
    QApplication::setOverrideCursor(Cursor_Do_Ícone(ícone));
    Cursor_Trocado = true;
    Cursor_Atual = ícone;
}

void Plataforma_Qt::Cursor_Normal() {
    if (!Cursor_Trocado || Cursor_A_Restaurar) return;
    // Put back when the events pass, unless a busy cursor is taken again before. One queued call serves
    // a whole walk, whose every row takes and gives back the cursor.
    Cursor_A_Restaurar = true;
    Pede_Acerto();
}

QDateTime Plataforma_Qt::Agora() {
    return QDateTime::currentDateTime();
}

float Plataforma_Qt::Segundos_Desde_Meia_Noite() {
    const QTime agora = QTime::currentTime();
    return static_cast<float>(agora.msecsSinceStartOfDay()) / 1000.0f;
}

void Plataforma_Qt::Semeia(float semente) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &semente, sizeof bits);
    Gerador.seed(bits);
}

double Plataforma_Qt::Aleatório() {
    const double x = std::generate_canonical<double, 53>(Gerador);
    return x < 1.0 ? x : 0.0;
}

bool Plataforma_Qt::Linha_Comando_Vazia() {
    return Argumentos.size() <= 1;
}

void Plataforma_Qt::Encerra_Agora(int código) {
    std::_Exit(código);
}

bool Plataforma_Qt::Muda_Papel_de_Parede(const QString& arquivo_bitmap) {
    Meios_Sessão sessão;
    return !Aplica_Papel_de_Parede(arquivo_bitmap, sessão).isEmpty();
}

QString Plataforma_Qt::Sistema_de_Arquivos(const QString& pasta) {
    return Sistema_de_Arquivos_Da_Pasta(pasta);
}
