// The Steam Workshop page: the project's own map (its name and definition), the Steam change note,
// the deploy platforms with "Deploy Platform Builds", and the stage into the Steam game install.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/SlateValues.h"
#include "UI/WorkshopStyle.h"

#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

namespace
{
TSharedRef<SWidget> MakeDeployPlatformCheck(const FName& Icon, const FText& Label, TFunction<Maptorn::ECheckBoxState()> State,
	TFunction<void(Maptorn::ECheckBoxState)> OnChanged)
{
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth()
		[
			SNew(SCheckBox)
			.IsChecked_Lambda([State] { return ToSlate(State()); })
			.OnCheckStateChanged_Lambda([OnChanged](ECheckBoxState NewState) { OnChanged(FromSlate(NewState)); })
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4, 0, 0, 0)[SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(Icon))]
		+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0, 12, 0)[SNew(STextBlock).Text(Label)];
}
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeSteamPage()
{
	Maptorn::FWorkshopController& Window = *Controller;
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()[MakeHeading(LOCTEXT("SteamMap", "Steam Workshop Map"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)[SNew(STextBlock).Text(LOCTEXT("MapName", "Map Name"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f)
				[
					SNew(SEditableTextBox)
					.HintText(LOCTEXT("MapNameHint", "3-32 characters"))
					.Text(ToText(Controller->GetMapNameBoxText()))
					.IsEnabled_Lambda([this] { return Controller->CanCreateMapDefinition(); })
					.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnMapNameTextChanged(MaptornString::ToStd(Text.ToString())); })
				]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.Text(LOCTEXT("CreateDefinition", "Create Map Definition"))
					.ToolTipText(LOCTEXT("CreateDefinitionTip", "Creates the map's folder in Content/CustomMaps and its definition; link your level as its Map in the definition's details"))
					.IsEnabled_Lambda([this] { return Controller->CanCreateMapDefinition(); })
					.OnClicked_Lambda([this] { return Handled(Controller->CreateMapDefinitionClicked()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)[SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetProjectMapText()); })]
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)[SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetWindowsMapText()); })]
			+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)[SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetAndroidMapText()); })]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)[SNew(STextBlock).Text(LOCTEXT("SteamNote", "Steam change note"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SEditableTextBox)
				.Text(ToText(Controller->GetNotesBoxText()))
				.IsEnabled_Lambda([this] { return Controller->CanEditNotes(); })
				.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnNotesTextChanged(MaptornString::ToStd(Text.ToString())); })
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					MakeDeployPlatformCheck(MaptornWorkshopStyle::PCIcon(), LOCTEXT("DeployWindows", "Windows"), [&Window] { return Window.IsWindowsDeployPlatform(); },
						[&Window](Maptorn::ECheckBoxState State) { Window.OnWindowsBuildPlatformsChanged(State); })
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					MakeDeployPlatformCheck(MaptornWorkshopStyle::VeskoIcon(), LOCTEXT("DeployAndroid", "Android"), [&Window] { return Window.IsAndroidDeployPlatform(); },
						[&Window](Maptorn::ECheckBoxState State) { Window.OnAndroidBuildPlatformsChanged(State); })
				]
				+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)
				[
					SNew(SButton)
					.Text(LOCTEXT("DeployPlatforms", "Deploy Platform Builds"))
					.ToolTipText(LOCTEXT("DeployPlatformsTip", "With no platform ticked, writes the build manifest into Saved/Cooked/Depot; with one ticked, cooks that platform's map"))
					.IsEnabled_Lambda([this] { return Controller->CanDeploy(); })
					.OnClicked_Lambda([this] { return Handled(Controller->SubmitVeskoClicked()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(SButton)
					.Text(LOCTEXT("StageMap", "Stage Map"))
					.ToolTipText(LOCTEXT("StageMapTip", "Cooks the Windows map and stages it into your Steam Kelvor install for offline testing"))
					.IsEnabled_Lambda([this] { return Controller->CanStage(); })
					.OnClicked_Lambda([this] { return Handled(Controller->StageButtonClicked()); })
				]
				+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center).Padding(4, 0)
				[
					SNew(STextBlock)
					.ToolTipText(LOCTEXT("InstallTip", "The game install Stage Map copies into: found through Steam's library folders, or set as KelvorInstallDir in [/Script/Maptorn.MaptornSettings] of your editor settings, then restart the editor"))
					.Text_Lambda([this] { return ToText(Controller->GetInstallDirText()); })
				]
			]
		];
}

#undef LOCTEXT_NAMESPACE
