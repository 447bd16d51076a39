#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

#include "Workshop/WorkshopRows.h"

struct FSlateDynamicImageBrush;

// A shared source plug-in in the browser: logo, name, summary, platform badges, its install status,
// "Add to Project" in the accent colour and the "Modio Page" link. Every value and action is the
// core row's (FWorkshopSourcePluginEntry).
class SKelvorWorkshopSourcePluginEntry : public SCompoundWidget
{
public:
	// The core row, looked up on every use: the controller updates its rows in place as downloads
	// move, and replaces them when a page or a logo arrives.
	using FEntryLookup = TFunction<const Maptorn::FWorkshopSourcePluginEntry*()>;

	SLATE_BEGIN_ARGS(SKelvorWorkshopSourcePluginEntry) {}
		SLATE_ARGUMENT(FEntryLookup, Entry)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FText GetStatusText() const;
	bool IsButtonEnabled() const;
	EVisibility GetPCBadgeVisibility() const;
	EVisibility GetAndroidBadgeVisibility() const;
	FReply OnModButtonClicked();
	FReply OnOpenModPageClicked();

	FEntryLookup Entry;
	TSharedPtr<FSlateDynamicImageBrush> Logo;
};
