// The memory commands on real blocks, segments and mappings, watched from
// outside through /proc and the System V interface.
#include <csignal>
#include <fstream>
#include <regex>
#include <sstream>
#include <sys/shm.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/session.h"

namespace {
using namespace std::string_literals;
using Lineas = std::vector<std::string>;

// Sends one command; returns the lines it printed.
struct Shell {
    labtest::Session s;
    explicit Shell(const std::string &dir, const labtest::Env &env = {}) : s(dir, {}, true, env) { s.commandsOn(); }
    Lineas operator()(const std::string &orden) {
        std::istringstream in(s.run(orden));
        Lineas r;
        for (std::string l; std::getline(in, l);) r.push_back(l);
        return r;
    }
};

std::string Dir(const Lineas &r) { return r.at(0).substr(r.at(0).rfind("0x")); }
std::string Mas(const std::string &a, int n) {
    std::ostringstream o;
    o << std::hex << "0x" << std::stoull(a, nullptr, 16) + n;
    return o.str();
}
std::string Mapeo(pid_t pid, const std::string &a) {  // its line of /proc/<pid>/maps, or ""
    std::ifstream f("/proc/" + std::to_string(pid) + "/maps");
    for (std::string l; std::getline(f, l);)
        if (l.rfind(a.substr(2) + "-", 0) == 0) return l;
    return "";
}
std::string Rep(const std::string &s, int n) { return n > 0 ? s + Rep(s, n - 1) : ""; }
Lineas Lista(const Lineas &r) {  // "address size rest" of each element line, its columns checked
    static const std::regex e(R"(( *(0x[0-9a-f]+))  ( *(\d+)) [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d (.*))");
    Lineas v;
    std::smatch m;
    for (const auto &l : r)
        if (std::regex_match(l, m, e))
            v.push_back(m[1].length() != 20 || m[3].length() != 15 ? "misaligned: " + l
                                                                   : m[2].str() + " " + m[4].str() + " " + m[5].str());
    return v;
}
// System V keys unique to this process, removed whatever happens.
struct Clave {
    key_t k = static_cast<key_t>(0x4d000000u | (static_cast<uint32_t>(getpid()) & 0xffffff));
    std::string K = std::to_string(k);
    ~Clave() {
        if (int id = shmget(k, 0, 0); id != -1) shmctl(id, IPC_RMID, nullptr);
    }
};

TEST(MemoriaE2E, FillDumpCopyAndFiles) {
    labtest::TempDir d;
    labtest::WriteFile(d / "in", "uno dos");
    Shell sh(d.path());
    std::string a = Dir(sh("malloc 100")), b = Dir(sh("allocate -malloc 200"));
    auto llena = [&](const char *orden, const std::string &dir, const std::string &n, const char *byte) {
        std::string cuenta = n.empty() ? "128" : n.substr(1, n.find(' ', 1) - 1);
        EXPECT_EQ(sh(orden + dir + n), Lineas{"Llenando " + cuenta + " bytes de memoria con el byte" + byte +
                                              " a partir de la direccion " + dir});
    };
    llena("memfill ", a, " 45 0", "   (00)");
    llena("memfill ", a, " 10 'B'", "  B(42)");
    llena("fillmem ", Mas(a, 10), " 10 65 3", "  A(41)");
    llena("memfill ", Mas(a, 20), " 1 10", " \\n(0a)");
    llena("memfill ", Mas(a, 21), " 1 0xe9", "   (e9)");
    llena("llenarmem ", Mas(a, 22), " 3 300", "  ,(2c)");
    llena("memfill ", Mas(a, 40), " 5 67 0", "  C(43)");  // step 0: one byte
    llena("memfill ", b, "", "  A(41)");                   // 128 bytes of 'A' by default
    EXPECT_EQ(sh("readfile in " + Mas(a, 25)), Lineas{"leidos 7 bytes de in en " + Mas(a, 25)});
    // Both ends of the copy are the first address: nothing changes.
    EXPECT_EQ(sh("memcopy " + a + " " + b + " 10"), Lineas{"Copiando 10 bytes de " + a + " a " + a});
    Lineas volcado{"Volcando 45 bytes desde la direccion " + a,
                   a + "-> " + Rep("  B", 10) + Rep("  A      ", 3) + "  A",
                   a + "-> " + Rep(" 42", 10) + Rep(" 41 00 00", 3) + " 41",
                   Mas(a, 20) + "->  \\n     ,  ,  ,  u  n  o     d  o  s" + Rep("   ", 8),
                   Mas(a, 20) + "->  0a e9 2c 2c 2c 75 6e 6f 20 64 6f 73" + Rep(" 00", 8),
                   Mas(a, 40) + "->   C" + Rep("   ", 4), Mas(a, 40) + "->  43" + Rep(" 00", 4)};
    EXPECT_EQ(sh("memdump " + a + " 45"), volcado);
    EXPECT_EQ(sh("writefile out " + a + " 45"), Lineas{"escritos 45 bytes en out desde " + a});
    EXPECT_EQ(labtest::ReadFile(d / "out"), "BBBBBBBBBBA\0\0A\0\0A\0\0A\n\xe9,,,uno dos\0\0\0\0\0\0\0\0C\0\0\0\0"s);
    EXPECT_EQ(sh("writefile out " + b + " 3"), Lineas{"Imposible escribir fichero: File exists"});
    EXPECT_EQ(sh("writefile -o out " + b + " 3"), Lineas{"escritos 3 bytes en out desde " + b});
    EXPECT_EQ(labtest::ReadFile(d / "out"), "AAA");
}

TEST(MemoriaE2E, BlocksOfEveryKindListedAndReleasedOldestFirst) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    labtest::TempDir d;
    labtest::WriteFile(d / "datos", "0123456789");
    labtest::WriteFile(d / "vacio", "");
    Clave c;
    Shell sh(d.path(), {{"PATH", "/nonexistent"}});
    pid_t pid = sh.s.pid();
    EXPECT_EQ(sh("malloc 0"), Lineas{"No se asignan bloques de 0 bytes"});
    EXPECT_EQ(sh("shared -create 0 100"), Lineas{"Imposible asignar memoria compartida clave 0: Invalid argument"});
    EXPECT_EQ(sh("mmap vacio r"), Lineas{"Imposible mapear fichero: Invalid argument"});
    EXPECT_EQ(sh("mmap nada r"), Lineas{"Imposible mapear fichero: No such file or directory"});
    EXPECT_EQ(sh("free 0x1234"), Lineas{"Direccion 0x1234 no asignada con malloc, shared o mmap"});
    EXPECT_EQ(sh("mem -pmap"), (Lineas{"cannot execute pmap (linux, solaris): No such file or directory",
                                      "cannot execute procstat (FreeBSD): No such file or directory",
                                      "cannot execute procmap (OpenBSD): No such file or directory",
                                      "cannot execute vmmap (Mac-OS): No such file or directory"}));

