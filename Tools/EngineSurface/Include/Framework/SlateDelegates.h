#pragma once
// Reference: Runtime/Slate/Public/Framework/SlateDelegates.h (FOnClicked, FOnTextChanged, FOnCheckStateChanged, ...)

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"

class SWidget;

DECLARE_DELEGATE_RetVal(FReply, FOnClicked);
DECLARE_DELEGATE_OneParam(FOnTextChanged, const FText&);
DECLARE_DELEGATE_TwoParams(FOnTextCommitted, const FText&, ETextCommit::Type);
DECLARE_DELEGATE_OneParam(FOnCheckStateChanged, ECheckBoxState);
DECLARE_DELEGATE_RetVal(TSharedRef<SWidget>, FOnGetContent);
