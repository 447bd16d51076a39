#include "StandinCommon.h"

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

void AppendUtf8(std::string& Out, std::uint32_t CodePoint)
{
    if (CodePoint < 0x80)
    {
        Out += static_cast<char>(CodePoint);
    }
    else if (CodePoint < 0x800)
    {
        Out += static_cast<char>(0xC0 | (CodePoint >> 6));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
    else if (CodePoint < 0x10000)
    {
        Out += static_cast<char>(0xE0 | (CodePoint >> 12));
        Out += static_cast<char>(0x80 | ((CodePoint >> 6) & 0x3F));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
    else
    {
        Out += static_cast<char>(0xF0 | (CodePoint >> 18));
        Out += static_cast<char>(0x80 | ((CodePoint >> 12) & 0x3F));
        Out += static_cast<char>(0x80 | ((CodePoint >> 6) & 0x3F));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
}

std::string DecodeUtf16(const std::string& Bytes, bool bBigEndian)
{
    std::string Out;
    for (std::size_t Index = 2; Index + 1 < Bytes.size(); Index += 2)
    {
        const auto First = static_cast<unsigned char>(Bytes[Index + (bBigEndian ? 0 : 1)]);
        const auto Second = static_cast<unsigned char>(Bytes[Index + (bBigEndian ? 1 : 0)]);
        std::uint32_t Unit = (static_cast<std::uint32_t>(First) << 8) | Second;
        if (Unit >= 0xD800 && Unit < 0xDC00 && Index + 3 < Bytes.size())
        {
            const auto LowFirst = static_cast<unsigned char>(Bytes[Index + 2 + (bBigEndian ? 0 : 1)]);
            const auto LowSecond = static_cast<unsigned char>(Bytes[Index + 2 + (bBigEndian ? 1 : 0)]);
            const std::uint32_t Low = (static_cast<std::uint32_t>(LowFirst) << 8) | LowSecond;
            if (Low >= 0xDC00 && Low < 0xE000)
            {
                Unit = 0x10000 + ((Unit - 0xD800) << 10) + (Low - 0xDC00);
                Index += 2;
            }
        }
        AppendUtf8(Out, Unit);
    }
    return Out;
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
    std::ifstream In(Path, std::ios::binary);
    if (!In)
    {
        return std::nullopt;
    }
    std::string Bytes((std::istreambuf_iterator<char>(In)), std::istreambuf_iterator<char>());
    if (Bytes.size() >= 2 && static_cast<unsigned char>(Bytes[0]) == 0xFF && static_cast<unsigned char>(Bytes[1]) == 0xFE)
    {
        return DecodeUtf16(Bytes, false);
    }
    if (Bytes.size() >= 2 && static_cast<unsigned char>(Bytes[0]) == 0xFE && static_cast<unsigned char>(Bytes[1]) == 0xFF)
    {
        return DecodeUtf16(Bytes, true);
    }
    if (Bytes.rfind("\xEF\xBB\xBF", 0) == 0)
    {
        Bytes.erase(0, 3);
    }
    return Bytes;
}
}
