// Files: handlers not built yet; each is replaced by its real one.
#include "files/files.h"

void InitOpenFiles() {}
void ClearOpenFilesList() {}

void Cmd_open(char *[]) {}
void Cmd_close(char *[]) {}
void Cmd_dup(char *[]) {}
void Cmd_dup2(char *[]) {}
void Cmd_listopen(char *[]) {}
void Cmd_read(char *[]) {}
void Cmd_write(char *[]) {}
void Cmd_lseek(char *[]) {}
void Cmd_readstr(char *[]) {}
void Cmd_writestr(char *[]) {}
void Cmd_list(char *[]) {}
void Cmd_listdir(char *[]) {}
void Cmd_listrec(char *[]) {}
void Cmd_listrev(char *[]) {}
void Cmd_dir(char *[]) {}
void Cmd_setdirparams(char *[]) {}
void Cmd_getdirparams(char *[]) {}
void Cmd_create(char *[]) {}
void Cmd_makefile(char *[]) {}
void Cmd_makedir(char *[]) {}
void Cmd_delete(char *[]) {}
void Cmd_deltree(char *[]) {}
void Cmd_hardlink(char *[]) {}
void Cmd_symlink(char *[]) {}
void Cmd_link(char *[]) {}
void Cmd_redin(char *[]) {}
void Cmd_redout(char *[]) {}
void Cmd_rederr(char *[]) {}
void Cmd_initredir(char *[]) {}
void Cmd_clearredir(char *[]) {}
int AddOpenFile(int, const char *, int, int) { return -1; }
int RemoveOpenFile(int) { return -1; }
