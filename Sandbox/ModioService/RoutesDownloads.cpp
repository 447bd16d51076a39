// What mod.io serves from its CDN and web site: mod files (with byte ranges), logos, and a plain
// profile page so that a mod's profile_url opens somewhere.

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxByteRanges.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

namespace Maptorn::Sandbox
{
namespace
{
FReply FileReply(const std::string& Path, uint64 Size, const std::string& ContentType, const std::string& RangeHeader)
{
    FReply Reply;
    Reply.ContentType = ContentType;
    Reply.Headers.emplace_back("Accept-Ranges", "bytes");
    uint64 First = 0, Last = 0;
    switch (ResolveDownloadRange(RangeHeader, Size, First, Last))
    {
    case EDownloadRange::Whole: Reply.File = FFileSlice{ Path, 0, Size }; break;
    case EDownloadRange::Partial:
        Reply.Status = 206;
        Reply.File = FFileSlice{ Path, First, Last - First + 1 };
        Reply.Headers.emplace_back("Content-Range",
                                   Printf("bytes %llu-%llu/%llu", static_cast<unsigned long long>(First),
                                          static_cast<unsigned long long>(Last), static_cast<unsigned long long>(Size)));
        break;
    case EDownloadRange::Unsatisfiable:
        Reply = FReply::Error(MakeError(416, ErrorRef::None, "The requested range is not satisfiable."));
        Reply.Headers.emplace_back("Content-Range", "bytes */" + std::to_string(Size));
        break;
    }
    return Reply;
}

FReply DownloadModfile(FRouteContext& Context)
{
    std::string Path;
    uint64 Size = 0;
    {
        std::scoped_lock Lock(Context.State.Mutex);
        const FStoredModfile* Modfile = Context.State.Store.FindModfile(Context.PathNumber(1));
        if (!Modfile || Modfile->Filename != Context.PathText(2))
        {
            return FReply::Error(MakeError(404, ErrorRef::ModfileNotFound, "The requested modfile could not be found."));
        }
        Path = Context.State.Blobs.PathOf(Modfile->Blob);
        Size = static_cast<uint64>(Modfile->Filesize);
        // A download counts once, when it starts from the beginning.
        FStoredMod* Mod = Context.State.Store.FindMod(Modfile->ModId);
        const std::string Range = Context.Request.get_header_value("Range");
        if (Mod && (Range.empty() || TrimWhitespace(Range).starts_with("bytes=0-")))
        {
            ++Mod->Stats.DownloadsToday;
            ++Mod->Stats.DownloadsTotal;
        }
    }
    return FileReply(Path, Size, "application/zip", Context.Request.get_header_value("Range"));
}

FReply DownloadLogo(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    const FStoredMod* Mod = Context.State.Store.FindMod(Context.PathNumber(1));
    if (!Mod || Mod->LogoBlob.empty() || Mod->LogoFilename != Context.PathText(3))
    {
        return FReply::Error(MakeError(404, ErrorRef::NotFound, "The requested logo could not be found."));
    }
    const std::string Path = Context.State.Blobs.PathOf(Mod->LogoBlob);
    const std::string Lower = ToLower(Mod->LogoFilename);
    const bool bJpeg = Lower.ends_with(".jpg") || Lower.ends_with(".jpeg");
    // The original and every thumbnail are the same bytes.
    return FileReply(Path, static_cast<uint64>(FileSystem::FileSize(Path)), bJpeg ? "image/jpeg" : "image/png",
                     Context.Request.get_header_value("Range"));
}

std::string EscapeHtml(const std::string& Text)
{
    return ReplaceAll(ReplaceAll(ReplaceAll(ReplaceAll(Text, "&", "&amp;"), "<", "&lt;"), ">", "&gt;"), "\"", "&quot;");
}

FReply ProfilePage(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    for (const auto& [Id, Mod] : Context.State.Store.Mods)
    {
        if (Mod.NameId == Context.PathText(1))
        {
            FReply Reply;
            Reply.ContentType = "text/html; charset=utf-8";
            Reply.Body = "<!doctype html><title>" + EscapeHtml(Mod.Name) + "</title><h1>" + EscapeHtml(Mod.Name) + "</h1><p>" +
                         EscapeHtml(Mod.Summary) + "</p><p>mod " + std::to_string(Mod.Id) + " on the local mod.io sandbox</p>";
            return Reply;
        }
    }
    return FReply::Error(MakeError(404, ErrorRef::ModNotFound, "The requested mod could not be found."));
}
}

void RegisterDownloadRoutes(FSandboxRouter& Router)
{
    Router.Get(R"(/sandbox/files/(\d+)/([^/]+))", EAccess::Open, DownloadModfile);
    Router.Get(R"(/sandbox/logos/(\d+)/(original|thumb_320x180|thumb_640x360|thumb_1280x720)/([^/]+))", EAccess::Open,
               DownloadLogo);
    Router.Get(R"(/sandbox/mods/([^/]+))", EAccess::Open, ProfilePage);
}
}
