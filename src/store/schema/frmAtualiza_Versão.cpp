#include "store/schema/frmAtualiza_Versão.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <optional>

#include "common/Globais.h"
#include "forms/Formulário.h"
#include "failure/Mensagens.h"
#include "failure/Rotina.h"
#include "failure/Trata_Erro.h"
#include "forms/Formatação.h"
#include "platform/Plataforma.h"
#include "store/Catálogo.h"
#include "store/Funções_Banco.h"
#include "store/Sessão_Servidor.h"
#include "store/schema/Esquema.h"
#include "statistics/Estatísticas.h"
#include "utilities/Zip.h"

namespace {
// The server that this installation has already met, kept beside Servidor.txt: a folder that has started
// on its server once is no longer a workstation joining it.
QString Caminho_Servidor_Conhecido() {
    return Caminho_Dados() + "/Servidor_Conhecido.txt";
}

bool Estação_Conhece_Servidor(const QString& servidor) {
    QFile arquivo(Caminho_Servidor_Conhecido());
    return arquivo.open(QIODevice::ReadOnly) && QString::fromUtf8(arquivo.readAll()).trimmed() == servidor;
}

void Marca_Servidor_Conhecido(const QString& servidor) {
    if (Estação_Conhece_Servidor(servidor)) return;
    QFile arquivo(Caminho_Servidor_Conhecido());
    if (arquivo.open(QIODevice::WriteOnly | QIODevice::Truncate)) arquivo.write(servidor.toUtf8() + "\n");
}

Ligação* const Sete_Conexões[] = {
    &Conexão,     &Conexão_Secundária, &Conexão_Terciária, &Conexão_Quaternária, &Conexão_Temporária,
    &Conexão_Dbf, &Conexão_Manutenção};

QString Versão_Programa() {
    return Versão_Comparável(Versão_Maior_Programa, Versão_Menor_Programa, Versão_Revisão_Programa);
}

Definição_Tabela Só_Campos(Definição_Tabela d, const QStringList& campos) {
    if (campos.isEmpty()) return d;
    QVector<Campo_Info> escolhidos;
    for (const QString& nome : campos) {
        bool achou = false;
        for (const Campo_Info& c : d.Campos)
            if (c.Nome == nome) {
                escolhidos << c;
                achou = true;
            }
        if (!achou) escolhidos << Longo(nome);
    }
    d.Campos = escolhidos;
    return d;
}
}  // namespace

frmAtualiza_Versão::frmAtualiza_Versão(QWidget* pai) : QDialog(pai) {
    setObjectName("frmAtualiza_Versão");
    Label1 = new QLabel(this);
    Label1->setObjectName("Label1");
    Label2 = new QLabel(this);
    Label2->setObjectName("Label2");
    Label3 = new QLabel("Sistema desenvolvido por", this);
    Label3->setObjectName("Label3");
    Label5 = new QLabel("Norvane Informática", this);
    Label5->setObjectName("Label5");
    Image1 = new QLabel(this);
    Image1->setObjectName("Image1");
    lblStatus = new QLabel("Atualizando informações do banco de dados...", this);
    lblStatus->setObjectName("lblStatus");
    pgbBarra_De_Progresso = new QProgressBar(this);
    pgbBarra_De_Progresso->setObjectName("pgbBarra_De_Progresso");
    tmrTempo = new QTimer(this);
    tmrTempo->setObjectName("tmrTempo");
    tmrTempo->setSingleShot(true);

    QFont grande = font();
    grande.setPointSize(grande.pointSize() * 2 + 4);
    grande.setBold(true);
    Label1->setFont(grande);
    QFont negrito = font();
    negrito.setBold(true);
    Label5->setFont(negrito);
    for (QLabel* l : {Label1, Label2, Label3, Label5, Image1, lblStatus}) l->setAlignment(Qt::AlignCenter);
    Image1->setPixmap(Figura_Programa(96));
    pgbBarra_De_Progresso->setMinimumWidth(520);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(28, 20, 28, 20);
    layout->setSpacing(8);
    layout->addWidget(Image1);
    layout->addWidget(Label1);
    layout->addWidget(Label2);
    layout->addSpacing(10);
    layout->addWidget(Label3);
    layout->addWidget(Label5);
    layout->addSpacing(14);
    layout->addWidget(lblStatus);
    layout->addWidget(pgbBarra_De_Progresso);

    QObject::connect(tmrTempo, &QTimer::timeout, this, [this] {
        tmrTempo_Timer();
        accept();
    });
    Form_Load();
}

void frmAtualiza_Versão::keyPressEvent(QKeyEvent* evento) {
    if (evento->key() == Qt::Key_Escape) return;
    QDialog::keyPressEvent(evento);
}

void frmAtualiza_Versão::Form_Load() {
    Nome_Janela = objectName();
    setWindowIcon(QIcon());
    setWindowTitle(" ");
    Label1->setText(Título_Programa);
    Label2->setText(Texto_Versão());
    Em_Cadastro = false;
    Comando_SQL.clear();
    Limpa_Cache_Lastrec();
    tmrTempo->setInterval(1);
    tmrTempo->start();
}

