// Registering a new mod on mod.io, and refreshing the metadata blob that tells the game what a
// mod holds and which engine built it.

#include "Common/JsonWriter.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"

#include <cerrno>
#include <cstdlib>

namespace Maptorn
{
std::optional<int64> ParseModId(const std::string& Text)
{
    if (Text.empty())
    {
        return std::nullopt;
    }
    char* End = nullptr;
    errno = 0;
    const long long Value = std::strtoll(Text.c_str(), &End, 10);
    if (End == Text.c_str() || *End != '\0' || errno == ERANGE || Text.find_first_of(" \t") != std::string::npos)
    {
        return std::nullopt;
    }
    return static_cast<int64>(Value);
}

std::string FModioInterface::MakeMetadataBlob(int32 VersionUUID) const
{
    const std::string FullVersion = Platform.Engine.EngineVersionString();
    Json::FJsonObject Blob = Json::FJsonObject::object();
    Blob["ModType"] = ModTypeWord(NewModType);
    Blob["EngineVersion"] = EngineVersionBeforeDash(FullVersion).value_or(FullVersion);
    Blob["VersionUUID"] = VersionUUID;
    return Json::WritePretty(Blob);
}

void FModioInterface::CreateMod()
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        return;
    }
    const FModioModCreationHandle Handle = Session->GetModCreationHandle();
    FModioCreateModParams Params;
    Params.PathToLogoFile = NewModLogoPath;
    Params.Name = NewModName;
    Params.Summary = NewModSummary;
    Params.Tags = std::vector<std::string>{ModTypeWord(NewModType)};
    Params.MetadataBlob = MakeMetadataBlob(0);
    // The type is read when the answer comes, so the plug-in is made of the kind that was sent.
    const EModType Type = NewModType;
    bIsModioBusy = true;
    std::weak_ptr<bool> Alive = AliveToken;
    Session->SubmitNewModAsync(Handle, Params, [this, Alive, Type](FModioErrorCode ErrorCode, std::optional<FModioModID> NewId) {
        if (Alive.expired())
        {
            return;
        }
        if (ErrorCode)
        {
            LogTemp(Printf("Error creating mod, the error code was %d %s", ErrorCode.GetValue(), ErrorCode.GetErrorMessage().c_str()));
            StatusText = ErrorCode.GetErrorMessage();
        }
        else
        {
            const std::string ModId = NewId ? std::to_string(*NewId) : std::string();
            LogTemp(Printf("Created ModId %s", ModId.c_str()));
            CreateUGCPlugin(Platform, *this, ModId, Type);
            StatusText = Printf("Created Mod %s", ModId.c_str());
            // The new mod's row belongs on the upload page now, with its plug-in in the project.
            RefreshOwnMods();
        }
        bIsModioBusy = false;
    });
}

void FModioInterface::UpdateMetadata(const std::string& ModId)
{
    IModioSession* Session = Platform.ModioSession;
    const auto StampedVersion = OwnModVersions.find(ModId);
    if (!Session || StampedVersion == OwnModVersions.end())
    {
        return;
    }
    const std::string Blob = MakeMetadataBlob(StampedVersion->second);
    const std::optional<int64> Id = ParseModId(ModId);
    if (!Id)
    {
        return;
    }
    // Only the blob is sent, so an update never changes what the modder typed on mod.io.
    FModioEditModParams Params;
    Params.MetadataBlob = Blob;
    std::weak_ptr<bool> Alive = AliveToken;
    Session->SubmitModChangesAsync(*Id, Params, [this, Alive](FModioErrorCode ErrorCode, std::optional<FModioModInfo>) {
        if (Alive.expired())
        {
            return;
        }
        if (ErrorCode)
        {
            LogTemp(Printf("Error updating mod metadata %d %s", ErrorCode.GetValue(), ErrorCode.GetErrorMessage().c_str()));
        }
        else
        {
            LogTemp("Successfully updated mod metadata");
        }
    });
}
}
