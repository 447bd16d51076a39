#include "Support/TestZip.h"

#include <gtest/gtest.h>

#include <fstream>

#include <sys/stat.h>

namespace Maptorn::Testing
{
void WriteTestZip(const std::filesystem::path& Path, const std::vector<FTestZipEntry>& Entries)
{
    int Error = 0;
    zip_t* Archive = zip_open(Path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &Error);
    ASSERT_NE(Archive, nullptr);
    for (const FTestZipEntry& Entry : Entries)
    {
        if (Entry.Name.ends_with("/") && Entry.Bytes.empty())
        {
            ASSERT_GE(zip_dir_add(Archive, Entry.Name.c_str(), Entry.NameEncoding), 0) << Entry.Name;
            continue;
        }
        zip_source_t* Source = zip_source_buffer(Archive, Entry.Bytes.data(), Entry.Bytes.size(), 0);
        ASSERT_NE(Source, nullptr);
        const zip_int64_t Index = zip_file_add(Archive, Entry.Name.c_str(), Source, Entry.NameEncoding);
        ASSERT_GE(Index, 0) << Entry.Name << ": " << zip_strerror(Archive);
        const auto Indexu = static_cast<zip_uint64_t>(Index);
        ASSERT_EQ(zip_set_file_compression(Archive, Indexu, Entry.Compression, 0), 0);
        if (Entry.bSymbolicLink)
        {
            const zip_uint32_t Mode = (S_IFLNK | 0777u) << 16;
            ASSERT_EQ(zip_file_set_external_attributes(Archive, Indexu, 0, ZIP_OPSYS_UNIX, Mode), 0);
        }
    }
    ASSERT_EQ(zip_close(Archive), 0);
}

std::string VariedBytes(std::size_t Size, unsigned Seed)
{
    std::string Bytes(Size, '\0');
    unsigned State = Seed * 2654435761u + 1;
    for (char& Byte : Bytes)
    {
        State = State * 1103515245u + 12345u;
        Byte = static_cast<char>(State >> 16);
    }
    return Bytes;
}

std::size_t CentralRecordOf(const std::string& Archive, const std::string& Name)
{
    for (std::size_t At = Archive.find("PK\1\2"); At != std::string::npos; At = Archive.find("PK\1\2", At + 4))
    {
        if (Archive.compare(At + 46, Name.size(), Name) == 0)
        {
            return At;
        }
    }
    return std::string::npos;
}

void PatchUint32(std::string& Bytes, std::size_t At, std::uint32_t Value)
{
    for (int Byte = 0; Byte < 4; ++Byte)
    {
        Bytes[At + Byte] = static_cast<char>((Value >> (8 * Byte)) & 0xFF);
    }
}

void WriteBinaryFile(const std::filesystem::path& Path, const std::string& Bytes)
{
    std::ofstream(Path, std::ios::binary | std::ios::trunc) << Bytes;
}

std::vector<FTestZipEntry> UnsafeZipEntries()
{
    FTestZipEntry Link{ "UGC1005/Content/Link", "/etc/passwd" };
    Link.bSymbolicLink = true;
    return {
        { "/tmp/maptorn-evil.txt", "x" },
        { "C:/Windows/evil.dll", "x" },
        { "\\\\server\\share\\evil.txt", "x" },
        { "UGC1005/../../../Escaped.txt", "x" },
        { "..\\Escaped.txt", "x" },
        Link,
        // 4 MiB of zeros deflates to about 4 KiB: a ratio just above 1000:1.
        { "UGC1005/Bomb.bin", std::string(4u << 20, '\0') },
    };
}
}
