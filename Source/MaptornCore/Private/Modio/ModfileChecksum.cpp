#include "Modio/ModfileChecksum.h"

#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"

namespace Maptorn
{
std::string ModfileChecksumMismatch(const std::string& AnswerBody, const std::string& SentMd5)
{
    const JsonFields::FJson Modfile = JsonFields::FJson::parse(AnswerBody, nullptr, false);
    const JsonFields::FJson* Hash = JsonFields::TryGetObject(Modfile, "filehash");
    const std::string Answered = Hash ? ToLower(JsonFields::GetString(*Hash, "md5")) : std::string();
    if (Answered.empty() || Answered == ToLower(SentMd5))
    {
        return {};
    }
    return Printf("mod.io holds other bytes than the archive sent (MD5 %s sent, %s answered)", ToLower(SentMd5).c_str(), Answered.c_str());
}
}
