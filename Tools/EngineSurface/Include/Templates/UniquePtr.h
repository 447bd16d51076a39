#pragma once
// Reference: Runtime/Core/Public/Templates/UniquePtr.h (TUniquePtr, MakeUnique)

#include "CoreTypes.h"

#include <memory>

template <typename T>
class TUniquePtr
{
public:
	TUniquePtr() = default;
	TUniquePtr(std::nullptr_t) {}
	explicit TUniquePtr(T* Ptr) : Owned(Ptr) {}
	template <typename OtherT>
	TUniquePtr(TUniquePtr<OtherT>&& Other) : Owned(Other.Release()) {}
	TUniquePtr(TUniquePtr&&) = default;
	TUniquePtr& operator=(TUniquePtr&&) = default;
	TUniquePtr& operator=(std::nullptr_t) { Owned.reset(); return *this; }

	bool IsValid() const { return Owned != nullptr; }
	explicit operator bool() const { return IsValid(); }
	T* Get() const { return Owned.get(); }
	T* operator->() const { return Owned.get(); }
	T& operator*() const { return *Owned; }
	T* Release() { return Owned.release(); }
	void Reset(T* Ptr = nullptr) { Owned.reset(Ptr); }

private:
	std::unique_ptr<T> Owned;
};

template <typename T, typename... ArgsType>
TUniquePtr<T> MakeUnique(ArgsType&&... Args)
{
	return TUniquePtr<T>(new T(static_cast<ArgsType&&>(Args)...));
}
