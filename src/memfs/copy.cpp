// Copies, moves and deletions of files between disk and in-memory file
// systems, in the four directions.
#include "memfs/memfs.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace {

CabeceraSF *Cabecera(void *sf) { return static_cast<CabeceraSF *>(sf); }

EntradaFicheroSF *Entradas(void *sf) {
    return reinterpret_cast<EntradaFicheroSF *>(static_cast<char *>(sf) + sizeof(CabeceraSF));
}

// The free-byte count promises 271 bytes per entry more than the block
// holds, and a header may claim any capacity or total size. Where the memory
// really exists the count alone decides; a copy that would write entry
// `files` or its data past what the shell owns is refused as a lack of space.
bool CabeEnElBloque(void *sf, uint64_t tam) {
    const CabeceraSF *c = Cabecera(sf);
    uint64_t bloque = BytesDelBloque(sf), fin = InicioDatos(sf);
    if (FinEntradas(uint64_t{c->ficheros} + 1) > bloque) return false;
    if (c->ficheros > 0) {
        const EntradaFicheroSF &ultima = Entradas(sf)[c->ficheros - 1];
        fin += uint64_t{ultima.desplazamiento} + ultima.tamano;
    }
    return fin + tam <= bloque;
}

// The source's entry, when its table and its data lie in the shell's memory:
// past it there is no file system to copy from.
int BuscarOrigen(void *sf, const char *nombre) {
    if (!EntradasEnElBloque(sf)) {
        errno = ENXIO;
        return -1;
    }
    int i = BuscarFicheroSF(sf, nombre);
    if (i == -1) {
        errno = ENOENT;
        return -1;
    }
    const EntradaFicheroSF &e = Entradas(sf)[i];
    if (InicioDatos(sf) + e.desplazamiento + e.tamano > BytesDelBloque(sf)) {
        errno = ENXIO;
        return -1;
    }
    return i;
}

// Space and a free entry first, the name clash after: a full file system says
// ENOSPC even for a name it holds.
int ComprobarDestino(void *sf, uint64_t tam, const char *nombre) {
    const CabeceraSF *c = Cabecera(sf);
    if (tam >= c->libres || c->ficheros == c->capacidad || !CabeEnElBloque(sf, tam)) {
        errno = ENOSPC;
        return -1;
    }
    if (BuscarFicheroSF(sf, nombre) != -1) {
        errno = EEXIST;
        return -1;
    }
    return 0;
}

// Records data already placed at DirFinalDatos as the next file.
void AnotarFichero(void *sf, const char *nombre, uint32_t tam) {
    CabeceraSF *c = Cabecera(sf);
    EntradaFicheroSF &e = Entradas(sf)[c->ficheros];
    // Bounded copy that always leaves the stored name terminated.
    strncpy(e.nombre, nombre, sizeof e.nombre);
    e.nombre[sizeof e.nombre - 1] = '\0';
    e.tamano = tam;
    e.tiempo = time(nullptr);
    e.desplazamiento = NuevoDesplazamiento(sf, c->ficheros);
    c->ficheros++;
    c->libres -= tam;
}

struct LiberarMalloc {
    void operator()(void *p) const {
        int err = errno;
        free(p);
        errno = err;
    }
};

}  // namespace

int32_t CopyDiskDisk(const char *origen, const char *destino) {
    int64_t tam = auxTamanoFichero(origen);
    if (tam == -1) return -1;
    std::unique_ptr<void, LiberarMalloc> buf(malloc(static_cast<size_t>(tam)));
    if (buf == nullptr && tam != 0) return -1;
    int64_t leidos = LeerFicheroDisco(origen, buf.get(), static_cast<uint64_t>(tam));
    if (leidos == -1) return -1;
    if (EscribirFicheroDisco(destino, buf.get(), static_cast<uint64_t>(leidos), 0) == -1) return -1;
    return static_cast<int32_t>(leidos);
}

int32_t CopyDiskMem(const char *origen, IdFich destino) {
    int64_t tam = auxTamanoFichero(origen);
    if (tam == -1) return -1;
    if (ComprobarDestino(destino.sf, static_cast<uint64_t>(tam), destino.nombre) == -1) return -1;
    int64_t leidos = LeerFicheroDisco(origen, DirFinalDatos(destino.sf), static_cast<uint64_t>(tam));
    if (leidos == -1) return -1;
    AnotarFichero(destino.sf, destino.nombre, static_cast<uint32_t>(leidos));
    return static_cast<int32_t>(leidos);
}

int32_t CopyMemDisk(IdFich origen, const char *destino) {
    int i = BuscarOrigen(origen.sf, origen.nombre);
    if (i == -1) return -1;
    uint32_t tam = Entradas(origen.sf)[i].tamano;
    return static_cast<int32_t>(
        EscribirFicheroDisco(destino, DirPrincipioDatosFichero(origen.sf, static_cast<uint32_t>(i)), tam, 0));
}

int32_t CopyMemMem(IdFich origen, IdFich destino) {
    int i = BuscarOrigen(origen.sf, origen.nombre);
    if (i == -1) return -1;
    uint32_t tam = Entradas(origen.sf)[i].tamano;
    if (ComprobarDestino(destino.sf, tam, destino.nombre) == -1) return -1;
    // memmove: the two file systems may be one shared segment attached twice.
    memmove(DirFinalDatos(destino.sf), DirPrincipioDatosFichero(origen.sf, static_cast<uint32_t>(i)), tam);
    AnotarFichero(destino.sf, destino.nombre, tam);
    return static_cast<int32_t>(tam);
}

int32_t CopiarFicheroSF(IdFich origen, IdFich destino) {
    if (origen.sf == nullptr || destino.sf == nullptr) {
        errno = ENXIO;
        return -1;
    }
    bool deDisco = origen.sf == SF_DISCO, aDisco = destino.sf == SF_DISCO;
    if (deDisco && aDisco) return CopyDiskDisk(origen.nombre, destino.nombre);
    if (deDisco) return CopyDiskMem(origen.nombre, destino);
    if (aDisco) return CopyMemDisk(origen, destino.nombre);
    return CopyMemMem(origen, destino);
}

int BorrarFichero(IdFich id) {
    if (id.sf == SF_DISCO) return unlink(id.nombre);
    return BorrarFicheroSF(id);
}

int32_t MoverFicheroSF(IdFich origen, IdFich destino) {
    if (CopiarFicheroSF(origen, destino) == -1) return -1;
    return BorrarFichero(origen);
}
