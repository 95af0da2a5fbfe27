// The files that the services write, trace files and failure reports: their names and their
// directory.
#pragma once

#include <string_view>

#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"

namespace dnz {

// The directory of the files, from the service variable _PATH. Null, for the working directory, if
// the variable isn't set or is empty. Borrowed from the environment.
inline const char* outputDirectory() {
    const char* directory = serviceVariable("_PATH");
    return isNullOrEmpty(directory) ? nullptr : directory;
}

// The name of a file of this process, such as DNZ04711.TRC: the stem of the service name, five
// digits of the reduced process id if the stem has three characters, else four, a period and
// `extension`. Make it only while the services are started.
class OutputFileName : public FixedText<16> {
public:
    explicit OutputFileName(const char* extension) {
        constexpr std::size_t kShortName = 3;
        constexpr int kFourDigits = 10000;
        const std::string_view stem = serviceStem();
        const int id = reducedProcessId();
        append(stem);
        if (stem.size() == kShortName) {
            appendf("%5.5d.%s", id, extension);
        } else {
            appendf("%4.4d.%s", id % kFourDigits, extension);
        }
    }
};

}  // namespace dnz
