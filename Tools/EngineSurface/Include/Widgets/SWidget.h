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
	// The children a person can see now: a switcher shows only its active one.
	virtual TArray<TSharedRef<SWidget>> GetVisibleChildWidgets() const { return GetChildWidgets(); }

	// The widget's class as SNew named it, and where it was declared.
	void SetDebugInfo(const ANSICHAR* InType, const ANSICHAR* InFile, int32 OnLine)
	{
		TypeOfWidget = FName(InType);
		CreatedInLocation = FName(InFile);
		CreatedOnLine = OnLine;
	}
	FName GetType() const { return TypeOfWidget; }
	FString GetTypeAsString() const { return TypeOfWidget.ToString(); }
	FText GetToolTipText() const { return ToolTipText.Get(FText::GetEmpty()); }

protected:
	TAttribute<EVisibility> Visibility;
	TAttribute<bool> EnabledState;
	TAttribute<FText> ToolTipText;
	FName TypeOfWidget;
	FName CreatedInLocation;
	int32 CreatedOnLine = 0;
};
