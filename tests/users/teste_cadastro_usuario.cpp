// The user register driven offscreen on a real database: the password asked before each change, the
// frames by who alters whom, the rights grid, and what the register keeps and refuses.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "common/Globais.h"
#include "failure/Mensagens.h"
#include "failure/Trata_Erro.h"
#include "forms/Controles.h"
#include "forms/Listas_Arquivos.h"
#include "platform/Plataforma.h"
#include "shell/frmAutentica_Senha.h"
#include "store/Funções_Banco.h"
#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "users/frmUsuário.h"
#include "utilities/Fundo_Tela.h"

namespace {
struct Linha_Usuário {
    bool Existe = false;
    int Senha = 0;
    QString Local, Rede;
    bool Muda = false;
};

class Cadastro_Usuario_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    int Senhas_Pedidas = 0;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        ASSERT_TRUE(QDir().mkpath(Pasta.Caminho() + "/Ícones"));
        Usuário_Atual = "Supervisor";
        Lê_Montagens = nullptr;
    }
    void TearDown() override {
        Lê_Montagens = nullptr;
        QApplication::processEvents();
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }

    // The next password dialog gets this password; a refused one is left by Sair.
    void Responde_Senha(const QString& senha) {
        QTimer::singleShot(0, [this, senha] {
            auto* janela = dynamic_cast<frmAutentica_Senha*>(QApplication::activeModalWidget());
            ASSERT_NE(janela, nullptr);
            ++Senhas_Pedidas;
            janela->txtSenha->setText(senha);
            janela->cmdOk_Click();
            if (janela->isVisible()) janela->cmdSair_Click();
        });
    }

    static void Cria_Usuário(const QString& nome, const QString& senha, const QString& pasta = QString()) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblUsuário");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Usuário").Set_Value(nome);
        Tabela_Quaternária.Fields("Senha").Set_Value(Hash_Senha(senha));
        Tabela_Quaternária.Fields("Biblioteca_Imagens_Local").Set_Value(pasta);
        Tabela_Quaternária.Fields("Biblioteca_Imagens_Rede").Set_Value(pasta);
        Tabela_Quaternária.Fields("Muda_Fundo_de_Tela").Set_Value(true);
        Tabela_Quaternária.Fields("Quantidade_Execuções").Set_Value(3);
        Tabela_Quaternária.Update();
        Limpa_Cache_Lastrec();
    }

    static void Cria_Direito(const QString& rotina, const QString& usuário, bool inclui, bool altera,
                             bool exclui, bool consulta) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblPermissão");
        Tabela_Quaternária.AddNew();
        Tabela_Quaternária.Fields("Rotina").Set_Value(rotina);
        Tabela_Quaternária.Fields("Usuário").Set_Value(usuário);
        Tabela_Quaternária.Fields("Permissão_De_Inclusão").Set_Value(inclui);
        Tabela_Quaternária.Fields("Permissão_De_Alteração").Set_Value(altera);
        Tabela_Quaternária.Fields("Permissão_De_Exclusão").Set_Value(exclui);
        Tabela_Quaternária.Fields("Permissão_De_Consulta").Set_Value(consulta);
        Tabela_Quaternária.Update();
    }

    static Linha_Usuário Lê_Usuário(const QString& nome) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblUsuário Where Usuário = " + QString("'%1'").arg(nome));
        Linha_Usuário linha;
        if (Tabela_Quaternária.Eof()) return linha;
        linha.Existe = true;
        linha.Senha = Tabela_Quaternária.Fields("Senha").Value().toInt();
        linha.Local = Tabela_Quaternária.Fields("Biblioteca_Imagens_Local").Value().toString();
        linha.Rede = Tabela_Quaternária.Fields("Biblioteca_Imagens_Rede").Value().toString();
        linha.Muda = Tabela_Quaternária.Fields("Muda_Fundo_de_Tela").Value().toBool();
        return linha;
    }

    // "frmPergunta:SNSS" for each right row of the user.
    static QStringList Direitos(const QString& usuário) {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("Select * From tblPermissão Order By Código_Permissão");
        QStringList linhas;
        for (; !Tabela_Quaternária.Eof(); Tabela_Quaternária.MoveNext()) {
            if (Tabela_Quaternária.Fields("Usuário").Value().toString().trimmed() != usuário) continue;
            QString s = Tabela_Quaternária.Fields("Rotina").Value().toString().trimmed() + ":";
            for (const char* d : {"Permissão_De_Inclusão", "Permissão_De_Alteração", "Permissão_De_Exclusão",
                                  "Permissão_De_Consulta"})
                s += Tabela_Quaternária.Fields(QString::fromUtf8(d)).Value().toBool() ? "S" : "N";
            linhas << s;
        }
        return linhas;
    }

    static void Mostra(frmUsuário& j, const QString& nome) {
        Tabela.Set_Index("idxCódigo_Usuário");
        Tabela.MoveFirst();
        while (!Tabela.Eof() && Tabela.Fields("Usuário").Value().toString().trimmed() != nome)
            Tabela.MoveNext();
        ASSERT_FALSE(Tabela.Eof()) << nome.toStdString();
        j.Exibir_Campos();
    }

    static int Linha_Da_Rotina(frmUsuário& j, const QString& rotina) {
        for (int l = 1; l < j.flxPermissão_de_Acesso->Rows(); ++l)
            if (j.flxPermissão_de_Acesso->TextMatrix(l, 0) == rotina) return l;
        return -1;
    }

    static void Clica_Célula(frmUsuário& j, int linha, int coluna) {
        j.flxPermissão_de_Acesso->Set_Row(linha);
        j.flxPermissão_de_Acesso->Set_Col(coluna);
        j.flxPermissão_De_Acesso_Click();
    }

    QStringList Textos() const { return Plataforma.Textos_Caixas(); }
};

