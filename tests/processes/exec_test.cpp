// Running programs: redirection words, priorities, credentials, the search
// path and the second shell made by fork.
#include "processes/helpers.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

using namespace proctest;

int Nice(const std::string &stat) { return std::atoi(StatField(stat, 16).c_str()); }

TEST(ProcesosRedireccion, WordsOpenCreateAndNeverTruncate) {
    labtest::TempDir d;
    labtest::WriteFile(d / "a", "");
    labtest::WriteFile(d / "in", "linea de entrada\n");
    labtest::WriteFile(d / "out", "0123456789012345678901234567890\n");
    auto r = Script(d,
                    "fg ls >out -l\nfg cat <in\nfg cat <\nfg ls no-existe *err\nfg echo hola >/no-existe-dir/x\n"
                    "fg echo uno @3 dos >pri tres\nfg cat /proc/self/stat >stat <in @4\n"
                    "execute no-existe-prog >salida\nshowenv -x\n");
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
    // A failed execute leaves the shell itself redirected.
    EXPECT_TRUE(Contains(r.err, "Imposible ejecutar: No such file or directory\n"));
    EXPECT_TRUE(Contains(labtest::ReadFile(d / "salida"), "Uso: showenv [-environ|-addr]\n"));
    mode_t mascara = umask(0);
    umask(mascara);
    for (const char *f : {"err", "pri", "salida"}) {
        struct stat st {};
        stat((d / f).c_str(), &st);
        EXPECT_EQ(st.st_mode & 07777, 0777 & ~mascara) << f;
    }
}

TEST(ProcesosPrioridad, ChildrenAndTheShellSeenFromOutside) {
    labtest::TempDir d;
    errno = 0;
    int base = getpriority(PRIO_PROCESS, 0);
    auto r = Script(d,
                    "fg cat /proc/self/stat @5\nfgpri 7 cat /proc/self/stat\nfgpri 5 echo @7\npriority\n"
                    "priority 0 4\npriority\nfg cat /proc/self/stat\nfgpri 50 cat /proc/self/stat\n"
                    "priority 2147483647\npriority 2147483647 3\n");
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

TEST(ProcesosCredenciales, EffectiveUserOfTheShellAndItsChildren) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to become nobody";
    labtest::TempDir d;
    auto r = Script(d,
                    "getuid\nsetuid -l nobody\ngetuid\npriority 0 5\npriority 0 0\nfgpri -3 echo no\nfg id -u\n"
                    "setuid 0\nsetuid -l usuario-inexistente-labsh\nsetuid -5\nsetuid -l\nuid 1000\nuid -x 1000\n"
                    "uid -x -l\nuid -set -l nobody\nuid -get\nuid -set 0\ncredenciales\nfgas nobody id -u\n"
                    "fgas usuario-inexistente-labsh id\nbackas usuario-inexistente-labsh id\nfg sleep 1\nlistjobs\n"
                    "executeas nobody id -u\ngetuid\n");
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
    auto jobs = Jobs(r.out);
    ASSERT_EQ(jobs.size(), 1u) << r.out;
    EXPECT_EQ(jobs[0].usuario, "uid -000001");
    EXPECT_EQ(jobs[0].estado + jobs[0].valor + jobs[0].linea, "TERMINADO255id");
    EXPECT_EQ(Lines(r.out).back(), "65534");  // the shell became id, as nobody
    EXPECT_EQ(r.err,
              "No ejecutado: Permission denied\n"
              "No ejecutado: No such file or directory\n"
              "No ejecutado: No such file or directory\n");
}

