// Signal names, the shell's mask and dispositions, and the commands that
// show and change them.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "signals/signals.h"
#include "core/core.h"

namespace {

// Names without the "SIG" prefix; a name the platform lacks has no row.
// IOT shares ABRT's number and stands after it, so number-to-name lookups
// always find ABRT.
constexpr SenalNombre sigstrnum[] = {
    {"HUP", SIGHUP},
    {"INT", SIGINT},
    {"QUIT", SIGQUIT},
    {"ILL", SIGILL},
    {"TRAP", SIGTRAP},
    {"ABRT", SIGABRT},
#ifdef SIGIOT
    {"IOT", SIGIOT},
#endif
    {"BUS", SIGBUS},
    {"FPE", SIGFPE},
    {"KILL", SIGKILL},
    {"USR1", SIGUSR1},
    {"SEGV", SIGSEGV},
    {"USR2", SIGUSR2},
    {"PIPE", SIGPIPE},
    {"ALRM", SIGALRM},
    {"TERM", SIGTERM},
    {"CHLD", SIGCHLD},
    {"CONT", SIGCONT},
    {"STOP", SIGSTOP},
    {"TSTP", SIGTSTP},
    {"TTIN", SIGTTIN},
    {"TTOU", SIGTTOU},
    {"URG", SIGURG},
    {"XCPU", SIGXCPU},
    {"XFSZ", SIGXFSZ},
    {"VTALRM", SIGVTALRM},
    {"PROF", SIGPROF},
#ifdef SIGWINCH
    {"WINCH", SIGWINCH},
#endif
#ifdef SIGIO
    {"IO", SIGIO},
#endif
    {"SYS", SIGSYS},
#ifdef SIGEMT
    {"EMT", SIGEMT},
#endif
#ifdef SIGINFO
    {"INFO", SIGINFO},
#endif
    {nullptr, -1},
};

constexpr int ULTIMA_LISTADA = 31;  // listings cover 1..31
constexpr int TAMBUF = 1024;

// Appends to a fixed buffer, keeping what fits.
void Anadir(char *buf, const char *txt) {
    size_t usado = strlen(buf);
    if (usado + 1 >= TAMBUF) return;
    snprintf(buf + usado, TAMBUF - usado, "%s", txt);
}

struct sigaction AccionActual(int sen) {
    struct sigaction act {};
    sigaction(sen, nullptr, &act);
    return act;
}

void *DireccionManejador(const struct sigaction &act) {
    if (act.sa_flags & SA_SIGINFO) return reinterpret_cast<void *>(act.sa_sigaction);
    return reinterpret_cast<void *>(act.sa_handler);
}

// Runs a state query for 1..31 and prints the names that pass it.
void MostrarSenalesSi(const char *titulo, int (*esta)(int)) {
    printf("%s", titulo);
    for (int s = 1; s <= ULTIMA_LISTADA; s++)
        if (esta(s)) printf("%s ", NombreSenal(s));
    printf("\n");
}

// Calls `accion` for every known name, skipping the unknown ones silently.
void ParaCadaSenal(char *tr[], void (*accion)(int)) {
    for (int i = 0; tr[i] != nullptr; i++) {
        int sen = ValorSenal(tr[i]);
        if (sen != -1) accion(sen);
    }
}

}  // namespace

int ValorSenal(const char *nombre) {
    if (nombre == nullptr) return -1;
    for (const SenalNombre *p = sigstrnum; p->nombre != nullptr; p++)
        if (std::string_view(p->nombre) == nombre) return p->senal;
    return -1;
}

const char *NombreSenal(int sen) {
    for (const SenalNombre *p = sigstrnum; p->nombre != nullptr; p++)
        if (p->senal == sen) return p->nombre;
    return "SIGUNKNOWN";
}

void AnadirAConjunto(sigset_t *s, int sen) {
    if (sen >= 1 && sen <= MAXSENALCONJUNTO) sigaddset(s, sen);
}

int EnmascararSenal(int sen) {
    sigset_t s;
    sigemptyset(&s);
    AnadirAConjunto(&s, sen);
    return sigprocmask(SIG_BLOCK, &s, nullptr);
}