void frmAtualiza_Versão::tmrTempo_Timer() {
    Rotina r(this, "tmrTempo_Timer");
    // A server that does not answer leaves nothing to open: the user is told why, and the program ends.
    // The reason comes as a Portuguese sentence that names the server, with libpq's words as its detail.
    if (QString motivo; !Servidor_Disponível(motivo)) {
        Mensagem_Erro = motivo;
        Registra_Ocorrência(-2147467259, objectName(), "tmrTempo_Timer", 0);
        Plataforma_Atual().Caixa_Mensagem(motivo, Título_Programa, Ícone_Caixa::Crítico, Botões_Caixa::Ok);
        Plataforma_Atual().Encerra_Agora(1);
        return;
    }
    Auditoria_Anterior = Existe_Banco(Caminho_Banco_Manutenção());
    // A folder that cannot be written would let the program start and fail later at the login.
    // The program's folder itself holds the log and the reports.
    const bool raiz_gravável = Pode_Gravar_Pasta(Caminho_Programa());
    if (!raiz_gravável || !Pasta_Gravável(Caminho_Dados())) {
        const QString pasta = raiz_gravável
                                  ? "de dados do sistema:\r\r" + QDir::toNativeSeparators(Caminho_Dados())
                                  : "do sistema:\r\r" + QDir::toNativeSeparators(Caminho_Programa());
        const QString pedido =
            qEnvironmentVariableIsEmpty("QUIZORA_PASTA")
                ? "Peça"
                : "Esta pasta vem da variável de ambiente QUIZORA_PASTA: aponte-a para uma "
                  "pasta em que se possa gravar, ou peça";
        Mensagem_Erro = "Não é possível gravar na pasta " + pasta + "\r\r" + pedido +
                        " permissão de gravação nesta pasta e nos arquivos dela e abra o sistema novamente";
        Registra_Ocorrência(75, objectName(), "tmrTempo_Timer", 0);
        Plataforma_Atual().Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Crítico,
                                          Botões_Caixa::Ok);
        Plataforma_Atual().Encerra_Agora(1);
        return;
    }
    for (const QString& banco : {Caminho_Banco_Principal(), Caminho_Banco_Manutenção()})
        if (Banco_Danificado(banco)) return;
    // On a server, one start at a time builds or brings up the bank: a second workstation starting
    // meanwhile waits here, and then finds the work done.
    const QString servidor = Conexão_Do_Servidor(Caminho_Banco_Principal());
    std::optional<Vez_Da_Atualização> vez;
    if (!servidor.isEmpty()) {
        Plataforma_Atual().Processa_Eventos();
        vez.emplace(servidor);
    }
    // A workstation meeting a server bank that was there before it: it joins a bank that others use.
    const bool junta_se =
        !servidor.isEmpty() && Existe_Banco(Caminho_Banco_Principal()) && !Estação_Conhece_Servidor(servidor);
    if (!Existe_Banco(Caminho_Banco_Principal())) {
        Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Principal()));
        Ligação criação;
        criação.Open(Conexão_Criação(Caminho_Banco_Principal()));
        const Definição_Tabela d = Só_Campos(
            Definição("tblConfigur"), {"Razão_Social", "Versão_Maior", "Versão_Menor", "Versão_Revisão"});
        Catálogo::Cria_Tabela(criação, d.Nome, d.Campos);
    }
    if (!Existe_Banco(Caminho_Banco_Manutenção())) Cria_Banco_de_Dados_Manutenção();
    // The games' statistics live in a file of their own, made or completed here on every start, so that
    // the schemas of the main and the audit databases stay as they are.
    Estatísticas::Garante_Banco_Estatísticas();

    const QString textos[] = {Conexão_Principal(), Conexão_Principal(), Conexão_Principal(),
                              Conexão_Principal(), Conexão_Principal(), Conexão_Dbase(),
                              Conexão_Auditoria()};
    for (int i = 0; i < 7; ++i) Reaponta_Conexão(*Sete_Conexões[i], textos[i]);
    // A start killed before the table was added finds a file without it.
    Garante_Tabela(Definição("tblConfigur"),
                   {"Razão_Social", "Versão_Maior", "Versão_Menor", "Versão_Revisão"});

    Abre_Tabela("tblConfigur");
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");
    if (Lastrec(Tabela.Source, Conexão) == 0) {
        Inicia_Transação();
        Tabela.AddNew();
        Tabela.Fields("Razão_Social").Set_Value(Razão_Social_Semente);
        Tabela.Fields("Versão_Maior").Set_Value(0);
        Tabela.Fields("Versão_Menor").Set_Value(0);
        Tabela.Fields("Versão_Revisão").Set_Value(0);
        Grava(Tabela, false);
        Finaliza_Transação();
    }
    Tabela.MoveFirst();
    const QString versão_banco = Versão_Comparável(Tabela.Fields("Versão_Maior").Value().toInt(),
                                                   Tabela.Fields("Versão_Menor").Value().toInt(),
                                                   Tabela.Fields("Versão_Revisão").Value().toInt());
    Tabela.Reinicia();

    // The seed files belong to an installation's first meeting with its own bank: on a bank already in
    // use they would empty and rebuild shared tables and move the shared audit trail aside. They are kept
    // in Dados/Arquivo, and the start goes on to the login; a version upgrade, if due, still runs, once
    // for the bank.
    if (junta_se && versão_banco.toLong() > 0)
        for (const QString& semente : {Caminho_Banco_Temporário(), Caminho_Dados() + "/Temp.Zip"})
            if (QFile::exists(semente)) Guarda_No_Arquivo(semente);
    // Marked only now: a start cut short before its seed files were set aside repeats this.
    if (!servidor.isEmpty()) Marca_Servidor_Conhecido(servidor);

    // The versions are compared as text.
    if (QFile::exists(Caminho_Banco_Temporário()) || versão_banco < Versão_Programa())
        Caminho_de_Atualização(versão_banco);
    // The question verification looks up every answer among the others.
    Catálogo::Garante_Índice_de_Consulta(Conexão, "tblPergunta", "Resposta_Correta");
    // The locate dialog looks for a word in any position of a question, the field it offers first. Each
    // such index costs every written row some 40 to 60 microseconds on the server: the answers go without.
    Catálogo::Garante_Índices_de_Texto(Conexão, "tblPergunta", {"Pergunta"});
    Etapa_Arquivo_Compactado();
}

