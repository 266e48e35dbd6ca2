// The memory commands end to end: real heap blocks, System V segments and
// mapped files, written, dumped and released by the shell and watched from
// outside through /proc and the System V interface.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "memory/memory.h"
#include "support/session.h"

namespace {

using namespace std::string_literals;
using Lineas = std::vector<std::string>;

// A shell driven one command at a time; each call returns the lines the
// command printed, without prompts.
class Shell {
  public:
    explicit Shell(const std::string &dir, const std::map<std::string, std::optional<std::string>> &env = {})
        : s_(dir, {}, true, env) {
        s_.send("prompt $%n");
        s_.send("override on");
        s_.readUntil("habilitada\n");
    }

    Lineas operator()(const std::string &linea) {
        // An unknown option of `mem` echoes a word of ours: the end marker.
        std::string marca = "-fin" + std::to_string(++n_);
        s_.send(linea);
        s_.send("mem " + marca);
        std::istringstream in(s_.readUntil("Opcion " + marca + " no contemplada\n"));
        Lineas r;
        for (std::string l; std::getline(in, l);) {
            while (l.rfind("-> ", 0) == 0) l.erase(0, 3);  // prompt before the core's own
            if (!l.empty() && l != "$") r.push_back(l);
        }
        r.pop_back();
        return r;
    }

    labtest::Session &session() { return s_; }

  private:
    labtest::Session s_;
    int n_ = 0;
};

// The address a line ends with.
std::string Direccion(const std::string &linea) {
    static const std::regex hex("0x[0-9a-f]+$");
    std::smatch m;
    return std::regex_search(linea, m, hex) ? m.str() : std::string("(no address in: " + linea + ")");
}

std::string Mas(const std::string &dir, uintptr_t n) {
    char s[32];
    snprintf(s, sizeof s, "%#lx", static_cast<unsigned long>(std::stoull(dir, nullptr, 16) + n));
    return s;
}

// The line of /proc/<pid>/maps of the mapping that starts at `dir`, or "".
std::string Mapeo(pid_t pid, const std::string &dir) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/maps");
    std::string inicio = dir.substr(2) + "-";
    for (std::string l; std::getline(f, l);) {
        // maps pads addresses to at least 8 digits; ours are longer.
        if (l.rfind(inicio, 0) == 0) return l;
    }
    return "";
}

std::string Enlace(pid_t pid, int df) {
    char buf[4096];
    std::string p = "/proc/" + std::to_string(pid) + "/fd/" + std::to_string(df);
    ssize_t n = readlink(p.c_str(), buf, sizeof buf - 1);
    return n < 0 ? "" : std::string(buf, n);
}

// The descriptor the shell's next open will get.
int LibreMasBajo(pid_t pid) {
    for (int df = 0;; df++)
        if (access(("/proc/" + std::to_string(pid) + "/fd/" + std::to_string(df)).c_str(), F_OK) != 0) return df;
}

// System V keys unique to this test process, removed whatever happens.
struct Claves {
    std::vector<key_t> claves;
    key_t nueva(bool negativa = false) {
        uint32_t k = 0x4d000000u | (static_cast<uint32_t>(getpid()) & 0xfffff) << 4 | (claves.size() & 0xf);
        if (negativa) k |= 0x80000000u;
        claves.push_back(static_cast<key_t>(k));
        return claves.back();
    }
    ~Claves() {
        for (key_t k : claves) {
            int id = shmget(k, 0, 0);
            if (id != -1) shmctl(id, IPC_RMID, nullptr);
        }
    }
};

shmid_ds Estado(key_t k) {
    shmid_ds s{};
    int id = shmget(k, 0, 0);
    if (id == -1 || shmctl(id, IPC_STAT, &s) == -1) s.shm_segsz = 0;
    return s;
}

std::string Repite(const std::string &s, int n) {
    std::string r;
    while (n-- > 0) r += s;
    return r;
}

