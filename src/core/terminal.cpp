// Line editing at a terminal, through editline. When standard input and
// output are a terminal, the prompt is printed and the line read by the
// editor: emacs keys and the user's ~/.editrc, recall over the shell's own
// history list, completion of command and file names. Anywhere else nothing
// here runs and input goes through LeerLinea as it always did.
//
// The terminal is in the editor's mode only while a line is read: the mode
// found when the read began is put back before the line is returned, so the
// programs the shell runs and whoever has the terminal after the shell find
// it as it was. For the same reason the signals whose default action ends or
// stops the shell are caught during the read, but only while their
// disposition is the default: the handler puts the mode back and lets the
// default action happen. Any other disposition (ignored, or a handler set by
// the signal commands) acts on the read as on a read without the editor: a
// handler without SA_RESTART makes it fail.
#include "core/core.h"

#ifdef LABSH_EDITLINE

#include <cerrno>
#include <climits>
#include <clocale>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>
#include <dirent.h>
#include <dlfcn.h>
#include <histedit.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

// ------------------------------------------------------------ the library

// The shell is not linked with editline: it is loaded the first time a line
// is read at a terminal, so that a script or a pipe starts without it and
// the terminal libraries it needs. If it cannot be loaded, lines are read
// as without it.
struct FuncionesEditline {
    EditLine *(*init)(const char *, FILE *, FILE *, FILE *);
    int (*set)(EditLine *, int, ...);
    const char *(*gets)(EditLine *, int *);
    const LineInfo *(*line)(EditLine *);
    int (*insertstr)(EditLine *, const char *);
    void (*reset)(EditLine *);
    void (*resize)(EditLine *);
    int (*source)(EditLine *, const char *);
};
FuncionesEditline lib;

template <typename Funcion> bool Resolver(void *biblioteca, const char *nombre, Funcion &f) {
    f = reinterpret_cast<Funcion>(dlsym(biblioteca, nombre));
    return f != nullptr;
}

bool Cargar() {
    enum class Carga { Pendiente, Hecha, Imposible };
    static Carga carga = Carga::Pendiente;
    if (carga != Carga::Pendiente) return carga == Carga::Hecha;
    void *b = dlopen(LABSH_EDITLINE_BIBLIOTECA, RTLD_NOW | RTLD_LOCAL);
    bool completa = b != nullptr && Resolver(b, "el_init", lib.init) && Resolver(b, "el_set", lib.set) &&
                    Resolver(b, "el_gets", lib.gets) && Resolver(b, "el_line", lib.line) &&
                    Resolver(b, "el_insertstr", lib.insertstr) && Resolver(b, "el_reset", lib.reset) &&
                    Resolver(b, "el_resize", lib.resize) && Resolver(b, "el_source", lib.source);
    if (b != nullptr && !completa) dlclose(b);
    carga = completa ? Carga::Hecha : Carga::Imposible;
    return completa;
}

// ------------------------------------------------------------------ state

EditLine *editor = nullptr;
bool editorFallido = false;  // no editor to be had: lines are read without editing

char prompt[1024];  // expansion of the prompt for the line being read

std::string resto;  // what is left of an edited line longer than a line buffer

bool enLectura = false;  // between Empezar and Acabar
struct termios modoEncontrado;
bool conModoEncontrado = false;
struct termios modoEdicion;  // the editor's, to put back after a stop
bool conModoEdicion = false;

volatile sig_atomic_t redimensionar = 0, continuar = 0;
int columnas = 80;  // the terminal's width as the editor last drew the line

int Columnas() {
    int c = NumberOfColumns();
    return c > 0 ? c : 80;
}

// ------------------------------------------------------------- signals

void RestaurarYRepetir(int sig) {
    int error = errno;
    if (conModoEncontrado) tcsetattr(STDIN_FILENO, TCSANOW, &modoEncontrado);
    struct sigaction defecto {};
    defecto.sa_handler = SIG_DFL;
    sigemptyset(&defecto.sa_mask);
    sigaction(sig, &defecto, nullptr);
    sigset_t s;
    sigemptyset(&s);
    sigaddset(&s, sig);
    sigprocmask(SIG_UNBLOCK, &s, nullptr);
    raise(sig);  // the default action: the shell ends, or stops here
    errno = error;
}

