// Background jobs driven through their states by signals from outside, the
// commands that prune and wait for them, and pipes.
#include "processes/helpers.h"

#include <pwd.h>

namespace {

using namespace proctest;

const std::string kMarca = "Uso: showenv [-environ|-addr]";

// Sends the lines, then a command whose answer marks the end of their output.
std::string Enviar(labtest::Session &s, const std::vector<std::string> &lineas) {
    for (const auto &l : lineas) s.send(l);
    s.send("showenv -x");
    return s.readUntil(kMarca);
}

std::string Usuario() {
    struct passwd *p = getpwuid(getuid());
    char aux[12];
    snprintf(aux, sizeof aux, "%11.11s", p != nullptr ? p->pw_name : "?");
    return aux;
}

// The job line of `pid` in `out` (pid -1 when there is none).
Job LineaDe(const std::string &out, pid_t pid) {
    for (const Job &j : Jobs(out))
        if (j.pid == pid) return j;
    return {};
}

bool Es(const Job &j, const std::string &estado, const std::string &valor, const std::string &cmd) {
    return j.pid > 0 && j.estado == estado && j.valor == valor && j.linea == cmd;
}

pid_t Lanzar(labtest::Session &s, const std::string &linea, Limpieza &limpieza, const std::string &comm) {
    std::string antes = Enviar(s, {"listjobs"});
    auto previos = JobPids(antes);
    auto pids = JobPids(Enviar(s, {linea, "listjobs"}));
    for (pid_t p : pids)
        if (std::find(previos.begin(), previos.end(), p) == previos.end()) {
            limpieza.add(p, comm);
            return p;
        }
    ADD_FAILURE() << "no new job for " << linea;
    return -1;
}

class Trabajos : public ::testing::Test {
  protected:
    void SetUp() override {
        // Ends with 3 when the test creates "fin", not before.
        labtest::WriteFile(dir / "tres.sh", "while [ ! -e fin ]; do sleep 0.05; done\nexit 3\n");
        s.send("override on");
    }
    // Ends every job still listed and lets the shell reap it, so that
    // nothing outlives the test, not even as a zombie.
    void TearDown() override {
        try {
            for (const Job &j : Jobs(Enviar(s, {"listjobs"})))
                if (j.estado == "ACTIVO" || j.estado == "PARADO") limpieza.add(j.pid, Comm(j.pid));
            for (const auto &[pid, comm] : limpieza.procesos)
                if (pid > 0 && Comm(pid) == comm) {
                    Senal(pid, SIGKILL);
                    WaitEnded(pid);
                }
            Enviar(s, {"listjobs"});
        } catch (const std::exception &) {
            // The shell is gone: Limpieza still ends what is left.
        }
    }
    labtest::TempDir dir;
    Limpieza limpieza;  // destroyed after the session: ends what setsid took out of its group
    labtest::Session s{dir.path(), {"-p"}};
};

TEST_F(Trabajos, StatesFollowTheSignals) {
    pid_t pid = Lanzar(s, "back sleep 300", limpieza, "sleep");
    ASSERT_GT(pid, 0);
    std::string out = Enviar(s, {"listjobs"});
    Job linea = LineaDe(out, pid);
    EXPECT_TRUE(Es(linea, "ACTIVO", "000", "sleep 300")) << linea;
    EXPECT_EQ(linea.usuario, Usuario());
    // The background child leads a session of its own.
    ASSERT_TRUE(WaitComm(pid, "sleep"));
    EXPECT_EQ(getsid(pid), pid);

    Senal(pid, SIGSTOP);
    ASSERT_TRUE(WaitState(pid, "T"));
    linea = LineaDe(Enviar(s, {"listjobs"}), pid);
    EXPECT_TRUE(Es(linea, "PARADO", "STOP", "sleep 300")) << linea;

    Senal(pid, SIGCONT);
    ASSERT_TRUE(WaitState(pid, "SR"));
    linea = LineaDe(Enviar(s, {"jobs"}), pid);
    EXPECT_TRUE(Es(linea, "ACTIVO", "000", "sleep 300")) << linea;

    Senal(pid, SIGKILL);
    ASSERT_TRUE(WaitState(pid, "Z"));
    linea = LineaDe(Enviar(s, {"listjobs"}), pid);
    EXPECT_TRUE(Es(linea, "SENALADO", "KILL", "sleep 300")) << linea;
    // Reaped by the refresh: no zombie left.
    EXPECT_EQ(State(pid), '\0');
    // A finished record stays as it was.
    linea = LineaDe(Enviar(s, {"listjobs"}), pid);
    EXPECT_TRUE(Es(linea, "SENALADO", "KILL", "sleep 300")) << linea;

    pid_t tres = Lanzar(s, "back sh tres.sh", limpieza, "sh");
    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    linea = LineaDe(Enviar(s, {"listjobs"}), tres);
    EXPECT_TRUE(Es(linea, "TERMINADO", "003", "sh tres.sh")) << linea;
}

TEST_F(Trabajos, DeljobsRemovesByTheLastRefreshedStates) {
    pid_t tres = Lanzar(s, "back sh tres.sh", limpieza, "sh");
    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    // Ended since the last listing: this deljobs still sees it ACTIVO.
    Job linea = LineaDe(Enviar(s, {"deljobs -term"}), tres);
    EXPECT_TRUE(Es(linea, "TERMINADO", "003", "sh tres.sh")) << linea;

    pid_t dormido = Lanzar(s, "back sleep 300", limpieza, "sleep");
    Senal(dormido, SIGTERM);
    ASSERT_TRUE(WaitState(dormido, "Z"));
    pid_t activo = Lanzar(s, "fg sleep 300 &", limpieza, "sleep");
    std::string out = Enviar(s, {"listjobs"});
    EXPECT_TRUE(Es(LineaDe(out, dormido), "SENALADO", "TERM", "sleep 300")) << out;
    EXPECT_TRUE(Es(LineaDe(out, activo), "ACTIVO", "000", "sleep 300")) << out;

    // The last option counts: only the signalled one goes.
    out = Enviar(s, {"deljobs -term -sig"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{tres, activo})) << out;
    out = Enviar(s, {"deljobs -all x -clear"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{activo})) << out;
    out = Enviar(s, {"deljobs"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{activo})) << out;
    out = Enviar(s, {"deljobs -clear -term", "listjobs"});
    EXPECT_TRUE(JobPids(out).empty()) << out;
    // Off the list, but still running until the test ends it.
    EXPECT_NE(State(activo), '\0');
}

TEST_F(Trabajos, JobShowsAndWaits) {
    pid_t largo = Lanzar(s, "back sleep 300", limpieza, "sleep");
    pid_t tres = Lanzar(s, "back sh tres.sh", limpieza, "sh");
    std::string out = Enviar(s, {"job " + std::to_string(largo)});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{largo}));
    out = Enviar(s, {"proc 999999999"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{largo, tres}));
    out = Enviar(s, {"job -fg"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{largo, tres}));

    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    Enviar(s, {"listjobs"});
    out = Enviar(s, {"job -fg " + std::to_string(tres), "listjobs"});
    EXPECT_TRUE(Contains(out, "Proceso " + std::to_string(tres) + " pid ya esta finalizado\n")) << out;
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{largo, tres}));

    // Waits until the test ends it.
    s.send("job -fg " + std::to_string(largo));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(s.drain(std::chrono::milliseconds(100)).find("terminado"), std::string::npos);
    Senal(largo, SIGTERM);
    s.readUntil("Proceso " + std::to_string(largo) + " terminado por la senal TERM\n");
    out = Enviar(s, {"listjobs"});
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{tres}));

    pid_t corto = Lanzar(s, "back sleep 1", limpieza, "sleep");
    out = Enviar(s, {"job -fg " + std::to_string(corto)});
    EXPECT_TRUE(Contains(out, "Proceso " + std::to_string(corto) + " terminado normalmente. Valor devuelto 0\n"));
}

