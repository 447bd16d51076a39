#pragma once

#include "Common/CoreTypes.h"

#include <chrono>
#include <iosfwd>
#include <string>

namespace Maptorn::Cli
{
// One live progress line for long work: rewritten in place on a terminal; elsewhere (logs, CI)
// printed as plain lines, once per step and every tenth of the way.
class FProgressLine
{
public:
    FProgressLine(std::ostream& InOut, bool bInTerminal);
    ~FProgressLine();

    // Step names the work ("Uploading 1/5", "Downloading UGC1006"); Fraction is 0..1. With bytes
    // known the line also shows them and the rate.
    void Show(const std::string& Step, float Fraction, int64 DoneBytes = -1, int64 TotalBytes = -1);
    // Ends the line in place (a terminal needs its newline).
    void End();

private:
    using FClock = std::chrono::steady_clock;

    std::ostream& Out;
    bool bTerminal = false;
    bool bShown = false;
    std::string LastStep;
    int LastTenth = -1;
    FClock::time_point StepStarted = FClock::now();
};
}