const std::regex lineaLista(R"( +(0x[0-9a-f]+) +(\d+) [A-Z][a-z]{2} [ 123]\d \d\d:\d\d (.*))");

// Address and rest of each element line of a printed list.
std::vector<std::pair<std::string, std::string>> Elementos(const Lineas &ls) {
    std::vector<std::pair<std::string, std::string>> r;
    std::smatch m;
    for (const auto &l : ls)
        if (std::regex_match(l, m, lineaLista)) r.emplace_back(m[1], m[2].str() + " " + m[3].str());
    return r;
}

TEST(MemoriaE2E, HeapBlocksFilledDumpedCopiedAndReleased) {
    labtest::TempDir d;
    std::string grande;
    for (int i = 0; i < 5000; i++) grande += static_cast<char>(i * 7 % 251);
    labtest::WriteFile(d / "grande", grande);
    labtest::WriteFile(d / "vacio", "");
    Shell sh(d.path());

    Lineas r = sh("malloc 100");
    ASSERT_EQ(r.size(), 1u);
    ASSERT_TRUE(std::regex_match(r[0], std::regex("Asignados 100 bytes en 0x[0-9a-f]+"))) << r[0];
    std::string a1 = Direccion(r[0]);
    std::string a2 = Direccion(sh("allocate -malloc 100").at(0));
    std::string a3 = Direccion(sh("memmalloc 200").at(0));
    std::string a4 = Direccion(sh("malloc 5000").at(0));

    EXPECT_EQ(sh("memfill " + a1 + " 45 0"),
              Lineas{"Llenando 45 bytes de memoria con el byte   (00) a partir de la direccion " + a1});
    EXPECT_EQ(sh("memfill " + a1 + " 10 'B'"),
              Lineas{"Llenando 10 bytes de memoria con el byte  B(42) a partir de la direccion " + a1});
    EXPECT_EQ(sh("fillmem " + Mas(a1, 10) + " 10 65 3"),
              Lineas{"Llenando 10 bytes de memoria con el byte  A(41) a partir de la direccion " + Mas(a1, 10)});
    EXPECT_EQ(sh("memfill " + Mas(a1, 20) + " 1 10"),
              Lineas{"Llenando 1 bytes de memoria con el byte \\n(0a) a partir de la direccion " + Mas(a1, 20)});
    EXPECT_EQ(sh("memfill " + Mas(a1, 21) + " 1 0xe9"),
              Lineas{"Llenando 1 bytes de memoria con el byte   (e9) a partir de la direccion " + Mas(a1, 21)});
    EXPECT_EQ(sh("llenarmem " + Mas(a1, 22) + " 3 300"),
              Lineas{"Llenando 3 bytes de memoria con el byte  ,(2c) a partir de la direccion " + Mas(a1, 22)});
    EXPECT_EQ(sh("stringcopy " + Mas(a1, 25) + " uno   dos"), Lineas{"Copiando uno dos en " + Mas(a1, 25)});

    Lineas volcado{
        "Volcando 45 bytes desde la direccion " + a1,
        a1 + "-> " + Repite("  B", 10) + "  A" + Repite("   ", 2) + "  A" + Repite("   ", 2) + "  A" +
            Repite("   ", 2) + "  A",
        a1 + "-> " + Repite(" 42", 10) + " 41 00 00 41 00 00 41 00 00 41",
        Mas(a1, 20) + "->  \\n     ,  ,  ,  u  n  o     d  o  s" + Repite("   ", 8),
        Mas(a1, 20) + "->  0a e9 2c 2c 2c 75 6e 6f 20 64 6f 73" + Repite(" 00", 8),
        Mas(a1, 40) + "-> " + Repite("   ", 5),
        Mas(a1, 40) + "-> " + Repite(" 00", 5),
    };
    EXPECT_EQ(sh("memdump " + a1 + " 45"), volcado);
    Lineas cuarenta(volcado.begin(), volcado.begin() + 5);
    cuarenta[0] = "Volcando 40 bytes desde la direccion " + a1;
    EXPECT_EQ(sh("dumpmem " + a1 + " 40"), cuarenta);
    EXPECT_EQ(sh("volcarmem " + a1 + " 0"), Lineas{"Volcando 0 bytes desde la direccion " + a1});
    EXPECT_EQ(sh("memdump " + a1).size(), 3u);

    // Both ends of the copy are the first address: nothing changes.
    EXPECT_EQ(sh("memcopy " + a1 + " " + a2 + " 10"), Lineas{"Copiando 10 bytes de " + a1 + " a " + a1});
    EXPECT_EQ(sh("memdump " + a1 + " 45"), volcado);
    EXPECT_EQ(sh("memfill " + a3),
              Lineas{"Llenando 128 bytes de memoria con el byte  A(41) a partir de la direccion " + a3});

    // Memory to files and back.
    EXPECT_EQ(sh("writefile out " + a1 + " 45"), Lineas{"escritos 45 bytes en out desde " + a1});
    std::string out = labtest::ReadFile(d / "out");
    ASSERT_EQ(out.size(), 45u);
    EXPECT_EQ(out.substr(0, 13), "BBBBBBBBBBA\0\0"s);
    EXPECT_EQ(out.substr(20, 13), "\n\xe9,,,uno dos\0"s);
    EXPECT_EQ(sh("writefile out " + a3 + " 10"), Lineas{"Imposible escribir fichero: File exists"});
    EXPECT_EQ(sh("writefile -o out " + a3 + " 10"), Lineas{"escritos 10 bytes en out desde " + a3});
    EXPECT_EQ(labtest::ReadFile(d / "out"), "AAAAAAAAAA");
    EXPECT_EQ(sh("e-s write -o out " + a3 + " 3"), Lineas{"escritos 3 bytes en out desde " + a3});
    EXPECT_EQ(labtest::ReadFile(d / "out"), "AAA");

    EXPECT_EQ(sh("readfile grande " + a4), Lineas{"leidos 5000 bytes de grande en " + a4});
    EXPECT_EQ(sh("writefile copia " + a4 + " 5000"), Lineas{"escritos 5000 bytes en copia desde " + a4});
    EXPECT_EQ(labtest::ReadFile(d / "copia"), grande);
    EXPECT_EQ(sh("leerfichero grande " + a4 + " 7"), Lineas{"leidos 7 bytes de grande en " + a4});
    EXPECT_EQ(sh("i-o read grande " + a4 + " -1"), Lineas{"leidos 5000 bytes de grande en " + a4});
    EXPECT_EQ(sh("readfile vacio " + a4), Lineas{"leidos 0 bytes de vacio en " + a4});

    // The oldest block of a size goes first; an address inside a block is no block.
    std::string a5 = Direccion(sh("malloc 100").at(0));
    EXPECT_EQ(sh("malloc -free 100"), Lineas{});
    auto lista = Elementos(sh("malloc"));
    ASSERT_EQ(lista.size(), 4u);
    EXPECT_EQ(lista[0], std::make_pair(a2, std::string("100 malloc")));
    EXPECT_EQ(lista[1], std::make_pair(a3, std::string("200 malloc")));
    EXPECT_EQ(lista[2], std::make_pair(a4, std::string("5000 malloc")));
    EXPECT_EQ(lista[3], std::make_pair(a5, std::string("100 malloc")));
    EXPECT_EQ(sh("free " + Mas(a2, 1)),
              Lineas{"Direccion " + Mas(a2, 1) + " no asignada con malloc, shared o mmap"});
    EXPECT_EQ(sh("deallocate " + a2), Lineas{});
    EXPECT_EQ(sh("liberar " + a3), Lineas{});
    lista = Elementos(sh("mem -blocks"));
    ASSERT_EQ(lista.size(), 2u);
    EXPECT_EQ(lista[0].first, a4);
    EXPECT_EQ(lista[1].first, a5);

    sh.session().send("exit");
    int st = sh.session().wait();
    ASSERT_TRUE(WIFEXITED(st));
    EXPECT_EQ(WEXITSTATUS(st), 0);
}

