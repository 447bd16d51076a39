#pragma once
// Reference: Runtime/Core/Public/Delegates/Delegate.h, DelegateSignatureImpl.inl (TDelegate, TMulticastDelegate, DECLARE_DELEGATE_*)

#include "CoreTypes.h"
#include "Delegates/IDelegateInstance.h"
#include "Templates/SharedPointer.h"

#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

class UObject;

// A single-cast delegate. Member-function bindings must match the delegate's parameters (plus any
// payload) exactly, as the engine's TMemFunPtrType requires.
template <typename FuncType> class TDelegate;

template <typename RetValType, typename... ParamTypes>
class TDelegate<RetValType(ParamTypes...)>
{
public:
	TDelegate() = default;
	TDelegate(std::nullptr_t) {}

	template <typename... VarTypes>
	static TDelegate CreateStatic(RetValType (*InFunc)(ParamTypes..., std::decay_t<VarTypes>...), VarTypes... Vars)
	{
		return Make([InFunc, Vars...](ParamTypes... Params) -> RetValType { return InFunc(Params..., Vars...); }, nullptr);
	}
	template <typename FunctorType, typename... VarTypes>
	static TDelegate CreateLambda(FunctorType&& InFunctor, VarTypes... Vars)
	{
		return Make([Functor = std::decay_t<FunctorType>(static_cast<FunctorType&&>(InFunctor)), Vars...](ParamTypes... Params) mutable
			-> RetValType { return Functor(Params..., Vars...); }, nullptr);
	}
	template <typename UserClass, typename FunctorType, typename... VarTypes>
	static TDelegate CreateWeakLambda(UserClass* InUserObject, FunctorType&& InFunctor, VarTypes... Vars)
	{
		TDelegate Result = CreateLambda(static_cast<FunctorType&&>(InFunctor), Vars...);
		Result.Owner = InUserObject;
		return Result;
	}
	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateRaw(UserClass* InUserObject, RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...), VarTypes... Vars)
	{
		return Make([InUserObject, InFunc, Vars...](ParamTypes... Params) -> RetValType { return (InUserObject->*InFunc)(Params..., Vars...); },
			InUserObject);
	}
	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateRaw(const UserClass* InUserObject, RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...) const,
		VarTypes... Vars)
	{
		return Make([InUserObject, InFunc, Vars...](ParamTypes... Params) -> RetValType { return (InUserObject->*InFunc)(Params..., Vars...); },
			InUserObject);
	}
	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	static TDelegate CreateSP(const TSharedRef<UserClass, Mode>& InUserObjectRef,
		RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...), VarTypes... Vars)
	{
		return MakeWeak(InUserObjectRef, InFunc, Vars...);
	}
	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	static TDelegate CreateSP(const TSharedRef<UserClass, Mode>& InUserObjectRef,
		RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...) const, VarTypes... Vars)
	{
		return MakeWeak(InUserObjectRef, InFunc, Vars...);
	}
	// The object must derive from TSharedFromThis, as in the engine.
	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateSP(UserClass* InUserObject, RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...), VarTypes... Vars)
	{
		return MakeWeak(StaticCastSharedRef<UserClass>(InUserObject->AsShared()), InFunc, Vars...);
	}
	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateSP(const UserClass* InUserObject, RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...) const,
		VarTypes... Vars)
	{
		return MakeWeak(StaticCastSharedRef<const UserClass>(InUserObject->AsShared()), InFunc, Vars...);
	}
	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateUObject(UserClass* InUserObject, RetValType (UserClass::*InFunc)(ParamTypes..., std::decay_t<VarTypes>...),
		VarTypes... Vars)
	{
		return CreateRaw(InUserObject, InFunc, Vars...);
	}

	template <typename... ArgsType> void BindStatic(ArgsType&&... Args) { *this = CreateStatic(static_cast<ArgsType&&>(Args)...); }
	template <typename... ArgsType> void BindLambda(ArgsType&&... Args) { *this = CreateLambda(static_cast<ArgsType&&>(Args)...); }
	template <typename... ArgsType> void BindWeakLambda(ArgsType&&... Args) { *this = CreateWeakLambda(static_cast<ArgsType&&>(Args)...); }
	template <typename... ArgsType> void BindRaw(ArgsType&&... Args) { *this = CreateRaw(static_cast<ArgsType&&>(Args)...); }
	template <typename... ArgsType> void BindSP(ArgsType&&... Args) { *this = CreateSP(static_cast<ArgsType&&>(Args)...); }
	template <typename... ArgsType> void BindUObject(ArgsType&&... Args) { *this = CreateUObject(static_cast<ArgsType&&>(Args)...); }

	bool IsBound() const { return static_cast<bool>(Callable) && (!IsAlive || IsAlive()); }
	void Unbind() { Callable = nullptr; IsAlive = nullptr; Owner = nullptr; }
	bool IsBoundToObject(const void* InUserObject) const { return Owner == InUserObject; }
	FDelegateHandle GetHandle() const { return Handle; }

	RetValType Execute(ParamTypes... Params) const
	{
		check(IsBound());
		return Callable(Params...);
	}
	template <typename ThisRetVal = RetValType, typename = std::enable_if_t<std::is_void_v<ThisRetVal>>>
	bool ExecuteIfBound(ParamTypes... Params) const
	{
		if (!IsBound())
		{
			return false;
		}
		Callable(Params...);
		return true;
	}

