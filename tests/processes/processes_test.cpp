// The processes commands end to end; background jobs are moved through their states by signals.
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <regex>
#include <sys/wait.h>
#include <thread>

#include "support/session.h"

namespace {

using Strs = std::vector<std::string>;
using Pids = std::vector<pid_t>;
const std::string P = "0x[0-9a-f]+";

Strs Lines(const std::string &s) {
    Strs v;
    for (std::istringstream in(s); std::getline(in, v.emplace_back());) {}
    return v.pop_back(), v;  // the last getline found nothing
}
bool Has(const std::string &s, const std::string &part) { return s.find(part) != std::string::npos; }
bool Re(const std::string &s, const std::string &re) { return std::regex_match(s, std::regex(re)); }

// What the commands printed: no start-up lines, prompts or answer to "override on".
labtest::RunResult Script(const labtest::TempDir &d, const std::string &lines,
                          decltype(ldiff::RunSpec::env) env = {}, Strs wrapper = {}) {
    ldiff::RunSpec o;
    o.args = {"-p"}, o.env = env;
    std::string prompt = labtest::Run("", d.path()).out;
    prompt.erase(0, prompt.rfind('\n') + 1);
    labtest::RunResult r = labtest::Run("override on\n" + lines, d.path(), o, wrapper);
    EXPECT_NE(r.end, ldiff::End::TimedOut);
    r.out.erase(0, r.out.find(prompt));
    for (size_t p; !prompt.empty() && (p = r.out.find(prompt)) != std::string::npos;) r.out.erase(p, prompt.size());
    r.out.erase(0, r.out.find('\n') + 1);
    return r;
}

// Field n of a /proc/<pid>/stat text after the command name: 0 the state, 16 the nice value.
std::string Field(const std::string &stat, size_t n) {
    std::istringstream in(stat.empty() ? "" : stat.substr(stat.rfind(')') + 2));
    std::string c;
    for (size_t i = 0; i <= n && in >> c; i++) {}
    return c;
}
std::string Proc(pid_t pid, const char *f) { return labtest::ReadFile("/proc/" + std::to_string(pid) + "/" + f); }
char State(pid_t pid) { return (Field(Proc(pid, "stat"), 0) + '\0')[0]; }  // '\0': reaped
std::string Comm(pid_t pid) { return Field("() " + Proc(pid, "comm"), 0); }
template <class F> bool Until(F done) {
    for (int i = 0; i < 1000 && !done(); i++) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return done();
}
void Signal(pid_t pid, int sig) { if (pid > 0) kill(pid, sig); }  // never a group, never all

struct Job { pid_t pid; std::string month, state; };  // state: "ESTADO (valor) line"
std::vector<Job> Jobs(const std::string &out) {
    static const std::regex re(R"((\d+) .{11} p=-?\d+ \d{4}/(\d\d)/\d\d \d\d:\d\d:\d{1,2} ([A-Z?]+ \(.*)$)");
    std::vector<Job> jobs;
    for (const std::string &l : Lines(out))
        if (std::smatch m; std::regex_search(l, m, re)) jobs.push_back({std::stoi(m[1]), m[2], m[3]});
    return jobs;
}

TEST(ProcessesEnvironment, PutenvMovesEnvironWrongWaysAndUsageLines) {
    labtest::TempDir d;
    // The wrong ways first, while environ is still main's third argument; then putenv moves it.
    auto ls = Lines(Script(d, "showenv -addr\nchangevarWrong -x -ma LABSH_T_NADA 1\n"
        "changevarWrong -a -mo LABSH_T_Z xyz\nfg printenv LABSH_T_Z\nchangevarWrong -e -ms LABSH_T_X 111\n"
        "changevarWrong -e -ms LABSH_T_Y 222\nshowvar LABSH_T_X\nfg printenv LABSH_T_Y\nchangevar -a LABSH_T_A dos\n"
        "changevar -p LABSH_T_N hola\nshowenv -addr\nshowvar LABSH_T_N\nfg printenv LABSH_T_N\n"
        "changevar -a LABSH_T_A tres\nfg printenv LABSH_T_A\nshowvar LABSH_T_A\nchangevarWrong -a -ms LABSH_T_Z 333\n"
        "changevar -x LABSH_T_A 1\nsubsvar -e LABSH_T_A LABSH_T_B x\nsubsvar -a x\nenvvar -subs -x a b c\n"
        "envvar -change\nentorno -x\nchangevarWrong a b\nchangevarWrong -e -mx LABSH_T_A b\n"
        "cambiarvarMal -p -mo LABSH_T_A b\nsubsvar -e LABSH_T_A LABSH_T_C tres\nfg printenv LABSH_T_C\n",
        {{"LABSH_T_A", "a"}, {"LABSH_T_B", "b"}, {"LABSH_T_X", "x"}, {"LABSH_T_Y", "y"}, {"LABSH_T_Z", "z"}}).out);
    ASSERT_EQ(ls.size(), 31u);
    std::smatch a;
    ASSERT_TRUE(std::regex_match(ls[0], a, std::regex("environ:   (" + P + ") \\(almacenado en " + P + "\\)")));
    EXPECT_TRUE(Re(ls[1], "main arg3: " + a[1].str() + " \\(almacenado en " + P + "\\)"));
    const std::string mal = " MAL cambiada accediendo a traves de ", est = "por haber usado una variable estatica";
    EXPECT_EQ(Strs(ls.begin() + 2, ls.begin() + 10), (Strs{
        "LABSH_T_NADA" + mal + "environ, por haber usado una variable local",
        "Imposible cambiar variable: No such file or directory",
        "LABSH_T_Z" + mal + "environ, por haber sobreescrito variable original", "xyz",
        "LABSH_T_X" + mal + "environ, " + est, "LABSH_T_Y" + mal + "environ, " + est,
        "222", "y"}));  // the second change found the first slot: its shared buffer read LABSH_T_Y
    EXPECT_TRUE(!Has(ls[10], a[1].str() + " ") && ls[11] == ls[1]);  // environ moved, main's array did not
    EXPECT_TRUE(Re(ls[12], "  Con environ LABSH_T_N=hola\\(" + P + "\\) @" + P));  // not in main's array
    EXPECT_TRUE(Has(ls[13], "   Con getenv hola(") && ls[14] == "hola" && ls[15] == "dos");  // programs get it
    EXPECT_TRUE(Has(ls[16], "Con arg3 main LABSH_T_A=tres(") && Has(ls[17], "  Con environ LABSH_T_A=dos("));
    EXPECT_EQ(Strs(ls.begin() + 19, ls.end()), (Strs{"LABSH_T_Z" + mal + "tercer argumento de main, " + est,
        "Uso: changevar [-a|-e|-p] var valor", "Imposible sustituir variable LABSH_T_A por LABSH_T_B: File exists",
        "Uso: subsvar [-a|-e] var valor", "Uso: -subs [-a|-e] var1 var2 valor", "Uso: -change [-a|-e|-p] var valor",
        "Uso: entorno [-environ|-addr]", "Uso: changevarWrong -a|-e|-p -mo|-ms|-ml  o|var valor",
        "Uso: changevarWrong -a|-e|-p -mo|-ms|-ma  var valor", "LABSH_T_A" + mal + "putenv, por haber sobreescrito "
        "variable original", "Imposible cambiar variable: Invalid argument", "tres"}));
}

TEST(ProcessesExec, WordsRedirectionsPrioritiesPipesAndFork) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    labtest::TempDir d;
    labtest::WriteFile(d / "in", "entrada\n");
    labtest::WriteFile(d / "out", "0123456789012345678901234567890\n");
    std::string vars, listed;  // past the 128 that fit, the next word is taken as the program
    for (int i = 0; i < 128; i++) vars += " V" + std::to_string(i) + "=1", listed += "V" + std::to_string(i) + "=1\n";
    auto r = Script(d, "fg HOME X=1 env\nfg NULLENV env\nfg" + vars + " env\nfg" + vars + " V=1 env\nfg ls >out -l\n"
        "fg cat <in\nfg ls no-existe *err\nfg echo hola >/no-existe/x\nfg echo uno @3 dos >pri tres\n"
        "fg cat /proc/self/stat >stat <in @4\nfg HOME\nfgpri 7 cat /proc/self/stat\npriority 0 4\npriority\n"
        "fg cat /proc/self/stat\nfgpri 50 cat /proc/self/stat\npriority 2147483647\npriority 2147483647 3\n"
        "pipe ls % wc -l\npipe ls % sort % wc -l\npipe ls\npipe no-existe % wc -l\npipe LABSH_T_A env % cat\n"
        "pipe ls >pipe % wc -c\nback true\nfork\nlistjobs\nfg echo hijo\nexit\nlistjobs\n"
        "execute nada >salida\nshowenv -x\nexecute LABSH_T_A HOME env\n", {{"HOME", "/casa"}, {"LABSH_T_A", "uno"}});
    std::string head = "HOME=/casa\nX=1\n" + listed + "entrada\nImposible redireccionar 1 a /no-existe/x: No such "
                       "file or directory\nhola >/no-existe/x\n";
    ASSERT_EQ(r.out.substr(0, head.size()), head);
    auto ls = Lines(r.out.substr(head.size()));
    ASSERT_EQ(ls.size(), 15u) << r.out;
    for (auto [i, nice] : {std::pair{0, "7"}, {2, "4"}, {3, "19"}}) EXPECT_EQ(Field(ls[i], 16), nice) << i;
    EXPECT_TRUE(Re(ls[1], "Prioridad del proceso \\d+ es 4"));
    EXPECT_EQ(Strs(ls.begin() + 4, ls.begin() + 12), (Strs{
        "Imposible obtener prioridad de proceso 2147483647: No such process",
        "imposible cambiar la prioridad del proceso  2147483647:No such process", "5", "5",
        "pipe prog1 args .. % prog2 args ..", "0", "LABSH_T_A=uno", "0"}));
    // The second shell's list is empty; the parent's, read after it exits, still holds the job.
    EXPECT_TRUE(Re(ls[12], "ejecutando proceso \\d+") && ls[13] == "hijo");
    EXPECT_TRUE(Re(ls[14], ".* \\([0-9]+\\) true"));
    EXPECT_EQ(r.err, "No ejecutado: No such file or directory\nNo ejecutado: Bad address\n"
                     "Imposible ejecutar: No such file or directory\n");
    EXPECT_EQ(labtest::ReadFile(d / "out"), "in\nout\n789012345678901234567890\n");  // never truncated
    EXPECT_EQ(labtest::ReadFile(d / "pri"), "uno\n");  // cut at "@3", the later redirection still applies
    EXPECT_EQ(Field(labtest::ReadFile(d / "stat"), 16), "4");
    EXPECT_EQ(labtest::ReadFile(d / "pipe"), "err\nin\nout\npipe\npri\nstat\n");  // applied after the pipe is joined
    // The failed execute left the shell redirected; the next made it env: nothing after it ran.
    EXPECT_TRUE(Re(labtest::ReadFile(d / "salida"), "[^]*Uso: showenv [^]*LABSH_T_A=uno\nHOME=/casa\n"));
    EXPECT_TRUE(Has(labtest::Shell("ls -l pri", d.path()), "-rwx"));  // created 0777 less the umask
}

