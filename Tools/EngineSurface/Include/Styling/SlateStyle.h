#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateStyle.h (FSlateStyleSet)

#include "CoreMinimal.h"
#include "Containers/Map.h"
#include "Styling/ISlateStyle.h"

class FSlateStyleSet : public ISlateStyle
{
public:
	explicit FSlateStyleSet(const FName& InStyleSetName) : StyleSetName(InStyleSetName) {}
	virtual ~FSlateStyleSet();
	const FName& GetStyleSetName() const override { return StyleSetName; }
	const FSlateBrush* GetBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	const FSlateColor GetSlateColor(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	FSlateFontInfo GetFontStyle(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const override;
	void SetContentRoot(const FString& InContentRootDir) { ContentRootDir = InContentRootDir; }
	FString RootToContentDir(const FString& RelativePath, const TCHAR* Extension) const { return ContentRootDir / (RelativePath + Extension); }
	void Set(const FName PropertyName, FSlateBrush* InBrush);

protected:
	FName StyleSetName;
	FString ContentRootDir;
	// The brushes set on it, owned by the set.
	TMap<FName, FSlateBrush*> BrushResources;
};