private:
	template <typename FunctorType>
	static TDelegate Make(FunctorType&& Functor, const void* InOwner)
	{
		TDelegate Result;
		Result.Callable = static_cast<FunctorType&&>(Functor);
		Result.Owner = InOwner;
		Result.Handle = FDelegateHandle::MakeNew();
		return Result;
	}
	template <typename UserClass, ESPMode Mode, typename MethodType, typename... VarTypes>
	static TDelegate MakeWeak(const TSharedRef<UserClass, Mode>& Ref, MethodType InFunc, VarTypes... Vars)
	{
		std::weak_ptr<UserClass> Weak = Ref.ToStd();
		TDelegate Result = Make([Weak, InFunc, Vars...](ParamTypes... Params) -> RetValType {
			return (Weak.lock().get()->*InFunc)(Params..., Vars...);
		}, Ref.ToStd().get());
		Result.IsAlive = [Weak] { return !Weak.expired(); };
		return Result;
	}

	std::function<RetValType(ParamTypes...)> Callable;
	std::function<bool()> IsAlive;
	const void* Owner = nullptr;
	FDelegateHandle Handle;
};

template <typename FuncType> class TMulticastDelegate;

template <typename... ParamTypes>
class TMulticastDelegate<void(ParamTypes...)>
{
public:
	using FDelegate = TDelegate<void(ParamTypes...)>;

	FDelegateHandle Add(const FDelegate& InNewDelegate)
	{
		Bindings.push_back(InNewDelegate);
		return InNewDelegate.GetHandle();
	}
	template <typename... ArgsType> FDelegateHandle AddStatic(ArgsType&&... Args) { return Add(FDelegate::CreateStatic(static_cast<ArgsType&&>(Args)...)); }
	template <typename... ArgsType> FDelegateHandle AddLambda(ArgsType&&... Args) { return Add(FDelegate::CreateLambda(static_cast<ArgsType&&>(Args)...)); }
	template <typename... ArgsType> FDelegateHandle AddWeakLambda(ArgsType&&... Args) { return Add(FDelegate::CreateWeakLambda(static_cast<ArgsType&&>(Args)...)); }
	template <typename... ArgsType> FDelegateHandle AddRaw(ArgsType&&... Args) { return Add(FDelegate::CreateRaw(static_cast<ArgsType&&>(Args)...)); }
	template <typename... ArgsType> FDelegateHandle AddSP(ArgsType&&... Args) { return Add(FDelegate::CreateSP(static_cast<ArgsType&&>(Args)...)); }
	template <typename... ArgsType> FDelegateHandle AddUObject(ArgsType&&... Args) { return Add(FDelegate::CreateUObject(static_cast<ArgsType&&>(Args)...)); }

	bool Remove(FDelegateHandle Handle)
	{
		for (auto It = Bindings.begin(); It != Bindings.end(); ++It)
		{
			if (It->GetHandle() == Handle)
			{
				Bindings.erase(It);
				return true;
			}
		}
		return false;
	}
	int32 RemoveAll(const void* InUserObject)
	{
		const size_t Before = Bindings.size();
		std::erase_if(Bindings, [InUserObject](const FDelegate& Binding) { return Binding.IsBoundToObject(InUserObject); });
		return static_cast<int32>(Before - Bindings.size());
	}
	bool IsBound() const { return !Bindings.empty(); }
	void Clear() { Bindings.clear(); }
	void Broadcast(ParamTypes... Params) const
	{
		const std::vector<FDelegate> Current = Bindings;
		for (const FDelegate& Binding : Current)
		{
			Binding.ExecuteIfBound(Params...);
		}
	}

private:
	std::vector<FDelegate> Bindings;
};

#define FUNC_DECLARE_DELEGATE(DelegateName, ReturnType, ...) typedef TDelegate<ReturnType(__VA_ARGS__)> DelegateName;
#define FUNC_DECLARE_MULTICAST_DELEGATE(MulticastDelegateName, ReturnType, ...) typedef TMulticastDelegate<ReturnType(__VA_ARGS__)> MulticastDelegateName;

#define DECLARE_DELEGATE(DelegateName) FUNC_DECLARE_DELEGATE(DelegateName, void)
#define DECLARE_DELEGATE_OneParam(DelegateName, Param1Type) FUNC_DECLARE_DELEGATE(DelegateName, void, Param1Type)
#define DECLARE_DELEGATE_TwoParams(DelegateName, Param1Type, Param2Type) FUNC_DECLARE_DELEGATE(DelegateName, void, Param1Type, Param2Type)
#define DECLARE_DELEGATE_ThreeParams(DelegateName, Param1Type, Param2Type, Param3Type) \
	FUNC_DECLARE_DELEGATE(DelegateName, void, Param1Type, Param2Type, Param3Type)
#define DECLARE_DELEGATE_RetVal(ReturnValueType, DelegateName) FUNC_DECLARE_DELEGATE(DelegateName, ReturnValueType)
#define DECLARE_DELEGATE_RetVal_OneParam(ReturnValueType, DelegateName, Param1Type) FUNC_DECLARE_DELEGATE(DelegateName, ReturnValueType, Param1Type)
#define DECLARE_DELEGATE_RetVal_TwoParams(ReturnValueType, DelegateName, Param1Type, Param2Type) \
	FUNC_DECLARE_DELEGATE(DelegateName, ReturnValueType, Param1Type, Param2Type)
#define DECLARE_MULTICAST_DELEGATE(DelegateName) FUNC_DECLARE_MULTICAST_DELEGATE(DelegateName, void)
#define DECLARE_MULTICAST_DELEGATE_OneParam(DelegateName, Param1Type) FUNC_DECLARE_MULTICAST_DELEGATE(DelegateName, void, Param1Type)
#define DECLARE_MULTICAST_DELEGATE_TwoParams(DelegateName, Param1Type, Param2Type) \
	FUNC_DECLARE_MULTICAST_DELEGATE(DelegateName, void, Param1Type, Param2Type)

DECLARE_DELEGATE(FSimpleDelegate);
DECLARE_MULTICAST_DELEGATE(FSimpleMulticastDelegate);
