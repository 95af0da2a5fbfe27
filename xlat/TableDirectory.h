// Where an installation keeps its conversion data: the CCSID table and the translation tables.
#pragma once

// The directory from the environment variable DNZ_XLAT_PATH, read anew at each call. Null when
// the variable isn't set or is empty, which means the working directory. Borrowed from the
// environment.
const char* tableDirectory();
