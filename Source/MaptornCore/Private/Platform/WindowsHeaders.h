#pragma once

// The one place the core includes <windows.h>, the way an engine module does: only what the core
// needs, no min/max macros, and the macros that would rename the core's own functions (DeleteFile,
// MoveFile, CopyFile, MessageBox, ...) undone afterwards.
#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#define MAPTORN_DEFINED_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#define MAPTORN_DEFINED_NOMINMAX
#endif

#include <windows.h>

#ifdef MAPTORN_DEFINED_LEAN_AND_MEAN
#undef WIN32_LEAN_AND_MEAN
#undef MAPTORN_DEFINED_LEAN_AND_MEAN
#endif
#ifdef MAPTORN_DEFINED_NOMINMAX
#undef NOMINMAX
#undef MAPTORN_DEFINED_NOMINMAX
#endif
#undef CopyFile
#undef CreateDirectory
#undef DeleteFile
#undef GetObject
#undef MessageBox
#undef MoveFile
#undef UpdateResource
#endif
