// Processes: handlers not built yet; each is replaced by its real one.
#include "processes/processes.h"

ListaProcesos LP;
void VaciarListaProcesos(ListaProcesos *) {}

void Cmd_showenv(char *[]) {}
void Cmd_showvar(char *[]) {}
void Cmd_changevar(char *[]) {}
void Cmd_subsvar(char *[]) {}
void Cmd_envvar(char *[]) {}
void Cmd_changevarWrong(char *[]) {}
void Cmd_getuid(char *[]) {}
void Cmd_setuid(char *[]) {}
void Cmd_uid(char *[]) {}
void Cmd_priority(char *[]) {}
void Cmd_exec(char *[]) {}
void Cmd_execpri(char *[]) {}
void Cmd_execute_as(char *[]) {}
void Cmd_pplano(char *[]) {}
void Cmd_splano(char *[]) {}
void Cmd_pplanopri(char *[]) {}
void Cmd_splanopri(char *[]) {}
void Cmd_pplanoas(char *[]) {}
void Cmd_splanoas(char *[]) {}
void Cmd_fork(char *[]) {}
void Cmd_where(char *[]) {}
void Cmd_search(char *[]) {}
void Cmd_listjobs(char *[]) {}
void Cmd_deljobs(char *[]) {}
void Cmd_job(char *[]) {}
void Cmd_pipe(char *[]) {}
void Cmd_backpipe(char *[]) {}
