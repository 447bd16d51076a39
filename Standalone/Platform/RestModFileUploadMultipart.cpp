// An archive above the threshold goes through a multipart session: open it (the nonce comes from
// the archive's MD5, so a later run of an interrupted upload gets the same session back), list the
// parts the service already holds, send the others one at a time, complete, then add the file by
// upload id.

#include "Common/StringUtil.h"
#include "Platform/RestModFileRequests.h"
#include "Platform/RestModFileUpload.h"
#include "Platform/RestModioSessionRequests.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace Maptorn
{
namespace
{
struct FFileCloser
{
    void operator()(std::FILE* File) const { std::fclose(File); }
};

// Worker thread: one part of the archive, read into Bytes.
bool ReadArchivePart(const std::string& ArchivePath, int64 Offset, int64 Length, std::vector<uint8>& Bytes)
{
    std::unique_ptr<std::FILE, FFileCloser> File(std::fopen(ArchivePath.c_str(), "rb"));
    if (!File || fseeko(File.get(), static_cast<off_t>(Offset), SEEK_SET) != 0)
    {
        return false;
    }
    Bytes.resize(static_cast<std::size_t>(Length));
    return std::fread(Bytes.data(), 1, Bytes.size(), File.get()) == Bytes.size();
}
}

int64 FRestModFileUpload::PartCount() const
{
    return (ArchiveSize + Options.PartSize - 1) / Options.PartSize;
}

int64 FRestModFileUpload::PartLength(int64 PartIndex) const
{
    return std::min(Options.PartSize, ArchiveSize - PartIndex * Options.PartSize);
}

int64 FRestModFileUpload::ConfirmedBytes() const
{
    int64 Bytes = 0;
    for (int64 Index = 0; Index < static_cast<int64>(PartsOnService.size()); ++Index)
    {
        Bytes += PartsOnService[static_cast<std::size_t>(Index)] ? PartLength(Index) : 0;
    }
    return Bytes;
}

void FRestModFileUpload::OpenSession()
{
    SetProgress(EModioModProgressState::Uploading, 0, ArchiveSize);
    const std::string Nonce = NonceGeneration == 0 ? ArchiveMd5 : ArchiveMd5 + "-" + std::to_string(NonceGeneration);
    const std::string Body = ModioRest::MakeUrlEncodedForm({{"filename", ArchiveName}, {"nonce", Nonce}});
    Send(MakeFormRequest(ModioRest::MultipartUrl(Target.BaseUrl, Target.GameId, Target.ModId), Body),
        [this](int32, const std::string& Answer) {
            const std::optional<ModioRest::FUploadSession> Session = ModioRest::ReadUploadSession(Answer);
            if (!Session)
            {
                Finish(FModioErrorCode{ModioErrorValue::HttpRequestFailed, "HTTP request failed: mod.io gave no upload id"});
                return;
            }
            UploadId = Session->UploadId;
            PartsOnService.assign(static_cast<std::size_t>(PartCount()), false);
            NextPart = 0;
            // An earlier run got as far as completing: only the file is left to add.
            if (Session->Status == ModioRest::UploadSessionComplete)
            {
                PartsOnService.assign(PartsOnService.size(), true);
                AttachUpload();
                return;
            }
            ListParts(0);
        },
        [this](int32 Status, const std::string& Answer) {
            const FModioErrorCode Error = ModioRest::ErrorFromAnswer(Status, Answer);
            // This archive went up before under that nonce: the next one opens a new session.
            if (Error.Value == ModioRest::ErrorValue::NonceOfCompletedSession && NonceGeneration < MaxNonceGenerations)
            {
                ++NonceGeneration;
                OpenSession();
                return;
            }
            Finish(Error, Status == 401);
        });
}

void FRestModFileUpload::ListParts(int64 Offset)
{
    const std::string Url = ModioRest::MultipartPartsUrl(Target.BaseUrl, Target.GameId, Target.ModId, UploadId, Offset);
    Send(MakeRequest("GET", Url), [this, Offset](int32, const std::string& Answer) {
        const std::optional<ModioRest::FUploadedParts> Page = ModioRest::ReadUploadedParts(Answer);
        if (!Page)
        {
            Finish(ModioRest::UnexpectedAnswer());
            return;
        }
        // Only a part of exactly the length this archive gives at its place counts as sent.
        for (const ModioRest::FUploadedPart& Part : Page->Parts)
        {
            const int64 Index = Part.Number - 1;
            if (Index < PartCount() && Part.Size == PartLength(Index))
            {
                PartsOnService[static_cast<std::size_t>(Index)] = true;
            }
        }
        const int64 NextOffset = Offset + Page->PageCount;
        if (Page->PageCount > 0 && NextOffset < Page->ResultTotal)
        {
            ListParts(NextOffset);
            return;
        }
        SendNextPart();
    });
}

void FRestModFileUpload::SendNextPart()
{
    while (NextPart < PartCount() && PartsOnService[static_cast<std::size_t>(NextPart)])
    {
        ++NextPart;
    }
    SetProgress(EModioModProgressState::Uploading, ConfirmedBytes(), ArchiveSize);
    if (NextPart >= PartCount())
    {
        CompleteSession();
        return;
    }
    const int64 Index = NextPart;
    RunOnWorker(
        [this, Index] {
            return ReadArchivePart(ArchivePath, Index * Options.PartSize, PartLength(Index), PartBytes)
                ? FModioErrorCode{}
                : FModioErrorCode{ModioRest::ErrorValue::ArchiveFailed, "The packed folder cannot be read back from the temporary folder"};
        },
        [this, Index] { SendPart(Index); });
}

void FRestModFileUpload::SendPart(int64 PartIndex)
{
    FHttpRequestPtr Request = MakeRequest("PUT", ModioRest::MultipartUrl(Target.BaseUrl, Target.GameId, Target.ModId, UploadId));
    const int64 First = PartIndex * Options.PartSize;
    if (Request)
    {
        Request->SetHeader("Content-Type", "application/octet-stream");
        Request->SetHeader("Content-Range",
            Printf("bytes %lld-%lld/%lld", static_cast<long long>(First), static_cast<long long>(First + PartLength(PartIndex) - 1),
                static_cast<long long>(ArchiveSize)));
        Request->SetContent(std::move(PartBytes));
    }
    PartBytes = {};
    TrackUploadProgress(Request, ConfirmedBytes(), 0);
    Send(Request, [this, PartIndex](int32, const std::string&) {
        PartsOnService[static_cast<std::size_t>(PartIndex)] = true;
        SendNextPart();
    });
}

void FRestModFileUpload::CompleteSession()
{
    Send(MakeFormRequest(ModioRest::MultipartCompleteUrl(Target.BaseUrl, Target.GameId, Target.ModId, UploadId), ""),
        [this](int32, const std::string&) { AttachUpload(); });
}

void FRestModFileUpload::AttachUpload()
{
    SetProgress(EModioModProgressState::Uploading, ArchiveSize, ArchiveSize);
    ModioRest::FFormFields Fields = ModioRest::ModfileFields(Params, ArchiveMd5);
    Fields.insert(Fields.begin(), {"upload_id", UploadId});
    Send(MakeFormRequest(ModioRest::ModfilesUrl(Target.BaseUrl, Target.GameId, Target.ModId), ModioRest::MakeUrlEncodedForm(Fields)),
        [this](int32, const std::string& Answer) {
            FinishWithModfile(Answer);
        });
}
}
