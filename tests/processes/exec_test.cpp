// Running programs: redirection words, priorities, credentials, the search
// path and the second shell made by fork.
#include "processes/helpers.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/resource.h>

namespace {

using namespace proctest;

mode_t Umask() {
    mode_t m = umask(0);
    umask(m);
    return m;
}

mode_t Modo(const std::string &path) {
    struct stat st {};
    stat(path.c_str(), &st);
    return st.st_mode & 07777;
}

int Nice(const std::string &statLine) {
    size_t cierre = statLine.rfind(')');
    if (cierre == std::string::npos) return 1000;
    std::istringstream in(statLine.substr(cierre + 2));
    std::vector<std::string> f;
    for (std::string c; in >> c;) f.push_back(c);
    return f.size() > 16 ? std::stoi(f[16]) : 1000;
}

TEST(Redireccion, WordsOpenCreateAndNeverTruncate) {
    labtest::TempDir d;
    labtest::WriteFile(d / "a", "");
    labtest::WriteFile(d / "in", "linea de entrada\n");
    labtest::WriteFile(d / "out", "0123456789012345678901234567890\n");
    auto r = Script(d,
                    "fg ls >out -l\n"
                    "fg cat <in\n"
                    "fg cat <\n"
                    "fg ls no-existe *err\n"
                    "fg echo hola >/no-existe-dir/x\n"
                    "fg echo uno @3 dos >pri tres\n"
                    "fg cat /proc/self/stat >stat <in @4\n"
                    "execute no-existe-prog >salida\n"
                    "showenv -x\n");
    EXPECT_EQ(labtest::ReadFile(d / "out"), "a\nin\nout\n9012345678901234567890\n");
    EXPECT_EQ(r.out,
              "linea de entrada\n"
              "Imposible redireccionar 1 a /no-existe-dir/x: No such file or directory\n"
              "hola >/no-existe-dir/x\n");
    EXPECT_TRUE(Contains(r.err, "cat: '<'") || Contains(r.err, "cat: <")) << r.err;
    EXPECT_TRUE(Contains(labtest::ReadFile(d / "err"), "no-existe"));
    // The cut at "@3" comes before the redirection word, which still applies.
    EXPECT_EQ(labtest::ReadFile(d / "pri"), "uno\n");
    EXPECT_EQ(Nice(labtest::ReadFile(d / "stat")), 4);
    // A failed execute leaves the shell with its output redirected.
    EXPECT_TRUE(Contains(r.err, "Imposible ejecutar: No such file or directory\n"));
    EXPECT_TRUE(Contains(labtest::ReadFile(d / "salida"), "Uso: showenv [-environ|-addr]\n"));
    mode_t esperado = 0777 & ~Umask();
    for (const char *nombre : {"err", "pri", "salida"}) EXPECT_EQ(Modo(d / nombre), esperado) << nombre;
}

TEST(Prioridad, ChildrenAndTheShellSeenFromOutside) {
    labtest::TempDir d;
    errno = 0;
    int base = getpriority(PRIO_PROCESS, 0);
    auto r = Script(d,
                    "fg cat /proc/self/stat @5\n"
                    "fgpri 7 cat /proc/self/stat\n"
                    "fgpri 5 echo @7\n"
                    "priority\n"
                    "priority 0 4\n"
                    "priority\n"
                    "fg cat /proc/self/stat\n"
                    "fgpri 50 cat /proc/self/stat\n"
                    "priority 2147483647\n"
                    "priority 2147483647 3\n");
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 9u) << r.out;
    EXPECT_EQ(Nice(ls[0]), 5);
    EXPECT_EQ(Nice(ls[1]), 7);
    EXPECT_EQ(ls[2], "@7");
    std::smatch m;
    ASSERT_TRUE(std::regex_match(ls[3], m, std::regex(R"(Prioridad del proceso (\d+) es (-?\d+))")));
    EXPECT_EQ(std::stoi(m[2]), base);
    EXPECT_EQ(ls[4], "Prioridad del proceso " + m[1].str() + " es 4");
    EXPECT_EQ(Nice(ls[5]), 4);
    EXPECT_EQ(Nice(ls[6]), 19);
    EXPECT_EQ(ls[7], "Imposible obtener prioridad de proceso 2147483647: No such process");
    EXPECT_EQ(ls[8], "imposible cambiar la prioridad del proceso  2147483647:No such process");
}

