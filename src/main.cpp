// Start-up and the read-split-dispatch loop.
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "core/core.h"
#include "files/files.h"
#include "signals/signals.h"

int main(int argc, char *argv[], char *envp[]) {
    static char linea[MAXLINEA];
    static char copia[MAXLINEA];  // never cleared: a shorter line inherits its tail
    static char *trozos[MAXPALABRAS];
    // Given by the shell: a C library may otherwise pick a size of its own.
    static char salida[1 << 16];

    // On a terminal each printf appears at once. Anywhere else output is
    // gathered and written before the shell waits for input, before anything
    // goes to standard error (ErrorSistema), before a fork or an exec, before
    // a command writes to a descriptor or changes a standard one, and before
    // anything that may fault: the order is the same, in far fewer writes,
    // and nothing is printed twice after a fork.
    if (isatty(STDOUT_FILENO))
        setvbuf(stdout, nullptr, _IONBF, 0);
    else
        setvbuf(stdout, salida, _IOFBF, sizeof salida);

    trozos[0] = const_cast<char *>("version");
    main3arg = envp;
    addrmain3arg = &envp;
    InitOpenFiles();
    FechaEjecutable = FechaFichero(argv[0]);
    printf("Iniciando shell..\n");
    if (argc > 1 && strcmp(argv[1], "-p") == 0)
        PathAddPath();
    else
        printf("Ejecutar %s -p para importar el path\n\n", argv[0]);
    Cmd_version(trozos + 1);

    // The mask is not saved: a handler's signal stays blocked after the jump,
    // which makes the fault protection work exactly once.
    if (sigsetjmp(EstadoGuardado, 0) != 0) printf("Shell restaurado a su estado al pricipio de main\n");

    while (true) {
        loopHistoric = 0;
        char *leida;
        if (EdicionDeLinea()) {
            leida = LeerLineaEditada(linea, MAXLINEA);  // prints the prompt itself
        } else {
            PrintPrompt();
            // Whoever waits for the prompt gets it before the shell waits for
            // input; a script in a file waits for nothing, and its output
            // keeps gathering.
            if (!EntradaSinEspera()) fflush(stdout);
            leida = LeerLinea(linea, MAXLINEA);
        }
        if (leida == nullptr) {
            if (!HaySenales) break;
            continue;
        }
        memcpy(copia, linea, strlen(linea));  // no terminator on purpose
        if (TrocearCadena(linea, trozos) == 0) continue;
        char *guardar = strtok(copia, "\n");
        errno = 0;
        if (guardar != nullptr && HistoricAdd(guardar) == -1 && errno != 0)
            printf("Comando no almacenado: %s\n", strerror(errno));
        ProcesarEntrada(trozos);
    }
    return 0;
}
