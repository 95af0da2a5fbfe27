#!/bin/sh
# Installs those of the given Debian packages that are missing, as root or through sudo.
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
echo "Installing$missing"
$as_root apt-get update
# shellcheck disable=SC2086 # one word each for the command and the packages
$as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends $missing </dev/null
