/* What the program is measured beside, by the macro WORK:
 *   EMPTY    nothing: the price of any process
 *   REQUEST  the calls of an open request in their order, and a page of PAGE_SIZE bytes
 *   RECORDS  the records of the trace file TRACE once more, one write each */
#include <fcntl.h>
#include <locale.h>
#include <nl_types.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

enum { EMPTY, REQUEST, RECORDS, PIECE = 4096, THREAD_TABLE = 800000, MESSAGES = 5 };

static char buffer[1 << 20];

static void readFile(const char* name) {
    struct stat status;
    const int file = open(name, O_RDONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    fstat(file, &status);
    while (read(file, buffer, PIECE) > 0) {
    }
    close(file);
}

static void fetchMessage(int number) {
    char* name = strdup(setlocale(LC_MESSAGES, ""));
    nl_catd catalogue = catopen("/opt/nzm/bin/dnz.cat", 0);
    if (catalogue == (nl_catd)-1) {
        catalogue = catopen("DNZ", 0);
    }
    buffer[number] = *catgets(catalogue, 1, number, "");
    catclose(catalogue);
    setlocale(LC_MESSAGES, name);
    free(name);
}

static void put(size_t size) {
    if (write(STDOUT_FILENO, buffer, size) != (ssize_t)size) {
        exit(EXIT_FAILURE);
    }
}

static void request(void) {
    struct pollfd streams[] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    poll(streams, 3, 0);
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
    setlocale(LC_ALL, getpid() > 0 ? "" : "C");
    open("./DNZCCSID.TBL", O_RDONLY | O_NOCTTY | O_CLOEXEC);
    open("./ccsid.tbl", O_RDONLY | O_NOCTTY | O_CLOEXEC);
    *(char*)mmap(NULL, THREAD_TABLE, PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) = 1;
    const ssize_t body = read(STDIN_FILENO, buffer, sizeof buffer);
    const size_t head = sizeof "Content-type: text/html";
    size_t left = (size_t)atol(getenv("PAGE_SIZE")) - head - (size_t)(body > 0);
    readFile("dnz.ini");
    readFile("dnz.ini");
    put(head);
    put(1);
    readFile("dnzcnf2.htm");
    for (int message = 1; message <= MESSAGES; ++message) {
        fetchMessage(message);
    }
    readFile("dnzcnf3.htm");
    for (; left > PIECE; left -= PIECE) {
        put(PIECE);
    }
    put(left);
}

static void records(void) {
    FILE* trace = fopen(getenv("TRACE"), "r");
    const int copy = open("copy", O_WRONLY | O_CREAT | O_TRUNC, 0600);
    char* end = buffer;
    while (fgets(end, PIECE, trace) != NULL) {
        const int isTime = strlen(end) == sizeof "hh:mm:ss" && end[2] == ':';
        end = isTime ? end + sizeof "hh:mm:ss" : buffer;
        if (!isTime && write(copy, buffer, strlen(buffer)) < 0) {
            exit(EXIT_FAILURE);
        }
    }
}

static void nothing(void) {}

int main(void) {
    void (*const works[])(void) = {nothing, request, records};
    works[WORK]();
}
