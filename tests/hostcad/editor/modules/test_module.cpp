// A small module for the tests of loading and calling. MODULE_NAME is its name; MODULE_FAULT is what is wrong
// with it: 0 nothing, 1 made for another version, 2 no entry point, 3 something missing, 4 it cannot start.
#include <cstdio>

#include "platform/ads/editor.h"
#include "platform/ads/runtime.h"

namespace {

enum Function { kEcho, kMany, kFail, kInvoke, kCommand, kPrompt, kNothing, kFunctions };
constexpr const char* kNames[] = {"echo", "many", "fail", "invoke", "command", "prompt", "nothing"};

const char* fullName(int function) {
    static char name[100];
    std::snprintf(name, sizeof name, MODULE_NAME ":%s", kNames[function]);
    return name;
}

// One value of the type that the first argument numbers.
void returnOneOfMany() {
    resbuf* args = acedGetArgs();
    const ads_point point = {1, 2, 3};
    switch (args ? args->resval.rint : 0) {
        case 1:
            acedRetInt(70000);
            break;
        case 2:
            acedRetReal(2.5);
            break;
        case 3:
            acedRetStr("text");
            break;
        case 4:
            acedRetPoint(point);
            break;
        case 5:
            acedRetT();
            break;
        case 6:
            acedRetNil();
            break;
        case 7:
            acedRetName(args->rbnext->resval.rlname, args->rbnext->restype);
            break;
        case 8: {
            resbuf* list = acutBuildList(RTSTR, "only", 0);
            acedRetList(list);
            acutRelRb(list);
            break;
        }
        case 9:
            acedRetVal(args->rbnext);
            break;
        default:
            break;
    }
    acutRelRb(args);
}

// Calls what the arguments say and hands its result on.
void invoke() {
    resbuf* args = acedGetArgs();
    resbuf* result = nullptr;
    int status = acedInvoke(args, &result);
    acutRelRb(args);
    if (status != RTNORM)
        acedRetInt(status);
    else if (result)
        acedRetVal(result);
    acutRelRb(result);
}

void drawLine() {
    const ads_point to = {3, 4, 0};
    int status = acedCommand(RTSTR, "_.LINE", RTSTR, "0,0", RT3DPOINT, to, RTSTR, "", 0);
    acedRetInt(status);
}

void prompt() {
    acedInitGet(0, "Yes No");
    char word[512] = "";
    int status = acedGetKword("\nReally? ", word);
    if (status == RTNORM)
        acedRetStr(word);
    else
        acedRetInt(status);
}

int call() {
    switch (acedGetFunCode()) {
        case kEcho: {
            resbuf* args = acedGetArgs();
            acedRetList(args);
            acutRelRb(args);
            return AcRx::kRetOK;
        }
        case kMany:
            returnOneOfMany();
            return AcRx::kRetOK;
        case kInvoke:
            invoke();
            return AcRx::kRetOK;
        case kCommand:
            drawLine();
            return AcRx::kRetOK;
        case kPrompt:
            prompt();
            return AcRx::kRetOK;
        case kNothing:
            return AcRx::kRetOK;
        default:
            return AcRx::kRetError;
    }
}

}  // namespace

#if MODULE_FAULT == 3
extern "C" void somethingThatNobodyHas();
#endif

#if MODULE_FAULT != 2
extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
#if MODULE_FAULT == 3
    somethingThatNobodyHas();
#endif
    if (message != AcRx::kInvkSubrMsg) acutPrintf("[" MODULE_NAME " %d]", message);
    switch (message) {
        case AcRx::kInitAppMsg:
            if (MODULE_FAULT == 4) return AcRx::kRetError;
            acrxUnlockApplication(packet);
            static_cast<AcRxDynamicLinker*>(acrxSysRegistry()->at("DynamicLinker"))
                ->registerAppMDIAware(packet);
            break;
        case AcRx::kLoadDwgMsg:
            for (int i = 0; i < kFunctions; ++i) acedDefun(fullName(i), i);
            break;
        case AcRx::kUnloadDwgMsg:
            for (int i = 0; i < kFunctions; ++i) acedUndef(fullName(i), i);
            break;
        case AcRx::kInvkSubrMsg:
            return static_cast<AcRx::AppRetCode>(call());
        default:
            break;
    }
    return AcRx::kRetOK;
}
#endif

extern "C" int acrxGetApiVersion() {
    return MODULE_FAULT == 1 ? kApiVersion + 1 : kApiVersion;
}
