#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/WeakObjectPtrTemplates.h (TWeakObjectPtr)

#include "UObject/Object.h"

// Declared only for the object tracking; the engine resolves it through its object array.
bool MaptornSurfaceIsObjectAlive(const UObject* Object);

template <typename T>
class TWeakObjectPtr
{
public:
	TWeakObjectPtr() = default;
	TWeakObjectPtr(T* InObject) : Object(InObject) {}
	TWeakObjectPtr& operator=(T* InObject) { Object = InObject; return *this; }

	bool IsValid() const { return Object && MaptornSurfaceIsObjectAlive(Object); }
	T* Get() const { return IsValid() ? Object : nullptr; }
	void Reset() { Object = nullptr; }

private:
	T* Object = nullptr;
};