TEST(MemoriaE2E, SharedSegmentsCreatedAttachedDetachedAndRemoved) {
    labtest::TempDir d;
    Claves claves;
    key_t k = claves.nueva();
    std::string K = std::to_string(k);
    Shell sh(d.path());
    pid_t pid = sh.session().pid();

    Lineas r = sh("shared -create " + K + " 100");
    ASSERT_EQ(r.size(), 1u);
    ASSERT_TRUE(std::regex_match(r[0], std::regex("Asignados 100 bytes en 0x[0-9a-f]+"))) << r[0];
    std::string s1 = Direccion(r[0]);
    EXPECT_EQ(Estado(k).shm_segsz, 100u);
    EXPECT_EQ(Estado(k).shm_nattch, 1u);
    char sysv[32];
    snprintf(sysv, sizeof sysv, "/SYSV%08x", static_cast<unsigned>(k));
    std::string m = Mapeo(pid, s1);
    EXPECT_NE(m.find(sysv), std::string::npos) << m;
    EXPECT_NE(m.find(" rw-s "), std::string::npos) << m;

    EXPECT_EQ(sh("memcreateshared " + K + " 100"),
              Lineas{"Imposible asignar memoria compartida clave " + K + ": File exists"});
    r = sh("shared " + K);
    ASSERT_EQ(r.size(), 1u);
    std::string s2 = Direccion(r[0]);
    EXPECT_EQ(r[0], "Memoria compartida de clave " + K + "  en " + s2);
    EXPECT_NE(s1, s2);
    EXPECT_EQ(Estado(k).shm_nattch, 2u);

    // What one attachment writes, the other and an outside process see.
    EXPECT_EQ(sh("stringcopy " + s1 + " hola mundo"), Lineas{"Copiando hola mundo en " + s1});
    EXPECT_EQ(sh("memdump " + s2 + " 11").at(1), s2 + "->   h  o  l  a     m  u  n  d  o   ");
    int id = shmget(k, 0, 0);
    ASSERT_NE(id, -1);
    void *p = shmat(id, nullptr, SHM_RDONLY);
    ASSERT_NE(p, reinterpret_cast<void *>(-1));
    EXPECT_STREQ(static_cast<char *>(p), "hola mundo");
    shmdt(p);

    auto lista = Elementos(sh("allocate"));
    ASSERT_EQ(lista.size(), 2u);
    EXPECT_EQ(lista[0], std::make_pair(s1, "100 shared (key " + K + ")"));
    EXPECT_EQ(lista[1], std::make_pair(s2, "100 shared (key " + K + ")"));

    // The older attachment goes; the segment stays.
    EXPECT_EQ(sh("shared -free " + K), Lineas{});
    EXPECT_EQ(Mapeo(pid, s1), "");
    EXPECT_NE(Mapeo(pid, s2), "");
    EXPECT_EQ(Estado(k).shm_nattch, 1u);
    EXPECT_EQ(sh("dealloc -shared " + K), Lineas{});
    EXPECT_EQ(sh("memdeshared " + K), Lineas{"No hay bloque de esa clave mapeado en el proceso"});
    EXPECT_EQ(Estado(k).shm_nattch, 0u);
    EXPECT_EQ(Estado(k).shm_segsz, 100u);

    // delkey marks the segment for removal; attachments stay listed.
    std::string s3 = Direccion(sh("mshared " + K).at(0));
    EXPECT_EQ(sh("delkey " + K), Lineas{});
    EXPECT_EQ(shmget(k, 0, 0), -1);
    EXPECT_NE(Mapeo(pid, s3), "");
    EXPECT_EQ(Elementos(sh("shared")).size(), 1u);
    EXPECT_EQ(sh("borrarclave " + K),
              Lineas{"shmget: imposible obtener memoria compartida: No such file or directory"});
    EXPECT_EQ(sh("shared " + K),
              Lineas{"Imposible asignar memoria compartida clave " + K + ": No such file or directory"});
    EXPECT_EQ(sh("free " + s3), Lineas{});
    EXPECT_EQ(Mapeo(pid, s3), "");

    // A key above 2^31 is negative as a 32-bit key and prints sign-extended.
    key_t kn = claves.nueva(true);
    std::string typed = std::to_string(static_cast<uint32_t>(kn));
    std::string shown = std::to_string(static_cast<unsigned long>(static_cast<long>(kn)));
    EXPECT_EQ(Direccion(sh("createshared " + typed + " 10").at(0)).substr(0, 2), "0x");
    lista = Elementos(sh("mem -blocks"));
    ASSERT_EQ(lista.size(), 1u);
    EXPECT_EQ(lista[0].second, "10 shared (key " + shown + ")");
    EXPECT_EQ(sh("shared -create " + typed + " 10"),
              Lineas{"Imposible asignar memoria compartida clave " + shown + ": File exists"});
    EXPECT_EQ(sh("deallocate -delkey " + typed), Lineas{});
    EXPECT_EQ(shmget(kn, 0, 0), -1);

    sh.session().send("exit");
    int st = sh.session().wait();
    ASSERT_TRUE(WIFEXITED(st));
    EXPECT_EQ(WEXITSTATUS(st), 0);
}

