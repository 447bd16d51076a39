#pragma once
// Reference: Runtime/Core/Public/Internationalization/Text.h (FText, LOCTEXT, NSLOCTEXT)

#include "CoreTypes.h"
#include "Containers/UnrealString.h"
#include "UObject/NameTypes.h"

// Text shown to the user. Localisation is out of this surface's scope: the text is the source string.
class FText
{
public:
	FText() = default;

	static FText FromString(const FString& String) { FText Result; Result.Source = String; return Result; }
	static FText FromName(const FName& Name) { return FromString(Name.ToString()); }
	static const FText& GetEmpty()
	{
		static const FText Empty;
		return Empty;
	}

	const FString& ToString() const { return Source; }
	bool IsEmpty() const { return Source.IsEmpty(); }
	bool EqualTo(const FText& Other) const { return Source.Equals(Other.Source); }

private:
	FString Source;
};

// The entry point of the localisation macros.
class FInternationalization
{
public:
	static FText ForUseOnlyByLocMacroAndGraphNodeTextLiterals_CreateText(const TCHAR* InTextLiteral, const TCHAR* InNamespace, const TCHAR* InKey)
	{
		(void)InNamespace;
		(void)InKey;
		return FText::FromString(InTextLiteral);
	}
};

// As in the engine, LOCTEXT needs LOCTEXT_NAMESPACE defined and takes plain (not TEXT) literals.
#define NSLOCTEXT(InNamespace, InKey, InTextLiteral) \
	FInternationalization::ForUseOnlyByLocMacroAndGraphNodeTextLiterals_CreateText(TEXT(InTextLiteral), TEXT(InNamespace), TEXT(InKey))
#define LOCTEXT(InKey, InTextLiteral) NSLOCTEXT(LOCTEXT_NAMESPACE, InKey, InTextLiteral)
#define INVTEXT(InTextLiteral) FText::FromString(TEXT(InTextLiteral))
