#pragma once
// Reference: Runtime/Core/Public/Misc/AssertionMacros.h (check, ensure, verify)

#include "HAL/Platform.h"

// Declared only: the engine's fatal-error path.
[[noreturn]] void MaptornSurfaceCheckFailed(const char* Expression, const char* File, int Line);
bool MaptornSurfaceEnsureFailed(const char* Expression, const char* File, int Line);

#define check(expr) do { if (!(expr)) { MaptornSurfaceCheckFailed(#expr, __FILE__, __LINE__); } } while (false)
#define checkf(expr, format, ...) check(expr)
#define checkNoEntry() MaptornSurfaceCheckFailed("Enclosing block should never be called", __FILE__, __LINE__)
#define verify(expr) check(expr)
#define ensure(expr) ((expr) || MaptornSurfaceEnsureFailed(#expr, __FILE__, __LINE__))
#define ensureMsgf(expr, format, ...) ensure(expr)
