#include "UI/WorkshopStyle.h"

#include "Brushes/SlateImageBrush.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/Paths.h"
#include "Styling/SlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

namespace MaptornWorkshopStyle
{
namespace
{
// Where the plug-in is installed; the core's default-logo path assumes the project's Plugins folder,
// which is also the answer when the plug-in manager does not know the plug-in.
FString PluginResourcesDir()
{
	const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(TEXT("Maptorn"));
	const FString BaseDir = Plugin.IsValid() ? Plugin->GetBaseDir() : FPaths::Combine(FPaths::ProjectPluginsDir(), TEXT("Maptorn"));
	return FPaths::Combine(BaseDir, TEXT("Resources"));
}

FString EngineSlateIcon(const TCHAR* FileName)
{
	return FPaths::Combine(FPaths::EngineDir(), TEXT("Content/Slate/Starship/Common"), FileName);
}

// The images keep their aspect; the header strip is drawn at half the files' resolution.
const FVector2D HeaderSize(600.0, 100.0);
const FVector2D BannerSize(600.0, 60.0);
const FVector2D ThumbnailSize(178.0, 100.0);
const FVector2D IconSize(16.0, 16.0);
}

const FName& GetStyleSetName()
{
	static const FName Name(TEXT("MaptornUIResources"));
	return Name;
}

const FName& WorkshopHeader()
{
	static const FName Name(TEXT("Maptorn.WorkshopHeader"));
	return Name;
}

const FName& ModioBanner()
{
	static const FName Name(TEXT("Maptorn.ModioBanner"));
	return Name;
}

const FName& KelvorThumbnail()
{
	static const FName Name(TEXT("Maptorn.KelvorThumbnail"));
	return Name;
}

const FName& LogoPlaceholder()
{
	static const FName Name(TEXT("Maptorn.LogoPlaceholder"));
	return Name;
}

const FName& PCIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.PC"));
	return Name;
}

const FName& VeskoIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.Vesko"));
	return Name;
}

const FName& FolderPlusIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.FolderPlus"));
	return Name;
}

const FName& ExportIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.Export"));
	return Name;
}

const FName& RefreshIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.Refresh"));
	return Name;
}

const FName& UnrealIcon()
{
	static const FName Name(TEXT("Maptorn.Icon.Unreal"));
	return Name;
}

FVector2D RowLogoSize()
{
	return FVector2D(128.0, 72.0);
}

void AddImages(FSlateStyleSet& Style)
{
	// The set owns what is set on it and deletes it with itself.
	const FString Resources = PluginResourcesDir();
	Style.Set(WorkshopHeader(), new FSlateImageBrush(FPaths::Combine(Resources, TEXT("Workshop_header.png")), HeaderSize));
	Style.Set(ModioBanner(), new FSlateImageBrush(FPaths::Combine(Resources, TEXT("Modio_Banner.png")), BannerSize));
	Style.Set(KelvorThumbnail(), new FSlateImageBrush(FPaths::Combine(Resources, TEXT("KelvorThumbnail.jpg")), ThumbnailSize));
	Style.Set(LogoPlaceholder(), new FSlateImageBrush(FPaths::Combine(Resources, TEXT("KelvorThumbnail.jpg")), RowLogoSize()));
	Style.Set(PCIcon(), new FSlateVectorImageBrush(FPaths::Combine(Resources, TEXT("Modio_Icon_PC.svg")), IconSize));
	Style.Set(VeskoIcon(), new FSlateVectorImageBrush(FPaths::Combine(Resources, TEXT("Modio_Icon_Vesko.svg")), IconSize));
	Style.Set(FolderPlusIcon(), new FSlateVectorImageBrush(EngineSlateIcon(TEXT("folder-plus.svg")), IconSize));
	Style.Set(ExportIcon(), new FSlateVectorImageBrush(EngineSlateIcon(TEXT("export.svg")), IconSize));
	Style.Set(RefreshIcon(), new FSlateVectorImageBrush(EngineSlateIcon(TEXT("Refresh.svg")), IconSize));
	Style.Set(UnrealIcon(), new FSlateVectorImageBrush(EngineSlateIcon(TEXT("unreal-circle-thick.svg")), IconSize));
}

const FSlateBrush* GetBrush(const FName& Name)
{
	const ISlateStyle* Style = FSlateStyleRegistry::FindSlateStyle(GetStyleSetName());
	return Style ? Style->GetBrush(Name) : nullptr;
}
}