bool frmAtualiza_Versão::Banco_Danificado(const QString& caminho) {
    // A file the engine cannot read (cut short, overwritten) is told once as damaged, with where its last
    // copy is, and the program ends before any step could write to it.
    if (!QFile::exists(caminho)) return false;
    long número = 0;
    {
        // Any other failure of this first opening is reported by the opening of the connections below.
        Rotina r(objectName(), "Banco_Danificado", [&](long n, const QString&, long) { número = n; });
        Ligação prova;
        prova.Open(Texto_Conexão(caminho));
        prova.Close();
    }
    if (número != Erro_Banco_Danificado) return false;

    const QFileInfo arquivo(caminho);
    const QString pasta_arquivo = Caminho_Dados() + "/Arquivo";
    // Copies kept under dated names: "Dados 2026-11-24 18-02-11.Mdb".
    const QFileInfoList cópias =
        QDir(pasta_arquivo)
            .entryInfoList({arquivo.completeBaseName() + " *." + arquivo.suffix()}, QDir::Files, QDir::Time);
    QStringList partes = {"O arquivo " + QDir::toNativeSeparators(caminho) +
                          " está danificado e não pode ser lido. O sistema não o alterou."};
    if (!cópias.isEmpty()) {
        partes << "A última cópia dele é \"" + cópias.first().fileName() + "\", de " +
                      cópias.first().lastModified().toString("dd/MM/yyyy HH:mm") + ", na pasta " +
                      QDir::toNativeSeparators(pasta_arquivo) +
                      ". Para usá-la, dê outro nome ao arquivo danificado e copie essa cópia para a pasta " +
                      QDir::toNativeSeparators(Caminho_Dados()) + " com o nome " + arquivo.fileName() + ".";
    } else {
        partes << "Não há cópia dele na pasta " + QDir::toNativeSeparators(pasta_arquivo) +
                      ". Dê outro nome ao arquivo danificado e restaure o " + arquivo.fileName() +
                      " do seu último backup de segurança na pasta " +
                      QDir::toNativeSeparators(Caminho_Dados()) + ".";
    }
    partes << "O sistema será fechado.";
    Mensagem_Erro = partes.join(' ').chopped(1);
    Registra_Ocorrência(Erro_Banco_Danificado, objectName(), "tmrTempo_Timer", 0);
    Plataforma_Atual().Caixa_Mensagem(partes.join("\r\r"), Título_Programa, Ícone_Caixa::Crítico,
                                      Botões_Caixa::Ok);
    Plataforma_Atual().Encerra_Agora(1);
    return true;
}

void frmAtualiza_Versão::Caminho_de_Atualização(const QString& versão_banco) {
    Cria_Banco_de_Dados_Manutenção();
    Reaponta_Conexão(Conexão_Manutenção, Conexão_Auditoria());
    Abre_Tabela_Manutenção("tblManutenção_Banco_de_Dados");

    Etapas_do_Esquema(versão_banco.toLong());
    if (Última_Etapa != 0) return;

    if (versão_banco < Versão_Programa()) {
        Finaliza_Instalação_da_Nova_Versão();
        Plataforma_Atual().Encerra_Agora(0);
    }
    if (QFile::exists(Caminho_Banco_Temporário())) Etapa_Citações();
}

