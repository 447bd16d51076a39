#!/usr/bin/env bash
# Puts the third-party headers the engine build of the plug-in needs under Source/ThirdParty
# (git-ignored: nothing third-party is committed). Every source is pinned by version and SHA-256
# and a mismatch is refused.
#
# nlohmann/json: on Debian, the nlohmann-json3-dev package when its version is the pinned one
# (its header tree, checked against the pinned digest of that tree); elsewhere the release's
# single header, downloaded and checked against the release's pinned digest.
set -euo pipefail
cd "$(dirname "$0")/.."

NLOHMANN_JSON_VERSION="3.11.2"
NLOHMANN_JSON_URL="https://github.com/nlohmann/json/releases/download/v${NLOHMANN_JSON_VERSION}/json.hpp"
NLOHMANN_JSON_SHA256="665fa14b8af3837966949e8eb0052d583e2ac105d3438baba9951785512cf921"
# sha256 of "sha256sum" over every file of /usr/include/nlohmann, sorted by path, as Debian 12 ships 3.11.2.
NLOHMANN_JSON_DEBIAN_TREE_SHA256="fe16aa0cf32a8283c32c350b8820bc3a5bf3f30a389a615920f405448a7a65e3"

DEST_ROOT="Source/ThirdParty/nlohmann/include"
DEST="$DEST_ROOT/nlohmann"
STAMP="Source/ThirdParty/nlohmann/.pinned"

fail() { echo "fetch-thirdparty: $*" >&2; exit 1; }

tree_digest() { (cd "$1" && find nlohmann -type f | LC_ALL=C sort | xargs sha256sum | sha256sum | cut -d' ' -f1); }

pin_line="nlohmann/json ${NLOHMANN_JSON_VERSION} ${NLOHMANN_JSON_SHA256} ${NLOHMANN_JSON_DEBIAN_TREE_SHA256}"
if [ -f "$STAMP" ] && [ "$(cat "$STAMP")" = "$pin_line" ] && [ -f "$DEST/json.hpp" ]; then
  exit 0
fi

install_tree() {
  rm -rf "$DEST"
  mkdir -p "$DEST_ROOT"
  cp -R "$1" "$DEST"
  echo "$pin_line" > "$STAMP"
}

debian_version="$(dpkg-query -W -f='${Version}' nlohmann-json3-dev 2>/dev/null || true)"
if [ -n "$debian_version" ] && [ "${debian_version%%-*}" = "$NLOHMANN_JSON_VERSION" ]; then
  actual="$(tree_digest /usr/include)"
  [ "$actual" = "$NLOHMANN_JSON_DEBIAN_TREE_SHA256" ] \
    || fail "/usr/include/nlohmann ($debian_version) has digest $actual, pinned $NLOHMANN_JSON_DEBIAN_TREE_SHA256: refusing it"
  install_tree /usr/include/nlohmann
  echo "fetch-thirdparty: nlohmann/json $NLOHMANN_JSON_VERSION from Debian's nlohmann-json3-dev into $DEST"
  exit 0
fi
if [ -n "$debian_version" ]; then
  echo "fetch-thirdparty: Debian has nlohmann/json $debian_version, pinned is $NLOHMANN_JSON_VERSION: downloading the release" >&2
fi

tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
curl -fsSL --proto '=https' --tlsv1.2 -o "$tmp/json.hpp" "$NLOHMANN_JSON_URL" \
  || fail "could not download $NLOHMANN_JSON_URL"
actual="$(sha256sum "$tmp/json.hpp" | cut -d' ' -f1)"
[ "$actual" = "$NLOHMANN_JSON_SHA256" ] || fail "$NLOHMANN_JSON_URL has SHA-256 $actual, pinned $NLOHMANN_JSON_SHA256: refusing it"
mkdir -p "$tmp/nlohmann" && mv "$tmp/json.hpp" "$tmp/nlohmann/json.hpp"
install_tree "$tmp/nlohmann"
echo "fetch-thirdparty: nlohmann/json $NLOHMANN_JSON_VERSION (release single header) into $DEST"
