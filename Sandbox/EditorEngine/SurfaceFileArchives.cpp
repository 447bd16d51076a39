// IFileManager::CreateFileReader and CreateFileWriter of the engine surface.

#include "EditorEngine/SurfaceFileArchives.h"

#include "HAL/FileManager.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{
class FSurfaceFileReader final : public FArchive
{
public:
	FSurfaceFileReader(std::ifstream&& InStream, int64 InSize) : Stream(std::move(InStream)), Size(InSize) {}

	void Serialize(void* V, int64 Length) override
	{
		if (Length < 0 || Position + Length > Size)
		{
			std::fprintf(stderr, "surface: read of %lld bytes at %lld past the end of a %lld-byte file\n", Length, Position, Size);
			SetError();
			return;
		}
		Stream.seekg(Position);
		Stream.read(static_cast<char*>(V), Length);
		Position += Length;
		if (!Stream)
		{
			SetError();
		}
	}
	void Seek(int64 InPos) override
	{
		// The engine's reader checks this with checkf: an editor seeking outside a file stops.
		if (InPos < 0 || InPos > Size)
		{
			std::fprintf(stderr, "surface: seek to %lld outside a %lld-byte file\n", InPos, Size);
			std::abort();
		}
		Position = InPos;
	}
	int64 Tell() override { return Position; }
	int64 TotalSize() override { return Size; }
	bool Close() override
	{
		Stream.close();
		return !IsError();
	}

private:
	std::ifstream Stream;
	int64 Size = 0;
	int64 Position = 0;
};

class FSurfaceFileWriter final : public FArchive
{
public:
	explicit FSurfaceFileWriter(std::ofstream&& InStream) : Stream(std::move(InStream)) {}
	~FSurfaceFileWriter() override { Close(); }

	void Serialize(void* V, int64 Length) override
	{
		Stream.write(static_cast<const char*>(V), Length);
		Position += Length;
		if (!Stream)
		{
			SetError();
		}
	}
	int64 Tell() override { return Position; }
	int64 TotalSize() override { return Position; }
	bool Close() override
	{
		if (Stream.is_open())
		{
			Stream.close();
			if (Stream.fail())
			{
				SetError();
			}
		}
		return !IsError();
	}

private:
	std::ofstream Stream;
	int64 Position = 0;
};
}

namespace SurfaceFileArchives
{
FArchive* OpenReader(const std::string& Path)
{
	std::error_code Error;
	const auto Size = std::filesystem::file_size(Path, Error);
	std::ifstream Stream(Path, std::ios::binary);
	if (Error || !Stream)
	{
		return nullptr;
	}
	return new FSurfaceFileReader(std::move(Stream), static_cast<int64>(Size));
}

FArchive* OpenWriter(const std::string& Path, uint32 WriteFlags)
{
	std::error_code Error;
	std::filesystem::create_directories(std::filesystem::path(Path).parent_path(), Error);
	std::ofstream Stream(Path, std::ios::binary | ((WriteFlags & FILEWRITE_Append) ? std::ios::app : std::ios::trunc));
	if (!Stream)
	{
		return nullptr;
	}
	return new FSurfaceFileWriter(std::move(Stream));
}
}
