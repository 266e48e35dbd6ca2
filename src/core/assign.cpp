// The command lists of the lab assignments and the override switch. The
// lists are data as handed out to students, odd words included.
#include "core/core.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

using Lista = const char *const[];

Lista P0_v0 = {"override", "prompt", "numserie", "limits", "systemd", "command", "historic", nullptr};
Lista P0_v1 = {"override", "version", "exit",    "bye",     "date",    "pid",  "authors",
               "historic", "limits",  "systemd", "command", "infosys", "help", nullptr};
Lista P0_v2 = {"override", "version", "exit",    "quit", "day",     "time", "getpid", "getppid",
               "previous", "limits",  "systemd", "cmd",  "sysinfo", "help", nullptr};
Lista P0_v3 = {"override", "numserie", "salir",   "fin",     "fecha",   "pid",     "ppid", "autores",
               "historic", "limites",  "sistemd", "comando", "infosis", "ayuda", nullptr};
Lista P1_v0 = {"exit",  "bye",     "date",     "pid",      "authors",  "sysinfo", "help",    "chdir",
               "open",  "close",   "listopen", "read",     "write",    "lseek",   "readstr", "writestr",
               "makefile", "makedir", "delete", "deltree", "listfile", "list",    nullptr};
Lista P1_v1 = {"cd",   "chroot", "pwd", "create", "delete",  "stat",     "list",  "deltree",
               "open", "close",  "dup", "dup2",   "readstr", "writestr", "lseek", "lnk", nullptr};
Lista P1_v2 = {"chdir",   "changeroot", "getcwd",  "makefile", "makedir", "erase",    "listfile",
               "listdir", "listrec",    "dir",     "listrev",  "delrec",  "open",     "close",
               "dup",     "dup2",       "readstring", "writestring", "hardlink", "symlink", nullptr};
Lista P1_v3 = {"chdir", "chroot", "pwd", "create", "erase",      "dir",         "setdirparams", "getdirparams",
               "open",  "close",  "dup", "dup2",   "readstring", "writestring", "hardlink",     "symlink", nullptr};
Lista P1_v4 = {"carpeta", "cambiarraiz", "crear",    "borrar",    "listfich",   "listar",      "borrarrec", "abrir",
               "cerrar",  "duplicar",    "duplicar2", "leercad", "escribircad", "enlacereal", "enlacesym", nullptr};
Lista P1_v5 = {"carpeta",   "cambiarraiz", "crearfich", "creardir", "borrar",   "ficheros",
               "opcionesficheros", "veropcionesficheros", "borrarrec", "abrir", "cerrar", "duplicar",
               "duplicar2", "leercad",     "escribircad", "enlace", nullptr};
Lista P2_v0 = {"allocate", "deallocate", "i-o", "memory", "recurse", "memfill", "memdump", nullptr};
Lista P2_v1 = {"recurse",  "memdump",    "memfill", "read",    "write",   "i-o",
               "allocate", "deallocate", "mem",     "memcopy", "strcopy", nullptr};
Lista P2_v2 = {"recurse",   "dumpmem",     "fillmem",   "sysread",         "syswrite",  "readfile",
               "writefile", "memmalloc",   "memcreateshared", "memshared", "memmmap",   "memdemalloc",
               "memdeshared", "memdemmap", "delkey",    "free,",           "memory",    nullptr};
Lista P2_v3 = {"recursiva", "volcarmem",        "llenarmem",    "leer",    "escribir",   "e-s",          "asignar",
               "desasignar", "memoriacopiarmem", "copiarstring", "entorno", "varentorno", "cambiarvarMal", nullptr};
Lista P3_v0 = {"getuid", "setuid", "prio",  "path",    "showenv",   "showvar", "changevar", "changevarWrong", "fork",
               "ejec",   "ejecpri", "pplano", "pplanopri", "splano", "splanopri", "jobs",   "deljobs", nullptr};
Lista P3_v1 = {"showenv", "envvar", "changevarWrong", "priority", "search",  "where",
               "fork",    "exec",   "uid",            "listjobs", "deljobs", "pipe", nullptr};