TEST(MemoriaE2E, MappedFilesWithTheirDescriptors) {
    labtest::TempDir d;
    std::string datos = "primera linea\nsegunda linea\n";
    labtest::WriteFile(d / "datos", datos);
    labtest::WriteFile(d / "vacio", "");
    Shell sh(d.path());
    pid_t pid = sh.session().pid();

    int d1 = LibreMasBajo(pid);
    Lineas r = sh("mmap datos r");
    ASSERT_EQ(r.size(), 1u);
    ASSERT_TRUE(std::regex_match(r[0], std::regex("fichero datos mapeado en 0x[0-9a-f]+"))) << r[0];
    std::string m1 = Direccion(r[0]);
    std::string m = Mapeo(pid, m1);
    EXPECT_NE(m.find(" r--p "), std::string::npos) << m;
    EXPECT_NE(m.find(d / "datos"), std::string::npos) << m;
    EXPECT_EQ(Enlace(pid, d1), d / "datos");
    EXPECT_EQ(sh("memdump " + m1 + " 5").at(1), m1 + "->   p  r  i  m  e");

    int d2 = LibreMasBajo(pid);
    std::string m2 = Direccion(sh("allocate -mmap datos rw").at(0));
    EXPECT_NE(Mapeo(pid, m2).find(" rw-p "), std::string::npos) << Mapeo(pid, m2);
    std::string m3 = Direccion(sh("memmmap datos rwxa").at(0));
    EXPECT_NE(Mapeo(pid, m3).find(" ---p "), std::string::npos) << Mapeo(pid, m3);
    int d4 = LibreMasBajo(pid);
    std::string m4 = Direccion(sh("mmmap datos").at(0));
    EXPECT_NE(Mapeo(pid, m4).find(" ---p "), std::string::npos) << Mapeo(pid, m4);

    // The mapping is private: writing to it leaves the file alone.
    EXPECT_EQ(sh("stringcopy " + m2 + " XY"), Lineas{"Copiando XY en " + m2});
    EXPECT_EQ(sh("memdump " + m2 + " 3").at(1), m2 + "->   X  Y   ");
    EXPECT_EQ(labtest::ReadFile(d / "datos"), datos);

    auto lista = Elementos(sh("mmap"));
    ASSERT_EQ(lista.size(), 4u);
    EXPECT_EQ(lista[0], std::make_pair(m1, "28 datos  (descriptor " + std::to_string(d1) + ")"));
    EXPECT_EQ(lista[1], std::make_pair(m2, "28 datos  (descriptor " + std::to_string(d2) + ")"));
    EXPECT_EQ(lista[3], std::make_pair(m4, "28 datos  (descriptor " + std::to_string(d4) + ")"));

    // By name the oldest mapping goes, with its descriptor.
    EXPECT_EQ(sh("mmap -free datos"), Lineas{});
    EXPECT_EQ(Mapeo(pid, m1), "");
    EXPECT_EQ(Enlace(pid, d1), "");
    EXPECT_EQ(Enlace(pid, d2), d / "datos");
    EXPECT_EQ(sh("memdemmap otro"), Lineas{"Fichero otro no mapeado"});
    // By address too.
    EXPECT_EQ(sh("deallocate " + m2), Lineas{});
    EXPECT_EQ(Mapeo(pid, m2), "");
    EXPECT_EQ(Enlace(pid, d2), "");

    // A failed mapping leaves its descriptor open and unlisted.
    int d5 = LibreMasBajo(pid);
    EXPECT_EQ(sh("mmap vacio r"), Lineas{"Imposible mapear fichero: Invalid argument"});
    EXPECT_EQ(Enlace(pid, d5), d / "vacio");
    EXPECT_EQ(sh("mmap nada r"), Lineas{"Imposible mapear fichero: No such file or directory"});
    EXPECT_EQ(Elementos(sh("mmap")).size(), 2u);

    sh.session().send("exit");
    int st = sh.session().wait();
    ASSERT_TRUE(WIFEXITED(st));
    EXPECT_EQ(WEXITSTATUS(st), 0);
}

