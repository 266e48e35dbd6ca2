// Obtaining and releasing heap blocks, System V shared memory and mapped
// files; every block obtained is recorded in L and every release looks it
// up there first.
#include "memory/memory.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/files.h"
#include "core/core.h"

namespace {

// Sizes and keys are read without error checks: text that is not a number
// reads as 0, and strtoul saturates instead of overflowing.
size_t LeerTamano(const char *s) { return strtoul(s, nullptr, 10); }

// Keys are 32-bit; larger numbers keep their low bits.
int32_t LeerClave(const char *s) { return static_cast<int32_t>(strtoul(s, nullptr, 10)); }

// Keys are shown as the unsigned form of their sign-extended value.
unsigned long ClaveImprimible(int32_t clave) { return static_cast<unsigned long>(static_cast<long>(clave)); }

bool Es(const char *palabra, std::string_view opcion) { return palabra != nullptr && opcion == palabra; }

}  // namespace

namespace {

// Large blocks are usually filled whole (files read into them, file systems
// formatted in them): where the system offers huge pages, a hint lets it
// back them with fewer, larger pages. Nothing else changes.
void AconsejarPaginasGrandes(void *p, size_t tam) {
#ifdef MADV_HUGEPAGE
    constexpr uintptr_t GRANDE = 2u << 20;
    auto inicio = (reinterpret_cast<uintptr_t>(p) + GRANDE - 1) & ~(GRANDE - 1);
    auto fin = (reinterpret_cast<uintptr_t>(p) + tam) & ~(GRANDE - 1);
    if (fin > inicio) madvise(reinterpret_cast<void *>(inicio), fin - inicio, MADV_HUGEPAGE);
#else
    (void)p;
    (void)tam;
#endif
}

}  // namespace

void doMalloc(size_t tam) {
    void *p = malloc(tam);
    if (p == nullptr) {
        printf("Imposible obtener memoria con malloc: %s\n", strerror(errno));
        return;
    }
    AconsejarPaginasGrandes(p, tam);
    printf("Asignados %llu bytes en %p\n", static_cast<unsigned long long>(tam), p);
    if (InsertarNodoMalloc(&L, p, tam) == -1) printf("Imposible insertar en lista: %s\n", strerror(errno));
}

void doMallocDealloc(size_t tam) {
    void *p = DireccionNodoMalloc(&L, tam);
    if (p == nullptr) {
        printf("No hay bloque de ese tamano asignado con malloc\n");
        return;
    }
    if (EliminarNodoDireccion(&L, p) == -1) printf("Imposible quitar de lista: %s\n", strerror(errno));
    free(p);
}

void *ObtenerMemoriaShmget(int32_t clave, size_t tam) {
    int flags = 0777;
    if (tam != 0) flags |= IPC_CREAT | IPC_EXCL;
    if (clave == IPC_PRIVATE) {
        errno = EINVAL;
        return nullptr;
    }
    int id = shmget(clave, tam, flags);
    if (id == -1) return nullptr;
    void *p = shmat(id, nullptr, 0);
    if (p == reinterpret_cast<void *>(-1)) {
        int error = errno;
        if (tam != 0) shmctl(id, IPC_RMID, nullptr);
        errno = error;
        return nullptr;
    }
    shmid_ds s{};
    shmctl(id, IPC_STAT, &s);
    InsertarNodoShared(&L, p, s.shm_segsz, clave);
    return p;
}

void doSharedDealloc(int32_t clave) {
    void *p = DireccionNodoShared(&L, clave);
    if (p == nullptr) {
        printf("No hay bloque de esa clave mapeado en el proceso\n");
        return;
    }
    shmdt(p);
    if (EliminarNodoDireccion(&L, p) == -1) printf("Imposible quitar de lista: %s\n", strerror(errno));
}

