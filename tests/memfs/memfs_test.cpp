// The file system on plain buffers: layout, validity, packing and compaction,
// the checks of the copies into memory, and the label table.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>

#include "memfs/memfs.h"
#include "support/session.h"

namespace {

// An aligned buffer of `real` bytes filled with a marker, formatted with a
// total size that may be smaller: the free count runs past the real room.
struct SF {
    SF(uint32_t n, uint32_t total, size_t real = 0) : mem(new uint64_t[(std::max<size_t>(real, total) + 7) / 8]) {
        memset(mem.get(), 0xAB, std::max<size_t>(real, total));
        ok = FormatearSF(p(), n, total);
    }
    unsigned char *p() { return reinterpret_cast<unsigned char *>(mem.get()); }
    CabeceraSF *c() { return reinterpret_cast<CabeceraSF *>(p()); }
    EntradaFicheroSF *e(int i) { return reinterpret_cast<EntradaFicheroSF *>(p() + 32 + 272 * i); }
    std::string datos(int i) { return {static_cast<char *>(DirPrincipioDatosFichero(p(), i)), e(i)->tamano}; }
    IdFich id(std::string &n) { return {p(), n.data()}; }
    std::unique_ptr<uint64_t[]> mem;
    int ok;
};

class Memfs : public testing::Test {
  protected:
    // Copies a new disk file with this content into the file system.
    int32_t Meter(SF &sf, std::string nombre, const std::string &contenido) {
        std::string path = dir / ("d-" + std::to_string(n++));
        labtest::WriteFile(path, contenido);
        return CopiarFicheroSF({SF_DISCO, path.data()}, sf.id(nombre));
    }
    labtest::TempDir dir;
    int n = 0;
};

TEST_F(Memfs, FormattingWritesHeaderAndTableOnly) {
    SF sf(6, 16384);
    ASSERT_EQ(sf.ok, 0);
    const uint32_t esperado[] = {0x110691, 6, 0, 16384, 16384 - 38, 0xABABABAB};  // reserved left as it was
    EXPECT_EQ(memcmp(sf.p(), esperado, sizeof esperado), 0);
    EXPECT_LE(time(nullptr) - sf.c()->formateo, 2);
    for (int i = 32; i < 1664; i++) ASSERT_EQ(sf.p()[i], 0) << i;
    EXPECT_EQ(sf.p()[1664], 0xAB);
    EXPECT_EQ(DirFinalDatos(sf.p()), sf.p() + 1664);

    SF pequeno(6, 38, 64);
    EXPECT_EQ(pequeno.ok, -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(pequeno.p()[0], 0xAB);
    EXPECT_TRUE(EspacioInsuficiente(0xFFFFFFFF, 0xFFFFFFFF));  // no 32-bit wrap of N + 32
}

TEST_F(Memfs, ValidityNeedsMagicAFreeEntryAndBoundedFreeBytes) {
    SF sf(6, 16384);
    EXPECT_FALSE(EsValidoSF(nullptr));
    sf.c()->ficheros = 5;
    EXPECT_TRUE(EsValidoSF(sf.p()));
    sf.c()->ficheros = 6;
    EXPECT_FALSE(EsValidoSF(sf.p()));
    sf.c()->ficheros = 0;
    sf.c()->libres = 16384 - 38 + 1;
    EXPECT_FALSE(EsValidoSF(sf.p()));
    sf.c()->libres = 0;
    sf.c()->magico++;
    EXPECT_FALSE(EsValidoSF(sf.p()));
}

TEST_F(Memfs, DeletionCompactsDataAndTable) {
    SF sf(4, 4096);
    ASSERT_EQ(Meter(sf, "a", std::string(10, 'a')), 10);
    ASSERT_EQ(Meter(sf, "b", std::string(20, 'b')), 20);
    ASSERT_EQ(Meter(sf, "c", "ccccC"), 5);
    EXPECT_EQ(sf.e(2)->desplazamiento, 30u);
    std::string b = "b", a = "a", c = "c", x = "x";
    ASSERT_EQ(BorrarFicheroSF(sf.id(b)), 0);
    EXPECT_EQ(sf.c()->ficheros, 2u);
    EXPECT_EQ(sf.c()->libres, 4096u - 36 - 15);
    EXPECT_STREQ(sf.e(1)->nombre, "c");
    EXPECT_EQ(sf.e(1)->desplazamiento, 10u);
    EXPECT_EQ(std::string(static_cast<char *>(DirPrincipioDatos(sf.p())), 15), std::string(10, 'a') + "ccccC");
    EXPECT_EQ(BorrarFicheroSF(sf.id(x)), -1);
    EXPECT_EQ(errno, ENOENT);
    ASSERT_EQ(BorrarFicheroSF(sf.id(a)), 0);
    EXPECT_EQ(sf.datos(0), "ccccC");
    ASSERT_EQ(BorrarFicheroSF(sf.id(c)), 0);
    EXPECT_EQ(DirFinalDatos(sf.p()), DirPrincipioDatos(sf.p()));
    EXPECT_EQ(BorrarFicheroSF({nullptr, c.data()}), -1);
    EXPECT_EQ(errno, ENXIO);
}

TEST_F(Memfs, NamesMatchByPrefix) {
    SF sf(4, 4096);
    EXPECT_EQ(BuscarFicheroSF(sf.p(), ""), -1);
    ASSERT_EQ(Meter(sf, "datos", "1"), 1);
    EXPECT_EQ(Meter(sf, "dat", "2"), -1);
    EXPECT_EQ(errno, EEXIST);
    ASSERT_EQ(Meter(sf, "x", "2"), 1);
    strcpy(sf.e(1)->nombre, "d");
    EXPECT_EQ(BuscarFicheroSF(sf.p(), "d"), 0);
    EXPECT_EQ(BuscarFicheroSF(sf.p(), ""), 0);
    EXPECT_EQ(BuscarFicheroSF(sf.p(), "datosX"), -1);
}

TEST_F(Memfs, CopiesIntoMemoryCheckFreeBytesAndEntriesBeforeTheName) {
    SF sf(2, 200, 1024);  // free bytes 166, though the table alone passes 200
    EXPECT_EQ(Meter(sf, "g", std::string(166, 'g')), -1);
    EXPECT_EQ(errno, ENOSPC);
    ASSERT_EQ(Meter(sf, "j", std::string(165, 'j')), 165);
    EXPECT_EQ(sf.c()->libres, 1u);
    EXPECT_EQ(sf.datos(0), std::string(165, 'j'));

    SF lleno(2, 4096);
    std::string uno = "uno";
    ASSERT_EQ(Meter(lleno, "uno", "1"), 1);
    ASSERT_EQ(Meter(lleno, "dos", "2"), 1);  // every entry in use
    EXPECT_EQ(Meter(lleno, "uno", "1"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(CopyMemMem(lleno.id(uno), lleno.id(uno)), -1);
    EXPECT_EQ(errno, ENOSPC);
}

TEST_F(Memfs, FailedCopiesAndMovesChangeNothing) {
    SF sf(4, 1 << 20);
    CabeceraSF antes = *sf.c();
    std::string sub = dir / "sub", n = "n";
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    EXPECT_EQ(CopiarFicheroSF({SF_DISCO, sub.data()}, sf.id(n)), -1);  // read fails
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(memcmp(&antes, sf.c(), sizeof antes), 0);
    ASSERT_EQ(Meter(sf, "n", "nuevo"), 5);
    std::string existente = dir / "existente";
    labtest::WriteFile(existente, "antes");
    EXPECT_EQ(MoverFicheroSF(sf.id(n), {SF_DISCO, existente.data()}), -1);  // the source stays
    EXPECT_EQ(sf.c()->ficheros, 1u);
}

TEST(MemfsLabels, TableHoldsTwoThousandFortySevenAndShiftsOnDeletion) {
    static EntradaLabel t[MAXLABELS] = {};
    char nombre[8];
    for (int i = 0; i < MAXLABELS - 1; i++) {
        snprintf(nombre, sizeof nombre, "l%d", i);
        ASSERT_EQ(AniadirLabel(t, nombre, reinterpret_cast<void *>(0x1000 + i)), i);
    }
    EXPECT_EQ(AniadirLabel(t, "otra", t), -1);
    EXPECT_EQ(AniadirLabel(t, "l5", t), 5);  // replacing still works
    EXPECT_EQ(BorrarLabel(t, "l0"), 0);
    EXPECT_STREQ(t[0].nombre, "l1");
    EXPECT_EQ(t[4].direccion, t);
    EXPECT_EQ(AniadirLabel(t, "otra", t), MAXLABELS - 2);
    InicializarListaLabel(t);
    EXPECT_EQ(BuscarLabel(t, "l7"), 6);  // clearing keeps the names
    EXPECT_EQ(ObtenerAddr(t, "l7"), nullptr);
    EXPECT_EQ(AniadirLabel(t, "l7", t), 0);
}

TEST(MemfsLabels, OneAddressTwiceMakesTheWalkCycle) {
    EntradaLabel t[MAXLABELS] = {};
    void *a = &t[0], *b = &t[1];
    AniadirLabel(t, "a", a);
    AniadirLabel(t, "b", b);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, a), b);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, b), nullptr);
    AniadirLabel(t, "c", a);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, b), a);
    EXPECT_EQ(ObtenerSiguienteDireccion(t, a), b);
}

}  // namespace
