// What the host looks for when it loads the module.
#include "platform/ads/runtime.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
    return AcRx::kRetOK;
}
extern "C" int acrxGetApiVersion() {
    return kApiVersion;
}
