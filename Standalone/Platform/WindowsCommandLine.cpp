#include "Platform/WindowsCommandLine.h"

#include <cstddef>

namespace Maptorn::WindowsCommandLine
{
namespace
{
bool IsBlank(char Character)
{
    return Character == ' ' || Character == '\t';
}

std::size_t SkipBlanks(const std::string& Text, std::size_t Position)
{
    while (Position < Text.size() && IsBlank(Text[Position]))
    {
        ++Position;
    }
    return Position;
}

// The program name is a path, which on Windows cannot contain a quote, so quotes only group
// and a backslash is never an escape there.
std::string ReadProgramName(const std::string& Text, std::size_t& Position)
{
    std::string Argument;
    bool bInQuotes = false;
    for (; Position < Text.size(); ++Position)
    {
        const char Character = Text[Position];
        if (Character == '"')
        {
            bInQuotes = !bInQuotes;
        }
        else if (IsBlank(Character) && !bInQuotes)
        {
            break;
        }
        else
        {
            Argument += Character;
        }
    }
    return Argument;
}

// One argument after the program name. Backslashes only count as escapes in a run that ends
// at a double quote: 2n of them give n and leave the quote to group, 2n+1 give n and a literal quote.
std::string ReadArgument(const std::string& Text, std::size_t& Position)
{
    std::string Argument;
    bool bInQuotes = false;
    while (Position < Text.size())
    {
        std::size_t Backslashes = 0;
        while (Position < Text.size() && Text[Position] == '\\')
        {
            ++Backslashes;
            ++Position;
        }
        const bool bAtQuote = Position < Text.size() && Text[Position] == '"';
        if (!bAtQuote)
        {
            Argument.append(Backslashes, '\\');
            if (Position == Text.size() || (IsBlank(Text[Position]) && !bInQuotes))
            {
                break;
            }
            Argument += Text[Position++];
            continue;
        }
        Argument.append(Backslashes / 2, '\\');
        if (Backslashes % 2 == 1)
        {
            Argument += '"';
        }
        else if (bInQuotes && Position + 1 < Text.size() && Text[Position + 1] == '"')
        {
            // The 2008+ runtime reads `""` inside quotes as a literal quote and stays inside.
            Argument += '"';
            ++Position;
        }
        else
        {
            bInQuotes = !bInQuotes;
        }
        ++Position;
    }
    return Argument;
}
}

std::string BuildCommandLine(const std::string& Url, const std::string& Params)
{
    if (!Url.empty() && Url.front() == '"')
    {
        return Url + " " + Params;
    }
    return "\"" + Url + "\" " + Params;
}

std::vector<std::string> SplitCommandLine(const std::string& CommandLine)
{
    std::vector<std::string> Arguments;
    std::size_t Position = SkipBlanks(CommandLine, 0);
    if (Position == CommandLine.size())
    {
        return Arguments;
    }
    Arguments.push_back(ReadProgramName(CommandLine, Position));
    for (Position = SkipBlanks(CommandLine, Position); Position < CommandLine.size();
         Position = SkipBlanks(CommandLine, Position))
    {
        Arguments.push_back(ReadArgument(CommandLine, Position));
    }
    return Arguments;
}
}
