#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Styling/SlateColor.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

#include "Workshop/WorkshopRows.h"

struct FSlateDynamicImageBrush;

// One of the user's own mods in the upload list: logo, name, summary, platform badges, "Select Mod"
// and the "Modio Page" link, framed green while it is the chosen mod. Every value and action is the
// core row's (FWorkshopUploadEntry).
class SKelvorWorkshopUploadEntry : public SCompoundWidget
{
public:
	// The core row, looked up on every use: the controller replaces its rows when the list changes,
	// and a widget of a replaced row finds none until the window rebuilds it.
	using FEntryLookup = TFunction<const Maptorn::FWorkshopUploadEntry*()>;

	SLATE_BEGIN_ARGS(SKelvorWorkshopUploadEntry) {}
		SLATE_ARGUMENT(FEntryLookup, Entry)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FSlateColor GetSelectColor() const;
	bool IsButtonEnabled() const;
	EVisibility GetPCBadgeVisibility() const;
	EVisibility GetAndroidBadgeVisibility() const;
	FReply OnModButtonClicked();
	FReply OnOpenModPageClicked();

	FEntryLookup Entry;
	TSharedPtr<FSlateDynamicImageBrush> Logo;
};
