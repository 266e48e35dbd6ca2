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

// Child side of a session: environment adjusted, default signal handling
// (not the test's own), only the three standard descriptors (what the test
// runner keeps open would show in the shell's open-file table), exec.
[[noreturn]] void ExecShell(const std::string &dir, const std::vector<std::string> &args,
                            const std::map<std::string, std::optional<std::string>> &env) {
    if (chdir(dir.c_str()) == -1) _exit(126);
    for (const auto &[name, value] : env) value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    std::string bin = LabshBinary();
    std::vector<char *> argv{bin.data()};
    for (const auto &a : args) argv.push_back(const_cast<char *>(a.c_str()));
    argv.push_back(nullptr);
    for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    CloseFrom(3);
    execv(bin.c_str(), argv.data());
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

Session::Session(const std::string &dir, std::vector<std::string> args, bool merged,
                 const std::map<std::string, std::optional<std::string>> &env)
{
    int in[2], out[2], err[2];
    Check(pipe(in) == 0 && pipe(out) == 0 && pipe(err) == 0, "pipe");
    pid_ = fork();
    Check(pid_ != -1, "fork");
    if (pid_ == 0) {
        setpgid(0, 0);
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(merged ? out[1] : err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]})
            if (fd > 2) close(fd);
        ExecShell(dir, args, env);
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
