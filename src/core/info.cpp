// Facts about the shell and its system, and the working and root directory.
#include "core/core.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "files/files.h"

namespace {

constexpr const char *VERSION = "6.I.02";

bool Igual(const char *a, std::string_view b) { return a != nullptr && b == a; }

void LineaFecha() { printf("%s\n", ConvertirDia(time(nullptr))); }
void LineaHora() { printf("%s\n", ConvertirHora(time(nullptr))); }

constexpr const char *TEXTO_SYSTEMD =
    "systemd es el sistema de arranque (init) y gestor de servicios de la mayoria\n"
    "de las distribuciones de Linux actuales. Se ejecuta como proceso 1: arranca el\n"
    "sistema, lanza y vigila los servicios (unidades) y se ocupa tambien del registro\n"
    "de mensajes, las sesiones de usuario, los dispositivos y parte de la red.\n"
    "Sus partidarios valoran el arranque en paralelo y la configuracion uniforme; sus\n"
    "criticos, que reuna en un solo proyecto tareas que antes hacian programas\n"
    "pequenos e independientes. Algunas distribuciones siguen sin usarlo:\n";

constexpr const char *DISTROS_SIN_SYSTEMD =
    "  Devuan\n"
    "  Gentoo\n"
    "  Alpine Linux\n"
    "  Void Linux\n"
    "  Slackware\n"
    "  Artix Linux\n"
    "  antiX\n"
    "  MX Linux\n"
    "  PCLinuxOS\n"
    "  Obarun\n"
    "  Chimera Linux\n"
    "  GNU Guix System\n"
    "  ...\n";

}  // namespace

void Cmd_version(char *tr[]) {
    printf("%s del shell %s ", tr[-1], VERSION);
    if (FechaEjecutable != -1)
        printf("Fecha ejecutable: %s, %s", ConvertirDia(FechaEjecutable), ConvertirHora(FechaEjecutable));
    printf("\n");
}

void Cmd_fecha(char *tr[]) {
    if (tr[0] == nullptr) {
        LineaHora();
        LineaFecha();
    } else if (Igual(tr[0], "-d")) {
        LineaFecha();
    } else if (Igual(tr[0], "-t")) {
        LineaHora();
    }
}

void Cmd_date(char *[]) { LineaFecha(); }
void Cmd_time(char *[]) { LineaHora(); }

void Cmd_pid(char *tr[]) {
    if (Igual(tr[0], "-p"))
        Cmd_ppid(tr + 1);
    else
        printf("Pid de shell: %d\n", static_cast<int>(getpid()));
}

void Cmd_ppid(char *[]) { printf("Pid del padre del shell: %d\n", static_cast<int>(getppid())); }

void Cmd_authors(char *tr[]) {
    if (tr[0] == nullptr)
        printf("Nombre del autor1: login del autor1\nNombre del autor2: login del autor2\n");
    else if (Igual(tr[0], "-l"))
        printf("login del autor1\nlogin del autor2\n");
    else if (Igual(tr[0], "-n"))
        printf("Nombre del autor1\nNombre del autor2\n");
}

void Cmd_systemd(char *tr[]) {
    if (tr[0] == nullptr) {
        printf("%s", TEXTO_SYSTEMD);
        printf("%s", DISTROS_SIN_SYSTEMD);
    } else if (Igual(tr[0], "-d")) {
        printf("%s", DISTROS_SIN_SYSTEMD);
    }
}

void Cmd_sysinfo(char *[]) {
    struct utsname u;
    if (uname(&u) == -1) {
        ErrorSistema("Imposible obtener informacion del sistema");
        return;
    }
    printf("%s (%s), OS: %s-%s-%s\n", u.nodename, u.machine, u.sysname, u.release, u.version);
}

void PrintLimits(int recurso, const char *nombre, const char *unidad, unsigned long long divisor) {
    struct rlimit r;
    if (getrlimit(recurso, &r) == -1) {
        printf("No puedo obtener los limites del recurso %s: %s\n", nombre, strerror(errno));
        return;
    }
    // Plain unsigned division: an unlimited value prints as a large number.
    printf("    %s: %llu %s (soft) %llu %s\n", nombre, static_cast<unsigned long long>(r.rlim_cur) / divisor, unidad,
           static_cast<unsigned long long>(r.rlim_max) / divisor, unidad);
}

void PrintLimitsAddressSpace() { PrintLimits(RLIMIT_AS, "Espacio direcciones", "4Kpages", 4096); }
void PrintLimitsDataSize() { PrintLimits(RLIMIT_DATA, "Espacio datos", "Megabytes", 1048576); }
void PrintLimitsFileSize() { PrintLimits(RLIMIT_FSIZE, "Tamano fichero", "Megabytes", 1048576); }
void PrintLimitsOpenFiles() { PrintLimits(RLIMIT_NOFILE, "Ficheros abiertos", "ficheros", 1); }
void PrintLimitsResidentSetSize() {}  // stands in the sequence, prints nothing
void PrintLimitsStackSize() { PrintLimits(RLIMIT_STACK, "Tamano de la pila", "Kilobytes", 1024); }
void PrintLimitsCoreSize() { PrintLimits(RLIMIT_CORE, "Tamano del fichero core", "Kilobytes", 1024); }
void PrintLimitsRamLock() { PrintLimits(RLIMIT_MEMLOCK, "RAM susceptible de lock", "Kilobytes", 1024); }
void PrintLimitsProcessUser() { PrintLimits(RLIMIT_NPROC, "Procesos para este usuario", "procesos", 1); }
void PrintLimitsPseudoTerminals() {}  // stands in the sequence, prints nothing
void PrintLimitsCPU() { PrintLimits(RLIMIT_CPU, "Tiempo de CPU", "secs", 1); }

void PrintAllLimits() {
    PrintLimitsAddressSpace();
    PrintLimitsDataSize();
    PrintLimitsFileSize();
    PrintLimitsOpenFiles();
    PrintLimitsResidentSetSize();
    PrintLimitsStackSize();
    PrintLimitsCoreSize();
    PrintLimitsRamLock();
    PrintLimitsProcessUser();
    PrintLimitsPseudoTerminals();
    PrintLimitsCPU();
}

void Cmd_limits(char *[]) {
    printf("*Limites*****\n");
    PrintAllLimits();
}

void Cmd_chdir(char *tr[]) {
    if (tr[0] == nullptr)
        PrintDirActual();
    else if (chdir(tr[0]) == -1)
        ErrorSistema("Imposible cambiar directorio");
}

void Cmd_chroot(char *tr[]) {
    if (tr[0] == nullptr)
        PrintDirActual();
    else if (chroot(tr[0]) == -1)
        ErrorSistema("Imposible cambiar directorio root");
}

void Cmd_pwd(char *[]) { PrintDirActual(); }
