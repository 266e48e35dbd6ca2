// Help: the topics, the listings laid out to the terminal's width, help
// about one command and the "-?"/"-help" request after any word.
#include "core/core.h"

#include <cstdio>
#include <cstring>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr TopicAyuda topics[] = {
    {0x2, "info", "information"},   {0x4, "files", "ficheros"},     {0x8, "environ", "entorno"},
    {0x10, "memory", "memoria"},    {0x20, "memlist", "listamemoria"}, {0x40, "processes", "procesos"},
    {0x80, "signals", "senales"},   {0x100, "memoryFS", "SFmemoria"}, {0x1, "others", "otros"},
    {0, nullptr, nullptr},
};

bool Igual(const char *a, std::string_view b) { return a != nullptr && b == a; }

}  // namespace

uint32_t GetTopic(const char *tpc) {
    for (const TopicAyuda *t = topics; t->nombre != nullptr; t++)
        if (Igual(tpc, t->nombre) || Igual(tpc, t->nombrealt)) return t->mascara;
    return 0;
}

void ListTopics(int alternativo) {
    for (const TopicAyuda *t = topics; t->nombre != nullptr; t++) printf("%s ", alternativo ? t->nombrealt : t->nombre);
    printf("\n");
}

int NumberOfColumns() {
    struct winsize w {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &w) == -1) return -1;
    return w.ws_col;
}

void ListCommands(uint32_t mascara) {
    // Signed comparisons on purpose: with no terminal the width is -1 and
    // every name and every group of aliases (even an empty one) starts a line.
    const int ancho = NumberOfColumns();
    int columna = 0;
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++) {
        if ((c->topics & mascara) == 0) continue;
        if (columna + static_cast<int>(strlen(c->nombre)) > ancho) {
            printf("\n");
            columna = 1;  // the characters that newline printed, not 0
        }
        columna += printf("%s ", c->nombre);
        if (columna + static_cast<int>(GetAliasesLength(c->nombre)) > ancho) {
            printf("\n");
            columna = 1;
        }
        columna += static_cast<int>(PrintAlias(c->nombre));
    }
    printf("\n");
}

void ListDebugCommands() {
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++)
        if (c->topics == 0) printf("%s ", c->nombre);
    printf("\n");
}

const char *CadenaDeAyuda(const char *cmd) {
    for (const EntradaComando *c = TablaComandos(); c->nombre != nullptr; c++)
        if (Igual(cmd, c->nombre)) return c->ayuda;
    return "no encontrado";
}

void Cmd_helpReducido(char *tr[]) {
    if (tr[0] == nullptr) {
        ListValidCommands();
        return;
    }
    if (IsValidCommand(tr[0]))
        printf("%s: %s\n", tr[0], CadenaDeAyuda(RealCommand(tr[0])));
    else
        printf("%s: %s\n", tr[0], "no encontrado");
}

void Cmd_help(char *tr[]) {
    if (!OverRide(nullptr)) {
        Cmd_helpReducido(tr);
        return;
    }
    if (tr[0] == nullptr) {
        printf("'%s [cmd|-lt|-T topic|-all]' ayuda sobre comandos\n\t\tComandos disponibles:\n", tr[-1]);
        ListCommands(0xffff);
    } else if (Igual(tr[0], "-lt")) {
        // Typed as "ayuda" (or any other name), the alternative names show.
        ListTopics(!Igual(tr[-1], "help"));
    } else if (Igual(tr[0], "-T")) {
        uint32_t mascara = 0;
        for (int i = 1; tr[i] != nullptr; i++) mascara |= GetTopic(tr[i]);
        ListCommands(mascara);
    } else if (Igual(tr[0], "-all")) {
        for (const TopicAyuda *t = topics; t->nombre != nullptr; t++) {
            printf("\n**********%s (%s) \n", t->nombre, t->nombrealt);
            ListCommands(t->mascara);
        }
    } else if (Igual(tr[0], "-debug")) {
        ListDebugCommands();
    } else {
        const char *cmd = RealCommand(tr[0]);
        if (cmd == nullptr)
            printf("abreviatura no unica: %s\n", tr[0]);
        else
            printf("%s: %s\n", tr[0], CadenaDeAyuda(cmd));
    }
}

int PideAyuda(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) return 0;
    if (!Igual(tr[1], "-help") && !Igual(tr[1], "-?")) return 0;
    // The line's first word takes the place of help's first argument. help
    // reads the entry before its arguments as its own name; a line array has
    // no such entry, so hand it a copy that starts with the request word.
    char *args[MAXPALABRAS + 1];
    args[0] = tr[1];
    int i = 0;
    while (i < MAXPALABRAS - 1 && tr[i] != nullptr) {
        args[i + 1] = tr[i];
        i++;
    }
    args[i + 1] = nullptr;
    Cmd_help(args + 1);
    return 1;
}
