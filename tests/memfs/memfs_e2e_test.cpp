// memfs and assign in a running shell, on malloc blocks: usage lines, labels,
// formatting, copies in every direction checked on disk, compaction, refusals.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/session.h"

namespace {

struct Shell {
    Shell() : s(dir.path()) { s.commandsOn(); }
    std::string Una(const std::string &line) {  // ctime's dates become FECHA
        return std::regex_replace(s.run(line),
                                  std::regex(R"([A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]\d [\d:]{8} \d{4})"), "FECHA");
    }
    template <class... L> std::string operator()(const L &...lineas) {  // in order, outputs joined
        std::string r;
        ((r += Una(lineas)), ...);
        return r;
    }
    std::string Direccion(const std::string &line) {  // the address an allocation printed
        std::string out = Una(line);
        return out.substr(out.rfind(' ') + 1, out.size() - out.rfind(' ') - 2);
    }
    labtest::TempDir dir;
    labtest::Session s;
};

// System V keys of this process (k and k+1), removed whatever happens.
struct Clave {
    key_t k = static_cast<key_t>(0x4e000000u | (static_cast<uint32_t>(getpid()) & 0xffffff));
    std::string K = std::to_string(k);
    ~Clave() {
        for (key_t c : {k, k + 1})
            if (int id = shmget(c, 0, 0); id != -1) shmctl(id, IPC_RMID, nullptr);
    }
};

template <class... A> std::string F(const char *formato, A... a) {
    char b[512];
    snprintf(b, sizeof b, formato, a...);
    return b;
}
std::string Hex(uintptr_t v) { return F("%p", reinterpret_cast<void *>(v)); }
uintptr_t Num(const std::string &hex) { return std::stoull(hex, nullptr, 16); }
std::string Cabecera(uint32_t total, uint32_t cap, uint32_t libres, uint32_t ficheros) {
    return F("SF de %u bytes con capacidad para %u ficheros FECHA\n      %u bytes desponibles. Total %u fichero(s) \n",
             total, cap, libres, ficheros);
}
std::string Linea(uintptr_t datos, uint32_t tam, const char *nombre) {
    return F("(%s): %10u bytes  FECHA %s\n", Hex(datos).c_str(), tam, nombre);
}

const std::string NoValido = "   id_mem no valido (no corresponde a un bloque de malloc o shared)\n";
const std::string SfNoValido = "Id sistema de ficheros no valido\n";

TEST(MemfsShell, UsageLinesAndLabels) {
    Shell sh;
    const std::string o = " [-format|-list|-search|-label|-copy|-move|-delete] ....\n";
    EXPECT_EQ(sh("memfs", "sfmemoria -x", "memfs -format", "memfs-list", "memfs-cp a", "memfs-mv a", "memfs-del",
                 "format zzz", "memfs-list 0x1234"),
              "Uso memfs" + o + "Uso sfmemoria" + o + "   memfs-format id_mem\n   memfs-ls id_mem\n   memfs-cp id1 id2"
              "\n   memfs-mv id1 id2\n   memfs-rm id_fich\n" + NoValido + SfNoValido);
    // Seven significant characters; the same name again replaces the address.
    EXPECT_EQ(sh("assign datos 0x10", "assign datos 0x20", "assign memoria1 0x30", "label memoria2 40"), "");
    EXPECT_EQ(sh("assign -add x 0", "assign -add x", "assign solo"),
              "direccion de memoria no valida: 0\nuso: assign -add nombre addr\nuso: assign [-add|-del|-clear] ....\n");
    EXPECT_EQ(sh("assign", "assign -del datos", "memfs -label", "assign -clear", "assign"),
              "LABEL:    datos, ADDR: 0x20 \nLABEL:  memoria, ADDR: 0x40 \nLABEL:  memoria, ADDR: 0x40 \n");
}

TEST(MemfsShell, FormattingNeedsASixteenKilobyteListedBlock) {
    Shell sh;
    std::string pequeno = sh.Direccion("malloc 16383"), blk = sh.Direccion("malloc 16384");
    std::string mega = sh.Direccion("malloc 1048576");
    labtest::WriteFile(sh.dir / "mapa", std::string(20000, 'm'));
    std::string mapa = sh.Direccion("mmap mapa rw");
    EXPECT_EQ(sh("memfs-format " + pequeno), "   tamano bloque memoria demasiado pequeno: 16383 (min 16384)\n");
    EXPECT_EQ(sh("memfs-format " + blk), Cabecera(16384, 6, 16346, 0));
    EXPECT_EQ(sh("memfs -format " + mega.substr(2)), Cabecera(1048576, 258, 1048576 - 290, 0));
    EXPECT_EQ(sh("memfs-format " + mapa, "memfs-format " + Hex(Num(blk) + 16)), NoValido + NoValido);
    EXPECT_EQ(sh("memfs-list " + Hex(Num(blk) + 16), "memfs-list " + pequeno), SfNoValido + SfNoValido);
    EXPECT_EQ(sh("assign b " + blk, "memfs -label"), "LABEL:        b, ADDR: " + blk + " Sistema de Ficheros valido\n");
}

TEST(MemfsShell, CopiesMovesAndDeletionsInEveryDirection) {
    Shell sh;
    std::string a = sh.Direccion("malloc 16384"), b = sh.Direccion("malloc 32768");
    sh("memfs-format " + a, "memfs-format " + b);
    std::string binario;
    for (int i = 0; i < 3000; i++) binario += static_cast<char>(i * 7 % 256);
    labtest::WriteFile(sh.dir / "bin", binario);
    labtest::WriteFile(sh.dir / "txt", "hola\n");
    uintptr_t datosA = Num(a) + 32 + 272 * 6, datosB = Num(b) + 32 + 272 * 10;
    EXPECT_EQ(sh("memfs-cp bin " + a + ":uno", "copy txt " + a.substr(2) + ":dos"), "");
    EXPECT_EQ(sh("memfs-cp " + a + ":uno " + b + ":tres", "memfs-cp " + a + ":dos " + a + ":cuatro"), "");
    EXPECT_EQ(sh("memfs-cp " + b + ":tres salida", "memfs-mv " + a + ":cuatro salida2", "memfs-cp bin otro"), "");
    EXPECT_EQ(sh("memfs-list " + a),
              Cabecera(16384, 6, 16346 - 3005, 2) + Linea(datosA, 3000, "uno") + Linea(datosA + 3000, 5, "dos"));
    EXPECT_EQ(labtest::ReadFile(sh.dir / "salida") + labtest::ReadFile(sh.dir / "otro"), binario + binario);
    EXPECT_EQ(labtest::ReadFile(sh.dir / "salida2"), "hola\n");
    // Deleting the first file moves the next one's data down to the start.
    EXPECT_EQ(sh("memfs-mv txt " + b + ":", "memfs-del " + b + ":tres"), "");
    EXPECT_EQ(sh("mfslist " + b), Cabecera(32768, 10, 32768 - 42 - 5, 1) + Linea(datosB, 5, "SinNombre"));
    EXPECT_EQ(sh("memfs-cp " + a + ":uno salida"), "Imposible copiar fichero: File exists\n");
    EXPECT_EQ(sh("memfs-cp bin " + a + ":un"), "Imposible copiar fichero: File exists\n");  // a prefix clashes
    EXPECT_EQ(sh("memfs-del " + a + ":nada"), "Imposible borrar fichero: No such file or directory\n");
    EXPECT_EQ(sh("memfs-cp bin " + Hex(Num(a) + 32) + ":x"), std::string("Imposible copiar fichero: ") + strerror(ENXIO) + "\n");
}

// The free count promises 271 bytes per entry more than the block holds. A
// copy is refused only where the memory the shell owns ends: a malloc block's
// is at least what was asked for, a shared segment's is whole pages.
TEST(MemfsShell, CopiesStopWhereTheOwnedMemoryEnds) {
    Shell sh;
    Clave k;
    std::string a = sh.Direccion("malloc 16384");
    sh("memfs-format " + a);  // data from 1664: at least 14720 real bytes, 16346 counted
    labtest::WriteFile(sh.dir / "justo", std::string(14720, 'j'));
    labtest::WriteFile(sh.dir / "cuenta", std::string(16345, 'c'));  // the count allows it, no allocator does
    EXPECT_EQ(sh("memfs-cp cuenta " + a + ":c", "memfs-mv cuenta " + a + ":c"),
              "Imposible copiar fichero: No space left on device\nImposible mover fichero: No space left on device\n");
    EXPECT_EQ(labtest::ReadFile(sh.dir / "cuenta").size(), 16345u);
    EXPECT_EQ(sh("memfs-cp justo " + a + ":j"), "");
    EXPECT_EQ(sh("memfs-list " + a), Cabecera(16384, 6, 1626, 1) + Linea(Num(a) + 1664, 14720, "j"));
    EXPECT_EQ(sh("memfs-cp " + a + ":j " + a + ":k"), "Imposible copiar fichero: No space left on device\n");

    // 16385 bytes of segment: its pages hold the 16346 bytes the count allows.
    uint64_t pagina = static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
    std::string s = sh.Direccion("shared -create " + k.K + " 16385");
    EXPECT_EQ(sh("memfs-format " + s), Cabecera(16385, 6, 16347, 0));
    labtest::WriteFile(sh.dir / "ejemplo", std::string(16346, 'e'));
    EXPECT_EQ(sh("memfs-cp ejemplo " + s + ":e", "memfs-list " + s),
              Cabecera(16385, 6, 1, 1) + Linea(Num(s) + 1664, 16346, "e"));
    // 32768 bytes in whole pages: the pages end the room before the count does.
    std::string t = sh.Direccion("shared -create " + std::to_string(k.k + 1) + " 32768");
    sh("memfs-format " + t);  // capacity 10: data from 2752, 32726 counted
    if (pagina <= 32768) {
        labtest::WriteFile(sh.dir / "lleno", std::string(32768 - 2752, 'l'));
        labtest::WriteFile(sh.dir / "uno", "1");
        EXPECT_EQ(sh("memfs-cp lleno " + t + ":l", "memfs-cp uno " + t + ":u"),
                  "Imposible copiar fichero: No space left on device\n");
        EXPECT_EQ(sh("memfs-list " + t), Cabecera(32768, 10, 32726 - 30016, 1) + Linea(Num(t) + 2752, 30016, "l"));
        EXPECT_EQ(sh("memfs-cp " + t + ":l fuera"), "");  // its data end where the segment does
    }
    sh.s.send("exit");
    EXPECT_EQ(sh.s.wait(), 0);  // exited with status 0
}

// A header is judged by its fields alone; whatever else it claims, each
// operation refuses alone when the bytes it touches run past the block, and
// the other blocks and the shell carry on (the sanitizer build would stop at
// the first stray byte).
TEST(MemfsShell, EachOperationStopsWhereTheBlockEnds) {
    Shell sh;
    labtest::WriteFile(sh.dir / "d0", "0123456789");
    labtest::WriteFile(sh.dir / "d1", std::string(20, 'x'));
    const std::string enx = std::string(": ") + strerror(ENXIO) + "\n";
    std::string validos;  // what memfs-find must print
    auto conDos = [&](const std::string &tam, bool valido = true) {  // a formatted block holding d0 and d1
        std::string a = sh.Direccion("malloc " + tam);
        sh("memfs-format " + a, "copy d0 " + a + ":d0", "copy d1 " + a + ":d1");
        if (valido) validos += "Sistema de ficheros valido en " + a + "\n";
        return a;
    };
    auto poner = [&](const std::string &a, int desp, uint32_t v) {  // one field, as `readfile` writes it
        labtest::WriteFile(sh.dir / "v", std::string(reinterpret_cast<const char *>(&v), 4));
        sh("readfile v " + Hex(Num(a) + desp) + " 4");
    };
    // Copying d1 out, d0 in and d0 within, deleting d0: each done (.) or
    // refused for lack of a file system (X) or of space (S).
    auto operaciones = [&](const std::string &a) {
        std::string r;
        for (const std::string &c : {"memfs-cp " + a + ":d1 fuera", "memfs-cp d0 " + a + ":n",
                                     "memfs-cp " + a + ":d0 " + a + ":m", "memfs-del " + a + ":d0"}) {
            std::string o = sh(c);
            r += o.empty() ? '.' : o.ends_with(enx) ? 'X' : o.ends_with(": No space left on device\n") ? 'S' : '?';
        }
        unlink((sh.dir / "fuera").c_str());
        return r;
    };
    std::string intacto = conDos("16384");

    // As found: the table's capacity and the file count overwritten by memfill.
    std::string r = sh.Direccion("allocate -malloc 20000");
    validos += "Sistema de ficheros valido en " + r + "\n";
    sh("label -x " + r, "memfs-format -x", "memfill " + Hex(Num(r) + 6) + " 4 0x80");
    EXPECT_EQ(sh("copy " + r + ":a da"), "Imposible copiar fichero" + enx);  // a table of 32896 entries
    std::string ficheros = conDos("16384", false);
    poner(ficheros, 8, 0x80000000);  // far above the capacity
    std::string libres = conDos("16384", false);
    poner(libres, 16, 16347);  // one more than total minus metadata
    for (const std::string &a : {ficheros, libres}) EXPECT_EQ(sh("memfs-list " + a) + operaciones(a), SfNoValido + "XXXX");
    // Capacity 64 and the largest total: the data area begins past the block.
    std::string cap = conDos("16384");
    sh("memfill " + Hex(Num(cap) + 4) + " 1 0x40");
    poner(cap, 12, 0xffffffff);
    EXPECT_EQ(sh("memfs-list " + cap), Cabecera(0xffffffff, 64, 16316, 2) + Linea(Num(cap) + 17440, 10, "d0") +
                                           Linea(Num(cap) + 17450, 20, "d1"));
    EXPECT_EQ(operaciones(cap), "XSXX");
    std::string vuelta = conDos("16384");
    poner(vuelta, 12, 0);  // total minus metadata wraps in 32 bits: any free count passes
    poner(vuelta, 16, 0xffffff00);
    labtest::WriteFile(sh.dir / "grande", std::string(16345, 'g'));
    EXPECT_EQ(operaciones(vuelta) + sh("memfs-cp grande " + vuelta + ":g"),
              "....Imposible copiar fichero: No space left on device\n");
    std::string desp = conDos("16384");
    poner(desp, 32 + 272 + 260, 0xfffffff0);  // d1's offset, and with its size past 2^32
    EXPECT_EQ(operaciones(desp), "XSSX");
    std::string tam = conDos("16384", false);  // deleting d0 frees more than the total: no longer valid
    poner(tam, 32 + 256, 1u << 20);  // d0's size: only d0's own data is out of reach
    EXPECT_EQ(operaciones(tam), "..X.");
    // d0 moved to the end of the block: each file lies inside, but deleting
    // d1 would pack the third file after d0, 8000 bytes past the end.
    std::string fin = conDos("16384");
    labtest::WriteFile(sh.dir / "d2", std::string(8000, 'z'));
    sh("copy d2 " + fin + ":d2");
    poner(fin, 32 + 260, 16384 - 1664 - 10);
    EXPECT_EQ(sh("memfs-del " + fin + ":d1"), "Imposible borrar fichero" + enx);

    // Bytes in the first unused entry change nothing: deleting d0 moves d1 alone.
    std::string libre = conDos("16384");
    sh("memfill " + Hex(Num(libre) + 32 + 2 * 272 + 256) + " 8 0xff");
    EXPECT_EQ(sh("memfs-del " + libre + ":d0", "memfs-list " + libre),
              Cabecera(16384, 6, 16346 - 20, 1) + Linea(Num(libre) + 1664, 20, "d1"));
    // A mapped page whose header claims 16384 bytes is one too.
    const uint32_t pagina[5] = {0x110691, 6, 0, 16384, 16346};
    labtest::WriteFile(sh.dir / "pagina", std::string(reinterpret_cast<const char *>(pagina), 20) + std::string(4076, 0));
    validos += "Sistema de ficheros valido en " + sh.Direccion("mmap pagina r") + "\n";
    EXPECT_EQ(sh("memfs-find"), validos);
    EXPECT_EQ(sh("memfs-cp " + intacto + ":d1 copia", "memfs-list " + intacto),
              Cabecera(16384, 6, 16346 - 30, 2) + Linea(Num(intacto) + 1664, 10, "d0") +
                  Linea(Num(intacto) + 1674, 20, "d1"));
    EXPECT_EQ(labtest::ReadFile(sh.dir / "copia"), std::string(20, 'x'));
    sh.s.send("exit");
    EXPECT_EQ(sh.s.wait(), 0);
}

TEST(MemfsShell, DeletingAWordWithoutAColonReadsTheDiskMarker) {
    if (getenv("LABSH_SANITIZED") != nullptr) GTEST_SKIP() << "a deliberate fault";
    Shell sh;
    sh.s.send("memfs-del fichero");
    int estado = sh.s.wait();
    EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGSEGV) << estado;
}

}  // namespace
