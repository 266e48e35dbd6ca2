// Running external programs: in the shell's own process, or in a child in
// the foreground or the background; the search path and a bare fork.
#include "processes/processes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/core.h"
#include "signals/signals.h"

extern char **environ;

namespace {

constexpr int SINREDIRECCION = MAXPALABRAS - 1;  // the vector's last slot

bool Igual(const char *a, const char *b) { return strcmp(a, b) == 0; }

// Prints why exec stops, keeping the failure's errno for the caller's report:
// the printf itself may fail (standard output closed) and change it.
void Motivo(const char *que) {
    int error = errno;
    printf("%s: %s\n", que, strerror(error));
    errno = error;
}

// A line whose child has nothing to do before exec: no user, no priority, no
// redirection and no environment words (what exec would find in its words).
bool EsLineaSimple(char *tr[], const char *usuario, const int *prioridad) {
    if (tr[0] == nullptr || usuario != nullptr || prioridad != nullptr) return false;
    int prio;
    if (ComprobarPrioridad(tr, &prio) != 0) return false;
    for (int i = 0; tr[i] != nullptr; i++)
        if ((tr[i][0] == '<' || tr[i][0] == '>' || tr[i][0] == '*') && tr[i][1] != '\0') return false;
    return !Igual(tr[0], "NULLENV") && strchr(tr[0], '=') == nullptr && BuscarVariable(tr[0], environ) == -1;
}

// C libraries older than these report a failed exec only through the status
// of a child they leave behind, so a failure would lose its message.
#if defined(__GLIBC__) && (__GLIBC__ * 1000 + __GLIBC_MINOR__ < 2024)
constexpr bool SpawnInformaDelFallo = false;
#else
constexpr bool SpawnInformaDelFallo = true;
#endif

struct AtributosSpawn {
    posix_spawnattr_t a;
    bool listos = posix_spawnattr_init(&a) == 0;
    ~AtributosSpawn() {
        if (listos) posix_spawnattr_destroy(&a);
    }
};

// Starts such a line without copying the shell. Returns false when it could
// not, a failed exec included: the caller then forks a child that tries again
// and reports the failure itself, with its message and status 255, the same
// on every C library.
#if !defined(__APPLE__)
// A spawn made by the C library resets every signal's action in the child,
// one call each; vfork makes the lightest child of all. (On Apple's systems
// the spawn is a single call of the kernel's own and stays.) The child shares the shell's memory until it execs, so
// it runs none of the shell's code: it is used only while no signal has a
// handler of the shell's, and the child makes no call but setsid and exec.
volatile int errorHijo;

bool VforkLigero(char *const tr[], const char *ruta, bool segundoplano, pid_t *pid) {
    errorHijo = 0;
    pid_t p = vfork();
    if (p == 0) {
        if (!segundoplano || setsid() != -1) execv(ruta, tr);
        errorHijo = errno != 0 ? errno : -1;
        _exit(127);
    }
    if (p == -1) return false;
    if (errorHijo != 0) {  // the parent runs on only once the child has exec'd or ended
        waitpid(p, nullptr, 0);
        return false;
    }
    *pid = p;
    return true;
}
#endif

bool CrearHijoLigero(char *tr[], bool segundoplano, pid_t *pid) {
#if !defined(__APPLE__)
    if (!HayManejadoresPropios()) return VforkLigero(tr, Ejecutable(tr[0]), segundoplano, pid);
#endif
    if (!SpawnInformaDelFallo) return false;
    if (!segundoplano) return posix_spawn(pid, Ejecutable(tr[0]), nullptr, nullptr, tr, environ) == 0;
#ifdef POSIX_SPAWN_SETSID
    AtributosSpawn atr;
    return atr.listos && posix_spawnattr_setflags(&atr.a, POSIX_SPAWN_SETSID) == 0 &&
           posix_spawn(pid, Ejecutable(tr[0]), nullptr, &atr.a, tr, environ) == 0;
#else
    return false;  // a session of its own needs a full child here
#endif
}

// A second shell made by `fork` reads on from the script; when it ends, what
// it read ahead must go back to the file so that its parent resumes right
// after the last line the child used.
void DevolverEntrada() { SincronizarEntrada(); }

}  // namespace

