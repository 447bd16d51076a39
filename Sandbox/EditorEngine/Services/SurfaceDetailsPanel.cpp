// The stand-in editor's details panel: what a modder opens by double-clicking an asset in the content
// browser, to set the fields the workshop reads (a definition's maps, say) and save the asset.

#include "EditorEngine/SurfaceEditor.h"
#include "EditorEngine/SurfaceObjects.h"

#include "FileHelpers.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace SurfaceEditor
{
TSharedPtr<SWidget> OpenAssetDetails(const FString& ObjectPath)
{
	UObject* Asset = LoadObject<UObject>(nullptr, *ObjectPath);
	if (!Asset)
	{
		return nullptr;
	}
	// The panel refers to the asset by path, so an asset unloaded meanwhile is found missing, not used.
	const FString Path = Asset->GetPathName();
	TSharedRef<SVerticalBox> Panel = SNew(SVerticalBox);
	Panel->AddSlot().AutoHeight()[SNew(STextBlock).Text(FText::FromString(Path))];
	for (const FProperty* Property : SurfaceObjects::PropertiesOf(*Asset))
	{
		Panel->AddSlot().AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()[SNew(STextBlock).Text(FText::FromString(Property->GetName()))]
			+ SHorizontalBox::Slot().FillWidth(1.0f)
			[
				SNew(SEditableTextBox)
				.Text(FText::FromString(SurfaceObjects::PropertyText(*Asset, *Property)))
				.OnTextCommitted_Lambda([Path, Property](const FText& Text, ETextCommit::Type) {
					UObject* Edited = LoadObject<UObject>(nullptr, *Path);
					if (Edited && SurfaceObjects::SetPropertyText(*Edited, *Property, Text.ToString()))
					{
						Edited->MarkPackageDirty();
					}
				})
			]
		];
	}
	Panel->AddSlot().AutoHeight()
	[
		SNew(SButton)
		.Text(FText::FromString(TEXT("Save")))
		.OnClicked_Lambda([Path] {
			if (UObject* Saved = LoadObject<UObject>(nullptr, *Path))
			{
				UEditorLoadingAndSavingUtils::SavePackages(TArray<UPackage*>{Saved->GetPackage()}, true);
			}
			return FReply::Handled();
		})
	];
	return Panel;
}
}
