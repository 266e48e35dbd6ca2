// In-memory file system: handlers not built yet; each is replaced by its real one.
#include "memfs/memfs.h"

void Cmd_assign(char *[]) {}
void Cmd_memfs(char *[]) {}
void MemFSListar(char *[]) {}
void MemFSFormat(char *[]) {}
void MemFSCopiar(char *[]) {}
void MemFSMover(char *[]) {}
void MemFSBorrar(char *[]) {}
void MemFSBuscar(char *[]) {}
void Cmd_printAssign(char *[]) {}
