// labsh-diff: runs labsh and another shell on the same script, each in a
// fresh directory, and compares what each line of the script made them
// print, once the values that differ between any two runs are named alike.
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "report.h"
#include "transcript.h"

using namespace ldiff;

namespace {

const char Usage[] =
    "Uso: labsh-diff [opciones] GUION... -- SHELL [ARGUMENTOS...]\n"
    "     labsh-diff [opciones] --practica N SHELL...\n"
    "     labsh-diff [opciones] --record GUION\n"
    "     labsh-diff --check CASOS.t... [-- SHELL [ARGUMENTOS...]]\n"
    "     labsh-diff --show-rules\n"
    "Ejecuta cada guion en labsh y en SHELL, cada uno en un directorio nuevo, y compara\n"
    "lo que imprime cada linea del guion. Un GUION.t es un fichero de casos: cada caso con\n"
    "guion propio se compara como un guion mas.\n"
    "  --reference RUTA   el labsh de referencia (por defecto el que acompana a labsh-diff)\n"
    "  --setup RUTA       directorio copiado en cada directorio nuevo, o guion de /bin/sh\n"
    "                     ejecutado en el antes de empezar\n"
    "  --timeout S        tiempo maximo de cada ejecucion, en segundos (10)\n"
    "  --limit BYTES      salida guardada de cada ejecucion (4194304)\n"
    "  --startup          cuenta tambien el texto de arranque\n"
    "  --exact            sin normalizar ningun valor\n"
    "  --no-REGLA         sin la regla REGLA (--show-rules las lista)\n"
    "  --practica N       el guion de la practica N para cada SHELL, con una tabla por comando\n"
    "  --script GUION     con --practica, este guion en lugar del de la practica\n"
    "  -j N               ejecuciones a la vez (por defecto, los procesadores)\n"
    "  --csv FICHERO      la tabla en CSV\n"
    "  --html FICHERO     la tabla y las diferencias en una pagina HTML\n"
    "  --record GUION     escribe un caso de transcripcion con la salida de labsh\n"
    "  --check            comprueba SHELL (por defecto labsh) con ficheros de casos\n"
    "Estado de salida: 0 todas las lineas iguales, 1 alguna distinta, 2 error de uso o\n"
    "una referencia que no se puede ejecutar.\n";

[[noreturn]] void Fail(const std::string &why) {
    fprintf(stderr, "labsh-diff: %s\n", why.c_str());
    fprintf(stderr, "labsh-diff -h muestra el uso\n");
    exit(2);
}

bool Executable(const std::string &p) {
    struct stat st {};
    return stat(p.c_str(), &st) == 0 && S_ISREG(st.st_mode) && access(p.c_str(), X_OK) == 0;
}

// A program as exec would find it: a name with a slash as it is, else
// along PATH.
std::string Locate(const std::string &name) {
    if (name.find('/') != std::string::npos) return name;
    const char *path = getenv("PATH");
    std::string p = path != nullptr ? path : "/usr/bin:/bin";
    for (size_t at = 0; at <= p.size();) {
        size_t colon = p.find(':', at);
        std::string dir = p.substr(at, colon == std::string::npos ? std::string::npos : colon - at);
        std::string full = (dir.empty() ? "." : dir) + "/" + name;
        if (Executable(full)) return full;
        if (colon == std::string::npos) break;
        at = colon + 1;
    }
    return name;
}

std::string Absolute(const std::string &p) {
    char real[PATH_MAX];
    return realpath(p.c_str(), real) != nullptr ? real : p;
}

std::string Dirname(const std::string &p) {
    size_t s = p.rfind('/');
    return s == std::string::npos ? "." : s == 0 ? "/" : p.substr(0, s);
}

std::string Basename(const std::string &p) { return p.substr(p.rfind('/') + 1); }

struct Options {
    std::string reference, setup, csv, html, record, script;
    std::vector<std::string> scripts;
    std::vector<std::string> shell;   // after --
    std::vector<std::string> shells;  // with --practica
    int practica = -1;
    double timeout = 10;
    size_t limit = 4u << 20;
    bool countStartup = false, showRules = false, check = false;
    unsigned jobs = std::max(1u, std::thread::hardware_concurrency());
    std::vector<bool> rules = AllRules();
};

Options Parse(int argc, char *argv[]) {
    Options o;
    auto value = [&](int &i) -> std::string {
        if (i + 1 >= argc) Fail(std::string("falta el valor de ") + argv[i]);
        return argv[++i];
    };
    int i = 1;
    for (; i < argc; i++) {
        std::string a = argv[i];
        if (a == "--") {
            i++;
            break;
        }
        if (a == "-h" || a == "--help") {
            fputs(Usage, stdout);
            exit(0);
        } else if (a == "--reference") o.reference = value(i);
        else if (a == "--setup") o.setup = value(i);
        else if (a == "--csv") o.csv = value(i);
        else if (a == "--html") o.html = value(i);
        else if (a == "--record") o.record = value(i);
        else if (a == "--script") o.script = value(i);
        else if (a == "--startup") o.countStartup = true;
        else if (a == "--check") o.check = true;
        else if (a == "--show-rules") o.showRules = true;
        else if (a == "--exact") o.rules = AllRules(false);
        else if (a == "--timeout" || a == "--limit" || a == "-j" || a == "--practica") {
            std::string v = value(i);
            char *end;
            errno = 0;
            double d = strtod(v.c_str(), &end);
            if (*end != '\0' || errno != 0 || d <= 0 || (a != "--timeout" && d != static_cast<long long>(d)) ||
                (a == "--practica" && d > 3))
                if (!(a == "--practica" && v == "0")) Fail("valor no valido para " + a + ": " + v);
            if (a == "--timeout") o.timeout = d;
            else if (a == "--limit") o.limit = static_cast<size_t>(d);
            else if (a == "-j") o.jobs = static_cast<unsigned>(d);
            else o.practica = static_cast<int>(d);
        } else if (a.rfind("--no-", 0) == 0) {
            bool known = false;
            for (size_t r = 0; r < Rules().size(); r++)
                if (a.substr(5) == Rules()[r].name) o.rules[r] = false, known = true;
            if (!known) Fail("regla desconocida: " + a.substr(5));
        } else if (a.size() > 1 && a[0] == '-') {
            Fail("opcion desconocida: " + a);
        } else if (o.practica >= 0) {
            o.shells.push_back(a);
        } else {
            o.scripts.push_back(a);
        }
    }
    for (; i < argc; i++) (o.practica >= 0 ? o.shells : o.shell).push_back(argv[i]);
    return o;
}

// The labsh beside this program (in a build tree or an installation), else
// the one this build made.
std::string DefaultReference(const char *argv0) {
    std::string self = Absolute(Locate(argv0));
    std::string beside = Dirname(self) + "/labsh";
    if (Executable(beside)) return beside;
#ifdef LABSH_DIFF_REFERENCE
    if (Executable(LABSH_DIFF_REFERENCE)) return LABSH_DIFF_REFERENCE;
#endif
    return Locate("labsh");
}

std::string PracticaScript(const char *argv0, int n) {
    std::string name = "/p" + std::to_string(n) + ".txt";
    std::string installed = Dirname(Dirname(Absolute(Locate(argv0)))) + "/share/labsh/practicas" + name;
    if (access(installed.c_str(), R_OK) == 0) return installed;
#ifdef LABSH_DIFF_PRACTICAS
    if (access((LABSH_DIFF_PRACTICAS + name).c_str(), R_OK) == 0) return LABSH_DIFF_PRACTICAS + name;
#endif
    Fail("no encuentro el guion de la practica " + std::to_string(n) + " (" + installed + ")");
}

struct Subject {
    std::string name;
    RunSpec how;
    Prompt prompt;
};

Subject MakeShell(const std::string &name, const std::vector<std::string> &args, const Options &o) {
    Subject s;
    s.name = name;
    s.how.program = Absolute(Locate(name));
    s.how.argv0 = s.how.program;
    s.how.args = args;
    s.how.timeout = o.timeout;
    s.how.limit = o.limit;
    return s;
}

// A script to run: a file given, or a case of a transcript with its own
// setup and arguments.
struct Script {
    std::string name, path, text, setup;
    std::vector<std::string> args;
};

struct Ran {
    RunResult r;
    RunFacts facts;
    Pieces pieces;
};

// One run of a script in a fresh directory prepared by --setup, then by the
// script's own setup.
Ran RunScript(const Subject &s, const Script &script, const Options &o) {
    TempDir dir;
    for (const std::string &setup : {o.setup, script.setup}) {
        if (setup.empty()) continue;
        struct stat st {};
        std::string q = Quote(setup);
        if (stat(setup.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
            Shell("cp -R " + q + "/. .", dir.path());
        else
            Shell("/bin/sh " + q + " >/dev/null 2>&1", dir.path());
    }
    RunSpec how = s.how;
    how.input = script.path;
    how.args.insert(how.args.end(), script.args.begin(), script.args.end());
    std::vector<std::string> lines = ScriptLines(script.text);
    Ran ran;
    ran.r = Run(how, dir.path());
    ran.facts = {dir.path()};
    ran.pieces = Cut(ran.r.out, s.prompt, lines);
    if (ran.r.end == End::NotStarted) ran.pieces.ok = true;  // no line ran
    return ran;
}

Outcome Pair(const std::string &script, const std::vector<std::string> &lines, const Ran &ref, const Ran &other,
             const std::string &shell, const Options &o) {
    Outcome out;
    out.shell = shell;
    out.script = script;
    out.lines = lines;
    out.ref = ref.r;
    out.run = other.r;
    out.refPieces = ref.pieces;
    out.pieces = other.pieces;
    out.countStartup = o.countStartup;
    NameValues(out.refPieces, ref.facts, &out.pieces, other.facts, o.rules);
    out.cmp = Compare(out.refPieces, out.pieces);
    return out;
}

// Runs `n` tasks on `jobs` threads.
template <typename F> void Parallel(size_t n, unsigned jobs, F task) {
    std::atomic<size_t> next{0};
    std::vector<std::thread> pool;
    for (unsigned t = 0; t < std::min<size_t>(jobs, n); t++)
        pool.emplace_back([&] {
            for (size_t k; (k = next++) < n;) task(k);
        });
    for (auto &t : pool) t.join();
}

// The commands of assignment n as the reference lists them with override off.
std::vector<std::string> Commands(const Subject &ref, int n) {
    TempDir dir;
    TempDir in;
    RunSpec s = ref.how;
    s.input = in / "help";
    WriteFile(s.input, "help\n");
    RunResult r = Run(s, dir.path());
    std::string tag = "Cmds practica " + std::to_string(n) + ": ";
    size_t at = r.out.find(tag);
    std::vector<std::string> words;
    if (at == std::string::npos) return words;
    at += tag.size();
    std::string line = r.out.substr(at, r.out.find('\n', at) - at);
    for (size_t b = 0; (b = line.find_first_not_of(' ', b)) != std::string::npos;) {
        size_t e = line.find(' ', b);
        words.push_back(line.substr(b, e - b));
        b = e;
    }
    return words;
}

Style TerminalStyle() {
    const char *nc = getenv("NO_COLOR");
    const char *term = getenv("TERM");
    return Style{isatty(1) && (nc == nullptr || *nc == '\0') && !(term != nullptr && strcmp(term, "dumb") == 0)};
}

}  // namespace

int main(int argc, char *argv[]) {
    Options o = Parse(argc, argv);
    if (o.showRules) {
        for (size_t r = 0; r < Rules().size(); r++)
            printf("%-16s %s  %s\n", Rules()[r].name, o.rules[r] ? "si" : "no", Rules()[r].what);
        return 0;
    }
    if (!IsolateRuns()) o.jobs = 1;  // shared memory keys would be shared
    Subject ref = MakeShell(o.reference.empty() ? DefaultReference(argv[0]) : o.reference, {}, o);
    if (!Executable(ref.how.program)) Fail("no se puede ejecutar la referencia " + ref.how.program);

    if (o.check) {
        if (o.scripts.empty()) Fail("falta el fichero de casos");
        Subject shell = o.shell.empty() ? ref : MakeShell(o.shell[0], {o.shell.begin() + 1, o.shell.end()}, o);
        std::string self = Absolute(Locate(argv[0]));
        int worst = 77;
        for (const auto &file : o.scripts) {
            int r = CheckTranscript(file, shell.how, self, shell.how.program == ref.how.program);
            worst = r == 77 ? worst : worst == 77 ? r : std::max(worst, r);
        }
        return worst;
    }
    if (!o.record.empty()) {
        std::string text = ReadFile(o.record);
        if (access(o.record.c_str(), R_OK) != 0) Fail("no se puede leer " + o.record + ": " + strerror(errno));
        Ran ran = RunScript(ref, {Basename(o.record), Absolute(o.record), text, "", {}}, o);
        if (ran.r.end == End::NotStarted) Fail("no se puede ejecutar la referencia " + ref.how.program);
        fputs(RecordCase(Basename(o.record), text, ran.r, ran.facts, o.rules).c_str(), stdout);
        return 0;
    }

    std::vector<std::string> names = o.scripts;
    std::vector<Subject> shells;
    if (o.practica >= 0) {
        if (!o.scripts.empty()) Fail("--practica no lleva guiones");
        if (o.shells.empty()) Fail("falta al menos un SHELL");
        names = {o.script.empty() ? PracticaScript(argv[0], o.practica) : o.script};
        for (const auto &s : o.shells) shells.push_back(MakeShell(s, {}, o));
    } else {
        if (names.empty()) Fail("falta el guion");
        if (o.shell.empty()) Fail("falta el SHELL tras --");
        shells.push_back(MakeShell(o.shell[0], {o.shell.begin() + 1, o.shell.end()}, o));
    }
    // A transcript's cases are scripts too, each with its own setup and
    // arguments, written out here.
    TempDir caseFiles;
    std::vector<Script> scripts;
    for (const auto &s : names) {
        if (access(s.c_str(), R_OK) != 0) Fail("no se puede leer " + s + ": " + strerror(errno));
        if (!s.ends_with(".t")) {
            scripts.push_back({Basename(s), Absolute(s), ReadFile(s), "", {}});
            continue;
        }
        std::vector<CaseScript> cases;
        try {
            cases = CaseScripts(s);
        } catch (const std::exception &e) {
            Fail(e.what());
        }
        for (const auto &c : cases) {
            std::string base = caseFiles / std::to_string(scripts.size());
            WriteFile(base + ".txt", c.input);
            if (!c.setup.empty()) WriteFile(base + ".sh", c.setup);
            scripts.push_back({Basename(s) + ": " + c.name, base + ".txt", c.input, c.setup.empty() ? "" : base + ".sh",
                               c.args});
        }
    }
    if (scripts.empty()) Fail("ningun caso se puede comparar");

    // Every run is independent: the prompts first, then the scripts, on
    // as many threads as asked.
    std::vector<Subject *> all{&ref};
    for (auto &s : shells) all.push_back(&s);
    Parallel(all.size(), o.jobs, [&](size_t k) { all[k]->prompt = LearnPrompt(all[k]->how); });
    size_t ns = scripts.size();
    std::vector<Ran> runs(all.size() * ns);
    Parallel(runs.size(), o.jobs, [&](size_t k) {
        runs[k] = RunScript(*all[k / ns], scripts[k % ns], o);
    });
    for (size_t s = 0; s < ns; s++)
        if (runs[s].r.end == End::NotStarted)
            Fail("no se puede ejecutar la referencia " + ref.how.program + ": " + strerror(runs[s].r.startErrno));

    std::vector<Outcome> outcomes;
    for (size_t k = 1; k < all.size(); k++)
        for (size_t s = 0; s < ns; s++)
            outcomes.push_back(Pair(scripts[s].name, ScriptLines(scripts[s].text), runs[s], runs[k * ns + s],
                                    all[k]->name, o));
    Style st = TerminalStyle();
    bool equal = true;
    for (const auto &out : outcomes) equal &= out.equal();
    if (o.practica >= 0) {
        std::vector<std::string> commands = Commands(ref, o.practica);
        std::vector<Row> rows;
        for (const auto &out : outcomes) rows.push_back(MakeRow(out, commands));
        PrintTable(stdout, o.practica, commands, rows, st);
        if (!o.csv.empty() && !WriteCsv(o.csv, commands, rows)) Fail("no se puede escribir " + o.csv);
        if (!o.html.empty() && !WriteHtml(o.html, o.practica, commands, rows)) Fail("no se puede escribir " + o.html);
        if (outcomes.size() == 1) {
            fputs("\n", stdout);
            PrintReport(stdout, outcomes[0], st);
        }
    } else {
        for (size_t k = 0; k < outcomes.size(); k++) {
            if (k > 0) fputs("\n", stdout);
            PrintReport(stdout, outcomes[k], st);
        }
        if (!o.csv.empty() || !o.html.empty()) {
            std::vector<Row> rows;
            for (const auto &out : outcomes) rows.push_back(MakeRow(out, {}));
            if (!o.csv.empty() && !WriteCsv(o.csv, {}, rows)) Fail("no se puede escribir " + o.csv);
            if (!o.html.empty() && !WriteHtml(o.html, -1, {}, rows)) Fail("no se puede escribir " + o.html);
        }
    }
    return equal ? 0 : 1;
}
