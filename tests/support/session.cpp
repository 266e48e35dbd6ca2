#include "support/session.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace labtest {

namespace {

using Clock = std::chrono::steady_clock;

void Check(bool ok, const char *what) {
    if (!ok) throw std::runtime_error(std::string(what) + ": " + strerror(errno));
}

// Child side of a spawn: descriptors in place, environment adjusted, exec.
[[noreturn]] void ExecShell(const std::string &dir, const std::vector<std::string> &args, const std::string &argv0,
                            const std::map<std::string, std::optional<std::string>> &env,
                            const std::vector<std::string> &wrapper = {}, bool inherit = false) {
    if (chdir(dir.c_str()) == -1) _exit(126);
    for (const auto &[name, value] : env) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }
    std::string bin = LabshBinary();
    std::vector<char *> argv;
    std::vector<std::string> front = wrapper;
    for (auto &w : front) argv.push_back(w.data());
    std::string name = argv0.empty() || !wrapper.empty() ? bin : argv0;
    argv.push_back(name.data());
    std::vector<std::string> copy = args;
    for (auto &a : copy) argv.push_back(a.data());
    argv.push_back(nullptr);
    // Default dispositions and an empty mask: the shell must not inherit the
    // test's own signal setup.
    for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Only the three standard descriptors: whatever the test runner keeps
    // open would show in the shell's open-file table and shift its numbers.
    if (!inherit) close_range(3, ~0U, 0);
    if (wrapper.empty())
        execv(bin.c_str(), argv.data());
    else
        execvp(argv[0], argv.data());
    _exit(127);
}

void AppendAvailable(int fd, std::string &to, bool &open) {
    char buf[65536];
    ssize_t n = read(fd, buf, sizeof buf);
    if (n > 0)
        to.append(buf, static_cast<size_t>(n));
    else if (n == 0 || (errno != EINTR && errno != EAGAIN))
        open = false;
}

}  // namespace

std::string LabshBinary() {
    const char *e = getenv("LABSH");
    if (e != nullptr && *e != '\0') return e;
    return LABSH_DEFAULT_BINARY;
}

TempDir::TempDir() {
    const char *base = getenv("TMPDIR");
    std::string templ = std::string(base != nullptr && *base ? base : "/tmp") + "/labsh-test.XXXXXX";
    Check(mkdtemp(templ.data()) != nullptr, "mkdtemp");
    char real[PATH_MAX];
    path_ = realpath(templ.c_str(), real) != nullptr ? real : templ;
}

TempDir::~TempDir() { RemoveTree(path_); }

void RemoveTree(const std::string &path) {
    struct stat st;
    if (lstat(path.c_str(), &st) == -1) return;
    if (S_ISDIR(st.st_mode)) {
        chmod(path.c_str(), 0700);
        if (DIR *d = opendir(path.c_str())) {
            while (dirent *e = readdir(d)) {
                std::string n = e->d_name;
                if (n != "." && n != "..") RemoveTree(path + "/" + n);
            }
            closedir(d);
        }
        rmdir(path.c_str());
    } else {
        unlink(path.c_str());
    }
}

std::string ReadFile(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream s;
    s << f.rdbuf();
    return s.str();
}

