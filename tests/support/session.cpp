#include "support/session.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

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

pid_t Start(const std::string &dir, const std::vector<std::string> &args, std::array<int, 3> fds, const Env &env,
            const std::vector<std::string> &wrapper, const std::function<void()> &first) {
    std::vector<std::string> words = wrapper;
    words.push_back(LabshBinary());
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char *> argv;
    for (auto &w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    pid_t pid = fork();
    Check(pid != -1, "fork");
    if (pid != 0) return pid;
    if (first) first();
    for (int i = 0; i < 3; i++) dup2(fds[static_cast<size_t>(i)], i);
    ldiff::CloseFrom(3);
    if (chdir(dir.c_str()) == -1) _exit(126);
    for (const auto &[name, value] : env) value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

std::string NoProc() {
    struct stat st {};
    if (stat(("/proc/" + std::to_string(getpid()) + "/status").c_str(), &st) == 0) return "";
    return "no /proc/<pid>/status here (Linux's process file system)";
}

std::string LabshBinary() {
    const char *e = getenv("LABSH");
    return e != nullptr && *e != '\0' ? e : LABSH_DEFAULT_BINARY;
}

RunResult Run(const std::string &input, const std::string &dir, ldiff::RunSpec how,
              const std::vector<std::string> &wrapper) {
    // Input comes from a file, as a teacher's script would: the shell may
    // read it ahead, and programs it starts read on from the same place.
    TempDir scratch;
    if (how.input.empty()) WriteFile(how.input = scratch / "input", input);
    how.program = LabshBinary();
    if (!wrapper.empty()) {
        std::vector<std::string> args{"-c", "exec \"$@\"", "sh"};
        args.insert(args.end(), wrapper.begin(), wrapper.end());
        args.push_back(how.program);
        args.insert(args.end(), how.args.begin(), how.args.end());
        how.args = args, how.program = "/bin/sh", how.argv0.clear();
    }
    how.limit = SIZE_MAX;
    how.merged = false;  // the tests read the two streams apart
    return ldiff::Run(how, dir);
}

Session::Session(const std::string &dir, std::vector<std::string> args, bool merged, const Env &env) {
    int in[2], out[2], err[2];
    Check(pipe(in) == 0 && pipe(out) == 0 && pipe(err) == 0, "pipe");
    pid_ = Start(dir, args, {in[0], out[1], merged ? out[1] : err[1]}, env, {}, [] { setpgid(0, 0); });
    setpgid(pid_, pid_);
    for (int fd : {in[0], out[1], err[1]}) close(fd);
    in_ = in[1];
    out_ = out[0];
    err_ = err[0];
    for (int fd : {in_, out_, err_}) fcntl(fd, F_SETFD, FD_CLOEXEC);
    ::signal(SIGPIPE, SIG_IGN);
}

Session::~Session() {
    if (!finished_ && pid_ > 0) {
        kill(-pid_, SIGKILL);
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    for (int fd : {in_, out_, err_})
        if (fd >= 0) close(fd);
}

void Session::send(const std::string &line) {
    std::string l = line + "\n";
    for (size_t done = 0; done < l.size();) {
        ssize_t n = write(in_, l.data() + done, l.size() - done);
        if (n < 0 && errno != EINTR) return;
        if (n > 0) done += static_cast<size_t>(n);
    }
}

void Session::pump(int timeoutMs) {
    pollfd fds[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (out_ < 0 && err_ < 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs));
        return;
    }
    if (poll(fds, 2, timeoutMs) <= 0) return;
    if (fds[0].revents) ldiff::Append(out_, buffer_);
    if (fds[1].revents) ldiff::Append(err_, errbuf_);
}

// Calls pump(ms) until `marker` is in `buffer`, then takes the text up to
// and including it out of the buffer; throws, with `what` and the text read,
// after the timeout or once pump returns false (nothing more can come).
static std::string TakeUntil(std::string &buffer, const std::string &marker, std::chrono::milliseconds timeout,
                             const std::function<bool(int)> &pump, const std::string &what) {
    auto deadline = Clock::now() + timeout;
    while (true) {
        size_t at = buffer.find(marker);
        if (at != std::string::npos) {
            std::string r = buffer.substr(0, at + marker.size());
            buffer.erase(0, at + marker.size());
            return r;
        }
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || !pump(static_cast<int>(std::min<long long>(left, 100))))
            throw std::runtime_error("no \"" + marker + "\" " + what + ":\n" + buffer);
    }
}

std::string Session::readUntil(const std::string &marker, std::chrono::milliseconds timeout) {
    return TakeUntil(buffer_, marker, timeout, [this](int ms) { return out_ >= 0 && (pump(ms), true); },
                     "in the shell's output; it printed");
}

void Session::commandsOn() {
    send("prompt $%n\noverride on");
    readUntil("esta habilitada\n");
}

std::string Session::run(const std::string &line) {
    std::string marker = "parametro no valido: fin" + std::to_string(++runs_) + "\n";
    send(line + "\nusesignals fin" + std::to_string(runs_));
    std::string out = readUntil("$\n" + marker);
    out.resize(out.size() - 2 - marker.size());
    // A signal's handler may have written before the prompt came.
    return out.starts_with("$\n") ? out.substr(2) : out;
}

std::string Session::errors() {
    pump(0);
    return errbuf_;
}

void Session::signal(int sig) { kill(pid_, sig); }

// Waits for child `pid` to end, calling pump(ms) meanwhile; the raw wait
// status, -1 on timeout.
static int WaitChild(pid_t pid, bool &finished, int &status, std::chrono::milliseconds timeout,
                     const std::function<void(int)> &pump) {
    auto deadline = Clock::now() + timeout;
    while (!finished && Clock::now() < deadline) {
        if (waitpid(pid, &status, WNOHANG) == pid)
            finished = true;
        else
            pump(10);
    }
    return finished ? status : -1;
}

int Session::wait(std::chrono::milliseconds timeout) {
    return WaitChild(pid_, finished_, status_, timeout, [this](int ms) { pump(ms); });
}

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
    // HOME there too: no ~/.editrc of the person running the tests.
    Env env{{"HOME", dir}, {"TERM", "xterm"}, {"LC_ALL", "C"}, {"EDITRC", std::nullopt}};
    pid_ = Start(dir, args, {0, 1, 2}, env, {}, [&slaveName] {
        setsid();
        int fd = open(slaveName.c_str(), O_RDWR);  // the controlling terminal, on System V
        if (fd == -1) _exit(126);
        ioctl(fd, TIOCSCTTY, 0);  // and on the BSDs
        for (int i = 0; i < 3; i++) dup2(fd, i);
    });
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
