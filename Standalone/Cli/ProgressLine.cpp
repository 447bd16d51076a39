#include "Cli/ProgressLine.h"

#include "Common/ByteFormat.h"
#include "Common/StringUtil.h"

#include <algorithm>
#include <ostream>

namespace Maptorn::Cli
{
FProgressLine::FProgressLine(std::ostream& InOut, bool bInTerminal)
    : Out(InOut)
    , bTerminal(bInTerminal)
{
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
        StepStarted = FClock::now();
    }
    const int Percent = static_cast<int>(std::clamp(Fraction, 0.0f, 1.0f) * 100.0f);
    std::string Line = Printf("%s %3d%%", Step.c_str(), Percent);
    if (DoneBytes >= 0 && TotalBytes > 0)
    {
        Line += "  " + FormatFileSize(DoneBytes) + " / " + FormatFileSize(TotalBytes);
        const double Seconds = std::chrono::duration<double>(FClock::now() - StepStarted).count();
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
    else if (Percent / 10 != LastTenth)
    {
        LastTenth = Percent / 10;
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
