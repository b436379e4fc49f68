// What the host looks for when it loads the module: the messages, and the one external function.
#include "module/host/dispatcher.h"
#include "module/host/gis_request.h"
#include "platform/ads/editor.h"
#include "platform/ads/runtime.h"

namespace {

struct ExternalFunction {
    const char* name;
    int id;
};
constexpr ExternalFunction kFunctions[] = {{"cf:gis_smart_prompting", 0}};

int RegisterGisFunctions() {
    for (const ExternalFunction& function : kFunctions)
        if (acedDefun(function.name, function.id) != RTNORM) return RTERROR;
    return RTNORM;
}

int UnregisterGisFunctions() {
    for (const ExternalFunction& function : kFunctions) acedUndef(function.name, function.id);
    return RTNORM;
}

void returnToLisp() {
    switch (GisReturnStatus) {
        case kReturnInteger:
            acedRetInt(GisReturnInt);
            break;
        case kReturnReal:
            acedRetReal(GisReturnReal);
            break;
        case kReturnEntity:
            acedRetName(GisReturnEntity, RTENAME);
            break;
        case kReturnNil:
            acedRetNil();
            break;
        case kReturnedList:
        case kReturnedString:
        case kReturnedOwnString:
            break;
        default:
            acedRetInt(GisReturnStatus);
    }
}

int HandleGisFunction() {
    if (acedGetFunCode() != 0) return 0;
    DispatchGisRequest();
    returnToLisp();
    return 1;
}

void registerWithLinker(void* packet) {
    acrxUnlockApplication(packet);
    auto* linker = dynamic_cast<AcRxDynamicLinker*>(acrxSysRegistry()->at("DynamicLinker"));
    if (linker) linker->registerAppMDIAware(packet);
}

}  // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case AcRx::kInitAppMsg:
            registerWithLinker(packet);
            break;
        // Functions belong to a drawing: they are defined anew in each.
        case AcRx::kLoadDwgMsg:
            RegisterGisFunctions();
            break;
        case AcRx::kUnloadDwgMsg:
            acrxUnlockApplication(packet);
            UnregisterGisFunctions();
            break;
        case AcRx::kInvkSubrMsg:
            HandleGisFunction();
            break;
        default:
            break;
    }
    return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() {
    return kApiVersion;
}
