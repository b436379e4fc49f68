// External functions of modules: defining, calling, results. Lisp symbols.
#include "hostcad/editor/host.h"
#include "hostcad/lisp/arguments.h"
#include "hostcad/lisp/result_values.h"
#include "platform/ads/editor.h"
#include "platform/ads/result_chain.h"

using hostcad::Host;
using hostcad::Modules;
namespace lisp = hostcad::lisp;

namespace {

Modules::Call* currentCall() {
    return Host::current() ? Host::current()->modules().call() : nullptr;
}

// Gives the present call a result in place of what it had.
int giveResult(resbuf* result, bool isList = false) {
    Modules::Call* call = currentCall();
    lisp::ResultList owner(result);
    if (!call) return RTERROR;
    call->result = std::move(owner);
    call->isList = isList;
    return RTNORM;
}

// Runs a piece of the host that may throw an error of Lisp, which ends at the boundary to a module.
template <typename Action>
int guarded(Action action) {
    Host* host = Host::current();
    if (!host) return RTERROR;
    try {
        lisp::Interpreter::Guard guard(host->lisp());
        return action(*host);
    } catch (const lisp::Error& error) {
        if (error.kind == lisp::Error::Kind::Cancel) return RTCAN;
        if (error.kind != lisp::Error::Kind::Quit) host->tell(error);
        return RTERROR;
    }
}

bool isSymbolText(const char* name) {
    return name && *name && !std::strpbrk(name, " \t\r\n()\"';");
}

}  // namespace

extern "C" {

int acedDefun(const char* name, int functionCode) {
    Host* host = Host::current();
    bool isDone =
        host && isSymbolText(name) && functionCode >= 0 && host->modules().defineFunction(name, functionCode);
    return isDone ? RTNORM : RTERROR;
}

int acedUndef(const char* name, int functionCode) {
    Host* host = Host::current();
    return host && name && host->modules().undefineFunction(name, functionCode) ? RTNORM : RTERROR;
}

int acedGetFunCode() {
    Modules::Call* call = currentCall();
    return call ? call->code : RTERROR;
}

resbuf* acedGetArgs() {
    Modules::Call* call = currentCall();
    return call ? lisp::copyOf(call->arguments).release() : nullptr;
}

int acedRetInt(int value) {
    bool isShort = value >= -32768 && value <= 32767;
    resbuf* item = acutNewRb(isShort ? RTSHORT : RTLONG);
    if (isShort)
        item->resval.rint = static_cast<short>(value);
    else
        item->resval.rlong = value;
    return giveResult(item);
}

int acedRetReal(ads_real value) {
    return giveResult(acutBuildList(RTREAL, value, 0));
}
int acedRetStr(const char* value) {
    return giveResult(acutBuildList(RTSTR, value, 0));
}
int acedRetPoint(const ads_point value) {
    return giveResult(acutBuildList(RT3DPOINT, value, 0));
}

int acedRetName(const ads_name value, int type) {
    if (type != RTENAME && type != RTPICKS) return RTERROR;
    return giveResult(acutBuildList(type, value, 0));
}

int acedRetList(const resbuf* list) {
    return giveResult(lisp::copyOf(list).release(), true);
}

int acedRetVal(const resbuf* value) {
    if (!value) return RTERROR;
    resbuf one = *value;
    one.rbnext = nullptr;
    return giveResult(lisp::copyOf(&one).release());
}

int acedRetNil() {
    return giveResult(acutNewRb(RTNIL));
}
int acedRetT() {
    return giveResult(acutNewRb(RTT));
}
int acedRetVoid() {
    return giveResult(acutNewRb(RTVOID));
}

int acedInvoke(const resbuf* call, resbuf** result) {
    if (result) *result = nullptr;
    if (!call || call->restype != RTSTR || !call->resval.rstring) return RTERROR;
    return guarded([&](Host& host) {
        const char* name = call->resval.rstring;
        Modules::Call made;
        bool found = false;
        bool isDone = host.modules().invoke(name, call->rbnext, made, found);
        lisp::ResultList value = std::move(made.result);
        if (!found) {
            lisp::Symbol* symbol = host.lisp().find(name);
            if (!symbol || symbol->value.isNil()) return RTERROR;
            lisp::ArgumentBuffer arguments;
            for (const resbuf* item = call->rbnext; item;) arguments.add(lisp::takeValue(item));
            value = lisp::toResults(host.lisp().apply(symbol->value, arguments.view()));
            isDone = true;
        }
        if (isDone && result) *result = value.release();
        return isDone ? RTNORM : RTERROR;
    });
}

int acedArxLoad(const char* path) {
    return path && guarded([&](Host& host) { return host.modules().load(path) ? RTNORM : RTERROR; }) == RTNORM
               ? RTNORM
               : RTERROR;
}

int acedArxUnload(const char* path) {
    return path && guarded([&](Host& host) { return host.modules().unload(path) ? RTNORM : RTERROR; }) ==
                       RTNORM
               ? RTNORM
               : RTERROR;
}

resbuf* acedArxLoaded() {
    if (!Host::current()) return nullptr;
    ResultChain list;
    for (const std::string& name : Host::current()->modules().loaded()) list.addText(RTSTR, name);
    return list.take();
}

int acedFindFile(const char* name, char* result) {
    if (!Host::current() || !name || !result) return RTERROR;
    std::string path = Host::current()->findFile(name);
    if (path.empty() || path.size() >= static_cast<size_t>(kPathSize)) return RTERROR;
    std::memcpy(result, path.c_str(), path.size() + 1);
    return RTNORM;
}

int acedGetSym(const char* name, resbuf** value) {
    if (!value) return RTERROR;
    *value = nullptr;
    if (!name || !*name) return RTERROR;
    return guarded([&](Host& host) {
        lisp::Symbol* symbol = host.lisp().find(name);
        *value = lisp::toResults(symbol ? symbol->value : lisp::Value()).release();
        return RTNORM;
    });
}

// Programs keep values under any name, also under one that the reader would never read as a symbol.
int acedPutSym(const char* name, const resbuf* value) {
    if (!name || !*name) return RTERROR;
    return guarded([&](Host& host) {
        host.lisp().set(host.lisp().intern(name), lisp::toValue(value));
        return RTNORM;
    });
}
}
