#include "Cli/Commands/Commands.h"

#include "Common/FileHelper.h"
#include "Sample/StandinInstall.h"

#include <filesystem>
#include <ostream>

namespace fs = std::filesystem;

namespace Maptorn::Cli
{
Sample::FSampleOptions SampleOptionsWithStandin()
{
    std::error_code Error;
    Sample::FSampleOptions Options;
    Options.StandinBinary = Sample::FindStandinBinaryBeside(fs::read_symlink("/proc/self/exe", Error).generic_string());
    return Options;
}

int RunSampleCreate(const FCommandContext& Context, const std::string& Folder)
{
    if (FileSystem::DirectoryExists(Folder) && !fs::is_empty(Folder))
    {
        return Fail(Context, ExitBadInput, "The folder " + Folder + " is not empty; name a new or empty folder.");
    }
    const Sample::FSampleLayout Layout = Sample::CreateSampleLayout(Folder, SampleOptionsWithStandin());
    if (!Layout.bCreated)
    {
        return Fail(Context, ExitFailed, "Could not lay out the sample: " + Layout.FailReason);
    }
    Context.Out << "Sample project: " << Layout.ProjectFile << "\n"
                << "Engine folder:  " << Layout.EngineRoot << "\n"
                << "User settings:  " << Layout.UserSettingsDir << "\n"
                << "Try: maptorn --project " << Layout.ProjectDir << " --engine " << Layout.EngineRoot
                << " --user-settings-dir " << Layout.UserSettingsDir << " env\n";
    return ExitSuccess;
}
}
