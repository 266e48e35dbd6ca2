#include "engine.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <limits.h>
#include <mutex>
#include <poll.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#ifdef __linux__
#include <sched.h>
#endif

extern char **environ;

namespace ldiff {

namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

void CloseFrom(int first) {
    rlimit lim{};
    long last = 65536;
    if (getrlimit(RLIMIT_NOFILE, &lim) == 0 && lim.rlim_cur != RLIM_INFINITY) last = static_cast<long>(lim.rlim_cur);
    last = std::min(last, 1L << 20);
    // poll tells the open descriptors from the rest a thousand at a time.
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

size_t Append(int &fd, std::string &to, size_t room, bool *cut) {
    char buf[65536];
    ssize_t n = read(fd, buf, sizeof buf);
    if (n > 0) {
        size_t keep = std::min(static_cast<size_t>(n), room);
        to.append(buf, keep);
        if (keep < static_cast<size_t>(n) && cut != nullptr) *cut = true;
        return static_cast<size_t>(n);
    }
    if (n == 0 || (errno != EINTR && errno != EAGAIN)) {
        close(fd);
        fd = -1;
    }
    return 0;
}

namespace {

// A pseudo-terminal whose slave becomes the run's controlling terminal with
// the shell outside its foreground group: a shell that reads or writes the
// terminal stops, and the stop tells us, where it would otherwise wait for
// a user who is not there.
struct Terminal {
    int master = -1;
    char slave[128] = "";
    Terminal() {
        master = posix_openpt(O_RDWR | O_NOCTTY);
        if (master == -1) return;
        static std::mutex m;  // ptsname's buffer is shared
        std::lock_guard<std::mutex> lock(m);
        const char *name = grantpt(master) == 0 && unlockpt(master) == 0 ? ptsname(master) : nullptr;
        if (name == nullptr || strlen(name) >= sizeof slave) {
            close(master);
            master = -1;
            return;
        }
        strcpy(slave, name);
        fcntl(master, F_SETFD, FD_CLOEXEC);
        int fd = open(slave, O_RDWR | O_NOCTTY);
        termios t{};
        if (fd != -1 && tcgetattr(fd, &t) == 0) {
            t.c_lflag |= TOSTOP;
            tcsetattr(fd, TCSANOW, &t);
        }
        if (fd != -1) close(fd);
    }
    ~Terminal() {
        if (master != -1) close(master);
    }
};

#ifdef __linux__
// Written before any fork: a child of a threaded program makes no text.
std::string UidMap, GidMap;
bool Unshared = false;

bool WriteAll(const char *path, const std::string &text) {
    int fd = open(path, O_WRONLY);
    if (fd == -1) return false;
    bool ok = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(fd);
    return ok;
}
#endif

// System V keys are the machine's: two runs at once, or a segment an earlier
// run left, would make one shell's `shared` see another's. On Linux each run
// gets a set of keys of its own (root: a namespace; anyone else: in a user
// namespace that maps the user to itself, so every id prints the same).
bool Isolate() {
#ifdef __linux__
    if (!Unshared) return false;
    if (geteuid() == 0) return unshare(CLONE_NEWIPC) == 0;
    if (unshare(CLONE_NEWUSER | CLONE_NEWIPC) != 0) return false;
    WriteAll("/proc/self/setgroups", "deny");
    return WriteAll("/proc/self/uid_map", UidMap) && WriteAll("/proc/self/gid_map", GidMap);
#else
    return false;
#endif
}

// Writes all of a small record to a pipe; safe between fork and exec.
void Tell(int fd, const void *what, size_t n) {
    while (write(fd, what, n) == -1 && errno == EINTR) {
    }
}

// A relay between labsh-diff and the shell: it leads a session of its own
// with the terminal in its foreground, and runs the shell in a group of
// that session outside the foreground. A shell that reads or writes the
// terminal then stops (its group is not orphaned while the relay waits),
// and the relay reports the stop, or the shell's end, as a wait status.
[[noreturn]] void Relay(const char *slave, int report, void (*shell)(void *), void *arg) {
    setsid();
    Isolate();
    int tty = slave[0] != '\0' ? open(slave, O_RDWR) : -1;
#ifdef TIOCSCTTY
    if (tty != -1) ioctl(tty, TIOCSCTTY, 0);
#endif
    pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        if (tty != -1) close(tty);
        close(report);
        shell(arg);
    }
    if (child > 0) setpgid(child, child);
    // Nothing but the report and the terminal: descriptors of runs started
    // at the same time from other threads would stay open here otherwise.
    dup2(report, 0);
    report = 0;
    if (tty != -1) dup2(tty, 1);
    else close(1);
    close(2);
    CloseFrom(3);
    Tell(report, &child, sizeof child);
    int st = 0;
    while (child > 0) {
        pid_t w = waitpid(child, &st, WUNTRACED);
        if (w == -1 && errno == EINTR) continue;
        if (w == child && WIFSTOPPED(st)) {
            Tell(report, &st, sizeof st);
            kill(child, SIGKILL);
            continue;
        }
        if (w == child && !WIFSTOPPED(st)) Tell(report, &st, sizeof st);
        break;
    }
    _exit(0);
}

// Linux names each process's session, group and directory under /proc:
// what a run left behind is found there even when it left the group.
std::vector<pid_t> Leftovers(pid_t session, pid_t group, const std::string &dir) {
    std::vector<pid_t> found;
    DIR *d = opendir("/proc");
    if (d == nullptr) return found;
    while (dirent *e = readdir(d)) {
        char *end;
        long pid = strtol(e->d_name, &end, 10);
        if (*end != '\0' || pid <= 0 || pid == getpid() || pid == session) continue;
        std::string base = std::string("/proc/") + e->d_name;
        std::string stat = ReadFile(base + "/stat");
        size_t close = stat.rfind(')');
        if (close == std::string::npos) continue;
        char state = 0;
        long ppid = 0, pgrp = 0, sid = 0;
        if (sscanf(stat.c_str() + close + 1, " %c %ld %ld %ld", &state, &ppid, &pgrp, &sid) != 4 || state == 'Z')
            continue;
        bool ours = sid == session || pgrp == group;
        if (!ours && !dir.empty()) {
            char cwd[PATH_MAX];
            ssize_t n = readlink((base + "/cwd").c_str(), cwd, sizeof cwd - 1);
            if (n > 0) {
                cwd[n] = '\0';
                ours = strncmp(cwd, dir.c_str(), dir.size()) == 0 && (cwd[dir.size()] == '\0' || cwd[dir.size()] == '/');
            }
        }
        if (ours) found.push_back(static_cast<pid_t>(pid));
    }
    closedir(d);
    return found;
}

}  // namespace

TempDir::TempDir(const char *prefix) {
    const char *base = getenv("TMPDIR");
    std::string templ = std::string(base != nullptr && *base ? base : "/tmp") + "/" + prefix + ".XXXXXX";
    if (mkdtemp(templ.data()) == nullptr) {
        perror("labsh-diff: mkdtemp");
        exit(2);
    }
    char real[PATH_MAX];
    path_ = realpath(templ.c_str(), real) != nullptr ? real : templ;
}

TempDir::~TempDir() { RemoveTree(path_); }

void RemoveTree(const std::string &path) {
    Shell("chmod -R u+rwx " + Quote(path) + " 2>/dev/null; rm -rf " + Quote(path), "/");
}

std::string Quote(const std::string &word) {
    std::string q = "'";
    for (char c : word) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

std::string ReadFile(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream s;
    s << f.rdbuf();
    return s.str();
}

bool WriteFile(const std::string &path, const std::string &content) {
    std::ofstream f(path, std::ios::binary);
    f << content;
    return static_cast<bool>(f);
}

std::string Shell(const std::string &command, const std::string &dir, int *status) {
    int p[2];
    if (pipe(p) != 0) {
        if (status != nullptr) *status = -1;
        return "";
    }
    pid_t pid = fork();
    if (pid == 0) {
        dup2(p[1], 1);
        CloseFrom(3);
        if (chdir(dir.c_str()) == -1) _exit(126);
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    close(p[1]);
    std::string out;
    if (pid != -1)
        for (int fd = p[0]; fd != -1;) Append(fd, out);
    else
        close(p[0]);
    int st = -1;
    while (pid != -1 && waitpid(pid, &st, 0) == -1 && errno == EINTR) {
    }
    if (status != nullptr) *status = st;
    return out;
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

namespace {

// What the shell's own process does before exec.
struct Launch {
    const RunSpec *how;
    const std::string *dir;
    int in, out, err, fail;
    char **argv, **envp;
};

[[noreturn]] void Exec(void *arg) {
    const Launch &l = *static_cast<Launch *>(arg);
    if (chdir(l.dir->c_str()) == -1) {
        int e = errno;
        Tell(l.fail, &e, sizeof e);
        _exit(127);
    }
    umask(022);
    dup2(l.in, 0);
    dup2(l.out, 1);
    dup2(l.how->merged ? l.out : l.err, 2);
    for (int s = 1; s < NSIG; s++) signal(s, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (!l.how->keepDescriptors) {
        // `fail` closes at exec by itself; it is kept until then.
        for (int fd = 3; fd < l.fail; fd++) close(fd);
        CloseFrom(l.fail + 1);
    }
    execve(l.how->program.c_str(), l.argv, l.envp);
    int e = errno;
    Tell(l.fail, &e, sizeof e);
    _exit(127);
}

// Reads exactly one record, or returns false at the end of the pipe.
bool Hear(int fd, void *into, size_t n) {
    ssize_t got;
    while ((got = read(fd, into, n)) == -1 && errno == EINTR) {
    }
    return got == static_cast<ssize_t>(n);
}

}  // namespace

RunResult Run(const RunSpec &how, const std::string &dir) {
    RunResult r;
    auto start = Clock::now();
    // Everything the children need is made before the fork: between fork
    // and exec they only make system calls.
    std::vector<std::string> words{how.argv0.empty() ? how.program : how.argv0};
    words.insert(words.end(), how.args.begin(), how.args.end());
    std::vector<char *> argv;
    for (auto &w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    std::vector<std::string> envs;
    for (char **e = environ; *e != nullptr; e++) {
        std::string_view v(*e);
        std::string_view name = v.substr(0, v.find('='));
        if (std::none_of(how.env.begin(), how.env.end(), [&](const auto &c) { return c.first == name; }))
            envs.emplace_back(v);
    }
    for (const auto &[name, value] : how.env)
        if (value) envs.push_back(name + "=" + *value);
    std::vector<char *> envp;
    for (auto &e : envs) envp.push_back(e.data());
    envp.push_back(nullptr);

    int in = open(how.input.empty() ? "/dev/null" : how.input.c_str(), O_RDONLY | O_CLOEXEC);
    int out[2] = {-1, -1}, err[2] = {-1, -1}, fail[2] = {-1, -1}, report[2] = {-1, -1};
    auto closeAll = [&] {
        for (int fd : {in, out[0], out[1], err[0], err[1], fail[0], fail[1], report[0], report[1]})
            if (fd != -1) close(fd);
    };
    if (in == -1 || pipe(out) != 0 || (!how.merged && pipe(err) != 0) || pipe(fail) != 0 || pipe(report) != 0) {
        r.startErrno = errno;
        closeAll();
        return r;
    }
    for (int fd : {out[0], err[0], fail[0], report[0], fail[1]})
        if (fd != -1) fcntl(fd, F_SETFD, FD_CLOEXEC);
    Terminal tty;
    Launch launch{&how, &dir, in, out[1], err[1], fail[1], argv.data(), envp.data()};
    pid_t relay = fork();
    if (relay == 0) {
        Relay(tty.slave, report[1], Exec, &launch);
    }
    for (int fd : {in, out[1], err[1], fail[1], report[1]})
        if (fd != -1) close(fd);
    in = out[1] = err[1] = fail[1] = report[1] = -1;
    pid_t pid = -1;
    if (relay == -1 || !Hear(report[0], &pid, sizeof pid) || pid <= 0) {
        r.startErrno = relay == -1 ? errno : EAGAIN;
        if (relay > 0) waitpid(relay, nullptr, 0);
        closeAll();
        return r;
    }
    r.pid = pid;
    int e = 0;
    bool started = !Hear(fail[0], &e, sizeof e);
    if (!started) r.startErrno = e;

    int outfd = out[0], errfd = err[0], repfd = report[0];
    bool finished = false;
    auto deadline = start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(how.timeout));
    Clock::time_point quietSince{};
    auto room = [&] {
        size_t kept = r.out.size() + r.err.size();
        return how.limit > kept ? how.limit - kept : 0;
    };
    while (true) {
        auto now = Clock::now();
        if (now >= deadline) {
            if (!finished) r.end = End::TimedOut;
            else r.children = true;
            break;
        }
        if (finished && outfd == -1 && errfd == -1) break;
        int wait = 20;
        if (finished) {
            auto left = std::chrono::milliseconds(how.settle) - (now - quietSince);
            wait = static_cast<int>(std::clamp<long long>(
                std::chrono::duration_cast<std::chrono::milliseconds>(left).count(), 0, 10));
        }
        pollfd fds[3] = {{outfd, POLLIN, 0}, {errfd, POLLIN, 0}, {repfd, POLLIN, 0}};
        int ready = poll(fds, 3, wait);
        if (ready == 0 && finished && Clock::now() - quietSince >= std::chrono::milliseconds(how.settle)) {
            r.children = true;  // something of the run still holds its output open
            break;
        }
        if (ready <= 0) continue;
        if (fds[2].revents) {
            int st;
            if (Hear(repfd, &st, sizeof st)) {
                if (WIFSTOPPED(st)) {
                    r.end = End::Terminal;
                    break;
                }
                finished = true;
                r.status = st;
                r.end = WIFEXITED(st) ? End::Exited : End::Signaled;
                quietSince = Clock::now();
            }
            close(repfd);
            repfd = -1;
            if (!finished) {  // the relay went without a word
                r.end = End::Signaled;
                break;
            }
        }
        size_t n = 0;
        if (fds[0].revents) n += Append(outfd, r.out, room(), &r.cut);
        if (fds[1].revents) n += Append(errfd, r.err, room(), &r.cut);
        if (n > 0) quietSince = Clock::now();
        if (r.cut) {
            if (!finished) r.end = End::Flooded;
            else r.children = true;
            break;
        }
    }
    // What was written before a stop or the time limit is still in the pipes.
    for (int *fd : {&outfd, &errfd})
        for (int k = 0; k < 64 && *fd != -1 && !r.cut; k++) {
            pollfd p{*fd, POLLIN, 0};
            if (poll(&p, 1, 0) <= 0 || Append(*fd, *fd == outfd ? r.out : r.err, room(), &r.cut) == 0) break;
        }
    // The end of the run: the shell's group, the relay's session, and on
    // Linux whatever else still works in the run's directory.
    kill(-pid, SIGKILL);
    kill(relay, SIGKILL);
    for (int round = 0; round < 5; round++) {
        std::vector<pid_t> rest = Leftovers(relay, pid, dir);
        if (rest.empty()) break;
        if (finished) r.children = true;
        for (pid_t p : rest) kill(p, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    while (waitpid(relay, nullptr, 0) == -1 && errno == EINTR) {
    }
    for (int fd : {outfd, errfd, repfd, fail[0]})
        if (fd != -1) close(fd);
    if (!started) r.end = End::NotStarted;
    return r;
}

bool IsolateRuns() {
#ifdef __linux__
    UidMap = std::to_string(geteuid()) + " " + std::to_string(geteuid()) + " 1\n";
    GidMap = std::to_string(getegid()) + " " + std::to_string(getegid()) + " 1\n";
    Unshared = true;
    pid_t p = fork();
    if (p == 0) _exit(Isolate() ? 0 : 1);
    int st = 0;
    Unshared = p > 0 && waitpid(p, &st, 0) == p && WIFEXITED(st) && WEXITSTATUS(st) == 0;
    return Unshared;
#else
    return false;
#endif
}

bool RunResult::exited() const { return end == End::Exited; }
int RunResult::exitCode() const { return exited() ? WEXITSTATUS(status) : -1; }
int RunResult::termSignal() const { return end == End::Signaled ? WTERMSIG(status) : 0; }

std::string EndText(const RunResult &r) {
    switch (r.end) {
    case End::Exited:
        return "salio con " + std::to_string(r.exitCode());
    case End::Signaled:
        return "senal " + SignalName(r.termSignal());
    case End::TimedOut:
        return "sin terminar en el tiempo limite";
    case End::Flooded:
        return "inunda la salida";
    case End::Terminal:
        return "usa el terminal";
    case End::NotStarted:
        return std::string("no se puede ejecutar: ") + strerror(r.startErrno);
    }
    return "";
}

}  // namespace ldiff