TEST_F(Trabajos, OddBackgroundLines) {
    // "&" first leaves no program; the child reports and ends with 255.
    pid_t vacio = Lanzar(s, "back & sleep 300", limpieza, "labsh");
    ASSERT_TRUE(WaitEnded(vacio));
    std::string out = Enviar(s, {"listjobs"});
    EXPECT_TRUE(Es(LineaDe(out, vacio), "TERMINADO", "255", "NULL")) << out;

    pid_t ls = Lanzar(s, "fg ls -l & sleep", limpieza, "ls");
    ASSERT_TRUE(WaitEnded(ls));
    EXPECT_TRUE(Es(LineaDe(Enviar(s, {"listjobs"}), ls), "TERMINADO", "000", "ls -l"));

    pid_t pri = Lanzar(s, "backpri 6 sleep 300", limpieza, "sleep");
    ASSERT_TRUE(WaitState(pri, "S"));
    EXPECT_EQ(Stat(pri).at(16), "6");
    EXPECT_TRUE(Es(LineaDe(Enviar(s, {"listjobs"}), pri), "ACTIVO", "000", "sleep 300"));
    EXPECT_EQ(LineaDe(Enviar(s, {"listjobs"}), pri).prio, 6);

    pid_t arroba = Lanzar(s, "back sleep 300 @3", limpieza, "sleep");
    ASSERT_TRUE(WaitState(arroba, "S"));
    EXPECT_EQ(Stat(arroba).at(16), "3");
    // The line keeps the words the child interprets.
    EXPECT_TRUE(Es(LineaDe(Enviar(s, {"listjobs"}), arroba), "ACTIVO", "000", "sleep 300 @3"));
}

