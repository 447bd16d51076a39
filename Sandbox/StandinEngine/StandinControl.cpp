#include "StandinControl.h"

#include "StandinCommon.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace Maptorn::Standin
{
namespace
{
std::string Trim(const std::string& Text)
{
    const auto IsBlank = [](char Character) { return Character == ' ' || Character == '\t' || Character == '\r'; };
    std::size_t Start = 0;
    std::size_t End = Text.size();
    while (Start < End && IsBlank(Text[Start]))
    {
        ++Start;
    }
    while (End > Start && IsBlank(Text[End - 1]))
    {
        --End;
    }
    return Text.substr(Start, End - Start);
}

std::string ToLower(std::string Text)
{
    std::transform(Text.begin(), Text.end(), Text.begin(),
        [](unsigned char Character) { return static_cast<char>(std::tolower(Character)); });
    return Text;
}
}

FControlFile FControlFile::Load(const std::string& Path)
{
    FControlFile Control;
    const std::optional<std::string> Text = LoadTextFile(Path);
    if (!Text)
    {
        return Control;
    }
    std::istringstream Lines(*Text);
    FControlSection* Current = nullptr;
    for (std::string Line; std::getline(Lines, Line);)
    {
        Line = Trim(Line);
        if (Line.empty() || Line.front() == ';' || Line.front() == '#')
        {
            continue;
        }
        if (Line.front() == '[' && Line.back() == ']')
        {
            Current = &Control.Sections[ToLower(Trim(Line.substr(1, Line.size() - 2)))];
            continue;
        }
        const std::size_t Equals = Line.find('=');
        if (Current && Equals != std::string::npos)
        {
            // Later lines win, as a later assignment does in an engine INI.
            (*Current)[ToLower(Trim(Line.substr(0, Equals)))] = StripQuotes(Trim(Line.substr(Equals + 1)));
        }
    }
    return Control;
}

std::optional<std::string> FControlFile::Get(const std::string& Section, const std::string& Key) const
{
    const auto SectionIt = Sections.find(ToLower(Section));
    if (SectionIt == Sections.end())
    {
        return std::nullopt;
    }
    const auto KeyIt = SectionIt->second.find(ToLower(Key));
    if (KeyIt == SectionIt->second.end())
    {
        return std::nullopt;
    }
    return KeyIt->second;
}

int FControlFile::GetInt(const std::string& Section, const std::string& Key, int Fallback) const
{
    const std::optional<std::string> Value = Get(Section, Key);
    if (!Value || Value->empty())
    {
        return Fallback;
    }
    errno = 0;
    char* End = nullptr;
    const long Number = std::strtol(Value->c_str(), &End, 10);
    if (errno != 0 || *End != '\0' || Number < -2147483647L - 1 || Number > 2147483647L)
    {
        return Fallback;
    }
    return static_cast<int>(Number);
}

bool FControlFile::GetBool(const std::string& Section, const std::string& Key) const
{
    const std::optional<std::string> Value = Get(Section, Key);
    if (!Value)
    {
        return false;
    }
    if (EqualsIgnoreCase(*Value, "true") || EqualsIgnoreCase(*Value, "yes") || EqualsIgnoreCase(*Value, "on"))
    {
        return true;
    }
    return GetInt(Section, Key, 0) != 0;
}

std::string ControlFilePath(const std::string& EngineRoot)
{
    return EngineRoot + "/Engine/Binaries/StandinControl.ini";
}

std::string RecordFilePath(const std::string& EngineRoot)
{
    return EngineRoot + "/Engine/Binaries/StandinRecord.jsonl";
}

bool AppendRecord(const std::string& EngineRoot, const std::string& Tool, const std::vector<std::string>& Argv,
    std::string& OutError)
{
    nlohmann::ordered_json Line;
    Line["tool"] = Tool;
    Line["argv"] = Argv;
    // Arguments are bytes from the command line; invalid UTF-8 must not stop the record.
    const std::string Text = Line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";

    const std::string Path = RecordFilePath(EngineRoot);
    const int Fd = ::open(Path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (Fd < 0)
    {
        OutError = "cannot open " + Path + ": " + std::strerror(errno);
        return false;
    }
    ssize_t Written = -1;
    do
    {
        Written = ::write(Fd, Text.data(), Text.size());
    } while (Written < 0 && errno == EINTR);
    const bool bComplete = Written == static_cast<ssize_t>(Text.size());
    if (!bComplete)
    {
        OutError = "cannot append to " + Path;
    }
    ::close(Fd);
    return bComplete;
}
}
