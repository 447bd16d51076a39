#include "Common/Paths.h"

#include <vector>

namespace Maptorn::Paths
{
std::string Combine(std::initializer_list<std::string_view> Parts)
{
    std::string Result;
    bool bFirst = true;
    for (std::string_view Part : Parts)
    {
        if (bFirst)
        {
            Result = Part;
            bFirst = false;
            continue;
        }
        const bool bLeftEndsInSeparator = !Result.empty() && (Result.back() == '/' || Result.back() == '\\');
        const bool bRightStartsWithSlash = !Part.empty() && Part.front() == '/';
        if (!Result.empty() && !bLeftEndsInSeparator && !bRightStartsWithSlash)
        {
            Result += '/';
        }
        Result += Part;
    }
    return Result;
}

bool IsRelative(std::string_view Path)
{
    const bool bRooted = !Path.empty() && (Path.front() == '/' || Path.front() == '\\');
    const bool bDrive = Path.size() >= 2 && Path[1] == ':';
    return !bRooted && !bDrive;
}

std::string ConvertRelativePathToFull(std::string_view BaseDir, std::string_view Path)
{
    std::string Full = IsRelative(Path) ? Combine(BaseDir, Path) : std::string(Path);
    for (char& C : Full)
    {
        if (C == '\\')
        {
            C = '/';
        }
    }

    // Split keeping the root ("/" or "C:") apart so that ".." never climbs above it.
    std::string Root;
    std::string_view Rest = Full;
    if (Rest.size() >= 2 && Rest[1] == ':')
    {
        Root = std::string(Rest.substr(0, 2));
        Rest.remove_prefix(2);
    }
    if (!Rest.empty() && Rest.front() == '/')
    {
        Root += '/';
        Rest.remove_prefix(1);
    }
    const bool bTrailingSlash = !Rest.empty() && Rest.back() == '/';

    std::vector<std::string_view> Segments;
    while (!Rest.empty())
    {
        const std::size_t Slash = Rest.find('/');
        const std::string_view Segment = Rest.substr(0, Slash);
        Rest = Slash == std::string_view::npos ? std::string_view() : Rest.substr(Slash + 1);
        if (Segment.empty() || Segment == ".")
        {
            continue;
        }
        if (Segment == ".." && !Segments.empty() && Segments.back() != "..")
        {
            Segments.pop_back();
            continue;
        }
        if (Segment == ".." && !Root.empty())
        {
            continue;
        }
        Segments.push_back(Segment);
    }

    std::string Result = Root;
    for (std::size_t Index = 0; Index < Segments.size(); ++Index)
    {
        if (Index > 0)
        {
            Result += '/';
        }
        Result += Segments[Index];
    }
    if (bTrailingSlash && !Segments.empty())
    {
        Result += '/';
    }
    return Result;
}

static std::size_t LastSeparator(std::string_view Path)
{
    return Path.find_last_of("/\\");
}

std::string GetCleanFilename(std::string_view Path)
{
    const std::size_t Slash = LastSeparator(Path);
    return std::string(Slash == std::string_view::npos ? Path : Path.substr(Slash + 1));
}

std::string GetBaseFilename(std::string_view Path)
{
    std::string Clean = GetCleanFilename(Path);
    const std::size_t Dot = Clean.find_last_of('.');
    if (Dot != std::string::npos)
    {
        Clean.resize(Dot);
    }
    return Clean;
}

std::string GetPath(std::string_view Path)
{
    const std::size_t Slash = LastSeparator(Path);
    return Slash == std::string_view::npos ? std::string() : std::string(Path.substr(0, Slash));
}

std::string MakeValidFileName(std::string_view Name, char Replacement)
{
    static constexpr std::string_view Invalid = "/?:&\\*\"<>|%#@^`";
    std::string Result;
    Result.reserve(Name.size());
    for (char C : Name)
    {
        if (Invalid.find(C) == std::string_view::npos)
        {
            Result += C;
        }
        else if (Replacement != '\0')
        {
            Result += Replacement;
        }
    }
    return Result;
}
}
