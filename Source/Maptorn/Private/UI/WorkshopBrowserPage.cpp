// The source-plug-in browser: sort and search, the catalogue rows, paging and the download line.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/KelvorWorkshopSourcePluginEntry.h"
#include "UI/SlateValues.h"
#include "UI/WorkshopStyle.h"

#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SComboBox.h"
#include "Widgets/Input/SSearchBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Notifications/SProgressBar.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;
using Maptorn::ESourceModQueryType;

namespace
{
FText SortLabel(ESourceModQueryType Sort)
{
	switch (Sort)
	{
	case ESourceModQueryType::Installed: return LOCTEXT("SortInstalled", "Installed");
	case ESourceModQueryType::Popular: return LOCTEXT("SortPopular", "Popular");
	case ESourceModQueryType::Subscribers: return LOCTEXT("SortSubscribers", "Subscribers");
	case ESourceModQueryType::Newest: return LOCTEXT("SortNewest", "Newest");
	case ESourceModQueryType::LastUpdated: return LOCTEXT("SortUpdated", "Last Updated");
	case ESourceModQueryType::Rating: return LOCTEXT("SortRating", "Rating");
	case ESourceModQueryType::Downloads: return LOCTEXT("SortDownloads", "Downloads");
	case ESourceModQueryType::NameAscending: return LOCTEXT("SortNameUp", "Name A-Z");
	case ESourceModQueryType::NameDescending: return LOCTEXT("SortNameDown", "Name Z-A");
	}
	return FText::GetEmpty();
}
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeBrowserPage()
{
	for (uint32 Value = 0; Value <= static_cast<uint32>(ESourceModQueryType::NameDescending); ++Value)
	{
		SortItems.Add(MakeShared<ESourceModQueryType>(static_cast<ESourceModQueryType>(Value)));
	}
	// A reopened tab shows the query the client still holds.
	const uint32 Sort = static_cast<uint32>(Controller->GetSourceModSortType());
	CurrentSortItem = Sort < static_cast<uint32>(SortItems.Num()) ? SortItems[static_cast<int32>(Sort)] : SortItems[0];

	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()[MakeHeading(LOCTEXT("SelectPlugins", "Select Plugins to Download to Your Project"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(SComboBox<TSharedPtr<ESourceModQueryType>>)
					.OptionsSource(&SortItems)
					.InitiallySelectedItem(CurrentSortItem)
					.OnGenerateWidget_Lambda([](TSharedPtr<ESourceModQueryType> Item) { return SNew(STextBlock).Text(SortLabel(*Item)); })
					.OnSelectionChanged_Lambda([this](TSharedPtr<ESourceModQueryType> Item, ESelectInfo::Type) {
						CurrentSortItem = Item;
						Controller->UpdatedFilters(Item.IsValid() ? std::optional<ESourceModQueryType>(*Item) : std::nullopt);
					})
					[
						SNew(STextBlock).Text_Lambda([this] { return CurrentSortItem.IsValid() ? SortLabel(*CurrentSortItem) : FText::GetEmpty(); })
					]
				]
				+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(4, 0)
				[
					SNew(SSearchBox)
					.HintText(LOCTEXT("SearchHint", "Search for Source Plugins"))
					.InitialText(ToText(Controller->GetSourceModSearchText()))
					.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnSourceModSearchChanged(MaptornString::ToStd(Text.ToString())); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 0)
			[
				SNew(STextBlock).AutoWrapText(true).Text_Lambda([this] { return ToText(Controller->GetSourceQueryErrorText()); })
			]
			+ SVerticalBox::Slot().FillHeight(1.0f).Padding(4)[SAssignNew(SourceModRows, SScrollBox)]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(SButton)
					.IsEnabled_Lambda([this] { return Controller->IsPreviousPageEnabled(); })
					.OnClicked_Lambda([this] { return Handled(Controller->OnPreviousModPageClicked()); })
					[
						SNew(SHorizontalBox)
						+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(FAppStyle::GetBrush("Icons.ArrowLeft"))]
						+ SHorizontalBox::Slot().AutoWidth()[SNew(STextBlock).Text(LOCTEXT("PreviousPage", "Previous Page"))]
					]
				]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.IsEnabled_Lambda([this] { return Controller->IsNextPageEnabled(); })
					.OnClicked_Lambda([this] { return Handled(Controller->OnNextModPageClicked()); })
					[
						SNew(SHorizontalBox)
						+ SHorizontalBox::Slot().AutoWidth()[SNew(STextBlock).Text(LOCTEXT("NextPage", "Next Page"))]
						+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(FAppStyle::GetBrush("Icons.ArrowRight"))]
					]
				]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.IsEnabled_Lambda([this] { return Controller->CanGatherSourceMods(); })
					.OnClicked_Lambda([this] { return Handled(Controller->OnRefreshModPageClicked()); })
					[
						SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(MaptornWorkshopStyle::RefreshIcon()))
					]
				]
				+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(4, 0)
				[
					SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetPageStatus()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 0)
			[
				SNew(STextBlock).AutoWrapText(true).Text_Lambda([this] { return ToText(Controller->GetDownloadErrorText()); })
			]
			// The mod.io plugin for UE 5.1 reads dependencies but cannot add one, and the editor holds no token of its own for mod.io.
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 0)
			[
				SNew(STextBlock).AutoWrapText(true).Text(LOCTEXT("AddDependencyElsewhere",
					"Adding a plugin that needs others asks whether to download them too. To make one of your own mods need another, run "
					"\"maptorn deps add <your mod id> <dependency id>\": the mod.io plugin of this editor cannot add dependencies."))
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SVerticalBox)
				.Visibility_Lambda([this] { return ToSlate(Controller->GetModDownloadVisibility()); })
				+ SVerticalBox::Slot().AutoHeight()
				[
					SNew(SProgressBar).Percent_Lambda([this] { return TOptional<float>(Controller->GetDownloadProgress().value_or(0.0f)); })
				]
				+ SVerticalBox::Slot().AutoHeight()
				[
					SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetDownloadProgressText()); })
				]
			]
		];
}

void SKelvorWorkshopWindow::RebuildSourceModRows()
{
	if (!SourceModRows.IsValid())
	{
		return;
	}
	SourceModRows->ClearChildren();
	for (size_t Index = 0; Index < Controller->GetSourceModRows().size(); ++Index)
	{
		SourceModRows->AddSlot().Padding(2)
		[
			SNew(SKelvorWorkshopSourcePluginEntry)
			.Entry([this, Index]() -> const Maptorn::FWorkshopSourcePluginEntry* {
				const std::vector<Maptorn::FWorkshopSourcePluginEntry>& Rows = Controller->GetSourceModRows();
				return Index < Rows.size() ? &Rows[Index] : nullptr;
			})
		];
	}
}

#undef LOCTEXT_NAMESPACE
