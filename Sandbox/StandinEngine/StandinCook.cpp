// The editor started as a cook commandlet: leaves cooked packages where a real cook puts them,
// below <Project>/Saved/Cooked/<Platform>/, so whatever packs or stages them next finds real files.

#include "StandinTools.h"

#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

namespace Maptorn::Standin
{
namespace
{
// A package location split at its mount point: /UGC12/Maps/Arena → {"UGC12", "Maps/Arena"}.
struct FContentLocation
{
    std::string Mount;
    std::string RelativePath;
};

FContentLocation SplitContentPath(std::string Path)
{
    for (char& Character : Path)
    {
        Character = Character == '\\' ? '/' : Character;
    }
    if (Path.empty() || Path.front() != '/')
    {
        // A bare map name is looked up in the project's own content, as the cooker does.
        return {"Game", Path};
    }
    while (!Path.empty() && Path.front() == '/')
    {
        Path.erase(0, 1);
    }
    while (!Path.empty() && Path.back() == '/')
    {
        Path.pop_back();
    }
    const std::size_t Slash = Path.find('/');
    if (Slash == std::string::npos)
    {
        return {Path, ""};
    }
    return {Path.substr(0, Slash), Path.substr(Slash + 1)};
}

// Maps may come as object paths (/UGC12/Maps/Arena.Arena) or with their file extension.
std::string PackageName(std::string RelativePath)
{
    const std::size_t LastSlash = RelativePath.rfind('/');
    const std::size_t Dot = RelativePath.find('.', LastSlash == std::string::npos ? 0 : LastSlash);
    if (Dot != std::string::npos)
    {
        RelativePath.erase(Dot);
    }
    return RelativePath;
}

// -cookdir= also takes a folder on disk; its mount is the folder that holds Content/, and the
// project's own Content/ is /Game/.
FContentLocation LocateCookDir(const std::string& CookDir, const fs::path& ProjectDir)
{
    std::error_code Error;
    if (!fs::is_directory(CookDir, Error))
    {
        return SplitContentPath(CookDir);
    }
    const fs::path Folder = fs::path(CookDir).lexically_normal();
    std::vector<fs::path> Parts(Folder.begin(), Folder.end());
    while (!Parts.empty() && Parts.back().empty())
    {
        Parts.pop_back();
    }
    for (std::size_t Index = Parts.size(); Index-- > 1;)
    {
        if (Parts[Index] != "Content")
        {
            continue;
        }
        fs::path Owner;
        for (std::size_t Part = 0; Part < Index; ++Part)
        {
            Owner /= Parts[Part];
        }
        std::string Rest;
        for (std::size_t Part = Index + 1; Part < Parts.size(); ++Part)
        {
            Rest = JoinPath(Rest, Parts[Part].generic_string());
        }
        const bool bProjectContent = fs::equivalent(Owner, ProjectDir, Error);
        return {bProjectContent ? "Game" : Parts[Index - 1].string(), Rest};
    }
    return SplitContentPath(CookDir);
}

class FCooker
{
public:
    FCooker(const FToolRun& InRun, const fs::path& ProjectFile)
        : Run(InRun)
        , ProjectName(ProjectFile.stem().string())
        , CookedRoot(JoinPath(ProjectFile.parent_path().generic_string(), "Saved/Cooked"))
    {
    }

    // Writes one package (a .umap or .uasset and its .uexp) for one platform.
    bool CookPackage(const std::string& Platform, const FContentLocation& Location, const std::string& FileName,
        const std::string& Extension)
    {
        const std::string MountFolder = EqualsIgnoreCase(Location.Mount, "Game") ? ProjectName : Location.Mount;
        const std::string Base =
            JoinPath(JoinPath(JoinPath(JoinPath(CookedRoot, Platform), MountFolder), "Content"), Location.RelativePath);
        const std::string Stem = JoinPath(Base, FileName);
        return WriteCooked(Platform, Stem + Extension, 250, 300) && WriteCooked(Platform, Stem + ".uexp", 400, 500);
    }

