// Loading of modules: the messages that the host sends to a module's acrxEntryPoint.
#pragma once

namespace AcRx {

enum AppMsgCode {
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
};

enum AppRetCode { kRetOK = 0, kRetError = 3 };

}  // namespace AcRx

// A named object of the host's registry.
class AcRxObject {
  public:
    virtual ~AcRxObject() = default;
};

// The part of the host that loads modules.
class AcRxDynamicLinker : public AcRxObject {
  public:
    // Says that a module works with several drawings open. packet is the one that acrxEntryPoint was given.
    virtual bool registerAppMDIAware(void* packet) = 0;
    // Lets the host unload the module; locked until it is said.
    virtual bool unlockApplication(void* packet) = 0;
};

class AcRxDictionary : public AcRxObject {
  public:
    // The object under a key, or null; it stays the dictionary's.
    virtual AcRxObject* at(const char* key) const = 0;
};

// The host's registry. Its "DynamicLinker" is an AcRxDynamicLinker.
AcRxDictionary* acrxSysRegistry();

// Lets the host unload the module.
bool acrxUnlockApplication(void* packet);

// What a module exports with C linkage:
//   AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
//   int acrxGetApiVersion();   // gives kApiVersion; a module of another version is not loaded
constexpr int kApiVersion = 16;
