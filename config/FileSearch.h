// The search for a file that is named without its directory, an ini file or a page template.
// National-language pages are chosen by it: the last directory searched is that of the language.
// No argument is null.
#pragma once

// Extends PATH by the product's directories and that of the language in LANG, then tries each
// directory of the list in the environment variable `envName`, skipping empty elements.
//   result     gets the path found, or at failure the last path tried; untouched when there is no
//              such variable or its list is empty
//   maxLength  size of `result`; a path that doesn't fit is replaced by the bare file name
// 1 when a file could be opened for reading, else 0. PATH grows with each call.
[[nodiscard]] int findfileinpath(const char* envName, const char* fileName, char* result,
                                 int maxLength);

// Finds the end of the list element that starts at `element`: a `:` or the end of the list. Of a
// run of `:` all but the last, which is returned, become zero bytes.
char* SearchEnv(char* element);