void AlTerminar(int sig) { RestaurarYRepetir(sig); }

void AlParar(int sig) {
    RestaurarYRepetir(sig);
    // Continued (or never stopped: an orphaned process group is not): the
    // editor's mode is put back, the line drawn again, and the next stop
    // caught too.
    continuar = 1;
    struct sigaction propia {};
    propia.sa_handler = AlParar;
    sigemptyset(&propia.sa_mask);
    sigaction(sig, &propia, nullptr);
}

void AlContinuar(int) { continuar = 1; }
void AlRedimensionar(int) { redimensionar = 1; }

struct Vigilada {
    int senal;
    void (*manejador)(int);
};

const Vigilada vigiladas[] = {
    {SIGHUP, AlTerminar},  {SIGINT, AlTerminar},  {SIGQUIT, AlTerminar},   {SIGTERM, AlTerminar},
    {SIGALRM, AlTerminar}, {SIGUSR1, AlTerminar}, {SIGUSR2, AlTerminar},   {SIGTSTP, AlParar},
    {SIGCONT, AlContinuar}, {SIGWINCH, AlRedimensionar},
};
struct sigaction anteriores[std::size(vigiladas)];
bool puestas[std::size(vigiladas)];

void Vigilar() {
    for (size_t i = 0; i < std::size(vigiladas); i++) {
        puestas[i] = false;
        if (sigaction(vigiladas[i].senal, nullptr, &anteriores[i]) == -1) continue;
        if ((anteriores[i].sa_flags & SA_SIGINFO) != 0 || anteriores[i].sa_handler != SIG_DFL) continue;
        struct sigaction propia {};
        propia.sa_handler = vigiladas[i].manejador;
        sigemptyset(&propia.sa_mask);
        propia.sa_flags = 0;  // the read is interrupted: a resize is drawn at once
        puestas[i] = sigaction(vigiladas[i].senal, &propia, nullptr) == 0;
    }
}

void DejarDeVigilar() {
    for (size_t i = 0; i < std::size(vigiladas); i++)
        if (puestas[i]) sigaction(vigiladas[i].senal, &anteriores[i], nullptr);
    std::fill(std::begin(puestas), std::end(puestas), false);
}

// The user's character set while the editor works (it decodes what is
// typed and measures the prompt); the rest of the shell keeps the C locale.
void Empezar() {
    conModoEncontrado = tcgetattr(STDIN_FILENO, &modoEncontrado) == 0;
    conModoEdicion = false;
    redimensionar = 0;
    continuar = 0;
    columnas = Columnas();
    Vigilar();
    setlocale(LC_CTYPE, "");
    enLectura = true;
}

void Acabar() {
    setlocale(LC_CTYPE, "C");
    if (conModoEncontrado) tcsetattr(STDIN_FILENO, TCSADRAIN, &modoEncontrado);
    DejarDeVigilar();
    enLectura = false;
}

// ------------------------------------------------------------- reading