void frmAtualiza_Versão::Cria_Banco_de_Dados_Manutenção() {
    Rotina r(this, "Cria_Banco_de_Dados_Manutenção");
    if (Existe_Banco(Caminho_Banco_Manutenção())) {
        Tabela_Manutenção.Reinicia();
        if (Conexão_Manutenção.Aberta()) Conexão_Manutenção.Close();
        // The trail of earlier starts is kept when users wrote in it; a new installation's is not.
        if (Auditoria_Anterior && Quantidade_Auditoria() > 0)
            Guarda_No_Arquivo(Caminho_Banco_Manutenção());
        else
            Exclui_Arquivo_Banco(Caminho_Banco_Manutenção());
    }
    Catálogo::Cria_Banco(Conexão_Criação(Caminho_Banco_Manutenção()));
    Ligação criação;
    criação.Open(Conexão_Criação(Caminho_Banco_Manutenção()));
    const Definição_Tabela d = Definição_Manutenção();
    Catálogo::Cria_Tabela(criação, d.Nome, d.Campos);
    for (const Índice_Info& índice : d.Índices) Catálogo::Adiciona_Índice(criação, d.Nome, índice);
}

// ---------- the schema steps; each is safe to repeat after a start that was killed ----------

void frmAtualiza_Versão::Garante_Tabela(const Definição_Tabela& definição,
                                        const QStringList& só_estes_campos) {
    const Definição_Tabela d = Só_Campos(definição, só_estes_campos);
    if (!Catálogo::Existe_Tabela(Conexão, d.Nome)) Catálogo::Cria_Tabela(Conexão, d.Nome, d.Campos);
}

void frmAtualiza_Versão::Garante_Campo(const QString& tabela, const Campo_Info& campo) {
    if (Catálogo::Estrutura(Conexão, tabela).Posição_Campo(campo.Nome) < 0)
        Catálogo::Adiciona_Campo(Conexão, tabela, campo);
}

void frmAtualiza_Versão::Retira_Campo(const QString& tabela, const QString& campo) {
    if (Catálogo::Estrutura(Conexão, tabela).Posição_Campo(campo) >= 0)
        Catálogo::Exclui_Campo(Conexão, tabela, campo);
}

void frmAtualiza_Versão::Garante_Índice(const QString& tabela, const QString& índice) {
    if (Catálogo::Estrutura(Conexão, tabela).Índice(índice) != nullptr) return;
    for (const Índice_Info& i : Definição(tabela).Índices)
        if (i.Nome == índice) Catálogo::Adiciona_Índice(Conexão, tabela, i);
}

void frmAtualiza_Versão::Atualiza_Cada_Linha(const QString& tabela,
                                             const std::function<void(int contador)>& atribui) {
    Abre_Tabela(tabela);
    const int total = Lastrec(Tabela.Source, Conexão);
    if (total != 0) Tabela.MoveFirst();
    int contador = 0;
    Início_Progresso = Plataforma_Atual().Agora();
    while (!Tabela.Eof()) {
        ++contador;
        Barra_de_Progresso(1, total, contador, this);
        Inicia_Transação();
        Trava(Tabela, Conexão, true);
        atribui(contador);
        Grava(Tabela, false);
        Finaliza_Transação();
        Tabela.MoveNext();
        Plataforma_Atual().Processa_Eventos();
    }
    Tabela.Reinicia();
}

