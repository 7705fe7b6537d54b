#include "utilities/Links.h"

#include <QLabel>
#include <QWidget>

#include "common/Globais.h"
#include "failure/Rotina.h"
#include "platform/Plataforma.h"
#include "store/Funções_Banco.h"

namespace {
void Abre_Link(QWidget* janela, const char* rótulo, const QString& aviso, const QString& endereço) {
    Plataforma& plataforma = Plataforma_Atual();
    plataforma.Cursor_Ocupado("Relógio.Ico");
    if (auto* l = janela->findChild<QLabel*>(rótulo)) l->setText(aviso);
    plataforma.Processa_Eventos();
    plataforma.Abre_Com_Aplicativo(endereço);
    plataforma.Cursor_Normal();
}
}  // namespace

void Envia_Email_ao_Ornelio(QWidget* Janela) {
    Rotina r(Fonte_Funções_Públicas, "Envia_Email_ao_Ornelio");
    Abre_Link(Janela, "lblEmail", "Abrindo e-mail; aguarde...", "mailto:" + Endereço_Suporte);
}

void Visita_Site_da_Norvane_Informática(QWidget* Janela) {
    Rotina r(Fonte_Funções_Públicas, "Visita_Site_da_Norvane_Informática");
    Abre_Link(Janela, "lblSite", "Abrindo site; aguarde...", Endereço_Site);
}

QString Texto_Créditos() {
    return "Desenvolvido por Norvane Informática - 2004-" +
           QString::number(Plataforma_Atual().Agora().date().year());
}

void Liga_Contatos(QWidget* Janela, QLabel* lblSite, QLabel* lblEmail) {
    lblSite->setText("<a href=\"#\">" + Endereço_Site + "</a>");
    lblEmail->setText("<a href=\"#\">" + Endereço_Suporte + "</a>");
    QObject::connect(lblSite, &QLabel::linkActivated, Janela, [Janela] {
        Rotina r(Janela, "lblSite_Click");
        Visita_Site_da_Norvane_Informática(Janela);
    });
    QObject::connect(lblEmail, &QLabel::linkActivated, Janela, [Janela] {
        Rotina r(Janela, "lblEmail_Click");
        Envia_Email_ao_Ornelio(Janela);
    });
}
