#include "Cli/Commands/Commands.h"

#include "Common/FileHelper.h"
#include "ModioService/ModioSandbox.h"

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>

namespace fs = std::filesystem;

namespace Maptorn::Cli
{
namespace
{
constexpr const char* DemoApiKey = "0123456789abcdef0123456789abcdef";
constexpr const char* DemoEmail = "modder@example.com";

struct FDemoStep
{
    std::string Title;
    std::function<int(const FCommandContext&)> Run;
};

std::string MakeDemoFolder()
{
    std::random_device Random;
    std::error_code Error;
    return (fs::temp_directory_path(Error) / ("maptorn-demo-" + std::to_string(Random()))).generic_string();
}

void PrintTree(std::ostream& Out, const std::string& Root)
{
    for (const std::string& File : FileSystem::ListFilesRecursively(Root))
    {
        Out << "    " << fs::path(File).lexically_relative(Root).generic_string() << "\n";
    }
}

std::vector<FDemoStep> MakeSteps(const Sample::FSampleLayout& Layout, const Sandbox::FModioSandbox& Service)
{
    const std::string GameInstall = Layout.Root + "/GameInstall";
    return {
        {"maptorn env", [](const FCommandContext& C) { return RunEnv(C); }},
        {"maptorn map create Arena --name \"Demo Arena\"", [](const FCommandContext& C) { return RunMapCreate(C, "Arena", "Demo Arena"); }},
        {"maptorn plugin create 1001 --type map", [](const FCommandContext& C) { return RunPluginCreate(C, "1001", "map"); }},
        {"maptorn plugin create 1002 --type mod", [](const FCommandContext& C) { return RunPluginCreate(C, "1002", "mod"); }},
        {"maptorn cook 1001 --cookdir /UGC1001/", [](const FCommandContext& C) { return RunCook(C, {"1001", "", "/UGC1001/", false}); }},
        {"maptorn pak 1001 --platform Windows", [](const FCommandContext& C) { return RunPak(C, "1001", "Windows", ""); }},
        {"maptorn package 1001 --windows --android", [](const FCommandContext& C) { return RunPackage(C, {"1001", true, true, ""}); }},
        {"maptorn package 1001 --windows --stage-dir <sample>/GameInstall",
            [GameInstall](const FCommandContext& C) {
                FileSystem::CreateDirectoryTree(GameInstall);
                return RunPackage(C, {"1001", true, false, GameInstall});
            }},
        {"maptorn deploy", [](const FCommandContext& C) { return RunDeploy(C, false, false); }},
        {"maptorn login --email modder@example.com", [](const FCommandContext& C) { return RunLogin(C, DemoEmail, ""); }},
        {"maptorn login --code <the code the sandbox mailed>", [&Service](const FCommandContext& C) { return RunLogin(C, "", Service.LastCodeFor(DemoEmail)); }},
        {"maptorn whoami", [](const FCommandContext& C) { return RunWhoAmI(C); }},
        {"maptorn browse --sort name", [](const FCommandContext& C) { return RunBrowse(C, {"", "name", 1, false}); }},
        {"maptorn mods", [](const FCommandContext& C) { return RunMods(C, false); }},
        {"maptorn logout", [](const FCommandContext& C) { return RunLogout(C); }},
        {"maptorn env (again, with the new content)", [](const FCommandContext& C) { return RunEnv(C); }},
    };
}
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
    Sandbox::FModioSandbox Service(Sandbox::FSandboxOptions{0, "", 1, DemoApiKey, true, true});
    std::string Error;
    if (!Service.Start(Error))
    {
        return Fail(Context, ExitFailed, "Could not start the mod.io sandbox: " + Error);
    }
    Out << "==> A mod.io sandbox serves on " << Service.GetBaseUrl() << "\n";
    // The demo's login is kept in the sample, never in the user's own configuration.
    setenv("XDG_CONFIG_HOME", (Root + "/config").c_str(), 1);

    FHostOptions Options = Context.Options;
    Options.Project = Layout.ProjectDir;
    Options.Engine = Layout.EngineRoot;
    Options.UserSettingsDir = Layout.UserSettingsDir;
    Options.ModioBaseUrl = Service.GetBaseUrl();
    Options.ModioGameId = "1";
    Options.ModioApiKey = DemoApiKey;
    const FCommandContext DemoContext{Options, Context.Out, Context.Err, Context.In, false};

    const std::vector<FDemoStep> Steps = MakeSteps(Layout, Service);
    int Succeeded = 0;
    for (std::size_t Index = 0; Index < Steps.size(); ++Index)
    {
        Out << "\n==> Step " << Index + 1 << "/" << Steps.size() << ": " << Steps[Index].Title << "\n";
        const int ExitCode = Steps[Index].Run(DemoContext);
        Out << (ExitCode == ExitSuccess ? "    ok\n" : "    FAILED (exit code " + std::to_string(ExitCode) + ")\n");
        Succeeded += ExitCode == ExitSuccess ? 1 : 0;
    }
    Service.Stop();

    Out << "\n==> Files of the sample project:\n";
    PrintTree(Out, Layout.ProjectDir);
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
