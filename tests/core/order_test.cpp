// Standard output, standard error and the output of the programs the shell
// starts appear in the order they were produced, with both streams on one
// pipe, one file or one terminal.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "support/session.h"

namespace {

// Each line mixes the streams differently: an error after pending output, a
// child writing to both, direct writes to the descriptor and a duplicate of
// it, a second shell made by fork.
const char *const Guion = "override on\nprompt $%n\nauthors -l\nchdir /no-existe\nfg sh hijo.sh\n"
                          "writestr 1 directo\ndup 1\nwritestr 3 dup\nopen /no-existe/f\ncommand 3\n"
                          "fork\npid -x\nexit\nauthors -n\nexit\n";

std::string Esperado(const std::string &hijo) {
    return "$\nlogin del autor1\nlogin del autor2\n$\n"
           "Imposible cambiar directorio: No such file or directory\n$\n"
           "hijo-salida\nhijo-error\nhijo-salida-2\n$\n"
           "directo$\n$\ndup$\nImposible abrir fichero: No such file or directory\n$\n"
           "Ejecutando hist (3): chdir /no-existe\nImposible cambiar directorio: No such file or directory\n$\n"
           "ejecutando proceso " + hijo + "\n$\nPid de shell: " + hijo + "\n$\n"
           "$\nNombre del autor1\nNombre del autor2\n$\n";
}

enum class Destino { Tuberia, Fichero, Terminal };

class Orden : public ::testing::TestWithParam<Destino> {};

TEST_P(Orden, BothStreamsAndChildrenKeepTheirOrder) {
    labtest::TempDir dir;
    labtest::WriteFile(dir / "guion", Guion);
    labtest::WriteFile(dir / "hijo.sh", "echo hijo-salida; echo hijo-error >&2; echo hijo-salida-2\n");
    int lector = -1, escritor = -1;
    if (GetParam() == Destino::Tuberia) {
        int p[2];
        ASSERT_EQ(pipe(p), 0);
        lector = p[0];
        escritor = p[1];
    } else if (GetParam() == Destino::Fichero) {
        escritor = open((dir / "salida").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    } else {
        lector = posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_NE(lector, -1);
        grantpt(lector);
        unlockpt(lector);
        escritor = open(ptsname(lector), O_RDWR | O_NOCTTY);
    }
    ASSERT_NE(escritor, -1);
    // The whole output fits in the pipe's and the terminal's buffers.
    int entrada = open((dir / "guion").c_str(), O_RDONLY), estado = -1;
    waitpid(labtest::Start(dir.path(), {"-p"}, {entrada, escritor, escritor}), &estado, 0);
    close(entrada);
    std::string salida;
    if (lector == -1) {
        salida = labtest::ReadFile(dir / "salida");
    } else {  // read while our end of the terminal still holds it open
        fcntl(lector, F_SETFL, O_NONBLOCK);
        char buf[4096];
        for (ssize_t n; (n = read(lector, buf, sizeof buf)) > 0;) salida.append(buf, static_cast<size_t>(n));
        close(lector);
    }
    close(escritor);
    EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0) << estado;
    std::erase(salida, '\r');  // a terminal ends lines with \r\n
    salida.erase(0, salida.find("$\n"));
    size_t at = salida.find("ejecutando proceso ") + 19;
    EXPECT_EQ(salida, Esperado(salida.substr(at, salida.find('\n', at) - at)));
}

std::string Nombre(const ::testing::TestParamInfo<Destino> &i) {
    return i.param == Destino::Tuberia ? "Pipe" : i.param == Destino::Fichero ? "File" : "Terminal";
}

INSTANTIATE_TEST_SUITE_P(Destinos, Orden, ::testing::Values(Destino::Tuberia, Destino::Fichero, Destino::Terminal),
                         Nombre);

}  // namespace
