#include "Support/SampleProjectPlatform.h"

#include <filesystem>

namespace Maptorn::Testing
{
FSampleProjectPlatform::FSampleProjectPlatform(const std::string& Root, const Sample::FSampleOptions& Options)
    : Layout(Sample::CreateSampleLayout(Root, Options))
{
    const std::string BaseDir = std::filesystem::path(Root).parent_path().generic_string() + "/";
    Engine = std::make_unique<FStandaloneEngine>(FStandaloneEngineSettings{Layout.ProjectFile, Layout.EngineRoot, Layout.UserSettingsDir, BaseDir});
    Definitions = std::make_unique<FJsonDefinitions>(*Engine);
    Platform = std::make_unique<FMaptornPlatform>(FMaptornPlatform{
        Fakes.Log, Fakes.Dialogs, *Engine, *Definitions, Processes, Fakes.Tasks, Fakes.Http, Fakes.Archive, &Fakes.Session});
}

std::string FSampleProjectPlatform::InProject(const std::string& Relative) const
{
    return (std::filesystem::path(Layout.ProjectDir) / Relative).lexically_normal().generic_string();
}
}
