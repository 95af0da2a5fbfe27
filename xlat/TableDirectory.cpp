#include "TableDirectory.h"

#include <cstdlib>

const char* tableDirectory() {
    const char* directory = std::getenv("DNZ_XLAT_PATH");
    return directory != nullptr && *directory != '\0' ? directory : nullptr;
}
