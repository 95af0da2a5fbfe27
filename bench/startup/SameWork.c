/* The least that an open request costs: its files are opened and read as often as the program does
 * it, the message catalogue once for each message, and a page of PAGE_SIZE bytes leaves in one
 * write. Nothing is looked at. */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

enum { BUFFER_SIZE = 4096, LARGEST_PAGE = 1024 * 1024, MESSAGES = 5 };

static void readFile(const char* name) {
    char buffer[BUFFER_SIZE];
    struct stat status;
    const int file = open(name, O_RDONLY);
    if (file < 0 || fstat(file, &status) != 0) {
        exit(EXIT_FAILURE);
    }
    for (off_t left = status.st_size; left > 0;) {
        const ssize_t taken = read(file, buffer, sizeof buffer);
        if (taken <= 0) {
            exit(EXIT_FAILURE);
        }
        left -= taken;
    }
    close(file);
}

static char mapCatalogue(const char* name) {
    struct stat status;
    const int file = open(name, O_RDONLY);
    if (file < 0 || fstat(file, &status) != 0) {
        exit(EXIT_FAILURE);
    }
    const size_t size = (size_t)status.st_size;
    char* bytes = mmap(NULL, size, PROT_READ, MAP_PRIVATE, file, 0);
    close(file);
    if (bytes == MAP_FAILED) {
        exit(EXIT_FAILURE);
    }
    const char last = bytes[size - 1];
    munmap(bytes, size);
    return last;
}

int main(void) {
    static char page[LARGEST_PAGE];
    static const char header[] = "Content-type: text/html\n\n";
    const size_t size = (size_t)atol(getenv("PAGE_SIZE"));
    if (size < sizeof header || size > sizeof page || read(STDIN_FILENO, page, sizeof page) <= 0) {
        return EXIT_FAILURE;
    }
    readFile("dnz.ini");
    readFile("dnz.ini");
    readFile("dnzcnf2.htm");
    for (int message = 0; message < MESSAGES; ++message) {
        page[message] = mapCatalogue(getenv("CATALOGUE"));
    }
    readFile("dnzcnf3.htm");
    memset(page, 'x', size);
    memcpy(page, header, sizeof header - 1);
    return write(STDOUT_FILENO, page, size) == (ssize_t)size ? EXIT_SUCCESS : EXIT_FAILURE;
}
