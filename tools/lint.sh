#!/bin/sh
# Checks the sources without compiling them: format, calls that may overrun a buffer, includes across
# layers, cppcheck, and the shell scripts.
set -eu
cd "$(dirname "$0")/.."

product='services xlat messages config frontend'
failed=0

# shellcheck disable=SC2086 # a list of folders
if grep -rnE --include='*.cpp' --include='*.h' \
    '\b(strcpy|strcat|v?sprintf|gets|stpcpy)[[:space:]]*\(' $product; then
    echo 'These calls have no bound: use FixedText or BoundedText.' >&2
    failed=1
fi
# shellcheck disable=SC2086
if grep -rnE --include='*.cpp' --include='*.h' '#include <(iostream|fstream|sstream)>' $product; then
    echo 'Streams cost start-up time, and each request starts the program: use <cstdio>.' >&2
    failed=1
fi
# The layers that each layer may include, besides the headers of the system.
while read -r layer allowed; do
    if grep -nE '#include "' "$layer"/*.cpp "$layer"/*.h 2>/dev/null |
        grep -vE "#include \"($allowed)/[^/]+\""; then
        echo "$layer/ may only include $allowed." >&2
        failed=1
    fi
done <<'END'
services/base services/base
services/inner services/(base|inner)
xlat services/(base|inner)|xlat
messages services/(base|inner)|messages
services/outer services/(base|inner|outer)|xlat|messages
frontend/interface frontend/interface
config services/(base|outer)|config|frontend/interface
frontend services/(base|outer)|config|frontend(/interface)?
END
# shellcheck disable=SC2086
find $product tests fuzz examples bench tools \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) \
    -exec clang-format --dry-run -Werror {} + || failed=1
# shellcheck disable=SC2046,SC2086
cppcheck --quiet --enable=warning,performance,portability --error-exitcode=1 --language=c++ \
    --std=c++20 --suppressions-list=tools/cppcheck-suppressions.txt \
    -I . $product || failed=1
shellcheck run test tools/*.sh install/cgi-bin/* install/debian/post* install/debian/prerm || failed=1

exit $failed
