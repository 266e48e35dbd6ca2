// The layout of a file system inside a memory block: header, entry table and
// packed data, and the operations on one formatted block.
#include "memfs/memfs.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "memory/memory.h"

namespace {

CabeceraSF *Cabecera(void *sf) { return static_cast<CabeceraSF *>(sf); }

EntradaFicheroSF *Entradas(void *sf) {
    return reinterpret_cast<EntradaFicheroSF *>(static_cast<char *>(sf) + sizeof(CabeceraSF));
}

void *Mas(void *p, uint64_t n) {
    return reinterpret_cast<void *>(static_cast<uintptr_t>(reinterpret_cast<uintptr_t>(p) + n));
}

// ctime's text, or an empty line when the time cannot be represented (a
// header written by hand, not by FormatearSF).
const char *TextoFecha(int64_t t) {
    time_t tt = static_cast<time_t>(t);
    const char *s = ctime(&tt);
    return s != nullptr ? s : "\n";
}

}  // namespace

// The metadata counts one byte per entry, not the entry's real size: the free
// byte count is kept that way on purpose.
uint64_t TamanoSF(uint32_t n) { return uint64_t{n} + sizeof(CabeceraSF); }

int EspacioInsuficiente(uint32_t n, uint32_t tam) { return tam <= TamanoSF(n); }

// Judged by the header alone, whatever the block holds: the free count is
// compared in 32 bits, so a total below the metadata wraps and passes.
int EsValidoSF(const void *sf) {
    if (sf == nullptr) return 0;
    const auto *c = static_cast<const CabeceraSF *>(sf);
    return c->magico == MAGICO_SF && c->ficheros < c->capacidad &&
           c->libres <= static_cast<uint32_t>(c->tamano - static_cast<uint32_t>(TamanoSF(c->capacidad)));
}

uint64_t BytesDelBloque(const void *sf) {
    uint64_t bloque = TamanoRealNodoDireccion(&L, sf);
    return bloque == ~uint64_t{0} ? 0 : bloque;
}

uint64_t InicioDatos(const void *sf) { return FinEntradas(static_cast<const CabeceraSF *>(sf)->capacidad); }

int EntradasEnElBloque(const void *sf) {
    return FinEntradas(static_cast<const CabeceraSF *>(sf)->ficheros) <= BytesDelBloque(sf);
}

int FormatearSF(void *sf, uint32_t n, uint32_t tam) {
    if (EspacioInsuficiente(n, tam)) {
        errno = ENOSPC;
        return -1;
    }
    CabeceraSF *c = Cabecera(sf);
    c->magico = MAGICO_SF;
    c->capacidad = n;
    c->ficheros = 0;
    c->tamano = tam;
    c->libres = tam - static_cast<uint32_t>(TamanoSF(n));
    c->formateo = time(nullptr);
    memset(Entradas(sf), 0, sizeof(EntradaFicheroSF) * size_t{n});
    return 0;
}

// Addresses as numbers: a capacity or offset written by hand may put them far
// past the block, and listing prints them without reading there.
void *DirPrincipioDatos(void *sf) { return Mas(sf, InicioDatos(sf)); }

void *DirPrincipioDatosFichero(void *sf, uint32_t i) {
    return Mas(sf, InicioDatos(sf) + Entradas(sf)[i].desplazamiento);
}

void *DirFinalDatos(void *sf) {
    uint32_t n = Cabecera(sf)->ficheros;
    if (n == 0) return DirPrincipioDatos(sf);
    return Mas(DirPrincipioDatosFichero(sf, n - 1), Entradas(sf)[n - 1].tamano);
}

uint32_t NuevoDesplazamiento(void *sf, uint32_t i) {
    if (i == 0) return 0;
    const EntradaFicheroSF &e = Entradas(sf)[i - 1];
    return e.desplazamiento + e.tamano;
}

int64_t auxTamanoFichero(const char *path) {
    struct stat s;
    if (stat(path, &s) == -1) return -1;
    return s.st_size;
}

