// The list of processes the shell started in the background.
#include "processes/processes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "signals/signals.h"

ListaProcesos LP;

namespace {

constexpr int TERMINADOS = TERMINADO | SENALADO;
constexpr int TODOS = ACTIVO | PARADO | SENALADO | TERMINADO;

bool Igual(const char *a, const char *b) { return strcmp(a, b) == 0; }

}  // namespace

ListaProcesos *CrearListaProcesos(ListaProcesos *l) {
    l->n = 0;
    return l;
}

int MeterProceso(ListaProcesos *l, pid_t pid, int usuario, char *tr[]) {
    // The last slot stays unused.
    if (l->n >= MAXPROCESOS - 1) {
        errno = ENOSPC;
        return -1;
    }
    l->procesos[l->n] = {pid, usuario, ACTIVO, 0, time(nullptr), crearLineaComando(tr)};
    return ++l->n;
}

char *crearLineaComando(char *tr[]) {
    if (tr == nullptr || tr[0] == nullptr) return nullptr;
    size_t tam = 0;
    for (int i = 0; tr[i] != nullptr; i++) tam += strlen(tr[i]) + 1;
    char *linea = static_cast<char *>(malloc(tam));
    if (linea == nullptr) return nullptr;
    char *p = linea;
    for (int i = 0; tr[i] != nullptr; i++) {
        if (i > 0) *p++ = ' ';
        size_t len = strlen(tr[i]);
        memcpy(p, tr[i], len);
        p += len;
    }
    *p = '\0';
    return linea;
}

int BuscarProcesoPid(ListaProcesos *l, pid_t pid) {
    for (int i = 0; i < l->n; i++)
        if (l->procesos[i].pid == pid) return i;
    errno = ESRCH;
    return -1;
}

int estadoProceso(const InfoProceso *p) { return p->estado; }

int EstadoProcesoPid(ListaProcesos *l, pid_t pid) {
    int i = BuscarProcesoPid(l, pid);
    return i == -1 ? -1 : estadoProceso(&l->procesos[i]);
}

int borrarProceso(ListaProcesos *l, int i) {
    if (i < 0 || i >= l->n) {
        errno = EINVAL;
        return -1;
    }
    free(l->procesos[i].linea);
    memmove(&l->procesos[i], &l->procesos[i + 1], sizeof(InfoProceso) * static_cast<size_t>(l->n - i - 1));
    l->n--;
    return 0;
}

int BorrarProcesoPid(ListaProcesos *l, pid_t pid) {
    int i = BuscarProcesoPid(l, pid);
    return i == -1 ? -1 : borrarProceso(l, i);
}

int BorrarProcesosEstado(ListaProcesos *l, int mascara) {
    int resultado = 0;
    bool borrado = true;
    while (borrado) {
        borrado = false;
        for (int i = 0; i < l->n; i++)
            if (l->procesos[i].estado & mascara) {
                resultado |= borrarProceso(l, i);
                borrado = true;
                break;
            }
    }
    return resultado;
}

void VaciarListaProcesos(ListaProcesos *l) { BorrarProcesosEstado(l, TODOS); }

void actualizarProceso(InfoProceso *p) {
    // A finished process has been reaped: its pid may already belong to
    // another child, whose news are not this record's.
    if ((p->estado & TERMINADOS) || p->pid <= 0) return;
    int status;
    if (waitpid(p->pid, &status, WNOHANG | WUNTRACED | WCONTINUED) != p->pid) return;
    if (WIFEXITED(status)) {
        p->estado = TERMINADO;
        p->valor = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        p->estado = SENALADO;
        p->valor = WTERMSIG(status);
    } else if (WIFSTOPPED(status)) {
        p->estado = PARADO;
        p->valor = WSTOPSIG(status);
    } else if (WIFCONTINUED(status)) {
        p->estado = ACTIVO;
        p->valor = 0;
    }
}

void ActualizarListaProcesos(ListaProcesos *l) {
    for (int i = 0; i < l->n; i++) actualizarProceso(&l->procesos[i]);
}

