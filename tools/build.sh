#!/bin/sh
# Configures and builds a preset. Shows the output of the tools only if that fails.
#   tools/build.sh PRESET [OPTION OF CMAKE]...
set -eu
cd "$(dirname "$0")/.."

preset=$1
shift
log=build/$preset.log
mkdir -p build
echo "Building $preset"
if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
