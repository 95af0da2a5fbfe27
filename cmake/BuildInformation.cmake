# Writes the header with the code level and the build date, which is that of the source.
include(${CMAKE_CURRENT_LIST_DIR}/SourceDate.cmake)

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
