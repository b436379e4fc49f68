#include "tests/module/host_double.h"

#include <cstdarg>
#include <cstdio>

#include "platform/ads/editor.h"

HostDouble& host() {
    static HostDouble only;
    return only;
}

extern "C" {

int acutPrintf(const char* format, ...) {
    char line[4096];
    va_list arguments;
    va_start(arguments, format);
    int length = std::vsnprintf(line, sizeof line, format, arguments);  // NOLINT: it is started above.
    va_end(arguments);
    host().printed += line;
    return length;
}

int acedGetSym(const char* name, resbuf** value) {
    auto found = host().symbols.find(name);
    if (found == host().symbols.end()) return RTERROR;
    *value = acutBuildList(RTSTR, found->second.c_str(), 0);
    return RTNORM;
}

int acedPutSym(const char* name, const resbuf* value) {
    host().symbols[name] = value->resval.rstring;
    return RTNORM;
}

resbuf* acedArxLoaded() {
    resbuf* list = nullptr;
    for (auto name = host().modules.rbegin(); name != host().modules.rend(); ++name) {
        resbuf* item = acutBuildList(RTSTR, name->c_str(), 0);
        item->rbnext = list;
        list = item;
    }
    return list;
}

int acedSetStatusBarProgressMeter(const char* label, int from, int to) {
    host().meter = std::string(label) + " " + std::to_string(from) + "-" + std::to_string(to);
    return 0;
}

int acedSetStatusBarProgressMeterPos(int position) {
    host().meter += " " + std::to_string(position);
    return 0;
}

void acedRestoreStatusBar() {
    host().meter += " restored";
}
}
