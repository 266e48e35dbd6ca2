// Memory: handlers not built yet; each is replaced by its real one.
#include "memory/memory.h"

ListaMemoria L;
void EliminarListaBloquesMemoria() {}

void Cmd_allocate(char *[]) {}
void Cmd_deallocate(char *[]) {}
void Cmd_malloc(char *[]) {}
void Cmd_mmap(char *[]) {}
void Cmd_shared(char *[]) {}
void Cmd_createshared(char *[]) {}
void Cmd_memshared(char *[]) {}
void Cmd_memdeshared(char *[]) {}
void Cmd_memmalloc(char *[]) {}
void Cmd_memdemalloc(char *[]) {}
void Cmd_memmmap(char *[]) {}
void Cmd_memdemmap(char *[]) {}
void Cmd_free(char *[]) {}
void Cmd_delkey(char *[]) {}
void Cmd_memory(char *[]) {}
void Cmd_memdump(char *[]) {}
void Cmd_memfill(char *[]) {}
void Cmd_memcopy(char *[]) {}
void Cmd_stringcopy(char *[]) {}
void Cmd_recurse(char *[]) {}
void Cmd_i_o(char *[]) {}
void Cmd_readfile(char *[]) {}
void Cmd_writefile(char *[]) {}
void *DireccionNodoDescriptor(ListaMemoria *, int) { return nullptr; }
int EliminarDescriptorDireccion(ListaMemoria *, const void *) { return -1; }
void *PrimerElemento(ListaMemoria *) { return nullptr; }
void *SiguienteElemento(ListaMemoria *, const void *) { return nullptr; }
uint64_t TamanoNodoDireccion(ListaMemoria *, const void *) { return ~uint64_t{0}; }
int TipoNodoDireccion(ListaMemoria *, const void *) { return -1; }
