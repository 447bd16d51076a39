#pragma once
// Reference: Runtime/Core/Public/GenericPlatform/GenericPlatformMisc.h (EAppMsgType, EAppReturnType)

namespace EAppMsgType
{
enum Type
{
	Ok,
	YesNo,
	OkCancel,
	YesNoCancel,
	CancelRetryContinue,
	YesNoYesAllNoAll,
	YesNoYesAllNoAllCancel,
	YesNoYesAll,
};
}

namespace EAppReturnType
{
enum Type
{
	No,
	Yes,
	YesAll,
	NoAll,
	Cancel,
	Ok,
	Retry,
	Continue,
};
}
