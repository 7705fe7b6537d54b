#include "search/frmLocaliza_Informação.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "forms/Controles.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"
#include "store/Tradutor_SQL.h"

namespace {
enum Classe { Numérica, Texto, Data, Booleana, Outra };

Classe Classe_do_Tipo(int tipo) {
    switch (tipo) {
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 14:
        case 16:
        case 20:
        case 131:
        case 204:
        case 205:
            return Numérica;
        case 8:
        case 129:
        case 130:
        case 200:
        case 201:
        case 202:
        case 203:
            return Texto;
        case 7:
        case 133:
        case 134:
        case 135:
            return Data;
        case 11:
            return Booleana;
        default:
            return Outra;
    }
}

// An item of the field lists: the name padded to 64 characters and the field's position; the first field
// gets a leading blank, so that the sorted list shows it first.
QString Item_Campo(const QString& nome, int posição) {
    return (posição == 0 ? " " : "") + nome.trimmed().leftJustified(64, ' ', true) + QString::number(posição);
}

QString Item(const QComboBox* combo) {
    return combo->currentIndex() < 0 ? QString() : combo->currentData().toString();
}

QString Nome_do_Item(const QString& item) {
    return item.left(64).trimmed();
}

int Posição_do_Item(const QString& item) {
    return item.mid(64, 10).trimmed().toInt();
}

QString Texto_do_Valor(const QVariant& valor) {
    if (!valor.isValid() || valor.isNull()) return QString();
    if (valor.typeId() == QMetaType::QDateTime) {
        const QDateTime momento = valor.toDateTime();
        return momento.time() == QTime(0, 0) ? momento.toString("dd/MM/yyyy")
                                             : momento.toString("dd/MM/yyyy HH:mm:ss");
    }
    if (valor.typeId() == QMetaType::QDate) return valor.toDate().toString("dd/MM/yyyy");
    if (valor.typeId() == QMetaType::Bool) return valor.toBool() ? "Verdadeiro" : "Falso";
    if (valor.typeId() == QMetaType::Double) return QString::number(valor.toDouble(), 'g', 15);
    return valor.toString();
}

// A page of the grid is read at once: its 14 rows and one more, the step past the page that tells
// whether there are more; the walk back over a page reads as much.
constexpr int Linhas_Lidas_Por_Página = 15;

const QStringList Títulos_Iniciais_Grade = {"Informação localizada no banco de dados...      ",
                                            "1º. campo a ser mostrado...  ", "2º. campo a ser mostrado... "};
}  // namespace

void Monta_Flex_Grid(Grade_Flex* Grade) {
    Rotina r(Fonte_Funções_Públicas, "Monta_Flex_Grid");
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    if (Grade->ColSel() == 0) Grade->Set_ColSel(1);
    if (Grade->RowSel() == 0) Grade->Set_RowSel(1);
    const int coluna_escolhida = Grade->ColSel();
    const int linha_escolhida = Grade->RowSel();
    for (int linha = 1; linha < Grade->Rows(); ++linha) {
        Grade->Set_Row(linha);
        if (linha % 2 != 0) continue;
        for (int coluna = 1; coluna < Grade->Cols(); ++coluna) {
            Grade->Set_Col(coluna);
            Grade->Set_CellBackColor(QColor(0xC0, 0xFF, 0xFF));
        }
    }
    Grade->Set_ColSel(coluna_escolhida);
    Grade->Set_RowSel(linha_escolhida);
}

