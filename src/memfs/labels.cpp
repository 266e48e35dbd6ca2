// Labels: short names bound to memory addresses, so that a file system can be
// named by a word instead of a hexadecimal address.
#include "memfs/memfs.h"

#include <cstring>

namespace {

// Zero at start-up: every slot free.
EntradaLabel ListaLabel[MAXLABELS];

bool MismoNombre(const EntradaLabel &e, const char *nombre) {
    return strncmp(e.nombre, nombre, MAXNOMBRELABEL) == 0;
}

}  // namespace

void InicializarListaLabel(EntradaLabel t[]) {
    for (int i = 0; i < MAXLABELS; i++) t[i].direccion = nullptr;
}

int AniadirLabel(EntradaLabel t[], const char *nombre, void *dir) {
    if (nombre == nullptr) return -1;
    int i = 0;
    while (i < MAXLABELS - 1 && t[i].direccion != nullptr && !MismoNombre(t[i], nombre)) i++;
    if (i == MAXLABELS - 1) return -1;  // the last slot is never filled
    t[i].direccion = dir;
    strncpy(t[i].nombre, nombre, MAXNOMBRELABEL);
    t[i].nombre[MAXNOMBRELABEL] = '\0';
    return i;
}

int BuscarLabel(EntradaLabel t[], const char *nombre) {
    if (nombre == nullptr) return -1;
    for (int i = 0; i < MAXLABELS - 1; i++)
        if (MismoNombre(t[i], nombre)) return i;
    return -1;
}

int BorrarLabel(EntradaLabel t[], const char *nombre) {
    int i = BuscarLabel(t, nombre);
    if (i == -1) return 0;  // nothing to delete counts as deleted
    t[i].direccion = nullptr;
    for (int j = i; j < MAXLABELS - 1; j++) t[j] = t[j + 1];
    return i;
}

void *ObtenerAddr(EntradaLabel t[], const char *nombre) {
    int i = BuscarLabel(t, nombre);
    return i == -1 ? nullptr : t[i].direccion;
}

const char *ObtenerLabel(EntradaLabel t[], const void *dir) {
    for (int i = 0; i < MAXLABELS; i++)
        if (t[i].direccion == dir) return t[i].nombre;
    return nullptr;
}

void *ObtenerPrimeraDireccion(EntradaLabel t[]) { return t[0].direccion; }

// The next address is found from the first slot holding the current one, so
// two labels with one address make the walk go back and forth between them.
void *ObtenerSiguienteDireccion(EntradaLabel t[], const void *dir) {
    if (dir == nullptr) return nullptr;
    for (int i = 0; i < MAXLABELS - 1; i++)
        if (t[i].direccion == dir) return t[i + 1].direccion;
    return nullptr;
}

void InitLabel() { InicializarListaLabel(ListaLabel); }
int LabelAdd(const char *nombre, void *dir) { return AniadirLabel(ListaLabel, nombre, dir); }
int LabelDel(const char *nombre) { return BorrarLabel(ListaLabel, nombre); }
void *LabelAddr(const char *nombre) { return ObtenerAddr(ListaLabel, nombre); }
const char *LabelLabel(const void *dir) { return ObtenerLabel(ListaLabel, dir); }
void *LabelFirstAddr() { return ObtenerPrimeraDireccion(ListaLabel); }
void *LabelNextAddr(const void *dir) { return ObtenerSiguienteDireccion(ListaLabel, dir); }
