#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

#include "UI/WorkshopEntryWidget.h"
#include "Workshop/WorkshopRows.h"

// A shared source plug-in in the browser: logo, name, summary, platform badges, its install status,
// "Add to Project" in the accent colour and the "Modio Page" link. Every value and action is the
// core row's (FWorkshopSourcePluginEntry).
class SKelvorWorkshopSourcePluginEntry : public TWorkshopEntryWidget<Maptorn::FWorkshopSourcePluginEntry>
{
public:
	SLATE_BEGIN_ARGS(SKelvorWorkshopSourcePluginEntry) {}
		SLATE_ARGUMENT(FEntryLookup, Entry)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FText GetStatusText() const;
};
