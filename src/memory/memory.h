// Memory: the list of blocks the shell allocated, allocation and release of
// heap, shared and mapped memory, and inspection of the address space.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <sys/types.h>

constexpr int MAXBLOQUES = 4096;

constexpr int TIPO_MALLOC = 1;
constexpr int TIPO_SHARED = 2;
constexpr int TIPO_MMAP = 4;

struct NodoMemoria {
    void *direccion;
    uint64_t tamano;
    char *fichero;   // owned copy of a mapped file's name, else null
    int32_t clave;   // shm key, mapped file descriptor (-1 once closed), or 0
    int32_t tipo;
    time_t tiempo;
};

struct ListaMemoria {
    NodoMemoria *nodos[MAXBLOQUES];
    int32_t n;
};

// The shell's block list. Other subsystems only hand it to the operations
// below; they never touch its fields.
extern ListaMemoria L;

void CrearLista(ListaMemoria *l);
NodoMemoria *CrearNodo(void *dir, uint64_t tam, int32_t clave, const char *fich, int32_t tipo);
int InsertarNodo(ListaMemoria *l, void *dir, uint64_t tam, int32_t clave, const char *fich, int32_t tipo);
int InsertarNodoMalloc(ListaMemoria *l, void *dir, uint64_t tam);
int InsertarNodoShared(ListaMemoria *l, void *dir, uint64_t tam, int32_t clave);
int InsertarNodoMmap(ListaMemoria *l, void *dir, uint64_t tam, int df, const char *fich);

int BuscarNodoTam(ListaMemoria *l, uint64_t tam, int mascara);
int BuscarNodoClave(ListaMemoria *l, int32_t clave, int mascara);
int BuscarNodoDescriptor(ListaMemoria *l, int df);
int BuscarNodoMmap(ListaMemoria *l, const char *fich);
int BuscarNodoDireccion(ListaMemoria *l, const void *dir);

void *DireccionNodoMalloc(ListaMemoria *l, uint64_t tam);
void *DireccionNodoShared(ListaMemoria *l, int32_t clave);
void *DireccionNodoMmap(ListaMemoria *l, const char *fich);
void *DireccionNodoDescriptor(ListaMemoria *l, int df);
int DescriptorNodoMmap(ListaMemoria *l, const char *fich);
int TipoNodoDireccion(ListaMemoria *l, const void *dir);
int DescriptorNodoDireccion(ListaMemoria *l, const void *dir);
uint64_t TamanoNodoDireccion(ListaMemoria *l, const void *dir);
// The bytes the shell really owns from the start of a listed block, which
// may be more than it asked for: the whole pages of a shared segment or a
// mapping, all that the allocator handed out for a malloc block. All bits
// set when no block starts there.
uint64_t TamanoRealNodoDireccion(ListaMemoria *l, const void *dir);

void *PrimerElemento(ListaMemoria *l);
void *SiguienteElemento(ListaMemoria *l, const void *dir);

int EliminarNodoDireccion(ListaMemoria *l, const void *dir);
int EliminarDescriptorDireccion(ListaMemoria *l, const void *dir);

char *ponFecha(time_t t);
void PrintElement(const NodoMemoria *nodo);
void PrintListHeader(ListaMemoria *l, int mascara);
void PrintList(ListaMemoria *l, int mascara);
void ImprimirListaMalloc(ListaMemoria *l);
void ImprimirListaShared(ListaMemoria *l);
void ImprimirListaMmap(ListaMemoria *l);
void ImprimirListaMemCompleta(ListaMemoria *l);

// ------------------------------------------------ allocation and release
// Each prints its own result or error, except the two that return an
// address (null with errno set on failure).
void doMalloc(size_t tam);
void doMallocDealloc(size_t tam);
void *ObtenerMemoriaShmget(int32_t clave, size_t tam);
void doSharedDealloc(int32_t clave);
void *doMmapFichero(const char *fichero, int proteccion);
void doMmapDealloc(const char *fichero);
void doDeallocate(void *dir);
void EliminarListaBloquesMemoria();

void Cmd_allocate(char *tr[]);
void Cmd_deallocate(char *tr[]);
void Cmd_malloc(char *tr[]);
void Cmd_mmap(char *tr[]);
void Cmd_shared(char *tr[]);
void Cmd_createshared(char *tr[]);
void Cmd_memshared(char *tr[]);
void Cmd_memdeshared(char *tr[]);
void Cmd_memmalloc(char *tr[]);
void Cmd_memdemalloc(char *tr[]);
void Cmd_memmmap(char *tr[]);
void Cmd_memdemmap(char *tr[]);
void Cmd_free(char *tr[]);
void Cmd_delkey(char *tr[]);

// ---------------------------------------------- inspection and transfer
const char *CadBon(unsigned char c);
void MostrarLinea(const void *dir, int n);
void MostrarMemoria(const void *dir, size_t cont);
unsigned char ConvertirByte(const char *cad);
void LlenarMemoria(void *dir, size_t cont, unsigned char byte, int paso);
void Recursiva(int n);
ssize_t LeerFichero(const char *fichero, void *dir, size_t cont);
ssize_t EscribirFichero(const char *fichero, const void *dir, size_t cont, int sobreescribir);
void Do_showvars();
void Do_showfuncs();
void Do_pmap();

void Cmd_memory(char *tr[]);
void Cmd_memdump(char *tr[]);
void Cmd_memfill(char *tr[]);
void Cmd_memcopy(char *tr[]);
void Cmd_stringcopy(char *tr[]);
void Cmd_recurse(char *tr[]);
void Cmd_i_o(char *tr[]);
void Cmd_readfile(char *tr[]);
void Cmd_writefile(char *tr[]);
