#include "forms/Listas_Arquivos.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QStyle>

#include "platform/Sistema_de_Arquivos.h"

namespace {
// "/" for the root; the last folder's name otherwise, after the full path.
QString Texto_Local(const QString& local, const QString& pasta_pessoal) {
    if (local == "/") return "/  (raiz)";
    if (local == pasta_pessoal) return local + "  (pasta pessoal)";
    return local;
}
}  // namespace

bool Pasta_Legível(const QString& caminho) {
    if (caminho.trimmed().isEmpty()) return false;
    const QFileInfo pasta(caminho);
    return pasta.isDir() && pasta.isReadable() && pasta.isExecutable();
}

QStringList Locais_de_Imagens(const QString& montagens, const QString& pasta_pessoal) {
    QStringList locais = {"/"};
    if (!pasta_pessoal.isEmpty() && pasta_pessoal != "/") locais << QDir::cleanPath(pasta_pessoal);
    QStringList outros;
    for (const Montagem& montagem : Montagens_Da_Tabela(montagens)) {
        const QString& ponto = montagem.Ponto;
        const bool removível =
            ponto.startsWith("/media/") || ponto.startsWith("/run/media/") || ponto.startsWith("/mnt/");
        if ((removível || Sistema_de_Arquivos_de_Rede(montagem.Tipo)) && !locais.contains(ponto) &&
            !outros.contains(ponto))
            outros << ponto;
    }
    outros.sort();
    return locais + outros;
}

Lista_Unidades::Lista_Unidades(QWidget* pai) : QComboBox(pai) {
    setEditable(false);
    Atualiza();
    QObject::connect(this, &QComboBox::currentIndexChanged, this, [this] {
        if (!Mudando && Ao_Mudar) Ao_Mudar();
    });
}

void Lista_Unidades::Atualiza() {
    const QString pessoal = QDir::homePath();
    Mudando = true;
    clear();
    for (const QString& local : Locais_de_Imagens(Tabela_De_Montagens(), pessoal))
        addItem(Texto_Local(local, pessoal), local);
    Mudando = false;
}

QString Lista_Unidades::Drive() const {
    return currentIndex() < 0 ? QString() : currentData().toString();
}

void Lista_Unidades::Set_Drive(const QString& caminho) {
    const QString alvo = QDir::cleanPath(caminho);
    int melhor = -1;
    int tamanho = -1;
    for (int i = 0; i < count(); ++i) {
        const QString local = itemData(i).toString();
        const bool contém = local == "/" || alvo == local || alvo.startsWith(local + "/");
        if (contém && local.size() > tamanho) {
            melhor = i;
            tamanho = local.size();
        }
    }
    // Following a folder is no change of place: the folder list is not pointed back at the place's root.
    Mudando = true;
    if (melhor >= 0 && melhor != currentIndex()) setCurrentIndex(melhor);
    Mudando = false;
}

Lista_Pastas::Lista_Pastas(QWidget* pai) : QListWidget(pai) {
    QObject::connect(this, &QListWidget::itemDoubleClicked, this,
                     [this](QListWidgetItem* item) { Entra(item); });
}

bool Lista_Pastas::Set_Path(const QString& caminho) {
    if (!Pasta_Legível(caminho)) return false;
    const QString novo = QDir::cleanPath(QFileInfo(caminho).absoluteFilePath());
    clear();
    // The folders from the root down to this one, open, and then the folders inside it, as a tree
    // seen from where the user stands; each is entered by a double click or the space bar.
    const QIcon aberta = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon fechada = style()->standardIcon(QStyle::SP_DirIcon);
    QStringList acima = novo.split('/', Qt::SkipEmptyParts);
    QString parcial;
    auto* raiz = new QListWidgetItem(aberta, "/", this);
    raiz->setData(Qt::UserRole, QString("/"));
    QListWidgetItem* atual = raiz;
    for (int nível = 0; nível < acima.size(); ++nível) {
        parcial += "/" + acima[nível];
        atual = new QListWidgetItem(aberta, QString(2 * (nível + 1), ' ') + acima[nível], this);
        atual->setData(Qt::UserRole, parcial);
        atual->setData(Qt::AccessibleTextRole, acima[nível]);
    }
    QFont negrito = font();
    negrito.setBold(true);
    atual->setFont(negrito);
    const QString recuo(2 * (acima.size() + 1), ' ');
    const QDir pasta(novo);
    for (const QString& nome :
         pasta.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto* item = new QListWidgetItem(fechada, recuo + nome, this);
        item->setData(Qt::UserRole, pasta.filePath(nome));
        item->setData(Qt::AccessibleTextRole, nome);
    }
    setCurrentItem(atual);
    scrollToItem(atual);
    const bool mudou = novo != Caminho;
    Caminho = novo;
    if (mudou && Ao_Mudar) Ao_Mudar();
    return true;
}

void Lista_Pastas::Entra(QListWidgetItem* item) {
    if (item != nullptr) Set_Path(item->data(Qt::UserRole).toString());
}

void Lista_Pastas::keyPressEvent(QKeyEvent* evento) {
    // Space opens the folder under the cursor; Enter stays the window's, which moves to the next control.
    if (evento->key() == Qt::Key_Space) {
        Entra(currentItem());
        return;
    }
    // Typing a folder's first letters goes to it, as in any list, the indentation aside.
    const QString texto = evento->text();
    if (!texto.isEmpty() && texto.at(0).isLetterOrNumber() && !(evento->modifiers() & Qt::ControlModifier)) {
        Busca += texto;
        if (!Relógio_Busca.isValid() || Relógio_Busca.elapsed() > 1000) Busca = texto;
        Relógio_Busca.start();
        for (int i = 0; i < count(); ++i)
            if (item(i)->text().trimmed().startsWith(Busca, Qt::CaseInsensitive)) {
                setCurrentRow(i);
                scrollToItem(item(i));
                return;
            }
        return;
    }
    QListWidget::keyPressEvent(evento);
}

void Lista_Pastas::focusInEvent(QFocusEvent* evento) {
    QListWidget::focusInEvent(evento);
    if (Ao_Receber_Foco) Ao_Receber_Foco();
}

Lista_Arquivos::Lista_Arquivos(QWidget* pai) : QListWidget(pai) {}

void Lista_Arquivos::Set_Path(const QString& caminho) {
    clear();
    Caminho = caminho;
    if (!Pasta_Legível(caminho)) return;
    QStringList filtros;
    for (const QString& padrão : Pattern.split(';', Qt::SkipEmptyParts)) filtros << padrão.trimmed();
    QDir pasta(caminho);
    pasta.setNameFilters(filtros);
    pasta.setFilter(QDir::Files | QDir::Readable);
    pasta.setSorting(QDir::Name | QDir::IgnoreCase);
    addItems(pasta.entryList());
}

QString Lista_Arquivos::List(int índice) const {
    const QListWidgetItem* linha = item(índice);
    return linha ? linha->text() : QString();
}