frmLocaliza_Informação::frmLocaliza_Informação(QWidget* pai) : Formulário("frmLocaliza_Informação", pai) {
    Tópico_Ajuda = "Consulta";
    auto* coluna = new QVBoxLayout(this);

    fraLocaliza_Informação = new QGroupBox(this);
    fraLocaliza_Informação->setObjectName("fraLocaliza_Informação");
    auto* busca = new QGridLayout(fraLocaliza_Informação);
    auto combo = [this](const char* nome) {
        auto* c = new QComboBox(this);
        c->setObjectName(QString::fromUtf8(nome));
        c->setMinimumWidth(220);
        return c;
    };
    Frame2 = new QGroupBox("Selecione os campos a serem mostrados nesta tela de consulta:", this);
    Frame2->setObjectName("Frame2");
    auto* mostrados = new QHBoxLayout(Frame2);
    cboCampo_a_Ser_Mostrado = combo("cboCampo_a_Ser_Mostrado");
    cboCampo_a_Ser_Mostrado_2 = combo("cboCampo_a_Ser_Mostrado_2");
    mostrados->addWidget(cboCampo_a_Ser_Mostrado);
    mostrados->addWidget(cboCampo_a_Ser_Mostrado_2);
    Frame1 = new QGroupBox("Selecione o campo que deseja pesquisar no banco de dados:", this);
    Frame1->setObjectName("Frame1");
    auto* pesquisado = new QHBoxLayout(Frame1);
    cboCampo_de_Pesquisa = combo("cboCampo_de_Pesquisa");
    pesquisado->addWidget(cboCampo_de_Pesquisa);

    fraCondição = new QGroupBox("Condição de pesquisa a ser efetuada:", this);
    fraCondição->setObjectName("fraCondição");
    auto* condições = new QGridLayout(fraCondição);
    // The operator in force stands out as a pressed button.
    fraCondição->setStyleSheet(
        "QPushButton:checked { background: #2f6db5; color: white; border: 1px solid #1d4f8c; border-radius: "
        "3px; }");
    const char* legendas[] = {
        "&= a...", "<> &de...", "> &que...", ">= &a...", "< q&ue...", "<= a&...", "&Em qualquer posição..."};
    for (int i = 0; i < 7; ++i) {
        optOpção[i] = new QPushButton(QString::fromUtf8(legendas[i]), fraCondição);
        optOpção[i]->setObjectName(QString("optOpção_%1").arg(i));
        optOpção[i]->setCheckable(true);
        optOpção[i]->setAutoDefault(false);
        condições->addWidget(optOpção[i], i / 4, i % 4, 1, i == 6 ? 2 : 1);
        QObject::connect(optOpção[i], &QPushButton::clicked, this, [this, i] { optOpção_Click(i); });
    }

    fraGrupo = new QGroupBox("Digite a informação que será pesquisada no banco de dados:", this);
    fraGrupo->setObjectName("fraGrupo");
    auto* grupo = new QHBoxLayout(fraGrupo);
    txtConteúdo = new QLineEdit(fraGrupo);
    txtConteúdo->setObjectName("txtConteúdo");
    txtConteúdo->setMaxLength(100);
    nbConteúdo = new Caixa_Número(fraGrupo);
    nbConteúdo->setObjectName("nbConteúdo");
    dbConteúdo = new Caixa_Data(fraGrupo);
    dbConteúdo->setObjectName("dbConteúdo");
    grupo->addWidget(txtConteúdo, 1);
    grupo->addWidget(nbConteúdo, 1);
    grupo->addWidget(dbConteúdo);
    for (int i = 0; i < 2; ++i) {
        optConteúdo[i] = new QRadioButton(i == 0 ? "Verdadeiro" : "Falso", fraGrupo);
        optConteúdo[i]->setObjectName(QString("optConteúdo_%1").arg(i));
        grupo->addWidget(optConteúdo[i]);
        QObject::connect(optConteúdo[i], &QRadioButton::clicked, this, [this, i] {
            Conteúdo = i == 0;
            Desenha_Pesquisa();
        });
    }
    grupo->addStretch();

    busca->addWidget(Frame2, 0, 0, 1, 2);
    busca->addWidget(Frame1, 1, 0);
    busca->addWidget(fraCondição, 1, 1, 2, 1);
    busca->addWidget(fraGrupo, 2, 0);
    Label2 = Rótulo("Label2", "Pesquisando por...");
    lblPesquisa = Rótulo("lblPesquisa");
    QFont negrito = lblPesquisa->font();
    negrito.setBold(true);
    lblPesquisa->setFont(negrito);
    auto* linha_pesquisa = new QHBoxLayout;
    linha_pesquisa->addWidget(Label2);
    linha_pesquisa->addWidget(lblPesquisa, 1);
    busca->addLayout(linha_pesquisa, 3, 0, 1, 2);
    coluna->addWidget(fraLocaliza_Informação);

    flxLocaliza = new Grade_Flex(this);
    flxLocaliza->setObjectName("flxLocaliza");
    flxLocaliza->Set_Rows(15);
    flxLocaliza->Set_Cols(4);
    flxLocaliza->setMinimumHeight(15 * (fontMetrics().height() + 6) + 6);
    coluna->addWidget(flxLocaliza, 1);
    flxLocaliza->Ao_Clicar = [this] { flxLocaliza_Click(); };

    cmdOk = Botão("cmdOk", "&OK");
    cmdPróximos_14 = Botão("cmdPróximos_14", "Pró&ximos 14");
    cmdÚltimos_14 = Botão("cmdÚltimos_14", "Ú&ltimos 14");
    cmdSair = Botão("cmdSair", "&Sair");
    for (QPushButton* b : {cmdOk, cmdÚltimos_14, cmdPróximos_14, cmdSair}) b->setMinimumSize(110, 32);
    Define_CausesValidation(cmdSair, false);
    coluna->addLayout(Linha_Botões({cmdOk, cmdÚltimos_14, cmdPróximos_14, cmdSair}));

    QObject::connect(cboCampo_de_Pesquisa, &QComboBox::currentIndexChanged, this,
                     [this] { cboCampo_de_Pesquisa_Click(); });
    QObject::connect(txtConteúdo, &QLineEdit::textChanged, this, [this] {
        Conteúdo = txtConteúdo->text();
        Desenha_Pesquisa();
    });
    QObject::connect(nbConteúdo, &QLineEdit::textChanged, this, [this] {
        Conteúdo = nbConteúdo->Value();
        Desenha_Pesquisa();
    });
    QObject::connect(dbConteúdo, &QLineEdit::textChanged, this, [this] {
        Conteúdo = dbConteúdo->Vazia() ? QString("is null") : "#" + dbConteúdo->Text() + "#";
        Desenha_Pesquisa();
    });
    for (QComboBox* mostrado : {cboCampo_a_Ser_Mostrado, cboCampo_a_Ser_Mostrado_2}) {
        Instala_Validate(mostrado, [this, mostrado](bool& Cancel) {
            if (cmdSair->isDown()) {
                Cancel = true;
                return;
            }
            (mostrado == cboCampo_a_Ser_Mostrado ? Campo_Mostrado_1 : Campo_Mostrado_2) =
                Nome_do_Item(Item(mostrado));
        });
    }
    QObject::connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    QObject::connect(cmdPróximos_14, &QPushButton::clicked, this, [this] { cmdPróximos_14_Click(); });
    QObject::connect(cmdÚltimos_14, &QPushButton::clicked, this, [this] { cmdÚltimos_14_Click(); });
    QObject::connect(cmdSair, &QPushButton::clicked, this, [this] { cmdSair_Click(); });
    cmdPróximos_14->installEventFilter(this);
    cmdÚltimos_14->installEventFilter(this);

    resize(940, 640);
    Form_Load();
}

