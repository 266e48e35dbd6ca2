// Files: the open-file table, descriptor I/O, file description, listings,
// creation and deletion, and redirection of the shell's standard streams.
#pragma once

#include <ctime>
#include <sys/types.h>

// ------------------------------------------------------- open-file table
constexpr int MAXFICHEROS = 4096;

struct FicheroAbierto {
    char *nombre;   // owned; null marks an unused position
    int modo;       // open flags
    int redireccion;
};

void InitOpenFiles();
int AddOpenFile(int df, const char *nombre, int modo, int redireccion);
int RemoveOpenFile(int df);
void ClearOpenFilesList();
const char *NombreFicheroDescriptor(int df);
int DescriptorEnUso(int df);
int DescriptorRedireccion(int df);
void UsarEnRedireccion(int df);
void LiberarDeRedireccion(int df);
const char *CadOffset(int df);
void PrintOpenFile(int df);
void ListOpenFiles(int n);
// A typed descriptor or small integer, read as atoi reads it but clamped to
// the range of int instead of overflowing.
int LeerDescriptor(const char *s);

void Cmd_open(char *tr[]);
void Cmd_close(char *tr[]);
void Cmd_dup(char *tr[]);
void Cmd_dup2(char *tr[]);
void Cmd_listopen(char *tr[]);

// ------------------------------------------------------- descriptor I/O
void Cmd_read(char *tr[]);
void Cmd_write(char *tr[]);
void Cmd_lseek(char *tr[]);
void Cmd_readstr(char *tr[]);
void Cmd_writestr(char *tr[]);

// ------------------------------------------------------ file description
char TipoFichero(mode_t m);
const char *Permisos(mode_t m);
const char *NombreUsuario(uid_t uid);
const char *NombreGrupo(gid_t gid);
const char *Fecha2(time_t t);
const char *ConvertirDia(time_t t);
const char *ConvertirHora(time_t t);
const char *Fecha(time_t t);
off_t TamanoFichero(const char *path);
time_t FechaFichero(const char *path);
void AnadeEnlace(char *linea, const char *path);
const char *DetallesFichero(int corto, const char *dir, const char *nombre, int link, int acc);
void *cadtop(const char *s);
void PrintDirActual();
void Cmd_stat(char *tr[]);

// ------------------------------------------------------------- listings
int EsDirectorio(const char *path);
int EsDirLargo();
int EsDirOcultos();
int EsDirLink();
int EsDirRecursivo();
int ListarDirectorioSimple(const char *dir, int corto, int ocultos, int link, int acc);
int ListarSubdirectorios(const char *dir, int corto, int ocultos, int modo, int link, int acc);
int ListarDirectorio(const char *dir, int corto, int ocultos, int modo, int link, int acc);
void GetDirParams();

void Cmd_list(char *tr[]);
void Cmd_listdir(char *tr[]);
void Cmd_listrec(char *tr[]);
void Cmd_listrev(char *tr[]);
void Cmd_dir(char *tr[]);
void Cmd_setdirparams(char *tr[]);
void Cmd_getdirparams(char *tr[]);

// ---------------------------------------------- create, delete and link
int CreateFile(const char *path);
int BorrarDirectorio(const char *path);

void Cmd_create(char *tr[]);
void Cmd_makefile(char *tr[]);
void Cmd_makedir(char *tr[]);
void Cmd_delete(char *tr[]);
void Cmd_deltree(char *tr[]);
void Cmd_hardlink(char *tr[]);
void Cmd_symlink(char *tr[]);
void Cmd_link(char *tr[]);

// ------------------------------------------ redirection of std streams
int HayRedireccion();
int IsRedir(int df);
void InitRedir();
int DoRedir(int df, const char *fich);
int UndoRedir(int df);
void ShowRedir();
void ClearRedir();

void Cmd_redin(char *tr[]);
void Cmd_redout(char *tr[]);
void Cmd_rederr(char *tr[]);
void Cmd_initredir(char *tr[]);
void Cmd_clearredir(char *tr[]);
