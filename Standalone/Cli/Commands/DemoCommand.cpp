#include "Cli/Commands/Commands.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "ModioService/ModioSandbox.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>
#include <sstream>

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
    std::string Why;   // one line for a newcomer: what the step shows
    std::function<int(const FCommandContext&)> Run;
};

// What the steps learn from each other.
struct FDemoState
{
    std::string ModId;       // the map mod the demo creates
    std::string GameInstall; // the local game folder it stages into
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

// Creates the mod, reading its id from the command's JSON answer, which is echoed as it is.
int CreateDemoMod(const FCommandContext& Context, FDemoState& State)
{
    std::ostringstream Answer;
    const FCommandContext Quiet{Context.Options, Answer, Context.Err, Context.In, false};
    const int ExitCode = RunCreate(Quiet, {"Demo Harbour", "A harbour to race boats in, made by the maptorn demo.", "", "map", true});
    Context.Out << Answer.str();
    const nlohmann::json Result = nlohmann::json::parse(Answer.str(), nullptr, false);
    if (ExitCode == ExitSuccess && Result.is_object() && Result.contains("mod_id"))
    {
        State.ModId = Result["mod_id"].get<std::string>();
    }
    return State.ModId.empty() ? ExitFailed : ExitCode;
}

std::vector<FDemoStep> MakeSteps(FDemoState& State, const Sandbox::FModioSandbox& Service)
{
    const auto Map = [&State] { return "/UGC" + State.ModId + "/Maps/Harbour.Harbour"; };
    const auto QuestMap = [&State] { return "/UGC" + State.ModId + "/Maps/Harbour_Quest.Harbour_Quest"; };
    return {
        {"maptorn env", "Where the workshop finds the project, the engine, the game and mod.io.",
            [](const FCommandContext& C) { return RunEnv(C); }},
        {"maptorn login --email modder@example.com", "mod.io mails a 5-character security code (the sandbox keeps it for the demo).",
            [](const FCommandContext& C) { return RunLogin(C, DemoEmail, ""); }},
        {"maptorn login --code <the code from the e-mail>", "The code is exchanged for a login, stored owner-only in your config folder.",
            [&Service](const FCommandContext& C) { return RunLogin(C, "", Service.LastCodeFor(DemoEmail)); }},
        {"maptorn whoami", "The stored login is checked again, as the editor does at start-up.",
            [](const FCommandContext& C) { return RunWhoAmI(C, false); }},
        {"maptorn create --name \"Demo Harbour\" --type map --json", "A new mod on mod.io, and its content plug-in UGC<id> in the project.",
            [&State](const FCommandContext& C) { return CreateDemoMod(C, State); }},
        {"maptorn plugin set <id> --map … --quest-map …", "The definition names the maps to package (the editor's details panel does this).",
            [&State, Map, QuestMap](const FCommandContext& C) { return RunPluginSet(C, {State.ModId, Map(), QuestMap(), std::nullopt}); }},
        {"maptorn upload <id> --windows --android --changelog \"First release\"",
            "Packaged per platform by the (stand-in) automation tool, then one file per platform goes to mod.io, a second apart.",
            [&State](const FCommandContext& C) { return RunUpload(C, {State.ModId, true, true, false, "First release", "", false}); }},
        {"maptorn stage <id> --stage-dir <sample>/GameInstall", "The Windows build staged into a local game install, to try it before publishing.",
            [&State](const FCommandContext& C) {
                FileSystem::CreateDirectoryTree(State.GameInstall);
                return RunUpload(C, {State.ModId, false, false, false, "", State.GameInstall, false});
            }},
        {"maptorn mods", "Your mods whose plug-in is in this project: the ones you can upload from here.",
            [](const FCommandContext& C) { return RunMods(C, false); }},
        {"maptorn browse --sort name", "Source plug-ins other modders share on mod.io.",
            [](const FCommandContext& C) { return RunBrowse(C, {"", "name", 1, false}); }},
        {"maptorn install 1006", "One of them downloaded in ranges, extracted safely and installed into the project's plug-ins.",
            [](const FCommandContext& C) { return RunInstall(C, "1006"); }},
        {"maptorn logout", "The stored login is deleted.",
            [](const FCommandContext& C) { return RunLogout(C); }},
    };
}

// The mod's files as mod.io lists them.
void PrintUploadedFiles(std::ostream& Out, const Sandbox::FModioSandbox& Service, const std::string& ModId)
{
    httplib::Client Client("127.0.0.1", Service.GetPort());
    const auto Listed = Client.Get("/v1/games/1/mods/" + ModId + "/files?api_key=" + std::string(DemoApiKey));
    const nlohmann::json Files = Listed ? nlohmann::json::parse(Listed->body, nullptr, false) : nlohmann::json();
    if (!Files.is_object() || !Files.contains("data"))
    {
        return;
    }
    for (const nlohmann::json& File : Files["data"])
    {
        std::string Platforms;
        for (const nlohmann::json& Platform : File.value("platforms", nlohmann::json::array()))
        {
            Platforms += (Platforms.empty() ? "" : ", ") + Platform.value("platform", std::string());
        }
        Out << "    file " << File.value("id", 0) << ": " << File.value("filename", std::string()) << ", version "
            << File.value("version", std::string()) << ", " << File.value("filesize", 0) << " bytes, for " << Platforms << "\n";
    }
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

    FDemoState State;
    State.GameInstall = Layout.Root + "/GameInstall";
    const std::vector<FDemoStep> Steps = MakeSteps(State, Service);
    int Succeeded = 0;
    for (std::size_t Index = 0; Index < Steps.size(); ++Index)
    {
        Out << "\n==> Step " << Index + 1 << "/" << Steps.size() << ": " << Steps[Index].Title << "\n";
        Out << "    (" << Steps[Index].Why << ")\n";
        const int ExitCode = Steps[Index].Run(DemoContext);
        Out << (ExitCode == ExitSuccess ? "    ok\n" : "    FAILED (exit code " + std::to_string(ExitCode) + ")\n");
        Succeeded += ExitCode == ExitSuccess ? 1 : 0;
    }
    if (!State.ModId.empty())
    {
        Out << "\n==> On mod.io (the sandbox), mod " << State.ModId << " now has these files:\n";
        PrintUploadedFiles(Out, Service, State.ModId);
    }
    Service.Stop();

    Out << "\n==> Where the files are\n";
    Out << "    the project:            " << Layout.ProjectDir << "\n";
    Out << "    your new mod's plug-in: " << Paths::Combine(Layout.ProjectDir, "Plugins", "UGC" + State.ModId) << "\n";
    Out << "    the installed plug-in:  " << Paths::Combine(Layout.ProjectDir, "Plugins", "UGC1006") << "\n";
    Out << "    packaged builds:        " << Paths::Combine(Layout.ProjectDir, "Saved", "Cooked", "Workshop") << "\n";
    Out << "    the staged game:        " << State.GameInstall << "\n";
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