bool frmLocaliza_Informação::eventFilter(QObject* objeto, QEvent* evento) {
    // A message box or a menu taking the focus is not a change of direction.
    const auto razão = evento->type() == QEvent::FocusOut ? static_cast<QFocusEvent*>(evento)->reason()
                                                          : Qt::OtherFocusReason;
    if (evento->type() == QEvent::FocusOut && razão != Qt::ActiveWindowFocusReason &&
        razão != Qt::PopupFocusReason) {
        if (objeto == cmdPróximos_14) cmdPróximos_14_LostFocus();
        if (objeto == cmdÚltimos_14) cmdÚltimos_14_LostFocus();
    }
    return Formulário::eventFilter(objeto, evento);
}

void frmLocaliza_Informação::Títulos_Iniciais() {
    flxLocaliza->Set_FormatString("<" + Títulos_Iniciais_Grade[0] + "|<" + Títulos_Iniciais_Grade[1] + "|<" +
                                  Títulos_Iniciais_Grade[2]);
    flxLocaliza->setColumnWidth(0, 380);
    flxLocaliza->setColumnWidth(1, 220);
    flxLocaliza->setColumnWidth(2, 220);
    flxLocaliza->setColumnWidth(3, 60);
    flxLocaliza->horizontalHeader()->setStretchLastSection(true);
}

