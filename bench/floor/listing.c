/* Floor of a long recursive listing, after the start-up lines and prompt:
 * each entry described from one lstat, owner and group names looked up once
 * per id; subdirectories listed after their parent, found by reading the
 * directory a second time (its entries' recorded types), as the shell's
 * listing must; output in large pieces. */
#include <dirent.h>
#include <grp.h>
#include <pwd.h>
#include <stdlib.h>

#include "floor.h"

struct nombre {
    unsigned id;
    char texto[64];
};
static struct nombre usuarios[64], grupos[64];
static int nusuarios, ngrupos;

static const char *buscar(struct nombre *t, int *n, unsigned id, int grupo) {
    for (int i = 0; i < *n; i++)
        if (t[i].id == id) return t[i].texto;
    const char *s = "??????";
    if (grupo) {
        struct group *g = getgrgid(id);
        if (g != NULL) s = g->gr_name;
    } else {
        struct passwd *p = getpwuid(id);
        if (p != NULL) s = p->pw_name;
    }
    if (*n == 64) return s;
    t[*n].id = id;
    snprintf(t[*n].texto, sizeof t[*n].texto, "%s", s);
    return t[(*n)++].texto;
}

static void permisos(mode_t m, char *p) {
    strcpy(p, "----------");
    p[0] = S_ISDIR(m) ? 'd' : S_ISLNK(m) ? 'l' : S_ISREG(m) ? '-' : '?';
    const char *rwx = "rwxrwxrwx";
    for (int i = 0; i < 9; i++)
        if (m & (0400 >> i)) p[i + 1] = rwx[i];
}

static void listar(const char *dir) {
    DIR *d = opendir(dir);
    if (d == NULL) return;
    printf("************%s\n", dir);
    struct dirent *e;
    while ((e = readdir(d)) != NULL) {
        if (e->d_name[0] == '.') continue;
        char path[4096];
        struct stat st;
        struct tm t;
        char p[11];
        snprintf(path, sizeof path, "%s/%s", dir, e->d_name);
        if (lstat(path, &st) == -1) continue;
        localtime_r(&st.st_mtime, &t);
        permisos(st.st_mode, p);
        printf("%4d/%02d/%02d-%02d:%02d %3lu (%8lu)%9s%9s %s %8lu %s\n", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,
               t.tm_hour, t.tm_min, (unsigned long)st.st_nlink, (unsigned long)st.st_ino,
               buscar(usuarios, &nusuarios, st.st_uid, 0), buscar(grupos, &ngrupos, st.st_gid, 1), p,
               (unsigned long)st.st_size, e->d_name);
    }
    closedir(d);
    if ((d = opendir(dir)) == NULL) return;
    while ((e = readdir(d)) != NULL) {
        char path[4096];
        struct stat st;
        if (e->d_name[0] == '.') continue;
        snprintf(path, sizeof path, "%s/%s", dir, e->d_name);
#ifdef DT_DIR
        if (e->d_type != DT_UNKNOWN) {
            if (e->d_type == DT_DIR) listar(path);
            continue;
        }
#endif
        if (lstat(path, &st) == 0 && S_ISDIR(st.st_mode)) listar(path);
    }
    closedir(d);
}

int main(int argc, char *argv[]) {
    floor_arranque(argv[0]);
    floor_prompt();
    for (int i = 1; i < argc; i++) listar(argv[i]);
    floor_prompt();
    return 0;
}
