#!/bin/sh
# Checks the sources without compiling them: their format, the calls that may overrun a buffer, what
# cppcheck finds, and the shell scripts.
set -eu
cd "$(dirname "$0")/.."

product='services xlat messages config frontend'
failed=0

# shellcheck disable=SC2086 # a list of folders
if grep -rnE --include='*.cpp' --include='*.h' \
    '\b(strcpy|strcat|v?sprintf|gets|stpcpy)[[:space:]]*\(' $product; then
    echo 'These calls have no bound: use BoundedText.' >&2
    failed=1
fi
# shellcheck disable=SC2086
if grep -rnE --include='*.cpp' --include='*.h' '#include <(iostream|fstream|sstream)>' $product; then
    echo 'Streams cost start-up time, and each request starts the program: use <cstdio>.' >&2
    failed=1
fi
# shellcheck disable=SC2086
if grep -rnE --include='*.cpp' --include='*.h' '#include "\.\./' $product; then
    echo 'A layer sees the layers that its target links: no include by a path.' >&2
    failed=1
fi
# shellcheck disable=SC2086
find $product tests fuzz examples bench tools \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) \
    -exec clang-format --dry-run -Werror {} + || failed=1
# shellcheck disable=SC2046,SC2086
cppcheck --quiet --enable=warning,performance,portability --error-exitcode=1 --language=c++ \
    --std=c++20 --suppressions-list=tools/cppcheck-suppressions.txt \
    $(find $product -type d -printf '-I %p ') $product || failed=1
shellcheck run test tools/*.sh install/cgi-bin/* install/debian/post* install/debian/prerm || failed=1

exit $failed