void frmLocaliza_Informação::Form_Load() {
    Rotina r(this, "Form_Load");
    Nome_Janela = objectName();
    Encerra_Resultado_Localizado();
    setWindowIcon(QIcon());
    setWindowTitle("Localizar...");

    QStringList itens;
    for (int posição = 0; posição < Tabela_Pesquisa.Fields_Count(); ++posição)
        itens << Item_Campo(Tabela_Pesquisa.Fields(posição).Name(), posição);
    std::sort(itens.begin(), itens.end(),
              [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    for (QComboBox* lista : {cboCampo_a_Ser_Mostrado, cboCampo_a_Ser_Mostrado_2, cboCampo_de_Pesquisa}) {
        const QSignalBlocker bloqueio(lista);
        for (const QString& item : itens) lista->addItem(Nome_do_Item(item), item);
        lista->setCurrentIndex(-1);
    }

    flxLocaliza->Clear();
    Títulos_Iniciais();
    Monta_Flex_Grid(flxLocaliza);
    Carregando = true;

    // The criterion of this user for this table, else the first one of any user.
    bool tem_critério = false;
    const QString tabela = Tabela_Pesquisa.Source.mid(3, 50);
    if (Tabela.Source != "tblManutenção_Banco_de_Dados" && Tabela_Critério_de_Consulta.Aberto()) {
        Tabela_Critério_de_Consulta.Seek(QVariantList{tabela, Usuário_Atual}, Tipo_Busca::Primeiro_Igual);
        tem_critério = !Tabela_Critério_de_Consulta.Eof();
        if (!tem_critério) {
            Tabela_Critério_de_Consulta.Seek(QVariantList{tabela, " "}, Tipo_Busca::Depois);
            tem_critério =
                !Tabela_Critério_de_Consulta.Eof() &&
                Tabela_Critério_de_Consulta.Fields("Tabela").Value().toString().trimmed() == tabela.trimmed();
        }
    }
    auto escolhe_posição = [](QComboBox* lista, int posição) {
        for (int i = 0; i < lista->count(); ++i)
            if (Posição_do_Item(lista->itemData(i).toString()) == posição) {
                lista->setCurrentIndex(i);
                return;
            }
    };
    if (!tem_critério) {
        cboCampo_de_Pesquisa->setCurrentIndex(0);
        cboCampo_a_Ser_Mostrado->setCurrentIndex(std::min(1, cboCampo_a_Ser_Mostrado->count() - 1));
        cboCampo_a_Ser_Mostrado_2->setCurrentIndex(std::min(cboCampo_a_Ser_Mostrado_2->count() == 2 ? 1 : 2,
                                                            cboCampo_a_Ser_Mostrado_2->count() - 1));
    } else {
        escolhe_posição(cboCampo_de_Pesquisa,
                        Tabela_Critério_de_Consulta.Fields("Campo_de_Pesquisa").Value().toInt());
        escolhe_posição(cboCampo_a_Ser_Mostrado,
                        Tabela_Critério_de_Consulta.Fields("Primeiro_Campo_de_Consulta").Value().toInt());
        escolhe_posição(cboCampo_a_Ser_Mostrado_2,
                        Tabela_Critério_de_Consulta.Fields("Segundo_Campo_de_Consulta").Value().toInt());
    }

    for (QPushButton* opção : optOpção) opção->setChecked(false);
    optOpção_Click(Usuário_Atual == "Ornelio Varga" ? 6 : 3);
    cmdÚltimos_14->setEnabled(false);
    cmdPróximos_14->setEnabled(false);
    Código_Escolhido = 0;
    Navegação.clear();
    Campo_Mostrado_1 = Nome_do_Item(Item(cboCampo_a_Ser_Mostrado));
    Campo_Mostrado_2 = Nome_do_Item(Item(cboCampo_a_Ser_Mostrado_2));

    // Rows prepared by Encontrou_Informação, only while it shows the dialog as its list: a later
    // search from a register must not find the rows of an earlier look-up.
    Linhas_Localizadas = 0;
    for (int i = 0; i < 15 && Em_Lista_Encontrou; ++i) {
        if (Lista_Código[i] == 0) continue;
        ++Linhas_Localizadas;
        flxLocaliza->Set_TextMatrix(Linhas_Localizadas, 0, Lista_Texto[i]);
        flxLocaliza->Set_TextMatrix(Linhas_Localizadas, 3, QString::number(Lista_Código[i]));
    }
    if (Linhas_Localizadas != 0) {
        Abre_Tabela_Dynaset(Comando_SQL, Conexão.ConnectionString);
        cmdPróximos_14->setEnabled(true);
    }
}

int frmLocaliza_Informação::Classe_Campo(const QString& nome) const {
    for (int posição = 0; posição < Tabela_Pesquisa.Fields_Count(); ++posição)
        if (Tabela_Pesquisa.Fields(posição).Name() == nome)
            return Classe_do_Tipo(Tabela_Pesquisa.Fields(posição).Type());
    return Outra;
}

void frmLocaliza_Informação::cboCampo_de_Pesquisa_Click() {
    Rotina r(this, "cboCampo_de_Pesquisa_Click");
    nbConteúdo->hide();
    txtConteúdo->hide();
    dbConteúdo->hide();
    optConteúdo[0]->hide();
    optConteúdo[1]->hide();
    const QString item = Item(cboCampo_de_Pesquisa);
    Campo_Pesquisa = (item.startsWith(' ') ? item.mid(1, 64) : item.left(64)).trimmed();
    QWidget* entrada = txtConteúdo;
    switch (Classe_Campo(Campo_Pesquisa)) {
        case Numérica:
            entrada = nbConteúdo;
            break;
        case Data:
            entrada = dbConteúdo;
            break;
        case Booleana:
            optConteúdo[1]->show();
            entrada = optConteúdo[0];
            break;
        default:
            break;
    }
    entrada->show();
    if (!Carregando) entrada->setFocus();
    Desenha_Pesquisa();
    Carregando = false;
}

void frmLocaliza_Informação::Desenha_Pesquisa() {
    QString valor = Conteúdo.toString();
    if (Conteúdo.typeId() == QMetaType::Bool) valor = Conteúdo.toBool() ? "Verdadeiro" : "Falso";
    if (Conteúdo.typeId() == QMetaType::Double) valor = QString::number(Conteúdo.toDouble(), 'g', 15);
    QString texto = " " + Campo_Pesquisa + " ";
    texto += Operador == "Like" ? "Sobrenome = " + valor : Operador + " " + valor;
    lblPesquisa->setText(texto);
}

void frmLocaliza_Informação::optOpção_Click(int Index) {
    static const char* operadores[] = {"=", "<>", ">", ">=", "<", "<=", "Like"};
    for (int i = 0; i < 7; ++i) optOpção[i]->setChecked(i == Index);
    Operador = QString::fromUtf8(operadores[Index]);
    Desenha_Pesquisa();
}

// A new page empties the codes too: a click on a row left empty must find nothing.
void frmLocaliza_Informação::Esvazia_Linhas(int colunas) {
    for (int linha = 1; linha <= 14; ++linha)
        for (int coluna = 0; coluna < colunas; ++coluna)
            flxLocaliza->Set_TextMatrix(linha, coluna, QString());
}

void frmLocaliza_Informação::Preenche_Linha(int linha) {
    const QVariant pesquisado = Tabela_Dynaset.Fields(Campo_Pesquisa).Value();
    const bool booleano = Classe_Campo(Campo_Pesquisa) == Booleana;
    flxLocaliza->Set_TextMatrix(
        linha, 0, booleano ? (pesquisado.toBool() ? "Verdadeiro" : "Falso") : Texto_do_Valor(pesquisado));
    flxLocaliza->Set_TextMatrix(linha, 1, Texto_do_Valor(Tabela_Dynaset.Fields(Campo_Mostrado_1).Value()));
    flxLocaliza->Set_TextMatrix(linha, 2, Texto_do_Valor(Tabela_Dynaset.Fields(Campo_Mostrado_2).Value()));
    flxLocaliza->Set_TextMatrix(0, 0, Campo_Pesquisa.leftJustified(48, ' ', true));
    flxLocaliza->Set_TextMatrix(0, 1, Campo_Mostrado_1.leftJustified(29, ' ', true));
    flxLocaliza->Set_TextMatrix(0, 2, Campo_Mostrado_2.leftJustified(28, ' ', true));
    flxLocaliza->Set_TextMatrix(linha, 3, Tabela_Dynaset.Fields(1).Value().toString());
}

void frmLocaliza_Informação::cmdOk_Click() {
    Rotina r(this, "cmdOk_Click");
    cmdÚltimos_14->setEnabled(true);
    cmdPróximos_14->setEnabled(true);
    if (!cmdOk->isEnabled()) return;
    Campo_Mostrado_1 = Nome_do_Item(Item(cboCampo_a_Ser_Mostrado));
    Campo_Mostrado_2 = Nome_do_Item(Item(cboCampo_a_Ser_Mostrado_2));

    const QString S = Tabela_Pesquisa.Source;
    const QString F = Campo_Pesquisa;
    const QString O = Operador;
    switch (Classe_Campo(F)) {
        case Numérica:
            Conteúdo = nbConteúdo->Value();
            Comando_SQL = "Select * From " + S + " Where " + F + " " + O + " " +
                          QString::number(nbConteúdo->Value(), 'g', 15);
            break;
        case Data:
            // A date that does not exist would otherwise read as an empty box and search for "is null".
            if (!dbConteúdo->Vazia() && !dbConteúdo->Value().isValid()) {
                Exibe_Mensagem(18);
                dbConteúdo->setFocus();
                return;
            }
            if (const QVariant data = dbConteúdo->Value(); data.isValid()) {
                const QDate d = data.toDate();
                Conteúdo = QString("#%1/%2/%3#").arg(d.month()).arg(d.day()).arg(d.year());
                Comando_SQL = "Select * From " + S + " Where " + F + " " + O + Conteúdo.toString();
            } else {
                Conteúdo = QString("is null");
                Comando_SQL = "Select * From " + S + " Where " + F + " is null";
            }
            break;
        case Booleana:
            Conteúdo = optConteúdo[0]->isChecked();
            Comando_SQL =
                "Select * From " + S + " Where " + F + " " + O + " " + (Conteúdo.toBool() ? "True" : "False");
            break;
        default:
            Conteúdo = txtConteúdo->text();
            if (O == "Like")
                Comando_SQL =
                    "Select * From " + S + " Where " + F + " Like " + Valor_Like_SQL(Conteúdo.toString());
            else
                Comando_SQL = "Select * From " + S + " Where " + F + " " + O + " " +
                              Valor_Texto_SQL(Conteúdo.toString());
            break;
    }
    // The label shows a date as the user typed it.
    if (Classe_Campo(F) == Data && dbConteúdo->Value().isValid()) Conteúdo = "#" + dbConteúdo->Text() + "#";
    Desenha_Pesquisa();

    Esvazia_Linhas(4);
    flxLocaliza->Set_TextMatrix(1, 0, "Pesquisando o banco de dados; aguarde...");
    repaint();
    Abre_Tabela_Dynaset(Comando_SQL, Conexão.ConnectionString);

    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Linhas_Localizadas = 0;
    flxLocaliza->Clear();
    Títulos_Iniciais();
    {
        Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
        if (!Tabela_Dynaset.Aberto() || (Tabela_Dynaset.Bof() && Tabela_Dynaset.Eof()))
            flxLocaliza->Set_TextMatrix(1, 0, "Nenhuma informação encontrada no banco de dados...");
        while (Tabela_Dynaset.Aberto() && !Tabela_Dynaset.Bof() && !Tabela_Dynaset.Eof() &&
               Linhas_Localizadas < 14) {
            ++Linhas_Localizadas;
            Preenche_Linha(Linhas_Localizadas);
            Tabela_Dynaset.MoveNext();
        }
        if (!Tabela_Dynaset.Bof() && !Tabela_Dynaset.Eof()) Tabela_Dynaset.MovePrevious();
    }
    if (Linhas_Localizadas < 14) {
        cmdÚltimos_14->setEnabled(false);
        cmdPróximos_14->setEnabled(false);
    }
    Monta_Flex_Grid(flxLocaliza);

    if (Linhas_Localizadas == 1) {
        // A single hit is taken at once, as a filter on its code.
        const QString raiz = S.mid(3);
        Abre_Tabela_Dynaset("Select * From tbl" + raiz + " Where Código_" + raiz + " = " +
                                QString::number(flxLocaliza->TextMatrix(1, 3).toLongLong()),
                            Conexão.ConnectionString);
        flxLocaliza->Set_Row(1);
        flxLocaliza->Set_RowSel(1);
        flxLocaliza_Click();
    }
}

void frmLocaliza_Informação::cmdPróximos_14_Click() {
    Rotina r(this, "cmdPróximos_14_Click");
    Navegação = "Navegando Próximos 14";
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
    Linhas_Localizadas = 0;
    if (Tabela_Dynaset.Bof())
        Tabela_Dynaset.MoveFirst();
    else if (!Tabela_Dynaset.Eof())
        Tabela_Dynaset.MoveNext();
    if (!Tabela_Dynaset.Eof()) Esvazia_Linhas(4);
    while (!Tabela_Dynaset.Bof() && !Tabela_Dynaset.Eof() && Linhas_Localizadas < 14) {
        ++Linhas_Localizadas;
        Preenche_Linha(Linhas_Localizadas);
        Tabela_Dynaset.MoveNext();
    }
    if (Tabela_Dynaset.Eof()) {
        cmdPróximos_14->setEnabled(false);
        Exibe_Mensagem(12);
    } else {
        cmdPróximos_14->setEnabled(true);
    }
    cmdÚltimos_14->setEnabled(true);
    Tabela_Dynaset.MovePrevious();
}

void frmLocaliza_Informação::cmdÚltimos_14_Click() {
    Rotina r(this, "cmdÚltimos_14_Click");
    Navegação = "Navegando Últimos 14";
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
    Linhas_Localizadas = 0;
    if (Tabela_Dynaset.Eof())
        Tabela_Dynaset.MoveLast();
    else if (!Tabela_Dynaset.Bof())
        Tabela_Dynaset.MovePrevious();
    if (!Tabela_Dynaset.Bof()) Esvazia_Linhas(4);
    // The page fills from the bottom of the grid up.
    while (!Tabela_Dynaset.Bof() && Linhas_Localizadas < 14) {
        ++Linhas_Localizadas;
        Preenche_Linha(15 - Linhas_Localizadas);
        Tabela_Dynaset.MovePrevious();
    }
    if (Tabela_Dynaset.Bof()) {
        cmdÚltimos_14->setEnabled(false);
        Exibe_Mensagem(11);
    } else {
        cmdÚltimos_14->setEnabled(true);
    }
    cmdPróximos_14->setEnabled(true);
}

// When the user changes direction, the cursor is first walked over the page on screen: back to its first
// row, from where "Últimos 14" steps to the page before, or forward to its last row, from where
// "Próximos 14" steps to the page after.
int frmLocaliza_Informação::Linhas_na_Tela() const {
    int linhas = 0;
    for (int linha = 1; linha <= 14; ++linha)
        if (!flxLocaliza->TextMatrix(linha, 3).isEmpty()) ++linhas;
    return linhas;
}

void frmLocaliza_Informação::cmdPróximos_14_LostFocus() {
    const int a_voltar = Linhas_na_Tela() - 1;
    Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
    Linhas_Localizadas = 0;
    while (!Tabela_Dynaset.Bof() && Linhas_Localizadas < a_voltar) {
        ++Linhas_Localizadas;
        Tabela_Dynaset.MovePrevious();
    }
}

void frmLocaliza_Informação::cmdÚltimos_14_LostFocus() {
    const int a_avançar = Linhas_na_Tela();
    Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
    Linhas_Localizadas = 0;
    while (!Tabela_Dynaset.Eof() && Linhas_Localizadas < a_avançar) {
        ++Linhas_Localizadas;
        Tabela_Dynaset.MoveNext();
    }
}

void frmLocaliza_Informação::flxLocaliza_Click() {
    Rotina r(this, "flxLocaliza_Click");
    Código_Escolhido = flxLocaliza->TextMatrix(flxLocaliza->Row(), 3).toInt();
    if (Código_Escolhido == 0) return;
    if (!Em_Lista_Encontrou) {
        const bool para_frente = Navegação.isEmpty() || Navegação == "Navegando Próximos 14";
        Página_Lida página(Tabela_Dynaset, Linhas_Lidas_Por_Página);
        if (para_frente) {
            Tabela_Dynaset.MoveFirst();
            while (!Tabela_Dynaset.Eof() && Tabela_Dynaset.Fields(1).Value().toInt() != Código_Escolhido)
                Tabela_Dynaset.MoveNext();
        } else {
            Tabela_Dynaset.MoveLast();
            while (!Tabela_Dynaset.Bof() && Tabela_Dynaset.Fields(1).Value().toInt() != Código_Escolhido)
                Tabela_Dynaset.MovePrevious();
        }
        Código_Localizado = Tabela_Dynaset.Fields(1).Value().toInt();
    }
    accept();
}

void frmLocaliza_Informação::cmdSair_Click() {
    reject();
}

void Facilita_Preenchimento(QWidget* Formulário, QLineEdit* Caixa, QLabel* Rótulo) {
    Rotina r(Formulário, "Facilita_Preenchimento");
    if (Operação != "Inclusão") return;
    Caixa->clear();
    Rótulo->setText("Digite as iniciais p/ pesquisar no banco de dados");
}

bool Encontrou_Informação(QString& Informação, QLineEdit* Caixa, const QString& Nome_Tabela,
                          const QString& Índice, const QString& Nome_Campo, QLabel* Rótulo, bool Falso) {
    (void)Falso;
    Rotina r(Fonte_Funções_Públicas, "Encontrou_Informação");
    Em_Encontrou = true;
    Ponteiro_Ocupado cursor(Ícone_Processamento);
    Lista_Texto.fill(QString());
    Lista_Código.fill(0);
    Informação = Informação.trimmed();
    Código_Escolhido = 0;
    Abre_Tabela_Pesquisa(Nome_Tabela);
    bool achou = false;

    auto busca_código = [&](int código) {
        Tabela_Pesquisa.Set_Index(Índice);
        Tabela_Pesquisa.Seek(código, Tipo_Busca::Primeiro_Igual);
        return !Tabela_Pesquisa.Eof();
    };
    bool é_número = false;
    const int número = Informação.toInt(&é_número);
    int tomadas = 0;
    // Step 6 runs after a number that was not found as well as after a search by name.
    bool escolhe = true;
    if (Informação == "0") {
        escolhe = false;
    } else if (é_número && número != 0) {
        Caixa->setText(QString::number(número));
        achou = busca_código(número);
        escolhe = !achou;
    } else {
        if (Informação.startsWith("!?!?")) Informação = Informação.mid(4);
        Rótulo->setText("Iniciando pesquisa no banco de dados...");
        Plataforma_Atual().Processa_Eventos();
        auto toma = [&](const QString& comando, bool só_início) {
            Tabela_Pesquisa.Reinicia();
            Tabela_Pesquisa.Open(comando, Conexão, Opção_Abertura::Texto);
            if (Tabela_Pesquisa.Aberto() && !(Tabela_Pesquisa.Bof() && Tabela_Pesquisa.Eof()))
                Tabela_Pesquisa.MoveFirst();
            while (Tabela_Pesquisa.Aberto() && !Tabela_Pesquisa.Eof() && tomadas < 14) {
                const QString nome = Tabela_Pesquisa.Fields(Nome_Campo).Value().toString();
                if (só_início && !nome.startsWith(Informação, Qt::CaseInsensitive)) break;
                Lista_Texto[tomadas] = nome.trimmed();
                Lista_Código[tomadas] = Tabela_Pesquisa.Fields(1).Value().toInt();
                ++tomadas;
                Tabela_Pesquisa.MoveNext();
            }
            Abre_Tabela_Pesquisa(Nome_Tabela);
            Tabela_Pesquisa.Set_Index(Índice);
        };
        // The walk stops at the first name that does not begin so: the names must come in order.
        Comando_SQL = "Select * From " + Nome_Tabela + " Where " + Nome_Campo +
                      " >= " + Valor_Texto_SQL(Informação) + " Order By " + Nome_Campo;
        toma(Comando_SQL, true);
        if (tomadas == 0) {
            Comando_SQL = "Select * From " + Nome_Tabela + " Where " + Nome_Campo + " Like " +
                          Valor_Like_SQL(Informação);
            toma(Comando_SQL, false);
        }
        if (tomadas == 1) {
            Informação = QString::number(Lista_Código[0]);
            achou = busca_código(Lista_Código[0]);
            escolhe = false;
        }
    }
    if (escolhe && (Informação.isEmpty() || Operação != "Consulta")) {
        Em_Lista_Encontrou = true;
        {
            frmLocaliza_Informação lista(Caixa->window());
            Plataforma_Atual().Mostra_Modal(&lista);
        }
        Em_Lista_Encontrou = false;
        if (Código_Escolhido != 0) {
            Informação = QString::number(Código_Escolhido);
            Abre_Tabela_Pesquisa(Nome_Tabela);
            achou = busca_código(Código_Escolhido);
        }
    }
    if (achou && !(é_número && número != 0 && Código_Escolhido == 0))
        Caixa->setText(Tabela_Pesquisa.Fields(Nome_Campo).Value().toString().trimmed());

    if (achou) {
        const QString nome = Tabela_Pesquisa.Fields(Nome_Campo).Value().toString().trimmed();
        const QString primeiro = Tabela_Pesquisa.Fields(0).Value().toString().trimmed();
        Rótulo->setText(primeiro != nome ? nome + " - " + primeiro : nome);
    } else {
        Rótulo->setText("Código não encontrado no sistema! Tente novamente");
    }
    Em_Lista_Encontrou = false;
    Em_Encontrou = false;
    return achou;
}