// Every row of the frames' table, and the password asked before inclusion, alteration and exclusion.
TEST_F(Cadastro_Usuario_Teste, FramesFollowWhoAltersWhomAndEachChangeAsksThePassword) {
    Cria_Usuário("Ana Lima", "ana123");
    {
        frmUsuário j;
        EXPECT_TRUE(j.fraUsuário->isEnabled());
        EXPECT_FALSE(j.fraPermissão->isEnabled());

        Responde_Senha("lumen");
        j.cmdInclusão_Click();
        EXPECT_EQ(Senhas_Pedidas, 1);
        EXPECT_EQ(Operação, "Inclusão");
        EXPECT_EQ(j.windowTitle(), "Inclusão de Usuários");
        EXPECT_TRUE(j.fraUsuário->isEnabled());
        EXPECT_FALSE(j.fraPermissão->isEnabled());
        EXPECT_EQ(j.DirImagens->Path(), QDir::cleanPath(Pasta.Caminho() + "/Ícones"));
        j.cmdCancelar_Click();

        Mostra(j, "Supervisor");
        Responde_Senha("lumen");
        j.cmdAlteração_Click();
        EXPECT_EQ(Senhas_Pedidas, 2);
        EXPECT_EQ(Operação, "Alteração");
        EXPECT_TRUE(j.fraUsuário->isEnabled());
        EXPECT_TRUE(j.fraPermissão->isEnabled());
        EXPECT_EQ(j.txtUsuário->text(), "Supervisor");
        j.cmdCancelar_Click();

        Mostra(j, "Ana Lima");
        Responde_Senha("lumen");
        j.cmdAlteração_Click();
        EXPECT_FALSE(j.fraUsuário->isEnabled());
        EXPECT_TRUE(j.fraPermissão->isEnabled());
        // The lock is on the shown user's row, not on the Supervisor's that the dialog read.
        EXPECT_EQ(Tabela.Fields("Usuário").Value().toString(), "Ana Lima");
        j.cmdCancelar_Click();
        EXPECT_TRUE(j.fraUsuário->isEnabled());
        EXPECT_FALSE(j.fraPermissão->isEnabled());

        // A refused password stops in silence after the dialog's own message.
        Plataforma.Caixas.clear();
        Responde_Senha("errada");
        j.cmdExclusão_Click();
        EXPECT_EQ(Senhas_Pedidas, 4);
        EXPECT_EQ(Operação, "Consulta");
        EXPECT_EQ(Textos(), QStringList{Aviso(1)});
        EXPECT_TRUE(Lê_Usuário("Ana Lima").Existe);
    }

    Usuário_Atual = "Ana Lima";
    frmUsuário j;
    Mostra(j, "Ana Lima");
    Responde_Senha("ana123");
    j.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_TRUE(j.fraUsuário->isEnabled());
    EXPECT_FALSE(j.fraPermissão->isEnabled());
    j.cmdCancelar_Click();
}

