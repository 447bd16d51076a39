#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Layout/Visibility.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateTypes.h"

#include "Platform/StringConversion.h"
#include "Workshop/WorkshopTypes.h"

// The controller's plain values in the toolkit's types.
namespace MaptornSlate
{
inline EVisibility ToSlate(Maptorn::EVisibility Visibility)
{
	switch (Visibility)
	{
	case Maptorn::EVisibility::Collapsed: return EVisibility::Collapsed;
	case Maptorn::EVisibility::Hidden: return EVisibility::Hidden;
	default: return EVisibility::Visible;
	}
}

inline ECheckBoxState ToSlate(Maptorn::ECheckBoxState State)
{
	switch (State)
	{
	case Maptorn::ECheckBoxState::Checked: return ECheckBoxState::Checked;
	case Maptorn::ECheckBoxState::Undetermined: return ECheckBoxState::Undetermined;
	default: return ECheckBoxState::Unchecked;
	}
}

inline Maptorn::ECheckBoxState FromSlate(ECheckBoxState State)
{
	switch (State)
	{
	case ECheckBoxState::Checked: return Maptorn::ECheckBoxState::Checked;
	case ECheckBoxState::Undetermined: return Maptorn::ECheckBoxState::Undetermined;
	default: return Maptorn::ECheckBoxState::Unchecked;
	}
}

inline FText ToText(const std::string& Text)
{
	return FText::FromString(MaptornString::ToFString(Text));
}

inline FSlateColor ToSlate(const Maptorn::FWorkshopColor& Color)
{
	return FSlateColor(FLinearColor(FColor(Color.R, Color.G, Color.B, Color.A)));
}

inline FReply Handled(bool)
{
	return FReply::Handled();
}
}
