// Standard input, read through the shell's own buffer rather than a C
// library stream: the shell shares descriptor 0 with the children it creates
// and with the programs that replace it, so it must know exactly which bytes
// it has used. What a C library does with the read-ahead of an input stream
// when it is flushed differs from one library to another; this layer does
// not depend on it.
//
// A seekable input (a script in a file) is read in large pieces; before
// anyone else uses the descriptor, the part not yet used is handed back by
// moving the descriptor's offset back to the first unused byte. Any other
// input (a terminal, a pipe) cannot be moved back, so it is read one byte at
// a time and nothing meant for a child is ever taken.
#include "core/core.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t TAMENTRADA = 1 << 16;  // holds many lines of the longest kind

enum class Modo { Desconocido, Fichero, Secuencial };  // Desconocido is zero

struct Entrada {
    char datos[TAMENTRADA];
    size_t inicio, fin;  // unused bytes: datos[inicio, fin)
    Modo modo;
    bool regular;        // a regular file: a read never waits
    bool finalizada;     // sticks, as a stream's end-of-file mark
};

// All zero from the start, with no code run to make it so: the buffer's
// pages are touched only when input fills them.
constinit Entrada entrada{};

// What kind of input descriptor 0 is now; asked again after every change.
void ConocerModo() {
    if (entrada.modo != Modo::Desconocido) return;
    entrada.modo = lseek(STDIN_FILENO, 0, SEEK_CUR) == -1 ? Modo::Secuencial : Modo::Fichero;
    struct stat st;
    entrada.regular = entrada.modo == Modo::Fichero && fstat(STDIN_FILENO, &st) == 0 && S_ISREG(st.st_mode);
}

// One read into the free end of the buffer: >0 bytes, 0 end of input, -1 error.
ssize_t Rellenar() {
    ConocerModo();
    if (entrada.inicio == entrada.fin) {
        entrada.inicio = entrada.fin = 0;
    } else if (entrada.inicio > 0) {
        memmove(entrada.datos, entrada.datos + entrada.inicio, entrada.fin - entrada.inicio);
        entrada.fin -= entrada.inicio;
        entrada.inicio = 0;
    }
    size_t cuanto = entrada.modo == Modo::Fichero ? TAMENTRADA - entrada.fin : 1;
    ssize_t n = read(STDIN_FILENO, entrada.datos + entrada.fin, cuanto);
    if (n > 0) entrada.fin += static_cast<size_t>(n);
    return n;
}

}  // namespace

char *LeerLinea(char *linea, int tam) {
    if (tam <= 1) return nullptr;
    const size_t maximo = static_cast<size_t>(tam) - 1;
    while (true) {
        size_t disponibles = entrada.fin - entrada.inicio;
        const char *p = entrada.datos + entrada.inicio;
        const void *nl = memchr(p, '\n', disponibles < maximo ? disponibles : maximo);
        size_t largo = 0;
        if (nl != nullptr)
            largo = static_cast<size_t>(static_cast<const char *>(nl) - p) + 1;
        else if (disponibles >= maximo)
            largo = maximo;  // a longer line comes out in pieces
        else if (entrada.finalizada)
            largo = disponibles;  // the last line, without its newline
        if (largo > 0) {
            memcpy(linea, p, largo);
            linea[largo] = '\0';
            entrada.inicio += largo;
            return linea;
        }
        if (entrada.finalizada) return nullptr;
        // A failed read (a signal, say) keeps what was read of the line: the
        // next call goes on from it.
        ssize_t n = Rellenar();
        if (n == 0) entrada.finalizada = true;
        if (n < 0) return nullptr;
    }
}

bool EntradaSinEspera() {
    ConocerModo();
    return entrada.regular || entrada.finalizada;
}

void MarcarFinEntrada() { entrada.finalizada = true; }

void SincronizarEntrada() {
    int error = errno;
    fflush(stdout);
    // Only a seekable input was read ahead; what a sequential one holds is
    // part of a line not finished yet, which nobody else could be given.
    if (entrada.modo == Modo::Fichero) {
        size_t sobrante = entrada.fin - entrada.inicio;
        if (sobrante > 0) lseek(STDIN_FILENO, -static_cast<off_t>(sobrante), SEEK_CUR);
        entrada.inicio = entrada.fin = 0;
    }
    // Descriptor 0 may be another file next time, with more to give.
    entrada.modo = Modo::Desconocido;
    entrada.finalizada = false;
    errno = error;
}
