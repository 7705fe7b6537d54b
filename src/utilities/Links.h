#pragma once
class QWidget;

// The maker's mail and web links, opened with the desktop's default clients.
void Envia_Email_ao_Ornelio(QWidget* Janela);
void Visita_Site_da_Norvane_Informática(QWidget* Janela);

// The maker's credit line, ending in the year of the system date.
class QString;
QString Texto_Créditos();
