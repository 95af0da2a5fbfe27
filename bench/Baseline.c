/* What the program is measured beside. WORK is one of these functions:
 *   empty    does nothing: the price of any process
 *   request  makes the calls of an open request in their order, and a page of PAGE_SIZE bytes
 *   records  writes each line of records.txt on its own, as a trace writes its records */
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

enum { PIECE = 4096, THREAD_TABLE = 800000, MESSAGES = 5 };

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

static void put(int file, size_t size) {
    if (write(file, buffer, size) != (ssize_t)size) {
        exit(EXIT_FAILURE);
    }
}

void empty(void) {}

void request(void) {
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
    put(STDOUT_FILENO, head);
    put(STDOUT_FILENO, 1);
    readFile("dnzcnf2.htm");
    for (int message = 1; message <= MESSAGES; ++message) {
        fetchMessage(message);
    }
    readFile("dnzcnf3.htm");
    for (; left > PIECE; left -= PIECE) {
        put(STDOUT_FILENO, PIECE);
    }
    put(STDOUT_FILENO, left);
}

void records(void) {
    FILE* trace = fopen("records.txt", "r");
    const int copy = open("copy", O_WRONLY | O_CREAT | O_TRUNC, 0600);
    while (fgets(buffer, PIECE, trace) != NULL) {
        put(copy, strlen(buffer));
    }
}

int main(void) {
    WORK();
}
