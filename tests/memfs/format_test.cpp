// The validity check of a file system against the memory its block really
// holds, field by field at each limit, and the size the block list reports.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <sys/shm.h>
#include <unistd.h>

#include "memfs/memfs.h"
#include "memory/memory.h"

namespace {

uint64_t Paginas(uint64_t n) {
    auto p = static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
    return (n + p - 1) / p * p;
}

// A malloc block in the shell's block list for the length of a test.
struct Bloque {
    explicit Bloque(size_t n) : p(static_cast<char *>(calloc(1, n))) { InsertarNodoMalloc(&L, p, n); }
    ~Bloque() {
        EliminarNodoDireccion(&L, p);
        free(p);
    }
    CabeceraSF *c() { return reinterpret_cast<CabeceraSF *>(p); }
    EntradaFicheroSF *e() { return reinterpret_cast<EntradaFicheroSF *>(p + sizeof(CabeceraSF)); }
    char *p;
};

TEST(TamanoReal, WholePagesForSharedAndMappedAtLeastTheRequestForMalloc) {
    Bloque b(100);
    EXPECT_GE(TamanoRealNodoDireccion(&L, b.p), 100u);
    EXPECT_EQ(TamanoRealNodoDireccion(&L, b.p + 1), ~uint64_t{0});
    int id = shmget(IPC_PRIVATE, 100, 0600);
    ASSERT_NE(id, -1);
    void *s = shmat(id, nullptr, 0);
    shmctl(id, IPC_RMID, nullptr);
    ASSERT_NE(s, reinterpret_cast<void *>(-1));
    void *m = mmap(nullptr, 5000, PROT_READ, MAP_PRIVATE | MAP_ANON, -1, 0);
    ASSERT_NE(m, MAP_FAILED);
    InsertarNodoShared(&L, s, 100, 1);
    InsertarNodoMmap(&L, m, 5000, -1, "anonimo");
    EXPECT_EQ(TamanoRealNodoDireccion(&L, s), Paginas(100));
    EXPECT_EQ(TamanoRealNodoDireccion(&L, m), Paginas(5000));
    EliminarNodoDireccion(&L, s);
    EliminarNodoDireccion(&L, m);
    shmdt(s);
    munmap(m, 5000);
}

TEST(EsValidoSF, EachFieldUpToTheRealEndOfTheBlock) {
    Bloque b(16384);
    const uint64_t real = TamanoRealNodoDireccion(&L, b.p), espacio = real - 1664;
    auto valido = [&](auto cambio) {
        FormatearSF(b.p, 6, 16384);
        b.e()[0] = {"a", 10, 0, 0};
        b.e()[1] = {"b", 20, 10, 0};
        b.e()[2] = {"c", 30, 30, 0};
        b.c()->ficheros = 3;
        cambio(*b.c(), b.e());
        return EsValidoSF(b.p);
    };
    using E = EntradaFicheroSF *;
    EXPECT_TRUE(valido([](CabeceraSF &, E) {}));
    const auto mayor = static_cast<uint32_t>((real - 32) / 272);  // the largest table that fits
    EXPECT_TRUE(valido([&](CabeceraSF &c, E) { c.capacidad = mayor, c.libres = 0, c.ficheros = 0; }));
    EXPECT_FALSE(valido([&](CabeceraSF &c, E) { c.capacidad = mayor + 1, c.libres = 0, c.ficheros = 0; }));
    EXPECT_FALSE(valido([](CabeceraSF &c, E) { c.ficheros = 6; }));
    EXPECT_TRUE(valido([&](CabeceraSF &c, E) { c.tamano = static_cast<uint32_t>(real); }));
    EXPECT_FALSE(valido([&](CabeceraSF &c, E) { c.tamano = static_cast<uint32_t>(real + 1); }));
    EXPECT_TRUE(valido([](CabeceraSF &c, E) { c.libres = 16346; }));
    EXPECT_FALSE(valido([](CabeceraSF &c, E) { c.libres = 16347; }));
    EXPECT_FALSE(valido([](CabeceraSF &c, E) { c.tamano = 37, c.libres = 0; }));  // the metadata is 38
    EXPECT_FALSE(valido([](CabeceraSF &c, E) { c.tamano = 0, c.libres = 0xffffff00; }));
    // The last file may end exactly at the end, not one byte later, nor wrap.
    EXPECT_TRUE(valido([&](CabeceraSF &, E e) { e[2].tamano = static_cast<uint32_t>(espacio - 30); }));
    EXPECT_FALSE(valido([&](CabeceraSF &, E e) { e[2].tamano = static_cast<uint32_t>(espacio - 29); }));
    EXPECT_FALSE(valido([](CabeceraSF &, E e) { e[1].desplazamiento = 0xfffffff0; }));
    // a at the very end: deleting b packs c right after it, past the end
    // unless c is empty.
    EXPECT_FALSE(valido([&](CabeceraSF &, E e) { e[0].desplazamiento = static_cast<uint32_t>(espacio - 10); }));
    EXPECT_TRUE(valido([&](CabeceraSF &, E e) {
        e[0].desplazamiento = static_cast<uint32_t>(espacio - 10);
        e[2].tamano = 0;
    }));

    // A block smaller than a header, and a header outside the block list.
    Bloque pequeno(16);
    EXPECT_FALSE(EsValidoSF(pequeno.p));
    alignas(8) char fuera[64] = {};
    FormatearSF(fuera, 0, 64);
    static_cast<CabeceraSF *>(static_cast<void *>(fuera))->capacidad = 1;
    EXPECT_FALSE(EsValidoSF(fuera));
}

}  // namespace
