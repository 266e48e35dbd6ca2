// End-to-end tests of the signal commands: real signals sent from outside,
// the real mask and dispositions read from /proc.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "support/session.h"

namespace {

testing::AssertionResult Contains(const std::string &out, const std::string &part) {
    if (out.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "no \"" << part << "\" in:\n" << out;
}

bool Sanitized() { return getenv("LABSH_SANITIZED") != nullptr; }

// A shell with the signal commands enabled, driven line by line.
class Shell {
  public:
    Shell() {
        s.send("override on");
        s.readUntil("habilitada\n");
    }
    // Runs a line; returns what the shell printed until it was ready again.
    std::string Do(const std::string &line) {
        s.send(line);
        return Sync();
    }
    // A marker line tells when everything sent so far has been handled.
    std::string Sync() {
        std::string m = "listo" + std::to_string(++n_);
        s.send("usesignals " + m);
        return s.readUntil("parametro no valido: " + m + "\n");
    }
    // Sends a signal from outside and waits until the shell has taken it.
    std::string Kill(int sig) {
        s.signal(sig);
        return Sync();
    }
    uint64_t Mask(const std::string &field) {
        std::ifstream f("/proc/" + std::to_string(s.pid()) + "/status");
        std::string line;
        while (std::getline(f, line))
            if (line.rfind(field + ":", 0) == 0) return std::stoull(line.substr(field.size() + 1), nullptr, 16);
        ADD_FAILURE() << "no " << field << " in /proc status";
        return 0;
    }
    int Status() { return s.wait(); }
    // Waits until the shell sleeps, that is, blocks reading its next line,
    // so that a signal sent now interrupts the read itself.
    void WaitBlocked() {
        for (int i = 0; i < 400; i++) {
            std::ifstream f("/proc/" + std::to_string(s.pid()) + "/stat");
            std::string stat((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
            size_t close = stat.rfind(')');
            if (close != std::string::npos && close + 2 < stat.size() && stat[close + 2] == 'S') return;
            usleep(5000);
        }
        ADD_FAILURE() << "the shell never blocked";
    }

    labtest::TempDir dir;
    labtest::Session s{dir.path()};

  private:
    int n_ = 0;
};

uint64_t Bits(std::initializer_list<int> sigs) {
    uint64_t m = 0;
    for (int sig : sigs) m |= uint64_t{1} << (sig - 1);
    return m;
}

bool Has(uint64_t mask, int sig) { return (mask >> (sig - 1)) & 1; }

// The address in the first "... en 0x..." of a handler's report.
uintptr_t Address(const std::string &out, const std::string &before) {
    std::smatch m;
    if (!std::regex_search(out, m, std::regex(before + " en (0x[0-9a-f]+)"))) {
        ADD_FAILURE() << "no address after \"" << before << "\" in:\n" << out;
        return 0;
    }
    return std::stoull(m[1].str(), nullptr, 16);
}

}  // namespace

TEST(SignalMask, CommandsChangeTheRealMask) {
    Shell sh;
    sh.Do("sigmask USR1 TERM FOO usr2");
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGUSR1, SIGTERM}));
    sh.Do("sigunmask USR1 BAR");
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGTERM}));
    sh.Do("sigprocmask HUP");  // no option: adds
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGHUP, SIGTERM}));
    sh.Do("sigprocmask -unblock TERM");
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGHUP}));
    sh.Do("sigprocmask -setmask USR2 QUIT");
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGQUIT, SIGUSR2}));
    EXPECT_TRUE(Contains(sh.Do("sigprocmask"), "  SENALES ENMASCARADAS: QUIT USR2 \n"));
    // "-block" replaces the whole mask, and with no names empties it.
    sh.Do("sigprocmask -block INT");
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGINT}));
    sh.Do("sigprocmask -block");
    EXPECT_EQ(sh.Mask("SigBlk"), 0u);
    std::string out = sh.Do("sigprocmask SIGINT 10 USR1");
    EXPECT_TRUE(Contains(out, "Senal desconocida SIGINT\nSenal desconocida 10\n"));
    EXPECT_EQ(sh.Mask("SigBlk"), Bits({SIGUSR1}));
    // A blocked signal sent from outside stays pending and changes nothing.
    sh.Do("sighandler -Frestart USR1");
    sh.Kill(SIGUSR1);
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=0\n"));
    sh.Do("sigunmask USR1");
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=1\n"));
}

