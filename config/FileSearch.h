// The search for a file that is named without its directory: an ini file or a page template.
// It also chooses the language of pages: the last directory searched is that of the language.
// No argument is null.
#pragma once

// Appends the directories of the product and of the language in LANG to PATH. Then tries each
// directory of the list in the environment variable `envName`; empty elements are skipped, but for
// a list of nothing but `:` the root directory is tried.
//   result     receives the path found, or on failure the last path tried; untouched if there is no
//              such variable or its list is empty
//   maxLength  size of `result`; a path that doesn't fit is replaced by the bare file name
// 1 if a file could be opened for reading, else 0. PATH grows with each call.
[[nodiscard]] int findfileinpath(const char* envName, const char* fileName, char* result,
                                 int maxLength);

// Returns the end of the list element that starts at `element`: a `:` or the end of the list. In a
// run of `:` the last one is returned, and the others become zero bytes.
char* SearchEnv(char* element);
