#pragma once
#include <QString>

// The numbered warnings given to the user in the ordinary course of work.
void Exibe_Mensagem(int Número);
QString Texto_Mensagem(int Número);               // numbers below 100
QString Texto_Mensagem_Complementar(int Número);  // numbers from 100 up