int DesenmascararSenal(int sen) {
    sigset_t s;
    sigemptyset(&s);
    AnadirAConjunto(&s, sen);
    return sigprocmask(SIG_UNBLOCK, &s, nullptr);
}

int EstaEnmascaradaSenal(int sen) {
    sigset_t viejo;
    sigemptyset(&viejo);
    sigprocmask(SIG_BLOCK, nullptr, &viejo);
    return sigismember(&viejo, sen) == 1;
}

int EstaIgnoradaSenal(int sen) { return AccionActual(sen).sa_handler == SIG_IGN; }

int EstaDefectoSenal(int sen) { return AccionActual(sen).sa_handler == SIG_DFL; }

namespace {

// Signals given a handler of the shell's, by number; the last slot stands
// for every number beyond the others. A handler reset by the system on
// delivery (SA_RESETHAND) still counts: the record errs on the safe side.
constexpr int MAXREGISTRO = 65;
bool conManejador[MAXREGISTRO];

void RegistrarManejador(int sen, void (*manejador)(int)) {
    if (sen <= 0) return;
    bool propio = manejador != SIG_DFL && manejador != SIG_IGN;
    if (sen >= MAXREGISTRO - 1)
        conManejador[MAXREGISTRO - 1] = conManejador[MAXREGISTRO - 1] || propio;
    else
        conManejador[sen] = propio;
}

}  // namespace

bool HayManejadoresPropios() {
    for (bool b : conManejador)
        if (b) return true;
    return false;
}

int InstalarManejadorSenal(int sen, void (*manejador)(int), int flags, sigset_t *mascara) {
    RegistrarManejador(sen, manejador);
    struct sigaction act {};
    act.sa_handler = manejador;
    act.sa_flags = flags;
    if (mascara != nullptr)
        act.sa_mask = *mascara;
    else
        sigemptyset(&act.sa_mask);
    return sigaction(sen, &act, nullptr);
}

const char *InfoMascara(const sigset_t *s) {
    static char buf[TAMBUF];
    buf[0] = '\0';
    for (int sen = 1; sen <= MAXSENALCONJUNTO; sen++) {
        if (sigismember(s, sen) != 1) continue;
        Anadir(buf, NombreSenal(sen));
        Anadir(buf, " ");
    }
    return buf[0] == '\0' ? nullptr : buf;
}

// The buffer is never cleared: successive calls pile their words up.
const char *InfoHandlerSenal(int sen) {
    static char buf[TAMBUF];
    struct sigaction act = AccionActual(sen);
    if (act.sa_flags & SA_RESTART) Anadir(buf, "RESTART ");
    if (act.sa_flags & SA_ONSTACK) Anadir(buf, "ONSTACK ");
    if (act.sa_flags & SA_RESETHAND) Anadir(buf, "RESETHAND ");
    if (act.sa_flags & SA_NODEFER) Anadir(buf, "NODEFER ");
    if (const char *m = InfoMascara(&act.sa_mask); m != nullptr) {
        Anadir(buf, "\n\tmascara asociada ");
        Anadir(buf, m);
    }
    return buf;
}

const char *InfoManejador(int sen) {
    static char buf[TAMBUF];
    void *dir = DireccionManejador(AccionActual(sen));
    bool ok = sen >= 0 && sen < MAXSENALES;
    snprintf(buf, sizeof buf, "%p %s %s -sleep:%d %s", dir, ok && v[sen] ? "-show" : "",
             ok && r[sen] ? "-resend" : "", ok ? delay[sen] : 0, InfoHandlerSenal(sen));
    return buf;
}

const char *InfoSenal(int sen) {
    static char buf[TAMBUF];
    const char *accion = EstaIgnoradaSenal(sen)  ? "SIG_IGN"
                         : EstaDefectoSenal(sen) ? "SIG_DFL"
                                                 : InfoManejador(sen);
    snprintf(buf, sizeof buf, "%9s: %s%s", NombreSenal(sen),
             EstaEnmascaradaSenal(sen) ? "Enmascarada    " : "No Enmascarada ", accion);
    return buf;
}

