// What the host looks for when it loads the module: the messages, and the external functions.
#include "module/host/gis_request.h"
#include "module/host/own_functions.h"
#include "module/records/records_panel.h"
#include "platform/ads/editor.h"
#include "platform/ads/runtime.h"

namespace norvane {
namespace {

struct ExternalFunction {
    const char* name;
    int id;
};
constexpr ExternalFunction kFunctions[] = {{"cf:gis_smart_prompting", 0}};

// The names that a drawing is given; the first that it does not take ends the work.
int RegisterGisFunctions() {
    for (const ExternalFunction& function : kFunctions)
        if (acedDefun(function.name, function.id) != RTNORM) return RTERROR;
    for (const OwnFunction& function : OwnFunctions())
        if (acedDefun(function.name, function.id) != RTNORM) return RTERROR;
    return RTNORM;
}

int UnregisterGisFunctions() {
    for (const ExternalFunction& function : kFunctions) acedUndef(function.name, function.id);
    for (const OwnFunction& function : OwnFunctions()) acedUndef(function.name, function.id);
    return RTNORM;
}

void registerWithLinker(void* packet) {
    acrxUnlockApplication(packet);
    auto* linker = dynamic_cast<AcRxDynamicLinker*>(acrxSysRegistry()->at("DynamicLinker"));
    if (linker) linker->registerAppMDIAware(packet);
}

}  // namespace
}  // namespace norvane

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    using namespace norvane;
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
        // A panel outlives commands and drawings, but not its code.
        case AcRx::kUnloadAppMsg:
            ui::closePanel(RecordsPanel::kResource);
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
