// Background jobs driven through their states by signals from outside, the
// commands that prune and wait for them, and pipes.
#include "processes/helpers.h"

#include <algorithm>
#include <pwd.h>

namespace {

using namespace proctest;

class ProcesosTrabajos : public ::testing::Test {
  protected:
    void SetUp() override {
        // Ends with 3 once the test creates "fin", not before.
        labtest::WriteFile(dir / "tres.sh", "while [ ! -e fin ]; do sleep 0.05; done\nexit 3\n");
        s.send("override on");
    }
    // Ends every job still listed and lets the shell reap it: nothing
    // outlives the test, not even as a zombie.
    void TearDown() override {
        try {
            for (const Job &j : Jobs(Enviar({"listjobs"})))
                if (j.estado == "ACTIVO" || j.estado == "PARADO") limpieza.add(j.pid, Comm(j.pid));
            limpieza.matar();
            Enviar({"listjobs"});
        } catch (const std::exception &) {
        }
    }

    // Sends the lines, then a command whose answer marks the end of their output.
    std::string Enviar(const std::vector<std::string> &lineas) {
        for (const auto &l : lineas) s.send(l);
        s.send("showenv -x");
        return s.readUntil("Uso: showenv [-environ|-addr]");
    }

    Job Listar(pid_t pid, const std::string &cmd = "listjobs") {
        for (const Job &j : Jobs(Enviar({cmd})))
            if (j.pid == pid) return j;
        return {};
    }

    // Runs a line that adds one job; returns its pid.
    pid_t Lanzar(const std::string &linea, const std::string &comm) {
        auto antes = JobPids(Enviar({"listjobs"}));
        for (pid_t p : JobPids(Enviar({linea, "listjobs"})))
            if (std::find(antes.begin(), antes.end(), p) == antes.end()) {
                limpieza.add(p, comm);
                return p;
            }
        ADD_FAILURE() << "no new job for " << linea;
        return -1;
    }

