#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/ObjectMacros.h (UCLASS, GENERATED_BODY, EObjectFlags, ELoadFlags)

#include "CoreTypes.h"

class UClass;

// The header tool's markers are empty here; the check makes every <File>.generated.h an empty file.
// GENERATED_BODY declares the one thing of the generated code the workshop calls: StaticClass.
#define UCLASS(...)
#define USTRUCT(...)
#define UENUM(...)
#define UPROPERTY(...)
#define UFUNCTION(...)
#define GENERATED_BODY(...) \
public: \
	static UClass* StaticClass(); \
private:

enum EObjectFlags
{
	RF_NoFlags = 0x00000000,
	RF_Public = 0x00000001,
	RF_Standalone = 0x00000002,
	RF_MarkAsNative = 0x00000004,
	RF_Transactional = 0x00000008,
	RF_ClassDefaultObject = 0x00000010,
	RF_ArchetypeObject = 0x00000020,
	RF_Transient = 0x00000040,
};
// ENUM_CLASS_FLAGS(EObjectFlags): combining flags keeps the enum type.
inline constexpr EObjectFlags operator|(EObjectFlags A, EObjectFlags B) { return static_cast<EObjectFlags>(static_cast<int>(A) | static_cast<int>(B)); }
inline constexpr EObjectFlags operator&(EObjectFlags A, EObjectFlags B) { return static_cast<EObjectFlags>(static_cast<int>(A) & static_cast<int>(B)); }

enum ELoadFlags
{
	LOAD_None = 0x00000000,
	LOAD_Async = 0x00000001,
	LOAD_NoWarn = 0x00000002,
	LOAD_EditorOnly = 0x00000004,
	LOAD_ResolvingDeferredExports = 0x00000008,
	LOAD_Verify = 0x00000010,
	LOAD_NoVerify = 0x00000080,
	LOAD_Quiet = 0x00002000,
};