TEST_F(Cadastro_Usuario_Teste, RightsProtectedUsersAndOthersRecordsAreRefusedWithTheirMessages) {
    Cria_Usuário("Ana Lima", "ana123");
    {
        frmUsuário j;
        Mostra(j, "Supervisor");
        j.cmdExclusão_Click();  // no password asked for a user who cannot be excluded
        Mostra(j, "Ornelio Varga");
        j.cmdExclusão_Click();
        EXPECT_EQ(Textos(), QStringList({Aviso(7), Aviso(7)}));
        EXPECT_EQ(Senhas_Pedidas, 0);
    }
    Plataforma.Caixas.clear();
    Usuário_Atual = "Ana Lima";
    frmUsuário j;  // her first opening makes her row: alter and consult only
    EXPECT_EQ(Direitos("Ana Lima"), QStringList{"frmUsuário:NSNS"});
    j.cmdInclusão_Click();
    Mostra(j, "Supervisor");
    j.cmdAlteração_Click();
    j.cmdExclusão_Click();
    EXPECT_EQ(Textos(), QStringList({Aviso(4), Aviso(8), Aviso(4)}));
    EXPECT_EQ(Senhas_Pedidas, 0);
    EXPECT_EQ(Operação, "Consulta");
    // Another user's password and folder are not shown.
    EXPECT_EQ(j.txtSenha->text(), "");
    EXPECT_EQ(j.DirImagens->Path(), QDir::cleanPath(Pasta.Caminho() + "/Ícones"));
}

