/* Floor of deleting a tree: each directory read once, each entry unlinked
 * relative to its directory (lstat only where the entry's type is not
 * given), the emptied directory removed. */
#include <dirent.h>
#include <fcntl.h>

#include "floor.h"

static int borrar(int padre, const char *nombre) {
    int fd = openat(padre, nombre, O_RDONLY | O_DIRECTORY);
    DIR *d = fd == -1 ? NULL : fdopendir(fd);
    if (d == NULL) return -1;
    struct dirent *e;
    while ((e = readdir(d)) != NULL) {
        if (strcmp(e->d_name, ".") == 0 || strcmp(e->d_name, "..") == 0) continue;
        int esdir = 0;
#ifdef DT_DIR
        if (e->d_type != DT_UNKNOWN)
            esdir = e->d_type == DT_DIR;
        else
#endif
        {
            struct stat st;
            esdir = fstatat(fd, e->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
        }
        if (esdir)
            borrar(fd, e->d_name);
        else
            unlinkat(fd, e->d_name, 0);
    }
    closedir(d);
    return unlinkat(padre, nombre, AT_REMOVEDIR);
}

int main(int argc, char *argv[]) {
    int r = 0;
    floor_arranque(argv[0]);
    floor_prompt();
    fflush(stdout);
    for (int i = 1; i < argc; i++) r |= borrar(AT_FDCWD, argv[i]);
    return r != 0;
}