TEST(ProcesosCredenciales, WithoutPrivilegeChangesFail) {
    if (getuid() != 0) GTEST_SKIP() << "needs root to start the shell as nobody";
    labtest::TempDir d;
    chmod(d.path().c_str(), 0755);
    labtest::WriteFile(d / "script",
                       "override on\nsetuid 0\nsetuid abc\npriority 0 3\npriority 0 1\nfgpri -2 echo no\n"
                       "executeas root id -u\ngetuid\n");
    // The shell runs as nobody, really and effectively; its prompt is the same.
    std::string prompt = labtest::Run("", d.path()).out;
    prompt = prompt.substr(prompt.rfind('\n') + 1);
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    std::string bin = labtest::LabshBinary(), script = d / "script";
    pid_t pid = fork();
    ASSERT_NE(pid, -1);
    if (pid == 0) {
        dup2(open(script.c_str(), O_RDONLY), 0);
        dup2(fds[1], 1);
        dup2(fds[1], 2);
        if (chdir(d.path().c_str()) == 0 && setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0)
            execl(bin.c_str(), bin.c_str(), "-p", static_cast<char *>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    std::string out;
    char buf[4096];
    for (ssize_t n; (n = read(fds[0], buf, sizeof buf)) > 0;) out.append(buf, static_cast<size_t>(n));
    close(fds[0]);
    int status;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) GTEST_SKIP() << "the shell cannot run as nobody here";
    for (size_t p; (p = out.find(prompt)) != std::string::npos;) out.erase(p, prompt.size());
    EXPECT_TRUE(Contains(out,
                         "Imposible cambiar credencial: Operation not permitted\n"
                         "Imposible cambiar credencial: Operation not permitted\n"
                         "imposible cambiar la prioridad del proceso  0:Permission denied\n"
                         "Imposible cambiar prioridad: Permission denied\n"
                         "No ejecutado: Permission denied\n"
                         "Imposible cambiar credencial: Operation not permitted\n"
                         "Imposible ejecutar: Operation not permitted\n"
                         "Credencial real: 65534, (nobody)\n"
                         "Credencial efectiva: 65534, (nobody)\n"))
        << out;
}

TEST(ProcesosRutaDeBusqueda, SearchWhereAndMissingPrograms) {
    labtest::TempDir d;
    labtest::RunOptions o;
    o.env["PATH"] = "/bin:/usr/bin";
    auto r = Script(d,
                    "search\nsearch -clear\nwhere ls\nsearch -add /bin\nwhere ls\nsearch +/usr/bin\nsearch\n"
                    "search -/bin\nsearch -del /usr/bin\nsearch -del /nada\nsearch\nsearch x\nsearch -add\n"
                    "where jobs\nwhere listjobs\nwhere\nsearch -path\nwhere ./ls\nabbrev on\nwhere li\nabbrev off\n"
                    "no-existe-labsh\nfg\nexecute\nfgpri\nexecpri\nexecuteas\n",
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
    EXPECT_EQ(r.err, "No ejecutado: No such file or directory\nNo ejecutado: Bad address\nImposible ejecutar: Bad address\n");
}

TEST(ProcesosFork, SecondShellReadsOnAndParentResumesAfterIt) {
    labtest::TempDir d;
    Limpieza limpieza;
    auto r = Script(d, "back sleep 30\nfork\nlistjobs\nfg echo hijo\nexit\nlistjobs\nfg echo padre\n");
    auto jobs = Jobs(r.out);
    for (const Job &j : jobs) limpieza.add(j.pid, "sleep");
    auto ls = Lines(r.out);
    ASSERT_EQ(ls.size(), 4u) << r.out;
    std::smatch m;
    ASSERT_TRUE(std::regex_match(ls[0], m, std::regex(R"(ejecutando proceso (\d+))")));
    // The child's list is empty; the parent's still holds the job.
    EXPECT_EQ(ls[1], "hijo");
    ASSERT_EQ(jobs.size(), 1u);
    EXPECT_NE(jobs[0].pid, std::stoi(m[1]));
    EXPECT_EQ(jobs[0].estado + jobs[0].linea, "ACTIVOsleep 30");
    EXPECT_EQ(ls[3], "padre");
    EXPECT_EQ(r.status, 0);
}

}  // namespace
