#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateColor.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

#include "UI/WorkshopEntryWidget.h"
#include "Workshop/WorkshopRows.h"

// One of the user's own mods in the upload list: logo, name, summary, platform badges, "Select Mod"
// and the "Modio Page" link, framed green while it is the chosen mod. Every value and action is the
// core row's (FWorkshopUploadEntry).
class SKelvorWorkshopUploadEntry : public TWorkshopEntryWidget<Maptorn::FWorkshopUploadEntry>
{
public:
	SLATE_BEGIN_ARGS(SKelvorWorkshopUploadEntry) {}
		SLATE_ARGUMENT(FEntryLookup, Entry)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FSlateColor GetSelectColor() const;
};
