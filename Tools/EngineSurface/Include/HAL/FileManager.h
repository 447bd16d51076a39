#pragma once
// Reference: Runtime/Core/Public/HAL/FileManager.h (IFileManager)

#include "CoreMinimal.h"

class FArchive;

enum EFileWrite
{
	FILEWRITE_None = 0x00,
	FILEWRITE_NoFail = 0x01,
	FILEWRITE_NoReplaceExisting = 0x02,
	FILEWRITE_EvenIfReadOnly = 0x04,
	FILEWRITE_Append = 0x08,
	FILEWRITE_AllowRead = 0x10,
	FILEWRITE_Silent = 0x20,
};

class IFileManager
{
public:
	static IFileManager& Get();

	virtual ~IFileManager() {}
	virtual bool FileExists(const TCHAR* Filename) = 0;
	virtual bool DirectoryExists(const TCHAR* InDirectory) = 0;
	virtual bool Delete(const TCHAR* Filename, bool RequireExists = false, bool EvenReadOnly = false, bool Quiet = false) = 0;
	virtual bool DeleteDirectory(const TCHAR* Path, bool RequireExists = false, bool Tree = false) = 0;
	virtual bool MakeDirectory(const TCHAR* Path, bool Tree = false) = 0;
	virtual bool Move(const TCHAR* Dest, const TCHAR* Src, bool Replace = true, bool EvenIfReadOnly = false, bool Attributes = false,
		bool bDoNotRetryOrError = false) = 0;
	virtual int64 FileSize(const TCHAR* Filename) = 0;
	virtual FArchive* CreateFileReader(const TCHAR* Filename, uint32 ReadFlags = 0) = 0;
	virtual FArchive* CreateFileWriter(const TCHAR* Filename, uint32 WriteFlags = 0) = 0;
};
