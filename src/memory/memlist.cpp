// The list of memory blocks the shell obtained: a fixed array of node
// pointers kept in order of insertion, so look-ups by size, key or name
// always find the oldest matching block.
#include "memory/memory.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

// Where the allocator tells how much it really handed out for a block.
#if defined(__APPLE__)
#include <malloc/malloc.h>
#elif defined(__FreeBSD__)
#include <malloc_np.h>
#elif defined(__linux__)
#include <malloc.h>
#endif

ListaMemoria L;

namespace {

// What malloc really handed out for a block of the given requested size;
// where the C library cannot tell, the requested size.
uint64_t TamanoConcedido(void *p, uint64_t pedido) {
#if defined(__APPLE__)
    (void)pedido;
    return malloc_size(p);
#elif defined(__FreeBSD__) || defined(__linux__)
    (void)pedido;
    return malloc_usable_size(p);
#else
    (void)p;
    return pedido;
#endif
}

uint64_t PaginasEnteras(uint64_t tam) {
    long pag = sysconf(_SC_PAGESIZE);
    if (pag <= 0) return tam;
    uint64_t p = static_cast<uint64_t>(pag);
    return tam > ~uint64_t{0} - (p - 1) ? tam : (tam + p - 1) / p * p;
}

}  // namespace

void CrearLista(ListaMemoria *l) {
    for (auto &n : l->nodos) n = nullptr;
    l->n = 0;
}

NodoMemoria *CrearNodo(void *dir, uint64_t tam, int32_t clave, const char *fich, int32_t tipo) {
    auto *nodo = static_cast<NodoMemoria *>(malloc(sizeof(NodoMemoria)));
    if (nodo == nullptr) return nullptr;
    nodo->fichero = nullptr;
    if (fich != nullptr && (nodo->fichero = strdup(fich)) == nullptr) {
        free(nodo);
        return nullptr;
    }
    nodo->direccion = dir;
    nodo->tamano = tam;
    nodo->clave = clave;
    nodo->tipo = tipo;
    nodo->tiempo = time(nullptr);
    return nodo;
}

static void LiberarNodo(NodoMemoria *nodo) {
    free(nodo->fichero);
    free(nodo);
}

int InsertarNodo(ListaMemoria *l, void *dir, uint64_t tam, int32_t clave, const char *fich, int32_t tipo) {
    NodoMemoria *nodo = CrearNodo(dir, tam, clave, fich, tipo);
    if (nodo == nullptr) return -1;
    if (l->n >= MAXBLOQUES) {
        LiberarNodo(nodo);
        errno = ENOSPC;
        return -1;
    }
    l->nodos[l->n++] = nodo;
    return l->n;
}

int InsertarNodoMalloc(ListaMemoria *l, void *dir, uint64_t tam) {
    return InsertarNodo(l, dir, tam, 0, nullptr, TIPO_MALLOC);
}

int InsertarNodoShared(ListaMemoria *l, void *dir, uint64_t tam, int32_t clave) {
    return InsertarNodo(l, dir, tam, clave, nullptr, TIPO_SHARED);
}

int InsertarNodoMmap(ListaMemoria *l, void *dir, uint64_t tam, int df, const char *fich) {
    return InsertarNodo(l, dir, tam, df, fich, TIPO_MMAP);
}

// First node, oldest first, for which `cumple` holds; -1 when none does.
template <typename Predicado>
static int Buscar(const ListaMemoria *l, Predicado cumple) {
    for (int i = 0; i < l->n; i++)
        if (cumple(*l->nodos[i])) return i;
    return -1;
}

int BuscarNodoTam(ListaMemoria *l, uint64_t tam, int mascara) {
    return Buscar(l, [&](const NodoMemoria &n) { return (n.tipo & mascara) != 0 && n.tamano == tam; });
}

int BuscarNodoClave(ListaMemoria *l, int32_t clave, int mascara) {
    return Buscar(l, [&](const NodoMemoria &n) { return (n.tipo & mascara) != 0 && n.clave == clave; });
}

int BuscarNodoDescriptor(ListaMemoria *l, int df) {
    return Buscar(l, [&](const NodoMemoria &n) {
        return (n.tipo & TIPO_MMAP) != 0 && n.fichero != nullptr && n.clave == df;
    });
}

int BuscarNodoMmap(ListaMemoria *l, const char *fich) {
    if (fich == nullptr) return -1;
    return Buscar(l, [&](const NodoMemoria &n) {
        return (n.tipo & TIPO_MMAP) != 0 && n.fichero != nullptr && strcmp(n.fichero, fich) == 0;
    });
}

int BuscarNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = Buscar(l, [&](const NodoMemoria &n) { return n.direccion == dir; });
    if (i == -1) errno = ENXIO;
    return i;
}

