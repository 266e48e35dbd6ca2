// Running a shell on a script in a fresh directory and catching everything
// it writes, whatever the shell does: hang, crash, flood its output, read
// the terminal, or leave processes behind.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace ldiff {

// A fresh directory under $TMPDIR (or /tmp), removed with all its contents,
// whatever their permissions, when the object goes.
class TempDir {
  public:
    explicit TempDir(const char *prefix = "labsh-diff");
    ~TempDir();
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    const std::string &path() const { return path_; }
    std::string operator/(const std::string &name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

void RemoveTree(const std::string &path);
std::string ReadFile(const std::string &path);
bool WriteFile(const std::string &path, const std::string &content);
// A word for /bin/sh, quoted.
std::string Quote(const std::string &word);
// Runs `command` with /bin/sh -c in `dir`; returns what it wrote on standard
// output and its wait status in `status`.
std::string Shell(const std::string &command, const std::string &dir, int *status = nullptr);
// Reads what `fd` has into `to`, keeping at most `room` bytes (`*cut` is set
// when more came); at the end of input, or on an error, closes `fd` and sets
// it to -1. Returns the bytes read.
size_t Append(int &fd, std::string &to, size_t room = SIZE_MAX, bool *cut = nullptr);
// Closes every descriptor from `first` up; safe between fork and exec.
void CloseFrom(int first);
// The signal's name without "SIG" ("SEGV"), or its number.
std::string SignalName(int sig);

struct RunSpec {
    std::string program;                 // the shell
    std::string argv0;                   // its argv[0]; `program` when empty
    std::vector<std::string> args;       // after argv[0]
    std::string input;                   // file read as standard input
    std::vector<std::pair<std::string, std::optional<std::string>>> env;  // set, or unset when nullopt
    bool merged = true;                  // standard error into the same pipe as standard output
    double timeout = 10;                 // seconds
    std::size_t limit = 4u << 20;        // bytes of output kept
    int settle = 300;                    // ms to wait for what children still write after the shell ended
    bool keepDescriptors = false;        // pass on descriptors past 2
};

enum class End {
    Exited,     // the shell ended by itself (status in `status`)
    Signaled,   // killed by a signal of its own doing
    TimedOut,   // still running at the time limit
    Flooded,    // wrote more than the limit
    Terminal,   // tried to use the terminal
    NotStarted  // could not be executed (`startErrno`)
};

struct RunResult {
    std::string out, err;  // err is empty when merged
    End end = End::NotStarted;
    int status = -1;       // raw wait status
    int startErrno = 0;
    bool cut = false;      // output past the limit was dropped
    bool children = false; // processes of the run were still there at its end
    pid_t pid = -1;
    bool exited() const;      // ended by itself, with exitCode()
    int exitCode() const;     // -1 when it did not exit
    int termSignal() const;   // 0 when no signal of its own ended it
};

// Runs the shell in `dir`, with the environment it names and umask 022, ends
// every process of the run and returns what it wrote.
RunResult Run(const RunSpec &how, const std::string &dir);

// Gives every later run System V keys of its own, where the system can;
// call it once, before any run and any thread. False when runs share the
// machine's keys (then no two should run at once).
bool IsolateRuns();

// A short Spanish text for how a run ended ("salio con 1", "senal SEGV").
std::string EndText(const RunResult &r);

}  // namespace ldiff
