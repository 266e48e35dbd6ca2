// Helpers shared by the end-to-end tests of the processes commands.
#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/session.h"

namespace proctest {

inline std::vector<std::string> Lines(const std::string &s) {
    std::vector<std::string> v;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);) v.push_back(l);
    return v;
}

inline bool Contains(const std::string &s, const std::string &part) { return s.find(part) != std::string::npos; }

// What the commands printed, without the start-up lines, the prompts and the
// answer to "override on", which every script begins with.
struct Resultado {
    std::string out, err;
    int status = -1;
};

inline Resultado Script(const labtest::TempDir &dir, const std::string &lineas, labtest::RunOptions o = {}) {
    o.args.insert(o.args.begin(), "-p");
    std::string vacio = labtest::Run("", dir.path()).out;
    std::string prompt = vacio.substr(vacio.rfind('\n') + 1);
    labtest::RunResult r = labtest::Run("override on\n" + lineas, dir.path(), o);
    EXPECT_FALSE(r.timedOut);
    std::string out = r.out.substr(std::min(r.out.size(), r.out.find(prompt)));
    for (size_t p; !prompt.empty() && (p = out.find(prompt)) != std::string::npos;) out.erase(p, prompt.size());
    out.erase(0, out.find('\n') + 1);
    return {out, r.err, r.status};
}

inline std::string Campo(pid_t pid, const std::string &fichero) {
    std::ifstream f("/proc/" + std::to_string(pid) + "/" + fichero);
    return std::string((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
}

// Field n of a /proc/<pid>/stat line, counted after the command name: 0 is
// the state, 16 the nice value.
inline std::string StatField(const std::string &stat, size_t n) {
    size_t cierre = stat.rfind(')');
    if (cierre == std::string::npos) return "";
    std::istringstream in(stat.substr(cierre + 2));
    std::string c;
    for (size_t i = 0; i <= n && in >> c; i++) {}
    return c;
}

inline char State(pid_t pid) {
    std::string e = StatField(Campo(pid, "stat"), 0);
    return e.empty() ? '\0' : e[0];
}

inline std::string Comm(pid_t pid) {
    std::string c = Campo(pid, "comm");
    return c.empty() ? c : c.substr(0, c.size() - 1);
}

template <typename F> bool Esperar(F condicion) {
    for (int i = 0; i < 1000; i++, std::this_thread::sleep_for(std::chrono::milliseconds(10)))
        if (condicion()) return true;
    return false;
}

inline bool WaitState(pid_t pid, const std::string &estados) {
    return Esperar([&] { return State(pid) != '\0' && Contains(estados, std::string(1, State(pid))); });
}

// A zombie, or already reaped.
inline bool WaitEnded(pid_t pid) {
    return Esperar([&] { return State(pid) == 'Z' || State(pid) == '\0'; });
}

// One job line (a prompt may come before it).
struct Job {
    pid_t pid = -1;
    std::string usuario, estado, valor, linea;
    int prio = 0;
};

inline std::ostream &operator<<(std::ostream &o, const Job &j) {
    return o << j.pid << " [" << j.usuario << "] p=" << j.prio << " " << j.estado << " (" << j.valor << ") " << j.linea;
}

inline std::vector<Job> Jobs(const std::string &out) {
    static const std::regex linea(
        R"((\d+) (.{11}) p=(-?\d+) \d{4}/\d\d/\d\d \d\d:\d\d:\d{1,2} ([A-Z?]+) \(([^)]*)\) (.*)$)");
    std::vector<Job> jobs;
    for (const std::string &l : Lines(out))
        if (std::smatch m; std::regex_search(l, m, linea))
            jobs.push_back({static_cast<pid_t>(std::stoi(m[1])), m[2], m[4], m[5], m[6], std::stoi(m[3])});
    return jobs;
}

inline std::vector<pid_t> JobPids(const std::string &out) {
    std::vector<pid_t> pids;
    for (const Job &j : Jobs(out)) pids.push_back(j.pid);
    return pids;
}

// Signals one process the test started; never a group, never "every process".
inline void Senal(pid_t pid, int sig) {
    if (pid > 0) kill(pid, sig);
}

// Kills what a test started, by pid, once sure the pid is still that program.
struct Limpieza {
    std::vector<std::pair<pid_t, std::string>> procesos;
    void add(pid_t pid, const std::string &comm) { procesos.emplace_back(pid, comm); }
    void matar() {
        for (const auto &[pid, comm] : procesos)
            if (pid > 0 && Comm(pid) == comm) {
                Senal(pid, SIGKILL);
                WaitEnded(pid);
            }
    }
    ~Limpieza() { matar(); }
};

}  // namespace proctest
