// Two programs joined by a pipe, in the foreground or the background.
#include "processes/processes.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include "core/core.h"

namespace {

// Cuts the words at each "%": the first vector ends at the first one, the
// second begins after the last one. Null when there is none.
char **PartirEnPipe(char *tr[]) {
    int n = 0;
    while (tr[n] != nullptr) n++;
    char **segundo = nullptr;
    for (int i = 0; i < n; i++)
        if (strcmp(tr[i], "%") == 0) {
            tr[i] = nullptr;
            segundo = &tr[i + 1];
        }
    return segundo;
}

void LanzarPipe(char *tr[], int segundoplano) {
    char **segundo = PartirEnPipe(tr);
    if (segundo == nullptr) {
        printf("pipe prog1 args .. %% prog2 args ..\n");
        return;
    }
    HacerPipe(tr, segundo, segundoplano);
}

// One end of the pipe becomes descriptor df; the program runs or the child ends.
[[noreturn]] void HijoPipe(int fds[2], int df, char *tr[]) {
    dup2(fds[df == 0 ? 0 : 1], df);
    close(fds[0]);
    close(fds[1]);
    exec(tr, nullptr, nullptr);
    exit(255);
}

}  // namespace

int HacerPipe(char *tr1[], char *tr2[], int segundoplano) {
    int fds[2];
    if (pipe(fds) == -1) return -1;
    SincronizarEntrada();
    pid_t pid1 = fork();
    if (pid1 == 0) HijoPipe(fds, 1, tr1);
    pid_t pid2 = fork();
    if (pid2 == 0) HijoPipe(fds, 0, tr2);
    close(fds[0]);
    close(fds[1]);
    // A child that could not be created is neither recorded nor waited for.
    if (segundoplano) {
        if (pid1 > 0) MeterProceso(&LP, pid1, static_cast<int>(getuid()), tr1);
        if (pid2 > 0) MeterProceso(&LP, pid2, static_cast<int>(getuid()), tr2);
    } else {
        if (pid1 > 0) waitpid(pid1, nullptr, 0);
        if (pid2 > 0) waitpid(pid2, nullptr, 0);
    }
    return 0;
}

void Cmd_pipe(char *tr[]) {
    int segundoplano = ComprobarSegundoPlano(tr);
    LanzarPipe(tr, segundoplano);
}

void Cmd_backpipe(char *tr[]) { LanzarPipe(tr, 1); }