TEST_F(Cadastro_Usuario_Teste, AnInclusionStoresTheHashAndTheFolderAndRefusesBadInput) {
    const QString fotos = Pasta.Caminho() + "/Fotos da Ana";
    ASSERT_TRUE(QDir().mkpath(fotos));
    frmUsuário j;
    Responde_Senha("lumen");
    j.cmdInclusão_Click();
    bool Cancel = false;
    j.txtUsuário_Validate(Cancel);  // left empty
    EXPECT_TRUE(Cancel);
    EXPECT_EQ(Textos(), QStringList{Aviso(10)});
    Plataforma.Caixas.clear();
    Cancel = false;
    j.txtUsuário->setText("ana lima");
    j.txtUsuário_Validate(Cancel);
    EXPECT_FALSE(Cancel);
    j.txtSenha->setText("Flores");
    j.txtSenha_Confirmação->setText("flores!");
    j.chkMuda_Fundo_de_Tela->setChecked(true);
    ASSERT_TRUE(j.DirImagens->Set_Path(fotos));
    EXPECT_FALSE(j.cmdOk->isEnabled());
    j.DirImagens_Validate(Cancel);
    ASSERT_TRUE(j.cmdOk->isEnabled());

    j.cmdOk_Click();  // the two passwords differ: nothing written, the fields kept
    EXPECT_EQ(Textos(), QStringList{Aviso(5)});
    EXPECT_EQ(Operação, "Inclusão");
    EXPECT_EQ(j.txtUsuário->text(), "ana lima");
    EXPECT_FALSE(Lê_Usuário("Ana Lima").Existe);

    // Longer than the stored name can be: our own message, nothing written.
    Plataforma.Caixas.clear();
    j.txtSenha_Confirmação->setText("FLORES");
    j.txtSenha->setText("FLORES");
    j.txtUsuário->setText(QString(60, 'x'));
    EXPECT_EQ(j.txtUsuário->text().size(), 50);
    j.cmdOk_Click();
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.startsWith("O nome do usuário pode ter no máximo 20 caracteres"));
    EXPECT_EQ(Operação, "Inclusão");

    // A password of nine characters cannot be typed: the box keeps eight.
    j.txtSenha->setText("flores123");
    EXPECT_EQ(j.txtSenha->text(), "flores12");
    j.txtSenha->setText("FLORES");

    Plataforma.Caixas.clear();
    j.txtUsuário->setText("ana lima");
    j.cmdOk_Click();
    EXPECT_EQ(Textos(), QStringList{"Confirma INCLUSÃO?"});
    EXPECT_EQ(Operação, "Consulta");
    const Linha_Usuário ana = Lê_Usuário("Ana Lima");
    ASSERT_TRUE(ana.Existe);
    EXPECT_EQ(ana.Senha, Hash_Senha("flores"));  // typed in capitals, stored in small letters
    EXPECT_EQ(ana.Local, QDir::cleanPath(fotos));
    EXPECT_EQ(ana.Rede, QDir::cleanPath(fotos));
    EXPECT_TRUE(ana.Muda);
    EXPECT_EQ(j.txtUsuário->text(), "Ana Lima");
    // A new user has no rights row until the user has opened a window.
    EXPECT_EQ(j.flxPermissão_de_Acesso->Rows(), 1);

    // "SUPERVISOR" becomes "Supervisor", which the table refuses; the name is told.
    Plataforma.Caixas.clear();
    Responde_Senha("lumen");
    j.cmdInclusão_Click();
    j.txtUsuário->setText("SUPERVISOR");
    j.txtSenha->setText("abc");
    j.txtSenha_Confirmação->setText("abc");
    j.DirImagens_Validate(Cancel);
    j.cmdOk_Click();
    EXPECT_EQ(Textos(), QStringList({"Confirma INCLUSÃO?",
                                     "Já existe um usuário cadastrado com o nome \"Supervisor\"."}));
    EXPECT_EQ(Lastrec("tblUsuário", Conexão), 3);
    EXPECT_EQ(Lê_Usuário("Supervisor").Senha, Hash_Senha("lumen"));
    EXPECT_FALSE(Registro_Duplicado);
}

TEST_F(Cadastro_Usuario_Teste, TheSupervisorTogglesAnotherUsersRightsWithoutCostingPasswordOrFolder) {
    const QString fotos = Pasta.Caminho() + "/Fotos";
    ASSERT_TRUE(QDir().mkpath(fotos));
    Cria_Usuário("Ana Lima", "ana123", fotos);
    Cria_Direito("frmPergunta", "Ana Lima", true, true, true, true);
    Cria_Direito("frmPergunta", "Outro", true, true, true, true);
    Cria_Direito("frmConfiguração", "Ana Lima", false, false, false, false);
    frmUsuário j;
    Mostra(j, "Ana Lima");
    ASSERT_EQ(j.flxPermissão_de_Acesso->Rows(), 3);
    const int pergunta = Linha_Da_Rotina(j, "frmPergunta");
    const int configuração = Linha_Da_Rotina(j, "frmConfiguração");
    ASSERT_GT(pergunta, 0);
    ASSERT_GT(configuração, 0);
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(pergunta, 3), "  Sim");
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(configuração, 4), "  NÃO");

    // In Consulta the grid cannot be toggled.
    Clica_Célula(j, pergunta, 3);
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(pergunta, 3), "  Sim");

    Responde_Senha("lumen");
    j.cmdAlteração_Click();
    j.cmdOk->setEnabled(false);
    Clica_Célula(j, pergunta, 3);
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(pergunta, 3), "  NÃO");
    EXPECT_TRUE(j.cmdOk->isEnabled());  // at once
    Clica_Célula(j, pergunta, 0);       // the window's name is not a right
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(pergunta, 0), "frmPergunta");
    // Enter toggles the current cell as a click does.
    j.flxPermissão_de_Acesso->setCurrentCell(configuração, 4);
    QTest::keyClick(j.flxPermissão_de_Acesso, Qt::Key_Return);
    EXPECT_EQ(j.flxPermissão_de_Acesso->TextMatrix(configuração, 4), "  Sim");

    j.cmdOk_Click();
    EXPECT_EQ(Operação, "Consulta");
    EXPECT_EQ(Direitos("Ana Lima"), QStringList({"frmPergunta:SSNS", "frmConfiguração:NNNS"}));
    EXPECT_EQ(Direitos("Outro"), QStringList{"frmPergunta:SSSS"});
    const Linha_Usuário ana = Lê_Usuário("Ana Lima");
    EXPECT_EQ(ana.Senha, Hash_Senha("ana123"));
    EXPECT_EQ(ana.Local, fotos);
    EXPECT_EQ(ana.Rede, fotos);
    EXPECT_TRUE(ana.Muda);
}

