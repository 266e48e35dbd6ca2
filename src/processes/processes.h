// Processes: environment, credentials and priority, program execution,
// background jobs and pipes.
#pragma once

#include <ctime>
#include <sys/types.h>

// ------------------------------------------------------------ environment
int BuscarVariable(const char *var, char *e[]);
int CambiarVariable(const char *var, const char *valor, char *e[]);
int CambiarVariablePutenv(const char *var, const char *valor);
int SustituirVariable(const char *var1, const char *var2, const char *valor, char *e[]);
int CambiarVariableMalOverwrite(const char *var, const char *valor, char *e[]);
int CambiarVariableMalAutomatic(const char *var, const char *valor, char *e[]);
int CambiarVariableMalStatic(const char *var, const char *valor, char *e[]);
void MostrarEntorno(char **entorno, const char *nombre_entorno);

void Cmd_showenv(char *tr[]);
void Cmd_showvar(char *tr[]);
void Cmd_changevar(char *tr[]);
void Cmd_subsvar(char *tr[]);
void Cmd_envvar(char *tr[]);
void Cmd_changevarWrong(char *tr[]);

// ------------------------------------------------- credentials, priority
uid_t UidUsuario(const char *nombre);
int CambiarCredencial(const char *nombre);
int ComprobarPrioridad(char *tr[], int *prio);

void Cmd_getuid(char *tr[]);
void Cmd_setuid(char *tr[]);
void Cmd_uid(char *tr[]);
void Cmd_priority(char *tr[]);

// ------------------------------------------------------------- execution
// Capacity of the environment built for one execution; the array handed to
// ComprobarEntorno must hold MAXENTORNO pointers plus the terminating null.
constexpr int MAXENTORNO = 128;

int exec(char *tr[], const char *usuario, int *prioridad);
int Proceso(char *tr[], int segundoplano, const char *usuario, int *prioridad);
const char *Ejecutable(const char *s);
int ComprobarSegundoPlano(char *tr[]);
int ComprobarEntorno(char *tr[], char *env[]);
int doRedirExec(char *tr[], int df, char ch);
int ComprobarRedireccionExec(char *tr[]);

void Cmd_exec(char *tr[]);
void Cmd_execpri(char *tr[]);
void Cmd_execute_as(char *tr[]);
void Cmd_pplano(char *tr[]);
void Cmd_splano(char *tr[]);
void Cmd_pplanopri(char *tr[]);
void Cmd_splanopri(char *tr[]);
void Cmd_pplanoas(char *tr[]);
void Cmd_splanoas(char *tr[]);
void Cmd_fork(char *tr[]);
void Cmd_where(char *tr[]);
void Cmd_search(char *tr[]);

// ------------------------------------------------------ background jobs
constexpr int MAXPROCESOS = 1024;

constexpr int ACTIVO = 1;
constexpr int PARADO = 2;
constexpr int SENALADO = 4;
constexpr int TERMINADO = 8;

struct InfoProceso {
    int pid;
    int usuario;
    int estado;
    int valor;
    time_t lanzamiento;
    char *linea;   // owned, may be null
};

struct ListaProcesos {
    InfoProceso procesos[MAXPROCESOS];
    int n;
};

// The shell's job list. Other subsystems only hand it to the operations
// below; they never touch its fields.
extern ListaProcesos LP;

ListaProcesos *CrearListaProcesos(ListaProcesos *l);
int MeterProceso(ListaProcesos *l, pid_t pid, int usuario, char *tr[]);
char *crearLineaComando(char *tr[]);
int BuscarProcesoPid(ListaProcesos *l, pid_t pid);
int estadoProceso(const InfoProceso *p);
int EstadoProcesoPid(ListaProcesos *l, pid_t pid);
int borrarProceso(ListaProcesos *l, int i);
int BorrarProcesoPid(ListaProcesos *l, pid_t pid);
int BorrarProcesosEstado(ListaProcesos *l, int mascara);
void VaciarListaProcesos(ListaProcesos *l);
void actualizarProceso(InfoProceso *p);
void ActualizarListaProcesos(ListaProcesos *l);
void imprimirProceso(InfoProceso *p);
void ImprimirListaProcesos(ListaProcesos *l, int mascara);
int MostrarProcesoPid(ListaProcesos *l, pid_t pid);
const char *nombreEstado(int estado);
const char *valorEstado(int valor);
const char *nombreUsuario(int uid);
const char *fecha(time_t t);

void Cmd_listjobs(char *tr[]);
void Cmd_deljobs(char *tr[]);
void Cmd_job(char *tr[]);

// ------------------------------------------------------------------ pipes
int HacerPipe(char *tr1[], char *tr2[], int segundoplano);
void Cmd_pipe(char *tr[]);
void Cmd_backpipe(char *tr[]);
