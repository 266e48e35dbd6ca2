// Descriptor I/O on raw descriptor numbers and typed addresses. These
// commands neither read nor change the open-file table.
#include "files/files.h"

#include "core/core.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>

namespace {

long long LeerCuenta(const char *s) { return strtoll(s, nullptr, 10); }

void ParametrosIncorrectos() { printf("Parametros incorrectos\n"); }

}  // namespace

namespace {

// read and write take the same three words and report alike; only the call
// and the texts differ.
struct Transferencia {
    ssize_t (*llamada)(int df, void *p, size_t cont);
    const char *exito;  // bytes, descriptor, address
    const char *fallo;  // descriptor, address, error text
};

void Transferir(char *tr[], const Transferencia &t) {
    if (tr[0] == nullptr || tr[1] == nullptr || tr[2] == nullptr) {
        ParametrosIncorrectos();
        return;
    }
    int df = LeerDescriptor(tr[0]);
    void *p = cadtop(tr[1]);
    size_t cont = static_cast<size_t>(LeerCuenta(tr[2]));
    // The address is used as typed: a wrong one faults on purpose. The
    // descriptor may be the shell's own output, or its input: a script reads
    // on from the line after this one.
    SincronizarEntrada();
    ssize_t n = t.llamada(df, p, cont);
    if (n == -1)
        printf(t.fallo, df, p, strerror(errno));
    else
        printf(t.exito, n, df, p);
}

}  // namespace

void Cmd_read(char *tr[]) {
    Transferir(tr, {[](int df, void *p, size_t cont) { return read(df, p, cont); },
                    "Leidos %zd bytes del descriptor %d en la direccion %p\n",
                    "Error al leer del descriptor %d a la direccion %p: %s\n"});
}

void Cmd_write(char *tr[]) {
    Transferir(tr, {[](int df, void *p, size_t cont) { return write(df, p, cont); },
                    "Escritos %zd bytes en el descriptor %d dsde la direccion %p\n",
                    "Error al escribir en el descriptor %d desde la direccion %p: %s\n"});
}

void Cmd_lseek(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        ParametrosIncorrectos();
        return;
    }
    int df = LeerDescriptor(tr[0]);
    long long off = LeerCuenta(tr[1]);
    int ref = SEEK_SET;  // also for any word it does not know
    if (tr[2] != nullptr && strcmp(tr[2], "SEEK_CUR") == 0) ref = SEEK_CUR;
    if (tr[2] != nullptr && strcmp(tr[2], "SEEK_END") == 0) ref = SEEK_END;
    SincronizarEntrada();  // positions in the shell's own input count from the next line
    off_t pos = lseek(df, static_cast<off_t>(off), ref);
    if (pos == -1)
        printf("Error al intentar posicionar el descriptor %d en el offset  %lld: %s\n", df, off, strerror(errno));
    else
        printf("Descriptor %d posicionado en %lld\n", df, static_cast<long long>(pos));
}

void Cmd_readstr(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        ParametrosIncorrectos();
        return;
    }
    int df = LeerDescriptor(tr[0]);
    long long cont = LeerCuenta(tr[1]);
    // A negative count, taken as a size, is more than any allocation can
    // give: answer as the failed allocation would, without asking for it.
    std::unique_ptr<char, decltype(&free)> buf(cont < 0 ? nullptr : static_cast<char *>(malloc(cont ? cont : 1)),
                                               &free);
    if (buf == nullptr) {
        printf("Imposible asignar memoria para la lectura\n");
        return;
    }
    SincronizarEntrada();  // the descriptor may be the shell's own input
    ssize_t n = read(df, buf.get(), static_cast<size_t>(cont));
    if (n == -1) {
        printf("Error al intentar leer del descriptor %d: %s", df, strerror(errno));
    } else {
        printf("Leidos %zd bytes del descriptor %d\n", n, df);
        // The bytes as they are: control characters and zeros included.
        fwrite(buf.get(), 1, static_cast<size_t>(n), stdout);
    }
    printf("\n");
}

void Cmd_writestr(char *tr[]) {
    if (tr[0] == nullptr || tr[1] == nullptr) {
        ParametrosIncorrectos();
        return;
    }
    int df = LeerDescriptor(tr[0]);
    char texto[1024];
    size_t len = 0;
    for (int i = 1; tr[i] != nullptr; i++) {
        size_t l = strlen(tr[i]);
        // A text that does not fit is refused whole rather than written cut.
        if (len + (i > 1) + l >= sizeof texto) {
            ParametrosIncorrectos();
            return;
        }
        if (i > 1) texto[len++] = ' ';
        memcpy(texto + len, tr[i], l);
        len += l;
    }
    texto[len] = '\0';
    fflush(stdout);
    if (write(df, texto, len) == -1)
        printf("Error intentar escribir %zd bytes en el descriptor %d: %s\n", static_cast<ssize_t>(len), df,
               strerror(errno));
}
