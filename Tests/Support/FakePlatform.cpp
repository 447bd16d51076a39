#include "Support/FakePlatform.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <cstdlib>

namespace Maptorn::Testing
{
void FRecordingLog::Log(const char* Category, ELogVerbosity Verbosity, const std::string& Message)
{
    Lines.push_back({Category, Verbosity, Message});
}

bool FRecordingLog::Has(const std::string& Category, ELogVerbosity Verbosity, const std::string& Message) const
{
    return std::any_of(Lines.begin(), Lines.end(), [&](const FLogLine& Line) {
        return Line.Category == Category && Line.Verbosity == Verbosity && Line.Message == Message;
    });
}

int FRecordingLog::CountMessage(const std::string& Message) const
{
    return static_cast<int>(std::count_if(Lines.begin(), Lines.end(), [&](const FLogLine& Line) { return Line.Message == Message; }));
}

EAppReturnType FScriptedDialogs::MessageBox(EAppMsgType Type, const std::string& Text, const std::string& Caption)
{
    MessageBoxes.push_back({Type, Text, Caption});
    if (Type == EAppMsgType::Ok)
    {
        return EAppReturnType::Ok;
    }
    if (Answers.empty())
    {
        return EAppReturnType::Yes;
    }
    const EAppReturnType Answer = Answers.front();
    Answers.pop_front();
    return Answer;
}

std::optional<std::string> FScriptedDialogs::OpenFileDialog(const std::string& Title, const std::string& DefaultPath, const std::string& FileTypes)
{
    FileDialogs.push_back({Title, DefaultPath, FileTypes});
    return NextPickedPath;
}

std::optional<std::string> FScriptedDialogs::OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath)
{
    FileDialogs.push_back({Title, DefaultPath, {}});
    return NextPickedPath;
}

FMemoryConfigCache::FSections& FMemoryConfigCache::Load(const std::string& File)
{
    auto Found = Cached.find(File);
    if (Found == Cached.end())
    {
        Found = Cached.emplace(File, Disk[File]).first;
    }
    return Found->second;
}

std::optional<std::string> FMemoryConfigCache::GetString(const std::string& Section, const std::string& Key, const std::string& File)
{
    FSections& Sections = Load(File);
    const auto SectionIt = Sections.find(Section);
    if (SectionIt == Sections.end())
    {
        return std::nullopt;
    }
    const auto KeyIt = SectionIt->second.find(Key);
    if (KeyIt == SectionIt->second.end())
    {
        return std::nullopt;
    }
    return KeyIt->second;
}

std::optional<bool> FMemoryConfigCache::GetBool(const std::string& Section, const std::string& Key, const std::string& File)
{
    const std::optional<std::string> Value = GetString(Section, Key, File);
    if (!Value)
    {
        return std::nullopt;
    }
    return EqualsIgnoreCase(*Value, "True") || EqualsIgnoreCase(*Value, "Yes") || EqualsIgnoreCase(*Value, "On") || std::atoi(Value->c_str()) != 0;
}

void FMemoryConfigCache::SetString(const std::string& Section, const std::string& Key, const std::string& Value, const std::string& File)
{
    Load(File)[Section][Key] = Value;
}

void FMemoryConfigCache::SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File)
{
    SetString(Section, Key, bValue ? "True" : "False", File);
}

bool FMemoryConfigCache::Flush(bool bRemoveFromCache, const std::string& File)
{
    ++FlushCount;
    Disk[File] = Load(File);
    if (bRemoveFromCache)
    {
        Cached.erase(File);
    }
    return true;
}

std::optional<FPluginInfo> FFakeEngine::FindPlugin(const std::string& Name)
{
    for (const FPluginInfo& Plugin : Plugins)
    {
        if (EqualsIgnoreCase(Plugin.Name, Name))
        {
            return Plugin;
        }
    }
    return std::nullopt;
}

bool FFakeEngine::CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir, const std::string& TemplateDir,
    const FPluginDescriptor& Descriptor, std::string& OutFailReason)
{
    CreatedPlugins.push_back({Name, PluginsParentDir, TemplateDir, Descriptor});
    if (bFailPluginCreation || FindPlugin(Name))
    {
        OutFailReason = "refused by the test";
        return false;
    }
    FPluginInfo Plugin;
    Plugin.Name = Name;
    Plugin.FriendlyName = Descriptor.FriendlyName;
    Plugin.bCanContainContent = Descriptor.bCanContainContent;
    Plugin.bEnabled = true;
    Plugin.BaseDir = PluginsParentDir + Name;
    Plugin.ContentDir = Plugin.BaseDir + "/Content";
    Plugin.DescriptorFileName = Plugin.BaseDir + "/" + Name + ".uplugin";
    Plugin.VersionName = Descriptor.VersionName;
    Plugins.push_back(Plugin);
    return true;
}

std::shared_ptr<FKelvorDefinition> FMemoryDefinitions::LoadObject(const std::string& ObjectPath)
{
    const auto Found = Objects.find(ObjectPath);
    return Found == Objects.end() ? nullptr : Found->second;
}

