#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SNullWidget.h (SNullWidget)

#include "CoreMinimal.h"
#include "Widgets/SWidget.h"

class SNullWidget
{
public:
	static TSharedRef<SWidget> NullWidget;
};