TEST(SignalDispositions, IgnoreDefaultAndHandlerReachTheKernel) {
    Shell sh;
    EXPECT_EQ(sh.Mask("SigIgn"), 0u);
    sh.Do("sigignore USR1 PIPE KILL NOPE");  // KILL cannot be ignored: silently so
    EXPECT_EQ(sh.Mask("SigIgn"), Bits({SIGUSR1, SIGPIPE}));
    EXPECT_TRUE(Contains(sh.Do("sigignore"), "  SENALES SIGNORADAS: USR1 PIPE \n"));
    std::string dfl = sh.Do("sigdefault");
    EXPECT_TRUE(Contains(dfl, "  SENALES ACCION POR DEFECTO: HUP INT QUIT "));
    EXPECT_FALSE(Contains(dfl, " USR1 "));
    sh.Do("sigdefault USR1");
    EXPECT_EQ(sh.Mask("SigIgn"), Bits({SIGPIPE}));
    // The umbrella passes the rest of the words on.
    sh.Do("sigaction -handler -Frestart USR2 HUP");
    EXPECT_EQ(sh.Mask("SigCgt") & Bits({SIGUSR2, SIGHUP}), Bits({SIGUSR2, SIGHUP}));
    sh.Do("sigaction -ignore USR2");
    EXPECT_TRUE(Has(sh.Mask("SigIgn"), SIGUSR2));
    sh.Do("sigaction -default USR2 PIPE");
    EXPECT_EQ(sh.Mask("SigIgn"), 0u);
    EXPECT_FALSE(Has(sh.Mask("SigCgt"), SIGUSR2));
    // An unrecognised option is the first signal name; the rest still count.
    sh.Do("sighandler -Frestart -resethand ALRM");
    EXPECT_TRUE(Has(sh.Mask("SigCgt"), SIGALRM));
}

TEST(SignalHandler, CountsAndReportsReceptions) {
    Shell sh;
    sh.Do("sighandler -show -Frestart USR1");
    sh.Do("sighandler -Frestart USR2");
    for (int i = 1; i <= 3; i++)
        EXPECT_TRUE(Contains(sh.Kill(SIGUSR1), "Recibida senal USR1 " + std::to_string(i) + " veces en 0x"));
    EXPECT_FALSE(Contains(sh.Kill(SIGUSR2), "Recibida"));
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1 USR2 FOO"), "  USR1=3\n  USR2=1\n  senal desconocida:FOO\n"));
    // Re-installing keeps the count; clearing one leaves the others.
    sh.Do("sighandler -Frestart USR1");
    EXPECT_FALSE(Contains(sh.Kill(SIGUSR1), "Recibida"));
    sh.Do("sigcount -zero USR2");
    std::string all = sh.Do("sigcount");
    EXPECT_TRUE(Contains(all, "  USR1=4\n  SEGV=0\n  USR2=0\n"));
    sh.Do("sigcount -zero");
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=0\n"));
}

TEST(SignalHandler, ResendStopsAtTheLimit) {
    Shell sh;
    sh.Do("limitresend 3");
    sh.Do("sighandler -show -resend -Frestart USR1");
    std::string out = sh.Kill(SIGUSR1);
    EXPECT_TRUE(Contains(out, "Recibida senal USR1 3 veces"));
    EXPECT_FALSE(Contains(out, "Recibida senal USR1 4 veces"));
    // Once the count reached the limit, nothing is re-sent until it is cleared.
    out = sh.Kill(SIGUSR1);
    EXPECT_TRUE(Contains(out, "Recibida senal USR1 4 veces"));
    EXPECT_FALSE(Contains(out, "5 veces"));
    sh.Do("sigcount -zero USR1");
    sh.Kill(SIGUSR1);
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=3\n"));
    // Nested re-sends without deferral stop at the limit too.
    sh.Do("limitresend 5");
    sh.Do("sighandler -resend -Fnodefer -Frestart USR2");
    sh.Kill(SIGUSR2);
    EXPECT_TRUE(Contains(sh.Do("sigcount USR2"), "  USR2=5\n"));
    EXPECT_TRUE(Contains(sh.Do("limitresend"), "limitresend: 5\n"));
}

