// Values of a run that another correct run prints differently: addresses,
// process ids, inode numbers, dates and times, the run's own directory, and
// the order of a directory's entries. labsh-diff finds them in each piece of
// output and gives them names, so that two shells compare on what they do.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ldiff {

// One rule of normalisation: its name on the command line (--no-NAME turns
// it off) and what it replaces, in Spanish, for --show-rules.
struct Rule {
    const char *name;
    const char *what;
};

// Every rule, in the order --show-rules prints them.
std::span<const Rule> Rules();

// Facts of one run that its output may contain.
struct RunFacts {
    std::string dir;  // the run's fresh directory, as realpath gives it
};

// A value found in a piece of output: text[begin, end) is replaced by a name
// made of `kind` and, unless `fixed`, the ordinal of the value's first
// appearance among the values of that kind ("<A1>", "<A2>", ...; "<DIR>").
// A value in a right-aligned field starts with the blanks that pad it; they
// are no part of what it is.
struct Value {
    std::size_t begin, end;
    std::string kind;
    bool fixed = false;
};

// The values of one piece, in order and not overlapping, found by the rules
// whose index in Rules() has `on[i]` true.
std::vector<Value> FindValues(std::string_view text, const RunFacts &facts, const std::vector<bool> &on);

// The piece with the runs of lines whose order the system decides (the
// entries of one directory in a listing) put in a fixed order; unchanged
// when that rule is off.
std::string Reorder(std::string_view text, const std::vector<bool> &on);

// The piece with each value (as FindValues gives them) replaced by what
// `name` makes of it and of its text.
std::string Replace(std::string_view text, const std::vector<Value> &values,
                    const std::function<std::string(const Value &, std::string_view)> &name);

}  // namespace ldiff
