#include "compare.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace ldiff {

namespace {

// Replaces every `what` in the literal parts of `p` by a slot.
void MakeSlot(Prompt &p, const std::string &what, char slot) {
    if (what.empty()) return;
    Prompt q;
    q.text.push_back("");
    for (size_t i = 0; i < p.text.size(); i++) {
        const std::string &t = p.text[i];
        size_t at = 0;
        for (size_t f; (f = t.find(what, at)) != std::string::npos; at = f + what.size()) {
            q.text.back() += t.substr(at, f - at);
            q.slots += slot;
            q.text.push_back("");
        }
        q.text.back() += t.substr(at);
        if (i < p.slots.size()) {
            q.slots += p.slots[i];
            q.text.push_back("");
        }
    }
    p = q;
}

bool SlotChar(char slot, char c) {
    if (c == '\n') return false;
    if (slot == 'P') return c >= '0' && c <= '9';
    if (slot == 'B') return c != '/';
    return true;
}

// Matches the prompt's parts from `i` at `at`; the end of the match, or npos.
size_t MatchFrom(const Prompt &p, size_t i, const std::string &s, size_t at) {
    const std::string &t = p.text[i];
    if (s.compare(at, t.size(), t) != 0) return std::string::npos;
    at += t.size();
    if (i == p.slots.size()) return at;
    // Slots take as little as lets the rest match, within one line.
    char slot = p.slots[i];
    for (size_t len = slot == 'P' ? 1 : 0;; len++) {
        if (at + len > s.size()) return std::string::npos;
        if (len > 0 && !SlotChar(slot, s[at + len - 1])) return std::string::npos;
        if (size_t e = MatchFrom(p, i + 1, s, at + len); e != std::string::npos) return e;
    }
}

// The first match at or after `from`: [begin, end), or begin npos.
std::pair<size_t, size_t> Find(const Prompt &p, const std::string &s, size_t from) {
    const std::string &lead = p.text[0];
    for (size_t at = from; at <= s.size(); at++) {
        if (!lead.empty()) {
            at = s.find(lead, at);
            if (at == std::string::npos) break;
        }
        if (size_t e = MatchFrom(p, 0, s, at); e != std::string::npos && e > at) return {at, e};
    }
    return {std::string::npos, std::string::npos};
}


}  // namespace

Prompt LearnPrompt(const RunSpec &shell) {
    TempDir dir;
    TempDir scratch;
    RunSpec s = shell;
    s.input = scratch / "input";
    WriteFile(s.input, "\n\n\n");
    s.timeout = std::min(s.timeout, 5.0);
    s.settle = 0;
    s.limit = 1 << 16;
    RunResult r = Run(s, dir.path());
    // Three empty lines: the prompt four times at the end, and not a fifth;
    // a shell that stops early may show it only three or two times.
    const std::string &t = r.out;
    Prompt p;
    constexpr size_t Longest = 4096;  // no shell's prompt is longer
    for (size_t times = 4; times >= 2 && p.text.empty(); times--) {
        for (size_t k = 1; times * k <= t.size() && k <= Longest; k++) {
            std::string x = t.substr(t.size() - k);
            bool all = true;
            for (size_t j = 2; j <= times && all; j++) all = t.compare(t.size() - j * k, k, x) == 0;
            if (!all || ((times + 1) * k <= t.size() && t.compare(t.size() - (times + 1) * k, k, x) == 0)) continue;
            p.text.push_back(x);
            break;
        }
    }
    // A shell that goes on printing after the empty lines (a flood): the
    // earliest text, near the start, that comes exactly four times in a row.
    if (p.text.empty()) {
        const size_t n = std::min<size_t>(t.size(), 8192);
        size_t best = n, bestK = 0;
        for (size_t k = 1; 4 * k <= n && k <= 1024; k++) {
            // run[i]: how many bytes from i on equal those k further on.
            std::vector<size_t> run(n + 1, 0);
            for (size_t i = n - k; i-- > 0;) run[i] = t[i] == t[i + k] ? run[i + 1] + 1 : 0;
            for (size_t i = 0; i + 4 * k <= n && i < best; i++)
                if (run[i] >= 3 * k && run[i] < 4 * k && (i < k || run[i - k] < k)) {
                    best = i, bestK = k;
                    break;
                }
        }
        if (bestK > 0) p.text.push_back(t.substr(best, bestK));
    }
    if (p.text.empty()) return p;
    MakeSlot(p, dir.path(), 'D');
    std::string base = dir.path().substr(dir.path().rfind('/') + 1);
    MakeSlot(p, base, 'B');
    if (r.pid > 0) MakeSlot(p, std::to_string(r.pid), 'P');
    return p;
}

