// The memfs commands and assign: naming file systems and files by words, and
// the checks that keep the file system inside blocks the shell owns.
#include "memfs/memfs.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

#include "core/core.h"
#include "memory/memory.h"

namespace {

constexpr uint64_t MINBLOQUESF = 16384;
constexpr uint64_t BYTESPORENTRADA = 4096;

char SinNombre[] = "SinNombre";

// A label first, then hexadecimal (with or without 0x).
void *ResolverSF(const char *palabra) {
    void *dir = LabelAddr(palabra);
    if (dir != nullptr) return dir;
    return reinterpret_cast<void *>(static_cast<uintptr_t>(strtoull(palabra, nullptr, 16)));
}

bool BloqueDeLista(const void *dir) { return TamanoNodoDireccion(&L, dir) != ~uint64_t{0}; }

// A mapped file may be mapped without read permission: ask the kernel
// whether the header can be read before reading it.
bool Legible(const void *dir, size_t n) {
    int p[2];
    if (pipe(p) == -1) return false;
    bool ok = write(p[1], dir, n) == static_cast<ssize_t>(n);
    close(p[0]);
    close(p[1]);
    return ok;
}

void AnadirAssign(const char *nombre, const char *palabra) {
    void *dir = reinterpret_cast<void *>(static_cast<uintptr_t>(strtoull(palabra, nullptr, 16)));
    if (dir == nullptr) {
        printf("direccion de memoria no valida: %s\n", palabra);
        return;
    }
    if (LabelAdd(nombre, dir) == -1) printf("Imposible aniadir assign: %s\n", strerror(errno));
}

}  // namespace

int ValidAddrForMakingFS(const void *dir) {
    return BloqueDeLista(dir) && (TipoNodoDireccion(&L, dir) & (TIPO_MALLOC | TIPO_SHARED)) != 0;
}

// A header is read only where the shell owns the memory for it.
int ValidSFAddr(const void *dir) {
    return ValidAddrForMakingFS(dir) && BytesDelBloque(dir) >= sizeof(CabeceraSF) && EsValidoSF(dir);
}

void ObtenerIdfich(IdFich *id, char *palabra) {
    if (palabra == nullptr) {
        id->sf = nullptr;
        id->nombre = nullptr;
        return;
    }
    char *dospuntos = strchr(palabra, ':');
    if (dospuntos == nullptr) {
        id->sf = SF_DISCO;
        id->nombre = palabra;
        return;
    }
    *dospuntos = '\0';
    id->nombre = dospuntos[1] != '\0' ? dospuntos + 1 : SinNombre;
    void *sf = ResolverSF(palabra);
    id->sf = ValidSFAddr(sf) ? sf : nullptr;
}

void MemFSFormat(char *tr[]) {
    if (tr[0] == nullptr) {
        printf("   memfs-format id_mem\n");
        return;
    }
    void *dir = ResolverSF(tr[0]);
    if (!ValidAddrForMakingFS(dir)) {
        printf("   id_mem no valido (no corresponde a un bloque de malloc o shared)\n");
        return;
    }
    uint64_t tam = TamanoNodoDireccion(&L, dir);
    if (tam < MINBLOQUESF) {
        printf("   tamano bloque memoria demasiado pequeno: %zu (min %d)\n", static_cast<size_t>(tam),
               static_cast<int>(MINBLOQUESF));
        return;
    }
    if (FormatearSF(dir, static_cast<uint32_t>(tam / BYTESPORENTRADA + 2), static_cast<uint32_t>(tam)) == -1) {
        ErrorSistema("Imposible formatear SF");
        return;
    }
    ListarSF(dir);
}

void MemFSListar(char *tr[]) {
    if (tr[0] == nullptr) {
        printf("   memfs-ls id_mem\n");
        return;
    }
    void *dir = ResolverSF(tr[0]);
    if (ValidSFAddr(dir) && EntradasEnElBloque(dir))
        ListarSF(dir);
    else
        printf("Id sistema de ficheros no valido\n");
}

void MemFSBuscar(char *[]) {
    for (void *p = PrimerElemento(&L); p != nullptr; p = SiguienteElemento(&L, p)) {
        if (BytesDelBloque(p) < sizeof(CabeceraSF)) continue;
        if ((TipoNodoDireccion(&L, p) & TIPO_MMAP) != 0 && !Legible(p, sizeof(CabeceraSF))) continue;
        if (EsValidoSF(p)) printf("Sistema de ficheros valido en %p\n", p);
    }
}

namespace {

// Copy and move take two identifiers alike.
void CopiarOMover(char *tr[], int32_t (*operacion)(IdFich, IdFich), const char *uso, const char *error) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        printf("%s", uso);
        return;
    }
    IdFich origen, destino;
    ObtenerIdfich(&origen, tr[0]);
    ObtenerIdfich(&destino, tr[1]);
    if (operacion(origen, destino) == -1) ErrorSistema(error);
}

}  // namespace

void MemFSCopiar(char *tr[]) { CopiarOMover(tr, CopiarFicheroSF, "   memfs-cp id1 id2\n", "Imposible copiar fichero"); }
void MemFSMover(char *tr[]) { CopiarOMover(tr, MoverFicheroSF, "   memfs-mv id1 id2\n", "Imposible mover fichero"); }

// Deletes inside a file system only: a word without a colon is not unlinked,
// and its disk marker goes to the validity check like any address.
void MemFSBorrar(char *tr[]) {
    if (tr[0] == nullptr) {
        printf("   memfs-rm id_fich\n");
        return;
    }
    IdFich id;
    ObtenerIdfich(&id, tr[0]);
    if (BorrarFicheroSF(id) == -1) ErrorSistema("Imposible borrar fichero");
}

void Cmd_memfs(char *tr[]) {
    struct Opcion {
        std::string_view nombre;
        Manejador funcion;
    };
    static constexpr Opcion opciones[] = {
        {"-format", MemFSFormat}, {"-list", MemFSListar},  {"-search", MemFSBuscar}, {"-label", Cmd_printAssign},
        {"-copy", MemFSCopiar},   {"-move", MemFSMover},   {"-delete", MemFSBorrar},
    };
    if (tr[0] != nullptr)
        for (const Opcion &o : opciones)
            if (o.nombre == tr[0]) {
                o.funcion(tr + 1);
                return;
            }
    printf("Uso %s [-format|-list|-search|-label|-copy|-move|-delete] ....\n", tr[-1]);
}

void Cmd_printAssign(char *[]) {
    for (void *p = LabelFirstAddr(); p != nullptr; p = LabelNextAddr(p))
        printf("LABEL: %8s, ADDR: %p %s\n", LabelLabel(p), p, ValidSFAddr(p) ? "Sistema de Ficheros valido" : "");
}

void Cmd_assign(char *tr[]) {
    if (tr[0] == nullptr) {
        Cmd_printAssign(tr);
        return;
    }
    std::string_view opcion = tr[0];
    if (opcion == "-add") {
        if (tr[1] == nullptr || tr[2] == nullptr)
            printf("uso: %s -add nombre addr\n", tr[-1]);
        else
            AnadirAssign(tr[1], tr[2]);
    } else if (opcion == "-del") {
        if (LabelDel(tr[1]) == -1) printf("Imposible eliminar assign: %s\n", strerror(errno));
    } else if (opcion == "-clear") {
        InitLabel();
    } else if (tr[1] != nullptr && tr[2] == nullptr) {
        AnadirAssign(tr[0], tr[1]);
    } else {
        printf("uso: %s [-add|-del|-clear] ....\n", tr[-1]);
    }
}