TEST(ProcessesCredentials, EffectiveAndRealUserNobody) {
    if (getuid() != 0) GTEST_SKIP() << "needs root";
    labtest::TempDir d;
    auto r = Script(d, "setuid -l nobody\ngetuid\nfg id -u\nsetuid 0\nsetuid -l no-existe-labsh\nsetuid -5\n"
                       "uid -x 1000\nuid -set -l nobody\ncredenciales\nuid -set 0\nfgas nobody id -u\n"
                       "backas no-existe-labsh id\nfg sleep 1\nlistjobs\nexecuteas nobody id -u\n");
    const std::string real = "Credencial real: 0, (root)\n", nobody = "Credencial efectiva: 65534, (nobody)\n";
    EXPECT_EQ(r.out.substr(0, r.out.find("Imposible cambiar credencial")), real + nobody + "65534\nUsuario no "
              "existente no-existe-labsh\nValor no valido de la credencial -5\nuid [-get|-set] [-l] [id]\n" + real +
              nobody + "65534\n");
    EXPECT_TRUE(Re(r.out, "[^]*\n *\\d+ uid -000001 p=.* TERMINADO \\(255\\) id\n65534\n"));  // then became id
    EXPECT_EQ(r.err, "No ejecutado: No such file or directory\n");
    chmod(d.path().c_str(), 0755);  // now a shell whose real user is nobody: no way back
    r = Script(d, "setuid 0\nsetuid abc\npriority 0 3\npriority 0 1\nfgpri 2 echo no\nexecuteas root id -u\ngetuid\n",
               {}, {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    if (r.exited() && r.exitCode() == 127) GTEST_SKIP() << "the shell cannot run as nobody here";
    const std::string eperm = "Imposible cambiar credencial: Operation not permitted\n";
    EXPECT_EQ(r.out, eperm + eperm + "imposible cambiar la prioridad del proceso  0:Permission denied\nImposible "
              "cambiar prioridad: Permission denied\n" + eperm + "Credencial real: 65534, (nobody)\n" + nobody);
    EXPECT_EQ(r.err, "No ejecutado: Permission denied\nImposible ejecutar: Operation not permitted\n");
}

// With standard output on a terminal each printf is written at once, so the
// message printed before "No ejecutado" fails on a closed descriptor; the
// report must still name the first failure. An unprivileged shell (nobody,
// when the tests run as root) sees each kind of failure.
TEST(ProcessesExec, ChildReportsItsOwnFailureWithStandardOutputClosed) {
    labtest::TempDir d;
    labtest::WriteFile(d / "in", "override on\nclose 1\nfgas no-existe-labsh true\nfgas root true\n"
                                 "fgpri -5 true\nexecuteas root true\n");
    int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_NE(terminal, -1);
    grantpt(terminal), unlockpt(terminal);
    int in = open((d / "in").c_str(), O_RDONLY), out = open(ptsname(terminal), O_RDWR | O_NOCTTY),
        err = open((d / "err").c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_TRUE(in != -1 && out != -1 && err != -1);
    Strs setpriv = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    pid_t pid = labtest::Start(d.path(), {"-p"}, {in, out, err}, {}, getuid() == 0 ? setpriv : Strs{});
    int status = -1;
    waitpid(pid, &status, 0);
    for (int fd : {in, out, err, terminal}) close(fd);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) GTEST_SKIP() << "the shell cannot run unprivileged here";
    const std::string enoent = "No ejecutado: No such file or directory\n";
    EXPECT_EQ(labtest::ReadFile(d / "err"), enoent + "No ejecutado: Operation not permitted\nNo ejecutado: "
              "Permission denied\nImposible ejecutar: Operation not permitted\n");
}

// Plain program lines (nothing for the child to do before exec) that cannot
// run: the same message and, for a job, the status 255; with no handler of
// the shell's (the lightest child) and with one (a child that must not run it).
class PlainPrograms : public testing::TestWithParam<const char *> {};
INSTANTIATE_TEST_SUITE_P(ProcessesExec, PlainPrograms, testing::Values("", "sighandler USR2\n"));

TEST_P(PlainPrograms, ThatCannotRunReportAndEndWith255) {
    labtest::TempDir d;
    labtest::WriteFile(d / "texto", "echo x\n");
    labtest::WriteFile(d / "sin-cabecera", "echo x\n");
    chmod((d / "sin-cabecera").c_str(), 0755);
    labtest::Session s{d.path(), {"-p"}, false};
    s.send(std::string("override on\n") + GetParam() + "fg ./texto\n./sin-cabecera\nback no-existe-labsh uno\n"
           "back ./texto dos\nfg echo corre");
    EXPECT_NE(s.readUntil("corre\n").find("corre\n"), std::string::npos);
    std::vector<Job> jobs;
    ASSERT_TRUE(Until([&] {
        s.send("listjobs\nshowenv -x");
        jobs = Jobs(s.readUntil("[-environ|-addr]"));
        return jobs.size() == 2 && jobs[0].state[0] == 'T' && jobs[1].state[0] == 'T';
    }));
    EXPECT_EQ(jobs[0].state + "|" + jobs[1].state, "TERMINADO (255) no-existe-labsh uno|TERMINADO (255) ./texto dos");
    std::string err = s.errors();  // the jobs' two lines come in either order
    const std::string fg = "No ejecutado: Permission denied\nNo ejecutado: Exec format error\n";
    const std::string a = "No ejecutado: No such file or directory\n", b = "No ejecutado: Permission denied\n";
    EXPECT_TRUE(err == fg + a + b || err == fg + b + a) << err;
}

TEST(ProcessesJobs, StatesFromSignalsJobFgAndDeljobs) {
    if (std::string why = labtest::NoProc(); !why.empty()) GTEST_SKIP() << why;
    labtest::TempDir d;
    labtest::WriteFile(d / "tres.sh", "while [ ! -e $1 ]; do sleep 0.05; done\nexit 3\n");  // ends once $1 exists
    struct Reaper {  // jobs have sessions of their own: each is killed by pid if it still runs sleep or sh
        Pids v;
        ~Reaper() { for (pid_t p : v) if (Comm(p) == "sleep" || Comm(p) == "sh") Signal(p, SIGKILL); }
    } reaper;
    labtest::Session s{d.path(), {"-p"}};
    auto send = [&](const std::string &l) { s.send(l + "\nshowenv -x"); return s.readUntil("[-environ|-addr]"); };
    auto pids = [&](const std::string &c) { Pids v; for (auto &j : Jobs(send(c))) v.push_back(j.pid); return v; };
    auto job = [&](pid_t p, const std::string &cmd = "listjobs") {
        for (const Job &j : Jobs(send(cmd))) if (j.pid == p) return j;
        return Job{};
    };
    reaper.v = pids("override on\nback sleep 90 @3\nback sh tres.sh fin\nfg sleep 90 &\nbackpri 6 sleep 90\nlistjobs");
    ASSERT_EQ(reaper.v.size(), 4u);
    pid_t a = reaper.v[0], t = reaper.v[1], f = reaper.v[2], g = reaper.v[3];
    ASSERT_TRUE(Until([&] { return Field(Proc(a, "stat"), 16) == "3" && Field(Proc(g, "stat"), 16) == "6"; }));
    for (pid_t p : {a, t, g}) EXPECT_EQ(Field(Proc(p, "stat"), 3), std::to_string(p));  // a session each
    time_t now = time(nullptr);
    Job j = job(a);  // the line keeps the words the child interprets; January is month 00
    EXPECT_EQ(j.state + j.month, "ACTIVO (000) sleep 90 @3" + std::to_string(100 + localtime(&now)->tm_mon).substr(1));
    for (auto [sig, st, want] : {std::tuple{SIGSTOP, "T", "PARADO (STOP)"}, {SIGCONT, "SR", "ACTIVO (000)"},
                                  {SIGKILL, "Z", "SENALADO (KILL)"}}) {
        Signal(a, sig);
        const char *esperado = st;  // a structured binding cannot be captured everywhere yet
        ASSERT_TRUE(Until([&] { return Has(esperado, {State(a)}); })) << st;
        EXPECT_EQ(job(a, "jobs").state, std::string(want) + " sleep 90 @3");
    }
    EXPECT_EQ(State(a), '\0');  // reaped by the refresh
    labtest::WriteFile(d / "fin", "");
    ASSERT_TRUE(Until([&] { return State(t) == 'Z'; }));
    // Ended since the last listing: this deljobs still saw it ACTIVO.
    EXPECT_EQ(job(t, "deljobs -term").state, "TERMINADO (003) sh tres.sh fin");
    EXPECT_TRUE(Has(send("job -fg " + std::to_string(a)), std::to_string(a) + " pid ya esta finalizado\n"));
    s.send("job -fg " + std::to_string(f));
    Signal(f, SIGTERM);
    s.readUntil("Proceso " + std::to_string(f) + " terminado por la senal TERM\n");
    EXPECT_EQ(pids("deljobs -term -sig"), (Pids{t, g}));  // the last option counts
    EXPECT_EQ(pids("deljobs -all x -clear"), Pids{g});
    EXPECT_TRUE(pids("deljobs -clear -term").empty() && State(g) == 'S');  // off the list, still running
}

}  // namespace
