#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SWidget.h (SWidget)

#include "CoreMinimal.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"

struct FSlateBaseNamedArgs;

class SWidget : public TSharedFromThis<SWidget>
{
public:
	virtual ~SWidget() {}

	void SetVisibility(TAttribute<EVisibility> InVisibility) { Visibility = InVisibility; }
	EVisibility GetVisibility() const { return Visibility.Get(EVisibility::Visible); }
	void SetEnabled(const TAttribute<bool>& InEnabledState) { EnabledState = InEnabledState; }
	bool IsEnabled() const { return EnabledState.Get(true); }
	void SetToolTipText(const TAttribute<FText>& InToolTipText) { ToolTipText = InToolTipText; }

	// Applies the arguments every widget takes (visibility, enabled state, tool tip); the
	// declarative syntax calls it before the widget's own Construct.
	void SWidgetConstruct(const FSlateBaseNamedArgs& Args);

	// The children the widget holds now, for the surface's tests to walk the tree.
	virtual TArray<TSharedRef<SWidget>> GetChildWidgets() const { return TArray<TSharedRef<SWidget>>(); }

protected:
	TAttribute<EVisibility> Visibility;
	TAttribute<bool> EnabledState;
	TAttribute<FText> ToolTipText;
};