void *doMmapFichero(const char *fichero, int proteccion) {
    int modo = (proteccion & PROT_WRITE) ? O_RDWR : O_RDONLY;
    struct stat s;
    if (stat(fichero, &s) == -1) return nullptr;
    int df = open(fichero, modo);
    if (df == -1) return nullptr;
    void *p = mmap(nullptr, s.st_size, proteccion, MAP_PRIVATE, df, 0);
    if (p == MAP_FAILED) return nullptr;  // the descriptor stays open, unrecorded
    InsertarNodoMmap(&L, p, s.st_size, df, fichero);
    char nombre[1024];
    snprintf(nombre, sizeof nombre, "Mapeo de %s", fichero);
    AddOpenFile(df, nombre, modo, 0);
    return p;
}

void doMmapDealloc(const char *fichero) {
    if (fichero == nullptr) {
        ImprimirListaMmap(&L);
        return;
    }
    void *p = DireccionNodoMmap(&L, fichero);
    if (p == nullptr) {
        printf("Fichero %s no mapeado\n", fichero);
        return;
    }
    if (munmap(p, TamanoNodoDireccion(&L, p)) == -1) {
        printf("Imposible desmapear %s en %p: %s\n", fichero, p, strerror(errno));
        return;
    }
    int df = DescriptorNodoMmap(&L, fichero);
    if (df >= 0) {  // -1 once the descriptor was closed on its own
        close(df);
        RemoveOpenFile(df);
    }
    if (EliminarNodoDireccion(&L, p) == -1) printf("Imposible quitar de lista: %s\n", strerror(errno));
}

void doDeallocate(void *dir) {
    switch (TipoNodoDireccion(&L, dir)) {
    case TIPO_MALLOC:
        free(dir);
        break;
    case TIPO_SHARED:
        shmdt(dir);
        break;
    case TIPO_MMAP: {
        munmap(dir, TamanoNodoDireccion(&L, dir));
        // The open-file table keeps its entry: listopen still shows it.
        int df = DescriptorNodoDireccion(&L, dir);
        if (df >= 0) close(df);
        break;
    }
    case -1:
        printf("Direccion %p no asignada con malloc, shared o mmap\n", dir);
        return;
    }
    EliminarNodoDireccion(&L, dir);
}

void EliminarListaBloquesMemoria() {
    for (void *p = PrimerElemento(&L); p != nullptr;) {
        void *siguiente = SiguienteElemento(&L, p);
        doDeallocate(p);
        p = siguiente;
    }
}

// ---------------------------------------------------------------- commands

void Cmd_allocate(char *tr[]) {
    if (tr[0] == nullptr)
        ImprimirListaMemCompleta(&L);
    else if (Es(tr[0], "-malloc"))
        Cmd_malloc(tr + 1);
    else if (Es(tr[0], "-shared"))
        Cmd_shared(tr + 1);
    else if (Es(tr[0], "-createshared"))
        Cmd_createshared(tr + 1);
    else if (Es(tr[0], "-mmap"))
        Cmd_mmap(tr + 1);
    else
        printf("uso: %s [-malloc|-shared|-createshared|-mmap] ....\n", tr[-1]);
}

void Cmd_deallocate(char *tr[]) {
    if (tr[0] == nullptr)
        ImprimirListaMemCompleta(&L);
    else if (Es(tr[0], "-malloc"))
        Cmd_memdemalloc(tr + 1);
    else if (Es(tr[0], "-shared"))
        Cmd_memdeshared(tr + 1);
    else if (Es(tr[0], "-delkey"))
        Cmd_delkey(tr + 1);
    else if (Es(tr[0], "-mmap"))
        Cmd_memdemmap(tr + 1);
    else
        Cmd_free(tr);
}

void Cmd_malloc(char *tr[]) {
    if (Es(tr[0], "-free"))
        Cmd_memdemalloc(tr + 1);
    else
        Cmd_memmalloc(tr);
}

void Cmd_mmap(char *tr[]) {
    if (Es(tr[0], "-free"))
        Cmd_memdemmap(tr + 1);
    else
        Cmd_memmmap(tr);
}

