#include "support/session.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
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

// Child side of a spawn: descriptors in place, environment adjusted, exec.
[[noreturn]] void ExecShell(const std::string &dir, const RunOptions &o) {
    if (chdir(dir.c_str()) == -1) _exit(126);
    for (const auto &[name, value] : o.env) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    std::vector<std::string> words = o.wrapper;
    std::string bin = LabshBinary();
    words.push_back(o.argv0.empty() || !o.wrapper.empty() ? bin : o.argv0);
    words.insert(words.end(), o.args.begin(), o.args.end());
    std::vector<char *> argv;
    for (auto &w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    // Default dispositions and an empty mask: the shell must not inherit the
    // test's own signal setup.
    for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Only the three standard descriptors: whatever the test runner keeps
    // open would show in the shell's open-file table and shift its numbers.
    if (!o.inheritDescriptors) CloseFrom(3);
    if (o.wrapper.empty())
        execv(bin.c_str(), argv.data());
    else
        execvp(argv[0], argv.data());
    _exit(127);
}

// Reads what is there; closes and forgets the descriptor at its end.
void Append(int &fd, std::string &to) {
    char buf[65536];
    ssize_t n = read(fd, buf, sizeof buf);
    if (n > 0) {
        to.append(buf, static_cast<size_t>(n));
    } else if (n == 0 || (errno != EINTR && errno != EAGAIN)) {
        close(fd);
        fd = -1;
    }
}

}  // namespace

void CloseFrom(int first) {
    rlimit lim{};
    long last = 65536;
    if (getrlimit(RLIMIT_NOFILE, &lim) == 0 && lim.rlim_cur != RLIM_INFINITY) last = static_cast<long>(lim.rlim_cur);
    last = std::min(last, 1L << 20);
    // poll tells the open descriptors from the rest a thousand at a time,
    // where a close of every number would take a call each.
    constexpr int Tanda = 1024;
    pollfd fds[Tanda];
    for (long base = first; base < last; base += Tanda) {
        int n = static_cast<int>(std::min<long>(Tanda, last - base));
        for (int i = 0; i < n; i++) fds[i] = {static_cast<int>(base + i), 0, 0};
        bool known = poll(fds, static_cast<nfds_t>(n), 0) >= 0;
        for (int i = 0; i < n; i++)
            if (!known || !(fds[i].revents & POLLNVAL)) close(fds[i].fd);
    }
}