void frmAtualiza_Versão::Etapas_do_Esquema(long versão) {
    Rotina r(this, "Etapas_do_Esquema");
    const QString pasta_ícones = QDir::toNativeSeparators(Caminho_Programa() + "/Ícones");
    auto etapa = [&](long comporta) {
        return versão < comporta && (Última_Etapa == 0 || comporta <= Última_Etapa);
    };

    if (etapa(1000000)) {
        Garante_Tabela(Definição("tblUsuário"), {"Usuário", "Código_Usuário", "Senha"});
        Garante_Índice("tblUsuário", "idxCódigo_Usuário");
        Garante_Índice("tblUsuário", "idxUsuário");
        Abre_Tabela("tblUsuário");
        Tabela.Set_Index("idxUsuário");
        for (const auto& [nome, senha] : {std::pair{QString("Ornelio Varga"), QString("tamaris")},
                                          std::pair{QString("Supervisor"), QString("lumen")}}) {
            Tabela.Seek(nome);
            if (!Tabela.Eof()) continue;
            Inicia_Transação();
            Tabela.AddNew();
            Tabela.Fields("Usuário").Set_Value(nome);
            Tabela.Fields("Senha").Set_Value(Hash_Senha(senha));
            Grava(Tabela, false);
            Finaliza_Transação();
        }
        Tabela.Reinicia();
    }
    if (etapa(1000000)) {
        Garante_Tabela(Definição("tblEstado"));
        Garante_Índice("tblEstado", "idxCódigo_Estado");
        Garante_Índice("tblEstado", "idxInciiais_Estado");
        Abre_Tabela("tblEstado");
        if (Lastrec(Tabela.Source, Conexão) == 0) {
            Inicia_Transação();
            for (const Estado_Semente& e : Estados_Semente()) {
                Tabela.AddNew();
                Tabela.Fields("Estado").Set_Value(e.Nome);
                Tabela.Fields("Iniciais_Estado").Set_Value(e.Iniciais);
                Grava(Tabela, false);
            }
            Finaliza_Transação();
        }
        Tabela.Reinicia();
    }
    if (etapa(1000002)) {
        Garante_Tabela({"tblPontuação", {Texto("Jogador", 50), Longo("Pontuação")}, {}});
        Garante_Índice("tblPontuação", "idxPontuação");
    }
    if (etapa(1000003)) {
        Garante_Tabela({"tblPergunta",
                        {Texto("Pergunta", 124), Automático("Código_Pergunta"), Texto("Resposta_Correta", 50),
                         Texto("Resposta_Incorreta_1", 50), Texto("Resposta_Incorreta_2", 50),
                         Texto("Resposta_Incorreta_3", 50), Texto("Usuário", 20), Texto("Tipo", 1)},
                        {}});
        Garante_Índice("tblPergunta", "idxCódigo_Pergunta");
        Garante_Índice("tblPergunta", "idxPergunta");
    }
    if (etapa(1001003)) {
        Garante_Campo("tblPergunta", Booleano("Já_Comparada"));
        Atualiza_Cada_Linha("tblPergunta", [](int) { Tabela.Fields("Já_Comparada").Set_Value(false); });
    }
    if (etapa(1001008)) {
        Garante_Campo("tblPergunta", Booleano("Já_Verificada"));
        Atualiza_Cada_Linha("tblPergunta", [](int) { Tabela.Fields("Já_Verificada").Set_Value(false); });
    }
    if (etapa(1001014)) Garante_Campo("tblConfigur", Longo("Distrito"));
    if (etapa(1001017)) Garante_Campo("tblUsuário", Texto("Imagens", 100));
    if (etapa(1002618)) {
        Garante_Tabela({"tblPermissão",
                        {Texto("Rotina", 50), Automático("Código_Permissão"), Texto("Usuário", 50),
                         Booleano("Permissão_De_Inclusão"), Booleano("Permissão_De_Alteração"),
                         Booleano("Permissão_De_Exclusão"), Booleano("Permissão_De_Consulta")},
                        {}});
        Garante_Índice("tblPermissão", "idxCódigo_Permissão");
    }
    if (etapa(1006002)) QDir(Caminho_Programa() + "/Temp").removeRecursively();
    if (etapa(1008001)) {
        const Estrutura_Tabela e = Catálogo::Estrutura(Conexão, "tblPermissão");
        if (e.Posição_Campo("Rotina") >= 0 && e.Campos[e.Posição_Campo("Rotina")].Largura != 100)
            Conexão.Execute("Alter Table tblPermissão Alter Column Rotina text (100)");
    }
    if (etapa(1010006)) {
        Garante_Campo("tblPergunta", Texto("Pergunta_Original", 124, true));
        Atualiza_Cada_Linha("tblPergunta",
                            [](int) { Tabela.Fields("Pergunta_Original").Set_Value(QString("")); });
    }
    if (etapa(1011004)) {
        Abre_Tabela("tblPermissão");
        while (!Tabela.Eof()) {
            if (Tabela.Fields("Rotina").Value().toString().trimmed() == "frmImpressão_Mensagens_De_Erro") {
                Inicia_Transação();
                Trava(Tabela, Conexão, true);
                Grava(Tabela, true);
                Finaliza_Transação();
            }
            Tabela.MoveNext();
        }
        Tabela.Reinicia();
    }
    if (etapa(1011005)) {
        const QString antigo = Caminho_Programa() + "/Erro.Txt";
        if (QFile::exists(antigo)) {
            QFile::remove(Caminho_Log_Ocorrências());
            if (QFile::copy(antigo, Caminho_Log_Ocorrências())) QFile::remove(antigo);
            QFile::remove(Caminho_Programa() + "/Ajuda/Impressão das Mensagens de Erro.Html");
        }
    }
    if (etapa(1012001)) {
        Retira_Campo("tblUsuário", "Imagens");
        Garante_Campo("tblUsuário", Texto("Biblioteca_Imagens_Local", 150, true));
        Garante_Campo("tblUsuário", Texto("Biblioteca_Imagens_Rede", 150, true));
        Atualiza_Cada_Linha("tblUsuário", [&](int) {
            Tabela.Fields("Biblioteca_Imagens_Local").Set_Value(pasta_ícones);
            Tabela.Fields("Biblioteca_Imagens_Rede").Set_Value(pasta_ícones);
        });
    }
    if (etapa(2000017)) Retira_Campo("tblConfigur", "Distrito");
    if (etapa(2000019)) Atualiza_Cada_Linha("tblPergunta", [](int) { Tabela.Fields("Tipo").Set_Value("G"); });
    if (etapa(2000074)) Garante_Índice("tblPergunta", "idxPergunta_Original");
    if (etapa(2001117)) Garante_Tabela(Definição("tblPergunta_Já_Mostrada"), {"Código_Pergunta"});
    if (etapa(2004014)) {
        Garante_Campo("tblUsuário", Booleano("Muda_Fundo_de_Tela"));
        Atualiza_Cada_Linha("tblUsuário", [](int) { Tabela.Fields("Muda_Fundo_de_Tela").Set_Value(false); });
    }
    if (etapa(2004064)) {
        Garante_Tabela(Definição("tblCritério_de_Consulta"));
        Garante_Índice("tblCritério_de_Consulta", "idxCódigo_Critério_de_Consulta");
        Garante_Índice("tblCritério_de_Consulta", "idxTabela_Usuário");
    }
    if (etapa(2006029) && Catálogo::Existe_Tabela(Conexão, "tblManutenção_Banco_de_Dados"))
        Catálogo::Exclui_Tabela(Conexão, "tblManutenção_Banco_de_Dados");
    if (etapa(2006036)) {
        Garante_Campo("tblConfigur", Booleano("Monitora_Log_das_Atividades"));
        Atualiza_Cada_Linha("tblConfigur",
                            [](int) { Tabela.Fields("Monitora_Log_das_Atividades").Set_Value(true); });
    }
    if (etapa(2006042)) {
        Garante_Tabela(Definição("tblDinâmica"));
        Garante_Índice("tblDinâmica", "idxCódigo_Dinâmica");
        Garante_Índice("tblDinâmica", "idxDinâmica");
    }
    if (etapa(3000008)) {
        Garante_Campo("tblUsuário", Longo("Quantidade_Execuções"));
        Atualiza_Cada_Linha("tblUsuário", [](int) { Tabela.Fields("Quantidade_Execuções").Set_Value(0); });
    }
    if (etapa(4001017)) {
        Abre_Tabela("tblUsuário");
        while (!Tabela.Eof()) {
            if (Tabela.Fields("Usuário").Value().toString().trimmed().toLower() == "ornelio varga") {
                Inicia_Transação();
                Trava(Tabela, Conexão, true);
                Tabela.Fields("Senha").Set_Value(Hash_Senha("tamaris"));
                Grava(Tabela, false);
                Finaliza_Transação();
            }
            Tabela.MoveNext();
        }
        Tabela.Reinicia();
    }
    if (etapa(4006025)) {
        Garante_Campo("tblConfigur", Longo("Versão_Revelações_de_Deus"));
        Atualiza_Cada_Linha("tblConfigur",
                            [](int) { Tabela.Fields("Versão_Revelações_de_Deus").Set_Value(0); });
    }
    if (etapa(4011004)) Retira_Campo("tblPergunta", "Usuário");
    if (etapa(4011019)) Garante_Índice("tblPergunta", "idxJá_Comparada");
    if (etapa(4011038)) Garante_Índice("tblPergunta", "idxJá_Verificada");
    if (etapa(4011087)) {
        Garante_Campo("tblPergunta_Já_Mostrada", Data("Data_Jogo"));
        const QDate hoje = Plataforma_Atual().Agora().date();
        // Distinct dates, the first row the most recent.
        Atualiza_Cada_Linha("tblPergunta_Já_Mostrada", [&](int contador) {
            Tabela.Fields("Data_Jogo").Set_Value(QDateTime(hoje.addDays(-contador), QTime(0, 0)));
        });
    }
    if (etapa(4011106)) Converte_Pontuação();
    // Tables that only the citations step used to create: a database that never received a seed file
    // still gets them.
    if (etapa(4014010)) {
        for (const char* tabela : {"tblAdaptação", "tblRevelação"}) {
            Garante_Tabela(Definição(tabela));
            for (const Índice_Info& i : Definição(tabela).Índices) Garante_Índice(tabela, i.Nome);
        }
    }
}

