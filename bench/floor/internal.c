/* Floor of internal commands: per line of "pid", the prompt's two queries
 * and the command's own getpid, output written in large pieces. The history
 * holds 4095 lines; each later line prints why it was not stored, as the
 * shell must. Also the idle session whose memory is measured. */
#include <errno.h>
#include <stdlib.h>

#include "floor.h"

int main(int argc, char *argv[]) {
    char linea[4096];
    int guardadas = 0;
    (void)argc;
    floor_arranque(argv[0]);
    for (;;) {
        floor_prompt();
        if (floor_linea(linea, sizeof linea) == NULL || strcmp(linea, "exit\n") == 0) break;
        if (guardadas < 4095)
            guardadas++;
        else
            printf("Comando no almacenado: %s\n", strerror(ENOSPC));
        if (strcmp(linea, "pid\n") == 0) printf("Pid de shell: %ld\n", (long)getpid());
    }
    return 0;
}
