#pragma once
// Reference: Runtime/SlateCore/Public/Layout/Visibility.h (EVisibility)

#include "CoreMinimal.h"

struct EVisibility
{
	static const EVisibility Visible;
	static const EVisibility Collapsed;
	static const EVisibility Hidden;
	static const EVisibility HitTestInvisible;
	static const EVisibility SelfHitTestInvisible;
	static const EVisibility All;

	EVisibility() : Value(VIS_Visible) {}
	bool operator==(const EVisibility& Other) const { return Value == Other.Value; }
	bool operator!=(const EVisibility& Other) const { return Value != Other.Value; }
	bool IsVisible() const { return Value != VIS_Collapsed && Value != VIS_Hidden; }

private:
	enum Private
	{
		VIS_Visible,
		VIS_Collapsed,
		VIS_Hidden,
		VIS_HitTestInvisible,
		VIS_SelfHitTestInvisible,
		VIS_All,
	};
	explicit constexpr EVisibility(Private InValue) : Value(InValue) {}
	Private Value;
};

inline const EVisibility EVisibility::Visible(EVisibility::VIS_Visible);
inline const EVisibility EVisibility::Collapsed(EVisibility::VIS_Collapsed);
inline const EVisibility EVisibility::Hidden(EVisibility::VIS_Hidden);
inline const EVisibility EVisibility::HitTestInvisible(EVisibility::VIS_HitTestInvisible);
inline const EVisibility EVisibility::SelfHitTestInvisible(EVisibility::VIS_SelfHitTestInvisible);
inline const EVisibility EVisibility::All(EVisibility::VIS_All);
