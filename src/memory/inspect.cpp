// Looking at and changing memory at any address the shell can reach, moving
// it to and from files, and showing the layout of the shell's own address
// space. Addresses are not checked: a wild one faults, which is the lesson.
#include "memory/memory.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/core.h"
#include "files/files.h"

// The shell's own entry point, whose address `mem -funcs` shows.
int main(int, char *[], char *[]);

namespace {

// Variables whose addresses show where each kind of data lands: initialised
// globals in the data segment, uninitialised ones in bss.
float h = 6.23f, pi = 3.14f, e = 2.71f;
int64_t V1, V2, V3;

bool Es(const char *palabra, std::string_view opcion) { return palabra != nullptr && opcion == palabra; }

// atoi and atoll without their undefined behaviour on out-of-range text: the
// value saturates at the limits of the type.
int LeerEntero(const char *s) {
    long long v = strtoll(s, nullptr, 10);
    return static_cast<int>(v < INT_MIN ? INT_MIN : v > INT_MAX ? INT_MAX : v);
}

long long LeerEnteroLargo(const char *s) { return strtoll(s, nullptr, 10); }

}  // namespace

const char *CadBon(unsigned char c) {
    static char aux[16];
    switch (c) {
    case '\n': return " \\n";
    case '\t': return " \\t";
    case '\r': return " \\r";
    }
    if (isascii(c) && isprint(c))
        snprintf(aux, sizeof aux, "  %c", c);
    else
        snprintf(aux, sizeof aux, "   ");
    return aux;
}

void MostrarLinea(const void *dir, int n) {
    if (n == 0) return;
    const auto *p = static_cast<const unsigned char *>(dir);
    // The address was typed by the user and may fault at any byte: what was
    // printed before each read must already be out.
    printf("%p-> ", dir);
    for (int i = 0; i < n; i++) {
        fflush(stdout);
        printf("%s", CadBon(p[i]));
    }
    printf("\n%p-> ", dir);
    for (int i = 0; i < n; i++) printf(" %02x", p[i]);
    printf("\n");
}

void MostrarMemoria(const void *dir, size_t cont) {
    constexpr int porLinea = 20;
    const auto *p = static_cast<const unsigned char *>(dir);
    for (size_t i = 0; i < cont / porLinea; i++) MostrarLinea(p + i * porLinea, porLinea);
    MostrarLinea(p + cont / porLinea * porLinea, static_cast<int32_t>(cont) % porLinea);
}

unsigned char ConvertirByte(const char *cad) {
    if (cad[0] == '\'' && cad[1] != '\0' && cad[2] == '\'') return static_cast<unsigned char>(cad[1]);
    return static_cast<unsigned char>(strtoul(cad, nullptr, 0) & 0xFF);
}

void LlenarMemoria(void *dir, size_t cont, unsigned char byte, int paso) {
    auto *p = static_cast<unsigned char *>(dir);
    // The step is added as an unsigned offset: a negative one wraps past the
    // count after the first byte. A step of 0 would write offset 0 for ever;
    // one write leaves memory just as that would, without hanging the shell.
    for (uint64_t i = 0; i < cont; i += static_cast<uint64_t>(static_cast<int64_t>(paso))) {
        p[i] = byte;
        if (paso == 0) break;
    }
}

// Not inlined into itself: each level must be a frame of its own.
[[gnu::noinline]] void Recursiva(int n) {
    char automatico[4096];
    static char estatico[4096];
    printf("parametro:%3d(%p) array %p, arr estatico %p\n", n, static_cast<void *>(&n),
           static_cast<void *>(automatico), static_cast<void *>(estatico));
    fflush(stdout);  // a deep recursion ends in a stack overflow
    if (n > 0) Recursiva(n - 1);
    // Keeps the frame (and its array) alive across the call, so the call is
    // never turned into a jump and each level shows a deeper stack.
    asm volatile("" : : "r"(automatico) : "memory");
}

