// Normalisation of lines the shell printed: the values each rule finds and
// where, and a listing put in one order whatever order the system gave.
#include <gtest/gtest.h>

#include "compare.h"
#include "normalise.h"

namespace {

using namespace ldiff;

// Every rule on but the one named.
std::vector<bool> Menos(std::string_view off) {
    std::vector<bool> on;
    for (const Rule &r : Rules()) on.push_back(r.name != off);
    return on;
}

// The text with its values replaced by their kinds: "<KIND>" for a fixed
// name, "<KIND#>" for one numbered by first appearance.
std::string Marcado(const std::string &text, const char *off) {
    std::vector<bool> on = Menos(off);
    const RunFacts facts{"/tmp/labsh-diff.Ab12Cd"};
    return Replace(text, FindValues(text, facts, on),
                   [](const Value &v, std::string_view) { return "<" + v.kind + (v.fixed ? ">" : "#>"); });
}

TEST(Normalise, FindsTheValuesOfEachRule) {
    struct Caso {
        const char *off;  // a rule turned off, or none
        std::string in, out;
    } casos[] = {
        {"", "Ejecutar /work/build/labsh -p para importar el path\n\nversion del shell 6.I.02 Fecha ejecutable: "
             "24/11/2026, 08:55:36\n",
         "Ejecutar <SHELL> -p para importar el path\n\nversion del shell 6.I.02 Fecha ejecutable: <FECHAEJEC>\n"},
        {"fechaejecutable", "numserie del shell 6.I.02 Fecha ejecutable: 24/11/2026, 08:55:36\n",
         "numserie del shell 6.I.02 Fecha ejecutable: <FECHA#>, <HORA#>\n"},
        {"", "08:55:40\n24/11/2026\nPid de shell: 21071\nPid del padre del shell: 21065\n",
         "<HORA#>\n<FECHA#>\nPid de shell: <PID#>\nPid del padre del shell: <PID#>\n"},
        {"", "%p>%B{%d}%b  --->  21071>labsh-diff.Ab12Cd{/tmp/labsh-diff.Ab12Cd} \n"
             "Pid%b%p%t%u%m%n%d%b$%b  --->  Pid 259\trootvm\n/tmp/labsh-diff.Ab12Cd/s $ \n",
         "%p>%B{%d}%b  --->  <PID#>><DIRBASE>{<DIR>} \nPid%b%p%t%u%m%n%d%b$%b  --->  Pid <PID#>\trootvm\n<DIR>/s $ \n"},
        {"", "2026/11/24-08:55   1 (10953478)     root     root -rwxr-xr-x        0 f1\n"
             "2026/11/24-08:55   3 (  953475) ana_maria  ?????? drwxrwxrwt    12288 ..\n2026/11/24-08:55 3 (x)\n",
         "<FECHA#>   1 (<INODO#>)     root     root -rwxr-xr-x        0 f1\n"
         "<FECHA#> <PADRE> (<INODO#>) ana_maria  ?????? drwxrwxrwt <PADRE> ..\n<FECHA#> 3 (x)\n"},
        {"", "    4096  ..\n       0  2026/11/24-08:55 ..\n    4096  d1\n",
         " <PADRE>  ..\n <PADRE>  <FECHA#> ..\n    4096  d1\n"},
        {"", "******Lista de bloques asignados malloc para el proceso 21071\n"
             "      0x55e6c2aa9410              100 Nov 24 08:55 malloc\n"
             "      0x7f4350c7e000             1000 Nov  4 08:55 shared (key 4321)\n",
         "******Lista de bloques asignados malloc para el proceso <PID#>\n      <A#>              100 <FECHA#> malloc\n"
         "      <A#>             1000 <FECHA#> shared (key 4321)\n"},
        {"", "Volcando 25 bytes desde la direccion 0x5641c043c4d0\n0x5641c043c4d0->   A  \\  n\n"
             "0x5641c043c4d0->  41 5c 6e\nVolcando 0 bytes desde la direccion 0x1\npila 0 bytes en (nil)\n"
             "pila 0 bytes en 0x0\nDireccion 0 no asignada\n",
         "Volcando 25 bytes desde la direccion <A#>\n<A#>->   A  \\  n\n<A#>->  41 5c 6e\n"
         "Volcando 0 bytes desde la direccion 0x1\npila 0 bytes en (nil)\npila 0 bytes en 0x0\n"
         "Direccion 0 no asignada\n"},
        {"", "0x7fff1c4a1db8->main arg3[0]=(0x7fff1c4a3b3b) HOME=/root\n"
             "       USR1: No Enmascarada 0x55e6bc509530 -show  -sleep:0 \n",
         "<A#>->main arg3[0]=(<A#>) HOME=/root\n       USR1: No Enmascarada <A#> -show  -sleep:0 \n"},
        {"direcciones", "Recibida senal USR1 1 veces en 0x7ffe16fcd51c\n",
         "Recibida senal USR1 1 veces en 0x7ffe16fcd51c\n"},
        {"", "SF de 20000 bytes con capacidad para 6 ficheros Tue Nov 24 09:03:28 2026\n",
         "SF de 20000 bytes con capacidad para 6 ficheros <FECHA#>\n"},
        {"", "p %)  21075        root p=0 2026/10/24 08:55:40 ACTIVO (000) sleep 1\n"
             "1234567 uid -000001 p=-1 2026/00/24 08:55:7 TERMINADO (255) NULL\n"
             "Proceso 21075 terminado normalmente. Valor devuelto 0\nejecutando proceso 21076\n"
             "Prioridad del proceso 21071 es 0\nPrioridad del proceso 0 es 0\n",
         "p %)<PID#>        root p=0 <FECHA#> ACTIVO (000) sleep 1\n<PID#> uid -000001 p=-1 <FECHA#> TERMINADO (255) "
         "NULL\nProceso <PID#> terminado normalmente. Valor devuelto 0\nejecutando proceso <PID#>\n"
         "Prioridad del proceso <PID#> es 0\nPrioridad del proceso 0 es 0\n"},
        {"", "/tmp/labsh-diff.Ab12Cd/sub\n/tmp/labsh-diff.Ab12Cdx\nLinux@vm{labsh-diff.Ab12Cd} %) 5 23\n",
         "<DIR>/sub\n/tmp/labsh-diff.Ab12Cdx\nLinux@vm{<DIRBASE>} %) 5 23\n"},
    };
    for (const Caso &c : casos) EXPECT_EQ(Marcado(c.in, c.off), c.out) << c.in;
}

// A job's pid one digit longer in one run, then printed without padding.
TEST(Normalise, APaddedPidIsNamedByItsDigits) {
    auto job = [](const char *pid) {
        return std::string(pid) + "        root p=0 2026/10/24 08:55:40 ACTIVO (000) sleep 1\nProceso " +
               std::string(pid).substr(std::string(pid).find_first_not_of(' ')) + " terminado normalmente\n";
    };
    Pieces a, b;
    a.lines = {job("  99999")}, b.lines = {job(" 100000")};
    NameValues(a, {"/a"}, &b, {"/b"}, Menos(""));
    EXPECT_EQ(a.lines, b.lines);
    EXPECT_EQ(a.lines[0], "<PID1>        root p=0 <FECHA1> ACTIVO (000) sleep 1\nProceso <PID1> terminado normalmente\n");
}

TEST(Normalise, SortsTheEntriesOfEachDirectoryAndItsSubdirectories) {
    const std::vector<bool> on = Menos("");
    const std::string reca = "************t\n    4096  d2\n       0  b\n    4096  d1\n************t/d2\n       0  y\n"
                             "************t/d1\n",
                      recb = "************t/d2\n       0  y\n************t/d1\n************t\n    4096  d2\n"
                             "    4096  d1\n       0  b\n";
    struct Caso {
        std::string in, out;
    } casos[] = {
        {reca,
         "************t\n       0  b\n    4096  d1\n    4096  d2\n************t/d1\n************t/d2\n       0  y\n"},
        {"************t\n    4096  d1\n       0  b\n    4096  d2\n************t/d1\n************t/d2\n       0  y\n",
         Reorder(reca, on)},
        {recb,
         "************t/d1\n************t/d2\n       0  y\n************t\n       0  b\n    4096  d1\n    4096  d2\n"},
        {"p %) ************a\n2026/11/24-08:55   1 (    12)     root     root -rwxr-xr-x        0 z -> b\n"
         " ****error al acceder a m:Permission denied\n       0  a\n    12 ab\n       0  0\n",
         "p %) ************a\n       0  a\n ****error al acceder a m:Permission denied\n"
         "2026/11/24-08:55   1 (    12)     root     root -rwxr-xr-x        0 z -> b\n    12 ab\n       0  0\n"},
    };
    for (const Caso &c : casos) EXPECT_EQ(Reorder(c.in, on), c.out) << c.in;
    EXPECT_EQ(Reorder(reca, Menos("orden")), reca);
}

}  // namespace
