// dnzcnf, a CGI program (RFC 3875): the configuration tool of the gateway. It serves one request
// and ends. Exit value: 1 when the request named a file to show or save, also if the save was then
// refused, 0 otherwise.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "config/Results.h"
#include "frontend/CGIInterface.h"
#include "frontend/ConfigInterface.h"
#include "frontend/MessageNumbers.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

// Opens standard streams that the server left closed. An open takes the lowest free number, so a
// file opened later could become a standard stream, and the page or a line for the log would go
// into it.
void occupyStandardStreams() {
    pollfd streams[] = {{STDIN_FILENO, 0, 0}, {STDOUT_FILENO, 0, 0}, {STDERR_FILENO, 0, 0}};
    poll(streams, std::size(streams), 0);
    for (const pollfd& stream : streams) {
        if ((stream.revents & POLLNVAL) != 0 && open("/dev/null", O_RDWR) < 0) {
            return;
        }
    }
}

// The body is read at once. The page is written in pieces as large as a page of memory: a larger
// buffer saves system calls, but no time.
void setBuffers() {
    static char page[4096];
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    std::setvbuf(stdout, page, _IOFBF, sizeof page);
}

// A write to a client that has gone, or beyond a file size limit, fails like any other: it must not
// end the process halfway through a save.
void ignoreWriteSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void writeLine(std::int32_t message) {
    std::printf("%s\n", MessageText(message).text());
}

void refuse(const char* contentType, std::int32_t message) {
    std::printf("Content-type:%s\n\n", contentType);
    writeLine(message);
}

// The gate: only a posted form passes. Each fault has its own message; that of a second fault
// follows on the page of the first.
int checkRequest() {
    const char* method = std::getenv("REQUEST_METHOD");
    const char* contentType = std::getenv("CONTENT_TYPE");
    if (method == nullptr || contentType == nullptr) {
        writeLine(kNoRequest);
        return kFailed;
    }
    int status = kDone;
    if (std::strcmp(method, "POST") != 0) {
        refuse("text/html", kMethodNotPost);
        status = kFailed;
    }
    if (std::strcmp(contentType, "application/x-www-form-urlencoded") != 0) {
        refuse("text/plain", kContentNotForm);
        status = kFailed;
    }
    return status;
}

int serveRequest() {
    // The order of the two is that of their trace records.
    ConfigInterface controller;
    CGIInterface transport;
    const int status = controller.Initialize(transport.getInputBuffer());
    if (status != kFailed) {
        controller.ConfigUI();
    }
    return status;
}

// The compiler decides whether an exception that nobody catches destroys the objects on its way.
// Catching it here and throwing it again makes sure of it, so that the trace shows their end.
int serveRequestOrUnwind() {
    try {
        return serveRequest();
    } catch (...) {
        throw;
    }
}

}  // namespace

int main() {
    occupyStandardStreams();
    ignoreWriteSignals();
    setBuffers();
    dnz_InitCommonServices("DNZ");
    TraceScope trace("NZGcnf (main)");
    int status = checkRequest();
    if (status != kFailed) {
        status = serveRequestOrUnwind();
    }
    return trace.exitWith(status);
}
