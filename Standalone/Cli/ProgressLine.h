#pragma once

#include "Common/CoreTypes.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>

namespace Maptorn::Cli
{
// One live progress line for long work: rewritten in place on a terminal; elsewhere (logs, CI)
// printed as whole lines, never a carriage return: at each step's start, every tenth of the way
// and at least every 5 seconds while the work goes on.
class FProgressLine
{
public:
    using FClock = std::chrono::steady_clock;

    // Now answers the time; the steady clock when empty (tests hand in their own).
    FProgressLine(std::ostream& InOut, bool bInTerminal, std::function<FClock::time_point()> InNow = {});
    ~FProgressLine();

    // Step names the work ("Uploading 1/5", "Downloading UGC1006"); Fraction is 0..1. With bytes
    // known the line also shows them and the rate.
    void Show(const std::string& Step, float Fraction, int64 DoneBytes = -1, int64 TotalBytes = -1);
    // Ends the line in place (a terminal needs its newline).
    void End();

    static constexpr std::chrono::seconds PlainLineInterval{5};

private:
    FClock::time_point Now() const { return NowFunction ? NowFunction() : FClock::now(); }

    std::ostream& Out;
    std::function<FClock::time_point()> NowFunction;
    bool bTerminal = false;
    bool bShown = false;
    std::string LastStep;
    int LastTenth = -1;
    FClock::time_point StepStarted;
    FClock::time_point LastPlainLine;
};
}
