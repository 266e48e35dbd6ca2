// Line processing: splitting, dispatch, repetition of history entries and the
// commands that belong to the loop itself.
#include "core/core.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "files/files.h"
#include "memory/memory.h"
#include "processes/processes.h"

sigjmp_buf EstadoGuardado;
char **main3arg = nullptr;
char ***addrmain3arg = nullptr;
time_t FechaEjecutable = -1;
int loopHistoric = 0;

int TrocearCadena(char *cadena, char *trozos[]) {
    int i = 1;
    if ((trozos[0] = strtok(cadena, " \n\t")) == nullptr) return 0;
    while ((trozos[i] = strtok(nullptr, " \n\t")) != nullptr) i++;
    return i;
}

void ProcesarEntrada(char *tr[]) {
    if (tr[0] == nullptr) return;
    if (PideAyuda(tr)) return;
    const char *cmd = RealCommand(tr[0]);
    if (cmd == nullptr) {
        printf("Abreviatura de comando no unica: %s\n", tr[0]);
        return;
    }
    // Neither the override nor the lists change during the scan of the
    // table: the test made before each row gives the same answer every time,
    // and the row a scan would reach is found by its name at once.
    const EntradaComando *c = nullptr;
    if (OverRide(nullptr) || IsValidCommand(tr[0])) c = BuscarComando(cmd);
    if (c != nullptr)
        c->funcion(tr + 1);
    else
        Cmd_pplano(tr);
}

void RepeatHistoric(int n) {
    char linea[MAXLINEA];
    char *trozos[MAXPALABRAS];
    loopHistoric++;
    const char *h = HistoricGet(n);
    if (h == nullptr) {
        printf("No hay elemento %d en el historico\n", n);
        return;
    }
    snprintf(linea, sizeof linea, "%s", h);
    printf("Ejecutando hist (%d): %s\n", n, linea);
    if (TrocearCadena(linea, trozos) == 0) {
        printf("Nada que ejecutar en el elemento %d del historico\n", n);
        return;
    }
    if (loopHistoric > 10) {
        printf("Demasiada recursion en hist\n");
        return;
    }
    ProcesarEntrada(trozos);
}

void Cmd_exit(char *[]) {
    SincronizarEntrada();  // the rest of a script belongs to whoever reads on
    HistoricClear();
    PathClear();
    EntornoClear();
    ClearOpenFilesList();
    EliminarListaBloquesMemoria();
    VaciarListaProcesos(&LP);
    exit(0);
}

void Cmd_hist(char *tr[]) {
    if (tr[0] == nullptr) {
        HistoricPrint();
    } else if (strcmp(tr[0], "-clear") == 0) {
        HistoricClear();
    } else if (strcmp(tr[0], "-count") == 0) {
        printf("Numero de elementos en el historico: %d\n", HistoricDimension());
    } else if (tr[0][0] == '-') {
        HistoricPrintN(atoi(tr[0] + 1));
    } else {
        char *fin;
        unsigned long n = strtoul(tr[0], &fin, 10);
        if (*fin == '\0') RepeatHistoric(static_cast<int>(n));
    }
}

void Cmd_command(char *tr[]) {
    if (tr[0] == nullptr)
        HistoricPrint();
    else
        RepeatHistoric(atoi(tr[0]));
}

void ErrorSistema(const char *prefijo) {
    int error = errno;
    fflush(stdout);
    errno = error;
    perror(prefijo);
}
