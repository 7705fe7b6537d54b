#pragma once
// The program-wide variables through which windows and modules exchange state.

#include <QString>

inline const QString Título_Programa = "Quizora";
inline constexpr int Versão_Maior_Programa = 4;
inline constexpr int Versão_Menor_Programa = 14;
inline constexpr int Versão_Revisão_Programa = 10;
inline const QString Senha_Banco = "lumen";
inline const QString Endereço_Suporte = "suporte@norvane.com.br";
inline const QString Endereço_Site = "https://www.norvane.com.br";
inline const QString Endereço_Download = "https://www.norvane.com.br/downloads";

// "versão 4.14.10": the program's own version as windows show it.
QString Texto_Versão();

// The title with surrounding blanks removed, in capitals.
QString Título_Maiúsculo();

inline QString Comando_SQL;
inline QString Operação;  // "Consulta", "Inclusão", "Alteração" or "Exclusão"
inline QString Nome_Janela;
inline bool Em_Cadastro = false;
inline QString Usuário_Atual;
inline int Código_Usuário_Atual = 0;
inline bool Pode_Incluir = false;
inline bool Pode_Alterar = false;
inline bool Pode_Excluir = false;
inline bool Pode_Consultar = false;
inline bool Exibição_Liberada = false;
inline bool Navegando = false;
inline int Código_Localizado = 0;
inline int Linhas_Localizadas = 0;
inline QString Título_Versão;
inline QString Versão_Sistema;

// Seeds the generator with the product of four successive readings of the
// seconds-since-midnight clock, in single precision.
void Semeia_Gerador();
// A uniform draw in [0, 1) times n, rounded down.
int Sorteia(int n);

// A password reduced to one number: the sum of each character's code page 1252 code times (12 + its
// position from 1). Only this number is stored and compared.
int Hash_Senha(const QString& texto);
