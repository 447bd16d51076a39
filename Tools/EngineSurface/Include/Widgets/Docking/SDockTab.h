#pragma once
// Reference: Runtime/Slate/Public/Widgets/Docking/SDockTab.h (SDockTab, ETabRole)

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SBorder.h"

enum ETabRole : uint8
{
	MajorTab,
	PanelTab,
	NomadTab,
	DocumentTab,
	NumRoles,
};

class SDockTab : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SDockTab) : _TabRole(ETabRole::PanelTab) {}
		SLATE_DEFAULT_SLOT(FArguments, Content)
		SLATE_ARGUMENT(ETabRole, TabRole)
		SLATE_ATTRIBUTE(FText, Label)
		SLATE_ATTRIBUTE(FMargin, ContentPadding)
		SLATE_ATTRIBUTE(FText, ToolTipText)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		if (InArgs._Content.Widget.IsValid())
		{
			SetContent(InArgs._Content.Widget.ToSharedRef());
		}
		TabRole = InArgs._TabRole;
		Label = InArgs._Label;
		ContentPadding = InArgs._ContentPadding;
	}
	ETabRole GetTabRole() const { return TabRole; }
	FText GetTabLabel() const { return Label.Get(FText::GetEmpty()); }
	FMargin GetContentPadding() const { return ContentPadding.Get(FMargin()); }

private:
	ETabRole TabRole = ETabRole::PanelTab;
	TAttribute<FText> Label;
	TAttribute<FMargin> ContentPadding;
};
