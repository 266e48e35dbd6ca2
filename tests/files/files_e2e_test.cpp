// End-to-end cases that a transcript cannot set up: a full descriptor table,
// an unprivileged user, and directories that change during a walk.
#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <regex>
#include <signal.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "support/session.h"

namespace {

constexpr int kTabla = 4096;

std::vector<std::string> Lineas(const std::string &s) {
    std::vector<std::string> v;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);) v.push_back(l);
    return v;
}

labtest::RunOptions InheritAll() {
    labtest::RunOptions o;
    o.inheritDescriptors = true;
    return o;
}

// Every position of the shell's table is taken by an inherited descriptor,
// so the next one the shell opens is past the table's end.
TEST(FicherosE2E, DescriptorsPastTheTableAreUsedButNotRecorded) {
    rlimit lim{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &lim), 0);
    if (lim.rlim_cur < kTabla + 64) {
        lim.rlim_cur = lim.rlim_max == RLIM_INFINITY ? kTabla + 64 : std::min<rlim_t>(lim.rlim_max, kTabla + 64);
        setrlimit(RLIMIT_NOFILE, &lim);
        getrlimit(RLIMIT_NOFILE, &lim);
    }
    if (lim.rlim_cur < kTabla + 64) GTEST_SKIP() << "descriptor limit too low";

    labtest::TempDir dir;
    int base = open("/dev/null", O_RDONLY);
    ASSERT_NE(base, -1);
    std::vector<int> abiertos;
    for (int df = 3; df < kTabla; df++)
        if (fcntl(df, F_GETFD) == -1 && dup2(base, df) == df) abiertos.push_back(df);

    labtest::RunResult r = labtest::Run("override on\n"
                                        "open f cr wo\n"
                                        "writestr 4096 past\n"
                                        "dup2 4096 50\n"
                                        "listopen 51\n"
                                        "listopen -1\n"
                                        "listopen 99999\n"
                                        "close 4096\n"
                                        "close 4096\n"
                                        "dup 4096\n",
                                        dir.path(), InheritAll());
    for (int df : abiertos) close(df);
    if (std::find(abiertos.begin(), abiertos.end(), base) == abiertos.end()) close(base);

    ASSERT_TRUE(r.exited()) << r.out;
    EXPECT_EQ(r.exitCode(), 0);
    EXPECT_EQ(labtest::ReadFile(dir / "f"), "past");
    const std::string out = r.out;
    EXPECT_NE(out.find("Anadida entrada -1 a la tabla ficheros abiertos\n"), std::string::npos) << out;
    EXPECT_NE(out.find("descriptor: 50, offset: (4)-> dupplicado de 4096 ((null)) O_WRONLY \n"), std::string::npos);
    std::vector<std::string> ls = Lineas(out);
    int ultimas = 0, primeras = 0;
    for (const std::string &l : ls) {
        ultimas += l.find("descriptor: 4095, offset:") != std::string::npos;
        primeras += l.find("descriptor: 0, offset:") != std::string::npos;
        EXPECT_EQ(l.find("descriptor: 4096"), std::string::npos) << l;
    }
    EXPECT_EQ(primeras, 3);  // listopen 51, -1 and 99999
    EXPECT_EQ(ultimas, 2);   // -1 and 99999 run to the end of the table
    EXPECT_NE(r.err.find("Imposible cerrar descriptor: Bad file descriptor\n"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("Inposible duplicar descriptor: Bad file descriptor\n"), std::string::npos) << r.err;
}

