#include "Common/FileHelper.h"

#include "Common/NativePath.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace Maptorn::FileHelper
{
static bool IsPureAscii(const std::string& Text)
{
    for (unsigned char C : Text)
    {
        if (C > 0x7F)
        {
            return false;
        }
    }
    return true;
}

// UTF-8 to UTF-16LE code units; malformed bytes become U+FFFD.
static std::u16string Utf8ToUtf16(const std::string& Text)
{
    std::u16string Out;
    std::size_t Index = 0;
    while (Index < Text.size())
    {
        const unsigned char Lead = static_cast<unsigned char>(Text[Index]);
        char32_t CodePoint = 0xFFFD;
        std::size_t Length = 1;
        if (Lead < 0x80)
        {
            CodePoint = Lead;
        }
        else if ((Lead >> 5) == 0x6)
        {
            Length = 2;
        }
        else if ((Lead >> 4) == 0xE)
        {
            Length = 3;
        }
        else if ((Lead >> 3) == 0x1E)
        {
            Length = 4;
        }
        if (Length > 1)
        {
            if (Index + Length > Text.size())
            {
                Length = 1;
            }
            else
            {
                CodePoint = Lead & (0x7F >> Length);
                for (std::size_t Cont = 1; Cont < Length; ++Cont)
                {
                    CodePoint = (CodePoint << 6) | (static_cast<unsigned char>(Text[Index + Cont]) & 0x3F);
                }
            }
        }
        Index += Length;
        if (CodePoint >= 0x10000)
        {
            CodePoint -= 0x10000;
            Out.push_back(static_cast<char16_t>(0xD800 + (CodePoint >> 10)));
            Out.push_back(static_cast<char16_t>(0xDC00 + (CodePoint & 0x3FF)));
        }
        else
        {
            Out.push_back(static_cast<char16_t>(CodePoint));
        }
    }
    return Out;
}

static void AppendUtf8(std::string& Out, char32_t CodePoint)
{
    if (CodePoint < 0x80)
    {
        Out += static_cast<char>(CodePoint);
    }
    else if (CodePoint < 0x800)
    {
        Out += static_cast<char>(0xC0 | (CodePoint >> 6));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
    else if (CodePoint < 0x10000)
    {
        Out += static_cast<char>(0xE0 | (CodePoint >> 12));
        Out += static_cast<char>(0x80 | ((CodePoint >> 6) & 0x3F));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
    else
    {
        Out += static_cast<char>(0xF0 | (CodePoint >> 18));
        Out += static_cast<char>(0x80 | ((CodePoint >> 12) & 0x3F));
        Out += static_cast<char>(0x80 | ((CodePoint >> 6) & 0x3F));
        Out += static_cast<char>(0x80 | (CodePoint & 0x3F));
    }
}

bool SaveBytesToFile(const uint8* Bytes, std::size_t Size, const std::string& FilePath)
{
    // The engine's file writer makes the folder first; so do we.
    std::error_code Error;
    const fs::path Parent = NativePath::FromUtf8(FilePath).parent_path();
    if (!Parent.empty())
    {
        fs::create_directories(Parent, Error);
    }
    std::ofstream Out(NativePath::FromUtf8(FilePath), std::ios::binary | std::ios::trunc);
    if (!Out)
    {
        return false;
    }
    Out.write(reinterpret_cast<const char*>(Bytes), static_cast<std::streamsize>(Size));
    return static_cast<bool>(Out);
}

bool SaveStringToFile(const std::string& Text, const std::string& FilePath)
{
    if (IsPureAscii(Text))
    {
        return SaveBytesToFile(reinterpret_cast<const uint8*>(Text.data()), Text.size(), FilePath);
    }
    const std::u16string Wide = Utf8ToUtf16(Text);
    std::string Bytes = "\xFF\xFE";
    Bytes.reserve(2 + Wide.size() * 2);
    for (char16_t Unit : Wide)
    {
        Bytes += static_cast<char>(Unit & 0xFF);
        Bytes += static_cast<char>(Unit >> 8);
    }
    return SaveBytesToFile(reinterpret_cast<const uint8*>(Bytes.data()), Bytes.size(), FilePath);
}

std::optional<std::string> LoadFileToString(const std::string& FilePath)
{
    // Reading a folder through a file stream throws; only regular files are read.
    std::error_code Error;
    if (!fs::is_regular_file(NativePath::FromUtf8(FilePath), Error))
    {
        return std::nullopt;
    }
    std::ifstream In(NativePath::FromUtf8(FilePath), std::ios::binary);
    if (!In)
    {
        return std::nullopt;
    }
    std::string Bytes((std::istreambuf_iterator<char>(In)), std::istreambuf_iterator<char>());
    if (Bytes.size() >= 2 && static_cast<unsigned char>(Bytes[0]) == 0xFF && static_cast<unsigned char>(Bytes[1]) == 0xFE)
    {
        std::string Text;
        for (std::size_t Index = 2; Index + 1 < Bytes.size(); Index += 2)
        {
            char32_t Unit = static_cast<unsigned char>(Bytes[Index]) | (static_cast<unsigned char>(Bytes[Index + 1]) << 8);
            if (Unit >= 0xD800 && Unit < 0xDC00 && Index + 3 < Bytes.size())
            {
                const char32_t Low = static_cast<unsigned char>(Bytes[Index + 2]) | (static_cast<unsigned char>(Bytes[Index + 3]) << 8);
                Unit = 0x10000 + ((Unit - 0xD800) << 10) + (Low - 0xDC00);
                Index += 2;
            }
            AppendUtf8(Text, Unit);
        }
        return Text;
    }
    if (Bytes.size() >= 3 && Bytes.compare(0, 3, "\xEF\xBB\xBF") == 0)
    {
        Bytes.erase(0, 3);
    }
    return Bytes;
}

bool LoadFileToStringWithLineVisitor(const std::string& FilePath, const std::function<void(const std::string&)>& Visitor)
{
    const std::optional<std::string> Text = LoadFileToString(FilePath);
    if (!Text)
    {
        return false;
    }
    std::size_t Start = 0;
    while (Start < Text->size())
    {
        std::size_t End = Text->find('\n', Start);
        if (End == std::string::npos)
        {
            End = Text->size();
        }
        std::string Line = Text->substr(Start, End - Start);
        if (!Line.empty() && Line.back() == '\r')
        {
            Line.pop_back();
        }
        Visitor(Line);
        Start = End + 1;
    }
    return true;
}
}

namespace Maptorn::FileSystem
{
bool FileExists(const std::string& Path)
{
    std::error_code Error;
    return fs::is_regular_file(NativePath::FromUtf8(Path), Error);
}

bool DirectoryExists(const std::string& Path)
{
    std::error_code Error;
    return !Path.empty() && fs::is_directory(NativePath::FromUtf8(Path), Error);
}

bool CreateDirectoryTree(const std::string& Path)
{
    std::error_code Error;
    fs::create_directories(NativePath::FromUtf8(Path), Error);
    return DirectoryExists(Path);
}

bool DeleteFile(const std::string& Path)
{
    std::error_code Error;
    fs::remove(NativePath::FromUtf8(Path), Error);
    return !Error && !fs::exists(fs::symlink_status(NativePath::FromUtf8(Path), Error));
}

bool DeleteDirectoryRecursively(const std::string& Path)
{
    std::error_code Error;
    fs::remove_all(NativePath::FromUtf8(Path), Error);
    return !Error && !DirectoryExists(Path);
}

bool MoveFile(const std::string& From, const std::string& To)
{
    std::error_code Error;
    fs::rename(NativePath::FromUtf8(From), NativePath::FromUtf8(To), Error);
    if (!Error)
    {
        return true;
    }
    return CopyFile(From, To) && DeleteFile(From);
}

bool CopyFile(const std::string& From, const std::string& To)
{
    std::error_code Error;
    fs::copy_file(NativePath::FromUtf8(From), NativePath::FromUtf8(To), fs::copy_options::overwrite_existing, Error);
    return !Error;
}

int64 FileSize(const std::string& Path)
{
    std::error_code Error;
    const auto Size = fs::file_size(NativePath::FromUtf8(Path), Error);
    return Error ? -1 : static_cast<int64>(Size);
}

std::vector<FDirectoryEntry> ListDirectory(const std::string& Directory)
{
    std::vector<FDirectoryEntry> Entries;
    std::error_code Error;
    for (fs::directory_iterator It(NativePath::FromUtf8(Directory), Error), End; !Error && It != End; It.increment(Error))
    {
        std::error_code TypeError;
        Entries.push_back({NativePath::ToUtf8(It->path()), It->is_directory(TypeError)});
    }
    return Entries;
}

std::vector<std::string> ListFilesRecursively(const std::string& Directory)
{
    std::vector<std::string> Files;
    std::error_code Error;
    for (fs::recursive_directory_iterator It(NativePath::FromUtf8(Directory), Error), End; !Error && It != End; It.increment(Error))
    {
        std::error_code TypeError;
        if (It->is_regular_file(TypeError))
        {
            Files.push_back(NativePath::ToUtf8(It->path()));
        }
    }
    return Files;
}
}
