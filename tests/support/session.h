// Running the shell from tests: on a whole script (Run) or line by line
// (Session), always in a fresh temporary directory.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
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
using ldiff::CloseFrom;
using ldiff::ReadFile;
using ldiff::RemoveTree;
using ldiff::Shell;
using ldiff::SignalName;
using ldiff::WriteFile;

// Why the facts a test reads about another process from /proc cannot be had
// here, or empty when they can.
std::string NoProc();

// The shell under test on a script in `dir`, through labsh-diff's engine:
// `how` adds arguments, environment and the like, `wrapper` a program that
// runs the shell (valgrind).
using ldiff::RunResult;
RunResult Run(const std::string &input, const std::string &dir, ldiff::RunSpec how = {},
              const std::vector<std::string> &wrapper = {});

// Calls pump(ms) until `marker` is in `buffer`, then takes the text up to and
// including it out of the buffer. Throws std::runtime_error with `what` and
// the text read after the timeout, or once pump returns false (nothing more
// can come).
// Waits for child `pid` to end, calling pump(ms) meanwhile; keeps its status
// in `status` and `finished`. Returns the raw wait status, -1 on timeout.
int WaitChild(pid_t pid, bool &finished, int &status, std::chrono::milliseconds timeout,
              const std::function<void(int)> &pump);

std::string TakeUntil(std::string &buffer, const std::string &marker, std::chrono::milliseconds timeout,
                      const std::function<bool(int)> &pump, const std::string &what);

// A shell driven line by line. Its standard output and error go to one pipe
// unless `merged` is false, in which case error is kept apart.
class Session {
  public:
    explicit Session(const std::string &dir, std::vector<std::string> args = {}, bool merged = true,
                     const std::map<std::string, std::optional<std::string>> &env = {});
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    pid_t pid() const { return pid_; }
    void send(const std::string &line);  // a newline is added
    // Reads until `marker` has appeared in the output after what earlier calls
    // consumed; returns the text up to and including it. Throws
    // std::runtime_error, with what was read, after the timeout.
    std::string readUntil(const std::string &marker, std::chrono::milliseconds timeout = std::chrono::seconds(20));
    // Everything read so far and not yet consumed, after waiting `quiet`.
    std::string drain(std::chrono::milliseconds quiet = std::chrono::milliseconds(200));
    std::string errors();  // standard error collected so far (not merged)
    void closeInput();
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
};

}  // namespace labtest
