// Directory listings, plain or recursive, with options typed on the command
// line or taken from the persistent parameters of `dir`.
#include "files/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace {

int varDirLargo = 0;
int varDirOcultos = 0;
int varDirLink = 0;
int varDirRecursivo = 0;
[[maybe_unused]] int varDelRecursivo = 0;

constexpr int NORECURSIVO = 0;
constexpr int RECURSIVO_DESPUES = 1;
constexpr int RECURSIVO_ANTES = 2;

struct CerrarDir {
    void operator()(DIR *d) const { closedir(d); }
};
using Directorio = std::unique_ptr<DIR, CerrarDir>;

// A listing may write tens of thousands of lines. While one runs, its lines
// are gathered and written in large pieces, and user and group names are
// looked up once per id; nothing else writes meanwhile, so the output is the
// same, in the same order, as line by line.
char tanda[65536];
size_t enTanda = 0;
int agrupando = 0;

void Escribir() {
    if (enTanda == 0) return;
    fwrite(tanda, 1, enTanda, stdout);
    enTanda = 0;
}

void Anadir(const char *s) {
    for (size_t n = strlen(s); n > 0;) {
        size_t cabe = std::min(n, sizeof tanda - enTanda);
        memcpy(tanda + enTanda, s, cabe);
        enTanda += cabe;
        s += cabe;
        n -= cabe;
        if (enTanda == sizeof tanda) Escribir();
    }
}

void Linea(const char *a, const char *b = "") {
    if (agrupando == 0) {
        printf("%s%s\n", a, b);
        return;
    }
    Anadir(a);
    Anadir(b);
    Anadir("\n");
}

struct Agrupar {
    Agrupar() {
        if (agrupando++ == 0) RecordarNombres(true);
    }
    ~Agrupar() {
        if (--agrupando > 0) return;
        Escribir();
        RecordarNombres(false);
    }
    Agrupar(const Agrupar &) = delete;
    Agrupar &operator=(const Agrupar &) = delete;
};

bool EsOculto(const char *nombre) { return nombre[0] == '.'; }

bool EsPuntoOPuntoPunto(std::string_view nombre) { return nombre == "." || nombre == ".."; }

// Options of the listing commands, in the order the words may set them.
struct OpcionesListado {
    int corto = 1, ocultos = 0, modo = NORECURSIVO, link = 0, acc = 0;
};

// Reads the leading options; returns the index of the first name.
int LeerOpciones(char *tr[], OpcionesListado &o, bool recursion) {
    int i = 0;
    for (; tr[i] != nullptr; i++) {
        std::string_view w = tr[i];
        if (w == "-long")
            o.corto = 0;
        else if (w == "-hid")
            o.ocultos = 1;
        else if (w == "-link")
            o.link = 1;
        else if (w == "-acc")
            o.acc = 1;
        else if (recursion && w == "-reca")
            o.modo = RECURSIVO_DESPUES;
        else if (recursion && w == "-recb")
            o.modo = RECURSIVO_ANTES;
        else
            break;
    }
    return i;
}

void Listar(char *tr[], OpcionesListado o) {
    if (tr[0] == nullptr) {
        PrintDirActual();
        return;
    }
    Agrupar agrupar;
    for (int i = 0; tr[i] != nullptr; i++) {
        if (!EsDirectorio(tr[i])) {
            Linea(DetallesFichero(o.corto, nullptr, tr[i], o.link, o.acc));
        } else if (ListarDirectorio(tr[i], o.corto, o.ocultos, o.modo, o.link, o.acc) == -1) {
            char error[4096];
            snprintf(error, sizeof error, "Error al listar directorio %s:%s", tr[i], strerror(errno));
            Linea(error);
        }
    }
}

void ListarConModo(char *tr[], int modo) {
    OpcionesListado o;
    int i = LeerOpciones(tr, o, false);
    o.modo = modo;
    Listar(tr + i, o);
}

}  // namespace

int EsDirectorio(const char *path) {
    struct stat s;
    return lstat(path, &s) != -1 && S_ISDIR(s.st_mode);
}

int EsDirLargo() { return varDirLargo; }
int EsDirOcultos() { return varDirOcultos; }
int EsDirLink() { return varDirLink; }
int EsDirRecursivo() { return varDirRecursivo; }

