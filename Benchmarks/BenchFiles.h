#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Maptorn::Bench
{
// The size of the file a transfer benchmark moves: --size-mib N, else MAPTORN_BENCH_SIZE_MIB,
// else 1 GiB. Zero with a message on stderr when the value is unusable.
std::uint64_t TransferSizeBytes(int ArgCount, char** Args);

// A fresh folder under the system's temporary folder, removed with everything in it.
class FBenchFolder
{
public:
    explicit FBenchFolder(const std::string& Prefix);
    ~FBenchFolder();
    FBenchFolder(const FBenchFolder&) = delete;
    FBenchFolder& operator=(const FBenchFolder&) = delete;

    // Empty when the folder could not be made.
    const std::string& Path() const { return Root; }

private:
    std::string Root;
};

// Writes a stored (uncompressed) ZIP archive holding one entry of EntrySize pseudo-random
// bytes, without ever holding more than a small buffer of it. Entries stay under 4 GiB, so the
// classic format does without ZIP64 records.
bool WriteStoredZip(const std::string& ArchivePath, const std::string& EntryName, std::uint64_t EntrySize);

// The process's peak resident set so far (getrusage), in MiB; children are not counted.
double PeakRssMiB();

// CPU time (user and system) spent so far by this process, or by its children that have ended:
// a measure that other work on the machine does not inflate the way it inflates wall time.
double OwnCpuSeconds();
double ChildrenCpuSeconds();

// One run of a side-by-side comparison: ours first when Run is even, theirs first when it is
// odd, dirty pages flushed before each, so that neither side pays for the other's writes.
void TakeTurns(int Run, const std::function<void()>& Ours, const std::function<void()>& Theirs);

double Median(std::vector<double> Values);

// Decimal megabytes per second, as download tools print them.
double MegabytesPerSecond(std::uint64_t Bytes, double Seconds);

// The last word of a benchmark's summary: whether the ratio reached its target and the peak
// memory stayed under its limit.
const char* Verdict(double Ratio, double TargetRatio, double PeakRssMiB, double RssLimitMiB);

// Says why a benchmark could not run ("<name> benchmark: <message>" on stderr); answers 1, its
// exit code.
int Failure(const char* Benchmark, const std::string& Message);
}
