// The Dbase connection: .dbf files written by shapelib read through the slots, counted by Lastrec and
// decoded from their code page; the working installation found among the mounts.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "common/Cp1252.h"
#include "failure/Rotina.h"
#include "store/Dbase.h"
#include "store/Funções_Banco.h"
#include "support/Dbf_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"
#include "utilities/Unidade_Trabalho.h"

namespace {
// "Adaptação" in the DOS page: ç is 0x87 and ã is 0xC6 there.
const QByteArray Adaptação_850("Adapta\x87\xC6o");

class Dbase_Teste : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;
    void SetUp() override {
        Cria_Bancos_De_Teste();
        QDir().mkpath(Pasta_Dbase());
    }
};
}  // namespace

TEST_F(Dbase_Teste, AbreTabelaDbfReadsFieldsAndRowsAndLastrecCountsWithAWhereClause) {
    ASSERT_TRUE(Escreve_Tabelas_Memorandos(Pasta_Dbase(), "LDID/2",
                                           {{"Igreja Central", "1", "20190314"},
                                            {"", "2", "20190315"},
                                            {"*apagada*", "", ""},
                                            {Adaptação_850, "3", ""}},
                                           {{"1", "Primeira"}}));
    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
    Abre_Tabela_Dbf("NORVANE");
    ASSERT_TRUE(Tabela_Dbf.Aberto());
    ASSERT_EQ(Tabela_Dbf.Fields_Count(), 3);
    EXPECT_EQ(Tabela_Dbf.Fields(0).Name(), "CLIEN_NORV");
    EXPECT_EQ(Tabela_Dbf.Fields(0).Type(), Tipo_Texto);
    EXPECT_EQ(Tabela_Dbf.Fields(0).DefinedSize(), 40);
    EXPECT_EQ(Tabela_Dbf.Fields(1).Type(), Tipo_Long);
    EXPECT_EQ(Tabela_Dbf.Fields(2).Type(), Tipo_Data);

    QStringList clientes;
    QList<QVariant> datas;
    for (Tabela_Dbf.MoveFirst(); !Tabela_Dbf.Eof(); Tabela_Dbf.MoveNext()) {
        clientes << Tabela_Dbf.Fields("Clien_Norv").Value().toString();
        datas << Tabela_Dbf.Fields("So_Da_Norv").Value();
    }
    // The deleted row is left out; a blank date reads as no date.
    EXPECT_EQ(clientes, QStringList({"Igreja Central", "", "Adaptação"}));
    EXPECT_EQ(datas[0].toDateTime(), QDateTime(QDate(2019, 3, 14), QTime(0, 0)));
    EXPECT_TRUE(datas[2].isNull());

    EXPECT_EQ(Lastrec("NORVANE Where Clien_Norv <> ''", Conexão_Dbf), 2);
    EXPECT_EQ(Lastrec("Norvane", Conexão_Dbf), 3);
    EXPECT_EQ(Lastrec("Select * From Norvane Where Cd_Me_Norv > 1", Conexão_Dbf), 2);
}

TEST_F(Dbase_Teste, TextsAreDecodedFromTheCodePageTheTableDeclares) {
    ASSERT_TRUE(
        Escreve_Dbf(Pasta_Dbase() + "/dos.dbf", "LDID/2", {{"TEXTO", FTString, 20}}, {{Adaptação_850}}));
    ASSERT_TRUE(Escreve_Dbf(Pasta_Dbase() + "/windows.dbf", "LDID/87", {{"TEXTO", FTString, 20}},
                            {{Para_Cp1252("Adaptação")}}));
    Tabela_Dbase dos, windows;
    QString motivo;
    ASSERT_TRUE(Lê_Tabela_Dbase(Pasta_Dbase() + "/dos.dbf", dos, motivo)) << motivo.toStdString();
    ASSERT_TRUE(Lê_Tabela_Dbase(Pasta_Dbase() + "/windows.dbf", windows, motivo)) << motivo.toStdString();
    EXPECT_EQ(dos.Linhas[0][0].toString(), "Adaptação");
    EXPECT_EQ(windows.Linhas[0][0].toString(), "Adaptação");
    // A table that declares no page is taken as DOS, the page of the old programs.
    EXPECT_EQ(Texto_Dbase(Adaptação_850, ""), "Adaptação");
}

