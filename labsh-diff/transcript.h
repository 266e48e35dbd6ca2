// Checking a shell against transcripts: files of cases, each a script with
// the output it must give, written by hand or by --record.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "engine.h"

namespace ldiff {

// The error numbers a transcript names as {{ENAME}}, for the C library's
// text of each.
struct ErrorName {
    const char *name;
    int number;
};
std::span<const ErrorName> ErrorNames();

// The text as a regular expression that matches it literally.
std::string Escape(const std::string &text);

// The cases of a transcript file that give the shell a script of their own,
// to compare shells on: their name, input, setup for /bin/sh and arguments.
// Cases that need more (another program, an environment, input from a file
// or without its last newline, something of the machine) are left out.
struct CaseScript {
    std::string name, input, setup;
    std::vector<std::string> args;
};
std::vector<CaseScript> CaseScripts(const std::string &file);

// Runs every case of the transcript `file` on `shell` (the program any case
// may name instead: `self` for "labsh-diff"), prints "ok" or "FALLA" per
// case with the differences, and returns 0 when all pass, 1 when one fails,
// 2 when the file cannot be read, 77 when no case could run here. `ownShell`
// tells whether the shell is labsh-diff's own reference.
int CheckTranscript(const std::string &file, const RunSpec &shell, const std::string &self, bool ownShell);

}  // namespace ldiff
