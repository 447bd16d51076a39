#include "UI/WorkshopEntryParts.h"

#include "UI/SlateValues.h"
#include "UI/WorkshopStyle.h"

#include "Brushes/SlateDynamicImageBrush.h"
#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

namespace MaptornWorkshopEntry
{
namespace
{
TSharedRef<SWidget> MakeBadge(const FName& Icon, const FText& Label, TAttribute<EVisibility> Visibility)
{
	return SNew(SHorizontalBox)
		.Visibility(MoveTemp(Visibility))
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)[SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(Icon))]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4, 0, 8, 0)[SNew(STextBlock).Text(Label)];
}
}

TSharedPtr<FSlateDynamicImageBrush> MakeLogoBrush(const std::string& LogoPath)
{
	if (LogoPath.empty())
	{
		return nullptr;
	}
	return MakeShared<FSlateDynamicImageBrush>(FName(MaptornString::ToFString(LogoPath)), MaptornWorkshopStyle::RowLogoSize());
}

TSharedRef<SWidget> MakeLogo(const TSharedPtr<FSlateDynamicImageBrush>& Logo)
{
	const FSlateBrush* Brush = Logo.IsValid() ? Logo.Get() : MaptornWorkshopStyle::GetBrush(MaptornWorkshopStyle::LogoPlaceholder());
	return SNew(SImage).Image(Brush);
}

TSharedRef<SWidget> MakeModText(const Maptorn::FSourceModInfo& Mod, TAttribute<EVisibility> PCBadge, TAttribute<EVisibility> AndroidBadge)
{
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
			.BorderBackgroundColor(FAppStyle::GetSlateColor("Colors.Header"))
			.Padding(FMargin(4, 2))
			[
				SNew(STextBlock).Font(FAppStyle::GetFontStyle("NormalFontBold")).Text(ToText(Mod.Name))
			]
		]
		+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)[SNew(STextBlock).AutoWrapText(true).Text(ToText(Mod.Summary))]
		+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()[MakeBadge(MaptornWorkshopStyle::PCIcon(), LOCTEXT("PCCompatible", "PC Compatible"), MoveTemp(PCBadge))]
			+ SHorizontalBox::Slot().AutoWidth()
			[
				MakeBadge(MaptornWorkshopStyle::VeskoIcon(), LOCTEXT("AndroidCompatible", "Android Compatible"), MoveTemp(AndroidBadge))
			]
		];
}

TSharedRef<SWidget> MakeButtonContent(const FName& Icon, const FText& Label)
{
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)[SNew(SImage).Image(MaptornWorkshopStyle::GetBrush(Icon))]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4, 0, 0, 0)[SNew(STextBlock).Text(Label)];
}
}

#undef LOCTEXT_NAMESPACE