void frmAtualiza_Versão::Converte_Pontuação() {
    Rotina r(this, "Converte_Pontuação");
    const Estrutura_Tabela atual = Catálogo::Estrutura(Conexão, "tblPontuação");
    const int posição = atual.Posição_Campo("Pontuação");
    const bool ainda_longo = posição >= 0 && atual.Campos[posição].Tipo == Tipo_Long;
    if (ainda_longo) {
        // The rows are kept in a copy of the whole file while the field is replaced.
        Exclui_Arquivo_Banco(Caminho_Cópia_Banco());
        Tabela.Reinicia();
        Catálogo::Copia_Banco(Conexão, Caminho_Cópia_Banco());
        if (atual.Índice("idxPontuação") != nullptr)
            Catálogo::Exclui_Índice(Conexão, "tblPontuação", "idxPontuação");
        Catálogo::Exclui_Campo(Conexão, "tblPontuação", "Pontuação");
        Catálogo::Adiciona_Campo(Conexão, "tblPontuação", Duplo("Pontuação"));
    }
    // Without a copy the conversion finished on an earlier start.
    if (Existe_Banco(Caminho_Cópia_Banco())) {
        Reaponta_Conexão(Conexão_Temporária, Conexão_Cópia());
        Abre_Tabela_Temporária("tblPontuação");
        Abre_Tabela("tblPontuação");
        while (!Tabela.Eof()) {
            Inicia_Transação();
            Trava(Tabela, Conexão, true);
            Grava(Tabela, true);
            Finaliza_Transação();
            Tabela.MoveNext();
        }
        while (!Tabela_Temporária.Eof()) {
            Inicia_Transação();
            Tabela.AddNew();
            Tabela.Fields("Jogador").Set_Value(Tabela_Temporária.Fields("Jogador").Value());
            Tabela.Fields("Pontuação").Set_Value(Tabela_Temporária.Fields("Pontuação").Value().toDouble());
            Grava(Tabela, false);
            Finaliza_Transação();
            Tabela_Temporária.MoveNext();
            Plataforma_Atual().Processa_Eventos();
        }
        Tabela.Reinicia();
        Tabela_Temporária.Reinicia();
        Conexão_Temporária.Close();
        Exclui_Arquivo_Banco(Caminho_Cópia_Banco());
        Conexão_Temporária.Open(Conexão_Principal());
    }
    Garante_Índice("tblPontuação", "idxPontuação");
}

