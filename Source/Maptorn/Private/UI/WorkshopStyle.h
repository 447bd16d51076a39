#pragma once

#include "CoreMinimal.h"
#include "Math/Vector2D.h"

class FSlateStyleSet;
struct FSlateBrush;

// The window's images in the module's style set: the plug-in's own header images and badges from its
// Resources folder, and the engine's Slate icons the rows use. The module adds them when it makes the
// set; the widgets look them up by these names.
namespace MaptornWorkshopStyle
{
const FName& GetStyleSetName();

// Header images.
const FName& WorkshopHeader();
const FName& ModioBanner();
const FName& KelvorThumbnail();
// A row's logo until the mod's own is on disk: the plug-in's default logo at the row's logo size.
const FName& LogoPlaceholder();
// Platform badges.
const FName& PCIcon();
const FName& VeskoIcon();
// Engine icons.
const FName& FolderPlusIcon();
const FName& ExportIcon();
const FName& RefreshIcon();
const FName& UnrealIcon();

// The size a row draws its mod's 16:9 logo at.
FVector2D RowLogoSize();

void AddImages(FSlateStyleSet& Style);

// The brush of that name in the registered set; null before the module has registered it.
const FSlateBrush* GetBrush(const FName& Name);
}
