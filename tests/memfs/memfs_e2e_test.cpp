// The memfs and assign commands in a running shell, on blocks obtained with
// malloc, shared and mmap: formatting, copies in every direction checked on
// disk byte for byte, moves, deletions, labels and the refusals.
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <string>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/session.h"

namespace {

const std::string FENCE = "la ejecucion de comandos que no son de las practicas esta habilitada\n";

// A shell driven one command at a time: each command is followed by
// `override on`, whose known line ends the command's output.
class Shell {
  public:
    Shell() : s(dir.path()) {
        s.send("override on");
        s.readUntil(FENCE);
        s.send("override on");
        prompt = s.readUntil(FENCE);
        prompt.resize(prompt.size() - FENCE.size());
    }
    std::string operator()(const std::string &line) {
        s.send(line);
        s.send("override on");
        std::string r = s.readUntil(prompt + FENCE);
        r.resize(r.size() - prompt.size() - FENCE.size());
        if (r.compare(0, prompt.size(), prompt) == 0) r.erase(0, prompt.size());
        return r;
    }
    // Runs an allocating command and returns the address it printed.
    std::string Direccion(const std::string &line) {
        std::string out = (*this)(line);
        std::smatch m;
        if (!std::regex_search(out, m, std::regex(" (0x[0-9a-f]+)\n"))) {
            ADD_FAILURE() << line << " printed: " << out;
            return "0x0";
        }
        return m[1];
    }
    std::string path(const std::string &name) const { return dir / name; }
    labtest::TempDir dir;
    labtest::Session s;
    std::string prompt;
};

std::string Hex(uintptr_t v) {
    char b[32];
    snprintf(b, sizeof b, "%p", reinterpret_cast<void *>(v));
    return b;
}

uintptr_t Num(const std::string &hex) { return std::stoull(hex, nullptr, 16); }

// ctime's texts vary: the listing is compared with them replaced.
std::string SinFechas(const std::string &s) {
    static const std::regex fecha(R"([A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]\d \d\d:\d\d:\d\d \d{4})");
    return std::regex_replace(s, fecha, "FECHA");
}

std::string Cabecera(uint32_t total, uint32_t cap, uint32_t libres, uint32_t ficheros) {
    return "SF de " + std::to_string(total) + " bytes con capacidad para " + std::to_string(cap) +
           " ficheros FECHA\n      " + std::to_string(libres) + " bytes desponibles. Total " +
           std::to_string(ficheros) + " fichero(s) \n";
}

std::string Linea(uintptr_t datos, uint32_t tam, const std::string &nombre) {
    char b[512];
    snprintf(b, sizeof b, "(%s): %10u bytes  FECHA %s\n", Hex(datos).c_str(), tam, nombre.c_str());
    return b;
}

TEST(MemfsShell, FormattingNeedsASixteenKilobyteMallocOrSharedBlock) {
    Shell sh;
    std::string pequeno = sh.Direccion("malloc 16383");
    std::string blk = sh.Direccion("malloc 16384");
    std::string mega = sh.Direccion("malloc 1048576");
    labtest::WriteFile(sh.path("mapa"), std::string(20000, 'm'));
    std::string mapa = sh.Direccion("mmap mapa rw");
    EXPECT_EQ(sh("memfs-format " + pequeno), "   tamano bloque memoria demasiado pequeno: 16383 (min 16384)\n");
    EXPECT_EQ(SinFechas(sh("memfs-format " + blk)), Cabecera(16384, 6, 16346, 0));
    EXPECT_EQ(SinFechas(sh("memfs -format " + mega.substr(2))), Cabecera(1048576, 258, 1048576 - 290, 0));
    EXPECT_EQ(sh("memfs-find"), "Sistema de ficheros valido en " + blk + "\nSistema de ficheros valido en " + mega + "\n");
    const std::string noValido = "   id_mem no valido (no corresponde a un bloque de malloc o shared)\n";
    EXPECT_EQ(sh("memfs-format " + mapa), noValido);
    EXPECT_EQ(sh("memfs-format " + Hex(Num(blk) + 16)), noValido);  // inside a block
    EXPECT_EQ(sh("memfs-list " + Hex(Num(blk) + 16)), "Id sistema de ficheros no valido\n");
    EXPECT_EQ(sh("memfs-list " + pequeno), "Id sistema de ficheros no valido\n");
    // Formatting again discards the files; a freed block is no file system.
    labtest::WriteFile(sh.path("f"), "contenido");
    EXPECT_EQ(sh("memfs-cp f " + blk + ":f"), "");
    EXPECT_EQ(SinFechas(sh("format " + blk)), Cabecera(16384, 6, 16346, 0));
    sh("free " + blk);
    EXPECT_EQ(sh("memfs-list " + blk), "Id sistema de ficheros no valido\n");
}

TEST(MemfsShell, CopiesMovesAndDeletionsInEveryDirection) {
    Shell sh;
    std::string a = sh.Direccion("malloc 16384"), b = sh.Direccion("malloc 32768");
    sh("memfs-format " + a);
    sh("memfs-format " + b);
    std::string binario;
    for (int i = 0; i < 3000; i++) binario += static_cast<char>(i * 7 % 256);
    labtest::WriteFile(sh.path("bin"), binario);
    labtest::WriteFile(sh.path("txt"), "hola\n");
    uintptr_t datosA = Num(a) + 32 + 272 * 6, datosB = Num(b) + 32 + 272 * 10;

    EXPECT_EQ(sh("memfs-cp bin " + a + ":uno"), "");
    EXPECT_EQ(sh("copy txt " + a.substr(2) + ":dos"), "");
    EXPECT_EQ(sh("memfs-cp " + a + ":uno " + b + ":tres"), "");
    EXPECT_EQ(sh("memfs-cp " + a + ":dos " + a + ":cuatro"), "");  // appended in the same file system
    EXPECT_EQ(sh("memfs-cp " + b + ":tres salida"), "");
    EXPECT_EQ(sh("memfs-mv " + a + ":cuatro salida2"), "");
    EXPECT_EQ(sh("memfs-mv txt copia"), "");
    EXPECT_EQ(SinFechas(sh("memfs-list " + a)),
              Cabecera(16384, 6, 16346 - 3005, 2) + Linea(datosA, 3000, "uno") + Linea(datosA + 3000, 5, "dos"));
    EXPECT_EQ(SinFechas(sh("mfslist " + b)), Cabecera(32768, 10, 32768 - 42 - 3000, 1) + Linea(datosB, 3000, "tres"));
    EXPECT_EQ(labtest::ReadFile(sh.path("salida")), binario);
    EXPECT_EQ(labtest::ReadFile(sh.path("salida2")), "hola\n");
    EXPECT_EQ(labtest::ReadFile(sh.path("copia")), "hola\n");
    EXPECT_NE(access(sh.path("txt").c_str(), F_OK), 0);

    EXPECT_EQ(sh("memfs-mv copia " + b + ":c"), "");
    EXPECT_EQ(sh("memfs-del " + b + ":tres"), "");
    EXPECT_EQ(SinFechas(sh("memfs-list " + b)), Cabecera(32768, 10, 32768 - 42 - 5, 1) + Linea(datosB, 5, "c"));
    EXPECT_EQ(sh("memfs-cp " + a + ":uno salida"), "Imposible copiar fichero: File exists\n");
    EXPECT_EQ(labtest::ReadFile(sh.path("salida")), binario);
    EXPECT_EQ(sh("memfs-cp bin " + a + ":un"), "Imposible copiar fichero: File exists\n");
    EXPECT_EQ(sh("memfs-cp " + a + ":nada x"), "Imposible copiar fichero: No such file or directory\n");
    EXPECT_EQ(sh("memfs-del " + a + ":nada"), "Imposible borrar fichero: No such file or directory\n");
    EXPECT_EQ(sh("memfs-cp bin " + Hex(Num(a) + 32) + ":x"), "Imposible copiar fichero: No such device or address\n");
}

TEST(MemfsShell, SpaceCapacityAndLongNamesAreChecked) {
    Shell sh;
    std::string a = sh.Direccion("malloc 16384");
    sh("memfs-format " + a);
    labtest::WriteFile(sh.path("grande"), std::string(16346, 'g'));
    labtest::WriteFile(sh.path("p"), "p");
    EXPECT_EQ(sh("memfs-cp grande " + a + ":g"), "Imposible copiar fichero: No space left on device\n");
    std::string largo(300, 'L');
    EXPECT_EQ(sh("memfs-cp p " + a + ":" + largo), "");
    EXPECT_EQ(SinFechas(sh("memfs-list " + a)),
              Cabecera(16384, 6, 16345, 1) + Linea(Num(a) + 1664, 1, std::string(255, 'L')));
    EXPECT_EQ(sh("memfs-cp " + a + ":" + std::string(255, 'L') + " fuera"), "");
    EXPECT_EQ(labtest::ReadFile(sh.path("fuera")), "p");
    for (const char *n : {"b", "c", "d", "e", "f"}) EXPECT_EQ(sh("memfs-cp p " + a + ":" + n), "");
    // All six entries in use: the file system no longer counts as valid.
    EXPECT_EQ(sh("memfs-list " + a), "Id sistema de ficheros no valido\n");
    EXPECT_EQ(sh("memfs-cp p " + a + ":g"), "Imposible copiar fichero: No such device or address\n");
    EXPECT_EQ(sh("memfs-find"), "");
}

// The free count promises 271 bytes per entry more than the block holds: the
// commands refuse what would run past the block's end, and the shell's heap
// stays whole.
TEST(MemfsShell, CopiesNeverRunPastTheBlock) {
    Shell sh;
    std::string a = sh.Direccion("malloc 16384");
    sh("memfs-format " + a);  // data from 1664: 14720 real bytes, 16346 counted
    labtest::WriteFile(sh.path("justo"), std::string(14720, 'j'));
    labtest::WriteFile(sh.path("uno-mas"), std::string(14721, 'u'));
    EXPECT_EQ(sh("memfs-cp uno-mas " + a + ":u"), "Imposible copiar fichero: No space left on device\n");
    EXPECT_EQ(sh("memfs-mv uno-mas " + a + ":u"), "Imposible mover fichero: No space left on device\n");
    EXPECT_EQ(labtest::ReadFile(sh.path("uno-mas")).size(), 14721u);
    EXPECT_EQ(sh("memfs-cp justo " + a + ":j"), "");
    EXPECT_EQ(SinFechas(sh("memfs-list " + a)), Cabecera(16384, 6, 1626, 1) + Linea(Num(a) + 1664, 14720, "j"));
    EXPECT_EQ(sh("memfs-cp " + a + ":j " + a + ":k"), "Imposible copiar fichero: No space left on device\n");
    sh.s.send("exit");
    int st = sh.s.wait();
    ASSERT_TRUE(WIFEXITED(st)) << st;
    EXPECT_EQ(WEXITSTATUS(st), 0);
}

TEST(MemfsShell, LabelsNameFileSystems) {
    Shell sh;
    std::string a = sh.Direccion("malloc 16384");
    EXPECT_EQ(sh("assign blk " + a), "");
    EXPECT_EQ(SinFechas(sh("memfs-format blk")), Cabecera(16384, 6, 16346, 0));
    char linea[128];
    snprintf(linea, sizeof linea, "LABEL: %8s, ADDR: %s %s\n", "blk", a.c_str(), "Sistema de Ficheros valido");
    EXPECT_EQ(sh("memfs -label"), linea);
    labtest::WriteFile(sh.path("f"), "datos");
    EXPECT_EQ(sh("memfs-cp f blk:"), "");
    EXPECT_EQ(SinFechas(sh("memfs-list blk")), Cabecera(16384, 6, 16341, 1) + Linea(Num(a) + 1664, 5, "SinNombre"));
    EXPECT_EQ(sh("assign -clear"), "");
    EXPECT_EQ(sh("memfs-list blk"), "Id sistema de ficheros no valido\n");  // read as hexadecimal now
}

TEST(MemfsShell, SharedSegmentsHoldFileSystemsSeenFromEveryAttachment) {
    Shell sh;
    key_t key = 0x4d460000 + (getpid() & 0xffff);
    std::string k = std::to_string(key);
    struct Limpiar {
        key_t key;
        ~Limpiar() {
            int id = shmget(key, 0, 0);
            if (id != -1) shmctl(id, IPC_RMID, nullptr);
        }
    } limpiar{key};
    std::string a = sh.Direccion("shared -create " + k + " 16384");
    std::string b = sh.Direccion("shared " + k);
    ASSERT_NE(a, b);
    EXPECT_EQ(SinFechas(sh("memfs-format " + a)), Cabecera(16384, 6, 16346, 0));
    labtest::WriteFile(sh.path("f"), "compartido");
    EXPECT_EQ(sh("memfs-cp f " + a + ":f"), "");
    EXPECT_EQ(SinFechas(sh("memfs-list " + b)), Cabecera(16384, 6, 16336, 1) + Linea(Num(b) + 1664, 10, "f"));
    EXPECT_EQ(sh("memfs-cp " + b + ":f salida"), "");
    EXPECT_EQ(labtest::ReadFile(sh.path("salida")), "compartido");
    EXPECT_EQ(sh("memfs-find"), "Sistema de ficheros valido en " + a + "\nSistema de ficheros valido en " + b + "\n");
    EXPECT_EQ(sh("delkey " + k), "");
}

TEST(MemfsShell, FindSkipsMappedFilesItCannotRead) {
    Shell sh;
    labtest::WriteFile(sh.path("f"), std::string(100, 'f'));
    sh.Direccion("mmap f");  // no permission word: not readable
    std::string a = sh.Direccion("malloc 16384");
    sh("memfs-format " + a);
    EXPECT_EQ(sh("memfs-find"), "Sistema de ficheros valido en " + a + "\n");
}

TEST(MemfsShell, DeletingAWordWithoutAColonReadsTheDiskMarker) {
    if (getenv("LABSH_SANITIZED") != nullptr) GTEST_SKIP() << "a deliberate fault";
    Shell sh;
    sh.s.send("memfs-del fichero");
    int status = sh.s.wait();
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGSEGV);
}

}  // namespace
