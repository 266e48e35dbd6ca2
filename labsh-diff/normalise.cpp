// Finding the values a run prints that another correct run prints otherwise,
// and putting the entries of a listing in a fixed order. Output of thousands
// of lines goes through here once per piece and once whole, so every scanner
// is written by hand and looks at each character a bounded number of times.
#include "normalise.h"

#include <algorithm>
#include <utility>

namespace ldiff {

namespace {

// Positions of the rules in Rules(): the switches come in that order.
enum : std::size_t { DIRECCIONES, PIDS, INODOS, FECHAS, HORAS, FECHAEJEC, DIRECTORIO, SHELL, PADRE, ORDEN };

constexpr Rule TABLA[] = {
    {"direcciones", "direcciones de memoria, 0x y al menos 6 cifras hexadecimales (%p) -> <A1>, <A2>...; "
                    "el puntero nulo se deja"},
    {"pids", "pids del shell, de su padre y de sus hijos donde el shell los escribe (pid, ppid, lista de "
             "bloques, fork, prioridad, lista de procesos, job, %p del prompt mostrado) -> <PID1>..."},
    {"inodos", "numeros de inodo de las lineas largas de stat y de los listados -> <INODO1>..."},
    {"fechas", "fechas: dd/mm/aaaa, aaaa/mm/dd-hh:mm, las de la lista de bloques (Mmm dd hh:mm), las de la "
               "lista de procesos y las de ctime -> <FECHA1>..."},
    {"horas", "horas hh:mm:ss -> <HORA1>..."},
    {"fechaejecutable", "fecha y hora del ejecutable en la linea de version -> <FECHAEJEC>"},
    {"directorio", "el directorio de la ejecucion -> <DIR>; su ultimo componente suelto, como en el prompt "
                   "-> <DIRBASE>"},
    {"shell", "la ruta con que se arranco el shell, en \"Ejecutar ... -p para importar el path\" -> <SHELL>"},
    {"padre", "numero de enlaces y tamano de la entrada .. en stat y en los listados (puede ser un "
              "directorio de fuera de la ejecucion) -> <PADRE>"},
    {"orden", "orden de las entradas de cada directorio en los listados, y de sus subdirectorios en los "
              "recursivos: por nombre"},
};

constexpr std::size_t npos = std::string_view::npos;
constexpr std::string_view CABECERA = "************";   // twelve: a listing's header
constexpr std::string_view ERROR_ENTRADA = " ****error al acceder a ";

bool Digito(char c) { return c >= '0' && c <= '9'; }
bool Hex(char c) { return Digito(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool Alnum(char c) { return Digito(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); }
bool DeNombre(char c) { return Alnum(c) || c == '.' || c == '-' || c == '_'; }

// Whether `t` has at `i` the shape `f`: 'd' a digit, '_' a blank or a digit,
// anything else itself.
bool Forma(std::string_view t, std::size_t i, std::string_view f) {
    if (i > t.size() || t.size() - i < f.size()) return false;
    for (std::size_t k = 0; k < f.size(); k++) {
        char c = t[i + k];
        if (f[k] == 'd' ? !Digito(c) : f[k] == '_' ? !(c == ' ' || Digito(c)) : c != f[k]) return false;
    }
    return true;
}

bool En(std::string_view t, std::size_t i, std::string_view s) { return i <= t.size() && t.substr(i).starts_with(s); }

// ctime's English abbreviations, whatever the locale.
bool Palabra3(std::string_view t, std::size_t i, std::string_view lista) {
    if (i + 3 > t.size()) return false;
    for (std::size_t k = 0; k < lista.size(); k += 3)
        if (t.substr(i, 3) == lista.substr(k, 3)) return true;
    return false;
}
bool Mes(std::string_view t, std::size_t i) { return Palabra3(t, i, "JanFebMarAprMayJunJulAugSepOctNovDec"); }
bool DiaSemana(std::string_view t, std::size_t i) { return Palabra3(t, i, "SunMonTueWedThuFriSat"); }

// Calls `f` with the position of every `s` in `t`.
template <class F> void Todas(std::string_view t, std::string_view s, F f) {
    for (std::size_t p = t.find(s); p != npos; p = t.find(s, p + 1)) f(p);
}

std::size_t FinDeLinea(std::string_view t, std::size_t i) {
    std::size_t e = t.find('\n', i);
    return e == npos ? t.size() : e;
}

std::size_t Cifras(std::string_view t, std::size_t i, std::size_t fin) {
    while (i < fin && Digito(t[i])) i++;
    return i;
}

std::size_t Blancos(std::string_view t, std::size_t i, std::size_t fin) {
    while (i < fin && t[i] == ' ') i++;
    return i;
}

constexpr std::string_view FECHA2 = "dddd/dd/dd-dd:dd";  // the date of stat's lines

// One line that describes a file: where its fields are in the text. A
// number's field takes its padding too, which changes with its width.
struct Entrada {
    std::size_t enlaces = 0, finEnlaces = 0, inodo = 0, finInodo = 0, tam = 0, finTam = 0, nombre = 0;
};

// A number right-aligned in a field from `i`: its end, or `i` for none.
std::size_t Alineado(std::string_view t, std::size_t i, std::size_t fin) {
    std::size_t d = Blancos(t, i, fin), e = Cifras(t, d, fin);
    return e == d ? i : e;
}

// The permission text: the type, nine permission letters and a blank.
bool Permisos(std::string_view t, std::size_t i) {
    if (i + 11 > t.size() || std::string_view("-dlcbps?").find(t[i]) == npos || t[i + 10] != ' ') return false;
    for (std::size_t k = 1; k <= 9; k++)
        if (std::string_view("-rwxst").find(t[i + k]) == npos) return false;
    return true;
}

// The long line: date, links, (inode), owner, group, permissions, size, name.
bool Larga(std::string_view t, std::size_t i, std::size_t fin, Entrada &e) {
    if (!Forma(t, i, FECHA2) || i + 16 >= fin || t[i + 16] != ' ') return false;
    e.enlaces = i + 17;
    e.finEnlaces = Alineado(t, e.enlaces, fin);
    if (e.finEnlaces == e.enlaces || !En(t, e.finEnlaces, " (")) return false;
    e.inodo = e.finEnlaces + 2;
    e.finInodo = Alineado(t, e.inodo, fin);
    if (e.finInodo == e.inodo || e.finInodo >= fin || t[e.finInodo] != ')') return false;
    // Owner and group are names of any width: the permission text ends them.
    std::size_t j = e.finInodo + 2;
    while (j + 11 <= fin && !(t[j - 1] == ' ' && Permisos(t, j))) j++;
    if (j + 11 > fin) return false;
    e.tam = j + 11;
    e.finTam = Alineado(t, e.tam, fin);
    if (e.finTam == e.tam || e.finTam >= fin || t[e.finTam] != ' ') return false;
    e.nombre = e.finTam + 1;
    return true;
}

// The short line: size, two blanks, the access date when asked for, name.
bool Corta(std::string_view t, std::size_t i, std::size_t fin, Entrada &e) {
    if (i >= fin || t[i] != ' ') return false;
    e.tam = i + 1;
    e.finTam = Alineado(t, e.tam, fin);
    if (e.finTam == e.tam || !En(t, e.finTam, "  ")) return false;
    e.nombre = e.finTam + 2;
    if (Forma(t, e.nombre, FECHA2) && En(t, e.nombre + 16, " ")) e.nombre += 17;  // a name holds no '/'
    return e.nombre < fin;
}

struct Buscador {
    std::string_view t;
    const RunFacts &f;
    const std::vector<bool> &on;
    std::vector<Value> v;

    bool Activa(std::size_t regla) const { return regla < on.size() && on[regla]; }

    void Poner(std::size_t regla, std::size_t b, std::size_t e, const char *kind, bool fixed = false) {
        if (Activa(regla) && b < e) v.push_back({b, e, kind, fixed});
    }

    // The run's directory wherever it stands whole; its last component as
    // a word of its own (a prompt's %B). Two runs' directories differ only
    // in their names.
    void Directorio() {
        std::string_view dir = f.dir;
        while (dir.size() > 1 && dir.back() == '/') dir.remove_suffix(1);
        if (dir.empty() || !Activa(DIRECTORIO)) return;
        auto suelta = [&](std::size_t e) { return e >= t.size() || !DeNombre(t[e]); };
        Todas(t, dir, [&](std::size_t p) {
            if (suelta(p + dir.size())) Poner(DIRECTORIO, p, p + dir.size(), "DIR", true);
        });
        std::string_view base = dir.substr(dir.rfind('/') + 1);
        if (base.empty()) return;
        Todas(t, base, [&](std::size_t p) {
            if ((p == 0 || !DeNombre(t[p - 1])) && suelta(p + base.size()))
                Poner(DIRECTORIO, p, p + base.size(), "DIRBASE", true);
        });
    }

    // The path the shell was started with, in its start-up hint. Found by
    // the hint's words, not by the program run: a shell started through a
    // script or a link prints a path of its own.
    void Shell() {
        constexpr std::string_view ANTES = "Ejecutar ", DESPUES = " -p para importar el path";
        Todas(t, ANTES, [&](std::size_t p) {
            std::size_t fin = FinDeLinea(t, p), d = t.substr(0, fin).rfind(DESPUES);
            if (d != npos && d > p + ANTES.size()) Poner(SHELL, p + ANTES.size(), d, "SHELL", true);
        });
    }

    // The phrases after which the shell prints a pid, and what must follow it.
    void PidsEnFrases() {
        static constexpr std::pair<std::string_view, std::string_view> FRASES[] = {
            {"Pid de shell: ", ""},
            {"Pid del padre del shell: ", ""},
            {"Lista de bloques asignados", ""},  // its pid ends the header line
            {"ejecutando proceso ", ""},
            {"Prioridad del proceso ", " es "},
            {"prioridad del proceso  ", ":"},
            {"prioridad de proceso ", ":"},
            {"Proceso ", " pid ya esta finalizado"},
            {"Proceso ", " terminado "},
        };
        for (auto [frase, detras] : FRASES) {
            Todas(t, frase, [&, frase = frase, detras = detras](std::size_t p) {
                std::size_t b = p + frase.size();
                if (frase.starts_with("Lista")) {
                    std::size_t fin = FinDeLinea(t, b);
                    std::size_t q = t.substr(b, fin - b).rfind(" para el proceso ");
                    if (q == npos) return;
                    b += q + 17;
                }
                std::size_t e = Cifras(t, b, t.size());
                // 0 is what a user types for "this process", never a pid shown
                if (e > b && t.substr(b, e - b) != "0" && En(t, e, detras)) Poner(PIDS, b, e, "PID");
            });
        }
    }

    // A line of the job list: "%6d %11s p=%d yyyy/mm/dd hh:mm:s ...". Its
    // priority and date, after " p=", tell it from anything else.
    void PidsDeTrabajos() {
        for (std::size_t k = t.find(" p="); k != npos; k = t.find(" p=", k + 1)) {
            std::size_t j = k + 3;
            if (j < t.size() && t[j] == '-') j++;
            std::size_t e = Cifras(t, j, t.size());
            if (e == j || !Forma(t, e, " dddd/dd/dd dd:dd:d") || k < 13 || t[k - 12] != ' ') continue;
            if (t.substr(k - 11, 11).find('\n') != npos) continue;
            std::size_t fin = k - 12, b = fin;
            while (b > 0 && Digito(t[b - 1])) b--;
            if (b == fin) continue;
            // The field is right-aligned: a pid with one more digit has one
            // blank less before it, so the blanks go with the value.
            while (b > 0 && t[b - 1] == ' ') b--;
            Poner(PIDS, b, fin, "PID");
        }
    }

    // `prompt` with no argument shows "FORMAT  --->  PROMPT": where the format
    // has %p, the prompt holds the shell's pid.
    void PidsDePrompt() {
        constexpr std::string_view FLECHA = "  --->  ";
        Todas(t, FLECHA, [&](std::size_t k) {
            // A prompt format has no blanks and fits in 1024 bytes.
            std::size_t b = k;
            while (b > 0 && k - b < 1024 && t[b - 1] != ' ' && t[b - 1] != '\t' && t[b - 1] != '\n') b--;
            std::string_view formato = t.substr(b, k - b);
            if (formato.find("%p") == npos) return;
            Expansion x(formato, t, k + FLECHA.size());
            if (x.Desde(0, x.at))
                for (auto [pb, pe] : x.pids) Poner(PIDS, pb, pe, "PID");
        });
    }

    struct Expansion {
        std::string_view formato, t;
        std::size_t at, fin;
        std::vector<char> falla;  // (format position, text position) known not to match
        std::vector<std::pair<std::size_t, std::size_t>> pids;

        Expansion(std::string_view s, std::string_view texto, std::size_t desde) : formato(s), t(texto), at(desde) {
            // The expansion ends its line, or as many more as the %n in it.
            fin = desde;
            std::size_t lineas = 1;
            for (std::size_t p = formato.find("%n"); p != npos; p = formato.find("%n", p + 2)) lineas++;
            while (lineas-- > 0 && fin < t.size()) fin = std::min(t.size(), FinDeLinea(t, fin) + 1);
            fin = std::min(fin, at + 1024);  // as long as an expansion can be
            falla.assign((formato.size() + 1) * (fin - at + 1), 0);
        }

        // Variable texts (user, host, directories) take as little as lets
        // the rest match; failures are remembered, so each state is tried once.
        bool Desde(std::size_t si, std::size_t ti) {
            if (si == formato.size()) return ti == t.size() || t[ti] == '\n';
            char &f = falla[si * (fin - at + 1) + (ti - at)];
            if (f) return false;
            bool ok = Paso(si, ti);
            f = !ok;
            return ok;
        }

        bool Literal(std::size_t si, std::size_t ti, char c) { return ti < fin && t[ti] == c && Desde(si, ti + 1); }

        bool Paso(std::size_t si, std::size_t ti) {
            if (formato[si] != '%') return Literal(si + 1, ti, formato[si]);
            if (si + 1 == formato.size()) return false;
            switch (formato[si + 1]) {
            case 'b': return Literal(si + 2, ti, ' ');
            case 't': return Literal(si + 2, ti, '\t');
            case 'n': return Literal(si + 2, ti, '\n');
            case '%': return Literal(si + 2, ti, '%');
            case 'p':
                for (std::size_t e = ti; e < fin && Digito(t[e]);)
                    if (Desde(si + 2, ++e)) return pids.emplace_back(ti, e), true;
                return false;
            case 'u':
            case 'd':
            case 'D':
            case 'B':
            case 'm':
            case 'o':
                for (std::size_t e = ti;; e++) {
                    if (Desde(si + 2, e)) return true;
                    if (e >= fin || t[e] == '\n') return false;
                }
            default: return false;
            }
        }
    };

    void Direccion(std::size_t i) {
        if (i > 0 && Alnum(t[i - 1])) return;
        std::size_t e = i + 2;
        while (e < t.size() && Hex(t[e])) e++;
        // Six digits at least: small values are typed, or a C library's null.
        if (e - i - 2 >= 6 && (e == t.size() || !Alnum(t[e]))) Poner(DIRECCIONES, i, e, "A");
    }

    // A run of digits that may start a date or a time.
    void Numero(std::size_t i) {
        auto sinCifra = [&](std::size_t e) { return e >= t.size() || !Digito(t[e]); };
        if (Forma(t, i, FECHA2) && sinCifra(i + 16)) {
            Poner(FECHAS, i, i + 16, "FECHA");
            LineaLarga(i);
        } else if (Forma(t, i, "dddd/dd/dd dd:dd:d")) {  // job list: seconds unpadded
            std::size_t e = i + 18;
            if (!sinCifra(e)) e++;
            if (sinCifra(e)) Poner(FECHAS, i, e, "FECHA");
        } else if (Forma(t, i, "dd/dd/dddd") && sinCifra(i + 10) && (i == 0 || t[i - 1] != '/')) {
            if (i >= 18 && t.substr(i - 18, 18) == "Fecha ejecutable: " && Forma(t, i + 10, ", dd:dd:dd") &&
                sinCifra(i + 20))
                Poner(FECHAEJEC, i, i + 20, "FECHAEJEC", true);
            Poner(FECHAS, i, i + 10, "FECHA");
        } else if (Forma(t, i, "dd:dd:dd") && sinCifra(i + 8) && (i == 0 || t[i - 1] != ':') &&
                   (i + 8 >= t.size() || t[i + 8] != ':')) {
            Poner(HORAS, i, i + 8, "HORA");
        }
    }

    // ctime's texts: whole in the memory file system, month to minutes in
    // the block list.
    void Ctime(std::size_t i) {
        if (i > 0 && Alnum(t[i - 1])) return;
        if (DiaSemana(t, i) && En(t, i + 3, " ") && Mes(t, i + 4) && Forma(t, i + 7, " _d dd:dd:dd dddd")) {
            Poner(FECHAS, i, i + 24, "FECHA");
        } else if (Mes(t, i) && Forma(t, i + 3, " _d dd:dd") &&
                   (i + 12 >= t.size() || (t[i + 12] != ':' && !Digito(t[i + 12])))) {
            Poner(FECHAS, i, i + 12, "FECHA");
        }
    }

    // A long line from its date on: its inode, and for the entry ".." the
    // fields of a directory that may lie outside the run.
    void LineaLarga(std::size_t i) {
        std::size_t fin = FinDeLinea(t, i);
        Entrada e;
        if (!Larga(t, i, fin, e)) return;
        Poner(INODOS, e.inodo, e.finInodo, "INODO");
        if (t.substr(e.nombre, fin - e.nombre) != "..") return;
        Poner(PADRE, e.enlaces, e.finEnlaces, "PADRE", true);
        Poner(PADRE, e.tam, e.finTam, "PADRE", true);
    }

    void LineaCorta(std::size_t i) {
        std::size_t fin = FinDeLinea(t, i);
        Entrada e;
        if (Corta(t, i, fin, e) && t.substr(e.nombre, fin - e.nombre) == "..")
            Poner(PADRE, e.tam, e.finTam, "PADRE", true);
    }
};

}  // namespace

std::span<const Rule> Rules() { return TABLA; }

std::vector<Value> FindValues(std::string_view t, const RunFacts &f, const std::vector<bool> &on) {
    Buscador b{t, f, on, {}};
    b.Directorio();
    if (b.Activa(SHELL)) b.Shell();
    if (b.Activa(PIDS)) {
        b.PidsEnFrases();
        b.PidsDeTrabajos();
        b.PidsDePrompt();
    }
    for (std::size_t i = 0; i < t.size(); i++) {
        char c = t[i];
        if (i == 0 || t[i - 1] == '\n') {
            if (c == ' ') b.LineaCorta(i);
        }
        if (c == '0' && i + 1 < t.size() && t[i + 1] == 'x')
            b.Direccion(i);
        else if (Digito(c) && (i == 0 || !Digito(t[i - 1])))
            b.Numero(i);
        else if (c >= 'A' && c <= 'Z')
            b.Ctime(i);
    }
    // Where two overlap the one that starts first wins, at the same start the
    // longer: a version line's date before the plain date inside it.
    std::sort(b.v.begin(), b.v.end(), [](const Value &x, const Value &y) {
        return x.begin != y.begin ? x.begin < y.begin : x.end > y.end;
    });
    std::vector<Value> r;
    for (Value &x : b.v)
        if (r.empty() || x.begin >= r.back().end) r.push_back(std::move(x));
    return r;
}

namespace {

// Lines of a listing that describe one entry each, with their newline.
bool EsEntrada(std::string_view l) {
    if (l.empty() || l.back() != '\n') return false;
    std::size_t fin = l.size() - 1;
    Entrada e;
    return l.starts_with(ERROR_ENTRADA) || Corta(l, 0, fin, e) || Larga(l, 0, fin, e);
}

// What entries sort by: the name, with a link's target after it.
std::string_view Nombre(std::string_view l) {
    std::size_t fin = l.size() - 1;
    Entrada e;
    if (l.starts_with(ERROR_ENTRADA)) return l.substr(ERROR_ENTRADA.size(), fin - ERROR_ENTRADA.size());
    if (Corta(l, 0, fin, e) || Larga(l, 0, fin, e)) return l.substr(e.nombre, fin - e.nombre);
    return l;
}

// One directory of a listing: its header and entries, and the listings of
// its subdirectories.
struct Grupo {
    std::size_t cabecera, fin;  // lines [cabecera, fin)
    std::string_view ruta;
    std::vector<std::size_t> hijos;
};

struct Ordenador {
    std::vector<std::string_view> &lineas;
    std::vector<Grupo> g;
    std::string &r;
    bool antes = false;  // subdirectories listed before their directory

    // Whether `h` is a subdirectory of `p`: its path is p's and one name more.
    bool EsHijo(std::size_t h, std::size_t p) const {
        std::string_view a = g[h].ruta, b = g[p].ruta;
        return a.size() > b.size() + 1 && a.starts_with(b) && a[b.size()] == '/' &&
               a.substr(b.size() + 1).find('/') == npos;
    }

    // The directory at `k` of `orden` and, right after it, the listings of
    // its subdirectories; returns where the next one starts.
    std::size_t Arbol(const std::vector<std::size_t> &orden, std::size_t k) {
        std::size_t n = orden[k], j = k + 1;
        while (j < orden.size() && EsHijo(orden[j], n)) {
            g[n].hijos.push_back(orden[j]);
            j = Arbol(orden, j);
        }
        return j;
    }

    std::string_view Hoja(std::size_t i) const { return g[i].ruta.substr(g[i].ruta.rfind('/') + 1); }

    void Escribir(std::size_t n) {
        Grupo &x = g[n];
        std::stable_sort(x.hijos.begin(), x.hijos.end(),
                         [&](std::size_t a, std::size_t b) { return Hoja(a) < Hoja(b); });
        if (antes)
            for (std::size_t h : x.hijos) Escribir(h);
        r += lineas[x.cabecera];
        std::vector<std::pair<std::string_view, std::string_view>> e;  // name, line
        for (std::size_t k = x.cabecera + 1; k < x.fin; k++) e.emplace_back(Nombre(lineas[k]), lineas[k]);
        std::sort(e.begin(), e.end());
        for (const auto &l : e) r += l.second;
        if (!antes)
            for (std::size_t h : x.hijos) Escribir(h);
    }

    // A recursive listing shows a directory right before the listing of its
    // first subdirectory, or right after that of its last one: the first
    // such pair tells which. Read backwards, a listing of the second kind is
    // one of the first.
    void Ordenar() {
        for (std::size_t k = 0; k + 1 < g.size(); k++) {
            if (EsHijo(k + 1, k)) break;
            if (EsHijo(k, k + 1)) {
                antes = true;
                break;
            }
        }
        std::vector<std::size_t> orden(g.size()), raices;
        for (std::size_t k = 0; k < orden.size(); k++) orden[k] = antes ? orden.size() - 1 - k : k;
        for (std::size_t k = 0; k < orden.size(); k = Arbol(orden, k)) raices.push_back(orden[k]);
        if (antes) std::reverse(raices.begin(), raices.end());
        for (std::size_t n : raices) Escribir(n);
    }
};

}  // namespace

std::string Reorder(std::string_view t, const std::vector<bool> &on) {
    if (ORDEN >= on.size() || !on[ORDEN] || t.find(CABECERA) == npos) return std::string(t);
    std::vector<std::string_view> lineas;
    for (std::size_t i = 0; i < t.size();) {
        std::size_t e = std::min(t.size(), FinDeLinea(t, i) + 1);
        lineas.push_back(t.substr(i, e - i));
        i = e;
    }
    std::string r;
    r.reserve(t.size());
    for (std::size_t i = 0; i < lineas.size();) {
        std::size_t c = lineas[i].find(CABECERA);
        if (c == npos || lineas[i].back() != '\n') {
            r += lineas[i++];
            continue;
        }
        // A prompt may stand before the first header of a whole output: it
        // stays where it is, whatever moves after it.
        r += lineas[i].substr(0, c);
        lineas[i].remove_prefix(c);
        Ordenador o{lineas, {}, r};
        do {
            Grupo x;
            x.cabecera = i;
            x.ruta = lineas[i].substr(CABECERA.size(), lineas[i].size() - CABECERA.size() - 1);
            for (i++; i < lineas.size() && EsEntrada(lineas[i]);) i++;
            x.fin = i;
            o.g.push_back(x);
        } while (i < lineas.size() && lineas[i].starts_with(CABECERA) && lineas[i].back() == '\n');
        o.Ordenar();
    }
    return r;
}

std::string Replace(std::string_view text, const std::vector<Value> &values,
                    const std::function<std::string(const Value &, std::string_view)> &name) {
    std::string r;
    std::size_t at = 0;
    for (const Value &v : values) {
        r.append(text.substr(at, v.begin - at));
        r += name(v, text.substr(v.begin, v.end - v.begin));
        at = v.end;
    }
    r.append(text.substr(at));
    return r;
}

}  // namespace ldiff