int64_t LeerFicheroDisco(const char *path, void *dir, uint64_t max) {
    struct stat s;
    if (stat(path, &s) == -1) return -1;
    // A file that grew since its size was checked is read no further than
    // the room measured for it.
    uint64_t tam = std::min(static_cast<uint64_t>(s.st_size), max);
    // O_NONBLOCK: a FIFO with no writer reads as empty instead of stopping
    // the shell; regular files are not affected.
    int df = open(path, O_RDONLY | O_NONBLOCK);
    if (df == -1) return -1;
    ssize_t n = read(df, dir, static_cast<size_t>(tam));
    int err = errno;
    close(df);
    errno = err;
    return n;
}

int64_t EscribirFicheroDisco(const char *path, const void *dir, uint64_t len, int sobreescribir) {
    return EscribirFichero(path, dir, len, sobreescribir);  // the same one write as writefile
}

void ListarSF(void *sf) {
    const CabeceraSF *c = Cabecera(sf);
    printf("SF de %u bytes con capacidad para %u ficheros %s", c->tamano, c->capacidad, TextoFecha(c->formateo));
    printf("      %u bytes desponibles. Total %u fichero(s) \n", c->libres, c->ficheros);
    for (uint32_t i = 0; i < c->ficheros; i++) {
        const EntradaFicheroSF &e = Entradas(sf)[i];
        char fecha[64];
        snprintf(fecha, sizeof fecha, "%s", TextoFecha(e.tiempo));
        fecha[strcspn(fecha, "\n")] = '\0';
        printf("(%p): %10u bytes  %s %.*s\n", DirPrincipioDatosFichero(sf, i), e.tamano, fecha,
               static_cast<int>(sizeof e.nombre), e.nombre);
    }
}

// Prefix match on purpose: "dat" finds "datos", "" finds the first file. The
// comparison stops at the end of the name field, terminated or not: a stored
// name ends within it, so longer names never matched anyway.
int BuscarFicheroSF(void *sf, const char *nombre) {
    if (nombre == nullptr) return -1;
    size_t len = std::min(strlen(nombre), sizeof(EntradaFicheroSF::nombre));
    for (uint32_t i = 0; i < Cabecera(sf)->ficheros; i++)
        if (strncmp(Entradas(sf)[i].nombre, nombre, len) == 0) return static_cast<int>(i);
    return -1;
}

namespace {

// Every file that deleting entry k moves down is read and written inside the
// shell's memory, at the offsets the deletion will compute, in its 32 bits.
bool MovimientosEnElBloque(void *sf, uint32_t k) {
    const EntradaFicheroSF *e = Entradas(sf);
    uint64_t datos = InicioDatos(sf), bloque = BytesDelBloque(sf);
    uint32_t nuevo = NuevoDesplazamiento(sf, k);
    for (uint32_t i = k; i + 1 < Cabecera(sf)->ficheros; i++) {
        uint64_t tam = e[i + 1].tamano;
        if (datos + e[i + 1].desplazamiento + tam > bloque || datos + nuevo + tam > bloque) return false;
        nuevo += e[i + 1].tamano;
    }
    return true;
}

}  // namespace

// A table or files past the block's memory: the file system is valid, but
// there is none this deletion could work on.
int BorrarFicheroSF(IdFich id) {
    void *sf = id.sf;
    if (!EsValidoSF(sf) || !EntradasEnElBloque(sf)) {
        errno = ENXIO;
        return -1;
    }
    int encontrado = BuscarFicheroSF(sf, id.nombre);
    if (encontrado == -1) {
        errno = ENOENT;
        return -1;
    }
    if (!MovimientosEnElBloque(sf, static_cast<uint32_t>(encontrado))) {
        errno = ENXIO;
        return -1;
    }
    CabeceraSF *c = Cabecera(sf);
    EntradaFicheroSF *e = Entradas(sf);
    uint32_t tam = e[encontrado].tamano;
    // Each later file moves down over the gap; entry i-1 is already in its
    // final place when entry i's new offset is computed.
    for (uint32_t i = static_cast<uint32_t>(encontrado); i + 1 < c->ficheros; i++) {
        uint32_t nuevo = NuevoDesplazamiento(sf, i);
        memmove(Mas(sf, InicioDatos(sf) + nuevo), DirPrincipioDatosFichero(sf, i + 1), e[i + 1].tamano);
        e[i] = e[i + 1];
        e[i].desplazamiento = nuevo;
    }
    c->ficheros--;
    c->libres += tam;
    return 0;
}
