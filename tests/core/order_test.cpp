// Standard output, standard error and the output of the programs the shell
// starts appear in the order they were produced, with both streams on one
// pipe, one file or one terminal.
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/session.h"

namespace {

const char *const Guion = "override on\n"
                          "prompt $%n\n"
                          "authors -l\n"
                          "chdir /no-existe\n"
                          "fg sh hijo.sh\n"
                          "writestr 1 directo\n"
                          "dup 1\n"
                          "writestr 3 por-el-duplicado\n"
                          "open /no-existe/f\n"
                          "command 2\n"
                          "command 3\n"
                          "fork\n"
                          "pid -x\n"
                          "exit\n"
                          "authors -n\n"
                          "exit\n";

std::string Esperado(const std::string &pidHijo) {
    return "$\n"
           "login del autor1\n"
           "login del autor2\n"
           "$\n"
           "Imposible cambiar directorio: No such file or directory\n"
           "$\n"
           "hijo-salida\n"
           "hijo-error\n"
           "hijo-salida-2\n"
           "$\n"
           "directo$\n"
           "$\n"
           "por-el-duplicado$\n"
           "Imposible abrir fichero: No such file or directory\n"
           "$\n"
           "Ejecutando hist (2): authors -l\n"
           "login del autor1\n"
           "login del autor2\n"
           "$\n"
           "Ejecutando hist (3): chdir /no-existe\n"
           "Imposible cambiar directorio: No such file or directory\n"
           "$\n"
           "ejecutando proceso " +
           pidHijo +
           "\n"
           "$\n"
           "Pid de shell: " +
           pidHijo +
           "\n"
           "$\n"
           "$\n"
           "Nombre del autor1\n"
           "Nombre del autor2\n"
           "$\n";
}

enum class Destino { Tuberia, Fichero, Terminal };

// Runs the script with both streams on one destination; returns what the
// destination received after the start-up lines and the first prompt.
std::string Ejecutar(Destino destino, const std::string &dir) {
    std::string entrada = dir + "/guion";
    labtest::WriteFile(entrada, Guion);
    labtest::WriteFile(dir + "/hijo.sh", "echo hijo-salida; echo hijo-error >&2; echo hijo-salida-2\n");
    int lector = -1, escritor = -1;
    std::string fichero = dir + "/salida";
    if (destino == Destino::Tuberia) {
        int p[2];
        EXPECT_EQ(pipe(p), 0);
        lector = p[0];
        escritor = p[1];
    } else if (destino == Destino::Fichero) {
        escritor = open(fichero.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    } else {
        lector = posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_NE(lector, -1);
        grantpt(lector);
        unlockpt(lector);
        escritor = open(ptsname(lector), O_RDWR | O_NOCTTY);
    }
    EXPECT_NE(escritor, -1);
    pid_t pid = fork();
    if (pid == 0) {
        int in = open(entrada.c_str(), O_RDONLY);
        if (in == -1 || chdir(dir.c_str()) == -1) _exit(126);
        dup2(in, 0);
        dup2(escritor, 1);
        dup2(escritor, 2);
        close_range(3, ~0U, 0);
        std::string bin = labtest::LabshBinary();
        execl(bin.c_str(), bin.c_str(), "-p", static_cast<char *>(nullptr));
        _exit(127);
    }
    if (destino != Destino::Terminal) close(escritor);
    std::string salida;
    int estado = 0;
    auto limite = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    bool terminado = false;
    while (std::chrono::steady_clock::now() < limite) {
        if (lector != -1) {
            pollfd p{lector, POLLIN, 0};
            if (poll(&p, 1, 20) > 0) {
                char buf[4096];
                ssize_t n = read(lector, buf, sizeof buf);
                if (n > 0) {
                    salida.append(buf, static_cast<size_t>(n));
                    continue;
                }
                close(lector);  // end of file (or EIO once a terminal's last user is gone)
                lector = -1;
            }
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        if (terminado && (lector == -1 || destino == Destino::Terminal)) break;
        terminado = waitpid(pid, &estado, WNOHANG) == pid;
    }
    if (!terminado) {
        kill(pid, SIGKILL);
        waitpid(pid, &estado, 0);
        ADD_FAILURE() << "the shell did not end";
    }
    if (destino == Destino::Terminal) close(escritor);
    if (lector != -1) close(lector);
    if (destino == Destino::Fichero) salida = labtest::ReadFile(fichero);
    EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0) << estado;
    std::string limpia;
    for (char c : salida)
        if (c != '\r') limpia += c;  // a terminal ends lines with \r\n
    size_t inicio = limpia.find("$\n");
    return inicio == std::string::npos ? limpia : limpia.substr(inicio);
}

std::string PidHijo(const std::string &salida) {
    size_t at = salida.find("ejecutando proceso ");
    if (at == std::string::npos) return "?";
    at += 19;
    return salida.substr(at, salida.find('\n', at) - at);
}

class Orden : public ::testing::TestWithParam<Destino> {};

TEST_P(Orden, BothStreamsAndChildrenKeepTheirOrder) {
    labtest::TempDir dir;
    std::string salida = Ejecutar(GetParam(), dir.path());
    EXPECT_EQ(salida, Esperado(PidHijo(salida)));
}

INSTANTIATE_TEST_SUITE_P(Destinos, Orden, ::testing::Values(Destino::Tuberia, Destino::Fichero, Destino::Terminal),
                         [](const ::testing::TestParamInfo<Destino> &i) {
                             return i.param == Destino::Tuberia   ? std::string("Pipe")
                                    : i.param == Destino::Fichero ? std::string("File")
                                                                  : std::string("Terminal");
                         });

}  // namespace
