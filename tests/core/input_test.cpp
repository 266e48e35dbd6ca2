// The shell's input layer on descriptor 0 of the test process. No C library
// stream is involved, so nothing here can pass because a library hands
// read-ahead input back on its own.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "core/core.h"

namespace {

// Puts a descriptor in place of standard input for one test and gives the
// layer a fresh start on it.
class EntradaDe {
  public:
    explicit EntradaDe(int df) : guardado_(dup(STDIN_FILENO)) {
        SincronizarEntrada();
        dup2(df, STDIN_FILENO);
        close(df);
    }
    ~EntradaDe() {
        SincronizarEntrada();
        dup2(guardado_, STDIN_FILENO);
        close(guardado_);
    }
    EntradaDe(const EntradaDe &) = delete;
    EntradaDe &operator=(const EntradaDe &) = delete;

  private:
    int guardado_;
};

int Fichero(const std::string &contenido) {
    char nombre[] = "/tmp/labsh-entrada-XXXXXX";
    int df = mkstemp(nombre);
    unlink(nombre);
    EXPECT_EQ(write(df, contenido.data(), contenido.size()), static_cast<ssize_t>(contenido.size()));
    lseek(df, 0, SEEK_SET);
    return df;
}

std::string Linea() {
    char linea[MAXLINEA];
    return LeerLinea(linea, MAXLINEA) == nullptr ? "<null>" : linea;
}

std::string LeerDirecto(size_t n) {
    std::string s(n, '\0');
    ssize_t r = read(STDIN_FILENO, s.data(), n);
    s.resize(r < 0 ? 0 : static_cast<size_t>(r));
    return s;
}

}  // namespace

TEST(Entrada, AFileIsHandedBackAtTheFirstUnusedByteAndItsEndSticks) {
    EntradaDe e(Fichero("uno\n  dos  tres\nfin sin salto"));
    EXPECT_EQ(Linea(), "uno\n");
    SincronizarEntrada();
    EXPECT_EQ(lseek(STDIN_FILENO, 0, SEEK_CUR), 4);
    EXPECT_EQ(LeerDirecto(5), "  dos");  // what a child would read next
    EXPECT_EQ(Linea(), "  tres\n");
    EXPECT_EQ(Linea(), "fin sin salto");
    EXPECT_EQ(Linea(), "<null>");
    EXPECT_EQ(Linea(), "<null>");
}

TEST(Entrada, APipeIsNeverReadAheadAndAFailedReadKeepsThePartialLine) {
    int p[2];
    ASSERT_EQ(pipe(p), 0);
    fcntl(p[0], F_SETFL, fcntl(p[0], F_GETFL) | O_NONBLOCK);  // a fault shows as a failure, not a hang
    EntradaDe e(p[0]);
    ASSERT_EQ(write(p[1], "l1\nl2\n", 6), 6);
    EXPECT_EQ(Linea(), "l1\n");
    EXPECT_EQ(LeerDirecto(10), "l2\n");

    ASSERT_EQ(write(p[1], "par", 3), 3);
    EXPECT_EQ(Linea(), "<null>");  // would wait: a failed read
    ASSERT_EQ(write(p[1], "cial\n", 5), 5);
    EXPECT_EQ(Linea(), "parcial\n");
    close(p[1]);
    EXPECT_EQ(Linea(), "<null>");
}
