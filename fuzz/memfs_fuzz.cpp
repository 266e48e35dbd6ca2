// Fuzzes the in-memory file system as the commands drive it: random sequences
// of format, copies in every direction, moves, deletions and listings on a
// block recorded in the shell's block list.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

#include "memfs/memfs.h"
#include "memory/memory.h"

namespace {

constexpr size_t TAMBLOQUE = 65536;
const size_t TamanosDisco[] = {0, 1, 100, 4096, 20000, 50000, 70000};
const char *const Nombres[] = {"a", "ab", "abc", "b", "", "zz"};

char *bloque = nullptr;
char direccion[32];
std::string carpeta;

void Ejecutar(void (*cmd)(char *[]), std::vector<std::string> palabras) {
    std::vector<char *> tr;
    static char nombre[] = "cmd";
    tr.push_back(nombre);
    for (auto &p : palabras) tr.push_back(p.data());
    tr.push_back(nullptr);
    cmd(tr.data() + 1);
}

std::string EnMemoria(uint8_t n) { return std::string(direccion) + ":" + Nombres[n % std::size(Nombres)]; }
std::string EnDisco(uint8_t n) { return carpeta + "/d" + std::to_string(n % std::size(TamanosDisco)); }

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    // The error lines of the commands still reach standard error, where the
    // fuzzer reports too.
    if (freopen("/dev/null", "w", stdout) == nullptr) return 1;
    char plantilla[] = "/tmp/labsh-fuzz.XXXXXX";
    if (mkdtemp(plantilla) == nullptr) return 1;
    carpeta = plantilla;
    atexit([] {
        for (size_t i = 0; i < std::size(TamanosDisco); i++) unlink((carpeta + "/d" + std::to_string(i)).c_str());
        rmdir(carpeta.c_str());
    });
    for (size_t i = 0; i < std::size(TamanosDisco); i++) {
        FILE *f = fopen((carpeta + "/d" + std::to_string(i)).c_str(), "w");
        if (f == nullptr) return 1;
        for (size_t k = 0; k < TamanosDisco[i]; k++) fputc('a' + static_cast<int>(k % 26), f);
        fclose(f);
    }
    bloque = static_cast<char *>(malloc(TAMBLOQUE));
    InsertarNodoMalloc(&L, bloque, TAMBLOQUE);
    snprintf(direccion, sizeof direccion, "%p", static_cast<void *>(bloque));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    memset(bloque, 0, TAMBLOQUE);
    Ejecutar(MemFSFormat, {direccion});
    for (size_t i = 0; i + 2 < size; i += 3) {
        uint8_t op = data[i], x = data[i + 1], y = data[i + 2];
        switch (op % 8) {
        case 0: Ejecutar(MemFSFormat, {direccion}); break;
        case 1: Ejecutar(MemFSCopiar, {EnDisco(x), EnMemoria(y)}); break;
        case 2: Ejecutar(MemFSCopiar, {EnMemoria(x), EnMemoria(y)}); break;
        case 3: Ejecutar(MemFSBorrar, {EnMemoria(x)}); break;
        case 4: Ejecutar(MemFSListar, {direccion}); break;
        case 5: Ejecutar(MemFSMover, {EnMemoria(x), EnMemoria(y)}); break;
        case 6: {
            std::string fuera = carpeta + "/salida";
            Ejecutar(MemFSCopiar, {EnMemoria(x), fuera});
            unlink(fuera.c_str());
            break;
        }
        case 7: Ejecutar(MemFSBuscar, {}); break;
        }
    }
    return 0;
}
