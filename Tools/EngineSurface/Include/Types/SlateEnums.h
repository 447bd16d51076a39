#pragma once
// Reference: Runtime/SlateCore/Public/Types/SlateEnums.h (alignments, ESelectInfo, ETextCommit)

#include "CoreMinimal.h"

enum EHorizontalAlignment : int
{
	HAlign_Fill = 0,
	HAlign_Left = 1,
	HAlign_Center = 2,
	HAlign_Right = 3,
};

enum EVerticalAlignment : int
{
	VAlign_Fill = 0,
	VAlign_Top = 1,
	VAlign_Center = 2,
	VAlign_Bottom = 3,
};

namespace ESelectInfo
{
enum Type : int
{
	OnKeyPress,
	OnNavigation,
	OnMouseClick,
	Direct,
};
}

namespace ETextCommit
{
enum Type : int
{
	Default,
	OnEnter,
	OnUserMovedFocus,
	OnCleared,
};
}

enum class EOrientation : uint8
{
	Orient_Horizontal,
	Orient_Vertical,
};