TEST_F(Trabajos, PipesInTheBackground) {
    labtest::WriteFile(dir / "a", "");
    std::string out = Enviar(s, {"pipe ls % wc -l &", "backpipe ls % cat &"});
    auto pids = JobPids(Enviar(s, {"listjobs"}));
    ASSERT_EQ(pids.size(), 4u);
    for (pid_t p : pids) limpieza.add(p, "ls");
    for (pid_t p : pids) ASSERT_TRUE(WaitEnded(p));
    out = Enviar(s, {"listjobs"});
    EXPECT_TRUE(Es(LineaDe(out, pids[0]), "TERMINADO", "000", "ls")) << out;
    EXPECT_TRUE(Es(LineaDe(out, pids[1]), "TERMINADO", "000", "wc -l")) << out;
    EXPECT_TRUE(Es(LineaDe(out, pids[3]), "TERMINADO", "000", "cat")) << out;
    EXPECT_EQ(LineaDe(out, pids[0]).usuario, Usuario());
}

TEST(Pipes, ForegroundPipes) {
    labtest::TempDir d;
    for (const char *f : {"a", "b", "c"}) labtest::WriteFile(d / f, "");
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    auto r = Script(d,
                    "pipe ls % wc -l\n"
                    "concatenar ls -l % wc -l\n"
                    "pipe ls % sort % wc -l\n"
                    "backpipe ls % wc -l\n"
                    "pipe ls\n"
                    "pipe % wc -l\n"
                    "pipe ls %\n"
                    "pipe no-existe-labsh % wc -l\n"
                    "pipe LABSH_T_A env % cat\n"
                    "pipe ls >out % wc -c\n",
                    o);
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 9u) << r.out;
    EXPECT_EQ(ls[0], "3");
    EXPECT_EQ(ls[1], "4");
    EXPECT_EQ(ls[2], "3");
    EXPECT_EQ(ls[3], "3");
    EXPECT_EQ(ls[4], "pipe prog1 args .. % prog2 args ..");
    EXPECT_EQ(ls[5], "0");
    EXPECT_EQ(ls[6], "0");
    EXPECT_EQ(ls[7], "LABSH_T_A=uno");
    // The redirection is applied after the pipe is joined: wc reads nothing.
    EXPECT_EQ(ls[8], "0");
    EXPECT_EQ(labtest::ReadFile(d / "out"), "a\nb\nc\nout\n");
    EXPECT_EQ(r.err, "");
}

}  // namespace
