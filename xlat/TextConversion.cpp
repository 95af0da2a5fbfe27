#include "xlat/TextConversion.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FailureReport.h"
#include "services/inner/SystemInformation.h"
#include "services/inner/TraceRecords.h"
#include "xlat/CCSIDTable.h"
#include "xlat/CCSIDTableFile.h"
#include "xlat/ConversionEngines.h"
#include "xlat/ConverterCache.h"

using namespace dnz;

namespace {

// An unknown encoding class gives no direction.
constexpr ConvMode kNoMode{};

// The sides contain the pages that take part.
struct Conversion {
    CCSIDEntry from;
    CCSIDEntry to;
    const unsigned char* source;
    std::int32_t sourceLength;
    unsigned char* target;
    std::int32_t* targetLength;
};

std::int32_t checkLengths(std::int32_t sourceLength, std::int32_t targetLength) {
    if (sourceLength < 0) {
        return NZRC_SOURCE_LENGTH_ERROR;
    }
    return targetLength < 0 ? NZRC_TARGET_LENGTH_ERROR : kServiceOk;
}

bool loadSide(CCSIDEntry& side, std::int32_t ccsid) {
    const CCSIDNode* node = xxxFindNode(xnzCSCtrl->ccsidTable, ccsid);
    if (node != nullptr) {
        copyEntry(*node, side);
    }
    return node != nullptr;
}

// Equal CCSIDs need no table entry: both sides stay without pages, so they count as equal and the
// text is copied.
std::int32_t loadSides(Conversion& conversion, std::int32_t fromCCSID, std::int32_t toCCSID) {
    if (fromCCSID == toCCSID) {
        return kServiceOk;
    }
    if (!loadSide(conversion.from, fromCCSID)) {
        return NZRC_SOURCE_CCSID_ERROR;
    }
    return loadSide(conversion.to, toCCSID) ? kServiceOk : NZRC_TARGET_CCSID_ERROR;
}

void dropDoubleBytes(CCSIDEntry& side) {
    side.dbcsPage = 0;
    BoundedText(side.dbcsPageHex).append(CCSIDEntry().dbcsPageHex);
}

// Text that is single-byte on one side counts as single-byte on the other.
void settleWidth(CCSIDEntry& from, CCSIDEntry& to) {
    if (to.widthClass == kMixedWidth && from.widthClass == kSingleByteWidth) {
        dropDoubleBytes(to);
    } else if (to.widthClass == kSingleByteWidth && from.widthClass == kMixedWidth) {
        dropDoubleBytes(from);
    }
}

bool hasSamePages(const CCSIDEntry& from, const CCSIDEntry& to) {
    return from.sbcsPage == to.sbcsPage && from.dbcsPage == to.dbcsPage;
}

std::int32_t copyText(const Conversion& conversion) {
    const bool fits = conversion.sourceLength <= *conversion.targetLength;
    const std::int32_t count = std::min(conversion.sourceLength, *conversion.targetLength);
    if (conversion.source != conversion.target && count > 0) {
        std::memmove(conversion.target, conversion.source, static_cast<std::size_t>(count));
    }
    *conversion.targetLength = count;
    return fits ? kServiceOk : NZRC_CONVERTED_MSG_TOO_BIG;
}

bool isHost(const CCSIDEntry& side) {
    return side.encodingClass == kHostEncoding;
}

bool isPc(const CCSIDEntry& side) {
    return side.encodingClass == kPcEncoding || side.encodingClass == kOtherPcEncoding;
}

ConvMode modeOf(const CCSIDEntry& from, const CCSIDEntry& to) {
    if (isHost(from) && isHost(to)) {
        return ConvHostToHost;
    }
    if (isHost(from) && isPc(to)) {
        return ConvHostToPC;
    }
    if (isPc(from) && isHost(to)) {
        return ConvPCToHost;
    }
    return isPc(from) && isPc(to) ? ConvPCToPC : kNoMode;
}

// Mixed text can only be read and written where the encoding of both sides is known.
std::int32_t checkEncodings(const CCSIDEntry& from, const CCSIDEntry& to) {
    const bool isMixed = from.dbcsPage != 0 || to.dbcsPage != 0;
    if (isMixed && !isHost(from) && !isPc(from)) {
        return NZRC_SOURCE_CCSID_ERROR;
    }
    return isMixed && !isHost(to) && !isPc(to) ? NZRC_TARGET_CCSID_ERROR : kServiceOk;
}

// The result for a failure of xxxOpenConv, by its errno. Today it sets one of two values; any other
// would be an error of this library.
std::int32_t openFailure(int error) {
    if (error == ENOMEM) {
        return NZRC_STORAGE_NOT_AVAILABLE;
    }
    if (error != EINVAL) {
        xnz_xcsWYRD("xcsConvertString", 1,
                    {.number1 = NZRC_NOT_CONVERTED,
                     .number2 = error,
                     .text1 = "Unexpected Error from xxxOpenConv",
                     .text2 = " ",
                     .text3 = " "});
    }
    return NZRC_NOT_CONVERTED;
}

std::int32_t convertText(Conversion& conversion) {
    const CCSIDEntry& from = conversion.from;
    const CCSIDEntry& to = conversion.to;
    if (conversion.sourceLength > *conversion.targetLength) {
        return NZRC_CONVERTED_MSG_TOO_BIG;
    }
    const std::int32_t code = checkEncodings(from, to);
    if (code != kServiceOk) {
        return code;
    }
    const std::int32_t handle = xxxOpenConv(to.sbcsPageHex, to.dbcsPageHex, from.sbcsPageHex,
                                            from.dbcsPageHex, from.leadByteClass);
    if (handle == kNoHandle) {
        return openFailure(errno);
    }
    return xxxCodeConv(&conversion.source, &conversion.sourceLength, &conversion.target,
                       conversion.targetLength, handle, modeOf(from, to), from.leadByteClass);
}

}  // namespace

