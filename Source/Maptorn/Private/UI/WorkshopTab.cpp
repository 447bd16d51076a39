#include "UI/WorkshopTab.h"

#include "UI/SlateValues.h"

#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/STextBlock.h"

using namespace MaptornSlate;

void SWorkshopTab::Construct(const FArguments& InArgs)
{
	Tab = InArgs._Tab;
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SOverlay)
			+ SOverlay::Slot()
			[
				SNew(SButton)
				.Text(ToText(Tab.Label))
				.OnClicked_Lambda([this] { return Handled(Tab.Clicked()); })
			]
			+ SOverlay::Slot().VAlign(VAlign_Bottom)
			[
				SNew(SBorder)
				.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
				.BorderBackgroundColor(FLinearColor(FColor::FromHex(TEXT("FF601C"))))
				.Padding(FMargin(0, 1))
				.Visibility_Lambda([this] { return ToSlate(Tab.GetActiveVisibility()); })
			]
		]
	];
}
