#pragma once

#include <span>

namespace Maptorn::Sample
{
// The plug-in's default mod logo, Resources/KelvorThumbnail.jpg, compiled in by the build: the
// sample project gets the very file the plug-in ships, wherever the program runs from.
std::span<const unsigned char> DefaultLogoJpeg();
}
