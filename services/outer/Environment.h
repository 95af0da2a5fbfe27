// The environment of the gateway's programs, for those that aren't started with it.
#pragma once

// Extends PATH by the directories of the product, sets the variables of the queue manager and of
// the text conversion, and switches tracing as the environment file says. Returns the constant
// text "DNZ_PATH=" when the file holds that key, else null.
const char* initializeenv();

namespace dnz {

// The last step: DNZ_TRACE and DNZ_PATH from the lines of `path`, in which only the presence of
// the two keys counts. A file that can't be read changes nothing. Result as above.
const char* initializeFromEnvironmentFile(const char* path);

}  // namespace dnz
