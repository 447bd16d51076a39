#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/DeclarativeSyntaxSupport.h (SNew, SAssignNew, SLATE_BEGIN_ARGS, SLATE_ATTRIBUTE, SLATE_ARGUMENT, SLATE_EVENT, SLATE_DEFAULT_SLOT, SLATE_SLOT_ARGUMENT)

#include "CoreMinimal.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Widgets/SWidget.h"

// The arguments every widget takes.
struct FSlateBaseNamedArgs
{
	TAttribute<FText> _ToolTipText;
	TAttribute<EVisibility> _Visibility = EVisibility::Visible;
	TAttribute<bool> _IsEnabled = true;
	FName _Tag;
};

inline void SWidget::SWidgetConstruct(const FSlateBaseNamedArgs& Args)
{
	Visibility = Args._Visibility;
	EnabledState = Args._IsEnabled;
	ToolTipText = Args._ToolTipText;
}

// The setters of an attribute: a value, a lambda, a raw or shared object's const method, a static function.
#define MAPTORN_SURFACE_ATTRIBUTE_SETTERS(AttrType, AttrName) \
	WidgetArgsType& AttrName(TAttribute<AttrType> InAttribute) \
	{ \
		_##AttrName = MoveTemp(InAttribute); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	WidgetArgsType& AttrName##_Lambda(TFunction<AttrType(void)>&& InFunctor) \
	{ \
		_##AttrName = TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateLambda(MoveTemp(InFunctor))); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename UserClass, typename... VarTypes> \
	WidgetArgsType& AttrName##_Raw(const UserClass* InUserObject, AttrType (UserClass::*InFunc)(std::decay_t<VarTypes>...) const, VarTypes... Vars) \
	{ \
		_##AttrName = TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateRaw(InUserObject, InFunc, Vars...)); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename UserClass, typename... VarTypes> \
	WidgetArgsType& AttrName(const UserClass* InUserObject, AttrType (UserClass::*InFunc)(std::decay_t<VarTypes>...) const, VarTypes... Vars) \
	{ \
		_##AttrName = TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateSP(InUserObject, InFunc, Vars...)); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename... VarTypes> \
	WidgetArgsType& AttrName##_Static(AttrType (*InFunc)(std::decay_t<VarTypes>...), VarTypes... Vars) \
	{ \
		_##AttrName = TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateStatic(InFunc, Vars...)); \
		return static_cast<WidgetArgsType&>(*this); \
	}

template <typename WidgetType>
struct TSlateBaseNamedArgs : public FSlateBaseNamedArgs
{
	typedef typename WidgetType::FArguments WidgetArgsType;

	MAPTORN_SURFACE_ATTRIBUTE_SETTERS(FText, ToolTipText)
	MAPTORN_SURFACE_ATTRIBUTE_SETTERS(EVisibility, Visibility)
	MAPTORN_SURFACE_ATTRIBUTE_SETTERS(bool, IsEnabled)
	WidgetArgsType& Tag(FName InTag)
	{
		_Tag = InTag;
		return static_cast<WidgetArgsType&>(*this);
	}
	WidgetArgsType& Me() { return static_cast<WidgetArgsType&>(*this); }
};

#define SLATE_BEGIN_ARGS(WidgetType) \
public: \
	struct FArguments : public TSlateBaseNamedArgs<WidgetType> \
	{ \
		typedef FArguments WidgetArgsType; \
		FArguments()

#define SLATE_USER_ARGS(WidgetType) SLATE_BEGIN_ARGS(WidgetType)

#define SLATE_END_ARGS() \
	};

#define SLATE_ATTRIBUTE(AttrType, AttrName) \
	TAttribute<AttrType> _##AttrName; \
	MAPTORN_SURFACE_ATTRIBUTE_SETTERS(AttrType, AttrName)

#define SLATE_ARGUMENT(ArgType, ArgName) \
	ArgType _##ArgName{}; \
	WidgetArgsType& ArgName(ArgType InArg) \
	{ \
		_##ArgName = InArg; \
		return static_cast<WidgetArgsType&>(*this); \
	}

#define SLATE_STYLE_ARGUMENT(ArgType, ArgName) SLATE_ARGUMENT(const ArgType*, ArgName)

#define SLATE_EVENT(DelegateName, EventName) \
	DelegateName _##EventName; \
	WidgetArgsType& EventName(const DelegateName& InDelegate) \
	{ \
		_##EventName = InDelegate; \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename... ArgsType> \
	WidgetArgsType& EventName##_Lambda(ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateLambda(Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename... ArgsType> \
	WidgetArgsType& EventName##_Raw(ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateRaw(Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename... ArgsType> \
	WidgetArgsType& EventName##_Static(ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateStatic(Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename... ArgsType> \
	WidgetArgsType& EventName##_UObject(ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateUObject(Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename UserClass, typename... ArgsType> \
	WidgetArgsType& EventName(UserClass* InUserObject, ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateSP(InUserObject, Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	template <typename UserClass, ESPMode Mode, typename... ArgsType> \
	WidgetArgsType& EventName(const TSharedRef<UserClass, Mode>& InUserObjectRef, ArgsType&&... Args) \
	{ \
		_##EventName = DelegateName::CreateSP(InUserObjectRef, Forward<ArgsType>(Args)...); \
		return static_cast<WidgetArgsType&>(*this); \
	}

// A slot that always holds a widget (the null widget until one is given).
struct FAlwaysValidWidget
{
	TSharedPtr<SWidget> Widget;
};

#define SLATE_DEFAULT_SLOT(DeclarationType, SlotName) \
	FAlwaysValidWidget _##SlotName; \
	DeclarationType& operator[](const TSharedRef<SWidget>& InChild) \
	{ \
		_##SlotName.Widget = InChild; \
		return static_cast<DeclarationType&>(*this); \
	}

#define SLATE_NAMED_SLOT(DeclarationType, SlotName) \
	FAlwaysValidWidget _##SlotName; \
	DeclarationType& SlotName(const TSharedRef<SWidget>& InChild) \
	{ \
		_##SlotName.Widget = InChild; \
		return static_cast<DeclarationType&>(*this); \
	}

#define SLATE_SLOT_ARGUMENT(SlotType, SlotName) \
	TArray<typename SlotType::FSlotArguments> _##SlotName; \
	WidgetArgsType& operator+(typename SlotType::FSlotArguments& SlotToAdd) \
	{ \
		_##SlotName.Add(MoveTemp(SlotToAdd)); \
		return static_cast<WidgetArgsType&>(*this); \
	} \
	WidgetArgsType& operator+(typename SlotType::FSlotArguments&& SlotToAdd) \
	{ \
		_##SlotName.Add(MoveTempIfPossible(SlotToAdd)); \
		return static_cast<WidgetArgsType&>(*this); \
	}

namespace RequiredArgs
{
struct T0RequiredArgs
{
	template <class WidgetType>
	void CallConstruct(const TSharedRef<WidgetType>& OnWidget, const typename WidgetType::FArguments& WithNamedArgs) const
	{
		OnWidget->Construct(WithNamedArgs);
	}
};

template <typename Arg0Type>
struct T1RequiredArgs
{
	explicit T1RequiredArgs(Arg0Type&& InArg0) : Arg0(InArg0) {}
	template <class WidgetType>
	void CallConstruct(const TSharedRef<WidgetType>& OnWidget, const typename WidgetType::FArguments& WithNamedArgs) const
	{
		OnWidget->Construct(WithNamedArgs, Arg0);
	}
	Arg0Type& Arg0;
};

inline T0RequiredArgs MakeRequiredArgs() { return T0RequiredArgs(); }
template <typename Arg0Type>
T1RequiredArgs<Arg0Type&&> MakeRequiredArgs(Arg0Type&& InArg0)
{
	return T1RequiredArgs<Arg0Type&&>(Forward<Arg0Type>(InArg0));
}
}

// What SNew builds: the widget, made shared, its common and own arguments applied.
template <class WidgetType, typename RequiredArgsPayloadType>
struct TDecl
{
	TDecl(const ANSICHAR* InType, const ANSICHAR* InFile, int32 OnLine, RequiredArgsPayloadType&& InRequiredArgs)
		: Widget(MakeShared<WidgetType>())
		, RequiredArgs(InRequiredArgs)
	{
		Widget->SetDebugInfo(InType, InFile, OnLine);
	}

	template <class ExposeAsWidgetType>
	TDecl&& Expose(TSharedPtr<ExposeAsWidgetType>& OutVarToInit) &&
	{
		OutVarToInit = Widget;
		return MoveTemp(*this);
	}
	template <class ExposeAsWidgetType>
	TDecl&& Expose(TSharedRef<ExposeAsWidgetType>& OutVarToInit) &&
	{
		OutVarToInit = Widget;
		return MoveTemp(*this);
	}

	TSharedRef<WidgetType> operator<<=(const typename WidgetType::FArguments& InArgs) const
	{
		Widget->SWidgetConstruct(InArgs);
		RequiredArgs.CallConstruct(Widget, InArgs);
		return Widget;
	}

	TSharedRef<WidgetType> Widget;
	RequiredArgsPayloadType& RequiredArgs;
};

template <typename WidgetType, typename RequiredArgsPayloadType>
TDecl<WidgetType, RequiredArgsPayloadType> MakeTDecl(const ANSICHAR* InType, const ANSICHAR* InFile, int32 OnLine,
	RequiredArgsPayloadType&& InRequiredArgs)
{
	return TDecl<WidgetType, RequiredArgsPayloadType>(InType, InFile, OnLine, Forward<RequiredArgsPayloadType>(InRequiredArgs));
}

#define SNew(WidgetType, ...) \
	MakeTDecl<WidgetType>(#WidgetType, __FILE__, __LINE__, RequiredArgs::MakeRequiredArgs(__VA_ARGS__)) <<= WidgetType::FArguments()

#define SAssignNew(ExposeAs, WidgetType, ...) \
	MakeTDecl<WidgetType>(#WidgetType, __FILE__, __LINE__, RequiredArgs::MakeRequiredArgs(__VA_ARGS__)).Expose(ExposeAs) <<= WidgetType::FArguments()
