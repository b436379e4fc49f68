// The host's registry, in which modules find the part that loads them.
#include <string_view>

#include "hostcad/editor/host.h"
#include "platform/ads/runtime.h"

using hostcad::Host;

namespace {

class DynamicLinker : public AcRxDynamicLinker {
  public:
    bool registerAppMDIAware(void* packet) override { return packet != nullptr; }
    bool unlockApplication(void* packet) override {
        if (!Host::current() || !packet) return false;
        Host::current()->modules().unlock(packet);
        return true;
    }
};

DynamicLinker theLinker;

class SystemRegistry : public AcRxDictionary {
  public:
    AcRxObject* at(const char* key) const override {
        return key && std::string_view(key) == "DynamicLinker" ? &theLinker : nullptr;
    }
};

}  // namespace

AcRxDictionary* acrxSysRegistry() {
    static SystemRegistry registry;
    return &registry;
}

bool acrxUnlockApplication(void* packet) {
    return theLinker.unlockApplication(packet);
}