    labtest::TempDir dir;
    Limpieza limpieza;  // outlives the session: setsid takes jobs out of its group
    labtest::Session s{dir.path(), {"-p"}};
};

std::string Estado(const Job &j) { return j.estado + " (" + j.valor + ") " + j.linea; }

TEST_F(ProcesosTrabajos, StatesFollowTheSignals) {
    pid_t pid = Lanzar("back sleep 300", "sleep");
    ASSERT_GT(pid, 0);
    Job j = Listar(pid);
    EXPECT_EQ(Estado(j), "ACTIVO (000) sleep 300");
    char usuario[12];
    snprintf(usuario, sizeof usuario, "%11.11s", getpwuid(getuid())->pw_name);
    EXPECT_EQ(j.usuario, usuario);
    ASSERT_TRUE(Esperar([&] { return Comm(pid) == "sleep"; }));
    EXPECT_EQ(getsid(pid), pid);  // a session of its own

    Senal(pid, SIGSTOP);
    ASSERT_TRUE(WaitState(pid, "T"));
    EXPECT_EQ(Estado(Listar(pid)), "PARADO (STOP) sleep 300");
    Senal(pid, SIGCONT);
    ASSERT_TRUE(WaitState(pid, "SR"));
    EXPECT_EQ(Estado(Listar(pid, "jobs")), "ACTIVO (000) sleep 300");
    Senal(pid, SIGKILL);
    ASSERT_TRUE(WaitState(pid, "Z"));
    EXPECT_EQ(Estado(Listar(pid)), "SENALADO (KILL) sleep 300");
    EXPECT_EQ(State(pid), '\0');  // reaped by the refresh
    EXPECT_EQ(Estado(Listar(pid)), "SENALADO (KILL) sleep 300");

    pid_t tres = Lanzar("back sh tres.sh", "sh");
    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    EXPECT_EQ(Estado(Listar(tres)), "TERMINADO (003) sh tres.sh");
}

TEST_F(ProcesosTrabajos, DeljobsRemovesByTheLastRefreshedStates) {
    pid_t tres = Lanzar("back sh tres.sh", "sh");
    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    // Ended since the last listing: this deljobs still sees it ACTIVO.
    EXPECT_EQ(Estado(Listar(tres, "deljobs -term")), "TERMINADO (003) sh tres.sh");

    pid_t senalado = Lanzar("back sleep 300", "sleep");
    Senal(senalado, SIGTERM);
    ASSERT_TRUE(WaitState(senalado, "Z"));
    pid_t activo = Lanzar("fg sleep 300 &", "sleep");
    EXPECT_EQ(Estado(Listar(senalado)), "SENALADO (TERM) sleep 300");

    // The last option counts: only the signalled one goes.
    EXPECT_EQ(JobPids(Enviar({"deljobs -term -sig"})), (std::vector<pid_t>{tres, activo}));
    EXPECT_EQ(JobPids(Enviar({"deljobs -all x -clear"})), (std::vector<pid_t>{activo}));
    EXPECT_EQ(JobPids(Enviar({"deljobs"})), (std::vector<pid_t>{activo}));
    EXPECT_TRUE(JobPids(Enviar({"deljobs -clear -term"})).empty());
    EXPECT_NE(State(activo), '\0');  // off the list, still running
}

TEST_F(ProcesosTrabajos, JobShowsAndWaits) {
    pid_t largo = Lanzar("back sleep 300", "sleep");
    pid_t tres = Lanzar("back sh tres.sh", "sh");
    EXPECT_EQ(JobPids(Enviar({"job " + std::to_string(largo)})), (std::vector<pid_t>{largo}));
    EXPECT_EQ(JobPids(Enviar({"proc 999999999"})), (std::vector<pid_t>{largo, tres}));
    EXPECT_EQ(JobPids(Enviar({"job -fg"})), (std::vector<pid_t>{largo, tres}));

    labtest::WriteFile(dir / "fin", "");
    ASSERT_TRUE(WaitState(tres, "Z"));
    Enviar({"listjobs"});
    std::string out = Enviar({"job -fg " + std::to_string(tres), "listjobs"});
    EXPECT_TRUE(Contains(out, "Proceso " + std::to_string(tres) + " pid ya esta finalizado\n")) << out;
    EXPECT_EQ(JobPids(out), (std::vector<pid_t>{largo, tres}));

    s.send("job -fg " + std::to_string(largo));
    EXPECT_FALSE(Contains(s.drain(std::chrono::milliseconds(300)), "terminado"));  // waiting
    Senal(largo, SIGTERM);
    s.readUntil("Proceso " + std::to_string(largo) + " terminado por la senal TERM\n");
    EXPECT_EQ(JobPids(Enviar({"listjobs"})), (std::vector<pid_t>{tres}));

    pid_t corto = Lanzar("back sleep 1", "sleep");
    out = Enviar({"job -fg " + std::to_string(corto)});
    EXPECT_TRUE(Contains(out, "Proceso " + std::to_string(corto) + " terminado normalmente. Valor devuelto 0\n"));
}

TEST_F(ProcesosTrabajos, OddBackgroundLines) {
    // "&" first leaves no program: the child reports and ends with 255.
    pid_t vacio = Lanzar("back & sleep 300", "labsh");
    ASSERT_TRUE(WaitEnded(vacio));
    EXPECT_EQ(Estado(Listar(vacio)), "TERMINADO (255) NULL");

    pid_t ls = Lanzar("fg ls -l & sleep", "ls");
    ASSERT_TRUE(WaitEnded(ls));
    EXPECT_EQ(Estado(Listar(ls)), "TERMINADO (000) ls -l");

    // Priorities as the system sees them; the line keeps the words the child interprets.
    pid_t pri = Lanzar("backpri 6 sleep 300", "sleep");
    pid_t arroba = Lanzar("back sleep 300 @3", "sleep");
    for (pid_t p : {pri, arroba}) ASSERT_TRUE(Esperar([&] { return Comm(p) == "sleep"; }));
    EXPECT_EQ(StatField(Campo(pri, "stat"), 16), "6");
    EXPECT_EQ(StatField(Campo(arroba, "stat"), 16), "3");
    EXPECT_EQ(Listar(pri).prio, 6);
    EXPECT_EQ(Estado(Listar(arroba)), "ACTIVO (000) sleep 300 @3");
}

TEST_F(ProcesosTrabajos, PipesInTheBackground) {
    Enviar({"pipe ls % wc -l &", "backpipe ls % cat &"});
    auto jobs = Jobs(Enviar({"listjobs"}));
    ASSERT_EQ(jobs.size(), 4u);
    for (const Job &j : jobs) ASSERT_TRUE(WaitEnded(j.pid));
    jobs = Jobs(Enviar({"listjobs"}));
    std::vector<std::string> estados;
    for (const Job &j : jobs) estados.push_back(j.usuario + Estado(j));
    std::string u = jobs.at(0).usuario;
    EXPECT_EQ(estados, (std::vector<std::string>{u + "TERMINADO (000) ls", u + "TERMINADO (000) wc -l",
                                                 u + "TERMINADO (000) ls", u + "TERMINADO (000) cat"}));
}

TEST(ProcesosPipes, ForegroundPipes) {
    labtest::TempDir d;
    for (const char *f : {"a", "b", "c"}) labtest::WriteFile(d / f, "");
    labtest::RunOptions o;
    o.env["LABSH_T_A"] = "uno";
    auto r = Script(d,
                    "pipe ls % wc -l\nconcatenar ls -l % wc -l\npipe ls % sort % wc -l\nbackpipe ls % wc -l\npipe ls\n"
                    "pipe % wc -l\npipe ls %\npipe no-existe-labsh % wc -l\npipe LABSH_T_A env % cat\n"
                    "pipe ls >out % wc -c\n",
                    o);
    EXPECT_EQ(Lines(r.out), (std::vector<std::string>{"3", "4", "3", "3", "pipe prog1 args .. % prog2 args ..", "0",
                                                      "0", "LABSH_T_A=uno", "0"}));
    // The redirection is applied after the pipe is joined: wc reads nothing.
    EXPECT_EQ(labtest::ReadFile(d / "out"), "a\nb\nc\nout\n");
    EXPECT_EQ(r.err, "");
}

}  // namespace
