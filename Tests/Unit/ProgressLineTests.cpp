// The command line's progress without a terminal: whole lines a log can keep, often enough to see
// the work move and never a carriage return.

#include "Cli/ProgressLine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Cli;
using namespace std::chrono_literals;

namespace
{
class ProgressLineWithoutTerminal : public ::testing::Test
{
protected:
    std::vector<std::string> Lines() const
    {
        std::vector<std::string> Result;
        std::istringstream Text(Out.str());
        for (std::string Line; std::getline(Text, Line);)
        {
            Result.push_back(Line);
        }
        return Result;
    }

    std::ostringstream Out;
    FProgressLine::FClock::time_point Time{};
    FProgressLine Progress{Out, false, [this] { return Time; }};
};
}

TEST_F(ProgressLineWithoutTerminal, PrintsOneLineEveryTenthWithBytesAndRate)
{
    const int64 Total = 100 * 1024 * 1024;
    for (int Percent = 0; Percent <= 100; ++Percent)
    {
        Progress.Show("Downloading UGC1006", static_cast<float>(Percent) / 100.0f, Total / 100 * Percent, Total);
        Time += 100ms;
    }
    Progress.End();

    const std::vector<std::string> Printed = Lines();
    ASSERT_EQ(Printed.size(), 11u) << Out.str();
    EXPECT_EQ(Printed[0].rfind("Downloading UGC1006   0%  0.00 B / 100.00 MB", 0), 0u) << Printed[0];
    EXPECT_NE(Printed[5].find(" 50%  50.00 MB / 100.00 MB  "), std::string::npos) << Printed[5];
    EXPECT_NE(Printed[5].find("/s"), std::string::npos) << "the rate: " << Printed[5];
    EXPECT_NE(Printed[10].find("100%"), std::string::npos);
    EXPECT_EQ(Out.str().find('\r'), std::string::npos);
    EXPECT_EQ(Out.str().find('\x1b'), std::string::npos);
}

TEST_F(ProgressLineWithoutTerminal, WorkThatHardlyMovesIsReportedEveryFiveSeconds)
{
    for (int Second = 0; Second <= 12; ++Second)
    {
        Progress.Show("Uploading 1/2", 0.42f, 420, 1000);
        Time += 1s;
    }
    // At 0 s, 5 s and 10 s; a new step starts its own line at once.
    EXPECT_EQ(Lines().size(), 3u) << Out.str();
    Progress.Show("Uploading 2/2", 0.0f);
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(Lines().back(), "Uploading 2/2   0%");
}
