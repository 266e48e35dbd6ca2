// Shell core: command loop, command/alias/topic tables, string lists,
// help, assignment lists, prompt and the information commands.
#pragma once

#include <csetjmp>
#include <ctime>
#include <cstdint>

// ---------------------------------------------------------------- loop
constexpr int MAXLINEA = 4096;    // line buffer, including terminator
// A 4095-character line holds up to 2048 one-letter words ("a a ... a"), and
// the null after the last one needs a slot of its own: 2048 words plus the
// null make 2049 entries.
constexpr int MAXPALABRAS = 2049; // word array entries, including the null

using Manejador = void (*)(char *tr[]);

extern sigjmp_buf EstadoGuardado;  // restore point of the fault protection
extern char **main3arg;            // environment array given to main
extern char ***addrmain3arg;       // where main keeps that array
extern time_t FechaEjecutable;     // mtime of the executable or -1
extern int loopHistoric;

int TrocearCadena(char *cadena, char *trozos[]);
void ProcesarEntrada(char *tr[]);
void RepeatHistoric(int n);

// Standard input, through the shell's own buffer. LeerLinea reads as fgets
// does: up to tam-1 characters, through the newline; null at the end of input
// (which sticks) or on a failed read.
char *LeerLinea(char *linea, int tam);
// True when reading the next line cannot wait (input is a regular file, or
// has ended): nobody is waiting for output before that read.
bool EntradaSinEspera();
// Standard input is shared with the children the shell creates and with the
// files it is redirected to: call this before every fork, exec, direct use
// of descriptor 0 or change of it, so that input read ahead but not yet used
// goes back to the file, and the child, or the program it runs, reads on
// from the same place. Standard output is flushed as well; errno is kept.
void SincronizarEntrada();

// Marks the end of input as reached, as LeerLinea's own mark: it sticks
// until SincronizarEntrada.
void MarcarFinEntrada();

// Line editing at a terminal (terminal.cpp). EdicionDeLinea tells whether
// the next line is read through the line editor: standard input and output
// are a terminal, the shell was built with editline, the library could be
// loaded and input has not ended. LeerLineaEditada then prints the prompt and
// reads the line with editing, recall of the history and completion; it
// returns as LeerLinea does. EditorDisponible loads the library if it can.
bool EditorDisponible();
bool EdicionDeLinea();
char *LeerLineaEditada(char *linea, int tam);

// perror, after whatever standard output still holds: the two streams keep
// the order in which things were printed.
void ErrorSistema(const char *prefijo);

void Cmd_exit(char *tr[]);
void Cmd_hist(char *tr[]);
void Cmd_command(char *tr[]);

// ------------------------------------------------------ command tables
struct EntradaComando {
    const char *nombre;
    Manejador funcion;
    const char *ayuda;
    uint32_t topics;
};

struct EntradaAlias {
    const char *comando;
    const char *alias;
};

// Row access for the help listings and checks; the terminating row has a
// null name.
const EntradaComando *TablaComandos();
// The row of that name (the first, as a scan from the top finds it), or null.
const EntradaComando *BuscarComando(const char *nombre);
const EntradaAlias *TablaAlias();

const char *RealCommand(const char *cmd);
const char *RealCommandNoAbrev(const char *cmd);
const char *RealCommandAbrev(const char *cmd);
int IsInternalCommand(const char *cmd);
int IsCmdOrAlias(const char *cmd);
void HabilitarAbreviaturas();
void DeshabilitarAbreviaturas();
int EstadoAbreviaturas();
unsigned PrintGetAlias(const char *cmd, int imprimir);
unsigned GetAliasesLength(const char *cmd);
unsigned PrintAlias(const char *cmd);

void Cmd_abbrev(char *tr[]);
void Cmd_checkalias(char *tr[]);

// --------------------------------------------------------- string lists
constexpr int MAXLISTA = 4096;
using ListaCadenas = char *[MAXLISTA];

int AniadirElemento(char *lista[], const char *cad);
int AniadirElementoYaAsignado(char *lista[], char *cad);
int ElementosEnLista(char *lista[]);
void ImprimirListaFirst(char *lista[], int n, int numerado);
void ImprimirListaLast(char *lista[], int n, int numerado);
void ImprimirListaCompleta(char *lista[], int numerado);
int BuscarElemento(char *lista[], const char *cad);
int BorrarElemento(char *lista[], const char *cad);
void BorrarLista(char *lista[]);
char *GetPrimerElemento(char *lista[]);
char *GetSiguienteElemento(char *lista[], const char *cad);
char *GetFirstNextElement(char *lista[], int primero);
char *GetElemento(char *lista[], int n);

int HistoricAdd(const char *linea);
void HistoricClear();
char *HistoricGet(int n);
void HistoricPrint();
void HistoricPrintN(int n);
int HistoricDimension();

int PathAdd(const char *dir);
void PathClear();
int PathDel(const char *dir);
char *PathFirst();
char *PathNext();
void PathPrint();
int PathAddPath();

int EntornoAdd(char *cad);
void EntornoClear();

// ------------------------------------------------------------------ help
struct TopicAyuda {
    uint32_t mascara;
    const char *nombre;
    const char *nombrealt;
};

uint32_t GetTopic(const char *tpc);
void ListTopics(int alternativo);
int NumberOfColumns();
void ListCommands(uint32_t mascara);
void ListDebugCommands();
const char *CadenaDeAyuda(const char *cmd);
int PideAyuda(char *tr[]);
void Cmd_help(char *tr[]);
void Cmd_helpReducido(char *tr[]);

// ------------------------------------------------------ assignment lists
int IsValidCommand(const char *cmd);
// The current assignment lists, null-terminated, each a null-terminated list.
const char *const *const *ListasValidas();
int OverRide(const char *valor);
void ListValidCommands();
int CheckValidCommands(int verbose);
void Cmd_override(char *tr[]);
void Cmd_checkvalid(char *tr[]);

// ---------------------------------------------------------------- prompt
const char *CadenaEquivalente(char c);
const char *SetPrompt(const char *formato);
void SetPromptSpec(const char *formato);
void PrintPrompt();
const char *TextoPrompt();  // what PrintPrompt prints
void PrintPromptSpec();
const char *UserName();
const char *MachineName();
const char *OSName();
const char *ShellPid();
const char *Directory();
const char *DirectoryLast();
const char *DirectoryContracted();
void Cmd_prompt(char *tr[]);

// ---------------------------------------------------- information commands
void Cmd_version(char *tr[]);
void Cmd_fecha(char *tr[]);
void Cmd_date(char *tr[]);
void Cmd_time(char *tr[]);
void Cmd_pid(char *tr[]);
void Cmd_ppid(char *tr[]);
void Cmd_authors(char *tr[]);
void Cmd_systemd(char *tr[]);
void Cmd_sysinfo(char *tr[]);
void Cmd_limits(char *tr[]);
void Cmd_chdir(char *tr[]);
void Cmd_chroot(char *tr[]);
void Cmd_pwd(char *tr[]);

void PrintLimits(int recurso, const char *nombre, const char *unidad, unsigned long long divisor);
void PrintLimitsAddressSpace();
void PrintLimitsDataSize();
void PrintLimitsFileSize();
void PrintLimitsOpenFiles();
void PrintLimitsResidentSetSize();
void PrintLimitsStackSize();
void PrintLimitsCoreSize();
void PrintLimitsRamLock();
void PrintLimitsProcessUser();
void PrintLimitsPseudoTerminals();
void PrintLimitsCPU();
void PrintAllLimits();
