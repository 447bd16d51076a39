#include "Cli/ProgressLine.h"

#include "Common/ByteFormat.h"
#include "Common/StringUtil.h"

#include <algorithm>
#include <ostream>

namespace Maptorn::Cli
{
FProgressLine::FProgressLine(std::ostream& InOut, bool bInTerminal, std::function<FClock::time_point()> InNow)
    : Out(InOut)
    , NowFunction(std::move(InNow))
    , bTerminal(bInTerminal)
{
    StepStarted = Now();
}

FProgressLine::~FProgressLine()
{
    End();
}

void FProgressLine::Show(const std::string& Step, float Fraction, int64 DoneBytes, int64 TotalBytes)
{
    if (Step != LastStep)
    {
        if (bTerminal && bShown)
        {
            Out << "\n";
        }
        LastStep = Step;
        LastTenth = -1;
        StepStarted = Now();
    }
    const FClock::time_point Time = Now();
    const int Percent = static_cast<int>(std::clamp(Fraction, 0.0f, 1.0f) * 100.0f);
    std::string Line = Printf("%s %3d%%", Step.c_str(), Percent);
    if (DoneBytes >= 0 && TotalBytes > 0)
    {
        Line += "  " + FormatFileSize(DoneBytes) + " / " + FormatFileSize(TotalBytes);
        const double Seconds = std::chrono::duration<double>(Time - StepStarted).count();
        if (Seconds > 0.2)
        {
            Line += "  " + FormatFileSize(static_cast<int64>(static_cast<double>(DoneBytes) / Seconds)) + "/s";
        }
    }
    if (bTerminal)
    {
        Out << "\r" << Line << "\x1b[K" << std::flush;
        bShown = true;
    }
    else if (Percent / 10 != LastTenth || Time - LastPlainLine >= PlainLineInterval)
    {
        LastTenth = Percent / 10;
        LastPlainLine = Time;
        Out << Line << "\n" << std::flush;
    }
}

void FProgressLine::End()
{
    if (bTerminal && bShown)
    {
        Out << "\n" << std::flush;
    }
    bShown = false;
    LastStep.clear();
}
}
