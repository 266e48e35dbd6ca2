// The prompt: a format with %-conversions, expanded anew each time it
// is printed so that it follows changes of directory and of user.
#include "core/core.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

constexpr size_t MAXPROMPT = 1024;

char promptspec[MAXPROMPT] = "%o@%m{%B}%b%%)%b";

struct Liberar {
    void operator()(char *p) const { free(p); }
};
using CadenaC = std::unique_ptr<char, Liberar>;

// Copies at most what fits and always terminates (tam > 0).
const char *Copiar(char *destino, size_t tam, const char *origen) {
    size_t n = strnlen(origen, tam - 1);
    memcpy(destino, origen, n);
    destino[n] = '\0';
    return destino;
}

}  // namespace

const char *UserName() {
    static char nombre[256];
    struct passwd *p = getpwuid(geteuid());
    return Copiar(nombre, sizeof nombre, p == nullptr ? "UnknownUser" : p->pw_name);
}

const char *MachineName() {
    static struct utsname u;
    if (uname(&u) == -1) return "UnknownMachine";
    u.nodename[strcspn(u.nodename, ".")] = '\0';
    return u.nodename;
}

const char *OSName() {
    // The system's name cannot change while the process lives (the host name
    // can): one successful query serves every later prompt.
    static struct utsname u;
    static bool leido = false;
    if (!leido && uname(&u) == -1) return "UnknownO.S.";
    leido = true;
    return u.sysname;
}

const char *ShellPid() {
    static char pid[32];
    snprintf(pid, sizeof pid, "%llu", static_cast<unsigned long long>(getpid()));
    return pid;
}

const char *Directory() {
    static char dir[MAXPROMPT];
    char cwd[MAXPROMPT];
    if (getcwd(cwd, sizeof cwd) == nullptr) return "UnknownDir";
    // realpath's own buffer may need PATH_MAX bytes: let it allocate.
    CadenaC canonico(realpath(cwd, nullptr));
    if (canonico == nullptr) return "UnknownDir";
    return Copiar(dir, sizeof dir, canonico.get());
}

const char *DirectoryLast() {
    static char ultimo[MAXPROMPT];
    char cwd[MAXPROMPT];
    if (getcwd(cwd, sizeof cwd) == nullptr) return "UnknownDir";
    const char *barra = strrchr(cwd, '/');
    // The root directory is its own last component.
    if (barra == nullptr || (barra == cwd && cwd[1] == '\0')) return Copiar(ultimo, sizeof ultimo, cwd);
    return Copiar(ultimo, sizeof ultimo, barra + 1);
}

const char *DirectoryContracted() {
    static char contraido[MAXPROMPT];
    const char *dir = Directory();
    struct passwd *p = getpwuid(geteuid());
    if (p == nullptr || p->pw_dir == nullptr) return dir;
    CadenaC home(realpath(p->pw_dir, nullptr));
    if (home == nullptr) return dir;
    size_t n = strlen(home.get());
    // No '/' is required after the home prefix: /home/anabel contracts to
    // "~bel" for /home/ana, and that stays so.
    if (n == 0 || strncmp(dir, home.get(), n) != 0) return dir;
    Copiar(contraido, sizeof contraido, dir + n - 1);
    contraido[0] = '~';
    return contraido;
}

const char *CadenaEquivalente(char c) {
    switch (c) {
    case 'u': return UserName();
    case 'p': return ShellPid();
    case 'd': return Directory();
    case 'D': return DirectoryContracted();
    case 'B': return DirectoryLast();
    case 'm': return MachineName();
    case 'o': return OSName();
    case 't': return "\t";
    case 'n': return "\n";
    case 'b': return " ";
    case '%': return "%";
    default: return nullptr;
    }
}

const char *SetPrompt(const char *formato) {
    static char prompt[MAXPROMPT];
    char aux[MAXPROMPT];
    if (formato == nullptr || strlen(formato) >= MAXPROMPT) return nullptr;  // could never be stored
    size_t n = 0;
    auto anadir = [&](const char *s) {
        // An expansion that outgrows the buffer is cut, but the rest of the
        // format is still checked.
        for (; *s != '\0' && n < MAXPROMPT - 1; s++) aux[n++] = *s;
    };
    for (const char *p = formato; *p != '\0'; p++) {
        if (*p != '%') {
            const char c[2] = {*p, '\0'};
            anadir(c);
            continue;
        }
        const char *texto = CadenaEquivalente(*++p);
        if (texto == nullptr) return nullptr;  // includes a final lone '%'
        anadir(texto);
    }
    aux[n] = '\0';
    memcpy(prompt, aux, n + 1);
    return prompt;
}

void SetPromptSpec(const char *formato) { Copiar(promptspec, sizeof promptspec, formato); }

const char *TextoPrompt() {
    const char *p = SetPrompt(promptspec);
    return p != nullptr ? p : "";
}

void PrintPrompt() {
    const char *p = SetPrompt(promptspec);
    if (p != nullptr) fputs(p, stdout);
}

void PrintPromptSpec() { printf("%s", promptspec); }

void Cmd_prompt(char *tr[]) {
    if (tr[0] == nullptr) {
        PrintPromptSpec();
        printf("  --->  ");
        PrintPrompt();
        printf("\n");
        return;
    }
    if (SetPrompt(tr[0]) == nullptr) {
        printf("error al generar el prompt, se mantiene el antiguo\n");
        return;
    }
    SetPromptSpec(tr[0]);
}
