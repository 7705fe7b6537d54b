#include "store/Comparação.h"

#include <QChar>
#include <sqlite3.h>

#include <string>
#include <vector>

namespace {

// Decodes one UTF-8 character; malformed bytes stand for themselves.
char32_t Lê_Caractere(const unsigned char*& p, const unsigned char* fim) {
    const unsigned char c = *p++;
    if (c < 0x80) return c;
    int extra = 0;
    char32_t valor = 0;
    if ((c & 0xE0) == 0xC0) {
        extra = 1;
        valor = c & 0x1F;
    } else if ((c & 0xF0) == 0xE0) {
        extra = 2;
        valor = c & 0x0F;
    } else if ((c & 0xF8) == 0xF0) {
        extra = 3;
        valor = c & 0x07;
    } else {
        return c;
    }
    for (int i = 0; i < extra && p < fim && (*p & 0xC0) == 0x80; ++i) valor = (valor << 6) | (*p++ & 0x3F);
    return valor;
}

char32_t Minúscula(char32_t c) {
    if (c < 0x80) return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    if (c > 0xFFFF) return c;
    return QChar::toCaseFolded(static_cast<char32_t>(c));
}

// The base letter of a lower-case Latin-1 letter.
char32_t Sem_Acento(char32_t c) {
    if (c < 0xE0 || c > 0xFF) return c;
    static const char base[] = "aaaaaaaceeeeiiiidnooooo/ouuuuyty";
    return static_cast<unsigned char>(base[c - 0xE0]);
}

}  // namespace

int Compara_Textos(const char* a, std::size_t tamanho_a, const char* b, std::size_t tamanho_b) {
    auto pa = reinterpret_cast<const unsigned char*>(a);
    auto pb = reinterpret_cast<const unsigned char*>(b);
    const auto fa = pa + tamanho_a;
    const auto fb = pb + tamanho_b;
    int desempate = 0;  // first difference of accent, used when the base letters are all equal
    while (pa < fa && pb < fb) {
        const char32_t ca = Minúscula(Lê_Caractere(pa, fa));
        const char32_t cb = Minúscula(Lê_Caractere(pb, fb));
        if (ca == cb) continue;
        const char32_t ba = Sem_Acento(ca);
        const char32_t bb = Sem_Acento(cb);
        if (ba != bb) return ba < bb ? -1 : 1;
        if (desempate == 0) desempate = ca < cb ? -1 : 1;
    }
    if (pa < fa) return 1;
    if (pb < fb) return -1;
    return desempate;
}

namespace {
// One place of a Like pattern: a letter, _ (any one), % (any run) or a bracket [...] of letters.
struct Símbolo_Like {
    enum Tipo : unsigned char { Letra, Qualquer_Um, Qualquer_Sequência, Conjunto } Tipo;
    char32_t Letra_ = 0;
    bool Negado = false;
    std::vector<std::pair<char32_t, char32_t>> Faixas;  // of a bracket: single letters are a-a

