#pragma once

#include "CoreMinimal.h"
#include "Widgets/SCompoundWidget.h"

#include "Workshop/WorkshopTab.h"

// One button of the tab strip, with the marker of the chosen page.
class SWorkshopTab : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SWorkshopTab) {}
		SLATE_ARGUMENT(Maptorn::FWorkshopTab, Tab)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	Maptorn::FWorkshopTab Tab;
};