void *DireccionNodoMalloc(ListaMemoria *l, uint64_t tam) {
    int i = BuscarNodoTam(l, tam, TIPO_MALLOC);
    return i == -1 ? nullptr : l->nodos[i]->direccion;
}

void *DireccionNodoShared(ListaMemoria *l, int32_t clave) {
    int i = BuscarNodoClave(l, clave, TIPO_SHARED);
    return i == -1 ? nullptr : l->nodos[i]->direccion;
}

void *DireccionNodoMmap(ListaMemoria *l, const char *fich) {
    int i = BuscarNodoMmap(l, fich);
    return i == -1 ? nullptr : l->nodos[i]->direccion;
}

void *DireccionNodoDescriptor(ListaMemoria *l, int df) {
    int i = BuscarNodoDescriptor(l, df);
    return i == -1 ? nullptr : l->nodos[i]->direccion;
}

int DescriptorNodoMmap(ListaMemoria *l, const char *fich) {
    int i = BuscarNodoMmap(l, fich);
    return i == -1 ? -1 : l->nodos[i]->clave;
}

int TipoNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    return i == -1 ? -1 : l->nodos[i]->tipo;
}

int DescriptorNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    return i == -1 ? -1 : l->nodos[i]->clave;
}

uint64_t TamanoNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    return i == -1 ? ~uint64_t{0} : l->nodos[i]->tamano;
}

uint64_t TamanoRealNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    if (i == -1) return ~uint64_t{0};
    const NodoMemoria *n = l->nodos[i];
    if (n->tipo == TIPO_MALLOC) return TamanoConcedido(n->direccion, n->tamano);
    return PaginasEnteras(n->tamano);  // shared segments and mappings come in whole pages
}

void *PrimerElemento(ListaMemoria *l) {
    return l->n == 0 || l->nodos[0] == nullptr ? nullptr : l->nodos[0]->direccion;
}

void *SiguienteElemento(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    if (i == -1 || i + 1 >= MAXBLOQUES || l->nodos[i + 1] == nullptr) return nullptr;
    return l->nodos[i + 1]->direccion;
}

int EliminarNodoDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    if (i == -1) return -1;
    LiberarNodo(l->nodos[i]);
    l->n--;
    for (; i < l->n; i++) l->nodos[i] = l->nodos[i + 1];
    l->nodos[l->n] = nullptr;
    return 0;
}

int EliminarDescriptorDireccion(ListaMemoria *l, const void *dir) {
    int i = BuscarNodoDireccion(l, dir);
    if (i == -1) return -1;
    l->nodos[i]->clave = -1;
    return 0;
}

char *ponFecha(time_t t) {
    char *s = ctime(&t);
    // ctime fails only for years it cannot print; show nothing then.
    if (s == nullptr) {
        static char vacia[1];
        return vacia;
    }
    s[16] = '\0';
    return s + 4;
}

void PrintElement(const NodoMemoria *nodo) {
    printf("%20p  %15llu %s", nodo->direccion, static_cast<unsigned long long>(nodo->tamano), ponFecha(nodo->tiempo));
    switch (nodo->tipo) {
    case TIPO_MALLOC:
        printf(" malloc\n");
        break;
    case TIPO_SHARED:
        printf(" shared (key %lu)\n", static_cast<unsigned long>(static_cast<long>(nodo->clave)));
        break;
    case TIPO_MMAP:
        printf(" %s  (descriptor %ld)\n", nodo->fichero != nullptr ? nodo->fichero : "",
               static_cast<long>(nodo->clave));
        break;
    default:
        printf("  unknown\n");
    }
}

void PrintListHeader(ListaMemoria *, int mascara) {
    const char *tipo = "";
    switch (mascara) {
    case TIPO_MALLOC: tipo = " malloc"; break;
    case TIPO_SHARED: tipo = " shared"; break;
    case TIPO_MMAP: tipo = " mmap"; break;
    }
    printf("******Lista de bloques asignados%s para el proceso %lu\n", tipo, static_cast<unsigned long>(getpid()));
}

void PrintList(ListaMemoria *l, int mascara) {
    PrintListHeader(l, mascara);
    for (int i = 0; i < l->n; i++)
        if ((l->nodos[i]->tipo & mascara) != 0) PrintElement(l->nodos[i]);
}

void ImprimirListaMalloc(ListaMemoria *l) { PrintList(l, TIPO_MALLOC); }
void ImprimirListaShared(ListaMemoria *l) { PrintList(l, TIPO_SHARED); }
void ImprimirListaMmap(ListaMemoria *l) { PrintList(l, TIPO_MMAP); }
void ImprimirListaMemCompleta(ListaMemoria *l) { PrintList(l, TIPO_MALLOC | TIPO_SHARED | TIPO_MMAP); }
