// A shell on a pseudo-terminal of its own, driven key by key as a person at
// a terminal drives it. The terminal is made with the portable calls
// (posix_openpt, grantpt, unlockpt, ptsname) and becomes the shell's
// controlling terminal.
#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>
#include <termios.h>
#include <vector>

namespace labtest {

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