const char *Ejecutable(const char *s) {
    static char path[1024];
    if (s == nullptr || PathFirst() == nullptr) return s;
    std::string_view nombre(s);
    if (nombre.starts_with("/") || nombre.starts_with("./") || nombre.starts_with("../")) return s;
    struct stat st;
    for (const char *p = PathFirst(); p != nullptr; p = PathNext()) {
        // Each piece is cut to what still fits.
        path[0] = '\0';
        strncat(path, p, sizeof path - 1);
        strncat(path, "/", sizeof path - 1 - strlen(path));
        strncat(path, s, sizeof path - 1 - strlen(path));
        if (lstat(path, &st) != -1) return path;
    }
    return s;
}

int ComprobarSegundoPlano(char *tr[]) {
    for (int i = 0; tr[i] != nullptr; i++)
        if (Igual(tr[i], "&")) {
            tr[i] = nullptr;
            return 1;
        }
    return 0;
}

int ComprobarEntorno(char *tr[], char *env[]) {
    if (tr[0] != nullptr && Igual(tr[0], "NULLENV")) {
        env[0] = nullptr;
        return 1;
    }
    int i;
    for (i = 0; i < MAXENTORNO && tr[i] != nullptr; i++) {
        int pos = BuscarVariable(tr[i], environ);
        if (pos != -1)
            env[i] = environ[pos];
        else if (strchr(tr[i], '=') != nullptr)
            env[i] = tr[i];
        else
            break;
    }
    env[i] = nullptr;
    return i;
}

int doRedirExec(char *tr[], int df, char ch) {
    for (int i = 0; tr[i] != nullptr; i++) {
        if (tr[i][0] != ch || tr[i][1] == '\0') continue;
        int nuevo = open(tr[i] + 1, O_RDWR | O_CREAT, 0777);
        if (nuevo == -1) {
            printf("Imposible redireccionar %d a %s: %s\n", df, tr[i] + 1, strerror(errno));
            continue;
        }
        // The descriptor from open stays open as well: the program inherits it.
        if (nuevo != df) dup2(nuevo, df);
        return i;
    }
    return MAXPALABRAS;
}

int ComprobarRedireccionExec(char *tr[]) {
    int r = SINREDIRECCION;
    constexpr struct {
        int df;
        char ch;
    } redirecciones[] = {{0, '<'}, {1, '>'}, {2, '*'}};
    for (const auto &rd : redirecciones) {
        int i = doRedirExec(tr, rd.df, rd.ch);
        if (i < r) r = i;
    }
    return r;
}

int exec(char *tr[], const char *usuario, int *prioridad) {
    if (tr == nullptr || tr[0] == nullptr) {
        errno = EFAULT;
        return -1;
    }
    if (usuario != nullptr && CambiarCredencial(usuario) == -1) {
        Motivo("Imposible cambiar credencial");
        return -1;
    }
    int prio, p = 0;
    if (prioridad == nullptr && (p = ComprobarPrioridad(tr, &prio)) != 0) prioridad = &prio;
    if (prioridad != nullptr) {
        errno = 0;
        if (setpriority(PRIO_PROCESS, static_cast<id_t>(getpid()), *prioridad) == -1 && errno != 0) {
            Motivo("Imposible cambiar prioridad");
            return -1;
        }
    }
    int r = ComprobarRedireccionExec(tr);
    // Without a redirection the vector is already cut by its own terminator;
    // the last slot is not written, as a handler's vector starts one entry in.
    if (p > 0 && p < r)
        tr[p] = nullptr;
    else if (r < SINREDIRECCION)
        tr[r] = nullptr;

    char *env[MAXENTORNO + 1];
    int n = ComprobarEntorno(tr, env);
    if (tr[n] == nullptr) {  // variables but no program
        errno = EFAULT;
        return -1;
    }
    fflush(stdout);  // what exec printed above must not vanish with the image
    if (n == 0) return execv(Ejecutable(tr[0]), tr);
    return execve(Ejecutable(tr[n]), &tr[n], env);
}

