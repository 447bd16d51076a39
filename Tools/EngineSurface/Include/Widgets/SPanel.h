#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SPanel.h (SPanel)

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

class SPanel : public SWidget
{
protected:
	SPanel() = default;
};