TEST(Credenciales, EffectiveUserOfTheShellAndItsChildren) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to become nobody";
    labtest::TempDir d;
    auto r = Script(d,
                    "getuid\n"
                    "setuid -l nobody\n"
                    "getuid\n"
                    "priority 0 5\n"
                    "priority 0 0\n"
                    "fgpri -3 echo no\n"
                    "fg id -u\n"
                    "setuid 0\n"
                    "setuid -l usuario-inexistente-labsh\n"
                    "setuid -5\n"
                    "setuid -l\n"
                    "uid 1000\n"
                    "uid -x 1000\n"
                    "uid -x -l\n"
                    "uid -set -l nobody\n"
                    "uid -get\n"
                    "uid -set 0\n"
                    "credenciales\n"
                    "fgas nobody id -u\n"
                    "fgas usuario-inexistente-labsh id\n"
                    "backas usuario-inexistente-labsh id\n"
                    "fg sleep 1\n"
                    "listjobs\n"
                    "executeas nobody id -u\n"
                    "getuid\n");
    const std::string root = "Credencial real: 0, (root)\nCredencial efectiva: 0, (root)\n";
    const std::string nobody = "Credencial real: 0, (root)\nCredencial efectiva: 65534, (nobody)\n";
    const std::string inexistente = "Imposible cambiar credencial: No such file or directory\n";
    std::string esperado = root + nobody +
                           "imposible cambiar la prioridad del proceso  0:Permission denied\n"
                           "Imposible cambiar prioridad: Permission denied\n"
                           "65534\n"
                           "Usuario no existente usuario-inexistente-labsh\n"
                           "Valor no valido de la credencial -5\n" +
                           root + root + "uid [-get|-set] [-l] [id]\n" + root + nobody + root + "65534\n" +
                           inexistente + inexistente;
    ASSERT_EQ(r.out.substr(0, esperado.size()), esperado) << r.out;
    auto resto = Lines(r.out.substr(esperado.size()));
    ASSERT_EQ(resto.size(), 2u) << r.out;
    EXPECT_TRUE(std::regex_match(
        resto[0], std::regex(R"( *\d+ uid -000001 p=-?\d+ \d{4}/\d\d/\d\d \d\d:\d\d:\d{1,2} TERMINADO \(255\) id)")))
        << resto[0];
    // The shell became id, running as nobody.
    EXPECT_EQ(resto[1], "65534");
    EXPECT_EQ(r.err,
              "No ejecutado: Permission denied\n"
              "No ejecutado: No such file or directory\n"
              "No ejecutado: No such file or directory\n");
}

// Runs the shell as nobody (real and effective), script from a file.
struct Salida {
    std::string out;
    int status = -1;
};

