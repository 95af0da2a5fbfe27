// The names that the services make at run time from the service name: variables and files.
#pragma once

#include "services/base/Text.h"

namespace dnz {

// The value of the environment variable named by the service name and `suffix`, as DNZ_TRACE
// by "_TRACE". Null when it isn't set or the services aren't started. Borrowed from the
// environment.
const char* serviceVariable(const char* suffix);

// The directory for trace files and reports, from the service variable _PATH. Null when the
// variable isn't set or is empty, which means the working directory.
const char* serviceDirectory();

// The name of this process's file of one kind, as DNZ04711.TRC: eight characters from the service
// name and the reduced process id, a point and `extension`.
class ServiceFileName : public FixedText<16> {
public:
    explicit ServiceFileName(const char* extension);
};

}  // namespace dnz
