// Placeholder bodies, replaced as each operation is built.
#include "Modio/ModioInterface.h"

namespace Maptorn
{
void FModioInterface::VerifyLogin() {}
void FModioInterface::RecheckLogin() {}
void FModioInterface::RequestEmailCode() {}
void FModioInterface::Login() {}
void FModioInterface::Logout() {}
void FModioInterface::CreateMod() {}
void FModioInterface::UpdateMetadata(const std::string&) {}
std::string FModioInterface::MakeMetadataBlob(int32) const { return {}; }
void FModioInterface::UploadMod(const std::string&) {}
void FModioInterface::OnModManagementEvent(const FModioModManagementEvent&) {}
void FModioInterface::FinishPlatform() {}
}
