// Core pieces not built yet; each is replaced by its real one.
#include "core/core.h"

#include <cstdio>

int PideAyuda(char *[]) { return 0; }
void Cmd_help(char *[]) {}
void PrintPrompt() { printf("-> "); }
void Cmd_prompt(char *[]) {}
void Cmd_version(char *[]) {}
void Cmd_fecha(char *[]) {}
void Cmd_date(char *[]) {}
void Cmd_time(char *[]) {}
void Cmd_pid(char *[]) {}
void Cmd_ppid(char *[]) {}
void Cmd_authors(char *[]) {}
void Cmd_systemd(char *[]) {}
void Cmd_sysinfo(char *[]) {}
void Cmd_limits(char *[]) {}
void Cmd_chdir(char *[]) {}
void Cmd_chroot(char *[]) {}
void Cmd_pwd(char *[]) {}
