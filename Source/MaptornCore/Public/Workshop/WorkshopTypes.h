#pragma once

#include "Common/CoreTypes.h"

#include <string>
#include <string_view>

namespace Maptorn
{
// The toolkit's three visibilities. Hidden keeps the control's space, Collapsed gives it up.
enum class EVisibility : uint8
{
    Visible,
    Collapsed,
    Hidden,
};

enum class ECheckBoxState : uint8
{
    Unchecked,
    Checked,
    Undetermined,
};

// An 8-bit sRGB colour with alpha, as the toolkit's FColor holds it.
struct MAPTORNCORE_API FWorkshopColor
{
    uint8 R = 0;
    uint8 G = 0;
    uint8 B = 0;
    uint8 A = 255;

    // "RRGGBB" or "RRGGBBAA", with or without a leading "#"; black for anything else.
    static FWorkshopColor FromHex(std::string_view Hex);
    // "RRGGBBAA", upper case.
    std::string ToHex() const;

    friend bool operator==(const FWorkshopColor&, const FWorkshopColor&) = default;
};

// The rows' colours: an upload row is pure green when it is the chosen mod, dark grey otherwise.
namespace WorkshopColors
{
inline constexpr FWorkshopColor SelectedRow{0, 255, 0, 255};
inline constexpr const char* UnselectedRowHex = "151515FF";
// The source-plug-in rows' accent: their "Add to Project" button.
inline constexpr const char* SourceRowAccentHex = "FF601C";
}
}
