// The shell's own table of open descriptors, and the commands that open,
// duplicate, close and list them.
#include "files/files.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <algorithm>
#include <array>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/resource.h>
#include <string_view>
#include <unistd.h>

#include "core/core.h"
#include "memory/memory.h"

namespace {

// Indexed by descriptor number; a null name marks an unused position.
FicheroAbierto openfiles[MAXFICHEROS];
// One past the highest position ever given a name: emptying the table need
// not visit (nor bring into memory) the positions above it.
int usadas = 0;

bool EnTabla(int df) { return df >= 0 && df < MAXFICHEROS; }

struct ModoApertura {
    std::string_view palabra;
    int bit;
};

constexpr ModoApertura ModosApertura[] = {
    {"cr", O_CREAT}, {"ex", O_EXCL}, {"ro", O_RDONLY}, {"wo", O_WRONLY},
    {"rw", O_RDWR},  {"ap", O_APPEND}, {"tr", O_TRUNC},
};

// Listing order of the flag words. O_RDONLY is zero, so its bit test never
// succeeds and a read-only descriptor shows no access word: that is wanted.
constexpr ModoApertura ModosListado[] = {
    {"O_CREAT ", O_CREAT}, {"O_EXCL ", O_EXCL},     {"O_RDONLY ", O_RDONLY}, {"O_WRONLY ", O_WRONLY},
    {"O_RDWR ", O_RDWR},   {"O_APPEND ", O_APPEND}, {"O_TRUNC ", O_TRUNC},
};

const char *NombreInicial(int df) {
    switch (df) {
    case 0: return "entrada estandar";
    case 1: return "salida estandar";
    case 2: return "error estandar";
    default: return "desconocido";
    }
}

}  // namespace