    std::string h1 = Dir(sh("malloc 100")), h2 = Dir(sh("allocate -malloc 200")), h3 = Dir(sh("memmalloc 100"));
    std::string s1 = Dir(sh("shared -create " + c.K + " 100"));
    EXPECT_EQ(sh("memcreateshared " + c.K + " 100"),
              Lineas{"Imposible asignar memoria compartida clave " + c.K + ": File exists"});
    Lineas r = sh("shared " + c.K);
    std::string s2 = Dir(r);
    EXPECT_EQ(r[0], "Memoria compartida de clave " + c.K + "  en " + s2);
    sh("stringcopy " + s1 + " hola");
    EXPECT_EQ(sh("memdump " + s2 + " 4").at(1), s2 + "->   h  o  l  a");
    std::string m1 = Dir(sh("mmap datos r")), m2 = Dir(sh("allocate -mmap datos rw"));
    std::string m3 = Dir(sh("memmmap datos rwxa"));
    EXPECT_NE(Mapeo(pid, m1).find(" r--p "), std::string::npos) << Mapeo(pid, m1);
    EXPECT_NE(Mapeo(pid, m2).find(" rw-p "), std::string::npos) << Mapeo(pid, m2);
    EXPECT_NE(Mapeo(pid, m3).find(" ---p "), std::string::npos) << Mapeo(pid, m3);

    EXPECT_EQ(sh("malloc -free 100"), Lineas{});
    EXPECT_EQ(sh("shared -free " + c.K), Lineas{});
    EXPECT_EQ(sh("mmap -free datos"), Lineas{});
    EXPECT_EQ(Mapeo(pid, s1) + Mapeo(pid, m1), "");
    r = sh("allocate");
    EXPECT_EQ(r.at(0), "******Lista de bloques asignados para el proceso " + std::to_string(pid));
    Lineas l = Lista(r);
    ASSERT_EQ(l.size(), 5u);
    std::string D = std::to_string(std::stoi(l[3].substr(l[3].rfind(' ') + 1)));
    EXPECT_EQ(l, (Lineas{h2 + " 200 malloc", h3 + " 100 malloc", s2 + " 100 shared (key " + c.K + ")",
                         m2 + " 10 datos  (descriptor " + D + ")",
                         m3 + " 10 datos  (descriptor " + std::to_string(std::stoi(D) + 1) + ")"}));

    EXPECT_EQ(sh("close " + D), Lineas{"Descriptor " + D + " corresponde a fichero mapeado. Usa -f para cerrarlo"});
    EXPECT_EQ(sh("close " + D + " -f"), Lineas{});
    EXPECT_NE(access(("/proc/" + std::to_string(pid) + "/fd/" + D).c_str(), F_OK), 0);
    EXPECT_EQ(Lista(sh("mmap")).at(0), m2 + " 10 datos  (descriptor -1)");
    EXPECT_NE(Mapeo(pid, m2), "");
    EXPECT_EQ(sh("delkey " + c.K), Lineas{});
    EXPECT_EQ(shmget(c.k, 0, 0), -1);
}

TEST(MemoriaE2E, WildAddressFaults) {
    if (getenv("LABSH_SANITIZED") != nullptr) GTEST_SKIP() << "the sanitizers catch the fault first";
    labtest::TempDir d;
    EXPECT_EQ(labtest::Run("override on\nmemdump 0x10 30\n", d.path()).termSignal(), SIGSEGV);
}
}  // namespace