int Proceso(char *tr[], int segundoplano, const char *usuario, int *prioridad) {
    int uid = static_cast<int>(getuid());
    if (ComprobarSegundoPlano(tr)) segundoplano = 1;
    if (usuario != nullptr) uid = static_cast<int>(UidUsuario(usuario));
    SincronizarEntrada();
    pid_t pid;
    if (!EsLineaSimple(tr, usuario, prioridad) || !CrearHijoLigero(tr, segundoplano, &pid)) pid = fork();
    if (pid == -1) return -1;  // no child: nothing to record or wait for
    if (pid == 0) {
        if (segundoplano && setsid() == -1) ErrorSistema("error al crear una sesion");
        if (exec(tr, usuario, prioridad) == -1) ErrorSistema("No ejecutado");
        exit(255);
    }
    if (segundoplano) return MeterProceso(&LP, pid, uid, tr);
    return waitpid(pid, nullptr, 0);
}

void Cmd_exec(char *tr[]) {
    // The program that replaces the shell may read the rest of the input.
    SincronizarEntrada();
    exec(tr, nullptr, nullptr);
    ErrorSistema("Imposible ejecutar");
}

void Cmd_execpri(char *tr[]) {
    if (tr[0] == nullptr) return;
    int prio = atoi(tr[0]);
    SincronizarEntrada();
    exec(tr + 1, nullptr, &prio);
    ErrorSistema("Imposible ejecutar");
}

void Cmd_execute_as(char *tr[]) {
    if (tr[0] == nullptr) return;
    SincronizarEntrada();
    exec(tr + 1, tr[0], nullptr);
    ErrorSistema("Imposible ejecutar");
}

void Cmd_pplano(char *tr[]) { Proceso(tr, 0, nullptr, nullptr); }

void Cmd_splano(char *tr[]) { Proceso(tr, 1, nullptr, nullptr); }

void Cmd_pplanopri(char *tr[]) {
    if (tr[0] == nullptr) return;
    int prio = atoi(tr[0]);
    Proceso(tr + 1, 0, nullptr, &prio);
}

void Cmd_splanopri(char *tr[]) {
    if (tr[0] == nullptr) return;
    int prio = atoi(tr[0]);
    Proceso(tr + 1, 1, nullptr, &prio);
}

void Cmd_pplanoas(char *tr[]) {
    if (tr[0] == nullptr) return;
    Proceso(tr + 1, 0, tr[0], nullptr);
}

void Cmd_splanoas(char *tr[]) {
    if (tr[0] == nullptr) return;
    Proceso(tr + 1, 1, tr[0], nullptr);
}

void Cmd_fork(char *[]) {
    static bool devolverAlSalir = false;
    SincronizarEntrada();
    pid_t pid = fork();
    if (pid == 0) {
        VaciarListaProcesos(&LP);
        if (!devolverAlSalir) devolverAlSalir = atexit(DevolverEntrada) == 0;
        printf("ejecutando proceso %d\n", static_cast<int>(getpid()));
        return;
    }
    if (pid > 0) waitpid(pid, nullptr, 0);
}

void Cmd_where(char *tr[]) {
    if (tr[0] == nullptr) return;
    const char *cmd = RealCommand(tr[0]);
    if (cmd == nullptr)
        printf("Abreviatura de comando no unica: %s\n", tr[0]);
    else if (IsInternalCommand(cmd))
        printf("%s: comando interno %s\n", tr[0], cmd);
    else
        printf("%s\n", Ejecutable(tr[0]));
}

void Cmd_search(char *tr[]) {
    if (tr[0] == nullptr) {
        PathPrint();
        return;
    }
    int r = 0;
    if (Igual(tr[0], "-add"))
        r = PathAdd(tr[1]);
    else if (Igual(tr[0], "-del"))
        r = PathDel(tr[1]);
    else if (Igual(tr[0], "-clear"))
        PathClear();
    else if (Igual(tr[0], "-path"))
        printf("Importados %d directorios en la ruta de busqueda\n", r = PathAddPath());
    else if (tr[0][0] == '+')
        r = PathAdd(tr[0] + 1);
    else if (tr[0][0] == '-')
        r = PathDel(tr[0] + 1);
    else {
        printf("Argumento incorrecto %s\n", tr[0]);
        return;
    }
    if (r == -1) printf("Imposible realizar operacion %s: %s\n", tr[0], strerror(errno));
}