int LeerDescriptor(const char *s) {
    // atoi, without its undefined behaviour on numbers that do not fit.
    long v = strtol(s, nullptr, 10);
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

namespace {

void AnotarSiAbierto(int df) {
    int modo = fcntl(df, F_GETFL);
    if (modo != -1) AddOpenFile(df, NombreInicial(df), modo, 0);
}

struct CerrarDir {
    void operator()(DIR *d) const { closedir(d); }
};

// Where the system shows a process's descriptors as a directory, reading it
// is much cheaper than asking about every position of the table. Returns
// false where there is no such directory.
bool AnotarDesdeDirectorio() {
    std::unique_ptr<DIR, CerrarDir> d(opendir("/proc/self/fd"));
    if (d == nullptr) return false;
    int propio = dirfd(d.get());  // open only while it is read
    while (const dirent *e = readdir(d.get())) {
        char *fin;
        long df = strtol(e->d_name, &fin, 10);
        if (fin == e->d_name || *fin != '\0' || df == propio || df < 0 || df >= MAXFICHEROS) continue;
        AnotarSiAbierto(static_cast<int>(df));
    }
    return true;
}

}  // namespace

void InitOpenFiles() {
    if (AnotarDesdeDirectorio()) return;
    // One poll over a batch of descriptors tells which of them are open (the
    // others come back marked POLLNVAL), so only the open ones are asked for
    // their flags: the table is the same, and start-up takes a few system
    // calls instead of one per position.
    constexpr int LOTE = 1024;
    int lote = LOTE;
    struct rlimit lim;
    if (getrlimit(RLIMIT_NOFILE, &lim) == 0 && lim.rlim_cur < static_cast<rlim_t>(LOTE))
        lote = std::max(1, static_cast<int>(lim.rlim_cur));  // poll takes no more at once
    std::array<pollfd, LOTE> fds;
    for (int base = 0; base < MAXFICHEROS; base += lote) {
        int n = std::min(lote, MAXFICHEROS - base);
        for (int i = 0; i < n; i++) fds[i] = {base + i, 0, 0};
        if (poll(fds.data(), static_cast<nfds_t>(n), 0) == -1) {
            for (int i = 0; i < n; i++) AnotarSiAbierto(base + i);
            continue;
        }
        for (int i = 0; i < n; i++)
            if (!(fds[i].revents & POLLNVAL)) AnotarSiAbierto(base + i);
    }
}

int AddOpenFile(int df, const char *nombre, int modo, int redireccion) {
    if (!EnTabla(df)) {
        errno = ENOENT;
        return -1;
    }
    char *copia = strdup(nombre);
    if (copia == nullptr) return -1;
    free(openfiles[df].nombre);
    openfiles[df].nombre = copia;
    openfiles[df].modo = modo;
    openfiles[df].redireccion = redireccion;
    usadas = std::max(usadas, df + 1);
    return df;
}

int RemoveOpenFile(int df) {
    if (!EnTabla(df) || openfiles[df].nombre == nullptr) {
        errno = ENOENT;
        return -1;
    }
    free(openfiles[df].nombre);
    openfiles[df].nombre = nullptr;
    openfiles[df].modo = 0;
    // The redirection mark stays: only the redirection commands clear it.
    return df;
}

void ClearOpenFilesList() {
    for (int df = 0; df < usadas; df++) RemoveOpenFile(df);
}

const char *NombreFicheroDescriptor(int df) { return EnTabla(df) ? openfiles[df].nombre : nullptr; }

int DescriptorEnUso(int df) { return fcntl(df, F_GETFD) != -1; }

int DescriptorRedireccion(int df) { return EnTabla(df) ? openfiles[df].redireccion : 0; }

void UsarEnRedireccion(int df) {
    if (EnTabla(df)) openfiles[df].redireccion = 1;
}

void LiberarDeRedireccion(int df) {
    if (EnTabla(df)) openfiles[df].redireccion = 0;
}

const char *CadOffset(int df) {
    // Room for any 64-bit offset, so that large positions are never cut.
    static char offset[32];
    off_t pos = lseek(df, 0, SEEK_CUR);
    if (pos == -1) return "  ";
    snprintf(offset, sizeof offset, "%lld", static_cast<long long>(pos));
    return offset;
}

void PrintOpenFile(int df) {
    if (!EnTabla(df)) return;
    const FicheroAbierto &f = openfiles[df];
    if (f.nombre != nullptr)
        printf("descriptor: %d, offset: (%s)-> %s ", df, CadOffset(df), f.nombre);
    else
        printf("descriptor: %d, offset: (%s)-> no usado ", df, CadOffset(df));
    for (const ModoApertura &m : ModosListado)
        if (f.modo & m.bit) printf("%s", m.palabra.data());
    if (f.redireccion) printf("(redir)");
    printf("\n");
}

void ListOpenFiles(int n) {
    // The offset shown for the shell's own input is that of its next line.
    SincronizarEntrada();
    if (n == -1) {
        // The first 20 positions always, then on through the run of used ones.
        for (int df = 0; df < MAXFICHEROS && (df < 20 || openfiles[df].nombre != nullptr); df++) PrintOpenFile(df);
        return;
    }
    for (int df = 0; df < n && df < MAXFICHEROS; df++) PrintOpenFile(df);
}

void Cmd_open(char *tr[]) {
    if (tr[0] == nullptr) {
        ListOpenFiles(-1);
        return;
    }
    int modo = 0;
    for (int i = 1; tr[i] != nullptr; i++) {
        const ModoApertura *m = nullptr;
        for (const ModoApertura &c : ModosApertura)
            if (c.palabra == tr[i]) m = &c;
        if (m == nullptr) break;  // the first unknown word ends the modes
        modo |= m->bit;
    }
    int df = open(tr[0], modo, 0777);
    if (df == -1) {
        ErrorSistema("Imposible abrir fichero");
        return;
    }
    printf("Anadida entrada %d a la tabla ficheros abiertos\n", AddOpenFile(df, tr[0], modo, 0));
}

void Cmd_close(char *tr[]) {
    int df;
    if (tr[0] == nullptr || (df = LeerDescriptor(tr[0])) < 0) {
        ListOpenFiles(-1);
        return;
    }
    bool forzado = tr[1] != nullptr && strcmp(tr[1], "-f") == 0;
    void *mapeo = DireccionNodoDescriptor(&L, df);
    if (DescriptorRedireccion(df)) {
        printf("No se hace: descriptor involucrado en redireccion.\n");
        return;
    }
    if (!forzado && mapeo != nullptr) {
        printf("Descriptor %d corresponde a fichero mapeado. Usa -f para cerrarlo\n", df);
        return;
    }
    SincronizarEntrada();  // df may be one of the shell's own streams
    if (close(df) == -1) {
        ErrorSistema("Imposible cerrar descriptor");
        return;
    }
    RemoveOpenFile(df);  // a descriptor the table did not know closes silently
    if (mapeo != nullptr) EliminarDescriptorDireccion(&L, mapeo);
}

namespace {

void Duplicar(int df, int nuevo) {
    char nombre[1024];
    const char *origen = NombreFicheroDescriptor(df);
    // A position the table does not know prints as the C library prints a
    // null string.
    snprintf(nombre, sizeof nombre, "dupplicado de %d (%s)", df, origen != nullptr ? origen : "(null)");
    AddOpenFile(nuevo, nombre, fcntl(nuevo, F_GETFL), 0);
}

}  // namespace

void Cmd_dup(char *tr[]) {
    int df;
    if (tr[0] == nullptr || (df = LeerDescriptor(tr[0])) < 0) {
        ListOpenFiles(-1);
        return;
    }
    int nuevo = dup(df);
    if (nuevo == -1) {
        ErrorSistema("Inposible duplicar descriptor");
        return;
    }
    Duplicar(df, nuevo);
}

void Cmd_dup2(char *tr[]) {
    int df, df2;
    if (tr[0] == nullptr || tr[1] == nullptr || (df = LeerDescriptor(tr[0])) < 0 ||
        (df2 = LeerDescriptor(tr[1])) < 0) {
        ListOpenFiles(-1);
        return;
    }
    SincronizarEntrada();  // df2 may be one of the shell's own streams
    if (dup2(df, df2) == -1) {
        ErrorSistema("Inposible duplicar descriptor");
        return;
    }
    Duplicar(df, df2);
}

void Cmd_listopen(char *tr[]) { ListOpenFiles(tr[0] == nullptr ? -1 : LeerDescriptor(tr[0])); }