ssize_t LeerFichero(const char *fichero, void *dir, size_t cont) {
    struct stat s;
    if (stat(fichero, &s) == -1) return -1;
    int df = open(fichero, O_RDONLY);
    if (df == -1) return -1;
    if (cont == static_cast<size_t>(-1)) cont = s.st_size;
    ssize_t n = read(df, dir, cont);
    int error = errno;
    close(df);
    errno = error;
    return n;
}

ssize_t EscribirFichero(const char *fichero, const void *dir, size_t cont, int sobreescribir) {
    int flags = O_WRONLY | O_CREAT | (sobreescribir ? O_TRUNC : O_EXCL);
    int df = open(fichero, flags, 0777);
    if (df == -1) return -1;
    ssize_t n = write(df, dir, cont);
    int error = errno;
    close(df);
    errno = error;
    return n;
}

void Do_showvars() {
    int v1 = 0, v2 = 0, v3 = 0;
    static float x = 1.0f, y = 1.0f, z = 1.0f;
    static int64_t a, b, c;
    printf("Variables locales   %18p,%18p,%18p\n", static_cast<void *>(&v1), static_cast<void *>(&v2),
           static_cast<void *>(&v3));
    printf("Variables globales  %18p,%18p,%18p\n", static_cast<void *>(&h), static_cast<void *>(&pi),
           static_cast<void *>(&e));
    printf("Var (N.I.)globales  %18p,%18p,%18p\n", static_cast<void *>(&V1), static_cast<void *>(&V2),
           static_cast<void *>(&V3));
    printf("Variables staticas  %18p,%18p,%18p\n", static_cast<void *>(&x), static_cast<void *>(&y),
           static_cast<void *>(&z));
    printf("Var (N.I.)staticas  %18p,%18p,%18p\n", static_cast<void *>(&a), static_cast<void *>(&b),
           static_cast<void *>(&c));
}

void Do_showfuncs() {
    printf("Funciones programa  %18p,%18p,%18p\nFunciones libreria  %18p,%18p,%18p\n",
           reinterpret_cast<void *>(main), reinterpret_cast<void *>(TrocearCadena),
           reinterpret_cast<void *>(ProcesarEntrada), reinterpret_cast<void *>(printf),
           reinterpret_cast<void *>(fgets), reinterpret_cast<void *>(malloc));
}

void Do_pmap() {
    char pid[32];
    snprintf(pid, sizeof pid, "%d", static_cast<int>(getpid()));
    SincronizarEntrada();
    pid_t hijo = fork();
    if (hijo == -1) {
        ErrorSistema("Imposible crear proceso");
        return;
    }
    if (hijo == 0) {
        // One program per system; the first one found does the job.
        struct Intento {
            const char *argv[4];
            const char *error;
        };
        const Intento intentos[] = {
            {{"pmap", pid, nullptr, nullptr}, "cannot execute pmap (linux, solaris)"},
            {{"procstat", "vm", pid, nullptr}, "cannot execute procstat (FreeBSD)"},
            {{"procmap", pid, nullptr, nullptr}, "cannot execute procmap (OpenBSD)"},
            {{"vmmap", "-interleave", pid, nullptr}, "cannot execute vmmap (Mac-OS)"},
        };
        for (const auto &intento : intentos) {
            execvp(intento.argv[0], const_cast<char *const *>(intento.argv));
            ErrorSistema(intento.error);
        }
        _exit(1);  // no exit handlers: they belong to the shell
    }
    waitpid(hijo, nullptr, 0);
}

// ---------------------------------------------------------------- commands

void Cmd_memory(char *tr[]) {
    if (tr[0] == nullptr || Es(tr[0], "-all")) {
        Do_showvars();
        Do_showfuncs();
        ImprimirListaMemCompleta(&L);
    } else if (Es(tr[0], "-blocks")) {
        ImprimirListaMemCompleta(&L);
    } else if (Es(tr[0], "-funcs")) {
        Do_showfuncs();
    } else if (Es(tr[0], "-vars")) {
        Do_showvars();
    } else if (Es(tr[0], "-pmap")) {
        Do_pmap();
    } else {
        printf("Opcion %s no contemplada\n", tr[0]);
    }
}

