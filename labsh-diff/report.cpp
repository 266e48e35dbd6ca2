#include "report.h"

#include "transcript.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sys/wait.h>

namespace ldiff {

namespace {

const char *Paint(const Style &st, const char *code) { return st.colour ? code : ""; }
constexpr const char *Green = "\033[32m", *Red = "\033[31m", *Cyan = "\033[36m", *Bold = "\033[1m",
                     *Plain = "\033[0m";

void PrintDiff(FILE *to, const std::string &a, const std::string &b, const std::string &shell, const Style &st) {
    std::string d = UnifiedDiff(a, b, "labsh", shell);
    size_t at = 0;
    while (at < d.size()) {
        size_t nl = d.find('\n', at);
        std::string l = d.substr(at, nl == std::string::npos ? std::string::npos : nl - at);
        at = nl == std::string::npos ? d.size() : nl + 1;
        const char *c = l.rfind("---", 0) == 0 || l.rfind("+++", 0) == 0 ? Bold
                        : l[0] == '-'                                    ? Red
                        : l[0] == '+'                                    ? Green
                        : l[0] == '@'                                    ? Cyan
                                                                         : nullptr;
        fprintf(to, "        %s%s%s\n", c ? Paint(st, c) : "", l.c_str(), c ? Paint(st, Plain) : "");
    }
}

const char *MarkText(Mark m) { return m == Mark::Equal ? "=" : m == Mark::Different ? "X" : "-"; }

std::string Html(const std::string &s) {
    std::string r;
    for (unsigned char c : s) {
        if (c == '<') r += "&lt;";
        else if (c == '>') r += "&gt;";
        else if (c == '&') r += "&amp;";
        else if (c == '"') r += "&quot;";
        else if (c < 0x20 && c != '\n' && c != '\t') r += "&#x" + std::string(1, "0123456789abcdef"[c >> 4]) +
                                                         std::string(1, "0123456789abcdef"[c & 15]) + ";";
        else r += static_cast<char>(c);
    }
    return r;
}

std::vector<std::string> SplitLines(const std::string &s) {
    std::vector<std::string> v;
    for (size_t at = 0; at < s.size();) {
        size_t nl = s.find('\n', at);
        v.push_back(s.substr(at, nl == std::string::npos ? std::string::npos : nl + 1 - at));
        at = nl == std::string::npos ? s.size() : nl + 1;
    }
    return v;
}

// `text` for one side of a difference, its lines that the other side lacks
// marked with `cls`.
std::string Marked(const std::string &text, const std::string &other, const char *cls) {
    std::vector<std::string> theirs = SplitLines(other);
    std::string r;
    for (const std::string &l : SplitLines(text)) {
        auto it = std::find(theirs.begin(), theirs.end(), l);
        if (it != theirs.end()) {
            theirs.erase(it);
            r += Html(l);
        } else {
            r += "<span class=\"" + std::string(cls) + "\">" + Html(l) + "</span>";
        }
    }
    return r;
}

const char *CellText(Cell c) {
    return c == Cell::Equal ? "igual" : c == Cell::Different ? "distinto" : c == Cell::NotRun ? "no ejecutado" : "";
}

std::string Csv(const std::string &s) {
    if (s.find_first_of(",\"\n") == std::string::npos) return s;
    std::string r = "\"";
    for (char c : s) r += c == '"' ? std::string("\"\"") : std::string(1, c);
    return r + "\"";
}

}  // namespace

// Ending as labsh ended (both leaving a process behind, say) is no fault.
bool Outcome::equal() const {
    return cmp.equal == cmp.counted && (!countStartup || cmp.startup == Mark::Equal) && Trouble(run) == Trouble(ref);
}

std::string Trouble(const RunResult &r) {
    std::string t;
    if (r.end != End::Exited) t = EndText(r);
    if (r.cut && r.end != End::Flooded) t += std::string(t.empty() ? "" : ", ") + "salida cortada";
    if (r.children) t += std::string(t.empty() ? "" : ", ") + "dejo procesos en marcha";
    return t;
}

void PrintReport(FILE *to, const Outcome &o, const Style &st) {
    fprintf(to, "%s== %s: labsh frente a %s%s\n", Paint(st, Bold), o.script.c_str(), o.shell.c_str(),
            Paint(st, Plain));
    if (std::string t = Trouble(o.ref); !t.empty()) fprintf(to, "labsh: %s\n", t.c_str());
    if (std::string t = Trouble(o.run); !t.empty()) fprintf(to, "%s: %s\n", o.shell.c_str(), t.c_str());
    const Comparison &c = o.cmp;
    if (!c.perLine) {
        fprintf(to, "No se distinguen las lineas de %s (no se reconoce su prompt): se compara la salida entera\n",
                (o.refPieces.ok ? o.shell : std::string("labsh")).c_str());
        fprintf(to, "%s%s%s salida entera\n", Paint(st, c.whole == Mark::Equal ? Green : Red), MarkText(c.whole),
                Paint(st, Plain));
        if (c.whole != Mark::Equal) PrintDiff(to, o.refPieces.whole, o.pieces.whole, o.shell, st);
    } else {
        fprintf(to, "%s%s%s arranque%s\n", Paint(st, c.startup == Mark::Equal ? Green : Red), MarkText(c.startup),
                Paint(st, Plain), o.countStartup ? "" : " (no cuenta)");
        if (c.startup != Mark::Equal) PrintDiff(to, o.refPieces.startup, o.pieces.startup, o.shell, st);
        for (size_t i = 0; i < c.lines.size(); i++) {
            Mark m = c.lines[i];
            fprintf(to, "%s%s%s %4zu %s%s\n", Paint(st, m == Mark::Equal ? Green : Red), MarkText(m),
                    Paint(st, Plain), i + 1, o.lines[i].c_str(),
                    m == Mark::NotRun ? "   (no ejecutada)" : "");
            if (m == Mark::Different) PrintDiff(to, o.refPieces.lines[i], o.pieces.lines[i], o.shell, st);
        }
        if (!o.refPieces.tail.empty() || !o.pieces.tail.empty()) {
            fprintf(to, "%s%s%s      (fin de la entrada)\n", Paint(st, c.tail == Mark::Equal ? Green : Red),
                    MarkText(c.tail), Paint(st, Plain));
            if (c.tail != Mark::Equal) PrintDiff(to, o.refPieces.tail, o.pieces.tail, o.shell, st);
        }
    }
    int equal = c.equal + (o.countStartup && c.perLine && c.startup == Mark::Equal);
    int counted = c.counted + (o.countStartup && c.perLine);
    fprintf(to, "%d de %d lineas iguales\n", equal, counted);
}

Row MakeRow(const Outcome &o, const std::vector<std::string> &commands) {
    Row r{o.shell, Trouble(o.run), {}, &o};
    for (const std::string &cmd : commands) {
        Cell cell = Cell::None;
        for (size_t i = 0; i < o.lines.size(); i++) {
            if (Word(o.lines[i], 0) != cmd) continue;
            Mark m = o.cmp.perLine ? o.cmp.lines[i] : o.cmp.whole;
            Cell now = m == Mark::Equal ? Cell::Equal : m == Mark::Different ? Cell::Different : Cell::NotRun;
            if (cell == Cell::None || now == Cell::Different || (now == Cell::NotRun && cell == Cell::Equal))
                cell = now;
        }
        r.cells.push_back(cell);
        r.equal += cell == Cell::Equal;
        r.total += cell != Cell::None;
    }
    if (commands.empty()) {
        r.shell += " (" + o.script + ")";
        r.equal = o.cmp.equal;
        r.total = o.cmp.counted;
    }
    return r;
}

void PrintTable(FILE *to, int practica, const std::vector<std::string> &commands, const std::vector<Row> &rows,
                const Style &st) {
    size_t w = 6;
    for (const Row &r : rows) w = std::max(w, r.shell.size());
    fprintf(to, "Practica %d: = igual, X distinto, - no ejecutado, en blanco sin lineas\n", practica);
    fprintf(to, "%-*s", static_cast<int>(w), "shell");
    for (const std::string &c : commands) fprintf(to, " %s", c.c_str());
    fprintf(to, "  iguales\n");
    for (const Row &r : rows) {
        fprintf(to, "%-*s", static_cast<int>(w), r.shell.c_str());
        for (size_t i = 0; i < commands.size(); i++) {
            Cell c = r.cells[i];
            const char *mark = c == Cell::Equal ? "=" : c == Cell::Different ? "X" : c == Cell::NotRun ? "-" : " ";
            int pad = static_cast<int>(commands[i].size()) - 1;
            fprintf(to, " %*s%s%s%s", pad / 2, "", Paint(st, c == Cell::Equal ? Green : Red), mark, Paint(st, Plain));
            fprintf(to, "%*s", pad - pad / 2, "");
        }
        fprintf(to, "  %d/%d%s%s\n", r.equal, r.total, r.trouble.empty() ? "" : "  ", r.trouble.c_str());
    }
}

bool WriteCsv(const std::string &path, const std::vector<std::string> &commands, const std::vector<Row> &rows) {
    std::ofstream f(path);
    f << "shell";
    for (const std::string &c : commands) f << "," << Csv(c);
    f << (commands.empty() ? ",iguales,lineas,estado\n" : ",iguales,comandos,estado\n");
    for (const Row &r : rows) {
        f << Csv(r.shell);
        for (Cell c : r.cells) f << "," << CellText(c);
        f << "," << r.equal << "," << r.total << "," << Csv(r.trouble) << "\n";
    }
    return static_cast<bool>(f);
}

bool WriteHtml(const std::string &path, int practica, const std::vector<std::string> &commands,
               const std::vector<Row> &rows) {
    std::ofstream f(path);
    f << "<!DOCTYPE html>\n<html lang=\"es\">\n<head>\n<meta charset=\"utf-8\"/>\n"
      << "<title>labsh-diff" << (practica >= 0 ? ": practica " + std::to_string(practica) : "")
      << "</title>\n<style>\n"
      << "body{font-family:sans-serif;margin:1.5em;color:#222}\n"
      << "table{border-collapse:collapse;margin-bottom:1.5em}\n"
      << "th,td{border:1px solid #bbb;padding:.25em .5em;vertical-align:top}\n"
      << "th.cmd{writing-mode:vertical-rl;transform:rotate(180deg);font-weight:normal;font-family:monospace}\n"
      << "td.igual{background:#c8ecc8;text-align:center}td.distinto{background:#f5b7b1;text-align:center}\n"
      << "td.noej{background:#ddd;text-align:center}td.shell{font-family:monospace;white-space:nowrap}\n"
      << "pre{margin:0;font-size:90%;white-space:pre-wrap}\n"
      << "table.lado td{width:50%}table.lado{width:100%}.linea{font-family:monospace;font-weight:bold}\n"
      << "span.menos{background:#f5b7b1}span.mas{background:#c8ecc8}\n"
      << "</style>\n</head>\n<body>\n<h1>"
      << (practica >= 0 ? "Practica " + std::to_string(practica) : std::string("labsh-diff")) << "</h1>\n"
      << (practica >= 0 ? "<p>Cada columna es un comando de la practica: <b>=</b> igual que labsh, <b>X</b> "
                          "distinto, <b>-</b> no ejecutado.</p>\n"
                        : "")
      << "<table>\n<tr><th>shell</th>";
    for (const std::string &c : commands) f << "<th class=\"cmd\">" << Html(c) << "</th>";
    f << "<th>iguales</th><th>estado</th></tr>\n";
    for (size_t k = 0; k < rows.size(); k++) {
        const Row &r = rows[k];
        f << "<tr><td class=\"shell\"><a href=\"#s" << k << "\">" << Html(r.shell) << "</a></td>";
        for (size_t i = 0; i < commands.size(); i++) {
            Cell c = r.cells[i];
            const char *cls = c == Cell::Equal      ? "igual"
                              : c == Cell::Different ? "distinto"
                              : c == Cell::NotRun    ? "noej"
                                                     : "nada";
            const char *mark = c == Cell::Equal ? "=" : c == Cell::Different ? "X" : c == Cell::NotRun ? "-" : "";
            f << "<td class=\"" << cls << "\" title=\"" << Html(commands[i]) << ": " << CellText(c) << "\">" << mark
              << "</td>";
        }
        f << "<td>" << r.equal << "/" << r.total << "</td><td>" << Html(r.trouble) << "</td></tr>\n";
    }
    f << "</table>\n";
    for (size_t k = 0; k < rows.size(); k++) {
        const Outcome &o = *rows[k].outcome;
        f << "<h2 id=\"s" << k << "\">" << Html(o.shell) << "</h2>\n";
        if (!rows[k].trouble.empty()) f << "<p>" << Html(rows[k].trouble) << "</p>\n";
        auto side = [&](const std::string &title, const std::string &a, const std::string &b) {
            f << "<p class=\"linea\">" << Html(title) << "</p>\n<table class=\"lado\"><tr><th>labsh</th><th>"
              << Html(o.shell) << "</th></tr>\n<tr><td><pre>" << Marked(a, b, "menos") << "</pre></td><td><pre>"
              << Marked(b, a, "mas") << "</pre></td></tr></table>\n";
        };
        if (!o.cmp.perLine) {
            f << "<p>No se distinguen sus lineas: se compara la salida entera.</p>\n";
            if (o.cmp.whole != Mark::Equal) side("salida entera", o.refPieces.whole, o.pieces.whole);
            continue;
        }
        int shown = 0;
        for (size_t i = 0; i < o.cmp.lines.size(); i++) {
            if (o.cmp.lines[i] == Mark::Equal) continue;
            shown++;
            side(std::to_string(i + 1) + ": " + o.lines[i] +
                     (o.cmp.lines[i] == Mark::NotRun ? "  (no ejecutada)" : ""),
                 o.refPieces.lines[i], o.pieces.lines[i]);
        }
        if (o.cmp.tail != Mark::Equal) side("(fin de la entrada)", o.refPieces.tail, o.pieces.tail), shown++;
        if (shown == 0) f << "<p>Todas las lineas iguales.</p>\n";
    }
    f << "</body>\n</html>\n";
    return static_cast<bool>(f);
}

namespace {

// A regular expression for a value of the same shape: runs of digits and
// hexadecimal letters stand for any such run.
std::string Shape(const std::string &v, bool fixed) {
    if (fixed) return ".*";
    std::string r;
    for (size_t i = 0; i < v.size();) {
        if (isxdigit(static_cast<unsigned char>(v[i]))) {
            bool hex = false;
            size_t j = i;
            while (j < v.size() && isxdigit(static_cast<unsigned char>(v[j])))
                hex |= !isdigit(static_cast<unsigned char>(v[j++]));
            r += hex || (i > 0 && v[i - 1] == 'x') ? "[0-9a-fA-F]+" : "\\d+";
            i = j;
        } else if (v[i] == ' ') {
            while (i < v.size() && v[i] == ' ') i++;
            r += " *";
        } else {
            r += Escape(std::string(1, v[i++]));
        }
    }
    return r;
}

// The C library's error texts, written as the transcripts write them so
// that a recorded case holds on every system; the rest escaped for a
// regular expression when `regex`.
std::string Literal(const std::string &line, bool regex) {
    std::string r;
    for (size_t at = 0; at < line.size();) {
        size_t best = std::string::npos, len = 0;
        const char *name = nullptr;
        for (const auto &[n, e] : ErrorNames()) {
            const char *t = strerror(e);
            size_t f = line.find(t, at);
            if (f != std::string::npos && (f < best || (f == best && strlen(t) > len))) best = f, len = strlen(t), name = n;
        }
        std::string plain = line.substr(at, best == std::string::npos ? std::string::npos : best - at);
        r += regex ? Escape(plain) : plain;
        if (best == std::string::npos) break;
        r += "{{" + std::string(name) + "}}";
        at = best + len;
    }
    return r;
}

}  // namespace

std::string RecordCase(const std::string &name, const std::string &script, const RunResult &r,
                       const RunFacts &facts, const std::vector<bool> &on) {
    std::string c = "=== " + name + "\n--- stdin" + (script.empty() || script.back() == '\n' ? "" : "-noeol") + "\n" +
                    script + (script.empty() || script.back() == '\n' ? "" : "\n") + "--- merged\n";
    const std::string &out = r.out;
    for (size_t at = 0; at < out.size();) {
        size_t nl = out.find('\n', at);
        std::string line = out.substr(at, nl == std::string::npos ? std::string::npos : nl - at);
        at = nl == std::string::npos ? out.size() : nl + 1;
        std::vector<Value> vs = FindValues(line, facts, on);
        std::string text;
        if (vs.empty()) {
            text = Literal(line, false);
            if (text.rfind("~", 0) == 0 || text.rfind("\\~", 0) == 0) text = "\\" + text;
            if (text == "~~~" || text.rfind("@", 0) == 0) text = "~ " + Escape(text);
        } else {
            size_t from = 0;
            text = "~ ";
            for (const Value &v : vs) {
                text += Literal(line.substr(from, v.begin - from), true);
                text += Shape(line.substr(v.begin, v.end - v.begin), v.fixed);
                from = v.end;
            }
            text += Literal(line.substr(from), true);
        }
        c += text + (nl == std::string::npos ? " (no-eol)" : "") + "\n";
    }
    if (int s = r.termSignal())
        c += "--- status\nsignal " + SignalName(s) + "\n";
    else if (r.exitCode() > 0)
        c += "--- status\n" + std::to_string(r.exitCode()) + "\n";
    return c;
}

}  // namespace ldiff