std::shared_ptr<FKelvorDefinition> FMemoryDefinitions::CreateDefinition(const std::string& PackageName, EModType Class)
{
    return Add(PackageName, Class);
}

std::shared_ptr<FKelvorDefinition> FMemoryDefinitions::Add(const std::string& PackageName, EModType Class)
{
    auto Definition = std::make_shared<FKelvorDefinition>();
    Definition->Class = Class;
    Definition->PackageName = PackageName;
    const std::string ObjectName = PackageName.substr(PackageName.find_last_of('/') + 1);
    Objects[PackageName + "." + ObjectName] = Definition;
    return Definition;
}

bool FMemoryDefinitions::SavePackage(const FKelvorDefinition& Definition)
{
    SavedPackages.push_back(Definition.PackageName);
    return true;
}

bool FRecordingProcesses::ExecProcess(const std::string& Url, const std::string& Params, int32& OutReturnCode, std::string& OutStdOut,
    std::string& OutStdErr)
{
    Calls.emplace_back(Url, Params);
    if (!bStartable || Calls.size() > UnstartableFromCall)
    {
        return false;
    }
    OutReturnCode = ReturnCode;
    OutStdOut = StdOut;
    OutStdErr = StdErr;
    return true;
}

void FManualTasks::AsyncTask(ENamedThreads Thread, std::function<void()> Work)
{
    (Thread == ENamedThreads::GameThread ? GameThreadQueue : BackgroundQueue).push_back(std::move(Work));
}

std::shared_ptr<ITaskHandle> FManualTasks::StartPoolTask(std::function<void()> Work)
{
    auto Handle = std::make_shared<FManualTaskHandle>();
    BackgroundQueue.push_back([Handle, Work = std::move(Work)] {
        Work();
        Handle->bDone = true;
    });
    return Handle;
}

static void Drain(std::deque<std::function<void()>>& Queue)
{
    while (!Queue.empty())
    {
        auto Work = std::move(Queue.front());
        Queue.pop_front();
        Work();
    }
}

void FManualTasks::RunGameThread()
{
    Drain(GameThreadQueue);
}

void FManualTasks::RunBackground()
{
    Drain(BackgroundQueue);
}

bool FNullArchive::ExtractAll(const std::string&, const std::string&, std::string& OutError)
{
    OutError = "no archive support in this test";
    return false;
}

void FFakeModioSession::Complete(const std::string& Call, FOnErrorOnlyDelegate Callback)
{
    Calls.push_back(Call);
    Pending.push_back([Callback = std::move(Callback), Result = NextResult] { Callback(Result); });
}

void FFakeModioSession::InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegate OnInitComplete)
{
    InitOptions = Options;
    Complete("InitializeAsync", std::move(OnInitComplete));
}

FModioErrorCode FFakeModioSession::EnableModManagement(FOnModManagementDelegate)
{
    Calls.push_back("EnableModManagement");
    return {};
}

void FFakeModioSession::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegate Callback)
{
    Complete("VerifyUserAuthenticationAsync", std::move(Callback));
}

void FFakeModioSession::RequestEmailAuthCodeAsync(const std::string& EmailAddress, FOnErrorOnlyDelegate Callback)
{
    Complete("RequestEmailAuthCodeAsync:" + EmailAddress, std::move(Callback));
}

void FFakeModioSession::AuthenticateUserEmailAsync(const std::string& AuthCode, FOnErrorOnlyDelegate Callback)
{
    Complete("AuthenticateUserEmailAsync:" + AuthCode, std::move(Callback));
}

void FFakeModioSession::ClearUserDataAsync(FOnErrorOnlyDelegate Callback)
{
    Complete("ClearUserDataAsync", std::move(Callback));
}

void FFakeModioSession::ShutdownAsync(FOnErrorOnlyDelegate Callback)
{
    Complete("ShutdownAsync", std::move(Callback));
}

void FFakeModioSession::RunPendingHandlers()
{
    ++PumpCount;
    Drain(Pending);
}

void FFakeModioSession::SubmitNewModAsync(FModioModCreationHandle, const FModioCreateModParams& Params, FOnSubmitNewModDelegate Callback)
{
    Calls.push_back("SubmitNewModAsync:" + Params.Name);
    CreateModParams.push_back(Params);
    Pending.push_back([Callback = std::move(Callback), Result = NextResult, Id = NextNewModId] { Callback(Result, Result ? std::nullopt : Id); });
}

void FFakeModioSession::SubmitModChangesAsync(FModioModID Mod, const FModioEditModParams& Params, FOnSubmitModChangesDelegate Callback)
{
    Calls.push_back("SubmitModChangesAsync:" + std::to_string(Mod));
    EditModParams.push_back(Params);
    Pending.push_back([Callback = std::move(Callback), Result = NextResult] { Callback(Result, std::nullopt); });
}

void FFakeModioSession::SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams& Params)
{
    Calls.push_back("SubmitNewModFileForMod:" + std::to_string(Mod));
    ModFileParams.push_back(Params);
}
}