void WriteFile(const std::string &path, const std::string &content) {
    std::ofstream f(path, std::ios::binary);
    f << content;
}

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
    bool open = true;
    while (open) AppendAvailable(p[0], out, open);
    close(p[0]);
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
    RunResult r;
    // Input comes from a file, as a teacher's script would: the shell may
    // read it ahead, and programs it starts read on from the same place.
    std::string inputPath = options.stdinFile;
    TempDir scratch;
    if (inputPath.empty()) {
        inputPath = scratch / "input";
        WriteFile(inputPath, input);
    }
    int in = open(inputPath.c_str(), O_RDONLY);
    Check(in != -1, "open input");
    int out[2], err[2];
    Check(pipe(out) == 0 && pipe(err) == 0, "pipe");
    pid_t pid = fork();
    Check(pid != -1, "fork");
    if (pid == 0) {
        setpgid(0, 0);
        dup2(in, 0);
        dup2(out[1], 1);
        dup2(options.merged ? out[1] : err[1], 2);
        for (int fd : {in, out[0], out[1], err[0], err[1]}) close(fd);
        ExecShell(dir, options.args, options.argv0, options.env, options.wrapper, options.inheritDescriptors);
    }
    setpgid(pid, pid);
    close(in);
    close(out[1]);
    close(err[1]);
    bool outOpen = true, errOpen = true, reaped = false;
    auto deadline = Clock::now() + options.timeout;
    auto quietUntil = Clock::time_point::max();
    // Read until both streams close; once the shell itself has ended, stop
    // when the streams stay quiet (a background child may keep them open).
    while ((outOpen || errOpen) && Clock::now() < quietUntil) {
        pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
        if (!outOpen) fds[0].fd = -1;
        if (!errOpen) fds[1].fd = -1;
        if (Clock::now() >= deadline) {
            r.timedOut = true;
            kill(-pid, SIGKILL);
            break;
        }
        int n = poll(fds, 2, 50);
        if (n < 0 && errno != EINTR) break;
        if (n > 0) {
            if (fds[0].revents) AppendAvailable(out[0], r.out, outOpen);
            if (fds[1].revents) AppendAvailable(err[0], r.err, errOpen);
            if (reaped) quietUntil = Clock::now() + std::chrono::milliseconds(300);
        }
        if (!reaped && waitpid(pid, &r.status, WNOHANG) == pid) {
            reaped = true;
            quietUntil = Clock::now() + std::chrono::milliseconds(300);
        }
    }
    close(out[0]);
    close(err[0]);
    if (!reaped && !r.timedOut) {
        while (waitpid(pid, &r.status, WNOHANG) != pid) {
            if (Clock::now() >= deadline) {
                r.timedOut = true;
                kill(-pid, SIGKILL);
                waitpid(pid, &r.status, 0);
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    } else if (!reaped) {
        waitpid(pid, &r.status, 0);
    }
    return r;
}

Session::Session(const std::string &dir, std::vector<std::string> args, bool merged,
                 const std::map<std::string, std::optional<std::string>> &env) {
    int in[2], out[2], err[2];
    Check(pipe(in) == 0 && pipe(out) == 0 && pipe(err) == 0, "pipe");
    pid_ = fork();
    Check(pid_ != -1, "fork");
    if (pid_ == 0) {
        setpgid(0, 0);
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(merged ? out[1] : err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) close(fd);
        ExecShell(dir, args, "", env);
    }
    setpgid(pid_, pid_);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    in_ = in[1];
    out_ = out[0];
    err_ = err[0];
    fcntl(in_, F_SETFD, FD_CLOEXEC);
    fcntl(out_, F_SETFD, FD_CLOEXEC);
    fcntl(err_, F_SETFD, FD_CLOEXEC);
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
    const char *p = l.data();
    size_t left = l.size();
    while (left > 0) {
        ssize_t n = write(in_, p, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            return;
        }
        p += n;
        left -= static_cast<size_t>(n);
    }
}

void Session::pump(int timeoutMs) {
    pollfd fds[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (out_ < 0) fds[0].fd = -1;
    if (err_ < 0) fds[1].fd = -1;
    if (fds[0].fd < 0 && fds[1].fd < 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs));
        return;
    }
    if (poll(fds, 2, timeoutMs) <= 0) return;
    bool open = true;
    if (fds[0].revents) {
        AppendAvailable(out_, buffer_, open);
        if (!open) {
            close(out_);
            out_ = -1;
        }
    }
    open = true;
    if (fds[1].revents) {
        AppendAvailable(err_, errbuf_, open);
        if (!open) {
            close(err_);
            err_ = -1;
        }
    }
}

std::string Session::readUntil(const std::string &marker, std::chrono::milliseconds timeout) {
    auto deadline = Clock::now() + timeout;
    while (true) {
        size_t at = buffer_.find(marker);
        if (at != std::string::npos) {
            std::string r = buffer_.substr(0, at + marker.size());
            buffer_.erase(0, at + marker.size());
            return r;
        }
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || (out_ < 0 && buffer_.find(marker) == std::string::npos))
            throw std::runtime_error("no \"" + marker + "\" in the shell's output; it printed:\n" + buffer_);
        pump(static_cast<int>(std::min<long long>(left, 100)));
    }
}

std::string Session::drain(std::chrono::milliseconds quiet) {
    auto end = Clock::now() + quiet;
    while (Clock::now() < end) pump(20);
    std::string r;
    r.swap(buffer_);
    return r;
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

int Session::wait(std::chrono::milliseconds timeout) {
    if (finished_) return status_;
    auto deadline = Clock::now() + timeout;
    while (Clock::now() < deadline) {
        int st;
        if (waitpid(pid_, &st, WNOHANG) == pid_) {
            finished_ = true;
            status_ = st;
            return st;
        }
        pump(10);
    }
    return -1;
}

}  // namespace labtest
