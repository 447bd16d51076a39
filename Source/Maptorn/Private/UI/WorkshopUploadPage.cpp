// The upload page: the own-mod rows, the change note, the platform choices, the stage folder,
// the upload progress and the upload and stage buttons.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/KelvorWorkshopUploadEntry.h"
#include "UI/SlateValues.h"
#include "UI/WorkshopStyle.h"

#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Images/SThrobber.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Notifications/SProgressBar.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

namespace
{
// A check box with its icon and label; the button around it toggles it as well.
TSharedRef<SWidget> MakePlatformCheck(const FName& Icon, const FText& Label, TFunction<Maptorn::ECheckBoxState()> State,
	TFunction<void(Maptorn::ECheckBoxState)> OnChanged, TFunction<bool()> OnToggled)
{
	return SNew(SButton)
		.OnClicked_Lambda([OnToggled] { return Handled(OnToggled()); })
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()
			[
				SNew(SCheckBox)
				.IsChecked_Lambda([State] { return ToSlate(State()); })
				.OnCheckStateChanged_Lambda([OnChanged](ECheckBoxState NewState) { OnChanged(FromSlate(NewState)); })
			]
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4, 0, 0, 0)[SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(Icon))]
			+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)[SNew(STextBlock).Text(Label)]
		];
}
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeUploadPage()
{
	Maptorn::FWorkshopController& Window = *Controller;
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f)[MakeHeading(LOCTEXT("SelectMod", "Select a Mod to Upload"))]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.ToolTipText(LOCTEXT("RefreshModsTip", "Asks mod.io for your mods again"))
					.IsEnabled_Lambda([this] { return Controller->CanRefreshUploadList(); })
					.OnClicked_Lambda([this] { return Handled(Controller->OnRefreshUploadListClicked()); })
					[
						SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(MaptornWorkshopStyle::RefreshIcon()))
					]
				]
			]
			+ SVerticalBox::Slot().FillHeight(1.0f).Padding(4)[SAssignNew(UploadRows, SScrollBox)]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)[SNew(STextBlock).Text(LOCTEXT("ChangeNote", "Change note"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SEditableTextBox)
				.Text(ToText(Controller->GetChangeNoteBoxText()))
				.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnModioNotesTextChanged(MaptornString::ToStd(Text.ToString())); })
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					MakePlatformCheck(MaptornWorkshopStyle::PCIcon(), LOCTEXT("Windows", "Windows"), [&Window] { return Window.IsWindowsBuild(); },
						[&Window](Maptorn::ECheckBoxState State) { Window.OnModioBuildWindowsStateChanged(State); },
						[&Window] { return Window.OnModioBuildWindowsStateChanged(); })
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					MakePlatformCheck(MaptornWorkshopStyle::VeskoIcon(), LOCTEXT("Android", "Android"), [&Window] { return Window.IsAndroidBuild(); },
						[&Window](Maptorn::ECheckBoxState State) { Window.OnModioBuildAndroidStateChanged(State); },
						[&Window] { return Window.OnModioBuildAndroidStateChanged(); })
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					MakePlatformCheck(MaptornWorkshopStyle::ExportIcon(), LOCTEXT("ShareAssets", "Share Mod Assets"), [&Window] { return Window.IsSharingSource(); },
						[&Window](Maptorn::ECheckBoxState State) { Window.OnModioBuildSourceStateChanged(State); },
						[&Window] { return Window.OnModioBuildSourceStateChanged(); })
				]
				+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(4, 0)
				[
					SNew(STextBlock).AutoWrapText(true).Text_Lambda([this] { return ToText(Controller->GetSourceBuildText()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(SButton)
					.ToolTipText(LOCTEXT("StageDirTip", "Select the Kelvor folder inside your AppData/Local for PC mods, for Vesko you can stage them where convenient"))
					.OnClicked_Lambda([this] { return Handled(Controller->SelectStageDir()); })
					[
						SNew(SHorizontalBox)
						+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(FAppStyle::GetBrush("Icons.FolderClosed"))]
						+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)[SNew(STextBlock).Text(LOCTEXT("SelectStage", "Select Stage Directory"))]
					]
				]
				+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(4, 0)
				[
					SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetStageDirText()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SVerticalBox)
				.Visibility_Lambda([this] { return ToSlate(Controller->GetModUploadProgressVisibility()); })
				+ SVerticalBox::Slot().AutoHeight()
				[
					SNew(SProgressBar).Percent_Lambda([this] { return TOptional<float>(Controller->GetBuildProgress().value_or(0.0f)); })
				]
				+ SVerticalBox::Slot().AutoHeight()
				[
					SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetBuildProgressText()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(SOverlay)
					+ SOverlay::Slot()[SNew(SThrobber).Visibility_Lambda([this] { return ToSlate(Controller->GetCreateModSpinnerVisibility()); })]
					+ SOverlay::Slot()
					[
						SNew(SButton)
						.Text(LOCTEXT("UploadMod", "Upload Mod"))
						.Visibility_Lambda([this] { return ToSlate(Controller->GetUploadModVisibility()); })
						.OnClicked_Lambda([this] { return Handled(Controller->UploadModButtonClicked()); })
					]
				]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.Text(LOCTEXT("StageMod", "Stage Mod"))
					.ToolTipText(LOCTEXT("StageModTip", "Stages the mod locally for offline testing"))
					.Visibility_Lambda([this] { return ToSlate(Controller->GetStageModVisibility()); })
					.OnClicked_Lambda([this] { return Handled(Controller->StageModButtonClicked()); })
				]
			]
		];
}

void SKelvorWorkshopWindow::RebuildUploadRows()
{
	if (!UploadRows.IsValid())
	{
		return;
	}
	UploadRows->ClearChildren();
	for (size_t Index = 0; Index < Controller->GetUploadRows().size(); ++Index)
	{
		UploadRows->AddSlot().Padding(2)
		[
			SNew(SKelvorWorkshopUploadEntry)
			.Entry([this, Index]() -> const Maptorn::FWorkshopUploadEntry* {
				const std::vector<Maptorn::FWorkshopUploadEntry>& Rows = Controller->GetUploadRows();
				return Index < Rows.size() ? &Rows[Index] : nullptr;
			})
		];
	}
}

#undef LOCTEXT_NAMESPACE
