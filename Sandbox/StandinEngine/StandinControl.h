#pragma once

// How a test steers the stand-in engine (the control file) and how it sees what the stand-in
// was asked to do (the record file). Both live beside the binaries so every installed copy shares them.

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn::Standin
{
// One section of StandinControl.ini, keys folded to lower case because the engine's config
// lookups ignore case too.
using FControlSection = std::map<std::string, std::string>;

class FControlFile
{
public:
    // A missing or unreadable file reads as empty: every tool then behaves normally.
    static FControlFile Load(const std::string& Path);

    std::optional<std::string> Get(const std::string& Section, const std::string& Key) const;
    // ExitCode=<int>; Fallback when absent or not a number.
    int GetInt(const std::string& Section, const std::string& Key, int Fallback) const;
    // True/Yes/On or a non-zero number, as the engine's config reads bools.
    bool GetBool(const std::string& Section, const std::string& Key) const;

private:
    std::map<std::string, FControlSection> Sections;
};

std::string ControlFilePath(const std::string& EngineRoot);
std::string RecordFilePath(const std::string& EngineRoot);

// Appends {"tool":...,"argv":[...]} as one line in a single write to a file opened with O_APPEND,
// so runs started in parallel by worker threads never interleave their lines.
bool AppendRecord(const std::string& EngineRoot, const std::string& Tool, const std::vector<std::string>& Argv,
    std::string& OutError);
}
