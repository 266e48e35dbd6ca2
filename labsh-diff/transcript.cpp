// Runs the cases of one transcript file against a shell and reports every
// difference.
//
// A transcript holds cases:
//
//   === name of the case
//   --- args            words given after the program name, one per line
//   --- argv0           the program name to pass instead of the binary's path
//   --- program         run this instead of the shell: "labsh-diff" is this
//                       program (setup scripts and the program find the
//                       shell under test in $LABSH, labsh-diff in
//                       $LABSH_DIFF)
//   --- env             NAME=value to set, -NAME to unset, one per line
//   --- setup           /bin/sh script run in the fresh directory first
//   --- stdin           the input, exactly (each line ends with a newline)
//   --- stdin-noeol     the same, without the final newline
//   --- stdin-file      input taken from this file (made by the setup)
//   --- stdout          expected standard output
//   --- stderr          expected standard error (empty when not given)
//   --- merged          expected output of both streams in one pipe
//   --- status          expected exit: a number, or "signal NAME" (default 0)
//   --- post            /bin/sh script run in the directory afterwards
//   --- post-stdout     its expected output
//   --- requires        words: "unsanitized" (skipped in the sanitizer build,
//                       for the faults the shell provokes on purpose), "root",
//                       "nonroot", "program NAME" (found on PATH), or
//                       "own-shell" (the shell under test is labsh-diff's
//                       own reference); a case
//                       skipped is reported and counted, and a file whose
//                       every case is skipped exits with 77
//
// In expected output every line is compared exactly, except:
//   "~ regex"      the whole line matches the (ECMAScript) regular expression;
//   "~~~"          any number of lines, none included;
//   "\~..."        a literal line beginning with "~";
//   "text (no-eol)" the last line, which has no newline at its end;
//   "@startup"     the four start-up lines without -p (the program name and
//                  the executable's date vary);
//   "@startup-p"   the two start-up lines with -p;
//   "@prompt rest" a line that begins with the default prompt, then "rest".
// Within any expected line (a regular expression too), texts that belong to
// the C library are written by what they stand for, and this program, built
// with the same toolchain as the shell, puts in its own C library's wording:
//   "{{ENXIO}}"    the system's text for that error number (strerror), for
//                  any of the names in ErrorNames below;
//   "{{null}}"     a null pointer as printf's "%p" writes it ("(nil)", "0x0"
//                  or "0", by C library).
// Lines starting with "#" between cases are comments.
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <unistd.h>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>

#include "transcript.h"

namespace ldiff {

std::string Escape(const std::string &s) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::regex_replace(s, special, R"(\$&)");
}

constexpr ErrorName Errores[] = {
    {"EPERM", EPERM},     {"ENOENT", ENOENT},   {"ESRCH", ESRCH},       {"EINTR", EINTR},
    {"EIO", EIO},         {"ENXIO", ENXIO},     {"E2BIG", E2BIG},       {"ENOEXEC", ENOEXEC},
    {"EBADF", EBADF},     {"ECHILD", ECHILD},   {"EAGAIN", EAGAIN},     {"ENOMEM", ENOMEM},
    {"EACCES", EACCES},   {"EFAULT", EFAULT},   {"EBUSY", EBUSY},       {"EEXIST", EEXIST},
    {"EXDEV", EXDEV},     {"ENODEV", ENODEV},   {"ENOTDIR", ENOTDIR},   {"EISDIR", EISDIR},
    {"EINVAL", EINVAL},   {"ENFILE", ENFILE},   {"EMFILE", EMFILE},     {"ENOTTY", ENOTTY},
    {"ETXTBSY", ETXTBSY}, {"EFBIG", EFBIG},     {"ENOSPC", ENOSPC},     {"ESPIPE", ESPIPE},
    {"EROFS", EROFS},     {"EMLINK", EMLINK},   {"EPIPE", EPIPE},       {"EDOM", EDOM},
    {"ERANGE", ERANGE},   {"ELOOP", ELOOP},     {"ENOSYS", ENOSYS},     {"ENOTEMPTY", ENOTEMPTY},
    {"EOVERFLOW", EOVERFLOW}, {"ENAMETOOLONG", ENAMETOOLONG},
};

std::span<const ErrorName> ErrorNames() { return Errores; }

}  // namespace ldiff

