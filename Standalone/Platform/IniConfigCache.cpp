#include "Platform/IniConfigCache.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

#include <cstdlib>

namespace Maptorn::IniFile
{
namespace
{
bool IsBlank(std::string_view Text)
{
    return TrimWhitespace(Text).empty();
}

// Fills in what the cache understands of one line; anything else stays ELineKind::Other.
void ClassifyLine(FLine& Line, bool bInSection)
{
    const std::string Trimmed = TrimWhitespace(Line.Text);
    if (Trimmed.size() >= 2 && Trimmed.front() == '[' && Trimmed.back() == ']')
    {
        Line.Kind = ELineKind::Section;
        Line.Name = TrimWhitespace(std::string_view(Trimmed).substr(1, Trimmed.size() - 2));
        return;
    }
    // Comments and the engine's array commands (+ - . ! and the struct-array @ *) are kept verbatim.
    static constexpr std::string_view NotAKey = ";#+-.!@*";
    if (!bInSection || Trimmed.empty() || NotAKey.find(Trimmed.front()) != std::string_view::npos)
    {
        return;
    }
    const std::size_t Equals = Line.Text.find('=');
    if (Equals == std::string::npos)
    {
        return;
    }
    std::string Key = TrimWhitespace(std::string_view(Line.Text).substr(0, Equals));
    if (Key.empty())
    {
        return;
    }
    std::size_t ValueStart = Equals + 1;
    while (ValueStart < Line.Text.size() && (Line.Text[ValueStart] == ' ' || Line.Text[ValueStart] == '\t'))
    {
        ++ValueStart;
    }
    Line.Kind = ELineKind::Value;
    Line.Name = std::move(Key);
    Line.ValueStart = ValueStart;
}

std::string DecodeValue(std::string_view Raw)
{
    std::string Value = TrimWhitespace(Raw);
    if (Value.size() >= 2 && Value.front() == '"' && Value.back() == '"')
    {
        Value = Value.substr(1, Value.size() - 2);
    }
    return Value;
}

// Quotes only what reading back would otherwise change: outer blanks, which are trimmed, and
// outer quotes, which are stripped. Line breaks are dropped: one value, one line.
std::string EncodeValue(std::string_view Value)
{
    std::string Clean;
    for (char C : Value)
    {
        if (C != '\r' && C != '\n')
        {
            Clean += C;
        }
    }
    const bool bOuterBlank = !Clean.empty() && TrimWhitespace(Clean).size() != Clean.size();
    const bool bOuterQuotes = Clean.size() >= 2 && Clean.front() == '"' && Clean.back() == '"';
    return (bOuterBlank || bOuterQuotes) ? "\"" + Clean + "\"" : Clean;
}

// Index of the first line of Section (its header), or npos.
std::size_t FindSection(const FDocument& Document, std::string_view Section)
{
    for (std::size_t Index = 0; Index < Document.Lines.size(); ++Index)
    {
        const FLine& Line = Document.Lines[Index];
        if (Line.Kind == ELineKind::Section && EqualsIgnoreCase(Line.Name, Section))
        {
            return Index;
        }
    }
    return std::string::npos;
}

// Index of the first Key= line of any section named Section (the engine merges repeated
// sections), or npos.
std::size_t FindValueLine(const FDocument& Document, std::string_view Section, std::string_view Key)
{
    bool bInSection = false;
    for (std::size_t Index = 0; Index < Document.Lines.size(); ++Index)
    {
        const FLine& Line = Document.Lines[Index];
        if (Line.Kind == ELineKind::Section)
        {
            bInSection = EqualsIgnoreCase(Line.Name, Section);
        }
        else if (bInSection && Line.Kind == ELineKind::Value && EqualsIgnoreCase(Line.Name, Key))
        {
            return Index;
        }
    }
    return std::string::npos;
}

// Inserts a line so that it gets index Position. A line that ended the file without a
// terminator needs one before anything can follow it.
void InsertLine(FDocument& Document, std::size_t Position, std::string Text)
{
    if (Position > 0 && Document.Lines[Position - 1].Terminator.empty())
    {
        Document.Lines[Position - 1].Terminator = Document.NewLineTerminator;
    }
    FLine Line;
    Line.Text = std::move(Text);
    Line.Terminator = Document.NewLineTerminator;
    ClassifyLine(Line, true);
    Document.Lines.insert(Document.Lines.begin() + static_cast<std::ptrdiff_t>(Position), std::move(Line));
}
}

FDocument Parse(std::string_view Text)
{
    FDocument Document;
    bool bTerminatorSeen = false;
    bool bInSection = false;
    std::size_t Start = 0;
    while (Start < Text.size())
    {
        const std::size_t NewLine = Text.find('\n', Start);
        const std::size_t End = NewLine == std::string_view::npos ? Text.size() : NewLine;
        FLine Line;
        Line.Text = std::string(Text.substr(Start, End - Start));
        if (NewLine != std::string_view::npos)
        {
            const bool bCarriageReturn = !Line.Text.empty() && Line.Text.back() == '\r';
            if (bCarriageReturn)
            {
                Line.Text.pop_back();
            }
            Line.Terminator = bCarriageReturn ? "\r\n" : "\n";
            if (!bTerminatorSeen)
            {
                Document.NewLineTerminator = Line.Terminator;
                bTerminatorSeen = true;
            }
        }
        ClassifyLine(Line, bInSection);
        bInSection = bInSection || Line.Kind == ELineKind::Section;
        Document.Lines.push_back(std::move(Line));
        Start = End + 1;
    }
    return Document;
}

std::string Serialize(const FDocument& Document)
{
    std::string Text;
    for (const FLine& Line : Document.Lines)
    {
        Text += Line.Text;
        Text += Line.Terminator;
    }
    return Text;
}

std::optional<std::string> FindValue(const FDocument& Document, std::string_view Section, std::string_view Key)
{
    const std::size_t Index = FindValueLine(Document, Section, Key);
    if (Index == std::string::npos)
    {
        return std::nullopt;
    }
    const FLine& Line = Document.Lines[Index];
    return DecodeValue(std::string_view(Line.Text).substr(Line.ValueStart));
}

void SetValue(FDocument& Document, std::string_view Section, std::string_view Key, std::string_view Value)
{
    const std::string Encoded = EncodeValue(Value);
    const std::size_t Existing = FindValueLine(Document, Section, Key);
    if (Existing != std::string::npos)
    {
        // Keeps the key as the file spells it and any blanks around "=".
        FLine& Line = Document.Lines[Existing];
        Line.Text = Line.Text.substr(0, Line.ValueStart) + Encoded;
        return;
    }
    std::string NewLine = std::string(Key) + "=" + Encoded;
    const std::size_t Header = FindSection(Document, Section);
    if (Header != std::string::npos)
    {
        // After the section's last non-blank line, so blank lines that separate it from the
        // next section stay where they are.
        std::size_t Last = Header;
        for (std::size_t Index = Header + 1;
             Index < Document.Lines.size() && Document.Lines[Index].Kind != ELineKind::Section; ++Index)
        {
            if (!IsBlank(Document.Lines[Index].Text))
            {
                Last = Index;
            }
        }
        InsertLine(Document, Last + 1, std::move(NewLine));
        return;
    }
    // A new section at the end, set apart by one blank line unless the file already ends in one.
    if (!Document.Lines.empty() && !IsBlank(Document.Lines.back().Text))
    {
        InsertLine(Document, Document.Lines.size(), "");
    }
    InsertLine(Document, Document.Lines.size(), "[" + std::string(Section) + "]");
    InsertLine(Document, Document.Lines.size(), std::move(NewLine));
}

bool ParseBool(std::string_view Value)
{
    const std::string Text = TrimWhitespace(Value);
    if (EqualsIgnoreCase(Text, "True") || EqualsIgnoreCase(Text, "Yes") || EqualsIgnoreCase(Text, "On"))
    {
        return true;
    }
    if (EqualsIgnoreCase(Text, "False") || EqualsIgnoreCase(Text, "No") || EqualsIgnoreCase(Text, "Off"))
    {
        return false;
    }
    return std::strtoll(Text.c_str(), nullptr, 10) != 0;
}
}

