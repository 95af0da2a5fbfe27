#include "xlat/ConversionLifecycle.h"

#include "services/base/ReturnCodes.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/SystemInformation.h"
#include "services/inner/TraceRecords.h"
#include "xlat/CCSIDTable.h"
#include "xlat/CCSIDTableFile.h"
#include "xlat/ConverterCache.h"

using namespace dnz;

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
