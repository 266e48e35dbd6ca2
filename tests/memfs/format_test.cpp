// The layout of a formatted block, validity, look-up, listing and deletion,
// on plain buffers.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "memfs/memfs.h"
#include "support/session.h"

namespace {

// An aligned buffer filled with a marker byte, so untouched bytes show.
struct Bloque {
    explicit Bloque(size_t n, unsigned char relleno = 0xAB) : mem(new uint64_t[(n + 7) / 8]), tam(n) {
        memset(mem.get(), relleno, n);
    }
    unsigned char *p() { return reinterpret_cast<unsigned char *>(mem.get()); }
    CabeceraSF *c() { return reinterpret_cast<CabeceraSF *>(mem.get()); }
    EntradaFicheroSF *e(int i) { return reinterpret_cast<EntradaFicheroSF *>(p() + 32 + 272 * i); }
    uint32_t u32(size_t off) {
        uint32_t v;
        memcpy(&v, p() + off, 4);
        return v;
    }
    std::unique_ptr<uint64_t[]> mem;
    size_t tam;
};

// Puts a file with the given content into the file system from disk.
int32_t Meter(void *sf, const labtest::TempDir &d, const std::string &nombre, const std::string &contenido) {
    std::string path = d / ("src-" + nombre);
    labtest::WriteFile(path, contenido);
    std::string n = nombre;
    return CopiarFicheroSF({SF_DISCO, path.data()}, {sf, n.data()});
}

TEST(MemfsFormat, HeaderAndTableAreLaidOutByteForByte) {
    Bloque b(16384);
    time_t antes = time(nullptr);
    ASSERT_EQ(FormatearSF(b.p(), 6, 16384), 0);
    time_t despues = time(nullptr);
    const unsigned char magico[] = {0x91, 0x06, 0x11, 0x00};
    EXPECT_EQ(memcmp(b.p(), magico, 4), 0);
    EXPECT_EQ(b.u32(4), 6u);
    EXPECT_EQ(b.u32(8), 0u);
    EXPECT_EQ(b.u32(12), 16384u);
    EXPECT_EQ(b.u32(16), 16384u - 38u);   // one byte per entry plus the header
    EXPECT_EQ(b.u32(20), 0xABABABABu);   // reserved: left as it was
    int64_t t;
    memcpy(&t, b.p() + 24, 8);
    EXPECT_GE(t, antes);
    EXPECT_LE(t, despues);
    for (int i = 32; i < 32 + 272 * 6; i++) ASSERT_EQ(b.p()[i], 0) << "table byte " << i;
    EXPECT_EQ(b.p()[1664], 0xAB);  // data area untouched
    EXPECT_EQ(DirPrincipioDatos(b.p()), b.p() + 1664);
    EXPECT_EQ(DirFinalDatos(b.p()), b.p() + 1664);
    EXPECT_TRUE(EsValidoSF(b.p()));
}

TEST(MemfsFormat, TooSmallASizeFailsAndLeavesTheBlock) {
    Bloque b(64);
    errno = 0;
    EXPECT_EQ(FormatearSF(b.p(), 6, 38), -1);
    EXPECT_EQ(errno, ENOSPC);
    for (size_t i = 0; i < b.tam; i++) ASSERT_EQ(b.p()[i], 0xAB);
    EXPECT_EQ(TamanoSF(0xFFFFFFFFu), 0xFFFFFFFFull + 32);
    EXPECT_TRUE(EspacioInsuficiente(0xFFFFFFFFu, 0xFFFFFFFFu));  // no 32-bit wrap
    EXPECT_EQ(FormatearSF(b.p(), 0, 33), 0);
    EXPECT_EQ(b.c()->libres, 1u);
}

TEST(MemfsFormat, ValidityNeedsMagicAFreeEntryAndConsistentFreeBytes) {
    EXPECT_FALSE(EsValidoSF(nullptr));
    Bloque b(16384, 0);
    EXPECT_FALSE(EsValidoSF(b.p()));  // never formatted
    ASSERT_EQ(FormatearSF(b.p(), 6, 16384), 0);
    b.c()->ficheros = 5;
    EXPECT_TRUE(EsValidoSF(b.p()));
    b.c()->ficheros = 6;  // every entry in use: no longer valid
    EXPECT_FALSE(EsValidoSF(b.p()));
    b.c()->ficheros = 0;
    b.c()->libres = 16384 - 38 + 1;
    EXPECT_FALSE(EsValidoSF(b.p()));
    b.c()->libres = 0;
    b.c()->tamano = 10;  // total below the metadata: the unsigned difference wraps
    EXPECT_TRUE(EsValidoSF(b.p()));
    b.c()->magico = MAGICO_SF + 1;
    EXPECT_FALSE(EsValidoSF(b.p()));
}

TEST(MemfsFormat, FilesArePackedAndDeletionCompactsDataAndTable) {
    labtest::TempDir d;
    Bloque b(4096);
    ASSERT_EQ(FormatearSF(b.p(), 4, 4096), 0);
    uint32_t libres = b.c()->libres;
    ASSERT_EQ(Meter(b.p(), d, "a", std::string(10, 'a')), 10);
    ASSERT_EQ(Meter(b.p(), d, "b", std::string(20, 'b')), 20);
    ASSERT_EQ(Meter(b.p(), d, "c", "ccccC"), 5);
    EXPECT_EQ(b.c()->ficheros, 3u);
    EXPECT_EQ(b.c()->libres, libres - 35);
    EXPECT_EQ(b.e(1)->desplazamiento, 10u);
    EXPECT_EQ(b.e(2)->desplazamiento, 30u);
    EXPECT_EQ(NuevoDesplazamiento(b.p(), 3), 35u);
    EXPECT_EQ(DirFinalDatos(b.p()), static_cast<unsigned char *>(DirPrincipioDatos(b.p())) + 35);

    char nb[] = "b";
    ASSERT_EQ(BorrarFicheroSF({b.p(), nb}), 0);
    EXPECT_EQ(b.c()->ficheros, 2u);
    EXPECT_EQ(b.c()->libres, libres - 15);
    EXPECT_STREQ(b.e(1)->nombre, "c");
    EXPECT_EQ(b.e(1)->desplazamiento, 10u);
    EXPECT_EQ(b.e(1)->tamano, 5u);
    auto *datos = static_cast<char *>(DirPrincipioDatos(b.p()));
    EXPECT_EQ(std::string(datos, 15), std::string(10, 'a') + "ccccC");
    EXPECT_STREQ(b.e(2)->nombre, "c");  // the old last entry keeps its contents

    char na[] = "a", nc[] = "c";
    ASSERT_EQ(BorrarFicheroSF({b.p(), na}), 0);
    EXPECT_EQ(b.e(0)->desplazamiento, 0u);
    EXPECT_EQ(std::string(datos, 5), "ccccC");
    ASSERT_EQ(BorrarFicheroSF({b.p(), nc}), 0);
    EXPECT_EQ(b.c()->ficheros, 0u);
    EXPECT_EQ(b.c()->libres, libres);
    EXPECT_EQ(DirFinalDatos(b.p()), DirPrincipioDatos(b.p()));
}

TEST(MemfsFormat, LookUpIsByPrefixAndDeletionReportsWhatIsMissing) {
    labtest::TempDir d;
    Bloque b(4096);
    ASSERT_EQ(FormatearSF(b.p(), 4, 4096), 0);
    EXPECT_EQ(BuscarFicheroSF(b.p(), ""), -1);
    ASSERT_EQ(Meter(b.p(), d, "bb", "1"), 1);
    errno = 0;
    EXPECT_EQ(Meter(b.p(), d, "b", "2"), -1);  // b is a prefix of bb
    EXPECT_EQ(errno, EEXIST);
    ASSERT_EQ(Meter(b.p(), d, "x", "2"), 1);
    strcpy(b.e(1)->nombre, "b");
    EXPECT_EQ(BuscarFicheroSF(b.p(), "b"), 0);
    EXPECT_EQ(BuscarFicheroSF(b.p(), ""), 0);
    EXPECT_EQ(BuscarFicheroSF(b.p(), "bbb"), -1);

    char nx[] = "x";
    errno = 0;
    EXPECT_EQ(BorrarFicheroSF({b.p(), nx}), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(BorrarFicheroSF({nullptr, nx}), -1);
    EXPECT_EQ(errno, ENXIO);
    b.c()->ficheros = 4;
    errno = 0;
    EXPECT_EQ(BorrarFicheroSF({b.p(), nx}), -1);
    EXPECT_EQ(errno, ENXIO);
}

TEST(MemfsFormat, ListingShowsHeaderAndEachFile) {
    labtest::TempDir d;
    Bloque b(4096);
    ASSERT_EQ(FormatearSF(b.p(), 4, 4096), 0);
    ASSERT_EQ(Meter(b.p(), d, "uno", "12345"), 5);
    b.c()->formateo = 0;
    b.e(0)->tiempo = 0;
    time_t cero = 0;
    std::string fecha = ctime(&cero);
    char linea[128];
    snprintf(linea, sizeof linea, "(%p):          5 bytes  %s uno\n", DirPrincipioDatos(b.p()),
             fecha.substr(0, fecha.size() - 1).c_str());
    testing::internal::CaptureStdout();
    ListarSF(b.p());
    fflush(stdout);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "SF de 4096 bytes con capacidad para 4 ficheros " + fecha +
                       "      4055 bytes desponibles. Total 1 fichero(s) \n" + linea);
}

}  // namespace
