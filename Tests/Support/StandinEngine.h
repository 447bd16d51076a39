#pragma once

#include <string>
#include <vector>

namespace Maptorn::Testing
{
// The stand-in engine installed under an engine folder, seen from a test: steer each
// tool through the control file, read back every command line the tools received.
class FStandinEngine
{
public:
    struct FStandinCall
    {
        std::string Tool; // "UnrealEditor", "UnrealPak" or "RunUAT"
        std::vector<std::string> Argv;
    };

    // EngineRoot is the folder that holds Engine/.
    explicit FStandinEngine(std::string EngineRoot);

    // Every run so far, oldest first; empty when no tool has run.
    std::vector<FStandinCall> ReadRecord() const;

    // Rewrites the tool's control section, keeping every other section as it was.
    void SetBehaviour(const std::string& Tool, int ExitCode, bool bSkipOutputs, const std::string& StdOut = "",
        const std::string& StdErr = "");

    // Removes the execute bits of the tool's Windows-named copy and its native copy, so starting it fails.
    void MakeUnstartable(const std::string& Tool);

    // The Windows-named copy the core is given: Win64/UnrealEditor.exe, Win64/UnrealPak.exe or BatchFiles/RunUAT.bat.
    std::string ToolPath(const std::string& Tool) const;
    // The native copy: Linux/UnrealEditor, Linux/UnrealPak or BatchFiles/RunUAT.sh.
    std::string NativeToolPath(const std::string& Tool) const;

private:
    std::string ControlFilePath() const;
    std::string RecordFilePath() const;

    std::string EngineRoot;
};
}