namespace {

struct Case {
    std::string name;
    int line = 0;
    std::vector<std::string> args, env, needs;
    std::string argv0, program, setup, input, stdinFile, post;
    bool noeol = false;
    std::optional<std::string> out, err, merged, postOut;
    std::string status = "0";
};

std::vector<Case> Parse(const std::string &path) {
    std::ifstream f(path);
    if (!f) throw std::runtime_error("no se puede leer " + path);
    std::vector<Case> cases;
    std::string line, section;
    std::string *target = nullptr;
    std::vector<std::string> *list = nullptr;
    int n = 0;
    auto finish = [&] {
        if (!cases.empty() && target == &cases.back().input && cases.back().noeol && !target->empty() &&
            target->back() == '\n')
            target->pop_back();
    };
    while (std::getline(f, line)) {
        n++;
        if (line.rfind("=== ", 0) == 0) {
            finish();
            cases.push_back({});
            cases.back().name = line.substr(4);
            cases.back().line = n;
            target = nullptr;
            list = nullptr;
            continue;
        }
        if (cases.empty()) continue;
        Case &c = cases.back();
        if (line.rfind("--- ", 0) == 0) {
            finish();
            section = line.substr(4);
            target = nullptr;
            list = nullptr;
            if (section == "args") list = &c.args;
            else if (section == "requires") list = &c.needs;
            else if (section == "env") list = &c.env;
            else if (section == "argv0") target = &c.argv0;
            else if (section == "program") target = &c.program;
            else if (section == "setup") target = &c.setup;
            else if (section == "stdin") target = &c.input;
            else if (section == "stdin-noeol") { target = &c.input; c.noeol = true; }
            else if (section == "stdin-file") target = &c.stdinFile;
            else if (section == "stdout") target = &c.out.emplace();
            else if (section == "stderr") target = &c.err.emplace();
            else if (section == "merged") target = &c.merged.emplace();
            else if (section == "status") { target = &c.status; c.status.clear(); }
            else if (section == "post") target = &c.post;
            else if (section == "post-stdout") target = &c.postOut.emplace();
            else throw std::runtime_error(path + ":" + std::to_string(n) + ": seccion desconocida " + section);
            continue;
        }
        if (list != nullptr) {
            if (!line.empty()) list->push_back(line);
        } else if (target != nullptr) {
            *target += line + "\n";
        }
    }
    finish();
    for (Case &c : cases) {
        for (std::string *s : {&c.argv0, &c.program, &c.stdinFile, &c.status})
            while (!s->empty() && (s->back() == '\n' || s->back() == ' ')) s->pop_back();
    }
    return cases;
}

// The C library's own texts in place of "{{ENAME}}" and "{{null}}";
// escaped when they go into a regular expression.
std::string Expand(const std::string &line, bool regex) {
    std::string out;
    size_t at = 0;
    for (size_t open; (open = line.find("{{", at)) != std::string::npos;) {
        size_t close = line.find("}}", open + 2);
        if (close == std::string::npos) break;
        std::string name = line.substr(open + 2, close - open - 2), text;
        if (name == "null") {
            char buf[32];
            snprintf(buf, sizeof buf, "%p", static_cast<void *>(nullptr));
            text = buf;
        } else {
            auto names = ldiff::ErrorNames();
            auto e = std::find_if(names.begin(), names.end(), [&](const ldiff::ErrorName &x) { return name == x.name; });
            if (e == names.end()) throw std::runtime_error("nombre desconocido {{" + name + "}} en: " + line);
            text = strerror(e->number);
        }
        out += line.substr(at, open - at) + (regex ? ldiff::Escape(text) : text);
        at = close + 2;
    }
    return out + line.substr(at);
}

struct Pattern {
    enum Kind { Exact, Regex, Any } kind;
    std::string text;
    bool noeol = false;
};

std::vector<Pattern> Compile(const std::string &expected) {
    std::vector<Pattern> ps;
    std::istringstream in(expected);
    std::string l;
    while (std::getline(in, l)) {
        const std::string tag = " (no-eol)";
        bool noeol = l.size() >= tag.size() && l.compare(l.size() - tag.size(), tag.size(), tag) == 0;
        if (noeol) l.erase(l.size() - tag.size());
        const bool regex = l.rfind("~ ", 0) == 0;
        l = Expand(l, regex);
        Pattern p{Pattern::Exact, l, noeol};
        if (l == "@startup") {
            ps.push_back({Pattern::Exact, "Iniciando shell.."});
            ps.push_back({Pattern::Regex, "Ejecutar .* -p para importar el path"});
            ps.push_back({Pattern::Exact, ""});
            ps.push_back({Pattern::Regex,
                          R"(version del shell 6\.I\.02 (Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d)?)"});
            continue;
        }
        if (l == "@startup-p") {
            ps.push_back({Pattern::Exact, "Iniciando shell.."});
            ps.push_back({Pattern::Regex,
                          R"(version del shell 6\.I\.02 (Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d)?)"});
            continue;
        }
        if (l.rfind("@prompt ", 0) == 0 || l == "@prompt") {
            p.kind = Pattern::Regex;
            p.text = R"([^@]*@[^{]*\{[^}]*\} %\) )" + ldiff::Escape(l.size() > 8 ? l.substr(8) : "");
        } else if (l == "~~~") {
            p.kind = Pattern::Any;
        } else if (l.rfind("~ ", 0) == 0) {
            p.kind = Pattern::Regex;
            p.text = l.substr(2);
        } else if (l.rfind("\\~", 0) == 0) {
            p.text = l.substr(1);
        }
        ps.push_back(p);
    }
    return ps;
}

struct Line {
    std::string text;
    bool noeol = false;
};

std::vector<Line> Lines(const std::string &s) {
    std::vector<Line> ls;
    size_t at = 0;
    while (at < s.size()) {
        size_t nl = s.find('\n', at);
        if (nl == std::string::npos) {
            ls.push_back({s.substr(at), true});
            break;
        }
        ls.push_back({s.substr(at, nl - at), false});
        at = nl + 1;
    }
    return ls;
}

bool LineMatches(const Pattern &p, const Line &l) {
    if (p.noeol != l.noeol) return false;
    if (p.kind == Pattern::Exact) return p.text == l.text;
    try {
        return std::regex_match(l.text, std::regex(p.text));
    } catch (const std::regex_error &) {
        return false;
    }
}

bool Match(const std::vector<Pattern> &ps, size_t i, const std::vector<Line> &ls, size_t j) {
    while (i < ps.size()) {
        if (ps[i].kind == Pattern::Any) {
            for (size_t k = j; k <= ls.size(); k++)
                if (Match(ps, i + 1, ls, k)) return true;
            return false;
        }
        if (j >= ls.size() || !LineMatches(ps[i], ls[j])) return false;
        i++;
        j++;
    }
    return j == ls.size();
}

// First line where expectation and output part, for the report.
std::string Report(const std::string &what, const std::string &expected, const std::string &actual) {
    std::ostringstream r;
    r << "  " << what << " distinta.\n  --- esperada\n";
    for (const auto &p : Compile(expected)) r << "    " << (p.kind == Pattern::Regex ? "~ " : "") << p.text
                                              << (p.noeol ? " (no-eol)" : "") << "\n";
    r << "  --- obtenida\n";
    for (const auto &l : Lines(actual)) r << "    " << l.text << (l.noeol ? " (no-eol)" : "") << "\n";
    return r.str();
}

bool Compare(const std::string &what, const std::string &expected, const std::string &actual, std::string &report) {
    if (Match(Compile(expected), 0, Lines(actual), 0)) return true;
    report += Report(what, expected, actual);
    return false;
}

std::string StatusText(const ldiff::RunResult &r) {
    if (r.end == ldiff::End::TimedOut) return "timeout";
    if (r.exited()) return std::to_string(r.exitCode());
    if (int s = r.termSignal()) return "signal " + ldiff::SignalName(s);
    return ldiff::EndText(r);
}

// Why a case cannot run here, or empty.
std::string Unmet(const Case &c, bool ownShell) {
    for (const std::string &r : c.needs) {
        if (r == "unsanitized" && getenv("LABSH_SANITIZED") != nullptr) return "compilacion con sanitizers";
        if (r == "root" && geteuid() != 0) return "necesita root";
        if (r == "nonroot" && geteuid() == 0) return "no con root";
        if (r == "own-shell" && !ownShell) return "se prueba otro shell";
        if (r.rfind("program ", 0) == 0) {
            int st = 0;
            ldiff::Shell("command -v " + r.substr(8) + " >/dev/null", "/", &st);
            if (st != 0) return r.substr(8) + " no instalado";
        }
    }
    return "";
}

bool RunCase(const Case &c, const ldiff::RunSpec &shell, const std::string &self, std::string &report) {
    ldiff::TempDir dir("labsh-test");
    setenv("LABSH", shell.program.c_str(), 1);
    setenv("LABSH_DIFF", self.c_str(), 1);
    if (!c.setup.empty()) {
        int st = 0;
        ldiff::Shell(c.setup, dir.path(), &st);
        if (st != 0) {
            report += "  la preparacion fallo\n";
            return false;
        }
    }
    ldiff::TempDir scratch;
    ldiff::RunSpec o = shell;
    o.args = c.args;
    o.argv0 = c.argv0;
    if (!c.program.empty()) o.program = c.program == "labsh-diff" ? self : c.program;
    o.merged = c.merged.has_value();
    o.timeout = 60;
    o.limit = SIZE_MAX;
    o.input = c.stdinFile.empty() ? scratch / "input" : dir / c.stdinFile;
    if (c.stdinFile.empty()) ldiff::WriteFile(o.input, c.input);
    for (const auto &e : c.env) {
        if (e[0] == '-')
            o.env.emplace_back(e.substr(1), std::nullopt);
        else if (auto eq = e.find('='); eq != std::string::npos)
            o.env.emplace_back(e.substr(0, eq), e.substr(eq + 1));
    }
    ldiff::RunResult r = ldiff::Run(o, dir.path());
    bool ok = true;
    if (c.merged) {
        ok &= Compare("salida (los dos flujos)", *c.merged, r.out, report);
    } else {
        ok &= Compare("salida estandar", c.out.value_or(""), r.out, report);
        ok &= Compare("salida de error", c.err.value_or(""), r.err, report);
    }
    std::string st = StatusText(r);
    if (st != c.status) {
        report += "  estado: se esperaba " + c.status + ", es " + st + "\n";
        ok = false;
    }
    if (!c.post.empty()) {
        std::string out = ldiff::Shell(c.post, dir.path());
        ok &= Compare("salida posterior", c.postOut.value_or(""), out, report);
    }
    return ok;
}

}  // namespace

