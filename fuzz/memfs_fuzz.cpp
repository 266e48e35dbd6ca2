// Fuzzes the in-memory file system as the commands drive it: random sequences
// of format, copies in every direction, moves, deletions and listings on two
// blocks recorded in the shell's block list, with raw bytes written anywhere
// in them between operations (header and entry table included), as memfill,
// read and write let a user do.
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

// A large block and one just above the smallest that can be formatted.
constexpr size_t TamanosBloque[] = {65536, 16390};
const size_t TamanosDisco[] = {0, 1, 100, 4096, 20000, 50000, 70000};
const char *const Nombres[] = {"a", "ab", "abc", "b", "", "zz"};

char *bloques[2];
char direcciones[2][32];
std::string carpeta;

void Ejecutar(void (*cmd)(char *[]), std::vector<std::string> palabras) {
    std::vector<char *> tr;
    static char nombre[] = "cmd";
    tr.push_back(nombre);
    for (auto &p : palabras) tr.push_back(p.data());
    tr.push_back(nullptr);
    cmd(tr.data() + 1);
}

std::string EnMemoria(int b, uint8_t n) { return std::string(direcciones[b]) + ":" + Nombres[n % std::size(Nombres)]; }
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
    for (int b = 0; b < 2; b++) {
        bloques[b] = static_cast<char *>(malloc(TamanosBloque[b]));
        InsertarNodoMalloc(&L, bloques[b], TamanosBloque[b]);
        snprintf(direcciones[b], sizeof direcciones[b], "%p", static_cast<void *>(bloques[b]));
    }
    return 0;
}

// Each operation is three bytes: the operation (its two high bits choose the
// blocks) and two arguments; a raw write takes four more for the value.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    for (int b = 0; b < 2; b++) {
        memset(bloques[b], 0, TamanosBloque[b]);
        Ejecutar(MemFSFormat, {direcciones[b]});
    }
    for (size_t i = 0; i + 2 < size; i += 3) {
        uint8_t op = data[i], x = data[i + 1], y = data[i + 2];
        int b = op >> 7, otro = (op >> 6) & 1;
        const char *dir = direcciones[b];
        switch (op % 10) {
        case 0: Ejecutar(MemFSFormat, {dir}); break;
        case 1: Ejecutar(MemFSCopiar, {EnDisco(x), EnMemoria(b, y)}); break;
        case 2: Ejecutar(MemFSCopiar, {EnMemoria(b, x), EnMemoria(otro, y)}); break;
        case 3: Ejecutar(MemFSBorrar, {EnMemoria(b, x)}); break;
        case 4: Ejecutar(MemFSListar, {dir}); break;
        case 5: Ejecutar(MemFSMover, {EnMemoria(b, x), EnMemoria(otro, y)}); break;
        case 6: {
            std::string fuera = carpeta + "/salida";
            Ejecutar(MemFSCopiar, {EnMemoria(b, x), fuera});
            unlink(fuera.c_str());
            break;
        }
        case 7: Ejecutar(MemFSBuscar, {}); break;
        case 8:    // four bytes in the header or the first entries, most often
        case 9: {  // or anywhere in the block
            if (i + 6 >= size) return 0;
            size_t donde = size_t{x} << 8 | y;
            size_t limite = op % 10 == 8 ? 32 + 272 * 4 : TamanosBloque[b];
            memcpy(bloques[b] + donde % (limite - 3), data + i + 3, 4);
            i += 4;
            break;
        }
        }
    }
    return 0;
}