// After a resize the editor draws the prompt and the line again from where
// it takes the cursor to be: the start of the prompt. The cursor is taken
// there from the place it had in the old width, and the old drawing erased.
void RedibujarConOtroAncho(EditLine *el) {
    const LineInfo *li = lib.line(el);
    std::string antes = std::string(prompt) + std::string(li->buffer, li->cursor);
    int fila = 0, col = 0;
    for (char c : antes) {
        if (c == '\n') {
            fila++;
            col = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {  // not inside a character
            col = c == '\t' ? (col / 8 + 1) * 8 : col + 1;
            if (col >= columnas) {
                fila++;
                col = c == '\t' ? 0 : col - columnas;
            }
        }
    }
    printf("\r");
    for (int i = 0; i < fila; i++) lib.set(el, EL_ECHOTC, "-s", "up", nullptr);
    lib.set(el, EL_ECHOTC, "-s", "cd", nullptr);
    columnas = Columnas();
    lib.resize(el);
    lib.set(el, EL_REFRESH);
}

// One byte from the terminal: 1, 0 at the end of input, -1 on a failed read.
// A resize or a continuation after a stop redraws the line and reads on.
int LeerByte(EditLine *el, char *b) {
    if (!conModoEdicion) conModoEdicion = tcgetattr(STDIN_FILENO, &modoEdicion) == 0;
    while (true) {
        if (continuar) {
            continuar = 0;
            if (conModoEdicion) tcsetattr(STDIN_FILENO, TCSADRAIN, &modoEdicion);
            lib.set(el, EL_REFRESH);
        }
        if (redimensionar) {
            redimensionar = 0;
            RedibujarConOtroAncho(el);
        }
        ssize_t n = read(STDIN_FILENO, b, 1);
        if (n >= 0) return static_cast<int>(n);
        if (errno != EINTR || !(continuar || redimensionar)) return -1;
    }
}

#ifdef LABSH_EDITLINE_ESTRECHA
int LeerCaracter(EditLine *el, char *c) { return LeerByte(el, c); }
#else
int LeerCaracter(EditLine *el, wchar_t *c) {
    mbstate_t estado{};
    while (true) {
        char b;
        int n = LeerByte(el, &b);
        if (n <= 0) return n;
        wchar_t w;
        size_t k = mbrtowc(&w, &b, 1, &estado);
        if (k == static_cast<size_t>(-2)) continue;  // more bytes of this character to come
        // A byte that is no character in this locale goes in as it is.
        *c = k == static_cast<size_t>(-1) ? static_cast<wchar_t>(static_cast<unsigned char>(b)) : w;
        return 1;
    }
}
#endif

char *PromptEdicion(EditLine *) { return prompt; }

// --------------------------------------------------------------- history

// Recall walks the shell's history list itself: what historic shows, in its
// order, cleared with it. Event numbers are positions in the list; the
// first event is the newest.
int totalHistoria = 0;  // the history does not change while a line is read

int Historia(void *, HistEvent *ev, int op, ...) {
    static int actual = -1;
    const int total = totalHistoria;
    int nuevo;
    switch (op) {
    case H_FIRST: nuevo = total - 1; break;
    case H_LAST: nuevo = total > 0 ? 0 : -1; break;
    case H_NEXT: nuevo = actual - 1; break;
    case H_PREV: nuevo = actual + 1; break;
    case H_CURR: nuevo = actual; break;
    case H_GETSIZE:
        ev->num = total;
        ev->str = "";
        return 0;
    default: nuevo = -1; break;  // nothing is entered or changed through the editor
    }
    if (nuevo < 0 || nuevo >= total) {
        ev->num = 0;
        ev->str = "";
        return -1;
    }
    actual = nuevo;
    ev->num = actual;
    ev->str = HistoricGet(actual);
    return 0;
}

// ------------------------------------------------------------ completion

struct Candidato {
    std::string palabra;  // what goes into the line
    std::string mostrado; // what a listing shows
};

bool EsSeparador(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// A first word the dispatcher would run as an internal command right now.
bool EsInterna(const char *palabra) {
    if (!OverRide(nullptr) && !IsValidCommand(palabra)) return false;
    const char *real = RealCommand(palabra);
    if (real == nullptr) return false;
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++)
        if (strcmp(c->nombre, real) == 0) return true;
    return false;
}

void Ordenes(const std::string &prefijo, std::vector<Candidato> &v) {
    auto probar = [&](const char *w) {
        if (strncmp(w, prefijo.c_str(), prefijo.size()) == 0 && EsInterna(w)) v.push_back({w, w});
    };
    if (OverRide(nullptr)) {
        for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++) probar(c->nombre);
        for (const EntradaAlias *a = TablaAlias(); a->comando != nullptr; a++) probar(a->alias);
        return;
    }
    for (const char *const *const *l = ListasValidas(); *l != nullptr; l++)
        for (const char *const *w = *l; *w != nullptr; w++) probar(*w);
}

