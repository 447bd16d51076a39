// A mod file uploaded through the standalone session while the service answers with a rate
// limit or with a modfile whose checksum is not the archive's.

#include "Platform/RestModioSessionRequests.h"
#include "Support/RestSessionFixture.h"
#include "Support/TempDir.h"

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class UploadChecksum : public FRestSessionTest
{
protected:
    FModioCreateModFileParams Params()
    {
        const fs::path Root = Temp.Path() / "Cooked" / "UGC1001";
        WriteTextFile(Root / "UGC1001.uplugin", "{\"FriendlyName\":\"Harbour Run\"}");
        WriteTextFile(Root / "Content" / "Paks" / "Windows" / "UGC1001.pak", std::string(40000, 'p'));
        FModioCreateModFileParams Result;
        Result.RootDirectory = Root.string();
        Result.VersionString = "5";
        return Result;
    }
};
}

TEST_F(UploadChecksum, TheAnsweredModfileMustHoldTheArchiveSentAndA429IsSentAgain)
{
    const std::string Files = ModPath(ModderModId) + "/files";
    Sandbox::FFault RateLimited{Files, "POST", 1, Sandbox::EFaultKind::Status, 429};
    struct FCase
    {
        const char* What;
        Sandbox::FFault Fault;
        bool bMultipart;
        int32 Error;
    };
    // A multipart upload posts three times under the files path: open, complete, attach.
    const std::vector<FCase> Cases = {
        {"form-data answered with another checksum", {Files, "POST", 1, Sandbox::EFaultKind::WrongFilehash}, false,
            ModioRest::ErrorValue::ChecksumMismatch},
        {"multipart answered with another checksum", {Files, "POST", 3, Sandbox::EFaultKind::WrongFilehash}, true,
            ModioRest::ErrorValue::ChecksumMismatch},
        {"form-data answered 429 once", RateLimited, false, 0},
    };
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.What);
        const std::unique_ptr<FRestModioSession> Session = MakeSession();
        FRestUploadOptions Options = Session->GetUploadOptions();
        Options.MultipartThreshold = Case.bMultipart ? 0 : Options.MultipartThreshold;
        Session->SetUploadOptions(Options);
        Sandbox.ClearRequestLog();
        Sandbox.InjectFault(Case.Fault);

        const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, Params());
        EXPECT_EQ(Event.Status.GetValue(), Case.Error) << Event.Status.GetErrorMessage();
        if (Case.Error != 0)
        {
            EXPECT_NE(Event.Status.GetErrorMessage().find("MD5 "), std::string::npos);
            EXPECT_NE(Event.Status.GetErrorMessage().find(" sent, 00000000000000000000000000000000 answered"), std::string::npos)
                << Event.Status.GetErrorMessage();
        }
        else
        {
            EXPECT_EQ(RequestsTo("POST", Files).size(), 2u);
        }
        EXPECT_TRUE(NoTemporaryFilesLeft());
    }
}
