// A run's output cut into what each line of the script produced, its
// machine-dependent values named, and two runs compared line by line.
#pragma once

#include <string>
#include <vector>

#include "engine.h"
#include "normalise.h"

namespace ldiff {

// A prompt as a shell prints it: literal text and, between, the values that
// change while the script runs (the working directory, its last component,
// the shell's pid).
struct Prompt {
    std::vector<std::string> text;  // one more than `slots`
    std::string slots;              // 'D' directory, 'B' its last component, 'P' a pid
    bool empty() const { return slots.empty() && (text.empty() || text[0].empty()); }
};

// The prompt a shell prints before reading its first line, learnt by
// running it on three empty lines in a fresh directory; empty when it prints
// none that repeats.
Prompt LearnPrompt(const RunSpec &shell);

// The prompt that labsh's `prompt FORMAT` sets; false for a format it
// refuses.
bool PromptFromSpec(const std::string &formato, Prompt &into);

// Word n (from 0) of a line split at blanks and tabs, or "".
std::string Word(const std::string &line, size_t n);

// The script's lines as the shell reads them (without their newline).
std::vector<std::string> ScriptLines(const std::string &script);

struct Pieces {
    bool ok = false;                  // the output could be cut at its prompts
    std::string startup;              // before the first prompt
    std::vector<std::string> lines;   // per script line
    std::vector<bool> ran;            // the shell read that line
    std::string tail;                 // after the last prompt, at the end of input
    std::string whole;                // the whole output
};

Pieces Cut(const std::string &out, Prompt prompt, const std::vector<std::string> &script);

// Rule switches, all on by default.
std::vector<bool> AllRules(bool on = true);

// Both runs' pieces with their values replaced by names. The reference's
// values are named in order of first appearance; a new value of the other
// run takes the name of the reference's new value in the same place of the
// same piece, so that one wrong value does not shift every later name.
void NameValues(Pieces &ref, const RunFacts &rf, Pieces *other, const RunFacts &of, const std::vector<bool> &on);

// A unified diff of two texts, the first labelled `a`, from the system's diff.
std::string UnifiedDiff(const std::string &a, const std::string &b, const std::string &la, const std::string &lb);

enum class Mark { Equal, Different, NotRun };

struct Comparison {
    bool perLine = false;            // false: whole outputs compared
    Mark startup = Mark::Equal;
    std::vector<Mark> lines;         // per script line
    Mark tail = Mark::Equal;
    Mark whole = Mark::Equal;
    int equal = 0, counted = 0;
};

Comparison Compare(const Pieces &ref, const Pieces &other);

}  // namespace ldiff