// ---------- seed files ----------

int frmAtualiza_Versão::Quantidade_Auditoria() {
    // Any failure here only means there is nothing worth keeping.
    Rotina r(objectName(), "Quantidade_Auditoria", [](long, const QString&, long) {});
    Ligação auditoria;
    auditoria.Open(Conexão_Auditoria());
    int quantidade = 0;
    if (auditoria.Aberta() && Catálogo::Existe_Tabela(auditoria, "tblManutenção_Banco_de_Dados")) {
        Registros contagem;
        // Rows without a user are the upgrades' own, written before any login: not worth keeping.
        contagem.Open("Select Count (*) From tblManutenção_Banco_de_Dados Where Usuário Is Not Null",
                      auditoria, Opção_Abertura::Tabela_Direta);
        if (contagem.Aberto() && !contagem.Eof()) quantidade = contagem.Fields(0).Value().toInt();
        contagem.Reinicia();
    }
    auditoria.Close();
    return quantidade;
}

void frmAtualiza_Versão::Guarda_No_Arquivo(const QString& arquivo) {
    // A file that a start consumes or replaces (an export the user has not sent yet, the audit trail)
    // is kept under a dated name rather than destroyed; the occurrence log says where it went.
    const QString nome = QFileInfo(arquivo).fileName();
    const QString destino =
        Guarda_Arquivo_Banco(arquivo, Caminho_Dados() + "/Arquivo", Plataforma_Atual().Agora());
    if (destino.isEmpty()) {
        Mensagem_Erro = "O arquivo " + nome + " não pôde ser guardado em " + Caminho_Dados() + "/Arquivo";
        Registra_Ocorrência(75, objectName(), "Guarda_No_Arquivo", 0);
        Exclui_Arquivo_Banco(arquivo);
        return;
    }
    Mensagem_Erro = "O arquivo " + nome + " foi guardado como " + destino;
    Registra_Ocorrência(0, objectName(), "Guarda_No_Arquivo", 0);
}

void frmAtualiza_Versão::Semente_Danificada(const QString& arquivo, const QString& motivo) {
    // A bad seed file is set aside, so that the next start does not stumble on it again.
    const QString guardado = arquivo + ".danificado";
    Exclui_Arquivo_Banco(guardado);
    QFile::remove(arquivo + "-wal");
    QFile::remove(arquivo + "-shm");
    QFile::rename(arquivo, guardado);
    Mensagem_Erro = "O arquivo de atualização " + QFileInfo(arquivo).fileName() + " não pôde ser lido (" +
                    motivo + "). Ele foi renomeado para " + QFileInfo(guardado).fileName() +
                    " e as informações já cadastradas foram preservadas";
    Registra_Ocorrência(31037, objectName(), "Semente_Danificada", 0);
    Plataforma_Atual().Caixa_Mensagem(Mensagem_Erro + ".", Título_Programa, Ícone_Caixa::Crítico,
                                      Botões_Caixa::Ok);
}

bool frmAtualiza_Versão::Abre_Rascunho() {
    QString motivo;
    {
        Rotina r(objectName(), "Abre_Rascunho", [&](long, const QString& d, long) { motivo = d; });
        Reaponta_Conexão(Conexão_Temporária, Conexão_Rascunho());
    }
    if (Conexão_Temporária.Aberta()) return true;
    Conexão_Temporária.Open(Conexão_Principal());
    Semente_Danificada(Caminho_Banco_Temporário(), motivo);
    return false;
}

