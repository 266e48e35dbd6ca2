// The configurable signal handler, its commands, the re-send limit, the
// alternate signal stack and the flag that keeps the shell alive when a
// signal interrupts the read of input.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

#include "files/files.h"
#include "signals/signals.h"
#include "core/core.h"

int cont[MAXSENALES];
int v[MAXSENALES];
int r[MAXSENALES];
int delay[MAXSENALES];
int maxreenvios;
volatile sig_atomic_t HaySenales = 0;

void handler(int sen) {
    if (sen < 0 || sen >= MAXSENALES) return;
    cont[sen]++;
    // The parameter's address tells on which stack the handler runs.
    if (v[sen]) {
        printf("Recibida senal %s %d veces en %p\n", NombreSenal(sen), cont[sen], static_cast<void *>(&sen));
        // Out at once: the shell may be waiting for input, or about to nest
        // until its stack overflows.
        fflush(stdout);
    }
    if (r[sen] && (maxreenvios == 0 || cont[sen] < maxreenvios)) kill(getpid(), sen);
    if (delay[sen] > 0) sleep(static_cast<unsigned>(delay[sen]));  // "-sleep-5" must not hang
}

void Showstack() {
    stack_t viejo{};
    if (sigaltstack(nullptr, &viejo) == -1) {
        ErrorSistema("Imposible obtener pila");
        return;
    }
    printf("pila %ld bytes en %p\n", static_cast<long>(viejo.ss_size), viejo.ss_sp);
}

void Setstack(char *tr[]) {
    long tam = atol(tr[0]);
    stack_t nuevo{};
    bool propia = tr[1] == nullptr;
    // The stack is the student's from now on: it is never freed once in use.
    nuevo.ss_sp = propia ? malloc(tam > 0 ? static_cast<size_t>(tam) : 1) : cadtop(tr[1]);
    nuevo.ss_size = static_cast<size_t>(tam > 0 ? tam : 0);
    nuevo.ss_flags = 0;
    // The system would take a null base and the next signal on that stack
    // would kill the shell: refuse it (cadtop has set EFAULT).
    if (nuevo.ss_sp == nullptr) {
        if (propia) errno = ENOMEM;
        ErrorSistema("Imposible establecer pila");
        return;
    }
    if (sigaltstack(&nuevo, nullptr) == -1) {
        int e = errno;
        if (propia) free(nuevo.ss_sp);
        errno = e;
        ErrorSistema("Imposible establecer pila");
    }
}

void Cmd_sighandler(char *tr[]) {
    int show = 0, resend = 0, dormir = 0, flags = 0;
    sigset_t mascara;
    sigemptyset(&mascara);
    int i = 0;
    for (; tr[i] != nullptr; i++) {
        std::string_view w = tr[i];
        if (w == "-show")
            show = 1;
        else if (w == "-resend")
            resend = 1;
        else if (w.starts_with("-sleep"))
            dormir = atoi(tr[i] + 6);
        else if (w == "-Fonstack")
            flags |= SA_ONSTACK;
        else if (w == "-Fnodefer")
            flags |= SA_NODEFER;
        else if (w == "-Fresethand")
            flags |= SA_RESETHAND;
        else if (w == "-Frestart")
            flags |= SA_RESTART;
        else if (w.starts_with("-mask"))
            AnadirAConjunto(&mascara, ValorSenal(tr[i] + 5));
        else
            break;
    }
    for (; tr[i] != nullptr; i++) {
        int sen = ValorSenal(tr[i]);
        if (sen == -1) {
            printf("No existe senal %s\n", tr[i]);
            continue;
        }
        if (sen < MAXSENALES) {
            v[sen] = show;
            r[sen] = resend;
            delay[sen] = dormir;
        }
        InstalarManejadorSenal(sen, handler, flags, &mascara);
    }
}

void Cmd_sigaction(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarInfoTodasSenales();
        return;
    }
    std::string_view op = tr[0];
    if (op == "-default")
        Cmd_sigdefault(tr + 1);
    else if (op == "-ignore")
        Cmd_sigignore(tr + 1);
    else if (op == "-handler")
        Cmd_sighandler(tr + 1);
    else
        for (int i = 0; tr[i] != nullptr; i++) MostrarInfoSenal(tr[i]);
}

void Cmd_limitresend(char *tr[]) {
    if (tr[0] == nullptr) {
        if (maxreenvios == 0)
            printf("limitresend: off\n");
        else
            printf("limitresend: %d\n", maxreenvios);
        return;
    }
    maxreenvios = strcmp(tr[0], "off") == 0 ? 0 : atoi(tr[0]);
}

void Cmd_sigaltstack(char *tr[]) {
    if (tr[0] == nullptr)
        Showstack();
    else
        Setstack(tr);
}

void Cmd_usesignals(char *tr[]) {
    if (tr[0] == nullptr) {
        printf("El shell esta %s para el uso de senales\n", HaySenales ? "preparado" : "no preparado");
        printf("\tEsto condiciona si el shell termina cuando la lectura de techado da error\n");
        return;
    }
    if (strcmp(tr[0], "on") == 0)
        HaySenales = 1;
    else if (strcmp(tr[0], "off") == 0)
        HaySenales = 0;
    else
        printf("parametro no valido: %s\n", tr[0]);
}