Lista P3_v2 = {"environ", "showvar", "changevar", "changevarWrong", "subsvar", "prio", "path",
               "where",   "getuid",  "setuid",    "fork",           "exec",    "execpri", "fg",
               "fgpri",   "back",    "backpri",   "jobs",           "backpipe", nullptr};
Lista P3_v3 = {"entorno", "varentorno", "cambiarvarMal", "path",       "cual",        "fork",
               "exec",    "credenciales", "listarprocs", "borrarprocs", "concatenar", nullptr};

static_assert(std::size(P0_v0) == 8);
static_assert(std::size(P0_v1) == 14);
static_assert(std::size(P0_v2) == 15);
static_assert(std::size(P0_v3) == 15);
static_assert(std::size(P1_v0) == 23);
static_assert(std::size(P1_v1) == 17);
static_assert(std::size(P1_v2) == 21);
static_assert(std::size(P1_v3) == 17);
static_assert(std::size(P1_v4) == 16);
static_assert(std::size(P1_v5) == 17);
static_assert(std::size(P2_v0) == 8);
static_assert(std::size(P2_v1) == 12);
static_assert(std::size(P2_v2) == 18);
static_assert(std::size(P2_v3) == 14);
static_assert(std::size(P3_v0) == 18);
static_assert(std::size(P3_v1) == 13);
static_assert(std::size(P3_v2) == 20);
static_assert(std::size(P3_v3) == 12);

const char *const *const AllValidCmds[] = {P0_v0, P0_v1, P0_v2, P0_v3, P1_v0, P1_v1, P1_v2, P1_v3, P1_v4, P1_v5,
                                           P2_v0, P2_v1, P2_v2, P2_v3, P3_v0, P3_v1, P3_v2, P3_v3, nullptr};

const char *const *const ValidCmds[] = {P0_v0, P1_v0, P2_v0, P3_v0, nullptr};

int override = 0;

}  // namespace

int IsValidCommand(const char *cmd) {
    for (int i = 0; ValidCmds[i] != nullptr; i++)
        for (int j = 0; ValidCmds[i][j] != nullptr; j++)
            if (strcmp(ValidCmds[i][j], cmd) == 0) return 1;
    return 0;
}

const char *const *const *ListasValidas() { return ValidCmds; }

int OverRide(const char *valor) {
    if (valor != nullptr && strcmp(valor, "on") == 0)
        override = 1;
    else if (valor != nullptr && strcmp(valor, "off") == 0)
        override = 0;
    return override;
}

void ListValidCommands() {
    for (int i = 0; ValidCmds[i] != nullptr; i++) {
        printf("Cmds practica %d: ", i);
        for (int j = 0; ValidCmds[i][j] != nullptr; j++)
            if (strcmp(ValidCmds[i][j], "override") != 0) printf("%s ", ValidCmds[i][j]);
        printf("\n");
    }
}

int CheckValidCommands(int verbose) {
    int resultado = 1;
    for (int i = 0; AllValidCmds[i] != nullptr; i++)
        for (int j = 0; AllValidCmds[i][j] != nullptr; j++)
            if (IsCmdOrAlias(AllValidCmds[i][j])) {
                if (!verbose) return 0;
                printf("%s(%d,%d) ", AllValidCmds[i][j], i, j);
                resultado = 0;
            }
    return resultado;
}

void Cmd_checkvalid(char *tr[]) {
    // The result is read inverted: it is 1 only when no listed word exists.
    if (CheckValidCommands(0))
        printf("Algunos comandos validos no existen\n");
    else
        printf("Todos los comandos validos existen\n");
    if (tr[0] != nullptr && strcmp(tr[0], "-v") == 0) CheckValidCommands(1);
}

void Cmd_override(char *tr[]) {
    if (tr[0] != nullptr) OverRide(tr[0]);
    printf("la ejecucion de comandos que no son de las practicas esta %s\n",
           override ? "habilitada" : "deshabilitada");
}
