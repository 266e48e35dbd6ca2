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

// What is left of an edited line after the piece handed to the loop: a line
// longer than the loop's buffer goes to it in pieces, as from a script. This
// holds sixteen such pieces, far more than anyone types or pastes at a
// prompt (the terminal driver keeps 4095 characters of a line read without
// the editor); what an edited line has beyond that is dropped.
char resto[1 << 16];
size_t restoInicio = 0, restoFin = 0;  // not yet handed over: resto[restoInicio, restoFin)

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
constexpr size_t NVIGILADAS = sizeof vigiladas / sizeof vigiladas[0];
struct sigaction anteriores[NVIGILADAS];
bool puestas[NVIGILADAS];

void Vigilar() {
    for (size_t i = 0; i < NVIGILADAS; i++) {
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
    for (size_t i = 0; i < NVIGILADAS; i++) {
        if (puestas[i]) sigaction(vigiladas[i].senal, &anteriores[i], nullptr);
        puestas[i] = false;
    }
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
struct Posicion {
    int fila = 0, col = 0;
};

void Avanzar(Posicion &p, const char *desde, const char *hasta) {
    for (; desde < hasta; desde++) {
        const char c = *desde;
        if (c == '\n') {
            p.fila++;
            p.col = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {  // not inside a character
            p.col = c == '\t' ? (p.col / 8 + 1) * 8 : p.col + 1;
            if (p.col >= columnas) {
                p.fila++;
                p.col = c == '\t' ? 0 : p.col - columnas;
            }
        }
    }
}

void RedibujarConOtroAncho(EditLine *el) {
    const LineInfo *li = lib.line(el);
    Posicion cursor;
    Avanzar(cursor, prompt, prompt + strlen(prompt));
    Avanzar(cursor, li->buffer, li->cursor);
    const int fila = cursor.fila;
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

bool EsSeparador(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// The candidates of one Tab, found one at a time: all of them are counted
// and agreed on (the longest start they share), and the first in order are
// kept for a listing. A directory may hold more names than are kept; a
// listing of those shows the first ones and a last line "...".
constexpr size_t MAXCANDIDATOS = 1024;
constexpr size_t LARGONOMBRE = 255 + 2;  // a file name (NAME_MAX where the shell runs), '/' and '\0'

struct Candidatos {
    char nombres[MAXCANDIDATOS][LARGONOMBRE];  // as a listing shows them: no directory
    unsigned short orden[MAXCANDIDATOS];       // the kept ones in order, as indices into nombres
    size_t guardados;
    size_t total;                              // distinct names found, kept or not
    char comun[LARGONOMBRE];                   // the start all of them share
};
Candidatos candidatos;

void Anadir(const char *nombre, const char *fin) {
    Candidatos &c = candidatos;
    char n[LARGONOMBRE];
    if (static_cast<size_t>(snprintf(n, sizeof n, "%s%s", nombre, fin)) >= sizeof n) return;  // no such name
    size_t desde = 0, hasta = c.guardados;
    while (desde < hasta) {
        const size_t medio = (desde + hasta) / 2;
        const int r = strcmp(c.nombres[c.orden[medio]], n);
        if (r == 0) return;  // a name in two lists, or a command that is also an alias
        if (r < 0)
            desde = medio + 1;
        else
            hasta = medio;
    }
    if (c.total++ == 0) {
        memcpy(c.comun, n, sizeof n);
    } else {
        size_t i = 0;
        while (c.comun[i] != '\0' && c.comun[i] == n[i]) i++;
        c.comun[i] = '\0';
    }
    size_t sitio;
    if (c.guardados < MAXCANDIDATOS)
        sitio = c.guardados++;
    else if (desde < MAXCANDIDATOS)
        sitio = c.orden[MAXCANDIDATOS - 1];  // the last one in order makes room
    else
        return;
    memmove(&c.orden[desde + 1], &c.orden[desde], (c.guardados - 1 - desde) * sizeof c.orden[0]);
    c.orden[desde] = static_cast<unsigned short>(sitio);
    memcpy(c.nombres[sitio], n, sizeof n);
}

// A first word the dispatcher would run as an internal command right now.
bool EsInterna(const char *palabra) {
    if (!OverRide(nullptr) && !IsValidCommand(palabra)) return false;
    const char *real = RealCommand(palabra);
    if (real == nullptr) return false;
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++)
        if (strcmp(c->nombre, real) == 0) return true;
    return false;
}

void ProbarOrden(const char *w, const char *prefijo, size_t largo) {
    if (strncmp(w, prefijo, largo) == 0 && EsInterna(w)) Anadir(w, "");
}

void Ordenes(const char *prefijo, size_t largo) {
    if (OverRide(nullptr)) {
        for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++) ProbarOrden(c->nombre, prefijo, largo);
        for (const EntradaAlias *a = TablaAlias(); a->comando != nullptr; a++) ProbarOrden(a->alias, prefijo, largo);
        return;
    }
    for (const char *const *const *l = ListasValidas(); *l != nullptr; l++)
        for (const char *const *w = *l; *w != nullptr; w++) ProbarOrden(*w, prefijo, largo);
}

struct Directorio {
    DIR *d;
    ~Directorio() {
        if (d != nullptr) closedir(d);
    }
};

// The names in the word's directory that start as the word's last part;
// returns how long that part is.
size_t Ficheros(const char *palabra, size_t largo) {
    size_t largoDir = largo;
    while (largoDir > 0 && palabra[largoDir - 1] != '/') largoDir--;
    char dir[PATH_MAX];
    if (largoDir >= sizeof dir) return largo - largoDir;
    memcpy(dir, palabra, largoDir);
    dir[largoDir] = '\0';
    const char *base = palabra + largoDir;
    const size_t largoBase = largo - largoDir;
    Directorio d{opendir(largoDir == 0 ? "." : dir)};
    if (d.d == nullptr) return largoBase;
    while (const dirent *e = readdir(d.d)) {
        const char *n = e->d_name;
        if (strncmp(n, base, largoBase) != 0) continue;
        if (strcmp(n, ".") == 0 || strcmp(n, "..") == 0) continue;
        if (n[0] == '.' && largoBase == 0) continue;  // hidden files only when asked for
        struct stat st;
        Anadir(n, fstatat(dirfd(d.d), n, &st, 0) == 0 && S_ISDIR(st.st_mode) ? "/" : "");
    }
    return largoBase;
}

// The candidates kept, in columns, as many as the terminal's width holds.
void Listar() {
    const Candidatos &c = candidatos;
    size_t ancho = 0;
    for (size_t i = 0; i < c.guardados; i++) {
        const size_t l = strlen(c.nombres[i]);
        if (l > ancho) ancho = l;
    }
    size_t porFila = (static_cast<size_t>(Columnas()) + 1) / (ancho + 2);
    if (porFila == 0) porFila = 1;
    const size_t filas = (c.guardados + porFila - 1) / porFila;
    printf("\n");
    for (size_t f = 0; f < filas; f++) {
        for (size_t i = f; i < c.guardados; i += filas) {
            if (i + filas < c.guardados)
                printf("%-*s", static_cast<int>(ancho + 2), c.nombres[c.orden[i]]);
            else
                printf("%s", c.nombres[c.orden[i]]);
        }
        printf("\n");
    }
    if (c.total > c.guardados) printf("...\n");
}

// The line and the cursor, in one number: a second Tab is told from a first
// by it (two different lines taken for the same only make a listing).
uint64_t Huella(const LineInfo *li) {
    uint64_t h = 14695981039346656037ull;
    for (const char *p = li->buffer; p < li->lastchar; p++) h = (h ^ static_cast<unsigned char>(*p)) * 1099511628211ull;
    return (h ^ static_cast<uint64_t>(li->cursor - li->buffer)) * 1099511628211ull;
}

// Tab: the first word from the commands, later words from file names. One
// candidate is completed with a blank after it; several, as far as they
// agree; a second Tab that adds nothing lists them.
unsigned char Completar(EditLine *el, int) {
    static uint64_t anterior = 0;  // the line after a Tab that left a choice
    const LineInfo *li = lib.line(el);
    const char *inicio = li->cursor;
    while (inicio > li->buffer && !EsSeparador(inicio[-1])) inicio--;
    const size_t largo = static_cast<size_t>(li->cursor - inicio);
    bool primera = true;
    for (const char *p = li->buffer; p < inicio; p++) primera = primera && EsSeparador(*p);
    candidatos.guardados = candidatos.total = 0;
    size_t escrito = largo;  // how much of the candidates' names the word already has
    if (primera)
        Ordenes(inicio, largo);
    else
        escrito = Ficheros(inicio, largo);
    const Candidatos &c = candidatos;
    if (c.total == 0) return CC_ERROR;
    char anadir[LARGONOMBRE + 1];
    const size_t largoComun = strlen(c.comun);
    const bool espacio = c.total == 1 && largoComun > 0 && c.comun[largoComun - 1] != '/';
    snprintf(anadir, sizeof anadir, "%s%s", c.comun + (escrito < largoComun ? escrito : largoComun), espacio ? " " : "");
    if (anadir[0] != '\0') lib.insertstr(el, anadir);
    if (c.total == 1) return CC_REFRESH;
    const uint64_t huella = Huella(lib.line(el));
    const bool segundo = anadir[0] == '\0' && huella == anterior;
    anterior = huella;
    if (anadir[0] != '\0') return CC_REFRESH;
    if (!segundo) return CC_ERROR;
    Listar();
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
    // What does not fit is dropped (see resto).
    size_t largo = strnlen(s, sizeof resto);
    memcpy(resto, s, largo);
    restoInicio = 0;
    restoFin = largo;
    return largo > 0;
}

}  // namespace

bool EditorDisponible() { return Cargar(); }

bool EdicionDeLinea() {
    if (restoInicio < restoFin) return true;
    if (editorFallido || EntradaSinEspera()) return false;
    return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO) && Iniciar();
}

char *LeerLineaEditada(char *linea, int tam) {
    if (tam <= 1) return nullptr;
    if (restoInicio < restoFin)
        PrintPrompt();  // each piece of a long line is read after a prompt of its own
    else if (!LeerConEditor())
        return nullptr;
    // As LeerLinea: through the first newline, at most tam-1 characters.
    const size_t maximo = static_cast<size_t>(tam) - 1;
    const char *p = resto + restoInicio;
    const size_t quedan = restoFin - restoInicio;
    const void *nl = memchr(p, '\n', quedan);
    size_t largo = nl != nullptr ? static_cast<size_t>(static_cast<const char *>(nl) - p) + 1 : quedan;
    if (largo > maximo) largo = maximo;
    memcpy(linea, p, largo);
    linea[largo] = '\0';
    restoInicio += largo;
    return linea;
}

#else

bool EditorDisponible() { return false; }
bool EdicionDeLinea() { return false; }
char *LeerLineaEditada(char *, int) { return nullptr; }

#endif
