// The pak tool: reads the response file the workshop writes and packs its entries. The pak is the
// plain concatenation of the entries' bytes, so a test can check the size against the sources.

#include "StandinTools.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace fs = std::filesystem;

namespace Maptorn::Standin
{
namespace
{
struct FPakEntry
{
    std::string Source;
    std::string Destination;
};

// Splits one response-file line into blank-separated tokens, double quotes grouping.
std::vector<std::string> TokeniseLine(const std::string& Line)
{
    std::vector<std::string> Tokens;
    std::size_t Index = 0;
    while (Index < Line.size())
    {
        if (Line[Index] == ' ' || Line[Index] == '\t')
        {
            ++Index;
            continue;
        }
        std::string Token;
        bool bInQuotes = false;
        for (; Index < Line.size() && (bInQuotes || (Line[Index] != ' ' && Line[Index] != '\t')); ++Index)
        {
            if (Line[Index] == '"')
            {
                bInQuotes = !bInQuotes;
            }
            else
            {
                Token += Line[Index];
            }
        }
        Tokens.push_back(std::move(Token));
    }
    return Tokens;
}

std::vector<FPakEntry> ParseResponseFile(const std::string& Text)
{
    std::vector<FPakEntry> Entries;
    std::istringstream Lines(Text);
    for (std::string Line; std::getline(Lines, Line);)
    {
        std::erase(Line, '\r');
        const std::vector<std::string> Tokens = TokeniseLine(Line);
        if (Tokens.empty() || Tokens.front().empty())
        {
            continue;
        }
        // Anything after the destination (per-entry switches such as -compress) does not change the bytes.
        Entries.push_back({Tokens[0], Tokens.size() > 1 ? Tokens[1] : fs::path(Tokens[0]).filename().string()});
    }
    return Entries;
}

bool AppendFile(std::ofstream& Pak, const std::string& Source)
{
    std::ifstream In(Source, std::ios::binary);
    if (!In)
    {
        return false;
    }
    Pak << In.rdbuf();
    // An empty source copies nothing, which sets failbit on the pak without being an error.
    Pak.clear(Pak.rdstate() & ~std::ios::failbit);
    return !In.bad() && Pak.good();
}
}

int RunPakTool(const FToolRun& Run)
{
    const std::vector<std::string>& Argv = Run.Argv;
    if (Argv.size() < 2 || Argv[1].empty() || Argv[1].front() == '-')
    {
        std::cerr << "LogPakFile: Error: Usage: UnrealPak <PakFilename> -create=<ResponseFile> [Options]\n";
        return 1;
    }
    const std::string PakPath = StripQuotes(Argv[1]);
    const std::optional<std::string> ResponsePath = FindValue(Argv, "create");
    if (!ResponsePath)
    {
        std::cerr << "LogPakFile: Error: No response file given (-create=).\n";
        return 1;
    }
    const std::optional<std::string> ResponseText = LoadTextFile(*ResponsePath);
    if (!ResponseText)
    {
        std::cerr << "LogPakFile: Error: Failed to load response file " << *ResponsePath << "\n";
        return 1;
    }
    const std::vector<FPakEntry> Entries = ParseResponseFile(*ResponseText);

    std::cout << "LogPakFile: Display: Loading response file " << *ResponsePath << "\n"
              << "LogPakFile: Display: Added " << Entries.size() << " entries to add to pak file.\n";
    // Every source is checked before the pak is opened, so a failed run leaves no pak behind.
    bool bAllPresent = true;
    for (const FPakEntry& Entry : Entries)
    {
        std::error_code Error;
        if (!fs::is_regular_file(Entry.Source, Error))
        {
            std::cerr << "LogPakFile: Error: Missing source " << Entry.Source << "\n";
            bAllPresent = false;
        }
    }
    if (!bAllPresent)
    {
        return 1;
    }

    if (!Run.bSkipOutputs)
    {
        std::error_code Error;
        const fs::path Pak(PakPath);
        if (Pak.has_parent_path())
        {
            fs::create_directories(Pak.parent_path(), Error);
        }
        std::ofstream Out(Pak, std::ios::binary | std::ios::trunc);
        bool bWritten = static_cast<bool>(Out);
        for (const FPakEntry& Entry : Entries)
        {
            if (!bWritten)
            {
                break;
            }
            bWritten = AppendFile(Out, Entry.Source);
            std::cout << "LogPakFile: Display: Added \"" << Entry.Destination << "\"\n";
        }
        Out.close();
        if (!bWritten || !Out)
        {
            std::cerr << "LogPakFile: Error: Failed to write " << PakPath << "\n";
            fs::remove(Pak, Error);
            return 1;
        }
    }
    std::cout << "LogPakFile: Display: Added " << Entries.size() << " entries\n"
              << "LogPakFile: Display: Unreal pak executed in 0.01 seconds\n";
    return 0;
}
}