namespace Maptorn
{
namespace
{
// "Config/./A.ini" and "Config/A.ini" are one file; separators and dots are settled once here.
std::string NormalizeFileKey(const std::string& File)
{
    return Paths::ConvertRelativePathToFull(std::string_view(), File);
}
}

FIniConfigCache::FCachedFile& FIniConfigCache::FindOrLoadLocked(const std::string& File)
{
    const std::string Key = NormalizeFileKey(File);
    auto Found = Files.find(Key);
    if (Found == Files.end())
    {
        // A missing or unreadable file reads as an empty one, so a set followed by a flush creates it.
        FCachedFile Loaded;
        Loaded.Document = IniFile::Parse(FileHelper::LoadFileToString(Key).value_or(std::string()));
        Found = Files.emplace(Key, std::move(Loaded)).first;
    }
    return Found->second;
}

void FIniConfigCache::RemoveFromCache(const std::string& File)
{
    std::lock_guard Lock(Mutex);
    Files.erase(NormalizeFileKey(File));
}

std::optional<std::string> FIniConfigCache::GetString(const std::string& Section, const std::string& Key,
    const std::string& File)
{
    std::lock_guard Lock(Mutex);
    return IniFile::FindValue(FindOrLoadLocked(File).Document, Section, Key);
}

std::optional<bool> FIniConfigCache::GetBool(const std::string& Section, const std::string& Key, const std::string& File)
{
    const std::optional<std::string> Value = GetString(Section, Key, File);
    if (!Value)
    {
        return std::nullopt;
    }
    return IniFile::ParseBool(*Value);
}

void FIniConfigCache::SetString(const std::string& Section, const std::string& Key, const std::string& Value,
    const std::string& File)
{
    std::lock_guard Lock(Mutex);
    FCachedFile& Cached = FindOrLoadLocked(File);
    IniFile::SetValue(Cached.Document, Section, Key, Value);
    Cached.bDirty = true;
}

void FIniConfigCache::SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File)
{
    SetString(Section, Key, bValue ? "True" : "False", File);
}

bool FIniConfigCache::Flush(bool bRemoveFromCache, const std::string& File)
{
    std::lock_guard Lock(Mutex);
    const std::string Key = NormalizeFileKey(File);
    const auto Found = Files.find(Key);
    if (Found == Files.end())
    {
        return true; // nothing read, so nothing changed
    }
    if (Found->second.bDirty)
    {
        // Saved as the engine saves text: ASCII as single bytes, anything else as UTF-16LE.
        const std::string Folder = Paths::GetPath(Key);
        const bool bFolderReady = Folder.empty() || FileSystem::CreateDirectoryTree(Folder);
        if (!bFolderReady || !FileHelper::SaveStringToFile(IniFile::Serialize(Found->second.Document), Key))
        {
            return false;
        }
        Found->second.bDirty = false;
    }
    if (bRemoveFromCache)
    {
        Files.erase(Found);
    }
    return true;
}
}
