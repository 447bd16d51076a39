#include "Cli/Commands/Commands.h"

#include "Common/FileHelper.h"
#include "Sample/SampleProject.h"
#include "Sample/StandinInstall.h"

#include <filesystem>
#include <ostream>
#include <random>

namespace fs = std::filesystem;

namespace Maptorn::Cli
{
namespace
{
struct FDemoStep
{
    std::string Title;
    std::function<int(const FCommandContext&)> Run;
};

FCommandContext ContextFor(const FCommandContext& Base, FHostOptions& Options, const Sample::FSampleLayout& Layout)
{
    Options = Base.Options;
    Options.Project = Layout.ProjectDir;
    Options.Engine = Layout.EngineRoot;
    Options.UserSettingsDir = Layout.UserSettingsDir;
    return FCommandContext{Options, Base.Out, Base.Err, Base.In, Base.bInteractive};
}

// The stand-in engine tools are built beside this program.
Sample::FSampleOptions SampleOptionsWithStandin()
{
    std::error_code Error;
    Sample::FSampleOptions Options;
    Options.StandinBinary = Sample::FindStandinBinaryBeside(fs::read_symlink("/proc/self/exe", Error).generic_string());
    return Options;
}

std::string MakeDemoFolder()
{
    std::random_device Random;
    std::error_code Error;
    return (fs::temp_directory_path(Error) / ("maptorn-demo-" + std::to_string(Random()))).generic_string();
}

void PrintTree(std::ostream& Out, const std::string& Root, const std::string& Folder)
{
    for (const std::string& File : FileSystem::ListFilesRecursively(Folder))
    {
        Out << "    " << fs::path(File).lexically_relative(Root).generic_string() << "\n";
    }
}
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

int RunDemo(const FCommandContext& Context, const std::string& Folder, bool bKeep)
{
    const std::string Root = Folder.empty() ? MakeDemoFolder() : Folder;
    std::ostream& Out = Context.Out;
    Out << "==> Laying out a sample project and a stand-in engine in " << Root << "\n";
    const Sample::FSampleLayout Layout = Sample::CreateSampleLayout(Root, SampleOptionsWithStandin());
    if (!Layout.bCreated)
    {
        return Fail(Context, ExitFailed, "Could not lay out the sample: " + Layout.FailReason);
    }

    FHostOptions Options;
    const FCommandContext DemoContext = ContextFor(Context, Options, Layout);
    const std::vector<FDemoStep> Steps = {
        {"maptorn env", [](const FCommandContext& C) { return RunEnv(C); }},
        {"maptorn map create Arena --name \"Demo Arena\"", [](const FCommandContext& C) { return RunMapCreate(C, "Arena", "Demo Arena"); }},
        {"maptorn plugin create 1001 --type map", [](const FCommandContext& C) { return RunPluginCreate(C, "1001", "map"); }},
        {"maptorn plugin create 1002 --type mod", [](const FCommandContext& C) { return RunPluginCreate(C, "1002", "mod"); }},
        {"maptorn cook 1001 --cookdir /UGC1001/", [](const FCommandContext& C) { return RunCook(C, {"1001", "", "/UGC1001/", false}); }},
        {"maptorn pak 1001 --platform Windows", [](const FCommandContext& C) { return RunPak(C, "1001", "Windows", ""); }},
        {"maptorn package 1001 --windows --android", [](const FCommandContext& C) { return RunPackage(C, {"1001", true, true, ""}); }},
        {"maptorn package 1001 --windows --stage-dir <sample>/GameInstall",
            [GameInstall = Layout.Root + "/GameInstall"](const FCommandContext& C) {
                FileSystem::CreateDirectoryTree(GameInstall);
                return RunPackage(C, {"1001", true, false, GameInstall});
            }},
        {"maptorn deploy", [](const FCommandContext& C) { return RunDeploy(C, false, false); }},
        {"maptorn env (again, with the new content)", [](const FCommandContext& C) { return RunEnv(C); }},
    };

    int Succeeded = 0;
    for (std::size_t Index = 0; Index < Steps.size(); ++Index)
    {
        Out << "\n==> Step " << Index + 1 << "/" << Steps.size() << ": " << Steps[Index].Title << "\n";
        const int ExitCode = Steps[Index].Run(DemoContext);
        Out << (ExitCode == ExitSuccess ? "    ok\n" : "    FAILED (exit code " + std::to_string(ExitCode) + ")\n");
        Succeeded += ExitCode == ExitSuccess ? 1 : 0;
    }

    Out << "\n==> Files of the sample project:\n";
    PrintTree(Out, Layout.ProjectDir, Layout.ProjectDir);
    if (bKeep)
    {
        Out << "\nThe sample stays in " << Root << "\n";
    }
    else
    {
        FileSystem::DeleteDirectoryRecursively(Root);
        Out << "\nRemoved " << Root << " (use --keep to look around)\n";
    }
    Out << "\nDemo: " << Succeeded << " of " << Steps.size() << " steps succeeded.\n";
    return Succeeded == static_cast<int>(Steps.size()) ? ExitSuccess : ExitFailed;
}
}
