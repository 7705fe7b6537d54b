#pragma once
// The background of the main window drawn at random from the user's image library, and, when the user
// asks for it, the desktop's background too.
#include <QString>
#include <functional>

class QLabel;
class Lista_Arquivos;

// False until the main window is first activated: during start-up nothing is written or shown.
inline bool Janela_Principal_Ativa = false;

// The pictures that the draw can show.
inline const QString Padrão_Imagens = "*.gif;*.jpg;*.jpeg;*.bmp;*.png";

// The text of /proc/self/mountinfo; tests put a mount table of their own here.
inline std::function<QString()> Lê_Montagens;
QString Montagens_Atuais();

// A folder on a network file system in the form the network knows it ("//servidor/fotos/ana"); empty
// for a folder on a local disk.
QString Forma_de_Rede(const QString& caminho);
// A library field as this computer reaches it: a network form mapped onto the place where its share is
// mounted; any other text as it is.
QString Caminho_da_Biblioteca(const QString& campo);

// $XDG_DATA_HOME/Quizora/Wallpaper.bmp.
QString Arquivo_Papel_de_Parede();

void Muda_Fundo_Tela(Lista_Arquivos* filImagens, QLabel* imgFundo);
