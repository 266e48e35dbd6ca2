// Faults provoked on purpose, the protection that jumps back to the start
// of the loop, and the busy loops stopped by Ctrl-C.
#include <cerrno>
#include <csignal>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <unistd.h>

#include "core/core.h"
#include "signals/signals.h"

namespace {

// Results of the computations, kept so the compiler does not drop them.
volatile double sumidero;
volatile float sumiderof;

void Proteger(int sen, const char *nombre) {
    printf("Protegiendo de %s, el programa volvera al princiio de main\n", nombre);
    printf("El manejador se instala con SA_RESTART, solo se ejecuta una vez\n");
    if (InstalarManejadorSenal(sen, VolverAMain, SA_ONSTACK | SA_RESTART, nullptr) == -1)
        printf("Error al instalar manejador: %s\n", strerror(errno));
}

void BucleUser() {
    double x = 71.72;
    for (int i = 0; i < 300000000; i++) x = std::sqrt(x * x * x);
    sumidero = x;
}

void BucleSys() {
    for (int i = 0; i < 3000000; i++) getpid();
}

void BucleMixto() {
    BucleUser();
    BucleSys();
}

void ManejadorBucle(int) {
    constexpr char msg[] = "  Manejando SIGINT\n";
    ssize_t n = write(STDOUT_FILENO, msg, sizeof msg - 1);
    (void)n;
    TestSetBucle(1, 0);
}

void BucleInfinito(void (*ronda)(), int dly) {
    TestSetBucle(1, 1);
    constexpr char msg[] = "Iniciando bucle infinito...";
    fflush(stdout);  // written directly: what was printed before goes first
    ssize_t n = write(STDOUT_FILENO, msg, sizeof msg - 1);
    (void)n;
    while (TestSetBucle(0, 0)) {
        ronda();
        if (dly) sleep(1);
    }
    printf("terminado\n");
}

}  // namespace

// The jump does not restore the mask: the signal stays blocked, so a second
// fault of the same kind kills the shell.
void VolverAMain(int sen) {
    printf("Manejada senal %s (%d) en %p\n", NombreSenal(sen), sen, static_cast<void *>(&sen));
    fflush(stdout);
    siglongjmp(EstadoGuardado, 23);
}

int TestSetBucle(int set, int valor) {
    static volatile sig_atomic_t bucle = 1;  // cleared by the SIGINT handler
    if (set == 1) bucle = valor;
    return bucle;
}

void Cmd_segmentation(char *[]) {
    fflush(stdout);  // the shell may end here
    // Both the pointer and the store are volatile: the compiler may neither
    // see the null (and trap some other way) nor drop the store.
    volatile std::int32_t *volatile p = nullptr;
    *p = 0;
}

void Cmd_fpe(char *[]) {
    fflush(stdout);  // the shell may end here
    volatile int cero = 0;  // divided at run time, never folded away
    volatile int q = 23 / cero;
    // Processors that do not trap on integer division by zero get here. The
    // signal is raised as a trap would raise it: a blocked or ignored trap
    // takes the default action, so a second fault still ends the shell.
    if (EstaEnmascaradaSenal(SIGFPE) || EstaIgnoradaSenal(SIGFPE)) {
        signal(SIGFPE, SIG_DFL);
        DesenmascararSenal(SIGFPE);
    }
    raise(SIGFPE);
    float f = static_cast<float>(q);
    f = std::numeric_limits<float>::infinity();
    sumiderof = std::sqrt(f);
}

void Cmd_protectsegv(char *[]) { Proteger(SIGSEGV, "SEGV"); }
void Cmd_protectfpe(char *[]) { Proteger(SIGFPE, "FPE"); }

void Cmd_bucle(char *tr[]) {
    InstalarManejadorSenal(SIGINT, ManejadorBucle, SA_RESETHAND, nullptr);
    DesenmascararSenal(SIGINT);
    void (*ronda)() = BucleUser;
    int dly = 0;
    for (int i = 0; tr[i] != nullptr; i++) {
        std::string_view w = tr[i];
        if (w == "-user")
            ronda = BucleUser;
        else if (w == "-sys")
            ronda = BucleSys;
        else if (w == "-mix")
            ronda = BucleMixto;
        else if (w == "-dly")
            dly = 1;
    }
    BucleInfinito(ronda, dly);
}
