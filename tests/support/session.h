// Running the shell from tests: on a whole script (Run), line by line
// (Session) or key by key at a terminal (Terminal), always in a fresh
// temporary directory.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <termios.h>
#include <vector>

#include "engine.h"

namespace labtest {

// The shell under test: $LABSH when set, else the one this build made.
std::string LabshBinary();

// Fresh directories, files and /bin/sh commands, as labsh-diff has them;
// the tests' directories are named labsh-test.*.
class TempDir : public ldiff::TempDir {
  public:
    TempDir() : ldiff::TempDir("labsh-test") {}
};
using ldiff::ReadFile;
using ldiff::Shell;
using ldiff::WriteFile;

using Env = std::map<std::string, std::optional<std::string>>;

// Starts the shell in `dir` with `fds` as its descriptors 0, 1 and 2 and
// nothing else open (what the test runner keeps open would show in the
// shell's open-file table), default signal handling (not the test's own)
// and `env` applied, through `wrapper` when one is given (setpriv, say);
// `first` runs in the child before all that. Returns its pid.
pid_t Start(const std::string &dir, const std::vector<std::string> &args, std::array<int, 3> fds,
            const Env &env = {}, const std::vector<std::string> &wrapper = {},
            const std::function<void()> &first = {});

// Why the facts a test reads about another process from /proc cannot be had
// here, or empty when they can.
std::string NoProc();

// The shell under test on a script in `dir`, through labsh-diff's engine:
// `how` adds arguments, environment and the like, `wrapper` a program that
// runs the shell (valgrind).
using ldiff::RunResult;
RunResult Run(const std::string &input, const std::string &dir, ldiff::RunSpec how = {},
              const std::vector<std::string> &wrapper = {});

// A shell driven line by line. Its standard output and error go to one pipe
// unless `merged` is false, in which case error is kept apart.
class Session {
  public:
    explicit Session(const std::string &dir, std::vector<std::string> args = {}, bool merged = true,
                     const Env &env = {});
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    pid_t pid() const { return pid_; }
    void send(const std::string &line);  // a newline is added
    // Reads until `marker` has appeared in the output after what earlier calls
    // consumed; returns the text up to and including it. Throws
    // std::runtime_error, with what was read, after the timeout.
    std::string readUntil(const std::string &marker, std::chrono::milliseconds timeout = std::chrono::seconds(20));
    // Sets the prompt to "$" on a line of its own and turns every command
    // on; then run() gives what one line printed, known to be done when a
    // marker line after it has been answered.
    void commandsOn();
    std::string run(const std::string &line);
    std::string errors();  // standard error collected so far (not merged)
    void signal(int sig);
    // Waits for the shell to end; returns the raw wait status, -1 on timeout.
    int wait(std::chrono::milliseconds timeout = std::chrono::seconds(20));

  private:
    void pump(int timeoutMs);
    pid_t pid_ = -1;
    int in_ = -1, out_ = -1, err_ = -1;
    std::string buffer_, errbuf_;
    bool finished_ = false;
    int status_ = -1;
    int runs_ = 0;
};

// A shell on a pseudo-terminal of its own, driven as a person at a terminal
// drives it. The terminal is made with the portable calls (posix_openpt,
// grantpt, unlockpt, ptsname) and becomes the shell's controlling terminal.
class Terminal {
  public:
    // Starts the shell in `dir` with HOME there too (no ~/.editrc of the
    // person running the tests), TERM=xterm and the C locale. Throws
    // std::runtime_error when no pseudo-terminal can be had.
    Terminal(const std::string &dir, std::vector<std::string> args = {}, int columns = 80, int rows = 24);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    pid_t pid() const { return pid_; }
    void type(const std::string &keys);  // bytes as the keyboard sends them
    // As Session::readUntil: the output up to and including `marker`.
    std::string readUntil(const std::string &marker, std::chrono::milliseconds timeout = std::chrono::seconds(20));
    std::string drain(std::chrono::milliseconds quiet = std::chrono::milliseconds(300));
    // Waits until the shell has the terminal out of canonical mode, as a
    // line editor does when it starts reading: keys typed before that are
    // echoed and gathered by the terminal itself.
    void waitRaw(std::chrono::milliseconds timeout = std::chrono::seconds(20));
    void resize(int columns, int rows);
    const std::string &transcript() const { return all_; }  // everything shown so far
    struct termios mode() const;                           // the terminal's mode now
    const struct termios &initialMode() const { return initial_; }  // before the shell started
    // Waits for the shell to end; the raw wait status, -1 on timeout.
    int wait(std::chrono::milliseconds timeout = std::chrono::seconds(20));

  private:
    void pump(int timeoutMs);
    pid_t pid_ = -1;
    int master_ = -1, slave_ = -1;
    struct termios initial_ {};
    std::string buffer_, all_;
    bool finished_ = false;
    int status_ = -1;
};

bool SameMode(const struct termios &a, const struct termios &b);

}  // namespace labtest
