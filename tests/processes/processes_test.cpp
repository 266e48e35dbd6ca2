// Internal operations of the processes subsystem.
#include <gtest/gtest.h>

#include <cerrno>
#include <ctime>
#include <string>
#include <vector>

#include "processes/processes.h"

namespace {

TEST(ProcesosEjecucion, ComprobarEntornoStopsAtItsCapacity) {
    static char var[] = "LABSH_V=1", prog[] = "env";
    char *tr[256] = {};
    for (int i = 0; i < 200; i++) tr[i] = var;
    tr[200] = prog;
    char *env[MAXENTORNO + 1];
    EXPECT_EQ(ComprobarEntorno(tr, env), MAXENTORNO);
    EXPECT_EQ(env[MAXENTORNO], nullptr);
}

TEST(ProcesosListaDeProcesos, HoldsAtMost1023AndKeepsOrder) {
    static ListaProcesos l;
    CrearListaProcesos(&l);
    char sleep[] = "sleep", diez[] = "10";
    char *tr[] = {sleep, diez, nullptr};
    for (int i = 1; i < MAXPROCESOS; i++) ASSERT_EQ(MeterProceso(&l, 100000 + i, 0, tr), i);
    errno = 0;
    EXPECT_EQ(MeterProceso(&l, 5, 0, tr), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_STREQ(l.procesos[0].linea, "sleep 10");
    EXPECT_EQ(BorrarProcesoPid(&l, 100002), 0);
    EXPECT_EQ(l.procesos[1].pid, 100003);
    EXPECT_EQ(BorrarProcesoPid(&l, 100002), -1);
    EXPECT_EQ(borrarProceso(&l, l.n), -1);
    EXPECT_EQ(errno, EINVAL);
    l.procesos[0].estado = TERMINADO;
    l.procesos[5].estado = SENALADO;
    l.procesos[6].estado = SENALADO;
    l.procesos[7].estado = PARADO;
    EXPECT_EQ(BorrarProcesosEstado(&l, SENALADO | PARADO), 0);
    EXPECT_EQ(l.n, MAXPROCESOS - 5);
    EXPECT_EQ(EstadoProcesoPid(&l, 100001), TERMINADO);
    VaciarListaProcesos(&l);
    EXPECT_EQ(l.n, 0);
}

TEST(ProcesosListaDeProcesos, LineParts) {
    char *vacio[] = {nullptr};
    EXPECT_EQ(crearLineaComando(vacio), nullptr);
    EXPECT_STREQ(nombreEstado(3), "???????");
    EXPECT_STREQ(valorEstado(3), "003");
    EXPECT_STREQ(valorEstado(123456), "1234");  // cut to its buffer
    EXPECT_STREQ(nombreUsuario(-1), "uid -000001");
    struct tm t {};
    t.tm_year = 2024 - 1900;
    t.tm_mday = 5;
    t.tm_hour = 3;
    t.tm_min = 4;
    t.tm_sec = 5;
    t.tm_isdst = -1;
    EXPECT_STREQ(fecha(mktime(&t)), "2024/00/05 03:04:5");  // January is month 00
}

}  // namespace
