#include "support/terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/session.h"

namespace labtest {

namespace {

using Clock = std::chrono::steady_clock;

void Check(bool ok, const char *what) {
    if (!ok) throw std::runtime_error(std::string(what) + ": " + strerror(errno));
}

void SetSize(int fd, int columns, int rows) {
    struct winsize w {};
    w.ws_col = static_cast<unsigned short>(columns);
    w.ws_row = static_cast<unsigned short>(rows);
    ioctl(fd, TIOCSWINSZ, &w);
}

}  // namespace

Terminal::Terminal(const std::string &dir, std::vector<std::string> args, int columns, int rows) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    Check(master_ != -1, "posix_openpt");
    Check(grantpt(master_) == 0 && unlockpt(master_) == 0, "grantpt/unlockpt");
    const char *name = ptsname(master_);
    Check(name != nullptr, "ptsname");
    std::string slaveName = name;
    // The test keeps the terminal open too: its mode can be read from here
    // after the shell has gone.
    slave_ = open(slaveName.c_str(), O_RDWR | O_NOCTTY);
    Check(slave_ != -1, "open terminal");
    SetSize(slave_, columns, rows);
    Check(tcgetattr(slave_, &initial_) == 0, "tcgetattr");
    std::string bin = LabshBinary();
    std::vector<std::string> words = {bin};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char *> argv;
    for (auto &w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    pid_ = fork();
    Check(pid_ != -1, "fork");
    if (pid_ == 0) {
        setsid();
        int fd = open(slaveName.c_str(), O_RDWR);  // the controlling terminal, on System V
        if (fd == -1) _exit(126);
        ioctl(fd, TIOCSCTTY, 0);  // and on the BSDs
        for (int i = 0; i < 3; i++) dup2(fd, i);
        long most = sysconf(_SC_OPEN_MAX);
        for (int i = 3; i < (most > 0 && most < 4096 ? most : 4096); i++) close(i);
        if (chdir(dir.c_str()) == -1) _exit(126);
        setenv("HOME", dir.c_str(), 1);
        setenv("TERM", "xterm", 1);
        setenv("LC_ALL", "C", 1);
        unsetenv("EDITRC");
        for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        execv(bin.c_str(), argv.data());
        _exit(127);
    }
    fcntl(master_, F_SETFD, FD_CLOEXEC);
    fcntl(slave_, F_SETFD, FD_CLOEXEC);
    signal(SIGPIPE, SIG_IGN);
}

Terminal::~Terminal() {
    if (!finished_ && pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    for (int fd : {master_, slave_})
        if (fd >= 0) close(fd);
}

void Terminal::type(const std::string &keys) {
    for (size_t done = 0; done < keys.size();) {
        ssize_t n = write(master_, keys.data() + done, keys.size() - done);
        if (n < 0 && errno != EINTR) return;
        if (n > 0) done += static_cast<size_t>(n);
    }
}

void Terminal::pump(int timeoutMs) {
    pollfd p = {master_, POLLIN, 0};
    if (poll(&p, 1, timeoutMs) <= 0) return;
    char buf[65536];
    ssize_t n = read(master_, buf, sizeof buf);
    if (n > 0) {
        buffer_.append(buf, static_cast<size_t>(n));
        all_.append(buf, static_cast<size_t>(n));
    }
}

std::string Terminal::readUntil(const std::string &marker, std::chrono::milliseconds timeout) {
    return TakeUntil(buffer_, marker, timeout, [this](int ms) { return pump(ms), true; },
                     "on the terminal; it showed");
}

std::string Terminal::drain(std::chrono::milliseconds quiet) {
    auto end = Clock::now() + quiet;
    while (Clock::now() < end) pump(20);
    std::string r;
    r.swap(buffer_);
    return r;
}

void Terminal::waitRaw(std::chrono::milliseconds timeout) {
    auto deadline = Clock::now() + timeout;
    while (mode().c_lflag & ICANON) {
        if (Clock::now() > deadline) throw std::runtime_error("the terminal stayed in canonical mode; it showed:\n" + all_);
        pump(5);
    }
}

void Terminal::resize(int columns, int rows) {
    SetSize(master_, columns, rows);  // the system tells the foreground group,
    kill(pid_, SIGWINCH);             // but not every system does
}

struct termios Terminal::mode() const {
    struct termios t {};
    tcgetattr(slave_, &t);
    return t;
}

int Terminal::wait(std::chrono::milliseconds timeout) {
    return WaitChild(pid_, finished_, status_, timeout, [this](int ms) { pump(ms); });
}

bool SameMode(const struct termios &a, const struct termios &b) {
    return a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag && a.c_cflag == b.c_cflag && a.c_lflag == b.c_lflag &&
           memcmp(a.c_cc, b.c_cc, sizeof a.c_cc) == 0;
}

}  // namespace labtest
