#pragma once
// Reference: Runtime/Core/Public/Templates/SharedPointer.h (TSharedRef, TSharedPtr, TWeakPtr, TSharedFromThis)

#include "CoreTypes.h"

#include <memory>
#include <type_traits>

enum class ESPMode : uint8
{
	NotThreadSafe = 0,
	ThreadSafe = 1,
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedRef;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TWeakPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedFromThis;

// Never null: built only from an object, never defaulted.
template <typename ObjectType, ESPMode Mode>
class TSharedRef
{
public:
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedRef(const TSharedRef<OtherType, Mode>& Other) : Object(Other.Object) {}

	ObjectType& Get() const { return *Object; }
	ObjectType* operator->() const { return Object.get(); }
	ObjectType& operator&() const = delete;
	ObjectType& operator*() const { return *Object; }
	bool IsUnique() const { return Object.use_count() == 1; }
	int32 GetSharedReferenceCount() const { return static_cast<int32>(Object.use_count()); }
	TSharedPtr<ObjectType, Mode> ToSharedPtr() const { return TSharedPtr<ObjectType, Mode>(*this); }
	bool operator==(const TSharedRef& Other) const { return Object == Other.Object; }

	// Surface plumbing: the engine builds these through MakeShared and friends only.
	static TSharedRef FromStd(std::shared_ptr<ObjectType> InObject) { return TSharedRef(static_cast<std::shared_ptr<ObjectType>&&>(InObject)); }
	const std::shared_ptr<ObjectType>& ToStd() const { return Object; }

private:
	template <typename, ESPMode> friend class TSharedRef;
	template <typename, ESPMode> friend class TSharedPtr;
	explicit TSharedRef(std::shared_ptr<ObjectType> InObject) : Object(static_cast<std::shared_ptr<ObjectType>&&>(InObject)) {}

	std::shared_ptr<ObjectType> Object;
};

template <typename ObjectType, ESPMode Mode>
class TSharedPtr
{
public:
	TSharedPtr() = default;
	TSharedPtr(std::nullptr_t) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedPtr<OtherType, Mode>& Other) : Object(Other.Object) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedRef<OtherType, Mode>& Other) : Object(Other.Object) {}

	bool IsValid() const { return Object != nullptr; }
	explicit operator bool() const { return IsValid(); }
	ObjectType* Get() const { return Object.get(); }
	ObjectType* operator->() const { check(IsValid()); return Object.get(); }
	ObjectType& operator*() const { check(IsValid()); return *Object; }
	void Reset() { Object.reset(); }
	bool IsUnique() const { return Object.use_count() == 1; }
	TSharedRef<ObjectType, Mode> ToSharedRef() const { check(IsValid()); return TSharedRef<ObjectType, Mode>(Object); }
	bool operator==(const TSharedPtr& Other) const { return Object == Other.Object; }
	bool operator==(std::nullptr_t) const { return Object == nullptr; }

	static TSharedPtr FromStd(std::shared_ptr<ObjectType> InObject) { TSharedPtr Result; Result.Object = InObject; return Result; }
	const std::shared_ptr<ObjectType>& ToStd() const { return Object; }

private:
	template <typename, ESPMode> friend class TSharedPtr;
	template <typename, ESPMode> friend class TWeakPtr;
	std::shared_ptr<ObjectType> Object;
};

template <typename ObjectType, ESPMode Mode>
class TWeakPtr
{
public:
	TWeakPtr() = default;
	template <typename OtherType>
	TWeakPtr(const TSharedPtr<OtherType, Mode>& Shared) : Object(Shared.ToStd()) {}
	template <typename OtherType>
	TWeakPtr(const TSharedRef<OtherType, Mode>& Shared) : Object(Shared.ToStd()) {}

	TSharedPtr<ObjectType, Mode> Pin() const { return TSharedPtr<ObjectType, Mode>::FromStd(Object.lock()); }
	bool IsValid() const { return !Object.expired(); }
	void Reset() { Object.reset(); }

private:
	std::weak_ptr<ObjectType> Object;
};

// Lets an object hand out shared references to itself.
template <typename ObjectType, ESPMode Mode>
class TSharedFromThis : public std::enable_shared_from_this<ObjectType>
{
public:
	TSharedRef<ObjectType, Mode> AsShared() { return TSharedRef<ObjectType, Mode>::FromStd(this->shared_from_this()); }
	TSharedRef<const ObjectType, Mode> AsShared() const
	{
		return TSharedRef<const ObjectType, Mode>::FromStd(std::shared_ptr<const ObjectType>(this->shared_from_this()));
	}
	TWeakPtr<ObjectType, Mode> AsWeak() { return TWeakPtr<ObjectType, Mode>(AsShared()); }

protected:
	template <typename OtherType>
	static TSharedRef<OtherType, Mode> SharedThis(OtherType* ThisPtr)
	{
		return TSharedRef<OtherType, Mode>::FromStd(std::static_pointer_cast<OtherType>(ThisPtr->shared_from_this()));
	}
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe, typename... ArgTypes>
TSharedRef<ObjectType, Mode> MakeShared(ArgTypes&&... Args)
{
	return TSharedRef<ObjectType, Mode>::FromStd(std::make_shared<ObjectType>(static_cast<ArgTypes&&>(Args)...));
}

template <typename ObjectType>
struct TRawPtrProxy
{
	ObjectType* Object;
};

template <typename ObjectType>
TRawPtrProxy<ObjectType> MakeShareable(ObjectType* InObject)
{
	return TRawPtrProxy<ObjectType>{InObject};
}

template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedRef<CastToType, Mode> StaticCastSharedRef(const TSharedRef<CastFromType, Mode>& InSharedRef)
{
	return TSharedRef<CastToType, Mode>::FromStd(std::static_pointer_cast<CastToType>(InSharedRef.ToStd()));
}

template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedPtr<CastToType, Mode> StaticCastSharedPtr(const TSharedPtr<CastFromType, Mode>& InSharedPtr)
{
	return TSharedPtr<CastToType, Mode>::FromStd(std::static_pointer_cast<CastToType>(InSharedPtr.ToStd()));
}
