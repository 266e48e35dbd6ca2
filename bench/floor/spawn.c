/* Floor of external programs: per line the prompt (written before the child
 * is made, so that the order holds), a child made with posix_spawn and a
 * wait for it. */
#include <spawn.h>
#include <sys/wait.h>

#include "floor.h"

extern char **environ;

int main(int argc, char *argv[]) {
    char linea[4096];
    (void)argc;
    floor_arranque(argv[0]);
    for (;;) {
        floor_prompt();
        if (floor_linea(linea, sizeof linea) == NULL || strcmp(linea, "exit\n") == 0) break;
        linea[strcspn(linea, "\n")] = '\0';
        char *args[] = {linea, NULL};
        pid_t pid;
        fflush(stdout);
        if (posix_spawn(&pid, linea, NULL, NULL, args, environ) == 0) waitpid(pid, NULL, 0);
    }
    return 0;
}
