#!/usr/bin/env bash
# Builds the editor plug-in as far as a machine without the engine can:
#  1. every .cpp of the editor module against the declared engine surface (Tools/EngineSurface),
#     with g++ and clang++, as the engine compiles modules: C++20, no exceptions, no RTTI,
#     shadowing an error, every warning an error;
#  2. the core with the same flags plus the engine's JSON_NOEXCEPTION, with g++ and clang++, and
#     its Windows branches with the MinGW cross compiler;
#  3. the export rule of the engine's per-module DLLs: the core as a shared library with hidden
#     symbols (MAPTORNCORE_API = exported), and every core symbol the editor objects need must be
#     exported from it.
# It checks against declarations written from the engine's reference, not against the engine.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT="$PWD"
OUT="${CHECK_EDITOR_DIR:-$ROOT/build/check-editor}"
JOBS="${JOBS:-2}"

bash Scripts/fetch-thirdparty.sh >/dev/null

rm -rf "$OUT"
mkdir -p "$OUT/generated"
# The header tool's output: an empty <File>.generated.h for every one a header asks for.
grep -rhoE '#include "[A-Za-z0-9_]+\.generated\.h"' Tools/EngineSurface/Include Source/Maptorn \
  | sed -E 's/.*"(.*)"/\1/' | sort -u | while read -r Generated; do : > "$OUT/generated/$Generated"; done

STRICT=(-std=c++20 -fno-exceptions -fno-rtti -Wall -Wextra -Werror -Werror=shadow)
EXPORT="-DMAPTORNCORE_API=__attribute__((visibility(\"default\")))"
ENGINE_INCLUDES=(-isystem Tools/EngineSurface/Include -isystem "$OUT/generated" -DKELVORPROXY_API= -DMODIO_API= -DMAPTORN_API=)
CORE_INCLUDES=(-ISource/MaptornCore/Public -ISource/MaptornCore/Private -isystem Source/ThirdParty/nlohmann/include -DJSON_NOEXCEPTION=1)
EDITOR_INCLUDES=(-ISource/Maptorn/Public -ISource/Maptorn/Private -ISource/MaptornCore/Public -isystem Source/ThirdParty/nlohmann/include)

mapfile -t EDITOR_SOURCES < <(find Source/Maptorn Source/MaptornCore/Engine -name '*.cpp' | sort)
mapfile -t CORE_SOURCES < <(find Source/MaptornCore/Private -name '*.cpp' | sort)

# compile <label> <compiler> <object dir|-> <flags...> -- <sources...>: objects, or a syntax check with "-".
compile() {
  local Label="$1" Compiler="$2" ObjDir="$3"; shift 3
  local Flags=()
  while [ "$1" != "--" ]; do Flags+=("$1"); shift; done
  shift
  echo "check-editor: $Label ($# files)"
  [ "$ObjDir" = "-" ] || mkdir -p "$ObjDir"
  printf '%s\n' "$@" | xargs -P "$JOBS" -I{} bash -c '
    Source="$1"; Compiler="$2"; ObjDir="$3"; shift 3
    if [ "$ObjDir" = "-" ]; then Target=(-fsyntax-only); else Target=(-c -o "$ObjDir/$(echo "$Source" | tr / _).o"); fi
    "$Compiler" "$@" "${Target[@]}" "$Source" || { echo "check-editor: FAILED $Source" >&2; exit 255; }
  ' _ {} "$Compiler" "$ObjDir" "${Flags[@]}"
}

# 1. The editor module against the surface.
compile "editor module, g++" g++ "$OUT/editor" "${STRICT[@]}" -fPIC "$EXPORT" "${ENGINE_INCLUDES[@]}" "${EDITOR_INCLUDES[@]}" -- "${EDITOR_SOURCES[@]}"
compile "editor module, clang++" clang++ - "${STRICT[@]}" -Wshadow-all "$EXPORT" "${ENGINE_INCLUDES[@]}" "${EDITOR_INCLUDES[@]}" -- "${EDITOR_SOURCES[@]}"

# 2. The core as the engine compiles it: g++ file by file (so each file stands on its own includes),
# then clang++ and MinGW over one unit holding every core file, as the engine's unity build would
# (their warnings and errors are the same, the JSON header is parsed once instead of per file).
CORE_UNITY="$OUT/core-unity.cpp"
printf '#include "%s"\n' "${CORE_SOURCES[@]/#/$ROOT/}" > "$CORE_UNITY"
compile "core, g++" g++ "$OUT/core" "${STRICT[@]}" -fPIC -fvisibility=hidden -fvisibility-inlines-hidden "$EXPORT" "${CORE_INCLUDES[@]}" -- "${CORE_SOURCES[@]}"
compile "core, clang++" clang++ - "${STRICT[@]}" -Wshadow-all "$EXPORT" "${CORE_INCLUDES[@]}" -- "$CORE_UNITY"
compile "core, MinGW (Windows)" x86_64-w64-mingw32-g++-posix - "${STRICT[@]}" "-DMAPTORNCORE_API=__declspec(dllexport)" "${CORE_INCLUDES[@]}" -- "$CORE_UNITY"

# 3. Exports: what the editor objects take from the core must be visible outside the core's library.
echo "check-editor: exports"
g++ -shared -o "$OUT/libMaptornCore.so" "$OUT"/core/*.o
nm -g --defined-only "$OUT"/core/*.o | awk 'NF == 3 && $2 ~ /^[TDBR]$/ { print $3 }' | sort -u > "$OUT/core-defined.txt"
nm -D --defined-only "$OUT/libMaptornCore.so" | awk 'NF == 3 { print $3 }' | sort -u > "$OUT/core-exported.txt"
nm -u "$OUT"/editor/*.o | awk 'NF == 2 && $1 == "U" { print $2 }' | sort -u > "$OUT/editor-needs.txt"
comm -12 "$OUT/editor-needs.txt" "$OUT/core-defined.txt" | comm -23 - "$OUT/core-exported.txt" > "$OUT/not-exported.txt"
if [ -s "$OUT/not-exported.txt" ]; then
  echo "check-editor: the editor module uses core symbols the core does not export (add MAPTORNCORE_API):" >&2
  c++filt < "$OUT/not-exported.txt" | sed 's/^/  /' >&2
  exit 1
fi
echo "check-editor: $(comm -12 "$OUT/editor-needs.txt" "$OUT/core-exported.txt" | wc -l) core symbols used by the editor module, all exported"
echo "check-editor: passed"
