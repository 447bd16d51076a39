// Property values as text, the way the details panel shows and edits them and the stand-in's saved
// packages list them.

#include "EditorEngine/SurfaceObjects.h"

#include "Misc/CString.h"

namespace SurfaceObjects
{
FString PropertyText(const UObject& Object, const FProperty& Property)
{
	if (const FStrProperty* Str = CastField<FStrProperty>(&Property)) { return Str->GetPropertyValue_InContainer(&Object); }
	if (const FTextProperty* Txt = CastField<FTextProperty>(&Property)) { return Txt->GetPropertyValue_InContainer(&Object).ToString(); }
	if (const FSoftObjectProperty* Soft = CastField<FSoftObjectProperty>(&Property)) { return Soft->GetPropertyValue_InContainer(&Object).ToSoftObjectPath().ToString(); }
	if (const FBoolProperty* Flag = CastField<FBoolProperty>(&Property)) { return Flag->GetPropertyValue_InContainer(&Object) ? TEXT("True") : TEXT("False"); }
	if (const FNumericProperty* Number = CastField<FNumericProperty>(&Property))
	{
		return FString::Printf(TEXT("%lld"), static_cast<long long>(Number->GetSignedIntPropertyValue(Number->ContainerPtrToValuePtr<void>(&Object))));
	}
	return FString();
}

bool SetPropertyText(UObject& Object, const FProperty& Property, const FString& Text)
{
	if (const FStrProperty* Str = CastField<FStrProperty>(&Property)) { Str->SetPropertyValue_InContainer(&Object, Text); return true; }
	if (const FTextProperty* Txt = CastField<FTextProperty>(&Property)) { Txt->SetPropertyValue_InContainer(&Object, FText::FromString(Text)); return true; }
	if (const FSoftObjectProperty* Soft = CastField<FSoftObjectProperty>(&Property))
	{
		Soft->SetPropertyValue_InContainer(&Object, FSoftObjectPtr(FSoftObjectPath(Text)));
		return true;
	}
	if (const FBoolProperty* Flag = CastField<FBoolProperty>(&Property)) { Flag->SetPropertyValue_InContainer(&Object, Text.Equals(TEXT("True"))); return true; }
	if (const FNumericProperty* Number = CastField<FNumericProperty>(&Property))
	{
		Number->SetIntPropertyValue(Number->ContainerPtrToValuePtr<void>(&Object), FCString::Atoi64(*Text));
		return true;
	}
	return false;
}
}
