# Writes the header with the code level and the build date. The date is that of
# SOURCE_DATE_EPOCH, else of the last commit, else of the release: never the clock, so that the
# same source always gives the same program.
set(release_date_epoch 1795305600) # 22 Nov 2026

set(epoch "$ENV{SOURCE_DATE_EPOCH}")
if(NOT epoch MATCHES "^[0-9]+$")
  # Named outright, the repository may belong to somebody else, and that of a folder further up
  # isn't taken for ours.
  execute_process(
    COMMAND git --git-dir=${SOURCE_DIR}/.git log -1 --format=%ct
    OUTPUT_VARIABLE epoch OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT epoch MATCHES "^[0-9]+$")
  set(epoch ${release_date_epoch})
endif()

set(ENV{SOURCE_DATE_EPOCH} "${epoch}")
string(TIMESTAMP day "%d" UTC)
string(TIMESTAMP month_number "%m" UTC)
string(TIMESTAMP year "%Y" UTC)
set(months Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)
math(EXPR month_index "${month_number} - 1")
list(GET months ${month_index} month)
string(REGEX REPLACE "^0" " " day "${day}")

set(text "// Made by the build.
#pragma once

constexpr char kBuildDate[] = \"${month} ${day} ${year}\";
constexpr char kCodeLevelLine[] = \"@(!)      ***** Code Level is ${CODE_LEVEL} *****\";
")
set(present "")
if(EXISTS "${OUTPUT}")
  file(READ "${OUTPUT}" present)
endif()
if(NOT text STREQUAL present)
  file(WRITE "${OUTPUT}" "${text}")
endif()
