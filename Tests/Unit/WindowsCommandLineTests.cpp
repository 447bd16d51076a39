#include "Platform/WindowsCommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Maptorn;
using Arguments = std::vector<std::string>;

namespace
{
Arguments Split(const std::string& CommandLine)
{
    return WindowsCommandLine::SplitCommandLine(CommandLine);
}
}

TEST(WindowsCommandLine, BuildCommandLineQuotesTheExecutableAndAddsOneBlank)
{
    EXPECT_EQ(WindowsCommandLine::BuildCommandLine("C:/Engine/UnrealPak.exe", "-Create=list.txt"),
        "\"C:/Engine/UnrealPak.exe\" -Create=list.txt");
    EXPECT_EQ(WindowsCommandLine::BuildCommandLine("/e/tool", ""), "\"/e/tool\" ");
    EXPECT_EQ(WindowsCommandLine::BuildCommandLine("/e/tool", " -a"), "\"/e/tool\"  -a");
}

TEST(WindowsCommandLine, BuildCommandLineUsesAPreQuotedExecutableAsItStands)
{
    EXPECT_EQ(WindowsCommandLine::BuildCommandLine("\"C:/Engine/RunUAT.bat\"", "BuildCookRun"),
        "\"C:/Engine/RunUAT.bat\" BuildCookRun");
    EXPECT_EQ(WindowsCommandLine::BuildCommandLine("\"C:/a b/x.exe\" -first", "-second"),
        "\"C:/a b/x.exe\" -first -second");
}

TEST(WindowsCommandLine, BlanksSeparateArgumentsAndRunsOfThemGiveNoEmptyArgument)
{
    EXPECT_EQ(Split("prog  a\tb \t c"), (Arguments{"prog", "a", "b", "c"}));
    EXPECT_EQ(Split("  \tprog a  "), (Arguments{"prog", "a"}));
    EXPECT_EQ(Split(""), Arguments{});
    EXPECT_EQ(Split(" \t "), Arguments{});
}

TEST(WindowsCommandLine, DoubleQuotesGroupAndAreRemoved)
{
    EXPECT_EQ(Split("prog \"a b\" c\"d e\"f \"g\"h"), (Arguments{"prog", "a b", "cd ef", "gh"}));
    EXPECT_EQ(Split("prog \"unterminated  blank"), (Arguments{"prog", "unterminated  blank"}));
}

TEST(WindowsCommandLine, EmptyQuotesGiveAnEmptyArgument)
{
    EXPECT_EQ(Split("prog \"\" b \"\""), (Arguments{"prog", "", "b", ""}));
    EXPECT_EQ(Split("prog \"\"\t\"\""), (Arguments{"prog", "", ""}));
}

TEST(WindowsCommandLine, DoubledQuoteInsideQuotesIsALiteralQuoteAndQuotingContinues)
{
    EXPECT_EQ(Split("prog \"a\"\"b c\""), (Arguments{"prog", "a\"b c"}));
    EXPECT_EQ(Split("prog \"say \"\"hi\"\" now\" x"), (Arguments{"prog", "say \"hi\" now", "x"}));
}

TEST(WindowsCommandLine, BackslashesNotBeforeAQuoteStayLiteral)
{
    EXPECT_EQ(Split("prog C:\\Path\\To\\file.exe a\\\\b\\\\\\c d\\"),
        (Arguments{"prog", "C:\\Path\\To\\file.exe", "a\\\\b\\\\\\c", "d\\"}));
    EXPECT_EQ(Split("prog \"C:\\Program Files\\x\""), (Arguments{"prog", "C:\\Program Files\\x"}));
}

TEST(WindowsCommandLine, OneBackslashBeforeAQuoteGivesALiteralQuote)
{
    EXPECT_EQ(Split("prog a\\\"b \\\"c\\\""), (Arguments{"prog", "a\"b", "\"c\""}));
    EXPECT_EQ(Split("prog \"a\\\" b\""), (Arguments{"prog", "a\" b"}));
}

TEST(WindowsCommandLine, TwoBackslashesBeforeAQuoteGiveOneBackslashAndTheQuoteGroups)
{
    EXPECT_EQ(Split("prog a\\\\\"b c\""), (Arguments{"prog", "a\\b c"}));
    // The usual way to end a quoted folder with a separator.
    EXPECT_EQ(Split("prog \"C:\\Out Dir\\\\\" next"), (Arguments{"prog", "C:\\Out Dir\\", "next"}));
}

TEST(WindowsCommandLine, ThreeBackslashesBeforeAQuoteGiveOneBackslashAndALiteralQuote)
{
    EXPECT_EQ(Split("prog a\\\\\\\"b c"), (Arguments{"prog", "a\\\"b", "c"}));
    EXPECT_EQ(Split("prog a\\\\\\\\\"b c\""), (Arguments{"prog", "a\\\\b c"}));
}

TEST(WindowsCommandLine, ProgramNameTakesBackslashesLiterallyAndQuotesOnlyGroup)
{
    EXPECT_EQ(Split("\"C:\\Program Files\\Epic\\UnrealEditor.exe\" -x"),
        (Arguments{"C:\\Program Files\\Epic\\UnrealEditor.exe", "-x"}));
    // After the program name the same bytes would give a literal quote and end at the blank.
    EXPECT_EQ(Split("C:\\a\\\"b c\" d"), (Arguments{"C:\\a\\b c", "d"}));
    EXPECT_EQ(Split("\"C:\\Dir\\\\\" x"), (Arguments{"C:\\Dir\\\\", "x"}));
    EXPECT_EQ(Split("\"\" x"), (Arguments{"", "x"}));
}

TEST(WindowsCommandLine, PreQuotedExecutableSplitsLikeAQuotedOne)
{
    const std::string CommandLine = WindowsCommandLine::BuildCommandLine("\"/e/Run UAT.sh\"", "BuildCookRun -a");
    EXPECT_EQ(Split(CommandLine), (Arguments{"/e/Run UAT.sh", "BuildCookRun", "-a"}));
}

TEST(WindowsCommandLine, EngineCookParametersSplitIntoTheExpectedArguments)
{
    const std::string Params =
        "\"/p/Proj.uproject\"  -run=cook -targetplatform=Windows+LinuxServer -UnVersioned -map=/Game/X";
    const std::string CommandLine =
        WindowsCommandLine::BuildCommandLine("/e/Engine/Binaries/Linux/UnrealEditor-Cmd", Params);
    EXPECT_EQ(Split(CommandLine),
        (Arguments{"/e/Engine/Binaries/Linux/UnrealEditor-Cmd", "/p/Proj.uproject", "-run=cook",
            "-targetplatform=Windows+LinuxServer", "-UnVersioned", "-map=/Game/X"}));
}
