#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// Why the modfile object mod.io answered for an upload is not the archive sent: its
// "filehash.md5" differs from SentMd5. Empty when they agree, or when the answer holds no hash.
MAPTORNCORE_API std::string ModfileChecksumMismatch(const std::string& AnswerBody, const std::string& SentMd5);
}