std::int32_t xxxInitialize() {
    ServiceTraceScope trace("xxxInitialize");
    if (xnzCSCtrl == nullptr) {
        return trace.exitWith(xecX_E_SERVICE_UNAVAILABLE);
    }
    xnzCSCtrl->systemCodePage = ObtainSystemCP();
    FileReader file;
    if (!openCcsidTable(file)) {
        return trace.exitWith(xecX_S_NO_CCSID_TABLE);
    }
    CCSIDNode* root = readCcsidTable(file);
    xxxDeleteNode(&xnzCSCtrl->ccsidTable);
    xnzCSCtrl->ccsidTable = root;
    return kServiceOk;
}

std::int32_t xxxTerminate() {
    const ServiceTraceScope trace("xxxTerminate");
    if (xnzCSCtrl != nullptr) {
        xxxDeleteNode(&xnzCSCtrl->ccsidTable);
    }
    freeConverters();
    return kServiceOk;
}

std::int32_t xcsConvertString(std::int32_t fromCCSID, std::int32_t toCCSID, const char* source,
                              std::int32_t sourceLength, char* target, std::int32_t* targetLength) {
    ServiceTraceScope trace("xcsConvertString");
    if (xnzCSCtrl == nullptr) {
        return trace.exitWith(xecX_E_SERVICE_UNAVAILABLE);
    }
    std::int32_t code = checkLengths(sourceLength, *targetLength);
    if (code != kServiceOk) {
        return trace.exitWith(code);
    }
    Conversion conversion{.from = {},
                          .to = {},
                          .source = reinterpret_cast<const unsigned char*>(source),
                          .sourceLength = sourceLength,
                          .target = reinterpret_cast<unsigned char*>(target),
                          .targetLength = targetLength};
    code = loadSides(conversion, fromCCSID, toCCSID);
    if (code != kServiceOk) {
        return trace.exitWith(code);
    }
    if (sourceLength == 0) {
        *targetLength = 0;
        return kServiceOk;
    }
    settleWidth(conversion.from, conversion.to);
    const bool isCopy = hasSamePages(conversion.from, conversion.to);
    return trace.exitWith(isCopy ? copyText(conversion) : convertText(conversion));
}

std::int32_t xcsQueryCCSIDType(std::int32_t ccsid, CCSIDType* out) {
    ServiceTraceScope trace("xcsQueryCCSIDType");
    if (xnzCSCtrl == nullptr) {
        return trace.exitWith(xecX_E_SERVICE_UNAVAILABLE);
    }
    const CCSIDNode* node = xxxFindNode(xnzCSCtrl->ccsidTable, ccsid);
    if (node == nullptr) {
        return trace.exitWith(xecX_S_CCSID_NOT_FOUND);
    }
    out->encodingClass = node->encodingClass;
    out->widthClass = node->widthClass;
    return kServiceOk;
}