void MostrarInfoSenal(const char *nombre) {
    int sen = ValorSenal(nombre);
    if (sen == -1)
        printf("  senal desconocida:%s\n", nombre);
    else
        printf("  %s\n", InfoSenal(sen));
}

void MostrarInfoTodasSenales() {
    for (int s = 1; s <= ULTIMA_LISTADA; s++) printf("%s\n", InfoSenal(s));
}

void MostrarSenalesIgnoradas() { MostrarSenalesSi("  SENALES SIGNORADAS: ", EstaIgnoradaSenal); }
void MostrarSenalesDefecto() { MostrarSenalesSi("  SENALES ACCION POR DEFECTO: ", EstaDefectoSenal); }
void MostrarSenalesEnmascaradas() { MostrarSenalesSi("  SENALES ENMASCARADAS: ", EstaEnmascaradaSenal); }

void MostrarContSenal(const char *nombre) {
    int sen = ValorSenal(nombre);
    if (sen < 0 || sen >= MAXSENALES)
        printf("  senal desconocida:%s\n", nombre);
    else
        printf("  %s=%d\n", nombre, cont[sen]);
}

void MostrarContTodasSenales() {
    for (int s = 1; s <= ULTIMA_LISTADA; s++) printf("  %s=%d\n", NombreSenal(s), cont[s]);
}

void ClearContSenal(const char *nombre) {
    int sen = ValorSenal(nombre);
    if (sen >= 0 && sen < MAXSENALES) cont[sen] = 0;
}

void ClearContTodasSenales() {
    for (int s = 1; s <= ULTIMA_LISTADA; s++) cont[s] = 0;
}

void Cmd_siginfo(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarInfoTodasSenales();
        return;
    }
    for (int i = 0; tr[i] != nullptr; i++) MostrarInfoSenal(tr[i]);
}

void Cmd_sigcount(char *tr[]) {
    bool cero = tr[0] != nullptr && strcmp(tr[0], "-zero") == 0;
    if (cero) tr++;
    if (tr[0] == nullptr) {
        if (cero)
            ClearContTodasSenales();
        else
            MostrarContTodasSenales();
        return;
    }
    for (int i = 0; tr[i] != nullptr; i++) {
        if (cero)
            ClearContSenal(tr[i]);
        else
            MostrarContSenal(tr[i]);
    }
}

void Cmd_sigdefault(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarSenalesDefecto();
        return;
    }
    ParaCadaSenal(tr, [](int sen) { InstalarManejadorSenal(sen, SIG_DFL, 0, nullptr); });
}

void Cmd_sigignore(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarSenalesIgnoradas();
        return;
    }
    ParaCadaSenal(tr, [](int sen) { InstalarManejadorSenal(sen, SIG_IGN, 0, nullptr); });
}

void Cmd_sigmask(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarSenalesEnmascaradas();
        return;
    }
    ParaCadaSenal(tr, [](int sen) { EnmascararSenal(sen); });
}

void Cmd_sigunmask(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarSenalesEnmascaradas();
        return;
    }
    ParaCadaSenal(tr, [](int sen) { DesenmascararSenal(sen); });
}

void Cmd_sigprocmask(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarSenalesEnmascaradas();
        return;
    }
    // "-block" sets the whole mask, as the lab's exercise expects.
    int operacion = SIG_BLOCK;
    int i = 0;
    for (; tr[i] != nullptr; i++) {
        std::string_view w = tr[i];
        if (w == "-block")
            operacion = SIG_SETMASK;
        else if (w == "-unblock")
            operacion = SIG_UNBLOCK;
        else if (w == "-setmask")
            operacion = SIG_SETMASK;
        else
            break;
    }
    sigset_t s;
    sigemptyset(&s);
    for (; tr[i] != nullptr; i++) {
        int sen = ValorSenal(tr[i]);
        if (sen == -1)
            printf("Senal desconocida %s\n", tr[i]);
        else
            AnadirAConjunto(&s, sen);
    }
    if (sigprocmask(operacion, &s, nullptr) == -1) ErrorSistema("Error al establecer senales enmascaradas");
}
