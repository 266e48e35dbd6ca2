// Environment variables reached through main's third argument, environ and
// putenv, and three ways of changing them that are wrong on purpose.
#include "processes/processes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/core.h"

extern char **environ;

namespace {

constexpr size_t TAMVAR = 512;

// A heap string name=value; E owns it from here on.
char *NuevaVariable(const char *var, const char *valor) {
    size_t tam = strlen(var) + strlen(valor) + 2;
    char *aux = static_cast<char *>(malloc(tam));
    if (aux == nullptr) return nullptr;
    snprintf(aux, tam, "%s=%s", var, valor);
    EntornoAdd(aux);
    return aux;
}

bool Igual(const char *a, const char *b) { return strcmp(a, b) == 0; }

}  // namespace

int BuscarVariable(const char *var, char *e[]) {
    char aux[TAMVAR];
    // A name that does not fit with its '=' could only match by its prefix.
    if (var == nullptr || e == nullptr || strlen(var) + 2 > TAMVAR) {
        errno = ENOENT;
        return -1;
    }
    snprintf(aux, sizeof aux, "%s=", var);
    size_t len = strlen(aux);
    for (int pos = 0; e[pos] != nullptr; pos++)
        if (strncmp(e[pos], aux, len) == 0) return pos;
    errno = ENOENT;
    return -1;
}

int CambiarVariable(const char *var, const char *valor, char *e[]) {
    int pos = BuscarVariable(var, e);
    if (pos == -1) return -1;
    char *aux = NuevaVariable(var, valor);
    if (aux == nullptr) {
        errno = ENOMEM;
        return -1;
    }
    e[pos] = aux;  // the old string is left where it was
    return pos;
}

int CambiarVariablePutenv(const char *var, const char *valor) {
    char *aux = NuevaVariable(var, valor);
    if (aux == nullptr) return -1;
    return putenv(aux);
}

int SustituirVariable(const char *var1, const char *var2, const char *valor, char *e[]) {
    if (BuscarVariable(var2, e) != -1) {
        errno = EEXIST;
        return -1;
    }
    int pos = BuscarVariable(var1, e);
    if (pos == -1) return -1;
    char *aux = NuevaVariable(var2, valor);
    if (aux == nullptr) {
        errno = ENOMEM;
        return -1;
    }
    e[pos] = aux;
    return pos;
}

// Writes over the existing string whatever its length: that is the mistake.
int CambiarVariableMalOverwrite(const char *var, const char *valor, char *e[]) {
    if (e == nullptr) {
        errno = EINVAL;
        return -1;
    }
    int pos = BuscarVariable(var, e);
    if (pos == -1) return -1;
    strcpy(e[pos], var);
    strcat(e[pos], "=");
    strcat(e[pos], valor);
    return pos;
}

// The environment keeps pointing into this function's stack frame once it
// has returned: that is the mistake.
int CambiarVariableMalAutomatic(const char *var, const char *valor, char *e[]) {
    char aux[TAMVAR];
    snprintf(aux, sizeof aux, "%s=%s", var, valor);
    char *volatile cadena = aux;  // the compiler would rightly refuse to store aux itself
    if (e == nullptr) return putenv(cadena);
    int pos = BuscarVariable(var, e);
    if (pos == -1) return -1;
    e[pos] = cadena;
    return pos;
}

// One buffer for every variable changed this way: the next change alters all
// of them.
int CambiarVariableMalStatic(const char *var, const char *valor, char *e[]) {
    static char aux[TAMVAR];
    snprintf(aux, sizeof aux, "%s=%s", var, valor);
    if (e == nullptr) return putenv(aux);
    int pos = BuscarVariable(var, e);
    if (pos == -1) return -1;
    e[pos] = aux;
    return pos;
}

void MostrarEntorno(char **entorno, const char *nombre_entorno) {
    if (entorno == nullptr) return;
    for (int i = 0; entorno[i] != nullptr; i++)
        printf("%p->%s[%d]=(%p) %s\n", static_cast<void *>(&entorno[i]), nombre_entorno, i,
               static_cast<void *>(entorno[i]), entorno[i]);
}

void Cmd_showenv(char *tr[]) {
    if (tr[0] == nullptr)
        MostrarEntorno(main3arg, "main arg3");
    else if (Igual(tr[0], "-environ"))
        MostrarEntorno(environ, "environ");
    else if (Igual(tr[0], "-addr"))
        printf("environ:   %p (almacenado en %p)\nmain arg3: %p (almacenado en %p)\n", static_cast<void *>(environ),
               static_cast<void *>(&environ), static_cast<void *>(main3arg), static_cast<void *>(addrmain3arg));
    else
        printf("Uso: %s [-environ|-addr]\n", tr[-1]);
}

