// Signals: names, masks and dispositions, the configurable handler, faults
// with recovery and busy loops.
#pragma once

#include <csignal>

// ------------------------------------------- names, masks, dispositions
struct SenalNombre {
    const char *nombre;
    int senal;
};

// Signal sets cover the signals 1 to 32 only.
constexpr int MAXSENALCONJUNTO = 32;
void AnadirAConjunto(sigset_t *s, int sen);  // ignores numbers outside 1..32

int ValorSenal(const char *nombre);
const char *NombreSenal(int sen);
int EnmascararSenal(int sen);
int DesenmascararSenal(int sen);
int EstaEnmascaradaSenal(int sen);
int EstaIgnoradaSenal(int sen);
int EstaDefectoSenal(int sen);
int InstalarManejadorSenal(int sen, void (*manejador)(int), int flags, sigset_t *mascara);
// Whether a signal may have a handler the shell installed (through the
// operation above): a child that shares the shell's memory must not run one.
bool HayManejadoresPropios();
const char *InfoMascara(const sigset_t *s);
const char *InfoHandlerSenal(int sen);
const char *InfoManejador(int sen);
const char *InfoSenal(int sen);
void MostrarInfoSenal(const char *nombre);
void MostrarInfoTodasSenales();
void MostrarSenalesIgnoradas();
void MostrarSenalesDefecto();
void MostrarSenalesEnmascaradas();
void MostrarContSenal(const char *nombre);
void MostrarContTodasSenales();
void ClearContSenal(const char *nombre);
void ClearContTodasSenales();

void Cmd_siginfo(char *tr[]);
void Cmd_sigcount(char *tr[]);
void Cmd_sigdefault(char *tr[]);
void Cmd_sigignore(char *tr[]);
void Cmd_sigmask(char *tr[]);
void Cmd_sigunmask(char *tr[]);
void Cmd_sigprocmask(char *tr[]);

// -------------------------------------------------------------- handlers
// Per-signal settings of `handler`, indexed by signal number.
constexpr int MAXSENALES = 32;
extern int cont[MAXSENALES];   // receptions counted
extern int v[MAXSENALES];      // report each reception
extern int r[MAXSENALES];      // send it again
extern int delay[MAXSENALES];  // seconds to sleep before returning
extern int maxreenvios;        // re-send while the count is below it; 0: always

// Set by `usesignals`: a failed read of input is retried, not the end.
extern volatile sig_atomic_t HaySenales;

void handler(int sen);
void Showstack();
void Setstack(char *tr[]);

void Cmd_sighandler(char *tr[]);
void Cmd_sigaction(char *tr[]);
void Cmd_limitresend(char *tr[]);
void Cmd_sigaltstack(char *tr[]);
void Cmd_usesignals(char *tr[]);

// ------------------------------------------------ faults and busy loops
void VolverAMain(int sen);
int TestSetBucle(int set, int valor);
void Cmd_segmentation(char *tr[]);
void Cmd_fpe(char *tr[]);
void Cmd_protectsegv(char *tr[]);
void Cmd_protectfpe(char *tr[]);
void Cmd_bucle(char *tr[]);
