// Whole sessions: everything a session acquired is released by `exit`, and a
// long run of ordinary commands keeps the shell's memory flat.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/shm.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/session.h"

namespace {

bool Sanitized() { return getenv("LABSH_SANITIZED") != nullptr; }

long Campo(const std::string &fichero, const std::string &clave) {
    std::ifstream f(fichero);
    for (std::string l; std::getline(f, l);)
        if (l.rfind(clave, 0) == 0) return std::stol(l.substr(clave.size()));
    return -1;
}

TEST(SesionCompleta, ExitReleasesEverything) {
    labtest::TempDir dir;
    labtest::WriteFile(dir / "mapeado", "contenido del fichero mapeado\n");
    const std::string clave = std::to_string(0x4c000000 | (getpid() & 0xffffff));
    ldiff::RunSpec o;
    std::vector<std::string> wrapper;
    int st = 1;
    labtest::Shell("command -v valgrind >/dev/null", "/", &st);
    if (Sanitized())
        o.env = {{"ASAN_OPTIONS", "detect_leaks=1"}};
    else if (st == 0)
        wrapper = {"valgrind", "-q", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect",
                     "--error-exitcode=99", "--track-fds=yes"};
    else
        GTEST_SKIP() << "neither a sanitizer build nor valgrind";
    o.timeout = 120;
    // Every list and table the shell keeps gets something.
    labtest::RunResult r =
        labtest::Run("override on\nsearch -add /bin\nchangevar -p LABSH_PRUEBA uno\nopen abierto cr rw\ndup 0\n"
                     "malloc 1000\nshared -create " + clave + " 4096\nshared " + clave +
                         "\nmmap mapeado rw\nback /bin/true\nassign etiq 0x1000\nexit\n",
                     dir.path(), o, wrapper);
    int id = shmget(std::stoi(clave), 0, 0);
    shmid_ds ds{};
    bool adjunto = id != -1 && shmctl(id, IPC_STAT, &ds) == 0 && ds.shm_nattch != 0;
    if (id != -1) shmctl(id, IPC_RMID, nullptr);
    EXPECT_EQ(r.exitCode(), 0) << r.err;
    EXPECT_NE(r.out.find("Asignados 4096 bytes en"), std::string::npos) << r.out;
    EXPECT_EQ(r.err.find("LeakSanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("definitely lost"), std::string::npos) << r.err;
    // The mapped file's descriptor goes with its block (what `open` and `dup`
    // made stays open: the table is emptied, never closed).
    EXPECT_EQ(r.err.find("mapeado"), std::string::npos) << r.err;
    EXPECT_FALSE(adjunto) << "the segment is still attached";
}

TEST(SesionCompleta, LongRunKeepsMemoryFlat) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    long lineas = Sanitized() ? 100000 : 1000000;
    if (const char *e = getenv("LABSH_SOAK_LINES")) lineas = atol(e);
    const char *const mezcla[] = {"pid",        "date",         "historic -3", "prompt $%n",     "listopen 3",
                                  "malloc 100", "malloc -free 100", "stat -long .", "siginfo INT", "showvar HOME",
                                  "uid",        "help pid",     "open f cr rw", "close 3",       "writestr 1 x",
                                  "assign e 0x1000", "assign -del e", "listjobs", "mem -blocks", "command 2"};
    labtest::TempDir dir;
    std::string entrada = dir / "entrada";
    {
        std::ofstream f(entrada);
        f << "override on\n";
        for (long i = 0; i < lineas; i++) f << mezcla[static_cast<size_t>(i) % std::size(mezcla)] << "\n";
        f << "exit\n";
    }
    long total = static_cast<long>(labtest::ReadFile(entrada).size());
    int in = open(entrada.c_str(), O_RDONLY), nulo = open("/dev/null", O_WRONLY);
    pid_t pid = labtest::Start(dir.path(), {}, {in, nulo, nulo});
    close(in), close(nulo);
    // Once a fifth of the input is read the history is full and every table
    // has been used; from then on the resident size must not grow.
    const std::string proc = "/proc/" + std::to_string(pid);
    long base = -1, pico = -1;
    int estado = 0;
    while (waitpid(pid, &estado, WNOHANG) == 0) {
        long rss = Campo(proc + "/status", "VmRSS:");
        if (Campo(proc + "/fdinfo/0", "pos:") >= total / 5 && rss > 0) {
            if (base < 0) base = rss;
            pico = std::max(pico, rss);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ASSERT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0) << estado;
    // The sanitizers keep freed memory in quarantine: there the run only
    // shows that nothing breaks.
    if (Sanitized()) return;
    ASSERT_GT(base, 0) << "the shell ended before it could be measured";
    EXPECT_LE(pico - base, 256) << "resident size grew from " << base << " KiB to " << pico << " KiB";
}

}  // namespace
