// Fuzzes the line path: splitting, resolution with every switch setting,
// help lookups and prompt expansion.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/core.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    // Help and resolution print; the fuzzer only cares that nothing breaks.
    if (freopen("/dev/null", "w", stdout) == nullptr) return 1;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static char linea[MAXLINEA];
    static char copia[MAXLINEA];
    static char *trozos[MAXPALABRAS];

    size_t n = size < MAXLINEA - 1 ? size : MAXLINEA - 1;
    memcpy(linea, data, n);
    linea[n] = '\0';
    memcpy(copia, linea, n + 1);

    SetPrompt(copia);
    if (TrocearCadena(linea, trozos) == 0) return 0;

    // The settings are chosen by the input so that every combination is
    // reached; the help listing is the costliest path, so it runs rarely.
    uint8_t modo = size > 0 ? data[0] : 0;
    OverRide((modo & 1) ? "on" : "off");
    if (modo & 2)
        HabilitarAbreviaturas();
    else
        DeshabilitarAbreviaturas();
    const char *cmd = RealCommand(trozos[0]);
    if (cmd != nullptr) CadenaDeAyuda(cmd);
    IsValidCommand(trozos[0]);
    IsCmdOrAlias(trozos[0]);
    if ((modo & 0xf0) == 0xf0) PideAyuda(trozos);
    if (trozos[1] != nullptr) {
        OverRide("on");
        const char *sub = RealCommand(trozos[1]);
        if (sub != nullptr) CadenaDeAyuda(sub);
        GetTopic(trozos[1]);
    }
    return 0;
}
