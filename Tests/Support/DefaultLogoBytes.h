#pragma once

#include "Sample/DefaultLogo.h"

#include <span>
#include <string>

namespace Maptorn::Testing
{
// The plug-in's own default logo (a 1280x720 JPEG): one that mod.io's logo rules accept.
inline std::string DefaultLogoBytes()
{
    const std::span<const unsigned char> Bytes = Sample::DefaultLogoJpeg();
    return std::string(Bytes.begin(), Bytes.end());
}
}
