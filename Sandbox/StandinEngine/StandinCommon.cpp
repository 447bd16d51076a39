#include "StandinCommon.h"

#include "Common/FileHelper.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace Maptorn::Standin
{
namespace
{
char ToLowerAscii(char Character)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(Character)));
}

// FNV-1a: stable across runs and machines, unlike std::hash.
std::uint32_t HashLabel(const std::string& Label)
{
    std::uint32_t Hash = 2166136261u;
    for (const char Character : Label)
    {
        Hash = (Hash ^ static_cast<unsigned char>(Character)) * 16777619u;
    }
    return Hash;
}

}

int FinalExitCode(const FToolRun& Run, int WorkExitCode)
{
    return WorkExitCode != 0 ? WorkExitCode : Run.ControlExitCode;
}

bool EqualsIgnoreCase(std::string_view A, std::string_view B)
{
    if (A.size() != B.size())
    {
        return false;
    }
    for (std::size_t Index = 0; Index < A.size(); ++Index)
    {
        if (ToLowerAscii(A[Index]) != ToLowerAscii(B[Index]))
        {
            return false;
        }
    }
    return true;
}

bool EndsWithIgnoreCase(std::string_view Text, std::string_view Suffix)
{
    return Text.size() >= Suffix.size() && EqualsIgnoreCase(Text.substr(Text.size() - Suffix.size()), Suffix);
}

std::string StripQuotes(std::string Text)
{
    if (Text.size() >= 2 && Text.front() == '"' && Text.back() == '"')
    {
        Text = Text.substr(1, Text.size() - 2);
    }
    return Text;
}

std::vector<std::string> FindAllValues(const std::vector<std::string>& Argv, std::string_view Key)
{
    std::vector<std::string> Values;
    for (std::size_t Index = 1; Index < Argv.size(); ++Index)
    {
        std::string_view Argument = Argv[Index];
        if (Argument.empty() || Argument.front() != '-')
        {
            continue;
        }
        const std::size_t Equals = Argument.find('=');
        if (Equals != std::string_view::npos && EqualsIgnoreCase(Argument.substr(1, Equals - 1), Key))
        {
            Values.push_back(StripQuotes(std::string(Argument.substr(Equals + 1))));
        }
    }
    return Values;
}

std::optional<std::string> FindValue(const std::vector<std::string>& Argv, std::string_view Key)
{
    std::vector<std::string> Values = FindAllValues(Argv, Key);
    if (Values.empty())
    {
        return std::nullopt;
    }
    return Values.front();
}

bool HasSwitch(const std::vector<std::string>& Argv, std::string_view Switch)
{
    for (std::size_t Index = 1; Index < Argv.size(); ++Index)
    {
        if (EqualsIgnoreCase(Argv[Index], Switch))
        {
            return true;
        }
    }
    return false;
}

std::vector<std::string> SplitString(const std::string& Text, char Separator)
{
    std::vector<std::string> Parts;
    std::size_t Start = 0;
    while (Start <= Text.size())
    {
        const std::size_t End = std::min(Text.find(Separator, Start), Text.size());
        if (End > Start)
        {
            Parts.push_back(Text.substr(Start, End - Start));
        }
        Start = End + 1;
    }
    return Parts;
}

std::string JoinPath(std::string Left, std::string_view Right)
{
    while (Left.size() > 1 && Left.back() == '/')
    {
        Left.pop_back();
    }
    while (!Right.empty() && Right.front() == '/')
    {
        Right.remove_prefix(1);
    }
    if (Left.empty() || Right.empty())
    {
        return Left.empty() ? std::string(Right) : Left;
    }
    return Left == "/" ? Left + std::string(Right) : Left + "/" + std::string(Right);
}

std::size_t SizeForLabel(const std::string& Label, std::size_t Minimum, std::size_t Spread)
{
    return Minimum + (Spread == 0 ? 0 : HashLabel(Label) % Spread);
}

std::string MakeFillerText(const std::string& Label, std::size_t Size)
{
    const std::string Line = "Stand-in engine data for " + Label + "\n";
    std::string Text;
    Text.reserve(Size + Line.size());
    while (Text.size() < Size)
    {
        Text += Line;
    }
    Text.resize(Size);
    return Text;
}

bool WriteOutputFile(const std::string& Path, const std::string& Bytes, std::string& OutError)
{
    std::error_code Error;
    const fs::path File(Path);
    if (File.has_parent_path())
    {
        fs::create_directories(File.parent_path(), Error);
        if (Error)
        {
            OutError = "cannot create the folder " + File.parent_path().string() + ": " + Error.message();
            return false;
        }
    }
    std::ofstream Out(File, std::ios::binary | std::ios::trunc);
    Out.write(Bytes.data(), static_cast<std::streamsize>(Bytes.size()));
    Out.close();
    if (!Out)
    {
        OutError = "cannot write " + Path;
        return false;
    }
    return true;
}

std::optional<std::string> LoadTextFile(const std::string& Path)
{
    // The same reader as the workshop's, so text written as UTF-16 by it reads back here.
    return Maptorn::FileHelper::LoadFileToString(Path);
}
}
