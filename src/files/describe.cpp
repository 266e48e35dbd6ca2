// The status of a file as text: type, permissions, owner, dates and the one
// line that describes a file, plus the few helpers every subsystem shares.
#include "files/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/core.h"

char TipoFichero(mode_t m) {
    switch (m & S_IFMT) {
    case S_IFIFO: return 'p';
    case S_IFCHR: return 'c';
    case S_IFDIR: return 'd';
    case S_IFBLK: return 'b';
    case S_IFREG: return '-';
    case S_IFLNK: return 'l';
    case S_IFSOCK: return 's';
    default: return '?';
    }
}

const char *Permisos(mode_t m) {
    static char permisos[16];
    strcpy(permisos, "---------- ");
    permisos[0] = TipoFichero(m);
    if (m & S_IRUSR) permisos[1] = 'r';
    if (m & S_IWUSR) permisos[2] = 'w';
    if (m & S_IXUSR) permisos[3] = 'x';
    if (m & S_IRGRP) permisos[4] = 'r';
    if (m & S_IWGRP) permisos[5] = 'w';
    if (m & S_IXGRP) permisos[6] = 'x';
    if (m & S_IROTH) permisos[7] = 'r';
    if (m & S_IWOTH) permisos[8] = 'w';
    if (m & S_IXOTH) permisos[9] = 'x';
    // No upper-case forms: the special bits always show in lower case.
    if (m & S_ISUID) permisos[3] = 's';
    if (m & S_ISGID) permisos[6] = 's';
    if (m & S_ISVTX) permisos[9] = 't';
    return permisos;
}

namespace {

// Names already looked up during the current listing: the user and group
// databases are read once per id instead of once per entry. A listing meets
// few owners; when more turn up, the oldest entry gives way, and a name too
// long for an entry is looked up every time. Either way the name is the same.
struct NombreRecordado {
    unsigned id;
    bool usado;
    char nombre[64];
};
constexpr int RECORDADOS = 16;

struct Recuerdo {
    NombreRecordado n[RECORDADOS];
    int siguiente;  // the entry the next new id takes
};

bool recordando = false;
Recuerdo usuarios;
Recuerdo grupos;

const char *Recordado(const Recuerdo &r, unsigned id) {
    for (const NombreRecordado &e : r.n)
        if (e.usado && e.id == id) return e.nombre;
    return nullptr;
}

const char *Recordar(Recuerdo &r, unsigned id, const char *nombre) {
    if (strlen(nombre) >= sizeof r.n[0].nombre) return nombre;
    NombreRecordado &e = r.n[r.siguiente];
    r.siguiente = (r.siguiente + 1) % RECORDADOS;
    e.id = id;
    e.usado = true;
    strcpy(e.nombre, nombre);
    return e.nombre;
}

void Olvidar(Recuerdo &r) {
    for (NombreRecordado &e : r.n) e.usado = false;
    r.siguiente = 0;
}

}  // namespace

void RecordarNombres(bool activa) {
    recordando = activa;
    Olvidar(usuarios);
    Olvidar(grupos);
}

const char *NombreUsuario(uid_t uid) {
    if (recordando)
        if (const char *n = Recordado(usuarios, uid)) return n;
    struct passwd *p = getpwuid(uid);
    const char *nombre = p == nullptr ? " ??????" : p->pw_name;
    return recordando ? Recordar(usuarios, uid, nombre) : nombre;
}

const char *NombreGrupo(gid_t gid) {
    if (recordando)
        if (const char *n = Recordado(grupos, gid)) return n;
    struct group *g = getgrgid(gid);
    const char *nombre = g == nullptr ? "??????" : g->gr_name;
    return recordando ? Recordar(grupos, gid, nombre) : nombre;
}

namespace {

struct tm Local(time_t t) {
    struct tm r{};
    localtime_r(&t, &r);
    return r;
}

}  // namespace

const char *Fecha2(time_t t) {
    static char buf[64];
    struct tm f = Local(t);
    snprintf(buf, sizeof buf, "%4d/%02d/%02d-%02d:%02d", f.tm_year + 1900, f.tm_mon + 1, f.tm_mday, f.tm_hour,
             f.tm_min);
    return buf;
}

// Three numbers of at most 11 characters each and two separators fit: the
// buffers stay small, beside the other date buffers that start-up touches.
const char *ConvertirDia(time_t t) {
    static char buf[48];
    struct tm f = Local(t);
    snprintf(buf, sizeof buf, "%02d/%02d/%04d", f.tm_mday, f.tm_mon + 1, f.tm_year + 1900);
    return buf;
}