TEST_F(Cadastro_Usuario_Teste, OwnAlterationNeedsBothPasswordsAndTheSupervisorKeepsTheName) {
    Cria_Usuário("Ana Lima", "ana123");
    {
        frmUsuário j;
        Mostra(j, "Supervisor");
        EXPECT_EQ(j.txtSenha->text(), QString::number(Hash_Senha("lumen")));
        EXPECT_EQ(j.txtSenha_Confirmação->text(), "");
        Responde_Senha("lumen");
        j.cmdAlteração_Click();
        j.txtUsuário->setText("Chefe");
        bool Cancel = false;
        j.txtUsuário_Validate(Cancel);
        EXPECT_TRUE(Cancel);
        EXPECT_EQ(j.txtUsuário->text(), "Supervisor");
        EXPECT_EQ(Textos(), QStringList{Aviso(38)});
        Plataforma.Caixas.clear();
        j.cmdOk_Click();  // the confirmation box is still empty
        EXPECT_EQ(Textos(), QStringList{Aviso(5)});
        EXPECT_EQ(Operação, "Alteração");
        EXPECT_TRUE(j.fraPermissão->isEnabled());
        j.cmdCancelar_Click();
    }

    Usuário_Atual = "Ana Lima";
    Plataforma.Caixas.clear();
    frmUsuário j;
    Mostra(j, "Ana Lima");
    Responde_Senha("ana123");
    j.cmdAlteração_Click();
    j.txtSenha->setText("nova");
    j.txtSenha_Confirmação->setText("nova");
    const QString pasta = Pasta.Caminho() + "/Minhas";
    ASSERT_TRUE(QDir().mkpath(pasta));
    ASSERT_TRUE(j.DirImagens->Set_Path(pasta));
    j.cmdOk_Click();
    const Linha_Usuário ana = Lê_Usuário("Ana Lima");
    EXPECT_EQ(ana.Senha, Hash_Senha("nova"));
    EXPECT_EQ(ana.Local, pasta);
    EXPECT_EQ(ana.Rede, "");  // an alteration with a local folder writes the local field only
    EXPECT_EQ(j.DirImagens->Path(), pasta);

    // Her folder vanishes: her record falls back on the program's pictures.
    ASSERT_TRUE(QDir(pasta).removeRecursively());
    Mostra(j, "Ana Lima");
    EXPECT_EQ(j.DirImagens->Path(), QDir::cleanPath(Pasta.Caminho() + "/Ícones"));
}

