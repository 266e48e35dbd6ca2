// Copies and moves in the four directions, with their checks and their
// order, on plain buffers and files in a temporary directory.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "memfs/memfs.h"
#include "support/session.h"

namespace {

struct SF {
    // The buffer is larger than the total size: the free count runs 271 bytes
    // an entry beyond the real room after the table.
    SF(uint32_t n, uint32_t total) : mem(new uint64_t[(total + 272 * n + 64) / 8]()) {
        EXPECT_EQ(FormatearSF(p(), n, total), 0);
    }
    void *p() { return mem.get(); }
    CabeceraSF *c() { return static_cast<CabeceraSF *>(p()); }
    EntradaFicheroSF *e(int i) {
        return reinterpret_cast<EntradaFicheroSF *>(static_cast<char *>(p()) + 32 + 272 * i);
    }
    std::string datos(int i) {
        return std::string(static_cast<char *>(DirPrincipioDatosFichero(p(), i)), e(i)->tamano);
    }
    IdFich id(std::string &nombre) { return {p(), nombre.data()}; }
    std::unique_ptr<uint64_t[]> mem;
};

IdFich Disco(std::string &path) { return {SF_DISCO, path.data()}; }

class MemfsCopy : public testing::Test {
  protected:
    std::string Fichero(const std::string &nombre, const std::string &contenido) {
        std::string path = dir / nombre;
        labtest::WriteFile(path, contenido);
        return path;
    }
    labtest::TempDir dir;
};

TEST_F(MemfsCopy, DiskToMemoryIsCheckedAgainstTheFreeBytesOnly) {
    SF sf(2, 200);  // free bytes 166, though the table alone passes 200
    ASSERT_EQ(sf.c()->libres, 166u);
    std::string grande = Fichero("grande", std::string(166, 'x'));
    std::string justo = Fichero("justo", std::string(165, 'y'));
    std::string n1 = "g", n2 = "j";
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(grande), sf.id(n1)), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(sf.c()->ficheros, 0u);
    EXPECT_EQ(CopiarFicheroSF(Disco(justo), sf.id(n2)), 165);
    EXPECT_EQ(sf.c()->libres, 1u);
    EXPECT_EQ(sf.datos(0), std::string(165, 'y'));
    EXPECT_STREQ(sf.e(0)->nombre, "j");
    EXPECT_EQ(sf.e(0)->desplazamiento, 0u);
}

TEST_F(MemfsCopy, SpaceAndCapacityComeBeforeTheNameClash) {
    SF sf(2, 4096);
    std::string datos = Fichero("datos", "0123456789");
    std::string n = "datos", corto = "dat", otro = "otro";
    ASSERT_EQ(CopiarFicheroSF(Disco(datos), sf.id(n)), 10);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(datos), sf.id(corto)), -1);  // prefix of a stored name
    EXPECT_EQ(errno, EEXIST);
    ASSERT_EQ(CopiarFicheroSF(Disco(datos), sf.id(otro)), 10);  // fills the last entry
    EXPECT_FALSE(EsValidoSF(sf.p()));
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(datos), sf.id(n)), -1);
    EXPECT_EQ(errno, ENOSPC);
    // In memory too: a full destination says ENOSPC for a clashing name.
    errno = 0;
    EXPECT_EQ(CopyMemMem(sf.id(n), sf.id(n)), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(sf.c()->ficheros, 2u);
}

TEST_F(MemfsCopy, MemoryToDiskWritesTheBytesAndNeverOverwrites) {
    SF sf(4, 4096);
    std::string contenido("bin\0ario\n", 9);
    std::string src = Fichero("src", contenido), n = "f", falta = "zz";
    ASSERT_EQ(CopiarFicheroSF(Disco(src), sf.id(n)), 9);
    std::string nuevo = dir / "nuevo", existente = Fichero("existente", "antes");
    EXPECT_EQ(CopiarFicheroSF(sf.id(n), Disco(nuevo)), 9);
    EXPECT_EQ(labtest::ReadFile(nuevo), contenido);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(sf.id(n), Disco(existente)), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(labtest::ReadFile(existente), "antes");
    std::string otro = dir / "otro";
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(sf.id(falta), Disco(otro)), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_NE(access(otro.c_str(), F_OK), 0);
}

