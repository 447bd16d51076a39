#include "ModioService/SandboxZip.h"

#include <zip.h>

namespace Maptorn::Sandbox
{
namespace
{
bool AddEntry(zip_t* Archive, const FZipEntry& Entry)
{
    if (Entry.Name.ends_with("/"))
    {
        return zip_dir_add(Archive, Entry.Name.c_str(), ZIP_FL_ENC_UTF_8) >= 0;
    }
    // The bytes stay alive in Entries until zip_close, so libzip need not copy them.
    zip_source_t* Source = zip_source_buffer(Archive, Entry.Bytes.data(), Entry.Bytes.size(), 0);
    if (!Source)
    {
        return false;
    }
    const zip_int64_t Index = zip_file_add(Archive, Entry.Name.c_str(), Source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
    if (Index < 0)
    {
        zip_source_free(Source);
        return false;
    }
    return zip_set_file_compression(Archive, static_cast<zip_uint64_t>(Index), ZIP_CM_DEFLATE, 0) == 0;
}
}

bool WriteZip(const std::string& Path, const std::vector<FZipEntry>& Entries)
{
    int Error = 0;
    zip_t* Archive = zip_open(Path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &Error);
    if (!Archive)
    {
        return false;
    }
    for (const FZipEntry& Entry : Entries)
    {
        if (!AddEntry(Archive, Entry))
        {
            zip_discard(Archive);
            return false;
        }
    }
    return zip_close(Archive) == 0;
}

std::string TinyPng()
{
    static const unsigned char Bytes[] = { 0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
                                           0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x06, 0x00, 0x00,
                                           0x00, 0x1F, 0x15, 0xC4, 0x89, 0x00, 0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78,
                                           0x9C, 0x63, 0x00, 0x01, 0x00, 0x00, 0x05, 0x00, 0x01, 0x0D, 0x0A, 0x2D, 0xB4, 0x00,
                                           0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82 };
    return std::string(reinterpret_cast<const char*>(Bytes), sizeof(Bytes));
}
}