TEST_F(Dbase_Teste, NumbersWithDecimalsAndLogicalFieldsKeepTheirKinds) {
    ASSERT_TRUE(Escreve_Dbf(Pasta_Dbase() + "/valores.dbf", "LDID/87",
                            {{"PRECO", FTDouble, 10, 2}, {"ATIVO", FTLogical, 1}, {"GRANDE", FTInteger, 12}},
                            {{"12.50", "T", "12345678901"}, {"", "?", ""}}));
    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
    Abre_Tabela_Dbf("valores");
    ASSERT_TRUE(Tabela_Dbf.Aberto());
    EXPECT_EQ(Tabela_Dbf.Fields("PRECO").Type(), Tipo_Double);
    EXPECT_EQ(Tabela_Dbf.Fields("ATIVO").Type(), Tipo_Boolean);
    EXPECT_EQ(Tabela_Dbf.Fields("GRANDE").Type(), Tipo_Double);  // too wide for 32 bits
    Tabela_Dbf.MoveFirst();
    EXPECT_DOUBLE_EQ(Tabela_Dbf.Fields("PRECO").Value().toDouble(), 12.5);
    EXPECT_TRUE(Tabela_Dbf.Fields("ATIVO").Value().toBool());
    EXPECT_DOUBLE_EQ(Tabela_Dbf.Fields("GRANDE").Value().toDouble(), 12345678901.0);
    Tabela_Dbf.MoveNext();
    EXPECT_TRUE(Tabela_Dbf.Fields("PRECO").Value().isNull());
    EXPECT_TRUE(Tabela_Dbf.Fields("ATIVO").Value().isNull());
}

TEST_F(Dbase_Teste, DamagedTablesAreRefusedWithAReasonAndNothingIsOpened) {
    ASSERT_TRUE(Escreve_Tabelas_Memorandos(Pasta_Dbase(), "LDID/87",
                                           {{"A", "1", "20190314"}, {"B", "2", "20190314"}}, {{"1", "x"}}));
    // Cut short: the header promises rows that the file no longer holds.
    QFile norvane(Pasta_Dbase() + "/NORVANE.dbf");  // shapelib writes the extension in small letters
    ASSERT_TRUE(QFile::resize(norvane.fileName(), norvane.size() - 40));
    Tabela_Dbase tabela;
    QString motivo;
    EXPECT_FALSE(Lê_Tabela_Dbase(norvane.fileName(), tabela, motivo));
    EXPECT_EQ(motivo, "A tabela NORVANE.dbf está danificada");

    QFile lixo(Pasta_Dbase() + "/lixo.dbf");
    ASSERT_TRUE(lixo.open(QIODevice::WriteOnly));
    lixo.write("isto não é uma tabela");
    lixo.close();
    EXPECT_FALSE(Lê_Tabela_Dbase(lixo.fileName(), tabela, motivo));
    EXPECT_FALSE(motivo.isEmpty());

    QList<long> falhas;
    Rotina trap("Teste", "Captura", [&](long n, const QString&, long) { falhas << n; });
    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
    EXPECT_EQ(falhas, QList<long>({-2147467259}));
}

TEST_F(Dbase_Teste, AFolderWithoutTablesOpensButHasNoTableToOpen) {
    QDir(Pasta_Dbase()).removeRecursively();
    Reaponta_Conexão(Conexão_Dbf, Conexão_Dbase());
    EXPECT_TRUE(Conexão_Dbf.Aberta());
    // The opener's failure reaches the error handler, as any opener's does.
    EXPECT_THROW(Abre_Tabela_Dbf("Norvane"), Programa_Encerrado);
    EXPECT_FALSE(Tabela_Dbf.Aberto());
    ASSERT_EQ(Plataforma.Caixas.size(), 1);
    EXPECT_TRUE(Plataforma.Caixas[0].Texto.contains("(Código 3704)"));
}

TEST(Unidade_Trabalho_Teste, IsTheMountPointWhoseNorvaneFolderIsTheProgramsFolder) {
    const QString montagens =
        "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
        "30 22 8:17 / /media/trabalho rw,relatime shared:9 - vfat /dev/sdb1 rw\n"
        "31 22 8:33 / /media/meu\\040disco rw,relatime shared:10 - ext4 /dev/sdc1 rw\n";
    EXPECT_EQ(Unidade_Trabalho_De("/media/trabalho/Norvane", montagens), "/media/trabalho");
    EXPECT_EQ(Unidade_Trabalho_De("/media/trabalho/norvane/", montagens), "/media/trabalho");
    EXPECT_EQ(Unidade_Trabalho_De("/Norvane", montagens), "/");
    EXPECT_EQ(Unidade_Trabalho_De("/media/meu disco/NORVANE", montagens), "/media/meu disco");
    // Deeper, or another name: an ordinary installation.
    EXPECT_EQ(Unidade_Trabalho_De("/media/trabalho/Programas/Norvane", montagens), "");
    EXPECT_EQ(Unidade_Trabalho_De("/home/ana/Norvane", montagens), "");
    EXPECT_EQ(Unidade_Trabalho_De("/media/trabalho/Quizora", montagens), "");
    EXPECT_EQ(Unidade_Trabalho_De("/media/trabalho/Norvane", ""), "");
}