TEST_F(MemfsCopy, MemoryToMemoryAppendsAfterTheLastFile) {
    SF a(4, 4096), b(4, 4096);
    std::string src = Fichero("src", "abcdef"), uno = "uno", dos = "dos", falta = "x";
    ASSERT_EQ(CopiarFicheroSF(Disco(src), a.id(uno)), 6);
    EXPECT_EQ(CopiarFicheroSF(a.id(uno), a.id(dos)), 6);
    EXPECT_EQ(a.e(1)->desplazamiento, 6u);
    EXPECT_EQ(a.datos(1), "abcdef");
    EXPECT_EQ(a.c()->libres, 4096u - 36 - 12);
    EXPECT_EQ(CopiarFicheroSF(a.id(dos), b.id(uno)), 6);
    EXPECT_EQ(b.datos(0), "abcdef");
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(a.id(falta), b.id(dos)), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(a.id(uno), b.id(uno)), -1);
    EXPECT_EQ(errno, EEXIST);
    IdFich nulo{nullptr, uno.data()};
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(nulo, b.id(dos)), -1);
    EXPECT_EQ(errno, ENXIO);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(a.id(uno), nulo), -1);
    EXPECT_EQ(errno, ENXIO);
    EXPECT_EQ(b.c()->ficheros, 1u);
}

TEST_F(MemfsCopy, DiskToDiskRefusesAnExistingDestination) {
    std::string src = Fichero("src", std::string(5000, 'q')), dst = dir / "dst", falta = dir / "falta";
    EXPECT_EQ(CopiarFicheroSF(Disco(src), Disco(dst)), 5000);
    EXPECT_EQ(labtest::ReadFile(dst), std::string(5000, 'q'));
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(src), Disco(dst)), -1);
    EXPECT_EQ(errno, EEXIST);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(falta), Disco(dst)), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(MemfsCopy, AFailedReadChangesNoHeaderField) {
    SF sf(4, 1 << 20);
    CabeceraSF antes = *sf.c();
    std::string directorio = dir / "sub", n = "d";
    ASSERT_EQ(mkdir(directorio.c_str(), 0700), 0);
    errno = 0;
    EXPECT_EQ(CopiarFicheroSF(Disco(directorio), sf.id(n)), -1);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(memcmp(&antes, sf.c(), sizeof antes), 0);
}

TEST_F(MemfsCopy, LongNamesAreCutAndStayTerminated) {
    SF sf(4, 4096);
    std::string src = Fichero("src", "xy"), largo(300, 'n'), exacto(255, 'm');
    ASSERT_EQ(CopiarFicheroSF(Disco(src), sf.id(largo)), 2);
    EXPECT_EQ(std::string(sf.e(0)->nombre), std::string(255, 'n'));
    EXPECT_EQ(sf.e(0)->tamano, 2u);
    EXPECT_EQ(BuscarFicheroSF(sf.p(), largo.c_str()), -1);  // the cut name is not the long one
    EXPECT_EQ(BuscarFicheroSF(sf.p(), std::string(255, 'n').c_str()), 0);
    ASSERT_EQ(CopiarFicheroSF(Disco(src), sf.id(exacto)), 2);
    EXPECT_EQ(std::string(sf.e(1)->nombre), exacto);
}

TEST_F(MemfsCopy, MoveDeletesTheSourceOnlyAfterACopy) {
    SF sf(4, 4096);
    std::string src = Fichero("src", "mover"), dst = dir / "dst", vuelta = dir / "vuelta", n = "m";
    ASSERT_EQ(MoverFicheroSF(Disco(src), Disco(dst)), 0);
    EXPECT_NE(access(src.c_str(), F_OK), 0);
    EXPECT_EQ(labtest::ReadFile(dst), "mover");
    ASSERT_EQ(MoverFicheroSF(Disco(dst), sf.id(n)), 0);
    EXPECT_NE(access(dst.c_str(), F_OK), 0);
    EXPECT_EQ(sf.datos(0), "mover");
    std::string existente = Fichero("existente", "x");
    errno = 0;
    EXPECT_EQ(MoverFicheroSF(sf.id(n), Disco(existente)), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(sf.c()->ficheros, 1u);
    ASSERT_EQ(MoverFicheroSF(sf.id(n), Disco(vuelta)), 0);
    EXPECT_EQ(sf.c()->ficheros, 0u);
    EXPECT_EQ(labtest::ReadFile(vuelta), "mover");
    errno = 0;
    EXPECT_EQ(BorrarFichero(Disco(dst)), -1);
    EXPECT_EQ(errno, ENOENT);
}

}  // namespace
