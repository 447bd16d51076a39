#pragma once

#include "Platform/ConfigCachePort.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Maptorn
{
// One INI file as lines, so that a change to one value leaves every other byte of the file alone.
// Parsing and editing are pure: no disk, no lock; FIniConfigCache below adds both.
namespace IniFile
{
enum class ELineKind
{
    Other,   // comments, blank lines, array commands (+Key= -Key= .Key= !Key=), lines before any section
    Section, // [Name]
    Value,   // Key=Value inside a section
};

struct FLine
{
    std::string Text;        // the line as it was, without its terminator
    std::string Terminator;  // "\r\n", "\n", or "" for a last line that had none
    ELineKind Kind = ELineKind::Other;
    std::string Name;        // the section name or the key, trimmed
    std::size_t ValueStart = 0; // where the value begins in Text (after "=" and blanks)
};

struct FDocument
{
    std::vector<FLine> Lines;
    // Terminator for lines we add: the file's first one, so a CR LF file stays CR LF. A new
    // file uses LF, the terminator the engine would write on this platform.
    std::string NewLineTerminator = "\n";
};

FDocument Parse(std::string_view Text);
std::string Serialize(const FDocument& Document);

// The first Key= line of the first matching section wins; names compare ignoring case.
std::optional<std::string> FindValue(const FDocument& Document, std::string_view Section, std::string_view Key);
void SetValue(FDocument& Document, std::string_view Section, std::string_view Key, std::string_view Value);

// True/Yes/On and False/No/Off in any case, else the leading integer (non-zero is true), as the
// engine's ToBool does; so text that is no number at all reads as false.
bool ParseBool(std::string_view Value);
}

// The standalone host's config cache: INI files named by path, read on first use, edited in
// memory, written back on Flush. Safe to call from any thread.
class FIniConfigCache final : public IConfigCache
{
public:
    void RemoveFromCache(const std::string& File) override;

    std::optional<std::string> GetString(const std::string& Section, const std::string& Key,
        const std::string& File) override;
    std::optional<bool> GetBool(const std::string& Section, const std::string& Key, const std::string& File) override;

    void SetString(const std::string& Section, const std::string& Key, const std::string& Value,
        const std::string& File) override;
    void SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File) override;

    // Writes the file only when something was set since it was read or last written; creates
    // the file and its folder when missing. On failure the cached copy is kept for a retry.
    bool Flush(bool bRemoveFromCache, const std::string& File) override;

private:
    struct FCachedFile
    {
        IniFile::FDocument Document;
        bool bDirty = false;
    };

    FCachedFile& FindOrLoadLocked(const std::string& File);

    std::mutex Mutex;
    std::map<std::string, FCachedFile> Files;
};
}