void Cmd_memdump(char *tr[]) {
    if (tr[0] == nullptr) return;
    void *p = cadtop(tr[0]);
    size_t cont = tr[1] != nullptr ? strtoull(tr[1], nullptr, 10) : 20;
    printf("Volcando %zu bytes desde la direccion %p\n", cont, p);
    MostrarMemoria(p, cont);
}

void Cmd_memfill(char *tr[]) {
    if (tr[0] == nullptr) return;
    void *p = cadtop(tr[0]);
    size_t cont = 128;
    unsigned char byte = 'A';
    int paso = 1;
    if (tr[1] != nullptr) {
        cont = strtoull(tr[1], nullptr, 10);
        if (tr[2] != nullptr) {
            byte = ConvertirByte(tr[2]);
            if (tr[3] != nullptr) paso = LeerEntero(tr[3]);
        }
    }
    printf("Llenando %zu bytes de memoria con el byte%s(%02x) a partir de la direccion %p\n", cont, CadBon(byte),
           byte, p);
    fflush(stdout);  // before touching memory at a typed address
    LlenarMemoria(p, cont, byte, paso);
}

void Cmd_memcopy(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) return;
    // Source and destination both come from the first word: the block is
    // copied onto itself (memmove, as the ranges are the same).
    void *p = cadtop(tr[0]);
    size_t cont = tr[2] != nullptr ? strtoull(tr[2], nullptr, 10) : 128;
    memmove(p, p, cont);
    printf("Copiando %zu bytes de %p a %p\n", cont, p, p);
}

void Cmd_stringcopy(char *tr[]) {
    static char aux[1024];
    if (tr[0] == nullptr || tr[1] == nullptr) return;
    size_t usado = 0;
    for (int i = 1; tr[i] != nullptr; i++) {
        int n = snprintf(aux + usado, sizeof aux - usado, "%s%s", i > 1 ? " " : "", tr[i]);
        if (n < 0 || static_cast<size_t>(n) >= sizeof aux - usado) {
            // A line may hold more than the buffer: refuse rather than cut.
            printf("Imposible copiar cadena: %s\n", strerror(E2BIG));
            return;
        }
        usado += n;
    }
    void *p = cadtop(tr[0]);
    memcpy(p, aux, usado + 1);
    printf("Copiando %s en %p\n", aux, p);
}

void Cmd_readfile(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        printf("faltan parametros\n");
        return;
    }
    void *p = cadtop(tr[1]);
    size_t cont = tr[2] != nullptr ? static_cast<size_t>(LeerEnteroLargo(tr[2])) : static_cast<size_t>(-1);
    ssize_t n = LeerFichero(tr[0], p, cont);
    if (n == -1)
        ErrorSistema("Imposible leer fichero");
    else
        printf("leidos %lld bytes de %s en %p\n", static_cast<long long>(n), tr[0], p);
}

void Cmd_writefile(char *tr[]) {
    int sobreescribir = 0;
    if (Es(tr[0], "-o")) {
        sobreescribir = 1;
        tr++;
    }
    if (tr[0] == nullptr || tr[1] == nullptr || tr[2] == nullptr) {
        printf("faltan parametros\n");
        return;
    }
    void *p = cadtop(tr[1]);
    size_t cont = static_cast<size_t>(LeerEnteroLargo(tr[2]));
    ssize_t n = EscribirFichero(tr[0], p, cont, sobreescribir);
    if (n == -1)
        ErrorSistema("Imposible escribir fichero");
    else
        printf("escritos %lld bytes en %s desde %p\n", static_cast<long long>(n), tr[0], p);
}

void Cmd_i_o(char *tr[]) {
    if (Es(tr[0], "read"))
        Cmd_readfile(tr + 1);
    else if (Es(tr[0], "write"))
        Cmd_writefile(tr + 1);
    else
        printf("uso: %s [read|write] ......\n", tr[-1]);
}

void Cmd_recurse(char *tr[]) {
    if (tr[0] != nullptr) Recursiva(LeerEntero(tr[0]));
}