Salida RunAsNobody(const labtest::TempDir &d, const std::string &script) {
    chmod(d.path().c_str(), 0755);
    std::string entrada = d / "script";
    labtest::WriteFile(entrada, script);
    int fds[2];
    if (pipe(fds) != 0) return {};
    std::string bin = labtest::LabshBinary();
    pid_t pid = fork();
    if (pid == 0) {
        int in = open(entrada.c_str(), O_RDONLY);
        dup2(in, 0);
        dup2(fds[1], 1);
        dup2(fds[1], 2);
        close(fds[0]);
        close(fds[1]);
        if (chdir(d.path().c_str()) != 0 || setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0)
            _exit(126);
        execl(bin.c_str(), bin.c_str(), "-p", static_cast<char *>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    if (pid == -1) {
        close(fds[0]);
        return {};
    }
    Salida s;
    char buf[4096];
    for (int vueltas = 0; vueltas < 600; vueltas++) {  // 60 s at most
        pollfd p{fds[0], POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) continue;
        ssize_t n = read(fds[0], buf, sizeof buf);
        if (n <= 0) break;
        s.out.append(buf, static_cast<size_t>(n));
    }
    close(fds[0]);
    kill(pid, SIGKILL);  // only if it is still there after the time allowed
    waitpid(pid, &s.status, 0);
    return s;
}

TEST(Credenciales, WithoutPrivilegeChangesFail) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to start the shell as nobody";
    labtest::TempDir d;
    std::string prompt = PromptIn(d.path());
    Salida s = RunAsNobody(d,
                           "override on\n"
                           "setuid 0\n"
                           "setuid abc\n"
                           "priority 0 3\n"
                           "priority 0 1\n"
                           "fgpri -2 echo no\n"
                           "executeas root id -u\n"
                           "getuid\n");
    if (WIFEXITED(s.status) && WEXITSTATUS(s.status) >= 126) GTEST_SKIP() << "the shell cannot run as nobody here";
    std::string out = Clean(s.out, prompt);
    EXPECT_EQ(out,
              "la ejecucion de comandos que no son de las practicas esta habilitada\n"
              "Imposible cambiar credencial: Operation not permitted\n"
              "Imposible cambiar credencial: Operation not permitted\n"
              "imposible cambiar la prioridad del proceso  0:Permission denied\n"
              "Imposible cambiar prioridad: Permission denied\n"
              "No ejecutado: Permission denied\n"
              "Imposible cambiar credencial: Operation not permitted\n"
              "Imposible ejecutar: Operation not permitted\n"
              "Credencial real: 65534, (nobody)\n"
              "Credencial efectiva: 65534, (nobody)\n");
}

TEST(RutaDeBusqueda, SearchWhereAndMissingPrograms) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["PATH"] = "/bin:/usr/bin";
    auto r = Script(d,
                    "search\n"
                    "search -clear\n"
                    "where ls\n"
                    "search -add /bin\n"
                    "where ls\n"
                    "search +/usr/bin\n"
                    "search\n"
                    "search -/bin\n"
                    "search -del /usr/bin\n"
                    "search -del /nada\n"
                    "search\n"
                    "search x\n"
                    "search -add\n"
                    "where jobs\n"
                    "where listjobs\n"
                    "where\n"
                    "search -path\n"
                    "where ./ls\n"
                    "abbrev on\n"
                    "where li\n"
                    "abbrev off\n"
                    "no-existe-labsh\n"
                    "fg\n"
                    "execute\n"
                    "fgpri\n"
                    "execpri\n"
                    "executeas\n",
                    o);
    EXPECT_EQ(r.out,
              "/bin\n/usr/bin\n"
              "ls\n"
              "/bin/ls\n"
              "/bin\n/usr/bin\n"
              "Argumento incorrecto x\n"
              "Imposible realizar operacion -add: Bad address\n"
              "jobs: comando interno listjobs\n"
              "listjobs: comando interno listjobs\n"
              "Importados 2 directorios en la ruta de busqueda\n"
              "./ls\n"
              "Abreviatura de comando no unica: li\n");
    EXPECT_EQ(r.err,
              "No ejecutado: No such file or directory\n"
              "No ejecutado: Bad address\n"
              "Imposible ejecutar: Bad address\n");
}

TEST(Fork, SecondShellReadsOnAndParentResumesAfterIt) {
    labtest::TempDir d;
    Limpieza limpieza;
    auto r = Script(d,
                    "back sleep 30\n"
                    "fork\n"
                    "listjobs\n"
                    "fg echo hijo\n"
                    "exit\n"
                    "listjobs\n"
                    "fg echo padre\n");
    auto pids = JobPids(r.out);
    limpieza.add(pids, "sleep");
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 4u) << r.out;
    std::smatch m;
    ASSERT_TRUE(std::regex_match(ls[0], m, std::regex(R"(ejecutando proceso (\d+))")));
    EXPECT_EQ(ls[1], "hijo");
    ASSERT_EQ(pids.size(), 1u);
    EXPECT_NE(pids[0], std::stoi(m[1]));
    EXPECT_TRUE(Contains(ls[2], " ACTIVO (000) sleep 30"));
    EXPECT_EQ(ls[3], "padre");
    EXPECT_EQ(r.status, 0);
}

}  // namespace
