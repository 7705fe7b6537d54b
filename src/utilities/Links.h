#pragma once
class QWidget;

// The maker's mail and web links, opened with the desktop's default clients.
void Envia_Email_ao_Ornelio(QWidget* Janela);
void Visita_Site_da_Norvane_Informática(QWidget* Janela);

class QLabel;
// The window's site and mail labels: the addresses as links that open them.
void Liga_Contatos(QWidget* Janela, QLabel* lblSite, QLabel* lblEmail);

// The maker's credit line, ending in the year of the system date.
class QString;
QString Texto_Créditos();
