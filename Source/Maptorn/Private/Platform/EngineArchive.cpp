#include "Platform/EngineArchive.h"

#include "Platform/StringConversion.h"
#include "Platform/ZipCentralDirectory.h"
#include "Platform/ZipEntryData.h"
#include "Transfer/ArchiveEntryGuard.h"

#include "HAL/FileManager.h"
#include "Serialization/Archive.h"

#include <algorithm>
#include <vector>

namespace
{
namespace Guard = Maptorn::ArchiveEntryGuard;
using MaptornString::ToFString;

// What one extraction created, so that a failure removes it all: the files first, newest first,
// then the folders it made, deepest first. Folders that existed before are never removed.
class FCreatedPaths
{
public:
	explicit FCreatedPaths(IFileManager& InFileManager) : FileManager(InFileManager) {}
	FCreatedPaths(const FCreatedPaths&) = delete;
	FCreatedPaths& operator=(const FCreatedPaths&) = delete;

	~FCreatedPaths()
	{
		if (bKept)
		{
			return;
		}
		for (auto It = Files.rbegin(); It != Files.rend(); ++It)
		{
			FileManager.Delete(**It, false, true, true);
		}
		for (auto It = Directories.rbegin(); It != Directories.rend(); ++It)
		{
			FileManager.DeleteDirectory(**It, false, false);
		}
	}

	void AddFile(const FString& Path) { Files.push_back(Path); }
	void AddDirectory(const FString& Path) { Directories.push_back(Path); }
	void Keep() { bKept = true; }

private:
	IFileManager& FileManager;
	std::vector<FString> Files;
	std::vector<FString> Directories;
	bool bKept = false;
};

std::string WithoutTrailingSlashes(std::string Path)
{
	while (Path.size() > 1 && (Path.back() == '/' || Path.back() == '\\'))
	{
		Path.pop_back();
	}
	return Path;
}

bool MakeDirectory(IFileManager& FileManager, const std::string& Path, FCreatedPaths& Created, std::string& OutError)
{
	const FString Directory = ToFString(Path);
	if (FileManager.DirectoryExists(*Directory))
	{
		return true;
	}
	if (!FileManager.MakeDirectory(*Directory, false))
	{
		OutError = "Cannot create folder '" + Path + "'";
		return false;
	}
	Created.AddDirectory(Directory);
	return true;
}

// The destination and each missing folder above it, outermost first, so each can be taken back.
bool MakeDestination(IFileManager& FileManager, const std::string& Root, FCreatedPaths& Created, std::string& OutError)
{
	std::vector<std::string> Missing;
	for (std::string Path = Root; !Path.empty() && !FileManager.DirectoryExists(*ToFString(Path));)
	{
		Missing.push_back(Path);
		const size_t Slash = Path.find_last_of("/\\");
		Path.resize(Slash == std::string::npos || Slash == 0 ? 0 : Slash);
	}
	for (auto It = Missing.rbegin(); It != Missing.rend(); ++It)
	{
		if (!MakeDirectory(FileManager, *It, Created, OutError))
		{
			return false;
		}
	}
	return true;
}

// A folder beside the archive's top level that holds the files until every one is complete, so
// a failure never leaves a half-installed plug-in over the one already there. Its name is one no
// entry of this archive uses.
std::string StagingFolder(IFileManager& FileManager, const std::string& Root, const Guard::FExtractionPlan& Plan)
{
	for (int32 Attempt = 0;; ++Attempt)
	{
		const std::string Name = ".maptorn-extracting" + (Attempt == 0 ? std::string() : "-" + std::to_string(Attempt));
		const std::string Path = Root + "/" + Name;
		const bool bUsedByArchive = Plan.Directories.contains(Name)
			|| std::any_of(Plan.Files.begin(), Plan.Files.end(), [&Name](const Guard::FPlannedFile& File) { return File.RelativePath == Name; });
		if (!bUsedByArchive && !FileManager.DirectoryExists(*ToFString(Path)) && !FileManager.FileExists(*ToFString(Path)))
		{
			return Path;
		}
	}
}

bool StageFile(FArchive& Reader, const MaptornZip::FEntryRecord& Entry, const FString& StagedPath, MaptornZip::FChunkBuffers& Buffers,
	FCreatedPaths& Created, std::string& OutReason)
{
	uint64 DataOffset = 0;
	if (!MaptornZip::FindEntryData(Reader, Entry, DataOffset, OutReason))
	{
		return false;
	}
	TUniquePtr<FArchive> Writer(IFileManager::Get().CreateFileWriter(*StagedPath));
	if (!Writer)
	{
		OutReason = "its file cannot be created";
		return false;
	}
	Created.AddFile(StagedPath);
	const bool bCopied = MaptornZip::CopyEntryData(Reader, Entry, DataOffset, *Writer, Buffers, OutReason);
	if (!Writer->Close() && bCopied)
	{
		OutReason = "its file cannot be written";
		return false;
	}
	return bCopied;
}

// Replaces whatever has the name: a link left in the destination is removed, never written through.
bool MoveIntoPlace(IFileManager& FileManager, const FString& StagedPath, const FString& FinalPath, FCreatedPaths& Created)
{
	FileManager.Delete(*FinalPath, false, true, true);
	if (!FileManager.Move(*FinalPath, *StagedPath, true, true))
	{
		return false;
	}
	Created.AddFile(FinalPath);
	return true;
}

Guard::FEntryFacts FactsOf(const MaptornZip::FEntryRecord& Entry)
{
	Guard::FEntryFacts Facts;
	Facts.Name = Entry.Name;
	Facts.UnixMode = Entry.UnixMode;
	Facts.Size = Entry.Size;
	Facts.CompressedSize = Entry.CompressedSize;
	Facts.bEncrypted = Entry.IsEncrypted();
	Facts.Method = Entry.Method;
	Facts.bMethodReadable = MaptornZip::IsReadableMethod(Entry.Method);
	return Facts;
}

// Reads the central directory and refuses the archive at its first unsafe entry, before any write.
bool PlanExtraction(FArchive& Reader, const std::string& ArchivePath, std::vector<MaptornZip::FEntryRecord>& OutEntries,
	Guard::FExtractionPlan& OutPlan, std::string& OutError)
{
	MaptornZip::FDirectoryEnd End;
	std::string Reason;
	if (!MaptornZip::ReadDirectoryEnd(Reader, End, Reason))
	{
		OutError = "Cannot read archive '" + ArchivePath + "': " + Reason;
		return false;
	}
	OutError = Guard::CheckEntryCount(ArchivePath, End.EntryCount);
	if (!OutError.empty())
	{
		return false;
	}
	if (!MaptornZip::ReadCentralDirectory(Reader, End, OutEntries, Reason))
	{
		OutError = "Cannot read archive '" + ArchivePath + "': " + Reason;
		return false;
	}
	for (size_t Index = 0; Index < OutEntries.size(); ++Index)
	{
		if (!Guard::PlanEntry(ArchivePath, Index, FactsOf(OutEntries[Index]), OutPlan, OutError))
		{
			return false;
		}
	}
	return Guard::FinishPlan(ArchivePath, OutPlan, OutError);
}
}

