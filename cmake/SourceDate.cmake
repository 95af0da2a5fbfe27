# Sets SOURCE_DATE_EPOCH in the environment, where it isn't set, to the date of the last commit,
# else of the release: never the clock, so that the same source always gives the same program and
# the same packages.
set(release_date_epoch 1795305600) # 22 Nov 2026

if(NOT "$ENV{SOURCE_DATE_EPOCH}" MATCHES "^[0-9]+$")
  # Named outright, the repository may belong to somebody else, and that of a folder further up
  # isn't taken for ours.
  execute_process(
    COMMAND git --git-dir=${CMAKE_CURRENT_LIST_DIR}/../.git log -1 --format=%ct
    OUTPUT_VARIABLE source_date_epoch OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT source_date_epoch MATCHES "^[0-9]+$")
    set(source_date_epoch ${release_date_epoch})
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${source_date_epoch})
endif()
