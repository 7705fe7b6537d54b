#pragma once
// What a test of a window starts from: a program folder of its own installed for windows, and the scripted
// platform with no box shown yet and no wait scripted after the test.
#include <gtest/gtest.h>

#include "support/Instalação_Teste.h"
#include "support/Pasta_Teste.h"
#include "support/Plataforma_Roteirizada.h"

class Teste_Janela : public ::testing::Test {
  protected:
    Pasta_Teste Pasta;
    Plataforma_Roteirizada Plataforma;

    void SetUp() override {
        Instala_Programa_Para_Janelas();
        Plataforma.Caixas.clear();
    }
    void TearDown() override { Plataforma.Ao_Esperar = nullptr; }
};
