#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SComboBox.h, Framework/Views/ITypedTableView.h (SComboBox, TSlateDelegates)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

template <typename ArgumentType>
class TSlateDelegates
{
public:
	DECLARE_DELEGATE_RetVal_OneParam(TSharedRef<SWidget>, FOnGenerateWidget, ArgumentType);
	DECLARE_DELEGATE_TwoParams(FOnSelectionChanged, ArgumentType, ESelectInfo::Type);
};

// How a person reads a combo's list and picks from it, whatever its option type (the surface's own).
class SComboBoxChoices : public SCompoundWidget
{
public:
	virtual TArray<TSharedRef<SWidget>> SimulateOpenList() const = 0;
	virtual void SimulateChooseOption(int32 Index) = 0;
};

template <typename OptionType>
class SComboBox : public SComboBoxChoices
{
public:
	typedef typename TSlateDelegates<OptionType>::FOnGenerateWidget FOnGenerateWidget;
	typedef typename TSlateDelegates<OptionType>::FOnSelectionChanged FOnSelectionChanged;

	SLATE_BEGIN_ARGS(SComboBox) : _OptionsSource(nullptr) {}
		SLATE_DEFAULT_SLOT(FArguments, Content)
		SLATE_ARGUMENT(const TArray<OptionType>*, OptionsSource)
		SLATE_EVENT(FOnSelectionChanged, OnSelectionChanged)
		SLATE_EVENT(FOnGenerateWidget, OnGenerateWidget)
		SLATE_ARGUMENT(OptionType, InitiallySelectedItem)
		SLATE_ATTRIBUTE(float, MaxListHeight)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		ChildSlot._Widget = InArgs._Content.Widget;
		OptionsSource = InArgs._OptionsSource;
		OnSelectionChanged = InArgs._OnSelectionChanged;
		OnGenerateWidget = InArgs._OnGenerateWidget;
		SelectedItem = InArgs._InitiallySelectedItem;
	}
	void SetSelectedItem(OptionType InSelectedItem)
	{
		SelectedItem = InSelectedItem;
		OnSelectionChanged.ExecuteIfBound(InSelectedItem, ESelectInfo::Direct);
	}
	OptionType GetSelectedItem() const { return SelectedItem; }
	void RefreshOptions() {}
	TSharedRef<SWidget> GenerateOptionWidget(OptionType Item) const { return OnGenerateWidget.Execute(Item); }

	TArray<TSharedRef<SWidget>> SimulateOpenList() const override
	{
		TArray<TSharedRef<SWidget>> Rows;
		if (OptionsSource && OnGenerateWidget.IsBound())
		{
			for (const OptionType& Option : *OptionsSource)
			{
				Rows.Add(OnGenerateWidget.Execute(Option));
			}
		}
		return Rows;
	}
	void SimulateChooseOption(int32 Index) override
	{
		if (OptionsSource && OptionsSource->IsValidIndex(Index))
		{
			SelectedItem = (*OptionsSource)[Index];
			OnSelectionChanged.ExecuteIfBound(SelectedItem, ESelectInfo::OnMouseClick);
		}
	}

private:
	const TArray<OptionType>* OptionsSource = nullptr;
	FOnSelectionChanged OnSelectionChanged;
	FOnGenerateWidget OnGenerateWidget;
	OptionType SelectedItem{};
};