// Runs the shell on `input` in `dir`, as the unprivileged user when the test
// runs as root; returns what it printed.
std::string EjecutarSinPrivilegios(const std::string &dir, const std::string &input, int *estado) {
    std::string entrada = dir + "/.entrada", salida = dir + "/.salida";
    labtest::WriteFile(entrada, input);
    pid_t pid = fork();
    if (pid == 0) {
        int in = open(entrada.c_str(), O_RDONLY);
        int out = open(salida.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (in == -1 || out == -1 || chdir(dir.c_str()) == -1) _exit(126);
        // Above the standard numbers first, so that none is lost if the
        // test itself started with one of them closed.
        in = fcntl(in, F_DUPFD, 10);
        out = fcntl(out, F_DUPFD, 10);
        dup2(in, 0);
        dup2(out, 1);
        dup2(out, 2);
        // Nothing else the test runner had open reaches the shell's table.
        for (int df = 3; df < 65536; df++) close(df);
        if (getuid() == 0 && (setgroups(0, nullptr) == -1 || setgid(65534) == -1 || setuid(65534) == -1)) _exit(125);
        std::string bin = labtest::LabshBinary();
        execl(bin.c_str(), bin.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    waitpid(pid, estado, 0);
    return labtest::ReadFile(salida);
}

TEST(FicherosE2E, DeltreeStopsAtAnEntryTheUserMayNotRemove) {
    labtest::TempDir dir;
    const std::string top = dir / "top";
    ASSERT_EQ(chmod(dir.path().c_str(), 0777), 0);
    ASSERT_EQ(mkdir(top.c_str(), 0777), 0);
    for (const char *n : {"f1", "f2", "f3", "f4", "f5", "f6"}) labtest::WriteFile(top + "/" + n, "x");
    ASSERT_EQ(mkdir((top + "/cerrado").c_str(), 0777), 0);
    labtest::WriteFile(top + "/cerrado/dentro", "y");
    // As root the shell runs as nobody and cerrado stays root's; as anybody
    // else, cerrado simply has no write permission.
    ASSERT_EQ(chmod(top.c_str(), 0777), 0);
    ASSERT_EQ(chmod((top + "/cerrado").c_str(), 0555), 0);

    std::vector<std::string> orden;
    DIR *d = opendir(top.c_str());
    ASSERT_NE(d, nullptr);
    while (dirent *e = readdir(d))
        if (std::string(e->d_name) != "." && std::string(e->d_name) != "..") orden.push_back(e->d_name);
    closedir(d);

    int estado = 0;
    std::string out = EjecutarSinPrivilegios(dir.path(), "override on\ndeltree top\nlistopen 5\n", &estado);
    chmod((top + "/cerrado").c_str(), 0755);
    ASSERT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0) << estado << out;
    EXPECT_NE(out.find("Imposible borrar top: Permission denied\n"), std::string::npos) << out;
    bool antes = true;
    for (const std::string &e : orden) {
        bool existe = access((top + "/" + e).c_str(), F_OK) == 0;
        if (e == "cerrado") {
            antes = false;
            EXPECT_TRUE(existe);
            EXPECT_EQ(access((top + "/cerrado/dentro").c_str(), F_OK), 0);
        } else {
            EXPECT_EQ(existe, !antes) << e;
        }
    }
    // The failed walk leaves no descriptor behind.
    EXPECT_NE(out.find("descriptor: 3, offset: (  )-> no usado \n"), std::string::npos) << out;
}

// Another process creates and removes a tree while the shell walks it: the
// shell must never crash, and prints only the documented kinds of line.
TEST(FicherosE2E, DirectoriesThatVanishDuringAWalk) {
    labtest::TempDir dir;
    const std::string arbol = dir / "arbol";
    pid_t agitador = fork();
    if (agitador == 0) {
        namespace fs = std::filesystem;
        for (unsigned i = 0;; i++) {
            std::error_code ec;
            fs::create_directories(arbol + "/a/b/c", ec);
            fs::create_directories(arbol + "/.h/d", ec);
            for (const char *f : {"/a/x", "/a/b/y", "/a/b/c/z", "/.h/d/w"}) {
                int df = open((arbol + f).c_str(), O_CREAT | O_WRONLY, 0644);
                if (df != -1) close(df);
            }
            if (i % 3 == 0) symlink("a", (arbol + "/enlace").c_str());
            fs::remove_all(arbol, ec);
        }
    }
    std::string script = "prompt $%n\noverride on\nsetdirparams reca hid long link\n";
    for (int i = 0; i < 150; i++)
        script += "listrec -hid -long -link arbol\nlistrev -acc arbol\nlist -reca arbol/a\ndir -d arbol\n"
                  "deltree arbol/a\n";
    script += "writestr 1 FIN\n";
    labtest::RunResult r = labtest::Run(script, dir.path());
    kill(agitador, SIGKILL);
    waitpid(agitador, nullptr, 0);

    ASSERT_TRUE(r.exited()) << "status " << r.status;
    EXPECT_EQ(r.exitCode(), 0);
    // Each line may begin with prompts, whatever form they take.
    const std::regex permitidas(
        R"((?:\$|-> |[^@ ]*@[^{]*\{[^}]*\} %\) )*()"
        R"(\*{12}arbol.*| +\d+  \S+( -> .*)?| +\d+  \d{4}/\d\d/\d\d-\d\d:\d\d \S+|)"
        R"(\d{4}/\d\d/\d\d-\d\d:\d\d +\d+ \( *\d+\) +\S+ +\S+ [-dlrwxst]{10} +\d+ \S+( -> .*)?|)"
        R"( \*\*\*\*error al acceder a \S+:(No such file or directory|Not a directory)|)"
        R"(Error al listar directorio arbol(/a)?:No such file or directory|)"
        R"(Imposible borrar arbol/a: (No such file or directory|Directory not empty|Not a directory)|)"
        R"(la ejecucion de comandos que no son de las practicas esta habilitada|FIN.*)?)");
    std::vector<std::string> ls = Lineas(r.out);
    // The start-up lines come before the answer to override.
    size_t i = 0;
    while (i < ls.size() && ls[i].find("habilitada") == std::string::npos) i++;
    ASSERT_LT(i, ls.size()) << r.out;
    for (; i < ls.size(); i++) EXPECT_TRUE(std::regex_match(ls[i], permitidas)) << ls[i];
    // Every command ran, up to the last one.
    EXPECT_NE(r.out.find("FIN"), std::string::npos);
    EXPECT_EQ(r.err, "");
}

// The expectation of a recursive listing, built from the order in which the
// system returns the entries (never sorted).
void Esperado(const std::string &base, const std::string &rel, bool antes, std::string &out) {
    std::vector<std::string> nombres;
    DIR *d = opendir((base + "/" + rel).c_str());
    while (dirent *e = readdir(d))
        if (e->d_name[0] != '.') nombres.push_back(e->d_name);
    closedir(d);
    std::string propio = "************" + rel + "\n";
    for (const std::string &n : nombres) {
        struct stat s;
        lstat((base + "/" + rel + "/" + n).c_str(), &s);
        char linea[600];
        snprintf(linea, sizeof linea, " %7lu  %s\n", static_cast<unsigned long>(s.st_size), n.c_str());
        propio += linea;
    }
    std::string subdirs;
    for (const std::string &n : nombres) {
        struct stat s;
        if (lstat((base + "/" + rel + "/" + n).c_str(), &s) == 0 && S_ISDIR(s.st_mode))
            Esperado(base, rel + "/" + n, antes, subdirs);
    }
    out += antes ? subdirs + propio : propio + subdirs;
}

TEST(FicherosE2E, RecursiveListingsFollowTheSystemsEntryOrder) {
    labtest::TempDir dir;
    labtest::Shell("mkdir -p r/s1/t r/s2 r/s3/u/v && for d in r r/s1 r/s2 r/s3 r/s1/t r/s3/u/v; do "
                   "printf 12 > $d/f1; printf 1234 > $d/f2; ln -s f1 $d/l; done && printf x > r/.oculto",
                   dir.path());
    std::string despues, antes;
    Esperado(dir.path(), "r", false, despues);
    Esperado(dir.path(), "r", true, antes);
    labtest::RunResult r = labtest::Run("prompt $%n\noverride on\nlistrec r\nlistrev r\n", dir.path());
    // Whole blocks, in this order; only the prompt stands between them.
    size_t en = r.out.find(despues);
    ASSERT_NE(en, std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("************", en + despues.size()), r.out.find(antes, en + despues.size())) << r.out;
    EXPECT_NE(r.out.find(antes, en + despues.size()), std::string::npos) << r.out;
}

}  // namespace
