// Whole sessions: everything a session acquired is released by `exit`, and a
// long run of ordinary commands keeps the shell's memory flat.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/session.h"

namespace {

bool Sanitized() { return getenv("LABSH_SANITIZED") != nullptr; }

bool HaveValgrind() {
    int st = 0;
    labtest::Shell("command -v valgrind >/dev/null", "/", &st);
    return st == 0;
}

// A session that fills every list and table the shell keeps, then exits.
std::string EveryTable(key_t key) {
    std::ostringstream s;
    s << "override on\n"
         "prompt $%n\n"
         "historic -count\n"
         "search -add /bin\n"
         "search -add /usr/bin\n"
         "changevar -p LABSH_PRUEBA uno\n"
         "open abierto cr rw\n"
         "dup 0\n"
         "malloc 1000\n"
         "malloc 20000\n"
         "shared -create "
      << key
      << " 4096\n"
         "shared "
      << key
      << "\n"
         "mmap mapeado rw\n"
         "back /bin/true\n"
         "back /bin/sleep 0\n"
         "assign etiq 0x1000\n"
         "assign otra 0x2000\n"
         "exit\n";
    return s.str();
}

struct SharedKey {
    key_t key = static_cast<key_t>(0x4c000000 | (getpid() & 0xffffff));
    ~SharedKey() {
        int id = shmget(key, 0, 0);
        if (id != -1) shmctl(id, IPC_RMID, nullptr);
    }
    int attached() const {
        int id = shmget(key, 0, 0);
        shmid_ds ds{};
        if (id == -1 || shmctl(id, IPC_STAT, &ds) == -1) return -1;
        return static_cast<int>(ds.shm_nattch);
    }
};

TEST(SesionCompleta, ExitReleasesEverything) {
    labtest::TempDir dir;
    labtest::WriteFile(dir / "mapeado", "contenido del fichero mapeado\n");
    SharedKey key;
    labtest::RunOptions o;
    if (Sanitized()) {
        o.env["ASAN_OPTIONS"] = "detect_leaks=1";
    } else if (HaveValgrind()) {
        o.wrapper = {"valgrind", "-q", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect",
                     "--error-exitcode=99", "--track-fds=yes"};
        o.timeout = std::chrono::seconds(120);
    } else {
        GTEST_SKIP() << "neither a sanitizer build nor valgrind";
    }
    labtest::RunResult r = labtest::Run(EveryTable(key.key), dir.path(), o);
    EXPECT_EQ(r.exitCode(), 0) << r.err;
    EXPECT_EQ(r.err.find("LeakSanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("definitely lost"), std::string::npos) << r.err;
    EXPECT_NE(r.out.find("Asignados 4096 bytes en"), std::string::npos) << r.out;
    // The mapped file's descriptor goes with its block. (What `open` and `dup`
    // made stays open until the process ends: the table is emptied, never
    // closed.)
    EXPECT_EQ(r.err.find("mapeado"), std::string::npos) << r.err;
    // The segment outlives the shell (it was never removed), but nothing is
    // attached to it any more.
    EXPECT_EQ(key.attached(), 0);
}

// Mixed internal commands, none of which fault: what a long class session
// types, over and over.
const char *const Mezcla[] = {
    "pid",
    "date",
    "historic -3",
    "prompt $%n",
    "listopen 3",
    "malloc 100",
    "malloc -free 100",
    "getdirparams",
    "stat -long .",
    "siginfo INT",
    "sigcount INT",
    "showvar HOME",
    "uid",
    "search",
    "help pid",
    "checkalias -q",
    "open fichero cr rw",
    "close 3",
    "writestr 1 hola",
    "abbrev",
    "assign etiq 0x1000",
    "assign -del etiq",
    "listjobs",
    "mem -blocks",
    "list .",
    "command 2",
};

long RssKib(pid_t pid) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(f, line))
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

long InputOffset(pid_t pid) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/fdinfo/0");
    std::string line;
    while (std::getline(f, line))
        if (line.rfind("pos:", 0) == 0) return std::stol(line.substr(4));
    return -1;
}

TEST(SesionCompleta, LongRunKeepsMemoryFlat) {
    long lines = Sanitized() ? 100000 : 1000000;
    if (const char *e = getenv("LABSH_SOAK_LINES")) lines = atol(e);
    labtest::TempDir dir;
    std::string input = dir / "entrada";
    {
        std::ofstream f(input);
        f << "override on\n";
        const size_t n = std::size(Mezcla);
        for (long i = 0; i < lines; i++) f << Mezcla[static_cast<size_t>(i) % n] << "\n";
        f << "exit\n";
    }
    long total = static_cast<long>(labtest::ReadFile(input).size());

    pid_t pid = fork();
    ASSERT_NE(pid, -1);
    if (pid == 0) {
        int in = open(input.c_str(), O_RDONLY);
        int out = open("/dev/null", O_WRONLY);
        if (in == -1 || out == -1 || chdir(dir.path().c_str()) == -1) _exit(126);
        dup2(in, 0);
        dup2(out, 1);
        dup2(out, 2);
        close_range(3, ~0U, 0);
        std::string bin = labtest::LabshBinary();
        execl(bin.c_str(), bin.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    // Once a fifth of the input is read, the history is full and every table
    // has been used; from then on the resident size must not grow.
    long base = -1, peak = -1;
    int status = 0;
    while (waitpid(pid, &status, WNOHANG) == 0) {
        long pos = InputOffset(pid), rss = RssKib(pid);
        if (pos >= total / 5 && rss > 0) {
            if (base < 0) base = rss;
            peak = std::max(peak, rss);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ASSERT_TRUE(WIFEXITED(status)) << "status " << status;
    EXPECT_EQ(WEXITSTATUS(status), 0);
    // The sanitizers keep freed memory in quarantine: there the run only
    // shows that nothing breaks.
    if (Sanitized()) return;
    ASSERT_GT(base, 0) << "the shell ended before it could be measured";
    EXPECT_LE(peak - base, 256) << "resident size grew from " << base << " KiB to " << peak << " KiB";
}

}  // namespace
