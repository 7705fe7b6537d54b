#pragma once
// The error trap that every routine carries. A guard at the top of a routine names it; a store or
// file operation that fails reports through the innermost guard with the caller's line and then
// returns a neutral value, so that the routine goes on at its next statement.

#include <QString>
#include <functional>
#include <source_location>

class QObject;

using Tratador_Falha = std::function<void(long número, const QString& descrição, long linha)>;

class Rotina {
  public:
    Rotina(const QString& fonte, const QString& nome);
    // In a window the source is the window's name.
    Rotina(const QObject* janela, const QString& nome);
    // A routine with a trap of its own (Grava, Tenta_Travar, Lastrec).
    Rotina(const QString& fonte, const QString& nome, Tratador_Falha tratador);
    ~Rotina();
    Rotina(const Rotina&) = delete;
    Rotina& operator=(const Rotina&) = delete;

    QString Fonte;
    QString Nome;
    Tratador_Falha Tratador;

  private:
    Rotina* Anterior;
};

inline const QString Fonte_Funções_Públicas = "Funções Públicas";

// Reports a failure to the innermost routine's trap.
void Falha(long número, const QString& descrição,
           std::source_location onde = std::source_location::current());
// The line of the statement that fails, when it is not the caller of Falha itself.
void Falha_Na_Linha(long número, const QString& descrição, long linha);
