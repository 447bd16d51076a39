#pragma once
// Reference: Runtime/Core/Public/Misc/Attribute.h (TAttribute)

#include "CoreMinimal.h"

// A value or a getter bound to one, read by the widget every frame.
template <typename ObjectType>
class TAttribute
{
public:
	DECLARE_DELEGATE_RetVal(ObjectType, FGetter);

	TAttribute() = default;
	template <typename OtherType, typename = std::enable_if_t<std::is_constructible_v<ObjectType, const OtherType&>>>
	TAttribute(const OtherType& InInitialValue) : Value(InInitialValue), bIsSet(true) {}
	// A shared object's const method as the getter; the object is held weakly.
	template <typename SourceType>
	TAttribute(SourceType* InUserObject, ObjectType (SourceType::*InMethodPtr)() const)
		: bIsSet(true)
		, Getter(FGetter::CreateSP(InUserObject, InMethodPtr))
	{
	}

	static TAttribute Create(const FGetter& InGetter)
	{
		TAttribute Attribute;
		Attribute.Getter = InGetter;
		Attribute.bIsSet = true;
		return Attribute;
	}
	template <typename LambdaType>
	static TAttribute CreateLambda(LambdaType&& InCallable)
	{
		return Create(FGetter::CreateLambda(static_cast<LambdaType&&>(InCallable)));
	}

	const ObjectType& Get() const
	{
		if (Getter.IsBound())
		{
			Value = Getter.Execute();
		}
		return Value;
	}
	const ObjectType& Get(const ObjectType& DefaultValue) const { return bIsSet ? Get() : DefaultValue; }
	bool IsSet() const { return bIsSet; }
	bool IsBound() const { return Getter.IsBound(); }
	void Set(const ObjectType& InNewValue) { Getter.Unbind(); Value = InNewValue; bIsSet = true; }

private:
	mutable ObjectType Value{};
	bool bIsSet = false;
	FGetter Getter;
};