TEST(MemoriaE2E, MappedFilesDescriptorClosedOnItsOwn) {
    labtest::TempDir d;
    labtest::WriteFile(d / "datos", "0123456789");
    Shell sh(d.path());
    pid_t pid = sh.session().pid();
    int df = LibreMasBajo(pid);
    std::string D = std::to_string(df);
    std::string m1 = Direccion(sh("mmap datos r").at(0));
    Lineas abiertos = sh("listopen");
    if (abiertos.empty()) GTEST_SKIP() << "the open-file table is not built in this tree";
    auto mapeoListado = [&] {
        for (const auto &l : sh("listopen"))
            if (l.find("Mapeo de datos") != std::string::npos) return true;
        return false;
    };
    EXPECT_TRUE(mapeoListado());

    EXPECT_EQ(sh("close " + D), Lineas{"Descriptor " + D + " corresponde a fichero mapeado. Usa -f para cerrarlo"});
    EXPECT_EQ(Enlace(pid, df), d / "datos");
    EXPECT_EQ(sh("close " + D + " -f"), Lineas{});
    EXPECT_EQ(Enlace(pid, df), "");
    EXPECT_FALSE(mapeoListado());
    EXPECT_NE(Mapeo(pid, m1), "");
    auto lista = Elementos(sh("mmap"));
    ASSERT_EQ(lista.size(), 1u);
    EXPECT_EQ(lista[0], std::make_pair(m1, std::string("10 datos  (descriptor -1)")));

    // The next file opened takes the number again; releasing the mapping
    // leaves it alone.
    labtest::WriteFile(d / "otro", "x");
    std::string m2 = Direccion(sh("mmap otro r").at(0));
    EXPECT_EQ(Enlace(pid, df), d / "otro");
    EXPECT_EQ(sh("mmap -free datos"), Lineas{});
    EXPECT_EQ(Mapeo(pid, m1), "");
    EXPECT_EQ(Enlace(pid, df), d / "otro");
    EXPECT_EQ(sh("free " + m1), Lineas{"Direccion " + m1 + " no asignada con malloc, shared o mmap"});
    EXPECT_EQ(Elementos(sh("mmap")).size(), 1u);
    (void)m2;
}