TEST(SignalHandler, InterruptedReadEndsTheShellUnlessPrepared) {
    {
        Shell sh;
        sh.Do("sighandler -show USR1");
        sh.WaitBlocked();
        sh.s.signal(SIGUSR1);
        sh.s.readUntil("Recibida senal USR1 1 veces");
        int st = sh.Status();
        ASSERT_TRUE(WIFEXITED(st)) << st;
        EXPECT_EQ(WEXITSTATUS(st), 0);
    }
    {
        Shell sh;
        sh.Do("usesignals on");
        sh.Do("sighandler -show USR1");
        sh.WaitBlocked();
        sh.s.signal(SIGUSR1);
        sh.s.readUntil("Recibida senal USR1 1 veces");
        EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=1\n"));
        sh.s.send("exit");
        int st = sh.Status();
        ASSERT_TRUE(WIFEXITED(st)) << st;
        EXPECT_EQ(WEXITSTATUS(st), 0);
    }
}

TEST(SignalAltStack, OnstackHandlerRunsInsideTheBlock) {
    Shell sh;
    std::string err = sh.Do("sigaltstack 0");
    err += sh.Do("sigaltstack abc");
    err += sh.Do("sigaltstack -100");
    EXPECT_EQ(std::regex_search(err, std::regex("Imposible establecer pila: ")), true) << err;
    sh.Do("sigaltstack 65536");
    std::string shown = sh.Do("sigaltstack");
    EXPECT_TRUE(Contains(shown, "pila 65536 bytes en 0x"));
    uintptr_t base = Address(shown, "pila 65536 bytes");
    EXPECT_TRUE(Contains(sh.Do("sigaltstack 0"), "Imposible establecer pila: "));
    EXPECT_EQ(Address(sh.Do("sigaltstack"), "pila 65536 bytes"), base);  // a failure keeps the old one

    sh.Do("sighandler -Fonstack -show -Frestart USR1");
    uintptr_t a = Address(sh.Kill(SIGUSR1), "Recibida senal USR1 1 veces");
    EXPECT_GE(a, base);
    EXPECT_LT(a, base + 65536);
    EXPECT_TRUE(Contains(sh.Do("siginfo USR1"), "RESTART ONSTACK "));
    sh.Do("sighandler -show -Frestart USR1");
    a = Address(sh.Kill(SIGUSR1), "Recibida senal USR1 2 veces");
    EXPECT_TRUE(a < base || a >= base + 65536);
}

TEST(SignalFaults, ProtectionWorksOnce) {
    if (Sanitized()) GTEST_SKIP() << "deliberate faults";
    Shell sh;
    sh.Do("sigaltstack 65536");
    uintptr_t base = Address(sh.Do("sigaltstack"), "pila 65536 bytes");
    EXPECT_TRUE(Contains(sh.Do("protectsegv"), "Protegiendo de SEGV, el programa volvera al princiio de main\n"
                                                "El manejador se instala con SA_RESTART, solo se ejecuta una vez\n"));
    std::string out = sh.Do("segmentation");
    EXPECT_TRUE(Contains(out, "Manejada senal SEGV (11) en 0x"));
    EXPECT_TRUE(Contains(out, "\nShell restaurado a su estado al pricipio de main\n"));
    uintptr_t a = Address(out, "Manejada senal SEGV \\(11\\)");
    EXPECT_GE(a, base);
    EXPECT_LT(a, base + 65536);
    // The handler's signal stays blocked after the jump.
    EXPECT_TRUE(Has(sh.Mask("SigBlk"), SIGSEGV));
    EXPECT_TRUE(Has(sh.Mask("SigCgt"), SIGSEGV));
    sh.s.send("segmentation");
    int st = sh.Status();
    ASSERT_TRUE(WIFSIGNALED(st));
    EXPECT_EQ(WTERMSIG(st), SIGSEGV);
}

TEST(SignalLoop, FirstSigintStopsTheLoopSecondEndsTheShell) {
    Shell sh;
    sh.Do("sigmask INT");  // the loop unblocks it itself
    sh.s.send("loop -user -foo -sys");
    sh.s.readUntil("Iniciando bucle infinito...");
    sh.s.signal(SIGINT);
    sh.s.readUntil("  Manejando SIGINT\nterminado\n");
    sh.Sync();
    EXPECT_FALSE(Has(sh.Mask("SigCgt"), SIGINT));  // reset at the first delivery
    EXPECT_FALSE(Has(sh.Mask("SigBlk"), SIGINT));
    // "-dly" pauses between rounds; the signal still ends it.
    sh.s.send("bucle -sys -dly");
    sh.s.readUntil("Iniciando bucle infinito...");
    sh.s.signal(SIGINT);
    sh.s.readUntil("  Manejando SIGINT\nterminado\n");
    sh.Sync();
    sh.s.signal(SIGINT);
    int st = sh.Status();
    ASSERT_TRUE(WIFSIGNALED(st));
    EXPECT_EQ(WTERMSIG(st), SIGINT);
}
