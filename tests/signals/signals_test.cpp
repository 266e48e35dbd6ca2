// Signal commands end to end: real signals from outside, the kernel's view read from /proc/<pid>/status.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <fstream>
#include <string>
#include "support/session.h"

namespace {
testing::AssertionResult Contains(const std::string &out, const std::string &part) {
    if (out.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "no \"" << part << "\" in:\n" << out;
}
bool KilledBy(int st, int sig) { return WIFSIGNALED(st) && WTERMSIG(st) == sig; }
uint64_t Bit(int sig) { return uint64_t{1} << (sig - 1); }
// A shell with the signal commands on; Do() runs a line.
struct Shell {
    labtest::TempDir dir;
    labtest::Session s{dir.path()};
    Shell() { s.commandsOn(); }
    std::string Do(const std::string &line) { return s.run(line); }
    std::string Kill(int sig) { s.signal(sig); return Do(""); }
    std::string Proc(const std::string &field) {
        std::ifstream f("/proc/" + std::to_string(s.pid()) + "/status");
        for (std::string l; std::getline(f, l);)
            if (l.rfind(field + ":\t", 0) == 0) return l.substr(field.size() + 2);
        return "";
    }
    uint64_t Mask(const std::string &field) { return std::stoull(Proc(field), nullptr, 16); }
    void WaitRead() { for (int i = 0; i < 400 && Proc("State")[0] != 'S'; i++) usleep(5000); }
};
}  // namespace

TEST(Signals, MaskAndIgnoreReachTheKernelAndAnInterruptedReadEndsTheShell) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    Shell sh;
    sh.Do("sigmask USR1 TERM FOO usr2");
    sh.Do("sigunmask USR1");
    EXPECT_TRUE(Contains(sh.Do("sigprocmask"), "  SENALES ENMASCARADAS: TERM \n"));  // the real mask
    sh.Do("sigprocmask -block USR1");  // replaces the whole mask
    EXPECT_EQ(sh.Mask("SigBlk"), Bit(SIGUSR1));
    sh.Do("sighandler USR1");
    sh.Kill(SIGUSR1);  // stays pending while blocked
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=0\n"));
    sh.Do("sigprocmask -unblock USR1");
    EXPECT_TRUE(Contains(sh.Do("sigcount USR1"), "  USR1=1\n"));
    sh.Do("sigignore USR2 PIPE KILL");  // KILL cannot be ignored, silently
    EXPECT_EQ(sh.Mask("SigIgn"), Bit(SIGUSR2) | Bit(SIGPIPE));
    sh.WaitRead();  // a handler without restart interrupts the read, which ends the shell
    sh.s.signal(SIGUSR1);
    EXPECT_EQ(sh.s.wait(), 0);
}

TEST(Signals, HandlerCountsAndResendLimit) {
    Shell sh;
    sh.Do("limitresend 3");
    sh.Do("sighandler -show -resend -Frestart USR1");
    std::string out = sh.Kill(SIGUSR1);  // re-sent up to the limit, then once per signal
    EXPECT_TRUE(Contains(out, "Recibida senal USR1 3 veces en 0x") && !Contains(out, "4 veces")) << out;
    EXPECT_TRUE(Contains(sh.Kill(SIGUSR1), "Recibida senal USR1 4 veces en 0x"));
    sh.Do("sighandler -resend -Fnodefer -Frestart USR2");  // nested re-sends stop too
    sh.Kill(SIGUSR2);
    sh.Do("sigcount -zero USR1");
    // The listing runs by the platform's numbers: USR1 before USR2 everywhere, other signals between them on some.
    std::string cuentas = sh.Do("sigcount");
    EXPECT_TRUE(Contains(cuentas, "  USR1=0\n") && Contains(cuentas, "  USR2=3\n") &&
                cuentas.find("USR1=") < cuentas.find("USR2=")) << cuentas;
}

TEST(Signals, FaultsEndTheShellAndTheProtectionWorksOnce) {
    if (getenv("LABSH_SANITIZED")) GTEST_SKIP() << "deliberate faults";
    struct { int sig; std::string name, fault; } faults[] = {{SIGSEGV, "SEGV", "segmentation"}, {SIGFPE, "FPE", "fpe"}};
    for (auto &f : faults) {
        Shell bare, sh;
        bare.s.send(f.fault);
        EXPECT_TRUE(KilledBy(bare.s.wait(), f.sig)) << f.name;
        EXPECT_TRUE(Contains(sh.Do(f.sig == SIGFPE ? "protectfpe" : "protectsegv"),
                             "Protegiendo de " + f.name + ", el programa volvera al princiio de main\n"
                             "El manejador se instala con SA_RESTART, solo se ejecuta una vez\n"));
        std::string out = sh.Do(f.fault);
        EXPECT_TRUE(Contains(out, "Manejada senal " + f.name + " (" + std::to_string(f.sig) + ") en 0x") &&
                    Contains(out, "\nShell restaurado a su estado al pricipio de main\n")) << out;
        bool blocked = labtest::NoProc().empty() ? (sh.Mask("SigBlk") & Bit(f.sig)) != 0  // seen from outside
                                                 : Contains(sh.Do("sigprocmask"), " " + f.name + " ");
        EXPECT_TRUE(blocked) << f.name << " unblocked after the jump";
        sh.s.send(f.fault);
        EXPECT_TRUE(KilledBy(sh.s.wait(), f.sig)) << f.name << " protected twice";
    }
}

TEST(Signals, PreparedShellSurvivesAnInterruptedReadAndSigintStopsTheLoop) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    Shell sh;
    sh.Do("usesignals on");
    sh.Do("sighandler -show USR1");
    sh.WaitRead();
    sh.s.signal(SIGUSR1);
    sh.s.readUntil("Recibida senal USR1 1 veces");  // in the read; Do() below throws if the shell ended
    sh.Do("sigmask INT");  // the loop unblocks it itself
    sh.s.send("loop -user -sys -dly");
    sh.s.readUntil("Iniciando bucle infinito...");
    sh.s.signal(SIGINT);
    EXPECT_TRUE(Contains(sh.Do(""), "  Manejando SIGINT\nterminado\n"));
    EXPECT_FALSE((sh.Mask("SigCgt") | sh.Mask("SigBlk")) & Bit(SIGINT));  // reset at delivery
    sh.s.signal(SIGINT);
    EXPECT_TRUE(KilledBy(sh.s.wait(), SIGINT));
}

TEST(Signals, OnstackHandlerRunsInsideTheAlternateStack) {
    Shell sh;
    sh.Do("usesignals on");
    sh.Do("sigaltstack 65536");
    unsigned long tam = 0, base = 0, dir = 0;
    std::string pila = sh.Do("sigaltstack");
    ASSERT_EQ(sscanf(pila.substr(pila.find("pila")).c_str(), "pila %lu bytes en %lx", &tam, &base), 2) << pila;
    EXPECT_EQ(tam, 65536u);
    for (bool enPila : {true, false}) {
        sh.Do(enPila ? "sighandler -Fonstack -show USR1" : "sighandler -show USR1");
        std::string out = sh.Kill(SIGUSR1);
        ASSERT_EQ(sscanf(out.substr(out.find("Recibida")).c_str(), "Recibida senal USR1 %*d veces en %lx", &dir), 1);
        EXPECT_EQ(dir >= base && dir < base + tam, enPila) << out;
    }
}