void Cmd_showvar(char *tr[]) {
    if (tr[0] == nullptr) {
        MostrarEntorno(main3arg, "main arg3");
        return;
    }
    int pos;
    if ((pos = BuscarVariable(tr[0], main3arg)) != -1)
        printf("Con arg3 main %s(%p) @%p\n", main3arg[pos], static_cast<void *>(main3arg[pos]),
               static_cast<void *>(&main3arg[pos]));
    if ((pos = BuscarVariable(tr[0], environ)) != -1)
        printf("  Con environ %s(%p) @%p\n", environ[pos], static_cast<void *>(environ[pos]),
               static_cast<void *>(&environ[pos]));
    if (char *valor = getenv(tr[0]); valor != nullptr) printf("   Con getenv %s(%p)\n", valor, static_cast<void *>(valor));
}

void Cmd_changevar(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr || tr[2] == nullptr) {
        printf("Uso: %s [-a|-e|-p] var valor\n", tr[-1]);
        return;
    }
    int r;
    if (Igual(tr[0], "-a"))
        r = CambiarVariable(tr[1], tr[2], main3arg);
    else if (Igual(tr[0], "-e"))
        r = CambiarVariable(tr[1], tr[2], environ);
    else if (Igual(tr[0], "-p"))
        r = CambiarVariablePutenv(tr[1], tr[2]);
    else {
        printf("Uso: %s [-a|-e|-p] var valor\n", tr[-1]);
        return;
    }
    if (r == -1) printf("Imposible cambiar variable: %s\n", strerror(errno));
}

void Cmd_subsvar(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr || tr[2] == nullptr || tr[3] == nullptr) {
        printf("Uso: %s [-a|-e] var valor\n", tr[-1]);
        return;
    }
    int r;
    if (Igual(tr[0], "-a"))
        r = SustituirVariable(tr[1], tr[2], tr[3], main3arg);
    else if (Igual(tr[0], "-e"))
        r = SustituirVariable(tr[1], tr[2], tr[3], environ);
    else {
        printf("Uso: %s [-a|-e] var1 var2 valor\n", tr[-1]);
        return;
    }
    if (r == -1) printf("Imposible sustituir variable %s por %s: %s\n", tr[1], tr[2], strerror(errno));
}

void Cmd_envvar(char *tr[]) {
    if (tr[0] == nullptr)
        MostrarEntorno(main3arg, "main arg3");
    else if (Igual(tr[0], "-show"))
        Cmd_showvar(tr + 1);
    else if (Igual(tr[0], "-change"))
        Cmd_changevar(tr + 1);
    else if (Igual(tr[0], "-subs"))
        Cmd_subsvar(tr + 1);
    else
        Cmd_showvar(tr);
}

void Cmd_changevarWrong(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr || tr[2] == nullptr || tr[3] == nullptr) {
        printf("Uso: %s -a|-e|-p -mo|-ms|-ml  o|var valor\n", tr[-1]);
        return;
    }
    char **e = environ;
    if (Igual(tr[0], "-a"))
        e = main3arg;
    else if (Igual(tr[0], "-p"))
        e = nullptr;

    int r;
    const char *motivo;
    if (Igual(tr[1], "-mo")) {
        r = CambiarVariableMalOverwrite(tr[2], tr[3], e);
        motivo = "sobreescrito variable original";
    } else if (Igual(tr[1], "-ms")) {
        r = CambiarVariableMalStatic(tr[2], tr[3], e);
        motivo = "usado una variable estatica";
    } else if (Igual(tr[1], "-ma")) {
        r = CambiarVariableMalAutomatic(tr[2], tr[3], e);
        motivo = "usado una variable local";
    } else {
        printf("Uso: %s -a|-e|-p -mo|-ms|-ma  var valor\n", tr[-1]);
        return;
    }
    int error = errno;
    const char *acceso = e == nullptr ? "putenv" : e == environ ? "environ" : "tercer argumento de main";
    printf("%s MAL cambiada accediendo a traves de %s, por haber %s\n", tr[2], acceso, motivo);
    if (r == -1) printf("Imposible cambiar variable: %s\n", strerror(error));
}