void frmAtualiza_Versão::Etapa_Citações() {
    if (!Abre_Rascunho()) return;
    Rotina r(this, "Etapa_Citações");
    // Without citations the file is not a seed but an export the user has yet to send: it is kept.
    const bool semente = Catálogo::Existe_Tabela(Conexão_Temporária, "tblRevelação");
    if (semente) {
        for (const char* tabela : {"tblAdaptação", "tblRevelação"}) {
            if (Catálogo::Existe_Tabela(Conexão, tabela)) Catálogo::Exclui_Tabela(Conexão, tabela);
            const Definição_Tabela d = Definição(tabela);
            Catálogo::Cria_Tabela(Conexão, d.Nome, d.Campos);
            for (const Índice_Info& i : d.Índices) Catálogo::Adiciona_Índice(Conexão, d.Nome, i);
        }
        Inicia_Transação();
        Abre_Tabela("tblRevelação");
        Abre_Tabela_Temporária("tblRevelação");
        const int total = Lastrec(Tabela_Temporária.Source, Conexão_Temporária);
        int contador = 0;
        Início_Progresso = Plataforma_Atual().Agora();
        while (!Tabela_Temporária.Eof()) {
            ++contador;
            Barra_de_Progresso(1, total, contador, this);
            Tabela.AddNew();
            for (const char* campo : {"Palavra_Chave", "Código_Revelação_de_Deus", "Quantidade_Linhas"})
                Tabela.Fields(campo).Set_Value(Tabela_Temporária.Fields(campo).Value());
            Grava(Tabela, false);
            Tabela_Temporária.MoveNext();
            Plataforma_Atual().Processa_Eventos_Da_Caminhada();
        }
        Tabela.Reinicia();
        Tabela_Temporária.Reinicia();
        Finaliza_Transação();
    }
    Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());
    if (semente)
        Exclui_Arquivo_Banco(Caminho_Banco_Temporário());
    else
        Guarda_No_Arquivo(Caminho_Banco_Temporário());
}

void frmAtualiza_Versão::Etapa_Arquivo_Compactado() {
    const QString arquivo_zip = Caminho_Dados() + "/Temp.Zip";
    if (!QFile::exists(arquivo_zip)) return;
    if (QFile::exists(Caminho_Banco_Temporário())) Guarda_No_Arquivo(Caminho_Banco_Temporário());
    if (!Descompacta_Arquivo(arquivo_zip, "*.*", Caminho_Dados(), false)) {
        Semente_Danificada(arquivo_zip, "arquivo compactado danificado");
        return;
    }
    QFile::remove(arquivo_zip);
    if (!QFile::exists(Caminho_Banco_Temporário())) return;

    if (!Abre_Rascunho()) return;
    Rotina r(this, "Etapa_Arquivo_Compactado");
    if (Catálogo::Existe_Tabela(Conexão_Temporária, "tblPergunta"))
        Importa_Tabela_Semente(
            "tblPergunta", "idxPergunta_Original", "Pergunta_Original",
            {"Pergunta", "Resposta_Correta", "Resposta_Incorreta_1", "Resposta_Incorreta_2",
             "Resposta_Incorreta_3", "Tipo", "Já_Comparada", "Já_Verificada", "Pergunta_Original"});
    if (Catálogo::Existe_Tabela(Conexão_Temporária, "tblDinâmica"))
        Importa_Tabela_Semente("tblDinâmica", "idxDinâmica", "Dinâmica",
                               {"Dinâmica", "Materiais", "Instruções", "Tipo_Dinâmica"});
    Reaponta_Conexão(Conexão_Temporária, Conexão_Principal());
    Exclui_Arquivo_Banco(Caminho_Banco_Temporário());  // the seed that came in the archive
}

void frmAtualiza_Versão::Importa_Tabela_Semente(const QString& tabela, const QString& índice,
                                                const QString& chave, const QStringList& campos) {
    Abre_Tabela_Temporária(tabela);
    const int total = Lastrec(Tabela_Temporária.Source, Conexão_Temporária);
    if (total != 0) Tabela_Temporária.MoveFirst();
    Abre_Tabela(tabela);
    Tabela.Set_Index(índice);
    int contador = 0;
    Início_Progresso = Plataforma_Atual().Agora();
    while (!Tabela_Temporária.Eof()) {
        ++contador;
        Barra_de_Progresso(1, total, contador, this);
        Tabela.Seek(Tabela_Temporária.Fields(chave).Value());
        if (Tabela.Eof()) {
            Inicia_Transação();
            Tabela.AddNew();
            for (const QString& campo : campos)
                Tabela.Fields(campo).Set_Value(Tabela_Temporária.Fields(campo).Value());
            Grava(Tabela, false);
            Finaliza_Transação();
        }
        Tabela_Temporária.MoveNext();
        Plataforma_Atual().Processa_Eventos_Da_Caminhada();
    }
    Tabela.Reinicia();
    Tabela_Temporária.Reinicia();
}

void Finaliza_Instalação_da_Nova_Versão() {
    Rotina r(Fonte_Funções_Públicas, "Finaliza_Instalação_da_Nova_Versão");
    Inicia_Transação();
    Abre_Tabela("tblConfigur");
    Trava(Tabela, Conexão, true);
    Tabela.Fields("Versão_Maior").Set_Value(Versão_Maior_Programa);
    Tabela.Fields("Versão_Menor").Set_Value(Versão_Menor_Programa);
    Tabela.Fields("Versão_Revisão").Set_Value(Versão_Revisão_Programa);
    Grava(Tabela, false);
    Finaliza_Transação();
    Tabela.Reinicia();
    Tabela_Pesquisa.Reinicia();
    Exibe_Mensagem(25);
}
