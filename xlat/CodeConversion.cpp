#include "CodeConversion.h"

#include "ConverterCache.h"
#include "TraceRecords.h"

namespace {

bool isTable(std::int32_t part) {
    return part != kNoPart && part != kUnchangedPart;
}

ConvContext contextOf(std::int32_t singleBytePart, std::int32_t doubleBytePart,
                      std::int32_t sourceLeadByteClass) {
    ConvContext context{};
    context.handle = singleBytePart * kHandleBase + doubleBytePart;
    context.leadByteClass = sourceLeadByteClass;
    if (isTable(doubleBytePart)) {
        const ConvSlot& slot = iconv_list[doubleBytePart - 1];
        context.dbcsTable = slot.table;
        context.leadByteClass = slot.leadByteClass;
    }
    if (isTable(singleBytePart)) {
        context.sbcsTable = iconv_list[singleBytePart - 1].table;
    }
    return context;
}

using Engine = decltype(&TranSBCS);

Engine engineOf(std::int32_t doubleBytePart, ConvMode mode) {
    if (doubleBytePart == kNoPart) {
        return TranSBCS;
    }
    return mode == ConvHostToPC || mode == ConvHostToHost ? HostPCMM : PCHostMM;
}

}  // namespace

std::int32_t xxxCodeConv(const unsigned char** source, const std::int32_t* sourceLength,
                         unsigned char** target, std::int32_t* targetLength, std::int32_t handle,
                         ConvMode mode, std::int32_t sourceLeadByteClass) {
    ServiceTraceScope trace("xxxCodeConv");
    const std::int32_t singleBytePart = handle / kHandleBase;
    const std::int32_t doubleBytePart = handle % kHandleBase;
    const ConvContext context = contextOf(singleBytePart, doubleBytePart, sourceLeadByteClass);
    const Engine engine = engineOf(doubleBytePart, mode);
    return trace.exitWith(engine(source, sourceLength, target, targetLength, &context, mode));
}