TEST_F(Cadastro_Usuario_Teste, AFolderOnANetworkShareIsWrittenInItsNetworkForm) {
    const QString montada = Pasta.Caminho() + "/rede";
    ASSERT_TRUE(QDir().mkpath(montada + "/fotos"));
    Lê_Montagens = [montada] {
        return QString(
                   "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                   "90 22 0:50 / %1 rw - cifs //servidor/publico rw\n")
            .arg(montada);
    };
    EXPECT_EQ(Forma_de_Rede(montada + "/fotos"), "//servidor/publico/fotos");
    EXPECT_EQ(Forma_de_Rede(Pasta.Caminho()), "");
    EXPECT_EQ(Caminho_da_Biblioteca("//servidor/publico/fotos"), montada + "/fotos");

    frmUsuário j;
    Responde_Senha("lumen");
    j.cmdInclusão_Click();
    j.txtUsuário->setText("Bia");
    j.txtSenha->setText("b");
    j.txtSenha_Confirmação->setText("b");
    ASSERT_TRUE(j.DirImagens->Set_Path(montada + "/fotos"));
    bool Cancel = false;
    j.DirImagens_Validate(Cancel);
    j.cmdOk_Click();
    Linha_Usuário bia = Lê_Usuário("Bia");
    EXPECT_EQ(bia.Local, "//servidor/publico/fotos");
    EXPECT_EQ(bia.Rede, "//servidor/publico/fotos");

    // Her own alteration to a local folder leaves the network field as it was.
    Usuário_Atual = "Bia";
    Mostra(j, "Bia");
    EXPECT_EQ(j.DirImagens->Path(), montada + "/fotos");  // the network form is found where it is mounted
    Responde_Senha("b");
    j.cmdAlteração_Click();
    j.txtSenha->setText("b");
    j.txtSenha_Confirmação->setText("b");
    ASSERT_TRUE(j.DirImagens->Set_Path(Pasta.Caminho()));
    j.cmdOk_Click();
    bia = Lê_Usuário("Bia");
    EXPECT_EQ(bia.Local, Pasta.Caminho());
    EXPECT_EQ(bia.Rede, "//servidor/publico/fotos");
}

TEST_F(Cadastro_Usuario_Teste, AnExclusionRemovesTheRightsFirstAndRowsNamedUsuarioGoWhenShown) {
    Cria_Usuário("Ana Lima", "ana123");
    Cria_Usuário("Usuário", "x");
    Cria_Direito("frmPergunta", "Ana Lima", true, true, true, true);
    Cria_Direito("frmUsuário", "Ana Lima", false, true, false, true);
    Cria_Direito("frmPergunta", "Usuário", true, true, true, true);
    Cria_Direito("frmPergunta", "Bruno", true, true, true, true);
    frmUsuário j;
    Mostra(j, "Usuário");
    EXPECT_EQ(j.flxPermissão_de_Acesso->Rows(), 1);
    EXPECT_TRUE(Direitos("Usuário").isEmpty());

    Mostra(j, "Ana Lima");
    EXPECT_EQ(j.flxPermissão_de_Acesso->Rows(), 3);
    // On No nothing goes.
    Plataforma.Respostas = {Resposta_Caixa::Não};
    Responde_Senha("lumen");
    j.cmdExclusão_Click();
    EXPECT_TRUE(Lê_Usuário("Ana Lima").Existe);
    EXPECT_EQ(Direitos("Ana Lima").size(), 2);

    Plataforma.Caixas.clear();
    Responde_Senha("lumen");
    j.cmdExclusão_Click();
    EXPECT_EQ(Textos(), QStringList{"Confirma EXCLUSÃO?"});
    EXPECT_FALSE(Lê_Usuário("Ana Lima").Existe);
    EXPECT_TRUE(Direitos("Ana Lima").isEmpty());
    EXPECT_EQ(Direitos("Bruno"), QStringList{"frmPergunta:SSSS"});
    EXPECT_EQ(Operação, "Consulta");
    // The audit trail shows the rights deleted before the user, each under its table's name.
    Registros trilha;
    trilha.Open("Select * From tblManutenção_Banco_de_Dados Order By Código_Manutenção_Banco_de_Dados",
                Conexão_Manutenção, Opção_Abertura::Texto);
    QStringList textos;
    for (; !trilha.Eof(); trilha.MoveNext()) textos << trilha.Fields("Manutenção").Value().toString();
    ASSERT_GE(textos.size(), 4);
    EXPECT_EQ(
        textos.mid(textos.size() - 4),
        QStringList({"Atualizando Permissão onde Rotina = frmPergunta",  // "Usuário"'s, removed on showing
                     "Excluindo Permissão onde Rotina = frmPergunta",
                     "Excluindo Permissão onde Rotina = frmUsuário",
                     "Excluindo Usuário onde Usuário = Ana Lima"}));
}

// Another workstation takes every user away while the password is asked: 22 and 23, nothing else.
TEST_F(Cadastro_Usuario_Teste, AnEmptiedTableGivesMessages22And23) {
    frmUsuário j;
    auto esvazia = [] {
        Tabela_Quaternária.Reinicia();
        Abre_Tabela_Quaternária("tblUsuário");
        while (!Tabela_Quaternária.Eof()) {
            Tabela_Quaternária.Delete();
            Tabela_Quaternária.MoveNext();
        }
        Limpa_Cache_Lastrec();
    };
    for (int vez = 0; vez < 2; ++vez) {
        QTimer::singleShot(0, [this, esvazia] {
            auto* janela = dynamic_cast<frmAutentica_Senha*>(QApplication::activeModalWidget());
            ASSERT_NE(janela, nullptr);
            janela->txtSenha->setText("lumen");
            janela->cmdOk_Click();
            esvazia();
            ++Senhas_Pedidas;
        });
        if (vez == 0) {
            Mostra(j, "Ornelio Varga");
            j.cmdAlteração_Click();
        } else {
            j.txtUsuário->setText("Qualquer");
            j.cmdExclusão_Click();
        }
        if (vez == 0) Cria_Usuário("Supervisor", "lumen");
    }
    EXPECT_EQ(Senhas_Pedidas, 2);
    EXPECT_EQ(Textos(), QStringList({Aviso(22), Aviso(23)}));
    EXPECT_EQ(Operação, "Consulta");
}
}  // namespace

