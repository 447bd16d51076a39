#include "Cli/ProjectLocator.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"

#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace Maptorn::Cli
{
namespace
{
std::vector<std::string> ProjectFilesIn(const fs::path& Folder)
{
    std::vector<std::string> Found;
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(Folder.generic_string()))
    {
        if (!Entry.bIsDirectory && fs::path(Entry.Path).extension() == ".uproject")
        {
            Found.push_back(Entry.Path);
        }
    }
    return Found;
}

std::string Absolute(const std::string& Path)
{
    std::error_code Error;
    const fs::path Full = fs::absolute(Path, Error);
    return (Error ? fs::path(Path) : Full).lexically_normal().generic_string();
}

bool PickOne(const std::vector<std::string>& Found, const std::string& Where, std::string& OutProjectFile, std::string& OutError)
{
    if (Found.size() == 1)
    {
        OutProjectFile = Absolute(Found.front());
        return true;
    }
    OutError = "Found " + std::to_string(Found.size()) + " .uproject files in " + Where + "; name one with --project <file>.";
    return false;
}
}

bool LocateProjectFile(const std::string& ProjectArg, std::string& OutProjectFile, std::string& OutError)
{
    if (!ProjectArg.empty())
    {
        if (FileSystem::FileExists(ProjectArg) && fs::path(ProjectArg).extension() == ".uproject")
        {
            OutProjectFile = Absolute(ProjectArg);
            return true;
        }
        if (FileSystem::DirectoryExists(ProjectArg))
        {
            const std::vector<std::string> Found = ProjectFilesIn(ProjectArg);
            if (Found.empty())
            {
                OutError = "No .uproject file in " + ProjectArg + ". Pass the folder of an Unreal project, or its .uproject file.";
                return false;
            }
            return PickOne(Found, ProjectArg, OutProjectFile, OutError);
        }
        OutError = "The project " + ProjectArg + " does not exist. Pass the folder of an Unreal project, or its .uproject file.";
        return false;
    }

    std::error_code Error;
    for (fs::path Folder = fs::current_path(Error); !Error && !Folder.empty(); Folder = Folder.parent_path())
    {
        const std::vector<std::string> Found = ProjectFilesIn(Folder);
        if (!Found.empty())
        {
            return PickOne(Found, Folder.generic_string(), OutProjectFile, OutError);
        }
        if (Folder == Folder.root_path())
        {
            break;
        }
    }
    OutError = "No Unreal project found here or in any parent folder. Run inside a project, or pass --project <folder>.";
    return false;
}

bool LocateEngineRoot(const std::string& EngineArg, std::string& OutEngineRoot, std::string& OutError)
{
    const std::string Root = Absolute(EngineArg);
    if (FileSystem::FileExists(Paths::Combine(Root, "Engine", "Build", "Build.version")))
    {
        OutEngineRoot = Root;
        return true;
    }
    if (Paths::GetCleanFilename(Root) == "Engine" && FileSystem::FileExists(Paths::Combine(Root, "Build", "Build.version")))
    {
        OutEngineRoot = Paths::GetPath(Root);
        return true;
    }
    OutError = EngineArg + " is not an Unreal Engine folder (Engine/Build/Build.version is missing). Pass the folder that holds Engine/.";
    return false;
}
}
