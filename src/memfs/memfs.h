// In-memory file system: the format inside a memory block, copies and moves
// between disk and memory, labels and the memfs commands.
#pragma once

#include <cstdint>
#include <ctime>

constexpr uint32_t MAGICO_SF = 0x110691;

struct CabeceraSF {
    uint32_t magico;
    uint32_t capacidad;
    uint32_t ficheros;
    uint32_t tamano;
    uint32_t libres;
    uint32_t reservado;
    int64_t formateo;
};
static_assert(sizeof(CabeceraSF) == 32);

struct EntradaFicheroSF {
    char nombre[256];
    uint32_t tamano;
    uint32_t desplazamiento;
    int64_t tiempo;
};
static_assert(sizeof(EntradaFicheroSF) == 272);

// A file: a file-system address (null: no valid file system; all bits set:
// a file on disk whose path is the name) and a name.
struct IdFich {
    void *sf;
    char *nombre;
};

inline void *const SF_DISCO = reinterpret_cast<void *>(~uintptr_t{0});

// ---------------------------------------------------------------- format
uint64_t TamanoSF(uint32_t n);
int EspacioInsuficiente(uint32_t n, uint32_t tam);
int EsValidoSF(const void *sf);
// Whatever a valid header claims, each operation first compares the bytes it
// is about to touch with these: the memory the shell owns from sf on (the real
// size of the listed block starting there, 0 when none does), where the table
// ends after n entries, where the data area begins.
uint64_t BytesDelBloque(const void *sf);
constexpr uint64_t FinEntradas(uint64_t n) { return sizeof(CabeceraSF) + sizeof(EntradaFicheroSF) * n; }
uint64_t InicioDatos(const void *sf);
// The header and the entries in use, which listing and finding read.
int EntradasEnElBloque(const void *sf);
int FormatearSF(void *sf, uint32_t n, uint32_t tam);
void *DirPrincipioDatos(void *sf);
void *DirPrincipioDatosFichero(void *sf, uint32_t i);
void *DirFinalDatos(void *sf);
uint32_t NuevoDesplazamiento(void *sf, uint32_t i);
int64_t auxTamanoFichero(const char *path);
int64_t LeerFicheroDisco(const char *path, void *dir, uint64_t max);
int64_t EscribirFicheroDisco(const char *path, const void *dir, uint64_t len, int sobreescribir);
void ListarSF(void *sf);
int BuscarFicheroSF(void *sf, const char *nombre);
int BorrarFicheroSF(IdFich id);

// -------------------------------------------------------- copy and move
int32_t CopyDiskDisk(const char *origen, const char *destino);
int32_t CopyDiskMem(const char *origen, IdFich destino);
int32_t CopyMemDisk(IdFich origen, const char *destino);
int32_t CopyMemMem(IdFich origen, IdFich destino);
int32_t CopiarFicheroSF(IdFich origen, IdFich destino);
int32_t MoverFicheroSF(IdFich origen, IdFich destino);
int BorrarFichero(IdFich id);

// ---------------------------------------------------------------- labels
constexpr int MAXLABELS = 2048;     // the last slot is never used
constexpr int MAXNOMBRELABEL = 7;   // characters of a name that count

struct EntradaLabel {
    char nombre[MAXNOMBRELABEL + 1];  // the last byte stays zero
    void *direccion;                  // null: free slot
};

// Operations on a given table...
void InicializarListaLabel(EntradaLabel t[]);
int AniadirLabel(EntradaLabel t[], const char *nombre, void *dir);
int BuscarLabel(EntradaLabel t[], const char *nombre);
int BorrarLabel(EntradaLabel t[], const char *nombre);
void *ObtenerAddr(EntradaLabel t[], const char *nombre);
const char *ObtenerLabel(EntradaLabel t[], const void *dir);
void *ObtenerPrimeraDireccion(EntradaLabel t[]);
void *ObtenerSiguienteDireccion(EntradaLabel t[], const void *dir);
// ...and on the shell's one table.
void InitLabel();
int LabelAdd(const char *nombre, void *dir);
int LabelDel(const char *nombre);
void *LabelAddr(const char *nombre);
const char *LabelLabel(const void *dir);
void *LabelFirstAddr();
void *LabelNextAddr(const void *dir);

// ------------------------------------------------ naming file systems
// The start of a malloc or shared block of the shell's block list.
int ValidAddrForMakingFS(const void *dir);
int ValidSFAddr(const void *dir);
// "idsf:nombre" (the colon is overwritten) or a disk path.
void ObtenerIdfich(IdFich *id, char *palabra);

// -------------------------------------------------------------- commands
void Cmd_assign(char *tr[]);
void Cmd_memfs(char *tr[]);
void MemFSListar(char *tr[]);
void MemFSFormat(char *tr[]);
void MemFSCopiar(char *tr[]);
void MemFSMover(char *tr[]);
void MemFSBorrar(char *tr[]);
void MemFSBuscar(char *tr[]);
void Cmd_printAssign(char *tr[]);