    bool WriteRegistry(const std::string& Platform)
    {
        const std::string Path =
            JoinPath(JoinPath(JoinPath(CookedRoot, Platform), ProjectName), "Metadata/DevelopmentAssetRegistry.bin");
        return WriteCooked(Platform, Path, 300, 200);
    }

private:
    bool WriteCooked(const std::string& Platform, const std::string& Path, std::size_t Minimum, std::size_t Spread)
    {
        if (Run.bSkipOutputs)
        {
            return true;
        }
        const std::string Label = Path.substr(CookedRoot.size() + 1);
        std::string Error;
        if (!WriteOutputFile(Path, MakeFillerText(Label, SizeForLabel(Label, Minimum, Spread)), Error))
        {
            std::cerr << "LogCook: Error: " << Platform << ": " << Error << "\n";
            return false;
        }
        return true;
    }

    const FToolRun& Run;
    std::string ProjectName;
    std::string CookedRoot;
};
}

int RunEditorCook(const FToolRun& Run)
{
    const std::vector<std::string>& Argv = Run.Argv;
    std::error_code Error;
    if (Argv.size() < 2 || !EndsWithIgnoreCase(Argv[1], ".uproject") || !fs::is_regular_file(Argv[1], Error))
    {
        std::cerr << "LogInit: Error: The first argument must be an existing .uproject file.\n";
        return 1;
    }
    const std::optional<std::string> Commandlet = FindValue(Argv, "run");
    if (!Commandlet || !EqualsIgnoreCase(*Commandlet, "cook"))
    {
        std::cerr << "LogInit: Error: The stand-in editor only runs the cook commandlet (-run=cook).\n";
        return 1;
    }
    const std::vector<std::string> Platforms = SplitString(FindValue(Argv, "targetplatform").value_or(""), '+');
    if (Platforms.empty())
    {
        std::cerr << "LogCook: Error: No target platform given (-targetplatform=).\n";
        return 1;
    }

    const fs::path ProjectFile(Argv[1]);
    std::vector<std::pair<std::string, FContentLocation>> Maps;
    for (const std::string& MapList : FindAllValues(Argv, "map"))
    {
        for (const std::string& Map : SplitString(MapList, '+'))
        {
            FContentLocation Location = SplitContentPath(Map);
            Location.RelativePath = PackageName(Location.RelativePath);
            Maps.emplace_back(Map, Location);
        }
    }
    std::vector<std::pair<std::string, FContentLocation>> CookDirs;
    for (const std::string& CookDir : FindAllValues(Argv, "cookdir"))
    {
        CookDirs.emplace_back(CookDir, LocateCookDir(CookDir, ProjectFile.parent_path()));
    }

    std::cout << "LogCookCommandlet: Display: Cook by the book for " << ProjectFile.stem().string() << "\n";
    FCooker Cooker(Run, ProjectFile);
    std::size_t Packages = 0;
    for (const std::string& Platform : Platforms)
    {
        for (const auto& [Map, Location] : Maps)
        {
            std::cout << "LogCook: Display: Cooking " << Map << " for " << Platform << "\n";
            FContentLocation Folder{Location.Mount, fs::path(Location.RelativePath).parent_path().generic_string()};
            if (!Cooker.CookPackage(Platform, Folder, fs::path(Location.RelativePath).filename().string(), ".umap"))
            {
                return 1;
            }
            ++Packages;
        }
        for (const auto& [CookDir, Location] : CookDirs)
        {
            std::cout << "LogCook: Display: Cooking directory " << CookDir << " for " << Platform << "\n";
            if (!Cooker.CookPackage(Platform, Location, "Cooked", ".uasset"))
            {
                return 1;
            }
            ++Packages;
        }
        if (!Cooker.WriteRegistry(Platform))
        {
            return 1;
        }
    }
    std::cout << "LogCook: Display: Cooked packages " << Packages << " Packages Remain 0 Total " << Packages << "\n"
              << "LogCook: Display: Done!\n"
              << "LogInit: Display: Success - 0 error(s), 0 warning(s)\n";
    return 0;
}
}