void Cmd_shared(char *tr[]) {
    if (tr[0] == nullptr)
        ImprimirListaShared(&L);
    else if (Es(tr[0], "-free"))
        Cmd_memdeshared(tr + 1);
    else if (Es(tr[0], "-create"))
        Cmd_createshared(tr + 1);
    else if (Es(tr[0], "-delkey"))
        Cmd_delkey(tr + 1);
    else
        Cmd_memshared(tr);
}

namespace {

// Allocation and release by size share their answers: no word lists the
// malloc blocks, and a size of 0 is refused either way.
void PorTamano(char *tr[], void (*accion)(size_t)) {
    if (tr[0] == nullptr) {
        ImprimirListaMalloc(&L);
        return;
    }
    size_t tam = LeerTamano(tr[0]);
    if (tam == 0)
        printf("No se asignan bloques de 0 bytes\n");
    else
        accion(tam);
}

}  // namespace

void Cmd_memmalloc(char *tr[]) { PorTamano(tr, doMalloc); }
void Cmd_memdemalloc(char *tr[]) { PorTamano(tr, doMallocDealloc); }

void Cmd_createshared(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        ImprimirListaShared(&L);
        return;
    }
    int32_t clave = LeerClave(tr[0]);
    size_t tam = LeerTamano(tr[1]);
    if (tam == 0) {
        printf("No se asignan bloques de 0 bytes\n");
        return;
    }
    void *p = ObtenerMemoriaShmget(clave, tam);
    if (p == nullptr)
        printf("Imposible asignar memoria compartida clave %lu: %s\n", ClaveImprimible(clave), strerror(errno));
    else
        printf("Asignados %llu bytes en %p\n", static_cast<unsigned long long>(tam), p);
}

void Cmd_memshared(char *tr[]) {
    if (tr[0] == nullptr) {
        ImprimirListaShared(&L);
        return;
    }
    int32_t clave = LeerClave(tr[0]);
    void *p = ObtenerMemoriaShmget(clave, 0);
    if (p == nullptr)
        printf("Imposible asignar memoria compartida clave %lu: %s\n", ClaveImprimible(clave), strerror(errno));
    else
        printf("Memoria compartida de clave %lu  en %p\n", ClaveImprimible(clave), p);
}

void Cmd_memdeshared(char *tr[]) {
    if (tr[0] == nullptr)
        ImprimirListaShared(&L);
    else
        doSharedDealloc(LeerClave(tr[0]));
}

void Cmd_memmmap(char *tr[]) {
    if (tr[0] == nullptr) {
        ImprimirListaMmap(&L);
        return;
    }
    int proteccion = PROT_NONE;
    if (tr[1] != nullptr && strlen(tr[1]) < 4) {
        if (strchr(tr[1], 'r') != nullptr) proteccion |= PROT_READ;
        if (strchr(tr[1], 'w') != nullptr) proteccion |= PROT_WRITE;
        if (strchr(tr[1], 'x') != nullptr) proteccion |= PROT_EXEC;
    }
    void *p = doMmapFichero(tr[0], proteccion);
    if (p == nullptr)
        ErrorSistema("Imposible mapear fichero");
    else
        printf("fichero %s mapeado en %p\n", tr[0], p);
}

void Cmd_memdemmap(char *tr[]) {
    if (tr[0] == nullptr)
        ImprimirListaMmap(&L);
    else
        doMmapDealloc(tr[0]);
}

void Cmd_free(char *tr[]) {
    void *p = tr[0] == nullptr ? nullptr : cadtop(tr[0]);
    if (p == nullptr)
        ImprimirListaMemCompleta(&L);
    else
        doDeallocate(p);
}

void Cmd_delkey(char *tr[]) {
    int32_t clave = tr[0] == nullptr ? 0 : LeerClave(tr[0]);
    if (clave == IPC_PRIVATE) {
        printf("      delkey necesita clave_valida\n");
        return;
    }
    int id = shmget(clave, 0, 0666);
    if (id == -1) {
        ErrorSistema("shmget: imposible obtener memoria compartida");
        return;
    }
    if (shmctl(id, IPC_RMID, nullptr) == -1) ErrorSistema("shmctl: imposible eliminar memoria compartida\n");
}
