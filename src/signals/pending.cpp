// Signals: handlers not built yet; each is replaced by its real one.
#include "signals/signals.h"

volatile sig_atomic_t HaySenales = 0;

void Cmd_siginfo(char *[]) {}
void Cmd_sigcount(char *[]) {}
void Cmd_sigdefault(char *[]) {}
void Cmd_sigignore(char *[]) {}
void Cmd_sigmask(char *[]) {}
void Cmd_sigunmask(char *[]) {}
void Cmd_sigprocmask(char *[]) {}
void Cmd_sighandler(char *[]) {}
void Cmd_sigaction(char *[]) {}
void Cmd_limitresend(char *[]) {}
void Cmd_sigaltstack(char *[]) {}
void Cmd_usesignals(char *[]) {}
void Cmd_segmentation(char *[]) {}
void Cmd_fpe(char *[]) {}
void Cmd_protectsegv(char *[]) {}
void Cmd_protectfpe(char *[]) {}
void Cmd_bucle(char *[]) {}
int ValorSenal(const char *) { return -1; }
const char *NombreSenal(int) { return "SIGUNKNOWN"; }
