#pragma once

#include <cstdint>
#include <vector>

#include "exchange/CommandLine.h"
#include "platform/Text.h"

namespace sorbel {

/// How a command ends, as the process tells it.
enum ExitStatus { Done = 0, Findings = 1, WrongUseStatus = 2, BadFile = 3 };

/// Each does its work and returns how it ended; failures of files and of use it throws (ExchangeError.h).
int ExportCommand(const Arguments& arguments);
int ImportCommand(const Arguments& arguments);
int MergeCommand(const Arguments& arguments);
int CheckCommand(const Arguments& arguments);
int StatsCommand(const Arguments& arguments);
int ApplicationCommand(const Arguments& arguments);

struct Command {
    StringView Name;
    StringView Operands;  ///< as the help shows them
    StringView Summary;
    size_t LeastOperands, MostOperands;
    std::vector<Option> Options;
    int (*Run)(const Arguments& arguments);
};

/// All commands of the program, in the order of the help.
inline const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"export",
         "LOCALE OUT",
         "OUT ends in .po, .pot, .xlf, .xliff, .tsv or .csv",
         2,
         2,
         {{"to", true}, {"source-language", true}, {"lossy"}},
         ExportCommand},
        {"import",
         "LOCALE IN [-o OUT]",
         "IN ends in .po, .xlf, .xliff, .tsv or .csv",
         2,
         2,
         {{"from", true}, {"output", true, 'o'}, {"strict"}},
         ImportCommand},
        {"merge",
         "LOCALE NEWER [-o OUT]",
         "as Import Existing File does",
         2,
         2,
         {{"output", true, 'o'}},
         MergeCommand},
        {"check",
         "LOCALE...",
         "finds what is wrong with translations",
         1,
         SIZE_MAX,
         {{"format", true}, {"rule", true}, {"no-rule", true}, {"longest", true}},
         CheckCommand},
        {"stats",
         "LOCALE...",
         "counts strings, rows and words",
         1,
         SIZE_MAX,
         {{"format", true}},
         StatsCommand},
        {"app", "LOCALE APPLICATION", "as Export to Application does", 2, 2, {}, ApplicationCommand},
    };
    return commands;
}

}  // namespace sorbel