void imprimirProceso(InfoProceso *p) {
    const char *valor = (p->estado == PARADO || p->estado == SENALADO) ? NombreSenal(p->valor) : valorEstado(p->valor);
    printf("%6d %s p=%d %s %s (%s) %s\n", p->pid, nombreUsuario(p->usuario),
           getpriority(PRIO_PROCESS, static_cast<id_t>(p->pid)), fecha(p->lanzamiento), nombreEstado(p->estado), valor,
           p->linea != nullptr ? p->linea : "NULL");
}

void ImprimirListaProcesos(ListaProcesos *l, int mascara) {
    for (int i = 0; i < l->n; i++)
        if (l->procesos[i].estado & mascara) imprimirProceso(&l->procesos[i]);
}

int MostrarProcesoPid(ListaProcesos *l, pid_t pid) {
    int i = BuscarProcesoPid(l, pid);
    if (i == -1) return -1;
    actualizarProceso(&l->procesos[i]);
    imprimirProceso(&l->procesos[i]);
    return 0;
}

const char *nombreEstado(int estado) {
    switch (estado) {
    case ACTIVO: return "ACTIVO";
    case PARADO: return "PARADO";
    case SENALADO: return "SENALADO";
    case TERMINADO: return "TERMINADO";
    default: return "???????";
    }
}

const char *valorEstado(int valor) {
    static char aux[5];
    snprintf(aux, sizeof aux, "%03d", valor);
    return aux;
}

const char *nombreUsuario(int uid) {
    static char aux[12];
    struct passwd *p = getpwuid(static_cast<uid_t>(uid));
    if (p != nullptr)
        snprintf(aux, sizeof aux, "%11.11s", p->pw_name);
    else
        snprintf(aux, sizeof aux, "uid %07d", uid);
    return aux;
}

const char *fecha(time_t t) {
    static char aux[256];
    struct tm *tm = localtime(&t);
    if (tm == nullptr) return "";
    // The month is printed 0-based, as the broken-down time holds it.
    snprintf(aux, sizeof aux, "%4d/%02d/%02d %02d:%02d:%d", tm->tm_year + 1900, tm->tm_mon, tm->tm_mday, tm->tm_hour,
             tm->tm_min, tm->tm_sec);
    return aux;
}

void Cmd_listjobs(char *[]) {
    ActualizarListaProcesos(&LP);
    ImprimirListaProcesos(&LP, TODOS);
}

void Cmd_deljobs(char *tr[]) {
    int mascara = 0;
    for (int i = 0; tr[i] != nullptr; i++) {
        if (Igual(tr[i], "-term"))
            mascara = TERMINADO;
        else if (Igual(tr[i], "-sig"))
            mascara = SENALADO;
        else if (Igual(tr[i], "-all"))
            mascara = TERMINADOS;
        else if (Igual(tr[i], "-clear"))
            VaciarListaProcesos(&LP);
        else
            break;
    }
    // Removal goes by the states of the last refresh, before this one.
    BorrarProcesosEstado(&LP, mascara);
    ActualizarListaProcesos(&LP);
    ImprimirListaProcesos(&LP, TODOS);
}

void Cmd_job(char *tr[]) {
    int i = 0;
    bool primerplano = false;
    if (tr[0] != nullptr && Igual(tr[0], "-fg")) {
        primerplano = true;
        i = 1;
    }
    pid_t pid = tr[i] != nullptr ? atoi(tr[i]) : 0;
    if (pid == 0 || BuscarProcesoPid(&LP, pid) == -1) {
        Cmd_listjobs(tr);
        return;
    }
    if (!primerplano) {
        MostrarProcesoPid(&LP, pid);
        return;
    }
    if (EstadoProcesoPid(&LP, pid) & TERMINADOS) {
        printf("Proceso %d pid ya esta finalizado\n", pid);
        return;
    }
    int status;
    if (waitpid(pid, &status, 0) != pid) return;
    if (WIFEXITED(status))
        printf("Proceso %d terminado normalmente. Valor devuelto %d\n", pid, WEXITSTATUS(status));
    else if (WIFSIGNALED(status))
        printf("Proceso %d terminado por la senal %s\n", pid, NombreSenal(WTERMSIG(status)));
    BorrarProcesoPid(&LP, pid);
}
