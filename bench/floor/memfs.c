/* Floor of a file's round trip through a block of memory: a 128 MiB block,
 * the file read into it, its bytes written out to a new file. */
#include <fcntl.h>
#include <stdlib.h>

#include "floor.h"

int main(int argc, char *argv[]) {
    if (argc != 3) return 2;
    floor_arranque(argv[0]);
    floor_prompt();
    fflush(stdout);
    size_t tam = (size_t)128 << 20;
    char *bloque = malloc(tam);
    struct stat st;
    int in = open(argv[1], O_RDONLY);
    if (bloque == NULL || in == -1 || fstat(in, &st) == -1 || (size_t)st.st_size > tam) return 1;
    size_t n = 0;
    for (ssize_t r; n < (size_t)st.st_size && (r = read(in, bloque + n, (size_t)st.st_size - n)) > 0;) n += (size_t)r;
    close(in);
    int out = open(argv[2], O_WRONLY | O_CREAT | O_EXCL, 0777);
    if (out == -1) return 1;
    for (size_t h = 0; h < n;) {
        ssize_t w = write(out, bloque + h, n - h);
        if (w <= 0) return 1;
        h += (size_t)w;
    }
    close(out);
    free(bloque);
    return 0;
}
