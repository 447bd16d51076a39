#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/UnrealType.h, Field.h (FField, FProperty and its kinds, CastField, FindFProperty)

#include "UObject/Object.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/UObjectGlobals.h"

// The class of a field, with its parent so that IsA and CastField work without RTTI.
class FFieldClass
{
public:
	FFieldClass(const TCHAR* InName, const FFieldClass* InSuper) : Name(InName), Super(InSuper) {}
	bool IsChildOf(const FFieldClass* Other) const
	{
		for (const FFieldClass* Class = this; Class; Class = Class->Super)
		{
			if (Class == Other) { return true; }
		}
		return false;
	}
	const FName& GetFName() const { return Name; }

private:
	FName Name;
	const FFieldClass* Super;
};

#define DECLARE_FIELD(TClass, TSuperClass) \
public: \
	static FFieldClass* StaticClass() \
	{ \
		static FFieldClass Class(TEXT(#TClass), TSuperClass::StaticClass()); \
		return &Class; \
	} \
	virtual FFieldClass* GetClass() const override { return StaticClass(); }

class FField
{
public:
	FField(FName InName) : NamePrivate(InName) {}
	virtual ~FField() {}
	static FFieldClass* StaticClass()
	{
		static FFieldClass Class(TEXT("FField"), nullptr);
		return &Class;
	}
	virtual FFieldClass* GetClass() const { return StaticClass(); }
	bool IsA(const FFieldClass* FieldType) const { return GetClass()->IsChildOf(FieldType); }
	FName GetFName() const { return NamePrivate; }
	FString GetName() const { return NamePrivate.ToString(); }

private:
	FName NamePrivate;
};

class FProperty : public FField
{
	DECLARE_FIELD(FProperty, FField)

public:
	FProperty(FName InName, int32 InOffset) : FField(InName), Offset_Internal(InOffset) {}

	template <typename ValueType>
	ValueType* ContainerPtrToValuePtr(void* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<ValueType*>(ContainerVoidPtrToValuePtrInternal(ContainerPtr, ArrayIndex));
	}
	template <typename ValueType>
	const ValueType* ContainerPtrToValuePtr(const void* ContainerPtr, int32 ArrayIndex = 0) const
	{
		return static_cast<const ValueType*>(ContainerVoidPtrToValuePtrInternal(const_cast<void*>(ContainerPtr), ArrayIndex));
	}
	int32 GetOffset_ForInternal() const { return Offset_Internal; }

private:
	void* ContainerVoidPtrToValuePtrInternal(void* ContainerPtr, int32 ArrayIndex) const
	{
		(void)ArrayIndex;
		return static_cast<uint8*>(ContainerPtr) + Offset_Internal;
	}
	int32 Offset_Internal;
};

// A property holding a TCppType, read and written in place.
template <typename TCppType, typename TInClass>
class TProperty : public TInClass
{
public:
	using TInClass::TInClass;
	TCppType GetPropertyValue_InContainer(const void* A, int32 ArrayIndex = 0) const
	{
		return *this->template ContainerPtrToValuePtr<TCppType>(A, ArrayIndex);
	}
	void SetPropertyValue_InContainer(void* A, const TCppType& Value, int32 ArrayIndex = 0) const
	{
		*this->template ContainerPtrToValuePtr<TCppType>(A, ArrayIndex) = Value;
	}
};

class FStrProperty : public TProperty<FString, FProperty>
{
	DECLARE_FIELD(FStrProperty, FProperty)
public:
	using TProperty::TProperty;
};

class FTextProperty : public TProperty<FText, FProperty>
{
	DECLARE_FIELD(FTextProperty, FProperty)
public:
	using TProperty::TProperty;
};

class FNameProperty : public TProperty<FName, FProperty>
{
	DECLARE_FIELD(FNameProperty, FProperty)
public:
	using TProperty::TProperty;
};

class FBoolProperty : public TProperty<bool, FProperty>
{
	DECLARE_FIELD(FBoolProperty, FProperty)
public:
	using TProperty::TProperty;
};

class FNumericProperty : public FProperty
{
	DECLARE_FIELD(FNumericProperty, FProperty)
public:
	using FProperty::FProperty;
	virtual bool IsInteger() const { return false; }
	virtual int64 GetSignedIntPropertyValue(void const* Data) const { (void)Data; return 0; }
	virtual void SetIntPropertyValue(void* Data, int64 Value) const { (void)Data; (void)Value; }
};

class FIntProperty : public FNumericProperty
{
	DECLARE_FIELD(FIntProperty, FNumericProperty)
public:
	using FNumericProperty::FNumericProperty;
	bool IsInteger() const override { return true; }
	int64 GetSignedIntPropertyValue(void const* Data) const override { return *static_cast<const int32*>(Data); }
	void SetIntPropertyValue(void* Data, int64 Value) const override { *static_cast<int32*>(Data) = static_cast<int32>(Value); }
};

class FObjectPropertyBase : public FProperty
{
	DECLARE_FIELD(FObjectPropertyBase, FProperty)
public:
	FObjectPropertyBase(FName InName, int32 InOffset, UClass* InPropertyClass = nullptr) : FProperty(InName, InOffset), PropertyClass(InPropertyClass) {}
	virtual UObject* GetObjectPropertyValue_InContainer(const void* ContainerAddress, int32 ArrayIndex = 0) const
	{
		return *ContainerPtrToValuePtr<UObject*>(ContainerAddress, ArrayIndex);
	}
	virtual void SetObjectPropertyValue_InContainer(void* ContainerAddress, UObject* Value, int32 ArrayIndex = 0) const
	{
		*ContainerPtrToValuePtr<UObject*>(ContainerAddress, ArrayIndex) = Value;
	}

	UClass* PropertyClass;
};

class FObjectProperty : public FObjectPropertyBase
{
	DECLARE_FIELD(FObjectProperty, FObjectPropertyBase)
public:
	using FObjectPropertyBase::FObjectPropertyBase;
};

class FSoftObjectProperty : public TProperty<FSoftObjectPtr, FObjectPropertyBase>
{
	DECLARE_FIELD(FSoftObjectProperty, FObjectPropertyBase)
public:
	using TProperty::TProperty;
};

template <typename FieldType>
FieldType* CastField(FField* Src)
{
	return Src && Src->IsA(FieldType::StaticClass()) ? static_cast<FieldType*>(Src) : nullptr;
}

template <typename FieldType>
const FieldType* CastField(const FField* Src)
{
	return Src && Src->IsA(FieldType::StaticClass()) ? static_cast<const FieldType*>(Src) : nullptr;
}

// The property named FieldName of Owner or its parents, when it is a FieldType.
FProperty* MaptornSurfaceFindPropertyByName(const UStruct* Owner, FName FieldName);

template <typename FieldType>
FieldType* FindFProperty(const UStruct* Owner, FName FieldName)
{
	return CastField<FieldType>(MaptornSurfaceFindPropertyByName(Owner, FieldName));
}
