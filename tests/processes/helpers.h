// Helpers shared by the end-to-end tests of the processes commands.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/session.h"

namespace proctest {

inline bool Sanitized() { return getenv("LABSH_SANITIZED") != nullptr; }

// The prompt the shell shows in `dir`: what follows the start-up lines when
// the input is empty.
inline std::string PromptIn(const std::string &dir) {
    labtest::RunResult r = labtest::Run("", dir);
    size_t nl = r.out.rfind('\n');
    return nl == std::string::npos ? r.out : r.out.substr(nl + 1);
}

// What the commands printed: the start-up lines and every prompt removed.
inline std::string Clean(const std::string &out, const std::string &prompt) {
    size_t at = out.find(prompt);
    std::string rest = at == std::string::npos ? out : out.substr(at);
    std::string clean;
    for (size_t p = 0;;) {
        size_t q = rest.find(prompt, p);
        clean += rest.substr(p, q == std::string::npos ? std::string::npos : q - p);
        if (q == std::string::npos) break;
        p = q + prompt.size();
    }
    return clean;
}

struct Resultado {
    std::string out, err;
    int status = -1;
};

// Runs a script with override on and the search path imported from PATH.
inline Resultado Script(const labtest::TempDir &dir, const std::string &lineas, labtest::RunOptions options = {}) {
    options.args.insert(options.args.begin(), "-p");
    std::string prompt = PromptIn(dir.path());
    labtest::RunResult r = labtest::Run("override on\n" + lineas, dir.path(), options);
    EXPECT_FALSE(r.timedOut);
    std::string out = Clean(r.out, prompt);
    const std::string over = "la ejecucion de comandos que no son de las practicas esta habilitada\n";
    if (out.rfind(over, 0) == 0) out.erase(0, over.size());
    return {out, r.err, r.status};
}

inline std::vector<std::string> Lines(const std::string &s) {
    std::vector<std::string> v;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);) v.push_back(l);
    return v;
}

inline bool Contains(const std::string &s, const std::string &part) { return s.find(part) != std::string::npos; }

// Fields of /proc/<pid>/stat after the command name: [0] is the state,
// [16] the nice value.
inline std::vector<std::string> Stat(pid_t pid) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/stat");
    std::string s((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    std::vector<std::string> campos;
    size_t cierre = s.rfind(')');
    if (cierre == std::string::npos) return campos;
    std::istringstream in(s.substr(cierre + 2));
    for (std::string c; in >> c;) campos.push_back(c);
    return campos;
}

inline char State(pid_t pid) {
    auto c = Stat(pid);
    return c.empty() ? '\0' : c[0][0];
}

// Waits until the process is in one of `states` (from /proc), at most 10 s.
inline bool WaitState(pid_t pid, const std::string &states) {
    for (int i = 0; i < 1000; i++) {
        if (states.find(State(pid)) != std::string::npos) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// One job line as the shell prints it (a prompt may come before it).
struct Job {
    pid_t pid = -1;
    std::string usuario, estado, valor, linea;
    int prio = 0;
};

inline std::vector<Job> Jobs(const std::string &out) {
    static const std::regex linea(
        R"((\d+) (.{11}) p=(-?\d+) \d{4}/\d\d/\d\d \d\d:\d\d:\d{1,2} ([A-Z?]+) \(([^)]*)\) (.*)$)");
    std::vector<Job> jobs;
    for (const std::string &l : Lines(out)) {
        std::smatch m;
        if (std::regex_search(l, m, linea))
            jobs.push_back({static_cast<pid_t>(std::stoi(m[1])), m[2], m[4], m[5], m[6], std::stoi(m[3])});
    }
    return jobs;
}

inline std::ostream &operator<<(std::ostream &o, const Job &j) {
    return o << j.pid << " [" << j.usuario << "] p=" << j.prio << " " << j.estado << " (" << j.valor << ") " << j.linea;
}

// Waits until the process has ended: a zombie, or already reaped.
inline bool WaitEnded(pid_t pid) {
    for (int i = 0; i < 1000; i++) {
        char e = State(pid);
        if (e == 'Z' || e == '\0') return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// Pids of the job lines in `out`, in order.
inline std::vector<pid_t> JobPids(const std::string &out) {
    std::vector<pid_t> pids;
    for (const Job &j : Jobs(out)) pids.push_back(j.pid);
    return pids;
}

inline std::string Comm(pid_t pid) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/comm");
    std::string c;
    std::getline(f, c);
    return c;
}

// Waits until the process runs `comm` (it has exec'd), at most 10 s.
inline bool WaitComm(pid_t pid, const std::string &comm) {
    for (int i = 0; i < 1000; i++) {
        if (Comm(pid) == comm) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// Signals one process the test started; never a group or "every process".
inline void Senal(pid_t pid, int sig) {
    if (pid > 0) kill(pid, sig);
}

// Kills what a test started, by pid, once sure the pid is still that program.
struct Limpieza {
    std::vector<std::pair<pid_t, std::string>> procesos;
    void add(pid_t pid, const std::string &comm) { procesos.emplace_back(pid, comm); }
    void add(const std::vector<pid_t> &pids, const std::string &comm) {
        for (pid_t p : pids) add(p, comm);
    }
    ~Limpieza() {
        for (const auto &[pid, comm] : procesos)
            if (pid > 0 && Comm(pid) == comm) kill(pid, SIGKILL);
    }
};

}  // namespace proctest