int ListarDirectorioSimple(const char *dir, int corto, int ocultos, int link, int acc) {
    DIR *d = opendir(dir);
    if (d == nullptr) return -1;
    Linea("************", dir);
    while (struct dirent *e = readdir(d)) {
        if (!ocultos && EsOculto(e->d_name)) continue;
        Linea(DetallesFichero(corto, dir, e->d_name, link, acc));
    }
    return closedir(d);
}

int ListarSubdirectorios(const char *dir, int corto, int ocultos, int modo, int link, int acc) {
    Directorio d(opendir(dir));
    if (d == nullptr) return -1;
    while (struct dirent *e = readdir(d.get())) {
        if (EsPuntoOPuntoPunto(e->d_name) || (!ocultos && EsOculto(e->d_name))) continue;
        char path[1024];
        // A path that does not fit would name another file: skip it.
        if (snprintf(path, sizeof path, "%s/%s", dir, e->d_name) >= static_cast<int>(sizeof path)) continue;
        // The directory records each entry's type, as lstat would tell it
        // (a link is a link); only where it does not is lstat asked.
        bool directorio = e->d_type == DT_UNKNOWN ? EsDirectorio(path) : e->d_type == DT_DIR;
        if (directorio) ListarDirectorio(path, corto, ocultos, modo, link, acc);
    }
    return 0;
}

int ListarDirectorio(const char *dir, int corto, int ocultos, int modo, int link, int acc) {
    if (modo == RECURSIVO_ANTES) ListarSubdirectorios(dir, corto, ocultos, modo, link, acc);
    int r = ListarDirectorioSimple(dir, corto, ocultos, link, acc);
    int error = errno;  // what the caller reports is this directory's failure
    if (modo == RECURSIVO_DESPUES) ListarSubdirectorios(dir, corto, ocultos, modo, link, acc);
    errno = error;
    return r;
}

void GetDirParams() {
    printf("Listado: ");
    printf(varDirLargo ? "largo " : "corto ");
    printf(varDirLink ? "con links " : "sin links ");
    if (varDirRecursivo == RECURSIVO_ANTES)
        printf("recursvo (antes) ");
    else if (varDirRecursivo == RECURSIVO_DESPUES)
        printf("recursvo (despues) ");
    else
        printf("no recursivo ");
    if (varDirOcultos) printf("con ficheros ocultos");
    printf("\n");
}

void Cmd_list(char *tr[]) {
    OpcionesListado o;
    int i = LeerOpciones(tr, o, true);
    Listar(tr + i, o);
}

void Cmd_listdir(char *tr[]) { ListarConModo(tr, NORECURSIVO); }
void Cmd_listrec(char *tr[]) { ListarConModo(tr, RECURSIVO_DESPUES); }
void Cmd_listrev(char *tr[]) { ListarConModo(tr, RECURSIVO_ANTES); }

void Cmd_dir(char *tr[]) {
    int corto = !varDirLargo;
    if (tr[0] == nullptr) {
        Agrupar agrupar;
        ListarDirectorio(".", corto, varDirOcultos, varDirRecursivo, varDirLink, 0);
        return;
    }
    bool contenidos = strcmp(tr[0], "-d") == 0;
    Agrupar agrupar;
    for (int i = contenidos ? 1 : 0; tr[i] != nullptr; i++) {
        if (contenidos && EsDirectorio(tr[i]))
            ListarDirectorio(tr[i], corto, varDirOcultos, varDirRecursivo, varDirLink, 0);
        else
            Linea(DetallesFichero(corto, nullptr, tr[i], varDirLink, 0));
    }
}

void Cmd_setdirparams(char *tr[]) {
    if (tr[0] == nullptr) {
        GetDirParams();
        return;
    }
    for (int i = 0; tr[i] != nullptr; i++) {
        std::string_view w = tr[i];
        if (w == "hid")
            varDirOcultos = 1;
        else if (w == "nohid")
            varDirOcultos = 0;
        else if (w == "link")
            varDirLink = 1;
        else if (w == "nolink")
            varDirLink = 0;
        else if (w == "long")
            varDirLargo = 1;
        else if (w == "short")
            varDirLargo = 0;
        else if (w == "reca")
            varDirRecursivo = RECURSIVO_DESPUES;
        else if (w == "recb")
            varDirRecursivo = RECURSIVO_ANTES;
        else if (w == "norec")
            varDirRecursivo = NORECURSIVO;
    }
}

void Cmd_getdirparams(char *[]) { GetDirParams(); }
