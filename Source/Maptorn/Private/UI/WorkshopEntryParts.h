#pragma once

#include "CoreMinimal.h"
#include "Misc/Attribute.h"
#include "Widgets/SWidget.h"

#include "Modio/SourceModInfo.h"

#include <string>

struct FSlateDynamicImageBrush;

// What both kinds of workshop row draw the same way: the mod's logo, its texts and badges, and the
// look of their buttons. No decisions: the core's row answers which logo and which badges.
namespace MaptornWorkshopEntry
{
// The logo loaded from its file at the row's logo size; null for no file, when the row shows the placeholder.
TSharedPtr<FSlateDynamicImageBrush> MakeLogoBrush(const std::string& LogoPath);

// The logo, or the placeholder while Logo is null. The row keeps Logo alive as long as the image.
TSharedRef<SWidget> MakeLogo(const TSharedPtr<FSlateDynamicImageBrush>& Logo);

// The name in bold on the header strip, the summary, then the "PC Compatible" and "Android Compatible" badges.
TSharedRef<SWidget> MakeModText(const Maptorn::FSourceModInfo& Mod, TAttribute<EVisibility> PCBadge, TAttribute<EVisibility> AndroidBadge);

// A button's content: an icon of the window's style set and a label.
TSharedRef<SWidget> MakeButtonContent(const FName& Icon, const FText& Label);
}