bool PromptFromSpec(const std::string &formato, Prompt &into) {
    Prompt p;
    p.text.push_back("");
    utsname u{};
    bool named = uname(&u) == 0;
    for (size_t i = 0; i < formato.size(); i++) {
        if (formato[i] != '%') {
            p.text.back() += formato[i];
            continue;
        }
        if (++i == formato.size()) return false;
        switch (formato[i]) {
        case 'u': {
            const passwd *pw = getpwuid(geteuid());
            p.text.back() += pw != nullptr ? pw->pw_name : "UnknownUser";
            break;
        }
        case 'p':
        case 'd':
        case 'D':
        case 'B':
            p.slots += formato[i] == 'p' ? 'P' : formato[i] == 'B' ? 'B' : 'D';
            p.text.push_back("");
            break;
        case 'm':
            p.text.back() += named ? std::string(u.nodename).substr(0, strcspn(u.nodename, ".")) : "UnknownMachine";
            break;
        case 'o':
            p.text.back() += named ? u.sysname : "UnknownO.S.";
            break;
        case 't': p.text.back() += '\t'; break;
        case 'n': p.text.back() += '\n'; break;
        case 'b': p.text.back() += ' '; break;
        case '%': p.text.back() += '%'; break;
        default: return false;
        }
    }
    into = p;
    return true;
}

std::string Word(const std::string &line, size_t n) {
    size_t at = 0;
    std::string w;
    for (size_t k = 0; k <= n; k++) {
        at = line.find_first_not_of(" \t", at);
        if (at == std::string::npos) return "";
        size_t e = line.find_first_of(" \t", at);
        w = line.substr(at, e == std::string::npos ? std::string::npos : e - at);
        at = e;
    }
    return w;
}

std::vector<std::string> ScriptLines(const std::string &script) {
    std::vector<std::string> lines;
    size_t at = 0;
    while (at < script.size()) {
        size_t nl = script.find('\n', at);
        lines.push_back(script.substr(at, nl == std::string::npos ? std::string::npos : nl - at));
        if (nl == std::string::npos) break;
        at = nl + 1;
    }
    return lines;
}

Pieces Cut(const std::string &out, Prompt prompt, const std::vector<std::string> &script) {
    Pieces p;
    p.whole = out;
    p.lines.assign(script.size(), "");
    p.ran.assign(script.size(), false);
    if (prompt.empty()) {
        p.startup = out;
        return p;
    }
    size_t b, e;
    std::tie(b, e) = Find(prompt, out, 0);
    if (b == std::string::npos) {
        p.startup = out;
        return p;
    }
    p.ok = true;
    p.startup = out.substr(0, b);
    size_t pos = e;
    const bool endsInNewline = !prompt.text.back().empty() && prompt.text.back().back() == '\n';
    for (size_t i = 0; i < script.size(); i++) {
        // A line longer than the shell's line buffer is read in pieces,
        // each followed by a prompt of its own.
        size_t reads = std::max<size_t>(1, (script[i].size() + 4094) / 4095);
        // `prompt -?` and `prompt -help` ask for help and change nothing.
        if (std::string formato = Word(script[i], 1);
            Word(script[i], 0) == "prompt" && !formato.empty() && formato != "-?" && formato != "-help")
            PromptFromSpec(formato, prompt);
        p.ran[i] = true;
        size_t start = pos, last = 0;
        bool found = true;
        for (size_t r = 0; r < reads && found; r++) {
            // A prompt followed at once by a line end is a command's output
            // (`prompt` shows the current one), not the shell asking for
            // the next line.
            std::tie(b, e) = Find(prompt, out, pos);
            while (b != std::string::npos && !endsInNewline && e < out.size() && out[e] == '\n')
                std::tie(b, e) = Find(prompt, out, b + 1);
            found = b != std::string::npos;
            if (found) last = b, pos = e;
        }
        if (!found) {
            // The shell read this line and printed no prompt after it.
            p.lines[i] = out.substr(start);
            return p;
        }
        p.lines[i] = out.substr(start, last - start);
    }
    p.tail = out.substr(pos);
    return p;
}