    bool Aceita(char32_t c) const {
        if (Tipo == Letra) return c == Letra_;
        if (Tipo == Qualquer_Um) return true;
        bool dentro = false;
        for (const auto& [de, até] : Faixas) dentro = dentro || (c >= de && c <= até);
        return dentro != Negado;
    }
};

// [abc], [a-z] and [!a-z], as Jet reads them; a bracket that never closes is a letter.
std::vector<Símbolo_Like> Decodifica_Padrão(const std::vector<char32_t>& p) {
    std::vector<Símbolo_Like> símbolos;
    for (std::size_t i = 0; i < p.size(); ++i) {
        Símbolo_Like s{Símbolo_Like::Letra};
        if (p[i] == U'_') {
            s.Tipo = Símbolo_Like::Qualquer_Um;
        } else if (p[i] == U'%') {
            s.Tipo = Símbolo_Like::Qualquer_Sequência;
        } else if (p[i] == U'[') {
            std::size_t fim = i + 1;
            if (fim < p.size() && p[fim] == U'!') ++fim;
            if (fim < p.size()) ++fim;  // a ] right after the opening is a letter of the set
            while (fim < p.size() && p[fim] != U']') ++fim;
            if (fim >= p.size()) {
                s.Letra_ = p[i];
            } else {
                s.Tipo = Símbolo_Like::Conjunto;
                std::size_t k = i + 1;
                if (p[k] == U'!') {
                    s.Negado = true;
                    ++k;
                }
                for (; k < fim; ++k) {
                    if (k + 2 < fim && p[k + 1] == U'-') {
                        s.Faixas.push_back({p[k], p[k + 2]});
                        k += 2;
                    } else {
                        s.Faixas.push_back({p[k], p[k]});
                    }
                }
                i = fim;
            }
        } else {
            s.Letra_ = p[i];
        }
        símbolos.push_back(std::move(s));
    }
    return símbolos;
}
}  // namespace

bool Combina_Like(const char* padrão, std::size_t tamanho_padrão, const char* texto,
                  std::size_t tamanho_texto) {
    // A search runs the same pattern over every row: it is decoded once, and the buffers are kept.
    thread_local std::string último_padrão;
    thread_local std::vector<Símbolo_Like> p;
    thread_local std::vector<char32_t> t;
    if (último_padrão.size() != tamanho_padrão ||
        último_padrão.compare(0, tamanho_padrão, padrão, tamanho_padrão) || p.empty()) {
        último_padrão.assign(padrão, tamanho_padrão);
        t.clear();
        for (auto c = reinterpret_cast<const unsigned char*>(padrão), f = c + tamanho_padrão; c < f;)
            t.push_back(Minúscula(Lê_Caractere(c, f)));
        p = Decodifica_Padrão(t);
    }
    t.clear();
    for (auto c = reinterpret_cast<const unsigned char*>(texto), f = c + tamanho_texto; c < f;)
        t.push_back(Minúscula(Lê_Caractere(c, f)));
    // Greedy match with one back-tracking point for the last %.
    constexpr auto Sequência = Símbolo_Like::Qualquer_Sequência;
    std::size_t i = 0, j = 0, estrela = SIZE_MAX, marca = 0;
    while (j < t.size()) {
        if (i < p.size() && p[i].Tipo != Sequência && p[i].Aceita(t[j])) {
            ++i;
            ++j;
        } else if (i < p.size() && p[i].Tipo == Sequência) {
            estrela = i++;
            marca = j;
        } else if (estrela != SIZE_MAX) {
            i = estrela + 1;
            j = ++marca;
        } else {
            return false;
        }
    }
    while (i < p.size() && p[i].Tipo == Sequência) ++i;
    return i == p.size();
}

namespace {
int Colação_Jet(void*, int na, const void* a, int nb, const void* b) {
    return Compara_Textos(static_cast<const char*>(a), static_cast<std::size_t>(na),
                          static_cast<const char*>(b), static_cast<std::size_t>(nb));
}

void Função_Like(sqlite3_context* contexto, int argc, sqlite3_value** argv) {
    if (argc < 2 || sqlite3_value_type(argv[0]) == SQLITE_NULL ||
        sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_null(contexto);
        return;
    }
    const auto padrão = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const int np = sqlite3_value_bytes(argv[0]);
    const auto texto = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
    const int nt = sqlite3_value_bytes(argv[1]);
    sqlite3_result_int(
        contexto, Combina_Like(padrão, static_cast<std::size_t>(np), texto, static_cast<std::size_t>(nt)));
}
}  // namespace

void Registra_Comparação(sqlite3* banco) {
    sqlite3_create_collation(banco, "JET", SQLITE_UTF8, nullptr, Colação_Jet);
    sqlite3_create_function(banco, "like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, Função_Like,
                            nullptr, nullptr);
}
