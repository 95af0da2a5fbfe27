// Sets up the environment of the gateway, for its programs that start without it.
#pragma once

// Adds the directories of the product to PATH, sets the variables of the queue manager and of the
// text conversion, and switches tracing on as the environment file says. Returns the constant text
// "DNZ_PATH=" if the file contains that key, else null.
const char* initializeenv();

namespace dnz {

// The last step: sets DNZ_TRACE and DNZ_PATH by the lines of `path`, in which only the presence of
// the two keys counts. A file that can't be read changes nothing. Same result as initializeenv.
const char* initializeFromEnvironmentFile(const char* path);

}  // namespace dnz