TEST(MemoriaE2E, PmapShowsTheShellsMappings) {
    int st = 0;
    labtest::TempDir d;
    if (labtest::Shell("command -v pmap", d.path(), &st).empty()) GTEST_SKIP() << "no pmap here";
    labtest::WriteFile(d / "marcador.bin", "x");
    Shell sh(d.path());
    pid_t pid = sh.session().pid();
    sh("mmap marcador.bin r");
    Lineas r = sh("mem -pmap");
    ASSERT_FALSE(r.empty());
    EXPECT_EQ(r[0].rfind(std::to_string(pid) + ":", 0), 0u) << r[0];
    std::string todo;
    for (const auto &l : r) todo += l + "\n";
    EXPECT_NE(todo.find("marcador.bin"), std::string::npos) << todo;
    EXPECT_NE(r.back().find("total"), std::string::npos) << r.back();
    // The shell carries on after its child.
    EXPECT_EQ(sh("mem -zz"), Lineas{"Opcion -zz no contemplada"});
}

TEST(MemoriaE2E, WildAddressesFault) {
    if (getenv("LABSH_SANITIZED") != nullptr) GTEST_SKIP() << "the sanitizers catch the fault first";
    labtest::TempDir d;
    for (const char *orden : {"memdump 0x10 30", "memfill zz 4", "stringcopy 0x8 hola"}) {
        labtest::RunResult r = labtest::Run(std::string("override on\n") + orden + "\n", d.path());
        EXPECT_EQ(r.termSignal(), SIGSEGV) << orden << "\n" << r.out;
    }
}

