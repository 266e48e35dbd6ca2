// Redirection of the shell's own standard streams to files and back, with
// nothing but open, close and dup: the standard descriptor is closed and the
// file's descriptor is duplicated into the lowest free number, the one just
// closed. The saved copies made by initredir make the way back possible.
#include "files/files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "core/core.h"

namespace {

struct Redireccion {
    int estandar;   // standard descriptor saved, -1 when it was not
    int copia;      // its duplicate made by initredir
    int fichero;    // descriptor of the file redirected to, or -1
    char *nombre;   // owned name of that file, or null
};

int inicializadaredireccion = 0;
Redireccion redstruct[3];

constexpr const char *NombresFlujo[] = {"entrada", "salida", "error"};

bool EsFlujo(int df) { return df >= 0 && df <= 2; }

void InitRedirDescriptor(int df) {
    int copia = dup(df);
    if (copia == -1) return;
    redstruct[df] = {df, copia, -1, nullptr};
    UsarEnRedireccion(df);
    char nombre[100];
    snprintf(nombre, sizeof nombre, "copia descriptor %d", df);
    AddOpenFile(copia, nombre, fcntl(copia, F_GETFL), 1);
    UsarEnRedireccion(copia);
    inicializadaredireccion = 1;
}

void Do_redirection(char *tr[], int df) {
    if (tr[0] == nullptr)
        ShowRedir();
    else if (strcmp(tr[0], "-reset") == 0)
        UndoRedir(df);  // nothing to undo is not worth a message
    else if (DoRedir(df, tr[0]) == -1)
        printf("Imposible hacer redireccion %s\n", strerror(errno));
}

void RedirigirFlujo(char *tr[], int df) {
    if (!HayRedireccion())
        printf("Hay que inicializar redireccion\n");
    else
        Do_redirection(tr, df);
}

// Standard input is read ahead through a buffer: hand what was not used
// back to its file before descriptor 0 changes.
// Pending output belongs to the stream as it was, and read-ahead input goes
// back to its file, before a standard descriptor changes.
void AntesDeCambiar(int) { SincronizarEntrada(); }

}  // namespace

int HayRedireccion() { return inicializadaredireccion == 1; }

int IsRedir(int df) { return EsFlujo(df) && redstruct[df].nombre != nullptr; }

void InitRedir() {
    for (Redireccion &r : redstruct) r.estandar = -1;
    int abiertos[3];
    int n = 0;
    for (int df = 0; df <= 2; df++)
        if (DescriptorEnUso(df)) abiertos[n++] = df;
    for (int i = 0; i < n; i++) InitRedirDescriptor(abiertos[i]);
}

int DoRedir(int df, const char *fich) {
    if (!EsFlujo(df)) {
        errno = EBADF;
        return -1;
    }
    Redireccion &r = redstruct[df];
    // Input is never created; output and error are appended to, never cut.
    int modo = r.estandar == 0 ? O_RDWR : O_WRONLY | O_CREAT | O_APPEND;
    int nuevo = open(fich, modo, 0755);
    if (nuevo == -1) return -1;
    char *nombre = strdup(fich);
    if (nombre == nullptr) {
        close(nuevo);
        errno = ENOMEM;
        return -1;
    }
    if (r.nombre != nullptr) {
        // The file redirected to before stays open, no longer protected.
        free(r.nombre);
        LiberarDeRedireccion(r.fichero);
    }
    r.nombre = nombre;
    AntesDeCambiar(df);
    close(df);
    int estandar = dup(nuevo);  // lands on df, the lowest free number
    (void)estandar;
    r.fichero = nuevo;
    AddOpenFile(nuevo, fich, modo, 1);
    return 0;
}

int UndoRedir(int df) {
    if (!EsFlujo(df) || redstruct[df].nombre == nullptr) return -1;
    Redireccion &r = redstruct[df];
    free(r.nombre);
    r.nombre = nullptr;
    close(r.fichero);
    RemoveOpenFile(r.fichero);  // the position keeps its redirection mark
    r.fichero = -1;
    AntesDeCambiar(df);
    close(df);
    // A stream that was closed when initredir ran has no copy: closed is
    // its original configuration.
    if (r.estandar != -1) {
        int estandar = dup(r.copia);
        (void)estandar;
    }
    return 0;
}

void ShowRedir() {
    for (int df = 0; df <= 2; df++) {
        const Redireccion &r = redstruct[df];
        if (!DescriptorRedireccion(df) || r.estandar == -1) continue;
        printf("%s estandar en fichero %s (%d) \n", NombresFlujo[df],
               r.nombre != nullptr ? r.nombre : "configuracion original", r.fichero);
    }
}

void ClearRedir() {
    for (int df = 0; df < MAXFICHEROS; df++)
        if (DescriptorRedireccion(df)) LiberarDeRedireccion(df);
    inicializadaredireccion = 0;
}

void Cmd_redin(char *tr[]) { RedirigirFlujo(tr, STDIN_FILENO); }
void Cmd_redout(char *tr[]) { RedirigirFlujo(tr, STDOUT_FILENO); }
void Cmd_rederr(char *tr[]) { RedirigirFlujo(tr, STDERR_FILENO); }

void Cmd_initredir(char *[]) {
    if (HayRedireccion())
        printf("redireccion ya inicializada\n");
    else
        InitRedir();
}

void Cmd_clearredir(char *[]) {
    if (!HayRedireccion())
        printf("redireccion no inicializada\n");
    else
        ClearRedir();
}
