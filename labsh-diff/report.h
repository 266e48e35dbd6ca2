// What labsh-diff writes: the per-line report, the table of an assignment
// for several shells (text, CSV, HTML) and a transcript case.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "compare.h"

namespace ldiff {

// One shell's run of one script beside the reference's.
struct Outcome {
    std::string shell;                 // as named on the command line
    std::string script;                // the script's name
    std::vector<std::string> lines;    // the script's lines
    RunResult ref, run;
    Pieces refPieces, pieces;          // named
    Comparison cmp;
    bool countStartup = false;
    bool equal() const;
};

struct Style {
    bool colour = false;
};

// The report of one comparison: a line per script line, the differences
// as unified diffs, the summary.
void PrintReport(FILE *to, const Outcome &o, const Style &st);

// How the run ended, when that is worth telling ("" for an ordinary end).
std::string Trouble(const RunResult &r);

enum class Cell { Equal, Different, NotRun, None };

struct Row {
    std::string shell;
    std::string trouble;
    std::vector<Cell> cells;  // per command
    const Outcome *outcome;
    int equal = 0, total = 0; // commands with lines, or lines without commands
};

// Cells of one outcome for the commands of an assignment: a command is
// equal when every line that begins with it is. Without commands, a row of
// the whole script.
Row MakeRow(const Outcome &o, const std::vector<std::string> &commands);

void PrintTable(FILE *to, int practica, const std::vector<std::string> &commands, const std::vector<Row> &rows,
                const Style &st);
bool WriteCsv(const std::string &path, const std::vector<std::string> &commands, const std::vector<Row> &rows);
bool WriteHtml(const std::string &path, int practica, const std::vector<std::string> &commands,
               const std::vector<Row> &rows);

// A transcript case from a run of labsh: values the rules cover become
// regular expressions.
std::string RecordCase(const std::string &name, const std::string &script, const RunResult &r,
                       const RunFacts &facts, const std::vector<bool> &on);

}  // namespace ldiff