struct CerrarDir {
    void operator()(DIR *d) const { closedir(d); }
};

void Ficheros(const std::string &palabra, std::vector<Candidato> &v) {
    size_t barra = palabra.rfind('/');
    std::string dir = barra == std::string::npos ? "" : palabra.substr(0, barra + 1);
    std::string base = palabra.substr(dir.size());
    std::unique_ptr<DIR, CerrarDir> d(opendir(dir.empty() ? "." : dir.c_str()));
    if (d == nullptr) return;
    while (const dirent *e = readdir(d.get())) {
        const char *n = e->d_name;
        if (strncmp(n, base.c_str(), base.size()) != 0) continue;
        if (strcmp(n, ".") == 0 || strcmp(n, "..") == 0) continue;
        if (n[0] == '.' && base.empty()) continue;  // hidden files only when asked for
        std::string ruta = dir + n;
        struct stat st;
        const char *fin = stat(ruta.c_str(), &st) == 0 && S_ISDIR(st.st_mode) ? "/" : "";
        v.push_back({ruta + fin, std::string(n) + fin});
    }
}

// The candidates in columns, as many as the terminal's width holds.
void Listar(const std::vector<Candidato> &v) {
    size_t ancho = 0;
    for (const Candidato &c : v) ancho = std::max(ancho, c.mostrado.size());
    int columnas = NumberOfColumns();
    if (columnas <= 0) columnas = 80;
    size_t porFila = std::max<size_t>(1, (static_cast<size_t>(columnas) + 1) / (ancho + 2));
    size_t filas = (v.size() + porFila - 1) / porFila;
    printf("\n");
    for (size_t f = 0; f < filas; f++) {
        for (size_t i = f; i < v.size(); i += filas) {
            if (i + filas < v.size())
                printf("%-*s", static_cast<int>(ancho + 2), v[i].mostrado.c_str());
            else
                printf("%s", v[i].mostrado.c_str());
        }
        printf("\n");
    }
}

// Tab: the first word from the commands, later words from file names. One
// candidate is completed with a blank after it; several, as far as they
// agree; a second Tab that adds nothing lists them.
unsigned char Completar(EditLine *el, int) {
    static std::string anterior;  // line and cursor after a Tab that left a choice
    const LineInfo *li = lib.line(el);
    const char *inicio = li->cursor;
    while (inicio > li->buffer && !EsSeparador(inicio[-1])) inicio--;
    const std::string palabra(inicio, li->cursor);
    std::vector<Candidato> v;
    if (std::all_of(li->buffer, inicio, EsSeparador))
        Ordenes(palabra, v);
    else
        Ficheros(palabra, v);
    if (v.empty()) return CC_ERROR;
    std::sort(v.begin(), v.end(), [](const Candidato &a, const Candidato &b) { return a.palabra < b.palabra; });
    v.erase(std::unique(v.begin(), v.end(), [](const Candidato &a, const Candidato &b) { return a.palabra == b.palabra; }),
            v.end());
    std::string comun = v.front().palabra;
    for (const Candidato &c : v) comun.resize(std::mismatch(comun.begin(), comun.end(), c.palabra.begin(), c.palabra.end()).first - comun.begin());
    std::string anadir = comun.substr(palabra.size());
    if (v.size() == 1 && comun.back() != '/') anadir += ' ';
    if (!anadir.empty()) lib.insertstr(el, anadir.c_str());
    if (v.size() == 1) return CC_REFRESH;
    li = lib.line(el);
    std::string estado = std::string(li->buffer, li->lastchar) + '\n' + std::to_string(li->cursor - li->buffer);
    bool segundo = anadir.empty() && estado == anterior;
    anterior = estado;
    if (!anadir.empty()) return CC_REFRESH;
    if (!segundo) return CC_ERROR;
    Listar(v);
    return CC_REDISPLAY;
}