namespace ldiff {

std::vector<CaseScript> CaseScripts(const std::string &file) {
    std::vector<CaseScript> scripts;
    for (const Case &c : Parse(file))
        if (c.program.empty() && c.env.empty() && c.needs.empty() && c.argv0.empty() && c.stdinFile.empty() &&
            !c.noeol && !c.input.empty())
            scripts.push_back({c.name, c.input, c.setup, c.args});
    return scripts;
}

int CheckTranscript(const std::string &file, const RunSpec &shell, const std::string &self, bool ownShell) {
    // Exit status when no case could run here: ctest counts the file as skipped.
    constexpr int SkippedAll = 77;
    signal(SIGPIPE, SIG_IGN);
    std::vector<Case> cases;
    try {
        cases = Parse(file);
    } catch (const std::exception &e) {
        fprintf(stderr, "labsh-diff: %s\n", e.what());
        return 2;
    }
    int failed = 0, skipped = 0;
    for (const Case &c : cases) {
        std::string report;
        if (std::string why = Unmet(c, ownShell); !why.empty()) {
            printf("omitido %s:%d %s (%s)\n", file.c_str(), c.line, c.name.c_str(), why.c_str());
            skipped++;
            continue;
        }
        bool ok;
        try {
            ok = RunCase(c, shell, self, report);
        } catch (const std::exception &e) {
            ok = false;
            report = std::string("  ") + e.what() + "\n";
        }
        printf("%s %s:%d %s\n", ok ? "ok   " : "FALLA", file.c_str(), c.line, c.name.c_str());
        if (!ok) {
            printf("%s", report.c_str());
            failed++;
        }
        fflush(stdout);
    }
    printf("%zu casos, %d fallan, %d omitidos (shell: %s)\n", cases.size(), failed, skipped, shell.program.c_str());
    if (failed != 0) return 1;
    return !cases.empty() && static_cast<size_t>(skipped) == cases.size() ? SkippedAll : 0;
}

}  // namespace ldiff
