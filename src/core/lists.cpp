// Null-terminated lists of owned strings: the history, the search path and
// the environment strings the shell handed to the process environment.
#include "core/core.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

ListaCadenas LH;  // history
ListaCadenas S;   // search path
ListaCadenas E;   // environment strings

int cual = 0;  // cursor of GetFirstNextElement, shared by every list

// The elements fill the first positions and every position after them is
// null, so the count is where that boundary lies: found by halving, not by
// walking a list that is usually full (the history, after a long session).
// The range to halve grows from the start, so that a short list is counted
// without reaching into the never-used end of its array.
int Cuenta(char *lista[]) {
    int bajo = 0, alto = 1;  // lista[bajo - 1] is used; the first null is below alto
    while (alto < MAXLISTA && lista[alto - 1] != nullptr) {
        bajo = alto;
        alto *= 2;
    }
    if (alto > MAXLISTA) alto = MAXLISTA;
    while (bajo < alto) {
        int medio = bajo + (alto - bajo) / 2;
        if (lista[medio] != nullptr)
            bajo = medio + 1;
        else
            alto = medio;
    }
    return bajo;
}

int Aniadir(char *lista[], const char *cad, bool copiar) {
    if (cad == nullptr) {
        errno = EFAULT;
        return -1;
    }
    int n = Cuenta(lista);
    if (n >= MAXLISTA - 1) {
        errno = ENOSPC;
        return -1;
    }
    char *p = copiar ? strdup(cad) : const_cast<char *>(cad);
    if (p == nullptr) return -1;
    lista[n] = p;
    lista[n + 1] = nullptr;
    return n + 1;
}

}  // namespace

int AniadirElemento(char *lista[], const char *cad) { return Aniadir(lista, cad, true); }
int AniadirElementoYaAsignado(char *lista[], char *cad) { return Aniadir(lista, cad, false); }
int ElementosEnLista(char *lista[]) { return Cuenta(lista); }

void ImprimirListaFirst(char *lista[], int n, int numerado) {
    for (int i = 0; i < MAXLISTA && lista[i] != nullptr && i < n; i++) {
        if (numerado) printf("%d->", i);
        printf("%s\n", lista[i]);
    }
}

void ImprimirListaLast(char *lista[], int n, int numerado) {
    int cuenta = Cuenta(lista);
    // A negative n starts past the terminator and prints nothing.
    long desde = static_cast<long>(cuenta) - n;
    if (desde < 0) desde = 0;
    for (long i = desde; i < cuenta; i++) {
        if (numerado) printf("%ld->", i);
        printf("%s\n", lista[i]);
    }
}

void ImprimirListaCompleta(char *lista[], int numerado) { ImprimirListaFirst(lista, MAXLISTA, numerado); }

int BuscarElemento(char *lista[], const char *cad) {
    if (cad == nullptr) {
        errno = EFAULT;
        return -1;
    }
    int i = 0;
    while (i < MAXLISTA - 1 && lista[i] != nullptr && strcmp(lista[i], cad) != 0) i++;
    if (i == MAXLISTA - 1) {
        errno = ENOSPC;
        return -1;
    }
    return i;  // an absent string gives the terminator's position
}

int BorrarElemento(char *lista[], const char *cad) {
    int pos = BuscarElemento(lista, cad);
    if (pos == -1) {
        errno = ENOENT;
        return -1;
    }
    free(lista[pos]);
    for (int i = pos; i < MAXLISTA - 1; i++) {
        lista[i] = lista[i + 1];
        if (lista[i] == nullptr) break;
    }
    lista[MAXLISTA - 1] = nullptr;
    return 0;
}

void BorrarLista(char *lista[]) {
    for (int i = 0; i < MAXLISTA && lista[i] != nullptr; i++) {
        free(lista[i]);
        lista[i] = nullptr;
    }
}

char *GetPrimerElemento(char *lista[]) { return lista[0]; }

char *GetSiguienteElemento(char *lista[], const char *cad) {
    int pos = BuscarElemento(lista, cad);
    if (pos == -1) {
        errno = ENODEV;
        return nullptr;
    }
    return lista[pos] == nullptr ? nullptr : lista[pos + 1];
}

char *GetFirstNextElement(char *lista[], int primero) {
    if (primero == 1) cual = 0;
    if (cual < 0 || cual >= MAXLISTA) return nullptr;
    char *e = lista[cual];
    if (e != nullptr) cual++;
    return e;
}

char *GetElemento(char *lista[], int n) {
    if (n < 0 || n >= MAXLISTA) return nullptr;
    for (int i = 0; i < n; i++)
        if (lista[i] == nullptr) return nullptr;
    return lista[n];
}

int HistoricAdd(const char *linea) { return AniadirElemento(LH, linea); }
void HistoricClear() { BorrarLista(LH); }
char *HistoricGet(int n) { return GetElemento(LH, n); }
void HistoricPrint() { ImprimirListaCompleta(LH, 1); }
void HistoricPrintN(int n) { ImprimirListaLast(LH, n, 1); }
int HistoricDimension() { return ElementosEnLista(LH); }

int PathAdd(const char *dir) { return AniadirElemento(S, dir); }
void PathClear() { BorrarLista(S); }
int PathDel(const char *dir) { return BorrarElemento(S, dir); }
char *PathFirst() { return GetFirstNextElement(S, 1); }
char *PathNext() { return GetFirstNextElement(S, 0); }
void PathPrint() { ImprimirListaCompleta(S, 0); }

int PathAddPath() {
    const char *path = getenv("PATH");
    if (path == nullptr) return 0;
    char copia[2048];
    snprintf(copia, sizeof copia, "%s", path);
    int n = 1;
    bool primero = true;
    for (char *d = strtok(copia, ":"); d != nullptr; d = strtok(nullptr, ":")) {
        PathAdd(d);
        if (!primero) n++;
        primero = false;
    }
    return n;
}

int EntornoAdd(char *cad) { return AniadirElementoYaAsignado(E, cad); }
void EntornoClear() { BorrarLista(E); }
