// Creating files and directories, deleting them (singly or whole trees), and
// hard and symbolic links.
#include "files/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct CerrarDir {
    void operator()(DIR *d) const {
        // Closing must not hide the error that ended the deletion.
        int e = errno;
        closedir(d);
        errno = e;
    }
};
using Directorio = std::unique_ptr<DIR, CerrarDir>;

void Crear(const char *nombre, bool fichero) {
    if (nombre == nullptr) {
        PrintDirActual();
        return;
    }
    int r = fichero ? CreateFile(nombre) : mkdir(nombre, 0777);
    // No line end: the prompt follows on the same line.
    if (r == -1) printf("Imposible crear %s: %s", nombre, strerror(errno));
}

void Borrar(char *tr[], bool recursivo) {
    if (tr[0] == nullptr) {
        PrintDirActual();
        return;
    }
    for (int i = 0; tr[i] != nullptr; i++) {
        int r = recursivo && EsDirectorio(tr[i]) ? BorrarDirectorio(tr[i]) : remove(tr[i]);
        if (r == -1) printf("Imposible borrar %s: %s\n", tr[i], strerror(errno));
    }
}

void Enlazar(const char *comando, const char *f1, const char *f2, bool simbolico) {
    if (f1 == nullptr || f2 == nullptr) {
        printf("uso: %s f1 f2\n", comando);
        return;
    }
    if (simbolico) {
        if (symlink(f1, f2) == -1) printf("Imposible crear enlace simbolico a %s: %s\n", f1, strerror(errno));
    } else {
        if (link(f1, f2) == -1) printf("Imposible crear enlace real a %s: %s\n", f1, strerror(errno));
    }
}

}  // namespace

int CreateFile(const char *path) {
    int df = open(path, O_CREAT | O_EXCL, 0777);
    if (df == -1) return -1;
    return close(df);
}

int BorrarDirectorio(const char *path) {
    // A stream left by a failure is closed too: keeping it would only use up
    // descriptors.
    Directorio d(opendir(path));
    if (d == nullptr) return -1;
    errno = 0;
    while (struct dirent *e = readdir(d.get())) {
        std::string_view nombre = e->d_name;
        if (nombre == "." || nombre == "..") continue;
        char entrada[1024];
        if (snprintf(entrada, sizeof entrada, "%s/%s", path, e->d_name) >= static_cast<int>(sizeof entrada)) {
            // A cut path would name another file.
            errno = ENAMETOOLONG;
            return -1;
        }
        // The entry's type as the directory records it is what lstat would
        // say (links are not followed); only where it is not recorded is the
        // file examined. Files go relative to the open directory, without
        // walking the whole path again.
        bool directorio = e->d_type == DT_UNKNOWN ? EsDirectorio(entrada) : e->d_type == DT_DIR;
        int r = directorio ? BorrarDirectorio(entrada) : unlinkat(dirfd(d.get()), e->d_name, 0);
        if (r == -1) return -1;
    }
    d.reset();
    return rmdir(path);
}

void Cmd_create(char *tr[]) {
    if (tr[0] != nullptr && strcmp(tr[0], "-f") == 0)
        Crear(tr[1], true);
    else
        Crear(tr[0], false);
}

void Cmd_makefile(char *tr[]) { Crear(tr[0], true); }
void Cmd_makedir(char *tr[]) { Crear(tr[0], false); }

void Cmd_delete(char *tr[]) { Borrar(tr, false); }
void Cmd_deltree(char *tr[]) { Borrar(tr, true); }

void Cmd_hardlink(char *tr[]) { Enlazar(tr[-1], tr[0], tr[0] ? tr[1] : nullptr, false); }
void Cmd_symlink(char *tr[]) { Enlazar(tr[-1], tr[0], tr[0] ? tr[1] : nullptr, true); }

void Cmd_link(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        printf("uso: %s f1 f2\n", tr[-1]);
        return;
    }
    if (strcmp(tr[0], "-s") == 0)
        Enlazar("symlink", tr[1], tr[2], true);
    else
        Enlazar(tr[-1], tr[0], tr[1], false);
}
