#pragma once

// Shared pieces of the stand-in engine: what one run knows about itself, argument lookup in the
// engine's `-Key=Value` style, and the small file helpers every tool uses to leave its outputs.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Maptorn::Standin
{
// One run of one tool, as main resolved it from the program's own path and the control file.
struct FToolRun
{
    std::string Tool;                // "UnrealEditor", "UnrealPak" or "RunUAT"
    std::vector<std::string> Argv;   // exactly as received, Argv[0] included
    std::string EngineRoot;          // the folder that holds Engine/, no trailing "/"
    bool bSkipOutputs = false;       // the control file asks for a run that claims work but leaves nothing
    int ControlExitCode = 0;         // the control file's ExitCode, 0 when absent
    std::string AutomationLogsDir;   // empty: the automation tool writes no log
};

// The tool's own work decides first: a failed run stays failed, a clean one takes the control file's code.
int FinalExitCode(const FToolRun& Run, int WorkExitCode);

bool EqualsIgnoreCase(std::string_view A, std::string_view B);
bool EndsWithIgnoreCase(std::string_view Text, std::string_view Suffix);

// The engine's FParse::Value for `-Key=Value`: the key ends at the first '=', compared without case.
// Values may keep quotes of their own after Windows splitting, so one surrounding pair is removed.
std::optional<std::string> FindValue(const std::vector<std::string>& Argv, std::string_view Key);
// Every value of a key that may be given more than once (-map=, -cookdir=).
std::vector<std::string> FindAllValues(const std::vector<std::string>& Argv, std::string_view Key);
// A bare switch such as -Server or -Compile, compared without case, never Argv[0].
bool HasSwitch(const std::vector<std::string>& Argv, std::string_view Switch);

std::vector<std::string> SplitString(const std::string& Text, char Separator);
std::string StripQuotes(std::string Text);

// Joins with exactly one '/' between the parts, whatever slashes each side already carries,
// because staging folders arrive both with and without a trailing slash.
std::string JoinPath(std::string Left, std::string_view Right);

// Deterministic text of about Size bytes naming the file, so outputs differ per file and a test
// can tell one pak entry from another by size.
std::string MakeFillerText(const std::string& Label, std::size_t Size);
// A stable size in [Minimum, Minimum + Spread) derived from Label.
std::size_t SizeForLabel(const std::string& Label, std::size_t Minimum, std::size_t Spread);

// Creates the parent folders, then writes Bytes; false with OutError filled when it cannot.
bool WriteOutputFile(const std::string& Path, const std::string& Bytes, std::string& OutError);

// Reads a text file the way the engine's loader does: UTF-8 with or without its mark, or UTF-16
// with a byte-order mark (what the engine's default save writes for non-ASCII text), as UTF-8.
std::optional<std::string> LoadTextFile(const std::string& Path);
}
