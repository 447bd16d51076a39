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

// The engine platform's splitting rules, one line each.
TEST(WindowsCommandLine, SplittingFollowsTheEnginePlatformsQuotingRules)
{
    struct FCase
    {
        const char* Rule;
        std::string Line;
        Arguments Expected;
    };
    const FCase Cases[] = {
        {"blanks separate, runs of them give no empty argument", "prog  a\tb \t c", {"prog", "a", "b", "c"}},
        {"leading and trailing blanks", "  \tprog a  ", {"prog", "a"}},
        {"nothing", "", {}},
        {"only blanks", " \t ", {}},
        {"quotes group and go", "prog \"a b\" c\"d e\"f \"g\"h", {"prog", "a b", "cd ef", "gh"}},
        {"an unterminated quote runs to the end", "prog \"unterminated  blank", {"prog", "unterminated  blank"}},
        {"empty quotes give an empty argument", "prog \"\" b \"\"", {"prog", "", "b", ""}},
        {"empty quotes between blanks", "prog \"\"\t\"\"", {"prog", "", ""}},
        {"a doubled quote inside quotes is a quote", "prog \"a\"\"b c\"", {"prog", "a\"b c"}},
        {"and quoting continues", "prog \"say \"\"hi\"\" now\" x", {"prog", "say \"hi\" now", "x"}},
        {"backslashes not before a quote stay", "prog C:\\Path\\To\\file.exe a\\\\b\\\\\\c d\\",
            {"prog", "C:\\Path\\To\\file.exe", "a\\\\b\\\\\\c", "d\\"}},
        {"backslashes inside quotes stay", "prog \"C:\\Program Files\\x\"", {"prog", "C:\\Program Files\\x"}},
        {"one backslash before a quote: a quote", "prog a\\\"b \\\"c\\\"", {"prog", "a\"b", "\"c\""}},
        {"one backslash before a quote inside quotes", "prog \"a\\\" b\"", {"prog", "a\" b"}},
        {"two backslashes before a quote: one backslash, the quote groups", "prog a\\\\\"b c\"", {"prog", "a\\b c"}},
        {"a quoted folder ending in a separator", "prog \"C:\\Out Dir\\\\\" next", {"prog", "C:\\Out Dir\\", "next"}},
        {"three backslashes before a quote", "prog a\\\\\\\"b c", {"prog", "a\\\"b", "c"}},
        {"four backslashes before a quote", "prog a\\\\\\\\\"b c\"", {"prog", "a\\\\b c"}},
        {"the program name takes backslashes as they are", "\"C:\\Program Files\\Epic\\UnrealEditor.exe\" -x",
            {"C:\\Program Files\\Epic\\UnrealEditor.exe", "-x"}},
        {"in the program name a quote only groups", "C:\\a\\\"b c\" d", {"C:\\a\\b c", "d"}},
        {"a program name ending in backslashes", "\"C:\\Dir\\\\\" x", {"C:\\Dir\\\\", "x"}},
        {"an empty program name", "\"\" x", {"", "x"}},
    };
    for (const FCase& Case : Cases)
    {
        EXPECT_EQ(Split(Case.Line), Case.Expected) << Case.Rule;
    }
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