// The name typed for a cancelled inclusion decides nothing: the exclusion shows the stored user again and
// asks about that one. From an exclusion on, the register walks by name until it is opened again.
TEST_F(Cadastro_Usuario_Teste, AfterAnExclusionTheWalkGoesByNameAndADraftDecidesNothing) {
    for (const char* nome : {"Zeca Prado", "Ana Lima", "Bia Souza", "Carlos Reis"})
        Cria_Usuário(QString::fromUtf8(nome), "x");
    frmUsuário j;
    Mostra(j, "Zeca Prado");
    Responde_Senha("lumen");
    j.cmdInclusão_Click();
    j.txtUsuário->setText("Supervisor");
    j.cmdCancelar_Click();
    ASSERT_EQ(j.txtUsuário->text(), "Supervisor");

    Plataforma.Caixas.clear();
    QStringList na_tela;
    Plataforma.Ao_Esperar = [&] { na_tela << j.txtUsuário->text(); };
    Responde_Senha("lumen");
    j.cmdExclusão_Click();  // Sim
    Plataforma.Ao_Esperar = nullptr;
    EXPECT_EQ(Textos(), QStringList{"Confirma EXCLUSÃO?"});
    ASSERT_FALSE(na_tela.isEmpty());
    EXPECT_EQ(na_tela.last(), "Zeca Prado");
    EXPECT_FALSE(Lê_Usuário("Zeca Prado").Existe);
    EXPECT_TRUE(Lê_Usuário("Supervisor").Existe);

    // Zeca was the last by name: the window stands on the one before him, and walks back by name.
    EXPECT_EQ(j.txtUsuário->text(), "Supervisor");
    QStringList vistos;
    for (int i = 0; i < 2; ++i) {
        j.cmdMovimenta_Registro_Click(1);
        vistos << j.txtUsuário->text();
    }
    EXPECT_EQ(vistos, (QStringList{"Ornelio Varga", "Carlos Reis"}));
    // An alteration keeps that order.
    Responde_Senha("lumen");
    j.cmdAlteração_Click();
    EXPECT_EQ(Operação, "Alteração");
    EXPECT_EQ(j.txtUsuário->text(), "Carlos Reis");
    j.cmdCancelar_Click();
    j.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(j.txtUsuário->text(), "Bia Souza");
    Plataforma.Caixas.clear();
    j.cmdMovimenta_Registro_Click(1);
    j.cmdMovimenta_Registro_Click(1);
    EXPECT_EQ(j.txtUsuário->text(), "Ana Lima");
    EXPECT_EQ(Textos(), QStringList{Aviso(11)});
}
