#include "Support/StandinEngine.h"

#include "Support/TempDir.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace Maptorn::Testing
{
namespace
{
bool IsSectionHeader(const std::string& Line, std::string* OutName = nullptr)
{
    std::string Trimmed = Line;
    std::erase(Trimmed, '\r');
    if (Trimmed.size() < 2 || Trimmed.front() != '[' || Trimmed.back() != ']')
    {
        return false;
    }
    if (OutName)
    {
        *OutName = Trimmed.substr(1, Trimmed.size() - 2);
    }
    return true;
}

bool SameName(std::string A, std::string B)
{
    const auto Lower = [](std::string& Text) {
        std::transform(Text.begin(), Text.end(), Text.begin(),
            [](unsigned char Character) { return static_cast<char>(std::tolower(Character)); });
    };
    Lower(A);
    Lower(B);
    return A == B;
}
}

FStandinEngine::FStandinEngine(std::string InEngineRoot)
    : EngineRoot(std::move(InEngineRoot))
{
    while (EngineRoot.size() > 1 && EngineRoot.back() == '/')
    {
        EngineRoot.pop_back();
    }
}

std::string FStandinEngine::ControlFilePath() const
{
    return EngineRoot + "/Engine/Binaries/StandinControl.ini";
}

std::string FStandinEngine::RecordFilePath() const
{
    return EngineRoot + "/Engine/Binaries/StandinRecord.jsonl";
}

std::vector<FStandinEngine::FStandinCall> FStandinEngine::ReadRecord() const
{
    std::vector<FStandinCall> Calls;
    std::istringstream Lines(ReadTextFile(RecordFilePath()));
    for (std::string Line; std::getline(Lines, Line);)
    {
        const nlohmann::json Entry = nlohmann::json::parse(Line, nullptr, false);
        if (Entry.is_object() && Entry.value("tool", nlohmann::json()).is_string() && Entry.contains("argv") &&
            Entry["argv"].is_array())
        {
            Calls.push_back({Entry["tool"].get<std::string>(), Entry["argv"].get<std::vector<std::string>>()});
        }
    }
    return Calls;
}

void FStandinEngine::SetBehaviour(const std::string& Tool, int ExitCode, bool bSkipOutputs, const std::string& StdOut,
    const std::string& StdErr)
{
    // Copies every line outside the tool's section, then appends the new section at the end.
    std::string Kept;
    bool bInToolSection = false;
    std::istringstream Lines(ReadTextFile(ControlFilePath()));
    for (std::string Line; std::getline(Lines, Line);)
    {
        std::string Section;
        if (IsSectionHeader(Line, &Section))
        {
            bInToolSection = SameName(Section, Tool);
        }
        if (!bInToolSection)
        {
            Kept += Line + "\n";
        }
    }
    Kept += "[" + Tool + "]\nExitCode=" + std::to_string(ExitCode) + "\nSkipOutputs=" +
            (bSkipOutputs ? "True" : "False") + "\n";
    if (!StdOut.empty())
    {
        Kept += "StdOut=" + StdOut + "\n";
    }
    if (!StdErr.empty())
    {
        Kept += "StdErr=" + StdErr + "\n";
    }
    WriteTextFile(ControlFilePath(), Kept);
}

void FStandinEngine::MakeUnstartable(const std::string& Tool)
{
    for (const std::string& Path : {ToolPath(Tool), NativeToolPath(Tool)})
    {
        std::error_code Error;
        fs::permissions(Path, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
            fs::perm_options::remove, Error);
    }
}

std::string FStandinEngine::ToolPath(const std::string& Tool) const
{
    if (Tool == "UnrealEditor" || Tool == "UnrealPak")
    {
        return EngineRoot + "/Engine/Binaries/Win64/" + Tool + ".exe";
    }
    return Tool == "RunUAT" ? EngineRoot + "/Engine/Build/BatchFiles/RunUAT.bat" : std::string();
}

std::string FStandinEngine::NativeToolPath(const std::string& Tool) const
{
    if (Tool == "UnrealEditor" || Tool == "UnrealPak")
    {
        return EngineRoot + "/Engine/Binaries/Linux/" + Tool;
    }
    return Tool == "RunUAT" ? EngineRoot + "/Engine/Build/BatchFiles/RunUAT.sh" : std::string();
}
}
