#!/bin/sh
# Installs those of the given Debian packages that are missing, as root or through sudo. Shows the output
# of apt only if it fails.
set -eu

missing=
for package; do
    case $(dpkg-query -W -f '${Status}' "$package" 2>/dev/null) in
        *' installed') ;;
        *) missing="$missing $package" ;;
    esac
done
if [ -z "$missing" ]; then
    exit 0
fi

as_root=
if [ "$(id -u)" -ne 0 ]; then
    as_root=sudo
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "Installing$missing"
# shellcheck disable=SC2086 # one word each for the command and the packages
if ! { $as_root apt-get update && $as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends $missing; } </dev/null >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
