// Internal operations of the processes subsystem.
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <string>
#include <unistd.h>
#include <vector>

#include "core/core.h"
#include "processes/processes.h"
#include "support/session.h"

namespace {

std::vector<char *> Vector(std::vector<std::string> &words) {
    std::vector<char *> v;
    for (std::string &w : words) v.push_back(w.data());
    v.push_back(nullptr);
    return v;
}

TEST(Entorno, BuscarVariableMatchesWholeNamesOnly) {
    char ab[] = "AB=1", a[] = "A=2";
    char *e[] = {ab, a, nullptr};
    EXPECT_EQ(BuscarVariable("A", e), 1);
    EXPECT_EQ(BuscarVariable("AB", e), 0);
    errno = 0;
    EXPECT_EQ(BuscarVariable("B", e), -1);
    EXPECT_EQ(errno, ENOENT);
    // A name too long for the search buffer is not found by a prefix of it.
    std::string largo(600, 'A');
    EXPECT_EQ(BuscarVariable(largo.c_str(), e), -1);
    EXPECT_EQ(BuscarVariable("A", nullptr), -1);
}

TEST(Entorno, SustituirVariableChecksBothNames) {
    char a[] = "LABSH_UA=1", b[] = "LABSH_UB=2";
    char *e[] = {a, b, nullptr};
    errno = 0;
    EXPECT_EQ(SustituirVariable("LABSH_UA", "LABSH_UB", "x", e), -1);
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(SustituirVariable("LABSH_UZ", "LABSH_UC", "x", e), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(SustituirVariable("LABSH_UA", "LABSH_UC", "x", e), 0);
    EXPECT_STREQ(e[0], "LABSH_UC=x");
    EXPECT_EQ(CambiarVariable("LABSH_UB", "y", e), 1);
    EXPECT_STREQ(e[1], "LABSH_UB=y");
    EXPECT_EQ(CambiarVariableMalOverwrite("LABSH_UB", "z", nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EntornoClear();
}

TEST(Entorno, MalStaticSharesOneString) {
    char a[] = "LABSH_SA=1", b[] = "LABSH_SB=2";
    char *e[] = {a, b, nullptr};
    EXPECT_EQ(CambiarVariableMalStatic("LABSH_SA", "x", e), 0);
    // The buffer already in slot 0 now reads LABSH_SB, so that slot is found.
    EXPECT_EQ(CambiarVariableMalStatic("LABSH_SB", "y", e), 0);
    EXPECT_STREQ(e[0], "LABSH_SB=y");
    EXPECT_STREQ(e[1], "LABSH_SB=2");
}

TEST(Ejecucion, ComprobarEntornoStopsAtItsCapacity) {
    std::vector<std::string> w(200, "LABSH_V=1");
    w.push_back("env");
    auto v = Vector(w);
    char *env[MAXENTORNO + 1];
    EXPECT_EQ(ComprobarEntorno(v.data(), env), MAXENTORNO);
    EXPECT_EQ(env[MAXENTORNO], nullptr);

    std::vector<std::string> n{"NULLENV", "env"};
    auto vn = Vector(n);
    EXPECT_EQ(ComprobarEntorno(vn.data(), env), 1);
    EXPECT_EQ(env[0], nullptr);

    std::vector<std::string> p{"ls", "X=1"};
    auto vp = Vector(p);
    EXPECT_EQ(ComprobarEntorno(vp.data(), env), 0);
}

TEST(Ejecucion, BackgroundAndPriorityWords) {
    std::vector<std::string> w{"ls", "-l", "&", "x"};
    auto v = Vector(w);
    EXPECT_EQ(ComprobarSegundoPlano(v.data()), 1);
    EXPECT_EQ(v[2], nullptr);
    EXPECT_EQ(ComprobarSegundoPlano(v.data()), 0);

    std::vector<std::string> p{"ls", "@5", "-l", "@7"};
    auto vp = Vector(p);
    int prio = 0;
    EXPECT_EQ(ComprobarPrioridad(vp.data(), &prio), 1);
    EXPECT_EQ(prio, 5);
    std::vector<std::string> q{"@3", "ls"};
    auto vq = Vector(q);
    EXPECT_EQ(ComprobarPrioridad(vq.data(), &prio), 0);
}

TEST(Ejecucion, EjecutableLooksOnlyForAnEntry) {
    labtest::TempDir d;
    PathClear();
    EXPECT_STREQ(Ejecutable("prog"), "prog");
    ASSERT_EQ(symlink("/nonexistent/target", (d / "colgado").c_str()), 0);
    PathAdd("/nonexistent-dir");
    PathAdd(d.path().c_str());
    EXPECT_EQ(std::string(Ejecutable("colgado")), d / "colgado");
    EXPECT_STREQ(Ejecutable("otro"), "otro");
    EXPECT_STREQ(Ejecutable("./colgado"), "./colgado");
    EXPECT_STREQ(Ejecutable("../colgado"), "../colgado");
    EXPECT_EQ(Ejecutable(nullptr), nullptr);
    std::string largo(3000, 'x');  // cut to the buffer, not past it
    EXPECT_EQ(std::string(Ejecutable(largo.c_str())), largo);
    PathClear();
}

TEST(ListaDeProcesos, HoldsAtMost1023AndKeepsOrder) {
    static ListaProcesos l;
    CrearListaProcesos(&l);
    std::vector<std::string> w{"sleep", "10"};
    auto v = Vector(w);
    for (int i = 1; i <= MAXPROCESOS - 1; i++) ASSERT_EQ(MeterProceso(&l, 100000 + i, 0, v.data()), i);
    errno = 0;
    EXPECT_EQ(MeterProceso(&l, 5, 0, v.data()), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_STREQ(l.procesos[0].linea, "sleep 10");
    EXPECT_EQ(BorrarProcesoPid(&l, 100002), 0);
    EXPECT_EQ(l.procesos[1].pid, 100003);
    EXPECT_EQ(BorrarProcesoPid(&l, 100002), -1);
    EXPECT_EQ(borrarProceso(&l, l.n), -1);
    EXPECT_EQ(errno, EINVAL);
    l.procesos[0].estado = TERMINADO;
    l.procesos[5].estado = SENALADO;
    l.procesos[7].estado = PARADO;
    EXPECT_EQ(BorrarProcesosEstado(&l, SENALADO), 0);
    EXPECT_EQ(l.n, MAXPROCESOS - 3);
    EXPECT_EQ(EstadoProcesoPid(&l, 100001), TERMINADO);
    EXPECT_EQ(EstadoProcesoPid(&l, 1), -1);
    EXPECT_EQ(BorrarProcesosEstado(&l, TERMINADO | PARADO), 0);
    EXPECT_EQ(l.n, MAXPROCESOS - 5);
    EXPECT_EQ(BorrarProcesosEstado(&l, 0), 0);
    VaciarListaProcesos(&l);
    EXPECT_EQ(l.n, 0);
}

TEST(ListaDeProcesos, LineParts) {
    std::vector<std::string> w{"ls", "-l", "/tmp"};
    auto v = Vector(w);
    char *linea = crearLineaComando(v.data());
    EXPECT_STREQ(linea, "ls -l /tmp");
    free(linea);
    char *vacio[] = {nullptr};
    EXPECT_EQ(crearLineaComando(vacio), nullptr);

    EXPECT_STREQ(nombreEstado(ACTIVO), "ACTIVO");
    EXPECT_STREQ(nombreEstado(TERMINADO), "TERMINADO");
    EXPECT_STREQ(nombreEstado(3), "???????");
    EXPECT_STREQ(valorEstado(3), "003");
    EXPECT_STREQ(valorEstado(255), "255");
    EXPECT_STREQ(valorEstado(INT_MAX), "2147");
    EXPECT_STREQ(nombreUsuario(-1), "uid -000001");
    EXPECT_STREQ(nombreUsuario(0), "       root");

    struct tm t {};
    t.tm_year = 2024 - 1900;
    t.tm_mon = 0;
    t.tm_mday = 5;
    t.tm_hour = 3;
    t.tm_min = 4;
    t.tm_sec = 5;
    t.tm_isdst = -1;
    EXPECT_STREQ(fecha(mktime(&t)), "2024/00/05 03:04:5");
}

}  // namespace
