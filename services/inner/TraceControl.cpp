#include "services/inner/TraceControl.h"

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "services/base/File.h"
#include "services/base/Path.h"
#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/BuildInformation.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FailureReport.h"
#include "services/inner/OutputFiles.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

std::int32_t xtrTraceIsOn = 0;
std::int32_t xtrUserTrace = 0;
const char* const xnz_level = kCodeLevelLine;

namespace {

std::int32_t reportUnopenedTraceFile(const char* path, int error) {
    xnz_xcsWYRD("xnz_xtrOpenTraceFile", 1,
                {.number1 = xecX_E_SERVICE_UNAVAILABLE,
                 .number2 = error,
                 .text1 = "Unable to open trace file",
                 .text2 = path,
                 .text3 = " "});
    return xecX_E_SERVICE_UNAVAILABLE;
}

void writeHead(std::FILE* file) {
    const std::time_t now = std::time(nullptr);
    const char* started = std::ctime(&now);
    std::fprintf(file, "\nTrace for program  ---- Brellin Zentrik ----  started at %s\r\n\r\n",
                 started != nullptr ? started : "\n");
    std::fflush(file);
}

void startTracing(const char* traceValue) {
    xnzCSCtrl->traceRequested = 1;
    if (serviceVariable("_PATH") != nullptr && (*traceValue == 'U' || *traceValue == 'u')) {
        xnzCSCtrl->userTrace = 1;
        xtrUserTrace = 1;
    }
    const Path path(outputDirectory(), OutputFileName("TRC").view());
    if (!path.fits()) {
        reportUnopenedTraceFile(path.c_str(), ENAMETOOLONG);
        return;
    }
    xnz_xtrOpenTraceFile(path.c_str());
}

}  // namespace

std::int32_t xnz_xtrInitialize() {
    if (xnzCSCtrl == nullptr) {
        return kServiceOk;
    }
    xnzCSCtrl->processId = reducedProcessId();
    if (const char* traceValue = serviceVariable("_TRACE"); traceValue != nullptr) {
        startTracing(traceValue);
    }
    xnztr_text(FixedText<32>("BuildDate ").append(kBuildDate).c_str());
    return kServiceOk;
}

std::int32_t xnz_xtrOpenTraceFile(const char* path) {
    if (xnzCSCtrl == nullptr) {
        return xecX_E_SERVICE_UNAVAILABLE;
    }
    std::FILE* file = openPrivateStream(path, "a+").release();
    if (file == nullptr) {
        return reportUnopenedTraceFile(path, errno);
    }
    xnzCSCtrl->traceFile = file;
    if (xnzCSCtrl->traceRequested != 0) {
        std::setvbuf(file, nullptr, _IONBF, 0);
    }
    writeHead(file);
    xnzCSCtrl->traceIsOn = 1;
    xtrTraceIsOn = 1;
    std::fprintf(file, "%s\n", xnz_level);
    std::fflush(file);
    if (xnzCSCtrl->userTrace != 0) {
        std::fputs("\n  !!! User Tracing is activated !!!\n", file);
        std::fflush(file);
    }
    return kServiceOk;
}

std::int32_t xnz_xtrTerminate() {
    if (xnzCSCtrl == nullptr) {
        return kServiceOk;
    }
    constexpr char kRow[] = "!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!!";
    // Both records now, before the file is closed.
    { const ServiceTraceScope trace("xnz_xtrTerminate"); }
    xnztr_text(kRow);
    xnztr_text("Trace termination - closing trace file");
    xnztr_text(kRow);
    if (xnzCSCtrl->traceFile != nullptr) {
        std::fclose(xnzCSCtrl->traceFile);
        xnzCSCtrl->traceFile = nullptr;
    }
    return kServiceOk;
}