const char *ConvertirHora(time_t t) {
    static char buf[48];
    struct tm f = Local(t);
    snprintf(buf, sizeof buf, "%02d:%02d:%02d", f.tm_hour, f.tm_min, f.tm_sec);
    return buf;
}

const char *Fecha(time_t t) {
    static char buf[64];
    char c[32];
    if (ctime_r(&t, c) == nullptr) return "";
    // "Www Mmm dd hh:mm:ss yyyy\n": keep weekday, month and day, drop the
    // time of day and the line end.
    c[strcspn(c, "\n")] = '\0';
    if (strlen(c) < 20) return c[0] ? strcpy(buf, c) : "";
    snprintf(buf, sizeof buf, "%.10s%s", c, c + 19);
    return buf;
}

off_t TamanoFichero(const char *path) {
    struct stat s;
    return lstat(path, &s) == -1 ? -1 : s.st_size;
}

time_t FechaFichero(const char *path) {
    struct stat s;
    return lstat(path, &s) == -1 ? -1 : s.st_mtime;
}

void AnadeEnlace(char *linea, const char *path) {
    char destino[1024];
    char texto[1100];
    ssize_t n = readlink(path, destino, sizeof destino - 1);
    if (n == -1) {
        snprintf(texto, sizeof texto, "**error al leer enlace: %s", strerror(errno));
    } else {
        destino[n] = '\0';
        snprintf(texto, sizeof texto, "%s", destino);
    }
    size_t usado = strlen(linea);
    snprintf(linea + usado, 4096 - usado, " -> %s", texto);
}

const char *DetallesFichero(int corto, const char *dir, const char *nombre, int link, int acc) {
    static char linea[4096];
    char path[1024];
    struct stat s;

    int n = dir == nullptr ? snprintf(path, sizeof path, "%s", nombre)
                           : snprintf(path, sizeof path, "%s/%s", dir, nombre);
    if (n >= static_cast<int>(sizeof path)) errno = ENAMETOOLONG;  // never examine a cut path

    if (n >= static_cast<int>(sizeof path) || lstat(path, &s) == -1) {
        snprintf(linea, sizeof linea, " ****error al acceder a %s:%s", nombre, strerror(errno));
        return linea;
    }
    time_t t = acc ? s.st_atime : s.st_mtime;
    if (!corto) {
        char fecha[64];
        snprintf(fecha, sizeof fecha, "%s", Fecha2(t));
        char usuario[256];
        snprintf(usuario, sizeof usuario, "%s", NombreUsuario(s.st_uid));
        // The group column shows the group whose id is the owner's uid.
        snprintf(linea, sizeof linea, "%s %3lu (%8lu)%9s%9s %s%8lu %s", fecha, static_cast<unsigned long>(s.st_nlink),
                 static_cast<unsigned long>(s.st_ino), usuario, NombreGrupo(static_cast<gid_t>(s.st_uid)),
                 Permisos(s.st_mode), static_cast<unsigned long>(s.st_size), nombre);
    } else if (acc) {
        snprintf(linea, sizeof linea, " %7lu  %s %s", static_cast<unsigned long>(s.st_size), Fecha2(t), nombre);
    } else {
        snprintf(linea, sizeof linea, " %7lu  %s", static_cast<unsigned long>(s.st_size), nombre);
    }
    if (link && S_ISLNK(s.st_mode)) AnadeEnlace(linea, path);
    return linea;
}

void *cadtop(const char *s) {
    void *p = nullptr;
    if (s == nullptr || sscanf(s, "%p", &p) != 1) p = nullptr;
    if (p == nullptr) errno = EFAULT;
    return p;
}

void PrintDirActual() {
    char dir[1024] = {};
    if (getcwd(dir, sizeof dir) == nullptr)
        ErrorSistema("Imposible obtener direrctorio actual");
    else
        printf("%s\n", dir);
}

void Cmd_stat(char *tr[]) {
    int corto = 1, link = 0, acc = 0, i = 0;
    for (; tr[i] != nullptr; i++) {
        if (strcmp(tr[i], "-long") == 0)
            corto = 0;
        else if (strcmp(tr[i], "-link") == 0)
            link = 1;
        else if (strcmp(tr[i], "-acc") == 0)
            acc = 1;
        else
            break;
    }
    if (tr[i] == nullptr) {
        PrintDirActual();
        return;
    }
    for (; tr[i] != nullptr; i++) printf("%s\n", DetallesFichero(corto, nullptr, tr[i], link, acc));
}
