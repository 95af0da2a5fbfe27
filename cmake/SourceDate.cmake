# Sets SOURCE_DATE_EPOCH in the environment, unless it is set, to the date of the last commit, else of
# the release. It never uses the clock: the same source always gives the same program and packages.
set(release_date_epoch 1795305600) # 22 Nov 2026

if(NOT "$ENV{SOURCE_DATE_EPOCH}" MATCHES "^[0-9]+$")
  # With an explicit --git-dir the repository may belong to another user, and git doesn't use that of a
  # parent folder.
  execute_process(
    COMMAND git --git-dir=${CMAKE_CURRENT_LIST_DIR}/../.git log -1 --format=%ct
    OUTPUT_VARIABLE source_date_epoch OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT source_date_epoch MATCHES "^[0-9]+$")
    set(source_date_epoch ${release_date_epoch})
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${source_date_epoch})
endif()