TEST(MemoriaE2E, OversizedStringIsRefused) {
    labtest::TempDir d;
    Shell sh(d.path());
    std::string a = Direccion(sh("malloc 2048").at(0));
    std::string larga = "stringcopy " + a;
    for (int i = 0; i < 300; i++) larga += " abcd";
    EXPECT_EQ(sh(larga), Lineas{"Imposible copiar cadena: Argument list too long"});
    std::string justa = "stringcopy " + a + " " + std::string(1023, 'z');
    EXPECT_EQ(sh(justa), Lineas{"Copiando " + std::string(1023, 'z') + " en " + a});
}

// exit hands every block back before the process ends: seen in this process,
// where the same release runs on the list the commands fill.
TEST(MemoriaE2E, ReleasingTheListFreesEveryKind) {
    labtest::TempDir d;
    labtest::WriteFile(d / "f", "contenido");
    Claves claves;
    std::string K = std::to_string(claves.nueva());
    std::string fichero = d / "f";
    std::string tam = "64", tamShared = "4096", prot = "r";
    char *malloc_[] = {tam.data(), nullptr};
    char *shared[] = {K.data(), tamShared.data(), nullptr};
    char *mmap_[] = {fichero.data(), prot.data(), nullptr};
    testing::internal::CaptureStdout();
    Cmd_memmalloc(malloc_);
    Cmd_createshared(shared);
    Cmd_memmmap(mmap_);
    fflush(stdout);
    std::string salida = testing::internal::GetCapturedStdout();
    ASSERT_EQ(L.n, 3) << salida;
    void *mapa = DireccionNodoMmap(&L, fichero.c_str());
    int df = DescriptorNodoMmap(&L, fichero.c_str());
    char dir[32];
    snprintf(dir, sizeof dir, "%p", mapa);
    ASSERT_NE(Mapeo(getpid(), dir), "");
    EXPECT_EQ(Estado(std::stoi(K)).shm_nattch, 1u);

    EliminarListaBloquesMemoria();
    EXPECT_EQ(L.n, 0);
    EXPECT_EQ(PrimerElemento(&L), nullptr);
    EXPECT_EQ(Mapeo(getpid(), dir), "");
    EXPECT_EQ(Estado(std::stoi(K)).shm_nattch, 0u);
    EXPECT_EQ(fcntl(df, F_GETFD), -1);
}

}  // namespace
