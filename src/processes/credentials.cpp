// Real and effective user of the shell, and scheduling priorities.
#include "processes/processes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include "files/files.h"

namespace {

bool Igual(const char *a, const char *b) { return strcmp(a, b) == 0; }

// "-l name" or "id": changes the effective user, or says why not.
void CambiarUid(char *tr[]) {
    uid_t uid;
    if (Igual(tr[0], "-l")) {
        if ((uid = UidUsuario(tr[1])) == static_cast<uid_t>(-1)) {
            printf("Usuario no existente %s\n", tr[1]);
            return;
        }
    } else {
        int valor = atoi(tr[0]);
        if (valor < 0) {
            printf("Valor no valido de la credencial %s\n", tr[0]);
            return;
        }
        uid = static_cast<uid_t>(valor);
    }
    if (seteuid(uid) == -1) printf("Imposible cambiar credencial: %s\n", strerror(errno));
}

}  // namespace

uid_t UidUsuario(const char *nombre) {
    if (nombre == nullptr) return static_cast<uid_t>(-1);
    struct passwd *p = getpwnam(nombre);
    return p == nullptr ? static_cast<uid_t>(-1) : p->pw_uid;
}

int CambiarCredencial(const char *nombre) {
    uid_t uid = UidUsuario(nombre);
    if (uid == static_cast<uid_t>(-1)) {
        errno = ENOENT;
        return -1;
    }
    return seteuid(uid) == -1 ? -1 : 0;
}

int ComprobarPrioridad(char *tr[], int *prio) {
    for (int i = 0; tr[i] != nullptr; i++)
        if (tr[i][0] == '@') {
            *prio = atoi(tr[i] + 1);
            return i;  // 0 when it stands in the program's place: not used
        }
    return 0;
}

void Cmd_getuid(char *[]) {
    uid_t real = getuid(), efectiva = geteuid();
    printf("Credencial real: %d, (%s)\n", static_cast<int>(real), NombreUsuario(real));
    printf("Credencial efectiva: %d, (%s)\n", static_cast<int>(efectiva), NombreUsuario(efectiva));
}

void Cmd_setuid(char *tr[]) {
    if (tr[0] == nullptr || (Igual(tr[0], "-l") && tr[1] == nullptr)) {
        Cmd_getuid(tr);
        return;
    }
    CambiarUid(tr);
}

void Cmd_uid(char *tr[]) {
    if (tr[0] == nullptr || Igual(tr[0], "-get") || tr[1] == nullptr || (Igual(tr[1], "-l") && tr[2] == nullptr)) {
        Cmd_getuid(tr);
        return;
    }
    if (!Igual(tr[0], "-set")) {
        printf("uid [-get|-set] [-l] [id]\n");
        return;
    }
    CambiarUid(tr + 1);
}

void Cmd_priority(char *tr[]) {
    int pid = tr[0] == nullptr ? getpid() : atoi(tr[0]);
    if (tr[0] != nullptr && tr[1] != nullptr) {
        if (setpriority(PRIO_PROCESS, static_cast<id_t>(pid), atoi(tr[1])) == -1)
            printf("imposible cambiar la prioridad del proceso  %d:%s\n", pid, strerror(errno));
        return;
    }
    errno = 0;
    if (getpriority(PRIO_PROCESS, static_cast<id_t>(pid)) == -1 && errno != 0) {
        printf("Imposible obtener prioridad de proceso %d: %s\n", pid, strerror(errno));
        return;
    }
    printf("Prioridad del proceso %d es %d\n", pid, getpriority(PRIO_PROCESS, static_cast<id_t>(pid)));
}