std::vector<bool> AllRules(bool on) { return std::vector<bool>(Rules().size(), on); }

namespace {

using Fresh = std::map<std::string, std::vector<std::string>>;  // kind -> names new in a piece

// The names one run's values have been given so far.
struct Namer {
    std::map<std::string, std::map<std::string, std::string, std::less<>>> names;  // kind -> value -> name
    std::map<std::string, int> count;
    const char *mark;  // after the kind in a name of the run's own: "" for labsh's, "?" for the other's

    // One piece with its values named. A new value takes the next of the
    // `hints` of its kind (labsh's new names in the same piece) while there
    // is one, else a name of its own; what new values get goes to `given`.
    std::string Piece(const std::string &piece, const RunFacts &facts, const std::vector<bool> &on,
                      const Fresh &hints, Fresh &given) {
        std::string text = Reorder(piece, on);
        return Replace(text, FindValues(text, facts, on), [&](const Value &v, std::string_view value) {
            if (v.fixed) return "<" + v.kind + ">";
            value.remove_prefix(std::min(value.size(), value.find_first_not_of(' ')));
            auto &known = names[v.kind];
            auto it = known.find(value);
            if (it == known.end()) {
                std::vector<std::string> &g = given[v.kind];
                auto h = hints.find(v.kind);
                std::string name = h != hints.end() && g.size() < h->second.size()
                                       ? h->second[g.size()]
                                       : "<" + v.kind + mark + std::to_string(++count[v.kind]) + ">";
                g.push_back(name);
                it = known.emplace(std::string(value), name).first;
            }
            return it->second;
        });
    }
};

std::vector<std::string *> Texts(Pieces &p) {
    std::vector<std::string *> v{&p.startup};
    for (auto &l : p.lines) v.push_back(&l);
    v.push_back(&p.tail);
    return v;
}

}  // namespace

void NameValues(Pieces &ref, const RunFacts &rf, Pieces *other, const RunFacts &of, const std::vector<bool> &on) {
    std::vector<std::string *> rp = Texts(ref), op;
    if (other != nullptr) op = Texts(*other);
    Namer rn{{}, {}, ""}, on_{{}, {}, "?"};
    for (size_t i = 0; i < rp.size(); i++) {
        Fresh fresh, ignored;
        *rp[i] = rn.Piece(*rp[i], rf, on, {}, fresh);
        if (other != nullptr) *op[i] = on_.Piece(*op[i], of, on, fresh, ignored);
    }
    // The whole outputs, for when the pieces cannot be told apart, on their own.
    Namer wr{{}, {}, ""}, wo{{}, {}, "?"};
    Fresh fresh, ignored;
    ref.whole = wr.Piece(ref.whole, rf, on, {}, fresh);
    if (other != nullptr) other->whole = wo.Piece(other->whole, of, on, fresh, ignored);
}

std::string UnifiedDiff(const std::string &a, const std::string &b, const std::string &la, const std::string &lb) {
    TempDir d("labsh-diff-u");
    WriteFile(d / "a", a);
    WriteFile(d / "b", b);
    std::string out = Shell("diff -u --label " + Quote(la) + " --label " + Quote(lb) + " a b 2>/dev/null || "
                            "[ $? -eq 1 ] || diff -u a b",
                            d.path());
    return out;
}

Comparison Compare(const Pieces &ref, const Pieces &other) {
    Comparison c;
    c.perLine = ref.ok && other.ok;
    c.whole = ref.whole == other.whole ? Mark::Equal : Mark::Different;
    if (!c.perLine) {
        c.counted = 1;
        c.equal = c.whole == Mark::Equal;
        return c;
    }
    c.startup = ref.startup == other.startup ? Mark::Equal : Mark::Different;
    for (size_t i = 0; i < ref.lines.size(); i++) {
        Mark m;
        if (ref.ran[i] != other.ran[i])
            m = other.ran[i] ? Mark::Different : Mark::NotRun;
        else
            m = ref.lines[i] == other.lines[i] ? Mark::Equal : Mark::Different;
        c.lines.push_back(m);
        c.counted++;
        c.equal += m == Mark::Equal;
    }
    c.tail = ref.tail == other.tail ? Mark::Equal : Mark::Different;
    if (!ref.tail.empty() || !other.tail.empty()) {
        c.counted++;
        c.equal += c.tail == Mark::Equal;
    }
    return c;
}

}  // namespace ldiff
