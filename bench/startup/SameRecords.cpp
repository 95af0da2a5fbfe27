// The price of a trace: writes the lines of the file RECORDS to the file RECORDS_COPY, each flushed
// as it comes, as a record of the trace is.
#include <cstdio>
#include <cstdlib>

int main() {
    std::FILE* records = std::fopen(std::getenv("RECORDS"), "r");
    std::FILE* copy = std::fopen(std::getenv("RECORDS_COPY"), "w");
    if (records == nullptr || copy == nullptr) {
        return EXIT_FAILURE;
    }
    char line[1024];
    while (std::fgets(line, sizeof line, records) != nullptr) {
        std::fputs(line, copy);
        std::fflush(copy);
    }
    return EXIT_SUCCESS;
}
