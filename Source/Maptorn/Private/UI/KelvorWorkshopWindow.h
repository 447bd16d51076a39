#pragma once

#include "CoreMinimal.h"
#include "Widgets/SCompoundWidget.h"

#include "Workshop/WorkshopController.h"

class SScrollBox;
class SEditableTextBox;
template <typename OptionType> class SComboBox;

// The "Kelvor Workshop" tab: header, tab strip and the five pages. Every value it shows and
// every action it takes goes through the core's FWorkshopController; the widget only converts
// between the toolkit's types and the controller's plain ones.
class SKelvorWorkshopWindow : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKelvorWorkshopWindow) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	TSharedRef<SWidget> MakeHeader();
	TSharedRef<SWidget> MakeTabStrip();
	TSharedRef<SWidget> MakeAccountPage();
	TSharedRef<SWidget> MakeCreatePage();
	TSharedRef<SWidget> MakeUploadPage();
	TSharedRef<SWidget> MakeBrowserPage();
	TSharedRef<SWidget> MakeSteamPage();
	TSharedRef<SWidget> MakeHeading(const FText& Text) const;

	void RebuildUploadRows();
	void RebuildSourceModRows();

	TUniquePtr<Maptorn::FWorkshopController> Controller;
	TSharedPtr<SEditableTextBox> EmailBox;
	TSharedPtr<SEditableTextBox> AuthCodeBox;
	TSharedPtr<SScrollBox> UploadRows;
	TSharedPtr<SScrollBox> SourceModRows;
	TArray<TSharedPtr<Maptorn::ESourceModQueryType>> SortItems;
	TSharedPtr<Maptorn::ESourceModQueryType> CurrentSortItem;
};
