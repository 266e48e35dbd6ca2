// Descriptors at the end of the 4096-position table and past it: recorded
// when inherited within it, used but never recorded past it, and no listing
// runs past the table. Long listings of many owners and much text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <grp.h>
#include <map>
#include <pwd.h>
#include <sstream>
#include <unistd.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "support/session.h"

namespace {

// Room for descriptors past the shell's 4096-position table.
bool DescriptorsPastTheTable() {
    rlimit lim{};
    getrlimit(RLIMIT_NOFILE, &lim);
    lim.rlim_cur = std::max(lim.rlim_cur, std::min<rlim_t>(lim.rlim_max, 4200));
    return setrlimit(RLIMIT_NOFILE, &lim) == 0 && lim.rlim_cur >= 4200;
}

}  // namespace

TEST(FicherosE2E, DescriptorsPastTheTableAreUsedButNotRecorded) {
    if (!DescriptorsPastTheTable()) GTEST_SKIP() << "descriptor limit too low";
    labtest::TempDir dir;
    std::string script = "override on\n";
    for (int df = 3; df < 4096; df++) script += "dup 1\n";  // fills the table
    script += "open f cr wo\nwritestr 4096 past\ndup2 4096 50\nlistopen 51\nlistopen -1\nlistopen 99999\nclose 4096\nclose 4096\n";
    labtest::RunResult r = labtest::Run(script, dir.path());
    EXPECT_TRUE(r.exited() && r.exitCode() == 0) << r.status;
    EXPECT_EQ(labtest::ReadFile(dir / "f"), "past");
    EXPECT_NE(r.out.find("Anadida entrada -1 a la tabla ficheros abiertos\n"), std::string::npos);
    EXPECT_NE(r.out.find("descriptor: 50, offset: (4)-> dupplicado de 4096 ((null)) O_WRONLY \n"), std::string::npos);
    size_t n = 0;  // -1 and 99999 reach the end of the table, never past it
    for (size_t p = 0; (p = r.out.find("descriptor: 4095,", p)) != std::string::npos; p++) n++;
    EXPECT_EQ(n, 2u);
    EXPECT_EQ(r.out.find("descriptor: 4096"), std::string::npos);
    EXPECT_EQ(r.err, "Imposible cerrar descriptor: Bad file descriptor\n");
}

// Descriptors inherited at any position of the table are recorded with their
// flags at start-up; one past the table is not.
TEST(FicherosE2E, InheritedDescriptorsAreRecordedWherePossible) {
    if (!DescriptorsPastTheTable()) GTEST_SKIP() << "descriptor limit too low";
    labtest::TempDir dir;
    int lectura = open("/dev/null", O_RDONLY);
    int escritura = open((dir / "g").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ASSERT_TRUE(lectura != -1 && escritura != -1);
    const int altos[] = {2000, 4095, 4100};
    for (int df : altos) ASSERT_NE(dup2(escritura, df), -1);
    ldiff::RunSpec o;
    o.keepDescriptors = true;
    labtest::RunResult r = labtest::Run("override on\nlistopen 4096\n", dir.path(), o);
    for (int df : altos) close(df);
    close(escritura);
    auto linea = [&](int df) {
        size_t p = r.out.find("descriptor: " + std::to_string(df) + ",");
        return p == std::string::npos ? std::string() : r.out.substr(p, r.out.find('\n', p) - p);
    };
    EXPECT_EQ(linea(lectura), "descriptor: " + std::to_string(lectura) + ", offset: (0)-> desconocido ");
    close(lectura);
    for (int df : {2000, 4095})
        EXPECT_EQ(linea(df), "descriptor: " + std::to_string(df) + ", offset: (0)-> desconocido O_WRONLY O_APPEND ");
    EXPECT_EQ(linea(4100), "");
}

// More owners than a listing keeps names for, and more text than one piece of
// output: every line comes out once and whole, with its own owner's names.
TEST(FicherosE2E, LongListingNamesEveryOwnerAcrossPieces) {
    if (geteuid() != 0) GTEST_SKIP() << "giving files away needs root";
    labtest::TempDir dir;
    const std::string d = dir / "d";
    ASSERT_EQ(mkdir(d.c_str(), 0755), 0);
    std::map<std::string, std::string> finales;  // file name -> expected end of its line
    for (int i = 0; i < 400; i++) {
        char nombre[256];
        snprintf(nombre, sizeof nombre, "%03d%0200d", i, 0);
        const std::string path = d + "/" + nombre;
        labtest::WriteFile(path, "x");
        const uid_t id = static_cast<uid_t>(i % 40);
        ASSERT_EQ(chown(path.c_str(), id, id), 0);
        ASSERT_EQ(chmod(path.c_str(), 0644), 0);
        const passwd *p = getpwuid(id);
        const group *g = getgrgid(id);  // the group column shows the owner's id as a group
        char fin[600];
        snprintf(fin, sizeof fin, "%9s%9s -rw-r--r-- %8d %s", p ? p->pw_name : " ??????", g ? g->gr_name : "??????",
                 1, nombre);
        finales[nombre] = fin;
    }
    labtest::RunResult r = labtest::Run("override on\nlistdir -long d\n", dir.path());
    EXPECT_TRUE(r.exited() && r.exitCode() == 0) << r.status;
    EXPECT_EQ(r.err, "");
    size_t desde = r.out.find("************d\n");
    ASSERT_NE(desde, std::string::npos);
    std::istringstream lineas(r.out.substr(desde + 14));
    std::map<std::string, int> vistos;
    for (std::string l; std::getline(lineas, l);) {
        std::string nombre = l.substr(l.rfind(' ') + 1);
        if (nombre == "." || nombre == ".." || lineas.eof()) continue;  // the last piece is the prompt
        ASSERT_TRUE(finales.count(nombre)) << l;
        EXPECT_TRUE(l.ends_with(finales[nombre])) << l;
        vistos[nombre]++;
    }
    EXPECT_EQ(vistos.size(), finales.size());
    for (const auto &[nombre, veces] : vistos) EXPECT_EQ(veces, 1) << nombre;
}