// ----------------------------------------------------------------- set-up

void Configurar(EditLine *el) {
    lib.set(el, EL_PROMPT, PromptEdicion);
    lib.set(el, EL_EDITOR, "emacs");
    static int referencia;  // the editor wants one; the history is the shell's
    lib.set(el, EL_HIST, Historia, &referencia);
    lib.set(el, EL_GETCFN, LeerCaracter);
    lib.set(el, EL_ADDFN, "labsh-complete", "Completa ordenes y nombres de fichero", Completar);
    lib.set(el, EL_BIND, "^I", "labsh-complete", nullptr);
    lib.set(el, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    lib.set(el, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
    lib.set(el, EL_BIND, "\\e[1~", "ed-move-to-beg", nullptr);
    lib.set(el, EL_BIND, "\\e[4~", "ed-move-to-end", nullptr);
    lib.source(el, nullptr);  // ~/.editrc, or $EDITRC, as editline reads it
}

bool Iniciar() {
    if (editor != nullptr) return true;
    if (editorFallido) return false;
    if (!Cargar()) {
        editorFallido = true;
        return false;
    }
    struct termios antes;
    bool conModo = tcgetattr(STDIN_FILENO, &antes) == 0;
    setlocale(LC_CTYPE, "");
    editor = lib.init("labsh", stdin, stdout, stderr);
    if (editor != nullptr) Configurar(editor);
    setlocale(LC_CTYPE, "C");
    // Starting, the editor may set what it takes for a normal mode.
    if (conModo) tcsetattr(STDIN_FILENO, TCSADRAIN, &antes);
    editorFallido = editor == nullptr;
    return !editorFallido;
}

// The editor draws prompts of one line: the lines of a longer one but the
// last are printed here, and the last one is handed over with its tabs as
// blanks, which the editor can measure.
void PrepararPrompt() {
    const char *texto = TextoPrompt();
    const char *ultima = strrchr(texto, '\n');
    if (ultima != nullptr) {
        fwrite(texto, 1, static_cast<size_t>(ultima + 1 - texto), stdout);
        texto = ultima + 1;
    }
    size_t n = 0;
    for (; *texto != '\0' && n < sizeof prompt - 1; texto++) {
        if (*texto != '\t') {
            prompt[n++] = *texto;
            continue;
        }
        do prompt[n++] = ' ';
        while (n % 8 != 0 && n < sizeof prompt - 1);
    }
    prompt[n] = '\0';
}

bool LeerConEditor() {
    if (enLectura) {  // a read left by a jump to the restore point
        lib.reset(editor);
        Acabar();
    }
    PrepararPrompt();
    fflush(stdout);
    totalHistoria = HistoricDimension();
    Empezar();
    int n = 0;
    const char *s = lib.gets(editor, &n);
    Acabar();
    if (s == nullptr) {
        if (n == 0) MarcarFinEntrada();
        return false;
    }
    resto.assign(s);
    return !resto.empty();
}

}  // namespace

bool EditorDisponible() { return Cargar(); }

bool EdicionDeLinea() {
    if (!resto.empty()) return true;
    if (editorFallido || EntradaSinEspera()) return false;
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO) && Iniciar();
}

char *LeerLineaEditada(char *linea, int tam) {
    if (tam <= 1) return nullptr;
    if (!resto.empty())
        PrintPrompt();  // each piece of a long line is read after a prompt of its own
    else if (!LeerConEditor())
        return nullptr;
    // As LeerLinea: through the first newline, at most tam-1 characters.
    const size_t maximo = static_cast<size_t>(tam) - 1;
    size_t largo = std::min(resto.find('\n'), resto.size() - 1) + 1;
    largo = std::min(largo, maximo);
    memcpy(linea, resto.data(), largo);
    linea[largo] = '\0';
    resto.erase(0, largo);
    return linea;
}

#else

bool EditorDisponible() { return false; }
bool EdicionDeLinea() { return false; }
char *LeerLineaEditada(char *, int) { return nullptr; }

#endif