std::string SignalName(int sig) {
    static const std::pair<int, const char *> names[] = {
        {SIGHUP, "HUP"},   {SIGINT, "INT"},   {SIGQUIT, "QUIT"}, {SIGILL, "ILL"},   {SIGTRAP, "TRAP"},
        {SIGABRT, "ABRT"}, {SIGBUS, "BUS"},   {SIGFPE, "FPE"},   {SIGKILL, "KILL"}, {SIGUSR1, "USR1"},
        {SIGSEGV, "SEGV"}, {SIGUSR2, "USR2"}, {SIGPIPE, "PIPE"}, {SIGALRM, "ALRM"}, {SIGTERM, "TERM"},
        {SIGCHLD, "CHLD"}, {SIGCONT, "CONT"}, {SIGSTOP, "STOP"}, {SIGTSTP, "TSTP"}, {SIGTTIN, "TTIN"},
        {SIGTTOU, "TTOU"}, {SIGXCPU, "XCPU"}, {SIGXFSZ, "XFSZ"}, {SIGSYS, "SYS"},
    };
    for (const auto &[n, name] : names)
        if (n == sig) return name;
    return std::to_string(sig);
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

TempDir::TempDir() {
    const char *base = getenv("TMPDIR");
    std::string templ = std::string(base != nullptr && *base ? base : "/tmp") + "/labsh-test.XXXXXX";
    Check(mkdtemp(templ.data()) != nullptr, "mkdtemp");
    char real[PATH_MAX];
    path_ = realpath(templ.c_str(), real) != nullptr ? real : templ;
}

TempDir::~TempDir() { RemoveTree(path_); }

// Tests leave directories their owner may not write: permissions first.
void RemoveTree(const std::string &path) { Shell("chmod -R u+rwx '" + path + "' 2>/dev/null; rm -rf '" + path + "'", "/"); }

std::string ReadFile(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream s;
    s << f.rdbuf();
    return s.str();
}

void WriteFile(const std::string &path, const std::string &content) { std::ofstream(path, std::ios::binary) << content; }

std::string Shell(const std::string &command, const std::string &dir, int *status) {
    int p[2];
    Check(pipe(p) == 0, "pipe");
    pid_t pid = fork();
    Check(pid != -1, "fork");
    if (pid == 0) {
        dup2(p[1], 1);
        close(p[0]);
        close(p[1]);
        if (chdir(dir.c_str()) == -1) _exit(126);
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    close(p[1]);
    std::string out;
    while (p[0] != -1) Append(p[0], out);
    int st;
    while (waitpid(pid, &st, 0) == -1 && errno == EINTR) {
    }
    if (status != nullptr) *status = st;
    return out;
}

bool RunResult::exited() const { return !timedOut && WIFEXITED(status); }
int RunResult::exitCode() const { return exited() ? WEXITSTATUS(status) : -1; }
int RunResult::termSignal() const { return !timedOut && WIFSIGNALED(status) ? WTERMSIG(status) : 0; }

RunResult Run(const std::string &input, const std::string &dir, const RunOptions &options) {
    // Input comes from a file, as a teacher's script would: the shell may
    // read it ahead, and programs it starts read on from the same place.
    TempDir scratch;
    std::string path = options.stdinFile;
    if (path.empty()) WriteFile(path = scratch / "input", input);
    int in = open(path.c_str(), O_RDONLY);
    Check(in != -1, "open input");
    Session s(dir, options, in);
    RunResult r;
    r.status = s.wait(options.timeout);
    r.timedOut = r.status == -1;
    // What a background child still writes after the shell ended arrives
    // while the streams are busy; stop once they are quiet.
    for (size_t seen = SIZE_MAX; !r.timedOut && seen != s.buffer_.size() + s.errbuf_.size();) {
        seen = s.buffer_.size() + s.errbuf_.size();
        auto end = Clock::now() + std::chrono::milliseconds(300);
        while (Clock::now() < end && (s.out_ != -1 || s.err_ != -1)) s.pump(20);
    }
    r.out = s.buffer_;
    r.err = s.errbuf_;
    return r;
}

Session::Session(const std::string &dir, std::vector<std::string> args, bool merged,
                 const std::map<std::string, std::optional<std::string>> &env)
    : Session(dir, [&] {
          RunOptions o;
          o.args = std::move(args);
          o.env = env;
          o.merged = merged;
          return o;
      }(), -1) {}

Session::Session(const std::string &dir, const RunOptions &options, int input) {
    int in[2] = {input, -1}, out[2], err[2];
    Check((input != -1 || pipe(in) == 0) && pipe(out) == 0 && pipe(err) == 0, "pipe");
    pid_ = fork();
    Check(pid_ != -1, "fork");
    if (pid_ == 0) {
        setpgid(0, 0);
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(options.merged ? out[1] : err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]})
            if (fd > 2) close(fd);
        ExecShell(dir, options);
    }
    setpgid(pid_, pid_);
    for (int fd : {in[0], out[1], err[1]}) close(fd);
    in_ = in[1];
    out_ = out[0];
    err_ = err[0];
    for (int fd : {in_, out_, err_})
        if (fd != -1) fcntl(fd, F_SETFD, FD_CLOEXEC);
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
    if (fds[0].revents) Append(out_, buffer_);
    if (fds[1].revents) Append(err_, errbuf_);
}

std::string TakeUntil(std::string &buffer, const std::string &marker, std::chrono::milliseconds timeout,
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

std::string Session::drain(std::chrono::milliseconds quiet) {
    auto end = Clock::now() + quiet;
    while (Clock::now() < end) pump(20);
    return std::exchange(buffer_, {});
}

std::string Session::errors() {
    pump(0);
    return errbuf_;
}

void Session::closeInput() {
    if (in_ >= 0) close(in_);
    in_ = -1;
}

void Session::signal(int sig) { kill(pid_, sig); }

int WaitChild(pid_t pid, bool &finished, int &status, std::chrono::milliseconds timeout,
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

}  // namespace labtest
