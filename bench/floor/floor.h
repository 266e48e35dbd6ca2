/* What the floor programs share: the start-up lines and the prompt, made
 * from the same queries the shell must make (its executable's date, the
 * system and machine names, the working directory), and output gathered in
 * one large buffer. Plain C and POSIX: a floor must run wherever the shell
 * does. */
#ifndef FLOOR_H
#define FLOOR_H

#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

static char floor_salida[1 << 16];

/* The three start-up lines (the date of the program's own file, as the
 * shell's version line shows it). */
static inline void floor_arranque(const char *argv0) {
    struct stat st;
    struct tm t;
    setvbuf(stdout, floor_salida, _IOFBF, sizeof floor_salida);
    printf("Iniciando shell..\n");
    if (lstat(argv0, &st) == 0 && localtime_r(&st.st_mtime, &t) != NULL)
        printf("version del shell 6.I.02 Fecha ejecutable: %02d/%02d/%04d, %02d:%02d:%02d\n", t.tm_mday,
               t.tm_mon + 1, t.tm_year + 1900, t.tm_hour, t.tm_min, t.tm_sec);
}

/* The prompt, expanded anew: the system's name once, then per line the
 * machine's name and the last component of the working directory. */
static inline void floor_prompt(void) {
    static struct utsname os;
    static int leido;
    struct utsname u;
    char cwd[1024];
    const char *ultimo = "UnknownDir";
    if (!leido) leido = uname(&os) == 0;
    if (uname(&u) == 0) u.nodename[strcspn(u.nodename, ".")] = '\0';
    if (getcwd(cwd, sizeof cwd) != NULL) {
        const char *barra = strrchr(cwd, '/');
        ultimo = barra == NULL || barra[1] == '\0' ? cwd : barra + 1;
    }
    printf("%s@%s{%s} %%) ", os.sysname, u.nodename, ultimo);
}

/* Reads one line; standard input that is not a regular file gets what was
 * printed first, as the shell's prompt must appear before it waits. */
static inline char *floor_linea(char *buf, int tam) {
    static int fichero = -1;
    if (fichero == -1) {
        struct stat st;
        fichero = fstat(STDIN_FILENO, &st) == 0 && S_ISREG(st.st_mode);
    }
    if (!fichero) fflush(stdout);
    return fgets(buf, tam, stdin);
}

#endif
