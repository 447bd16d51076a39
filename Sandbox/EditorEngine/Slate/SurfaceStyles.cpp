// The stand-in editor's styles: the style-set registry, the editor's own style (whose brushes carry
// their names, so a printed widget tree says which image a page asked for), brushes owned by their set.

#include "Brushes/SlateDynamicImageBrush.h"
#include "Brushes/SlateImageBrush.h"
#include "Slate/SlateGameResources.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

#include <map>
#include <memory>
#include <vector>

namespace
{
std::vector<const ISlateStyle*>& RegisteredStyles()
{
	static std::vector<const ISlateStyle*> Styles;
	return Styles;
}

// The editor's style: every brush asked for exists, named after the style name it was asked by.
class FEditorAppStyle final : public ISlateStyle
{
public:
	const FName& GetStyleSetName() const override
	{
		static const FName Name(TEXT("EditorStyle"));
		return Name;
	}
	const FSlateBrush* GetBrush(const FName PropertyName, const ANSICHAR* /*Specifier*/) const override
	{
		std::unique_ptr<FSlateBrush>& Brush = Brushes[PropertyName];
		if (!Brush)
		{
			Brush = std::make_unique<FSlateImageBrush>(PropertyName, FVector2D(16.0, 16.0));
		}
		return Brush.get();
	}
	const FSlateColor GetSlateColor(const FName /*PropertyName*/, const ANSICHAR* /*Specifier*/) const override { return FSlateColor(); }
	FSlateFontInfo GetFontStyle(const FName /*PropertyName*/, const ANSICHAR* /*Specifier*/) const override { return FSlateFontInfo(); }

private:
	mutable std::map<FName, std::unique_ptr<FSlateBrush>> Brushes;
};

const FEditorAppStyle& AppStyle()
{
	static const FEditorAppStyle Style;
	return Style;
}
}

bool FSlateStyleRegistry::RegisterSlateStyle(const ISlateStyle& InSlateStyle)
{
	if (FindSlateStyle(InSlateStyle.GetStyleSetName()))
	{
		return false;
	}
	RegisteredStyles().push_back(&InSlateStyle);
	return true;
}

bool FSlateStyleRegistry::UnRegisterSlateStyle(const ISlateStyle& InSlateStyle)
{
	std::vector<const ISlateStyle*>& Styles = RegisteredStyles();
	for (auto It = Styles.begin(); It != Styles.end(); ++It)
	{
		if (*It == &InSlateStyle)
		{
			Styles.erase(It);
			return true;
		}
	}
	return false;
}

const ISlateStyle* FSlateStyleRegistry::FindSlateStyle(const FName& InSlateStyleName)
{
	for (const ISlateStyle* Style : RegisteredStyles())
	{
		if (Style->GetStyleSetName() == InSlateStyleName)
		{
			return Style;
		}
	}
	return InSlateStyleName == AppStyle().GetStyleSetName() ? &AppStyle() : nullptr;
}

const ISlateStyle& FAppStyle::Get()
{
	return AppStyle();
}

const FName& FAppStyle::GetAppStyleSetName()
{
	return AppStyle().GetStyleSetName();
}

const FSlateBrush* FAppStyle::GetBrush(const FName& PropertyName, const ANSICHAR* Specifier)
{
	return AppStyle().GetBrush(PropertyName, Specifier);
}

const FSlateColor FAppStyle::GetSlateColor(const FName& PropertyName, const ANSICHAR* Specifier)
{
	return AppStyle().GetSlateColor(PropertyName, Specifier);
}

FSlateFontInfo FAppStyle::GetFontStyle(const FName& PropertyName, const ANSICHAR* Specifier)
{
	return AppStyle().GetFontStyle(PropertyName, Specifier);
}

FSlateStyleSet::~FSlateStyleSet()
{
	for (auto Pair : BrushResources)
	{
		delete Pair.Value;
	}
}

const FSlateBrush* FSlateStyleSet::GetBrush(const FName PropertyName, const ANSICHAR* /*Specifier*/) const
{
	FSlateBrush* const* Brush = BrushResources.Find(PropertyName);
	return Brush ? *Brush : nullptr;
}

const FSlateColor FSlateStyleSet::GetSlateColor(const FName /*PropertyName*/, const ANSICHAR* /*Specifier*/) const
{
	return FSlateColor();
}

FSlateFontInfo FSlateStyleSet::GetFontStyle(const FName /*PropertyName*/, const ANSICHAR* /*Specifier*/) const
{
	return FSlateFontInfo();
}

void FSlateStyleSet::Set(const FName PropertyName, FSlateBrush* InBrush)
{
	if (FSlateBrush** Old = BrushResources.Find(PropertyName))
	{
		delete *Old;
	}
	BrushResources.Add(PropertyName, InBrush);
}

TSharedRef<FSlateGameResources> FSlateGameResources::New(const FName& InStyleSetName, const FString& /*ScopeToDirectory*/, const FString& /*InBasePath*/)
{
	return MakeShared<FSlateGameResources>(InStyleSetName);
}

void FSlateDynamicImageBrush::ReleaseResource()
{
}