bool FEngineArchive::ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError)
{
	OutError.clear();
	if (DestinationDir.empty())
	{
		OutError = "No destination folder given for '" + ArchivePath + "'";
		return false;
	}
	IFileManager& FileManager = IFileManager::Get();
	const FString ArchiveFile = ToFString(ArchivePath);
	TUniquePtr<FArchive> Reader(FileManager.CreateFileReader(*ArchiveFile));
	if (!Reader)
	{
		OutError = "Cannot open archive '" + ArchivePath + "': " + (FileManager.FileExists(*ArchiveFile) ? "it cannot be read" : "no such file");
		return false;
	}
	std::vector<MaptornZip::FEntryRecord> Entries;
	Guard::FExtractionPlan Plan;
	if (!PlanExtraction(*Reader, ArchivePath, Entries, Plan, OutError))
	{
		return false;
	}

	const std::string Root = WithoutTrailingSlashes(DestinationDir);
	const std::string Staging = StagingFolder(FileManager, Root, Plan);
	FCreatedPaths Created(FileManager);
	if (!MakeDestination(FileManager, Root, Created, OutError) || !MakeDirectory(FileManager, Staging, Created, OutError))
	{
		return false;
	}
	MaptornZip::FChunkBuffers Buffers;
	std::vector<FString> StagedPaths;
	StagedPaths.reserve(Plan.Files.size());
	for (const Guard::FPlannedFile& File : Plan.Files)
	{
		StagedPaths.push_back(ToFString(Staging + "/" + std::to_string(StagedPaths.size())));
		std::string Reason;
		if (!StageFile(*Reader, Entries[File.Index], StagedPaths.back(), Buffers, Created, Reason))
		{
			OutError = "Cannot extract entry '" + File.Name + "' of '" + ArchivePath + "': " + Reason;
			return false;
		}
	}
	Reader.Reset();

	// Every entry is whole and matches its CRC-32: only now does the destination change.
	for (const std::string& Directory : Plan.Directories)
	{
		if (!MakeDirectory(FileManager, Root + "/" + Directory, Created, OutError))
		{
			return false;
		}
	}
	for (size_t Index = 0; Index < Plan.Files.size(); ++Index)
	{
		const std::string FinalPath = Root + "/" + Plan.Files[Index].RelativePath;
		if (!MoveIntoPlace(FileManager, StagedPaths[Index], ToFString(FinalPath), Created))
		{
			OutError = "Cannot write '" + FinalPath + "' from archive '" + ArchivePath + "'";
			return false;
		}
	}
	FileManager.DeleteDirectory(*ToFString(Staging), false, true);
	Created.Keep();
	return true;
}
